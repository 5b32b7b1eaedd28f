/* Chapter F01: matrix factorisations and operations (QR factorisation by reflectors and its
 * application, inversion, transposition, reduction to bidiagonal form).
 *
 * The reflector form of the QR routines: after F01QCF the M by N matrix A (M >= N) holds R in its upper
 * triangle and, below the diagonal of column k, the vector z of reflector k, whose first component
 * zeta is in ZETA(k).  Reflector k is H(k) = I - u*u' with u = (zeta, z')' acting on rows k..M; zeta 0
 * stands for the identity.  Q = H(1)*...*H(N) and A = Q*[R; 0].  Nothing is scaled: there is no tau.
 *
 * Failure reports.  F01QCF and F01QDF check all their arguments and count the bad ones; each is
 * printed on the stream channel (only the first letters of the names and value, as
 * " *****  Parameter  M  is invalid in routine  F  *****") unless IFAIL asks for silence, and the count
 * ends the call with IFAIL = 1 and the record "    The input parameters contained  n error(s)".  These
 * reports never end the process, whatever IFAIL asks.  F01QCZ and F01QDZ do the same on the host
 * channel, where a hard request does end it.  The C-style routines raise catalogue codes on their fail
 * record.
 */
#ifndef ZEK2_F01_H
#define ZEK2_F01_H

#include "types.h"

ZEK_BEGIN_DECLS

/* Enumerations of the C-style layer for F01. */
enum { Zek_NoTranspose = 1001, Zek_Transpose = 1002, Zek_ConjugateTranspose = 1003 };
/* Where the zetas of a QR factorisation are: on the diagonal of A, or in a separate array. */
enum { Zek_ElementsIn = 1101, Zek_ElementsSeparate = 1102 };

/* QR factorisation A = Q*R of the M by N matrix A, M >= N >= 0, LDA >= M; ZETA(N).  N = 0 succeeds at
 * once; when M = N, ZETA(N) is 0.  IFAIL 1: argument errors (M < N, N < 0, LDA < M), counted. */
ZEK_API void F01QCF(const int *m, const int *n, double *a, const int *lda, double *zeta, int *ifail)
    ZEK_SYMBOL("q74117");
/* F01QCF reporting on the host channel. */
ZEK_API void F01QCZ(const int *m, const int *n, double *a, const int *lda, double *zeta, int *ifail)
    ZEK_SYMBOL("q80523");
/* C-style twin of F01QCF: codes 17 ZE_2_INT_ARG_LT (m < n, tda < m) and 11 ZE_INT_ARG_LT (n < 0). */
ZEK_API void f01qcc(int m, int n, double *a, int tda, double *zeta, ZekFail *fail) ZEK_SYMBOL("q94800");

/* B := Q'*B (TRANS 'T' or 'C') or Q*B (TRANS 'N') for the M by NCOLB matrix B (LDB >= M), with Q from
 * F01QCF held in A (LDA >= M) and, for WHERET 'S', ZETA(N); for WHERET 'I' the zetas stand on the
 * diagonal of A.  A is restored on return.  WORK(NCOLB).  min(N, NCOLB) = 0 returns after the checks.
 * IFAIL 1: argument errors (TRANS, WHERET, M < N, N < 0, LDA < M, NCOLB < 0, LDB < M), counted. */
ZEK_API void F01QDF(const char *trans, const char *wheret, const int *m, const int *n, double *a, const int *lda,
                    const double *zeta, const int *ncolb, double *b, const int *ldb, double *work, int *ifail,
                    int trans_len, int wheret_len) ZEK_SYMBOL("q31939");
/* F01QDF reporting on the host channel. */
ZEK_API void F01QDZ(const char *trans, const char *wheret, const int *m, const int *n, double *a, const int *lda,
                    const double *zeta, const int *ncolb, double *b, const int *ldb, double *work, int *ifail,
                    int trans_len, int wheret_len) ZEK_SYMBOL("q28566");
/* C-style twin of F01QDF: TRANS Zek_NoTranspose, Zek_Transpose or Zek_ConjugateTranspose; WHERET
 * Zek_ElementsIn or Zek_ElementsSeparate.  Codes 70 ZE_BAD_PARAM (trans, wheret), 17 (m < n, tda < m,
 * tdb < m), 11 (n < 0, ncolb < 0), 73 ZE_ALLOC_FAIL (its workspace of ncolb reals). */
ZEK_API void f01qdc(int trans, int wheret, int m, int n, double *a, int tda, const double *zeta, int ncolb, double *b,
                    int tdb, ZekFail *fail) ZEK_SYMBOL("q11684");

/* QR factorisation in the reflector form above of an M by N matrix A (tda >= m, m >= n) whose first K
 * columns (0 <= k <= n) are already reduced, with their zetas in ZETA(1..K): the columns past K are first
 * transformed by those K reflectors, then reduced.  K = 0 is a plain QR factorisation, K > 0 continues
 * one after columns were appended.  Each reflector is formed on its column divided by the column's
 * largest element, so that no square overflows or underflows whatever the scaling of A's rows.
 * ZETA(n), WORK(n).  When m = n, ZETA(n) is 0.  Codes 17 ZE_2_INT_ARG_LT (m < n, tda < m), 11
 * ZE_INT_ARG_LT (n < 0, k < 0), 19 ZE_2_INT_ARG_GT (k > n). */
ZEK_API void f01qac(int m, int n, int k, double *a, int tda, double *zeta, double *work, ZekFail *fail)
    ZEK_SYMBOL("q49653");
