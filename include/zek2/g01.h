/* Chapter G01: tail probabilities and deviates of the standard distributions.
 *
 * The tail is Zek_LowerTail P(X <= x), Zek_UpperTail P(X >= x), Zek_TwoTailSignif P(|X| >= |x|) or
 * Zek_TwoTailConfid P(|X| <= |x|) in the C-style layer and the character 'L', 'U', 'S' or 'C' (either
 * case) in the IFAIL layer.  A C-style routine checks its arguments, raises the first failure and
 * returns 0.0; a bad tail raises ZE_BAD_PARAM naming "tail".  A probability argument must lie strictly
 * inside (0, 1) (ZE_REAL_ARG_LE "p" against 0.0, ZE_REAL_ARG_GE against 1.0).  A NaN argument fails
 * as out of range.
 *
 * Accuracy.  Every tail is computed directly where it is the smaller one, never as 1 minus the other,
 * so it keeps its relative accuracy down to the underflow threshold (about 1e-307):
 *  - normal tails: a few units of the last place (the error function with the argument carried as an
 *    unevaluated pair);
 *  - incomplete beta, Student's t and F: the power factor x^a (1-x)^b / B(a, b) is the exponential of
 *    an exponent carried in double-double, so it has full relative accuracy (a few units of 1e-16)
 *    however far the tail; the ratio's continued fraction adds its own rounding, which grows with the
 *    number of its terms: about 4e-14 relative for parameters up to 1e3 (measured worst over the
 *    whole unit interval), up to 2e-14 in tails down to 1e-300 with both parameters near 1e6, and up to
 *    6e-12 just past the mode with one parameter near 1e6 and the other small.  Student's t above 1e7
 *    degrees of freedom goes through Hill's expansion of the normal deviate, F with a parameter above
 *    2e7 through its limit forms (see g01edc);
 *  - chi-squared and gamma: the accuracy of s14bac, about 1.5e-15 relative (measured worst) for tails
 *    down to 1e-300 and shapes or degrees of freedom up to 1e6;
 *  - deviates: Newton's method on the logarithm of the smaller tail, safeguarded by bisection, to a
 *    relative change of 4.4e-16 (so deviate(prob(x)) = x to about that, times the condition of the
 *    inverse), in at most 400 steps.
 */
#ifndef ZEK2_G01_H
#define ZEK2_G01_H

#include "types.h"

ZEK_BEGIN_DECLS

enum { Zek_LowerTail = 1329, Zek_UpperTail = 1330, Zek_TwoTailSignif = 1331, Zek_TwoTailConfid = 1332 };

/* g01eac: the normal tail of x (a NaN x raises ZE_BAD_PARAM naming "x"). */
ZEK_API double g01eac(int tail, double x, ZekFail *fail) ZEK_SYMBOL("q83792");
/* G01EAF: the same by character.  IFAIL 1 " ** On entry, TAIL is an invalid character : TAIL = c",
 * IFAIL 2 " ** On entry, X is NaN."; 0.0 returned on both. */
ZEK_API double G01EAF(const char *tail, const double *x, int *ifail, int tail_len) ZEK_SYMBOL("G01EAF");

/* g01ebc: Student's t tail of t with df >= 1 (real) degrees of freedom (ZE_REAL_ARG_LT "df" 1.0).  All
 * degrees of freedom up to 1e7 go through the incomplete beta ratio, which stays accurate for a large
 * t and few degrees of freedom where an expansion in the normal deviate does not; above 1e7 Hill's
 * expansion, whose error there is below the rounding. */
ZEK_API double g01ebc(int tail, double t, double df, ZekFail *fail) ZEK_SYMBOL("q75436");

/* g01ecc: chi-squared tail (Zek_LowerTail or Zek_UpperTail) of x >= 0 with df > 0 degrees of freedom.
 * Accuracy: the smaller tail to about 1.5e-15 relative down to 1e-300, df up to 1e6 (s14bac at x/2,
 * df/2; an x or df that is not even loses nothing in the halving). */
ZEK_API double g01ecc(int tail, double x, double df, ZekFail *fail) ZEK_SYMBOL("q45320");

