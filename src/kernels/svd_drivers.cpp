// The stages before the iteration and the drivers: the reduction of a triangle to bidiagonal form by
// rotations (its right rotations kept one number each in the zeroed places), the formation of P' from
// them, the triangular drivers of the two layers, the general driver and the internal zek::svd.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/raise.h"
#include "kernels/bidiagonal.h"
#include "kernels/level1.h"
#include "kernels/linear_equations.h"
#include "kernels/qr.h"
#include "kernels/svd.h"
#include "zek2/frame.h"
#include "zek2/messages.h"

namespace zek {

namespace {

// One number for a rotation, decided by the larger of |c| and |s| (the sign of the pair is fixed so
// that this part is positive): 1 for c = 0, s/2 when |s| < |c|, 2/c otherwise.  Decoding gives back
// the pair within rounding; both the reduction and the formation of P' use the decoded pair.
double encode(double c, double s) {
    if (c == 0.0) return 1.0;
    if (std::fabs(s) < std::fabs(c)) return (c > 0.0 ? s : -s) / 2.0;
    return 2.0 / (s > 0.0 ? c : -c);
}
void decode(double rho, double *c, double *s) {
    if (rho == 1.0) {
        *c = 0.0;
        *s = 1.0;
    } else if (std::fabs(rho) < 1.0) {
        *s = 2.0 * rho;
        *c = std::sqrt((1.0 - *s) * (1.0 + *s));
    } else {
        *c = 2.0 / rho;
        *s = std::sqrt((1.0 - *c) * (1.0 + *c));
    }
}

// (c, s) taking (f, g) to (r, 0), through its stored form.
double stored_rotation(double f, double g, double *c, double *s) {
    if (g == 0.0) {
        *c = 1.0;
        *s = 0.0;
        return 0.0;
    }
    const double r = std::hypot(f, g);
    const double rho = encode(f / r, g / r);
    decode(rho, c, s);
    return rho;
}

} // namespace

void triangle_to_bidiagonal(int n, double *a, int lda, double *d, double *e, int ncolb, double *b, int ldb,
                            bool wantq, double *q, int ldq) {
    const std::ptrdiff_t ld = lda;
    auto at = [&](int i, int j) -> double & { return a[i + j * ld]; };
    if (wantq) {
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) q[i + static_cast<std::ptrdiff_t>(j) * ldq] = i == j ? 1.0 : 0.0;
    }
    for (int i = 0; i + 2 < n; ++i) {
        for (int j = n - 1; j >= i + 2; --j) {
            // Right rotation of columns (j-1, j) removes A(i, j); its fill below the diagonal at
            // (j, j-1) is removed at once by a left rotation of rows (j-1, j).
            double c = 0.0, s = 0.0;
            const double rho = stored_rotation(at(i, j - 1), at(i, j), &c, &s);
            at(i, j - 1) = c * at(i, j - 1) + s * at(i, j);
            for (int r = i + 1; r < j; ++r) {
                const double x = at(r, j - 1), y = at(r, j);
                at(r, j - 1) = c * x + s * y;
                at(r, j) = c * y - s * x;
            }
            double fill = s * at(j, j);
            at(j, j) = c * at(j, j);
            at(i, j) = rho;
            if (fill == 0.0) continue;
            double cl = 0.0, sl = 0.0;
            const double diag = at(j - 1, j - 1);
            const double r = std::hypot(diag, fill);
            cl = diag / r;
            sl = fill / r;
            at(j - 1, j - 1) = r;
            for (int k = j; k < n; ++k) {
                const double x = at(j - 1, k), y = at(j, k);
                at(j - 1, k) = cl * x + sl * y;
                at(j, k) = cl * y - sl * x;
            }
            if (ncolb > 0) rot(ncolb, b + (j - 1), ldb, b + j, ldb, cl, sl);
            if (wantq)
                rot(n, q + static_cast<std::ptrdiff_t>(j - 1) * ldq, 1, q + static_cast<std::ptrdiff_t>(j) * ldq, 1, cl,
                    sl);
        }
    }
    for (int i = 0; i < n; ++i) d[i] = at(i, i);
    for (int i = 0; i + 1 < n; ++i) e[i] = at(i, i + 1);
}

