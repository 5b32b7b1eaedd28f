// The multivariate normal probability of a rectangle, P(a <= X <= b) for X ~ N(mu, Sigma), N <= 10.
//
// N = 1 is the normal tail; N = 2 the bivariate normal.  From N = 3 on, the probability is written by
// separation of variables: with Sigma = L L' (after standardising to a correlation matrix), X = L Z, and
// the limits of Z_i depend only on Z_1 .. Z_{i-1}; mapping each Z_i to a uniform w_i on its conditional
// interval turns the probability into an integral over the unit cube of dimension N - 1 of the product
// of the conditional interval probabilities.  That integrand is smooth and bounded by the first
// interval's probability, so a quasi-random rule converges fast and its variance falls with the
// probability itself (the stopping test can be relative).
//
// The variables are ordered while L is formed: each step takes, among those left, the one whose interval
// is least likely given the expected values of the ones taken, which concentrates the variation in the
// outer variables and shrinks the error several-fold on the hard (small-probability) cases.
//
// The rule is a Kronecker sequence (multiples of the square roots of the primes, mod 1) under the tent
// map |2x - 1|, shifted by eight fixed shifts; the spread of the eight shift means gives the error
// estimate (three standard errors).  The shifts are fixed, so a call is reproducible and the library's
// random number generators are left alone.
#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/ifail.h"
#include "frame/raise.h"
#include "zek2/g01.h"

