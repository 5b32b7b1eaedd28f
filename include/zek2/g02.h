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
 * When R is not well conditioned against TOL (the 1-norm condition of R, formed exactly from R^-1, at
 * or beyond 1/TOL; TOL = 0 means the machine precision) the fit goes through the singular values of R.
 *
 * The updating routines g02dcc to g02dfc work on R and the first IP elements of Q'y only (rows 1 to IP of
 * Q; TDQ >= IP suffices for them).  Adding or dropping an observation and deleting a variable rotate R,
 * so the reflectors below its diagonal and P(1..IP) no longer describe Q afterwards: g02dec, which needs
 * Q itself to see a new column, must come before them in a sequence of changes.  RSS is carried by every
 * step and g02ddc gives the estimates of whatever model Q holds.
 */
#ifndef ZEK2_G02_H
#define ZEK2_G02_H

#include "types.h"

ZEK_BEGIN_DECLS

enum { Zek_MeanInclude = 1001, Zek_MeanZero = 1002 };
/* The update of g02dcc: add the observation to the model, or take it out. */
enum { Zek_ObservAdd = 1003, Zek_ObservDel = 1004 };

/* G02DAF: the weighted least-squares fit.  X (LDX >= N, M columns), ISX(M), Y(N), WT(N) (read only when
 * WEIGHT is 'W'), outputs RSS, IDF (positive weights less IP), B(IP), SE(IP), COV(IP (IP + 1)/2, the
 * upper triangle by columns: COV(j (j - 1)/2 + i) = cov(b_i, b_j), i <= j), RES(N) (y - X b, unweighted),
 * H(N) (leverages w_i x_i'(X'WX)^+ x_i), Q as above, SVD, IRANK, P(2 IP + IP^2), WK(IP^2 + 5 (IP - 1)).
 * R counts as of full rank when its 1-norm condition times TOL (the machine precision for TOL = 0) is
 * below 1; otherwise R = U S V' by plane rotations and implicit QR, SVD = 1, and IRANK counts the
 * singular values above TOL times the largest.  Then P(IP+1..2IP) holds the singular values, P(2IP+1..)
 * V' (IP by IP, rows the right vectors), R stays in Q, and B is the minimum-norm solution
 * V_r S_r^-1 U_r'Q'y with COV = s^2 V_r S_r^-2 V_r'; IDF counts IRANK.  At full rank B takes one step
 * of iterative refinement against the data (residuals accumulated in double-double form), which Q,
 * RSS and RES do not reflect: they are the factorisation's.
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

/* g02dcc: adds (update Zek_ObservAdd) or removes (Zek_ObservDel) one observation: the values x[j ix] of
 * the M variables, those with sx[j] > 0 chosen in order behind a leading 1 when mean is Zek_MeanInclude
 * (which must be how Q was formed: the count must be ip), its response y and weight *wt (null: 1).  The
 * row is rotated into R and c by plane rotations and its leftover square added to *rss, or taken out by
 * the downdating of the triangle (R'a = row, then rotations from the bottom up) and its square removed.
 * A weight of 0 changes nothing.  Raises ZE_BAD_PARAM ("update", "mean"; "x", "y", "q" for values not
 * finite), ZE_INT_ARG_LT ("m" 1, "ip" 1, "ix" 1, "sx[%3ld]" 0), ZE_2_INT_ARG_LT ("tdq" against "ip"),
 * ZE_IP_INCOMP_WITH_SX, ZE_REAL_ARG_LT ("rss", "wt" against 0.0); on removal ZE_MAT_NOT_UPD when R has a
 * zero on its diagonal or the row's leverage is 1 or more (Q and rss untouched) and ZE_RSS_NOT_UPD when
 * the row's leftover exceeds *rss (R and c updated, rss untouched: the row was not in the model). */
ZEK_API void g02dcc(int update, int mean, int m, const int sx[], int ip, const double x[], int ix, double y,
                    const double *wt, double q[], int tdq, double *rss, ZekFail *fail) ZEK_SYMBOL("q67987");

