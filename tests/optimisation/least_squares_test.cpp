// Nonlinear least squares: the test problems' sums of squares, a certified regression problem with the
// covariance of its parameters, and the covariance routine's own cases.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "mgh_problems.h"
#include "zek2/e04.h"

namespace {

const mgh::Problem *g_p = nullptr;

void lsq(int *iflag, const int *, const int *, const double *x, double *fvec, double *fjac, const int *lj, int *,
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
            case 0: E04GYF(&m, &n, lsq, nullptr, x.data(), &fsumsq, w.data(), &lw, &iuser, &ruser, &ifail); break;
            case 1: E04FYF(&m, &n, lsq_diff, nullptr, x.data(), &fsumsq, w.data(), &lw, &iuser, &ruser, &ifail); break;
            case 2: E04GZF(&m, &n, lsq, nullptr, x.data(), &fsumsq, w.data(), &lw, &iuser, &ruser, &ifail); break;
            default:
                E04HYF(&m, &n, lsq, nullptr, lsq_hes, nullptr, x.data(), &fsumsq, w.data(), &lw, &iuser, &ruser,
                       &ifail);
                break;
            }
            EXPECT_EQ(ifail, 0);
            EXPECT_LT(fsumsq, 1e-10);
            EXPECT_EQ(fsumsq, mgh::value(p, x.data()));
        }
    }
}

// Misra1a of the NIST StRD nonlinear regression collection: y = b1 (1 - exp(-b2 x)).
const double kMisraX[] = {77.6, 114.9, 141.1, 190.8, 239.9, 289.0, 332.8, 378.4, 434.8, 477.3, 536.8, 593.1, 689.1, 760.0};
const double kMisraY[] = {10.07, 14.73, 17.94, 23.93, 29.61, 35.18, 40.02, 44.82, 50.76, 55.05, 61.01, 66.40, 75.47, 81.78};

void misra(int *iflag, const int *m, const int *, const double *b, double *f, double *j, const int *lj, int *,
           double *) {
    for (int i = 0; i < *m; ++i) {
        const double e = std::exp(-b[1] * kMisraX[i]);
        f[i] = b[0] * (1.0 - e) - kMisraY[i];
        if (*iflag == 2) {
            j[i] = 1.0 - e;
            j[i + *lj] = b[0] * kMisraX[i] * e;
        }
    }
}

double digits(double value, double certified) {
    const double rel = std::fabs(value - certified) / std::fabs(certified);
    return rel == 0.0 ? 16.0 : -std::log10(rel);
}

TEST(LeastSquares, CertifiedValuesOfMisra1aFromBothStartsWithTheirStandardDeviations) {
    const double starts[2][2] = {{500.0, 1e-4}, {250.0, 5e-4}};
    for (int r = 0; r < 4; ++r) {
        const auto &start = starts[r % 2];
        SCOPED_TRACE(r < 2 ? "E04GBF" : "E04GDF");
        const int m = 14, n = 2, lj = 14, lv = 2, iprint = -1, maxcal = 400, liw = 1, lw = 7 * n + m * n + 2 * m + n * n;
        const double eta = 0.5, xtol = 1e-12, stepmx = 1e4;
        double b[2] = {start[0], start[1]}, fsumsq, fvec[14], fjac[28], s[2], v[4], w[64], ruser = 0;
        int niter, nf, igrade, iw[1], ifail = 1, iuser = 0;
        if (r < 2)
            E04GBF(&m, &n, misra, nullptr, nullptr, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol, &stepmx,
                   b, &fsumsq, fvec, fjac, &lj, s, v, &lv, &niter, &nf, &igrade, iw, &liw, w, &lw, &iuser, &ruser,
                   &ifail);
        else
            E04GDF(&m, &n, misra, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol, &stepmx, b, &fsumsq,
                   fvec, fjac, &lj, s, v, &lv, &niter, &nf, &igrade, iw, &liw, w, &lw, &iuser, &ruser, &ifail);
        EXPECT_EQ(igrade, 2);
        EXPECT_EQ(ifail, 0);
        EXPECT_GE(digits(b[0], 2.3894212918E+02), 8.0);
        EXPECT_GE(digits(b[1], 5.5015643181E-04), 8.0);
        EXPECT_GE(digits(fsumsq, 1.2455138894E-01), 9.0);
        // Standard deviations of the parameters from the covariance's diagonal.
        const int job = 0;
        double cj[2], work[2];
        ifail = 1;
        E04YCF(&job, &m, &n, &fsumsq, s, v, &lv, cj, work, &n, &ifail);
        EXPECT_EQ(ifail, 0);
        EXPECT_GE(digits(std::sqrt(cj[0]), 2.7070075241E+00), 6.0);
        EXPECT_GE(digits(std::sqrt(cj[1]), 7.2668688436E-06), 6.0);
    }
}

