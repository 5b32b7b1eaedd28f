// The engine of the bound-constrained family: a projected quasi-Newton or modified-Newton method on
// the variables not held at a bound.
#ifndef ZEK_OPTIMISATION_BOUND_CORE_H
#define ZEK_OPTIMISATION_BOUND_CORE_H

#include <cstddef>

#include "zek2/e04.h"

namespace zek::bound {

// How the gradient and the second derivatives are had.
enum class Method {
    QuasiNewtonValues,    // gradient by differences of values, inverse estimate by BFGS
    QuasiNewton,          // user's gradient, inverse estimate by BFGS
    NewtonDifferences,    // user's gradient, Hessian by differences of gradients
    Newton,               // user's gradient and Hessian
};

// Core outcomes (the drivers grade 3 and 5 by the projected gradient).
enum Inform {
    kConverged = 0, kLimit = 2, kNoProgress = 3, kStalled = 5, kNotFinite = 9, kGradientCheck = 10,
    kHessianCheck = 11,
};

// Counts of the strict lower triangle: N(N-1)/2, at least one cell.
inline std::ptrdiff_t lower_cells(int n) {
    const std::ptrdiff_t c = static_cast<std::ptrdiff_t>(n) * (n - 1) / 2;
    return c > 0 ? c : 1;
}

struct User {
    ZekE04BoundFunct1 funct1 = nullptr;
    ZekE04AdaptBound1 adapt1 = nullptr;
    ZekE04BoundFunct2 funct2 = nullptr;
    ZekE04AdaptBound2 adapt2 = nullptr;
    ZekE04BoundHess2 hess = nullptr;
    ZekE04AdaptHess2 hadapt = nullptr;
    ZekE04BoundMonit monit = nullptr;
    ZekE04AdaptBoundMonit madapt = nullptr;
    int *iuser = nullptr;
    double *ruser = nullptr;
};

struct Settings {
    int maxcal = 0;
    int iprint = -1;        // monitor every IPRINT iterations; negative never
    double eta = 0.5;       // line search accuracy: |g(new)'p| <= ETA |g'p| when the gradient is had
    double xtol = 0.0;      // step tolerance relative to 1 + |x|
    double stepmx = 1e5;    // longest step
    double delta = 0.0;     // difference interval of the Hessian (0: sqrt(EPS))
    double fdecrease = 0.0; // expected decrease for the first step (0: none; negative: -fdecrease |F|
                            // at the start, when F is not 0)
    bool have_fest = false; // FEST below the start value bounds the first trial step by the decrease
    double fest = 0.0;      // it promises along the first direction
};

// The problem and the caller's arrays.  BL, BU hold the bounds with absent ones at +-1e20 or beyond;
// ISTATE (N) the state on exit; HDIAG (N) and HLOWER (max(1, N(N-1)/2)) the second-derivative estimate
// (the inverse for the quasi-Newton methods); W the scratch of scratch_length.
struct Problem {
    int n = 0;
    Method method = Method::QuasiNewton;
    const double *bl = nullptr, *bu = nullptr;
    double *x = nullptr, *f = nullptr, *g = nullptr;
    int *istate = nullptr;
    double *hdiag = nullptr, *hlower = nullptr;
    double *w = nullptr;
    int niter = 0, nf = 0;
};

std::ptrdiff_t scratch_length(Method method, int n);

// The user's functions, the library's adaptors standing in for null ones.
inline User values_user(ZekE04BoundFunct1 f, ZekE04AdaptBound1 a, int *iuser, double *ruser) {
    User u;
    u.funct1 = f;
    u.adapt1 = a != nullptr ? a : E04_ADAPT_BOUND1;
    u.iuser = iuser;
    u.ruser = ruser;
    return u;
}
inline User gradient_user(ZekE04BoundFunct2 f, ZekE04AdaptBound2 a, ZekE04BoundHess2 h, ZekE04AdaptHess2 ha,
                          ZekE04BoundMonit m, ZekE04AdaptBoundMonit ma, int *iuser, double *ruser) {
    User u;
    u.funct2 = f;
    u.adapt2 = a != nullptr ? a : E04_ADAPT_BOUND2;
    u.hess = h;
    u.hadapt = ha != nullptr ? ha : E04_ADAPT_HESS2;
    u.monit = m;
    u.madapt = ma != nullptr ? ma : E04_ADAPT_BOUND_MONIT;
    u.iuser = iuser;
    u.ruser = ruser;
    return u;
}

// The caller's arrays as a problem: the estimate in HDIAG and HLOWER, W the scratch.
inline Problem arrays(Method method, int n, const double *bl, const double *bu, double *x, double *f, double *g,
                      int *istate, double *hdiag, double *hlower, double *w) {
    Problem p;
    p.n = n;
    p.method = method;
    p.bl = bl;
    p.bu = bu;
    p.x = x;
    p.f = f;
    p.g = g;
    p.istate = istate;
    p.hdiag = hdiag;
    p.hlower = hlower;
    p.w = w;
    return p;
}

// The settings that the cores and the comprehensive drivers take as arguments.
inline Settings given(int maxcal, int iprint, double eta, double xtol, double stepmx, double delta) {
    Settings s;
    s.maxcal = maxcal;
    s.iprint = iprint;
    s.eta = eta;
    s.xtol = xtol;
    s.stepmx = stepmx;
    s.delta = delta;
    return s;
}

// Runs the method from X (moved into the bounds first).  Returns an Inform value, or the user's
// negative IFLAG.
int minimise(Problem &p, const User &u, const Settings &s);

// Difference intervals for gradients by values, one per variable, at X (the start-up of E04JYF):
// sqrt(EPS)(1 + |x|), enlarged tenfold (at most three times) while the value does not change.
// Returns 0, or the user's negative IFLAG.
int difference_intervals(int n, const User &u, const double *bl, const double *bu, const double *x, double f,
                         double *h, double *xt, int *nf);

// Checks of the user's derivatives at X against differences: 0 good, 1 bad, negative the user's stop.
// W holds 3N reals.
int check_gradient(int n, const User &u, const double *x, double f, const double *g, double *w, int *nf);
int check_hessian(int n, const User &u, const double *x, const double *g, double *hdiag, double *hlower,
                  double *w, int *nf);

// The sum of squares of the gradient over the variables not held at a bound.
double projected_gradient_sq(int n, const double *bl, const double *bu, const double *x, const double *g);

// The drivers' IFAIL from a core outcome: 3 and 5 become 5 to 8 when the projected gradient's sum of
// squares G is within 1, 10, 100 or 1000 times S = (1 + |F|)^2 EPS^0.66666, and stay 3 otherwise;
// every other outcome is kept.
int grade(int inform, int n, const double *bl, const double *bu, const double *x, double f, const double *g);

} // namespace zek::bound

#endif
