// Generalised linear models against R's glm on the textbook data (reference values written into
// glm_reference.inc), the rank-deficient path with its constraints and estimability, and the exits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "support.h"

namespace {

#include "glm_reference.inc"

Glm dobson() {
    return Glm(kPoisson, Zek_Log, 9, {0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1},
               {18, 17, 15, 20, 10, 20, 25, 13, 12});
}

Glm clotting(Fam fam, int link) {
    std::vector<double> logu;
    for (double u : {5, 10, 15, 20, 30, 40, 60, 80, 100}) logu.push_back(std::log(u));
    return Glm(fam, link, 9, logu, {118, 58, 42, 35, 27, 25, 21, 19, 18});
}

// Columns: male, log2 dose, male times log2 dose; 20 moths a batch.
Glm budworm(int link) {
    Glm g(kBinomial, link, 12, {1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5, 0, 0, 0, 0, 0, 0},
          {1, 4, 9, 13, 18, 20, 0, 2, 6, 10, 12, 16});
    g.t.assign(12, 20.0);
    return g;
}

Glm with_offset() {
    Glm g(kPoisson, Zek_Log, 9, {0.5, 1.1, 1.4, 2.0, 2.2, 2.9, 3.1, 3.8, 4.4}, {2, 3, 6, 7, 8, 9, 10, 12, 15});
    for (double e : {10, 17, 21, 28, 32, 39, 40, 46, 52}) g.offset.push_back(std::log(e));
    return g;
}

// Coefficients to 1e-6 relative to the largest of them (the Dobson treatment effects are 0 to
// rounding), standard errors to 1e-6 relative, deviance to 1e-8 relative.
TEST(Glm, TextbookFitsAgreeWithTheReference) {
    const struct {
        const char *name;
        Glm g;
        const double *b, *se;
        double dev, scale;  // scale 0: not checked
    } cases[] = {
        {"Dobson Poisson log", dobson(), kDobsonB, kDobsonSe, kDobsonDev, 0},
        {"clotting gamma reciprocal", clotting(kGamma, Zek_Reciprocal), kClotB, kClotSe, kClotDev, kClotScale},
        {"clotting normal log", clotting(kNormal, Zek_Log), kNormLogB, kNormLogSe, kNormLogDev, kNormLogScale},
        {"budworm logit", budworm(Zek_Logistic), kBudLogitB, kBudLogitSe, kBudLogitDev, 0},
        {"budworm probit", budworm(Zek_Probit), kBudProbitB, kBudProbitSe, kBudProbitDev, 0},
        {"budworm cloglog", budworm(Zek_CompLogLog), kBudCloglogB, kBudCloglogSe, kBudCloglogDev, 0},
        {"Poisson with offset", with_offset(), kOffB, kOffSe, kOffDev, 0},
    };
    for (const auto &c : cases) {
        const Fit f = run(c.g);
        ASSERT_EQ(f.fail.code, 0) << c.name << ": " << f.fail.message;
        const int ip = static_cast<int>(f.b.size());
        EXPECT_EQ(f.rank, ip) << c.name;
        EXPECT_EQ(f.df, c.g.n - ip) << c.name;
        double big = 0;
        for (int j = 0; j < ip; ++j) big = std::fmax(big, std::fabs(c.b[j]));
        for (int j = 0; j < ip; ++j) {
            EXPECT_NEAR(f.b[j], c.b[j], 1e-6 * big) << c.name << " b" << j;
            EXPECT_NEAR(f.se[j], c.se[j], 1e-6 * c.se[j]) << c.name << " se" << j;
        }
        EXPECT_NEAR(f.dev, c.dev, 1e-8 * c.dev) << c.name;
        EXPECT_NEAR(c.scale > 0 ? f.s : 0.0, c.scale, 1e-6 * c.scale) << c.name;
    }
}

TEST(Glm, NormalIdentityIsTheLinearRegression) {
    Glm g = clotting(kNormal, Zek_Identity);
    g.wt = {1, 2, 1, 0.5, 1, 3, 1, 1, 2};
    const Fit f = run(g);
    ASSERT_EQ(f.fail.code, 0) << f.fail.message;
    std::vector<double> b(2), se(2), cov(3), res(9), h(9), q(27), p(8), wk(20);
    double rss = 0, df = 0;
    int svd = 0, rank = 0;
    ZekFail fail{};
    g02dac(Zek_MeanInclude, 9, 1, g.x.data(), 9, g.sx.data(), 2, g.y.data(), g.wt.data(), &rss, &df, b.data(), se.data(),
           cov.data(), res.data(), h.data(), q.data(), 9, &svd, &rank, p.data(), 0.0, wk.data(), &fail);
    ASSERT_EQ(fail.code, 0);
    const double got[] = {f.dev, f.s, f.b[0], f.b[1], f.se[0], f.se[1]}, want[] = {rss, rss / df, b[0], b[1], se[0], se[1]};
    for (int k = 0; k < 6; ++k) EXPECT_NEAR(got[k], want[k], 1e-10 * std::fabs(want[k])) << k;
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(f.v[18 + i], h[i], 1e-12);
    g.s = 4.0;  // a scale given on entry is used as it stands
    EXPECT_NEAR(run(g).se[1], std::sqrt(4.0 / (rss / df)) * se[1], 1e-10 * se[1]);
}

// The Dobson fit's per-observation outputs against the reference; then the model with a column that is
// the sum of two others: rank 5 of 6, the same fitted values and deviance; the constraint b_dup = 0 gives back the full-rank estimates, and only the functions that
// do not see the null direction are estimable.
TEST(Glm, RankDeficientFitWithConstraintsAndEstimability) {
    Glm g = dobson();
    g.m = 5;
    for (int i = 0; i < 9; ++i) g.x.push_back(g.x[i] + g.x[9 + i]);
    g.sx = {1, 1, 1, 1, 1};
    Fit f = run(g);
    ASSERT_EQ(f.fail.code, 0) << f.fail.message;
    EXPECT_TRUE(f.rank == 5 && f.df == 4) << f.rank << " " << f.df;
    EXPECT_NEAR(f.dev, kDobsonDev, 1e-8 * kDobsonDev);
    const Fit full = run(dobson());
    for (int i = 0; i < 9; ++i) {
        const double mu = full.v[9 + i];  // eta, mu, leverage, weight (the mean, for the log link), residuals
        const double want[7] = {std::log(mu), mu, kDobsonH[i], mu, kDobsonPearson[i], kDobsonDevRes[i], (g.y[i] - mu) / mu};
        for (int k = 0; k < 7; ++k) EXPECT_NEAR(full.v[9 * k + i], want[k], 1e-9 * (1 + std::fabs(want[k]))) << i << " " << k;
        EXPECT_NEAR(f.v[9 + i], mu, 1e-8 * mu) << "the rank-deficient fit has the same fitted values";
    }

    // outcome2 + dup and the intercept are estimable; dup alone is not.
    const struct { std::vector<double> f; int est; double value; } fns[] = {
        {{0, 1, 0, 0, 0, 1}, 1, kDobsonB[1]}, {{1, 0, 0, 0, 0, 0}, 1, kDobsonB[0]}, {{0, 0, 0, 0, 0, 1}, 0, 0}};
    for (const auto &c : fns) {
        int est = -1;
        double stat = -1, sestat = -1, z = -1;
        ZekFail fail{};
        g02gnc(6, f.rank, f.b.data(), f.cov.data(), f.p.data(), c.f.data(), &est, &stat, &sestat, &z, 0.0, &fail);
        EXPECT_EQ(fail.code * 10 + est, c.est);
        EXPECT_NEAR(stat, c.value, 1e-6 * std::fabs(kDobsonB[0]));
    }

    std::vector<double> c = {0, 0, 0, 0, 0, 1};
    ZekFail fail{};
    g02gkc(6, 1, f.p.data(), c.data(), 6, f.b.data(), f.se.data(), f.cov.data(), &fail);
    ASSERT_EQ(fail.code, 0) << fail.message;
    for (int j = 0; j < 6; ++j) {
        EXPECT_NEAR(f.b[j], j < 5 ? kDobsonB[j] : 0.0, 1e-6 * kDobsonB[0]) << j;
        EXPECT_NEAR(f.se[j], j < 5 ? kDobsonSe[j] : 0.0, 1e-6 * kDobsonSe[0]) << j;
    }

    // A constraint blind to the null direction does not fix the estimates; a full-rank fit has no null space.
    c = {0, 0, 0, 1, -1, 0};
    g02gkc(6, 1, run(g).p.data(), c.data(), 6, f.b.data(), f.se.data(), f.cov.data(), &fail);
    EXPECT_EQ(fail.code, ZE_MAT_NOT_FULL_RANK);
    g02gkc(5, 1, full.p.data(), c.data(), 5, f.b.data(), f.se.data(), f.cov.data(), &fail);
    EXPECT_EQ(fail.code, ZE_RANK_CHANGED);
}

Glm changed(Glm g, void (*edit)(Glm &)) { return edit(g), g; }

TEST(Glm, BadInputEndsInItsExit) {
    const struct {
        const char *name;
        Glm g;
        int code;
        const char *text;  // a piece of the message
    } rows[] = {
        {"negative count", changed(dobson(), [](Glm &g) { g.y[3] = -1; }), ZE_REAL_ARRAY_CONS, "y[3] = -1"},
        {"proportion above one", changed(budworm(Zek_Logistic), [](Glm &g) { g.y[5] = 21; }), ZE_REAL_ARRAY_CONS, "0.0 <= y <= t"},
        {"gamma zero", changed(clotting(kGamma, Zek_Reciprocal), [](Glm &g) { g.y[0] = 0; }), ZE_REAL_ARRAY_CONS, "y > 0.0"},
        {"no trials", changed(budworm(Zek_Logistic), [](Glm &g) { g.t[2] = 0; }), ZE_REAL_ARRAY_CONS, "t[2]"},
        {"negative weight", changed(dobson(), [](Glm &g) { g.wt.assign(9, 1.0); g.wt[8] = -1; }), ZE_REAL_ARRAY_CONS, "wt[8]"},
        {"all weights zero", changed(dobson(), [](Glm &g) { g.wt.assign(9, 0.0); }), ZE_IP_GT_OBSERV, "positive weight"},
        {"link of another family", changed(dobson(), [](Glm &g) { g.link = Zek_Logistic; }), ZE_BAD_PARAM, "link"},
        {"power zero", changed(dobson(), [](Glm &g) { g.link = Zek_Exponent; g.a = 0; }), ZE_EX_POWER_EQ_ZERO, "exponent"},
        {"sx negative", changed(dobson(), [](Glm &g) { g.sx[1] = -1; }), ZE_IP_INCOMP_SX, "sx"},
        {"no convergence", changed(budworm(Zek_Probit), [](Glm &g) { g.max_iter = 2; }), ZE_LSQ_ITER_NOT_CONV, "in 2 iterations"},
        {"separated data", changed(budworm(Zek_Logistic), [](Glm &g) { g.y = {0, 0, 0, 20, 20, 20, 0, 0, 0, 20, 20, 20}; g.max_iter = 500; }), ZE_VALUE_AT_BOUNDARY_B, "probability"},
        {"scale with no freedom", changed(clotting(kGamma, Zek_Log), [](Glm &g) { g.n = 2; }), ZE_ZERO_DOF_ERROR, "scale"},
    };
    for (const auto &r : rows) {
        const Fit f = run(r.g);
        EXPECT_EQ(f.fail.code, r.code) << r.name << ": " << f.fail.message;
        EXPECT_NE(std::strstr(f.fail.message, r.text), nullptr) << r.name << ": " << f.fail.message;
        const bool computed = r.code == ZE_LSQ_ITER_NOT_CONV || r.code == ZE_VALUE_AT_BOUNDARY_B || r.code == ZE_ZERO_DOF_ERROR;
        EXPECT_TRUE(computed || f.b[0] == -7) << r.name << ": outputs untouched on an argument exit";
    }
}

} // namespace
