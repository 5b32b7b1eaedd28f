// Hostile arguments for every computing routine of the statistics chapters: NaN, infinities, the largest
// and smallest numbers, zero and huge sizes, a huge MAXIT or budget with an unreachable tolerance.  Each
// row ends in its failure or in a result the contract allows (finite, or a documented limit), in bounded
// time; a refused argument leaves the outputs (or the factorisation) as they were.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <functional>
#include <vector>

#include "support.h"
#include "zek2/g01.h"
#include "zek2/g03.h"
#include "zek2/g05.h"
#include "zek2/g07.h"
#include "zek2/messages.h"

namespace {

constexpr double kNaN = NAN, kInf = INFINITY;
constexpr int L = Zek_LowerTail, U = Zek_UpperTail;

// fails: a failure code is expected; otherwise a value in [lo, hi] with code 0.
struct Row { const char *name; std::function<double(ZekFail *)> call; bool fails; double lo, hi; };

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
    EXPECT_EQ(fail.code, ZE_INT_ARG_LT);

    std::vector<double> x = {1.0, kNaN, 3.0}, y(3, -1.0);
    double xme = -1, xmd = -1, xsd = -1;
    g07dac(3, x.data(), y.data(), &xme, &xmd, &xsd, &fail);
    EXPECT_EQ(fail.code, ZE_BAD_PARAM);
    EXPECT_EQ(xme, -1.0);
    x[1] = kInf;
    g07dac(3, x.data(), y.data(), &xme, &xmd, &xsd, &fail);
    EXPECT_EQ(fail.code, ZE_BAD_PARAM);
    g07dac(2147483647, x.data(), y.data(), &xme, &xmd, &xsd, &fail);
    EXPECT_EQ(fail.code, ZE_INT_ARG_GT);

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
    const std::vector<int> isx = {1};
    std::vector<double> b(2), se(2), cov(3), res(4), h(4), q(12), p(8), wk(14), d;
    double rss = 0;
    int idf = 0, svd = 0, irank = 0;
    // A fit of y = (1, 3, 2, 5) on x = (1, 2, 3, 4) with unit weights, one of the 12 data in d (x, y, wt
    // in turn) replaced; at -1 replaces none.
    const auto fit = [&](int rows, int cols, int at, double value, double tol) {
        d = {1, 2, 3, 4, 1, 3, 2, 5, 1, 1, 1, 1};
        if (at >= 0) d[at] = value;
        int ifail = 1;
        G02DAF("M", "W", &rows, d.data(), &ld, &m, isx.data(), &cols, d.data() + 4, d.data() + 8, &rss, &idf, b.data(),
               se.data(), cov.data(), res.data(), h.data(), q.data(), &ld, &svd, &irank, p.data(), &tol, wk.data(), &ifail,
               1, 1);
        return ifail;
    };
    const struct { const char *name; int at; double value; int n, ip, ifail; } cases[] = {
        {"nan x", 1, NAN, n, ip, 1},           {"inf y", 7, -INFINITY, n, ip, 1}, {"nan weight", 8, NAN, n, ip, 2},
        {"inf weight", 10, INFINITY, n, ip, 2}, {"huge n", -1, 0, big, ip, 1},    {"huge ip", -1, 0, n, big, 1},
        {"largest data", 0, 1.7976931348623157e308, n, ip, 5}, {"smallest data", 0, 4.9406564584124654e-324, n, ip, 0},
    };
    for (const auto &c : cases) {
        const int ifail = fit(c.n, c.ip, c.at, c.value, 0.0);
        EXPECT_EQ(ifail, c.ifail) << c.name;
        for (double v : b) EXPECT_FALSE(ifail == 0 && std::isnan(v)) << c.name;
    }
    // A tolerance nothing passes leaves rank 0 through the singular value form: b = 0, RSS = |y|^2.
    EXPECT_EQ(fit(n, ip, -1, 0.0, 1e300), 0);
    EXPECT_EQ(irank, 0);
    EXPECT_DOUBLE_EQ(rss, 39.0);
    // A refit told of a singular value form whose values are all zero gives b = 0, not a division by zero.
    const int one = 1;
    std::fill(p.begin(), p.end(), 0.0);
    int ifail = 1;
    G02DGF("W", &n, d.data() + 8, &rss, &ip, &one, cov.data(), q.data(), &ld, &one, p.data(), d.data() + 4,
           b.data(), se.data(), res.data(), wk.data(), &ifail, 1);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(b[0], 0.0);
    EXPECT_EQ(b[1], 0.0);
    EXPECT_DOUBLE_EQ(rss, 39.0);
}

