// The published Householder routines of chapter F08: F08AEZ/DGEQR2, F08AGZ/DORM2R, F08AGF/DORMQR and
// F08BEF/DGEQPF, in the published representation H = I - tau*v*v' with v(1) = 1 (unlike the zeta form
// of F01).  These internal forms do no argument checking.
#ifndef ZEK_KERNELS_HOUSEHOLDER_H
#define ZEK_KERNELS_HOUSEHOLDER_H

namespace zek {

// The reflector H with H*(alpha, x')' = (beta, 0')': on exit alpha = beta, x = v(2:n), *tau.
void larfg(int n, double *alpha, double *x, int incx, double *tau);
// C := H*C (side 'L') or C*H (side 'R'), H = I - tau*v*v'; WORK(N) for 'L', WORK(M) for 'R'.
void larf(char side, int m, int n, const double *v, int incv, double tau, double *c, int ldc, double *work);

// A = Q*R unblocked; TAU(min(M,N)); WORK(N).
void geqr2(int m, int n, double *a, int lda, double *tau, double *work);
// C := op(Q)*C or C*op(Q) with Q = H(1)...H(K) from geqr2, unblocked; WORK(N) for 'L', WORK(M) for 'R'.
void orm2r(char side, char trans, int m, int n, int k, double *a, int lda, const double *tau, double *c, int ldc,
           double *work);
// The same, blocked with block size NB when 1 < NB < K and WORK holds NB*(N or M) elements.
void ormqr(char side, char trans, int m, int n, int k, double *a, int lda, const double *tau, double *c, int ldc,
           double *work, int lwork, int nb);
// A*P = Q*R with column pivoting; JPVT on entry marks leading columns (nonzero), on exit the permutation;
// TAU(min(M,N)); WORK(3*N).
void geqpf(int m, int n, double *a, int lda, int *jpvt, double *tau, double *work);

} // namespace zek

#endif
