// Robust regression by iteratively reweighted least squares (M- and GM-estimates) and the robust
// location and scatter whose distances give the GM weights.
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "frame/machine.h"
#include "frame/raise.h"
#include "sorting/sorting.h"
#include "statistics/weighted_ls.h"
#include "zek2/g01.h"
#include "zek2/g02.h"

namespace zek {

namespace {

using std::ptrdiff_t;

// The upper quartile of the standard normal: MAD / this is consistent for sigma at the normal.
constexpr double kNormalQuartile = 0.67448975019608171;

// psi and its derivative for the three families; C holds c (Huber, bisquare) or a, b, c (Hampel).
struct Psi {
    int kind;
    const double *c;
    double value(double u) const {
        const double au = std::fabs(u);
        switch (kind) {
        case Zek_Huber: return au <= c[0] ? u : std::copysign(c[0], u);
        case Zek_Hampel:
            if (au <= c[0]) return u;
            if (au <= c[1]) return std::copysign(c[0], u);
            return au <= c[2] ? std::copysign(c[0] * (c[2] - au) / (c[2] - c[1]), u) : 0.0;
        default: {
            const double v = u / c[0];
            return au <= c[0] ? u * (1.0 - v * v) * (1.0 - v * v) : 0.0;
        }
        }
    }
    double derivative(double u) const {
        const double au = std::fabs(u);
        switch (kind) {
        case Zek_Huber: return au <= c[0] ? 1.0 : 0.0;
        case Zek_Hampel: return au <= c[0] ? 1.0 : (au <= c[1] || au > c[2] ? 0.0 : -c[0] / (c[2] - c[1]));
        default: {
            const double v2 = (u / c[0]) * (u / c[0]);
            return au <= c[0] ? (1.0 - v2) * (1.0 - 5.0 * v2) : 0.0;
        }
        }
    }
    // psi(u)/u, 1 at u = 0.
    double weight(double u) const {
        const double w = u != 0.0 ? value(u) / u : 1.0;
        return w == 0.0 ? 0.0 : w;  // no negative zero
    }
};

// Median of |v| (N values), sorted in WORK.
double median_abs(ptrdiff_t n, const double *v, double *work) {
    for (ptrdiff_t i = 0; i < n; ++i) work[i] = std::fabs(v[i]);
    sort_ascending(work, n);
    return n % 2 == 1 ? work[n / 2] : 0.5 * (work[n / 2 - 1] + work[n / 2]);
}

// E min(Z^2, d^2) for a standard normal Z.
double proposal2_beta(double d) {
    const double phi = 0.39894228040143268 * std::exp(-0.5 * d * d);
    const double upper = 0.5 * std::erfc(d * 0.70710678118654757);
    return (1.0 - 2.0 * upper) - 2.0 * d * phi + 2.0 * d * d * upper;
}

struct Robust {
    int regtype, sigma_est;
    Psi psi;
    double dchi;
    int n, m;
    const double *x;
    ptrdiff_t tdx;
    const double *y, *gw;
    double tol;
    int max_iter;
};

enum Outcome { kDone, kRank, kSigmaZero, kNotConverged, kSingular, kOverflow, kAlloc };

// Standardised residual of row i and its least-squares weight.
double standardised(const Robust &q, ptrdiff_t i, double r, double sigma) {
    if (q.regtype == Zek_Schweppe) return q.gw[i] > 0.0 ? r / (sigma * q.gw[i]) : 0.0;
    return r / sigma;
}
double ls_weight(const Robust &q, ptrdiff_t i, double u) {
    if (q.regtype == Zek_MEstimate) return q.psi.weight(u);
    if (q.regtype == Zek_Mallows) return q.gw[i] * q.psi.weight(u);
    return q.gw[i] > 0.0 ? q.psi.weight(u) : 0.0;
}

// R = y - X theta; false when a residual is not finite (the data too large for the sums of squares).
bool residuals(const Robust &q, const double *theta, double *r) {
    bool finite = true;
    for (ptrdiff_t i = 0; i < q.n; ++i) {
        double s = q.y[i];
        for (ptrdiff_t j = 0; j < q.m; ++j) s -= q.x[i + j * q.tdx] * theta[j];
        r[i] = s;
        finite = finite && std::isfinite(s);
    }
    return finite;
}

// The covariance of theta (packed) from the final residuals; false when its matrix is singular.
bool robust_covariance(const Robust &q, const double *r, double sigma, double *cov, double *work) {
    const ptrdiff_t n = q.n, m = q.m;
    double *s1 = work, *s2 = s1 + m * m, *inv = s2 + m * m;
    for (ptrdiff_t k = 0; k < 2 * m * m; ++k) s1[k] = 0.0;
    double sum_psi2 = 0.0, sum_d = 0.0, sum_d2 = 0.0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const double u = standardised(q, i, r[i], sigma);
        const double g = q.regtype == Zek_MEstimate ? 1.0 : q.gw[i];
        const double eta = g * q.psi.value(u);
        const double deta = q.regtype == Zek_Mallows ? g * q.psi.derivative(u) : q.psi.derivative(u);
        sum_psi2 += eta * eta;
        sum_d += deta;
        sum_d2 += deta * deta;
        const bool gm = q.regtype != Zek_MEstimate;
        for (ptrdiff_t j = 0; j < m; ++j) {
            for (ptrdiff_t k = 0; k < m; ++k) {
                const double xx = q.x[i + j * q.tdx] * q.x[i + k * q.tdx];
                s1[j + k * m] += gm ? deta * xx : xx;
                s2[j + k * m] += eta * eta * xx;
            }
        }
    }
    // S1^-1 by Gauss-Jordan with partial pivoting.
    for (ptrdiff_t k = 0; k < m * m; ++k) inv[k] = k % (m + 1) == 0 ? 1.0 : 0.0;
    double big = 0.0;
    for (ptrdiff_t k = 0; k < m * m; ++k) big = std::fabs(s1[k]) > big ? std::fabs(s1[k]) : big;
    for (ptrdiff_t j = 0; j < m; ++j) {
        ptrdiff_t p = j;
        for (ptrdiff_t i = j + 1; i < m; ++i) p = std::fabs(s1[i + j * m]) > std::fabs(s1[p + j * m]) ? i : p;
        if (!(std::fabs(s1[p + j * m]) > precision() * big * static_cast<double>(m))) return false;
        for (ptrdiff_t k = 0; k < m; ++k) {
            double t = s1[j + k * m]; s1[j + k * m] = s1[p + k * m]; s1[p + k * m] = t;
            t = inv[j + k * m]; inv[j + k * m] = inv[p + k * m]; inv[p + k * m] = t;
        }
        const double d = s1[j + j * m];
        for (ptrdiff_t k = 0; k < m; ++k) {
            s1[j + k * m] /= d;
            inv[j + k * m] /= d;
        }
        for (ptrdiff_t i = 0; i < m; ++i) {
            const double f = s1[i + j * m];
            if (i == j || f == 0.0) continue;
            for (ptrdiff_t k = 0; k < m; ++k) {
                s1[i + k * m] -= f * s1[j + k * m];
                inv[i + k * m] -= f * inv[j + k * m];
            }
        }
    }
    const double dn = static_cast<double>(n), dm = static_cast<double>(m);
    if (q.regtype == Zek_MEstimate) {
        const double mean = sum_d / dn;
        if (!(mean > 0.0)) return false;
        const double var = n > 1 ? (sum_d2 - dn * mean * mean) / (dn - 1.0) : 0.0;
        const double kappa = 1.0 + dm * var / (dn * mean * mean);
        const double f = sigma * sigma * kappa * kappa * (sum_psi2 / (dn - dm)) / (mean * mean);
        for (ptrdiff_t j = 0; j < m; ++j) {
            for (ptrdiff_t i = 0; i <= j; ++i) cov[j * (j + 1) / 2 + i] = f * inv[i + j * m];
        }
        return true;
    }
    const double f = sigma * sigma * dn / (dn - dm);
    for (ptrdiff_t j = 0; j < m; ++j) {
        for (ptrdiff_t i = 0; i <= j; ++i) {
            double s = 0.0;
            for (ptrdiff_t k = 0; k < m; ++k) {
                for (ptrdiff_t l = 0; l < m; ++l) s += inv[i + k * m] * s2[k + l * m] * inv[l + j * m];
            }
            cov[j * (j + 1) / 2 + i] = f * s;
        }
    }
    return true;
}

Outcome robust_fit(const Robust &q, double *theta, double *sigma, double *cov, double *rs, double *wgt, int *iterations) {
    const ptrdiff_t n = q.n, m = q.m;
    WeightedLs ls(q.n, q.m);
    double *work = static_cast<double *>(std::malloc(sizeof(double) * static_cast<std::size_t>(2 * n + 3 * m * m + m)));
    if (!ls.ok() || work == nullptr) {
        std::free(work);
        return kAlloc;
    }
    double *rnew = work, *sorted = work + n, *tnew = sorted + n, *cwork = tnew + m;
    const double *start_w = q.regtype == Zek_MEstimate ? nullptr : q.gw;
    Outcome out = kNotConverged;
    if (ls.solve(q.x, q.tdx, start_w, q.y, 0.0, theta) < m) {
        std::free(work);
        return kRank;
    }
    if (!residuals(q, theta, rs)) {
        std::free(work);
        return kOverflow;
    }
    double s = q.sigma_est == Zek_SigmaFixed ? *sigma : median_abs(n, rs, sorted) / kNormalQuartile;
    const double beta = q.sigma_est == Zek_SigmaProposal2 ? proposal2_beta(q.dchi) : 1.0;
    // A scale at the rounding level of y means the fit passes exactly through most of the points.
    double ysize = 0.0;
    for (ptrdiff_t i = 0; i < n; ++i) ysize = std::fmax(ysize, std::fabs(q.y[i]));
    const double negligible = 100.0 * precision() * ysize;
    int it = 0;
    while (it < q.max_iter) {
        ++it;
        if (q.sigma_est == Zek_SigmaMAD) s = median_abs(n, rs, sorted) / kNormalQuartile;
        if (q.sigma_est == Zek_SigmaProposal2) {
            double sum = 0.0;
            const double cap = (q.dchi * s) * (q.dchi * s);
            for (ptrdiff_t i = 0; i < n; ++i) sum += rs[i] * rs[i] < cap ? rs[i] * rs[i] : cap;
            s = std::sqrt(sum / (static_cast<double>(n - m) * beta));
        }
        if (!(s > negligible)) {
            out = kSigmaZero;
            break;
        }
        for (ptrdiff_t i = 0; i < n; ++i) wgt[i] = ls_weight(q, i, standardised(q, i, rs[i], s));
        if (ls.solve(q.x, q.tdx, wgt, q.y, 0.0, tnew) < m) {
            out = kRank;
            break;
        }
        if (!residuals(q, tnew, rnew)) {
            out = kOverflow;
            break;
        }
        double change = 0.0, size = 0.0;
        for (ptrdiff_t i = 0; i < n; ++i) {
            change += (rnew[i] - rs[i]) * (rnew[i] - rs[i]);
            size += rs[i] * rs[i];
            rs[i] = rnew[i];
        }
        for (ptrdiff_t j = 0; j < m; ++j) theta[j] = tnew[j];
        if (!std::isfinite(change) || !std::isfinite(size)) {
            out = kOverflow;
            break;
        }
        if (std::sqrt(change) <= q.tol * std::sqrt(size)) {
            out = kDone;
            break;
        }
    }
    *sigma = s;
    *iterations = it;
    if (out == kDone && !robust_covariance(q, rs, s, cov, cwork)) out = kSingular;
    std::free(work);
    return out;
}

bool bad_value(ZekFail *fail, const char *routine, bool bad, const char *name, ptrdiff_t i, double value, const char *constraint) {
    if (bad) raise_formatted(fail, routine, ZE_REAL_ARRAY_CONS, name, static_cast<long>(i), value, constraint);
    return bad;
}

// Lower Cholesky factor of the packed V (M) into L (M by M); false when V is not positive definite.
bool cholesky(ptrdiff_t m, const double *v, double *l) {
    for (ptrdiff_t j = 0; j < m; ++j) {
        for (ptrdiff_t i = j; i < m; ++i) {
            double s = v[i * (i + 1) / 2 + j];
            for (ptrdiff_t k = 0; k < j; ++k) s -= l[i + k * m] * l[j + k * m];
            if (i == j) {
                if (!(s > 0.0)) return false;
                l[j + j * m] = std::sqrt(s);
            } else {
                l[i + j * m] = s / l[j + j * m];
            }
        }
    }
    return true;
}

// Squared distances of the rows from T under the packed scatter V; false when V is singular.
bool distances(ptrdiff_t n, ptrdiff_t m, const double *x, ptrdiff_t tdx, const double *t, const double *v, double *d2,
               double *l, double *z) {
    if (!cholesky(m, v, l)) return false;
    for (ptrdiff_t i = 0; i < n; ++i) {
        double s = 0.0;
        for (ptrdiff_t j = 0; j < m; ++j) {
            double r = x[i + j * tdx] - t[j];
            for (ptrdiff_t k = 0; k < j; ++k) r -= l[j + k * m] * z[k];
            z[j] = r / l[j + j * m];
            s += z[j] * z[j];
        }
        d2[i] = s;
    }
    return true;
}

} // namespace

} // namespace zek

