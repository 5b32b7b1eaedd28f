// The bound-constrained family's drivers and exported cores: argument checks, the settings each driver
// picks, the derivative checks at the start, and the grading of the core's outcome by the size of the
// projected gradient.  Nothing is printed: IFAIL alone reports.
#include <algorithm>
#include <cmath>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "optimisation/bound_core.h"
#include "optimisation/minimiser_support.h"

namespace {

using zek::bound::gradient_user;
using zek::bound::lower_cells;
using zek::bound::Method;

constexpr double kAbsent = zek::mini::kAbsentBound;

// Reads BL and BU by IBOUND (0 each given, 1 none, 2 nonnegative, 3 one pair for all).  False when
// IBOUND is out of range or a pair is crossed.
bool settle_bounds(int n, int ibound, double *bl, double *bu) {
    if (ibound < 0 || ibound > 3) return false;
    for (int j = 0; j < n; ++j) {
        switch (ibound) {
        case 1: bl[j] = -kAbsent, bu[j] = kAbsent; break;
        case 2: bl[j] = 0.0, bu[j] = kAbsent; break;
        case 3: bl[j] = bl[0], bu[j] = bu[0]; break;
        default: break;
        }
        if (!(bl[j] <= bu[j])) return false;  // a NaN bound counts as crossed
    }
    return true;
}

int finish(const char *name, int *ifail, int code) {
    zek::FailureExit exit(name, nullptr, ifail);
    if (code == 0) return exit.succeed();
    return exit.fail_with_records(code, 99999 - (code < 0 ? 0 : code), zek::Records{});
}

// Derivative checks at the (projected) start: 0 passed, or the IFAIL to end with.
int start_checks(zek::bound::Problem &p, const zek::bound::User &u, bool hessian) {
    const int n = p.n;
    double *scratch = p.w;
    for (int j = 0; j < n; ++j) p.x[j] = std::clamp(p.x[j], p.bl[j], p.bu[j]);
    int iflag = 2, nf = 0;
    u.adapt2(u.funct2, &iflag, n, p.x, p.f, p.g, u.iuser, u.ruser);
    if (iflag < 0) return iflag;
    if (!std::isfinite(*p.f) || !zek::mini::all_finite(n, p.g)) return zek::bound::kNotFinite;
    int rc = zek::bound::check_gradient(n, u, p.x, *p.f, p.g, scratch, &nf);
    if (rc != 0) return rc < 0 ? rc : zek::bound::kGradientCheck;
    if (hessian) {
        rc = zek::bound::check_hessian(n, u, p.x, p.g, p.hdiag, p.hlower, scratch, &nf);
        if (rc != 0) return rc < 0 ? rc : zek::bound::kHessianCheck;
    }
    return 0;
}

struct EasyCall {
    const char *name;
    Method method;
    int n, ibound;
    double *bl, *bu, *x, *f, *g;
    int *iw;
    int liw;
    double *w;
    int lw;
    zek::bound::User user;
};

// The easy drivers' common path.  W holds the estimate's diagonal (N) and strict lower triangle, then
// (E04JYF only) the gradient, then the core's scratch.
void easy(EasyCall c, int *ifail) {
    const int n = c.n;
    if (n < 1 || c.ibound < 0 || c.ibound > 3 || c.liw < n + 2) {
        finish(c.name, ifail, 1);
        return;
    }
    const std::ptrdiff_t nn = n, l = lower_cells(n);
    std::ptrdiff_t need = 0;
    switch (c.method) {
    case Method::QuasiNewtonValues: need = 12 * nn + l; break;
    case Method::QuasiNewton: need = 10 * nn + l; break;
    default: need = 2 * (4 * nn + l); break;
    }
    if (c.lw < need || !settle_bounds(n, c.ibound, c.bl, c.bu)) {
        finish(c.name, ifail, 1);
        return;
    }
    const double eps = zek::precision();
    double *g = c.g != nullptr ? c.g : c.w + nn + l;
    zek::bound::Problem p = zek::bound::arrays(c.method, n, c.bl, c.bu, c.x, c.f, g, c.iw, c.w, c.w + nn,
                                               g == c.g ? c.w + nn + l : c.w + 2 * nn + l);
    zek::bound::Settings s;
    switch (c.method) {
    case Method::QuasiNewtonValues: s.maxcal = 400 * n, s.eta = n == 1 ? 0.0 : 0.5; break;
    case Method::QuasiNewton: s.maxcal = 100 * n, s.eta = n == 1 ? 0.0 : 0.9; break;
    case Method::NewtonDifferences: s.maxcal = 50 * n, s.eta = n < 11 ? 0.5 : (n < 21 ? 0.1 : 0.01); break;
    case Method::Newton: s.maxcal = 50 * n, s.eta = 0.9; break;
    }
    s.xtol = 100.0 * std::sqrt(eps);
    s.stepmx = 1e5 * (1.0 + zek::mini::norm2(n, c.x));
    if (!std::isfinite(s.stepmx)) s.stepmx = 1e5;
    s.fdecrease = c.method == Method::QuasiNewtonValues || c.method == Method::QuasiNewton ? -10.0 : 0.0;
    int code = 0;
    if (c.method != Method::QuasiNewtonValues) code = start_checks(p, c.user, c.method == Method::Newton);
    if (code == 0) {
        code = zek::bound::minimise(p, c.user, s);
        code = zek::bound::grade(code, n, c.bl, c.bu, c.x, *c.f, p.g);
    }
    c.iw[n] = p.niter;
    c.iw[n + 1] = p.nf;
    finish(c.name, ifail, code);
}

struct FullCall {
    const char *name;
    Method method;
    int n, iprint, maxcal;
    double eta, xtol, delta, stepmx, fest;
    int ibound;
    double *bl, *bu, *x, *hesl;
    int lh;
    double *hesd;
    int *istate;
    double *f, *g;
    int *niter, *nf;
    int icheck, liw;
    double *w;
    int lw;
    zek::bound::User user;
};

void comprehensive(FullCall c, int *ifail) {
    const int n = c.n;
    const std::ptrdiff_t nn = n, l = lower_cells(n);
    const bool bad = n < 1 || c.maxcal < 1 || !(c.eta >= 0.0 && c.eta < 1.0) || !(c.xtol >= 0.0) ||
                     !(c.stepmx >= c.xtol) || c.lh < l || c.liw < 1 || c.lw < 7 * nn + l || c.ibound < 0 ||
                     c.ibound > 3;
    if (bad || !settle_bounds(n, c.ibound, c.bl, c.bu)) {
        finish(c.name, ifail, 1);
        return;
    }
    zek::bound::Problem p =
        zek::bound::arrays(c.method, n, c.bl, c.bu, c.x, c.f, c.g, c.istate, c.hesd, c.hesl, c.w);
    zek::bound::Settings s = zek::bound::given(c.maxcal, c.iprint, c.eta, c.xtol, c.stepmx, c.delta);
    s.have_fest = c.method != zek::bound::Method::Newton;
    s.fest = c.fest;
    int code = c.icheck != 0 ? start_checks(p, c.user, c.method == Method::Newton) : 0;
    if (code == 0) {
        code = zek::bound::minimise(p, c.user, s);
        code = zek::bound::grade(code, n, c.bl, c.bu, c.x, *c.f, c.g);
    }
    *c.niter = p.niter;
    *c.nf = p.nf;
    finish(c.name, ifail, code);
}

// E04KYF and E04KZF: the same arguments, another method.
void easy_with_gradient(const char *name, Method method, const int *n, const int *ibound, ZekE04BoundFunct2 funct2,
                        ZekE04AdaptBound2 adapt, double *bl, double *bu, double *x, double *f, double *g, int *iw,
                        const int *liw, double *w, const int *lw, int *iuser, double *ruser, int *ifail) {
    if (funct2 == nullptr) {
        finish(name, ifail, 1);
        return;
    }
    easy({name, method, *n, *ibound, bl, bu, x, f, g, iw, *liw, w, *lw,
          gradient_user(funct2, adapt, nullptr, nullptr, nullptr, nullptr, iuser, ruser)},
         ifail);
}

} // namespace

