// Level-3 operations against the reference BLAS of the system: every option, sizes that reach the
// blocked paths, empty sizes and the ALPHA and BETA quick returns.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "kernel_test_util.h"
#include "kernels/level3.h"
#include "peer_blas.h"
#include "zek2/f06.h"

namespace {

using namespace zek_test;


constexpr double kProductTol = 1e-11;

struct Dims {
    int m, n, k;
};

TEST(Level3Reference, RealProductEveryTransposeAndBlockedSizes) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(21);
    const Dims dims[] = {{0, 3, 2}, {3, 0, 2}, {4, 5, 0}, {1, 1, 1}, {7, 9, 5}, {33, 17, 45}, {70, 66, 300}};
    for (const Dims &d : dims) {
        for (const char *ta : {"N", "T", "c"})
            for (const char *tb : {"n", "T", "C"}) {
                const bool na = ta[0] == 'N', nb = tb[0] == 'n';
                const int lda = (na ? d.m : d.k) + 1, ldb = (nb ? d.k : d.n) + 2, ldc = d.m + 3;
                const std::vector<double> a = rng.vector(static_cast<std::size_t>(lda) * (na ? d.k : d.m) + 1);
                const std::vector<double> b = rng.vector(static_cast<std::size_t>(ldb) * (nb ? d.n : d.k) + 1);
                const std::vector<double> c = rng.vector(static_cast<std::size_t>(ldc) * d.n + 1);
                for (double alpha : {0.0, 1.25})
                    for (double beta : {0.0, 1.0, -0.5}) {
                        std::vector<double> ours = c, theirs = c;
                        F06YAF(ta, tb, d.m, d.n, d.k, alpha, a.data(), lda, b.data(), ldb, beta, ours.data(), ldc, 1,
                               1);
                        call_ref("dgemm", ta, tb, &d.m, &d.n, &d.k, &alpha, a.data(), &lda, b.data(), &ldb,
                                 &beta, theirs.data(), &ldc, L(1), L(1));
                        const std::string what = std::string("dgemm ") + ta + tb + " m=" + std::to_string(d.m) +
                                                 " n=" + std::to_string(d.n) + " k=" + std::to_string(d.k);
                        expect_near_vectors(ours, theirs, kProductTol, what.c_str());
                    }
            }
    }
}

TEST(Level3Reference, RealProductWithoutTransposeRoundsAsThePublishedLoops) {
    // The blocked product adds each element's terms in the order of the published column loops, so
    // with no transposes it reproduces them to the last bit.
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(22);
    const int m = 131, n = 67, k = 290, ld = 140, ldb = 300;
    const std::vector<double> a = rng.vector(static_cast<std::size_t>(ld) * k);
    const std::vector<double> b = rng.vector(static_cast<std::size_t>(ldb) * n);
    const std::vector<double> c = rng.vector(static_cast<std::size_t>(ld) * n);
    const double alpha = 0.3, beta = -1.7;
    std::vector<double> ours = c, theirs = c;
    zek::dgemm("N", "N", m, n, k, alpha, a.data(), ld, b.data(), ldb, beta, ours.data(), ld);
    call_ref("dgemm", "N", "N", &m, &n, &k, &alpha, a.data(), &ld, b.data(), &ldb, &beta, theirs.data(), &ld, L(1), L(1));
    EXPECT_EQ(ours, theirs);
}

// A triangular operand that stays well conditioned with either diagonal: small off-diagonal entries.
std::vector<double> triangle(Random &rng, int order, int ld) {
    std::vector<double> a(static_cast<std::size_t>(ld) * std::max(order, 1) + 1);
    for (int j = 0; j < order; ++j)
        for (int i = 0; i < ld; ++i) a[static_cast<std::size_t>(i + j * ld)] = rng.next() / order;
    for (int j = 0; j < order; ++j) a[static_cast<std::size_t>(j + j * ld)] = 1.5 + 0.5 * rng.next();
    return a;
}