/* g01edc: F tail (lower or upper) of f >= 0 with df1, df2 > 0.  Up to 2e7 degrees of freedom through
 * the incomplete beta ratio; with df2 beyond, df1 f as chi-squared on df1 (error of order df1/df2);
 * with both beyond, the normal form of f^(1/3) (Paulson's, with the constants 2 and 9), of error of
 * order 1/df. */
ZEK_API double g01edc(int tail, double f, double df1, double df2, ZekFail *fail) ZEK_SYMBOL("q40747");

/* g01eec: the incomplete beta ratio: *p = I_x(a, b), *q = 1 - *p (computed directly when smaller),
 * *pdf the density, for 0 <= x <= 1 and 0 < a, b <= 1e6 (ZE_REAL_ARG_CONS with "0.0 <= x <= 1.0",
 * "0.0 < a <= 1.0e6", "0.0 < b <= 1.0e6").  TOL is accepted as the requested relative accuracy; the
 * results are always to full accuracy.  ZE_PROBAB_CLOSE_TO_TAIL when the smaller tail underflows to
 * 0 inside (0, 1), ZE_NOT_REQ_ACC when the continued fraction does not settle (results returned).
 * Accuracy of the smaller tail: about 4e-14 relative with a, b up to 1e3; in tails down to 1e-300,
 * 2e-14 with both near 1e6 and up to 6e-12 just past the mode with one near 1e6 and the other small
 * (the continued fraction's rounding; the power factor itself is exact to a few units of 1e-16). */
ZEK_API void g01eec(double x, double a, double b, double tol, double *p, double *q, double *pdf, ZekFail *fail)
    ZEK_SYMBOL("q19879");
/* G01EEF: the same by reference.  IFAIL 1 " ** On entry X.lt.0.0 or X.gt.1.0: X = ...", 2 " ** On entry
 * A.le.0.0 or B.le.0.0: ...", 3 " ** On entry A or B is too large: ...", 4 " ** Probability too close
 * to 0.0 or 1.0.", 5 " ** Required accuracy not achieved". */
ZEK_API void G01EEF(const double *x, const double *a, const double *b, const double *tol, double *p, double *q,
                    double *pdf, int *ifail) ZEK_SYMBOL("G01EEF");

/* g01efc: gamma tail (lower or upper) of g >= 0 for shape a > 0 and scale b > 0.  Accuracy: the
 * smaller tail to about 1.5e-15 relative down to 1e-300, a up to 1e6, for g/b exact (a scale that is
 * not a power of 2 rounds x = g/b, and the far tail magnifies that rounding about |x - a| times). */
ZEK_API double g01efc(int tail, double g, double a, double b, ZekFail *fail) ZEK_SYMBOL("q88614");

/* g01fac: the normal deviate x of probability p for the tail: P(X <= x) = p, P(X >= x) = p,
 * P(|X| >= x) = p or P(|X| <= x) = p (the two-tailed forms halve the probability first). */
ZEK_API double g01fac(int tail, double p, ZekFail *fail) ZEK_SYMBOL("q79765");
/* G01FAZ: the inverse of the standard normal distribution function, p in (0, 1) (0.0 for p = 0.5;
 * outside, 0.0). Rational minimax forms over |p - 1/2| <= 0.3, <= 0.42 and the tail down to DBL_MIN
 * (the latter two polished by one Halley step), Newton's method on the log tail below DBL_MIN;
 * relative error below 5e-16 for p from 1e-300 to 1 - 1e-16. */
ZEK_API double G01FAZ(const double *p) ZEK_SYMBOL("G01FAZ");

/* g01fbc: Student's t deviate of probability p for the tail, df >= 1. */
ZEK_API double g01fbc(int tail, double p, double df, ZekFail *fail) ZEK_SYMBOL("q16948");
/* g01fcc: the chi-squared deviate x with P(X <= x) = p, df > 0 (0.0 where x is below the subnormal
 * range).  Searched on the smaller tail by the seventh-order Taylor series of the inverse near the root
 * and Newton's method on the log tail further out; relative error about 1e-14 (the incomplete gamma's
 * accuracy magnified by the deviate's condition, larger for df well below 1 and tiny p). */
