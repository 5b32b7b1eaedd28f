// Multiple linear regression by Householder QR of the (weighted) design, kept in Q for later updates.
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "frame/adaptor.h"
#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/raise.h"
#include "kernels/qr.h"
#include "kernels/svd.h"
#include "statistics/regression.h"
#include "zek2/g02.h"
#include "zek2/x03.h"

namespace zek {

namespace {

using std::ptrdiff_t;

struct FitArgs {
    bool mean, weighted;
    int n, m, ip;
    const double *x;
    int ldx;
    const int *isx;
    const double *y, *wt;
    double tol;
};

struct FitOut {
    double *rss;
    int *idf;
    double *b, *se, *cov, *res, *h, *q;
    int ldq;
    int *svd, *irank;
    double *p, *wk;
};

// The design value of row i in model column k (0-based): the mean term first, then the chosen columns.
class Design {
public:
    explicit Design(const FitArgs &a) : a_(a) {}
    // Column of X for model column k, or -1 for the mean term.
    int source(int k) const {
        int c = a_.mean ? k - 1 : k;
        if (c < 0) return -1;
        for (int j = 0; j < a_.m; ++j) {
            if (a_.isx[j] > 0 && c-- == 0) return j;
        }
        return -1;
    }

    // Row i of the model's design into ROW (IP values), in one walk over ISX.
    void row(ptrdiff_t i, double *out) const {
        int k = 0;
        if (a_.mean) out[k++] = 1.0;
        for (int j = 0; j < a_.m; ++j) {
            if (a_.isx[j] > 0) out[k++] = a_.x[i + static_cast<ptrdiff_t>(j) * a_.ldx];
        }
    }

private:
    const FitArgs &a_;
};

// One step of iterative refinement of the full-rank coefficients B: the weighted residual r = W^1/2 (y - X b),
// accumulated in double-double form so that its cancellation costs nothing, then b += R^-1 (Q'r)(1:ip).
// Where the fit is close (Norris, Pontius) this recovers the digits that the rounding of Q'y and of the
// back substitution lose; RSS, the residuals and Q itself still come from the factorisation as before.
// R (IP by IP) and the reflectors are in DESIGN with ZETA; R holds N values, ROW and MINUS_B IP each, and
// QWORK what the reflectors' application to one column needs.
void refine_coefficients(const FitArgs &a, const Design &d, double *design, int ldq, const double *zeta, double *b,
                         double *r, double *row, double *minus_b, double *qwork) {
    const int n = a.n, ip = a.ip;
    for (ptrdiff_t k = 0; k < ip; ++k) minus_b[k] = -b[k];
    for (ptrdiff_t i = 0; i < n; ++i) {
        d.row(i, row);
        double hi = 0.0, lo = 0.0;
        ZekFail local = clean_fail();
        x03aac(row, 0, minus_b, 0, ip, 1, 1, a.y[i], 0.0, &hi, &lo, 1, &local);
        r[i] = a.weighted ? (hi + lo) * std::sqrt(a.wt[i]) : hi + lo;
    }
    qr_apply('T', 'S', n, ip, design, ldq, zeta, 1, r, n, qwork);
    for (ptrdiff_t i = ip - 1; i >= 0; --i) {
        double s = r[i];
        for (ptrdiff_t k = i + 1; k < ip; ++k) s -= design[i + k * static_cast<ptrdiff_t>(ldq)] * r[k];
        r[i] = s / design[i + i * static_cast<ptrdiff_t>(ldq)];
    }
    for (ptrdiff_t k = 0; k < ip; ++k) {
        if (std::isfinite(r[k])) b[k] += r[k];
    }
}

// The failure exits of G02DAF: the argument checks, then the fit's own two.
enum G02dafExit {
    kNLessThan2, kMLessThan1, kIpLessThan1, kIpAboveN, kLdxLessThanN, kLdqLessThanN, kTolNegative, kMeanInvalid,
    kWeightInvalid, kIsxNegative, kWtNegative, kIpNotIsxCount, kXNotFinite, kYNotFinite, kNoErrorDegrees, kSvdFails
};
constexpr ExitRow kG02dafExits[] = {
    {1, 99999, " ** On entry N .lt. 2 : N = %16ld"},
    {1, 99998, " ** On entry M .lt. 1 : M = %16ld"},
    {1, 99997, " ** On entry IP .lt. 1 : IP = %16ld"},
    {1, 99996, " ** On entry IP .gt. N : IP = %16ld N = %16ld"},
    {1, 99995, " ** On entry LDX .lt. N : LDX = %16ld N = %16ld"},
    {1, 99994, " ** On entry LDQ .lt. N : LDQ = %16ld N = %16ld"},
    {1, 99993, " ** On entry TOL .lt. 0.0: TOL = %12.5e"},
    {1, 99992, " ** On entry MEAN is not a valid character : MEAN is %1.1s"},
    {1, 99991, " ** On entry WEIGHT is not a valid character : WEIGHT is %1.1s"},
    {1, 99990, " ** On entry element %16ld of ISX .lt. 0"},
    {2, 99989, " ** On entry element %16ld of WT .lt. 0"},
    {3, 99988, " ** On entry value of IP incompatible with number of non-zero values of ISX :\n             IP = %16ld"},
    {1, 99987, " ** On entry element %16ld of X is not finite"},
    {1, 99986, " ** On entry element %16ld of Y is not finite"},
    {4, 99996, " ** Degrees of freedom for error equal 0"},
    {5, 99995, " ** SVD solution failed to converge"},
};

void g02daf_worker(const FitArgs &a, const FitOut &o, char *errbuf, int *ifail) {
    FailureExit exit("G02DAF", errbuf, ifail);
    const int n = a.n, ip = a.ip;
    const ptrdiff_t ldq = o.ldq;
    double *design = o.q + ldq;
    // Weighted copy of the design and the response.
    const Design d(a);
    long positive = 0;
    for (int k = 0; k < ip; ++k) {
        const int src = d.source(k);
        for (ptrdiff_t i = 0; i < n; ++i) {
            const double v = src < 0 ? 1.0 : a.x[i + static_cast<ptrdiff_t>(src) * a.ldx];
            design[i + k * ldq] = a.weighted ? v * std::sqrt(a.wt[i]) : v;
        }
    }
    for (ptrdiff_t i = 0; i < n; ++i) {
        o.q[i] = a.weighted ? a.y[i] * std::sqrt(a.wt[i]) : a.y[i];
        if (!a.weighted || a.wt[i] > 0.0) ++positive;
    }
    double *zeta = o.p;
    qr_factor(n, ip, design, o.ldq, zeta);
    double *rinv = o.wk;
    double *work = o.wk + static_cast<ptrdiff_t>(ip) * ip;
    qr_apply('T', 'S', n, ip, design, o.ldq, zeta, 1, o.q, o.ldq, work);
    bool full = true;
    const int rank = triangle_fit(ip, design, ldq, o.q, a.tol, o.p + ip, o.p + 2 * static_cast<ptrdiff_t>(ip), rinv,
                                  work, o.b, o.res, &full);
    if (rank < 0) return void(take(exit, kG02dafExits, kSvdFails));
    if (full) {
        // RES is free until the residuals are formed; its first IP values are zero for a full-rank fit.
        // SE and COV are free as well until the statistics are formed.
        refine_coefficients(a, d, design, o.ldq, zeta, o.b, o.res, o.se, o.cov, work);
        for (ptrdiff_t i = 0; i < ip; ++i) o.res[i] = 0.0;
    }
    *o.svd = full ? 0 : 1;
    *o.irank = rank;
    double rss = 0.0;
    for (ptrdiff_t i = 0; i < ip; ++i) rss += o.res[i] * o.res[i];
    for (ptrdiff_t i = ip; i < n; ++i) rss += o.q[i] * o.q[i];
    *o.rss = rss;
    *o.idf = static_cast<int>(positive - rank);
    // Residuals: Q applied to (that part, Q'y(ip+1:n)), unweighted; rows of zero weight directly.
    for (ptrdiff_t i = ip; i < n; ++i) o.res[i] = o.q[i];
    qr_apply('N', 'S', n, ip, design, o.ldq, zeta, 1, o.res, o.ldq, work);
    double *row = o.se;  // SE holds a row while the leverages are formed
    for (ptrdiff_t i = 0; i < n; ++i) {
        // Leverage w_i |W' x_i|^2 from the original row.
        d.row(i, row);
        double lev = 0.0, fit = 0.0;
        for (ptrdiff_t k = 0; k < rank; ++k) {
            double s = 0.0;
            for (ptrdiff_t j = 0; j < ip; ++j) s += row[j] * rinv[j + k * ip];
            lev += s * s;
        }
        for (ptrdiff_t j = 0; j < ip; ++j) fit += row[j] * o.b[j];
        const double w = a.weighted ? a.wt[i] : 1.0;
        o.h[i] = w * lev;
        o.res[i] = w > 0.0 ? o.res[i] / std::sqrt(w) : a.y[i] - fit;
    }
    const ptrdiff_t packed = static_cast<ptrdiff_t>(ip) * (ip + 1) / 2;
    if (*o.idf <= 0) {
        for (ptrdiff_t k = 0; k < ip; ++k) o.se[k] = 0.0;
        for (ptrdiff_t k = 0; k < packed; ++k) o.cov[k] = 0.0;
        take(exit, kG02dafExits, kNoErrorDegrees);
        return;
    }
    packed_covariance(ip, rank, rinv, rss / *o.idf, o.cov, o.se);
    for (ptrdiff_t k = ip; k < 2 * static_cast<ptrdiff_t>(ip) && full; ++k) o.p[k] = 0.0;
    exit.succeed();
}

// The checks, in their fixed order; returns false after the failure exit.
bool g02daf_checks(FailureExit &exit, char mean, char weight, const FitArgs &a, int ldq) {
    const long n = a.n, m = a.m, ip = a.ip, ldx = a.ldx;
    if (n < 2) return take(exit, kG02dafExits, kNLessThan2, {n}), false;
    if (m < 1) return take(exit, kG02dafExits, kMLessThan1, {m}), false;
    if (ip < 1) return take(exit, kG02dafExits, kIpLessThan1, {ip}), false;
    if (ip > n) return take(exit, kG02dafExits, kIpAboveN, {ip, n}), false;
    if (ldx < n) return take(exit, kG02dafExits, kLdxLessThanN, {ldx, n}), false;
    if (ldq < n) return take(exit, kG02dafExits, kLdqLessThanN, {static_cast<long>(ldq), n}), false;
    if (!(a.tol >= 0.0)) return take(exit, kG02dafExits, kTolNegative, {a.tol}), false;
    if (mean != 'M' && mean != 'm' && mean != 'Z' && mean != 'z') {
        const char t[2] = {mean, '\0'};
        return take(exit, kG02dafExits, kMeanInvalid, {t}), false;
    }
    if (weight != 'W' && weight != 'w' && weight != 'U' && weight != 'u') {
        const char t[2] = {weight, '\0'};
        return take(exit, kG02dafExits, kWeightInvalid, {t}), false;
    }
    long chosen = 0;
    for (long j = 0; j < m; ++j) {
        if (a.isx[j] < 0) return take(exit, kG02dafExits, kIsxNegative, {j + 1}), false;
        chosen += a.isx[j] > 0 ? 1 : 0;
    }
    if (a.weighted) {
        for (long i = 0; i < n; ++i) {
            if (!(a.wt[i] >= 0.0) || std::isinf(a.wt[i])) {
                return take(exit, kG02dafExits, kWtNegative, {i + 1}), false;
            }
        }
    }
    if (chosen + (a.mean ? 1 : 0) != ip) return take(exit, kG02dafExits, kIpNotIsxCount, {ip}), false;
    for (long j = 0; j < m; ++j) {
        if (a.isx[j] <= 0) continue;
        for (long i = 0; i < n; ++i) {
            if (!std::isfinite(a.x[i + j * ldx])) {
                return take(exit, kG02dafExits, kXNotFinite, {i + j * ldx + 1}), false;
            }
        }
    }
    for (long i = 0; i < n; ++i) {
        if (!std::isfinite(a.y[i])) return take(exit, kG02dafExits, kYNotFinite, {i + 1}), false;
    }
    return true;
}

void g02daf_checked(char mean, char weight, const FitArgs &a, const FitOut &o, char *errbuf, int *ifail) {
    FailureExit exit("G02DAF", errbuf, ifail);
    if (!g02daf_checks(exit, mean, weight, a, o.ldq)) return;
    g02daf_worker(a, o, errbuf, ifail);
}

// The failure exits of G02DGF, the refit of a new response on the same design.
enum G02dgfExit {
    kRefitIpLessThan1, kRefitRankNotPositive, kRefitRankNotIp, kRefitRankAboveIp, kRefitLdqLessThanN,
    kRefitNLessThanIp, kRefitRssNotPositive, kRefitWeightInvalid, kRefitWtNegative, kRefitYNotFinite
};
constexpr ExitRow kG02dgfExits[] = {
    {1, 99999, " ** On entry, IP.lt.1 : IP = %16ld"},
    {1, 99998, " ** On entry, IRANK.le.0: IRANK = %16ld"},
    {1, 99997, " ** On entry, IRANK.ne.IP and SVD is .FALSE. :\n              IRANK = %16ld IP = %16ld"},
    {1, 99996, " ** On entry, IRANK.gt.IP and SVD is .TRUE. :\n              IRANK = %16ld IP = %16ld"},
    {1, 99995, " ** On entry, LDQ.lt.N : LDQ = %16ld N = %16ld"},
    {1, 99994, " ** On entry, N.lt.IP : N = %16ld IP = %16ld"},
    {1, 99993, " ** On entry, RSS.le.0.0 : RSS = %13.5e"},
    {1, 99992, " ** On entry, WEIGHT is not valid : WEIGHT = %1.1s"},
    {2, 99991, " ** On entry, WT(%16ld).lt.0.0"},
    {1, 99990, " ** On entry element %16ld of Y is not finite"},
};

void g02dgf_worker(char weight, int n, const double *wt, double *rss, int ip, int irank, double *cov, double *q,
                   int ldq, int svd, const double *p, const double *y, double *b, double *se, double *res, double *wk,
                   char *errbuf, int *ifail) {
    FailureExit exit("G02DGF", errbuf, ifail);
    const long ln = n, lip = ip, lrank = irank, lq = ldq;
    if (ip < 1) return void(take(exit, kG02dgfExits, kRefitIpLessThan1, {lip}));
    if (irank <= 0) return void(take(exit, kG02dgfExits, kRefitRankNotPositive, {lrank}));
    if (irank != ip && svd == 0) return void(take(exit, kG02dgfExits, kRefitRankNotIp, {lrank, lip}));
    if (irank > ip && svd != 0) return void(take(exit, kG02dgfExits, kRefitRankAboveIp, {lrank, lip}));
    if (ldq < n) return void(take(exit, kG02dgfExits, kRefitLdqLessThanN, {lq, ln}));
    if (n < ip) return void(take(exit, kG02dgfExits, kRefitNLessThanIp, {ln, lip}));
    if (!(*rss > 0.0)) return void(take(exit, kG02dgfExits, kRefitRssNotPositive, {*rss}));
    const bool weighted = weight == 'W' || weight == 'w';
    if (!weighted && weight != 'U' && weight != 'u') {
        const char t[2] = {weight, '\0'};
        return void(take(exit, kG02dgfExits, kRefitWeightInvalid, {t}));
    }
    for (long i = 0; weighted && i < ln; ++i) {
        if (!(wt[i] >= 0.0) || std::isinf(wt[i])) return void(take(exit, kG02dgfExits, kRefitWtNegative, {i + 1}));
    }
    for (long i = 0; i < ln; ++i) {
        if (!std::isfinite(y[i])) return void(take(exit, kG02dgfExits, kRefitYNotFinite, {i + 1}));
    }
    double *design = q + static_cast<ptrdiff_t>(ldq);
    for (ptrdiff_t i = 0; i < n; ++i) q[i] = weighted ? y[i] * std::sqrt(wt[i]) : y[i];
    qr_apply('T', 'S', n, ip, design, ldq, p, 1, q, ldq, wk);
    if (svd == 0) {
        for (ptrdiff_t i = ip - 1; i >= 0; --i) {
            double s = q[i];
            for (ptrdiff_t k = i + 1; k < ip; ++k) s -= design[i + k * ldq] * b[k];
            b[i] = s / design[i + i * ldq];
        }
    } else {
        // Without U: the components U_r'c = S_r^-1 V_r' R'c, so b = V_r S_r^-2 V_r' R'c; RES holds R'c.
        const double *sv = p + ip, *vt = p + 2 * static_cast<ptrdiff_t>(ip);
        for (ptrdiff_t i = 0; i < ip; ++i) {
            double s = 0.0;
            for (ptrdiff_t k = 0; k <= i; ++k) s += design[k + i * ldq] * q[k];
            res[i] = s;
        }
        for (ptrdiff_t k = 0; k < irank; ++k) {
            double s = 0.0;
            for (ptrdiff_t i = 0; i < ip; ++i) s += vt[k + i * ip] * res[i];
            wk[k] = sv[k] > 0.0 ? s / (sv[k] * sv[k]) : 0.0;
        }
        for (ptrdiff_t i = 0; i < ip; ++i) {
            double s = 0.0;
            for (ptrdiff_t k = 0; k < irank; ++k) s += vt[k + i * ip] * wk[k];
            b[i] = s;
        }
    }
    double r = 0.0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        double s = q[i];
        for (ptrdiff_t k = i; k < ip && svd != 0; ++k) s -= design[i + k * ldq] * b[k];
        res[i] = i < ip && svd == 0 ? 0.0 : s;
        r += res[i] * res[i];
    }
    qr_apply('N', 'S', n, ip, design, ldq, p, 1, res, ldq, wk);
    for (ptrdiff_t i = 0; i < n; ++i) {
        const double w = weighted ? wt[i] : 1.0;
        res[i] = w > 0.0 ? res[i] / std::sqrt(w) : 0.0;
    }
    const double ratio = r / *rss;
    for (ptrdiff_t j = 0; j < ip; ++j) {
        for (ptrdiff_t i = 0; i <= j; ++i) cov[j * (j + 1) / 2 + i] *= ratio;
        se[j] = std::sqrt(cov[j * (j + 1) / 2 + j]);
    }
    *rss = r;
    exit.succeed();
}

} // namespace

