// Integer QP tests: a small problem in dense form and one call of H02CEF (or H02CBF with a Hessian
// routine) on it, with the store from H02WBF, option lines through H02CDF, the documented minimum
// workspace and the host text captured.
#ifndef ZEK_TESTS_INTEGER_QP_TEST_SUPPORT_H
#define ZEK_TESTS_INTEGER_QP_TEST_SUPPORT_H

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "zek2/h02.h"

namespace zek_test {

using Vec = std::vector<double>;

struct Iqp {  // N variables in [lower, upper], all integer; M rows, free; H, CVEC zero
    int n, m;
    Vec a = Vec(static_cast<std::size_t>(std::max(m, 1) * n)), bl = Vec(static_cast<std::size_t>(n + m), -1e20),
        bu = Vec(static_cast<std::size_t>(n + m), 1e20), cvec = Vec(static_cast<std::size_t>(n)),
        h = Vec(static_cast<std::size_t>(n * n));
    std::vector<int> intvar = std::vector<int>(static_cast<std::size_t>(n), 1);
    Iqp(int n_, int m_, double lower, double upper) : n(n_), m(m_) {
        std::fill_n(bl.begin(), n, lower);
        std::fill_n(bu.begin(), n, upper);
    }
    double &at(int i, int j) { return a[static_cast<std::size_t>((i - 1) + (j - 1) * std::max(m, 1))]; }
    double objective(const Vec &x) const {
        double f = 0.0;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) f += x[i] * (0.5 * h[i + j * n] * x[j] + (i == j ? cvec[i] : 0.0));
        return f;
    }
    bool feasible(const Vec &x, double tol) const {
        for (int k = 0; k < n + m; ++k) {
            double v = k < n ? x[k] : 0.0;
            for (int j = 0; k >= n && j < n; ++j) v += a[(k - n) + j * std::max(m, 1)] * x[j];
            if (v < bl[k] - tol || v > bu[k] + tol) return false;
        }
        return true;
    }
};

// H X for H02CBF; IUSER[0] counts the calls, and from call IUSER[1] (when positive) every product is NaN.
inline void ZEK_CALLBACK dense_product(const int *n, const int *, const double *h, const int *ldh, const double *x,
                                       double *hx, const int *, int *iuser, double *) {
    ++iuser[0];
    for (int i = 0; i < *n; ++i) {
        hx[i] = iuser[1] > 0 && iuser[0] >= iuser[1] ? NAN : 0.0;
        for (int j = 0; j < *n; ++j) hx[i] += h[i + j * *ldh] * x[j];
    }
}

struct IqpCall {
    int itmax = 0, msglvl = 0, maxnod = 0, intfst = 0, maxdpt = 30, n = -99, m = -99, ldh = -1, liwork = -1,
        lrwork = -1;
    double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0, objective = 0.0;
    bool callback = false;
    std::vector<std::string> options;  // H02CDF lines
    Vec x;                             // in: the start (zeros when empty); out: the solution
    std::vector<int> iuser = {0, 0};
    std::string captured;
    static int min_liwork(int n, int m, int s) { return (n + m + 25) * s + 5 * n + m + 4; }
    static int min_lrwork(int n, int m, int s) { return (n + 1) * s + 20 * n + 12 * m + (m > 0 ? 4 : 3) * n * n; }
    int run(const Iqp &p) {
        const int nn = n != -99 ? n : p.n, mm = m != -99 ? m : p.m, lda = std::max(p.m, 1);
        const int ld = ldh >= 0 ? ldh : p.n, li = liwork >= 0 ? liwork : min_liwork(nn, mm, maxdpt),
                  lr = lrwork >= 0 ? lrwork : min_lrwork(nn, mm, maxdpt), lc = 1, ll = 120, lis = 610, lrs = 475, list = 0;
        std::vector<int> iwork(static_cast<std::size_t>(std::max(li, 1))), lwsav(120), iwsav(610);
        Vec rwork(static_cast<std::size_t>(std::max(lr, 1))), rwsav(475);
        std::vector<char> cwsav(80);
        int ifail = 0;
        H02WBF(callback ? "H02CBF" : "H02CEF", cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &lis,
               rwsav.data(), &lrs, &ifail, 6, 80);
        for (const std::string &o : options)
            H02CDF(o.c_str(), &list, lwsav.data(), iwsav.data(), rwsav.data(), &ifail, static_cast<int>(o.size()));
        x.resize(static_cast<std::size_t>(p.n), 0.0);
        ifail = -1;
        OutputCapture capture;
        if (callback)
            H02CBF(&itmax, &msglvl, &nn, &mm, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.intvar.data(),
                   p.cvec.data(), p.h.data(), &ld, dense_product, nullptr, &maxnod, &intfst, &maxdpt, &toliv, &tolfes,
                   &bigbnd, x.data(), &objective, iwork.data(), &li, rwork.data(), &lr, iuser.data(), nullptr,
                   lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
        else
            H02CEF(&itmax, &msglvl, &nn, &mm, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.intvar.data(),
                   p.cvec.data(), p.h.data(), &ld, &maxnod, &intfst, &maxdpt, &toliv, &tolfes, &bigbnd, x.data(),
                   &objective, iwork.data(), &li, rwork.data(), &lr, lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
        for (const std::string &line : capture.host()) captured += line + "\n";
        return ifail;
    }
};

} // namespace zek_test

#endif
