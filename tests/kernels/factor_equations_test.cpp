// Determinants, linear equations, inversion, covariance, norm estimation, the modified Cholesky factor and
// transposition (F03, F04 and the F01 operations).
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>

#include "factor_test_support.h"
#include "kernels/modified_cholesky.h"
#include "zek2/f01.h"
#include "zek2/f03.h"
#include "zek2/f04.h"

using namespace zek_test;

namespace {

// A = Q*diag(sigma)*Q' with a Haar orthogonal Q and sigma from 1 down to 1/COND in the condition MODE
// (3: geometric; 2: all 1 but the last), so that the 2-norm condition number is COND.
Mat with_condition(int n, double cond, unsigned seed, int mode = 3) {
    int iseed[4] = {static_cast<int>(seed % 32768), 11, 22, 33}, ifail = 0;
    const double one = 1.0;
    std::vector<double> sigma(n), work(std::size_t(n) * n + 2 * n);
    Y90CDF(&mode, &n, &cond, &one, iseed, sigma.data(), &ifail);
    Mat a(n, n);
    Y90EVF(&n, sigma.data(), iseed, a.data(), &a.ld, work.data(), &ifail);
    return a;
}

} // namespace

TEST(Determinant, KnownValuesAndScaledForm) {
    // det of [[2,1],[1,3]] (by columns) is 5; a permutation flips the sign.
    Mat a(2, 2);
    a(0, 0) = 2, a(1, 0) = 1, a(0, 1) = 1, a(1, 1) = 3;
    int n = 2, ifail = 0;
    double det = 0.0, w[2];
    Mat f = a;
    F03AAF(f.data(), &f.ld, &n, &det, w, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_NEAR(det, 5.0, 1e-14);
    Mat s(2, 2);
    s(0, 1) = 1, s(1, 0) = 1;
    F03AAF(s.data(), &s.ld, &n, &det, w, &ifail);
    EXPECT_NEAR(det, -1.0, 1e-15);
    // 200 by 200 diagonal of 10: 10**200 fits, and the scaled form carries it exactly.
    const int big = 200;
    Mat d = identity_matrix(big, 10.0);
    std::vector<double> p(big);
    double d1 = 0.0;
    int id = 0;
    const double eps = 0.0;
    F03AFF(&big, &eps, d.data(), &d.ld, &d1, &id, p.data(), &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_NEAR(std::log2(std::fabs(d1)) + id, 200.0 * std::log2(10.0), 1e-9);
    EXPECT_GE(std::fabs(d1), 0.0625);
    EXPECT_LT(std::fabs(d1), 1.0);
    // 10**400 overflows (F03AAF says so, the scaled form does not) and 0.1**400 underflows.
    const int huge = 400;
    std::vector<double> wk(huge);
    for (auto [diagonal, exit] : {std::pair{10.0, 3}, std::pair{0.1, 4}}) {
        Mat h = identity_matrix(huge, diagonal);
        ifail = 1;
        F03AAF(h.data(), &h.ld, &huge, &det, wk.data(), &ifail);
        EXPECT_EQ(ifail, exit);
    }
    EXPECT_EQ(det, 0.0);
}

TEST(Determinant, SingularAndArgumentErrors) {
    Mat a = make_matrix(Kind::RankDeficient, 6, 6, 2);
    int n = 6, ifail = 1;
    double det = 1.0, w[6];
    F03AAF(a.data(), &a.ld, &n, &det, w, &ifail);
    EXPECT_EQ(ifail, 1);
    EXPECT_EQ(det, 0.0);
    // The noisy soft request prints the message on the host channel (stdout here).
    StdoutCapture capture;
    int lda = 3;
    ifail = -1;
    F03AAF(a.data(), &lda, &n, &det, w, &ifail);
    const std::string text = capture.text();
    EXPECT_EQ(ifail, 2);
    EXPECT_NE(text.find(" ** On entry, IA .lt. N: IA =               3, N =               6."), std::string::npos)
        << text;
}

TEST(LinearEquations, SolutionsWithAndWithoutRefinement) {
    const int n = 40, nrhs = 3;
    for (double cond : {1e2, 1e10}) {
        const Mat a = with_condition(n, cond, 8);
        const Mat xtrue = make_matrix(Kind::Random, n, nrhs, 9);
        const Mat b = multiply(a, xtrue);
        ZekFail fail{};
        // Factorise once (f03afc), solve plainly (f04ajc) and with refinement (f04ahc).
        Mat lu = a;
        std::vector<int> piv(n);
        double detf;
        int dete;
        f03afc(n, lu.data(), n, piv.data(), &detf, &dete, &fail);
        ASSERT_EQ(fail.code, 0);
        Mat plain = b;
        f04ajc(n, nrhs, lu.data(), n, piv.data(), plain.data(), n, &fail);
        EXPECT_EQ(fail.code, 0);
        Mat refined(n, nrhs), resid(n, nrhs);
        f04ahc(n, nrhs, a.data(), n, lu.data(), n, piv.data(), b.data(), n, refined.data(), n, resid.data(), n, &fail);
        EXPECT_EQ(fail.code, 0);
        // The driver does all of it.
        Mat aa(n, n), x(n, nrhs);
        f04aec(n, nrhs, a.data(), n, b.data(), n, aa.data(), n, x.data(), n, nullptr, 0, &fail);
        EXPECT_EQ(fail.code, 0);
        EXPECT_EQ(aa.v, lu.v);
        EXPECT_EQ(x.v, refined.v);
        // Forward errors: refinement gives a solution accurate to about cond*eps, and a residual
        // at rounding level of B.
        const double tol = 10.0 * cond * kEps;
        for (int j = 0; j < nrhs; ++j)
            for (int i = 0; i < n; ++i) {
                EXPECT_NEAR(plain(i, j), xtrue(i, j), tol * 10) << cond;
                EXPECT_NEAR(refined(i, j), xtrue(i, j), tol) << cond;
            }
        EXPECT_LT(one_norm(resid) / one_norm(b), 10 * n * kEps);
    }
}

TEST(LinearEquationsReference, DeterminantAndSolutionAgreeWithReferenceLapack) {
    const int n = 25, nrhs = 2;
    const Mat a = make_matrix(Kind::Random, n, n, 77);
    const Mat b = make_matrix(Kind::Random, n, nrhs, 78);
    Mat ra = a, rb = b;
    std::vector<int> ipiv(n);
    int info = 0;
    call_lapack("dgesv", &n, &nrhs, ra.data(), &ra.ld, ipiv.data(), rb.data(), &rb.ld, &info);
    double ref_det = 1.0;
    for (int i = 0; i < n; ++i) ref_det *= (ipiv[i] != i + 1 ? -1.0 : 1.0) * ra(i, i);
    Mat f = a;
    double det = 0.0;
    std::vector<double> w(n);
    int ifail = 0;
    F03AAF(f.data(), &f.ld, &n, &det, w.data(), &ifail);
    EXPECT_NEAR(det / ref_det, 1.0, 1e-12);
    Mat aa(n, n), x(n, nrhs);
    ZekFail fail{};
    f04aec(n, nrhs, a.data(), n, b.data(), n, aa.data(), n, x.data(), n, nullptr, 0, &fail);
    expect_near_vectors(x.v, rb.v, 1e-12, "solution");
}

TEST(Inverse, GeneralAndSymmetricPositiveDefinite) {
    const int n = 30;
    const Mat a = make_matrix(Kind::Random, n, n, 14);
    Mat f = a, x(n, n);
    ZekFail fail{};
    f01aac(f.data(), n, n, x.data(), n, &fail);
    ASSERT_EQ(fail.code, 0);
    EXPECT_LT(scaled_difference(identity_matrix(n), multiply(a, x)), 200.0);

    // SPD inverse over the lower triangle; the strict upper triangle stays.
    const Mat spd = make_spd(n, 15);
    Mat w = spd;
    for (int j = 1; j < n; ++j)
        for (int i = 0; i < j; ++i) w(i, j) = -99.0;
    f01adc(n, w.data(), n, &fail);
    ASSERT_EQ(fail.code, 0);
    Mat inv(n, n);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            if (i < j) {
                EXPECT_EQ(w(i, j), -99.0);
            }
            inv(i, j) = i >= j ? w(i, j) : w(j, i);
        }
    EXPECT_LT(scaled_difference(identity_matrix(n), multiply(spd, inv)), 50.0);
}

TEST(Covariance, BothFormsAgreeWithTheNormalEquations) {
    // R of a QR factorisation (P = 5) and, for the singular-value form, the SVD of R assembled by hand
    // from a diagonal R (so V = I and S = |diag|).
    const int p = 5;
    Mat x = make_matrix(Kind::Random, 12, p, 5);
    std::vector<double> zeta(p);
    int m = 12, ifail = 0;
    F01QCF(&m, &p, x.data(), &x.ld, zeta.data(), &ifail);
    Mat r(p, p);
    for (int j = 0; j < p; ++j)
        for (int i = 0; i <= j; ++i) r(i, j) = x(i, j);
    // (R'R)^-1 by the general inverse.
    Mat ginv(p, p), tmp = multiply(transposed(r), r);
    ZekFail fail{};
    f01aac(tmp.data(), p, p, ginv.data(), p, &fail);
    const double sigma = 0.5, s2 = 0.25;
    std::vector<double> cj(p), work(p);
    const int svd = 0, irank = p;
    for (int job = -1; job <= p; ++job) {
        Mat a = r;
        F04YAF(&job, &p, &sigma, a.data(), &a.ld, &svd, &irank, nullptr, cj.data(), work.data(), &ifail);
        ASSERT_EQ(ifail, 0) << job;
        for (int k = 0; k < p; ++k) {
            if (job == 0 || job == -1) {
                EXPECT_NEAR(cj[k], s2 * ginv(k, k), 1e-12 * (1 + std::fabs(ginv(k, k)))) << job;
            } else {
                EXPECT_NEAR(cj[k], s2 * ginv(k, job - 1), 1e-12 * (1 + std::fabs(ginv(k, job - 1)))) << job;
            }
            if (job == -1) {
                for (int i = 0; i <= k; ++i) EXPECT_NEAR(a(i, k), s2 * ginv(i, k), 1e-12 * (1 + std::fabs(ginv(i, k))));
            }
        }
    }
    // The singular-value form with V = I: C = sigma**2 * diag(1/s**2) on the leading IRANK variables.
    const std::vector<double> sv = {4.0, 2.0, 1.0};
    Mat v = identity_matrix(p);
    const int svd_true = 1, r3 = 3, jm1 = -1;
    F04YAF(&jm1, &p, &sigma, v.data(), &v.ld, &svd_true, &r3, sv.data(), cj.data(), work.data(), &ifail);
    EXPECT_EQ(ifail, 0);
    for (int k = 0; k < p; ++k) EXPECT_NEAR(cj[k], k < 3 ? s2 / (sv[k] * sv[k]) : 0.0, 1e-15);
    EXPECT_NEAR(v(0, 1), 0.0, 1e-15);
}

TEST(Covariance, FailureExits) {
    struct Case {
        int job, p;
        double sigma;
        int nra, svd, irank, ifail;
        const char *text;
    };
    const Case cases[] = {
        {0, 0, 1.0, 1, 0, 0, 1, " ** On entry, P .lt. 1: P =               0."},
        {0, 2, -1.0, 2, 0, 0, 1, " ** On entry, SIGMA .lt. 0.0: SIGMA = -1.0000E+00."},
        {3, 2, 1.0, 2, 0, 0, 1, " ** On entry, JOB .lt. -1 or JOB .gt. P:"},
        {0, 2, 1.0, 2, 1, 3, 1, " ** On entry, SVD = .TRUE. and (IRANK .lt. 0 or IRANK .gt. P):"},
        {0, 3, 1.0, 1, 1, 2, 1, " ** On entry, SVD = .TRUE., JOB .ge. 0 and NRA .lt. max(1,IRANK):"},
        {-1, 3, 1.0, 2, 1, 2, 1, " ** On entry, SVD = .TRUE., JOB = -1 and NRA .lt. P:"},
        {0, 3, 1.0, 3, 1, 0, 1, " ** On entry, SVD = .TRUE. and IRANK .le. 0:"},
        {0, 3, 1.0, 2, 0, 0, 1, " ** On entry, SVD = .FALSE. and NRA .lt. P:"},
        {0, 2, 1.0, 2, 0, 0, 2, " ** On entry, SVD = .FALSE. and overflow would occur in calculating"},
        {0, 2, 1.0, 2, 1, 2, 3, " ** On entry, SVD = .FALSE. and one of the first IRANK singular"},
    };
    for (const Case &c : cases) {
        double a[9] = {1, 0, 0, 0, 0, 0, 0, 0, 1}; // R(2,2) = 0 for the overflow case
        double sv[3] = {1.0, 0.0, 1.0}, cj[3], work[3];
        int ifail = -1;
        StdoutCapture capture;
        F04YAF(&c.job, &c.p, &c.sigma, a, &c.nra, &c.svd, &c.irank, sv, cj, work, &ifail);
        const std::string text = capture.text();
        EXPECT_EQ(ifail, c.ifail) << c.text;
        EXPECT_NE(text.find(c.text), std::string::npos) << text;
        EXPECT_NE(text.find("ABNORMAL EXIT from ZEK Library routine F04YAF: IFAIL =     " + std::to_string(c.ifail)),
                  std::string::npos);
    }
}

TEST(NormEstimate, RealAndComplexEstimatesBoundTheOneNorm) {
    for (int n : {1, 7, 60}) {
        const Mat a = make_matrix(Kind::Graded, n, n, 3u + n);
        const double exact = one_norm(a);
        double est = 0.0;
        int ifail = 0;
        EXPECT_LE(drive_estimator(F04YCF, 1, n, a.data(), &est, &ifail), 11);
        EXPECT_EQ(ifail, 0);
        EXPECT_LE(est, exact * (1 + 1e-13));
        EXPECT_GE(est, exact / 3.0);
        // The complex estimator on the same matrix as a complex one.
        drive_estimator(F04ZCF, 2, n, a.data(), &est, &ifail);
        EXPECT_LE(est, exact * (1 + 1e-13));
        EXPECT_GE(est, exact / 3.0);
    }
    int icase = 7, n = 3, ifail = 1;
    double x[3], est, v[3];
    int iw[6];
    F04YCF(&icase, &n, x, &est, v, iw, &ifail);
    EXPECT_EQ(ifail, 2);
    EXPECT_EQ(icase, 0);
}

TEST(ModifiedCholesky, PositiveDefiniteIsUnchangedAndIndefiniteIsMadeDefinite) {
    // G = [[4,2,0],[2,5,1],[0,1,3]]: positive definite, so the factor is exact and nothing changes.
    const int n = 3, ll = 3;
    double l[3] = {2, 0, 1}; // g21; g31, g32
    double d[3] = {4, 5, 3};
    const double eps = 1e-16;
    int ifail = -1;
    zek::F01BQZ(&n, &eps, l, &ll, d, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_DOUBLE_EQ(d[0], 4.0);
    EXPECT_DOUBLE_EQ(l[0], 0.5);
    EXPECT_DOUBLE_EQ(d[1], 4.0);
    EXPECT_DOUBLE_EQ(l[2], 0.25);
    EXPECT_DOUBLE_EQ(d[2], 3.0 - 0.25);
    // An indefinite G: the modified factor has positive diagonals and at least one was changed; G + E
    // = L*D*L' differs from G only on the diagonal.
    const int m = 4;
    const double g[4][4] = {{1, 2, 0, 1}, {2, 1, 3, 0}, {0, 3, -2, 1}, {1, 0, 1, 0.5}};
    std::vector<double> pl, pd(4);
    for (int i = 0; i < 4; ++i) {
        pd[i] = g[i][i];
        for (int j = 0; j < i; ++j) pl.push_back(g[i][j]);
    }
    const int lm = 6;
    zek::F01BQZ(&m, &eps, pl.data(), &lm, pd.data(), &ifail);
    EXPECT_GT(ifail, 0);
    auto lij = [&](int i, int j) { return i == j ? 1.0 : (i > j ? pl[i * (i - 1) / 2 + j] : 0.0); };
    for (int i = 0; i < 4; ++i) {
        EXPECT_GT(pd[i], 0.0);
        for (int j = 0; j < i; ++j) {
            double s = 0.0;
            for (int k = 0; k <= j; ++k) s += lij(i, k) * pd[k] * lij(j, k);
            EXPECT_NEAR(s, g[i][j], 1e-12) << i << j;
        }
    }
}

TEST(Transpose, RectangularAndSquareInPlace) {
    for (auto [m, n] : {std::pair{1, 1}, std::pair{1, 5}, std::pair{4, 4}, std::pair{3, 7}, std::pair{12, 5}}) {
        const Mat a = make_matrix(Kind::Random, m, n, 4u + m);
        std::vector<double> t(a.v.begin(), a.v.begin() + std::size_t(m) * n);
        ZekFail fail{};
        f01crc(t.data(), m, n, &fail);
        EXPECT_EQ(fail.code, 0);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) EXPECT_EQ(t[j + std::size_t(i) * n], a(i, j));
    }
}

TEST(LeastSquaresReference, FullRankSolutionAgreesWithReferenceDgelsAndFeedsTheCovariance) {
    const int m = 40, n = 7, one = 1;
    const Mat a = make_matrix(Kind::Graded, m, n, 12);
    const Mat b = make_matrix(Kind::Random, m, 1, 13);
    Mat ra = a, rb = b;
    std::vector<double> work(1000);
    const int lwork = 1000;
    int info = 0;
    call_lapack("dgels", "N", &m, &n, &one, ra.data(), &ra.ld, rb.data(), &rb.ld, work.data(), &lwork, &info,
                L(1));
    Mat qa = a, qb = b;
    std::vector<double> zeta(8);
    double sigma = -1.0;
    int irank = -1;
    ZekFail fail{};
    f04jgc(m, n, qa.data(), qa.ld, qb.data(), 0.0, &sigma, &irank, zeta.data(), &fail);
    ASSERT_EQ(fail.code, 0);
    EXPECT_EQ(irank, n);
    for (int i = 0; i < n; ++i) EXPECT_NEAR(qb(i, 0) / rb(i, 0), 1.0, 1e-6) << i;
    double rss = 0.0;
    for (int i = n; i < m; ++i) rss += rb(i, 0) * rb(i, 0);
    EXPECT_NEAR(sigma, std::sqrt(rss / (m - n)), 1e-12);
    // The covariance of the fit from R.
    std::vector<double> cj(n), w(n);
    const int job = 0, svd = 0;
    int ifail = 1;
    F04YAF(&job, &n, &sigma, qa.data(), &qa.ld, &svd, &irank, nullptr, cj.data(), w.data(), &ifail);
    EXPECT_EQ(ifail, 0);
    for (double c : cj) EXPECT_GT(c, 0.0);
    // Rank deficient (rank 4 of 8): the minimum-norm solution, as reference LAPACK's SVD solver gives it.
    const int dm = 20, dn = 8;
    Mat d = make_matrix(Kind::RankDeficient, dm, dn, 2);
    Mat db = make_matrix(Kind::Random, dm, 1, 3);
    const Mat d0 = d, db0 = db;
    Mat ld_ = d, lb = db;
    std::vector<double> ls(dn);
    const double rc = 1e-10;
    int lrank = 0;
    call_lapack("dgelss", &dm, &dn, &one, ld_.data(), &ld_.ld, lb.data(), &lb.ld, ls.data(), &rc, &lrank,
                work.data(), &lwork, &info);
    ASSERT_EQ(info, 0);
    f04jgc(dm, dn, d.data(), d.ld, db.data(), rc, &sigma, &irank, zeta.data(), &fail);
    ASSERT_EQ(fail.code, 0);
    EXPECT_EQ(irank, 4);
    EXPECT_EQ(irank, lrank);
    for (int i = 0; i < dn; ++i) EXPECT_NEAR(db(i, 0), lb(i, 0), 1e-12) << i;
    double lrss = 0.0;
    for (int i = 0; i < dm; ++i) {
        double r = db0(i, 0);
        for (int j = 0; j < dn; ++j) r -= d0(i, j) * lb(j, 0);
        lrss += r * r;
    }
    EXPECT_NEAR(sigma, std::sqrt(lrss / (dm - irank)), 1e-12);
    for (int i = 0; i < irank; ++i) EXPECT_NEAR(zeta[i], ls[i], 1e-12 * ls[0]);
}

TEST(LinearEquations, RefinementFailsOnANearlySingularMatrix) {
    // Condition 1e20 with one tiny singular value, which the rounding of the stored matrix turns into
    // noise near eps: the factorisation goes through, and for this generator state (as for about half
    // of them) the corrections along that singular vector stop shrinking.
    const int n = 12;
    const Mat a = with_condition(n, 1e20, 22, 2);
    const Mat b = make_matrix(Kind::Random, n, 1, 22);
    Mat aa(n, n), x(n, 1);
    ZekFail fail{};
    f04aec(n, 1, a.data(), n, b.data(), n, aa.data(), n, x.data(), n, nullptr, 0, &fail);
    EXPECT_EQ(fail.code, 378);
    // The IFAIL-layer argument exits of the inversion and the estimators.
    int bad = 0, ia = 1, ifail = 1;
    double w[4];
    F01AAZ(w, &ia, &bad, w, &ia, w, &ifail);
    EXPECT_EQ(ifail, 2);
    int icase = 0;
    double est;
    int iw[4];
    ifail = 1;
    F04ZCF(&icase, &bad, w, &est, w, iw, &ifail);
    EXPECT_EQ(ifail, 1);
}

// The C-style layer's argument and failure codes, one row per exit; the outputs are scratch.
TEST(CStyleCodes, EveryExitEndsInItsCode) {
    struct Row {
        const char *what;
        std::function<void(ZekFail *)> call;
        int code;
        const char *message; // the full message where a row checks it
    };
    static double w[64], d[2] = {1.0, 0.0};
    static int piv[8], e;
    const Row rows[] = {
        {"f03afc singular", [](ZekFail *f) { Mat z = make_matrix(Kind::ZeroColumn, 6, 6, 3); f03afc(6, z.data(), 6, piv, w, &e, f); }, 366, nullptr},
        {"f03afc lda < n", [](ZekFail *f) { f03afc(6, w, 5, piv, w + 40, &e, f); }, 17, nullptr},
        {"f04aec singular", [](ZekFail *f) { double a[4] = {1, 2, 2, 4}, b[2] = {1, 1}; f04aec(2, 1, a, 2, b, 2, w, 2, w + 8, 2, nullptr, 0, f); }, 366, nullptr},
        {"f04aec nrhs 0", [](ZekFail *f) { double a[4] = {1, 0, 0, 1}; f04aec(2, 0, a, 2, a, 2, w, 2, w + 8, 2, nullptr, 0, f); }, 11, nullptr},
        {"f04aec ldaa < n", [](ZekFail *f) { double a[4] = {1, 0, 0, 1}; f04aec(2, 1, a, 2, a, 2, w, 1, w + 8, 2, nullptr, 0, f); }, 17, nullptr},
        {"f01aac singular", [](ZekFail *f) { Mat s = make_matrix(Kind::RankDeficient, 5, 5, 1); f01aac(s.data(), 5, 5, w, 5, f); }, 366, nullptr},
        {"f01adc not positive definite", [](ZekFail *f) { Mat s = make_spd(6, 15); s(2, 2) = -5.0; f01adc(6, s.data(), 6, f); }, 367, nullptr},
        {"f01adc lda < n", [](ZekFail *f) { f01adc(3, w, 2, f); }, 17, nullptr},
        {"spd inverse zero pivot", [](ZekFail *f) { F01_SPD_INVERSE(2, w, 2, d, w, 2, 1, w + 2, f); }, 367, nullptr},
        {"f01crc m 0", [](ZekFail *f) { f01crc(w, 0, 3, f); }, 11, nullptr},
        {"f01crc n < 0", [](ZekFail *f) { f01crc(w, 3, -1, f); }, 11, nullptr},
        {"f04jgc m < n", [](ZekFail *f) { int r; double s; f04jgc(3, 4, w, 3, w + 16, 0.0, &s, &r, w + 24, f); }, 17, nullptr},
        {"f01qcc m < n", [](ZekFail *f) { f01qcc(1, 2, w, 1, w + 8, f); }, 17,
         "ZE_2_INT_ARG_LT:\n  On entry, m = 1 while n = 2. These parameters must satisfy m >= n."},
        {"f01qcc n < 0", [](ZekFail *f) { f01qcc(2, -1, w, 2, w + 8, f); }, 11, nullptr},
        {"f01qcc lda < m", [](ZekFail *f) { f01qcc(2, 2, w, 1, w + 8, f); }, 17, nullptr},
        {"f01qdc bad transpose", [](ZekFail *f) { f01qdc(7, Zek_ElementsIn, 2, 2, w, 2, w + 8, 1, w + 16, 2, f); }, 70, nullptr},
        {"f01qdc bad wheret", [](ZekFail *f) { f01qdc(Zek_NoTranspose, 7, 2, 2, w, 2, w + 8, 1, w + 16, 2, f); }, 70, nullptr},
        {"f01qdc ncolb < 0", [](ZekFail *f) { f01qdc(Zek_NoTranspose, Zek_ElementsIn, 2, 2, w, 2, w + 8, -1, w + 16, 2, f); }, 11, nullptr},
        {"f01qdc ldb < m", [](ZekFail *f) { f01qdc(Zek_NoTranspose, Zek_ElementsIn, 2, 2, w, 2, w + 8, 1, w + 16, 1, f); }, 17, nullptr},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        std::fill(std::begin(w), std::end(w), 0.0);
        ZekFail fail{};
        fail.print = 0;
        row.call(&fail);
        EXPECT_EQ(fail.code, row.code) << fail.message;
        if (row.message != nullptr) {
            EXPECT_STREQ(fail.message, row.message);
        }
    }
}

// Matrices whose factorisation meets an infinite or undefined value: every routine on the scaled LU
// ends in its singular exit instead of looping on the determinant's scale.
TEST(Determinant, NonFiniteMatricesEndInTheSingularExit) {
    const double inf = HUGE_VAL, nan = std::nan("");
    struct Case {
        const char *what;
        double a[4]; // column order
    } cases[] = {
        {"infinite diagonal", {inf, 1.0, 2.0, 3.0}},
        {"all infinite", {inf, -inf, inf, inf}},
        {"undefined element", {1.0, nan, 2.0, 3.0}},
        {"elimination overflows", {1.0, 4e293, -1e14, 1.5e308}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        int n = 2, ld = 2, id = 0, ifail = 1;
        double a[4], x[4], p[2], d1 = 0.0, det = 0.0, eps = 0.0;
        std::memcpy(a, c.a, sizeof a);
        F03AAF(a, &ld, &n, &det, p, &ifail);
        EXPECT_EQ(ifail, 1);
        EXPECT_EQ(det, 0.0);
        std::memcpy(a, c.a, sizeof a);
        ifail = 1;
        F03AFF(&n, &eps, a, &ld, &d1, &id, p, &ifail);
        EXPECT_EQ(ifail, 1);
        std::memcpy(a, c.a, sizeof a);
        ifail = 1;
        F01AAZ(a, &ld, &n, x, &ld, p, &ifail);
        EXPECT_EQ(ifail, 1);
        ZekFail fail{};
        int pivot[2];
        std::memcpy(a, c.a, sizeof a);
        f03afc(n, a, ld, pivot, &d1, &id, &fail);
        EXPECT_EQ(fail.code, 366) << fail.message;
        double b[2] = {1.0, 1.0}, aa[4];
        f04aec(n, 1, c.a, ld, b, ld, aa, ld, x, ld, nullptr, 0, &fail);
        EXPECT_EQ(fail.code, 366) << fail.message;
    }
}
