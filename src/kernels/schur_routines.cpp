// The published eigenproblem routines of chapter F08 over the Schur iterations: the real and complex
// Schur forms of a Hessenberg matrix (F08PEF/DHSEQR, F08PSF/ZHSEQR), the reordering of a complex Schur
// form (F08QTF/ZTREXC) and the eigenvalues of a symmetric tridiagonal matrix by bisection
// (F08JJF/DSTEBZ).  Each is a master with a selector and its stubs; a bad argument sets INFO to minus
// its position and goes through the silent route.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "frame/machine.h"
#include "kernels/factor_support.h"
#include "kernels/kernel_types.h"
#include "kernels/schur.h"
#include "zek2/f08.h"

namespace zek {

namespace {

// The checks the two Schur-form routines share; returns INFO.
int hseqr_arguments(char job, char compz, int n, int ilo, int ihi, int ldh, int ldz, int lwork) {
    const bool wantz = compz == 'I' || compz == 'V';
    if (job != 'E' && job != 'S') return -1;
    if (compz != 'N' && !wantz) return -2;
    if (n < 0) return -3;
    if (ilo < 1 || ilo > std::max(1, n)) return -4;
    if (ihi < std::min(ilo, n) || ihi > n) return -5;
    if (ldh < std::max(1, n)) return -7;
    return ldz < 1 || (wantz && ldz < std::max(1, n)) ? -100 : (lwork < std::max(1, n) && lwork != -1 ? -200 : 0);
}

template <class T> void identity(int n, T *z, int ldz) {
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) z[i + static_cast<std::ptrdiff_t>(j) * ldz] = i == j ? T(1.0) : T(0.0);
}

// Below the first subdiagonal everything is zero on return.
template <class T> void clear_below(int n, T *h, int ldh) {
    for (int j = 0; j + 2 < n; ++j)
        for (int i = j + 2; i < n; ++i) h[i + static_cast<std::ptrdiff_t>(j) * ldh] = T(0.0);
}

} // namespace

} // namespace zek

using zek::ComplexD;

extern "C" void f08pef_ENTRY(int, const char *job, const char *compz, const int *n, const int *ilo, const int *ihi,
                             double *h, const int *ldh, double *wr, double *wi, double *z, const int *ldz, double *work,
                             const int *lwork, int *info, int, int) {
    const char j = zek::option_letter(job), c = zek::option_letter(compz);
    int check = zek::hseqr_arguments(j, c, *n, *ilo, *ihi, *ldh, *ldz, *lwork);
    if (check == -100) check = -11;
    if (check == -200) check = -13;
    *info = check;
    if (check != 0) {
        zek::silent_report("F08PEF/DHSEQR", -check);
        return;
    }
    work[0] = std::max(1, *n);
    if (*lwork == -1 || *n == 0) return;
    const std::ptrdiff_t ld = *ldh;
    for (int i = 0; i < *n; ++i)
        if (i + 1 < *ilo || i + 1 > *ihi) {
            wr[i] = h[i + i * ld];
            wi[i] = 0.0;
        }
    if (c == 'I') zek::identity(*n, z, *ldz);
    *info = zek::hessenberg_qr(j == 'S', c != 'N', *n, *ilo, *ihi, h, *ldh, wr, wi, *ilo, *ihi, z, *ldz);
    if (*n > 2 && (j == 'S' || *info != 0)) zek::clear_below(*n, h, *ldh);
}

extern "C" void F08PEF(const char *job, const char *compz, const int *n, const int *ilo, const int *ihi, double *h,
                       const int *ldh, double *wr, double *wi, double *z, const int *ldz, double *work,
                       const int *lwork, int *info, int job_len, int compz_len) {
    f08pef_ENTRY(0, job, compz, n, ilo, ihi, h, ldh, wr, wi, z, ldz, work, lwork, info, job_len, compz_len);
}

