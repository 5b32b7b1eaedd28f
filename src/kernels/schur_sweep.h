// The frame that the real double-shift and the complex single-shift QR iterations share: preparation of
// the active block, the deflation test and the loop over the active block with its sweep limit.  The
// element type decides only the magnitudes (|x| for a real element, |re| + |im| for a complex one, the
// subdiagonal held real); the shifts, the sweep and what a deflated block yields are the caller's.
#ifndef ZEK_KERNELS_SCHUR_SWEEP_H
#define ZEK_KERNELS_SCHUR_SWEEP_H

#include <algorithm>
#include <cmath>
#include <complex>

#include "kernels/schur.h"

namespace zek {

inline double magnitude1(double x) { return std::fabs(x); }
inline double magnitude1(ComplexD x) { return std::fabs(x.real()) + std::fabs(x.imag()); }
inline double real_magnitude(double x) { return std::fabs(x); }
inline double real_magnitude(ComplexD x) { return std::fabs(x.real()); }
inline bool finite_element(double x) { return std::isfinite(x); }
inline bool finite_element(ComplexD x) { return std::isfinite(x.real()) && std::isfinite(x.imag()); }

// Clears what lies below the subdiagonal of rows ILO..IHI; false if the active block holds a NaN or an
// infinity (which the iteration would deflate into meaningless values).
template <class Acc> bool prepare_active_block(int ilo, int ihi, Acc H) {
    for (int j = ilo; j <= ihi - 3; ++j) {
        H(j + 2, j) = 0.0;
        H(j + 3, j) = 0.0;
    }
    if (ilo <= ihi - 2) H(ihi, ihi - 2) = 0.0;
    for (int j = ilo; j <= ihi; ++j)
        for (int i = ilo; i <= std::min(j + 1, ihi); ++i)
            if (!finite_element(H(i, j))) return false;
    return true;
}

// The row k in L+1..I (or L) at which the block splits: the published criterion that weighs the
// subdiagonal element against its neighbours.
template <class Acc> int deflation_row(int l, int i, int ilo, int ihi, double smlnum, double u, Acc H) {
    int k = i;
    for (; k > l; --k) {
        if (magnitude1(H(k, k - 1)) <= smlnum) break;
        double tst = magnitude1(H(k - 1, k - 1)) + magnitude1(H(k, k));
        if (tst == 0.0) {
            if (k - 2 >= ilo) tst += real_magnitude(H(k - 1, k - 2));
            if (k + 1 <= ihi) tst += real_magnitude(H(k + 1, k));
        }
        if (real_magnitude(H(k, k - 1)) <= u * tst) {
            const double hk = magnitude1(H(k, k - 1)), hu = magnitude1(H(k - 1, k));
            const double dk = magnitude1(H(k, k)), dd = magnitude1(H(k - 1, k - 1) - H(k, k));
            const double ab = std::max(hk, hu), ba = std::min(hk, hu);
            const double aa = std::max(dk, dd), bb = std::min(dk, dd);
            const double s = aa + ab;
            if (ba * (ab / s) <= std::max(smlnum, u * (bb * (aa / s)))) break;
        }
    }
    return k;
}

// The loop over the active block ILO..IHI: a block of at most MAX_BLOCK rows at the bottom deflates
// (FINISH(l, i, i1, i2) records it), otherwise SWEEP(l, i, kdefl, i1, i2) runs one sweep on rows l..i,
// columns i1..i2 (the whole matrix when WANTT).  Returns 0, or the row i whose block reached the limit
// of 30 sweeps per row.
template <class Acc, class Sweep, class Finish>
int qr_iteration(bool wantt, int n, int ilo, int ihi, int max_block, double smlnum, double u, Acc H, Sweep sweep,
                 Finish finish) {
    const int nh = ihi - ilo + 1;
    const int itmax = kSchurSweepsPerRow * std::max(10, nh);
    int i1 = 1, i2 = n, kdefl = 0, i = ihi;
    while (i >= ilo) {
        int l = ilo;
        bool converged = false;
        for (int its = 0; its <= itmax; ++its) {
            l = deflation_row(l, i, ilo, ihi, smlnum, u, H);
            if (l > ilo) H(l, l - 1) = 0.0;
            if (l >= i - max_block + 1) {
                converged = true;
                break;
            }
            ++kdefl;
            if (!wantt) {
                i1 = l;
                i2 = i;
            }
            sweep(l, i, kdefl, i1, i2);
        }
        if (!converged) return i;
        finish(l, i, i1, i2);
        kdefl = 0;
        i = l - 1;
    }
    return 0;
}

} // namespace zek

#endif
