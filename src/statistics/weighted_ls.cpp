// The weighted least-squares step of the iterative fits (see weighted_ls.h).
#include "statistics/weighted_ls.h"

#include <cmath>
#include <cstdlib>

#include "frame/machine.h"
#include "kernels/qr.h"
#include "kernels/svd.h"
#include "statistics/regression.h"

namespace zek {

using std::ptrdiff_t;

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
    svd_ = !(triangular_condition(p_, a_, n, winv_) * t < 1.0);
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
