// The safe arithmetic, the generators of rotations and reflectors and the vector utilities: edge values,
// and invariants (the rotation annihilates, the reflector maps onto the first axis).
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <vector>

#include "kernel_test_util.h"
#include "kernels/level1.h"
#include "kernels/safe_arithmetic.h"
#include "kernels/vector_utilities.h"
#include "zek2/f06.h"

namespace {

using zek::kFrozenConstants;

const double kFlmaxRuntime = 1.0 / DBL_MIN;

struct DivideCase {
    double a, b, result;
    int fail;
};

TEST(SafeDivide, EdgeValuesTable) {
    const double flmax = kFrozenConstants.flmax;
    const DivideCase cases[] = {
        {0.0, 0.0, 0.0, 1},       {0.0, 5.0, 0.0, 0},          {1e-300, 1e300, 0.0, 0},
        {6.0, 3.0, 2.0, 0},       {-6.0, 0.0, -flmax, 1},      {6.0, 0.0, flmax, 1},
        {1e300, 1e-10, flmax, 1}, {-1e300, 1e-10, -flmax, 1},  {1e300, -1e-10, -flmax, 1},
        {-1e300, -1e-10, flmax, 1}, {1.0, 0.5, 2.0, 0},
    };
    for (const DivideCase &c : cases) {
        int fail = -1;
        EXPECT_EQ(zek::safe_divide(c.a, c.b, &fail), c.result) << c.a << "/" << c.b;
        EXPECT_EQ(fail, c.fail) << c.a << "/" << c.b;
        // The exported form differs only in the constant: its cap is the exact reciprocal of DBL_MIN.
        const double runtime = F06_SAFE_DIVIDE(c.a, c.b, &fail);
        EXPECT_EQ(runtime, std::fabs(c.result) == flmax ? std::copysign(kFlmaxRuntime, c.result) : c.result);
    }
}

TEST(RotationFromTangent, ThreeRegimes) {
    double c, s;
    zek::rotation_from_tangent(1e-9, &c, &s);
    EXPECT_EQ(c, 1.0);
    EXPECT_EQ(s, 1e-9);
    zek::rotation_from_tangent(-1e9, &c, &s);
    EXPECT_EQ(c, 1e-9);
    EXPECT_EQ(s, -1.0);
    F06_ROTATION_FROM_TANGENT(0.75, &c, &s);
    EXPECT_DOUBLE_EQ(c, 0.8);
    EXPECT_DOUBLE_EQ(s, 0.6);
}

TEST(RotationFromPair, AnnihilatesAndLeavesTheTangent) {
    const double pairs[][2] = {{3.0, 4.0}, {-2.0, 1e-3}, {1e-200, -1e200}, {5.0, -12.0}, {-1.0, -1.0}};
    for (const auto &p : pairs) {
        double a = p[0], b = p[1], c, s;
        F06_ROTATION_FROM_PAIR(&a, &b, &c, &s);
        EXPECT_NEAR(c * c + s * s, 1.0, 1e-15);
        EXPECT_NEAR(c * p[1] - s * p[0], 0.0, 1e-15 * std::fabs(a)) << "second component not annihilated";
        EXPECT_NEAR(std::fabs(a), std::hypot(p[0], p[1]), 1e-15 * std::fabs(a));
        if (std::fabs(p[1] / p[0]) < 1e300) {
            EXPECT_DOUBLE_EQ(b, p[1] / p[0]) << "b must hold the tangent";
        }
    }
    // a = 0: the tangent is the capped value and the rotation is (1/t, 1).
    double a = 0.0, b = 3.0, c, s;
    F06_ROTATION_FROM_PAIR_FROZEN(&a, &b, &c, &s);
    EXPECT_EQ(b, kFrozenConstants.flmax);
    EXPECT_EQ(c, 1.0 / kFrozenConstants.flmax);
    EXPECT_EQ(s, 1.0);
    EXPECT_EQ(a, 3.0);
    // b = 0 is the identity and touches neither a nor b.
    a = -7.0;
    b = 0.0;
    F06_ROTATION_FROM_PAIR(&a, &b, &c, &s);
    EXPECT_EQ(a, -7.0);
    EXPECT_EQ(c, 1.0);
    EXPECT_EQ(s, 0.0);
}

TEST(ComplexRotationFromPair, AnnihilatesAndKeepsRealPivotReal) {
    const double cases[][4] = {{3.0, 0.0, 1.0, 2.0}, {1.0, -1.0, 0.5, 0.25}, {0.0, 0.0, 2.0, -1.0}, {2.0, 0.0, 0.0, 0.0}};
    for (const auto &k : cases) {
        double a[2] = {k[0], k[1]}, b[2] = {k[2], k[3]}, c, s[2];
        F06_COMPLEX_ROTATION_FROM_PAIR(a, b, &c, s);
        const zek::Complex a0{k[0], k[1]}, b0{k[2], k[3]}, sc{s[0], s[1]};
        EXPECT_NEAR(c * c + s[0] * s[0] + s[1] * s[1], 1.0, 1e-14);
        // The second row of the rotation, c*b - s*a, vanishes on the original pair.
        const zek::Complex second = c * b0 - sc * a0;
        EXPECT_NEAR(second.re, 0.0, 1e-14);
        EXPECT_NEAR(second.im, 0.0, 1e-14);
        const zek::Complex first = c * a0 + zek::conj(sc) * b0;
        EXPECT_NEAR(a[0], first.re, 1e-14);
        EXPECT_NEAR(a[1], first.im, 1e-14);
        if (k[1] == 0.0) {
            EXPECT_EQ(a[1], 0.0);
        }
    }
}

TEST(SumOfSquares, ScaledPairAndSaturatingNorm) {
    double scale = 0.0, sumsq = 1.0;
    const double x[] = {0.0, 3.0, 0.0, -4.0, 0.0};
    F06_SUMSQ_UPDATE(5, x, 1, &scale, &sumsq);
    EXPECT_EQ(scale, 4.0);
    EXPECT_DOUBLE_EQ(scale * scale * sumsq, 25.0);
    F06_SUMSQ_UPDATE(2, x, 2, &scale, &sumsq);  // elements 0 and 0: nothing changes
    EXPECT_EQ(scale, 4.0);
    scale = 0.0;
    sumsq = 1.0;
    F06_SUMSQ_UPDATE(3, x, 2, &scale, &sumsq);
    EXPECT_EQ(scale, 0.0) << "exact zeros leave the scale at 0";
    EXPECT_EQ(F06_NORM_FROM_SUMSQ(1e308, 1e10), kFlmaxRuntime);
    EXPECT_EQ(zek::norm_from_sumsq(1e308, 1e10), kFrozenConstants.flmax);
    EXPECT_DOUBLE_EQ(F06_NORM_FROM_SUMSQ(2.0, 4.0), 4.0);
    // Huge elements do not overflow the norm.
    const double big[] = {1e300, 1e300, -1e300};
    EXPECT_DOUBLE_EQ(DNRM2(3, big, 1), std::sqrt(3.0) * 1e300);
    EXPECT_EQ(DNRM2(1, big + 2, 1), 1e300);
}

TEST(OneVectorAddressing, NegativeAndZeroIncrementsRunFromTheBase) {
    // Element k sits at offset (k-1)*INC from the base, so a negative increment reads before it.
    std::vector<double> v = {1.0, 2.0, 3.0, 4.0, 5.0};
    double *base = v.data() + 4;
    DSCAL(3, 2.0, base, -2);  // offsets 0, -2, -4
    EXPECT_EQ(v, (std::vector<double>{2.0, 2.0, 6.0, 4.0, 10.0}));
    EXPECT_DOUBLE_EQ(DNRM2(2, base, -1), std::hypot(10.0, 4.0));
    EXPECT_EQ(zek::idamax(3, base, -2), 1);
    F06_VECTOR_NEGATE(2, base, 0);  // the element at the base, twice
    EXPECT_EQ(v[4], 10.0);
    F06_VECTOR_LOAD(4, 9.0, base, 0);
    EXPECT_EQ(v, (std::vector<double>{2.0, 2.0, 6.0, 4.0, 9.0}));
}

TEST(VectorUtilities, LoadsCopiesProducts) {
    std::vector<int> iv(6, 0), iw(6, -1);
    F06_INT_LOAD(3, 7, iv.data(), 2);
    EXPECT_EQ(iv, (std::vector<int>{7, 0, 7, 0, 7, 0}));
    F06_INT_COPY(3, iv.data(), 2, iw.data(), -1);  // backwards into the first three
    EXPECT_EQ(iw, (std::vector<int>{7, 7, 7, -1, -1, -1}));

    std::vector<double> x = {1.0, 2.0, 3.0}, y = {4.0, 5.0, 6.0};
    F06_VECTOR_MULTIPLY(3, x.data(), 1, y.data(), -1);  // pairs (1,6), (2,5), (3,4)
    EXPECT_EQ(y, (std::vector<double>{12.0, 10.0, 6.0}));
    F06_VECTOR_MULTIPLY(3, x.data() + 1, 0, y.data(), -1);  // scales by x(1) = 2 with |INCY|
    EXPECT_EQ(y, (std::vector<double>{24.0, 20.0, 12.0}));
    F06_VECTOR_SCALED_COPY(3, -2.0, x.data(), 1, y.data(), -1);
    EXPECT_EQ(y, (std::vector<double>{-6.0, -4.0, -2.0}));
    F06_VECTOR_SCALED_COPY_ALIAS(2, 0.0, x.data(), 1, y.data(), -1);
    EXPECT_EQ(y, (std::vector<double>{0.0, 0.0, -2.0}));

    double cx[4] = {1.0, 2.0, 3.0, 4.0}, cy[4];
    F06_COMPLEX_SCALED_COPY(2, 0.0, 1.0, cx, 1, cy, 1);  // multiply by i
    EXPECT_EQ(std::vector<double>(cy, cy + 4), (std::vector<double>{-2.0, 1.0, -4.0, 3.0}));

    double xmax, xmin;
    const double w[] = {-3.0, 0.5, 2.0, -0.25};
    zek::abs_max_min(4, w, 1, &xmax, &xmin);
    EXPECT_EQ(xmax, 3.0);
    EXPECT_EQ(xmin, 0.25);
    zek::abs_max_min(0, w, 1, &xmax, &xmin);
    EXPECT_EQ(xmax + xmin, 0.0);
}

struct RankCase {
    std::vector<double> x;
    double tol;
    int rank;
};

TEST(LeadingRank, Table) {
    const RankCase cases[] = {
        {{4.0, 2.0, 1e-3, 5.0}, 0.01, 2},  {{4.0, 2.0, 1e-3, 5.0}, 0.0, 4},  {{0.0, 1.0}, 0.0, 0},
        {{3.0, 3.0}, 1.0, 0},               {{1.0, 1e-17}, -1.0, 1},          {{1.0, 1e-15}, -1.0, 2},
        {{}, 0.5, 0},
    };
    for (const RankCase &c : cases) {
        const int n = static_cast<int>(c.x.size());
        EXPECT_EQ(F06_LEADING_RANK(n, c.x.data(), 1, c.tol), c.rank);
        EXPECT_EQ(zek::leading_rank(n, c.x.data(), 1, c.tol), c.rank);
    }
}

// Applies I - u*u' with u = (zeta, z) to (alpha, x).
std::vector<double> reflect(double zeta, const std::vector<double> &z, double alpha, const std::vector<double> &x) {
    double dot = zeta * alpha;
    for (std::size_t i = 0; i < z.size(); ++i) dot += z[i] * x[i];
    std::vector<double> r(x.size() + 1);
    r[0] = alpha - zeta * dot;
    for (std::size_t i = 0; i < x.size(); ++i) r[i + 1] = x[i] - z[i] * dot;
    return r;
}

TEST(Reflector, MapsOntoTheFirstAxis) {
    zek_test::Random rng(3);
    for (int n : {1, 2, 5}) {
        for (double alpha : {0.0, 0.7, -2.0, 1e-310}) {
            for (bool safe : {false, true}) {
                std::vector<double> x = rng.vector(static_cast<std::size_t>(n)), z = x;
                if (alpha == 1e-310)
                    for (double &v : z) v *= 1e-300;
                const std::vector<double> x0 = z;
                double a = alpha, zeta = -1.0;
                (safe ? F06_REFLECTOR_GEN_SAFE : F06_REFLECTOR_GEN)(n, &a, z.data(), 1, 0.0, &zeta);
                ASSERT_NE(zeta, 0.0);
                EXPECT_GE(zeta, 1.0);
                EXPECT_LE(zeta, std::sqrt(2.0) + 1e-15);
                const std::vector<double> r = reflect(zeta, z, alpha, x0);
                const double scale = std::fabs(a);
                EXPECT_NEAR(r[0], a, 1e-14 * scale);
                for (int i = 1; i <= n; ++i) {
                    EXPECT_NEAR(r[i], 0.0, 1e-14 * scale) << "n=" << n << " alpha=" << alpha;
                }
                // The reflector applied to its own input gives the same.
                double delta = alpha;
                std::vector<double> y = x0;
                F06_REFLECTOR_APPLY(n, &delta, y.data(), 1, zeta, z.data(), 1);
                EXPECT_NEAR(delta, a, 1e-14 * scale);
            }
        }
    }
    // Documented single-element case and the negligible case.
    double a = 0.0, x = -2.0, zeta;
    F06_REFLECTOR_GEN(1, &a, &x, 1, 0.0, &zeta);
    EXPECT_EQ(zeta, 1.0);
    EXPECT_EQ(a, 2.0);
    EXPECT_EQ(x, 1.0);
    a = 1.0;
    double small[2] = {1e-20, -1e-20};
    zek::reflector_gen(2, &a, small, 1, 0.0, &zeta);
    EXPECT_EQ(zeta, 0.0);
    EXPECT_EQ(small[0], 1e-20);
}

TEST(RotationSequence, ReducesToThePivotInEveryOrder) {
    const double x0[] = {1.0, -2.0, 0.5, 3.0};
    const double alpha0 = 2.0;
    const double norm = std::sqrt(alpha0 * alpha0 + 1.0 + 4.0 + 0.25 + 9.0);
    struct Order {
        const char *pivot, *direct;
        int pivot_code, direct_code;
    };
    for (const Order &o : {Order{"F", "F", 1013, 1014}, Order{"v", "f", 1012, 1014}, Order{"V", "B", 1012, 1015},
                           Order{"f", "b", 1013, 1015}}) {
        for (bool enumerated : {false, true}) {
            double alpha = alpha0, x[4], c[4], s[4];
            std::copy(x0, x0 + 4, x);
            if (enumerated)
                F06_ROTATION_SEQUENCE_ENUM(o.pivot_code, o.direct_code, 4, &alpha, x, 1, c, s);
            else
                F06_ROTATION_SEQUENCE(o.pivot, o.direct, 4, &alpha, x, 1, c, s, 1, 1);
            // All the weight ends in the pivot, and every rotation is orthogonal.
            EXPECT_NEAR(std::fabs(alpha), norm, 1e-14) << o.pivot << o.direct;
            for (int i = 0; i < 4; ++i) EXPECT_NEAR(c[i] * c[i] + s[i] * s[i], 1.0, 1e-15);
        }
    }
    double alpha = 1.0, x[2] = {1.0, 1.0}, c[2] = {9.0, 9.0}, s[2];
    F06_ROTATION_SEQUENCE("X", "F", 2, &alpha, x, 1, c, s, 1, 1);
    EXPECT_EQ(c[0], 9.0) << "an unknown pivot letter returns at once";
}

} // namespace