extern "C" void E04JYF(const int *n, const int *ibound, ZekE04BoundFunct1 funct1, ZekE04AdaptBound1 adapt, double *bl,
                       double *bu, double *x, double *f, int *iw, const int *liw, double *w, const int *lw, int *iuser,
                       double *ruser, int *ifail) {
    if (funct1 == nullptr) {
        finish("E04JYF", ifail, 1);
        return;
    }
    easy({"E04JYF", Method::QuasiNewtonValues, *n, *ibound, bl, bu, x, f, nullptr, iw, *liw, w, *lw,
          zek::bound::values_user(funct1, adapt, iuser, ruser)},
         ifail);
}

extern "C" void E04KYF(const int *n, const int *ibound, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, double *bl,
                       double *bu, double *x, double *f, double *g, int *iw, const int *liw, double *w, const int *lw,
                       int *iuser, double *ruser, int *ifail) {
    easy_with_gradient("E04KYF", Method::QuasiNewton, n, ibound, funct2, adapt, bl, bu, x, f, g, iw, liw, w, lw, iuser,
                       ruser, ifail);
}

extern "C" void E04KZF(const int *n, const int *ibound, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, double *bl,
                       double *bu, double *x, double *f, double *g, int *iw, const int *liw, double *w, const int *lw,
                       int *iuser, double *ruser, int *ifail) {
    easy_with_gradient("E04KZF", Method::NewtonDifferences, n, ibound, funct2, adapt, bl, bu, x, f, g, iw, liw, w, lw,
                       iuser, ruser, ifail);
}

