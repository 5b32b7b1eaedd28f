// The printed output of E04UCA and E04USA by major print level, and the switch to central
// differences when forward differences can no longer resolve the reduced gradient.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

using zek_test::qp::kBig;
using zek_test::sqp::Faults;
using zek_test::sqp::Nlp;
using zek_test::sqp::Out;

// HS 71: two nonlinear rows (one an equality at 40), bounds on all variables.
Nlp hs071() {
    Nlp p;
    p.n = 4;
    p.ncnln = 2;
    p.bl = {1, 1, 1, 1, 25, 40};
    p.bu = {5, 5, 5, 5, kBig, 40};
    p.x0 = {1, 5, 5, 1};
    p.f = [](const double *x, double *g) {
        g[0] = x[3] * (2 * x[0] + x[1] + x[2]);
        g[1] = x[0] * x[3];
        g[2] = x[0] * x[3] + 1;
        g[3] = x[0] * (x[0] + x[1] + x[2]);
        return x[0] * x[3] * (x[0] + x[1] + x[2]) + x[2];
    };
    p.con = [](const double *x, double *c, double *j) {
        c[0] = x[0] * x[1] * x[2] * x[3];
        c[1] = x[0] * x[0] + x[1] * x[1] + x[2] * x[2] + x[3] * x[3];
        j[0] = x[1] * x[2] * x[3];
        j[2] = x[0] * x[2] * x[3];
        j[4] = x[0] * x[1] * x[3];
        j[6] = x[0] * x[1] * x[2];
        for (int k = 0; k < 4; ++k) j[1 + 2 * k] = 2 * x[k];
    };
    p.xstar = {1.0, 4.7429994, 3.8211503, 1.3794082};
    return p;
}

// HS 35: a quadratic under one linear row, no nonlinear rows.
Nlp hs035() {
    Nlp p;
    p.n = 3;
    p.nclin = 1;
    p.a = {1, 1, 2};
    p.bl = {0, 0, 0, -kBig};
    p.bu = {kBig, kBig, kBig, 3};
    p.x0 = {0.5, 0.5, 0.5};
    p.f = [](const double *x, double *g) {
        g[0] = -8 + 4 * x[0] + 2 * x[1] + 2 * x[2];
        g[1] = -6 + 4 * x[1] + 2 * x[0];
        g[2] = -4 + 2 * x[2] + 2 * x[0];
        return 9 - 8 * x[0] - 6 * x[1] - 4 * x[2] + 2 * x[0] * x[0] + 2 * x[1] * x[1] + x[2] * x[2] + 2 * x[0] * x[1] +
               2 * x[0] * x[2];
    };
    p.xstar = {4.0 / 3, 7.0 / 9, 4.0 / 9};
    return p;
}

// A valley whose floor sits far from zero: forward differences of F ~ 1000 lose the gradient
// long before the optimality tolerance is met.  Optimum (2, 1/2).
Nlp valley() {
    Nlp p;
    p.n = 2;
    p.bl = {-10, -10};
    p.bu = {10, 10};
    p.x0 = {-1, 2};
    p.f = [](const double *x, double *g) {
        const double u = x[0] - 2, v = x[0] * x[1] - 1;
        g[0] = 2 * u + 2 * v * x[1];
        g[1] = 2 * v * x[0];
        return 1000 + u * u + v * v;
    };
    p.xstar = {2, 0.5};
    return p;
}

bool has_prefix(const std::vector<std::string> &lines, const std::string &prefix) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string &h) { return h.rfind(prefix, 0) == 0; });
}

// The line after the first line equal to `heading` (empty when there is none).
std::string line_after(const std::vector<std::string> &lines, const std::string &heading) {
    const auto it = std::find(lines.begin(), lines.end(), heading);
    return it == lines.end() || it + 1 == lines.end() ? std::string() : *(it + 1);
}

