// The exported cores and checks of the bound-constrained family, over the one engine of bound_core.
#include "optimisation/bound_core.h"

namespace {

using zek::bound::gradient_user;
using zek::bound::Method;

struct CoreCall {
    Method method;
    int n;
    const double *bl, *bu;
    double *x, *f, *g;
    int *istate;
    double *hdiag, *hlower, *w;
    int maxcal, iprint;
    double eta, xtol, stepmx, delta;
    int *niter, *nf, *inform;
};

void run_core(const CoreCall &c, const zek::bound::User &u) {
    if (c.n < 1) {
        *c.inform = 1;
        return;
    }
    zek::bound::Problem p =
        zek::bound::arrays(c.method, c.n, c.bl, c.bu, c.x, c.f, c.g, c.istate, c.hdiag, c.hlower, c.w);
    *c.inform = zek::bound::minimise(p, u, zek::bound::given(c.maxcal, c.iprint, c.eta, c.xtol, c.stepmx, c.delta));
    *c.niter = p.niter;
    *c.nf = p.nf;
}

} // namespace

extern "C" void E04JYU(const int *n, ZekE04BoundFunct1 funct1, ZekE04AdaptBound1 adapt, const double *bl,
                       const double *bu, double *x, double *f, double *g, int *istate, double *hdiag, double *hlower,
                       double *w, const int *maxcal, const double *eta, const double *xtol, const double *stepmx,
                       int *iuser, double *ruser, int *niter, int *nf, int *inform) {
    run_core({Method::QuasiNewtonValues, *n, bl, bu, x, f, g, istate, hdiag, hlower, w, *maxcal, -1, *eta, *xtol,
              *stepmx, 0.0, niter, nf, inform},
             zek::bound::values_user(funct1, adapt, iuser, ruser));
}

extern "C" void E04KYY(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                       ZekE04AdaptBoundMonit madapt, const int *iprint, const double *bl, const double *bu, double *x,
                       double *f, double *g, int *istate, double *hdiag, double *hlower, double *w, const int *maxcal,
                       const double *eta, const double *xtol, const double *stepmx, int *iuser, double *ruser,
                       int *niter, int *nf, int *inform) {
    run_core({Method::QuasiNewton, *n, bl, bu, x, f, g, istate, hdiag, hlower, w, *maxcal, *iprint, *eta, *xtol,
              *stepmx, 0.0, niter, nf, inform},
             gradient_user(funct2, adapt, nullptr, nullptr, monit, madapt, iuser, ruser));
}

extern "C" void E04KZ_CORE(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                           ZekE04AdaptBoundMonit madapt, const int *iprint, const double *bl, const double *bu,
                           double *x, double *f, double *g, int *istate, double *hdiag, double *hlower, double *w,
                           const int *maxcal, const double *eta, const double *xtol, const double *stepmx,
                           const double *delta, int *iuser, double *ruser, int *niter, int *nf, int *inform) {
    run_core({Method::NewtonDifferences, *n, bl, bu, x, f, g, istate, hdiag, hlower, w, *maxcal, *iprint, *eta,
              *xtol, *stepmx, *delta, niter, nf, inform},
             gradient_user(funct2, adapt, nullptr, nullptr, monit, madapt, iuser, ruser));
}

// E04KDF's core is E04KZF's: one body under both symbols.
extern "C" void E04KD_CORE(const int *, ZekE04BoundFunct2, ZekE04AdaptBound2, ZekE04BoundMonit, ZekE04AdaptBoundMonit,
                           const int *, const double *, const double *, double *, double *, double *, int *, double *,
                           double *, double *, const int *, const double *, const double *, const double *,
                           const double *, int *, double *, int *, int *, int *) ZEK_ALIAS("q81515");

extern "C" void E04LY_CORE(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundHess2 hess2,
                           ZekE04AdaptHess2 hadapt, ZekE04BoundMonit monit, ZekE04AdaptBoundMonit madapt,
                           const int *iprint, const double *bl, const double *bu, double *x, double *f, double *g,
                           int *istate, double *hdiag, double *hlower, double *w, const int *maxcal, const double *eta,
                           const double *xtol, const double *stepmx, int *iuser, double *ruser, int *niter, int *nf,
                           int *inform) {
    zek::bound::User u = gradient_user(funct2, adapt, nullptr, nullptr, monit, madapt, iuser, ruser);
    u.hess = hess2;
    u.hadapt = hadapt != nullptr ? hadapt : E04_ADAPT_HESS2;
    run_core({Method::Newton, *n, bl, bu, x, f, g, istate, hdiag, hlower, w, *maxcal, *iprint, *eta, *xtol, *stepmx,
              0.0, niter, nf, inform},
             u);
}

extern "C" void E04KYU(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, const double *x,
                       const double *f, const double *g, double *w, int *iuser, double *ruser, int *inform) {
    int nf = 0;
    *inform = *n < 1 ? 1
                     : zek::bound::check_gradient(*n, gradient_user(funct2, adapt, nullptr, nullptr, nullptr, nullptr,
                                                                iuser, ruser),
                                                  x, *f, g, w, &nf);
}

extern "C" void E04LYZ(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundHess2 hess2,
                       ZekE04AdaptHess2 hadapt, const double *x, const double *g, double *hdiag, double *hlower,
                       double *w, int *iuser, double *ruser, int *inform) {
    const zek::bound::User u = gradient_user(funct2, adapt, hess2, hadapt, nullptr, nullptr, iuser, ruser);
    int nf = 0;
    *inform = *n < 1 ? 1 : zek::bound::check_hessian(*n, u, x, g, hdiag, hlower, w, &nf);
}

extern "C" void E04JYZ(const int *n, ZekE04BoundFunct1 funct1, ZekE04AdaptBound1 adapt, const double *bl,
                       const double *bu, const double *x, const double *f, double *h, double *w, int *iuser,
                       double *ruser, int *inform) {
    int nf = 0;
    *inform = *n < 1 ? 1
                     : zek::bound::difference_intervals(*n, zek::bound::values_user(funct1, adapt, iuser, ruser), bl,
                                                        bu, x, *f, h, w, &nf);
}
