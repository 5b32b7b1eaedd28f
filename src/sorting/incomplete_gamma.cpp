// The incomplete gamma ratios P(a, x) and Q(a, x): s14bac and its uniform asymptotic branch.
#include <algorithm>
#include <cmath>

#include "frame/machine.h"
#include "frame/output.h"
#include "frame/raise.h"
#include "sorting/double_double.h"
#include "sorting/functions.h"
#include "sorting/function_tables.h"

namespace zek {

namespace {

constexpr int kTermLimit = 600;

template <int N>
double polynomial(const double (&c)[N], double v) {
    double p = c[N - 1];
    for (int k = N - 2; k >= 0; --k) p = p * v + c[k];
    return p;
}

} // namespace

namespace special {

dd::DD gamma_exponent(double a, double x) {
    // Beyond 1e290 the exact products could overflow in their splitting; the factor underflows there
    // unless x is close to a, which the uniform expansion takes.
    if (a > 1e290 || x > 1e290) return {(x - a) - a * (std::log(x) - std::log(a)), 0.0};
    return dd::scaled_log1pmx(a, {x, 0.0}, {a, 0.0});
}

double S14_RATIO_FUNCTION(double m) {
    const double r = m <= 0.0 ? polynomial(kRatioNegative, 4.0 * m + 1.0) : polynomial(kRatioPositive, 4.0 * m - 1.0);
    return m * m * r;
}

double log1p_ratio(double m) {
    if (std::fabs(m) <= 0.5) return m <= 0.0 ? polynomial(kRatioNegative, 4.0 * m + 1.0) : polynomial(kRatioPositive, 4.0 * m - 1.0);
    // Beyond |m| = 1/2 the difference keeps at least a quarter of its terms' size.
    return (m - std::log1p(m)) / (m * m);
}

namespace {

// T(eta, a) = sum_k a^-k C_k(eta): each row by Horner in eta, the rows by Horner in 1/a.
double uniform_sum(double eta, double a) {
    const double ia = 1.0 / a;
    int end = 0;
    for (int k = 0; k < kUniformRows; ++k) end += kUniformRow[k];
    double sum = 0.0;
    for (int k = kUniformRows - 1; k >= 0; --k) {
        const int begin = end - kUniformRow[k];
        double row = kUniform[end - 1];
        for (int j = end - 2; j >= begin; --j) row = row * eta + kUniform[j];
        sum = sum * ia + row;
        end = begin;
    }
    return sum;
}

} // namespace

double S14_UNIFORM(double a, double x, bool lower, double /*tol*/, double tiny) {
    // y = a (m - log(1 + m)), m = (x - a)/a, in double-double: both erfc(sqrt(y)) and exp(-y) turn an
    // absolute error in y into the same relative error, and y reaches 700 before they underflow.
    const dd::DD y = gamma_exponent(a, x);
    dd::DD z = y.hi > 0.0 ? dd::root(y) : dd::DD{0.0, 0.0};
    double eta = std::sqrt(2.0 * y.hi / a);
    if (x < a) {
        z = dd::neg(z);
        eta = -eta;
    }
    const double s = lower ? -1.0 : 1.0;
    const double v = 0.5 * erfc_pair(s * z.hi, s * z.lo);
    if (-y.hi < std::log(tiny)) return v;
    return v + s * dd::exp_minus(y) * uniform_sum(eta, a) / (std::sqrt(a) * 2.5066282746310007);
}

} // namespace special

namespace {

// x^a e^-x / Gamma(a + 1) = exp(-y) B(a), where y = a phi(m), phi(m) = m - log(1 + m), m = (x - a)/a,
// and B(a) = a^a e^-a / Gamma(a + 1).  Formed so, the factor has the accuracy of y, which is carried in
// double-double (gamma_exponent), where a log x - x - log Gamma(a + 1) would lose about a log x + x
// units of the last place to cancellation.  B comes from the Stirling correction from a = 20 on, and
// from a^a e^-a and Gamma below.
double power_factor(double a, double x, double tiny) {
    const dd::DD y = special::gamma_exponent(a, x);
    double log_b;
    if (a >= 20.0) {
        log_b = -(special::stirling_correction(a) / a + 0.5 * std::log(a) + 0.9189385332046727);
    } else if (a < 1.0) {
        log_b = a * std::log(a) - a - std::log(gamma_value(1.0 + a));
    } else {
        log_b = (a - 1.0) * std::log(a) - a - std::log(gamma_value(a));
    }
    if (log_b - y.hi < std::log(tiny)) return 0.0;
    const double e = dd::exp_minus(y);
    if (a >= 20.0) return e / (std::sqrt(a) * 2.5066282746310002 * std::exp(special::stirling_correction(a) / a));
    if (a < 1.0) return e * (std::pow(a, a) * std::exp(-a) / gamma_value(1.0 + a));
    return e * (std::pow(a, a - 1.0) * std::exp(-a) / gamma_value(a));
}

} // namespace

} // namespace zek