void form_right_rotations(int n, double *a, int lda) {
    const std::ptrdiff_t ld = lda;
    auto at = [&](int i, int j) -> double & { return a[i + j * ld]; };
    // P' = H(K)'...H(1)' built as I*H(K)'*...*H(1)': the rotations of row r-1 act on columns r-1.. and
    // rows r.. only, so they are read before the growing block reaches their row.
    for (int r = n - 1; r >= 0; --r) {
        for (int k = r; k < n; ++k) {
            at(r, k) = k == r ? 1.0 : 0.0;
            at(k, r) = k == r ? 1.0 : 0.0;
        }
        if (r == 0) break;
        const int i = r - 1;
        for (int j = i + 2; j < n; ++j) {
            double c = 0.0, s = 0.0;
            decode(at(i, j), &c, &s);
            if (at(i, j) == 0.0) continue;
            for (int k = r; k < n; ++k) {
                const double x = at(k, j - 1), y = at(k, j);
                at(k, j - 1) = c * x - s * y;
                at(k, j) = s * x + c * y;
            }
        }
    }
    for (int k = 1; k < n; ++k) {
        at(0, k) = 0.0;
        at(k, 0) = 0.0;
    }
}

std::ptrdiff_t svd_workspace(int m, int n, bool wantu, bool wantvt) {
    const std::ptrdiff_t k = std::min(m, n), big = std::max(m, n);
    if (k < 1) return 1;
    // d, e, the two zeta vectors, the iteration's rotations, the reflector scratch; the transposed copy
    // when M < N, and its left vectors then.
    std::ptrdiff_t need = 2 * k + 2 * k + bidiagonal_qr_workspace(static_cast<int>(k)) + big;
    if (m < n) {
        need += k * big;
        if (wantu) need += k * k;
    }
    (void)wantvt;
    return need;
}

namespace {

// SVD of the tall M by N matrix A (M >= N >= 1) in A's storage; U (M by N) and VT (N by N) optional.
int svd_tall(int m, int n, double *a, int lda, double *sigma, double *u, int ldu, double *vt, int ldvt,
             double *work) {
    double *e = work, *zl = e + n, *zr = zl + n, *rw = zr + n, *scratch = rw + bidiagonal_qr_workspace(n);
    bidiagonalise(m, n, a, lda, sigma, e, zl, zr, scratch);
    const std::ptrdiff_t ldA = lda, ldU = ldu, ldV = ldvt;
    if (u != nullptr) {
        // U = Q*[I; 0]: the reflectors from the last, each on rows k..M.
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) u[i + j * ldU] = i == j ? 1.0 : 0.0;
        for (int k = n - 1; k >= 0; --k) {
            if (zl[k] == 0.0) continue;
            const double *z = a + (k + 1) + k * ldA;
            for (int j = k; j < n; ++j) {
                double *col = u + k + j * ldU;
                const double t = zl[k] * col[0] + dot(m - k - 1, z, 1, col + 1, 1);
                col[0] -= t * zl[k];
                axpy(m - k - 1, -t, z, 1, col + 1, 1);
            }
        }
    }
    if (vt != nullptr) {
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) vt[i + j * ldV] = i == j ? 1.0 : 0.0;
        apply_bidiagonal_transforms(m, n, a, lda, zl, zr, 0, nullptr, 1, 0, nullptr, 1, n, vt, ldvt, scratch);
    }
    return bidiagonal_qr(n, sigma, e, 0, nullptr, 1, u != nullptr ? m : 0, u, ldu, vt != nullptr ? n : 0, vt, ldvt,
                         rw);
}

} // namespace

