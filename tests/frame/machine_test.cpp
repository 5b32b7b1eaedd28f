// Machine constants with their bit patterns, markers, the extended inner product, complex helpers.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "frame/machine.h"
#include "frame/raise.h"
#include "zek2/a02.h"
#include "zek2/frame.h"
#include "zek2/x02.h"
#include "zek2/x03.h"

namespace {

std::uint64_t bits(double d) {
    std::uint64_t b;
    std::memcpy(&b, &d, sizeof b);
    return b;
}

TEST(Constants, BitPatternsOfEveryExportName) {
    const std::uint64_t pi = 0x400921FB54442D18ull, eps = 0x3CA0040000000000ull, eps_used = 0x3CA0040000000020ull,
                        safe = 0x0010000000000000ull, largest = 0x7FEFFFFFFFFFFFFFull;
    const struct {
        double (*routine)(void);
        std::uint64_t pattern;
    } cases[] = {{X01_PI, pi},           {X01_PI_ALIAS, pi},           {X02AJC, eps},        {X02_PRECISION, eps_used},
                 {X02AMC, safe},         {X02AMC_ALIAS, safe},         {X02_SAFE_MINIMUM, safe},
                 {X02_SAFE_MINIMUM_ALIAS, safe}, {X02_LARGEST, largest}, {X02_LARGEST_ALIAS, largest}};
    for (const auto &c : cases) EXPECT_EQ(bits(c.routine()), c.pattern) << &c - cases;
    EXPECT_EQ(bits(X01_PI_IGNORING(nullptr, nullptr)), pi);
    EXPECT_EQ(bits(zek::precision()), eps_used);
    EXPECT_TRUE(X02_BASE() == 2 && zek::largest_integer(nullptr, nullptr) == 2147483647);
}

TEST(Markers, FillByCountAndLeaveTheRestAlone) {
    const double mark = -2139062144.0;
    std::vector<double> reals(5, 7.0), complex_values(8, 1.0);
    ZEK_MARK_REAL_ARRAY(0, reals.data());
    ZEK_MARK_REAL_ARRAY(3, reals.data());
    EXPECT_EQ(reals, (std::vector<double>{mark, mark, mark, 7.0, 7.0}));
    EXPECT_EQ(bits(reals[0]), 0xC1DFDFDFE0000000ull);
    ZEK_MARK_COMPLEX_ARRAY(2, complex_values.data());
    ZEK_MARK_COMPLEX(&complex_values[4]);
    EXPECT_EQ(complex_values, (std::vector<double>{mark, mark, mark, mark, mark, mark, 1.0, 1.0}));
    std::vector<int> ints(3, 1);
    ZEK_MARK_INTEGER_ARRAY(2, ints.data());
    ZEK_MARK_INTEGER(&ints[2]);
    EXPECT_EQ(ints, (std::vector<int>{-2139062144, -2139062144, static_cast<int>(0x80808080u)}));
    int flag = 0, alias = 0;  // both names of the flag setter
    ZEK_SET_ONE(nullptr, &flag);
    ZEK_SET_ONE_ALIAS(nullptr, &alias);
    EXPECT_TRUE(flag == 1 && alias == 1);
}

TEST(Workspace, AllocatesAndReleasesClearingThePointer) {
    void *p = ZEK_ALLOCATE(64);
    ASSERT_NE(p, nullptr);
    ZEK_RELEASE(&p);
    ZEK_RELEASE(&p);  // releasing a cleared pointer is harmless
    EXPECT_EQ(p, nullptr);
    ZEK_RELEASE(nullptr);
}

TEST(ExtendedDot, StepsSumsAndTheDoubleDoubleCarry) {
    const double a[4] = {1e16, 1.0, -1e16, 1.0}, b[6] = {1, 0, 1, 0, 1, 0};
    double d1 = 5, d2 = 6;
    ZekFail fail = zek::clean_fail();
    x03aac(a, 2, b, 2, 2, 0, 1, 0.0, 0.0, &d1, &d2, 1, &fail);  // steps below one: nothing written
    EXPECT_EQ(fail.code, ZE_INT_ARG_LE);
    EXPECT_STREQ(fail.message, "ZE_INT_ARG_LE:\n  On entry, stepa must not be less than or equal to 0: stepa = 0.");
    x03aac(a, 2, b, 2, 2, 1, -1, 0.0, 0.0, &d1, &d2, 1, &fail);
    EXPECT_TRUE(fail.code == 12 && d1 == 5.0 && d2 == 6.0);
    // The plain sum ignores the low part of the start value: 10 + 1 + 2 + 3, stepping by 2 through b.
    const double c[3] = {1, 2, 3};
    x03aac(c, 3, b, 6, 3, 1, 2, 10.0, 99.0, &d1, &d2, 0, &fail);
    EXPECT_TRUE(fail.code == 0 && d1 == 16.0 && d2 == 0.0);
    // 1e16 + 1 - 1e16 + 1: the plain sum loses the 1s, the extended sum keeps them.
    const double ones[4] = {1, 1, 1, 1};
    x03aac(a, 4, ones, 4, 4, 1, 1, 0.0, 0.0, &d1, &d2, 1, nullptr);
    EXPECT_EQ(d1, 2.0);
    // Products with an exact error term: (1 + 2^-30)^2 = 1 + 2^-29 + 2^-60.
    const double x = 1.0 + std::ldexp(1.0, -30);
    x03aac(&x, 1, &x, 1, 1, 1, 1, -1.0, 0.0, &d1, &d2, 1, nullptr);
    EXPECT_TRUE(d1 == std::ldexp(1.0, -29) + std::ldexp(1.0, -60) && d1 + d2 == d1) << d1 << " " << d2;
    // n = 0: the normalised start value with its rounding error.
    x03aac(a, 0, b, 0, 0, 1, 1, 1.0, std::ldexp(1.0, -60), &d1, &d2, 1, nullptr);
    EXPECT_TRUE(d1 == 1.0 && d2 == std::ldexp(1.0, -60));
}

TEST(ComplexHelpers, ModulusQuotientAndRoot) {
    EXPECT_TRUE(A02_MODULUS(0.0, 0.0) == 0.0 && A02_MODULUS(3.0, -4.0) == 5.0);
    EXPECT_EQ(A02_MODULUS(1e300, 1e300), 1e300 * std::sqrt(2.0));  // no overflow in the squares
    double re, im;
    A02_DIVIDE(1.0, 2.0, 3.0, 4.0, &re, &im);  // (1+2i)/(3+4i) = (11+2i)/25
    EXPECT_TRUE(std::fabs(re - 0.44) <= 1e-16 && std::fabs(im - 0.08) <= 1e-16) << re << " " << im;
    A02_DIVIDE(1.0, 0.0, 1e-300, 1e300, &re, &im);
    EXPECT_NEAR(im, -1e-300, 1e-310);
    // Each row: the argument, then its principal square root (the sign of a zero imaginary part ignored).
    const double roots[][4] = {{-4.0, 0.0, 0.0, 2.0}, {-4.0, -0.0, 0.0, 2.0}, {4.0, 0.0, 2.0, 0.0}, {0.0, 2.0, 1.0, 1.0},
                               {0.0, -2.0, 1.0, -1.0}, {-3.0, -4.0, 1.0, -2.0}, {3.0, 4.0, 2.0, 1.0}};
    for (const auto &c : roots) {
        A02_SQRT(c[0], c[1], &re, &im);
        EXPECT_TRUE(std::fabs(re - c[2]) <= 1e-15 && std::fabs(im - c[3]) <= 1e-15) << c[0] << " " << c[1];
    }
    A02_SQRT(1e308, 1e308, &re, &im);
    EXPECT_TRUE(std::isfinite(re) && std::isfinite(im));
    const double a = -4.0, b = 0.0;
    A02_SQRT_BYREF(&a, &b, &re, &im);
    EXPECT_TRUE(re == 0.0 && im == 2.0);
}

TEST(Services, SignScaleGuardAndCompare) {
    EXPECT_TRUE(zek::sign_transfer(-3.0, 1.0) == -3.0 && zek::sign_transfer(3.0, -1.0) == -3.0);  // x kept as is
    double x = 1000.0;
    int e = 0;
    zek::scale_normalise(&x, &e, 4);
    EXPECT_TRUE(e == 12 && x == 1000.0 / 4096.0);
    x = 1e-3, e = 0;
    zek::scale_normalise(&x, &e, 4);
    EXPECT_TRUE(x * std::ldexp(1.0, e) == 1e-3 && std::fabs(x) >= 1.0 / 16);
    x = 0.0, e = 7;
    zek::scale_normalise(&x, &e, 4);
    EXPECT_EQ(e, 0);
    EXPECT_TRUE(zek::integer_guard(12.0) == 12.0 && zek::integer_guard(3e9) == -1.0);
    EXPECT_EQ(ZEK_CHAR_EQUAL("a", "A", 1, 1), 1);
    EXPECT_EQ(ZEK_CHAR_EQUAL("[", "{", 1, 1), 0);  // not letters: exact
    EXPECT_TRUE(zek::chars_equal_32('[', '{'));    // the internal forms only look at the distance
    EXPECT_TRUE(zek::chars_equal_32_cached('b', 'B') && !zek::chars_equal_32_cached('b', 'C'));
}

TEST(TestGenerator, DrawsInRangeAndReproducesFromTheSeed) {
    int seed[4] = {0, 0, 0, 1};
    int again[4] = {0, 0, 0, 1};
    for (int i = 0; i < 1000; ++i) {
        const double u = Y90_TEST_RANDOM(1, seed), v = (Y90_TEST_RANDOM(1, again), Y90_TEST_RANDOM(2, seed));
        ASSERT_TRUE(u > 0.0 && u < 1.0 && v > -1.0 && v < 1.0) << u << " " << v;
        ASSERT_EQ(v, Y90_TEST_RANDOM(2, again));
    }
    EXPECT_EQ(Y90_TEST_RANDOM(9, seed), 0.0);
    EXPECT_TRUE(std::isfinite(Y90_TEST_RANDOM(3, nullptr)));
}

} // namespace
