// Chapter M01: sorting, ranking, rearranging and inverting, through both layers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
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

// Inputs that break naive quicksorts and list merges.
enum class Shape { Random, Sorted, Reversed, AllEqual, OrganPipe, FewDistinct, Sawtooth, MedianKiller };
const Shape kShapes[] = {Shape::Random,    Shape::Sorted,      Shape::Reversed, Shape::AllEqual,
                         Shape::OrganPipe, Shape::FewDistinct, Shape::Sawtooth, Shape::MedianKiller};

std::vector<double> make_input(Shape shape, int n, unsigned seed = 7) {
    std::vector<double> v(static_cast<std::size_t>(n));
    std::mt19937 gen(seed);
    for (int i = 0; i < n; ++i) {
        double x = 0.0;
        switch (shape) {
        case Shape::Random: x = std::uniform_real_distribution<double>(-1e3, 1e3)(gen); break;
        case Shape::Sorted: x = i; break;
        case Shape::Reversed: x = n - i; break;
        case Shape::AllEqual: x = 42.0; break;
        case Shape::OrganPipe: x = std::min(i, n - 1 - i); break;
        case Shape::FewDistinct: x = static_cast<double>(gen() % 4); break;
        case Shape::Sawtooth: x = i % 37; break;
        case Shape::MedianKiller: {
            // The classic input against median-of-three pivots (n even, k = n/2, one-based i).
            const int k = n / 2, j = i + 1;
            if (j <= k) x = (j % 2 == 1) ? j : k + j - 1;
            else x = 2 * (j - k);
            break;
        }
        }
        v[static_cast<std::size_t>(i)] = x;
    }
    return v;
}

// Ranks that a stable sort assigns (zero-based).
template <class T>
std::vector<int> stable_ranks(const std::vector<T> &v, bool descending) {
    std::vector<int> order(v.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return descending ? v[static_cast<std::size_t>(b)] < v[static_cast<std::size_t>(a)]
                          : v[static_cast<std::size_t>(a)] < v[static_cast<std::size_t>(b)];
    });
    std::vector<int> rank(v.size());
    for (std::size_t r = 0; r < order.size(); ++r) rank[static_cast<std::size_t>(order[r])] = static_cast<int>(r);
    return rank;
}

std::vector<int> random_permutation(int n, int first, unsigned seed) {
    std::vector<int> p(static_cast<std::size_t>(n));
    std::iota(p.begin(), p.end(), first);
    std::shuffle(p.begin(), p.end(), std::mt19937(seed));
    return p;
}

std::string trimmed(std::string s) {
    while (!s.empty() && (s.back() == ' ' || s.back() == '\n')) s.pop_back();
    return s;
}

// The host text of a call, records trimmed and joined by newlines.
std::string host_text(zek_test::OutputCapture &capture) {
    std::string out;
    for (const std::string &piece : capture.host()) out += trimmed(piece) + "\n";
    return out;
}

TEST(M01Sort, BothLayersSortEveryShapeAndLength) {
    for (Shape shape : kShapes) {
        for (int n : {1, 2, 15, 16, 17, 100, 1000, 4099}) {
            const std::vector<double> input = make_input(shape, n);
            std::vector<double> expected = input;
            std::sort(expected.begin(), expected.end());

            // M01CAF on a section inside a larger array, both orders; the rest stays untouched.
            for (char order : {'A', 'd'}) {
                std::vector<double> a(static_cast<std::size_t>(n) + 4, -7.0);
                std::copy(input.begin(), input.end(), a.begin() + 2);
                int ifail = 1;
                zek::M01CAF(a.data(), 3, n + 2, &order, &ifail, 1);
                ASSERT_EQ(ifail, 0);
                std::vector<double> got(a.begin() + 2, a.begin() + 2 + n);
                if (order == 'd') std::reverse(got.begin(), got.end());
                ASSERT_EQ(got, expected) << static_cast<int>(shape) << " n=" << n << " " << order;
                EXPECT_EQ(a[0], -7.0);
                EXPECT_EQ(a[static_cast<std::size_t>(n) + 3], -7.0);
            }
            for (int order : {Zek_Ascending, Zek_Descending}) {
                std::vector<double> a = input;
                ZekFail fail{};
                m01cac(a.data(), n, order, &fail);
                ASSERT_EQ(fail.code, 0);
                if (order == Zek_Descending) std::reverse(a.begin(), a.end());
                ASSERT_EQ(a, expected) << static_cast<int>(shape) << " n=" << n;
            }
        }
    }
}

