/* Chapter F06: vector and matrix kernels.
 *
 * Conventions of the whole chapter:
 * - Scalars of intent "in" (lengths, increments, multipliers) pass by value, arrays and outputs by
 *   reference.  A complex scalar by value is two reals (real part first); complex arrays are
 *   interleaved doubles, 16 bytes an element.  Character options are decided on their first letter, in
 *   either case, and their hidden lengths (unused) follow all visible arguments.
 * - A vector is a base, a length N (below 1 means empty) and a signed increment.  The two-vector
 *   operations (copy, axpy, dot, swap, rotation, multiply, scaled copy) walk a negative increment from
 *   the far end: the logical first element lies at offset (1-N)*INC.  The one-vector operations (scale,
 *   norm, load, negate, sum of squares, leading rank, reflector generation) run from the base in steps
 *   of INC whatever its sign, so element k lies at offset (k-1)*INC and a zero increment touches only
 *   the element at the base.
 * - Sums are formed in the logical order of the elements, one term at a time.
 * - A plane rotation (c, s) acts as x' = c*x + s*y, y' = c*y - s*x.  An elementary reflector (zeta, z)
 *   is I - u*u' with u = (zeta, z')'; zeta = 0 stands for the identity.  A sum of squares (scale, sumsq)
 *   means scale**2 * sumsq and starts from (0, 1).
 * - Masters (f06xxf_ENTRY and a few q-symbols) take a leading selector that changes nothing.
 * - Safe arithmetic: the exported forms read the machine constants at run time (safe minimum
 *   2**-1022, safe maximum its reciprocal, precision 1.11130722679765e-16); the masters of the norms and
 *   the frozen forms noted below use the library's fixed literals (safe minimum 2.22507385850722e-308,
 *   safe maximum 4.49423283715578e307).  The two agree except at the edge of the range.
 * - Only the checked level-2 and level-3 operations report illegal arguments (see the second half).
 */
#ifndef ZEK2_F06_H
#define ZEK2_F06_H

#include "types.h"

ZEK_BEGIN_DECLS

/* ---- Level 1: published operations ------------------------------------------------------------ */

/* The rotation that annihilates b against a: on exit a = r = +-sqrt(a*a + b*b) (sign of the larger of a,
 * b), b = z (s if |a| > |b|, else 1/c, or 1 when c = 0), c = a/r, s = b/r.  b = 0 gives c = 1, s = 0,
 * b = 0 and leaves a alone. */
ZEK_API void f06aaf_ENTRY(int selector, double *a, double *b, double *c, double *s) ZEK_SYMBOL("f06aaf_ENTRY");
ZEK_API void DROTG(double *a, double *b, double *c, double *s) ZEK_SYMBOL("q39371");

/* sum x(i)*y(i) over N elements. */
ZEK_API double DDOT(int n, const double *x, int incx, const double *y, int incy) ZEK_SYMBOL("q11224");
/* y := alpha*x + y; alpha = 0 returns at once. */
ZEK_API void DAXPY(int n, double alpha, const double *x, int incx, double *y, int incy) ZEK_SYMBOL("q91724");
/* x := alpha*x; alpha = 0 stores zeros, -1 negates, 1 returns. */
ZEK_API void DSCAL(int n, double alpha, double *x, int incx) ZEK_SYMBOL("q36517");
/* y := x. */
ZEK_API void DCOPY(int n, const double *x, int incx, double *y, int incy) ZEK_SYMBOL("q13104");
/* x <-> y. */
ZEK_API void DSWAP(int n, double *x, int incx, double *y, int incy) ZEK_SYMBOL("q66759");

/* Euclidean norm of x through the scaled sum of squares, saturating at the safe maximum instead of
 * overflowing; N = 1 gives |x(1)|.  DNRM2 reads the constants at run time; the master and its stub
 * DNRM2_STUB use the fixed literals. */
ZEK_API double DNRM2(int n, const double *x, int incx) ZEK_SYMBOL("q72214");
ZEK_API double DNRM2_STUB(int n, const double *x, int incx) ZEK_SYMBOL("q25290");
ZEK_API double f06ejf_ENTRY(int selector, int n, const double *x, int incx) ZEK_SYMBOL("f06ejf_ENTRY");
/* Euclidean norm of a complex vector (N elements of 16 bytes); both parts of every element share one
 * scaled sum of squares.  DZNRM2 reads the constants at run time, the master uses the literals. */
ZEK_API double DZNRM2(int n, const double *x, int incx) ZEK_SYMBOL("q43742");
ZEK_API double f06jjf_ENTRY(int selector, int n, const double *x, int incx) ZEK_SYMBOL("f06jjf_ENTRY");

