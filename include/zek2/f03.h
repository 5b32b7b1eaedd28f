/* Chapter F03: determinants.
 *
 * The LU factorisation here pivots on implicitly equilibrated rows: at step k the pivot is the element
 * of column k with the largest |a(i,k)| / ||row i of A||, so that badly scaled rows do not steer the
 * choice.  The determinant comes as D1 * 2**ID with 1/16 <= |D1| < 1, which cannot overflow.
 *
 * The export symbols of this chapter are the library's own choice.
 */
#ifndef ZEK2_F03_H
#define ZEK2_F03_H

#include "types.h"

ZEK_BEGIN_DECLS

/* A = P*L*U of the N by N matrix A (IA >= N), L unit lower and U upper over A; P(N) receives the pivot
 * row of each step as a real (row k was interchanged with row P(k)).  The determinant is D1 * 2**ID.
 * EPS: a pivot not above EPS times the norm of its row counts as zero (EPS <= 0: the machine
 * precision).  IFAIL (host channel): 1 A is singular, possibly because of rounding (a zero row, a
 * negligible pivot, an infinite or undefined element, or an elimination that overflowed; D1 = 0,
 * ID = 0, the factorisation incomplete); 2 N < 1 or IA < N.  Every routine built on this factorisation
 * (F03AAF, f03afc, F01AAZ, f01aac, f04aec) reports a non-finite matrix through its singular exit. */
ZEK_API void F03AFF(const int *n, const double *eps, double *a, const int *ia, double *d1, int *id, double *p,
                    int *ifail) ZEK_SYMBOL("F03AFF");

/* The determinant DET of the N by N matrix A (IA >= N), which is overwritten by its LU factors as in
 * F03AFF; WKSPCE(N).  IFAIL (host channel): 1 A is singular (DET = 0); 2 N < 1 or IA < N; 3 the
 * determinant would overflow, 4 it would underflow (DET = 0 in both; F03AFF gives it scaled). */
ZEK_API void F03AAF(double *a, const int *ia, const int *n, double *det, double *wkspce, int *ifail)
    ZEK_SYMBOL("F03AAF");

/* C-style twin of F03AFF with integer pivots: A (tda >= n) is overwritten by its LU factors, PIVOT(n)
 * receives the pivot rows (one-based), the determinant is *DETF * 2**(*DETE).  Codes 11 ZE_INT_ARG_LT
 * (n < 1), 17 ZE_2_INT_ARG_LT (tda < n), 366 ZE_SINGULAR, 73 ZE_ALLOC_FAIL.  Its factors and pivots
 * are what f04ajc and f04ahc take. */
ZEK_API void f03afc(int n, double *a, int tda, int *pivot, double *detf, int *dete, ZekFail *fail)
    ZEK_SYMBOL("f03afc");

ZEK_END_DECLS

#endif
