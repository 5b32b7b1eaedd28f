// Cholesky factorisations (F07FDF, F07FDZ, F07FRF, F07FRZ, F07GDF) and the packed triangular solve F07UEF.
#include <gtest/gtest.h>

#include <complex>
#include <string>

#include "factor_test_support.h"
#include "kernels/cholesky.h"
#include "zek2/f07.h"

using namespace zek_test;

namespace {

void set_block_size(const char *name, int nb) {
    const int param = 1, set = 1;
    F07_BLOCK_SIZE(&param, name, &nb, &set, 6);
}

// Whether (I, J) lies in the UPLO triangle.
bool stored(char uplo, int i, int j) { return uplo == 'U' ? i <= j : i >= j; }

// U'*U or L*L' from the factor in the UPLO triangle of F.
Mat cholesky_product(const Mat &f, char uplo) {
    Mat t(f.n, f.n);
    for (int j = 0; j < f.n; ++j)
        for (int i = 0; i < f.n; ++i)
            if (stored(uplo, i, j)) t(i, j) = f(i, j);
    return uplo == 'U' ? multiply(transposed(t), t) : multiply(t, transposed(t));
}

// The UPLO triangle of A packed by columns.
std::vector<double> packed(const Mat &a, char uplo) {
    std::vector<double> ap;
    for (int j = 0; j < a.n; ++j)
        for (int i = 0; i < a.n; ++i)
            if (stored(uplo, i, j)) ap.push_back(a(i, j));
    return ap;
}

// The UPLO triangle of A with the other one copied from it (so that comparisons see a full matrix).
Mat symmetrised(const Mat &a, char uplo) {
    Mat s = a;
    for (int j = 0; j < a.n; ++j)
        for (int i = 0; i < a.n; ++i)
            if (!stored(uplo, i, j)) s(i, j) = a(j, i);
    return s;
}

} // namespace

class CholeskyBackwardError : public ::testing::TestWithParam<std::tuple<char, int, bool>> {};

TEST_P(CholeskyBackwardError, BlockedEqualsUnblockedAndReproducesTheMatrix) {
    const auto [uplo, n, graded] = GetParam();
    const char u[1] = {uplo};
    const Mat a = make_spd(n, 3u + n, graded);
    Mat f1 = a, fb = a, fz = a;
    int info1 = -1, infob = -1, infoz = -1;
    set_block_size("F07FDF", 1);
    F07FDF(u, &n, f1.data(), &f1.ld, &info1, 1);
    set_block_size("F07FDF", 7);
    F07FDF(u, &n, fb.data(), &fb.ld, &infob, 1);
    set_block_size("F07FDF", 1);
    F07FDZ(u, &n, fz.data(), &fz.ld, &infoz, 1);
    EXPECT_EQ(info1, 0);
    EXPECT_EQ(infob, 0);
    EXPECT_EQ(infoz, 0);
    EXPECT_LT(scaled_difference(symmetrised(a, uplo), cholesky_product(f1, uplo)), 2.0);
    expect_near_vectors(fb.v, f1.v, 1e-13, "blocked against unblocked");
    EXPECT_EQ(fz.v, f1.v);

    // Packed storage gives the same factor.
    std::vector<double> ap = packed(a, uplo);
    int infop = -1;
    F07GDF(u, &n, ap.data(), &infop, 1);
    EXPECT_EQ(infop, 0);
    std::size_t k = 0;
    double worst = 0.0;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i)
            if (stored(uplo, i, j))
                worst = std::max(worst, std::fabs(ap[k++] - f1(i, j)) / (1.0 + std::fabs(f1(i, j))));
    EXPECT_LT(worst, 1e-12);

    // The packed solve with the factor: U'*U*x = b or L*L'*x = b in two triangular solves.
    Mat b = make_matrix(Kind::Random, n, 3, 17);
    Mat x = b;
    const int nrhs = 3;
    int infos = -1;
    const char first = uplo == 'U' ? 'T' : 'N', second = uplo == 'U' ? 'N' : 'T';
    F07UEF(u, &first, "N", &n, &nrhs, ap.data(), x.data(), &x.ld, &infos, 1, 1, 1);
    F07UEF(u, &second, "N", &n, &nrhs, ap.data(), x.data(), &x.ld, &infos, 1, 1, 1);
    EXPECT_EQ(infos, 0);
    const Mat ax = multiply(symmetrised(a, uplo), x);
    EXPECT_LT(scaled_difference(b, ax), graded ? 1e6 : 50.0);
}

INSTANTIATE_TEST_SUITE_P(Shapes, CholeskyBackwardError,
                         ::testing::Combine(::testing::Values('U', 'L'), ::testing::Values(1, 6, 45),
                                            ::testing::Bool()),
                         [](const auto &info) {
                             return std::string(1, std::get<0>(info.param)) + "_" +
                                    std::to_string(std::get<1>(info.param)) +
                                    (std::get<2>(info.param) ? "_graded" : "_plain");
                         });

