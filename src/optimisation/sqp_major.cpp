// The SQP engine: workspace, evaluations with difference estimates of missing derivatives, the QP
// subproblem, the merit function and its penalties, the BFGS update of R and
// the major loop.
#include <algorithm>
#include <cmath>
#include <limits>

#include "frame/output.h"
#include "kernels/level1.h"
#include "optimisation/qp.h"
#include "optimisation/sqp.h"

namespace zek::sqp {

namespace {

using active_set::Start;
using active_set::Word;


inline double &at(double *m, int ld, int i, int j) { return m[i + static_cast<std::ptrdiff_t>(j) * ld]; }
inline double at(const double *m, int ld, int i, int j) { return m[i + static_cast<std::ptrdiff_t>(j) * ld]; }

double norm2(int n, const double *v) { return n > 0 ? dnrm2(n, v, 1) : 0.0; }
double norm_inf(int n, const double *v) {
    double m = 0.0;
    for (int i = 0; i < n; ++i) m = std::max(m, std::fabs(v[i]));
    return m;
}
double dot(int n, const double *a, const double *b) {
    double s = 0.0;
    for (int i = 0; i < n; ++i) s += a[i] * b[i];
    return s;
}
bool finite_all(int n, const double *v) {
    for (int i = 0; i < n; ++i)
        if (!std::isfinite(v[i])) return false;
    return true;
}
bool finite_matrix(int rows, int cols, const double *m, int ld) {
    for (int j = 0; j < cols; ++j)
        if (!finite_all(rows, m + static_cast<std::ptrdiff_t>(j) * ld)) return false;
    return true;
}

void say(const Run &run, int level, const std::string &line) {
    if (run.cfg.major_print >= level)
        host_line(run.cfg.print_unit, line.c_str(), static_cast<int>(line.size()) + 1);
}

// H v = R'(R v); w holds n reals.
void hessian_times(int n, const double *r, int ldr, const double *v, double *hv, double *w) {
    for (int i = 0; i < n; ++i) {
        double s = 0.0;
        for (int j = i; j < n; ++j) s += at(r, ldr, i, j) * v[j];
        w[i] = s;
    }
    for (int j = 0; j < n; ++j) {
        double s = 0.0;
        for (int i = 0; i <= j; ++i) s += at(r, ldr, i, j) * w[i];
        hv[j] = s;
    }
}

class FactorHessian : public qp::Hessian {
public:
    FactorHessian(int n, const double *r, int ldr, double *w) : n_(n), r_(r), ldr_(ldr), w_(w) {}
    bool product(const double *v, double *hv) override {
        hessian_times(n_, r_, ldr_, v, hv, w_);
        return finite_all(n_, hv);
    }

private:
    int n_;
    const double *r_;
    int ldr_;
    double *w_;
};

// The column of a missing-element mask: objective rows first, then the constraint rows.
inline bool missing_obj(const Run &run, int i, int j) {
    return run.miss[i + static_cast<std::ptrdiff_t>(j) * run.nobj] == kElementEstimated;
}
inline bool missing_con(const Run &run, int i, int j) {
    return run.miss[static_cast<std::ptrdiff_t>(run.nobj) * run.n + i + static_cast<std::ptrdiff_t>(j) * run.ncnln] ==
           kElementEstimated;
}
bool column_missing(const Run &run, int j) {
    for (int i = 0; i < run.nobj; ++i)
        if (missing_obj(run, i, j)) return true;
    for (int i = 0; i < run.ncnln; ++i)
        if (missing_con(run, i, j)) return true;
    return false;
}

// Values only at x into the given rows (derivative outputs into the scratch array).
int values_at(Run &run, const double *x, double *fv, double *c) {
    ++run.nfun;
    int mode = run.model->objective(0, x, 0, fv, run.scratch, run.nobj);
    if (mode < 0) return mode;
    if (run.ncnln > 0) {
        mode = run.model->constraints(0, x, 0, c, run.scratch + static_cast<std::ptrdiff_t>(run.nobj) * run.n,
                                      run.ncnln);
        if (mode < 0) return mode;
    }
    return 0;
}

// The missing Jacobian elements at x by forward or central differences.  Difference points stay inside
// the bounds: a forward step turns backward at an upper bound, and a central pair that does not fit is
// replaced by the one-sided second-order difference (4 f(x+h) - 3 f(x) - f(x+2h)) / 2h on the side
// that does.
int estimate_missing(Run &run) {
    for (int j = 0; j < run.n; ++j) {
        if (!column_missing(run, j)) continue;
        const double xj = run.x[j];
        const double h0 = (run.central ? run.hcen[j] : run.hfwd[j]) * (1.0 + std::fabs(xj));
        const bool pair = run.central && (xj - h0 < run.bl[j] || xj + h0 > run.bu[j]);
        const double h = run.central && !pair ? h0 : step_inside_bounds(run, j, h0, pair ? 2.0 : 1.0);
        run.x[j] = xj + h;
        int st = values_at(run, run.x, run.fs, run.cs);
        if (st == 0 && run.central) {
            run.x[j] = pair ? xj + 2.0 * h : xj - h;
            st = values_at(run, run.x, run.fs2, run.cs2);
        }
        run.x[j] = xj;
        if (st < 0) return st;
        auto diff = [&](double f0, double f1, double f2) {
            if (!run.central) return (f1 - f0) / h;
            return pair ? (4.0 * f1 - 3.0 * f0 - f2) / (2.0 * h) : (f1 - f2) / (2.0 * h);
        };
        for (int i = 0; i < run.nobj; ++i)
            if (missing_obj(run, i, j)) at(run.fjac, run.ldf, i, j) = diff(run.fv[i], run.fs[i], run.fs2[i]);
        for (int i = 0; i < run.ncnln; ++i)
            if (missing_con(run, i, j)) at(run.cjac, run.ldcj, i, j) = diff(run.c[i], run.cs[i], run.cs2[i]);
    }
    return 0;
}

} // namespace

double step_inside_bounds(const Run &run, int j, double h, double reach) {
    const double xj = run.x[j], up = run.bu[j] - xj, down = xj - run.bl[j];
    if (reach * h <= up) return h;
    if (reach * h <= down) return -h;
    if (!(up > 0.0) && !(down > 0.0)) return h;  // a fixed variable: its differences are never used
    return up >= down ? std::min(h, up / reach) : -std::min(h, down / reach);
}

int evaluate(Run &run, bool derivatives, int nstate) {
    const int mode = derivatives ? 2 : 0;
    ++run.nfun;
    if (derivatives) ++run.ngrad;
    int st = run.model->objective(mode, run.x, nstate, run.fv, derivatives ? run.fjac : run.scratch,
                                  derivatives ? run.ldf : run.nobj);
    if (st < 0) return st;
    if (run.ncnln > 0) {
        st = run.model->constraints(mode, run.x, nstate, run.c, derivatives ? run.cjac : run.scratch,
                                    derivatives ? run.ldcj : run.ncnln);
        if (st < 0) return st;
    }
    if (!finite_all(run.nobj, run.fv) || !finite_all(run.ncnln, run.c)) return 1;
    if (derivatives && nstate == 0 && run.missing_obj + run.missing_con > 0) {
        st = estimate_missing(run);
        if (st < 0) return st;
    }
    if (derivatives) {
        *run.objf = run.model->combine(run.fv, run.fjac, run.ldf, run.g);
        if (!finite_all(run.n, run.g) || !finite_matrix(run.ncnln, run.n, run.cjac, run.ldcj)) return 1;
    } else {
        *run.objf = run.model->combine_value(run.fv);
    }
    return std::isfinite(*run.objf) ? 0 : 1;
}

std::ptrdiff_t integer_work_needed(int n) { return qp::integer_work_needed(n); }

std::ptrdiff_t real_work_needed(int n, int nclin, int ncnln, int nobj) {
    const std::ptrdiff_t nn = n, m = nclin + ncnln, ldac = std::max<std::ptrdiff_t>(1, m), nt = nn + m;
    return ldac * nn + 2 * nt + 4 * nn + ldac + 5 * ncnln + 2 * nn + nobj + nobj * nn + ncnln + ncnln * nn +
           2 * nn + (nobj + ncnln) * nn + 3 * nn + 2 * nobj + 2 * ncnln + (nobj + ncnln) * nn +
           qp::real_work_needed(n, static_cast<int>(m));
}

void bind(Run &run, double *work, int *iwork) {
    const std::ptrdiff_t nn = run.n, m = run.nclin + run.ncnln, nt = nn + m, ncn = run.ncnln, nob = run.nobj;
    run.ldac = static_cast<int>(std::max<std::ptrdiff_t>(1, m));
    double *w = work;
    auto take = [&](std::ptrdiff_t k) {
        double *v = w;
        w += k;
        return v;
    };
    run.acomb = take(run.ldac * nn);
    run.qbl = take(nt);
    run.qbu = take(nt);
    run.cvec = take(nn);
    run.xq = take(nn);
    run.p = take(nn);
    run.wv = take(nn);
    run.axq = take(run.ldac);
    run.lambda = take(ncn);
    run.rho = take(ncn);
    run.slack = take(ncn);
    run.dslk = take(ncn);
    run.dlam = take(ncn);
    run.x0 = take(nn);
    run.g0 = take(nn);
    run.fv0 = take(nob);
    run.fjac0 = take(nob * nn);
    run.c0 = take(ncn);
    run.cjac0 = take(ncn * nn);
    run.hfwd = take(nn);
    run.hcen = take(nn);
    run.miss = take((nob + ncn) * nn);
    run.sv = take(nn);
    run.yv = take(2 * nn);
    run.fs = take(nob);
    run.fs2 = take(nob);
    run.cs = take(ncn);
    run.cs2 = take(ncn);
    run.scratch = take((nob + ncn) * nn);
    run.qpwork = w;
    run.qpiwork = iwork;
    run.work = work;
    run.iwork = iwork;
}

// ---- Hessian factor -----------------------------------------------------------------------------------

namespace {

void rotation(double a, double b, double *c, double *s, double *r) {
    if (b == 0.0) {
        *c = 1.0;
        *s = 0.0;
        *r = a;
        return;
    }
    const double h = std::hypot(a, b);
    *c = a / h;
    *s = b / h;
    *r = h;
}

// Rows k and k+1 of R, columns from..n-1, by the rotation (c, s).
void rotate_rows(int n, double *r, int ldr, int k, int from, double c, double s) {
    for (int j = from; j < n; ++j) {
        const double t1 = at(r, ldr, k, j), t2 = at(r, ldr, k + 1, j);
        at(r, ldr, k, j) = c * t1 + s * t2;
        at(r, ldr, k + 1, j) = -s * t1 + c * t2;
    }
}

} // namespace

// cond(H) = (largest / smallest diagonal of R)^2; infinite for a zero diagonal.
double condition_of(int n, const double *r, int ldr) {
    double dmax = 0.0, dmin = std::numeric_limits<double>::infinity();
    for (int i = 0; i < n; ++i) {
        const double d = std::fabs(at(r, ldr, i, i));
        dmax = std::max(dmax, d);
        dmin = std::min(dmin, d);
    }
    if (!(dmin > 0.0) || !std::isfinite(dmax)) return std::numeric_limits<double>::infinity();
    return (dmax / dmin) * (dmax / dmin);
}

namespace {

void set_identity(int n, double *r, int ldr) {
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) at(r, ldr, i, j) = i == j ? 1.0 : 0.0;
}

} // namespace