double triangular_condition(int ip, const double *r, std::ptrdiff_t ldr, double *rinv) {
    using std::ptrdiff_t;
    const double h = 1.0 / safe_minimum();
    for (ptrdiff_t j = 0; j < ip; ++j) {
        for (ptrdiff_t i = 0; i < ip; ++i) rinv[i + j * ip] = 0.0;
    }
    for (ptrdiff_t j = 0; j < ip; ++j) {
        if (!(std::fabs(r[j + j * ldr]) > 0.0)) return h;
        // Column j of R^-1 by back substitution on e_j.
        rinv[j + j * ip] = 1.0 / r[j + j * ldr];
        for (ptrdiff_t i = j - 1; i >= 0; --i) {
            double s = 0.0;
            for (ptrdiff_t k = i + 1; k <= j; ++k) s += r[i + k * ldr] * rinv[k + j * ip];
            rinv[i + j * ip] = -s / r[i + i * ldr];
        }
    }
    double nr = 0.0, ni = 0.0;
    for (ptrdiff_t j = 0; j < ip; ++j) {
        double cr = 0.0, ci = 0.0;
        for (ptrdiff_t i = 0; i <= j; ++i) {
            cr += std::fabs(r[i + j * ldr]);
            ci += std::fabs(rinv[i + j * ip]);
        }
        nr = cr > nr ? cr : nr;
        ni = ci > ni ? ci : ni;
    }
    if (!(ni < h) || !(nr < h)) return h;
    if (nr > 1.0 && ni > h / nr) return h;
    return nr * ni;
}

