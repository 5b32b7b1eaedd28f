// Integer QP (H02CEF, H02CBF): optima against enumeration of every integer point of small boxes, the
// all-continuous search against E04NFA, and the exits of its own.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "integer_test_support.h"

namespace {

using zek_test::IntegerProgram;
using zek_test::IqpCall;
using zek_test::Vec;

// A random convex instance: H = L L' + 0.05 I, the box [-2, 3], M rows with small integer coefficients.
IntegerProgram random_instance(std::mt19937 &gen, int n, int m) {
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    IntegerProgram p = IntegerProgram::box(n, m, 3.0, -2.0);
    Vec l(static_cast<std::size_t>(n * n));
    for (double &v : l) v = 2.0 * u(gen);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            double &h = p.h[static_cast<std::size_t>(i + j * n)];
            h = i == j ? 0.05 : 0.0;
            for (int k = 0; k < n; ++k) h += l[static_cast<std::size_t>(i + k * n)] * l[static_cast<std::size_t>(j + k * n)];
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
        const IntegerProgram p = random_instance(gen, 2 + k % 3, k % 3);
        double best = HUGE_VAL;
        Vec x(static_cast<std::size_t>(p.n));
        std::function<void(int)> visit = [&](int j) {
            if (j == p.n) {
                if (p.feasible(x, 1e-9)) best = std::min(best, p.objective(x));
                return;
            }
            for (x[j] = -2.0; x[j] <= 3.0; x[j] += 1.0) visit(j + 1);
        };
        visit(0);
        for (bool callback : {false, true}) {
            IqpCall call;
            call.callback = callback;
            const int ifail = call.run(p);
            ASSERT_EQ(ifail, best < HUGE_VAL ? 0 : 1) << "instance " << k << " H02C" << (callback ? 'B' : 'E') << 'F';
            EXPECT_NEAR(call.objective, ifail == 0 ? best : call.objective, 1e-7 * (1.0 + std::fabs(best))) << k;
            EXPECT_NEAR(p.objective(call.x), ifail == 0 ? call.objective : p.objective(call.x), 1e-9) << k;
            EXPECT_TRUE(ifail != 0 || p.feasible(call.x, 1e-6)) << k;
            EXPECT_EQ(call.iuser[0] > 0, callback) << k;
        }
        if (best == HUGE_VAL) continue;
        ++solved;
        // All continuous, the search is one QP, the same as E04NFA's; rounded to the nearest integers, its
        // optimum is infeasible or worse than the integer one.
        IntegerProgram relaxed = p;
        std::fill(relaxed.intvar.begin(), relaxed.intvar.end(), 0);
        IqpCall r;
        ASSERT_EQ(r.run(relaxed), 0) << k;
        // E04NFA itself, from the same start and with the options the search gives its first QP.
        double obj = 0.0;
        Vec x0(p.n, 0.0);
        EXPECT_EQ(zek_test::qp_solver("QP2", p.n, p.m, p.a.data(), std::max(p.m, 1), p.bl.data(), p.bu.data(),
                                      p.cvec.data(), p.h.data(), p.n, x0, &obj), 0);
        EXPECT_EQ(r.x, x0) << k;
        EXPECT_EQ(r.objective, obj) << k;
        for (double &v : r.x) v = std::round(v);
        rounding_wrong += !p.feasible(r.x, 1e-9) || p.objective(r.x) > best + 1e-9;
    }
    EXPECT_GT(solved, 30);
    EXPECT_GE(rounding_wrong, 5) << "the table must hold instances where rounding the relaxation is wrong";
}

