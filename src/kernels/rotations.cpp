// The rotation family: triangular factors updated by sequences of plane rotations, and the general
// application of a rotation sequence to a rectangular matrix.  Indices in this file are one-based, as
// in the formulae of the algorithms.
#include "kernels/rotations.h"

#include <algorithm>

#include "kernels/safe_arithmetic.h"
#include "zek2/f06.h"

namespace zek {

namespace {

// One-based views of the operands.
struct Matrix {
    double *a;
    std::ptrdiff_t ld;
    double &operator()(std::ptrdiff_t i, std::ptrdiff_t j) const { return a[(i - 1) + (j - 1) * ld]; }
};
struct Sequence {
    double *v;
    double &operator()(std::ptrdiff_t k) const { return v[k - 1]; }
};

typedef double v2d __attribute__((vector_size(16)));

inline bool identity(double c, double s) { return c == 1.0 && s == 0.0; }

// x' = c*x + s*y, y' = c*y - s*x.
inline void rotate(double &x, double &y, double c, double s) {
    const double t = y;
    y = c * t - s * x;
    x = s * t + c * x;
}

// Rotates columns p and q of A in rows lo..hi.
inline void rotate_columns(Matrix A, std::ptrdiff_t p, std::ptrdiff_t q, std::ptrdiff_t lo, std::ptrdiff_t hi,
                           double c, double s) {
    double *__restrict x = &A(1, p);
    double *__restrict y = &A(1, q);
    for (std::ptrdiff_t i = lo - 1; i < hi; ++i) {
        const double t = y[i];
        y[i] = c * t - s * x[i];
        x[i] = s * t + c * x[i];
    }
}

// The rotation that takes (a, b) to (r, 0), r left in a; b is not changed.
inline void generate(double &a, double b, double &c, double &s, const SafeConstants &k) {
    rotation_from_pair(&a, &b, &c, &s, k);
}

inline bool triangle_range(int n, int k1, int k2) { return std::min(n, k1) >= 1 && k2 > k1 && k2 <= n; }

} // namespace

void hessenberg_to_triangle(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                            const SafeConstants &k) {
    if (!triangle_range(n, k1, k2)) return;
    const Matrix A{a, lda};
    const Sequence C{c}, S{s};
    if (side == 'L') {
        for (std::ptrdiff_t j = k1; j <= n; ++j) {
            double t = A(k1, j);
            const std::ptrdiff_t top = std::min<std::ptrdiff_t>(j, k2) - 1;
            for (std::ptrdiff_t i = k1; i <= top; ++i) {
                const double below = A(i + 1, j);
                A(i, j) = C(i) * t + S(i) * below;
                t = C(i) * below - S(i) * t;
            }
            if (j < k2) {
                generate(t, S(j), C(j), S(j), k);
                A(j, j) = t;
            } else {
                A(k2, j) = t;
            }
        }
    } else if (side == 'R') {
        for (std::ptrdiff_t j = k2 - 1; j >= k1; --j) {
            double cs, sn;
            generate(A(j + 1, j + 1), S(j), cs, sn, k);
            C(j) = cs;
            S(j) = -sn;
            if (!identity(C(j), S(j))) rotate_columns(A, j, j + 1, 1, j, C(j), S(j));
        }
    }
}

void triangle_to_hessenberg(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda) {
    if (!triangle_range(n, k1, k2)) return;
    const Matrix A{a, lda};
    const Sequence C{c}, S{s};
    if (side == 'L') {
        for (std::ptrdiff_t j = n; j >= k1; --j) {
            double t;
            if (j >= k2) {
                t = A(k2, j);
            } else {
                t = C(j) * A(j, j);
                S(j) = -S(j) * A(j, j);
            }
            for (std::ptrdiff_t i = std::min<std::ptrdiff_t>(k2, j) - 1; i >= k1; --i) {
                const double above = A(i, j);
                A(i + 1, j) = C(i) * t - S(i) * above;
                t = S(i) * t + C(i) * above;
            }
            A(k1, j) = t;
        }
    } else if (side == 'R') {
        for (std::ptrdiff_t j = k1; j < k2; ++j) {
            if (identity(C(j), S(j))) continue;
            rotate_columns(A, j, j + 1, 1, j, C(j), S(j));
            S(j) = S(j) * A(j + 1, j + 1);
            A(j + 1, j + 1) = C(j) * A(j + 1, j + 1);
        }
    }
}

void spike_to_triangle(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                       const SafeConstants &k) {
    if (!triangle_range(n, k1, k2)) return;
    const Matrix A{a, lda};
    const Sequence C{c}, S{s};
    if (side == 'L') {
        // Row k2 is carried in t while the rotations of planes (i, k2) sweep each column.
        for (std::ptrdiff_t j = k1; j < k2; ++j) {
            double t = S(j);
            for (std::ptrdiff_t i = k1; i < j; ++i) {
                const double old = A(i, j);
                A(i, j) = S(i) * t + C(i) * old;
                t = C(i) * t - S(i) * old;
            }
            generate(A(j, j), t, C(j), S(j), k);
        }
        for (std::ptrdiff_t j = k2; j <= n; ++j) {
            double t = A(k2, j);
            for (std::ptrdiff_t i = k1; i < k2; ++i) {
                const double old = A(i, j);
                A(i, j) = S(i) * t + C(i) * old;
                t = C(i) * t - S(i) * old;
            }
            A(k2, j) = t;
        }
    } else if (side == 'R') {
        // Column k1 below its diagonal lives in s; rotation j mixes columns k1 and j+1.
        for (std::ptrdiff_t j = k2 - 1; j >= k1; --j) {
            double cs, sn;
            generate(A(j + 1, j + 1), S(j), cs, sn, k);
            C(j) = cs;
            S(j) = -sn;
            const double cj = C(j), sj = S(j);
            if (identity(cj, sj)) continue;
            for (std::ptrdiff_t i = j; i > k1; --i) rotate(S(i - 1), A(i, j + 1), cj, sj);
            for (std::ptrdiff_t i = k1; i >= 1; --i) rotate(A(i, k1), A(i, j + 1), cj, sj);
        }
    }
}

void triangle_to_spike(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda) {
    if (!triangle_range(n, k1, k2)) return;
    const Matrix A{a, lda};
    const Sequence C{c}, S{s};
    if (side == 'R') {
        for (std::ptrdiff_t j = k1; j < k2; ++j) {
            const double cj = C(j), sj = S(j);
            if (identity(cj, sj)) continue;
            for (std::ptrdiff_t i = 1; i <= k1; ++i) rotate(A(i, k1), A(i, j + 1), cj, sj);
            for (std::ptrdiff_t i = k1 + 1; i <= j; ++i) rotate(S(i - 1), A(i, j + 1), cj, sj);
            S(j) = sj * A(j + 1, j + 1);
            A(j + 1, j + 1) = cj * A(j + 1, j + 1);
        }
    } else if (side == 'L') {
        for (std::ptrdiff_t j = n; j >= k2; --j)
            for (std::ptrdiff_t i = k2 - 1; i >= k1; --i) rotate(A(i, j), A(k2, j), C(i), S(i));
        for (std::ptrdiff_t j = k2 - 1; j >= k1; --j) {
            double t = -S(j) * A(j, j);
            A(j, j) = C(j) * A(j, j);
            for (std::ptrdiff_t i = j - 1; i >= k1; --i) rotate(A(i, j), t, C(i), S(i));
            S(j) = t;
        }
    }
}

void chase_triangle_rotations(char side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                              const SafeConstants &k) {
    if (!triangle_range(n, k1, k2)) return;
    const Matrix A{a, lda};
    const Sequence C{c}, S{s};
    if (side == 'R') {
        for (std::ptrdiff_t j = k2 - 1; j >= k1; --j) {
            if (identity(C(j), S(j))) continue;
            rotate_columns(A, j, j + 1, 1, j, C(j), S(j));
            const double fill = S(j) * A(j + 1, j + 1);
            A(j + 1, j + 1) = C(j) * A(j + 1, j + 1);
            generate(A(j, j), fill, C(j), S(j), k);
        }
        // The new rotations act from the left on the columns right of the chase.
        for (std::ptrdiff_t j = n; j > k1; --j) {
            const std::ptrdiff_t top = std::min<std::ptrdiff_t>(k2, j);
            double t = A(top, j);
            for (std::ptrdiff_t i = top - 1; i >= k1; --i) {
                const double above = A(i, j);
                A(i + 1, j) = C(i) * t - S(i) * above;
                t = S(i) * t + C(i) * above;
            }
            A(k1, j) = t;
        }
    } else if (side == 'L') {
        for (std::ptrdiff_t j = k1 + 1; j <= n; ++j) {
            const std::ptrdiff_t last = std::min<std::ptrdiff_t>(j, k2) - 1;
            for (std::ptrdiff_t i = k1; i <= last; ++i) rotate(A(i, j), A(i + 1, j), C(i), S(i));
        }
        // Rotation j from the left fills (j+1, j) out of the diagonal element of column j; a rotation of
        // columns (j, j+1) takes the fill out again.
        for (std::ptrdiff_t j = k1; j < k2; ++j) {
            const double fill = -S(j) * A(j, j);
            A(j, j) = C(j) * A(j, j);
            double cs, sn;
            generate(A(j + 1, j + 1), fill, cs, sn, k);
            C(j) = cs;
            S(j) = -sn;
            if (!identity(C(j), S(j))) rotate_columns(A, j, j + 1, 1, j, C(j), S(j));
        }
    }
}

void reverse_triangle_rotate(char which, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                             const SafeConstants &k) {
    if (!triangle_range(n, k1, k2)) return;
    const Matrix A{a, lda};
    const Sequence C{c}, S{s};
    if (which == 'C') {
        for (std::ptrdiff_t j = k1; j < k2; ++j) {
            const double cj = C(j), sj = S(j);
            if (identity(cj, sj)) continue;
            const std::ptrdiff_t top = n - j;
            S(j) = sj * A(top, j + 1);
            A(top, j + 1) = cj * A(top, j + 1);
            rotate_columns(A, j, j + 1, top + 1, n, cj, sj);
        }
    } else if (which == 'R') {
        for (std::ptrdiff_t j = k2 - 1; j >= k1; --j) {
            double cs, sn;
            generate(A(n - j, j + 1), S(j), cs, sn, k);
            C(j) = cs;
            S(j) = -sn;
            if (!identity(C(j), S(j))) rotate_columns(A, j, j + 1, n - j + 1, n, C(j), S(j));
        }
    }
}

void triangle_add_row(int n, double alpha, const double *x, int incx, double *a, int lda, double *c, double *s,
                      const SafeConstants &k) {
    if (n < 1 || alpha == 0.0) return;
    const Matrix A{a, lda};
    const Sequence C{c}, S{s};
    for (std::ptrdiff_t j = 1; j <= n; ++j) {
        double t = alpha * x[(j - 1) * incx];
        for (std::ptrdiff_t i = 1; i < j; ++i) {
            const double old = A(i, j);
            A(i, j) = C(i) * old + S(i) * t;
            t = C(i) * t - S(i) * old;
        }
        generate(A(j, j), t, C(j), S(j), k);
    }
}

void rotation_apply_general(char side, char pivot, char direct, int m, int n, int k1, int k2, const double *c,
                            const double *s, double *a, int lda) {
    if (std::min({m, n, k1}) < 1 || k2 <= k1) return;
    if ((side == 'L' && k2 > m) || (side == 'R' && k2 > n) || (side != 'L' && side != 'R')) return;
    if ((pivot != 'V' && pivot != 'T' && pivot != 'B') || (direct != 'F' && direct != 'B')) return;
    const std::ptrdiff_t ld = lda;
    const bool forward = direct == 'F';
    const std::ptrdiff_t first = forward ? k1 : k2 - 1, step = forward ? 1 : -1, count = k2 - k1;
    // The plane (p, q), p < q, of rotation kk.
    const auto plane = [&](std::ptrdiff_t kk, std::ptrdiff_t &p, std::ptrdiff_t &q) {
        p = pivot == 'T' ? k1 : kk;
        q = pivot == 'B' ? k2 : kk + 1;
    };
    if (side == 'L') {
        // A block of columns at a time, as wide as fits in about 256 KB (at least 16 columns): the block
        // stays in cache through the whole sequence, and each rotation sweeps the block's columns, whose
        // updates are independent of one another.
        const std::ptrdiff_t block = std::max<std::ptrdiff_t>(16, 32768 / m);
        for (std::ptrdiff_t j0 = 0; j0 < n; j0 += block) {
            const std::ptrdiff_t width = std::min<std::ptrdiff_t>(block, n - j0);
            double *block = a + j0 * ld;
            std::ptrdiff_t kk = first;
            for (std::ptrdiff_t r = 0; r < count; ++r, kk += step) {
                const double cs = c[kk - 1], sn = s[kk - 1];
                if (identity(cs, sn)) continue;
                std::ptrdiff_t p, q;
                plane(kk, p, q);
                double *xp = block + (p - 1), *yp = block + (q - 1);
                // Two columns to a vector register: the same operations on each, in the same order.
                const v2d c2 = {cs, cs}, s2 = {sn, sn};
                std::ptrdiff_t j = 0;
                for (; j + 2 <= width; j += 2) {
                    double &x0 = xp[j * ld], &x1 = xp[(j + 1) * ld], &y0 = yp[j * ld], &y1 = yp[(j + 1) * ld];
                    const v2d x = {x0, x1}, t = {y0, y1};
                    const v2d ny = c2 * t - s2 * x, nx = s2 * t + c2 * x;
                    x0 = nx[0];
                    x1 = nx[1];
                    y0 = ny[0];
                    y1 = ny[1];
                }
                for (; j < width; ++j) rotate(xp[j * ld], yp[j * ld], cs, sn);
            }
        }
        return;
    }
    const Matrix A{a, ld};
    std::ptrdiff_t kk = first;
    for (std::ptrdiff_t r = 0; r < count; ++r, kk += step) {
        const double cs = c[kk - 1], sn = s[kk - 1];
        if (identity(cs, sn)) continue;
        std::ptrdiff_t p, q;
        plane(kk, p, q);
        rotate_columns(A, p, q, 1, m, cs, sn);
    }
}

} // namespace zek

