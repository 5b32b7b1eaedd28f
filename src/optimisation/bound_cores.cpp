// The exported cores and checks of the bound-constrained family, over the one engine of bound_core.
#include "optimisation/bound_core.h"

namespace {

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
    zek::bound::Problem p;
    p.n = c.n;
    p.method = c.method;
    p.bl = c.bl;
    p.bu = c.bu;
    p.x = c.x;
    p.f = c.f;
    p.g = c.g;
    p.istate = c.istate;
    p.hdiag = c.hdiag;
    p.hlower = c.hlower;
    p.w = c.w;
    zek::bound::Settings s;
    s.maxcal = c.maxcal;
    s.iprint = c.iprint;
    s.eta = c.eta;
    s.xtol = c.xtol;
    s.stepmx = c.stepmx;
    s.delta = c.delta;
    *c.inform = zek::bound::minimise(p, u, s);
    *c.niter = p.niter;
    *c.nf = p.nf;
}

zek::bound::User user2(ZekE04BoundFunct2 f, ZekE04AdaptBound2 a, ZekE04BoundMonit m, ZekE04AdaptBoundMonit ma,
                       int *iuser, double *ruser) {
    zek::bound::User u;
    u.funct2 = f;
    u.adapt2 = a != nullptr ? a : E04_ADAPT_BOUND2;
    u.monit = m;
    u.madapt = ma != nullptr ? ma : E04_ADAPT_BOUND_MONIT;
    u.iuser = iuser;
    u.ruser = ruser;
    return u;
}

} // namespace

extern "C" void E04JYU(const int *n, ZekE04BoundFunct1 funct1, ZekE04AdaptBound1 adapt, const double *bl,
                       const double *bu, double *x, double *f, double *g, int *istate, double *hdiag, double *hlower,
                       double *w, const int *maxcal, const double *eta, const double *xtol, const double *stepmx,
                       int *iuser, double *ruser, int *niter, int *nf, int *inform) {
    zek::bound::User u;
    u.funct1 = funct1;
    u.adapt1 = adapt != nullptr ? adapt : E04_ADAPT_BOUND1;
    u.iuser = iuser;
    u.ruser = ruser;
    run_core({Method::QuasiNewtonValues, *n, bl, bu, x, f, g, istate, hdiag, hlower, w, *maxcal, -1, *eta, *xtol,
              *stepmx, 0.0, niter, nf, inform},
             u);
}

extern "C" void E04KYY(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                       ZekE04AdaptBoundMonit madapt, const int *iprint, const double *bl, const double *bu, double *x,
                       double *f, double *g, int *istate, double *hdiag, double *hlower, double *w, const int *maxcal,
                       const double *eta, const double *xtol, const double *stepmx, int *iuser, double *ruser,
                       int *niter, int *nf, int *inform) {
    run_core({Method::QuasiNewton, *n, bl, bu, x, f, g, istate, hdiag, hlower, w, *maxcal, *iprint, *eta, *xtol,
              *stepmx, 0.0, niter, nf, inform},
             user2(funct2, adapt, monit, madapt, iuser, ruser));
}

extern "C" void E04KZ_CORE(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                           ZekE04AdaptBoundMonit madapt, const int *iprint, const double *bl, const double *bu,
                           double *x, double *f, double *g, int *istate, double *hdiag, double *hlower, double *w,
                           const int *maxcal, const double *eta, const double *xtol, const double *stepmx,
                           const double *delta, int *iuser, double *ruser, int *niter, int *nf, int *inform) {
    run_core({Method::NewtonDifferences, *n, bl, bu, x, f, g, istate, hdiag, hlower, w, *maxcal, *iprint, *eta,
              *xtol, *stepmx, *delta, niter, nf, inform},
             user2(funct2, adapt, monit, madapt, iuser, ruser));
}

extern "C" void E04KD_CORE(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                           ZekE04AdaptBoundMonit madapt, const int *iprint, const double *bl, const double *bu,
                           double *x, double *f, double *g, int *istate, double *hdiag, double *hlower, double *w,
                           const int *maxcal, const double *eta, const double *xtol, const double *stepmx,
                           const double *delta, int *iuser, double *ruser, int *niter, int *nf, int *inform) {
    E04KZ_CORE(n, funct2, adapt, monit, madapt, iprint, bl, bu, x, f, g, istate, hdiag, hlower, w, maxcal, eta, xtol,
               stepmx, delta, iuser, ruser, niter, nf, inform);
}

extern "C" void E04LY_CORE(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundHess2 hess2,
                           ZekE04AdaptHess2 hadapt, ZekE04BoundMonit monit, ZekE04AdaptBoundMonit madapt,
                           const int *iprint, const double *bl, const double *bu, double *x, double *f, double *g,
                           int *istate, double *hdiag, double *hlower, double *w, const int *maxcal, const double *eta,
                           const double *xtol, const double *stepmx, int *iuser, double *ruser, int *niter, int *nf,
                           int *inform) {
    zek::bound::User u = user2(funct2, adapt, monit, madapt, iuser, ruser);
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
                     : zek::bound::check_gradient(*n, user2(funct2, adapt, nullptr, nullptr, iuser, ruser), x, *f, g,
                                                  w, &nf);
}

extern "C" void E04LYZ(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundHess2 hess2,
                       ZekE04AdaptHess2 hadapt, const double *x, const double *g, double *hdiag, double *hlower,
                       double *w, int *iuser, double *ruser, int *inform) {
    zek::bound::User u = user2(funct2, adapt, nullptr, nullptr, iuser, ruser);
    u.hess = hess2;
    u.hadapt = hadapt != nullptr ? hadapt : E04_ADAPT_HESS2;
    int nf = 0;
    *inform = *n < 1 ? 1 : zek::bound::check_hessian(*n, u, x, g, hdiag, hlower, w, &nf);
}

extern "C" void E04JYZ(const int *n, ZekE04BoundFunct1 funct1, ZekE04AdaptBound1 adapt, const double *bl,
                       const double *bu, const double *x, const double *f, double *h, double *w, int *iuser,
                       double *ruser, int *inform) {
    zek::bound::User u;
    u.funct1 = funct1;
    u.adapt1 = adapt != nullptr ? adapt : E04_ADAPT_BOUND1;
    u.iuser = iuser;
    u.ruser = ruser;
    int nf = 0;
    *inform = *n < 1 ? 1 : zek::bound::difference_intervals(*n, u, bl, bu, x, *f, h, w, &nf);
}
