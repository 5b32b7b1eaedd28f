// Chapter M01: sorting, ranking, rearranging and inverting, through both layers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/ifail.h"
#include "frame/machine.h"
#include "sorting/m01_engines.h"
#include "sorting/sorting.h"
#include "zek2/m01.h"

namespace {

// Inputs that break naive quicksorts and list merges: random, sorted, reversed, all equal, organ pipe,
// few distinct, sawtooth, and the classic input against median-of-three pivots.
const int kShapes = 8;

std::vector<double> make_input(int shape, int n) {
    std::vector<double> v(static_cast<std::size_t>(n));
    std::mt19937 gen(7);
    for (int i = 0; i < n; ++i) {
        const int k = n / 2, j = i + 1;
        const double median_killer = j <= k ? ((j % 2 == 1) ? j : k + j - 1) : 2 * (j - k);
        const double xs[kShapes] = {std::uniform_real_distribution<double>(-1e3, 1e3)(gen), double(i), double(n - i),
                                    42.0, double(std::min(i, n - 1 - i)), double(gen() % 4), double(i % 37),
                                    median_killer};
        v[static_cast<std::size_t>(i)] = xs[shape];
    }
    return v;
}

// Ranks that a stable sort assigns (zero-based).
template <class T>
std::vector<int> stable_ranks(const std::vector<T> &v, bool descending) {
    std::vector<int> order(v.size()), rank(v.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return descending ? v[static_cast<std::size_t>(b)] < v[static_cast<std::size_t>(a)]
                          : v[static_cast<std::size_t>(a)] < v[static_cast<std::size_t>(b)];
    });
    for (std::size_t r = 0; r < order.size(); ++r) rank[static_cast<std::size_t>(order[r])] = static_cast<int>(r);
    return rank;
}

// The host text of a call, records trimmed and joined by newlines.
std::string host_text(zek_test::OutputCapture &capture) {
    std::string out;
    for (std::string piece : capture.host()) out += piece.erase(piece.find_last_not_of(" \n") + 1) + "\n";
    return out;
}

TEST(M01Sort, BothLayersSortAndRankEveryShapeAndLength) {
    for (int shape = 0; shape < kShapes; ++shape) {
        for (int n : {1, 2, 11, 12, 15, 16, 17, 50, 100, 1000, 4099, 5003}) {
            const std::vector<double> input = make_input(shape, n);
            std::vector<double> expected = input;
            std::sort(expected.begin(), expected.end());
            for (bool descending : {false, true}) {
                // M01CAF on the section A(3:N+2) of a larger array (the rest stays untouched); m01cac.
                std::vector<double> a(static_cast<std::size_t>(n) + 4, -7.0), b = input;
                std::copy(input.begin(), input.end(), a.begin() + 2);
                int ifail = 1;
                zek::M01CAF(a.data(), 3, n + 2, descending ? "d" : "A", &ifail, 1);
                ZekFail fail{};
                m01cac(b.data(), n, descending ? Zek_Descending : Zek_Ascending, &fail);
                ASSERT_TRUE(ifail == 0 && fail.code == 0);
                EXPECT_TRUE(a.front() == -7.0 && a.back() == -7.0);
                a = std::vector<double>(a.begin() + 2, a.end() - 2);
                if (descending) std::reverse(a.begin(), a.end()), std::reverse(b.begin(), b.end());
                ASSERT_TRUE(a == expected && b == expected) << shape << " n=" << n << " " << descending;
                // M01DAF ranks RV(2:N+1) stably; IRANK(1) stays as it was.
                std::vector<int> irank(static_cast<std::size_t>(n) + 1, -1), ranks = stable_ranks(input, descending);
                std::vector<double> rv = input;
                rv.insert(rv.begin(), 0.0);
                const int m1 = 2, m2 = n + 1;
                M01DAF(rv.data(), &m1, &m2, descending ? "D" : "a", irank.data(), &(ifail = 1), 1);
                ASSERT_EQ(ifail, 0);
                for (int &r : ranks) r += m1;
                ranks.insert(ranks.begin(), -1);
                ASSERT_EQ(irank, ranks) << shape << " n=" << n;
            }
        }
    }
}