ZEK_API double g01fcc(double p, double df, ZekFail *fail) ZEK_SYMBOL("q68394");
/* g01fdc: the F deviate f with P(F <= f) = p, df1, df2 > 0 (limit forms beyond 2e7 as in g01edc). */
ZEK_API double g01fdc(double p, double df1, double df2, ZekFail *fail) ZEK_SYMBOL("q80561");
/* g01fec: the beta deviate x with I_x(a, b) = p, 0 < a, b <= 1e6.  TOL is accepted as in g01eec.
 * ZE_NOT_REQ_ACC when the iteration does not settle (the last estimate returned). */
ZEK_API double g01fec(double p, double a, double b, double tol, ZekFail *fail) ZEK_SYMBOL("q29022");
/* g01ffc: the gamma deviate g with P(G <= g) = p for shape a > 0 and scale b > 0 (a <= 1e6).  TOL as in
 * g01eec; ZE_NOT_REQ_ACC as in g01fec. */
ZEK_API double g01ffc(double p, double a, double b, double tol, ZekFail *fail) ZEK_SYMBOL("q84980");

/* The non-central distributions: lower tails P(X <= x) as Poisson mixtures of central tails (the
 * incomplete beta ratio above, or s14bac), summed from the mode of the Poisson weights outward until the
 * weights left, bounded by a geometric series, fall below tol (held to [10 eps, 1e-2]) times the sum; at
 * most max_iter terms, and never more than 100000.  Accuracy: about tol relative, 1e-13 at the
 * default (checked against high-precision sums to 1e-12 relative down to 1e-12), except that the
 * lower tail of t for t < 0 is 1 less a sum and so only absolutely accurate.  The lower-case routine
 * checks its arguments, then calls the IFAIL worker; a series that does not settle returns its partial
 * sum with ZE_SERIES (t) or ZE_CONV (chi-squared, F, beta).
 *
 * g01gbc: non-central t with df > 0 degrees of freedom and non-centrality delta (t, delta finite:
 * ZE_REAL_ARG_CONS; ZE_REAL_ARG_LE "df"; ZE_INT_ARG_LT "max_iter" 1), ZE_PROBABILITY when t < 0 leaves
 * less than 1000 eps.  G01GBF: IFAIL 1 arguments (" ** On entry, MAXIT.lt.1 : MAXIT = ..."), 2 " ** Series
 * failed to converge in MAXIT iterations.", 3 " ** Probability too small to calculate.". */
ZEK_API double g01gbc(double t, double df, double delta, double tol, int max_iter, ZekFail *fail) ZEK_SYMBOL("q10252");
ZEK_API double G01GBF(const double *t, const double *df, const double *delta, const double *tol, const int *maxit,
                      int *ifail) ZEK_SYMBOL("G01GBF");
/* g01gcc: non-central chi-squared of x >= 0, df >= 0, lambda >= 0 ("lambda > 0.0 if df = 0.0"; with df =
 * 0 the distribution has the mass exp(-lambda/2) at 0).  G01GCF: IFAIL 1 " ** On entry, DF.lt.0.0 ...",
 * " ** On entry, RLAMDA.lt.0.0 ...", " ** On entry, X.lt.0.0 ..."; 2 " ** On entry, DF.eq.0.0 and
 * RLAMDA.eq.0.0"; 3 " ** Central Chi squared function fails to converge." (ZE_CHI_PROB); 4 " ** Convergence
 * has not been achieved in MAXIT steps: MAXIT = ...". */
ZEK_API double g01gcc(double x, double df, double lambda, double tol, int max_iter, ZekFail *fail) ZEK_SYMBOL("q64715");
ZEK_API double G01GCF(const double *x, const double *df, const double *rlamda, const double *tol, const int *maxit,
                      int *ifail) ZEK_SYMBOL("G01GCF");
/* g01gdc: non-central F of f > 0 on df1 ("0.0 < df1 <= 1.0e6") and df2 > 0 degrees of freedom: the
 * non-central beta of x = df1 f / (df1 f + df2) on (df1/2, df2/2); for df2 above 1e6, df1 f as
 * non-central chi-squared on df1 (error of order df1/df2).  G01GDF: IFAIL 1 " ** On entry, F.le.0.0: F =
 * ...", " ** On entry, DF1 is too large: DF1 = * ...", lambda as G01GEF; 2 " ** Solution has failed to converge
 * in MAXIT iterations". */
