// Overflow-safe scalar arithmetic: capped division, rotations from a tangent or a pair, the scaled sum
// of squares, real and complex, and their exported forms (which read the machine constants at run
// time).
#include "kernels/safe_arithmetic.h"

#include <cmath>

#include "zek2/f06.h"

namespace zek {

namespace {

// flmax with the sign that x/y would have: negative when exactly one of them is negative.
double capped_quotient(double x, double y, double flmax) { return ((x < 0.0) != (y < 0.0)) ? -flmax : flmax; }

} // namespace

double safe_divide(double a, double b, int *fail, const SafeConstants &k) {
    if (a == 0.0) {
        *fail = b == 0.0;
        return 0.0;
    }
    if (b == 0.0) {
        *fail = 1;
        return a < 0.0 ? -k.flmax : k.flmax;
    }
    const double absb = std::fabs(b);
    if (absb >= 1.0) {
        *fail = 0;
        return std::fabs(a) < k.small * absb ? 0.0 : a / b;
    }
    if (std::fabs(a) <= absb * k.flmax) {
        *fail = 0;
        return a / b;
    }
    *fail = 1;
    return capped_quotient(a, b, k.flmax);
}

double safe_divide_master(int, double a, double b, int *fail) { return safe_divide(a, b, fail, kFrozenConstants); }
double safe_divide(double a, double b, int *fail) { return safe_divide_master(1, a, b, fail); }

void rotation_from_tangent(double t, double *c, double *s, const SafeConstants &k) {
    const double abst = std::fabs(t);
    if (abst < k.rteps) {
        *c = 1.0;
        *s = t;
    } else if (abst >= k.rrteps) {
        *c = 1.0 / abst;
        *s = t >= 0.0 ? 1.0 : -1.0;
    } else {
        *c = 1.0 / std::sqrt(1.0 + t * t);
        *s = *c * t;
    }
}

void rotation_from_tangent_master(int, double t, double *c, double *s) {
    rotation_from_tangent(t, c, s, kFrozenConstants);
}
void rotation_from_tangent(double t, double *c, double *s) { rotation_from_tangent_master(1, t, c, s); }

void rotation_from_pair(double *a, double *b, double *c, double *s, const SafeConstants &k) {
    if (*b == 0.0) {
        *c = 1.0;
        *s = 0.0;
        return;
    }
    int fail;
    const double t = safe_divide(*b, *a, &fail, k);
    rotation_from_tangent(t, c, s, k);
    *a = *c * *a + *s * *b;
    *b = t;
}

double norm_from_sumsq(double scale, double sumsq, const SafeConstants &k) {
    const double r = std::sqrt(sumsq);
    return scale < k.flmax / r ? scale * r : k.flmax;
}

double norm_from_sumsq_master(int, double scale, double sumsq) {
    return norm_from_sumsq(scale, sumsq, kFrozenConstants);
}
double norm_from_sumsq(double scale, double sumsq) { return norm_from_sumsq_master(1, scale, sumsq); }

double pythag(double a, double b) {
    if (a == 0.0) return std::fabs(b);
    if (b == 0.0) return std::fabs(a);
    const double absa = std::fabs(a), absb = std::fabs(b);
    if (absa >= absb) {
        const double r = b / a;
        return absa * std::sqrt(1.0 + r * r);
    }
    const double r = a / b;
    return absb * std::sqrt(1.0 + r * r);
}

namespace {

// One element of the scaled sum of squares.  The quotient depends only on scale, which changes
// rarely, so successive divisions overlap and only the addition into sumsq is serial.
inline void fold(double value, double &scale, double &sumsq) {
    if (value != 0.0) {
        const double m = std::fabs(value);
        if (scale < m) {
            const double r = scale / m;
            sumsq = 1.0 + sumsq * (r * r);
            scale = m;
        } else {
            const double r = m / scale;
            sumsq = sumsq + r * r;
        }
    }
}

} // namespace

void sumsq_update(int n, const double *x, int incx, double *scale, double *sumsq) {
    typedef double v2d __attribute__((vector_size(16)));
    double sc = *scale, sq = *sumsq;
    std::ptrdiff_t ix = 0;
    const std::ptrdiff_t inc = incx;
    int i = 0;
    // Four elements at a time while none of them raises the scale: the quotients are formed two to a
    // division, and the additions into sumsq stay one at a time in order.  An exact zero then adds
    // (0/scale)**2 = 0, which leaves sumsq as skipping it would.
    for (; i + 4 <= n; i += 4, ix += 4 * inc) {
        const double m0 = std::fabs(x[ix]), m1 = std::fabs(x[ix + inc]), m2 = std::fabs(x[ix + 2 * inc]),
                     m3 = std::fabs(x[ix + 3 * inc]);
        if (sc > 0.0 && !(sc < m0) && !(sc < m1) && !(sc < m2) && !(sc < m3)) {
            const v2d d = {sc, sc};
            const v2d q01 = v2d{m0, m1} / d, q23 = v2d{m2, m3} / d;
            const v2d r01 = q01 * q01, r23 = q23 * q23;
            sq = sq + r01[0];
            sq = sq + r01[1];
            sq = sq + r23[0];
            sq = sq + r23[1];
        } else {
            fold(x[ix], sc, sq);
            fold(x[ix + inc], sc, sq);
            fold(x[ix + 2 * inc], sc, sq);
            fold(x[ix + 3 * inc], sc, sq);
        }
    }
    for (; i < n; ++i, ix += inc) fold(x[ix], sc, sq);
    *scale = sc;
    *sumsq = sq;
}

void sumsq_update(int n, const Complex *x, int incx, double *scale, double *sumsq) {
    double sc = *scale, sq = *sumsq;
    std::ptrdiff_t ix = 0;
    for (int i = 0; i < n; ++i, ix += incx) {
        fold(x[ix].re, sc, sq);
        fold(x[ix].im, sc, sq);
    }
    *scale = sc;
    *sumsq = sq;
}

void sumsq_update_master(int, int n, const double *x, int incx, double *scale, double *sumsq) {
    sumsq_update(n, x, incx, scale, sumsq);
}

Complex complex_safe_divide(Complex a, Complex b, int *fail) {
    const SafeConstants &k = kFrozenConstants;
    if (a.re == 0.0 && a.im == 0.0) {
        *fail = b.re == 0.0 && b.im == 0.0;
        return {0.0, 0.0};
    }
    const double biggest = std::fmax(std::fmax(std::fabs(a.re), std::fabs(a.im)),
                                     std::fmax(std::fabs(b.re), std::fabs(b.im)));
    if (biggest >= k.half_max) {
        a = 0.5 * a;
        b = 0.5 * b;
    }
    if (b.re == 0.0 && b.im == 0.0) {
        *fail = 1;
        return {a.re >= 0.0 ? k.flmax : -k.flmax, a.im >= 0.0 ? k.flmax : -k.flmax};
    }
    double d, p, q;
    if (std::fabs(b.re) >= std::fabs(b.im)) {
        const double r = b.im / b.re;
        d = b.re + r * b.im;
        p = a.re + a.im * r;
        q = a.im - a.re * r;
    } else {
        const double r = b.re / b.im;
        d = b.im + r * b.re;
        p = a.re * r + a.im;
        q = a.im * r - a.re;
    }
    const double absd = std::fabs(d);
    if (absd >= 1.0 || (std::fabs(p) < absd * k.flmax && std::fabs(q) < absd * k.flmax)) {
        *fail = 0;
        return {p / d, q / d};
    }
    *fail = 1;
    return {capped_quotient(p, d, k.flmax), capped_quotient(q, d, k.flmax)};
}

void complex_rotation_from_tangent(Complex t, double *c, Complex *s) {
    const SafeConstants &k = kFrozenConstants;
    // The modulus without overflow: a capped tangent has parts near the safe maximum.
    const double m = pythag(t.re, t.im);
    if (m > k.rrteps) {
        *s = {t.re / m, t.im / m};
        *c = m >= k.half_max ? 0.0 : 1.0 / m;
    } else if (m < k.rteps) {
        *c = 1.0;
        *s = t;
    } else {
        *c = 1.0 / std::sqrt(m * m + 1.0);
        *s = *c * t;
    }
}

void complex_rotation_from_pair(Complex *a, Complex *b, double *c, Complex *s) {
    if (b->re == 0.0 && b->im == 0.0) {
        *c = 1.0;
        *s = {0.0, 0.0};
        return;
    }
    int fail;
    Complex t = complex_safe_divide(*b, *a, &fail);
    const bool a_real = a->im == 0.0;
    if (fail) {
        t = 0.5 * t;
        if (a_real) {
            // Both parts of a capped tangent have the same size; restore the phase of b.
            const double br = std::fabs(b->re), bi = std::fabs(b->im);
            if (br >= bi)
                t.im *= bi / br;
            else
                t.re *= br / bi;
        }
    }
    complex_rotation_from_tangent(t, c, s);
    Complex r = *c * *a + conj(*s) * *b;
    if (a_real) r.im = 0.0;
    *a = r;
    *b = t;
}

} // namespace zek

