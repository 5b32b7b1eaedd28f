// Lower tails of the non-central t, chi-squared, F and beta distributions.  Each is a Poisson mixture
// of central tails, summed from the mode of the weights outward in both directions, so that a large
// non-centrality costs terms only where the weights matter and no weight underflows before it counts.
#include <cmath>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/raise.h"
#include "statistics/distributions.h"
#include "zek2/g01.h"
#include "zek2/s.h"

namespace zek {

namespace {

constexpr double kShapeLimit = 1.0e6;
// Whatever MAXIT says, no series runs beyond this many terms: a non-centrality so large that it would
// need more (about 1e9 and up) ends in the convergence failure in bounded time.
constexpr int kTermCeiling = 100000;

double lambda_limit() { return -2.0 * std::log(safe_minimum()); }

// The relative accuracy asked of a series: TOL, held to at least 10 machine precisions and at most 1e-2.
double series_tolerance(double tol) {
    const double lo = 10.0 * precision();
    if (!(tol >= lo)) return lo;
    return tol < 1e-2 ? tol : 1e-2;
}

struct Series {
    double sum;
    bool converged;  // false: MAXIT terms were not enough, or a central tail failed (see `central_ok`)
    bool central_ok;
};

double log_gamma(double z) {
    ZekFail quiet = clean_fail();
    return s14abc(z, &quiet);
}

// sum over j >= 0 of w_j f(j), w_j = exp(-mu) mu^j / j!, with 0 <= f(j) <= 1 (for the t sum, bounded
// by its own factor, see non_central_t).  The walk starts at the mode and stops in each direction once
// the weights left, bounded by a geometric series, are below tol times the sum so far.  TERM returns
// false when its central tail failed.
template <class Term>
Series poisson_mixture(double mu, double bound, double tol, int maxit, Term term) {
    Series s{0.0, true, true};
    if (!(mu > 0.0)) {
        double f = 0.0;
        s.central_ok = term(0, &f);
        s.sum = f;
        return s;
    }
    // Past 2^53 the index no longer steps by one: such a mixture cannot be summed term by term.
    if (!(mu < 9.0e15)) return s.converged = false, s;
    const double j0 = std::floor(mu), lmu = std::log(mu);
    auto weight = [&](double j) { return std::exp(-mu + j * lmu - log_gamma(j + 1.0)); };
    int used = 0;
    maxit = maxit < kTermCeiling ? maxit : kTermCeiling;
    for (double j = j0;; j += 1.0) {
        if (++used > maxit) return s.converged = false, s;
        double f = 0.0;
        const double w = weight(j);
        if (!term(j, &f)) return s.central_ok = false, s;
        s.sum += w * f;
        const double r = mu / (j + 2.0);
        if (r < 1.0 && w * bound * r / (1.0 - r) <= tol * s.sum) break;
        if (w == 0.0 && j > mu) break;
    }
    for (double j = j0 - 1.0; j >= 0.0; j -= 1.0) {
        if (++used > maxit) return s.converged = false, s;
        double f = 0.0;
        const double w = weight(j);
        if (!term(j, &f)) return s.central_ok = false, s;
        s.sum += w * f;
        const double r = j / mu;
        if (w * bound * r / (1.0 - r) <= tol * s.sum) break;
    }
    return s;
}

// Non-central beta: sum_j Pois(j; lambda/2) I_x(a + j, b).
Series non_central_beta(double x, double a, double b, double lambda, double tol, int maxit) {
    const double y = 1.0 - x, lx = std::log(x), ly = std::log1p(-x);
    return poisson_mixture(lambda / 2.0, 1.0, tol, maxit, [&](double j, double *f) {
        if (x <= 0.0 || x >= 1.0) {
            *f = x <= 0.0 ? 0.0 : 1.0;
            return true;
        }
        const dist::BetaTails t = dist::incomplete_beta(a + j, b, x, y, lx, ly);
        *f = t.p;
        return t.converged;
    });
}

// Non-central chi-squared: sum_j Pois(j; lambda/2) P(df/2 + j, x/2); with df = 0 the first term is the
// point mass at 0.
Series non_central_chi(double x, double df, double lambda, double tol, int maxit) {
    return poisson_mixture(lambda / 2.0, 1.0, tol, maxit, [&](double j, double *f) {
        const double a = df / 2.0 + j;
        if (a == 0.0) {
            *f = 1.0;
            return true;
        }
        if (std::isinf(x)) {
            *f = 1.0;
            return true;
        }
        ZekFail inner = clean_fail();
        double p = 0.0, q = 0.0;
        s14bac(a, x / 2.0, 0.0, &p, &q, &inner);
        *f = p;
        return inner.code == 0;
    });
}

// Non-central t, P(T <= t) for t >= 0: Phi(-delta) + (1/2) sum_j [p_j I_x(j + 1/2, nu/2) + q_j I_x(j + 1,
// nu/2)] with x = t^2/(t^2 + nu), p_j the Poisson weights of delta^2/2 and q_j = p_j delta/sqrt(2)
// Gamma(j + 1)/Gamma(j + 3/2).  The ratio q_j/p_j is at most |delta| (j = 0), which bounds the terms.
Series non_central_t_upper_half(double t, double nu, double delta, double tol, int maxit) {
    // x = t^2/(t^2 + nu) and y = 1 - x from whichever ratio cannot overflow.
    double x, y;
    if (t > std::sqrt(nu)) {
        const double r = nu / t / t;
        x = 1.0 / (1.0 + r);
        y = r / (1.0 + r);
    } else {
        const double r = t / nu * t;
        x = r / (1.0 + r);
        y = 1.0 / (1.0 + r);
    }
    const double lx = std::log(x), ly = std::log(y);
    const double mu = delta * delta / 2.0, half = nu / 2.0;
    const double bound = 1.0 + std::fabs(delta);
    Series s = poisson_mixture(mu, bound, tol, maxit, [&](double j, double *f) {
        const double ratio = delta / std::sqrt(2.0) * std::exp(log_gamma(j + 1.0) - log_gamma(j + 1.5));
        if (!(x > 0.0) || !(y > 0.0)) {
            *f = x > 0.0 ? 1.0 + ratio : 0.0;
            return true;
        }
        const dist::BetaTails first = dist::incomplete_beta(j + 0.5, half, x, y, lx, ly);
        const dist::BetaTails second = dist::incomplete_beta(j + 1.0, half, x, y, lx, ly);
        *f = first.p + ratio * second.p;
        return first.converged && second.converged;
    });
    s.sum = g01eac(Zek_UpperTail, delta, nullptr) + 0.5 * s.sum;
    return s;
}

// The failure exits of the non-central family (G01GBF, G01GCF, G01GEF, G01GDF); the last three rows
// serve every routine that checks RLAMDA, MAXIT or its series at that exit number.
enum NoncentralExit {
    kTDfNotPositive, kTMaxitLessThan1, kTNotFinite, kTNoConvergence, kTProbabilityTooSmall,
    kChiDfNegative, kChiLambdaNegative, kChiXNegative, kChiBothZero, kChiCentralFails, kChiNoConvergence,
    kBetaXOutside01, kBetaShapeNotPositive, kBetaShapeTooLarge,
    kFNotPositive, kFDfNotPositive, kFDf1TooLarge,
    kLambdaOutOfRange, kMaxitLessThan1, kNoConvergence
};
constexpr ExitRow kNoncentralExits[] = {
    // G01GBF: the t distribution
    {1, 99999, " ** On entry, DF.le.0.0 : DF = %13.5e"},
    {1, 99998, " ** On entry, MAXIT.lt.1 : MAXIT = %16ld"},
    {1, 99997, " ** On entry, T or DELTA is not finite: T = %13.5e DELTA = %13.5e"},
    {2, 99996, " ** Series failed to converge in %16ld iterations."},
    {3, 99995, " ** Probability too small to calculate."},
    // G01GCF: chi-squared
    {1, 99999, " ** On entry, DF.lt.0.0 : DF = %13.5e"},
    {1, 99998, " ** On entry, RLAMDA.lt.0.0 : RLAMDA = %13.5e"},
    {1, 99997, " ** On entry, X.lt.0.0 : X = %13.5e"},
    {2, 99996, " ** On entry, DF.eq.0.0 and RLAMDA.eq.0.0"},
    {3, 99994, " ** Central Chi squared function fails to converge."},
    {4, 99993, " ** Convergence has not been achieved in MAXIT steps: MAXIT = %16ld"},
    // G01GEF: beta
    {1, 99999, " ** On entry X.lt.0.0 or X.gt.1.0: X = %13.5e"},
    {1, 99998, " ** On entry A.le.0.0 or B.le.0.0: A = %13.5e B = %13.5e"},
    {1, 99997, " ** On entry A or B is too large: A = %13.5e B = %13.5e"},
    // G01GDF: F
    {1, 99999, " ** On entry, F.le.0.0: F = %13.5e"},
    {1, 99998, " ** On entry, DF1.le.0.0 or DF2.le.0.0: DF1 = %13.5e DF2 = %13.5e"},
    {1, 99997, " ** On entry, DF1 is too large: DF1 = %13.5e"},
    // shared
    {1, 99996, " ** On entry, RLAMDA.lt.0.0 or RLAMDA too large: RLAMDA = %13.5e"},
    {1, 99995, " ** On entry, MAXIT.lt.1 : MAXIT = %16ld"},
    {2, 99994, " ** Solution has failed to converge in %16ld iterations"},
};

double g01gbf_worker(double t, double df, double delta, double tol, int maxit, int *ifail) {
    FailureExit exit("G01GBF", nullptr, ifail, Channel::Stream);
    if (!(df > 0.0)) return take(exit, kNoncentralExits, kTDfNotPositive, {df}), 0.0;
    if (maxit < 1) return take(exit, kNoncentralExits, kTMaxitLessThan1, {static_cast<long>(maxit)}), 0.0;
    if (!std::isfinite(t) || !std::isfinite(delta)) {
        return take(exit, kNoncentralExits, kTNotFinite, {t, delta}), 0.0;
    }
    const double e = series_tolerance(tol);
    // Beyond 1e12 degrees of freedom T is normal about delta to within 1/df.
    if (df > 1.0e12) {
        exit.succeed();
        return g01eac(Zek_LowerTail, t - delta, nullptr);
    }
    // P(T <= t; delta) = 1 - P(T <= -t; -delta) for t < 0, where the difference may cancel.
    const Series s = t >= 0.0 ? non_central_t_upper_half(t, df, delta, e, maxit)
                              : non_central_t_upper_half(-t, df, -delta, e, maxit);
    double p = t >= 0.0 ? s.sum : 1.0 - s.sum;
    p = p < 0.0 ? 0.0 : (p > 1.0 ? 1.0 : p);
    if (!s.converged || !s.central_ok) {
        return take(exit, kNoncentralExits, kTNoConvergence, {static_cast<long>(maxit)}), p;
    }
    if (t < 0.0 && p < 1000.0 * precision()) return take(exit, kNoncentralExits, kTProbabilityTooSmall), p;
    exit.succeed();
    return p;
}

double g01gcf_worker(double x, double df, double lambda, double tol, int maxit, int *ifail) {
    FailureExit exit("G01GCF", nullptr, ifail, Channel::Stream);
    if (!(df >= 0.0) || std::isinf(df)) return take(exit, kNoncentralExits, kChiDfNegative, {df}), 0.0;
    if (!(lambda >= 0.0) || std::isinf(lambda)) {
        return take(exit, kNoncentralExits, kChiLambdaNegative, {lambda}), 0.0;
    }
    if (!(x >= 0.0)) return take(exit, kNoncentralExits, kChiXNegative, {x}), 0.0;
    if (df == 0.0 && lambda == 0.0) return take(exit, kNoncentralExits, kChiBothZero), 0.0;
    if (maxit < 1) return take(exit, kNoncentralExits, kMaxitLessThan1, {static_cast<long>(maxit)}), 0.0;
    const Series s = non_central_chi(x, df, lambda, series_tolerance(tol), maxit);
    const double p = s.sum > 1.0 ? 1.0 : s.sum;
    if (!s.central_ok) return take(exit, kNoncentralExits, kChiCentralFails), 0.0;
    if (!s.converged) {
        return take(exit, kNoncentralExits, kChiNoConvergence, {static_cast<long>(maxit)}), p;
    }
    exit.succeed();
    return p;
}

double g01gef_worker(double x, double a, double b, double lambda, double tol, int maxit, int *ifail) {
    FailureExit exit("G01GEF", nullptr, ifail, Channel::Stream);
    if (!(x >= 0.0 && x <= 1.0)) return take(exit, kNoncentralExits, kBetaXOutside01, {x}), 0.0;
    if (!(a > 0.0 && b > 0.0)) {
        return take(exit, kNoncentralExits, kBetaShapeNotPositive, {a, b}), 0.0;
    }
    if (a > kShapeLimit || b > kShapeLimit) {
        return take(exit, kNoncentralExits, kBetaShapeTooLarge, {a, b}), 0.0;
    }
    if (!(lambda >= 0.0 && lambda <= lambda_limit())) {
        return take(exit, kNoncentralExits, kLambdaOutOfRange, {lambda}), 0.0;
    }
    if (maxit < 1) return take(exit, kNoncentralExits, kMaxitLessThan1, {static_cast<long>(maxit)}), 0.0;
    const Series s = non_central_beta(x, a, b, lambda, series_tolerance(tol), maxit);
    const double p = s.sum > 1.0 ? 1.0 : s.sum;
    if (!s.converged || !s.central_ok) {
        return take(exit, kNoncentralExits, kNoConvergence, {static_cast<long>(maxit)}), p;
    }
    exit.succeed();
    return p;
}

// Non-central F: with X = df1 f / (df1 f + df2), a non-central beta on (df1/2, df2/2); beyond the
// shape limit for df2, df1 f is non-central chi-squared on df1 (the limit as df2 grows).
double g01gdf_worker(double f, double df1, double df2, double lambda, double tol, int maxit, int *ifail) {
    FailureExit exit("G01GDF", nullptr, ifail, Channel::Stream);
    if (!(f > 0.0)) return take(exit, kNoncentralExits, kFNotPositive, {f}), 0.0;
    if (!(df1 > 0.0 && df2 > 0.0)) {
        return take(exit, kNoncentralExits, kFDfNotPositive, {df1, df2}), 0.0;
    }
    if (df1 > kShapeLimit) return take(exit, kNoncentralExits, kFDf1TooLarge, {df1}), 0.0;
    if (!(lambda >= 0.0 && lambda <= lambda_limit())) {
        return take(exit, kNoncentralExits, kLambdaOutOfRange, {lambda}), 0.0;
    }
    if (maxit < 1) return take(exit, kNoncentralExits, kMaxitLessThan1, {static_cast<long>(maxit)}), 0.0;
    Series s;
    if (df2 > kShapeLimit || std::isinf(f)) {
        s = non_central_chi(df1 * f, df1, lambda, series_tolerance(tol), maxit);
    } else {
        // x and 1 - x are both formed directly, so a large f keeps its upper tail.
        const double u = df1 * f, den = u + df2;
        const double x = u / den;
        s = non_central_beta(x, df1 / 2.0, df2 / 2.0, lambda, series_tolerance(tol), maxit);
    }
    const double p = s.sum > 1.0 ? 1.0 : s.sum;
    if (!s.converged || !s.central_ok) {
        return take(exit, kNoncentralExits, kNoConvergence, {static_cast<long>(maxit)}), p;
    }
    exit.succeed();
    return p;
}

bool check_maxit(ZekFail *fail, const char *routine, int maxit) {
    if (maxit >= 1) return true;
    raise_int_arg(fail, routine, ZE_INT_ARG_LT, "max_iter", "1", maxit);
    return false;
}

bool check_cons(ZekFail *fail, const char *routine, double v, const char *name, bool ok, const char *constraint) {
    if (ok) return true;
    raise_formatted(fail, routine, ZE_REAL_ARG_CONS, name, v, constraint);
    return false;
}

// The C-style end of a worker's IFAIL: 0 success, 1 cannot happen after the checks, CONV the code of a
// series that did not settle, 3 (t only) the probability too small.
void raise_series(ZekFail *fail, const char *routine, int ifail, int conv) {
    if (ifail == 0) return raise_success(fail, routine);
    if (ifail == 3 && conv == ZE_SERIES) return raise_plain(fail, routine, ZE_PROBABILITY);
    if (ifail == 3) return raise_plain(fail, routine, ZE_CHI_PROB);
    raise_plain(fail, routine, conv);
}

} // namespace

} // namespace zek

