/* Chapter F11: sparse linear systems.
 *
 * Coordinate storage (CS): three parallel arrays A, IROW, ICOL with NNZ entries in use, ordered by
 * increasing row and within a row by increasing column, each location at most once.  Symmetric
 * coordinate storage (SCS) holds the lower triangle only (ICOL(k) <= IROW(k)); a Hermitian diagonal
 * has a zero imaginary part.  ISTR(1..N+1): ISTR(i) is the index of the first entry of row i,
 * ISTR(N+1) one past the last; IDIAG(i) the index of the diagonal entry of row i.  Complex values are
 * pairs (re, im): A(k) is a[2k-2], a[2k-1].
 *
 * Incomplete factorisations keep entries 1..NNZ as they were and append the factors at
 * NNZ+1..NNZ+NNZC in CS (LU) or SCS (Cholesky) order, ISTR and IDIAG pointing into that region.
 * LU: P*A*Q ~ L*D*U, row i of the region holding L strictly below the diagonal, then 1/d(i), then U;
 * IPIVP(i), IPIVQ(i) are the input row and column at position i.  Cholesky: P*A*P' ~ L*D*L' (L*D*L^H),
 * strictly lower entries of L and 1/d(i) at the diagonal; IPIV(i) the input index at position i.
 *
 * Every public routine is a two-level front: it calls its worker (exported too: input scalars by
 * value, then ERRBUF(200) and IFAIL, hidden character lengths, and the ERRBUF length 200 last).
 * Option letters are decided on their first character, in either case.
 *
 * Decisions of this implementation:
 * - A sort that fails on a zero entry (IFAIL 4) has already merged duplicates; NNZ then holds the merged
 *   count.  A sort that fails on a duplicate (IFAIL 3) leaves NNZ unchanged.
 * - IWORK of the incomplete LU (LIWORK >= 7N+2): row starts of the input (N+1), pivot order, place of
 *   the current row, row-count list links (2N), column chain heads and row counts; ISTR holds the row
 *   starts of the factors and IDIAG the count-list heads while the elimination runs.
 * - IWORK of the incomplete Cholesky (LIWORK >= 7N+1+LA-NNZ, plus LA-2NNZ levels when LFILL >= 0):
 *   chain heads (2N), counts, count-list links and heads (3N+1), neighbour marks, then the row links
 *   of the entries and the levels of the fill.
 * - The modified complex Cholesky adds the real part of a dropped fill to the two diagonals, so that
 *   they stay real.
 * - TRANS of the complex products and solves is 'N' or 'T' (plain transpose, no conjugate).
 */
#ifndef ZEK2_F11_H
#define ZEK2_F11_H

#include "types.h"

ZEK_BEGIN_DECLS

/* ---- Sort and compress ---- */

/* F11ZAF: sorts the CS list (A, IROW, ICOL)(1..NNZ) into row-major order, merges duplicates by DUP
 * ('R' keep the first in input order, 'S' sum, 'F' fail) and treats zero values by ZERO ('R' remove,
 * 'K' keep, 'F' fail); NNZ is updated, ISTR(N+1) receives the row starts, IWORK(N) is workspace.
 * IFAIL 1 N < 1, NNZ < 0, bad DUP or ZERO; 2 an index out of range; 3 a duplicate (DUP 'F');
 * 4 a zero (ZERO 'F'). */
ZEK_API void F11ZAF(const int *n, int *nnz, double a[], int irow[], int icol[], const char *dup,
                    const char *zero, int istr[], int iwork[], int *ifail, int dup_len, int zero_len)
    ZEK_SYMBOL("q17326");
ZEK_API void F11ZAF_WORKER(int n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero,
                           int istr[], int iwork[], char *errbuf, int *ifail, int dup_len, int zero_len,
                           int errbuf_len) ZEK_SYMBOL("q53968");
/* F11ZNF: F11ZAF with complex values (a zero has both parts zero). */
ZEK_API void F11ZNF(const int *n, int *nnz, double a[], int irow[], int icol[], const char *dup,
                    const char *zero, int istr[], int iwork[], int *ifail, int dup_len, int zero_len)
    ZEK_SYMBOL("q48706");
ZEK_API void F11ZNF_WORKER(int n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero,
                           int istr[], int iwork[], char *errbuf, int *ifail, int dup_len, int zero_len,
                           int errbuf_len) ZEK_SYMBOL("q27693");
/* F11ZBF: the SCS sort (ICOL(k) in 1..IROW(k)), DUP 'R' or 'S', ZERO 'R' or 'K'.  Worker form only. */
ZEK_API void F11ZBF(int n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero,
                    int istr[], int iwork[], char *errbuf, int *ifail, int dup_len, int zero_len,
                    int errbuf_len) ZEK_SYMBOL("q70516");
/* F11ZPF: F11ZBF with complex values, as a front and worker. */
ZEK_API void F11ZPF(const int *n, int *nnz, double a[], int irow[], int icol[], const char *dup,
                    const char *zero, int istr[], int iwork[], int *ifail, int dup_len, int zero_len)
    ZEK_SYMBOL("q65821");
ZEK_API void F11ZPF_WORKER(int n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero,
                           int istr[], int iwork[], char *errbuf, int *ifail, int dup_len, int zero_len,
                           int errbuf_len) ZEK_SYMBOL("q72283");

/* ---- Incomplete LU ---- */

