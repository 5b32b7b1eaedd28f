/* Chapter F08: orthogonal factorisations (the QR routines) and the eigenproblem reductions (their own
 * section below).
 *
 * Each routine is the published operation after the slash of its report name, in its argument order
 * and meaning: Householder reflectors H(i) = I - tau*v*v' with v(1) = 1 stored below the diagonal and
 * TAU(i) beside them (not the zeta form of F01).  Arguments by reference, character options on their
 * first letter with hidden lengths last.  An illegal argument sets INFO = -(its position) and is
 * reported through the silent hook q23865 only: INFO is the whole report.
 *
 * The export symbols of the four QR routines are the library's own choice.
 */
#ifndef ZEK2_F08_H
#define ZEK2_F08_H

#include "types.h"

ZEK_BEGIN_DECLS

/* "F08AEZ/DGEQR2": A = Q*R of the M by N matrix A (LDA >= max(1,M)), unblocked; R over the upper
 * triangle, the reflectors below it, TAU(min(M,N)); WORK(N). */
ZEK_API void F08AEZ(const int *m, const int *n, double *a, const int *lda, double *tau, double *work, int *info)
    ZEK_SYMBOL("F08AEZ");

/* "F08AGF/DORMQR": C := Q*C, Q'*C (SIDE 'L'), C*Q or C*Q' (SIDE 'R') for the M by N matrix C
 * (LDC >= max(1,M)), Q = H(1)...H(K) as returned by F08AEZ in A (LDA >= max(1, M or N)); TRANS 'N' or
 * 'T'.  Blocked (block reflectors formed columnwise, forward) when the block size of F08AGF in the
 * store of F07_BLOCK_SIZE is above 1 and LWORK allows; WORK(LWORK), LWORK >= max(1, N or M), and
 * LWORK = -1 asks only for the best LWORK, returned in WORK(1).  A is restored on return. */
ZEK_API void F08AGF(const char *side, const char *trans, const int *m, const int *n, const int *k, double *a,
                    const int *lda, const double *tau, double *c, const int *ldc, double *work, const int *lwork,
                    int *info, int side_len, int trans_len) ZEK_SYMBOL("F08AGF");

/* "F08AGZ/DORM2R": the unblocked form of F08AGF; WORK(N) for SIDE 'L', WORK(M) for 'R'. */
ZEK_API void F08AGZ(const char *side, const char *trans, const int *m, const int *n, const int *k, double *a,
                    const int *lda, const double *tau, double *c, const int *ldc, double *work, int *info,
                    int side_len, int trans_len) ZEK_SYMBOL("F08AGZ");

/* "F08BEF/DGEQPF": A*P = Q*R with column pivoting.  JPVT(N): on entry a nonzero JPVT(i) moves column i
 * to the front (and keeps it there); on exit JPVT(i) = k when column i of A*P was column k of A.
 * TAU(min(M,N)); WORK(3*N). */
ZEK_API void F08BEF(const int *m, const int *n, double *a, const int *lda, int *jpvt, double *tau, double *work,
                    int *info) ZEK_SYMBOL("F08BEF");

/* ---- Eigenproblem reductions ---------------------------------------------------------------------
 *
 * Each of these is a master with a leading selector (f08xxf_ENTRY, exported under its own name) and
 * the exported stub that passes 0; the selector changes nothing.  Arguments and results are those of
 * the published routine after the slash; complex arrays are pairs of doubles.  INFO = -(position of the
 * first bad argument), reported through the silent hook only.  The iterations allow 30 sweeps per row
 * of the active block; INFO = i > 0 reports that limit, with the eigenvalues i+1..IHI found. */

/* "F08PEF/DHSEQR": eigenvalues (JOB 'E') or the real Schur form T (JOB 'S', standard 2 by 2 blocks
 * for complex pairs, the pair with positive imaginary part first) of the Hessenberg H, rows and
 * columns ILO..IHI active; COMPZ 'N' no Schur vectors, 'I' Z = the Schur vectors, 'V' Z := Z*(them).
 * WORK(max(1,N)), LWORK >= max(1,N) or -1 for the size query. */
ZEK_API void F08PEF(const char *job, const char *compz, const int *n, const int *ilo, const int *ihi, double *h,
                    const int *ldh, double *wr, double *wi, double *z, const int *ldz, double *work, const int *lwork,
                    int *info, int job_len, int compz_len) ZEK_SYMBOL("q90698");
ZEK_API void f08pef_ENTRY(int selector, const char *job, const char *compz, const int *n, const int *ilo,
                          const int *ihi, double *h, const int *ldh, double *wr, double *wi, double *z, const int *ldz,
                          double *work, const int *lwork, int *info, int job_len, int compz_len)
    ZEK_SYMBOL("f08pef_ENTRY");

/* "F08PSF/ZHSEQR": F08PEF for a complex H (T upper triangular), eigenvalues in W. */
ZEK_API void F08PSF(const char *job, const char *compz, const int *n, const int *ilo, const int *ihi, double *h,
                    const int *ldh, double *w, double *z, const int *ldz, double *work, const int *lwork, int *info,
                    int job_len, int compz_len) ZEK_SYMBOL("q74006");