TEST(M01Sort, ComparisonCountsStayNearNLogNAndThePivotWordVariesOnlyTheWork) {
    const int n = 1 << 16;
    const double nlogn = n * std::log2(static_cast<double>(n));
    for (int shape = 0; shape < kShapes; ++shape) {
        std::vector<double> a = make_input(shape, n);
        const std::vector<double> v = a;
        long sorts = 0, merges = 0;
        zek::m01::WichmannHill random;
        zek::m01::quicksort(a.data(), n, [&](double x, double y) { return ++sorts, x < y; }, random);
        EXPECT_TRUE(std::is_sorted(a.begin(), a.end()));
        EXPECT_LT(sorts, 3.0 * nlogn) << shape;
        std::vector<int> rank(static_cast<std::size_t>(n));
        zek::m01::merge_rank(
            n, [&](int e) -> int & { return rank[static_cast<std::size_t>(e) - 1]; },
            [&](int e, int f) { return ++merges, v[static_cast<std::size_t>(e) - 1] < v[static_cast<std::size_t>(f) - 1]; },
            false, 0);
        EXPECT_EQ(rank, stable_ranks(v, false));
        EXPECT_LT(merges, 2.0 * nlogn) << shape;
    }
    // Two halves of very different size force the unbalanced path and its draws from the running word.
    const std::vector<double> input = make_input(7, 20000);
    std::uint32_t word = 123456789u;
    long counts[2] = {0, 0};
    for (long &comparisons : counts) {
        std::vector<double> a = input;
        zek::m01::Congruential random(word);
        zek::m01::quicksort(a.data(), 20000, [&](double x, double y) { return ++comparisons, x < y; }, random);
        EXPECT_TRUE(std::is_sorted(a.begin(), a.end()));
    }
    EXPECT_TRUE(word != 123456789u && counts[0] != counts[1]);
}

struct Record {
    int key, payload;
};

int compare_records(const void *a, const void *b) {
    const int x = static_cast<const Record *>(a)->key, y = static_cast<const Record *>(b)->key;
    return (x > y) - (x < y);
}

TEST(M01Rank, AnyTypeWithStrideAndThroughRankRearrangeInvert) {
    std::mt19937 gen(3);
    std::vector<Record> records(777);
    std::vector<int> keys;
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i] = {static_cast<int>(gen() % 50), static_cast<int>(i)};
        keys.push_back(records[i].key);
    }
    const int n = static_cast<int>(records.size()), size = sizeof(Record);
    for (int order : {Zek_Ascending, Zek_Descending}) {
        std::vector<int> ranks(records.size()), backwards(records.size());
        ZekFail fail{};
        m01dsc(records.data(), n, size, compare_records, order, ranks.data(), &fail);
        ASSERT_EQ(fail.code, 0);
        EXPECT_EQ(ranks, stable_ranks(keys, order == Zek_Descending));
        // Walking the same vector backwards: element i is records[n-1-i].
        m01dsc(&records.back(), n, -size, compare_records, order, backwards.data(), &fail);
        EXPECT_EQ(backwards, stable_ranks(std::vector<int>(keys.rbegin(), keys.rend()), order == Zek_Descending));
        // The ranks rearrange the records into stable order; inverted twice they come back.
        std::vector<Record> sorted = records;
        const std::vector<int> kept = ranks;
        m01esc(sorted.data(), n, size, size, ranks.data(), &fail);
        ASSERT_EQ(fail.code, 0);
        EXPECT_EQ(ranks, kept);
        for (std::size_t i = 0; i < records.size(); ++i) EXPECT_EQ(sorted[ranks[i]].payload, records[i].payload);
        m01zac(ranks.data(), n, &fail);
        ASSERT_EQ(fail.code, 0);
        for (std::size_t r = 0; r < ranks.size(); ++r) EXPECT_EQ(kept[ranks[r]], static_cast<int>(r));
        m01zac(ranks.data(), n, &fail);
        EXPECT_EQ(ranks, kept);
    }
}

