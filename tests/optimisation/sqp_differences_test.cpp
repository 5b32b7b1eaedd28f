// Difference intervals and difference points of E04UCA on a variable the objective is linear in, with
// its gradient element left to be estimated: the interval stays near sqrt(EPSRF), and no point the
// solver asks for leaves the bounds, even when the variable starts (and ends) on one.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

using zek_test::qp::kBig;
using zek_test::sqp::Faults;
using zek_test::sqp::Nlp;

double worst_excursion = 0.0;  // largest distance outside [0, 3] of any point the objective saw

// min (x1-1)^2 + (x2-2)^2 + slope x3  s.t.  x1 + x2 <= 2.5,  x1 x3 >= 0.5,  0 <= x <= 3.
Nlp linear_in_x3(double slope, double x3) {
    Nlp p;
    p.n = 3;
    p.nclin = 1;
    p.ncnln = 1;
    p.a = {1, 1, 0};
    p.bl = {0, 0, 0, -kBig, 0.5};
    p.bu = {3, 3, 3, 2.5, kBig};
    p.x0 = {1, 1, x3};
    p.f = [slope](const double *x, double *g) {
        for (int j = 0; j < 3; ++j) worst_excursion = std::max({worst_excursion, -x[j], x[j] - 3.0});
        g[0] = 2 * (x[0] - 1);
        g[1] = 2 * (x[1] - 2);
        g[2] = slope;
        return (x[0] - 1) * (x[0] - 1) + (x[1] - 2) * (x[1] - 2) + slope * x[2];
    };
    p.con = [](const double *x, double *c, double *j) {
        c[0] = x[0] * x[2];
        j[0] = x[2];
        j[1] = 0;
        j[2] = x[0];
    };
    return p;
}

// The forward interval printed for variable j in the interval table, or NaN.
double forward_interval(const std::vector<std::string> &host, int j) {
    const auto head = std::find(host.begin(), host.end(), "    J      X(J)   Forward DX(J)   Central DX(J)      Error est.");
    for (auto it = head; it != host.end(); ++it) {
        long jj = 0;
        double x = 0, fwd = 0;
        if (std::sscanf(it->c_str(), "%ld%lf%lf", &jj, &x, &fwd) == 3 && jj == j) return fwd;
    }
    return std::nan("");
}

TEST(SqpDifferences, LinearVariableKeepsAShortIntervalInsideTheBounds) {
    struct Row {
        double slope, x3, x3_final;
        const char *difference_option;  // empty: forward, switching to central as the run needs
    } rows[] = {
        // x3 = 0.5 / x1 with x1 the root of 4 x1 - 3 = 0.5 / x1^2 (on x1 + x2 = 2.5).
        {1.0, 1.0, 0.5535737822176665, ""},
        {-1.0, 3.0, 3.0, ""},                  // starts and ends on its upper bound
        {-1.0, 3.0, 3.0, "Central Difference Interval = 1e-4"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.x3);
        Faults f;
        f.skip_gradient = 2;
        worst_excursion = 0.0;
        std::vector<std::string> options = {"Major Print Level = 1"};
        if (*row.difference_option) options.push_back(row.difference_option);
        std::vector<std::string> host;
        zek_test::sqp::Out r;
        {
            zek_test::OutputCapture capture;
            r = zek_test::sqp::run_uca(linear_in_x3(row.slope, row.x3), options, f);
            host = capture.host();
        }
        EXPECT_EQ(r.ifail, 0);
        EXPECT_NEAR(r.x[2], row.x3_final, 1e-6);
        EXPECT_EQ(worst_excursion, 0.0);
        if (!*row.difference_option) {
            // sqrt(EPSRF) (1 + |x3|) is about 1e-8 to 3e-8 for the default function precision.
            const double h = forward_interval(host, 3);
            EXPECT_GT(h, 1e-10);
            EXPECT_LT(h, 1e-6);
        }
    }
}

} // namespace
