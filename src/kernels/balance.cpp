// Balancing of a real or complex matrix ("F08NHF/DGEBAL", "F08NVF/ZGEBAL"): permutations that isolate
// eigenvalues, then scaling by powers of 2.
//
// Permutation: a row whose off-diagonal part within the active columns is zero holds an eigenvalue of
// its own (its diagonal element); it is exchanged with the last active row (and the columns alike) and
// the active part shrinks from below.  Then a column whose off-diagonal part within the active rows is
// zero is exchanged with the first active column and the active part shrinks from above.  The result
// is upper triangular outside rows and columns ILO..IHI, so the Schur iterations need only work there.
// Scaling: each active row and column pair is scaled by a power of 2 (exact in binary arithmetic)
// until the off-diagonal 1-norms of row and column are within a factor of 2 of each other, at most 200
// passes; scale factors are held back where they would leave the safe range.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>

#include "frame/machine.h"
#include "kernels/schur.h"

namespace zek {

namespace {

template <class T> void exchange(int n, T *a, std::ptrdiff_t ld, int j, int m, int k, int l) {
    if (j == m) return;
    for (int i = 0; i <= l; ++i) std::swap(a[i + j * ld], a[i + m * ld]);
    for (int i = k; i < n; ++i) std::swap(a[j + i * ld], a[m + i * ld]);
}

// Rows (columns when `by_column`) j in [k, l] whose off-diagonal part in [k, l] (columns, resp. rows)
// is zero: returns the last such j for rows, the first for columns, or -1.
template <class T> int isolated(const T *a, std::ptrdiff_t ld, int k, int l, bool by_column) {
    for (int step = 0; step <= l - k; ++step) {
        const int j = by_column ? k + step : l - step;
        bool zero = true;
        for (int i = k; i <= l && zero; ++i)
            if (i != j) zero = (by_column ? a[i + j * ld] : a[j + i * ld]) == T(0.0);
        if (zero) return j;
    }
    return -1;
}

template <class T> void balance_impl(char job, int n, T *a, int lda, int *ilo, int *ihi, double *scale) {
    const std::ptrdiff_t ld = lda;
    auto A = [&](int i, int j) -> T & { return a[i + j * ld]; };
    int k = 0, l = n - 1;
    for (int i = 0; i < n; ++i) scale[i] = 1.0;
    if (job == 'P' || job == 'B') {
        // Each exchange shrinks the active part, so there are at most n of them.
        for (int j; l > k && (j = isolated(a, ld, k, l, false)) >= 0; --l) {
            scale[l] = j + 1;
            exchange(n, a, ld, j, l, k, l);
        }
        for (int j; l > k && (j = isolated(a, ld, k, l, true)) >= 0; ++k) {
            scale[k] = j + 1;
            exchange(n, a, ld, j, k, k, l);
        }
    }
    *ilo = k + 1;
    *ihi = l + 1;
    if (n == 0) {
        *ilo = 1;
        *ihi = 0;
    }
    for (int i = k; i <= l; ++i) scale[i] = 1.0;
    if (job != 'S' && job != 'B') return;
    const double sfmin1 = safe_minimum() / (2.0 * precision());
    const double sfmax1 = 1.0 / sfmin1;
    const double sfmin2 = sfmin1 * 2.0, sfmax2 = 1.0 / sfmin2;
    bool noconv = true;
    for (int pass = 0; noconv && pass < 200; ++pass) {
        noconv = false;
        for (int i = k; i <= l; ++i) {
            double c = 0.0, r = 0.0, ca = 0.0, ra = 0.0;
            for (int j = k; j <= l; ++j) {
                if (j == i) continue;
                c += std::abs(A(j, i));
                r += std::abs(A(i, j));
            }
            for (int j = 0; j <= l; ++j) ca = std::max(ca, std::abs(A(j, i)));
            for (int j = k; j < n; ++j) ra = std::max(ra, std::abs(A(i, j)));
            if (!(c > 0.0) || !(r > 0.0) || !std::isfinite(c + r)) continue;
            double g = r / 2.0, f = 1.0;
            const double s = c + r;
            while (c < g && std::max({f, c, ca}) < sfmax2 && std::min({r, g, ra}) > sfmin2) {
                f *= 2.0;
                c *= 2.0;
                ca *= 2.0;
                r /= 2.0;
                g /= 2.0;
                ra /= 2.0;
            }
            g = c / 2.0;
            while (g >= r && std::max(r, ra) < sfmax2 && std::min({f, c, g, ca}) > sfmin2) {
                f /= 2.0;
                c /= 2.0;
                g /= 2.0;
                ca /= 2.0;
                r *= 2.0;
                ra *= 2.0;
            }
            if (c + r >= 0.95 * s) continue;
            if (f < 1.0 && scale[i] < 1.0 && f * scale[i] <= sfmin1) continue;
            if (f > 1.0 && scale[i] > 1.0 && scale[i] >= sfmax1 / f) continue;
            scale[i] *= f;
            noconv = true;
            for (int j = k; j < n; ++j) A(i, j) *= 1.0 / f;
            for (int j = 0; j <= l; ++j) A(j, i) *= f;
        }
    }
}

} // namespace

void balance(char job, int n, double *a, int lda, int *ilo, int *ihi, double *scale) {
    balance_impl(job, n, a, lda, ilo, ihi, scale);
}
void balance(char job, int n, ComplexD *a, int lda, int *ilo, int *ihi, double *scale) {
    balance_impl(job, n, a, lda, ilo, ihi, scale);
}

void balance_scale(int n, double *a, int lda, double *scale) {
    int ilo = 0, ihi = 0;
    balance_impl('S', n, a, lda, &ilo, &ihi, scale);
}
void balance_scale(int n, ComplexD *a, int lda, double *scale) {
    int ilo = 0, ihi = 0;
    balance_impl('S', n, a, lda, &ilo, &ihi, scale);
}

} // namespace zek
