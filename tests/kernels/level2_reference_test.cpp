// Level-2 operations against the reference BLAS of the system: every option, negative increments, empty
// sizes and the BETA quick returns.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "kernel_test_util.h"
#include "kernels/level2.h"
#include "peer_blas.h"
#include "zek2/f06.h"

namespace {

using namespace zek_test;


// A matrix whose diagonal is kept away from zero, so triangular solves stay well conditioned.
std::vector<double> matrix(Random &rng, int rows, int cols, int ld, int width = 1) {
    std::vector<double> a = rng.vector(static_cast<std::size_t>(ld) * (cols > 0 ? cols : 1) * width);
    for (int j = 0; j < cols && j < rows; ++j) a[static_cast<std::size_t>(j + j * ld) * width] += 4.0;
    return a;
}

struct Shape {
    int m, n, incx, incy;
};

const Shape kShapes[] = {{0, 3, 1, 1}, {4, 0, 1, 1}, {7, 5, 1, 1}, {4, 9, -2, 1}, {6, 6, 1, -3}, {9, 4, 2, 2},
                         {1, 1, -1, -1}, {13, 11, 3, -2}};

TEST(Level2Reference, RealGemvSymvSpmv) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(11);
    for (const Shape &s : kShapes) {
        const int lda = s.m + 2;
        const std::vector<double> a = matrix(rng, s.m, std::max(s.m, s.n), lda);
        for (const char *trans : {"N", "t", "C"}) {
            const bool nt = trans[0] == 'N';
            const std::vector<double> x = rng.vector(strided_size(nt ? s.n : s.m, s.incx));
            const std::vector<double> y = rng.vector(strided_size(nt ? s.m : s.n, s.incy));
            for (double alpha : {0.0, 1.5}) {
                for (double beta : {0.0, 1.0, -0.5}) {
                    std::vector<double> ours = y, theirs = y;
                    F06PAF(trans, s.m, s.n, alpha, a.data(), lda, x.data(), s.incx, beta, ours.data(), s.incy, 1);
                    call_ref("dgemv", trans, &s.m, &s.n, &alpha, a.data(), &lda, x.data(), &s.incx, &beta,
                             theirs.data(), &s.incy, L(1));
                    expect_near_vectors(ours, theirs, kTight, "dgemv");
                    ours = y;
                    f06pac(nt ? 1001 : 1002, s.m, s.n, alpha, a.data(), lda, x.data(), s.incx, beta, ours.data(),
                           s.incy);
                    expect_near_vectors(ours, theirs, kTight, "f06pac");
                }
            }
        }
        // Symmetric products use the leading square of order m.
        const int n = s.m;
        std::vector<double> ap = rng.vector(static_cast<std::size_t>(n * (n + 1) / 2 + 1));
        const std::vector<double> x = rng.vector(strided_size(n, s.incx));
        const std::vector<double> y = rng.vector(strided_size(n, s.incy));
        for (const char *uplo : {"U", "l"}) {
            for (double beta : {0.0, 1.0, 0.25}) {
                const double alpha = -0.75;
                std::vector<double> ours = y, theirs = y;
                F06PCF(uplo, n, alpha, a.data(), lda, x.data(), s.incx, beta, ours.data(), s.incy, 1);
                call_ref("dsymv", uplo, &n, &alpha, a.data(), &lda, x.data(), &s.incx, &beta, theirs.data(),
                         &s.incy, L(1));
                expect_near_vectors(ours, theirs, kTight, "dsymv");
                ours = theirs = y;
                F06PEF(uplo, n, alpha, ap.data(), x.data(), s.incx, beta, ours.data(), s.incy, 1);
                call_ref("dspmv", uplo, &n, &alpha, ap.data(), x.data(), &s.incx, &beta, theirs.data(), &s.incy, L(1));
                expect_near_vectors(ours, theirs, kTight, "dspmv");
            }
        }
    }
}

