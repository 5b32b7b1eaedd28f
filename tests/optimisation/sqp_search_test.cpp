// The step-length searches of E04UCA through their trace at the debug print level: on a few
// one-variable problems whose searches need every kind of step, each search (with gradients, and on
// values alone when a derivative is estimated) prints all its labels, and the printed state holds
// together: the interval's width, counts and flags, the first trial, and the accepted step.
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

using zek_test::sqp::Nlp;

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
    std::vector<std::string> want[2] = {
        {" ALFA    FTRY                  ", " ALFAV   FV                    ", " FOUND   QUITI   QUITFZ  QUITS ",
         " ALFBST  FBEST                 ", " ALFAW   FW                    ", " Parabolic fit,    two points.",
         " Parabolic fit,  three points.", " Exponent reduced.  Trial point", " Geo. bisection."},
        {" ALFA    FTRY    GTRY          ", " FOUND   QUITI                 ", " ALFBST  FBEST   GBEST         ",
         " ALFAW   FW      GW            ", "Cubic.", "Parabola.", "Bisection.", " Geo. bisection. XTRY,DAUX,DTRY"}};
    std::set<std::string> seen[2];
    for (const auto &row : rows) {
        SCOPED_TRACE(row.x0);
        zek_test::sqp::Faults faults;
        faults.skip_gradient = row.slope ? -1 : 0;
        zek_test::OutputCapture capture;
        const zek_test::sqp::Out r = zek_test::sqp::run_uca(
            one_variable(row.x0, row.f), {"Major Print Level = 30", "Line Search Tolerance = 0.01"}, faults);
        const std::vector<std::string> host = capture.host();
        EXPECT_EQ(r.ifail, 0);
        int searches = 0, numf = 0;
        double alfmax = 0, accepted = -1;
        bool first = false;
        for (std::size_t k = 0; k < host.size(); ++k) {
            const std::string &h = host[k];
            for (const std::string &label : want[row.slope])
                if (starts(h, label.c_str())) seen[row.slope].insert(label);
            for (const std::string &label : common)
                if (starts(h, label.c_str())) seen[row.slope].insert(label);
            const std::vector<double> v = values(h);
            if (starts(h, "    G0")) {
                ++searches, numf = 0, alfmax = v.at(2), first = true;
            } else if (starts(h, " ALFA ")) {
                if (first) {
                    EXPECT_EQ(v.at(0), std::min(1.0, alfmax));  // the subproblem's own step first
                }
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
    for (int slope = 0; slope < 2; ++slope) {
        for (const std::string &label : common) EXPECT_EQ(seen[slope].count(label), 1u) << slope << " '" << label << "'";
        for (const std::string &label : want[slope]) EXPECT_EQ(seen[slope].count(label), 1u) << slope << " '" << label << "'";
    }
}

} // namespace
