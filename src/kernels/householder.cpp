// F08AEZ/DGEQR2, F08AGZ/DORM2R, F08AGF/DORMQR and F08BEF/DGEQPF.
#include "kernels/householder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/machine.h"
#include "kernels/block_size.h"
#include "kernels/factor_support.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/level3.h"
#include "kernels/safe_arithmetic.h"
#include "zek2/f08.h"

namespace zek {

void larfg(int n, double *alpha, double *x, int incx, double *tau) {
    if (n <= 1) {
        *tau = 0.0;
        return;
    }
    double xnorm = dnrm2(n - 1, x, incx);
    if (xnorm == 0.0) {
        *tau = 0.0;
        return;
    }
    double beta = -std::copysign(pythag(*alpha, xnorm), *alpha);
    const double safmin = safe_minimum() / precision();
    int knt = 0;
    if (std::fabs(beta) < safmin) {
        // The norm is at the edge of underflow: scale up (a bounded number of times) and start again.
        const double rsafmn = 1.0 / safmin;
        do {
            ++knt;
            scal(n - 1, rsafmn, x, incx);
            beta *= rsafmn;
            *alpha *= rsafmn;
        } while (std::fabs(beta) < safmin && knt < 20);
        xnorm = dnrm2(n - 1, x, incx);
        beta = -std::copysign(pythag(*alpha, xnorm), *alpha);
    }
    *tau = (beta - *alpha) / beta;
    scal(n - 1, 1.0 / (*alpha - beta), x, incx);
    for (int j = 0; j < knt; ++j) beta *= safmin;
    *alpha = beta;
}

void larf(char side, int m, int n, const double *v, int incv, double tau, double *c, int ldc, double *work) {
    if (tau == 0.0 || m == 0 || n == 0) return;
    if (side == 'L') {
        gemv('T', m, n, 1.0, c, ldc, v, incv, 0.0, work, 1);
        ger<double, false>(m, n, -tau, v, incv, work, 1, c, ldc);
    } else {
        gemv('N', m, n, 1.0, c, ldc, v, incv, 0.0, work, 1);
        ger<double, false>(m, n, -tau, work, 1, v, incv, c, ldc);
    }
}

void geqr2(int m, int n, double *a, int lda, double *tau, double *work) {
    const std::ptrdiff_t ld = lda;
    const int k = std::min(m, n);
    for (int i = 0; i < k; ++i) {
        double *aii = a + i + i * ld;
        larfg(m - i, aii, a + std::min(i + 1, m - 1) + i * ld, 1, &tau[i]);
        if (i + 1 < n) {
            const double keep = *aii;
            *aii = 1.0;
            larf('L', m - i, n - i - 1, aii, 1, tau[i], aii + ld, lda, work);
            *aii = keep;
        }
    }
}

void orm2r(char side, char trans, int m, int n, int k, double *a, int lda, const double *tau, double *c, int ldc,
           double *work) {
    if (m == 0 || n == 0 || k == 0) return;
    const std::ptrdiff_t ld = lda, ldcc = ldc;
    const bool left = side == 'L', notran = trans == 'N';
    const bool forward = (left && !notran) || (!left && notran);
    for (int step = 0; step < k; ++step) {
        const int i = forward ? step : k - 1 - step;
        double *aii = a + i + i * ld;
        const double keep = *aii;
        *aii = 1.0;
        if (left)
            larf('L', m - i, n, aii, 1, tau[i], c + i, ldc, work);
        else
            larf('R', m, n - i, aii, 1, tau[i], c + i * ldcc, ldc, work);
        *aii = keep;
    }
}

namespace {

constexpr int kMaxBlock = 64;
constexpr int kLdt = kMaxBlock + 1;

// The upper triangular T of the block reflector H(1)...H(K) = I - V*T*V' (forward, columnwise) of
// order N; V unit lower trapezoidal in its first K columns.
void larft(int n, int k, double *v, int ldv, const double *tau, double *t, int ldt) {
    const std::ptrdiff_t lv = ldv, lt = ldt;
    for (int i = 0; i < k; ++i) {
        double *ti = t + i * lt;
        if (tau[i] == 0.0) {
            for (int j = 0; j <= i; ++j) ti[j] = 0.0;
            continue;
        }
        double *vii = v + i + i * lv;
        const double keep = *vii;
        *vii = 1.0;
        gemv('T', n - i, i, -tau[i], v + i, ldv, vii, 1, 0.0, ti, 1);
        *vii = keep;
        trmv('U', 'N', 'N', i, t, ldt, ti, 1);
        ti[i] = tau[i];
    }
}

// C := H*C, H'*C, C*H or C*H' with H = I - V*T*V' (forward, columnwise); WORK is LDWORK by K.
void larfb(char side, char trans, int m, int n, int k, const double *v, int ldv, const double *t, int ldt, double *c,
           int ldc, double *work, int ldwork) {
    if (m <= 0 || n <= 0) return;
    const char transt = trans == 'N' ? 'T' : 'N';
    const std::ptrdiff_t lv = ldv, lc = ldc, lw = ldwork;
    if (side == 'L') {
        // W := C'*V = C1'*V1 + C2'*V2 (N by K).
        for (int j = 0; j < k; ++j) copy(n, c + j, ldc, work + j * lw, 1);
        trmm('R', 'L', 'N', 'U', n, k, 1.0, v, ldv, work, ldwork);
        if (m > k) gemm('T', 'N', n, k, m - k, 1.0, c + k, ldc, v + k, ldv, 1.0, work, ldwork);
        trmm('R', 'U', transt, 'N', n, k, 1.0, t, ldt, work, ldwork);
        // C := C - V*W'.
        if (m > k) gemm('N', 'T', m - k, n, k, -1.0, v + k, ldv, work, ldwork, 1.0, c + k, ldc);
        trmm('R', 'L', 'T', 'U', n, k, 1.0, v, ldv, work, ldwork);
        for (int j = 0; j < k; ++j)
            for (int i = 0; i < n; ++i) c[j + i * lc] -= work[i + j * lw];
    } else {
        // W := C*V = C1*V1 + C2*V2 (M by K).
        for (int j = 0; j < k; ++j) copy(m, c + j * lc, 1, work + j * lw, 1);
        trmm('R', 'L', 'N', 'U', m, k, 1.0, v, ldv, work, ldwork);
        if (n > k) gemm('N', 'N', m, k, n - k, 1.0, c + k * lc, ldc, v + k, ldv, 1.0, work, ldwork);
        trmm('R', 'U', trans, 'N', m, k, 1.0, t, ldt, work, ldwork);
        // C := C - W*V'.
        if (n > k) gemm('N', 'T', m, n - k, k, -1.0, work, ldwork, v + k, ldv, 1.0, c + k * lc, ldc);
        trmm('R', 'L', 'T', 'U', m, k, 1.0, v, ldv, work, ldwork);
        for (int j = 0; j < k; ++j)
            for (int i = 0; i < m; ++i) c[i + j * lc] -= work[i + j * lw];
    }
    (void)lv;
}

} // namespace

void ormqr(char side, char trans, int m, int n, int k, double *a, int lda, const double *tau, double *c, int ldc,
           double *work, int lwork, int nb) {
    if (m == 0 || n == 0 || k == 0) return;
    const bool left = side == 'L', notran = trans == 'N';
    const int nq = left ? m : n, nw = std::max(1, left ? n : m);
    nb = std::min(nb, kMaxBlock);
    if (nb > 1 && nb < k && lwork < nw * nb) nb = lwork / nw;
    if (nb < 2 || nb >= k) {
        orm2r(side, trans, m, n, k, a, lda, tau, c, ldc, work);
        return;
    }
    double t[kLdt * kMaxBlock];
    const std::ptrdiff_t ld = lda, lc = ldc;
    const bool forward = (left && !notran) || (!left && notran);
    const int nblocks = (k + nb - 1) / nb;
    for (int b = 0; b < nblocks; ++b) {
        const int i = forward ? b * nb : (nblocks - 1 - b) * nb;
        const int ib = std::min(nb, k - i);
        double *aii = a + i + i * ld;
        larft(nq - i, ib, aii, lda, tau + i, t, kLdt);
        if (left)
            larfb('L', trans, m - i, n, ib, aii, lda, t, kLdt, c + i, ldc, work, nw);
        else
            larfb('R', trans, m, n - i, ib, aii, lda, t, kLdt, c + i * lc, ldc, work, nw);
    }
}

void geqpf(int m, int n, double *a, int lda, int *jpvt, double *tau, double *work) {
    const std::ptrdiff_t ld = lda;
    const int mn = std::min(m, n);
    const double tol3z = std::sqrt(precision());
    // Columns marked in JPVT go to the front, in their order.
    int itemp = 0;
    for (int i = 0; i < n; ++i) {
        if (jpvt[i] != 0) {
            if (i != itemp) {
                swap(m, a + i * ld, 1, a + itemp * ld, 1);
                jpvt[i] = jpvt[itemp];
                jpvt[itemp] = i + 1;
            } else {
                jpvt[i] = i + 1;
            }
            ++itemp;
        } else {
            jpvt[i] = i + 1;
        }
    }
    if (itemp > 0) {
        const int ma = std::min(itemp, m);
        geqr2(m, ma, a, lda, tau, work);
        if (ma < n) orm2r('L', 'T', m, n - ma, ma, a, lda, tau, a + ma * ld, lda, work);
    }
    if (itemp >= mn) return;
    double *vn1 = work, *vn2 = work + n, *scratch = work + 2 * static_cast<std::ptrdiff_t>(n);
    for (int i = itemp; i < n; ++i) {
        vn1[i] = dnrm2(m - itemp, a + itemp + i * ld, 1);
        vn2[i] = vn1[i];
    }
    for (int i = itemp; i < mn; ++i) {
        const int pvt = i + iamax(n - i, vn1 + i, 1) - 1;
        if (pvt != i) {
            swap(m, a + pvt * ld, 1, a + i * ld, 1);
            std::swap(jpvt[pvt], jpvt[i]);
            vn1[pvt] = vn1[i];
            vn2[pvt] = vn2[i];
        }
        double *aii = a + i + i * ld;
        larfg(m - i, aii, a + std::min(i + 1, m - 1) + i * ld, 1, &tau[i]);
        if (i + 1 < n) {
            const double keep = *aii;
            *aii = 1.0;
            larf('L', m - i, n - i - 1, aii, 1, tau[i], aii + ld, lda, scratch);
            *aii = keep;
        }
        for (int j = i + 1; j < n; ++j) {
            if (vn1[j] == 0.0) continue;
            const double r = std::fabs(a[i + j * ld]) / vn1[j];
            const double temp = std::max(0.0, 1.0 - r * r);
            const double q = vn1[j] / vn2[j];
            if (temp * q * q <= tol3z) {
                if (m - i - 1 > 0) {
                    vn1[j] = dnrm2(m - i - 1, a + i + 1 + j * ld, 1);
                    vn2[j] = vn1[j];
                } else {
                    vn1[j] = 0.0;
                    vn2[j] = 0.0;
                }
            } else {
                vn1[j] *= std::sqrt(temp);
            }
        }
    }
}

} // namespace zek

