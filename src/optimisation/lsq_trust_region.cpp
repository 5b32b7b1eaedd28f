// The unconstrained least-squares family (E04FCF, E04GBF, E04GDF, E04HEF and their easy forms):
// trust-region steps on the SVD of the Jacobian, with or without a second-order term.
//
// The variables are scaled by D, each the largest norm its column of J has had, and the trust region
// bounds |D p|: with J D^-1 = U diag(s) V' and g = D^-1 J'f, the scaled step for a shift L >= 0 is
// z(L) = -sum s_i b_i/(s_i^2 + L) v_i, p = D^-1 z, b_i = v_i'g / s_i = u_i'f, over the singular values
// above 10 EPS s_1: L = 0 is the Gauss-Newton step (its minimum-length form when J is rank deficient), a
// large L a short steepest-descent step in the scaled variables.  L is the smallest shift whose step
// fits the trust radius, found by Newton's method on 1/|z(L)| - 1/radius.  Unscaled, a radius sized
// for a parameter of 1e5 lets one of 1e-3 run off to 0 or to infinity (a flat region the fit never
// leaves); scaled, the radius measures the change of the model instead.  STEPMX still bounds |p|.
// The predicted reduction comes from the same expansion, sum b_i^2 (1 - (L/(s_i^2+L))^2); the radius
// shrinks to a quarter of the step when less than a quarter of it is achieved, and doubles when more
// than three quarters are.
//
// With a second-order term S (sum f_i f_i'') the model's Hessian is J'J + S and the step solves
// (J'J + S + L D^2) p = -J'f by Cholesky in the scaled variables, L again the least shift the radius
// admits.  S comes by
// differences of J'f, from the user, or as a quasi-Newton estimate: after each step s the estimate is
// sized down by min(1, |s'y#| / s'Ss) and updated so that S s = y# = (J_new - J_old)' f_new, the
// symmetric rank-two correction that keeps the gradient change y = J_new'f_new - J_old'f_old as its
// scale.  Far from a zero-residual solution Gauss-Newton converges slowly or not at all, and S then
// supplies the curvature the residuals carry; near one S is noise.  So each iteration takes the model,
// Gauss-Newton or augmented, whose prediction of the last reduction was the closer.
//
// The estimate is carried by E04GBF and E04GYF with the user's Jacobian and by E04FCF and E04FYF with
// one by forward differences, whose update then takes the differenced Jacobian at the new point.
//
// Workspace: a copy of J for the SVD (M N), then the SVD's own workspace, which after the SVD holds g,
// the step, the trial point, the trial residuals and one more vector; then the model's Hessian, or the
// quasi-Newton estimate (N by N).  The difference forms' workspace stops after the SVD's, with no room
// for N by N or even N(N+1)/2 more, so their estimate is held in the solver (beside the scales D) for
// the length of the call.  The right vectors come back in V, transposed in place.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "frame/adaptor.h"
#include "frame/ifail.h"
#include "frame/machine.h"
#include "kernels/svd.h"
#include "optimisation/minimiser_support.h"

namespace {

using zek::mini::all_finite;
using zek::mini::norm2;

struct Settings {
    int iprint, maxcal;
    double xtol, stepmx;
};

struct Arrays {
    int m, n;
    double *x, *fsumsq, *fvec, *fjac;
    int lj;
    double *s, *v;
    int lv;
    int *niter, *nf;
    double *w;
    int *igrade;  // may be null
};

struct Functions {
    ZekE04LsqFun lsq = nullptr;
    ZekE04AdaptLsq adapt = nullptr;
    ZekE04LsqFunDiff diff = nullptr;
    ZekE04AdaptLsqDiff dadapt = nullptr;
    ZekE04LsqMon mon = nullptr;
    ZekE04AdaptLsqMon madapt = nullptr;
    ZekE04LsqHes hes = nullptr;          // the user's second-order term (the estimate's start when
    ZekE04AdaptLsqHes hadapt = nullptr;  // QUASI_NEWTON)
    bool second_differences = false;     // the second-order term by differences of J'f
    bool quasi_newton = false;           // the second-order term as a quasi-Newton estimate
    int *iuser = nullptr;
    double *ruser = nullptr;
};

enum Outcome { kDone = 0, kLimit = 2, kNoLowerPoint = 3, kSvdFailed = 4, kNotFinite = 5 };


class Solver {
public:
    Solver(const Arrays &a, const Functions &f, const Settings &s) : a_(a), f_(f), s_(s) {
        const std::ptrdiff_t m = a.m, n = a.n;
        copy_ = a.w;
        svdw_ = a.w + m * n;
        g_ = svdw_;
        p_ = g_ + n;
        xt_ = p_ + n;
        rt_ = xt_ + n;
        d_ = rt_ + n + m;
        h_ = a.w + m * n + zek::svd_workspace(a.m, a.n, false, true);
        if (f.quasi_newton && f.lsq == nullptr) {
            // The difference forms' workspace ends with the decomposition's: the estimate lives here.
            estimate_.assign(static_cast<std::size_t>(n * n), 0.0);
            h_ = estimate_.data();
        }
    }
    int run();
    // The grade of the last Jacobian decomposed: its count of singular values above 10 EPS s_1.
    int grade() const {
        int k = 0;
        while (k < a_.n && a_.s[k] > 10.0 * zek::precision() * a_.s[0]) ++k;
        return k;
    }

private:
    // Residuals at x into r (and the Jacobian into FJAC when JACOBIAN): false when the user stopped.
    bool residuals(const double *x, double *r, bool jacobian);
    bool jacobian_by_differences(const double *x, const double *r);
    int decompose(bool scaled);
    void step(double shift, int k);
    double step_norm(double shift, int k) const;
    void monitor(int k) {
        if (f_.mon != nullptr)
            f_.madapt(f_.mon, a_.m, a_.n, a_.x, a_.fvec, a_.fjac, a_.lj, a_.s, k, *a_.niter, *a_.nf, f_.iuser,
                      f_.ruser);
    }

