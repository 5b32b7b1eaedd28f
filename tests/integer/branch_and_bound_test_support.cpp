#include "branch_and_bound_test_support.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "integer/mpsx_test_support.h"
#include "zek2/h02.h"

namespace zek_test {

IntegerProgram IntegerProgram::box(int n, int m, double upper) {
    IntegerProgram p;
    p.n = n;
    p.m = m;
    p.a.assign(static_cast<std::size_t>(p.lda()) * static_cast<std::size_t>(n), 0.0);
    p.bl.assign(static_cast<std::size_t>(n + m), 0.0);
    p.bu.assign(static_cast<std::size_t>(n + m), upper);
    for (int i = 0; i < m; ++i) {
        p.bl[static_cast<std::size_t>(n + i)] = -1e20;
        p.bu[static_cast<std::size_t>(n + i)] = 1e20;
    }
    p.cvec.assign(static_cast<std::size_t>(n), 0.0);
    p.intvar.assign(static_cast<std::size_t>(n), 1);
    return p;
}

bool IntegerProgram::from_file(const std::string &path, IntegerProgram &out, const char *optim) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    MpsxRead r(400, 400);
    r.optim = optim;
    if (r.read_text(text.str()) != 0) return false;
    out.n = r.n;
    out.m = r.m;
    out.a.assign(static_cast<std::size_t>(out.lda()) * static_cast<std::size_t>(r.n), 0.0);
    for (int j = 1; j <= r.n; ++j)
        for (int i = 1; i <= r.m; ++i) out.at(i, j) = r.at(i, j);
    out.bl.assign(r.bl.begin(), r.bl.begin() + r.n + r.m);
    out.bu.assign(r.bu.begin(), r.bu.begin() + r.n + r.m);
    out.cvec.assign(r.cvec.begin(), r.cvec.begin() + r.n);
    out.intvar.assign(r.intvar.begin(), r.intvar.begin() + r.n);
    out.names.assign(r.crname.begin(), r.crname.begin() + 8 * (r.n + r.m));
    return true;
}

long long minimum_liwork(int n, int m, int maxdpt) {
    const long long nct = static_cast<long long>(n) + m;
    return (nct + 25) * maxdpt + nct + 4LL * n + 4;
}

long long minimum_lrwork(int n, int m, int maxdpt) {
    const long long t = std::min<long long>(n, m + 1);
    return (static_cast<long long>(n) + 1) * maxdpt + 2 * (t * t + 6LL * m + 7LL * n);
}

int BranchCall::run(const IntegerProgram &p) {
    const int li = liwork >= 0 ? liwork : static_cast<int>(minimum_liwork(p.n, p.m, maxdpt) + extra_iwork);
    const int lr = lrwork >= 0 ? lrwork : static_cast<int>(minimum_lrwork(p.n, p.m, maxdpt));
    iwork.assign(static_cast<std::size_t>(std::max(li, 1)), -7);
    rwork.assign(static_cast<std::size_t>(std::max(lr, 1)), -7.0);
    std::vector<char> cwsav(80, ' ');
    const int lc = 1, ll = 120, lis = 610, lrs = 475;
    int store_ifail = 0;
    H02WBF("H02BBF", cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &lis, rwsav.data(), &lrs, &store_ifail, 6,
           80);
    x = x0;
    x.resize(std::max(x.size(), static_cast<std::size_t>(std::max(p.n, 1))), 0.0);
    const int ld = lda >= 0 ? lda : p.lda();
    ifail = ifail_in;
    H02BBF(&itmax, &msglvl, &p.n, &p.m, p.a.data(), &ld, p.bl.data(), p.bu.data(), p.intvar.data(), p.cvec.data(),
           &maxnod, &intfst, &maxdpt, &toliv, &tolfes, &bigbnd, x.data(), &objective, iwork.data(), &li, rwork.data(),
           &lr, lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
    return ifail;
}

std::vector<std::string> trimmed(const std::vector<std::string> &lines) {
    std::vector<std::string> out;
    for (const std::string &l : lines) {
        const std::size_t end = l.find_last_not_of(' ');
        out.push_back(end == std::string::npos ? std::string() : l.substr(0, end + 1));
    }
    return out;
}

bool enumerate_optimum(const IntegerProgram &p, double *best) {
    std::vector<double> x(static_cast<std::size_t>(p.n));
    for (int j = 0; j < p.n; ++j) x[static_cast<std::size_t>(j)] = std::ceil(p.bl[static_cast<std::size_t>(j)]);
    bool found = false;
    for (;;) {
        bool feasible = true;
        for (int i = 0; i < p.m && feasible; ++i) {
            double v = 0.0;
            for (int j = 0; j < p.n; ++j)
                v += p.a[static_cast<std::size_t>(i + j * p.lda())] * x[static_cast<std::size_t>(j)];
            feasible = v >= p.bl[static_cast<std::size_t>(p.n + i)] - 1e-9 &&
                       v <= p.bu[static_cast<std::size_t>(p.n + i)] + 1e-9;
        }
        if (feasible) {
            double f = 0.0;
            for (int j = 0; j < p.n; ++j) f += p.cvec[static_cast<std::size_t>(j)] * x[static_cast<std::size_t>(j)];
            if (!found || f < *best) *best = f;
            found = true;
        }
        int j = 0;
        while (j < p.n) {
            const std::size_t k = static_cast<std::size_t>(j);
            if (x[k] + 1.0 <= p.bu[k]) {
                x[k] += 1.0;
                break;
            }
            x[k] = std::ceil(p.bl[k]);
            ++j;
        }
        if (j == p.n) break;
    }
    return found;
}

} // namespace zek_test
