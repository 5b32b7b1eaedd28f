// Hostile input for the active-set LP solver: NaN, +-Inf, the largest and the smallest numbers in the
// objective, a bound, the matrix or the start, one element or all of them, and option values at the
// ends of the number range.  E04MFA must end with one of its exits; an optimum (IFAIL 0 or 1) must
// come with a finite point, objective and row values.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "lp_test_support.h"

namespace {

using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

// At the largest finite numbers the objective or the row values of a finite problem overflow: the
// solver must then end in an exit, not report an optimum with an infinite or NaN result.
const double kValues[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL, 1e150, -1e150, DBL_MAX, -DBL_MAX,
                          std::numeric_limits<double>::denorm_min()};

// minimise -x1 - x2 subject to x1 + 2 x2 <= 4, 3 x1 + x2 <= 6, 0 <= x <= 10.
LpProblem base() {
    return LpProblem::dense({{1.0, 2.0}, {3.0, 1.0}}, {0.0, 0.0, -1e25, -1e25}, {10.0, 10.0, 4.0, 6.0}, {-1.0, -1.0});
}

void expect_exit(const LpResult &r, const std::string &what) {
    EXPECT_TRUE(r.ifail >= 0 && r.ifail <= 7 && r.ifail != 5) << what << ": IFAIL " << r.ifail;
    if (r.ifail > 1) return;
    bool finite = std::isfinite(r.obj);
    for (double v : r.x) finite = finite && std::isfinite(v);
    for (double v : r.ax) finite = finite && std::isfinite(v);
    EXPECT_TRUE(finite) << what << ": IFAIL " << r.ifail << ", objective " << r.obj << ", x " << r.x[0] << " "
                        << r.x[1];
}

// The value goes into one element or all of the objective, the lower or upper bounds, the matrix or
// the start (places 0 to 4).
struct Case {
    int place;
    double value;
    bool whole;
};

class HostileLp : public ::testing::TestWithParam<Case> {};

TEST_P(HostileLp, EndsInAnExitWithAFiniteOptimum) {
    const Case c = GetParam();
    LpProblem p = base();
    std::vector<double> x0 = {1.0, 1.0};
    std::vector<double> &v = *std::vector<std::vector<double> *>{&p.c, &p.bl, &p.bu, &p.a, &x0}[c.place];
    if (c.whole) v.assign(v.size(), c.value);
    else v[0] = c.value;
    const std::string what =
        "place " + std::to_string(c.place) + " value " + std::to_string(c.value) + (c.whole ? " all" : " one");
    const LpResult r = LpSession().solve(p, x0);
    expect_exit(r, what);
    EXPECT_LE(r.iter, 50) << what;  // the default iteration limit, max(50, 5(n + nclin))
}

std::vector<Case> all_cases() {
    std::vector<Case> cases;
    for (int place = 0; place < 5; ++place)
        for (double v : kValues)
            for (bool whole : {false, true}) cases.push_back({place, v, whole});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Data, HostileLp, ::testing::ValuesIn(all_cases()));

TEST(HostileLpOptions, ExtremeOptionValuesEndInAnExit) {
    const char *const kLines[] = {"Feasibility Tolerance 1e999", "Feasibility Tolerance 1e-999",
                                  "Optimality Tolerance 1e999",  "Crash Tolerance 1e999",
                                  "Infinite Bound Size 1e999",   "Infinite Bound Size 1e-999",
                                  "Infinite Step Size 1e999",    "Iterations Limit 2147483647",
                                  "Iterations Limit 99999999999", "Check Frequency -2147483648",
                                  "Print Level 1e999",           "Feasibility Phase Iteration Limit 0"};
    for (const char *line : kLines) {
        LpSession session;
        session.option(line);
        expect_exit(session.solve(base()), line);
    }
}

TEST(HostileLpSizes, ZeroSizesAndShortWorkspaceAreInputErrors) {
    LpProblem empty = base();
    empty.n = 0;
    EXPECT_EQ(LpSession().solve(empty).ifail, 6);
    // LIWORK = 2N+3 and LWORK = 7N + 5 NCLIN + 2 t*t are the least; one less is an input error.
    EXPECT_EQ(LpSession().solve(base(), {}, {}, 1, 2 * 2 + 3 - 1).ifail, 6);
    EXPECT_EQ(LpSession().solve(base(), {}, {}, 1, -1, 7 * 2 + 5 * 2 + 2 * 4 - 1).ifail, 6);
    EXPECT_EQ(LpSession().solve(base(), {}, {}, 1, -1, 7 * 2 + 5 * 2 + 2 * 4).ifail, 0);
}

} // namespace
