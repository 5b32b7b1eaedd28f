// Solves with the incomplete factors: forward substitution with L, the stored reciprocal diagonal, and
// back substitution with U (or L' / L^H), in permuted positions.  Each permuted unknown is kept in the
// result vector at its input index throughout, so that no scratch vector is needed.
#include "sparse/exits.h"
#include "sparse/sparse.h"

#include "frame/ifail.h"
#include "zek2/f11.h"

#include <algorithm>
#include <string>

namespace zek::sparse {
namespace {

// The advice that ends the corruption messages; a few messages of the complex routines name the real
// solver in their advice, and are kept as they stand.
struct SolveTexts {
    const char *name;
    bool symmetric;
    std::string regular;  // most messages
    std::string range;    // IROW/ICOL and permutation range messages
    std::string istr;     // "ISTR appears to be invalid"
    std::string repeat;   // a repeated permutation value
};

std::string lu_advice(const char *factor, const char *solve) {
    return std::string("\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between "
                       "calls to ") + factor + " and " + solve + ".";
}
std::string cholesky_advice(const char *factor, const char *solve) {
    return std::string("\n    Check that A, IROW, ICOL, IPIV and ISTR have not been\n    corrupted between calls to ") +
           factor + " and " + solve + ".";
}

// A permutation's range and repeated-value rows, the second numbered one below the first.
#define ZEK_PERMUTATION(p, number)                                                                                \
    {3, number, " ** On entry, " p "(I) .lt. 1 or " p "(I) .gt. N:\n    I =%16ld, " p "(I) =%16ld, N =%16ld."},    \
    {3, number - 1, " ** On entry, " p "(I) is a repeated value:\n    I =%16ld."}
// The corruption exits of the factor region.  Each solver ends these texts with its own advice on which
// calls must leave the factors alone, so a row holds the text before the advice.
enum CorruptExit {
    kIstrInvalid, kIrowOutside, kIcolOutside, kIcolAboveRow, kEntryOutOfOrder, kEntryDuplicate, kIstrInconsistent,
    kIdiagIncorrect, kIpivRange, kIpivRepeat, kIpivpRange, kIpivpRepeat, kIpivqRange, kIpivqRepeat
};
constexpr ExitRow kCorruptExits[] = {
    {3, 99997, " ** On entry, ISTR appears to be invalid."},
    {3, 99996, kIrowRange},
    {3, 99995, kIcolRange},
    {3, 99995, kIcolLower},
    {3, 99994, kOutOfOrder},
    {3, 99993, kDuplicate},
    {3, 99992, " ** On entry, ISTR(I) is inconsistent with IROW:\n    I =%16ld."},
    {3, 99991, " ** On entry, IDIAG(I) appears to be incorrect:\n    I =%16ld."},
    ZEK_PERMUTATION("IPIV", 99990),
    ZEK_PERMUTATION("IPIVP", 99990),
    ZEK_PERMUTATION("IPIVQ", 99988),
};
#undef ZEK_PERMUTATION

// Raises a corruption exit with the solver's advice after its text.
void take_advised(FailureExit &exit, CorruptExit key, const std::string &advice,
                  std::initializer_list<MessageValue> values = {}) {
    const ExitRow &row = kCorruptExits[key];
    exit.fail(row.ierror, row.number, (row.text + advice).c_str(), values);
}

// Checks a permutation; X (real parts) is the scratch: -1 everywhere, negated at each visit.
template <class T>
bool check_permutation(FailureExit &exit, const SolveTexts &texts, CorruptExit range, int n, const int perm[], T x[]) {
    // The repeated-value row follows the range row of the same permutation.
    const CorruptExit repeat = static_cast<CorruptExit>(range + 1);
    for (int i = 0; i < n; ++i) {
        if (perm[i] < 1 || perm[i] > n) {
            take_advised(exit, range, texts.range, {i + 1, perm[i], n});
            return false;
        }
    }
    std::fill(x, x + n, T(-1.0));
    for (int i = 0; i < n; ++i) {
        T &mark = x[perm[i] - 1];
        mark = -mark;
        if (real_part(mark) < 0.0) {
            std::fill(x, x + n, T(0.0));
            take_advised(exit, repeat, texts.repeat, {i + 1});
            return false;
        }
    }
    std::fill(x, x + n, T(0.0));
    return true;
}

// The corruption checks of the factor region; true when the data may be used.
template <class T>
bool check_factors(FailureExit &exit, const SolveTexts &texts, int n, int la, const int irow[], const int icol[],
                   const int ipivp[], const int ipivq[], const int istr[], const int idiag[], T x[]) {
    const Index first = istr[0];
    const Index count = static_cast<Index>(istr[n]) - first;
    if (first < 1 || count < 1 || first - 1 + count > la || count > 2147483647) {
        take_advised(exit, kIstrInvalid, texts.istr);
        return false;
    }
    const int *ri = irow + (first - 1);
    const int *ci = icol + (first - 1);
    int bad = 0;
    const int status = cs_check(n, static_cast<int>(count), ri, ci, texts.symmetric, &bad);
    if (status == 2 || status == 3) {
        take_advised(exit, kIstrInvalid, texts.istr);
        return false;
    }
    if (status != 0) {
        // Positions are reported in the caller's numbering of the whole array.
        const int at = static_cast<int>(bad + first - 1);
        if (status == 4) {
            take_advised(exit, kIrowOutside, texts.range, {at, irow[at - 1], n});
        } else if (status == 5 && !texts.symmetric) {
            take_advised(exit, kIcolOutside, texts.range, {at, icol[at - 1], n});
        } else if (status == 5) {
            take_advised(exit, kIcolAboveRow, texts.regular, {at, icol[at - 1], irow[at - 1]});
        } else if (status == 6) {
            take_advised(exit, kEntryOutOfOrder, texts.regular, {at});
        } else {
            take_advised(exit, kEntryDuplicate, texts.regular, {at});
        }
        return false;
    }
    // ISTR against IROW and the diagonals, row by row.
    for (int i = 1; i <= n; ++i) {
        const Index s = istr[i - 1], e = istr[i];
        bool consistent = s <= e && s >= first && e <= first + count;
        for (Index p = s; consistent && p < e; ++p) consistent = irow[p - 1] == i;
        if (consistent && s > first) consistent = irow[s - 2] < i;
        if (!consistent) {
            take_advised(exit, kIstrInconsistent, texts.regular, {i});
            return false;
        }
        const Index d = texts.symmetric ? e - 1 : idiag[i - 1];
        if (d < s || d >= e || icol[d - 1] != i) {
            if (texts.symmetric) {
                take_advised(exit, kIstrInvalid, texts.istr);
            } else {
                take_advised(exit, kIdiagIncorrect, texts.regular, {i});
            }
            return false;
        }
    }
    if (texts.symmetric) return check_permutation(exit, texts, kIpivRange, n, ipivp, x);
    return check_permutation(exit, texts, kIpivpRange, n, ipivp, x) &&
           check_permutation(exit, texts, kIpivqRange, n, ipivq, x);
}

} // namespace

template <class T>
void lu_solve(bool transpose, int n, const T a[], const int icol[], const int ipivp[], const int ipivq[],
              const int istr[], const int idiag[], const T y[], T x[]) {
    const int *in = transpose ? ipivq : ipivp;
    const int *out = transpose ? ipivp : ipivq;
    // Unknown i lives at x[out[i]-1].
    for (int i = 0; i < n; ++i) x[out[i] - 1] = y[in[i] - 1];
    if (!transpose) {
        for (int i = 1; i <= n; ++i) {
            T s = x[out[i - 1] - 1];
            for (Index p = istr[i - 1]; p < idiag[i - 1]; ++p) s -= a[p - 1] * x[out[icol[p - 1] - 1] - 1];
            x[out[i - 1] - 1] = s;
        }
        for (int i = 1; i <= n; ++i) x[out[i - 1] - 1] *= a[idiag[i - 1] - 1];
        for (int i = n - 1; i >= 1; --i) {
            T s = x[out[i - 1] - 1];
            for (Index p = idiag[i - 1] + 1; p < istr[i]; ++p) s -= a[p - 1] * x[out[icol[p - 1] - 1] - 1];
            x[out[i - 1] - 1] = s;
        }
        return;
    }
    for (int i = 1; i <= n; ++i) {
        const T v = x[out[i - 1] - 1];
        for (Index p = idiag[i - 1] + 1; p < istr[i]; ++p) x[out[icol[p - 1] - 1] - 1] -= a[p - 1] * v;
    }
    for (int i = 1; i <= n; ++i) x[out[i - 1] - 1] *= a[idiag[i - 1] - 1];
    for (int i = n; i >= 2; --i) {
        const T v = x[out[i - 1] - 1];
        for (Index p = istr[i - 1]; p < idiag[i - 1]; ++p) x[out[icol[p - 1] - 1] - 1] -= a[p - 1] * v;
    }
}

template <class T>
void cholesky_solve(int n, const T a[], const int icol[], const int ipiv[], const int istr[], const T y[], T x[]) {
    for (int i = 0; i < n; ++i) x[ipiv[i] - 1] = y[ipiv[i] - 1];
    for (int i = 1; i <= n; ++i) {
        const Index d = istr[i] - 1;
        T s = x[ipiv[i - 1] - 1];
        for (Index p = istr[i - 1]; p < d; ++p) s -= a[p - 1] * x[ipiv[icol[p - 1] - 1] - 1];
        x[ipiv[i - 1] - 1] = s;
    }
    for (int i = 1; i <= n; ++i) x[ipiv[i - 1] - 1] *= a[istr[i] - 2];
    for (int i = n; i >= 2; --i) {
        const T v = x[ipiv[i - 1] - 1];
        for (Index p = istr[i - 1]; p < istr[i] - 1; ++p) x[ipiv[icol[p - 1] - 1] - 1] -= conjugate(a[p - 1]) * v;
    }
}

template void lu_solve<double>(bool, int, const double[], const int[], const int[], const int[], const int[],
                               const int[], const double[], double[]);
template void lu_solve<Complex>(bool, int, const Complex[], const int[], const int[], const int[], const int[],
                                const int[], const Complex[], Complex[]);
template void cholesky_solve<double>(int, const double[], const int[], const int[], const int[], const double[],
                                     double[]);
template void cholesky_solve<Complex>(int, const Complex[], const int[], const int[], const int[], const Complex[],
                                      Complex[]);

namespace {

// The argument exits of the four solvers.  The corruption exits above paste each solver's own advice
// into their texts, so they are built where they are raised.
enum SolveExit { kCheck, kNLessThan1, kTrans };
constexpr ExitRow kSolveExits[] = {
    {1, 99999, kCheckLetter},
    {2, 99998, kNLessOne},
    {1, 99986, kTransLetter},
};

template <class T>
void solve_worker(const SolveTexts &texts, const char *trans, int n, const double a[], int la, const int irow[],
                  const int icol[], const int ipivp[], const int ipivq[], const int istr[], const int idiag[],
                  const char *check, const double y[], double x[], char *errbuf, int *ifail, int trans_len,
                  int check_len) {
    FailureExit exit(texts.name, errbuf, ifail);
    const char c = letter(check, check_len);
    if (c != 'C' && c != 'N') {
        take(exit, kSolveExits, kCheck, {letter_text(check, check_len)});
        return;
    }
    if (n < 1) {
        take(exit, kSolveExits, kNLessThan1, {n});
        return;
    }
    T *xv = values<T>(x);
    if (c == 'C' && !check_factors(exit, texts, n, la, irow, icol, ipivp, ipivq, istr, idiag, xv)) return;
    const char t = texts.symmetric ? 'N' : letter(trans, trans_len);
    if (t != 'N' && t != 'T') {
        take(exit, kSolveExits, kTrans, {letter_text(trans, trans_len)});
        return;
    }
    if (texts.symmetric) cholesky_solve(n, values<T>(a), icol, ipivp, istr, values<T>(y), xv);
    else lu_solve(t == 'T', n, values<T>(a), icol, ipivp, ipivq, istr, idiag, values<T>(y), xv);
    exit.succeed();
}

const SolveTexts &texts_dbf() {
    static const SolveTexts t{"F11DBF", false, lu_advice("F11DAF", "F11DBF"), lu_advice("F11DAF", "F11DBF"),
                              lu_advice("F11DAF", "F11DBF"), lu_advice("F11DAF", "F11DBF")};
    return t;
}
const SolveTexts &texts_dpf() {
    static const SolveTexts t{"F11DPF", false, lu_advice("F11DNF", "F11DPF"), lu_advice("F11DNF", "F11DBF"),
                              lu_advice("F11DNF", "F11DBF"), lu_advice("F11DNF", "F11DPF")};
    return t;
}
const SolveTexts &texts_jbf() {
    static const SolveTexts t{"F11JBF", true, cholesky_advice("F11JAF", "F11JBF"), cholesky_advice("F11JAF", "F11JBF"),
                              cholesky_advice("F11JAF", "F11JBF"), cholesky_advice("F11JAF", "F11JBF")};
    return t;
}
const SolveTexts &texts_jpf() {
    static const SolveTexts t{"F11JPF", true, cholesky_advice("F11JNF", "F11JPF"), cholesky_advice("F11JNF", "F11JPF"),
                              cholesky_advice("F11JNF", "F11JPF"), cholesky_advice("F11JNF", "F11JBF")};
    return t;
}

} // namespace
} // namespace zek::sparse

