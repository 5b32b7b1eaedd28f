// Hostile input for branch and bound: NaN, +-Inf and the extremes of the number range in the objective,
// the bounds, the matrix and the tolerances.  H02BBF must end with one of its exits (the asan preset
// watches its carving of the workspace); an integer solution (IFAIL 0 or 9) must be finite.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "branch_and_bound_test_support.h"

namespace {

using zek_test::BranchCall;
using zek_test::IntegerProgram;

const double kValues[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL,
                          std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()};

// maximise 5 x1 + 4 x2 (minimise the negative) subject to 6 x1 + 4 x2 <= 24, x1 + 2 x2 <= 6, x in [0, 10].
IntegerProgram base() {
    IntegerProgram p = IntegerProgram::box(2, 2, 10.0);
    p.at(1, 1) = 6.0;
    p.at(1, 2) = 4.0;
    p.at(2, 1) = 1.0;
    p.at(2, 2) = 2.0;
    p.bu[2] = 24.0;
    p.bu[3] = 6.0;
    p.cvec = {-5.0, -4.0};
    return p;
}

enum class Place { Objective, Lower, Upper, Matrix, Tolerances };

struct Case {
    Place place;
    double value;
    bool whole;
};

class HostileBranchAndBound : public ::testing::TestWithParam<Case> {};

TEST_P(HostileBranchAndBound, EndsInAnExitWithAFiniteSolution) {
    const Case c = GetParam();
    IntegerProgram p = base();
    BranchCall call;
    call.maxnod = 200;
    auto put = [&](std::vector<double> &v) {
        if (c.whole)
            for (double &e : v) e = c.value;
        else
            v[0] = c.value;
    };
    switch (c.place) {
    case Place::Objective: put(p.cvec); break;
    case Place::Lower: put(p.bl); break;
    case Place::Upper: put(p.bu); break;
    case Place::Matrix: put(p.a); break;
    case Place::Tolerances:
        call.toliv = c.value;
        if (c.whole) call.tolfes = call.bigbnd = c.value;
        break;
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
    for (Place place : {Place::Objective, Place::Lower, Place::Upper, Place::Matrix, Place::Tolerances})
        for (double v : kValues)
            for (bool whole : {false, true}) cases.push_back({place, v, whole});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Data, HostileBranchAndBound, ::testing::ValuesIn(all_cases()));

TEST(HostileBranchAndBoundSizes, ZeroSizesAndShortWorkspaceAreInputErrors) {
    IntegerProgram p = base();
    BranchCall none;
    IntegerProgram empty = p;
    empty.n = 0;
    EXPECT_EQ(none.run(empty), 6);
    BranchCall short_i;
    short_i.liwork = static_cast<int>(zek_test::minimum_liwork(2, 2, 50)) - 1;
    EXPECT_EQ(short_i.run(p), 6);
    BranchCall short_r;
    short_r.lrwork = static_cast<int>(zek_test::minimum_lrwork(2, 2, 50)) - 1;
    EXPECT_EQ(short_r.run(p), 6);
    BranchCall shallow;
    shallow.maxdpt = 1;
    EXPECT_EQ(shallow.run(p), 6);
}

} // namespace
