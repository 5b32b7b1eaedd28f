// Illegal arguments of the checked kernels: the masters and aliases end the process through the hard
// route, the copies report on the stream channel and return, the enumerated forms raise code 71 and
// return; in every case the outputs stay as they were.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "kernels/level2.h"
#include "kernels/level3.h"
#include "zek2/f06.h"

namespace {

std::vector<double> a(64, 1.0), b(64, 2.0), x(16, 3.0), y(16, 4.0);
std::vector<double> out; // the output a failing call must leave alone

struct HardCase {
    const char *what;
    std::function<void()> call;
    const char *message;  // the report line, as a regular expression
};

// The report goes to the host channel (stdout without a host); the statement sends stdout to stderr so
// that the death test sees it.
void on_stderr(const std::function<void()> &call) {
    std::fflush(stdout);
    dup2(2, 1);
    call();
}

class HardRoute : public testing::TestWithParam<HardCase> {};

TEST_P(HardRoute, ReportsTheParameterAndEndsTheProcess) {
    const HardCase &c = GetParam();
    EXPECT_EXIT(on_stderr(c.call), testing::ExitedWithCode(0), c.message) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Kernels, HardRoute,
    testing::Values(
        HardCase{"dgemv trans", [] { F06PAF("X", 2, 2, 1.0, a.data(), 2, x.data(), 1, 0.0, y.data(), 1, 1); },
                 "On entry to F06PAF/DGEMV  parameter number  1 had an illegal value"},
        HardCase{"dgemv master lda",
                 [] { f06paf_ENTRY(1, "N", 3, 2, 1.0, a.data(), 2, x.data(), 1, 0.0, y.data(), 1, 1); },
                 "F06PAF/DGEMV  parameter number  6 had"},
        HardCase{"dsymv incy", [] { F06PCF("U", 2, 1.0, a.data(), 2, x.data(), 1, 0.0, y.data(), 0, 1); },
                 "F06PCF/DSYMV  parameter number 10 had"},
        HardCase{"dtrsv diag", [] { F06PJF("U", "N", "Q", 2, a.data(), 2, x.data(), 1, 1, 1, 1); },
                 "F06PJF/DTRSV  parameter number  3 had"},
        HardCase{"dtpsv incx", [] { zek::dtpsv("L", "T", "N", 2, a.data(), x.data(), 0); },
                 "F06PLF/DTPSV  parameter number  7 had"},
        HardCase{"dger lda", [] { F06PMF(3, 2, 1.0, x.data(), 1, y.data(), 1, a.data(), 2); },
                 "F06PMF/DGER   parameter number  9 had"},
        HardCase{"zgerc n", [] { F06SNF(2, -1, 1.0, 0.0, x.data(), 1, y.data(), 1, a.data(), 2); },
                 "F06SNF/ZGERC  parameter number  2 had"},
        HardCase{"dgemm ldb",
                 [] { F06YAF("N", "T", 2, 3, 2, 1.0, a.data(), 2, b.data(), 2, 0.0, y.data(), 2, 1, 1); },
                 "F06YAF/DGEMM  parameter number 10 had"},
        HardCase{"dtrsm side",
                 [] { zek::dtrsm("X", "U", "N", "N", 2, 2, 1.0, a.data(), 2, b.data(), 2); },
                 "F06YJF/DTRSM  parameter number  1 had"},
        HardCase{"ztrsm ldb",
                 [] { F06ZJF("R", "U", "C", "N", 3, 2, 1.0, 0.0, a.data(), 2, b.data(), 2, 1, 1, 1, 1); },
                 "F06ZJF/ZTRSM  parameter number 11 had"},
        HardCase{"zherk trans T is illegal",
                 [] { F06ZPF("U", "T", 2, 2, 1.0, a.data(), 2, 0.0, b.data(), 2, 1, 1); },
                 "F06ZPF/ZHERK  parameter number  2 had"},
        HardCase{"dsyrk k", [] { F06YPF("L", "N", 2, -1, 1.0, a.data(), 2, 0.0, b.data(), 2, 1, 1); },
                 "F06YPF/DSYRK  parameter number  4 had"}));

TEST(StreamRoute, CopiesReportAndReturnWithOutputsUntouched) {
    struct Case {
        void (*call)();
        const char *line;
    };
    const Case cases[] = {
        {[] { F06PAF_COPY("N", 2, 2, 1.0, a.data(), 2, x.data(), 1, 0.0, out.data(), 0, 1); },
         " ** On entry to F06PAF/DGEMV  parameter number 11 had an illegal value"},
        {[] { F06PJF_COPY("U", "C", "N", -1, a.data(), 1, out.data(), 1, 1, 1, 1); },
         " ** On entry to F06PJF/DTRSV  parameter number  4 had an illegal value"},
        {[] { F06PMF_COPY(2, 2, 1.0, x.data(), 0, y.data(), 1, out.data(), 2); },
         " ** On entry to F06PMF/DGER   parameter number  5 had an illegal value"},
        {[] { F06PQF_COPY("B", 2, 1.0, x.data(), 1, out.data(), 1); },
         " ** On entry to F06PQF/DSPR   parameter number  1 had an illegal value"},
        {[] { F06YPF_COPY("U", "N", 3, 1, 1.0, a.data(), 3, 0.0, out.data(), 2, 1, 1); },
         " ** On entry to F06YPF/DSYRK  parameter number 10 had an illegal value"},
    };
    for (const Case &c : cases) {
        out.assign(16, 7.0);
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        c.call();
        const std::string err = testing::internal::GetCapturedStderr();
        testing::internal::GetCapturedStdout();
        EXPECT_NE(err.find(c.line), std::string::npos) << err;
        EXPECT_EQ(out, std::vector<double>(16, 7.0));
    }
}

TEST(EnumeratedRoute, RaisesCode71UnderTheLowerCaseNameAndReturns) {
    struct Case {
        void (*call)();
        const char *name;
        int parameter;
    };
    const Case cases[] = {
        {[] { f06pac(1005, 2, 2, 1.0, a.data(), 2, x.data(), 1, 0.0, out.data(), 1); }, "f06pac/dgemv", 1},
        {[] { f06pac(1002, 2, -2, 1.0, a.data(), 2, x.data(), 1, 0.0, out.data(), 1); }, "f06pac/dgemv", 3},
        {[] { f06pfc(1004, 1003, 1008, 2, a.data(), 2, out.data(), 1); }, "f06pfc/dtrmv", 3},
        {[] { f06pjc(1004, 1004, 1006, 2, a.data(), 2, out.data(), 1); }, "f06pjc/dtrsv", 2},
        {[] { f06phf(1006, 1001, 1006, 2, a.data(), out.data(), 1); }, "f06phf/dtpmv", 1},
        {[] { f06plf(1005, 1001, 1006, 2, a.data(), out.data(), 0); }, "f06plf/dtpsv", 7},
        {[] { f06pmc(2, 2, 1.0, x.data(), 1, y.data(), 1, out.data(), 1); }, "f06pmc/dger", 9},
        {[] { f06pef(1004, 2, 1.0, a.data(), x.data(), 1, 1.0, out.data(), 0); }, "f06pef/dspmv", 9},
    };
    for (const Case &c : cases) {
        out.assign(16, 7.0);
        testing::internal::CaptureStderr();
        c.call();
        const std::string err = testing::internal::GetCapturedStderr();
        EXPECT_NE(err.find(c.name), std::string::npos) << err;
        EXPECT_NE(err.find("parameter number " + std::to_string(c.parameter) + " had an illegal value"),
                  std::string::npos)
            << err;
        EXPECT_EQ(out, std::vector<double>(16, 7.0)) << c.name;
    }
}

TEST(QuickReturns, AfterTheChecksNothingIsTouched) {
    std::vector<double> c(16, 5.0);
    // K = 0 with BETA = 1, and an empty M, leave C alone; ALPHA = 0 only scales.
    F06YAF("N", "N", 2, 2, 0, 1.0, a.data(), 2, b.data(), 1, 1.0, c.data(), 2, 1, 1);
    F06YAF("T", "N", 0, 2, 2, 1.0, a.data(), 2, b.data(), 2, 0.0, c.data(), 1, 1, 1);
    EXPECT_EQ(c, std::vector<double>(16, 5.0));
    F06YAF("N", "N", 2, 2, 3, 0.0, a.data(), 2, b.data(), 3, 2.0, c.data(), 2, 1, 1);
    EXPECT_EQ(std::vector<double>(c.begin(), c.begin() + 4), std::vector<double>(4, 10.0));
    EXPECT_EQ(c[4], 5.0);
    // BETA = 0 clears the output even where it held a NaN.
    std::vector<double> yy = {std::nan(""), std::nan("")};
    F06PAF("N", 2, 2, 0.0, a.data(), 2, x.data(), 1, 0.0, yy.data(), 1, 1);
    EXPECT_EQ(yy, std::vector<double>(2, 0.0));
}

} // namespace
