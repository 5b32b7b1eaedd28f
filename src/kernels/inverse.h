// Matrix inversion: what F01AAZ, f01aac, q62158 and f01adc compute, for other chapters to call.
#ifndef ZEK_KERNELS_INVERSE_H
#define ZEK_KERNELS_INVERSE_H

namespace zek {

// X = A^-1 for the N by N matrix A, which is overwritten by its F03AFF factors (P holds the pivots as
// reals).  Returns 0, or 1 when A is singular (X is then not formed).
int general_inverse(int n, double *a, int lda, double *x, int ldx, double *p);

// X = (L*L')^-1 on the lower triangle of X, from the Cholesky factor L: its strict lower triangle in L,
// its diagonal in D.  Inner products go through x03aac, in double-double form when EXTENDED.  WORK holds
// N reals.  Returns 0, or i when D(i) is zero (or not a number).
int spd_inverse_from_cholesky(int n, const double *l, int ldl, const double *d, double *x, int ldx, bool extended,
                              double *work);

} // namespace zek

#endif