/* g02ddc: the estimates of the model held in Q (R and c, as g02dac or the updating routines leave them)
 * for n observations of positive weight: b, se, cov (packed as for G02DAF), *svd, *rank and *df = n -
 * rank, with tol and p as in g02dac (p(ip+1..) receives the singular values and V' when R is not of
 * full rank; p(1..ip) is not touched).  *rss on entry is the residual sum of squares the factorisation
 * carries; on exit that of the fitted model, which differs only when the rank falls short of ip (the part
 * c - R b is added), so a second call takes the entry value again.  Raises ZE_INT_ARG_LT ("n" 1, "ip" 1),
 * ZE_2_INT_ARG_LT ("tdq" against "ip"), ZE_REAL_ARG_LT ("rss", "tol" against 0.0), ZE_BAD_PARAM ("q"
 * not finite), ZE_SVD_NOT_CONV, and ZE_ZERO_DOF_RESID when df <= 0 (b returned, se and cov zero). */
ZEK_API void g02ddc(int n, int ip, const double q[], int tdq, double *rss, double *df, double b[], double se[],
                    double cov[], int *svd, int *rank, double p[], double tol, ZekFail *fail) ZEK_SYMBOL("q91616");

/* g02dec: adds the variable x (n values, weighted by wt, null for none) as column ip + 1 of the model
 * whose Householder factorisation of ip columns Q and p hold (from g02dac or earlier calls of g02dec, so
 * Q has ip + 2 columns and p ip + 1 places): Q'x is formed, one more reflector ends the column, c takes it
 * too, and *rss becomes the sum of squares of c(ip+2..n).  tol (0: machine precision) rejects a column
 * whose new diagonal is at most tol times its norm: ZE_NVAR_NOT_IND, Q, p and rss untouched.  Raises
 * ZE_INT_ARG_LT ("ip" 0), ZE_2_INT_ARG_LT ("n" against "ip+1", "tdq" against "n"), ZE_REAL_ARG_LT
 * ("tol" 0.0, "wt[%3ld]" 0.0), ZE_BAD_PARAM ("x", "q" not finite). */
ZEK_API void g02dec(int n, int ip, double q[], int tdq, double p[], const double wt[], const double x[], double *rss,
                    double tol, ZekFail *fail) ZEK_SYMBOL("q32065");

/* g02dfc: deletes variable indx (1 <= indx <= ip) from the model in Q: the later columns of R move one
 * place left and plane rotations of neighbouring rows restore the triangle, taking c along; c(ip) then
 * lies outside the model and its square joins *rss.  Column ip + 1 of Q is cleared.  Raises
 * ZE_INT_ARG_LT ("ip" 1), ZE_2_INT_ARG_LT ("tdq" against "ip"), ZE_INT_ARG_CONS ("indx"),
 * ZE_REAL_ARG_LT ("rss" 0.0), ZE_BAD_PARAM ("q" not finite). */
ZEK_API void g02dfc(int ip, double q[], int tdq, int indx, double *rss, ZekFail *fail) ZEK_SYMBOL("q70114");

/* g02dkc: the estimates of a model of rank ip - iconst under iconst constraints C'b = 0 (C ip by iconst,
 * leading dimension tdc >= ip), from the minimum-norm b and the singular values and V' in p of g02dac
 * or g02ddc: b becomes b - V0 (C'V0)^-1 C'b (V0 the last iconst rows of V'), and se, cov (packed) those
 * of the constrained estimates, s^2 = rss / df.  Raises ZE_INT_ARG_LT ("ip" 1, "iconst" 1),
 * ZE_2_INT_ARG_GE ("iconst" against "ip"), ZE_2_INT_ARG_LT ("tdc" against "ip"), ZE_REAL_ARG_LE ("rss",
 * "df" against 0.0), ZE_BAD_PARAM ("p", "c" not finite), ZE_RANK_ZERO (the value ip - iconst of p is
 * zero) and ZE_MAT_NOT_FULL_RANK when the constraints leave the solution undetermined (C'V0 singular). */
