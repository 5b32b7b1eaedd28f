/* Chapter C02: zeros of a quartic.
 *
 * C02ALF: the four zeros of e*z^4 + a*z^3 + b*z^2 + c*z + d (real coefficients); C02ANF the same with
 * complex coefficients, each passed as two doubles (real part first).  ZEROR(4), ZEROI(4) receive the
 * real and imaginary parts of the zeros (for real data conjugate pairs exactly conjugate, positive
 * imaginary part first), ERREST(4) an estimate of each zero's absolute error: the machine precision
 * times ||H||_1 / s, H the balanced companion matrix and s the reciprocal condition number of the zero
 * as an eigenvalue of H (the machine precision alone for a zero that is exactly 0).  The three arrays
 * hold the undefined-value marker unless the call succeeds.
 *
 * IFAIL (host channel): 1 E is zero; 2 the companion matrix cannot be formed without overflow (a
 * quotient of a coefficient by E overflows, or a coefficient is NaN or infinite); 3 the QR iteration
 * reached its limit of 30 sweeps per row.
 */
#ifndef ZEK2_C02_H
#define ZEK2_C02_H

#include "types.h"

ZEK_BEGIN_DECLS

ZEK_API void C02ALF(const double *e, const double *a, const double *b, const double *c, const double *d, double *zeror,
                    double *zeroi, double *errest, int *ifail) ZEK_SYMBOL("q39576");
ZEK_API void C02ANF(const double *e, const double *a, const double *b, const double *c, const double *d, double *zeror,
                    double *zeroi, double *errest, int *ifail) ZEK_SYMBOL("q48538");

ZEK_END_DECLS

#endif