extern "C" {

void g02hac(int regtype, int psifun, int sigma_est, int n, int m, const double x[], int tdx, const double y[],
            const double gw[], const double cpsi[], double dchi, double theta[], double *sigma, double cov[], double rs[],
            double wgt[], double tol, int max_iter, ZekFail *fail) {
    static const char *const kName = "g02hac";
    using std::ptrdiff_t;
    zek::clear_fail(fail);
    if (regtype != Zek_MEstimate && regtype != Zek_Mallows && regtype != Zek_Schweppe) {
        return zek::raise_text(fail, kName, ZE_BAD_PARAM, "regtype");
    }
    if (psifun != Zek_Huber && psifun != Zek_Hampel && psifun != Zek_Bisquare) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "psifun");
    if (sigma_est != Zek_SigmaFixed && sigma_est != Zek_SigmaMAD && sigma_est != Zek_SigmaProposal2) {
        return zek::raise_text(fail, kName, ZE_BAD_PARAM, "sigma_est");
    }
    if (m < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "1", m);
    if (n <= m) return zek::raise_formatted(fail, kName, ZE_2_INT_ARG_LE, "n", static_cast<long>(n), "m", static_cast<long>(m), "n", "m");
    if (zek::raise_below(fail, kName, "tdx", tdx, "n", n)) return;
    if (!(tol >= 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "tol", "0.0", tol);
    if (max_iter < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "max_iter", "1", max_iter);
    if (regtype != Zek_MEstimate && gw == nullptr) return zek::raise_text(fail, kName, ZE_NULL_ARRAY, "gw");
    if (psifun == Zek_Hampel) {
        if (!(cpsi[0] > 0.0 && cpsi[0] <= cpsi[1] && cpsi[1] < cpsi[2] && std::isfinite(cpsi[2]))) {
            return zek::raise_plain(fail, kName, ZE_BAD_HAMPEL_PSI_FUN);
        }
    } else if (!(cpsi[0] > 0.0 && std::isfinite(cpsi[0]))) {
        return zek::raise_plain(fail, kName, ZE_INVALID_HUBER_FUN);
    }
    if (sigma_est == Zek_SigmaProposal2 && !(dchi > 0.0 && std::isfinite(dchi))) return zek::raise_plain(fail, kName, ZE_INVALID_DCHI_FUN);
    if (sigma_est == Zek_SigmaFixed && !(*sigma > 0.0 && std::isfinite(*sigma))) {
        return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "sigma", "0.0", *sigma);
    }
    for (ptrdiff_t j = 0; j < m; ++j) {
        for (ptrdiff_t i = 0; i < n; ++i) {
            const double v = x[i + j * tdx];
            if (zek::bad_value(fail, kName, !std::isfinite(v), "x", i + j * tdx, v, "x finite")) return;
        }
    }
    for (ptrdiff_t i = 0; i < n; ++i) {
        if (zek::bad_value(fail, kName, !std::isfinite(y[i]), "y", i, y[i], "y finite")) return;
        if (regtype != Zek_MEstimate && zek::bad_value(fail, kName, !(gw[i] >= 0.0) || !std::isfinite(gw[i]), "gw", i, gw[i], "0.0 <= gw finite")) {
            return;
        }
    }
    const zek::Robust q{regtype, sigma_est, zek::Psi{psifun, cpsi}, dchi, n, m, x, tdx, y, gw,
                        tol > 0.0 ? tol : 1000.0 * zek::precision(), max_iter};
    int iterations = 0;
    switch (zek::robust_fit(q, theta, sigma, cov, rs, wgt, &iterations)) {
    case zek::kDone: return zek::raise_success(fail, kName);
    case zek::kRank: return zek::raise_plain(fail, kName, ZE_WT_LSQ_NOT_FULL_RANK);
    case zek::kSigmaZero: return zek::raise_plain(fail, kName, ZE_ESTIM_SIGMA_ZERO);
    case zek::kNotConverged: return zek::raise_formatted(fail, kName, ZE_THETA_ITER_EXCEEDED, static_cast<long>(iterations));
    case zek::kSingular: return zek::raise_plain(fail, kName, ZE_REG_MAT_SINGULAR);
    case zek::kOverflow: return zek::raise_plain(fail, kName, ZE_LSQ_FAIL_CONV);
    default: return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    }
}