// The descriptive statistics and correlation routines.
namespace descriptive {

constexpr double kMax = DBL_MAX, kMin = DBL_MIN;

// call: IFAIL, or the fail code of a C-style routine.
struct Row { const char *name; std::function<int(std::vector<double> &out)> call; int expected; };

std::vector<double> column(std::initializer_list<double> v) { return v; }

int summary(std::vector<double> x, std::vector<double> &out, const double *wt = nullptr) {
    const int n = static_cast<int>(x.size());
    int iwt = wt != nullptr ? 1 : 0, ifail = 1;
    G01AAF(&n, x.data(), &iwt, wt, &out[0], &out[1], &out[2], &out[3], &out[4], &out[5], &out[6], &ifail);
    return ifail;
}

int covariance(std::vector<double> x, int m, std::vector<double> &out, const double *wt = nullptr) {
    const int n = static_cast<int>(x.size()) / m;
    int ifail = 1;
    G02BXF(wt != nullptr ? "W" : "U", &n, &m, x.data(), &n, wt, &out[0], &out[m], &out[2 * m], &m, &out[2 * m + m * m], &m,
           &ifail, 1);
    return ifail;
}

int rank_correlation(std::vector<double> x, int m, std::vector<double> &out) {
    ZekFail fail{};
    const int n = static_cast<int>(x.size()) / m;
    g02brc(n, m, x.data(), n, nullptr, nullptr, out.data(), m, &fail);
    return fail.code;
}

int durbin_watson(std::vector<double> r, int ip, std::vector<double> &out) {
    const int n = static_cast<int>(r.size());
    std::vector<double> work(n);
    int ifail = 1;
    G02FCF(&n, &ip, r.data(), &out[0], &out[1], &out[2], work.data(), &ifail);
    return ifail;
}

int update(double wt, std::vector<double> x, double sw, std::vector<double> &out) {
    const int m = static_cast<int>(x.size()), inc = 1;
    int ifail = 1;
    out[0] = sw;
    G02BTF("M", &m, &wt, x.data(), &inc, &out[0], &out[1], &out[1 + m], &ifail, 1);
    return ifail;
}

TEST(HostileDescriptive, EveryRoutineEndsInItsResultOrItsExit) {
    const int big = INT_MAX, two = 2, zero = 0;
    const Row rows[] = {
        {"summary nan", [](auto &o) { return summary(column({1, kNaN, 3}), o); }, 2},
        {"summary -inf weight", [](auto &o) { const double w[] = {1, -kInf, 1}; return summary(column({1, 2, 3}), o, w); }, 2},
        {"summary largest", [](auto &o) { return summary(column({kMax, -kMax, kMax, 0}), o); }, 7},
        {"summary largest one sign", [](auto &o) { return summary(column({kMax, kMax / 2, kMax, 0.75 * kMax}), o); }, 0},
        {"summary smallest", [](auto &o) { return summary(column({kMin, 2 * kMin, 4 * kMin}), o); }, 0},
        {"summary huge weights", [](auto &o) { const double w[] = {kMax, kMax, 1}; return summary(column({1, 2, 3}), o, w); }, 2},
        {"summary largest weight", [](auto &o) { const double w[] = {kMax, 1, 1}; return summary(column({1, 2, 3}), o, w); }, 0},
        {"summary tiny weights", [](auto &o) { const double w[] = {kMin, kMin}; return summary(column({1, 2}), o, w); }, 5},
        {"summary zero n", [](auto &o) { int n = 0, iwt = 0, f = 1; G01AAF(&n, nullptr, &iwt, nullptr, &o[0], &o[1], &o[2], &o[3], &o[4], &o[5], &o[6], &f); return f; }, 1},
        {"table nan", [](auto &o) { int n = 3, k = 2, c = 0, f = 1, fr[2]; const double x[] = {1, kNaN, 2}; G01AEF(&n, &k, x, &c, &o[0], fr, &o[1], &o[2], &f); return f; }, 3},
        {"table largest span", [](auto &o) { int n = 3, k = 4, c = 0, f = 1, fr[4]; const double x[] = {-kMax, 0, kMax}; G01AEF(&n, &k, x, &c, &o[0], fr, &o[3], &o[4], &f); return f; }, 0},
        {"table inf boundary", [](auto &o) { int n = 2, k = 3, c = 1, f = 1, fr[3]; const double x[] = {1, 2}; o[0] = 1, o[1] = kInf; G01AEF(&n, &k, x, &c, &o[0], fr, &o[2], &o[3], &f); return f; }, 2},
        {"table no classes", [&](auto &o) { int n = 1, c = 1, f = 1, fr[1]; const double x[] = {1}; G01AEF(&n, &zero, x, &c, &o[0], fr, &o[1], &o[2], &f); return f; }, 1},
        {"covariance nan", [](auto &o) { return covariance(column({1, 2, kNaN, 4}), 2, o); }, 2},
        {"covariance c huge m", [](auto &o) { ZekFail f{}; g02bxc(2, INT_MAX, o.data(), 2, nullptr, o.data(), o.data(), o.data(), 2, o.data(), 2, &f); return f.code; }, ZE_2_INT_ARG_LT},
        {"covariance largest", [](auto &o) { return covariance(column({kMax, -kMax, kMax, 1, 2, 3}), 2, o); }, 4},
        {"covariance smallest", [](auto &o) { return covariance(column({kMin, 2 * kMin, 3 * kMin, 1, 5, 2}), 2, o); }, 0},
        {"covariance ld huge m", [&](auto &o) { int n = 2, f = 1; G02BXF("U", &n, &big, o.data(), &n, nullptr, o.data(), o.data(), o.data(), &two, o.data(), &two, &f, 1); return f; }, 1},
        {"cross-products zero weights", [](auto &o) { int n = 2, m = 1, f = 1; const double w[] = {0, 0}, x[] = {1, 2}; G02BUF("M", "W", &n, &m, x, &n, w, &o[0], &o[1], &o[2], &f, 1, 1); return f; }, 3},
        {"cross-products inf", [](auto &o) { int n = 2, m = 1, f = 1; const double x[] = {1, -kInf}; G02BUF("Z", "U", &n, &m, x, &n, nullptr, &o[0], &o[1], &o[2], &f, 1, 1); return f; }, 4},
        {"cross-products overflow", [](auto &o) { int n = 2, m = 1, f = 1; const double x[] = {kMax, 1}; G02BUF("Z", "U", &n, &m, x, &n, nullptr, &o[0], &o[1], &o[2], &f, 1, 1); return f; }, 5},
        {"update nan x", [](auto &o) { return update(1.0, column({1, kNaN}), 2.0, o); }, 4},
        {"update inf weight", [](auto &o) { return update(kInf, column({1, 2}), 2.0, o); }, 3},
        {"update largest", [](auto &o) { return update(1.0, column({kMax, 1}), 0.0, o); }, 0},
        {"update overflow", [](auto &o) { update(1.0, column({-kMax, 1}), 0.0, o); const int m = 2, inc = 1; double w = 1.0, x[] = {kMax, 1}; int f = 1; G02BTF("M", &m, &w, x, &inc, &o[0], &o[1], &o[3], &f, 1); return f; }, 5},
        {"ranks nan", [](auto &o) { return rank_correlation(column({1, 2, kNaN, 4, 5, 6}), 2, o); }, ZE_BAD_PARAM},
        {"ranks largest", [](auto &o) { return rank_correlation(column({kMax, -kMax, 0, kMin, 1, -1}), 2, o); }, 0},
        {"ranks one variable", [](auto &o) { ZekFail f{}; const int sv[] = {1, 0}; const double x[] = {1, 2, 3, 4}; g02brc(2, 2, x, 2, sv, nullptr, o.data(), 2, &f); return f.code; }, ZE_SVAR_LOW},
        {"ranks one observation", [](auto &o) { ZekFail f{}; const int so[] = {0, 1}; const double x[] = {1, 2, 3, 4}; g02brc(2, 2, x, 2, nullptr, so, o.data(), 2, &f); return f.code; }, ZE_SOBS_LOW},
        {"ranks constant", [](auto &o) { return rank_correlation(column({1, 1, 1, 2, 3, 4}), 2, o); }, ZE_VAR_EQ_ZERO},
        {"summary c no weight", [](auto &o) { ZekFail f{}; int nv; const double w[] = {0, 0}, x[] = {1, 2}; g01aac(2, x, w, &nv, &o[0], &o[1], &o[2], &o[3], &o[4], &o[5], &o[6], &f); return f.code; }, ZE_CASES_ZERO},
        {"summary c one case", [](auto &o) { ZekFail f{}; int nv; const double w[] = {0, 3}, x[] = {1, 2}; g01aac(2, x, w, &nv, &o[0], &o[1], &o[2], &o[3], &o[4], &o[5], &o[6], &f); return f.code; }, ZE_CASES_ONE},
        {"ranks huge tdc", [](auto &o) { ZekFail f{}; const double x[] = {1, 2, 3, 4}; g02brc(2, 2, x, 2, nullptr, nullptr, o.data(), INT_MIN, &f); return f.code; }, ZE_2_INT_ARG_LT},
        {"dw nan", [](auto &o) { return durbin_watson(column({1, kNaN, 3, 4}), 1, o); }, 2},
        {"dw largest", [](auto &o) { return durbin_watson(column({kMax, -kMax, kMax, -kMax, kMax}), 2, o); }, 0},
        {"dw smallest", [](auto &o) { return durbin_watson(column({kMin, 0, -kMin, kMin, 0, 0}), 2, o); }, 0},
        {"dw huge ip", [](auto &o) { return durbin_watson(column({1, 2, 3}), INT_MAX, o); }, 1},
        {"dw long series", [](auto &o) { std::vector<double> r(400); for (int i = 0; i < 400; ++i) r[i] = std::sin(0.7 * i); return durbin_watson(r, 3, o); }, 0},
    };
    for (const Row &r : rows) {
        std::vector<double> out(64, 0.0);
        EXPECT_EQ(r.call(out), r.expected) << r.name;
        if (r.expected == 0) {
            for (double v : out) ASSERT_TRUE(std::isfinite(v)) << r.name;
        }
    }
}

} // namespace descriptive

