// QR factorisation in the library's reflector form: F01QCF, F01QCZ, f01qcc, F01QDF, F01QDZ, f01qdc and the
// pivoted F01QFZ.
#include "kernels/qr.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/ifail.h"
#include "frame/raise.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/vector_utilities.h"
#include "zek2/f01.h"
#include "zek2/frame.h"

namespace zek {

namespace {

// (I - u*u')*C for the NCOL columns of C (LEN rows from the reflector's row, leading dimension LDC),
// with u = (zeta, z) laid out in U: U[0] is replaced by zeta for the time of the update so that u is
// one contiguous vector.
void apply_reflector(int len, double *u, double zeta, int ncol, double *c, int ldc, double *work) {
    const double keep = u[0];
    u[0] = zeta;
    if (ncol == 1) {
        const double beta = dot(len, u, 1, c, 1);
        axpy(len, -beta, u, 1, c, 1);
    } else {
        dgemv("Transpose", len, ncol, 1.0, c, ldc, u, 1, 0.0, work, 1);
        dger(len, ncol, -1.0, u, 1, work, 1, c, ldc);
    }
    u[0] = keep;
}

} // namespace

void qr_factor(int m, int n, double *a, int lda, double *zeta) {
    const std::ptrdiff_t ld = lda;
    const int steps = std::min(m - 1, n);
    for (int k = 0; k < steps; ++k) {
        double *akk = a + k + k * ld;
        reflector_gen(m - k - 1, akk, akk + 1, 1, 0.0, &zeta[k]);
        if (zeta[k] > 0.0 && k + 1 < n) {
            // One trailing column is treated as a vector: its leading dimension is its own length.
            const int ldt = (k + 2 == n) ? m - k : lda;
            const double keep = *akk;
            *akk = zeta[k];
            // w' = u'*A(k:m, k+1:n) is formed in the row below the reflector's column; ZETA past k is
            // still free, so it serves as the workspace.
            double *w = zeta + k + 1;
            dgemv("Transpose", m - k, n - k - 1, 1.0, akk + ld, ldt, akk, 1, 0.0, w, 1);
            dger(m - k, n - k - 1, -1.0, akk, 1, w, 1, akk + ld, ldt);
            *akk = keep;
        }
    }
    if (m == n && n > 0) zeta[n - 1] = 0.0;
}

void qr_apply(char trans, char wheret, int m, int n, double *a, int lda, const double *zeta, int ncolb, double *b,
              int ldb, double *work) {
    if (std::min(n, ncolb) <= 0) return;
    const std::ptrdiff_t ld = lda;
    const bool forward = (trans == 'T' || trans == 'C');
    for (int step = 0; step < n; ++step) {
        const int k = forward ? step : n - 1 - step;
        double *akk = a + k + k * ld;
        const double z = (wheret == 'S') ? zeta[k] : *akk;
        if (z > 0.0) apply_reflector(m - k, akk, z, ncolb, b + k, ldb, work);
    }
}

void qr_factor_pivoted(char pivot, int m, int n, double *a, int lda, double *zeta, int *perm, double *work) {
    const std::ptrdiff_t ld = lda;
    double *norm = work;      // current norms of the trailing parts of the columns
    double *full = work + n;  // norms of the whole columns, as they were on entry
    for (int j = 0; j < n; ++j) {
        norm[j] = dnrm2(m, a + j * ld, 1);
        full[j] = norm[j];
    }
    const int steps = std::min(m, n);
    for (int k = 0; k < steps; ++k) {
        int p = k;
        if (pivot == 'C' || k == 0) {
            p = k + iamax(n - k, norm + k, 1) - 1;
        } else {
            double best = 0.0;
            for (int j = k; j < n; ++j) {
                if (norm[j] > 0.0) {
                    const double ratio = norm[j] / full[j];
                    if (ratio > best) {
                        best = ratio;
                        p = j;
                    }
                }
            }
        }
        perm[k] = p + 1;
        if (p != k) {
            swap(m, a + k * ld, 1, a + p * ld, 1);
            std::swap(norm[k], norm[p]);
            std::swap(full[k], full[p]);
        }
        double *akk = a + k + k * ld;
        if (k + 1 < m) {
            reflector_gen(m - k - 1, akk, akk + 1, 1, 0.0, &zeta[k]);
            if (zeta[k] > 0.0 && k + 1 < n) {
                const double keep = *akk;
                *akk = zeta[k];
                double *w = zeta + k + 1;
                dgemv("Transpose", m - k, n - k - 1, 1.0, akk + ld, lda, akk, 1, 0.0, w, 1);
                dger(m - k, n - k - 1, -1.0, akk, 1, w, 1, akk + ld, lda);
                *akk = keep;
            }
        } else {
            zeta[k] = 0.0;
        }
        // Downdate the norms of the later columns by the element that left them in row k; when most of
        // the digits have cancelled, recompute from the rows below k.
        for (int j = k + 1; j < n; ++j) {
            const double c = norm[j];
            if (c > 0.0) {
                const double t = std::fabs(a[k + j * ld]) / c;
                double u = (1.0 - t) * (1.0 + t);
                if (u < 0.0) u = 0.0;
                const double ratio = c / full[j];
                const double v = 1.0 + 0.01 * u * ratio * ratio;
                if (v <= 1.0)
                    norm[j] = dnrm2(m - k - 1, a + k + 1 + j * ld, 1);
                else
                    norm[j] = c * std::sqrt(u);
            }
        }
    }
}

// ---- Argument checks -----------------------------------------------------------------------------

namespace {

enum class Reporting { Stream, Host };

// F01QCF's checks, counted; returns the number of errors.
int f01qc_checks(Reporting how, const char *name, int m, int n, int lda, int ifail) {
    int errors = 0;
    auto bad = [&](long value, const char *arg, int len) {
        if (how == Reporting::Stream)
            P01_BAD_INTEGER_STREAM(value, arg, ifail, &errors, name, len, 6);
        else
            P01_BAD_INTEGER(value, arg, ifail, &errors, name, len, 6);
    };
    if (m < n) bad(m, "M", 1);
    if (n < 0) bad(n, "N", 1);
    if (lda < m) bad(lda, "LDA", 3);
    return errors;
}

void f01qc_body(Reporting how, const char *name, int m, int n, double *a, int lda, double *zeta, char *errbuf,
                int *ifail) {
    FailureExit exit(name, errbuf, ifail, how == Reporting::Stream ? Channel::Stream : Channel::Host);
    const int errors = f01qc_checks(how, name, m, n, lda, *ifail);
    if (errors > 0) {
        exit.fail_with_records(1, 99999, parameter_error_count_record(errors), {static_cast<long>(errors)});
        return;
    }
    if (n > 0) qr_factor(m, n, a, lda, zeta);
    exit.succeed();
}

int f01qd_checks(Reporting how, const char *name, const char *trans, const char *wheret, int m, int n, int lda,
                 int ncolb, int ldb, int ifail) {
    int errors = 0;
    auto bad_int = [&](long value, const char *arg, int len) {
        if (how == Reporting::Stream)
            P01_BAD_INTEGER_STREAM(value, arg, ifail, &errors, name, len, 6);
        else
            P01_BAD_INTEGER(value, arg, ifail, &errors, name, len, 6);
    };
    auto bad_char = [&](const char *value, const char *arg, int len) {
        if (how == Reporting::Stream)
            P01_BAD_CHARACTER_STREAM(value, arg, ifail, &errors, name, 1, len, 6);
        else
            P01_BAD_CHARACTER(value, arg, ifail, &errors, name, 1, len, 6);
    };
    const char t = trans[0], w = wheret[0];
    if (t != 'N' && t != 'n' && t != 'T' && t != 't' && t != 'C' && t != 'c') bad_char(trans, "TRANS", 5);
    if (w != 'I' && w != 'i' && w != 'S' && w != 's') bad_char(wheret, "WHERET", 6);
    if (m < n) bad_int(m, "M", 1);
    if (n < 0) bad_int(n, "N", 1);
    if (lda < m) bad_int(lda, "LDA", 3);
    if (ncolb < 0) bad_int(ncolb, "NCOLB", 5);
    if (ldb < m) bad_int(ldb, "LDB", 3);
    return errors;
}

void f01qd_body(Reporting how, const char *name, const char *trans, const char *wheret, int m, int n, double *a,
                int lda, const double *zeta, int ncolb, double *b, int ldb, double *work, char *errbuf, int *ifail) {
    FailureExit exit(name, errbuf, ifail, how == Reporting::Stream ? Channel::Stream : Channel::Host);
    const int errors = f01qd_checks(how, name, trans, wheret, m, n, lda, ncolb, ldb, *ifail);
    if (errors > 0) {
        exit.fail_with_records(1, 99999, parameter_error_count_record(errors), {static_cast<long>(errors)});
        return;
    }
    qr_apply(option_letter(trans), option_letter(wheret), m, n, a, lda, zeta, ncolb, b, ldb, work);
    exit.succeed();
}

} // namespace

// The workers behind the host-channel fronts F01QCZ and F01QDZ.
void f01qcz_worker(int m, int n, double *a, int lda, double *zeta, char *errbuf, int *ifail, int) {
    f01qc_body(Reporting::Host, "F01QCZ", m, n, a, lda, zeta, errbuf, ifail);
}

void f01qdz_worker(const char *trans, const char *wheret, int m, int n, double *a, int lda, const double *zeta,
                   int ncolb, double *b, int ldb, double *work, char *errbuf, int *ifail, int, int, int) {
    f01qd_body(Reporting::Host, "F01QDZ", trans, wheret, m, n, a, lda, zeta, ncolb, b, ldb, work, errbuf, ifail);
}

} // namespace zek

