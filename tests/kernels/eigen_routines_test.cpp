// The published eigenproblem routines: F08PEF, F08PSF (Schur forms), F08QTF (reordering), F08JJF
// (bisection), against reference LAPACK and by their residuals; argument errors as INFO = -position.
#include <gtest/gtest.h>

#include <algorithm>
#include <complex>

#include "factor_test_support.h"
#include "zek2/f08.h"

using namespace zek_test;

namespace {

using Cx = std::complex<double>;

Mat upper_hessenberg(int n, unsigned seed) { return upper_band(make_matrix(Kind::Random, n, n, seed), 1); }

TEST(EigenRoutinesReference, RealSchurFormAgreesWithReferenceLapack) {
    for (int n : {1, 2, 5, 30, 80}) {
        SCOPED_TRACE(n);
        const Mat h0 = upper_hessenberg(n, 40u + n);
        Mat t = h0, z(n, n), rt = h0, rz(n, n);
        std::vector<double> wr(n), wi(n), rwr(n), rwi(n), work(n), rwork(11 * n);
        const int one = 1, lwork = n, rlwork = 11 * n;
        int info = -9, rinfo = 0;
        F08PEF("S", "I", &n, &one, &n, t.data(), &t.ld, wr.data(), wi.data(), z.data(), &z.ld, work.data(), &lwork, &info,
               1, 1);
        call_lapack("dhseqr", "S", "I", &n, &one, &n, rt.data(), &rt.ld, rwr.data(), rwi.data(), rz.data(),
                    &rz.ld, rwork.data(), &rlwork, &rinfo, L(1), L(1));
        ASSERT_EQ(info, 0);
        expect_orthogonal_similarity(h0, z, t, 20.0);
        auto key = [](Cx a, Cx b) { return a.real() != b.real() ? a.real() < b.real() : a.imag() < b.imag(); };
        std::vector<Cx> ours(n), ref(n);
        for (int i = 0; i < n; ++i) ours[i] = Cx(wr[i], wi[i]), ref[i] = Cx(rwr[i], rwi[i]);
        std::sort(ours.begin(), ours.end(), key);
        std::sort(ref.begin(), ref.end(), key);
        for (int i = 0; i < n; ++i) EXPECT_LT(std::abs(ours[i] - ref[i]), 1e-10 * std::max(1.0, std::abs(ref[i])));
    }
}

TEST(EigenRoutines, ComplexSchurFormAndReordering) {
    const int n = 12, one = 1, lwork = n;
    std::vector<Cx> h(n * n), z(n * n), w(n), work(n);
    const Mat re = upper_hessenberg(n, 3), im = upper_hessenberg(n, 4);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) h[i + j * n] = Cx(re(i, j), im(i, j));
    const std::vector<Cx> h0 = h;
    int info = -9;
    auto d = [](std::vector<Cx> &v) { return reinterpret_cast<double *>(v.data()); };
    F08PSF("S", "I", &n, &one, &n, d(h), &n, d(w), d(z), &n, d(work), &lwork, &info, 1, 1);
    ASSERT_EQ(info, 0);
    // Move the last eigenvalue to the front.
    const Cx last = h[(n - 1) + (n - 1) * n];
    int ifst = n, ilst = 1;
    F08QTF("V", &n, d(h), &n, d(z), &n, &ifst, &ilst, &info, 1);
    ASSERT_EQ(info, 0);
    EXPECT_LT(std::abs(h[0] - last), 1e-12);
    double worst = 0.0, norm = 0.0;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            if (i > j) {
                EXPECT_EQ(h[i + j * n], Cx(0.0));
            }
            Cx s = 0.0;
            for (int k = 0; k < n; ++k)
                for (int l = k; l < n; ++l) s += z[i + k * n] * h[k + l * n] * std::conj(z[j + l * n]);
            worst = std::max(worst, std::abs(s - h0[i + j * n]));
            norm = std::max(norm, std::abs(h0[i + j * n]));
        }
    EXPECT_LT(worst, 20 * n * kEps * norm);
}

