// The guarded triangular solve of F04YAY, which the covariance routine F04YAF and regression use.
#ifndef ZEK_KERNELS_COVARIANCE_H
#define ZEK_KERNELS_COVARIANCE_H

namespace zek {

// Solves T*x = b (DIRECTION >= 0) or T'*x = b (DIRECTION < 0) for the upper triangular N by N matrix T;
// B receives x.  Returns 0, or 1 as soon as a division would overflow (T singular or nearly so; B is
// then partly overwritten).
int guarded_triangular_solve(int direction, int n, const double *t, int ldt, double *b);

} // namespace zek

#endif
