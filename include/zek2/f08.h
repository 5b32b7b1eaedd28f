/* Chapter F08: orthogonal factorisations (this header: the QR routines; the eigenproblem reductions
 * follow in their own section).
 *
 * Each routine is the published operation after the slash of its report name, in its argument order
 * and meaning: Householder reflectors H(i) = I - tau*v*v' with v(1) = 1 stored below the diagonal and
 * TAU(i) beside them (not the zeta form of F01).  Arguments by reference, character options on their
 * first letter with hidden lengths last.  An illegal argument sets INFO = -(its position) and is
 * reported through the silent hook q23865 only: INFO is the whole report.
 *
 * The export symbols of these four routines are the library's own choice.
 */
#ifndef ZEK2_F08_H
#define ZEK2_F08_H

#include "types.h"

ZEK_BEGIN_DECLS

/* "F08AEZ/DGEQR2": A = Q*R of the M by N matrix A (LDA >= max(1,M)), unblocked; R over the upper
 * triangle, the reflectors below it, TAU(min(M,N)); WORK(N). */
ZEK_API void F08AEZ(const int *m, const int *n, double *a, const int *lda, double *tau, double *work, int *info)
    ZEK_SYMBOL("q30801");

/* "F08AGF/DORMQR": C := Q*C, Q'*C (SIDE 'L'), C*Q or C*Q' (SIDE 'R') for the M by N matrix C
 * (LDC >= max(1,M)), Q = H(1)...H(K) as returned by F08AEZ in A (LDA >= max(1, M or N)); TRANS 'N' or
 * 'T'.  Blocked (block reflectors formed columnwise, forward) when the block size of F08AGF in the
 * store of F07_BLOCK_SIZE is above 1 and LWORK allows; WORK(LWORK), LWORK >= max(1, N or M), and
 * LWORK = -1 asks only for the best LWORK, returned in WORK(1).  A is restored on return. */
ZEK_API void F08AGF(const char *side, const char *trans, const int *m, const int *n, const int *k, double *a,
                    const int *lda, const double *tau, double *c, const int *ldc, double *work, const int *lwork,
                    int *info, int side_len, int trans_len) ZEK_SYMBOL("q30802");

/* "F08AGZ/DORM2R": the unblocked form of F08AGF; WORK(N) for SIDE 'L', WORK(M) for 'R'. */
ZEK_API void F08AGZ(const char *side, const char *trans, const int *m, const int *n, const int *k, double *a,
                    const int *lda, const double *tau, double *c, const int *ldc, double *work, int *info,
                    int side_len, int trans_len) ZEK_SYMBOL("q30803");

/* "F08BEF/DGEQPF": A*P = Q*R with column pivoting.  JPVT(N): on entry a nonzero JPVT(i) moves column i
 * to the front (and keeps it there); on exit JPVT(i) = k when column i of A*P was column k of A.
 * TAU(min(M,N)); WORK(3*N). */
ZEK_API void F08BEF(const int *m, const int *n, double *a, const int *lda, int *jpvt, double *tau, double *work,
                    int *info) ZEK_SYMBOL("q30804");

ZEK_END_DECLS

#endif
