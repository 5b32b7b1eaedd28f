// Level-1 kernels: dot products, axpy, scaling, copy, exchange, sums, maximum search, norms and plane
// rotations, real and complex from one set of templates, with their masters, aliases and exported forms.
#include "kernels/level1.h"

#include <cmath>

#include "kernels/safe_arithmetic.h"
#include "zek2/f06.h"

namespace zek {

namespace {

// Runs f(ix, iy) over the N element pairs of two strided vectors in logical order.  Three loop shapes,
// chosen at entry: equal positive increments share one index; a non-positive increment (of X, or of
// Y when the operation stores through Y) takes a body unrolled by four, running only when N >= 4,
// followed by the remainder; anything else is a plain loop in two indices.
template <bool StoresY, class F> inline void pair_loop(int n, int incx, int incy, F &&f) {
    if (n < 1) return;
    if (incx == incy && incx > 0) {
        if (incx == 1) {
            for (std::ptrdiff_t i = 0; i < n; ++i) f(i, i);
        } else {
            const std::ptrdiff_t end = static_cast<std::ptrdiff_t>(n) * incx;
            for (std::ptrdiff_t i = 0; i < end; i += incx) f(i, i);
        }
        return;
    }
    std::ptrdiff_t ix = first_offset(n, incx), iy = first_offset(n, incy);
    if (incx < 1 || (StoresY && incy < 1)) {
        const int body = n - n % 4;
        for (int k = 0; k < body; k += 4) {
            f(ix, iy);
            f(ix + incx, iy + incy);
            f(ix + 2 * static_cast<std::ptrdiff_t>(incx), iy + 2 * static_cast<std::ptrdiff_t>(incy));
            f(ix + 3 * static_cast<std::ptrdiff_t>(incx), iy + 3 * static_cast<std::ptrdiff_t>(incy));
            ix += 4 * static_cast<std::ptrdiff_t>(incx);
            iy += 4 * static_cast<std::ptrdiff_t>(incy);
        }
        for (int k = body; k < n; ++k, ix += incx, iy += incy) f(ix, iy);
    } else {
        for (int k = 0; k < n; ++k, ix += incx, iy += incy) f(ix, iy);
    }
}

// Runs f(ix) over the N elements of a one-vector operand: from the base in steps of INC.
template <class F> inline void single_loop(int n, int incx, F &&f) {
    if (incx == 1) {
        for (std::ptrdiff_t i = 0; i < n; ++i) f(i);
    } else {
        std::ptrdiff_t ix = 0;
        for (int k = 0; k < n; ++k, ix += incx) f(ix);
    }
}

// The unit-stride dot product: the body of four adds its products one at a time, so the sum is the
// plain left-to-right sum; the products themselves are independent.
template <class T> inline T dot_unit(int n, const T *x, const T *y) {
    T s = zero_of<T>();
    const int head = n % 4;
    for (int i = 0; i < head; ++i) s = s + x[i] * y[i];
    for (int i = head; i < n; i += 4) {
        const T p0 = x[i] * y[i], p1 = x[i + 1] * y[i + 1], p2 = x[i + 2] * y[i + 2], p3 = x[i + 3] * y[i + 3];
        s = s + p0;
        s = s + p1;
        s = s + p2;
        s = s + p3;
    }
    return s;
}

inline Complex *cx(double *p) { return reinterpret_cast<Complex *>(p); }
inline const Complex *cx(const double *p) { return reinterpret_cast<const Complex *>(p); }

} // namespace

template <class T> T dot(int n, const T *x, int incx, const T *y, int incy) {
    if (n < 1) return zero_of<T>();
    if (incx == 1 && incy == 1) return dot_unit(n, x, y);
    T s = zero_of<T>();
    // Both non-unit paths add in logical order whatever their shape.
    std::ptrdiff_t ix = first_offset(n, incx), iy = first_offset(n, incy);
    const int body = n - n % 4;
    for (int k = 0; k < body; k += 4) {
        const T p0 = x[ix] * y[iy];
        const T p1 = x[ix + incx] * y[iy + incy];
        const T p2 = x[ix + 2 * static_cast<std::ptrdiff_t>(incx)] * y[iy + 2 * static_cast<std::ptrdiff_t>(incy)];
        const T p3 = x[ix + 3 * static_cast<std::ptrdiff_t>(incx)] * y[iy + 3 * static_cast<std::ptrdiff_t>(incy)];
        s = s + p0;
        s = s + p1;
        s = s + p2;
        s = s + p3;
        ix += 4 * static_cast<std::ptrdiff_t>(incx);
        iy += 4 * static_cast<std::ptrdiff_t>(incy);
    }
    for (int k = body; k < n; ++k, ix += incx, iy += incy) s = s + x[ix] * y[iy];
    return s;
}

template <class T> T dotc(int n, const T *x, int incx, const T *y, int incy) {
    T s = zero_of<T>();
    pair_loop<false>(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) { s = s + conj(x[ix]) * y[iy]; });
    return s;
}