extern "C" void f08psf_ENTRY(int, const char *job, const char *compz, const int *n, const int *ilo, const int *ihi,
                             double *h, const int *ldh, double *w, double *z, const int *ldz, double *work,
                             const int *lwork, int *info, int, int) {
    const char j = zek::option_letter(job), c = zek::option_letter(compz);
    int check = zek::hseqr_arguments(j, c, *n, *ilo, *ihi, *ldh, *ldz, *lwork);
    if (check == -100) check = -10;
    if (check == -200) check = -12;
    *info = check;
    if (check != 0) {
        zek::silent_report("F08PSF/ZHSEQR", -check);
        return;
    }
    work[0] = std::max(1, *n);
    work[1] = 0.0;
    if (*lwork == -1 || *n == 0) return;
    ComplexD *hc = reinterpret_cast<ComplexD *>(h), *wc = reinterpret_cast<ComplexD *>(w);
    ComplexD *zc = reinterpret_cast<ComplexD *>(z);
    const std::ptrdiff_t ld = *ldh;
    for (int i = 0; i < *n; ++i)
        if (i + 1 < *ilo || i + 1 > *ihi) wc[i] = hc[i + i * ld];
    if (c == 'I') zek::identity(*n, zc, *ldz);
    *info = zek::hessenberg_qr(j == 'S', c != 'N', *n, *ilo, *ihi, hc, *ldh, wc, *ilo, *ihi, zc, *ldz);
    if (*n > 2 && (j == 'S' || *info != 0)) zek::clear_below(*n, hc, *ldh);
}

extern "C" void F08PSF(const char *job, const char *compz, const int *n, const int *ilo, const int *ihi, double *h,
                       const int *ldh, double *w, double *z, const int *ldz, double *work, const int *lwork, int *info,
                       int job_len, int compz_len) {
    f08psf_ENTRY(0, job, compz, n, ilo, ihi, h, ldh, w, z, ldz, work, lwork, info, job_len, compz_len);
}

namespace zek {

// The library's own callers reach the two Schur-form masters with selector 1.
void F08PEF_library(const char *job, const char *compz, const int *n, const int *ilo, const int *ihi, double *h,
                    const int *ldh, double *wr, double *wi, double *z, const int *ldz, double *work, const int *lwork,
                    int *info) {
    f08pef_ENTRY(1, job, compz, n, ilo, ihi, h, ldh, wr, wi, z, ldz, work, lwork, info, 1, 1);
}
void F08PSF_library(const char *job, const char *compz, const int *n, const int *ilo, const int *ihi, double *h,
                    const int *ldh, double *w, double *z, const int *ldz, double *work, const int *lwork, int *info) {
    f08psf_ENTRY(1, job, compz, n, ilo, ihi, h, ldh, w, z, ldz, work, lwork, info, 1, 1);
}

} // namespace zek

// ---- Reordering of a complex Schur form ----------------------------------------------------------

extern "C" void f08qtf_ENTRY(int, const char *compq, const int *n, double *t, const int *ldt, double *q,
                             const int *ldq, const int *ifst, const int *ilst, int *info, int) {
    const char c = zek::option_letter(compq);
    const bool wantq = c == 'V';
    *info = 0;
    if (c != 'N' && !wantq) *info = -1;
    else if (*n < 0) *info = -2;
    else if (*ldt < std::max(1, *n)) *info = -4;
    else if (*ldq < 1 || (wantq && *ldq < std::max(1, *n))) *info = -6;
    else if ((*ifst < 1 || *ifst > *n) && *n > 0) *info = -7;
    else if ((*ilst < 1 || *ilst > *n) && *n > 0) *info = -8;
    if (*info != 0) {
        zek::silent_report("F08QTF/ZTREXC", -*info);
        return;
    }
    if (*n <= 1 || *ifst == *ilst) return;
    ComplexD *tc = reinterpret_cast<ComplexD *>(t), *qc = reinterpret_cast<ComplexD *>(q);
    const std::ptrdiff_t lt = *ldt, lq = *ldq;
    auto T = [&](int i, int j) -> ComplexD & { return tc[(i - 1) + (j - 1) * lt]; };
    // Adjacent swaps: the rotation that takes (T(k,k+1), T(k+1,k+1) - T(k,k)) to (r, 0) exchanges the
    // two diagonal elements.
    const int step = *ifst < *ilst ? 1 : -1;
    for (int k = *ifst; k != *ilst; k += step) {
        const int p = step > 0 ? k : k - 1;
        const ComplexD t11 = T(p, p), t22 = T(p + 1, p + 1);
        const ComplexD f = T(p, p + 1), g = t22 - t11;
        // c real, s complex: c*f + s*g = r, -conj(s)*f + c*g = 0.
        const double fa = std::abs(f), ga = std::abs(g);
        double cs = 1.0;
        ComplexD sn = 0.0;
        if (ga != 0.0) {
            if (fa == 0.0) {
                cs = 0.0;
                sn = std::conj(g) / ga;
            } else {
                const double norm = std::hypot(fa, ga);
                cs = fa / norm;
                sn = (f / fa) * std::conj(g) / norm;
            }
        }
        // Rows p, p+1 from column p+2, columns p, p+1 above row p.
        for (int j = p + 2; j <= *n; ++j) {
            const ComplexD x = T(p, j), y = T(p + 1, j);
            T(p, j) = cs * x + sn * y;
            T(p + 1, j) = cs * y - std::conj(sn) * x;
        }
        for (int i = 1; i < p; ++i) {
            const ComplexD x = T(i, p), y = T(i, p + 1);
            T(i, p) = cs * x + std::conj(sn) * y;
            T(i, p + 1) = cs * y - sn * x;
        }
        T(p, p) = t22;
        T(p + 1, p + 1) = t11;
        if (wantq)
            for (int i = 0; i < *n; ++i) {
                ComplexD &x = qc[i + (p - 1) * lq], &y = qc[i + p * lq];
                const ComplexD xv = x, yv = y;
                x = cs * xv + std::conj(sn) * yv;
                y = cs * yv - sn * xv;
            }
    }
}