/* ---- Level 1: safe arithmetic and rotations ---------------------------------------------------- */

/* a/b without overflow.  *FAIL (logical) is set when b = 0 or the quotient exceeds the safe maximum
 * flmax; the result is then flmax with the quotient's sign (0 for a = 0).  A quotient below the safe
 * minimum times |b| with |b| >= 1 gives 0. */
ZEK_API double F06_SAFE_DIVIDE(double a, double b, int *fail) ZEK_SYMBOL("q36269");
/* The rotation (c, s) with s/c = t: c = 1, s = t when |t| < sqrt(eps); c = 1/|t|, s = sign(t) when
 * |t| >= 1/sqrt(eps); else c = 1/sqrt(1 + t*t), s = c*t. */
ZEK_API void F06_ROTATION_FROM_TANGENT(double t, double *c, double *s) ZEK_SYMBOL("q55387");
/* The rotation that annihilates b against a: a := c*a + s*b and b := the tangent t = b/a (capped).  b = 0
 * gives c = 1, s = 0.  The _FROZEN form uses the fixed literals. */
ZEK_API void F06_ROTATION_FROM_PAIR(double *a, double *b, double *c, double *s) ZEK_SYMBOL("q71366");
ZEK_API void F06_ROTATION_FROM_PAIR_FROZEN(double *a, double *b, double *c, double *s) ZEK_SYMBOL("q19617");
/* scale*sqrt(sumsq), or the safe maximum when that would exceed it. */
ZEK_API double F06_NORM_FROM_SUMSQ(double scale, double sumsq) ZEK_SYMBOL("q41756");
/* Folds x(1..N) into (*scale, *sumsq); exact zeros are skipped. */
ZEK_API void F06_SUMSQ_UPDATE(int n, const double *x, int incx, double *scale, double *sumsq) ZEK_SYMBOL("q53477");
/* The complex rotation that annihilates b against a (a, b, s complex, two doubles each; c real):
 * a := c*a + conj(s)*b, b := the tangent b/a.  A real a stays real. */
ZEK_API void F06_COMPLEX_ROTATION_FROM_PAIR(double *a, double *b, double *c, double *s) ZEK_SYMBOL("q57083");

/* Reduces the vector (alpha, x(1..N)) against a pivot by N rotations from F06_ROTATION_FROM_PAIR, stored
 * in c(1..N), s(1..N); x is left holding the tangents and *alpha the reduced pivot.  PIVOT 'V' (variable:
 * neighbouring elements) or 'F' (fixed: alpha); DIRECT 'F' forward or 'B' backward; other letters return.
 * The character form uses the fixed literals; the enumerated form takes PIVOT 1012 (variable) or 1013
 * (fixed), DIRECT 1014 (forward) or 1015 (backward), and reads the constants at run time. */
ZEK_API void F06_ROTATION_SEQUENCE(const char *pivot, const char *direct, int n, double *alpha, double *x, int incx,
                                   double *c, double *s, int pivot_len, int direct_len) ZEK_SYMBOL("q29465");
ZEK_API void F06_ROTATION_SEQUENCE_ENUM(int pivot, int direct, int n, double *alpha, double *x, int incx, double *c,
                                        double *s) ZEK_SYMBOL("q87841");

/* ---- Level 1: reflectors and vector utilities --------------------------------------------------- */

/* The reflector (zeta, z) that maps (alpha, x(1..N)) to (beta, 0): on exit *alpha = beta, x = z and
 * *zeta in [1, sqrt(2)], or *zeta = 0 (identity, x and alpha untouched) when x is negligible against
 * max(tol, eps*|alpha|).  The _SAFE form divides instead of multiplying by a reciprocal that would
 * overflow when beta is below the safe minimum. */
ZEK_API void F06_REFLECTOR_GEN(int n, double *alpha, double *x, int incx, double tol, double *zeta)
    ZEK_SYMBOL("q17864");
ZEK_API void F06_REFLECTOR_GEN_SAFE(int n, double *alpha, double *x, int incx, double tol, double *zeta)
    ZEK_SYMBOL("q58774");
/* Applies the reflector (zeta, z(1..N)) to (delta, y(1..N)); zeta = 0 does nothing. */
ZEK_API void F06_REFLECTOR_APPLY(int n, double *delta, double *y, int incy, double zeta, const double *z, int incz)
    ZEK_SYMBOL("q31915");
/* The number k (0..N) of leading elements of x each larger than tol times the largest modulus before
 * it (the first is compared with itself, so x(1) = 0 or tol >= 1 gives 0).  A negative tol means the
 * machine precision. */
