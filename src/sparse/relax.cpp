// The relaxation preconditioners: one SSOR step and Jacobi iterations, for real and complex CS matrices
// and Hermitian SCS matrices.  Both walk the sorted entries in their stored order (and in reverse), so
// that a row's lower entries, its diagonal and its upper entries come in that order without any row
// start array; an entry whose indices fall outside 1..N is passed over, so that an unchecked call can
// give a wrong answer but never touches memory outside the caller's arrays.
#include "sparse/exits.h"
#include "sparse/sparse.h"

#include "frame/ifail.h"
#include "zek2/f11.h"

#include <algorithm>
#include <string>

namespace zek::sparse {

namespace {

bool inside(int n, int i, int j) {
    return static_cast<unsigned>(i) < static_cast<unsigned>(n) && static_cast<unsigned>(j) < static_cast<unsigned>(n);
}

} // namespace

template <class T>
int find_diagonal(int n, int nnz, const T a[], const int irow[], const int icol[], bool hermitian, int idiag[],
                  int *row) {
    // The sorted rows meet their diagonals in increasing order; a row passed without one is missing it.
    int next = 1;
    for (Index k = 0; k < nnz; ++k) {
        if (irow[k] != icol[k]) continue;
        const int i = irow[k];
        if (i < next || i > n) continue;
        if (i > next) {
            *row = next;
            return 1;
        }
        if (is_zero(a[k])) {
            *row = i;
            return 2;
        }
        if (hermitian && conjugate(a[k]) != a[k]) {
            *row = i;
            return 3;
        }
        if (idiag != nullptr) idiag[i - 1] = static_cast<int>(k + 1);
        next = i + 1;
    }
    if (next <= n) {
        *row = next;
        return 1;
    }
    *row = 0;
    return 0;
}

template <class T>
void ssor_apply(Sweep kind, int n, int nnz, const T a[], const int irow[], const int icol[], const int idiag[],
                double omega, const T v[], T x[]) {
    const double scale = (2.0 - omega) / omega;
    for (int i = 0; i < n; ++i) x[i] = scale * v[i];
    // (D/omega + L) z = scale*v, or its upper counterpart for the transpose: each element is final when its
    // diagonal is reached and is then scaled by omega/d.
    for (Index k = 0; k < nnz; ++k) {
        const int i = irow[k] - 1, j = icol[k] - 1;
        if (!inside(n, i, j)) continue;
        if (j == i) x[i] *= omega / a[k];
        else if (kind != Sweep::Upper && j < i) x[i] -= a[k] * x[j];
        else if (kind == Sweep::Upper && j > i) x[j] -= a[k] * x[i];
    }
    // The middle factor: x := D*z.
    if (idiag != nullptr) {
        for (int i = 0; i < n; ++i)
            if (idiag[i] >= 1 && idiag[i] <= nnz) x[i] *= a[idiag[i] - 1];
    } else {
        for (Index k = 0; k < nnz; ++k)
            if (irow[k] == icol[k] && inside(n, irow[k] - 1, icol[k] - 1)) x[irow[k] - 1] *= a[k];
    }
    // The opposite triangle, walking the entries backwards.
    for (Index k = nnz; k-- > 0;) {
        const int i = irow[k] - 1, j = icol[k] - 1;
        if (!inside(n, i, j)) continue;
        if (j == i) x[i] *= omega / a[k];
        else if (kind == Sweep::Lower && j > i) x[i] -= a[k] * x[j];
        else if (kind == Sweep::Upper && j < i) x[j] -= a[k] * x[i];
        else if (kind == Sweep::Hermitian && j < i) x[j] -= conjugate(a[k]) * x[i];
    }
}

template int find_diagonal<double>(int, int, const double[], const int[], const int[], bool, int[], int *);
template int find_diagonal<Complex>(int, int, const Complex[], const int[], const int[], bool, int[], int *);
template void ssor_apply<double>(Sweep, int, int, const double[], const int[], const int[], const int[], double,
                                 const double[], double[]);
template void ssor_apply<Complex>(Sweep, int, int, const Complex[], const int[], const int[], const int[], double,
                                  const Complex[], Complex[]);

namespace {

constexpr const char *kDiagonalRow = " ** On entry, the diagonal element of the I-th row is zero or missing:\n    I =%16ld.";

// The SSOR step (F11DDF, F11DRF, F11JRF).
enum SsorExit { kSsorTrans, kSsorCheck, kSsorOmega, kSsorNonRealDiagonal, kSsorDiagonal };
constexpr ExitRow kSsorExits[] = {
    {1, 99999, kTransLetter},
    {1, 99998, kCheckLetter},
    {1, 99997, " ** On entry, OMEGA .le. 0.0 or OMEGA .ge. 2.0: OMEGA = %12.4E."},
    {3, 99982, " ** The matrix A has a non-real diagonal entry in row%16ld."},
    {3, 99983, kDiagonalRow},
};

// The Jacobi iterations.
enum JacobiExit {
    kJacobiStore, kJacobiTrans, kJacobiInit, kJacobiCheck, kJacobiNiter, kJacobiDiagonal, kJacobiDiagZero
};
constexpr ExitRow kJacobiExits[] = {
    {1, 99999, " ** On entry, STORE .ne. 'N' or 'S': STORE = '%s'."},
    {1, 99998, kTransLetter},
    {1, 99997, " ** On entry, INIT .ne. 'N' or 'I': INIT = '%s' ."},
    {1, 99996, " ** On entry, CHECK .ne. 'N' or 'C': CHECK = '%s'."},
    {1, 99995, " ** On entry, NITER .lt. 1: NITER =%16ld."},
    {3, 99983, kDiagonalRow},
    {3, 99982, " ** On entry, the element DIAG(I) is zero:\n    I =%16ld."},
};

// The sizes, and with CHECK 'C' the whole structure: IFAIL 1 for sizes, 2 for indices.
bool checked_structure(FailureExit &exit, bool check, bool symmetric, int n, int nnz, const int irow[],
                       const int icol[]) {
    int bad = 0;
    int status = 0;
    if (check) status = cs_check(n, nnz, irow, icol, symmetric, &bad);
    else if (n < 1) status = 1;
    else if (nnz < 1) status = 2;
    else if (static_cast<double>(nnz) > (symmetric ? 0.5 * n * (n + 1.0) : static_cast<double>(n) * n)) status = 3;
    if (status == 0) return true;
    report_structure(exit, StructureReport{1, 2, 99990, symmetric, nullptr}, status, bad, n, nnz, irow, icol);
    return false;
}

// One SSOR step as a public routine: F11DDF, F11DRF (TRANS 'N' / 'T') and F11JRF (Hermitian).
template <class T>
void ssor_step(const char *name, Sweep kind, const char *trans, int trans_len, int n, int nnz, const double *a,
               const int irow[], const int icol[], double omega, const char *check, int check_len, const double *v,
               double *x, char *errbuf, int *ifail) {
    FailureExit exit(name, errbuf, ifail);
    if (kind != Sweep::Hermitian) {
        const char t = letter(trans, trans_len);
        if (t != 'N' && t != 'T') {
            take(exit, kSsorExits, kSsorTrans, {letter_text(trans, trans_len)});
            return;
        }
        kind = t == 'T' ? Sweep::Upper : Sweep::Lower;
    }
    const char c = letter(check, check_len);
    if (c != 'C' && c != 'N') {
        take(exit, kSsorExits, kSsorCheck, {letter_text(check, check_len)});
        return;
    }
    if (!(omega > 0.0 && omega < 2.0)) {
        take(exit, kSsorExits, kSsorOmega, {omega});
        return;
    }
    const bool hermitian = kind == Sweep::Hermitian;
    if (!checked_structure(exit, c == 'C', hermitian, n, nnz, irow, icol)) return;
    const T *values_a = values<T>(a);
    if (c == 'C') {
        int row = 0;
        const int status = find_diagonal(n, nnz, values_a, irow, icol, hermitian, nullptr, &row);
        if (status == 3) {
            take(exit, kSsorExits, kSsorNonRealDiagonal, {row});
            return;
        }
        if (status != 0) {
            take(exit, kSsorExits, kSsorDiagonal, {row});
            return;
        }
    }
    ssor_apply(kind, n, nnz, values_a, irow, icol, nullptr, omega, values<T>(v), values<T>(x));
    exit.succeed();
}

// NITER Jacobi sweeps X := X + inverse(D)*(V - A*X) (or A'), by rows; WORK holds the residual.
template <class T>
void jacobi_iteration(const char *name, const char *store, const char *trans, const char *init, int niter, int n,
                      int nnz, const double *a, const int irow[], const int icol[], const char *check,
                      const double *v, double *x, double *diag, double *work, char *errbuf, int *ifail, int store_len,
                      int trans_len, int init_len, int check_len) {
    FailureExit exit(name, errbuf, ifail);
    const char s = letter(store, store_len), t = letter(trans, trans_len), in = letter(init, init_len),
               c = letter(check, check_len);
    if (s != 'N' && s != 'S') {
        take(exit, kJacobiExits, kJacobiStore, {letter_text(store, store_len)});
        return;
    }
    if (t != 'N' && t != 'T') {
        take(exit, kJacobiExits, kJacobiTrans, {letter_text(trans, trans_len)});
        return;
    }
    if (in != 'N' && in != 'I') {
        take(exit, kJacobiExits, kJacobiInit, {letter_text(init, init_len)});
        return;
    }
    if (c != 'N' && c != 'C') {
        take(exit, kJacobiExits, kJacobiCheck, {letter_text(check, check_len)});
        return;
    }
    if (niter < 1) {
        take(exit, kJacobiExits, kJacobiNiter, {niter});
        return;
    }
    if (!checked_structure(exit, c == 'C', false, n, nnz, irow, icol)) return;
    const T *va = values<T>(a), *vv = values<T>(v);
    T *vx = values<T>(x), *vd = values<T>(diag), *r = values<T>(work);
    if (s == 'N') {
        // The diagonal is read from the matrix into DIAG, for the caller's later calls with STORE 'S'.
        int row = 0;
        std::fill(vd, vd + n, T(0.0));
        for (Index k = 0; k < nnz; ++k)
            if (irow[k] == icol[k] && inside(n, irow[k] - 1, irow[k] - 1)) vd[irow[k] - 1] = va[k];
        for (int i = 0; i < n && row == 0; ++i)
            if (is_zero(vd[i])) row = i + 1;
        if (row != 0) {
            take(exit, kJacobiExits, kJacobiDiagonal, {row});
            return;
        }
    } else {
        for (int i = 0; i < n; ++i)
            if (is_zero(vd[i])) {
                take(exit, kJacobiExits, kJacobiDiagZero, {i + 1});
                return;
            }
    }
    if (in == 'I')
        for (int i = 0; i < n; ++i) vx[i] = vv[i] / vd[i];
    for (int sweep = 0; sweep < niter; ++sweep) {
        std::copy(vv, vv + n, r);
        for (Index k = 0; k < nnz; ++k) {
            const int i = irow[k] - 1, j = icol[k] - 1;
            if (!inside(n, i, j)) continue;
            if (t == 'N') r[i] -= va[k] * vx[j];
            else r[j] -= va[k] * vx[i];
        }
        for (int i = 0; i < n; ++i) vx[i] += r[i] / vd[i];
    }
    exit.succeed();
}

} // namespace
} // namespace zek::sparse

