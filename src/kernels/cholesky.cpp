// Cholesky factorisations: F07FDF/DPOTRF, F07FDZ/DPOTF2, F07FRF/ZPOTRF, F07FRZ/ZPOTF2, F07GDF/DPPTRF.
#include "kernels/cholesky.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "kernels/block_size.h"
#include "kernels/factor_support.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/level3.h"
#include "zek2/f07.h"

namespace zek {

namespace {

// Conjugates a vector in place (nothing for real data).
void conjugate(int, double *, int) {}
void conjugate(int n, Complex *x, int incx) {
    for (int i = 0; i < n; ++i) x[static_cast<std::ptrdiff_t>(i) * incx].im = -x[static_cast<std::ptrdiff_t>(i) * incx].im;
}

// Real part of the diagonal element as the Hermitian form sees it.
inline double diagonal_value(double a) { return a; }
inline double diagonal_value(Complex a) { return a.re; }
inline void set_diagonal(double *a, double v) { *a = v; }
inline void set_diagonal(Complex *a, double v) { *a = {v, 0.0}; }

// A diagonal that is not positive (or is a NaN) ends the factorisation.
inline bool not_positive(double d) { return !(d > 0.0); }

} // namespace

template <class T> static int potf2_t(char uplo, int n, T *a, int lda) {
    const std::ptrdiff_t ld = lda;
    const T one = one_of<T>();
    if (uplo == 'U') {
        for (int j = 0; j < n; ++j) {
            T *col = a + j * ld;
            double ajj = diagonal_value(col[j]) - real_part(dotc(j, col, 1, col, 1));
            if (not_positive(ajj)) {
                set_diagonal(col + j, ajj);
                return j + 1;
            }
            ajj = std::sqrt(ajj);
            set_diagonal(col + j, ajj);
            if (j + 1 < n) {
                // Row j of U right of the diagonal: (A(j, j+1:n) - U(1:j-1, j)^H U(1:j-1, j+1:n)) / ajj.
                conjugate(j, col, 1);
                gemv('T', j, n - j - 1, -one, col + ld, lda, col, 1, one, col + j + ld, lda);
                conjugate(j, col, 1);
                scal(n - j - 1, 1.0 / ajj, col + j + ld, lda);
            }
        }
    } else {
        for (int j = 0; j < n; ++j) {
            T *row = a + j;
            double ajj = diagonal_value(row[j * ld]) - real_part(dotc(j, row, lda, row, lda));
            if (not_positive(ajj)) {
                set_diagonal(row + j * ld, ajj);
                return j + 1;
            }
            ajj = std::sqrt(ajj);
            set_diagonal(row + j * ld, ajj);
            if (j + 1 < n) {
                conjugate(j, row, lda);
                gemv('N', n - j - 1, j, -one, row + 1, lda, row, lda, one, row + 1 + j * ld, 1);
                conjugate(j, row, lda);
                scal(n - j - 1, 1.0 / ajj, row + 1 + j * ld, 1);
            }
        }
    }
    return 0;
}

int potf2(char uplo, int n, double *a, int lda) { return potf2_t(uplo, n, a, lda); }
int potf2(char uplo, int n, Complex *a, int lda) { return potf2_t(uplo, n, a, lda); }

template <class T> static int potrf_t(char uplo, int n, T *a, int lda, int nb) {
    if (n == 0) return 0;
    if (nb <= 1 || nb >= n) return potf2_t(uplo, n, a, lda);
    const std::ptrdiff_t ld = lda;
    const T one = one_of<T>();
    for (int j = 0; j < n; j += nb) {
        const int jb = std::min(nb, n - j);
        T *ajj = a + j + j * ld;
        const int rest = n - j - jb;
        if (uplo == 'U') {
            hermitian_update('U', 'C', jb, j, -1.0, a + j * ld, lda, 1.0, ajj, lda);
            const int info = potf2_t('U', jb, ajj, lda);
            if (info != 0) return info + j;
            if (rest > 0) {
                gemm('C', 'N', jb, rest, j, -one, a + j * ld, lda, a + (j + jb) * ld, lda, one, ajj + jb * ld, lda);
                trsm('L', 'U', 'C', 'N', jb, rest, one, ajj, lda, ajj + jb * ld, lda);
            }
        } else {
            hermitian_update('L', 'N', jb, j, -1.0, a + j, lda, 1.0, ajj, lda);
            const int info = potf2_t('L', jb, ajj, lda);
            if (info != 0) return info + j;
            if (rest > 0) {
                gemm('N', 'C', rest, jb, j, -one, a + j + jb, lda, a + j, lda, one, ajj + jb, lda);
                trsm('R', 'L', 'C', 'N', rest, jb, one, ajj, lda, ajj + jb, lda);
            }
        }
    }
    return 0;
}

int potrf(char uplo, int n, double *a, int lda, int nb) { return potrf_t(uplo, n, a, lda, nb); }
int potrf(char uplo, int n, Complex *a, int lda, int nb) { return potrf_t(uplo, n, a, lda, nb); }
int dpotrf(char uplo, int n, double *a, int lda) {
    return potrf_t(uplo, n, a, lda, block_size_parameter(kBlockIndexF07FDF, 1));
}
int zpotrf(char uplo, int n, Complex *a, int lda) {
    return potrf_t(uplo, n, a, lda, block_size_parameter(kBlockIndexF07FRF, 1));
}

int pptrf(char uplo, int n, double *ap) {
    if (uplo == 'U') {
        std::ptrdiff_t jj = 0; // one past the diagonal of the previous column
        for (int j = 1; j <= n; ++j) {
            const std::ptrdiff_t jc = jj; // start of column j
            jj += j;                      // one past the diagonal of column j
            if (j > 1) tpsv('U', 'T', 'N', j - 1, ap, ap + jc, 1);
            const double ajj = ap[jj - 1] - dot(j - 1, ap + jc, 1, ap + jc, 1);
            if (not_positive(ajj)) {
                ap[jj - 1] = ajj;
                return j;
            }
            ap[jj - 1] = std::sqrt(ajj);
        }
    } else {
        std::ptrdiff_t jj = 0; // the diagonal of column j
        for (int j = 1; j <= n; ++j) {
            double ajj = ap[jj];
            if (not_positive(ajj)) return j;
            ajj = std::sqrt(ajj);
            ap[jj] = ajj;
            if (j < n) {
                scal(n - j, 1.0 / ajj, ap + jj + 1, 1);
                spr('L', n - j, -1.0, ap + jj + 1, 1, ap + jj + n - j + 1);
            }
            jj += n - j + 1;
        }
    }
    return 0;
}

void potrs(char uplo, int n, int nrhs, const double *a, int lda, double *b, int ldb) {
    if (n == 0 || nrhs == 0) return;
    if (uplo == 'U') {
        trsm('L', 'U', 'T', 'N', n, nrhs, 1.0, a, lda, b, ldb);
        trsm('L', 'U', 'N', 'N', n, nrhs, 1.0, a, lda, b, ldb);
    } else {
        trsm('L', 'L', 'N', 'N', n, nrhs, 1.0, a, lda, b, ldb);
        trsm('L', 'L', 'T', 'N', n, nrhs, 1.0, a, lda, b, ldb);
    }
}

namespace {

// INFO of the argument check shared by the dense Cholesky routines.
int cholesky_arguments(char uplo, int n, int lda) {
    if (uplo != 'U' && uplo != 'L') return -1;
    if (n < 0) return -2;
    if (lda < std::max(1, n)) return -4;
    return 0;
}

enum class Route { Silent, Hard };

template <class T>
void cholesky_entry(const char *name, Route route, bool blocked, int index, const char *uplo, int n, double *a,
                    int lda, int *info) {
    const char u = option_letter(uplo);
    *info = cholesky_arguments(u, n, lda);
    if (*info != 0) {
        if (route == Route::Silent)
            silent_report(name, -*info);
        else
            hard_report(name, -*info);
        return;
    }
    T *m = reinterpret_cast<T *>(a);
    *info = blocked ? potrf_t(u, n, m, lda, block_size_parameter(index, 1)) : potf2_t(u, n, m, lda);
}

} // namespace

} // namespace zek

