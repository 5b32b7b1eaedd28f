// An option line from characters to a stored setting: tokens, the number test and keyword look-up
// through their export symbols, then the decoders (which place a phrase sets, their complaints and
// texts), the listing of the string routines, the options-file reader (its inform values, its listing,
// files read through units) and the preparation of the state arrays.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/input_units.h"
#include "frame/output.h"
#include "option_test_support.h"
#include "optimisation/options.h"
#include "optimisation/options_tables.h"
#include "zek2/e04.h"
#include "zek2/x04.h"

namespace {

using zek::e04::Block;
using zek::e04::Family;
using zek_test::InputFile;
using zek_test::OptionState;
using zek_test::OutputCapture;
using zek_test::option;
using zek_test::solver;
namespace e04 = zek::e04;
namespace lc = zek::e04::lc;
namespace ls = zek::e04::ls;
namespace np = zek::e04::np;
namespace cg = zek::e04::cg;
constexpr Block LC = Block::LC, LS = Block::LS, NP = Block::NP, NL = Block::NL, CG = Block::CG;
constexpr Family MFA = Family::MFA, NFA = Family::NFA, NCA = Family::NCA, UCA = Family::UCA, USA = Family::USA,
                 DGA = Family::DGA;

// The tokens of LINE in ten slots of 16 characters; the slots past the count must be left blank.
std::vector<std::string> tokens_of(const std::string &line) {
    constexpr int max_tokens = 10, width = 16;
    std::vector<char> slots(max_tokens * width, '#');
    int n = -1;
    E04_TOKENISE(line.data(), max_tokens, &n, slots.data(), static_cast<int>(line.size()), width);
    std::vector<std::string> out;
    for (int i = 0; i < max_tokens; ++i) {
        const std::string slot(slots.data() + i * width, width);
        if (i < n) out.push_back(slot.substr(0, slot.find_last_not_of(' ') + 1));
        else EXPECT_EQ(slot, std::string(width, ' ')) << "unused slot " << i;
    }
    return out;
}

TEST(Tokenise, CutsAtDelimitersUpperCasesAndDropsComments) {
    const struct {
        std::string line;
        std::vector<std::string> tokens;
    } rows[] = {
        {"Iterations Limit = 100", {"ITERATIONS", "LIMIT", "100"}},
        {"  a:b,c=d(e)f  ", {"A", "B", "C", "D", "E", "F"}},
        {"Print level 5 * a comment with words", {"PRINT", "LEVEL", "5"}},
        {"* only a comment", {}},
        {"", {}},
        {"averyveryverylongkeyword 1", {"AVERYVERYVERYLON", "1"}},
        {"1 2 3 4 5 6 7 8 9 10 11 12", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}},
        // Only 72 characters count: the word at column 73 is not seen.
        {std::string("x") + std::string(71, ' ') + "ignored", {"X"}},
        {std::string(70, ' ') + "abcdef", {"AB"}},
    };
    for (const auto &r : rows) EXPECT_EQ(tokens_of(r.line), r.tokens) << r.line;
    // By reference, into slots shorter than the tokens.
    const std::string line = "feasibility tolerance";
    char slots[2 * 4];
    int n = 0;
    const int max = 2;
    E04_TOKENISE_BYREF(line.data(), &max, &n, slots, static_cast<int>(line.size()), 4);
    EXPECT_EQ(n, 2);
    EXPECT_EQ(std::string(slots, 8), "FEASTOLE");
}

TEST(IsNumber, FollowsTheCharacterCounts) {
    const auto is_number = [](std::string token) {
        token.resize(16, ' ');
        return E04_IS_NUMBER(token.data(), 16);
    };
    for (const char *t : {"100", "-1.5E-08", "1D5", "+.5", "--1", "++1", "7 X"}) EXPECT_EQ(is_number(t), 1) << t;
    for (const char *t : {"---1", "+++1", "1.2.3", "1E5E5", "1DE5", "E", "-.", "12A", "LEVEL", ""})
        EXPECT_EQ(is_number(t), 0) << t;
}

