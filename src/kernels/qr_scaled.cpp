// f01qac: QR factorisation in reflector form that continues a partly reduced matrix, with each
// reflector formed on its column scaled by its largest element; and the five scaled vector operations
// it rests on.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/machine.h"
#include "frame/raise.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/qr.h"
#include "kernels/vector_utilities.h"
#include "zek2/f01.h"
#include "zek2/frame.h"

extern "C" double F01_ABS_MAX(int n, const double *x, int incx) {
    double m = 0.0;
    for (int i = 0; i < n; ++i) m = std::max(m, std::fabs(x[static_cast<std::ptrdiff_t>(i) * incx]));
    return m;
}

extern "C" double F01_SCALED_NORM(int n, const double *x, int incx) {
    const double big = F01_ABS_MAX(n, x, incx);
    if (big == 0.0 || !std::isfinite(big)) return big;
    double s = 0.0;
    for (int i = 0; i < n; ++i) {
        const double t = x[static_cast<std::ptrdiff_t>(i) * incx] / big;
        s += t * t;
    }
    return big * std::sqrt(s);
}

extern "C" void F01_SAFE_DIVIDE_VECTOR(int n, double alpha, double *x, int incx) {
    if (n < 1) return;
    // Multiplying by the reciprocal is cheaper; it is safe unless 1/alpha overflows.
    if (std::fabs(alpha) >= zek::safe_minimum()) {
        zek::scal(n, 1.0 / alpha, x, incx);
    } else {
        for (int i = 0; i < n; ++i) x[static_cast<std::ptrdiff_t>(i) * incx] /= alpha;
    }
}

extern "C" void F01_SCALED_REFLECTOR(int n, double *alpha, double *x, int incx, double *zeta) {
    // The reflector of (alpha, x) is that of (alpha, x)/s for any s > 0: form it on the vector scaled by
    // its largest element, so that no square overflows or underflows, and scale beta back.
    const double s = std::max(std::fabs(*alpha), F01_ABS_MAX(n, x, incx));
    if (s == 0.0 || !std::isfinite(s)) {
        *zeta = 0.0;
        return;
    }
    double a = *alpha / s;
    F01_SAFE_DIVIDE_VECTOR(n, s, x, incx);
    zek::reflector_gen(n, &a, x, incx, 0.0, zeta);
    if (*zeta == 0.0) {
        // The identity: x goes back as it was.
        zek::scal(n, s, x, incx);
        return;
    }
    *alpha = a * s;
}

extern "C" void F01_APPLY_REFLECTOR(int m, int ncol, double zeta, const double *z, double *c, int ldc, double *work) {
    // (I - u*u')*C with u = (zeta, z(1..m-1)) over the M rows of the NCOL columns of C.
    if (zeta == 0.0 || m < 1 || ncol < 1) return;
    const std::ptrdiff_t ld = ldc;
    for (int j = 0; j < ncol; ++j) work[j] = zeta * c[j * ld];
    if (m > 1) zek::gemv('T', m - 1, ncol, 1.0, c + 1, ldc, z, 1, 1.0, work, 1);
    for (int j = 0; j < ncol; ++j) c[j * ld] -= zeta * work[j];
    if (m > 1) zek::ger<double, false>(m - 1, ncol, -1.0, z, 1, work, 1, c + 1, ldc);
}

extern "C" void f01qac(int m, int n, int k, double *a, int tda, double *zeta, double *work, ZekFail *fail) {
    const char *name = "f01qac";
    zek::clear_fail(fail);
    if (zek::raise_below(fail, name, "m", m, "n", n)) return;
    if (n < 0) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "0", n);
        return;
    }
    if (k < 0) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "k", "0", k);
        return;
    }
    if (k > n) return zek::raise_int_pair(fail, name, ZE_2_INT_ARG_GT, "k", k, "n", n);
    if (zek::raise_below(fail, name, "tda", tda, "m", m)) return;
    const std::ptrdiff_t ld = tda;
    // The columns past K have not seen the first K reflectors yet.
    for (int j = 0; j < k && k < n; ++j)
        F01_APPLY_REFLECTOR(m - j, n - k, zeta[j], a + j + 1 + j * ld, a + j + k * ld, tda, work);
    for (int j = k; j < n; ++j) {
        double *ajj = a + j + j * ld;
        if (j + 1 < m)
            F01_SCALED_REFLECTOR(m - j - 1, ajj, ajj + 1, 1, &zeta[j]);
        else
            zeta[j] = 0.0;
        if (j + 1 < n) F01_APPLY_REFLECTOR(m - j, n - j - 1, zeta[j], ajj + 1, ajj + ld, tda, work);
    }
    zek::raise_success(fail, name);
}