using zek::Complex;

extern "C" void F07FDF(const char *uplo, const int *n, double *a, const int *lda, int *info, int) {
    zek::cholesky_entry<double>("F07FDF/DPOTRF", zek::Route::Silent, true, zek::kBlockIndexF07FDF, uplo, *n, a,
                                *lda, info);
}
extern "C" void F07FDF_STUB(const char *uplo, const int *n, double *a, const int *lda, int *info, int uplo_len)
    ZEK_ALIAS("q43569");

extern "C" void F07FDZ(const char *uplo, const int *n, double *a, const int *lda, int *info, int) {
    zek::cholesky_entry<double>("F07FDZ/DPOTF2", zek::Route::Hard, false, 0, uplo, *n, a, *lda, info);
}

extern "C" void f07frf_ENTRY(int, const char *uplo, const int *n, double *a, const int *lda, int *info, int) {
    zek::cholesky_entry<Complex>("F07FRF/ZPOTRF", zek::Route::Silent, true, zek::kBlockIndexF07FRF, uplo, *n, a,
                                 *lda, info);
}
extern "C" void F07FRF(const char *uplo, const int *n, double *a, const int *lda, int *info, int uplo_len) {
    f07frf_ENTRY(0, uplo, n, a, lda, info, uplo_len);
}

extern "C" void F07FRZ(const char *uplo, const int *n, double *a, const int *lda, int *info, int) {
    zek::cholesky_entry<Complex>("F07FRZ/ZPOTF2", zek::Route::Silent, false, 0, uplo, *n, a, *lda, info);
}

extern "C" void F07GDF(const char *uplo, const int *n, double *ap, int *info, int) {
    const char u = zek::option_letter(uplo);
    *info = 0;
    if (u != 'U' && u != 'L')
        *info = -1;
    else if (*n < 0)
        *info = -2;
    if (*info != 0) {
        zek::hard_report("F07GDF/DPPTRF", -*info);
        return;
    }
    *info = zek::pptrf(u, *n, ap);
}
