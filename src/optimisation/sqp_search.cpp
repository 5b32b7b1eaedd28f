// The step-length searches of the SQP engine on the merit function along the major step p.
//
// Both work on the shifted function psi(a) = M(a) - M(0) - MU a G0 (G0 < 0 the merit function's slope
// at a = 0), so that psi(a) <= 0 is the sufficient-decrease test and the first trial a = 1 (or the
// upper step, when smaller) is the subproblem's own prediction.  They keep an interval [A, B] that
// holds the best point ALFBST so far and a minimiser of psi, and shrink it by safeguarded fits:
//
//   - with gradients (every derivative given by the user: the slope costs nothing) a cubic through the
//     best point and the previous one, W, with their slopes, or a parabola when the cubic has no
//     minimiser; the search ends when the best point has sufficient decrease and a slope within
//     TARGTG = (ETA - MU) |G0| of zero;
//   - without gradients (some derivatives estimated: a slope would cost a difference per column) a
//     parabola through the start (with its slope) and the previous point, then through the three
//     points best, W and V; the search ends at the first point of sufficient decrease that the next
//     fit cannot improve on much.
//
// A fit is accepted only inside the interval and away from its ends; otherwise, and whenever an end
// has stayed put for kSameLimit trials that improved on the best point (the fits then creep towards
// the minimiser from one side), the next trial bisects the part of the interval on the minimiser's
// side, geometrically when that part spans more than a decade above its lower end (from a hundredth
// of its upper end when it starts at zero).  A trial where the functions are not finite cuts the
// step to a tenth of its distance from the best point.  While the best point's slope is negative and
// no trial above it has failed, the search extrapolates towards the upper step ALFMAX.
#include <algorithm>
#include <cmath>
#include <limits>

#include "optimisation/sqp.h"

namespace zek::sqp {

namespace {

constexpr double kMu = 0.0001;        // sufficient decrease: M(a) <= M(0) + MU a G0
constexpr int kSearchLimit = 20;      // trial points per search
constexpr int kSameLimit = 3;         // trials an end may stay put before a bisection is forced
constexpr double kGeoRatio = 10.0;    // a part wider than this ratio above its lower end is split geometrically
constexpr double kGeoFloor = 1e-2;    // lower end of a geometric split of a part that starts at zero
constexpr double kCut = 0.1;          // a non-finite trial: the step to this fraction of its distance
constexpr double kExtrapolate = 4.0;  // largest growth of the step in one extrapolation
constexpr double kSignificant = 0.1;  // without gradients: a gain worth another trial, relative to |FBEST|

inline double at(const double *m, int ld, int i, int j) { return m[i + static_cast<std::ptrdiff_t>(j) * ld]; }

// The merit function at x0 + a p (and its slope when `slope`); x and the model rows move there.
// Values that are not finite come back as +Inf.
int merit_at(Run &run, double a, bool slope, double *phi, double *dphi) {
    const int n = run.n, ncnln = run.ncnln;
    for (int j = 0; j < n; ++j) run.x[j] = run.x0[j] + a * run.p[j];
    const int st = evaluate(run, slope, 0);
    if (st < 0) return st;
    if (st > 0) {
        *phi = std::numeric_limits<double>::infinity();
        *dphi = 0.0;
        return 0;
    }
    double f = *run.objf, d = 0.0;
    if (slope)
        for (int j = 0; j < n; ++j) d += run.g[j] * run.p[j];
    for (int i = 0; i < ncnln; ++i) {
        const double lam = run.lambda[i] + a * run.dlam[i];
        const double v = run.c[i] - (run.slack[i] + a * run.dslk[i]);
        f += -lam * v + 0.5 * run.rho[i] * v * v;
        if (slope) {
            double jp = 0.0;
            for (int j = 0; j < n; ++j) jp += at(run.cjac, run.ldcj, i, j) * run.p[j];
            const double dv = jp - run.dslk[i];
            d += -run.dlam[i] * v - lam * dv + run.rho[i] * v * dv;
        }
    }
    *phi = f;
    *dphi = d;
    if (!std::isfinite(f) || (slope && !std::isfinite(d))) *phi = std::numeric_limits<double>::infinity();
    return 0;
}

// Minimiser of the cubic through (x1, f1, d1) and (x2, f2, d2); NaN when it has none.
double cubic_minimiser(double x1, double f1, double d1, double x2, double f2, double d2) {
    const double z = d1 + d2 - 3.0 * (f1 - f2) / (x1 - x2);
    const double disc = z * z - d1 * d2;
    if (!(disc >= 0.0)) return std::numeric_limits<double>::quiet_NaN();
    const double w = std::copysign(std::sqrt(disc), x2 - x1);
    return x2 - (x2 - x1) * (d2 + w - z) / (d2 - d1 + 2.0 * w);
}

// Minimiser of the parabola through (x1, f1) with slope d1 and (x2, f2); NaN when it is not convex.
double parabola_two_points(double x1, double f1, double d1, double x2, double f2) {
    const double h = x2 - x1, den = 2.0 * (f2 - f1 - d1 * h);
    return den > 0.0 ? x1 - d1 * h * h / den : std::numeric_limits<double>::quiet_NaN();
}

// Minimiser of the parabola through three points; NaN when it is not convex.
double parabola_three_points(double x1, double f1, double x2, double f2, double x3, double f3) {
    const double s12 = (f2 - f1) / (x2 - x1), s23 = (f3 - f2) / (x3 - x2);
    const double curv = (s23 - s12) / (x3 - x1);
    if (!(curv > 0.0)) return std::numeric_limits<double>::quiet_NaN();
    return 0.5 * (x1 + x2) - s12 / (2.0 * curv);
}

class Search {
public:
    Search(Run &run, bool slope, double alfmax, double phi0, double g0) : run_(run), phi0_(phi0) {
        SearchState &s = s_;
        s.slope = slope;
        s.g0 = g0;
        s.alfmax = alfmax;
        s.tolabs = (1.0 + std::fabs(phi0)) * run.cfg.epsrf;
        s.epsaf = s.tolabs;
        s.targtg = (kMu - run.cfg.eta) * g0;
        s.tolrel = run.cfg.qp.e80;
        // The smallest step that moves some x_j by a relative E80.
        double pmax = 0.0;
        for (int j = 0; j < run.n; ++j) pmax = std::max(pmax, std::fabs(run.p[j]) / (1.0 + std::fabs(run.x0[j])));
        s.alfmin = pmax > 0.0 ? run.cfg.qp.e80 / pmax : alfmax;
        s.alfa = std::min(1.0, alfmax);
        s.crampd = s.alfa >= alfmax;
        s.a = 0.0;
        s.b = alfmax;
        s.gbest = s.gw = (1.0 - kMu) * g0;
        s.tol = tolerance();
        tracing_ = run.cfg.major_print >= kPrintDebug;
        if (tracing_) trace_search_start(run, s);
    }