ZEK_API void g02dkc(int ip, int iconst, const double p[], const double c[], int tdc, double b[], double rss, double df,
                    double se[], double cov[], ZekFail *fail) ZEK_SYMBOL("q52322");

/* g02dnc: whether f'b is estimable in a model of the given rank (from g02dac or g02ddc: b, cov packed, p
 * with V' when rank < ip): *est = 1 when the component of f in the null space (the last ip - rank rows
 * of V') is at most tol times |f| (tol 0: the square root of the machine precision; at full rank every
 * function is estimable).  Then *stat = f'b, *sestat = sqrt(f' cov f) and *t their ratio; otherwise all
 * three are 0.  Raises ZE_INT_ARG_LT ("ip" 1), ZE_INT_ARG_CONS ("rank"), ZE_REAL_ARG_LT ("tol" 0.0),
 * ZE_BAD_PARAM ("f", "b", "p" not finite) and ZE_STDES_ZERO when the standard error is 0 (*stat
 * returned, *t 0). */
ZEK_API void g02dnc(int ip, int rank, const double b[], const double cov[], const double p[], const double f[], int *est,
                    double *stat, double *sestat, double *t, double tol, ZekFail *fail) ZEK_SYMBOL("q33683");

/* Generalised linear models, g02gac to g02gdc.
 *
 * The model: the mean mu_i of y_i is g^-1(eta_i) (times t_i for the binomial), eta_i = offset_i + x_i'b
 * over the IP model columns chosen as in g02dac (a column of ones first for Zek_MeanInclude, then the
 * columns j of x with sx[j] > 0).  The fit maximises the likelihood by iteratively reweighted least
 * squares: each step is the weighted least-squares fit of the working response
 * z_i = eta_i - offset_i + (y_i - mu_i) deta/dmu with weights wt_i (dmu/deta)^2 / V(mu_i), by a
 * Householder QR of the weighted design; when the triangular factor is not well conditioned against
 * tol (its 1-norm condition times tol, the machine precision for tol = 0, at least 1) the step goes
 * through the singular value decomposition of the factor and *rank counts the singular values above
 * tol times the largest; b is then the minimum-norm solution and g02gkc or g02gnc finish the fit.
 * The iteration starts from mu = y (normal, gamma), y + 0.5 (Poisson) or t (y + 0.5) / (t + 1)
 * (binomial), halves a step whose fitted values leave the family's range or whose deviance is not
 * finite (at most 30 halvings), and stops when both the change of the deviance is at most eps times
 * the deviance plus eps, and the largest change of a coefficient at most eps times the largest
 * coefficient (eps = 0 means 1000 times the machine precision).  At most max_iter steps.
 *
 * Links (enumeration link): Zek_Exponent (eta = mu^a, a != 0), Zek_Identity, Zek_Log, Zek_SquareRoot,
 * Zek_Reciprocal for the normal, Poisson and gamma families; Zek_Logistic, Zek_Probit and
 * Zek_CompLogLog (eta = log(-log(1 - p))) on the proportion p = mu/t for the binomial.
 *
 * Common arguments: n observations, x (tdx >= n, m columns), sx[m] (0 leaves a column out),
 * ip the count of model columns, y[n], wt[n] the prior weights (null: all 1; a zero weight keeps the
 * row out of the fit but its fitted value and residuals are still formed), offset[n] (null: none).
 * Outputs: *dev the deviance (the weighted residual sum of squares for the normal), *df the degrees of
 * freedom (positive weights less *rank), b[ip], *rank, se[ip], cov[ip (ip + 1)/2] (the upper triangle by
 * columns, cov(b_i, b_j) at j (j + 1)/2 + i for i <= j, scaled by the scale parameter), v (tdv >= n,
 * 7 columns, by columns): the linear predictor eta (offset included), the fitted value mu, the leverage
 * h (diagonal of the weighted hat matrix at the final weights), the final iterative weight, the Pearson
 * residual (y - mu) sqrt(wt / V(mu)), the deviance residual sign(y - mu) sqrt(d_i), and the working
 * residual (y - mu) deta/dmu.  p[ip + ip^2]: when *rank < ip the singular values of the final weighted
 * triangular factor, then V' (ip by ip, rows the right singular vectors, the last ip - *rank spanning
 * the null space of the design); all zero when *rank = ip.
 * The scale: Poisson and binomial 1; normal and gamma *s on entry when positive, otherwise estimated as
 * the Pearson chi-squared over *df and returned in *s.
 *
 * Exits (the fail record): ZE_BAD_PARAM ("link" not one of the family's, "mean"); ZE_INT_ARG_LT ("n" 1,
 * "m" 1, "ip" 1, "max_iter" 1); ZE_2_INT_ARG_GT ("ip" against "n"); ZE_2_INT_ARG_LT ("tdx", "tdv"
 * against "n"); ZE_REAL_ARG_LT ("tol" 0.0; "s" 0.0 for normal and gamma); ZE_REAL_ARG_CONS ("eps",
 * 0.0 <= eps < 1.0); ZE_NULL_ARRAY ("t" for the binomial); ZE_EX_POWER_EQ_ZERO
 * (Zek_Exponent with a = 0); ZE_IP_INCOMP_SX (ip not the count of the chosen columns, plus one with the
 * mean; also an sx[j] < 0); ZE_REAL_ARRAY_CONS naming the array and the constraint for a value that is
 * not finite, a negative weight, a negative count, a proportion outside [0, t], a non-positive gamma
 * observation, a non-positive binomial denominator; ZE_IP_GT_OBSERV (fewer positive weights than ip,
 * all weights zero included); ZE_VALUE_AT_BOUNDARY_A to _D (normal, binomial, Poisson, gamma: a fitted
 * value reached the edge of the family's or the link's range, outputs hold the last iterate);
 * ZE_LSQ_ITER_NOT_CONV (max_iter steps without convergence, outputs hold the last iterate);
 * ZE_ZERO_DOF_ERROR (scale to be estimated with *df = 0; b, *dev, v returned, se and cov zero);
 * ZE_SVD_NOT_CONV; ZE_ALLOC_FAIL.  On the argument exits no output is touched. */