ZEK_API void f08psf_ENTRY(int selector, const char *job, const char *compz, const int *n, const int *ilo,
                          const int *ihi, double *h, const int *ldh, double *w, double *z, const int *ldz, double *work,
                          const int *lwork, int *info, int job_len, int compz_len) ZEK_SYMBOL("f08psf_ENTRY");

/* The inner iterations behind them (published form of the small-matrix QR iteration): WANTT, WANTZ
 * logical words; Z rows ILOZ..IHIZ updated. */
ZEK_API void F08PEZ(const int *wantt, const int *wantz, const int *n, const int *ilo, const int *ihi, double *h,
                    const int *ldh, double *wr, double *wi, const int *iloz, const int *ihiz, double *z,
                    const int *ldz, int *info) ZEK_SYMBOL("q46216");
ZEK_API void F08PSZ(const int *wantt, const int *wantz, const int *n, const int *ilo, const int *ihi, double *h,
                    const int *ldh, double *w, const int *iloz, const int *ihiz, double *z, const int *ldz, int *info)
    ZEK_SYMBOL("q46057");

/* "F08QTF/ZTREXC": moves the diagonal element IFST of the complex Schur form T to position ILST by
 * unitary similarity; COMPQ 'V' updates Q := Q*(the transformation), 'N' leaves Q alone. */
ZEK_API void F08QTF(const char *compq, const int *n, double *t, const int *ldt, double *q, const int *ldq,
                    const int *ifst, const int *ilst, int *info, int compq_len) ZEK_SYMBOL("q55955");
ZEK_API void f08qtf_ENTRY(int selector, const char *compq, const int *n, double *t, const int *ldt, double *q,
                          const int *ldq, const int *ifst, const int *ilst, int *info, int compq_len)
    ZEK_SYMBOL("f08qtf_ENTRY");

/* "F08QFF/DTREXC": moves the diagonal block (1 by 1 or 2 by 2) of the real Schur form T starting at
 * row IFST to row ILST by orthogonal similarity, 2 by 2 blocks kept in standard form; COMPQ 'V' updates
 * Q := Q*(the transformation).  IFST and ILST are returned pointing at the first row of their blocks.
 * INFO = 1: a swap would have been unstable (the block stops at ILST on return), or T holds a NaN or an
 * infinity (T unchanged).  WORK(N) is accepted and not needed. */
ZEK_API void F08QFF(const char *compq, const int *n, double *t, const int *ldt, double *q, const int *ldq, int *ifst,
                    int *ilst, double *work, int *info, int compq_len) ZEK_SYMBOL("q29690");
ZEK_API void f08qff_ENTRY(int selector, const char *compq, const int *n, double *t, const int *ldt, double *q,
                          const int *ldq, int *ifst, int *ilst, double *work, int *info, int compq_len)
    ZEK_SYMBOL("f08qff_ENTRY");
/* The block swap behind it: blocks of orders N1, N2 (1 or 2) at row J1 exchanged; WANTQ a logical word;
 * INFO = 1 if the swap fails the stability test (T, Q unchanged).  WORK(N) is not needed. */
ZEK_API void F08QFZ(const int *wantq, const int *n, double *t, const int *ldt, double *q, const int *ldq,
                    const int *j1, const int *n1, const int *n2, double *work, int *info) ZEK_SYMBOL("q16268");

/* "F08JJF/DSTEBZ": eigenvalues of the symmetric tridiagonal matrix (D(N), E(N-1)) by bisection; RANGE
 * 'A' all, 'V' those in (VL, VU], 'I' the IL-th to IU-th smallest; ORDER 'B' by split block (ascending
 * in each), 'E' ascending overall.  VL, VU and ABSTOL travel by value.  M values in W with their block
 * numbers in IBLOCK; NSPLIT blocks ending at rows ISPLIT.  ABSTOL <= 0 means the precision times the
 * Gershgorin bound.  WORK(4N) and IWORK(3N) are accepted and not needed.  INFO = 4: D or E holds a NaN
 * or an infinity (M = 0). */
ZEK_API void F08JJF(const char *range, const char *order, const int *n, double vl, double vu, const int *il,
                    const int *iu, double abstol, const double *d, const double *e, int *m, int *nsplit, double *w,
                    int *iblock, int *isplit, double *work, int *iwork, int *info, int range_len, int order_len)
    ZEK_SYMBOL("q45541");
ZEK_API void f08jjf_ENTRY(int selector, const char *range, const char *order, const int *n, double vl, double vu,
                          const int *il, const int *iu, double abstol, const double *d, const double *e, int *m,
                          int *nsplit, double *w, int *iblock, int *isplit, double *work, int *iwork, int *info,
                          int range_len, int order_len) ZEK_SYMBOL("f08jjf_ENTRY");

