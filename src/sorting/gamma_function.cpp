// The gamma function and its logarithm: s14aac, S14AAF (with its front) and s14abc.
#include <cmath>

#include "frame/ifail.h"
#include "frame/output.h"
#include "frame/raise.h"
#include "sorting/functions.h"
#include "sorting/function_tables.h"

namespace zek {

namespace {

// Catalogue codes of this family beyond those the frame names.

// Euler's constant: Gamma(x) = 1/x - gamma + O(x) near zero.
constexpr double kEuler = 0.5772156649015329;

// Gamma(1 + g) for g in [0, 1], w = 2g - 1.
double gamma_one_plus(double g) {
    const double w = 2.0 * g - 1.0;
    constexpr int n = sizeof special::kGamma / sizeof special::kGamma[0];
    double p = special::kGamma[n - 1];
    for (int k = n - 2; k >= 0; --k) p = p * w + special::kGamma[k];
    return 0.886226925452758 + (special::kGammaLow[0] + w * p);
}

// The product of COUNT factors x + step k: x - 1, x - 2, ... for step -1 (k from 1), and x, x + 1, ...
// for step 1 (k from 0).  Four interleaved partial products keep the multiplications from waiting on
// one another.
long double factor_product(double x, double step, double count) {
    long double f0 = 1.0L, f1 = 1.0L, f2 = 1.0L, f3 = 1.0L;
    double k = step < 0.0 ? 1.0 : 0.0;
    const double end = k + count;
    for (; k + 3.0 < end; k += 4.0) {
        f0 *= static_cast<long double>(x + step * k);
        f1 *= static_cast<long double>(x + step * (k + 1.0));
        f2 *= static_cast<long double>(x + step * (k + 2.0));
        f3 *= static_cast<long double>(x + step * (k + 3.0));
    }
    for (; k < end; k += 1.0) f0 *= static_cast<long double>(x + step * k);
    return (f0 * f1) * (f2 * f3);
}

enum class GammaFailure { None, TooLarge, TooNegative, TooSmall, NegativeInteger };

struct GammaResult {
    double value;
    GammaFailure failure;
};

// Gamma(x) with its failures.  The value is Gamma(1 + g) times a product of the factors between x and
// 1 + g; those factors are exact (x - i, like x + i, needs no rounding), and the product is taken in
// long double, which carries 64 bits on x86-64, so up to 169 factors cost well under one unit of the
// last place of the double result.
GammaResult gamma_with_failure(double x) {
    // A NaN is outside every range the function has; it takes the exit of the largest arguments.
    if (!(std::fabs(x) <= 170.0)) {
        return x < 0.0 ? GammaResult{0.0, GammaFailure::TooNegative} : GammaResult{4.3e304, GammaFailure::TooLarge};
    }
    if (std::fabs(x) <= 3e-15) {
        if (std::fabs(x) >= 2.23e-308) return {1.0 / x - kEuler, GammaFailure::None};
        return {std::signbit(x) ? -4.4843049327354256e307 : 4.4843049327354256e307, GammaFailure::TooSmall};
    }
    const double n = std::trunc(x);
    if (x > 0.0) {
        const double g = x - n;
        const double s = gamma_one_plus(g);
        if (n == 0.0) return {s / x, GammaFailure::None};
        return {static_cast<double>(factor_product(x, -1.0, n - 1.0) * s), GammaFailure::None};
    }
    const double g = x - (n - 1.0);
    if (g == 1.0) return {4.3e304, GammaFailure::NegativeInteger};
    const long double f = factor_product(x, 1.0, 2.0 - n);
    return {static_cast<double>(static_cast<long double>(gamma_one_plus(g)) / f), GammaFailure::None};
}

} // namespace

namespace {

// h(a) = log Gamma(1 + a) / (a (a - 1)) for a in [-0.2, 1.2], by Clenshaw's recurrence.
double log_gamma_h(double a) {
    const double twice_u = 2.0 * ((2.0 * a - 1.0) / 1.4);
    double b0 = 0.0, b1 = 0.0, b2 = 0.0;
    constexpr int n = sizeof special::kLogGammaNearOneTwo / sizeof(double);
    for (int k = n - 1; k >= 0; --k) {
        b2 = b1;
        b1 = b0;
        b0 = twice_u * b1 - b2 + special::kLogGammaNearOneTwo[k];
    }
    return (b0 - b2) * 0.5;
}

// log Gamma(x) for x in [0.5, 3.2], where it passes through zero at 1 and 2 and log(Gamma(x)) would
// keep only an absolute accuracy.  log Gamma(1 + a) = a (a - 1) h(a), and one step of the recurrence
// Gamma(x + 1) = x Gamma(x) brings the ends into the range of h; every difference below is exact.
double log_gamma_near_zeros(double x) {
    if (x < 0.8) return x * (x - 1.0) * log_gamma_h(x) - std::log(x);
    if (x <= 2.2) return (x - 1.0) * (x - 2.0) * log_gamma_h(x - 1.0);
    return std::log(x - 1.0) + (x - 2.0) * (x - 3.0) * log_gamma_h(x - 2.0);
}

} // namespace

double gamma_value(double x) { return gamma_with_failure(x).value; }

namespace special {

double stirling_correction(double x) {
    const double w = 450.0 / (x * x) - 1.0;
    constexpr int n = sizeof kStirling / sizeof kStirling[0];
    double p = kStirling[n - 1];
    for (int k = n - 2; k >= 0; --k) p = p * w + kStirling[k];
    return w * p + 0.08332716440657865;
}

} // namespace special

namespace {

// S14AAF's exits.
enum S14aafExit { kTooLarge, kTooNegative, kTooSmall, kNegativeInteger };
constexpr ExitRow kS14aafExits[] = {
    {1, 99999, " ** On entry, X is too large: X =%12.4E."},
    {2, 99998, " ** On entry, X is too large and negative: X =%12.4E."},
    {3, 99997, " ** On entry, X is too close to zero: X =%12.4E."},
    {4, 99996, " ** On entry, X is a negative integer: X =%12.4E."},
};

} // namespace

double s14aaf_worker(double x, char *errbuf, int *ifail, int /*errbuf_len*/) {
    FailureExit exit("S14AAF", errbuf, ifail);
    const GammaResult r = gamma_with_failure(x);
    switch (r.failure) {
    case GammaFailure::None: exit.succeed(); break;
    case GammaFailure::TooLarge: take(exit, kS14aafExits, kTooLarge, {x}); break;
    case GammaFailure::TooNegative: take(exit, kS14aafExits, kTooNegative, {x}); break;
    case GammaFailure::TooSmall: take(exit, kS14aafExits, kTooSmall, {x}); break;
    case GammaFailure::NegativeInteger: take(exit, kS14aafExits, kNegativeInteger, {x}); break;
    }
    return r.value;
}

} // namespace zek

