// The scaled QR of f01qac and its helpers, the bidiagonal reduction f01lzc, and the guarded complex
// triangular solve F07TUZ/ZLATRS.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <string>

#include "factor_test_support.h"
#include "kernels/triangular_solve.h"
#include "zek2/f01.h"

using namespace zek_test;

TEST(ScaledQr, SameFactorsAsF01qcfAndContinuesAfterAppendedColumns) {
    const int m = 30, n = 12;
    const Mat a = make_matrix(Kind::Random, m, n, 51);
    Mat plain = a, scaled = a;
    std::vector<double> z1(n), z2(n), work(n);
    int ifail = 0;
    F01QCF(&plain.m, &plain.n, plain.data(), &plain.ld, z1.data(), &ifail);
    ZekFail fail{};
    f01qac(m, n, 0, scaled.data(), scaled.ld, z2.data(), work.data(), &fail);
    ASSERT_EQ(fail.code, 0);
    expect_near_vectors(scaled.v, plain.v, 1e-13, "factors");
    expect_near_vectors(z2, z1, 1e-13, "zetas");
    // Factorise the first 5 columns, then continue with K = 5.
    Mat part = a;
    int five = 5;
    F01QCF(&part.m, &five, part.data(), &part.ld, z2.data(), &ifail);
    f01qac(m, n, 5, part.data(), part.ld, z2.data(), work.data(), &fail);
    ASSERT_EQ(fail.code, 0);
    expect_near_vectors(part.v, plain.v, 1e-12, "continued factors");
    // Rows scaled by 1e-300 and 1e+300: the scaled reflectors still give R of the scaled matrix.
    Mat wild = a;
    for (int j = 0; j < n; ++j) {
        wild(0, j) *= 1e300;
        for (int i = 1; i < m; ++i) wild(i, j) *= 1e-300;
    }
    f01qac(m, n, 0, wild.data(), wild.ld, z2.data(), work.data(), &fail);
    ASSERT_EQ(fail.code, 0);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i <= j; ++i) EXPECT_TRUE(std::isfinite(wild(i, j))) << i << " " << j;
    EXPECT_NEAR(std::fabs(wild(0, 0)), std::fabs(a(0, 0)) * 1e300, 1e-12 * std::fabs(a(0, 0)) * 1e300);
    // Codes.
    f01qac(3, 4, 0, wild.data(), 3, z2.data(), work.data(), &fail);
    EXPECT_EQ(fail.code, 17);
    f01qac(5, 4, 5, wild.data(), 5, z2.data(), work.data(), &fail);
    EXPECT_EQ(fail.code, 19);
    f01qac(5, 4, -1, wild.data(), 5, z2.data(), work.data(), &fail);
    EXPECT_EQ(fail.code, 11);
}

TEST(ScaledQr, HelpersOnExtremeVectors) {
    const double big[3] = {3e300, -4e300, 0.0};
    EXPECT_DOUBLE_EQ(F01_ABS_MAX(3, big, 1), 4e300);
    EXPECT_DOUBLE_EQ(F01_SCALED_NORM(3, big, 1), 5e300);
    const double tiny[2] = {3e-310, 4e-310};
    EXPECT_NEAR(F01_SCALED_NORM(2, tiny, 1), 5e-310, 1e-323);
    double x[2] = {1.0, 2.0};
    F01_SAFE_DIVIDE_VECTOR(2, 1e-310, x, 1);
    EXPECT_DOUBLE_EQ(x[0], 1.0 / 1e-310);
    double alpha = 3e-200, v[1] = {4e-200}, zeta = 0.0;
    F01_SCALED_REFLECTOR(1, &alpha, v, 1, &zeta);
    EXPECT_NEAR(std::fabs(alpha), 5e-200, 1e-212);
    EXPECT_GT(zeta, 1.0);
    double zero[2] = {0.0, 0.0}, a0 = 0.0;
    F01_SCALED_REFLECTOR(2, &a0, zero, 1, &zeta);
    EXPECT_EQ(zeta, 0.0);
}

