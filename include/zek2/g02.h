/* Chapter G02: multiple linear regression by an orthogonal factorisation.
 *
 * The model y = X b + e is fitted on the IP columns of the design: a column of ones first when MEAN is
 * 'M' (Zek_MeanInclude), then the columns j of X with ISX(j) > 0, in order.  With weights each row and
 * its response are multiplied by sqrt(WT(i)); a weight of 0 keeps the row with no effect.
 *
 * Q (LDQ >= N, IP + 1 columns) returns the factorisation: column 1 is Q'y, columns 2 to IP + 1 hold R on
 * and above the diagonal and the Householder vectors below it; P(1..IP) holds the reflectors' first
 * components (the zeta of the library's QR form).  RSS is from the trailing N - IP elements of Q'y.
 *
 * Only models of full rank are fitted in this build: when R is not well conditioned against TOL (the
 * 1-norm condition of R, formed exactly from R^-1, at or beyond 1/TOL; TOL = 0 means the machine
 * precision) the routine ends with its rank-deficiency exit, since the singular value form is not yet
 * available; SVD is then returned true and IRANK is not set.
 */
#ifndef ZEK2_G02_H
#define ZEK2_G02_H

#include "types.h"

ZEK_BEGIN_DECLS

enum { Zek_MeanInclude = 1001, Zek_MeanZero = 1002 };

/* G02DAF: the weighted least-squares fit.  X (LDX >= N, M columns), ISX(M), Y(N), WT(N) (read only when
 * WEIGHT is 'W'), outputs RSS, IDF (positive weights less IP), B(IP), SE(IP), COV(IP (IP + 1)/2, the
 * upper triangle by columns: COV(j (j - 1)/2 + i) = cov(b_i, b_j), i <= j), RES(N) (y - X b, unweighted),
 * H(N) (leverages w_i x_i'(X'WX)^+ x_i), Q as above, SVD, IRANK, P(2 IP + IP^2), WK(IP^2 + 5 (IP - 1)).
 * R counts as of full rank when its 1-norm condition times TOL (the machine precision for TOL = 0) is
 * below 1; otherwise R = U S V' by plane rotations and implicit QR, SVD = 1, and IRANK counts the
 * singular values above TOL times the largest.  Then P(IP+1..2IP) holds the singular values, P(2IP+1..)
 * V' (IP by IP, rows the right vectors), R stays in Q, and B is the minimum-norm solution
 * V_r S_r^-1 U_r'Q'y with COV = s^2 V_r S_r^-2 V_r'; IDF counts IRANK.
 * The front marks B, SE, COV, RES, H and P first.
 * IFAIL 1: the argument checks (N < 2, M < 1, IP < 1, IP > N, LDX < N, LDQ < N, TOL < 0, MEAN, WEIGHT, an
 * element of ISX < 0); 2: an element of WT < 0; 3: IP not the count of ISX(j) > 0 (plus one with the mean);
 * 4: " ** Degrees of freedom for error equal 0" (B, RSS, Q returned; SE and COV zero);
 * 5: " ** SVD solution failed to converge". */
ZEK_API void G02DAF(const char *mean, const char *weight, const int *n, const double x[], const int *ldx, const int *m,
                    const int isx[], const int *ip, const double y[], const double wt[], double *rss, int *idf,
                    double b[], double se[], double cov[], double res[], double h[], double q[], const int *ldq,
                    int *svd, int *irank, double p[], const double *tol, double wk[], int *ifail, int mean_len,
                    int weight_len) ZEK_SYMBOL("q15184");

/* G02DGF: fits a new response Y(N) to the design that G02DAF factorised into Q and P (same N, IP, WEIGHT
 * and WT): Q(., 1) becomes the new Q'y, then B(IP), SE(IP), RES(N) (0 at rows of zero weight, whose
 * design rows are not at hand) and RSS.  On entry RSS and COV are those of the earlier fit; COV is
 * rescaled by the ratio of the residual sums of squares, since (X'WX)^-1 is unchanged.  WK(IP).
 * IFAIL 1: " ** On entry, IP.lt.1 ...", " ** On entry, IRANK.le.0...", " ** On entry, IRANK.ne.IP and SVD
 * is .FALSE. ...", " ** On entry, IRANK.gt.IP and SVD is .TRUE. ...", " ** On entry, LDQ.lt.N ...",
 * " ** On entry, N.lt.IP ...", " ** On entry, RSS.le.0.0 ...", " ** On entry, WEIGHT is not valid ...";
 * 2: " ** On entry, WT(i).lt.0.0".  With SVD true the coefficients are V_r S_r^-2 V_r' R'Q'y, from R in Q
 * and the singular values and V' in P, so U is not needed. */
