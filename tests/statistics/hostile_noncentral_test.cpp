// Hostile arguments for the non-central, bivariate and multivariate normal distributions: NaN, infinities,
// the largest and smallest numbers, zero and huge orders, a huge MAXIT or budget with an unreachable
// tolerance.  Each ends in a probability or its failure, in bounded time.
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>

#include "zek2/g01.h"

namespace {

constexpr double kNaN = NAN, kInf = INFINITY;

struct Row { const char *name; double (*call)(ZekFail *); bool fails; };

template <std::size_t N> void expect_rows(const Row (&rows)[N]) {
    for (const Row &r : rows) {
        ZekFail fail{};
        const double v = r.call(&fail);
        EXPECT_EQ(fail.code != 0, r.fails) << r.name << ": " << fail.message;
        EXPECT_TRUE(v >= 0.0 && v <= 1.0) << r.name << " " << v;
    }
}

TEST(HostileNonCentral, EachRowEndsInAProbabilityOrItsFailure) {
    const Row rows[] = {
        {"t nan", [](ZekFail *f) { return g01gbc(kNaN, 2.0, 1.0, 0.0, 100, f); }, true},
        {"t inf delta", [](ZekFail *f) { return g01gbc(1.0, 2.0, kInf, 0.0, 100, f); }, true},
        {"t largest", [](ZekFail *f) { return g01gbc(DBL_MAX, 2.0, 1.0, 0.0, 100, f); }, false},
        {"t huge df", [](ZekFail *f) { return g01gbc(1.0, DBL_MAX, 1.0, 0.0, 100, f); }, false},
        {"t smallest df", [](ZekFail *f) { return g01gbc(1.0, DBL_MIN, 1.0, 0.0, 100, f); }, false},
        {"t huge delta, huge maxit", [](ZekFail *f) { return g01gbc(1.0, 2.0, 1e8, 0.0, INT_MAX, f); }, true},
        {"chi nan", [](ZekFail *f) { return g01gcc(kNaN, 2.0, 1.0, 0.0, 100, f); }, true},
        {"chi inf x", [](ZekFail *f) { return g01gcc(kInf, 2.0, 1.0, 0.0, 100, f); }, false},
        {"chi inf lambda", [](ZekFail *f) { return g01gcc(1.0, 2.0, kInf, 0.0, 100, f); }, true},
        {"chi largest lambda", [](ZekFail *f) { return g01gcc(1.0, 2.0, DBL_MAX, 0.0, INT_MAX, f); }, true},
        {"chi nan tol", [](ZekFail *f) { return g01gcc(1.0, 2.0, 1.0, kNaN, 100, f); }, false},
        {"F inf", [](ZekFail *f) { return g01gdc(kInf, 2.0, 3.0, 1.0, 0.0, 100, f); }, false},
        {"F nan df2", [](ZekFail *f) { return g01gdc(1.0, 2.0, kNaN, 1.0, 0.0, 100, f); }, true},
        {"F largest df2", [](ZekFail *f) { return g01gdc(1.0, 2.0, DBL_MAX, 1.0, 0.0, 100, f); }, false},
        {"beta nan", [](ZekFail *f) { return g01gec(kNaN, 2.0, 3.0, 1.0, 0.0, 100, f); }, true},
        {"beta smallest a", [](ZekFail *f) { return g01gec(0.5, DBL_MIN, 3.0, 1.0, 0.0, 100, f); }, false},
        {"bivariate nan rho", [](ZekFail *f) { return g01hac(0.0, 0.0, kNaN, f); }, true},
        {"bivariate largest", [](ZekFail *f) { return g01hac(DBL_MAX, -DBL_MAX, 0.7, f); }, false},
        {"bivariate -inf", [](ZekFail *f) { return g01hac(-kInf, 1.0, -0.3, f); }, false},
        {"bivariate smallest, rho near 1", [](ZekFail *f) { return g01hac(DBL_MIN, -DBL_MIN, 1.0 - DBL_EPSILON, f); }, false},
        {"bivariate far tail, rho near -1", [](ZekFail *f) { return g01hac(-30.0, 30.0, -1.0 + DBL_EPSILON, f); }, false},
        {"dw nan d", [](ZekFail *) { const int m = 2; const double l[] = {1, 3}, d = kNaN; return H_DW_TAIL(&m, l, &d); }, false},
        {"dw largest", [](ZekFail *) { const int m = 2; const double l[] = {-DBL_MAX, DBL_MAX}, d = 0.0; return H_DW_TAIL(&m, l, &d); }, false},
        {"beta ends", [](ZekFail *f) { return g01gec(1.0, 2.0, 3.0, 1.0, 0.0, 100, f); }, false},
    };
    expect_rows(rows);
}

double call3(int tail, double a0, double b0, double mu0, double s01, double s00, double tol, int maxpts, ZekFail *f) {
    const double a[3] = {a0, -1.0, -1.0}, b[3] = {b0, 1.0, 1.0}, mu[3] = {mu0, 0.0, 0.0};
    const double sig[9] = {s00, s01, 0.2, s01, 1.0, 0.2, 0.2, 0.2, 1.0};
    return g01hbc(tail, 3, a, b, mu, sig, 3, tol, maxpts, f);
}

TEST(HostileMultivariateNormal, EachRowEndsInAProbabilityOrItsFailure) {
    const Row rows[] = {
        {"nan limit", [](ZekFail *f) { return call3(Zek_Central, kNaN, 1.0, 0.0, 0.3, 1.0, 1e-3, 10000, f); }, true},
        {"nan mean", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, kNaN, 0.3, 1.0, 1e-3, 10000, f); }, true},
        {"nan covariance", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, kNaN, 1.0, 1e-3, 10000, f); }, true},
        {"inf variance", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.3, kInf, 1e-3, 10000, f); }, true},
        {"inf mean", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, -kInf, 0.3, 1.0, 1e-3, 10000, f); }, true},
        {"+inf limits", [](ZekFail *f) { return call3(Zek_Central, -kInf, kInf, 0.0, 0.3, 1.0, 1e-3, 10000, f); }, false},
        {"-inf upper limit", [](ZekFail *f) { return call3(Zek_LowerTail, 0.0, -kInf, 0.0, 0.3, 1.0, 1e-3, 10000, f); }, false},
        {"largest limits", [](ZekFail *f) { return call3(Zek_Central, -DBL_MAX, DBL_MAX, 0.0, 0.3, 1.0, 1e-3, 10000, f); }, false},
        {"largest mean", [](ZekFail *f) { return call3(Zek_UpperTail, 0.0, 1.0, DBL_MAX, 0.3, 1.0, 1e-3, 10000, f); }, false},
        {"smallest variance, so not definite", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.0, DBL_MIN, 1e-3, 10000, f); }, true},
        {"largest variance", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.0, DBL_MAX, 1e-3, 10000, f); }, false},
        {"singular", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 1.0, 1.0, 1e-3, 10000, f); }, true},
        {"nan tol", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.3, 1.0, kNaN, 10000, f); }, true},
        {"smallest tol, largest budget", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.3, 1.0, DBL_MIN, INT_MAX, f); }, true},
        {"budget one short", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.3, 1.0, 1e-3, 11, f); }, true},
        {"order zero", [](ZekFail *f) { const double z = 0.0; return g01hbc(Zek_LowerTail, 0, &z, &z, &z, &z, 1, 1e-3, 100, f); }, true},
        {"order huge", [](ZekFail *f) { const double z = 0.0; return g01hbc(Zek_LowerTail, INT_MAX, &z, &z, &z, &z, INT_MAX, 1e-3, INT_MAX, f); }, true},
        {"one variable, far tail", [](ZekFail *f) { const double a = 38.0, s = 1.0, m = 0.0; return g01hbc(Zek_UpperTail, 1, &a, &a, &m, &s, 1, 0.0, 0, f); }, false},
    };
    expect_rows(rows);
}

} // namespace
