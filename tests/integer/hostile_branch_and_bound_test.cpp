// Hostile input for branch and bound: NaN, +-Inf and the extremes of the number range in the objective,
// the bounds, the matrix and the tolerances.  H02BBF must end with one of its exits (the asan preset
// watches its carving of the workspace); an integer solution (IFAIL 0 or 9) must be finite.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "integer_test_support.h"

namespace {

using zek_test::BranchCall;
using zek_test::IntegerProgram;

const double kValues[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL,
                          std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()};

// maximise 5 x1 + 4 x2 (minimise the negative) subject to 6 x1 + 4 x2 <= 24, x1 + 2 x2 <= 6, x in [0, 10].
IntegerProgram base() {
    IntegerProgram p = IntegerProgram::box(2, 2, 10.0);
    p.a = {6.0, 1.0, 4.0, 2.0};
    p.bu[2] = 24.0, p.bu[3] = 6.0;
    p.cvec = {-5.0, -4.0};
    return p;
}

// Each row puts the value in one place (objective, lower bounds, upper bounds, matrix, tolerances): in its
// first element, or in all of them.
struct Case {
    int place;
    double value;
    bool whole;
};

class HostileBranchAndBound : public ::testing::TestWithParam<Case> {};

TEST_P(HostileBranchAndBound, EndsInAnExitWithAFiniteSolution) {
    const Case c = GetParam();
    IntegerProgram p = base();
    BranchCall call;
    call.maxnod = 200;
    std::vector<double> *target[] = {&p.cvec, &p.bl, &p.bu, &p.a};
    if (c.place < 4) {
        for (std::size_t k = 0; k < (c.whole ? target[c.place]->size() : 1); ++k) (*target[c.place])[k] = c.value;
    } else {
        call.toliv = c.value;
        if (c.whole) call.tolfes = call.bigbnd = c.value;
    }
    const int ifail = call.run(p);
    EXPECT_TRUE(ifail >= 0 && ifail <= 11 && ifail != 5 && ifail != 7) << ifail;
    if (ifail == 0 || ifail == 9) {
        EXPECT_TRUE(std::isfinite(call.objective));
        for (double v : call.x) EXPECT_TRUE(std::isfinite(v));
    }
}

std::vector<Case> all_cases() {
    std::vector<Case> cases;
    for (int place = 0; place < 5; ++place)
        for (double v : kValues)
            for (bool whole : {false, true}) cases.push_back({place, v, whole});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Data, HostileBranchAndBound, ::testing::ValuesIn(all_cases()));

TEST(HostileBranchAndBoundSizes, ZeroSizesAndShortWorkspaceAreInputErrors) {
    const IntegerProgram p = base();
    IntegerProgram empty = p;
    empty.n = 0;
    BranchCall none, short_i, short_r, shallow;
    EXPECT_EQ(none.run(empty), 6);
    short_i.liwork = static_cast<int>(zek_test::minimum_liwork(2, 2, 50)) - 1;
    EXPECT_EQ(short_i.run(p), 6);
    short_r.lrwork = static_cast<int>(zek_test::minimum_lrwork(2, 2, 50)) - 1;
    EXPECT_EQ(short_r.run(p), 6);
    shallow.maxdpt = 1;
    EXPECT_EQ(shallow.run(p), 6);
}

} // namespace
