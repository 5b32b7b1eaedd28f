// One call of the comprehensive least-squares routines E04GBF, E04GDF and E04FCF with the workspace they
// document (less LW_SHORT), shared by the least-squares, regression and hostile-input tests.
#ifndef ZEK_TESTS_LSQ_TEST_SUPPORT_H
#define ZEK_TESTS_LSQ_TEST_SUPPORT_H

#include <utility>
#include <vector>

#include "zek2/e04.h"

namespace zek_test::lsq {

enum Routine { kGB, kGD, kFC };
inline const char *name(Routine r) { return r == kGB ? "E04GBF" : r == kGD ? "E04GDF" : "E04FCF"; }

struct Settings {
    int maxcal = 4000, lw_short = 0;
    double eta = 0.5, xtol = 1e-12, stepmx = 1e6;
    ZekE04LsqHes hes = nullptr;  // the start of E04GBF's estimate
};

struct Fit {
    int ifail = -99, niter = 0, nf = 0, igrade = 0;
    double fsumsq = 0.0;
    std::vector<double> x, f, j, s, v;  // j: m by n, v: n by n
};

// LSQ gives residuals and Jacobian (E04GBF, E04GDF), VALUES the residuals alone (E04FCF).
inline Fit fit(Routine r, int m, int n, ZekE04LsqFun lsq, ZekE04LsqFunDiff values, std::vector<double> x,
               const Settings &st = {}) {
    const int mm = m > 0 ? m : 1, nn = n > 0 ? n : 1, lj = mm, lv = nn, iprint = -1, liw = 1;
    const int need = n == 1 ? (r == kFC ? 7 : 9) + 3 * m
                            : (r == kFC ? 6 * n + m * n + 2 * m + n * (n - 1) / 2 : 7 * n + m * n + 2 * m + n * n);
    const int lw = need - st.lw_short;
    Fit o;
    o.x = std::move(x);
    o.f.assign(mm, 0.0), o.j.assign(static_cast<std::size_t>(mm) * nn, 0.0), o.s.assign(nn, 0.0), o.v.assign(nn * nn, 0.0);
    std::vector<double> w(lw > 0 ? lw : 1);
    double ruser = 0.0;
    int iuser = 0, iw = 0;
    o.ifail = 1;
    if (r == kGB)
        E04GBF(&m, &n, lsq, nullptr, st.hes, nullptr, nullptr, nullptr, &iprint, &st.maxcal, &st.eta, &st.xtol,
               &st.stepmx, o.x.data(), &o.fsumsq, o.f.data(), o.j.data(), &lj, o.s.data(), o.v.data(), &lv, &o.niter,
               &o.nf, &o.igrade, &iw, &liw, w.data(), &lw, &iuser, &ruser, &o.ifail);
    else if (r == kGD)
        E04GDF(&m, &n, lsq, nullptr, nullptr, nullptr, &iprint, &st.maxcal, &st.eta, &st.xtol, &st.stepmx, o.x.data(),
               &o.fsumsq, o.f.data(), o.j.data(), &lj, o.s.data(), o.v.data(), &lv, &o.niter, &o.nf, &o.igrade, &iw,
               &liw, w.data(), &lw, &iuser, &ruser, &o.ifail);
    else
        E04FCF(&m, &n, values, nullptr, nullptr, nullptr, &iprint, &st.maxcal, &st.eta, &st.xtol, &st.stepmx,
               o.x.data(), &o.fsumsq, o.f.data(), o.j.data(), &lj, o.s.data(), o.v.data(), &lv, &o.niter, &o.nf,
               &o.igrade, &iw, &liw, w.data(), &lw, &iuser, &ruser, &o.ifail);
    return o;
}

} // namespace zek_test::lsq

#endif
