// Overflow-safe scalar arithmetic of the kernels: capped division, plane rotations from a tangent or
// from a pair, the scaled sum of squares and the saturating norm, real and complex.
//
// Each routine that reads machine constants takes the constant set explicitly; the short overloads
// without it are the internal aliases and use the frozen literals (kFrozenConstants), so the inner
// loops of the factorisations never call the machine environment.
#ifndef ZEK_KERNELS_SAFE_ARITHMETIC_H
#define ZEK_KERNELS_SAFE_ARITHMETIC_H

#include "kernels/kernel_types.h"

namespace zek {

// a/b, or a capped value: 0 (fail false) when b != 0 and |a| < small*|b| with |b| >= 1; flmax with the
// sign of the quotient (fail true) when the quotient would exceed flmax or b = 0; 0/0 is 0, fail true.
double safe_divide(double a, double b, int *fail, const SafeConstants &k);
double safe_divide_master(int selector, double a, double b, int *fail);
double safe_divide(double a, double b, int *fail);

// (c, s) with s/c = t: c = 1, s = t below sqrt(eps); c = 1/|t|, s = sign(t) above 1/sqrt(eps).
void rotation_from_tangent(double t, double *c, double *s, const SafeConstants &k);
void rotation_from_tangent_master(int selector, double t, double *c, double *s);
void rotation_from_tangent(double t, double *c, double *s);

// The rotation that annihilates b against a: a := c*a + s*b and b := the tangent s/c (not the
// reconstruction value of DROTG).  b = 0 gives (1, 0) and leaves a and b alone.
void rotation_from_pair(double *a, double *b, double *c, double *s, const SafeConstants &k);
inline void rotation_from_pair(double *a, double *b, double *c, double *s) {
    rotation_from_pair(a, b, c, s, kFrozenConstants);
}

// scale*sqrt(sumsq), or flmax when that would exceed it.
double norm_from_sumsq(double scale, double sumsq, const SafeConstants &k);
double norm_from_sumsq_master(int selector, double scale, double sumsq);
double norm_from_sumsq(double scale, double sumsq);

// sqrt(a*a + b*b) without overflow.
double pythag(double a, double b);

// Folds the N elements of x (one-vector addressing) into (scale, sumsq), meaning scale**2 * sumsq;
// start from (0, 1).  Exact zeros are skipped.  The complex form folds both parts of each element.
void sumsq_update(int n, const double *x, int incx, double *scale, double *sumsq);
void sumsq_update(int n, const Complex *x, int incx, double *scale, double *sumsq);
void sumsq_update_master(int selector, int n, const double *x, int incx, double *scale, double *sumsq);

// Smith's complex division with guards against overflow (frozen constants); fail as for safe_divide.
Complex complex_safe_divide(Complex a, Complex b, int *fail);
// (c, s), c real, from the complex tangent t (frozen constants).
void complex_rotation_from_tangent(Complex t, double *c, Complex *s);
// The complex rotation that annihilates b against a: a := c*a + conj(s)*b, b := the tangent.
void complex_rotation_from_pair(Complex *a, Complex *b, double *c, Complex *s);

} // namespace zek

#endif
