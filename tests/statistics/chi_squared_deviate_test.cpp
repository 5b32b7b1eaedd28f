// The chi-squared deviate against high-precision inverses across the regimes its iteration takes:
// shapes from 0.05 to 2.5e5, lower tails down to 1e-200, upper tails given as p near 1, and a deviate
// below the smallest subnormal number.
#include <gtest/gtest.h>

#include <cmath>

#include "zek2/g01.h"

namespace {

struct Inverse {
    double p, df, x, tol;
};

// x with P(chi^2_df <= x) = p for the double p as written (upper tails from 1 - p exactly), by
// bisection on the regularised incomplete gamma in mpmath at 50 digits.  A tolerance looser than
// 1e-14 is where the deviate magnifies the error of the probability itself (x ~ p^(2/df)).
const Inverse kInverses[] = {
    {1e-10, 1.0, 1.5707963267948967e-20, 1e-13},
    {0.5, 3.0, 2.3659738843753383, 1e-14},
    {1e-200, 500000.0, 4.7039892766937399e+5, 1e-14},
    {1e-05, 200000.0, 1.9731409734180193e+5, 1e-14},
    {0.05, 0.1, 1.1147750963757564e-26, 1e-12},
    {0.3, 1000.0, 9.7607359125777414e+2, 1e-14},
    {1e-100, 4.0, 2.8284271247461901e-50, 1e-13},
    {1e-30, 10000.0, 8.4645442978975565e+3, 1e-14},
    {0.9999999999990905, 10.0, 7.8682247617777473e+1, 1e-13},
    {0.9999999990686774, 100.0, 2.095811156787904e+2, 1e-13},
    {0.999, 200000.0, 2.0196013558391845e+5, 1e-14},
    {0.75, 0.3, 2.0172956986209584e-1, 1e-14},
    // The root is about 2e-330: it rounds to zero, which is returned without a search.
    {1e-300, 0.5, 0.0, 0.0},
};

TEST(ChiSquaredDeviate, AgreesWithHighPrecisionInverses) {
    for (const Inverse &c : kInverses) {
        ZekFail fail{};
        const double x = g01fcc(c.p, c.df, &fail);
        EXPECT_EQ(fail.code, 0) << c.p << " " << c.df;
        EXPECT_NEAR(x, c.x, c.tol * c.x) << "p " << c.p << " df " << c.df;
    }
}

} // namespace
