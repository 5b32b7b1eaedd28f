// Reordering of a real Schur form (F08QFF/DTREXC) and its block swap (F08QFZ, q16268).
//
// Two adjacent diagonal blocks T11 (N1 by N1) and T22 (N2 by N2), N1, N2 in {1, 2}, are exchanged by
// the direct swapping method: X solves T11*X - X*T22 = s*T12, the columns of [-X; s*I] span the
// invariant subspace of T22, and the orthogonal factor of their QR factorisation moves T22 to the top.
// The swap is taken only if it is stable: the block that should vanish is below
// max(10*eps*|D|max, tiny) and the transformed block recomposes the original one to the same bound;
// otherwise T and Q are left as they were and INFO = 1.  Swapped 2 by 2 blocks are put back into
// standard form (equal diagonal, off-diagonals of opposite sign).
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "frame/machine.h"
#include "kernels/factor_support.h"
#include "kernels/householder.h"
#include "kernels/schur.h"
#include "zek2/f08.h"

namespace zek {

namespace {

// Solves the small Sylvester equation T11*X - X*T22 = s*B (n1, n2 <= 2) by Gaussian elimination with
// complete pivoting on its Kronecker form; pivots below smin are raised to smin.  Returns false if the
// solution is not finite.
bool small_sylvester(int n1, int n2, const double *t11, int l1, const double *t22, int l2, const double *b, int lb,
                     double smin, double *x, double *scale) {
    const int m = n1 * n2;
    double k[16], r[4];
    int perm[4];
    for (int q = 0; q < m; ++q) {
        const int i = q % n1, j = q / n1;
        r[q] = b[i + static_cast<std::ptrdiff_t>(j) * lb];
        perm[q] = q;
        for (int p = 0; p < m; ++p) {
            const int ip = p % n1, jp = p / n1;
            double v = 0.0;
            if (jp == j) v += t11[i + static_cast<std::ptrdiff_t>(ip) * l1];
            if (ip == i) v -= t22[jp + static_cast<std::ptrdiff_t>(j) * l2];
            k[q + 4 * p] = v;
        }
    }
    *scale = 1.0;
    for (int c = 0; c < m; ++c) {
        int pr = c, pc = c;
        double big = -1.0;
        for (int p = c; p < m; ++p)
            for (int q = c; q < m; ++q)
                if (std::fabs(k[q + 4 * p]) > big) {
                    big = std::fabs(k[q + 4 * p]);
                    pr = q;
                    pc = p;
                }
        if (pr != c) {
            for (int p = 0; p < m; ++p) std::swap(k[c + 4 * p], k[pr + 4 * p]);
            std::swap(r[c], r[pr]);
        }
        if (pc != c) {
            for (int q = 0; q < m; ++q) std::swap(k[q + 4 * c], k[q + 4 * pc]);
            std::swap(perm[c], perm[pc]);
        }
        if (!(std::fabs(k[c + 4 * c]) >= smin)) k[c + 4 * c] = smin;
        for (int q = c + 1; q < m; ++q) {
            const double f = k[q + 4 * c] / k[c + 4 * c];
            for (int p = c + 1; p < m; ++p) k[q + 4 * p] -= f * k[c + 4 * p];
            r[q] -= f * r[c];
        }
    }
    double y[4];
    for (int c = m - 1; c >= 0; --c) {
        double v = r[c];
        for (int p = c + 1; p < m; ++p) v -= k[c + 4 * p] * y[p];
        y[c] = v / k[c + 4 * c];
    }
    for (int c = 0; c < m; ++c) {
        if (!std::isfinite(y[c])) return false;
        x[perm[c]] = y[c];
    }
    return true;
}

// Rows r..r+1 (from column c0) and columns r..r+1 (rows 0..r0-1) of T, and columns r..r+1 of Q, by the
// plane rotation [cs sn; -sn cs] of a standardised 2 by 2 block.
void rotate_pair(int n, double *t, std::ptrdiff_t lt, double *q, std::ptrdiff_t lq, bool wantq, int r, int c0,
                 double cs, double sn) {
    for (int j = c0; j < n; ++j) {
        const double a = t[r + j * lt], b = t[r + 1 + j * lt];
        t[r + j * lt] = cs * a + sn * b;
        t[r + 1 + j * lt] = cs * b - sn * a;
    }
    for (int i = 0; i < r; ++i) {
        const double a = t[i + r * lt], b = t[i + (r + 1) * lt];
        t[i + r * lt] = cs * a + sn * b;
        t[i + (r + 1) * lt] = cs * b - sn * a;
    }
    if (wantq)
        for (int i = 0; i < n; ++i) {
            const double a = q[i + r * lq], b = q[i + (r + 1) * lq];
            q[i + r * lq] = cs * a + sn * b;
            q[i + (r + 1) * lq] = cs * b - sn * a;
        }
}

// C := op(A)*op(B) for blocks of order nb <= 4 stored with leading dimension 4.
void small_product(int nb, const double *a, bool ta, const double *b, bool tb, double *c) {
    for (int j = 0; j < nb; ++j)
        for (int i = 0; i < nb; ++i) {
            double s = 0.0;
            for (int k = 0; k < nb; ++k) s += (ta ? a[k + 4 * i] : a[i + 4 * k]) * (tb ? b[j + 4 * k] : b[k + 4 * j]);
            c[i + 4 * j] = s;
        }
}

} // namespace

// Swaps the adjacent blocks of orders n1, n2 starting at row j1 (1-based); returns 1 if the swap would
// be unstable (nothing changed), else 0.
int swap_schur_blocks(bool wantq, int n, double *t, int ldt, double *q, int ldq, int j1, int n1, int n2) {
    if (n <= 0 || n1 <= 0 || n2 <= 0 || j1 + n1 > n) return 0;
    const std::ptrdiff_t lt = ldt, lq = ldq;
    const int p = j1 - 1, nb = n1 + n2;
    if (nb > 4 || p + nb > n) return 1;
    if (n1 == 1 && n2 == 1) {
        const double t11 = t[p + p * lt], t22 = t[p + 1 + (p + 1) * lt];
        const double f = t[p + (p + 1) * lt], g = t22 - t11;
        if (!std::isfinite(f) || !std::isfinite(g)) return 1;
        const double h = std::hypot(f, g);
        const double cs = h == 0.0 ? 1.0 : f / h, sn = h == 0.0 ? 0.0 : g / h;
        rotate_pair(n, t, lt, q, lq, wantq, p, p + 2, cs, sn);
        t[p + p * lt] = t22;
        t[p + 1 + (p + 1) * lt] = t11;
        return 0;
    }
    double d[16], orig[16];
    double dnorm = 0.0;
    for (int j = 0; j < nb; ++j)
        for (int i = 0; i < nb; ++i) {
            d[i + 4 * j] = orig[i + 4 * j] = t[p + i + (p + j) * lt];
            dnorm = std::max(dnorm, std::fabs(d[i + 4 * j]));
        }
    if (!std::isfinite(dnorm)) return 1;
    const double eps = std::numeric_limits<double>::epsilon();
    const double smlnum = std::numeric_limits<double>::min() / eps;
    const double thresh = std::max(10.0 * eps * dnorm, smlnum);
    double x[4], scale = 1.0;
    if (!small_sylvester(n1, n2, d, 4, d + n1 + 4 * n1, 4, d + 4 * n1, 4, std::max(eps * dnorm, smlnum), x, &scale))
        return 1;
    // V = [-X; s*I] (nb by n2) and its orthogonal factor U (nb by nb), formed explicitly.
    double v[16], tau[2], work[4], u[16];
    for (int j = 0; j < n2; ++j) {
        for (int i = 0; i < n1; ++i) v[i + 4 * j] = -x[i + n1 * j];
        for (int i = 0; i < n2; ++i) v[n1 + i + 4 * j] = i == j ? scale : 0.0;
    }
    geqr2(nb, n2, v, 4, tau, work);
    for (int j = 0; j < nb; ++j)
        for (int i = 0; i < nb; ++i) u[i + 4 * j] = i == j ? 1.0 : 0.0;
    orm2r('L', 'N', nb, nb, n2, v, 4, tau, u, 4, work);
    // D := U' D U.
    double w[16];
    small_product(nb, d, false, u, false, w);
    small_product(nb, u, true, w, false, d);
    double lower = 0.0;
    for (int j = 0; j < n2; ++j)
        for (int i = n2; i < nb; ++i) lower = std::max(lower, std::fabs(d[i + 4 * j]));
    if (!(lower <= thresh)) return 1;
    for (int j = 0; j < n2; ++j)
        for (int i = n2; i < nb; ++i) d[i + 4 * j] = 0.0;
    // U D U' must give back the original block.
    double back = 0.0, r[16];
    small_product(nb, d, false, u, true, w);
    small_product(nb, u, false, w, false, r);
    for (int i = 0; i < 16; ++i)
        if (i % 4 < nb && i / 4 < nb) back = std::max(back, std::fabs(r[i] - orig[i]));
    if (!(back <= thresh)) return 1;
    // Accepted: the block, the rows to its right, the columns above it and Q.
    double row[4];
    for (int j = p + nb; j < n; ++j) {
        for (int i = 0; i < nb; ++i) {
            double s = 0.0;
            for (int k = 0; k < nb; ++k) s += u[k + 4 * i] * t[p + k + j * lt];
            row[i] = s;
        }
        for (int i = 0; i < nb; ++i) t[p + i + j * lt] = row[i];
    }
    for (int i = 0; i < p; ++i) {
        for (int j = 0; j < nb; ++j) {
            double s = 0.0;
            for (int k = 0; k < nb; ++k) s += t[i + (p + k) * lt] * u[k + 4 * j];
            row[j] = s;
        }
        for (int j = 0; j < nb; ++j) t[i + (p + j) * lt] = row[j];
    }
    if (wantq)
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < nb; ++j) {
                double s = 0.0;
                for (int k = 0; k < nb; ++k) s += q[i + (p + k) * lq] * u[k + 4 * j];
                row[j] = s;
            }
            for (int j = 0; j < nb; ++j) q[i + (p + j) * lq] = row[j];
        }
    for (int j = 0; j < nb; ++j)
        for (int i = 0; i < nb; ++i) t[p + i + (p + j) * lt] = d[i + 4 * j];
    // Standard form for whichever of the moved blocks is 2 by 2.
    for (int part = 0; part < 2; ++part) {
        const int size = part == 0 ? n2 : n1, r = part == 0 ? p : p + n2;
        if (size != 2) continue;
        double a = t[r + r * lt], b = t[r + (r + 1) * lt], c = t[r + 1 + r * lt], e = t[r + 1 + (r + 1) * lt];
        double w1r, w1i, w2r, w2i, cs, sn;
        standardise_2x2(&a, &b, &c, &e, &w1r, &w1i, &w2r, &w2i, &cs, &sn);
        t[r + r * lt] = a;
        t[r + (r + 1) * lt] = b;
        t[r + 1 + r * lt] = c;
        t[r + 1 + (r + 1) * lt] = e;
        rotate_pair(n, t, lt, q, lq, wantq, r, r + 2, cs, sn);
    }
    return 0;
}

} // namespace zek

