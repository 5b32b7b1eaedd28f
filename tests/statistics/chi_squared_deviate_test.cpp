// The chi-squared deviate against 50-digit inverses (mpmath, bisection on the regularised incomplete
// gamma; upper tails from 1 - p of the double p): small and huge shapes, tails to 1e-200, p near 1, and
// a root below the subnormal range, which rounds to zero.
#include <gtest/gtest.h>

#include "zek2/g01.h"

TEST(ChiSquaredDeviate, AgreesWithHighPrecisionInverses) {
    const struct {
        double p, df, x, tol;  // tol looser where x ~ p^(2/df) magnifies the probability's error
    } cases[] = {{1e-10, 1.0, 1.5707963267948967e-20, 1e-13},   {1e-200, 500000.0, 4.7039892766937399e+5, 1e-14},
                 {0.05, 0.1, 1.1147750963757564e-26, 1e-12},    {0.3, 1000.0, 9.7607359125777414e+2, 1e-14},
                 {1e-100, 4.0, 2.8284271247461901e-50, 1e-13},  {1e-30, 10000.0, 8.4645442978975565e+3, 1e-14},
                 {0.9999999999990905, 10.0, 7.8682247617777473e+1, 1e-13},
                 {0.999, 200000.0, 2.0196013558391845e+5, 1e-14}, {0.75, 0.3, 2.0172956986209584e-1, 1e-14},
                 {1e-300, 0.5, 0.0, 0.0}};
    for (const auto &c : cases) {
        ZekFail fail{};
        EXPECT_NEAR(g01fcc(c.p, c.df, &fail), c.x, c.tol * c.x) << "p " << c.p << " df " << c.df;
        EXPECT_EQ(fail.code, 0) << c.p << " " << c.df;
    }
}