/* F11DAF: incomplete LU of the CS matrix A(1..NNZ), level of fill LFILL >= 0, or drop tolerance DTOL
 * when LFILL < 0 (fill below DTOL*max|A| is dropped); PSTRAT 'N' none, 'U' the caller's IPIVP/IPIVQ,
 * 'P' partial (columns chosen), 'C' complete (rows by a Markowitz count); MILU 'M' adds the dropped fill
 * of a row to its pivot.  A pivot not above eps*max(max|A|,10) makes the row be redone with all its fill;
 * if that fails too the pivot is replaced (NPIVM counts replacements, -1: none replaced but some row
 * redone).  LA >= 2*NNZ, LIWORK >= 7*N+2.  IFAIL 1 arguments, 2 structure, 3 bad IPIVP/IPIVQ,
 * 4 LA too small for the fill, 5 internal. */
ZEK_API void F11DAF(const int *n, const int *nnz, double a[], const int *la, int irow[], int icol[],
                    const int *lfill, const double *dtol, const char *pstrat, const char *milu, int ipivp[],
                    int ipivq[], int istr[], int idiag[], int *nnzc, int *npivm, int iwork[], const int *liwork,
                    int *ifail, int pstrat_len, int milu_len) ZEK_SYMBOL("q10000");
ZEK_API void F11DAF_WORKER(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                           const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[],
                           int idiag[], int *nnzc, int *npivm, int iwork[], int liwork, char *errbuf, int *ifail,
                           int pstrat_len, int milu_len, int errbuf_len) ZEK_SYMBOL("q47985");
/* F11DNF: F11DAF with complex values (moduli in every threshold). */
ZEK_API void F11DNF(const int *n, const int *nnz, double a[], const int *la, int irow[], int icol[],
                    const int *lfill, const double *dtol, const char *pstrat, const char *milu, int ipivp[],
                    int ipivq[], int istr[], int idiag[], int *nnzc, int *npivm, int iwork[], const int *liwork,
                    int *ifail, int pstrat_len, int milu_len) ZEK_SYMBOL("q81202");
ZEK_API void F11DNF_WORKER(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                           const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[],
                           int idiag[], int *nnzc, int *npivm, int iwork[], int liwork, char *errbuf, int *ifail,
                           int pstrat_len, int milu_len, int errbuf_len) ZEK_SYMBOL("q85211");
/* The elimination behind F11DAF / F11DNF, without argument checks.  STATUS 0 done, 1 LA too small,
 * 3 the final sort failed, 4 a zero pivot in the factors. */
ZEK_API void F11_ILU_CORE(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                          const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[], int idiag[],
                          int *nnzc, int *npivm, int iwork[], int liwork, int *status, int pstrat_len,
                          int milu_len) ZEK_SYMBOL("q63757");
ZEK_API void F11_ILU_CORE_COMPLEX(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill,
                                  double dtol, const char *pstrat, const char *milu, int ipivp[], int ipivq[],
                                  int istr[], int idiag[], int *nnzc, int *npivm, int iwork[], int liwork,
                                  int *status, int pstrat_len, int milu_len) ZEK_SYMBOL("q77611");

/* ---- Incomplete Cholesky ---- */

/* F11JAF: incomplete Cholesky of the SCS matrix A(1..NNZ): the diagonal multiplied by DSCALE, missing
 * diagonals taken as 0; PSTRAT 'N' natural, 'U' the caller's IPIV, 'M' Markowitz; MIC 'M' adds dropped
 * fill to the diagonals.  A pivot with 0.01*(sum of |off-diagonals|) >= d is replaced by that sum (1 when
 * it is 0), counted in NPIVM.  LA >= 2*NNZ; LIWORK >= 7N+1+LA-NNZ (LFILL < 0), 7N+1+2LA-3NNZ otherwise.
 * IFAIL 1 arguments, 2 structure, 3 bad IPIV, 4 LA too small for the fill, 5 internal. */
ZEK_API void F11JAF(const int *n, const int *nnz, double a[], const int *la, int irow[], int icol[],
                    const int *lfill, const double *dtol, const char *mic, const double *dscale, const char *pstrat,
                    int ipiv[], int istr[], int *nnzc, int *npivm, int iwork[], const int *liwork, int *ifail,
                    int mic_len, int pstrat_len) ZEK_SYMBOL("q96313");
ZEK_API void F11JAF_WORKER(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                           const char *mic, double dscale, const char *pstrat, int ipiv[], int istr[], int *nnzc,
                           int *npivm, int iwork[], int liwork, char *errbuf, int *ifail, int mic_len,
                           int pstrat_len, int errbuf_len) ZEK_SYMBOL("q31601");
/* F11JNF: F11JAF for a complex Hermitian matrix. */
ZEK_API void F11JNF(const int *n, const int *nnz, double a[], const int *la, int irow[], int icol[],
                    const int *lfill, const double *dtol, const char *mic, const double *dscale, const char *pstrat,
                    int ipiv[], int istr[], int *nnzc, int *npivm, int iwork[], const int *liwork, int *ifail,
                    int mic_len, int pstrat_len) ZEK_SYMBOL("q78299");
ZEK_API void F11JNF_WORKER(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                           const char *mic, double dscale, const char *pstrat, int ipiv[], int istr[], int *nnzc,
                           int *npivm, int iwork[], int liwork, char *errbuf, int *ifail, int mic_len,
                           int pstrat_len, int errbuf_len) ZEK_SYMBOL("q57881");
/* The elimination behind F11JAF / F11JNF, working on the copy of the matrix at NNZ+1..2*NNZ.  STATUS 0
 * done, 1 LA too small, 2 the final sort failed. */
