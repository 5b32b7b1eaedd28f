// H02BBF's search against GLPK's branch and bound and the MIPLIB optima, the limits of the search
// (nodes, depth, slots, iterations), the integer tolerance, what it prints, its failure exits and those
// of H02WBF, H02BZF and H02BVF, and a host's whole sequence on a file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/machine.h"
#include "integer/branch_and_bound.h"
#include "integer_test_support.h"
#include "optimisation/options.h"

namespace {

using zek_test::BranchCall;
using zek_test::glpk_optimum;
using zek_test::IntegerProgram;
using zek_test::OutputCapture;

int count_lines(const std::vector<std::string> &lines, const std::string &text) {
    return static_cast<int>(std::count_if(lines.begin(), lines.end(),
                                          [&](const std::string &l) { return l.find(text) != std::string::npos; }));
}

#if defined(ZEK_HAVE_GLPK)
TEST(BranchAndBoundReference, RandomMixedProgramsMatchGlpk) {
    std::mt19937 gen(7151);
    std::uniform_real_distribution<double> coef(-3.0, 5.0), cost(-4.0, 4.0), rhs(0.0, 6.0);
    std::uniform_int_distribution<int> lower(-2, 0), width(1, 5);
    // No rows, fractional bounds: the bounds alone decide the integer optimum, -3 + 2 (-2) = -7.
    IntegerProgram rowless = IntegerProgram::box(2, 0, 0.0);
    rowless.bl = {0.5, -2.2};
    rowless.bu = {3.7, 1.5};
    rowless.cvec = {-1.0, 2.0};
    int solved = 0;
    for (int k = -1; k < 200; ++k) {
        const int n = 5 + k % 10, m = 3 + k % 6;
        IntegerProgram p = k < 0 ? rowless : IntegerProgram::box(n, m, 0.0);
        for (int j = 0; j < n && k >= 0; ++j) {
            p.bl[j] = lower(gen);
            p.bu[j] = p.bl[j] + width(gen);
            p.cvec[j] = std::round(cost(gen) * 4.0) / 4.0;
            p.intvar[j] = (j + k) % 3 == 0 ? 0 : 1;
        }
        for (int i = 1; i <= m && k >= 0; ++i) {
            for (int j = 1; j <= n; ++j) p.at(i, j) = std::round(coef(gen) * 2.0) / 2.0;
            p.bu[n + i - 1] = rhs(gen);
            if (i == m && k % 4 == 0) p.bl[n + i - 1] = p.bu[n + i - 1] - 0.5;  // a narrow range now and then
        }
        double reference = -7.0;
        const bool has_optimum = k < 0 || glpk_optimum(p, &reference);
        BranchCall call;
        call.maxdpt = 60, call.extra_iwork = 20000;
        const int ifail = call.run(p);
        if (!has_optimum) {
            EXPECT_TRUE(ifail == 1 || ifail == 3) << "program " << k << ": IFAIL " << ifail;
            continue;
        }
        ASSERT_EQ(ifail, 0) << "program " << k;
        EXPECT_NEAR(call.objective, reference, 1e-7 * std::max(1.0, std::fabs(reference))) << "program " << k;
        // The point returned is integral where asked, within its bounds and gives the objective.
        double f = 0.0;
        for (int j = 0; j < p.n; ++j) {
            const double v = call.x[j];
            f += p.cvec[j] * v;
            EXPECT_TRUE(v >= p.bl[j] - 1e-6 && v <= p.bu[j] + 1e-6 && (p.intvar[j] == 0 || std::fabs(v - std::round(v)) <= 1e-5))
                << k;
        }
        EXPECT_NEAR(f, call.objective, 1e-7 * std::max(1.0, std::fabs(f))) << k;
        ++solved;
    }
    EXPECT_GE(solved, 100);
}

#endif

TEST(BranchAndBoundReference, MiplibModelsSolveToTheirOptima) {
    const std::string dir = std::string(ZEK_SHARED_DATA_DIR) + "/mip/";
    std::ifstream table(dir + "optima.tsv");
    int models = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line[0] == '#') continue;
        const std::string name = line.substr(0, line.find('\t'));
        const double optimum = std::stod(line.substr(line.find('\t') + 1));
        IntegerProgram p;
        ASSERT_TRUE(IntegerProgram::from_file(dir + name + ".mps", p)) << name;
        BranchCall call;
        call.maxdpt = 200, call.extra_iwork = 200000;
        EXPECT_EQ(call.run(p), 0) << name;
        EXPECT_NEAR(call.objective, optimum, 1e-6 * std::max(1.0, std::fabs(optimum))) << name;
        ++models;
    }
    EXPECT_GE(models, 3);
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

