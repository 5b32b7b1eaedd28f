// The modified Cholesky factorisation that the Newton minimisers need: G + E = L*D*L' with E a
// non-negative diagonal, small when G is positive definite and large enough otherwise to make the
// factor positive definite.
#ifndef ZEK_KERNELS_MODIFIED_CHOLESKY_H
#define ZEK_KERNELS_MODIFIED_CHOLESKY_H

namespace zek {

// G of order N: strict lower triangle packed by rows in L (element (i,j), i > j, one-based, at
// L((i-1)*(i-2)/2 + j)), diagonal in D(1..N).  On exit L holds the unit lower triangular factor in
// the same storage and D the diagonal of D.  EPS is the relative precision of G's elements (the
// machine precision when G is exact); it sets the smallest diagonal allowed.  Returns the number of
// diagonal elements that had to be changed (0: G was safely positive definite and L*D*L' = G).
int modified_cholesky(int n, double eps, double *l, double *d);

// F01BQZ: the IFAIL-layer form; LL is the length of L (at least N*(N-1)/2, not otherwise read).  IFAIL
// on return is the count of modified diagonals.
void F01BQZ(const int *n, const double *eps, double *l, const int *ll, double *d, int *ifail);

} // namespace zek

#endif