TEST(KeyLookup, AcceptsUniqueAbbreviationsAndSynonyms) {
    const struct {
        Family family;
        int table;  // 1, 2 or 3
        const char *word;
        int result;  // > 0 found, < 0 ambiguous, 0 not found
        const char *replaced;
    } rows[] = {
        {MFA, 1, "ITER", 1, "ITERATIONS"}, {MFA, 1, "ITNS", 1, "ITERATIONS"}, {MFA, 1, "IT", 1, "ITERATIONS"},
        {MFA, 1, "MIN", 1, "MINIMIZ"},     {MFA, 1, "MINIMIZE", 0, "MINIMIZE"},
        {MFA, 1, "C", -1, "C"},  // CHECK, COLD, CRASH
        {MFA, 1, "ZZZ", 0, "ZZZ"},         {MFA, 1, "", 0, ""},               {NFA, 1, "MAX", 1, "MAXIMUM"},
        {NFA, 1, "M", -1, "M"},  // MAXIMUM against MINIMIZ
        {NFA, 3, "QP", 1, "QP2"},          {NFA, 3, "QUAD", 1, "QP2"},        {NCA, 3, "LEAST", 1, "LS1"},
        {NCA, 2, "NO", 1, "NO"},           {NCA, 2, "NO.", 1, "NUMBER"},      {NCA, 2, "N", -1, "N"},
        {UCA, 1, "LINES", 1, "LINE"},      {USA, 1, "J", 1, "JTJ"},           {UCA, 1, "UN", 0, "UN"},
    };
    for (const auto &c : rows) {
        const e04::FamilyTables &t = e04::family_tables(c.family);
        const e04::KeywordTable &table = c.table == 1 ? t.first : c.table == 2 ? t.second : t.third;
        const std::string packed = table.packed();
        std::string word = c.word, expected = c.replaced;
        word.resize(16, ' ');
        expected.resize(16, ' ');
        int result = 99;
        E04_KEY_LOOKUP(table.count, packed.data(), 1, word.data(), &result, 16, 16);
        EXPECT_EQ((result > 0) - (result < 0), (c.result > 0) - (c.result < 0)) << c.word << " gave " << result;
        EXPECT_EQ(word, expected) << c.word;
        if (result <= 0) continue;
        // The result names an entry that is the replaced keyword itself.
        const std::string entry = packed.substr((result - 1) * 16, 16);
        EXPECT_EQ(entry.substr(0, entry.find_first_of(" :")), std::string(c.replaced));
    }
}

TEST(KeyLookup, ByReferenceFormAndDegenerateArguments) {
    const std::string table = std::string("ALPHA") + std::string(11, ' ') + "BETA" + std::string(12, ' ');
    std::string word = "BE      ";
    int result = 0;
    const int count = 2, ordered = 1;
    E04_KEY_LOOKUP_BYREF(&count, table.data(), &ordered, word.data(), &result, 16, 8);
    EXPECT_EQ(result, 2);
    EXPECT_EQ(word, "BETA    ");
    // Nothing to search, or nowhere to write: not found, nothing touched.
    E04_KEY_LOOKUP(0, table.data(), 1, word.data(), &result, 16, 8);
    EXPECT_EQ(result, 0);
    E04_KEY_LOOKUP(2, nullptr, 1, word.data(), &result, 16, 8);
    EXPECT_EQ(result, 0);
    // A table whose synonyms point at each other ends its search.
    const std::string loop = std::string("A:B") + std::string(13, ' ') + "B:A" + std::string(13, ' ');
    word = "A       ";
    E04_KEY_LOOKUP(2, loop.data(), 1, word.data(), &result, 16, 8);
    EXPECT_EQ(result, 0);
}

