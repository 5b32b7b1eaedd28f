// Matrix copy, load, permutation and norms on small matrices with known answers.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "kernels/kernel_types.h"
#include "kernels/matrix_utilities.h"
#include "zek2/f06.h"

namespace {

// 3 by 4, column-major, leading dimension 3:
//   1  -4   7  -10
//   2   5  -8   11
//  -3   6   9   12
const std::vector<double> kA = {1, 2, -3, -4, 5, 6, 7, -8, 9, -10, 11, 12};

TEST(MatrixCopy, ShapesAndEnumeratedCodesAgree) {
    struct Case {
        const char *letter;
        int code;
        std::vector<double> expected;
    };
    const double z = 0.0;
    const Case cases[] = {
        {"G", 1020, kA},
        {"u", 1022, {1, z, z, -4, 5, z, 7, -8, 9, -10, 11, 12}},
        {"L", 1021, {1, 2, -3, z, 5, 6, z, z, 9, z, z, z}},
    };
    for (const Case &c : cases) {
        std::vector<double> b(12, 0.0), e(12, 0.0);
        F06_MATRIX_COPY(c.letter, 3, 4, kA.data(), 3, b.data(), 3, 1);
        EXPECT_EQ(b, c.expected) << c.letter;
        F06_MATRIX_COPY_ENUM(c.code, 3, 4, kA.data(), 3, e.data(), 3);
        EXPECT_EQ(e, c.expected) << c.code;
    }
    std::vector<double> b(12, -1.0);
    F06_MATRIX_COPY("G", 0, 4, kA.data(), 3, b.data(), 3, 1);
    F06_MATRIX_COPY("X", 3, 4, kA.data(), 3, b.data(), 3, 1);
    F06_MATRIX_COPY_ENUM(1023, 3, 4, kA.data(), 3, b.data(), 3);
    EXPECT_EQ(b, std::vector<double>(12, -1.0)) << "M = 0 and unknown shapes copy nothing";
}

TEST(MatrixLoad, ConstantThenDiagonal) {
    std::vector<double> a(9, -1.0);
    zek::matrix_load('U', 3, 3, 2.0, 5.0, a.data(), 3);
    EXPECT_EQ(a, (std::vector<double>{5, -1, -1, 2, 5, -1, 2, 2, 5}));
    zek::matrix_load('L', 3, 2, 0.0, 0.0, a.data(), 3);
    EXPECT_EQ(a, (std::vector<double>{0, 0, 0, 2, 0, 0, 2, 2, 5}));
    std::vector<zek::Complex> c(4, zek::Complex{9.0, 9.0});
    zek::matrix_load('G', 2, 2, zek::Complex{0.0, 0.0}, zek::Complex{1.0, -1.0}, c.data(), 2);
    EXPECT_EQ(c[0], (zek::Complex{1.0, -1.0}));
    EXPECT_EQ(c[1], (zek::Complex{0.0, 0.0}));
    EXPECT_EQ(c[3], (zek::Complex{1.0, -1.0}));
}

TEST(MatrixPermute, OrdersOfTheInterchanges) {
    // Rows of a 3 by 2 matrix; PERM = (3, 3, 3) as left by a pivoting factorisation.
    const std::vector<double> b0 = {1, 2, 3, 4, 5, 6};
    const std::vector<double> perm = {3.0, 3.9, 3.0};
    std::vector<double> b = b0;
    F06_MATRIX_PERMUTE("L", "T", 3, perm.data(), 2, b.data(), 3, 1, 1);  // swap 1<->3, then 2<->3
    EXPECT_EQ(b, (std::vector<double>{3, 1, 2, 6, 4, 5}));
    F06_MATRIX_PERMUTE_ENUM(1008, 1001, 3, perm.data(), 2, b.data(), 3);  // the inverse order undoes it
    EXPECT_EQ(b, b0);
    // Columns of a 2 by 3 matrix.
    std::vector<double> c = {1, 2, 3, 4, 5, 6};
    F06_MATRIX_PERMUTE("R", "N", 3, perm.data(), 2, c.data(), 2, 1, 1);
    EXPECT_EQ(c, (std::vector<double>{5, 6, 1, 2, 3, 4}));
    F06_MATRIX_PERMUTE("r", "t", 3, perm.data(), 2, c.data(), 2, 1, 1);
    EXPECT_EQ(c, (std::vector<double>{1, 2, 3, 4, 5, 6}));
    const std::vector<double> identity = {1.0, 2.0, 3.0};
    F06_MATRIX_PERMUTE("L", "N", 3, identity.data(), 2, b.data(), 3, 1, 1);
    EXPECT_EQ(b, b0);
}

TEST(MatrixNorms, GeneralTriangularHessenberg) {
    std::vector<double> work(4);
    struct Case {
        const char *norm;
        double general;
    };
    const double frobenius = std::sqrt(650.0);
    for (const Case &c : {Case{"M", 12.0}, Case{"O", 33.0}, Case{"1", 33.0}, Case{"I", 30.0}, Case{"F", frobenius},
                          Case{"e", frobenius}}) {
        EXPECT_DOUBLE_EQ(F06_MATRIX_NORM_GENERAL(c.norm, 3, 4, kA.data(), 3, work.data(), 1), c.general) << c.norm;
    }
    EXPECT_EQ(F06_MATRIX_NORM_GENERAL("M", 0, 4, kA.data(), 3, work.data(), 1), 0.0);
    // Upper trapezoid: 1 -4 7 -10 / . 5 -8 11 / . . 9 12; with a unit diagonal the 1, 5, 9 count as ones.
    EXPECT_DOUBLE_EQ(F06_MATRIX_NORM_TRIANGULAR("O", "U", "N", 3, 4, kA.data(), 3, work.data(), 1, 1, 1), 33.0);
    EXPECT_DOUBLE_EQ(F06_MATRIX_NORM_TRIANGULAR("I", "U", "U", 3, 4, kA.data(), 3, work.data(), 1, 1, 1), 22.0);
    EXPECT_DOUBLE_EQ(F06_MATRIX_NORM_TRIANGULAR("M", "U", "U", 3, 4, kA.data(), 3, work.data(), 1, 1, 1), 12.0);
    EXPECT_DOUBLE_EQ(F06_MATRIX_NORM_TRIANGULAR("F", "L", "U", 3, 4, kA.data(), 3, work.data(), 1, 1, 1),
                     std::sqrt(3.0 + 4.0 + 9.0 + 36.0));
    EXPECT_DOUBLE_EQ(F06_MATRIX_NORM_TRIANGULAR("M", "L", "N", 3, 4, kA.data(), 3, work.data(), 1, 1, 1), 9.0);
    // Hessenberg of order 3 (leading dimension 3): all but element (3, 1).
    EXPECT_DOUBLE_EQ(F06_MATRIX_NORM_HESSENBERG("1", 3, kA.data(), 3, work.data(), 1), 24.0);
    EXPECT_DOUBLE_EQ(F06_MATRIX_NORM_HESSENBERG("I", 3, kA.data(), 3, work.data(), 1), 15.0);
    // Complex: moduli 5 and 13.
    const std::vector<double> z = {3, 4, 0, 0, 5, 12, 0, -1};
    EXPECT_DOUBLE_EQ(F06_COMPLEX_MATRIX_NORM_GENERAL("M", 2, 2, z.data(), 2, work.data(), 1), 13.0);
    EXPECT_DOUBLE_EQ(F06_COMPLEX_MATRIX_NORM_GENERAL("O", 2, 2, z.data(), 2, work.data(), 1), 14.0);
    EXPECT_DOUBLE_EQ(F06_COMPLEX_MATRIX_NORM_GENERAL("F", 2, 2, z.data(), 2, work.data(), 1), std::sqrt(195.0));
    EXPECT_DOUBLE_EQ(F06_COMPLEX_MATRIX_NORM_HESSENBERG("I", 2, z.data(), 2, work.data(), 1), 18.0);
    // A NaN reaches the maximum.
    const std::vector<double> nan = {1.0, std::nan(""), 2.0, 3.0};
    EXPECT_TRUE(std::isnan(F06_MATRIX_NORM_GENERAL("M", 2, 2, nan.data(), 2, work.data(), 1)));
}

} // namespace
