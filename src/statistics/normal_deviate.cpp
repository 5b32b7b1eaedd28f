// The inverse of the standard normal distribution function.
//
// With q = p - 1/2 and m = min(p, 1 - p) the deviate comes from one of four forms:
//
//   |q| <= 0.3          x = q P(q^2) / Q(q^2), degree 5/5 in q^2             relative error 1.9e-17
//   0.3 < |q| <= 0.42   x = P(t) / Q(t), t = |q| - 0.3, degree 5/5           relative error 5.0e-13
//   m >= DBL_MIN        x = r + P(r) / Q(r), r = sqrt(-log m), degree 6/6    relative error 1.5e-11
//   m < DBL_MIN         Newton's method on log Q(x) = log m from r = sqrt(-2 log DBL_MIN)
//
// each taking the sign of q.  The coefficients are minimax fits of the relative error of x, made for
// this library by tools/normal_deviate_fit.py (mpmath at 50 digits, Remez exchange); the errors above
// are those of the fits.  The first form is exact to rounding as it stands.  The degrees of the
// second and third cannot do better over their ranges, so their value takes Halley's step on the
// upper tail Q(x) = m.  A step whose size is below 1.5e-09 of x leaves an error of the order of its
// cube, far under rounding, so it needs no successor; starting from the fits' errors the first step
// always passes that test.
//
// Below DBL_MIN the tail itself is subnormal and erfc would lose its digits, so the last form works
// with log Q(x) = -x^2/2 - log(x sqrt(2 pi)) + log S(x), S the asymptotic series of the Mills ratio,
// which at x >= 37 is exact to rounding after five terms.
#include <cmath>

#include "statistics/distributions.h"
#include "zek2/s.h"

namespace zek::dist {

namespace {

constexpr double kInvRootTwoPi = 0.39894228040143268;
constexpr double kLogRootTwoPi = 0.91893853320467274;
constexpr double kCentralLimit = 0.3, kMiddleLimit = 0.42;
// A refinement step below this fraction of x is the last one.
constexpr double kSettled = 1.5e-09;
constexpr int kStepLimit = 8;
constexpr double kSmallestNormal = 2.2250738585072014e-308;

constexpr double kCentralP[] = {2.5066282746310006,     -2.4625619743348828e+1, 8.529532127209656e+1,
                                -1.2223776050654921e+2, 6.3097597001998733e+1,  -5.7442663149211402};
constexpr double kCentralQ[] = {1.0,                    -1.087139844790668e+1, 4.3109504114990406e+1,
                                -7.5124622590461872e+1, 5.3752214650564996e+1, -1.0806858960995781e+1};
constexpr double kMiddleP[] = {8.416212335733373e-1,  -6.0019961967929671,    -4.7260512549950528e-1,
                               6.8249753536960984e+1, -9.6235908654186737e+1, -1.0478738554238555e+1};
constexpr double kMiddleQ[] = {1.0,                    -1.1375557270681043e+1, 4.1338035383916243e+1,
                               -4.3590787464309927e+1, -2.125690578149376e+1,  2.5085192508291882e+1};
constexpr double kTailP[] = {-3.1696346108936078,    -1.2235004315049974e+1, -3.5172144755891595,
                             3.0865891938212899,     1.2715124322392087,     1.2935994522833336e-1,
                             3.2662461896476719e-3};
constexpr double kTailQ[] = {1.0,                   7.6252507138744217,     9.6879445639371029,
                             3.1484865300516568,    3.1247540928497741e-1,  7.8843774613810621e-3,
                             4.4916629767782865e-9};

template <std::size_t N>
double horner(const double (&c)[N], double v) {
    double s = c[N - 1];
    for (std::size_t i = N - 1; i-- > 0;) s = s * v + c[i];
    return s;
}

// Halley's steps on Q(x) = m for x > 0, Q the upper normal tail, until one passes the settled test.
double refine_upper(double x, double m) {
    for (int it = 0; it < kStepLimit; ++it) {
        const double phi = std::exp(-0.5 * x * x) * kInvRootTwoPi;
        const double d = (S15_LOWER_TAIL(x) - m) / phi;
        const double step = d / (1.0 - 0.5 * x * d);
        if (!std::isfinite(step)) break;
        x += step;
        if (std::fabs(step) <= kSettled * x) break;
    }
    return x;
}

// The x > 0 with Q(x) = m for a subnormal m, by Newton's method on -log Q(x) = -log m.
double subnormal_upper(double m) {
    const double target = -std::log(m);
    double x = std::sqrt(-2.0 * std::log(kSmallestNormal));
    for (int it = 0; it < kStepLimit; ++it) {
        const double u = 1.0 / (x * x);
        const double series = 1.0 + u * (-1.0 + u * (3.0 + u * (-15.0 + u * (105.0 - u * 945.0))));
        const double h = 0.5 * x * x + std::log(x) + kLogRootTwoPi - std::log(series) - target;
        // d(-log Q)/dx = phi / Q = x / S(x).
        const double step = h * series / x;
        x -= step;
        if (std::fabs(step) <= kSettled * x) break;
    }
    return x;
}

} // namespace

double normal_deviate(double p) {
    const double q = p - 0.5;
    if (q == 0.0) return 0.0;
    const double aq = std::fabs(q);
    if (aq <= kCentralLimit) {
        const double s = q * q;
        return q * horner(kCentralP, s) / horner(kCentralQ, s);
    }
    // The smaller tail, exactly: p itself below 1/2, and 1 - p above it by Sterbenz's lemma.
    const double m = q < 0.0 ? p : 1.0 - p;
    double x;
    if (aq <= kMiddleLimit) {
        const double t = aq - kCentralLimit;
        x = refine_upper(horner(kMiddleP, t) / horner(kMiddleQ, t), m);
    } else if (m >= kSmallestNormal) {
        const double r = std::sqrt(-std::log(m));
        x = refine_upper(r + horner(kTailP, r) / horner(kTailQ, r), m);
    } else {
        x = subnormal_upper(m);
    }
    return q < 0.0 ? -x : x;
}

} // namespace zek::dist
