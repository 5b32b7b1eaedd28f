// The printed output of E04UCA by major print level: the lines, pages and traces of each level, the exits
// and the checks of the user's derivatives, the switch to central differences when forward differences
// can no longer resolve the reduced gradient, the diagonals of the QP subproblem's triangle T, the
// difference intervals of a variable the objective is linear in, and the step-length searches through
// their trace at the debug level (on a few one-variable problems whose searches need every kind of
// step, with gradients and on values alone, each search prints all its labels and the printed state
// holds together).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

using zek_test::qp::has_line;
using zek_test::qp::kBig;
using zek_test::sqp::Faults;
using zek_test::sqp::Nlp;
using zek_test::sqp::Out;
using zek_test::sqp::fault;
using zek_test::sqp::run_uca;

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

// At each print level the lines, pages and traces it prints, and no others; each exit, under an option or
// a planted fault, with a line of its page.  A wrong derivative is caught at each verify level that
// checks it; with none planted, each check passes.  The valley's runs reach the optimum, with a gradient
// element estimated too: the switch to central differences is announced then (never with exact
// derivatives) and buys the accuracy of the exact run.  On every page the extreme ratio of T's diagonals
// is the Cond T of the iteration line above it.
TEST(SqpPrint, LinesPagesTracesAndExits) {
    struct Row {
        bool nonlinear;         // HS071, or the valley
        const char *option;     // besides the print level
        int level;
        Faults faults;
        int ifail, iter;        // iter: the most iterations (-1: any)
        const char *present;    // a line beginning so must appear (empty: nothing may; null: no check) ...
        std::size_t width;      // ... followed by a line this long (0: not checked)
        const char *absent;     // no line may begin so (null: no check)
    };
    const char *short_nln = "  Maj  Mnr    Step Merit Function Norm Gz  Violtn Cond Hz";
    const char *short_valley = "  Maj  Mnr    Step      Objective Norm Gz Cond Hz";
    const Faults none, skip0 = fault(&Faults::skip_gradient, 0), skip1 = fault(&Faults::skip_gradient, 1);
    const Faults skip3 = fault(&Faults::skip_gradient, 3), wrong = fault(&Faults::wrong_gradient, 0);
    const Faults wg2 = fault(&Faults::wrong_gradient, 2), wj3 = fault(&Faults::wrong_jacobian, 3);
    const Row rows[] = {
        {true, "", 0, none, 0, -1, "", 0, " Exit E04UCA"},
        {true, "", 1, none, 0, -1, " N   2    EQ             40            40            40", 0, short_nln},
        {true, "", 5, none, 0, -1, short_nln, 64, " Varbl State"},
        {true, "", 10, none, 0, -1,
         "  Maj  Mnr    Step Nfun  Merit Function Norm Gz  Violtn   Nz  Bnd  Lin  Nln Penalty  Cond H Cond Hz  Cond "
         "T Conv",
         112, short_nln},
        {false, "", 5, none, 0, -1, short_valley, 56, " N Con"},
        {false, "", 5, skip0, 0, -1, short_valley, 56, " N Con"},
        {false, "", 5, skip1, 0, -1, short_valley, 56, " N Con"},
        {false, "", 10, none, 0, -1,
         "  Maj  Mnr    Step Nfun       Objective Norm Gz   Nz  Bnd  Lin  Cond H Cond Hz  Cond T Conv", 90,
         " Major iteration    "},
        {true, "", 20, none, 0, -1, " Norm of the nonlinear constraint violations = ", 0, "    G0  TOLABS  ALFMAX        "},
        {true, "", 30, none, 0, -1, " ALFBST  FBEST   GBEST         ", 0, " ALFA    FTRY                  "},
        {true, "", 30, skip3, 0, -1, " ALFA    FTRY                  ", 0, " ALFA    FTRY    GTRY          "},
        {true, "", 1, none, 0, -1, " Exit E04UCA - Optimal solution found.", 0, nullptr},
        {true, "Major Iterations Limit = 1", 1, none, 4, 1, " Exit E04UCA - Too many major iterations.             ", 0,
         nullptr},
        {true, "Major Iterations Limit = 0", 1, none, 4, 0, nullptr, 0, nullptr},  // only the start is checked
        {true, "", 1, fault(&Faults::stop_after, 2), -1, -1, " Exit E04UCA - User requested termination.", 0, nullptr},
        {true, "Verify Level = 1", 1, wrong, 7, -1, " Exit E04UCA - Large errors found in the derivatives. ", 0, nullptr},
        {true, "Verify Level = 1", 1, wrong, 7, -1,
         " XXX  There seem to be     1  incorrect objective gradients out of the     4", 0, nullptr},
        {true, "", 1, skip3, 0, -1, " The user sets      3   out of     4   objective gradient elements.", 0, nullptr},
        {true, "Derivative Level = 0", 1, none, 0, -1, " Derivative level increased to    3", 0, nullptr},
        {true, "Verify Level = 1", 1, wg2, 7, -1, nullptr, 0, nullptr},
        {true, "Verify Level = 3", 1, wg2, 7, -1, nullptr, 0, nullptr},
        {true, "Verify Level = 2", 1, wj3, 7, -1, nullptr, 0, nullptr},
        {true, "Verify Level = 3", 1, wj3, 7, -1, nullptr, 0, nullptr},
        {true, "Verify Level = 13", 1, fault(&Faults::wrong_jacobian, 0), 7, -1, nullptr, 0, nullptr},
        {true, "Verify Level = 1", 1, none, 0, -1, nullptr, 0, nullptr},
        {true, "Verify Level = 3", 1, none, 0, -1, nullptr, 0, nullptr},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string(row.option) + " level " + std::to_string(row.level) + (row.present ? row.present : ""));
        zek_test::OutputCapture capture;
        const Nlp p = row.nonlinear ? zek_test::sqp::hs071() : valley();
        const Out r = run_uca(p, {"Major Print Level = " + std::to_string(row.level), row.option}, row.faults);
        const std::vector<std::string> &host = capture.host();
        EXPECT_EQ(r.ifail, row.ifail);
        EXPECT_LE(r.iter, row.iter < 0 ? r.iter : row.iter);
        EXPECT_TRUE(row.present == nullptr || (*row.present ? has_line(host, row.present) : host.empty()));
        EXPECT_TRUE(row.absent == nullptr || !has_line(host, row.absent));
        const auto at = std::find(host.begin(), host.end(), row.present ? row.present : "");
        if (row.width > 0 && at != host.end() && at + 1 != host.end()) {
            EXPECT_EQ(at[1].size(), row.width) << at[1];
            // The converged line closes the table: the gradient flag (and feasibility's) are met.
            const auto last = std::find_if(host.rbegin(), host.rend(), [&](const std::string &h) { return h.size() == row.width; });
            EXPECT_EQ(last->substr(last->size() - (row.nonlinear ? 2 : 1)), row.nonlinear ? "TT" : "T") << *last;
        }
        if (!row.nonlinear) {
            for (int j = 0; j < p.n; ++j) EXPECT_NEAR(r.x[j], p.xstar[j], 1e-6);
            EXPECT_EQ(has_line(host, " XXX  Switched to central differences at major itn"), row.faults.skip_gradient >= 0);
        }
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
        EXPECT_TRUE(row.level != 20 || pages > 3);  // both nonlinear rows of HS071 stay in the working set
    }
}

