// The rotation family: updates of an upper triangular factor by sequences of plane rotations, used by
// the active-set optimisers when a factor gains or loses a row or column.
//
// A is upper triangular of order n (column-major, leading dimension lda); rotation k of a sequence is
// the pair (c[k-1], s[k-1]) and belongs to index k, k1 <= k <= k2-1 (one-based).  A rotation acts as
// x' = c*x + s*y, y' = c*y - s*x; from the left x is the upper of its two rows, from the right x is the
// left of its two columns.  The triangle routines return at once when min(n, k1) < 1, k2 <= k1 or
// k2 > n; invalid option letters return silently.  An exact identity (c = 1, s = 0) is skipped.
//
// The generators take the constant set of their safe arithmetic; the frozen literals by default.
#ifndef ZEK_KERNELS_ROTATIONS_H
#define ZEK_KERNELS_ROTATIONS_H

#include "kernels/kernel_types.h"

namespace zek {

// A upper Hessenberg in rows/columns k1..k2 with the subdiagonal element (k+1, k) in s[k-1]: restores
// the triangle.  SIDE 'L' rotates rows (k, k+1) in the order k1..k2-1; 'R' rotates columns (k, k+1) in
// the order k2-1..k1.  On exit c, s hold the rotations.
void hessenberg_to_triangle(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                            const SafeConstants &k = kFrozenConstants);
// The reverse: applies the given rotations to the triangle and leaves the subdiagonal in s.
void triangle_to_hessenberg(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda);

// A spike in row k2 (SIDE 'L', elements of columns k1..k2-1 in s) or in column k1 (SIDE 'R', elements of
// rows k1+1..k2 in s): restores the triangle by rotations in planes (k, k2) ('L', order k1..k2-1) or
// columns (k1, k+1) ('R', order k2-1..k1).
void spike_to_triangle(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                       const SafeConstants &k = kFrozenConstants);
// The reverse: applies the given rotations and leaves the spike in s.
void triangle_to_spike(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda);

// Applies the given rotations (planes (k, k+1)) to one side of A ('L': rows, order k1..k2-1; 'R':
// columns, order k2-1..k1) and replaces them by the rotations on the other side that keep A triangular.
void chase_triangle_rotations(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                              const SafeConstants &k = kFrozenConstants);

// A triangle anchored on the anti-diagonal (column j holds rows n-j+1..n), rotation j on columns (j, j+1).
// WHICH 'C' applies the given rotations (order k1..k2-1) and leaves the fill of row n-j in s[j-1]; 'R'
// removes the fill by new rotations (order k2-1..k1).
void reverse_triangle_rotate(char which, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                             const SafeConstants &k = kFrozenConstants);

// Folds the row alpha*x' into the triangle: R'R + alpha**2 x x' is preserved; rotation j (planes (j, new
// row)) is left in c[j-1], s[j-1].  Nothing happens for n < 1 or alpha = 0.
void triangle_add_row(int n, double alpha, const double *x, int incx, double *a, int lda, double *c, double *s,
                      const SafeConstants &k = kFrozenConstants);

// Applies rotations k1..k2-1 to the m by n matrix A from the left (SIDE 'L', rows) or the right ('R',
// columns).  PIVOT 'V': planes (k, k+1); 'T': (k1, k+1); 'B': (k, k2).  DIRECT 'F' runs k upwards, 'B'
// downwards.  Returns at once when min(m, n, k1) < 1, k2 <= k1, or k2 exceeds m ('L') or n ('R').
void rotation_apply_general(char side, char pivot, char direct, int m, int n, int k1, int k2, const double *c,
                            const double *s, double *a, int lda);

} // namespace zek

#endif
