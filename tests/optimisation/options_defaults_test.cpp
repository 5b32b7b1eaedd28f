// A run's defaults: sentinels and range rules settled per problem size, the user's settings kept
// across runs, and the printed parameter list.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/machine.h"
#include "frame/output.h"
#include "option_test_support.h"
#include "optimisation/options.h"
#include "zek2/e04.h"

namespace {

using zek::e04::Block;
using zek::e04::Family;
using zek::e04::ProblemSize;
using zek_test::OptionState;
using zek_test::OutputCapture;
namespace lc = zek::e04::lc;
namespace ls = zek::e04::ls;
namespace np = zek::e04::np;
namespace cg = zek::e04::cg;
constexpr Block LC = Block::LC, LS = Block::LS, NP = Block::NP, CG = Block::CG;

const double kEps = zek::precision();

// A solver's side of one run: options, defaults, then the settled blocks are returned and restored.
struct SolverRun {
    SolverRun(Family f, std::vector<std::string> lines, ProblemSize size) : family(f), state(zek_test::solver(f).name) {
        for (const std::string &line : lines) EXPECT_EQ(zek_test::option(state, f, line), 0) << line;
        begin(size);
    }
    void begin(ProblemSize size) {
        zek::e04::begin_run(family, state.lwsav.data(), state.iwsav.data(), state.rwsav.data(), size);
    }
    void end() { zek::e04::end_run(family, state.lwsav.data(), state.iwsav.data(), state.rwsav.data()); }
    int i(Block b, int k) const { return zek::e04::setting(state.iwsav.data(), b, k); }
    double r(Block b, int k) const { return zek::e04::real_setting(state.rwsav.data(), b, k); }
    // Places of block B with the values they must hold.
    void ints(Block b, const std::vector<std::pair<int, int>> &want) const {
        for (const auto &[k, v] : want) EXPECT_EQ(i(b, k), v) << "place " << k;
    }
    void reals(Block b, const std::vector<std::pair<int, double>> &want) const {
        for (const auto &[k, v] : want) EXPECT_EQ(r(b, k), v) << "place " << k;
    }
    Family family;
    OptionState state;
};

TEST(LcDefaults, FollowTheProblemSize) {
    const struct {
        Family family;
        std::vector<std::string> lines;
        int n, nclin;
        int itns, max_active, max_free, max_degrees, hessian_rows;
    } rows[] = {
        // max(50, 5(n+m)); min(n, m) active at least 1; with m < n the free variables are m+1.
        {Family::MFA, {}, 10, 4, 70, 4, 5, 5, 0},
        {Family::MFA, {}, 3, 5, 50, 3, 3, 3, 0},
        {Family::MFA, {}, 4, 0, 50, 1, 1, 1, 0},
        {Family::MFA, {"Iterations 20"}, 100, 100, 20, 100, 100, 100, 0},
        {Family::MFA, {"Iterations -3"}, 100, 100, 1000, 100, 100, 100, 0},
        // E04NFA: Hessian rows n for QP, 0 below QP; degrees of freedom follow them, 0 becoming 1.
        {Family::NFA, {}, 6, 2, 50, 2, 6, 6, 6},
        {Family::NFA, {"Hessian Rows 0"}, 6, 2, 50, 2, 6, 1, 0},
        {Family::NFA, {"Hessian Rows 4"}, 6, 2, 50, 2, 6, 4, 4},
        {Family::NFA, {"Hessian Rows 9"}, 6, 2, 50, 2, 6, 6, 6},
        {Family::NFA, {"Problem Type LP"}, 6, 2, 50, 2, 3, 3, 0},
        {Family::NFA, {"Max Degrees of Freedom 2"}, 6, 9, 75, 6, 6, 2, 6},
    };
    for (const auto &c : rows) {
        SolverRun run(c.family, c.lines, {c.n, c.nclin});
        const std::vector<int> got = {run.i(LC, lc::kOptimalityItns), run.i(LC, lc::kMaxActive),
                                      run.i(LC, lc::kMaxFree), run.i(LC, lc::kMaxDegrees)};
        EXPECT_EQ(got, (std::vector<int>{c.itns, c.max_active, c.max_free, c.max_degrees})) << c.n << " " << c.nclin;
        if (c.family == Family::NFA) {
            EXPECT_EQ(run.i(LC, lc::kHessianRows), c.hessian_rows);
        }
    }
}

// The constants the E04MFA parameter list shows are checked there.
TEST(LcDefaults, SentinelsRangesAndTolerances) {
    SolverRun plain(Family::MFA, {}, {5, 2});
    plain.ints(LC, {{lc::kPrintUnit, zek::advisory_unit()}, {lc::kProblemType, 2}, {lc::kMinimumSum, 0}});
    const zek::e04::MachineBase b = zek::e04::machine_base(plain.state.rwsav.data());
    EXPECT_EQ(b.eps, kEps);
    EXPECT_EQ(b.e33, std::pow(kEps, 0.33));
    EXPECT_EQ(b.e80, std::pow(kEps, 0.8));
    EXPECT_EQ(b.e90, std::pow(kEps, 0.9));

    SolverRun set(Family::NFA,
            {"Print Level 5", "Monitoring File 9", "Expand Frequency 100000000", "Check Frequency 0",
             "Crash Tolerance -1", "Feasibility Tolerance -1", "Optimality Tolerance 1e-20", "Infinite Bound 1e10",
             "Warm Start", "Rank Tolerance 0"},
            {5, 2});
    set.ints(LC, {{lc::kMonitoringUnit, 9}, {lc::kExpandFrequency, 9999999}, {lc::kCheckFrequency, 50},
                  {lc::kStart, 1}, {lc::kProblemType, 4}});
    set.reals(LC, {{lc::kCrashTolerance, 0.01}, {lc::kOptimalityTolerance, std::pow(kEps, 0.5)},
                   {lc::kInfiniteBound, 1e10 * 0.99999}, {lc::kInfiniteStep, 9.9999e19},
                   {lc::kRankTolerance, 100 * kEps}});
    EXPECT_EQ(set.r(LC, lc::kFeasibilityTolerance), -1.0);  // a negative value other than the sentinel stays
    SolverRun quiet(Family::MFA, {"Print Level 4", "Monitoring File 9"}, {5, 2});
    EXPECT_EQ(quiet.i(LC, lc::kMonitoringUnit), -1);
}

TEST(RunProtocol, DefaultsDoNotPersistAndUserSettingsDo) {
    SolverRun run(Family::MFA, {"Check Frequency 7"}, {10, 10});
    run.ints(LC, {{lc::kOptimalityItns, 100}, {lc::kCheckFrequency, 7}});
    run.end();
    run.ints(LC, {{lc::kOptimalityItns, zek::e04::kNotSetInt}, {lc::kCheckFrequency, 7}});
    EXPECT_EQ(run.r(LC, lc::kFeasibilityTolerance), zek::e04::kNotSetReal);
    run.begin({20, 20});
    run.ints(LC, {{lc::kOptimalityItns, 200}, {lc::kCheckFrequency, 7}});
}

TEST(LsDefaults, RankToleranceFollowsTheProblemType) {
    EXPECT_EQ(SolverRun(Family::NCA, {}, {4, 1}).r(LS, ls::kRankTolerance), 100 * kEps);  // LS1
    EXPECT_EQ(SolverRun(Family::NCA, {"Problem Type QP2"}, {4, 1}).r(LS, ls::kRankTolerance), 10 * std::pow(kEps, 0.5));
    EXPECT_EQ(SolverRun(Family::NCA, {"Problem Type QP3"}, {4, 1}).r(LS, ls::kRankTolerance), 100 * kEps);
    EXPECT_EQ(SolverRun(Family::NCA, {"Rank Tolerance 1e-3"}, {4, 1}).r(LS, ls::kRankTolerance), 1e-3);
    // E04NCA keeps tolerances at or above 1, the nonlinear solvers do not.
    SolverRun nca(Family::NCA, {"Crash Tolerance 2", "Feasibility Tolerance 2"}, {4, 1});
    nca.ints(LS, {{ls::kProblemType, 7}, {ls::kFeasibilityItns, 50}});
    nca.reals(LS, {{ls::kCrashTolerance, 2.0}, {ls::kFeasibilityTolerance, 2.0}});
    SolverRun uca(Family::UCA, {"Crash Tolerance 2", "Feasibility Tolerance 2"}, {4, 1});
    uca.reals(LS, {{ls::kCrashTolerance, 0.01}, {ls::kFeasibilityTolerance, std::pow(kEps, 0.5)}});
}

TEST(NpDefaults, FollowTheSizeAndTheDerivativeLevel) {
    const double e90 = std::pow(kEps, 0.9);
    SolverRun run(Family::UCA, {"Stop Objective Check 9", "Start Constraint Check 4", "Stop Constraint Check 3",
                          "Verify Level 5", "IPRMLS 3 7", "Minor Iterations 0"},
            {5, 2, 3});
    EXPECT_EQ(run.i(NP, np::kMajorIterations), 51);  // max(50, 3(n+m) + 10 mn)
    EXPECT_EQ(run.i(LS, ls::kOptimalityItns), 50);   // max(50, 3(n+m+mn)) below 1
    EXPECT_EQ(run.i(LS, ls::kFeasibilityItns), 50);  // always recomputed
    run.ints(NP, {{np::kStopObjective, 5}, {np::kStartObjective, 1}, {np::kStopConstraints, 3},
                  {np::kStartConstraints, 1}, {np::kDerivativeLevel, 3}, {np::kVerifyLevel, 0},
                  {np::kNonlinearObjective, 5}, {np::kDifferenceMode, 0}});
    run.reals(NP, {{np::kFunctionPrecision, e90}, {np::kOptimalityTolerance, std::pow(e90, 0.8)},
                   {np::kNonlinearFeasibility, std::pow(kEps, 0.5)}, {np::kStepLimit, 2.0},
                   {np::kLinesearchTolerance, 0.9}, {np::kConditionBound, std::max(1e6, 1 / (100 * kEps * 5))}});

    SolverRun low(Family::UCA, {"Derivative Level 1", "Verify Level 12", "Difference Interval 1e-6"}, {5, 2, 3});
    low.ints(NP, {{np::kVerifyLevel, 12}, {np::kDifferenceMode, 1}});
    low.reals(NP, {{np::kNonlinearFeasibility, std::pow(kEps, 0.33)}, {np::kCentralInterval, std::pow(e90, 0.33)}});
    EXPECT_EQ(SolverRun(Family::UCA, {"Difference Interval -1"}, {5}).i(NP, np::kDifferenceMode), 2);
    EXPECT_EQ(SolverRun(Family::USA, {"Difference Interval 2"}, {5}).i(NP, np::kDifferenceMode), 0);
}

TEST(CgDefaults, DebugAndChecks) {
    SolverRun run(Family::DGA, {}, {7});
    run.ints(CG, {{cg::kIterations, 50}, {cg::kDebugLevel, 51}, {cg::kDebugStart, 0}, {cg::kStopObjective, 7}});
    EXPECT_EQ(run.r(CG, cg::kEstimatedOptimum), zek::e04::kNotSetReal);
    EXPECT_EQ(SolverRun(Family::DGA, {}, {20}).i(CG, cg::kIterations), 100);
    SolverRun(Family::DGA, {"Debug Start 3", "Debug Level -2"}, {7}).ints(CG, {{cg::kDebugLevel, 0}, {cg::kDebugStart, 3}});
}

std::vector<std::string> printed(SolverRun &run, ProblemSize size) {
    OutputCapture out;
    zek::e04::print_parameters(run.family, run.state.iwsav.data(), run.state.rwsav.data(), size);
    return out.host();
}

TEST(ParameterList, E04MFA) {
    const ProblemSize size{4, 3};
    SolverRun run(Family::MFA, {"Print Level 1", "Problem Type FP", "Min Sum Yes"}, size);
    const double e50 = std::pow(kEps, 0.5);
    const std::vector<std::string> expected = {
        " *** E04MFA",
        "",
        " Parameters",
        " ----------",
        zek::format(" Problem type...........   %7.7s", "FP"),
        zek::format(" Linear constraints.....%10ld       Feasibility tolerance..%10.2E", 3L, e50),
        zek::format(" Variables..............%10ld       Optimality tolerance...%10.2E", 4L, e50),
        zek::format(" Infinite bound size....%10.2E       %4.4s start.............", 9.9999e19, "COLD"),
        zek::format(" Infinite step size.....%10.2E       EPS (machine precision)%10.2E", 9.9999e19, kEps),
        zek::format(" Check frequency........%10ld       Expand frequency.......%10ld", 50L, 5L),
        zek::format(" Minimum sum of infeas..       %3.3s       Crash tolerance........%10.2E", "YES", 0.01),
        zek::format(" Print level............%10ld       Iteration limit........%10ld", 1L, 50L),
        zek::format(" Monitoring file........%10ld", -1L),
    };
    EXPECT_EQ(printed(run, size), expected);
    // Nothing below print level 1.
    SolverRun silent(Family::MFA, {}, size);
    EXPECT_TRUE(printed(silent, size).empty());
}

// Selected rows of the other lists: each family's own captions and the rows that depend on settings.
TEST(ParameterList, OtherFamilies) {
    const double e50 = std::pow(kEps, 0.5), e90 = std::pow(kEps, 0.9);
    struct Case {
        Family family;
        std::vector<std::string> lines;
        ProblemSize size;
        std::size_t count, row;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {Family::NFA, {"Print Level 1", "Problem Type Bogus"}, {4, 3}, 15, 4, " Problem type...........   ILLEGAL"},
        {Family::NFA, {"Print Level 1"}, {4, 3}, 15, 7,
         zek::format(" Hessian rows...........%10ld       Rank tolerance.........%10.2E", 4L, 100 * kEps)},
        {Family::NFA, {"Print Level 1"}, {4, 3}, 15, 12,
         zek::format(" Max degrees of freedom.%10ld       Print level............%10ld", 4L, 1L)},
        {Family::NFA, {"Print Level 1"}, {4, 3}, 15, 14, zek::format(" Optimality  phase itns.%10ld", 50L)},
        {Family::NCA, {"Print Level 1", "Hessian Yes", "Problem Type LS2"}, {4, 1, 0, 6}, 12, 4,
         " Problem type...........       LS2       Hessian................       YES"},
        {Family::NCA, {"Print Level 1", "Warm"}, {4, 1, 0, 6}, 12, 7,
         zek::format(" Objective matrix rows..%10ld       Rank tolerance.........%10.2E", 6L, 100 * kEps)},
        {Family::NCA, {"Print Level 1", "Warm"}, {4, 1, 0, 6}, 12, 8,
         zek::format(" Infinite bound size....%10.2E       %4.4s start.............", 9.9999e19, "WARM")},
        {Family::USA, {"Print Level 1"}, {5, 2, 1, 0, 8}, 20, 5,
         zek::format(" Nonlinear constraints..%10ld       Subfunctions...........%10ld", 1L, 8L)},
        {Family::USA, {"Print Level 1", "Difference Interval 1e-5"}, {5, 2, 1, 0, 8}, 20, 18,
         zek::format(" Difference interval....%10.2E       Central diffce interval%10.2E", 1e-5, std::pow(e90, 0.33))},
        {Family::USA, {"Print Level 1", "Unit Initial Hessian"}, {5, 2, 1, 0, 8}, 20, 19,
         zek::format(" Unit initial Hessian...                 Reset frequency........%10ld", 2L)},
        {Family::UCA, {"Print Level 1"}, {5, 2, 1}, 19, 5, zek::format(" Nonlinear constraints..%10ld", 1L)},
        {Family::UCA, {"Print Level 1"}, {5, 2, 1}, 19, 10,
         zek::format(" Nonlinear feasibility..%10.2E       Optimality tolerance...%10.2E", e50, std::pow(e90, 0.8))},
        {Family::UCA, {"Print Level 1", "Difference Interval -1"}, {5, 2, 1}, 19, 18,
         " User-supplied difference intervals."},
        {Family::DGA, {"Print Level 1", "Verify Level 1", "Estimated Optimal Function Value -3"}, {7}, 11, 7,
         zek::format(" Est. opt. function val.%10.2E       Function precision.....%10.2E", -3.0, e90)},
        {Family::DGA, {"Print Level 1", "Verify Level 1"}, {7}, 11, 10,
         zek::format(" Start obj chk at varble%10ld       Stop obj chk at varble.%10ld", 1L, 7L)},
        {Family::DGA, {"Print Level 1"}, {7}, 10, 7,
         zek::format(" Est. opt. function val.      None       Function precision.....%10.2E", e90)},
        {Family::DGA, {"Print Level 1", "Debug Start 2"}, {7}, 11, 10,
         zek::format(" Debug level............%10ld       Debug start at itn.....%10ld", 0L, 2L)},
    };
    for (const Case &c : cases) {
        SolverRun run(c.family, {}, c.size);  // the first run settles the first-call state
        run.end();
        for (const std::string &line : c.lines)
            zek::e04::decode_line(c.family, line.data(), static_cast<int>(line.size()), false, -1,
                                  run.state.lwsav.data(), run.state.iwsav.data(), run.state.rwsav.data());
        run.begin(c.size);
        const std::vector<std::string> lines = printed(run, c.size);
        ASSERT_EQ(lines.size(), c.count) << c.expected;
        EXPECT_EQ(lines[c.row], c.expected);
    }
}

} // namespace