TEST(SqpPrint, LinesAndPagesFollowThePrintLevel) {
    struct Row {
        bool nonlinear;
        int level;
        const char *present;  // a line beginning so must appear
        const char *absent;   // and no line beginning so (nullptr: no such check)
    };
    const char *short_nln = "  Maj  Mnr    Step Merit Function Norm Gz  Violtn Cond Hz";
    const char *long_nln = "  Maj  Mnr    Step Nfun  Merit Function Norm Gz  Violtn   Nz  Bnd  Lin  Nln Penalty  Cond H "
                           "Cond Hz  Cond T Conv";
    const char *short_obj = "  Maj  Mnr    Step      Objective Norm Gz Cond Hz";
    const char *long_obj = "  Maj  Mnr    Step Nfun       Objective Norm Gz   Nz  Bnd  Lin  Cond H Cond Hz  Cond T Conv";
    const char *varbl = " Varbl State     Value       Lower Bound   Upper Bound    Lagr Mult   Slack";
    const Row rows[] = {
        {true, 0, nullptr, " Exit E04UCA"},
        {true, 1, " N Con State     Value       Lower Bound   Upper Bound    Lagr Mult   Slack", short_nln},
        {true, 1, " N   2    EQ             40            40            40", nullptr},
        {true, 1, " Exit from NP problem after ", nullptr},
        {true, 5, short_nln, varbl},
        {true, 10, long_nln, short_nln},
        {true, 10, varbl, nullptr},
        {false, 1, " L Con State     Value       Lower Bound   Upper Bound    Lagr Mult   Slack", " N Con"},
        {false, 5, short_obj, " Major iteration    "},
        {false, 10, long_obj, nullptr},
        {true, 20, " Major iteration    0", "    G0  TOLABS  ALFMAX        "},
        {true, 20, " Norm of the nonlinear constraint violations = ", nullptr},
        {true, 20, " Nonlinear constraints      ", nullptr},
        {true, 20, " Diagonals of  R  =         ", nullptr},
        {true, 30, " Start of major itn     1", nullptr},
        {true, 30, "    G0  TOLABS  ALFMAX        ", nullptr},
        {true, 30, " ALFA    FTRY    GTRY          ", " ALFA    FTRY                  "},
        {true, 30, " ALFBST  FBEST   GBEST         ", nullptr},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string(row.nonlinear ? "HS71 level " : "HS35 level ") + std::to_string(row.level));
        zek_test::OutputCapture capture;
        const Out r = zek_test::sqp::run_uca(row.nonlinear ? hs071() : hs035(),
                                             {"Major Print Level = " + std::to_string(row.level)});
        const std::vector<std::string> &host = capture.host();
        EXPECT_EQ(r.ifail, 0);
        if (row.present != nullptr) {
            EXPECT_TRUE(has_prefix(host, row.present)) << row.present;
        }
        if (row.absent != nullptr) {
            EXPECT_FALSE(has_prefix(host, row.absent)) << row.absent;
        }
    }
}

TEST(SqpPrint, IterationLinesHaveTheirWidthsAndFlags) {
    struct Row {
        bool nonlinear;
        int level;
        const char *heading;
        std::size_t width;
    };
    const Row rows[] = {
        {true, 5, "  Maj  Mnr    Step Merit Function Norm Gz  Violtn Cond Hz", 64},
        {false, 5, "  Maj  Mnr    Step      Objective Norm Gz Cond Hz", 56},
        {true, 10,
         "  Maj  Mnr    Step Nfun  Merit Function Norm Gz  Violtn   Nz  Bnd  Lin  Nln Penalty  Cond H Cond Hz  Cond "
         "T Conv",
         112},
        {false, 10, "  Maj  Mnr    Step Nfun       Objective Norm Gz   Nz  Bnd  Lin  Cond H Cond Hz  Cond T Conv", 90},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.heading);
        zek_test::OutputCapture capture;
        zek_test::sqp::run_uca(row.nonlinear ? hs071() : hs035(), {"Major Print Level = " + std::to_string(row.level)});
        const std::vector<std::string> &host = capture.host();
        const std::string first = line_after(host, row.heading);
        EXPECT_EQ(first.size(), row.width) << first;
        EXPECT_EQ(first.substr(0, 5), "    0") << first;
        // The last iteration line is the converged one: the gradient flag (and feasibility) are met.
        const auto last = std::find_if(host.rbegin(), host.rend(), [&](const std::string &h) {
            return h.size() == row.width && h.find_first_not_of(" 0123456789") == 12;
        });
        ASSERT_NE(last, host.rend());
        EXPECT_EQ(last->substr(last->size() - (row.nonlinear ? 2 : 1)), row.nonlinear ? "TT" : "T") << *last;
    }
}

TEST(SqpPrint, LineSearchTraceWithoutGradients) {
    Faults skip;
    skip.skip_gradient = 3;  // an estimated element: the search runs on values alone
    zek_test::OutputCapture capture;
    const Out r = zek_test::sqp::run_uca(hs071(), {"Major Print Level = 30"}, skip);
    const std::vector<std::string> &host = capture.host();
    EXPECT_EQ(r.ifail, 0);
    EXPECT_TRUE(has_prefix(host, " ALFA    FTRY                  "));
    EXPECT_TRUE(has_prefix(host, " ALFBST  FBEST                 "));
    EXPECT_FALSE(has_prefix(host, " ALFA    FTRY    GTRY          "));
}

// With the gradient estimated, forward differences run out of accuracy near the solution; the
// switch to central ones must be announced and must buy the accuracy of the supplied-gradient run.
TEST(SqpCentralSwitch, EstimatedGradientsReachTheOptimum) {
    const Nlp p = valley();
    for (int missing = 0; missing < p.n; ++missing) {
        SCOPED_TRACE(missing);
        Faults skip;
        skip.skip_gradient = missing;
        zek_test::OutputCapture capture;
        const Out r = zek_test::sqp::run_uca(p, {"Major Print Level = 5"}, skip);
        EXPECT_EQ(r.ifail, 0);
        for (int j = 0; j < p.n; ++j) EXPECT_NEAR(r.x[j], p.xstar[j], 1e-6);
        EXPECT_TRUE(has_prefix(capture.host(), " XXX  Switched to central differences at major itn"));
    }
    // Exact derivatives never switch.
    zek_test::OutputCapture capture;
    EXPECT_EQ(zek_test::sqp::run_uca(p, {"Major Print Level = 5"}).ifail, 0);
    EXPECT_FALSE(has_prefix(capture.host(), " XXX  Switched to central"));
}

} // namespace