ZEK_API void G02DGF(const char *weight, const int *n, const double wt[], double *rss, const int *ip, const int *irank,
                    double cov[], double q[], const int *ldq, const int *svd, const double p[], const double y[],
                    double b[], double se[], double res[], double wk[], int *ifail, int weight_len)
    ZEK_SYMBOL("q13183");

/* g02dgc: G02DGF in the C-style layer (wt null for an unweighted fit; wk allocated here).  Raises
 * ZE_INT_ARG_LT ("ip" 1, "rank" 1), ZE_2_INT_ARG_LT ("tdq" against "n", "n" against "ip"),
 * ZE_REAL_ARG_LE ("rss" 0.0), ZE_SVD_RANK_NE_IP, ZE_SVD_RANK_GT_IP, ZE_REAL_ARRAY_CONS (a weight),
 * ZE_BAD_PARAM ("y" not finite). */
ZEK_API void g02dgc(int n, const double wt[], double *rss, int ip, int rank, double cov[], double q[], int tdq, int svd,
                    const double p[], const double y[], double b[], double se[], double res[], ZekFail *fail)
    ZEK_SYMBOL("q10028");

/* g02dac: the same fit in the C-style layer, on the same column-major arrays (tdx >= n, tdq >= n); mean
 * Zek_MeanInclude or Zek_MeanZero; wt null for an unweighted fit; *df the degrees of freedom; wk as
 * WK above (allocated here when null).  Raises ZE_BAD_PARAM ("mean"), ZE_INT_ARG_LT ("n" 2, "m" 1,
 * "ip" 1), ZE_2_INT_ARG_GT ("ip", "n"), ZE_2_INT_ARG_LT ("tdx"/"tdq" against "n"), ZE_REAL_ARG_LT
 * ("tol" 0.0), ZE_INT_ARG_LT ("sx[%3ld]"), ZE_REAL_ARG_LT ("wt[%3ld]"), ZE_BAD_PARAM ("ip" against the
 * count of sx), ZE_NOT_REQ_ACC (no degrees of freedom) and ZE_SVD_FAIL (the iteration did not converge), after the
 * IFAIL worker with IFAIL 1. */
ZEK_API void g02dac(int mean, int n, int m, const double x[], int tdx, const int sx[], int ip, const double y[],
                    const double wt[], double *rss, double *df, double b[], double se[], double cov[], double res[],
                    double h[], double q[], int tdq, int *svd, int *rank, double p[], double tol, double wk[],
                    ZekFail *fail) ZEK_SYMBOL("q38302");

/* g02cac: the regression y = a + b x (mean Zek_MeanInclude) or y = b x (Zek_MeanZero) of n points with
 * weights wt (null: all 1): the estimates, their standard errors, R^2 (1 - rss over the weighted sum of
 * squares of y about its mean, or about 0 without a mean), rss and *df = (positive weights) - (1 or 2).
 * With *df = 0 the standard errors are 0.  Fails with ZE_BAD_PARAM ("mean"; "x or y" for a value not
 * finite), ZE_INT_ARG_LT (n < 2 with a mean, n < 1 without), ZE_REAL_ARRAY_CONS (a weight negative or
 * not finite), ZE_WEIGHTS_NOT_POSITIVE (fewer positive weights than parameters), ZE_X_OR_Y_IDEN (x or
 * y constant over the positive weights); outputs untouched on a failure. */
ZEK_API void g02cac(int mean, int n, const double x[], const double y[], const double wt[], double *a, double *b,
                    double *a_serr, double *b_serr, double *rsq, double *rss, double *df, ZekFail *fail)
    ZEK_SYMBOL("q24883");