// Every keyword table is ascending in its keywords (a synonym may follow the longer word it
// abbreviates, as MAX follows MAXIMUM), as the look-up's early stop requires, and every keyword of a
// first table stores something.
TEST(KeywordTables, AreAscendingAndEveryKeywordHasAPhrase) {
    auto own = [](const std::string &entry) {
        const std::string w = entry.substr(0, entry.find(':'));
        return w.substr(0, w.find_last_not_of(' ') + 1);
    };
    for (int f = 0; f < e04::kFamilyCount; ++f) {
        const e04::FamilyTables &t = e04::family_tables(static_cast<Family>(f));
        for (const e04::KeywordTable *table : {&t.first, &t.second, &t.third}) {
            for (int j = 1; j < table->count; ++j) {
                const std::string a = own(table->entries[j - 1]), b = own(table->entries[j]);
                const std::size_t m = std::min(a.size(), b.size());
                EXPECT_LE(a.compare(0, m, b, 0, m), 0) << t.solver << " entry " << j + 1 << " " << b;
                EXPECT_NE(a, b) << t.solver << " entry " << j + 1;
            }
        }
        for (int j = 0; j < t.first.count; ++j) {
            const std::string entry = t.first.entries[j];
            if (entry.find(':') != std::string::npos) continue;
            if (entry == "BEGIN" || entry == "END" || entry == "LIST" || entry == "NOLIST") continue;
            bool found = false;
            for (const e04::Phrase &p : t.phrases) found = found || entry == p.first;
            EXPECT_TRUE(found) << t.solver << " " << entry;
        }
    }
}

TEST(Phrases, SetTheirPlaceAndNothingElse) {
    const struct {
        Family family;
        const char *line;
        Block block;
        bool real;
        int place;
        double expected;
    } rows[] = {
        // The value anywhere after the keyword, truncation towards zero (abbreviations: KeyLookup).
        {MFA, "Iterations Limit = 100", LC, false, lc::kOptimalityItns, 100},
        {MFA, "iterations limit 99.9", LC, false, lc::kOptimalityItns, 99},
        {MFA, "Iterations -7.9", LC, false, lc::kOptimalityItns, -7},
        {MFA, "Print Level", LC, false, lc::kPrintLevel, 0},
        {MFA, "Infinite Bound Size 1.0e10", LC, true, lc::kInfiniteBound, 1.0e10 * 0.99999},
        {MFA, "Infinite Step Size 1.0e10", LC, true, lc::kInfiniteStep, 1.0e10},
        {MFA, "Optimality tolerance (1.0e-5)", LC, true, lc::kOptimalityTolerance, 1.0e-5},
        {MFA, "Warm Start", LC, false, lc::kStart, 1},
        {MFA, "Min Sum Yes", LC, false, lc::kMinimumSum, 1},
        {MFA, "Problem Type Linear", LC, false, lc::kProblemType, 2},
        {NFA, "Problem Type QP", LC, false, lc::kProblemType, 4},
        {NFA, "Problem Type QP3", LC, false, lc::kProblemType, 5},
        {NFA, "Max Degrees of Freedom 6", LC, false, lc::kMaxDegrees, 6},
        {NFA, "Feasibility Phase Iterations 40", LC, false, lc::kFeasibilityItns, 40},
        {NCA, "Problem Type Least", LS, false, ls::kProblemType, 7},
        {NCA, "Problem No. 12", LS, false, ls::kProblemNumber, 12},
        {NCA, "Print File 9", LS, false, ls::kPrintUnit, 9},
        {NCA, "Hessian No", LS, false, ls::kHessian, 0},
        {UCA, "Major Iterations Limit 75", NP, false, np::kMajorIterations, 75},
        {UCA, "Minor Print Level 5", LS, false, ls::kPrintLevel, 5},
        {UCA, "Linesearch Tolerance 0.5", NP, true, np::kLinesearchTolerance, 0.5},
        {UCA, "Verify Constraint Gradients", NP, false, np::kVerifyLevel, 2},
        {UCA, "Verify", NP, false, np::kVerifyLevel, 3},
        {UCA, "Verify Level 12", NP, false, np::kVerifyLevel, 12},
        {UCA, "Feasibility Tolerance 1e-4", NP, true, np::kNonlinearFeasibility, 1e-4},
        {UCA, "IPRMLS 3 42", LS, false, 3, 42},
        {UCA, "RPRMLS 30 2.5", LS, true, 30, 2.5},
        {USA, "Unit Initial Hessian", NL, false, e04::nl::kInitialHessian, 1},
        {USA, "Reset Frequency 4", NL, false, e04::nl::kResetFrequency, 4},
        {DGA, "Verify No", CG, false, cg::kVerifyLevel, -1},
        {DGA, "Debug Start 3", CG, false, cg::kDebugStart, 3},
        {DGA, "IPRMCG 7 11", CG, false, 7, 11},
    };
    for (const auto &c : rows) {
        OptionState s(solver(c.family).name);
        EXPECT_EQ(option(s, c.family, "Defaults"), 0);
        const OptionState before = s;
        EXPECT_EQ(option(s, c.family, c.line), 0) << c.line;
        const double got = c.real ? e04::real_setting(s.rwsav.data(), c.block, c.place)
                                  : e04::setting(s.iwsav.data(), c.block, c.place);
        EXPECT_DOUBLE_EQ(got, c.expected) << c.line;
        // Everything else is as it was, apart from places the phrase sets together with this one.
        int changed = 0;
        for (std::size_t k = 0; k < s.iwsav.size(); ++k) changed += before.iwsav[k] != s.iwsav[k];
        for (std::size_t k = 0; k < s.rwsav.size(); ++k) changed += before.rwsav[k] != s.rwsav[k];
        EXPECT_LE(changed, std::string(c.line).rfind("Feasibility Tolerance", 0) == 0 ? 2 : 1) << c.line;
    }
}