ZEK_API int F06_LEADING_RANK(int n, const double *x, int incx, double tol) ZEK_SYMBOL("q48349");

/* x(i) := konst (integers). */
ZEK_API void F06_INT_LOAD(int n, int konst, int *x, int incx) ZEK_SYMBOL("q82696");
/* y := x (integers, two-vector addressing). */
ZEK_API void F06_INT_COPY(int n, const int *x, int incx, int *y, int incy) ZEK_SYMBOL("q50598");
/* x(i) := konst. */
ZEK_API void F06_VECTOR_LOAD(int n, double konst, double *x, int incx) ZEK_SYMBOL("q24007");
/* y(i) := x(i)*y(i); INCX = 0 with INCY != 0 scales y by x(1) as DSCAL with |INCY|. */
ZEK_API void F06_VECTOR_MULTIPLY(int n, const double *x, int incx, double *y, int incy) ZEK_SYMBOL("q83867");
/* y := alpha*x; alpha = 0 with INCY != 0 loads zeros with |INCY|.  Two names, one body. */
ZEK_API void F06_VECTOR_SCALED_COPY(int n, double alpha, const double *x, int incx, double *y, int incy)
    ZEK_SYMBOL("q46286");
ZEK_API void F06_VECTOR_SCALED_COPY_ALIAS(int n, double alpha, const double *x, int incx, double *y, int incy)
    ZEK_SYMBOL("q87812");
/* Complex y := alpha*x (alpha as two reals, x and y of 16-byte elements). */
ZEK_API void F06_COMPLEX_SCALED_COPY(int n, double alpha_re, double alpha_im, const double *x, int incx, double *y,
                                     int incy) ZEK_SYMBOL("q64509");
/* x := -x. */
ZEK_API void F06_VECTOR_NEGATE(int n, double *x, int incx) ZEK_SYMBOL("q47907");

/* ---- Levels 2 and 3: checked operations -----------------------------------------------------------
 *
 * Each operation equals the published one after the slash in its report name ("F06PAF/DGEMV ") in
 * argument order and meaning, with these rules:
 * - Arguments are checked in the published order and the first illegal one is reported by its
 *   parameter number (counting visible arguments, without the selector).  A leading dimension must be
 *   at least max(1, rows); an increment must not be 0; a real routine accepts 'C' as 'T'.
 * - The masters (f06xxf_ENTRY, and the _MASTER names) and the plain names report through the hard
 *   route: " ** On entry to F06PAF/DGEMV  parameter number  1 had an illegal value" and the process ends
 *   (exit(0)) whatever any IFAIL says.  The _COPY forms report on the stream channel (q49716) and
 *   return.  The enumerated forms (lower-case names) take codes in place of letters (1001-1003
 *   transpose, 1004/1005 upper/lower, 1006/1007 unit/non-unit, 1008/1009 left/right), report catalogue
 *   code 71 under their lower-case name ("f06pac/dgemv") and return.  A routine returns at once after a
 *   report, its outputs untouched.
 * - Quick returns come after the checks: an empty problem, or a zero multiplier with BETA = 1.
 * - BETA = 0 stores zeros in the output (NaN or Inf there does not propagate).
 */

/* y := alpha*op(A)*x + beta*y, A(LDA, N) m by n, x and y of lengths n and m (m and n for op = A').
 * Checked: 1 TRANS, 2 M, 3 N, 6 LDA, 8 INCX, 11 INCY. */
ZEK_API void f06paf_ENTRY(int selector, const char *trans, int m, int n, double alpha, const double *a, int lda,
                          const double *x, int incx, double beta, double *y, int incy, int trans_len)
    ZEK_SYMBOL("f06paf_ENTRY");
ZEK_API void F06PAF(const char *trans, int m, int n, double alpha, const double *a, int lda, const double *x, int incx,
                    double beta, double *y, int incy, int trans_len) ZEK_SYMBOL("q70721");
ZEK_API void F06PAF_COPY(const char *trans, int m, int n, double alpha, const double *a, int lda, const double *x,
                         int incx, double beta, double *y, int incy, int trans_len) ZEK_SYMBOL("q67003");
ZEK_API void f06pac(int trans, int m, int n, double alpha, const double *a, int lda, const double *x, int incx,
                    double beta, double *y, int incy) ZEK_SYMBOL("q73390");

/* y := alpha*A*x + beta*y, A symmetric of order n, the UPLO triangle of A(LDA, N) referenced.
 * Checked: 1 UPLO, 2 N, 5 LDA, 7 INCX, 10 INCY. */