    Arrays a_;
    Functions f_;
    Settings s_;
    // The model's Hessian J'J + sum f_i f_i'' (N by N) when the second-order term is carried: false when
    // the user stopped.
    bool second_order();
    // The step (H + L I) p = -g for the least L >= 0 whose Cholesky succeeds and whose step fits the
    // radius; returns the predicted reduction, or -1 when no shift works.
    double newton_step(double radius);
    // The term is formed afresh each iteration (differences or the user's); the quasi-Newton estimate
    // is carried instead.
    bool carries_second_order() const { return !f_.quasi_newton && (f_.hes != nullptr || f_.second_differences); }
    // The step of this iteration solves with J'J + S (otherwise the Gauss-Newton step on the SVD).
    bool augmented() const { return !gauss_newton_ && (carries_second_order() || (f_.quasi_newton && augmented_)); }
    // Back to Gauss-Newton with the estimate at zero.
    void drop_estimate() {
        const std::ptrdiff_t nn = a_.n;
        for (std::ptrdiff_t i = 0; i < nn * nn; ++i) h_[i] = 0.0;
        augmented_ = false;
    }
    // Element (i, j) of the model's Hessian.
    double model(int i, int j) const;
    // The estimate's start at x: the user's term, or zero.  False when the user stopped.
    bool start_estimate();
    // After the step p_ from the old point (g_ its gradient, FJAC its Jacobian, F_OLD its sum) to the
    // new one (FVEC, F_NEW): the model for the next iteration, and the Jacobian at the new point with
    // the estimate's update.  False when the user stopped.
    bool update_estimate(double f_old, double f_new);

    double *copy_, *svdw_, *g_, *p_, *xt_, *rt_, *d_, *h_;
    // The scale of each variable, the largest column norm of J met so far.  Held outside W: the
    // shortest workspace the easy forms accept has no room left for it beside the decomposition.
    std::vector<double> scale_;
    // The quasi-Newton estimate of the difference forms (E04FCF, E04FYF), N by N, for the same reason:
    // their workspace has no N by N room, and even packed the estimate would not fit beside the SVD's.
    std::vector<double> estimate_;
    int stop_ = 0;
    bool augmented_ = false;
    bool gauss_newton_ = false;  // this iteration falls back to the Gauss-Newton step
    double last_shift_ = 0.0;  // the shift of the last step with the second-order term
};

double Solver::model(int i, int j) const {
    const std::ptrdiff_t nn = a_.n;
    const double t0 = h_[i + j * nn] / (scale_[i] * scale_[j]);
    if (!f_.quasi_newton) return t0;
    // J'J from the decomposition, V diag(s^2) V' (already in the scaled variables), so that no second
    // N by N array is needed.
    const std::ptrdiff_t lv = a_.lv;
    double t = t0;
    for (int k = 0; k < a_.n; ++k) t += a_.s[k] * a_.s[k] * a_.v[i + k * lv] * a_.v[j + k * lv];
    return t;
}

bool Solver::start_estimate() {
    const int n = a_.n;
    const std::ptrdiff_t nn = n;
    for (std::ptrdiff_t i = 0; i < nn * nn; ++i) h_[i] = 0.0;
    augmented_ = f_.hes != nullptr;
    if (!augmented_) return true;
    // The user's term packed by rows into the copy region, which is free until the SVD.
    int iflag = 0;
    f_.hadapt(f_.hes, &iflag, a_.m, n, a_.fvec, a_.x, copy_, n * (n + 1) / 2, f_.iuser, f_.ruser);
    if (iflag < 0) {
        stop_ = iflag;
        return false;
    }
    for (int i = 0; i < n; ++i)
        for (int j = 0; j <= i; ++j) h_[i + j * nn] = h_[j + i * nn] = copy_[static_cast<std::ptrdiff_t>(i) * (i + 1) / 2 + j];
    if (!all_finite(nn * nn, h_)) drop_estimate();
    return true;
}

bool Solver::update_estimate(double f_old, double f_new) {
    const int m = a_.m, n = a_.n;
    const std::ptrdiff_t ld = a_.lj, nn = n, lv = a_.lv;
    auto dot = [](int len, const double *u, const double *w) {
        double t = 0.0;
        for (int i = 0; i < len; ++i) t += u[i] * w[i];
        return t;
    };
    // Which model foresaw the reduction better: Gauss-Newton predicts -(2 g'p + |Jp|^2), the augmented
    // model p'Sp less.  |Jp|^2 from the decomposition.
    double jp = 0.0;
    for (int k = 0; k < n; ++k) {
        double t = 0.0;
        for (int j = 0; j < n; ++j) t += a_.v[j + k * lv] * scale_[j] * p_[j];
        jp += a_.s[k] * a_.s[k] * t * t;
    }
    auto sp = [&] {
        for (int i = 0; i < n; ++i) {
            double t = 0.0;
            for (int j = 0; j < n; ++j) t += h_[i + j * nn] * p_[j];
            rt_[i] = t;
        }
    };
    sp();
    const double psp = dot(n, p_, rt_);
    const double actual = f_old - f_new, gauss = -(2.0 * dot(n, g_, p_) + jp);
    augmented_ = std::fabs(gauss - psp - actual) < std::fabs(gauss - actual);
    // J_old' f_new (into d_, which a Jacobian by differences leaves alone), then the Jacobian at the
    // new point and J_new' f_new.
    for (int j = 0; j < n; ++j) d_[j] = dot(m, a_.fjac + j * ld, a_.fvec);
    if (f_.lsq == nullptr ? !jacobian_by_differences(a_.x, a_.fvec) : !residuals(a_.x, rt_ + n, true)) return false;
    // y = J_new'f_new - g (into g_, recomputed by the next decomposition), y# = J_new'f_new - d (into xt_).
    for (int j = 0; j < n; ++j) {
        const double t = dot(m, a_.fjac + j * ld, a_.fvec);
        g_[j] = t - g_[j];
        xt_[j] = t - d_[j];
    }
    const double ys = dot(n, g_, p_), ysharp = dot(n, xt_, p_);
    const double eps = zek::precision();
    if (!(ys > std::sqrt(eps) * norm2(n, g_) * norm2(n, p_))) return true;
    // Size the estimate down where it overstates the curvature along p.
    const double tau = psp > 0.0 ? std::min(1.0, std::fabs(ysharp) / psp) : 1.0;
    sp();  // the differences overwrote S p
    for (std::ptrdiff_t i = 0; i < nn * nn; ++i) h_[i] *= tau;
    for (int i = 0; i < n; ++i) rt_[i] = xt_[i] - tau * rt_[i];  // z = y# - S p
    const double zp = dot(n, rt_, p_);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            h_[i + j * nn] += (rt_[i] * g_[j] + g_[i] * rt_[j]) / ys - zp * g_[i] * g_[j] / (ys * ys);
    if (!all_finite(nn * nn, h_)) drop_estimate();
    return true;
}

bool Solver::residuals(const double *x, double *r, bool jacobian) {
    int iflag = jacobian ? 2 : 0;
    if (f_.lsq != nullptr) f_.adapt(f_.lsq, &iflag, a_.m, a_.n, x, r, a_.fjac, a_.lj, f_.iuser, f_.ruser);
    else f_.dadapt(f_.diff, &iflag, a_.m, a_.n, x, r, f_.iuser, f_.ruser);
    ++*a_.nf;
    if (iflag < 0) stop_ = iflag;
    return iflag >= 0;
}

bool Solver::jacobian_by_differences(const double *x, const double *r) {
    const double rt = std::sqrt(zek::precision());
    const std::ptrdiff_t ld = a_.lj;
    for (int j = 0; j < a_.n; ++j) xt_[j] = x[j];
    for (int j = 0; j < a_.n; ++j) {
        const double h = rt * (1.0 + std::fabs(x[j]));
        xt_[j] = x[j] + h;
        if (!residuals(xt_, rt_, false)) return false;
        xt_[j] = x[j];
        for (int i = 0; i < a_.m; ++i) a_.fjac[i + j * ld] = (rt_[i] - r[i]) / h;
    }
    return true;
}

// SVD of FJAC D^-1 (SCALED) or of FJAC itself (what the caller and the monitor see): S, and V (as
// columns); g = J'f.  Returns the count of values taken (0 when it failed).
int Solver::decompose(bool scaled) {
    const int m = a_.m, n = a_.n;
    const std::ptrdiff_t ld = a_.lj, lv = a_.lv;
    // Each variable measured by its column of J, never less than it has been: the radius then bounds
    // the change of the model, and a variable whose column shrinks (a parameter multiplied by one
    // running to 0) cannot be sent off to infinity by a radius sized for the others.
    for (int j = 0; j < n && scaled; ++j) {
        const double c = norm2(m, a_.fjac + j * ld);
        scale_[j] = std::max(scale_[j], c > 0.0 ? c : (scale_[j] > 0.0 ? scale_[j] : 1.0));
    }
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i)
            copy_[i + j * static_cast<std::ptrdiff_t>(m)] = scaled ? a_.fjac[i + j * ld] / scale_[j] : a_.fjac[i + j * ld];
    if (zek::svd(m, n, copy_, m, a_.s, nullptr, 1, a_.v, a_.lv, svdw_) != 0) return 0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < i; ++j) std::swap(a_.v[i + j * lv], a_.v[j + i * lv]);
    for (int j = 0; j < n; ++j) {
        double t = 0.0;
        for (int i = 0; i < m; ++i) t += a_.fjac[i + j * ld] * a_.fvec[i];
        g_[j] = t;
    }
    int k = 0;
    while (k < n && a_.s[k] > 10.0 * zek::precision() * a_.s[0]) ++k;
    return k;
}

