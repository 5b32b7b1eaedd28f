// LU factorisation with partial pivoting: F07ADF/DGETRF, F07ADZ/DGETF2, F07ARF/ZGETRF, F07ARZ/ZGETF2,
// and F07ADG/F07ADH on a real pivot array.
#include "kernels/lu.h"

#include <algorithm>
#include <cstddef>

#include "kernels/block_size.h"
#include "kernels/factor_support.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/level3.h"
#include "zek2/f07.h"

namespace zek {

// ---- Unblocked -----------------------------------------------------------------------------------

template <class T> static int getf2_t(int m, int n, T *a, int lda, int *ipiv) {
    int info = 0;
    const std::ptrdiff_t ld = lda;
    const int mn = std::min(m, n);
    for (int j = 0; j < mn; ++j) {
        T *ajj = a + j + j * ld;
        const int jp = j + iamax(m - j, ajj, 1) - 1;
        ipiv[j] = jp + 1;
        if (a[jp + j * ld] != zero_of<T>()) {
            if (jp != j) swap(n, a + j, lda, a + jp, lda);
            if (j + 1 < m) scale_by_inverse(m - j - 1, *ajj, ajj + 1, 1);
        } else if (info == 0) {
            info = j + 1;
        }
        if (j + 1 < m && j + 1 < n)
            ger<T, false>(m - j - 1, n - j - 1, -one_of<T>(), ajj + 1, 1, ajj + ld, lda, ajj + 1 + ld, lda);
    }
    return info;
}

int getf2(int m, int n, double *a, int lda, int *ipiv) { return getf2_t(m, n, a, lda, ipiv); }
int getf2(int m, int n, Complex *a, int lda, int *ipiv) { return getf2_t(m, n, a, lda, ipiv); }

// ---- Interchanges --------------------------------------------------------------------------------

template <class T> static void laswp_t(int n, T *a, int lda, int k1, int k2, const int *ipiv) {
    for (int i = k1; i <= k2; ++i) {
        const int ip = ipiv[i - 1];
        if (ip != i) swap(n, a + (i - 1), lda, a + (ip - 1), lda);
    }
}

void laswp(int n, double *a, int lda, int k1, int k2, const int *ipiv) { laswp_t(n, a, lda, k1, k2, ipiv); }
void laswp(int n, Complex *a, int lda, int k1, int k2, const int *ipiv) { laswp_t(n, a, lda, k1, k2, ipiv); }

// ---- Blocked -------------------------------------------------------------------------------------

template <class T> static int getrf_t(int m, int n, T *a, int lda, int *ipiv, int nb) {
    const int mn = std::min(m, n);
    if (mn == 0) return 0;
    if (nb <= 1 || nb >= mn) return getf2_t(m, n, a, lda, ipiv);
    const std::ptrdiff_t ld = lda;
    int info = 0;
    for (int j = 0; j < mn; j += nb) {
        const int jb = std::min(mn - j, nb);
        T *ajj = a + j + j * ld;
        const int iinfo = getf2_t(m - j, jb, ajj, lda, ipiv + j);
        if (info == 0 && iinfo > 0) info = iinfo + j;
        for (int i = j; i < std::min(m, j + jb); ++i) ipiv[i] += j;
        // The panel's interchanges to the columns on its left and on its right.
        laswp_t(j, a, lda, j + 1, j + jb, ipiv);
        const int right = n - j - jb;
        if (right > 0) {
            laswp_t(right, a + (j + jb) * ld, lda, j + 1, j + jb, ipiv);
            // U12 := L11^-1 A12, then A22 := A22 - L21*U12.
            trsm('L', 'L', 'N', 'U', jb, right, one_of<T>(), ajj, lda, ajj + jb * ld, lda);
            if (j + jb < m)
                gemm('N', 'N', m - j - jb, right, jb, -one_of<T>(), ajj + jb, lda, ajj + jb * ld, lda, one_of<T>(),
                     ajj + jb + jb * ld, lda);
        }
    }
    return info;
}

int getrf(int m, int n, double *a, int lda, int *ipiv, int nb) { return getrf_t(m, n, a, lda, ipiv, nb); }
int getrf(int m, int n, Complex *a, int lda, int *ipiv, int nb) { return getrf_t(m, n, a, lda, ipiv, nb); }

int dgetrf(int m, int n, double *a, int lda, int *ipiv) {
    return getrf_t(m, n, a, lda, ipiv, block_size_parameter(kBlockIndexF07ADF, 1));
}
int zgetrf(int m, int n, Complex *a, int lda, int *ipiv) {
    return getrf_t(m, n, a, lda, ipiv, block_size_parameter(kBlockIndexF07ARF, 1));
}

// ---- Crout form on a real pivot array --------------------------------------------------------------

int crout_getf2(int m, int n, double *a, int lda, double *piv) {
    int info = 0;
    const std::ptrdiff_t ld = lda;
    const int mn = std::min(m, n);
    for (int j = 0; j < mn; ++j) {
        double *ajj = a + j + j * ld;
        const int jp = j + iamax(m - j, ajj, 1) - 1;
        piv[j] = static_cast<double>(jp + 1);
        if (a[jp + j * ld] != 0.0) {
            if (jp != j) swap(n, a + j, lda, a + jp, lda);
            // The row of U to the right of the pivot is scaled; L keeps the pivot on its diagonal.
            if (j + 1 < n) scale_by_inverse(n - j - 1, *ajj, ajj + ld, lda);
        } else if (info == 0) {
            info = j + 1;
        }
        if (j + 1 < m && j + 1 < n) ger<double, false>(m - j - 1, n - j - 1, -1.0, ajj + 1, 1, ajj + ld, lda, ajj + 1 + ld, lda);
    }
    return info;
}

int crout_getrf(int m, int n, double *a, int lda, double *piv, int nb) {
    const int mn = std::min(m, n);
    if (mn == 0) return 0;
    if (nb <= 1 || nb >= mn) return crout_getf2(m, n, a, lda, piv);
    const std::ptrdiff_t ld = lda;
    int info = 0;
    for (int j = 0; j < mn; j += nb) {
        const int jb = std::min(mn - j, nb);
        double *ajj = a + j + j * ld;
        const int iinfo = crout_getf2(m - j, jb, ajj, lda, piv + j);
        if (info == 0 && iinfo > 0) info = iinfo + j;
        // Interchange the rows of the panel's block row left and right of the panel while the pivots
        // are still relative to it, then offset them by the panel start.
        if (j > 0) permute_rows_forward(jb, piv + j, j, a + j, lda);
        const int right = n - j - jb;
        if (right > 0) permute_rows_forward(jb, piv + j, right, ajj + jb * ld, lda);
        for (int i = j; i < j + jb; ++i) piv[i] += static_cast<double>(j);
        if (right > 0) {
            trsm('L', 'L', 'N', 'N', jb, right, 1.0, ajj, lda, ajj + jb * ld, lda);
            if (j + jb < m)
                gemm('N', 'N', m - j - jb, right, jb, -1.0, ajj + jb, lda, ajj + jb * ld, lda, 1.0, ajj + jb + jb * ld, lda);
        }
    }
    return info;
}

// ---- Solve ---------------------------------------------------------------------------------------

template <class T>
static void getrs_t(char trans, int n, int nrhs, const T *a, int lda, const int *ipiv, T *b, int ldb) {
    if (n == 0 || nrhs == 0) return;
    if (trans == 'N') {
        laswp_t(nrhs, b, ldb, 1, n, ipiv);
        trsm('L', 'L', 'N', 'U', n, nrhs, one_of<T>(), a, lda, b, ldb);
        trsm('L', 'U', 'N', 'N', n, nrhs, one_of<T>(), a, lda, b, ldb);
    } else {
        trsm('L', 'U', trans, 'N', n, nrhs, one_of<T>(), a, lda, b, ldb);
        trsm('L', 'L', trans, 'U', n, nrhs, one_of<T>(), a, lda, b, ldb);
        for (int i = n; i >= 1; --i) {
            const int ip = ipiv[i - 1];
            if (ip != i) swap(nrhs, b + (i - 1), ldb, b + (ip - 1), ldb);
        }
    }
}

void getrs(char trans, int n, int nrhs, const double *a, int lda, const int *ipiv, double *b, int ldb) {
    getrs_t(trans, n, nrhs, a, lda, ipiv, b, ldb);
}
void getrs(char trans, int n, int nrhs, const Complex *a, int lda, const int *ipiv, Complex *b, int ldb) {
    getrs_t(trans, n, nrhs, a, lda, ipiv, b, ldb);
}

// ---- Exported routines ---------------------------------------------------------------------------

namespace {

// The common argument check of the LU routines: INFO = -position of the first bad argument.
int lu_arguments(int m, int n, int lda) {
    if (m < 0) return -1;
    if (n < 0) return -2;
    if (lda < std::max(1, m)) return -4;
    return 0;
}

} // namespace

} // namespace zek

