// Incomplete Cholesky factorisation of a symmetric (or Hermitian) matrix in symmetric coordinate
// storage.  The elimination works on a copy of the matrix behind the input entries, with the diagonal
// in the first N places and the off-diagonal entries chained by row (the chain's end holding minus the
// row) and by column; the fill is kept by level or by size, and a pivot too small against its row is
// replaced.
#include "sparse/exits.h"
#include "sparse/sparse.h"

#include "frame/ifail.h"
#include "zek2/f11.h"

#include <algorithm>

namespace zek::sparse {
namespace {

template <class T>
int ic_core(int n, int nnz, T a[], int la, int irow[], int icol[], int lfill, double dtol, char mic, double dscale,
            char pstrat, int ipiv[], int istr[], int *nnzc, int *npivm, int iwork[]) {
    T *ra = a + nnz;
    int *ri = irow + nnz;
    int *ci = icol + nnz;
    const Index cap = static_cast<Index>(la) - nnz;
    const Index nn = n;
    int *rowhead = iwork;
    int *colhead = iwork + nn;
    int *count = iwork + 2 * nn;
    int *lnext = iwork + 3 * nn;
    int *lprev = iwork + 4 * nn;
    int *lhead = iwork + 5 * nn; // heads by count 0..n
    int *mark = iwork + 6 * nn + 1;
    int *rlink = iwork + 7 * nn + 1;
    int *level = rlink + cap;
    int *neighbours = istr;
    const bool markowitz = pstrat == 'M';
    Index m = nnz;
    *npivm = 0;

    // 1. The diagonal in the first N places, missing ones added as zeros, scaled by DSCALE.
    int *diagpos = lnext;
    std::fill(diagpos, diagpos + n, 0);
    for (Index p = 1; p <= m; ++p)
        if (ri[p - 1] == ci[p - 1]) diagpos[ri[p - 1] - 1] = static_cast<int>(p);
    for (int i = 1; i <= n; ++i) {
        if (diagpos[i - 1] != 0) continue;
        if (m + 1 > cap) return 1;
        ++m;
        ra[m - 1] = T(0.0);
        ri[m - 1] = ci[m - 1] = i;
        diagpos[i - 1] = static_cast<int>(m);
        // An input entry exchanged into this place later keeps level 0.
        if (lfill >= 0) level[m - nnz - 1] = 0;
    }
    for (int i = 1; i <= n; ++i) {
        const Index p = diagpos[i - 1];
        if (p == i) continue;
        std::swap(ra[p - 1], ra[i - 1]);
        std::swap(ri[p - 1], ri[i - 1]);
        std::swap(ci[p - 1], ci[i - 1]);
        if (ri[p - 1] == ci[p - 1]) diagpos[ri[p - 1] - 1] = static_cast<int>(p);
    }
    for (int i = 0; i < n; ++i) ra[i] = T(real_part(ra[i]) * dscale);

    // 2. Counts of the full symmetric rows and their lists (Markowitz), else the order.
    std::fill(count, count + n, 0);
    auto link = [&](int r) {
        const int c = count[r - 1];
        lnext[r - 1] = lhead[c];
        lprev[r - 1] = 0;
        if (lhead[c] != 0) lprev[lhead[c] - 1] = r;
        lhead[c] = r;
    };
    auto unlink = [&](int r) {
        const int c = count[r - 1];
        if (lprev[r - 1] != 0) lnext[lprev[r - 1] - 1] = lnext[r - 1];
        else lhead[c] = lnext[r - 1];
        if (lnext[r - 1] != 0) lprev[lnext[r - 1] - 1] = lprev[r - 1];
    };
    if (markowitz) {
        for (int i = 0; i < n; ++i) count[i] = 1;
        for (Index p = n + 1; p <= m; ++p) {
            ++count[ri[p - 1] - 1];
            ++count[ci[p - 1] - 1];
        }
        std::fill(lhead, lhead + n + 1, 0);
        for (int r = n; r >= 1; --r) link(r);
    } else if (pstrat == 'N') {
        for (int i = 1; i <= n; ++i) ipiv[i - 1] = i;
    }

    // 3. Row chains (links in RLINK, ending in minus the row) and column chains (links in IROW).
    std::fill(rowhead, rowhead + n, 0);
    std::fill(colhead, colhead + n, 0);
    auto chain = [&](Index p, int r, int c) {
        rlink[p - 1] = rowhead[r - 1] != 0 ? rowhead[r - 1] : -r;
        rowhead[r - 1] = static_cast<int>(p);
        ri[p - 1] = colhead[c - 1];
        colhead[c - 1] = static_cast<int>(p);
    };
    for (Index p = n + 1; p <= m; ++p) chain(p, ri[p - 1], ci[p - 1]);
    auto row_of = [&](Index p) {
        Index q = p;
        for (Index steps = 0; rlink[q - 1] > 0 && steps <= m; ++steps) q = rlink[q - 1];
        return -rlink[q - 1];
    };
    auto level_of = [&](Index p) { return (lfill >= 0 && p > nnz) ? level[p - nnz - 1] : 0; };

    std::fill(mark, mark + n, 0);
    const double f = mic == 'M' ? 1.0 : 0.0;
    // Steps are recorded as -k in COUNT; an index with a count >= 0 is still active.
    for (int k = 1; k <= n; ++k) {
        // a. The pivot.
        int i;
        if (markowitz) {
            int c = 0;
            while (c <= n && lhead[c] == 0) ++c;
            if (c > n) return 2;
            i = lhead[c];
            for (int q = lnext[i - 1]; q != 0; q = lnext[q - 1])
                if (modulus(ra[q - 1]) >= modulus(ra[i - 1])) i = q;
            unlink(i);
        } else {
            i = ipiv[k - 1];
        }
        ipiv[k - 1] = i;
        count[i - 1] = -k;
        // b. Active neighbours.
        int nb = 0;
        double rowsum = 0.0;
        for (Index p = colhead[i - 1], steps = 0; p != 0 && steps < m; p = ri[p - 1], ++steps) {
            const int r = row_of(p);
            if (count[r - 1] < 0) continue;
            neighbours[nb++] = r;
            mark[r - 1] = static_cast<int>(p);
            rowsum += modulus(ra[p - 1]);
        }
        for (Index p = rowhead[i - 1], steps = 0; p > 0 && steps < m; p = rlink[p - 1], ++steps) {
            const int c = ci[p - 1];
            if (count[c - 1] < 0) continue;
            neighbours[nb++] = c;
            mark[c - 1] = static_cast<int>(p);
            rowsum += modulus(ra[p - 1]);
        }
        // c. Safeguard.
        if (0.01 * rowsum >= real_part(ra[i - 1])) {
            ra[i - 1] = T(rowsum > 0.0 ? rowsum : 1.0);
            ++*npivm;
        }
        const double di = real_part(ra[i - 1]);
        // The value a(j,i) of a neighbour j, whichever triangle holds it.
        auto coupling = [&](int j) {
            const Index p = mark[j - 1] > 0 ? mark[j - 1] : -mark[j - 1];
            return ci[p - 1] == i ? ra[p - 1] : conjugate(ra[p - 1]);
        };
        if (markowitz)
            for (int t = 0; t < nb; ++t) unlink(neighbours[t]);
        // d. Update the rows of the neighbours.
        for (int t = 0; t < nb; ++t) {
            const int j = neighbours[t];
            const Index pj = mark[j - 1];
            const T wj = coupling(j);
            const T l = wj / di;
            const int levj = level_of(pj);
            if (markowitz) --count[j - 1];
            ra[j - 1] = T(real_part(ra[j - 1] - l * conjugate(wj)));
            for (Index q = rowhead[j - 1], steps = 0; q > 0 && steps < m; q = rlink[q - 1], ++steps) {
                const int c = ci[q - 1];
                if (mark[c - 1] <= 0 || count[c - 1] < 0) continue;
                ra[q - 1] -= l * conjugate(coupling(c));
                mark[c - 1] = -mark[c - 1];
            }
            for (int u = 0; u < nb; ++u) {
                const int c = neighbours[u];
                if (c >= j) continue;
                if (mark[c - 1] < 0) {
                    mark[c - 1] = -mark[c - 1];
                    continue;
                }
                const T v = -(l * conjugate(coupling(c)));
                const int lev = std::max(levj, level_of(mark[c - 1])) + 1;
                const bool keep = lfill >= 0
                                      ? lev <= lfill
                                      : modulus(v) >= dtol * std::sqrt(std::fabs(real_part(ra[j - 1]) * real_part(ra[c - 1])));
                if (!keep) {
                    const double dropped = real_part(v) * f;
                    ra[j - 1] = T(real_part(ra[j - 1]) + dropped);
                    ra[c - 1] = T(real_part(ra[c - 1]) + dropped);
                    continue;
                }
                if (m + 1 > cap) return 1;
                ++m;
                ra[m - 1] = v;
                ci[m - 1] = c;
                chain(m, j, c);
                if (lfill >= 0) level[m - nnz - 1] = lev;
                if (markowitz) {
                    ++count[j - 1];
                    ++count[c - 1];
                }
            }
        }
        for (int t = 0; t < nb; ++t) {
            mark[neighbours[t] - 1] = 0;
            if (markowitz) link(neighbours[t]);
        }
    }

    // 5. Rows back from the chains, relabel by step, lower triangle, inverted diagonal, L scaled.
    for (int r = 1; r <= n; ++r)
        for (Index p = rowhead[r - 1], steps = 0; p > 0 && steps < m; p = rlink[p - 1], ++steps) ri[p - 1] = r;
    for (int i = 0; i < n; ++i) ra[i] = T(1.0) / ra[i];
    for (Index p = 1; p <= m; ++p) {
        int r = -count[ri[p - 1] - 1], c = -count[(p <= n ? ri[p - 1] : ci[p - 1]) - 1];
        if (c > r) {
            std::swap(r, c);
            ra[p - 1] = conjugate(ra[p - 1]);
        }
        ri[p - 1] = r;
        ci[p - 1] = c;
        if (p > n) ra[p - 1] *= ra[ipiv[c - 1] - 1];
    }

    // 6. Sorted into SCS order.
    int count_out = static_cast<int>(m);
    const SortOutcome sorted = sort_entries(n, &count_out, ra, ri, ci, 'R', 'R', istr, iwork);
    if (sorted.status != 0) return 2;
    *nnzc = count_out;
    // Arithmetic that overflowed or met a NaN of the input leaves factors no solve can use.
    for (Index p = 0; p < count_out; ++p)
        if (!is_finite(ra[p])) return 2;
    for (int i = 0; i <= n; ++i) istr[i] += nnz;
    return 0;
}

template <class T>
void ic_worker(const char *name, const char *sorter, int n, int nnz, double a[], int la, int irow[], int icol[],
               int lfill, double dtol, const char *mic, double dscale, const char *pstrat, int ipiv[], int istr[],
               int *nnzc, int *npivm, int iwork[], int liwork, char *errbuf, int *ifail, int mic_len, int pstrat_len) {
    FailureExit exit(name, errbuf, ifail);
    const char ps = letter(pstrat, pstrat_len);
    const char mc = letter(mic, mic_len);
    if (!incomplete_options(exit, la, nnz, lfill, dtol,
                            {mc, "MN", 99997, " ** On entry, MIC .ne. 'M' or 'N': MIC = '%s'.", mic, mic_len},
                            {ps, "NUM", 99996, " ** On entry, PSTRAT .ne. 'N', 'U' or 'M': PST  RAT = '%s'.", pstrat,
                             pstrat_len}))
        return;
    int bad = 0;
    const int status = cs_check(n, nnz, irow, icol, true, &bad);
    if (status != 0) {
        report_structure(exit, StructureReport{1, 2, 99995, true, nullptr}, status, bad, n, nnz, irow, icol);
        return;
    }
    if (ps == 'U' && !permutation_valid(exit, n, ipiv, istr, 99988,
                                        " ** On entry, a user-supplied value of IPIV lies outside the range [1,N].",
                                        " ** On entry, a user-supplied value of IPIV is repeated."))
        return;
    const Index base = 7 * static_cast<Index>(n) + 1;
    const Index need = lfill < 0 ? base + la - nnz : base + 2 * static_cast<Index>(la) - 3 * static_cast<Index>(nnz);
    if (!liwork_enough(exit, liwork, need, 99986)) return;
    T *v = values<T>(a);
    std::copy(v, v + nnz, v + nnz);
    std::copy(irow, irow + nnz, irow + nnz);
    std::copy(icol, icol + nnz, icol + nnz);
    const int core = ic_core(n, nnz, v, la, irow, icol, lfill, dtol, mc, dscale, ps, ipiv, istr, nnzc, npivm, iwork);
    const std::string serious = std::string(" ** A serious error has occurred in an internal call to ") + sorter +
                                ".\n    Check all subroutine calls and array sizes. Seek expert help.";
    incomplete_outcome(exit, core, 99985,
                       " ** The number of non-zero entries in the decomposition is too large.\n    The decomposition "
                       "has been terminated before completion.\n    Either increase LA, or reduce the fill by setting "
                       "PSTRAT = 'M',\n    reducing LFILL, or increasing DTOL.",
                       serious.c_str());
}

} // namespace
} // namespace zek::sparse

