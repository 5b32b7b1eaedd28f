// The numerical cores of the distribution functions: the incomplete beta ratio and its inverse, the
// normal and Student's t inverses, and the inverse of the incomplete gamma ratio.
//
// Every tail is computed directly where it is the smaller one, never as 1 minus the other, so tails
// keep their relative accuracy down to the underflow threshold.
#include <cfloat>
#include <cmath>

#include "frame/machine.h"
#include "sorting/functions.h"
#include "statistics/distributions.h"
#include "zek2/s.h"

namespace zek::dist {

namespace {

constexpr double kLogRootTwoPi = 0.91893853320467274;
constexpr double kEps = 1.1102230246251565e-16;
constexpr int kFractionLimit = 200000;
constexpr int kSolveLimit = 400;
// log of the smallest subnormal number, less a margin: a root below it rounds to zero.
constexpr double kLogSmallestSubnormal = -745.0;

// mu(z) = log Gamma(z) - ((z - 1/2) log z - z + log sqrt(2 pi)), for z >= 20.
double stirling_mu(double z) { return special::stirling_correction(z) / z; }

double log_gamma(double z) { return s14abc(z, nullptr); }

// log(a^a e^-a / Gamma(a)) for 0 < a < 20, from the factor itself, so its logarithm has the factor's
// few units of relative error as absolute error, where a log a - a - log Gamma(a) would lose a log a.
double log_scaled_gamma(double a) {
    const double f = a < 1.0 ? std::pow(a, a) * a / gamma_value(1.0 + a) : std::pow(a, a - 1.0) * a / gamma_value(a);
    return std::log(f) - a;
}

// log(x^a y^b / B(a, b)) as an unevaluated sum.  Its large parts are exponents of the form
// c phi(m), phi(m) = m - log(1 + m), carried in double-double, since exp turns an absolute error in them
// into the same relative error of the factor, and they reach 700 before it underflows.  The smaller of
// x and y is taken as exact and the other as 1 less it.
// - Both parameters large: about the mode x0 = a/s, s = a + b, a log(x/x0) + b log(y/y0) =
//   -a phi(m1) - b phi(m2), m1 = (x - x0)/x0, m2 = (y - y0)/y0 (a m1 + b m2 = s (x + y - 1) vanishes),
//   and the gamma functions by Stirling's series, so nothing of size a or b cancels.
// - One small (c, variable u) and one large (d, variable v = 1 - u): with t = s u,
//   c log u + d log v + log Gamma(s)/Gamma(d) = log(c^c e^-c) - c phi(t/c - 1) + c u - d phi(-u)
//   - c/(2d) - (d - 1/2) phi(c/d) + mu(s) - mu(d), the gamma-like exponent of t and the
//   normal-like one of u both exact to the double-double.
// - Both small: the logarithms in double-double and B(a, b) from the gamma function.
// Where the smaller variable is below the normal range (callers pass t^2/(nu + t^2) and the like, whose
// logarithm they know better than the underflowed value) its given logarithm LX or LY stands instead.
dd::DD log_power_factor(double a, double b, double x, double y, double lx, double ly) {
    const dd::DD xs = x <= y ? dd::DD{x, 0.0} : dd::two_sum(1.0, -y);
    const dd::DD ys = x <= y ? dd::two_sum(1.0, -x) : dd::DD{y, 0.0};
    const bool normal = std::fmin(x, y) >= DBL_MIN;
    const dd::DD s = dd::two_sum(a, b);
    if (a >= 20.0 && b >= 20.0) {
        // A variable below the normal range to a power of at least 20 underflows (so below, v for d).
        if (!normal) return {-HUGE_VAL, 0.0};
        const dd::DD x0 = dd::div({a, 0.0}, s), y0 = dd::div({b, 0.0}, s);
        const dd::DD e = dd::neg(dd::add(dd::scaled_log1pmx(a, xs, x0), dd::scaled_log1pmx(b, ys, y0)));
        return dd::add(e, {0.5 * (std::log(a) + std::log(b) - std::log(s.hi)) - kLogRootTwoPi + stirling_mu(s.hi) -
                               stirling_mu(a) - stirling_mu(b),
                           0.0});
    }
    if (a < 20.0 && b < 20.0) {
        const double lb = a > 1e-300 && b > 1e-300 ? std::log(gamma_value(a) * (gamma_value(b) / gamma_value(a + b)))
                                                   : log_gamma(a) + log_gamma(b) - log_gamma(a + b);
        const dd::DD logx = xs.hi >= DBL_MIN ? dd::logarithm(xs) : dd::DD{lx, 0.0};
        const dd::DD logy = ys.hi >= DBL_MIN ? dd::logarithm(ys) : dd::DD{ly, 0.0};
        return dd::add(dd::add(dd::mul(logx, a), dd::mul(logy, b)), {-lb, 0.0});
    }
    const bool a_small = a < b;
    const double c = a_small ? a : b, d = a_small ? b : a;
    const dd::DD u = a_small ? xs : ys, v = a_small ? ys : xs;
    if (v.hi < DBL_MIN) return {-HUGE_VAL, 0.0};
    // With u below the normal range, c phi(su/c - 1) = su - c - c log(su/c) from its logarithm, and
    // d phi(-u) vanishes.
    const double lu = a_small ? lx : ly;
    const dd::DD big = u.hi >= DBL_MIN ? dd::add(dd::scaled_log1pmx(c, dd::mul(u, s), {c, 0.0}),
                                                 dd::scaled_log1pmx(d, v, {1.0, 0.0}))
                                       : dd::DD{s.hi * u.hi - c - c * (lu + std::log(s.hi) - std::log(c)), 0.0};
    const double cd = c / d;
    const double rest = log_scaled_gamma(c) - 0.5 * cd - (d - 0.5) * cd * cd * special::log1p_ratio(cd) +
                        stirling_mu(s.hi) - stirling_mu(d);
    return dd::add(dd::sub(dd::mul(u, c), big), {rest, 0.0});
}

// The continued fraction of I_x(a, b) (Lentz's evaluation), which converges fast for
// x < (a + 1)/(a + b + 2): I_x(a, b) = factor / a * fraction.
double beta_fraction(double a, double b, double x, bool *converged) {
    constexpr double tiny = 1e-300;
    const double qab = a + b, qap = a + 1.0, qam = a - 1.0;
    double c = 1.0;
    double d = 1.0 - qab * x / qap;
    if (std::fabs(d) < tiny) d = tiny;
    d = 1.0 / d;
    double h = d;
    *converged = false;
    for (int m = 1; m <= kFractionLimit; ++m) {
        const double dm = m, m2 = 2.0 * m;
        double aa = dm * (b - dm) * x / ((qam + m2) * (a + m2));
        d = 1.0 + aa * d;
        if (std::fabs(d) < tiny) d = tiny;
        c = 1.0 + aa / c;
        if (std::fabs(c) < tiny) c = tiny;
        d = 1.0 / d;
        h *= d * c;
        aa = -(a + dm) * (qab + dm) * x / ((a + m2) * (qap + m2));
        d = 1.0 + aa * d;
        if (std::fabs(d) < tiny) d = tiny;
        c = 1.0 + aa / c;
        if (std::fabs(c) < tiny) c = tiny;
        d = 1.0 / d;
        const double del = d * c;
        h *= del;
        if (!std::isfinite(h)) return h;
        if (std::fabs(del - 1.0) < kEps) {
            *converged = true;
            break;
        }
    }
    return h;
}

// A point inside the bracket (lo, hi) of a positive root, hi possibly infinite.  The bracket is split
// geometrically where it spans more than a factor four, so tiny roots are found in a bounded number of
// steps.
double bracket_point(double lo, double hi) {
    if (std::isinf(hi)) return 1e3 * (lo + 1.0);
    if (lo > 0.0 && hi > 4.0 * lo) return std::sqrt(lo) * std::sqrt(hi);
    if (lo == 0.0 && hi > 1e-300) return hi * 1e-3;
    return 0.5 * (lo + hi);
}

// The change in x that moves P(a, x) by d = dp / pdf(x) (in units of x), from the Taylor series of the
// inverse of the incomplete gamma ratio about x to the seventh order, with c = a - 1.  The series is
// the published one of the chi-squared inverse, in ch = 2x and t = 2d.
double gamma_inverse_step(double d, double x, double c) {
    const double ch = 2.0 * x, t = 2.0 * d;
    const double b = t / ch;
    const double v = 0.5 * t - b * c;
    const double s1 = (210.0 + v * (140.0 + v * (105.0 + v * (84.0 + v * (70.0 + 60.0 * v))))) / 420.0;
    const double s2 = (420.0 + v * (735.0 + v * (966.0 + v * (1141.0 + 1278.0 * v)))) / 2520.0;
    const double s3 = (210.0 + v * (462.0 + v * (707.0 + 932.0 * v))) / 2520.0;
    const double s4 = (252.0 + v * (672.0 + 1182.0 * v) + c * (294.0 + v * (889.0 + 1740.0 * v))) / 5040.0;
    const double s5 = (84.0 + 264.0 * v + c * (175.0 + 606.0 * v)) / 2520.0;
    const double s6 = (120.0 + c * (346.0 + 127.0 * c)) / 5040.0;
    return 0.5 * t * (1.0 + 0.5 * t * s1 - b * c * (s1 - b * (s2 - b * (s3 - b * (s4 - b * (s5 - b * s6))))));
}

// Safeguarded Newton on an increasing function g over [lo, hi] (hi may be infinite): STEP(x, &g, &dg).
template <class Step>
double solve_increasing(Step step, double lo, double hi, double x, bool *converged) {
    *converged = false;
    for (int it = 0; it < kSolveLimit; ++it) {
        double g = 0.0, dg = 0.0;
        step(x, &g, &dg);
        if (g == 0.0) {
            *converged = true;
            return x;
        }
        if (g < 0.0) lo = x;
        else hi = x;
        double next = x - g / dg;
        if (!(next > lo && next < hi) || !std::isfinite(next)) next = bracket_point(lo, hi);
        if (std::fabs(next - x) <= 4.0 * kEps * std::fabs(next) || (std::isfinite(hi) && hi - lo <= 4.0 * kEps * hi)) {
            *converged = true;
            return next;
        }
        x = next;
    }
    return x;
}

} // namespace

BetaTails incomplete_beta(double a, double b, double x, double y, double lx, double ly) {
    if (x <= 0.0 && !(lx > -HUGE_VAL)) return {0.0, 1.0, a < 1.0 ? largest() : (a == 1.0 ? b : 0.0), true};
    if (y <= 0.0 && !(ly > -HUGE_VAL)) return {1.0, 0.0, b < 1.0 ? largest() : (b == 1.0 ? a : 0.0), true};
    const dd::DD lf = log_power_factor(a, b, x, y, lx, ly);
    const double factor = dd::exp_minus(dd::neg(lf));
    double pdf = std::exp(lf.hi - lx - ly);
    if (!(pdf <= largest())) pdf = largest();
    bool converged = true;
    if (x < (a + 1.0) / (a + b + 2.0)) {
        const double p = factor * beta_fraction(a, b, x, &converged) / a;
        return {p, 1.0 - p, pdf, converged};
    }
    const double q = factor * beta_fraction(b, a, y, &converged) / b;
    return {1.0 - q, q, pdf, converged};
}

BetaTails incomplete_beta(double a, double b, double x) {
    return incomplete_beta(a, b, x, 1.0 - x, std::log(x), std::log1p(-x));
}

BetaDeviate beta_deviate(double p, double a, double b) {
    // Solve for the smaller tail in its own variable near zero: I_x(a, b) = p, or I_y(b, a) = 1 - p.
    const bool lower = p <= 0.5;
    const double target = lower ? p : 1.0 - p;
    const double aa = lower ? a : b, bb = lower ? b : a;
    const double log_target = std::log(target);
    // Start: the leading term x^a / (a B(a, b)) of the small-x series, held below the mean.
    const double lb = log_gamma(aa) + log_gamma(bb) - log_gamma(aa + bb);
    double x0 = std::exp((log_target + std::log(aa) + lb) / aa);
    const double mean = aa / (aa + bb);
    if (!(x0 < mean)) x0 = mean;
    if (!(x0 > 0.0)) x0 = 1e-300;
    auto step = [&](double x, double *g, double *dg) {
        const BetaTails t = incomplete_beta(aa, bb, x, 1.0 - x, std::log(x), std::log1p(-x));
        if (t.p <= 0.0) {
            *g = -1.0;
            *dg = HUGE_VAL;
            return;
        }
        *g = std::log(t.p) - log_target;
        *dg = t.pdf / t.p;
    };
    bool converged = false;
    const double s = solve_increasing(step, 0.0, 1.0, x0, &converged);
    if (lower) return {s, 1.0 - s, converged};
    return {1.0 - s, s, converged};
}

Tails student_t(double t, double nu) {
    const double at = std::fabs(t);
    if (std::isinf(at)) return {1.0, 0.0};
    if (std::isinf(nu)) return {S15_UPPER_TAIL(at), S15_LOWER_TAIL(at)};
    if (nu > 1e7) {
        // Hill's expansion of the normal deviate with the same tail; at these degrees of freedom its
        // error is far below the rounding of the result.
        const double a = nu - 0.5, b = 48.0 * a * a;
        const double z2 = a * std::log1p(at / nu * at);
        const double z = std::sqrt(z2);
        const double zc = z + z * ((((-0.4 * z2 - 3.3) * z2 - 24.0) * z2 - 85.5) / (0.8 * z2 * z2 + 100.0 + b) + z2 + 3.0) / b;
        return {S15_UPPER_TAIL(zc), S15_LOWER_TAIL(zc)};
    }
    // P(|T| >= t) = I_x(nu/2, 1/2) with x = nu/(nu + t^2), y = t^2/(nu + t^2), in w = sqrt(nu)/t or its
    // inverse so that nothing overflows.
    const double z = at / std::sqrt(nu);
    double x, y, lx, ly;
    if (z > 1.0) {
        const double w = 1.0 / z;
        x = w * w / (1.0 + w * w);
        y = 1.0 / (1.0 + w * w);
        lx = 2.0 * std::log(w) - std::log1p(w * w);
        ly = -std::log1p(w * w);
    } else {
        x = 1.0 / (1.0 + z * z);
        y = z * z / (1.0 + z * z);
        lx = -std::log1p(z * z);
        ly = z > 0.0 ? 2.0 * std::log(z) - std::log1p(z * z) : -HUGE_VAL;
    }
    const BetaTails bt = incomplete_beta(0.5 * nu, 0.5, x, y, lx, ly);
    return {0.5 + 0.5 * bt.q, 0.5 * bt.p};
}

double student_t_deviate(double s, double c, double nu) {
    if (c <= 0.0) return 0.0;
    if (nu > 1e7) {
        // Cornish-Fisher from the normal deviate: the next term is of order z^7 / nu^3.
        const double z = -normal_deviate(0.5 * s);
        const double z2 = z * z;
        return z + z * (z2 + 1.0) / (4.0 * nu) + z * ((5.0 * z2 + 16.0) * z2 + 3.0) / (96.0 * nu * nu);
    }
    // A start from I_x(nu/2, 1/2) = s with x = nu/(nu + t^2), t = sqrt(nu y / x), then Newton on
    // log P(|T| >= t) in t itself, which stays representable where x underflows (few degrees of
    // freedom and tiny s) and sees the power-law tail as nearly linear.
    BetaDeviate d{};
    if (s <= 0.5) {
        d = beta_deviate(s, 0.5 * nu, 0.5);
    } else {
        const BetaDeviate e = beta_deviate(c, 0.5, 0.5 * nu);
        d = {e.y, e.x, e.converged};
    }
    double t0 = d.x > 0.0 ? std::sqrt(nu) * std::sqrt(d.y / d.x) : 0.0;
    if (!(t0 > 0.0 && t0 < largest())) t0 = std::exp((std::log(nu) - std::log(s)) / nu);
    if (s > 0.5) return t0;
    const double log_s = std::log(s);
    const double log_c = log_gamma(0.5 * (nu + 1.0)) - log_gamma(0.5 * nu) - 0.5 * std::log(nu * 3.141592653589793);
    auto step = [&](double t, double *g, double *dg) {
        const Tails tails = student_t(t, nu);
        const double z = t / std::sqrt(nu);
        const double l = z > 1e150 ? 2.0 * std::log(z) : std::log1p(z * z);
        const double pdf = std::exp(log_c - 0.5 * (nu + 1.0) * l);
        if (tails.upper <= 0.0) {
            *g = 1.0;
            *dg = HUGE_VAL;
            return;
        }
        *g = log_s - std::log(2.0 * tails.upper);
        *dg = pdf / tails.upper;
    };
    bool converged = false;
    return solve_increasing(step, 0.0, HUGE_VAL, t0, &converged);
}

double gamma_deviate(double p, double a, bool *converged) {
    *converged = true;
    const bool lower = p <= 0.5;
    const double target = lower ? p : 1.0 - p;
    const double log_target = std::log(target);
    const double lga = log_gamma(a);
    // The leading term x^a / Gamma(a + 1) of the small-x series bounds P(a, x) from below, so its root
    // bounds the deviate from above: where even that underflows, so does the deviate.
    const double log_series = (std::log(p) + lga + std::log(a)) / a;
    if (lower && log_series < kLogSmallestSubnormal) return 0.0;
    // Start: Wilson and Hilferty's cube, or that series root where the shape is small against -log p.
    const double z = normal_deviate(p);
    const double h = 1.0 / (9.0 * a);
    double x = a * std::pow(1.0 - h + z * std::sqrt(h), 3.0);
    const double series = std::exp(log_series);
    if (!(x > 0.0) || (lower && a < -0.62 * std::log(p) && series < x)) x = series;
    if (!(x > 0.0)) x = 1e-300;
    // Each step evaluates the smaller tail once.  Within a tenth of the target in relative terms the
    // step is the inverse's Taylor series (error of the order of the residual to the eighth power, so
    // a residual below 1e-3 needs no further evaluation); further out, Newton on log(tail), which sees
    // the far tails as nearly linear; outside the bracket, bisection.
    double lo = 0.0, hi = HUGE_VAL;
    *converged = false;
    for (int it = 0; it < kSolveLimit; ++it) {
        double pl = 0.0, qu = 0.0;
        ZekFail local{};
        s14bac(a, x, 0.0, &pl, &qu, &local);
        const double tail = lower ? pl : qu;
        double next = -1.0;
        bool fine = false;
        if (tail <= 0.0) {
            if (lower) lo = x;
            else hi = x;
        } else {
            // g increases with x for either tail.
            const double g = lower ? std::log(tail) - log_target : log_target - std::log(tail);
            if (g == 0.0) {
                *converged = true;
                return x;
            }
            if (g < 0.0) lo = x;
            else hi = x;
            const double pdf = std::exp((a - 1.0) * std::log(x) - x - lga);
            // p - P(a, x), which equals Q(a, x) - (1 - p).
            const double residual = lower ? target - tail : tail - target;
            if (std::fabs(residual) <= 0.1 * tail) {
                fine = std::fabs(residual) <= 1e-3 * tail;
                next = x + gamma_inverse_step(residual / pdf, x, a - 1.0);
            }
            if (!(next > lo && next < hi) || !std::isfinite(next)) {
                fine = false;
                next = x - g * tail / pdf;
            }
        }
        if (!(next > lo && next < hi) || !std::isfinite(next)) {
            fine = false;
            next = bracket_point(lo, hi);
        }
        if (fine || std::fabs(next - x) <= 4.0 * kEps * std::fabs(next) ||
            (std::isfinite(hi) && hi - lo <= 4.0 * kEps * hi)) {
            *converged = true;
            return next;
        }
        x = next;
    }
    return x;
}

} // namespace zek::dist