TEST(M01Rearrange, EveryElementTypeMovesToItsRankAndRanksComeBack) {
    // IRANK(4:1003) a shuffled permutation of 4..1003; the three elements before M1 stay put.
    const int m1 = 4, m2 = 1003;
    std::vector<int> irank(m2, 0), iv(m2);
    std::iota(irank.begin() + 3, irank.end(), m1);
    std::shuffle(irank.begin() + 3, irank.end(), std::mt19937(11));
    const std::vector<int> irank_in = irank;
    std::vector<double> rv(m2);
    std::vector<char> ch(m2 * 3 + 1);  // room for the last terminator
    for (int i = 0; i < m2; ++i) {
        rv[i] = i * 0.5;
        iv[i] = -i;
        std::snprintf(&ch[i * 3], 4, "%03d", i % 1000);
    }
    const std::vector<double> rv_in = rv;
    const std::vector<char> ch_in = ch;
    int ifail[3] = {1, 1, 1};
    M01EAF(rv.data(), &m1, &m2, irank.data(), &ifail[0]);
    zek::M01EBF(iv.data(), m1, m2, irank.data(), &ifail[1]);
    M01EDF(ch.data(), &m1, &m2, irank.data(), &ifail[2], 3);
    ASSERT_TRUE(ifail[0] == 0 && ifail[1] == 0 && ifail[2] == 0);
    EXPECT_EQ(irank, irank_in);
    EXPECT_TRUE(std::equal(rv.begin(), rv.begin() + m1 - 1, rv_in.begin()));
    for (int i = m1 - 1; i < m2; ++i) {
        const int to = irank[i] - 1;
        EXPECT_TRUE(rv[to] == rv_in[i] && iv[to] == -i && std::memcmp(&ch[to * 3], &ch_in[i * 3], 3) == 0) << i;
    }
    // Inversion: IPERM(IPERM_in(I)) = I, and a second inversion restores it; M01ZBF accepts it unchanged.
    std::vector<int> iperm = irank_in;
    M01ZAF(iperm.data(), &m1, &m2, &ifail[0]);
    ASSERT_EQ(ifail[0], 0);
    for (int i = m1; i <= m2; ++i) EXPECT_EQ(iperm[irank_in[i - 1] - 1], i);
    M01ZAF(iperm.data(), &m1, &m2, &ifail[0]);
    zek::M01ZBF(iperm.data(), m1, m2, &ifail[1]);
    EXPECT_TRUE(ifail[1] == 0 && iperm == irank_in);
}

// One failure exit of an IFAIL-layer routine: the worker's ERRBUF line, then IFAIL -1 prints the records.
struct IfailCase {
    const char *name;
    int m1, m2;
    std::vector<int> irank;  // IRANK or IPERM over 1..m2 (may be empty)
    char order;
    int ifail;
    std::string errbuf, records;
};

