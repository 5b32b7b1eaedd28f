// E04NFA and E04NCA on problems with known solutions, checked by the optimality conditions recomputed
// here from the data, and their exits with exact texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "zek2/e04.h"

namespace {

constexpr double kBig = 1e20;

struct Qp {
    int n = 0, m = 0;
    std::vector<double> a, bl, bu, c, h;  // a: m by n (ld max(1,m)); h: n by n
};

struct QpOut {
    int ifail = -99, iter = -1;
    double obj = 0.0;
    std::vector<int> istate;
    std::vector<double> x, ax, clamda;
};

struct Session {
    std::vector<char> cwsav = std::vector<char>(80, ' ');
    std::vector<int> lwsav = std::vector<int>(120, 0), iwsav = std::vector<int>(610, 0);
    std::vector<double> rwsav = std::vector<double>(475, 0.0);
    explicit Session(const char *name) {
        int l1 = 1, l2 = 120, l3 = 610, l4 = 475, ifail = 0;
        E04WBA_PLAIN(name, cwsav.data(), &l1, lwsav.data(), &l2, iwsav.data(), &l3, rwsav.data(), &l4, &ifail);
    }
    void nfa_option(const std::string &s) {
        int inform = 0;
        E04NHF_PLAIN(s.c_str(), lwsav.data(), iwsav.data(), rwsav.data(), &inform, static_cast<int>(s.size()));
    }
    void nca_option(const std::string &s) {
        int inform = 0;
        E04NEF_PLAIN(s.c_str(), lwsav.data(), iwsav.data(), rwsav.data(), &inform, static_cast<int>(s.size()));
    }
};

extern "C" void hessian_product(const int *n, const int *, const double *h, const int *ldh, const double *x,
                                double *hx, const int *, int *iuser, double *) {
    ++iuser[0];
    for (int i = 0; i < *n; ++i) {
        hx[i] = 0.0;
        for (int j = 0; j < *n; ++j) hx[i] += h[i + j * *ldh] * x[j];
    }
}

QpOut run_nfa(Session &s, const Qp &p, std::vector<double> x0, int lwork = -1, int ifail_in = 1,
              ZekQpHessian f = hessian_product) {
    QpOut r;
    const int n = p.n, m = p.m, lda = std::max(1, m), ldh = n;
    r.istate.assign(n + m, 0);
    r.x = std::move(x0);
    r.ax.assign(std::max(m, 1), 0.0);
    r.clamda.assign(n + m, 0.0);
    int liwork = 2 * n + 3;
    if (lwork < 0) lwork = 13 * n + 5 * m + 4 * n * n + 8;
    std::vector<int> iwork(liwork);
    std::vector<double> work(std::max(lwork, 1));
    int iuser[1] = {0};
    double ruser[1] = {0.0};
    r.ifail = ifail_in;
    std::vector<double> a = p.a.empty() ? std::vector<double>(1, 0.0) : p.a;
    E04NFA(&n, &m, a.data(), &lda, p.bl.data(), p.bu.data(), p.c.data(), p.h.data(), &ldh, f, nullptr,
           r.istate.data(), r.x.data(), &r.iter, &r.obj, r.ax.data(), r.clamda.data(), iwork.data(), &liwork,
           work.data(), &lwork, iuser, ruser, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &r.ifail);
    return r;
}

// Bound violation, stationarity |g - lambda_b - A'lambda_r| and wrong-sign multipliers, g = c + Hx.
struct Conditions {
    double violation = 0.0, stationarity = 0.0, sign = 0.0;
};
Conditions conditions(const Qp &p, const QpOut &r) {
    Conditions k;
    const int n = p.n, m = p.m;
    std::vector<double> g(n), v(n + m);
    for (int i = 0; i < n; ++i) {
        g[i] = p.c.empty() ? 0.0 : p.c[i];
        for (int j = 0; j < n; ++j) g[i] += p.h[i + j * n] * r.x[j];
        v[i] = r.x[i];
    }
    for (int i = 0; i < m; ++i) {
        v[n + i] = 0.0;
        for (int j = 0; j < n; ++j) v[n + i] += p.a[i + j * m] * r.x[j];
    }
    for (int j = 0; j < n + m; ++j) {
        if (p.bl[j] > -kBig) k.violation = std::max(k.violation, p.bl[j] - v[j]);
        if (p.bu[j] < kBig) k.violation = std::max(k.violation, v[j] - p.bu[j]);
        const double lam = r.clamda[j];
        if (r.istate[j] == 1) k.sign = std::max(k.sign, -lam);
        if (r.istate[j] == 2) k.sign = std::max(k.sign, lam);
        if (r.istate[j] == 0) k.sign = std::max(k.sign, std::fabs(lam));
    }
    for (int i = 0; i < n; ++i) {
        double s = g[i] - r.clamda[i];
        for (int q = 0; q < m; ++q) s -= p.a[q + i * m] * r.clamda[n + q];
        k.stationarity = std::max(k.stationarity, std::fabs(s));
    }
    return k;
}

// A textbook QP: min (x1-1)^2 + (x2-2.5)^2 over three rows and x >= 0; optimum (1.4, 1.7).
Qp textbook() {
    Qp p;
    p.n = 2;
    p.m = 3;
    p.a = {1, -1, -1, -2, -2, 2};
    p.bl = {0, 0, -2, -6, -2};
    p.bu = {kBig, kBig, kBig, kBig, kBig};
    p.c = {-2, -5};
    p.h = {2, 0, 0, 2};
    return p;
}

TEST(QuadraticProgramming, TextbookOptimum) {
    Session s("E04NFA");
    const Qp p = textbook();
    const QpOut r = run_nfa(s, p, {2.0, 0.0});
    ASSERT_EQ(r.ifail, 0);
    EXPECT_NEAR(r.x[0], 1.4, 1e-12);
    EXPECT_NEAR(r.x[1], 1.7, 1e-12);
    EXPECT_NEAR(r.obj, 0.8 - 7.25, 1e-12);  // the constant 1 + 6.25 is not part of the objective
    const Conditions k = conditions(p, r);
    EXPECT_LT(k.violation, 1e-12);
    EXPECT_LT(k.stationarity, 1e-12);
    EXPECT_LT(k.sign, 1e-12);
    EXPECT_EQ(r.istate[2], 1);
}

// Random strictly convex QPs: the optimality conditions hold at the result.
TEST(QuadraticProgramming, RandomConvexMeetsConditions) {
    std::mt19937 gen(7);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    for (int trial = 0; trial < 20; ++trial) {
        Qp p;
        p.n = 3 + trial % 9;
        p.m = trial % 5;
        const int n = p.n, m = p.m;
        std::vector<double> b(n * n);
        for (double &v : b) v = u(gen);
        p.h.assign(n * n, 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                for (int k = 0; k < n; ++k) p.h[i + j * n] += b[k + i * n] * b[k + j * n];
                if (i == j) p.h[i + j * n] += 0.1;
            }
        p.a.resize(m * n);
        for (double &v : p.a) v = u(gen);
        p.c.resize(n);
        for (double &v : p.c) v = 3.0 * u(gen);
        for (int j = 0; j < n; ++j) {
            p.bl.push_back(-1.0);
            p.bu.push_back(1.0);
        }
        for (int i = 0; i < m; ++i) {
            p.bl.push_back(-0.5);
            p.bu.push_back(trial % 2 ? 0.5 : kBig);
        }
        Session s("E04NFA");
        const QpOut r = run_nfa(s, p, std::vector<double>(n, 0.0));
        ASSERT_EQ(r.ifail, 0) << "trial " << trial;
        const Conditions k = conditions(p, r);
        EXPECT_LT(k.violation, 1e-9) << trial;
        EXPECT_LT(k.stationarity, 1e-9) << trial;
        EXPECT_LT(k.sign, 1e-9) << trial;
    }
}

// Indefinite H: min -x1^2 + x2^2 on [-1, 2]^2 from (0.5, 0.5) follows the negative curvature to x1 = 2,
// a point meeting the second-order conditions (the reduced Hessian is empty there).
TEST(QuadraticProgramming, NonconvexEndsAtSecondOrderPoint) {
    Session s("E04NFA");
    Qp p;
    p.n = 2;
    p.bl = {-1, -1};
    p.bu = {2, 2};
    p.c = {0, 0};
    p.h = {-2, 0, 0, 2};
    const QpOut r = run_nfa(s, p, {0.5, 0.5});
    ASSERT_EQ(r.ifail, 0);
    EXPECT_DOUBLE_EQ(r.x[0], 2.0);
    EXPECT_NEAR(r.x[1], 0.0, 1e-14);
    EXPECT_EQ(r.istate[0], 2);
    EXPECT_EQ(r.istate[1], 0);
    EXPECT_NEAR(r.obj, -4.0, 1e-14);
}

struct ExitRow {
    const char *name;
    Qp problem;
    std::vector<double> x0;
    std::vector<std::string> options;
    int ifail;
};

TEST(QuadraticProgramming, ExitsTable) {
    Qp unbounded;  // -x1^2 with x1 free
    unbounded.n = 2;
    unbounded.bl = {-kBig, 0};
    unbounded.bu = {kBig, 1};
    unbounded.c = {0, 1};
    unbounded.h = {-2, 0, 0, 0};
    Qp weak;  // H zero, c = (0, 1), x2 >= 0: every x1 in [0, 1] is optimal
    weak.n = 2;
    weak.bl = {0, 0};
    weak.bu = {1, 1};
    weak.c = {0, 1};
    weak.h = {0, 0, 0, 0};
    Qp interior;  // (x1-0.5)^2 + (x2-0.5)^2 on [-5, 5]^2
    interior.n = 2;
    interior.bl = {-5, -5};
    interior.bu = {5, 5};
    interior.c = {-1, -1};
    interior.h = {2, 0, 0, 2};
    Qp infeasible = textbook();
    infeasible.bl[0] = 5.0;
    infeasible.bl[1] = 5.0;
    const ExitRow rows[] = {
        {"unbounded", unbounded, {0.5, 0.5}, {}, 2},
        {"weak", weak, {0.5, 0.5}, {}, 1},
        {"infeasible", infeasible, {0.0, 0.0}, {}, 3},
        {"iterations", textbook(), {2.0, 0.0}, {"Feasibility Phase Iterations 0", "Optimality Phase Iterations 1"}, 4},
        {"degrees", interior, {0.0, 0.0}, {"Maximum Degrees of Freedom 1"}, 5},
        {"type", textbook(), {0.0, 0.0}, {"Problem Type = QQ"}, 7},
    };
    for (const ExitRow &row : rows) {
        Session s("E04NFA");
        for (const std::string &o : row.options) s.nfa_option(o);
        const QpOut r = run_nfa(s, row.problem, row.x0);
        EXPECT_EQ(r.ifail, row.ifail) << row.name;
    }
}

// ---- E04NCA -----------------------------------------------------------------------------------------

struct Ls {
    int m = 0, n = 0, nclin = 0;
    std::vector<double> a, b, c, bl, bu, cvec;  // a: m by n; c: nclin by n
};

struct LsOut : QpOut {
    std::vector<int> kx;
};

LsOut run_nca(Session &s, Ls p, std::vector<double> x0, int lwork = -1, std::vector<int> kx = {}) {
    LsOut r;
    const int m = p.m, n = p.n, nclin = p.nclin, ldc = std::max(1, nclin), lda = std::max(1, m);
    r.istate.assign(n + nclin, 0);
    r.kx = kx.empty() ? std::vector<int>(n, 0) : kx;
    r.x = std::move(x0);
    r.clamda.assign(n + nclin, 0.0);
    if (p.c.empty()) p.c.assign(1, 0.0);
    if (p.cvec.empty()) p.cvec.assign(n, 0.0);
    int liwork = 2 * n + 3;
    if (lwork < 0) lwork = 17 * n + 7 * nclin + 5 * n * n + 2 * m + std::max(m, n) * n + 8;
    std::vector<int> iwork(liwork);
    std::vector<double> work(std::max(lwork, 1));
    r.ifail = -1;
    E04NCA(&m, &n, &nclin, &ldc, &lda, p.c.data(), p.bl.data(), p.bu.data(), p.cvec.data(), r.istate.data(),
           r.kx.data(), r.x.data(), p.a.data(), p.b.data(), &r.iter, &r.obj, r.clamda.data(), iwork.data(), &liwork,
           work.data(), &lwork, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &r.ifail);
    return r;
}

// The same problem as a QP in the form `conditions` reads: H = A'A, c = cvec - A'b.
Qp as_qp(const Ls &p) {
    Qp q;
    q.n = p.n;
    q.m = p.nclin;
    q.a = p.c;
    q.bl = p.bl;
    q.bu = p.bu;
    q.h.assign(p.n * p.n, 0.0);
    q.c.assign(p.n, 0.0);
    for (int i = 0; i < p.n; ++i) {
        q.c[i] = p.cvec.empty() ? 0.0 : p.cvec[i];
        for (int k = 0; k < p.m; ++k) q.c[i] -= p.a[k + i * p.m] * p.b[k];
        for (int j = 0; j < p.n; ++j)
            for (int k = 0; k < p.m; ++k) q.h[i + j * p.n] += p.a[k + i * p.m] * p.a[k + j * p.m];
    }
    return q;
}

Ls random_ls(std::mt19937 &gen, int m, int n, int nclin) {
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    Ls p;
    p.m = m;
    p.n = n;
    p.nclin = nclin;
    p.a.resize(m * n);
    for (double &v : p.a) v = u(gen);
    p.b.resize(m);
    for (double &v : p.b) v = 4.0 * u(gen);
    p.c.resize(nclin * n);
    for (double &v : p.c) v = u(gen);
    for (int j = 0; j < n; ++j) {
        p.bl.push_back(-0.5);
        p.bu.push_back(0.5);
    }
    for (int i = 0; i < nclin; ++i) {
        p.bl.push_back(-0.3);
        p.bu.push_back(0.3);
    }
    return p;
}

TEST(LeastSquares, RandomBoundedProblemsMeetConditions) {
    std::mt19937 gen(11);
    for (int trial = 0; trial < 20; ++trial) {
        const int n = 2 + trial % 6, m = n + trial % 4, nclin = trial % 3;
        const Ls p = random_ls(gen, m, n, nclin);
        Session s("E04NCA");
        const LsOut r = run_nca(s, p, std::vector<double>(n, 0.0));
        ASSERT_EQ(r.ifail, 0) << trial;
        const Qp q = as_qp(p);
        QpOut qr = r;
        const Conditions k = conditions(q, qr);
        EXPECT_LT(k.violation, 1e-9) << trial;
        EXPECT_LT(k.stationarity, 1e-9) << trial;
        EXPECT_LT(k.sign, 1e-9) << trial;
        // OBJ is 1/2 |b - A x|^2.
        double f = 0.0;
        for (int i = 0; i < m; ++i) {
            double ri = p.b[i];
            for (int j = 0; j < n; ++j) ri -= p.a[i + j * m] * r.x[j];
            f += 0.5 * ri * ri;
        }
        EXPECT_NEAR(r.obj, f, 1e-12 * std::max(1.0, f)) << trial;
    }
}

// Closed form: min |x - t|^2 over sum x = 1 with wide bounds is t + (1 - sum t)/n.
TEST(LeastSquares, EqualityConstrainedProjection) {
    Ls p;
    p.m = p.n = 3;
    p.nclin = 1;
    p.a = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    p.b = {0.5, -1.0, 2.0};
    p.c = {1, 1, 1};
    p.bl = {-10, -10, -10, 1};
    p.bu = {10, 10, 10, 1};
    Session s("E04NCA");
    const LsOut r = run_nca(s, p, {0, 0, 0});
    ASSERT_EQ(r.ifail, 0);
    const double shift = (1.0 - 1.5) / 3.0;
    for (int j = 0; j < 3; ++j) EXPECT_NEAR(r.x[j], p.b[j] + shift, 1e-14);
    EXPECT_EQ(r.istate[3], 3);
    EXPECT_NEAR(r.clamda[3], shift, 1e-14);  // g = x - b = shift (1, 1, 1) = lambda (1, 1, 1)
}

// A repeated column: rank 2 of 3, and the minimiser is not unique inside the bounds.
TEST(LeastSquares, RankDeficientDataIsWeakAndReported) {
    Ls p;
    p.m = 4;
    p.n = 3;
    p.a = {1, 2, 0, 1, 1, 2, 0, 1, 0, 1, 3, 1};
    p.b = {1, 2, 3, 4};
    p.bl = {-100, -100, -100};
    p.bu = {100, 100, 100};
    Session s("E04NCA");
    s.nca_option("Print Level = 1");
    zek_test::OutputCapture capture;
    const LsOut r = run_nca(s, p, {0, 0, 0});
    const std::vector<std::string> &host = capture.host();
    EXPECT_EQ(r.ifail, 1);
    const auto has = [&](const std::string &line) {
        return std::any_of(host.begin(), host.end(), [&](const std::string &h) { return h.rfind(line, 0) == 0; });
    };
    EXPECT_TRUE(has(" Rank of the objective function data matrix =     2"));
    EXPECT_TRUE(has(" Exit E04NCA - Weak LS solution."));
    // Still a minimiser: the normal equations hold.
    const Conditions k = conditions(as_qp(p), r);
    EXPECT_LT(k.stationarity, 1e-9);
    std::vector<int> sorted = r.kx;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, (std::vector<int>{1, 2, 3}));
}