TEST(M01Sort, ComparisonsStayNearNLogNOnAdversarialInputs) {
    const int n = 1 << 16;
    const double bound = 3.0 * n * std::log2(static_cast<double>(n));
    for (Shape shape : kShapes) {
        std::vector<double> a = make_input(shape, n);
        long comparisons = 0;
        auto less = [&](double x, double y) {
            ++comparisons;
            return x < y;
        };
        zek::m01::WichmannHill random;
        zek::m01::quicksort(a.data(), n, less, random);
        EXPECT_TRUE(std::is_sorted(a.begin(), a.end()));
        EXPECT_LT(comparisons, bound) << static_cast<int>(shape);
    }
}

TEST(M01Sort, RunningPivotWordVariesTheWorkNotTheResult) {
    // Two halves of very different size force the unbalanced path and its random draws.
    std::vector<double> input = make_input(Shape::MedianKiller, 20000);
    std::uint32_t word = 123456789u;
    std::vector<long> counts;
    for (int call = 0; call < 2; ++call) {
        std::vector<double> a = input;
        long comparisons = 0;
        zek::m01::Congruential random(word);
        zek::m01::quicksort(a.data(), static_cast<std::ptrdiff_t>(a.size()),
                            [&](double x, double y) { return ++comparisons, x < y; }, random);
        EXPECT_TRUE(std::is_sorted(a.begin(), a.end()));
        counts.push_back(comparisons);
    }
    EXPECT_NE(word, 123456789u);
    EXPECT_NE(counts[0], counts[1]);
}

TEST(M01Sort, NaNsNeverLeaveTheArray) {
    std::vector<double> a = make_input(Shape::Random, 3000);
    for (std::size_t i = 0; i < a.size(); i += 7) a[i] = std::nan("");
    ZekFail fail{};
    m01cac(a.data(), static_cast<int>(a.size()), Zek_Ascending, &fail);
    EXPECT_EQ(fail.code, 0);
    EXPECT_EQ(std::count_if(a.begin(), a.end(), [](double x) { return std::isnan(x); }), 429);
}

TEST(M01Rank, RanksAreStableInBothOrders) {
    for (Shape shape : kShapes) {
        for (int n : {1, 2, 11, 12, 50, 1000, 5003}) {
            const std::vector<double> input = make_input(shape, n);
            for (bool descending : {false, true}) {
                std::vector<int> irank(static_cast<std::size_t>(n) + 1, -1);
                const char order = descending ? 'D' : 'a';
                const int m1 = 2, m2 = n + 1;
                std::vector<double> rv(1, 0.0);
                rv.insert(rv.end(), input.begin(), input.end());
                int ifail = 1;
                M01DAF(rv.data(), &m1, &m2, &order, irank.data(), &ifail, 1);
                ASSERT_EQ(ifail, 0);
                EXPECT_EQ(irank[0], -1);
                const std::vector<int> expected = stable_ranks(input, descending);
                for (int i = 0; i < n; ++i)
                    ASSERT_EQ(irank[static_cast<std::size_t>(i) + 1], expected[static_cast<std::size_t>(i)] + m1)
                        << static_cast<int>(shape) << " n=" << n << " i=" << i;
            }
        }
    }
}