ZEK_API void F11_IC_CORE(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                         const char *mic, double dscale, const char *pstrat, int ipiv[], int istr[], int *nnzc,
                         int *npivm, int iwork[], int liwork, int *status, int mic_len, int pstrat_len)
    ZEK_SYMBOL("q94461");
ZEK_API void F11_IC_CORE_COMPLEX(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill,
                                 double dtol, const char *mic, double dscale, const char *pstrat, int ipiv[],
                                 int istr[], int *nnzc, int *npivm, int iwork[], int liwork, int *status,
                                 int mic_len, int pstrat_len) ZEK_SYMBOL("q23455");

/* ---- Solves with the factors ---- */

/* F11DBF: X := inverse(M)*Y (TRANS 'N') or inverse(M')*Y ('T') with the factors of F11DAF.  CHECK 'C'
 * first verifies the factor structure and permutations (X is scratch meanwhile).  IFAIL 1 bad CHECK or
 * TRANS, 2 N < 1, 3 corrupted factors. */
ZEK_API void F11DBF(const char *trans, const int *n, const double a[], const int *la, const int irow[],
                    const int icol[], const int ipivp[], const int ipivq[], const int istr[], const int idiag[],
                    const char *check, const double y[], double x[], int *ifail, int trans_len, int check_len)
    ZEK_SYMBOL("q81766");
ZEK_API void F11DBF_WORKER(const char *trans, int n, const double a[], int la, const int irow[], const int icol[],
                           const int ipivp[], const int ipivq[], const int istr[], const int idiag[],
                           const char *check, const double y[], double x[], char *errbuf, int *ifail,
                           int trans_len, int check_len, int errbuf_len) ZEK_SYMBOL("q72589");
/* F11DPF: F11DBF with the complex factors of F11DNF. */
ZEK_API void F11DPF(const char *trans, const int *n, const double a[], const int *la, const int irow[],
                    const int icol[], const int ipivp[], const int ipivq[], const int istr[], const int idiag[],
                    const char *check, const double y[], double x[], int *ifail, int trans_len, int check_len)
    ZEK_SYMBOL("q73518");
ZEK_API void F11DPF_WORKER(const char *trans, int n, const double a[], int la, const int irow[], const int icol[],
                           const int ipivp[], const int ipivq[], const int istr[], const int idiag[],
                           const char *check, const double y[], double x[], char *errbuf, int *ifail,
                           int trans_len, int check_len, int errbuf_len) ZEK_SYMBOL("q69774");
/* F11JBF: X := inverse(M)*Y with the factors of F11JAF.  IFAIL 1 bad CHECK, 2 N < 1, 3 corrupted. */
ZEK_API void F11JBF(const int *n, const double a[], const int *la, const int irow[], const int icol[],
                    const int ipiv[], const int istr[], const char *check, const double y[], double x[], int *ifail,
                    int check_len) ZEK_SYMBOL("q85452");
ZEK_API void F11JBF_WORKER(int n, const double a[], int la, const int irow[], const int icol[], const int ipiv[],
                           const int istr[], const char *check, const double y[], double x[], char *errbuf,
                           int *ifail, int check_len, int errbuf_len) ZEK_SYMBOL("q51876");
/* F11JPF: F11JBF with the complex factors of F11JNF. */
ZEK_API void F11JPF(const int *n, const double a[], const int *la, const int irow[], const int icol[],
                    const int ipiv[], const int istr[], const char *check, const double y[], double x[], int *ifail,
                    int check_len) ZEK_SYMBOL("q40664");
ZEK_API void F11JPF_WORKER(int n, const double a[], int la, const int irow[], const int icol[], const int ipiv[],
                           const int istr[], const char *check, const double y[], double x[], char *errbuf,
                           int *ifail, int check_len, int errbuf_len) ZEK_SYMBOL("q84215");

/* ---- Matrix-vector products ---- */

/* F11XAF: Y := A*X (TRANS 'N') or A'*X ('T') for a CS matrix; CHECK 'C' verifies the structure first.
 * IFAIL 1 bad TRANS or CHECK, 2 structure. */
ZEK_API void F11XAF(const char *trans, const int *n, const int *nnz, const double a[], const int irow[],
                    const int icol[], const char *check, const double x[], double y[], int *ifail, int trans_len,
                    int check_len) ZEK_SYMBOL("q77317");
ZEK_API void F11XAF_WORKER(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[],
                           const char *check, const double x[], double y[], char *errbuf, int *ifail, int trans_len,
                           int check_len, int errbuf_len) ZEK_SYMBOL("q90478");
/* F11XNF: F11XAF with complex values. */
ZEK_API void F11XNF(const char *trans, const int *n, const int *nnz, const double a[], const int irow[],
                    const int icol[], const char *check, const double x[], double y[], int *ifail, int trans_len,
                    int check_len) ZEK_SYMBOL("q22825");
ZEK_API void F11XNF_WORKER(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[],
                           const char *check, const double x[], double y[], char *errbuf, int *ifail, int trans_len,
                           int check_len, int errbuf_len) ZEK_SYMBOL("q11402");
/* F11XEF: Y := A*X for a symmetric matrix in SCS. */
ZEK_API void F11XEF(const int *n, const int *nnz, const double a[], const int irow[], const int icol[],
                    const char *check, const double x[], double y[], int *ifail, int check_len) ZEK_SYMBOL("q49510");