struct NcaInputError {
    const char *name;
    void (*spoil)(Ls &, int &lwork, std::vector<int> &kx, Session &);
    std::vector<std::string> records;
};

TEST(LeastSquares, InputErrorsWithTheirTexts) {
    const NcaInputError rows[] = {
        {"m", [](Ls &p, int &, std::vector<int> &, Session &) { p.m = 0; }, {" ** On entry, M.le.0:"}},
        {"kx",
         [](Ls &, int &, std::vector<int> &kx, Session &s) {
             s.nca_option("Warm Start");
             kx = {1, 1, 3};
         },
         {" ** On entry, KX has not been supplied as a valid permutation."}},
        {"workspace", [](Ls &, int &lwork, std::vector<int> &, Session &) { lwork = 108; },
         {" ** Not enough workspace to solve problem."}},
        {"nan", [](Ls &p, int &, std::vector<int> &, Session &) { p.b[1] = std::nan(""); },
         {" ** On entry, B(2) is not finite:"}},
    };
    for (const NcaInputError &row : rows) {
        std::mt19937 gen(3);
        Ls p = random_ls(gen, 4, 3, 1);
        int lwork = -1;
        std::vector<int> kx;
        Session s("E04NCA");
        row.spoil(p, lwork, kx, s);
        if (p.m == 0) p.a.assign(12, 0.0), p.b.assign(4, 0.0);
        zek_test::OutputCapture capture;
        const LsOut r = run_nca(s, p, {0, 0, 0}, lwork, kx);
        const std::vector<std::string> &host = capture.host();
        EXPECT_EQ(r.ifail, 6) << row.name;
        for (const std::string &line : row.records)
            EXPECT_TRUE(std::any_of(host.begin(), host.end(), [&](const std::string &h) { return h.rfind(line, 0) == 0; }))
                << row.name << ": " << line;
    }
}

} // namespace
