// The multivariate normal rectangle probability against closed forms: independent variables (a product
// of normal tails), the orthant of three variables (1/8 plus the arcsines over 4 pi), the equicorrelated
// orthant with rho = 1/2 (1/(n+1)), the bivariate routine, and equicorrelated tails against the
// one-dimensional integral over the common factor.  Then the failure exits of both layers.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "zek2/g01.h"
#include "zek2/messages.h"

namespace {

constexpr double kInf = INFINITY;

double phi(double x) { return g01eac(Zek_LowerTail, x, nullptr); }

// The covariance of order n with standard deviations SD and every correlation RHO.
std::vector<double> covariance(int n, const std::vector<double> &sd, double rho) {
    std::vector<double> s(n * n);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) s[i * n + j] = sd[i] * sd[j] * (i == j ? 1.0 : rho);
    }
    return s;
}

// P(X_i <= b_i for all i) for equicorrelated rho >= 0: the integral over the common factor z of
// phi(z) prod Phi((b_i - sqrt(rho) z)/sqrt(1 - rho)), by the trapezoidal rule (spectrally accurate for
// this smooth, fast-decaying integrand).
double equicorrelated_lower(const std::vector<double> &b, double rho) {
    const double h = 0.005, sr = std::sqrt(rho), sq = std::sqrt(1.0 - rho);
    double sum = 0.0;
    for (int k = -2400; k <= 2400; ++k) {
        const double z = k * h;
        double f = std::exp(-0.5 * z * z) / std::sqrt(2.0 * M_PI);
        for (double bi : b) f *= phi((bi - sr * z) / sq);
        sum += f;
    }
    return sum * h;
}

TEST(MultivariateNormal, ClosedForms) {
    struct Case {
        const char *name;
        int tail, n;
        std::vector<double> a, b, mu, sd;
        double rho;  // equicorrelation; 0 independent
        double want;
        double rel;  // the rule is asked for a tenth of it (its estimate is three standard errors)
    };
    const std::vector<double> ones(10, 1.0);
    const double orthant3 = 0.125 + (std::asin(0.3) + std::asin(0.3) + std::asin(0.3)) / (4.0 * M_PI);
    const std::vector<double> b5 = {-1.0, 0.5, 2.0, -0.3, 1.1};
    const std::vector<Case> cases = {
        {"independent lower, scaled", Zek_LowerTail, 3, {}, {1.0, -2.0, 6.0}, {0.0, -1.0, 2.0}, {1.0, 2.0, 4.0}, 0.0, phi(1.0) * phi(-0.5) * phi(1.0), 1e-14},
        {"independent upper far", Zek_UpperTail, 4, {9.0, 8.0, 8.5, 9.5}, {}, {0, 0, 0, 0}, ones, 0.0, phi(-9.0) * phi(-8.0) * phi(-8.5) * phi(-9.5), 1e-13},
        {"independent central", Zek_Central, 5, {-1, -2, 0, 0.5, -kInf}, {1, 0, 3, 2, 0.7}, {0, 0, 0, 0, 0}, ones, 0.0, (phi(1) - phi(-1)) * (phi(0) - phi(-2)) * (phi(3) - phi(0)) * (phi(2) - phi(0.5)) * phi(0.7), 1e-13},
        {"orthant of three", Zek_LowerTail, 3, {}, {0, 0, 0}, {0, 0, 0}, ones, 0.3, orthant3, 1e-4},
        {"orthant of three, upper", Zek_UpperTail, 3, {0, 0, 0}, {}, {0, 0, 0}, ones, 0.3, orthant3, 1e-4},
        {"orthant of six, rho 1/2", Zek_LowerTail, 6, {}, std::vector<double>(6, 0.0), std::vector<double>(6, 0.0), ones, 0.5, 1.0 / 7.0, 1e-4},
        {"orthant of ten, rho 1/2", Zek_UpperTail, 10, std::vector<double>(10, 0.0), {}, std::vector<double>(10, 0.0), ones, 0.5, 1.0 / 11.0, 1e-3},
        {"equicorrelated five", Zek_LowerTail, 5, {}, b5, std::vector<double>(5, 0.0), ones, 0.7, equicorrelated_lower(b5, 0.7), 1e-4},
        {"equicorrelated far tail", Zek_LowerTail, 4, {}, {-6, -5.5, -6.5, -5}, {0, 0, 0, 0}, ones, 0.4, equicorrelated_lower({-6, -5.5, -6.5, -5}, 0.4), 1e-2},
        {"equicorrelated, shifted mean", Zek_UpperTail, 3, {3.0, 4.0, 5.0}, {}, {4, 5, 6}, ones, 0.2, equicorrelated_lower({1.0, 1.0, 1.0}, 0.2), 1e-4},
    };
    for (const Case &c : cases) {
        const int n = c.n;
        const std::vector<double> sig = covariance(n, c.sd, c.rho);
        const std::vector<double> a = c.a.empty() ? std::vector<double>(n, NAN) : c.a;
        const std::vector<double> b = c.b.empty() ? std::vector<double>(n, NAN) : c.b;
        const double tol = c.rel / 10.0;
        ZekFail fail{};
        const double p = g01hbc(c.tail, n, a.data(), b.data(), c.mu.data(), sig.data(), n, tol, 2000000, &fail);
        EXPECT_EQ(fail.code, 0) << c.name << ": " << fail.message;
        EXPECT_NEAR(p, c.want, c.rel * c.want) << c.name;
    }
}