extern "C" {

double G01GBF(const double *t, const double *df, const double *delta, const double *tol, const int *maxit, int *ifail) {
    return zek::g01gbf_worker(*t, *df, *delta, *tol, *maxit, ifail);
}

double g01gbc(double t, double df, double delta, double tol, int max_iter, ZekFail *fail) {
    static const char *const kName = "g01gbc";
    zek::clear_fail(fail);
    if (!zek::check_cons(fail, kName, t, "t", std::isfinite(t), "t is finite")) return 0.0;
    if (!(df > 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "df", "0.0", df), 0.0;
    if (!zek::check_cons(fail, kName, delta, "delta", std::isfinite(delta), "delta is finite")) return 0.0;
    if (!zek::check_maxit(fail, kName, max_iter)) return 0.0;
    int ifail = 1;
    const double p = zek::g01gbf_worker(t, df, delta, tol, max_iter, &ifail);
    zek::raise_series(fail, kName, ifail, ZE_SERIES);
    return p;
}

double G01GCF(const double *x, const double *df, const double *rlamda, const double *tol, const int *maxit, int *ifail) {
    return zek::g01gcf_worker(*x, *df, *rlamda, *tol, *maxit, ifail);
}

double g01gcc(double x, double df, double lambda, double tol, int max_iter, ZekFail *fail) {
    static const char *const kName = "g01gcc";
    zek::clear_fail(fail);
    if (!(x >= 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "x", "0.0", x), 0.0;
    if (!(df >= 0.0) || std::isinf(df)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "df", "0.0", df), 0.0;
    if (!(lambda >= 0.0) || std::isinf(lambda)) {
        return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "lambda", "0.0", lambda), 0.0;
    }
    if (!zek::check_cons(fail, kName, lambda, "lambda", df > 0.0 || lambda > 0.0, "lambda > 0.0 if df = 0.0")) return 0.0;
    if (!zek::check_maxit(fail, kName, max_iter)) return 0.0;
    int ifail = 1;
    const double p = zek::g01gcf_worker(x, df, lambda, tol, max_iter, &ifail);
    zek::raise_series(fail, kName, ifail == 4 ? 2 : ifail, ZE_CONV);
    return p;
}

double G01GEF(const double *x, const double *a, const double *b, const double *rlamda, const double *tol, const int *maxit,
              int *ifail) {
    return zek::g01gef_worker(*x, *a, *b, *rlamda, *tol, *maxit, ifail);
}

double g01gec(double x, double a, double b, double lambda, double tol, int max_iter, ZekFail *fail) {
    static const char *const kName = "g01gec";
    zek::clear_fail(fail);
    if (!zek::check_cons(fail, kName, x, "x", x >= 0.0 && x <= 1.0, "0.0 <= x <= 1.0")) return 0.0;
    if (!zek::check_cons(fail, kName, a, "a", a > 0.0 && a <= zek::kShapeLimit, "0.0 < a <= 1.0e6")) return 0.0;
    if (!zek::check_cons(fail, kName, b, "b", b > 0.0 && b <= zek::kShapeLimit, "0.0 < b <= 1.0e6")) return 0.0;
    if (!zek::check_cons(fail, kName, lambda, "lambda", lambda >= 0.0 && lambda <= zek::lambda_limit(),
                         "0.0 <= lambda <= -2.0*log(X02AMC)")) {
        return 0.0;
    }
    if (!zek::check_maxit(fail, kName, max_iter)) return 0.0;
    int ifail = 1;
    const double p = zek::g01gef_worker(x, a, b, lambda, tol, max_iter, &ifail);
    zek::raise_series(fail, kName, ifail, ZE_CONV);
    return p;
}

double G01GDF(const double *f, const double *df1, const double *df2, const double *rlamda, const double *tol,
              const int *maxit, int *ifail) {
    return zek::g01gdf_worker(*f, *df1, *df2, *rlamda, *tol, *maxit, ifail);
}

double g01gdc(double f, double df1, double df2, double lambda, double tol, int max_iter, ZekFail *fail) {
    static const char *const kName = "g01gdc";
    zek::clear_fail(fail);
    if (!(f > 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "f", "0.0", f), 0.0;
    if (!zek::check_cons(fail, kName, df1, "df1", df1 > 0.0 && df1 <= zek::kShapeLimit, "0.0 < df1 <= 1.0e6")) return 0.0;
    if (!(df2 > 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "df2", "0.0", df2), 0.0;
    if (!zek::check_cons(fail, kName, lambda, "lambda", lambda >= 0.0 && lambda <= zek::lambda_limit(),
                         "0.0 <= lambda <= -2.0*log(X02AMC)")) {
        return 0.0;
    }
    if (!zek::check_maxit(fail, kName, max_iter)) return 0.0;
    int ifail = 1;
    const double p = zek::g01gdf_worker(f, df1, df2, lambda, tol, max_iter, &ifail);
    zek::raise_series(fail, kName, ifail, ZE_CONV);
    return p;
}

} // extern "C"