enum {
    Zek_Exponent = 1801, Zek_Identity = 1802, Zek_Log = 1803, Zek_SquareRoot = 1804, Zek_Reciprocal = 1805,
    Zek_Logistic = 1806, Zek_Probit = 1807, Zek_CompLogLog = 1808
};

/* g02gac: normal errors; *s the variance (given when positive on entry, otherwise estimated). */
ZEK_API void g02gac(int link, int mean, int n, const double x[], int tdx, int m, const int sx[], int ip,
                    const double y[], const double wt[], const double offset[], double a, double *s, double *dev,
                    double *df, double b[], int *rank, double se[], double cov[], double v[], int tdv, double p[],
                    double tol, int max_iter, double eps, ZekFail *fail) ZEK_SYMBOL("g02gac");

/* g02gbc: binomial counts y[i] out of t[i] > 0 trials, 0 <= y[i] <= t[i]; scale 1.  A null t is refused
 * (ZE_NULL_ARRAY). */
ZEK_API void g02gbc(int link, int mean, int n, const double x[], int tdx, int m, const int sx[], int ip,
                    const double y[], const double t[], const double wt[], const double offset[], double *dev,
                    double *df, double b[], int *rank, double se[], double cov[], double v[], int tdv, double p[],
                    double tol, int max_iter, double eps, ZekFail *fail) ZEK_SYMBOL("g02gbc");

/* g02gcc: Poisson counts y[i] >= 0 (not necessarily integers); scale 1. */
ZEK_API void g02gcc(int link, int mean, int n, const double x[], int tdx, int m, const int sx[], int ip,
                    const double y[], const double wt[], const double offset[], double a, double *dev, double *df,
                    double b[], int *rank, double se[], double cov[], double v[], int tdv, double p[], double tol,
                    int max_iter, double eps, ZekFail *fail) ZEK_SYMBOL("g02gcc");