/* g02cbc: the fit of g02cac with, at each x[i], the fitted value yhat, the limits yml..ymu of the fitted
 * mean at confidence clm and yl..yu for a new observation of unit weight at confidence clp (from the t
 * deviate on *df degrees of freedom), the leverage h (weighted) and residual res; *rms = rss / df.
 * Fails as g02cac, with ZE_REAL_ARG_CONS for clm or clp outside (0, 1) and ZE_WEIGHTS_NOT_POSITIVE
 * when no degree of freedom is left. */
ZEK_API void g02cbc(int mean, int n, const double x[], const double y[], const double wt[], double clm, double clp,
                    double yhat[], double yml[], double ymu[], double yl[], double yu[], double h[], double res[],
                    double *rms, ZekFail *fail) ZEK_SYMBOL("q68627");

/* ---- means, cross-products and correlation ----------------------------------------------------------
 * The data matrix X is N observations (rows) by M variables (columns), LDX >= N.  Weights are frequency
 * weights: a weight of 0 drops the row, and variances divide by SW - 1 with SW the sum of the weights.
 * Sums about the mean are formed in two passes, the second adding the correction term, so the
 * cancellation of x'x - n xbar xbar' never arises; C(M(M+1)/2) is packed upper by columns:
 * C(i + j(j-1)/2) = c_ij, i <= j (one-based). */

/* G02BUF: weighted means WMEAN(M) and the sums of squares and cross-products C about the means (MEAN 'M')
 * or about zero ('Z'); WEIGHT 'W' reads WT(N), 'U' uses unit weights; SW the sum of the weights.
 * The front marks WMEAN and C.  IFAIL 1: N < 1, M < 1, LDX < N, MEAN or WEIGHT invalid; 2: a weight
 * negative or not finite; 3: the weights sum to zero (SW = 0 returned); 4: X not finite; 5: the sums
 * overflow. */
ZEK_API void G02BUF(const char *mean, const char *weight, const int *n, const int *m, const double x[], const int *ldx,
                    const double wt[], double *sw, double wmean[], double c[], int *ifail, int mean_len,
                    int weight_len) ZEK_SYMBOL("G02BUF");

/* g02buc: G02BUF in the C-style layer (mean Zek_MeanInclude or Zek_MeanZero, wt null for unit weights,
 * tdx >= n).  Raises ZE_BAD_PARAM ("mean"; "x" not finite), ZE_INT_ARG_LT ("n" 1, "m" 1),
 * ZE_2_INT_ARG_LT ("tdx" against "n"), ZE_NEG_WEIGHT, ZE_CASES_ZERO (weights summing to 0; *sw = 0),
 * ZW_OVERFLOW_WARN (the sums overflow). */
ZEK_API void g02buc(int mean, int n, int m, const double x[], int tdx, const double wt[], double *sw, double wmean[],
                    double c[], ZekFail *fail) ZEK_SYMBOL("g02buc");

/* G02BXF: means XBAR(M), standard deviations STD(M), covariance matrix V (LDV >= M, full) and Pearson
 * correlation matrix R (LDR >= M, full), with weights as G02BUF.  Each column is scaled by a power of 2
 * near its largest element before the sums are formed, so correlations are exact to rounding for any
 * finite data.  The front marks all four outputs.  IFAIL 1: N < 1, M < 1, LDX < N, LDV < M, LDR < M,
 * WEIGHT invalid; 2: a weight negative or not finite, or X not finite; 3: SW <= 1; 4: the covariances
 * overflow; 5 (results returned): a variable is constant over the positive weights: its standard
 * deviation is 0 and its row and column of R, diagonal included, are 0. */
ZEK_API void G02BXF(const char *weight, const int *n, const int *m, const double x[], const int *ldx, const double wt[],
                    double xbar[], double std_dev[], double v[], const int *ldv, double r[], const int *ldr, int *ifail,
                    int weight_len) ZEK_SYMBOL("G02BXF");

/* g02bxc: G02BXF in the C-style layer (wt null for unit weights; v and r with their own leading
 * dimensions tdv, tdr >= m).  Raises ZE_INT_ARG_LT ("n" 1, "m" 1), ZE_2_INT_ARG_LT ("tdx" against "n",
 * "tdv" and "tdr" against "m"), ZE_BAD_PARAM ("x or wt": a weight negative or a value not finite),
 * ZE_SW_LT_ONE, ZW_OVERFLOW_WARN, and ZE_VAR_EQ_ZERO with the results of G02BXF's exit 5. */
