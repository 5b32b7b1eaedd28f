// E04UCA on problems of the Hock-Schittkowski collection (definitions, start points and optima from
// the book), E04USA on constrained least squares, and the checks of the user's derivatives.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "frame/host_capture.h"
#include "hs_collection.h"
#include "sqp_test_support.h"

namespace {

using zek_test::qp::kBig;
using zek_test::sqp::Nlp;
using zek_test::sqp::Out;
using zek_test::sqp::hs071;

Nlp hs035() {
    Nlp p;
    p.n = 3, p.nclin = 1, p.a = {1, 1, 2}, p.x0 = {0.5, 0.5, 0.5};
    p.bl = {0, 0, 0, -kBig}, p.bu = {kBig, kBig, kBig, 3};
    p.f = [](const double *x, double *g) {
        g[0] = -8 + 4 * x[0] + 2 * x[1] + 2 * x[2];
        g[1] = -6 + 4 * x[1] + 2 * x[0];
        g[2] = -4 + 2 * x[2] + 2 * x[0];
        return 9 - 8 * x[0] - 6 * x[1] - 4 * x[2] + 2 * x[0] * x[0] + 2 * x[1] * x[1] + x[2] * x[2] + 2 * x[0] * x[1] +
               2 * x[0] * x[2];
    };
    p.fstar = 1.0 / 9.0, p.xstar = {4.0 / 3.0, 7.0 / 9.0, 4.0 / 9.0};
    return p;
}

Nlp hs076() {
    Nlp p;
    p.n = 4, p.nclin = 3, p.a = {1, 3, 0, 2, 1, 1, 1, 2, 4, 1, -1, 0}, p.x0 = {0.5, 0.5, 0.5, 0.5};
    p.bl = {0, 0, 0, 0, -kBig, -kBig, 1.5}, p.bu = {kBig, kBig, kBig, kBig, 5, 4, kBig};
    p.f = [](const double *x, double *g) {
        g[0] = 2 * x[0] - x[2] - 1;
        g[1] = x[1] - 3;
        g[2] = 2 * x[2] - x[0] + x[3] + 1;
        g[3] = x[3] + x[2] - 1;
        return x[0] * x[0] + 0.5 * x[1] * x[1] + x[2] * x[2] + 0.5 * x[3] * x[3] - x[0] * x[2] + x[2] * x[3] - x[0] -
               3 * x[1] + x[2] - x[3];
    };
    p.fstar = -4.681818181, p.xstar = {0.2727273, 2.090909, 0.0, 0.5454545};
    return p;
}

// Problems of the shared table (every constraint nonlinear there) with their published minimisers.
Nlp from_table(const char *name, std::vector<double> xstar) {
    for (const zek_test::hs::Problem &p : zek_test::hs::collection())
        if (std::string(p.name) == name) {
            Nlp q = zek_test::hs::as_nlp(p);
            q.xstar = std::move(xstar);
            return q;
        }
    return {};
}
Nlp hs001() { return from_table("HS001", {1, 1}); }
Nlp hs043() { return from_table("HS043", {0, 1, 2, -1}); }
Nlp hs100() {
    return from_table("HS100", {2.330499, 1.951372, -0.4775414, 4.365726, -0.6244870, 1.038131, 1.594227});
}

struct Case {
    const char *name;
    Nlp (*make)();
};
const Case kCases[] = {{"HS001", hs001}, {"HS043", hs043}, {"HS035", hs035}, {"HS071", hs071}, {"HS076", hs076}, {"HS100", hs100}};

void expect_solution(const Nlp &p, const Out &r, const char *name) {
    SCOPED_TRACE(name);
    ASSERT_EQ(r.ifail, 0);
    EXPECT_NEAR(r.objf, p.fstar, 1e-6 * (1 + std::fabs(p.fstar)));
    for (int j = 0; j < p.n; ++j) EXPECT_NEAR(r.x[j], p.xstar[j], 1e-5 * (1 + std::fabs(p.xstar[j])));
    const zek_test::sqp::Kkt k = zek_test::sqp::kkt(p, r);
    const double scale = 1 + std::fabs(p.fstar);
    EXPECT_LT(k.stationarity, 1e-5 * scale);
    EXPECT_LT(k.sign, 1e-8);
    EXPECT_LT(k.complementarity, 1e-6 * scale);
    EXPECT_LT(k.violation, 1e-7);
}

TEST(SqpHockSchittkowski, ReachesPublishedOptimumWithConsistentMultipliers) {
    for (const Case &c : kCases) {
        const Nlp p = c.make();
        expect_solution(p, zek_test::sqp::run_uca(p), c.name);
    }
}

TEST(SqpHockSchittkowski, MissingDerivativesAreEstimated) {
    // One gradient element and one Jacobian element left unset: differences stand in for them.
    zek_test::sqp::Faults f;
    f.skip_gradient = 1;
    f.skip_jacobian = 2;
    const Nlp p = hs071();
    expect_solution(p, zek_test::sqp::run_uca(p, {"Derivative Level = 0"}, f), "HS071 with missing derivatives");
    const Nlp q = hs100();
    expect_solution(q, zek_test::sqp::run_uca(q, {}, f), "HS100 with missing derivatives");
}

TEST(SqpHockSchittkowski, MajorIterationsLimitZeroOnlyChecksTheStart) {
    const Out far = zek_test::sqp::run_uca(hs071(), {"Major Iterations Limit = 0"});
    EXPECT_EQ(far.ifail, 4);
    EXPECT_EQ(far.iter, 0);
}

TEST(SqpHockSchittkowski, WarmStartFromASolvedRunNeedsNoMore) {
    for (const Case &c : kCases) {
        SCOPED_TRACE(c.name);
        const Nlp p = c.make();
        const Out cold = zek_test::sqp::run_uca(p);
        ASSERT_EQ(cold.ifail, 0);
        const Out warm = zek_test::sqp::run_uca(p, {"Warm Start"}, {}, {}, &cold);
        expect_solution(p, warm, c.name);
        EXPECT_LE(warm.iter, 1);
    }
}

TEST(SqpDerivativeChecks, PlantedWrongElementIsCaughtAtEachVerifyLevel) {
    struct Row {
        const char *options;
        int wrong_gradient, wrong_jacobian, ifail;
    };
    const Row rows[] = {
        {"Verify Level = 1", 2, -1, 7},  {"Verify Level = 3", 2, -1, 7},  {"Verify Level = 2", -1, 3, 7},
        {"Verify Level = 3", -1, 3, 7},  {"Verify Level = 13", -1, 0, 7}, {"Verify Level = 1", -1, -1, 0},
        {"Verify Level = 3", -1, -1, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.options);
        zek_test::sqp::Faults f;
        f.wrong_gradient = row.wrong_gradient;
        f.wrong_jacobian = row.wrong_jacobian;
        const Out r = zek_test::sqp::run_uca(hs071(), {row.options}, f);
        EXPECT_EQ(r.ifail, row.ifail);
    }
}

TEST(SqpExits, EachExitPrintsItsLine) {
    struct Row {
        const char *option;
        zek_test::sqp::Faults faults;
        int ifail;
        const char *line;
    };
    zek_test::sqp::Faults none, stop, wrong, skip;
    stop.stop_after = 2;
    wrong.wrong_gradient = 0;
    skip.skip_gradient = 3;
    const Row rows[] = {
        {"Major Print Level = 1", none, 0, " Exit E04UCA - Optimal solution found."},
        {"Major Iterations Limit = 1", none, 4, " Exit E04UCA - Too many major iterations.             "},
        {"Major Print Level = 1", stop, -1, " Exit E04UCA - User requested termination."},
        {"Verify Level = 1", wrong, 7, " Exit E04UCA - Large errors found in the derivatives. "},
        {"Verify Level = 1", wrong, 7, " XXX  There seem to be     1  incorrect objective gradients out of the     4"},
        {"Major Print Level = 1", skip, 0, " The user sets      3   out of     4   objective gradient elements."},
        {"Derivative Level = 0", none, 0, " Derivative level increased to    3"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.line);
        zek_test::OutputCapture capture;
        const Out r = zek_test::sqp::run_uca(hs071(), {"Major Print Level = 1", row.option}, row.faults);
        const std::vector<std::string> &host = capture.host();
        EXPECT_EQ(r.ifail, row.ifail);
        EXPECT_TRUE(std::any_of(host.begin(), host.end(), [&](const std::string &h) { return h.rfind(row.line, 0) == 0; }));
    }
}

// ---- E04USA -------------------------------------------------------------------------------------------

extern "C" void lsq_objfun(int *mode, const int *m, const int *n, const int *ldfj, const double *x, double *f,
                           double *fjac, const int *, int *iuser, double *) {
    if (iuser[0] == 0) {  // Rosenbrock's residuals
        f[0] = 10 * (x[1] - x[0] * x[0]);
        f[1] = 1 - x[0];
        if (*mode == 2) {
            fjac[0] = -20 * x[0];
            fjac[1] = -1;
            fjac[*ldfj] = 10;
            fjac[1 + *ldfj] = 0;
        }
    } else {  // F(x) = x
        for (int i = 0; i < *m; ++i) f[i] = x[i];
        if (*mode == 2)
            for (int j = 0; j < *n; ++j)
                for (int i = 0; i < *m; ++i) fjac[i + j * *ldfj] = i == j ? 1.0 : 0.0;
    }
}
extern "C" void lsq_confun(int *mode, const int *, const int *, const int *, int *, const double *x, double *c,
                           double *cjac, const int *, int *, double *) {
    c[0] = x[0] * x[0] + x[1] * x[1];
    if (*mode == 2) {
        cjac[0] = 2 * x[0];
        cjac[1] = 2 * x[1];
    }
}

struct LsqCase {
    const char *name;
    int kind, ncnln;
    std::vector<double> bl, bu, y, x0, xstar;
    double fstar;
    const char *option;
};

TEST(SqpLeastSquares, ConstrainedFitsReachTheirMinimum) {
    const LsqCase cases[] = {
        // Rosenbrock's residuals with x1 <= 0.5: the bound holds at (0.5, 0.25).
        {"bounded Rosenbrock", 0, 0, {-kBig, -kBig}, {0.5, kBig}, {0, 0}, {-1.2, 1.0}, {0.5, 0.25}, 0.125, "JTJ"},
        // Nearest point to (2, 2) in the disc of radius sqrt 2.
        {"disc", 1, 1, {-kBig, -kBig, -kBig}, {kBig, kBig, 2.0}, {2, 2}, {0, 0.5}, {1, 1}, 1.0, "Reset Frequency = 1"},
    };
    for (const LsqCase &c : cases) {
        SCOPED_TRACE(c.name);
        zek_test::qp::Session s("E04USA");
        for (const char *line : {c.option, "Major Print Level = 1"})
            EXPECT_EQ(zek_test::option(s, zek::e04::Family::USA, line), 0) << line;
        zek_test::OutputCapture capture;
        const int m = 2, n = 2, nclin = 0, ncnln = c.ncnln, lda = 1, ldcj = 1, ldfj = 2, ldr = 2;
        const int liwork = 2 * n + 3 + ncnln;
        const int lwork = static_cast<int>(zek_test::sqp::uca_lwork(n, nclin, ncnln, m)) + n;
        std::vector<int> istate(n + ncnln), iwork(liwork);
        std::vector<double> a(1), cv(1), cjac(2), f(2), fjac(4), clamda(n + ncnln), r(4), x = c.x0, work(lwork);
        int iuser[1] = {c.kind}, iter = 0, ifail = 1;
        double ruser[1], objf = 0;
        E04USA(&m, &n, &nclin, &ncnln, &lda, &ldcj, &ldfj, &ldr, a.data(), c.bl.data(), c.bu.data(), c.y.data(),
               lsq_confun, nullptr, lsq_objfun, nullptr, &iter, istate.data(), cv.data(), cjac.data(), f.data(),
               fjac.data(), clamda.data(), &objf, r.data(), x.data(), iwork.data(), &liwork, work.data(), &lwork, iuser,
               ruser, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &ifail);
        ASSERT_EQ(ifail, 0);
        EXPECT_NEAR(objf, c.fstar, 1e-8);
        EXPECT_NEAR(x[0], c.xstar[0], 1e-6);
        EXPECT_NEAR(x[1], c.xstar[1], 1e-6);
        // The active constraint carries the multiplier of the gradient J'(F - Y).
        EXPECT_NEAR(clamda[c.kind == 1 ? 2 : 0], -0.5, 1e-6);
        // The exit and the solution table name E04USA's rows; the active one is at its upper bound.
        const std::vector<std::string> &host = capture.host();
        EXPECT_NE(std::find(host.begin(), host.end(), " Exit E04USA - Optimal solution found."), host.end());
        const std::string row = c.kind == 1 ? " N   1    UL              2      None                 2        -0.5"
                                            : " V   1    UL            0.5      None               0.5        -0.5";
        EXPECT_TRUE(std::any_of(host.begin(), host.end(), [&](const std::string &h) { return h.rfind(row, 0) == 0; }));
    }
}

TEST(SqpHessianUpdate, SecantConditionHoldsAfterTheUpdate) {
    // After the update H s = y for the pair as damped (y is changed in place only when s'y < 0.2 s'Hs);
    // R stays upper triangular with a positive diagonal.
    const int n = 4, ldr = 5;
    std::vector<double> r(ldr * n, 0.0), work(2 * n);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i <= j; ++i) r[i + j * ldr] = i == j ? 1.0 + j : 0.1 * (i + 1);
    const std::vector<double> s = {1.0, -0.5, 0.25, 2.0};
    std::vector<double> y = {3.0, 0.5, 1.0, 4.0};
    int inform = -5;
    E04_HESSIAN_UPDATE(&n, r.data(), &ldr, s.data(), y.data(), work.data(), &inform);
    ASSERT_EQ(inform, 0);
    for (int i = 0; i < n; ++i) {
        EXPECT_GT(r[i + i * ldr], 0.0);
        for (int k = i + 1; k < n; ++k) EXPECT_EQ(r[k + i * ldr], 0.0);
        double hs = 0;
        for (int j = 0; j < n; ++j)
            for (int k = 0; k <= std::min(i, j); ++k) hs += r[k + i * ldr] * r[k + j * ldr] * s[j];
        EXPECT_NEAR(hs, y[i], 1e-12 * 10);
    }
}

} // namespace
