// Hostile input for branch and bound: NaN, +-Inf and the extremes of the number range in the objective,
// the bounds, the matrix and the tolerances; bad sizes and short workspace.  H02BBF must end with one of
// its exits (the asan preset watches its carving of the workspace); an integer solution (IFAIL 0 or 9)
// must be finite.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "integer_test_support.h"

namespace {

using zek_test::BranchCall;
using zek_test::IntegerProgram;
using zek_test::OutputCapture;

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

// Zero and negative sizes, workspace one short and a depth below two: each an input error with its
// records, and nothing changed.
TEST(HostileBranchAndBoundSizes, BadInputIsReportedAndChangesNothing) {
    const struct {
        int n, m, lda, maxdpt;
        char short_work;  // 'i': LIWORK one short, 'r': LRWORK one short
        int msglvl;
        void (*spoil)(IntegerProgram &);
        std::vector<std::string> host;  // what the host receives, failure records last
    } cases[] = {
        {0, 2, 2, 5, 0, 0, nullptr, {" ** On entry, N .le. 0:", "    N =               0."}},
        {2, -1, 2, 5, 0, 0, nullptr, {" ** On entry, M .lt. 0:", "    M =              -1."}},
        // N, M and LDA are all tested and the last failure is reported.
        {0, -1, 1, 5, 0, 0, nullptr, {" ** On entry, M .lt. 0:", "    M =              -1."}},
        {2, 2, 1, 5, 0, 0, nullptr, {" ** On entry, LDA .lt. max(1,M):", "    LDA =               1, M =               2."}},
        {-3, 2, 1, 5, 0, 0, nullptr, {" ** On entry, LDA .lt. max(1,M):", "    LDA =               1, M =               2."}},
        {2, 2, 2, 5, 0, 0, [](IntegerProgram &p) { p.intvar[1] = 2; },
         {" ** On entry, element               2 of INTVAR is not equal to 0 or 1", "    INTVAR(               2) =               2."}},
        {2, 2, 2, 1, 0, 0, nullptr, {" ** On entry, MAXDPT .lt. 2:", "    MAXDPT =               1."}},
        // Minimum LRWORK with MAXDPT 5: 3*5 + 2*(4 + 12 + 14) = 75; LIWORK: 29*5 + 4 + 8 + 4 = 161.
        {2, 2, 2, 5, 'r', 0, nullptr,
         {" ** On entry, the dimension of RWORK is too small: LRWORK =              74.",
          "    RWORK must be of dimension (at least)              75."}},
        {2, 2, 2, 5, 'i', 0, nullptr,
         {" ** On entry, the dimension of IWORK is too small: LIWORK =             160.",
          "    IWORK must be of dimension (at least)             161."}},
        {2, 2, 2, 5, 0, 3, [](IntegerProgram &p) { p.bl[1] = 5.0, p.bl[3] = p.bu[3] = -1e20; },
         {" ** On entry, the bounds on  Varbl  2  are inconsistent:",
          "    BL(   2) =               5   BU(   2) =               4",
          " ** On entry, the equal bounds on  L Con  2  are infinite (because",
          "    BL(   4).eq.beta and BU(   4).eq.beta, but abs(beta).ge.bigbnd):",
          "    beta =          -1E+20 bigbnd =           1E+20",
          " ** On entry, NERROR bounds are infinite or inconsistent.", "    NERROR =               2.",
          "    For further advisory details set MSGLVL > 2."}},
    };
    BranchCall untouched;  // the store as H02WBF prepares it
    zek_test::prepare_store("H02BBF", untouched.lwsav, untouched.iwsav, untouched.rwsav);
    for (const auto &c : cases) {
        IntegerProgram p = IntegerProgram::box(2, 2, 4.0);
        p.cvec = {-1.0, -1.0};
        p.a = {2.0, 1.0, 1.0, 3.0};
        p.bu[2] = 5.5, p.bu[3] = 7.5;
        if (c.spoil != nullptr) c.spoil(p);
        p.n = c.n, p.m = c.m;
        BranchCall call;
        call.maxdpt = c.maxdpt, call.msglvl = c.msglvl, call.ifail_in = -13;
        call.x0 = {0.25, 0.75};
        call.objective = 42.0;
        if (c.short_work == 'i') call.liwork = static_cast<int>(zek_test::minimum_liwork(2, 2, c.maxdpt)) - 1;
        if (c.short_work == 'r') call.lrwork = static_cast<int>(zek_test::minimum_lrwork(2, 2, c.maxdpt)) - 1;
        call.lda = c.lda;
        OutputCapture out;
        EXPECT_EQ(call.run(p), 6) << c.host[0];
        EXPECT_EQ(zek_test::trimmed(out.host()), c.host) << c.host[0];
        // Nothing changed: outputs, in/out arguments, workspace, and the store as H02WBF left it.
        EXPECT_TRUE(call.x == call.x0 && call.objective == 42.0 && call.itmax == 0 && call.toliv == 0.0 &&
                    call.tolfes == 0.0 && call.bigbnd == 0.0)
            << c.host[0];
        EXPECT_EQ(call.iwork, std::vector<int>(call.iwork.size(), -7)) << c.host[0];
        EXPECT_EQ(call.rwork, std::vector<double>(call.rwork.size(), -7.0)) << c.host[0];
        EXPECT_TRUE(call.lwsav == untouched.lwsav && call.iwsav == untouched.iwsav) << c.host[0];
    }
}

} // namespace
