// Means, sums of squares and cross-products, covariance and correlation of several variables
// (G02BUF, G02BXF), their update by one observation (G02BTF), and the rank correlations of Kendall and
// Spearman (g02brc).
//
// Sums about the mean are formed in two passes with the correction term of the second pass, on each
// column scaled by a power of 2 near its largest element, so neither cancellation in x'x - n xbar xbar'
// nor overflow of the products can spoil them; the update of G02BTF is West's, which carries the
// deviations from the running mean and is as stable as the two-pass form.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "frame/adaptor.h"
#include "frame/ifail.h"
#include "frame/raise.h"
#include "statistics/descriptive.h"
#include "zek2/g02.h"

namespace zek {

namespace {

using std::ptrdiff_t;

constexpr ExitRow kG02bufExits[] = {
    {1, 99999, " ** On entry, N.lt.1 : N = %16ld"},
    {1, 99998, " ** On entry, M.lt.1 : M = %16ld"},
    {1, 99997, " ** On entry, LDX.lt.N : LDX = %16ld N = %16ld"},
    {1, 99996, " ** On entry, MEAN is not valid : MEAN = %1.1s"},
    {1, 99995, " ** On entry, WEIGHT is not valid : WEIGHT = %1.1s"},
    {2, 99994, " ** On entry, WT(%16ld) is negative or not finite"},
    {3, 99993, " ** The sum of the weights is zero"},
    {4, 99992, " ** On entry, X(%16ld,%16ld) is not finite"},
    {5, 99991, " ** The sums of squares and cross-products overflow"},
};

constexpr ExitRow kG02bxfExits[] = {
    {1, 99999, " ** On entry, N.lt.1 : N = %16ld"},
    {1, 99998, " ** On entry, M.lt.1 : M = %16ld"},
    {1, 99997, " ** On entry, LDX.lt.N : LDX = %16ld N = %16ld"},
    {1, 99996, " ** On entry, LDV.lt.M : LDV = %16ld M = %16ld"},
    {1, 99995, " ** On entry, LDR.lt.M : LDR = %16ld M = %16ld"},
    {1, 99994, " ** On entry, WEIGHT is not valid : WEIGHT = %1.1s"},
    {2, 99993, " ** On entry, WT(%16ld) is negative or not finite"},
    {2, 99992, " ** On entry, X(%16ld,%16ld) is not finite"},
    {3, 99991, " ** The sum of the weights is not greater than 1.0 : SW = %13.5e"},
    {4, 99990, " ** The covariances overflow"},
    {5, 99989, " ** Variable %16ld is constant: its correlations are set to zero"},
};

constexpr ExitRow kG02btfExits[] = {
    {1, 99999, " ** On entry, M.lt.1 : M = %16ld"},
    {1, 99998, " ** On entry, INCX.lt.1 : INCX = %16ld"},
    {1, 99997, " ** On entry, MEAN is not valid : MEAN = %1.1s"},
    {2, 99996, " ** On entry, SW.lt.0.0 or not finite : SW = %13.5e"},
    {3, 99995, " ** On entry, WT is not finite or SW+WT.lt.0.0 : WT = %13.5e SW = %13.5e"},
    {4, 99994, " ** On entry, element %16ld of X is not finite"},
    {5, 99993, " ** The updated sums overflow"},
};

constexpr ptrdiff_t packed(ptrdiff_t i, ptrdiff_t j) { return i + j * (j + 1) / 2; }  // i <= j, zero-based

bool character_is(char c, char upper) { return c == upper || c == upper + ('a' - 'A'); }

// Where the sums of a data set went wrong, for each caller to take its own exit.
enum class SumsStatus { Ok, NegativeWeight, NonFiniteX, ZeroWeight, Overflow };
struct SumsResult {
    SumsStatus status;
    long row, column;  // one-based place of the bad element
    double sw;
};

// Weighted means of the M columns of X and the sums of squares and cross-products about the means
// (ABOUT_MEAN) or about zero, C(j,k) for j <= k: packed by columns when LDC is 0, else at
// C[j + k LDC].  WT null means unit weights.  With SCALE(M) given, each column is first scaled by a
// power of 2 near its largest element (exact) and C stays in the scaled units, C(j,k) SCALE(j)
// SCALE(k), which neither overflows nor underflows for the correlations; without it C is in the data's
// units.  The means are always returned in the data's units.
SumsResult cross_products(bool about_mean, int n, int m, const double x[], ptrdiff_t ldx, const double wt[],
                          double mean[], double c[], ptrdiff_t ldc, double scale[]) {
    const auto at = [c, ldc](ptrdiff_t j, ptrdiff_t k) -> double & { return ldc == 0 ? c[packed(j, k)] : c[j + k * ldc]; };
    const auto factor = [scale](ptrdiff_t j) { return scale != nullptr ? scale[j] : 1.0; };
    double sw = 0.0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const double w = wt != nullptr ? wt[i] : 1.0;
        if (!(w >= 0.0) || std::isinf(w)) return {SumsStatus::NegativeWeight, static_cast<long>(i + 1), 0, 0.0};
        sw += w;
    }
    for (ptrdiff_t j = 0; j < m; ++j) {
        double big = 0.0;
        for (ptrdiff_t i = 0; i < n; ++i) {
            const double v = x[i + j * ldx];
            if (!std::isfinite(v)) return {SumsStatus::NonFiniteX, static_cast<long>(i + 1), static_cast<long>(j + 1), 0.0};
            if (wt == nullptr || wt[i] > 0.0) big = std::max(big, std::fabs(v));
        }
        if (scale != nullptr) scale[j] = power_of_two_scale(big);
    }
    if (!(sw > 0.0)) return {SumsStatus::ZeroWeight, 0, 0, sw};
    if (std::isinf(sw)) return {SumsStatus::Overflow, 0, 0, sw};
    // Means as sums of (w / sw) x, whose partial sums stay within the data's range, refined by the
    // mean deviation of a second pass.
    for (ptrdiff_t j = 0; j < m; ++j) {
        const double *col = x + j * ldx, f = factor(j);
        double s = 0.0;
        for (ptrdiff_t i = 0; i < n; ++i) s += ((wt != nullptr ? wt[i] : 1.0) / sw) * (col[i] * f);
        double corr = 0.0;
        for (ptrdiff_t i = 0; i < n; ++i) corr += ((wt != nullptr ? wt[i] : 1.0) / sw) * (col[i] * f - s);
        mean[j] = s + corr;
    }
    bool finite = true;
    for (ptrdiff_t k = 0; k < m; ++k) {
        const double *xk = x + k * ldx, fk = factor(k);
        const double mk = about_mean ? mean[k] : 0.0;
        for (ptrdiff_t j = 0; j <= k; ++j) {
            const double *xj = x + j * ldx, fj = factor(j);
            const double mj = about_mean ? mean[j] : 0.0;
            double s = 0.0, dj = 0.0, dk = 0.0;
            for (ptrdiff_t i = 0; i < n; ++i) {
                const double w = wt != nullptr ? wt[i] : 1.0;
                const double a = xj[i] * fj - mj, b = xk[i] * fk - mk;
                s += w * a * b;
                dj += w * a;
                dk += w * b;
            }
            // The correction removes what the rounding of the means left in the deviations.
            at(j, k) = about_mean ? s - (dj / sw) * dk : s;
            finite = finite && std::isfinite(at(j, k));
        }
    }
    for (ptrdiff_t j = 0; j < m; ++j) {
        mean[j] /= factor(j);
        finite = finite && std::isfinite(mean[j]);
    }
    return {finite ? SumsStatus::Ok : SumsStatus::Overflow, 0, 0, sw};
}

} // namespace

