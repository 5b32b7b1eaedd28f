// Matrix utilities the published operations lack: trapezoid copy and load, permutation by real-valued
// pivots, and the max, one, infinity and Frobenius norms of general, trapezoidal and Hessenberg
// matrices.  None of them reports anything: an unknown option letter does nothing (norms give 0), and
// a negative leading dimension counts as 0 in the index arithmetic.
#ifndef ZEK_KERNELS_MATRIX_UTILITIES_H
#define ZEK_KERNELS_MATRIX_UTILITIES_H

#include "kernels/kernel_types.h"

namespace zek {

// Copies a shape of A to B: 'G' all m by n; 'U' rows 1..min(m, j) of column j; 'L' rows j..m of columns
// 1..min(m, n).
template <class T> void matrix_copy(char shape, int m, int n, const T *a, int lda, T *b, int ldb);
// Fills the shape of A with konst, then stores diag on the min(m, n) diagonal elements when it differs.
template <class T> void matrix_load(char shape, int m, int n, T konst, T diag, T *a, int lda);

// Swaps rows (SIDE 'L', the first k columns) or columns ('R', the first k rows) i and trunc(perm(i)) of
// B for i = 1..n, in the order that applies the permutation ('N') or its inverse ('T'): 'L','T' and
// 'R','N' run i upwards, 'L','N' and 'R','T' downwards.
void matrix_permute(char side, char trans, int n, const double *perm, int k, double *b, int ldb);

// NORM 'M' largest modulus, 'O' or '1' largest column sum, 'I' largest row sum (WORK of m reals), 'F' or
// 'E' Frobenius.  Empty matrices give 0.
template <class T> double matrix_norm_general(char norm, int m, int n, const T *a, int lda, double *work);
// The same of the UPLO trapezoid of an m by n matrix; DIAG 'U' counts the diagonal as ones.
double matrix_norm_triangular(char norm, char uplo, char diag, int m, int n, const double *a, int lda, double *work);
// The same of an upper Hessenberg matrix of order n (WORK of n reals for 'I').
template <class T> double matrix_norm_hessenberg(char norm, int n, const T *a, int lda, double *work);

} // namespace zek

#endif
