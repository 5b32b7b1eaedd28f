// Helpers of the SQP tests: a nonlinear program as C++ functions, the callbacks E04UCA calls (with
// faults that a test can plant), a run on fresh state arrays, and the first-order conditions.
#ifndef ZEK_TESTS_SQP_TEST_SUPPORT_H
#define ZEK_TESTS_SQP_TEST_SUPPORT_H

#include <functional>

#include "qp_test_support.h"

namespace zek_test::sqp {

struct Nlp {
    int n = 0, nclin = 0, ncnln = 0;
    std::vector<double> a, bl, bu, x0;  // a: nclin by n
    std::function<double(const double *x, double *g)> f;
    std::function<void(const double *x, double *c, double *jac /* ncnln by n, ld ncnln */)> con;
    double fstar = 0.0;
    std::vector<double> xstar;
};

// Hock-Schittkowski 71: two nonlinear rows (one an equality), bounds on every variable.
inline Nlp hs071() {
    Nlp p;
    p.n = 4, p.ncnln = 2, p.x0 = {1, 5, 5, 1};
    p.bl = {1, 1, 1, 1, 25, 40}, p.bu = {5, 5, 5, 5, qp::kBig, 40};
    p.f = [](const double *x, double *g) {
        g[0] = x[3] * (2 * x[0] + x[1] + x[2]);
        g[1] = x[0] * x[3];
        g[2] = x[0] * x[3] + 1;
        g[3] = x[0] * (x[0] + x[1] + x[2]);
        return x[0] * x[3] * (x[0] + x[1] + x[2]) + x[2];
    };
    p.con = [](const double *x, double *c, double *j) {
        c[0] = x[0] * x[1] * x[2] * x[3];
        c[1] = x[0] * x[0] + x[1] * x[1] + x[2] * x[2] + x[3] * x[3];
        j[0] = x[1] * x[2] * x[3];
        j[2] = x[0] * x[2] * x[3];
        j[4] = x[0] * x[1] * x[3];
        j[6] = x[0] * x[1] * x[2];
        for (int k = 0; k < 4; ++k) j[1 + 2 * k] = 2 * x[k];
    };
    p.fstar = 17.0140173, p.xstar = {1.0, 4.7429994, 3.8211503, 1.3794082};
    return p;
}

// Faults the callbacks plant.
struct Faults {
    int nan_after = -1;       // objective values are NaN from this call on
    int stop_after = -1;      // the objective sets MODE -1 at this call
    int skip_gradient = -1;   // this gradient element (0-based) is never set
    int skip_jacobian = -1;   // this Jacobian column of row 0 is never set
    int wrong_gradient = -1;  // this gradient element is off by 1 + 10% of its value
    int wrong_jacobian = -1;  // this column of Jacobian row 0 is off likewise
};

// One planted fault, for table rows: fault(&Faults::skip_gradient, 3).
inline Faults fault(int Faults::*which, int value) {
    Faults f;
    f.*which = value;
    return f;
}

inline const Nlp *current = nullptr;
inline Faults faults;
inline int objective_calls = 0;

extern "C" inline void nlp_objfun(int *mode, const int *n, const double *x, double *objf, double *objgrd,
                                  const int *, int *, double *) {
    const int call = objective_calls++;
    if (faults.stop_after >= 0 && call >= faults.stop_after) {
        *mode = -1;
        return;
    }
    std::vector<double> g(*n);
    *objf = current->f(x, g.data());
    if (faults.nan_after >= 0 && call >= faults.nan_after) *objf = std::nan("");
    if (*mode == 2)
        for (int j = 0; j < *n; ++j) {
            if (j == faults.skip_gradient) continue;
            objgrd[j] = g[j] + (j == faults.wrong_gradient ? 1.0 + 0.1 * g[j] : 0.0);
        }
}

extern "C" inline void nlp_confun(int *mode, const int *ncnln, const int *n, const int *ldcj, int *, const double *x,
                                  double *c, double *cjac, const int *, int *, double *) {
    std::vector<double> jac(static_cast<std::size_t>(*ncnln) * *n);
    current->con(x, c, jac.data());
    if (*mode == 2)
        for (int j = 0; j < *n; ++j)
            for (int i = 0; i < *ncnln; ++i) {
                if (i == 0 && j == faults.skip_jacobian) continue;
                cjac[i + j * *ldcj] = jac[i + j * *ncnln] + (i == 0 && j == faults.wrong_jacobian ? 1.0 + 0.1 * jac[i + j * *ncnln] : 0.0);
            }
}

inline std::ptrdiff_t uca_lwork(int n, int l, int c, int k = 1) {
    const std::ptrdiff_t m = l + c;
    return std::max<std::ptrdiff_t>(1, m) * (n + 1) + 3 * (k + c) * n + 2 * (n + m) + 8 * c + 3 * k + 24 * n + 5 * m +
           (m == 0 ? 3 : 4) * static_cast<std::ptrdiff_t>(n) * n;
}

struct Out {
    int ifail = -99, iter = -1;
    double objf = 0.0;
    std::vector<int> istate;
    std::vector<double> x, c, cjac, clamda, objgrd, r;
};

// Arguments a call may spoil (kKeep: the right value).
constexpr int kKeep = -99999;
struct Spoil {
    int n = kKeep, nclin = kKeep, ncnln = kKeep, lda = kKeep, ldcj = kKeep, ldr = kKeep, liwork = kKeep, lwork = kKeep;
    int null_routine = 0;  // 1: OBJFUN null, 2: CONFUN null
};

// With `from`, its ISTATE, CLAMDA, R and X seed the run (for a warm start).
inline Out run_uca(const Nlp &p, const std::vector<std::string> &options = {}, Faults fl = {}, Spoil s = {},
                   const Out *from = nullptr) {
    qp::Session session("E04UCA");
    for (const std::string &o : options) zek_test::option(session, zek::e04::Family::UCA, o);
    current = &p;
    faults = fl;
    objective_calls = 0;
    const auto pick = [](int spoilt, int right) { return spoilt == kKeep ? right : spoilt; };
    const int n = pick(s.n, p.n), nclin = pick(s.nclin, p.nclin), ncnln = pick(s.ncnln, p.ncnln);
    const int lda = pick(s.lda, std::max(1, p.nclin)), ldcj = pick(s.ldcj, std::max(1, p.ncnln)), ldr = pick(s.ldr, p.n);
    const int liwork = pick(s.liwork, 2 * p.n + 3 + p.ncnln);
    const int lwork = pick(s.lwork, static_cast<int>(uca_lwork(p.n, p.nclin, p.ncnln)));
    const std::size_t nt = static_cast<std::size_t>(p.n + p.nclin + p.ncnln);
    Out r = from != nullptr ? *from : Out{};
    if (from == nullptr) {
        r.istate.assign(nt, 0);
        r.clamda.assign(nt, 0.0);
        r.r.assign(static_cast<std::size_t>(p.n) * p.n, 0.0);
        r.x = p.x0;
    }
    r.c.assign(std::max(1, p.ncnln), 0.0);
    r.cjac.assign(static_cast<std::size_t>(std::max(1, p.ncnln)) * p.n, 0.0);
    r.objgrd.assign(p.n, 0.0);
    std::vector<double> a = p.a.empty() ? std::vector<double>(1, 0.0) : p.a;
    std::vector<int> iwork(std::max(liwork, 1));
    std::vector<double> work(std::max(lwork, 1));
    int iuser[1] = {0};
    double ruser[1] = {0.0};
    r.ifail = 1;
    E04UCA(&n, &nclin, &ncnln, &lda, &ldcj, &ldr, a.data(), p.bl.data(), p.bu.data(),
           s.null_routine == 2 ? nullptr : nlp_confun, nullptr, s.null_routine == 1 ? nullptr : nlp_objfun, nullptr, &r.iter, r.istate.data(), r.c.data(), r.cjac.data(), r.clamda.data(), &r.objf, r.objgrd.data(),
           r.r.data(), r.x.data(), iwork.data(), &liwork, work.data(), &lwork, iuser, ruser, session.lwsav.data(),
           session.iwsav.data(), session.rwsav.data(), &r.ifail);
    return r;
}

// The first-order conditions at the result: the largest entry of g - sum lambda_j grad(constraint j),
// of a multiplier of the wrong sign, of lambda times the distance to its bound, and of a violation.
struct Kkt {
    double stationarity = 0.0, sign = 0.0, complementarity = 0.0, violation = 0.0;
};
inline Kkt kkt(const Nlp &p, const Out &r) {
    Kkt k;
    const int n = p.n, l = p.nclin, nc = p.ncnln;
    std::vector<double> g(n), c(std::max(nc, 1)), jac(static_cast<std::size_t>(std::max(nc, 1)) * n), res(n);
    p.f(r.x.data(), g.data());
    if (nc > 0) p.con(r.x.data(), c.data(), jac.data());
    for (int j = 0; j < n; ++j) res[j] = g[j] - r.clamda[j];
    for (int i = 0; i < l + nc; ++i)
        for (int j = 0; j < n; ++j) res[j] -= r.clamda[n + i] * (i < l ? p.a[i + j * l] : jac[(i - l) + j * nc]);
    for (int j = 0; j < n; ++j) k.stationarity = std::max(k.stationarity, std::fabs(res[j]));
    for (int j = 0; j < n + l + nc; ++j) {
        double v;
        if (j < n) v = r.x[j];
        else if (j < n + l) {
            v = 0.0;
            for (int q = 0; q < n; ++q) v += p.a[(j - n) + q * l] * r.x[q];
        } else v = c[j - n - l];
        const double lam = r.clamda[j];
        // A multiplier on an infinite bound is a sign fault (below), not a complementarity one.
        if (lam > 0.0 && p.bl[j] > -qp::kBig) k.complementarity = std::max(k.complementarity, lam * std::fabs(v - p.bl[j]));
        if (lam < 0.0 && p.bu[j] < qp::kBig) k.complementarity = std::max(k.complementarity, -lam * std::fabs(v - p.bu[j]));
        if (p.bl[j] <= -qp::kBig && lam > 0.0) k.sign = std::max(k.sign, lam);
        if (p.bu[j] >= qp::kBig && lam < 0.0) k.sign = std::max(k.sign, -lam);
        k.violation = std::max({k.violation, p.bl[j] - v, v - p.bu[j]});
    }
    return k;
}

} // namespace zek_test::sqp

#endif