// The decoders' complaints: inform 5, the block untouched, and the text only while listing.
TEST(BadLines, AreReportedAndChangeNothing) {
    const struct {
        Family family;
        const char *line;
        const char *message;  // with the list flag on
    } rows[] = {
        {MFA, "Bogus Keyword 3", " XXX  Keyword not recognized:         Bogus Keyword 3"},
        {MFA, "C 3", " XXX  Ambiguous keyword:              C"},
        {MFA, "Print S 3", " XXX  Ambiguous keyword:              S"},
        {MFA, "Infinite Size 1e10", " XXX  Second keyword not recognized:  Infinite Size 1e10"},
        {NCA, "Print Volume 3", " XXX  Second keyword not recognized:  Print Volume 3"},
        {NCA, "Problem Type QP9", " XXX  Third  keyword not recognized:  Problem Type QP9"},
        {MFA, "Min Sum Maybe", " XXX  Third  keyword not recognized:  Min Sum Maybe"},
        {UCA, "IPRMLS 31 5", " XXX  The PARM subscript is out of range:        31"},
        {UCA, "RPRMLS", " XXX  The PARM subscript is out of range:         0"},
        {DGA, "Bogus", " XXX  Keyword not recognized:            Bogus"},
        {DGA, "Debug Everything", " XXX  Second keyword not recognized:     Debug Everything"},
    };
    for (const auto &c : rows) {
        for (int list : {0, 1}) {
            OptionState s(solver(c.family).name);
            int inform = -1;
            EXPECT_EQ(option(s, c.family, "Defaults"), 0);
            const OptionState before = s;
            const std::string line = c.line;
            const int unit = 6;
            OutputCapture out;
            solver(c.family).decode(line.data(), &list, &unit, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(),
                                    &inform, static_cast<int>(line.size()));
            EXPECT_EQ(inform, 5) << c.line;
            EXPECT_EQ(s.iwsav, before.iwsav) << c.line;
            EXPECT_EQ(s.rwsav, before.rwsav) << c.line;
            EXPECT_EQ(out.host(), list ? std::vector<std::string>{c.message} : std::vector<std::string>{});
        }
    }
    // An unknown problem type is a complaint that stores the illegal code for the run to reject.
    for (Family f : {MFA, NFA}) {
        OptionState s(solver(f).name);
        EXPECT_EQ(option(s, f, f == MFA ? "Problem Type QP2" : "Problem Type LS1"), 5);
        EXPECT_EQ(e04::setting(s.iwsav.data(), LC, lc::kProblemType), lc::kIllegalProblemType);
    }
}

// Every place of BLOCK holds the not-set sentinel, apart from SKIP.
void expect_unset(const OptionState &s, Block block, int skip = 0) {
    for (int k = 1; k <= e04::kBlockSize; ++k) {
        if (k == skip) continue;
        EXPECT_EQ(e04::setting(s.iwsav.data(), block, k), e04::kNotSetInt) << k;
        EXPECT_EQ(e04::real_setting(s.rwsav.data(), block, k), e04::kNotSetReal) << k;
    }
}

