// Cold, warm and hot starts of E04MFA: from the last optimum no iteration is needed, and after a bound
// change (what branch and bound does at each node) the changed problem's optimum is reached, whatever
// stale, sanitised or spoilt state the start is given.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "lp_test_support.h"
#include "optimisation/options.h"

namespace {

using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

// The hot start is internal: branch and bound would set it in the option block directly.
void hot(LpSession &s) { zek::e04::setting(s.iwsav().data(), zek::e04::Block::LC, zek::e04::lc::kStart) = 2; }

TEST(LpStarts, FromTheOptimumNoIteration) {
    const LpProblem p = LpProblem::netlib("afiro");
    LpSession session;
    const LpResult cold = session.solve(p);
    ASSERT_EQ(cold.ifail, 0);
    ASSERT_EQ(session.option("Warm Start"), 0);
    const LpResult warm = session.solve(p, cold.x, cold.istate);
    hot(session);
    const LpResult hotr = session.solve(p, warm.x, warm.istate);
    for (const LpResult &r : {warm, hotr}) {
        EXPECT_EQ(r.ifail, 0);
        EXPECT_EQ(r.iter, 0);
        EXPECT_NEAR(r.obj, cold.obj, 1e-12 * std::fabs(cold.obj));
        EXPECT_EQ(r.istate, cold.istate);
    }
}

class AfterABoundChange : public testing::TestWithParam<std::string> {};

TEST_P(AfterABoundChange, ReachesTheNewOptimum) {
    LpProblem p = LpProblem::netlib("afiro");
    LpSession session;
    const LpResult first = session.solve(p);
    ASSERT_EQ(first.ifail, 0);
    // Cut off the optimum through its largest variable.
    const std::size_t j = static_cast<std::size_t>(std::max_element(first.x.begin(), first.x.end()) - first.x.begin());
    p.bu[j] = std::floor(first.x[j] / 2);
    const LpResult cold = LpSession().solve(p);
    std::vector<int> istate = first.istate;
    const std::string start = GetParam();
    if (start.rfind("hot", 0) == 0) hot(session);
    else ASSERT_EQ(session.option("Warm Start"), 0);
    if (start == "warm") istate[j] = -1;  // as branch and bound marks the branching variable
    if (start == "warm_sanitised")
        for (std::size_t k = 0; k < istate.size(); k += 3) istate[k] = k % 4 == 0 ? 4 : -2;
    if (start == "hot_spoilt") session.iwork()[3 + p.n] = session.iwork()[4 + p.n];  // KX no permutation
    const LpResult r = session.solve(p, first.x, istate);
    const zek_test::Kkt kkt(p, r);
    EXPECT_TRUE(r.ifail == 0 || r.ifail == 1) << r.ifail;
    EXPECT_NEAR(r.obj, cold.obj, 1e-9 * std::fabs(cold.obj));
    EXPECT_LE(kkt.violation, 1e-8);
    EXPECT_LE(kkt.stationarity, 1e-10);
    EXPECT_LE(kkt.sign, 1e-8);
    if (start != "hot_spoilt") {
        EXPECT_LT(r.iter, cold.iter);
    }
}

INSTANTIATE_TEST_SUITE_P(Lp, AfterABoundChange, testing::Values("warm", "warm_sanitised", "hot", "hot_spoilt"));

} // namespace