bool constraint_args_ok(ZekFail *fail, const char *name, int ip, int iconst, int tdc) {
    if (ip < 1) return raise_int_arg(fail, name, ZE_INT_ARG_LT, "ip", "1", ip), false;
    if (iconst < 1) return raise_int_arg(fail, name, ZE_INT_ARG_LT, "iconst", "1", iconst), false;
    if (iconst >= ip) {
        raise_formatted(fail, name, ZE_2_INT_ARG_GE, "iconst", static_cast<long>(iconst), "ip", static_cast<long>(ip),
                        "iconst", "ip");
        return false;
    }
    return !raise_below(fail, name, "tdc", tdc, "ip", ip);
}

int triangle_fit(int ip, const double *r, ptrdiff_t ldr, const double *c, double tol, double *sv, double *vt,
                 double *wmat, double *work, double *b, double *unexplained, bool *full) {
    const double cond = triangular_condition(ip, r, ldr, wmat);
    const double t = tol > 0.0 ? tol : precision();
    *full = cond * t < 1.0;
    if (*full) {
        for (ptrdiff_t i = 0; i < ip; ++i) {
            double s = 0.0;
            for (ptrdiff_t k = i; k < ip; ++k) s += wmat[i + k * ip] * c[k];
            b[i] = s;
            unexplained[i] = 0.0;
        }
        return ip;
    }
    // R = U S V' by plane rotations and the bidiagonal iteration; U'c is formed in UNEXPLAINED on the way.
    double *e = work;
    for (ptrdiff_t j = 0; j < ip; ++j) {
        for (ptrdiff_t i = 0; i < ip; ++i) vt[i + j * ip] = i <= j ? r[i + j * ldr] : 0.0;
        unexplained[j] = c[j];
    }
    triangle_to_bidiagonal(ip, vt, ip, sv, e, 1, unexplained, ip, false, nullptr, 1);
    form_right_rotations(ip, vt, ip);
    if (bidiagonal_qr(ip, sv, e, 1, unexplained, ip, 0, nullptr, 1, ip, vt, ip, work + (ip > 1 ? ip - 1 : 0)) != 0) {
        return -1;
    }
    int rank = 0;
    while (rank < ip && sv[rank] > t * sv[0]) ++rank;
    for (ptrdiff_t k = 0; k < rank; ++k) {
        for (ptrdiff_t i = 0; i < ip; ++i) wmat[i + k * ip] = vt[k + i * ip] / sv[k];
    }
    for (ptrdiff_t i = 0; i < ip; ++i) {
        double s = 0.0;
        for (ptrdiff_t k = 0; k < rank; ++k) s += wmat[i + k * ip] * unexplained[k];
        b[i] = s;
    }
    for (ptrdiff_t i = 0; i < ip; ++i) {
        double s = c[i];
        for (ptrdiff_t k = i; k < ip; ++k) s -= r[i + k * ldr] * b[k];
        unexplained[i] = s;
    }
    return rank;
}