void g02buf_worker(char mean, char weight, int n, int m, const double x[], int ldx, const double wt[], double *sw,
                   double wmean[], double c[], char *errbuf, int *ifail) {
    FailureExit exit("G02BUF", errbuf, ifail);
    if (n < 1) return void(take(exit, kG02bufExits, 0, {n}));
    if (m < 1) return void(take(exit, kG02bufExits, 1, {m}));
    if (ldx < n) return void(take(exit, kG02bufExits, 2, {ldx, n}));
    if (!character_is(mean, 'M') && !character_is(mean, 'Z')) return void(take(exit, kG02bufExits, 3, {std::string(1, mean)}));
    if (!character_is(weight, 'W') && !character_is(weight, 'U')) {
        return void(take(exit, kG02bufExits, 4, {std::string(1, weight)}));
    }
    const SumsResult r = cross_products(character_is(mean, 'M'), n, m, x, ldx, character_is(weight, 'W') ? wt : nullptr,
                                        wmean, c, 0, nullptr);
    switch (r.status) {
    case SumsStatus::NegativeWeight: return void(take(exit, kG02bufExits, 5, {r.row}));
    case SumsStatus::NonFiniteX: return void(take(exit, kG02bufExits, 7, {r.row, r.column}));
    case SumsStatus::ZeroWeight: *sw = 0.0; return void(take(exit, kG02bufExits, 6));
    case SumsStatus::Overflow: return void(take(exit, kG02bufExits, 8));
    case SumsStatus::Ok: break;
    }
    *sw = r.sw;
    exit.succeed();
}

