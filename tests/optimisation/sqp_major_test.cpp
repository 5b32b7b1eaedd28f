// E04UCA's difference intervals and points for a variable the objective is linear in, and the diagonals
// of the QP subproblem's triangle T on the pages of the most detailed print level.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

double excursion = 0.0;  // largest distance outside [0, 3] of a point the objective saw

// min (x1-1)^2 + (x2-2)^2 + s x3  s.t.  x1 + x2 <= 2.5,  x1 x3 >= 0.5,  0 <= x <= 3, the gradient's x3
// element estimated.  With s = 1, x3 = 0.5 / x1 and x1 solves 4 x1 - 3 = 0.5 / x1^2; with s = -1, x3 = 3.
TEST(SqpDifferences, LinearVariableKeepsAShortIntervalInsideTheBounds) {
    const struct { double s, x3, x3_final; const char *option; } rows[] = {
        {1, 1, 0.5535737822176665, ""}, {-1, 3, 3, ""}, {-1, 3, 3, "Central Difference Interval = 1e-4"}};
    for (const auto &row : rows) {
        zek_test::sqp::Nlp p;
        p.n = 3, p.nclin = 1, p.ncnln = 1;
        p.a = {1, 1, 0}, p.bl = {0, 0, 0, -zek_test::qp::kBig, 0.5}, p.bu = {3, 3, 3, 2.5, zek_test::qp::kBig};
        p.x0 = {1, 1, row.x3};
        p.f = [s = row.s](const double *x, double *g) {
            for (int j = 0; j < 3; ++j) excursion = std::max({excursion, -x[j], x[j] - 3.0});
            g[0] = 2 * (x[0] - 1), g[1] = 2 * (x[1] - 2), g[2] = s;
            return (x[0] - 1) * (x[0] - 1) + (x[1] - 2) * (x[1] - 2) + s * x[2];
        };
        p.con = [](const double *x, double *c, double *j) { c[0] = x[0] * x[2], j[0] = x[2], j[1] = 0, j[2] = x[0]; };
        excursion = 0.0;
        zek_test::OutputCapture capture;
        const zek_test::sqp::Out r = zek_test::sqp::run_uca(p, {"Major Print Level = 1", row.option}, {-1, -1, 2});
        const std::vector<std::string> host = capture.host();  // ends the capture
        EXPECT_EQ(r.ifail, 0) << row.option;
        EXPECT_NEAR(r.x[2], row.x3_final, 1e-6) << row.option;
        EXPECT_EQ(excursion, 0.0) << row.option;
        // Variable 3's row of the interval table: 2 sqrt(EPSRF) (1 + |x3|) is about 1e-8.
        double fwd = std::nan(""), x = 0;
        long j = 0;
        for (const std::string &h : host)
            if (std::sscanf(h.c_str(), "%ld%lf%lf", &j, &x, &fwd) == 3 && j == 3 && h.size() == 63) break;
        EXPECT_TRUE(*row.option || (fwd > 1e-10 && fwd < 1e-6)) << fwd;
    }
}

// The extreme ratio of T's diagonals is the Cond T of the iteration line above the page.
TEST(SqpPages, DiagonalsOfTMatchCondT) {
    zek_test::OutputCapture capture;
    EXPECT_EQ(zek_test::sqp::run_uca(zek_test::sqp::hs071(), {"Major Print Level = 20"}).ifail, 0);
    const std::vector<std::string> host = capture.host();
    int pages = 0;
    for (std::size_t k = 3; k + 1 < host.size(); ++k) {
        if (host[k] != " Diagonals of  T  =         ") continue;
        ++pages;
        std::istringstream values(host[k + 1]);
        double v = 0, big = 0, small = HUGE_VAL;
        while (values >> v) big = std::fmax(big, std::fabs(v)), small = std::fmin(small, std::fabs(v));
        const std::string &line = *std::find_if(host.rend() - k, host.rend(), [](auto &h) { return h.size() >= 107; });
        char cond[16];
        std::snprintf(cond, sizeof cond, "%8.1E", big / small);
        EXPECT_EQ(line.substr(99, 8), cond) << line;
    }
    EXPECT_GT(pages, 3);  // both nonlinear rows of HS071 stay in the working set
}

} // namespace
