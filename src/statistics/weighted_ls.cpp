// The weighted least-squares step of the iterative fits (see weighted_ls.h).
#include "statistics/weighted_ls.h"

#include <cmath>
#include <cstdlib>

#include "frame/machine.h"
#include "kernels/qr.h"
#include "kernels/svd.h"

namespace zek {

namespace {

using std::ptrdiff_t;

// 1-norm condition of the upper triangular R (P by P, LDR), R^-1 formed in RINV (P by P) since the
// covariance needs it; a singular R or a product past 1/(smallest number) gives that bound.
double condition_with_inverse(int p, const double *r, ptrdiff_t ldr, double *rinv) {
    const double h = 1.0 / safe_minimum();
    for (ptrdiff_t k = 0; k < static_cast<ptrdiff_t>(p) * p; ++k) rinv[k] = 0.0;
    double nr = 0.0, ni = 0.0;
    for (ptrdiff_t j = 0; j < p; ++j) {
        if (!(std::fabs(r[j + j * ldr]) > 0.0)) return h;
        rinv[j + j * p] = 1.0 / r[j + j * ldr];
        for (ptrdiff_t i = j - 1; i >= 0; --i) {
            double s = 0.0;
            for (ptrdiff_t k = i + 1; k <= j; ++k) s += r[i + k * ldr] * rinv[k + j * p];
            rinv[i + j * p] = -s / r[i + i * ldr];
        }
        double cr = 0.0, ci = 0.0;
        for (ptrdiff_t i = 0; i <= j; ++i) {
            cr += std::fabs(r[i + j * ldr]);
            ci += std::fabs(rinv[i + j * p]);
        }
        nr = cr > nr ? cr : nr;
        ni = ci > ni ? ci : ni;
    }
    if (!(ni < h) || !(nr < h) || (nr > 1.0 && ni > h / nr)) return h;
    return nr * ni;
}

} // namespace

WeightedLs::WeightedLs(int n, int p) : n_(n), p_(p) {
    const ptrdiff_t np = static_cast<ptrdiff_t>(n) * p, pp = static_cast<ptrdiff_t>(p) * p;
    const ptrdiff_t work = svd_workspace(p, p, true, true) + n + p;
    store_ = static_cast<double *>(std::malloc(sizeof(double) * static_cast<std::size_t>(np + n + p + 3 * pp + p + work)));
    if (store_ == nullptr) return;
    a_ = store_;
    c_ = a_ + np;
    zeta_ = c_ + n;
    winv_ = zeta_ + p;
    vt_ = winv_ + pp;
    u_ = vt_ + pp;
    sv_ = u_ + pp;
    work_ = sv_ + p;
}

WeightedLs::~WeightedLs() { std::free(store_); }

int WeightedLs::solve(const double *a, ptrdiff_t lda, const double *w, const double *z, double tol, double *b) {
    const ptrdiff_t n = n_, p = p_;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const double r = w != nullptr ? std::sqrt(w[i]) : 1.0;
        c_[i] = r * z[i];
        for (ptrdiff_t j = 0; j < p; ++j) a_[i + j * n] = r * a[i + j * lda];
    }
    qr_factor(n_, p_, a_, n_, zeta_);
    qr_apply('T', 'S', n_, p_, a_, n_, zeta_, 1, c_, n_, work_);
    const double t = tol > 0.0 ? tol : precision();
    svd_ = !(condition_with_inverse(p_, a_, n, winv_) * t < 1.0);
    rank_ = p_;
    const double *coef = c_;
    for (ptrdiff_t k = 0; k < p; ++k) sv_[k] = 0.0;
    if (svd_) {
        // R = U S V': W = V_r S_r^-1, and the coefficients of the first RANK columns are U_r'(Q'z).
        for (ptrdiff_t j = 0; j < p; ++j) {
            for (ptrdiff_t i = 0; i < p; ++i) winv_[i + j * p] = i <= j ? a_[i + j * n] : 0.0;
        }
        if (svd(p_, p_, winv_, p_, sv_, u_, p_, vt_, p_, work_) != 0) return -1;
        rank_ = 0;
        while (rank_ < p_ && sv_[rank_] > t * sv_[0]) ++rank_;
        double *uc = work_;
        for (ptrdiff_t k = 0; k < rank_; ++k) {
            double s = 0.0;
            for (ptrdiff_t i = 0; i < p; ++i) s += u_[i + k * p] * c_[i];
            uc[k] = s;
            for (ptrdiff_t i = 0; i < p; ++i) winv_[i + k * p] = vt_[k + i * p] / sv_[k];
        }
        coef = uc;
    }
    for (ptrdiff_t i = 0; i < p; ++i) {
        double s = 0.0;
        for (ptrdiff_t k = 0; k < rank_; ++k) s += winv_[i + k * p] * coef[k];
        b[i] = s;
    }
    return rank_;
}

double WeightedLs::quadratic(const double *x) const {
    const ptrdiff_t p = p_;
    double q = 0.0;
    for (ptrdiff_t k = 0; k < rank_; ++k) {
        double s = 0.0;
        for (ptrdiff_t j = 0; j < p; ++j) s += x[j] * winv_[j + k * p];
        q += s * s;
    }
    return q;
}

void WeightedLs::covariance(double scale, double *cov) const {
    const ptrdiff_t p = p_;
    for (ptrdiff_t j = 0; j < p; ++j) {
        for (ptrdiff_t i = 0; i <= j; ++i) {
            double s = 0.0;
            for (ptrdiff_t k = 0; k < rank_; ++k) s += winv_[i + k * p] * winv_[j + k * p];
            cov[j * (j + 1) / 2 + i] = scale * s;
        }
    }
}

} // namespace zek