int hessian_update(int n, double *r, int ldr, const double *s, double *y, double *work) {
    double *u = work, *z = work + n;
    for (int i = 0; i < n; ++i) {
        double t = 0.0;
        for (int j = i; j < n; ++j) t += at(r, ldr, i, j) * s[j];
        u[i] = t;
    }
    const double unorm = norm2(n, u);
    const double shs = unorm * unorm;
    double sy = dot(n, s, y);
    if (!(shs > 0.0) || !std::isfinite(shs) || !std::isfinite(sy)) return 1;
    // z := R'u = H s.
    for (int j = 0; j < n; ++j) {
        double t = 0.0;
        for (int i = 0; i <= j; ++i) t += at(r, ldr, i, j) * u[i];
        z[j] = t;
    }
    if (sy < 0.2 * shs) {
        // Powell's damping: y moves towards H s until s'y = 0.2 s'Hs.
        const double theta = 0.8 * shs / (shs - sy);
        for (int j = 0; j < n; ++j) y[j] = theta * y[j] + (1.0 - theta) * z[j];
        sy = dot(n, s, y);
    }
    if (!(sy > 0.0)) return 1;
    // R + w z' with w = u/|u| and z = y/sqrt(s'y) - R'w makes (R + w z')'(R + w z') the BFGS update.
    const double rsy = std::sqrt(sy);
    for (int j = 0; j < n; ++j) z[j] = y[j] / rsy - z[j] / unorm;
    for (int i = 0; i < n; ++i) u[i] /= unorm;
    // Rotate w onto the first unit vector from the bottom up; R becomes upper Hessenberg.
    for (int k = n - 2; k >= 0; --k) {
        double c, sn, h;
        rotation(u[k], u[k + 1], &c, &sn, &h);
        u[k] = h;
        u[k + 1] = 0.0;
        if (sn != 0.0) rotate_rows(n, r, ldr, k, k, c, sn);
    }
    for (int j = 0; j < n; ++j) at(r, ldr, 0, j) += u[0] * z[j];
    // Back to upper triangular.
    for (int k = 0; k + 1 < n; ++k) {
        double c, sn, h;
        rotation(at(r, ldr, k, k), at(r, ldr, k + 1, k), &c, &sn, &h);
        if (sn != 0.0) rotate_rows(n, r, ldr, k, k, c, sn);
        at(r, ldr, k + 1, k) = 0.0;
    }
    for (int i = 0; i < n; ++i)
        if (at(r, ldr, i, i) < 0.0)
            for (int j = i; j < n; ++j) at(r, ldr, i, j) = -at(r, ldr, i, j);
    return 0;
}