// b_i = v_i'g / s_i, kept in rt_ (the trial residuals are not needed until the step is formed).
double Solver::step_norm(double shift, int k) const {
    double t = 0.0;
    for (int i = 0; i < k; ++i) {
        const double c = a_.s[i] * rt_[i] / (a_.s[i] * a_.s[i] + shift);
        t += c * c;
    }
    return std::sqrt(t);
}

void Solver::step(double shift, int k) {
    const std::ptrdiff_t lv = a_.lv;
    for (int j = 0; j < a_.n; ++j) p_[j] = 0.0;
    for (int i = 0; i < k; ++i) {
        const double c = -a_.s[i] * rt_[i] / (a_.s[i] * a_.s[i] + shift);
        for (int j = 0; j < a_.n; ++j) p_[j] += c * a_.v[j + i * lv];
    }
    for (int j = 0; j < a_.n; ++j) p_[j] /= scale_[j];
}

bool Solver::second_order() {
    const int m = a_.m, n = a_.n;
    const std::ptrdiff_t ld = a_.lj, nn = n;
    // J'J first.
    for (int i = 0; i < n; ++i)
        for (int j = 0; j <= i; ++j) {
            double t = 0.0;
            for (int r = 0; r < m; ++r) t += a_.fjac[r + i * ld] * a_.fjac[r + j * ld];
            h_[i + j * nn] = h_[j + i * nn] = t;
        }
    if (f_.hes != nullptr) {
        // The user's term, packed by rows into the copy region (free after the SVD).
        const int lb = n * (n + 1) / 2;
        int iflag = 0;
        f_.hadapt(f_.hes, &iflag, a_.m, n, a_.fvec, a_.x, copy_, lb, f_.iuser, f_.ruser);
        if (iflag < 0) {
            stop_ = iflag;
            return false;
        }
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j) {
                const double t = copy_[static_cast<std::ptrdiff_t>(i) * (i + 1) / 2 + j];
                h_[i + j * nn] += t;
                if (i != j) h_[j + i * nn] += t;
            }
        return true;
    }
    // Differences of g = J'f along each axis give (J'J + S) e_j; the Jacobian at x is formed again at
    // the end, since the trial calls write FJAC.
    const double rt = std::sqrt(zek::precision());
    double *r = rt_ + n;
    for (int j = 0; j < n; ++j) xt_[j] = a_.x[j];
    for (int j = 0; j < n; ++j) {
        const double hj = rt * (1.0 + std::fabs(a_.x[j]));
        xt_[j] = a_.x[j] + hj;
        if (!residuals(xt_, r, true)) return false;
        xt_[j] = a_.x[j];
        for (int i = 0; i < n; ++i) {
            double t = 0.0;
            for (int q = 0; q < m; ++q) t += a_.fjac[q + i * ld] * r[q];
            copy_[i + j * nn] = (t - g_[i]) / hj;
        }
    }
    if (!residuals(a_.x, r, true)) return false;
    // copy_ now holds J'J + S by columns, unsymmetric by rounding: its symmetric part is the model.
    for (int i = 0; i < n; ++i)
        for (int j = 0; j <= i; ++j) {
            const double t = 0.5 * (copy_[i + j * nn] + copy_[j + i * nn]);
            h_[i + j * nn] = h_[j + i * nn] = t;
        }
    return true;
}