/* "F08QKF/DTREVC": right (SIDE 'R'), left ('L') or both ('B') eigenvectors of the upper quasi-triangular
 * T in Schur form (standard 2 by 2 blocks).  HOWMNY 'A': all, in VL/VR column by column; 'B': all,
 * back-transformed by the matrix that VL/VR hold on entry (Q of the Schur factorisation); 'S': those
 * SELECT chooses, in consecutive columns; for a pair either SELECT entry chooses it and on return the
 * first is set and the second cleared.  A pair takes two columns, the real and imaginary parts of the
 * vector of the eigenvalue with positive imaginary part; left vectors u satisfy u^H T = lambda u^H.
 * Each vector is scaled so that its largest component has |re| + |im| = 1.  M (<= MM) columns are
 * used.  WORK(3N) is accepted and not needed. */
ZEK_API void F08QKF(const char *side, const char *howmny, int *select, const int *n, const double *t, const int *ldt,
                    double *vl, const int *ldvl, double *vr, const int *ldvr, const int *mm, int *m, double *work,
                    int *info, int side_len, int howmny_len) ZEK_SYMBOL("q66569");
ZEK_API void f08qkf_ENTRY(int selector, const char *side, const char *howmny, int *select, const int *n,
                          const double *t, const int *ldt, double *vl, const int *ldvl, double *vr, const int *ldvr,
                          const int *mm, int *m, double *work, int *info, int side_len, int howmny_len)
    ZEK_SYMBOL("f08qkf_ENTRY");

/* "F08QLF/DTRSNA": reciprocal condition numbers of eigenvalues (JOB 'E', into S), of eigenvectors
 * (JOB 'V', into SEP) or both ('B') of the upper quasi-triangular T in Schur form (standard 2 by 2
 * blocks).  HOWMNY 'A': all; 'S': those SELECT chooses, a pair chosen by either of its entries (SELECT is
 * not changed); M (<= MM) places of S and SEP are used, both places of a pair holding its values.  VL,
 * VR hold the left and right eigenvectors in the layout F08QKF gives (read for JOB 'E', 'B').
 * S = |y^H x| / (|x| |y|); SEP estimates the separation of the eigenvalue from the rest of T, the
 * smallest singular value of T22 - lambda*I after the eigenvalue is moved to the top (for a pair, of
 * the complex triangular form of the rest), by the 1-norm estimator; SEP = 0 when the move fails or
 * the solves underflow.  WORK(LDWORK, N+6) for JOB 'V' or 'B' (LDWORK >= N): the moved copy and three
 * complex vectors.  IWORK(2(N-1)) is accepted and not needed. */
ZEK_API void F08QLF(const char *job, const char *howmny, const int *select, const int *n, const double *t,
                    const int *ldt, const double *vl, const int *ldvl, const double *vr, const int *ldvr, double *s,
                    double *sep, const int *mm, int *m, double *work, const int *ldwork, int *iwork, int *info,
                    int job_len, int howmny_len) ZEK_SYMBOL("q24426");
ZEK_API void f08qlf_ENTRY(int selector, const char *job, const char *howmny, const int *select, const int *n,
                          const double *t, const int *ldt, const double *vl, const int *ldvl, const double *vr,
                          const int *ldvr, double *s, double *sep, const int *mm, int *m, double *work,
                          const int *ldwork, int *iwork, int *info, int job_len, int howmny_len)
    ZEK_SYMBOL("f08qlf_ENTRY");

/* "F08QYF/ZTRSNA": F08QLF for the complex upper triangular T; complex VL, VR (the layout of the
 * complex eigenvector routine: one column per eigenvalue), complex WORK(LDWORK, N+1), RWORK(N)
 * accepted and not needed.  S and SEP are real. */
ZEK_API void F08QYF(const char *job, const char *howmny, const int *select, const int *n, const double *t,
                    const int *ldt, const double *vl, const int *ldvl, const double *vr, const int *ldvr, double *s,
                    double *sep, const int *mm, int *m, double *work, const int *ldwork, double *rwork, int *info,
                    int job_len, int howmny_len) ZEK_SYMBOL("q47142");
ZEK_API void f08qyf_ENTRY(int selector, const char *job, const char *howmny, const int *select, const int *n,
                          const double *t, const int *ldt, const double *vl, const int *ldvl, const double *vr,
                          const int *ldvr, double *s, double *sep, const int *mm, int *m, double *work,
                          const int *ldwork, double *rwork, int *info, int job_len, int howmny_len)
    ZEK_SYMBOL("f08qyf_ENTRY");

/* The complex eigenvector helper behind the complex eigenvector routine: the right (LEFT = 0) or left
 * (LEFT nonzero; u^H T = lambda u^H) eigenvector of the eigenvalue T(K,K) of the complex upper
 * triangular T, into X(N) (complex; zero outside rows 1..K, respectively K..N), by substitution with
 * pivots raised to max(eps |T(K,K)|, tiny/eps) and scaling against overflow; normalised so that its
 * largest component has |re| + |im| = 1.  Nothing is done for N < 1, K outside 1..N or LDT < N. */
ZEK_API void F08QXZ(const int *left, const int *n, const double *t, const int *ldt, const int *k, double *x)
    ZEK_SYMBOL("q69383");

ZEK_END_DECLS

#endif
