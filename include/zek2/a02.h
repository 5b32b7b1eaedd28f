/* Chapter A02: complex arithmetic on separate real and imaginary parts. */
#ifndef ZEK2_A02_H
#define ZEK2_A02_H

#include "types.h"

ZEK_BEGIN_DECLS

/* |a + ib| without overflow in the intermediate squares. */
ZEK_API double A02_MODULUS(double a, double b) ZEK_SYMBOL("q62422");
/* (a + ib) / (c + id) by Smith's method, into (*re, *im). */
ZEK_API void A02_DIVIDE(double a, double b, double c, double d, double *re, double *im) ZEK_SYMBOL("q17560");
/* Principal square root of a + ib (non-negative real part), into (*re, *im). */
ZEK_API void A02_SQRT(double a, double b, double *re, double *im) ZEK_SYMBOL("q64725");
/* By-reference A02_SQRT; marks both results undefined first. */
ZEK_API void A02_SQRT_BYREF(const double *a, const double *b, double *re, double *im) ZEK_SYMBOL("q44216");

ZEK_END_DECLS

#endif
