// Forwarding of the factorisations' kernel calls, and the two report routes of F07/F08.
#include "kernels/factor_support.h"

#include "frame/ifail.h"
#include "kernels/level1.h"
#include "kernels/level3.h"
#include "kernels/matrix_utilities.h"
#include "zek2/frame.h"

namespace zek {

namespace {
constexpr int kReportNameLength = 13;
}

void silent_report(const char *, int) { ZEK_SILENT_HOOK(); }

void hard_report(const char *name, int param) { F06_BAD_PARAMETER(name, param, kReportNameLength); }

void scale_by_inverse(int n, double alpha, double *x, int incx) { scal(n, 1.0 / alpha, x, incx); }
void scale_by_inverse(int n, Complex alpha, Complex *x, int incx) {
    scal(n, divide(Complex{1.0, 0.0}, alpha), x, incx);
}

void hermitian_update(char uplo, char trans, int n, int k, double alpha, const double *a, int lda, double beta,
                      double *c, int ldc) {
    syrk(uplo, trans == 'N' ? 'N' : 'T', n, k, alpha, a, lda, beta, c, ldc);
}
void hermitian_update(char uplo, char trans, int n, int k, double alpha, const Complex *a, int lda, double beta,
                      Complex *c, int ldc) {
    herk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}

void permute_rows_forward(int n, const double *perm, int k, double *b, int ldb) {
    matrix_permute('L', 'T', n, perm, k, b, ldb);
}

} // namespace zek