double Solver::newton_step(double radius) {
    const int n = a_.n;
    const std::ptrdiff_t nn = n;
    double biggest = 0.0, smallest = HUGE_VAL;
    for (int j = 0; j < n; ++j) {
        const double hjj = model(j, j);
        biggest = std::max(biggest, std::fabs(hjj));
        if (hjj > 0.0) smallest = std::min(smallest, hjj);
    }
    // Shifts grow from far below the smallest curvature, so that a badly scaled model still takes
    // full steps along its flat directions.
    const double base = std::isfinite(smallest) ? std::max(1e-10 * smallest, zek::safe_minimum()) : 1.0;
    double shift = 0.0;
    for (int attempt = 0; attempt < 400; ++attempt) {
        bool ok = std::isfinite(biggest);
        double *l = copy_;
        for (int i = 0; i < n && ok; ++i)
            for (int j = 0; j <= i; ++j) {
                double t = model(i, j) + (i == j ? shift : 0.0);
                for (int k = 0; k < j; ++k) t -= l[i + k * nn] * l[j + k * nn];
                if (i == j) {
                    if (!(t > zek::precision() * (1.0 + biggest))) {
                        ok = false;
                        break;
                    }
                    l[i + i * nn] = std::sqrt(t);
                } else {
                    l[i + j * nn] = t / l[j + j * nn];
                }
            }
        if (ok) {
            for (int i = 0; i < n; ++i) {
                double t = -g_[i] / scale_[i];
                for (int k = 0; k < i; ++k) t -= l[i + k * nn] * p_[k];
                p_[i] = t / l[i + i * nn];
            }
            for (int i = n - 1; i >= 0; --i) {
                double t = p_[i];
                for (int k = i + 1; k < n; ++k) t -= l[k + i * nn] * p_[k];
                p_[i] = t / l[i + i * nn];
            }
            if (norm2(n, p_) <= radius * 1.0000001) {
                double php = 0.0, gp = 0.0;
                for (int i = 0; i < n; ++i) {
                    double t = 0.0;
                    for (int j = 0; j < n; ++j) t += model(std::max(i, j), std::min(i, j)) * p_[j];
                    php += p_[i] * t;
                    gp += g_[i] / scale_[i] * p_[i];
                }
                for (int i = 0; i < n; ++i) p_[i] /= scale_[i];
                last_shift_ = shift;
                return -2.0 * gp - php;
            }
        }
        shift = shift == 0.0 ? base : 2.0 * shift;
    }
    return -1.0;
}

