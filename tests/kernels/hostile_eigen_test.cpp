// Hostile input for the singular value decomposition and the Schur iterations: NaN, infinities, the
// extreme numbers, empty and negative sizes.  Each row must end in its result or its failure exit.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "factor_test_support.h"
#include "frame/raise.h"
#include "kernels/schur.h"
#include "kernels/svd.h"
#include "zek2/f02.h"
#include "zek2/f04.h"
#include "zek2/f08.h"
#include "zek2/messages.h"

using namespace zek_test;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kMin = std::numeric_limits<double>::min();

struct Poison {
    const char *name;
    double value;
    bool finite;
};
const Poison kPoisons[] = {{"nan", kNan, false},  {"plus_inf", kInf, false}, {"minus_inf", -kInf, false},
                           {"largest", kMax, true}, {"smallest", kMin, true},  {"denormal", kMin / 1024, true}};

TEST(HostileEigen, BidiagonalIterationEndsOnEveryValue) {
    for (const Poison &p : kPoisons) {
        for (int where : {0, 1, 2}) {
            SCOPED_TRACE(std::string(p.name) + " at " + std::to_string(where));
            std::vector<double> d = {1, 2, 3, 4}, e = {1, 1, 1};
            (where < 2 ? d[where] : e[1]) = p.value;
            const int ifail = bidiagonal_values(4, d.data(), e.data());
            if (p.finite) {
                EXPECT_EQ(ifail, 0);
                for (double v : d) EXPECT_TRUE(std::isfinite(v));
            } else {
                EXPECT_EQ(ifail, 2);
            }
        }
    }
}

TEST(HostileEigen, SizesAndWorkspace) {
    // N 0 succeeds at once; negative counts and short leading dimensions are argument errors.
    double dummy = 0.0;
    EXPECT_EQ(bidiagonal_values(0, &dummy, &dummy), 0);
    int ifail = 1, minus = -1;
    struct Row {
        int n, ncolb, ldb, nrowy, ldy, ncolz, ldz;
    };
    for (const Row &r : {Row{-1, 0, 1, 0, 1, 0, 1}, Row{2, -1, 2, 0, 1, 0, 1}, Row{2, 1, 1, 0, 1, 0, 1},
                         Row{2, 0, 1, 3, 2, 0, 1}, Row{2, 0, 1, 0, 1, 1, 1}, Row{2, 0, 1, minus, 1, minus, 1}}) {
        ifail = 1;
        double d[2] = {1, 2}, e[1] = {1}, w[8], m[16] = {};
        F02SYZ(&r.n, d, e, &r.ncolb, m, &r.ldb, &r.nrowy, m, &r.ldy, &r.ncolz, m, &r.ldz, w, &ifail);
        EXPECT_EQ(ifail, 1);
        EXPECT_EQ(d[0], 1.0);
    }
}

TEST(HostileEigen, DriversReportNonFiniteData) {
    for (const Poison &p : kPoisons) {
        SCOPED_TRACE(p.name);
        const int m = 6, n = 4;
        Mat a = make_matrix(Kind::Random, m, n, 9);
        a(2, 1) = p.value;
        if (p.finite && std::fabs(p.value) > 1.0) continue;  // the products of the largest overflow, by contract
        std::vector<double> s(n), work(zek::svd_workspace(m, n, true, true));
        Mat u(m, n), vt(n, n);
        Mat a1 = a;
        const int missing = zek::svd(m, n, a1.data(), a1.ld, s.data(), u.data(), u.ld, vt.data(), vt.ld, work.data());
        EXPECT_EQ(missing != 0, !p.finite);
        ZekFail fail = zek::clean_fail();
        fail.print = 0;
        double cond = 0.0, pt[16];
        Mat a2 = a;
        zek::f02wdc(m, n, a2.data(), a2.ld, 0, nullptr, 1, 1, s.data(), 1, pt, 4, &cond, &fail);
        EXPECT_EQ(fail.code, p.finite ? 0 : ZE_SVD_FAIL);
        Mat a3 = a, b(m, 1);
        std::vector<double> zeta(n);
        double sigma = 0.0;
        int irank = 0;
        f04jgc(m, n, a3.data(), a3.ld, b.data(), 0.0, &sigma, &irank, zeta.data(), &fail);
        if (!p.finite) {
            EXPECT_EQ(fail.code, ZE_SVD_FAIL);
        }
    }
}

TEST(HostileEigen, SchurIterationsStopOnNonFiniteData) {
    for (const Poison &p : kPoisons) {
        SCOPED_TRACE(p.name);
        const int n = 5;
        Mat h = upper_band(make_matrix(Kind::Random, n, n, 6), 1);
        h(2, 2) = p.value;
        std::vector<double> wr(n), wi(n), scale(n);
        Mat hb = h;
        zek::balance_scale(n, hb.data(), hb.ld, scale.data());
        const int info = zek::hessenberg_qr(false, false, n, 1, n, h.data(), h.ld, wr.data(), wi.data(), 1, n, nullptr, 1);
        if (!p.finite) {
            EXPECT_NE(info, 0);
        }
        std::vector<zek::ComplexD> hc(n * n), w(n);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i <= std::min(j + 1, n - 1); ++i) hc[i + j * n] = {1.0 + i, 0.5 * j};
        hc[2 + 2 * n] = p.value;
        const int cinfo = zek::hessenberg_qr(false, false, n, 1, n, hc.data(), n, w.data(), 1, n, nullptr, 1);
        if (!p.finite) {
            EXPECT_NE(cinfo, 0);
        }
    }
}

