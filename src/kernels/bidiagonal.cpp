// f01lzc: reduction of an M by N matrix (M >= N) to upper bidiagonal form by reflectors from both
// sides, A = Q*B*P', and the application of Q and P' to the matrices the singular value decomposition
// carries along.
#include "kernels/bidiagonal.h"

#include <algorithm>
#include <cstddef>

#include "frame/machine.h"
#include "frame/raise.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/vector_utilities.h"
#include "zek2/f01.h"
#include "zek2/frame.h"

namespace zek {

namespace {

// C := (I - u*u')*C for the LEN rows of the NCOL columns of C, u = (zeta, z) with z at stride INCZ.
void left_reflect(int len, double zeta, const double *z, int incz, int ncol, double *c, int ldc, double *work) {
    if (zeta == 0.0 || len < 1 || ncol < 1) return;
    const std::ptrdiff_t ld = ldc;
    for (int j = 0; j < ncol; ++j) work[j] = zeta * c[j * ld];
    if (len > 1) gemv('T', len - 1, ncol, 1.0, c + 1, ldc, z, incz, 1.0, work, 1);
    for (int j = 0; j < ncol; ++j) c[j * ld] -= zeta * work[j];
    if (len > 1) ger<double, false>(len - 1, ncol, -1.0, z, incz, work, 1, c + 1, ldc);
}

// C := C*(I - u*u') for the NROW rows of the LEN columns of C, u = (zeta, z) with z at stride INCZ.
void right_reflect(int nrow, int len, double zeta, const double *z, int incz, double *c, int ldc, double *work) {
    if (zeta == 0.0 || len < 1 || nrow < 1) return;
    const std::ptrdiff_t ld = ldc;
    for (int i = 0; i < nrow; ++i) work[i] = zeta * c[i];
    if (len > 1) gemv('N', nrow, len - 1, 1.0, c + ld, ldc, z, incz, 1.0, work, 1);
    axpy(nrow, -zeta, work, 1, c, 1);
    if (len > 1) ger<double, false>(nrow, len - 1, -1.0, work, 1, z, incz, c + ld, ldc);
}

} // namespace

void bidiagonalise(int m, int n, double *a, int lda, double *d, double *e, double *zl, double *zr, double *work) {
    const std::ptrdiff_t ld = lda;
    for (int k = 0; k < n; ++k) {
        double *akk = a + k + k * ld;
        // Left: annihilate column k below the diagonal.
        reflector_gen(m - k - 1, akk, akk + 1, 1, 0.0, &zl[k]);
        d[k] = *akk;
        if (k + 1 < n) left_reflect(m - k, zl[k], akk + 1, 1, n - k - 1, akk + ld, lda, work);
        // Right: annihilate row k right of the superdiagonal.
        if (k + 2 < n) {
            double *akr = akk + ld;
            reflector_gen(n - k - 2, akr, akr + ld, lda, 0.0, &zr[k]);
            e[k] = *akr;
            right_reflect(m - k - 1, n - k - 1, zr[k], akr + ld, lda, akr + 1, lda, work);
        } else if (k + 1 < n) {
            zr[k] = 0.0;
            e[k] = akk[ld];
        } else {
            zr[k] = 0.0;
        }
    }
}

void apply_bidiagonal_transforms(int m, int n, const double *a, int lda, const double *zl, const double *zr,
                                 int ncolb, double *b, int ldb, int nrowy, double *y, int ldy, int ncolz, double *z,
                                 int ldz, double *work) {
    const std::ptrdiff_t ld = lda, lb = ldb, ly = ldy, lz = ldz;
    (void)lb;
    for (int k = 0; k < n; ++k) {
        const double *u = a + k + 1 + k * ld;
        // B := Q'*B = H(n)...H(1)*B: H(1) first.
        left_reflect(m - k, zl[k], u, 1, ncolb, b + k, ldb, work);
        // Y := Y*Q = Y*H(1)*...*H(n).
        right_reflect(nrowy, m - k, zl[k], u, 1, y + k * ly, ldy, work);
    }
    // Z := P'*Z = G(n-2)...G(1)*Z with G(k) acting on rows k+2..n.
    for (int k = 0; k + 2 < n; ++k)
        left_reflect(n - k - 1, zr[k], a + k + (k + 2) * ld, lda, ncolz, z + k + 1, ldz, work);
    (void)lz;
}

} // namespace zek

extern "C" void f01lzc(int m, int n, double *a, int tda, double *d, double *e, double *zl, double *zr, int ncolb,
                       double *b, int tdb, int nrowy, double *y, int tdy, int ncolz, double *z, int tdz, int wantp,
                       ZekFail *fail) {
    const char *name = "f01lzc";
    zek::clear_fail(fail);
    auto less = [&](const char *what, int value, const char *bound_name, int bound) {
        zek::raise_int_pair(fail, name, ZE_2_INT_ARG_LT, what, value, bound_name, bound);
    };
    if (n < 0) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "0", n);
        return;
    }
    if (m < n) return less("m", m, "n", n);
    if (tda < m) return less("tda", tda, "m", m);
    if (ncolb < 0) return zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "ncolb", "0", ncolb);
    if (ncolb > 0 && tdb < m) return less("tdb", tdb, "m", m);
    if (nrowy < 0) return zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "nrowy", "0", nrowy);
    if (nrowy > 0 && tdy < nrowy) return less("tdy", tdy, "nrowy", nrowy);
    if (ncolz < 0) return zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "ncolz", "0", ncolz);
    if (ncolz > 0 && tdz < n) return less("tdz", tdz, "n", n);
    if (n == 0) return zek::raise_success(fail, name);

    const std::size_t nwork = static_cast<std::size_t>(std::max({m, n, ncolb, nrowy, ncolz, 1}));
    const std::size_t np = wantp ? zek::size_product(static_cast<std::size_t>(n), static_cast<std::size_t>(n)) : 0;
    void *space = ZEK_ALLOCATE(zek::size_product(sizeof(double), zek::size_sum(nwork, np)));
    if (space == nullptr) return zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
    double *work = static_cast<double *>(space);
    zek::bidiagonalise(m, n, a, tda, d, e, zl, zr, work);
    zek::apply_bidiagonal_transforms(m, n, a, tda, zl, zr, ncolb, b, tdb, nrowy, y, tdy, ncolz, z, tdz, work);
    if (wantp) {
        // P' = G(n-2)...G(1) applied to the identity, then over the first N rows of A.
        double *p = work + nwork;
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) p[i + static_cast<std::ptrdiff_t>(j) * n] = (i == j) ? 1.0 : 0.0;
        zek::apply_bidiagonal_transforms(m, n, a, tda, zl, zr, 0, nullptr, 1, 0, nullptr, 1, n, p, n, work);
        for (int j = 0; j < n; ++j) zek::copy(n, p + static_cast<std::ptrdiff_t>(j) * n, 1, a + static_cast<std::ptrdiff_t>(j) * tda, 1);
    }
    ZEK_RELEASE(&space);
    zek::raise_success(fail, name);
}
