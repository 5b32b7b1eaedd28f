// The incomplete-LU driver: checks the matrix once, sets up the real general suite, and runs its
// reverse-communication loop with the product and the factor solve of this chapter.
#include "sparse/exits.h"
#include "sparse/sparse.h"

#include "frame/ifail.h"
#include "zek2/f11.h"

#include <algorithm>
#include <string>

namespace zek::sparse {
namespace {

const char *kAdvice = "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls "
                      "to F11DAF and F11DCF.";
const char *kSerious = " ** A serious error has occurred in an internal call to %6s: IFAIL =%6ld\n    Check all subroutine "
                       "calls and array sizes. Seek expert help.";

int driver_method(const char *method, int len) {
    std::string name(method, static_cast<std::size_t>(std::max(len, 0)));
    for (char &c : name) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    while (!name.empty() && name.back() == ' ') name.pop_back();
    if (name == "RGMRES") return 1;
    if (name == "CGS") return 2;
    if (name == "BICGSTAB") return 3;
    if (name == "TFQMR") return 4;
    return 0;
}

// The smallest LWORK: the suite's need (whose BiCGSTAB keeps two more vectors than the classical count)
// and the N elements of the right-hand side the driver keeps in front of the record.
long driver_work(int method, long n, long m) {
    switch (method) {
    case 1: return (n + m + 5) * m + 4 * n + 101;
    case 2: return 8 * n + 100;
    case 3: return std::max((m + 2) * m + 2 * (m + 3) * n + 100, (2 * m + 7) * n + m * m + 4 * m + 100);
    default: return 11 * n + 100;
    }
}

} // namespace
} // namespace zek::sparse

extern "C" {

void F11DCF_WORKER(const char *method, int n, int nnz, const double a[], int la, const int irow[], const int icol[],
                   const int ipivp[], const int ipivq[], const int istr[], const int idiag[], const double b[], int m,
                   double tol, int maxitn, double x[], double *rnorm, int *itn, double work[], int lwork, char *errbuf,
                   int *ifail, int method_len, int errbuf_len) {
    (void)errbuf_len;
    using namespace zek::sparse;
    zek::FailureExit exit("F11DCF", errbuf, ifail);
    int bad = 0;
    const int status = cs_check(n, nnz, irow, icol, false, &bad);
    if (status != 0) {
        report_structure(exit, StructureReport{1, 2, 99999, false, kAdvice}, status, bad, n, nnz, irow, icol);
        return;
    }
    if (static_cast<Index>(la) < 2 * static_cast<Index>(nnz)) {
        exit.fail(1, 99992, " ** On entry, LA .lt. 2*NNZ:\n    LA =%16ld NNZ =%16ld.", {la, nnz});
        return;
    }
    const int code = driver_method(method, method_len);
    if (code == 0) {
        exit.fail(1, 99991, " ** On entry, METHOD .ne. 'RGMRES', 'CGS', or '  BICGSTAB':\n    METHOD = '%s'.",
                  {std::string(method, static_cast<std::size_t>(std::max(method_len, 0)))});
        return;
    }
    const long need = driver_work(code, n, (code == 1 || code == 3) ? std::max(m, 1) : 0);
    if (lwork < need) {
        exit.fail(1, 99990, " ** On entry, LWORK is too small: LWORK =%16ld.\n    Minimum required value of LWORK =%16ld.",
                  {lwork, need});
        return;
    }
    // The one-norm of the matrix, so that no estimate runs.
    std::fill(work, work + n, 0.0);
    for (Index k = 0; k < nnz; ++k) work[icol[k] - 1] += std::fabs(a[k]);
    const double anorm = *std::max_element(work, work + n);
    std::copy(b, b + n, work);
    double *record = work + n;
    const int record_length = lwork - n;
    char inner[zek::kErrbufLength];
    int lwreq = 0, f = 1;
    F11BDF_WORKER(method, "P", "I", "N", 1, n, m, tol, maxitn, anorm, 0.0, 0, &lwreq, record, record_length, inner, &f,
                  method_len, 1, 1, 1, zek::kErrbufLength);
    if (f == -7) {
        exit.fail(1, 99989, " ** On entry, M .lt. 1 or M .gt. MIN (N,%2ld):\n    M =%16ld", {code == 1 ? 50 : 10, m});
        return;
    }
    if (f == -8) {
        exit.fail(1, 99988, " ** On entry, TOL .ge. 1.0: TOL =%12.4E.", {tol});
        return;
    }
    if (f == -9) {
        exit.fail(1, 99987, " ** On entry, MAXITN .lt. 1: MAXITN =%16ld.", {maxitn});
        return;
    }
    if (f != 0) {
        exit.fail(7, 99986, kSerious, {"F11BDFN", f});
        return;
    }
    int irevcm = 0;
    const char *check = "C";
    for (long calls = 0;; ++calls) {
        f = 1;
        F11BEF_WORKER(&irevcm, x, work, nullptr, record, record_length, inner, &f, zek::kErrbufLength);
        if (irevcm == 4) break;
        int g = 1;
        if (irevcm == 1 || irevcm == -1) {
            F11XAF_WORKER(irevcm == 1 ? "N" : "T", n, nnz, a, irow, icol, "N", x, work, inner, &g, 1, 1,
                          zek::kErrbufLength);
        } else if (irevcm == 2) {
            F11DBF_WORKER("N", n, a, la, irow, icol, ipivp, ipivq, istr, idiag, check, x, work, inner, &g, 1, 1,
                          zek::kErrbufLength);
            if (g != 0) {
                exit.fail(3, 99985, (std::string(" ** The CS representation of the preconditioner is invalid.") + kAdvice).c_str());
                return;
            }
            check = "N";
        } else if (irevcm != 3) {
            exit.fail(7, 99984, " ** A serious error has occurred in an internal call to F11BEF: IREVCM =%6ld\n    Check "
                                "all subroutine calls and array sizes. Seek expert help.", {irevcm});
            return;
        }
        (void)calls;
    }
    double stprhs = 0.0, an = 0.0, sg = 0.0;
    int g = 1;
    F11BFF_WORKER(itn, rnorm, &stprhs, &an, &sg, record, record_length, inner, &g, zek::kErrbufLength);
    switch (f) {
    case 0: exit.succeed(); return;
    case 2:
        exit.fail(4, 99983, " ** The required accuracy could not be obtained.\n    However a reasonable accuracy may have been achieved.");
        return;
    case 5: exit.fail(5, 99982, " ** The solution has not converged after%7ld iterations.", {*itn}); return;
    case 6:
        exit.fail(6, 99981, " ** Algorithmic breakdown. A solution is returned, although\n    it is possible that it is completely inaccurate.");
        return;
    default: exit.fail(7, 99980, kSerious, {"F11BEFN", f}); return;
    }
}

void F11DCF(const char *method, const int *n, const int *nnz, const double a[], const int *la, const int irow[],
            const int icol[], const int ipivp[], const int ipivq[], const int istr[], const int idiag[], const double b[],
            const int *m, const double *tol, const int *maxitn, double x[], double *rnorm, int *itn, double work[],
            const int *lwork, int *ifail, int method_len) {
    zek::Front front("F11DCF");
    F11DCF_WORKER(method, *n, *nnz, a, *la, irow, icol, ipivp, ipivq, istr, idiag, b, *m, *tol, *maxitn, x, rnorm, itn,
                  work, *lwork, front.errbuf(), ifail, method_len, zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
