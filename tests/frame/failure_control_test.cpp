// The reporters: what IFAIL's digits make them print, return or end.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "frame/ifail.h"
#include "host_capture.h"
#include "zek2/p01.h"
#include "zek2/x04.h"

namespace {

using zek_test::OutputCapture;

const std::string kAbnormal3 = " ** ABNORMAL EXIT from ZEK Library routine C05AGF: IFAIL =     3";
const std::string kSoft = " ** ZEK soft failure - control returned";
const std::string kHard = " ** ZEK hard failure - execution terminated";

// A record as the builder leaves it: blank padded to one less than the record width.
std::string padded(const std::string &text, std::size_t width) { return text + std::string(width - 1 - text.size(), ' '); }

zek::Records one_record(const char *text) {  // a builder with one record
    zek::Records r;
    r.add(text);
    return r;
}

TEST(ReturningReport, PrintsWhatTheDigitsAskAndReturnsIerror) {
    // Each row: IFAIL, then whether the records, the abnormal-exit line and the soft line are printed.
    const struct {
        int ifail;
        bool records, abnormal, soft_line;
    } cases[] = {
        {0, false, false, false},  {1, false, false, false}, {2, false, false, false},  // silent: tens digit 0
        {101, false, false, false}, {-2, false, false, false},                            // hundreds digit ignored
        {-1, true, true, true},     {11, true, true, true},   {111, true, true, true}, {-13, true, false, false},
    };
    const zek::Records rec = one_record(" ** On entry, N .le. 1: N =               0.");
    for (const auto &c : cases) {
        const int ierror = c.ifail == 0 ? 0 : 3;  // success prints nothing whatever IFAIL says
        OutputCapture out;
        EXPECT_EQ(P01_REPORT(c.ifail, ierror, "C05AGF", rec.count(), rec.data(), 6, rec.width()), ierror);
        std::vector<std::string> expected;
        if (c.records) expected.push_back(rec.record(0));
        if (c.abnormal) expected.push_back(kAbnormal3);
        if (c.soft_line) expected.push_back(kSoft);
        EXPECT_EQ(out.host(), expected) << c.ifail;
        // Each host line ends with a newline on stdout, and the abnormal-exit line is preceded by one more.
        EXPECT_EQ(out.stdout_text(), std::string(expected.size() + (c.abnormal ? 1 : 0), '\n')) << c.ifail;
    }
}

TEST(ReportDeath, HardRequestsEndTheProcessWithStatusZero) {
    const zek::Records rec = one_record(" ** record");
    for (int ifail : {0, 10, 12, 20}) {
        EXPECT_EXIT(P01_REPORT(ifail, 3, "C05AGF", 1, rec.data(), 6, rec.width()), testing::ExitedWithCode(0), "")
            << "IFAIL " << ifail;
    }
    // The host form of the kernels' parameter report always ends the process.
    EXPECT_EXIT(zek::F06_BAD_PARAMETER("F06PAF/DGEMV ", 2, 13), testing::ExitedWithCode(0), "");
    const int ifail = 1, ierror = 4, nrec = 0;
    EXPECT_EQ(P01_REPORT_BYREF(&ifail, &ierror, "F01QCF", &nrec, nullptr, 6, 80), 4);
}

TEST(ReportErrorUnit, NegativeUnitSilencesHostLinesButNotTheBlankLine) {
    int unit = -1, saved = 0, read = 0, set = 1;
    X04_ERROR_UNIT(&read, &saved);
    X04_ERROR_UNIT(&set, &unit);
    const zek::Records rec = one_record(" ** record");
    OutputCapture out;
    EXPECT_EQ(P01_REPORT(-1, 3, "C05AGF", 1, rec.data(), 6, rec.width()), 3);
    X04_ERROR_UNIT(&set, &saved);
    EXPECT_TRUE(out.host().empty());
    EXPECT_EQ(out.stdout_text(), "\n");
}

TEST(ReportNamed, NamesTheVariableOrLeavesItOut) {
    for (const auto &[routine, name, line] :
         {std::tuple{"F07ADF", "INFO", " ** ABNORMAL EXIT from ZEK Library routine F07ADF: INFO =    -3"},
          {"F06PAF", "    ", " ** ABNORMAL EXIT from ZEK Library routine F06PAF"}}) {
        OutputCapture out;
        EXPECT_EQ(P01_REPORT_NAMED(-1, -3, routine, name, 0, nullptr, 6, 4, 80), -3);
        EXPECT_EQ(out.host(), (std::vector<std::string>{line, kSoft}));
    }
}

TEST(ReportStream, HardRequestPrintsItsLineAndReturns) {
    char record[] = " ** On entry, N .lt. 1: N =               0.";
    OutputCapture out;
    EXPECT_EQ(P01_REPORT_STREAM(0, 2, "F01QDF", 1, record, 6, 80), 2);
    EXPECT_TRUE(out.host().empty());
    EXPECT_EQ(out.stdout_text(), std::string(record) + "\n" +
                                     " ** ABNORMAL EXIT from ZEK Library routine F01QDF: IFAIL =     2 **\n" + kHard +
                                     "\n");
}

TEST(KernelParameter, StreamFormReportsAndReturns) {
    OutputCapture out;
    testing::internal::CaptureStderr();
    F06_BAD_PARAMETER_STREAM("F07ADF       ", 3, 13);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), " ** On entry to F07ADF        parameter number  3 had an illegal value\n");
    EXPECT_EQ(out.stdout_text(), " ** ABNORMAL EXIT from ZEK Library routine F07ADF: INFO =     -3\n" + kHard + "\n");
}

TEST(ParameterReport, CountsAlwaysAndPrintsUnlessSoftAndSilent) {
    const std::vector<std::string> expected = {
        "", padded(" *****  Parameter  N  is invalid in routine  F01QCF  ***** ", 65),
        padded("        Value supplied is     -5", 65), "",
        padded(" *****  Parameter  TRANS  is invalid in routine  F01QDF  ***** ", 65),
        padded("        Value supplied is", 65), padded("        X", 65)};
    // Unlike P01_REPORT, IFAIL 2 prints here; 1 and 101 only count.
    for (const auto &[ifail, prints] : {std::pair{1, false}, {101, false}, {2, true}, {-1, true}, {11, true}, {0, true}}) {
        int errors = 0;
        OutputCapture out;
        zek::P01_BAD_INTEGER(-5, "N     ", ifail, &errors, "F01QCF", 1, 6);
        zek::P01_BAD_CHARACTER("X  ", "TRANS", ifail, &errors, "F01QDF", 1, 5, 6);
        EXPECT_EQ(errors, 2);
        EXPECT_EQ(out.host(), prints ? expected : std::vector<std::string>{}) << ifail;
    }
}

TEST(ParameterReportStream, PrintsOnlyFirstCharacters) {
    int errors = 0;
    OutputCapture out;
    zek::P01_BAD_INTEGER_STREAM(-5, "NROWS", 0, &errors, "G02BUF", 5, 6);
    EXPECT_EQ(errors, 1);
    EXPECT_EQ(out.stdout_text(),
              "\n *****  Parameter  N  is invalid in routine  G  ***** \n        Value supplied is     -5\n");
    EXPECT_EQ(zek::parameter_error_count_record(2).record(0),
              padded("    The input parameters contained  2 error(s)", 80));
}

} // namespace