extern "C" void F01QCF(const int *m, const int *n, double *a, const int *lda, double *zeta, int *ifail) {
    zek::f01qc_body(zek::Reporting::Stream, "F01QCF", *m, *n, a, *lda, zeta, nullptr, ifail);
}

extern "C" void F01QCZ(const int *m, const int *n, double *a, const int *lda, double *zeta, int *ifail) {
    zek::Front front("F01QCZ");
    zek::f01qcz_worker(*m, *n, a, *lda, zeta, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

extern "C" void F01QDF(const char *trans, const char *wheret, const int *m, const int *n, double *a, const int *lda,
                       const double *zeta, const int *ncolb, double *b, const int *ldb, double *work, int *ifail, int,
                       int) {
    zek::f01qd_body(zek::Reporting::Stream, "F01QDF", trans, wheret, *m, *n, a, *lda, zeta, *ncolb, b, *ldb, work,
                    nullptr, ifail);
}

extern "C" void F01QDZ(const char *trans, const char *wheret, const int *m, const int *n, double *a, const int *lda,
                       const double *zeta, const int *ncolb, double *b, const int *ldb, double *work, int *ifail,
                       int trans_len, int wheret_len) {
    zek::Front front("F01QDZ");
    zek::f01qdz_worker(trans, wheret, *m, *n, a, *lda, zeta, *ncolb, b, *ldb, work, front.errbuf(), ifail,
                       trans_len, wheret_len, zek::kErrbufLength);
    front.finish(*ifail);
}

namespace zek {

void F01QFZ(const char *pivot, const int *m, const int *n, double *a, const int *lda, double *zeta, int *perm,
            double *work, int *ifail, int) {
    int errors = 0;
    const char p = option_letter(pivot);
    if (p != 'C' && p != 'S') P01_BAD_CHARACTER(pivot, "PIVOT", *ifail, &errors, "F01QFZ", 1, 5, 6);
    if (*m < *n) P01_BAD_INTEGER(*m, "M", *ifail, &errors, "F01QFZ", 1, 6);
    if (*n < 0) P01_BAD_INTEGER(*n, "N", *ifail, &errors, "F01QFZ", 1, 6);
    if (*lda < *m) P01_BAD_INTEGER(*lda, "LDA", *ifail, &errors, "F01QFZ", 3, 6);
    *ifail = errors;
    if (errors > 0) return;
    qr_factor_pivoted(p, *m, *n, a, *lda, zeta, perm, work);
}

} // namespace zek

// ---- The C-style twins ---------------------------------------------------------------------------

namespace {

bool f01qc_raise(const char *name, int m, int n, int tda, ZekFail *fail) {
    if (zek::raise_below(fail, name, "m", m, "n", n)) return true;
    if (n < 0) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "0", n);
        return true;
    }
    return zek::raise_below(fail, name, "tda", tda, "m", m);
}

} // namespace

