// E04MFA on small LPs whose answers are known in closed form: every case under several option sets
// (defaults, no expansion of the tolerances, a row check at every step, the least iteration checks),
// each result checked independently for feasibility and the optimality conditions.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "lp_test_support.h"
#include "zek2/e04.h"

namespace {

using zek_test::kInf;
using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

struct KnownAnswer {
    std::string name;
    LpProblem p;
    std::vector<int> ifail;   // acceptable IFAIL values
    double obj;               // expected OBJ (ignored for IFAIL 2 and 3)
    std::vector<double> x;    // expected X when the solution is unique
};

std::vector<KnownAnswer> cases() {
    std::vector<KnownAnswer> k;
    // max x + y on a quadrilateral: the vertex (1.6, 1.2).
    k.push_back({"two_rows", LpProblem::dense({{1, 2}, {3, 1}}, {0, 0, -kInf, -kInf}, {kInf, kInf, 4, 6}, {-1, -1}),
                 {0}, -2.8, {1.6, 1.2}});
    // Beale's example, on which the textbook simplex rule cycles.
    k.push_back({"beale_cycling",
                 LpProblem::dense({{0.25, -8, -1, 9}, {0.5, -12, -0.5, 3}, {0, 0, 1, 0}}, {0, 0, 0, 0, -kInf, -kInf, -kInf},
                                  {kInf, kInf, kInf, kInf, 0, 0, 1}, {-0.75, 20, -0.5, 6}),
                 {0}, -1.25, {1, 0, 1, 0}});
    // Sixteen rows through the optimum (0, 1), free variables.
    {
        std::vector<std::vector<double>> rows;
        std::vector<double> bl = {-kInf, -kInf}, bu = {kInf, kInf};
        for (int s = 1; s <= 8; ++s) {
            rows.push_back({static_cast<double>(s), 1});
            rows.push_back({-static_cast<double>(s), 1});
            bl.insert(bl.end(), 2, -kInf);
            bu.insert(bu.end(), 2, 1.0);
        }
        k.push_back({"degenerate_vertex", LpProblem::dense(rows, bl, bu, {0, -1}), {0, 1}, -1.0, {0, 1}});
    }
    k.push_back({"unbounded", LpProblem::dense({{1, -1}}, {0, 0, -kInf}, {kInf, kInf, 1}, {-1, 0}), {2}, 0, {}});
    k.push_back({"infeasible_rows", LpProblem::dense({{1, 1}, {1, 1}}, {0, 0, -kInf, 3}, {kInf, kInf, 1, kInf}, {1, 1}),
                 {3}, 0, {}});
    k.push_back({"infeasible_bounds_and_row", LpProblem::dense({{1, 1}}, {0, 0, 5}, {1, 2, kInf}, {1, 0}), {3}, 0, {}});
    // Three equalities in three free variables: the unique point (1, 2, 3).
    k.push_back({"equalities_only",
                 LpProblem::dense({{2, 1, 1}, {1, 3, 2}, {1, 0, 0}}, {-kInf, -kInf, -kInf, 7, 13, 1},
                                  {kInf, kInf, kInf, 7, 13, 1}, {1, 1, 1}),
                 {0}, 6.0, {1, 2, 3}});
    // Free variables in a wedge: the vertex (0, 1).
    k.push_back({"free_variables",
                 LpProblem::dense({{1, 1}, {1, -1}, {-1, 1}}, {-kInf, -kInf, 1, -kInf, -kInf},
                                  {kInf, kInf, kInf, 1, 1}, {2, 1}),
                 {0}, 1.0, {0, 1}});
    // A range row and a fixed variable.
    k.push_back({"range_row_fixed_variable",
                 LpProblem::dense({{1, 1, 1}}, {0, 2, 0, 3}, {4, 2, 4, 5}, {-1, 1, 2}), {0}, -1.0, {3, 2, 0}});
    // One variable, no rows.
    k.push_back({"one_variable_lower", LpProblem::dense({}, {1}, {5}, {1}), {0}, 1.0, {1}});
    k.push_back({"one_variable_upper", LpProblem::dense({}, {1}, {5}, {-2}), {0}, -10.0, {5}});
    k.push_back({"one_variable_fixed", LpProblem::dense({}, {2}, {2}, {3}), {0}, 6.0, {2}});
    k.push_back({"one_variable_unbounded", LpProblem::dense({}, {1}, {kInf}, {-1}), {2}, 0, {}});
    // Bounds only, one cost zero: optimal but not unique.
    k.push_back({"bounds_only_weak", LpProblem::dense({}, {0, 0, -1}, {1, 2, 1}, {1, -1, 0}), {1}, -2.0, {}});
    // A zero objective: any feasible point.
    k.push_back({"zero_cost", LpProblem::dense({{1, 1}, {1, -1}}, {0, 0, 1, -1}, {kInf, kInf, 3, 1}, {0, 0}), {0, 1},
                 0.0, {}});
    // More variables than rows: temporary fixes keep the free ones within NCLIN+1.
    k.push_back({"wide",
                 LpProblem::dense({{1, 1, 1, 1, 1, 1}}, {-kInf, -kInf, 0, 0, 0, 0, 1}, {kInf, kInf, 9, 9, 9, 9, 1},
                                  {0, 0, 1, 2, 3, 4}),
                 {1}, 0.0, {}});
    // A transportation problem: its equalities hold one redundant row; started away from the vertices,
    // the free variables beyond NCLIN+1 are held at values that violate their bounds.
    k.push_back({"transportation",
                 LpProblem::dense({{1, 1, 1, 0, 0, 0}, {0, 0, 0, 1, 1, 1}, {1, 0, 0, 1, 0, 0}, {0, 1, 0, 0, 1, 0},
                                   {0, 0, 1, 0, 0, 1}},
                                  {0, 0, 0, 0, 0, 0, 5, 7, 3, 4, 5}, {kInf, kInf, kInf, kInf, kInf, kInf, 5, 7, 3, 4, 5},
                                  {4, 6, 9, 5, 3, 8}),
                 {0, 1}, 66.0, {3, 0, 2, 0, 4, 3}});
    // A row of large norm whose multiplier is small but matters: it must still be tested.
    k.push_back({"badly_scaled_row",
                 LpProblem::dense({{1e4, 1e4}, {1, -1}}, {0, 0, -kInf, -kInf}, {kInf, kInf, 1e4, 0.5}, {-1, -2e-4}),
                 {0}, -0.75 - 0.25 * 2e-4, {0.75, 0.25}});
    k.push_back({"wide_unique",
                 LpProblem::dense({{1, 1, 1, 1, 1}}, {0, 0, 0, 0, 0, 10}, {4, 4, 4, 4, 4, 10}, {5, 4, 3, 2, 1}),
                 {0}, 18.0, {0, 0, 2, 4, 4}});
    return k;
}

struct OptionSet {
    std::string name;
    std::vector<std::string> lines;
};

const std::vector<OptionSet> &option_sets() {
    static const std::vector<OptionSet> sets = {
        {"defaults", {}},
        {"no_expansion", {"Expand Frequency = 9999999"}},
        {"row_check_every_step", {"Check Frequency = 1", "Expand Frequency = 1"}},
        {"tight_tolerances", {"Feasibility Tolerance = 1e-12", "Optimality Tolerance = 1e-12", "Crash Tolerance = 0"}},
    };
    return sets;
}

class KnownAnswers : public testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(KnownAnswers, MatchesTheClosedForm) {
    const KnownAnswer c = cases()[static_cast<std::size_t>(std::get<0>(GetParam()))];
    const OptionSet &o = option_sets()[static_cast<std::size_t>(std::get<1>(GetParam()))];
    LpSession session;
    for (const std::string &line : o.lines) ASSERT_EQ(session.option(line), 0) << line;
    // Started off the bounds, so that the crash leaves free variables and holds some at their values.
    const LpResult r = session.solve(c.p, std::vector<double>(static_cast<std::size_t>(c.p.n), -0.5));
    const bool expected_ifail = std::find(c.ifail.begin(), c.ifail.end(), r.ifail) != c.ifail.end();
    EXPECT_TRUE(expected_ifail) << c.name << " IFAIL " << r.ifail;
    EXPECT_GE(r.iter, 0);
    if (r.ifail == 2 || r.ifail == 3) return;
    EXPECT_NEAR(r.obj, c.obj, 1e-10 * std::max(1.0, std::fabs(c.obj))) << c.name;
    EXPECT_NEAR(zek_test::objective(c.p, r.x), r.obj, 1e-12 * std::max(1.0, std::fabs(c.obj)));
    EXPECT_LE(zek_test::max_violation(c.p, r.x), 1e-9) << c.name;
    EXPECT_LE(zek_test::stationarity_error(c.p, r), 1e-12) << c.name;
    EXPECT_LE(zek_test::multiplier_sign_error(c.p, r), 1e-9) << c.name;
    for (std::size_t j = 0; j < c.x.size(); ++j) EXPECT_NEAR(r.x[j], c.x[j], 1e-9) << c.name << " x" << j + 1;
    for (int i = 0; i < c.p.m; ++i) {
        double v = 0.0;
        for (int j = 0; j < c.p.n; ++j) v += c.p.at(i, j) * r.x[static_cast<std::size_t>(j)];
        EXPECT_NEAR(r.ax[static_cast<std::size_t>(i)], v, 1e-12 * std::max(1.0, std::fabs(v))) << c.name;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lp, KnownAnswers,
    testing::Combine(testing::Range(0, static_cast<int>(cases().size())),
                     testing::Range(0, static_cast<int>(option_sets().size()))),
    [](const testing::TestParamInfo<std::tuple<int, int>> &info) {
        return cases()[static_cast<std::size_t>(std::get<0>(info.param))].name + "_" +
               option_sets()[static_cast<std::size_t>(std::get<1>(info.param))].name;
    });

// Problem type FP stops at the first feasible point; OBJ is then the sum of infeasibilities, 0.
TEST(LpFeasiblePoint, FindsAPointOrReportsNone) {
    LpSession session;
    ASSERT_EQ(session.option("Problem Type = FP"), 0);
    const LpProblem feasible =
        LpProblem::dense({{1, 1}, {1, -1}}, {0, 0, 2, -1}, {kInf, kInf, 3, 1}, {-1, -1});
    const LpResult r = session.solve(feasible);
    EXPECT_EQ(r.ifail, 0);
    EXPECT_EQ(r.obj, 0.0);
    EXPECT_LE(zek_test::max_violation(feasible, r.x), 1e-9);
    for (double lam : r.clamda) EXPECT_EQ(lam, 0.0);

    const LpProblem infeasible = LpProblem::dense({{1, 1}}, {0, 0, 5}, {1, 1, kInf}, {0, 0});
    const LpResult s = session.solve(infeasible);
    EXPECT_EQ(s.ifail, 3);
    // The least sum of infeasibilities is 3, at x = (1, 1).
    EXPECT_NEAR(s.obj, 3.0, 1e-9);
}

// A problem type that E04MFA does not know ends the run before any work.
TEST(LpFeasiblePoint, UnknownProblemTypeIsRejected) {
    LpSession session;
    EXPECT_EQ(session.option("Problem Type = QP2"), 5);
    const LpProblem p = LpProblem::dense({{1, 1}}, {0, 0, 1}, {1, 1, 2}, {1, 1});
    const std::vector<double> x0 = {0.25, 0.5};
    const LpResult r = session.solve(p, x0);
    EXPECT_EQ(r.ifail, 7);
    EXPECT_EQ(r.x, x0);
}

// The iteration limit ends the run with IFAIL 4 and the iterations taken.
TEST(LpLimits, IterationLimit) {
    LpSession session;
    ASSERT_EQ(session.option("Iteration Limit = 1"), 0);
    const KnownAnswer c = cases()[1];
    const LpResult r = session.solve(c.p, {}, {}, 1);
    EXPECT_EQ(r.ifail, 4);
    EXPECT_EQ(r.iter, 1);
}

} // namespace

namespace {

// NaN or infinite data anywhere ends the run, with a result or a failure, within the iteration limit.
TEST(LpRobustness, NonFiniteDataEndsTheRun) {
    const double nan = std::nan("");
    const LpProblem base = cases()[0].p;
    for (int where = 0; where < 5; ++where) {
        LpProblem p = base;
        std::vector<double> x0;
        if (where == 0) p.a[1] = nan;
        if (where == 1) p.c[0] = nan;
        if (where == 2) p.a[0] = zek_test::kInf;
        if (where == 3) x0 = {nan, 1.0};
        if (where == 4) p.bu[2] = nan;
        LpSession session;
        const LpResult r = session.solve(p, x0);
        EXPECT_GE(r.ifail, 0) << where;
        EXPECT_LE(r.ifail, 7) << where;
        EXPECT_LE(r.iter, 50) << where;
    }
}

} // namespace

namespace {

// Without general rows A is not referenced: a null A serves.
TEST(LpRobustness, NoRowsNeedNoMatrix) {
    LpSession session;  // prepares the state arrays
    const int n = 3, nclin = 0, lda = 1, liwork = 2 * n + 3, lwork = 7 * n + 1;
    const std::vector<double> bl = {0, -1, -5}, bu = {2, 1, 5}, c = {-1, 1, 0};
    std::vector<int> istate(3, 0), iwork(static_cast<std::size_t>(liwork));
    std::vector<double> x = {1, 0, 4}, clamda(3), work(static_cast<std::size_t>(lwork));
    std::vector<int> lwsav(120), iwsav(610);
    std::vector<double> rwsav(475);
    std::vector<char> cwsav(80, ' ');
    int lc = 1, ll = 120, li = 610, lr = 475, ifail = 0, iter = 0;
    double obj = 0.0, ax = 0.0;
    E04WBA("E04MFA", cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &li, rwsav.data(), &lr, &ifail, 6, 80);
    ifail = 1;
    E04MFA(&n, &nclin, nullptr, &lda, bl.data(), bu.data(), c.data(), istate.data(), x.data(), &iter, &obj, &ax,
           clamda.data(), iwork.data(), &liwork, work.data(), &lwork, lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
    // x3 costs nothing and is held where it started: optimal, not unique.
    EXPECT_EQ(ifail, 1);
    EXPECT_DOUBLE_EQ(obj, -3.0);
    EXPECT_DOUBLE_EQ(x[0], 2.0);
    EXPECT_DOUBLE_EQ(x[1], -1.0);
    EXPECT_DOUBLE_EQ(x[2], 4.0);
    EXPECT_EQ(istate[2], 4);
    EXPECT_DOUBLE_EQ(clamda[0], -1.0);
    EXPECT_DOUBLE_EQ(clamda[1], 1.0);
}

} // namespace
