// Helpers of the integer QP tests: a small problem in dense form and one call of H02CEF or H02CBF on it,
// with an option store prepared by H02WBF, option lines through H02CDF and workspace of the minimum
// lengths by the documented rule.
#ifndef ZEK_TESTS_INTEGER_QP_TEST_SUPPORT_H
#define ZEK_TESTS_INTEGER_QP_TEST_SUPPORT_H

#include <functional>
#include <string>
#include <vector>

namespace zek_test {

struct Iqp {
    int n = 0, m = 0;
    std::vector<double> a, bl, bu, cvec, h;  // a: m by n (leading dimension max(1, m)); h: n by n
    std::vector<int> intvar;
    int lda() const { return m > 0 ? m : 1; }
    double &at(int i, int j) { return a[static_cast<std::size_t>((i - 1) + (j - 1) * lda())]; }
    // N integer variables in [lower, upper], M rows free, H and CVEC zero.
    static Iqp box(int n, int m, double lower, double upper);
    double objective(const double *x) const;
    bool feasible(const double *x, double tol) const;
};

// The documented minimum workspace of H02CBF and H02CEF.
long long iqp_liwork(int n, int m, int maxdpt);
long long iqp_lrwork(int n, int m, int maxdpt);

constexpr int kUnset = -99999;

struct IqpCall {
    int itmax = 0, msglvl = 0, maxnod = 0, intfst = 0, maxdpt = 30;
    double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0;
    bool callback = false;          // H02CBF with a Hessian routine, else H02CEF
    int nan_after = -1;             // the Hessian routine returns NaN from this call on, when not negative
    int liwork = -1, lrwork = -1, ldh = -1;  // explicit values when not negative
    int n_override = kUnset, m_override = kUnset;  // explicit N, M when set
    std::vector<std::string> options;  // H02CDF lines before the call
    std::vector<double> x0;            // start point, zeros when empty

    std::vector<double> x;
    double objective = 0.0;
    int ifail = -99;
    std::vector<int> iuser = std::vector<int>(2, 0);  // iuser[0]: products by the Hessian routine
    std::string captured;                             // host text of the call (failures printed)

    int run(const Iqp &p);
};

} // namespace zek_test

#endif
