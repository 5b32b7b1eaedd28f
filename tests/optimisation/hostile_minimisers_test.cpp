// Hostile input for the small minimisers: bad sizes, crossed bounds, short workspace, user functions
// that return NaN or Inf or ask to stop.  Each row ends in its IFAIL, in bounded time, and IFAIL 0 only
// at a finite point.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "lsq_test_support.h"
#include "mgh_problems.h"
#include "zek2/e04.h"

namespace {

using zek_test::lsq::kFC;
using zek_test::lsq::kGB;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();
const double kBig = std::numeric_limits<double>::max();

// What the user functions do: 0 a quadratic bowl at 1; 1 NaN everywhere; 2 +Inf everywhere; 3 -Inf
// everywhere; 4 NaN for x(1) > 1.5 (the bowl elsewhere); 5 ask to stop at the third call.
int g_mode = 0;
int g_calls = 0;
double bowl(int n, const double *x, double *g) {
    ++g_calls;
    double f = 0.0;
    for (int j = 0; j < n; ++j) {
        f += (x[j] - 1.0) * (x[j] - 1.0);
        if (g) g[j] = 2.0 * (x[j] - 1.0);
    }
    switch (g_mode) {
    case 1: return kNaN;
    case 2: return kInf;
    case 3: return -kInf;
    case 4: return x[0] > 1.5 ? kNaN : f;
    default: return f;
    }
}
bool stop_now() { return g_mode == 5 && g_calls >= 3; }

void f1(const double *x, double *fc, int *, double *) { *fc = bowl(1, x, nullptr); }
void fg1(const double *x, double *fc, double *gc, int *, double *) { *fc = bowl(1, x, gc); }
void fs(const int *n, const double *x, double *fc) { *fc = bowl(*n, x, nullptr); }
void objfun(int *mode, const int *n, const double *x, double *f, double *g, const int *, int *, double *) {
    *f = bowl(*n, x, g);
    if (stop_now()) *mode = -1;
}
void bf1(int *iflag, const int *n, const double *x, double *f, int *, double *) {
    *f = bowl(*n, x, nullptr);
    if (stop_now()) *iflag = -2;
}
void bf2(int *iflag, const int *n, const double *x, double *f, double *g, int *, double *) {
    *f = bowl(*n, x, *iflag == 2 ? g : nullptr);
    if (stop_now()) *iflag = -2;
}
void bh2(int *, const int *n, const double *, double *hl, const int *lh, double *hd, int *, double *) {
    for (int j = 0; j < *n; ++j) hd[j] = 2.0;
    for (int k = 0; k < *lh; ++k) hl[k] = 0.0;
}

// Residuals x(i mod n) - 1, the first replaced by the bowl's value when that is not finite.
void lsq(int *iflag, const int *m, const int *n, const double *x, double *f, double *j, const int *lj, int *,
         double *) {
    const double v = bowl(*n, x, nullptr);
    for (int i = 0; i < *m; ++i) f[i] = x[i % *n] - 1.0;
    if (!std::isfinite(v)) f[0] = v;
    if (*iflag == 2)
        for (int c = 0; c < *n; ++c)
            for (int i = 0; i < *m; ++i) j[i + c * *lj] = i % *n == c ? 1.0 : 0.0;
    if (stop_now()) *iflag = -3;
}

struct Outcome {
    int ifail;
    double f;  // the value returned with it
};

struct Row {
    const char *name;
    int mode;
    std::function<Outcome()> call;
    int expected;     // the IFAIL
    bool no_calls;    // no call of the user's function may be made
};

Outcome one_dim(bool grad, double a, double b, int maxcal) {
    double e1 = 0, e2 = 0, x = 0, f = 0, g = 0, ru = 0;
    int ifail = 1, iu = 0;
    if (grad) E04BBF(fg1, nullptr, &e1, &e2, &a, &b, &maxcal, &x, &f, &g, &iu, &ru, &ifail);
    else E04ABF(f1, nullptr, &e1, &e2, &a, &b, &maxcal, &x, &f, &iu, &ru, &ifail);
    return {ifail, f};
}

Outcome simplex(int n, int iw, double tol, int maxcal) {
    std::vector<double> x(std::max(n, 1), 0.0);
    double fmin = 0;
    return {mgh::simplex(fs, n, x, &fmin, tol, maxcal, nullptr, iw), fmin};
}

Outcome cg(int n) {
    std::vector<double> x(std::max(n, 1), 0.0), g;
    int iu = 0;
    double f = 0, ru = 0;
    return {mgh::conjugate_gradients(objfun, n, x, &f, g, &iu, &ru), f};
}

// The easy bound-constrained forms on N variables in [BL, BU], LIW and LW short by the given amounts.
Outcome bound(int which, int n, int ibound, double bl, double bu, int liw_short = 0, int lw_short = 0) {
    const int m = std::max(n, 1);
    std::vector<double> bls(m, bl), bus(m, bu), x(m, 0.0), g;
    std::vector<int> iw;
    double f = 0;
    const int ifail = mgh::bound(static_cast<mgh::BoundRoutine>(which), {bf1, bf2, bh2}, n, ibound, bls, bus, x,
                                 &f, g, iw, liw_short, lw_short);
    return {ifail, f};
}

Outcome comprehensive(double eta, double xtol, double stepmx, int lh) {
    const int n = 2, iprint = -1, maxcal = 100, ibound = 1, icheck = 0, liw = 1, lw = 15;
    const double delta = 0, fest = 0;
    double bl[2], bu[2], x[2] = {0, 0}, hesl[1], hesd[2], g[2], w[15], f = 0, ru = 0;
    int istate[2], niter, nf, iw[1], ifail = 1, iu = 0;
    E04KDF(&n, bf2, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol, &delta, &stepmx, &fest, &ibound, bl,
           bu, x, hesl, &lh, hesd, istate, &f, g, &niter, &nf, &icheck, iw, &liw, w, &lw, &iu, &ru, &ifail);
    return {ifail, f};
}

void check(const Row &r, const std::string &prefix = "") {
    SCOPED_TRACE(prefix + r.name);
    g_mode = r.mode;
    g_calls = 0;
    const Outcome o = r.call();
    EXPECT_EQ(o.ifail, r.expected);
    EXPECT_TRUE(!r.no_calls || g_calls == 0) << g_calls;
    EXPECT_TRUE(o.ifail != 0 || std::isfinite(o.f)) << o.f;
}

int g_term_mode = 0;  // the start of E04GBF's estimate: NaN entries (1) or a stop (5)
void hostile_term(int *iflag, const int *, const int *, const double *, const double *, double *b, const int *lb,
                  int *, double *) {
    for (int k = 0; k < *lb; ++k) b[k] = g_term_mode == 1 ? kNaN : 0.0;
    if (g_term_mode == 5) *iflag = -4;
}
void lsq_values(int *iflag, const int *m, const int *n, const double *x, double *f, int *iu, double *ru) {
    lsq(iflag, m, n, x, f, nullptr, m, iu, ru);
}
// E04GBF (its estimate started by hostile_term under TERM_MODE) or E04FCF, LW short by LW_SHORT.
Outcome comprehensive_lsq(zek_test::lsq::Routine r, int m, int n, int lw_short = 0, int maxcal = 100,
                          double eta = 0.5, int term_mode = 0) {
    zek_test::lsq::Settings s;
    s.maxcal = maxcal, s.eta = eta, s.xtol = 1e-10, s.stepmx = 10.0, s.lw_short = lw_short;
    if (term_mode != 0) s.hes = hostile_term;
    g_term_mode = term_mode;
    const zek_test::lsq::Fit o =
        zek_test::lsq::fit(r, m, n, lsq, lsq_values, std::vector<double>(std::max(n, 1), 3.0), s);
    return {o.ifail, o.fsumsq};
}

// The easy forms: E04GYF (0), E04GZF (1), E04HYF with a zero second-order term (2) or none (3).
void no_curvature(int *, const int *, const int *, const double *, const double *, double *b, const int *lb, int *,
                  double *) {
    for (int k = 0; k < *lb; ++k) b[k] = 0.0;
}
Outcome easy(int which, int m, int n, int lw_short = 0) {
    const int lw = (n > 1 ? 8 * n + 2 * n * n + 2 * m * n + 3 * m : 11 + 5 * m) - lw_short;
    std::vector<double> x(std::max(n, 1), 3.0), w(std::max(lw, 1));
    double fsumsq = 0, ru = 0;
    int ifail = 1, iu = 0;
    if (which == 0) E04GYF(&m, &n, lsq, nullptr, x.data(), &fsumsq, w.data(), &lw, &iu, &ru, &ifail);
    else if (which == 1) E04GZF(&m, &n, lsq, nullptr, x.data(), &fsumsq, w.data(), &lw, &iu, &ru, &ifail);
    else E04HYF(&m, &n, lsq, nullptr, which == 2 ? no_curvature : nullptr, nullptr, x.data(), &fsumsq, w.data(), &lw,
                &iu, &ru, &ifail);
    return {ifail, fsumsq};
}

Outcome covariance(int job, int m, int n, double fsumsq, double s1, int lv, int lwork = 2) {
    double s[2] = {s1, s1}, v[4] = {1, 0, 0, 1}, cj[2], work[2];
    int ifail = 1;
    E04YCF(&job, &m, &n, &fsumsq, s, v, &lv, cj, work, &lwork, &ifail);
    return {ifail, cj[0]};
}

TEST(HostileMinimisers, LeastSquaresRowsEndInTheirIfail) {
    const Row rows[] = {
        {"E04GYF N 0", 0, [] { return easy(0, 3, 0); }, 1, true},
        {"E04GYF M < N", 0, [] { return easy(0, 1, 2); }, 1, true},
        {"E04GYF LW short", 0, [] { return easy(0, 3, 2, 1); }, 1, true},
        {"E04GYF N 1 LW short", 0, [] { return easy(0, 3, 1, 1); }, 1, true},
        {"E04GBF LW short", 0, [] { return comprehensive_lsq(kGB, 3, 2, 1); }, 1, true},
        {"E04GBF MAXCAL 0", 0, [] { return comprehensive_lsq(kGB, 3, 2, 0, 0); }, 1, true},
        {"E04GBF ETA 1", 0, [] { return comprehensive_lsq(kGB, 3, 2, 0, 100, 1.0); }, 1, true},
        {"E04GBF ETA NaN", 0, [] { return comprehensive_lsq(kGB, 3, 2, 0, 100, kNaN); }, 1, true},
        {"E04GBF MAXCAL 2", 0, [] { return comprehensive_lsq(kGB, 3, 2, 0, 2); }, 2, false},
        {"E04GYF NaN residuals", 1, [] { return easy(0, 3, 2); }, 5, false},
        {"E04GYF +Inf residuals", 2, [] { return easy(0, 3, 2); }, 5, false},
        {"E04GYF stop", 5, [] { return easy(0, 3, 2); }, -3, false},
        {"E04GYF good", 0, [] { return easy(0, 3, 2); }, 0, false},
        {"E04GZF M < N", 0, [] { return easy(1, 1, 2); }, 1, true},
        {"E04GZF NaN residuals", 1, [] { return easy(1, 3, 2); }, 5, false},
        {"E04GZF stop", 5, [] { return easy(1, 3, 2); }, -3, false},
        {"E04GZF good", 0, [] { return easy(1, 3, 2); }, 0, false},
        {"E04HYF no LSQHES", 0, [] { return easy(3, 3, 2); }, 1, true},
        {"E04HYF -Inf residuals", 3, [] { return easy(2, 3, 2); }, 5, false},
        {"E04HYF good", 0, [] { return easy(2, 3, 2); }, 0, false},
        {"E04GBF NaN estimate start", 0, [] { return comprehensive_lsq(kGB, 3, 2, 0, 100, 0.5, 1); }, 0, false},
        {"E04GBF stop in LSQHES", 0, [] { return comprehensive_lsq(kGB, 3, 2, 0, 100, 0.5, 5); }, -4, false},
        {"E04FCF LW short", 0, [] { return comprehensive_lsq(kFC, 3, 2, 1); }, 1, true},
        {"E04FCF NaN residuals", 1, [] { return comprehensive_lsq(kFC, 3, 2); }, 5, false},
        {"E04FCF stop", 5, [] { return comprehensive_lsq(kFC, 3, 2); }, -3, false},
        {"E04FCF good", 0, [] { return comprehensive_lsq(kFC, 3, 2); }, 0, false},
        {"E04YCF JOB -2", 0, [] { return covariance(-2, 3, 2, 1.0, 1.0, 2); }, 1, false},
        {"E04YCF JOB 3", 0, [] { return covariance(3, 3, 2, 1.0, 1.0, 2); }, 1, false},
        {"E04YCF M < N", 0, [] { return covariance(0, 1, 2, 1.0, 1.0, 2); }, 1, false},
        {"E04YCF FSUMSQ < 0", 0, [] { return covariance(0, 3, 2, -1.0, 1.0, 2); }, 1, false},
        {"E04YCF FSUMSQ NaN", 0, [] { return covariance(0, 3, 2, kNaN, 1.0, 2); }, 1, false},
        {"E04YCF LV short", 0, [] { return covariance(-1, 3, 2, 1.0, 1.0, 1); }, 1, false},
        {"E04YCF LWORK short", 0, [] { return covariance(-1, 3, 2, 1.0, 1.0, 2, 1); }, 1, false},
        {"E04YCF S NaN", 0, [] { return covariance(0, 3, 2, 1.0, kNaN, 2); }, 2, false},
        {"E04YCF S zero", 0, [] { return covariance(0, 3, 2, 1.0, 0.0, 2); }, 2, false},
    };
    for (const Row &r : rows) check(r);
}

TEST(HostileMinimisers, EveryRowEndsInItsIfail) {
    const Row rows[] = {
        {"E04ABF A = B", 0, [] { return one_dim(false, 1.0, 1.0, 50); }, 1, true},
        {"E04ABF A NaN", 0, [] { return one_dim(false, kNaN, 1.0, 50); }, 1, true},
        {"E04ABF MAXCAL 2", 0, [] { return one_dim(false, 0.0, 3.0, 2); }, 1, true},
        {"E04ABF NaN values", 1, [] { return one_dim(false, 0.0, 3.0, 50); }, 3, false},
        {"E04ABF +Inf values", 2, [] { return one_dim(false, 0.0, 3.0, 50); }, 3, false},
        {"E04ABF NaN beyond 1.5", 4, [] { return one_dim(false, 0.0, 3.0, 60); }, 0, false},
        {"E04ABF huge interval", 0, [] { return one_dim(false, -kBig / 4, kBig / 4, 60); }, 3, false},
        {"E04BBF B < A", 0, [] { return one_dim(true, 2.0, 1.0, 50); }, 1, true},
        {"E04BBF NaN values", 1, [] { return one_dim(true, 0.0, 3.0, 50); }, 3, false},
        {"E04BBF NaN beyond 1.5", 4, [] { return one_dim(true, 0.0, 3.0, 60); }, 0, false},
        {"E04CCF N 0", 0, [] { return simplex(0, 1, 1e-8, 100); }, 1, true},
        {"E04CCF IW N", 0, [] { return simplex(2, 2, 1e-8, 100); }, 1, true},
        {"E04CCF TOL 0", 0, [] { return simplex(2, 3, 0.0, 100); }, 1, true},
        {"E04CCF TOL NaN", 0, [] { return simplex(2, 3, kNaN, 100); }, 1, true},
        {"E04CCF MAXCAL 0", 0, [] { return simplex(2, 3, 1e-8, 0); }, 1, true},
        {"E04CCF MAXCAL 3", 0, [] { return simplex(2, 3, 1e-8, 3); }, 2, false},
        {"E04CCF NaN values", 1, [] { return simplex(2, 3, 1e-8, 500); }, 3, false},
        {"E04CCF -Inf values", 3, [] { return simplex(2, 3, 1e-8, 500); }, 3, false},
        {"E04DGA N 0", 0, [] { return cg(0); }, 9, true},
        {"E04DGA NaN start", 1, [] { return cg(3); }, 6, false},
        {"E04DGA +Inf start", 2, [] { return cg(3); }, 6, false},
        {"E04DGA stop", 5, [] { return cg(3); }, -1, false},
    };
    for (const Row &r : rows) check(r);
}

TEST(HostileMinimisers, BoundFamilyRowsEndInTheirIfail) {
    for (int which = 0; which < 4; ++which) {
        const Row rows[] = {
            {"N 0", 0, [=] { return bound(which, 0, 0, -1.0, 1.0); }, 1, true},
            {"IBOUND 4", 0, [=] { return bound(which, 2, 4, -1.0, 1.0); }, 1, true},
            {"IBOUND -1", 0, [=] { return bound(which, 2, -1, -1.0, 1.0); }, 1, true},
            {"crossed", 0, [=] { return bound(which, 2, 0, 1.0, -1.0); }, 1, true},
            {"NaN bound", 0, [=] { return bound(which, 2, 0, kNaN, 1.0); }, 1, true},
            {"LIW short", 0, [=] { return bound(which, 2, 0, -1.0, 3.0, 1, 0); }, 1, true},
            {"LW short", 0, [=] { return bound(which, 2, 0, -1.0, 3.0, 0, 1); }, 1, true},
            {"N 1 LW short", 0, [=] { return bound(which, 1, 0, -1.0, 3.0, 0, 1); }, 1, true},
            {"NaN start", 1, [=] { return bound(which, 2, 1, 0.0, 0.0); }, 9, false},
            {"-Inf start", 3, [=] { return bound(which, 2, 1, 0.0, 0.0); }, 9, false},
            {"stop", 5, [=] { return bound(which, 2, 1, 0.0, 0.0); }, -2, false},
            {"huge bounds", 0, [=] { return bound(which, 2, 0, -kBig, kBig); }, 0, false},
            {"NaN beyond 1.5", 4, [=] { return bound(which, 2, 0, -1.0, 3.0); }, 0, false},
            {"N 1 fixed", 0, [=] { return bound(which, 1, 0, 0.5, 0.5); }, 0, false},
        };
        for (const Row &r : rows) check(r, std::string("routine ") + std::to_string(which) + " ");
    }
    const Row rows[] = {
        {"E04KDF ETA 1", 0, [] { return comprehensive(1.0, 0.0, 10.0, 1); }, 1, true},
        {"E04KDF ETA NaN", 0, [] { return comprehensive(kNaN, 0.0, 10.0, 1); }, 1, true},
        {"E04KDF STEPMX < XTOL", 0, [] { return comprehensive(0.5, 1.0, 0.5, 1); }, 1, true},
        {"E04KDF LH 0", 0, [] { return comprehensive(0.5, 0.0, 10.0, 0); }, 1, true},
        {"E04KDF good", 0, [] { return comprehensive(0.5, 0.0, 10.0, 1); }, 0, false},
    };
    for (const Row &r : rows) check(r);
}

} // namespace
