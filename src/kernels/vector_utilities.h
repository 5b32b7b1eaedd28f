// The library's own vector operations: loads, copies and products that the published set lacks,
// elementary reflectors, the leading-rank test and the rotation sequence of one vector.
//
// Addressing follows level1.h: two-vector operations (int_copy, vector_multiply, scaled_copy) walk a
// negative increment from the far end; one-vector operations run from the base in steps of INC.
#ifndef ZEK_KERNELS_VECTOR_UTILITIES_H
#define ZEK_KERNELS_VECTOR_UTILITIES_H

#include "kernels/kernel_types.h"

namespace zek {

// x(i) := konst.
void int_load(int n, int konst, int *x, int incx);
void int_load_master(int selector, int n, int konst, int *x, int incx);
// y := x, integers.
void int_copy(int n, const int *x, int incx, int *y, int incy);
void int_copy_master(int selector, int n, const int *x, int incx, int *y, int incy);
// x(i) := konst; the complex form clears zero constants by zero bytes.
void vector_load(int n, double konst, double *x, int incx);
void vector_load(int n, Complex konst, Complex *x, int incx);
void vector_load_master(int selector, int n, double konst, double *x, int incx);
// y(i) := x(i)*y(i).  INCX = 0 with INCY != 0 scales y by x(1) through scal with |INCY|.
void vector_multiply(int n, const double *x, int incx, double *y, int incy);
void vector_multiply(int n, const Complex *x, int incx, Complex *y, int incy);
void vector_multiply_master(int selector, int n, const double *x, int incx, double *y, int incy);
// y := alpha*x.  alpha = 0 with INCY != 0 loads zeros with |INCY|.
void scaled_copy(int n, double alpha, const double *x, int incx, double *y, int incy);
void scaled_copy(int n, Complex alpha, const Complex *x, int incx, Complex *y, int incy);
// x := -x.
void negate(int n, double *x, int incx);
void negate_master(int selector, int n, double *x, int incx);
// Largest and smallest |x(i)|; both 0 for N < 1.
void abs_max_min(int n, const double *x, int incx, double *xmax, double *xmin);

// The number k (0..N) of leading elements each larger than TOL times the largest before it (the first
// is tested against itself).  A negative TOL means the machine precision of K.
int leading_rank(int n, const double *x, int incx, double tol, const SafeConstants &k);
int leading_rank_master(int selector, int n, const double *x, int incx, double tol);
int leading_rank(int n, const double *x, int incx, double tol);

// The elementary reflector I - u*u', u = (zeta, z')', that maps (alpha, x) to (beta, 0): on exit alpha
// holds beta, x holds z and *zeta the first component (0 for the identity, when x is negligible
// against max(TOL, eps*|alpha|)).  The safe form divides instead of multiplying by a reciprocal that
// would overflow.
void reflector_gen(int n, double *alpha, double *x, int incx, double tol, double *zeta, const SafeConstants &k);
void reflector_gen_safe(int n, double *alpha, double *x, int incx, double tol, double *zeta,
                        const SafeConstants &k);
inline void reflector_gen(int n, double *alpha, double *x, int incx, double tol, double *zeta) {
    reflector_gen(n, alpha, x, incx, tol, zeta, kFrozenConstants);
}
inline void reflector_gen_safe(int n, double *alpha, double *x, int incx, double tol, double *zeta) {
    reflector_gen_safe(n, alpha, x, incx, tol, zeta, kFrozenConstants);
}
// Applies the reflector (zeta, z) to (delta, y).
void reflector_apply(int n, double *delta, double *y, int incy, double zeta, const double *z, int incz);

// Reduces (alpha, x) against a pivot by rotations from rotation_from_pair, leaving the tangents in x and
// the rotations in c(1..N), s(1..N).  PIVOT 'V' (variable) or 'F' (fixed), DIRECT 'F' or 'B'; other
// letters return at once.
void rotation_sequence(char pivot, char direct, int n, double *alpha, double *x, int incx, double *c, double *s,
                       const SafeConstants &k);

} // namespace zek

#endif