extern "C" void F08QTF(const char *compq, const int *n, double *t, const int *ldt, double *q, const int *ldq,
                       const int *ifst, const int *ilst, int *info, int compq_len) {
    f08qtf_ENTRY(0, compq, n, t, ldt, q, ldq, ifst, ilst, info, compq_len);
}

// ---- Eigenvalues of a symmetric tridiagonal matrix by bisection ----------------------------------

namespace zek {

namespace {

// Eigenvalues of block rows lo..hi below X (Sturm sequence of the LDL' factorisation, pivots kept
// away from zero by PIVMIN).
int sturm_count(int lo, int hi, const double *d, const double *e, double x, double pivmin) {
    int count = 0;
    double q = d[lo] - x;
    if (std::fabs(q) < pivmin) q = -pivmin;
    if (q < 0.0) ++count;
    for (int j = lo + 1; j <= hi; ++j) {
        q = d[j] - x - e[j - 1] * e[j - 1] / q;
        if (std::fabs(q) < pivmin) q = -pivmin;
        if (q < 0.0) ++count;
    }
    return count;
}

} // namespace

} // namespace zek

extern "C" void f08jjf_ENTRY(int, const char *range, const char *order, const int *n, double vl, double vu,
                             const int *il, const int *iu, double abstol, const double *d, const double *e, int *m,
                             int *nsplit, double *w, int *iblock, int *isplit, double *, int *, int *info, int, int) {
    const char r = zek::option_letter(range), o = zek::option_letter(order);
    const int nn = *n;
    *info = 0;
    if (r != 'A' && r != 'V' && r != 'I') *info = -1;
    else if (o != 'B' && o != 'E') *info = -2;
    else if (nn < 0) *info = -3;
    else if (r == 'V' && !(vl < vu)) *info = -5;
    else if (r == 'I' && (*il < 1 || *il > std::max(1, nn))) *info = -6;
    else if (r == 'I' && (*iu < std::min(nn, *il) || *iu > nn)) *info = -7;
    if (*info != 0) {
        zek::silent_report("F08JJF/DSTEBZ", -*info);
        return;
    }
    *m = 0;
    *nsplit = 0;
    if (nn == 0) return;
    const double ulp = 2.0 * zek::precision(), safmin = zek::safe_minimum();
    // Blocks: a negligible off-diagonal element splits the matrix.
    double emax = 0.0;
    for (int j = 0; j + 1 < nn; ++j) emax = std::max(emax, e[j] * e[j]);
    for (int j = 0; j < nn; ++j)
        if (!std::isfinite(d[j]) || (j + 1 < nn && !std::isfinite(e[j]))) {
            *info = 4;
            return;
        }
    const double pivmin = safmin * std::max(1.0, emax);
    std::vector<double> eff(nn > 1 ? nn - 1 : 1, 0.0);
    for (int j = 0; j + 1 < nn; ++j) {
        const double t = e[j] * e[j];
        if (std::fabs(d[j] * d[j + 1]) * ulp * ulp + safmin >= t) {
            isplit[(*nsplit)++] = j + 1;
        } else {
            eff[j] = e[j];
        }
    }
    isplit[(*nsplit)++] = nn;
    // Gershgorin bounds of the whole matrix give the scale of the tolerance.
    double gl = d[0], gu = d[0];
    for (int j = 0; j < nn; ++j) {
        const double off = (j > 0 ? std::fabs(eff[j - 1]) : 0.0) + (j + 1 < nn ? std::fabs(eff[j]) : 0.0);
        gl = std::min(gl, d[j] - off);
        gu = std::max(gu, d[j] + off);
    }
    const double tnorm = std::max(std::fabs(gl), std::fabs(gu));
    gl -= 2.0 * tnorm * ulp * nn + 2.0 * pivmin;
    gu += 2.0 * tnorm * ulp * nn + 2.0 * pivmin;
    const double atoli = abstol <= 0.0 ? ulp * tnorm : abstol;
    struct Value {
        double w;
        int block;
    };
    std::vector<Value> found;
    int lo = 0;
    for (int b = 0; b < *nsplit; ++b) {
        const int hi = isplit[b] - 1;
        const int size = hi - lo + 1;
        // The k-th value of the block (k = 1..size) by bisection of [gl, gu] on the block's count.
        for (int k = 1; k <= size; ++k) {
            double a = gl, c = gu;
            for (int it = 0; it < 200; ++it) {
                const double mid = 0.5 * (a + c);
                if (c - a <= std::max({atoli, 2.0 * ulp * std::max(std::fabs(a), std::fabs(c)), pivmin})) break;
                if (zek::sturm_count(lo, hi, d, eff.data(), mid, pivmin) >= k) c = mid;
                else a = mid;
            }
            found.push_back({0.5 * (a + c), b + 1});
        }
        lo = hi + 1;
    }
    // The selection.
    std::vector<Value> keep;
    if (r == 'I') {
        std::vector<Value> sorted = found;
        std::stable_sort(sorted.begin(), sorted.end(), [](const Value &x, const Value &y) { return x.w < y.w; });
        const double low = *il > 1 ? sorted[*il - 2].w : -std::numeric_limits<double>::infinity();
        const double high = sorted[*iu - 1].w;
        int taken = 0;
        for (const Value &v : found)
            if (v.w > low && v.w <= high) ++taken;
        if (taken != *iu - *il + 1) {
            // Ties across the ends: take exactly the ranks asked for.
            keep.assign(sorted.begin() + (*il - 1), sorted.begin() + *iu);
            std::stable_sort(keep.begin(), keep.end(), [](const Value &x, const Value &y) { return x.block < y.block; });
        } else {
            for (const Value &v : found)
                if (v.w > low && v.w <= high) keep.push_back(v);
        }
    } else {
        for (const Value &v : found)
            if (r == 'A' || (v.w > vl && v.w <= vu)) keep.push_back(v);
    }
    if (o == 'E')
        std::stable_sort(keep.begin(), keep.end(), [](const Value &x, const Value &y) { return x.w < y.w; });
    *m = static_cast<int>(keep.size());
    for (int i = 0; i < *m; ++i) {
        w[i] = keep[i].w;
        iblock[i] = keep[i].block;
    }
}

