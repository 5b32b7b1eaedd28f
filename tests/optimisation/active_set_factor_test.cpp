// The TQ factorisation of the working set under long random sequences of its four updates (add a row,
// fix a variable, delete a row, free a variable): W Q = (0 T) with Q orthogonal and T triangular after
// every step, the notifications of the null space in step with nz, and the workspace layout within
// the lengths E04MFA documents.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "optimisation/active_set.h"

namespace {

namespace as = zek::active_set;

// Counts the notifications and checks them against nz.
class Spy : public as::NullSpaceStep {
public:
    double objective(const as::Core &, double *) override { return 0.0; }
    bool direction(const as::Core &, const double *, double, double, double *, double *) override { return false; }
    void z_rotated(const as::Core &c, int k1, int k2, const double *, const double *) override {
        EXPECT_GE(k1, 1);
        EXPECT_LE(k2, c.nz);
        ++rotations;
    }
    void z_column_removed(const as::Core &c) override { nz_seen = c.nz, ++removed; }
    void z_column_added(const as::Core &c) override { nz_seen = c.nz, ++added; }
    int rotations = 0, removed = 0, added = 0, nz_seen = -1;
};

struct Factor {
    Factor(int n, int m, unsigned seed) : n(n), m(m), rng(seed) {
        std::uniform_real_distribution<double> u(-1.0, 1.0);
        a.resize(static_cast<std::size_t>(std::max(m, 1)) * n);
        for (double &v : a) v = u(rng);
        bl.assign(static_cast<std::size_t>(n + m), -1.0);
        bu.assign(static_cast<std::size_t>(n + m), 1.0);
        istate.assign(static_cast<std::size_t>(n + m), 0);
        x.assign(static_cast<std::size_t>(n), 0.0);
        ax.assign(static_cast<std::size_t>(std::max(m, 1)), 0.0);
        clamda.assign(static_cast<std::size_t>(n + m), 0.0);
        const int maxact = std::max(1, std::min(n, m)), maxfree = m < n ? m + 1 : n;
        const as::Layout l = as::work_layout(n, m, maxact, maxfree);
        iwork.assign(static_cast<std::size_t>(l.liwork), 0);
        work.assign(static_cast<std::size_t>(l.lwork), 0.0);
        c.n = n;
        c.nclin = m;
        c.a = a.data();
        c.lda = std::max(m, 1);
        c.bl = bl.data();
        c.bu = bu.data();
        c.istate = istate.data();
        c.x = x.data();
        c.ax = ax.data();
        c.clamda = clamda.data();
        as::bind(c, l, iwork.data(), work.data());
        // The first variables beyond the factor's capacity start fixed.
        c.nfree = std::min(n, maxfree);
        for (int j = 0; j < n; ++j) {
            c.kx[j] = j;
            if (j >= c.nfree) istate[static_cast<std::size_t>(j)] = as::kAtLower;
        }
        c.nactiv = 0;
        as::factorise(c);
    }

    double q(int i, int k) const { return c.q[i + static_cast<std::ptrdiff_t>(k) * c.ldq]; }
    double r(int i, int k) const { return c.t[i + static_cast<std::ptrdiff_t>(k) * c.ldt]; }

    // The largest error in W Q = (0 T), Q'Q = I and the bookkeeping.
    double error() const {
        double worst = 0.0;
        const int nf = c.nfree, na = c.nactiv;
        EXPECT_EQ(c.nz, nf - na);
        std::vector<int> seen(static_cast<std::size_t>(n), 0);
        for (int k = 0; k < n; ++k) {
            const int j = c.kx[k];
            EXPECT_EQ(seen[static_cast<std::size_t>(j)]++, 0);
            EXPECT_EQ(istate[static_cast<std::size_t>(j)] > 0, k >= nf) << j;
        }
        for (int i = 0; i < nf; ++i)
            for (int k = 0; k < nf; ++k) {
                double s = 0.0;
                for (int l = 0; l < nf; ++l) s += q(l, i) * q(l, k);
                worst = std::max(worst, std::fabs(s - (i == k ? 1.0 : 0.0)));
            }
        for (int i = 0; i < na; ++i) {
            const int row = c.kactiv[i];
            EXPECT_GE(istate[static_cast<std::size_t>(n + row)], as::kAtLower);
            for (int k = 0; k < nf; ++k) {
                double s = 0.0;
                for (int f = 0; f < nf; ++f) s += a[static_cast<std::size_t>(row) + static_cast<std::size_t>(c.kx[f]) * c.lda] * q(f, k);
                const int rr = nf - 1 - k;
                const double expect = k < c.nz || rr > i ? 0.0 : r(rr, i);
                worst = std::max(worst, std::fabs(s - expect));
            }
        }
        return worst;
    }

