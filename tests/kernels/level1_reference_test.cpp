// Level-1 operations against the reference BLAS of the system, on random data with positive, negative
// and zero increments and empty lengths.
#include <gtest/gtest.h>

#include <vector>

#include "kernel_test_util.h"
#include "kernels/level1.h"
#include "peer_blas.h"
#include "zek2/f06.h"

namespace {

using namespace zek_test;

using DotFn = double (*)(const int *, const double *, const int *, const double *, const int *);
using NormFn = double (*)(const int *, const double *, const int *);
using IndexFn = int (*)(const int *, const double *, const int *);
using ZdotFn = FortranComplex (*)(const int *, const double *, const int *, const double *, const int *);

struct PairCase {
    int n, incx, incy;
};

std::ostream &operator<<(std::ostream &os, const PairCase &c) {
    return os << "n=" << c.n << " incx=" << c.incx << " incy=" << c.incy;
}

class Level1PairReference : public testing::TestWithParam<PairCase> {
protected:
    void SetUp() override { ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error(); }
    // Real data for x and y (WIDTH 2 gives complex elements).
    void make(int width = 1) {
        const PairCase c = GetParam();
        x = rng.vector(strided_size(c.n, c.incx, width));
        y = rng.vector(strided_size(c.n, c.incy, width));
    }
    Random rng{7};
    std::vector<double> x, y;
};

TEST_P(Level1PairReference, RealOperationsAgree) {
    const PairCase c = GetParam();
    make();
    EXPECT_NEAR(DDOT(c.n, x.data(), c.incx, y.data(), c.incy),
                ref<DotFn>("ddot")(&c.n, x.data(), &c.incx, y.data(), &c.incy), kTight);

    for (double alpha : {0.0, 1.0, -0.75}) {
        std::vector<double> ours = y, theirs = y;
        DAXPY(c.n, alpha, x.data(), c.incx, ours.data(), c.incy);
        call_ref("daxpy", &c.n, &alpha, x.data(), &c.incx, theirs.data(), &c.incy);
        expect_near_vectors(ours, theirs, kTight, "daxpy");
    }
    {
        std::vector<double> ours = y, theirs = y;
        DCOPY(c.n, x.data(), c.incx, ours.data(), c.incy);
        call_ref("dcopy", &c.n, x.data(), &c.incx, theirs.data(), &c.incy);
        expect_near_vectors(ours, theirs, 0.0, "dcopy");
    }
    if (c.incx != 0 && c.incy != 0) {
        std::vector<double> ox = x, oy = y, tx = x, ty = y;
        DSWAP(c.n, ox.data(), c.incx, oy.data(), c.incy);
        call_ref("dswap", &c.n, tx.data(), &c.incx, ty.data(), &c.incy);
        expect_near_vectors(ox, tx, 0.0, "dswap x");
        expect_near_vectors(oy, ty, 0.0, "dswap y");
        for (auto cs : {std::pair<double, double>{0.6, 0.8}, {0.0, 1.0}, {0.0, -1.0}, {1.0, 0.0}, {-0.28, 0.96}}) {
            std::vector<double> rx = x, ry = y, sx = x, sy = y;
            zek::drot(c.n, rx.data(), c.incx, ry.data(), c.incy, cs.first, cs.second);
            call_ref("drot", &c.n, sx.data(), &c.incx, sy.data(), &c.incy, &cs.first, &cs.second);
            expect_near_vectors(rx, sx, kTight, "drot x");
            expect_near_vectors(ry, sy, kTight, "drot y");
        }
    }
}

TEST_P(Level1PairReference, ComplexOperationsAgree) {
    const PairCase c = GetParam();
    make(2);
    double ours[2];
    for (const char *name : {"zdotu", "zdotc"}) {
        const bool conjugate = name[4] == 'c';
        (conjugate ? zek::zdotc : zek::zdotu)(ours, c.n, x.data(), c.incx, y.data(), c.incy);
        const FortranComplex theirs = ref<ZdotFn>(name)(&c.n, x.data(), &c.incx, y.data(), &c.incy);
        EXPECT_NEAR(ours[0], theirs.re, kTight) << name;
        EXPECT_NEAR(ours[1], theirs.im, kTight) << name;
    }
    for (auto alpha : {std::pair<double, double>{0.0, 0.0}, {0.5, -1.25}}) {
        std::vector<double> oy = y, ty = y;
        const double a[2] = {alpha.first, alpha.second};
        zek::zaxpy(c.n, a[0], a[1], x.data(), c.incx, oy.data(), c.incy);
        call_ref("zaxpy", &c.n, a, x.data(), &c.incx, ty.data(), &c.incy);
        expect_near_vectors(oy, ty, kTight, "zaxpy");
    }
    {
        std::vector<double> oy = y, ty = y;
        zek::zcopy(c.n, x.data(), c.incx, oy.data(), c.incy);
        call_ref("zcopy", &c.n, x.data(), &c.incx, ty.data(), &c.incy);
        expect_near_vectors(oy, ty, 0.0, "zcopy");
    }
    if (c.incx != 0 && c.incy != 0) {
        std::vector<double> ox = x, oy = y, tx = x, ty = y;
        zek::zswap(c.n, ox.data(), c.incx, oy.data(), c.incy);
        call_ref("zswap", &c.n, tx.data(), &c.incx, ty.data(), &c.incy);
        expect_near_vectors(ox, tx, 0.0, "zswap x");
        expect_near_vectors(oy, ty, 0.0, "zswap y");
    }
}

INSTANTIATE_TEST_SUITE_P(Increments, Level1PairReference,
                         testing::Values(PairCase{0, 1, 1}, PairCase{-2, 1, 1}, PairCase{1, 1, 1}, PairCase{7, 1, 1},
                                         PairCase{16, 1, 1}, PairCase{13, 2, 2}, PairCase{9, 2, 3},
                                         PairCase{10, -1, 1}, PairCase{11, 1, -2}, PairCase{6, -3, -1},
                                         PairCase{5, 0, 1}, PairCase{4, 1, 0}, PairCase{3, 0, -2}));

// One-vector operations with positive increments, where the reference walks the same elements.
class Level1SingleReference : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(Level1SingleReference, RealAndComplexAgree) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    const auto &blas = reference_blas();
    const int n = GetParam().first, inc = GetParam().second;
    Random rng(n * 31 + inc);
    std::vector<double> x = rng.vector(strided_size(n, inc, 2));
    if (n > 3) x[static_cast<std::size_t>(2 * inc)] = 0.0;  // an exact zero for the norms to skip

