/* Chapter D01: quadrature.
 *
 * d01sjc integrates a function of one variable over a finite interval to a requested accuracy by the
 * adaptive bisection strategy with extrapolation (21-point Gauss-Kronrod pairs on each piece, the
 * epsilon algorithm over the sequence of sums); d01wcc integrates over a box of 2 to 15 dimensions by
 * adaptive subdivision with a fully symmetric degree-7 rule and its embedded degree-5 rule.  Both are
 * C-style routines: they allocate their own workspace and raise catalogue codes in the fail record.
 *
 * D01JAF integrates over the ball of a given radius in 2 to 4 dimensions by radial shells of integer
 * lattice points, and D01PAF over a simplex by the ladder of Grundmann-Moller rules with Richardson
 * extrapolation.  Both are IFAIL-layer fronts over workers.
 */
#ifndef ZEK2_D01_H
#define ZEK2_D01_H

#include "types.h"

ZEK_BEGIN_DECLS

/* ---- one dimension ---------------------------------------------------------------------------- */

/* The integrand of d01sjc: the value at x; USER is the caller's pointer, passed through unchanged. */
typedef double (ZEK_CALLBACK *ZekQuadFunction)(double x, void *user);

/* What d01sjc hands back about its subintervals.  The four arrays are allocated by d01sjc with
 * ZEK_ALLOCATE, max_num_subint doubles each, and belong to the caller after return (release each with
 * ZEK_RELEASE or free).  Entries 0..num_subint-1 describe the subintervals in ascending order of their
 * left ends; the rest hold 0.0.  The pointers are null when d01sjc failed before integrating. */
typedef struct ZekQuadProgress {
    int32_t num_subint;      /* subintervals in the final partition of [a, b] */
    int32_t fun_count;       /* evaluations of the integrand: 21 per rule application */
    double *sub_int_beg_pts; /* left end of each subinterval */
    double *sub_int_end_pts; /* right end */
    double *sub_int_error;   /* error estimate on the subinterval */
    double *sub_int_result;  /* integral over the subinterval */
} ZekQuadProgress;

/* d01sjc: integral of f over [a, b] (a > b gives minus the integral over [b, a]) with
 * |result - integral| <= max(|epsabs|, |epsrel| |integral|) as the goal; *abserr is the estimate of the
 * error reached.  a and b must be finite, the tolerances not NaN, and not both so small that no
 * accuracy can be asked (|epsabs| <= 0 and |epsrel| < 50 machine precision): code ZE_REAL then.
 * Codes: ZE_INT_ARG_LT (max_num_subint < 1), ZE_ALLOC_FAIL, and the warnings of an integral returned
 * with its estimate: ZE_QUAD_MAX_SUBDIV (max_num_subint pieces used), ZE_QUAD_ROUNDOFF_TOL (round-off
 * prevents the tolerance), ZE_QUAD_BAD_SUBDIV (bad integrand behaviour at a point, or an integrand value
 * that is NaN or infinite: *result is then NaN), ZE_QUAD_ROUNDOFF_EXTRAPL (round-off in the
 * extrapolation table), ZE_QUAD_NO_CONV (the integral is probably divergent or converges too slowly). */
ZEK_API void d01sjc(ZekQuadFunction f, double a, double b, double epsabs, double epsrel, int max_num_subint,
                    double *result, double *abserr, ZekQuadProgress *qp, void *user, ZekFail *fail)
    ZEK_SYMBOL("q76630");

/* The adaptive loop of d01sjc over caller arrays alist, blist, rlist, elist (left ends, right ends,
 * local integrals, local errors) and iord, each LIMIT long, with epsabs, epsrel >= 0.  On return *last
 * pieces are in use, *neval = 42 *last - 21, and *ier is 0 (success), 1 (limit), 2 (round-off),
 * 3 (bad integrand at a point or a non-finite value), 4 (round-off in the extrapolation),
 * 5 (divergent or slowly convergent) or 6 (tolerances that ask for nothing). */
ZEK_API void D01SJ_WORKER(ZekQuadFunction f, void *user, double a, double b, double epsabs, double epsrel, int limit,
                          double *result, double *abserr, int *neval, int *ier, double alist[], double blist[],
                          double rlist[], double elist[], int iord[], int *last) ZEK_SYMBOL("q17472");

/* The 21-point Kronrod rule with its embedded 10-point Gauss rule on [a, b]: the integral, its error
 * estimate, the integral of |f| and of |f - mean|; *nonfinite becomes 1 when a value of f (or the
 * rule's sum) is NaN or infinite, and is left alone otherwise. */
