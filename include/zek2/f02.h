/* Chapter F02: singular values.
 *
 * F02SYZ is the iteration stage of the library's singular value decomposition: implicit QR sweeps on
 * an upper bidiagonal matrix B = Qb*S*Pb' of order N, diagonal D(N) and superdiagonal E(N-1).  Alongside
 * it updates B := Qb'*B (N by NCOLB, LDB >= N), Y := Y*Qb (NROWY by N, LDY >= NROWY) and
 * Z := Pb'*Z (N by NCOLZ, LDZ >= N); a zero count leaves its matrix alone.  On return D holds the
 * singular values, non-negative and in descending order (a negative value is made positive with the
 * sign change carried by the row of Z), with the rows of B and Z and the columns of Y in the same order;
 * E is destroyed.  WORK(max(1, 4*(N-1))) holds the rotations of one sweep.
 *
 * Each sweep chases from the end of the active block with the larger diagonal element towards the other
 * (so small values appear where deflation looks first), shifted by the nearer singular value of the far
 * 2 by 2 block, unshifted when that shift is negligible.  A block that has not split after 30 sweeps
 * for each value still in it is given up; so are data with a NaN or an infinity.  IFAIL, on the stream reporters (never stopping the process): 1 argument errors
 * (N, NCOLB, NROWY, NCOLZ below 0, LDB below N when NCOLB > 0, LDY below NROWY when NROWY > 0, LDZ below
 * N when NCOLZ > 0), counted in one closing record; 2 failed convergence, with the number of values not
 * found in the message (D then holds what was found, unsorted).
 */
#ifndef ZEK2_F02_H
#define ZEK2_F02_H

#include "types.h"

ZEK_BEGIN_DECLS

ZEK_API void F02SYZ(const int *n, double *d, double *e, const int *ncolb, double *b, const int *ldb, const int *nrowy,
                    double *y, const int *ldy, const int *ncolz, double *z, const int *ldz, double *work, int *ifail)
    ZEK_SYMBOL("q12041");

ZEK_END_DECLS

#endif
