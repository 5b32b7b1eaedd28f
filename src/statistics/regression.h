// Internal pieces shared by the fit and the routines that update its factorisation.
#ifndef ZEK_STATISTICS_REGRESSION_H
#define ZEK_STATISTICS_REGRESSION_H

#include <cstddef>

#include "zek2/types.h"

namespace zek {

// The least-squares solution of R b = c for the upper triangular R (IP by IP, leading dimension LDR;
// the strict lower triangle is not read).  R counts as of full rank when its 1-norm condition times
// TOL (the machine precision for TOL <= 0) is below 1: then b comes by back substitution and W = R^-1.
// Otherwise R = U S V' (SV the values, largest first; VT the IP by IP matrix V' by rows), the rank
// counts the values above TOL times the largest, W = V_r S_r^-1 and b = W U_r'c, the minimum-norm
// solution.  In both cases W (IP by rank, leading dimension IP, in WMAT) gives (R'R)^+ = W W', and
// UNEXPLAINED(IP) receives c - R b (zero at full rank), the part of c that joins the residual sum of
// squares.  WORK holds 5 IP reals.  Returns the rank, or -1 when the singular values do not converge.
int triangle_fit(int ip, const double *r, std::ptrdiff_t ldr, const double *c, double tol, double *sv, double *vt,
                 double *wmat, double *work, double *b, double *unexplained, bool *full);

// 1-norm condition of the upper triangular R (IP by IP, leading dimension LDR) with R^-1 formed in RINV
// (IP by IP, leading dimension IP): exact rather than estimated, since the callers need R^-1 for the
// covariance anyway.  A singular R, or a product that would pass 1/(smallest number), gives that bound.
double triangular_condition(int ip, const double *r, std::ptrdiff_t ldr, double *rinv);

// The argument checks that the estimable-function routines of the linear and generalised linear models
// share (IP >= 1, 1 <= ICONST < IP, TDC >= IP), raised under NAME; false after a failure.
bool constraint_args_ok(ZekFail *fail, const char *name, int ip, int iconst, int tdc);

// COV(IP (IP + 1)/2, upper triangle by columns) := s2 W W' for W (IP by RANK, leading dimension IP), and
// SE the square roots of its diagonal.
void packed_covariance(int ip, int rank, const double *wmat, double s2, double *cov, double *se);

} // namespace zek

#endif
