// E04DGA: unconstrained minimum of a smooth function by nonlinear conjugate gradients.
//
// Directions are memoryless quasi-Newton ones: the inverse-Hessian estimate is the identity, scaled by
// s'y / y'y, updated once by the last step s and gradient change y, so each direction costs a few inner
// products.  HJP1V holds that estimate applied to y, HNEW the new direction.  A cycle restarts from the
// steepest-descent direction when the direction is not downhill or the line search fails on it.  The
// line search brackets a step meeting f(x + a p) <= f(x) + 1e-4 a g'p and |g(x + a p)'p| <= ETA |g'p|
// (ETA the linesearch tolerance), interpolating by cubics, within a step bound of MAXIMUM STEP LENGTH.
//
// Convergence: either the gradient is within what the function precision can resolve, or all three of
// a small change of F (optimality tolerance relative to 1 + |F|), a small step (its root) and a small
// gradient (its cube root, relative to 1 + |F|).
#include <algorithm>
#include <cmath>
#include <string>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/output.h"
#include "optimisation/minimiser_support.h"
#include "optimisation/options.h"

namespace {

using zek::format;
using zek::mini::dot;
using zek::mini::norm2;
namespace cg = zek::e04::cg;

enum Exit { kOptimal = 0, kIterations = 3, kStepBound = 4, kNoImprovement = 6, kDerivatives = 7, kSmallGradient = 8,
            kInput = 9 };

struct ExitText {
    int code;
    const char *summary;
    const char *record;
};
const ExitText kExits[] = {
    {kOptimal, " Exit E04DGA - Optimal solution found.", ""},
    {kIterations, " Exit E04DGA - Too many iterations.", " ** Too many iterations."},
    {kStepBound, " Exit E04DGA - Computed upper bound on step length is too small.",
     " ** Computed upper bound on step length is too small."},
    {kNoImprovement, " Exit E04DGA - Current point cannot be improved upon.",
     " ** Current point cannot be improved upon."},
    {kDerivatives, " Exit E04DGA - Large errors found in the derivatives.",
     " ** Large errors found in the derivatives."},
    {kSmallGradient, " Exit E04DGA - Gradient at the starting point is too small.",
     " ** Gradient at the starting point is too small."},
    {kInput, " Exit E04DGA - 1 error found in the input parameters.  Problem abandoned.",
     " ** 1 error found in the input parameters.  Problem abandoned."},
};

struct Settings {
    int itmax, verify, print, debug, debug_start, check_start, check_stop;
    double stepmx, fprec, ftol, optol, fest;
    bool have_fest;
};

class Run {
public:
    Run(int n, ZekE04Objfun f, ZekE04AdaptObjfun adapt, int *iuser, double *ruser, const Settings &s)
        : n_(n), f_(f), adapt_(adapt), iuser_(iuser), ruser_(ruser), s_(s), unit_(zek::advisory_unit()) {}

    // f and gradient at x; false when the user asked to stop (mode_ then holds the request).
    bool eval(const double *x, double *fx, double *gx) {
        int mode = 2;
        adapt_(f_, &mode, n_, x, fx, gx, first_ ? 1 : 0, iuser_, ruser_);
        first_ = false;
        ++nfun_;
        if (mode < 0) {
            mode_ = mode;
            return false;
        }
        return true;
    }
    // Function value only, for the difference checks.
    bool value(const double *x, double *fx, double *scratch) { return eval(x, fx, scratch); }
    void say(const std::string &line) const {
        if (s_.print >= 1) zek::host_line(unit_, line.c_str(), static_cast<int>(line.size()));
    }
    void trace(const std::string &line) const { zek::host_line(unit_, line.c_str(), static_cast<int>(line.size())); }