TEST(Level2Reference, RealTriangularProductsAndSolves) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(12);
    for (int n : {0, 1, 5, 12, 37}) {
        const int lda = n + 1;
        const std::vector<double> a = matrix(rng, n, n, lda);
        // The triangles of A packed by columns, upper and lower.
        std::vector<double> packed[2];
        for (int j = 0; j < n; ++j) {
            for (int i = 0; i <= j; ++i) packed[0].push_back(a[static_cast<std::size_t>(i + j * lda)]);
            for (int i = j; i < n; ++i) packed[1].push_back(a[static_cast<std::size_t>(i + j * lda)]);
        }
        packed[0].push_back(0.0);
        packed[1].push_back(0.0);
        for (int inc : {1, -2, 3}) {
            const std::vector<double> x = rng.vector(strided_size(n, inc));
            for (const char *uplo : {"U", "L"})
                for (const char *trans : {"N", "T", "c"})
                    for (const char *diag : {"N", "u"}) {
                        const std::string what = std::string(uplo) + trans + diag + " n=" + std::to_string(n);
                        const std::vector<double> &ap = packed[uplo[0] == 'U' ? 0 : 1];
                        std::vector<double> ours = x, theirs = x;
                        F06PFF(uplo, trans, diag, n, a.data(), lda, ours.data(), inc, 1, 1, 1);
                        call_ref("dtrmv", uplo, trans, diag, &n, a.data(), &lda, theirs.data(), &inc, L(1), L(1), L(1));
                        expect_near_vectors(ours, theirs, kTight, ("dtrmv " + what).c_str());
                        ours = theirs = x;
                        F06PJF(uplo, trans, diag, n, a.data(), lda, ours.data(), inc, 1, 1, 1);
                        call_ref("dtrsv", uplo, trans, diag, &n, a.data(), &lda, theirs.data(), &inc, L(1), L(1), L(1));
                        expect_near_vectors(ours, theirs, 1e-11, ("dtrsv " + what).c_str());
                        ours = x;
                        F06PJF_COPY(uplo, trans, diag, n, a.data(), lda, ours.data(), inc, 1, 1, 1);
                        expect_near_vectors(ours, theirs, 1e-11, ("dtrsv copy " + what).c_str());
                        ours = theirs = x;
                        F06PHF(uplo, trans, diag, n, ap.data(), ours.data(), inc, 1, 1, 1);
                        call_ref("dtpmv", uplo, trans, diag, &n, ap.data(), theirs.data(), &inc, L(1), L(1), L(1));
                        expect_near_vectors(ours, theirs, kTight, ("dtpmv " + what).c_str());
                        ours = theirs = x;
                        F06PLF(uplo, trans, diag, n, ap.data(), ours.data(), inc, 1, 1, 1);
                        call_ref("dtpsv", uplo, trans, diag, &n, ap.data(), theirs.data(), &inc, L(1), L(1), L(1));
                        expect_near_vectors(ours, theirs, 1e-11, ("dtpsv " + what).c_str());
                    }
        }
    }
}

