// H02BBF's search: optima of small integer programs against enumeration, the limits of the search
// (nodes, depth, tree and slots, iterations), the integer tolerance, ties, and the state H02BZF copies.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "branch_and_bound_test_support.h"
#include "frame/host_capture.h"
#include "frame/machine.h"
#include "integer/branch_and_bound.h"
#include "optimisation/options.h"
#include "zek2/h02.h"

namespace {

using zek_test::BranchCall;
using zek_test::IntegerProgram;
using zek_test::OutputCapture;

int count_lines(const std::vector<std::string> &lines, const std::string &text) {
    return static_cast<int>(std::count_if(lines.begin(), lines.end(),
                                          [&](const std::string &l) { return l.find(text) != std::string::npos; }));
}

// The largest violation of P's bounds and rows at X, and of integrality.
double violation(const IntegerProgram &p, const std::vector<double> &x) {
    double worst = 0.0;
    for (int j = 0; j < p.n; ++j) {
        const double v = x[static_cast<std::size_t>(j)];
        worst = std::max({worst, p.bl[static_cast<std::size_t>(j)] - v, v - p.bu[static_cast<std::size_t>(j)]});
        if (p.intvar[static_cast<std::size_t>(j)] == 1) worst = std::max(worst, std::fabs(v - std::round(v)));
    }
    for (int i = 0; i < p.m; ++i) {
        double v = 0.0;
        for (int j = 0; j < p.n; ++j)
            v += p.a[static_cast<std::size_t>(i + j * p.lda())] * x[static_cast<std::size_t>(j)];
        worst = std::max({worst, p.bl[static_cast<std::size_t>(p.n + i)] - v, v - p.bu[static_cast<std::size_t>(p.n + i)]});
    }
    return worst;
}

double objective_at(const IntegerProgram &p, const std::vector<double> &x) {
    double f = 0.0;
    for (int j = 0; j < p.n; ++j) f += p.cvec[static_cast<std::size_t>(j)] * x[static_cast<std::size_t>(j)];
    return f;
}

// min -x1 - x2 subject to x1 + x2 <= 1.5, x binary: two integer optima of -1, the LP optimum -1.5.
IntegerProgram two_ties() {
    IntegerProgram p = IntegerProgram::box(2, 1, 1.0);
    p.cvec = {-1.0, -1.0};
    p.at(1, 1) = p.at(1, 2) = 1.0;
    p.bu[2] = 1.5;
    return p;
}

// min sum x, x(j) integer in [0.5, 10]: every left branch (x <= 0) is infeasible, every right branch
// fixes one more variable at 1, so the search dives one level per two nodes.
IntegerProgram staircase(int n) {
    IntegerProgram p = IntegerProgram::box(n, 0, 10.0);
    std::fill(p.bl.begin(), p.bl.end(), 0.5);
    std::fill(p.cvec.begin(), p.cvec.end(), 1.0);
    return p;
}

// sum x = 2.5 over six binaries: no integer point, and every LP on the way is fractional.
IntegerProgram half_sum() {
    IntegerProgram p = IntegerProgram::box(6, 1, 1.0);
    for (int j = 1; j <= 6; ++j) p.at(1, j) = 1.0;
    p.bl[6] = p.bu[6] = 2.5;
    return p;
}

TEST(BranchAndBoundSearch, SmallProgramsMatchEnumeration) {
    std::vector<IntegerProgram> programs;
    {  // no rows: M = 0, fractional bounds
        IntegerProgram p = IntegerProgram::box(2, 0, 0.0);
        p.bl = {0.5, -2.2};
        p.bu = {3.7, 1.5};
        p.cvec = {-1.0, 2.0};
        programs.push_back(p);
    }
    // Random programs built around an integer point, so that each has one.
    std::mt19937 gen(20240611);
    std::uniform_int_distribution<int> coef(-4, 6), box(1, 3);
    for (int k = 0; k < 30; ++k) {
        const int n = 3 + k % 3, m = 2 + k % 3;
        IntegerProgram p = IntegerProgram::box(n, m, 0.0);
        std::vector<double> point(static_cast<std::size_t>(n));
        for (int j = 0; j < n; ++j) {
            p.bl[static_cast<std::size_t>(j)] = -static_cast<double>(box(gen)) + 1.0;
            p.bu[static_cast<std::size_t>(j)] = static_cast<double>(box(gen));
            point[static_cast<std::size_t>(j)] = p.bl[static_cast<std::size_t>(j)];
            p.cvec[static_cast<std::size_t>(j)] = coef(gen);
        }
        for (int i = 1; i <= m; ++i) {
            double v = 0.0;
            for (int j = 1; j <= n; ++j) {
                p.at(i, j) = coef(gen);
                v += p.at(i, j) * point[static_cast<std::size_t>(j - 1)];
            }
            // A row bound half a unit off an integer makes the LP optimum fractional.
            p.bu[static_cast<std::size_t>(n + i - 1)] = v + 0.5 * (i % 3) + 1.0;
            if (i % 2 == 0) p.bl[static_cast<std::size_t>(n + i - 1)] = v - 2.5;
        }
        programs.push_back(p);
    }
    for (std::size_t k = 0; k < programs.size(); ++k) {
        const IntegerProgram &p = programs[k];
        double expected = 0.0;
        ASSERT_TRUE(zek_test::enumerate_optimum(p, &expected)) << k;
        BranchCall call;
        EXPECT_EQ(call.run(p), 0) << "program " << k;
        EXPECT_NEAR(call.objective, expected, 1e-7) << "program " << k;
        EXPECT_LE(violation(p, call.x), 1e-5) << "program " << k;
        EXPECT_NEAR(objective_at(p, call.x), call.objective, 1e-7) << "program " << k;
    }
}

TEST(BranchAndBoundSearch, AllContinuousIsOneNode) {
    IntegerProgram p = two_ties();
    std::fill(p.intvar.begin(), p.intvar.end(), 0);
    BranchCall call;
    call.msglvl = 1;
    OutputCapture out;
    EXPECT_EQ(call.run(p), 0);
    EXPECT_NEAR(call.objective, -1.5, 1e-12);
    EXPECT_EQ(count_lines(out.host(), " Total of     1 nodes investigated."), 1);
    EXPECT_EQ(count_lines(out.host(), " Exit H02BBF - Optimum IP solution found. "), 1);
}

TEST(BranchAndBoundSearch, NodeLimit) {
    // The first branching happens at node 1, the second after nodes 2 (right child) and 3 (left child,
    // integral); a limit of at most the counter + 1 stops there.
    struct Case {
        int maxnod, ifail;
        double objective;
    };
    const double none = zek::h02::no_objective();
    for (const Case &c : {Case{1, 10, none}, Case{2, 10, none}, Case{3, 9, -1.0}, Case{4, 9, -1.0},
                          Case{5, 0, -1.0}, Case{0, 0, -1.0}}) {
        BranchCall call;
        call.maxnod = c.maxnod;
        call.msglvl = 1;
        OutputCapture out;
        EXPECT_EQ(call.run(two_ties()), c.ifail) << c.maxnod;
        EXPECT_EQ(call.objective, c.objective) << c.maxnod;
        const int limited = count_lines(out.host(), " ** Number of nodes exceeds the maximum **");
        EXPECT_EQ(limited, c.ifail == 0 ? 0 : 1) << c.maxnod;
        if (c.ifail == 10) {
            EXPECT_EQ(count_lines(out.host(), " ** No integer solution so far **"), 1);
            EXPECT_EQ(count_lines(out.host(), "Final IP objective value"), 0);
        }
        if (c.ifail == 9) {
            EXPECT_EQ(count_lines(out.host(), " ** The best integer solution **"), 1);
            EXPECT_EQ(count_lines(out.host(), " Exit H02BBF - Best IP solution found. "), 1);
            EXPECT_EQ(call.x[0] + call.x[1], 1.0);
        }
    }
}

TEST(BranchAndBoundSearch, IntegerToleranceIsInclusive) {
    // x = 2.25 at the LP optimum: integral under a tolerance of exactly 0.25, returned unrounded.
    IntegerProgram p = IntegerProgram::box(1, 0, 2.25);
    p.cvec = {-1.0};
    BranchCall at;
    at.toliv = 0.25;
    at.msglvl = 1;
    {
        OutputCapture out;
        EXPECT_EQ(at.run(p), 0);
        EXPECT_EQ(count_lines(out.host(), " Total of     1 nodes investigated."), 1);
    }
    EXPECT_EQ(at.x[0], 2.25);
    EXPECT_EQ(at.objective, -2.25);
    BranchCall below;
    below.toliv = 0.2499;
    EXPECT_EQ(below.run(p), 0);
    EXPECT_EQ(below.x[0], 2.0);
    EXPECT_EQ(below.objective, -2.0);
    EXPECT_EQ(below.toliv, 0.2499);
}

TEST(BranchAndBoundSearch, DepthLimitLeavesTheLastLp) {
    BranchCall call;
    call.maxdpt = 3;
    EXPECT_EQ(call.run(staircase(5)), 8);
    // Depth 3: three variables fixed at 1, the rest at the LP's 0.5.
    EXPECT_EQ(call.x, (std::vector<double>{1.0, 1.0, 1.0, 0.5, 0.5}));
    EXPECT_EQ(call.objective, 4.0);

    BranchCall deep;
    deep.maxdpt = 5;
    deep.msglvl = 1;
    OutputCapture out;
    EXPECT_EQ(deep.run(staircase(5)), 0);
    EXPECT_EQ(deep.x, std::vector<double>(5, 1.0));
    EXPECT_EQ(count_lines(out.host(), " Total of    11 nodes investigated."), 1);
}

TEST(BranchAndBoundSearch, SlotsRunOut) {
    // Two slots: the root's two children and one more branching need three.
    BranchCall slots;
    slots.maxdpt = 2;
    EXPECT_EQ(slots.run(half_sum()), 11);
    EXPECT_EQ(slots.objective, zek::h02::no_objective());
    // With enough slots the search ends with 1: there is no integer point.
    BranchCall enough;
    enough.maxdpt = 12;
    EXPECT_EQ(enough.run(half_sum()), 1);
    EXPECT_EQ(enough.objective, zek::h02::no_objective());
}

TEST(BranchAndBoundSearch, FirstSolutionStopsTheSearch) {
    BranchCall call;
    call.intfst = 1;
    call.msglvl = 1;
    OutputCapture out;
    IntegerProgram p = staircase(4);
    EXPECT_EQ(call.run(p), 0);
    EXPECT_EQ(count_lines(out.host(), " Exit H02BBF - First IP solution found. "), 1);
    EXPECT_LE(violation(p, call.x), 0.0);
}

TEST(BranchAndBoundSearch, RootOutcomes) {
    // No integer point although the LP is feasible: 2 x = 1.
    IntegerProgram odd = IntegerProgram::box(1, 1, 5.0);
    odd.at(1, 1) = 2.0;
    odd.bl[1] = odd.bu[1] = 1.0;
    // Infeasible LP: x1 + x2 >= 3 with x in [0, 1].
    IntegerProgram infeasible = IntegerProgram::box(2, 1, 1.0);
    infeasible.at(1, 1) = infeasible.at(1, 2) = 1.0;
    infeasible.bl[2] = 3.0;
    // Unbounded LP: min -x1, x1 - x2 <= 0.5, both without upper bounds.
    IntegerProgram unbounded = IntegerProgram::box(2, 1, 1e20);
    unbounded.cvec = {-1.0, 0.0};
    unbounded.at(1, 1) = 1.0;
    unbounded.at(1, 2) = -1.0;
    unbounded.bu[2] = 0.5;
    struct Case {
        const IntegerProgram *p;
        int itmax, ifail;
        const char *record;
    };
    const Case cases[] = {
        {&odd, 0, 1, " ** The problem does not have a feasible integer solution."},
        {&infeasible, 0, 3, " ** The LP does not have a feasible solution."},
        {&unbounded, 0, 2, " ** The LP solution is unbounded."},
        {&unbounded, 1, 4, " ** Iteration limit reached without finding a solution."},
    };
    for (const Case &c : cases) {
        BranchCall call;
        call.itmax = c.itmax;
        call.ifail_in = -13;
        call.msglvl = 2;
        OutputCapture out;
        EXPECT_EQ(call.run(*c.p), c.ifail) << c.record;
        EXPECT_EQ(count_lines(out.host(), c.record), 1) << c.record;
        EXPECT_EQ(call.objective, zek::h02::no_objective());
        EXPECT_EQ(count_lines(out.host(), "Doubling"), 0);
    }
}

TEST(BranchAndBoundSearch, IterationLimitDoubledOnceAwayFromTheRoot) {
    // Started at the LP optimum the root needs few iterations; the nodes, started at their parents'
    // points, need more.  Over a range of small limits: at most one doubling per run, the store keeps
    // the doubled limit and "Warm Start", an abandoned branch never surfaces as IFAIL 7 and turns the
    // closing line to "Best".
    IntegerProgram p;
    ASSERT_TRUE(IntegerProgram::from_file(std::string(ZEK_SHARED_DATA_DIR) + "/mip/flugpl.mps", p));
    IntegerProgram relaxed = p;
    std::fill(relaxed.intvar.begin(), relaxed.intvar.end(), 0);
    BranchCall lp;
    ASSERT_EQ(lp.run(relaxed), 0);
    int doubled_runs = 0, abandoned_runs = 0;
    for (int itmax = 1; itmax <= 8; ++itmax) {
        BranchCall call;
        call.x0 = lp.x;
        call.itmax = itmax;
        call.msglvl = 2;
        call.maxdpt = 100;
        call.extra_iwork = 20000;
        OutputCapture out;
        const int ifail = call.run(p);
        const int doublings = count_lines(out.host(), "** Doubling iteration limit");
        const int abandoned = count_lines(out.host(), " ** Cannot find optimum LP, terminate the search of this branch");
        EXPECT_LE(doublings, 1) << itmax;
        EXPECT_NE(ifail, 7) << itmax;
        namespace e04 = zek::e04;
        const int stored_limit = e04::setting(call.iwsav.data(), e04::Block::LC, e04::lc::kOptimalityItns);
        const int stored_start = e04::setting(call.iwsav.data(), e04::Block::LC, e04::lc::kStart);
        EXPECT_EQ(stored_limit, doublings == 1 ? 2 * itmax : itmax) << itmax;
        EXPECT_EQ(stored_start, doublings == 1 ? 1 : 0) << itmax;
        if (ifail == 4) {
            EXPECT_EQ(doublings, 0) << itmax;
        }
        if (abandoned > 0 && ifail == 0) {
            EXPECT_EQ(count_lines(out.host(), " Exit H02BBF - Best IP solution found. "), 1) << itmax;
            EXPECT_GE(call.objective, 1201500.0);
        }
        if (abandoned == 0 && ifail == 0) {
            EXPECT_EQ(call.objective, 1201500.0) << itmax;
        }
        doubled_runs += doublings;
        abandoned_runs += abandoned > 0;
    }
    EXPECT_GT(doubled_runs, 0);
    EXPECT_GT(abandoned_runs, 0);
}

TEST(BranchAndBoundSearch, DefaultsAndTraceRequest) {
    BranchCall plain;
    EXPECT_EQ(plain.run(two_ties()), 0);
    EXPECT_TRUE(plain.itmax == 50 && plain.toliv == 1e-5 && plain.bigbnd == 1e20);
    EXPECT_EQ(plain.tolfes, std::sqrt(zek::precision()));
    // -11111 asks for a trace: print level 0 below 5, 15 at 5, 20 above; the limit takes its default.
    for (const auto &[msglvl, level] : {std::pair<int, const char *>{4, nullptr}, {5, "        15"}, {6, "        20"}}) {
        BranchCall trace;
        trace.itmax = -11111;
        trace.msglvl = msglvl;
        OutputCapture out;
        EXPECT_EQ(trace.run(two_ties()), 0);
        EXPECT_EQ(trace.itmax, 50);
        if (level == nullptr) EXPECT_TRUE(out.host().empty());
        else EXPECT_EQ(count_lines(out.host(), std::string("Print level.............") + level), 1);
    }
}

} // namespace
