// QR factorisation in reflector form (F01QCF, F01QCZ, f01qcc, F01QDF, F01QDZ, f01qdc, F01QFZ) and the
// published F08 routines (F08AEZ, F08AGZ, F08AGF, F08BEF).
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "factor_test_support.h"
#include "kernels/qr.h"
#include "zek2/f01.h"
#include "zek2/f07.h"
#include "zek2/f08.h"

using namespace zek_test;

namespace {

struct QrResult {
    Mat f;
    std::vector<double> zeta;
};

QrResult f01qcf(const Mat &a) {
    QrResult r{a, std::vector<double>(std::max(1, a.n), -1.0)};
    int ifail = 0;
    F01QCF(&r.f.m, &r.f.n, r.f.data(), &r.f.ld, r.zeta.data(), &ifail);
    EXPECT_EQ(ifail, 0);
    return r;
}

// Q*B or Q'*B through F01QDF.
Mat apply_q(const QrResult &r, const char *trans, Mat b) {
    Mat a = r.f;
    std::vector<double> work(std::max(1, b.n));
    int ifail = 0;
    F01QDF(trans, "S", &a.m, &a.n, a.data(), &a.ld, r.zeta.data(), &b.n, b.data(), &b.ld, work.data(), &ifail, 1, 1);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(a.v, r.f.v); // A is restored
    return b;
}

} // namespace

class QrBackwardError : public ::testing::TestWithParam<std::tuple<Kind, int, int>> {};