int Solver::run() {
    const int m = a_.m, n = a_.n;
    *a_.niter = 0;
    *a_.nf = 0;
    const bool differences = f_.lsq == nullptr;
    if (!residuals(a_.x, a_.fvec, !differences)) return stop_;
    if (!all_finite(m, a_.fvec)) return kNotFinite;
    if (differences && !jacobian_by_differences(a_.x, a_.fvec)) return stop_;
    const std::ptrdiff_t ldj = a_.lj;
    for (int j = 0; j < n; ++j)
        if (!all_finite(m, a_.fjac + j * ldj)) return kNotFinite;
    if (f_.quasi_newton && !start_estimate()) return stop_;
    double f = 0.0;
    for (int i = 0; i < m; ++i) f += a_.fvec[i] * a_.fvec[i];
    *a_.fsumsq = f;
    const double eps = zek::precision();
    scale_.assign(static_cast<std::size_t>(n), 0.0);
    double radius = -1.0;  // set from the scaled start on the first decomposition
    int result = kDone;
    // A step cut short by the radius marks convergence only where the point has settled: f nearly
    // orthogonal to the range of J, |D^-1 J'f| <= 1e-6 s_1 |f| in the scaled variables (s_1 of the
    // scaled J).  Elsewhere a short step says only that the model is poor or J is large, as on a slope
    // where the parameters run off to infinity and a tiny step still promises a real reduction.  A
    // zero-residual problem ends by its unrestricted Gauss-Newton steps instead, whose f stays in the
    // range of J.
    auto settled = [&](double gnorm) { return gnorm <= 1e-6 * a_.s[0] * std::sqrt(f); };
    for (;;) {
        // The monitor is shown the decomposition of J itself.
        if (s_.iprint > 0 && *a_.niter % s_.iprint == 0 && decompose(false) > 0) monitor(grade());
        const int k = decompose(true);
        if (k == 0 && a_.s[0] != 0.0) return kSvdFailed;
        if (a_.igrade != nullptr) *a_.igrade = k;
        if (radius < 0.0) {
            double dx = 0.0;
            for (int j = 0; j < n; ++j) dx = std::hypot(dx, scale_[j] * a_.x[j]);
            // A first radius of |D x| lets each variable change by about itself; a larger one sends
            // exponential models (BoxBOD's from (1, 1)) into the flat region where they saturate.
            radius = dx > 0.0 && std::isfinite(dx) ? dx : 1.0;
        }
        const double f_before = f;
        const double gnorm = norm2(n, g_);
        double gscaled = 0.0;
        for (int j = 0; j < n; ++j) gscaled = std::hypot(gscaled, g_[j] / scale_[j]);
        if (f == 0.0 || k == 0 || gnorm <= eps * std::max(f, eps)) break;
        if (*a_.nf >= s_.maxcal) {
            result = kLimit;
            break;
        }
        if (carries_second_order() && !second_order()) return stop_;
        const std::ptrdiff_t lv = a_.lv;
        for (int i = 0; i < k; ++i) {
            double t = 0.0;
            for (int j = 0; j < n; ++j) t += a_.v[j + i * lv] * g_[j] / scale_[j];
            rt_[i] = t / a_.s[i];
        }
        // Trial steps within the radius until one reduces f or the radius falls below the tolerance.
        bool accepted = false;
        bool converged = false;
        bool polish = false;  // end with the Gauss-Newton step, which f can no longer tell from x
        gauss_newton_ = false;
        for (int trial = 0; trial < 60 && !accepted; ++trial) {
            double shift = 0.0;
            double pred = 0.0;
            if (augmented()) {
                pred = newton_step(radius);
                if (pred < 0.0) {
                    // No shift makes the augmented model convex: Gauss-Newton.
                    if (f_.quasi_newton) drop_estimate();
                    else gauss_newton_ = true;
                    continue;
                }
            } else if (step_norm(0.0, k) > radius) {
                for (int it = 0; it < 50; ++it) {
                    const double pn = step_norm(shift, k);
                    double dn = 0.0;  // d|p|/dL
                    for (int i = 0; i < k; ++i) {
                        const double d = a_.s[i] * a_.s[i] + shift;
                        const double c = a_.s[i] * rt_[i] / d;
                        dn -= c * c / d;
                    }
                    dn /= pn;
                    const double phi = 1.0 / pn - 1.0 / radius;
                    const double dphi = -dn / (pn * pn);
                    const double nxt = shift - phi / dphi;
                    if (!(nxt > 0.0) || !std::isfinite(nxt)) break;
                    if (std::fabs(nxt - shift) <= 1e-3 * shift) {
                        shift = nxt;
                        break;
                    }
                    shift = nxt;
                }
            }
            if (!augmented()) {
                step(shift, k);
                for (int i = 0; i < k; ++i) {
                    const double q = shift / (a_.s[i] * a_.s[i] + shift);
                    pred += rt_[i] * rt_[i] * (1.0 - q * q);
                }
            }
            const double pnorm = norm2(n, p_), xnorm = norm2(n, a_.x);
            double znorm = 0.0, dxnorm = 0.0;
            for (int j = 0; j < n; ++j) {
                znorm = std::hypot(znorm, scale_[j] * p_[j]);
                dxnorm = std::hypot(dxnorm, scale_[j] * (1.0 + std::fabs(a_.x[j])));
            }
            // The step measured against 1 + |x| in the same scaled variables, so that a parameter far
            // smaller than the others is resolved to XTOL of itself, not of the largest.
            const bool short_step = znorm <= s_.xtol * dxnorm;
            // The point has settled when f is nearly orthogonal to the range of J or when the
            // Gauss-Newton step itself, not just the step the radius allows, is that short (a
            // zero-residual problem, whose f stays in the range of J).
            const bool stationary = settled(gscaled) || step_norm(0.0, k) <= s_.xtol * dxnorm;
            if (pnorm > s_.stepmx) {
                // STEPMX bounds the step in the variables themselves.
                radius = 0.99 * znorm * (s_.stepmx / pnorm);
                continue;
            }
            // A step cut short by the radius (or by negative curvature) is small because the radius
            // is: it marks convergence only where the Gauss-Newton step itself has settled, and
            // otherwise the radius shrinks on until it is below the resolution of x.
            const bool restricted = augmented() ? last_shift_ > 0.0 : shift > 0.0;
            if ((short_step && stationary) || pred <= 0.5 * eps * f) {
                if (f_.quasi_newton && augmented_) {
                    drop_estimate();  // the estimate, not the point, stopped the step
                    continue;
                }
                // A second-order term formed by differences can be large enough to make any step look
                // useless; only Gauss-Newton's own prediction, or a settled gradient, ends the run.
                if (augmented() && !stationary) {
                    gauss_newton_ = true;
                    continue;
                }
                converged = !restricted || stationary;
                polish = converged && step_norm(0.0, k) > eps * dxnorm;
                if (converged || pnorm <= eps * (1.0 + xnorm)) break;
            }
            if (*a_.nf >= s_.maxcal) break;
            // rt_ holds b until here; the trial residuals go behind the trial point.
            double *r = rt_ + n;
            for (int j = 0; j < n; ++j) xt_[j] = a_.x[j] + p_[j];
            if (!residuals(xt_, r, false)) return stop_;
            double ft = 0.0;
            for (int i = 0; i < m; ++i) ft += r[i] * r[i];
            const double ratio = std::isfinite(ft) ? (f - ft) / pred : -1.0;
            if (ratio < 0.25) radius = 0.25 * znorm;
            else if (ratio > 0.75) radius = std::max(radius, 2.0 * znorm);
            if (ratio > 1e-4) {
                for (int j = 0; j < n; ++j) a_.x[j] = xt_[j];
                for (int i = 0; i < m; ++i) a_.fvec[i] = r[i];
                f = ft;
                accepted = true;
            }
        }
        if (converged) {
            // On an ill-conditioned fit f settles several digits before x does (MGH10's b1), and the
            // radius shrinks on rounding noise in the ratio.  The unrestricted Gauss-Newton step, whose
            // fixed points are the stationary points, still carries those digits: it is kept unless
            // f rises.
            if (polish && *a_.nf < s_.maxcal) {
                step(0.0, k);
                double *r = rt_ + n;
                for (int j = 0; j < n; ++j) xt_[j] = a_.x[j] + p_[j];
                if (!residuals(xt_, r, false)) return stop_;
                double ft = 0.0;
                for (int i = 0; i < m; ++i) ft += r[i] * r[i];
                if (ft <= f * (1.0 + 4.0 * eps)) {
                    for (int j = 0; j < n; ++j) a_.x[j] = xt_[j];
                    for (int i = 0; i < m; ++i) a_.fvec[i] = r[i];
                    f = ft;
                    if (differences) {
                        if (!jacobian_by_differences(a_.x, a_.fvec)) return stop_;
                    } else if (!residuals(a_.x, r, true)) {
                        return stop_;
                    }
                    for (int j = 0; j < n; ++j)
                        if (!all_finite(m, a_.fjac + j * ldj)) return kNoLowerPoint;
                }
            }
            break;
        }
        if (!accepted) {
            result = *a_.nf >= s_.maxcal ? kLimit : kNoLowerPoint;
            break;
        }
        ++*a_.niter;
        *a_.fsumsq = f;
        if (f_.quasi_newton) {
            if (!update_estimate(f_before, f)) return stop_;
        } else if (differences) {
            if (!jacobian_by_differences(a_.x, a_.fvec)) return stop_;
        } else if (!residuals(a_.x, rt_ + n, true)) {
            return stop_;
        }
        for (int j = 0; j < n; ++j)
            if (!all_finite(m, a_.fjac + j * ldj)) return kNoLowerPoint;
    }
    *a_.fsumsq = f;
    // S and V returned (and read by the covariance routine) belong to J, not to the scaled matrix.
    if (decompose(false) == 0 && a_.s[0] != 0.0 && result == kDone) result = kSvdFailed;
    if (a_.igrade != nullptr) *a_.igrade = grade();
    if (s_.iprint >= 0) monitor(grade());
    return result;
}