extern "C" void f01qcc(int m, int n, double *a, int tda, double *zeta, ZekFail *fail) {
    zek::clear_fail(fail);
    if (f01qc_raise("f01qcc", m, n, tda, fail)) return;
    if (n > 0) zek::qr_factor(m, n, a, tda, zeta);
    zek::raise_success(fail, "f01qcc");
}

extern "C" void f01qdc(int trans, int wheret, int m, int n, double *a, int tda, const double *zeta, int ncolb,
                       double *b, int tdb, ZekFail *fail) {
    const char *name = "f01qdc";
    zek::clear_fail(fail);
    if (trans != Zek_NoTranspose && trans != Zek_Transpose && trans != Zek_ConjugateTranspose) {
        zek::raise_text(fail, name, ZE_BAD_PARAM, "trans");
        return;
    }
    if (wheret != Zek_ElementsIn && wheret != Zek_ElementsSeparate) {
        zek::raise_text(fail, name, ZE_BAD_PARAM, "wheret");
        return;
    }
    if (f01qc_raise(name, m, n, tda, fail)) return;
    if (ncolb < 0) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "ncolb", "0", ncolb);
        return;
    }
    if (zek::raise_below(fail, name, "tdb", tdb, "m", m)) return;
    if (std::min(n, ncolb) > 0) {
        void *work = ZEK_ALLOCATE(sizeof(double) * static_cast<std::size_t>(ncolb));
        if (work == nullptr) {
            zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
            return;
        }
        zek::qr_apply(trans == Zek_NoTranspose ? 'N' : 'T', wheret == Zek_ElementsIn ? 'I' : 'S', m, n, a, tda, zeta,
                      ncolb, b, tdb, static_cast<double *>(work));
        ZEK_RELEASE(&work);
    }
    zek::raise_success(fail, name);
}