    int run() {
        SearchState &s = s_;
        if (s.alfmin >= s.alfmax) s.quits = s.quiti = true;  // no step is long enough to tell
        while (!s.found && !s.quiti) {
            double phi = 0.0, dphi = 0.0;
            const int st = merit_at(run_, s.alfa, s.slope, &phi, &dphi);
            if (st < 0) return st;
            ++s.numf;
            last_ = s.alfa;
            s.ftry = std::isfinite(phi) ? phi - phi0_ - kMu * s.alfa * s.g0 : phi;
            s.gtry = s.slope && std::isfinite(phi) ? dphi - kMu * s.g0 : 0.0;
            update();
            test();
            if (tracing_) trace_search_trial(run_, s);
            if (!s.found && !s.quiti) next_trial();
        }
        if (tracing_) trace_search_end(run_, s);
        if (!(s.alfbst > 0.0 && s.fbest <= 0.0)) {
            for (int j = 0; j < run_.n; ++j) run_.x[j] = run_.x0[j];
            return 1;
        }
        run_.alpha = s.alfbst;
        if (last_ == s.alfbst) return s.slope ? 0 : 2;
        // The last trial was not the best: x goes back to the best step, evaluated by the caller.
        for (int j = 0; j < run_.n; ++j) run_.x[j] = run_.x0[j] + s.alfbst * run_.p[j];
        return 2;
    }

private:
    double tolerance() const { return s_.tolrel * s_.alfbst + s_.alfmin; }

