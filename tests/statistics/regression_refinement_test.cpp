// Exact data y = c + s x on x = offset + i: the intercept, small against s x, is what the rounding of
// Q'y loses first unless the coefficients are refined against the data.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zek2/g02.h"

TEST(RegressionRefinement, RecoversTheInterceptOfAnOffsetDesign) {
    const struct {
        double offset, c, s;
    } cases[] = {{1e6, 0.5, 0.125}, {3e7, -2.0, 1.0 / 1024}, {1e4, 0.25, 3.0}};
    for (const auto &k : cases) {
        const int n = 40, ip = 2, sx = 1;
        std::vector<double> x(n), y(n), b(ip), se(ip), cov(3), res(n), h(n), q(n * (ip + 1)), p(8);
        for (int i = 0; i < n; ++i) y[i] = k.c + k.s * (x[i] = k.offset + i);
        double rss = 0.0, df = 0.0;
        int svd = 0, rank = 0;
        ZekFail fail{};
        g02dac(Zek_MeanInclude, n, 1, x.data(), n, &sx, ip, y.data(), nullptr, &rss, &df, b.data(), se.data(), cov.data(),
               res.data(), h.data(), q.data(), n, &svd, &rank, p.data(), 0.0, nullptr, &fail);
        ASSERT_EQ(fail.code, 0) << k.offset;
        EXPECT_NEAR(b[0], k.c, 1e-12 * std::abs(k.c)) << k.offset;
        EXPECT_NEAR(b[1], k.s, 1e-14 * k.s) << k.offset;
    }
}