namespace {

// Back to a diagonal: the square roots of the diagonal of H, kept within a bounded ratio.
void hessian_reset(Run &run) {
    const int n = run.n;
    double dmax = 0.0;
    for (int j = 0; j < n; ++j) {
        double s = 0.0;
        for (int i = 0; i <= j; ++i) s += at(run.r, run.ldr, i, j) * at(run.r, run.ldr, i, j);
        run.sv[j] = std::isfinite(s) ? std::sqrt(s) : 0.0;
        dmax = std::max(dmax, run.sv[j]);
    }
    if (!(dmax > 0.0) || !std::isfinite(dmax)) dmax = 1.0;
    const double floor = dmax * 1e-3;
    set_identity(n, run.r, run.ldr);
    for (int j = 0; j < n; ++j) at(run.r, run.ldr, j, j) = std::max(run.sv[j], floor);
}

// The start rule of E04USA: R from the QR factorisation of the objective Jacobian, its small diagonals
// raised so that R'R stays positive definite.
void jtj_start(Run &run) {
    const int n = run.n, m = run.nobj;
    double *q = run.scratch;  // m by n copy, ld m
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i) at(q, m, i, j) = at(run.fjac, run.ldf, i, j);
    const int k = std::min(m, n);
    for (int c = 0; c < k; ++c) {
        double alpha = norm2(m - c, &at(q, m, c, c));
        if (alpha == 0.0) continue;
        if (at(q, m, c, c) > 0.0) alpha = -alpha;
        // Householder vector v = x - alpha e1 in place, applied to the trailing columns.
        at(q, m, c, c) -= alpha;
        const double vnorm2 = dot(m - c, &at(q, m, c, c), &at(q, m, c, c));
        for (int j = c + 1; j < n; ++j) {
            const double t = 2.0 * dot(m - c, &at(q, m, c, c), &at(q, m, c, j)) / vnorm2;
            for (int i = c; i < m; ++i) at(q, m, i, j) -= t * at(q, m, i, c);
        }
        at(q, m, c, c) = alpha;
    }
    set_identity(n, run.r, run.ldr);
    double dmax = 0.0;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i <= std::min(j, k - 1); ++i) {
            at(run.r, run.ldr, i, j) = at(q, m, i, j);
            if (i == j) dmax = std::max(dmax, std::fabs(at(q, m, i, j)));
        }
    const double floor = std::max(dmax, 1.0) * std::sqrt(run.cfg.qp.eps) * 10.0;
    for (int i = 0; i < n; ++i) {
        if (i >= k) at(run.r, run.ldr, i, i) = floor;
        if (at(run.r, run.ldr, i, i) < 0.0)
            for (int j = i; j < n; ++j) at(run.r, run.ldr, i, j) = -at(run.r, run.ldr, i, j);
        if (at(run.r, run.ldr, i, i) < floor) at(run.r, run.ldr, i, i) = floor;
    }
}

} // namespace