TEST(Decoder, BlankAndCommentLinesChangeNothingAndDefaultsResets) {
    OptionState s("E04MFA");
    OutputCapture quiet;
    EXPECT_EQ(option(s, MFA, "Iterations 10"), 0);
    const OptionState before = s;
    for (const char *line : {"", "      ", "* Iterations 20", "Begin", "List", "Nolist", "End"}) {
        EXPECT_EQ(option(s, MFA, line), 0) << line;
        EXPECT_EQ(s.iwsav, before.iwsav) << line;
        EXPECT_EQ(s.rwsav, before.rwsav) << line;
    }
    EXPECT_EQ(option(s, MFA, "Defaults"), 0);
    expect_unset(s, LC);
}

TEST(Decoder, FirstCallFillsEveryBlockOfTheSolverWithTheSentinel) {
    OptionState s("E04USA");
    EXPECT_EQ(option(s, USA, "Major Print Level 1"), 0);
    expect_unset(s, LS);
    expect_unset(s, NP, np::kMajorPrintLevel);
    expect_unset(s, NL);
    // The CG block is not this solver's: untouched.
    EXPECT_EQ(e04::setting(s.iwsav.data(), CG, 1), 0);
}

TEST(StringRoutine, ListsTheFirstCallOfARunUnderAHeaderAndLaterLinesWhileListing) {
    OptionState nfa("E04NFA"), mfa("E04MFA");
    const int on = 1, off = 0;
    int inform = -1;
    auto call = [&](OptionState &s, Family f, const std::string &line, const int *list) {
        solver(f).listed(line.data(), list, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform,
                         static_cast<int>(line.size()));
    };
    OutputCapture out;
    call(nfa, NFA, "Iterations 30", &on);
    call(nfa, NFA, "Print Level 1", &off);  // within a sequence the flag argument no longer matters
    call(nfa, NFA, "Nolist", &on);
    call(nfa, NFA, "Rank Tolerance 1e-9", &on);
    call(nfa, NFA, "List", &on);
    call(nfa, NFA, "Bogus", &on);
    EXPECT_EQ(inform, 5);
    // A new run opens a new list.
    call(mfa, MFA, "Iterations 30", &on);
    e04::begin_run(MFA, mfa.lwsav.data(), mfa.iwsav.data(), mfa.rwsav.data(), {5, 2});
    e04::end_run(MFA, mfa.lwsav.data(), mfa.iwsav.data(), mfa.rwsav.data());
    call(mfa, MFA, "Iterations 30", &on);
    const std::vector<std::string> expected = {
        "", " Calls to E04NHF", " ---------------", "      Iterations 30", "      Print Level 1", "      Nolist",
        "      Bogus", " XXX  Keyword not recognized:         Bogus",
        "", " Calls to E04MHF", " ---------------", "      Iterations 30",
        "", " Calls to E04MHF", " ---------------", "      Iterations 30"};
    EXPECT_EQ(out.host(), expected);
}

int itns(const OptionState &s) { return e04::setting(s.iwsav.data(), LC, lc::kOptimalityItns); }

TEST(OptionFile, InformAndEffect) {
    const struct {
        const char *name;
        std::string text;
        int inform;
        int iterations;  // after the call; the sentinel when nothing was decoded
    } rows[] = {
        {"plain", "Begin\n Iterations 30\nEnd\n", 0, 30},
        {"last line without newline", "Begin\n Iterations 30\nEnd", 0, 30},
        {"blank lines and comments", "\n* note\nBegin\n\n  * note\n Iterations 30\nEnd\n", 0, 30},
        {"endrun first", "ENDRUN\nBegin\n Iterations 30\nEnd\n", 4, e04::kNotSetInt},
        {"empty file", "", 3, e04::kNotSetInt},
        {"no begin", "SKIP\nSKIP\n", 3, e04::kNotSetInt},
        {"bad first record", "Iterations 40\nBegin\n Iterations 30\nEnd\n", 5, 30},
        {"bad keyword inside", "Begin\n Bogus 3\n Iterations 30\nEnd\n", 5, 30},
        {"no end", "Begin\n Iterations 30\n", 2, 30},
        {"long lines cut at 72", "Begin\n Iterations 30" + std::string(61, ' ') + "Iterations 99\nEnd\n", 0, 30},
    };
    for (const auto &c : rows) {
        for (const bool windows : {false, true}) {
            OptionState s("E04MFA");
            int inform = -1;
            E04MHF_PLAIN("Defaults", s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform, 8);
            InputFile file(windows ? zek_test::crlf(c.text) : c.text);
            const int unit = file.unit();
            E04MFA_OPTION_FILE_PLAIN(&unit, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform);
            EXPECT_EQ(inform, c.inform) << c.name << (windows ? " (CRLF)" : "");
            EXPECT_EQ(itns(s), c.iterations) << c.name << (windows ? " (CRLF)" : "");
        }
    }
}