ZEK_API void F06PCF_MASTER(int selector, const char *uplo, int n, double alpha, const double *a, int lda,
                           const double *x, int incx, double beta, double *y, int incy, int uplo_len)
    ZEK_SYMBOL("q82505");
ZEK_API void F06PCF(const char *uplo, int n, double alpha, const double *a, int lda, const double *x, int incx,
                    double beta, double *y, int incy, int uplo_len) ZEK_SYMBOL("q14138");

/* The same with A packed by columns in AP(n*(n+1)/2).  Checked: 1 UPLO, 2 N, 6 INCX, 9 INCY. */
ZEK_API void F06PEF_MASTER(int selector, const char *uplo, int n, double alpha, const double *ap, const double *x,
                           int incx, double beta, double *y, int incy, int uplo_len) ZEK_SYMBOL("q51082");
ZEK_API void F06PEF(const char *uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta,
                    double *y, int incy, int uplo_len) ZEK_SYMBOL("q63461");
ZEK_API void f06pef(int uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta, double *y,
                    int incy) ZEK_SYMBOL("q70620");

/* x := op(A)*x, A(LDA, N) triangular of order n (DIAG 'U': unit diagonal, not referenced).
 * Checked: 1 UPLO, 2 TRANS, 3 DIAG, 4 N, 6 LDA, 8 INCX. */
ZEK_API void f06pff_ENTRY(int selector, const char *uplo, const char *trans, const char *diag, int n, const double *a,
                          int lda, double *x, int incx, int uplo_len, int trans_len, int diag_len)
    ZEK_SYMBOL("f06pff_ENTRY");
ZEK_API void F06PFF(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
                    int incx, int uplo_len, int trans_len, int diag_len) ZEK_SYMBOL("q46784");
ZEK_API void f06pfc(int uplo, int trans, int diag, int n, const double *a, int lda, double *x, int incx)
    ZEK_SYMBOL("q28521");

/* x := op(A)*x, A packed in AP(n*(n+1)/2).  Checked: 1 UPLO, 2 TRANS, 3 DIAG, 4 N, 7 INCX. */
ZEK_API void F06PHF(const char *uplo, const char *trans, const char *diag, int n, const double *ap, double *x,
                    int incx, int uplo_len, int trans_len, int diag_len) ZEK_SYMBOL("q45060");
ZEK_API void f06phf(int uplo, int trans, int diag, int n, const double *ap, double *x, int incx) ZEK_SYMBOL("q17872");

/* x := inv(op(A))*x, A(LDA, N) triangular (no test for singularity).
 * Checked: 1 UPLO, 2 TRANS, 3 DIAG, 4 N, 6 LDA, 8 INCX. */
ZEK_API void f06pjf_ENTRY(int selector, const char *uplo, const char *trans, const char *diag, int n, const double *a,
                          int lda, double *x, int incx, int uplo_len, int trans_len, int diag_len)
    ZEK_SYMBOL("f06pjf_ENTRY");
ZEK_API void F06PJF(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
                    int incx, int uplo_len, int trans_len, int diag_len) ZEK_SYMBOL("q54301");
ZEK_API void F06PJF_COPY(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda,
                         double *x, int incx, int uplo_len, int trans_len, int diag_len) ZEK_SYMBOL("q53126");
ZEK_API void f06pjc(int uplo, int trans, int diag, int n, const double *a, int lda, double *x, int incx)
    ZEK_SYMBOL("q53320");

/* x := inv(op(A))*x, A packed.  Checked: 1 UPLO, 2 TRANS, 3 DIAG, 4 N, 7 INCX. */
ZEK_API void F06PLF(const char *uplo, const char *trans, const char *diag, int n, const double *ap, double *x,
                    int incx, int uplo_len, int trans_len, int diag_len) ZEK_SYMBOL("q54733");
ZEK_API void f06plf(int uplo, int trans, int diag, int n, const double *ap, double *x, int incx) ZEK_SYMBOL("q27271");

/* A := alpha*x*y' + A, A(LDA, N) m by n.  Checked: 1 M, 2 N, 5 INCX, 7 INCY, 9 LDA. */
ZEK_API void f06pmf_ENTRY(int selector, int m, int n, double alpha, const double *x, int incx, const double *y,
                          int incy, double *a, int lda) ZEK_SYMBOL("f06pmf_ENTRY");
ZEK_API void F06PMF(int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a,
                    int lda) ZEK_SYMBOL("q67651");
ZEK_API void F06PMF_COPY(int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a,
                         int lda) ZEK_SYMBOL("q35342");
ZEK_API void f06pmc(int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a,
                    int lda) ZEK_SYMBOL("q24064");