    EXPECT_NEAR(DNRM2(n, x.data(), inc), blas.get<NormFn>("dnrm2")(&n, x.data(), &inc), kTight);
    EXPECT_NEAR(zek::dnrm2(n, x.data(), inc), blas.get<NormFn>("dnrm2")(&n, x.data(), &inc), kTight);
    EXPECT_NEAR(zek::dasum(n, x.data(), inc), blas.get<NormFn>("dasum")(&n, x.data(), &inc), kTight);
    EXPECT_EQ(zek::idamax(n, x.data(), inc), blas.get<IndexFn>("idamax")(&n, x.data(), &inc));
    EXPECT_NEAR(DZNRM2(n, x.data(), inc), blas.get<NormFn>("dznrm2")(&n, x.data(), &inc), kTight);
    EXPECT_NEAR(zek::dzasum(n, x.data(), inc), blas.get<NormFn>("dzasum")(&n, x.data(), &inc), kTight);
    EXPECT_EQ(zek::izamax(n, x.data(), inc), blas.get<IndexFn>("izamax")(&n, x.data(), &inc));

    for (double alpha : {0.0, 1.0, -1.0, 2.5}) {
        std::vector<double> ours = x, theirs = x;
        DSCAL(n, alpha, ours.data(), inc);
        call_ref("dscal", &n, &alpha, theirs.data(), &inc);
        expect_near_vectors(ours, theirs, kTight, "dscal");
        ours = theirs = x;
        zek::zdscal(n, alpha, ours.data(), inc);
        call_ref("zdscal", &n, &alpha, theirs.data(), &inc);
        expect_near_vectors(ours, theirs, kTight, "zdscal");
        const double za[2] = {alpha, 0.5 * alpha};
        ours = theirs = x;
        zek::zscal(n, za[0], za[1], ours.data(), inc);
        call_ref("zscal", &n, za, theirs.data(), &inc);
        expect_near_vectors(ours, theirs, kTight, "zscal");
    }
}

INSTANTIATE_TEST_SUITE_P(Lengths, Level1SingleReference,
                         testing::ValuesIn(std::vector<std::pair<int, int>>{{0, 1}, {1, 1}, {2, 1}, {9, 1},
                                                                            {12, 3}, {33, 2}}));

TEST(Level1RotgReference, GeneratorsAgree) {
    ASSERT_TRUE(reference_blas().loaded()) << reference_blas().error();
    const double pairs[][2] = {{3.0, 4.0}, {-3.0, 4.0}, {4.0, -3.0}, {0.0, 2.0}, {2.0, 0.0},
                               {0.0, 0.0}, {1e-300, 1e-300}, {-5.0, -5.0}, {1e300, -3e299}};
    for (const auto &p : pairs) {
        double a1 = p[0], b1 = p[1], c1, s1, a2 = p[0], b2 = p[1], c2, s2;
        DROTG(&a1, &b1, &c1, &s1);
        call_ref("drotg", &a2, &b2, &c2, &s2);
        EXPECT_NEAR(a1, a2, 1e-14 * std::fabs(a2)) << p[0] << " " << p[1];
        EXPECT_NEAR(b1, b2, 1e-14 * (1 + std::fabs(b2))) << p[0] << " " << p[1];
        EXPECT_NEAR(c1, c2, 1e-15) << p[0] << " " << p[1];
        EXPECT_NEAR(s1, s2, 1e-15) << p[0] << " " << p[1];
        // The master answers the same whatever its selector.
        double a3 = p[0], b3 = p[1], c3, s3;
        f06aaf_ENTRY(7, &a3, &b3, &c3, &s3);
        EXPECT_EQ(a3, a1);
        EXPECT_EQ(b3, b1);
    }
}

} // namespace