TEST(HostileRegressionUpdate, EachRowEndsInItsCodeOrAFiniteResult) {
    // A fitted model of 8 observations on the mean and two variables.
    const int n = 8, m = 2, ip = 3;
    std::vector<double> x(n * m), y(n);
    for (int i = 0; i < n; ++i) {
        x[i] = i;
        x[i + n] = std::cos(i);
        y[i] = 1.0 + 0.5 * i - std::sin(i);
    }
    const std::vector<int> sx = {1, 1};
    std::vector<double> b(ip + 1), se(ip + 1), cov(10), res(n), h(n), q(n * (ip + 2)), p(2 * (ip + 1) + 16);
    double rss0 = 0, df = 0;
    int svd = 0, rank = 0;
    ZekFail fit{};
    g02dac(Zek_MeanInclude, n, m, x.data(), n, sx.data(), ip, y.data(), nullptr, &rss0, &df, b.data(), se.data(),
           cov.data(), res.data(), h.data(), q.data(), n, &svd, &rank, p.data(), 0.0, nullptr, &fit);
    ASSERT_EQ(fit.code, 0) << fit.message;
    const std::vector<double> q0 = q;
    const double row_nan[] = {kNaN, 1.0}, row_big[] = {DBL_MAX, DBL_MAX}, row_tiny[] = {DBL_MIN, -DBL_MIN};
    const double w_nan = kNaN, w_inf = kInf, c_nan[] = {kNaN, 0, 0}, f_inf[] = {0, kInf, 0};
    const std::vector<double> col_inf = {1, 2, kInf, 4, 5, 6, 7, 8};
    double rss = rss0;
    double stat = 0, sestat = 0, t = 0;
    int est = 0;
    struct Row { const char *name; std::function<void(ZekFail *)> call; int code; };  // code 0: success
    const Row rows[] = {
        {"bad update", [&](ZekFail *f) { g02dcc(7, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_BAD_PARAM},
        {"negative sx", [&](ZekFail *f) { const int s[] = {1, -2}; g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, s, ip, row_tiny, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_INT_ARG_LT},
        {"sx against ip", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanZero, m, sx.data(), ip, row_tiny, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_IP_INCOMP_WITH_SX},
        {"refit no freedom", [&](ZekFail *f) { double r = rss0; g02ddc(ip, ip, q.data(), n, &r, &df, b.data(), se.data(), cov.data(), &svd, &rank, p.data(), 0.0, f); }, ZE_ZERO_DOF_RESID},
        {"constraints as many as ip", [&](ZekFail *f) { g02dkc(ip, ip, p.data(), c_nan, ip, b.data(), 1.0, 1.0, se.data(), cov.data(), f); }, ZE_2_INT_ARG_GE},
        {"estimable rank above ip", [&](ZekFail *f) { g02dnc(ip, ip + 1, b.data(), cov.data(), p.data(), f_inf, &est, &stat, &sestat, &t, 0.0, f); }, ZE_INT_ARG_CONS},
        {"add nan x", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_nan, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_BAD_PARAM},
        {"add inf y", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, kInf, nullptr, q.data(), n, &rss, f); }, ZE_BAD_PARAM},
        {"add nan weight", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, 1.0, &w_nan, q.data(), n, &rss, f); }, ZE_REAL_ARG_LT},
        {"add inf weight", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, 1.0, &w_inf, q.data(), n, &rss, f); }, ZE_REAL_ARG_LT},
        {"add -inf rss", [&](ZekFail *f) { double r = -kInf; g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, 1.0, nullptr, q.data(), n, &r, f); }, ZE_REAL_ARG_LT},
        {"add huge ip", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), INT_MAX, row_tiny, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_2_INT_ARG_LT},
        {"drop largest row", [&](ZekFail *f) { g02dcc(Zek_ObservDel, Zek_MeanInclude, m, sx.data(), ip, row_big, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_MAT_NOT_UPD},
        {"refit nan rss", [&](ZekFail *f) { double r = kNaN; g02ddc(n, ip, q.data(), n, &r, &df, b.data(), se.data(), cov.data(), &svd, &rank, p.data(), 0.0, f); }, ZE_REAL_ARG_LT},
        {"refit inf tol", [&](ZekFail *f) { double r = rss0; g02ddc(n, ip, q.data(), n, &r, &df, b.data(), se.data(), cov.data(), &svd, &rank, p.data(), kInf, f); }, 0},
        {"add var inf", [&](ZekFail *f) { g02dec(n, ip, q.data(), n, p.data(), nullptr, col_inf.data(), &rss, 0.0, f); }, ZE_BAD_PARAM},
        {"add var nan weight", [&](ZekFail *f) { std::vector<double> w(n, kNaN); g02dec(n, ip, q.data(), n, p.data(), w.data(), x.data(), &rss, 0.0, f); }, ZE_REAL_ARG_LT},
        {"add var dependent", [&](ZekFail *f) { g02dec(n, ip, q.data(), n, p.data(), nullptr, x.data(), &rss, 0.0, f); }, ZE_NVAR_NOT_IND},
        {"add var huge ip", [&](ZekFail *f) { g02dec(n, INT_MAX, q.data(), n, p.data(), nullptr, x.data(), &rss, 0.0, f); }, ZE_2_INT_ARG_LT},
        {"delete var inf rss", [&](ZekFail *f) { double r = kInf; g02dfc(ip, q.data(), n, 1, &r, f); }, ZE_REAL_ARG_LT},
        {"constraints nan", [&](ZekFail *f) { std::vector<double> pp(p.size(), 0.5); g02dkc(ip, 1, pp.data(), c_nan, ip, b.data(), 1.0, 1.0, se.data(), cov.data(), f); }, ZE_BAD_PARAM},
        {"constraints nan df", [&](ZekFail *f) { g02dkc(ip, 1, p.data(), c_nan, ip, b.data(), 1.0, kNaN, se.data(), cov.data(), f); }, ZE_REAL_ARG_LE},
        {"estimable inf", [&](ZekFail *f) { g02dnc(ip, ip, b.data(), cov.data(), p.data(), f_inf, &est, &stat, &sestat, &t, 0.0, f); }, ZE_BAD_PARAM},
        {"estimable zero f", [&](ZekFail *f) { const double z[] = {0, 0, 0}; g02dnc(ip, ip, b.data(), cov.data(), p.data(), z, &est, &stat, &sestat, &t, 0.0, f); }, ZE_STDES_ZERO},
    };
    for (const Row &r : rows) {
        ZekFail fail{};
        r.call(&fail);
        EXPECT_EQ(fail.code, r.code) << r.name << ": " << fail.message;
        EXPECT_EQ(rss, rss0) << r.name;
        if (r.code != 0) {
            EXPECT_EQ(q, q0) << r.name;
        }
        for (double v : b) EXPECT_TRUE(std::isfinite(v)) << r.name;
    }
}

