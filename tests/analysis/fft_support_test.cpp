// Factor lists, workspace rules, the kept-table check, the block split and the tiled transposition.
#include <gtest/gtest.h>

#include <vector>

#include "analysis/fft.h"
#include "fft_test_support.h"
#include "zek2/c06.h"

namespace {

std::vector<int> squares_list(int n, int *code) {
    int factors[zek::fft::kFactorListSize];
    zek::fft::factor_squares(n, 19, 8, factors, code);
    std::vector<int> list;
    if (*code == 0)
        for (int i = 0; factors[i] != 0; ++i) list.push_back(factors[i]);
    return list;
}

TEST(FactorSquares, PalindromeOfSquaresAndMergedTwos) {
    struct Case { int n, code; std::vector<int> list; };
    const Case cases[] = {
        {360, 0, {2, 3, 2, 5, 3, 2}},     // squares 2 and 3 mirrored around the rest 2 * 5
        {32, 0, {8, 1, 1, 4, 1}},         // five 2s: one 8 and one 4
        {64, 0, {8, 1, 1, 8, 1, 1}},
        {323, 0, {17, 19}},
        {1 << 20, 0, {8, 1, 1, 8, 1, 1, 8, 1, 1, 8, 1, 1, 8, 1, 1, 8, 1, 1, 4, 1}},
        {23, 1, {}},                      // prime above 19
        {2 * 29, 1, {}},
        {1 << 21, 2, {}},                 // the count reaches 20 before the merging
        {3 * (1 << 20), 2, {}},
    };
    for (const Case &c : cases) {
        int code = -1;
        const std::vector<int> list = squares_list(c.n, &code);
        EXPECT_EQ(code, c.code) << c.n;
        EXPECT_EQ(list, c.list) << c.n;
    }
}

TEST(FactorList, FivesFoursTwosThreesThenTheRest) {
    struct Case { int n; std::vector<int> list; };
    const Case cases[] = {{1, {1}},           {360, {5, 4, 2, 3, 3}}, {1009, {1009}},      {1024, {4, 4, 4, 4, 4}},
                          {49, {7, 7}},       {286, {2, 11, 13}},     {2 * 1009, {2, 1009}}, {625, {5, 5, 5, 5}},
                          {1 << 30, std::vector<int>(15, 4)}};
    for (const Case &c : cases) {
        int factors[zek::fft::kFactorListSize];
        const int count = zek::fft::factor_list(c.n, factors);
        EXPECT_EQ(std::vector<int>(factors, factors + count), c.list) << c.n;
    }
}

TEST(WorkspaceRule, EachCaseOfTheTable) {
    struct Case { std::vector<int> nd; int l, need; };
    const Case cases[] = {
        {{4, 1, 6}, 2, 1},              // ND(L) = 1
        {{9}, 1, 18},                   // one dimension
        {{4, 6}, 1, 28},                // (ND2 + 1) * ND1
        {{4, 6}, 2, 30},                // (ND1 + 1) * ND2
        {{2, 3, 5}, 2, 9},              // (P + 1) * ND(L), P = 2
        {{2, 3, 5}, 1, 32},             // (Q + P) * ND(L), Q = 15
        {{1, 1, 8}, 0, 16},             // all, one dimension above 1
        {{1, 5, 7}, 0, 47},             // all, two: (5 + 1) * 7 + 1 + 5 - 1
        {{2, 3, 5}, 0, 40},             // all, three: (6 + 1) * 5 + 2 + 3
        {{1, 8}, 0, 16},                // NDIM 2, one above 1
        {{4, 6}, 0, 34},                // NDIM 2, two: (6 + 1) * 4 + 6
        {{7}, 0, 14},
        {{1}, 0, 1},
        {{2, 2, 2, 2}, 0, -1},          // more than three dimensions
        {{2, 2}, 3, -1},                // L out of range
        {{2, 0}, 1, -1},                // ND out of range
    };
    for (const Case &c : cases) {
        const int ndim = static_cast<int>(c.nd.size());
        int need = 0;
        C06_WORK_NEED_BYREF(&ndim, c.nd.data(), &c.l, &need);
        EXPECT_EQ(need, c.need) << "L = " << c.l << " first ND = " << c.nd[0];
        if (c.l == 0) {
            C06_WORK_NEED_ALL_BYREF(&ndim, c.nd.data(), &need);
            EXPECT_EQ(need, c.need);
        }
    }
    const int rows[][4] = {{1, 5, 5, 1}, {8, 1, 4, 24}, {8, 4, 1, 24}, {8, 3, 3, 46}};
    for (const auto &r : rows) {
        int need = 0;
        C06_REAL_WORK_NEED_BYREF(&r[0], &r[1], &r[2], &need);
        EXPECT_EQ(need, r[3]);
    }
}

// The kept table's markers decide: never built, initialised, still rounding to N, damaged; then the
// argument checks.  Rows run in order on one table.
TEST(TableCheck, MarkersDecide) {
    const int n = 12;
    std::vector<double> trig(2 * n, 0.0);
    int factors[zek::fft::kFactorListSize], nf = 0, code = -1;
    struct Row { int m, n; const char *init; int length; double last, first; int code; };
    const Row rows[] = {{3, n, "S", 1, 0, 0, 5},          {3, n, "i", 1, 0, 0, 0},
                        {3, n, "Subsequent", 10, n + 0.4, n, 0}, {3, n, "r", 1, n + 0.4, n - 0.6, 5},
                        {0, n, "I", 1, 0, 0, 1},          {3, 0, "I", 1, 0, 0, 2}, {3, n, "X", 1, 0, 0, 3}};
    for (const Row &r : rows) {
        if (r.last != 0) trig[2 * n - 1] = r.last, trig[n - 1] = r.first;
        C06_TABLE_CHECK(r.m, r.n, r.init, trig.data(), factors, &nf, &code, r.length);
        EXPECT_EQ(code, r.code) << r.init;
        if (*r.init == 'i') {
            EXPECT_EQ(trig[n - 1], n);
            EXPECT_EQ(trig[2 * n - 1], n);
            EXPECT_DOUBLE_EQ(trig[0], std::cos(2 * 3.141592653589793 / n));
        }
    }
}

// Workers, rank, sequences, and the block: the first workers take the remainder; the team of the
// calling thread takes everything; a worker beyond the sequences gets an empty block.
TEST(BlockSplit, FirstWorkersTakeTheRemainder) {
    struct Row { int workers, rank, count, first, last; };
    const Row rows[] = {{3, 0, 10, 1, 4}, {3, 1, 10, 5, 7}, {3, 2, 10, 8, 10},
                        {zek::fft::team_size(), zek::fft::team_rank(), 7, 1, 7}, {4, 3, 2, 1, 0}};
    for (const Row &r : rows) {
        int first = 0, last = 0;
        C06_BLOCK_SPLIT(r.workers, r.rank, r.count, &first, &last);
        if (r.last < r.first) {
            EXPECT_LT(last, first) << r.rank; // any empty block
        } else {
            EXPECT_EQ(first, r.first) << r.rank;
            EXPECT_EQ(last, r.last) << r.rank;
        }
    }
}

TEST(Transpose, TilesCoverRaggedEdges) {
    const int m = 130, n = 67;
    const std::vector<double> a = fft_test::random_reals(2 * m * n, 3u);
    std::vector<double> b(a.size()), c(a.size());
    C06_TRANSPOSE(1, m, n, a.data(), b.data());
    C06_TRANSPOSE(2, m, n, a.data(), c.data());
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j) {
            ASSERT_EQ(b[j + i * n], a[i + j * m]);
            ASSERT_EQ(c[2 * (j + i * n)], a[2 * (i + j * m)]);
            ASSERT_EQ(c[2 * (j + i * n) + 1], a[2 * (i + j * m) + 1]);
        }
}

} // namespace
