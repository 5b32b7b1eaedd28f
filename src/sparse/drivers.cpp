// The drivers: each checks the matrix once, sets up a Krylov suite, and runs its reverse-communication
// loop with the products of this chapter and a preconditioner (incomplete factors, Jacobi or SSOR).
// One skeleton serves all six: the real and complex general drivers and the Hermitian ones differ in
// their texts, their suite and the preconditioner they plug in.
#include "sparse/exits.h"
#include "sparse/sparse.h"

#include "frame/ifail.h"
#include "zek2/f11.h"

#include <algorithm>
#include <string>
#include <type_traits>

namespace zek::sparse {
namespace {

// The drivers' failure exits.  Where the drivers' texts differ (the TOL layout, the accuracy wording, the
// internal names) each variant is a row of its own, and a driver names its rows in DriverTexts.
#define ZEK_ADVICE_DCF                                                                                            \
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between "             \
    "calls to F11DAF and F11DCF."
#define ZEK_ADVICE_DQF                                                                                            \
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between "             \
    "calls to F11DNF and F11DQF."
#define ZEK_ADVICE_JQF                                                                                            \
    "\n    Check that A, IROW, ICOL, IPIV and ISTR have not been\n    corrupted between calls to F11JNF and F11JQF."
#define ZEK_SERIOUS_ADVICE "\n    Check all subroutine calls and array sizes. Seek expert help."
#define ZEK_SERIOUS " ** A serious error has occurred in an internal call to %6s: IFAIL =%6ld" ZEK_SERIOUS_ADVICE
#define ZEK_IREVCM(step) " ** A serious error has occurred in an internal call to " step ": IREVCM =%6ld" ZEK_SERIOUS_ADVICE
#define ZEK_INVALID_CS " ** The CS representation of the preconditioner is invalid."

enum DriverExit {
    kMethodHermitian, kMethodGeneral, kLworkShort, kPreconLetter, kOmegaRange, kNoDiagonal, kZeroDiagonal,
    kNonRealDiagonal, kLaShort, kMRange, kTolTight, kTolBlank, kMaxitnLessThan1, kSetupSerious, kSetupSeriousHermitian,
    kIrevcmBef, kIrevcmBsf, kIrevcmGsf, kInvalidDcf, kInvalidDqf, kInvalidJqf, kMayHave, kHas, kNotConverged,
    kBreakdown, kPreconditionerNotDefinite, kMatrixNotDefinite, kStepSerious, kStepSeriousHermitian
};
constexpr ExitRow kDriverExits[] = {
    {1, 99991, " ** On entry, METHOD .ne. 'CG' or 'SYMMLQ': METHOD = '%s'."},
    {1, 99991, " ** On entry, METHOD .ne. 'RGMRES', 'CGS', or '  BICGSTAB':\n    METHOD = '%s'."},
    {1, 99990, " ** On entry, LWORK is too small: LWORK =%16ld.\n    Minimum required value of LWORK =%16ld."},
    {1, 99993, " ** On entry, PRECON .ne. 'N', 'J' or 'S': PRE  CON = '%s'."},
    {1, 99992, " ** On entry, OMEGA .le. 0.0 or OMEGA .ge. 2.0: OMEGA = %12.4E."},
    {3, 99979, " ** The matrix A has no diagonal entry in row%16ld."},
    {3, 99978, " ** The matrix A has a zero diagonal entry in row%16ld."},
    {3, 99977, " ** The matrix A has a non-real diagonal entry in row%16ld."},
    {1, 99992, " ** On entry, LA .lt. 2*NNZ:\n    LA =%16ld NNZ =%16ld."},
    {1, 99989, " ** On entry, M .lt. 1 or M .gt. MIN (N,%2ld):\n    M =%16ld"},
    {1, 99988, " ** On entry, TOL .ge. 1.0: TOL =%12.4E."},
    {1, 99988, " ** On entry, TOL .ge. 1.0: TOL = %12.4E."},
    {1, 99987, " ** On entry, MAXITN .lt. 1: MAXITN =%16ld."},
    {7, 99986, ZEK_SERIOUS},
    {8, 99986, ZEK_SERIOUS},
    {7, 99984, ZEK_IREVCM("F11BEF")},
    {7, 99984, ZEK_IREVCM("F11BSF")},
    {8, 99984, ZEK_IREVCM("F11GSF")},
    {3, 99985, ZEK_INVALID_CS ZEK_ADVICE_DCF},
    {3, 99985, ZEK_INVALID_CS ZEK_ADVICE_DQF},
    {3, 99985, " ** The SCS representation of the preconditioner is invalid." ZEK_ADVICE_JQF},
    {4, 99983, " ** The required accuracy could not be obtained.\n    However a reasonable accuracy may have been achieved."},
    {4, 99983, " ** The required accuracy could not be obtained.\n    However a reasonable accuracy has been achieved."},
    {5, 99982, " ** The solution has not converged after%7ld iterations."},
    {6, 99981, " ** Algorithmic breakdown. A solution is returned, although\n    it is possible that it is completely inaccurate."},
    {6, 99981, " ** The preconditioner appears not to be positive-definite.\n    The computation cannot continue."},
    {7, 99980, " ** The matrix of the coefficients A appears not to be positive-definite.\n    The computation cannot continue."},
    {7, 99979, ZEK_SERIOUS},
    {8, 99979, ZEK_SERIOUS},
};

// What differs between the drivers' messages.
struct DriverTexts {
    const char *setup_w, *step_w, *diag_w; // internal names in the serious-error text
    const char *advice;                    // appended to structure texts, or null
    DriverExit irevcm;                     // the IREVCM exit, naming the solver's step routine
    DriverExit invalid;                    // IFAIL 3 of a factor preconditioner (the relaxation steps never fail)
    DriverExit tol;                        // the TOL layout
    DriverExit accuracy;                   // the accuracy wording
};

const DriverTexts kDcf{"F11BDFN", "F11BEFN", "F11BFFN", ZEK_ADVICE_DCF, kIrevcmBef, kInvalidDcf, kTolTight, kMayHave};
const DriverTexts kDqf{"F11BRFN", "F11BSFN", "F11BTFN", ZEK_ADVICE_DQF, kIrevcmBsf, kInvalidDqf, kTolTight, kMayHave};
const DriverTexts kDef{"F11BDFN", "F11BEFN", "F11BFFN", nullptr, kIrevcmBef, kInvalidDcf, kTolBlank, kMayHave};
const DriverTexts kDsf{"F11BRFN", "F11BSFN", "F11BTFN", nullptr, kIrevcmBsf, kInvalidDqf, kTolBlank, kMayHave};
const DriverTexts kJqf{"F11GRFN", "F11GSFN", "F11GTFN", ZEK_ADVICE_JQF, kIrevcmGsf, kInvalidJqf, kTolTight, kHas};
const DriverTexts kJsf{"F11GRFN", "F11GSFN", "F11GTFN", nullptr, kIrevcmGsf, kInvalidJqf, kTolBlank, kHas};

#undef ZEK_ADVICE_DCF
#undef ZEK_ADVICE_DQF
#undef ZEK_ADVICE_JQF
#undef ZEK_SERIOUS
#undef ZEK_SERIOUS_ADVICE
#undef ZEK_IREVCM
#undef ZEK_INVALID_CS

// The method as a code: general suites 1 RGMRES, 2 CGS, 3 BICGSTAB, 4 TFQMR; Hermitian 1 CG, 2 SYMMLQ.
int driver_method(bool hermitian, const char *method, int len) {
    std::string name(method, static_cast<std::size_t>(std::max(len, 0)));
    for (char &c : name) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    while (!name.empty() && name.back() == ' ') name.pop_back();
    const char *const general[] = {"RGMRES", "CGS", "BICGSTAB", "TFQMR"};
    const char *const symmetric[] = {"CG", "SYMMLQ"};
    const int count = hermitian ? 2 : 4;
    for (int k = 0; k < count; ++k)
        if (name == (hermitian ? symmetric : general)[k]) return k + 1;
    return 0;
}

// The smallest LWORK: the suite's need and the N elements of the right-hand side the driver keeps in
// front of the record.  The general suite's BiCGSTAB keeps two more vectors than the classical count.
long driver_work(bool hermitian, int method, long n, long m) {
    if (hermitian) return (method == 1 ? 7 * n : 10 * n) + 100;
    switch (method) {
    case 1: return (n + m + 5) * m + 4 * n + 101;
    case 2: return 8 * n + 100;
    case 3: return std::max((m + 2) * m + 2 * (m + 3) * n + 100, (2 * m + 7) * n + m * m + 4 * m + 100);
    default: return 11 * n + 100;
    }
}

// The structure of the matrix, checked once at entry.
bool checked_matrix(FailureExit &exit, const DriverTexts &texts, bool hermitian, int n, int nnz, const int irow[],
                    const int icol[]) {
    int bad = 0;
    const int status = cs_check(n, nnz, irow, icol, hermitian, &bad);
    if (status == 0) return true;
    report_structure(exit, StructureReport{1, 2, 99999, hermitian, texts.advice}, status, bad, n, nnz, irow, icol);
    return false;
}

// METHOD and LWORK.  Returns the method code, 0 after a failure exit.
int checked_method(FailureExit &exit, bool hermitian, const char *method, int method_len, int n, int m, int lwork) {
    const int code = driver_method(hermitian, method, method_len);
    const std::string given(method, static_cast<std::size_t>(std::max(method_len, 0)));
    if (code == 0) {
        take(exit, kDriverExits, hermitian ? kMethodHermitian : kMethodGeneral, {given});
        return 0;
    }
    const bool ordered = !hermitian && (code == 1 || code == 3);
    const long need = driver_work(hermitian, code, n, ordered ? std::max(m, 1) : 0);
    if (lwork < need) {
        take(exit, kDriverExits, kLworkShort, {lwork, need});
        return 0;
    }
    return code;
}

// PRECON and OMEGA of the drivers with a built-in preconditioner.  Returns the letter, blank after a
// failure exit.
char checked_relaxation(FailureExit &exit, const char *precon, int precon_len, double omega) {
    const char p = letter(precon, precon_len);
    if (p != 'N' && p != 'J' && p != 'S') {
        take(exit, kDriverExits, kPreconLetter, {letter_text(precon, precon_len)});
        return ' ';
    }
    if (p == 'S' && !(omega > 0.0 && omega < 2.0)) {
        take(exit, kDriverExits, kOmegaRange, {omega});
        return ' ';
    }
    return p;
}

// The diagonal of every row for Jacobi and SSOR, into idiag.
template <class T>
bool found_diagonal(FailureExit &exit, bool hermitian, int n, int nnz, const T a[], const int irow[], const int icol[],
                    int idiag[]) {
    int row = 0;
    switch (find_diagonal(n, nnz, a, irow, icol, hermitian, idiag, &row)) {
    case 0: return true;
    case 1: take(exit, kDriverExits, kNoDiagonal, {row}); return false;
    case 2: take(exit, kDriverExits, kZeroDiagonal, {row}); return false;
    default: take(exit, kDriverExits, kNonRealDiagonal, {row}); return false;
    }
}

// The problem a driver hands to the skeleton, its arguments already checked.
template <class T> struct Problem {
    int method;
    const char *method_name;
    int method_len;
    int n, nnz;
    const T *a;
    const int *irow, *icol;
    const T *b;
    int m;
    double tol;
    int maxitn;
    T *x;
    double *rnorm;
    int *itn;
    double *work;
    int lwork;
    bool precon;
};

// Set-up, the reverse-communication loop and the diagnostics.  apply(u, v) forms v := inverse(M)*u and
// returns false when the preconditioner is found invalid.
template <class T, bool Hermitian, class Apply>
void drive(FailureExit &exit, const DriverTexts &texts, const Problem<T> &p, Apply &&apply) {
    const int n = p.n;
    // The one-norm of the matrix (both triangles of an SCS one), so that no estimator runs.
    double *sums = p.work;
    std::fill(sums, sums + n, 0.0);
    for (Index k = 0; k < p.nnz; ++k) {
        sums[p.icol[k] - 1] += modulus(p.a[k]);
        if (Hermitian && p.irow[k] != p.icol[k]) sums[p.irow[k] - 1] += modulus(p.a[k]);
    }
    const double anorm = *std::max_element(sums, sums + n);
    T *rhs = values<T>(p.work);
    std::copy(p.b, p.b + n, rhs);
    double *record = reinterpret_cast<double *>(rhs + n);
    const int length = p.lwork - n;
    char inner[kErrbufLength];
    int lwreq = 0, f = 1;
    const char *pc = p.precon ? "P" : "N";
    if constexpr (Hermitian) {
        F11GRF_WORKER(p.method_name, pc, "N", "I", "N", 1, n, p.tol, p.maxitn, anorm, 0.0, 0.0, 0, 0, &lwreq, record,
                      length, inner, &f, p.method_len, 1, 1, 1, 1, kErrbufLength);
    } else {
        (std::is_same_v<T, double> ? F11BDF_WORKER : F11BRF_WORKER)(p.method_name, pc, "I", "N", 1, n, p.m, p.tol,
                                                                     p.maxitn, anorm, 0.0, 0, &lwreq, record, length,
                                                                     inner, &f, p.method_len, 1, 1, 1, kErrbufLength);
    }
    if (!Hermitian && f == -7) {
        take(exit, kDriverExits, kMRange, {p.method == 1 ? 50 : 10, p.m});
        return;
    }
    if (f == -8) {
        take(exit, kDriverExits, texts.tol, {p.tol});
        return;
    }
    if (f == -9) {
        take(exit, kDriverExits, kMaxitnLessThan1, {p.maxitn});
        return;
    }
    if (f != 0) {
        take(exit, kDriverExits, Hermitian ? kSetupSeriousHermitian : kSetupSerious, {texts.setup_w, f});
        return;
    }
    auto *const step = Hermitian ? F11GSF_WORKER : std::is_same_v<T, double> ? F11BEF_WORKER : F11BSF_WORKER;
    auto *const diagnose = Hermitian ? F11GTF_WORKER : std::is_same_v<T, double> ? F11BFF_WORKER : F11BTF_WORKER;
    double *u = reinterpret_cast<double *>(p.x), *v = reinterpret_cast<double *>(rhs);
    // Each iteration makes at most a few requests per basis vector; the bound only guards the loop.
    const long most = 8L * (static_cast<long>(p.maxitn) + 2) * (std::max(p.m, 1) + 4) + 1000;
    int irevcm = 0;
    for (long calls = 0;; ++calls) {
        f = 1;
        step(&irevcm, u, v, nullptr, record, length, inner, &f, kErrbufLength);
        if (irevcm == 4) break;
        if (calls > most || (irevcm != 1 && irevcm != -1 && irevcm != 2 && irevcm != 3)) {
            take(exit, kDriverExits, texts.irevcm, {irevcm});
            return;
        }
        if (irevcm == 1 || irevcm == -1) {
            if constexpr (Hermitian) apply_symmetric_product(n, p.nnz, p.a, p.irow, p.icol, p.x, rhs);
            else apply_product(irevcm == -1, n, p.nnz, p.a, p.irow, p.icol, p.x, rhs);
        } else if (irevcm == 2 && !apply(p.x, rhs)) {
            take(exit, kDriverExits, texts.invalid);
            return;
        }
    }
    double stprhs = 0.0, an = 0.0, sg = 0.0;
    int g = 1;
    diagnose(p.itn, p.rnorm, &stprhs, &an, &sg, record, length, inner, &g, kErrbufLength);
    const long iterations = *p.itn;
    if (f == 0) {
        exit.succeed();
    } else if (f == 2) {
        take(exit, kDriverExits, texts.accuracy);
    } else if (Hermitian ? f == 7 : f == 5) {
        take(exit, kDriverExits, kNotConverged, {iterations});
    } else if (!Hermitian && f == 6) {
        take(exit, kDriverExits, kBreakdown);
    } else if (Hermitian && f == 5) {
        take(exit, kDriverExits, kPreconditionerNotDefinite);
    } else if (Hermitian && f == 4) {
        take(exit, kDriverExits, kMatrixNotDefinite);
    } else {
        take(exit, kDriverExits, Hermitian ? kStepSeriousHermitian : kStepSerious, {texts.step_w, f});
    }
}

// The drivers with incomplete factors: the factor solve checks its structure at its first use.
template <class T, class Solve>
void drive_factored(FailureExit &exit, const DriverTexts &texts, bool hermitian, const char *method, int method_len,
                    int n, int nnz, const double *a, int la, const int irow[], const int icol[], const double *b,
                    int m, double tol, int maxitn, double *x, double *rnorm, int *itn, double *work, int lwork,
                    Solve &&solve) {
    if (!checked_matrix(exit, texts, hermitian, n, nnz, irow, icol)) return;
    if (static_cast<Index>(la) < 2 * static_cast<Index>(nnz)) {
        take(exit, kDriverExits, kLaShort, {la, nnz});
        return;
    }
    const int code = checked_method(exit, hermitian, method, method_len, n, m, lwork);
    if (code == 0) return;
    const Problem<T> p{code, method, method_len, n, nnz, values<T>(a), irow, icol, values<T>(b), m, tol, maxitn,
                       values<T>(x), rnorm, itn, work, lwork, true};
    const char *check = "C";
    auto apply = [&](const T *u, T *v) {
        int g = 1;
        char inner[kErrbufLength];
        solve(check, reinterpret_cast<const double *>(u), reinterpret_cast<double *>(v), inner, &g);
        check = "N";
        return g == 0;
    };
    if (hermitian) drive<T, true>(exit, texts, p, apply);
    else drive<T, false>(exit, texts, p, apply);
}

// The drivers with Jacobi or SSOR built in; IWORK(1..N) receives the places of the diagonals.
template <class T>
void drive_relaxed(FailureExit &exit, const DriverTexts &texts, bool hermitian, const char *method,
                   const char *precon, int n, int nnz, const double *a, const int irow[], const int icol[], double omega,
                   const double *b, int m, double tol, int maxitn, double *x, double *rnorm, int *itn, double *work,
                   int lwork, int iwork[], int method_len, int precon_len) {
    if (!checked_matrix(exit, texts, hermitian, n, nnz, irow, icol)) return;
    const char kind = checked_relaxation(exit, precon, precon_len, omega);
    if (kind == ' ') return;
    const int code = checked_method(exit, hermitian, method, method_len, n, m, lwork);
    if (code == 0) return;
    const T *va = values<T>(a);
    if (kind != 'N' && !found_diagonal(exit, hermitian, n, nnz, va, irow, icol, iwork)) return;
    const Problem<T> p{code, method, method_len, n, nnz, va, irow, icol, values<T>(b), m, tol, maxitn, values<T>(x),
                       rnorm, itn, work, lwork, kind != 'N'};
    const Sweep sweep = hermitian ? Sweep::Hermitian : Sweep::Lower;
    auto apply = [&](const T *u, T *v) {
        if (kind == 'J') {
            for (int i = 0; i < n; ++i) v[i] = u[i] / va[iwork[i] - 1];
        } else {
            ssor_apply(sweep, n, nnz, va, irow, icol, iwork, omega, u, v);
        }
        return true;
    };
    if (hermitian) drive<T, true>(exit, texts, p, apply);
    else drive<T, false>(exit, texts, p, apply);
}

} // namespace
} // namespace zek::sparse