ZEK_API void D01SJ_RULE(ZekQuadFunction f, void *user, double a, double b, double *result, double *abserr,
                        double *resabs, double *resasc, int *nonfinite) ZEK_SYMBOL("q31863");

/* Keeps iord[0..] ordered by decreasing elist after the piece MAXERR (one-based) was bisected into
 * MAXERR and LAST; returns the new largest in *maxerr and *ermax.  *nrmax is the depth to which the
 * order is kept during extrapolation. */
ZEK_API void D01SJ_ORDER(int limit, int last, int *maxerr, double *ermax, const double elist[], int iord[],
                         int *nrmax) ZEK_SYMBOL("q14429");

/* The epsilon algorithm on epstab[0..*n-1] (room for 52 entries): the extrapolated limit in *result,
 * its error in *abserr; res3la[3] and *nres keep the last three results between calls. */
ZEK_API void D01SJ_EXTRAPOLATE(int *n, double epstab[], double *result, double *abserr, double res3la[],
                               int *nres) ZEK_SYMBOL("q88739");

/* ---- box -------------------------------------------------------------------------------------- */

/* The integrand of d01wcc: the value at x[0..ndim-1]. */
typedef double (ZEK_CALLBACK *ZekMultiFunction)(int ndim, const double x[], void *user);

/* d01wcc: integral of f over the box a[i] <= x[i] <= b[i], i < ndim, with 2 <= ndim <= 15.  On entry
 * *minpts is the least number of evaluations to spend, on exit the number spent; maxpts is the most,
 * and at least 2^ndim + 2 ndim^2 + 2 ndim + 1 (one application of the rule).  The goal is a relative
 * error estimate *acc <= eps (eps >= 0); *finest is the integral.  Regions are bisected along the axis
 * of the largest fourth difference, the region of largest error first.
 * Codes: ZE_INT_ARG_CONS (ndim, maxpts), ZE_2_INT_ARG_GT (minpts > maxpts), ZE_REAL_ARG_LT (eps < 0),
 * ZE_REAL (a non-finite bound), ZE_ALLOC_FAIL, ZE_QUAD_MAX_INTEGRAND_EVAL (maxpts spent before eps was
 * reached: *finest and *acc are the best found), ZE_QUAD_BAD_SUBDIV (f returned NaN or infinity). */
ZEK_API void d01wcc(int ndim, ZekMultiFunction f, const double a[], const double b[], int *minpts, int maxpts,
                    double eps, double *finest, double *acc, void *user, ZekFail *fail) ZEK_SYMBOL("q27710");

/* ---- ball and simplex (IFAIL layer) ----------------------------------------------------------- */

/* The integrand of D01JAF and D01PAF: F(NDIM, X, IUSER, RUSER) at the point X(1:NDIM); IUSER and RUSER
 * are the caller's arrays, passed through unchanged. */
typedef double (ZEK_CALLBACK *ZekD01Function)(const int *ndim, const double x[], int iuser[], double ruser[]);

/* D01JAF: integral of F over the ball |x| <= RADIUS in NDIM = 2, 3 or 4 dimensions, centred at the
 * origin.  The rule of level L is a composite over shells: the points of the integer lattice with
 * |k|^2 = s, s = 0..S (S = 4 * 2^L), scaled onto radius RADIUS * g(sqrt(s/S)), averaged with equal weights
 * on each shell (exact for polynomials of degree 3 in the direction), and the shells summed by the
 * trapezoidal rule in s.  Levels are refined until two successive estimates differ by at most
 * max(EPSA, EPSR |RESULT|); ESTERR is that difference, NEVALS the evaluations spent.
 *   METHOD selects the radial grading g: 0 and 2 none (g(t) = t); 1 toward the centre (g(t) = t^2), for
 *   integrands singular or peaked at the origin; 3 as 1 and 4 as 2 for a radial integrand; 5 toward
 *   the surface (g(t) = 1 - (1 - t)^2); 6 toward both (g(t) = t^2 (3 - 2 t)).
 *   ICOORD selects what F receives: 0 Cartesian coordinates; 1 polar coordinates (r, theta(1), ...,
 *   theta(NDIM-1)), the last angle over [0, 2 pi) and the others over [0, pi]; 2 (METHOD 3 or 4
 *   only) a radial integrand, called once per shell with X = (r, 0, ..., 0).
 * IFAIL 4 for the arguments (checked in that order: NDIM, METHOD, ICOORD and their pairing, RADIUS),
 * 1 when the accuracy was not reached within 4 000 000 evaluations (RESULT, ESTERR the last ones). */
