// H02BVF: the solution lines under the file's names, and its argument checks.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/output.h"
#include "zek2/h02.h"

namespace {

// Records as the host receives them, without the blanks that pad them to their width.
std::vector<std::string> trimmed(std::vector<std::string> lines) {
    for (std::string &l : lines) l.erase(l.find_last_not_of(' ') + 1);
    return lines;
}

using zek_test::OutputCapture;

TEST(SolutionPrinter, PrintsColumnsThenRows) {
    const int n = 2, m = 2, lda = 3;
    const double a[] = {1, 2, 99, 3, 4, 99};  // rows (1 3) and (2 4)
    const char names[] = "X1      X2      ROW1    ROW2    ";
    const double x[] = {1.5, 0.0};
    const double clamda[] = {0.0, -2.0, 0.25, 0.0};
    const int istate[] = {0, 1, 2, -2};
    const double bl[] = {0.0, 0.0, -1e20, 4.0};
    const double bu[] = {1e20, 5.0, 1.5, 1e20};
    const double bigbnd = 1e20;
    int ifail = 0;
    OutputCapture out;
    H02BVF(&n, &m, a, &lda, names, x, clamda, istate, bl, bu, &bigbnd, &ifail, 8);
    EXPECT_EQ(ifail, 0);
    const std::string none = "     None     ";
    const std::vector<std::string> expected = {
        "",
        " Varbl   State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual",
        zek::format(" %8.8s %2.2s %14.6G%14.6G", "X1      ", "FR", 1.5, 0.0) + none + zek::format("%12.4G%12.4G", 0.0, 1.5),
        zek::format(" %8.8s %2.2s %14.6G%14.6G%14.6G%12.4G%12.4G", "X2      ", "LL", 0.0, 0.0, 5.0, -2.0, 0.0),
        "",
        " L Con   State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual",
        zek::format(" %8.8s %2.2s %14.6G", "ROW1    ", "UL", 1.5) + none + zek::format("%14.6G%12.4G%12.4G", 1.5, 0.25, 0.0),
        zek::format(" %8.8s %2.2s %14.6G%14.6G", "ROW2    ", "--", 3.0, 4.0) + none + zek::format("%12.4G%12.4G", 0.0, -1.0),
    };
    EXPECT_EQ(out.host(), expected);
}

TEST(SolutionPrinter, ArgumentChecks) {
    struct Case {
        int n, m, lda;
        std::vector<std::string> records;
    };
    const std::vector<Case> cases = {
        {0, 1, 1, {" ** On entry, N .le. 0: N =               0."}},
        {1, -1, 1, {" ** On entry, M .lt. 0: M =              -1."}},
        {1, 3, 2, {" ** On entry, LDA .lt. max(1,M):", "    LDA =               2, M =               3."}},
        {1, 0, 0, {" ** On entry, LDA .lt. max(1,M):", "    LDA =               0, M =               0."}},
    };
    for (const Case &c : cases) {
        int ifail = -13;
        OutputCapture out;
        H02BVF(&c.n, &c.m, nullptr, &c.lda, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &ifail, 8);
        EXPECT_EQ(ifail, 1);
        EXPECT_EQ(trimmed(out.host()), c.records);
    }
}

} // namespace
