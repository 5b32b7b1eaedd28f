// The written-out passes of fft_pass_bodies.h built for AVX2 registers (four doubles), chosen at run
// time when the processor has them.  Only additions, subtractions and products of doubles, each
// rounded as in the ordinary build (no contraction into fused multiply-adds), so both builds give the
// same bits.
#include <atomic>

#include "analysis/fft.h"

// Processors other than x86 have no such registers here: there the "wide" passes are the ordinary
// ones and never chosen.
#if defined(__x86_64__) || defined(__i386__)
#define ZEK_FFT_AVX2 1
#else
#define ZEK_FFT_AVX2 0
#endif

namespace zek::fft::wide {

namespace {
std::atomic<bool> allowed{true};
}

bool enabled() {
#if ZEK_FFT_AVX2
    static const bool present = __builtin_cpu_supports("avx2");
#else
    constexpr bool present = false;
#endif
    return present && allowed.load(std::memory_order_relaxed);
}

void allow(bool a) { allowed.store(a, std::memory_order_relaxed); }

} // namespace zek::fft::wide

// Everything below is compiled for AVX2.  The headers it includes define only functions of internal
// linkage, so none of these copies can be picked for code that runs without AVX2.
#if ZEK_FFT_AVX2 && defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#define ZEK_FFT_WIDE 1
#elif ZEK_FFT_AVX2
#pragma GCC push_options
#pragma GCC target("avx2")
#define ZEK_FFT_WIDE 1
#endif

#include "analysis/fft_pass_bodies.h"

namespace zek::fft::wide {

namespace {
#if ZEK_FFT_AVX2
using Wide = V4;
using WideGroups = FourGroups;
#else
using Wide = V2;
using WideGroups = TwoGroups;
#endif
} // namespace

void complex_pass(int p, int m, Index ldi, Index ldo, int ido, int l1, const double *cc, double *ch,
                  const double *tw) {
    const bool single = m == 1 && ldi == 1 && ldo == 1;
    switch (p) {
    case 2:
        single ? pass_single<2, Wide>(ido, l1, cc, ch, tw) : pass_rows<2, Wide>(m, ldi, ldo, ido, l1, cc, ch, tw);
        break;
    case 3:
        single ? pass_single<3, Wide>(ido, l1, cc, ch, tw) : pass_rows<3, Wide>(m, ldi, ldo, ido, l1, cc, ch, tw);
        break;
    case 4:
        single ? pass_single<4, Wide>(ido, l1, cc, ch, tw) : pass_rows<4, Wide>(m, ldi, ldo, ido, l1, cc, ch, tw);
        break;
    case 5:
        single ? pass_single<5, Wide>(ido, l1, cc, ch, tw) : pass_rows<5, Wide>(m, ldi, ldo, ido, l1, cc, ch, tw);
        break;
    default: general_pass_local<Wide>(p, m, ldi, ldo, ido, l1, cc, ch, tw); break;
    }
}

void real_pass_single(bool forward, int p, int n, Index k, double *x, RealTable t) {
    switch (p) {
    case 2: forward ? single_pass<2, true, TwoBlocks, WideGroups>(n, k, x, t) : single_pass<2, false, TwoBlocks, WideGroups>(n, k, x, t); break;
    case 3: forward ? single_pass<3, true, TwoBlocks, WideGroups>(n, k, x, t) : single_pass<3, false, TwoBlocks, WideGroups>(n, k, x, t); break;
    case 4: forward ? single_pass<4, true, TwoBlocks, WideGroups>(n, k, x, t) : single_pass<4, false, TwoBlocks, WideGroups>(n, k, x, t); break;
    case 5: forward ? single_pass<5, true, TwoBlocks, WideGroups>(n, k, x, t) : single_pass<5, false, TwoBlocks, WideGroups>(n, k, x, t); break;
    case 6: forward ? single_pass<6, true, TwoBlocks, WideGroups>(n, k, x, t) : single_pass<6, false, TwoBlocks, WideGroups>(n, k, x, t); break;
    default: forward ? single_pass<8, true, TwoBlocks, WideGroups>(n, k, x, t) : single_pass<8, false, TwoBlocks, WideGroups>(n, k, x, t); break;
    }
}

void real_pass_rows(bool forward, int p, int m, int n, Index k, double *x, RealTable t) {
    switch (p) {
    case 2: forward ? forward_pass<2, Wide>(m, n, k, x, t) : backward_pass<2, Wide>(m, n, k, x, t); break;
    case 3: forward ? forward_pass<3, Wide>(m, n, k, x, t) : backward_pass<3, Wide>(m, n, k, x, t); break;
    case 4: forward ? forward_pass<4, Wide>(m, n, k, x, t) : backward_pass<4, Wide>(m, n, k, x, t); break;
    case 5: forward ? forward_pass<5, Wide>(m, n, k, x, t) : backward_pass<5, Wide>(m, n, k, x, t); break;
    case 6: forward ? forward_pass<6, Wide>(m, n, k, x, t) : backward_pass<6, Wide>(m, n, k, x, t); break;
    default: forward ? forward_pass<8, Wide>(m, n, k, x, t) : backward_pass<8, Wide>(m, n, k, x, t); break;
    }
}

} // namespace zek::fft::wide

#if ZEK_FFT_AVX2 && defined(__clang__)
#pragma clang attribute pop
#elif ZEK_FFT_AVX2
#pragma GCC pop_options
#endif
