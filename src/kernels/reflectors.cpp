// Elementary reflectors (generation, safe generation, application) and the rotation sequence that
// reduces one vector against a pivot.
#include <cmath>

#include "kernels/level1.h"
#include "kernels/safe_arithmetic.h"
#include "kernels/vector_utilities.h"
#include "zek2/f06.h"

namespace zek {

namespace {

// The common decision tree of the plain and the safe generator.  Safe adds the two guards against a
// reciprocal that overflows; the plain form multiplies by the reciprocal regardless.
template <bool Safe>
void generate(int n, double *alpha, double *x, int incx, double tol, double *zeta, const SafeConstants &k) {
    if (n < 1 || (n == 1 && x[0] == 0.0)) {
        *zeta = 0.0;
        return;
    }
    if (n == 1) {
        const double x1 = x[0];
        if (*alpha == 0.0) {
            *zeta = 1.0;
            *alpha = std::fabs(x1);
            x[0] = x1 >= 0.0 ? -1.0 : 1.0;
            return;
        }
        const double tl = std::fmax(tol, k.eps * std::fabs(*alpha));
        if (std::fabs(x1) <= tl) {
            *zeta = 0.0;
            return;
        }
        double beta = pythag(*alpha, x1);
        *zeta = std::sqrt((std::fabs(*alpha) + beta) / beta);
        if (*alpha > 0.0) beta = -beta;
        x[0] = -x1 / (*zeta * beta);
        *alpha = beta;
        return;
    }
    double scale = 0.0, sumsq = 1.0;
    sumsq_update(n, x, incx, &scale, &sumsq);
    if (scale == 0.0 || scale <= std::fmax(tol, k.eps * std::fabs(*alpha))) {
        *zeta = 0.0;
        return;
    }
    if (*alpha == 0.0) {
        *zeta = 1.0;
        *alpha = scale * std::sqrt(sumsq);
        if (Safe && *alpha < k.small) {
            const double d = -*alpha;
            std::ptrdiff_t ix = 0;
            for (int i = 0; i < n; ++i, ix += incx) x[ix] = x[ix] / d;
        } else {
            scal(n, -1.0 / *alpha, x, incx);
        }
        return;
    }
    const double absa = std::fabs(*alpha);
    double beta;
    if (scale < absa) {
        const double r = scale / *alpha;
        beta = absa * std::sqrt(1.0 + sumsq * (r * r));
    } else {
        const double r = *alpha / scale;
        beta = scale * std::sqrt(sumsq + r * r);
    }
    *zeta = std::sqrt((absa + beta) / beta);
    const bool tiny = beta < k.small;
    if (*alpha > 0.0) beta = -beta;
    if (Safe && tiny) {
        const double d = -(*zeta * beta);
        std::ptrdiff_t ix = 0;
        for (int i = 0; i < n; ++i, ix += incx) x[ix] = x[ix] / d;
    } else {
        scal(n, -1.0 / (*zeta * beta), x, incx);
    }
    *alpha = beta;
}

} // namespace

void reflector_gen(int n, double *alpha, double *x, int incx, double tol, double *zeta, const SafeConstants &k) {
    generate<false>(n, alpha, x, incx, tol, zeta, k);
}

void reflector_gen_safe(int n, double *alpha, double *x, int incx, double tol, double *zeta,
                        const SafeConstants &k) {
    generate<true>(n, alpha, x, incx, tol, zeta, k);
}

void reflector_apply(int n, double *delta, double *y, int incy, double zeta, const double *z, int incz) {
    if (zeta == 0.0) return;
    const double beta = dot(n, z, incz, y, incy) + *delta * zeta;
    axpy(n, -beta, z, incz, y, incy);
    *delta = *delta - beta * zeta;
}

void rotation_sequence(char pivot, char direct, int n, double *alpha, double *x, int incx, double *c, double *s,
                       const SafeConstants &k) {
    if (n < 1) return;
    const auto xe = [&](int i) -> double & { return x[static_cast<std::ptrdiff_t>(i - 1) * incx]; };
    if (direct == 'F' && pivot == 'F') {
        for (int i = 1; i <= n; ++i) rotation_from_pair(alpha, &xe(i), &c[i - 1], &s[i - 1], k);
    } else if (direct == 'F' && pivot == 'V') {
        for (int i = 1; i < n; ++i) {
            rotation_from_pair(&xe(i + 1), &xe(i), &c[i - 1], &s[i - 1], k);
            s[i - 1] = -s[i - 1];
            xe(i) = -xe(i);
        }
        rotation_from_pair(alpha, &xe(n), &c[n - 1], &s[n - 1], k);
        s[n - 1] = -s[n - 1];
        xe(n) = -xe(n);
    } else if (direct == 'B' && pivot == 'V') {
        for (int i = n; i >= 2; --i) rotation_from_pair(&xe(i - 1), &xe(i), &c[i - 1], &s[i - 1], k);
        rotation_from_pair(alpha, &xe(1), &c[0], &s[0], k);
    } else if (direct == 'B' && pivot == 'F') {
        for (int i = n; i >= 1; --i) {
            rotation_from_pair(alpha, &xe(i), &c[i - 1], &s[i - 1], k);
            s[i - 1] = -s[i - 1];
            xe(i) = -xe(i);
        }
    }
}

} // namespace zek

extern "C" {

void F06_REFLECTOR_GEN(int n, double *alpha, double *x, int incx, double tol, double *zeta) {
    zek::reflector_gen(n, alpha, x, incx, tol, zeta, zek::runtime_constants());
}

void F06_REFLECTOR_GEN_SAFE(int n, double *alpha, double *x, int incx, double tol, double *zeta) {
    zek::reflector_gen_safe(n, alpha, x, incx, tol, zeta, zek::runtime_constants());
}

void F06_REFLECTOR_APPLY(int n, double *delta, double *y, int incy, double zeta, const double *z, int incz) {
    zek::reflector_apply(n, delta, y, incy, zeta, z, incz);
}

void F06_ROTATION_SEQUENCE(const char *pivot, const char *direct, int n, double *alpha, double *x, int incx,
                           double *c, double *s, int, int) {
    zek::rotation_sequence(zek::option_letter(pivot), zek::option_letter(direct), n, alpha, x, incx, c, s,
                           zek::kFrozenConstants);
}

void F06_ROTATION_SEQUENCE_ENUM(int pivot, int direct, int n, double *alpha, double *x, int incx, double *c,
                                double *s) {
    // Only the variable and fixed pivots and the two directions belong to this routine.
    const char p = (pivot == zek::kVariablePivot || pivot == zek::kFixedPivot) ? zek::pivot_letter(pivot) : 0;
    zek::rotation_sequence(p, zek::direct_letter(direct), n, alpha, x, incx, c, s, zek::runtime_constants());
}

} // extern "C"
