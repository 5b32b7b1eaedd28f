// Failure exits of H02BBF, H02WBF and H02BZF: each IFAIL with its exact records, and a failing call
// of H02BBF changes none of its outputs, its workspace or the option store.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "branch_and_bound_test_support.h"
#include "frame/host_capture.h"
#include "zek2/h02.h"

namespace {

using zek_test::BranchCall;
using zek_test::IntegerProgram;
using zek_test::OutputCapture;

IntegerProgram small_program() {
    IntegerProgram p = IntegerProgram::box(2, 2, 4.0);
    p.cvec = {-1.0, -1.0};
    p.at(1, 1) = 2.0;
    p.at(1, 2) = 1.0;
    p.at(2, 1) = 1.0;
    p.at(2, 2) = 3.0;
    p.bu[2] = 5.5;
    p.bu[3] = 7.5;
    return p;
}

struct BadInput {
    const char *what;
    int n, m, lda, maxdpt;
    int liwork_delta, lrwork_delta;  // added to the minimum lengths
    int msglvl;
    void (*spoil)(IntegerProgram &);
    std::vector<std::string> host;  // what the host receives, failure records last
};

TEST(BranchAndBoundFailures, BadInputIsReportedAndChangesNothing) {
    const std::vector<BadInput> cases = {
        {"N", 0, 2, 2, 5, 0, 0, 0, nullptr, {" ** On entry, N .le. 0:", "    N =               0."}},
        {"M", 2, -1, 2, 5, 0, 0, 0, nullptr, {" ** On entry, M .lt. 0:", "    M =              -1."}},
        // N, M and LDA are all tested and the last failure is reported.
        {"N and M", 0, -1, 1, 5, 0, 0, 0, nullptr, {" ** On entry, M .lt. 0:", "    M =              -1."}},
        {"LDA", 2, 2, 1, 5, 0, 0, 0, nullptr,
         {" ** On entry, LDA .lt. max(1,M):", "    LDA =               1, M =               2."}},
        {"N and LDA", -3, 2, 1, 5, 0, 0, 0, nullptr,
         {" ** On entry, LDA .lt. max(1,M):", "    LDA =               1, M =               2."}},
        {"INTVAR", 2, 2, 2, 5, 0, 0, 0, [](IntegerProgram &p) { p.intvar[1] = 2; },
         {" ** On entry, element               2 of INTVAR is not equal to 0 or 1",
          "    INTVAR(               2) =               2."}},
        {"MAXDPT", 2, 2, 2, 1, 0, 0, 0, nullptr, {" ** On entry, MAXDPT .lt. 2:", "    MAXDPT =               1."}},
        // Minimum LRWORK with MAXDPT 5: 3*5 + 2*(4 + 12 + 14) = 75.
        {"LRWORK", 2, 2, 2, 5, 0, -1, 0, nullptr,
         {" ** On entry, the dimension of RWORK is too small: LRWORK =              74.",
          "    RWORK must be of dimension (at least)              75."}},
        // Minimum LIWORK with MAXDPT 5: 29*5 + 4 + 8 + 4 = 161.
        {"LIWORK", 2, 2, 2, 5, -1, 0, 0, nullptr,
         {" ** On entry, the dimension of IWORK is too small: LIWORK =             160.",
          "    IWORK must be of dimension (at least)             161."}},
        {"bounds in detail", 2, 2, 2, 5, 0, 0, 3,
         [](IntegerProgram &p) {
             p.bl[1] = 5.0;
             p.bl[3] = p.bu[3] = -1e20;
         },
         {" ** On entry, the bounds on  Varbl  2  are inconsistent:",
          "    BL(   2) =               5   BU(   2) =               4",
          " ** On entry, the equal bounds on  L Con  2  are infinite (because",
          "    BL(   4).eq.beta and BU(   4).eq.beta, but abs(beta).ge.bigbnd):",
          "    beta =          -1E+20 bigbnd =           1E+20",
          " ** On entry, NERROR bounds are infinite or inconsistent.", "    NERROR =               2.",
          "    For further advisory details set MSGLVL > 2."}},
    };
    // The store as H02WBF prepares it.
    BranchCall untouched;
    {
        std::vector<char> cwsav(80, ' ');
        const int lc = 1, ll = 120, li = 610, lr = 475;
        int ifail = 0;
        H02WBF("H02BBF", cwsav.data(), &lc, untouched.lwsav.data(), &ll, untouched.iwsav.data(), &li,
               untouched.rwsav.data(), &lr, &ifail, 6, 80);
    }
    for (const BadInput &c : cases) {
        IntegerProgram p = small_program();
        if (c.spoil != nullptr) c.spoil(p);
        p.n = c.n;
        p.m = c.m;
        BranchCall call;
        call.maxdpt = c.maxdpt;
        call.msglvl = c.msglvl;
        call.ifail_in = -13;
        call.x0 = {0.25, 0.75};
        call.objective = 42.0;
        if (c.liwork_delta != 0)
            call.liwork = static_cast<int>(zek_test::minimum_liwork(2, 2, c.maxdpt)) + c.liwork_delta;
        if (c.lrwork_delta != 0)
            call.lrwork = static_cast<int>(zek_test::minimum_lrwork(2, 2, c.maxdpt)) + c.lrwork_delta;
        call.lda = c.lda;
        OutputCapture out;
        const int ifail = call.run(p);
        EXPECT_EQ(ifail, 6) << c.what;
        EXPECT_EQ(zek_test::trimmed(out.host()), c.host) << c.what;
        // Nothing changed: outputs, in/out arguments, workspace, and the store as H02WBF left it.
        EXPECT_TRUE(call.x == call.x0 && call.objective == 42.0 && call.itmax == 0 && call.toliv == 0.0 &&
                    call.tolfes == 0.0 && call.bigbnd == 0.0)
            << c.what;
        EXPECT_EQ(call.iwork, std::vector<int>(call.iwork.size(), -7)) << c.what;
        EXPECT_EQ(call.rwork, std::vector<double>(call.rwork.size(), -7.0)) << c.what;
        EXPECT_TRUE(call.lwsav == untouched.lwsav && call.iwsav == untouched.iwsav) << c.what;
    }
}

TEST(BranchAndBoundFailures, OptionStoreChecks) {
    struct Case {
        const char *name;
        int lc, ll, li, lr;
        int ifail;
        std::vector<std::string> host;
    };
    const std::vector<Case> cases = {
        {"h02bbf", 1, 120, 610, 475, 0, {}},
        {"H02CEF", 1, 120, 610, 475, 0, {}},
        {"H02BXF", 1, 120, 610, 475, 1, {" ** Invalid routine name: H02BXF."}},
        {"E04MFA", 1, 120, 610, 475, 1, {" ** Invalid routine name: E04MFA."}},
        {"H02BBF", 1, 120, 609, 475, 2,
         {" ** One or more of the workspace array lengths is too small.", "    Supplied values are:",
          "    LCWSAV =      1, LLWSAV =    120.", "    LIWSAV =    609, LRWSAV =    475.",
          "    Required values are:", "    LCWSAV =      1, LLWSAV =    120.", "    LIWSAV =    610, LRWSAV =    475."}},
        {"H02CBF", 0, 119, 610, 474, 2,
         {" ** One or more of the workspace array lengths is too small.", "    Supplied values are:",
          "    LCWSAV =      0, LLWSAV =    119.", "    LIWSAV =    610, LRWSAV =    474.",
          "    Required values are:", "    LCWSAV =      1, LLWSAV =    120.", "    LIWSAV =    610, LRWSAV =    475."}},
    };
    for (const Case &c : cases) {
        std::vector<char> cwsav(80, ' ');
        std::vector<int> lwsav(120, 0), iwsav(610, 0);
        std::vector<double> rwsav(475, 0.0);
        int ifail = -13;
        OutputCapture out;
        H02WBF(c.name, cwsav.data(), &c.lc, lwsav.data(), &c.ll, iwsav.data(), &c.li, rwsav.data(), &c.lr, &ifail, 6,
               80);
        EXPECT_EQ(ifail, c.ifail) << c.name;
        EXPECT_EQ(zek_test::trimmed(out.host()), c.host) << c.name;
        // A prepared store has its solver's first-call flags set; a refused one is left alone.
        const bool any_flag = std::find(lwsav.begin(), lwsav.end(), 1) != lwsav.end();
        EXPECT_EQ(any_flag, c.ifail == 0) << c.name;
    }
}

TEST(BranchAndBoundFailures, StateCopyChecks) {
    struct Case {
        int n, m, liwork, lrwork;
        std::vector<std::string> host;
    };
    const std::vector<Case> cases = {
        {0, 1, 10, 10, {" ** On entry, N .le. 0:", "    N =                0."}},
        {2, -1, 10, 10, {" ** On entry, M .lt. 0:", "    M =               -1."}},
        {2, 1, 2, 9,
         {" ** On entry, the dimension of IWORK is too small: LIWORK =               2.",
          "    IWORK must be of dimension (at least)               3."}},
        {2, 1, 3, 8,
         {" ** On entry, the dimension of RWORK is too small: LRWORK =               8.",
          "    RWORK must be of dimension (at least)               9."}},
    };
    for (const Case &c : cases) {
        const std::vector<int> iwork(10, 1);
        const std::vector<double> rwork(10, 1.0);
        std::vector<int> istate(4, -9);
        std::vector<double> bl(4, -9.0), bu(4, -9.0), clamda(4, -9.0);
        int ifail = -13;
        OutputCapture out;
        H02BZF(&c.n, &c.m, iwork.data(), &c.liwork, rwork.data(), &c.lrwork, istate.data(), bl.data(), bu.data(),
               clamda.data(), &ifail);
        EXPECT_EQ(ifail, 1);
        EXPECT_EQ(zek_test::trimmed(out.host()), c.host);
        EXPECT_EQ(istate, std::vector<int>(4, -9));
        EXPECT_EQ(bl, std::vector<double>(4, -9.0));
    }
}

} // namespace