extern "C" void E04LYF(const int *n, const int *ibound, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt,
                       ZekE04BoundHess2 hess2, ZekE04AdaptHess2 hadapt, double *bl, double *bu, double *x, double *f,
                       double *g, int *iw, const int *liw, double *w, const int *lw, int *iuser, double *ruser,
                       int *ifail) {
    if (funct2 == nullptr || hess2 == nullptr) {
        finish("E04LYF", ifail, 1);
        return;
    }
    easy({"E04LYF", Method::Newton, *n, *ibound, bl, bu, x, f, g, iw, *liw, w, *lw,
          gradient_user(funct2, adapt, hess2, hadapt, nullptr, nullptr, iuser, ruser)},
         ifail);
}

extern "C" void E04KDF(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                       ZekE04AdaptBoundMonit madapt, const int *iprint, const int *maxcal, const double *eta,
                       const double *xtol, const double *delta, const double *stepmx, const double *fest,
                       const int *ibound, double *bl, double *bu, double *x, double *hesl, const int *lh, double *hesd,
                       int *istate, double *f, double *g, int *niter, int *nf, const int *icheck, int *iw,
                       const int *liw, double *w, const int *lw, int *iuser, double *ruser, int *ifail) {
    (void)iw;
    if (funct2 == nullptr) {
        finish("E04KDF", ifail, 1);
        return;
    }
    comprehensive({"E04KDF", Method::NewtonDifferences, *n, *iprint, *maxcal, *eta, *xtol, *delta, *stepmx, *fest,
                   *ibound, bl, bu, x, hesl, *lh, hesd, istate, f, g, niter, nf, *icheck, *liw, w, *lw,
                   gradient_user(funct2, adapt, nullptr, nullptr, monit, madapt, iuser, ruser)},
                  ifail);
}

extern "C" void E04LBF(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundHess2 hess2,
                       ZekE04AdaptHess2 hadapt, ZekE04BoundMonit monit, ZekE04AdaptBoundMonit madapt,
                       const int *iprint, const int *maxcal, const double *eta, const double *xtol,
                       const double *stepmx, const int *ibound, double *bl, double *bu, double *x, double *hesl,
                       const int *lh, double *hesd, int *istate, double *f, double *g, int *niter, int *nf,
                       const int *icheck, int *iw, const int *liw, double *w, const int *lw, int *iuser,
                       double *ruser, int *ifail) {
    (void)iw;
    if (funct2 == nullptr || hess2 == nullptr) {
        finish("E04LBF", ifail, 1);
        return;
    }
    comprehensive({"E04LBF", Method::Newton, *n, *iprint, *maxcal, *eta, *xtol, 0.0, *stepmx, 0.0, *ibound, bl, bu, x,
                   hesl, *lh, hesd, istate, f, g, niter, nf, *icheck, *liw, w, *lw,
                   gradient_user(funct2, adapt, hess2, hadapt, monit, madapt, iuser, ruser)},
                  ifail);
}