ZEK_API void g02bxc(int n, int m, const double x[], int tdx, const double wt[], double xbar[], double std_dev[],
                    double v[], int tdv, double r[], int tdr, ZekFail *fail) ZEK_SYMBOL("g02bxc");

/* G02BTF: updates the sum of weights SW, the means XBAR(M) and the packed sums C (about the mean, MEAN
 * 'M', or about zero, 'Z') by one observation X(1), X(1+INCX), ... of weight WT.  Start with SW = 0 (XBAR
 * and C are then overwritten).  A negative WT removes an observation added earlier with weight -WT;
 * SW + WT = 0 empties the sums.  About the mean the update is West's: with d = x - xbar,
 * xbar += (WT / (SW + WT)) d and C += WT (SW / (SW + WT)) d d', which carries deviations only and so
 * keeps its accuracy on data with a large common offset.  IFAIL 1: M < 1, INCX < 1, MEAN invalid;
 * 2: SW < 0 or not finite; 3: WT not finite or SW + WT < 0; 4: X not finite (nothing changed on 1 to 4);
 * 5: the sums overflow. */
ZEK_API void G02BTF(const char *mean, const int *m, const double *wt, const double x[], const int *incx, double *sw,
                    double xbar[], double c[], int *ifail, int mean_len) ZEK_SYMBOL("G02BTF");

/* g02brc: Kendall's tau-b and Spearman's rank correlation of the variables j with svar[j] = 1 over the
 * observations i with sobs[i] = 1 of x (n by m, column-major, tdx >= n; svar or sobs null: all).  Ties
 * take the average of the ranks they span.  corr (tdc >= the number k of chosen variables, k by k):
 * corr[i + j tdc] for i < j is Kendall's tau-b, for i > j Spearman's rho (Pearson's correlation of the
 * average ranks), the diagonal 1.  tau-b = (C - D) / sqrt((n0 - n1)(n0 - n2)) with n0 = n(n-1)/2 and
 * n1, n2 the pairs tied in either variable, counted by one sort and a merge sort of the other variable
 * (O(n log n) a pair, Knight's method).  Raises ZE_INT_ARG_LT ("n" 2, "m" 2), ZE_2_INT_ARG_LT ("tdx"
 * against "n", "tdc" against the count of variables), ZE_BAD_PARAM ("svar" or "sobs" with an element not
 * 0 or 1, "x" not finite), ZE_SVAR_LOW (fewer than 2 variables), ZE_SOBS_LOW (fewer than 2
 * observations), ZE_VAR_EQ_ZERO (a chosen variable constant), ZE_ALLOC_FAIL. */
ZEK_API void g02brc(int n, int m, const double x[], int tdx, const int svar[], const int sobs[], double corr[], int tdc,
                    ZekFail *fail) ZEK_SYMBOL("g02brc");

/* G02FCF: the Durbin-Watson statistic D = sum_{i>=2} (RES(i) - RES(i-1))^2 / sum RES(i)^2 of the
 * residuals RES(N) of a regression on IP parameters (the mean term counted), and the probabilities
 * PDL = P(d_L <= D), PDU = P(d_U <= D) of its bounding distributions: d_L and d_U are the ratios of
 * quadratic forms in N - IP independent normals over the smallest and the largest N - IP of the
 * eigenvalues 4 sin^2(pi j / (2N)), j = 1..N-1, of the differencing form, so for any design
 * PDU <= P(d <= D) <= PDL under independent errors.  A small PDU is evidence of positive serial
 * correlation; against negative correlation use 4 - D.  The probabilities come from Imhof's inversion
 * by adaptive quadrature, to 1e-8 absolute or better.  WORK(N - IP).
 * IFAIL 1: IP < 1, N <= IP; 2: RES not finite; 3: all residuals zero; 4 (values returned): the
 * quadrature did not reach 1e-8. */
ZEK_API void G02FCF(const int *n, const int *ip, const double res[], double *d, double *pdl, double *pdu, double work[],
                    int *ifail) ZEK_SYMBOL("G02FCF");

ZEK_END_DECLS

#endif
