// Hostile arguments for the statistics routines: NaN, infinities, the largest and smallest numbers,
// zero and huge orders, a huge MAXIT or budget with an unreachable tolerance.  Each row ends in its
// failure or in a result the contract allows (finite, or a documented limit), in bounded time.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <functional>
#include <vector>

#include "zek2/g01.h"
#include "zek2/g02.h"
#include "zek2/g03.h"
#include "zek2/g05.h"
#include "zek2/g07.h"

namespace {

constexpr double kNaN = NAN, kInf = INFINITY;
constexpr int L = Zek_LowerTail, U = Zek_UpperTail;

struct Row {
    const char *name;
    std::function<double(ZekFail *)> call;
    bool fails;  // a failure code is expected; otherwise a value in [lo, hi] with code 0
    double lo, hi;
};

// A failure (a code expected) or code 0; either way the value lies in [lo, hi].
template <std::size_t N> void expect_rows(const Row (&rows)[N]) {
    for (const Row &r : rows) {
        ZekFail fail{};
        const double v = r.call(&fail);
        EXPECT_EQ(fail.code != 0, r.fails) << r.name << ": " << fail.message;
        EXPECT_TRUE(v >= r.lo && v <= r.hi) << r.name << " gave " << v;
    }
}

TEST(HostileStatistics, DistributionFunctionsEndInAResultOrTheirFailure) {
    const Row rows[] = {
        {"normal nan", [](ZekFail *f) { return g01eac(L, kNaN, f); }, true, 0, 0},
        {"normal +inf", [](ZekFail *f) { return g01eac(L, kInf, f); }, false, 1, 1},
        {"normal -inf upper", [](ZekFail *f) { return g01eac(U, -kInf, f); }, false, 1, 1},
        {"normal largest", [](ZekFail *f) { return g01eac(U, DBL_MAX, f); }, false, 0, 0},
        {"t nan", [](ZekFail *f) { return g01ebc(L, kNaN, 3.0, f); }, true, 0, 0},
        {"t df nan", [](ZekFail *f) { return g01ebc(L, 1.0, kNaN, f); }, true, 0, 0},
        {"t df inf", [](ZekFail *f) { return g01ebc(L, 1.0, kInf, f); }, false, 0.84, 0.85},
        {"t largest", [](ZekFail *f) { return g01ebc(U, DBL_MAX, 1.0, f); }, false, 0, 1e-307},
        {"t -inf", [](ZekFail *f) { return g01ebc(L, -kInf, 1.0, f); }, false, 0, 0},
        {"t huge df", [](ZekFail *f) { return g01ebc(U, 2.0, DBL_MAX, f); }, false, 0.0227, 0.0228},
        {"chi nan", [](ZekFail *f) { return g01ecc(L, kNaN, 3.0, f); }, true, 0, 0},
        {"chi inf", [](ZekFail *f) { return g01ecc(U, kInf, 3.0, f); }, false, 0, 0},
        {"chi df tiny", [](ZekFail *f) { return g01ecc(L, 1.0, 1e-300, f); }, false, 0.99, 1},
        {"F inf", [](ZekFail *f) { return g01edc(L, kInf, 2.0, 3.0, f); }, false, 1, 1},
        {"F huge dfs", [](ZekFail *f) { return g01edc(L, 1.0, 1e300, 1e300, f); }, false, 0.49, 0.51},
        {"F df nan", [](ZekFail *f) { return g01edc(L, 1.0, kNaN, 3.0, f); }, true, 0, 0},
        {"gamma scale tiny", [](ZekFail *f) { return g01efc(L, 1.0, 2.0, 1e-308, f); }, false, 1, 1},
        {"beta nan", [](ZekFail *f) { double p = 0, q = 0, d = 0; g01eec(kNaN, 1, 1, 0, &p, &q, &d, f); return p; }, true, 0, 0},
        {"beta tiny a", [](ZekFail *f) { double p = 0, q = 0, d = 0; g01eec(0.5, 1e-300, 1, 0, &p, &q, &d, f); return q; }, false, 0, 1e-299},
        {"normal deviate nan", [](ZekFail *f) { return g01fac(L, kNaN, f); }, true, 0, 0},
        {"normal deviate smallest", [](ZekFail *f) { return g01fac(L, DBL_MIN, f); }, false, -38, -37},
        {"normal deviate subnormal", [](ZekFail *f) { return g01fac(L, 4.9e-324, f); }, false, -38.5, -38.4},
        {"normal deviate below one", [](ZekFail *f) { return g01fac(L, 1.0 - DBL_EPSILON / 2, f); }, false, 8.2, 8.3},
        {"t deviate tiny", [](ZekFail *f) { return g01fbc(U, 1e-300, 1.0, f); }, false, 1e299, 1e300},
        {"t deviate inf df", [](ZekFail *f) { return g01fbc(L, 0.975, kInf, f); }, false, 1.95, 1.97},
        {"chi deviate tiny df", [](ZekFail *f) { return g01fcc(0.5, 1e-300, f); }, false, 0, 1},
        {"chi deviate p one", [](ZekFail *f) { return g01fcc(1.0, 3.0, f); }, true, 0, 0},
        {"F deviate huge", [](ZekFail *f) { return g01fdc(0.5, 1e300, 1e300, f); }, false, 0.99, 1.01},
        {"beta deviate tiny", [](ZekFail *f) { return g01fec(1e-300, 1e6, 1e6, 0, f); }, false, 0.4, 0.5},
        {"beta deviate extreme", [](ZekFail *f) { return g01fec(0.5, 1e-300, 1e6, 0, f); }, false, 0, 1e-300},
        {"gamma deviate nan scale", [](ZekFail *f) { return g01ffc(0.5, 2.0, kNaN, 0, f); }, true, 0, 0},
        {"gamma deviate large a", [](ZekFail *f) { return g01ffc(1e-300, 1e6, 1.0, 0, f); }, false, 9e5, 1e6},
    };
    expect_rows(rows);
}

TEST(HostileNonCentral, EachRowEndsInAProbabilityOrItsFailure) {
    const Row rows[] = {
        {"t nan", [](ZekFail *f) { return g01gbc(kNaN, 2.0, 1.0, 0.0, 100, f); }, true, 0, 1},
        {"t inf delta", [](ZekFail *f) { return g01gbc(1.0, 2.0, kInf, 0.0, 100, f); }, true, 0, 1},
        {"t largest", [](ZekFail *f) { return g01gbc(DBL_MAX, 2.0, 1.0, 0.0, 100, f); }, false, 0, 1},
        {"t huge df", [](ZekFail *f) { return g01gbc(1.0, DBL_MAX, 1.0, 0.0, 100, f); }, false, 0, 1},
        {"t smallest df", [](ZekFail *f) { return g01gbc(1.0, DBL_MIN, 1.0, 0.0, 100, f); }, false, 0, 1},
        {"t huge delta, huge maxit", [](ZekFail *f) { return g01gbc(1.0, 2.0, 1e8, 0.0, INT_MAX, f); }, true, 0, 1},
        {"chi nan", [](ZekFail *f) { return g01gcc(kNaN, 2.0, 1.0, 0.0, 100, f); }, true, 0, 1},
        {"chi inf x", [](ZekFail *f) { return g01gcc(kInf, 2.0, 1.0, 0.0, 100, f); }, false, 0, 1},
        {"chi inf lambda", [](ZekFail *f) { return g01gcc(1.0, 2.0, kInf, 0.0, 100, f); }, true, 0, 1},
        {"chi largest lambda", [](ZekFail *f) { return g01gcc(1.0, 2.0, DBL_MAX, 0.0, INT_MAX, f); }, true, 0, 1},
        {"chi nan tol", [](ZekFail *f) { return g01gcc(1.0, 2.0, 1.0, kNaN, 100, f); }, false, 0, 1},
        {"F inf", [](ZekFail *f) { return g01gdc(kInf, 2.0, 3.0, 1.0, 0.0, 100, f); }, false, 0, 1},
        {"F nan df2", [](ZekFail *f) { return g01gdc(1.0, 2.0, kNaN, 1.0, 0.0, 100, f); }, true, 0, 1},
        {"F largest df2", [](ZekFail *f) { return g01gdc(1.0, 2.0, DBL_MAX, 1.0, 0.0, 100, f); }, false, 0, 1},
        {"beta nan", [](ZekFail *f) { return g01gec(kNaN, 2.0, 3.0, 1.0, 0.0, 100, f); }, true, 0, 1},
        {"beta smallest a", [](ZekFail *f) { return g01gec(0.5, DBL_MIN, 3.0, 1.0, 0.0, 100, f); }, false, 0, 1},
        {"bivariate nan rho", [](ZekFail *f) { return g01hac(0.0, 0.0, kNaN, f); }, true, 0, 1},
        {"bivariate largest", [](ZekFail *f) { return g01hac(DBL_MAX, -DBL_MAX, 0.7, f); }, false, 0, 1},
        {"bivariate -inf", [](ZekFail *f) { return g01hac(-kInf, 1.0, -0.3, f); }, false, 0, 1},
        {"bivariate smallest, rho near 1", [](ZekFail *f) { return g01hac(DBL_MIN, -DBL_MIN, 1.0 - DBL_EPSILON, f); }, false, 0, 1},
        {"bivariate far tail, rho near -1", [](ZekFail *f) { return g01hac(-30.0, 30.0, -1.0 + DBL_EPSILON, f); }, false, 0, 1},
        {"dw nan d", [](ZekFail *) { const int m = 2; const double l[] = {1, 3}, d = kNaN; return H_DW_TAIL(&m, l, &d); }, false, 0, 1},
        {"dw largest", [](ZekFail *) { const int m = 2; const double l[] = {-DBL_MAX, DBL_MAX}, d = 0.0; return H_DW_TAIL(&m, l, &d); }, false, 0, 1},
        {"beta ends", [](ZekFail *f) { return g01gec(1.0, 2.0, 3.0, 1.0, 0.0, 100, f); }, false, 0, 1},
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
        {"nan limit", [](ZekFail *f) { return call3(Zek_Central, kNaN, 1.0, 0.0, 0.3, 1.0, 1e-3, 10000, f); }, true, 0, 1},
        {"nan mean", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, kNaN, 0.3, 1.0, 1e-3, 10000, f); }, true, 0, 1},
        {"nan covariance", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, kNaN, 1.0, 1e-3, 10000, f); }, true, 0, 1},
        {"inf variance", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.3, kInf, 1e-3, 10000, f); }, true, 0, 1},
        {"inf mean", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, -kInf, 0.3, 1.0, 1e-3, 10000, f); }, true, 0, 1},
        {"+inf limits", [](ZekFail *f) { return call3(Zek_Central, -kInf, kInf, 0.0, 0.3, 1.0, 1e-3, 10000, f); }, false, 0, 1},
        {"-inf upper limit", [](ZekFail *f) { return call3(Zek_LowerTail, 0.0, -kInf, 0.0, 0.3, 1.0, 1e-3, 10000, f); }, false, 0, 1},
        {"largest limits", [](ZekFail *f) { return call3(Zek_Central, -DBL_MAX, DBL_MAX, 0.0, 0.3, 1.0, 1e-3, 10000, f); }, false, 0, 1},
        {"largest mean", [](ZekFail *f) { return call3(Zek_UpperTail, 0.0, 1.0, DBL_MAX, 0.3, 1.0, 1e-3, 10000, f); }, false, 0, 1},
        {"smallest variance, so not definite", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.0, DBL_MIN, 1e-3, 10000, f); }, true, 0, 1},
        {"largest variance", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.0, DBL_MAX, 1e-3, 10000, f); }, false, 0, 1},
        {"singular", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 1.0, 1.0, 1e-3, 10000, f); }, true, 0, 1},
        {"nan tol", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.3, 1.0, kNaN, 10000, f); }, true, 0, 1},
        {"smallest tol, largest budget", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.3, 1.0, DBL_MIN, INT_MAX, f); }, true, 0, 1},
        {"budget one short", [](ZekFail *f) { return call3(Zek_Central, 0.0, 1.0, 0.0, 0.3, 1.0, 1e-3, 11, f); }, true, 0, 1},
        {"order zero", [](ZekFail *f) { const double z = 0.0; return g01hbc(Zek_LowerTail, 0, &z, &z, &z, &z, 1, 1e-3, 100, f); }, true, 0, 1},
        {"order huge", [](ZekFail *f) { const double z = 0.0; return g01hbc(Zek_LowerTail, INT_MAX, &z, &z, &z, &z, INT_MAX, 1e-3, INT_MAX, f); }, true, 0, 1},
        {"one variable, far tail", [](ZekFail *f) { const double a = 38.0, s = 1.0, m = 0.0; return g01hbc(Zek_UpperTail, 1, &a, &a, &m, &s, 1, 0.0, 0, f); }, false, 0, 1},
    };
    expect_rows(rows);
}