TEST(Bidiagonal, QTimesBTimesPTransposeIsA) {
    for (auto [m, n] : {std::pair{1, 1}, std::pair{7, 2}, std::pair{9, 9}, std::pair{40, 13}}) {
        const Mat a = make_matrix(Kind::Random, m, n, 60u + m);
        Mat f = a;
        std::vector<double> d(n), e(std::max(1, n)), zl(n), zr(n);
        // B = I (m by m) receives Q', Z = I (n by n) receives P', Y = I (m by m) receives Q.
        Mat qt = identity_matrix(m), pt = identity_matrix(n), q = identity_matrix(m);
        ZekFail fail{};
        f01lzc(m, n, f.data(), f.ld, d.data(), e.data(), zl.data(), zr.data(), m, qt.data(), qt.ld, m, q.data(), q.ld,
               n, pt.data(), pt.ld, 0, &fail);
        ASSERT_EQ(fail.code, 0);
        Mat b(m, n);
        for (int k = 0; k < n; ++k) {
            b(k, k) = d[k];
            if (k + 1 < n) b(k, k + 1) = e[k];
        }
        // Q*B*P' = A, and Q' from B agrees with Q from Y.
        EXPECT_LT(scaled_difference(a, multiply(multiply(q, b), pt)), 8.0) << m << "x" << n;
        EXPECT_LT(scaled_difference(transposed(q), qt), 8.0);
        EXPECT_LT(scaled_difference(identity_matrix(n), multiply(pt, transposed(pt))), 8.0);
        // WANTP: P' lands in the first n rows of A.
        Mat g = a;
        f01lzc(m, n, g.data(), g.ld, d.data(), e.data(), zl.data(), zr.data(), 0, nullptr, 1, 0, nullptr, 1, 0,
               nullptr, 1, 1, &fail);
        ASSERT_EQ(fail.code, 0);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) EXPECT_NEAR(g(i, j), pt(i, j), 1e-13);
    }
    ZekFail fail{};
    double x[4];
    f01lzc(1, 2, x, 1, x, x, x, x, 0, nullptr, 1, 0, nullptr, 1, 0, nullptr, 1, 0, &fail);
    EXPECT_EQ(fail.code, 17);
    f01lzc(2, 2, x, 2, x, x, x, x, -1, nullptr, 1, 0, nullptr, 1, 0, nullptr, 1, 0, &fail);
    EXPECT_EQ(fail.code, 11);
    f01lzc(2, 2, x, 2, x, x, x, x, 0, nullptr, 1, 0, nullptr, 1, 1, x, 1, 0, &fail);
    EXPECT_EQ(fail.code, 17);
}

// ZLATRS against reference LAPACK: an ordinary system goes through the plain solve, a badly scaled one
// through the careful path with a scale factor below 1; both give the same x and scale.
TEST(GuardedSolveReference, ZlatrsAgreesWithReferenceLapack) {
    const int n = 20;
    Random rng(8);
    for (double diag_size : {1.0, 1e-200}) {
        std::vector<double> a(2 * n * n), b(2 * n);
        for (double &v : a) v = rng.next();
        for (int i = 0; i < n; ++i) {
            a[2 * (i + i * n)] = 3.0 + diag_size * rng.next();
            if (diag_size != 1.0) a[2 * (i + i * n)] = diag_size * (1.0 + 0.5 * rng.next());
        }
        for (double &v : b) v = 1e290 * rng.next();
        for (const char *uplo : {"U", "L"})
            for (const char *trans : {"N", "T", "C"})
                for (const char *diag : {"N", "U"}) {
                    std::vector<double> x1 = b, x2 = b, c1(n), c2(n);
                    double s1 = 0.0, s2 = 0.0;
                    int info = 0;
                    const int r = zek::zlatrs(uplo, trans, diag, "N", n, reinterpret_cast<const zek::Complex *>(a.data()),
                                              n, reinterpret_cast<zek::Complex *>(x1.data()), &s1, c1.data());
                    EXPECT_EQ(r, 0);
                    call_lapack("zlatrs", uplo, trans, diag, "N", &n, a.data(), &n, x2.data(), &s2, c2.data(),
                                &info, L(1), L(1), L(1), L(1));
                    const std::string what = std::string(uplo) + trans + diag + (diag_size == 1.0 ? " plain" : " careful");
                    EXPECT_NEAR(s1 / s2, 1.0, 1e-10) << what;
                    double worst = 0.0, size = 0.0;
                    for (int i = 0; i < 2 * n; ++i) {
                        worst = std::max(worst, std::fabs(x1[i] - x2[i]));
                        size = std::max(size, std::fabs(x2[i]));
                    }
                    EXPECT_LE(worst, 1e-10 * size) << what;
                    for (int i = 0; i < 2 * n; ++i) EXPECT_TRUE(std::isfinite(x1[i])) << what;
                }
    }
    double s = 0.0, c[1];
    zek::Complex z[1];
    EXPECT_EQ(zek::zlatrs("U", "X", "N", "N", 1, z, 1, z, &s, c), -2);
    EXPECT_EQ(zek::zlatrs("U", "N", "N", "Q", 1, z, 1, z, &s, c), -4);
    EXPECT_EQ(zek::zlatrs("U", "N", "N", "N", 2, z, 1, z, &s, c), -7);
}
