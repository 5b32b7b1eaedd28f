// The TQ factorisation of the working set under long random sequences of its four updates (add a row,
// fix a variable, delete a row, free a variable): W Q = (0 T) with Q orthogonal after every step, the
// null-space notifications in step with nz, and the layout within the workspace E04MFA documents.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "optimisation/active_set.h"

namespace {

namespace as = zek::active_set;

class Spy : public as::NullSpaceStep {
public:
    double objective(const as::Core &, double *) override { return 0.0; }
    bool direction(const as::Core &, const double *, double, double, double *, double *) override { return false; }
    void z_rotated(const as::Core &c, int k1, int k2, const double *, const double *) override {
        EXPECT_TRUE(k1 >= 1 && k2 <= c.nz);
    }
    void z_column_removed(const as::Core &c) override { nz = c.nz, ++removed; }
    void z_column_added(const as::Core &c) override { nz = c.nz, ++added; }
    int removed = 0, added = 0, nz = -1;
};

// The largest error in W Q = (0 T) and Q'Q = I, with R(i, k) = T(k, nactiv-1-i).
double factor_error(const as::Core &c) {
    const int nf = c.nfree, na = c.nactiv;
    const auto q = [&](int i, int k) { return c.q[i + static_cast<std::ptrdiff_t>(k) * c.ldq]; };
    double worst = std::fabs(static_cast<double>(c.nz - (nf - na)));
    for (int i = 0; i < nf; ++i)
        for (int k = 0; k < nf; ++k) {
            double s = 0.0;
            for (int l = 0; l < nf; ++l) s += q(l, i) * q(l, k);
            worst = std::max(worst, std::fabs(s - (i == k)));
        }
    for (int i = 0; i < na; ++i)
        for (int k = 0; k < nf; ++k) {
            double s = 0.0;
            for (int f = 0; f < nf; ++f) s += c.a[c.kactiv[i] + static_cast<std::ptrdiff_t>(c.kx[f]) * c.lda] * q(f, k);
            const int r = nf - 1 - k;
            worst = std::max(worst, std::fabs(s - (k < c.nz || r > i ? 0.0 : c.t[r + static_cast<std::ptrdiff_t>(i) * c.ldt])));
        }
    return worst;
}

class FactorUpdates : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(FactorUpdates, KeepTheFactorisationExact) {
    const int n = GetParam().first, m = GetParam().second;
    std::mt19937 rng(static_cast<unsigned>(100 * n + m));
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> a(m * n), bl(n + m, -1.0), bu(n + m, 1.0), x(n), ax(m), lam(n + m);
    for (double &v : a) v = u(rng);
    std::vector<int> istate(n + m, 0);
    const as::Layout l = as::work_layout(n, m, std::min(n, m), m < n ? m + 1 : n);
    std::vector<int> iwork(l.liwork);
    std::vector<double> work(l.lwork);
    as::Core c;
    c.n = n, c.nclin = m, c.a = a.data(), c.lda = m, c.bl = bl.data(), c.bu = bu.data();
    c.istate = istate.data(), c.x = x.data(), c.ax = ax.data(), c.clamda = lam.data();
    as::bind(c, l, iwork.data(), work.data());
    c.nfree = c.maxfree;  // the variables beyond the factor's capacity start fixed
    for (int j = 0; j < n; ++j) c.kx[j] = j, istate[j] = j < c.nfree ? 0 : as::kAtLower;
    c.nactiv = 0;
    as::factorise(c);
    Spy spy;
    int done[4] = {0, 0, 0, 0};
    for (int step = 0; step < 400; ++step) {
        const int op = static_cast<int>(rng() % 4), nz0 = c.nz, removed0 = spy.removed, added0 = spy.added;
        if (op == 0 && c.nz > 0) {
            const int row = static_cast<int>(rng() % m);
            if (istate[n + row] > 0 || !as::add_general(c, row, &spy, 1e-8)) continue;
            istate[n + row] = as::kAtUpper;
        } else if (op == 1 && c.nz > 0) {
            as::fix_variable(c, static_cast<int>(rng() % c.nfree), as::kAtLower, &spy);
        } else if (op == 2 && c.nactiv > 0) {
            const int k = static_cast<int>(rng() % c.nactiv);
            istate[n + c.kactiv[k]] = 0;
            as::delete_general(c, k, &spy);
        } else if (op == 3 && c.nfree < c.maxfree && c.nfree < n) {
            as::free_variable(c, c.kx[c.nfree + static_cast<int>(rng() % (n - c.nfree))], &spy);
        } else {
            continue;
        }
        ++done[op];
        EXPECT_EQ(spy.removed - removed0, nz0 > c.nz);
        EXPECT_EQ(spy.added - added0, nz0 < c.nz);
        EXPECT_EQ(spy.nz, c.nz);
        ASSERT_LE(factor_error(c), 1e-11) << "step " << step << " op " << op;
    }
    for (int op = 0; op < 4; ++op) EXPECT_GT(done[op], 10) << op;
}

INSTANTIATE_TEST_SUITE_P(ActiveSet, FactorUpdates,
                         testing::Values(std::make_pair(8, 12), std::make_pair(12, 5), std::make_pair(15, 15),
                                         std::make_pair(20, 3)));

TEST(ActiveSetLayout, FitsTheDocumentedWorkspace) {
    for (const auto &[n, m] : std::vector<std::pair<int, int>>{{1, 0}, {5, 0}, {1, 1}, {3, 7}, {7, 3}, {40, 40}, {100, 1}}) {
        const int t = std::min(n, m + 1);
        EXPECT_LE(as::real_work_needed(n, m), m == 0 ? 7 * n + 1 : 7 * n + 5 * m + 2 * t * t) << n << " " << m;
        EXPECT_EQ(as::integer_work_needed(n), 2 * n + 3);
    }
}

} // namespace
