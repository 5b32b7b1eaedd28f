// One-dimensional minimisers, the simplex method and conjugate gradients on problems with known minima.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "mgh_problems.h"
#include "zek2/e04.h"

namespace {

const double kPi = std::acos(-1.0);

struct OneDim {
    const char *name;
    double (*f)(double);
    double (*g)(double);
    double a, b, xmin;
};
const OneDim kOneDim[] = {
    {"sine", [](double x) { return std::sin(x); }, [](double x) { return std::cos(x); }, 3.0, 6.0, 1.5 * kPi},
    {"quartic", [](double x) { return std::pow(x - 0.3, 4) + 1.0; },
     [](double x) { return 4.0 * std::pow(x - 0.3, 3); }, -2.0, 5.0, 0.3},
    {"exp_linear", [](double x) { return std::exp(x) - 2.0 * x; }, [](double x) { return std::exp(x) - 2.0; },
     -1.0, 3.0, std::log(2.0)},
    {"left_end", [](double x) { return x * x; }, [](double x) { return 2.0 * x; }, 1.0, 4.0, 1.0},
    // A zero slope at the lower end that is not the minimum: an inflection, then a maximum.
    {"end_inflection", [](double x) { return x * x * x * (x - 3.0) + 2.0; },
     [](double x) { return x * x * (4.0 * x - 9.0); }, 0.0, 5.0, 2.25},
    {"end_maximum", [](double x) { return (x * x - 1.0) * (x * x - 1.0); },
     [](double x) { return 4.0 * x * (x * x - 1.0); }, 0.0, 3.0, 1.0},
};

void f1(const double *x, double *fc, int *iuser, double *ruser) {
    *fc = kOneDim[iuser[0]].f(*x);
    ruser[0] += 1.0;
}
void fg1(const double *x, double *fc, double *gc, int *iuser, double *ruser) {
    *gc = kOneDim[iuser[0]].g(*x);
    f1(x, fc, iuser, ruser);
}

TEST(OneDimensional, BothMinimisersReachTheKnownMinimumWithinTheirTolerance) {
    for (int k = 0; k < static_cast<int>(std::size(kOneDim)); ++k) {
        for (int withgrad = 0; withgrad < 2; ++withgrad) {
            SCOPED_TRACE(std::string(kOneDim[k].name) + (withgrad ? " E04BBF" : " E04ABF"));
            double e1 = 1e-8, e2 = 1e-10, a = kOneDim[k].a, b = kOneDim[k].b, x = 0, f = 0, g = 0, calls = 0;
            int maxcal = 100, ifail = 1, iuser = k;
            if (withgrad) E04BBF(fg1, nullptr, &e1, &e2, &a, &b, &maxcal, &x, &f, &g, &iuser, &calls, &ifail);
            else E04ABF(f1, nullptr, &e1, &e2, &a, &b, &maxcal, &x, &f, &iuser, &calls, &ifail);
            EXPECT_EQ(ifail, 0);
            EXPECT_EQ(maxcal, static_cast<int>(calls));
            // A quartic's minimum is flat: its position is only known to the fourth root of the precision.
            EXPECT_NEAR(x, kOneDim[k].xmin, k == 1 ? 2e-3 : 1e-6);
            EXPECT_TRUE(a <= x && x <= b) << a << " " << x << " " << b;
            // The bracket shrinks around an inner minimum; E04BBF may stop on the slope's side alone.
            if (!withgrad && k != 3) {
                EXPECT_LE(b - a, 4.0 * (e1 * std::fabs(x) + e2) + (k == 1 ? 1e-2 : 1e-5));
            }
            EXPECT_EQ(f, kOneDim[k].f(x));
            EXPECT_LT(maxcal, k == 1 ? 100 : 60); // the quartic's slope has a triple zero
        }
    }
}

TEST(OneDimensional, LimitOfCallsGivesIfail2AtTheBestPoint) {
    double e1 = 0, e2 = 0, a = 3, b = 6, x = 0, f = 0, calls = 0;
    int maxcal = 4, ifail = 1, iuser = 0;
    E04ABF(f1, nullptr, &e1, &e2, &a, &b, &maxcal, &x, &f, &iuser, &calls, &ifail);
    EXPECT_EQ(ifail, 2);
    EXPECT_EQ(maxcal, 4);
    EXPECT_EQ(f, std::sin(x));
}

// ---- Simplex --------------------------------------------------------------------------------------

const mgh::Problem *g_problem = nullptr;
int g_calls = 0, g_monitor_calls = 0;
void simplex_f(const int *, const double *x, double *fc) {
    ++g_calls;
    *fc = mgh::value(*g_problem, x);
}
void simplex_monitor(const double *fmin, const double *fmax, const double *, const int *, const int *is,
                     const int *) {
    EXPECT_LE(*fmin, *fmax);
    EXPECT_GE(*is, 2);
    ++g_monitor_calls;
}

// Chebyquad for N = 7, zero at its minimum: residuals of Gauss-Chebyshev quadrature on [0, 1].
void chebyquad(const int *n, const double *x, double *fc) {
    double r[7] = {0, 1.0 / 3, 0, 1.0 / 15, 0, 1.0 / 35, 0};
    for (int j = 0; j < *n; ++j)
        for (double y = 2.0 * x[j] - 1.0, t0 = 1.0, t1 = y, i = 0; i < 7; ++i)
            r[static_cast<int>(i)] += t1 / *n, std::swap(t0, t1), t1 = 2.0 * y * t0 - t1;
    *fc = 0.0;
    for (double e : r) *fc += e * e;
}
void parabola(const int *, const double *x, double *fc) { *fc = std::pow(x[0] - 7.0, 2); }

TEST(Simplex, MinimisesTheTestProblemsFromTheirStandardStarts) {
    for (const char *name : {"Rosenbrock", "Beale", "HelicalValley", "PowellSingular", "Wood"}) {
        SCOPED_TRACE(name);
        g_problem = &mgh::find(name);
        g_calls = g_monitor_calls = 0;
        std::vector<double> x = g_problem->start;
        double fmin = 0;
        EXPECT_EQ(mgh::simplex(simplex_f, g_problem->n, x, &fmin, 1e-14, 20000, simplex_monitor), 0);
        EXPECT_LT(fmin, 1e-9);
        EXPECT_EQ(fmin, mgh::value(*g_problem, x.data()));
        EXPECT_GT(g_monitor_calls, 0);
        EXPECT_LE(g_calls, 20000);
    }
    // From ten times its standard start Chebyquad's simplex flattens and converges at f near 0.05 unless
    // rebuilt.
    std::vector<double> x(7);
    for (int j = 0; j < 7; ++j) x[j] = 10.0 * (j + 1.0) / 8.0;
    double fmin = 0;
    EXPECT_EQ(mgh::simplex(chebyquad, 7, x, &fmin, 1e-12, 20000), 0);
    EXPECT_LT(fmin, 1e-9);
    // One variable: a two-vertex simplex.
    x = {0.0};
    EXPECT_EQ(mgh::simplex(parabola, 1, x, &fmin, 1e-12, 20000), 0);
    EXPECT_NEAR(x[0], 7.0, 1e-5);
}

// ---- Conjugate gradients --------------------------------------------------------------------------

// The problem of IUSER(1), asking to stop (MODE -7) at call IUSER(2) when that is positive.
void cg_objfun(int *mode, const int *, const double *x, double *objf, double *objgrd, const int *, int *iuser,
               double *ruser) {
    *objf = mgh::value(mgh::problems()[iuser[0]], x, objgrd);
    ruser[0] += 1.0;
    if (iuser[1] > 0 && ruser[0] >= iuser[1]) *mode = -7;
}
void wrong_gradient(int *, const int *, const double *x, double *f, double *g, const int *, int *, double *) {
    *f = x[0] * x[0] + x[1] * x[1];
    g[0] = 2.0 * x[0];
    g[1] = 3.0 * x[1]; // should be 2 x2
}

TEST(ConjugateGradients, MinimisesTheTestProblemsWithSmallGradients) {
    for (int k = 0; k < static_cast<int>(mgh::problems().size()); ++k) {
        const mgh::Problem &p = mgh::problems()[k];
        SCOPED_TRACE(p.name);
        const bool singular = std::string(p.name) == "PowellSingular";
        std::vector<double> x = p.start, g;
        int iuser[2] = {k, 0};
        double objf = 0, ruser = 0;
        const int ifail = mgh::conjugate_gradients(cg_objfun, p.n, x, &objf, g, iuser, &ruser,
                                                   {"Print Level = 0", "Iteration Limit = 5000"});
        EXPECT_TRUE(ifail == 0 || ifail == 6) << ifail;
        EXPECT_LT(objf, singular ? 1e-6 : 1e-8);
        double gn = 0;
        for (double v : g) gn = std::max(gn, std::fabs(v));
        EXPECT_LT(gn, 1e-3);
        for (int j = 0; j < static_cast<int>(p.xmin.size()) && !singular; ++j) {
            EXPECT_NEAR(x[j], p.xmin[j], 1e-4);
        }
    }
}

TEST(ConjugateGradients, UserStopReturnsTheModeAndAWrongGradientIsCaught) {
    std::vector<double> x = {-1.2, 1.0}, g;
    int iuser[2] = {0, 5};
    double objf = 0, ruser = 0;
    EXPECT_EQ(mgh::conjugate_gradients(cg_objfun, 2, x, &objf, g, iuser, &ruser), -7);
    EXPECT_EQ(ruser, 5.0);
    x = {1.0, 1.0};
    EXPECT_EQ(mgh::conjugate_gradients(wrong_gradient, 2, x, &objf, g, iuser, &ruser), 7);
}

} // namespace