extern "C" void F08JJF(const char *range, const char *order, const int *n, double vl, double vu, const int *il,
                       const int *iu, double abstol, const double *d, const double *e, int *m, int *nsplit, double *w,
                       int *iblock, int *isplit, double *work, int *iwork, int *info, int range_len, int order_len) {
    f08jjf_ENTRY(0, range, order, n, vl, vu, il, iu, abstol, d, e, m, nsplit, w, iblock, isplit, work, iwork, info,
                 range_len, order_len);
}

// ---- The inner iterations, exported for callers that manage the active block themselves ----------

extern "C" void F08PEZ(const int *wantt, const int *wantz, const int *n, const int *ilo, const int *ihi, double *h,
                       const int *ldh, double *wr, double *wi, const int *iloz, const int *ihiz, double *z,
                       const int *ldz, int *info) {
    *info = zek::hessenberg_qr(*wantt != 0, *wantz != 0, *n, *ilo, *ihi, h, *ldh, wr, wi, *iloz, *ihiz, z, *ldz);
}

extern "C" void F08PSZ(const int *wantt, const int *wantz, const int *n, const int *ilo, const int *ihi, double *h,
                       const int *ldh, double *w, const int *iloz, const int *ihiz, double *z, const int *ldz,
                       int *info) {
    *info = zek::hessenberg_qr(*wantt != 0, *wantz != 0, *n, *ilo, *ihi, reinterpret_cast<ComplexD *>(h), *ldh,
                               reinterpret_cast<ComplexD *>(w), *iloz, *ihiz, reinterpret_cast<ComplexD *>(z), *ldz);
}