TEST(Level3Reference, RealTriangularProductsAndSolvesEveryOption) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(23);
    const Dims dims[] = {{0, 3, 0}, {5, 0, 0}, {7, 9, 0}, {130, 21, 0}, {20, 70, 0}, {1, 1, 0}};
    for (const Dims &d : dims)
        for (const char *side : {"L", "r"}) {
            const int order = side[0] == 'L' ? d.m : d.n, lda = order + 2, ldb = d.m + 1;
            const std::vector<double> a = triangle(rng, order, lda);
            const std::vector<double> b = rng.vector(static_cast<std::size_t>(ldb) * std::max(d.n, 1));
            for (const char *uplo : {"U", "l"})
                for (const char *trans : {"N", "T", "C"})
                    for (const char *diag : {"N", "U"})
                        for (double alpha : {0.0, 1.0, -2.0}) {
                            const std::string what = std::string(side) + uplo + trans + diag +
                                                     " m=" + std::to_string(d.m) + " n=" + std::to_string(d.n) +
                                                     " alpha=" + std::to_string(alpha);
                            std::vector<double> ours = b, theirs = b;
                            F06YJF(side, uplo, trans, diag, d.m, d.n, alpha, a.data(), lda, ours.data(), ldb, 1, 1, 1,
                                   1);
                            call_ref("dtrsm", side, uplo, trans, diag, &d.m, &d.n, &alpha, a.data(), &lda,
                                     theirs.data(), &ldb, L(1), L(1), L(1), L(1));
                            expect_near_vectors(ours, theirs, 1e-12, ("dtrsm " + what).c_str());
                            ours = theirs = b;
                            F06YFF(side, uplo, trans, diag, d.m, d.n, alpha, a.data(), lda, ours.data(), ldb, 1, 1, 1,
                                   1);
                            call_ref("dtrmm", side, uplo, trans, diag, &d.m, &d.n, &alpha, a.data(), &lda,
                                     theirs.data(), &ldb, L(1), L(1), L(1), L(1));
                            expect_near_vectors(ours, theirs, 1e-12, ("dtrmm " + what).c_str());
                        }
        }
}

TEST(Level3Reference, RealRankKUpdate) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(24);
    const Dims dims[] = {{0, 0, 3}, {5, 0, 0}, {6, 0, 4}, {40, 0, 33}};
    for (const Dims &d : dims)
        for (const char *uplo : {"U", "L"})
            for (const char *trans : {"N", "t", "C"}) {
                const bool nt = trans[0] == 'N';
                const int lda = (nt ? d.m : d.k) + 1, ldc = d.m + 2;
                const std::vector<double> a = rng.vector(static_cast<std::size_t>(lda) * std::max(nt ? d.k : d.m, 1));
                const std::vector<double> c = rng.vector(static_cast<std::size_t>(ldc) * std::max(d.m, 1));
                for (double alpha : {0.0, 0.5})
                    for (double beta : {0.0, 1.0, 2.0}) {
                        std::vector<double> ours = c, theirs = c;
                        F06YPF(uplo, trans, d.m, d.k, alpha, a.data(), lda, beta, ours.data(), ldc, 1, 1);
                        call_ref("dsyrk", uplo, trans, &d.m, &d.k, &alpha, a.data(), &lda, &beta,
                                 theirs.data(), &ldc, L(1), L(1));
                        expect_near_vectors(ours, theirs, 1e-12, "dsyrk");
                        ours = c;
                        F06YPF_COPY(uplo, trans, d.m, d.k, alpha, a.data(), lda, beta, ours.data(), ldc, 1, 1);
                        expect_near_vectors(ours, theirs, 1e-12, "dsyrk copy");
                    }
            }
}

