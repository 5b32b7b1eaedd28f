// The regression fit against an exact rational solution, the certified polynomial problems of the
// StRD collection (Wampler 1 to 5 by formula; Longley, NoInt1, NoInt2, Norris, Pontius and Filip from
// tests/data/strd), a design not of full rank against its reduced design, and the failure exits.  Then
// the updating routines against fresh fits: every sequence of changes to the factorisation must give
// the estimates, standard errors, covariance and residual sum of squares of g02dac on the changed data
// to 1e-12 relative (to the largest element of each result), and the constrained estimates and the
// estimability test on a design of deficient rank (their failure exits are rows of the hostile table).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "support.h"
#include "zek2/messages.h"

namespace {

#include "regression_reference.inc"

const std::vector<double> kX = {3, 1, 2, 5, 0, 4, 1, 6, 1, 4, 2, -1, 3, 0, 1, 2, -2, 0, 5, 1, 2, -1, 1, 3};
const std::vector<double> kY = {7, 3, 11, 6, 5, 4, 2, 15};
const std::vector<double> kWt = {1, 2, 0, 1, 3, 1, 0.5, 1};

// The columns t^1 .. t^m of a polynomial design.
std::vector<double> powers(const std::vector<double> &t, int m) {
    const std::size_t n = t.size();
    std::vector<double> x(n * m);
    for (std::size_t i = 0; i < n; ++i) {
        double v = 1.0;
        for (int k = 0; k < m; ++k) x[i + k * n] = v *= t[i];
    }
    return x;
}

// The total sum of squares of y about its mean, or about zero.
double total_ss(const std::vector<double> &y, bool about_mean) {
    double centre = 0.0, tss = 0.0;
    for (double v : y) centre += about_mean ? v / static_cast<double>(y.size()) : 0.0;
    for (double v : y) tss += (v - centre) * (v - centre);
    return tss;
}

void expect_close(const std::vector<double> &got, const double *want, double tol, const char *what) {
    for (std::size_t i = 0; i < got.size(); ++i) {
        EXPECT_NEAR(got[i], want[i], tol * (1.0 + std::fabs(want[i]))) << what << " " << i;
    }
}

TEST(Regression, WeightedFitWithMeanMatchesTheExactSolution) {
    Lsq f(8, 3, 3);
    ASSERT_EQ(f.run("M", "W", kX, {1, 0, 1}, kY, kWt), 0);
    expect_close(f.b, kB, 1e-14, "b");
    EXPECT_NEAR(f.rss, kRss, 1e-13 * kRss);
    EXPECT_EQ(f.idf, kIdf);
    expect_close(f.cov, kCov, 1e-13, "cov");
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(f.se[i], std::sqrt(kCov[i * (i + 1) / 2 + i]), 1e-14);
    expect_close(f.res, kRes, 1e-13, "res");
    expect_close(f.h, kH, 1e-13, "h");
    EXPECT_EQ(f.svd, 0);
    EXPECT_EQ(f.irank, 3);
    // The leverages of the positive weights sum to the rank.
    double sum = 0.0;
    for (double v : f.h) sum += v;
    EXPECT_NEAR(sum, 3.0, 1e-13);
}

// Digits of agreement: -log10 of the largest relative error.
double digits(const std::vector<double> &got, const std::vector<double> &want) {
    double e = 0.0;
    for (std::size_t i = 0; i < got.size(); ++i) e = std::fmax(e, std::fabs(got[i] - want[i]) / std::fabs(want[i]));
    return e == 0.0 ? 17.0 : -std::log10(e);
}

TEST(Regression, CertifiedPolynomialProblems) {
    // Wampler 1 to 5 of the StRD collection, made here rather than read: x = 0..20, y = sum c^k x^k
    // (k = 0..5) plus `noise` times a fixed vector e that is orthogonal to every power of x up to the
    // fifth, so the certified coefficients are c^k whatever the noise.  Wampler 1 and 2 fit exactly; for
    // 3 to 5 the certified standard deviations of the coefficients and of the residuals scale with the
    // noise (values below for noise 1).  The figures were confirmed by a 50-digit mpmath solution of the
    // normal equations.  The digits asked of the coefficients are what Householder QR gives in double
    // precision less a margin: on 3 to 5 the error is the residual term, eps cond^2 |r|, that refining b
    // cannot remove (measured 9.9, 7.9, 5.9 here; plain Householder QR 9.4, 8.0, 6.0).  The standard
    // deviations hold 13.5 digits on all three.
    static const double e[21] = {759,  -2048, 2048, -2048, 2523, -2048, 2048, -2048, 1838, -2048, 2048,
                                 -2048, 1838, -2048, 2048, -2048, 2523, -2048, 2048, -2048, 759};
    static const double sd1[6] = {2152.32624678170, 2363.55173469681, 779.343524331583,
                                  101.475507550350, 5.64566512170752, 0.112324854679312};
    const double res_sd1 = 2360.14502379268;
    struct Case { const char *name; double c, noise, r2, digits; };
    const Case cases[] = {{"Wampler1", 1.0, 0.0, 1.0, 7.0}, {"Wampler2", 0.1, 0.0, 1.0, 7.0},
                          {"Wampler3", 1.0, 1.0, 0.999995559025820, 9.5}, {"Wampler4", 1.0, 100.0, 0.957478440825662, 7.5},
                          {"Wampler5", 1.0, 10000.0, 0.224668921574940E-02, 5.5}};
    std::vector<double> t(21);
    for (int i = 0; i < 21; ++i) t[i] = i;
    const std::vector<double> x = powers(t, 5);
    for (const Case &c : cases) {
        std::vector<double> y(21), want(6);
        for (int k = 0; k < 6; ++k) want[k] = std::pow(c.c, k);
        for (int i = 0; i < 21; ++i) {
            y[i] = 1.0 + c.noise * e[i];
            for (int k = 1; k <= 5; ++k) y[i] += want[k] * x[i + (k - 1) * 21];
        }
        Lsq f(21, 5, 6);
        ASSERT_EQ(f.run("M", "U", x, {1, 1, 1, 1, 1}, y, {}), 0) << c.name;
        EXPECT_EQ(f.idf, 15) << c.name;
        EXPECT_GT(digits(f.b, want), c.digits) << c.name;
        if (c.noise == 0.0) {
            EXPECT_LT(f.rss, 1e-10) << c.name;
            continue;
        }
        std::vector<double> sd(6);
        for (int k = 0; k < 6; ++k) sd[k] = c.noise * sd1[k];
        EXPECT_GT(digits(f.se, sd), 12.5) << c.name;
        EXPECT_GT(digits({std::sqrt(f.rss / f.idf)}, {c.noise * res_sd1}), 12.5) << c.name;
        EXPECT_GT(digits({1.0 - f.rss / total_ss(y, true)}, {c.r2}), 12.5) << c.name;
    }
}

TEST(Regression, CertifiedStrdDatasets) {
    // Certified values of the collection (each confirmed by an mpmath solution of the normal equations
    // at 40 digits): coefficients, their standard deviations, residual standard deviation, R^2.
    struct Case { const char *file, *mean; int m; std::vector<double> b, sd; double res_sd, r2, digits; };
    const Case cases[] = {
        {"longley.dat", "M", 6,
         {-3482258.63459582, 15.0618722713733, -0.358191792925910e-01, -2.02022980381683, -1.03322686717359,
          -0.511041056535807e-01, 1829.15146461355},
         {890420.383607373, 84.9149257747669, 0.334910077722432e-01, 0.488399681651699, 0.214274163161675,
          0.226073200069370, 455.478499142212},
         304.854073561965, 0.995479004577296, 9.0},
        {"noint1.dat", "Z", 1, {2.07438016528926}, {0.165289256198347e-01}, 3.56753034006338, 0.999365492298663, 13.0},
        {"noint2.dat", "Z", 1, {0.727272727272727}, {0.420827318078432e-01}, 0.369274472937998, 0.993348115299335, 13.0},
    };
    for (const Case &c : cases) {
        std::vector<double> x, y;
        ASSERT_TRUE(read_strd(c.file, c.m, x, y)) << c.file;
        const int n = static_cast<int>(y.size()), ip = static_cast<int>(c.b.size());
        Lsq f(n, c.m, ip);
        ASSERT_EQ(f.run(c.mean, "U", x, std::vector<int>(c.m, 1), y, {}), 0) << c.file;
        EXPECT_GT(digits(f.b, c.b), c.digits) << c.file;
        EXPECT_GT(digits(f.se, c.sd), c.digits) << c.file;
        EXPECT_GT(digits({std::sqrt(f.rss / f.idf)}, {c.res_sd}), c.digits) << c.file;
        // R^2 about the mean with the constant, about zero without.
        EXPECT_NEAR(1.0 - f.rss / total_ss(y, c.mean[0] == 'M'), c.r2, 1e-12) << c.file;
    }
}

TEST(Regression, CertifiedPolynomialStrdDatasets) {
    // Polynomials in one variable of the collection, fitted through the C-style routine with the powers
    // of x as columns and the mean as the constant term.  The digits asked are what Householder QR in
    // double precision reaches on each (measured: Norris 12.3 (intercept; slope 15), Pontius 11.9,
    // Filip 7.4, whose design the rank test still holds of full rank at tol = 0).
    struct Case { const char *file; int degree; std::vector<double> b, sd; double rss, digits; };
    const Case cases[] = {
        {"norris.dat", 1, {-0.262323073774029, 1.00211681802045}, {0.232818234301152, 0.429796848199937e-03},
         26.6173985294224, 12.0},
        {"pontius.dat", 2, {0.673565789473684e-03, 0.732059160401003e-06, -0.316081871345029e-14},
         {0.107938612033077e-03, 0.157817399981659e-09, 0.486652849992036e-16}, 0.155761768796992e-05, 11.5},
        {"filip.dat", 10,
         {-1467.48961422980, -2772.17959193342, -2316.37108160893, -1127.97394098372, -354.478233703349,
          -75.1242017393757, -10.8753180355343, -1.06221498588947, -0.670191154593408e-01, -0.246781078275479e-02,
          -0.402962525080404e-04},
         {298.084530995537, 559.779865474950, 466.477572127796, 227.204274477751, 71.6478660875927, 15.2897178747400,
          2.23691159816033, 0.221624321934227, 0.142363763154724e-01, 0.535617408889821e-03, 0.896632837373868e-05},
         0.795851382172941e-03, 7.0},
    };
    for (const Case &c : cases) {
        std::vector<double> t, y;
        ASSERT_TRUE(read_strd(c.file, 1, t, y)) << c.file;
        const int n = static_cast<int>(y.size()), m = c.degree, ip = m + 1;
        Lsq f(n, m, ip);
        ASSERT_EQ(f.run_c(Zek_MeanInclude, powers(t, m), n, std::vector<int>(m, 1), y), 0) << c.file << ": " << f.fail.message;
        EXPECT_EQ(f.irank, ip) << c.file;
        EXPECT_EQ(f.df, n - ip) << c.file;
        EXPECT_GT(digits(f.b, c.b), c.digits) << c.file;
        EXPECT_GT(digits(f.se, c.sd), c.digits) << c.file;
        EXPECT_GT(digits({f.rss}, {c.rss}), c.digits) << c.file;
    }
}

TEST(Regression, RefinementRecoversTheInterceptOfAnOffsetDesign) {
    // Exact data y = c + s x on x = offset + i: the intercept, small against s x, is what the rounding of
    // Q'y loses first unless the coefficients are refined against the data.
    const struct { double offset, c, s; } cases[] = {{1e6, 0.5, 0.125}, {3e7, -2.0, 1.0 / 1024}, {1e4, 0.25, 3.0}};
    for (const auto &k : cases) {
        std::vector<double> x(40), y(40);
        for (int i = 0; i < 40; ++i) y[i] = k.c + k.s * (x[i] = k.offset + i);
        Lsq f(40, 1, 2);
        ASSERT_EQ(f.run_c(Zek_MeanInclude, x, 40, {1}, y), 0) << k.offset;
        EXPECT_NEAR(f.b[0], k.c, 1e-12 * std::abs(k.c)) << k.offset;
        EXPECT_NEAR(f.b[1], k.s, 1e-14 * k.s) << k.offset;
    }
}

TEST(Regression, NewResponseOnTheSameDesignMatchesAFreshFit) {
    Lsq f(8, 3, 3), g(8, 3, 3);
    ASSERT_EQ(f.run("M", "W", kX, {1, 0, 1}, kY, kWt), 0);
    const std::vector<double> y2 = {1, -2, 4, 0.5, 3, 8, -1, 2};
    ASSERT_EQ(g.run("M", "W", kX, {1, 0, 1}, y2, kWt), 0);
    ASSERT_EQ(f.refit(y2, kWt, f.rss), 0);
    EXPECT_NEAR(f.rss, g.rss, 1e-13 * g.rss);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(f.b[i], g.b[i], 1e-13) << i;
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(f.se[i], g.se[i], 1e-13) << i;
    for (int i = 0; i < 8; ++i) EXPECT_NEAR(f.res[i], kWt[i] > 0 ? g.res[i] : 0.0, 1e-13) << i;
    ZekFail fail{};
    std::vector<double> b2(3);
    g02dgc(8, kWt.data(), &g.rss, 3, 3, g.cov.data(), g.q.data(), 8, 0, g.p.data(), y2.data(), b2.data(), g.se.data(),
           g.res.data(), &fail);
    EXPECT_EQ(fail.code, 0);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(b2[i], f.b[i], 1e-13) << i;
    EXPECT_EQ(f.refit(y2, kWt, 0.0), 1);
}

TEST(Regression, SimpleRegressionAgreesWithTheGeneralFit) {
    const std::vector<double> x(kX.begin() + 16, kX.end());  // the third variable
    for (int mean : {Zek_MeanInclude, Zek_MeanZero}) {
        double a = 0, b = 0, sa = 0, sb = 0, rsq = 0, rss = 0, df = 0;
        ZekFail fail{};
        g02cac(mean, 8, x.data(), kY.data(), kWt.data(), &a, &b, &sa, &sb, &rsq, &rss, &df, &fail);
        ASSERT_EQ(fail.code, 0);
        const bool with = mean == Zek_MeanInclude;
        Lsq f(8, 3, with ? 2 : 1);
        ASSERT_EQ(f.run(with ? "M" : "Z", "W", kX, {0, 0, 1}, kY, kWt), 0);
        EXPECT_NEAR(b, f.b.back(), 1e-14);
        EXPECT_NEAR(sb, f.se.back(), 1e-14);
        EXPECT_NEAR(rss, f.rss, 1e-12);
        EXPECT_EQ(df, f.idf);
        if (with) {
            EXPECT_NEAR(a, f.b[0], 1e-14);
            EXPECT_NEAR(sa, f.se[0], 1e-14);
        }
        EXPECT_GT(rsq, 0.0);
        EXPECT_LT(rsq, 1.0);
    }
    // Limits of the fitted mean are t sqrt(rms h / w) wide, t the 0.975 point on 5 degrees of freedom.
    std::vector<double> yhat(8), yml(8), ymu(8), yl(8), yu(8), h(8), res(8);
    double rms = 0;
    ZekFail fail{};
    g02cbc(Zek_MeanInclude, 8, x.data(), kY.data(), kWt.data(), 0.95, 0.99, yhat.data(), yml.data(), ymu.data(), yl.data(),
           yu.data(), h.data(), res.data(), &rms, &fail);
    ASSERT_EQ(fail.code, 0);
    for (int i = 0; i < 8; ++i) {
        if (kWt[i] > 0) {
            EXPECT_NEAR(0.5 * (ymu[i] - yml[i]) / std::sqrt(rms * h[i] / kWt[i]), 2.5705818356363155, 1e-13);  // mpmath findroot on betainc
        }
        EXPECT_GT(yu[i] - yl[i], ymu[i] - yml[i]);
        EXPECT_NEAR(res[i] + yhat[i], kY[i], 1e-14);
    }
    double a = 5, b = 5, sa = 5, sb = 5, rsq = 5, rss = 5, df = 5;
    const std::vector<double> flat(8, 2.0);
    g02cac(Zek_MeanInclude, 8, flat.data(), kY.data(), nullptr, &a, &b, &sa, &sb, &rsq, &rss, &df, &fail);
    EXPECT_EQ(fail.code, ZE_X_OR_Y_IDEN);
    EXPECT_EQ(a, 5.0);
}

TEST(Regression, DependentColumnsFitAsTheReducedDesign) {
    // The third variable is twice the first: the model M + x1 + x3 has rank 2 and must reproduce the fit
    // of M + x1 in everything that is estimable.
    std::vector<double> x = kX;
    for (int i = 0; i < 8; ++i) x[16 + i] = 2.0 * x[i];
    Lsq f(8, 3, 3), g(8, 3, 2);
    ASSERT_EQ(f.run("M", "W", x, {1, 0, 1}, kY, kWt, 1e-10), 0);
    ASSERT_EQ(g.run("M", "W", x, {1, 0, 0}, kY, kWt), 0);
    EXPECT_EQ(f.svd, 1);
    EXPECT_EQ(f.irank, 2);
    EXPECT_EQ(f.idf, g.idf);
    EXPECT_NEAR(f.rss, g.rss, 1e-12 * g.rss);
    for (int i = 0; i < 8; ++i) EXPECT_NEAR(f.res[i], g.res[i], 1e-12) << i;
    for (int i = 0; i < 8; ++i) EXPECT_NEAR(f.h[i], g.h[i], 1e-12) << i;
    // Estimable functions: the constant and b1 + 2 b3, with their variances; the minimum-norm solution
    // splits the slope along (1, 2).
    EXPECT_NEAR(f.b[0], g.b[0], 1e-12);
    EXPECT_NEAR(f.b[1] + 2.0 * f.b[2], g.b[1], 1e-12);
    EXPECT_NEAR(f.b[2], 2.0 * f.b[1], 1e-12);
    EXPECT_NEAR(f.cov[0], g.cov[0], 1e-12);
    EXPECT_NEAR(f.cov[2] + 4.0 * f.cov[4] + 4.0 * f.cov[5], g.cov[2], 1e-12);
    // A new response through the singular value form agrees with a fresh fit of the reduced design.
    const std::vector<double> y2 = {1, -2, 4, 0.5, 3, 8, -1, 2};
    Lsq g2(8, 3, 2);
    ASSERT_EQ(g2.run("M", "W", x, {1, 0, 0}, y2, kWt), 0);
    ASSERT_EQ(f.refit(y2, kWt, f.rss), 0);
    EXPECT_NEAR(f.rss, g2.rss, 1e-12 * g2.rss);
    EXPECT_NEAR(f.b[1] + 2.0 * f.b[2], g2.b[1], 1e-12);
    EXPECT_NEAR(f.cov[2] + 4.0 * f.cov[4] + 4.0 * f.cov[5], g2.cov[2], 1e-12);
    for (int i = 0; i < 8; ++i) EXPECT_NEAR(f.res[i], kWt[i] > 0 ? g2.res[i] : 0.0, 1e-12) << i;
    // A column of zeros is dropped the same way.
    std::fill(x.begin() + 16, x.end(), 0.0);
    Lsq z(8, 3, 3);
    ASSERT_EQ(z.run("M", "W", x, {1, 0, 1}, kY, kWt), 0);
    EXPECT_EQ(z.irank, 2);
    EXPECT_NEAR(z.b[1], g.b[1], 1e-12);
    EXPECT_NEAR(z.b[2], 0.0, 1e-14);
}

TEST(Regression, FailureExits) {
    struct Case { const char *mean, *weight; std::vector<int> isx; std::vector<double> wt; int ip, ifail; double tol; };
    const std::vector<double> bad_wt = {1, 2, -1, 1, 3, 1, 0.5, 1};
    const std::vector<double> few = {1, 0, 0, 0, 1, 0, 0, 1};  // three positive weights for three parameters
    const Case cases[] = {
        {"X", "U", {1, 0, 1}, kWt, 3, 1, 0.0},  {"M", "Q", {1, 0, 1}, kWt, 3, 1, 0.0},
        {"M", "U", {1, -1, 1}, kWt, 3, 1, 0.0}, {"M", "U", {1, 0, 1}, kWt, 3, 1, -1.0},
        {"M", "W", {1, 0, 1}, bad_wt, 3, 2, 0.0}, {"Z", "U", {1, 0, 1}, kWt, 3, 3, 0.0},
        {"M", "W", {1, 0, 1}, few, 3, 4, 0.0},   {"M", "U", {1, 1, 1}, kWt, 9, 1, 0.0},
    };
    for (const Case &c : cases) {
        Lsq f(8, 3, c.ip);
        EXPECT_EQ(f.run(c.mean, c.weight, kX, c.isx, kY, c.wt, c.tol), c.ifail) << c.mean << c.weight << c.ip;
    }
    // The C-style layer: the weighted fit, then a leading dimension short of n.
    Lsq g(8, 3, 3);
    EXPECT_EQ(g.run_c(Zek_MeanInclude, kX, 8, {1, 0, 1}, kY, kWt.data()), 0);
    EXPECT_EQ(g.df, 4.0);
    expect_close(g.b, kB, 1e-14, "g02dac b");
    EXPECT_EQ(g.run_c(Zek_MeanInclude, kX, 7, {1, 0, 1}, kY), ZE_2_INT_ARG_LT);
}

constexpr int kRows = 12, kVars = 4;

double x_at(int i, int j) { return std::sin(1.3 * i + 0.7 * j + 0.4 * i * j) * (j + 1) + 0.1 * i; }
double y_at(int i) { return 2.0 + std::cos(0.9 * i) + 0.3 * i; }
double w_at(int i) { return 0.5 + (i % 3); }

// A fit by g02dac of the rows listed, on the variables of sx, with the mean and optional weights.
struct Model {
    int n, ip;  // ip counts the mean; b, se, cov and p have room for one more column, Q for two
    std::vector<double> b, se, cov, res, h, q, p;
    double rss = 0, df = 0;
    int svd = -1, rank = -1;
    ZekFail fail{};
    Model(const std::vector<int> &rows, const std::vector<int> &sx, bool weighted, double x3 = 0.0)
        : n(static_cast<int>(rows.size())), ip(1 + static_cast<int>(std::count(sx.begin(), sx.end(), 1))), b(ip + 1),
          se(ip + 1), cov((ip + 1) * (ip + 2) / 2), res(n), h(n), q(n * (ip + 2)), p(2 * (ip + 1) + (ip + 1) * (ip + 1)) {
        std::vector<double> x(n * kVars), y(n), wt(n);
        for (int r = 0; r < n; ++r) {
            for (int j = 0; j < kVars; ++j) x[r + j * n] = x_at(rows[r], j);
            if (x3 != 0.0) x[r + 3 * n] = x[r + 1 * n] + x3 * x[r + 2 * n];  // exact dependence
            y[r] = y_at(rows[r]);
            wt[r] = w_at(rows[r]);
        }
        g02dac(Zek_MeanInclude, n, kVars, x.data(), n, sx.data(), ip, y.data(), weighted ? wt.data() : nullptr, &rss, &df,
               b.data(), se.data(), cov.data(), res.data(), h.data(), q.data(), n, &svd, &rank, p.data(), 0.0, nullptr,
               &fail);
    }
    // Estimates from the factorisation after changes, for nobs observations of ip columns.
    void refit(int nobs, int ncol) {
        ip = ncol;
        g02ddc(nobs, ip, q.data(), n, &rss, &df, b.data(), se.data(), cov.data(), &svd, &rank, p.data(), 0.0, &fail);
    }
    void row(int update, int i, const std::vector<int> &sx, bool weighted) {
        std::vector<double> x(kVars);
        for (int j = 0; j < kVars; ++j) x[j] = x_at(i, j);
        const double w = w_at(i);
        g02dcc(update, Zek_MeanInclude, kVars, sx.data(), ip, x.data(), 1, y_at(i), weighted ? &w : nullptr, q.data(), n,
               &rss, &fail);
    }
};

void expect_same(const std::vector<double> &got, const std::vector<double> &want, std::size_t count, const char *what) {
    double scale = 0.0;
    for (std::size_t i = 0; i < count; ++i) scale = std::fmax(scale, std::fabs(want[i]));
    for (std::size_t i = 0; i < count; ++i) EXPECT_NEAR(got[i], want[i], 1e-12 * scale) << what << " " << i;
}

void expect_same_fit(const Model &got, const Model &want) {
    ASSERT_EQ(got.fail.code, 0) << got.fail.message;
    ASSERT_EQ(want.fail.code, 0) << want.fail.message;
    const std::size_t ip = static_cast<std::size_t>(want.ip);
    expect_same(got.b, want.b, ip, "b");
    expect_same(got.se, want.se, ip, "se");
    expect_same(got.cov, want.cov, ip * (ip + 1) / 2, "cov");
    EXPECT_NEAR(got.rss, want.rss, 1e-12 * want.rss);
    EXPECT_EQ(got.df, want.df);
    EXPECT_EQ(got.rank, want.rank);
}

std::vector<int> all_but(std::initializer_list<int> gone) {
    std::vector<int> rows;
    for (int i = 0; i < kRows; ++i)
        if (std::find(gone.begin(), gone.end(), i) == gone.end()) rows.push_back(i);
    return rows;
}

const std::vector<int> kAll = {1, 1, 1, 1};

TEST(RegressionUpdate, ObservationsAddedAndRemovedMatchFreshFits) {
    for (bool weighted : {false, true}) {
        Model grown({0, 1, 2, 3, 4, 5, 6}, kAll, weighted);
        for (int i = 7; i < kRows; ++i) grown.row(Zek_ObservAdd, i, kAll, weighted);
        grown.refit(kRows, 5);
        expect_same_fit(grown, Model(all_but({}), kAll, weighted));

        Model shrunk(all_but({}), kAll, weighted);
        for (int i : {3, 8, 10}) shrunk.row(Zek_ObservDel, i, kAll, weighted);
        shrunk.refit(kRows - 3, 5);
        expect_same_fit(shrunk, Model(all_but({3, 8, 10}), kAll, weighted));
    }
}

TEST(RegressionUpdate, MixedSequenceMatchesAFreshFit) {
    // Weighted: add variable 4, drop observation 2, delete variable 1 (model column 2), add observation 11.
    Model m(all_but({11}), {1, 1, 1, 0}, true);
    std::vector<double> col(kRows - 1), wt(kRows - 1);
    for (int r = 0; r < kRows - 1; ++r) col[r] = x_at(r, 3), wt[r] = w_at(r);
    g02dec(kRows - 1, 4, m.q.data(), kRows - 1, m.p.data(), wt.data(), col.data(), &m.rss, 0.0, &m.fail);
    ASSERT_EQ(m.fail.code, 0) << m.fail.message;
    m.ip = 5;
    m.row(Zek_ObservDel, 2, kAll, true);
    ASSERT_EQ(m.fail.code, 0) << m.fail.message;
    g02dfc(5, m.q.data(), kRows - 1, 2, &m.rss, &m.fail);
    ASSERT_EQ(m.fail.code, 0) << m.fail.message;
    m.ip = 4;
    m.row(Zek_ObservAdd, 11, {0, 1, 1, 1}, true);
    m.refit(kRows - 1, 4);
    expect_same_fit(m, Model(all_but({2}), {0, 1, 1, 1}, true));
}

TEST(RegressionUpdate, ConstraintsAndEstimabilityOnADeficientDesign) {
    // Variable 4 = variable 2 + 0.5 variable 3: rank 4 of 5.  The constraint b5 = 0 gives the fit without
    // variable 4; the functions along the design's rows are estimable, e5 alone is not.
    Model deficient(all_but({}), kAll, false, 0.5);
    ASSERT_EQ(deficient.fail.code, 0) << deficient.fail.message;
    ASSERT_EQ(deficient.svd, 1);
    ASSERT_EQ(deficient.rank, 4);
    const Model reduced(all_but({}), {1, 1, 1, 0}, false);
    const std::vector<double> c = {0, 0, 0, 0, 1};
    ZekFail fail{};
    g02dkc(5, 1, deficient.p.data(), c.data(), 5, deficient.b.data(), deficient.rss, deficient.df, deficient.se.data(),
           deficient.cov.data(), &fail);
    ASSERT_EQ(fail.code, 0) << fail.message;
    for (int k = 0; k < 4; ++k) {
        EXPECT_NEAR(deficient.b[k], reduced.b[k], 1e-10 * std::fabs(reduced.b[k])) << k;
        EXPECT_NEAR(deficient.se[k], reduced.se[k], 1e-10 * reduced.se[k]) << k;
    }
    EXPECT_NEAR(deficient.b[4], 0.0, 1e-12);
    EXPECT_NEAR(deficient.se[4], 0.0, 1e-12);

    struct Case { std::vector<double> f; int est; };
    const double fitted = reduced.b[0] + reduced.b[1] * x_at(5, 0) + reduced.b[2] * x_at(5, 1) + reduced.b[3] * x_at(5, 2);
    const std::vector<Case> cases = {
        {{1, x_at(5, 0), x_at(5, 1), x_at(5, 2), x_at(5, 1) + 0.5 * x_at(5, 2)}, 1},
        {{0, 0, 0, 0, 1}, 0},
        {{0, 0, 1, 0.5, -1}, 0},
    };
    for (const Case &k : cases) {
        int est = -1;
        double stat = -1, sestat = -1, t = -1;
        g02dnc(5, 4, deficient.b.data(), deficient.cov.data(), deficient.p.data(), k.f.data(), &est, &stat, &sestat, &t,
               0.0, &fail);
        ASSERT_EQ(fail.code, 0) << fail.message;
        EXPECT_EQ(est, k.est);
        if (k.est == 1) {
            EXPECT_NEAR(stat, fitted, 1e-11 * std::fabs(fitted));
            EXPECT_NEAR(t, stat / sestat, 1e-15 * std::fabs(t));
        } else {
            EXPECT_EQ(stat, 0.0);
        }
    }
}

} // namespace
