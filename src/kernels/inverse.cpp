// Matrix inversion of chapter F01: the general inverse (F01AAZ, f01aac) on the factorisation of F03AFF,
// and the symmetric positive definite inverse (q62158, f01adc) from a Cholesky factor.
#include "kernels/inverse.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/raise.h"
#include "kernels/cholesky.h"
#include "kernels/level1.h"
#include "kernels/level3.h"
#include "kernels/linear_equations.h"
#include "zek2/f01.h"
#include "zek2/frame.h"
#include "zek2/x03.h"

namespace zek {

int general_inverse(int n, double *a, int lda, double *x, int ldx, double *p) {
    double d1 = 0.0;
    int id = 0;
    if (scaled_lu(n, precision(), a, lda, p, &d1, &id) != 0) return 1;
    const std::ptrdiff_t lx = ldx;
    // (L*U)^-1 by forward and back substitution on the columns of the identity ...
    for (int j = 0; j < n; ++j) {
        double *xj = x + j * lx;
        for (int i = 0; i < n; ++i) xj[i] = (i == j) ? 1.0 : 0.0;
    }
    trsm('L', 'L', 'N', 'U', n, n, 1.0, a, lda, x, ldx);
    trsm('L', 'U', 'N', 'N', n, n, 1.0, a, lda, x, ldx);
    // ... and A^-1 = (L*U)^-1 * P': the row interchanges of the factorisation become column
    // interchanges of the inverse, undone in reverse order.
    for (int k = n - 1; k >= 0; --k) {
        const int r = static_cast<int>(p[k]) - 1;
        if (r != k) swap(n, x + k * lx, 1, x + r * lx, 1);
    }
    return 0;
}

int spd_inverse_from_cholesky(int n, const double *l, int ldl, const double *d, double *x, int ldx, bool extended,
                              double *work) {
    const std::ptrdiff_t lx = ldx, ll = ldl;
    for (int i = 0; i < n; ++i) {
        // An infinite pivot comes only from infinite data: no finite inverse, as for a zero one.
        if (!(d[i] != 0.0) || !std::isfinite(d[i])) return i + 1;
        work[i] = 1.0 / d[i];
    }
    ZekFail local = clean_fail();
    // W = L^-1 in the lower triangle of X, column by column: W(i,j) = -(sum_{k=j}^{i-1} L(i,k)*W(k,j)) / L(i,i).
    for (int j = 0; j < n; ++j) {
        double *wj = x + j * lx;
        wj[j] = work[j];
        for (int i = j + 1; i < n; ++i) {
            double hi = 0.0, lo = 0.0;
            x03aac(l + i + j * ll, 0, wj + j, 0, i - j, ldl, 1, 0.0, 0.0, &hi, &lo, extended ? 1 : 0, &local);
            wj[i] = -(hi + lo) * work[i];
        }
    }
    // X = W'*W on the lower triangle, in place: X(i,j) = sum_{k>=i} W(k,i)*W(k,j) for i >= j.  Row i of
    // column j is replaced only after every element that needs W(i,j) has been formed.
    for (int j = 0; j < n; ++j) {
        double *cj = x + j * lx;
        for (int i = j; i < n; ++i) {
            double hi = 0.0, lo = 0.0;
            x03aac(x + i + i * lx, 0, cj + i, 0, n - i, 1, 1, 0.0, 0.0, &hi, &lo, extended ? 1 : 0, &local);
            cj[i] = hi + lo;
        }
    }
    return 0;
}

} // namespace zek

namespace {

// F01AAZ's exits.
enum F01aazExit { kNLessThan1, kLeadingDimensionBelowN, kSingular };
constexpr zek::ExitRow kF01aazExits[] = {
    {2, 99999, " ** On entry, N .lt. 1: N =%16ld."},
    {2, 99998, " ** On entry, IA .lt. N or IX .lt. N: IA =%16ld, IX =%16ld, N =%16ld."},
    {1, 99997, " ** The matrix A is singular, possibly due to rounding errors."},
};

} // namespace

