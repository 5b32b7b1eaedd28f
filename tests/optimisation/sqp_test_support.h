// Helpers of the QP and SQP tests: problems in the arrays E04NFA and E04NCA take and calls of the two
// solvers on fresh state arrays; a nonlinear program as C++ functions, the callbacks E04UCA calls (with
// faults that a test can plant), a run on fresh state arrays, and the first-order conditions.
#ifndef ZEK_TESTS_SQP_TEST_SUPPORT_H
#define ZEK_TESTS_SQP_TEST_SUPPORT_H

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "option_test_support.h"
#include "zek2/e04.h"

namespace zek_test::qp {

constexpr double kBig = 1e20;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kHuge = std::numeric_limits<double>::max();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

// Whether a captured host line begins with PREFIX.
inline bool has_line(const std::vector<std::string> &lines, const std::string &prefix) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string &h) { return h.rfind(prefix, 0) == 0; });
}

struct Qp {
    int n = 0, m = 0;
    std::vector<double> a, bl, bu, c, h;  // a: m by n (ld max(1,m)); h: n by n
};

struct QpOut {
    int ifail = -99, iter = -1;
    int products = 0;  // calls of the Hessian routine
    double obj = 0.0;
    std::vector<int> istate;
    std::vector<double> x, ax, clamda;
};

struct Session : OptionState {
    using OptionState::OptionState;
    // One option line through E04NHF (E04NFA) or E04NEF (E04NCA).
    void option(const std::string &s, bool nfa = true) {
        zek_test::option(*this, nfa ? zek::e04::Family::NFA : zek::e04::Family::NCA, s);
    }
};

// H x from H(LDH, N); IUSER(1) counts the calls.  hessian_mode 1 makes it return NaN, 2 leave HX unset,
// 3 return NaN from the fourth call on (a product asked for in the middle of a run).
inline int hessian_mode = 0;
extern "C" inline void hessian_product(const int *n, const int *, const double *h, const int *ldh, const double *x,
                                       double *hx, const int *, int *iuser, double *) {
    ++iuser[0];
    if (hessian_mode == 2) return;
    for (int i = 0; i < *n; ++i) {
        hx[i] = 0.0;
        for (int j = 0; j < *n; ++j) hx[i] += h[i + j * *ldh] * x[j];
        if (hessian_mode == 1 || (hessian_mode == 3 && iuser[0] > 3)) hx[i] = std::nan("");
    }
}

// Array dimensions a call may spoil (-1: the right value).
struct Dims {
    int lda = -1, ldh = -1, liwork = -1, lwork = -1;
};

inline QpOut run_nfa(Session &s, const Qp &p, std::vector<double> x0, Dims d = {}) {
    QpOut r;
    const int n = p.n, m = p.m, lda = d.lda < 0 ? std::max(1, m) : d.lda, ldh = d.ldh < 0 ? n : d.ldh;
    const std::size_t nn = m < 0 ? 1 : static_cast<std::size_t>(std::max(n, 0)) + m;
    r.istate.assign(nn, 0);
    r.x = std::move(x0);
    r.ax.assign(std::max(m, 1), 0.0);
    r.clamda.assign(nn, 0.0);
    int liwork = d.liwork < 0 ? 2 * n + 3 : d.liwork, lwork = d.lwork < 0 ? 13 * n + 5 * m + 4 * n * n : d.lwork;
    std::vector<int> iwork(liwork);
    std::vector<double> work(std::max(lwork, 1));
    int iuser[1] = {0};
    double ruser[1] = {0.0};
    r.ifail = 1;
    std::vector<double> a = p.a.empty() ? std::vector<double>(1, 0.0) : p.a;
    E04NFA(&n, &m, a.data(), &lda, p.bl.data(), p.bu.data(), p.c.data(), p.h.data(), &ldh, hessian_product, nullptr,
           r.istate.data(), r.x.data(), &r.iter, &r.obj, r.ax.data(), r.clamda.data(), iwork.data(), &liwork,
           work.data(), &lwork, iuser, ruser, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &r.ifail);
    r.products = iuser[0];
    return r;
}

struct Ls {
    int m = 0, n = 0, nclin = 0;
    std::vector<double> a, b, c, bl, bu, cvec;  // a: m by n; c: nclin by n
};

struct LsOut : QpOut {
    std::vector<int> kx;
};

inline LsOut run_nca(Session &s, Ls p, std::vector<double> x0, int lwork = -1, std::vector<int> kx = {}) {
    LsOut r;
    const int m = p.m, n = p.n, nclin = p.nclin, ldc = std::max(1, nclin), lda = std::max(1, m);
    r.istate.assign(n + nclin, 0);
    r.kx = kx.empty() ? std::vector<int>(n, 0) : kx;
    r.x = std::move(x0);
    r.clamda.assign(n + nclin, 0.0);
    if (p.c.empty()) p.c.assign(1, 0.0);
    if (p.cvec.empty()) p.cvec.assign(n, 0.0);
    int liwork = 2 * n + 3;
    if (lwork < 0) lwork = 17 * n + 6 * nclin + m + 4 * n * n + std::max(m, n) * n;
    std::vector<int> iwork(liwork);
    std::vector<double> work(std::max(lwork, 1));
    r.ifail = 1;
    E04NCA(&m, &n, &nclin, &ldc, &lda, p.c.data(), p.bl.data(), p.bu.data(), p.cvec.data(), r.istate.data(),
           r.kx.data(), r.x.data(), p.a.data(), p.b.data(), &r.iter, &r.obj, r.clamda.data(), iwork.data(), &liwork,
           work.data(), &lwork, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &r.ifail);
    return r;
}

} // namespace zek_test::qp

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