template <class T> void axpy(int n, T alpha, const T *x, int incx, T *y, int incy) {
    if (n < 1 || alpha == zero_of<T>()) return;
    if (incx == 1 && incy == 1) {
        for (int i = 0; i < n; ++i) y[i] = y[i] + alpha * x[i];
        return;
    }
    pair_loop<true>(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) { y[iy] = y[iy] + alpha * x[ix]; });
}

template <class T> void copy(int n, const T *x, int incx, T *y, int incy) {
    if (n < 1) return;
    if (incx == 1 && incy == 1) {
        for (int i = 0; i < n; ++i) y[i] = x[i];
        return;
    }
    pair_loop<true>(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) { y[iy] = x[ix]; });
}

template <class T> void swap(int n, T *x, int incx, T *y, int incy) {
    if (n < 1) return;
    if (incx == 1 && incy == 1) {
        for (int i = 0; i < n; ++i) {
            const T t = x[i];
            x[i] = y[i];
            y[i] = t;
        }
        return;
    }
    pair_loop<true>(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) {
        const T t = x[ix];
        x[ix] = y[iy];
        y[iy] = t;
    });
}

void scal(int n, double alpha, double *x, int incx) {
    if (n < 1 || alpha == 1.0) return;
    if (alpha == 0.0)
        single_loop(n, incx, [&](std::ptrdiff_t i) { x[i] = 0.0; });
    else if (alpha == -1.0)
        single_loop(n, incx, [&](std::ptrdiff_t i) { x[i] = -x[i]; });
    else
        single_loop(n, incx, [&](std::ptrdiff_t i) { x[i] = alpha * x[i]; });
}

void scal(int n, double alpha, Complex *x, int incx) {
    if (n < 1 || alpha == 1.0) return;
    if (alpha == 0.0)
        single_loop(n, incx, [&](std::ptrdiff_t i) { x[i] = {0.0, 0.0}; });
    else if (alpha == -1.0)
        single_loop(n, incx, [&](std::ptrdiff_t i) { x[i] = -x[i]; });
    else
        single_loop(n, incx, [&](std::ptrdiff_t i) { x[i] = alpha * x[i]; });
}

void scal(int n, Complex alpha, Complex *x, int incx) {
    if (n < 1) return;
    if (alpha.re == 0.0 && alpha.im == 0.0)
        single_loop(n, incx, [&](std::ptrdiff_t i) { x[i] = {0.0, 0.0}; });
    else
        single_loop(n, incx, [&](std::ptrdiff_t i) { x[i] = alpha * x[i]; });
}

template <class T> double asum(int n, const T *x, int incx) {
    double s = 0.0;
    if (n < 1) return s;
    single_loop(n, incx, [&](std::ptrdiff_t i) { s = s + abs1(x[i]); });
    return s;
}

template <class T> int iamax(int n, const T *x, int incx) {
    if (n < 1) return 0;
    int best = 1;
    double big = abs1(x[0]);
    std::ptrdiff_t ix = incx;
    for (int k = 2; k <= n; ++k, ix += incx) {
        const double v = abs1(x[ix]);
        if (v > big) {
            big = v;
            best = k;
        }
    }
    return best;
}

double nrm2(int n, const double *x, int incx, const SafeConstants &k) {
    if (n < 1) return 0.0;
    if (n == 1) return std::fabs(x[0]);
    double scale = 0.0, sumsq = 1.0;
    sumsq_update(n, x, incx, &scale, &sumsq);
    return norm_from_sumsq(scale, sumsq, k);
}

double nrm2(int n, const Complex *x, int incx, const SafeConstants &k) {
    if (n < 1) return 0.0;
    double scale = 0.0, sumsq = 1.0;
    sumsq_update(n, x, incx, &scale, &sumsq);
    return norm_from_sumsq(scale, sumsq, k);
}

