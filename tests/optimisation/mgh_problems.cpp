#include "mgh_problems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <stdexcept>

#include "option_test_support.h"

namespace mgh {
namespace {

// The M by N Jacobian from its rows, when it is asked for.
void jacobian(double *jac, int m, int n, std::initializer_list<double> rows) {
    if (!jac) return;
    const double *e = rows.begin();
    for (int i = 0; i < m; ++i)
        for (int k = 0; k < n; ++k) jac[i + k * m] = *e++;
}

void rosenbrock(const double *x, double *r, double *j) {
    r[0] = 10.0 * (x[1] - x[0] * x[0]);
    r[1] = 1.0 - x[0];
    jacobian(j, 2, 2, {-20.0 * x[0], 10.0, -1.0, 0.0});
}

void helical_valley(const double *x, double *r, double *j) {
    const double pi = std::acos(-1.0);
    // theta = atan(x2/x1)/(2 pi), plus 1/2 when x1 < 0
    const double t = std::atan(x[1] / x[0]) / (2.0 * pi) + (x[0] < 0.0 ? 0.5 : 0.0);
    const double rr = std::hypot(x[0], x[1]), d = 2.0 * pi * rr * rr;
    r[0] = 10.0 * (x[2] - 10.0 * t);
    r[1] = 10.0 * (rr - 1.0);
    r[2] = x[2];
    jacobian(j, 3, 3, {100.0 * x[1] / d, -100.0 * x[0] / d, 10, 10.0 * x[0] / rr, 10.0 * x[1] / rr, 0, 0, 0,
                       1});
}

void powell_singular(const double *x, double *r, double *j) {
    const double s5 = std::sqrt(5.0), s10 = std::sqrt(10.0), a = x[1] - 2.0 * x[2], b = x[0] - x[3];
    r[0] = x[0] + 10.0 * x[1];
    r[1] = s5 * (x[2] - x[3]);
    r[2] = a * a;
    r[3] = s10 * b * b;
    jacobian(j, 4, 4, {1, 10, 0, 0, 0, 0, s5, -s5, 0, 2.0 * a, -4.0 * a, 0, 2.0 * s10 * b, 0, 0,
                       -2.0 * s10 * b});
}

void beale(const double *x, double *r, double *j) {
    const double y[3] = {1.5, 2.25, 2.625};
    for (int i = 0; i < 3; ++i) {
        const double p = std::pow(x[1], i + 1);
        r[i] = y[i] - x[0] * (1.0 - p);
        if (j) j[i] = -(1.0 - p), j[i + 3] = x[0] * (i + 1) * std::pow(x[1], i);
    }
}

void wood(const double *x, double *r, double *j) {
    const double s90 = std::sqrt(90.0), s10 = std::sqrt(10.0), s01 = 1.0 / std::sqrt(10.0);
    r[0] = 10.0 * (x[1] - x[0] * x[0]);
    r[1] = 1.0 - x[0];
    r[2] = s90 * (x[3] - x[2] * x[2]);
    r[3] = 1.0 - x[2];
    r[4] = s10 * (x[1] + x[3] - 2.0);
    r[5] = s01 * (x[1] - x[3]);
    jacobian(j, 6, 4, {-20.0 * x[0], 10, 0, 0, -1, 0, 0, 0, 0, 0, -2.0 * s90 * x[2], s90, 0, 0, -1, 0,
                       0, s10, 0, s10, 0, s01, 0, -s01});
}

// Box three-dimensional function, m = 10.
void box3(const double *x, double *r, double *j) {
    for (int i = 0; i < 10; ++i) {
        const double t = 0.1 * (i + 1);
        const double a = std::exp(-t * x[0]), b = std::exp(-t * x[1]), c = std::exp(-t) - std::exp(-10.0 * t);
        r[i] = a - b - x[2] * c;
        if (j) j[i] = -t * a, j[i + 10] = t * b, j[i + 20] = -c;
    }
}

} // namespace

const std::vector<Problem> &problems() {
    static const std::vector<Problem> list = {
        {"Rosenbrock", 2, 2, {-1.2, 1.0}, 0.0, {1.0, 1.0}, rosenbrock},
        {"HelicalValley", 3, 3, {-1.0, 0.0, 0.0}, 0.0, {1.0, 0.0, 0.0}, helical_valley},
        {"PowellSingular", 4, 4, {3.0, -1.0, 0.0, 1.0}, 0.0, {0.0, 0.0, 0.0, 0.0}, powell_singular},
        {"Beale", 2, 3, {1.0, 1.0}, 0.0, {3.0, 0.5}, beale},
        {"Wood", 4, 6, {-3.0, -1.0, -3.0, -1.0}, 0.0, {1.0, 1.0, 1.0, 1.0}, wood},
        {"Box3", 3, 10, {0.0, 10.0, 20.0}, 0.0, {}, box3},
    };
    return list;
}

const Problem &find(const char *name) {
    for (const Problem &p : problems())
        if (std::strcmp(p.name, name) == 0) return p;
    throw std::runtime_error(name);
}

double value(const Problem &p, const double *x, double *grad) {
    std::vector<double> r(p.m), jac(static_cast<std::size_t>(p.m) * p.n);
    p.residuals(x, r.data(), grad ? jac.data() : nullptr);
    double f = 0.0;
    for (double v : r) f += v * v;
    if (grad)
        for (int k = 0; k < p.n; ++k) {
            double s = 0.0;
            for (int i = 0; i < p.m; ++i) s += jac[i + k * p.m] * r[i];
            grad[k] = 2.0 * s;
        }
    return f;
}

int simplex(ZekE04FunctSimplex f, int n, std::vector<double> &x, double *fmin, double tol, int maxcal,
            ZekE04MonitSimplex monitor, int iw) {
    const int m = std::max(n, 1);
    if (iw == 0) iw = n + 1;
    std::vector<double> w1(m), w2(m), w3(m), w4(m), w5(m + 1), w6((m + 1) * m);
    int ifail = 1;
    E04CCF(&n, x.data(), fmin, &tol, &iw, w1.data(), w2.data(), w3.data(), w4.data(), w5.data(), w6.data(), f,
           monitor, &maxcal, &ifail);
    return ifail;
}

int conjugate_gradients(ZekE04Objfun f, int n, std::vector<double> &x, double *objf, std::vector<double> &g,
                        int *iuser, double *ruser, std::initializer_list<const char *> options) {
    zek_test::OptionState st("E04DGA");
    for (const char *line : options) EXPECT_EQ(zek_test::option(st, zek::e04::Family::DGA, line), 0) << line;
    const int m = std::max(n, 1);
    std::vector<double> work(13 * m);
    std::vector<int> iwork(m + 1);
    g.assign(m, 0.0);
    int iter = 0, ifail = 1;
    E04DGA(&n, f, nullptr, &iter, objf, g.data(), x.data(), iwork.data(), work.data(), iuser, ruser,
           st.lwsav.data(), st.iwsav.data(), st.rwsav.data(), &ifail);
    return ifail;
}

const char *const kBoundNames[4] = {"E04JYF", "E04KYF", "E04KZF", "E04LYF"};

int bound(BoundRoutine r, const BoundFunctions &fn, int n, int ibound, std::vector<double> &bl,
          std::vector<double> &bu, std::vector<double> &x, double *f, std::vector<double> &g,
          std::vector<int> &iw, int liw_short, int lw_short) {
    const int l = std::max(1, n * (n - 1) / 2);
    const int liw = n + 2 - liw_short;
    const int lw = (r == kJY ? 12 * n + l : r == kKY ? 10 * n + l : 2 * (4 * n + l)) - lw_short;
    std::vector<double> w(std::max(lw, 1));
    g.assign(std::max(n, 1), 0.0);
    iw.assign(std::max(liw, 1), 0);
    int ifail = 1, iuser = 0;
    double ruser = 0;
    double *b0 = bl.data(), *b1 = bu.data(), *xp = x.data(), *gp = g.data(), *wp = w.data();
    int *ip = iw.data();
    if (r == kJY)
        E04JYF(&n, &ibound, fn.funct1, nullptr, b0, b1, xp, f, ip, &liw, wp, &lw, &iuser, &ruser, &ifail);
    else if (r == kKY)
        E04KYF(&n, &ibound, fn.funct2, nullptr, b0, b1, xp, f, gp, ip, &liw, wp, &lw, &iuser, &ruser, &ifail);
    else if (r == kKZ)
        E04KZF(&n, &ibound, fn.funct2, nullptr, b0, b1, xp, f, gp, ip, &liw, wp, &lw, &iuser, &ruser, &ifail);
    else
        E04LYF(&n, &ibound, fn.funct2, nullptr, fn.hess2, nullptr, b0, b1, xp, f, gp, ip, &liw, wp, &lw,
               &iuser, &ruser, &ifail);
    return ifail;
}

} // namespace mgh
