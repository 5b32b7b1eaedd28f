// E04NFA and E04NCA on problems with known solutions, checked by the optimality conditions recomputed
// here from the data, and their exits.
#include <gtest/gtest.h>

#include <random>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

using namespace zek_test::qp;

// Expects at the result: bounds held, g = lambda_bounds + A'lambda_rows (g = c + Hx), multipliers of the
// right sign for their states and zero off the working set; all within tol.
void expect_optimal(const Qp &p, const QpOut &r, double tol, int label) {
    const int n = p.n, m = p.m;
    double violation = 0.0, sign = 0.0, stationarity = 0.0;
    for (int j = 0; j < n + m; ++j) {
        double v = j < n ? r.x[j] : 0.0, g = j < n ? p.c[j] - r.clamda[j] : 0.0;
        for (int k = 0; k < n && j >= n; ++k) v += p.a[(j - n) + k * m] * r.x[k];
        for (int k = 0; k < n && j < n; ++k) g += p.h[j + k * n] * r.x[k];
        for (int q = 0; q < m && j < n; ++q) g -= p.a[q + j * m] * r.clamda[n + q];
        violation = std::max({violation, p.bl[j] - v, v - p.bu[j]});
        const double lam = r.clamda[j];
        const int s = r.istate[j];
        sign = std::max(sign, s == 1 ? -lam : s == 2 ? lam : s == 0 ? std::fabs(lam) : 0.0);
        stationarity = std::max(stationarity, std::fabs(g));
    }
    EXPECT_LT(violation, tol) << label;
    EXPECT_LT(sign, tol) << label;
    EXPECT_LT(stationarity, tol) << label;
}

// The least-squares problem as the QP it is: H = A'A, c = cvec - A'b.
Qp as_qp(const Ls &p) {
    Qp q{p.n, p.nclin, p.c, p.bl, p.bu, std::vector<double>(p.n, 0.0), std::vector<double>(p.n * p.n, 0.0)};
    for (int i = 0; i < p.n; ++i)
        for (int k = 0; k < p.m; ++k) {
            q.c[i] -= p.a[k + i * p.m] * p.b[k];
            for (int j = 0; j < p.n; ++j) q.h[i + j * p.n] += p.a[k + i * p.m] * p.a[k + j * p.m];
        }
    return q;
}

// Random data in [-1, 1] (b in [-4, 4]), variables in [-0.5, 0.5], rows in [-0.3, 0.3].
Ls random_ls(std::mt19937 &gen, int m, int n, int nclin) {
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    Ls p{m, n, nclin, std::vector<double>(m * n), std::vector<double>(m), std::vector<double>(nclin * n), {}, {}, {}};
    for (double &v : p.a) v = u(gen);
    for (double &v : p.b) v = 4.0 * u(gen);
    for (double &v : p.c) v = u(gen);
    p.bl.assign(n, -0.5), p.bu.assign(n, 0.5);
    p.bl.resize(n + nclin, -0.3), p.bu.resize(n + nclin, 0.3);
    return p;
}

// A textbook QP: min (x1-1)^2 + (x2-2.5)^2 over three rows and x >= 0; optimum (1.4, 1.7).
const Qp textbook{2, 3, {1, -1, -1, -2, -2, 2}, {0, 0, -2, -6, -2}, {kBig, kBig, kBig, kBig, kBig}, {-2, -5}, {2, 0, 0, 2}};

