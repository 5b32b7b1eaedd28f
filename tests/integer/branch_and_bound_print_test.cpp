// What H02BBF prints: the parameter block, the node log with its three kinds of row and the None
// forms of missing bounds, the messages of the search and the final block, exact to the blank.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "branch_and_bound_test_support.h"
#include "frame/host_capture.h"
#include "integer/branch_and_bound.h"

namespace {

using zek::h02::NodeOutcome;
using zek_test::BranchCall;
using zek_test::IntegerProgram;
using zek_test::OutputCapture;

// min -x1 - x2 + x3 subject to x1 + x2 <= 1.5, x1, x2 binary, x3 integer in [0.5, 10].  The search
// meets a kept node, an infeasible one, an integer solution, a tie that is cut off, and a left branch
// whose bounds cross (x3 <= 0 against x3 >= 0.5).
IntegerProgram logged_program() {
    IntegerProgram p = IntegerProgram::box(3, 1, 1.0);
    p.cvec = {-1.0, -1.0, 1.0};
    p.at(1, 1) = p.at(1, 2) = 1.0;
    p.bu[3] = 1.5;
    p.bl[2] = 0.5;
    p.bu[2] = 10.0;
    return p;
}

TEST(BranchAndBoundPrint, WholeRunAtLevelTwo) {
    BranchCall call;
    call.msglvl = 2;
    call.maxdpt = 4;
    OutputCapture out;
    ASSERT_EQ(call.run(logged_program()), 0);
    const std::string heading1 = "  Node  Parent    Obj       Varbl  Value      Lower     Upper     Value    Depth";
    const std::string heading2 = "   No    Node    Value      Chosen Before     Bound     Bound     After";
    const std::vector<std::string> expected = {
        "",
        " *** H02BBF",
        "",
        " Parameters",
        " ----------",
        "",
        " Linear constraints......         1        First integer solution..       OFF",
        " Variables...............         3        Max depth of the tree...         4",
        " Feasibility tolerance...  1.05E-08        Print level.............         2",
        " Infinite bound size.....  1.00E+20        EPS (machine precision).  1.11E-16",
        " Integer feasibility tol.  1.00E-05        Iteration limit.........        50",
        " Max number of nodes.....      NONE",
        "   *** Optimum LP solution ***              -1",
        "   *** Start of tree search ***",
        "",
        heading1,
        heading2,
        // Right child of the root (x2 >= 1), then the left (x2 <= 0), taken first among equal bounds.
        "    2     1            -1      2         0.5         1          1         1   1",
        "    3     1          -0.5      2         0.5         0          0         0   1",
        // Node 2 branched on x1: x1 >= 1 cannot hold with x2 >= 1.
        "    4     2    No Feas Soln    1         0.5         1          1         1   2",
        "    5     2          -0.5      1         0.5         0          0         0   2",
        "    6     5             0      3         0.5         1         10         1   3",
        "      *** Integer solution ***",
        "",
        heading1,
        heading2,
        "    7     5    No Feas Soln    3         0.5       0.5          0       0.5   3",
        // The second integer point has the same objective: cut off.
        "    8     3             0 CO   3         0.5         1         10         1   2",
        "    9     3    No Feas Soln    3         0.5       0.5          0       0.5   2",
        "     *** End of tree search ***",
        "",
        " Exit H02BBF - Optimum IP solution found. ",
        "",
        " Final IP objective value =               0",
        "",
        " Varbl State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual",
        "",
        " V  1    EQ              0             0             0          -1           0",
        " V  2    EQ              1             1             1          -1           0",
        " V  3    LL              1             1            10           1           0",
        "",
        " L Con State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual",
        "",
        " L  1    FR              1     None                1.5           0         0.5",
        "",
        " Total of     9 nodes investigated.",
    };
    EXPECT_EQ(out.host(), expected);
    EXPECT_EQ(call.x, (std::vector<double>{0.0, 1.0, 1.0}));
}

TEST(BranchAndBoundPrint, RootBlockAtLevelTen) {
    // The root LP's block follows its banner, without a closing line; the final block has one.
    BranchCall ten;
    ten.msglvl = 10;
    ten.maxdpt = 4;
    OutputCapture out;
    ASSERT_EQ(ten.run(logged_program()), 0);
    const std::vector<std::string> &host = out.host();
    const auto banner = std::find(host.begin(), host.end(), "   *** Optimum LP solution ***              -1");
    ASSERT_TRUE(host.end() - banner > 15);
    EXPECT_EQ(banner[2], " Final IP objective value =              -1");
    EXPECT_EQ(banner[7], " V  2    FR            0.5             0             1           0         0.5");
    EXPECT_EQ(banner[14], " Total of     1 nodes investigated.");
    EXPECT_EQ(banner[15], "   *** Start of tree search ***");
    EXPECT_EQ(std::count(host.begin(), host.end(), " Exit H02BBF - Optimum IP solution found. "), 1);
}

TEST(BranchAndBoundPrint, NodeRowsWithMissingBounds) {
    struct Case {
        NodeOutcome outcome;
        double lower, upper;
        const char *row;
    };
    const double big = 1e20;
    const Case cases[] = {
        {NodeOutcome::Kept, 3, 7, "   12     5          2.25      4         2.5         3          7         3   6"},
        {NodeOutcome::CutOff, 3, 7, "   12     5          2.25 CO   4         2.5         3          7         3   6"},
        {NodeOutcome::NoFeasible, 3, 7, "   12     5    No Feas Soln    4         2.5         3          7         3   6"},
        {NodeOutcome::Kept, -big, 7, "   12     5          2.25      4         2.5  None              7         3   6"},
        {NodeOutcome::Kept, 3, big, "   12     5          2.25      4         2.5         3   None             3   6"},
        {NodeOutcome::Kept, -big, big, "   12     5          2.25      4         2.5  None       None             3   6"},
        {NodeOutcome::CutOff, -big, big, "   12     5          2.25 CO   4         2.5  None       None        3   6"},
        {NodeOutcome::NoFeasible, -big, big,
         "   12     5    No Feas Soln    4         2.5  None        None             3   6"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(zek::h02::node_log_row(c.outcome, 12, 5, 2.25, 4, 2.5, c.lower, c.upper, 3.0, 6, big), c.row);
}

} // namespace