TEST(M01Rank, MergeComparisonsStayNearNLogN) {
    const int n = 1 << 16;
    for (Shape shape : kShapes) {
        const std::vector<double> v = make_input(shape, n);
        std::vector<int> rank(static_cast<std::size_t>(n));
        long comparisons = 0;
        zek::m01::merge_rank(
            n, [&](int e) -> int & { return rank[static_cast<std::size_t>(e) - 1]; },
            [&](int e, int f) { return ++comparisons, v[static_cast<std::size_t>(e) - 1] < v[static_cast<std::size_t>(f) - 1]; },
            false, 0);
        EXPECT_EQ(rank, stable_ranks(v, false));
        EXPECT_LT(comparisons, 2.0 * n * std::log2(static_cast<double>(n))) << static_cast<int>(shape);
    }
}

struct Record {
    int key;
    int payload;
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
    for (int order : {Zek_Ascending, Zek_Descending}) {
        std::vector<int> ranks(records.size());
        ZekFail fail{};
        m01dsc(records.data(), static_cast<int>(records.size()), sizeof(Record), compare_records, order, ranks.data(),
               &fail);
        ASSERT_EQ(fail.code, 0);
        EXPECT_EQ(ranks, stable_ranks(keys, order == Zek_Descending));

        // Walking the same vector backwards: element i is records[n-1-i].
        std::vector<int> backwards(records.size());
        m01dsc(&records.back(), static_cast<int>(records.size()), -static_cast<int>(sizeof(Record)), compare_records,
               order, backwards.data(), &fail);
        std::vector<int> reversed_keys(keys.rbegin(), keys.rend());
        EXPECT_EQ(backwards, stable_ranks(reversed_keys, order == Zek_Descending));

        // The ranks rearrange the records into stable order; inverted twice they come back.
        std::vector<Record> sorted = records;
        const std::vector<int> kept = ranks;
        m01esc(sorted.data(), static_cast<int>(sorted.size()), sizeof(Record), sizeof(Record), ranks.data(), &fail);
        ASSERT_EQ(fail.code, 0);
        EXPECT_EQ(ranks, kept);
        for (std::size_t i = 0; i < records.size(); ++i)
            EXPECT_EQ(sorted[static_cast<std::size_t>(ranks[i])].payload, records[i].payload);
        m01zac(ranks.data(), static_cast<int>(ranks.size()), &fail);
        ASSERT_EQ(fail.code, 0);
        for (std::size_t r = 0; r < ranks.size(); ++r) EXPECT_EQ(kept[static_cast<std::size_t>(ranks[r])], static_cast<int>(r));
        m01zac(ranks.data(), static_cast<int>(ranks.size()), &fail);
        EXPECT_EQ(ranks, kept);
    }
}