// Each exit of E04NFA, and where it is optimal the known minimiser, objective and one state.  The
// textbook objective lacks the constant 1 + 6.25.  The indefinite -x1^2 + x2^2 on [-1, 2]^2 follows the
// negative curvature to x1 = 2, a point meeting the second-order conditions (its reduced Hessian is empty).
TEST(QuadraticProgramming, KnownAnswersAndExits) {
    Qp infeasible = textbook;
    infeasible.bl[0] = infeasible.bl[1] = 5.0;
    const std::vector<double> from = {2.0, 0.0};
    const struct {
        const char *name;
        Qp problem;
        std::vector<double> x0;
        std::vector<std::string> options;
        int ifail;
        std::vector<double> xstar = {};  // empty: not an optimal exit
        double obj = 0, tol = 0;
        int state_of = 0, state = 0;
    } rows[] = {
        {"textbook", textbook, from, {}, 0, {1.4, 1.7}, 0.8 - 7.25, 1e-12, 2, 1},
        {"indefinite", {2, 0, {}, {-1, -1}, {2, 2}, {0, 0}, {-2, 0, 0, 2}}, {0.5, 0.5}, {}, 0, {2, 0}, -4.0, 1e-14, 0, 2},
        {"unbounded (-x1^2, x1 free)", {2, 0, {}, {-kBig, 0}, {kBig, 1}, {0, 1}, {-2, 0, 0, 0}}, from, {}, 2},
        {"weak (any x1 in [-3, 3])", {2, 0, {}, {-3, 0}, {3, 1}, {0, 1}, {0, 0, 0, 0}}, from, {}, 1},
        {"infeasible", infeasible, from, {}, 3},
        {"iterations", textbook, from, {"Feasibility Phase Iterations 0", "Optimality Phase Iterations 1"}, 4},
        {"degrees", {2, 0, {}, {-5, -5}, {5, 5}, {-1, -1}, {2, 0, 0, 2}}, from, {"Maximum Degrees of Freedom 1"}, 5},
        {"type", textbook, from, {"Problem Type = QQ"}, 7},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Session s("E04NFA");
        for (const std::string &o : row.options) s.option(o);
        const QpOut r = run_nfa(s, row.problem, row.x0);
        EXPECT_EQ(r.ifail, row.ifail);
        if (row.xstar.empty()) continue;
        for (int j = 0; j < 2; ++j) EXPECT_NEAR(r.x[j], row.xstar[j], row.tol);
        EXPECT_NEAR(r.obj, row.obj, row.tol);
        EXPECT_EQ(r.istate[row.state_of], row.state);
        expect_optimal(row.problem, r, 1e-12, 0);
    }
}

// Random problems from x = 0: least squares through E04NCA and, as the strictly convex QPs they are
// (H = A'A), through E04NFA; then larger QPs whose working set changes many times: there the optimum is
// reached with the reduced Hessian carried through the changes, so the products with H number a few
// per iteration (plus a fresh Z'HZ now and then), not one per column of Z at every change.  The largest
// runs past the refresh of Z'HZ from products.
TEST(QuadraticProgramming, RandomProblemsMeetConditions) {
    std::mt19937 gen(7);
    for (int trial = 0; trial < 22; ++trial) {
        const bool large = trial >= 20;
        const int n = large ? (trial == 20 ? 40 : 150) : 2 + trial % 10, m = large ? n + 10 : n + trial % 4;
        if (trial == 20) gen.seed(23);
        const Ls ls = random_ls(gen, m, n, large ? n / 2 : trial % 5);
        const Qp p = as_qp(ls);
        Session s("E04NFA");
        s.option("Iteration Limit = 5000");
        const QpOut r = run_nfa(s, p, std::vector<double>(n, 0.0));
        ASSERT_EQ(r.ifail, 0) << trial;
        expect_optimal(p, r, 1e-9, trial);
        if (large) {
            EXPECT_GT(r.iter, n / 2) << n;
            EXPECT_LE(r.products, 3 * n + 3 * r.iter) << n << " variables, " << r.iter << " iterations";
            continue;
        }
        Session t("E04NCA");
        const LsOut q = run_nca(t, ls, std::vector<double>(n, 0.0));
        ASSERT_EQ(q.ifail, 0) << trial;
        expect_optimal(p, q, 1e-9, trial);
        double f = 0.0;  // OBJ is 1/2 |b - A x|^2
        for (int i = 0; i < m; ++i) {
            double ri = ls.b[i];
            for (int j = 0; j < n; ++j) ri -= ls.a[i + j * m] * q.x[j];
            f += 0.5 * ri * ri;
        }
        EXPECT_NEAR(q.obj, f, 1e-12 * std::max(1.0, f)) << trial;
    }
}

// Closed form: min |x - t|^2 over sum x = 1 with wide bounds is t + (1 - sum t)/n.
TEST(LeastSquares, EqualityConstrainedProjection) {
    const Ls p{3, 3, 1, {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0.5, -1.0, 2.0}, {1, 1, 1}, {-10, -10, -10, 1}, {10, 10, 10, 1}, {}};
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
    const Ls p{4, 3, 0, {1, 2, 0, 1, 1, 2, 0, 1, 0, 1, 3, 1}, {1, 2, 3, 4}, {}, {-100, -100, -100}, {100, 100, 100}, {}};
    Session s("E04NCA");
    s.option("Print Level = 1", false);
    zek_test::OutputCapture capture;
    const LsOut r = run_nca(s, p, {0, 0, 0});
    const std::vector<std::string> &host = capture.host();
    EXPECT_EQ(r.ifail, 1);
    for (const char *line : {" Rank of the objective function data matrix =     2", " Exit E04NCA - Weak LS solution."})
        EXPECT_TRUE(has_line(host, line)) << line;
    expect_optimal(as_qp(p), r, 1e-9, 0);  // still a minimiser
}

} // namespace