TEST(BranchAndBoundSearch, RootOutcomesLimitsAndTolerances) {
    const double none = zek::h02::no_objective();
    IntegerProgram continuous = two_ties(), at_tolerance = IntegerProgram::box(1, 0, 2.25);
    std::fill(continuous.intvar.begin(), continuous.intvar.end(), 0);
    at_tolerance.cvec = {-1.0};  // x = 2.25 at the LP optimum
    IntegerProgram odd = IntegerProgram::box(1, 1, 5.0);  // 2 x = 1: no integer point, the LP feasible
    odd.at(1, 1) = 2.0;
    odd.bl[1] = odd.bu[1] = 1.0;
    IntegerProgram infeasible = IntegerProgram::box(2, 1, 1.0);  // x1 + x2 >= 3 with x in [0, 1]
    infeasible.at(1, 1) = infeasible.at(1, 2) = 1.0;
    infeasible.bl[2] = 3.0;
    IntegerProgram unbounded = IntegerProgram::box(2, 1, 1e20);  // min -x1, x1 - x2 <= 0.5
    unbounded.cvec = {-1.0, 0.0};
    unbounded.at(1, 1) = 1.0;
    unbounded.at(1, 2) = -1.0;
    unbounded.bu[2] = 0.5;
    // The first branching of two_ties happens at node 1, the second after nodes 2 (right child) and 3
    // (left child, integral); a node limit of at most the counter + 1 stops there.  A depth limit of 3
    // on the staircase leaves three variables fixed at 1 and the rest at the LP's 0.5.  Two slots cannot
    // hold the root's two children and one more branching.  An integer tolerance is inclusive, and the
    // point within it is returned unrounded.  The root's own outcomes leave no objective.
    const struct {
        const char *what;
        IntegerProgram p;
        int maxnod, maxdpt, intfst, itmax;
        double toliv;
        int ifail;
        double objective;
        std::vector<double> x;  // checked when not empty
        const char *line;       // a line printed at MSGLVL 1, when not null
    } cases[] = {
        {"nodes 1", two_ties(), 1, 50, 0, 0, 0.0, 10, none, {}, " ** No integer solution so far **"},
        {"nodes 2", two_ties(), 2, 50, 0, 0, 0.0, 10, none, {}, " ** Number of nodes exceeds the maximum **"},
        {"nodes 3", two_ties(), 3, 50, 0, 0, 0.0, 9, -1.0, {}, " ** The best integer solution **"},
        {"nodes 4", two_ties(), 4, 50, 0, 0, 0.0, 9, -1.0, {}, " Exit H02BBF - Best IP solution found. "},
        {"nodes 5", two_ties(), 5, 50, 0, 0, 0.0, 0, -1.0, {}, " Exit H02BBF - Optimum IP solution found. "},
        {"nodes unlimited", two_ties(), 0, 50, 0, 0, 0.0, 0, -1.0, {}, nullptr},
        {"continuous", continuous, 0, 50, 0, 0, 0.0, 0, -1.5, {}, " Total of     1 nodes investigated."},
        {"depth 3", staircase(5), 0, 3, 0, 0, 0.0, 8, 4.0, {1, 1, 1, 0.5, 0.5}, nullptr},
        {"depth 5", staircase(5), 0, 5, 0, 0, 0.0, 0, 5.0, {1, 1, 1, 1, 1}, " Total of    11 nodes investigated."},
        {"first", staircase(4), 0, 50, 1, 0, 0.0, 0, 4.0, {1, 1, 1, 1}, " Exit H02BBF - First IP solution found. "},
        {"slots 2", half_sum(), 0, 2, 0, 0, 0.0, 11, none, {}, nullptr},
        {"slots 12", half_sum(), 0, 12, 0, 0, 0.0, 1, none, {}, nullptr},
        {"tolerance at", at_tolerance, 0, 50, 0, 0, 0.25, 0, -2.25, {2.25}, " Total of     1 nodes investigated."},
        {"tolerance below", at_tolerance, 0, 50, 0, 0, 0.2499, 0, -2.0, {2.0}, nullptr},
        {"odd", odd, 0, 50, 0, 0, 0.0, 1, none, {}, " ** The problem does not have a feasible integer solution."},
        {"infeasible", infeasible, 0, 50, 0, 0, 0.0, 3, none, {}, " ** The LP does not have a feasible solution."},
        {"unbounded", unbounded, 0, 50, 0, 0, 0.0, 2, none, {}, " ** The LP solution is unbounded."},
        {"iterations", unbounded, 0, 50, 0, 1, 0.0, 4, none, {}, " ** Iteration limit reached without finding a solution."},
    };
    for (const auto &c : cases) {
        BranchCall call;
        call.maxnod = c.maxnod, call.maxdpt = c.maxdpt, call.intfst = c.intfst, call.toliv = c.toliv, call.msglvl = 1;
        call.itmax = c.itmax, call.ifail_in = -13;
        OutputCapture out;
        EXPECT_EQ(call.run(c.p), c.ifail) << c.what;
        EXPECT_EQ(call.objective, c.objective) << c.what;
        if (!c.x.empty()) { EXPECT_EQ(std::vector<double>(call.x.begin(), call.x.begin() + c.p.n), c.x) << c.what; }
        if (c.line != nullptr) { EXPECT_EQ(count_lines(out.host(), c.line), 1) << c.what; }
        const bool limited = c.ifail == 9 || c.ifail == 10;
        EXPECT_EQ(count_lines(out.host(), " ** Number of nodes exceeds the maximum **"), limited ? 1 : 0) << c.what;
        EXPECT_EQ(count_lines(out.host(), "Doubling"), 0) << c.what;
        if (c.ifail == 10) { EXPECT_EQ(count_lines(out.host(), "Final IP objective value"), 0) << c.what; }
        if (c.ifail == 9) { EXPECT_EQ(call.x[0] + call.x[1], 1.0); }
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
    namespace e04 = zek::e04;
    for (int itmax = 1; itmax <= 8; ++itmax) {
        BranchCall call;
        call.x0 = lp.x, call.itmax = itmax, call.msglvl = 2, call.maxdpt = 100, call.extra_iwork = 20000;
        OutputCapture out;
        const int ifail = call.run(p);
        const int doublings = count_lines(out.host(), "** Doubling iteration limit");
        const int abandoned = count_lines(out.host(), " ** Cannot find optimum LP, terminate the search of this branch");
        EXPECT_TRUE(doublings <= 1 && ifail != 7 && (ifail != 4 || doublings == 0)) << itmax;
        EXPECT_EQ(e04::setting(call.iwsav.data(), e04::Block::LC, e04::lc::kOptimalityItns), (1 + doublings) * itmax);
        EXPECT_EQ(e04::setting(call.iwsav.data(), e04::Block::LC, e04::lc::kStart), doublings);
        if (ifail == 0 && abandoned > 0) {
            EXPECT_EQ(count_lines(out.host(), " Exit H02BBF - Best IP solution found. "), 1) << itmax;
            EXPECT_GE(call.objective, 1201500.0);
        }
        if (ifail == 0 && abandoned == 0) { EXPECT_EQ(call.objective, 1201500.0) << itmax; }
        doubled_runs += doublings;
        abandoned_runs += abandoned > 0;
    }
    EXPECT_TRUE(doubled_runs > 0 && abandoned_runs > 0);
}

TEST(BranchAndBoundSearch, DefaultsAndTraceRequest) {
    BranchCall plain;
    EXPECT_EQ(plain.run(two_ties()), 0);
    EXPECT_TRUE(plain.itmax == 50 && plain.toliv == 1e-5 && plain.bigbnd == 1e20);
    EXPECT_EQ(plain.tolfes, std::sqrt(zek::precision()));
    // -11111 asks for a trace: print level 0 below 5, 15 at 5, 20 above; the limit takes its default.
    for (const auto &[msglvl, level] : {std::pair<int, const char *>{4, nullptr}, {5, "        15"}, {6, "        20"}}) {
        BranchCall trace;
        trace.itmax = -11111, trace.msglvl = msglvl;
        OutputCapture out;
        EXPECT_EQ(trace.run(two_ties()), 0);
        EXPECT_EQ(trace.itmax, 50);
        if (level == nullptr) {
            EXPECT_TRUE(out.host().empty());
        } else {
            EXPECT_EQ(count_lines(out.host(), std::string("Print level.............") + level), 1);
        }
    }
}

// min -x1 - x2 + x3 subject to x1 + x2 <= 1.5, x1, x2 binary, x3 integer in [0.5, 10].  The search
// meets a kept node, an infeasible one, an integer solution, a tie that is cut off, and a left branch
// whose bounds cross (x3 <= 0 against x3 >= 0.5).
IntegerProgram logged_program() {
    IntegerProgram p = IntegerProgram::box(3, 1, 1.0);
    p.cvec = {-1.0, -1.0, 1.0};
    p.at(1, 1) = p.at(1, 2) = 1.0;
    p.bu[3] = 1.5, p.bl[2] = 0.5, p.bu[2] = 10.0;
    return p;
}

TEST(BranchAndBoundPrint, WholeRunAtLevelTwo) {
    BranchCall call;
    call.msglvl = 2, call.maxdpt = 4;
    OutputCapture out;
    ASSERT_EQ(call.run(logged_program()), 0);
    const std::string heading1 = "  Node  Parent    Obj       Varbl  Value      Lower     Upper     Value    Depth";
    const std::string heading2 = "   No    Node    Value      Chosen Before     Bound     Bound     After";
    const std::vector<std::string> expected = {
        "", " *** H02BBF", "", " Parameters", " ----------", "",
        " Linear constraints......         1        First integer solution..       OFF",
        " Variables...............         3        Max depth of the tree...         4",
        " Feasibility tolerance...  1.05E-08        Print level.............         2",
        " Infinite bound size.....  1.00E+20        EPS (machine precision).  1.11E-16",
        " Integer feasibility tol.  1.00E-05        Iteration limit.........        50",
        " Max number of nodes.....      NONE",
        "   *** Optimum LP solution ***              -1", "   *** Start of tree search ***", "", heading1, heading2,
        // Right child of the root (x2 >= 1), then the left (x2 <= 0), taken first among equal bounds.
        "    2     1            -1      2         0.5         1          1         1   1",
        "    3     1          -0.5      2         0.5         0          0         0   1",
        // Node 2 branched on x1: x1 >= 1 cannot hold with x2 >= 1.
        "    4     2    No Feas Soln    1         0.5         1          1         1   2",
        "    5     2          -0.5      1         0.5         0          0         0   2",
        "    6     5             0      3         0.5         1         10         1   3",
        "      *** Integer solution ***", "", heading1, heading2,
        "    7     5    No Feas Soln    3         0.5       0.5          0       0.5   3",
        // The second integer point has the same objective: cut off.
        "    8     3             0 CO   3         0.5         1         10         1   2",
        "    9     3    No Feas Soln    3         0.5       0.5          0       0.5   2",
        "     *** End of tree search ***", "", " Exit H02BBF - Optimum IP solution found. ", "",
        " Final IP objective value =               0", "",
        " Varbl State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual", "",
        " V  1    EQ              0             0             0          -1           0",
        " V  2    EQ              1             1             1          -1           0",
        " V  3    LL              1             1            10           1           0", "",
        " L Con State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual", "",
        " L  1    FR              1     None                1.5           0         0.5", "",
        " Total of     9 nodes investigated.",
    };
    EXPECT_EQ(out.host(), expected);
    EXPECT_EQ(call.x, (std::vector<double>{0.0, 1.0, 1.0}));
    // At level 10 the root LP's block follows its banner, without a closing line; the final block has one.
    BranchCall ten;
    ten.msglvl = 10, ten.maxdpt = 4;
    OutputCapture out10;
    ASSERT_EQ(ten.run(logged_program()), 0);
    const std::vector<std::string> &host = out10.host();
    const auto banner = std::find(host.begin(), host.end(), "   *** Optimum LP solution ***              -1");
    ASSERT_TRUE(host.end() - banner > 15);
    EXPECT_EQ(banner[2], " Final IP objective value =              -1");
    EXPECT_EQ(banner[7], " V  2    FR            0.5             0             1           0         0.5");
    EXPECT_EQ(banner[14], " Total of     1 nodes investigated.");
    EXPECT_EQ(banner[15], "   *** Start of tree search ***");
    EXPECT_EQ(count_lines(host, " Exit H02BBF - Optimum IP solution found. "), 1);
}

TEST(BranchAndBoundPrint, NodeRowsWithMissingBounds) {
    using zek::h02::NodeOutcome;
    const double big = 1e20;
    const struct {
        NodeOutcome outcome;
        double lower, upper;
        const char *row;
    } cases[] = {
        {NodeOutcome::Kept, -big, 7, "   12     5          2.25      4         2.5  None              7         3   6"},
        {NodeOutcome::Kept, 3, big, "   12     5          2.25      4         2.5         3   None             3   6"},
        {NodeOutcome::Kept, -big, big, "   12     5          2.25      4         2.5  None       None             3   6"},
        {NodeOutcome::CutOff, -big, big, "   12     5          2.25 CO   4         2.5  None       None        3   6"},
        {NodeOutcome::NoFeasible, -big, big, "   12     5    No Feas Soln    4         2.5  None        None             3   6"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(zek::h02::node_log_row(c.outcome, 12, 5, 2.25, 4, 2.5, c.lower, c.upper, 3.0, 6, big), c.row);
}

TEST(BranchAndBoundFailures, StoreCopyAndPrinterChecks) {
    const std::vector<std::string> lengths = {
        " ** One or more of the workspace array lengths is too small.", "    Supplied values are:",
        "    LCWSAV =      1, LLWSAV =    120.", "    LIWSAV =    609, LRWSAV =    475.", "    Required values are:",
        "    LCWSAV =      1, LLWSAV =    120.", "    LIWSAV =    610, LRWSAV =    475."};
    std::vector<std::string> lengths2 = lengths;
    lengths2[2] = "    LCWSAV =      0, LLWSAV =    119.";
    lengths2[3] = "    LIWSAV =    610, LRWSAV =    474.";
    // Each row: the routine (the solver named to H02WBF), four integer arguments (H02WBF: the store
    // lengths; H02BZF: N, M, LIWORK, LRWORK; H02BVF: N, M, LDA), the IFAIL and what the host receives.
    const struct {
        const char *name;
        int i1, i2, i3, i4, ifail;
        std::vector<std::string> host;
    } cases[] = {
        {"h02bbf", 1, 120, 610, 475, 0, {}},
        {"H02CEF", 1, 120, 610, 475, 0, {}},
        {"H02BXF", 1, 120, 610, 475, 1, {" ** Invalid routine name: H02BXF."}},
        {"E04MFA", 1, 120, 610, 475, 1, {" ** Invalid routine name: E04MFA."}},
        {"H02BBF", 1, 120, 609, 475, 2, lengths},
        {"H02CBF", 0, 119, 610, 474, 2, lengths2},
        {"H02BZF", 0, 1, 10, 10, 1, {" ** On entry, N .le. 0:", "    N =                0."}},
        {"H02BZF", 2, -1, 10, 10, 1, {" ** On entry, M .lt. 0:", "    M =               -1."}},
        {"H02BZF", 2, 1, 2, 9, 1,
         {" ** On entry, the dimension of IWORK is too small: LIWORK =               2.",
          "    IWORK must be of dimension (at least)               3."}},
        {"H02BZF", 2, 1, 3, 8, 1,
         {" ** On entry, the dimension of RWORK is too small: LRWORK =               8.",
          "    RWORK must be of dimension (at least)               9."}},
        {"H02BVF", 0, 1, 1, 0, 1, {" ** On entry, N .le. 0: N =               0."}},
        {"H02BVF", 1, -1, 1, 0, 1, {" ** On entry, M .lt. 0: M =              -1."}},
        {"H02BVF", 1, 3, 2, 0, 1, {" ** On entry, LDA .lt. max(1,M):", "    LDA =               2, M =               3."}},
        {"H02BVF", 1, 0, 0, 0, 1, {" ** On entry, LDA .lt. max(1,M):", "    LDA =               0, M =               0."}},
    };
    const std::vector<int> iwork(10, 1);
    const std::vector<double> rwork(10, 1.0);
    for (const auto &c : cases) {
        const std::string name = c.name;
        std::vector<char> cwsav(80, ' ');
        std::vector<int> lwsav(120, 0), iwsav(610, 0), istate(4, -9);
        std::vector<double> rwsav(475, 0.0), bl(4, -9.0), bu(4, -9.0), clamda(4, -9.0);
        int ifail = -13;
        OutputCapture out;
        if (name == "H02BZF") {
            H02BZF(&c.i1, &c.i2, iwork.data(), &c.i3, rwork.data(), &c.i4, istate.data(), bl.data(), bu.data(),
                   clamda.data(), &ifail);
        } else if (name == "H02BVF") {
            H02BVF(&c.i1, &c.i2, nullptr, &c.i3, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &ifail, 8);
        } else {
            H02WBF(c.name, cwsav.data(), &c.i1, lwsav.data(), &c.i2, iwsav.data(), &c.i3, rwsav.data(), &c.i4, &ifail, 6, 80);
        }
        EXPECT_TRUE(ifail == c.ifail && zek_test::trimmed(out.host()) == c.host) << c.name << " " << c.i1;
        // A prepared store has its solver's first-call flags set; a refused one, and every output of a
        // refused copy, is left alone.
        EXPECT_EQ(std::find(lwsav.begin(), lwsav.end(), 1) != lwsav.end(), c.ifail == 0) << c.name;
        EXPECT_TRUE(istate == std::vector<int>(4, -9) && bl == std::vector<double>(4, -9.0));
    }
}

TEST(BranchAndBoundFile, ReadSolveCopy) {
    // A small maximisation; its optimum (14.5 at x1 = 2, x2 = 0, y = 1.5) was worked out by hand over the
    // six integer pairs that meet the demand row.
    IntegerProgram p;
    ASSERT_TRUE(IntegerProgram::from_file(std::string(ZEK_TEST_DATA_DIR) + "/mip/tiny_mixed.mps", p, "MAX"));
    ASSERT_TRUE(p.n == 3 && p.m == 3);
    EXPECT_EQ(p.intvar, (std::vector<int>{1, 1, 0}));
    BranchCall call;
    ASSERT_EQ(call.run(p), 0);
    EXPECT_NEAR(call.objective, -14.5, 1e-10);  // the objective minimised is the negated profit
    for (int j = 0; j < 3; ++j) EXPECT_NEAR(call.x[j], (std::vector<double>{2.0, 0.0, 1.5})[j], 1e-10);
    const int n = p.n, m = p.m;
    const int liwork = static_cast<int>(call.iwork.size()), lrwork = static_cast<int>(call.rwork.size());
    std::vector<int> istate(6);
    std::vector<double> bl(6), bu(6), clamda(6);
    int ifail = 0;
    H02BZF(&n, &m, call.iwork.data(), &liwork, call.rwork.data(), &lrwork, istate.data(), bl.data(), bu.data(),
           clamda.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    // x1 = 2 was reached by branching: its node bounds are tighter than the file's [0, 3].
    EXPECT_TRUE(bl[0] >= 0.0 && bu[0] <= 3.0 && (bl[0] == 2.0 || bu[0] == 2.0));
}

TEST(BranchAndBoundFile, SolutionLinesUnderTheirNames) {
    const int n = 2, m = 2, lda = 3;
    const double a[] = {1, 2, 99, 3, 4, 99};  // rows (1 3) and (2 4)
    const double x[] = {1.5, 0.0}, clamda[] = {0.0, -2.0, 0.25, 0.0}, bigbnd = 1e20;
    const double bl[] = {0.0, 0.0, -1e20, 4.0}, bu[] = {1e20, 5.0, 1.5, 1e20};
    const int istate[] = {0, 1, 2, -2};
    int ifail = 0;
    OutputCapture out;
    H02BVF(&n, &m, a, &lda, "X1      X2      ROW1    ROW2    ", x, clamda, istate, bl, bu, &bigbnd, &ifail, 8);
    EXPECT_EQ(ifail, 0);
    const std::vector<std::string> expected = {
        "",
        " Varbl   State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual",
        " X1       FR            1.5             0     None                0         1.5",
        " X2       LL              0             0             5          -2           0",
        "",
        " L Con   State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual",
        " ROW1     UL            1.5     None                1.5        0.25           0",
        " ROW2     --              3             4     None                0          -1",
    };
    EXPECT_EQ(out.host(), expected);
}

} // namespace
