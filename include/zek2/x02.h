/* Chapters X01 and X02: constants of IEEE 754 double arithmetic.
 *
 * Routines never test the arithmetic at run time; they ask these routines.  Names sharing one export
 * line are one body under several symbols.
 */
#ifndef ZEK2_X02_H
#define ZEK2_X02_H

#include "types.h"

ZEK_BEGIN_DECLS

/* pi = 3.141592653589793 (0x400921FB54442D18). */
ZEK_API double X01_PI(void) ZEK_SYMBOL("q29759");
ZEK_API double X01_PI_ALIAS(void) ZEK_SYMBOL("q37282");
/* pi, with two arguments that are ignored. */
ZEK_API double X01_PI_IGNORING(const void *unused1, const void *unused2) ZEK_SYMBOL("q95596");

/* Machine precision 1.111307226797642e-16 (0x3CA0040000000000): a shade above 2**-53 so that
 * 1 + X02AJC() > 1 under round-to-nearest. */
ZEK_API double X02AJC(void) ZEK_SYMBOL("q59345");
/* The machine precision most routines read: 1.11130722679765e-16 (0x3CA0040000000020). */
ZEK_API double X02_PRECISION(void) ZEK_SYMBOL("q49575");

/* Smallest positive normal number 2.2250738585072014e-308, the safe range: two bodies, two names each. */
ZEK_API double X02AMC(void) ZEK_SYMBOL("q14508");
ZEK_API double X02AMC_ALIAS(void) ZEK_SYMBOL("q27399");
ZEK_API double X02_SAFE_MINIMUM(void) ZEK_SYMBOL("q10323");
ZEK_API double X02_SAFE_MINIMUM_ALIAS(void) ZEK_SYMBOL("q12469");

/* Largest finite number 1.7976931348623157e+308 (0x7FEFFFFFFFFFFFFF). */
ZEK_API double X02_LARGEST(void) ZEK_SYMBOL("q83206");
ZEK_API double X02_LARGEST_ALIAS(void) ZEK_SYMBOL("q38590");

/* Base of the arithmetic: 2. */
ZEK_API int X02_BASE(void) ZEK_SYMBOL("q61764");

ZEK_END_DECLS

#endif
