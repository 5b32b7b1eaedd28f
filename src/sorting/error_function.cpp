// The error function and its complement: S15_ERF, S15_ERFC and the two normal tails.
#include <cmath>

#include "sorting/functions.h"
#include "sorting/function_tables.h"

namespace zek::special {

namespace {

// Sum of c_k T_k with c_0 doubled, by Clenshaw's recurrence on twice the variable: (b0 - b2)/2.
template <int N>
double clenshaw(const double (&c)[N], double twice_u) {
    double b0 = 0.0, b1 = 0.0, b2 = 0.0;
    for (int k = N - 1; k >= 0; --k) {
        b2 = b1;
        b1 = b0;
        b0 = twice_u * b1 - b2 + c[k];
    }
    return (b0 - b2) * 0.5;
}

// exp(-(hi + lo)^2), with the square split exactly (Dekker's product) so that the rounding of x^2,
// which would cost x^2 units of the last place in the far tail, costs nothing.
double exp_minus_square(double hi, double lo) {
    const dd::DD sq = dd::two_product(hi, hi);
    const double low = sq.lo + 2.0 * hi * lo;
    const double r = std::exp(-sq.hi);
    return r - r * low;
}

// erf(x) for |x| < 2: x times a Chebyshev series in x^2/2 - 1.
// The variable x^2 - 2 is formed from the exact square, so that it carries one rounding.
double erf_small(double x) {
    const dd::DD sq = dd::two_product(x, x);
    return x * clenshaw(kErfSmall, (sq.hi - 2.0) + sq.lo);
}

// The Chebyshev variable of kErfc: u = (2t - t0 - t1)/(t1 - t0) with t = 1 - 7.5/(x + 3.75), that is
// kAlpha - kGamma/(x + 3.75).
constexpr double kT0 = -0.7647058823529411;
constexpr double kT1 = 0.7528830313014827;
constexpr double kAlpha = (2.0 - kT0 - kT1) / (kT1 - kT0);
constexpr double kGamma = 15.0 / (kT1 - kT0);

// erfc(x) for 1/2 <= x < 26.6: exp(-x^2) H(u) / (x + 1/2).  H varies by a fifth over the interval, so
// the rounding of u costs little; the rounding of d = x + 1/2 (and the low part of x) is taken back by
// the factor 1 - d_lo/d.
double erfc_positive(double hi, double lo) {
    const dd::DD sum = dd::two_sum(hi, 0.5);
    const double d = sum.hi, d_lo = sum.lo + lo;
    const double u = kAlpha - kGamma / (hi + 3.75);
    const double value = exp_minus_square(hi, lo) * clenshaw(kErfc, 2.0 * u) / d;
    return value - value * (d_lo / d);
}

} // namespace

double erfc_pair(double hi, double lo) {
    if (hi >= 26.6) return 0.0;
    if (hi <= -6.25) return 2.0;
    // Near zero erfc is close to 1 and 1 - erf keeps every digit; the low part enters through the
    // derivative -2/sqrt(pi) exp(-x^2).
    if (std::fabs(hi) < 0.5) return (1.0 - erf_small(hi)) - lo * 1.1283791670955126 * std::exp(-hi * hi);
    if (hi >= 0.0) return erfc_positive(hi, lo);
    return 2.0 - erfc_positive(-hi, -lo);
}

namespace {

// x/sqrt(2) as an unevaluated pair: the product with the double 0.7071067811865475 and its exact error.
void times_root_half(double x, double &hi, double &lo) {
    const dd::DD p = dd::two_product(0.7071067811865475, x);
    hi = p.hi;
    lo = p.lo;
}

} // namespace

} // namespace zek::special

extern "C" {

double S15_ERFC(double x) { return zek::special::erfc_pair(x, 0.0); }

double S15_ERF(double x) {
    const double ax = std::fabs(x);
    if (ax >= 6.25) return x > 0.0 ? 1.0 : -1.0;
    if (ax < 2.0) return zek::special::erf_small(x);
    // Here erfc(|x|) < 0.005, so its few units of rounding vanish in 1 - erfc.
    const double g = zek::special::clenshaw(zek::special::kErfLarge, 20.0 / (ax + 3.0) - 2.0);
    const double value = 1.0 - std::exp(-x * x) * g / (ax * 1.772453850905516);
    return x > 0.0 ? value : -value;
}

double S15_UPPER_TAIL(double x) {
    double hi = 0.0, lo = 0.0;
    zek::special::times_root_half(x, hi, lo);
    return 0.5 * zek::special::erfc_pair(-hi, -lo);
}

double S15_LOWER_TAIL(double x) {
    double hi = 0.0, lo = 0.0;
    zek::special::times_root_half(x, hi, lo);
    return 0.5 * zek::special::erfc_pair(hi, lo);
}

} // extern "C"
