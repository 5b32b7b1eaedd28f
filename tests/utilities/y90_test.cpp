// Chapter Y90: the Haar property of the random orthogonal and unitary matrices (moments of the trace
// that a biased sign choice breaks), prescribed singular values and eigenvalues recovered by the
// library's SVD, the storage conversions, the comparators on known discrepancies, and the argument exits.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <numeric>
#include <vector>

#include "kernels/svd.h"
#include "zek2/g05.h"
#include "zek2/y90.h"

namespace {

std::vector<int> seed() {
    std::vector<int> s(4);
    int igen = 0;
    G05_EXPLICIT_DEFAULT(&igen, s.data());
    return s;
}

TEST(Y90, HaarMatricesAreOrthogonalWithTheMomentsOfHaarMeasure) {
    // For Haar measure E[tr Q] = 0 and E[|tr Q|^2] = 1 (n >= 2, real and complex).  The Q of a plain
    // Householder QR of a Gaussian matrix has Q(1,1) of one sign always, so these moments catch a
    // missing sign correction.
    std::vector<int> s = seed();
    const int n = 4, samples = 4000;
    std::vector<double> q(2 * n * n), work(4 * n);
    double tr = 0.0, tr2 = 0.0, ctr2 = 0.0, worst = 0.0;
    for (int k = 0; k < samples; ++k) {
        int ifail = 0;
        Y90ROF(&n, s.data(), q.data(), &n, work.data(), &ifail);
        ASSERT_EQ(ifail, 0);
        worst = std::max(worst, Y90ORF(&n, &n, q.data(), &n));
        double t = 0.0;
        for (int i = 0; i < n; ++i) t += q[i + i * n];
        tr += t;
        tr2 += t * t;
        Y90RUF(&n, s.data(), q.data(), &n, work.data(), &ifail);
        ASSERT_EQ(ifail, 0);
        std::complex<double> ct = 0.0;
        for (int i = 0; i < n; ++i) ct += reinterpret_cast<const std::complex<double> *>(q.data())[i + i * n];
        ctr2 += std::norm(ct);
    }
    EXPECT_LT(worst, 10.0);
    EXPECT_NEAR(tr / samples, 0.0, 0.1);
    EXPECT_NEAR(tr2 / samples, 1.0, 0.1);
    EXPECT_NEAR(ctr2 / samples, 1.0, 0.1);
    // The unitary one is unitary: Q^H Q = I.
    const auto *u = reinterpret_cast<const std::complex<double> *>(q.data());
    double off = 0.0;
    for (int i = 0; i < n * n; ++i) {
        std::complex<double> dot = 0.0;
        for (int k = 0; k < n; ++k) dot += std::conj(u[k + i % n * n]) * u[k + i / n * n];
        off = std::max(off, std::abs(dot - (i % n == i / n ? 1.0 : 0.0)));
    }
    EXPECT_LT(off, 1e-14);
}

TEST(Y90, PrescribedSingularValuesAndEigenvaluesComeBack) {
    std::vector<int> s = seed();
    for (int mode : {1, 2, 3, 4, 5, -3}) {
        const int m = 9, n = 6, k = 6;
        const double cond = 1e8, dmax = 2.0;
        std::vector<double> d(k), a(m * n), work(m * m + n * n + 2 * m), sigma(k);
        int ifail = 0;
        Y90CDF(&mode, &k, &cond, &dmax, s.data(), d.data(), &ifail);
        ASSERT_EQ(ifail, 0);
        const auto [lo, hi] = std::minmax_element(d.begin(), d.end());
        EXPECT_NEAR(*hi / *lo, cond, 1e-6 * cond) << mode;
        Y90SVF(&m, &n, d.data(), s.data(), a.data(), &m, work.data(), &ifail);
        ASSERT_EQ(ifail, 0);
        std::vector<double> svw(zek::svd_workspace(m, n, false, false));
        ASSERT_EQ(zek::svd(m, n, a.data(), m, sigma.data(), nullptr, 1, nullptr, 1, svw.data()), 0);
        std::sort(d.begin(), d.end(), std::greater<double>());
        for (int i = 0; i < k; ++i) EXPECT_NEAR(sigma[i], d[i], 1e-14 * dmax * 10) << mode << " " << i;
    }
    // Symmetric with eigenvalues of both signs: exact symmetry, trace and Frobenius norm.
    const int n = 7;
    const double ev[n] = {3, -2, 1e-3, 0, 5, -5, 1};
    std::vector<double> a(n * n), work(n * n + 2 * n);
    int ifail = 0;
    Y90EVF(&n, ev, s.data(), a.data(), &n, work.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    double trace = 0.0, frob = 0.0;
    for (int j = 0; j < n; ++j) {
        trace += a[j + j * n];
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(a[i + j * n], a[j + i * n]);
            frob += a[i + j * n] * a[i + j * n];
        }
    }
    EXPECT_NEAR(trace, 2.001, 1e-13);
    EXPECT_NEAR(frob, 9 + 4 + 1e-6 + 25 + 25 + 1, 1e-12);
}

TEST(Y90, StorageConversionsPlaceEveryElement) {
    // A(i,j) = 10 i + j (one-based) on a 4 by 5 matrix.
    const int m = 4, n = 5, kl = 1, ku = 2, ldab = 4;
    std::vector<double> a(m * n);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i) a[i + j * m] = 10.0 * (i + 1) + (j + 1);
    std::vector<double> ab(ldab * n, -1.0);
    int ifail = 0;
    Y90BNF(&m, &n, &kl, &ku, a.data(), &m, ab.data(), &ldab, &ifail);
    ASSERT_EQ(ifail, 0);
    for (int j = 1; j <= n; ++j)
        for (int i = std::max(1, j - ku); i <= std::min(m, j + kl); ++i) EXPECT_EQ(ab[(ku + i - j) + (j - 1) * ldab], 10.0 * i + j);
    EXPECT_EQ(ab[0], 0.0);  // above row 1 in column 1
    const int sq = 4;
    std::vector<double> ap(10);
    Y90PKF("L", &sq, a.data(), &m, ap.data(), &ifail, 1);
    EXPECT_EQ(ap, (std::vector<double>{11, 21, 31, 41, 22, 32, 42, 33, 43, 44}));
    // Coordinate form, row by row.
    const double drop = 32.5;
    const int la = 20;
    int nnz = 0;
    std::vector<double> val(la);
    std::vector<int> irow(la), icol(la);
    Y90SPF(&m, &n, a.data(), &m, &drop, &la, &nnz, val.data(), irow.data(), icol.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    EXPECT_EQ(nnz, 8);  // 33, 34, 35, 41..45
    EXPECT_EQ(val[0], 33.0);
    EXPECT_EQ(irow[3], 4);
    EXPECT_EQ(icol[3], 1);
}

TEST(Y90, ComparatorsScaleTheDiscrepancy) {
    const int n = 3, one = 1;
    std::vector<double> a = {4, 0, 0, 0, 4, 0, 0, 0, 4}, b = a;
    EXPECT_EQ(Y90DRF(&n, &n, a.data(), &n, b.data(), &n), 0.0);
    const double eps = std::ldexp(1.0, -53);
    b[4] += 4.0 * 24 * eps;  // ||A - B|| = 3 ||A|| eps times 8 (eps here is a shade below the library's)
    EXPECT_NEAR(Y90DRF(&n, &n, a.data(), &n, b.data(), &n), 8.0, 1e-2);
    // Q = I/2 scaled: R = 8 I reproduces A exactly; Q'Q = I/4 is far from orthogonal.
    std::vector<double> q = {0.5, 0, 0, 0, 0.5, 0, 0, 0, 0.5}, r = {8, 0, 0, 0, 8, 0, 0, 0, 8};
    EXPECT_EQ(Y90QRF(&n, &n, &n, a.data(), &n, q.data(), &n, r.data(), &n), 0.0);
    EXPECT_GT(Y90ORF(&n, &n, q.data(), &n), 1e14);
    std::vector<double> x = {1, 2, 3}, rhs = {4, 8, 12};
    EXPECT_EQ(Y90RRF(&n, &one, a.data(), &n, x.data(), &n, rhs.data(), &n), 0.0);
    rhs[0] = NAN;
    EXPECT_GT(Y90RRF(&n, &one, a.data(), &n, x.data(), &n, rhs.data(), &n), 1e300);
    const int bad = 0;
    EXPECT_EQ(Y90DRF(&n, &n, a.data(), &bad, b.data(), &n), -1.0);
}

TEST(HostileY90, EveryRoutineEndsInItsResultOrItsExit) {
    std::vector<int> s = seed(), zero(4, 0);
    std::vector<double> out(64, 7.0), work(64);
    const int n2 = 2, neg = -1, big = 2147483647, m5 = 5, one = 1;
    const double nan = NAN, inf = INFINITY, huge = 1.7e308, c = 10.0, h = 1.0;
    struct Row {
        const char *what;
        std::function<void(int *)> call;
        int ifail;
    } rows[] = {
        {"vector nan bound", [&](int *f) { Y90RVF("U", &n2, &nan, &h, s.data(), out.data(), f, 1); }, 1},
        {"vector inf sd", [&](int *f) { Y90RVF("N", &n2, &h, &inf, s.data(), out.data(), f, 1); }, 1},
        {"vector largest bounds", [&](int *f) { const double lo = -huge; Y90RVF("U", &n2, &lo, &huge, s.data(), out.data(), f, 1); }, 0},
        {"vector zero seed", [&](int *f) { Y90RVF("U", &n2, &h, &c, zero.data(), out.data(), f, 1); }, 1},
        {"matrix ld short", [&](int *f) { Y90RGF("U", &n2, &n2, &h, &c, s.data(), out.data(), &one, f, 1); }, 1},
        {"orthogonal zero order", [&](int *f) { const int z = 0; Y90ROF(&z, s.data(), out.data(), &one, work.data(), f); }, 0},
        {"unitary negative", [&](int *f) { Y90RUF(&neg, s.data(), out.data(), &one, work.data(), f); }, 1},
        {"orthogonal ld short", [&](int *f) { Y90ROF(&n2, s.data(), out.data(), &one, work.data(), f); }, 1},
        {"mode 6", [&](int *f) { const int md = 6; Y90CDF(&md, &n2, &c, &h, s.data(), out.data(), f); }, 1},
        {"cond nan", [&](int *f) { Y90CDF(&one, &n2, &nan, &h, s.data(), out.data(), f); }, 1},
        {"cond inf", [&](int *f) { Y90CDF(&one, &n2, &inf, &h, s.data(), out.data(), f); }, 1},
        {"cond largest", [&](int *f) { const int md = 3; Y90CDF(&md, &m5, &huge, &h, s.data(), out.data(), f); }, 0},
        {"singular values nan", [&](int *f) { const double d[2] = {1, nan}; Y90SVF(&n2, &n2, d, s.data(), out.data(), &n2, work.data(), f); }, 3},
        {"eigenvalues inf", [&](int *f) { const double d[2] = {inf, 1}; Y90EVF(&n2, d, s.data(), out.data(), &n2, work.data(), f); }, 3},
        {"band huge widths", [&](int *f) { Y90BNF(&n2, &n2, &big, &big, work.data(), &n2, out.data(), &n2, f); }, 1},
        {"packed bad uplo", [&](int *f) { Y90PKF("Q", &n2, work.data(), &n2, out.data(), f, 1); }, 1},
        {"coordinate nan drop", [&](int *f) { int nnz = 0; std::vector<int> ir(4), ic(4); Y90SPF(&n2, &n2, work.data(), &n2, &nan, &m5, &nnz, out.data(), ir.data(), ic.data(), f); }, 0},
        {"coordinate no room", [&](int *f) { int nnz = 0; const int z = 0; const double w[4] = {1, 2, 3, 4}; Y90SPF(&n2, &n2, w, &n2, &h, &z, &nnz, out.data(), nullptr, nullptr, f); }, 2},
    };
    for (const Row &r : rows) {
        int ifail = 1;
        r.call(&ifail);
        EXPECT_EQ(ifail, r.ifail) << r.what;
        for (double v : out) ASSERT_FALSE(std::isnan(v)) << r.what;
    }
}

} // namespace