std::string data_file(const char *name) { return std::string(ZEK_TEST_DATA_DIR) + "/options/" + name; }

TEST(OptionFile, SuccessiveCallsReadSuccessiveSetsOfOneFileAndListThem) {
    OptionState s("E04MFA");
    std::FILE *stream = X04_OPEN_INPUT(data_file("e04mfa_sets.opt").c_str());
    const int unit = zek::input_unit_number(stream);
    // Each call: its INFORM and what it lists.
    const auto next = [&](int expected_inform, const std::vector<std::string> &expected_lines) {
        const int on = 1;
        int inform = -1;
        OutputCapture out;
        E04MFA_OPTION_FILE(&unit, &on, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform);
        EXPECT_EQ(inform, expected_inform);
        EXPECT_EQ(out.host(), expected_lines);
    };
    next(0, {" OPTIONS file", " ------------", "      Begin", "        Iterations Limit = 30      * the first set",
             "        Print Level 1", "        Problem Type FP", "      End"});
    EXPECT_EQ(itns(s), 30);
    EXPECT_EQ(e04::setting(s.iwsav.data(), LC, lc::kProblemType), 1);
    next(0, {});  // NOLIST, the first record of the set, is applied before the heading would be written
    EXPECT_EQ(e04::setting(s.iwsav.data(), LC, lc::kCheckFrequency), 7);
    next(4, {"      Endrun"});
    next(3, {zek::format(" XXX  End-of-file encountered while looking for an OPTIONS file on unit%6ld",
                         static_cast<long>(unit))});
    zek::forget_input_stream(stream);
    std::fclose(stream);
}

TEST(OptionFile, ComplaintsWhileListing) {
    OptionState s("E04NFA");
    InputFile file("Rubbish here\nBegin\n Bogus 3\n Iterations\n");
    const int unit = file.unit(), on = 1;
    int inform = -1;
    OutputCapture out;
    E04NFA_OPTION_FILE(&unit, &on, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform);
    EXPECT_EQ(inform, 2);
    const std::vector<std::string> expected = {
        zek::format(" XXX  Error while looking for an OPTIONS file on unit%7ld", static_cast<long>(unit)),
        " XXX  The file should start with BEGIN, SKIP or ENDRUN",
        " XXX  but the first record found was the following:",
        " -----Rubbish here",
        " XXX  Continuing to look for OPTIONS file...",
        " XXX  Keyword not recognized:          Bogus 3",
        " OPTIONS file",
        " ------------",
        "      Begin",
        "       Bogus 3",
        "       Iterations",
        zek::format(" XXX  End-of-file encountered while processing an OPTIONS file on unit%6ld",
                    static_cast<long>(unit)),
    };
    EXPECT_EQ(out.host(), expected);
}

TEST(OptionFile, UnitsThatNameNoStreamReadAsEmptyFiles) {
    OptionState s("E04UCA");
    for (const int unit : {0, 5, -1, 123456}) {
        int inform = -1;
        E04UCA_OPTION_FILE_PLAIN(&unit, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform);
        EXPECT_EQ(inform, 3) << unit;
    }
}