using zek::sparse::Complex;

extern "C" {

#define FACTORED_GENERAL(NAME, WORKER, SOLVE_W, TYPE, TEXTS)                                                        \
    void WORKER(const char *method, int n, int nnz, const double a[], int la, const int irow[], const int icol[],     \
                const int ipivp[], const int ipivq[], const int istr[], const int idiag[], const double b[], int m,   \
                double tol, int maxitn, double x[], double *rnorm, int *itn, double work[], int lwork, char *errbuf,  \
                int *ifail, int method_len, int errbuf_len) {                                                         \
        (void)errbuf_len;                                                                                             \
        zek::FailureExit exit(#NAME, errbuf, ifail);                                                                  \
        zek::sparse::drive_factored<TYPE>(                                                                            \
            exit, zek::sparse::TEXTS, false, method, method_len, n, nnz, a, la, irow, icol, b, m, tol, maxitn, x,     \
            rnorm, itn, work, lwork, [&](const char *check, const double *u, double *v, char *inner, int *g) {        \
                SOLVE_W("N", n, a, la, irow, icol, ipivp, ipivq, istr, idiag, check, u, v, inner, g, 1, 1,           \
                        zek::kErrbufLength);                                                                          \
            });                                                                                                       \
    }                                                                                                                 \
    void NAME(const char *method, const int *n, const int *nnz, const double a[], const int *la, const int irow[],   \
              const int icol[], const int ipivp[], const int ipivq[], const int istr[], const int idiag[],            \
              const double b[], const int *m, const double *tol, const int *maxitn, double x[], double *rnorm,        \
              int *itn, double work[], const int *lwork, int *ifail, int method_len) {                                \
        zek::Front front(#NAME);                                                                                      \
        WORKER(method, *n, *nnz, a, *la, irow, icol, ipivp, ipivq, istr, idiag, b, *m, *tol, *maxitn, x, rnorm, itn,  \
               work, *lwork, front.errbuf(), ifail, method_len, zek::kErrbufLength);                                  \
        front.finish(*ifail);                                                                                         \
    }

FACTORED_GENERAL(F11DCF, F11DCF_WORKER, F11DBF_WORKER, double, kDcf)
FACTORED_GENERAL(F11DQF, F11DQF_WORKER, F11DPF_WORKER, Complex, kDqf)

#define RELAXED_GENERAL(NAME, WORKER, TYPE, TEXTS)                                                                    \
    void WORKER(const char *method, const char *precon, int n, int nnz, const double a[], const int irow[],          \
                const int icol[], double omega, const double b[], int m, double tol, int maxitn, double x[],          \
                double *rnorm, int *itn, double work[], int lwork, int iwork[], char *errbuf, int *ifail,             \
                int method_len, int precon_len, int errbuf_len) {                                                     \
        (void)errbuf_len;                                                                                             \
        zek::FailureExit exit(#NAME, errbuf, ifail);                                                                  \
        zek::sparse::drive_relaxed<TYPE>(exit, zek::sparse::TEXTS, false, method, precon, n, nnz, a, irow, icol,      \
                                         omega, b, m, tol, maxitn, x, rnorm, itn, work, lwork, iwork, method_len,     \
                                         precon_len);                                                                 \
    }                                                                                                                 \
    void NAME(const char *method, const char *precon, const int *n, const int *nnz, const double a[],                \
              const int irow[], const int icol[], const double *omega, const double b[], const int *m,                \
              const double *tol, const int *maxitn, double x[], double *rnorm, int *itn, double work[],               \
              const int *lwork, int iwork[], int *ifail, int method_len, int precon_len) {                            \
        zek::Front front(#NAME);                                                                                      \
        WORKER(method, precon, *n, *nnz, a, irow, icol, *omega, b, *m, *tol, *maxitn, x, rnorm, itn, work, *lwork,    \
               iwork, front.errbuf(), ifail, method_len, precon_len, zek::kErrbufLength);                             \
        front.finish(*ifail);                                                                                         \
    }

RELAXED_GENERAL(F11DEF, F11DEF_WORKER, double, kDef)
RELAXED_GENERAL(F11DSF, F11DSF_WORKER, Complex, kDsf)

void F11JQF_WORKER(const char *method, int n, int nnz, const double a[], int la, const int irow[], const int icol[],
                   const int ipiv[], const int istr[], const double b[], double tol, int maxitn, double x[],
                   double *rnorm, int *itn, double work[], int lwork, char *errbuf, int *ifail, int method_len,
                   int errbuf_len) {
    (void)errbuf_len;
    zek::FailureExit exit("F11JQF", errbuf, ifail);
    zek::sparse::drive_factored<Complex>(
        exit, zek::sparse::kJqf, true, method, method_len, n, nnz, a, la, irow, icol, b, 0, tol, maxitn, x, rnorm, itn,
        work, lwork, [&](const char *check, const double *u, double *v, char *inner, int *g) {
            F11JPF_WORKER(n, a, la, irow, icol, ipiv, istr, check, u, v, inner, g, 1, zek::kErrbufLength);
        });
}
void F11JQF(const char *method, const int *n, const int *nnz, const double a[], const int *la, const int irow[],
            const int icol[], const int ipiv[], const int istr[], const double b[], const double *tol,
            const int *maxitn, double x[], double *rnorm, int *itn, double work[], const int *lwork, int *ifail,
            int method_len) {
    zek::Front front("F11JQF");
    F11JQF_WORKER(method, *n, *nnz, a, *la, irow, icol, ipiv, istr, b, *tol, *maxitn, x, rnorm, itn, work, *lwork,
                  front.errbuf(), ifail, method_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void F11JSF_WORKER(const char *method, const char *precon, int n, int nnz, const double a[], const int irow[],
                   const int icol[], double omega, const double b[], double tol, int maxitn, double x[], double *rnorm,
                   int *itn, double work[], int lwork, int iwork[], char *errbuf, int *ifail, int method_len,
                   int precon_len, int errbuf_len) {
    (void)errbuf_len;
    zek::FailureExit exit("F11JSF", errbuf, ifail);
    zek::sparse::drive_relaxed<Complex>(exit, zek::sparse::kJsf, true, method, precon, n, nnz, a, irow, icol, omega, b,
                                        0, tol, maxitn, x, rnorm, itn, work, lwork, iwork, method_len, precon_len);
}
void F11JSF(const char *method, const char *precon, const int *n, const int *nnz, const double a[], const int irow[],
            const int icol[], const double *omega, const double b[], const double *tol, const int *maxitn, double x[],
            double *rnorm, int *itn, double work[], const int *lwork, int iwork[], int *ifail, int method_len,
            int precon_len) {
    zek::Front front("F11JSF");
    F11JSF_WORKER(method, precon, *n, *nnz, a, irow, icol, *omega, b, *tol, *maxitn, x, rnorm, itn, work, *lwork,
                  iwork, front.errbuf(), ifail, method_len, precon_len, zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
