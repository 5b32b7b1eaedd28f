// Double-double logarithms and the exponent a (m - log(1 + m)) of the incomplete gamma and beta factors.
#include "sorting/double_double.h"

#include <cfloat>

namespace zek::dd {

namespace {

constexpr DD kLog2 = {0.6931471805599453, 2.3190468138462996e-17};
constexpr DD kTwoThirds = {0.6666666666666666, 3.700743415417188e-17};

// The pieces of log(1 + g) = 2 atanh(t) = 2t + t^3 (2/3 + t^2 P(t^2)), t = g/(2 + g), for
// g in [-0.293, 0.415] (|t| <= 0.1716): t, and S = 2/3 + t^2 P(t^2) with P(w) = sum 2/(2k + 1) w^(k-2)
// for k from 2 to 12.  The next term is below 1e-20 of the value, and t^2 P, at most 2% of S and 0.03%
// of the logarithm, needs no more than double precision.
struct Atanh {
    DD t, t2, s;
};

Atanh atanh_parts(DD g) {
    constexpr double kP[11] = {2.0 / 5,  2.0 / 7,  2.0 / 9,  2.0 / 11, 2.0 / 13, 2.0 / 15,
                               2.0 / 17, 2.0 / 19, 2.0 / 21, 2.0 / 23, 2.0 / 25};
    Atanh r;
    r.t = div(g, add({2.0, 0.0}, g));
    r.t2 = mul(r.t, r.t);
    double p = kP[10];
    for (int k = 9; k >= 0; --k) p = p * r.t2.hi + kP[k];
    r.s = add(kTwoThirds, {r.t2.hi * p, 0.0});
    return r;
}

DD log1p_reduced(DD g) {
    const Atanh a = atanh_parts(g);
    return add({2.0 * a.t.hi, 2.0 * a.t.lo}, mul(mul(a.t2, a.t), a.s));
}

} // namespace

DD logarithm(double v) {
    int k = 0;
    double f = std::frexp(v, &k);
    if (f < 0.7071067811865476) {
        f *= 2.0;
        --k;
    }
    // f in [0.7071, 1.4143): f - 1 is exact.
    return add(mul(kLog2, static_cast<double>(k)), log1p_reduced({f - 1.0, 0.0}));
}

DD logarithm(DD v) { return add(logarithm(v.hi), {v.lo / v.hi, 0.0}); }

DD scaled_log1pmx(double a, DD x, DD x0) {
    const DD d = sub(x, x0);
    const DD m = div(d, x0);
    if (m.hi >= -0.29 && m.hi <= 0.41) {
        // m - log(1 + m) = m - 2t - t^3 S = m t - t^3 S, since m - 2t = m t: no cancellation of size m.
        const Atanh p = atanh_parts(m);
        return mul(sub(mul(m, p.t), mul(mul(p.t2, p.t), p.s)), a);
    }
    // Here log(1 + m) is at least a seventh of m - log(1 + m) in size, so the double-double logarithm
    // keeps the difference to about 1e-19.  log(x/x0) in one logarithm where the quotient is a normal
    // number, else as a difference.
    const DD v = div(x, x0);
    const DD l = std::isfinite(v.hi) && v.hi >= DBL_MIN ? logarithm(v) : sub(logarithm(x.hi), logarithm(x0.hi));
    const DD am = std::isfinite(m.hi) ? mul(m, a) : div(mul(d, a), x0);
    return sub(am, mul(l, a));
}

} // namespace zek::dd
