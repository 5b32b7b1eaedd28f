// The decoders through the string routines: which place a phrase sets, its complaints and their texts.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "option_test_support.h"
#include "optimisation/options.h"
#include "zek2/e04.h"

namespace {

using zek::e04::Block;
using zek::e04::Family;
using zek_test::OptionState;
using zek_test::OutputCapture;

using zek_test::option;
using zek_test::solver;

struct PhraseCase {
    Family family;
    const char *line;
    Block block;
    bool real;
    int place;
    double expected;
};

class Phrases : public testing::TestWithParam<PhraseCase> {};

TEST_P(Phrases, SetTheirPlaceAndNothingElse) {
    const PhraseCase c = GetParam();
    OptionState s(solver(c.family).name);
    EXPECT_EQ(option(s, c.family, "Defaults"), 0);
    const std::vector<int> iwsav = s.iwsav;
    const std::vector<double> rwsav = s.rwsav;
    EXPECT_EQ(option(s, c.family, c.line), 0) << c.line;
    const double got = c.real ? zek::e04::real_setting(s.rwsav.data(), c.block, c.place)
                              : zek::e04::setting(s.iwsav.data(), c.block, c.place);
    EXPECT_DOUBLE_EQ(got, c.expected) << c.line;
    // Everything else is as it was, apart from places the phrase sets together with this one.
    int changed = 0;
    for (std::size_t k = 0; k < iwsav.size(); ++k) changed += iwsav[k] != s.iwsav[k];
    for (std::size_t k = 0; k < rwsav.size(); ++k) changed += rwsav[k] != s.rwsav[k];
    EXPECT_LE(changed, std::string(c.line).rfind("Feasibility Tolerance", 0) == 0 ? 2 : 1) << c.line;
}

namespace lc = zek::e04::lc;
namespace ls = zek::e04::ls;
namespace np = zek::e04::np;
namespace cg = zek::e04::cg;
constexpr Block LC = Block::LC, LS = Block::LS, NP = Block::NP, NL = Block::NL, CG = Block::CG;

INSTANTIATE_TEST_SUITE_P(
    Lines, Phrases,
    testing::Values(
        // Abbreviations and synonyms, the value anywhere after the keyword, truncation towards zero.
        PhraseCase{Family::MFA, "ITER 100", LC, false, lc::kOptimalityItns, 100},
        PhraseCase{Family::MFA, "ITNS 100", LC, false, lc::kOptimalityItns, 100},
        PhraseCase{Family::MFA, "Iterations Limit = 100", LC, false, lc::kOptimalityItns, 100},
        PhraseCase{Family::MFA, "iterations limit 99.9", LC, false, lc::kOptimalityItns, 99},
        PhraseCase{Family::MFA, "Iterations -7.9", LC, false, lc::kOptimalityItns, -7},
        PhraseCase{Family::MFA, "Print Level", LC, false, lc::kPrintLevel, 0},
        PhraseCase{Family::MFA, "Infinite Bound Size 1.0e10", LC, true, lc::kInfiniteBound, 1.0e10 * 0.99999},
        PhraseCase{Family::MFA, "Infinite Step Size 1.0e10", LC, true, lc::kInfiniteStep, 1.0e10},
        PhraseCase{Family::MFA, "Optimality tolerance (1.0e-5)", LC, true, lc::kOptimalityTolerance, 1.0e-5},
        PhraseCase{Family::MFA, "Warm Start", LC, false, lc::kStart, 1},
        PhraseCase{Family::MFA, "Min Sum Yes", LC, false, lc::kMinimumSum, 1},
        PhraseCase{Family::MFA, "Problem Type Linear", LC, false, lc::kProblemType, 2},
        PhraseCase{Family::NFA, "Problem Type QP", LC, false, lc::kProblemType, 4},
        PhraseCase{Family::NFA, "Problem Type QP3", LC, false, lc::kProblemType, 5},
        PhraseCase{Family::NFA, "Max Degrees of Freedom 6", LC, false, lc::kMaxDegrees, 6},
        PhraseCase{Family::NFA, "Feasibility Phase Iterations 40", LC, false, lc::kFeasibilityItns, 40},
        PhraseCase{Family::NCA, "Problem Type Least", LS, false, ls::kProblemType, 7},
        PhraseCase{Family::NCA, "Problem No. 12", LS, false, ls::kProblemNumber, 12},
        PhraseCase{Family::NCA, "Print File 9", LS, false, ls::kPrintUnit, 9},
        PhraseCase{Family::NCA, "Hessian No", LS, false, ls::kHessian, 0},
        PhraseCase{Family::UCA, "Major Iterations Limit 75", NP, false, np::kMajorIterations, 75},
        PhraseCase{Family::UCA, "Minor Print Level 5", LS, false, ls::kPrintLevel, 5},
        PhraseCase{Family::UCA, "Linesearch Tolerance 0.5", NP, true, np::kLinesearchTolerance, 0.5},
        PhraseCase{Family::UCA, "Verify Constraint Gradients", NP, false, np::kVerifyLevel, 2},
        PhraseCase{Family::UCA, "Verify", NP, false, np::kVerifyLevel, 3},
        PhraseCase{Family::UCA, "Verify Level 12", NP, false, np::kVerifyLevel, 12},
        PhraseCase{Family::UCA, "Feasibility Tolerance 1e-4", NP, true, np::kNonlinearFeasibility, 1e-4},
        PhraseCase{Family::UCA, "IPRMLS 3 42", LS, false, 3, 42},
        PhraseCase{Family::UCA, "RPRMLS 30 2.5", LS, true, 30, 2.5},
        PhraseCase{Family::USA, "Unit Initial Hessian", NL, false, zek::e04::nl::kInitialHessian, 1},
        PhraseCase{Family::USA, "Reset Frequency 4", NL, false, zek::e04::nl::kResetFrequency, 4},
        PhraseCase{Family::DGA, "Verify No", CG, false, cg::kVerifyLevel, -1},
        PhraseCase{Family::DGA, "Debug Start 3", CG, false, cg::kDebugStart, 3},
        PhraseCase{Family::DGA, "IPRMCG 7 11", CG, false, 7, 11}));

// The decoders' complaints: inform 5, the block untouched, and the text only while listing.
struct BadCase {
    Family family;
    const char *line;
    const char *message;  // with the list flag on
};

class BadLines : public testing::TestWithParam<BadCase> {};

TEST_P(BadLines, AreReportedAndChangeNothing) {
    const BadCase c = GetParam();
    for (int list : {0, 1}) {
        OptionState s(solver(c.family).name);
        int inform = -1;
        EXPECT_EQ(option(s, c.family, "Defaults"), 0);
        const std::vector<int> iwsav = s.iwsav;
        const std::vector<double> rwsav = s.rwsav;
        const std::string line = c.line;
        const int unit = 6;
        OutputCapture out;
        solver(c.family).decode(line.data(), &list, &unit, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform,
               static_cast<int>(line.size()));
        EXPECT_EQ(inform, 5) << c.line;
        EXPECT_EQ(s.iwsav, iwsav) << c.line;
        EXPECT_EQ(s.rwsav, rwsav) << c.line;
        const std::vector<std::string> expected = list ? std::vector<std::string>{c.message} : std::vector<std::string>{};
        EXPECT_EQ(out.host(), expected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lines, BadLines,
    testing::Values(
        BadCase{Family::MFA, "Bogus Keyword 3", " XXX  Keyword not recognized:         Bogus Keyword 3"},
        BadCase{Family::MFA, "C 3", " XXX  Ambiguous keyword:              C"},
        BadCase{Family::MFA, "Print S 3", " XXX  Ambiguous keyword:              S"},
        BadCase{Family::MFA, "Infinite Size 1e10", " XXX  Second keyword not recognized:  Infinite Size 1e10"},
        BadCase{Family::NCA, "Print Volume 3", " XXX  Second keyword not recognized:  Print Volume 3"},
        BadCase{Family::NCA, "Problem Type QP9", " XXX  Third  keyword not recognized:  Problem Type QP9"},
        BadCase{Family::MFA, "Min Sum Maybe", " XXX  Third  keyword not recognized:  Min Sum Maybe"},
        BadCase{Family::UCA, "IPRMLS 31 5", " XXX  The PARM subscript is out of range:        31"},
        BadCase{Family::UCA, "RPRMLS", " XXX  The PARM subscript is out of range:         0"},
        BadCase{Family::DGA, "Bogus", " XXX  Keyword not recognized:            Bogus"},
        BadCase{Family::DGA, "Debug Everything", " XXX  Second keyword not recognized:     Debug Everything"}));


TEST(BadLines, UnknownProblemTypeStoresTheIllegalCode) {
    for (Family f : {Family::MFA, Family::NFA}) {
        OptionState s(solver(f).name);
        EXPECT_EQ(option(s, f, f == Family::MFA ? "Problem Type QP2" : "Problem Type LS1"), 5);
        EXPECT_EQ(zek::e04::setting(s.iwsav.data(), LC, lc::kProblemType), lc::kIllegalProblemType);
    }
}

TEST(Decoder, BlankAndCommentLinesChangeNothingAndDefaultsResets) {
    OptionState s("E04MFA");
    OutputCapture quiet;
    EXPECT_EQ(option(s, Family::MFA, "Iterations 10"), 0);
    const std::vector<int> iwsav = s.iwsav;
    const std::vector<double> rwsav = s.rwsav;
    for (const char *line : {"", "      ", "* Iterations 20", "Begin", "List", "Nolist", "End"}) {
        EXPECT_EQ(option(s, Family::MFA, line), 0) << line;
        EXPECT_EQ(s.iwsav, iwsav) << line;
        EXPECT_EQ(s.rwsav, rwsav) << line;
    }
    EXPECT_EQ(option(s, Family::MFA, "Defaults"), 0);
    for (int k = 1; k <= zek::e04::kBlockSize; ++k) {
        EXPECT_EQ(zek::e04::setting(s.iwsav.data(), LC, k), zek::e04::kNotSetInt);
        EXPECT_EQ(zek::e04::real_setting(s.rwsav.data(), LC, k), zek::e04::kNotSetReal);
    }
}

TEST(Decoder, FirstCallFillsEveryBlockOfTheSolverWithTheSentinel) {
    OptionState s("E04USA");
    EXPECT_EQ(option(s, Family::USA, "Major Print Level 1"), 0);
    for (Block b : {LS, NP, NL}) {
        for (int k = 1; k <= zek::e04::kBlockSize; ++k) {
            if (b == NP && k == np::kMajorPrintLevel) continue;
            EXPECT_EQ(zek::e04::setting(s.iwsav.data(), b, k), zek::e04::kNotSetInt);
            EXPECT_EQ(zek::e04::real_setting(s.rwsav.data(), b, k), zek::e04::kNotSetReal);
        }
    }
    // The CG block is not this solver's: untouched.
    EXPECT_EQ(zek::e04::setting(s.iwsav.data(), CG, 1), 0);
}

TEST(StringRoutine, ListsTheFirstCallUnderAHeaderAndLaterLinesWhileListing) {
    OptionState s("E04NFA");
    const int on = 1, off = 0;
    int inform = -1;
    auto call = [&](const std::string &line, const int *list) {
        E04NHF(line.data(), list, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform,
               static_cast<int>(line.size()));
    };
    OutputCapture out;
    call("Iterations 30", &on);
    call("Print Level 1", &off);  // within a sequence the flag argument no longer matters
    call("Nolist", &on);
    call("Rank Tolerance 1e-9", &on);
    call("List", &on);
    call("Bogus", &on);
    EXPECT_EQ(inform, 5);
    const std::vector<std::string> expected = {
        "", " Calls to E04NHF", " ---------------", "      Iterations 30", "      Print Level 1",
        "      Nolist", "      Bogus", " XXX  Keyword not recognized:         Bogus"};
    EXPECT_EQ(out.host(), expected);
}

TEST(StringRoutine, ANewRunOpensANewList) {
    OptionState s("E04MFA");
    const int on = 1;
    int inform = 0;
    const std::string line = "Iterations 30";
    OutputCapture out;
    E04MHF(line.data(), &on, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform, 13);
    zek::e04::begin_run(Family::MFA, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), {5, 2});
    zek::e04::end_run(Family::MFA, s.lwsav.data(), s.iwsav.data(), s.rwsav.data());
    E04MHF(line.data(), &on, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform, 13);
    const std::vector<std::string> once = {"", " Calls to E04MHF", " ---------------", "      Iterations 30"};
    std::vector<std::string> expected = once;
    expected.insert(expected.end(), once.begin(), once.end());
    EXPECT_EQ(out.host(), expected);
}

} // namespace
