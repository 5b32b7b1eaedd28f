// Hostile input for the frame's computing services: the complex helpers and the double-double inner
// product meet NaN, +-Inf and the extremes of the range.  They hand a NaN on (their contract) and must
// end; a finite argument pair gives a finite modulus, a square root of the right half-plane and a
// quotient without spurious overflow.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "zek2/a02.h"
#include "zek2/x03.h"

namespace {

const double kBig = std::numeric_limits<double>::max();
const double kValues[] = {NAN, HUGE_VAL, -HUGE_VAL, kBig, -kBig, std::numeric_limits<double>::denorm_min(), 0.0, 1.0};

class HostileFrame : public ::testing::TestWithParam<double> {};

TEST_P(HostileFrame, ComplexHelpersEndAndStayFiniteOnFiniteData) {
    const double v = GetParam();
    for (double w : kValues) {
        const bool finite = std::isfinite(v) && std::isfinite(w);
        const double modulus = A02_MODULUS(v, w);
        EXPECT_TRUE(!finite || std::isfinite(modulus) || modulus == HUGE_VAL) << v << " " << w;
        double re = 0.0, im = 0.0;
        A02_SQRT(v, w, &re, &im);
        EXPECT_TRUE(!finite || (std::isfinite(re) && std::isfinite(im) && re >= 0.0)) << v << " " << w;
        A02_DIVIDE(1.0, 1.0, v, w, &re, &im);
        if (finite && (v != 0.0 || w != 0.0) && std::fabs(v) < kBig / 4 && std::fabs(w) < kBig / 4) {
            EXPECT_FALSE(std::isnan(re) || std::isnan(im)) << v << " " << w;
        }
    }
}

TEST_P(HostileFrame, InnerProductEnds) {
    std::vector<double> a(7, 1.5), b(7, -0.5);
    a[3] = GetParam();
    double d1 = 0.0, d2 = 0.0;
    ZekFail fail{};
    x03aac(a.data(), 7, b.data(), 7, 7, 1, 1, GetParam(), 0.0, &d1, &d2, 1, &fail);
    EXPECT_EQ(fail.code, 0);
    EXPECT_TRUE(!(std::fabs(GetParam()) < 1e300) || std::isfinite(d1 + d2));
}

INSTANTIATE_TEST_SUITE_P(Values, HostileFrame, ::testing::ValuesIn(kValues));

} // namespace