void start_factor(Run &run) {
    if (run.cfg.least_squares && run.cfg.unit_hessian == 0) jtj_start(run);
    else set_identity(run.n, run.r, run.ldr);
}

// ---- QP subproblem ----------------------------------------------------------------------------------

namespace {

// Bounds on the linearised nonlinear rows in the shifted variable xq = x + p: c + J p within [bl, bu],
// each violated bound moved towards c(x) by the fraction theta of its violation.  theta 1 admits p = 0.
void linearised_bounds(Run &run, double theta) {
    const int n = run.n, nclin = run.nclin;
    const double inf = run.cfg.qp.infinite_bound;
    for (int i = 0; i < run.ncnln; ++i) {
        double jx = 0.0;
        for (int j = 0; j < n; ++j) jx += at(run.cjac, run.ldcj, i, j) * run.x[j];
        const double shift = jx - run.c[i];
        const int k = n + nclin + i;
        run.qbl[k] = run.bl[k] <= -inf ? run.bl[k] : run.bl[k] + shift + theta * std::min(0.0, run.c[i] - run.bl[k]);
        run.qbu[k] = run.bu[k] >= inf ? run.bu[k] : run.bu[k] + shift + theta * std::max(0.0, run.c[i] - run.bu[k]);
    }
}

void sanitise_states(Run &run) {
    for (int j = 0; j < run.n + run.nclin + run.ncnln; ++j)
        if (run.istate[j] < 0 || run.istate[j] > 3) run.istate[j] = 0;
}

// Whether some xq within the bounds and linear rows meets the linearised rows relaxed by theta.
bool relaxed_feasible(Run &run, const qp::Problem &pr, double theta) {
    linearised_bounds(run, theta);
    active_set::Settings set = run.cfg.qp;
    set.kind[0] = 'F';
    set.kind[1] = 'P';
    set.feasible_point_only = true;
    set.print_level = 0;
    for (int j = 0; j < run.n; ++j) run.xq[j] = run.x[j];
    sanitise_states(run);
    const qp::Result res =
        qp::run(pr, set, Start::Warm, run.istate, run.xq, run.axq, run.clamda, run.qpiwork, run.qpwork);
    run.minor += res.iterations;
    return res.ninf == 0 && res.word != Word::Infeasible && res.word != Word::RowError;
}

// The fraction of the nonlinear violation the linearisation must keep: the least theta in [0, 1] for
// which the relaxed rows are consistent with the bounds and linear constraints, to kTheta.  The bounds
// and linear rows stay hard (x meets them), so the step never buys feasibility of the linearisation
// by leaving them.  Returns 1 when even p = 0 is refused or less than kThetaProgress can be removed:
// x is then a stationary point of the violation.
constexpr double kTheta = 1.0 / 1024.0, kThetaProgress = 0.99;

double least_relaxation(Run &run, const qp::Problem &pr) {
    if (!relaxed_feasible(run, pr, 1.0)) return 1.0;
    double lo = 0.0, hi = 1.0;
    while (hi - lo > kTheta) {
        const double mid = 0.5 * (lo + hi);
        (relaxed_feasible(run, pr, mid) ? hi : lo) = mid;
    }
    return hi;
}

} // namespace

