// LU factorisation with partial pivoting, real and complex, blocked and unblocked: the engine behind
// F07ADF, F07ADG, F07ARF and the callers in F01, F03 and F04.
//
// All indices in pivot arrays are one-based, as in the exported routines.  These internal forms do no
// argument checking; the exported routines check first and report through their own route.
#ifndef ZEK_KERNELS_LU_H
#define ZEK_KERNELS_LU_H

#include "kernels/kernel_types.h"

namespace zek {

// Unblocked A = P*L*U (L unit lower, U upper) of an M by N matrix.  Returns INFO: 0, or the first
// column whose pivot is exactly zero (the loop goes on; the factorisation is complete).
int getf2(int m, int n, double *a, int lda, int *ipiv);
int getf2(int m, int n, Complex *a, int lda, int *ipiv);

// Blocked form with block size NB (unblocked when NB <= 1 or NB >= min(M, N)); same factors and INFO.
int getrf(int m, int n, double *a, int lda, int *ipiv, int nb);
int getrf(int m, int n, Complex *a, int lda, int *ipiv, int nb);

// The factorisation with the block size configured for F07ADF / F07ARF.
int dgetrf(int m, int n, double *a, int lda, int *ipiv);
int zgetrf(int m, int n, Complex *a, int lda, int *ipiv);

// Crout form on a real pivot array: A = P*L*U with L lower triangular carrying the diagonal and U unit
// upper triangular; PIV(i) holds the interchanged row as a real.  crout_getf2 is the unblocked panel
// (F07ADH), crout_getrf the blocked algorithm of F07ADG.
int crout_getf2(int m, int n, double *a, int lda, double *piv);
int crout_getrf(int m, int n, double *a, int lda, double *piv, int nb);

// Applies the interchanges IPIV(k1..k2) (one-based, forward) to the rows of the N columns of A.
void laswp(int n, double *a, int lda, int k1, int k2, const int *ipiv);
void laswp(int n, Complex *a, int lda, int k1, int k2, const int *ipiv);

// Solves op(A)*X = B with the factors of getrf (square N by N), TRANS 'N', 'T' or 'C'; B is N by NRHS.
void getrs(char trans, int n, int nrhs, const double *a, int lda, const int *ipiv, double *b, int ldb);
void getrs(char trans, int n, int nrhs, const Complex *a, int lda, const int *ipiv, Complex *b, int ldb);

} // namespace zek

#endif