TEST(M01Failures, IfailExitsReportTextAndErrbufAndLeaveRanksAlone) {
    const std::string head = " ** IRANK(M1:M2) does not contain a permutation of the integers M1 to M2.\n";
    const std::string phead = " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n";
    const IfailCase cases[] = {
        {"M01DAF", 1, 0, {}, 'A', 1, "M01DAF     1 99999     1                0",
         " ** On entry, M2 .lt. 1: M2 =               0.\n"},
        {"M01DAF", 0, 3, {}, 'A', 1, "M01DAF     1 99998     1                0",
         " ** On entry, M1 .lt. 1: M1 =               0.\n"},
        {"M01DAF", 3, 2, {}, 'A', 1, "M01DAF     1 99997     2                3                2",
         " ** On entry, M1 .gt. M2:\n    M1 =               3, M2 =               2.\n"},
        {"M01DAF", 1, 2, {}, 'x', 2, "M01DAF     2 99996     1 x", " ** On entry, ORDER has an illegal value: ORDER = 'x'.\n"},
        {"M01EAF", 1, 3, {1, 4, 2}, 'A', 2, "M01EAF     2 99996     2                2                4",
         head + "    IRANK(I) contains an out-of-range value:\n    I =               2, IRANK(I) =               4.\n"},
        {"M01EAF", 2, 4, {9, 3, 2, 3}, 'A', 3, "M01EAF     3 99995     1                3",
         head + "    IRANK contains a repeated value:               3.\n"},
        {"M01EDF", 1, 2, {0, 1}, 'A', 2, "M01EDF     2 99996     2                1                0",
         head + "    IRANK(I) contains an out-of-range value:\n    I =               1, IRANK(I) =               0.\n"},
        {"M01ZAF", 1, 3, {3, 1, 3}, 'A', 3, "M01ZAF     3 99995     1                3",
         phead + "    IPERM contains a repeated value:               3.\n"},
        {"M01ZAF", 1, 2, {-1, 1}, 'A', 2, "M01ZAF     2 99996     2                1               -1",
         phead + "    IPERM(I) contains an out-of-range value:\n    I =               1, IPERM(I) =              -1.\n"},
    };
    for (const IfailCase &c : cases) {
        std::vector<int> irank = c.irank;
        irank.resize(8, 5);
        const std::vector<int> irank_in = irank;
        auto call = [&](int ifail_in) {
            char errbuf[200], ch[16] = {};
            std::vector<double> rv(8, 1.0);
            const std::string name = c.name;
            int ifail = ifail_in;
            if (name == "M01DAF") zek::m01daf_worker(rv.data(), c.m1, c.m2, &c.order, irank.data(), errbuf, &ifail, 1, 200);
            if (name == "M01EAF") zek::m01eaf_worker(rv.data(), c.m1, c.m2, irank.data(), errbuf, &ifail, 200);
            if (name == "M01EDF") zek::m01edf_worker(ch, c.m1, c.m2, irank.data(), errbuf, &ifail, 2, 200);
            if (name == "M01ZAF") zek::m01zaf_worker(irank.data(), c.m1, c.m2, errbuf, &ifail, 200);
            EXPECT_EQ(ifail, c.ifail) << c.name;
            return std::string(errbuf);
        };
        zek_test::OutputCapture capture;
        EXPECT_EQ(call(1), c.errbuf) << c.name;  // soft and silent
        if (std::string(c.name) != "M01DAF") { EXPECT_EQ(irank, irank_in) << c.name; }
        call(-1);
        EXPECT_EQ(host_text(capture), c.records + " ** ABNORMAL EXIT from ZEK Library routine " + c.name +
                                          ": IFAIL =     " + std::to_string(c.ifail) +
                                          "\n ** ZEK soft failure - control returned\n")
            << c.name;
    }
}

TEST(M01Failures, InternalMembersAndFronts) {
    // The members without an export report under their own names and leave their arguments alone.
    double rv[4] = {3, 1, 2, 4};
    int iv[3] = {5, 6, 7}, bad_rank[3] = {1, 2, 2}, iperm[3] = {2, 2, 1}, ifail = -1;
    {
        zek_test::OutputCapture sort_capture;
        zek::M01CAF(rv, 1, 3, "q", &ifail, 1);
        EXPECT_EQ(host_text(sort_capture), " ** On entry, ORDER has an illegal value: ORDER = 'q'.\n"
                                           " ** ABNORMAL EXIT from ZEK Library routine M01CAF: IFAIL =     2\n"
                                           " ** ZEK soft failure - control returned\n");
    }
    EXPECT_TRUE(ifail == 2 && rv[0] == 3.0);
    zek::M01EBF(iv, 1, 3, bad_rank, &(ifail = 1));
    EXPECT_TRUE(ifail == 3 && iv[0] == 5 && bad_rank[2] == 2);
    {
        zek_test::OutputCapture capture;
        zek::M01ZBF(iperm, 1, 3, &(ifail = -1));
        EXPECT_TRUE(ifail == 3 && iperm[0] == 2 && iperm[2] == 1);
        EXPECT_NE(host_text(capture).find("routine M01ZBF: IFAIL =     3"), std::string::npos);
    }
    // A bad ORDER leaves IRANK(M1:M2) holding the undefined marker; the fronts print no mismatch.
    const int m1 = 2, m2 = 4, one = 1, two = 2, u = zek::kUndefinedInteger;
    int irank[4] = {7, 7, 7, 7}, bad[2] = {2, 2};
    zek_test::OutputCapture capture;
    M01DAF(rv, &m1, &m2, "Z", irank, &(ifail = 1), 1);
    EXPECT_EQ(ifail, 2);
    EXPECT_EQ(std::vector<int>(irank, irank + 4), (std::vector<int>{7, u, u, u}));
    M01ZAF(bad, &one, &two, &ifail);
    EXPECT_EQ(ifail, 3);
    EXPECT_TRUE(capture.host().empty());
}

