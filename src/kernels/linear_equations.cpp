// Determinants (F03AAF, F03AFF, f03afc) and linear equations with and without iterative refinement
// (f04aec, f04ahc, f04ajc).
#include "kernels/linear_equations.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/raise.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/lu.h"
#include "kernels/norm_estimation.h"
#include "kernels/qr.h"
#include "kernels/svd.h"
#include "zek2/f03.h"
#include "zek2/f04.h"
#include "zek2/frame.h"
#include "zek2/x03.h"

namespace zek {

int scaled_lu(int n, double eps, double *a, int lda, double *p, double *d1, int *id) {
    const std::ptrdiff_t ld = lda;
    *d1 = 1.0;
    *id = 0;
    // Reciprocal row norms, the weights of the pivot choice.  An infinite or undefined element makes
    // its row norm non-finite: the factorisation cannot start.
    for (int i = 0; i < n; ++i) {
        const double s = dnrm2(n, a + i, lda);
        if (!std::isfinite(s)) {
            *d1 = 0.0;
            return kLuNonFinite;
        }
        if (s == 0.0) {
            *d1 = 0.0;
            return kLuSingular;
        }
        p[i] = 1.0 / s;
    }
    for (int k = 0; k < n; ++k) {
        double best = -1.0;
        int piv = k;
        bool finite = true;
        for (int i = k; i < n; ++i) {
            const double v = std::fabs(a[i + k * ld]) * p[i];
            finite = finite && std::isfinite(v);
            if (v > best) {
                best = v;
                piv = i;
            }
        }
        // An elimination that overflowed leaves infinite or undefined elements behind it.
        if (!finite) {
            *d1 = 0.0;
            *id = 0;
            return kLuNonFinite;
        }
        if (!(best > eps)) {
            *d1 = 0.0;
            *id = 0;
            return kLuSingular;
        }
        if (piv != k) {
            swap(n, a + k, lda, a + piv, lda);
            p[piv] = p[k];
            *d1 = -*d1;
        }
        p[k] = static_cast<double>(piv + 1);
        double *akk = a + k + k * ld;
        *d1 *= *akk;
        // D1 stays in [1/16, 1); the exponent goes to ID in steps of four.
        scale_normalise(d1, id, 4);
        if (k + 1 < n) {
            scal(n - k - 1, 1.0 / *akk, akk + 1, 1);
            dger(n - k - 1, n - k - 1, -1.0, akk + 1, 1, akk + ld, lda, akk + 1 + ld, lda);
        }
    }
    return kLuRegular;
}

int refined_solve(int n, int nrhs, const double *a, int lda, const double *lu, int ldlu, const int *ipiv,
                  const double *b, int ldb, double *x, int ldx, double *r, int ldr, double *work) {
    const double eps = precision();
    constexpr int kMaxSteps = 40;
    double *res = work, *col = work + n;
    int status = 0;
    for (int j = 0; j < nrhs; ++j) {
        const double *bj = b + static_cast<std::ptrdiff_t>(j) * ldb;
        double *xj = x + static_cast<std::ptrdiff_t>(j) * ldx;
        copy(n, bj, 1, xj, 1);
        getrs('N', n, 1, lu, ldlu, ipiv, xj, n);
        double previous = std::numeric_limits<double>::infinity();
        bool converged = false;
        for (int step = 0; step < kMaxSteps && !converged; ++step) {
            // r = b - A*x with every inner product accumulated in double-double form.
            for (int i = 0; i < n; ++i) {
                double hi = 0.0, lo = 0.0;
                ZekFail local = clean_fail();
                x03aac(a + i, 0, xj, 0, n, lda, 1, -bj[i], 0.0, &hi, &lo, 1, &local);
                res[i] = -(hi + lo);
            }
            copy(n, res, 1, col, 1);
            getrs('N', n, 1, lu, ldlu, ipiv, col, n);
            const double dnorm = std::fabs(col[iamax(n, col, 1) - 1]);
            const double xnorm = std::fabs(xj[iamax(n, xj, 1) - 1]);
            if (!(dnorm < 0.5 * previous) && step > 0) {
                // The correction no longer shrinks: either it is down to rounding level, or the
                // refinement diverges.
                if (dnorm > 2.0 * eps * xnorm) status = 1;
                converged = true;
                break;
            }
            axpy(n, 1.0, col, 1, xj, 1);
            previous = dnorm;
            if (dnorm <= eps * xnorm) converged = true;
        }
        if (!converged) status = 1;
        if (r != nullptr) {
            double *rj = r + static_cast<std::ptrdiff_t>(j) * ldr;
            for (int i = 0; i < n; ++i) {
                double hi = 0.0, lo = 0.0;
                ZekFail local = clean_fail();
                x03aac(a + i, 0, xj, 0, n, lda, 1, -bj[i], 0.0, &hi, &lo, 1, &local);
                rj[i] = -(hi + lo);
            }
        }
    }
    return status;
}

namespace {

// The failure exits of F03AAF and F03AFF.
enum F03Exit { kNLessThan1, kIaLessThanN, kSingular, kDeterminantTooLarge, kDeterminantTooSmall };
constexpr ExitRow kF03Exits[] = {
    {2, 99999, " ** On entry, N .lt. 1: N =%16ld."},
    {2, 99998, " ** On entry, IA .lt. N: IA =%16ld, N =%16ld."},
    {1, 99997, " ** The matrix A is singular, possibly due to rounding errors."},
    {3, 99996, " ** The determinant is too large to be represented: DETERMINANT = D1*2**ID, ID =%16ld."},
    {4, 99995, " ** The determinant is too small to be represented: DETERMINANT = D1*2**ID, ID =%16ld."},
};

// The argument checks F03AAF and F03AFF share.
bool f03_arguments(FailureExit &exit, int n, int lda) {
    if (n < 1) {
        take(exit, kF03Exits, kNLessThan1, {static_cast<long>(n)});
        return false;
    }
    if (lda < n) {
        take(exit, kF03Exits, kIaLessThanN, {static_cast<long>(lda), static_cast<long>(n)});
        return false;
    }
    return true;
}

// The one-based integer pivots of the real pivot array of scaled_lu.
void integer_pivots(int n, const double *p, int *ipiv) {
    for (int i = 0; i < n; ++i) ipiv[i] = static_cast<int>(p[i]);
}

// The catalogue's checks shared by the C-style routines: an order and leading dimensions.
bool raise_order(ZekFail *fail, const char *name, const char *nname, int n) {
    if (n < 1) {
        raise_int_arg(fail, name, ZE_INT_ARG_LT, nname, "1", n);
        return true;
    }
    return false;
}

} // namespace

} // namespace zek