TEST(IntegerQp, ExitsOfItsOwn) {
    // Three integer variables, the free optimum inside the box.
    IntegerProgram free = IntegerProgram::box(3, 0, 10.0, -10.0);
    free.h = {2.0, 0.5, 0.0, 0.5, 2.0, 0.5, 0.0, 0.5, 2.0};
    free.cvec = {-3.3, 1.7, -2.9};
    // 2 x1 = 1: no integer solution.
    IntegerProgram odd = IntegerProgram::box(1, 1, 3.0, -3.0);
    odd.h = {1.0};
    odd.at(1, 1) = 2.0;
    odd.bl[1] = odd.bu[1] = 1.0;
    // minimise |x - (0.5, 0.5, 0.5)|^2, x1 integer, with x1 + x2 <= 0.6 and x1 + x3 <= 0.6.  Started on both
    // rows, the first QP keeps one free direction; the child x1 <= 0 leaves the rows and needs two, beyond
    // a maximum of 1, while it holds the optimum (0, 0.5, 0.5); the child x1 >= 1 gives (1, -0.4, -0.4).
    IntegerProgram rows = IntegerProgram::box(3, 2, 10.0, -10.0);
    rows.h = {2.0, 0.0, 0.0, 0.0, 2.0, 0.0, 0.0, 0.0, 2.0};
    rows.cvec = {-1.0, -1.0, -1.0};
    rows.intvar = {1, 0, 0};
    rows.at(1, 1) = rows.at(1, 2) = rows.at(2, 1) = rows.at(2, 3) = 1.0;
    rows.bu[3] = rows.bu[4] = 0.6;
    // Each row: the problem, MAXIMUM DEGREES OF FREEDOM (0: not set), start on the rows, LDH (-1: N),
    // the Hessian routine and the call from which it returns NaN, MSGLVL, then the IFAIL and a line of text.
    const struct {
        const IntegerProgram *p;
        int maxdeg;
        bool on_rows;
        int ldh, callback, nan_from, msglvl, ifail;
        const char *text;
    } cases[] = {
        {&free, 1, false, -1, 0, 0, 0, 5, "    Increase Maximum Degrees of Freedom with H02CDF and rerun H02CEF."},
        {&free, 0, false, 2, 0, 0, 0, 6, " ** On entry, LDH .lt. N:"},
        {&odd, 0, false, -1, 0, 0, 0, 1, " ** The problem does not have a feasible integer solution."},
        {&free, 0, false, -1, 1, 3, 0, 14, " ** A QP gave a value that is not finite (a product by the Hessian, or its"},
        {&rows, 1, true, -1, 0, 0, 2, 12, " ** Reduced Hessian exceeds assigned dimension, terminate the search of this"},
        {&rows, 1, true, -1, 0, 0, 0, 12, " ** The IP solution returned is the best found, but    1 branches were not"},
        {&rows, 0, false, -1, 0, 0, 1, 0, " Exit H02CEF - Optimum IP solution found. "},
        {&rows, 0, false, -1, 1, 0, 1, 0, " *** H02CBF"},
    };
    for (const auto &c : cases) {
        IqpCall call;
        if (c.maxdeg > 0) call.options = {"Maximum Degrees of Freedom = " + std::to_string(c.maxdeg)};
        if (c.on_rows) call.x = {0.2, 0.4, 0.4};
        call.ldh = c.ldh, call.callback = c.callback != 0, call.iuser[1] = c.nan_from, call.msglvl = c.msglvl;
        EXPECT_EQ(call.run(*c.p), c.ifail) << c.text;
        EXPECT_NE(call.captured.find(c.text), std::string::npos) << call.captured;
        EXPECT_EQ(call.captured.find("H02BBF"), std::string::npos);
        // The branch left unsearched held the optimum (0, 0.5, 0.5): IFAIL 12 says so of (1, -0.4, -0.4).
        EXPECT_EQ(call.x[0], c.ifail == 12 ? 1.0 : call.x[0]);
        const double optimum = rows.objective({0.0, 0.5, 0.5});
        EXPECT_NEAR(c.p == &rows && c.ifail == 0 ? call.objective : optimum, optimum, 1e-12);
    }
}

} // namespace
