// Balancing with permutations and scaling: the balanced matrix is exactly similar to the input (swaps and
// powers of 2), triangular outside ILO..IHI, and its isolated eigenvalues are those on the diagonal
// there; ILO, IHI against reference LAPACK's dgebal.
#include <gtest/gtest.h>

#include <vector>

#include "factor_test_support.h"
#include "kernels/schur.h"

using namespace zek_test;

namespace {

// Undoes the balancing: scaling inside ILO..IHI, then the exchanges in the reverse of their order.
template <class T> std::vector<T> unbalance(int n, std::vector<T> b, int ilo, int ihi, const std::vector<double> &scale) {
    auto B = [&](int i, int j) -> T & { return b[i + j * n]; };
    auto d = [&](int i) { return i >= ilo - 1 && i < ihi ? scale[i] : 1.0; };
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) B(i, j) *= d(i) / d(j);
    auto exchange = [&](int j, int m) {
        for (int i = 0; i < n; ++i) std::swap(B(i, j), B(i, m));
        for (int i = 0; i < n; ++i) std::swap(B(j, i), B(m, i));
    };
    for (int j = ilo - 2; j >= 0; --j) exchange(j, int(scale[j]) - 1);
    for (int j = ihi; j < n; ++j) exchange(j, int(scale[j]) - 1);
    return b;
}

struct Case {
    const char *name;
    int n;
    std::vector<double> a; // by rows, for readability
    int ilo, ihi;
};

const Case kCases[] = {
    // Row 3 isolates 7 (pushed to the bottom), column 1 isolates 2 (pushed to the top).
    {"row_and_column", 5, {2, 1, 3, 1, 1, 0, 1, 2, 0, 5e3, 0, 0, 7, 0, 0, 0, 4e-3, 1, 3, 1, 0, 1, 8, 1, 2}, 2, 4},
    {"triangular", 4, {1, 2, 3, 4, 0, 5, 6, 7, 0, 0, 8, 9, 0, 0, 0, 10}, 1, 1},
    {"lower_triangular", 3, {1, 0, 0, 2, 3, 0, 4, 5, 6}, 1, 1},
    {"nothing_isolated", 3, {1, 1e4, 1, 1e-4, 2, 1, 1, 1, 3}, 1, 3},
    {"diagonal", 3, {3, 0, 0, 0, 1, 0, 0, 0, 2}, 1, 1},
    {"empty", 0, {}, 1, 0},
};

TEST(BalanceReference, IsolatesEigenvaluesAndStaysSimilar) {
    for (const Case &c : kCases)
        for (char job : {'P', 'B'}) {
            SCOPED_TRACE(std::string(c.name) + " " + job);
            const int n = c.n, ld = std::max(1, n);
            std::vector<double> a(n * n), scale(n + 1), rscale(n + 1);
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a[i + j * n] = c.a[i * n + j];
            std::vector<double> b = a, rb = a;
            int ilo = 0, ihi = 0, rilo = 0, rihi = 0, rinfo = 0;
            zek::balance(job, n, b.data(), ld, &ilo, &ihi, scale.data());
            const char js[2] = {job, 0};
            call_lapack("dgebal", js, &n, rb.data(), &ld, &rilo, &rihi, rscale.data(), &rinfo, L(1));
            EXPECT_EQ(ilo, c.ilo);
            EXPECT_EQ(ihi, c.ihi);
            EXPECT_EQ(ilo, rilo);
            EXPECT_EQ(ihi, rihi);
            for (int j = 0; j < n; ++j)
                for (int i = j + 1; i < n; ++i)
                    if (j < ilo - 1 || i > ihi - 1) {
                        EXPECT_EQ(b[i + j * n], 0.0) << i << "," << j;
                    }
            // Swaps and powers of 2 are exact: the input comes back bit for bit.
            EXPECT_EQ(unbalance(n, b, ilo, ihi, scale), a);
        }
}

} // namespace