ZEK_API double g01gdc(double f, double df1, double df2, double lambda, double tol, int max_iter, ZekFail *fail)
    ZEK_SYMBOL("q72163");
ZEK_API double G01GDF(const double *f, const double *df1, const double *df2, const double *rlamda, const double *tol,
                      const int *maxit, int *ifail) ZEK_SYMBOL("G01GDF");
/* g01gec: non-central beta of 0 <= x <= 1 with 0 < a, b <= 1e6 and 0 <= lambda <= -2 log(smallest
 * positive number).  G01GEF: IFAIL 1 the arguments (texts of G01EEF for X, A and B; " ** On entry,
 * RLAMDA.lt.0.0 or RLAMDA too large: RLAMDA = ..."), 2 as G01GDF. */
ZEK_API double g01gec(double x, double a, double b, double lambda, double tol, int max_iter, ZekFail *fail)
    ZEK_SYMBOL("q44135");
ZEK_API double G01GEF(const double *x, const double *a, const double *b, const double *rlamda, const double *tol,
                      const int *maxit, int *ifail) ZEK_SYMBOL("G01GEF");

/* g01hac: P(X <= x, Y <= y) for the standard bivariate normal with correlation -1 <= rho <= 1
 * (ZE_REAL_ARG_CONS "rho"; a NaN x or y raises ZE_BAD_PARAM).  Phi(x) Phi(y) plus the integral over the
 * angle asin(rho), by adaptive 10-point Gauss-Legendre panels to 1e-15 relative; rho = +-1 in closed
 * form.  Accuracy: about 1e-15 relative for rho >= 0 (a sum of positive parts, into the far tails); for
 * rho < 0 the integral is subtracted, so the error is about 1e-16 Phi(x) Phi(y) absolute. */
ZEK_API double g01hac(double x, double y, double rho, ZekFail *fail) ZEK_SYMBOL("q62761");

/* The multivariate normal probability of a rectangle, for X ~ N(mu, Sigma) of order N, 1 <= N <= 10:
 * the lower tail P(X <= b), the upper tail P(X >= a) or the central P(a <= X <= b), elementwise.  Limits
 * may be infinite; the array a tail does not use is not read (A for the lower tail, B for the upper).
 * Only the lower triangle of SIG is read; Sigma must be positive definite (a variance not positive, or a
 * conditional variance at or below 16 eps times its variable's own in the factorisation, fails).
 *
 * Method.  N = 1: the normal tail, to full accuracy.  N = 2: the bivariate normal g01hac (tails
 * directly, about 1e-15 relative; a central rectangle by its four corners after mirroring the variables
 * whose interval lies above 0, so about 1e-16 of the largest corner absolute).  N >= 3: separation of
 * variables on the Cholesky factor of the correlation matrix, the variables ordered as the factor is
 * formed (the least likely conditional interval first), reduced to an integral over the (N-1)-cube,
 * integrated by a Kronecker sequence (multiples of the square roots of the primes) under the tent map
 * with eight fixed random shifts; the number of points doubles until three standard errors of the
 * shift means are at most TOL times the estimate, or the budget of evaluations (maxpts, or LWK for
 * G01HBF; at most 10^7 whatever is asked) is spent.  The result is deterministic.
 * Accuracy for N >= 3: the relative error is about the error estimate, which falls roughly like
 * 1/points.  Measured on the equicorrelated orthants (rho = 1/2, P = 1/(N+1)): TOL 1e-4 is met in about
 * 10^4 (N = 3) to 5 10^5 (N = 10) evaluations, TOL 1e-5 in 10^5 to 10^7; an evaluation costs about
 * 0.15 N microseconds.  The tolerance is relative and the rule's variance falls with the probability,
 * but far tails converge more slowly: a four-variable tail of 1.9e-17 is at 2e-4 relative after
 * 2 10^6 evaluations.  Budget suggestion: 10^4 N evaluations and up.
 *
 * g01hbc: tail Zek_LowerTail, Zek_UpperTail or Zek_Central; SIG(i, j) at sig[i * tdsig + j].  Raises
 * ZE_BAD_PARAM ("tail"; "a", "b" for a NaN limit; "xmu", "sig" for one not finite), ZE_INT_ARG_CONS
 * ("n": "1 <= n <= 10"; "maxpts": "maxpts >= 4*n, if n >= 3"), ZE_2_INT_ARG_LT ("tdsig" against "n"),
 * ZE_REAL_ARG_CONS ("tol": "tol > 0, if n > 1"), ZE_REAL_ARRAY_CONS ("a": "if tail = Zek_Central, a[i] <
 * b[i], for i=0,1...,n-1"), ZE_NOT_POS_DEF, and ZE_NOT_REQ_ACC with the estimate returned when the
 * budget ran out first.  0.0 is returned on every other failure. */