TEST(Level3Reference, ComplexProductsSolvesAndHermitianUpdate) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(25);
    const double alpha[2] = {0.75, -0.5}, beta[2] = {0.25, 1.5};
    const Dims dims[] = {{0, 2, 2}, {3, 4, 0}, {6, 5, 7}, {19, 23, 11}};
    for (const Dims &d : dims) {
        for (const char *ta : {"N", "T", "C"})
            for (const char *tb : {"N", "T", "C"}) {
                const bool na = ta[0] == 'N', nb = tb[0] == 'N';
                const int lda = (na ? d.m : d.k) + 1, ldb = (nb ? d.k : d.n) + 1, ldc = d.m + 1;
                const std::vector<double> a = rng.vector(2 * static_cast<std::size_t>(lda) * std::max(na ? d.k : d.m, 1));
                const std::vector<double> b = rng.vector(2 * static_cast<std::size_t>(ldb) * std::max(nb ? d.n : d.k, 1));
                const std::vector<double> c = rng.vector(2 * static_cast<std::size_t>(ldc) * std::max(d.n, 1));
                std::vector<double> ours = c, theirs = c;
                F06ZAF(ta, tb, d.m, d.n, d.k, alpha[0], alpha[1], a.data(), lda, b.data(), ldb, beta[0], beta[1],
                       ours.data(), ldc, 1, 1);
                call_ref("zgemm", ta, tb, &d.m, &d.n, &d.k, alpha, a.data(), &lda, b.data(), &ldb, beta,
                         theirs.data(), &ldc, L(1), L(1));
                expect_near_vectors(ours, theirs, kProductTol, (std::string("zgemm ") + ta + tb).c_str());
            }
        for (const char *side : {"L", "R"}) {
            const int order = side[0] == 'L' ? d.m : d.n, lda = order + 1, ldb = d.m + 2;
            std::vector<double> a = rng.vector(2 * static_cast<std::size_t>(lda) * std::max(order, 1));
            for (double &v : a) v /= std::max(order, 1);
            for (int j = 0; j < order; ++j) a[2 * static_cast<std::size_t>(j + j * lda)] += 1.5;
            const std::vector<double> b = rng.vector(2 * static_cast<std::size_t>(ldb) * std::max(d.n, 1));
            for (const char *uplo : {"U", "L"})
                for (const char *trans : {"N", "T", "C"})
                    for (const char *diag : {"N", "U"}) {
                        std::vector<double> ours = b, theirs = b;
                        F06ZJF(side, uplo, trans, diag, d.m, d.n, alpha[0], alpha[1], a.data(), lda, ours.data(), ldb,
                               1, 1, 1, 1);
                        call_ref("ztrsm", side, uplo, trans, diag, &d.m, &d.n, alpha, a.data(), &lda,
                                 theirs.data(), &ldb, L(1), L(1), L(1), L(1));
                        expect_near_vectors(ours, theirs, 1e-12,
                                            (std::string("ztrsm ") + side + uplo + trans + diag).c_str());
                    }
        }
        for (const char *uplo : {"U", "L"})
            for (const char *trans : {"N", "C"}) {
                const bool nt = trans[0] == 'N';
                const int lda = (nt ? d.m : d.k) + 1, ldc = d.m + 1;
                const std::vector<double> a = rng.vector(2 * static_cast<std::size_t>(lda) * std::max(nt ? d.k : d.m, 1));
                const std::vector<double> c = rng.vector(2 * static_cast<std::size_t>(ldc) * std::max(d.m, 1));
                for (double bt : {0.0, 1.0, -0.5}) {
                    const double al = 0.8;
                    std::vector<double> ours = c, theirs = c;
                    F06ZPF(uplo, trans, d.m, d.k, al, a.data(), lda, bt, ours.data(), ldc, 1, 1);
                    call_ref("zherk", uplo, trans, &d.m, &d.k, &al, a.data(), &lda, &bt, theirs.data(), &ldc, L(1), L(1));
                    expect_near_vectors(ours, theirs, 1e-12, (std::string("zherk ") + uplo + trans).c_str());
                }
            }
    }
}

} // namespace
