// Helpers of the factorisation tests: test matrices (random, graded, rank-deficient), residuals of the
// factorisations, and reference LAPACK loaded at run time by full path.
#ifndef ZEK_TESTS_FACTOR_TEST_SUPPORT_H
#define ZEK_TESTS_FACTOR_TEST_SUPPORT_H

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <string>
#include <vector>

#include "kernel_test_util.h"
#include "peer_blas.h"
#include "zek2/f02.h"
#include "zek2/f04.h"
#include "zek2/y90.h"

namespace zek_test {

constexpr const char *kReferenceLapackPath = "/usr/lib/x86_64-linux-gnu/lapack/liblapack.so.3";
constexpr double kEps = 1.1102230246251565e-16;

// Everything written on stdout while the object lives (the host channel falls back to stdout in a
// program that defines no host print routine; the stream channel writes there too).
class StdoutCapture {
public:
    StdoutCapture() { ::testing::internal::CaptureStdout(); }
    ~StdoutCapture() {
        if (!done_) text();
    }
    std::string text() {
        std::fflush(stdout);
        done_ = true;
        return ::testing::internal::GetCapturedStdout();
    }

private:
    bool done_ = false;
};

// Reference LAPACK over reference BLAS (the BLAS is loaded first so that LAPACK binds to it).
inline const PeerBlas &reference_lapack() {
    reference_blas();
    static const PeerBlas lapack(kReferenceLapackPath);
    return lapack;
}

template <class... Args> void call_lapack(const char *name, Args... args) {
    call_peer(reference_lapack(), name, args...);
}

// A column-major M by N matrix with leading dimension LD >= M.
struct Mat {
    int m = 0, n = 0, ld = 1;
    std::vector<double> v;
    Mat() = default;
    Mat(int rows, int cols, int lead = 0) : m(rows), n(cols), ld(std::max({1, rows, lead})), v(std::size_t(ld) * std::max(cols, 1), 0.0) {}
    double &operator()(int i, int j) { return v[std::size_t(i) + std::size_t(j) * ld]; }
    double operator()(int i, int j) const { return v[std::size_t(i) + std::size_t(j) * ld]; }
    double *data() { return v.data(); }
    const double *data() const { return v.data(); }
};

// Kinds of test matrix.
enum class Kind { Random, Graded, RankDeficient, ZeroColumn };

inline const char *kind_name(Kind k) {
    switch (k) {
    case Kind::Random: return "random";
    case Kind::Graded: return "graded";
    case Kind::RankDeficient: return "rank_deficient";
    case Kind::ZeroColumn: return "zero_column";
    }
    return "?";
}

// Random: entries uniform on (-1,1).  Graded: columns scaled from 1 down to 1e-12 (condition ~1e12).
// RankDeficient: a product of M by r and r by N random factors, r = min(M,N)/2.  ZeroColumn: random with
// its middle column zero.
inline Mat make_matrix(Kind kind, int m, int n, unsigned seed, int ld = 0) {
    Random rng(seed);
    Mat a(m, n, ld);
    if (kind == Kind::RankDeficient) {
        const int r = std::max(1, std::min(m, n) / 2);
        Mat x(m, r), y(r, n);
        for (double &e : x.v) e = rng.next();
        for (double &e : y.v) e = rng.next();
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) {
                double s = 0.0;
                for (int l = 0; l < r; ++l) s += x(i, l) * y(l, j);
                a(i, j) = s;
            }
        return a;
    }
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i) a(i, j) = rng.next();
    if (kind == Kind::Graded && n > 1)
        for (int j = 0; j < n; ++j) {
            const double s = std::pow(10.0, -12.0 * j / (n - 1));
            for (int i = 0; i < m; ++i) a(i, j) *= s;
        }
    if (kind == Kind::ZeroColumn && n > 0)
        for (int i = 0; i < m; ++i) a(i, n / 2) = 0.0;
    return a;
}

// A symmetric positive definite matrix of order N: B'*B + N*I (or a graded version with condition
// about 1e10 when GRADED).
inline Mat make_spd(int n, unsigned seed, bool graded = false) {
    Mat b = make_matrix(Kind::Random, n, n, seed);
    Mat a(n, n);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            double s = 0.0;
            for (int l = 0; l < n; ++l) s += b(l, i) * b(l, j);
            a(i, j) = s + (i == j ? n : 0.0);
        }
    if (graded && n > 1)
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) a(i, j) *= std::pow(10.0, -5.0 * (i + j) / (n - 1));
    return a;
}

// D times the identity of order N.
inline Mat identity_matrix(int n, double d = 1.0) {
    Mat e(n, n);
    for (int i = 0; i < n; ++i) e(i, i) = d;
    return e;
}