ZEK_API void F11XEF_WORKER(int n, int nnz, const double a[], const int irow[], const int icol[], const char *check,
                           const double x[], double y[], char *errbuf, int *ifail, int check_len, int errbuf_len)
    ZEK_SYMBOL("q66984");
/* F11XSF: Y := A*X for a Hermitian matrix in SCS (the mirrored term conjugated). */
ZEK_API void F11XSF(const int *n, const int *nnz, const double a[], const int irow[], const int icol[],
                    const char *check, const double x[], double y[], int *ifail, int check_len) ZEK_SYMBOL("q26538");
ZEK_API void F11XSF_WORKER(int n, int nnz, const double a[], const int irow[], const int icol[], const char *check,
                           const double x[], double y[], char *errbuf, int *ifail, int check_len, int errbuf_len)
    ZEK_SYMBOL("q12697");

/* ---- Krylov suites by reverse communication ----
 *
 * Set-up (METHOD 'RGMRES', 'CGS', 'BICGSTAB' or 'TFQMR'; PRECON 'N'/'P'; NORM '1', 'I', '2'; WEIGHT
 * 'N'/'W'; ITERM 1 or 2; M the restart length of RGMRES (1..min(N,50)) or the order of BICGSTAB
 * (1..min(N,10)); TOL, MAXITN, ANORM, SIGMAX, MONIT), then the solver called until IREVCM = 4:
 * 1 V := A*U, -1 V := A'*U (norm estimate only), 2 V := inverse(M)*U, 3 monitoring (U the iterate,
 * V the residual), 4 finished.  The caller may answer with 5 (tidy stop) or 6 (immediate stop).  The
 * whole state is in WORK: its first 100 reals are the record, the vectors follow.  A failed argument
 * gives IFAIL = -(its number).  LWREQ: RGMRES (M+3)N + (M+5)M + 101; CGS 7N + 100; TFQMR 10N + 100;
 * BICGSTAB (2M+6)N + M*M + 4M + 100 (this implementation keeps b and the preconditioned update apart).
 * Solver IFAIL: 1 already finished, 2 accuracy not reached, 3 not set up, 4 tidy stop, 5 MAXITN reached,
 * 6 breakdown (also a non-finite value), 8 immediate stop.  Preconditioning acts on the right.
 * The complex suite has complex U, V and WORK (LWORK complex elements, the record in the first 100
 * reals of WORK, the vectors from complex element 100 on).  The diagnostic routine returns ITN,
 * STPLHS, STPRHS, ANORM, SIGMAX, at a monitoring return or after the end. */
ZEK_API void F11BDF(const char *method, const char *precon, const char *norm, const char *weight, const int *iterm,
                    const int *n, const int *m, const double *tol, const int *maxitn, const double *anorm,
                    const double *sigmax, const int *monit, int *lwreq, double work[], const int *lwork, int *ifail,
                    int method_len, int precon_len, int norm_len, int weight_len) ZEK_SYMBOL("q57497");
ZEK_API void F11BDF_WORKER(const char *method, const char *precon, const char *norm, const char *weight, int iterm,
                           int n, int m, double tol, int maxitn, double anorm, double sigmax, int monit, int *lwreq,
                           double work[], int lwork, char *errbuf, int *ifail, int method_len, int precon_len,
                           int norm_len, int weight_len, int errbuf_len) ZEK_SYMBOL("q97806");
ZEK_API void F11BEF(int *irevcm, double u[], double v[], const double wgt[], double work[], const int *lwork,
                    int *ifail) ZEK_SYMBOL("q20657");
ZEK_API void F11BEF_WORKER(int *irevcm, double u[], double v[], const double wgt[], double work[], int lwork,
                           char *errbuf, int *ifail, int errbuf_len) ZEK_SYMBOL("q15526");
ZEK_API void F11BFF(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax, const double work[],
                    const int *lwork, int *ifail) ZEK_SYMBOL("q18854");
ZEK_API void F11BFF_WORKER(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax,
                           const double work[], int lwork, char *errbuf, int *ifail, int errbuf_len)
    ZEK_SYMBOL("q56181");
/* The complex general suite, as F11BDF, F11BEF, F11BFF. */
ZEK_API void F11BRF(const char *method, const char *precon, const char *norm, const char *weight, const int *iterm,
                    const int *n, const int *m, const double *tol, const int *maxitn, const double *anorm,
                    const double *sigmax, const int *monit, int *lwreq, double work[], const int *lwork, int *ifail,
                    int method_len, int precon_len, int norm_len, int weight_len) ZEK_SYMBOL("q51951");
ZEK_API void F11BRF_WORKER(const char *method, const char *precon, const char *norm, const char *weight, int iterm,
                           int n, int m, double tol, int maxitn, double anorm, double sigmax, int monit, int *lwreq,
                           double work[], int lwork, char *errbuf, int *ifail, int method_len, int precon_len,
                           int norm_len, int weight_len, int errbuf_len) ZEK_SYMBOL("q46049");
ZEK_API void F11BSF(int *irevcm, double u[], double v[], const double wgt[], double work[], const int *lwork,
                    int *ifail) ZEK_SYMBOL("q91947");
ZEK_API void F11BSF_WORKER(int *irevcm, double u[], double v[], const double wgt[], double work[], int lwork,
                           char *errbuf, int *ifail, int errbuf_len) ZEK_SYMBOL("q42845");
ZEK_API void F11BTF(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax, const double work[],
                    const int *lwork, int *ifail) ZEK_SYMBOL("q18404");
ZEK_API void F11BTF_WORKER(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax,
                           const double work[], int lwork, char *errbuf, int *ifail, int errbuf_len)
    ZEK_SYMBOL("q68539");