void g02bxf_worker(char weight, int n, int m, const double x[], int ldx, const double wt[], double xbar[],
                   double std_dev[], double v[], int ldv, double r[], int ldr, char *errbuf, int *ifail) {
    FailureExit exit("G02BXF", errbuf, ifail);
    if (n < 1) return void(take(exit, kG02bxfExits, 0, {n}));
    if (m < 1) return void(take(exit, kG02bxfExits, 1, {m}));
    if (ldx < n) return void(take(exit, kG02bxfExits, 2, {ldx, n}));
    if (ldv < m) return void(take(exit, kG02bxfExits, 3, {ldv, m}));
    if (ldr < m) return void(take(exit, kG02bxfExits, 4, {ldr, m}));
    if (!character_is(weight, 'W') && !character_is(weight, 'U')) {
        return void(take(exit, kG02bxfExits, 5, {std::string(1, weight)}));
    }
    // The scaled sums go to R's upper triangle and the column scales to STD until the end.
    const SumsResult s = cross_products(true, n, m, x, ldx, character_is(weight, 'W') ? wt : nullptr, xbar, r, ldr,
                                        std_dev);
    if (s.status == SumsStatus::NegativeWeight) return void(take(exit, kG02bxfExits, 6, {s.row}));
    if (s.status == SumsStatus::NonFiniteX) return void(take(exit, kG02bxfExits, 7, {s.row, s.column}));
    if (s.status == SumsStatus::Overflow) return void(take(exit, kG02bxfExits, 9));
    // Frequency weights: the covariance divides by SW - 1.
    if (!(s.sw > 1.0)) return void(take(exit, kG02bxfExits, 8, {s.sw}));
    const double divisor = s.sw - 1.0;
    const double *scale = std_dev;
    bool finite = true;
    for (ptrdiff_t k = 0; k < m; ++k) {
        for (ptrdiff_t j = 0; j <= k; ++j) {
            const double cov = r[j + k * ldr] / divisor / scale[j] / scale[k];
            v[j + k * ldv] = v[k + j * ldv] = cov;
            finite = finite && std::isfinite(cov);
        }
    }
    if (!finite) return void(take(exit, kG02bxfExits, 9));
    long constant = 0;
    for (ptrdiff_t k = 0; k < m; ++k) {
        for (ptrdiff_t j = 0; j < k; ++j) {
            const double cjj = r[j + j * ldr], ckk = r[k + k * ldr];
            const double rho = cjj > 0.0 && ckk > 0.0 ? r[j + k * ldr] / (std::sqrt(cjj) * std::sqrt(ckk)) : 0.0;
            r[j + k * ldr] = r[k + j * ldr] = std::clamp(rho, -1.0, 1.0);
        }
    }
    for (ptrdiff_t k = 0; k < m; ++k) {
        const bool varies = r[k + k * ldr] > 0.0;
        if (!varies && constant == 0) constant = k + 1;
        r[k + k * ldr] = varies ? 1.0 : 0.0;
        std_dev[k] = std::sqrt(v[k + k * ldv]);
    }
    if (constant != 0) return void(take(exit, kG02bxfExits, 10, {constant}));
    exit.succeed();
}

