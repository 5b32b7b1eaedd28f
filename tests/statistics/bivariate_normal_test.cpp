// The quadrature-based distributions.  The bivariate normal against the one-dimensional integral of phi(u) Phi((y - rho u)/sqrt(1 - rho^2))
// evaluated by mpmath at 30 digits, the closed form at the origin, the degenerate correlations and the
// failures; the ratio of quadratic forms behind the Durbin-Watson bounds against closed forms.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "zek2/g01.h"
#include "zek2/messages.h"

namespace {

TEST(BivariateNormal, AgreesWithHighPrecisionValuesAndClosedForms) {
    struct Case { double x, y, rho, want; };
    const Case cases[] = {{0.5, -0.3, 0.4, 0.31712692828616510977},   {1.2, 0.7, -0.6, 0.6452358404500927961},
                          {-2.0, -1.5, 0.95, 0.022100008764184882795}, {-3.0, -3.0, 0.999, 0.0012708810536105265583},
                          {2.0, 1.9, -0.99, 0.94853330823581898757},   {-8.0, -7.0, 0.5, 2.216430192436399268e-19},
                          {0.3, 0.3, 0.9999, 0.61575965554343222023}};
    for (const Case &c : cases) {
        ZekFail fail{};
        EXPECT_NEAR(g01hac(c.x, c.y, c.rho, &fail), c.want, 1e-13 * c.want) << c.x << " " << c.y << " " << c.rho;
        EXPECT_EQ(fail.code, 0);
        // Symmetric in x and y.
        EXPECT_NEAR(g01hac(c.y, c.x, c.rho, nullptr), c.want, 1e-13 * c.want);
    }
    // P(X <= 0, Y <= 0) = 1/4 + asin(rho)/(2 pi); rho = +-1 and 0 in closed form.
    for (double rho : {-0.999999, -0.5, 0.25, 0.9, 0.999999}) {
        EXPECT_NEAR(g01hac(0.0, 0.0, rho, nullptr), 0.25 + std::asin(rho) / (2.0 * M_PI), 1e-15) << rho;
    }
    const double px = g01eac(Zek_LowerTail, 0.7, nullptr), py = g01eac(Zek_LowerTail, -0.2, nullptr);
    EXPECT_EQ(g01hac(0.7, -0.2, 1.0, nullptr), py);
    EXPECT_NEAR(g01hac(0.7, -0.2, -1.0, nullptr), px + py - 1.0, 1e-16);
    EXPECT_NEAR(g01hac(0.7, -0.2, 0.0, nullptr), px * py, 1e-16);
}

TEST(BivariateNormal, Failures) {
    ZekFail fail{};
    EXPECT_EQ(g01hac(0.0, 0.0, 1.5, &fail), 0.0);
    EXPECT_EQ(fail.code, ZE_REAL_ARG_CONS);
    EXPECT_NE(std::string(fail.message).find("-1.0 <= rho <= 1.0"), std::string::npos) << fail.message;
}

TEST(DurbinWatson, RatioOfQuadraticFormsAndBounds) {
    // Two terms: P(|z2/z1| <= sqrt(-c1/c2)) = (2/pi) atan(sqrt(-c1/c2)); two pairs: chi-squared on 2
    // each, P(X1/X2 >= r) = 1/(1 + r).
    struct Case { int m; double lambda[4], d, want; };
    const Case cases[] = {{2, {1, 3}, 1.5, 1.0 / 3.0}, {2, {1, 3}, 2.0, 0.5}, {2, {0.2, 3.5}, 3.0, 2.0 / M_PI * std::atan(std::sqrt(2.8 / 0.5))},
                          {4, {1, 1, 3, 3}, 1.5, 0.25}, {4, {1, 1, 3, 3}, 2.5, 0.75}, {4, {1, 1, 3, 3}, 0.5, 0.0}};
    for (const Case &c : cases) EXPECT_NEAR(H_DW_TAIL(&c.m, c.lambda, &c.d), c.want, 1e-13) << c.m << " " << c.d;
    const int n = 20, ip = 3;
    double work[20], pdl = -1, pdu = -1, d = 1.2;
    int ifail = -1;
    G01EPF(&n, &ip, &d, &pdl, &pdu, work, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_TRUE(0.0 < pdu && pdu < pdl && pdl < 1.0) << pdu << " " << pdl;
    const int bad = 20;
    ifail = 1;
    G01EPF(&n, &bad, &d, &pdl, &pdu, work, &ifail);
    EXPECT_EQ(ifail, 1);
}

} // namespace
