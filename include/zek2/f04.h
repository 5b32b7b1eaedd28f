/* Chapter F04: dense linear equations, covariance of least-squares fits, and norm estimation.
 *
 * The C-style solvers work on the factorisation of f03afc (chapter F03): A = P*L*U over A with
 * one-based integer pivots.  Matrices are column-major; the solution and right-hand side arrays are N
 * by NRHS with their own leading dimensions.  Iterative refinement accumulates each residual B - A*X in
 * double-double form (x03aac) and stops when the correction falls to rounding level; it fails when a
 * correction does not shrink to at most half the previous one.
 *
 * The export symbols of this chapter, except F04YAF's, are the library's own choice.
 */
#ifndef ZEK2_F04_H
#define ZEK2_F04_H

#include "types.h"

ZEK_BEGIN_DECLS

/* Solves A*X = B with the factors of f03afc in A (tda >= n) and PIVOT(n); B (tdb >= n, n by nrhs) is
 * overwritten by X.  No refinement.  Codes 11 ZE_INT_ARG_LT (n < 1, nrhs < 1), 17 ZE_2_INT_ARG_LT
 * (tda < n, tdb < n). */
ZEK_API void f04ajc(int n, int nrhs, const double *a, int tda, const int *pivot, double *b, int tdb, ZekFail *fail)
    ZEK_SYMBOL("q30403");

/* Solves A*X = B with iterative refinement, given the original A (tda >= n) and its factors AA
 * (tdaa >= n) and PIVOT from f03afc.  X (tdx >= n) receives the solution; BB (tdbb >= n), unless null,
 * the final residuals B - A*X.  Codes 11 (n, nrhs below 1), 17 (tda, tdaa, tdb, tdx, tdbb below n), 378
 * ZE_ITER_FAIL_CONV (the refinement did not converge: A is too ill-conditioned; X is the last iterate),
 * 73 ZE_ALLOC_FAIL. */
ZEK_API void f04ahc(int n, int nrhs, const double *a, int tda, const double *aa, int tdaa, const int *pivot,
                    const double *b, int tdb, double *x, int tdx, double *bb, int tdbb, ZekFail *fail)
    ZEK_SYMBOL("q30402");

/* Solves A*X = B with iterative refinement: A (tda >= n) is kept, AA (tdaa >= n) receives its LU
 * factors (as f03afc), X (tdx >= n) the solution and BB (tdbb >= n), unless null, the final residuals.
 * Codes as f04ahc, and 366 ZE_SINGULAR when A is singular. */
ZEK_API void f04aec(int n, int nrhs, const double *a, int tda, const double *b, int tdb, double *aa, int tdaa,
                    double *x, int tdx, double *bb, int tdbb, ZekFail *fail) ZEK_SYMBOL("q30401");

ZEK_END_DECLS

#endif
