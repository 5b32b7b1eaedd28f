#include "integer_qp_test_support.h"

#include <algorithm>
#include <limits>

#include "frame/host_capture.h"
#include "zek2/h02.h"

namespace zek_test {

namespace {

// HX := H X with H the full symmetric matrix of RUSER's caller; IUSER[0] counts the calls and IUSER[1],
// when positive, is the call from which every product is NaN.
void ZEK_CALLBACK dense_product(const int *n, const int *, const double *h, const int *ldh, const double *x,
                                double *hx, const int *, int *iuser, double *) {
    ++iuser[0];
    for (int i = 0; i < *n; ++i) {
        double s = 0.0;
        for (int j = 0; j < *n; ++j) s += h[i + static_cast<std::ptrdiff_t>(j) * *ldh] * x[j];
        hx[i] = iuser[1] > 0 && iuser[0] >= iuser[1] ? std::numeric_limits<double>::quiet_NaN() : s;
    }
}

} // namespace

Iqp Iqp::box(int n, int m, double lower, double upper) {
    Iqp p;
    p.n = n;
    p.m = m;
    p.a.assign(static_cast<std::size_t>(p.lda() * n), 0.0);
    p.bl.assign(static_cast<std::size_t>(n + m), -1e20);
    p.bu.assign(static_cast<std::size_t>(n + m), 1e20);
    std::fill_n(p.bl.begin(), n, lower);
    std::fill_n(p.bu.begin(), n, upper);
    p.cvec.assign(static_cast<std::size_t>(n), 0.0);
    p.h.assign(static_cast<std::size_t>(n * n), 0.0);
    p.intvar.assign(static_cast<std::size_t>(n), 1);
    return p;
}

double Iqp::objective(const double *x) const {
    double f = 0.0;
    for (int i = 0; i < n; ++i) {
        f += cvec[static_cast<std::size_t>(i)] * x[i];
        for (int j = 0; j < n; ++j) f += 0.5 * x[i] * h[static_cast<std::size_t>(i + j * n)] * x[j];
    }
    return f;
}

bool Iqp::feasible(const double *x, double tol) const {
    for (int j = 0; j < n; ++j)
        if (x[j] < bl[static_cast<std::size_t>(j)] - tol || x[j] > bu[static_cast<std::size_t>(j)] + tol) return false;
    for (int i = 0; i < m; ++i) {
        double v = 0.0;
        for (int j = 0; j < n; ++j) v += a[static_cast<std::size_t>(i + j * lda())] * x[j];
        if (v < bl[static_cast<std::size_t>(n + i)] - tol || v > bu[static_cast<std::size_t>(n + i)] + tol) return false;
    }
    return true;
}

long long iqp_liwork(int n, int m, int maxdpt) {
    return (static_cast<long long>(n) + m + 25) * maxdpt + 5LL * n + m + 4;
}

long long iqp_lrwork(int n, int m, int maxdpt) {
    const long long nn = static_cast<long long>(n) * n;
    return (static_cast<long long>(n) + 1) * maxdpt + 20LL * n + 12LL * m + (m > 0 ? 4 : 3) * nn;
}

int IqpCall::run(const Iqp &p) {
    const int n = n_override != kUnset ? n_override : p.n, m = m_override != kUnset ? m_override : p.m;
    const int li = liwork >= 0 ? liwork : static_cast<int>(iqp_liwork(n, m, maxdpt));
    const int lr = lrwork >= 0 ? lrwork : static_cast<int>(iqp_lrwork(n, m, maxdpt));
    std::vector<int> iwork(static_cast<std::size_t>(std::max(li, 1)), -7);
    std::vector<double> rwork(static_cast<std::size_t>(std::max(lr, 1)), -7.0);
    std::vector<char> cwsav(80, ' ');
    std::vector<int> lwsav(120, 0), iwsav(610, 0);
    std::vector<double> rwsav(475, 0.0);
    const int lc = 1, ll = 120, lis = 610, lrs = 475;
    int store_ifail = 0;
    const char *name = callback ? "H02CBF" : "H02CEF";
    H02WBF(name, cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &lis, rwsav.data(), &lrs, &store_ifail, 6, 80);
    const int list = 0;
    for (const std::string &o : options) {
        int inform = 0;
        H02CDF(o.c_str(), &list, lwsav.data(), iwsav.data(), rwsav.data(), &inform, static_cast<int>(o.size()));
    }
    x = x0;
    x.resize(std::max(x.size(), static_cast<std::size_t>(std::max(p.n, 1))), 0.0);
    const int lda = p.lda(), ld = ldh >= 0 ? ldh : std::max(p.n, 1);
    iuser = {0, nan_after > 0 ? nan_after : 0};
    std::vector<double> h = p.h;
    h.resize(std::max<std::size_t>(h.size(), 1), 0.0);
    ifail = -1;
    {
        OutputCapture capture;
        if (callback)
            H02CBF(&itmax, &msglvl, &n, &m, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.intvar.data(),
                   p.cvec.data(), h.data(), &ld, dense_product, nullptr, &maxnod, &intfst, &maxdpt, &toliv, &tolfes,
                   &bigbnd, x.data(), &objective, iwork.data(), &li, rwork.data(), &lr, iuser.data(), nullptr,
                   lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
        else
            H02CEF(&itmax, &msglvl, &n, &m, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.intvar.data(),
                   p.cvec.data(), h.data(), &ld, &maxnod, &intfst, &maxdpt, &toliv, &tolfes, &bigbnd, x.data(),
                   &objective, iwork.data(), &li, rwork.data(), &lr, lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
        captured.clear();
        for (const std::string &line : capture.host()) captured += line + "\n";
    }
    return ifail;
}

} // namespace zek_test