namespace {

char letter(const char *c) { return zek::option_letter(c); }

int qr_arguments(int m, int n, int lda) {
    if (m < 0) return -1;
    if (n < 0) return -2;
    if (lda < std::max(1, m)) return -4;
    return 0;
}

// DORMQR and DORM2R share their checks up to the workspace.
int orm_arguments(char side, char trans, int m, int n, int k, int lda, int ldc) {
    const int nq = side == 'L' ? m : n;
    if (side != 'L' && side != 'R') return -1;
    if (trans != 'N' && trans != 'T') return -2;
    if (m < 0) return -3;
    if (n < 0) return -4;
    if (k < 0 || k > nq) return -5;
    if (lda < std::max(1, nq)) return -7;
    if (ldc < std::max(1, m)) return -10;
    return 0;
}

} // namespace

extern "C" void F08AEZ(const int *m, const int *n, double *a, const int *lda, double *tau, double *work, int *info) {
    *info = qr_arguments(*m, *n, *lda);
    if (*info != 0) {
        zek::silent_report("F08AEZ/DGEQR2", -*info);
        return;
    }
    zek::geqr2(*m, *n, a, *lda, tau, work);
}

extern "C" void F08AGZ(const char *side, const char *trans, const int *m, const int *n, const int *k, double *a,
                       const int *lda, const double *tau, double *c, const int *ldc, double *work, int *info, int,
                       int) {
    const char s = letter(side), t = letter(trans);
    *info = orm_arguments(s, t, *m, *n, *k, *lda, *ldc);
    if (*info != 0) {
        zek::silent_report("F08AGZ/DORM2R", -*info);
        return;
    }
    zek::orm2r(s, t, *m, *n, *k, a, *lda, tau, c, *ldc, work);
}