/* ---- Symmetric and Hermitian suites ----
 *
 * F11GDF sets up METHOD 'CG' (A positive-definite) or 'SYMMLQ' (A symmetric, possibly indefinite), with
 * PRECON 'N'/'P' (the preconditioner must be positive-definite), SIGCMP 'N'/'S' (estimate the largest
 * singular value by the Lanczos process of the method, to relative accuracy SIGTOL (0 or below:
 * sqrt(eps)) in at most MAXITS steps; with a preconditioner it is that of the preconditioned matrix),
 * NORM, WEIGHT, ITERM, TOL, MAXITN, ANORM, SIGMAX, MONIT as in F11BDF.  Arguments are numbered METHOD 1,
 * PRECON 2, SIGCMP 3, NORM 4, WEIGHT 5, ITERM 6, N 7, TOL 8, MAXITN 9, ANORM 10, SIGMAX 11 (ITERM 2 with
 * SIGCMP 'N' needs it positive), SIGTOL 12, MAXITS 13, MONIT 14, LWORK 17.  LWREQ: CG 6N + 100,
 * SYMMLQ 9N + 100, each plus 2*MAXITS with SIGCMP 'S'.  F11GEF is driven as F11BEF (requests 1, 2, 3,
 * 4; no transposed products); each SYMMLQ step tests the true residual of its conjugate-gradient point,
 * at the cost of a second product.  F11GEF IFAIL: 1 already finished, 2 accuracy not reached (also a
 * non-finite value or an exhausted Lanczos process), 3 not set up, 4 A not positive-definite (CG),
 * 5 preconditioner not positive-definite, 6 tidy stop, 7 MAXITN reached, 8 immediate stop.  F11GFF as
 * F11BFF; SIGMAX is the estimate when one was asked for.  F11GRF, F11GSF, F11GTF: the Hermitian twins,
 * with complex U, V, WORK laid out as in F11BRF. */
ZEK_API void F11GDF(const char *method, const char *precon, const char *sigcmp, const char *norm, const char *weight,
                    const int *iterm, const int *n, const double *tol, const int *maxitn, const double *anorm,
                    const double *sigmax, const double *sigtol, const int *maxits, const int *monit, int *lwreq,
                    double work[], const int *lwork, int *ifail, int method_len, int precon_len, int sigcmp_len,
                    int norm_len, int weight_len) ZEK_SYMBOL("q80165");
ZEK_API void F11GDF_WORKER(const char *method, const char *precon, const char *sigcmp, const char *norm,
                           const char *weight, int iterm, int n, double tol, int maxitn, double anorm, double sigmax,
                           double sigtol, int maxits, int monit, int *lwreq, double work[], int lwork, char *errbuf,
                           int *ifail, int method_len, int precon_len, int sigcmp_len, int norm_len, int weight_len,
                           int errbuf_len) ZEK_SYMBOL("q86389");
ZEK_API void F11GEF(int *irevcm, double u[], double v[], const double wgt[], double work[], const int *lwork,
                    int *ifail) ZEK_SYMBOL("q68833");
ZEK_API void F11GEF_WORKER(int *irevcm, double u[], double v[], const double wgt[], double work[], int lwork,
                           char *errbuf, int *ifail, int errbuf_len) ZEK_SYMBOL("q51330");
ZEK_API void F11GFF(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax, const double work[],
                    const int *lwork, int *ifail) ZEK_SYMBOL("q43984");
ZEK_API void F11GFF_WORKER(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax,
                           const double work[], int lwork, char *errbuf, int *ifail, int errbuf_len)
    ZEK_SYMBOL("q77723");
/* The engines behind the solver routines, one per method: IREVCM as the solver passes it on (the
 * caller's 5 multiplied by 10, 6 by 100; 0 starts), U, V, WGT and WORK as the solver's.  STATUS is 0
 * while a request is returned, the final status with IREVCM 4, and 3 when WORK holds no record set up
 * for this method.  No argument or sequence checks beyond that: the solver routines make them. */
ZEK_API void F11_RGMRES_ENGINE(int *irevcm, double u[], double v[], const double wgt[], double work[],
                               int *status) ZEK_SYMBOL("q74656");
ZEK_API void F11_CGS_ENGINE(int *irevcm, double u[], double v[], const double wgt[], double work[],
                            int *status) ZEK_SYMBOL("q20208");
ZEK_API void F11_BICGSTAB_ENGINE(int *irevcm, double u[], double v[], const double wgt[], double work[],
                                 int *status) ZEK_SYMBOL("q52505");
ZEK_API void F11_TFQMR_ENGINE(int *irevcm, double u[], double v[], const double wgt[], double work[],
                              int *status) ZEK_SYMBOL("q64043");
ZEK_API void F11_RGMRES_ENGINE_COMPLEX(int *irevcm, double u[], double v[], const double wgt[], double work[],
                                       int *status) ZEK_SYMBOL("q53751");
ZEK_API void F11_CGS_ENGINE_COMPLEX(int *irevcm, double u[], double v[], const double wgt[], double work[],
                                    int *status) ZEK_SYMBOL("q26777");
ZEK_API void F11_BICGSTAB_ENGINE_COMPLEX(int *irevcm, double u[], double v[], const double wgt[],
                                         double work[], int *status) ZEK_SYMBOL("q50865");
ZEK_API void F11_TFQMR_ENGINE_COMPLEX(int *irevcm, double u[], double v[], const double wgt[], double work[],
                                      int *status) ZEK_SYMBOL("q82290");
