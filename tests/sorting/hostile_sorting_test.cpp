// Hostile input for sorting and the special functions: NaN, +-Inf, the largest and the smallest
// numbers.  Sorts and ranks must end with a permutation of what they were given (a NaN compares
// false both ways, which must not carry an index outside the vector); a function with a failure exit
// either raises it or returns a finite value; the functions without one hand a NaN on as a NaN.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <vector>

#include "zek2/m01.h"
#include "zek2/messages.h"
#include "zek2/s.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kValues[] = {kNaN, HUGE_VAL, -HUGE_VAL, std::numeric_limits<double>::max(),
                          -std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min(),
                          -std::numeric_limits<double>::denorm_min(), 0.0};

ZekFail quiet() {
    ZekFail fail{};
    fail.print = 0;
    return fail;
}

// A vector of 40 with the hostile value at every fifth place, the rest ordinary numbers.
std::vector<double> sprinkled(double v) {
    std::vector<double> x(40);
    for (int i = 0; i < 40; ++i) x[i] = i % 5 == 0 ? v : std::sin(3.0 * i);
    return x;
}

bool same_bits_multiset(std::vector<double> a, std::vector<double> b) {
    auto key = [](double x) {
        std::uint64_t k;
        std::memcpy(&k, &x, sizeof k);
        return k;
    };
    std::vector<std::uint64_t> ka, kb;
    for (double x : a) ka.push_back(key(x));
    for (double x : b) kb.push_back(key(x));
    std::sort(ka.begin(), ka.end());
    std::sort(kb.begin(), kb.end());
    return ka == kb;
}

bool is_permutation_of(const std::vector<int> &p, int first) {
    std::vector<int> sorted = p;
    std::sort(sorted.begin(), sorted.end());
    for (std::size_t i = 0; i < sorted.size(); ++i)
        if (sorted[i] != first + static_cast<int>(i)) return false;
    return true;
}

class HostileSorting : public ::testing::TestWithParam<double> {};

TEST_P(HostileSorting, SortsAndRanksEndWithAPermutation) {
    const std::vector<double> given = sprinkled(GetParam());
    const int n = static_cast<int>(given.size()), m1 = 1;

    std::vector<double> v = given;
    ZekFail fail = quiet();
    m01cac(v.data(), n, Zek_Ascending, &fail);
    EXPECT_TRUE(same_bits_multiset(v, given));

    std::vector<int> irank(given.size());
    int ifail = 1;
    M01DAF(given.data(), &m1, &n, "D", irank.data(), &ifail, 1);
    if (ifail == 0) {
        EXPECT_TRUE(is_permutation_of(irank, 1));
    }

    v = given;
    ifail = 1;
    M01EAF(v.data(), &m1, &n, irank.data(), &ifail);
    EXPECT_TRUE(same_bits_multiset(v, given));

    std::vector<int> ranks(given.size());
    fail = quiet();
    m01dsc(given.data(), n, sizeof(double),
           [](const void *a, const void *b) {
               const double x = *static_cast<const double *>(a), y = *static_cast<const double *>(b);
               return x < y ? -1 : (x > y ? 1 : 0);
           },
           Zek_Ascending, ranks.data(), &fail);
    if (fail.code == 0) {
        EXPECT_TRUE(is_permutation_of(ranks, 0));
        v = given;
        m01esc(v.data(), n, sizeof(double), sizeof(double), ranks.data(), &fail);
        EXPECT_TRUE(same_bits_multiset(v, given));
    }
}

TEST_P(HostileSorting, FunctionsGiveAFiniteValueOrTheirExit) {
    const double x = GetParam();
    struct Call {
        const char *name;
        double value;
        int code;
    };
    std::vector<Call> calls;
    auto c_style = [&](const char *name, double (*f)(double, ZekFail *)) {
        ZekFail fail = quiet();
        const double r = f(x, &fail);
        calls.push_back({name, r, fail.code});
    };
    c_style("s14aac", s14aac);
    c_style("s14abc", s14abc);
    int ifail = 1;
    const double g = S14AAF(&x, &ifail);
    calls.push_back({"S14AAF", g, ifail});
    for (double second : {1.0, x}) {
        ZekFail fail = quiet();
        const double r = s21bac(x, second, &fail);
        calls.push_back({"s21bac (x)", r, fail.code});
        fail = quiet();
        const double r2 = s21bac(1.0, x == 0.0 ? 1.0 : x, &fail);
        calls.push_back({"s21bac (y)", r2, fail.code});
    }
    for (double a : {1.5, x}) {
        double p = -1.0, q = -1.0;
        ZekFail fail = quiet();
        s14bac(a, x, 0.0, &p, &q, &fail);
        calls.push_back({"s14bac P", p, fail.code});
        calls.push_back({"s14bac Q", q, fail.code});
        fail = quiet();
        s14bac(x, 2.0, 0.0, &p, &q, &fail);
        calls.push_back({"s14bac P (a)", p, fail.code});
    }
    for (const Call &c : calls) {
        if (c.code == 0) {
            EXPECT_TRUE(std::isfinite(c.value)) << c.name << "(" << x << ") = " << c.value;
        }
    }

    // No failure channel: NaN in, NaN out; otherwise a value in the function's range.
    for (double (*f)(double) : {S15_ERF, S15_ERFC, S15_UPPER_TAIL, S15_LOWER_TAIL}) {
        const double r = f(x);
        if (std::isnan(x)) {
            EXPECT_TRUE(std::isnan(r));
        } else {
            EXPECT_TRUE(r >= -1.0 && r <= 2.0) << r;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Values, HostileSorting, ::testing::ValuesIn(kValues));

// Sizes: an empty section, and strides whose products overflow an int, end in their exits.
TEST(HostileSortingSizes, EmptySectionsAndOverflowingStridesEndInTheirExits) {
    double cell[2] = {1.0, 2.0};
    int rank[2] = {0, 0};
    const int m1 = 2, m2 = 1;
    int ifail = 1;
    M01DAF(cell, &m1, &m2, "A", rank, &ifail, 1);
    EXPECT_EQ(ifail, 1);
    ifail = 1;
    M01EAF(cell, &m1, &m2, rank, &ifail);
    EXPECT_EQ(ifail, 1);
    ZekFail fail = quiet();
    m01cac(cell, -1, Zek_Ascending, &fail);
    EXPECT_NE(fail.code, 0);
    fail = quiet();
    m01dsc(cell, 2, INT_MAX, [](const void *, const void *) { return 0; }, Zek_Ascending, rank, &fail);
    EXPECT_EQ(fail.code, ZE_INT_ARG_GT);
}

} // namespace