extern "C" void F08AGF(const char *side, const char *trans, const int *m, const int *n, const int *k, double *a,
                       const int *lda, const double *tau, double *c, const int *ldc, double *work, const int *lwork,
                       int *info, int, int) {
    const char s = letter(side), t = letter(trans);
    *info = orm_arguments(s, t, *m, *n, *k, *lda, *ldc);
    const int nw = std::max(1, s == 'L' ? *n : *m);
    const int nb = std::min(64, std::max(1, zek::block_size_of("F08AGF")));
    const bool query = *lwork == -1;
    if (*info == 0 && *lwork < nw && !query) *info = -12;
    if (*info != 0) {
        zek::silent_report("F08AGF/DORMQR", -*info);
        return;
    }
    work[0] = static_cast<double>(nw * nb);
    if (query) return;
    zek::ormqr(s, t, *m, *n, *k, a, *lda, tau, c, *ldc, work, *lwork, nb);
    work[0] = static_cast<double>(nw * nb);
}

extern "C" void F08BEF(const int *m, const int *n, double *a, const int *lda, int *jpvt, double *tau, double *work,
                       int *info) {
    *info = qr_arguments(*m, *n, *lda);
    if (*info != 0) {
        zek::silent_report("F08BEF/DGEQPF", -*info);
        return;
    }
    zek::geqpf(*m, *n, a, *lda, jpvt, tau, work);
}