// Refused rows end in an argument exit with the outputs untouched; the others in an exit or finite values.
TEST(HostileGlm, EveryFamilyEndsInAResultOrItsExit) {
    const struct { const char *name; std::function<void(Glm &)> edit; bool refused; } rows[] = {
        {"x nan", [](Glm &g) { g.x[3] = kNaN; }, true},
        {"x +inf", [](Glm &g) { g.x[0] = kInf; }, true},
        {"y -inf", [](Glm &g) { g.y[9] = -kInf; }, true},
        {"y nan", [](Glm &g) { g.y[2] = kNaN; }, true},
        {"weight nan", [](Glm &g) { g.wt.assign(10, 1.0); g.wt[1] = kNaN; }, true},
        {"weight inf", [](Glm &g) { g.wt.assign(10, 1.0); g.wt[1] = kInf; }, true},
        {"offset nan", [](Glm &g) { g.offset.assign(10, 0.0); g.offset[5] = kNaN; }, true},
        {"n zero", [](Glm &g) { g.n = 0; }, true},
        {"n negative", [](Glm &g) { g.n = -5; }, true},
        {"tdv one short", [](Glm &g) { g.tdv = 9; }, true},
        {"max_iter zero", [](Glm &g) { g.max_iter = 0; }, true},
        {"x largest", [](Glm &g) { g.x[4] = DBL_MAX; }, false},
        {"x smallest", [](Glm &g) { for (double &v : g.x) v *= DBL_MIN; }, false},
        {"y largest", [](Glm &g) { g.y[4] = DBL_MAX; g.t.assign(10, DBL_MAX); }, false},
        {"y smallest", [](Glm &g) { for (double &v : g.y) v = DBL_MIN; }, false},
        {"offset huge", [](Glm &g) { g.offset.assign(10, 1e300); }, false},
        {"weights tiny", [](Glm &g) { g.wt.assign(10, DBL_MIN); }, false},
        {"weights huge", [](Glm &g) { g.wt.assign(10, 1e300); }, false},
    };
    const Glm families[] = {Glm(kNormal, Zek_Identity), Glm(kBinomial, Zek_Logistic), Glm(kPoisson, Zek_Log),
                            Glm(kGamma, Zek_Reciprocal)};
    for (const Glm &family : families) {
        for (const auto &r : rows) {
            Glm g(family.fam, family.link, 10, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {2, 1, 3, 4, 3, 6, 5, 8, 7, 9});
            g.t.assign(10, 10.0);
            r.edit(g);
            const Fit f = run(g);
            bool finite = std::isfinite(f.dev) && std::isfinite(f.s);
            for (const auto *v : {&f.b, &f.se, &f.cov}) {
                for (double x : *v) finite = finite && std::isfinite(x);
            }
            EXPECT_TRUE(r.refused ? f.fail.code != 0 && f.b[0] == -7 : f.fail.code != 0 || finite) << g.fam << ": " << r.name;
        }
    }
}

