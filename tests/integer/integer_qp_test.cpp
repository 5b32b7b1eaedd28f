// Integer QP (H02CBF, H02CEF): optima against enumeration of every integer point of small boxes, the
// all-continuous search against E04NFA, and the exits of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "integer_qp_test_support.h"
#include "optimisation/option_test_support.h"
#include "zek2/e04.h"

namespace {

using zek_test::Iqp;
using zek_test::IqpCall;

// The best objective over the integer points of P's box that satisfy its rows; false when none does.
bool enumerate(const Iqp &p, double *best, std::vector<double> *argmin) {
    std::vector<double> x(static_cast<std::size_t>(p.n));
    bool found = false;
    std::function<void(int)> visit = [&](int j) {
        if (j == p.n) {
            if (!p.feasible(x.data(), 1e-9)) return;
            const double f = p.objective(x.data());
            if (!found || f < *best) {
                *best = f;
                *argmin = x;
            }
            found = true;
            return;
        }
        for (double v = std::ceil(p.bl[j]); v <= p.bu[j]; v += 1.0) {
            x[static_cast<std::size_t>(j)] = v;
            visit(j + 1);
        }
    };
    visit(0);
    return found;
}

// A random convex instance: H = L L' (+ a little of the identity), a box [-2, 3] and up to two rows.
Iqp random_instance(std::mt19937 &gen, int n, int m) {
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    Iqp p = Iqp::box(n, m, -2.0, 3.0);
    std::vector<double> l(static_cast<std::size_t>(n * n));
    for (double &v : l) v = 2.0 * u(gen);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            double s = i == j ? 0.05 : 0.0;
            for (int k = 0; k < n; ++k) s += l[static_cast<std::size_t>(i + k * n)] * l[static_cast<std::size_t>(j + k * n)];
            p.h[static_cast<std::size_t>(i + j * n)] = s;
        }
    for (double &c : p.cvec) c = 4.0 * u(gen);
    for (int i = 1; i <= m; ++i) {
        for (int j = 1; j <= n; ++j) p.at(i, j) = std::round(3.0 * u(gen));
        p.bl[static_cast<std::size_t>(n + i - 1)] = -2.5 + u(gen);
        p.bu[static_cast<std::size_t>(n + i - 1)] = 2.5 + u(gen);
    }
    return p;
}

TEST(IntegerQp, OptimaEqualEnumerationWhereRoundingTheRelaxationFails) {
    std::mt19937 gen(20261124);
    int rounding_wrong = 0, solved = 0;
    for (int k = 0; k < 40; ++k) {
        const int n = 2 + k % 3, m = k % 3;
        const Iqp p = random_instance(gen, n, m);
        double best = 0.0;
        std::vector<double> argmin;
        const bool feasible = enumerate(p, &best, &argmin);
        for (bool callback : {false, true}) {
            IqpCall call;
            call.callback = callback;
            const int ifail = call.run(p);
            if (!feasible) {
                EXPECT_EQ(ifail, 1) << k;
                continue;
            }
            ASSERT_EQ(ifail, 0) << "instance " << k << (callback ? " H02CBF" : " H02CEF");
            EXPECT_NEAR(call.objective, best, 1e-7 * (1.0 + std::fabs(best))) << k;
            EXPECT_NEAR(p.objective(call.x.data()), call.objective, 1e-7 * (1.0 + std::fabs(best))) << k;
            EXPECT_TRUE(p.feasible(call.x.data(), 1e-6)) << k;
            for (double v : call.x) EXPECT_NEAR(v, std::round(v), 1e-5) << k;
            if (callback) {
                EXPECT_GT(call.iuser[0], 0) << "the Hessian routine was not called";
            }
        }
        if (!feasible) continue;
        ++solved;
        // The relaxation rounded to the nearest integers: infeasible or worse than the optimum.
        Iqp relaxed = p;
        std::fill(relaxed.intvar.begin(), relaxed.intvar.end(), 0);
        IqpCall r;
        ASSERT_EQ(r.run(relaxed), 0) << k;
        std::vector<double> rounded(r.x);
        for (double &v : rounded) v = std::round(v);
        if (!p.feasible(rounded.data(), 1e-9) || p.objective(rounded.data()) > best + 1e-9) ++rounding_wrong;
    }
    EXPECT_GT(solved, 30);
    EXPECT_GE(rounding_wrong, 5) << "the table must hold instances where rounding the relaxation is wrong";
}