    int n_;
    ZekE04Objfun f_;
    ZekE04AdaptObjfun adapt_;
    int *iuser_;
    double *ruser_;
    Settings s_;
    int unit_;
    bool first_ = true;
    int nfun_ = 0;
    int mode_ = 0;
};

// The gradient check of VERIFY LEVEL: 0 along one direction, 1 element by element from the start to
// the stop variable.  Returns 0 good, 1 bad, -1 the user stopped.
int verify_gradient(Run &r, const double *x, double f, const double *g, double *p, double *xt, double *scratch) {
    const int n = r.n_;
    const double h0 = std::cbrt(r.s_.fprec);
    auto central = [&](const double *dir, double dnorm, double *out) {
        const double h = h0 * (1.0 + norm2(n, x)) / dnorm;
        double fp, fm;
        for (int j = 0; j < n; ++j) xt[j] = x[j] + h * dir[j];
        if (!r.value(xt, &fp, scratch)) return false;
        for (int j = 0; j < n; ++j) xt[j] = x[j] - h * dir[j];
        if (!r.value(xt, &fm, scratch)) return false;
        *out = (fp - fm) / (2.0 * h);
        return true;
    };
    auto bad = [&](double exact, double approx) {
        if (!std::isfinite(approx)) return false;  // no verdict where f is not finite nearby
        const double tol = 1e-3 * std::max(std::fabs(exact), std::fabs(approx)) +
                           std::sqrt(r.s_.fprec) * (1.0 + std::fabs(f)) / std::max(1.0, norm2(n, x));
        return std::fabs(exact - approx) > tol;
    };
    if (r.s_.verify == 0) {
        // A direction with every element nonzero and of varying size.
        for (int j = 0; j < n; ++j) p[j] = 1.0 / (j + 2.0) * ((j % 2) ? -1.0 : 1.0);
        double fd;
        if (!central(p, norm2(n, p), &fd)) return -1;
        return bad(dot(n, g, p), fd) ? 1 : 0;
    }
    int worst = 0;
    for (int k = std::max(1, r.s_.check_start); k <= std::min(n, r.s_.check_stop); ++k) {
        for (int j = 0; j < n; ++j) p[j] = j == k - 1 ? 1.0 : 0.0;
        double fd;
        if (!central(p, 1.0, &fd)) return -1;
        if (bad(g[k - 1], fd)) worst = 1;
    }
    return worst;
}

// One line search from x along p (g'p = slope < 0); step at most amax, first trial a0.  On success x,
// f, g hold the new point.  Returns 0 success, 1 no acceptable point found, -1 the user stopped.
struct Search {
    double step = 0.0;
};
int line_search(Run &r, double *x, double *f, double *g, const double *p, double slope, double a0, double amax,
                double *xt, double *gt, Search *out) {
    const int n = r.n_;
    constexpr double kDecrease = 1e-4;
    constexpr int kTrials = 30;
    const double eta = r.s_.ftol, f0 = *f;
    struct Trial {
        double a = 0.0, f = 0.0, gp = 0.0;
        bool finite = true;
    };
    auto try_step = [&](double a, Trial *t) {
        for (int j = 0; j < n; ++j) xt[j] = x[j] + a * p[j];
        t->a = a;
        if (!r.eval(xt, &t->f, gt)) return false;
        t->finite = std::isfinite(t->f) && zek::mini::all_finite(n, gt);
        t->gp = t->finite ? dot(n, gt, p) : 0.0;
        return true;
    };
    auto accept = [&](const Trial &t) {
        for (int j = 0; j < n; ++j) {
            x[j] = xt[j];
            g[j] = gt[j];
        }
        *f = t.f;
        out->step = t.a;
        return 0;
    };
    auto too_high = [&](const Trial &t, double fref) { return !t.finite || t.f > f0 + kDecrease * t.a * slope || t.f >= fref; };
    Trial lo{0.0, f0, slope, true}, hi;
    bool bracketed = false;
    Trial t;
    double a = std::min(a0, amax);
    int trials = 0;
    // Extrapolation until the step is too long, uphill or acceptable.
    while (!bracketed && trials < kTrials) {
        if (!try_step(a, &t)) return -1;
        ++trials;
        if (too_high(t, trials > 1 ? lo.f : HUGE_VAL)) {
            hi = t;
            bracketed = true;
            break;
        }
        if (std::fabs(t.gp) <= -eta * slope) return accept(t);
        if (t.gp >= 0.0) {
            hi = lo;
            lo = t;
            bracketed = true;
            break;
        }
        lo = t;
        if (a >= amax) return accept(t);
        a = std::min(4.0 * a, amax);
    }
    // Zoom inside the bracket by safeguarded cubics.
    while (bracketed && trials < kTrials) {
        const double left = std::min(lo.a, hi.a), right = std::max(lo.a, hi.a), w = right - left;
        if (w <= zek::precision() * (1.0 + right)) break;
        double next = 0.5 * (left + right);
        if (hi.finite) {
            const double d1 = lo.gp + hi.gp - 3.0 * (lo.f - hi.f) / (lo.a - hi.a);
            const double disc = d1 * d1 - lo.gp * hi.gp;
            if (disc >= 0.0) {
                const double d2 = std::copysign(std::sqrt(disc), hi.a - lo.a);
                const double c = hi.a - (hi.a - lo.a) * ((hi.gp + d2 - d1) / (hi.gp - lo.gp + 2.0 * d2));
                if (std::isfinite(c) && c > left + 0.1 * w && c < right - 0.1 * w) next = c;
            }
        }
        if (!try_step(next, &t)) return -1;
        ++trials;
        if (too_high(t, lo.f)) {
            hi = t;
            continue;
        }
        if (std::fabs(t.gp) <= -eta * slope) return accept(t);
        if (t.gp * (hi.a - lo.a) >= 0.0) hi = lo;
        lo = t;
    }
    if (lo.a > 0.0 && lo.f < f0) {
        // Sufficient decrease without the curvature condition: take the best point seen.
        if (!try_step(lo.a, &t)) return -1;
        if (t.finite && t.f < f0) return accept(t);
    }
    return 1;
}

} // namespace