/* A := alpha*x*x' + A on the UPLO triangle of A(LDA, N).  Checked: 1 UPLO, 2 N, 5 INCX, 7 LDA. */
ZEK_API void F06PPF_MASTER(int selector, const char *uplo, int n, double alpha, const double *x, int incx, double *a,
                           int lda, int uplo_len) ZEK_SYMBOL("q98806");
ZEK_API void F06PPF(const char *uplo, int n, double alpha, const double *x, int incx, double *a, int lda,
                    int uplo_len) ZEK_SYMBOL("q93953");

/* The same on a packed triangle AP(n*(n+1)/2).  Checked: 1 UPLO, 2 N, 5 INCX. */
ZEK_API void F06PQF_MASTER(int selector, const char *uplo, int n, double alpha, const double *x, int incx, double *ap,
                           int uplo_len) ZEK_SYMBOL("q50537");
ZEK_API void F06PQF(const char *uplo, int n, double alpha, const double *x, int incx, double *ap, int uplo_len)
    ZEK_SYMBOL("q22180");
ZEK_API void F06PQF_COPY(const char *uplo, int n, double alpha, const double *x, int incx, double *ap, int uplo_len)
    ZEK_SYMBOL("q17482");

/* Complex y := alpha*op(A)*x + beta*y (op 'N', 'T' or 'C' conjugate transpose).
 * Checked: 1 TRANS, 2 M, 3 N, 6 LDA, 8 INCX, 11 INCY. */
ZEK_API void f06saf_ENTRY(int selector, const char *trans, int m, int n, double alpha_re, double alpha_im,
                          const double *a, int lda, const double *x, int incx, double beta_re, double beta_im,
                          double *y, int incy, int trans_len) ZEK_SYMBOL("f06saf_ENTRY");
ZEK_API void F06SAF(const char *trans, int m, int n, double alpha_re, double alpha_im, const double *a, int lda,
                    const double *x, int incx, double beta_re, double beta_im, double *y, int incy, int trans_len)
    ZEK_SYMBOL("q18966");

/* Complex x := op(A)*x, A triangular.  Checked: 1 UPLO, 2 TRANS, 3 DIAG, 4 N, 6 LDA, 8 INCX. */
ZEK_API void f06sff_ENTRY(int selector, const char *uplo, const char *trans, const char *diag, int n, const double *a,
                          int lda, double *x, int incx, int uplo_len, int trans_len, int diag_len)
    ZEK_SYMBOL("f06sff_ENTRY");
ZEK_API void F06SFF(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
                    int incx, int uplo_len, int trans_len, int diag_len) ZEK_SYMBOL("q27188");

/* Complex x := inv(op(A))*x.  Checked: 1 UPLO, 2 TRANS, 3 DIAG, 4 N, 6 LDA, 8 INCX. */
ZEK_API void f06sjf_ENTRY(int selector, const char *uplo, const char *trans, const char *diag, int n, const double *a,
                          int lda, double *x, int incx, int uplo_len, int trans_len, int diag_len)
    ZEK_SYMBOL("f06sjf_ENTRY");
ZEK_API void F06SJF(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
                    int incx, int uplo_len, int trans_len, int diag_len) ZEK_SYMBOL("q98830");

/* Complex A := alpha*x*y.' + A (F06SMF) and A := alpha*x*conj(y)' + A (F06SNF).
 * Checked: 1 M, 2 N, 5 INCX, 7 INCY, 9 LDA. */
ZEK_API void f06smf_ENTRY(int selector, int m, int n, double alpha_re, double alpha_im, const double *x, int incx,
                          const double *y, int incy, double *a, int lda) ZEK_SYMBOL("f06smf_ENTRY");
ZEK_API void F06SMF(int m, int n, double alpha_re, double alpha_im, const double *x, int incx, const double *y,
                    int incy, double *a, int lda) ZEK_SYMBOL("q19426");
ZEK_API void f06snf_ENTRY(int selector, int m, int n, double alpha_re, double alpha_im, const double *x, int incx,
                          const double *y, int incy, double *a, int lda) ZEK_SYMBOL("f06snf_ENTRY");
ZEK_API void F06SNF(int m, int n, double alpha_re, double alpha_im, const double *x, int incx, const double *y,
                    int incy, double *a, int lda) ZEK_SYMBOL("q44496");

/* C := alpha*op(A)*op(B) + beta*C, C(LDC, N) m by n, op(A) m by k, op(B) k by n.
 * Checked: 1 TRANSA, 2 TRANSB, 3 M, 4 N, 5 K, 8 LDA, 10 LDB, 13 LDC. */
