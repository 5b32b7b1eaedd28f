/* Chapter G07: robust estimates of location and scale. */
#ifndef ZEK2_G07_H
#define ZEK2_G07_H

#include "types.h"

ZEK_BEGIN_DECLS

/* g07dac: the median *xme of x[0..n-1], its median absolute deviation *xmd and the robust scale
 * *xsd = *xmd / 0.6744897501962756 (the 0.75 quantile of the normal).  y[0..n-1] receives x sorted
 * ascending.  Fails with ZE_INT_ARG_LE (n <= 1), ZE_INT_ARG_GT (n > 268435455) and ZE_BAD_PARAM
 * naming "x" when a value is not finite; outputs then untouched. */
ZEK_API void g07dac(int n, const double x[], double y[], double *xme, double *xmd, double *xsd, ZekFail *fail)
    ZEK_SYMBOL("q47095");

ZEK_END_DECLS

#endif
