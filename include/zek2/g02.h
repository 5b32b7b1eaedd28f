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

ZEK_END_DECLS

#endif