int qp_subproblem(Run &run, bool first) {
    const int n = run.n, nclin = run.nclin, ncnln = run.ncnln, m = nclin + ncnln;
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < nclin; ++i) at(run.acomb, run.ldac, i, j) = at(run.a, run.lda, i, j);
        for (int i = 0; i < ncnln; ++i) at(run.acomb, run.ldac, nclin + i, j) = at(run.cjac, run.ldcj, i, j);
    }
    for (int j = 0; j < n + nclin; ++j) {
        run.qbl[j] = run.bl[j];
        run.qbu[j] = run.bu[j];
    }
    linearised_bounds(run, 0.0);
    // In the shifted variable xq = x + p the linear term is g - H x.
    hessian_times(n, run.r, run.ldr, run.x, run.cvec, run.yv);
    for (int j = 0; j < n; ++j) {
        run.cvec[j] = run.g[j] - run.cvec[j];
        run.xq[j] = run.x[j];
    }
    sanitise_states(run);
    FactorHessian hess(n, run.r, run.ldr, run.yv);
    qp::Problem pr;
    pr.n = n;
    pr.nclin = m;
    pr.a = run.acomb;
    pr.lda = run.ldac;
    pr.bl = run.qbl;
    pr.bu = run.qbu;
    pr.cvec = run.cvec;
    pr.hessian = &hess;
    active_set::Settings set = run.cfg.qp;
    set.kind[0] = 'Q';
    set.kind[1] = 'P';
    set.print_level = 0;
    const Start start = first && !run.cfg.warm ? Start::Cold : Start::Warm;
    qp::Result res = qp::run(pr, set, start, run.istate, run.xq, run.axq, run.clamda, run.qpiwork, run.qpwork);
    run.minor += res.iterations;
    if (res.word == Word::Infeasible && ncnln > 0) {
        // Elastic re-solve: the linearised rows are relaxed as little as the bounds and linear rows allow.
        say(run, 5, format(" Mnr itn %4ld -- Re-solve QP subproblem.", static_cast<long>(run.minor)));
        const double theta = least_relaxation(run, pr);
        if (theta >= kThetaProgress) return 1;
        linearised_bounds(run, theta);
        for (int j = 0; j < n; ++j) run.xq[j] = run.x[j];
        sanitise_states(run);
        res = qp::run(pr, set, Start::Warm, run.istate, run.xq, run.axq, run.clamda, run.qpiwork, run.qpwork);
        run.minor += res.iterations;
    }
    if (res.hessian_failed || res.ninf > 0 || !finite_all(n, run.xq)) return 1;
    if (res.word != Word::Optimal && res.word != Word::Weak && res.word != Word::DeadPoint &&
        res.word != Word::IterationLimit && res.word != Word::Unbounded)
        return 1;
    for (int j = 0; j < n; ++j) run.p[j] = run.xq[j] - run.x[j];
    run.cond_hz = res.rz_min > 0.0 ? (res.rz_max / res.rz_min) * (res.rz_max / res.rz_min) : 0.0;
    run.cond_t = res.t_min > 0.0 ? res.t_max / res.t_min : 0.0;
    run.t = res.t;
    run.ldt = res.ldt;
    run.nactiv = res.nactiv;
    return 0;
}

