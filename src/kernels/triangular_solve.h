// Triangular solves of chapter F07: the packed solve behind F07UEF and the guarded complex solve
// F07TUZ/ZLATRS that the condition estimators of the eigenproblem routines use.
#ifndef ZEK_KERNELS_TRIANGULAR_SOLVE_H
#define ZEK_KERNELS_TRIANGULAR_SOLVE_H

#include "kernels/kernel_types.h"

namespace zek {

// op(T)*X = B for a packed triangle T (UPLO 'U'/'L', TRANS 'N'/'T'/'C', DIAG 'U'/'N'); B is N by NRHS
// and receives X.  Returns INFO: 0, or i when T(i,i) is exactly zero (then nothing is solved).
int tptrs(char uplo, char trans, char diag, int n, int nrhs, const double *ap, double *b, int ldb);

// "F07TUZ/ZLATRS": solves op(A)*x = s*b for a complex triangular A (UPLO 'U'/'L', TRANS 'N', 'T' or
// 'C', DIAG 'U'/'N') with a scale factor 0 <= s <= 1 chosen so that no element of x overflows.  NORMIN
// 'Y' says CNORM(1..N) already holds the 1-norms of the off-diagonal parts of the columns; 'N' computes
// them into CNORM.  X holds b on entry and x on exit.  Returns INFO: 0, or -k for an illegal k-th argument
// (reported through the silent route).
int zlatrs(const char *uplo, const char *trans, const char *diag, const char *normin, int n, const Complex *a,
           int lda, Complex *x, double *scale, double *cnorm);

} // namespace zek

#endif