TEST(HostileStatistics, GeneratorsAndSmallChaptersStayBounded) {
    G05_SEED(1);
    EXPECT_TRUE(std::isnan(G05_UNIFORM_AB(kNaN, 1.0)));
    EXPECT_TRUE(std::isnan(G05_UNIFORM_AB(1.0, kNaN)));
    EXPECT_EQ(G05_UNIFORM_AB(-kInf, -kInf), -kInf);
    EXPECT_EQ(G05_UNIFORM_AB(DBL_MAX, DBL_MAX), DBL_MAX);
    EXPECT_EQ(G05_CAUCHY(3.0, 0.0), 3.0);
    int bad[4] = {0, -5, 2147483647, -2147483647 - 1};
    for (int igen : {1, 150, 273}) {
        const double u = G05_EXPLICIT_UNIFORM_V(igen, bad);
        EXPECT_TRUE(u >= 0.0 && u < 1.0) << igen;
    }
    EXPECT_EQ(G05_EXPLICIT_UNIFORM_V(274, bad), 0.0);
    EXPECT_EQ(G05_EXPLICIT_UNIFORM_V(-1, bad), 0.0);
    EXPECT_EQ(G05_WICHMANN_HILL(0, bad), 0.0);
    int limbs[4] = {-1, 1 << 30, -7, 99999};  // limbs out of 15 bits are masked
    const double u = G05_EXPLICIT_UNIFORM_V(0, limbs);
    EXPECT_TRUE(u >= 0.0 && u < 1.0);
    ZekFail fail{};
    int v = 0;
    g05ehc(&v, -2147483647 - 1, &fail);
    EXPECT_EQ(fail.code, 11);

    std::vector<double> x = {1.0, kNaN, 3.0}, y(3, -1.0);
    double xme = -1, xmd = -1, xsd = -1;
    g07dac(3, x.data(), y.data(), &xme, &xmd, &xsd, &fail);
    EXPECT_EQ(fail.code, 70);
    EXPECT_EQ(xme, -1.0);
    x[1] = kInf;
    g07dac(3, x.data(), y.data(), &xme, &xmd, &xsd, &fail);
    EXPECT_EQ(fail.code, 70);
    g07dac(2147483647, x.data(), y.data(), &xme, &xmd, &xsd, &fail);
    EXPECT_EQ(fail.code, 13);

    const int n = 2, m = 1, ld = 2, nvar = 1, isx = 1, none = 0;
    const double data[2] = {kNaN, 1.0}, s_nan = kNaN, e = 0.0;
    double z[2] = {7, 7};
    int ifail = 1;
    G03ZAF(&n, &m, data, &ld, &nvar, &isx, &s_nan, &e, z, &ld, &ifail);
    EXPECT_EQ(ifail, 3);
    EXPECT_EQ(z[1], 7.0);
    ifail = 1;
    G03ZAF(&n, &m, data, &ld, &none, &isx, &s_nan, &e, z, &ld, &ifail);
    EXPECT_EQ(ifail, 1);
}

