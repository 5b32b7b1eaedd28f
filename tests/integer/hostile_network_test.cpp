// Transportation and shortest path: known optima, random problems against GLPK's simplex and against
// distances by a plain all-pairs relaxation written here, the exact failure texts, and hostile rows.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "integer_test_support.h"
#include "zek2/h03.h"

namespace {

struct Transport {
    int ma, mb;
    std::vector<int> cost, a;  // cost column-major with leading dimension MA
};

struct TransportResult {
    int ifail, numit;
    double z;
    std::vector<int> src, dst, flow, kost;
};

// M and MMM may be set off from MA + MB and MA to reach the argument checks.
TransportResult solve(Transport p, int maxit = 1000, int ifail = 1, int m_delta = 0) {
    const int m = p.ma + p.mb + m_delta, len = std::max(m, 1), mmm = std::max(p.ma, 1);
    TransportResult r{ifail, 0, 0.0, std::vector<int>(len), std::vector<int>(len), std::vector<int>(len), std::vector<int>(len)};
    std::vector<int> w1(len), w2(len);
    H03ABF(p.cost.data(), &mmm, &p.ma, &p.mb, &m, p.a.data(), &maxit, &r.numit, r.src.data(), r.dst.data(),
           r.flow.data(), r.kost.data(), &r.z, w1.data(), w2.data(), &r.ifail);
    return r;
}

// The basis ships every amount exactly and its cells' costs are those of the matrix.
void expect_feasible(const Transport &p, const TransportResult &r) {
    std::vector<long> shipped(p.ma + p.mb, 0);
    double z = 0;
    for (int k = 0; k < p.ma + p.mb - 1; ++k) {
        ASSERT_TRUE(r.src[k] >= 1 && r.src[k] <= p.ma && r.dst[k] >= 1 && r.dst[k] <= p.mb && r.flow[k] >= 0);
        EXPECT_EQ(r.kost[k], p.cost[(r.src[k] - 1) + (r.dst[k] - 1) * p.ma]);
        shipped[r.src[k] - 1] += r.flow[k];
        shipped[p.ma + r.dst[k] - 1] += r.flow[k];
        z += static_cast<double>(r.flow[k]) * r.kost[k];
    }
    for (int v = 0; v < p.ma + p.mb; ++v) EXPECT_EQ(shipped[v], p.a[v]) << v;
    EXPECT_EQ(z, r.z);
}

TEST(Transportation, TextbookProblemHasItsKnownOptimum) {
    // Three plants, four markets; the optimum 743 is known from the classic worked example.
    Transport p{3, 4, {19, 70, 40, 30, 30, 8, 50, 40, 70, 10, 60, 20}, {7, 9, 18, 5, 8, 7, 14}};
    const TransportResult r = solve(p);
    EXPECT_EQ(r.ifail, 0);
    expect_feasible(p, r);
    EXPECT_EQ(r.z, 743.0);
}

#if defined(ZEK_HAVE_GLPK)
// The transportation problem as a linear program: a flow for each cell, a fixed row for each amount.
double glpk_transport(const Transport &p) {
    zek_test::IntegerProgram lp = zek_test::IntegerProgram::box(p.ma * p.mb, p.ma + p.mb, 1e20);
    std::fill(lp.intvar.begin(), lp.intvar.end(), 0);
    for (int j = 0; j < p.mb; ++j)
        for (int i = 0; i < p.ma; ++i) {
            const int col = 1 + i + j * p.ma;
            lp.cvec[col - 1] = p.cost[i + j * p.ma];
            lp.at(i + 1, col) = lp.at(p.ma + j + 1, col) = 1.0;
        }
    for (int i = 0; i < p.ma + p.mb; ++i) lp.bl[lp.n + i] = lp.bu[lp.n + i] = p.a[i];
    double z = 0.0;
    EXPECT_TRUE(zek_test::glpk_optimum(lp, &z));
    return z;
}

TEST(TransportationReference, RandomBalancedProblemsMatchGlpk) {
    std::mt19937 gen(5);
    for (int trial = 0; trial < 60; ++trial) {
        Transport p;
        p.ma = std::uniform_int_distribution<int>(1, 12)(gen), p.mb = std::uniform_int_distribution<int>(1, 12)(gen);
        const int top = trial % 3 == 0 ? 3 : 100;  // few distinct costs make many ties
        for (int k = 0; k < p.ma * p.mb; ++k) p.cost.push_back(std::uniform_int_distribution<int>(-top / 2, top)(gen));
        std::vector<int> s(p.ma), d(p.mb, 0);
        long total = 0;
        for (int &x : s) total += x = std::uniform_int_distribution<int>(0, 40)(gen);
        for (long t = 0; t < total; ++t) ++d[std::uniform_int_distribution<int>(0, p.mb - 1)(gen)];
        (p.a = s).insert(p.a.end(), d.begin(), d.end());
        const TransportResult r = solve(p, 10000);
        ASSERT_EQ(r.ifail, 0) << trial;
        expect_feasible(p, r);
        EXPECT_EQ(r.z, glpk_transport(p)) << trial;
    }
}
#endif

// ---- shortest path ----

struct Graph {
    int n;
    bool direct;
    std::vector<int> irow, icol;
    std::vector<double> d;
};

struct PathResult {
    int ifail;
    double length;
    std::vector<int> path;
};

PathResult shortest(Graph g, int ns, int ne, int ifail = 1) {
    const int direct = g.direct, nnz = static_cast<int>(g.d.size());
    PathResult r{ifail, 0.0, std::vector<int>(g.n, -1)};
    std::vector<int> iwork(3 * g.n + 2 + nnz);
    std::vector<double> work(2 * g.n);
    H03ADF(&g.n, &ns, &ne, &direct, &nnz, g.d.data(), g.irow.data(), g.icol.data(), &r.length, r.path.data(),
           iwork.data(), work.data(), &r.ifail);
    return r;
}

// The distances between all vertices by Floyd and Warshall's relaxation over an adjacency matrix.
std::vector<std::vector<double>> all_distances(const Graph &g) {
    std::vector<std::vector<double>> w(g.n, std::vector<double>(g.n, HUGE_VAL));
    for (std::size_t k = 0; k < g.d.size(); ++k) {
        w[g.irow[k] - 1][g.icol[k] - 1] = g.d[k];
        if (!g.direct) w[g.icol[k] - 1][g.irow[k] - 1] = g.d[k];
    }
    for (int k = 0; k < g.n; ++k)
        for (int i = 0; i < g.n; ++i)
            for (int j = 0; j < g.n; ++j) w[i][j] = std::min(w[i][j], w[i][k] + w[k][j]);
    return w;
}

TEST(ShortestPath, RandomGraphsMatchAllPairsDistances) {
    std::mt19937 gen(11);
    std::uniform_real_distribution<double> u(0, 1);
    for (int trial = 0; trial < 80; ++trial) {
        const int n = std::uniform_int_distribution<int>(2, 40)(gen);
        const bool direct = trial % 2 == 0;
        const double density = trial % 4 < 2 ? 0.15 : 0.5;
        std::vector<std::array<int, 2>> edges;
        for (int i = 1; i <= n; ++i)
            for (int j = direct ? 1 : i + 1; j <= n; ++j)
                if (i != j && u(gen) <= density) edges.push_back({i, j});
        if (edges.empty()) continue;
        // Presented out of order: the routine sorts them.
        std::shuffle(edges.begin(), edges.end(), gen);
        Graph g{n, direct, {}, {}, {}};
        for (const auto &[i, j] : edges) g.irow.push_back(i), g.icol.push_back(j), g.d.push_back(0.1 + u(gen));
        const double dist = all_distances(g)[0][n - 1];
        const PathResult r = shortest(g, 1, n);
        if (std::isinf(dist)) {
            EXPECT_EQ(r.ifail, 8);
            continue;
        }
        ASSERT_EQ(r.ifail, 0);
        EXPECT_NEAR(r.length, dist, 1e-12 * dist);
        // The path follows edges from NS to NE and its lengths sum to SPLEN.
        double sum = 0;
        int k = 1;
        for (; k < n && r.path[k] != 0; ++k) {
            const int a = r.path[k - 1], b = r.path[k];
            std::size_t e = 0;
            while (e < g.d.size() && !((g.irow[e] == a && g.icol[e] == b) || (!direct && g.irow[e] == b && g.icol[e] == a))) ++e;
            ASSERT_LT(e, g.d.size()) << trial;
            sum += g.d[e];
        }
        EXPECT_TRUE(r.path[0] == 1 && r.path[k - 1] == n);
        EXPECT_NEAR(sum, r.length, 1e-12 * sum);
    }
}

// ---- failure texts and hostile rows ----

struct NetworkFailure {
    const char *label;
    std::function<int()> call;
    int ifail;
    const char *text;
};

const Transport kSmall{2, 2, {1, 2, 3, 4}, {3, 2, 1, 4}};

const NetworkFailure kNetworkFailures[] = {
    {"ma_zero", [] { Transport p = kSmall; p.ma = 0; return solve(p, 100, -13, 2).ifail; }, 1,
     " ** On entry, MA .le. 0: MA =               0.\n"},
    {"unbalanced", [] { Transport p = kSmall; p.a[0] = 4; return solve(p, 100, -13).ifail; }, 1,
     " ** On entry, the sum of the availabilities does not\n    equal the sum of the requirements.\n"},
    {"negative_amount", [] { Transport p = kSmall; p.a = {-1, 6, 1, 4}; return solve(p, 100, -13).ifail; }, 1,
     " ** On entry, an availability or requirement is negative:\n    I =               1, A(I) =              -1.\n"},
    {"huge_costs", [] { Transport p{2, 3, {2000000000, -2000000000, -2000000000, 2000000000, 2000000000, -2000000000},
                                    {1, 1, 1, 0, 1}}; return solve(p, 100, -13).ifail; }, 3,
     " ** The potentials of the basis leave the integer range:\n    the costs are too large.\n"},
    {"nnz_undirected", [] { return shortest({2, false, {1, 1}, {2, 2}, {1, 1}}, 1, 2, -13).ifail; }, 4,
     " ** On entry, NNZ .lt. 1 or NNZ .gt. N*(N-1)/2 when DIRECT = .FALSE.:\n    NNZ =                2, N =                2.\n"},
    {"edge_reversed", [] { return shortest({3, false, {2}, {1}, {1}}, 1, 2, -13).ifail; }, 5,
     " ** On entry, IROW(k) .lt. 1 or IROW(k) .ge. ICOL(k) or ICOL(k) .gt. N\n    for some k when DIRECT = .FALSE.:\n"
     "    k =                1, IROW(k) =                2, ICOL(k) =                1.\n"},
    {"length_negative", [] { return shortest({3, true, {1, 2}, {2, 3}, {1, -2}}, 1, 3, -13).ifail; }, 6,
     " ** On entry, D(k) .le. 0.0 for some k:\n    k =                2, D(k) =  -2.0000E+00.\n"},
    {"repeat", [] { return shortest({3, true, {2, 1, 2}, {3, 2, 3}, {1, 1, 1}}, 1, 3, -13).ifail; }, 7,
     " ** On entry, IROW(k) .eq. IROW(k-1) and ICOL(k) .eq. ICOL(k-1) for some k:\n    IROW(k) =                2, "
     "IROW(k-1) =                2\n    ICOL(k) =                3, ICOL(k-1) =                3.\n"},
    {"unreachable", [] { return shortest({4, true, {1, 3}, {2, 4}, {1, 1}}, 1, 4, -13).ifail; }, 8,
     " ** No connected network exists between vertices NS and NE:\n    NS =                1, NE =                4.\n"},
};

TEST(HostileNetwork, IfailAndText) {
    for (const NetworkFailure &c : kNetworkFailures) {
        zek_test::OutputCapture out;
        EXPECT_EQ(c.call(), c.ifail) << c.label;
        std::string text;
        for (const std::string &line : zek_test::trimmed(out.host())) text += line + "\n";
        EXPECT_EQ(text, c.text) << c.label;
    }
}

} // namespace
