#include "lp_test_support.h"

#include <algorithm>
#include <cmath>

#include "zek2/e04.h"

namespace zek_test {

LpProblem LpProblem::from(const LpModel &model) {
    LpProblem p;
    p.n = model.n;
    p.m = model.m;
    p.a = model.a;
    p.bl = model.bl;
    p.bu = model.bu;
    p.c = model.c;
    return p;
}

LpProblem LpProblem::dense(const std::vector<std::vector<double>> &rows, std::vector<double> bl,
                           std::vector<double> bu, std::vector<double> c) {
    LpProblem p;
    p.n = static_cast<int>(c.size());
    p.m = static_cast<int>(rows.size());
    p.a.assign(static_cast<std::size_t>(p.lda()) * static_cast<std::size_t>(p.n), 0.0);
    for (int i = 0; i < p.m; ++i)
        for (int j = 0; j < p.n; ++j)
            p.a[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * p.lda()] =
                rows[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
    p.bl = std::move(bl);
    p.bu = std::move(bu);
    p.c = std::move(c);
    return p;
}

LpSession::LpSession() {
    int lc = 1, ll = 120, li = 610, lr = 475, ifail = 0;
    E04WBA("E04MFA", cwsav_.data(), &lc, lwsav_.data(), &ll, iwsav_.data(), &li, rwsav_.data(), &lr, &ifail, 6, 80);
}

int LpSession::option(const std::string &line) {
    int inform = -1, list = 0;
    E04MHF(line.c_str(), &list, lwsav_.data(), iwsav_.data(), rwsav_.data(), &inform, static_cast<int>(line.size()));
    return inform;
}

int minimum_liwork(int n) { return 2 * n + 3; }
int minimum_lwork(int n, int m) {
    const int t = std::min(n, m + 1);
    return m == 0 ? 7 * n + 1 : 7 * n + 5 * m + 2 * t * t;
}

LpResult LpSession::solve(const LpProblem &p, std::vector<double> x0, std::vector<int> istate0, int ifail,
                          int liwork, int lwork) {
    const int n = p.n, m = p.m, lda = p.lda();
    if (liwork < 0) liwork = minimum_liwork(n);
    if (lwork < 0) lwork = minimum_lwork(n, m);
    iwork_.resize(static_cast<std::size_t>(std::max(liwork, 1)));
    work_.resize(static_cast<std::size_t>(std::max(lwork, 1)));
    LpResult r;
    r.x = x0.empty() ? std::vector<double>(static_cast<std::size_t>(n), 0.0) : x0;
    r.istate = istate0.empty() ? std::vector<int>(static_cast<std::size_t>(n + m), 0) : istate0;
    r.ax.assign(static_cast<std::size_t>(std::max(m, 1)), 0.0);
    r.clamda.assign(static_cast<std::size_t>(n + m), 0.0);
    // The bounds with infinities replaced by values beyond the infinite bound size.
    std::vector<double> bl = p.bl, bu = p.bu;
    for (double &v : bl) v = std::max(v, -1e25);
    for (double &v : bu) v = std::min(v, 1e25);
    r.ifail = ifail;
    E04MFA(&n, &m, p.a.data(), &lda, bl.data(), bu.data(), p.c.data(), r.istate.data(), r.x.data(), &r.iter, &r.obj,
           r.ax.data(), r.clamda.data(), iwork_.data(), &liwork, work_.data(), &lwork, lwsav_.data(), iwsav_.data(),
           rwsav_.data(), &r.ifail);
    return r;
}

double objective(const LpProblem &p, const std::vector<double> &x) {
    double s = 0.0;
    for (int j = 0; j < p.n; ++j) s += p.c[static_cast<std::size_t>(j)] * x[static_cast<std::size_t>(j)];
    return s;
}

double max_violation(const LpProblem &p, const std::vector<double> &x) {
    double worst = 0.0;
    for (int k = 0; k < p.n + p.m; ++k) {
        double v;
        if (k < p.n) v = x[static_cast<std::size_t>(k)];
        else {
            v = 0.0;
            for (int j = 0; j < p.n; ++j) v += p.at(k - p.n, j) * x[static_cast<std::size_t>(j)];
        }
        worst = std::max({worst, p.bl[static_cast<std::size_t>(k)] - v, v - p.bu[static_cast<std::size_t>(k)]});
    }
    return worst;
}

namespace {
double scale_of(const LpProblem &p) {
    double s = 1.0;
    for (double v : p.c) s = std::max(s, std::fabs(v));
    return s;
}
} // namespace

double stationarity_error(const LpProblem &p, const LpResult &r) {
    double worst = 0.0;
    for (int j = 0; j < p.n; ++j) {
        double v = p.c[static_cast<std::size_t>(j)] - r.clamda[static_cast<std::size_t>(j)];
        for (int i = 0; i < p.m; ++i) v -= p.at(i, j) * r.clamda[static_cast<std::size_t>(p.n + i)];
        worst = std::max(worst, std::fabs(v));
    }
    return worst / scale_of(p);
}

double multiplier_sign_error(const LpProblem &p, const LpResult &r) {
    double worst = 0.0;
    for (int k = 0; k < p.n + p.m; ++k) {
        const double lam = r.clamda[static_cast<std::size_t>(k)];
        switch (r.istate[static_cast<std::size_t>(k)]) {
        case 1: worst = std::max(worst, -lam); break;
        case 2: worst = std::max(worst, lam); break;
        case 3: break;
        default: worst = std::max(worst, std::fabs(lam)); break;
        }
    }
    return worst / scale_of(p);
}

} // namespace zek_test
