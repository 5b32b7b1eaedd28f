// Chapter S: accuracy against high-precision reference values, defined values at the thresholds, and
// every failure exit with its code or IFAIL and text.
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

// One failure of a C-style routine: the value, the code and (when given) the complete text it leaves in
// the record.  Within 1e-14 relative of an odd multiple of pi/2 the tangent is taken as a pole: code 417
// and a finite value of the sign the function has on that side.
const double kHalfPi = 1.5707963267948966;  // just below pi/2
double tangent_sign(double x, ZekFail *f) {
    const double t = zek::s07aac(x, f);
    return std::isfinite(t) ? (std::signbit(t) ? -1.0 : 1.0) : t;
}
double p_plus_q(double a, double x, ZekFail *f) {
    double p = -1, q = -1;
    s14bac(a, x, 0.0, &p, &q, f);
    return f->code == 420 ? 0.0 : p + q;
}

TEST(SpecialFailures, CStyleCodesTextsAndValues) {
    const struct {
        const char *what;
        std::function<double(ZekFail *)> call;
        double value;
        int code;
        const char *message;
    } cases[] = {
        {"s14aac big", [](ZekFail *f) { return s14aac(171.0, f); }, 4.3e304, 7,
         "ZE_REAL_ARG_GT:\n  On entry, x must not be greater than  2e+02: x = 171."},
        {"s14aac just big", [](ZekFail *f) { return s14aac(170.5, f); }, 4.3e304, 7, nullptr},
        {"s14aac negative", [](ZekFail *f) { return s14aac(-171.5, f); }, 0.0, 5,
         "ZE_REAL_ARG_LT:\n  On entry, x must not be less than  -2e+02: x = -171.5."},
        {"s14aac just negative", [](ZekFail *f) { return s14aac(-170.5, f); }, 0.0, 5, nullptr},
        {"s14aac tiny", [](ZekFail *f) { return s14aac(1e-310, f); }, 4.4843049327354256e307, 707,
         "ZE_REAL_ARG_TOO_SMALL:\n  On entry, abs(x) must not be less than    2e-308: x = 1e-310."},
        {"s14aac tiny negative", [](ZekFail *f) { return s14aac(-1e-310, f); }, -4.4843049327354256e307, 707, nullptr},
        {"s14aac zero", [](ZekFail *f) { return s14aac(0.0, f); }, 4.4843049327354256e307, 707, nullptr},
        {"s14aac integer", [](ZekFail *f) { return s14aac(-2.0, f); }, 4.3e304, 708,
         "ZE_REAL_ARG_NEG_INT:\n  On entry, x must not be a negative integer: x = -2."},
        {"s14abc zero", [](ZekFail *f) { return s14abc(0.0, f); }, 0.0, 6,
         "ZE_REAL_ARG_LE:\n  On entry, x must not be less than or equal to 0.0: x = 0."},
        {"s14abc negative", [](ZekFail *f) { return s14abc(-2.0, f); }, 0.0, 6, nullptr},
        {"s14abc big", [](ZekFail *f) { return s14abc(1e306, f); }, 1.79e308, 7,
         "ZE_REAL_ARG_GT:\n  On entry, x must not be greater than  2.5e+305: x = 1e+306."},
        {"s14abc just big", [](ZekFail *f) { return s14abc(3e305, f); }, 1.79e308, 7, nullptr},
        {"s01bac", [](ZekFail *f) { return zek::s01bac(-1.0, f); }, 0.0, 6,
         "ZE_REAL_ARG_LE:\n  On entry, x must not be less than or equal to -1.0: x = -1."},
        {"s07aac", [](ZekFail *f) { return zek::s07aac(-2e10, f); }, 0.0, 7,
         "ZE_REAL_ARG_GT:\n  On entry, abs(x) must not be greater than fl1: abs(x) = 2e+10."},
        {"s07aac pole", [](ZekFail *f) { return tangent_sign(kHalfPi, f); }, 1.0, 417, "ZE_FUN_INF:\n  Function infinite."},
        {"s07aac pole 3", [](ZekFail *f) { return std::fabs(tangent_sign(-3.0 * kHalfPi, f)); }, 1.0, 417, nullptr},
        {"s21bac x", [](ZekFail *f) { return s21bac(-1.0, 1.0, f); }, 0.0, 5,
         "ZE_REAL_ARG_LT:\n  On entry, x must not be less than 0.0: x = -1."},
        {"s21bac y", [](ZekFail *f) { return s21bac(1.0, 0.0, f); }, 0.0, 4,
         "ZE_REAL_ARG_EQ:\n  On entry, y must not be equal to 0.0: y = 0."},
        {"s14bac a", [](ZekFail *f) { return p_plus_q(0.0, 1.0, f); }, 0.0, 6,
         "ZE_REAL_ARG_LE:\n  On entry, a must not be less than or equal to 0.0: a = 0."},
        {"s14bac x", [](ZekFail *f) { return p_plus_q(1.0, -1.0, f); }, 0.0, 5,
         "ZE_REAL_ARG_LT:\n  On entry, x must not be less than 0.0: x = -1."},
        {"s14bac nan", [](ZekFail *f) { return p_plus_q(1.0, std::nan(""), f); }, 0.0, 420,
         "ZE_ALG_NOT_CONV:\n  The algorithm has not converged within 600 iterations."},
    };
    for (const auto &c : cases) {
        ZekFail fail{};
        fail.code = -5;
        EXPECT_EQ(c.call(&fail), c.value) << c.what;
        EXPECT_EQ(fail.code, c.code) << c.what;
        if (c.message != nullptr) { EXPECT_STREQ(fail.message, c.message) << c.what; }
    }
    // A null record: the same value, the failure shown as notices, control returns.
    testing::internal::CaptureStderr();
    EXPECT_EQ(s14aac(171.0, nullptr), 4.3e304);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("ZE_REAL_ARG_GT"), std::string::npos);
}