TEST(HostileGlm, ConstraintsAndEstimabilityRefuseBadArguments) {
    std::vector<double> p(12, 0.0), c(3, kNaN), b(3, 1.0), se(3, 1.0), cov(6, 1.0), f = {1, kInf, 0};
    p[0] = 1.0;
    int est = -1;
    double st = 0, sst = 0, z = 0;
    // iconst 0: g02gnc
    const struct { int tdc_or_rank, iconst; double tol; int code; } rows[] = {
        {3, 1, 0, ZE_REAL_ARRAY_CONS}, {2, 1, 0, ZE_2_INT_ARG_LT}, {3, 3, 0, ZE_2_INT_ARG_GE},
        {2, 0, 0, ZE_REAL_ARRAY_CONS}, {4, 0, 0, ZE_2_INT_ARG_GT}, {2, 0, kNaN, ZE_REAL_ARG_LT}};
    for (const auto &r : rows) {
        ZekFail fail{};
        if (r.iconst > 0) g02gkc(3, r.iconst, p.data(), c.data(), r.tdc_or_rank, b.data(), se.data(), cov.data(), &fail);
        if (r.iconst == 0) g02gnc(3, r.tdc_or_rank, b.data(), cov.data(), p.data(), f.data(), &est, &st, &sst, &z, r.tol, &fail);
        EXPECT_EQ(fail.code, r.code);
    }
    EXPECT_EQ(b[0], 1.0);
    EXPECT_EQ(est, -1);
}

