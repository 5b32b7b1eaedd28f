// Robust regression on the stack-loss data against MASS::rlm (values in glm_reference.inc), the GM
// weights of the robust scatter on the Hawkins-Bradu-Kass data, and the exits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "zek2/g02.h"
#include "zek2/messages.h"

namespace {

#include "glm_reference.inc"

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

struct Robust {
    std::vector<double> theta = std::vector<double>(4, -7), cov = std::vector<double>(10), rs, wgt;
    double sigma;
    ZekFail fail{};
};

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
    const struct {
        const char *name;
        Robust r;
        int code;
        const char *text;  // a piece of the message
    } rows[] = {
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