inline Mat transposed(const Mat &a) {
    Mat t(a.n, a.m);
    for (int j = 0; j < a.n; ++j)
        for (int i = 0; i < a.m; ++i) t(j, i) = a(i, j);
    return t;
}

inline double one_norm(const Mat &a) {
    double best = 0.0;
    for (int j = 0; j < a.n; ++j) {
        double s = 0.0;
        for (int i = 0; i < a.m; ++i) s += std::fabs(a(i, j));
        best = std::max(best, s);
    }
    return best;
}

// A with every element more than BELOW places under the diagonal set to zero: BELOW 1 gives the upper
// Hessenberg part, 0 the upper triangle (or trapezoid).
inline Mat upper_band(Mat a, int below) {
    for (int j = 0; j < a.n; ++j)
        for (int i = j + below + 1; i < a.m; ++i) a(i, j) = 0.0;
    return a;
}

// The bidiagonal iteration on (D, E) of order N for the singular values only; returns IFAIL (1 on entry).
inline int bidiagonal_values(int n, double *d, double *e) {
    std::vector<double> work(4 * std::size_t(std::max(n, 1)));
    const int zero = 0, one = 1;
    double dummy = 0.0;
    int ifail = 1;
    F02SYZ(&n, d, e, &zero, &dummy, &one, &zero, &dummy, &one, &zero, &dummy, &one, work.data(), &ifail);
    return ifail;
}

// C = A*B.
inline Mat multiply(const Mat &a, const Mat &b) {
    Mat c(a.m, b.n);
    for (int j = 0; j < b.n; ++j)
        for (int l = 0; l < a.n; ++l)
            for (int i = 0; i < a.m; ++i) c(i, j) += a(i, l) * b(l, j);
    return c;
}

// ||A - B||_1 / (||A||_1 max(m, n) eps), the test ratio of Y90DRF.
inline double scaled_difference(const Mat &a, const Mat &b) { return Y90DRF(&a.m, &a.n, a.data(), &a.ld, b.data(), &b.ld); }

// Q*T*Q' = A and Q'*Q = I, each within TOL in the test ratio of Y90DRF.
inline void expect_orthogonal_similarity(const Mat &a, const Mat &q, const Mat &t, double tol) {
    const Mat qt = transposed(q);
    EXPECT_LT(scaled_difference(a, multiply(multiply(q, t), qt)), tol);
    EXPECT_LT(scaled_difference(identity_matrix(q.n), multiply(qt, q)), tol);
}

// P*L*U from the factors of an LU factorisation with one-based row interchanges IPIV (unit L when
// UNIT_L, else L carries the diagonal and U is unit).
inline Mat lu_product(const Mat &f, const std::vector<int> &ipiv, bool unit_l = true) {
    const int m = f.m, n = f.n, k = std::min(m, n);
    Mat l(m, k), u(k, n);
    for (int j = 0; j < k; ++j)
        for (int i = 0; i < m; ++i) {
            if (i > j || (!unit_l && i == j)) l(i, j) = f(i, j);
            if (i == j && unit_l) l(i, j) = 1.0;
        }
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < k; ++i) {
            if (i < j || (unit_l && i == j)) u(i, j) = f(i, j);
            if (i == j && !unit_l) u(i, j) = 1.0;
        }
    Mat p = multiply(l, u);
    for (int i = k - 1; i >= 0; --i) {
        const int r = ipiv[i] - 1;
        if (r != i)
            for (int j = 0; j < n; ++j) std::swap(p(i, j), p(r, j));
    }
    return p;
}

// Drives a 1-norm estimator (real, WIDTH 1, or complex, WIDTH 2) on the real N by N matrix A (column
// order, leading dimension N) as a complex one when WIDTH is 2, forming each product it asks for.
// Returns the number of products formed, capped at 100 so that an estimator that never stops asking
// still ends; the estimate and IFAIL (its value on entry is the caller's) are left in EST and IFAIL.
inline int drive_estimator(decltype(&F04YCF) estimator, int width, int n, const double *a, double *est,
                           int *ifail) {
    std::vector<double> x(std::size_t(std::max(n, 1)) * width), v(x.size());
    std::vector<int> iwork(std::max(n, 1) + 3);
    int icase = 0, products = 0;
    do {
        estimator(&icase, &n, x.data(), est, v.data(), iwork.data(), ifail);
        if (icase == 0 || *ifail != 0) break;
        std::vector<double> y(x.size(), 0.0);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) {
                const int to = icase == 1 ? i : j, from = icase == 1 ? j : i;
                for (int part = 0; part < width; ++part)
                    y[width * to + part] += a[i + n * j] * x[width * from + part];
            }
        x = y;
    } while (++products < 100);
    return products;
}

} // namespace zek_test

#endif