extern "C" void F08QFZ(const int *wantq, const int *n, double *t, const int *ldt, double *q, const int *ldq,
                       const int *j1, const int *n1, const int *n2, double *, int *info) {
    *info = zek::swap_schur_blocks(*wantq != 0, *n, t, *ldt, q, *ldq, *j1, *n1, *n2);
}

extern "C" void f08qff_ENTRY(int, const char *compq, const int *n, double *t, const int *ldt, double *q,
                             const int *ldq, int *ifst, int *ilst, double *, int *info, int) {
    const char c = zek::option_letter(compq);
    const bool wantq = c == 'V';
    const int nn = *n;
    *info = 0;
    if (c != 'N' && !wantq) *info = -1;
    else if (nn < 0) *info = -2;
    else if (*ldt < std::max(1, nn)) *info = -4;
    else if (*ldq < 1 || (wantq && *ldq < std::max(1, nn))) *info = -6;
    else if (*ifst < 1 || *ifst > std::max(1, nn)) *info = -7;
    else if (*ilst < 1 || *ilst > std::max(1, nn)) *info = -8;
    if (*info != 0) {
        zek::silent_report("F08QFF/DTREXC", -*info);
        return;
    }
    if (nn <= 1) return;
    const std::ptrdiff_t lt = *ldt;
    auto sub = [&](int i) { return t[i + (i - 1) * lt]; }; // T(i+1, i) in 1-based terms
    for (int j = 0; j < nn; ++j)
        for (int i = 0; i <= std::min(j + 1, nn - 1); ++i)
            if (!std::isfinite(t[i + j * lt])) {
                *info = 1;
                return;
            }
    auto swap = [&](int j1, int n1, int n2) {
        return zek::swap_schur_blocks(wantq, nn, t, *ldt, q, *ldq, j1, n1, n2);
    };
    // 1-based: is there a 2 by 2 block starting at row i?
    auto pair_at = [&](int i) { return i < nn && sub(i) != 0.0; };
    int first = *ifst, last = *ilst;
    if (first > 1 && pair_at(first - 1)) --first;
    int nbf = pair_at(first) ? 2 : 1;
    if (last > 1 && pair_at(last - 1)) --last;
    const int nbl = pair_at(last) ? 2 : 1;
    *ifst = first;
    if (first == last) {
        *ilst = last;
        return;
    }
    int here = first;
    bool failed = false;
    if (first < last) {
        if (nbf == 2 && nbl == 1) --last;
        if (nbf == 1 && nbl == 2) ++last;
        // Each pass moves the block at least one row down; at most nn passes.
        for (int guard = 0; here < last && guard <= nn; ++guard) {
            if (nbf != 3) {
                const int nbnext = here + nbf + 1 <= nn && pair_at(here + nbf) ? 2 : 1;
                if (swap(here, nbf, nbnext) != 0) {
                    failed = true;
                    break;
                }
                here += nbnext;
                if (nbf == 2 && !pair_at(here)) nbf = 3;
            } else {
                // A 2 by 2 block that split into two 1 by 1 blocks moves on as two.
                int nbnext = here + 3 <= nn && pair_at(here + 2) ? 2 : 1;
                if (swap(here + 1, 1, nbnext) != 0) {
                    failed = true;
                    break;
                }
                if (nbnext == 1) {
                    swap(here, 1, 1);
                    ++here;
                } else {
                    if (!pair_at(here + 1)) nbnext = 1;
                    if (nbnext == 2) {
                        if (swap(here, 1, 2) != 0) {
                    failed = true;
                    break;
                }
                    } else {
                        swap(here, 1, 1);
                        swap(here + 1, 1, 1);
                    }
                    here += 2;
                }
            }
        }
    } else {
        for (int guard = 0; here > last && guard <= nn; ++guard) {
            if (nbf != 3) {
                const int nbnext = here >= 3 && pair_at(here - 2) ? 2 : 1;
                if (swap(here - nbnext, nbnext, nbf) != 0) {
                    failed = true;
                    break;
                }
                here -= nbnext;
                if (nbf == 2 && !pair_at(here)) nbf = 3;
            } else {
                int nbnext = here >= 3 && pair_at(here - 2) ? 2 : 1;
                if (swap(here - nbnext, nbnext, 1) != 0) {
                    failed = true;
                    break;
                }
                if (nbnext == 1) {
                    swap(here, 1, 1);
                    --here;
                } else {
                    if (!pair_at(here - 1)) nbnext = 1;
                    if (nbnext == 2) {
                        if (swap(here - 1, 2, 1) != 0) {
                    failed = true;
                    break;
                }
                    } else {
                        swap(here, 1, 1);
                        swap(here - 1, 1, 1);
                    }
                    here -= 2;
                }
            }
        }
    }
    if (failed) *info = 1;
    *ilst = here;
}

extern "C" void F08QFF(const char *compq, const int *n, double *t, const int *ldt, double *q, const int *ldq, int *ifst,
                       int *ilst, double *work, int *info, int compq_len) {
    f08qff_ENTRY(0, compq, n, t, ldt, q, ldq, ifst, ilst, work, info, compq_len);
}