extern "C" {

double S14AAF(const double *x, int *ifail) {
    zek::Front front("S14AAF");
    const double value = zek::s14aaf_worker(*x, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
    return value;
}

double s14aac(double x, ZekFail *fail) {
    static const char *const kName = "s14aac";
    zek::clear_fail(fail);
    const zek::GammaResult r = zek::gamma_with_failure(x);
    switch (r.failure) {
    case zek::GammaFailure::None: zek::raise_success(fail, kName); break;
    case zek::GammaFailure::TooLarge:
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_GT, "x", zek::format("%6.1g", 170.0).c_str(), x);
        break;
    case zek::GammaFailure::TooNegative:
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "x", zek::format("%7.1g", -170.0).c_str(), x);
        break;
    case zek::GammaFailure::TooSmall:
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_TOO_SMALL, "x", zek::format("%9.1g", 2.23e-308).c_str(), x);
        break;
    case zek::GammaFailure::NegativeInteger:
        zek::raise_formatted(fail, kName, ZE_REAL_ARG_NEG_INT, "x", "x", x);
        break;
    }
    return r.value;
}

double s14abc(double x, ZekFail *fail) {
    static const char *const kName = "s14abc";
    zek::clear_fail(fail);
    double value = 0.0;
    if (!(x >= 1e-15)) {
        if (!(x > 0.0)) {  // a NaN too: it is no positive number
            zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "x", "0.0", x);
            return 0.0;
        }
        value = -std::log(x);
    } else if (x >= 0.5 && x <= 3.2) {
        value = zek::log_gamma_near_zeros(x);
    } else if (x <= 15.0) {
        value = std::log(zek::gamma_with_failure(x).value);
    } else if (x <= 6.8e6) {
        value = zek::special::stirling_correction(x) / x + (std::log(x) * (x - 0.5) - x + 0.9189385332046727);
    } else if (x > 2.55e305) {
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_GT, "x", zek::format("%9.2g", 2.55e305).c_str(), x);
        return 1.79e308;
    } else {
        value = std::log(x) * (x - 0.5) - x + 0.9189385332046727;
    }
    zek::raise_success(fail, kName);
    return value;
}

} // extern "C"
