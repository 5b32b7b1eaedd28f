// The engine of the bound-constrained family.
//
// Each iteration holds the variables that sit on a bound with the gradient pushing outward (and those
// with equal bounds), takes a direction on the others, and searches along the projected path
// x(a) = P(x + a p) for a sufficient decrease f(x(a)) <= f(x) + 1e-4 g'(x(a) - x).  With the gradient
// at hand the search also asks |g(x(a))'p| <= ETA |g'p| on steps that meet no bound, extrapolating
// otherwise.  Directions: the quasi-Newton methods apply the free block of a BFGS inverse estimate (a
// principal block of a positive definite matrix, so always downhill); the Newton methods solve with the
// free block of the Hessian shifted by the smallest multiple of the identity that a Cholesky
// factorisation accepts.
//
// A run ends converged when the projected gradient's sum of squares G is at most
// S = (1 + |F|)^2 EPS^(2/3) and the last step changed F or X by no more than the tolerances, or when G
// falls below 0.0001 EPS (1 + |F|)^2.  It ends stalled when no step can be found (after a restart from
// central differences or from a reset estimate), or when three steps in a row change nothing.
#include "optimisation/bound_core.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "frame/machine.h"
#include "optimisation/minimiser_support.h"

namespace zek::bound {
namespace {

using zek::mini::all_finite;
using zek::mini::dot;
using zek::mini::norm2;

// Element (i, j) of a symmetric matrix kept as a diagonal and a strict lower triangle by rows.
inline double &sym(double *diag, double *lower, int i, int j) {
    if (i == j) return diag[i];
    if (i < j) std::swap(i, j);
    return lower[static_cast<std::ptrdiff_t>(i) * (i - 1) / 2 + j];
}

bool is_fixed(double x, double g, double bl, double bu) {
    return bl >= bu || (x <= bl && g > 0.0) || (x >= bu && g < 0.0);
}

class Engine {
public:
    Engine(Problem &p, const User &u, const Settings &s)
        : p_(p), u_(u), s_(s), n_(p.n), eps_(zek::precision()) {
        const std::ptrdiff_t n = n_, l = lower_cells(n_);
        double *w = p.w;
        xt_ = w;
        gt_ = w + n;
        dir_ = w + 2 * n;
        hy_ = w + 3 * n;
        gold_ = w + 4 * n;
        xold_ = w + 5 * n;
        h_ = w + 6 * n;  // difference intervals (values method) or the factor's diagonal (Newton methods)
        flower_ = w + 7 * n;
        (void)l;
    }
    int run();

private:
    // f at x; false when the user stopped.
    bool value(const double *x, double *f) {
        int iflag = 0;
        if (u_.funct1 != nullptr) u_.adapt1(u_.funct1, &iflag, n_, x, f, u_.iuser, u_.ruser);
        else u_.adapt2(u_.funct2, &iflag, n_, x, f, gt_scratch(), u_.iuser, u_.ruser);
        ++p_.nf;
        if (iflag < 0) stop_ = iflag;
        return iflag >= 0;
    }
    double *gt_scratch() { return gt_; }
    // f and gradient at x (by differences of values for the values method, F already known then).
    bool both(const double *x, double *f, double *g, bool know_f);
    bool hessian(const double *x, const double *g);
    bool direction();
    // 0 step taken, 1 no acceptable step, negative the user's stop.
    int search(double slope);
    void reset_estimate(double gamma);
    void bfgs_update(const double *s, const double *y);
    void fill_state();