TEST(LeastSquares, CovarianceJobsAndRankCases) {
    // V a rotation by 30 degrees, S = (2, 1): covariance = sigma2 V diag(1/4, 1) V'.
    const double c = std::cos(0.5235987755982988), s30 = std::sin(0.5235987755982988);
    const double s[2] = {2.0, 1.0};
    const int m = 5, n = 2, lv = 2;
    const double fsumsq = 6.0;  // sigma2 = 6/3 = 2
    const double expected[4] = {2.0 * (c * c / 4 + s30 * s30), 2.0 * (c * -s30 / 4 + s30 * c),
                                2.0 * (c * -s30 / 4 + s30 * c), 2.0 * (s30 * s30 / 4 + c * c)};
    for (int job = -1; job <= 2; ++job) {
        double v[4] = {c, -s30, s30, c}, cj[2] = {0, 0}, work[2];
        int ifail = 1;
        E04YCF(&job, &m, &n, &fsumsq, s, v, &lv, cj, work, &n, &ifail);
        EXPECT_EQ(ifail, 0);
        for (int a = 0; a < 2; ++a) {
            if (job == -1) {
                for (int b = 0; b < 2; ++b) EXPECT_NEAR(v[a + 2 * b], expected[a + 2 * b], 1e-14);
            } else {
                EXPECT_NEAR(cj[a], job == 0 ? expected[3 * a] : expected[a + 2 * (job - 1)], 1e-14);
            }
        }
    }
    // M = N with full rank: SIGMA2 is 0.  All-zero S: IFAIL 2.  A tiny second value: IFAIL 3.
    struct Row {
        int m;
        double s1, s2;
        int ifail;
        double cj0;
    };
    const Row rows[] = {{2, 2.0, 1.0, 0, 0.0}, {5, 0.0, 0.0, 2, -1.0}, {5, 2.0, 1e-300, 3, 1.5 * c * c / 4}};
    for (const Row &r : rows) {
        double v[4] = {c, -s30, s30, c}, cj[2] = {-1, -1}, work[2], sv[2] = {r.s1, r.s2};
        int ifail = 1, job = 0;
        E04YCF(&job, &r.m, &n, &fsumsq, sv, v, &lv, cj, work, &n, &ifail);
        EXPECT_EQ(ifail, r.ifail);
        EXPECT_NEAR(cj[0], r.cj0, 1e-14);  // SIGMA2 = 6/(5-1) with one value accepted
    }
}

} // namespace

namespace {

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

TEST(LeastSquares, TheQuasiNewtonTermBeatsGaussNewtonOnLargeResiduals) {
    const mgh::Problem problems[] = {
        {"BrownDennis", 4, 20, {25.0, 5.0, -5.0, -1.0}, 85822.2016263563, {}, brown_dennis},
        {"JennrichSampson", 2, 10, {0.3, 0.4}, 124.362182355615, {}, jennrich_sampson},
    };
    for (const mgh::Problem &p : problems) {
        SCOPED_TRACE(p.name);
        g_p = &p;
        const int m = p.m, n = p.n, lj = m, lv = n, iprint = -1, maxcal = 4000, liw = 1;
        const int lw = 7 * n + m * n + 2 * m + n * n;
        const double eta = 0.5, xtol = 1e-12, stepmx = 100.0;
        int iters[2] = {0, 0};
        for (int qn = 0; qn < 2; ++qn) {
            std::vector<double> x = p.start, fvec(m), fjac(m * n), s(n), v(n * n), w(lw);
            double fsumsq = 0, ruser = 0;
            int niter = 0, nf = 0, igrade = 0, iw = 0, iuser = 0, ifail = 1;
            if (qn)
                E04GBF(&m, &n, lsq, nullptr, nullptr, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol,
                       &stepmx, x.data(), &fsumsq, fvec.data(), fjac.data(), &lj, s.data(), v.data(), &lv, &niter,
                       &nf, &igrade, &iw, &liw, w.data(), &lw, &iuser, &ruser, &ifail);
            else
                E04FCF(&m, &n, lsq_diff, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol, &stepmx,
                       x.data(), &fsumsq, fvec.data(), fjac.data(), &lj, s.data(), v.data(), &lv, &niter, &nf,
                       &igrade, &iw, &liw, w.data(), &lw, &iuser, &ruser, &ifail);
            EXPECT_EQ(ifail, 0) << (qn ? "E04GBF" : "E04FCF");
            EXPECT_NEAR(fsumsq, p.fmin, 1e-9 * p.fmin) << (qn ? "E04GBF" : "E04FCF");
            EXPECT_EQ(igrade, n);
            iters[qn] = niter;
        }
        EXPECT_LT(iters[1], iters[0]) << "Gauss-Newton " << iters[0] << " iterations, quasi-Newton " << iters[1];
    }
}

} // namespace

namespace {

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
        const int m = p.m, n = p.n, maxcal = 200 * (n + 1) * (n + 1), iprint = -1, liw = 1;
        const int lw = 7 * n + m * n + 2 * m + n * n;
        const double eta = 0.5, xtol = 1e-10, stepmx = 1e6;
        std::vector<double> x = p.start, f(m), j(static_cast<std::size_t>(m) * n), s(n), v(n * n), w(lw);
        for (double &e : x) e *= p.n == 8 ? 10.0 / 9.0 : 10.0;
        double fsumsq = 0.0, ruser = 0.0;
        int niter, nf, igrade, iw, iuser = 0, ifail = 1;
        E04GDF(&m, &n, lsq, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol, &stepmx, x.data(), &fsumsq,
               f.data(), j.data(), &m, s.data(), v.data(), &n, &niter, &nf, &igrade, &iw, &liw, w.data(), &lw, &iuser,
               &ruser, &ifail);
        if (ifail != 0 || fsumsq <= p.fmin * (1.0 + 1e-6) + 1e-10) continue;
        for (int c = 0; c < n; ++c) {
            double g = 0.0, cn = 0.0;
            for (int i = 0; i < m; ++i) g += j[i + c * m] * f[i], cn = std::hypot(cn, j[i + c * m]);
            EXPECT_LE(std::fabs(g), 1e-5 * cn * std::sqrt(fsumsq)) << "column " << c;
        }
    }
}

} // namespace