TEST(IntegerQp, MixedProblemKeepsContinuousVariablesFree) {
    // minimise (x1 - 0.4)^2 + (x2 - x1 - 0.3)^2 with x1 integer and x2 continuous: x1 = 0, x2 = 0.3.
    Iqp p = Iqp::box(2, 0, -5.0, 5.0);
    p.h = {4.0, -2.0, -2.0, 2.0};
    p.cvec = {-0.8 + 0.6, -0.6};
    p.intvar = {1, 0};
    IqpCall call;
    ASSERT_EQ(call.run(p), 0);
    EXPECT_NEAR(call.x[0], 0.0, 1e-9);
    EXPECT_NEAR(call.x[1], 0.3, 1e-9);
    EXPECT_NEAR(call.objective, p.objective(call.x.data()), 1e-12);
}

TEST(IntegerQp, AllContinuousEqualsTheQpSolver) {
    std::mt19937 gen(7);
    for (int k = 0; k < 6; ++k) {
        Iqp p = random_instance(gen, 3 + k % 2, 2);
        std::fill(p.intvar.begin(), p.intvar.end(), 0);
        IqpCall call;
        const int ifail = call.run(p);

        // E04NFA from the same start with the options the search gives its first QP.
        zek_test::OptionState store("E04NFA");
        const int n = p.n, m = p.m, lda = p.lda(), ldh = p.n;
        for (const std::string o : {"Problem Type = QP2", "Print Level = 0", "Cold Start"}) {
            const int list = 0;
            int inform = 0;
            E04NHF(o.c_str(), &list, store.lwsav.data(), store.iwsav.data(), store.rwsav.data(), &inform,
                   static_cast<int>(o.size()));
        }
        std::vector<int> istate(static_cast<std::size_t>(n + m)), iwork(static_cast<std::size_t>(2 * n + 3));
        std::vector<double> x(static_cast<std::size_t>(n), 0.0), ax(static_cast<std::size_t>(std::max(m, 1))),
            clamda(static_cast<std::size_t>(n + m)), work(static_cast<std::size_t>(13 * n + 5 * m + 4 * n * n));
        int iter = 0, liwork = static_cast<int>(iwork.size()), lwork = static_cast<int>(work.size()), nfa = 1;
        double obj = 0.0;
        E04NFA(&n, &m, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.cvec.data(), p.h.data(), &ldh, nullptr, nullptr,
               istate.data(), x.data(), &iter, &obj, ax.data(), clamda.data(), iwork.data(), &liwork, work.data(), &lwork,
               nullptr, nullptr, store.lwsav.data(), store.iwsav.data(), store.rwsav.data(), &nfa);
        if (nfa == 3) {
            EXPECT_EQ(ifail, 3) << k;
            continue;
        }
        ASSERT_EQ(nfa, 0) << k;
        ASSERT_EQ(ifail, 0) << k;
        EXPECT_DOUBLE_EQ(call.objective, obj) << k;
        for (int j = 0; j < n; ++j) EXPECT_DOUBLE_EQ(call.x[static_cast<std::size_t>(j)], x[static_cast<std::size_t>(j)]);
    }
}

// Exits of the QP search's own: a table of problems and option lines, and the IFAIL each must give.
struct ExitCase {
    const char *name;
    int expected;
};