extern "C" void F03AFF(const int *n, const double *eps, double *a, const int *ia, double *d1, int *id, double *p,
                       int *ifail) {
    zek::FailureExit exit("F03AFF", nullptr, ifail);
    if (!zek::f03_arguments(exit, *n, *ia)) return;
    const double tol = *eps > 0.0 ? *eps : zek::precision();
    if (zek::scaled_lu(*n, tol, a, *ia, p, d1, id) != 0) {
        zek::take(exit, zek::kF03Exits, zek::kSingular);
        return;
    }
    exit.succeed();
}

extern "C" void F03AAF(double *a, const int *ia, const int *n, double *det, double *wkspce, int *ifail) {
    zek::FailureExit exit("F03AAF", nullptr, ifail);
    if (!zek::f03_arguments(exit, *n, *ia)) return;
    double d1 = 0.0;
    int id = 0;
    if (zek::scaled_lu(*n, zek::precision(), a, *ia, wkspce, &d1, &id) != 0) {
        *det = 0.0;
        zek::take(exit, zek::kF03Exits, zek::kSingular);
        return;
    }
    const double value = std::ldexp(d1, id);
    if (std::isinf(value)) {
        *det = 0.0;
        zek::take(exit, zek::kF03Exits, zek::kDeterminantTooLarge, {static_cast<long>(id)});
        return;
    }
    if (std::fabs(value) < zek::safe_minimum()) {
        *det = 0.0;
        zek::take(exit, zek::kF03Exits, zek::kDeterminantTooSmall, {static_cast<long>(id)});
        return;
    }
    *det = value;
    exit.succeed();
}

extern "C" void f03afc(int n, double *a, int tda, int *pivot, double *detf, int *dete, ZekFail *fail) {
    const char *name = "f03afc";
    zek::clear_fail(fail);
    if (zek::raise_order(fail, name, "n", n) || zek::raise_below(fail, name, "tda", tda, "n", n)) return;
    void *p = ZEK_ALLOCATE(sizeof(double) * static_cast<std::size_t>(n));
    if (p == nullptr) {
        zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
        return;
    }
    double *pr = static_cast<double *>(p);
    const int singular = zek::scaled_lu(n, zek::precision(), a, tda, pr, detf, dete);
    if (singular == 0) zek::integer_pivots(n, pr, pivot);
    ZEK_RELEASE(&p);
    if (singular != 0) {
        zek::raise_plain(fail, name, ZE_SINGULAR);
        return;
    }
    zek::raise_success(fail, name);
}

