// Reduction to upper bidiagonal form, for the singular value decomposition.
#ifndef ZEK_KERNELS_BIDIAGONAL_H
#define ZEK_KERNELS_BIDIAGONAL_H

namespace zek {

// A = Q*B*P' for the M by N matrix A, M >= N >= 1: B upper bidiagonal with diagonal D(N) and
// superdiagonal E(N-1).  Q = H(1)...H(N), H(k) = I - u*u' with u = (ZL(k), A(k+1:M, k)) on rows k..M;
// P = G(1)...G(N-2), G(k) with u = (ZR(k), A(k, k+2:N)) on columns k+1..N (zeta form, zeta 0 the
// identity).  WORK holds max(M, N) reals.
void bidiagonalise(int m, int n, double *a, int lda, double *d, double *e, double *zl, double *zr, double *work);

// With the reflectors of bidiagonalise: B := Q'*B (M by NCOLB), Y := Y*Q (NROWY by M), Z := P'*Z (N by
// NCOLZ).  WORK holds max(NCOLB, NROWY, NCOLZ) reals.
void apply_bidiagonal_transforms(int m, int n, const double *a, int lda, const double *zl, const double *zr,
                                 int ncolb, double *b, int ldb, int nrowy, double *y, int ldy, int ncolz, double *z,
                                 int ldz, double *work);

} // namespace zek

#endif
