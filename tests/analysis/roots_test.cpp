// Zeros of quartics (C02ALF, C02ANF) against closed forms and high-precision values, and the scalar
// zero finders (c05azc, C05AVF, C05AGF) on a published battery of test equations.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <string>
#include <vector>

#include "analysis/roots_scalar.h"
#include "fft_test_support.h"
#include "zek2/c02.h"
#include "zek2/c05.h"
#include "zek2/messages.h"

#if defined(ZEK_HAVE_GSL)
#include <gsl/gsl_errno.h>
#include <gsl/gsl_roots.h>
#endif

namespace {

using Cx = std::complex<double>;

struct Quartic { std::vector<double> zr, zi, err; int ifail = -1; };

// Real coefficients go to C02ALF, complex ones (any with an imaginary part) to C02ANF; IFAIL -1 prints.
Quartic quartic(Cx e, Cx a, Cx b, Cx c, Cx d, bool complex) {
    Quartic q{std::vector<double>(4), std::vector<double>(4), std::vector<double>(4)};
    q.ifail = -1;
    auto p = [](Cx &z) { return reinterpret_cast<double *>(&z); };
    (complex ? C02ANF : C02ALF)(p(e), p(a), p(b), p(c), p(d), q.zr.data(), q.zi.data(), q.err.data(), &q.ifail);
    return q;
}
Quartic c02alf(double e, double a, double b, double c, double d) { return quartic(e, a, b, c, d, false); }
Quartic c02anf(Cx e, Cx a, Cx b, Cx c, Cx d) { return quartic(e, a, b, c, d, true); }

// Each expected zero is matched by a computed one within 10 times its estimate (and the estimate is
// not absurdly large).
void expect_zeros(const Quartic &q, const std::vector<Cx> &expected) {
    ASSERT_EQ(q.ifail, 0);
    for (const Cx &z : expected) {
        int best = 0;
        for (int i = 1; i < 4; ++i)
            if (std::abs(Cx(q.zr[i], q.zi[i]) - z) < std::abs(Cx(q.zr[best], q.zi[best]) - z)) best = i;
        const double error = std::abs(Cx(q.zr[best], q.zi[best]) - z);
        EXPECT_LE(error, 10.0 * q.err[best]) << z;
        EXPECT_LE(q.err[best], 1e-6 * std::max(1.0, std::abs(z))) << z;
    }
}

TEST(Quartic, RealCoefficients) {
    // (z-1)(z-2)(z-3)(z-4).
    expect_zeros(c02alf(1, -10, 35, -50, 24), {1, 2, 3, 4});
    // z^4 + 1: two conjugate pairs, exactly conjugate.
    const Quartic q = c02alf(1, 0, 0, 0, 1);
    const double r = std::sqrt(0.5);
    expect_zeros(q, {{r, r}, {r, -r}, {-r, r}, {-r, -r}});
    for (int i = 0; i < 4; i += 2) {
        EXPECT_EQ(q.zr[i], q.zr[i + 1]);
        EXPECT_EQ(q.zi[i], -q.zi[i + 1]);
        EXPECT_GT(q.zi[i], 0.0);
    }
    // Zeros over eight orders of magnitude (mpmath polyroots, 40 digits).
    expect_zeros(c02alf(1e-3, 3, -7, 1e5, 2), {-3013.3359875641252975, -0.000019999999971999760078,
                                               {6.6680037820626347554, 182.04765653248312668},
                                               {6.6680037820626347554, -182.04765653248312668}});
    // (z-1)^2 (z+2)(z-3): the estimate of the double zero grows with its ill-condition and still
    // covers the error.
    const Quartic d = c02alf(1, -3, -3, 11, -6);
    ASSERT_EQ(d.ifail, 0);
    for (int i = 0; i < 4; ++i) {
        const double exact = d.zr[i] < -1 ? -2.0 : d.zr[i] > 2 ? 3.0 : 1.0;
        EXPECT_LE(std::abs(Cx(d.zr[i], d.zi[i]) - exact), 10.0 * d.err[i]);
    }
}

TEST(Quartic, ComplexCoefficients) {
    // (z-i)(z+2)(z-1-i)(z+0.5i) expanded.
    expect_zeros(c02anf({1, 0}, {1, -1.5}, {-2, -2.5}, {-0.5, 0.5}, {-1, -1}), {{0, 1}, {-2, 0}, {1, 1}, {0, -0.5}});
    // General coefficients (mpmath polyroots, 40 digits).
    expect_zeros(c02anf({2, -1}, {0.5, 3}, {-4, 1}, {1e3, -2}, {0.25, 0.75}),
                 {{-0.00024850064229655181503, -0.00075049500916110540537},
                  {-7.4789727091810104386, -1.6026580733028213549},
                  {4.9634842129653400754, -6.3439938604163593384},
                  {2.915736996857966915, 6.6474024287283417987}});
}

// ---- Scalar equations ------------------------------------------------------------------------------

struct Equation {
    const char *name;
    std::function<double(double)> f;
    double a, b;
    double root;  // NaN when not known in closed form
};

std::vector<Equation> battery() {
    const double nan = std::nan("");
    return {
        {"sin_minus_half_x", [](double x) { return std::sin(x) - x / 2; }, M_PI / 2, M_PI, 1.8954942670339809},
        {"a_x_exp_bx", [](double x) { return -40.0 * x * std::exp(-x); }, -9, 31, 0.0},
        {"x4_minus_a", [](double x) { return std::pow(x, 4) - 0.2; }, 0, 5, std::pow(0.2, 0.25)},
        {"sin_minus_half", [](double x) { return std::sin(x) - 0.5; }, 0, 1.5, M_PI / 6},
        {"exp_mix", [](double x) { return 2 * x * std::exp(-5.0) - 2 * std::exp(-5 * x) + 1; }, 0, 1, nan},
        {"quadratic_mix", [](double x) { return 17 * x - (1 - 5 * x) * (1 - 5 * x); }, 0, 1, nan},
        {"x2_minus_power", [](double x) { return x * x - std::pow(1 - x, 5); }, 0, 1, nan},
        {"quartic_mix", [](double x) { return 257 * x - std::pow(1 - 5 * x, 4); }, 0, 1, nan},
        {"exp_times", [](double x) { return std::exp(-5 * x) * (x - 1) + std::pow(x, 5); }, 0, 1, nan},
        {"rational", [](double x) { return (2 * x - 1) / x; }, 0.01, 1, 0.5},
        {"cube_root", [](double x) { return std::cbrt(x) - std::cbrt(3.0); }, 1, 100, 3.0},
        {"flat", [](double x) { return x == 0.0 ? 0.0 : x * std::exp(-1 / (x * x)); }, -1, 4, nan},
    };
}

// Runs c05azc to the end; returns the evaluations of f.
int run_c05azc(const std::function<double(double)> &f, double *x, double *y, double tolx, int ir, ZekFail *fail) {
    double c[17];
    int ind = 1, evaluations = 0;
    double fx = 0.0;
    for (int step = 0; step < 2000; ++step) {
        c05azc(x, y, fx, tolx, ir, c, &ind, fail);
        if (ind == 0 || fail->code != 0) break;
        fx = f(*x);
        ++evaluations;
    }
    EXPECT_EQ(ind, 0);
    return evaluations;
}

#if defined(ZEK_HAVE_GSL)
// Evaluations of Brent's method (GSL) on E, stopped by the same test on its bracket.
int brent_evaluations(const Equation &e, double tolx) {
    static const Equation *current;
    static int count;
    current = &e;
    count = 0;
    gsl_function fn{[](double t, void *) { return ++count, current->f(t); }, nullptr};
    gsl_root_fsolver *s = gsl_root_fsolver_alloc(gsl_root_fsolver_brent);
    gsl_root_fsolver_set(s, &fn, e.a, e.b);
    for (int it = 0; it < 500; ++it) {
        gsl_root_fsolver_iterate(s);
        const double lo = gsl_root_fsolver_x_lower(s), hi = gsl_root_fsolver_x_upper(s);
        if ((hi - lo) / 2 <= 0.5 * tolx * std::max(std::fabs(gsl_root_fsolver_root(s)), 1.0)) break;
    }
    gsl_root_fsolver_free(s);
    return count;
}
#endif

// Against Brent's method, when GSL is there: our refinement interpolates linearly until the bracket
// has been slow to shrink twice, where Brent's method takes the inverse quadratic whenever it has three
// distinct points: 133 evaluations against Brent's 127 on this battery, ahead on four equations and
// behind on six.
TEST(ScalarZeros, BatteryByReverseCommunication) {
    int total = 0, brent = 0;
    const double tolx = 1e-10;
    for (const Equation &e : battery()) {
        SCOPED_TRACE(e.name);
        double x = e.a, y = e.b;
        ZekFail fail{};
        const int n = run_c05azc(e.f, &x, &y, tolx, 0, &fail);
        total += n;
        ASSERT_EQ(fail.code, 0);
        EXPECT_LE(n, 60);
        // The final bracket holds a sign change (or an exact zero) and is within the tolerance.
        EXPECT_TRUE(x == y || e.f(x) * e.f(y) <= 0.0);
        EXPECT_LE(std::fabs(x - y), tolx * std::max(1.0, std::fabs(x)));
        if (!std::isnan(e.root)) {
            EXPECT_NEAR(x, e.root, tolx * std::max(1.0, std::fabs(e.root)));
        }
#if defined(ZEK_HAVE_GSL)
        gsl_set_error_handler_off();
        brent += brent_evaluations(e, tolx);
#endif
    }
    EXPECT_LE(total, 12 * 15);
    RecordProperty("evaluations", total);
#if defined(ZEK_HAVE_GSL)
    RecordProperty("brent_evaluations", brent);
    EXPECT_LE(total, brent + brent / 16);
#endif
}

TEST(ScalarZeros, InterleavedSearchesKeepTheirOwnState) {
    double c1[17], c2[17], x1 = 0, y1 = 2, x2 = 1, y2 = 3, f1 = 0, f2 = 0;
    int i1 = 1, i2 = 1;
    ZekFail fail{};
    for (int k = 0; k < 200 && (i1 != 0 || i2 != 0); ++k) {
        if (i1 != 0) {
            c05azc(&x1, &y1, f1, 1e-12, 0, c1, &i1, &fail);
            f1 = x1 * x1 - 2;
        }
        if (i2 != 0) {
            c05azc(&x2, &y2, f2, 1e-12, 0, c2, &i2, &fail);
            f2 = std::cos(x2);
        }
    }
    EXPECT_NEAR(x1, std::sqrt(2.0), 1e-11);
    EXPECT_NEAR(x2, M_PI / 2, 1e-11);
}

TEST(ScalarZeros, RefinementEdges) {
    ZekFail fail{};
    // An exact zero at the start ends at once with y = x.
    double x = 2, y = 5, c[17];
    int ind = -1;
    c05azc(&x, &y, 0.0, 1e-8, 0, c, &ind, &fail);
    EXPECT_EQ(ind, 0);
    EXPECT_EQ(y, 2.0);
    EXPECT_EQ(fail.code, 0);
    // Same signs: code 139 and IND 0.
    x = 1, y = 2, ind = -1;
    c05azc(&x, &y, 1.0, 1e-8, 0, c, &ind, &fail);
    c05azc(&x, &y, 3.0, 1e-8, 0, c, &ind, &fail);
    EXPECT_EQ(fail.code, ZE_FUNC_END_VAL);
    EXPECT_EQ(ind, 0);
    // A pole: 1/(x - 1) changes sign through infinity.
    x = 0, y = 3;
    run_c05azc([](double t) { return 1.0 / (t - 1.0); }, &x, &y, 1e-10, 0, &fail);
    EXPECT_EQ(fail.code, ZE_PROBABLE_POLE);
    // A tolerance below the arithmetic's resolution, absolute part only at 1e8.
    x = 1e8 - 1, y = 1e8 + 1;
    run_c05azc([](double t) { return t - 1e8 - 0.3; }, &x, &y, 1e-20, 1, &fail);
    EXPECT_EQ(fail.code, ZE_XTOL_TOO_SMALL);
    EXPECT_NEAR(x, 1e8 + 0.3, 1e-7);
    // Bad arguments.
    ind = 5;
    c05azc(&x, &y, 0.0, 1e-8, 0, c, &ind, &fail);
    EXPECT_EQ(fail.code, ZE_ARG_INVALID);
    ind = 1;
    c05azc(&x, &y, 0.0, 1e-8, 3, c, &ind, &fail);
    EXPECT_EQ(fail.code, ZE_ARG_INVALID);
}

double ZEK_CALLBACK cubic(const double *x, int *iuser, double *ruser) {
    ++iuser[0];
    return *x * *x * *x - ruser[0];
}

TEST(ScalarZeros, DriverWithUserWords) {
    int iuser[1] = {0};
    double ruser[1] = {2.0};
    double x = 0.0, h = 0.1, eps = 1e-12, eta = 0.0, a = 0, b = 0;
    int ifail = 1;
    C05AGF(&x, &h, &eps, &eta, cubic, &a, &b, iuser, ruser, &ifail);
    ASSERT_EQ(ifail, 0);
    EXPECT_NEAR(x, std::cbrt(2.0), 2e-12);
    EXPECT_LE(a, x);
    EXPECT_GE(b, x);
    EXPECT_GT(iuser[0], 3);
    EXPECT_LT(iuser[0], 80);
}

TEST(ScalarZeros, BracketSearchByReverseCommunication) {
    double x = 0.0, fx = 0.0, h = 0.1, lo = -10, hi = 10, y = 0, c[11];
    int ind = 1, ifail = 1, evaluations = 0;
    for (int k = 0; k < 300 && ind != 0; ++k) {
        C05AVF(&x, &fx, &h, &lo, &hi, &y, c, &ind, &ifail);
        if (ind != 0) fx = std::exp(x) - 10.0, ++evaluations;
    }
    ASSERT_EQ(ifail, 0);
    EXPECT_LE((std::exp(x) - 10.0) * (std::exp(y) - 10.0), 0.0);
    EXPECT_LT(evaluations, 20);
    // Bounds reversed, X outside, both trial points outside, H too small, a bad IND.
    struct Row { double x, h, lo, hi; int ind, ifail; };
    for (const Row &r : {Row{0, 1, 1, -1, 1, 1}, Row{5, 1, -1, 1, 1, 1}, Row{0, 5, -1, 1, 1, 1},
                         Row{1, 1e-20, -1, 2, 1, 2}, Row{0, 1, -1, 1, 7, 3}}) {
        x = r.x, h = r.h, lo = r.lo, hi = r.hi, ind = r.ind, ifail = 1;
        C05AVF(&x, &fx, &h, &lo, &hi, &y, c, &ind, &ifail);
        EXPECT_EQ(ifail, r.ifail);
        EXPECT_EQ(ind, 0);
    }
}

} // namespace