enum { Zek_Central = Zek_TwoTailConfid };
ZEK_API double g01hbc(int tail, int n, const double a[], const double b[], const double xmu[], const double sig[],
                      int tdsig, double tol, int maxpts, ZekFail *fail) ZEK_SYMBOL("q43604");
/* G01HBF: the same with TAIL 'L', 'U' or 'C' (either case) and SIG(i, j) = SIG(i + (j-1) LDSIG) as
 * usual.  WK(1..LWK) is workspace; LWK (>= 4 N for N >= 3, >= 1 otherwise) is also the budget of
 * integrand evaluations; on exit WK(1) holds the error estimate (0 for N <= 2).  IFAIL 1: " ** On entry,
 * N.lt.1 : N = ...", " ** On entry, N.gt.10 : ...", " ** On entry, LDSIG.lt.N : ...", " ** On entry,
 * LWK.lt.4*N : ...", " ** On entry, LWK.lt.1 : ...", " ** On entry, TOL.le.0.0 : ...", " ** On entry,
 * TAIL is not valid : TAIL = c", " ** On entry, an element of A, B, XMU or SIG is not finite." (an
 * infinite limit is allowed); 2: " ** On entry, TAIL = 'C' and A(I).ge.B(I) for I = ..."; 3: " ** On
 * entry, SIG is not positive definite."; 4: " ** Accuracy requested by TOL not achieved: error estimate =
 * ...", with the estimate returned.  0.0 on the others. */
ZEK_API double G01HBF(const char *tail, const int *n, const double a[], const double b[], const double xmu[],
                      const double sig[], const int *ldsig, const double *tol, double wk[], const int *lwk,
                      int *ifail, int tail_len) ZEK_SYMBOL("G01HBF");

/* H_DW_TAIL: P(sum lambda_i z_i^2 / sum z_i^2 <= d) for M independent standard normals z_i, by Imhof's
 * inversion integral on adaptive Gauss-Legendre panels (absolute accuracy about 1e-13); 0 or 1 exactly
 * when d is outside the range of the lambda_i; 0.0 for M < 1 or values not finite. */
ZEK_API double H_DW_TAIL(const int *m, const double lambda[], const double *d) ZEK_SYMBOL("q43767");
/* G01EPF: bounds on P(d <= D) for the Durbin-Watson statistic D of a regression on IP parameters
 * (the mean included) and N observations: PDL = P(d_L <= D) and PDU = P(d_U <= D), where d_L and d_U
 * are the ratios over the smallest and largest N - IP of the eigenvalues 2 (1 - cos(pi j / N)),
 * j = 1..N-1, of the difference form (left in WORK(1..N-1)); PDU <= P(d <= D) <= PDL.  IFAIL 1
 * " ** On entry, IP.lt.1 : IP = ...", " ** On entry, N.le.IP : N = ... IP = ..."; 2 " ** On entry,
 * D.lt.0.0 : D = ..." (a NaN or infinite D too). */
ZEK_API void G01EPF(const int *n, const int *ip, const double *d, double *pdl, double *pdu, double work[], int *ifail)
    ZEK_SYMBOL("q85463");
/* ---- descriptive statistics of one variable ------------------------------------------------------ */

enum { Zek_ClassBoundaryComp = 1441, Zek_ClassBoundaryUser = 1442 };