TEST(HostileRobust, RegressionAndCovarianceEndInAResultOrTheirExit) {
    // at: an index into x (0..23) or y (24..35); -1 changes n
    const struct { const char *name; int at; double value; bool refused; } rows[] = {
        {"x nan", 12, kNaN, true},         {"y inf", 25, kInf, true},        {"y -inf", 25, -kInf, true},
        {"n equal m", -1, 2, true},        {"n negative", -1, -1, true},     {"y largest", 27, DBL_MAX, false},
        {"x largest", 15, DBL_MAX, false}, {"y smallest", 27, DBL_MIN, false}};
    for (const auto &r : rows) {
        std::vector<double> x(24), y(12), gw(12, 1.0);
        for (int i = 0; i < 12; ++i) {
            x[i] = 1.0;
            x[12 + i] = i + 0.5 * (i % 3);
            y[i] = 1.0 + 0.5 * i + (i % 4 == 0 ? 3.0 : 0.1 * i);
        }
        const int n = r.at < 0 ? static_cast<int>(r.value) : 12;
        (r.at >= 24 ? y[r.at - 24] : x[r.at < 0 ? 0 : r.at]) = r.at < 0 ? x[0] : r.value;
        for (int regtype : {Zek_MEstimate, Zek_Schweppe}) {
            std::vector<double> theta(2, -7), cov(3, -7), rs(12), wgt(12), t(1, -7), d(12), w(12);
            double sigma = 0, c = 1.345;
            ZekFail fail{};
            g02hac(regtype, Zek_Huber, Zek_SigmaProposal2, n, 2, x.data(), 12, y.data(), gw.data(), &c, 1.5, theta.data(),
                   &sigma, cov.data(), rs.data(), wgt.data(), 0.0, 100, &fail);
            EXPECT_TRUE(r.refused ? fail.code != 0 && theta[0] == -7
                                  : fail.code != 0 || (std::isfinite(theta[0]) && std::isfinite(theta[1]) && std::isfinite(sigma)))
                << r.name;
            g02hkc(n, 1, x.data() + 12, 12, 0.0, t.data(), cov.data(), d.data(), w.data(), 0.0, 100, &fail);
            EXPECT_TRUE(fail.code != 0 || (std::isfinite(t[0]) && std::isfinite(cov[0]))) << r.name;
        }
    }
}

} // namespace
