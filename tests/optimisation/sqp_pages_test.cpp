// The page E04UCA prints after each major line at the most detailed levels lists the diagonals of the
// last QP subproblem's working-set triangle T; their extreme ratio is the Cond T of the line above.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

TEST(SqpPages, DiagonalsOfTMatchCondT) {
    std::vector<std::string> host;
    zek_test::sqp::Out r;
    {
        zek_test::OutputCapture capture;
        r = zek_test::sqp::run_uca(zek_test::sqp::hs071(), {"Major Print Level = 20"});
        host = capture.host();
    }
    EXPECT_EQ(r.ifail, 0);
    int pages = 0;
    std::string line;  // the last long iteration line
    for (std::size_t k = 0; k + 1 < host.size(); ++k) {
        long maj = 0, mnr = 0;
        if (host[k].size() >= 107 && std::sscanf(host[k].c_str(), "%ld%ld", &maj, &mnr) == 2) line = host[k];
        if (host[k] != " Diagonals of  T  =         ") continue;
        ++pages;
        std::istringstream values(host[k + 1]);
        double v = 0, big = 0, small = HUGE_VAL;
        int count = 0;
        while (values >> v) big = std::max(big, std::fabs(v)), small = std::min(small, std::fabs(v)), ++count;
        ASSERT_GT(count, 0) << host[k + 1];
        ASSERT_FALSE(line.empty());
        char cond[16];
        std::snprintf(cond, sizeof cond, "%8.1E", big / small);
        EXPECT_EQ(line.substr(99, 8), cond) << line;
    }
    // HS071 keeps both nonlinear rows in the working set at every major iteration.
    EXPECT_GT(pages, 3);
}

} // namespace
