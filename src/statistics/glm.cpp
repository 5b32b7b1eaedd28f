// Generalised linear models by iteratively reweighted least squares: one engine, with the four error
// families and the links as small tables, over the weighted least-squares step of weighted_ls.h.
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "frame/machine.h"
#include "frame/raise.h"
#include "statistics/regression.h"
#include "statistics/weighted_ls.h"
#include "zek2/g01.h"
#include "zek2/g02.h"

namespace zek {

namespace {

using std::ptrdiff_t;

// ---- Links: eta = g(m) on the mean per trial m, its inverse and dm/deta. ----

double logistic(double e) { return e >= 0.0 ? 1.0 / (1.0 + std::exp(-e)) : std::exp(e) / (1.0 + std::exp(e)); }

struct LinkRow {
    int code;
    double (*eta)(double m, double a);
    double (*mean)(double e, double a);
    double (*dmean)(double e, double a);
};

const LinkRow kLinks[] = {
    {Zek_Exponent, [](double m, double a) { return std::pow(m, a); },
     [](double e, double a) { return std::pow(e, 1.0 / a); },
     [](double e, double a) { return std::pow(e, 1.0 / a - 1.0) / a; }},
    {Zek_Identity, [](double m, double) { return m; }, [](double e, double) { return e; },
     [](double, double) { return 1.0; }},
    {Zek_Log, [](double m, double) { return std::log(m); }, [](double e, double) { return std::exp(e); },
     [](double e, double) { return std::exp(e); }},
    {Zek_SquareRoot, [](double m, double) { return std::sqrt(m); }, [](double e, double) { return e * e; },
     [](double e, double) { return 2.0 * e; }},
    {Zek_Reciprocal, [](double m, double) { return 1.0 / m; }, [](double e, double) { return 1.0 / e; },
     [](double e, double) { return -1.0 / (e * e); }},
    {Zek_Logistic, [](double m, double) { return std::log(m / (1.0 - m)); }, [](double e, double) { return logistic(e); },
     [](double e, double) { return logistic(e) * logistic(-e); }},
    {Zek_Probit, [](double m, double) { return m > 0.0 && m < 1.0 ? G01FAZ(&m) : NAN; },
     [](double e, double) { return 0.5 * std::erfc(-e * 0.70710678118654757); },
     [](double e, double) { return 0.39894228040143268 * std::exp(-0.5 * e * e); }},
    {Zek_CompLogLog, [](double m, double) { return std::log(-std::log1p(-m)); },
     [](double e, double) { return -std::expm1(-std::exp(e)); },
     [](double e, double) { return std::exp(e - std::exp(e)); }},
};

// ---- Families: variance, unit deviance, the open range of the mean, the starting mean. ----

enum Family { kNormal, kBinomial, kPoisson, kGamma };

// y log(y / mu), 0 at y = 0.
double ylog(double y, double mu) { return y > 0.0 ? y * std::log(y / mu) : 0.0; }

struct FamilyRow {
    const char *routine;
    int boundary;  // the exit of a fitted value at the edge of the range
    bool binomial_links, fixed_scale;
    double (*variance)(double mu, double t);
    double (*deviance)(double y, double mu, double t);
    bool (*inside)(double mu, double t);
    double (*start)(double y, double t);
};

const FamilyRow kFamilies[] = {
    {"g02gac", ZE_VALUE_AT_BOUNDARY_A, false, false, [](double, double) { return 1.0; },
     [](double y, double mu, double) { return (y - mu) * (y - mu); },
     [](double mu, double) { return std::isfinite(mu); }, [](double y, double) { return y; }},
    {"g02gbc", ZE_VALUE_AT_BOUNDARY_B, true, true, [](double mu, double t) { return mu * (t - mu) / t; },
     [](double y, double mu, double t) { return 2.0 * (ylog(y, mu) + ylog(t - y, t - mu)); },
     [](double mu, double t) { return mu > 0.0 && mu < t; }, [](double y, double t) { return t * (y + 0.5) / (t + 1.0); }},
    {"g02gcc", ZE_VALUE_AT_BOUNDARY_C, false, true, [](double mu, double) { return mu; },
     [](double y, double mu, double) { return 2.0 * (ylog(y, mu) - (y - mu)); },
     [](double mu, double) { return mu > 0.0 && std::isfinite(mu); }, [](double y, double) { return y + 0.5; }},
    {"g02gdc", ZE_VALUE_AT_BOUNDARY_D, false, false, [](double mu, double) { return mu * mu; },
     [](double y, double mu, double) { return 2.0 * ((y - mu) / mu - std::log(y / mu)); },
     [](double mu, double) { return mu > 0.0 && std::isfinite(mu); }, [](double y, double) { return y; }},
};

constexpr int kHalvings = 30;

struct Problem {
    const FamilyRow *fam;
    const LinkRow *link;
    double a;
    int n, ip;
    const double *design, *y, *t, *wt, *offset;
    double tol, eps;
    int max_iter;
    double given_scale;  // 0: estimate
};

struct Outputs {
    double *s, *dev, *df, *b;
    int *rank;
    double *se, *cov, *v;
    ptrdiff_t tdv;
    double *p;
};

double trials(const Problem &q, ptrdiff_t i) { return q.t != nullptr ? q.t[i] : 1.0; }
double prior(const Problem &q, ptrdiff_t i) { return q.wt != nullptr ? q.wt[i] : 1.0; }
double offset_of(const Problem &q, ptrdiff_t i) { return q.offset != nullptr ? q.offset[i] : 0.0; }

// The outcomes of the engine, one row each: the code raised (0 for the family's boundary code).
enum Outcome { kDone, kBoundary, kNotConverged, kZeroDof, kSvdFailed };

// Scratch of the engine: eta, mu, z, w (N each), the trial and previous coefficients (IP each).
struct Scratch {
    double *eta, *mu, *z, *w, *bnew, *bold;
};

// eta = offset + X b and mu = t g^-1(eta) for all rows, and the deviance; false when a fitted value
// of a row of positive weight leaves the family's range or the deviance is not finite.
bool evaluate(const Problem &q, const double *b, const Scratch &s, double *dev) {
    double d = 0.0;
    for (ptrdiff_t i = 0; i < q.n; ++i) {
        double e = offset_of(q, i);
        for (ptrdiff_t j = 0; j < q.ip; ++j) e += q.design[i + j * q.n] * b[j];
        const double t = trials(q, i), w = prior(q, i);
        s.eta[i] = e;
        s.mu[i] = t * q.link->mean(e, q.a);
        if (w > 0.0) {
            if (!q.fam->inside(s.mu[i], t)) return false;
            d += w * q.fam->deviance(q.y[i], s.mu[i], t);
        }
    }
    *dev = d;
    return std::isfinite(d);
}

// Working response and iterative weights at the current eta, mu.
void working(const Problem &q, const Scratch &s) {
    for (ptrdiff_t i = 0; i < q.n; ++i) {
        const double t = trials(q, i);
        const double dm = t * q.link->dmean(s.eta[i], q.a);
        const double var = q.fam->variance(s.mu[i], t);
        const double w = prior(q, i) * dm * dm / var;
        const bool usable = std::isfinite(w) && w > 0.0 && dm != 0.0;
        s.w[i] = usable ? w : 0.0;
        s.z[i] = s.eta[i] - offset_of(q, i) + (usable ? (q.y[i] - s.mu[i]) / dm : 0.0);
    }
}

double max_abs(int k, const double *x) {
    double m = 0.0;
    for (ptrdiff_t i = 0; i < k; ++i) m = std::fabs(x[i]) > m ? std::fabs(x[i]) : m;
    return m;
}

// Starting values: the family's start mean, or for a link that cannot take it (a normal response
// outside the link's domain) the weighted mean of y.
bool start(const Problem &q, const Scratch &s, double *dev) {
    double sw = 0.0, sy = 0.0;
    for (ptrdiff_t i = 0; i < q.n; ++i) {
        sw += prior(q, i);
        sy += prior(q, i) * q.y[i];
    }
    double d = 0.0;
    for (ptrdiff_t i = 0; i < q.n; ++i) {
        const double t = trials(q, i);
        double mu = q.fam->start(q.y[i], t);
        double e = q.link->eta(mu / t, q.a);
        if (!std::isfinite(e)) {
            mu = sy / sw;
            e = q.link->eta(mu / t, q.a);
        }
        if (!std::isfinite(e) || !q.fam->inside(mu, t)) return false;
        s.eta[i] = e;
        s.mu[i] = mu;
        if (prior(q, i) > 0.0) d += prior(q, i) * q.fam->deviance(q.y[i], mu, t);
    }
    *dev = d;
    return true;
}

Outcome irls(const Problem &q, WeightedLs &ls, const Scratch &s, double *b, double *dev, int *iterations) {
    double d = 0.0;
    if (!start(q, s, &d)) return kBoundary;
    bool converged = false;
    int it = 0;
    for (; it < q.max_iter && !converged; ++it) {
        working(q, s);
        if (ls.solve(q.design, q.n, s.w, s.z, q.tol, s.bnew) < 0) return kSvdFailed;
        double dnew = 0.0;
        bool ok = evaluate(q, s.bnew, s, &dnew);
        // A step whose fitted values leave the range is halved back towards the last good coefficients.
        for (int h = 0; !ok && it > 0 && h < kHalvings; ++h) {
            for (ptrdiff_t j = 0; j < q.ip; ++j) s.bnew[j] = 0.5 * (s.bnew[j] + b[j]);
            ok = evaluate(q, s.bnew, s, &dnew);
        }
        if (!ok) {
            if (it > 0) evaluate(q, b, s, &d);
            *dev = d;
            *iterations = it;
            return kBoundary;
        }
        double change = 0.0;
        for (ptrdiff_t j = 0; j < q.ip; ++j) {
            change = std::fabs(s.bnew[j] - b[j]) > change ? std::fabs(s.bnew[j] - b[j]) : change;
            b[j] = s.bnew[j];
        }
        converged = it > 0 && std::fabs(dnew - d) <= q.eps * (std::fabs(dnew) + q.eps) && change <= q.eps * max_abs(q.ip, b);
        d = dnew;
    }
    *dev = d;
    *iterations = it;
    return converged ? kDone : kNotConverged;
}

// The whole fit after the checks: iteration, then the outputs from the final weights.
Outcome fit(const Problem &q, const Outputs &o, int *iterations) {
    const ptrdiff_t n = q.n, ip = q.ip;
    WeightedLs ls(q.n, q.ip);
    double *store = static_cast<double *>(std::malloc(sizeof(double) * static_cast<std::size_t>(4 * n + 3 * ip)));
    if (!ls.ok() || store == nullptr) {
        std::free(store);
        return Outcome(-1);
    }
    const Scratch s{store, store + n, store + 2 * n, store + 3 * n, store + 4 * n, store + 4 * n + ip};
    double *b = s.bold + ip;
    for (ptrdiff_t j = 0; j < ip; ++j) b[j] = 0.0;
    double dev = 0.0;
    Outcome out = irls(q, ls, s, b, &dev, iterations);
    if (out == kSvdFailed || (out == kBoundary && *iterations == 0)) {
        std::free(store);
        return out;
    }
    // The covariance, leverages and residuals at the final fitted values.
    working(q, s);
    if (ls.solve(q.design, q.n, s.w, s.z, q.tol, s.bnew) < 0) {
        std::free(store);
        return kSvdFailed;
    }
    const int rank = ls.rank();
    long positive = 0;
    double pearson = 0.0;
    double *v = o.v;
    const ptrdiff_t tdv = o.tdv;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const double t = trials(q, i), w = prior(q, i), y = q.y[i], mu = s.mu[i];
        const double dm = t * q.link->dmean(s.eta[i], q.a), var = q.fam->variance(mu, t);
        double *row = s.bnew;
        for (ptrdiff_t j = 0; j < ip; ++j) row[j] = q.design[i + j * n];
        const double r = w * (y - mu) * (y - mu) / var;
        const double unit = q.fam->inside(mu, t) ? w * q.fam->deviance(y, mu, t) : 0.0;
        v[i] = s.eta[i];
        v[i + tdv] = mu;
        v[i + 2 * tdv] = s.w[i] * ls.quadratic(row);
        v[i + 3 * tdv] = s.w[i];
        v[i + 4 * tdv] = var > 0.0 ? (y - mu) * std::sqrt(w / var) : 0.0;
        v[i + 5 * tdv] = std::copysign(std::sqrt(unit > 0.0 ? unit : 0.0), y - mu);
        v[i + 6 * tdv] = dm != 0.0 ? (y - mu) / dm : 0.0;
        if (w > 0.0) {
            ++positive;
            pearson += r;
        }
    }
    for (ptrdiff_t j = 0; j < ip; ++j) o.b[j] = b[j];
    *o.dev = dev;
    *o.rank = rank;
    *o.df = static_cast<double>(positive - rank);
    const double *sv = ls.singular_values(), *vt = ls.right_vectors();
    for (ptrdiff_t k = 0; k < ip + ip * ip; ++k) o.p[k] = rank < ip ? (k < ip ? sv[k] : vt[k - ip]) : 0.0;
    double scale = 1.0;
    if (!q.fam->fixed_scale) scale = q.given_scale > 0.0 ? q.given_scale : (*o.df > 0.0 ? pearson / *o.df : 0.0);
    if (o.s != nullptr) *o.s = scale;
    ls.covariance(scale, o.cov);
    for (ptrdiff_t j = 0; j < ip; ++j) o.se[j] = std::sqrt(o.cov[j * (j + 1) / 2 + j]);
    std::free(store);
    if (out == kDone && !q.fam->fixed_scale && !(q.given_scale > 0.0) && !(*o.df > 0.0)) return kZeroDof;
    return out;
}

// A value of an array against its constraint: raises ZE_REAL_ARRAY_CONS and gives true when BAD.
bool bad_element(ZekFail *fail, const char *routine, bool bad, const char *name, ptrdiff_t i, double value,
                 const char *constraint) {
    if (bad) raise_formatted(fail, routine, ZE_REAL_ARRAY_CONS, name, static_cast<long>(i), value, constraint);
    return bad;
}

// The common entry of g02gac to g02gdc: the checks in argument order, the model design, the fit and
// its exit.
void glm_entry(Family family, int link, int mean, int n, const double *x, int tdx, int m, const int *sx, int ip,
               const double *y, const double *t, const double *wt, const double *offset, double a, double *s,
               const Outputs &o, double tol, int max_iter, double eps, ZekFail *fail) {
    const FamilyRow &fam = kFamilies[family];
    const char *kName = fam.routine;
    clear_fail(fail);
    const LinkRow *lk = nullptr;
    for (const LinkRow &r : kLinks) {
        const bool binomial = r.code == Zek_Logistic || r.code == Zek_Probit || r.code == Zek_CompLogLog;
        if (r.code == link && binomial == fam.binomial_links) lk = &r;
    }
    if (lk == nullptr) return raise_text(fail, kName, ZE_BAD_PARAM, "link");
    if (mean != Zek_MeanInclude && mean != Zek_MeanZero) return raise_text(fail, kName, ZE_BAD_PARAM, "mean");
    if (n < 1) return raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", "1", n);
    if (m < 1) return raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "1", m);
    if (ip < 1) return raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (ip > n) return raise_formatted(fail, kName, ZE_2_INT_ARG_GT, "ip", static_cast<long>(ip), "n", static_cast<long>(n), "ip", "n");
    if (raise_below(fail, kName, "tdx", tdx, "n", n) || raise_below(fail, kName, "tdv", o.tdv, "n", n)) return;
    if (!(tol >= 0.0)) return raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "tol", "0.0", tol);
    if (max_iter < 1) return raise_int_arg(fail, kName, ZE_INT_ARG_LT, "max_iter", "1", max_iter);
    if (!(eps >= 0.0) || !(eps < 1.0)) return raise_formatted(fail, kName, ZE_REAL_ARG_CONS, "eps", eps, "0.0 <= eps < 1.0");
    if (!fam.fixed_scale && !(*s >= 0.0 && std::isfinite(*s))) return raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "s", "0.0", *s);
    if (link == Zek_Exponent && (!(a != 0.0) || !std::isfinite(a))) return raise_plain(fail, kName, ZE_EX_POWER_EQ_ZERO);
    long chosen = 0;
    for (ptrdiff_t j = 0; j < m; ++j) {
        if (sx[j] < 0) return raise_formatted(fail, kName, ZE_IP_INCOMP_SX, static_cast<long>(ip));
        chosen += sx[j] > 0 ? 1 : 0;
    }
    if (chosen + (mean == Zek_MeanInclude ? 1 : 0) != ip) return raise_formatted(fail, kName, ZE_IP_INCOMP_SX, static_cast<long>(ip));
    for (ptrdiff_t j = 0; j < m; ++j) {
        for (ptrdiff_t i = 0; sx[j] > 0 && i < n; ++i) {
            const double xv = x[i + j * tdx];
            if (bad_element(fail, kName, !std::isfinite(xv), "x", i + j * tdx, xv, "x finite")) return;
        }
    }
    long positive = 0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const double w = wt != nullptr ? wt[i] : 1.0, yi = y[i], ti = t != nullptr ? t[i] : 1.0;
        if (bad_element(fail, kName, !std::isfinite(yi), "y", i, yi, "y finite")) return;
        if (t != nullptr && bad_element(fail, kName, !(ti > 0.0) || !std::isfinite(ti), "t", i, ti, "0.0 < t finite")) return;
        if (family == kBinomial && bad_element(fail, kName, yi < 0.0 || yi > ti, "y", i, yi, "0.0 <= y <= t")) return;
        if (family == kPoisson && bad_element(fail, kName, yi < 0.0, "y", i, yi, "y >= 0.0")) return;
        if (family == kGamma && bad_element(fail, kName, !(yi > 0.0), "y", i, yi, "y > 0.0")) return;
        if (bad_element(fail, kName, !(w >= 0.0) || !std::isfinite(w), "wt", i, w, "0.0 <= wt finite")) return;
        if (offset != nullptr && bad_element(fail, kName, !std::isfinite(offset[i]), "offset", i, offset[i], "offset finite")) return;
        positive += w > 0.0 ? 1 : 0;
    }
    if (positive < ip) return raise_plain(fail, kName, ZE_IP_GT_OBSERV);
    // The model design, N by IP: the mean column first, then the chosen columns of x.
    double *design = static_cast<double *>(std::malloc(sizeof(double) * static_cast<std::size_t>(n) * static_cast<std::size_t>(ip)));
    if (design == nullptr) return raise_plain(fail, kName, ZE_ALLOC_FAIL);
    ptrdiff_t k = 0;
    for (ptrdiff_t i = 0; mean == Zek_MeanInclude && i < n; ++i) design[i] = 1.0;
    k = mean == Zek_MeanInclude ? 1 : 0;
    for (ptrdiff_t j = 0; j < m; ++j) {
        if (sx[j] <= 0) continue;
        for (ptrdiff_t i = 0; i < n; ++i) design[i + k * n] = x[i + j * tdx];
        ++k;
    }
    const double e = eps > 0.0 ? eps : 1000.0 * precision();
    const Problem q{&fam, lk, a, n, ip, design, y, t, wt, offset, tol, e, max_iter, fam.fixed_scale ? 1.0 : *s};
    int iterations = 0;
    const Outcome out = fit(q, o, &iterations);
    std::free(design);
    switch (static_cast<int>(out)) {
    case kDone: return raise_success(fail, kName);
    case kBoundary: return raise_plain(fail, kName, fam.boundary);
    case kNotConverged: return raise_formatted(fail, kName, ZE_LSQ_ITER_NOT_CONV, static_cast<long>(iterations));
    case kZeroDof: return raise_plain(fail, kName, ZE_ZERO_DOF_ERROR);
    case kSvdFailed: return raise_plain(fail, kName, ZE_SVD_NOT_CONV);
    default: return raise_plain(fail, kName, ZE_ALLOC_FAIL);
    }
}