using zek::sparse::Complex;

extern "C" {

void F11_IC_CORE(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol, const char *mic,
                 double dscale, const char *pstrat, int ipiv[], int istr[], int *nnzc, int *npivm, int iwork[],
                 int liwork, int *status, int mic_len, int pstrat_len) {
    (void)liwork;
    *status = zek::sparse::ic_core(n, nnz, a, la, irow, icol, lfill, dtol, zek::sparse::letter(mic, mic_len), dscale,
                                   zek::sparse::letter(pstrat, pstrat_len), ipiv, istr, nnzc, npivm, iwork);
}

void F11_IC_CORE_COMPLEX(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                         const char *mic, double dscale, const char *pstrat, int ipiv[], int istr[], int *nnzc,
                         int *npivm, int iwork[], int liwork, int *status, int mic_len, int pstrat_len) {
    (void)liwork;
    *status = zek::sparse::ic_core(n, nnz, zek::sparse::values<Complex>(a), la, irow, icol, lfill, dtol,
                                   zek::sparse::letter(mic, mic_len), dscale, zek::sparse::letter(pstrat, pstrat_len),
                                   ipiv, istr, nnzc, npivm, iwork);
}

void F11JAF_WORKER(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol, const char *mic,
                   double dscale, const char *pstrat, int ipiv[], int istr[], int *nnzc, int *npivm, int iwork[],
                   int liwork, char *errbuf, int *ifail, int mic_len, int pstrat_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::ic_worker<double>("F11JAF", "F11ZBF", n, nnz, a, la, irow, icol, lfill, dtol, mic, dscale, pstrat,
                                   ipiv, istr, nnzc, npivm, iwork, liwork, errbuf, ifail, mic_len, pstrat_len);
}

void F11JNF_WORKER(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol, const char *mic,
                   double dscale, const char *pstrat, int ipiv[], int istr[], int *nnzc, int *npivm, int iwork[],
                   int liwork, char *errbuf, int *ifail, int mic_len, int pstrat_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::ic_worker<Complex>("F11JNF", "F11ZPF", n, nnz, a, la, irow, icol, lfill, dtol, mic, dscale, pstrat,
                                    ipiv, istr, nnzc, npivm, iwork, liwork, errbuf, ifail, mic_len, pstrat_len);
}

void F11JAF(const int *n, const int *nnz, double a[], const int *la, int irow[], int icol[], const int *lfill,
            const double *dtol, const char *mic, const double *dscale, const char *pstrat, int ipiv[], int istr[],
            int *nnzc, int *npivm, int iwork[], const int *liwork, int *ifail, int mic_len, int pstrat_len) {
    zek::Front front("F11JAF");
    F11JAF_WORKER(*n, *nnz, a, *la, irow, icol, *lfill, *dtol, mic, *dscale, pstrat, ipiv, istr, nnzc, npivm, iwork,
                  *liwork, front.errbuf(), ifail, mic_len, pstrat_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void F11JNF(const int *n, const int *nnz, double a[], const int *la, int irow[], int icol[], const int *lfill,
            const double *dtol, const char *mic, const double *dscale, const char *pstrat, int ipiv[], int istr[],
            int *nnzc, int *npivm, int iwork[], const int *liwork, int *ifail, int mic_len, int pstrat_len) {
    zek::Front front("F11JNF");
    F11JNF_WORKER(*n, *nnz, a, *la, irow, icol, *lfill, *dtol, mic, *dscale, pstrat, ipiv, istr, nnzc, npivm, iwork,
                  *liwork, front.errbuf(), ifail, mic_len, pstrat_len, zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
