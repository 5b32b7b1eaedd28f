// The reporters: what IFAIL's digits make them print, return or end.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
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

zek::Records one_record(const char *text) {
    zek::Records r;
    r.add(text);
    return r;
}

struct ReportCase {
    int ifail;
    int ierror;
    bool records;
    bool abnormal;
    bool soft_line;
};

void PrintTo(const ReportCase &c, std::ostream *os) { *os << "IFAIL " << c.ifail << ", IERROR " << c.ierror; }

class ReturningReport : public testing::TestWithParam<ReportCase> {};

TEST_P(ReturningReport, PrintsWhatTheDigitsAskAndReturnsIerror) {
    const ReportCase c = GetParam();
    const zek::Records rec = one_record(" ** On entry, N .le. 1: N =               0.");
    OutputCapture out;
    const int result = P01_REPORT(c.ifail, c.ierror, "C05AGF", rec.count(), rec.data(), 6, rec.width());
    EXPECT_EQ(result, c.ierror);
    std::vector<std::string> expected;
    if (c.records) expected.push_back(rec.record(0));
    if (c.abnormal) expected.push_back(kAbnormal3);
    if (c.soft_line) expected.push_back(kSoft);
    EXPECT_EQ(out.host(), expected);
    // Each host line ends with a newline on stdout, and the abnormal-exit line is preceded by one more.
    const std::size_t newlines = expected.size() + (c.abnormal ? 1 : 0);
    EXPECT_EQ(out.stdout_text(), std::string(newlines, '\n'));
}

INSTANTIATE_TEST_SUITE_P(
    IfailDigits, ReturningReport,
    testing::Values(ReportCase{0, 0, false, false, false},    // success prints nothing whatever IFAIL says
                    ReportCase{1, 3, false, false, false},    // soft and silent
                    ReportCase{2, 3, false, false, false},    // silent: tens digit 0 keeps it quiet
                    ReportCase{101, 3, false, false, false},  // hundreds digit has no effect
                    ReportCase{-2, 3, false, false, false},   // other negative values are silent
                    ReportCase{-1, 3, true, true, true},      // soft and noisy
                    ReportCase{11, 3, true, true, true},      // tens digit opens the noisy path
                    ReportCase{111, 3, true, true, true},
                    ReportCase{-13, 3, true, false, false})); // records only

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
    {
        OutputCapture out;
        EXPECT_EQ(P01_REPORT_NAMED(-1, -3, "F07ADF", "INFO", 0, nullptr, 6, 4, 80), -3);
        ASSERT_EQ(out.host().size(), 2u);
        EXPECT_EQ(out.host()[0], " ** ABNORMAL EXIT from ZEK Library routine F07ADF: INFO =    -3");
    }
    {
        OutputCapture out;
        P01_REPORT_NAMED(-1, -1, "F06PAF", "    ", 0, nullptr, 6, 4, 80);
        ASSERT_EQ(out.host().size(), 2u);
        EXPECT_EQ(out.host()[0], " ** ABNORMAL EXIT from ZEK Library routine F06PAF");
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
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err, " ** On entry to F07ADF        parameter number  3 had an illegal value\n");
    EXPECT_EQ(out.stdout_text(), " ** ABNORMAL EXIT from ZEK Library routine F07ADF: INFO =     -3\n" + kHard + "\n");
}

struct ParameterCase {
    int ifail;
    bool prints;
};

void PrintTo(const ParameterCase &c, std::ostream *os) { *os << "IFAIL " << c.ifail; }

class ParameterReport : public testing::TestWithParam<ParameterCase> {};

TEST_P(ParameterReport, CountsAlwaysAndPrintsUnlessSoftAndSilent) {
    const ParameterCase c = GetParam();
    int errors = 0;
    OutputCapture out;
    zek::P01_BAD_INTEGER(-5, "N     ", c.ifail, &errors, "F01QCF", 1, 6);
    zek::P01_BAD_CHARACTER("X  ", "TRANS", c.ifail, &errors, "F01QDF", 1, 5, 6);
    EXPECT_EQ(errors, 2);
    if (!c.prints) {
        EXPECT_TRUE(out.host().empty());
        return;
    }
    const std::vector<std::string> expected = {
        "",
        padded(" *****  Parameter  N  is invalid in routine  F01QCF  ***** ", 65),
        padded("        Value supplied is     -5", 65),
        "",
        padded(" *****  Parameter  TRANS  is invalid in routine  F01QDF  ***** ", 65),
        padded("        Value supplied is", 65),
        padded("        X", 65),
    };
    EXPECT_EQ(out.host(), expected);
}

// Unlike P01_REPORT, IFAIL 2 prints here; 1 and 101 only count.
INSTANTIATE_TEST_SUITE_P(IfailDigits, ParameterReport,
                         testing::Values(ParameterCase{1, false}, ParameterCase{101, false}, ParameterCase{2, true},
                                         ParameterCase{-1, true}, ParameterCase{11, true}, ParameterCase{0, true}));

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
