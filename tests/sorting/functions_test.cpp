// Chapter S: accuracy against high-precision reference values, defined values at the thresholds, and
// every failure exit with its code or IFAIL and text.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "sorting/functions.h"
#include "zek2/s.h"

namespace {

struct Reference {
    double x;
    long double value;
};
struct Reference2 {
    double x, y;
    long double value;
};
struct IncompleteReference {
    double a, x;
    long double p, q;
    double condition;
};

// Reference values computed with mpmath at 40 significant digits, at the double arguments shown
// (branch boundaries of each routine and their neighbouring doubles among them): one table a file in
// tests/data/special, a row a line, '#' lines naming the expression.
std::vector<std::vector<std::string>> rows_of(const char *name) {
    std::ifstream in(std::string(ZEK_TEST_DATA_DIR) + "/special/" + name + ".txt");
    std::vector<std::vector<std::string>> rows;
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        rows.emplace_back(std::istream_iterator<std::string>(fields), std::istream_iterator<std::string>());
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

double real(const std::string &s) { return std::strtod(s.c_str(), nullptr); }
long double exact(const std::string &s) { return std::strtold(s.c_str(), nullptr); }

std::vector<Reference> reference(const char *name) {
    std::vector<Reference> table;
    for (const auto &r : rows_of(name)) table.push_back({real(r.at(0)), exact(r.at(1))});
    return table;
}

std::vector<Reference2> reference2(const char *name) {
    std::vector<Reference2> table;
    for (const auto &r : rows_of(name)) table.push_back({real(r.at(0)), real(r.at(1)), exact(r.at(2))});
    return table;
}

// Error in units of the last place of the reference value (subnormal values in units of the smallest
// normal's last place).
double ulps(double got, long double expected) {
    const long double magnitude = std::max(std::fabs(expected), static_cast<long double>(DBL_MIN));
    int exponent = 0;
    std::frexp(static_cast<double>(magnitude), &exponent);
    return static_cast<double>(std::fabs(static_cast<long double>(got) - expected) /
                               std::ldexp(1.0L, exponent - 53));
}

template <class Table, class F>
double worst_ulps(const Table &table, F f, const char *name) {
    double worst = 0.0;
    for (const auto &r : table) {
        const double e = ulps(f(r), r.value);
        worst = std::max(worst, e);
        EXPECT_FALSE(std::isnan(e)) << name << " at " << r.x;
    }
    return worst;
}

TEST(SpecialAccuracy, EachRoutineWithinAFewUnitsInTheLastPlace) {
    struct Case {
        const char *name;
        double worst, limit;
    };
    ZekFail fail{};
    const std::vector<Case> cases = {
        {"s01bac", worst_ulps(reference("log1p"), [&](const Reference &r) { return zek::s01bac(r.x, &fail); }, "s01bac"), 1.5},
        {"s07aac", worst_ulps(reference("tan"), [&](const Reference &r) { return zek::s07aac(r.x, &fail); }, "s07aac"), 3.0},
        {"s14aac", worst_ulps(reference("gamma"), [&](const Reference &r) { return s14aac(r.x, &fail); }, "s14aac"), 3.0},
        {"s14abc", worst_ulps(reference("log_gamma"), [&](const Reference &r) { return s14abc(r.x, &fail); }, "s14abc"), 4.0},
        {"S15_ERF", worst_ulps(reference("erf"), [](const Reference &r) { return S15_ERF(r.x); }, "S15_ERF"), 4.0},
        {"S15_ERFC", worst_ulps(reference("erfc"), [](const Reference &r) { return S15_ERFC(r.x); }, "S15_ERFC"), 6.0},
        {"S15_UPPER_TAIL",
         worst_ulps(reference("upper_tail"), [](const Reference &r) { return S15_UPPER_TAIL(r.x); }, "upper"), 6.0},
        {"S15_LOWER_TAIL",
         worst_ulps(reference("lower_tail"), [](const Reference &r) { return S15_LOWER_TAIL(r.x); }, "lower"), 6.0},
        {"s21bac", worst_ulps(reference2("rc"), [&](const Reference2 &r) { return s21bac(r.x, r.y, &fail); }, "s21bac"), 6.0},
        {"S09ABF", worst_ulps(reference("arccos"),
                              [](const Reference &r) {
                                  char errbuf[200];
                                  int ifail = 1;
                                  return zek::S09ABF(r.x, errbuf, &ifail, 200);
                              },
                              "S09ABF"),
         1.0},
    };
    for (const Case &c : cases) {
        EXPECT_LE(c.worst, c.limit) << c.name;
        std::printf("%-16s worst %.2f ulp\n", c.name, c.worst);
    }
}

TEST(SpecialAccuracy, IncompleteGammaWithinItsConditioning) {
    // The ratios are as sensitive to a relative change of x as their condition number
    // x^a e^-x / (Gamma(a) min(P, Q)) says; the smaller ratio is computed directly and must stay
    // within a modest multiple of that, the larger one follows as 1 minus it.
    double worst = 0.0;
    for (const auto &row : rows_of("incomplete_gamma")) {
        const IncompleteReference r{real(row.at(0)), real(row.at(1)), exact(row.at(2)), exact(row.at(3)), real(row.at(4))};
        double p = -1.0, q = -1.0;
        ZekFail fail{};
        s14bac(r.a, r.x, 0.0, &p, &q, &fail);
        ASSERT_EQ(fail.code, 0) << r.a << " " << r.x;
        const bool p_smaller = r.p < r.q;
        const double smaller = ulps(p_smaller ? p : q, p_smaller ? r.p : r.q) / (1.0 + r.condition);
        worst = std::max(worst, smaller);
        EXPECT_LE(smaller, 16.0) << "a=" << r.a << " x=" << r.x;
        EXPECT_NEAR(p + q, 1.0, 4 * DBL_EPSILON) << "a=" << r.a << " x=" << r.x;
    }
    std::printf("s14bac           worst %.2f ulp per unit of condition\n", worst);
}

TEST(SpecialValues, ThresholdsGiveTheirDefinedValues) {
    ZekFail fail{};
    EXPECT_EQ(S15_ERFC(26.6), 0.0);
    EXPECT_GT(S15_ERFC(26.5), 0.0);
    EXPECT_EQ(S15_ERFC(-6.25), 2.0);
    EXPECT_EQ(S15_ERF(6.25), 1.0);
    EXPECT_EQ(S15_ERF(-6.25), -1.0);
    EXPECT_EQ(S15_LOWER_TAIL(0.0), 0.5);
    EXPECT_EQ(S15_UPPER_TAIL(0.0), 0.5);

    const double g170 = s14aac(170.0, &fail);
    EXPECT_EQ(fail.code, 0);
    EXPECT_NEAR(g170 / 4.2690680090047052749e304, 1.0, 4 * DBL_EPSILON);
    EXPECT_EQ(s14aac(170.5, &fail), 4.3e304);
    EXPECT_EQ(fail.code, 7);
    EXPECT_EQ(s14aac(-170.5, &fail), 0.0);
    EXPECT_EQ(fail.code, 5);
    EXPECT_EQ(s14aac(-1e-310, &fail), -4.4843049327354256e307);
    EXPECT_EQ(fail.code, 707);
    EXPECT_EQ(s14aac(0.0, &fail), 4.4843049327354256e307);
    EXPECT_EQ(s14aac(-3.0, &fail), 4.3e304);
    EXPECT_EQ(fail.code, 708);

    EXPECT_EQ(s14abc(3e305, &fail), 1.79e308);
    EXPECT_EQ(fail.code, 7);
    EXPECT_EQ(s14abc(-2.0, &fail), 0.0);
    EXPECT_EQ(fail.code, 6);

    // x = 0 gives P = 0 and Q = 1 with no code, whatever a.
    for (double a : {1e-5, 1.0, 50.0, 1e300}) {
        double p = -1, q = -1;
        s14bac(a, 0.0, 0.0, &p, &q, &fail);
        EXPECT_EQ(fail.code, 0);
        EXPECT_EQ(p, 0.0);
        EXPECT_EQ(q, 1.0);
    }
    // Gamma(a + 1) beyond the range of s14abc: the ratios are decided by which side of a x lies.
    double p = -1, q = -1;
    s14bac(1e306, 1e305, 0.0, &p, &q, &fail);
    EXPECT_EQ(fail.code, 0);
    EXPECT_EQ(p, 0.0);
    EXPECT_EQ(q, 1.0);

    // Within 1e-14 relative of an odd multiple of pi/2 the tangent is taken as a pole: code 417 and a
    // finite value of the sign the function has on that side.
    const double half_pi = 1.5707963267948966; // just below pi/2
    const double t = zek::s07aac(half_pi, &fail);
    EXPECT_EQ(fail.code, 417);
    EXPECT_TRUE(std::isfinite(t));
    EXPECT_GT(t, 0.0);
    EXPECT_TRUE(std::isfinite(zek::s07aac(-3.0 * half_pi, &fail)));
    EXPECT_EQ(fail.code, 417);
}

// One failure of a C-style routine: the code and the complete text it leaves in the record.
struct CodeCase {
    const char *what;
    double (*call)(ZekFail *);
    double value;
    int code;
    const char *message;
};

const CodeCase kCodeCases[] = {
    {"s14aac big", [](ZekFail *f) { return s14aac(171.0, f); }, 4.3e304, 7,
     "ZE_REAL_ARG_GT:\n  On entry, x must not be greater than  2e+02: x = 171."},
    {"s14aac negative", [](ZekFail *f) { return s14aac(-171.5, f); }, 0.0, 5,
     "ZE_REAL_ARG_LT:\n  On entry, x must not be less than  -2e+02: x = -171.5."},
    {"s14aac tiny", [](ZekFail *f) { return s14aac(1e-310, f); }, 4.4843049327354256e307, 707,
     "ZE_REAL_ARG_TOO_SMALL:\n  On entry, abs(x) must not be less than    2e-308: x = 1e-310."},
    {"s14aac integer", [](ZekFail *f) { return s14aac(-2.0, f); }, 4.3e304, 708,
     "ZE_REAL_ARG_NEG_INT:\n  On entry, x must not be a negative integer: x = -2."},
    {"s14abc zero", [](ZekFail *f) { return s14abc(0.0, f); }, 0.0, 6,
     "ZE_REAL_ARG_LE:\n  On entry, x must not be less than or equal to 0.0: x = 0."},
    {"s14abc big", [](ZekFail *f) { return s14abc(1e306, f); }, 1.79e308, 7,
     "ZE_REAL_ARG_GT:\n  On entry, x must not be greater than  2.5e+305: x = 1e+306."},
    {"s01bac", [](ZekFail *f) { return zek::s01bac(-1.0, f); }, 0.0, 6,
     "ZE_REAL_ARG_LE:\n  On entry, x must not be less than or equal to -1.0: x = -1."},
    {"s07aac", [](ZekFail *f) { return zek::s07aac(-2e10, f); }, 0.0, 7,
     "ZE_REAL_ARG_GT:\n  On entry, abs(x) must not be greater than fl1: abs(x) = 2e+10."},
    {"s07aac pole", [](ZekFail *f) { return std::signbit(zek::s07aac(1.5707963267948966, f)) ? -1.0 : 1.0; }, 1.0,
     417, "ZE_FUN_INF:\n  Function infinite."},
    {"s21bac x", [](ZekFail *f) { return s21bac(-1.0, 1.0, f); }, 0.0, 5,
     "ZE_REAL_ARG_LT:\n  On entry, x must not be less than 0.0: x = -1."},
    {"s21bac y", [](ZekFail *f) { return s21bac(1.0, 0.0, f); }, 0.0, 4,
     "ZE_REAL_ARG_EQ:\n  On entry, y must not be equal to 0.0: y = 0."},
    {"s14bac a", [](ZekFail *f) { double p, q; s14bac(0.0, 1.0, 0.0, &p, &q, f); return p + q; }, 0.0, 6,
     "ZE_REAL_ARG_LE:\n  On entry, a must not be less than or equal to 0.0: a = 0."},
    {"s14bac x", [](ZekFail *f) { double p, q; s14bac(1.0, -1.0, 0.0, &p, &q, f); return p + q; }, 0.0, 5,
     "ZE_REAL_ARG_LT:\n  On entry, x must not be less than 0.0: x = -1."},
    {"s14bac nan", [](ZekFail *f) { double p, q; s14bac(1.0, std::nan(""), 0.0, &p, &q, f); return 0.0; }, 0.0, 420,
     "ZE_ALG_NOT_CONV:\n  The algorithm has not converged within 600 iterations."},
};

TEST(SpecialFailures, CStyleCodesTextsAndValues) {
    for (const CodeCase &c : kCodeCases) {
        ZekFail fail{};
        fail.code = -5;
        EXPECT_EQ(c.call(&fail), c.value) << c.what;
        EXPECT_EQ(fail.code, c.code) << c.what;
        EXPECT_STREQ(fail.message, c.message) << c.what;
    }
    // A null record: the same value, the failure shown as notices, control returns.
    testing::internal::CaptureStderr();
    EXPECT_EQ(s14aac(171.0, nullptr), 4.3e304);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("ZE_REAL_ARG_GT"), std::string::npos);
}

struct IfailCase {
    double x;
    int ifail;
    const char *errbuf;
    const char *record;
};

TEST(SpecialFailures, IfailExitsOfGammaAndArccos) {
    const IfailCase cases[] = {
        {171.0, 1, "S14AAF     1 99999     1   1.71000000e+02", " ** On entry, X is too large: X =  1.7100E+02."},
        {-171.0, 2, "S14AAF     2 99998     1  -1.71000000e+02",
         " ** On entry, X is too large and negative: X = -1.7100E+02."},
        {1e-310, 3, "S14AAF     3 99997     1  1.00000000e-310", " ** On entry, X is too close to zero: X = 1.0000E-310."},
        {-7.0, 4, "S14AAF     4 99996     1  -7.00000000e+00", " ** On entry, X is a negative integer: X = -7.0000E+00."},
    };
    for (const IfailCase &c : cases) {
        char errbuf[200];
        int ifail = 1;
        const double value = zek::s14aaf_worker(c.x, errbuf, &ifail, 200);
        EXPECT_EQ(ifail, c.ifail);
        EXPECT_STREQ(errbuf, c.errbuf);
        ZekFail quiet{};
        EXPECT_EQ(value, s14aac(c.x, &quiet));

        zek_test::OutputCapture capture;
        ifail = -1;
        EXPECT_EQ(S14AAF(&c.x, &ifail), value);
        EXPECT_EQ(ifail, c.ifail);
        ASSERT_FALSE(capture.host().empty());
        std::string first = capture.host()[0];
        while (!first.empty() && first.back() == ' ') first.pop_back();
        EXPECT_EQ(first, c.record);
    }
    int ifail = 1;
    const double x = 4.5;
    EXPECT_NEAR(S14AAF(&x, &ifail), 11.631728396567448929, 1e-14);
    EXPECT_EQ(ifail, 0);

    char errbuf[200];
    ifail = 1;
    EXPECT_EQ(zek::S09ABF(-1.5, errbuf, &ifail, 200), 0.0);
    EXPECT_EQ(ifail, 1);
    EXPECT_STREQ(errbuf, "S09ABF     1 99999     1  -1.50000000e+00");
    zek_test::OutputCapture capture;
    ifail = -1;
    zek::S09ABF(2.0, errbuf, &ifail, 200);
    ASSERT_FALSE(capture.host().empty());
    EXPECT_EQ(capture.host()[0].substr(0, 47), " ** On entry, ABS(X) .gt. 1.0: X =  2.0000E+00.");
}

} // namespace