TEST(M01Failures, CStyleCodesAndTexts) {
    double v[4] = {4, 3, 2, 1};
    int ranks[4] = {0, 1, 2, 3}, bad[4] = {0, 4, 1, 2};
    const int big = 0x20000000;
    const std::string rank_text = "ZE_BAD_RANK:\n  On entry, rank does not contain a valid permutation.";
    const struct {
        std::function<void(ZekFail *)> call;
        int code;
        std::string message;
    } cases[] = {
        {[&](ZekFail *f) { m01cac(v, 0, Zek_Ascending, f); }, 11, "ZE_INT_ARG_LT:\n  On entry, n must not be less than 1: n = 0."},
        {[&](ZekFail *f) { m01cac(v, 0x10000000, Zek_Ascending, f); }, 13,
         "ZE_INT_ARG_GT:\n  On entry, n must not be greater than 268435455: n = 268435456."},
        {[&](ZekFail *f) { m01cac(v, 4, 3, f); }, 70, "ZE_BAD_PARAM:\n  On entry, parameter order had an illegal value."},
        {[&](ZekFail *f) { m01dsc(v, 4, 0, compare_records, Zek_Ascending, ranks, f); }, 10,
         "ZE_INT_ARG_EQ:\n  On entry, stride must not be equal to 0: stride = 0."},
        {[&](ZekFail *f) { m01dsc(v, 4, big, compare_records, Zek_Ascending, ranks, f); }, 13,
         "ZE_INT_ARG_GT:\n  On entry, abs(stride) must not be greater than p (p = 536870911): abs(stride) = 536870912."},
        {[&](ZekFail *f) { m01esc(v, 4, 0, 8, ranks, f); }, 11, "ZE_INT_ARG_LT:\n  On entry, size must not be less than 1: size = 0."},
        {[&](ZekFail *f) { m01esc(v, 4, 8, -4, ranks, f); }, 17,
         "ZE_2_INT_ARG_LT:\n  On entry, abs(stride) = 4 while size = 8. These parameters must satisfy abs(stride) >= size."},
        {[&](ZekFail *f) { m01esc(v, 4, 8, big, ranks, f); }, 13,
         "ZE_INT_ARG_GT:\n  On entry, abs(stride) must not be greater than 536870911: abs(stride) = 536870912."},
        {[&](ZekFail *f) { m01esc(v, 4, 8, 8, bad, f); }, 701, rank_text},
        {[&](ZekFail *f) { m01zac(bad, 4, f); }, 701, rank_text},
        {[&](ZekFail *f) { m01dsc(v, 4, 8, nullptr, Zek_Ascending, ranks, f); }, 70,
         "ZE_BAD_PARAM:\n  On entry, parameter compare had an illegal value."},
        {[&](ZekFail *f) { m01dsc(v, 4, 8, compare_records, 0, ranks, f); }, 70,
         "ZE_BAD_PARAM:\n  On entry, parameter order had an illegal value."},
        {[&](ZekFail *f) { m01dsc(v, 4, 8, compare_records, Zek_Ascending, nullptr, f); }, 82,
         "ZE_NULL_ARRAY:\n  Array ranks has null address."},
        {[&](ZekFail *f) { m01esc(v, 4, big, big, ranks, f); }, 13,
         "ZE_INT_ARG_GT:\n  On entry, size must not be greater than 536870911: size = 536870912."},
        {[&](ZekFail *f) { m01zac(nullptr, 4, f); }, 82, "ZE_NULL_ARRAY:\n  Array ranks has null address."},
        // n = 1 returns before the order is looked at; n = 0 rearranges nothing.
        {[&](ZekFail *f) { m01cac(v, 1, 3, f); }, 0, ""},
        {[&](ZekFail *f) { m01esc(nullptr, 0, 8, 8, nullptr, f); }, 0, ""},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        ZekFail fail{};
        cases[i].call(&fail);
        EXPECT_EQ(fail.code, cases[i].code) << "row " << i;
        if (cases[i].code != 0) { EXPECT_EQ(std::string(fail.message), cases[i].message) << "row " << i; }
    }
    EXPECT_TRUE(v[0] == 4.0 && bad[0] == 0 && bad[1] == 4);
    // A repeat is found while inverting.
    int repeat[3] = {1, 1, 0};
    ZekFail fail{};
    m01zac(repeat, 3, &fail);
    EXPECT_EQ(fail.code, 701);
    for (int r : repeat) EXPECT_LT(r, 3);
}

} // namespace
