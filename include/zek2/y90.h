/* Chapter Y90: matrices for testing.
 *
 * Random vectors and matrices, random orthogonal and unitary matrices, matrices with prescribed singular
 * values or eigenvalues, conversion of a dense matrix to band, packed and coordinate storage, and
 * comparators that turn a computed result into a test ratio.
 *
 * Random numbers come from the explicit-state generator of chapter G05 (selector 0) on the caller's
 * state ISEED(4): four limbs in 0..32767, not all zero (G05_EXPLICIT_DEFAULT gives one).  The state
 * advances, so successive calls give new numbers and the same state gives the same matrix; the
 * process-wide stream is never touched.  Normal deviates are by the polar method.
 *
 * Routines with IFAIL have the argument exits (IFAIL 1): a size below 0, a leading dimension too small,
 * DIST, MODE, COND, KL/KU or UPLO not valid, ISEED not a valid state; Y90SPF has IFAIL 2 for LA too
 * small, Y90SVF and Y90EVF IFAIL 3 for values not finite.  Outputs are untouched on every failure.
 *
 * The comparators return a ratio that is of order 1 (say below 30) for a result correct to rounding:
 * the norm of the discrepancy over (size times norm of the data times the machine precision), in the
 * 1-norm.  They return -1.0 for sizes or leading dimensions that are not valid, and the huge value
 * 1/(smallest positive normal number) when the data hold a NaN, so that a NaN never passes a test as
 * a small ratio.
 */
#ifndef ZEK2_Y90_H
#define ZEK2_Y90_H

#include "types.h"

ZEK_BEGIN_DECLS

/* Y90RVF: X(N) random: DIST 'U' uniform on (A, B), 'N' normal with mean A and standard deviation
 * B >= 0.  A and B must be finite. */
ZEK_API void Y90RVF(const char *dist, const int *n, const double *a, const double *b, int iseed[], double x[],
                    int *ifail, int dist_len) ZEK_SYMBOL("Y90RVF");
/* Y90RGF: the M by N matrix X (LDX >= M) random as Y90RVF, column by column. */
ZEK_API void Y90RGF(const char *dist, const int *m, const int *n, const double *a, const double *b, int iseed[],
                    double x[], const int *ldx, int *ifail, int dist_len) ZEK_SYMBOL("Y90RGF");

/* Y90ROF: Q (N by N, LDQ >= N) orthogonal and distributed by Haar measure: the product of the
 * Householder reflectors that reduce a Gaussian matrix to triangular form, each column multiplied by
 * the sign of the diagonal element of R it produced (without that correction the distribution is not
 * uniform).  O(N^3).  WORK(2N). */
ZEK_API void Y90ROF(const int *n, int iseed[], double q[], const int *ldq, double work[], int *ifail)
    ZEK_SYMBOL("Y90ROF");
/* Y90RUF: the unitary analogue: Q complex (pairs of doubles, LDQ >= N in complex elements), the phases
 * of R's diagonal taken out of the columns.  WORK(4N) doubles. */
ZEK_API void Y90RUF(const int *n, int iseed[], double q[], const int *ldq, double work[], int *ifail)
    ZEK_SYMBOL("Y90RUF");

/* Y90CDF: N values D of largest magnitude DMAX in a condition mode, COND >= 1 the ratio of the largest
 * to the smallest (for DMAX != 0):
 *   MODE 1: D(1) = 1, the others 1/COND;          MODE 2: all 1 except D(N) = 1/COND;
 *   MODE 3: geometric, D(i) = COND^(-(i-1)/(N-1)); MODE 4: arithmetic, from 1 down to 1/COND;
 *   MODE 5: D(1) = 1, D(N) = 1/COND, the others log-uniform between (random, from ISEED);
 * all times DMAX; a negative MODE reverses the order.  ISEED is read only for MODE +-5. */
