#include "lp_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "frame/input_units.h"
#include "zek2/e04.h"
#include "zek2/h02.h"
#include "zek2/x04.h"

namespace zek_test {

LpProblem LpProblem::dense(const std::vector<std::vector<double>> &rows, std::vector<double> bl,
                           std::vector<double> bu, std::vector<double> c) {
    LpProblem p;
    p.n = static_cast<int>(c.size());
    p.m = static_cast<int>(rows.size());
    p.a.assign(static_cast<std::size_t>(p.lda()) * p.n, 0.0);
    for (int i = 0; i < p.m; ++i)
        for (int j = 0; j < p.n; ++j) p.a[i + static_cast<std::size_t>(j) * p.lda()] = rows[i][j];
    p.bl = std::move(bl);
    p.bu = std::move(bu);
    p.c = std::move(c);
    return p;
}

LpProblem LpProblem::netlib(const std::string &name) {
    const std::string path = std::string(ZEK_SHARED_DATA_DIR) + "/lp/" + name + ".mps";
    std::FILE *file = X04_OPEN_INPUT(path.c_str());
    const int unit = zek::input_unit_number(file), maxm = 200, maxn = 200, list = 0;
    const double xbldef = 0.0, xbudef = 1e20;
    std::vector<double> a(maxm * maxn), c(maxn), bl(maxn + maxm), bu(maxn + maxm), x(maxn);
    std::vector<int> intvar(maxn), rowtyp(maxm);
    std::vector<char> names(8 * (maxn + maxm));
    char nmprob[8], nmobj[8], nmrhs[8], nmrng[8], nmbnd[8];
    for (char *s : {nmprob, nmobj, nmrhs, nmrng, nmbnd}) std::fill(s, s + 8, ' ');
    int m = 0, n = 0, ifail = 1;
    H02BUF(&unit, &m, &n, &maxm, &maxn, a.data(), c.data(), bl.data(), bu.data(), intvar.data(), rowtyp.data(), nmprob,
           nmobj, nmrhs, nmrng, nmbnd, names.data(), x.data(), &xbldef, &xbudef, "MIN", &list, &ifail, 8, 8, 8, 8, 8, 8,
           3);
    if (file != nullptr) std::fclose(file);
    LpProblem p;
    if (ifail != 0) return p;
    p.n = n;
    p.m = m;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < std::max(m, 1); ++i) p.a.push_back(i < m ? a[i + j * maxm] : 0.0);
    p.c.assign(c.begin(), c.begin() + n);
    p.bl.assign(bl.begin(), bl.begin() + n + m);
    p.bu.assign(bu.begin(), bu.begin() + n + m);
    return p;
}

int LpSession::option(const std::string &line) { return zek_test::option(state_, zek::e04::Family::MFA, line); }

LpResult LpSession::solve(const LpProblem &p, std::vector<double> x0, std::vector<int> istate0, int ifail,
                          int liwork, int lwork, int lda) {
    const int n = p.n, m = p.m, t = std::min(n, m + 1);
    if (lda < 0) lda = p.lda();
    if (liwork < 0) liwork = 2 * n + 3;
    if (lwork < 0) lwork = m == 0 ? 7 * n + 1 : 7 * n + 5 * m + 2 * t * t;
    iwork_.resize(std::max(liwork, 1));
    work_.resize(std::max(lwork, 1));
    LpResult r;
    r.x = x0.empty() ? std::vector<double>(std::max(n, 1), 0.0) : x0;
    r.istate = istate0.empty() ? std::vector<int>(std::max(n + m, 1), 0) : istate0;
    r.ax.assign(std::max(m, 1), 0.0);
    r.clamda.assign(std::max(n + m, 1), 0.0);
    // Infinite bounds as values beyond the infinite bound size.
    std::vector<double> bl = p.bl, bu = p.bu;
    for (double &v : bl) v = std::max(v, -1e25);
    for (double &v : bu) v = std::min(v, 1e25);
    r.ifail = ifail;
    E04MFA(&n, &m, p.a.data(), &lda, bl.data(), bu.data(), p.c.data(), r.istate.data(), r.x.data(), &r.iter, &r.obj,
           r.ax.data(), r.clamda.data(), iwork_.data(), &liwork, work_.data(), &lwork, state_.lwsav.data(),
           state_.iwsav.data(), state_.rwsav.data(), &r.ifail);
    return r;
}

Kkt::Kkt(const LpProblem &p, const LpResult &r) {
    double scale = 1.0;
    for (double v : p.c) scale = std::max(scale, std::fabs(v));
    for (int j = 0; j < p.n; ++j) objective += p.c[j] * r.x[j];
    for (int k = 0; k < p.n + p.m; ++k) {
        double v = k < p.n ? r.x[k] : 0.0;
        for (int j = 0; j < p.n && k >= p.n; ++j) v += p.at(k - p.n, j) * r.x[j];
        violation = std::max({violation, p.bl[k] - v, v - p.bu[k]});
        const double lam = r.clamda[k];
        const int s = r.istate[k];
        sign = std::max(sign, (s == 1 ? -lam : s == 2 ? lam : s == 3 ? 0.0 : std::fabs(lam)) / scale);
    }
    for (int j = 0; j < p.n; ++j) {
        double v = p.c[j] - r.clamda[j];
        for (int i = 0; i < p.m; ++i) v -= p.at(i, j) * r.clamda[p.n + i];
        stationarity = std::max(stationarity, std::fabs(v) / scale);
    }
}

void expect_optimum(const LpProblem &p, const LpResult &r, double obj, double rtol, double ctol, double ftol,
                    double stol, const std::string &what) {
    const Kkt kkt(p, r);
    const double scale = std::max(1.0, std::fabs(obj));
    EXPECT_TRUE(r.ifail == 0 || r.ifail == 1) << what << " IFAIL " << r.ifail;
    EXPECT_NEAR(r.obj, obj, rtol * scale) << what << ", " << r.iter << " iterations";
    EXPECT_NEAR(kkt.objective, r.obj, ctol * scale) << what;
    EXPECT_LE(kkt.violation, ftol) << what;
    EXPECT_LE(kkt.stationarity, stol) << what;
    EXPECT_LE(kkt.sign, ftol) << what;
}

} // namespace zek_test
