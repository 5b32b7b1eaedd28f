// Descriptive statistics of one variable: the frequency table (G01AEF, g01aec) and the weighted
// summary of mean, standard deviation, skewness, kurtosis and extremes (G01AAF, g01aac).
//
// Both C-style routines check their arguments and raise the first failure, then run the IFAIL worker
// soft and silent and map its exit to the catalogue; the workers carry the numerical work.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/adaptor.h"
#include "frame/ifail.h"
#include "frame/raise.h"
#include "statistics/descriptive.h"
#include "zek2/g01.h"

namespace zek {

namespace {

// G01AEF's exits, in the order they are checked.
constexpr ExitRow kG01aefExits[] = {
    {1, 99999, " ** On entry, N.lt.1 : N = %16ld"},
    {1, 99998, " ** On entry, NCLASS.lt.2 : NCLASS = %16ld"},
    {1, 99997, " ** On entry, ICLASS.ne.0 and ICLASS.ne.1 : ICLASS = %16ld"},
    {2, 99996, " ** On entry, CINT is not strictly increasing : CINT(%16ld) = %13.5e"},
    {3, 99995, " ** On entry, element %16ld of X is not finite"},
    {4, 99994, " ** All values of X are equal: the class boundaries cannot be computed"},
};

// G01AAF's exits.
constexpr ExitRow kG01aafExits[] = {
    {1, 99999, " ** On entry, N.lt.1 : N = %16ld"},
    {1, 99998, " ** On entry, IWT.ne.0 and IWT.ne.1 : IWT = %16ld"},
    {2, 99997, " ** On entry, WT(%16ld) is negative or not finite"},
    {2, 99996, " ** On entry, element %16ld of X is not finite"},
    {3, 99995, " ** No case has a positive weight"},
    {4, 99994, " ** Only one case has a positive weight"},
    {5, 99993, " ** The sum of the weights is not greater than 1.0 : WTSUM = %13.5e"},
    {6, 99992, " ** All values of X with positive weight are equal"},
    {2, 99991, " ** The sum of the weights overflows"},
    {7, 99990, " ** S2, S3 or S4 overflows: it is returned as 0.0"},
};

} // namespace

double power_of_two_scale(double largest_magnitude) {
    if (!(largest_magnitude > 0.0) || !std::isfinite(largest_magnitude)) return 1.0;
    return std::ldexp(1.0, -std::ilogb(largest_magnitude));
}

void g01aef_worker(int n, int nclass, const double x[], int iclass, double cint[], int ifreq[], double *xmin,
                   double *xmax, char *errbuf, int *ifail) {
    FailureExit exit("G01AEF", errbuf, ifail);
    if (n < 1) return void(take(exit, kG01aefExits, 0, {n}));
    if (nclass < 2) return void(take(exit, kG01aefExits, 1, {nclass}));
    if (iclass != 0 && iclass != 1) return void(take(exit, kG01aefExits, 2, {iclass}));
    const std::ptrdiff_t nb = nclass - 1;
    if (iclass == 1) {
        for (std::ptrdiff_t j = 0; j < nb; ++j) {
            if (!std::isfinite(cint[j]) || (j > 0 && !(cint[j] > cint[j - 1]))) {
                return void(take(exit, kG01aefExits, 3, {static_cast<long>(j + 1), cint[j]}));
            }
        }
    }
    double lo = x[0], hi = x[0];
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        if (!std::isfinite(x[i])) return void(take(exit, kG01aefExits, 4, {static_cast<long>(i + 1)}));
        lo = std::min(lo, x[i]);
        hi = std::max(hi, x[i]);
    }
    if (iclass == 0) {
        if (lo == hi) return void(take(exit, kG01aefExits, 5));
        // Interpolation rather than lo + j h: the width hi - lo may overflow for data of both signs.
        for (std::ptrdiff_t j = 0; j < nb; ++j) {
            const double t = static_cast<double>(j + 1) / nclass;
            cint[j] = lo * (1.0 - t) + hi * t;
        }
    }
    for (std::ptrdiff_t k = 0; k < nclass; ++k) ifreq[k] = 0;
    // Class k + 1 (one-based) is CINT(k) <= x < CINT(k + 1): the count of boundaries at or below x.
    for (std::ptrdiff_t i = 0; i < n; ++i) ++ifreq[std::upper_bound(cint, cint + nb, x[i]) - cint];
    *xmin = lo;
    *xmax = hi;
    exit.succeed();
}