/* g02gdc: gamma errors, y[i] > 0; *s the dispersion (the squared coefficient of variation), given when
 * positive on entry, otherwise estimated. */
ZEK_API void g02gdc(int link, int mean, int n, const double x[], int tdx, int m, const int sx[], int ip,
                    const double y[], const double wt[], const double offset[], double a, double *s, double *dev,
                    double *df, double b[], int *rank, double se[], double cov[], double v[], int tdv, double p[],
                    double tol, int max_iter, double eps, ZekFail *fail) ZEK_SYMBOL("g02gdc");

/* g02gkc: the estimates of a fit of rank ip - iconst (from g02gac to g02gdc, with its p) under the
 * iconst constraints c'b = 0 (c: ip by iconst, tdc >= ip, by columns).  Every solution of the
 * likelihood equations is b + N u with N the last iconst rows of V' in p; the constrained one has
 * u = -(c'N)^-1 c'b, and with M = I - N (c'N)^-1 c' the covariance becomes M cov M' (so the constraints'
 * directions have variance 0).  b, se and cov (packed as above) are overwritten.  Exits: ZE_INT_ARG_LT
 * ("ip" 1, "iconst" 1), ZE_2_INT_ARG_GE ("iconst" against "ip"), ZE_2_INT_ARG_LT ("tdc" against "ip"),
 * ZE_REAL_ARRAY_CONS (a value of c not finite), ZE_RANK_CHANGED (p holds no null space of that size:
 * the fit was of another rank), ZE_MAT_NOT_FULL_RANK (c'N singular against the machine precision: the
 * constraints do not fix the estimates), ZE_ALLOC_FAIL.  Outputs untouched on a failure. */
ZEK_API void g02gkc(int ip, int iconst, const double p[], const double c[], int tdc, double b[], double se[],
                    double cov[], ZekFail *fail) ZEK_SYMBOL("g02gkc");

/* g02gnc: estimability of the linear function f'b of a fit of rank *rank (p from the fit).  f is
 * estimable when its component in the null space N (the last ip - rank rows of V') is at most tol
 * times |f| (tol = 0: the square root of the machine precision); then *est = 1, *stat = f'b,
 * *sestat = sqrt(f' cov f) and *z = *stat / *sestat (0 when *sestat is 0); otherwise *est = 0 and the
 * three are 0.  A fit of full rank makes every f estimable.  Exits: ZE_INT_ARG_LT ("ip" 1, "rank" 1),
 * ZE_2_INT_ARG_GT ("rank" against "ip"), ZE_REAL_ARG_LT ("tol" 0.0), ZE_REAL_ARRAY_CONS (f not finite). */
ZEK_API void g02gnc(int ip, int rank, const double b[], const double cov[], const double p[], const double f[],
                    int *est, double *stat, double *sestat, double *z, double tol, ZekFail *fail)
    ZEK_SYMBOL("g02gnc");