    // The trial against the best point: the new best, the interval, the counts of unchanged ends.
    void update() {
        SearchState &s = s_;
        const double a0 = s.a, b0 = s.b;
        const bool finite = std::isfinite(s.ftry);
        s.closef = finite && std::fabs(s.ftry - s.fbest) <= s.epsaf;
        // Any lower value improves (near a solution the gains are at the values' noise level and still
        // worth the step); with slopes, a value as good to within EPSAF with a flatter slope does too.
        s.imprvd = finite && (s.ftry < s.fbest || (s.slope && s.closef && s.ftry <= 0.0 &&
                                                   std::fabs(s.gtry) < std::fabs(s.gbest)));
        gain_ = s.imprvd ? s.fbest - s.ftry : 0.0;
        if (s.imprvd) {
            // The old best becomes W (and W becomes V).  The minimiser lies on the side the new best's
            // slope points to, bounded by the old best when that is the side; without slopes, on the
            // new best's side of the old one.
            const double t = s.alfa, o = s.alfbst;
            if (s.slope && s.gtry < 0.0) {
                s.a = t;
                if (o > t) s.b = o, s.braktd = true;
            } else if (s.slope) {
                s.b = t, s.braktd = true;
                if (o < t) s.a = o;
            } else if (t > o) {
                s.a = o;
            } else {
                s.b = o, s.braktd = true;
            }
            s.alfav = s.alfaw, s.fv = s.fw;
            s.alfaw = s.alfbst, s.fw = s.fbest, s.gw = s.gbest;
            s.alfbst = s.alfa, s.fbest = s.ftry, s.gbest = s.gtry;
            have_v_ = have_w_;
            have_w_ = true;
        } else {
            // The minimiser lies between the best point and the trial.
            if (s.alfa > s.alfbst) s.b = s.alfa, s.braktd = true;
            else s.a = s.alfa;
            if (finite) {
                s.alfav = s.alfaw, s.fv = s.fw;
                s.alfaw = s.alfa, s.fw = s.ftry, s.gw = s.gtry;
                have_v_ = have_w_;
                have_w_ = true;
            }
        }
        s.nsamea = s.a == a0 ? s.nsamea + 1 : 0;
        s.nsameb = s.b == b0 ? s.nsameb + 1 : 0;
        s.tol = tolerance();
    }

    // Acceptance of the best point, or the end of the search without one.
    void test() {
        SearchState &s = s_;
        const bool decrease = s.alfbst > 0.0 && s.fbest <= 0.0;
        const bool narrow = s.b - s.a <= s.tol;
        if (s.slope) {
            // Slope near zero, or still downhill at the largest step allowed.
            s.found = decrease && (std::fabs(s.gbest) <= s.targtg || s.alfbst >= s.alfmax || narrow);
        } else {
            // The first trial, or a best point the last trial could not improve on by much.
            s.found = decrease && (s.alfbst >= s.alfmax || s.alfbst == std::min(1.0, s.alfmax) || !s.imprvd ||
                                   gain_ <= kSignificant * std::fabs(s.fbest) || narrow);
            s.quitfz = !decrease && s.closef;  // the values along p are flat to within their accuracy
            s.quits = narrow;
        }
        s.quiti = !s.found && (s.numf >= kSearchLimit || narrow || (!s.slope && s.quitfz));
    }