void rot(int n, double *x, int incx, double *y, int incy, double c, double s) {
    if (n < 1) return;
    if (s == 0.0 && c == 1.0) return;
    if (c == 0.0 && s == 1.0) {
        pair_loop<true>(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) {
            const double t = x[ix];
            x[ix] = y[iy];
            y[iy] = -t;
        });
        return;
    }
    if (c == 0.0 && s == -1.0) {
        pair_loop<true>(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) {
            const double t = x[ix];
            x[ix] = -y[iy];
            y[iy] = t;
        });
        return;
    }
    if (incx == 1 && incy == 1) {
        for (int i = 0; i < n; ++i) {
            const double xi = x[i], yi = y[i];
            x[i] = c * xi + s * yi;
            y[i] = c * yi - s * xi;
        }
        return;
    }
    pair_loop<true>(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) {
        const double xi = x[ix], yi = y[iy];
        x[ix] = c * xi + s * yi;
        y[iy] = c * yi - s * xi;
    });
}

template double dot<double>(int, const double *, int, const double *, int);
template Complex dot<Complex>(int, const Complex *, int, const Complex *, int);
template double dotc<double>(int, const double *, int, const double *, int);
template Complex dotc<Complex>(int, const Complex *, int, const Complex *, int);
template void axpy<double>(int, double, const double *, int, double *, int);
template void axpy<Complex>(int, Complex, const Complex *, int, Complex *, int);
template void copy<double>(int, const double *, int, double *, int);
template void copy<Complex>(int, const Complex *, int, Complex *, int);
template void swap<double>(int, double *, int, double *, int);
template void swap<Complex>(int, Complex *, int, Complex *, int);
template double asum<double>(int, const double *, int);
template double asum<Complex>(int, const Complex *, int);
template int iamax<double>(int, const double *, int);
template int iamax<Complex>(int, const Complex *, int);

// ---- Masters and aliases ------------------------------------------------------------------------

void drotg_master(int, double *a, double *b, double *c, double *s) {
    if (*b == 0.0) {
        *c = 1.0;
        *s = 0.0;
        *b = 0.0;
        return;
    }
    const double roe = std::fabs(*a) > std::fabs(*b) ? *a : *b;
    const double r = roe >= 0.0 ? pythag(*a, *b) : -pythag(*a, *b);
    *c = *a / r;
    *s = *b / r;
    double z = 1.0;
    if (std::fabs(*a) > std::fabs(*b))
        z = *s;
    else if (*c != 0.0)
        z = 1.0 / *c;
    *a = r;
    *b = z;
}
void drotg(double *a, double *b, double *c, double *s) { drotg_master(1, a, b, c, s); }

double ddot_master(int, int n, const double *x, int incx, const double *y, int incy) {
    return dot(n, x, incx, y, incy);
}
double ddot(int n, const double *x, int incx, const double *y, int incy) { return ddot_master(1, n, x, incx, y, incy); }

void daxpy_master(int, int n, double alpha, const double *x, int incx, double *y, int incy) {
    axpy(n, alpha, x, incx, y, incy);
}
void daxpy(int n, double alpha, const double *x, int incx, double *y, int incy) {
    daxpy_master(1, n, alpha, x, incx, y, incy);
}

void dscal_master(int, int n, double alpha, double *x, int incx) { scal(n, alpha, x, incx); }
void dscal(int n, double alpha, double *x, int incx) { dscal_master(1, n, alpha, x, incx); }

void dcopy_master(int, int n, const double *x, int incx, double *y, int incy) { copy(n, x, incx, y, incy); }
void dcopy(int n, const double *x, int incx, double *y, int incy) { dcopy_master(1, n, x, incx, y, incy); }

void dswap_master(int, int n, double *x, int incx, double *y, int incy) { swap(n, x, incx, y, incy); }
void dswap(int n, double *x, int incx, double *y, int incy) { dswap_master(1, n, x, incx, y, incy); }

double dnrm2(int n, const double *x, int incx) { return f06ejf_ENTRY(1, n, x, incx); }

double dasum_master(int, int n, const double *x, int incx) { return asum(n, x, incx); }
double dasum(int n, const double *x, int incx) { return dasum_master(1, n, x, incx); }

void drot_master(int, int n, double *x, int incx, double *y, int incy, double c, double s) {
    rot(n, x, incx, y, incy, c, s);
}
void drot(int n, double *x, int incx, double *y, int incy, double c, double s) {
    drot_master(1, n, x, incx, y, incy, c, s);
}

int idamax_master(int, int n, const double *x, int incx) { return iamax(n, x, incx); }
int idamax(int n, const double *x, int incx) { return idamax_master(1, n, x, incx); }