extern "C" void E04DGA(const int *n_, ZekE04Objfun objfun, ZekE04AdaptObjfun adapt, int *iter, double *objf,
                       double *objgrd, double *x, int *iwork, double *work, int *iuser, double *ruser, int *lwsav,
                       int *iwsav, double *rwsav, int *ifail) {
    using zek::e04::Block;
    using zek::e04::Family;
    using zek::e04::real_setting;
    using zek::e04::setting;
    (void)iwork;
    zek::FailureExit exit("E04DGA", nullptr, ifail);
    const int n = *n_;
    zek::e04::ProblemSize size;
    size.n = n;
    zek::e04::begin_run(Family::DGA, lwsav, iwsav, rwsav, size);
    Settings s{};
    s.itmax = setting(iwsav, Block::CG, cg::kIterations);
    s.verify = setting(iwsav, Block::CG, cg::kVerifyLevel);
    s.print = setting(iwsav, Block::CG, cg::kPrintLevel);
    s.debug = setting(iwsav, Block::CG, cg::kDebugLevel);
    s.debug_start = setting(iwsav, Block::CG, cg::kDebugStart);
    s.check_start = setting(iwsav, Block::CG, cg::kStartObjective);
    s.check_stop = setting(iwsav, Block::CG, cg::kStopObjective);
    s.stepmx = real_setting(rwsav, Block::CG, cg::kMaximumStep);
    s.fprec = real_setting(rwsav, Block::CG, cg::kFunctionPrecision);
    s.ftol = real_setting(rwsav, Block::CG, cg::kLinesearchTolerance);
    s.optol = real_setting(rwsav, Block::CG, cg::kOptimalityTolerance);
    s.fest = real_setting(rwsav, Block::CG, cg::kEstimatedOptimum);
    s.have_fest = s.fest != zek::e04::kNotSetReal;
    if (s.print >= 1) zek::e04::print_parameters(Family::DGA, iwsav, rwsav, size);
    if (adapt == nullptr) adapt = E04_ADAPT_OBJFUN;
    Run r(n, objfun, adapt, iuser, ruser, s);

    int code = kOptimal;
    int itn = 0;
    auto done = [&](int c) {
        zek::e04::end_run(Family::DGA, lwsav, iwsav, rwsav);
        *iter = itn;
        if (c < 0) {
            r.say(" Exit E04DGA - User requested termination.");
            exit.fail(c, 99999 + c, " ** User requested termination.");
            return;
        }
        for (const ExitText &e : kExits)
            if (e.code == c) {
                if (c != kInput) r.say(format(" Exit from E04DGA after %5ld iterations.", static_cast<long>(itn)));
                r.say(e.summary);
                if (c == kOptimal) exit.succeed();
                else exit.fail(c, 99999 - c, e.record);
            }
    };
    if (n < 1 || objfun == nullptr) {
        done(kInput);
        return;
    }
    // A line search tolerance finer than the function precision can honour is raised to it.
    const double ftol_floor = std::sqrt(s.fprec);
    if (s.ftol < ftol_floor) {
        s.ftol = ftol_floor;
        r.s_.ftol = ftol_floor;
        if (s.print >= 1) r.trace(format(" XXX  Warning: FTOL increased to %16.8G", s.ftol));
    }
    const std::ptrdiff_t nn = n;
    double *p = work, *xold = work + nn, *gold = work + 2 * nn, *xt = work + 3 * nn, *gt = work + 4 * nn,
           *hjp1v = work + 5 * nn, *hnew = work + 6 * nn, *sv = work + 7 * nn, *yv = work + 8 * nn;
    double *g = objgrd;
    double f = 0.0;
    if (!r.eval(x, &f, g)) {
        *objf = f;
        done(r.mode_);
        return;
    }
    *objf = f;
    if (!std::isfinite(f) || !zek::mini::all_finite(n, g)) {
        done(kNoImprovement);
        return;
    }
    if (s.verify >= 0) {
        const int v = verify_gradient(r, x, f, g, p, xt, gt);
        if (v < 0) {
            done(r.mode_);
            return;
        }
        if (v > 0) {
            done(kDerivatives);
            return;
        }
    }
    double gnorm = norm2(n, g);
    auto epsaf = [&](double fv) { return s.fprec * (1.0 + std::fabs(fv)); };
    if (gnorm <= epsaf(f)) {
        done(kSmallGradient);
        return;
    }
    if (s.print >= 5) {
        r.say("");
        r.say("  Itn      Step  Nfun      Objective    Norm G    Norm X   Norm (X(k-1)-X(k))");
        r.say(format(" %4ld           %5ld %14.6E %9.1E %9.1E", 0L, static_cast<long>(r.nfun_), f, gnorm, norm2(n, x)));
    }
    bool restart = true;  // the direction is steepest descent
    int icycle = 0;
    for (int j = 0; j < n; ++j) p[j] = -g[j];
    double a0 = s.have_fest && s.fest < f ? 2.0 * (f - s.fest) / (gnorm * gnorm) : 1.0 / gnorm;
    for (;;) {
        if (itn >= s.itmax) {
            code = kIterations;
            break;
        }
        double slope = dot(n, g, p);
        if (!(slope < 0.0)) {
            for (int j = 0; j < n; ++j) p[j] = -g[j];
            slope = -gnorm * gnorm;
            restart = true;
        }
        if (restart) {
            icycle = 0;
            if (s.debug_start > 0 && itn >= s.debug) r.trace(" //E04DGZ// - A new cycle is starting ..");
        }
        const double pnorm = norm2(n, p);
        const double amax = s.stepmx / pnorm;
        if (amax * pnorm <= zek::precision() * (1.0 + norm2(n, x))) {
            code = kStepBound;
            break;
        }
        if (s.debug_start > 0 && itn >= s.debug) {
            r.trace(format(" //E04DGZ// - ITER =%5ld ICYCLE =%3ld EPSAF =%16.8G THETAQ =%16.8G", static_cast<long>(itn),
                           static_cast<long>(icycle), epsaf(f), slope));
            r.trace(format("              GTG  =%16.8G PNORM =%16.8G GNORM =%16.8G", gnorm * gnorm, pnorm, gnorm));
        }
        for (int j = 0; j < n; ++j) {
            xold[j] = x[j];
            gold[j] = g[j];
        }
        const double fold = f;
        Search found;
        const int ls = line_search(r, x, &f, g, p, slope, a0, amax, xt, gt, &found);
        if (ls < 0) {
            code = r.mode_;
            break;
        }
        if (ls > 0) {
            if (restart) {
                code = kNoImprovement;
                break;
            }
            for (int j = 0; j < n; ++j) p[j] = -g[j];
            a0 = 1.0 / gnorm;
            restart = true;
            continue;
        }
        ++itn;
        ++icycle;
        for (int j = 0; j < n; ++j) {
            sv[j] = x[j] - xold[j];
            yv[j] = g[j] - gold[j];
        }
        gnorm = norm2(n, g);
        const double snorm = norm2(n, sv), xnorm = norm2(n, x);
        if (s.print >= 5)
            r.say(format(" %4ld %9.1E %5ld %14.6E %9.1E %9.1E %9.1E", static_cast<long>(itn), found.step,
                         static_cast<long>(r.nfun_), f, gnorm, xnorm, snorm));
        const bool small_change = fold - f <= s.optol * (1.0 + std::fabs(f));
        const bool small_step = snorm <= std::sqrt(s.optol) * (1.0 + xnorm);
        const bool small_grad = gnorm <= std::cbrt(s.optol) * (1.0 + std::fabs(f));
        if ((small_change && small_step && small_grad) || gnorm <= epsaf(f)) break;
        if (small_change && small_step && fold - f <= 0.0 && restart) {
            code = kNoImprovement;
            break;
        }
        // The memoryless update: H = gamma*(I - (s y' + y s')/sy) + (1 + gamma y'y/sy) s s'/sy.
        const double sy = dot(n, sv, yv), yy = dot(n, yv, yv);
        if (sy > zek::precision() * snorm * std::sqrt(yy)) {
            const double gamma = sy / yy;
            const double sg = dot(n, sv, g), yg = dot(n, yv, g);
            for (int j = 0; j < n; ++j) hjp1v[j] = gamma * yv[j];
            for (int j = 0; j < n; ++j)
                hnew[j] = gamma * g[j] - (gamma * yg * sv[j] + hjp1v[j] * sg) / sy +
                          (1.0 + gamma * yy / sy) * sg / sy * sv[j];
            for (int j = 0; j < n; ++j) p[j] = -hnew[j];
            restart = false;
            a0 = 1.0;
        } else {
            for (int j = 0; j < n; ++j) p[j] = -g[j];
            a0 = std::min(1.0, 2.0 * std::max(fold - f, 10.0 * epsaf(f)) / (gnorm * gnorm));
            restart = true;
        }
    }
    *objf = f;
    if (code >= 0 && s.print >= 1) {
        r.say("");
        r.say(" Variable          Value      Gradient value");
        for (int j = 0; j < n; ++j)
            r.say(format(" Varbl%5ld   %14.6G    %9.1E", static_cast<long>(j + 1), x[j], g[j]));
        r.say("");
    }
    done(code);
}
