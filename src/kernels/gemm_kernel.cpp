// The blocked matrix-product core: A is packed in blocks of MC by KC (kept in the second-level cache),
// alpha*B in slivers of KC by NR (first-level cache), and a 4 by 4 tile of C lives in registers while
// the sliver streams through.  The packing buffers are on the stack, so the routine is re-entrant and
// allocates nothing.
#include "kernels/gemm_kernel.h"

#include <algorithm>
#include <cstring>

namespace zek {

namespace {

typedef double v2d __attribute__((vector_size(16)));

constexpr std::ptrdiff_t kMR = 4;    // rows of a register tile
constexpr std::ptrdiff_t kNR = 4;    // columns of a register tile
constexpr std::ptrdiff_t kKC = 256;  // depth of a packed block
constexpr std::ptrdiff_t kMC = 64;   // rows of a packed block of A
// Below this many multiply-adds the packing does not pay for itself.
constexpr std::ptrdiff_t kSmallProduct = 24 * 24 * 24;

inline v2d load(const double *p) {
    v2d v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
inline void store(double *p, v2d v) { std::memcpy(p, &v, sizeof v); }

// C(0:4, 0:4) += A*B over kc steps: A packed 4 values a step, B packed 4 duplicated pairs a step.
void tile_4x4(std::ptrdiff_t kc, const double *__restrict a, const double *__restrict b, double *c,
              std::ptrdiff_t ldc) {
    double *c0 = c, *c1 = c + ldc, *c2 = c1 + ldc, *c3 = c2 + ldc;
    v2d c00 = load(c0), c10 = load(c0 + 2), c01 = load(c1), c11 = load(c1 + 2);
    v2d c02 = load(c2), c12 = load(c2 + 2), c03 = load(c3), c13 = load(c3 + 2);
    for (std::ptrdiff_t l = 0; l < kc; ++l) {
        const v2d a0 = load(a), a1 = load(a + 2);
        const v2d b0 = load(b), b1 = load(b + 2), b2 = load(b + 4), b3 = load(b + 6);
        c00 = c00 + a0 * b0;
        c10 = c10 + a1 * b0;
        c01 = c01 + a0 * b1;
        c11 = c11 + a1 * b1;
        c02 = c02 + a0 * b2;
        c12 = c12 + a1 * b2;
        c03 = c03 + a0 * b3;
        c13 = c13 + a1 * b3;
        a += kMR;
        b += 2 * kNR;
    }
    store(c0, c00);
    store(c0 + 2, c10);
    store(c1, c01);
    store(c1 + 2, c11);
    store(c2, c02);
    store(c2 + 2, c12);
    store(c3, c03);
    store(c3 + 2, c13);
}

// Packs rows 0..mc-1, depth 0..kc-1 of A into panels of kMR rows, kMR values per step, zero padded.
void pack_a(std::ptrdiff_t mc, std::ptrdiff_t kc, const double *a, std::ptrdiff_t rs, std::ptrdiff_t cs,
            double *out) {
    for (std::ptrdiff_t ir = 0; ir < mc; ir += kMR) {
        const std::ptrdiff_t mr = std::min(kMR, mc - ir);
        const double *p = a + ir * rs;
        if (mr == kMR && rs == 1) {
            for (std::ptrdiff_t l = 0; l < kc; ++l, out += kMR) {
                const double *q = p + l * cs;
                out[0] = q[0];
                out[1] = q[1];
                out[2] = q[2];
                out[3] = q[3];
            }
        } else {
            for (std::ptrdiff_t l = 0; l < kc; ++l, out += kMR) {
                const double *q = p + l * cs;
                std::ptrdiff_t r = 0;
                for (; r < mr; ++r) out[r] = q[r * rs];
                for (; r < kMR; ++r) out[r] = 0.0;
            }
        }
    }
}

// Packs alpha*B(0:kc, 0:nr) as duplicated pairs, kNR pairs per step, zero padded.
void pack_b(std::ptrdiff_t kc, std::ptrdiff_t nr, double alpha, const double *b, std::ptrdiff_t rs, std::ptrdiff_t cs,
            double *out) {
    for (std::ptrdiff_t l = 0; l < kc; ++l, out += 2 * kNR) {
        const double *q = b + l * rs;
        std::ptrdiff_t c = 0;
        for (; c < nr; ++c) out[2 * c] = out[2 * c + 1] = alpha * q[c * cs];
        for (; c < kNR; ++c) out[2 * c] = out[2 * c + 1] = 0.0;
    }
}

// The plain loops, for products too small to pack.  With A stored by rows of op(A) each element of C
// is accumulated in a register over a chunk of alpha*B(:, j); otherwise columns of A are added to C.
// Either way C(i, j) receives the same terms in the same order.
void gemm_small(std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t k, double alpha, const double *a,
                std::ptrdiff_t a_rs, std::ptrdiff_t a_cs, const double *b, std::ptrdiff_t b_rs, std::ptrdiff_t b_cs,
                double *c, std::ptrdiff_t ldc) {
    if (a_rs != 1) {
        constexpr std::ptrdiff_t kChunk = 256;
        double t[kChunk];
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            double *col = c + j * ldc;
            for (std::ptrdiff_t l0 = 0; l0 < k; l0 += kChunk) {
                const std::ptrdiff_t kc = std::min(kChunk, k - l0);
                for (std::ptrdiff_t l = 0; l < kc; ++l) t[l] = alpha * b[(l0 + l) * b_rs + j * b_cs];
                for (std::ptrdiff_t i = 0; i < m; ++i) {
                    const double *q = a + i * a_rs + l0 * a_cs;
                    double v = col[i];
                    for (std::ptrdiff_t l = 0; l < kc; ++l) v = v + t[l] * q[l * a_cs];
                    col[i] = v;
                }
            }
        }
        return;
    }
    for (std::ptrdiff_t j = 0; j < n; ++j) {
        double *__restrict col = c + j * ldc;
        for (std::ptrdiff_t l = 0; l < k; ++l) {
            const double t = alpha * b[l * b_rs + j * b_cs];
            const double *q = a + l * a_cs;
            for (std::ptrdiff_t i = 0; i < m; ++i) col[i] = col[i] + t * q[i];
        }
    }
}

} // namespace

void gemm_core(std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t k, double alpha, const double *a,
               std::ptrdiff_t a_rs, std::ptrdiff_t a_cs, const double *b, std::ptrdiff_t b_rs, std::ptrdiff_t b_cs,
               double *c, std::ptrdiff_t ldc) {
    if (m <= 0 || n <= 0 || k <= 0) return;
    if (m < kMR || m * n * k < kSmallProduct) {
        gemm_small(m, n, k, alpha, a, a_rs, a_cs, b, b_rs, b_cs, c, ldc);
        return;
    }
    alignas(16) double apack[kMC * kKC];
    alignas(16) double bpack[kKC * 2 * kNR];
    for (std::ptrdiff_t pc = 0; pc < k; pc += kKC) {
        const std::ptrdiff_t kc = std::min(kKC, k - pc);
        for (std::ptrdiff_t ic = 0; ic < m; ic += kMC) {
            const std::ptrdiff_t mc = std::min(kMC, m - ic);
            pack_a(mc, kc, a + ic * a_rs + pc * a_cs, a_rs, a_cs, apack);
            for (std::ptrdiff_t jc = 0; jc < n; jc += kNR) {
                const std::ptrdiff_t nr = std::min(kNR, n - jc);
                pack_b(kc, nr, alpha, b + pc * b_rs + jc * b_cs, b_rs, b_cs, bpack);
                for (std::ptrdiff_t ir = 0; ir < mc; ir += kMR) {
                    const std::ptrdiff_t mr = std::min(kMR, mc - ir);
                    double *cc = c + (ic + ir) + jc * ldc;
                    if (mr == kMR && nr == kNR) {
                        tile_4x4(kc, apack + ir * kc, bpack, cc, ldc);
                        continue;
                    }
                    // An edge tile goes through a full tile in registers; its padding is discarded.
                    double tile[kMR * kNR] = {};
                    for (std::ptrdiff_t jj = 0; jj < nr; ++jj)
                        for (std::ptrdiff_t ii = 0; ii < mr; ++ii) tile[ii + jj * kMR] = cc[ii + jj * ldc];
                    tile_4x4(kc, apack + ir * kc, bpack, tile, kMR);
                    for (std::ptrdiff_t jj = 0; jj < nr; ++jj)
                        for (std::ptrdiff_t ii = 0; ii < mr; ++ii) cc[ii + jj * ldc] = tile[ii + jj * kMR];
                }
            }
        }
    }
}

} // namespace zek