TEST(HostileEigen, RealReorderingOnEveryValue) {
    // A pair at rows 1-2 moved past a poisoned 1 by 1 block: the result or INFO = 1, finite when INFO = 0.
    for (const Poison &p : kPoisons) {
        SCOPED_TRACE(p.name);
        const int n = 4;
        Mat t(n, n), q = identity_matrix(n);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i <= j; ++i) t(i, j) = 1.0 + i + 0.25 * j;
        t(0, 0) = t(1, 1) = 0.5;
        t(0, 1) = 2.0;
        t(1, 0) = -3.0;
        t(2, 2) = p.value;
        std::vector<double> work(n);
        int ifst = 1, ilst = 3, info = 9;
        F08QFF("V", &n, t.data(), &t.ld, q.data(), &q.ld, &ifst, &ilst, work.data(), &info, 1);
        EXPECT_TRUE(info == 0 || info == 1);
        if (info == 0) {
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < n; ++i) EXPECT_TRUE(std::isfinite(q(i, j)));
        }
        if (!p.finite) {
            EXPECT_EQ(info, 1);
        }
    }
}

} // namespace

TEST(HostileEigen, ConditionNumbersOnEveryValue) {
    // A 4 by 4 real Schur form with a pair and one poisoned entry: the routine returns, S in [0, 1] and
    // SEP >= 0 whenever the data are finite.  (The complex routine shares the guarded solves.)
    for (const Poison &p : kPoisons)
        for (int where : {0, 1}) {
            SCOPED_TRACE(std::string(p.name) + " at " + std::to_string(where));
            const int n = 4;
            std::vector<double> t = {1, 0, 0, 0, 2, 3, 0, 0, 1, 1, 2, -1, 1, 2, 4, 2};
            t[where == 0 ? 8 : 5] = p.value;
            std::vector<double> vl(n * n), vr(n * n), s(n, -1.0), sep(n, -1.0), work(n * (n + 6));
            std::vector<int> sel(n, 1), iwork(2 * n);
            int m = 0, info = -9;
            F08QKF("B", "A", sel.data(), &n, t.data(), &n, vl.data(), &n, vr.data(), &n, &n, &m, work.data(), &info, 1, 1);
            F08QLF("B", "A", sel.data(), &n, t.data(), &n, vl.data(), &n, vr.data(), &n, s.data(), sep.data(), &n, &m,
                   work.data(), &n, iwork.data(), &info, 1, 1);
            EXPECT_EQ(info, 0);
            // The same matrix as a complex triangle (its pair block's subdiagonal dropped).
            std::vector<double> tc(2 * n * n, 0.0), cv(4 * n * n), cs(n, -1.0), csep(n, -1.0), cw(2 * n * (n + 1));
            for (int j = 0; j < n; ++j)
                for (int i = 0; i <= j; ++i) tc[2 * (i + j * n)] = t[i + j * n];
            ASSERT_EQ(zek::F08QXF('B', 'A', sel.data(), n, tc.data(), n, cv.data(), n, &cv[2 * n * n], n, n, &m, cw.data()), 0);
            F08QYF("B", "A", sel.data(), &n, tc.data(), &n, cv.data(), &n, &cv[2 * n * n], &n, cs.data(), csep.data(), &n,
                   &m, cw.data(), &n, cw.data(), &info, 1, 1);
            EXPECT_EQ(info, 0);
            if (!p.finite) continue;
            for (int k = 0; k < n; ++k) {
                EXPECT_TRUE(s[k] >= 0.0 && s[k] <= 1.0 + 1e-15 && cs[k] >= 0.0 && cs[k] <= 1.0 + 1e-15) << k;
                EXPECT_TRUE(csep[k] >= 0.0 && std::isfinite(csep[k])) << k;
                EXPECT_TRUE(sep[k] >= 0.0 && std::isfinite(sep[k])) << k << " " << sep[k];
            }
        }
    // Sizes: a huge order with a small leading dimension, and the workspace one short.
    const int big = std::numeric_limits<int>::max(), four = 4, three = 3, one = 1;
    double t[16] = {1, 0, 0, 0, 1, 2, 0, 0, 1, 1, 3, 0, 1, 1, 1, 4}, v[16], s[4], work[64];
    int sel[4] = {1, 1, 1, 1}, iwork[8], m = 0, info = 0;
    F08QLF("V", "A", sel, &big, t, &four, v, &one, v, &one, s, s, &four, &m, work, &four, iwork, &info, 1, 1);
    EXPECT_EQ(info, -6);
    F08QLF("V", "A", sel, &four, t, &four, v, &one, v, &one, s, s, &four, &m, work, &three, iwork, &info, 1, 1);
    EXPECT_EQ(info, -16);
    F08QYF("B", "A", sel, &four, t, &four, v, &four, v, &four, s, s, &three, &m, work, &four, work, &info, 1, 1);
    EXPECT_EQ(info, -13);
}