ZEK_API void F11_CG_ENGINE(int *irevcm, double u[], double v[], const double wgt[], double work[],
                           int *status) ZEK_SYMBOL("q35148");
ZEK_API void F11_SYMMLQ_ENGINE(int *irevcm, double u[], double v[], const double wgt[], double work[],
                               int *status) ZEK_SYMBOL("q83478");
ZEK_API void F11_CG_ENGINE_HERMITIAN(int *irevcm, double u[], double v[], const double wgt[], double work[],
                                     int *status) ZEK_SYMBOL("q26233");
ZEK_API void F11_SYMMLQ_ENGINE_HERMITIAN(int *irevcm, double u[], double v[], const double wgt[],
                                         double work[], int *status) ZEK_SYMBOL("q21209");
/* The record's workers: F11_STATE_TRANSFER copies the 100 reals of the record out of WORK ("Get") or
 * back ("Put"), by the first letter in either case.  F11_SEQUENCE_CHECK(ACTION, WORK, STATUS): -1 / 1
 * store both marks with state 0 / 1; 0 tests the marks; 2 tests them and moves state 1 to 2; 3 moves
 * to state 3 when the last request returned was 4; 4 accepts a finished record or a monitoring return.
 * STATUS 1 when a test fails.  F11_VECTOR_NORM(CODE, WIDE, N, X, W): CODE 0 one-norm, 1 infinity,
 * 2 two-norm (WIDE: the plain root of the inner product), 3 to 5 the same of W*X. */
ZEK_API void F11_STATE_TRANSFER(const char *how, double record[], double work[], int how_len)
    ZEK_SYMBOL("F11_STATE_TRANSFER");
ZEK_API void F11_SEQUENCE_CHECK(int action, double work[], int *status) ZEK_SYMBOL("F11_SEQUENCE_CHECK");
ZEK_API double F11_VECTOR_NORM(int code, int wide, int n, const double x[], const double w[])
    ZEK_SYMBOL("F11_VECTOR_NORM");

ZEK_API void F11GRF(const char *method, const char *precon, const char *sigcmp, const char *norm, const char *weight,
                    const int *iterm, const int *n, const double *tol, const int *maxitn, const double *anorm,
                    const double *sigmax, const double *sigtol, const int *maxits, const int *monit, int *lwreq,
                    double work[], const int *lwork, int *ifail, int method_len, int precon_len, int sigcmp_len,
                    int norm_len, int weight_len) ZEK_SYMBOL("q71877");
ZEK_API void F11GRF_WORKER(const char *method, const char *precon, const char *sigcmp, const char *norm,
                           const char *weight, int iterm, int n, double tol, int maxitn, double anorm, double sigmax,
                           double sigtol, int maxits, int monit, int *lwreq, double work[], int lwork, char *errbuf,
                           int *ifail, int method_len, int precon_len, int sigcmp_len, int norm_len, int weight_len,
                           int errbuf_len) ZEK_SYMBOL("q35431");
ZEK_API void F11GSF(int *irevcm, double u[], double v[], const double wgt[], double work[], const int *lwork,
                    int *ifail) ZEK_SYMBOL("q44361");
ZEK_API void F11GSF_WORKER(int *irevcm, double u[], double v[], const double wgt[], double work[], int lwork,
                           char *errbuf, int *ifail, int errbuf_len) ZEK_SYMBOL("q34455");
ZEK_API void F11GTF(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax, const double work[],
                    const int *lwork, int *ifail) ZEK_SYMBOL("q56620");
ZEK_API void F11GTF_WORKER(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax,
                           const double work[], int lwork, char *errbuf, int *ifail, int errbuf_len)
    ZEK_SYMBOL("q31235");

/* ---- Drivers ----
 *
 * Each driver checks the matrix once at entry, sets up a suite with the infinity norm, ITERM 1 and the
 * one-norm of A as ANORM (so no estimator runs), and runs the reverse-communication loop itself.  WORK
 * holds the right-hand side in its first N elements and the suite's record behind them; the complex
 * drivers' WORK is complex (LWORK complex elements).  X holds the initial approximation on entry. */

/* F11DCF: solves A x = b for a CS matrix with the incomplete LU of F11DAF as preconditioner, by METHOD
 * ('RGMRES', 'CGS', 'BICGSTAB', 'TFQMR'), M, TOL, MAXITN as in F11BDF; X the initial guess on entry,
 * the solution on exit; RNORM the final residual norm (infinity norm), ITN the iterations.  The matrix
 * is checked once, the factors at the first preconditioner request.  LWORK at least: RGMRES
 * (N+M+5)M + 4N + 101; CGS 8N + 100; TFQMR 11N + 100; BICGSTAB the larger of (M+2)M + 2(M+3)N + 100 and
 * (2M+7)N + M*M + 4M + 100.  IFAIL 1 arguments, 2 structure, 3 invalid factors, 4 accuracy not reached,
 * 5 not converged in MAXITN, 6 breakdown, 7 internal. */
ZEK_API void F11DCF(const char *method, const int *n, const int *nnz, const double a[], const int *la,
                    const int irow[], const int icol[], const int ipivp[], const int ipivq[], const int istr[],
                    const int idiag[], const double b[], const int *m, const double *tol, const int *maxitn,
                    double x[], double *rnorm, int *itn, double work[], const int *lwork, int *ifail, int method_len)
    ZEK_SYMBOL("q81302");
