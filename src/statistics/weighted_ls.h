// The weighted least-squares step that the GLM iteration and the robust regressions repeat: a Householder
// QR of diag(sqrt(w)) A, the triangular solve when the factor is well conditioned, and the singular
// value decomposition of the factor when it is not (then the minimum-norm solution and the rank).
#ifndef ZEK_STATISTICS_WEIGHTED_LS_H
#define ZEK_STATISTICS_WEIGHTED_LS_H

#include <cstddef>

namespace zek {

class WeightedLs {
public:
    // Room for designs of N rows and P columns; ok() is false when the allocation failed.
    WeightedLs(int n, int p);
    ~WeightedLs();
    WeightedLs(const WeightedLs &) = delete;
    WeightedLs &operator=(const WeightedLs &) = delete;
    bool ok() const { return store_ != nullptr; }

    // Fits Z on the columns of A (N by P, LDA) with weights W (null: all 1; non-negative) into B(P).
    // TOL as in the regression routines (0: the machine precision).  Returns the rank, or -1 when the
    // singular value iteration failed.
    int solve(const double *a, std::ptrdiff_t lda, const double *w, const double *z, double tol, double *b);

    // After solve: |W'x|^2 for a design row X (P values), where W W' = (A'diag(w)A)^+.
    double quadratic(const double *x) const;
    // After solve: SCALE W W' packed by columns (upper triangle, (i, j) at j(j+1)/2 + i).
    void covariance(double scale, double *cov) const;
    // After solve: whether the singular value path was taken; then the values (P) and V' (P by P).
    bool used_svd() const { return svd_; }
    const double *singular_values() const { return sv_; }
    const double *right_vectors() const { return vt_; }
    int rank() const { return rank_; }

private:
    int n_, p_, rank_ = 0;
    bool svd_ = false;
    double *store_;
    double *a_, *c_, *zeta_, *winv_, *sv_, *vt_, *u_, *work_;
};

} // namespace zek

#endif
