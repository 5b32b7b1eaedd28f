// Level-2 kernels: matrix-vector products, triangular products and solves, rank-one updates.
//
// Two layers.  The engine templates (double or Complex) assume valid arguments and take the option
// letters already decoded ('N', 'T', 'C'; 'U', 'L'; 'U', 'N'); a real 'C' acts as 'T'.  The BLAS-named
// routines below are the internal aliases of the checked forms: they test their arguments like the
// exported forms (an illegal one is a hard failure through F06_ARG_ERROR) and take character options
// as const char * without hidden lengths.
//
// Vectors of the level-2 operations follow the published convention: a negative increment walks the
// vector from its far end; a zero increment is illegal.  Each element of a result sees its additions
// in the order of the published loops, so results agree with them to the last bit where the published
// operation forms the same products.
#ifndef ZEK_KERNELS_LEVEL2_H
#define ZEK_KERNELS_LEVEL2_H

#include "kernels/kernel_types.h"

namespace zek {

// ---- The engine ---------------------------------------------------------------------------------

// y := alpha*op(A)*x + beta*y, A m by n.
template <class T>
void gemv(char trans, int m, int n, T alpha, const T *a, int lda, const T *x, int incx, T beta, T *y, int incy);
// x := op(A)*x, A triangular of order n.
template <class T> void trmv(char uplo, char trans, char diag, int n, const T *a, int lda, T *x, int incx);
// x := inv(op(A))*x.
template <class T> void trsv(char uplo, char trans, char diag, int n, const T *a, int lda, T *x, int incx);
// A := alpha*x*y' + A (CONJ: alpha*x*conj(y)' + A).
template <class T, bool Conj>
void ger(int m, int n, T alpha, const T *x, int incx, const T *y, int incy, T *a, int lda);

// Real only: symmetric and packed forms.
void symv(char uplo, int n, double alpha, const double *a, int lda, const double *x, int incx, double beta, double *y,
          int incy);
void spmv(char uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta, double *y,
          int incy);
void tpmv(char uplo, char trans, char diag, int n, const double *ap, double *x, int incx);
void tpsv(char uplo, char trans, char diag, int n, const double *ap, double *x, int incx);
void syr(char uplo, int n, double alpha, const double *x, int incx, double *a, int lda);
void spr(char uplo, int n, double alpha, const double *x, int incx, double *ap);

// ---- Checked internal aliases ---------------------------------------------------------------------

void dgemv(const char *trans, int m, int n, double alpha, const double *a, int lda, const double *x, int incx,
           double beta, double *y, int incy);
void dsymv(const char *uplo, int n, double alpha, const double *a, int lda, const double *x, int incx, double beta,
           double *y, int incy);
void dspmv(const char *uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta,
           double *y, int incy);
void dtrmv(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
           int incx);
void dtpmv(const char *uplo, const char *trans, const char *diag, int n, const double *ap, double *x, int incx);
void dtrsv(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
           int incx);
void dtpsv(const char *uplo, const char *trans, const char *diag, int n, const double *ap, double *x, int incx);
void dger(int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a, int lda);
void dsyr(const char *uplo, int n, double alpha, const double *x, int incx, double *a, int lda);
void dspr(const char *uplo, int n, double alpha, const double *x, int incx, double *ap);
void zgemv(const char *trans, int m, int n, Complex alpha, const Complex *a, int lda, const Complex *x, int incx,
           Complex beta, Complex *y, int incy);
void ztrmv(const char *uplo, const char *trans, const char *diag, int n, const Complex *a, int lda, Complex *x,
           int incx);
void ztrsv(const char *uplo, const char *trans, const char *diag, int n, const Complex *a, int lda, Complex *x,
           int incx);
void zgeru(int m, int n, Complex alpha, const Complex *x, int incx, const Complex *y, int incy, Complex *a, int lda);
void zgerc(int m, int n, Complex alpha, const Complex *x, int incx, const Complex *y, int incy, Complex *a, int lda);

} // namespace zek

#endif