TEST(HostileStatistics, RegressionRejectsNonFiniteDataAndOddSizes) {
    const int n = 4, m = 1, ip = 2, ld = 4, big = 2147483647;
    std::vector<int> isx = {1};
    std::vector<double> x = {1, 2, 3, 4}, y = {1, 3, 2, 5}, wt = {1, 1, 1, 1};
    std::vector<double> b(2), se(2), cov(3), res(4), h(4), q(12), p(8), wk(14);
    double rss = 0, tol = 0;
    int idf = 0, svd = 0, irank = 0;
    struct Case { const char *name; double *poison; double value; int n, ip; int ifail; };
    const Case cases[] = {
        {"nan x", &x[1], NAN, n, ip, 1},   {"inf y", &y[3], -INFINITY, n, ip, 1}, {"nan weight", &wt[0], NAN, n, ip, 2},
        {"inf weight", &wt[2], INFINITY, n, ip, 2}, {"huge n", nullptr, 0, big, ip, 1}, {"huge ip", nullptr, 0, n, big, 1},
        {"largest data", &x[0], 1.7976931348623157e308, n, ip, 5},
        {"smallest data", &x[0], 4.9406564584124654e-324, n, ip, 0},
    };
    for (const Case &c : cases) {
        double saved = 0;
        if (c.poison != nullptr) {
            saved = *c.poison;
            *c.poison = c.value;
        }
        int ifail = 1;
        G02DAF("M", "W", &c.n, x.data(), &ld, &m, isx.data(), &c.ip, y.data(), wt.data(), &rss, &idf, b.data(), se.data(),
               cov.data(), res.data(), h.data(), q.data(), &ld, &svd, &irank, p.data(), &tol, wk.data(), &ifail, 1, 1);
        EXPECT_EQ(ifail, c.ifail) << c.name;
        if (c.poison != nullptr) *c.poison = saved;
        for (double v : b) EXPECT_FALSE(ifail == 0 && std::isnan(v)) << c.name;
    }
    // A tolerance nothing passes leaves rank 0 through the singular value form: b = 0, RSS = |y|^2.
    int ifail = 1;
    tol = 1e300;
    G02DAF("M", "W", &n, x.data(), &ld, &m, isx.data(), &ip, y.data(), wt.data(), &rss, &idf, b.data(), se.data(),
           cov.data(), res.data(), h.data(), q.data(), &ld, &svd, &irank, p.data(), &tol, wk.data(), &ifail, 1, 1);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(irank, 0);
    EXPECT_DOUBLE_EQ(rss, 39.0);
    // A refit told of a singular value form whose values are all zero gives b = 0, not a division by zero.
    const int one = 1;
    std::fill(p.begin(), p.end(), 0.0);
    ifail = 1;
    G02DGF("W", &n, wt.data(), &rss, &ip, &one, cov.data(), q.data(), &ld, &one, p.data(), y.data(), b.data(),
           se.data(), res.data(), wk.data(), &ifail, 1);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(b[0], 0.0);
    EXPECT_EQ(b[1], 0.0);
    EXPECT_DOUBLE_EQ(rss, 39.0);
}

} // namespace
