// The singular value decomposition: the implicit QR iteration on an upper bidiagonal matrix, the
// reduction of an upper triangular matrix to bidiagonal form by plane rotations, and the drivers that
// regression and the least-squares solvers call.
//
// Conventions of the whole family.  A plane rotation (c, s) acts as x' = c*x + s*y, y' = c*y - s*x.
// B is upper bidiagonal of order N with diagonal D(N) and superdiagonal E(N-1).  The iteration finds
// B = Qb*S*Pb' and updates three optional matrices alongside: B := Qb'*B (rows), Y := Y*Qb (columns),
// Z := Pb'*Z (rows).  Singular values come back non-negative and in descending order.
//
// The quickest entry is zek::svd below:
//
//     std::vector<double> work(zek::svd_workspace(m, n, true, true));
//     int info = zek::svd(m, n, a, lda, sigma, u, ldu, vt, ldvt, work.data());
//
// which gives A = U*diag(sigma)*VT for any M, N with the thin factors U (M by min(M,N)) and
// VT (min(M,N) by N).
#ifndef ZEK_KERNELS_SVD_H
#define ZEK_KERNELS_SVD_H

#include <cstddef>

#include "zek2/types.h"

namespace zek {

// The sweep limit of the iteration: a block that hasn't shed a value after this many sweeps for each
// value still in it is given up.
constexpr int kSweepsPerValue = 30;

// Workspace of bidiagonal_qr: four rotation sequences of N-1 rotations.
inline std::ptrdiff_t bidiagonal_qr_workspace(int n) { return n > 1 ? 4 * static_cast<std::ptrdiff_t>(n - 1) : 1; }

// Implicit QR on the bidiagonal (D, E); B (N by NCOLB), Y (NROWY by N), Z (N by NCOLZ) updated as above,
// a zero count leaving the matrix untouched (it may be null).  E is destroyed.  Returns 0, or the number
// of values not found when the sweep limit is reached or the data hold a NaN or an infinity (D then
// holds what was found; the order is not sorted).  No argument checking.
int bidiagonal_qr(int n, double *d, double *e, int ncolb, double *b, int ldb, int nrowy, double *y, int ldy,
                  int ncolz, double *z, int ldz, double *work);

// Reduction of the N by N upper triangular A (the strict lower triangle is not read) to R = Q*B*P' by
// plane rotations: D(N) and E(N-1) receive B; the left rotations go to B (B := Q'*B, NCOLB columns) and,
// when WANTQ, to Q (set to the identity first, then Q := Q*G'), the right ones stay in A above the
// superdiagonal, one number each.
void triangle_to_bidiagonal(int n, double *a, int lda, double *d, double *e, int ncolb, double *b, int ldb,
                            bool wantq, double *q, int ldq);
// Overwrites A (after triangle_to_bidiagonal) with P'.
void form_right_rotations(int n, double *a, int lda);

// Workspace (reals) of svd for the given shape and vectors.
std::ptrdiff_t svd_workspace(int m, int n, bool wantu, bool wantvt);

// A = U*diag(SIGMA)*VT for the M by N matrix A (LDA >= max(1,M)), k = min(M, N): SIGMA(k) descending,
// U (LDU >= M, k columns) and VT (LDVT >= k, N columns) when not null.  A is destroyed.  WORK holds
// svd_workspace(M, N, U != null, VT != null) reals.  Returns 0, or the number of values not found.
int svd(int m, int n, double *a, int lda, double *sigma, double *u, int ldu, double *vt, int ldvt, double *work);

// The IFAIL-layer driver for an N by N upper triangular A: SV(N) the values, largest first; Q (LDQ >= N)
// the left vectors when WANTQ; A := P' when WANTP (otherwise A keeps the right rotations); B (LDB >= N)
// := Q'*B, NCOLB columns.  WORK(5*N): the superdiagonal in WORK(1..N-1), WORK(N) a scratch place, the
// iteration's workspace behind.  IFAIL (stream reporters): 1 argument errors, counted;
// 2 failed convergence with the number of values not found.
void F02WUF(const int *n, double *a, const int *lda, const int *ncolb, double *b, const int *ldb, const int *wantq,
            double *q, const int *ldq, double *sv, const int *wantp, double *work, int *ifail);

// The C-style twin: the same arguments by value with the fail record.  Codes 11 ZE_INT_ARG_LT
// (n, ncolb below 0), 17 ZE_2_INT_ARG_LT (tda, tdb, tdq below n), 291 ZE_SVD_FAIL (with the count
// of values not found).
void f02wuc(int n, double *a, int tda, int ncolb, double *b, int tdb, int wantq, double *q, int tdq, double *sv,
            int wantp, double *work, ZekFail *fail);

// The general M by N driver, M >= N >= 1, TDA >= M: SV(N) descending; when WANTQ the first N columns of
// A receive the left vectors U (otherwise A is destroyed); when WANTPT, PT (TDPT >= N) the N by N
// matrix of right vectors as rows; B (M by NCOLB, TDB >= M) := U'*B in its first N rows (the rest hold
// the components outside the range of A when the route goes through R, and are unspecified otherwise).
// *COND: sv(1)/sv(N), or the largest number when sv(N) is 0.  The route goes through the QR
// factorisation first when 3*M > 5*N.  Allocates its workspace.  Codes 11 ZE_INT_ARG_LT, 17
// ZE_2_INT_ARG_LT, 73 ZE_ALLOC_FAIL and 291 ZE_SVD_FAIL (with the count of values not found).
void f02wdc(int m, int n, double *a, int tda, int ncolb, double *b, int tdb, int wantq, double *sv, int wantpt,
            double *pt, int tdpt, double *cond, ZekFail *fail);

} // namespace zek

#endif