using zek::option_letter;

namespace {
// Letters of the enumerated side codes of the rotation family; 0 for other codes.
char side_of(int code) { return zek::side_letter(code); }
} // namespace

extern "C" {

void F06_HESSENBERG_TO_TRIANGLE(const char *side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                                int) {
    zek::hessenberg_to_triangle(option_letter(side), n, k1, k2, c, s, a, lda, zek::kFrozenConstants);
}
void F06_HESSENBERG_TO_TRIANGLE_ENUM(int side, int n, int k1, int k2, double *c, double *s, double *a, int lda) {
    zek::hessenberg_to_triangle(side_of(side), n, k1, k2, c, s, a, lda, zek::runtime_constants());
}
void F06_SPIKE_TO_TRIANGLE(const char *side, int n, int k1, int k2, double *c, double *s, double *a, int lda, int) {
    zek::spike_to_triangle(option_letter(side), n, k1, k2, c, s, a, lda, zek::kFrozenConstants);
}
void F06_SPIKE_TO_TRIANGLE_ENUM(int side, int n, int k1, int k2, double *c, double *s, double *a, int lda) {
    zek::spike_to_triangle(side_of(side), n, k1, k2, c, s, a, lda, zek::runtime_constants());
}
void F06_CHASE_TRIANGLE_ROTATIONS(const char *side, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                                  int) {
    zek::chase_triangle_rotations(option_letter(side), n, k1, k2, c, s, a, lda, zek::kFrozenConstants);
}
void F06_CHASE_TRIANGLE_ROTATIONS_RUNTIME(const char *side, int n, int k1, int k2, double *c, double *s, double *a,
                                          int lda, int) {
    zek::chase_triangle_rotations(option_letter(side), n, k1, k2, c, s, a, lda, zek::runtime_constants());
}
void F06_REVERSE_TRIANGLE_ROTATE(const char *which, int n, int k1, int k2, double *c, double *s, double *a, int lda,
                                 int) {
    zek::reverse_triangle_rotate(option_letter(which), n, k1, k2, c, s, a, lda, zek::runtime_constants());
}
void F06_TRIANGLE_ADD_ROW(int n, double alpha, const double *x, int incx, double *a, int lda, double *c, double *s) {
    zek::triangle_add_row(n, alpha, x, incx, a, lda, c, s, zek::runtime_constants());
}
void F06_ROTATION_APPLY_GENERAL(const char *side, const char *pivot, const char *direct, int m, int n, int k1, int k2,
                                const double *c, const double *s, double *a, int lda, int, int, int) {
    zek::rotation_apply_general(option_letter(side), option_letter(pivot), option_letter(direct), m, n, k1, k2, c, s,
                                a, lda);
}
void F06_ROTATION_APPLY_GENERAL_ENUM(int side, int pivot, int direct, int m, int n, int k1, int k2, const double *c,
                                     const double *s, double *a, int lda) {
    // The fixed pivot belongs to the vector sequences, not to this routine.
    const char p = pivot == zek::kFixedPivot ? 0 : zek::pivot_letter(pivot);
    zek::rotation_apply_general(side_of(side), p, zek::direct_letter(direct), m, n, k1, k2, c, s, a, lda);
}

} // extern "C"