// The failure exits of the least-squares family.  The workspace exit names the formula of the
// routine's bound (one row a formula); the user's stop takes the stop code as IFAIL.
enum LsqExit {
    kNLessThan1,
    kMLessThanN,
    kMaxcalLessThan1,
    kEtaOutOfRange,
    kXtolNegative,
    kStepmxBelowXtol,
    kLjBelowM,
    kLvBelowN,
    kLwFcf,
    kLwFcfOne,
    kLwGbf,
    kLwGbfOne,
    kLwFyf,
    kLwFyfOne,
    kLwEasyDerivatives,
    kLwEasyDerivativesOne,
    kMaxcalEvaluations,
    kMaxcalCalls,
    kNoLowerPointFound,
    kSvdFailure,
    kNotFiniteAtStart,
    kUserStop,
    kLsqhesMissing,
};
constexpr zek::ExitRow kLsqExits[] = {
    {1, 99998, " ** On entry, N must be at least 1: N =%16ld"},
    {1, 99998, " ** On entry, M must be at least N: M =%16ld, N =%16ld"},
    {1, 99998, " ** On entry, MAXCAL must be at least 1: MAXCAL =%16ld"},
    {1, 99998, " ** On entry, ETA must satisfy 0.le.ETA.lt.1: ETA =%13.5E"},
    {1, 99998, " ** On entry, XTOL must be at least 0.0: XTOL =%13.5E"},
    {1, 99998, " ** On entry, STEPMX must be at least XTOL:\n ** STEPMX =%13.5E, XTOL =%13.5E"},
    {1, 99998, " ** On entry, LJ must be at least M: LJ =%16ld, M =%16ld"},
    {1, 99998, " ** On entry, LV must be at least N: LV =%16ld, N =%16ld"},
    {1, 99998, " ** On entry, LW must be at least 6*N + M*N + 2*M + N*(N-1)/2 if N.gt.1:\n"
               " ** LW =%16ld, LW must be at least%16ld"},
    {1, 99998, " ** On entry, LW must be at least 7 + 3*M if N.eq.1:\n ** LW =%16ld, LW must be at least%16ld"},
    {1, 99998, " ** On entry, LW must be at least 7*N + M*N + 2*M + N*N if N.gt.1:\n"
               " ** LW =%16ld, LW must be at least%16ld"},
    {1, 99998, " ** On entry, LW must be at least 9 + 3*M if N.eq.1:\n ** LW =%16ld, LW must be at least%16ld"},
    {1, 99998, " ** On entry, LW must be at least 7*N + N*N + 2*M*N + 2*M + N*(N-1)/2 if N.gt.1:\n"
               " ** LW =%16ld, LW must be at least%16ld"},
    {1, 99998, " ** On entry, LW must be at least 9 + 5*M if N.eq.1:\n ** LW =%16ld, LW must be at least%16ld"},
    {1, 99998, " ** On entry, LW must be at least 8*N + 2*N*N + 2*M*N + 3*M if N.gt.1:\n"
               " ** LW =%16ld, LW must be at least%16ld"},
    {1, 99998, " ** On entry, LW must be at least 11 + 5*M if N.eq.1:\n ** LW =%16ld, LW must be at least%16ld"},
    {2, 99997, " ** There have been MAXCAL evaluations of the residuals: MAXCAL =%15ld"},
    {2, 99997, " ** There have been MAXCAL calls to LSQFUN: MAXCAL =%16ld"},
    {3, 99996, " ** The conditions for a minimum have not all been satisfied, but a lower point could not be found."},
    {4, 99995, " ** The singular value decomposition of the Jacobian failed."},
    {5, 99994, " ** The residuals or the Jacobian are not finite at the starting point."},
    {0, 99993, " ** User requested termination."},
    {1, 99992, " ** On entry, LSQHES must be given."},
};

// The workspace a routine needs, and the exit that states its formula.
struct Workspace {
    std::ptrdiff_t need;
    LsqExit exit;
};
Workspace workspace(const char *name, int m, int n) {
    const std::ptrdiff_t mm = m, nn = n, half = nn * (nn - 1) / 2;
    const std::string r = name;
    if (r == "E04FCF")
        return n > 1 ? Workspace{6 * nn + mm * nn + 2 * mm + half, kLwFcf} : Workspace{7 + 3 * mm, kLwFcfOne};
    if (r == "E04GBF" || r == "E04GDF" || r == "E04HEF")
        return n > 1 ? Workspace{7 * nn + mm * nn + 2 * mm + nn * nn, kLwGbf} : Workspace{9 + 3 * mm, kLwGbfOne};
    if (r == "E04FYF")
        return n > 1 ? Workspace{7 * nn + nn * nn + 2 * mm * nn + 2 * mm + half, kLwFyf}
                     : Workspace{9 + 5 * mm, kLwFyfOne};
    return n > 1 ? Workspace{8 * nn + 2 * nn * nn + 2 * mm * nn + 3 * mm, kLwEasyDerivatives}
                 : Workspace{11 + 5 * mm, kLwEasyDerivativesOne};
}

// Argument checks in their order; false after the failure exit.
bool check(zek::FailureExit &exit, const char *name, int m, int n, const Settings *s, double eta, int lj, int lv,
           int lw) {
    auto bad = [&](LsqExit key, std::initializer_list<zek::MessageValue> values) {
        zek::take(exit, kLsqExits, key, values);
        return false;
    };
    if (n < 1) return bad(kNLessThan1, {n});
    if (m < n) return bad(kMLessThanN, {m, n});
    if (s != nullptr) {
        if (s->maxcal < 1) return bad(kMaxcalLessThan1, {s->maxcal});
        if (!(eta >= 0.0 && eta < 1.0)) return bad(kEtaOutOfRange, {eta});
        if (!(s->xtol >= 0.0)) return bad(kXtolNegative, {s->xtol});
        if (!(s->stepmx >= s->xtol)) return bad(kStepmxBelowXtol, {s->stepmx, s->xtol});
        if (lj < m) return bad(kLjBelowM, {lj, m});
        if (lv < n) return bad(kLvBelowN, {lv, n});
    }
    const Workspace w = workspace(name, m, n);
    if (lw < w.need) return bad(w.exit, {lw, static_cast<long>(w.need)});
    return true;
}