extern "C" void f04ajc(int n, int nrhs, const double *a, int tda, const int *pivot, double *b, int tdb, ZekFail *fail) {
    const char *name = "f04ajc";
    zek::clear_fail(fail);
    if (zek::raise_order(fail, name, "n", n) || zek::raise_order(fail, name, "nrhs", nrhs) ||
        zek::raise_below(fail, name, "tda", tda, "n", n) || zek::raise_below(fail, name, "tdb", tdb, "n", n))
        return;
    zek::getrs('N', n, nrhs, a, tda, pivot, b, tdb);
    zek::raise_success(fail, name);
}

namespace {

// Argument checks of the refinement routines, in their declared order.
bool refinement_arguments(ZekFail *fail, const char *name, int n, int nrhs, int tda, int tdaa, const char *tdaa_name,
                          int tdb, int tdx) {
    return zek::raise_order(fail, name, "n", n) || zek::raise_order(fail, name, "nrhs", nrhs) ||
           zek::raise_below(fail, name, "tda", tda, "n", n) ||
           zek::raise_below(fail, name, tdaa_name, tdaa, "n", n) ||
           zek::raise_below(fail, name, "tdb", tdb, "n", n) || zek::raise_below(fail, name, "tdx", tdx, "n", n);
}

void run_refinement(const char *name, int n, int nrhs, const double *a, int tda, const double *aa, int tdaa,
                    const int *pivot, const double *b, int tdb, double *x, int tdx, double *bb, int tdbb,
                    ZekFail *fail) {
    void *work = ZEK_ALLOCATE(sizeof(double) * 2 * static_cast<std::size_t>(n));
    if (work == nullptr) {
        zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
        return;
    }
    const int status = zek::refined_solve(n, nrhs, a, tda, aa, tdaa, pivot, b, tdb, x, tdx, bb, tdbb,
                                          static_cast<double *>(work));
    ZEK_RELEASE(&work);
    if (status != 0) {
        zek::raise_plain(fail, name, ZE_ITER_FAIL_CONV);
        return;
    }
    zek::raise_success(fail, name);
}

} // namespace

extern "C" void f04ahc(int n, int nrhs, const double *a, int tda, const double *aa, int tdaa, const int *pivot,
                       const double *b, int tdb, double *x, int tdx, double *bb, int tdbb, ZekFail *fail) {
    const char *name = "f04ahc";
    zek::clear_fail(fail);
    if (refinement_arguments(fail, name, n, nrhs, tda, tdaa, "tdaa", tdb, tdx)) return;
    if (bb != nullptr && zek::raise_below(fail, name, "tdbb", tdbb, "n", n)) return;
    run_refinement(name, n, nrhs, a, tda, aa, tdaa, pivot, b, tdb, x, tdx, bb, tdbb, fail);
}

extern "C" void f04aec(int n, int nrhs, const double *a, int tda, const double *b, int tdb, double *aa, int tdaa,
                       double *x, int tdx, double *bb, int tdbb, ZekFail *fail) {
    const char *name = "f04aec";
    zek::clear_fail(fail);
    if (refinement_arguments(fail, name, n, nrhs, tda, tdaa, "tdaa", tdb, tdx)) return;
    if (bb != nullptr && zek::raise_below(fail, name, "tdbb", tdbb, "n", n)) return;
    const std::ptrdiff_t la = tda, laa = tdaa;
    for (int j = 0; j < n; ++j) zek::copy(n, a + j * la, 1, aa + j * laa, 1);
    void *space = ZEK_ALLOCATE((sizeof(double) + sizeof(int)) * static_cast<std::size_t>(n));
    if (space == nullptr) {
        zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
        return;
    }
    double *p = static_cast<double *>(space);
    int *pivot = reinterpret_cast<int *>(p + n);
    double d1 = 0.0;
    int id = 0;
    const int singular = zek::scaled_lu(n, zek::precision(), aa, tdaa, p, &d1, &id);
    if (singular == 0) zek::integer_pivots(n, p, pivot);
    if (singular != 0) {
        ZEK_RELEASE(&space);
        zek::raise_plain(fail, name, ZE_SINGULAR);
        return;
    }
    run_refinement(name, n, nrhs, a, tda, aa, tdaa, pivot, b, tdb, x, tdx, bb, tdbb, fail);
    ZEK_RELEASE(&space);
}

