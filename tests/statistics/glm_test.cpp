// Generalised linear models against R's glm on the textbook data (reference values written into
// glm_reference.inc), the rank-deficient path with its constraints and estimability, and the exits;
// robust regression on the stack-loss data against MASS::rlm (values in the same file), the GM weights
// of the robust scatter on the Hawkins-Bradu-Kass data, and their exits.
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
    // A scale of 0 is not checked.
    const struct { const char *name; Glm g; const double *b, *se; double dev, scale; } cases[] = {
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
    Lsq l(9, 1, 2);
    ASSERT_EQ(l.run_c(Zek_MeanInclude, g.x, 9, g.sx, g.y, g.wt.data()), 0);
    const double got[] = {f.dev, f.s, f.b[0], f.b[1], f.se[0], f.se[1]};
    const double want[] = {l.rss, l.rss / l.df, l.b[0], l.b[1], l.se[0], l.se[1]};
    for (int k = 0; k < 6; ++k) EXPECT_NEAR(got[k], want[k], 1e-10 * std::fabs(want[k])) << k;
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(f.v[18 + i], l.h[i], 1e-12);
    g.s = 4.0;  // a scale given on entry is used as it stands
    EXPECT_NEAR(run(g).se[1], std::sqrt(4.0 / (l.rss / l.df)) * l.se[1], 1e-10 * l.se[1]);
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
    // text: a piece of the message
    const struct { const char *name; Glm g; int code; const char *text; } rows[] = {
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

const double kAir[] = {80, 80, 75, 62, 62, 62, 62, 62, 58, 58, 58, 58, 58, 58, 50, 50, 50, 50, 50, 56, 70};
const double kWater[] = {27, 27, 25, 24, 22, 23, 24, 24, 23, 18, 18, 17, 18, 19, 18, 18, 19, 19, 20, 20, 20};
const double kAcid[] = {89, 88, 90, 87, 87, 87, 93, 93, 87, 80, 89, 88, 82, 93, 89, 86, 72, 79, 80, 82, 91};
const double kLoss[] = {42, 37, 37, 28, 18, 18, 19, 20, 15, 14, 14, 13, 11, 12, 8, 7, 8, 8, 9, 15, 15};

// A design of n rows: a column of ones, then the three columns; the response y.
struct Problem {
    int n;
    std::vector<double> x, y, gw;
    Problem(int rows, const double *c1, const double *c2, const double *c3, const double *resp)
        : n(rows), x(rows, 1.0), y(resp, resp + rows) {
        for (const double *c : {c1, c2, c3}) x.insert(x.end(), c, c + rows);
    }
};

struct Robust { std::vector<double> theta, cov, rs, wgt; double sigma; ZekFail fail{}; };

Robust fit(const Problem &p, int regtype, int psifun, int scale, std::vector<double> cpsi, double dchi = 1.5,
           double sigma = 0.0, int max_iter = 200) {
    Robust r{std::vector<double>(4, -7), std::vector<double>(10, -7), std::vector<double>(p.n), std::vector<double>(p.n), sigma};
    g02hac(regtype, psifun, scale, p.n, 4, p.x.data(), p.n, p.y.data(), p.gw.empty() ? nullptr : p.gw.data(), cpsi.data(),
           dchi, r.theta.data(), &r.sigma, r.cov.data(), r.rs.data(), r.wgt.data(), 0.0, max_iter, &r.fail);
    return r;
}

void expect_fit(const Robust &r, const double *want, const double *se, const char *name) {
    ASSERT_EQ(r.fail.code, 0) << name << ": " << r.fail.message;
    for (int j = 0; j < 4; ++j) {
        EXPECT_NEAR(r.theta[j], want[j], 1e-6 * std::fabs(want[j])) << name << " theta" << j;
        const double sej = se != nullptr ? std::sqrt(r.cov[j * (j + 1) / 2 + j]) : 0.0;
        EXPECT_NEAR(sej, se != nullptr ? se[j] : 0.0, se != nullptr ? 1e-6 * se[j] : 0.0) << name << " se" << j;
    }
    EXPECT_NEAR(se != nullptr ? r.sigma : 0.0, se != nullptr ? want[4] : 0.0, 1e-6 * want[4]) << name;
}

TEST(Robust, StackLossAgreesWithTheReference) {
    const struct { const char *name; int psi; std::vector<double> c; const double *want, *se, *rlm; } cases[] = {
        {"Huber", Zek_Huber, {1.345}, kStackHuber, kStackHuberSe, kStackHuberRlm},
        {"Hampel", Zek_Hampel, {2, 4, 8}, kStackHampel, kStackHampelSe, kStackHampelRlm},
        {"bisquare", Zek_Bisquare, {4.685}, kStackBisquare, kStackBisquareSe, kStackBisquareRlm},
    };
    const Problem p(21, kAir, kWater, kAcid, kLoss);
    for (const auto &c : cases) {
        expect_fit(fit(p, Zek_MEstimate, c.psi, Zek_SigmaMAD, c.c), c.want, c.se, c.name);
        // At rlm's own final scale, held fixed, the fit is rlm's.
        expect_fit(fit(p, Zek_MEstimate, c.psi, Zek_SigmaFixed, c.c, 1.5, c.rlm[4]), c.rlm, nullptr, c.name);
    }
    expect_fit(fit(p, Zek_MEstimate, Zek_Huber, Zek_SigmaProposal2, {1.345}, 1.5), kStackProposal2, kStackProposal2Se,
               "proposal 2");
}

// Least squares and the M-estimate are pulled by the ten bad leverage points; the GM weights of the
// robust scatter take them out, and the fit lands on the clean data's (all slopes near 0).
TEST(Robust, GmWeightsPullTheHbkFitToTheRobustOne) {
    Problem p(75, kHbkX1, kHbkX2, kHbkX3, kHbkY);
    std::vector<double> t(3), cov(6), d(75), gw(75);
    ZekFail fail{};
    g02hkc(75, 3, p.x.data() + 75, 75, 0.0, t.data(), cov.data(), d.data(), gw.data(), 0.0, 100, &fail);
    ASSERT_EQ(fail.code, 0) << fail.message;
    int clean = 0;
    for (int i = 0; i < 75; ++i) clean += i < 14 ? (gw[i] < 0.05 ? 0 : -100) : (gw[i] == 1.0 ? 1 : 0);
    EXPECT_GE(clean, 55) << "the 14 leverage points weigh below 0.05, most of the rest 1";
    for (int j = 0; j < 3; ++j) EXPECT_LT(std::fabs(t[j] - 1.6), 0.5) << "location of the clean cloud";
    EXPECT_GT(std::fabs(fit(p, Zek_MEstimate, Zek_Huber, Zek_SigmaMAD, {1.345}).theta[3]), 0.2) << "M is pulled";
    p.gw = gw;
    for (int type : {Zek_Mallows, Zek_Schweppe}) {
        const Robust r = fit(p, type, Zek_Huber, Zek_SigmaMAD, {1.345});
        ASSERT_EQ(r.fail.code, 0) << r.fail.message;
        for (int j = 1; j < 4; ++j) EXPECT_LT(std::fabs(r.theta[j]), 0.12) << type << " slope " << j;
        for (int i = 0; i < 10; ++i) EXPECT_GT(std::fabs(r.rs[i]), 5.0 * r.sigma) << type << " bad row " << i;
    }
}

TEST(Robust, BadInputEndsInItsExit) {
    const Problem s(21, kAir, kWater, kAcid, kLoss), twin(21, kAir, kWater, kAir, kLoss);
    Problem exact = s, gwneg = s;
    for (int i = 0; i < 21; ++i) exact.y[i] = 2.0 * kAir[i] + (i == 0 ? 5.0 : 0.0), gwneg.gw.push_back(i == 4 ? -1 : 1);
    // text: a piece of the message
    const struct { const char *name; Robust r; int code; const char *text; } rows[] = {
        {"Huber c zero", fit(s, Zek_MEstimate, Zek_Huber, Zek_SigmaMAD, {0.0}), ZE_INVALID_HUBER_FUN, "positive"},
        {"Hampel order", fit(s, Zek_MEstimate, Zek_Hampel, Zek_SigmaMAD, {2, 8, 4}), ZE_BAD_HAMPEL_PSI_FUN, "a <= b < c"},
        {"proposal 2 d", fit(s, Zek_MEstimate, Zek_Huber, Zek_SigmaProposal2, {1.345}, 0.0), ZE_INVALID_DCHI_FUN, "proposal 2"},
        {"fixed sigma zero", fit(s, Zek_MEstimate, Zek_Huber, Zek_SigmaFixed, {1.345}, 1.5, 0.0), ZE_REAL_ARG_LE, "sigma"},
        {"bad regtype", fit(s, 1, Zek_Huber, Zek_SigmaMAD, {1.345}), ZE_BAD_PARAM, "regtype"},
        {"negative GM weight", fit(gwneg, Zek_Mallows, Zek_Huber, Zek_SigmaMAD, {1.345}), ZE_REAL_ARRAY_CONS, "gw[4]"},
        {"collinear design", fit(twin, Zek_MEstimate, Zek_Huber, Zek_SigmaMAD, {1.345}), ZE_WT_LSQ_NOT_FULL_RANK, "full rank"},
        {"exact fit", fit(exact, Zek_MEstimate, Zek_Huber, Zek_SigmaMAD, {1.345}), ZE_ESTIM_SIGMA_ZERO, "sigma is 0.0"},
        {"no convergence", fit(s, Zek_MEstimate, Zek_Bisquare, Zek_SigmaMAD, {4.685}, 1.5, 0.0, 2), ZE_THETA_ITER_EXCEEDED, "in 2 iterations"},
    };
    for (const auto &r : rows) {
        EXPECT_EQ(r.r.fail.code, r.code) << r.name << ": " << r.r.fail.message;
        EXPECT_NE(std::strstr(r.r.fail.message, r.text), nullptr) << r.name << ": " << r.r.fail.message;
    }
    // The robust scatter: a constant column, then rows on a line.
    std::vector<double> x(40), t(2), cov(3), d(20), gw(20);
    for (int i = 0; i < 20; ++i) x[i] = i, x[20 + i] = 3.0;
    ZekFail fail{};
    g02hkc(20, 2, x.data(), 20, 0.0, t.data(), cov.data(), d.data(), gw.data(), 0.0, 50, &fail);
    EXPECT_EQ(fail.code, ZE_CONST_COL);
    for (int i = 0; i < 20; ++i) x[20 + i] = 2.0 * i + 1.0;
    g02hkc(20, 2, x.data(), 20, 0.0, t.data(), cov.data(), d.data(), gw.data(), 0.0, 50, &fail);
    EXPECT_EQ(fail.code, ZE_VARCOV_MAT_SINGULAR) << fail.message;
}

} // namespace