void finish(zek::FailureExit &exit, const char *name, int code, int maxcal) {
    switch (code) {
    case kDone: exit.succeed(); break;
    case kLimit:
        zek::take(exit, kLsqExits, std::string(name) == "E04GDF" ? kMaxcalEvaluations : kMaxcalCalls, {maxcal});
        break;
    case kNoLowerPoint: zek::take(exit, kLsqExits, kNoLowerPointFound); break;
    case kSvdFailed: zek::take(exit, kLsqExits, kSvdFailure); break;
    case kNotFinite: zek::take(exit, kLsqExits, kNotFiniteAtStart); break;
    default: exit.fail(code, kLsqExits[kUserStop].number, kLsqExits[kUserStop].text); break;
    }
}

void comprehensive(const char *name, const Functions &fn, int m, int n, int iprint, int maxcal, double eta,
                   double xtol, double stepmx, double *x, double *fsumsq, double *fvec, double *fjac, int lj,
                   double *s, double *v, int lv, int *niter, int *nf, int *igrade, double *w, int lw, int *ifail) {
    zek::FailureExit exit(name, nullptr, ifail);
    const Settings set{iprint, maxcal, xtol, stepmx};
    if (!check(exit, name, m, n, &set, eta, lj, lv, lw)) return;
    *igrade = 0;
    Solver solver({m, n, x, fsumsq, fvec, fjac, lj, s, v, lv, niter, nf, w, igrade}, fn, set);
    finish(exit, name, solver.run(), maxcal);
}

void easy(const char *name, const Functions &fn, int m, int n, double *x, double *fsumsq, double *w, int lw,
          int *ifail) {
    zek::FailureExit exit(name, nullptr, ifail);
    if (!check(exit, name, m, n, nullptr, 0.0, m, n, lw)) return;
    const std::ptrdiff_t mm = m, nn = n;
    double *fvec = w, *fjac = w + mm, *s = fjac + mm * nn, *v = s + nn, *rest = v + nn * nn;
    // Differences of the gradient take N calls an iteration of their own.
    const int maxcal = fn.second_differences ? 50 * n * (n + 1) : (fn.lsq != nullptr ? 100 : 400) * n;
    double stepmx = 1e5 * (1.0 + norm2(n, x));
    if (!std::isfinite(stepmx)) stepmx = 1e5;
    const Settings set{-1, maxcal, 10.0 * std::sqrt(zek::precision()), stepmx};
    int niter = 0, nf = 0;
    Solver solver({m, n, x, fsumsq, fvec, fjac, m, s, v, n, &niter, &nf, rest, nullptr}, fn, set);
    finish(exit, name, solver.run(), maxcal);
}

Functions with_derivatives(ZekE04LsqFun f, ZekE04AdaptLsq a, int *iuser, double *ruser) {
    Functions fn;
    fn.lsq = f;
    fn.adapt = a != nullptr ? a : E04_ADAPT_LSQ;
    fn.iuser = iuser;
    fn.ruser = ruser;
    return fn;
}

Functions by_differences(ZekE04LsqFunDiff f, ZekE04AdaptLsqDiff a, int *iuser, double *ruser) {
    Functions fn;
    fn.diff = f;
    fn.dadapt = a != nullptr ? a : E04_ADAPT_LSQ_DIFF;
    fn.iuser = iuser;
    fn.ruser = ruser;
    return fn;
}

void monitored(Functions &fn, ZekE04LsqMon mon, ZekE04AdaptLsqMon madapt) {
    fn.mon = mon;
    fn.madapt = madapt != nullptr ? madapt : E04_ADAPT_LSQ_MON;
}

} // namespace

extern "C" void E04_ADAPT_LSQ(ZekE04LsqFun f, int *iflag, int m, int n, const double *xc, double *fvec,
                              double *fjac, int lj, int *iuser, double *ruser) {
    zek::mark_vector(m, fvec);
    if (*iflag == 2) zek::mark_matrix(n, lj, fjac);
    f(iflag, &m, &n, xc, fvec, fjac, &lj, iuser, ruser);
}

extern "C" void E04_ADAPT_LSQ_DIFF(ZekE04LsqFunDiff f, int *iflag, int m, int n, const double *xc, double *fvec,
                                   int *iuser, double *ruser) {
    zek::mark_vector(m, fvec);
    f(iflag, &m, &n, xc, fvec, iuser, ruser);
}

extern "C" void E04_ADAPT_LSQ_MON(ZekE04LsqMon f, int m, int n, const double *xc, const double *fvec,
                                  const double *fjac, int lj, const double *s, int igrade, int niter, int nf,
                                  int *iuser, double *ruser) {
    f(&m, &n, xc, fvec, fjac, &lj, s, &igrade, &niter, &nf, iuser, ruser);
}

extern "C" void E04_ADAPT_LSQ_HES(ZekE04LsqHes f, int *iflag, int m, int n, const double *fvec, const double *xc,
                                  double *b, int lb, int *iuser, double *ruser) {
    zek::mark_vector(lb, b);
    f(iflag, &m, &n, fvec, xc, b, &lb, iuser, ruser);
}

