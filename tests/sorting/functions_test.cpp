// Chapter S: accuracy against high-precision reference values, defined values at the thresholds, every
// failure exit with its code or IFAIL and text, and the double-double helpers of the tails.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "sorting/double_double.h"
#include "sorting/functions.h"
#include "zek2/s.h"

namespace {

// Reference values computed with mpmath at 40 significant digits, at the double arguments shown
// (branch boundaries of each routine and their neighbouring doubles among them): one table a file in
// tests/data/function_values, a row a line of numbers, '#' lines naming the expression.
std::vector<std::vector<long double>> rows_of(const char *name) {
    std::ifstream in(std::string(ZEK_TEST_DATA_DIR) + "/function_values/" + name + ".txt");
    std::vector<std::vector<long double>> rows;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        rows.emplace_back();
        for (std::istream_iterator<std::string> f(fields), end; f != end; ++f)
            rows.back().push_back(std::strtold(f->c_str(), nullptr));
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

// Error in units of the last place of the reference value (subnormal values in units of the smallest
// normal's last place).
double ulps(double got, long double expected) {
    const long double magnitude = std::max(std::fabs(expected), static_cast<long double>(DBL_MIN));
    int exponent = 0;
    std::frexp(static_cast<double>(magnitude), &exponent);
    return static_cast<double>(std::fabs(static_cast<long double>(got) - expected) / std::ldexp(1.0L, exponent - 53));
}

TEST(SpecialAccuracy, EachRoutineWithinAFewUnitsInTheLastPlace) {
    using F = std::function<double(double, double)>;
    ZekFail fail{};
    const struct {
        const char *table;
        F f;
        double limit;
    } cases[] = {
        {"log1p", [&](double x, double) { return zek::s01bac(x, &fail); }, 1.5},
        {"tan", [&](double x, double) { return zek::s07aac(x, &fail); }, 3.0},
        {"gamma", [&](double x, double) { return s14aac(x, &fail); }, 3.0},
        {"log_gamma", [&](double x, double) { return s14abc(x, &fail); }, 4.0},
        {"erf", [](double x, double) { return S15_ERF(x); }, 4.0},
        {"erfc", [](double x, double) { return S15_ERFC(x); }, 6.0},
        {"upper_tail", [](double x, double) { return S15_UPPER_TAIL(x); }, 6.0},
        {"lower_tail", [](double x, double) { return S15_LOWER_TAIL(x); }, 6.0},
        {"rc", [&](double x, double y) { return s21bac(x, y, &fail); }, 6.0},
        {"arccos", [](double x, double) { char errbuf[200]; int ifail = 1; return zek::S09ABF(x, errbuf, &ifail, 200); }, 1.0},
    };
    for (const auto &c : cases) {
        double worst = 0.0;
        for (const auto &r : rows_of(c.table)) {
            const double x = static_cast<double>(r.at(0)), y = r.size() > 2 ? static_cast<double>(r.at(1)) : 0.0;
            const double e = ulps(c.f(x, y), r.back());
            EXPECT_FALSE(std::isnan(e)) << c.table << " at " << x;
            worst = std::max(worst, e);
        }
        EXPECT_LE(worst, c.limit) << c.table;
    }
}

TEST(SpecialAccuracy, IncompleteGammaWithinItsConditioning) {
    // The ratios are as sensitive to a relative change of x as their condition number
    // x^a e^-x / (Gamma(a) min(P, Q)) says; the smaller ratio is computed directly and must stay
    // within a modest multiple of that, the larger one follows as 1 minus it.
    for (const auto &r : rows_of("incomplete_gamma")) {
        const double a = static_cast<double>(r.at(0)), x = static_cast<double>(r.at(1));
        double p = -1.0, q = -1.0;
        ZekFail fail{};
        s14bac(a, x, 0.0, &p, &q, &fail);
        ASSERT_EQ(fail.code, 0) << a << " " << x;
        const bool p_smaller = r.at(2) < r.at(3);
        EXPECT_LE(ulps(p_smaller ? p : q, p_smaller ? r.at(2) : r.at(3)) / (1.0 + static_cast<double>(r.at(4))), 16.0)
            << "a=" << a << " x=" << x;
        EXPECT_NEAR(p + q, 1.0, 4 * DBL_EPSILON) << "a=" << a << " x=" << x;
    }
}

TEST(SpecialValues, ThresholdsGiveTheirDefinedValues) {
    EXPECT_EQ(S15_ERFC(26.6), 0.0);
    EXPECT_GT(S15_ERFC(26.5), 0.0);
    EXPECT_TRUE(S15_ERFC(-6.25) == 2.0 && S15_ERF(6.25) == 1.0 && S15_ERF(-6.25) == -1.0);
    EXPECT_TRUE(S15_LOWER_TAIL(0.0) == 0.5 && S15_UPPER_TAIL(0.0) == 0.5);
    ZekFail fail{};
    EXPECT_NEAR(s14aac(170.0, &fail) / 4.2690680090047052749e304, 1.0, 4 * DBL_EPSILON);
    EXPECT_EQ(fail.code, 0);
    // x = 0 gives P = 0 and Q = 1 with no code, whatever a; so does Gamma(a + 1) beyond the range of
    // s14abc, where the ratios are decided by which side of a x lies.
    for (const auto &[a, x] : {std::pair{1e-5, 0.0}, {1.0, 0.0}, {50.0, 0.0}, {1e300, 0.0}, {1e306, 1e305}}) {
        double p = -1, q = -1;
        s14bac(a, x, 0.0, &p, &q, &fail);
        EXPECT_TRUE(fail.code == 0 && p == 0.0 && q == 1.0) << a << " " << x;
    }
}

// One call of a C-style routine by name: its value; for s14bac P + Q (0 after code 420); for the
// tangent the sign of a finite nonzero value.  Within 1e-14 relative of an odd multiple of pi/2 the
// tangent is taken as a pole: code 417 and a finite value of the sign the function has on that side.
double c_style(const std::string &name, double x, double y, ZekFail *f) {
    if (name == "s14aac") return s14aac(x, f);
    if (name == "s14abc") return s14abc(x, f);
    if (name == "s01bac") return zek::s01bac(x, f);
    if (name == "s21bac") return s21bac(x, y, f);
    if (name == "s07aac") {
        const double t = zek::s07aac(x, f);
        return std::isfinite(t) && t != 0.0 ? std::copysign(1.0, t) : t;
    }
    double p = -1, q = -1;
    s14bac(x, y, 0.0, &p, &q, f);
    return f->code == 420 ? 0.0 : p + q;
}

TEST(SpecialFailures, CStyleCodesTextsAndValues) {
    const double half_pi = 1.5707963267948966, gamma_tiny = 4.4843049327354256e307;  // half_pi just below pi/2
    const std::string gt = "ZE_REAL_ARG_GT:\n  On entry, ", lt = "ZE_REAL_ARG_LT:\n  On entry, ",
                      le = "ZE_REAL_ARG_LE:\n  On entry, ";
    const struct {
        const char *name;
        double x, y, value;
        int code;
        std::string message;  // checked when not empty
    } cases[] = {
        {"s14aac", 171.0, 0, 4.3e304, 7, gt + "x must not be greater than  2e+02: x = 171."},
        {"s14aac", 170.5, 0, 4.3e304, 7, ""},
        {"s14aac", -171.5, 0, 0.0, 5, lt + "x must not be less than  -2e+02: x = -171.5."},
        {"s14aac", -170.5, 0, 0.0, 5, ""},
        {"s14aac", 1e-310, 0, gamma_tiny, 707,
         "ZE_REAL_ARG_TOO_SMALL:\n  On entry, abs(x) must not be less than    2e-308: x = 1e-310."},
        {"s14aac", -1e-310, 0, -gamma_tiny, 707, ""},
        {"s14aac", 0.0, 0, gamma_tiny, 707, ""},
        {"s14aac", -2.0, 0, 4.3e304, 708, "ZE_REAL_ARG_NEG_INT:\n  On entry, x must not be a negative integer: x = -2."},
        {"s14abc", 0.0, 0, 0.0, 6, le + "x must not be less than or equal to 0.0: x = 0."},
        {"s14abc", -2.0, 0, 0.0, 6, ""},
        {"s14abc", 1e306, 0, 1.79e308, 7, gt + "x must not be greater than  2.5e+305: x = 1e+306."},
        {"s14abc", 3e305, 0, 1.79e308, 7, ""},
        {"s01bac", -1.0, 0, 0.0, 6, le + "x must not be less than or equal to -1.0: x = -1."},
        {"s07aac", -2e10, 0, 0.0, 7, gt + "abs(x) must not be greater than fl1: abs(x) = 2e+10."},
        {"s07aac", half_pi, 0, 1.0, 417, "ZE_FUN_INF:\n  Function infinite."},
        {"s07aac", -3.0 * half_pi, 0, -1.0, 417, ""},  // just above -3 pi/2: large and negative
        {"s21bac", -1.0, 1.0, 0.0, 5, lt + "x must not be less than 0.0: x = -1."},
        {"s21bac", 1.0, 0.0, 0.0, 4, "ZE_REAL_ARG_EQ:\n  On entry, y must not be equal to 0.0: y = 0."},
        {"s14bac", 0.0, 1.0, 0.0, 6, le + "a must not be less than or equal to 0.0: a = 0."},
        {"s14bac", 1.0, -1.0, 0.0, 5, lt + "x must not be less than 0.0: x = -1."},
        {"s14bac", 1.0, NAN, 0.0, 420, "ZE_ALG_NOT_CONV:\n  The algorithm has not converged within 600 iterations."},
    };
    for (const auto &c : cases) {
        ZekFail fail{};
        fail.code = -5;
        EXPECT_EQ(c_style(c.name, c.x, c.y, &fail), c.value) << c.name << " " << c.x;
        EXPECT_EQ(fail.code, c.code) << c.name << " " << c.x;
        if (!c.message.empty()) { EXPECT_EQ(fail.message, c.message) << c.name << " " << c.x; }
    }
    // A null record: the same value, the failure shown as notices, control returns.
    testing::internal::CaptureStderr();
    EXPECT_EQ(s14aac(171.0, nullptr), 4.3e304);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("ZE_REAL_ARG_GT"), std::string::npos);
}

TEST(SpecialFailures, IfailExitsOfGammaAndArccos) {
    // The worker's ERRBUF line, then the front at IFAIL -1 with the same value and its first record.
    const struct {
        bool arccos;
        double x;
        int ifail;
        const char *errbuf, *record;
    } cases[] = {
        {false, 171.0, 1, "S14AAF     1 99999     1   1.71000000e+02", " ** On entry, X is too large: X =  1.7100E+02."},
        {false, -171.0, 2, "S14AAF     2 99998     1  -1.71000000e+02",
         " ** On entry, X is too large and negative: X = -1.7100E+02."},
        {false, 1e-310, 3, "S14AAF     3 99997     1  1.00000000e-310", " ** On entry, X is too close to zero: X = 1.0000E-310."},
        {false, -7.0, 4, "S14AAF     4 99996     1  -7.00000000e+00", " ** On entry, X is a negative integer: X = -7.0000E+00."},
        {true, -1.5, 1, "S09ABF     1 99999     1  -1.50000000e+00", " ** On entry, ABS(X) .gt. 1.0: X = -1.5000E+00."},
    };
    char errbuf[200];
    int ifail;
    for (const auto &c : cases) {
        const double value = c.arccos ? zek::S09ABF(c.x, errbuf, &(ifail = 1), 200)
                                      : zek::s14aaf_worker(c.x, errbuf, &(ifail = 1), 200);
        EXPECT_TRUE(ifail == c.ifail && std::string(errbuf) == c.errbuf) << errbuf;
        ZekFail quiet{};
        EXPECT_EQ(value, c.arccos ? 0.0 : s14aac(c.x, &quiet));
        zek_test::OutputCapture capture;
        const double front = c.arccos ? zek::S09ABF(c.x, errbuf, &(ifail = -1), 200) : S14AAF(&c.x, &(ifail = -1));
        EXPECT_TRUE(front == value && ifail == c.ifail) << c.x;
        ASSERT_FALSE(capture.host().empty());
        std::string first = capture.host()[0];
        EXPECT_EQ(first.erase(first.find_last_not_of(' ') + 1), c.record);
    }
    const double x = 4.5;
    EXPECT_NEAR(S14AAF(&x, &(ifail = 1)), 11.631728396567448929, 1e-14);  // Gamma(4.5) = 105 sqrt(pi) / 16
    EXPECT_EQ(ifail, 0);
}

// The double-double helpers of the tails against mpmath (300 bits), each value given as the double
// nearest to it and the double nearest to the remainder.
double pair_error(zek::dd::DD got, double hi, double lo) { return std::fabs((got.hi - hi) + (got.lo - lo)) / std::fabs(hi); }

TEST(DoubleDouble, TailExponentAndLogarithmExactToTheDoubleDouble) {
    // a (m - log(1 + m)), m = (x - x0)/x0: the series near m = 0, the logarithm beyond, m close to -1,
    // a subnormal x, and x0 = 0.4 as a pair (the mode of a beta with a = 4e5, b = 6e5).
    const struct { double a, x, x0_hi, x0_lo, hi, lo; } rows[] = {
        {1000000.0, 1000030.0, 1000000.0, 0.0, 0.00044999100020249515, -7.197656980661478e-21},
        {750000.0, 725771.0, 750000.0, 0.0, 400.0013452730277, 7.137901591968272e-15},
        {2500.0, 4759.77, 2500.0, 0.0, 649.9984603149348, -2.947373244207726e-14},
        {5.0, 700.0, 5.0, 0.0, 670.2917878869534, 3.5131182526445933e-14},
        {3.5, 1e-300, 3.5, 0.0, 2418.5990180334816, 1.8566061412387218e-13},
        {0.001, 5e-324, 0.001, 0.0, 0.7365323166423992, -1.349016307125518e-17},
        {400000.0, 0.39023, 0.4, -2.2204460492503132e-17, 121.29528998275345, 6.325960126529994e-15},
        {400000.0, 0.41, 0.4, -2.2204460492503132e-17, 122.954963851399, -1.8709941658588657e-15},
    };
    for (const auto &r : rows) {
        const zek::dd::DD y = zek::dd::scaled_log1pmx(r.a, {r.x, 0.0}, {r.x0_hi, r.x0_lo});
        EXPECT_LE(pair_error(y, r.hi, r.lo), 1e-18) << "a " << r.a << " x " << r.x;
    }
    const struct { double v, hi, lo; } logs[] = {
        {5e-324, -744.4400719213812, -4.422444340918698e-14},
        {1.0000000000000002, 2.2204460492503128e-16, 3.649214750845877e-48},
    };
    for (const auto &r : logs) EXPECT_LE(pair_error(zek::dd::logarithm(r.v), r.hi, r.lo), 1e-19) << r.v;
}

} // namespace
