// Level-3 kernels: matrix products, triangular products and solves with many right-hand sides, and
// symmetric and Hermitian rank-k updates.
//
// The engine templates assume valid arguments and decoded option letters; the BLAS-named routines are
// the checked internal aliases (an illegal argument is a hard failure) with character options as
// const char * and no hidden lengths.
//
// Every element of a result receives its terms in the order of the published column loops, so the
// blocked real product and the blocked real triangular solve (left side) round exactly as those loops
// do.  The product forms C := beta*C first (zeros for beta = 0) and then adds (alpha*op(B)(l,j)) *
// op(A)(i,l) for l = 1..k, for every combination of transposes.
#ifndef ZEK_KERNELS_LEVEL3_H
#define ZEK_KERNELS_LEVEL3_H

#include "kernels/kernel_types.h"

namespace zek {

// ---- The engine ---------------------------------------------------------------------------------

// C := alpha*op(A)*op(B) + beta*C, C m by n, op(A) m by k.
template <class T>
void gemm(char transa, char transb, int m, int n, int k, T alpha, const T *a, int lda, const T *b, int ldb, T beta,
          T *c, int ldc);
// B := alpha*inv(op(A))*B (side 'L') or alpha*B*inv(op(A)) (side 'R'), A triangular.
template <class T>
void trsm(char side, char uplo, char transa, char diag, int m, int n, T alpha, const T *a, int lda, T *b, int ldb);
// B := alpha*op(A)*B or alpha*B*op(A) (instantiated for double).
template <class T>
void trmm(char side, char uplo, char transa, char diag, int m, int n, T alpha, const T *a, int lda, T *b, int ldb);
// C := alpha*A*A' + beta*C (trans 'N') or alpha*A'*A + beta*C on the UPLO triangle (double).
template <class T>
void syrk(char uplo, char trans, int n, int k, T alpha, const T *a, int lda, T beta, T *c, int ldc);
// C := alpha*A*A^H + beta*C or alpha*A^H*A + beta*C, real alpha and beta; the diagonal stays real
// (Complex).
template <class T>
void herk(char uplo, char trans, int n, int k, double alpha, const T *a, int lda, double beta, T *c, int ldc);

// ---- Checked internal aliases ---------------------------------------------------------------------

void dgemm(const char *transa, const char *transb, int m, int n, int k, double alpha, const double *a, int lda,
           const double *b, int ldb, double beta, double *c, int ldc);
void dtrmm(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, double alpha,
           const double *a, int lda, double *b, int ldb);
void dtrsm(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, double alpha,
           const double *a, int lda, double *b, int ldb);
void dsyrk(const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda, double beta,
           double *c, int ldc);
void zgemm(const char *transa, const char *transb, int m, int n, int k, Complex alpha, const Complex *a, int lda,
           const Complex *b, int ldb, Complex beta, Complex *c, int ldc);
void ztrsm(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, Complex alpha,
           const Complex *a, int lda, Complex *b, int ldb);
void zherk(const char *uplo, const char *trans, int n, int k, double alpha, const Complex *a, int lda, double beta,
           Complex *c, int ldc);

} // namespace zek

#endif
