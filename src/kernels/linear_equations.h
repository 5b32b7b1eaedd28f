// Determinants and dense linear equations (chapters F03 and F04) on the LU factorisation of F07, and the
// inverse of a general matrix that F01 builds on it.
#ifndef ZEK_KERNELS_LINEAR_EQUATIONS_H
#define ZEK_KERNELS_LINEAR_EQUATIONS_H

#include "zek2/types.h"

namespace zek {

// The LU factorisation of F03AFF: A = P*L*U (L unit lower, U upper, over A) with partial pivoting on
// implicitly equilibrated rows: the pivot of column k is the element of largest |a(i,k)|/||row i||
// (2-norms of the rows on entry).  P(k) receives the pivot row of step k as a real.  The determinant is
// D1 * 2**ID with 1/16 <= |D1| < 1.  Returns kLuRegular, kLuSingular when A is singular (a zero row,
// or a pivot not larger than EPS times the norm of its row), or kLuNonFinite when an element of A is
// infinite or undefined or the elimination overflowed; on both failures D1 = 0, ID = 0 and the
// factorisation stops.
enum LuOutcome : int { kLuRegular = 0, kLuSingular = 1, kLuNonFinite = 2 };
int scaled_lu(int n, double eps, double *a, int lda, double *p, double *d1, int *id);

// X = A^-1 * B by the factors of scaled_lu and iterative refinement: residuals B - A*X accumulated in
// double-double form, corrections solved with the factors, until the correction is negligible.  A and
// LU are N by N, B, X and R (the final residuals, may be null) N by NRHS; IPIV one-based pivots; WORK
// holds 2*N reals.  Returns 0, or 1 when a correction failed to shrink (A too ill-conditioned for the
// refinement to converge).
int refined_solve(int n, int nrhs, const double *a, int lda, const double *lu, int ldlu, const int *ipiv,
                  const double *b, int ldb, double *x, int ldx, double *r, int ldr, double *work);

// Reciprocal condition number 1/(||R||_1 * ||R^-1||_1) of the upper triangular N by N matrix R, with
// ||R^-1||_1 estimated (zek::estimate_norm); 0 for an exactly singular R.  WORK(2N), IWORK(N+3).
double triangular_rcond(int n, const double *r, int ldr, double *work, int *iwork);

} // namespace zek

#endif