/* Robust regression, g02hac, and the robust location and covariance that give its GM weights, g02hkc.
 *
 * g02hac fits y = X theta + e on the m columns of x (tdx >= n; a column of ones if an intercept is
 * wanted) by iteratively reweighted least squares from the least-squares fit (weighted by the GM weights
 * gw for the GM types).  With r_i the residuals and sigma the scale, each step solves the weighted
 * least squares with weights psi(u_i)/u_i, where
 *   regtype Zek_MEstimate:  u_i = r_i / sigma;
 *   regtype Zek_Mallows:    u_i = r_i / sigma, the weight multiplied by gw[i];
 *   regtype Zek_Schweppe:   u_i = r_i / (sigma gw[i]) (a row with gw[i] = 0 has weight 0).
 * psifun Zek_Huber: psi(u) = max(-c, min(c, u)), c = cpsi[0] (1.345 gives 95% efficiency at the normal);
 * Zek_Hampel: psi(u) = u up to a, a sign(u) up to b, a (c - |u|)/(c - b) sign(u) up to c, 0 beyond, with
 * (a, b, c) = cpsi[0..2], 0 < a <= b < c (commonly 2, 4, 8); Zek_Bisquare: psi(u) = u (1 - (u/c)^2)^2 for
 * |u| <= c, 0 beyond, c = cpsi[0] (4.685 for 95% efficiency).
 * The scale, sigma_est: Zek_SigmaFixed *sigma as given (> 0); Zek_SigmaMAD median |r_i| / 0.67448975019608171
 * (the upper quartile of the standard normal) before each step; Zek_SigmaProposal2 Huber's proposal 2,
 * sigma^2 = sum min(r_i^2, (d sigma)^2) / ((n - m) beta) with d = dchi and beta = E min(Z^2, d^2) for a
 * standard normal Z, one update before each step from the MAD start.
 * The iteration stops when |r_new - r| <= tol |r| (2-norms; tol = 0 means 1000 times the machine
 * precision), at most max_iter steps.  Outputs: theta[m], *sigma, cov[m (m + 1)/2] (packed by columns
 * as the GLM routines), rs[n] the residuals, wgt[n] the final weights of the least-squares step.
 * The covariance: for M-estimates Huber's sigma^2 kappa^2 (sum psi^2 / (n - m)) / mean(psi')^2 (X'X)^-1
 * with kappa = 1 + m var(psi') / (n mean(psi')^2) (var with n - 1); for the GM types the sandwich
 * sigma^2 n / (n - m) S1^-1 S2 S1^-1 with S1 = sum eta' x x', S2 = sum eta^2 x x', where eta is
 * gw psi(u) (Mallows) or gw psi(u) with u = r / (sigma gw) (Schweppe) and eta' its derivative in r/sigma.
 * Exits: ZE_BAD_PARAM ("regtype", "psifun", "sigma_est"); ZE_INT_ARG_LT ("m" 1, "max_iter" 1);
 * ZE_2_INT_ARG_LE ("n" against "m"); ZE_2_INT_ARG_LT ("tdx" against "n"); ZE_REAL_ARG_LT ("tol" 0.0);
 * ZE_NULL_ARRAY ("gw" null for a GM type);
 * ZE_INVALID_HUBER_FUN (c <= 0 for Huber or bisquare); ZE_BAD_HAMPEL_PSI_FUN; ZE_INVALID_DCHI_FUN
 * (dchi <= 0 with proposal 2); ZE_REAL_ARG_LE ("sigma" 0.0 when fixed); ZE_REAL_ARRAY_CONS (x, y not
 * finite, gw negative or not finite); ZE_WT_LSQ_NOT_FULL_RANK (a weighted least-squares step, the
 * start included, of rank below m); ZE_ESTIM_SIGMA_ZERO (the scale estimate is 0, or below 100 times the
 * machine precision times the largest |y|: more than half the residuals vanish); ZE_THETA_ITER_EXCEEDED (max_iter steps without convergence; outputs hold the last
 * iterate); ZE_REG_MAT_SINGULAR (the matrix of the covariance is singular: psi' sums to 0; theta, sigma,
 * rs and wgt returned); ZE_LSQ_FAIL_CONV (a residual or a sum of squares overflowed: data too large,
 * outputs hold the last iterate); ZE_ALLOC_FAIL.  No output is touched on the argument exits. */
enum { Zek_MEstimate = 1811, Zek_Mallows = 1812, Zek_Schweppe = 1813 };
enum { Zek_Huber = 1821, Zek_Hampel = 1822, Zek_Bisquare = 1823 };
enum { Zek_SigmaFixed = 1831, Zek_SigmaMAD = 1832, Zek_SigmaProposal2 = 1833 };

ZEK_API void g02hac(int regtype, int psifun, int sigma_est, int n, int m, const double x[], int tdx, const double y[],
                    const double gw[], const double cpsi[], double dchi, double theta[], double *sigma, double cov[],
                    double rs[], double wgt[], double tol, int max_iter, ZekFail *fail) ZEK_SYMBOL("g02hac");

