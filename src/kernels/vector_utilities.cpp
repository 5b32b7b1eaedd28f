// Vector loads, copies and products of the library's own, and the leading-rank test.
#include "kernels/vector_utilities.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "kernels/level1.h"
#include "zek2/f06.h"

namespace zek {

namespace {

template <class T, class F> inline void each(int n, int incx, T *x, F &&f) {
    if (incx == 1) {
        for (std::ptrdiff_t i = 0; i < n; ++i) f(x[i]);
    } else {
        std::ptrdiff_t ix = 0;
        for (int k = 0; k < n; ++k, ix += incx) f(x[ix]);
    }
}

// Pairs in logical order, a negative increment walking from the far end.
template <class F> inline void each_pair(int n, int incx, int incy, F &&f) {
    if (n < 1) return;
    std::ptrdiff_t ix = first_offset(n, incx), iy = first_offset(n, incy);
    for (int k = 0; k < n; ++k, ix += incx, iy += incy) f(ix, iy);
}

} // namespace

void int_load(int n, int konst, int *x, int incx) {
    each(n, incx, x, [=](int &v) { v = konst; });
}
void int_load_master(int, int n, int konst, int *x, int incx) { int_load(n, konst, x, incx); }

void int_copy(int n, const int *x, int incx, int *y, int incy) {
    each_pair(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) { y[iy] = x[ix]; });
}
void int_copy_master(int, int n, const int *x, int incx, int *y, int incy) { int_copy(n, x, incx, y, incy); }

void vector_load(int n, double konst, double *x, int incx) {
    each(n, incx, x, [=](double &v) { v = konst; });
}

void vector_load(int n, Complex konst, Complex *x, int incx) {
    if (n < 1) return;
    if (konst.re == 0.0 && konst.im == 0.0 && incx == 1) {
        std::memset(static_cast<void *>(x), 0, static_cast<std::size_t>(n) * sizeof(Complex));
        return;
    }
    each(n, incx, x, [=](Complex &v) { v = konst; });
}
void vector_load_master(int, int n, double konst, double *x, int incx) { vector_load(n, konst, x, incx); }

void vector_multiply(int n, const double *x, int incx, double *y, int incy) {
    if (n < 1) return;
    if (incx == 0 && incy != 0) {
        scal(n, x[0], y, std::abs(incy));
        return;
    }
    each_pair(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) { y[iy] = x[ix] * y[iy]; });
}

void vector_multiply(int n, const Complex *x, int incx, Complex *y, int incy) {
    if (n < 1) return;
    if (incx == 0 && incy != 0) {
        scal(n, x[0], y, std::abs(incy));
        return;
    }
    each_pair(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) { y[iy] = x[ix] * y[iy]; });
}
void vector_multiply_master(int, int n, const double *x, int incx, double *y, int incy) {
    vector_multiply(n, x, incx, y, incy);
}

void scaled_copy(int n, double alpha, const double *x, int incx, double *y, int incy) {
    if (n < 1) return;
    if (alpha == 0.0 && incy != 0) {
        vector_load(n, 0.0, y, std::abs(incy));
        return;
    }
    each_pair(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) { y[iy] = alpha * x[ix]; });
}

void scaled_copy(int n, Complex alpha, const Complex *x, int incx, Complex *y, int incy) {
    if (n < 1) return;
    if (alpha.re == 0.0 && alpha.im == 0.0 && incy != 0) {
        vector_load(n, Complex{0.0, 0.0}, y, std::abs(incy));
        return;
    }
    each_pair(n, incx, incy, [&](std::ptrdiff_t ix, std::ptrdiff_t iy) { y[iy] = alpha * x[ix]; });
}

void negate(int n, double *x, int incx) {
    each(n, incx, x, [](double &v) { v = -v; });
}
void negate_master(int, int n, double *x, int incx) { negate(n, x, incx); }

void abs_max_min(int n, const double *x, int incx, double *xmax, double *xmin) {
    if (n < 1) {
        *xmax = 0.0;
        *xmin = 0.0;
        return;
    }
    double big = std::fabs(x[0]), tiny = big;
    each(n, incx, x, [&](const double &v) {
        const double a = std::fabs(v);
        if (a > big) big = a;
        if (a < tiny) tiny = a;
    });
    *xmax = big;
    *xmin = tiny;
}

int leading_rank(int n, const double *x, int incx, double tol, const SafeConstants &k) {
    if (n < 1) return 0;
    if (tol < 0.0) tol = k.eps;
    double m = std::fabs(x[0]);
    std::ptrdiff_t ix = 0;
    for (int i = 1; i <= n; ++i, ix += incx) {
        const double a = std::fabs(x[ix]);
        if (m * tol >= a) return i - 1;
        if (a > m) m = a;
    }
    return n;
}
int leading_rank_master(int, int n, const double *x, int incx, double tol) {
    return leading_rank(n, x, incx, tol, kFrozenConstants);
}
int leading_rank(int n, const double *x, int incx, double tol) { return leading_rank_master(1, n, x, incx, tol); }

} // namespace zek

extern "C" {

void F06_INT_LOAD(int n, int konst, int *x, int incx) { zek::int_load_master(0, n, konst, x, incx); }
void F06_INT_COPY(int n, const int *x, int incx, int *y, int incy) { zek::int_copy_master(0, n, x, incx, y, incy); }
void F06_VECTOR_LOAD(int n, double konst, double *x, int incx) { zek::vector_load_master(0, n, konst, x, incx); }
void F06_VECTOR_MULTIPLY(int n, const double *x, int incx, double *y, int incy) {
    zek::vector_multiply_master(0, n, x, incx, y, incy);
}
void F06_VECTOR_SCALED_COPY(int n, double alpha, const double *x, int incx, double *y, int incy) {
    zek::scaled_copy(n, alpha, x, incx, y, incy);
}
void F06_VECTOR_SCALED_COPY_ALIAS(int n, double alpha, const double *x, int incx, double *y, int incy)
    ZEK_ALIAS("q46286");
void F06_COMPLEX_SCALED_COPY(int n, double alpha_re, double alpha_im, const double *x, int incx, double *y,
                             int incy) {
    zek::scaled_copy(n, zek::Complex{alpha_re, alpha_im}, reinterpret_cast<const zek::Complex *>(x), incx,
                     reinterpret_cast<zek::Complex *>(y), incy);
}
void F06_VECTOR_NEGATE(int n, double *x, int incx) { zek::negate_master(0, n, x, incx); }
int F06_LEADING_RANK(int n, const double *x, int incx, double tol) {
    return zek::leading_rank(n, x, incx, tol, zek::runtime_constants());
}

} // extern "C"