TEST(IntegerQp, ExitsOfItsOwn) {
    // Unconstrained convex QP in three integer variables, optimum far inside the box.
    Iqp base = Iqp::box(3, 0, -10.0, 10.0);
    base.h = {2.0, 0.5, 0.0, 0.5, 2.0, 0.5, 0.0, 0.5, 2.0};
    base.cvec = {-3.3, 1.7, -2.9};
    {
        IqpCall call;
        call.options = {"Maximum Degrees of Freedom = 1"};
        EXPECT_EQ(call.run(base), 5) << "first QP's reduced Hessian too big";
        EXPECT_NE(call.captured.find("Increase Maximum Degrees of Freedom with H02CDF and rerun H02CEF."),
                  std::string::npos)
            << call.captured;
    }
    {
        IqpCall call;
        call.ldh = 2;
        EXPECT_EQ(call.run(base), 6);
        EXPECT_NE(call.captured.find(" ** On entry, LDH .lt. N:"), std::string::npos) << call.captured;
    }
    {
        // 2 x1 = 1 has no integer solution.
        Iqp p = Iqp::box(1, 1, -3.0, 3.0);
        p.h = {1.0};
        p.at(1, 1) = 2.0;
        p.bl[1] = p.bu[1] = 1.0;
        IqpCall call;
        EXPECT_EQ(call.run(p), 1);
        EXPECT_NE(call.captured.find(" ** The problem does not have a feasible integer solution."), std::string::npos);
    }
    {
        // The Hessian routine returns NaN after its first products: the search stops with 14.
        IqpCall call;
        call.callback = true;
        call.nan_after = 3;
        EXPECT_EQ(call.run(base), 14);
    }
}

TEST(IntegerQp, BranchesWhoseReducedHessianOutgrowsItsDimensionAreReported) {
    // minimise |x - (0.5, 0.5, 0.5)|^2, x1 integer, subject to x1 + x2 <= 0.6 and x1 + x3 <= 0.6.  The
    // first QP ends on both rows (one free direction); the child x1 <= 0 leaves them (two free
    // directions, beyond a maximum of 1) and holds the optimum (0, 0.5, 0.5); the child x1 >= 1 gives
    // the integer point (1, -0.4, -0.4).
    Iqp p = Iqp::box(3, 2, -10.0, 10.0);
    p.h = {2.0, 0.0, 0.0, 0.0, 2.0, 0.0, 0.0, 0.0, 2.0};
    p.cvec = {-1.0, -1.0, -1.0};
    p.intvar = {1, 0, 0};
    p.at(1, 1) = 1.0;
    p.at(1, 2) = 1.0;
    p.at(2, 1) = 1.0;
    p.at(2, 3) = 1.0;
    p.bu[3] = 0.6;
    p.bu[4] = 0.6;
    // Started on both rows, the first QP never needs more than one free direction.
    const std::vector<double> start = {0.2, 0.4, 0.4};
    IqpCall call;
    call.options = {"Maximum Degrees of Freedom = 1"};
    call.x0 = start;
    EXPECT_EQ(call.run(p), 12) << call.captured;
    EXPECT_NEAR(call.x[0], 1.0, 1e-12);
    EXPECT_NE(call.captured.find(" ** The IP solution returned is the best found, but    1 branches were not"), std::string::npos) << call.captured;
    IqpCall log;
    log.options = {"Maximum Degrees of Freedom = 1"};
    log.msglvl = 2;
    log.x0 = start;
    log.run(p);
    EXPECT_NE(log.captured.find(" ** Reduced Hessian exceeds assigned dimension, terminate the search of this branch"),
              std::string::npos)
        << log.captured;
    IqpCall roomy;
    EXPECT_EQ(roomy.run(p), 0);
    EXPECT_NEAR(roomy.objective, p.objective(std::vector<double>{0.0, 0.5, 0.5}.data()), 1e-12);
}

TEST(IntegerQp, PrintsUnderItsOwnName) {
    Iqp p = Iqp::box(2, 0, -3.0, 3.0);
    p.h = {2.0, 0.0, 0.0, 2.0};
    p.cvec = {-1.2, 2.6};
    for (bool callback : {false, true}) {
        IqpCall call;
        call.callback = callback;
        call.msglvl = 1;
        ASSERT_EQ(call.run(p), 0);
        const std::string name = callback ? "H02CBF" : "H02CEF";
        EXPECT_NE(call.captured.find(" *** " + name), std::string::npos) << call.captured;
        EXPECT_NE(call.captured.find(" Exit " + name + " - Optimum IP solution found. "), std::string::npos);
        EXPECT_EQ(call.captured.find("H02BBF"), std::string::npos);
        EXPECT_NEAR(call.x[0], 1.0, 1e-12);
        EXPECT_NEAR(call.x[1], -1.0, 1e-12);
    }
}

} // namespace