/* g02hkc: a robust location t[m] and scatter V (cov[m (m + 1)/2], packed by columns) of the n rows of
 * x (tdx >= n), with the robust distances d[n], d_i^2 = (x_i - t)' V^-1 (x_i - t), and the GM weights
 * gw[n] = min(1, (c / d_i)^2) for g02hac (c > 0, or c = 0 for the square root of the 0.95 point of
 * chi-squared on m degrees of freedom).  The estimate starts from the coordinatewise medians and the
 * squared MADs (the variance for a column whose MAD is 0), and iterates the weighted mean and scatter
 * t = sum w_i x_i / sum w_i, V = sum w_i (x_i - t)(x_i - t)' / sum w_i with the redescending weights
 * w_i = (1 - d_i^2/k^2)^2 for d_i < k and 0 beyond, k^2 the 0.999 point of chi-squared on m degrees of
 * freedom; the start and each V are rescaled so that the median of d^2 is the median of chi-squared on
 * m degrees of freedom (consistency at the normal).  The redescending weights give a cluster of
 * outliers far from the start no weight at all, where monotone (Huber) weights let it mask itself.
 * It stops when t and V change by at most tol relative to their largest elements (tol = 0: 1000 times
 * the machine precision), at most max_iter steps.
 * Exits: ZE_INT_ARG_LT ("m" 1, "max_iter" 1); ZE_2_INT_ARG_LE ("n" against "m"); ZE_2_INT_ARG_LT ("tdx"
 * against "n"); ZE_REAL_ARG_LT ("c" 0.0, "tol" 0.0); ZE_REAL_ARRAY_CONS (x not finite); ZE_CONST_COL (a
 * column of x is constant); ZE_VARCOV_MAT_SINGULAR (the scatter became singular: the rows lie in a
 * hyperplane); ZE_WT_ITER_EXCEEDED (no convergence in max_iter steps; outputs hold the last iterate);
 * ZE_ALLOC_FAIL. */
ZEK_API void g02hkc(int n, int m, const double x[], int tdx, double c, double t[], double cov[], double d[],
                    double gw[], double tol, int max_iter, ZekFail *fail) ZEK_SYMBOL("g02hkc");
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
/* g02btc: G02BTF in the C-style layer, mean Zek_MeanInclude or Zek_MeanZero.  Raises ZE_BAD_PARAM
 * ("mean"; "x" not finite), ZE_INT_ARG_LT ("m" 1, "incx" 1), ZE_REAL_ARG_LT ("sw" 0.0, or not finite),
 * ZE_REAL_ARG_CONS ("wt": "wt finite and sw + wt >= 0.0"), ZW_OVERFLOW_WARN; nothing is changed on the
 * others. */
ZEK_API void g02btc(int mean, int m, double wt, const double x[], int incx, double *sw, double xbar[], double c[],
                    ZekFail *fail) ZEK_SYMBOL("g02btc");

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
 * correlation; against negative correlation use 4 - D.  The probabilities are those G01EPF gives for
 * D (Imhof's inversion by adaptive Gauss-Legendre quadrature).  WORK(N - IP).
 * IFAIL 1: IP < 1, N <= IP; 2: RES not finite; 3: all residuals zero. */
ZEK_API void G02FCF(const int *n, const int *ip, const double res[], double *d, double *pdl, double *pdu, double work[],
                    int *ifail) ZEK_SYMBOL("G02FCF");
/* g02fcc: G02FCF in the C-style layer (its workspace allocated here).  Raises ZE_INT_ARG_LT ("ip" 1),
 * ZE_2_INT_ARG_LE ("n" against "ip"), ZE_BAD_PARAM ("res" not finite), ZW_RSS_EQ_ZERO (all residuals
 * zero), ZE_ALLOC_FAIL. */
ZEK_API void g02fcc(int n, int ip, const double res[], double *d, double *pdl, double *pdu, ZekFail *fail)
    ZEK_SYMBOL("g02fcc");

ZEK_END_DECLS

#endif
