// Shared by the statistics tests: the reader of the certified regression data, and a GLM problem with
// one call of the routine of its family (outputs start as the sentinel -7 so a test can see what a call
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