void g01aaf_worker(int n, const double x[], int *iwt, const double wt[], Summary *s, char *errbuf, int *ifail) {
    FailureExit exit("G01AAF", errbuf, ifail);
    if (n < 1) return void(take(exit, kG01aafExits, 0, {n}));
    if (*iwt != 0 && *iwt != 1) return void(take(exit, kG01aafExits, 1, {*iwt}));
    const bool weighted = *iwt == 1;
    // Pass 1: validity, extremes, the largest weight and magnitude (for scaling) and the count.
    double wmax = 0.0, big = 0.0, lo = 0.0, hi = 0.0;
    long cases = 0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double w = weighted ? wt[i] : 1.0;
        if (!(w >= 0.0) || std::isinf(w)) return void(take(exit, kG01aafExits, 2, {static_cast<long>(i + 1)}));
        if (!std::isfinite(x[i])) return void(take(exit, kG01aafExits, 3, {static_cast<long>(i + 1)}));
        if (w == 0.0) continue;
        lo = cases == 0 ? x[i] : std::min(lo, x[i]);
        hi = cases == 0 ? x[i] : std::max(hi, x[i]);
        wmax = std::max(wmax, w);
        big = std::max(big, std::fabs(x[i]));
        ++cases;
    }
    if (cases == 0) return void(take(exit, kG01aafExits, 4));
    // Weights relative to the largest and data scaled by a power of 2 near the largest magnitude: the
    // sums cannot overflow, and the scaling is exact.
    const double xs = power_of_two_scale(big);
    double wrel = 0.0, sum = 0.0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double w = (weighted ? wt[i] : 1.0) / wmax;
        wrel += w;
        sum += w * (x[i] * xs);
    }
    double mean = sum / wrel, correction = 0.0, dmax = 0.0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double w = (weighted ? wt[i] : 1.0) / wmax;
        if (w > 0.0) {
            correction += w * (x[i] * xs - mean);
            dmax = std::max(dmax, std::fabs(x[i] * xs - mean));
        }
    }
    mean += correction / wrel;
    s->wsum = wrel * wmax;
    if (std::isinf(s->wsum)) return void(take(exit, kG01aafExits, 8));
    s->mean = std::clamp(mean / xs, lo, hi);
    s->xmin = lo;
    s->xmax = hi;
    s->sd = s->skew = s->kurt = 0.0;
    *iwt = static_cast<int>(cases);
    if (cases == 1) return void(take(exit, kG01aafExits, 5));
    if (!(s->wsum > 1.0)) return void(take(exit, kG01aafExits, 6, {s->wsum}));
    if (lo == hi) return void(take(exit, kG01aafExits, 7));
    // Central moments of the deviations over their largest, so each power stays within [0, 1].
    double m2 = 0.0, m3 = 0.0, m4 = 0.0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double w = (weighted ? wt[i] : 1.0) / wmax;
        if (w == 0.0) continue;
        const double d = (x[i] * xs - mean) / dmax, d2 = d * d;
        m2 += w * d2;
        m3 += w * d2 * d;
        m4 += w * d2 * d2;
    }
    m2 /= wrel;
    m3 /= wrel;
    m4 /= wrel;
    // Frequency weights: the unbiased variance divides by W - 1, formed as W / (W - 1) = 1 / (1 - 1/W).
    s->sd = std::sqrt(m2 / (1.0 - 1.0 / s->wsum)) * (dmax / xs);
    // Ratios first: m2^(3/2) and m2^2 underflow where the coefficients themselves do not.
    s->skew = (m3 / m2) / std::sqrt(m2);
    s->kurt = (m4 / m2) / m2 - 3.0;
    bool overflow = false;
    for (double *v : {&s->sd, &s->skew, &s->kurt}) {
        if (!std::isfinite(*v)) *v = 0.0, overflow = true;
    }
    if (overflow) return void(take(exit, kG01aafExits, 9));
    exit.succeed();
}

} // namespace zek

