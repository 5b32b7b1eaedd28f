// The rotation family by its invariants: the triangle is restored, and applying the rotations that were
// produced (or given) to the input reproduces the output.  The general application itself is checked
// against explicit products of rotation matrices.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "kernel_test_util.h"
#include "kernels/rotations.h"
#include "zek2/f06.h"

namespace {

using zek_test::Random;
using Matrix = std::vector<double>;  // column-major, leading dimension = rows

constexpr double kTol = 1e-13;

double &at(Matrix &a, int ld, int i, int j) { return a[static_cast<std::size_t>((i - 1) + (j - 1) * ld)]; }

Matrix upper_triangle(Random &rng, int n) {
    Matrix a(static_cast<std::size_t>(n * n), 0.0);
    for (int j = 1; j <= n; ++j)
        for (int i = 1; i <= j; ++i) at(a, n, i, j) = i == j ? 1.5 + 0.5 * rng.next() : rng.next();
    return a;
}

// Random rotations, with rotation 2 (when present) an exact identity.
void random_rotations(Random &rng, int count, std::vector<double> &c, std::vector<double> &s) {
    c.resize(static_cast<std::size_t>(count));
    s.resize(static_cast<std::size_t>(count));
    for (int k = 0; k < count; ++k) {
        const double t = 3.0 * rng.next();
        c[k] = 1.0 / std::sqrt(1.0 + t * t);
        s[k] = c[k] * t;
    }
    if (count > 1) {
        c[1] = 1.0;
        s[1] = 0.0;
    }
}

void apply(const char *side, const char *pivot, const char *direct, int m, int n, int k1, int k2,
           const std::vector<double> &c, const std::vector<double> &s, Matrix &a) {
    F06_ROTATION_APPLY_GENERAL(side, pivot, direct, m, n, k1, k2, c.data(), s.data(), a.data(), m, 1, 1, 1);
}

// GOT upper triangular and equal to EXPECTED, whose part below the diagonal must have vanished.
void expect_triangle(const Matrix &got, const Matrix &expected, int n, const std::string &what) {
    for (int j = 1; j <= n; ++j)
        for (int i = 1; i <= n; ++i) {
            const double g = got[static_cast<std::size_t>((i - 1) + (j - 1) * n)];
            const double e = expected[static_cast<std::size_t>((i - 1) + (j - 1) * n)];
            if (i > j) {
                EXPECT_EQ(g, 0.0) << what << ": below the diagonal at " << i << "," << j;
                EXPECT_NEAR(e, 0.0, kTol) << what << ": the rotations leave " << i << "," << j;
            } else {
                EXPECT_NEAR(g, e, kTol) << what << ": at " << i << "," << j;
            }
        }
}

struct Range {
    int n, k1, k2;
};
const Range kRanges[] = {{6, 2, 5}, {5, 1, 5}, {4, 1, 2}, {7, 3, 7}, {3, 1, 3}};

TEST(RotationApplyGeneral, MatchesExplicitRotationMatrices) {
    Random rng(31);
    const int m = 5, n = 6, k1 = 2;
    for (const char *side : {"L", "R"})
        for (const char *pivot : {"V", "T", "B"})
            for (const char *direct : {"F", "B"}) {
                const bool left = side[0] == 'L';
                const int order = left ? m : n, k2 = order;
                std::vector<double> c, s;
                random_rotations(rng, k2, c, s);
                Matrix a = rng.vector(static_cast<std::size_t>(m * n)), expected = a;
                for (int step = 0; step < k2 - k1; ++step) {
                    const int k = direct[0] == 'F' ? k1 + step : k2 - 1 - step;
                    const int p = pivot[0] == 'T' ? k1 : k, q = pivot[0] == 'B' ? k2 : k + 1;
                    const double ck = c[k - 1], sk = s[k - 1];
                    // Rows P and Q of every column on the left, columns P and Q of every row on the right.
                    auto el = [&](int t, int u) -> double & {
                        return left ? at(expected, m, t, u) : at(expected, m, u, t);
                    };
                    for (int u = 1; u <= (left ? n : m); ++u) {
                        const double x = el(p, u), y = el(q, u);
                        el(p, u) = ck * x + sk * y;
                        el(q, u) = ck * y - sk * x;
                    }
                }
                apply(side, pivot, direct, m, n, k1, k2, c, s, a);
                zek_test::expect_near_vectors(a, expected, kTol, (std::string(side) + pivot + direct).c_str());
                // The enumerated form does the same.
                Matrix b = rng.vector(static_cast<std::size_t>(m * n)), b2 = b;
                apply(side, pivot, direct, m, n, k1, k2, c, s, b);
                F06_ROTATION_APPLY_GENERAL_ENUM(left ? 1008 : 1009, pivot[0] == 'V' ? 1012 : pivot[0] == 'T' ? 1011 : 1010,
                                                direct[0] == 'F' ? 1014 : 1015, m, n, k1, k2, c.data(), s.data(),
                                                b2.data(), m);
                EXPECT_EQ(b, b2);
            }
    // Out-of-range sequences return at once.
    std::vector<double> c(6, 0.6), s(6, 0.8);
    Matrix a = rng.vector(30), a0 = a;
    F06_ROTATION_APPLY_GENERAL("L", "V", "F", 5, 6, 2, 6, c.data(), s.data(), a.data(), 5, 1, 1, 1);  // K2 > M
    F06_ROTATION_APPLY_GENERAL("R", "V", "F", 5, 6, 3, 3, c.data(), s.data(), a.data(), 5, 1, 1, 1);  // K2 <= K1
    F06_ROTATION_APPLY_GENERAL("R", "X", "F", 5, 6, 1, 3, c.data(), s.data(), a.data(), 5, 1, 1, 1);  // bad pivot
    EXPECT_EQ(a, a0);
}

// Where rotation K's fill lies: the subdiagonal for a Hessenberg form; for a spike, row K2 on the left
// and column K1 on the right.
double &fill(Matrix &a, const Range &r, bool spike, char side, int k) {
    if (!spike) return at(a, r.n, k + 1, k);
    return side == 'L' ? at(a, r.n, r.k2, k) : at(a, r.n, k + 1, r.k1);
}

// A transformation between a triangle and a triangle with fill, and the general application (pivot and
// direction, on the left and on the right) that its rotations stand for.
struct Transform {
    const char *what;
    bool removes, spike; // removes the fill (else creates it); fill as a spike (else the subdiagonal)
    const char *pivot[2], *direct[2];
    void (*call)(char side, const Range &r, double *c, double *s, double *a);
};

const Transform kTransforms[] = {
    {"hessenberg to triangle", true, false, {"V", "V"}, {"F", "B"},
     [](char side, const Range &r, double *c, double *s, double *a) {
         if (side == 'L')
             F06_HESSENBERG_TO_TRIANGLE("L", r.n, r.k1, r.k2, c, s, a, r.n, 1);
         else
             F06_HESSENBERG_TO_TRIANGLE_ENUM(1009, r.n, r.k1, r.k2, c, s, a, r.n);
     }},
    {"triangle to hessenberg", false, false, {"V", "V"}, {"B", "F"},
     [](char side, const Range &r, double *c, double *s, double *a) {
         zek::triangle_to_hessenberg(side, r.n, r.k1, r.k2, c, s, a, r.n);
     }},
    {"spike to triangle", true, true, {"B", "T"}, {"F", "B"},
     [](char side, const Range &r, double *c, double *s, double *a) {
         if (side == 'L')
             F06_SPIKE_TO_TRIANGLE_ENUM(1008, r.n, r.k1, r.k2, c, s, a, r.n);
         else
             F06_SPIKE_TO_TRIANGLE("R", r.n, r.k1, r.k2, c, s, a, r.n, 1);
     }},
    {"triangle to spike", false, true, {"B", "T"}, {"B", "F"},
     [](char side, const Range &r, double *c, double *s, double *a) {
         zek::triangle_to_spike(side, r.n, r.k1, r.k2, c, s, a, r.n);
     }},
};

// Removing the fill restores the triangle, and the rotations produced, applied to the filled input,
// give the result; creating it leaves in S the fill that the given rotations produce.
TEST(TriangleTransforms, RotationsStandForTheGeneralApplication) {
    Random rng(32);
    for (const Transform &t : kTransforms)
        for (const Range &r : kRanges)
            for (char side : {'L', 'R'}) {
                const std::string what = std::string(t.what) + " " + side;
                const char sides[2] = {side, 0};
                const int lr = side == 'L' ? 0 : 1;
                Matrix a = upper_triangle(rng, r.n), expected = a;
                std::vector<double> c(static_cast<std::size_t>(r.n), 7.0), s;
                if (t.removes) {
                    s = rng.vector(static_cast<std::size_t>(r.n));
                    for (int k = r.k1; k < r.k2; ++k) fill(expected, r, t.spike, side, k) = s[k - 1];
                    t.call(side, r, c.data(), s.data(), a.data());
                    apply(sides, t.pivot[lr], t.direct[lr], r.n, r.n, r.k1, r.k2, c, s, expected);
                } else {
                    random_rotations(rng, r.n, c, s);
                    apply(sides, t.pivot[lr], t.direct[lr], r.n, r.n, r.k1, r.k2, c, s, expected);
                    t.call(side, r, c.data(), s.data(), a.data());
                    for (int k = r.k1; k < r.k2; ++k) {
                        double &spot = fill(expected, r, t.spike, side, k);
                        EXPECT_NEAR(s[k - 1], spot, kTol) << what << " k=" << k;
                        spot = 0.0;
                    }
                }
                expect_triangle(a, expected, r.n, what);
            }
    // K2 = K1 leaves everything untouched.
    Matrix a = upper_triangle(rng, 4), a0 = a;
    std::vector<double> c(4, 3.0), s(4, 5.0);
    F06_HESSENBERG_TO_TRIANGLE("L", 4, 2, 2, c.data(), s.data(), a.data(), 4, 1);
    EXPECT_EQ(a, a0);
    EXPECT_EQ(c, std::vector<double>(4, 3.0));
    EXPECT_EQ(s, std::vector<double>(4, 5.0));
}

TEST(ChaseTriangleRotations, NewRotationsOnTheOtherSideKeepTheTriangle) {
    Random rng(36);
    for (const Range &r : kRanges)
        for (const char *side : {"L", "R"})
            for (bool runtime : {false, true}) {
                const bool left = side[0] == 'L';
                Matrix a = upper_triangle(rng, r.n), expected = a;
                std::vector<double> c, s;
                random_rotations(rng, r.n, c, s);
                // The given rotations on their side ...
                apply(side, "V", left ? "F" : "B", r.n, r.n, r.k1, r.k2, c, s, expected);
                (runtime ? F06_CHASE_TRIANGLE_ROTATIONS_RUNTIME : F06_CHASE_TRIANGLE_ROTATIONS)(
                    side, r.n, r.k1, r.k2, c.data(), s.data(), a.data(), r.n, 1);
                // ... then the new ones on the other side give the result.
                apply(left ? "R" : "L", "V", left ? "F" : "B", r.n, r.n, r.k1, r.k2, c, s, expected);
                expect_triangle(a, expected, r.n, std::string("chase ") + side);
            }
}

TEST(ReverseTriangleRotate, FillThenRemoveOnTheAntiDiagonalTriangle) {
    Random rng(37);
    for (const Range &r : kRanges) {
        const int n = r.n;
        // Column j holds rows n-j+1..n.
        Matrix a(static_cast<std::size_t>(n * n), 0.0);
        for (int j = 1; j <= n; ++j)
            for (int i = n - j + 1; i <= n; ++i) at(a, n, i, j) = i == n - j + 1 ? 1.5 + 0.5 * rng.next() : rng.next();
        std::vector<double> c, s;
        random_rotations(rng, n, c, s);
        Matrix expected = a;
        apply("R", "V", "F", n, n, r.k1, r.k2, c, s, expected);
        F06_REVERSE_TRIANGLE_ROTATE("C", n, r.k1, r.k2, c.data(), s.data(), a.data(), n, 1);
        Matrix filled = a;
        for (int j = r.k1; j < r.k2; ++j) {
            if (c[j - 1] == 1.0 && s[j - 1] == 0.0) continue;
            EXPECT_NEAR(s[j - 1], at(expected, n, n - j, j), kTol);
            at(filled, n, n - j, j) = s[j - 1];
        }
        zek_test::expect_near_vectors(filled, expected, kTol, "reverse triangle C");
        // Removing the fill: the new rotations applied to the filled matrix give the result.
        F06_REVERSE_TRIANGLE_ROTATE("r", n, r.k1, r.k2, c.data(), s.data(), a.data(), n, 1);
        apply("R", "V", "B", n, n, r.k1, r.k2, c, s, filled);
        for (int j = 1; j <= n; ++j)
            for (int i = 1; i <= n; ++i) {
                if (i <= n - j) {
                    EXPECT_NEAR(at(filled, n, i, j), 0.0, kTol) << "fill left at " << i << "," << j;
                    EXPECT_EQ(at(a, n, i, j), 0.0);
                } else {
                    EXPECT_NEAR(at(a, n, i, j), at(filled, n, i, j), kTol);
                }
            }
    }
}

TEST(TriangleAddRow, KeepsTheGramMatrix) {
    Random rng(38);
    for (int n : {1, 2, 5, 9}) {
        Matrix a = upper_triangle(rng, n), a0 = a;
        const std::vector<double> x = rng.vector(static_cast<std::size_t>(2 * n));
        const double alpha = -1.75;
        std::vector<double> c(static_cast<std::size_t>(n)), s(static_cast<std::size_t>(n));
        F06_TRIANGLE_ADD_ROW(n, alpha, x.data(), 2, a.data(), n, c.data(), s.data());
        for (int i = 1; i <= n; ++i)
            for (int j = 1; j <= n; ++j) {
                double before = alpha * alpha * x[static_cast<std::size_t>(2 * (i - 1))] * x[static_cast<std::size_t>(2 * (j - 1))];
                double after = 0.0;
                for (int k = 1; k <= n; ++k) {
                    before += at(a0, n, k, i) * at(a0, n, k, j);
                    after += at(a, n, k, i) * at(a, n, k, j);
                }
                EXPECT_NEAR(after, before, 1e-12) << "n=" << n << " at " << i << "," << j;
                if (i > j) {
                    EXPECT_EQ(at(a, n, i, j), 0.0);
                }
            }
    }
    Matrix a = upper_triangle(rng, 3), a0 = a;
    std::vector<double> c(3), s(3), x(3, 1.0);
    F06_TRIANGLE_ADD_ROW(3, 0.0, x.data(), 1, a.data(), 3, c.data(), s.data());
    EXPECT_EQ(a, a0) << "alpha = 0 does nothing";
}

} // namespace
