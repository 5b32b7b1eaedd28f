// Shared by the statistics tests: the reader of the certified regression data, a least-squares fit, and
// a GLM problem with one call of the routine of its family (outputs start as the sentinel -7 so a test can see what a call
// touched).
#ifndef ZEK_TESTS_STATISTICS_SUPPORT_H
#define ZEK_TESTS_STATISTICS_SUPPORT_H

#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "zek2/g02.h"
#include "zek2/messages.h"

// A data file of the StRD collection as copied into tests/data/strd: y, then the m regressors, a line
// each; x comes back by columns.
inline bool read_strd(const char *name, int m, std::vector<double> &x, std::vector<double> &y) {
    std::ifstream in(std::string(ZEK_TEST_DATA_DIR) + "/strd/" + name);
    std::vector<double> v;
    for (std::string line; std::getline(in, line);) {
        std::istringstream ls(line[0] == '#' ? "" : line);
        for (double d; ls >> d;) v.push_back(d);
    }
    const std::size_t n = v.size() / (m + 1);
    x.assign(n * m, 0.0);
    y.assign(n, 0.0);
    for (std::size_t k = 0; k < v.size(); ++k) (k % (m + 1) == 0 ? y[k / (m + 1)] : x[k / (m + 1) + (k % (m + 1) - 1) * n]) = v[k];
    return n > 0 && v.size() == n * (m + 1);
}

// A least-squares fit of N observations on M variables (IP parameters) through either layer, with its
// outputs and a refit of a new response on the same design.
struct Lsq {
    int n, m, ip;
    std::vector<double> b, se, cov, res, h, q, p, wk;
    double rss = 0, df = 0;  // df: the C-style fit's residual degrees of freedom
    int idf = 0, svd = -1, irank = -1;
    ZekFail fail{};
    Lsq(int n_, int m_, int ip_)
        : n(n_), m(m_), ip(ip_), b(ip_), se(ip_), cov(ip_ * (ip_ + 1) / 2), res(n_), h(n_), q(n_ * (ip_ + 1)),
          p(2 * ip_ + ip_ * ip_), wk(ip_ * ip_ + 5 * ip_) {}
    int run(const char *mean, const char *weight, const std::vector<double> &x, const std::vector<int> &isx,
            const std::vector<double> &y, const std::vector<double> &wt, double tol = 0.0) {
        int ifail = 1;
        G02DAF(mean, weight, &n, x.data(), &n, &m, isx.data(), &ip, y.data(), wt.data(), &rss, &idf, b.data(),
               se.data(), cov.data(), res.data(), h.data(), q.data(), &n, &svd, &irank, p.data(), &tol, wk.data(), &ifail,
               1, 1);
        return ifail;
    }
    // The C-style fit of the same design.
    int run_c(int mean, const std::vector<double> &x, int ldx, const std::vector<int> &isx, const std::vector<double> &y,
              const double *wt = nullptr) {
        g02dac(mean, n, m, x.data(), ldx, isx.data(), ip, y.data(), wt, &rss, &df, b.data(), se.data(), cov.data(),
               res.data(), h.data(), q.data(), n, &svd, &irank, p.data(), 0.0, nullptr, &fail);
        return fail.code;
    }
    // A new response Y2 on the fitted design, from the factorisation; RSS is the fit's on entry.
    int refit(const std::vector<double> &y2, const std::vector<double> &wt, double rss_in) {
        int ifail = 1;
        rss = rss_in;
        G02DGF("W", &n, wt.data(), &rss, &ip, &irank, cov.data(), q.data(), &n, &svd, p.data(), y2.data(), b.data(),
               se.data(), res.data(), wk.data(), &ifail, 1);
        return ifail;
    }
};

enum Fam { kNormal, kBinomial, kPoisson, kGamma };

struct Glm {
    explicit Glm(Fam f, int lk = Zek_Log) : fam(f), link(lk) {}
    // N rows, the columns of X (all chosen, with a mean term), response Y.
    Glm(Fam f, int lk, int rows, std::vector<double> xs, std::vector<double> ys)
        : fam(f), link(lk), n(rows), m(static_cast<int>(xs.size()) / rows), x(std::move(xs)), y(std::move(ys)), sx(m, 1) {}
    Fam fam;
    int link, mean = Zek_MeanInclude, n = 0, m = 0, tdv = 0, max_iter = 50;
    std::vector<double> x, y, t, wt, offset;
    std::vector<int> sx;
    double a = 1.0, s = 0.0;
};

struct Fit {
    std::vector<double> b, se, cov, v, p;
    double dev = -7, df = -7, s = 0;
    int rank = -7;
    ZekFail fail{};
};

inline Fit run(const Glm &g) {
    int ip = g.mean == Zek_MeanInclude ? 1 : 0;
    for (int k : g.sx) ip += k > 0 ? 1 : 0;
    const int n = g.n > 0 ? g.n : 1, tdv = g.tdv > 0 ? g.tdv : g.n;
    Fit f{std::vector<double>(ip, -7), std::vector<double>(ip, -7), std::vector<double>(ip * (ip + 1) / 2, -7),
          std::vector<double>(7 * n, -7), std::vector<double>(ip + ip * ip, -7), -7, -7, g.s, -7, {}};
    const double *wt = g.wt.empty() ? nullptr : g.wt.data(), *off = g.offset.empty() ? nullptr : g.offset.data(),
                 *x = g.x.data(), *y = g.y.data();
    const int *sx = g.sx.data();
    if (g.fam == kNormal || g.fam == kGamma) {
        (g.fam == kNormal ? g02gac : g02gdc)(g.link, g.mean, g.n, x, n, g.m, sx, ip, y, wt, off, g.a, &f.s, &f.dev, &f.df,
                                              f.b.data(), &f.rank, f.se.data(), f.cov.data(), f.v.data(), tdv, f.p.data(),
                                              0.0, g.max_iter, 0.0, &f.fail);
    } else if (g.fam == kBinomial) {
        g02gbc(g.link, g.mean, g.n, x, n, g.m, sx, ip, y, g.t.data(), wt, off, &f.dev, &f.df, f.b.data(), &f.rank,
               f.se.data(), f.cov.data(), f.v.data(), tdv, f.p.data(), 0.0, g.max_iter, 0.0, &f.fail);
    } else {
        g02gcc(g.link, g.mean, g.n, x, n, g.m, sx, ip, y, wt, off, g.a, &f.dev, &f.df, f.b.data(), &f.rank, f.se.data(),
               f.cov.data(), f.v.data(), tdv, f.p.data(), 0.0, g.max_iter, 0.0, &f.fail);
    }
    return f;
}

#endif
