/* Chapter M01: sorting, ranking, rearranging by ranks and inverting permutations.
 *
 * The IFAIL-layer routines work on a section M1..M2 of an array, with one-based indices: RV(I) is
 * rv[I-1].  IRANK(I) is the position, from M1, that element I takes in sorted order.  They use no
 * workspace beyond a small fixed stack: while a rearranging routine runs it marks visited elements by
 * the sign of IRANK, and IRANK holds its input values again on every exit.
 *
 * The C-style routines take zero-based vectors; ranks run from 0 to n-1.  Vector lengths are at most
 * 0xFFFFFFF (268435455).  Failures common to the IFAIL layer (IERROR 1, exits 99999 to 99997):
 * " ** On entry, M2 .lt. 1: M2 =...", " ** On entry, M1 .lt. 1: M1 =...",
 * " ** On entry, M1 .gt. M2: ...".
 */
#ifndef ZEK2_M01_H
#define ZEK2_M01_H

#include "types.h"

ZEK_BEGIN_DECLS

/* The order argument of m01cac and m01dsc. */
enum { Zek_Ascending = 1597, Zek_Descending = 1598 };

/* A comparison of two elements of a vector of any type: negative, zero or positive as the element
 * at A sorts before, with or after the element at B. */
typedef int (ZEK_CALLBACK *ZekCompare)(const void *a, const void *b);

/* M01DAF: ranks RV(M1:M2) into IRANK(M1:M2) (ranks M1..M2), ascending for ORDER 'A' and descending
 * for 'D' (either case).  The ranking is stable: equal keys keep their input order, also descending.
 * IRANK is output only; the front marks IRANK(M1:M2) as undefined first.
 * IFAIL 1 for the section bounds, 2 for " ** On entry, ORDER has an illegal value: ORDER = 'x'." */
ZEK_API void M01DAF(const double rv[], const int *m1, const int *m2, const char *order, int irank[], int *ifail,
                    int order_len) ZEK_SYMBOL("q40544");

/* M01EAF: rearranges RV(M1:M2) in place so that element I moves to position IRANK(I).
 * IFAIL 2: an IRANK value outside M1..M2 (index and value reported); IFAIL 3: a repeated value.  An
 * out-of-range value is reported before a repeat; IRANK comes back unchanged in all cases. */
ZEK_API void M01EAF(double rv[], const int *m1, const int *m2, int irank[], int *ifail) ZEK_SYMBOL("q30145");

/* M01EDF: as M01EAF on a vector of strings, each CH_LEN characters long: element I is
 * ch[(I-1)*CH_LEN .. I*CH_LEN-1]. */
ZEK_API void M01EDF(char ch[], const int *m1, const int *m2, int irank[], int *ifail, int ch_len)
    ZEK_SYMBOL("q53424");

/* M01ZAF: inverts the permutation IPERM(M1:M2) of M1..M2 in place.  IFAIL 2 and 3 as M01EAF, with
 * IPERM for IRANK; IPERM comes back unchanged on a failure. */
ZEK_API void M01ZAF(int iperm[], const int *m1, const int *m2, int *ifail) ZEK_SYMBOL("q54291");

/* m01cac: sorts vec[0..n-1] in place, ORDER Zek_Ascending or Zek_Descending.  Equal keys keep no
 * defined order.  n = 1 returns at once with success.
 * Fails with 11 (n < 1), 13 (n > 268435455), 70 (bad order), 82 (vec null). */
ZEK_API void m01cac(double vec[], int n, int order, ZekFail *fail) ZEK_SYMBOL("q43352");

/* m01dsc: ranks n elements of any type, element i at (const char *)vec + i*stride (stride in bytes,
 * negative strides step backwards from vec), through COMPARE; ranks[i] receives 0..n-1.  Stable, as
 * M01DAF.  Fails with 11 (n < 1), 13 (n > 268435455), 10 (stride 0), 13 (|stride| > p, p = 2147483647/n),
 * 70 (compare null, or bad order), 82 (vec or ranks null). */
ZEK_API void m01dsc(const void *vec, int n, int stride, ZekCompare compare, int order, int ranks[],
                    ZekFail *fail) ZEK_SYMBOL("q70723");

/* m01esc: rearranges n elements of SIZE bytes, element i at (char *)vec + i*stride, so that element i
 * moves to position ranks[i] (the ranks of m01dsc can be passed directly).  n = 0 succeeds at once.
 * Fails with 11 (n < 0 or size 0), 13 (n > 268435455, or size or |stride| above 2147483647/n),
 * 17 (|stride| < size), 73 (no memory for one element), 82 (null arrays), 701 (ranks not a
 * permutation of 0..n-1; ranks unchanged). */
ZEK_API void m01esc(void *vec, int n, int size, int stride, int ranks[], ZekFail *fail) ZEK_SYMBOL("q97774");

/* m01zac: inverts the rank vector ranks[0..n-1] in place (a rank vector becomes an index vector and
 * back).  Fails with 11 (n < 0), 13 (n > 268435455), 82 (ranks null), 701 (a value outside 0..n-1:
 * ranks unchanged; or a repeated value, found while inverting: ranks then partly inverted). */
ZEK_API void m01zac(int ranks[], int n, ZekFail *fail) ZEK_SYMBOL("q44166");

ZEK_END_DECLS

#endif
