// Hostile input for the quartic and scalar zero finders: NaN and infinite coefficients and function
// values, the extreme numbers, a user function that never changes sign.  Each row must end in its result
// or its failure exit, in bounded time.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "fft_test_support.h"
#include "zek2/c02.h"
#include "zek2/c05.h"
#include "zek2/messages.h"

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kMin = std::numeric_limits<double>::min();

// Both quartic solvers on each row, IFAIL -1: the exit's text, and the outputs marked on a failure or
// finite on success.
TEST(HostileRoots, QuarticCoefficients) {
    struct Row { const char *name; double e, a, d; int ifail; };
    const Row rows[] = {
        {"nan_lead", kNan, 1, 1, 2},    {"nan_coefficient", 1, kNan, 1, 2}, {"inf_coefficient", 1, 1, kInf, 2},
        {"minus_inf", 1, -kInf, 1, 2},  {"largest_over_smallest", kMin, 1, kMax, 2}, {"overflow", 1e-300, 1, 1e300, 2},
        {"largest_lead", kMax, 1, 1, 0}, {"smallest_all", kMin, kMin, kMin, 2}, {"zero_lead", 0, 1, 1, 1},
    };
    const char *texts[2][3] = {{"", " ** On entry, E .eq. 0.0.", " ** The companion matrix H cannot be formed without overflow."},
                               {"", " ** On entry, E .eq. (0.0,0.0).", " ** The companion matrix H cannot be formed without overflow."}};
    for (const Row &r : rows) {
        SCOPED_TRACE(r.name);
        for (int complex = 0; complex < 2; ++complex) {
            double zr[4], zi[4], err[4];
            const double b[2] = {1, 0}, e[2] = {r.e, 0}, a[2] = {r.a, 1}, d[2] = {r.d, 0};
            int ifail = -1;
            const std::string text =
                fft_test::host_text([&] { (complex ? C02ANF : C02ALF)(e, a, b, b, d, zr, zi, err, &ifail); });
            EXPECT_EQ(ifail, r.ifail) << complex;
            EXPECT_NE(text.find(texts[complex][r.ifail]), std::string::npos) << complex;
            for (int i = 0; i < 4; ++i) {
                EXPECT_TRUE(ifail == 0 ? std::isfinite(zr[i]) && std::isfinite(err[i]) : zr[i] == -2139062144.0);
            }
        }
    }
}

double ZEK_CALLBACK returns_nan(const double *, int *, double *) { return kNan; }
double ZEK_CALLBACK nan_on_right(const double *x, int *, double *) { return *x > 0.5 ? kNan : -1.0; }
double ZEK_CALLBACK huge_line(const double *x, int *, double *) { return kMax * (*x - 0.3); }
double ZEK_CALLBACK pole(const double *x, int *, double *) { return 1.0 / (*x - 0.25); }
double ZEK_CALLBACK positive(const double *x, int *, double *) { return 1.0 + *x * *x; }

// C05AGF with IFAIL -1: the exit, and its text where the row gives one.
TEST(HostileRoots, DriverArgumentsAndFunctions) {
    struct Row { const char *name; ZekC05Function f; double x, h, eps; int ifail; const char *text; };
    const Row rows[] = {
        {"nan_function", returns_nan, 0, 0.1, 1e-8, 2, ""},  {"nan_beyond", nan_on_right, 0, 0.1, 1e-8, 2, ""},
        {"nan_x", huge_line, kNan, 0.1, 1e-8, 2, ""},        {"nan_h", huge_line, 0, kNan, 1e-8, 1, ""},
        {"nan_eps", huge_line, 0, 0.1, kNan, 1, ""},         {"inf_h", huge_line, 0, kInf, 1e-8, 1, ""},
        {"overflowing_f", huge_line, 0, 0.1, 1e-10, 0, ""},  {"largest_x", huge_line, kMax, -kMax / 4, 1e-8, 2, ""},
        {"eps_zero", huge_line, 0, 0.1, 0.0, 1, " ** On entry, EPS .le. 0.0: EPS =  0.0000E+00."},
        {"h_below_x", huge_line, 1, 1e-20, 1e-8, 1, " ** On entry, X+H .eq. X:"},
        {"pole", pole, 0.2, 0.1, 1e-10, 3, " ** Solution may be a pole rather than a zero."},
        {"no_sign_change", positive, 0, 0.1, 1e-10, 2, " ** An interval containing the zero could not be found."},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.name);
        double x = r.x, h = r.h, a = 0, b = 0;
        const double eta = 0.0;
        int iuser = 0, ifail = -1;
        double ruser = 0;
        const std::string text =
            fft_test::host_text([&] { C05AGF(&x, &h, &r.eps, &eta, r.f, &a, &b, &iuser, &ruser, &ifail); });
        EXPECT_EQ(ifail, r.ifail);
        EXPECT_NE(text.find(r.text), std::string::npos);
    }
}

TEST(HostileRoots, ReverseCommunicationValues) {
    // c05azc with non-finite values from the caller ends the search; so do NaN tolerances and points.
    struct Row { const char *name; double x, y, tolx, fx, fy; int code; };
    const Row rows[] = {
        {"nan_first_value", 0, 1, 1e-8, kNan, 1, ZE_PROBABLE_POLE}, {"inf_second_value", 0, 1, 1e-8, -1, kInf, ZE_PROBABLE_POLE},
        {"nan_tolerance", 0, 1, kNan, -1, 1, ZE_REAL_ARG_LE},       {"largest_ends", -kMax, kMax, 1e-8, -1, 1, 0}, {"largest_one_side", -kMax, 1, 1e-8, -1, 1, 0},
        {"nan_point", kNan, 1, 1e-8, -1, 1, 0},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.name);
        double x = r.x, y = r.y, c[17];
        int ind = -1;
        ZekFail fail{};
        c05azc(&x, &y, r.fx, r.tolx, 0, c, &ind, &fail);
        if (fail.code == 0 && ind != 0) c05azc(&x, &y, r.fy, r.tolx, 0, c, &ind, &fail);
        // Then whatever the search asks for, from a linear function, to its end.
        for (int k = 0; k < 3000 && fail.code == 0 && ind != 0; ++k) c05azc(&x, &y, x - 0.25, r.tolx, 0, c, &ind, &fail);
        if (r.code != 0) {
            EXPECT_EQ(fail.code, r.code);
        }
        EXPECT_TRUE(ind == 0 || fail.code != 0);
    }
    // C05AVF: NaN bounds and a function that is never finite.
    double x = 0, fx = 0, h = 0.1, lo = kNan, hi = 1, y = 0, c[11];
    int ind = 1, ifail = 1;
    C05AVF(&x, &fx, &h, &lo, &hi, &y, c, &ind, &ifail);
    EXPECT_EQ(ifail, 1);
    lo = -1, ind = 1, ifail = 1;
    for (int k = 0; k < 500 && ind != 0; ++k) {
        ifail = 1;
        C05AVF(&x, &fx, &h, &lo, &hi, &y, c, &ind, &ifail);
        fx = kNan;
    }
    EXPECT_EQ(ifail, 4);
}

} // namespace