ZEK_API void F11DCF_WORKER(const char *method, int n, int nnz, const double a[], int la, const int irow[],
                           const int icol[], const int ipivp[], const int ipivq[], const int istr[], const int idiag[],
                           const double b[], int m, double tol, int maxitn, double x[], double *rnorm, int *itn,
                           double work[], int lwork, char *errbuf, int *ifail, int method_len, int errbuf_len)
    ZEK_SYMBOL("q52964");

/* F11DQF: F11DCF for a complex CS matrix with the complex incomplete LU of F11DNF (A, B, X, WORK
 * complex).  Its texts name F11DNF and F11DQF, and the internal calls F11BRFN, F11BSFN, F11BTFN. */
ZEK_API void F11DQF(const char *method, const int *n, const int *nnz, const double a[], const int *la,
                    const int irow[], const int icol[], const int ipivp[], const int ipivq[], const int istr[],
                    const int idiag[], const double b[], const int *m, const double *tol, const int *maxitn,
                    double x[], double *rnorm, int *itn, double work[], const int *lwork, int *ifail, int method_len)
    ZEK_SYMBOL("q93753");
ZEK_API void F11DQF_WORKER(const char *method, int n, int nnz, const double a[], int la, const int irow[],
                           const int icol[], const int ipivp[], const int ipivq[], const int istr[], const int idiag[],
                           const double b[], int m, double tol, int maxitn, double x[], double *rnorm, int *itn,
                           double work[], int lwork, char *errbuf, int *ifail, int method_len, int errbuf_len)
    ZEK_SYMBOL("q18852");
/* F11DEF: F11DCF with the preconditioner built in: PRECON 'N' none, 'J' Jacobi (division by the
 * diagonal), 'S' one SSOR step with relaxation OMEGA in (0, 2).  LWORK as F11DCF.  IWORK(1..N)
 * receives the places of the diagonals (unused with 'N'); the SSOR step forms its diagonal
 * reciprocals as it goes, so WORK needs no room beyond the suite's and the right-hand side.  IFAIL 1
 * arguments, 2 structure, 3 a row without a diagonal or with a zero one ('J', 'S' only), 4 accuracy
 * not reached, 5 not converged in MAXITN, 6 breakdown, 7 internal. */
ZEK_API void F11DEF(const char *method, const char *precon, const int *n, const int *nnz, const double a[],
                    const int irow[], const int icol[], const double *omega, const double b[], const int *m,
                    const double *tol, const int *maxitn, double x[], double *rnorm, int *itn, double work[],
                    const int *lwork, int iwork[], int *ifail, int method_len, int precon_len) ZEK_SYMBOL("q63501");
ZEK_API void F11DEF_WORKER(const char *method, const char *precon, int n, int nnz, const double a[], const int irow[],
                           const int icol[], double omega, const double b[], int m, double tol, int maxitn, double x[],
                           double *rnorm, int *itn, double work[], int lwork, int iwork[], char *errbuf, int *ifail,
                           int method_len, int precon_len, int errbuf_len) ZEK_SYMBOL("q18508");
/* F11DSF: F11DEF for a complex CS matrix. */
ZEK_API void F11DSF(const char *method, const char *precon, const int *n, const int *nnz, const double a[],
                    const int irow[], const int icol[], const double *omega, const double b[], const int *m,
                    const double *tol, const int *maxitn, double x[], double *rnorm, int *itn, double work[],
                    const int *lwork, int iwork[], int *ifail, int method_len, int precon_len) ZEK_SYMBOL("q14389");
ZEK_API void F11DSF_WORKER(const char *method, const char *precon, int n, int nnz, const double a[], const int irow[],
                           const int icol[], double omega, const double b[], int m, double tol, int maxitn, double x[],
                           double *rnorm, int *itn, double work[], int lwork, int iwork[], char *errbuf, int *ifail,
                           int method_len, int precon_len, int errbuf_len) ZEK_SYMBOL("q34504");
/* F11JQF: solves a complex Hermitian SCS system by METHOD 'CG' or 'SYMMLQ' (the suite F11GRF) with the
 * incomplete Cholesky factors of F11JNF (IPIV, ISTR) as preconditioner.  LWORK at least 7N + 100 (CG)
 * or 10N + 100 (SYMMLQ), complex.  IFAIL 1 arguments, 2 structure, 3 invalid factors, 4 accuracy not
 * reached, 5 not converged in MAXITN, 6 preconditioner not positive-definite, 7 A not
 * positive-definite, 8 internal (the general drivers' 6 and 7 have no counterpart, so the symmetric
 * suite's definiteness exits take their places). */
ZEK_API void F11JQF(const char *method, const int *n, const int *nnz, const double a[], const int *la,
                    const int irow[], const int icol[], const int ipiv[], const int istr[], const double b[],
                    const double *tol, const int *maxitn, double x[], double *rnorm, int *itn, double work[],
                    const int *lwork, int *ifail, int method_len) ZEK_SYMBOL("q47630");
ZEK_API void F11JQF_WORKER(const char *method, int n, int nnz, const double a[], int la, const int irow[],
                           const int icol[], const int ipiv[], const int istr[], const double b[], double tol,
                           int maxitn, double x[], double *rnorm, int *itn, double work[], int lwork, char *errbuf,
                           int *ifail, int method_len, int errbuf_len) ZEK_SYMBOL("q86221");
/* F11JSF: F11JQF with PRECON 'N', 'J' or 'S' and OMEGA as F11DEF, IWORK(1..N); IFAIL 3 also for a
 * diagonal with a nonzero imaginary part. */