void g02btf_worker(char mean, int m, double wt, const double x[], int incx, double *sw, double xbar[], double c[],
                   char *errbuf, int *ifail) {
    FailureExit exit("G02BTF", errbuf, ifail);
    if (m < 1) return void(take(exit, kG02btfExits, 0, {m}));
    if (incx < 1) return void(take(exit, kG02btfExits, 1, {incx}));
    if (!character_is(mean, 'M') && !character_is(mean, 'Z')) return void(take(exit, kG02btfExits, 2, {std::string(1, mean)}));
    const double old = *sw;
    if (!(old >= 0.0) || std::isinf(old)) return void(take(exit, kG02btfExits, 3, {old}));
    const double total = old + wt;
    if (!std::isfinite(wt) || !(total >= 0.0)) return void(take(exit, kG02btfExits, 4, {wt, old}));
    for (ptrdiff_t j = 0; j < m; ++j) {
        if (!std::isfinite(x[j * incx])) return void(take(exit, kG02btfExits, 5, {static_cast<long>(j + 1)}));
    }
    if (wt == 0.0) return void(exit.succeed());
    const ptrdiff_t np = static_cast<ptrdiff_t>(m) * (m + 1) / 2;
    const bool about_mean = character_is(mean, 'M');
    if (total == 0.0 || old == 0.0) {
        // The first observation (or the removal of all): the sums restart from it.
        for (ptrdiff_t j = 0; j < m; ++j) xbar[j] = total == 0.0 ? 0.0 : x[j * incx];
        for (ptrdiff_t k = 0; k < np; ++k) c[k] = 0.0;
        if (!about_mean && total > 0.0) {
            for (ptrdiff_t k = 0; k < m; ++k)
                for (ptrdiff_t j = 0; j <= k; ++j) c[packed(j, k)] = wt * x[j * incx] * x[k * incx];
        }
        *sw = total;
        return void(exit.succeed());
    }
    // West's update: with d = x - xbar, xbar += (wt / total) d and C += wt (old / total) d d'.  Only
    // deviations from the running mean enter, so a large common offset costs nothing.
    const double share = wt / total, gain = wt * (old / total);
    bool finite = true;
    for (ptrdiff_t k = 0; k < m; ++k) {
        const double dk = x[k * incx] - xbar[k];
        for (ptrdiff_t j = 0; j <= k; ++j) {
            const double dj = x[j * incx] - xbar[j];
            double &v = c[packed(j, k)];
            v += about_mean ? gain * dj * dk : wt * x[j * incx] * x[k * incx];
            finite = finite && std::isfinite(v);
        }
    }
    for (ptrdiff_t j = 0; j < m; ++j) {
        xbar[j] += share * (x[j * incx] - xbar[j]);
        finite = finite && std::isfinite(xbar[j]);
    }
    *sw = total;
    if (!finite) return void(take(exit, kG02btfExits, 6));
    exit.succeed();
}