TEST(Level2Reference, RealRankOneUpdates) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(13);
    for (const Shape &s : kShapes) {
        const int lda = s.m + 1;
        const std::vector<double> a = matrix(rng, s.m, std::max(s.m, s.n), lda);
        const std::vector<double> x = rng.vector(strided_size(s.m, s.incx));
        const std::vector<double> y = rng.vector(strided_size(s.n, s.incy));
        for (double alpha : {0.0, 0.7}) {
            std::vector<double> ours = a, theirs = a;
            F06PMF(s.m, s.n, alpha, x.data(), s.incx, y.data(), s.incy, ours.data(), lda);
            call_ref("dger", &s.m, &s.n, &alpha, x.data(), &s.incx, y.data(), &s.incy, theirs.data(), &lda);
            expect_near_vectors(ours, theirs, kTight, "dger");
            ours = a;
            f06pmc(s.m, s.n, alpha, x.data(), s.incx, y.data(), s.incy, ours.data(), lda);
            expect_near_vectors(ours, theirs, kTight, "f06pmc");
        }
        const int n = s.m;
        std::vector<double> ap = rng.vector(static_cast<std::size_t>(n * (n + 1) / 2 + 1));
        for (const char *uplo : {"U", "L"}) {
            const double alpha = -1.25;
            std::vector<double> ours = a, theirs = a;
            F06PPF(uplo, n, alpha, x.data(), s.incx, ours.data(), lda, 1);
            call_ref("dsyr", uplo, &n, &alpha, x.data(), &s.incx, theirs.data(), &lda, L(1));
            expect_near_vectors(ours, theirs, kTight, "dsyr");
            ours = theirs = ap;
            F06PQF(uplo, n, alpha, x.data(), s.incx, ours.data(), 1);
            call_ref("dspr", uplo, &n, &alpha, x.data(), &s.incx, theirs.data(), L(1));
            expect_near_vectors(ours, theirs, kTight, "dspr");
        }
    }
}

TEST(Level2Reference, ComplexOperations) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    Random rng(14);
    const double alpha[2] = {0.5, -1.5}, beta[2] = {-0.25, 0.75};
    for (const Shape &s : kShapes) {
        const int lda = s.m + 2;
        const std::vector<double> a = matrix(rng, s.m, std::max(s.m, s.n), lda, 2);
        for (const char *trans : {"N", "T", "C"}) {
            const bool nt = trans[0] == 'N';
            const std::vector<double> x = rng.vector(strided_size(nt ? s.n : s.m, s.incx, 2));
            const std::vector<double> y = rng.vector(strided_size(nt ? s.m : s.n, s.incy, 2));
            std::vector<double> ours = y, theirs = y;
            F06SAF(trans, s.m, s.n, alpha[0], alpha[1], a.data(), lda, x.data(), s.incx, beta[0], beta[1], ours.data(),
                   s.incy, 1);
            call_ref("zgemv", trans, &s.m, &s.n, alpha, a.data(), &lda, x.data(), &s.incx, beta,
                     theirs.data(), &s.incy, L(1));
            expect_near_vectors(ours, theirs, kTight, "zgemv");
        }
        const std::vector<double> x = rng.vector(strided_size(s.m, s.incx, 2));
        const std::vector<double> y = rng.vector(strided_size(s.n, s.incy, 2));
        for (const char *name : {"zgeru", "zgerc"}) {
            std::vector<double> ours = a, theirs = a;
            (name[4] == 'u' ? F06SMF : F06SNF)(s.m, s.n, alpha[0], alpha[1], x.data(), s.incx, y.data(), s.incy,
                                               ours.data(), lda);
            call_ref(name, &s.m, &s.n, alpha, x.data(), &s.incx, y.data(), &s.incy, theirs.data(), &lda);
            expect_near_vectors(ours, theirs, kTight, name);
        }
        const int n = s.m;
        for (const char *uplo : {"U", "L"})
            for (const char *trans : {"N", "T", "C"})
                for (const char *diag : {"N", "U"}) {
                    std::vector<double> ours = x, theirs = x;
                    F06SFF(uplo, trans, diag, n, a.data(), lda, ours.data(), s.incx, 1, 1, 1);
                    call_ref("ztrmv", uplo, trans, diag, &n, a.data(), &lda, theirs.data(), &s.incx, L(1), L(1), L(1));
                    expect_near_vectors(ours, theirs, kTight, "ztrmv");
                    ours = theirs = x;
                    F06SJF(uplo, trans, diag, n, a.data(), lda, ours.data(), s.incx, 1, 1, 1);
                    call_ref("ztrsv", uplo, trans, diag, &n, a.data(), &lda, theirs.data(), &s.incx, L(1), L(1), L(1));
                    expect_near_vectors(ours, theirs, 1e-11, "ztrsv");
                }
    }
}

} // namespace
