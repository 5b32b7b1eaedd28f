// Elementary functions of chapter S: s01bac (log(1 + x)), s07aac (tangent), S09ABF (arccos), and
// s21bac (Carlson's RC).
#include <cmath>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/output.h"
#include "frame/raise.h"
#include "sorting/functions.h"
#include "sorting/function_tables.h"

namespace zek {

namespace {


template <int N>
double polynomial(const double (&c)[N], double v) {
    double p = c[N - 1];
    for (int k = N - 2; k >= 0; --k) p = p * v + c[k];
    return p;
}

// s = a + b exactly as hi + lo (Knuth's two-sum).
inline void two_sum(double a, double b, double &hi, double &lo) {
    hi = a + b;
    const double bb = hi - a;
    lo = (a - (hi - bb)) + (b - bb);
}

} // namespace

double s01bac(double x, ZekFail *fail) {
    static const char *const kName = "s01bac";
    clear_fail(fail);
    if (!(x > -1.0)) {
        raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "x", "-1.0", x);
        return 0.0;
    }
    // log(1 + x) = 2 atanh(u), u = x/(x + 2); t scales u so that w = t^2 <= 1 covers 1 + x in
    // [1/sqrt(2), sqrt(2)].  There the value is 2u + u w G(w): the leading term carries all but 1% of
    // it, so u is formed with the rounding error e of x + 2 taken back, u = x/(d + e) ~ (x/d)(1 - e/d).
    const double t = 1.0074696667295095 * x / ((x + 2.0) * 0.1728544674517796);
    const double w = t * t;
    double value;
    if (w <= 1.0) {
        double d, e;
        two_sum(x, 2.0, d, e);
        const double u = x / d;
        value = 2.0 * u + (u * w * polynomial(special::kLog1p, w) - 2.0 * u * (e / d));
    } else {
        value = std::log1p(x); // log1p rather than log(x + 1): the rounding of 1 + x costs nothing
    }
    raise_success(fail, kName);
    return value;
}

double s07aac(double x, ZekFail *fail) {
    static const char *const kName = "s07aac";
    clear_fail(fail);
    if (std::fabs(x) > 1e10) {
        raise_real_arg(fail, kName, ZE_REAL_ARG_GT, "abs(x)", "fl1", std::fabs(x));
        return 0.0;
    }
    constexpr double c = 0.6366197723675813; // 2/pi
    const double s = x > 0.0 ? 1.0 : -1.0;
    const double n = std::trunc(x * c + s / 2.0);
    // r = x - n pi/2 as hi + lo.  pi/2 is split into four pieces of at most 20 significant bits and a
    // tail, so that n times each piece is exact for |n| < 2^33 (|x| <= 1e10); the differences are
    // accumulated as an unevaluated sum, which keeps r accurate even close to a multiple of pi/2.
    double hi = x, lo = 0.0;
    if (n != 0.0) {
        constexpr double p1 = 1.5707969665527344, p2 = -6.39757672615815e-07, p3 = -1.651400370616951e-13,
                         p4 = 8.333741273895185e-20, p5 = 1.6446256936324258e-26;
        const double t1 = x - n * p1; // exact: x and n p1 agree to within a factor two
        two_sum(t1, -n * p2, hi, lo);
        double h2, l2;
        two_sum(hi, -n * p3, h2, l2);
        lo += l2 - n * p4 - n * p5;
        hi = h2 + lo;
        lo = lo - (hi - h2);
    }
    const double an = std::fabs(n);
    const double m = std::trunc(0.5 * an);
    const bool odd = an - 2.0 * m == 1.0;
    if (odd && std::fabs(hi) <= 1e-14 * std::fabs(x)) {
        raise_plain(fail, kName, ZE_FUN_INF);
        const double magnitude = std::fabs(1.0 / (x * 1e-14));
        return hi > 0.0 ? -magnitude : magnitude;
    }
    // tan(r) = r + r (w + 1) S(w), w = 8 (c r)^2 - 1 in [-1, 1]; the low part of r enters through the
    // derivative 1 + tan^2.
    const double cr = c * hi;
    const double q = 8.0 * (cr * cr);
    double t = hi + hi * (q * polynomial(special::kTan, q - 1.0));
    t += lo * (1.0 + t * t);
    raise_success(fail, kName);
    return odd ? -1.0 / t : t;
}

namespace {

// S09ABF's exit.
enum S09abfExit { kAbsXAboveOne };
constexpr ExitRow kS09abfExits[] = {
    {1, 99999, " ** On entry, ABS(X) .gt. 1.0: X =%12.4E."},
};

} // namespace

double S09ABF(double x, char *errbuf, int *ifail, int /*errbuf_len*/) {
    FailureExit exit("S09ABF", errbuf, ifail);
    if (std::fabs(x) > 1.0) {
        take(exit, kS09abfExits, kAbsXAboveOne, {x});
        return 0.0;
    }
    exit.succeed();
    return std::acos(x);
}

} // namespace zek

extern "C" double s21bac(double x, double y, ZekFail *fail) {
    static const char *const kName = "s21bac";
    zek::clear_fail(fail);
    // A NaN takes the exit of the argument it stands for: it is no x >= 0 and no y away from 0.
    if (!(x >= 0.0)) {
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "x", "0.0", x);
        return 0.0;
    }
    if (!(y != 0.0) || std::isnan(y)) {
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_EQ, "y", "0.0", y);
        return 0.0;
    }
    // RC tends to 0 as either argument grows without bound (like log(t)/sqrt(t)).
    if (std::isinf(x) || std::isinf(y)) {
        zek::raise_success(fail, kName);
        return 0.0;
    }
    // RC(x, y) for y < 0 is sqrt(x/(x - y)) RC(x - y, -y), the Cauchy principal value.
    double w = x, v = y, factor = 1.0;
    if (y < 0.0) {
        w = x - y;
        v = -y;
        factor = std::sqrt(x) / std::sqrt(x - y);
    }
    // Keep the duplication away from underflow and overflow: RC(s w, s v) = RC(w, v) / sqrt(s).
    const double lo = 16.0 * zek::safe_minimum(), hi = 0.0625 * zek::largest();
    if (w < lo && v < lo) {
        w *= 16.0;
        v *= 16.0;
        factor *= 4.0;
    } else if (w >= hi || v >= hi) {
        factor /= 4.0;
        if (w >= lo && v >= lo) {
            w *= 0.0625;
            v *= 0.0625;
        } else if (v < lo) {
            v = std::sqrt(v) * 0.03125;
            w *= 0.015625;
        } else {
            w = v * 0.015625;
            v = 2.0 * w;
        }
    }
    // Carlson's duplication: each step quarters the distance of w and v from their mean.
    double mu = (w + 2.0 * v) / 3.0;
    double sn = (mu + v) / mu - 2.0;
    for (int step = 0; step < 100 && std::fabs(sn) >= 0.0019; ++step) {
        const double lambda = 2.0 * std::sqrt(w) * std::sqrt(v) + v;
        w = (lambda + w) * 0.25;
        v = (lambda + v) * 0.25;
        mu = (w + 2.0 * v) / 3.0;
        sn = (mu + v) / mu - 2.0;
    }
    const double s = sn * sn;
    const double series =
        1.0 + s * (0.3 + sn * (0.14285714285714282 + sn * (0.375 + sn * 0.40909090909090906)));
    zek::raise_success(fail, kName);
    return factor * series / std::sqrt(mu);
}