TEST(MultivariateNormal, TwoVariablesMatchTheBivariateRoutine) {
    const double rho = -0.6, s0 = 2.0, s1 = 0.5;
    const double sig[4] = {s0 * s0, rho * s0 * s1, rho * s0 * s1, s1 * s1};
    const double mu[2] = {1.0, -1.0};
    const double a[2] = {5.0, -0.5}, b[2] = {13.0, 0.0};
    const double za[2] = {2.0, 1.0}, zb[2] = {6.0, 2.0};
    const double lower = g01hbc(Zek_LowerTail, 2, a, b, mu, sig, 2, 1e-6, 0, nullptr);
    EXPECT_NEAR(lower, g01hac(zb[0], zb[1], rho, nullptr), 1e-15);
    EXPECT_NEAR(g01hbc(Zek_UpperTail, 2, a, b, mu, sig, 2, 1e-6, 0, nullptr),
                g01hac(-za[0], -za[1], rho, nullptr), 1e-15);
    // The central rectangle lies in the upper tail of the first variable.  The reference's corners, not
    // mirrored, lose about 1e-16 of Phi(2) to cancellation: a few 1e-12 relative here.
    const double central = g01hac(zb[0], zb[1], rho, nullptr) - g01hac(za[0], zb[1], rho, nullptr) -
                           g01hac(zb[0], za[1], rho, nullptr) + g01hac(za[0], za[1], rho, nullptr);
    EXPECT_NEAR(g01hbc(Zek_Central, 2, a, b, mu, sig, 2, 1e-6, 0, nullptr), central, 1e-11 * central);
}

TEST(MultivariateNormal, Failures) {
    const double sig3[9] = {1, 0.5, 0.5, 0.5, 1, 0.5, 0.5, 0.5, 1};
    const double notpd[9] = {1, 0.9, -0.9, 0.9, 1, 0.9, -0.9, 0.9, 1};
    const double z[3] = {0, 0, 0}, one[3] = {1, 1, 1}, mixed[3] = {1, -1, 1}, nan3[3] = {0, NAN, 0};
    struct Row {
        const char *name;
        int tail, n, tdsig, maxpts;
        double tol;
        const double *a, *b, *mu, *sig;
        int code, ifail;
    };
    const Row rows[] = {
        {"n 11 before the matrix", Zek_LowerTail, 11, 11, 100, 1e-3, z, z, z, nullptr, ZE_INT_ARG_CONS, 1},
        {"n 0", Zek_LowerTail, 0, 3, 100, 1e-3, z, z, z, sig3, ZE_INT_ARG_CONS, 1},
        {"tdsig short", Zek_LowerTail, 3, 2, 100, 1e-3, z, z, z, sig3, ZE_2_INT_ARG_LT, 1},
        {"budget short", Zek_LowerTail, 3, 3, 11, 1e-3, z, z, z, sig3, ZE_INT_ARG_CONS, 1},
        {"tol zero", Zek_LowerTail, 3, 3, 100, 0.0, z, z, z, sig3, ZE_REAL_ARG_CONS, 1},
        {"empty interval", Zek_Central, 3, 3, 100, 1e-3, z, mixed, z, sig3, ZE_REAL_ARRAY_CONS, 2},
        {"not positive definite", Zek_LowerTail, 3, 3, 1000, 1e-3, z, one, z, notpd, ZE_NOT_POS_DEF, 3},
        {"nan limit", Zek_LowerTail, 3, 3, 1000, 1e-3, z, nan3, z, sig3, ZE_BAD_PARAM, 1},
        {"budget spent", Zek_LowerTail, 3, 3, 12, 1e-12, z, mixed, z, sig3, ZE_NOT_REQ_ACC, 4},
    };
    for (const Row &r : rows) {
        ZekFail fail{};
        const double p = g01hbc(r.tail, r.n, r.a, r.b, r.mu, r.sig, r.tdsig, r.tol, r.maxpts, &fail);
        EXPECT_EQ(fail.code, r.code) << r.name << ": " << fail.message;
        if (r.ifail == 4) {
            EXPECT_GT(p, 0.0) << r.name;  // the estimate is returned
        } else {
            EXPECT_EQ(p, 0.0) << r.name;
        }
        const char tail = r.tail == Zek_LowerTail ? 'L' : 'C';
        double wk[64] = {};
        int ifail = 1;
        G01HBF(&tail, &r.n, r.a, r.b, r.mu, r.sig, &r.tdsig, &r.tol, wk, &r.maxpts, &ifail, 1);
        EXPECT_EQ(ifail, r.ifail) << r.name;
    }
    // The tails the routine does not take: two-tailed significance in either layer.
    ZekFail fail{};
    EXPECT_EQ(g01hbc(Zek_TwoTailSignif, 3, z, one, z, sig3, 3, 1e-3, 100, &fail), 0.0);
    EXPECT_EQ(fail.code, ZE_BAD_PARAM);
    EXPECT_NE(std::string(fail.message).find("tail"), std::string::npos);
    int ifail = 1, n = 3, ld = 3, lwk = 100;
    double tol = 1e-3, wk[12];
    EXPECT_EQ(G01HBF("S", &n, z, one, z, sig3, &ld, &tol, wk, &lwk, &ifail, 1), 0.0);
    EXPECT_EQ(ifail, 1);
}

} // namespace