int svd(int m, int n, double *a, int lda, double *sigma, double *u, int ldu, double *vt, int ldvt, double *work) {
    if (m < 1 || n < 1) return 0;
    if (m >= n) return svd_tall(m, n, a, lda, sigma, u, ldu, vt, ldvt, work);
    // A' = U2*S*V2', so A = V2*S*U2': U = V2 = VT2' and VT = U2'.  A' is copied behind the workspace
    // of the tall case; U2 (N by M) goes to A's own storage (LDA*N >= M*N), VT2 (M by M) behind A'.
    const std::ptrdiff_t k = m, big = n, ldA = lda;
    double *t = work + 4 * k + bidiagonal_qr_workspace(m) + big;
    double *v2t = u != nullptr ? t + k * big : nullptr;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i) t[j + i * big] = a[i + j * ldA];
    double *left = vt != nullptr ? a : nullptr;
    const int info = svd_tall(n, m, t, n, sigma, left, n, v2t, m, work);
    if (info != 0) return info;
    const std::ptrdiff_t ldU = ldu, ldV = ldvt;
    if (u != nullptr)
        for (int j = 0; j < m; ++j)
            for (int i = 0; i < m; ++i) u[i + j * ldU] = v2t[j + i * k];
    if (vt != nullptr)
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) vt[i + j * ldV] = left[j + i * big];
    return 0;
}

// ---- The triangular drivers ----------------------------------------------------------------------

namespace {

int triangular_core(int n, double *a, int lda, int ncolb, double *b, int ldb, bool wantq, double *q, int ldq,
                    double *sv, bool wantp, double *work) {
    triangle_to_bidiagonal(n, a, lda, sv, work, ncolb, b, ldb, wantq, q, ldq);
    if (wantp) form_right_rotations(n, a, lda);
    return bidiagonal_qr(n, sv, work, ncolb, b, ldb, wantq ? n : 0, q, ldq, wantp ? n : 0, a, lda, work + n);
}

// F02WUF's exit after the argument count (which builds its own record).
enum F02wufExit { kNotConverged };
constexpr ExitRow kF02wufExits[] = {
    {2, 99998, "    The QR algorithm has failed to converge.\n    %6ld singular values have NOT been found."},
};

} // namespace

void F02WUF(const int *n, double *a, const int *lda, const int *ncolb, double *b, const int *ldb, const int *wantq,
            double *q, const int *ldq, double *sv, const int *wantp, double *work, int *ifail) {
    const char *name = "F02WUF";
    FailureExit exit(name, nullptr, ifail, Channel::Stream);
    int errors = 0;
    auto bad = [&](long value, const char *arg, int len) {
        P01_BAD_INTEGER_STREAM(value, arg, *ifail, &errors, name, len, 6);
    };
    if (*n < 0) bad(*n, "N", 1);
    if (*lda < *n) bad(*lda, "LDA", 3);
    if (*ncolb < 0) bad(*ncolb, "NCOLB", 5);
    if (*ncolb > 0 && *ldb < *n) bad(*ldb, "LDB", 3);
    if (*wantq != 0 && *ldq < *n) bad(*ldq, "LDQ", 3);
    if (errors > 0) {
        exit.fail_with_records(1, 99999, parameter_error_count_record(errors), {static_cast<long>(errors)});
        return;
    }
    if (*n == 0) {
        exit.succeed();
        return;
    }
    const int missing = triangular_core(*n, a, *lda, *ncolb, b, *ldb, *wantq != 0, q, *ldq, sv, *wantp != 0, work);
    if (missing > 0) {
        take(exit, kF02wufExits, kNotConverged, {static_cast<long>(missing)});
        return;
    }
    exit.succeed();
}

void f02wuc(int n, double *a, int tda, int ncolb, double *b, int tdb, int wantq, double *q, int tdq, double *sv,
            int wantp, double *work, ZekFail *fail) {
    const char *name = "f02wuc";
    clear_fail(fail);
    if (n < 0) {
        raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "0", n);
        return;
    }
    if (ncolb < 0) {
        raise_int_arg(fail, name, ZE_INT_ARG_LT, "ncolb", "0", ncolb);
        return;
    }
    if (raise_below(fail, name, "tda", tda, "n", n)) return;
    if (ncolb > 0 && raise_below(fail, name, "tdb", tdb, "n", n)) return;
    if (wantq != 0 && raise_below(fail, name, "tdq", tdq, "n", n)) return;
    if (n > 0) {
        const int missing = triangular_core(n, a, tda, ncolb, b, tdb, wantq != 0, q, tdq, sv, wantp != 0, work);
        if (missing > 0) {
            raise_formatted(fail, name, ZE_SVD_FAIL, static_cast<long>(missing));
            return;
        }
    }
    raise_success(fail, name);
}

