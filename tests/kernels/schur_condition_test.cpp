// Condition numbers of Schur forms (F08QLF, F08QYF) and complex eigenvectors (F08QXF, F08QXZ): closed
// forms on 2 by 2 matrices, reference LAPACK's dtrsna/ztrsna/ztrevc, and INFO = -position.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#include "factor_test_support.h"
#include "kernels/schur.h"
#include "zek2/f08.h"

using namespace zek_test;

namespace {

using Cx = std::complex<double>;
double *d(std::vector<Cx> &v) { return reinterpret_cast<double *>(v.data()); }

// S and SEP of a real quasi-triangular T of order N through F08QKF and F08QLF; the vectors stay in VL, VR.
struct RealCondition {
    std::vector<double> vl, vr, s, sep;
    int m = 0;
};
RealCondition real_condition(int n, const double *t, const char *howmny, std::vector<int> sel) {
    RealCondition r{std::vector<double>(n * n), std::vector<double>(n * n), std::vector<double>(n, -1.0),
                    std::vector<double>(n, -1.0)};
    std::vector<double> work(n * (n + 6));
    std::vector<int> iwork(2 * n), vsel = sel;
    int info = -9, mv = 0;
    F08QKF("B", howmny, vsel.data(), &n, t, &n, r.vl.data(), &n, r.vr.data(), &n, &n, &mv, work.data(), &info, 1, 1);
    EXPECT_EQ(info, 0);
    F08QLF("B", howmny, sel.data(), &n, t, &n, r.vl.data(), &n, r.vr.data(), &n, r.s.data(), r.sep.data(), &n, &r.m,
           work.data(), &n, iwork.data(), &info, 1, 1);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(r.m, mv);
    return r;
}

TEST(SchurCondition, ClosedFormsOfOrderTwo) {
    // {t11, t12, t21, t22, S, SEP}: triangular [a c; 0 b] has S = |a-b| / hypot(a-b, c), SEP = |a-b|;
    // the standard block [1 4; -1 1] has lambda = 1 +- 2i, x = (4, 2i), y = (1, 2i), S = 8/10, SEP =
    // |lambda - conj(lambda)| = 4; a normal pair has S = 1.
    const struct {
        double t11, t12, t21, t22, s, sep;
    } rows[] = {{1.0, 0.0, 0.0, 3.0, 1.0, 2.0},
                {1.0, 3.0, 0.0, 5.0, 4.0 / 5.0, 4.0},
                {2.0, 1e6, 0.0, 2.5, 0.5 / std::hypot(0.5, 1e6), 0.5},
                {1.0, 4.0, -1.0, 1.0, 0.8, 4.0},
                {1.0, 2.0, -2.0, 1.0, 1.0, 4.0}};
    for (const auto &r : rows) {
        SCOPED_TRACE(r.t12);
        const double t[4] = {r.t11, r.t21, r.t12, r.t22};
        const RealCondition c = real_condition(2, t, "A", {1, 1});
        ASSERT_EQ(c.m, 2);
        for (int k = 0; k < 2; ++k) {
            EXPECT_NEAR(c.s[k], r.s, 1e-14 * r.s);
            EXPECT_NEAR(c.sep[k], r.sep, 1e-14 * r.sep);
        }
    }
}

// Real Schur forms of random Hessenberg matrices, and one with a cluster and a graded part.
Mat schur_form(int n, unsigned seed, bool graded) {
    Mat h = upper_band(make_matrix(graded ? Kind::Graded : Kind::Random, n, n, seed), 1);
    std::vector<double> wr(n), wi(n), work(n);
    int info = 0, one = 1;
    F08PEF("S", "N", &n, &one, &n, h.data(), &h.ld, wr.data(), wi.data(), nullptr, &one, work.data(), &n, &info, 1, 1);
    EXPECT_EQ(info, 0);
    return h;
}

TEST(SchurConditionReference, RealAgreesWithReferenceLapack) {
    for (int n : {3, 12, 40})
        for (bool graded : {false, true})
            for (const char *howmny : {"A", "S"}) {
                SCOPED_TRACE(testing::Message() << n << " " << graded << " " << howmny);
                const Mat t = schur_form(n, 7u * n + graded, graded);
                std::vector<int> sel(n, 0);
                for (int i = 0; i < n; i += 2) sel[i] = 1;
                std::vector<double> rs(n), rsep(n), work(n * (n + 6));
                std::vector<int> iwork(2 * n);
                int rm = 0, rinfo = -9;
                const RealCondition c = real_condition(n, t.data(), howmny, sel);
                const std::vector<double> &s = c.s, &sep = c.sep;
                const int m = c.m;
                call_lapack("dtrsna", "B", howmny, sel.data(), &n, t.data(), &n, c.vl.data(), &n, c.vr.data(),
                            &n, rs.data(), rsep.data(), &n, &rm, work.data(), &n, iwork.data(), &rinfo, L(1),
                            L(1));
                ASSERT_EQ(rinfo, 0);
                ASSERT_EQ(m, rm);
                for (int k = 0; k < m; ++k) {
                    EXPECT_NEAR(s[k], rs[k], 1e-10 * rs[k]) << k;
                    // Both SEPs are estimates of the same separation: within a factor of the order.  Our
                    // reordering refuses a swap whose recomposition error passes 10 eps |D|, which the
                    // reference accepts; SEP is then 0, only for a badly separated eigenvalue.
                    if (sep[k] == 0.0) {
                        EXPECT_LT(rsep[k], 1e-4) << k;
                        continue;
                    }
                    EXPECT_GT(sep[k], rsep[k] / n) << k;
                    EXPECT_LT(sep[k], rsep[k] * n) << k;
                }
            }
}

TEST(SchurConditionReference, ComplexAgreesWithReferenceLapack) {
    for (int n : {4, 30}) {
        const Mat re = make_matrix(Kind::Random, n, n, 5u + n), im = make_matrix(Kind::Graded, n, n, 6u + n);
        std::vector<Cx> t(n * n), q(n * n);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i <= j; ++i) t[i + j * n] = Cx(re(i, j), im(i, j));
        for (int i = 0; i < n; ++i) q[i + i * n] = 1.0;
        for (char howmny : {'A', 'B', 'S'}) {
            SCOPED_TRACE(testing::Message() << n << " " << howmny);
            std::vector<int> sel(n, 0);
            for (int i = 1; i < n; i += 3) sel[i] = 1;
            std::vector<Cx> vl = q, vr = q, rvl = q, rvr = q, work(2 * n * (n + 1));
            std::vector<double> rwork(n), s(n), sep(n), rs(n), rsep(n);
            int m = 0, rm = 0, info = -9, rinfo = -9;
            const char hs[2] = {howmny, 0};
            ASSERT_EQ(zek::F08QXF('B', howmny, sel.data(), n, d(t), n, d(vl), n, d(vr), n, n, &m, d(work)), 0);
            call_lapack("ztrevc", "B", hs, sel.data(), &n, d(t), &n, d(rvl), &n, d(rvr), &n, &n, &rm, d(work),
                        rwork.data(), &rinfo, L(1), L(1));
            ASSERT_EQ(rinfo, 0);
            ASSERT_EQ(m, rm);
            for (int j = 0; j < m; ++j)
                for (int i = 0; i < n; ++i) {
                    EXPECT_LT(std::abs(vr[i + j * n] - rvr[i + j * n]), 1e-9) << i << "," << j;
                    EXPECT_LT(std::abs(vl[i + j * n] - rvl[i + j * n]), 1e-9) << i << "," << j;
                }
            if (howmny == 'B') continue;
            F08QYF("B", hs, sel.data(), &n, d(t), &n, d(vl), &n, d(vr), &n, s.data(), sep.data(), &n, &m, d(work), &n,
                   rwork.data(), &info, 1, 1);
            call_lapack("ztrsna", "B", hs, sel.data(), &n, d(t), &n, d(vl), &n, d(vr), &n, rs.data(),
                        rsep.data(), &n, &rm, d(work), &n, rwork.data(), &rinfo, L(1), L(1));
            ASSERT_EQ(info, 0);
            ASSERT_EQ(m, rm);
            for (int k = 0; k < m; ++k) {
                EXPECT_NEAR(s[k], rs[k], 1e-10 * rs[k]) << k;
                EXPECT_GT(sep[k], rsep[k] / n) << k;
                EXPECT_LT(sep[k], rsep[k] * n) << k;
            }
        }
    }
}

