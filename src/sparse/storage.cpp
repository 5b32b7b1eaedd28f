// Coordinate storage: the structure check, the sort-and-compress routines (two stable distribution
// passes that turn the key array into ranks, then an in-place rearrangement by those ranks), and the
// matrix-vector products.
#include "sparse/sparse.h"
#include "sparse/exits.h"

#include "frame/ifail.h"
#include "zek2/f11.h"
#include "zek2/frame.h"

#include <algorithm>

namespace zek::sparse {

char letter(const char *text, int length) {
    if (text == nullptr || length < 1) return ' ';
    const char c = text[0];
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string letter_text(const char *text, int length) {
    if (text == nullptr || length < 1) return std::string();
    return std::string(1, text[0]);
}

int cs_check(int n, int nnz, const int irow[], const int icol[], bool symmetric, int *bad) {
    *bad = 0;
    if (n < 1) return 1;
    if (nnz < 1) return 2;
    const double dn = static_cast<double>(n);
    const double most = symmetric ? dn * (dn + 1.0) / 2.0 : dn * dn;
    if (static_cast<double>(nnz) > most) return 3;
    for (Index k = 0; k < nnz; ++k) {
        if (irow[k] < 1 || irow[k] > n) {
            *bad = static_cast<int>(k + 1);
            return 4;
        }
        const int top = symmetric ? irow[k] : n;
        if (icol[k] < 1 || icol[k] > top) {
            *bad = static_cast<int>(k + 1);
            return 5;
        }
    }
    for (Index k = 1; k < nnz; ++k) {
        if (irow[k] < irow[k - 1] || (irow[k] == irow[k - 1] && icol[k] < icol[k - 1])) {
            *bad = static_cast<int>(k + 1);
            return 6;
        }
        if (irow[k] == irow[k - 1] && icol[k] == icol[k - 1]) {
            *bad = static_cast<int>(k + 1);
            return 7;
        }
    }
    return 0;
}

void report_structure(FailureExit &exit, const StructureReport &how, int status, int bad, int n, int nnz,
                      const int irow[], const int icol[]) {
    const std::string suffix = how.suffix ? how.suffix : "";
    const long first = how.first_exit;
    switch (status) {
    case 1: exit.fail(how.ifail_size, first, kNLessOne, {n}); return;
    case 2: exit.fail(how.ifail_size, first - 1, kNnzLessOne, {nnz}); return;
    case 3:
        exit.fail(how.ifail_size, first - 2, how.symmetric ? kNnzAboveTriangle : kNnzAboveSquare, {nnz, n});
        return;
    case 4: exit.fail(how.ifail_index, first - 3, (kIrowRange + suffix).c_str(), {bad, irow[bad - 1], n}); return;
    case 5:
        if (how.symmetric) {
            exit.fail(how.ifail_index, first - 4, (kIcolLower + suffix).c_str(), {bad, icol[bad - 1], irow[bad - 1]});
        } else {
            exit.fail(how.ifail_index, first - 4, (kIcolRange + suffix).c_str(), {bad, icol[bad - 1], n});
        }
        return;
    case 6: exit.fail(how.ifail_index, first - 5, (kOutOfOrder + suffix).c_str(), {bad}); return;
    default: exit.fail(how.ifail_index, first - 6, (kDuplicate + suffix).c_str(), {bad}); return;
    }
}

namespace {

// One stable distribution pass by key (key values 1..n): the key array becomes the one-based rank of
// each entry, the values and the other index follow those ranks, and the key array is rebuilt from the
// ranges in istr.
template <class T>
void distribute(int n, Index nnz, T a[], int key[], int other[], int istr[], int iwork[]) {
    std::fill(iwork, iwork + n, 0);
    for (Index k = 0; k < nnz; ++k) ++iwork[key[k] - 1];
    istr[0] = 1;
    for (int i = 0; i < n; ++i) istr[i + 1] = istr[i] + iwork[i];
    std::copy(istr, istr + n, iwork);
    for (Index k = 0; k < nnz; ++k) {
        const int c = key[k];
        key[k] = iwork[c - 1]++;
    }
    // Follow each cycle of the permutation, marking placed entries by a negative rank.
    for (Index start = 0; start < nnz; ++start) {
        if (key[start] < 0) continue;
        T value = a[start];
        int index = other[start];
        Index to = key[start] - 1;
        key[start] = -key[start];
        while (to != start) {
            std::swap(value, a[to]);
            std::swap(index, other[to]);
            const Index next = key[to] - 1;
            key[to] = -key[to];
            to = next;
        }
        a[start] = value;
        other[start] = index;
    }
    for (int i = 0; i < n; ++i)
        for (Index p = istr[i] - 1; p < istr[i + 1] - 1; ++p) key[p] = i + 1;
}

} // namespace

template <class T>
SortOutcome sort_entries(int n, int *nnz, T a[], int irow[], int icol[], char dup, char zero, int istr[], int iwork[]) {
    SortOutcome out;
    Index count = *nnz;
    if (count > 1) {
        distribute(n, count, a, icol, irow, istr, iwork);
        distribute(n, count, a, irow, icol, istr, iwork);
        const T factor = dup == 'S' ? T(1.0) : T(0.0);
        Index j = 0;
        for (Index k = 1; k < count; ++k) {
            if (irow[k] == irow[j] && icol[k] == icol[j]) {
                if (dup == 'F') {
                    out.status = 3;
                    out.row = irow[k];
                    out.col = icol[k];
                    return out;
                }
                // The product with zero in the remove case is deliberate: a NaN or Inf removed
                // still leaves its mark.
                a[j] = a[j] + factor * a[k];
            } else {
                ++j;
                a[j] = a[k];
                irow[j] = irow[k];
                icol[j] = icol[k];
            }
        }
        count = j + 1;
    }
    if (zero != 'K') {
        Index j = 0;
        for (Index k = 0; k < count; ++k) {
            if (is_zero(a[k])) {
                if (zero == 'F') {
                    *nnz = static_cast<int>(count);
                    out.status = 4;
                    out.row = irow[k];
                    out.col = icol[k];
                    return out;
                }
                continue;
            }
            a[j] = a[k];
            irow[j] = irow[k];
            icol[j] = icol[k];
            ++j;
        }
        count = j;
    }
    *nnz = static_cast<int>(count);
    std::fill(iwork, iwork + n, 0);
    for (Index k = 0; k < count; ++k) ++iwork[irow[k] - 1];
    istr[0] = 1;
    for (int i = 0; i < n; ++i) istr[i + 1] = istr[i] + iwork[i];
    return out;
}

template SortOutcome sort_entries<double>(int, int *, double[], int[], int[], char, char, int[], int[]);
template SortOutcome sort_entries<Complex>(int, int *, Complex[], int[], int[], char, char, int[], int[]);

namespace {

// The sort routines: CS (F11ZAF, F11ZNF) and SCS (F11ZBF, F11ZPF); the letter options list fewer
// choices for SCS.
enum SortExit {
    kSortNLessThan1, kSortNnzNegative, kSortIrowRange, kSortIcolLower, kSortIcolRange, kSortDupScs, kSortDupCs,
    kSortZeroScs, kSortZeroCs, kSortDuplicate, kSortZero
};
constexpr ExitRow kSortExits[] = {
    {1, 99999, kNLessOne},
    {1, 99998, " ** On entry, NNZ .lt. 0: NNZ =%16ld."},
    {2, 99997, kIrowRange},
    {2, 99996, kIcolLower},
    {2, 99996, kIcolRange},
    {1, 99995, " ** On entry, DUP .ne. 'R' or 'S': DUP = '%s'."},
    {1, 99995, " ** On entry, DUP .ne. 'R', 'S', or 'F': DUP = '%s'."},
    {1, 99994, " ** On entry, ZERO .ne. 'R' or 'K': ZERO = '%s' ."},
    {1, 99994, " ** On entry, ZERO .ne. 'R', 'K', or 'F': ZERO   = '%s'."},
    {3, 99993, " ** On entry, a duplicate entry has been found in row I and column J:\n    I = %16ld, J = %16ld."},
    {4, 99992, " ** On entry, a zero entry has been found in row I and column J:\n    I = %16ld, J = %16ld."},
};

template <class T>
void sort_worker(const char *name, bool symmetric, int n, int *nnz, double a[], int irow[], int icol[],
                 const char *dup, const char *zero, int istr[], int iwork[], char *errbuf, int *ifail, int dup_len,
                 int zero_len) {
    FailureExit exit(name, errbuf, ifail);
    if (n < 1) {
        take(exit, kSortExits, kSortNLessThan1, {n});
        return;
    }
    if (*nnz < 0) {
        take(exit, kSortExits, kSortNnzNegative, {*nnz});
        return;
    }
    for (Index k = 0; k < *nnz; ++k) {
        const int i = static_cast<int>(k + 1);
        if (irow[k] < 1 || irow[k] > n) {
            take(exit, kSortExits, kSortIrowRange, {i, irow[k], n});
            return;
        }
        if (symmetric && (icol[k] < 1 || icol[k] > irow[k])) {
            take(exit, kSortExits, kSortIcolLower, {i, icol[k], irow[k]});
            return;
        }
        if (!symmetric && (icol[k] < 1 || icol[k] > n)) {
            take(exit, kSortExits, kSortIcolRange, {i, icol[k], n});
            return;
        }
    }
    const char d = letter(dup, dup_len);
    const char z = letter(zero, zero_len);
    if (symmetric ? (d != 'R' && d != 'S') : (d != 'R' && d != 'S' && d != 'F')) {
        take(exit, kSortExits, symmetric ? kSortDupScs : kSortDupCs, {letter_text(dup, dup_len)});
        return;
    }
    if (symmetric ? (z != 'R' && z != 'K') : (z != 'R' && z != 'K' && z != 'F')) {
        take(exit, kSortExits, symmetric ? kSortZeroScs : kSortZeroCs, {letter_text(zero, zero_len)});
        return;
    }
    const SortOutcome out = sort_entries(n, nnz, values<T>(a), irow, icol, d, z, istr, iwork);
    if (out.status == 3) {
        take(exit, kSortExits, kSortDuplicate, {out.row, out.col});
        return;
    }
    if (out.status == 4) {
        take(exit, kSortExits, kSortZero, {out.row, out.col});
        return;
    }
    exit.succeed();
}

// Y := op(A)*X over the entries, unrolled by four.  Symmetric storage adds the mirrored term, with the
// conjugate for a Hermitian matrix.
template <class T>
void product(bool transpose, bool symmetric, int n, Index nnz, const T a[], const int irow[], const int icol[],
             const T x[], T y[]) {
    std::fill(y, y + n, T(0.0));
    if (symmetric) {
        for (Index k = 0; k < nnz; ++k) {
            const int r = irow[k] - 1, c = icol[k] - 1;
            y[r] += a[k] * x[c];
            if (r != c) y[c] += conjugate(a[k]) * x[r];
        }
        return;
    }
    const int *to = transpose ? icol : irow;
    const int *from = transpose ? irow : icol;
    Index k = 0;
    for (; k + 4 <= nnz; k += 4) {
        y[to[k] - 1] += a[k] * x[from[k] - 1];
        y[to[k + 1] - 1] += a[k + 1] * x[from[k + 1] - 1];
        y[to[k + 2] - 1] += a[k + 2] * x[from[k + 2] - 1];
        y[to[k + 3] - 1] += a[k + 3] * x[from[k + 3] - 1];
    }
    for (; k < nnz; ++k) y[to[k] - 1] += a[k] * x[from[k] - 1];
}

// The products (F11XAF, F11XNF, F11XEF, F11XSF); the structure exits follow from report_structure.
enum ProductExit { kProductTrans, kProductCheck };
constexpr ExitRow kProductExits[] = {
    {1, 99999, kTransLetter},
    {1, 99998, kCheckLetter},
};

template <class T>
void product_worker(const char *name, bool symmetric, const char *trans, int n, int nnz, const double a[],
                    const int irow[], const int icol[], const char *check, const double x[], double y[],
                    char *errbuf, int *ifail, int trans_len, int check_len) {
    FailureExit exit(name, errbuf, ifail);
    const char t = symmetric ? 'N' : letter(trans, trans_len);
    if (t != 'N' && t != 'T') {
        take(exit, kProductExits, kProductTrans, {letter_text(trans, trans_len)});
        return;
    }
    const char c = letter(check, check_len);
    if (c != 'C' && c != 'N') {
        take(exit, kProductExits, kProductCheck, {letter_text(check, check_len)});
        return;
    }
    if (c == 'C') {
        int bad = 0;
        const int status = cs_check(n, nnz, irow, icol, symmetric, &bad);
        if (status != 0) {
            report_structure(exit, StructureReport{2, 2, 99997, symmetric, nullptr}, status, bad, n, nnz, irow, icol);
            return;
        }
    } else if (n < 1 || nnz < 0) {
        // Without the check the sizes still decide whether there is anything to do.
        int bad = 0;
        report_structure(exit, StructureReport{2, 2, 99997, symmetric, nullptr}, n < 1 ? 1 : 2, bad, n, nnz, irow,
                         icol);
        return;
    }
    product(t == 'T', symmetric, n, nnz, values<T>(a), irow, icol, values<T>(x), values<T>(y));
    exit.succeed();
}

} // namespace

void apply_product(bool transpose, int n, int nnz, const double a[], const int irow[], const int icol[],
                   const double x[], double y[]) {
    product(transpose, false, n, nnz, a, irow, icol, x, y);
}
void apply_product(bool transpose, int n, int nnz, const Complex a[], const int irow[], const int icol[],
                   const Complex x[], Complex y[]) {
    product(transpose, false, n, nnz, a, irow, icol, x, y);
}
void apply_symmetric_product(int n, int nnz, const double a[], const int irow[], const int icol[], const double x[],
                             double y[]) {
    product(false, true, n, nnz, a, irow, icol, x, y);
}
void apply_symmetric_product(int n, int nnz, const Complex a[], const int irow[], const int icol[], const Complex x[],
                             Complex y[]) {
    product(false, true, n, nnz, a, irow, icol, x, y);
}

} // namespace zek::sparse

using zek::sparse::Complex;

extern "C" {

void F11ZAF_WORKER(int n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero, int istr[],
                   int iwork[], char *errbuf, int *ifail, int dup_len, int zero_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::sort_worker<double>("F11ZAF", false, n, nnz, a, irow, icol, dup, zero, istr, iwork, errbuf, ifail,
                                     dup_len, zero_len);
}

void F11ZNF_WORKER(int n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero, int istr[],
                   int iwork[], char *errbuf, int *ifail, int dup_len, int zero_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::sort_worker<Complex>("F11ZNF", false, n, nnz, a, irow, icol, dup, zero, istr, iwork, errbuf, ifail,
                                      dup_len, zero_len);
}

void F11ZBF(int n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero, int istr[],
            int iwork[], char *errbuf, int *ifail, int dup_len, int zero_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::sort_worker<double>("F11ZBF", true, n, nnz, a, irow, icol, dup, zero, istr, iwork, errbuf, ifail,
                                     dup_len, zero_len);
}

void F11ZPF_WORKER(int n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero, int istr[],
                   int iwork[], char *errbuf, int *ifail, int dup_len, int zero_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::sort_worker<Complex>("F11ZPF", true, n, nnz, a, irow, icol, dup, zero, istr, iwork, errbuf, ifail,
                                      dup_len, zero_len);
}

void F11ZAF(const int *n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero, int istr[],
            int iwork[], int *ifail, int dup_len, int zero_len) {
    zek::Front front("F11ZAF");
    if (*n > 0) {
        ZEK_MARK_INTEGER_ARRAY(*n + 1, istr);
        ZEK_MARK_INTEGER_ARRAY(*n, iwork);
    }
    F11ZAF_WORKER(*n, nnz, a, irow, icol, dup, zero, istr, iwork, front.errbuf(), ifail, dup_len, zero_len,
                  zek::kErrbufLength);
    front.finish(*ifail);
}

void F11ZNF(const int *n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero, int istr[],
            int iwork[], int *ifail, int dup_len, int zero_len) {
    zek::Front front("F11ZNF");
    if (*n > 0) {
        ZEK_MARK_INTEGER_ARRAY(*n + 1, istr);
        ZEK_MARK_INTEGER_ARRAY(*n, iwork);
    }
    F11ZNF_WORKER(*n, nnz, a, irow, icol, dup, zero, istr, iwork, front.errbuf(), ifail, dup_len, zero_len,
                  zek::kErrbufLength);
    front.finish(*ifail);
}

void F11ZPF(const int *n, int *nnz, double a[], int irow[], int icol[], const char *dup, const char *zero, int istr[],
            int iwork[], int *ifail, int dup_len, int zero_len) {
    zek::Front front("F11ZPF");
    if (*n > 0) {
        ZEK_MARK_INTEGER_ARRAY(*n + 1, istr);
        ZEK_MARK_INTEGER_ARRAY(*n, iwork);
    }
    F11ZPF_WORKER(*n, nnz, a, irow, icol, dup, zero, istr, iwork, front.errbuf(), ifail, dup_len, zero_len,
                  zek::kErrbufLength);
    front.finish(*ifail);
}

void F11XAF_WORKER(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[],
                   const char *check, const double x[], double y[], char *errbuf, int *ifail, int trans_len,
                   int check_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::product_worker<double>("F11XAF", false, trans, n, nnz, a, irow, icol, check, x, y, errbuf, ifail,
                                        trans_len, check_len);
}

void F11XNF_WORKER(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[],
                   const char *check, const double x[], double y[], char *errbuf, int *ifail, int trans_len,
                   int check_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::product_worker<Complex>("F11XNF", false, trans, n, nnz, a, irow, icol, check, x, y, errbuf, ifail,
                                         trans_len, check_len);
}

void F11XEF_WORKER(int n, int nnz, const double a[], const int irow[], const int icol[], const char *check,
                   const double x[], double y[], char *errbuf, int *ifail, int check_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::product_worker<double>("F11XEF", true, "N", n, nnz, a, irow, icol, check, x, y, errbuf, ifail, 1,
                                        check_len);
}

void F11XSF_WORKER(int n, int nnz, const double a[], const int irow[], const int icol[], const char *check,
                   const double x[], double y[], char *errbuf, int *ifail, int check_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::product_worker<Complex>("F11XSF", true, "N", n, nnz, a, irow, icol, check, x, y, errbuf, ifail, 1,
                                         check_len);
}

void F11XAF(const char *trans, const int *n, const int *nnz, const double a[], const int irow[], const int icol[],
            const char *check, const double x[], double y[], int *ifail, int trans_len, int check_len) {
    zek::Front front("F11XAF");
    F11XAF_WORKER(trans, *n, *nnz, a, irow, icol, check, x, y, front.errbuf(), ifail, trans_len, check_len,
                  zek::kErrbufLength);
    front.finish(*ifail);
}

void F11XNF(const char *trans, const int *n, const int *nnz, const double a[], const int irow[], const int icol[],
            const char *check, const double x[], double y[], int *ifail, int trans_len, int check_len) {
    zek::Front front("F11XNF");
    F11XNF_WORKER(trans, *n, *nnz, a, irow, icol, check, x, y, front.errbuf(), ifail, trans_len, check_len,
                  zek::kErrbufLength);
    front.finish(*ifail);
}

void F11XEF(const int *n, const int *nnz, const double a[], const int irow[], const int icol[], const char *check,
            const double x[], double y[], int *ifail, int check_len) {
    zek::Front front("F11XEF");
    F11XEF_WORKER(*n, *nnz, a, irow, icol, check, x, y, front.errbuf(), ifail, check_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void F11XSF(const int *n, const int *nnz, const double a[], const int irow[], const int icol[], const char *check,
            const double x[], double y[], int *ifail, int check_len) {
    zek::Front front("F11XSF");
    F11XSF_WORKER(*n, *nnz, a, irow, icol, check, x, y, front.errbuf(), ifail, check_len, zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