// ---- The general driver --------------------------------------------------------------------------

void f02wdc(int m, int n, double *a, int tda, int ncolb, double *b, int tdb, int wantq, double *sv, int wantpt,
            double *pt, int tdpt, double *cond, ZekFail *fail) {
    const char *name = "f02wdc";
    clear_fail(fail);
    if (n < 1) {
        raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "1", n);
        return;
    }
    if (ncolb < 0) {
        raise_int_arg(fail, name, ZE_INT_ARG_LT, "ncolb", "0", ncolb);
        return;
    }
    if (m < n) {
        raise_formatted(fail, name, ZE_2_INT_ARG_LT, "m", static_cast<long>(m), "n", static_cast<long>(n), "m", "n");
        return;
    }
    if (raise_below(fail, name, "tda", tda, "m", m)) return;
    if (ncolb > 0 && raise_below(fail, name, "tdb", tdb, "m", m)) return;
    if (wantpt != 0 && raise_below(fail, name, "tdpt", tdpt, "n", n)) return;
    const std::ptrdiff_t mm = m, nn = n, ldA = tda, ldB = tdb;
    // Going through R pays when the rows outnumber the columns by more than 5 to 3: the reflectors of
    // the QR step are cheaper than the right-hand ones of a direct bidiagonalisation.
    const bool through_r = 3 * mm > 5 * nn;
    const bool needu = wantq != 0 || ncolb > 0;
    const std::ptrdiff_t lsvd = svd_workspace(m, n, true, true);
    const std::ptrdiff_t lscratch = std::max<std::ptrdiff_t>({mm, nn, ncolb});
    const std::ptrdiff_t lw = nn + nn * nn + mm * nn + nn * nn + lsvd + lscratch;
    void *space = ZEK_ALLOCATE(sizeof(double) * static_cast<std::size_t>(lw));
    if (space == nullptr) {
        raise_plain(fail, name, ZE_ALLOC_FAIL);
        return;
    }
    double *zeta = static_cast<double *>(space);
    double *r = zeta + nn, *u = r + nn * nn, *u1 = u + mm * nn, *svdw = u1 + nn * nn, *scratch = svdw + lsvd;
    // U (M by N, leading dimension M) once the decomposition is done.
    int info = 0;
    if (through_r) {
        qr_factor(m, n, a, tda, zeta);
        if (ncolb > 0) qr_apply('T', 'S', m, n, a, tda, zeta, ncolb, b, tdb, scratch);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) r[i + j * nn] = i <= j ? a[i + j * ldA] : 0.0;
        info = svd(n, n, r, n, sv, needu ? u1 : nullptr, n, wantpt != 0 ? pt : nullptr, tdpt, svdw);
        if (info == 0 && wantq != 0) {
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < m; ++i) u[i + j * mm] = i < n ? u1[i + j * nn] : 0.0;
            qr_apply('N', 'S', m, n, a, tda, zeta, n, u, m, scratch);
        }
    } else {
        info = svd(m, n, a, tda, sv, needu ? u : nullptr, m, wantpt != 0 ? pt : nullptr, tdpt, svdw);
    }
    if (info == 0 && ncolb > 0) {
        // B := U'*B on its first N rows (on the route through R, Q' has been applied already).
        const double *left = through_r ? u1 : u;
        const std::ptrdiff_t ldl = through_r ? nn : mm;
        const int rows = through_r ? n : m;
        for (int j = 0; j < ncolb; ++j) {
            double *col = b + j * ldB;
            for (int i = 0; i < n; ++i) scratch[i] = dot(rows, left + i * ldl, 1, col, 1);
            copy(n, scratch, 1, col, 1);
        }
    }
    if (info == 0 && wantq != 0)
        for (int j = 0; j < n; ++j) copy(m, u + j * mm, 1, a + j * ldA, 1);
    ZEK_RELEASE(&space);
    if (info != 0) {
        raise_formatted(fail, name, ZE_SVD_FAIL, static_cast<long>(info));
        return;
    }
    *cond = sv[n - 1] == 0.0 ? largest() : sv[0] / sv[n - 1];
    raise_success(fail, name);
}

} // namespace zek
