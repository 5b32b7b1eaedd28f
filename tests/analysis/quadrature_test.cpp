// Quadrature against closed forms: the one-dimensional battery (smooth, endpoint and interior
// singularities, oscillation, a jump, a peak), cubature over boxes, balls and simplices.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "zek2/d01.h"

namespace {

const double kPi = 3.14159265358979323846;
using Fn = std::function<double(double)>;
double call_fn(double x, void *user) { return (*static_cast<Fn *>(user))(x); }

struct Integral { const char *label; Fn f; double a, b, exact; };

const Integral kBattery[] = {
    {"quadratic_one_piece", [](double x) { return x * x; }, 0, 3, 9},
    {"exp", [](double x) { return std::exp(x); }, 0, 1, std::exp(1.0) - 1},
    {"x_log", [](double x) { return x > 0 ? std::sqrt(x) * std::log(1 / x) : 0.0; }, 0, 1, 1 / 2.25},
    {"inverse_sqrt", [](double x) { return x > 0 ? 1 / std::sqrt(x) : 0.0; }, 0, 1, 2},
    {"log", [](double x) { return x > 0 ? std::log(x) : 0.0; }, 0, 1, -1},
    {"x_pow_m09", [](double x) { return x > 0 ? std::pow(x, -0.9) : 0.0; }, 0, 1, 10},
    {"interior_abs", [](double x) { return std::pow(std::fabs(x - 1.0 / 3), -0.5); }, 0, 1, 2 * (std::sqrt(2.0 / 3) + std::sqrt(1.0 / 3))},
    {"log_interior", [](double x) { return std::log(std::fabs(x - 0.7)); }, 0, 1, 0.3 * std::log(0.3) + 0.7 * std::log(0.7) - 1},
    {"oscillatory", [](double x) { return std::sin(100 * x); }, 0, 1, (1 - std::cos(100.0)) / 100},
    {"jump", [](double x) { return x < 1.0 / 3 ? 0.0 : 1.0; }, 0, 1, 2.0 / 3},
    {"peak", [](double x) { return 1e-4 / ((x - kPi / 4) * (x - kPi / 4) + 1e-8); }, 0, 1, std::atan((1 - kPi / 4) * 1e4) + std::atan(kPi / 4 * 1e4)},
    {"reversed_sqrt", [](double x) { return x > 0 ? 1 / std::sqrt(x) : 0.0; }, 1, 0, -2},
};

class OneDimension : public ::testing::TestWithParam<Integral> {};

// The estimate covers the error, and the record tiles the interval in ascending order of left ends,
// with 0.0 behind the pieces used.
TEST_P(OneDimension, EstimateCoversTheErrorAndRecordIsSorted) {
    Integral c = GetParam();
    double result = 0, abserr = 0;
    ZekQuadProgress qp{};
    ZekFail fail{};
    d01sjc(call_fn, c.a, c.b, 0.0, 1e-10, 200, &result, &abserr, &qp, &c.f, &fail);
    EXPECT_EQ(fail.code, 0) << fail.message;
    EXPECT_LE(std::fabs(result - c.exact), std::max(abserr, 1e-14 * std::fabs(c.exact)));
    EXPECT_LE(std::fabs(result - c.exact), 1e-9 * std::fabs(c.exact));
    ASSERT_GE(qp.num_subint, 1);
    EXPECT_EQ(qp.fun_count, 42 * qp.num_subint - 21);
    double covered = 0;
    for (int i = 0; i < qp.num_subint; ++i) {
        EXPECT_TRUE(i == 0 || qp.sub_int_beg_pts[i - 1] < qp.sub_int_beg_pts[i]);
        covered += std::fabs(qp.sub_int_end_pts[i] - qp.sub_int_beg_pts[i]);
    }
    EXPECT_NEAR(covered, std::fabs(c.b - c.a), 1e-12);
    for (int i = qp.num_subint; i < 200; ++i) EXPECT_EQ(qp.sub_int_beg_pts[i] + qp.sub_int_result[i], 0.0);
    for (double *p : {qp.sub_int_beg_pts, qp.sub_int_end_pts, qp.sub_int_error, qp.sub_int_result}) std::free(p);
}

INSTANTIATE_TEST_SUITE_P(Battery, OneDimension, ::testing::ValuesIn(kBattery),
                         [](const ::testing::TestParamInfo<Integral> &i) { return std::string(i.param.label); });

// kind 0: exp of the sum; 1: product of cosines; 2: a polynomial of degree 7.
double box_fn(int n, const double x[], void *user) {
    const int kind = *static_cast<int *>(user);
    double s = 0, p = 1;
    for (int i = 0; i < n; ++i) s += x[i], p *= std::cos(x[i]);
    if (kind == 2) return std::pow(x[0], 4) * std::pow(x[1], 3) + x[0] * x[0] * x[1] * x[1] * x[n - 1] * x[n - 1];
    return kind == 0 ? std::exp(s) : p;
}

TEST(Box, ClosedFormsInTwoToSixDimensionsAndDegreeSevenOnOneApplication) {
    for (int n = 2; n <= 6; ++n) {
        std::vector<double> a(n, 0.0), b(n, 1.0), a3(n, -1.0), b3(n, 2.0);
        double finest, acc;
        ZekFail fail{};
        for (int kind = 0; kind <= 1; ++kind) {
            int minpts = 0;
            const double eps = n <= 4 ? 1e-8 : 1e-6;
            d01wcc(n, box_fn, a.data(), b.data(), &minpts, 2000000, eps, &finest, &acc, &kind, &fail);
            const double exact = std::pow(kind == 0 ? std::exp(1.0) - 1 : std::sin(1.0), n);
            EXPECT_EQ(fail.code, 0) << n << " " << kind;
            EXPECT_NEAR(finest, exact, eps * exact) << n << " " << kind;
        }
        // x^4 y^3 + x^2 y^2 z^2 over [-1, 2]^n (n = 2: x^2 y^4), with the budget of one application.
        int kind = 2, cost = (1 << n) + 2 * n * n + 2 * n + 1, minpts = 0;
        d01wcc(n, box_fn, a3.data(), b3.data(), &minpts, cost, 0.5, &finest, &acc, &kind, &fail);
        const double exact = n == 2 ? 33.0 / 5 * 15.0 / 4 + 3.0 * 33.0 / 5
                                    : std::pow(3.0, n - 2) * (33.0 / 5 * 15.0 / 4) + std::pow(3.0, n);
        EXPECT_EQ(minpts, cost);
        EXPECT_NEAR(finest, exact, 1e-12 * exact) << n;
    }
}

struct BallCase { const char *label; int ndim, method, icoord; double radius; ZekD01Function f; double exact, tol; };

double r_squared(const int *n, const double x[], int[], double[]) {
    double s = 0;
    for (int i = 0; i < *n; ++i) s += x[i] * x[i];
    return s;
}
double polar_r_squared(const int *, const double x[], int[], double[]) { return x[0] * x[0]; }
double gauss_radial(const int *, const double x[], int[], double[]) { return std::exp(-x[0] * x[0]); }
double inverse_r(const int *n, const double x[], int[], double[]) { return 1 / std::sqrt(r_squared(n, x, 0, 0)); }
double cubic_mix(const int *n, const double x[], int[], double[]) {
    return 1 + x[0] * x[1] + x[0] * x[0] * x[0] + 2 * x[*n - 1] * x[*n - 1];
}

const BallCase kBalls[] = {
    {"disk_r2", 2, 0, 0, 1.0, r_squared, kPi / 2, 1e-5},
    {"disk_polar", 2, 2, 1, 1.0, polar_r_squared, kPi / 2, 1e-5},
    {"ball3_cubic", 3, 0, 0, 1.5, cubic_mix, 4 * kPi / 3 * std::pow(1.5, 3) + 8 * kPi / 15 * std::pow(1.5, 5), 1e-4},
    {"ball4_r2_graded_both", 4, 6, 0, 2.0, r_squared, kPi * kPi / 3 * 64, 1e-4},
    {"disk_gauss_radial", 2, 4, 2, 2.0, gauss_radial, kPi * (1 - std::exp(-4.0)), 1e-7},
    {"ball3_inverse_r", 3, 1, 0, 1.0, inverse_r, 2 * kPi, 1e-4},
};

class Ball : public ::testing::TestWithParam<BallCase> {};

TEST_P(Ball, ConvergesToTheClosedForm) {
    const BallCase &c = GetParam();
    double result, esterr;
    int nevals, ifail = 1;
    D01JAF(c.f, &c.ndim, &c.radius, &c.tol, &c.tol, &c.method, &c.icoord, &result, &esterr, &nevals, 0, 0, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_NEAR(result, c.exact, 20 * c.tol * std::fabs(c.exact)) << esterr;
}

INSTANTIATE_TEST_SUITE_P(Closed, Ball, ::testing::ValuesIn(kBalls),
                         [](const ::testing::TestParamInfo<BallCase> &i) { return std::string(i.param.label); });

double monomial(const int *n, const double x[], int iuser[], double[]) {
    double v = 1;
    for (int i = 0; i < *n; ++i) v *= std::pow(x[i], iuser[i]);
    return v;
}
double exp_sum(const int *n, const double x[], int[], double[]) { return std::exp(x[0] + x[*n - 1]); }
double factorial(int k) { return std::tgamma(k + 1.0); }

// x1^(2k-1-j) x2^j over the unit simplex is a! b! / (a + b + n)!: exact after order k.
TEST(Simplex, LadderToOrderKIsExactToDegreeTwoKMinusOne) {
    for (int n = 2; n <= 4; ++n) {
        const int iv1 = n + 1, iv2 = 2 * n + 2;
        for (int k = 1; k <= 4; ++k) {
            for (int j = 0; j <= 2 * k - 1; ++j) {
                std::vector<double> vert(iv1 * iv2, 0.0), finvls(k), esterr(k);
                for (int i = 0; i < n; ++i) vert[(i + 1) + i * iv1] = 1.0;
                std::vector<int> powers(n, 0);
                powers[0] = 2 * k - 1 - j, powers[1] = j;
                int minord = 0, ifail = 1;
                D01PAF(&n, vert.data(), &iv1, &iv2, monomial, &minord, &k, finvls.data(), esterr.data(), powers.data(),
                       nullptr, &ifail);
                ASSERT_EQ(ifail, 0);
                const double exact = factorial(powers[0]) * factorial(powers[1]) / factorial(2 * k - 1 + n);
                EXPECT_NEAR(finvls[0], exact, 1e-13 + 1e-12 * exact) << n << " " << k << " " << j;
            }
        }
    }
}

// exp(x + y) over the triangle (0,0), (2,0), (0,2) is 1 + e^2; a ladder stopped at order 3 and resumed
// gives the same table as one call.
TEST(Simplex, ExtrapolatedLadderResumesWhereItStopped) {
    const int n = 2, iv1 = 3, iv2 = 6, third = 3;
    std::vector<double> v1(iv1 * iv2, 0.0), f1(6), e1(6), f2(6), e2(6);
    v1[1] = v1[5] = 2.0;
    std::vector<double> v2 = v1;
    int minord = 0, maxord = 6, ifail = 1;
    D01PAF(&n, v1.data(), &iv1, &iv2, exp_sum, &minord, &maxord, f1.data(), e1.data(), 0, 0, &ifail);
    ASSERT_EQ(ifail, 0);
    EXPECT_NEAR(f1[0], 1 + std::exp(2.0), 1e-9);
    EXPECT_LE(e1[5], 1e-7);
    minord = 0;
    D01PAF(&n, v2.data(), &iv1, &iv2, exp_sum, &minord, &third, f2.data(), e2.data(), 0, 0, &ifail);
    EXPECT_EQ(minord, 3);
    D01PAF(&n, v2.data(), &iv1, &iv2, exp_sum, &minord, &maxord, f2.data(), e2.data(), 0, 0, &ifail);
    EXPECT_EQ(f1, f2);
    EXPECT_EQ(e1, e2);
    EXPECT_EQ(v2[1 + 5 * iv1], 1 + 3 + 6 + 10 + 15 + 21);  // C(k + 1, 2) points at order k
}

} // namespace