void packed_covariance(int ip, int rank, const double *wmat, double s2, double *cov, double *se) {
    for (ptrdiff_t j = 0; j < ip; ++j) {
        for (ptrdiff_t i = 0; i <= j; ++i) {
            double s = 0.0;
            for (ptrdiff_t k = 0; k < rank; ++k) s += wmat[i + k * ip] * wmat[j + k * ip];
            cov[j * (j + 1) / 2 + i] = s2 * s;
        }
        se[j] = std::sqrt(cov[j * (j + 1) / 2 + j]);
    }
}

} // namespace zek

extern "C" {

void G02DGF(const char *weight, const int *n, const double wt[], double *rss, const int *ip, const int *irank,
            double cov[], double q[], const int *ldq, const int *svd, const double p[], const double y[], double b[],
            double se[], double res[], double wk[], int *ifail, int weight_len) {
    zek::Front front("G02DGF");
    if (*ip >= 1 && *ip <= *n && *ldq >= *n) {
        zek::mark_vector(*ip, b);
        zek::mark_vector(*ip, se);
        zek::mark_vector(*n, res);
    }
    zek::g02dgf_worker(weight_len > 0 ? weight[0] : ' ', *n, wt, rss, *ip, *irank, cov, q, *ldq, *svd, p, y, b, se, res,
                       wk, front.errbuf(), ifail);
    front.finish(*ifail);
}

void G02DAF(const char *mean, const char *weight, const int *n, const double x[], const int *ldx, const int *m,
            const int isx[], const int *ip, const double y[], const double wt[], double *rss, int *idf, double b[],
            double se[], double cov[], double res[], double h[], double q[], const int *ldq, int *svd, int *irank,
            double p[], const double *tol, double wk[], int *ifail, int mean_len, int weight_len) {
    zek::Front front("G02DAF");
    const char mc = mean_len > 0 ? mean[0] : ' ', wc = weight_len > 0 ? weight[0] : ' ';
    const int ipv = *ip, nv = *n;
    // Only sizes that pass the checks are marked, so a wild N or IP cannot carry a mark outside the
    // caller's arrays.
    if (ipv >= 1 && nv >= 2 && ipv <= nv && *ldx >= nv && *ldq >= nv) {
        zek::mark_vector(ipv, b);
        zek::mark_vector(ipv, se);
        zek::mark_matrix(ipv % 2 == 0 ? ipv + 1 : ipv, ipv % 2 == 0 ? ipv / 2 : ipv / 2 + 1, cov);  // ip (ip + 1)/2
        zek::mark_vector(nv, res);
        zek::mark_vector(nv, h);
        zek::mark_matrix(ipv + 2, ipv, p);
    }
    const zek::FitArgs a{mc == 'M' || mc == 'm', wc == 'W' || wc == 'w', nv, *m, ipv, x, *ldx, isx, y, wt, *tol};
    const zek::FitOut o{rss, idf, b, se, cov, res, h, q, *ldq, svd, irank, p, wk};
    zek::g02daf_checked(mc, wc, a, o, front.errbuf(), ifail);
    front.finish(*ifail);
}

void g02dgc(int n, const double wt[], double *rss, int ip, int rank, double cov[], double q[], int tdq, int svd,
            const double p[], const double y[], double b[], double se[], double res[], ZekFail *fail) {
    static const char *const kName = "g02dgc";
    zek::clear_fail(fail);
    if (ip < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (rank < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "rank", "1", rank);
    if (rank != ip && svd == 0) return zek::raise_plain(fail, kName, ZE_SVD_RANK_NE_IP);
    if (rank > ip && svd != 0) return zek::raise_plain(fail, kName, ZE_SVD_RANK_GT_IP);
    if (tdq < n) return zek::raise_formatted(fail, kName, ZE_2_INT_ARG_LT, "tdq", static_cast<long>(tdq), "n", static_cast<long>(n), "tdq", "n");
    if (n < ip) return zek::raise_formatted(fail, kName, ZE_2_INT_ARG_LT, "n", static_cast<long>(n), "ip", static_cast<long>(ip), "n", "ip");
    if (!(*rss > 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "rss", "0.0", *rss);
    for (int i = 0; wt != nullptr && i < n; ++i) {
        if (!(wt[i] >= 0.0) || std::isinf(wt[i])) {
            return zek::raise_formatted(fail, kName, ZE_REAL_ARRAY_CONS, "wt", static_cast<long>(i), wt[i], "wt[i] >= 0.0");
        }
    }
    double *wk = static_cast<double *>(std::malloc(sizeof(double) * static_cast<std::size_t>(ip)));
    if (wk == nullptr) return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    int ifail = 1;
    zek::g02dgf_worker(wt != nullptr ? 'W' : 'U', n, wt, rss, ip, rank, cov, q, tdq, svd, p, y, b, se, res, wk, nullptr, &ifail);
    std::free(wk);
    switch (ifail) {
    case 0: return zek::raise_success(fail, kName);
    default: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "y");
    }
}

void g02dac(int mean, int n, int m, const double x[], int tdx, const int sx[], int ip, const double y[],
            const double wt[], double *rss, double *df, double b[], double se[], double cov[], double res[],
            double h[], double q[], int tdq, int *svd, int *rank, double p[], double tol, double wk[], ZekFail *fail) {
    static const char *const kName = "g02dac";
    zek::clear_fail(fail);
    if (mean != Zek_MeanInclude && mean != Zek_MeanZero) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "mean");
    if (n < 2) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", "2", n);
    if (m < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "1", m);
    if (ip < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (ip > n) return zek::raise_formatted(fail, kName, ZE_2_INT_ARG_GT, "ip", static_cast<long>(ip), "n", static_cast<long>(n), "ip", "n");
    if (tdx < n) return zek::raise_formatted(fail, kName, ZE_2_INT_ARG_LT, "tdx", static_cast<long>(tdx), "n", static_cast<long>(n), "tdx", "n");
    if (tdq < n) return zek::raise_formatted(fail, kName, ZE_2_INT_ARG_LT, "tdq", static_cast<long>(tdq), "n", static_cast<long>(n), "tdq", "n");
    if (!(tol >= 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "tol", "0.0", tol);
    double *own = nullptr;
    if (wk == nullptr) {
        own = static_cast<double *>(std::malloc(sizeof(double) * (static_cast<std::size_t>(ip) * ip + 5 * static_cast<std::size_t>(ip))));
        if (own == nullptr) return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
        wk = own;
    }
    int idf = 0, ifail = 1;
    const zek::FitArgs a{mean == Zek_MeanInclude, wt != nullptr, n, m, ip, x, tdx, sx, y, wt, tol};
    const zek::FitOut o{rss, &idf, b, se, cov, res, h, q, tdq, svd, rank, p, wk};
    zek::g02daf_checked(mean == Zek_MeanInclude ? 'M' : 'Z', wt != nullptr ? 'W' : 'U', a, o, nullptr, &ifail);
    std::free(own);
    switch (ifail) {
    case 0: *df = idf; return zek::raise_success(fail, kName);
    case 1: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "sx");
    case 2: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "wt");
    case 3: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "ip");
    case 4: *df = 0.0; return zek::raise_plain(fail, kName, ZE_NOT_REQ_ACC);
    default: return zek::raise_plain(fail, kName, ZE_SVD_FAIL);
    }
}

} // extern "C"
