// Small services of the factorisations: the two report routes of an illegal argument in chapters F07
// and F08, and a few type-generic forms of kernel calls so that the real and complex factorisations are
// one template.  The arithmetic itself is the F06 kernels' (level1.h, level2.h, level3.h).
#ifndef ZEK_KERNELS_FACTOR_SUPPORT_H
#define ZEK_KERNELS_FACTOR_SUPPORT_H

#include "kernels/kernel_types.h"

namespace zek {

// The silent route: the empty hook q23865 is all that is called; INFO carries the report.
void silent_report(const char *name, int param);
// The hard route: " ** On entry to NAME parameter number P had an illegal value", then the process ends.
void hard_report(const char *name, int param);

// x := x / alpha, as a scaling by 1/alpha.
void scale_by_inverse(int n, double alpha, double *x, int incx);
void scale_by_inverse(int n, Complex alpha, Complex *x, int incx);

// The row interchanges of a real pivot array: for i = 1..N, rows i and trunc(PERM(i)) of the K columns
// of B are swapped (the matrix permutation kernel, side 'L', 'T').
void permute_rows_forward(int n, const double *perm, int k, double *b, int ldb);

// C := alpha*A*A' + beta*C (TRANS 'N') or alpha*A'*A + beta*C on one triangle: the symmetric update for
// real data, the Hermitian one (A^H) for complex; TRANS 'C' means the transposed form.
void hermitian_update(char uplo, char trans, int n, int k, double alpha, const double *a, int lda, double beta,
                      double *c, int ldc);
void hermitian_update(char uplo, char trans, int n, int k, double alpha, const Complex *a, int lda, double beta,
                      Complex *c, int ldc);

} // namespace zek

#endif
