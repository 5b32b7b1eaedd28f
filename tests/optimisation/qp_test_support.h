// Helpers of the quadratic programming tests: problems in the arrays E04NFA and E04NCA take, and calls
// of the two solvers on fresh state arrays.
#ifndef ZEK_TESTS_QP_TEST_SUPPORT_H
#define ZEK_TESTS_QP_TEST_SUPPORT_H

#include <algorithm>
#include <cmath>
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

#endif