// The minor of order 4 is not positive definite: INFO = 4 in every form, columns before it factorised.
TEST(CholeskyFactor, IndefiniteMatrixStopsAtItsMinor) {
    const int n = 20;
    for (char uplo : {'U', 'L'}) {
        Mat a = make_spd(n, 9);
        a(3, 3) = -1.0;
        for (int nb : {1, 3, 8}) {
            set_block_size("F07FDF", nb);
            Mat f = a;
            int info = 0;
            F07FDF(&uplo, &n, f.data(), &f.ld, &info, 1);
            EXPECT_EQ(info, 4) << uplo << nb;
        }
        std::vector<double> ap = packed(a, uplo);
        int info = 0;
        F07GDF(&uplo, &n, ap.data(), &info, 1);
        EXPECT_EQ(info, 4);
    }
    set_block_size("F07FDF", 1);
}

// The real factor blocked, the complex Hermitian one unblocked and blocked: the same factor as the
// reference.
TEST(CholeskyReference, SameFactorAsReferenceDpotrfAndZpotrf) {
    const int n = 90, nc = 27;
    const Mat a = make_spd(n, 21);
    // B^H B + N I, Hermitian positive definite.
    using C = std::complex<double>;
    Random rng(4);
    std::vector<C> b(std::size_t(nc) * nc), h(std::size_t(nc) * nc);
    for (C &z : b) z = C(rng.next(), rng.next());
    for (int j = 0; j < nc; ++j)
        for (int i = 0; i < nc; ++i) {
            C s = (i == j) ? C(nc) : C(0);
            for (int l = 0; l < nc; ++l) s += std::conj(b[l + i * nc]) * b[l + j * nc];
            h[i + j * nc] = s;
        }
    auto flat = [](std::vector<C> &v) { return reinterpret_cast<double *>(v.data()); };
    auto parts = [&](std::vector<C> &v) { return std::vector<double>(flat(v), flat(v) + 2 * v.size()); };
    for (char uplo : {'U', 'L'}) {
        Mat ours = a, ref = a;
        int i1 = 0, i2 = 0;
        set_block_size("F07FDF", 16);
        F07FDF(&uplo, &n, ours.data(), &ours.ld, &i1, 1);
        set_block_size("F07FDF", 1);
        call_lapack("dpotrf", &uplo, &n, ref.data(), &ref.ld, &i2, L(1));
        EXPECT_EQ(i1, i2);
        expect_near_vectors(ours.v, ref.v, 1e-12, "dpotrf");
        std::vector<C> zr = h, z1 = h, zb = h;
        call_lapack("zpotrf", &uplo, &nc, flat(zr), &nc, &i2, L(1));
        F07FRZ(&uplo, &nc, flat(z1), &nc, &i1, 1);
        EXPECT_EQ(i1, i2);
        set_block_size("F07FRF", 5);
        F07FRF(&uplo, &nc, flat(zb), &nc, &i1, 1);
        set_block_size("F07FRF", 1);
        EXPECT_EQ(i1, i2);
        expect_near_vectors(parts(z1), parts(zr), 1e-12, "zpotrf");
        expect_near_vectors(parts(zb), parts(zr), 1e-12, "zpotrf blocked");
    }
}

TEST(CholeskyFactor, PackedSolveReportsAZeroDiagonalBeforeSolving) {
    const int n = 3, nrhs = 1;
    const double ap[6] = {2, 1, 3, 4, 5, 0}; // upper packed, T(3,3) = 0
    double b[3] = {1, 2, 3};
    int info = 0;
    F07UEF("U", "N", "N", &n, &nrhs, ap, b, &n, &info, 1, 1, 1);
    EXPECT_EQ(info, 3);
    EXPECT_EQ(b[0], 1.0);
    // A unit diagonal is never tested.
    F07UEF("U", "N", "U", &n, &nrhs, ap, b, &n, &info, 1, 1, 1);
    EXPECT_EQ(info, 0);
}

// The hard route: the report goes to the host channel (sent to stderr here, for the death test to see
// it) and the process ends with status 0, whatever the caller wanted.
TEST(CholeskyFactorDeathTest, HardRouteReportsAndEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    static double a[4] = {1, 0, 0, 1};
    static int info = 0;
    static const int n2 = 2, bad = -1, lda1 = 1;
    const std::pair<void (*)(), const char *> cases[] = {
        {[] { F07FDZ("Q", &n2, a, &n2, &info, 1); }, "parameter number  1 had an illegal value"},
        {[] { F07FDZ("U", &n2, a, &lda1, &info, 1); }, "parameter number  4 had an illegal value"},
        {[] { F07GDF("U", &bad, a, &info, 1); },
         "On entry to F07GDF/DPPTRF parameter number  2 had an illegal value.*ABNORMAL EXIT from ZEK Library "
         "routine F07GDF: INFO =    -2"},
        {[] { F07UEF("U", "N", "N", &n2, &bad, a, a, &n2, &info, 1, 1, 1); }, "parameter number  5 had"},
        {[] { F07UEF("U", "N", "N", &n2, &n2, a, a, &lda1, &info, 1, 1, 1); }, "parameter number  8 had"},
    };
    for (const auto &[call, message] : cases)
        EXPECT_EXIT((std::fflush(stdout), dup2(2, 1), call()), ::testing::ExitedWithCode(0), message);
}
