/* Chapter S: elementary and special functions of a real argument.
 *
 * The lower-case routines take a fail record last, which may be null; on a bad argument they raise a
 * code and return the value stated.  The S15 routines take no fail record and cannot fail.
 */
#ifndef ZEK2_S_H
#define ZEK2_S_H

#include "types.h"

ZEK_BEGIN_DECLS

/* s14aac: the gamma function.  Fails with 7 (x > 170; returns 4.3e304), 5 (x < -170; returns 0),
 * 707 (|x| < 2.23e-308; returns 4.4843049327354256e307 with the sign of x, +0 positive), 708 (x a
 * negative integer; returns 4.3e304). */
ZEK_API double s14aac(double x, ZekFail *fail) ZEK_SYMBOL("q53827");

/* S14AAF: the gamma function of *X, with the failures of s14aac as IFAIL 1 (" ** On entry, X is too
 * large: X =..."), 2 (too large and negative), 3 (too close to zero), 4 (a negative integer), and the
 * same returned values. */
ZEK_API double S14AAF(const double *x, int *ifail) ZEK_SYMBOL("q52915");

/* s14abc: log Gamma(x) for x > 0.  Fails with 6 (x <= 0; returns 0), 7 (x > 2.55e305; returns
 * 1.79e308). */
ZEK_API double s14abc(double x, ZekFail *fail) ZEK_SYMBOL("q97225");

/* s14bac: the incomplete gamma ratios P(a, x) and Q(a, x) = 1 - P, to the relative accuracy TOL
 * (machine precision when TOL is not inside it and 1).  *P and *Q are set to 0 first.  Fails with 6
 * (a <= 0), 5 (x < 0), 420 (no convergence in 600 terms; the last estimates are returned).
 * Accuracy at the default: the smaller ratio to about 1.5e-15 relative (measured worst), down to
 * 1e-300 and for a up to 1e6, since the exponent y of its factor exp(-y) is carried in double-double;
 * the larger one is 1 less it. */
ZEK_API void s14bac(double a, double x, double tol, double *p, double *q, ZekFail *fail) ZEK_SYMBOL("q24556");

/* S15_ERFC: erfc(x); 0 from x = 26.6 up, 2 from x = -6.25 down. */
ZEK_API double S15_ERFC(double x) ZEK_SYMBOL("q15831");
/* S15_ERF: erf(x); +-1 from |x| = 6.25 up. */
ZEK_API double S15_ERF(double x) ZEK_SYMBOL("q96692");
/* S15_UPPER_TAIL: erfc(-0.7071067811865475 x) / 2, the normal distribution function at x. */
ZEK_API double S15_UPPER_TAIL(double x) ZEK_SYMBOL("q39012");
/* S15_LOWER_TAIL: erfc(0.7071067811865475 x) / 2, its mirror: the normal upper tail at x. */
ZEK_API double S15_LOWER_TAIL(double x) ZEK_SYMBOL("q13627");

/* s21bac: Carlson's degenerate elliptic integral RC(x, y), x >= 0, y != 0; for y < 0 the Cauchy
 * principal value.  Fails with 5 (x < 0) and 4 (y = 0), returning 0. */
ZEK_API double s21bac(double x, double y, ZekFail *fail) ZEK_SYMBOL("q44687");

ZEK_END_DECLS

#endif
