// The distribution cores without argument checks, for the routines of both layers and for regression.
#ifndef ZEK_STATISTICS_DISTRIBUTIONS_H
#define ZEK_STATISTICS_DISTRIBUTIONS_H

namespace zek::dist {

// The incomplete beta ratio I_x(a, b) (p) and its complement (q), both to full relative accuracy, and
// the density at x.  X and Y = 1 - X are both given, with their logarithms LX and LY, so that a caller
// who knows the small one exactly loses nothing to 1 - x.  CONVERGED is false when the continued
// fraction ran out of steps (the last estimates are returned).
struct BetaTails {
    double p, q, pdf;
    bool converged;
};
BetaTails incomplete_beta(double a, double b, double x, double y, double lx, double ly);
// The same from x alone.
BetaTails incomplete_beta(double a, double b, double x);

// The x with I_x(a, b) = p (0 < p < 1), returned with y = 1 - x, the smaller of the two solved
// directly.  CONVERGED as above.
struct BetaDeviate {
    double x, y;
    bool converged;
};
BetaDeviate beta_deviate(double p, double a, double b);

// The inverse of the standard normal distribution function, p in (0, 1), to within 5e-16 relative
// (normal_deviate.cpp).
double normal_deviate(double p);

// Student's t with nu >= 1 degrees of freedom: P(T >= |t|) as `upper` and 1 - that as `lower`.
struct Tails {
    double lower, upper;
};
Tails student_t(double t, double nu);
// The t >= 0 with P(|T| >= t) = s, where c = 1 - s is given too (both in [0, 1], s > 0).
double student_t_deviate(double s, double c, double nu);

// The x with P(a, x) = p for the incomplete gamma ratio (a > 0, 0 < p < 1).
double gamma_deviate(double p, double a, bool *converged);

} // namespace zek::dist

namespace zek {

// P(d_L <= D) and P(d_U <= D) of the Durbin-Watson bounds for N observations and IP parameters, by
// Imhof's inversion; WORK holds N - IP values.  Shared by G01EPF and G02FCF.
void durbin_watson_bounds(long n, long ip, double d, double work[], double *pdl, double *pdu);

} // namespace zek

#endif