/* G01AEF: the frequency table of X(1..N) in NCLASS >= 2 classes.  ICLASS 0 computes the NCLASS - 1
 * boundaries CINT equally spaced over (XMIN, XMAX): CINT(j) = XMIN + j (XMAX - XMIN)/NCLASS; ICLASS 1
 * takes them from CINT, strictly increasing.  Class 1 holds x < CINT(1), class j holds
 * CINT(j-1) <= x < CINT(j), class NCLASS holds x >= CINT(NCLASS-1); IFREQ(j) counts class j.  XMIN and
 * XMAX return the extremes of X.  Counting is by binary search, O(N log NCLASS).  The front marks IFREQ.
 * IFAIL 1: N < 1, NCLASS < 2, ICLASS not 0 or 1; 2: CINT not strictly increasing (or not finite);
 * 3: an element of X not finite; 4: ICLASS 0 with all of X equal (no boundaries can be computed).
 * On every failure the outputs other than the marked IFREQ are untouched. */
ZEK_API void G01AEF(const int *n, const int *nclass, const double x[], const int *iclass, double cint[], int ifreq[],
                    double *xmin, double *xmax, int *ifail) ZEK_SYMBOL("G01AEF");
/* g01aec: G01AEF in the C-style layer, class_type Zek_ClassBoundaryComp (ICLASS 0) or
 * Zek_ClassBoundaryUser (1).  Raises ZE_INT_ARG_LT ("n" 1, "num_class" 2), ZE_BAD_PARAM ("class_type";
 * "a" for a value not finite; "cint" for one not finite), ZE_NOT_STRICTLY_INCREASING ("cint"),
 * ZE_ARRAY_CONSTANT (all of a equal with computed boundaries). */
ZEK_API void g01aec(int n, int num_class, int class_type, const double a[], double cint[], int ifreq[], double *xmin,
                    double *xmax, ZekFail *fail) ZEK_SYMBOL("g01aec");

/* G01AAF: the summary of X(1..N) with frequency weights WT (read only for IWT = 1; IWT = 0 means all
 * weights 1).  Over the cases of positive weight, with W = sum w_i:
 *   XMEAN = sum w_i x_i / W,   m_r = sum w_i (x_i - XMEAN)^r / W  (r = 2, 3, 4),
 *   S2 = sqrt(sum w_i (x_i - XMEAN)^2 / (W - 1)), the standard deviation (W - 1: weights count cases),
 *   S3 = m_3 / m_2^(3/2), the coefficient of skewness,
 *   S4 = m_4 / m_2^2 - 3, the coefficient of excess kurtosis (0 for the normal),
 * XMIN, XMAX the extremes, WTSUM = W, and IWT on exit the number of cases of positive weight.  The mean
 * is refined by a second pass, the moments are formed from deviations scaled by their largest, and the
 * data by a power of 2: no overflow for any finite data and no loss to cancellation.
 * IFAIL 1: N < 1, IWT not 0 or 1; 2: a weight negative or not finite, an element of X not finite, or
 * weights whose sum overflows; 3: no positive weight.  Then, with the mean, extremes, WTSUM and IWT
 * returned: 4: one case only, 5: W <= 1, 6: all values equal (S2, S3, S4 are 0 on these three);
 * 7: S2, S3 or S4 overflows (that one returned as 0, the others as computed). */
ZEK_API void G01AAF(const int *n, const double x[], int *iwt, const double wt[], double *xmean, double *s2,
                    double *s3, double *s4, double *xmin, double *xmax, double *wtsum, int *ifail)
    ZEK_SYMBOL("G01AAF");
/* g01aac: G01AAF in the C-style layer (wt null for unit weights; *nvalid the count of positive weights;
 * *xsd, *xskew, *xkurt as S2, S3, S4).  Raises ZE_INT_ARG_LT ("n" 1), ZE_NEG_WEIGHT (a weight negative
 * or not finite), ZE_BAD_PARAM ("x" not finite), ZE_CASES_ZERO, and with the partial results of G01AAF
 * ZE_CASES_ONE, ZE_SW_LT_ONE, ZE_ARRAY_CONSTANT, ZW_OVERFLOW_WARN. */
ZEK_API void g01aac(int n, const double x[], const double wt[], int *nvalid, double *xmean, double *xsd,
                    double *xskew, double *xkurt, double *xmin, double *xmax, double *wsum, ZekFail *fail)
    ZEK_SYMBOL("g01aac");

ZEK_END_DECLS

#endif