TEST(EigenRoutinesReference, BisectionAgreesWithReferenceLapack) {
    const int n = 40;
    std::vector<double> dd(n), e(n - 1);
    Random rng(77);
    for (double &v : dd) v = rng.next();
    for (double &v : e) v = rng.next();
    e[19] = 0.0;  // two blocks
    struct Row {
        const char *range, *order;
        double vl, vu;
        int il, iu;
    };
    for (const Row &r : {Row{"A", "E", 0, 0, 0, 0}, Row{"A", "B", 0, 0, 0, 0}, Row{"V", "E", -0.5, 0.7, 0, 0},
                         Row{"I", "E", 0, 0, 5, 17}, Row{"I", "B", 0, 0, 1, 40}}) {
        SCOPED_TRACE(std::string(r.range) + r.order);
        std::vector<double> w(n), rw(n), work(4 * n);
        std::vector<int> ib(n), rib(n), is(n), ris(n), iwork(3 * n);
        int m = 0, rm = 0, ns = 0, rns = 0, info = -9, rinfo = 0;
        const double abstol = 0.0;
        F08JJF(r.range, r.order, &n, r.vl, r.vu, &r.il, &r.iu, abstol, dd.data(), e.data(), &m, &ns, w.data(), ib.data(),
               is.data(), work.data(), iwork.data(), &info, 1, 1);
        call_lapack("dstebz", r.range, r.order, &n, &r.vl, &r.vu, &r.il, &r.iu, &abstol, dd.data(), e.data(),
                    &rm, &rns, rw.data(), rib.data(), ris.data(), work.data(), iwork.data(), &rinfo, L(1),
                    L(1));
        ASSERT_EQ(info, 0);
        ASSERT_EQ(m, rm);
        EXPECT_EQ(ns, rns);
        for (int i = 0; i < m; ++i) {
            EXPECT_NEAR(w[i], rw[i], 1e-13) << i;
            EXPECT_EQ(ib[i], rib[i]) << i;
        }
    }
}

TEST(EigenRoutines, BadArgumentsGiveMinusThePosition) {
    double h[4] = {1, 0, 0, 1}, wr[2], wi[2], z[4], work[4];
    int n = 2, one = 1, two = 2, lwork = 2, zero = 0, info = 0, m = 0, ns = 0, ib[2], is[2], iw[6];
    F08PEF("X", "N", &n, &one, &n, h, &n, wr, wi, z, &n, work, &lwork, &info, 1, 1);
    EXPECT_EQ(info, -1);
    F08PEF("E", "N", &n, &one, &n, h, &one, wr, wi, z, &n, work, &lwork, &info, 1, 1);
    EXPECT_EQ(info, -7);
    F08PEF("E", "I", &n, &one, &n, h, &n, wr, wi, z, &one, work, &lwork, &info, 1, 1);
    EXPECT_EQ(info, -11);
    F08QTF("V", &n, h, &n, z, &one, &one, &two, &info, 1);
    EXPECT_EQ(info, -6);
    F08JJF("A", "Z", &n, 0, 0, &one, &one, 0, h, h, &m, &ns, wr, ib, is, work, iw, &info, 1, 1);
    EXPECT_EQ(info, -2);
    int sel[2] = {1, 1};
    F08QKF("X", "A", sel, &n, h, &n, z, &n, z, &n, &n, &m, work, &info, 1, 1);
    EXPECT_EQ(info, -1);
    F08QKF("R", "A", sel, &n, h, &n, z, &n, z, &n, &one, &m, work, &info, 1, 1);
    EXPECT_EQ(info, -11);
    // Orders 0 and 1 return at once.
    F08PEF("S", "I", &zero, &one, &zero, h, &one, wr, wi, z, &one, work, &lwork, &info, 1, 1);
    EXPECT_EQ(info, 0);
    double h1 = 3.0, z1 = 0.0;
    F08PEF("S", "I", &one, &one, &one, &h1, &one, wr, wi, &z1, &one, work, &lwork, &info, 1, 1);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(wr[0], 3.0);
    EXPECT_EQ(z1, 1.0);
}

TEST(EigenRoutinesReference, EigenvectorsAgreeWithReferenceLapack) {
    const int n = 25, one = 1, lwork = n;
    const Mat h0 = upper_hessenberg(n, 91);
    Mat t = h0, q(n, n);
    std::vector<double> wr(n), wi(n), work(3 * n);
    int info = 0;
    F08PEF("S", "I", &n, &one, &n, t.data(), &t.ld, wr.data(), wi.data(), q.data(), &q.ld, work.data(), &lwork, &info, 1,
           1);
    ASSERT_EQ(info, 0);
    for (const char *howmny : {"A", "B", "S"}) {
        SCOPED_TRACE(howmny);
        Mat vl = q, vr = q, rvl = q, rvr = q;
        std::vector<int> sel(n, 0), rsel(n, 0);
        for (int i = 0; i < n; i += 3) sel[i] = rsel[i] = 1;
        int m = 0, rm = 0, rinfo = 0;
        F08QKF("B", howmny, sel.data(), &n, t.data(), &t.ld, vl.data(), &vl.ld, vr.data(), &vr.ld, &n, &m, work.data(),
               &info, 1, 1);
        call_lapack("dtrevc", "B", howmny, rsel.data(), &n, t.data(), &t.ld, rvl.data(), &rvl.ld, rvr.data(),
                    &rvr.ld, &n, &rm, work.data(), &rinfo, L(1), L(1));
        ASSERT_EQ(info, 0);
        ASSERT_EQ(m, rm);
        EXPECT_EQ(sel, rsel);
        for (int j = 0; j < m; ++j)
            for (int i = 0; i < n; ++i) {
                EXPECT_NEAR(vr(i, j), rvr(i, j), 1e-9) << i << "," << j;
                EXPECT_NEAR(vl(i, j), rvl(i, j), 1e-9) << i << "," << j;
            }
    }
}

} // namespace