void g02hkc(int n, int m, const double x[], int tdx, double c, double t[], double cov[], double d[], double gw[],
            double tol, int max_iter, ZekFail *fail) {
    static const char *const kName = "g02hkc";
    using std::ptrdiff_t;
    zek::clear_fail(fail);
    if (m < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "1", m);
    if (n <= m) return zek::raise_formatted(fail, kName, ZE_2_INT_ARG_LE, "n", static_cast<long>(n), "m", static_cast<long>(m), "n", "m");
    if (zek::raise_below(fail, kName, "tdx", tdx, "n", n)) return;
    if (!(c >= 0.0) || std::isinf(c)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "c", "0.0", c);
    if (!(tol >= 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "tol", "0.0", tol);
    if (max_iter < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "max_iter", "1", max_iter);
    for (ptrdiff_t j = 0; j < m; ++j) {
        for (ptrdiff_t i = 0; i < n; ++i) {
            const double v = x[i + j * tdx];
            if (zek::bad_value(fail, kName, !std::isfinite(v), "x", i + j * tdx, v, "x finite")) return;
        }
    }
    const ptrdiff_t mm = m, packed = mm * (mm + 1) / 2;
    double *work = static_cast<double *>(std::malloc(sizeof(double) * static_cast<std::size_t>(2 * n + 2 * mm + 2 * packed + mm * mm)));
    if (work == nullptr) return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    double *d2 = work, *sorted = d2 + n, *tn = sorted + n, *z = tn + mm, *v = z + mm, *vn = v + packed, *l = vn + packed;
    ZekFail inner = zek::clean_fail();
    const double chi_median = g01fcc(0.5, static_cast<double>(m), &inner);
    const double cc = c > 0.0 ? c : std::sqrt(g01fcc(0.95, static_cast<double>(m), &inner));
    // The start: coordinatewise medians, squared MADs (standard deviations where a MAD is 0).
    for (ptrdiff_t j = 0; j < mm; ++j) {
        const double *col = x + j * tdx;
        for (ptrdiff_t i = 0; i < n; ++i) sorted[i] = col[i];
        zek::sort_ascending(sorted, n);
        tn[j] = n % 2 == 1 ? sorted[n / 2] : 0.5 * (sorted[n / 2 - 1] + sorted[n / 2]);
        for (ptrdiff_t i = 0; i < n; ++i) d2[i] = col[i] - tn[j];
        double s = zek::median_abs(n, d2, sorted) / zek::kNormalQuartile;
        bool constant = true;
        for (ptrdiff_t i = 1; i < n; ++i) constant = constant && col[i] == col[0];
        if (constant) {
            std::free(work);
            return zek::raise_plain(fail, kName, ZE_CONST_COL);
        }
        if (!(s > 0.0)) {
            double mean = 0.0, ss = 0.0;
            for (ptrdiff_t i = 0; i < n; ++i) mean += col[i];
            mean /= static_cast<double>(n);
            for (ptrdiff_t i = 0; i < n; ++i) ss += (col[i] - mean) * (col[i] - mean);
            s = std::sqrt(ss / static_cast<double>(n - 1));
        }
        for (ptrdiff_t i = 0; i <= j; ++i) v[j * (j + 1) / 2 + i] = i == j ? s * s : 0.0;
    }
    for (ptrdiff_t j = 0; j < mm; ++j) t[j] = tn[j];
    const double reject = g01fcc(0.999, static_cast<double>(m), &inner);
    // The diagonal start made consistent as every iterate is: median d^2 = the chi-squared median.
    if (zek::distances(n, mm, x, tdx, t, v, d2, l, z)) {
        const double med = zek::median_abs(n, d2, sorted);
        for (ptrdiff_t k = 0; k < packed && med > 0.0; ++k) v[k] *= med / chi_median;
    }
    int code = ZE_WT_ITER_EXCEEDED;
    for (int it = 0; it < max_iter && code == ZE_WT_ITER_EXCEEDED; ++it) {
        if (!zek::distances(n, mm, x, tdx, t, v, d2, l, z)) {
            code = ZE_VARCOV_MAT_SINGULAR;
            break;
        }
        // Redescending weights (1 - (d/k)^2)^2, so that a cluster of outliers far from the start
        // carries no weight at all rather than the bounded weight that lets it mask itself.
        double sw = 0.0;
        for (ptrdiff_t j = 0; j < mm; ++j) tn[j] = 0.0;
        for (ptrdiff_t k = 0; k < packed; ++k) vn[k] = 0.0;
        for (ptrdiff_t i = 0; i < n; ++i) {
            const double r = d2[i] / reject;
            sorted[i] = r < 1.0 ? (1.0 - r) * (1.0 - r) : 0.0;
            sw += sorted[i];
            for (ptrdiff_t j = 0; j < mm; ++j) tn[j] += sorted[i] * x[i + j * tdx];
        }
        if (!(sw > 0.0)) {
            code = ZE_VARCOV_MAT_SINGULAR;
            break;
        }
        for (ptrdiff_t j = 0; j < mm; ++j) tn[j] /= sw;
        for (ptrdiff_t i = 0; i < n; ++i) {
            for (ptrdiff_t j = 0; j < mm; ++j) {
                for (ptrdiff_t k = 0; k <= j; ++k) vn[j * (j + 1) / 2 + k] += sorted[i] * (x[i + j * tdx] - tn[j]) * (x[i + k * tdx] - tn[k]);
            }
        }
        for (ptrdiff_t k = 0; k < packed; ++k) vn[k] /= sw;
        // Consistency at the normal: the median squared distance made the chi-squared median.
        if (!zek::distances(n, mm, x, tdx, tn, vn, d2, l, z)) {
            code = ZE_VARCOV_MAT_SINGULAR;
            break;
        }
        for (ptrdiff_t i = 0; i < n; ++i) sorted[i] = d2[i];
        const double med = zek::median_abs(n, d2, sorted);
        if (!(med > 0.0)) {
            code = ZE_VARCOV_MAT_SINGULAR;
            break;
        }
        double change = 0.0, size = 0.0;
        for (ptrdiff_t j = 0; j < mm; ++j) {
            change = std::fmax(change, std::fabs(tn[j] - t[j]));
            size = std::fmax(size, std::fabs(tn[j]));
            t[j] = tn[j];
        }
        double vchange = 0.0, vsize = 0.0;
        for (ptrdiff_t k = 0; k < packed; ++k) {
            const double nv = vn[k] * med / chi_median;
            vchange = std::fmax(vchange, std::fabs(nv - v[k]));
            vsize = std::fmax(vsize, std::fabs(nv));
            v[k] = nv;
        }
        const double eps = tol > 0.0 ? tol : 1000.0 * zek::precision();
        if (change <= eps * size && vchange <= eps * vsize) code = 0;
    }
    if (code != ZE_VARCOV_MAT_SINGULAR && zek::distances(n, mm, x, tdx, t, v, d2, l, z)) {
        for (ptrdiff_t k = 0; k < packed; ++k) cov[k] = v[k];
        for (ptrdiff_t i = 0; i < n; ++i) {
            d[i] = std::sqrt(d2[i]);
            gw[i] = d2[i] > cc * cc ? cc * cc / d2[i] : 1.0;
        }
    } else {
        code = ZE_VARCOV_MAT_SINGULAR;
    }
    std::free(work);
    if (code == 0) return zek::raise_success(fail, kName);
    return zek::raise_plain(fail, kName, code);
}

} // extern "C"