namespace {

// The comprehensive forms differ only in where the second-order term comes from.
void comprehensive_call(const char *name, Functions fn, ZekE04LsqMon lsqmon, ZekE04AdaptLsqMon madapt,
                        const int *m, const int *n, const int *iprint, const int *maxcal, const double *eta,
                        const double *xtol, const double *stepmx, double *x, double *fsumsq, double *fvec,
                        double *fjac, const int *lj, double *s, double *v, const int *lv, int *niter, int *nf,
                        int *igrade, double *w, const int *lw, int *ifail) {
    monitored(fn, lsqmon, madapt);
    comprehensive(name, fn, *m, *n, *iprint, *maxcal, *eta, *xtol, *stepmx, x, fsumsq, fvec, fjac, *lj, s, v, *lv,
                  niter, nf, igrade, w, *lw, ifail);
}

// The user's term: required by E04HEF and E04HYF, the estimate's optional start for E04GBF.
Functions with_term(Functions fn, ZekE04LsqHes lsqhes, ZekE04AdaptLsqHes hadapt) {
    fn.hes = lsqhes;
    fn.hadapt = hadapt != nullptr ? hadapt : E04_ADAPT_LSQ_HES;
    return fn;
}

bool term_missing(const char *name, ZekE04LsqHes lsqhes, int *ifail) {
    if (lsqhes != nullptr) return false;
    zek::FailureExit exit(name, nullptr, ifail);
    zek::take(exit, kLsqExits, kLsqhesMissing);
    return true;
}

Functions quasi_newton(Functions fn) {
    fn.quasi_newton = true;
    return fn;
}

Functions newton_by_differences(Functions fn) {
    fn.second_differences = true;
    return fn;
}

} // namespace

extern "C" void E04FCF(const int *m, const int *n, ZekE04LsqFunDiff lsqfun, ZekE04AdaptLsqDiff adapt,
                       ZekE04LsqMon lsqmon, ZekE04AdaptLsqMon madapt, const int *iprint, const int *maxcal,
                       const double *eta, const double *xtol, const double *stepmx, double *x, double *fsumsq,
                       double *fvec, double *fjac, const int *lj, double *s, double *v, const int *lv, int *niter,
                       int *nf, int *igrade, int *, const int *, double *w, const int *lw, int *iuser, double *ruser,
                       int *ifail) {
    comprehensive_call("E04FCF", quasi_newton(by_differences(lsqfun, adapt, iuser, ruser)), lsqmon, madapt, m, n, iprint,
                       maxcal, eta, xtol, stepmx, x, fsumsq, fvec, fjac, lj, s, v, lv, niter, nf, igrade, w, lw, ifail);
}

extern "C" void E04GBF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, ZekE04LsqHes lsqhes,
                       ZekE04AdaptLsqHes hadapt, ZekE04LsqMon lsqmon, ZekE04AdaptLsqMon madapt, const int *iprint,
                       const int *maxcal, const double *eta, const double *xtol, const double *stepmx, double *x,
                       double *fsumsq, double *fvec, double *fjac, const int *lj, double *s, double *v,
                       const int *lv, int *niter, int *nf, int *igrade, int *, const int *, double *w, const int *lw,
                       int *iuser, double *ruser, int *ifail) {
    Functions fn = quasi_newton(with_derivatives(lsqfun, adapt, iuser, ruser));
    if (lsqhes != nullptr) fn = with_term(fn, lsqhes, hadapt);
    comprehensive_call("E04GBF", fn, lsqmon, madapt, m, n, iprint, maxcal, eta, xtol, stepmx, x, fsumsq, fvec, fjac,
                       lj, s, v, lv, niter, nf, igrade, w, lw, ifail);
}

extern "C" void E04GDF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, ZekE04LsqMon lsqmon,
                       ZekE04AdaptLsqMon madapt, const int *iprint, const int *maxcal, const double *eta,
                       const double *xtol, const double *stepmx, double *x, double *fsumsq, double *fvec,
                       double *fjac, const int *lj, double *s, double *v, const int *lv, int *niter, int *nf,
                       int *igrade, int *, const int *, double *w, const int *lw, int *iuser, double *ruser,
                       int *ifail) {
    comprehensive_call("E04GDF", newton_by_differences(with_derivatives(lsqfun, adapt, iuser, ruser)), lsqmon,
                       madapt, m, n, iprint, maxcal, eta, xtol, stepmx, x, fsumsq, fvec, fjac, lj, s, v, lv, niter,
                       nf, igrade, w, lw, ifail);
}

extern "C" void E04HEF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, ZekE04LsqHes lsqhes,
                       ZekE04AdaptLsqHes hadapt, ZekE04LsqMon lsqmon, ZekE04AdaptLsqMon madapt, const int *iprint,
                       const int *maxcal, const double *eta, const double *xtol, const double *stepmx, double *x,
                       double *fsumsq, double *fvec, double *fjac, const int *lj, double *s, double *v,
                       const int *lv, int *niter, int *nf, int *igrade, int *, const int *, double *w, const int *lw,
                       int *iuser, double *ruser, int *ifail) {
    if (term_missing("E04HEF", lsqhes, ifail)) return;
    comprehensive_call("E04HEF", with_term(with_derivatives(lsqfun, adapt, iuser, ruser), lsqhes, hadapt), lsqmon,
                       madapt, m, n, iprint, maxcal, eta, xtol, stepmx, x, fsumsq, fvec, fjac, lj, s, v, lv, niter,
                       nf, igrade, w, lw, ifail);
}

extern "C" void E04FYF(const int *m, const int *n, ZekE04LsqFunDiff lsqfun, ZekE04AdaptLsqDiff adapt, double *x,
                       double *fsumsq, double *w, const int *lw, int *iuser, double *ruser, int *ifail) {
    easy("E04FYF", quasi_newton(by_differences(lsqfun, adapt, iuser, ruser)), *m, *n, x, fsumsq, w, *lw, ifail);
}

extern "C" void E04GYF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, double *x,
                       double *fsumsq, double *w, const int *lw, int *iuser, double *ruser, int *ifail) {
    easy("E04GYF", quasi_newton(with_derivatives(lsqfun, adapt, iuser, ruser)), *m, *n, x, fsumsq, w, *lw, ifail);
}

extern "C" void E04GZF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, double *x,
                       double *fsumsq, double *w, const int *lw, int *iuser, double *ruser, int *ifail) {
    easy("E04GZF", newton_by_differences(with_derivatives(lsqfun, adapt, iuser, ruser)), *m, *n, x, fsumsq, w, *lw,
         ifail);
}

extern "C" void E04HYF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, ZekE04LsqHes lsqhes,
                       ZekE04AdaptLsqHes hadapt, double *x, double *fsumsq, double *w, const int *lw, int *iuser,
                       double *ruser, int *ifail) {
    if (term_missing("E04HYF", lsqhes, ifail)) return;
    easy("E04HYF", with_term(with_derivatives(lsqfun, adapt, iuser, ruser), lsqhes, hadapt), *m, *n, x, fsumsq, w,
         *lw, ifail);
}
