// Coefficients of exact linear data far from the origin: the intercept is small against the slope's
// contribution, so it is what the rounding of Q'y loses first unless the fit is refined against the data.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zek2/g02.h"

namespace {

TEST(RegressionRefinement, RecoversTheInterceptOfAnOffsetDesign) {
    struct Case {
        double offset, intercept, slope;
    };
    // y = intercept + slope x on x = offset + i: every value exact in double precision.
    const Case cases[] = {{1e6, 0.5, 0.125}, {3e7, -2.0, 1.0 / 1024}, {1e4, 0.25, 3.0}};
    for (const Case &c : cases) {
        const int n = 40, m = 1, ip = 2;
        std::vector<double> x(n), y(n), b(ip), se(ip), cov(3), res(n), h(n), q(n * (ip + 1)), p(2 * ip + ip * ip);
        for (int i = 0; i < n; ++i) {
            x[i] = c.offset + i;
            y[i] = c.intercept + c.slope * x[i];
        }
        const int sx = 1;
        double rss = 0.0, df = 0.0;
        int svd = 0, rank = 0;
        ZekFail fail{};
        g02dac(Zek_MeanInclude, n, m, x.data(), n, &sx, ip, y.data(), nullptr, &rss, &df, b.data(), se.data(), cov.data(),
               res.data(), h.data(), q.data(), n, &svd, &rank, p.data(), 0.0, nullptr, &fail);
        ASSERT_EQ(fail.code, 0) << c.offset;
        EXPECT_NEAR(b[0], c.intercept, 1e-12 * std::fabs(c.intercept)) << c.offset;
        EXPECT_NEAR(b[1], c.slope, 1e-14 * std::fabs(c.slope)) << c.offset;
    }
}

} // namespace
