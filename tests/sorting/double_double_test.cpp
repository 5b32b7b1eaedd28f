// The double-double logarithm and tail exponent against mpmath (300 bits), each value given as the
// double nearest to it and the double nearest to the remainder.
#include <gtest/gtest.h>

#include <cmath>

#include "sorting/double_double.h"

namespace {

using zek::dd::DD;

// Relative distance of a pair from the reference pair, without forming either sum.
double pair_error(DD got, double hi, double lo) { return std::fabs((got.hi - hi) + (got.lo - lo)) / std::fabs(hi); }

TEST(DoubleDouble, TailExponentIsExactToTheDoubleDouble) {
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
        const DD y = zek::dd::scaled_log1pmx(r.a, {r.x, 0.0}, {r.x0_hi, r.x0_lo});
        EXPECT_LE(pair_error(y, r.hi, r.lo), 1e-18) << "a " << r.a << " x " << r.x;
    }
}

TEST(DoubleDouble, LogarithmAcrossTheRange) {
    const struct { double v, hi, lo; } rows[] = {
        {5e-324, -744.4400719213812, -4.422444340918698e-14},
        {1.0000000000000002, 2.2204460492503128e-16, 3.649214750845877e-48},
    };
    for (const auto &r : rows) EXPECT_LE(pair_error(zek::dd::logarithm(r.v), r.hi, r.lo), 1e-19) << r.v;
}

} // namespace