    Problem &p_;
    const User &u_;
    const Settings &s_;
    int n_;
    double eps_;
    double *xt_, *gt_, *dir_, *hy_, *gold_, *xold_, *h_, *flower_;
    int stop_ = 0;
    bool central_ = false;
    bool estimate_fresh_ = true;
    std::uint64_t held_ = 0;  // a signature of the set of held variables at the last direction
};

bool Engine::both(const double *x, double *f, double *g, bool know_f) {
    if (u_.funct2 != nullptr) {
        int iflag = 2;
        u_.adapt2(u_.funct2, &iflag, n_, x, f, g, u_.iuser, u_.ruser);
        ++p_.nf;
        if (iflag < 0) stop_ = iflag;
        return iflag >= 0;
    }
    if (!know_f && !value(x, f)) return false;
    for (int j = 0; j < n_; ++j) xt_[j] = x[j];
    for (int j = 0; j < n_; ++j) {
        const double hj = h_[j];
        const bool up_ok = x[j] + hj <= p_.bu[j], down_ok = x[j] - hj >= p_.bl[j];
        double fp = *f, fm = *f;
        if (central_ && up_ok && down_ok) {
            xt_[j] = x[j] + hj;
            if (!value(xt_, &fp)) return false;
            xt_[j] = x[j] - hj;
            if (!value(xt_, &fm)) return false;
            g[j] = (fp - fm) / (2.0 * hj);
        } else if (up_ok || !down_ok) {
            xt_[j] = x[j] + hj;
            if (!value(xt_, &fp)) return false;
            g[j] = (fp - *f) / hj;
        } else {
            xt_[j] = x[j] - hj;
            if (!value(xt_, &fm)) return false;
            g[j] = (*f - fm) / hj;
        }
        xt_[j] = x[j];
    }
    return true;
}

bool Engine::hessian(const double *x, const double *g) {
    if (p_.method == Method::Newton) {
        int iflag = 0;
        const int lh = static_cast<int>(lower_cells(n_));
        u_.hadapt(u_.hess, &iflag, n_, x, p_.hlower, lh, p_.hdiag, u_.iuser, u_.ruser);
        if (iflag < 0) stop_ = iflag;
        return iflag >= 0;
    }
    // Differences of the gradient, one variable at a time, kept symmetric by averaging.
    const double delta = s_.delta > 0.0 ? s_.delta : std::sqrt(eps_);
    for (std::ptrdiff_t k = 0; k < lower_cells(n_); ++k) p_.hlower[k] = 0.0;
    for (int j = 0; j < n_; ++j) xt_[j] = x[j];
    for (int j = 0; j < n_; ++j) {
        double hj = delta * (1.0 + std::fabs(x[j]));
        if (x[j] + hj > p_.bu[j] && x[j] - hj >= p_.bl[j]) hj = -hj;
        xt_[j] = x[j] + hj;
        double ft;
        if (!both(xt_, &ft, gt_, false)) return false;
        xt_[j] = x[j];
        for (int i = 0; i < n_; ++i) {
            const double d = (gt_[i] - g[i]) / hj;
            if (i == j) p_.hdiag[j] = d;
            else sym(p_.hdiag, p_.hlower, i, j) += 0.5 * d;
        }
    }
    return true;
}

void Engine::reset_estimate(double gamma) {
    for (int j = 0; j < n_; ++j) p_.hdiag[j] = gamma;
    for (std::ptrdiff_t k = 0; k < lower_cells(n_); ++k) p_.hlower[k] = 0.0;
    estimate_fresh_ = true;
}

void Engine::bfgs_update(const double *s, const double *y) {
    const double sy = dot(n_, s, y), yy = dot(n_, y, y);
    if (!(sy > eps_ * norm2(n_, s) * std::sqrt(yy)) || !std::isfinite(sy)) return;
    if (estimate_fresh_) {
        // The first update starts from the identity scaled to the curvature seen along the step.
        reset_estimate(sy / yy);
        estimate_fresh_ = false;
    }
    // H := H - (H y s' + s y' H)/sy + (1 + y'Hy/sy) s s'/sy
    for (int i = 0; i < n_; ++i) {
        double v = 0.0;
        for (int j = 0; j < n_; ++j) v += sym(p_.hdiag, p_.hlower, i, j) * y[j];
        hy_[i] = v;
    }
    const double yhy = dot(n_, y, hy_);
    const double c = (1.0 + yhy / sy) / sy;
    for (int i = 0; i < n_; ++i)
        for (int j = 0; j <= i; ++j)
            sym(p_.hdiag, p_.hlower, i, j) += -(hy_[i] * s[j] + s[i] * hy_[j]) / sy + c * s[i] * s[j];
}

// The direction on the free variables into dir_; false when the Newton shift cannot be found.
bool Engine::direction() {
    const double *x = p_.x, *g = p_.g;
    for (int j = 0; j < n_; ++j) dir_[j] = 0.0;
    if (p_.method == Method::QuasiNewton || p_.method == Method::QuasiNewtonValues) {
        // The free block of the inverse estimate is the inverse of the free block of the Hessian only
        // when the estimate does not couple free and held variables: when the held set changes the
        // coupling goes (the diagonal stays), and the updates see only the free variables' changes.
        std::uint64_t held = 0;
        for (int j = 0; j < n_; ++j)
            if (is_fixed(x[j], g[j], p_.bl[j], p_.bu[j])) held += (static_cast<std::uint64_t>(j) + 1) * 0x9E3779B97F4A7C15u;
        if (held != held_)
            for (std::ptrdiff_t k = 0; k < lower_cells(n_); ++k) p_.hlower[k] = 0.0;
        held_ = held;
        for (int i = 0; i < n_; ++i) {
            if (is_fixed(x[i], g[i], p_.bl[i], p_.bu[i])) continue;
            double v = 0.0;
            for (int j = 0; j < n_; ++j)
                if (!is_fixed(x[j], g[j], p_.bl[j], p_.bu[j])) v += sym(p_.hdiag, p_.hlower, i, j) * g[j];
            dir_[i] = -v;
        }
        return true;
    }
    // Newton: Cholesky of the free block plus mu I, mu raised until it succeeds.
    double biggest = 0.0;
    for (int j = 0; j < n_; ++j) biggest = std::max(biggest, std::fabs(p_.hdiag[j]));
    if (!std::isfinite(biggest)) return false;
    double mu = 0.0;
    for (int attempt = 0; attempt < 60; ++attempt) {
        bool ok = true;
        for (int i = 0; i < n_ && ok; ++i) {
            if (is_fixed(x[i], g[i], p_.bl[i], p_.bu[i])) continue;
            for (int j = 0; j <= i; ++j) {
                if (is_fixed(x[j], g[j], p_.bl[j], p_.bu[j])) continue;
                double a = sym(p_.hdiag, p_.hlower, i, j) + (i == j ? mu : 0.0);
                for (int k = 0; k < j; ++k)
                    if (!is_fixed(x[k], g[k], p_.bl[k], p_.bu[k]))
                        a -= sym(h_, flower_, i, k) * sym(h_, flower_, j, k);
                if (i == j) {
                    if (!(a > eps_ * (1.0 + biggest))) {
                        ok = false;
                        break;
                    }
                    h_[i] = std::sqrt(a);
                } else {
                    sym(h_, flower_, i, j) = a / h_[j];
                }
            }
        }
        if (ok) {
            // Forward then back substitution on the free variables.
            for (int i = 0; i < n_; ++i) {
                if (is_fixed(x[i], g[i], p_.bl[i], p_.bu[i])) continue;
                double v = -g[i];
                for (int k = 0; k < i; ++k)
                    if (!is_fixed(x[k], g[k], p_.bl[k], p_.bu[k])) v -= sym(h_, flower_, i, k) * dir_[k];
                dir_[i] = v / h_[i];
            }
            for (int i = n_ - 1; i >= 0; --i) {
                if (is_fixed(x[i], g[i], p_.bl[i], p_.bu[i])) continue;
                double v = dir_[i];
                for (int k = i + 1; k < n_; ++k)
                    if (!is_fixed(x[k], g[k], p_.bl[k], p_.bu[k])) v -= sym(h_, flower_, k, i) * dir_[k];
                dir_[i] = v / h_[i];
            }
            return all_finite(n_, dir_);
        }
        mu = mu == 0.0 ? std::max(1e-3 * biggest, std::sqrt(eps_)) : 4.0 * mu;
    }
    return false;
}

int Engine::search(double slope) {
    constexpr double kDecrease = 1e-4;
    constexpr int kTrials = 40;
    double *x = p_.x;
    const double f0 = *p_.f;
    const double pnorm = norm2(n_, dir_);
    const double amax = s_.stepmx / pnorm;
    const bool with_gradient = p_.method != Method::QuasiNewtonValues;
    double a = std::min(1.0, amax);
    if (p_.niter == 0 && s_.have_fest && s_.fest < f0) a = std::min(a, 2.0 * (f0 - s_.fest) / -slope);
    double accepted = 0.0;  // a step meeting sufficient decrease, kept while extrapolating
    int extrapolations = 0;
    for (int trial = 0; trial < kTrials; ++trial) {
        bool hit = false, moved = false;
        for (int j = 0; j < n_; ++j) {
            double v = x[j] + a * dir_[j];
            if (v < p_.bl[j]) v = p_.bl[j], hit = true;
            if (v > p_.bu[j]) v = p_.bu[j], hit = true;
            xold_[j] = v;
            moved = moved || v != x[j];
        }
        if (!moved) break;
        double ft;
        if (with_gradient) {
            if (!both(xold_, &ft, gt_, false)) return stop_;
        } else if (!value(xold_, &ft)) {
            return stop_;
        }
        double change = 0.0;
        for (int j = 0; j < n_; ++j) change += p_.g[j] * (xold_[j] - x[j]);
        const bool finite = std::isfinite(ft) && (!with_gradient || all_finite(n_, gt_));
        if (finite && ft <= f0 + kDecrease * change && ft < f0) {
            const double gp = with_gradient ? dot(n_, gt_, dir_) : 0.0;
            const bool curvature_short = with_gradient && !hit && gp < 0.0 && std::fabs(gp) > s_.eta * std::fabs(slope);
            if (curvature_short && a < amax && extrapolations < 4) {
                accepted = a;
                ++extrapolations;
                a = std::min(4.0 * a, amax);
                continue;
            }
            for (int j = 0; j < n_; ++j) x[j] = xold_[j];
            *p_.f = ft;
            if (with_gradient)
                for (int j = 0; j < n_; ++j) p_.g[j] = gt_[j];
            return 0;
        }
        if (accepted > 0.0) {
            // Extrapolation went too far: go back to the last good step.
            a = accepted;
            accepted = 0.0;
            extrapolations = 4;
            continue;
        }
        // Backtrack by a safeguarded parabola through f0, the slope and the trial.
        double next = 0.25 * a;
        if (finite) {
            const double curv = ft - f0 - slope * a;
            if (curv > 0.0) next = std::clamp(-0.5 * slope * a * a / curv, 0.1 * a, 0.5 * a);
        }
        a = next;
        if (a * pnorm <= eps_ * (1.0 + norm2(n_, x))) break;
    }
    return 1;
}

void Engine::fill_state() {
    for (int j = 0; j < n_; ++j) {
        const double x = p_.x[j], g = p_.g[j];
        if (p_.bl[j] >= p_.bu[j]) p_.istate[j] = -3;
        else if (x <= p_.bl[j] && g > 0.0) p_.istate[j] = -1;
        else if (x >= p_.bu[j] && g < 0.0) p_.istate[j] = -2;
        else p_.istate[j] = 1;
    }
}

int Engine::run() {
    double *x = p_.x;
    for (int j = 0; j < n_; ++j) x[j] = std::clamp(x[j], p_.bl[j], p_.bu[j]);
    p_.niter = 0;
    p_.nf = 0;
    const bool values = p_.method == Method::QuasiNewtonValues;
    if (values) {
        if (!value(x, p_.f)) return stop_;
        if (!std::isfinite(*p_.f)) return kNotFinite;
        const int rc = difference_intervals(n_, u_, p_.bl, p_.bu, x, *p_.f, h_, xt_, &p_.nf);
        if (rc < 0) return rc;
        if (!both(x, p_.f, p_.g, true)) return stop_;
    } else if (!both(x, p_.f, p_.g, false)) {
        return stop_;
    }
    if (!std::isfinite(*p_.f) || !all_finite(n_, p_.g)) return kNotFinite;
    const bool newton = p_.method == Method::Newton || p_.method == Method::NewtonDifferences;
    if (newton) {
        if (!hessian(x, p_.g)) return stop_;
    } else {
        // The first step: the expected decrease when there is one, a unit step otherwise, bounded by
        // the factor's limit 0.01/(sqrt(N) EPS).
        const double gg = dot(n_, p_.g, p_.g);
        const double cap = 0.01 / (std::sqrt(static_cast<double>(n_)) * eps_);
        const double fdec = s_.fdecrease < 0.0 ? -s_.fdecrease * std::fabs(*p_.f) : s_.fdecrease;
        double gamma = fdec > 0.0 && gg > 0.0 ? 2.0 * fdec / gg : 1.0 / std::max(std::sqrt(gg), 1e-300);
        gamma = std::min(gamma, cap);
        reset_estimate(gamma);
    }
    const double e23 = std::pow(eps_, 0.66666);
    int idle = 0;
    int result = kStalled;
    for (;;) {
        const double f = *p_.f;
        const double scale = (1.0 + std::fabs(f)) * (1.0 + std::fabs(f));
        const double gsq = projected_gradient_sq(n_, p_.bl, p_.bu, x, p_.g);
        if (gsq <= 1e-4 * eps_ * scale) {
            result = kConverged;
            break;
        }
        if (p_.nf >= s_.maxcal) {
            result = kLimit;
            break;
        }
        if (newton && !direction()) {
            result = kNoProgress;
            break;
        }
        if (!newton) direction();
        double slope = dot(n_, p_.g, dir_);
        if (!(slope < 0.0)) {
            if (newton || estimate_fresh_) {
                result = kStalled;
                break;
            }
            reset_estimate(1.0 / std::sqrt(gsq));
            continue;
        }
        for (int j = 0; j < n_; ++j) {
            gold_[j] = p_.g[j];
            hy_[j] = x[j];  // the point before the step, kept until the step is known
        }
        const int rc = search(slope);
        if (rc < 0) return rc;
        if (rc > 0) {
            if (values && !central_) {
                central_ = true;
                if (!both(x, p_.f, p_.g, true)) return stop_;
                continue;
            }
            if (!newton && !estimate_fresh_) {
                reset_estimate(1.0 / std::sqrt(gsq));
                continue;
            }
            result = kStalled;
            break;
        }
        ++p_.niter;
        if (values && !both(x, p_.f, p_.g, true)) return stop_;
        if (!all_finite(n_, p_.g)) {
            result = kNoProgress;
            break;
        }
        // Step and gradient change, in xold_ and gt_; the change is dropped on variables that did not
        // move (held on their bounds), whose curvature the step says nothing about.
        for (int j = 0; j < n_; ++j) {
            xold_[j] = x[j] - hy_[j];
            gt_[j] = xold_[j] == 0.0 ? 0.0 : p_.g[j] - gold_[j];
        }
        const double snorm = norm2(n_, xold_), xnorm = norm2(n_, x);
        const double fnew = *p_.f;
        const double gnew = projected_gradient_sq(n_, p_.bl, p_.bu, x, p_.g);
        const double snew = (1.0 + std::fabs(fnew)) * (1.0 + std::fabs(fnew)) * e23;
        const bool small_change = f - fnew <= e23 * (1.0 + std::fabs(fnew));
        const bool small_step = snorm <= s_.xtol * (1.0 + xnorm);
        if (u_.monit != nullptr && s_.iprint > 0 && p_.niter % s_.iprint == 0) {
            fill_state();
            u_.madapt(u_.monit, n_, x, fnew, p_.g, p_.istate, p_.niter, p_.nf, u_.iuser, u_.ruser);
        }
        if (gnew <= snew && (small_change || small_step)) {
            result = kConverged;
            break;
        }
        idle = small_change && small_step ? idle + 1 : 0;
        if (idle >= 3) {
            result = kStalled;
            break;
        }
        if (newton) {
            if (!hessian(x, p_.g)) return stop_;
        } else {
            bfgs_update(xold_, gt_);
        }
    }
    return result;
}

} // namespace

std::ptrdiff_t scratch_length(Method method, int n) {
    const std::ptrdiff_t nn = n;
    const bool newton = method == Method::Newton || method == Method::NewtonDifferences;
    return 7 * nn + (newton ? lower_cells(n) : 0);
}

double projected_gradient_sq(int n, const double *bl, const double *bu, const double *x, const double *g) {
    double s = 0.0;
    for (int j = 0; j < n; ++j)
        if (!is_fixed(x[j], g[j], bl[j], bu[j])) s += g[j] * g[j];
    return s;
}

// The grade of a core outcome: 3 and 5 become 5 to 8 when the projected gradient's sum of squares G is
// within 1, 10, 100 or 1000 times S = (1 + |F|)^2 EPS^0.66666, and stay 3 otherwise.
int grade(int inform, int n, const double *bl, const double *bu, const double *x, double f, const double *g) {
    if (inform < 3 || inform == 4 || inform > 5) return inform;
    const double s = (std::fabs(f) + 1.0) * (std::fabs(f) + 1.0) * std::pow(zek::precision(), 0.66666);
    const double gsq = projected_gradient_sq(n, bl, bu, x, g);
    if (!std::isfinite(gsq) || !std::isfinite(f)) return 3;
    int result = 3;
    if (1000.0 * s >= gsq) result = 8;
    if (100.0 * s >= gsq) result = 7;
    if (10.0 * s >= gsq) result = 6;
    if (s >= gsq) result = 5;
    return result;
}

int minimise(Problem &p, const User &u, const Settings &s) {
    Engine e(p, u, s);
    const int rc = e.run();
    for (int j = 0; j < p.n; ++j) {
        const double x = p.x[j], g = p.g[j];
        if (p.bl[j] >= p.bu[j]) p.istate[j] = -3;
        else if (x <= p.bl[j] && g > 0.0) p.istate[j] = -1;
        else if (x >= p.bu[j] && g < 0.0) p.istate[j] = -2;
        else p.istate[j] = 1;
    }
    if (u.monit != nullptr && s.iprint >= 0)
        u.madapt(u.monit, p.n, p.x, *p.f, p.g, p.istate, p.niter, p.nf, u.iuser, u.ruser);
    return rc;
}

int difference_intervals(int n, const User &u, const double *bl, const double *bu, const double *x, double f,
                         double *h, double *xt, int *nf) {
    const double rt = std::sqrt(zek::precision());
    for (int j = 0; j < n; ++j) xt[j] = x[j];
    for (int j = 0; j < n; ++j) {
        double hj = rt * (1.0 + std::fabs(x[j]));
        for (int tries = 0; tries < 3; ++tries) {
            const double step = x[j] + hj <= bu[j] || x[j] - hj < bl[j] ? hj : -hj;
            xt[j] = x[j] + step;
            double ft;
            int iflag = 0;
            u.adapt1(u.funct1, &iflag, n, xt, &ft, u.iuser, u.ruser);
            ++*nf;
            if (iflag < 0) return iflag;
            if (ft != f || !std::isfinite(ft)) break;
            hj *= 10.0;
        }
        xt[j] = x[j];
        h[j] = hj;
    }
    return 0;
}

int check_gradient(int n, const User &u, const double *x, double f, const double *g, double *w, int *nf) {
    // Along a direction with elements of varying sign and size, by central differences.
    double *p = w, *xt = w + n, *gt = w + 2 * static_cast<std::ptrdiff_t>(n);
    for (int j = 0; j < n; ++j) p[j] = ((j % 2) ? -1.0 : 1.0) / (j + 2.0);
    const double h = std::cbrt(zek::precision()) * (1.0 + norm2(n, x)) / norm2(n, p);
    double fs[2];
    for (int side = 0; side < 2; ++side) {
        for (int j = 0; j < n; ++j) xt[j] = x[j] + (side == 0 ? h : -h) * p[j];
        int iflag = 0;
        u.adapt2(u.funct2, &iflag, n, xt, &fs[side], gt, u.iuser, u.ruser);
        ++*nf;
        if (iflag < 0) return iflag;
    }
    const double fd = (fs[0] - fs[1]) / (2.0 * h), exact = dot(n, g, p);
    if (!std::isfinite(fd)) return 0;
    const double tol = 1e-3 * std::max(std::fabs(exact), std::fabs(fd)) +
                       std::sqrt(zek::precision()) * (1.0 + std::fabs(f)) / std::max(1.0, norm2(n, x));
    return std::fabs(fd - exact) > tol ? 1 : 0;
}

int check_hessian(int n, const User &u, const double *x, const double *g, double *hdiag, double *hlower, double *w,
                  int *nf) {
    double *p = w, *xt = w + n, *gt = w + 2 * static_cast<std::ptrdiff_t>(n);
    int iflag = 0;
    const int lh = static_cast<int>(lower_cells(n));
    u.hadapt(u.hess, &iflag, n, x, hlower, lh, hdiag, u.iuser, u.ruser);
    if (iflag < 0) return iflag;
    for (int j = 0; j < n; ++j) p[j] = ((j % 3) ? -1.0 : 1.0) / (j + 3.0);
    const double h = std::sqrt(zek::precision()) * (1.0 + norm2(n, x)) / norm2(n, p);
    for (int j = 0; j < n; ++j) xt[j] = x[j] + h * p[j];
    double ft;
    iflag = 2;
    u.adapt2(u.funct2, &iflag, n, xt, &ft, gt, u.iuser, u.ruser);
    ++*nf;
    if (iflag < 0) return iflag;
    if (!all_finite(n, gt)) return 0;
    double err = 0.0, size = 0.0;
    for (int i = 0; i < n; ++i) {
        double hp = 0.0;
        for (int j = 0; j < n; ++j) hp += sym(hdiag, hlower, i, j) * p[j];
        const double fd = (gt[i] - g[i]) / h;
        err = std::max(err, std::fabs(fd - hp));
        size = std::max(size, std::max(std::fabs(fd), std::fabs(hp)));
    }
    return err > 1e-3 * size + std::cbrt(zek::precision()) * (1.0 + norm2(n, g)) ? 1 : 0;
}

} // namespace zek::bound