ZEK_API void D01JAF(ZekD01Function f, const int *ndim, const double *radius, const double *epsa, const double *epsr,
                    const int *method, const int *icoord, double *result, double *esterr, int *nevals, int iuser[],
                    double ruser[], int *ifail) ZEK_SYMBOL("q33254");
ZEK_API void D01JAF_WORKER(ZekD01Function f, int ndim, double radius, double epsa, double epsr, int method,
                           int icoord, double *result, double *esterr, int *nevals, int iuser[], double ruser[],
                           char *errbuf, int *ifail, int errbuf_len) ZEK_SYMBOL("q18086");

/* The partition stepper of D01JAF: PARTS(1:NDIM) runs through the non-increasing vectors of
 * non-negative integers with PARTS(1)^2 + ... + PARTS(NDIM)^2 = BUDGET.  Start with *state 0; each call
 * gives the next vector and returns 1, or returns 0 when there is none left.  REST(1:NDIM) is work. */
ZEK_API int D01JA_PARTITION_STEP(int ndim, int budget, int parts[], int rest[], int *state) ZEK_SYMBOL("q25273");
/* The sign stepper: expands the partition PARTS into the points of its orbit under permutations and
 * sign changes.  PERM(1:NDIM) and *signs are its state (start with *state 0); each call writes the next
 * point into X(1:NDIM), scaled by SCALE, and returns 1, or returns 0 when the orbit is done. */
ZEK_API int D01JA_ORBIT_STEP(int ndim, const int parts[], int perm[], int *signs, double scale, double x[],
                             int *state) ZEK_SYMBOL("q32285");

/* D01PAF: integral of FUNCTN over the simplex whose NDIM+1 vertices are the rows of VERT(1:NDIM+1, 1:NDIM),
 * with leading dimension IV1 >= NDIM+1 and IV2 >= 2*NDIM+2 columns; the columns NDIM+1 to 2*NDIM+2 are
 * the routine's working columns and must be kept between calls of one ladder.  The plain rule of order
 * k (k = MINORD+1 .. MAXORD) is the volume times the mean of FUNCTN over the points whose barycentric
 * coordinates are odd multiples of 1/m, m = NDIM + 2k - 1 (C(NDIM+k-1, NDIM) points); the orders are
 * extrapolated in h^2, h = 2/m, which makes the value from orders 1..k exact for polynomials of degree
 * 2k - 1.  After a call that ended with order K:
 *   FINVLS(j) is the value extrapolated from orders j..K (FINVLS(1) the best estimate, FINVLS(K) the
 *   plain rule of order K), ESTERR(k) = |FINVLS(1) after order k - FINVLS(1) after order k-1|
 *   (ESTERR(1) = |FINVLS(1)| after order 1), VERT(1, 2*NDIM+2) the volume and VERT(2, 2*NDIM+2) the
 *   number of evaluations of the ladder so far, and MINORD = MAXORD, so a call with a larger MAXORD goes
 *   on where the ladder stopped.  FINVLS and ESTERR have at least MAXORD elements.
 * IFAIL 1 for the arguments, 2 for a simplex whose volume is not representable (no evaluation is made),
 * 3 when the ladder would pass 2^31 - 1 evaluations (the orders before are kept). */
ZEK_API void D01PAF(const int *ndim, double vert[], const int *iv1, const int *iv2, ZekD01Function functn,
                    int *minord, const int *maxord, double finvls[], double esterr[], int iuser[], double ruser[],
                    int *ifail) ZEK_SYMBOL("q79439");
ZEK_API void D01PAF_WORKER(int ndim, double vert[], int iv1, int iv2, ZekD01Function functn, int *minord, int maxord,
                           double finvls[], double esterr[], int iuser[], double ruser[], char *errbuf, int *ifail,
                           int errbuf_len) ZEK_SYMBOL("q84408");

/* The adaptor through which D01JAF and D01PAF call the user's function (one body, two symbols). */
ZEK_API double D01_ADAPT_F(ZekD01Function f, int ndim, const double x[], int iuser[], double ruser[])
    ZEK_SYMBOL("q39512");
ZEK_API double D01_ADAPT_F_ALIAS(ZekD01Function f, int ndim, const double x[], int iuser[], double ruser[])
    ZEK_SYMBOL("q83293");

ZEK_END_DECLS

#endif
