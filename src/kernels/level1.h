// Level-1 kernels: the published vector operations on strided vectors, real and complex.
//
// The engine is a set of templates over the element type (double or Complex).  Other chapters call
// either the templates or the BLAS-named routines below, which are the internal aliases of the
// masters (selector 1); the exported forms in include/zek2/f06.h call the same masters with selector 0.
//
// Vectors: a base, a length N (below 1 is empty) and a signed increment.  In the two-vector
// operations (dot, axpy, copy, swap, rot) a negative increment walks the vector backwards from its far
// end, so the logical first element lies at offset (1-N)*INC.  The one-vector operations (scal, asum,
// iamax, nrm2) run from the base in steps of INC, whatever its sign: element k sits at offset
// (k-1)*INC, and a zero increment visits the element at the base N times.
//
// Every operation visits its elements in logical order, so a sum is always x1 + x2 + ... in that
// order; the unrolling by four never regroups additions.
#ifndef ZEK_KERNELS_LEVEL1_H
#define ZEK_KERNELS_LEVEL1_H

#include "kernels/kernel_types.h"

namespace zek {

// ---- The engine -------------------------------------------------------------------------------

// sum x(i)*y(i), added one product at a time.
template <class T> T dot(int n, const T *x, int incx, const T *y, int incy);
// sum conj(x(i))*y(i) (the plain dot product for real T).
template <class T> T dotc(int n, const T *x, int incx, const T *y, int incy);
// y := alpha*x + y; returns at once for alpha = 0.
template <class T> void axpy(int n, T alpha, const T *x, int incx, T *y, int incy);
// y := x.
template <class T> void copy(int n, const T *x, int incx, T *y, int incy);
// x <-> y.
template <class T> void swap(int n, T *x, int incx, T *y, int incy);
// x := alpha*x.  Real alpha: 0 stores zeros, -1 negates, 1 returns.  Complex alpha: 0 stores zeros.
void scal(int n, double alpha, double *x, int incx);
void scal(int n, double alpha, Complex *x, int incx);
void scal(int n, Complex alpha, Complex *x, int incx);
// sum |x(i)| (|re| + |im| for complex).
template <class T> double asum(int n, const T *x, int incx);
// One-based index of the first element of largest |x(i)| (|re| + |im| for complex); 0 for N < 1.
template <class T> int iamax(int n, const T *x, int incx);
// Euclidean norm through the scaled sum of squares, saturating at the safe maximum of K.  Real N = 1
// gives |x(1)|.  Complex parts share one (scale, sumsq) and zero parts are skipped.
double nrm2(int n, const double *x, int incx, const SafeConstants &k);
double nrm2(int n, const Complex *x, int incx, const SafeConstants &k);
// Plane rotation x' = c*x + s*y, y' = c*y - s*x; exact (c, s) = (1, 0) returns, (0, 1) and (0, -1)
// exchange with one negation and no multiplication.
void rot(int n, double *x, int incx, double *y, int incy, double c, double s);

// ---- Masters and internal aliases -------------------------------------------------------------
// A master takes a leading selector that it ignores; the alias passes 1.  Complex scalars are two
// reals and complex arrays interleaved doubles, as in the exported forms.

void drotg_master(int selector, double *a, double *b, double *c, double *s);
void drotg(double *a, double *b, double *c, double *s);
double ddot_master(int selector, int n, const double *x, int incx, const double *y, int incy);
double ddot(int n, const double *x, int incx, const double *y, int incy);
void daxpy_master(int selector, int n, double alpha, const double *x, int incx, double *y, int incy);
void daxpy(int n, double alpha, const double *x, int incx, double *y, int incy);
void dscal_master(int selector, int n, double alpha, double *x, int incx);
void dscal(int n, double alpha, double *x, int incx);
void dcopy_master(int selector, int n, const double *x, int incx, double *y, int incy);
void dcopy(int n, const double *x, int incx, double *y, int incy);
void dswap_master(int selector, int n, double *x, int incx, double *y, int incy);
void dswap(int n, double *x, int incx, double *y, int incy);
// The internal DNRM2 uses the frozen constants.
double dnrm2(int n, const double *x, int incx);
double dasum_master(int selector, int n, const double *x, int incx);
double dasum(int n, const double *x, int incx);
void drot_master(int selector, int n, double *x, int incx, double *y, int incy, double c, double s);
void drot(int n, double *x, int incx, double *y, int incy, double c, double s);
int idamax_master(int selector, int n, const double *x, int incx);
int idamax(int n, const double *x, int incx);

// Complex function results come back through a leading result pointer (two doubles).
void zdotu_master(int selector, double *result, int n, const double *x, int incx, const double *y, int incy);
void zdotu(double *result, int n, const double *x, int incx, const double *y, int incy);
void zdotc_master(int selector, double *result, int n, const double *x, int incx, const double *y, int incy);
void zdotc(double *result, int n, const double *x, int incx, const double *y, int incy);
void zaxpy_master(int selector, int n, double alpha_re, double alpha_im, const double *x, int incx, double *y,
                  int incy);
void zaxpy(int n, double alpha_re, double alpha_im, const double *x, int incx, double *y, int incy);
void zscal_master(int selector, int n, double alpha_re, double alpha_im, double *x, int incx);
void zscal(int n, double alpha_re, double alpha_im, double *x, int incx);
void zdscal_master(int selector, int n, double alpha, double *x, int incx);
void zdscal(int n, double alpha, double *x, int incx);
void zcopy_master(int selector, int n, const double *x, int incx, double *y, int incy);
void zcopy(int n, const double *x, int incx, double *y, int incy);
void zswap_master(int selector, int n, double *x, int incx, double *y, int incy);
void zswap(int n, double *x, int incx, double *y, int incy);
// The internal DZNRM2 uses the frozen constants.
double dznrm2(int n, const double *x, int incx);
double dzasum_master(int selector, int n, const double *x, int incx);
double dzasum(int n, const double *x, int incx);
int izamax_master(int selector, int n, const double *x, int incx);
int izamax(int n, const double *x, int incx);

} // namespace zek

#endif