ZEK_API void f06yaf_ENTRY(int selector, const char *transa, const char *transb, int m, int n, int k, double alpha,
                          const double *a, int lda, const double *b, int ldb, double beta, double *c, int ldc,
                          int transa_len, int transb_len) ZEK_SYMBOL("f06yaf_ENTRY");
ZEK_API void F06YAF(const char *transa, const char *transb, int m, int n, int k, double alpha, const double *a,
                    int lda, const double *b, int ldb, double beta, double *c, int ldc, int transa_len, int transb_len)
    ZEK_SYMBOL("q78636");

/* B := alpha*op(A)*B (SIDE 'L') or alpha*B*op(A) (SIDE 'R'), B(LDB, N) m by n, A triangular of order m or n.
 * Checked: 1 SIDE, 2 UPLO, 3 TRANSA, 4 DIAG, 5 M, 6 N, 9 LDA, 11 LDB. */
ZEK_API void F06YFF_MASTER(int selector, const char *side, const char *uplo, const char *transa, const char *diag,
                           int m, int n, double alpha, const double *a, int lda, double *b, int ldb, int side_len,
                           int uplo_len, int transa_len, int diag_len) ZEK_SYMBOL("q16429");
ZEK_API void F06YFF(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n,
                    double alpha, const double *a, int lda, double *b, int ldb, int side_len, int uplo_len,
                    int transa_len, int diag_len) ZEK_SYMBOL("q85362");

/* B := alpha*inv(op(A))*B (SIDE 'L') or alpha*B*inv(op(A)) (SIDE 'R') (no test for singularity).
 * Checked: 1 SIDE, 2 UPLO, 3 TRANSA, 4 DIAG, 5 M, 6 N, 9 LDA, 11 LDB. */
ZEK_API void f06yjf_ENTRY(int selector, const char *side, const char *uplo, const char *transa, const char *diag, int m,
                          int n, double alpha, const double *a, int lda, double *b, int ldb, int side_len,
                          int uplo_len, int transa_len, int diag_len) ZEK_SYMBOL("f06yjf_ENTRY");
ZEK_API void F06YJF(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n,
                    double alpha, const double *a, int lda, double *b, int ldb, int side_len, int uplo_len,
                    int transa_len, int diag_len) ZEK_SYMBOL("q86419");

/* C := alpha*A*A' + beta*C (TRANS 'N', A n by k) or alpha*A'*A + beta*C (A k by n) on the UPLO triangle
 * of C(LDC, N).  Checked: 1 UPLO, 2 TRANS, 3 N, 4 K, 7 LDA, 10 LDC. */
ZEK_API void F06YPF_MASTER(int selector, const char *uplo, const char *trans, int n, int k, double alpha,
                           const double *a, int lda, double beta, double *c, int ldc, int uplo_len, int trans_len)
    ZEK_SYMBOL("q52875");
ZEK_API void F06YPF(const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda,
                    double beta, double *c, int ldc, int uplo_len, int trans_len) ZEK_SYMBOL("q39867");
ZEK_API void F06YPF_COPY(const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda,
                         double beta, double *c, int ldc, int uplo_len, int trans_len) ZEK_SYMBOL("q75349");

/* Complex C := alpha*op(A)*op(B) + beta*C (op 'N', 'T' or 'C').
 * Checked: 1 TRANSA, 2 TRANSB, 3 M, 4 N, 5 K, 8 LDA, 10 LDB, 13 LDC. */
ZEK_API void f06zaf_ENTRY(int selector, const char *transa, const char *transb, int m, int n, int k, double alpha_re,
                          double alpha_im, const double *a, int lda, const double *b, int ldb, double beta_re,
                          double beta_im, double *c, int ldc, int transa_len, int transb_len)
    ZEK_SYMBOL("f06zaf_ENTRY");
ZEK_API void F06ZAF(const char *transa, const char *transb, int m, int n, int k, double alpha_re, double alpha_im,
                    const double *a, int lda, const double *b, int ldb, double beta_re, double beta_im, double *c,
                    int ldc, int transa_len, int transb_len) ZEK_SYMBOL("q59812");

/* Complex B := alpha*inv(op(A))*B or alpha*B*inv(op(A)).
 * Checked: 1 SIDE, 2 UPLO, 3 TRANSA, 4 DIAG, 5 M, 6 N, 9 LDA, 11 LDB. */
ZEK_API void f06zjf_ENTRY(int selector, const char *side, const char *uplo, const char *transa, const char *diag, int m,
                          int n, double alpha_re, double alpha_im, const double *a, int lda, double *b, int ldb,
                          int side_len, int uplo_len, int transa_len, int diag_len) ZEK_SYMBOL("f06zjf_ENTRY");