ZEK_API void F11JSF(const char *method, const char *precon, const int *n, const int *nnz, const double a[],
                    const int irow[], const int icol[], const double *omega, const double b[], const double *tol,
                    const int *maxitn, double x[], double *rnorm, int *itn, double work[], const int *lwork,
                    int iwork[], int *ifail, int method_len, int precon_len) ZEK_SYMBOL("q29005");
ZEK_API void F11JSF_WORKER(const char *method, const char *precon, int n, int nnz, const double a[], const int irow[],
                           const int icol[], double omega, const double b[], double tol, int maxitn, double x[],
                           double *rnorm, int *itn, double work[], int lwork, int iwork[], char *errbuf, int *ifail,
                           int method_len, int precon_len, int errbuf_len) ZEK_SYMBOL("q51614");

/* ---- Relaxation preconditioners ----
 *
 * The SSOR step solves (D/OMEGA + L) inverse(D) (D/OMEGA + U) X = ((2 - OMEGA)/OMEGA) V, D the
 * diagonal, L and U the strict triangles (TRANS 'T': the transposed operator; Hermitian: U = L^H).
 * The sweeps follow the sorted entries forwards and backwards, so no row start array is needed; with
 * CHECK 'N' entries with indices out of range are passed over.  IFAIL 1 bad TRANS, CHECK, OMEGA or sizes,
 * 2 structure (CHECK 'C'), 3 a diagonal zero or missing (CHECK 'C'; F11JRF also a non-real one). */
ZEK_API void F11DDF(const char *trans, const int *n, const int *nnz, const double a[], const int irow[],
                    const int icol[], const double *omega, const char *check, const double v[], double x[], int *ifail,
                    int trans_len, int check_len) ZEK_SYMBOL("q61354");
ZEK_API void F11DDF_WORKER(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[],
                           double omega, const char *check, const double v[], double x[], char *errbuf, int *ifail,
                           int trans_len, int check_len, int errbuf_len) ZEK_SYMBOL("q83424");
ZEK_API void F11DRF(const char *trans, const int *n, const int *nnz, const double a[], const int irow[],
                    const int icol[], const double *omega, const char *check, const double v[], double x[], int *ifail,
                    int trans_len, int check_len) ZEK_SYMBOL("q58828");
ZEK_API void F11DRF_WORKER(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[],
                           double omega, const char *check, const double v[], double x[], char *errbuf, int *ifail,
                           int trans_len, int check_len, int errbuf_len) ZEK_SYMBOL("q66532");
ZEK_API void F11JRF(const int *n, const int *nnz, const double a[], const int irow[], const int icol[],
                    const double *omega, const char *check, const double v[], double x[], int *ifail, int check_len)
    ZEK_SYMBOL("q29402");
ZEK_API void F11JRF_WORKER(int n, int nnz, const double a[], const int irow[], const int icol[], double omega,
                           const char *check, const double v[], double x[], char *errbuf, int *ifail, int check_len,
                           int errbuf_len) ZEK_SYMBOL("q12177");
/* The SSOR step of F11DEF, unchecked: IDIAG(i) the place of the diagonal of row i; ISTR is accepted for
 * the record of the factor layout but not needed. */
ZEK_API void F11_SSOR_APPLY(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[],
                            const int istr[], const int idiag[], double omega, const double v[], double x[],
                            int trans_len) ZEK_SYMBOL("F11_SSOR_APPLY");
/* F11DKF: NITER Jacobi sweeps X := X + inverse(D)*(V - A*X) (TRANS 'T': A'), by rows; INIT 'I' starts
 * from V/DIAG, 'N' from the given X.  STORE 'S' takes the diagonal from DIAG, 'N' reads it from the
 * matrix into DIAG.  WORK(N) holds the residual.  IFAIL 1 bad letters, NITER or sizes, 2 structure
 * (CHECK 'C'), 3 a diagonal zero or missing. */
ZEK_API void F11DKF(const char *store, const char *trans, const char *init, const int *niter, const int *n,
                    const int *nnz, const double a[], const int irow[], const int icol[], const char *check,
                    const double v[], double x[], double diag[], double work[], int *ifail, int store_len,
                    int trans_len, int init_len, int check_len) ZEK_SYMBOL("q69718");
ZEK_API void F11DKF_WORKER(const char *store, const char *trans, const char *init, int niter, int n, int nnz,
                           const double a[], const int irow[], const int icol[], const char *check, const double v[],
                           double x[], double diag[], double work[], char *errbuf, int *ifail, int store_len,
                           int trans_len, int init_len, int check_len, int errbuf_len) ZEK_SYMBOL("q10620");
/* F11DXF: F11DKF with complex A, V, X, DIAG, WORK. */
ZEK_API void F11DXF(const char *store, const char *trans, const char *init, const int *niter, const int *n,
                    const int *nnz, const double a[], const int irow[], const int icol[], const char *check,
                    const double v[], double x[], double diag[], double work[], int *ifail, int store_len,
                    int trans_len, int init_len, int check_len) ZEK_SYMBOL("q53740");
ZEK_API void F11DXF_WORKER(const char *store, const char *trans, const char *init, int niter, int n, int nnz,
                           const double a[], const int irow[], const int icol[], const char *check, const double v[],
                           double x[], double diag[], double work[], char *errbuf, int *ifail, int store_len,
                           int trans_len, int init_len, int check_len, int errbuf_len) ZEK_SYMBOL("q16427");

ZEK_END_DECLS

#endif