// ---- Major loop -------------------------------------------------------------------------------------

namespace {

// The point and everything evaluated there, into the saved copies (save) or back from them.
void copy_point(Run &run, bool save) {
    const int n = run.n;
    const auto move = [save](double *live, double *kept, std::ptrdiff_t count) {
        if (save) std::copy(live, live + count, kept);
        else std::copy(kept, kept + count, live);
    };
    move(run.x, run.x0, n);
    move(run.g, run.g0, n);
    move(run.objf, &run.f0, 1);
    move(run.fv, run.fv0, run.nobj);
    move(run.c, run.c0, run.ncnln);
    for (int j = 0; j < n; ++j) {
        move(&at(run.fjac, run.ldf, 0, j), &at(run.fjac0, run.nobj, 0, j), run.nobj);
        move(&at(run.cjac, run.ldcj, 0, j), &at(run.cjac0, run.ncnln, 0, j), run.ncnln);
    }
}

// Value of constraint j (0-based over n+nclin+ncnln) at x.
double constraint_value(const Run &run, int j) {
    if (j < run.n) return run.x[j];
    if (j < run.n + run.nclin) {
        double s = 0.0;
        for (int k = 0; k < run.n; ++k) s += at(run.a, run.lda, j - run.n, k) * run.x[k];
        return s;
    }
    return run.c[j - run.n - run.nclin];
}

struct Optimality {
    double residual = 0.0, complementarity = 0.0, violation = 0.0;
    bool step_ok = false, grad_ok = false, feas_ok = false;
};

// The first-order conditions at x with the QP's multipliers and working set.
Optimality optimality(Run &run, double tol) {
    const int n = run.n, nclin = run.nclin, ncnln = run.ncnln;
    Optimality o;
    double *rv = run.wv;
    for (int j = 0; j < n; ++j) rv[j] = run.g[j] - run.clamda[j];
    for (int i = 0; i < nclin + ncnln; ++i) {
        const double lam = run.clamda[n + i];
        if (lam == 0.0) continue;
        for (int j = 0; j < n; ++j) rv[j] -= lam * at(run.acomb, run.ldac, i, j);
    }
    o.residual = norm_inf(n, rv);
    const double inf = run.cfg.qp.infinite_bound;
    for (int j = 0; j < n + nclin + ncnln; ++j) {
        const double v = constraint_value(run, j), lam = run.clamda[j];
        if (lam > 0.0 && run.bl[j] > -inf) o.complementarity = std::max(o.complementarity, lam * std::fabs(v - run.bl[j]));
        if (lam < 0.0 && run.bu[j] < inf) o.complementarity = std::max(o.complementarity, -lam * std::fabs(v - run.bu[j]));
        if (j >= n + nclin) {
            const double lower = run.bl[j] > -inf ? (run.bl[j] - v) / (1.0 + std::fabs(run.bl[j])) : 0.0;
            const double upper = run.bu[j] < inf ? (v - run.bu[j]) / (1.0 + std::fabs(run.bu[j])) : 0.0;
            o.violation = std::max({o.violation, lower, upper});
        }
    }
    // Measured against the size of the gradient (not of F, which says nothing about the slopes).
    const double gscale = 1.0 + norm_inf(n, run.g);
    o.grad_ok = o.residual <= tol * gscale && o.complementarity <= tol * gscale * (1.0 + norm_inf(n, run.x));
    o.feas_ok = o.violation <= run.cfg.ctol;
    o.step_ok = norm_inf(n, run.p) <= tol * (1.0 + norm_inf(n, run.x));
    return o;
}

// Forward differences estimate a gradient element with an error of about (|F| + 1) EPSRF / h, h the
// interval; once the reduced gradient is no larger than that (measured with the merit value too, so
// the nonlinear rows' noise counts), it says nothing more about optimality and central differences
// take over.  The finest forward interval of the estimated columns stands for h.
bool forward_too_coarse(const Run &run) {
    if (run.central || run.missing_obj + run.missing_con == 0) return false;
    double h = 0.0;
    for (int j = 0; j < run.n; ++j)
        if (column_missing(run, j)) {
            const double hj = run.hfwd[j] * (1.0 + std::fabs(run.x[j]));
            h = h == 0.0 ? hj : std::min(h, hj);
        }
    if (!(h > 0.0)) return false;
    const double merit = run.ncnln > 0 ? *run.objf - dot(run.ncnln, run.lambda, run.c) : 0.0;
    return (std::fabs(merit) + std::fabs(*run.objf) + 1.0) * run.cfg.epsrf / h >= run.gz_norm;
}

// An objective element the interval search found constant at the start is zero only if f is constant
// along that variable everywhere, and a term such as x4 (x1 - x2) vanishes at some points only.  Before
// an optimal exit such elements are estimated at the point reached and from then on: 1 when there were
// any (the subproblem is then solved again with them), 0 when there were none, 2 when the difference
// points gave values that are not finite, a negative mode when the user stopped.
int estimate_assigned_constants(Run &run) {
    bool any = false;
    for (int j = 0; j < run.n; ++j) {
        double &cell = run.miss[static_cast<std::ptrdiff_t>(j) * run.nobj];
        if (run.nobj != 1 || cell != kElementConstant) continue;
        cell = kElementEstimated;
        ++run.missing_obj;
        any = true;
    }
    if (!any) return 0;
    const int st = evaluate(run, true, 0);
    if (st < 0) run.user_mode = st;
    return st < 0 ? st : (st > 0 ? 2 : 1);
}

// Central differences from here on, the derivatives redone at the current point.
int switch_to_central(Run &run) {
    run.central = true;
    print_central_switch(run);
    const int st = evaluate(run, true, 0);
    if (st < 0) run.user_mode = st;
    return st < 0 ? st : 0;
}

} // namespace

