/* Chapter G03: multivariate helpers. */
#ifndef ZEK2_G03_H
#define ZEK2_G03_H

#include "types.h"

ZEK_BEGIN_DECLS

/* G03ZAF: standardises the NVAR variables of the M columns of X (N by M, leading dimension LDX) that
 * ISX(j) > 0 selects: column k of Z (N by NVAR, LDZ) is (X(i, j) - E(j)) / S(j) for the k-th selected j.
 * E and S hold M values; only the selected ones are read.  A NaN in X or E stays in its element.
 * IFAIL 1: " ** On entry, NVAR.lt.1: ...", " ** On entry, M.lt.NVAR: ...", " ** On entry, LDX.lt.N : ...",
 * " ** On entry, LDZ.lt.N : ..."; 2: " ** On entry, %16ld values of ISX.gt.0, ..." (the count is not
 * NVAR); 3: " ** On entry, element %16ld of S.le.0.0" (a selected scale not positive).  Z is
 * untouched on a failure. */
ZEK_API void G03ZAF(const int *n, const int *m, const double x[], const int *ldx, const int *nvar, const int isx[],
                    const double s[], const double e[], double z[], const int *ldz, int *ifail) ZEK_SYMBOL("q83358");

ZEK_END_DECLS

#endif