// Element (i, j) of a covariance packed by columns (upper triangle).
double packed(const double *cov, ptrdiff_t i, ptrdiff_t j) {
    return i <= j ? cov[j * (j + 1) / 2 + i] : cov[i * (i + 1) / 2 + j];
}

// G (K by K) := its LU factors with partial pivoting in PIV; false when a pivot is at most SMALL.
bool lu_factor(ptrdiff_t k, double *g, int *piv, double small) {
    for (ptrdiff_t j = 0; j < k; ++j) {
        ptrdiff_t r = j;
        for (ptrdiff_t i = j + 1; i < k; ++i) r = std::fabs(g[i + j * k]) > std::fabs(g[r + j * k]) ? i : r;
        piv[j] = static_cast<int>(r);
        if (!(std::fabs(g[r + j * k]) > small)) return false;
        for (ptrdiff_t c = 0; c < k; ++c) {
            const double tmp = g[j + c * k];
            g[j + c * k] = g[r + c * k];
            g[r + c * k] = tmp;
        }
        for (ptrdiff_t i = j + 1; i < k; ++i) {
            g[i + j * k] /= g[j + j * k];
            for (ptrdiff_t c = j + 1; c < k; ++c) g[i + c * k] -= g[i + j * k] * g[j + c * k];
        }
    }
    return true;
}