double excursion = 0.0;  // largest distance outside [0, 3] of a point the objective saw

// min (x1-1)^2 + (x2-2)^2 + s x3  s.t.  x1 + x2 <= 2.5,  x1 x3 >= 0.5,  0 <= x <= 3, the gradient's x3
// element estimated.  With s = 1, x3 = 0.5 / x1 and x1 solves 4 x1 - 3 = 0.5 / x1^2; with s = -1, x3 = 3.
TEST(SqpDifferences, LinearVariableKeepsAShortIntervalInsideTheBounds) {
    const struct { double s, x3, x3_final; const char *option; } rows[] = {
        {1, 1, 0.5535737822176665, ""}, {-1, 3, 3, ""}, {-1, 3, 3, "Central Difference Interval = 1e-4"}};
    for (const auto &row : rows) {
        Nlp p;
        p.n = 3, p.nclin = 1, p.ncnln = 1;
        p.a = {1, 1, 0}, p.bl = {0, 0, 0, -kBig, 0.5}, p.bu = {3, 3, 3, 2.5, kBig};
        p.x0 = {1, 1, row.x3};
        p.f = [s = row.s](const double *x, double *g) {
            for (int j = 0; j < 3; ++j) excursion = std::max({excursion, -x[j], x[j] - 3.0});
            g[0] = 2 * (x[0] - 1), g[1] = 2 * (x[1] - 2), g[2] = s;
            return (x[0] - 1) * (x[0] - 1) + (x[1] - 2) * (x[1] - 2) + s * x[2];
        };
        p.con = [](const double *x, double *c, double *j) { c[0] = x[0] * x[2], j[0] = x[2], j[1] = 0, j[2] = x[0]; };
        excursion = 0.0;
        zek_test::OutputCapture capture;
        const Out r = run_uca(p, {"Major Print Level = 1", row.option}, {-1, -1, 2});
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

Nlp one_variable(double x0, double (*f)(double x, double *g)) {
    Nlp p;
    p.n = 1, p.bl = {-100}, p.bu = {100}, p.x0 = {x0};
    p.f = [f](const double *x, double *g) { return f(x[0], g); };
    return p;
}

// Values after a label of 31 characters.
std::vector<double> values(const std::string &line) {
    std::istringstream in(line.size() > 31 ? line.substr(31) : "");
    std::vector<double> v;
    for (double d; in >> d;) v.push_back(d);
    return v;
}

bool starts(const std::string &line, const char *label) { return line.rfind(label, 0) == 0; }

TEST(SqpSearchTrace, EveryLabelAppearsAndTheStateHoldsTogether) {
    // x^2 + sin x (an inflection leaves the cubic without a minimiser), a smoothed |x| (fits overshoot
    // the narrow minimum: forced and geometric bisections), x - log x (no value left of zero).
    const auto wave = [](double x, double *g) { return *g = 2 * x + std::cos(x), x * x + std::sin(x); };
    const auto vee = [](double x, double *g) { const double r = std::sqrt(1e-6 + x * x); return *g = x / r, r; };
    const auto logb = [](double x, double *g) { return *g = 1 - 1 / x, x - std::log(x); };
    const struct {
        bool slope;
        double x0;
        double (*f)(double, double *);
    } rows[] = {{true, 5, wave}, {true, 3, vee}, {false, 10, logb}, {false, 1, vee}};
    const std::vector<std::string> common = {
        "    G0  TOLABS  ALFMAX        ", " TARGTG  TOLREL   EPSAF        ", " CRAMPD                        ",
        " A       B       B - A   TOL   ", " NSAMEA  NSAMEB  NUMF          ", " BRAKTD  EXTRAP  CLOSEF  IMPRVD"};
    // The labels each kind of search must print: its own, then those both print.
    std::vector<std::string> want[2] = {
        {" ALFA    FTRY                  ", " ALFAV   FV                    ", " FOUND   QUITI   QUITFZ  QUITS ",
         " ALFBST  FBEST                 ", " ALFAW   FW                    ", " Parabolic fit,    two points.",
         " Parabolic fit,  three points.", " Exponent reduced.  Trial point", " Geo. bisection."},
        {" ALFA    FTRY    GTRY          ", " FOUND   QUITI                 ", " ALFBST  FBEST   GBEST         ",
         " ALFAW   FW      GW            ", "Cubic.", "Parabola.", "Bisection.", " Geo. bisection. XTRY,DAUX,DTRY"}};
    for (std::vector<std::string> &w : want) w.insert(w.end(), common.begin(), common.end());
    std::set<std::string> seen[2];
    for (const auto &row : rows) {
        SCOPED_TRACE(row.x0);
        zek_test::OutputCapture capture;
        const Out r = run_uca(one_variable(row.x0, row.f), {"Major Print Level = 30", "Line Search Tolerance = 0.01"},
                              fault(&Faults::skip_gradient, row.slope ? -1 : 0));
        const std::vector<std::string> host = capture.host();
        EXPECT_EQ(r.ifail, 0);
        int searches = 0, numf = 0;
        double alfmax = 0, accepted = -1;
        bool first = false;
        for (std::size_t k = 0; k < host.size(); ++k) {
            const std::string &h = host[k];
            for (const std::string &label : want[row.slope])
                if (starts(h, label.c_str())) seen[row.slope].insert(label);
            const std::vector<double> v = values(h);
            if (starts(h, "    G0")) {
                ++searches, numf = 0, alfmax = v.at(2), first = true;
            } else if (starts(h, " ALFA ")) {
                EXPECT_TRUE(!first || v.at(0) == std::min(1.0, alfmax)) << h;  // the subproblem's own step first
                first = false;
            } else if (starts(h, " A       B")) {
                EXPECT_NEAR(v.at(2), v.at(1) - v.at(0), 2e-6 * std::fmax(std::fabs(v[0]), std::fabs(v[1]))) << h;
                EXPECT_LE(v[0], v[1]);
            } else if (starts(h, " NSAMEA")) {
                EXPECT_TRUE(v.at(0) >= 0 && v.at(1) >= 0 && v[0] == std::floor(v[0]) && v[1] == std::floor(v[1])) << h;
                EXPECT_EQ(v.at(2), ++numf) << h;  // one evaluation per trial
            } else if (starts(h, " CRAMPD") || starts(h, " BRAKTD") || starts(h, " FOUND")) {
                for (double flag : v) EXPECT_TRUE(flag == 0 || flag == 1) << h;
            } else if (starts(h, " ALFBST") && host.at(k - 2).empty()) {
                // The end of a search: a best step with sufficient decrease is the step taken.
                accepted = v.at(0) > 0 && v.at(1) <= 0 ? v[0] : -1;
            } else if (starts(h, "  Maj  Mnr") && accepted > 0) {
                std::istringstream line(host.at(k + 1));
                double major = 0, minor = 0, step = 0;
                line >> major >> minor >> step;
                EXPECT_NEAR(step, accepted, 0.051 * accepted) << host[k + 1];
                accepted = -1;
            }
        }
        EXPECT_GT(searches, 0);
    }
    for (int slope = 0; slope < 2; ++slope)
        for (const std::string &label : want[slope]) EXPECT_EQ(seen[slope].count(label), 1u) << slope << " '" << label << "'";
}

} // namespace