ZEK_API void F06ZJF(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n,
                    double alpha_re, double alpha_im, const double *a, int lda, double *b, int ldb, int side_len,
                    int uplo_len, int transa_len, int diag_len) ZEK_SYMBOL("q58987");

/* Hermitian C := alpha*A*A^H + beta*C (TRANS 'N') or alpha*A^H*A + beta*C (TRANS 'C'), real alpha and
 * beta, on the UPLO triangle; the diagonal of C is made real.  Checked: 1 UPLO, 2 TRANS, 3 N, 4 K, 7 LDA,
 * 10 LDC. */
ZEK_API void f06zpf_ENTRY(int selector, const char *uplo, const char *trans, int n, int k, double alpha,
                          const double *a, int lda, double beta, double *c, int ldc, int uplo_len, int trans_len)
    ZEK_SYMBOL("f06zpf_ENTRY");
ZEK_API void F06ZPF(const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda,
                    double beta, double *c, int ldc, int uplo_len, int trans_len) ZEK_SYMBOL("q82150");

/* ---- Matrix utilities (no reports: unknown letters do nothing, norms then give 0) ------------------ */

/* Copies a shape of A(LDA, N) to B(LDB, N): MATRIX 'G' all m by n, 'U' rows 1..min(m, j) of column j,
 * 'L' rows j..m of columns 1..min(m, n).  The enumerated form takes 1020 (general), 1021 (lower) or 1022
 * (upper). */
ZEK_API void F06_MATRIX_COPY(const char *matrix, int m, int n, const double *a, int lda, double *b, int ldb,
                             int matrix_len) ZEK_SYMBOL("q59512");
ZEK_API void F06_MATRIX_COPY_ENUM(int shape, int m, int n, const double *a, int lda, double *b, int ldb)
    ZEK_SYMBOL("q47365");

/* Interchanges, for i = 1..N, rows (SIDE 'L', in the first K columns of B(LDB, *)) or columns (SIDE 'R',
 * in the first K rows) i and trunc(PERM(i)) of B; PERM holds integers as reals.  'L','T' and 'R','N' run
 * i upwards, 'L','N' and 'R','T' downwards.  The enumerated form takes SIDE 1008/1009 and TRANS
 * 1001/1002. */
ZEK_API void F06_MATRIX_PERMUTE(const char *side, const char *trans, int n, const double *perm, int k, double *b,
                                int ldb, int side_len, int trans_len) ZEK_SYMBOL("q47343");
ZEK_API void F06_MATRIX_PERMUTE_ENUM(int side, int trans, int n, const double *perm, int k, double *b, int ldb)
    ZEK_SYMBOL("q40606");

/* Norms of A(LDA, N): NORM 'M' largest modulus, 'O' or '1' largest column sum, 'I' largest row sum
 * (WORK of m reals), 'F' or 'E' Frobenius.  Empty matrices give 0.  General m by n; the UPLO trapezoid
 * of an m by n matrix (DIAG 'U': unit diagonal); upper Hessenberg of order n.  The complex forms take
 * 16-byte elements and a real WORK. */
ZEK_API double F06_MATRIX_NORM_GENERAL(const char *norm, int m, int n, const double *a, int lda, double *work,
                                       int norm_len) ZEK_SYMBOL("q72894");
ZEK_API double F06_MATRIX_NORM_TRIANGULAR(const char *norm, const char *uplo, const char *diag, int m, int n,
                                          const double *a, int lda, double *work, int norm_len, int uplo_len,
                                          int diag_len) ZEK_SYMBOL("q90178");
ZEK_API double F06_MATRIX_NORM_HESSENBERG(const char *norm, int n, const double *a, int lda, double *work,
                                          int norm_len) ZEK_SYMBOL("q70472");
ZEK_API double F06_COMPLEX_MATRIX_NORM_GENERAL(const char *norm, int m, int n, const double *a, int lda, double *work,
                                               int norm_len) ZEK_SYMBOL("q35490");
ZEK_API double F06_COMPLEX_MATRIX_NORM_HESSENBERG(const char *norm, int n, const double *a, int lda, double *work,
                                                  int norm_len) ZEK_SYMBOL("q54445");

/* ---- The rotation family ---------------------------------------------------------------------------
 *
 * A(LDA, N) is upper triangular of order n; rotation k of a sequence is (C(k), S(k)) and belongs to index
 * k, K1 <= k <= K2-1.  From the left a rotation acts on two rows (x the upper), from the right on two
 * columns (x the left one), as x' = c*x + s*y, y' = c*y - s*x.  The routines return at once when
 * min(N, K1) < 1, K2 <= K1 or K2 > N; invalid letters return silently; an exact identity rotation
 * (c = 1, s = 0) is skipped.  The character forms marked "fixed" generate rotations with the library's
 * fixed constants, the others read the machine constants at run time; the enumerated forms take SIDE
 * 1008 (left) or 1009 (right).
 */