namespace zek {

double triangular_rcond(int n, const double *r, int ldr, double *work, int *iwork) {
    const std::ptrdiff_t ld = ldr;
    double rnorm = 0.0;
    for (int j = 0; j < n; ++j) rnorm = std::max(rnorm, asum(j + 1, r + j * ld, 1));
    if (rnorm == 0.0) return 0.0;
    for (int j = 0; j < n; ++j)
        if (r[j + j * ld] == 0.0) return 0.0;
    // ||R^-1||_1 from the estimator, with the products R^-1*x and R^-T*x by triangular solves.
    double *x = work, *v = work + n;
    double est = 0.0;
    int kase = 0;
    for (int round = 0; round < 12; ++round) {
        estimate_norm(n, v, x, iwork, &est, &kase);
        if (kase == 0) break;
        trsv('U', kase == 1 ? 'N' : 'T', 'N', n, r, ldr, x, 1);
    }
    return est > 0.0 ? 1.0 / (rnorm * est) : 0.0;
}

} // namespace zek

extern "C" void f04jgc(int m, int n, double *a, int tda, double *b, double tol, double *sigma, int *irank,
                       double *zeta, ZekFail *fail) {
    const char *name = "f04jgc";
    zek::clear_fail(fail);
    if (zek::raise_order(fail, name, "n", n)) return;
    if (zek::raise_below(fail, name, "m", m, "n", n)) return;
    if (zek::raise_below(fail, name, "tda", tda, "m", m)) return;
    void *space = ZEK_ALLOCATE((2 * sizeof(double) + sizeof(int)) * static_cast<std::size_t>(n) + 3 * sizeof(int));
    if (space == nullptr) {
        zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
        return;
    }
    double *work = static_cast<double *>(space);
    int *iwork = reinterpret_cast<int *>(work + 2 * static_cast<std::ptrdiff_t>(n));
    zek::qr_factor(m, n, a, tda, zeta);
    const double limit = tol > 0.0 ? tol : n * zek::precision();
    const double rcond = zek::triangular_rcond(n, a, tda, work, iwork);
    const std::ptrdiff_t ld = tda;
    bool finite = true;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i <= j; ++i) finite = finite && std::isfinite(a[i + j * ld]);
    if (!(rcond > limit) || !finite) {
        // Rank deficient to the tolerance: the minimum-norm solution from the SVD R = U*S*V'.  With
        // c = (Q'*b)(1:n), x = V*S^+*U'*c over the values above TOL (or the precision) times the
        // largest; V' goes to the first n rows of A and S to ZETA, as F04YAF reads them.
        ZEK_RELEASE(&space);
        const std::ptrdiff_t nn = n;
        const std::ptrdiff_t lsvd = zek::svd_workspace(n, n, true, true);
        space = ZEK_ALLOCATE(sizeof(double) * static_cast<std::size_t>(3 * nn * nn + 2 * nn + lsvd + m));
        if (space == nullptr) {
            zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
            return;
        }
        double *r = static_cast<double *>(space), *u = r + nn * nn, *vt = u + nn * nn, *c = vt + nn * nn;
        double *sv = c + nn, *svdw = sv + nn;
        zek::qr_apply('T', 'S', m, n, a, tda, zeta, 1, b, m, svdw);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) r[i + j * nn] = i <= j ? a[i + j * ld] : 0.0;
        if (zek::svd(n, n, r, n, sv, u, n, vt, n, svdw) != 0) {
            ZEK_RELEASE(&space);
            zek::raise_plain(fail, name, ZE_SVD_FAIL);
            return;
        }
        int rank = 0;
        while (rank < n && sv[rank] > limit * sv[0]) ++rank;
        double rss = m > n ? zek::dnrm2(m - n, b + n, 1) : 0.0;
        for (int i = 0; i < n; ++i) {
            c[i] = zek::dot(n, u + i * nn, 1, b, 1);
            if (i >= rank) rss = std::hypot(rss, c[i]);
        }
        for (int j = 0; j < n; ++j) b[j] = 0.0;
        for (int i = 0; i < rank; ++i) zek::axpy(n, c[i] / sv[i], vt + i, n, b, 1);
        for (int j = 0; j < n; ++j) {
            zek::copy(n, vt + j * nn, 1, a + j * ld, 1);
            zeta[j] = sv[j];
        }
        *irank = rank;
        *sigma = m > rank ? rss / std::sqrt(static_cast<double>(m - rank)) : 0.0;
        ZEK_RELEASE(&space);
        zek::raise_success(fail, name);
        return;
    }
    *irank = n;
    // x = R^-1 * (Q'*b)(1:n); the residual is the rest of Q'*b.
    zek::qr_apply('T', 'S', m, n, a, tda, zeta, 1, b, m, work);
    const double rss = m > n ? zek::dnrm2(m - n, b + n, 1) : 0.0;
    *sigma = m > n ? rss / std::sqrt(static_cast<double>(m - n)) : 0.0;
    zek::trsv('U', 'N', 'N', n, a, tda, b, 1);
    ZEK_RELEASE(&space);
    zek::raise_success(fail, name);
}
