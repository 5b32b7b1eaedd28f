// F01BQZ: modified Cholesky factorisation.
#include "kernels/modified_cholesky.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zek {

namespace {
// Start of row i (one-based, i >= 2) of the strict lower triangle packed by rows.
inline std::ptrdiff_t row_start(int i) { return static_cast<std::ptrdiff_t>(i - 1) * (i - 2) / 2; }
} // namespace

int modified_cholesky(int n, double eps, double *l, double *d) {
    if (n < 1) return 0;
    double gamma = 0.0, xi = 0.0;
    for (int i = 1; i <= n; ++i) {
        gamma = std::max(gamma, std::fabs(d[i - 1]));
        for (int j = 1; j < i; ++j) xi = std::max(xi, std::fabs(l[row_start(i) + j - 1]));
    }
    // The bound beta**2 on the elements of L*sqrt(D) balances the off-diagonal size against the
    // diagonal; delta keeps each diagonal safely away from zero.
    xi /= n;
    const double beta2 = std::max({xi, gamma, eps});
    const double delta = std::max(eps * std::max(gamma, xi), eps);
    int changed = 0;
    for (int j = 1; j <= n; ++j) {
        // Row j of L times D, for k < j: l(j,k)*d(k); the column j elements c(i,j) = g(i,j) -
        // sum_k l(i,k)*d(k)*l(j,k) are formed in place for i > j.
        double *lj = l + row_start(j);
        double cjj = d[j - 1];
        for (int k = 1; k < j; ++k) cjj -= lj[k - 1] * lj[k - 1] * d[k - 1];
        double theta = 0.0;
        for (int i = j + 1; i <= n; ++i) {
            double *li = l + row_start(i);
            double c = li[j - 1];
            for (int k = 1; k < j; ++k) c -= li[k - 1] * d[k - 1] * lj[k - 1];
            li[j - 1] = c;
            theta = std::max(theta, std::fabs(c));
        }
        const double dj = std::max({std::fabs(cjj), delta, theta * theta / beta2});
        if (dj != cjj) ++changed;
        d[j - 1] = dj;
        for (int i = j + 1; i <= n; ++i) l[row_start(i) + j - 1] /= dj;
    }
    return changed;
}

void F01BQZ(const int *n, const double *eps, double *l, const int *, double *d, int *ifail) {
    *ifail = modified_cholesky(*n, *eps, l, d);
}

} // namespace zek
