// Cold, warm and hot starts of E04MFA: a start from the last optimum takes no iteration, and a start
// after a bound change (what branch and bound does at each node) reaches the optimum of the changed
// problem, whatever stale or sanitised states it is given.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "lp_test_support.h"
#include "optimisation/options.h"

namespace {

using zek_test::LpModel;
using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

LpProblem afiro() {
    LpModel model;
    std::string error;
    EXPECT_TRUE(zek_test::read_mps(std::string(ZEK_SHARED_DATA_DIR) + "/lp/afiro.mps", model, zek_test::kInf, &error));
    return LpProblem::from(model);
}

// The hot start is internal: branch and bound sets it in the option block directly.
void ask_for_hot_start(LpSession &session) {
    zek::e04::setting(session.iwsav().data(), zek::e04::Block::LC, zek::e04::lc::kStart) = 2;
}

// The variable with the largest value at the optimum, and a new upper bound that cuts it off.
int cut_variable(const LpResult &r) {
    return static_cast<int>(std::max_element(r.x.begin(), r.x.end()) - r.x.begin());
}

TEST(LpStarts, WarmAndHotFromTheOptimumTakeNoIteration) {
    const LpProblem p = afiro();
    LpSession session;
    const LpResult cold = session.solve(p);
    ASSERT_EQ(cold.ifail, 0);
    ASSERT_GT(cold.iter, 0);

    ASSERT_EQ(session.option("Warm Start"), 0);
    const LpResult warm = session.solve(p, cold.x, cold.istate);
    EXPECT_EQ(warm.ifail, 0);
    EXPECT_EQ(warm.iter, 0);
    EXPECT_NEAR(warm.obj, cold.obj, 1e-12 * std::fabs(cold.obj));
    EXPECT_EQ(warm.istate, cold.istate);

    ask_for_hot_start(session);
    const LpResult hot = session.solve(p, warm.x, warm.istate);
    EXPECT_EQ(hot.ifail, 0);
    EXPECT_EQ(hot.iter, 0);
    EXPECT_NEAR(hot.obj, cold.obj, 1e-12 * std::fabs(cold.obj));
}

class AfterABoundChange : public testing::TestWithParam<std::string> {};

TEST_P(AfterABoundChange, ReachesTheNewOptimum) {
    const std::string start = GetParam();
    LpProblem p = afiro();
    LpSession session;
    const LpResult first = session.solve(p);
    ASSERT_EQ(first.ifail, 0);

    const int j = cut_variable(first);
    p.bu[static_cast<std::size_t>(j)] = std::floor(first.x[static_cast<std::size_t>(j)] / 2);
    LpSession reference;
    const LpResult cold = reference.solve(p);
    ASSERT_TRUE(cold.ifail == 0 || cold.ifail == 1);

    std::vector<int> istate = first.istate;
    if (start == "warm") {
        ASSERT_EQ(session.option("Warm Start"), 0);
        istate[static_cast<std::size_t>(j)] = -1;  // as branch and bound marks the branching variable
    } else if (start == "warm_sanitised") {
        ASSERT_EQ(session.option("Warm Start"), 0);
        for (std::size_t k = 0; k < istate.size(); k += 3) istate[k] = static_cast<int>(k % 4) == 0 ? 4 : -2;
    } else {
        ask_for_hot_start(session);
    }
    const LpResult r = session.solve(p, first.x, istate);
    EXPECT_TRUE(r.ifail == 0 || r.ifail == 1) << r.ifail;
    EXPECT_NEAR(r.obj, cold.obj, 1e-9 * std::fabs(cold.obj));
    EXPECT_LE(zek_test::max_violation(p, r.x), 1e-8);
    EXPECT_LE(zek_test::stationarity_error(p, r), 1e-10);
    EXPECT_LE(zek_test::multiplier_sign_error(p, r), 1e-8);
    EXPECT_LT(r.iter, cold.iter);
}

INSTANTIATE_TEST_SUITE_P(Lp, AfterABoundChange, testing::Values("warm", "warm_sanitised", "hot"));

// A hot start whose saved working set does not fit the states falls back to a warm start.
TEST(LpStarts, HotStartWithASpoiltSavedStateStillSolves) {
    const LpProblem p = afiro();
    LpSession session;
    const LpResult cold = session.solve(p);
    ASSERT_EQ(cold.ifail, 0);
    ask_for_hot_start(session);
    for (int spoil = 0; spoil < 3; ++spoil) {
        std::vector<int> &iwork = session.iwork();
        if (spoil == 0) iwork[1] = p.n + 5;               // NFREE out of range
        if (spoil == 1) iwork[3 + p.n] = iwork[4 + p.n];  // KX no longer a permutation
        if (spoil == 2) iwork[0] = 7;                     // UNITQ not a logical
        const LpResult r = session.solve(p, cold.x, cold.istate);
        EXPECT_EQ(r.ifail, 0) << spoil;
        EXPECT_NEAR(r.obj, cold.obj, 1e-10 * std::fabs(cold.obj)) << spoil;
    }
}

} // namespace
