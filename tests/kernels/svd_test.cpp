// The singular value decomposition: the bidiagonal iteration (F02SYZ), the triangular drivers F02WUF
// and f02wuc, the general driver f02wdc and the internal zek::svd, checked by ||A - U S V'||, the
// orthogonality of the factors, closed forms and reference LAPACK's singular values.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "factor_test_support.h"
#include "frame/raise.h"
#include "kernels/svd.h"
#include "zek2/f02.h"
#include "zek2/messages.h"

using namespace zek_test;

namespace {

// ||Q'Q - I||_1 / (m eps) over the columns of Q.
double orthogonality(const Mat &q) { return Y90ORF(&q.m, &q.n, q.data(), &q.ld); }

// U*diag(s)*VT.
Mat recompose(const Mat &u, const std::vector<double> &s, const Mat &vt) {
    Mat us = u;
    for (int j = 0; j < u.n; ++j)
        for (int i = 0; i < u.m; ++i) us(i, j) *= s[j];
    return multiply(us, vt);
}

void expect_descending(const std::vector<double> &s) {
    for (std::size_t i = 0; i + 1 < s.size(); ++i) EXPECT_GE(s[i], s[i + 1]) << i;
    for (double v : s) EXPECT_GE(v, 0.0);
}

// Singular values from reference LAPACK (DGESVD, no vectors).
std::vector<double> lapack_values(Mat a) {
    std::vector<double> s(std::min(a.m, a.n)), work(10 * (a.m + a.n) + 64);
    int lwork = static_cast<int>(work.size()), info = 0, one = 1;
    double dummy = 0.0;
    call_lapack("dgesvd", "N", "N", &a.m, &a.n, a.data(), &a.ld, s.data(), &dummy, &one, &dummy, &one,
                work.data(), &lwork, &info, L(1), L(1));
    EXPECT_EQ(info, 0);
    return s;
}

// A bidiagonal matrix (d, e) as a full one.
Mat bidiagonal_matrix(const std::vector<double> &d, const std::vector<double> &e) {
    const int n = static_cast<int>(d.size());
    Mat b(n, n);
    for (int i = 0; i < n; ++i) b(i, i) = d[i];
    for (int i = 0; i + 1 < n; ++i) b(i, i + 1) = e[i];
    return b;
}

struct BidiagonalCase {
    const char *name;
    std::vector<double> d, e;
};

// B = Y*S*Z with Y and Z from the identity: the factors are the singular vectors.
TEST(Svd, BidiagonalIterationFactorsTheMatrix) {
    const std::vector<BidiagonalCase> cases = {
        {"ones", {1, 1, 1, 1, 1}, {1, 1, 1, 1}},
        {"ascending_diagonal", {1, 2, 3, 4}, {0, 0, 0}},
        {"negative", {-3, 2, -1e-3, 5}, {0.5, -2, 1e-8}},
        {"zero_middle", {1, 0, 2, 3}, {1, 1, 1}},
        {"zero_last", {4, 3, 2, 0}, {1, 1, 1}},
        {"graded", {1, 1e-4, 1e-8, 1e-12, 1e-16}, {1e-2, 1e-6, 1e-10, 1e-14}},
        {"huge", {1e300, 3e299, 1e299}, {1e300, 2e299}},
        {"tiny", {1e-300, 3e-301, 1e-301}, {1e-300, 2e-301}},
    };
    for (const BidiagonalCase &c : cases) {
        SCOPED_TRACE(c.name);
        const int n = static_cast<int>(c.d.size());
        std::vector<double> d = c.d, e = c.e, work(4 * n);
        Mat y = identity_matrix(n), z = identity_matrix(n), b = identity_matrix(n);
        int ifail = 1;
        F02SYZ(&n, d.data(), e.data(), &n, b.data(), &b.ld, &n, y.data(), &y.ld, &n, z.data(), &z.ld, work.data(),
               &ifail);
        ASSERT_EQ(ifail, 0);
        expect_descending(d);
        // A zero on the diagonal gives an exact zero value.
        EXPECT_TRUE(std::count(c.d.begin(), c.d.end(), 0.0) == 0 || d[n - 1] == 0.0);
        EXPECT_LT(orthogonality(y), 20.0);
        EXPECT_LT(orthogonality(transposed(z)), 20.0);
        // B := Qb'*B on the identity is Qb' = Y'.
        EXPECT_LT(scaled_difference(transposed(y), b), 1.0);
        const Mat full = bidiagonal_matrix(c.d, c.e);
        EXPECT_LT(scaled_difference(full, recompose(y, d, z)), 20.0);
    }
}

TEST(Svd, ClosedForms) {
    // A 1 by 1 gives |a| with the sign in Z.
    int one = 1, ifail = 0, zero = 0;
    double d1 = -2.5, e1 = 0.0, z = 1.0, work = 0.0, dummy = 0.0;
    F02SYZ(&one, &d1, &e1, &zero, &dummy, &one, &zero, &dummy, &one, &one, &z, &one, &work, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(d1, 2.5);
    EXPECT_EQ(z, -1.0);
    // The n by n matrix of ones on both diagonals: values 2 cos(k pi / (2n+1)), k = 1..n.
    const int n = 12;
    std::vector<double> d(n, 1.0), e(n - 1, 1.0);
    ASSERT_EQ(bidiagonal_values(n, d.data(), e.data()), 0);
    for (int k = 1; k <= n; ++k) EXPECT_NEAR(d[k - 1], 2.0 * std::cos(k * M_PI / (2 * n + 1)), 2 * n * kEps) << k;
}

// Random, graded, rank-deficient and Kahan-like triangles through F02WUF with both vector sets.
Mat kahan(int n, double theta) {
    Mat r(n, n);
    const double s = std::sin(theta), c = std::cos(theta);
    for (int i = 0; i < n; ++i) {
        const double scale = std::pow(s, i);
        r(i, i) = scale;
        for (int j = i + 1; j < n; ++j) r(i, j) = -c * scale;
    }
    return r;
}

TEST(Svd, TriangularDriverOnHardMatrices) {
    std::vector<std::pair<std::string, Mat>> cases;
    for (Kind k : {Kind::Random, Kind::Graded, Kind::RankDeficient, Kind::ZeroColumn})
        for (int n : {2, 7, 30})
            cases.push_back({kind_name(k) + std::to_string(n), upper_band(make_matrix(k, n, n, 11u * n), 0)});
    cases.push_back({"kahan", kahan(40, 1.2)});
    for (auto &[name, r] : cases) {
        SCOPED_TRACE(name);
        const int n = r.n, ncolb = 2;
        Mat a = r, q(n, n), b(n, ncolb);
        for (int j = 0; j < ncolb; ++j)
            for (int i = 0; i < n; ++i) b(i, j) = i + j;
        const Mat b0 = b;
        std::vector<double> sv(n), work(5 * n);
        int ifail = 1, yes = 1;
        zek::F02WUF(&n, a.data(), &a.ld, &ncolb, b.data(), &b.ld, &yes, q.data(), &q.ld, sv.data(), &yes, work.data(),
                    &ifail);
        ASSERT_EQ(ifail, 0);
        expect_descending(sv);
        EXPECT_LT(orthogonality(q), 20.0 * n);
        EXPECT_LT(orthogonality(transposed(a)), 20.0 * n);
        EXPECT_LT(scaled_difference(r, recompose(q, sv, a)), 20.0);
        EXPECT_LT(scaled_difference(multiply(transposed(q), b0), b), 20.0);
        const std::vector<double> ref = lapack_values(r);
        for (std::size_t i = 0; i < ref.size(); ++i) EXPECT_NEAR(sv[i], ref[i], 20 * n * kEps * sv[0]) << i;
    }
}

TEST(Svd, InternalSvdAllShapes) {
    for (auto [m, n] : {std::pair{1, 1}, {6, 6}, {20, 7}, {7, 20}, {50, 3}, {3, 50}, {1, 9}, {9, 1}}) {
        for (Kind k : {Kind::Random, Kind::RankDeficient}) {
            SCOPED_TRACE(std::to_string(m) + "x" + std::to_string(n) + kind_name(k));
            const Mat a0 = make_matrix(k, m, n, 7u + m * 3u + n);
            const int kk = std::min(m, n);
            Mat a = a0, u(m, kk), vt(kk, n);
            std::vector<double> s(kk), work(zek::svd_workspace(m, n, true, true));
            ASSERT_EQ(zek::svd(m, n, a.data(), a.ld, s.data(), u.data(), u.ld, vt.data(), vt.ld, work.data()), 0);
            expect_descending(s);
            EXPECT_LT(orthogonality(u), 20.0 * kk);
            EXPECT_LT(orthogonality(transposed(vt)), 20.0 * kk);
            EXPECT_LT(scaled_difference(a0, recompose(u, s, vt)), 20.0);
        }
    }
}

TEST(Svd, GeneralDriverBothRoutes) {
    // 40 by 10 goes through R, 12 by 10 straight to the bidiagonal form.
    for (int m : {40, 12}) {
        const int n = 10, ncolb = 1;
        const Mat a0 = make_matrix(Kind::Graded, m, n, 5u + m);
        Mat a = a0, pt(n, n), b(m, ncolb);
        for (int i = 0; i < m; ++i) b(i, 0) = 1.0 + i;
        const Mat b0 = b;
        std::vector<double> sv(n);
        double cond = 0.0;
        ZekFail fail = zek::clean_fail();
        fail.print = 0;
        zek::f02wdc(m, n, a.data(), a.ld, ncolb, b.data(), b.ld, 1, sv.data(), 1, pt.data(), pt.ld, &cond, &fail);
        ASSERT_EQ(fail.code, 0);
        const Mat &u = a; // U overwrites A
        EXPECT_LT(orthogonality(u), 20.0 * n);
        EXPECT_LT(scaled_difference(a0, recompose(u, sv, pt)), 20.0);
        const Mat utb = multiply(transposed(u), b0);
        for (int i = 0; i < n; ++i) EXPECT_NEAR(b(i, 0), utb(i, 0), 1e-12 * m * m);
        EXPECT_DOUBLE_EQ(cond, sv[0] / sv[n - 1]);
    }
}

} // namespace
