// Cholesky factorisations, real and complex, blocked and unblocked, and the packed form: the engine
// behind F07FDF, F07FDZ, F07FRF, F07FRZ and F07GDF, and what the optimisers, F01 and F04 call.
//
// UPLO is 'U' (A = U'*U, U over the upper triangle) or 'L' (A = L*L', L over the lower triangle); the
// conjugate transpose for complex.  The return value is INFO: 0, or the order of the leading minor that
// is not positive definite (the factorisation stops there; a NaN diagonal counts as not positive).
// No argument checks here.
#ifndef ZEK_KERNELS_CHOLESKY_H
#define ZEK_KERNELS_CHOLESKY_H

#include "kernels/kernel_types.h"

namespace zek {

int potf2(char uplo, int n, double *a, int lda);
int potf2(char uplo, int n, Complex *a, int lda);
// Blocked with block size NB (unblocked when NB <= 1 or NB >= N).
int potrf(char uplo, int n, double *a, int lda, int nb);
int potrf(char uplo, int n, Complex *a, int lda, int nb);
// With the block size configured for F07FDF / F07FRF.
int dpotrf(char uplo, int n, double *a, int lda);
int zpotrf(char uplo, int n, Complex *a, int lda);
// Packed storage: the triangle UPLO column by column in AP(1..N*(N+1)/2).
int pptrf(char uplo, int n, double *ap);

// Solves A*X = B with the factor of potrf; B is N by NRHS.
void potrs(char uplo, int n, int nrhs, const double *a, int lda, double *b, int ldb);

} // namespace zek

#endif
