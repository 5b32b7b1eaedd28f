// The sorting family for the library's own callers: the IFAIL-layer members without an export (M01CAF,
// M01EBF, M01ZBF), the workers behind the fronts, and the engines without argument checks that the
// sparse storage, the statistics and the random numbers build on.
//
// Scalars arrive by value; IFAIL by pointer, read on entry and overwritten as in every IFAIL routine.
// Arrays are passed at their first element and indexed M1..M2 one-based, as in the public routines.
#ifndef ZEK_SORTING_SORTING_H
#define ZEK_SORTING_SORTING_H

#include <cstddef>

namespace zek {

// Sorts RV(M1:M2) in place, ORDER 'A' or 'D'.  IFAIL 1 (section bounds), 2 (bad ORDER).
void M01CAF(double rv[], int m1, int m2, const char *order, int *ifail, int order_len);
// Rearranges the integers IV(M1:M2) by IRANK, as M01EAF.
void M01EBF(int iv[], int m1, int m2, int irank[], int *ifail);
// Tests that IPERM(M1:M2) is a permutation of M1..M2: IFAIL 2 or 3 as M01ZAF, IPERM unchanged.
void M01ZBF(int iperm[], int m1, int m2, int *ifail);

// Workers of the fronts.  ERRBUF (ERRBUF_LEN 200) receives the machine-readable failure line.
void m01daf_worker(const double rv[], int m1, int m2, const char *order, int irank[], char *errbuf, int *ifail,
                   int order_len, int errbuf_len);
void m01eaf_worker(double rv[], int m1, int m2, int irank[], char *errbuf, int *ifail, int errbuf_len);
void m01edf_worker(char ch[], int m1, int m2, int irank[], char *errbuf, int *ifail, int ch_len, int errbuf_len);
void m01zaf_worker(int iperm[], int m1, int m2, char *errbuf, int *ifail, int errbuf_len);

// Engines: no argument checks, n >= 0.
// Ascending sort of doubles with the quicksort of M01CAF (its fixed seeds, so reproducible).
void sort_ascending(double v[], std::ptrdiff_t n);
// Stable ascending ranks 0..n-1 of v[0..n-1] (the natural list merge of M01DAF).
void rank_ascending(const double v[], std::ptrdiff_t n, int rank[]);
// Stable ascending ranks of v[0..n-1] by its integer keys.
void rank_ascending(const int v[], std::ptrdiff_t n, int rank[]);

} // namespace zek

#endif