namespace zek {

double bivariate_normal(double x, double y, double rho);

namespace {

constexpr int kMaxOrder = 10;
constexpr int kShifts = 8;
// Whatever the budget asked, the rule stops after this many evaluations (a few seconds at N = 10): no
// request runs for an unbounded time.
constexpr long kEvaluationCeiling = 10000000;

double phi_lower(double x) { return g01eac(Zek_LowerTail, x, nullptr); }

// The integrand's own normal distribution function and its inverse: it runs millions of times, so it
// takes the error function directly (relative error about x^2 eps in the lower tail, far below the
// rule's) and the inverse from a rational start of about 1e-9 relative with one Halley step on it.
double phi_fast(double x) { return 0.5 * std::erfc(-0.70710678118654752 * x); }

double inverse_phi_fast(double p) {
    static const double a[6] = {-3.969683028665376e+01, 2.209460984245205e+02, -2.759285104469687e+02,
                                1.383577518672690e+02,  -3.066479806614716e+01, 2.506628277459239e+00};
    static const double b[5] = {-5.447609879822406e+01, 1.615858368580409e+02, -1.556989798598866e+02,
                                6.680131188771972e+01,  -1.328068155288572e+01};
    static const double c[6] = {-7.784894002430293e-03, -3.223964580411365e-01, -2.400758277161838e+00,
                                -2.549732539343734e+00, 4.374664141464968e+00,  2.938163982698783e+00};
    static const double d[4] = {7.784695709041462e-03, 3.224671290700398e-01, 2.445134137142996e+00,
                                3.754408661907416e+00};
    const double lo = 0.02425;
    const double tail = p < 0.5 ? p : 1.0 - p;
    double x;
    if (tail >= lo) {
        const double q = p - 0.5, r = q * q;
        x = (((((a[0] * r + a[1]) * r + a[2]) * r + a[3]) * r + a[4]) * r + a[5]) * q /
            (((((b[0] * r + b[1]) * r + b[2]) * r + b[3]) * r + b[4]) * r + 1.0);
    } else {
        const double q = std::sqrt(-2.0 * std::log(tail));
        x = (((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
            ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1.0);
        if (p > 0.5) x = -x;
    }
    // Halley's step on the smaller tail, where the error function keeps its relative accuracy.
    const double e = x < 0.0 ? phi_fast(x) - p : (1.0 - p) - phi_fast(-x);
    const double u = e * 2.5066282746310002 * std::exp(0.5 * x * x);
    return x - u / (1.0 + 0.5 * x * u);
}

// A conditional interval (lo, hi) of a standard normal: its probability, formed in the tail where both
// ends lie so that a far interval keeps its relative accuracy, and the point of it at the share W of
// that probability.
template <double (*Phi)(double)>
struct IntervalOf {
    double base, p;
    bool upper; // both ends above 0: work with the upper tails, mirrored
    IntervalOf(double lo, double hi) {
        upper = lo > 0.0;
        if (upper) {
            base = Phi(-hi);
            p = Phi(-lo) - base;
        } else {
            base = Phi(lo);
            p = Phi(hi) - base;
        }
        if (!(p > 0.0)) p = 0.0;
    }
    double point(double w) const {
        double u = base + w * p;
        const double tiny = std::numeric_limits<double>::min();
        if (!(u > tiny)) u = tiny;
        if (u > 1.0 - 1.2e-16) u = 1.0 - 1.2e-16;
        const double z = inverse_phi_fast(u);
        return upper ? -z : z;
    }
};
using Interval = IntervalOf<phi_lower>;
using FastInterval = IntervalOf<phi_fast>;

double normal_density(double x) { return std::isinf(x) ? 0.0 : 0.39894228040143268 * std::exp(-0.5 * x * x); }

// The standardised, ordered problem: limits lo/hi and the Cholesky factor of the correlation matrix.
struct Problem {
    int n = 0;
    double lo[kMaxOrder], hi[kMaxOrder];
    double l[kMaxOrder][kMaxOrder];
};

// Standardises, orders and factorises; false when Sigma is not positive definite (a conditional
// variance at or below 16 eps of its variable's own, or a variance not positive).
template <class Sig>
bool prepare(int n, int tail, const double a[], const double b[], const double mu[], const Sig &sig, Problem *pr) {
    const double inf = std::numeric_limits<double>::infinity();
    double sd[kMaxOrder], c[kMaxOrder][kMaxOrder], y[kMaxOrder], diag[kMaxOrder];
    pr->n = n;
    for (int i = 0; i < n; ++i) {
        const double v = sig(i, i);
        if (!(v > 0.0)) return false;
        sd[i] = std::sqrt(v);
    }
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j <= i; ++j) c[i][j] = c[j][i] = i == j ? 1.0 : sig(i, j) / sd[i] / sd[j];
        pr->lo[i] = tail == Zek_LowerTail ? -inf : (a[i] - mu[i]) / sd[i];
        pr->hi[i] = tail == Zek_UpperTail ? inf : (b[i] - mu[i]) / sd[i];
        diag[i] = 1.0;
    }
    double(*l)[kMaxOrder] = pr->l;
    for (int i = 0; i < n; ++i) {
        // The least likely interval among the variables left, given the expected values so far.
        int best = -1;
        double best_p = 2.0;
        for (int j = i; j < n; ++j) {
            if (!(diag[j] > 16.0 * 2.2204460492503131e-16)) return false;
            double t = 0.0;
            for (int k = 0; k < i; ++k) t += l[j][k] * y[k];
            const double s = std::sqrt(diag[j]);
            const double p = Interval((pr->lo[j] - t) / s, (pr->hi[j] - t) / s).p;
            if (p < best_p) best_p = p, best = j;
        }
        if (best != i) {
            for (int k = 0; k < n; ++k) std::swap(c[i][k], c[best][k]);
            for (int k = 0; k < n; ++k) std::swap(c[k][i], c[k][best]);
            for (int k = 0; k < i; ++k) std::swap(l[i][k], l[best][k]);
            std::swap(pr->lo[i], pr->lo[best]);
            std::swap(pr->hi[i], pr->hi[best]);
            std::swap(diag[i], diag[best]);
        }
        const double s = std::sqrt(diag[i]);
        l[i][i] = s;
        for (int r = i + 1; r < n; ++r) {
            double v = c[r][i];
            for (int k = 0; k < i; ++k) v -= l[r][k] * l[i][k];
            l[r][i] = v / s;
            diag[r] -= l[r][i] * l[r][i];
        }
        // The expected value of the truncated normal on this variable's interval.
        double t = 0.0;
        for (int k = 0; k < i; ++k) t += l[i][k] * y[k];
        const double pa = (pr->lo[i] - t) / s, pb = (pr->hi[i] - t) / s;
        const Interval iv(pa, pb);
        if (iv.p > 1e-300) {
            y[i] = (normal_density(pa) - normal_density(pb)) / iv.p;
        } else {
            y[i] = std::isinf(pa) ? pb : (std::isinf(pb) ? pa : 0.5 * (pa + pb));
        }
        // An empty interval at -inf or +inf: any point beyond 40 stands for it, and keeps the sums
        // of the later steps finite.
        y[i] = y[i] < -40.0 ? -40.0 : (y[i] > 40.0 ? 40.0 : y[i]);
    }
    return true;
}

// The separated integrand at the point W of the (n-1)-cube.
double integrand(const Problem &pr, const double w[]) {
    double f = 1.0, y[kMaxOrder];
    for (int i = 0; i < pr.n; ++i) {
        double t = 0.0;
        for (int k = 0; k < i; ++k) t += pr.l[i][k] * y[k];
        const double s = pr.l[i][i];
        const FastInterval iv((pr.lo[i] - t) / s, (pr.hi[i] - t) / s);
        f *= iv.p;
        if (f == 0.0) return 0.0;
        if (i + 1 < pr.n) y[i] = iv.point(w[i]);
    }
    return f;
}

// The fixed shifts: a splitmix sequence from a fixed seed, so the rule is the same on every call.
double shift_value(std::uint64_t *state) {
    std::uint64_t z = (*state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    z ^= z >> 31;
    return static_cast<double>(z >> 11) * 0x1.0p-53;
}

struct MvnEstimate {
    double p, err;
    bool converged;
};

// The quasi-random rule on the prepared problem: rounds doubling the points of every shift until three
// standard errors of the shift means are within TOL of the estimate, or BUDGET evaluations are spent.
MvnEstimate mvn_quasi_random(const Problem &pr, double tol, long budget) {
    static const double kPrimes[kMaxOrder - 1] = {2, 3, 5, 7, 11, 13, 17, 19, 23};
    const int dim = pr.n - 1;
    double alpha[kMaxOrder], shift[kShifts][kMaxOrder], sum[kShifts] = {};
    std::uint64_t state = 0x5EED0F1A2B3C4D5EULL;
    for (int j = 0; j < dim; ++j) alpha[j] = std::sqrt(kPrimes[j]) - std::floor(std::sqrt(kPrimes[j]));
    for (int s = 0; s < kShifts; ++s) {
        for (int j = 0; j < dim; ++j) shift[s][j] = shift_value(&state);
    }
    if (budget > kEvaluationCeiling) budget = kEvaluationCeiling;
    const long per_shift_limit = budget / kShifts;
    long done = 0, target = per_shift_limit < 64 ? per_shift_limit : 64;
    MvnEstimate est{0.0, 0.0, false};
    while (target > done) {
        for (long k = done + 1; k <= target; ++k) {
            const double kk = static_cast<double>(k);
            for (int s = 0; s < kShifts; ++s) {
                double w[kMaxOrder];
                for (int j = 0; j < dim; ++j) {
                    const double x = kk * alpha[j] + shift[s][j];
                    w[j] = std::fabs(2.0 * (x - std::floor(x)) - 1.0);
                }
                sum[s] += integrand(pr, w);
            }
        }
        done = target;
        double mean = 0.0;
        for (int s = 0; s < kShifts; ++s) mean += sum[s] / static_cast<double>(done);
        mean /= kShifts;
        double var = 0.0;
        for (int s = 0; s < kShifts; ++s) {
            const double d = sum[s] / static_cast<double>(done) - mean;
            var += d * d;
        }
        est.p = mean;
        est.err = 3.0 * std::sqrt(var / (kShifts * (kShifts - 1.0)));
        if (est.err <= tol * mean) {
            est.converged = true;
            break;
        }
        target = 2 * done < per_shift_limit ? 2 * done : per_shift_limit;
    }
    if (est.p > 1.0) est.p = 1.0;
    return est;
}

// The bivariate case through the bivariate normal: the tails directly, a central rectangle by its four
// corners after mirroring each variable whose interval lies above 0, so that the corners are lower-tail
// values of the size of the result.
double mvn_two(int tail, const Problem &pr, double rho) {
    if (tail == Zek_LowerTail) return bivariate_normal(pr.hi[0], pr.hi[1], rho);
    if (tail == Zek_UpperTail) return bivariate_normal(-pr.lo[0], -pr.lo[1], rho);
    double lo[2], hi[2];
    for (int i = 0; i < 2; ++i) {
        const bool mirror = pr.lo[i] > 0.0;
        lo[i] = mirror ? -pr.hi[i] : pr.lo[i];
        hi[i] = mirror ? -pr.lo[i] : pr.hi[i];
        if (mirror) rho = -rho;
    }
    auto edge = [&](double x, double y) {
        // A limit of -inf makes the corner 0; one of +inf leaves the other margin.
        if (x == -std::numeric_limits<double>::infinity() || y == -std::numeric_limits<double>::infinity()) return 0.0;
        if (std::isinf(x)) return phi_lower(y);
        if (std::isinf(y)) return phi_lower(x);
        return bivariate_normal(x, y, rho);
    };
    const double p = edge(hi[0], hi[1]) - edge(lo[0], hi[1]) - edge(hi[0], lo[1]) + edge(lo[0], lo[1]);
    return p < 0.0 ? 0.0 : (p > 1.0 ? 1.0 : p);
}

// Outcomes of the shared computation after the argument checks.
enum MvnStatus { kMvnOk = 0, kMvnEmptyInterval = 2, kMvnNotPosDef = 3, kMvnNoAccuracy = 4, kMvnNaN = 5 };

struct MvnOutcome {
    double p = 0.0, err = 0.0;
    MvnStatus status = kMvnOk;
    int index = 0;            // the first i with a[i] >= b[i]
    const char *array = "";   // the array holding a NaN
};

bool has_nan(const double v[], int n) {
    for (int i = 0; i < n; ++i) {
        if (std::isnan(v[i])) return true;
    }
    return false;
}

// SIG(i, j), i >= j, through the accessor SIG: only the lower triangle is read.
template <class Sig>
MvnOutcome mvn_compute(int tail, int n, const double a[], const double b[], const double mu[], const Sig &sig,
                       double tol, long budget) {
    MvnOutcome out;
    if (tail != Zek_LowerTail && has_nan(a, n)) return out.status = kMvnNaN, out.array = "a", out;
    if (tail != Zek_UpperTail && has_nan(b, n)) return out.status = kMvnNaN, out.array = "b", out;
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(mu[i])) return out.status = kMvnNaN, out.array = "xmu", out;
        for (int j = 0; j <= i; ++j) {
            if (!std::isfinite(sig(i, j))) return out.status = kMvnNaN, out.array = "sig", out;
        }
    }
    if (tail == Zek_TwoTailConfid) {
        for (int i = 0; i < n; ++i) {
            if (!(a[i] < b[i])) return out.status = kMvnEmptyInterval, out.index = i, out;
        }
    }
    Problem pr;
    if (n <= 2) {
        // Standardise only: the ordering and factor are not needed.
        double sd[2];
        for (int i = 0; i < n; ++i) {
            if (!(sig(i, i) > 0.0)) return out.status = kMvnNotPosDef, out;
            sd[i] = std::sqrt(sig(i, i));
            const double inf = std::numeric_limits<double>::infinity();
            pr.lo[i] = tail == Zek_LowerTail ? -inf : (a[i] - mu[i]) / sd[i];
            pr.hi[i] = tail == Zek_UpperTail ? inf : (b[i] - mu[i]) / sd[i];
        }
        if (n == 1) {
            out.p = Interval(pr.lo[0], pr.hi[0]).p;
            return out;
        }
        const double rho = sig(1, 0) / sd[0] / sd[1];
        if (!(std::fabs(rho) < 1.0)) return out.status = kMvnNotPosDef, out;
        out.p = mvn_two(tail, pr, rho);
        return out;
    }
    if (!prepare(n, tail, a, b, mu, sig, &pr)) return out.status = kMvnNotPosDef, out;
    const MvnEstimate est = mvn_quasi_random(pr, tol, budget);
    out.p = est.p;
    out.err = est.err;
    if (!est.converged) out.status = kMvnNoAccuracy;
    return out;
}

struct StridedSig {
    const double *sig;
    std::ptrdiff_t rs, cs;
    double operator()(int i, int j) const { return sig[i * rs + j * cs]; }
};

int tail_of(char c) {
    switch (c) {
    case 'L': case 'l': return Zek_LowerTail;
    case 'U': case 'u': return Zek_UpperTail;
    case 'C': case 'c': return Zek_TwoTailConfid;
    default: return 0;
    }
}

// The failure exits of G01HBF.
enum G01hbfExit {
    kNLessThan1, kNAboveMax, kLdsigLessThanN, kLwkBelow4N, kLwkLessThan1, kTolNotPositive, kTailInvalid,
    kNotFinite, kEmptyInterval, kNotPosDef, kNoAccuracy
};
constexpr ExitRow kG01hbfExits[] = {
    {1, 99999, " ** On entry, N.lt.1 : N = %16ld"},
    {1, 99998, " ** On entry, N.gt.10 : N = %16ld"},
    {1, 99997, " ** On entry, LDSIG.lt.N : LDSIG = %16ld N = %16ld"},
    {1, 99996, " ** On entry, LWK.lt.4*N : LWK = %16ld"},
    {1, 99995, " ** On entry, LWK.lt.1 : LWK = %16ld"},
    {1, 99994, " ** On entry, TOL.le.0.0 : TOL = %13.5e"},
    {1, 99993, " ** On entry, TAIL is not valid : TAIL = %1.1s"},
    {1, 99992, " ** On entry, an element of A, B, XMU or SIG is not finite."},
    {2, 99991, " ** On entry, TAIL = 'C' and A(I).ge.B(I) for I = %16ld"},
    {3, 99990, " ** On entry, SIG is not positive definite."},
    {4, 99989, " ** Accuracy requested by TOL not achieved: error estimate = %13.5e"},
};

// The IFAIL worker.  RS, CS: the strides of SIG (1, LDSIG from G01HBF).
double g01hbf_worker(char tail_char, int n, const double a[], const double b[], const double xmu[], const double sig[],
                     std::ptrdiff_t rs, std::ptrdiff_t cs, int ldsig, double tol, double wk[], int lwk, int *ifail) {
    FailureExit exit("G01HBF", nullptr, ifail, Channel::Stream);
    const int tail = tail_of(tail_char);
    const long nv = n;
    if (n < 1) return take(exit, kG01hbfExits, kNLessThan1, {nv}), 0.0;
    if (n > kMaxOrder) return take(exit, kG01hbfExits, kNAboveMax, {nv}), 0.0;
    if (ldsig < n) return take(exit, kG01hbfExits, kLdsigLessThanN, {static_cast<long>(ldsig), nv}), 0.0;
    if (n >= 3 && lwk < 4 * n) return take(exit, kG01hbfExits, kLwkBelow4N, {static_cast<long>(lwk)}), 0.0;
    if (lwk < 1) return take(exit, kG01hbfExits, kLwkLessThan1, {static_cast<long>(lwk)}), 0.0;
    if (n > 1 && !(tol > 0.0)) return take(exit, kG01hbfExits, kTolNotPositive, {tol}), 0.0;
    if (tail == 0) {
        const char text[2] = {tail_char, '\0'};
        return take(exit, kG01hbfExits, kTailInvalid, {text}), 0.0;
    }
    const MvnOutcome out = mvn_compute(tail, n, a, b, xmu, StridedSig{sig, rs, cs}, tol, lwk);
    // WK returns the error estimate of the rule in WK(1) (0 for N <= 2).
    wk[0] = out.err;
    switch (out.status) {
    case kMvnOk: break;
    case kMvnNaN: return take(exit, kG01hbfExits, kNotFinite), 0.0;
    case kMvnEmptyInterval: return take(exit, kG01hbfExits, kEmptyInterval, {static_cast<long>(out.index + 1)}), 0.0;
    case kMvnNotPosDef: return take(exit, kG01hbfExits, kNotPosDef), 0.0;
    case kMvnNoAccuracy: return take(exit, kG01hbfExits, kNoAccuracy, {out.err}), out.p;
    }
    exit.succeed();
    return out.p;
}

} // namespace

} // namespace zek