void zdotu_master(int, double *result, int n, const double *x, int incx, const double *y, int incy) {
    *cx(result) = dot(n, cx(x), incx, cx(y), incy);
}
void zdotu(double *result, int n, const double *x, int incx, const double *y, int incy) {
    zdotu_master(1, result, n, x, incx, y, incy);
}

void zdotc_master(int, double *result, int n, const double *x, int incx, const double *y, int incy) {
    *cx(result) = dotc(n, cx(x), incx, cx(y), incy);
}
void zdotc(double *result, int n, const double *x, int incx, const double *y, int incy) {
    zdotc_master(1, result, n, x, incx, y, incy);
}

void zaxpy_master(int, int n, double alpha_re, double alpha_im, const double *x, int incx, double *y, int incy) {
    axpy(n, Complex{alpha_re, alpha_im}, cx(x), incx, cx(y), incy);
}
void zaxpy(int n, double alpha_re, double alpha_im, const double *x, int incx, double *y, int incy) {
    zaxpy_master(1, n, alpha_re, alpha_im, x, incx, y, incy);
}

void zscal_master(int, int n, double alpha_re, double alpha_im, double *x, int incx) {
    scal(n, Complex{alpha_re, alpha_im}, cx(x), incx);
}
void zscal(int n, double alpha_re, double alpha_im, double *x, int incx) {
    zscal_master(1, n, alpha_re, alpha_im, x, incx);
}

void zdscal_master(int, int n, double alpha, double *x, int incx) { scal(n, alpha, cx(x), incx); }
void zdscal(int n, double alpha, double *x, int incx) { zdscal_master(1, n, alpha, x, incx); }

void zcopy_master(int, int n, const double *x, int incx, double *y, int incy) { copy(n, cx(x), incx, cx(y), incy); }
void zcopy(int n, const double *x, int incx, double *y, int incy) { zcopy_master(1, n, x, incx, y, incy); }

void zswap_master(int, int n, double *x, int incx, double *y, int incy) { swap(n, cx(x), incx, cx(y), incy); }
void zswap(int n, double *x, int incx, double *y, int incy) { zswap_master(1, n, x, incx, y, incy); }

double dznrm2(int n, const double *x, int incx) { return f06jjf_ENTRY(1, n, x, incx); }

double dzasum_master(int, int n, const double *x, int incx) { return asum(n, cx(x), incx); }
double dzasum(int n, const double *x, int incx) { return dzasum_master(1, n, x, incx); }

int izamax_master(int, int n, const double *x, int incx) { return iamax(n, cx(x), incx); }
int izamax(int n, const double *x, int incx) { return izamax_master(1, n, x, incx); }

} // namespace zek

extern "C" {

void f06aaf_ENTRY(int selector, double *a, double *b, double *c, double *s) { zek::drotg_master(selector, a, b, c, s); }
void DROTG(double *a, double *b, double *c, double *s) { zek::drotg_master(0, a, b, c, s); }

double DDOT(int n, const double *x, int incx, const double *y, int incy) {
    return zek::ddot_master(0, n, x, incx, y, incy);
}
void DAXPY(int n, double alpha, const double *x, int incx, double *y, int incy) {
    zek::daxpy_master(0, n, alpha, x, incx, y, incy);
}
void DSCAL(int n, double alpha, double *x, int incx) { zek::dscal_master(0, n, alpha, x, incx); }
void DCOPY(int n, const double *x, int incx, double *y, int incy) { zek::dcopy_master(0, n, x, incx, y, incy); }
void DSWAP(int n, double *x, int incx, double *y, int incy) { zek::dswap_master(0, n, x, incx, y, incy); }

// The masters of the norms use the frozen constants; the exported forms read them at run time.
double f06ejf_ENTRY(int, int n, const double *x, int incx) { return zek::nrm2(n, x, incx, zek::kFrozenConstants); }
double DNRM2_STUB(int n, const double *x, int incx) { return f06ejf_ENTRY(0, n, x, incx); }
double DNRM2(int n, const double *x, int incx) { return zek::nrm2(n, x, incx, zek::runtime_constants()); }

double f06jjf_ENTRY(int, int n, const double *x, int incx) {
    return zek::nrm2(n, reinterpret_cast<const zek::Complex *>(x), incx, zek::kFrozenConstants);
}
double DZNRM2(int n, const double *x, int incx) {
    return zek::nrm2(n, reinterpret_cast<const zek::Complex *>(x), incx, zek::runtime_constants());
}

} // extern "C"