TEST(SchurCondition, SelectedPairsAndBadArguments) {
    // A pair chosen by its second entry takes both places; SELECT is left as it was.
    const double t[9] = {1.0, -1.0, 0.0, 4.0, 1.0, 0.0, 2.0, 3.0, 5.0};
    const RealCondition c = real_condition(3, t, "S", {0, 1, 0});
    EXPECT_EQ(c.m, 2);
    EXPECT_EQ(c.s[0], c.s[1]);
    EXPECT_EQ(c.sep[0], c.sep[1]);
    EXPECT_EQ(c.s[2], -1.0);
    int m = 0;

    double work[9 * 9], v[9], out[3];
    int sel[3] = {1, 1, 1}, iw[4], info = 0, one = 1, zero = 0;
    const struct {
        const char *job, *howmny;
        int n, ldt, ldv, mm, ldwork, info;
    } rows[] = {{"X", "A", 3, 3, 3, 3, 3, -1}, {"B", "X", 3, 3, 3, 3, 3, -2}, {"B", "A", -1, 3, 3, 3, 3, -4},
                {"B", "A", 3, 2, 3, 3, 3, -6}, {"E", "A", 3, 3, 2, 3, 3, -8},  {"B", "A", 3, 3, 3, 2, 3, -13},
                {"V", "A", 3, 3, 1, 3, 2, -16}, {"V", "A", 3, 3, 1, 3, 3, 0}};
    const double tc[18] = {1, 0, 0, 0, 0, 0, 2, 0, 3, 0, 0, 0, 1, 1, 1, 1, 5, 0};
    for (const auto &r : rows) {
        SCOPED_TRACE(r.info);
        F08QLF(r.job, r.howmny, sel, &r.n, t, &r.ldt, v, &r.ldv, v, &r.ldv, out, out, &r.mm, &m, work, &r.ldwork, iw,
               &info, 1, 1);
        EXPECT_EQ(info, r.info);
        F08QYF(r.job, r.howmny, sel, &r.n, tc, &r.ldt, v, &r.ldv, v, &r.ldv, out, out, &r.mm, &m, work, &r.ldwork,
               out, &info, 1, 1);
        EXPECT_EQ(info, r.info);
    }
    // Both selectors of the masters, and order 1.
    double s1[2] = {0, 0}, p1[2] = {0, 0};
    f08qlf_ENTRY(1, "B", "A", sel, &one, t, &one, v, &one, v, &one, s1, p1, &one, &m, work, &one, iw, &info, 1, 1);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(s1[0], 1.0);
    EXPECT_EQ(p1[0], 1.0);
    f08qyf_ENTRY(0, "B", "A", sel, &zero, t, &one, v, &one, v, &one, s1, p1, &one, &m, work, &one, work, &info, 1, 1);
    EXPECT_EQ(info, 0);
}

} // namespace
