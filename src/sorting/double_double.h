// Unevaluated sums hi + lo of two doubles (about 106 bits), for the few quantities whose rounding a
// result magnifies: the exponent y of a tail factor exp(-y) turns an absolute error in y into the same
// relative error in the tail, so y must be known to far better than one unit of its last place.
//
// The exact products use Dekker's splitting rather than a fused multiply-add, so they are exact on any
// target whatever the compiler's contraction setting; the operands must stay below about 1e290 so that
// the split cannot overflow.
#ifndef ZEK_SORTING_DOUBLE_DOUBLE_H
#define ZEK_SORTING_DOUBLE_DOUBLE_H

#include <cmath>

namespace zek::dd {

struct DD {
    double hi, lo;
};

// a + b = hi + lo exactly (Knuth's two-sum).
inline DD two_sum(double a, double b) {
    const double s = a + b;
    const double bb = s - a;
    return {s, (a - (s - bb)) + (b - bb)};
}

// a + b = hi + lo exactly, given |a| >= |b| or a = 0.
inline DD fast_two_sum(double a, double b) {
    const double s = a + b;
    return {s, b - (s - a)};
}

// a b = hi + lo exactly (Dekker's product, with Veltkamp's split at 2^27 + 1).
inline DD two_product(double a, double b) {
    constexpr double kSplit = 134217729.0;
    const double p = a * b;
    const double ta = kSplit * a, tb = kSplit * b;
    const double ah = ta - (ta - a), al = a - ah;
    const double bh = tb - (tb - b), bl = b - bh;
    return {p, ((ah * bh - p) + ah * bl + al * bh) + al * bl};
}

inline DD add(DD a, DD b) {
    const DD s = two_sum(a.hi, b.hi);
    return fast_two_sum(s.hi, s.lo + (a.lo + b.lo));
}

inline DD neg(DD a) { return {-a.hi, -a.lo}; }

inline DD sub(DD a, DD b) { return add(a, neg(b)); }

inline DD mul(DD a, DD b) {
    const DD p = two_product(a.hi, b.hi);
    return fast_two_sum(p.hi, p.lo + (a.hi * b.lo + a.lo * b.hi));
}

inline DD mul(DD a, double b) {
    const DD p = two_product(a.hi, b);
    return fast_two_sum(p.hi, p.lo + a.lo * b);
}

// a / b: the quotient of the high parts corrected once by the exact remainder.
inline DD div(DD a, DD b) {
    const double q = a.hi / b.hi;
    const DD r = sub(a, mul(b, q));
    return fast_two_sum(q, r.hi / b.hi);
}

// sqrt(a) for a > 0: the double root corrected once by the exact remainder.
inline DD root(DD a) {
    const double s = std::sqrt(a.hi);
    const DD r = sub(a, two_product(s, s));
    return fast_two_sum(s, r.hi / (2.0 * s));
}

// exp(-(hi + lo)): the low part enters to first order, which is exact to the rounding of the result
// since |lo| is below a unit in the last place of hi.
inline double exp_minus(DD y) {
    const double r = std::exp(-y.hi);
    return r - r * y.lo;
}

// log(v) for v > 0 (subnormal numbers included), relative error about 1e-20.
DD logarithm(double v);
DD logarithm(DD v);

// a (m - log(1 + m)) with m = (x - x0)/x0, for positive x, x0 and a: the exponent of the tail factors
// of the gamma and beta ratios.  A series in m/(2 + m) near m = 0, where m and log(1 + m) would cancel;
// elsewhere the difference of m and the double-double logarithm.  Absolute error about 1e-19 times
// the value, so exp(-result) carries full relative accuracy while the result stays in the range of exp.
DD scaled_log1pmx(double a, DD x, DD x0);

} // namespace zek::dd

#endif
