// Complex arithmetic on separate parts: modulus, Smith's quotient and the principal square root.
#include <cmath>

#include "zek2/a02.h"
#include "zek2/frame.h"

extern "C" {

double A02_MODULUS(double a, double b) {
    const double x = std::fabs(a), y = std::fabs(b);
    const double p = x > y ? x : y;
    const double q = x > y ? y : x;
    if (q == 0.0) return p;
    const double r = q / p;
    return p * std::sqrt(1.0 + r * r);
}

void A02_DIVIDE(double a, double b, double c, double d, double *re, double *im) {
    // Smith's method multiplies by the reciprocal of the scaled denominator; when that reciprocal
    // overflows (a subnormal divisor) the parts are divided instead, so that a zero part stays zero
    // rather than becoming 0 * Inf.
    const bool by_d = std::fabs(c) < std::fabs(d);
    const double r = by_d ? c / d : d / c;
    const double q = by_d ? d + c * r : c + d * r;
    const double den = 1.0 / q;
    const double x = by_d ? a * r + b : a + b * r;
    const double y = by_d ? b * r - a : b - a * r;
    if (std::isinf(den) && q != 0.0) {
        *re = x / q;
        *im = y / q;
    } else {
        *re = x * den;
        *im = y * den;
    }
}

void A02_SQRT(double a, double b, double *re, double *im) {
    const double aa = std::fabs(a);
    // Halving both parts above 1 keeps the modulus plus |a| from overflowing, up to parts near the largest
    // number (an |a| above 1e300), where a quarter of each is taken and the root doubled back by sqrt(2).
    const double r = aa > 1e300
                         ? std::sqrt(A02_MODULUS(aa * 0.25, b * 0.25) + aa * 0.25) * 1.4142135623730951
                     : aa > 1.0 ? std::sqrt(A02_MODULUS(aa * 0.5, b * 0.5) + aa * 0.5)
                                : std::sqrt(A02_MODULUS(aa, b) + aa) * 0.7071067811865476;
    const double s = b != 0.0 ? b / (2.0 * r) : 0.0;
    if (a >= 0.0) {
        *re = r;
        *im = s;
    } else if (s >= 0.0) {
        *re = s;
        *im = r;
    } else {
        *re = -s;
        *im = -r;
    }
}

void A02_SQRT_BYREF(const double *a, const double *b, double *re, double *im) {
    ZEK_MARK_REAL(re);
    ZEK_MARK_REAL(im);
    A02_SQRT(*a, *b, re, im);
}

} // extern "C"