extern "C" void s14bac(double a, double x, double tol, double *p, double *q, ZekFail *fail) {
    static const char *const kName = "s14bac";
    zek::clear_fail(fail);
    if (p == nullptr || q == nullptr) {
        zek::raise_text(fail, kName, ZE_NULL_ARRAY, p == nullptr ? "p" : "q");
        return;
    }
    *p = 0.0;
    *q = 0.0;
    if (!(a > 0.0)) {
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "a", "0.0", a);
        return;
    }
    if (x < 0.0) {
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "x", "0.0", x);
        return;
    }
    if (x == 0.0) {
        *q = 1.0;
        zek::raise_success(fail, kName);
        return;
    }
    double eps = std::max(zek::precision(), 1e-18);
    if (tol > eps && tol < 1.0) eps = tol;
    const double tiny = zek::safe_minimum();

    if (a >= 20.0 && x >= 0.7 * a && x / 1.4 < a) {
        if (a <= x) {
            *q = zek::special::S14_UNIFORM(a, x, false, eps, tiny);
            *p = 1.0 - *q;
        } else {
            *p = zek::special::S14_UNIFORM(a, x, true, eps, tiny);
            *q = 1.0 - *p;
        }
        zek::raise_success(fail, kName);
        return;
    }

    const double lx = std::log(x);
    const double switch_value = x >= 0.25 ? x + 0.25 : std::log(0.5) / lx;
    ZekFail local = zek::clean_fail();
    const double lg = s14abc(a + 1.0, &local);
    if (local.code == ZE_REAL_ARG_GT) {
        *p = x < a ? 0.0 : 1.0;
        *q = 1.0 - *p;
        zek::raise_success(fail, kName);
        return;
    }

    bool converged = false;
    if (a >= switch_value) {
        // P = x^a e^-x / Gamma(a + 1) (1 + x/(a+1) + x^2/((a+1)(a+2)) + ...).
        double term = 1.0, sum = 1.0;
        for (int n = 1; n <= zek::kTermLimit && !converged; ++n) {
            term *= x / (a + n);
            sum += term;
            converged = std::fabs(term) <= sum * eps;
        }
        *p = sum * zek::power_factor(a, x, tiny);
        *q = 1.0 - *p;
    } else if (x > 1.5) {
        if (x + 1.0 - a >= 1.0 / std::sqrt(tiny)) {
            // Q underflows long before the continued fraction would overflow.
            *p = 1.0;
            zek::raise_success(fail, kName);
            return;
        }
        // Q = a x^a e^-x / Gamma(a + 1) F, F = 1/(b1 + a2/(b2 + a3/(b3 + ...))) with b_k = x + 2k - 1 - a
        // and a_{k+1} = -k (k - a), summed term by term (Steed's method); the sum is normalised by b1
        // so that it starts at 1.
        const double b1 = x + 1.0 - a;
        double b = b1, d = 1.0 / b1, delta = 1.0, sum = 1.0;
        for (int k = 1; k <= zek::kTermLimit && !converged; ++k) {
            const double ak = -k * (k - a);
            b += 2.0;
            d = 1.0 / (b + ak * d);
            delta *= b * d - 1.0;
            sum += delta;
            converged = std::fabs(delta) <= sum * eps;
        }
        *q = sum * a / b1 * zek::power_factor(a, x, tiny);
        *p = 1.0 - *q;
    } else {
        // Small a and x: Q = (x^(a+1) S / (a + 1) + h) a / Gamma(a + 1), h = (Gamma(a + 1) - x^a) / a and
        // S = (a + 1) sum_j (-x)^j / ((j + 1)! (a + j + 1)).  The inner sum stops at a hundredth of the
        // working tolerance, since it is multiplied back up by the cancellation in h.
        double h;
        if (a <= 0.5) {
            // (x^a - 1)/a = log(x) (1 + z/2! + z^2/3! + ...), z = a log(x), |z| < log 2 here.
            const double z = a * lx;
            double term = 1.0, series = 1.0;
            for (int n = 2; n < 40; ++n) {
                term *= z / n;
                series += term;
                if (std::fabs(term) <= std::fabs(series) * 1e-17) break;
            }
            constexpr int m = sizeof zek::special::kGammaOnePlusMinusOne / sizeof(double);
            double g = zek::special::kGammaOnePlusMinusOne[m - 1];
            for (int k = m - 2; k >= 0; --k) g = g * a + zek::special::kGammaOnePlusMinusOne[k];
            h = g - lx * series;
        } else {
            ZekFail inner = zek::clean_fail();
            h = s14aac(a, &inner) - std::pow(x, a) / a;
        }
        const double inner_eps = eps / 100.0;
        double c = 1.0, sum = 1.0;
        for (int j = 1; j <= zek::kTermLimit && !converged; ++j) {
            c *= -x / (j + 1);
            const double term = c * (a + 1.0) / (a + j + 1.0);
            sum += term;
            converged = std::fabs(term) <= std::fabs(sum) * inner_eps;
        }
        *q = (std::pow(x, a + 1.0) * sum / (a + 1.0) + h) * a * std::exp(-lg);
        *p = 1.0 - *q;
    }
    if (!converged) {
        zek::raise_formatted(fail, kName, ZE_ALG_NOT_CONV, static_cast<long>(zek::kTermLimit));
        return;
    }
    zek::raise_success(fail, kName);
}
