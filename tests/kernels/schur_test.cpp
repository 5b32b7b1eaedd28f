// Schur forms of Hessenberg matrices (the real double-shift and the complex single-shift iterations),
// checked by the Schur residual, orthogonality, the standard form of the 2 by 2 blocks and reference
// LAPACK's eigenvalues; balancing keeps the eigenvalues.
#include <gtest/gtest.h>

#include <algorithm>
#include <complex>

#include "factor_test_support.h"
#include "kernels/schur.h"

using namespace zek_test;

namespace {

using Cx = std::complex<double>;

Mat hessenberg(int n, unsigned seed, double spread) {
    Mat h = make_matrix(Kind::Random, n, n, seed);
    for (int j = 0; j < n; ++j)
        for (int i = j + 2; i < n; ++i) h(i, j) = 0.0;
    // Graded rows and columns, similar to the ungraded matrix.
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) h(i, j) *= std::pow(spread, double(i - j) / n);
    return h;
}

std::vector<Cx> sorted(std::vector<Cx> v) {
    std::sort(v.begin(), v.end(), [](Cx a, Cx b) { return a.real() != b.real() ? a.real() < b.real() : a.imag() < b.imag(); });
    return v;
}

std::vector<Cx> lapack_eigenvalues(Mat h) {
    using Dhseqr = void (*)(const char *, const char *, const int *, const int *, const int *, double *, const int *,
                            double *, double *, double *, const int *, double *, const int *, int *, long, long);
    auto dhseqr = reference_lapack().get<Dhseqr>("dhseqr");
    if (dhseqr == nullptr) return {};
    const int n = h.n, one = 1, lwork = 10 * n;
    std::vector<double> wr(n), wi(n), work(lwork);
    double z = 0.0;
    int info = 0;
    dhseqr("E", "N", &n, &one, &n, h.data(), &h.ld, wr.data(), wi.data(), &z, &one, work.data(), &lwork, &info, 1, 1);
    EXPECT_EQ(info, 0);
    std::vector<Cx> w(n);
    for (int i = 0; i < n; ++i) w[i] = Cx(wr[i], wi[i]);
    return sorted(w);
}

TEST(Schur, RealFormResidualAndReference) {
    for (auto [n, spread] : {std::pair{1, 1.0}, {2, 1.0}, {7, 1.0}, {40, 1.0}, {40, 1e6}}) {
        SCOPED_TRACE(n);
        const Mat h0 = hessenberg(n, 3u + n, spread);
        Mat t = h0, z(n, n);
        for (int i = 0; i < n; ++i) z(i, i) = 1.0;
        std::vector<double> wr(n), wi(n);
        ASSERT_EQ(zek::hessenberg_qr(true, true, n, 1, n, t.data(), t.ld, wr.data(), wi.data(), 1, n, z.data(), z.ld), 0);
        // Quasi-triangular with standard blocks; Z T Z' = H; Z orthogonal.
        for (int j = 0; j < n; ++j)
            for (int i = j + 2; i < n; ++i) EXPECT_EQ(t(i, j), 0.0);
        for (int j = 0; j + 1 < n; ++j)
            if (t(j + 1, j) != 0.0) {
                EXPECT_EQ(t(j, j), t(j + 1, j + 1));
                EXPECT_LT(t(j + 1, j) * t(j, j + 1), 0.0);
                if (j + 2 < n) {
                    EXPECT_EQ(t(j + 2, j + 1), 0.0);
                }
            }
        Mat zt(n, n);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) zt(i, j) = z(j, i);
        EXPECT_LT(scaled_difference(h0, multiply(multiply(z, t), zt)), 20.0);
        Mat id(n, n);
        for (int i = 0; i < n; ++i) id(i, i) = 1.0;
        EXPECT_LT(scaled_difference(id, multiply(zt, z)), 20.0);
        std::vector<Cx> w(n);
        for (int i = 0; i < n; ++i) w[i] = Cx(wr[i], wi[i]);
        const std::vector<Cx> ref = lapack_eigenvalues(h0), ours = sorted(w);
        for (std::size_t i = 0; i < ref.size(); ++i) EXPECT_NEAR(std::abs(ours[i] - ref[i]), 0.0, 1e-9 * std::max(1.0, std::abs(ref[i])));
    }
}

TEST(Schur, ComplexFormResidual) {
    const int n = 25;
    std::vector<Cx> h(n * n), z(n * n), w(n);
    const Mat re = hessenberg(n, 8, 1.0), im = hessenberg(n, 9, 1.0);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) h[i + j * n] = Cx(re(i, j), im(i, j));
    for (int i = 0; i < n; ++i) z[i + i * n] = 1.0;
    const std::vector<Cx> h0 = h;
    ASSERT_EQ(zek::hessenberg_qr(true, true, n, 1, n, h.data(), n, w.data(), 1, n, z.data(), n), 0);
    double worst = 0.0, norm = 0.0, orth = 0.0;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            if (i > j) {
                EXPECT_EQ(h[i + j * n], Cx(0.0));
            }
            Cx s = 0.0, q = 0.0;
            for (int k = 0; k < n; ++k) {
                for (int l = 0; l < n; ++l) s += z[i + k * n] * h[k + l * n] * std::conj(z[j + l * n]);
                q += std::conj(z[k + i * n]) * z[k + j * n];
            }
            worst = std::max(worst, std::abs(s - h0[i + j * n]));
            norm = std::max(norm, std::abs(h0[i + j * n]));
            orth = std::max(orth, std::abs(q - (i == j ? 1.0 : 0.0)));
        }
    EXPECT_LT(worst, 20 * n * kEps * norm);
    EXPECT_LT(orth, 20 * n * kEps);
    for (int i = 0; i < n; ++i) EXPECT_EQ(w[i], h[i + i * n]);
}

TEST(Schur, BalancingKeepsTheEigenvalues) {
    const int n = 6;
    Mat h = hessenberg(n, 5, 1e12), b = h;
    std::vector<double> scale(n), wr(n), wi(n), wr2(n), wi2(n);
    zek::balance_scale(n, b.data(), b.ld, scale.data());
    for (double s : scale) EXPECT_EQ(s, std::exp2(std::round(std::log2(s))));
    EXPECT_LT(one_norm(b), one_norm(h));
    ASSERT_EQ(zek::hessenberg_qr(false, false, n, 1, n, b.data(), b.ld, wr.data(), wi.data(), 1, n, nullptr, 1), 0);
    const std::vector<Cx> ref = lapack_eigenvalues(h);
    std::vector<Cx> w(n);
    for (int i = 0; i < n; ++i) w[i] = Cx(wr[i], wi[i]);
    w = sorted(w);
    for (int i = 0; i < n; ++i) EXPECT_NEAR(std::abs(w[i] - ref[i]), 0.0, 1e-6 * std::abs(ref[i]));
}

} // namespace