TEST_P(QrBackwardError, QTimesRIsAAndQIsOrthogonal) {
    const auto [kind, m, n] = GetParam();
    const Mat a = make_matrix(kind, m, n, 31u + m, m + 1);
    const QrResult r = f01qcf(a);
    // A = Q*[R; 0] and Q'*Q = I.
    EXPECT_LT(scaled_difference(a, apply_q(r, "N", upper_band(r.f, 0))), 4.0);
    const Mat q = apply_q(r, "N", identity_matrix(m));
    const Mat qtq = apply_q(r, "T", q);
    EXPECT_LT(scaled_difference(identity_matrix(m), qtq), 4.0);
    // Q'*A = [R; 0].
    Mat back = apply_q(r, "C", a);
    EXPECT_LT(scaled_difference(upper_band(r.f, 0), upper_band(back, 0)), 4.0);
    if (m == n) {
        EXPECT_EQ(r.zeta[n - 1], 0.0);
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, QrBackwardError,
                         ::testing::Combine(::testing::Values(Kind::Random, Kind::Graded, Kind::RankDeficient,
                                                              Kind::ZeroColumn),
                                            ::testing::Values(12, 40), ::testing::Values(1, 12)),
                         [](const auto &info) {
                             return std::string(kind_name(std::get<0>(info.param))) + "_" +
                                    std::to_string(std::get<1>(info.param)) + "x" +
                                    std::to_string(std::get<2>(info.param));
                         });

TEST(QrFactor, ZeroFirstColumnSkipsItsReflectorAndEmptyMatrixTouchesNothing) {
    Mat a = make_matrix(Kind::Random, 5, 3, 8);
    for (int i = 0; i < 5; ++i) a(i, 0) = 0.0;
    const QrResult r = f01qcf(a);
    EXPECT_EQ(r.zeta[0], 0.0);
    for (int j = 1; j < 3; ++j)
        for (int i = 0; i < 5; ++i) EXPECT_EQ(r.f(i, j), i == 0 ? a(i, j) : r.f(i, j));
    // N = 0: nothing is touched.
    int m = 4, n = 0, lda = 4, ifail = -1;
    double z[1] = {7.0}, x[4] = {1, 2, 3, 4};
    F01QCF(&m, &n, x, &lda, z, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(z[0], 7.0);
    EXPECT_EQ(x[3], 4.0);
}

TEST(QrFactor, DiagonalZetasAndTheCStyleTwinsAgree) {
    const Mat a = make_matrix(Kind::Random, 9, 5, 12);
    const QrResult r = f01qcf(a);
    // The C-style factorisation is the same.
    Mat c = a;
    std::vector<double> zc(5);
    ZekFail fail{};
    f01qcc(9, 5, c.data(), c.ld, zc.data(), &fail);
    EXPECT_EQ(fail.code, 0);
    EXPECT_EQ(c.v, r.f.v);
    EXPECT_EQ(zc, r.zeta);
    // And so is the host-channel form.
    Mat h = a;
    std::vector<double> zh(5);
    int hifail = 0;
    F01QCZ(&h.m, &h.n, h.data(), &h.ld, zh.data(), &hifail);
    EXPECT_EQ(hifail, 0);
    EXPECT_EQ(h.v, r.f.v);
    // Zetas on the diagonal (WHERET 'I') act as those held apart.
    Mat d = r.f;
    for (int k = 0; k < 5; ++k) d(k, k) = r.zeta[k];
    const Mat b = make_matrix(Kind::Random, 9, 2, 13);
    Mat b1 = b, b2 = b;
    std::vector<double> work(2);
    int ncolb = 2, ifail = 0, m = 9, n = 5;
    F01QDF("T", "I", &m, &n, d.data(), &d.ld, nullptr, &ncolb, b1.data(), &b1.ld, work.data(), &ifail, 1, 1);
    EXPECT_EQ(ifail, 0);
    f01qdc(Zek_Transpose, Zek_ElementsSeparate, 9, 5, c.data(), c.ld, zc.data(), 2, b2.data(), b2.ld, &fail);
    EXPECT_EQ(fail.code, 0);
    EXPECT_EQ(b1.v, b2.v);
    EXPECT_EQ(b1.v, apply_q(r, "T", b).v);
}

// Argument errors are counted, printed on the stream channel unless IFAIL asks for silence, and end
// with IFAIL = 1; the process never ends.
TEST(QrFactor, ArgumentErrorsAreCountedBeforeAnyWork) {
    struct Case {
        int m, n, lda, errors;
    };
    const Case cases[] = {{2, 3, 2, 1}, {3, -1, 3, 1}, {4, 2, 3, 1}, {1, 2, 0, 2}};
    for (const Case &c : cases) {
        double a[16] = {0}, z[4] = {0};
        int ifail = 1;
        StdoutCapture quiet;
        F01QCF(&c.m, &c.n, a, &c.lda, z, &ifail);
        EXPECT_EQ(ifail, 1);
        EXPECT_EQ(quiet.text(), "");
        ifail = 0; // hard and noisy: still returns on the stream channel
        StdoutCapture noisy;
        F01QCF(&c.m, &c.n, a, &c.lda, z, &ifail);
        const std::string text = noisy.text();
        EXPECT_EQ(ifail, 1);
        EXPECT_NE(text.find("The input parameters contained  " + std::to_string(c.errors) + " error(s)"),
                  std::string::npos)
            << text;
        EXPECT_NE(text.find("ABNORMAL EXIT from ZEK Library routine F01QCF: IFAIL =     1 **"), std::string::npos);
    }
    // F01QDF: the count comes before the quick return of NCOLB = 0.
    double a[4] = {0}, b[4] = {0}, w[1];
    int m = 2, n = 2, lda = 2, ncolb = 0, ldb = 2, ifail = 1;
    F01QDF("X", "S", &m, &n, a, &lda, a, &ncolb, b, &ldb, w, &ifail, 1, 1);
    EXPECT_EQ(ifail, 1);
    ifail = 1;
    F01QDF("n", "i", &m, &n, a, &lda, a, &ncolb, b, &ldb, w, &ifail, 1, 1);
    EXPECT_EQ(ifail, 0);
    ifail = 1;
    int bad_ldb = 1, bad_ncolb = -2;
    F01QDF("Q", "Z", &m, &n, a, &lda, a, &bad_ncolb, b, &bad_ldb, w, &ifail, 1, 1);
    EXPECT_EQ(ifail, 1);
    // The host-channel twin prints each bad argument with its full name and the count record.
    StdoutCapture listing;
    ifail = 11; // noisy and soft
    F01QDZ("Q", "Z", &m, &n, a, &lda, a, &bad_ncolb, b, &bad_ldb, w, &ifail, 1, 1);
    const std::string text = listing.text();
    EXPECT_EQ(ifail, 1);
    EXPECT_NE(text.find("Parameter  TRANS  is invalid in routine  F01QDZ"), std::string::npos) << text;
    EXPECT_NE(text.find("Parameter  LDB  is invalid in routine  F01QDZ"), std::string::npos);
    EXPECT_NE(text.find("The input parameters contained  4 error(s)"), std::string::npos);
    EXPECT_NE(text.find("ABNORMAL EXIT from ZEK Library routine F01QDZ: IFAIL =     1"), std::string::npos);
}

// F01QFZ on F (pivoting PIVOT) with leading dimension LD (F's own when 0); returns IFAIL (1 on entry).
static int pivoted_qr(char pivot, Mat &f, std::vector<int> &perm, int ld = 0) {
    std::vector<double> zeta(std::max(f.n, 1)), work(2 * std::max(f.n, 1));
    int ifail = 1, lda = ld > 0 ? ld : f.ld;
    zek::F01QFZ(&pivot, &f.m, &f.n, f.data(), &lda, zeta.data(), perm.data(), work.data(), &ifail, 1);
    return ifail;
}

TEST(QrPivoted, NormOrderAndTies) {
    // Column norms 1, 3, 3, 2: the first of the two largest is taken first.
    Mat a(4, 4);
    const double norms[4] = {1, 3, 3, 2};
    for (int j = 0; j < 4; ++j) a(j, j) = norms[j];
    for (char pivot : {'C', 'S'}) {
        Mat f = a;
        std::vector<int> perm(4);
        EXPECT_EQ(pivoted_qr(pivot, f, perm), 0);
        EXPECT_EQ(perm[0], 2) << pivot;
        if (pivot == 'C') {
            // The largest remaining norm, the earlier of two equal ones: |R(k,k)| never increases.
            EXPECT_EQ(perm[1], 3);
            for (int k = 1; k < 4; ++k) EXPECT_LE(std::fabs(f(k, k)), std::fabs(f(k - 1, k - 1)) + 1e-15);
        } else {
            // After the first step every column keeps all of its norm: no ratio beats the first.
            EXPECT_EQ(perm[1], 2);
        }
    }
    // A rank-deficient matrix: the trailing diagonal of R is negligible.
    Mat f = make_matrix(Kind::RankDeficient, 30, 12, 4);
    std::vector<int> perm(12);
    pivoted_qr('c', f, perm);
    EXPECT_LT(std::fabs(f(6, 6)), 1e-13 * std::fabs(f(0, 0)));
    EXPECT_GT(std::fabs(f(5, 5)), 1e-6 * std::fabs(f(0, 0)));
    // Bad arguments (pivot letter, M < N, leading dimension): counted into IFAIL.
    Mat bad(2, 3);
    EXPECT_EQ(pivoted_qr('x', bad, perm, 1), 3);
}

// ---- F08 against reference LAPACK -------------------------------------------------------------------

TEST(QrReference, Dgeqr2DormqrDgeqpfAgreeWithReferenceLapack) {
    const int m = 60, n = 35, k = 35;
    const Mat a = make_matrix(Kind::Random, m, n, 41);
    Mat ours = a, ref = a;
    std::vector<double> t1(n), t2(n), work(64 * 64 + 3 * m);
    int info = 0;
    F08AEZ(&m, &n, ours.data(), &ours.ld, t1.data(), work.data(), &info);
    EXPECT_EQ(info, 0);
    call_lapack("dgeqr2", &m, &n, ref.data(), &ref.ld, t2.data(), work.data(), &info);
    expect_near_vectors(ours.v, ref.v, 1e-12, "dgeqr2 factors");
    expect_near_vectors(t1, t2, 1e-12, "dgeqr2 tau");

    const int lwork = static_cast<int>(work.size());
    for (int nb : {1, 8}) {
        const int param = 1, set = 1;
        F07_BLOCK_SIZE(&param, "F08AGF", &nb, &set, 6);
        for (const char *side : {"L", "R"})
            for (const char *trans : {"N", "T"}) {
                const int cm = side[0] == 'L' ? m : 23, cn = side[0] == 'L' ? 19 : m;
                const Mat c = make_matrix(Kind::Random, cm, cn, 5);
                Mat c1 = c, c2 = c;
                F08AGF(side, trans, &cm, &cn, &k, ours.data(), &ours.ld, t1.data(), c1.data(), &c1.ld, work.data(),
                       &lwork, &info, 1, 1);
                EXPECT_EQ(info, 0);
                call_lapack("dormqr", side, trans, &cm, &cn, &k, ref.data(), &ref.ld, t2.data(), c2.data(),
                            &c2.ld, work.data(), &lwork, &info, L(1), L(1));
                expect_near_vectors(c1.v, c2.v, 1e-11, (std::string("dormqr ") + side + trans).c_str());
                Mat c3 = c;
                F08AGZ(side, trans, &cm, &cn, &k, ours.data(), &ours.ld, t1.data(), c3.data(), &c3.ld, work.data(),
                       &info, 1, 1);
                expect_near_vectors(c3.v, c2.v, 1e-11, "dorm2r");
            }
    }
    const int one = 1, zero = 0, set = 1;
    F07_BLOCK_SIZE(&one, "F08AGF", const_cast<int *>(&zero), &set, 6);

    const Mat d = make_matrix(Kind::RankDeficient, 40, 25, 6);
    Mat p1 = d, p2 = d;
    std::vector<int> j1(25, 0), j2(25, 0);
    j1[7] = j2[7] = 1; // a leading column
    const int dm = 40, dn = 25;
    F08BEF(&dm, &dn, p1.data(), &p1.ld, j1.data(), t1.data(), work.data(), &info);
    EXPECT_EQ(info, 0);
    call_lapack("dgeqpf", &dm, &dn, p2.data(), &p2.ld, j2.data(), t2.data(), work.data(), &info);
    // Past the rank (12) the remaining norms are rounding noise and the order is arbitrary.
    EXPECT_EQ(std::vector<int>(j1.begin(), j1.begin() + 12), std::vector<int>(j2.begin(), j2.begin() + 12));
    EXPECT_EQ(j1[0], 8);
    double worst = 0.0;
    for (int j = 0; j < 12; ++j)
        for (int i = 0; i <= j; ++i)
            worst = std::max(worst, std::fabs(std::fabs(p1(i, j)) - std::fabs(p2(i, j))));
    EXPECT_LT(worst, 1e-10);
}
