// Nonlinear least squares: the easy forms on the test problems, the covariance routine's own cases,
// large residuals, and IFAIL 0 only at a stationary point.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "lsq_test_support.h"
#include "mgh_problems.h"
#include "zek2/e04.h"

namespace {

namespace lsq = zek_test::lsq;
const mgh::Problem *g_p = nullptr;

void lsq_fun(int *iflag, const int *, const int *, const double *x, double *fvec, double *fjac, const int *lj, int *,
         double *) {
    std::vector<double> j(static_cast<std::size_t>(g_p->m) * g_p->n);
    g_p->residuals(x, fvec, j.data());
    if (*iflag == 2)
        for (int c = 0; c < g_p->n; ++c)
            for (int i = 0; i < g_p->m; ++i) fjac[i + c * *lj] = j[i + c * g_p->m];
}
void lsq_diff(int *, const int *, const int *, const double *x, double *fvec, int *, double *) {
    g_p->residuals(x, fvec, nullptr);
}

// sum f_i f_i'' by central differences of the exact Jacobian, packed by rows.
void lsq_hes(int *, const int *m_, const int *n_, const double *fvec, const double *x, double *b, const int *, int *,
             double *) {
    const int m = *m_, n = *n_;
    std::vector<double> xp(x, x + n), r(m), jp(static_cast<std::size_t>(m) * n), jm(jp.size());
    for (int j = 0; j < n; ++j) {
        const double h = 1e-5 * (1.0 + std::fabs(x[j]));
        xp[j] = x[j] + h;
        g_p->residuals(xp.data(), r.data(), jp.data());
        xp[j] = x[j] - h;
        g_p->residuals(xp.data(), r.data(), jm.data());
        xp[j] = x[j];
        for (int i = j; i < n; ++i) {
            double t = 0.0;
            for (int q = 0; q < m; ++q) t += fvec[q] * (jp[q + i * m] - jm[q + i * m]) / (2.0 * h);
            b[i * (i + 1) / 2 + j] = t;
        }
    }
}

TEST(LeastSquares, EasyFormsSolveTheTestProblems) {
    const char *const names[] = {"E04GYF", "E04FYF", "E04GZF", "E04HYF"};
    for (const mgh::Problem &p : mgh::problems()) {
        for (int diff = 0; diff < 4; ++diff) {
            SCOPED_TRACE(std::string(p.name) + " " + names[diff]);
            g_p = &p;
            const int m = p.m, n = p.n;
            const int lw = 8 * n + 2 * n * n + 2 * m * n + 3 * m + 11;
            std::vector<double> x = p.start, w(lw);
            double fsumsq = -1, ruser = 0;
            int ifail = 1, iuser = 0;
            switch (diff) {
            case 0: E04GYF(&m, &n, lsq_fun, nullptr, x.data(), &fsumsq, w.data(), &lw, &iuser, &ruser, &ifail); break;
            case 1: E04FYF(&m, &n, lsq_diff, nullptr, x.data(), &fsumsq, w.data(), &lw, &iuser, &ruser, &ifail); break;
            case 2: E04GZF(&m, &n, lsq_fun, nullptr, x.data(), &fsumsq, w.data(), &lw, &iuser, &ruser, &ifail); break;
            default:
                E04HYF(&m, &n, lsq_fun, nullptr, lsq_hes, nullptr, x.data(), &fsumsq, w.data(), &lw, &iuser, &ruser,
                       &ifail);
                break;
            }
            EXPECT_EQ(ifail, 0);
            EXPECT_LT(fsumsq, 1e-10);
            EXPECT_EQ(fsumsq, mgh::value(p, x.data()));
        }
    }
}

// V a rotation by 30 degrees and FSUMSQ 6: with S = (2, 1) and M = 5, sigma2 = 6/3 = 2 and the
// covariance is 2 V diag(1/4, 1) V'; M = N with full rank gives sigma2 0; an all-zero S is IFAIL 2 (CJ
// untouched); a tiny second value is IFAIL 3 with one value accepted, sigma2 = 6/(5-1).
TEST(LeastSquares, CovarianceJobsAndRankCases) {
    const double c = std::cos(0.5235987755982988), s = std::sin(0.5235987755982988), fsumsq = 6.0;
    const double cov[4] = {2 * (c * c / 4 + s * s), 2 * (-c * s / 4 + s * c), 2 * (-c * s / 4 + s * c), 2 * (s * s / 4 + c * c)};
    const struct {
        int job, m;
        double s1, s2;
        int ifail;
        std::vector<double> want;  // JOB -1: the whole of V; otherwise CJ
    } rows[] = {
        {-1, 5, 2, 1, 0, {cov[0], cov[1], cov[2], cov[3]}}, {0, 5, 2, 1, 0, {cov[0], cov[3]}},
        {1, 5, 2, 1, 0, {cov[0], cov[1]}}, {2, 5, 2, 1, 0, {cov[2], cov[3]}},
        {0, 2, 2, 1, 0, {0, 0}}, {0, 5, 0, 0, 2, {-1, -1}}, {0, 5, 2, 1e-300, 3, {1.5 * c * c / 4}},
    };
    for (const auto &r : rows) {
        SCOPED_TRACE(r.job * 10 + r.ifail);
        const int n = 2, lv = 2;
        double v[4] = {c, -s, s, c}, cj[2] = {-1, -1}, work[2], sv[2] = {r.s1, r.s2};
        int ifail = 1;
        E04YCF(&r.job, &r.m, &n, &fsumsq, sv, v, &lv, cj, work, &n, &ifail);
        EXPECT_EQ(ifail, r.ifail);
        for (std::size_t k = 0; k < r.want.size(); ++k) EXPECT_NEAR(r.job == -1 ? v[k] : cj[k], r.want[k], 1e-14);
    }
}

// Large-residual problems of Moré, Garbow and Hillstrom, where the second-order term stays large at
// the minimum and Gauss-Newton converges slowly: Brown and Dennis (m 20, n 4) and Jennrich and Sampson
// (m 10, n 2), with their published starts; the minima were confirmed by solving grad f = 0 with mpmath.
void brown_dennis(const double *x, double *r, double *j) {
    for (int i = 0; i < 20; ++i) {
        const double t = (i + 1) / 5.0;
        const double u = x[0] + t * x[1] - std::exp(t), v = x[2] + x[3] * std::sin(t) - std::cos(t);
        r[i] = u * u + v * v;
        if (j) {
            j[i] = 2.0 * u;
            j[i + 20] = 2.0 * t * u;
            j[i + 40] = 2.0 * v;
            j[i + 60] = 2.0 * std::sin(t) * v;
        }
    }
}
void jennrich_sampson(const double *x, double *r, double *j) {
    for (int i = 0; i < 10; ++i) {
        const double k = i + 1, a = std::exp(k * x[0]), b = std::exp(k * x[1]);
        r[i] = 2.0 + 2.0 * k - (a + b);
        if (j) {
            j[i] = -k * a;
            j[i + 10] = -k * b;
        }
    }
}

// Both the differenced and the analytic forms carry the quasi-Newton term: on large residuals pure
// Gauss-Newton steps crawl (461 iterations on Brown-Dennis, 13 on Jennrich-Sampson from these starts).
TEST(LeastSquares, TheQuasiNewtonTermSpeedsLargeResidualFits) {
    const mgh::Problem problems[] = {
        {"BrownDennis", 4, 20, {25.0, 5.0, -5.0, -1.0}, 85822.2016263563, {}, brown_dennis},
        {"JennrichSampson", 2, 10, {0.3, 0.4}, 124.362182355615, {}, jennrich_sampson},
    };
    const int most_iterations[] = {40, 12};
    for (int q = 0; q < 2; ++q) {
        const mgh::Problem &p = problems[q];
        SCOPED_TRACE(p.name);
        g_p = &p;
        lsq::Settings set;
        set.stepmx = 100.0;
        for (lsq::Routine r : {lsq::kFC, lsq::kGB}) {
            SCOPED_TRACE(lsq::name(r));
            const lsq::Fit o = lsq::fit(r, p.m, p.n, lsq_fun, lsq_diff, p.start, set);
            EXPECT_EQ(o.ifail, 0);
            EXPECT_NEAR(o.fsumsq, p.fmin, 1e-9 * p.fmin);
            EXPECT_EQ(o.igrade, p.n);
            EXPECT_LE(o.niter, most_iterations[q]);
        }
    }
}

// Chebyquad (n = m = 8): f_i = mean over j of the shifted Chebyshev polynomial T_i(x_j) less its
// integral over [0, 1].  From ten times the standard start f is near 1e24.
void chebyquad8(const double *x, double *r, double *jac) {
    for (int i = 0; i < 8; ++i) r[i] = (i % 2 == 1) ? 1.0 / ((i + 1.0) * (i + 1.0) - 1.0) : 0.0;
    for (int j = 0; j < 8; ++j) {
        const double y = 2.0 * x[j] - 1.0;
        double t0 = 1.0, t1 = y, d0 = 0.0, d1 = 2.0;
        for (int i = 0; i < 8; ++i) {
            r[i] += t1 / 8.0;
            if (jac) jac[i + j * 8] = d1 / 8.0;
            const double t2 = 2.0 * y * t1 - t0, d2 = 4.0 * t1 + 2.0 * y * d1 - d0;
            t0 = t1, t1 = t2, d0 = d1, d1 = d2;
        }
    }
}

// IFAIL 0 claims a minimum: the published one, or every column of J nearly orthogonal to f.
TEST(LeastSquares, IfailZeroOnlyAtAStationaryPoint) {
    const mgh::Problem cheb{"Chebyquad8", 8, 8, {1, 2, 3, 4, 5, 6, 7, 8}, 3.51687e-3, {}, chebyquad8};
    for (const mgh::Problem &p : {cheb, mgh::find("Box3"), mgh::find("HelicalValley")}) {
        SCOPED_TRACE(p.name);
        g_p = &p;
        const int m = p.m, n = p.n;
        lsq::Settings set;
        set.maxcal = 200 * (n + 1) * (n + 1), set.xtol = 1e-10;
        std::vector<double> x = p.start;
        for (double &e : x) e *= p.n == 8 ? 10.0 / 9.0 : 10.0;
        const lsq::Fit o = lsq::fit(lsq::kGD, m, n, lsq_fun, nullptr, x, set);
        if (o.ifail != 0 || o.fsumsq <= p.fmin * (1.0 + 1e-6) + 1e-10) continue;
        for (int c = 0; c < n; ++c) {
            double g = 0.0, cn = 0.0;
            for (int i = 0; i < m; ++i) g += o.j[i + c * m] * o.f[i], cn = std::hypot(cn, o.j[i + c * m]);
            EXPECT_LE(std::fabs(g), 1e-5 * cn * std::sqrt(o.fsumsq)) << "column " << c;
        }
    }
}

} // namespace
