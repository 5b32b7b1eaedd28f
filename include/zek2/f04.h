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
    ZEK_SYMBOL("f04ajc");

/* Solves A*X = B with iterative refinement, given the original A (tda >= n) and its factors AA
 * (tdaa >= n) and PIVOT from f03afc.  X (tdx >= n) receives the solution; BB (tdbb >= n), unless null,
 * the final residuals B - A*X.  Codes 11 (n, nrhs below 1), 17 (tda, tdaa, tdb, tdx, tdbb below n), 378
 * ZE_ITER_FAIL_CONV (the refinement did not converge: A is too ill-conditioned; X is the last iterate),
 * 73 ZE_ALLOC_FAIL. */
ZEK_API void f04ahc(int n, int nrhs, const double *a, int tda, const double *aa, int tdaa, const int *pivot,
                    const double *b, int tdb, double *x, int tdx, double *bb, int tdbb, ZekFail *fail)
    ZEK_SYMBOL("f04ahc");

/* Solves A*X = B with iterative refinement: A (tda >= n) is kept, AA (tdaa >= n) receives its LU
 * factors (as f03afc), X (tdx >= n) the solution and BB (tdbb >= n), unless null, the final residuals.
 * Codes as f04ahc, and 366 ZE_SINGULAR when A is singular. */
ZEK_API void f04aec(int n, int nrhs, const double *a, int tda, const double *b, int tdb, double *aa, int tdaa,
                    double *x, int tdx, double *bb, int tdbb, ZekFail *fail) ZEK_SYMBOL("f04aec");

/* Least-squares solution of the full-rank system A*x ~ b, A m by n (tda >= m >= n >= 1): A is
 * overwritten by its QR factorisation in the form of F01QCF (R over the upper triangle, ZETA(n) the
 * zetas), b(m) by Q'*b with x in its first n places.  *SIGMA = ||b - A*x|| / sqrt(m - n), the residual
 * standard error (0 when m = n); with R in A it is what F04YAF needs (SVD false, NRA = tda).  The rank
 * is decided by the reciprocal condition number of R (1-norm, estimated): at or above TOL (TOL <= 0:
 * n times the machine precision) *IRANK = n and x = R^-1*(Q'*b)(1:n).  Below it the problem counts as
 * rank deficient and x is the minimum-norm solution from the SVD R = U*S*V': *IRANK receives the number
 * of singular values above TOL times the largest, x = V*S^+*U'*(Q'*b)(1:n) over them, the first n rows
 * of A the rows of V' and ZETA(n) the singular values, largest first (the SVD true form of F04YAF), and
 * *SIGMA = ||b - A*x|| / sqrt(m - IRANK) (0 when m = IRANK); the call succeeds.  Codes 11 ZE_INT_ARG_LT
 * (n < 1), 17 ZE_2_INT_ARG_LT (m < n, tda < m), 291 ZE_SVD_FAIL (the SVD did not converge, or A holds
 * a NaN or an infinity),
 * 73 ZE_ALLOC_FAIL. */
ZEK_API void f04jgc(int m, int n, double *a, int tda, double *b, double tol, double *sigma, int *irank, double *zeta,
                    ZekFail *fail) ZEK_SYMBOL("f04jgc");

/* Elements of the estimated variance-covariance matrix C of the solution of a linear least-squares
 * problem with P parameters, for a residual standard error SIGMA >= 0.  SVD = 0 (false): A (NRA >= P)
 * holds the upper triangular factor R of the QR factorisation in its first P rows, and
 * C = SIGMA**2 * (R'*R)^-1.  SVD nonzero (true): the first IRANK rows of A hold the first IRANK right
 * singular vectors (as rows), SV(IRANK) the singular values, and C = SIGMA**2 * V*S**-2*V'.
 * JOB = -1: the whole of C, its upper triangle over the upper triangle of A (rows 1..P), its diagonal
 * also in CJ(P); JOB = 0: the diagonal of C in CJ; JOB = j (1..P): column j of C in CJ.  WORK(P).
 * IFAIL (host channel): 1 an argument error (P < 1, SIGMA < 0, JOB out of range, IRANK out of range,
 * NRA too small; each with its own message); 2 SVD false and R is singular or so nearly that C would
 * overflow; 3 SVD true and one of the first IRANK singular values is zero. */
ZEK_API void F04YAF(const int *job, const int *p, const double *sigma, double *a, const int *nra, const int *svd,
                    const int *irank, const double *sv, double *cj, double *work, int *ifail) ZEK_SYMBOL("q46021");

/* The guarded triangular solve behind F04YAF: T*x = b (DIRECTION >= 0) or T'*x = b (DIRECTION < 0) for
 * the upper triangular N by N matrix T (LDT >= N); B(N) receives x.  IFAIL 1 (no message) as soon as a
 * division would overflow, 0 otherwise. */
ZEK_API void F04YAY(const int *direction, const int *n, const double *t, const int *ldt, double *b, int *ifail)
    ZEK_SYMBOL("F04YAY");

/* Estimate of the 1-norm of a real N by N matrix A that the caller can multiply by, through reverse
 * communication.  Set ICASE = 0 and call; while ICASE comes back nonzero, overwrite X(N) by A*X
 * (ICASE 1) or A'*X (ICASE 2) and call again with everything else unchanged.  When ICASE comes back 0,
 * ESTNRM holds the estimate (a lower bound, almost always within a factor 3 of ||A||_1) and
 * WORK(N) a vector v = A*w with ||v||_1 / ||w||_1 = ESTNRM.  At most eleven products are asked for.
 * IWORK(N+3) carries the state between calls.  Applied to A^-1 through a factorisation, this gives
 * condition numbers.  IFAIL (host channel): 1 N < 1; 2 ICASE not 0, 1 or 2 (ICASE is set to 0). */
ZEK_API void F04YCF(int *icase, const int *n, double *x, double *estnrm, double *work, int *iwork, int *ifail)
    ZEK_SYMBOL("F04YCF");
/* F04YCF for a complex matrix: X(N) and WORK(N) complex; ICASE 2 asks for A^H*X; IWORK(3). */
ZEK_API void F04ZCF(int *icase, const int *n, double *x, double *estnrm, double *work, int *iwork, int *ifail)
    ZEK_SYMBOL("F04ZCF");

ZEK_END_DECLS

#endif