extern "C" void F01AAZ(double *a, const int *ia, const int *n, double *x, const int *ix, double *p, int *ifail) {
    zek::FailureExit exit("F01AAZ", nullptr, ifail);
    if (*n < 1) {
        zek::take(exit, kF01aazExits, kNLessThan1, {static_cast<long>(*n)});
        return;
    }
    if (*ia < *n || *ix < *n) {
        zek::take(exit, kF01aazExits, kLeadingDimensionBelowN,
                  {static_cast<long>(*ia), static_cast<long>(*ix), static_cast<long>(*n)});
        return;
    }
    if (zek::general_inverse(*n, a, *ia, x, *ix, p) != 0) {
        zek::take(exit, kF01aazExits, kSingular);
        return;
    }
    exit.succeed();
}

extern "C" void f01aac(double *a, int tda, int n, double *unit_inverse, int tdu, ZekFail *fail) {
    const char *name = "f01aac";
    zek::clear_fail(fail);
    if (n < 1) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "1", n);
        return;
    }
    if (zek::raise_below(fail, name, "tda", tda, "n", n)) return;
    if (zek::raise_below(fail, name, "tdu", tdu, "n", n)) return;
    void *p = ZEK_ALLOCATE(sizeof(double) * static_cast<std::size_t>(n));
    if (p == nullptr) {
        zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
        return;
    }
    int ifail = 1;
    F01AAZ(a, &tda, &n, unit_inverse, &tdu, static_cast<double *>(p), &ifail);
    ZEK_RELEASE(&p);
    if (ifail == 1) {
        zek::raise_plain(fail, name, ZE_SINGULAR);
        return;
    }
    if (ifail != 0) {
        zek::raise_plain(fail, name, ZE_INTERNAL_ERROR);
        return;
    }
    zek::raise_success(fail, name);
}

extern "C" void F01_SPD_INVERSE(int n, const double *l, int tdl, const double *d, double *x, int tdx, int extended,
                                double *work, ZekFail *fail) {
    const char *name = "q62158";
    zek::clear_fail(fail);
    if (n < 1) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "1", n);
        return;
    }
    if (zek::raise_below(fail, name, "tdl", tdl, "n", n)) return;
    if (zek::raise_below(fail, name, "tdx", tdx, "n", n)) return;
    if (zek::spd_inverse_from_cholesky(n, l, tdl, d, x, tdx, extended != 0, work) != 0) {
        zek::raise_plain(fail, name, ZE_NOT_POS_DEF);
        return;
    }
    zek::raise_success(fail, name);
}

extern "C" void f01adc(int n, double *a, int tda, ZekFail *fail) {
    const char *name = "f01adc";
    zek::clear_fail(fail);
    if (n < 1) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "1", n);
        return;
    }
    if (zek::raise_below(fail, name, "tda", tda, "n", n)) return;
    const std::size_t nn = zek::size_product(static_cast<std::size_t>(n), static_cast<std::size_t>(n));
    void *space = ZEK_ALLOCATE(
        zek::size_product(sizeof(double), zek::size_sum(zek::size_product(2, nn), 2 * static_cast<std::size_t>(n))));
    if (space == nullptr) {
        zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
        return;
    }
    double *l = static_cast<double *>(space), *x = l + nn, *d = x + nn, *work = d + n;
    const std::ptrdiff_t la = tda, ln = n;
    for (int j = 0; j < n; ++j) zek::copy(n - j, a + j + j * la, 1, l + j + j * ln, 1);
    const int info = zek::potrf('L', n, l, n, 1);
    if (info != 0) {
        ZEK_RELEASE(&space);
        zek::raise_plain(fail, name, ZE_NOT_POS_DEF);
        return;
    }
    for (int i = 0; i < n; ++i) d[i] = l[i + i * ln];
    if (zek::spd_inverse_from_cholesky(n, l, n, d, x, n, true, work) != 0) {
        ZEK_RELEASE(&space);
        zek::raise_plain(fail, name, ZE_NOT_POS_DEF);
        return;
    }
    // The inverse goes over the lower triangle of A, four columns at a time; the strict upper triangle
    // keeps what the caller had there.
    int j = 0;
    for (; j + 4 <= n; j += 4)
        for (int c = j; c < j + 4; ++c) zek::copy(n - c, x + c + c * ln, 1, a + c + c * la, 1);
    for (; j < n; ++j) zek::copy(n - j, x + j + j * ln, 1, a + j + j * la, 1);
    ZEK_RELEASE(&space);
    zek::raise_success(fail, name);
}
