// The options-file reader: its inform values, its listing, and files read through units.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <algorithm>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/input_units.h"
#include "frame/output.h"
#include "option_test_support.h"
#include "optimisation/options.h"
#include "zek2/e04.h"
#include "zek2/x04.h"

namespace {

using zek::e04::Block;
using zek_test::crlf;
using zek_test::InputFile;
using zek_test::OptionState;
using zek_test::OutputCapture;
namespace lc = zek::e04::lc;

int itns(const OptionState &s) { return zek::e04::setting(s.iwsav.data(), Block::LC, lc::kOptimalityItns); }

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
        {"endrun first", "ENDRUN\nBegin\n Iterations 30\nEnd\n", 4, zek::e04::kNotSetInt},
        {"empty file", "", 3, zek::e04::kNotSetInt},
        {"no begin", "SKIP\nSKIP\n", 3, zek::e04::kNotSetInt},
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
            InputFile file(windows ? crlf(c.text) : c.text);
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
    EXPECT_EQ(zek::e04::setting(s.iwsav.data(), Block::LC, lc::kProblemType), 1);
    next(0, {});  // NOLIST, the first record of the set, is applied before the heading would be written
    EXPECT_EQ(zek::e04::setting(s.iwsav.data(), Block::LC, lc::kCheckFrequency), 7);
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
        EXPECT_EQ(zek::e04::setting(s.iwsav.data(), Block::NL, zek::e04::nl::kResetFrequency), 9);
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
    for (int f = 0; f < zek::e04::kFamilyCount; ++f) {
        const auto family = static_cast<zek::e04::Family>(f);
        const int expected = family == zek::e04::Family::NCA ? 1 : 0;
        EXPECT_EQ(zek::e04::flag(s.lwsav.data(), family, zek::e04::Flag::FirstStringCall), expected);
        EXPECT_EQ(zek::e04::flag(s.lwsav.data(), family, zek::e04::Flag::FirstFileCall), expected);
        EXPECT_EQ(zek::e04::flag(s.lwsav.data(), family, zek::e04::Flag::OptionsUnset), expected);
    }
    for (std::size_t k = 0; k < s.iwsav.size(); ++k) EXPECT_EQ(s.iwsav[k], 0);
}

} // namespace
