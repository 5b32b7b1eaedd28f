// QR factorisation by elementary reflectors in the library's own form (F01QCF, F01QDF, F01QFZ and their
// twins): what regression, the optimisers and the singular value decomposition call.
//
// The form: after the factorisation A (M by N, M >= N) holds R in its upper triangle and, below the
// diagonal of column k, the vector z of reflector k; ZETA(k) holds its first component zeta.  Reflector
// k is H(k) = I - u*u' with u = (0,..,0, zeta, z')' starting at row k, and zeta = 0 stands for the
// identity.  Q = H(1)*H(2)*...*H(N), A = Q*[R; 0].  Nothing is scaled: there is no separate tau.
//
// These internal forms do no argument checking.
#ifndef ZEK_KERNELS_QR_H
#define ZEK_KERNELS_QR_H

namespace zek {

// A = Q*R of the M by N matrix A, M >= N >= 0.  When M = N the last zeta is 0.
void qr_factor(int m, int n, double *a, int lda, double *zeta);

// B := Q'*B (TRANS 'T' or 'C') or Q*B (TRANS 'N') for the M by NCOLB matrix B, Q from qr_factor.
// WHERET 'S': the zetas are in ZETA; 'I': they stand on the diagonal of A (ZETA is not read).
// WORK holds NCOLB elements.
void qr_apply(char trans, char wheret, int m, int n, double *a, int lda, const double *zeta, int ncolb, double *b,
              int ldb, double *work);

// A*P = Q*R with column interchanges: PIVOT 'C' takes the column of largest remaining norm at each step,
// 'S' (after the first step) the largest ratio of remaining to original norm.  PERM(k) (one-based) is
// the column interchanged with column k at step k.  WORK holds 2*N elements.  M >= N >= 0.
void qr_factor_pivoted(char pivot, int m, int n, double *a, int lda, double *zeta, int *perm, double *work);

// F01QFZ: checks PIVOT ('C' or 'S'), M >= N, N >= 0, LDA >= M, printing each bad one through the host
// channel as IFAIL asks and leaving their count in IFAIL (0 when all is well); then qr_factor_pivoted.
void F01QFZ(const char *pivot, const int *m, const int *n, double *a, const int *lda, double *zeta, int *perm,
            double *work, int *ifail, int pivot_len);

} // namespace zek

#endif