    // The next trial: extrapolation, a fit, a bisection or a cut.
    void next_trial() {
        SearchState &s = s_;
        const double alfa = s.alfa;
        // The part of [A, B] on the minimiser's side of the best point.
        bool right;
        if (s.slope) right = s.gbest < 0.0;
        else right = s.b - s.alfbst >= s.alfbst - s.a;
        const double lo = right ? s.alfbst : s.a, hi = right ? s.b : s.alfbst;
        s.extrap = s.slope && right && !s.braktd && s.b > s.alfbst;
        if (!std::isfinite(s.ftry)) {
            s.alfa = s.alfbst + kCut * (alfa - s.alfbst);
            if (tracing_) trace_search_step(run_, s, StepKind::ExponentReduced, s.alfa, 0.0, 0.0);
            return;
        }
        double t = std::numeric_limits<double>::quiet_NaN();
        StepKind kind = StepKind::Bisection;
        // Improving trials that leave one end put creep towards the minimiser from one side; trials that
        // fail already keep the next one in the half next to the best point.
        const bool creeping = s.imprvd && (s.nsamea >= kSameLimit || s.nsameb >= kSameLimit);
        if (!creeping) {
            // The fits are made on the merit function itself, whose minimiser is what the step is for
            // (on a quadratic it is exact); the shift only decides acceptance.
            const auto f = [&](double x, double fx) { return fx + kMu * s.g0 * x; };
            const double dshift = kMu * s.g0;
            if (s.slope) {
                t = cubic_minimiser(s.alfbst, f(s.alfbst, s.fbest), s.gbest + dshift, s.alfaw, f(s.alfaw, s.fw),
                                    s.gw + dshift);
                kind = StepKind::Cubic;
                if (!std::isfinite(t)) {
                    t = parabola_two_points(s.alfbst, f(s.alfbst, s.fbest), s.gbest + dshift, s.alfaw, f(s.alfaw, s.fw));
                    kind = StepKind::Parabola;
                }
            } else if (have_v_ && s.alfav != s.alfaw && s.alfav != s.alfbst) {
                t = parabola_three_points(s.alfbst, f(s.alfbst, s.fbest), s.alfaw, f(s.alfaw, s.fw), s.alfav,
                                          f(s.alfav, s.fv));
                kind = StepKind::ThreePoints;
            } else {
                // The start is the only point with a known slope.
                const double x1 = s.alfbst == 0.0 ? 0.0 : s.alfaw;
                const double x2 = s.alfbst == 0.0 ? s.alfaw : s.alfbst, f2 = s.alfbst == 0.0 ? s.fw : s.fbest;
                if (x1 == 0.0) t = parabola_two_points(0.0, 0.0, s.g0, x2, f(x2, f2));
                kind = StepKind::TwoPoints;
            }
            if (s.extrap) {
                // Beyond the best point, but not too far in one step.
                const double reach = std::min(s.b, s.alfbst + kExtrapolate * std::max(s.alfbst - s.alfaw, s.tol));
                if (!(t > s.alfbst)) t = reach;
                t = std::min(t, reach);
            } else {
                // Inside the part, a tenth of its width away from its ends; a trial that failed keeps
                // the next one in the half next to the best point.
                const double width = hi - lo;
                double low = lo + 0.1 * width, high = hi - 0.1 * width;
                if (!s.imprvd) {
                    if (right) high = std::min(high, s.alfbst + 0.5 * (alfa - s.alfbst));
                    else low = std::max(low, s.alfbst - 0.5 * (s.alfbst - alfa));
                }
                if (std::isfinite(t) && (t < lo || t > hi)) t = std::numeric_limits<double>::quiet_NaN();
                if (std::isfinite(t)) t = std::clamp(t, low, std::max(low, high));
            }
        }
        if (!std::isfinite(t)) {
            const double mid = 0.5 * (lo + hi);
            if (hi > kGeoRatio * lo) {
                const double daux = std::max(lo, kGeoFloor * hi), dtry = std::sqrt(daux * hi);
                s.alfa = dtry;
                if (tracing_) trace_search_step(run_, s, StepKind::GeoBisection, mid, daux, dtry);
                keep_apart();
                return;
            }
            t = mid;
            kind = StepKind::Bisection;
        }
        s.alfa = t;
        keep_apart();
        if (tracing_) trace_search_step(run_, s, kind, s.alfa, 0.0, 0.0);
    }

    // A trial closer than TOL to the best point tells nothing new: move it TOL away, into [A, B].
    void keep_apart() {
        SearchState &s = s_;
        if (std::fabs(s.alfa - s.alfbst) < s.tol)
            s.alfa = s.alfa >= s.alfbst && s.alfbst + s.tol <= s.b ? s.alfbst + s.tol : std::max(s.a, s.alfbst - s.tol);
    }

    Run &run_;
    double phi0_;
    SearchState s_;
    bool tracing_ = false, have_w_ = false, have_v_ = false;
    double last_ = -1.0, gain_ = 0.0;
};

} // namespace

namespace {

// A search needs a descent direction and room to move; without them it fails at once.
int search(Run &run, bool slope, double alfmax, double phi0, double g0) {
    if (!(g0 < 0.0) || !(alfmax > 0.0) || !std::isfinite(phi0)) return 1;
    return Search(run, slope, alfmax, phi0, g0).run();
}

} // namespace

int search_with_gradient(Run &run, double alfmax, double phi0, double g0) { return search(run, true, alfmax, phi0, g0); }
int search_no_gradient(Run &run, double alfmax, double phi0, double g0) { return search(run, false, alfmax, phi0, g0); }

// With every derivative given the merit function's slope costs nothing at a trial; otherwise it would
// cost a difference per estimated column, and the search uses values alone.
int line_search(Run &run, double alfmax, double phi0, double dphi0, double /*curvature*/) {
    return run.missing_obj + run.missing_con == 0 ? search_with_gradient(run, alfmax, phi0, dphi0)
                                                  : search_no_gradient(run, alfmax, phi0, dphi0);
}

} // namespace zek::sqp