namespace {

// Average ranks (1..n) of V(0..n-1): tied values share the mean of the places they occupy.  ORDER is
// workspace of N indices.
void average_ranks(const double v[], ptrdiff_t n, double rank[], ptrdiff_t order[]) {
    for (ptrdiff_t i = 0; i < n; ++i) order[i] = i;
    std::sort(order, order + n, [v](ptrdiff_t a, ptrdiff_t b) { return v[a] < v[b]; });
    for (ptrdiff_t i = 0; i < n;) {
        ptrdiff_t e = i + 1;
        while (e < n && v[order[e]] == v[order[i]]) ++e;
        const double r = 0.5 * static_cast<double>(i + 1 + e);
        for (ptrdiff_t k = i; k < e; ++k) rank[order[k]] = r;
        i = e;
    }
}

// Number of pairs tied within each run of equal values of V taken in ORDER.
std::int64_t tied_pairs(const double v[], const ptrdiff_t order[], ptrdiff_t n) {
    std::int64_t t = 0;
    for (ptrdiff_t i = 0; i < n;) {
        ptrdiff_t e = i + 1;
        while (e < n && v[order[e]] == v[order[i]]) ++e;
        t += static_cast<std::int64_t>(e - i) * (e - i - 1) / 2;
        i = e;
    }
    return t;
}

// Sorts Y(0..n-1) ascending by bottom-up merging and counts the exchanges, that is the pairs i < l with
// Y(i) > Y(l): the discordant pairs when Y follows the order of the other variable.
std::int64_t merge_count(double y[], double tmp[], ptrdiff_t n) {
    std::int64_t swaps = 0;
    for (ptrdiff_t width = 1; width < n; width *= 2) {
        for (ptrdiff_t lo = 0; lo < n; lo += 2 * width) {
            const ptrdiff_t mid = std::min(lo + width, n), hi = std::min(lo + 2 * width, n);
            ptrdiff_t a = lo, b = mid, k = lo;
            while (a < mid && b < hi) {
                if (y[b] < y[a]) {
                    swaps += mid - a;
                    tmp[k++] = y[b++];
                } else {
                    tmp[k++] = y[a++];
                }
            }
            while (a < mid) tmp[k++] = y[a++];
            while (b < hi) tmp[k++] = y[b++];
        }
        std::copy(tmp, tmp + n, y);
    }
    return swaps;
}

// Kendall's tau-b of the rank vectors RX, RY by Knight's method: O(n log n).
double kendall_tau_b(const double rx[], const double ry[], ptrdiff_t n, ptrdiff_t order[], double y[], double tmp[]) {
    for (ptrdiff_t i = 0; i < n; ++i) order[i] = i;
    std::sort(order, order + n, [rx, ry](ptrdiff_t a, ptrdiff_t b) {
        return rx[a] < rx[b] || (rx[a] == rx[b] && ry[a] < ry[b]);
    });
    const std::int64_t n0 = static_cast<std::int64_t>(n) * (n - 1) / 2;
    const std::int64_t n1 = tied_pairs(rx, order, n);
    std::int64_t n3 = 0;  // pairs tied in both
    for (ptrdiff_t i = 0; i < n;) {
        ptrdiff_t e = i + 1;
        while (e < n && rx[order[e]] == rx[order[i]] && ry[order[e]] == ry[order[i]]) ++e;
        n3 += static_cast<std::int64_t>(e - i) * (e - i - 1) / 2;
        i = e;
    }
    for (ptrdiff_t i = 0; i < n; ++i) y[i] = ry[order[i]];
    const std::int64_t swaps = merge_count(y, tmp, n);
    std::int64_t n2 = 0;  // y is sorted now
    for (ptrdiff_t i = 0; i < n;) {
        ptrdiff_t e = i + 1;
        while (e < n && y[e] == y[i]) ++e;
        n2 += static_cast<std::int64_t>(e - i) * (e - i - 1) / 2;
        i = e;
    }
    const double s = static_cast<double>(n0 - n1 - n2 + n3 - 2 * swaps);
    return s / (std::sqrt(static_cast<double>(n0 - n1)) * std::sqrt(static_cast<double>(n0 - n2)));
}

// Spearman's rho: Pearson's correlation of the average ranks, whose mean is (n + 1)/2 exactly.
double spearman_rho(const double rx[], const double ry[], ptrdiff_t n) {
    const double centre = 0.5 * static_cast<double>(n + 1);
    double sxy = 0.0, sxx = 0.0, syy = 0.0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const double a = rx[i] - centre, b = ry[i] - centre;
        sxy += a * b;
        sxx += a * a;
        syy += b * b;
    }
    return std::clamp(sxy / std::sqrt(sxx * syy), -1.0, 1.0);
}

} // namespace

} // namespace zek