ZEK_API void Y90CDF(const int *mode, const int *n, const double *cond, const double *dmax, int iseed[], double d[],
                    int *ifail) ZEK_SYMBOL("Y90CDF");

/* Y90SVF: A (M by N, LDA >= M) = U diag(D) V' with U, V Haar orthogonal (Y90ROF) and D(min(M,N)) the
 * singular values (their signs are kept: negative values are singular values of their magnitude).
 * WORK(M^2 + N^2 + 2 max(M, N)). */
ZEK_API void Y90SVF(const int *m, const int *n, const double d[], int iseed[], double a[], const int *lda,
                    double work[], int *ifail) ZEK_SYMBOL("Y90SVF");
/* Y90EVF: A (N by N, LDA >= N) = Q diag(D) Q' exactly symmetric, with Q Haar orthogonal: the
 * eigenvalues are D(N).  WORK(N^2 + 2N). */
ZEK_API void Y90EVF(const int *n, const double d[], int iseed[], double a[], const int *lda, double work[],
                    int *ifail) ZEK_SYMBOL("Y90EVF");

/* Y90BNF: the band of A (M by N) with KL subdiagonals and KU superdiagonals into AB (LDAB >=
 * KL + KU + 1): AB(KU + 1 + i - j, j) = A(i, j) for max(1, j - KU) <= i <= min(M, j + KL), the
 * storage of the F07 band routines; the places outside the matrix are set to 0. */
ZEK_API void Y90BNF(const int *m, const int *n, const int *kl, const int *ku, const double a[], const int *lda,
                    double ab[], const int *ldab, int *ifail) ZEK_SYMBOL("Y90BNF");
/* Y90PKF: the upper ('U') or lower ('L') triangle of A (N by N) packed by columns into AP(N(N+1)/2). */
ZEK_API void Y90PKF(const char *uplo, const int *n, const double a[], const int *lda, double ap[], int *ifail,
                    int uplo_len) ZEK_SYMBOL("Y90PKF");
/* Y90SPF: the entries of A (M by N) with |a_ij| > |DROP| (and every NaN) in coordinate storage VAL,
 * IROW, ICOL (one-based), row by row with columns ascending in a row, the order of the F11 routines.
 * NNZ returns the count of entries kept; when it exceeds LA, the first LA are stored and IFAIL is 2. */
ZEK_API void Y90SPF(const int *m, const int *n, const double a[], const int *lda, const double *drop, const int *la,
                    int *nnz, double val[], int irow[], int icol[], int *ifail) ZEK_SYMBOL("Y90SPF");

/* Y90DRF: ||A - B||_1 / (max(M, N) ||A||_1 eps) for M by N matrices. */
ZEK_API double Y90DRF(const int *m, const int *n, const double a[], const int *lda, const double b[], const int *ldb)
    ZEK_SYMBOL("Y90DRF");
/* Y90ORF: ||I - Q'Q||_1 / (M eps) for Q of M rows and N orthonormal columns. */
ZEK_API double Y90ORF(const int *m, const int *n, const double q[], const int *ldq) ZEK_SYMBOL("Y90ORF");
/* Y90QRF: ||A - Q R||_1 / (max(M, N) ||A||_1 eps) for A M by N, Q M by K, R K by N. */
ZEK_API double Y90QRF(const int *m, const int *n, const int *k, const double a[], const int *lda, const double q[],
                      const int *ldq, const double r[], const int *ldr) ZEK_SYMBOL("Y90QRF");
/* Y90RRF: the largest over the columns j of ||b_j - A x_j||_1 / (N ||A||_1 ||x_j||_1 eps), A N by N,
 * X and B N by NRHS. */
ZEK_API double Y90RRF(const int *n, const int *nrhs, const double a[], const int *lda, const double x[],
                      const int *ldx, const double b[], const int *ldb) ZEK_SYMBOL("Y90RRF");

ZEK_END_DECLS

#endif