extern "C" {

void G01AEF(const int *n, const int *nclass, const double x[], const int *iclass, double cint[], int ifreq[],
            double *xmin, double *xmax, int *ifail) {
    zek::Front front("G01AEF");
    if (*nclass >= 2) zek::mark_vector(*nclass, ifreq);
    zek::g01aef_worker(*n, *nclass, x, *iclass, cint, ifreq, xmin, xmax, front.errbuf(), ifail);
    front.finish(*ifail);
}

void g01aec(int n, int num_class, int class_type, const double a[], double cint[], int ifreq[], double *xmin,
            double *xmax, ZekFail *fail) {
    static const char *const kName = "g01aec";
    zek::clear_fail(fail);
    if (n < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", "1", n);
    if (num_class < 2) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "num_class", "2", num_class);
    if (class_type != Zek_ClassBoundaryComp && class_type != Zek_ClassBoundaryUser) {
        return zek::raise_text(fail, kName, ZE_BAD_PARAM, "class_type");
    }
    if (class_type == Zek_ClassBoundaryUser) {
        for (long j = 1; j < num_class - 1; ++j) {
            if (!(cint[j] > cint[j - 1])) {
                return zek::raise_formatted(fail, kName, ZE_NOT_STRICTLY_INCREASING, "cint", "cint", j - 1, cint[j - 1],
                                            "cint", j, cint[j]);
            }
        }
    }
    int ifail = 1;
    zek::g01aef_worker(n, num_class, a, class_type == Zek_ClassBoundaryUser ? 1 : 0, cint, ifreq, xmin, xmax, nullptr,
                       &ifail);
    switch (ifail) {
    case 0: return zek::raise_success(fail, kName);
    case 4: return zek::raise_plain(fail, kName, ZE_ARRAY_CONSTANT);
    case 2: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "cint");
    default: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "a");
    }
}

void G01AAF(const int *n, const double x[], int *iwt, const double wt[], double *xmean, double *s2, double *s3,
            double *s4, double *xmin, double *xmax, double *wtsum, int *ifail) {
    zek::Front front("G01AAF");
    zek::Summary s{};
    int iw = *iwt;
    zek::g01aaf_worker(*n, x, &iw, wt, &s, front.errbuf(), ifail);
    // Results leave the worker only when it computed them (exits 0 and 4 to 7).
    if (*ifail == 0 || *ifail >= 4) {
        *iwt = iw;
        *xmean = s.mean;
        *s2 = s.sd;
        *s3 = s.skew;
        *s4 = s.kurt;
        *xmin = s.xmin;
        *xmax = s.xmax;
        *wtsum = s.wsum;
    }
    front.finish(*ifail);
}

void g01aac(int n, const double x[], const double wt[], int *nvalid, double *xmean, double *xsd, double *xskew,
            double *xkurt, double *xmin, double *xmax, double *wsum, ZekFail *fail) {
    static const char *const kName = "g01aac";
    zek::clear_fail(fail);
    if (n < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", "1", n);
    for (long i = 0; wt != nullptr && i < n; ++i) {
        if (!(wt[i] >= 0.0) || std::isinf(wt[i])) return zek::raise_plain(fail, kName, ZE_NEG_WEIGHT);
    }
    zek::Summary s{};
    int iw = wt != nullptr ? 1 : 0, ifail = 1;
    zek::g01aaf_worker(n, x, &iw, wt, &s, nullptr, &ifail);
    if (ifail == 0 || ifail >= 4) {
        *nvalid = iw;
        *xmean = s.mean;
        *xsd = s.sd;
        *xskew = s.skew;
        *xkurt = s.kurt;
        *xmin = s.xmin;
        *xmax = s.xmax;
        *wsum = s.wsum;
    }
    switch (ifail) {
    case 0: return zek::raise_success(fail, kName);
    case 3: return zek::raise_plain(fail, kName, ZE_CASES_ZERO);
    case 4: return zek::raise_plain(fail, kName, ZE_CASES_ONE);
    case 5: return zek::raise_plain(fail, kName, ZE_SW_LT_ONE);
    case 6: return zek::raise_plain(fail, kName, ZE_ARRAY_CONSTANT);
    case 7: return zek::raise_plain(fail, kName, ZW_OVERFLOW_WARN);
    default: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x");
    }
}

} // extern "C"