using zek::sparse::Complex;

extern "C" {

void F11DBF_WORKER(const char *trans, int n, const double a[], int la, const int irow[], const int icol[],
                   const int ipivp[], const int ipivq[], const int istr[], const int idiag[], const char *check,
                   const double y[], double x[], char *errbuf, int *ifail, int trans_len, int check_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::solve_worker<double>(zek::sparse::texts_dbf(), trans, n, a, la, irow, icol, ipivp, ipivq, istr, idiag,
                                      check, y, x, errbuf, ifail, trans_len, check_len);
}

void F11DPF_WORKER(const char *trans, int n, const double a[], int la, const int irow[], const int icol[],
                   const int ipivp[], const int ipivq[], const int istr[], const int idiag[], const char *check,
                   const double y[], double x[], char *errbuf, int *ifail, int trans_len, int check_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::solve_worker<Complex>(zek::sparse::texts_dpf(), trans, n, a, la, irow, icol, ipivp, ipivq, istr, idiag,
                                       check, y, x, errbuf, ifail, trans_len, check_len);
}

void F11JBF_WORKER(int n, const double a[], int la, const int irow[], const int icol[], const int ipiv[],
                   const int istr[], const char *check, const double y[], double x[], char *errbuf, int *ifail,
                   int check_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::solve_worker<double>(zek::sparse::texts_jbf(), "N", n, a, la, irow, icol, ipiv, ipiv, istr, nullptr,
                                      check, y, x, errbuf, ifail, 1, check_len);
}

void F11JPF_WORKER(int n, const double a[], int la, const int irow[], const int icol[], const int ipiv[],
                   const int istr[], const char *check, const double y[], double x[], char *errbuf, int *ifail,
                   int check_len, int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::solve_worker<Complex>(zek::sparse::texts_jpf(), "N", n, a, la, irow, icol, ipiv, ipiv, istr, nullptr,
                                       check, y, x, errbuf, ifail, 1, check_len);
}

void F11DBF(const char *trans, const int *n, const double a[], const int *la, const int irow[], const int icol[],
            const int ipivp[], const int ipivq[], const int istr[], const int idiag[], const char *check,
            const double y[], double x[], int *ifail, int trans_len, int check_len) {
    zek::Front front("F11DBF");
    F11DBF_WORKER(trans, *n, a, *la, irow, icol, ipivp, ipivq, istr, idiag, check, y, x, front.errbuf(), ifail,
                  trans_len, check_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void F11DPF(const char *trans, const int *n, const double a[], const int *la, const int irow[], const int icol[],
            const int ipivp[], const int ipivq[], const int istr[], const int idiag[], const char *check,
            const double y[], double x[], int *ifail, int trans_len, int check_len) {
    zek::Front front("F11DPF");
    F11DPF_WORKER(trans, *n, a, *la, irow, icol, ipivp, ipivq, istr, idiag, check, y, x, front.errbuf(), ifail,
                  trans_len, check_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void F11JBF(const int *n, const double a[], const int *la, const int irow[], const int icol[], const int ipiv[],
            const int istr[], const char *check, const double y[], double x[], int *ifail, int check_len) {
    zek::Front front("F11JBF");
    F11JBF_WORKER(*n, a, *la, irow, icol, ipiv, istr, check, y, x, front.errbuf(), ifail, check_len,
                  zek::kErrbufLength);
    front.finish(*ifail);
}

void F11JPF(const int *n, const double a[], const int *la, const int irow[], const int icol[], const int ipiv[],
            const int istr[], const char *check, const double y[], double x[], int *ifail, int check_len) {
    zek::Front front("F11JPF");
    F11JPF_WORKER(*n, a, *la, irow, icol, ipiv, istr, check, y, x, front.errbuf(), ifail, check_len,
                  zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