int major_loop(Run &run) {
    const int n = run.n, nclin = run.nclin, ncnln = run.ncnln;
    const double tol = std::sqrt(run.cfg.opttol), loose = 100.0 * tol;
    const double rhomax = 1.0 / std::numeric_limits<double>::min();
    bool first = true, reset_tried = false;
    run.cond_h = condition_of(n, run.r, run.ldr);
    for (;;) {
        print_major_start(run);
        if (qp_subproblem(run, first) != 0) {
            // No usable subproblem from this factor: one fresh start, then give up honestly.
            if (!reset_tried) {
                reset_tried = true;
                start_factor(run);
                continue;
            }
            const Optimality o = optimality(run, loose);
            return o.grad_ok && o.feas_ok ? kAccuracy : (o.feas_ok ? kCannotImprove : kNonlinearInfeasible);
        }
        first = false;
        const Optimality o = optimality(run, tol);
        run.gz_norm = norm2(n, run.wv);
        run.violation = o.violation;
        if (forward_too_coarse(run)) {
            // The reduced gradient is down to the noise of forward differences: redo the gradients
            // by central differences and the subproblem with them.
            const int st = switch_to_central(run);
            if (st < 0) return st;
            continue;
        }

        // Merit function: slacks at their best values for the current multipliers and penalties.
        const double pHp = [&] {
            hessian_times(n, run.r, run.ldr, run.p, run.sv, run.yv);
            return dot(n, run.p, run.sv);
        }();
        double phi0 = *run.objf, dphi0 = dot(n, run.g, run.p);
        if (ncnln > 0) {
            const double inf = run.cfg.qp.infinite_bound;
            double k = dphi0 + 0.5 * pHp, sv2 = 0.0, sv4 = 0.0;
            for (int i = 0; i < ncnln; ++i) {
                const int jj = n + nclin + i;
                double s = run.rho[i] > 0.0 ? run.c[i] - run.lambda[i] / run.rho[i] : run.c[i];
                if (run.bl[jj] > -inf) s = std::max(s, run.bl[jj]);
                if (run.bu[jj] < inf) s = std::min(s, run.bu[jj]);
                run.slack[i] = s;
                double v = run.c[i] - s;
                if (std::fabs(v) <= run.cfg.qp.eps * (1.0 + std::fabs(run.c[i]))) v = 0.0;
                const double mu = run.clamda[jj];
                run.dlam[i] = mu - run.lambda[i];
                double jp = 0.0;
                for (int j = 0; j < n; ++j) jp += at(run.cjac, run.ldcj, i, j) * run.p[j];
                run.dslk[i] = run.c[i] + jp - s;
                k += (2.0 * run.lambda[i] - mu) * v;
                sv2 += v * v;
                sv4 += v * v * v * v;
            }
            // The least penalties (in norm) that make the slope at most -1/2 p'Hp, with the margin
            // 2 RHODMP.  Penalties that fall short are raised to them; penalties well above them are
            // lowered to the geometric mean, as long as the slope stays as steep.  Penalties that only
            // ever rose would grow like 1/|c - s|^2 as the violation shrinks, and the merit
            // function's curvature along p would then throttle every step.  A reversal of the
            // penalty norm's trend doubles RHODMP, so the penalties settle.
            const double old = norm2(ncnln, run.rho);
            double have = 0.0, lowered = 0.0;
            for (int i = 0; i < ncnln; ++i) {
                const double v = run.c[i] - run.slack[i];
                const double want = sv4 > 0.0 ? std::min(rhomax, 2.0 * run.rhodmp * std::max(k, 0.0) * v * v / sv4) : 0.0;
                have += run.rho[i] * v * v;
                run.cs2[i] = run.rho[i] > 4.0 * want ? std::sqrt(run.rho[i] * want) : std::max(run.rho[i], want);
                lowered += run.cs2[i] * v * v;
            }
            if (k > have && sv4 > 0.0) {
                for (int i = 0; i < ncnln; ++i) {
                    const double v = run.c[i] - run.slack[i];
                    const double want = std::min(rhomax, 2.0 * run.rhodmp * k * v * v / sv4);
                    run.rho[i] = std::max(run.rho[i], want);
                }
            } else if (lowered >= k) {
                for (int i = 0; i < ncnln; ++i) run.rho[i] = run.cs2[i];
            }
            const double now = norm2(ncnln, run.rho);
            if (now != old) {
                const int sign = now > old ? 1 : -1;
                if (run.merit_sign != 0 && sign != run.merit_sign) run.rhodmp *= 2.0;
                run.merit_sign = sign;
            }
            (void)sv2;
            run.rhonorm = norm2(ncnln, run.rho);
            for (int i = 0; i < ncnln; ++i) {
                const double v = run.c[i] - run.slack[i];
                phi0 += -run.lambda[i] * v + 0.5 * run.rho[i] * v * v;
                dphi0 += (2.0 * run.lambda[i] - run.clamda[n + nclin + i]) * v - run.rho[i] * v * v;
            }
        }
        print_major(run, phi0, o.violation, {o.step_ok, o.grad_ok, o.feas_ok});
        if (o.grad_ok && o.feas_ok) {
            const int st = estimate_assigned_constants(run);
            if (st < 0) return st;
            if (st == 0) return kOptimal;
            if (st == 2) return kCannotImprove;
            continue;
        }
        if (run.major >= run.cfg.major_limit) return kMajorLimit;

        copy_point(run, true);
        const double xnorm = norm2(n, run.x), pnorm = norm2(n, run.p);
        double alfmax = 1.0;
        if (pnorm > 0.0) alfmax = std::min(1.0, run.cfg.step_limit * (1.0 + xnorm) / pnorm);
        int ls = dphi0 < 0.0 ? line_search(run, alfmax, phi0, dphi0, pHp) : 1;
        if (ls < 0) {
            // A stop inside the search leaves the last accepted point.
            copy_point(run, false);
            run.user_mode = ls;
            return ls;
        }
        if (ls == 1) {
            copy_point(run, false);
            if (run.missing_obj + run.missing_con > 0 && !run.central) {
                // Forward differences cannot resolve the step: central ones from here on.
                run.central = true;
                const int st = switch_to_central(run);
                if (st < 0) return st;
                continue;
            }
            if (!reset_tried) {
                reset_tried = true;
                start_factor(run);
                run.cond_h = condition_of(n, run.r, run.ldr);
                continue;
            }
            const Optimality lo = optimality(run, loose);
            if (lo.grad_ok && lo.feas_ok) return kAccuracy;
            return o.feas_ok ? kCannotImprove : kNonlinearInfeasible;
        }
        reset_tried = false;
        for (int i = 0; i < ncnln; ++i) run.lambda[i] += run.alpha * run.dlam[i];
        if (ls == 2) {
            const int st = evaluate(run, true, 0);
            if (st < 0) {
                run.user_mode = st;
                return st;
            }
            if (st > 0) {
                copy_point(run, false);
                return kCannotImprove;
            }
        }
        ++run.major;
        // The change in the gradient of the Lagrangian at the new multipliers.
        for (int j = 0; j < n; ++j) {
            run.sv[j] = run.x[j] - run.x0[j];
            double y = run.g[j] - run.g0[j];
            for (int i = 0; i < ncnln; ++i)
                y -= run.clamda[n + nclin + i] * (at(run.cjac, run.ldcj, i, j) - at(run.cjac0, run.ncnln, i, j));
            run.wv[j] = y;
        }
        if (run.cfg.least_squares && run.cfg.reset_frequency > 0 && run.major % run.cfg.reset_frequency == 0) {
            start_factor(run);
        } else {
            hessian_update(n, run.r, run.ldr, run.sv, run.wv, run.yv);
            run.cond_h = condition_of(n, run.r, run.ldr);
            if (!(run.cond_h <= run.cfg.condition_bound)) hessian_reset(run);
        }
        run.cond_h = condition_of(n, run.r, run.ldr);
    }
}

} // namespace zek::sqp