using zek::sparse::Complex;
using zek::sparse::Sweep;

extern "C" {

void F11_SSOR_APPLY(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[],
                    const int istr[], const int idiag[], double omega, const double v[], double x[], int trans_len) {
    // The sorted entries give the row order, so ISTR is not consulted.
    (void)istr;
    const char t = zek::sparse::letter(trans, trans_len);
    zek::sparse::ssor_apply(t == 'T' ? Sweep::Upper : Sweep::Lower, n, nnz, a, irow, icol, idiag, omega, v, x);
}

#define SSOR_STEP(NAME, WORKER, TYPE)                                                                              \
    void WORKER(const char *trans, int n, int nnz, const double a[], const int irow[], const int icol[], double omega, \
                const char *check, const double v[], double x[], char *errbuf, int *ifail, int trans_len,          \
                int check_len, int errbuf_len) {                                                                   \
        (void)errbuf_len;                                                                                          \
        zek::sparse::ssor_step<TYPE>(#NAME, Sweep::Lower, trans, trans_len, n, nnz, a, irow, icol, omega, check,  \
                                     check_len, v, x, errbuf, ifail);                                              \
    }                                                                                                              \
    void NAME(const char *trans, const int *n, const int *nnz, const double a[], const int irow[], const int icol[], \
              const double *omega, const char *check, const double v[], double x[], int *ifail, int trans_len,    \
              int check_len) {                                                                                     \
        zek::Front front(#NAME);                                                                                   \
        WORKER(trans, *n, *nnz, a, irow, icol, *omega, check, v, x, front.errbuf(), ifail, trans_len, check_len,  \
               zek::kErrbufLength);                                                                                \
        front.finish(*ifail);                                                                                      \
    }

SSOR_STEP(F11DDF, F11DDF_WORKER, double)
SSOR_STEP(F11DRF, F11DRF_WORKER, Complex)

void F11JRF_WORKER(int n, int nnz, const double a[], const int irow[], const int icol[], double omega,
                   const char *check, const double v[], double x[], char *errbuf, int *ifail, int check_len,
                   int errbuf_len) {
    (void)errbuf_len;
    zek::sparse::ssor_step<Complex>("F11JRF", Sweep::Hermitian, nullptr, 0, n, nnz, a, irow, icol, omega, check,
                                    check_len, v, x, errbuf, ifail);
}
void F11JRF(const int *n, const int *nnz, const double a[], const int irow[], const int icol[], const double *omega,
            const char *check, const double v[], double x[], int *ifail, int check_len) {
    zek::Front front("F11JRF");
    F11JRF_WORKER(*n, *nnz, a, irow, icol, *omega, check, v, x, front.errbuf(), ifail, check_len, zek::kErrbufLength);
    front.finish(*ifail);
}

#define JACOBI(NAME, WORKER, TYPE)                                                                                 \
    void WORKER(const char *store, const char *trans, const char *init, int niter, int n, int nnz, const double a[], \
                const int irow[], const int icol[], const char *check, const double v[], double x[], double diag[], \
                double work[], char *errbuf, int *ifail, int store_len, int trans_len, int init_len, int check_len, \
                int errbuf_len) {                                                                                  \
        (void)errbuf_len;                                                                                          \
        zek::sparse::jacobi_iteration<TYPE>(#NAME, store, trans, init, niter, n, nnz, a, irow, icol, check, v, x,  \
                                            diag, work, errbuf, ifail, store_len, trans_len, init_len, check_len); \
    }                                                                                                              \
    void NAME(const char *store, const char *trans, const char *init, const int *niter, const int *n, const int *nnz, \
              const double a[], const int irow[], const int icol[], const char *check, const double v[], double x[], \
              double diag[], double work[], int *ifail, int store_len, int trans_len, int init_len, int check_len) { \
        zek::Front front(#NAME);                                                                                   \
        WORKER(store, trans, init, *niter, *n, *nnz, a, irow, icol, check, v, x, diag, work, front.errbuf(), ifail, \
               store_len, trans_len, init_len, check_len, zek::kErrbufLength);                                     \
        front.finish(*ifail);                                                                                      \
    }

JACOBI(F11DKF, F11DKF_WORKER, double)
JACOBI(F11DXF, F11DXF_WORKER, Complex)

} // extern "C"
