// Chapter S for the library's own callers: the members without an export and the pieces that the
// distribution functions build on.
#ifndef ZEK_SORTING_SPECIAL_H
#define ZEK_SORTING_SPECIAL_H

#include "sorting/double_double.h"
#include "zek2/s.h"
#include "zek2/types.h"

namespace zek {

// log(1 + x) for x > -1; x <= -1 raises 6 and returns 0.
double s01bac(double x, ZekFail *fail);
// tan(x) for |x| <= 1e10 (7 and 0.0 beyond); within 1e-14 relative of an odd multiple of pi/2 it raises
// 417 and returns a large finite value of the right sign.
double s07aac(double x, ZekFail *fail);
// arccos(x) in [0, pi] for |x| <= 1; beyond, IFAIL 1 (" ** On entry, ABS(X) .gt. 1.0: X =...") and 0.0.
double S09ABF(double x, char *errbuf, int *ifail, int errbuf_len);
// Gamma(x) without failure reports (the values of s14aac on its failures).
double gamma_value(double x);
// The worker of S14AAF.
double s14aaf_worker(double x, char *errbuf, int *ifail, int errbuf_len);

namespace special {

// erfc(hi + lo) for a value carried as an unevaluated sum, |lo| <= ulp(hi)/2: the low part enters the
// factor exp(-x^2) exactly enough to keep full relative accuracy in the far tail.
double erfc_pair(double hi, double lo);
// (m - log(1 + m)) / m^2, full relative accuracy for m > -1.
double log1p_ratio(double m);
// One incomplete gamma ratio by the uniform expansion, for a >= 20 and x near a: Q(a, x), or P(a, x)
// when LOWER.  TINY is the underflow bound.
double S14_UNIFORM(double a, double x, bool lower, double tol, double tiny);
// y = a (m - log(1 + m)) with m = (x - a)/a, in double-double: the exponent of the factor
// x^a e^-x / Gamma(a + 1) = exp(-y) a^a e^-a / Gamma(a + 1), and of the uniform expansion.
dd::DD gamma_exponent(double a, double x);
// m - log(1 + m) by the two polynomials of |m| <= 1/2.
double S14_RATIO_FUNCTION(double m);
// x log Gamma*(x): the Stirling correction 1/12 - 1/(360 x^2) + ..., for x >= 15.
double stirling_correction(double x);

} // namespace special

} // namespace zek

#endif
