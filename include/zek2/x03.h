/* Chapter X03: extended-precision inner product. */
#ifndef ZEK2_X03_H
#define ZEK2_X03_H

#include "types.h"

ZEK_BEGIN_DECLS

/* d1 + d2 = c1 + c2 + sum_{k<n} a[k*stepa]*b[k*stepb].  With sw nonzero the sum is accumulated in
 * double-double form (d2 carries the low part); with sw zero it is a plain sum from c1 (c2 ignored,
 * d2 = 0).  asize and bsize are not read.  stepa or stepb below 1 raise ZE_INT_ARG_LE (12) and leave
 * d1 and d2 unwritten. */
ZEK_API void x03aac(const double a[], int asize, const double b[], int bsize, int n, int stepa, int stepb,
                    double c1, double c2, double *d1, double *d2, int sw, ZekFail *fail) ZEK_SYMBOL("q55396");

ZEK_END_DECLS

#endif
