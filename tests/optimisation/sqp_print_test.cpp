// The printed output of E04UCA by major print level, and the switch to central differences when
// forward differences can no longer resolve the reduced gradient.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

using zek_test::sqp::Faults;
using zek_test::sqp::Nlp;

// A valley whose floor lies at F = 1000: forward differences lose the gradient long before the
// optimality tolerance is met.  No general rows; optimum (2, 1/2).
Nlp valley() {
    Nlp p;
    p.n = 2;
    p.bl = {-10, -10}, p.bu = {10, 10}, p.x0 = {-1, 2}, p.xstar = {2, 0.5};
    p.f = [](const double *x, double *g) {
        const double u = x[0] - 2, v = x[0] * x[1] - 1;
        g[0] = 2 * u + 2 * v * x[1];
        g[1] = 2 * v * x[0];
        return 1000 + u * u + v * v;
    };
    return p;
}

bool has_prefix(const std::vector<std::string> &lines, const std::string &prefix) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string &h) { return h.rfind(prefix, 0) == 0; });
}

TEST(SqpPrint, LinesPagesAndTracesFollowThePrintLevel) {
    struct Row {
        bool nonlinear;
        int level, skip;        // skip: a gradient element left to estimate (-1 none)
        const char *present;    // a line beginning so must appear (empty: nothing may) ...
        std::size_t width;      // ... followed by a line this long (0: not checked)
        const char *absent;     // no line may begin so
    };
    const char *short_nln = "  Maj  Mnr    Step Merit Function Norm Gz  Violtn Cond Hz";
    const Row rows[] = {
        {true, 0, -1, "", 0, " Exit E04UCA"},
        {true, 1, -1, " N   2    EQ             40            40            40", 0, short_nln},
        {true, 5, -1, short_nln, 64, " Varbl State"},
        {true, 10, -1,
         "  Maj  Mnr    Step Nfun  Merit Function Norm Gz  Violtn   Nz  Bnd  Lin  Nln Penalty  Cond H Cond Hz  Cond "
         "T Conv",
         112, short_nln},
        {false, 5, -1, "  Maj  Mnr    Step      Objective Norm Gz Cond Hz", 56, " N Con"},
        {false, 10, -1, "  Maj  Mnr    Step Nfun       Objective Norm Gz   Nz  Bnd  Lin  Cond H Cond Hz  Cond T Conv",
         90, " Major iteration    "},
        {true, 20, -1, " Norm of the nonlinear constraint violations = ", 0, "    G0  TOLABS  ALFMAX        "},
        {true, 30, -1, " ALFBST  FBEST   GBEST         ", 0, " ALFA    FTRY                  "},
        {true, 30, 3, " ALFA    FTRY                  ", 0, " ALFA    FTRY    GTRY          "},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.present);
        Faults f;
        f.skip_gradient = row.skip;
        zek_test::OutputCapture capture;
        const zek_test::sqp::Out r = zek_test::sqp::run_uca(
            row.nonlinear ? zek_test::sqp::hs071() : valley(), {"Major Print Level = " + std::to_string(row.level)}, f);
        const std::vector<std::string> &host = capture.host();
        EXPECT_EQ(r.ifail, 0);
        EXPECT_TRUE(*row.present == '\0' ? host.empty() : has_prefix(host, row.present));  // level 0: silent
        if (row.absent != nullptr) {
            EXPECT_FALSE(has_prefix(host, row.absent));
        }
        const auto at = std::find(host.begin(), host.end(), row.present);
        if (row.width > 0 && at != host.end() && at + 1 != host.end()) {
            EXPECT_EQ(at[1].size(), row.width) << at[1];
            // The converged line closes the table: the gradient flag (and feasibility's) are met.
            const auto last = std::find_if(host.rbegin(), host.rend(), [&](const std::string &h) { return h.size() == row.width; });
            EXPECT_EQ(last->substr(last->size() - (row.nonlinear ? 2 : 1)), row.nonlinear ? "TT" : "T") << *last;
        }
    }
}

// With a gradient element estimated, the switch to central differences is announced and buys the
// accuracy of the run with exact derivatives; exact derivatives never switch.
TEST(SqpCentralSwitch, EstimatedGradientsReachTheOptimum) {
    const Nlp p = valley();
    for (int missing = -1; missing < p.n; ++missing) {
        SCOPED_TRACE(missing);
        Faults skip;
        skip.skip_gradient = missing;
        zek_test::OutputCapture capture;
        const zek_test::sqp::Out r = zek_test::sqp::run_uca(p, {"Major Print Level = 5"}, skip);
        EXPECT_EQ(r.ifail, 0);
        for (int j = 0; j < p.n; ++j) EXPECT_NEAR(r.x[j], p.xstar[j], 1e-6);
        EXPECT_EQ(has_prefix(capture.host(), " XXX  Switched to central differences at major itn"), missing >= 0);
    }
}

} // namespace