extern "C" {

double G01HBF(const char *tail, const int *n, const double a[], const double b[], const double xmu[],
              const double sig[], const int *ldsig, const double *tol, double wk[], const int *lwk, int *ifail,
              int tail_len) {
    return zek::g01hbf_worker(tail_len > 0 ? tail[0] : ' ', *n, a, b, xmu, sig, 1, *ldsig, *ldsig, *tol, wk, *lwk,
                              ifail);
}

double g01hbc(int tail, int n, const double a[], const double b[], const double xmu[], const double sig[], int tdsig,
              double tol, int maxpts, ZekFail *fail) {
    static const char *const kName = "g01hbc";
    zek::clear_fail(fail);
    if (tail != Zek_LowerTail && tail != Zek_UpperTail && tail != Zek_Central) {
        return zek::raise_text(fail, kName, ZE_BAD_PARAM, "tail"), 0.0;
    }
    if (n < 1 || n > 10) return zek::raise_formatted(fail, kName, ZE_INT_ARG_CONS, "n", static_cast<long>(n), "1 <= n <= 10"), 0.0;
    if (zek::raise_below(fail, kName, "tdsig", tdsig, "n", n)) return 0.0;
    if (n >= 3 && maxpts < 4 * n) {
        return zek::raise_formatted(fail, kName, ZE_INT_ARG_CONS, "maxpts", static_cast<long>(maxpts),
                                    "maxpts >= 4*n, if n >= 3"),
               0.0;
    }
    if (n > 1 && !(tol > 0.0)) return zek::raise_formatted(fail, kName, ZE_REAL_ARG_CONS, "tol", tol, "tol > 0, if n > 1"), 0.0;
    if (tail == Zek_Central) {
        for (int i = 0; i < n; ++i) {
            if (std::isnan(a[i]) || std::isnan(b[i]) || a[i] < b[i]) continue;
            return zek::raise_formatted(fail, kName, ZE_REAL_ARRAY_CONS, "a", static_cast<long>(i), a[i],
                                        "if tail = Zek_Central, a[i] < b[i], for i=0,1...,n-1"),
                   0.0;
        }
    }
    // The C-style matrix is row-major: SIG(i, j) at sig[i * tdsig + j].
    const zek::MvnOutcome out = zek::mvn_compute(tail, n, a, b, xmu, zek::StridedSig{sig, tdsig, 1}, tol,
                                                 n >= 3 ? maxpts : 1);
    switch (out.status) {
    case zek::kMvnOk: zek::raise_success(fail, kName); return out.p;
    case zek::kMvnNaN: zek::raise_text(fail, kName, ZE_BAD_PARAM, out.array); return 0.0;
    case zek::kMvnNotPosDef: zek::raise_plain(fail, kName, ZE_NOT_POS_DEF); return 0.0;
    case zek::kMvnNoAccuracy: zek::raise_plain(fail, kName, ZE_NOT_REQ_ACC); return out.p;
    case zek::kMvnEmptyInterval: break;
    }
    zek::raise_plain(fail, kName, ZE_INTERNAL_ERROR);
    return 0.0;
}

} // extern "C"