/* The scaled vector operations of f01qac.  Vectors are N elements at increment INCX >= 1. */
/* Largest |x(i)|, 0 for N < 1. */
ZEK_API double F01_ABS_MAX(int n, const double *x, int incx) ZEK_SYMBOL("q69275");
/* Euclidean norm, the squares formed on x divided by its largest element. */
ZEK_API double F01_SCALED_NORM(int n, const double *x, int incx) ZEK_SYMBOL("q30861");
/* x := x / ALPHA, dividing element by element where 1/ALPHA would overflow. */
ZEK_API void F01_SAFE_DIVIDE_VECTOR(int n, double alpha, double *x, int incx) ZEK_SYMBOL("q93036");
/* The reflector (ZETA, z) that maps (ALPHA, x) to (beta, 0), formed on the vector scaled by its largest
 * element: ALPHA receives beta, x receives z; ZETA = 0 (identity, x unchanged) for a zero vector. */
ZEK_API void F01_SCALED_REFLECTOR(int n, double *alpha, double *x, int incx, double *zeta) ZEK_SYMBOL("q24484");
/* C := (I - u*u')*C for u = (ZETA, Z(1..M-1)) and the M by NCOL matrix C (LDC >= M); WORK(NCOL). */
ZEK_API void F01_APPLY_REFLECTOR(int m, int ncol, double zeta, const double *z, double *c, int ldc, double *work)
    ZEK_SYMBOL("q29128");

/* Inverse of a general real N by N matrix (F01AAZ): A (IA >= N) is overwritten by the LU factors of
 * F03AFF, X (IX >= N) receives A^-1 by forward and back substitution on the identity followed by the
 * column interchanges of the pivots; P(N) holds the pivots as reals.  IFAIL (host channel): 1 A is
 * singular, possibly because of rounding; 2 N < 1, or IA or IX below N. */
ZEK_API void F01AAZ(double *a, const int *ia, const int *n, double *x, const int *ix, double *p, int *ifail)
    ZEK_SYMBOL("q14922");
/* C-style form: UNIT_INVERSE (tdu >= n) receives the inverse of A (tda >= n), which is overwritten by
 * its LU factors.  Codes 11 ZE_INT_ARG_LT (n < 1), 17 ZE_2_INT_ARG_LT (tda, tdu below n), 366
 * ZE_SINGULAR, 73 ZE_ALLOC_FAIL. */
ZEK_API void f01aac(double *a, int tda, int n, double *unit_inverse, int tdu, ZekFail *fail) ZEK_SYMBOL("q60748");

/* Inverse of a symmetric positive definite matrix from its Cholesky factor L (A = L*L'): the strict
 * lower triangle of L in L (tdl >= n), its diagonal in D(n).  The lower triangle of X (tdx >= n)
 * receives A^-1; the inner products go through x03aac, accumulated in double-double form when EXTENDED
 * is nonzero.  WORK(n).  Codes 11 (n < 1), 17 (tdl, tdx below n), 367 ZE_NOT_POS_DEF (a zero diagonal
 * in D). */
ZEK_API void F01_SPD_INVERSE(int n, const double *l, int tdl, const double *d, double *x, int tdx, int extended,
                             double *work, ZekFail *fail) ZEK_SYMBOL("q62158");
/* Inverse of the symmetric positive definite matrix held in the lower triangle of A (tda >= n): the
 * inverse replaces the lower triangle, the strict upper triangle is kept.  Cholesky factorisation and
 * the inverse above with extended inner products, in allocated workspace.  Codes 11, 17, 367
 * ZE_NOT_POS_DEF (A is not positive definite, possibly because of rounding), 73. */
ZEK_API void f01adc(int n, double *a, int tda, ZekFail *fail) ZEK_SYMBOL("q96835");

/* Reduction to upper bidiagonal form for the singular value decomposition: A = Q*B*P' for the M by N
 * matrix A (tda >= m, m >= n), B with diagonal D(n) and superdiagonal E(n-1).  Q = H(1)...H(n) with
 * H(k) = I - u*u', u = (ZL(k), A(k+1:m, k)) on rows k..m; P = G(1)...G(n-2) with u = (ZR(k),
 * A(k, k+2:n)) on columns k+1..n (the reflector form of this chapter).  At the same time
 * B := Q'*B for the m by ncolb matrix B (tdb >= m), Y := Y*Q for the nrowy by m matrix Y (tdy >= nrowy),
 * Z := P'*Z for the n by ncolz matrix Z (tdz >= n); a zero count leaves the matrix alone (it may be
 * null).  WANTP nonzero: the first n rows of A then receive P' (n by n), and the vectors of Q held there
 * are lost.  ZL(n), ZR(n).  Allocates max(m, n, ncolb, nrowy, ncolz) (+ n*n with WANTP) reals.  Codes 11
 * ZE_INT_ARG_LT (n, ncolb, nrowy, ncolz below 0), 17 ZE_2_INT_ARG_LT (m < n and the leading dimensions),
 * 73 ZE_ALLOC_FAIL. */
ZEK_API void f01lzc(int m, int n, double *a, int tda, double *d, double *e, double *zl, double *zr, int ncolb,
                    double *b, int tdb, int nrowy, double *y, int tdy, int ncolz, double *z, int tdz, int wantp,
                    ZekFail *fail) ZEK_SYMBOL("q56390");

/* In-place transposition: A holds an M by N matrix column by column (leading dimension M) and on
 * return its N by M transpose (leading dimension N).  Allocates M*N bytes of marks.  Codes 11
 * ZE_INT_ARG_LT (m < 1, n < 1) and 73 ZE_ALLOC_FAIL. */
ZEK_API void f01crc(double *a, int m, int n, ZekFail *fail) ZEK_SYMBOL("q98876");

ZEK_END_DECLS

#endif