TEST(SpecialFailures, IfailExitsOfGammaAndArccos) {
    const struct {
        double x;
        int ifail;
        const char *errbuf, *record;
    } cases[] = {
        {171.0, 1, "S14AAF     1 99999     1   1.71000000e+02", " ** On entry, X is too large: X =  1.7100E+02."},
        {-171.0, 2, "S14AAF     2 99998     1  -1.71000000e+02", " ** On entry, X is too large and negative: X = -1.7100E+02."},
        {1e-310, 3, "S14AAF     3 99997     1  1.00000000e-310", " ** On entry, X is too close to zero: X = 1.0000E-310."},
        {-7.0, 4, "S14AAF     4 99996     1  -7.00000000e+00", " ** On entry, X is a negative integer: X = -7.0000E+00."},
    };
    char errbuf[200];
    int ifail;
    for (const auto &c : cases) {
        const double value = zek::s14aaf_worker(c.x, errbuf, &(ifail = 1), 200);
        EXPECT_TRUE(ifail == c.ifail && std::string(errbuf) == c.errbuf) << errbuf;
        ZekFail quiet{};
        EXPECT_EQ(value, s14aac(c.x, &quiet));
        zek_test::OutputCapture capture;
        EXPECT_EQ(S14AAF(&c.x, &(ifail = -1)), value);
        EXPECT_EQ(ifail, c.ifail);
        ASSERT_FALSE(capture.host().empty());
        std::string first = capture.host()[0];
        EXPECT_EQ(first.erase(first.find_last_not_of(' ') + 1), c.record);
    }
    const double x = 4.5;
    EXPECT_NEAR(S14AAF(&x, &(ifail = 1)), 11.631728396567448929, 1e-14);  // Gamma(4.5) = 105 sqrt(pi) / 16
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(zek::S09ABF(-1.5, errbuf, &(ifail = 1), 200), 0.0);
    EXPECT_TRUE(ifail == 1 && std::string(errbuf) == "S09ABF     1 99999     1  -1.50000000e+00") << errbuf;
    zek_test::OutputCapture capture;
    zek::S09ABF(2.0, errbuf, &(ifail = -1), 200);
    ASSERT_FALSE(capture.host().empty());
    EXPECT_EQ(capture.host()[0].substr(0, 47), " ** On entry, ABS(X) .gt. 1.0: X =  2.0000E+00.");
}

} // namespace