TEST(M01Rearrange, EveryElementTypeMovesToItsRankAndRanksComeBack) {
    const int n = 1000, m1 = 4, m2 = m1 + n - 1;
    const std::vector<int> perm = random_permutation(n, m1, 11);
    std::vector<int> irank(3, 0);
    irank.insert(irank.end(), perm.begin(), perm.end());
    const std::vector<int> irank_in = irank;

    std::vector<double> rv(static_cast<std::size_t>(m2));
    std::vector<int> iv(static_cast<std::size_t>(m2));
    std::vector<char> ch(static_cast<std::size_t>(m2) * 3 + 1); // room for the last terminator
    for (int i = 0; i < m2; ++i) {
        rv[static_cast<std::size_t>(i)] = i * 0.5;
        iv[static_cast<std::size_t>(i)] = -i;
        std::snprintf(&ch[static_cast<std::size_t>(i) * 3], 4, "%03d", i % 1000);
    }
    const std::vector<double> rv_in = rv;
    const std::vector<char> ch_in = ch;

    int ifail = 1;
    M01EAF(rv.data(), &m1, &m2, irank.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    EXPECT_EQ(irank, irank_in);
    zek::M01EBF(iv.data(), m1, m2, irank.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    M01EDF(ch.data(), &m1, &m2, irank.data(), &ifail, 3);
    ASSERT_EQ(ifail, 0);
    EXPECT_EQ(irank, irank_in);
    for (int i = 0; i < m1 - 1; ++i) EXPECT_EQ(rv[static_cast<std::size_t>(i)], rv_in[static_cast<std::size_t>(i)]);
    for (int i = m1 - 1; i < m2; ++i) {
        const std::size_t to = static_cast<std::size_t>(irank[static_cast<std::size_t>(i)]) - 1;
        EXPECT_EQ(rv[to], rv_in[static_cast<std::size_t>(i)]);
        EXPECT_EQ(iv[to], -i);
        EXPECT_EQ(std::memcmp(&ch[to * 3], &ch_in[static_cast<std::size_t>(i) * 3], 3), 0);
    }

    // Inversion: IPERM(IPERM_in(I)) = I, and a second inversion restores it; M01ZBF accepts it unchanged.
    std::vector<int> iperm = irank_in;
    M01ZAF(iperm.data(), &m1, &m2, &ifail);
    ASSERT_EQ(ifail, 0);
    for (int i = m1; i <= m2; ++i)
        EXPECT_EQ(iperm[static_cast<std::size_t>(irank_in[static_cast<std::size_t>(i) - 1]) - 1], i);
    M01ZAF(iperm.data(), &m1, &m2, &ifail);
    EXPECT_EQ(iperm, irank_in);
    zek::M01ZBF(iperm.data(), m1, m2, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(iperm, irank_in);
}

// One failure exit of an IFAIL-layer routine: IFAIL -1 prints the records and returns.
struct IfailCase {
    const char *name;
    int m1, m2;
    std::vector<int> irank; // IRANK or IPERM over 1..m2 (may be empty)
    char order;
    int ifail;
    std::string errbuf; // the worker's machine-readable line
    std::string records;
};

std::vector<IfailCase> ifail_cases() {
    const std::string head = " ** IRANK(M1:M2) does not contain a permutation of the integers M1 to M2.\n";
    const std::string phead = " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n";
    return {
        {"M01DAF", 1, 0, {}, 'A', 1, "M01DAF     1 99999     1                0",
         " ** On entry, M2 .lt. 1: M2 =               0.\n"},
        {"M01DAF", 0, 3, {}, 'A', 1, "M01DAF     1 99998     1                0",
         " ** On entry, M1 .lt. 1: M1 =               0.\n"},
        {"M01DAF", 3, 2, {}, 'A', 1, "M01DAF     1 99997     2                3                2",
         " ** On entry, M1 .gt. M2:\n    M1 =               3, M2 =               2.\n"},
        {"M01DAF", 1, 2, {}, 'x', 2, "M01DAF     2 99996     1 x",
         " ** On entry, ORDER has an illegal value: ORDER = 'x'.\n"},
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
}

std::string call_worker(const IfailCase &c, std::vector<int> &irank, int *ifail) {
    char errbuf[200];
    std::vector<double> rv(8, 1.0);
    std::vector<char> ch(16, 'z');
    const std::string name = c.name;
    if (name == "M01DAF") zek::m01daf_worker(rv.data(), c.m1, c.m2, &c.order, irank.data(), errbuf, ifail, 1, 200);
    if (name == "M01EAF") zek::m01eaf_worker(rv.data(), c.m1, c.m2, irank.data(), errbuf, ifail, 200);
    if (name == "M01EDF") zek::m01edf_worker(ch.data(), c.m1, c.m2, irank.data(), errbuf, ifail, 2, 200);
    if (name == "M01ZAF") zek::m01zaf_worker(irank.data(), c.m1, c.m2, errbuf, ifail, 200);
    return errbuf;
}

TEST(M01Failures, IfailExitsReportTextAndErrbufAndLeaveRanksAlone) {
    for (const IfailCase &c : ifail_cases()) {
        std::vector<int> irank = c.irank;
        irank.resize(8, 5);
        const std::vector<int> irank_in = irank;
        int ifail = 1;
        {
            zek_test::OutputCapture silent;
            EXPECT_EQ(call_worker(c, irank, &ifail), c.errbuf) << c.name;
            EXPECT_TRUE(silent.host().empty());
        }
        EXPECT_EQ(ifail, c.ifail) << c.name;
        if (std::string(c.name) != "M01DAF") {
            EXPECT_EQ(irank, irank_in) << c.name;
        }

        zek_test::OutputCapture capture;
        ifail = -1;
        call_worker(c, irank, &ifail);
        EXPECT_EQ(ifail, c.ifail);
        const std::string abnormal = std::string(" ** ABNORMAL EXIT from ZEK Library routine ") + c.name +
                                     ": IFAIL =     " + std::to_string(c.ifail) + "\n";
        EXPECT_EQ(host_text(capture), c.records + abnormal + " ** ZEK soft failure - control returned\n") << c.name;
    }
}

TEST(M01Failures, InternalMembersReportUnderTheirOwnNames) {
    double rv[3] = {3, 1, 2};
    int ifail = -1;
    {
        zek_test::OutputCapture sort_capture;
        zek::M01CAF(rv, 1, 3, "q", &ifail, 1);
        EXPECT_EQ(host_text(sort_capture), " ** On entry, ORDER has an illegal value: ORDER = 'q'.\n"
                                           " ** ABNORMAL EXIT from ZEK Library routine M01CAF: IFAIL =     2\n"
                                           " ** ZEK soft failure - control returned\n");
    }
    EXPECT_EQ(ifail, 2);
    EXPECT_EQ(rv[0], 3.0);
    int iv[3] = {5, 6, 7}, bad_rank[3] = {1, 2, 2};
    ifail = 1;
    zek::M01EBF(iv, 1, 3, bad_rank, &ifail);
    EXPECT_EQ(ifail, 3);
    EXPECT_EQ(iv[0], 5);
    EXPECT_EQ(bad_rank[2], 2);
    int iperm[3] = {2, 2, 1};
    zek_test::OutputCapture capture;
    ifail = -1;
    zek::M01ZBF(iperm, 1, 3, &ifail);
    EXPECT_EQ(ifail, 3);
    EXPECT_NE(host_text(capture).find("routine M01ZBF: IFAIL =     3"), std::string::npos);
    EXPECT_EQ(iperm[0], 2);
    EXPECT_EQ(iperm[2], 1);
}

TEST(M01Failures, FrontsMarkOutputAndAgreeWithTheirWorkers) {
    // A bad ORDER leaves IRANK(M1:M2) holding the undefined marker; the front prints no mismatch.
    const double rv[4] = {1, 2, 3, 4};
    int irank[4] = {7, 7, 7, 7};
    const int m1 = 2, m2 = 4;
    int ifail = 1;
    zek_test::OutputCapture capture;
    M01DAF(rv, &m1, &m2, "Z", irank, &ifail, 1);
    EXPECT_EQ(ifail, 2);
    EXPECT_EQ(irank[0], 7);
    for (int i = 1; i < 4; ++i) EXPECT_EQ(irank[i], zek::kUndefinedInteger);
    int bad[2] = {2, 2};
    const int one = 1, two = 2;
    M01ZAF(bad, &one, &two, &ifail);
    EXPECT_EQ(ifail, 3);
    EXPECT_TRUE(capture.host().empty());
}

// One C-style failure: its code and full message.
struct CodeCase {
    const char *what;
    int code;
    std::string message;
};

TEST(M01Failures, CStyleCodesAndTexts) {
    ZekFail fail{};
    double v[4] = {4, 3, 2, 1};
    int ranks[4] = {0, 1, 2, 3};
    std::vector<CodeCase> seen;
    auto record = [&](const char *what) { seen.push_back({what, fail.code, fail.message}); };

    m01cac(v, 0, Zek_Ascending, &fail), record("m01cac n=0");
    m01cac(v, 0x10000000, Zek_Ascending, &fail), record("m01cac n big");
    m01cac(v, 4, 3, &fail), record("m01cac order");
    m01dsc(v, 4, 0, compare_records, Zek_Ascending, ranks, &fail), record("m01dsc stride 0");
    m01dsc(v, 4, 0x20000000, compare_records, Zek_Ascending, ranks, &fail), record("m01dsc stride big");
    m01esc(v, 4, 0, 8, ranks, &fail), record("m01esc size 0");
    m01esc(v, 4, 8, -4, ranks, &fail), record("m01esc stride below size");
    m01esc(v, 4, 8, 0x20000000, ranks, &fail), record("m01esc stride big");
    int bad[4] = {0, 4, 1, 2};
    m01esc(v, 4, 8, 8, bad, &fail), record("m01esc bad ranks");
    m01zac(bad, 4, &fail), record("m01zac rank n");
    m01dsc(v, 4, 8, nullptr, Zek_Ascending, ranks, &fail), record("m01dsc compare");
    m01dsc(v, 4, 8, compare_records, 0, ranks, &fail), record("m01dsc order");
    m01dsc(v, 4, 8, compare_records, Zek_Ascending, nullptr, &fail), record("m01dsc null ranks");
    m01esc(v, 4, 0x20000000, 0x20000000, ranks, &fail), record("m01esc size big");
    m01zac(nullptr, 4, &fail), record("m01zac null");

    const std::vector<CodeCase> expected = {
        {"m01cac n=0", 11, "ZE_INT_ARG_LT:\n  On entry, n must not be less than 1: n = 0."},
        {"m01cac n big", 13, "ZE_INT_ARG_GT:\n  On entry, n must not be greater than 268435455: n = 268435456."},
        {"m01cac order", 70, "ZE_BAD_PARAM:\n  On entry, parameter order had an illegal value."},
        {"m01dsc stride 0", 10, "ZE_INT_ARG_EQ:\n  On entry, stride must not be equal to 0: stride = 0."},
        {"m01dsc stride big", 13,
         "ZE_INT_ARG_GT:\n  On entry, abs(stride) must not be greater than p (p = 536870911): abs(stride) = 536870912."},
        {"m01esc size 0", 11, "ZE_INT_ARG_LT:\n  On entry, size must not be less than 1: size = 0."},
        {"m01esc stride below size", 17,
         "ZE_2_INT_ARG_LT:\n  On entry, abs(stride) = 4 while size = 8. These parameters must satisfy abs(stride) >= size."},
        {"m01esc stride big", 13,
         "ZE_INT_ARG_GT:\n  On entry, abs(stride) must not be greater than 536870911: abs(stride) = 536870912."},
        {"m01esc bad ranks", 701, "ZE_BAD_RANK:\n  On entry, rank does not contain a valid permutation."},
        {"m01zac rank n", 701, "ZE_BAD_RANK:\n  On entry, rank does not contain a valid permutation."},
        {"m01dsc compare", 70, "ZE_BAD_PARAM:\n  On entry, parameter compare had an illegal value."},
        {"m01dsc order", 70, "ZE_BAD_PARAM:\n  On entry, parameter order had an illegal value."},
        {"m01dsc null ranks", 82, "ZE_NULL_ARRAY:\n  Array ranks has null address."},
        {"m01esc size big", 13, "ZE_INT_ARG_GT:\n  On entry, size must not be greater than 536870911: size = 536870912."},
        {"m01zac null", 82, "ZE_NULL_ARRAY:\n  Array ranks has null address."},
    };
    ASSERT_EQ(seen.size(), expected.size());
    for (std::size_t i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i].code, expected[i].code) << expected[i].what;
        EXPECT_EQ(seen[i].message, expected[i].message) << expected[i].what;
    }
    EXPECT_EQ(v[0], 4.0);
    EXPECT_EQ(bad[1], 4);
    EXPECT_EQ(bad[0], 0);

    // n = 1 returns before the order is looked at; n = 0 rearranges nothing.
    m01cac(v, 1, 3, &fail);
    EXPECT_EQ(fail.code, 0);
    m01esc(nullptr, 0, 8, 8, nullptr, &fail);
    EXPECT_EQ(fail.code, 0);

    // A repeat is found while inverting.
    int repeat[3] = {1, 1, 0};
    m01zac(repeat, 3, &fail);
    EXPECT_EQ(fail.code, 701);
    for (int r : repeat) EXPECT_LT(r, 3);
}

} // namespace
