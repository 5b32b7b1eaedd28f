// Incomplete LU factorisation of a matrix in coordinate storage, row by row: each row of the factors is
// the input row eliminated by the earlier factor rows in pivot order, its fill kept by level or by size,
// the dropped fill optionally added to the pivot (modified form).  A row whose pivot comes out too small
// is redone once with all its fill kept; if the pivot is still too small it is replaced.
#include "sparse/exits.h"
#include "sparse/sparse.h"

#include "frame/ifail.h"
#include "frame/machine.h"
#include "zek2/f11.h"

#include <algorithm>

namespace zek::sparse {
namespace {

// The lists of rows by their current count, for the complete-pivoting strategy: doubly linked through
// next/prev, heads by count 0..n (head 0 in its own word, the others in IDIAG while the elimination runs).
struct CountLists {
    int *next, *prev, *count, *head_rest, *head_zero;
    int &head(int c) { return c == 0 ? *head_zero : head_rest[c - 1]; }
    void link(int r) {
        const int c = count[r - 1];
        next[r - 1] = head(c);
        prev[r - 1] = 0;
        if (head(c) != 0) prev[head(c) - 1] = r;
        head(c) = r;
    }
    void unlink(int r) {
        const int c = count[r - 1];
        if (prev[r - 1] != 0) next[prev[r - 1] - 1] = next[r - 1];
        else head(c) = next[r - 1];
        if (next[r - 1] != 0) prev[next[r - 1] - 1] = prev[r - 1];
    }
};

// Row of input entry k (one-based) from the row starts, by bisection.
int row_of(const int rstr[], int n, int k) {
    int lo = 1, hi = n;
    while (lo < hi) {
        const int mid = lo + (hi - lo + 1) / 2;
        if (rstr[mid - 1] <= k) lo = mid;
        else hi = mid - 1;
    }
    return lo;
}

template <class T>
int ilu_core(int n, int nnz, T a[], int la, int irow[], int icol[], int lfill, double dtol, char pstrat, char milu,
             int ipivp[], int ipivq[], int istr[], int idiag[], int *nnzc, int *npivm, int iwork[]) {
    // One-based views: A(k) is a[k-1].
    int *rstr = iwork;
    int *order = rstr + (n + 1);
    int *place = order + n;
    CountLists lists{place + n, place + 2 * static_cast<Index>(n), place + 4 * static_cast<Index>(n), idiag,
                     place + 5 * static_cast<Index>(n)};
    int *colhead = place + 3 * static_cast<Index>(n);
    const bool complete = pstrat == 'C';
    const bool chooses_column = pstrat == 'P' || complete;

    // 1. Row starts of the input.
    std::fill(rstr, rstr + n + 1, 0);
    for (Index k = 0; k < nnz; ++k) ++rstr[irow[k]];
    rstr[0] = 1;
    for (int i = 1; i <= n; ++i) rstr[i] += rstr[i - 1];

    // 2. Thresholds.
    double amax = 0.0;
    for (Index k = 0; k < nnz; ++k) {
        const double m = modulus(a[k]);
        if (m > amax) amax = m;
    }
    const double dropabs = dtol * amax;
    const double pivtiny = precision() * std::max(amax, 10.0);

    // 3. Initial permutations; for complete pivoting the column chains (through IROW) and count lists.
    if (pstrat == 'N') {
        for (int i = 1; i <= n; ++i) ipivp[i - 1] = ipivq[i - 1] = i;
    } else if (pstrat == 'P') {
        for (int i = 1; i <= n; ++i) ipivp[i - 1] = i;
    } else if (complete) {
        std::fill(colhead, colhead + n, 0);
        for (Index k = nnz; k >= 1; --k) {
            const int c = icol[k - 1];
            irow[k - 1] = colhead[c - 1];
            colhead[c - 1] = static_cast<int>(k);
        }
        *lists.head_zero = 0;
        std::fill(lists.head_rest, lists.head_rest + n, 0);
        for (int r = n; r >= 1; --r) {
            lists.count[r - 1] = rstr[r] - rstr[r - 1];
            lists.link(r);
        }
    }

    // 4.
    std::fill(order, order + n, n + 1);
    std::fill(place, place + n, 0);
    *nnzc = 0;
    *npivm = 0;
    bool some_retried = false;
    const T f = milu == 'M' ? T(1.0) : T(0.0);

    // 5. The rows.
    for (int i = 1; i <= n; ++i) {
        int r;
        if (complete) {
            int c = 0;
            while (c <= n && lists.head(c) == 0) ++c;
            if (c > n) return 3; // the lists always hold the rows still to come
            r = lists.head(c);
            for (int q = lists.next[r - 1]; q != 0; q = lists.next[q - 1]) r = std::min(r, q);
            lists.unlink(r);
            lists.count[r - 1] = n + 1;
            ipivp[i - 1] = r;
        } else {
            r = ipivp[i - 1];
        }
        const Index s = static_cast<Index>(nnz) + *nnzc + 1;
        istr[i - 1] = static_cast<int>(s);
        bool retried = false;
        Index e;
        int col = 0;
        T pivot;
        for (;;) {
            // b. Copy the input row, levels 0 in IROW of the region.
            e = s;
            for (Index k = rstr[r - 1]; k < rstr[r]; ++k, ++e) {
                if (e > la) return 1;
                a[e - 1] = a[k - 1];
                icol[e - 1] = icol[k - 1];
                irow[e - 1] = 0;
                place[icol[k - 1] - 1] = static_cast<int>(e);
            }
            // c. Eliminate with the earlier rows in pivot order.
            T dsum = T(0.0);
            int last = 0;
            for (;;) {
                int k = n + 1;
                Index at = 0;
                for (Index p = s; p < e; ++p) {
                    const int o = order[icol[p - 1] - 1];
                    if (o > last && o < i && o < k) {
                        k = o;
                        at = p;
                    }
                }
                if (at == 0) break;
                last = k;
                const T l = a[at - 1];
                const int levl = irow[at - 1];
                for (Index q = istr[k - 1]; q < istr[k]; ++q) {
                    const int c = icol[q - 1];
                    if (order[c - 1] <= k) continue;
                    const T u = a[q - 1];
                    if (place[c - 1] > 0) {
                        a[place[c - 1] - 1] -= l * u;
                        continue;
                    }
                    const T v = -(l * u);
                    const int lev = std::max(levl, irow[q - 1]) + 1;
                    const bool keep = retried || (lfill >= 0 ? lev <= lfill : modulus(v) >= dropabs);
                    if (!keep) {
                        dsum += v;
                        continue;
                    }
                    if (e > la) return 1;
                    a[e - 1] = v;
                    icol[e - 1] = c;
                    irow[e - 1] = lev;
                    place[c - 1] = static_cast<int>(e);
                    ++e;
                }
            }
            // d, e. The pivot candidate.
            dsum *= f;
            T candidate = T(0.0);
            Index at = 0;
            if (chooses_column) {
                double best = -1.0;
                col = 0;
                for (Index p = s; p < e; ++p) {
                    const int c = icol[p - 1];
                    if (order[c - 1] <= i) continue;
                    const double m = modulus(a[p - 1] + dsum);
                    if (m > best) {
                        best = m;
                        at = p;
                        col = c;
                    }
                }
            } else {
                col = ipivq[i - 1];
                at = place[col - 1];
            }
            if (at > 0) candidate = a[at - 1] + dsum;
            // f. Accept, redo the row once with all its fill, or replace.
            if (modulus(candidate) > pivtiny) {
                a[at - 1] = candidate;
                pivot = candidate;
                break;
            }
            if (!retried) {
                for (Index p = s; p < e; ++p) place[icol[p - 1] - 1] = 0;
                retried = true;
                some_retried = true;
                continue;
            }
            if (chooses_column) {
                col = 1;
                while (order[col - 1] != n + 1) ++col;
            }
            ++*npivm;
            if (place[col - 1] > 0) {
                // The sum of the two entries the final sort would make.
                a[place[col - 1] - 1] += T(1.0) + candidate;
                pivot = a[place[col - 1] - 1];
            } else {
                if (e > la) return 1;
                a[e - 1] = T(1.0) + candidate;
                icol[e - 1] = col;
                irow[e - 1] = 0;
                place[col - 1] = static_cast<int>(e);
                pivot = a[e - 1];
                ++e;
            }
            break;
        }
        // g, h.
        ipivq[i - 1] = col;
        order[col - 1] = i;
        if (complete) {
            for (int k = colhead[col - 1], steps = 0; k != 0 && steps < nnz; k = irow[k - 1], ++steps) {
                const int row = row_of(rstr, n, k);
                if (lists.count[row - 1] == n + 1) continue;
                lists.unlink(row);
                --lists.count[row - 1];
                lists.link(row);
            }
        }
        // i. Scale the U part and clear the places.
        const T inverse = T(1.0) / pivot;
        for (Index p = s; p < e; ++p) {
            const int c = icol[p - 1];
            if (order[c - 1] > i) a[p - 1] *= inverse;
            place[c - 1] = 0;
        }
        *nnzc = static_cast<int>(e - 1 - nnz);
        istr[i] = static_cast<int>(e);
    }

    // The column chains end: IROW of the input again from the row starts.
    if (complete)
        for (int i = 1; i <= n; ++i)
            for (Index k = rstr[i - 1]; k < rstr[i]; ++k) irow[k - 1] = i;

    // 6. Relabel the region with positions.
    for (int i = 1; i <= n; ++i)
        for (Index p = istr[i - 1]; p < istr[i]; ++p) {
            irow[p - 1] = i;
            icol[p - 1] = order[icol[p - 1] - 1];
        }

    // 7. Sort the region, summing the two entries a replaced pivot may have left.
    const SortOutcome sorted = sort_entries(n, nnzc, a + nnz, irow + nnz, icol + nnz, 'S', 'R', istr, iwork);
    if (sorted.status != 0) return 3;

    // 8. Diagonals inverted, L scaled by the diagonal of its column.
    for (int i = 0; i <= n; ++i) istr[i] += nnz;
    for (int i = 1; i <= n; ++i) {
        idiag[i - 1] = 0;
        for (Index p = istr[i - 1]; p < istr[i]; ++p)
            if (icol[p - 1] == i) idiag[i - 1] = static_cast<int>(p);
        if (idiag[i - 1] == 0 || is_zero(a[idiag[i - 1] - 1])) return 4;
        // Arithmetic that overflowed or met a NaN of the input leaves factors no solve can use.
        for (Index p = istr[i - 1]; p < istr[i]; ++p)
            if (!is_finite(a[p - 1])) return 4;
        a[idiag[i - 1] - 1] = T(1.0) / a[idiag[i - 1] - 1];
        for (Index p = istr[i - 1]; p < idiag[i - 1]; ++p) a[p - 1] *= a[idiag[icol[p - 1] - 1] - 1];
    }

    // 10.
    if (*npivm == 0 && some_retried) *npivm = -1;
    return 0;
}

template <class T>
void ilu_worker(const char *name, int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[], int idiag[], int *nnzc,
                int *npivm, int iwork[], int liwork, char *errbuf, int *ifail, int pstrat_len, int milu_len) {
    FailureExit exit(name, errbuf, ifail);
    const char ps = letter(pstrat, pstrat_len);
    const char mi = letter(milu, milu_len);
    if (!incomplete_options(exit, la, nnz, lfill, dtol,
                            {ps, "NUPC", 99997, " ** On entry, PSTRAT .ne. 'N', 'U', 'P', or 'C': PSTRAT = '%s'.",
                             pstrat, pstrat_len},
                            {mi, "MN", 99996, " ** On entry, MILU .ne. 'M' or 'N': MILU = '%s' .", milu, milu_len}))
        return;
    int bad = 0;
    const int status = cs_check(n, nnz, irow, icol, false, &bad);
    if (status != 0) {
        report_structure(exit, StructureReport{1, 2, 99995, false, nullptr}, status, bad, n, nnz, irow, icol);
        return;
    }
    // Permutation tests with ISTR (an output) as the scratch of visited values.
    if (ps == 'U' &&
        (!permutation_valid(exit, n, ipivp, istr, 99988,
                            " ** On entry, a user-supplied value of IPIVP lies outside the range [1,N].",
                            " ** On entry, a user-supplied value of IPIVP is repeated.") ||
         !permutation_valid(exit, n, ipivq, istr, 99986,
                            " ** On entry, a user-supplied value of IPIVQ lies outside the range [1,N].",
                            " ** On entry, a user-supplied value of IPIVQ is repeated.")))
        return;
    const Index need = 7 * static_cast<Index>(n) + 2;
    if (!liwork_enough(exit, liwork, need, 99984)) return;
    const int core = ilu_core(n, nnz, values<T>(a), la, irow, icol, lfill, dtol, ps, mi, ipivp, ipivq, istr, idiag,
                              nnzc, npivm, iwork);
    incomplete_outcome(exit, core, 99983,
                       " ** The number of non-zero entries in the decomposition is too large.\n    The decomposition "
                       "has been terminated before completion.\n    Either increase LA, or reduce the fill by "
                       "reducing LFILL, \n    or increasing DTOL.",
                       " ** A serious error has occurred in an internal call to an auxiliary routine.\n    Check "
                       "all subroutine calls and array sizes. Seek expert help.");
}

} // namespace
} // namespace zek::sparse