extern "C" {

void G02BUF(const char *mean, const char *weight, const int *n, const int *m, const double x[], const int *ldx,
            const double wt[], double *sw, double wmean[], double c[], int *ifail, int mean_len, int weight_len) {
    zek::Front front("G02BUF");
    if (*m >= 1 && *m <= 46340) {
        zek::mark_vector(*m, wmean);
        zek::mark_vector(*m * (*m + 1) / 2, c);
    }
    zek::g02buf_worker(mean_len > 0 ? mean[0] : ' ', weight_len > 0 ? weight[0] : ' ', *n, *m, x, *ldx, wt, sw, wmean,
                       c, front.errbuf(), ifail);
    front.finish(*ifail);
}

void G02BXF(const char *weight, const int *n, const int *m, const double x[], const int *ldx, const double wt[],
            double xbar[], double std_dev[], double v[], const int *ldv, double r[], const int *ldr, int *ifail,
            int weight_len) {
    zek::Front front("G02BXF");
    if (*m >= 1 && *ldv >= *m && *ldr >= *m) {
        zek::mark_vector(*m, xbar);
        zek::mark_vector(*m, std_dev);
        zek::mark_matrix(*m, *ldv, v);
        zek::mark_matrix(*m, *ldr, r);
    }
    zek::g02bxf_worker(weight_len > 0 ? weight[0] : ' ', *n, *m, x, *ldx, wt, xbar, std_dev, v, *ldv, r, *ldr,
                       front.errbuf(), ifail);
    front.finish(*ifail);
}

void G02BTF(const char *mean, const int *m, const double *wt, const double x[], const int *incx, double *sw,
            double xbar[], double c[], int *ifail, int mean_len) {
    zek::Front front("G02BTF");
    zek::g02btf_worker(mean_len > 0 ? mean[0] : ' ', *m, *wt, x, *incx, sw, xbar, c, front.errbuf(), ifail);
    front.finish(*ifail);
}

void g02buc(int mean, int n, int m, const double x[], int tdx, const double wt[], double *sw, double wmean[],
            double c[], ZekFail *fail) {
    static const char *const kName = "g02buc";
    zek::clear_fail(fail);
    if (mean != Zek_MeanInclude && mean != Zek_MeanZero) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "mean");
    if (n < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", "1", n);
    if (m < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "1", m);
    if (zek::raise_below(fail, kName, "tdx", tdx, "n", n)) return;
    int ifail = 1;
    zek::g02buf_worker(mean == Zek_MeanInclude ? 'M' : 'Z', wt != nullptr ? 'W' : 'U', n, m, x, tdx, wt, sw, wmean, c,
                       nullptr, &ifail);
    switch (ifail) {
    case 0: return zek::raise_success(fail, kName);
    case 2: return zek::raise_plain(fail, kName, ZE_NEG_WEIGHT);
    case 3: return zek::raise_plain(fail, kName, ZE_CASES_ZERO);
    case 5: return zek::raise_plain(fail, kName, ZW_OVERFLOW_WARN);
    default: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x");
    }
}

void g02btc(int mean, int m, double wt, const double x[], int incx, double *sw, double xbar[], double c[],
            ZekFail *fail) {
    static const char *const kName = "g02btc";
    zek::clear_fail(fail);
    if (mean != Zek_MeanInclude && mean != Zek_MeanZero) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "mean");
    if (m < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "1", m);
    if (incx < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "incx", "1", incx);
    if (!(*sw >= 0.0) || std::isinf(*sw)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "sw", "0.0", *sw);
    int ifail = 1;
    zek::g02btf_worker(mean == Zek_MeanInclude ? 'M' : 'Z', m, wt, x, incx, sw, xbar, c, nullptr, &ifail);
    switch (ifail) {
    case 0: return zek::raise_success(fail, kName);
    case 3: return zek::raise_formatted(fail, kName, ZE_REAL_ARG_CONS, "wt", wt, "wt finite and sw + wt >= 0.0");
    case 4: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x");
    case 5: return zek::raise_plain(fail, kName, ZW_OVERFLOW_WARN);
    default: return zek::raise_plain(fail, kName, ZE_INTERNAL_ERROR);
    }
}