// X := G^-1 X for one column X (K) with the factors of lu_factor.
void lu_solve(ptrdiff_t k, const double *g, const int *piv, double *x) {
    for (ptrdiff_t j = 0; j < k; ++j) {
        const double tmp = x[j];
        x[j] = x[piv[j]];
        x[piv[j]] = tmp;
        for (ptrdiff_t i = j + 1; i < k; ++i) x[i] -= g[i + j * k] * x[j];
    }
    for (ptrdiff_t j = k - 1; j >= 0; --j) {
        x[j] /= g[j + j * k];
        for (ptrdiff_t i = 0; i < j; ++i) x[i] -= g[i + j * k] * x[j];
    }
}

} // namespace

} // namespace zek

extern "C" {

void g02gac(int link, int mean, int n, const double x[], int tdx, int m, const int sx[], int ip, const double y[],
            const double wt[], const double offset[], double a, double *s, double *dev, double *df, double b[],
            int *rank, double se[], double cov[], double v[], int tdv, double p[], double tol, int max_iter, double eps,
            ZekFail *fail) {
    const zek::Outputs o{s, dev, df, b, rank, se, cov, v, tdv, p};
    zek::glm_entry(zek::kNormal, link, mean, n, x, tdx, m, sx, ip, y, nullptr, wt, offset, a, s, o, tol, max_iter, eps, fail);
}

void g02gbc(int link, int mean, int n, const double x[], int tdx, int m, const int sx[], int ip, const double y[],
            const double t[], const double wt[], const double offset[], double *dev, double *df, double b[], int *rank,
            double se[], double cov[], double v[], int tdv, double p[], double tol, int max_iter, double eps,
            ZekFail *fail) {
    const zek::Outputs o{nullptr, dev, df, b, rank, se, cov, v, tdv, p};
    double s = 1.0;
    if (t == nullptr) {
        zek::clear_fail(fail);
        return zek::raise_text(fail, "g02gbc", ZE_NULL_ARRAY, "t");
    }
    zek::glm_entry(zek::kBinomial, link, mean, n, x, tdx, m, sx, ip, y, t, wt, offset, 0.0, &s, o, tol, max_iter, eps, fail);
}

void g02gcc(int link, int mean, int n, const double x[], int tdx, int m, const int sx[], int ip, const double y[],
            const double wt[], const double offset[], double a, double *dev, double *df, double b[], int *rank,
            double se[], double cov[], double v[], int tdv, double p[], double tol, int max_iter, double eps,
            ZekFail *fail) {
    const zek::Outputs o{nullptr, dev, df, b, rank, se, cov, v, tdv, p};
    double s = 1.0;
    zek::glm_entry(zek::kPoisson, link, mean, n, x, tdx, m, sx, ip, y, nullptr, wt, offset, a, &s, o, tol, max_iter, eps, fail);
}

void g02gdc(int link, int mean, int n, const double x[], int tdx, int m, const int sx[], int ip, const double y[],
            const double wt[], const double offset[], double a, double *s, double *dev, double *df, double b[],
            int *rank, double se[], double cov[], double v[], int tdv, double p[], double tol, int max_iter, double eps,
            ZekFail *fail) {
    const zek::Outputs o{s, dev, df, b, rank, se, cov, v, tdv, p};
    zek::glm_entry(zek::kGamma, link, mean, n, x, tdx, m, sx, ip, y, nullptr, wt, offset, a, s, o, tol, max_iter, eps, fail);
}

void g02gkc(int ip, int iconst, const double p[], const double c[], int tdc, double b[], double se[], double cov[],
            ZekFail *fail) {
    static const char *const kName = "g02gkc";
    zek::clear_fail(fail);
    if (!zek::constraint_args_ok(fail, kName, ip, iconst, tdc)) return;
    using std::ptrdiff_t;
    const ptrdiff_t n = ip, k = iconst, rank = ip - iconst;
    for (ptrdiff_t j = 0; j < k; ++j) {
        for (ptrdiff_t i = 0; i < n; ++i) {
            if (zek::bad_element(fail, kName, !std::isfinite(c[i + j * tdc]), "c", i + j * tdc, c[i + j * tdc], "c finite")) return;
        }
    }
    const double *sv = p, *vt = p + n;
    if (!(sv[rank - 1] > 0.0)) return zek::raise_plain(fail, kName, ZE_RANK_CHANGED);
    // G = c'N, then K = G^-1 c' (K by IP) and M = I - N K.
    double *g = static_cast<double *>(std::malloc(sizeof(double) * static_cast<std::size_t>(k * k + k * n + 2 * n * n + n)));
    int *piv = static_cast<int *>(std::malloc(sizeof(int) * static_cast<std::size_t>(k)));
    if (g == nullptr || piv == nullptr) {
        std::free(g);
        std::free(piv);
        return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    }
    double *kk = g + k * k, *mm = kk + k * n, *full = mm + n * n, *tmp = full + n * n;
    for (ptrdiff_t a = 0; a < k; ++a) {
        for (ptrdiff_t l = 0; l < k; ++l) {
            double s = 0.0;
            for (ptrdiff_t i = 0; i < n; ++i) s += c[i + a * tdc] * vt[(rank + l) + i * n];
            g[a + l * k] = s;
        }
    }
    // N has orthonormal columns, so c'N is measured against the size of c: a pivot below the square
    // root of the machine precision times it means a constraint (nearly) blind to the null space.
    double csize = 0.0;
    for (ptrdiff_t a = 0; a < k * n; ++a) csize = std::fmax(csize, std::fabs(c[a % n + (a / n) * tdc]));
    if (!zek::lu_factor(k, g, piv, std::sqrt(zek::precision()) * csize * static_cast<double>(n))) {
        std::free(g);
        std::free(piv);
        return zek::raise_plain(fail, kName, ZE_MAT_NOT_FULL_RANK);
    }
    for (ptrdiff_t i = 0; i < n; ++i) {
        for (ptrdiff_t a = 0; a < k; ++a) kk[a + i * k] = c[i + a * tdc];
        zek::lu_solve(k, g, piv, kk + i * k);
    }
    for (ptrdiff_t j = 0; j < n; ++j) {
        for (ptrdiff_t i = 0; i < n; ++i) {
            double s = i == j ? 1.0 : 0.0;
            for (ptrdiff_t l = 0; l < k; ++l) s -= vt[(rank + l) + i * n] * kk[l + j * k];
            mm[i + j * n] = s;
        }
    }
    // b := M b; cov := M cov M'.
    for (ptrdiff_t i = 0; i < n; ++i) {
        double s = 0.0;
        for (ptrdiff_t j = 0; j < n; ++j) s += mm[i + j * n] * b[j];
        tmp[i] = s;
    }
    for (ptrdiff_t i = 0; i < n; ++i) b[i] = tmp[i];
    for (ptrdiff_t j = 0; j < n; ++j) {
        for (ptrdiff_t i = 0; i < n; ++i) {
            double s = 0.0;
            for (ptrdiff_t l = 0; l < n; ++l) s += mm[i + l * n] * zek::packed(cov, l, j);
            full[i + j * n] = s;
        }
    }
    for (ptrdiff_t j = 0; j < n; ++j) {
        for (ptrdiff_t i = 0; i <= j; ++i) {
            double s = 0.0;
            for (ptrdiff_t l = 0; l < n; ++l) s += full[i + l * n] * mm[j + l * n];
            cov[j * (j + 1) / 2 + i] = s;
        }
        se[j] = std::sqrt(cov[j * (j + 1) / 2 + j] > 0.0 ? cov[j * (j + 1) / 2 + j] : 0.0);
    }
    std::free(g);
    std::free(piv);
    zek::raise_success(fail, kName);
}

void g02gnc(int ip, int rank, const double b[], const double cov[], const double p[], const double f[], int *est,
            double *stat, double *sestat, double *z, double tol, ZekFail *fail) {
    static const char *const kName = "g02gnc";
    zek::clear_fail(fail);
    if (ip < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (rank < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "rank", "1", rank);
    if (rank > ip) {
        return zek::raise_formatted(fail, kName, ZE_2_INT_ARG_GT, "rank", static_cast<long>(rank), "ip",
                                    static_cast<long>(ip), "rank", "ip");
    }
    if (!(tol >= 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "tol", "0.0", tol);
    using std::ptrdiff_t;
    double norm = 0.0;
    for (ptrdiff_t i = 0; i < ip; ++i) {
        if (zek::bad_element(fail, kName, !std::isfinite(f[i]), "f", i, f[i], "f finite")) return;
        norm += f[i] * f[i];
    }
    const double t = tol > 0.0 ? tol : std::sqrt(zek::precision());
    double null = 0.0;
    for (ptrdiff_t l = rank; l < ip; ++l) {
        double s = 0.0;
        for (ptrdiff_t i = 0; i < ip; ++i) s += p[ip + l + i * ip] * f[i];
        null += s * s;
    }
    *est = std::sqrt(null) <= t * std::sqrt(norm) ? 1 : 0;
    double value = 0.0, var = 0.0;
    for (ptrdiff_t i = 0; *est != 0 && i < ip; ++i) {
        value += f[i] * b[i];
        for (ptrdiff_t j = 0; j < ip; ++j) var += f[i] * zek::packed(cov, i, j) * f[j];
    }
    *stat = value;
    *sestat = std::sqrt(var > 0.0 ? var : 0.0);
    *z = *sestat > 0.0 ? value / *sestat : 0.0;
    zek::raise_success(fail, kName);
}

} // extern "C"
