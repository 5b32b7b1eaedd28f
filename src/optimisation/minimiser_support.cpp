// Adaptors of the small minimisers' user functions, and their shared vector helpers.
#include "optimisation/minimiser_support.h"

#include "frame/adaptor.h"

namespace zek::mini {

double norm2(std::ptrdiff_t n, const double *v) {
    double scale = 0.0, ssq = 1.0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double a = std::fabs(v[i]);
        if (a == 0.0) continue;
        if (!(a <= scale)) {
            if (!std::isfinite(a)) return HUGE_VAL;
            ssq = 1.0 + ssq * (scale / a) * (scale / a);
            scale = a;
        } else {
            ssq += (a / scale) * (a / scale);
        }
    }
    return scale * std::sqrt(ssq);
}

double dot(std::ptrdiff_t n, const double *a, const double *b) {
    double s = 0.0;
    for (std::ptrdiff_t i = 0; i < n; ++i) s += a[i] * b[i];
    return s;
}

} // namespace zek::mini

extern "C" void E04_ADAPT_FUNCT1(ZekE04Funct1 f, double xc, double *fc, int *iuser, double *ruser) {
    zek::mark_vector(1, fc);
    f(&xc, fc, iuser, ruser);
}

extern "C" void E04_ADAPT_FUNCT1_GRAD(ZekE04Funct1Grad f, double xc, double *fc, double *gc, int *iuser,
                                      double *ruser) {
    zek::mark_vector(1, fc);
    zek::mark_vector(1, gc);
    f(&xc, fc, gc, iuser, ruser);
}

extern "C" void E04_ADAPT_SIMPLEX(ZekE04FunctSimplex f, int n, const double *xc, double *fc) {
    zek::mark_vector(1, fc);
    f(&n, xc, fc);
}

extern "C" void E04_ADAPT_MONIT_SIMPLEX(ZekE04MonitSimplex f, double fmin, double fmax, const double *sim, int n,
                                        int is, int ncall) {
    f(&fmin, &fmax, sim, &n, &is, &ncall);
}

extern "C" void E04_ADAPT_OBJFUN(ZekE04Objfun f, int *mode, int n, const double *x, double *objf, double *objgrd,
                                 int nstate, int *iuser, double *ruser) {
    zek::mark_vector(1, objf);
    zek::mark_vector(n, objgrd);
    f(mode, &n, x, objf, objgrd, &nstate, iuser, ruser);
}

extern "C" void E04_ADAPT_BOUND1(ZekE04BoundFunct1 f, int *iflag, int n, const double *xc, double *fc, int *iuser,
                                 double *ruser) {
    zek::mark_vector(1, fc);
    f(iflag, &n, xc, fc, iuser, ruser);
}

extern "C" void E04_ADAPT_BOUND2(ZekE04BoundFunct2 f, int *iflag, int n, const double *xc, double *fc, double *gc,
                                 int *iuser, double *ruser) {
    zek::mark_vector(1, fc);
    if (*iflag == 2) zek::mark_vector(n, gc);
    f(iflag, &n, xc, fc, gc, iuser, ruser);
}

extern "C" void E04_ADAPT_HESS2(ZekE04BoundHess2 f, int *iflag, int n, const double *xc, double *heslc, int lh,
                                double *hesdc, int *iuser, double *ruser) {
    zek::mark_vector(lh, heslc);
    zek::mark_vector(n, hesdc);
    f(iflag, &n, xc, heslc, &lh, hesdc, iuser, ruser);
}

extern "C" void E04_ADAPT_BOUND_MONIT(ZekE04BoundMonit f, int n, const double *xc, double fc, const double *gc,
                                      const int *istate, int niter, int nf, int *iuser, double *ruser) {
    f(&n, xc, &fc, gc, istate, &niter, &nf, iuser, ruser);
}