using zek::Complex;

extern "C" void f07adf_ENTRY(int, const int *m, const int *n, double *a, const int *lda, int *ipiv, int *info) {
    *info = zek::lu_arguments(*m, *n, *lda);
    if (*info != 0) {
        zek::silent_report("F07ADF/DGETRF", -*info);
        return;
    }
    *info = zek::dgetrf(*m, *n, a, *lda, ipiv);
}

extern "C" void F07ADF(const int *m, const int *n, double *a, const int *lda, int *ipiv, int *info) {
    f07adf_ENTRY(0, m, n, a, lda, ipiv, info);
}

extern "C" void F07ADG(const int *m, const int *n, double *a, const int *lda, double *piv, int *info) {
    *info = zek::lu_arguments(*m, *n, *lda);
    if (*info != 0) {
        zek::silent_report("F07ADG       ", -*info);
        return;
    }
    *info = zek::crout_getrf(*m, *n, a, *lda, piv, zek::block_size_parameter(zek::kBlockIndexF07ADF, 1));
}

extern "C" void f07arf_ENTRY(int, const int *m, const int *n, double *a, const int *lda, int *ipiv, int *info) {
    *info = zek::lu_arguments(*m, *n, *lda);
    if (*info != 0) {
        zek::silent_report("F07ARF/ZGETRF", -*info);
        return;
    }
    *info = zek::zgetrf(*m, *n, reinterpret_cast<Complex *>(a), *lda, ipiv);
}

extern "C" void F07ARF(const int *m, const int *n, double *a, const int *lda, int *ipiv, int *info) {
    f07arf_ENTRY(0, m, n, a, lda, ipiv, info);
}