extern "C" {

double F06_SAFE_DIVIDE(double a, double b, int *fail) {
    return zek::safe_divide(a, b, fail, zek::runtime_constants());
}

void F06_ROTATION_FROM_TANGENT(double t, double *c, double *s) {
    zek::rotation_from_tangent(t, c, s, zek::runtime_constants());
}

void F06_ROTATION_FROM_PAIR(double *a, double *b, double *c, double *s) {
    zek::rotation_from_pair(a, b, c, s, zek::runtime_constants());
}

void F06_ROTATION_FROM_PAIR_FROZEN(double *a, double *b, double *c, double *s) {
    zek::rotation_from_pair(a, b, c, s, zek::kFrozenConstants);
}

double F06_NORM_FROM_SUMSQ(double scale, double sumsq) {
    return zek::norm_from_sumsq(scale, sumsq, zek::runtime_constants());
}

void F06_SUMSQ_UPDATE(int n, const double *x, int incx, double *scale, double *sumsq) {
    zek::sumsq_update_master(0, n, x, incx, scale, sumsq);
}

void F06_COMPLEX_ROTATION_FROM_PAIR(double *a, double *b, double *c, double *s) {
    zek::complex_rotation_from_pair(reinterpret_cast<zek::Complex *>(a), reinterpret_cast<zek::Complex *>(b), c,
                                    reinterpret_cast<zek::Complex *>(s));
}

} // extern "C"
