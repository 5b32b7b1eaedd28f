// The blocked, register-tiled core of the real matrix product, shared by DGEMM and the blocked
// triangular solves.
#ifndef ZEK_KERNELS_GEMM_KERNEL_H
#define ZEK_KERNELS_GEMM_KERNEL_H

#include <cstddef>

namespace zek {

// C(i, j) := C(i, j) + (alpha*B(l, j))*A(i, l) for l = 0, 1, ..., k-1 in that order, i < m, j < n, where
// A(i, l) = a[i*a_rs + l*a_cs] and B(l, j) = b[l*b_rs + j*b_cs]; C is column-major with leading
// dimension ldc.  The strides may be negative, which runs l backwards through the storage: transposes
// and reversed orders cost nothing extra.
//
// Every element of C receives its k terms one at a time in the order of l, exactly as the column loops
// of the published operations add them, so a product computed here rounds the same as the plain loops;
// only the schedule differs (packed panels, 4 by 4 register tiles, cache blocks).  A, B and C must not
// overlap.
void gemm_core(std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t k, double alpha, const double *a,
               std::ptrdiff_t a_rs, std::ptrdiff_t a_cs, const double *b, std::ptrdiff_t b_rs, std::ptrdiff_t b_cs,
               double *c, std::ptrdiff_t ldc);

} // namespace zek

#endif