TEST(OptionFile, TheGenericReaderTakesAnyDecoder) {
    for (const bool by_reference : {false, true}) {
        OptionState s("E04USA");
        InputFile file("Begin\n Reset Frequency 9\nEnd\n");
        const int unit = file.unit(), print = -1, off = 0;
        int inform = -1;
        if (by_reference)
            E04_OPTION_FILE_BYREF(&unit, &print, E04USA_DECODE, &off, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(),
                                  &inform);
        else
            E04_OPTION_FILE(unit, print, E04USA_DECODE, off, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform);
        EXPECT_EQ(inform, 0);
        EXPECT_EQ(e04::setting(s.iwsav.data(), NL, e04::nl::kResetFrequency), 9);
    }
}

TEST(Units, ResolveNotedStreamsByTheLowWordOfTheirAddress) {
    InputFile a("x\n"), b("y\n");
    EXPECT_NE(zek::input_stream(a.unit()), nullptr);
    EXPECT_NE(zek::input_stream(a.unit()), zek::input_stream(b.unit()));
    EXPECT_EQ(zek::input_stream(0), nullptr);
    // What a 64-bit host holding the stream in a pointer-sized word passes by reference: its low word
    // on this little-endian machine.
    const auto word = reinterpret_cast<std::uintptr_t>(zek::input_stream(a.unit()));
    int low = 0;
    std::memcpy(&low, &word, sizeof low);
    EXPECT_EQ(zek::input_stream(low), zek::input_stream(a.unit()));
}

std::string pad(const std::string &s) { return s + std::string(s.size() < 70 ? 70 - s.size() : 0, ' '); }

TEST(PrepareState, ChecksTheNameAndTheLengths) {
    const auto too_small = [](const char *lengths) {
        return std::vector<std::string>{pad("One or more of the workspace array lengths "), pad("is too small"),
                                        pad(std::string("Supplied values are: ") + lengths)};
    };
    const struct {
        const char *name;
        int lengths[4];
        int ifail;
        std::vector<std::string> records;
    } rows[] = {
        {"E04MFA", {1, 120, 610, 475}, 0, {}},
        {"e04usa", {1, 120, 610, 475}, 0, {}},
        {"E04NKF", {1, 20, 380, 285}, 0, {}},
        {"E04UFF", {5, 120, 610, 475}, 0, {}},
        {"E04ABC", {1, 120, 610, 475}, 1, {" Invalid routine name:  E04ABC"}},
        {"E04UFF", {1, 120, 610, 475}, 2, too_small("LCWSAV = 1 LLWSAV = 120 LIWSAV = 610 LRWSAV = 475")},
        {"E04NCA", {1, 119, 610, 475}, 2, too_small("LCWSAV = 1 LLWSAV = 119 LIWSAV = 610 LRWSAV = 475")},
    };
    for (const auto &c : rows) {
        std::vector<char> cwsav(80 * 5, ' ');
        std::vector<int> lwsav(120, 0), iwsav(610, 0);
        std::vector<double> rwsav(610, 0.0);
        int ifail = -1;
        OutputCapture out;
        E04WBA(c.name, cwsav.data(), &c.lengths[0], lwsav.data(), &c.lengths[1], iwsav.data(), &c.lengths[2],
               rwsav.data(), &c.lengths[3], &ifail, static_cast<int>(std::strlen(c.name)), 80);
        EXPECT_EQ(ifail, c.ifail) << c.name;
        const std::vector<std::string> host = out.host();
        EXPECT_EQ(std::vector<std::string>(host.begin(), host.begin() + std::min(host.size(), c.records.size())),
                  c.records);
        EXPECT_TRUE(c.ifail != 0 || host.empty()) << c.name;
    }
}

TEST(PrepareState, SetsTheFirstCallFlagsOfItsSolverOnly) {
    OptionState s("E04NCA");
    for (int f = 0; f < e04::kFamilyCount; ++f) {
        const auto family = static_cast<Family>(f);
        for (e04::Flag flag : {e04::Flag::FirstStringCall, e04::Flag::FirstFileCall, e04::Flag::OptionsUnset})
            EXPECT_EQ(e04::flag(s.lwsav.data(), family, flag), family == NCA ? 1 : 0) << f;
    }
    EXPECT_EQ(s.iwsav, std::vector<int>(s.iwsav.size(), 0));
}

} // namespace