/* Entry: A triangular except the subdiagonal elements (k+1, k), held in S(k).  Exit: A triangular, C, S
 * the rotations that did it: SIDE 'L' rotates rows (k, k+1) for k = K1..K2-1, 'R' columns (k, k+1) for
 * k = K2-1..K1.  Character form fixed. */
ZEK_API void F06_HESSENBERG_TO_TRIANGLE(const char *side, int n, int k1, int k2, double *c, double *s, double *a,
                                        int lda, int side_len) ZEK_SYMBOL("q44363");
ZEK_API void F06_HESSENBERG_TO_TRIANGLE_ENUM(int side, int n, int k1, int k2, double *c, double *s, double *a, int lda)
    ZEK_SYMBOL("q10670");
/* Entry: A triangular with a spike: SIDE 'L' row K2 in columns K1..K2-1 held in S(K1..K2-1); 'R' column
 * K1 in rows K1+1..K2 held in S(K1..K2-1).  Exit: A triangular, C, S the rotations: 'L' rows (k, K2) for
 * k = K1..K2-1, 'R' columns (K1, k+1) for k = K2-1..K1.  Character form fixed. */
ZEK_API void F06_SPIKE_TO_TRIANGLE(const char *side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                                   int side_len) ZEK_SYMBOL("q17936");
ZEK_API void F06_SPIKE_TO_TRIANGLE_ENUM(int side, int n, int k1, int k2, double *c, double *s, double *a, int lda)
    ZEK_SYMBOL("q94405");
/* Applies the given rotations of planes (k, k+1) to one side of A (SIDE 'L': rows, k = K1..K2-1; 'R':
 * columns, k = K2-1..K1) and replaces them by the rotations on the other side that keep A triangular.
 * The first form fixed, the second run-time. */
ZEK_API void F06_CHASE_TRIANGLE_ROTATIONS(const char *side, int n, int k1, int k2, double *c, double *s, double *a,
                                          int lda, int side_len) ZEK_SYMBOL("q47086");
ZEK_API void F06_CHASE_TRIANGLE_ROTATIONS_RUNTIME(const char *side, int n, int k1, int k2, double *c, double *s,
                                                  double *a, int lda, int side_len) ZEK_SYMBOL("q34210");
/* A triangle anchored on the anti-diagonal (column j holds rows N-j+1..N); rotation j acts on columns
 * (j, j+1).  WHICH 'C' applies the given rotations (j = K1..K2-1) and leaves the fill of row N-j in S(j);
 * 'R' removes that fill by new rotations (j = K2-1..K1). */
ZEK_API void F06_REVERSE_TRIANGLE_ROTATE(const char *which, int n, int k1, int k2, double *c, double *s, double *a,
                                         int lda, int which_len) ZEK_SYMBOL("q18967");
/* Folds the row alpha*x' (x of N elements) into the triangle, keeping R'R + alpha**2 x x'; rotation j
 * (row j against the new row) is left in C(j), S(j).  Nothing for N < 1 or alpha = 0. */
ZEK_API void F06_TRIANGLE_ADD_ROW(int n, double alpha, const double *x, int incx, double *a, int lda, double *c,
                                  double *s) ZEK_SYMBOL("q45929");
/* Applies rotations K1..K2-1 to the m by n matrix A(LDA, N) from the left (SIDE 'L') or the right ('R'):
 * PIVOT 'V' planes (k, k+1), 'T' (K1, k+1), 'B' (k, K2); DIRECT 'F' k upwards, 'B' downwards.  Returns at
 * once when min(M, N, K1) < 1, K2 <= K1, or K2 exceeds M ('L') or N ('R').  The enumerated form takes
 * PIVOT 1010 (bottom), 1011 (top) or 1012 (variable) and DIRECT 1014/1015. */
ZEK_API void F06_ROTATION_APPLY_GENERAL(const char *side, const char *pivot, const char *direct, int m, int n, int k1,
                                        int k2, const double *c, const double *s, double *a, int lda, int side_len,
                                        int pivot_len, int direct_len) ZEK_SYMBOL("q50955");
ZEK_API void F06_ROTATION_APPLY_GENERAL_ENUM(int side, int pivot, int direct, int m, int n, int k1, int k2,
                                             const double *c, const double *s, double *a, int lda)
    ZEK_SYMBOL("q29636");

ZEK_END_DECLS

#endif