using zek::sparse::Complex;

extern "C" {

void F11_ILU_CORE(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                  const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[], int idiag[], int *nnzc,
                  int *npivm, int iwork[], int liwork, int *status, int pstrat_len, int milu_len) {
    (void)liwork;
    *status = zek::sparse::ilu_core(n, nnz, a, la, irow, icol, lfill, dtol, zek::sparse::letter(pstrat, pstrat_len),
                                    zek::sparse::letter(milu, milu_len), ipivp, ipivq, istr, idiag, nnzc, npivm, iwork);
}

void F11_ILU_CORE_COMPLEX(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                          const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[], int idiag[],
                          int *nnzc, int *npivm, int iwork[], int liwork, int *status, int pstrat_len, int milu_len) {
    (void)liwork;
    *status = zek::sparse::ilu_core(n, nnz, zek::sparse::values<Complex>(a), la, irow, icol, lfill, dtol,
                                    zek::sparse::letter(pstrat, pstrat_len), zek::sparse::letter(milu, milu_len),
                                    ipivp, ipivq, istr, idiag, nnzc, npivm, iwork);
}

void F11DAF_WORKER(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                   const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[], int idiag[], int *nnzc,
                   int *npivm, int iwork[], int liwork, char *errbuf, int *ifail, int pstrat_len, int milu_len,
                   int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::ilu_worker<double>("F11DAF", n, nnz, a, la, irow, icol, lfill, dtol, pstrat, milu, ipivp, ipivq, istr,
                                    idiag, nnzc, npivm, iwork, liwork, errbuf, ifail, pstrat_len, milu_len);
}

void F11DNF_WORKER(int n, int nnz, double a[], int la, int irow[], int icol[], int lfill, double dtol,
                   const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[], int idiag[], int *nnzc,
                   int *npivm, int iwork[], int liwork, char *errbuf, int *ifail, int pstrat_len, int milu_len,
                   int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::ilu_worker<Complex>("F11DNF", n, nnz, a, la, irow, icol, lfill, dtol, pstrat, milu, ipivp, ipivq,
                                     istr, idiag, nnzc, npivm, iwork, liwork, errbuf, ifail, pstrat_len, milu_len);
}

void F11DAF(const int *n, const int *nnz, double a[], const int *la, int irow[], int icol[], const int *lfill,
            const double *dtol, const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[], int idiag[],
            int *nnzc, int *npivm, int iwork[], const int *liwork, int *ifail, int pstrat_len, int milu_len) {
    zek::Front front("F11DAF");
    F11DAF_WORKER(*n, *nnz, a, *la, irow, icol, *lfill, *dtol, pstrat, milu, ipivp, ipivq, istr, idiag, nnzc, npivm,
                  iwork, *liwork, front.errbuf(), ifail, pstrat_len, milu_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void F11DNF(const int *n, const int *nnz, double a[], const int *la, int irow[], int icol[], const int *lfill,
            const double *dtol, const char *pstrat, const char *milu, int ipivp[], int ipivq[], int istr[], int idiag[],
            int *nnzc, int *npivm, int iwork[], const int *liwork, int *ifail, int pstrat_len, int milu_len) {
    zek::Front front("F11DNF");
    F11DNF_WORKER(*n, *nnz, a, *la, irow, icol, *lfill, *dtol, pstrat, milu, ipivp, ipivq, istr, idiag, nnzc, npivm,
                  iwork, *liwork, front.errbuf(), ifail, pstrat_len, milu_len, zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