    int n, m;
    std::mt19937 rng;
    std::vector<double> a, bl, bu, x, ax, clamda, work;
    std::vector<int> istate, iwork;
    as::Core c;
};

class FactorUpdates : public testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(FactorUpdates, KeepTheFactorisationExact) {
    const int n = std::get<0>(GetParam()), m = std::get<1>(GetParam());
    Factor f(n, m, static_cast<unsigned>(n * 100 + m));
    Spy spy;
    as::Core &c = f.c;
    ASSERT_LE(f.error(), 1e-13);
    int done[4] = {0, 0, 0, 0};
    for (int step = 0; step < 400; ++step) {
        const int op = static_cast<int>(f.rng() % 4);
        const int nz0 = c.nz;
        const int removed0 = spy.removed, added0 = spy.added;
        if (op == 0 && c.nz > 0 && m > 0) {
            std::vector<int> out;
            for (int i = 0; i < m; ++i)
                if (f.istate[static_cast<std::size_t>(n + i)] <= 0) out.push_back(i);
            if (out.empty()) continue;
            const int row = out[f.rng() % out.size()];
            if (!as::add_general(c, row, &spy, 1e-8)) continue;
            f.istate[static_cast<std::size_t>(n + row)] = as::kAtUpper;
        } else if (op == 1 && c.nz > 0) {
            as::fix_variable(c, static_cast<int>(f.rng() % static_cast<unsigned>(c.nfree)), as::kAtLower, &spy);
        } else if (op == 2 && c.nactiv > 0) {
            const int k = static_cast<int>(f.rng() % static_cast<unsigned>(c.nactiv));
            f.istate[static_cast<std::size_t>(n + c.kactiv[k])] = as::kNotInWorkingSet;
            as::delete_general(c, k, &spy);
        } else if (op == 3 && c.nfree < n && c.nfree < c.maxfree) {
            const int pos = c.nfree + static_cast<int>(f.rng() % static_cast<unsigned>(n - c.nfree));
            as::free_variable(c, c.kx[pos], &spy);
        } else {
            continue;
        }
        ++done[op];
        EXPECT_EQ(spy.removed - removed0, nz0 > c.nz ? 1 : 0);
        EXPECT_EQ(spy.added - added0, nz0 < c.nz ? 1 : 0);
        EXPECT_EQ(spy.nz_seen, c.nz);
        const double err = f.error();
        ASSERT_LE(err, 1e-11) << "step " << step << " op " << op;
    }
    for (int op = 0; op < 4; ++op) EXPECT_GT(done[op], 10) << op;
    EXPECT_GT(spy.rotations, 0);
}

INSTANTIATE_TEST_SUITE_P(ActiveSet, FactorUpdates,
                         testing::Values(std::make_tuple(8, 12), std::make_tuple(12, 5), std::make_tuple(15, 15),
                                         std::make_tuple(20, 3)),
                         [](const testing::TestParamInfo<std::tuple<int, int>> &info) {
                             return "n" + std::to_string(std::get<0>(info.param)) + "_m" +
                                    std::to_string(std::get<1>(info.param));
                         });

// The layout with the default limits fits exactly the workspace that E04MFA's callers provide.
TEST(ActiveSetLayout, FitsTheDocumentedWorkspace) {
    for (const auto &[n, m] : std::vector<std::pair<int, int>>{{1, 0}, {5, 0}, {1, 1}, {3, 7}, {7, 3}, {40, 39},
                                                                {40, 40}, {40, 41}, {100, 1}}) {
        const int t = std::min(n, m + 1);
        const long documented = m == 0 ? 7L * n + 1 : 7L * n + 5L * m + 2L * t * t;
        EXPECT_LE(as::real_work_needed(n, m), documented) << n << " " << m;
        EXPECT_EQ(as::integer_work_needed(n), 2L * n + 3);
    }
}

} // namespace