void g02bxc(int n, int m, const double x[], int tdx, const double wt[], double xbar[], double std_dev[], double v[],
            int tdv, double r[], int tdr, ZekFail *fail) {
    static const char *const kName = "g02bxc";
    zek::clear_fail(fail);
    if (n < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", "1", n);
    if (m < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "1", m);
    if (zek::raise_below(fail, kName, "tdx", tdx, "n", n) || zek::raise_below(fail, kName, "tdv", tdv, "m", m) ||
        zek::raise_below(fail, kName, "tdr", tdr, "m", m)) {
        return;
    }
    int ifail = 1;
    zek::g02bxf_worker(wt != nullptr ? 'W' : 'U', n, m, x, tdx, wt, xbar, std_dev, v, tdv, r, tdr, nullptr, &ifail);
    switch (ifail) {
    case 0: return zek::raise_success(fail, kName);
    case 2: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x or wt");
    case 3: return zek::raise_plain(fail, kName, ZE_SW_LT_ONE);
    case 5: return zek::raise_plain(fail, kName, ZE_VAR_EQ_ZERO);
    default: return zek::raise_plain(fail, kName, ZW_OVERFLOW_WARN);
    }
}

void g02brc(int n, int m, const double x[], int tdx, const int svar[], const int sobs[], double corr[], int tdc,
            ZekFail *fail) {
    static const char *const kName = "g02brc";
    using std::ptrdiff_t;
    zek::clear_fail(fail);
    if (n < 2) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", "2", n);
    if (m < 2) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "2", m);
    if (zek::raise_below(fail, kName, "tdx", tdx, "n", n)) return;
    long nvar = 0, nobs = 0;
    for (ptrdiff_t j = 0; j < m; ++j) {
        if (svar != nullptr && svar[j] != 0 && svar[j] != 1) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "svar");
        nvar += svar == nullptr || svar[j] == 1 ? 1 : 0;
    }
    for (ptrdiff_t i = 0; i < n; ++i) {
        if (sobs != nullptr && sobs[i] != 0 && sobs[i] != 1) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "sobs");
        nobs += sobs == nullptr || sobs[i] == 1 ? 1 : 0;
    }
    if (nvar < 2) return zek::raise_plain(fail, kName, ZE_SVAR_LOW);
    if (nobs < 2) return zek::raise_plain(fail, kName, ZE_SOBS_LOW);
    if (zek::raise_below(fail, kName, "tdc", tdc, "number of selected variables", nvar)) return;
    for (ptrdiff_t j = 0; j < m; ++j) {
        for (ptrdiff_t i = 0; svar == nullptr || svar[j] == 1 ? i < n : false; ++i) {
            if ((sobs == nullptr || sobs[i] == 1) && !std::isfinite(x[i + j * tdx])) {
                return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x");
            }
        }
    }
    // Ranks of every selected variable over the selected observations, then work for the merges.
    const std::size_t no = static_cast<std::size_t>(nobs);
    double *ranks = static_cast<double *>(std::malloc(sizeof(double) * no * (static_cast<std::size_t>(nvar) + 3)));
    ptrdiff_t *order = static_cast<ptrdiff_t *>(std::malloc(sizeof(ptrdiff_t) * no));
    if (ranks == nullptr || order == nullptr) {
        std::free(ranks);
        std::free(order);
        return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    }
    double *values = ranks + no * nvar, *y = values + no, *tmp = y + no;
    bool constant = false;
    for (ptrdiff_t j = 0, v = 0; j < m; ++j) {
        if (svar != nullptr && svar[j] != 1) continue;
        ptrdiff_t k = 0;
        for (ptrdiff_t i = 0; i < n; ++i)
            if (sobs == nullptr || sobs[i] == 1) values[k++] = x[i + j * tdx];
        double *rv = ranks + no * v++;
        zek::average_ranks(values, nobs, rv, order);
        constant = constant || std::all_of(rv, rv + nobs, [rv](double r) { return r == rv[0]; });
    }
    if (constant) {
        std::free(ranks);
        std::free(order);
        return zek::raise_plain(fail, kName, ZE_VAR_EQ_ZERO);
    }
    for (ptrdiff_t k = 0; k < nvar; ++k) {
        corr[k + k * tdc] = 1.0;
        for (ptrdiff_t j = 0; j < k; ++j) {
            const double *rj = ranks + no * j, *rk = ranks + no * k;
            corr[j + k * tdc] = zek::kendall_tau_b(rj, rk, nobs, order, y, tmp);
            corr[k + j * tdc] = zek::spearman_rho(rj, rk, nobs);
        }
    }
    std::free(ranks);
    std::free(order);
    zek::raise_success(fail, kName);
}

} // extern "C"
