// A host's whole sequence on a small maximisation read from an MPSX file: H02BUF, H02WBF, H02BBF,
// H02BZF, H02BVF.  The optimum (14.5 at x1 = 2, x2 = 0, y = 1.5) was worked out by hand over the six
// integer pairs that meet the demand row.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "branch_and_bound_test_support.h"
#include "frame/host_capture.h"
#include "zek2/h02.h"

namespace {

using zek_test::BranchCall;
using zek_test::IntegerProgram;

TEST(BranchAndBoundFile, ReadSolveCopyPrint) {
    IntegerProgram p;
    ASSERT_TRUE(IntegerProgram::from_file(std::string(ZEK_TEST_DATA_DIR) + "/mip/tiny_mixed.mps", p, "MAX"));
    ASSERT_EQ(p.n, 3);
    ASSERT_EQ(p.m, 3);
    EXPECT_EQ(p.intvar, (std::vector<int>{1, 1, 0}));
    BranchCall call;
    ASSERT_EQ(call.run(p), 0);
    EXPECT_NEAR(call.objective, -14.5, 1e-10);  // the objective minimised is the negated profit
    EXPECT_NEAR(call.x[0], 2.0, 1e-10);
    EXPECT_NEAR(call.x[1], 0.0, 1e-10);
    EXPECT_NEAR(call.x[2], 1.5, 1e-10);

    const int n = p.n, m = p.m, lda = p.lda();
    const int liwork = static_cast<int>(call.iwork.size()), lrwork = static_cast<int>(call.rwork.size());
    std::vector<int> istate(6);
    std::vector<double> bl(6), bu(6), clamda(6);
    int ifail = 0;
    H02BZF(&n, &m, call.iwork.data(), &liwork, call.rwork.data(), &lrwork, istate.data(), bl.data(), bu.data(),
           clamda.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    // x1 = 2 was reached by branching: its node bounds are tighter than the file's [0, 3].
    EXPECT_GE(bl[0], 0.0);
    EXPECT_LE(bu[0], 3.0);
    EXPECT_TRUE(bl[0] == 2.0 || bu[0] == 2.0);

    const double bigbnd = call.bigbnd;
    zek_test::OutputCapture out;
    H02BVF(&n, &m, p.a.data(), &lda, p.names.data(), call.x.data(), clamda.data(), istate.data(), bl.data(),
           bu.data(), &bigbnd, &ifail, 8);
    EXPECT_EQ(ifail, 0);
    const std::vector<std::string> &host = out.host();
    ASSERT_EQ(host.size(), 10u);
    EXPECT_EQ(host[2].substr(0, 10), " X1       ");
    EXPECT_EQ(host[7].substr(0, 10), " CAP1     ");
    EXPECT_EQ(host[9].substr(0, 10), " DEMAND   ");
}

} // namespace
