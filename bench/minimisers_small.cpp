// The small minimisers against their peers in the same run:
//  - the bound-constrained cores (E04JYU values only, E04KYY quasi-Newton with gradients, E04KZ_CORE
//    Newton on differenced gradients) against NLopt's NLOPT_LD_LBFGS, on the sums of squares of the
//    Moré-Garbow-Hillstrom problems from their standard starts and ten times them without bounds, and
//    from the standard starts inside a box around the start that cuts most of the minimisers off;
//  - the simplex method (E04CCF) against NLopt's NLOPT_LN_NELDERMEAD on the same problems, unbounded;
//  - the one-variable searches (E04ABF on values, E04BBF with the slope) against GSL's Brent
//    minimiser on a set of functions of one variable with known minimisers.
//
// Evaluations are the calls of the user's routine, whatever each call computes.  The cores run with the
// easy drivers' settings (ETA, XTOL, STEPMX) and the same evaluation budget as the peer, so that a
// solver is judged by where it stops and not by the drivers' fixed limits.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include <gsl/gsl_errno.h>
#include <gsl/gsl_min.h>
#include <gsl/gsl_sf_psi.h>
#include <nlopt.h>

#include "mgh_residuals.h"
#include "zek2/e04.h"

namespace {

using mgh::Dual;
using mgh::Problem;

const Problem *g_problem = nullptr;
long g_calls = 0;

// The sum of squares of the residuals at X, and its gradient 2 J'r when G is not null.
double sum_of_squares(const double *x, double *g) {
    const int m = g_problem->m, n = g_problem->n;
    std::vector<Dual> xd(static_cast<std::size_t>(n)), fd(static_cast<std::size_t>(m));
    for (int j = 0; j < n; ++j) {
        xd[j].v = x[j];
        xd[j].d[j] = 1.0;
    }
    g_problem->residuals(m, n, xd.data(), fd.data());
    ++g_calls;
    double f = 0.0;
    for (int i = 0; i < m; ++i) f += fd[i].v * fd[i].v;
    if (g != nullptr)
        for (int j = 0; j < n; ++j) {
            g[j] = 0.0;
            for (int i = 0; i < m; ++i) g[j] += 2.0 * fd[i].v * fd[i].d[j];
        }
    return f;
}

void zek_values(int *, const int *, const double *x, double *f, int *, double *) { *f = sum_of_squares(x, nullptr); }
void zek_gradient(int *iflag, const int *, const double *x, double *f, double *g, int *, double *) {
    *f = sum_of_squares(x, *iflag == 2 ? g : nullptr);
}
void zek_simplex(const int *, const double *x, double *f) { *f = sum_of_squares(x, nullptr); }
double nlopt_objective(unsigned, const double *x, double *g, void *) { return sum_of_squares(x, g); }

double median(std::vector<double> v) {
    if (v.empty()) return 0.0;
    std::sort(v.begin(), v.end());
    const std::size_t h = v.size() / 2;
    return v.size() % 2 ? v[h] : 0.5 * (v[h - 1] + v[h]);
}

bool near(double f, double fmin) { return std::fabs(f - fmin) <= 1e-6 * std::fabs(fmin) + 1e-10; }

bool at_published_minimum(const Problem &p, double f) {
    for (double fmin : p.minima)
        if (near(f, fmin)) return true;
    return false;
}

struct Run {
    double f;
    long calls;
    int code;  // INFORM, IFAIL or NLopt's result
    bool feasible;
};

// ---- Bound-constrained ----
enum Bound { kJY, kKY, kKZ, kLbfgs, kBoundSolvers };
const char *const kBoundNames[] = {"E04JYU", "E04KYY", "E04KZ_CORE", "LD_LBFGS"};

Run solve_bound(Bound s, const std::vector<double> &start, const std::vector<double> &bl,
                const std::vector<double> &bu) {
    int n = g_problem->n;
    const int maxcal = 1000 * (n + 1);
    std::vector<double> x = start;
    g_calls = 0;
    int code = 0;
    if (s == kLbfgs) {
        nlopt_opt opt = nlopt_create(NLOPT_LD_LBFGS, static_cast<unsigned>(n));
        nlopt_set_min_objective(opt, nlopt_objective, nullptr);
        std::vector<double> lb(bl), ub(bu);
        for (double &e : lb) e = e <= -1e20 ? -HUGE_VAL : e;
        for (double &e : ub) e = e >= 1e20 ? HUGE_VAL : e;
        nlopt_set_lower_bounds(opt, lb.data());
        nlopt_set_upper_bounds(opt, ub.data());
        // About ten digits of f, eight of x: what the cores' XTOL = 100 sqrt(EPS) on x gives.
        nlopt_set_ftol_rel(opt, 1e-10);
        nlopt_set_xtol_rel(opt, 1e-8);
        nlopt_set_maxeval(opt, maxcal);
        double f = 0.0;
        code = nlopt_optimize(opt, x.data(), &f);
        nlopt_destroy(opt);
    } else {
        const double eps = 2.220446049250313e-16;
        const int nn = n * (n - 1) / 2;
        std::vector<double> g(n), hdiag(n), hlower(std::max(1, nn)), w(7 * n + std::max(1, nn));
        std::vector<int> istate(n);
        double f = 0.0, xtol = 100.0 * std::sqrt(eps), norm = 0.0, delta = 0.0;
        for (double e : start) norm = std::hypot(norm, e);
        double stepmx = 1e5 * (1.0 + norm);
        int niter = 0, nf = 0, iprint = -1, iuser = 0;
        double ruser = 0.0;
        if (s == kJY) {
            const double eta = n == 1 ? 0.0 : 0.5;
            E04JYU(&n, zek_values, nullptr, bl.data(), bu.data(), x.data(), &f, g.data(), istate.data(), hdiag.data(),
                   hlower.data(), w.data(), &maxcal, &eta, &xtol, &stepmx, &iuser, &ruser, &niter, &nf, &code);
        } else if (s == kKY) {
            const double eta = n == 1 ? 0.0 : 0.9;
            E04KYY(&n, zek_gradient, nullptr, nullptr, nullptr, &iprint, bl.data(), bu.data(), x.data(), &f, g.data(),
                   istate.data(), hdiag.data(), hlower.data(), w.data(), &maxcal, &eta, &xtol, &stepmx, &iuser,
                   &ruser, &niter, &nf, &code);
        } else {
            const double eta = n < 11 ? 0.5 : (n < 21 ? 0.1 : 0.01);
            E04KZ_CORE(&n, zek_gradient, nullptr, nullptr, nullptr, &iprint, bl.data(), bu.data(), x.data(), &f,
                       g.data(), istate.data(), hdiag.data(), hlower.data(), w.data(), &maxcal, &eta, &xtol, &stepmx,
                       &delta, &iuser, &ruser, &niter, &nf, &code);
        }
    }
    const long calls = g_calls;
    bool feasible = true;
    for (int j = 0; j < n; ++j) feasible = feasible && x[j] >= bl[j] && x[j] <= bu[j];
    return {sum_of_squares(x.data(), nullptr), calls, code, feasible};
}

void bound_table() {
    std::printf("Bound-constrained, sums of squares of the Moré-Garbow-Hillstrom problems: f reached (* = solved), "
                "evaluations, INFORM or NLopt result\n"
                "(solved: a published minimum without bounds; with bounds the least f any solver reached, at a "
                "feasible point)\n%-22s",
                "problem (start, box)");
    for (const char *name : kBoundNames) std::printf(" %23s", name);
    std::printf("\n");
    int count[kBoundSolvers] = {};
    std::vector<double> ratio[kBoundSolvers], evals[kBoundSolvers];
    int runs = 0;
    for (const Problem &p : mgh::mgh_problems()) {
        g_problem = &p;
        // Without bounds from 1x and 10x the start; then 1x inside the box start +- (1 + |start|)/2, which
        // leaves the start interior and holds most minimisers outside.
        for (int variant = 0; variant < 3; ++variant) {
            const bool boxed = variant == 2;
            std::vector<double> start = p.start, bl(p.n, -1e20), bu(p.n, 1e20);
            for (double &e : start) e *= variant == 1 ? 10.0 : 1.0;
            if (boxed)
                for (int j = 0; j < p.n; ++j) {
                    const double d = 0.5 * (1.0 + std::fabs(start[j]));
                    bl[j] = start[j] - d, bu[j] = start[j] + d;
                }
            Run r[kBoundSolvers];
            double best = HUGE_VAL;
            for (int s = 0; s < kBoundSolvers; ++s) {
                r[s] = solve_bound(static_cast<Bound>(s), start, bl, bu);
                if (r[s].feasible && std::isfinite(r[s].f)) best = std::min(best, r[s].f);
            }
            bool ok[kBoundSolvers];
            for (int s = 0; s < kBoundSolvers; ++s)
                ok[s] = r[s].feasible && (boxed ? near(r[s].f, best) : at_published_minimum(p, r[s].f));
            ++runs;
            std::printf("%-18s %3s ", p.name.c_str(), variant == 0 ? "1" : variant == 1 ? "10" : "box");
            for (int s = 0; s < kBoundSolvers; ++s) {
                count[s] += ok[s];
                if (ok[s]) evals[s].push_back(double(r[s].calls));
                std::printf(" %12.6g%c %5ld %2d", r[s].f, ok[s] ? '*' : ' ', r[s].calls, r[s].code);
            }
            std::printf("\n");
            for (int s = 0; s < kLbfgs; ++s)
                if (ok[s] && ok[kLbfgs]) ratio[s].push_back(double(r[s].calls) / double(std::max(1L, r[kLbfgs].calls)));
        }
    }
    std::printf("\nsolved of %d runs (median evaluations over the runs solved):", runs);
    for (int s = 0; s < kBoundSolvers; ++s) std::printf("  %s %d (%g)", kBoundNames[s], count[s], median(evals[s]));
    std::printf("\nmedian evaluations against LD_LBFGS over the runs both solve:");
    for (int s = 0; s < kLbfgs; ++s) std::printf("  %s %.2f (%zu runs)", kBoundNames[s], median(ratio[s]), ratio[s].size());
    std::printf("\n\n");
}

// ---- Simplex ----
Run solve_simplex(bool ours, const std::vector<double> &start) {
    int n = g_problem->n;
    const int maxcal = 2000 * (n + 1);
    // The same absolute spread of the simplex's values for both: ours measures its root mean square
    // deviation, NLopt the distance between the best and the worst.
    const double tol = 1e-12;
    std::vector<double> x = start;
    g_calls = 0;
    int code = 0;
    if (ours) {
        int iw = n + 1;
        double fmin = 0.0;
        std::vector<double> w1(n), w2(n), w3(n), w4(n), w5(n + 1), w6(static_cast<std::size_t>(n + 1) * n);
        code = 1;
        E04CCF(&n, x.data(), &fmin, &tol, &iw, w1.data(), w2.data(), w3.data(), w4.data(), w5.data(), w6.data(),
               zek_simplex, nullptr, &maxcal, &code);
    } else {
        nlopt_opt opt = nlopt_create(NLOPT_LN_NELDERMEAD, static_cast<unsigned>(n));
        nlopt_set_min_objective(opt, nlopt_objective, nullptr);
        nlopt_set_ftol_abs(opt, tol);
        nlopt_set_maxeval(opt, maxcal);
        double f = 0.0;
        code = nlopt_optimize(opt, x.data(), &f);
        nlopt_destroy(opt);
    }
    const long calls = g_calls;
    return {sum_of_squares(x.data(), nullptr), calls, code, true};
}

void simplex_table() {
    std::printf("Simplex method, sums of squares of the Moré-Garbow-Hillstrom problems: f reached (* = a published "
                "minimum), evaluations, IFAIL or NLopt result\n%-22s %23s %23s\n",
                "problem (start x)", "E04CCF", "LN_NELDERMEAD");
    int count[2] = {};
    std::vector<double> ratio, evals[2];
    int runs = 0;
    for (const Problem &p : mgh::mgh_problems()) {
        g_problem = &p;
        for (double factor : {1.0, 10.0}) {
            std::vector<double> start = p.start;
            for (double &e : start) e *= factor;
            const Run r[2] = {solve_simplex(true, start), solve_simplex(false, start)};
            bool ok[2];
            std::printf("%-18s %3g ", p.name.c_str(), factor);
            for (int s = 0; s < 2; ++s) {
                ok[s] = at_published_minimum(p, r[s].f);
                count[s] += ok[s];
                if (ok[s]) evals[s].push_back(double(r[s].calls));
                std::printf(" %12.6g%c %5ld %2d", r[s].f, ok[s] ? '*' : ' ', r[s].calls, r[s].code);
            }
            std::printf("\n");
            ++runs;
            if (ok[0] && ok[1]) ratio.push_back(double(r[0].calls) / double(std::max(1L, r[1].calls)));
        }
    }
    std::printf("\nsolved of %d runs (median evaluations over the runs solved):  E04CCF %d (%g)  LN_NELDERMEAD %d "
                "(%g)\nmedian evaluations E04CCF/LN_NELDERMEAD over the runs both solve: %.2f (%zu runs)\n\n",
                runs, count[0], median(evals[0]), count[1], median(evals[1]), median(ratio), ratio.size());
}

// ---- One variable ----
Dual cosh(const Dual &a) { return mgh::lift(std::cosh(a.v), a, std::sinh(a.v)); }
Dual fabs(const Dual &a) { return mgh::lift(std::fabs(a.v), a, a.v < 0.0 ? -1.0 : 1.0); }
Dual tgamma(const Dual &a) { return mgh::lift(std::tgamma(a.v), a, std::tgamma(a.v) * gsl_sf_psi(a.v)); }

struct Line {
    const char *name;
    double a, b, xmin;
    Dual (*f)(const Dual &x);
};
const Line kLines[] = {
    {"(x-2)^2+1", 0.0, 5.0, 2.0, [](const Dual &x) { return (x - 2.0) * (x - 2.0) + 1.0; }},
    {"sin x", 0.0, 2.0 * M_PI, 1.5 * M_PI, [](const Dual &x) { return sin(x); }},
    {"x^4-3x^3+2", 0.0, 5.0, 2.25, [](const Dual &x) { return x * x * x * (x - 3.0) + 2.0; }},
    {"e^x-2x", 0.0, 2.0, M_LN2, [](const Dual &x) { return exp(x) - 2.0 * x; }},
    {"x ln x", 0.1, 2.0, 1.0 / M_E, [](const Dual &x) { return x * log(x); }},
    {"-x e^-x", 0.0, 5.0, 1.0, [](const Dual &x) { return -x * exp(-x); }},
    {"x+1/x", 0.1, 5.0, 1.0, [](const Dual &x) { return x + 1.0 / x; }},
    {"(x^2-1)^2", 0.0, 3.0, 1.0, [](const Dual &x) { return (x * x - 1.0) * (x * x - 1.0); }},
    {"gamma", 1.0, 2.0, 1.4616321449683623, [](const Dual &x) { return tgamma(x); }},
    {"|x-0.3|+0.1", 0.0, 1.0, 0.3, [](const Dual &x) { return fabs(x - 0.3) + 0.1; }},
    {"x^6", -1.0, 2.0, 0.0, [](const Dual &x) { return x * x * x * x * x * x; }},
    {"cosh(x-0.7)", -3.0, 3.0, 0.7, [](const Dual &x) { return cosh(x - 0.7); }},
    {"(ln x)^2", 0.5, 4.0, 1.0, [](const Dual &x) { return log(x) * log(x); }},
    {"1-e^-(x-3)^2", 0.0, 10.0, 3.0, [](const Dual &x) { return 1.0 - exp(-(x - 3.0) * (x - 3.0)); }},
    {"(x-1e6)^2", 0.0, 2e6, 1e6, [](const Dual &x) { return (x - 1e6) * (x - 1e6); }},
    {"(x-1e-4)^2", 0.0, 1e-3, 1e-4, [](const Dual &x) { return (x - 1e-4) * (x - 1e-4); }},
};
const Line *g_line = nullptr;

double line_value(double x, double *g) {
    Dual xd(x);
    xd.d[0] = 1.0;
    const Dual f = g_line->f(xd);
    ++g_calls;
    if (g != nullptr) *g = f.d[0];
    return f.v;
}
void zek_line(const double *x, double *f, int *, double *) { *f = line_value(*x, nullptr); }
void zek_line_slope(const double *x, double *f, double *g, int *, double *) { *f = line_value(*x, g); }
double gsl_line(double x, void *) { return line_value(x, nullptr); }

enum LineSolver { kAB, kBB, kBrent, kLineSolvers };
const char *const kLineNames[] = {"E04ABF", "E04BBF", "gsl brent"};

// Both searches asked for x to sqrt(EPS) relative and absolute.  Ours ends when x is within 2 tol of both
// ends of its bracket, GSL's test when the bracket is narrower than its tolerance: GSL gets 4 tol so that
// both stop on the same bracket.
Run solve_line(LineSolver s, double *xout) {
    const double eps = 2.220446049250313e-16, tol = std::sqrt(eps);
    int maxcal = 100, code = 0, iuser = 0;
    double ruser = 0.0, a = g_line->a, b = g_line->b, x = 0.0, f = 0.0, g = 0.0, e1 = 0.0, e2 = 0.0;
    g_calls = 0;
    if (s == kAB) {
        code = 1;
        E04ABF(zek_line, nullptr, &e1, &e2, &a, &b, &maxcal, &x, &f, &iuser, &ruser, &code);
    } else if (s == kBB) {
        code = 1;
        E04BBF(zek_line_slope, nullptr, &e1, &e2, &a, &b, &maxcal, &x, &f, &g, &iuser, &ruser, &code);
    } else {
        // Brent's method in GSL needs a point below both ends: the golden-section points are tried in turn,
        // their evaluations counted; when neither is below both ends the peer has no start (code -1).
        gsl_min_fminimizer *m = gsl_min_fminimizer_alloc(gsl_min_fminimizer_brent);
        gsl_function fn = {gsl_line, nullptr};
        const double fa = line_value(a, nullptr), fb = line_value(b, nullptr);
        const double golden = 0.5 * (3.0 - std::sqrt(5.0));
        code = -1;
        x = a;
        for (double guess : {a + golden * (b - a), b - golden * (b - a)}) {
            const double fg = line_value(guess, nullptr);
            if (fg < fa && fg < fb) {
                gsl_min_fminimizer_set_with_values(m, &fn, guess, fg, a, fa, b, fb);
                code = 0;
                break;
            }
        }
        for (int it = 0; code == 0 && g_calls < maxcal; ++it) {
            gsl_min_fminimizer_iterate(m);
            if (gsl_min_test_interval(gsl_min_fminimizer_x_lower(m), gsl_min_fminimizer_x_upper(m), 4.0 * tol,
                                      4.0 * tol) == GSL_SUCCESS)
                break;
        }
        if (code == 0) x = gsl_min_fminimizer_x_minimum(m);
        gsl_min_fminimizer_free(m);
    }
    const long calls = g_calls;
    *xout = x;
    return {line_value(x, nullptr), calls, code, true};
}

void line_table() {
    std::printf("One variable: x reached (* = solved: x within 1e-6 (1 + |x*|) of the minimiser or f within 1e-12 "
                "(1 + |f*|) of its value), evaluations, IFAIL or code\n%-14s", "function");
    for (const char *name : kLineNames) std::printf(" %28s", name);
    std::printf("\n");
    int count[kLineSolvers] = {};
    std::vector<double> ratio[kLineSolvers], evals[kLineSolvers];
    for (const Line &line : kLines) {
        g_line = &line;
        const double fstar = line_value(line.xmin, nullptr);
        std::printf("%-14s", line.name);
        Run r[kLineSolvers];
        bool ok[kLineSolvers];
        for (int s = 0; s < kLineSolvers; ++s) {
            double x = 0.0;
            r[s] = solve_line(static_cast<LineSolver>(s), &x);
            ok[s] = std::fabs(x - line.xmin) <= 1e-6 * (1.0 + std::fabs(line.xmin)) ||
                    std::fabs(r[s].f - fstar) <= 1e-12 * (1.0 + std::fabs(fstar));
            count[s] += ok[s];
            if (ok[s]) evals[s].push_back(double(r[s].calls));
            std::printf(" %18.12g%c %4ld %2d", x, ok[s] ? '*' : ' ', r[s].calls, r[s].code);
        }
        std::printf("\n");
        for (int s = 0; s < kBrent; ++s)
            if (ok[s] && ok[kBrent]) ratio[s].push_back(double(r[s].calls) / double(std::max(1L, r[kBrent].calls)));
    }
    std::printf("\nsolved of %zu (median evaluations over the runs solved):", sizeof kLines / sizeof kLines[0]);
    for (int s = 0; s < kLineSolvers; ++s) std::printf("  %s %d (%g)", kLineNames[s], count[s], median(evals[s]));
    std::printf("\nmedian evaluations against gsl brent over the runs both solve:  E04ABF %.2f (%zu)  E04BBF %.2f "
                "(%zu)\n",
                median(ratio[kAB]), ratio[kAB].size(), median(ratio[kBB]), ratio[kBB].size());
}

} // namespace

int main() {
    gsl_set_error_handler_off();
    bound_table();
    simplex_table();
    line_table();
}
