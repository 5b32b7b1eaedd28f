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

const double kBig = std::numeric_limits<double>::max(), kTiny = std::numeric_limits<double>::denorm_min();
const double kValues[] = {NAN, HUGE_VAL, -HUGE_VAL, kBig, -kBig, kTiny, -kTiny, 0.0};

ZekFail quiet() {
    ZekFail fail{};
    fail.print = 0;
    return fail;
}

// The bit patterns, sorted: equal for two vectors that are permutations of each other, NaNs included.
std::vector<std::uint64_t> bit_multiset(const std::vector<double> &v) {
    std::vector<std::uint64_t> k(v.size());
    std::memcpy(k.data(), v.data(), v.size() * sizeof(double));
    std::sort(k.begin(), k.end());
    return k;
}

bool is_permutation_of(std::vector<int> p, int first) {
    std::vector<int> identity(p.size());
    std::iota(identity.begin(), identity.end(), first);
    return std::is_permutation(p.begin(), p.end(), identity.begin());
}

class HostileSorting : public ::testing::TestWithParam<double> {};

TEST_P(HostileSorting, SortsAndRanksEndWithAPermutation) {
    // 3000 elements, long enough for the quicksort's partitions; the hostile value at every seventh place.
    std::vector<double> given(3000);
    for (std::size_t i = 0; i < given.size(); ++i) given[i] = i % 7 == 0 ? GetParam() : std::sin(3.0 * i);
    const int n = static_cast<int>(given.size()), m1 = 1;
    std::vector<double> v = given;
    ZekFail fail = quiet();
    m01cac(v.data(), n, Zek_Ascending, &fail);
    EXPECT_EQ(bit_multiset(v), bit_multiset(given));
    std::vector<int> irank(given.size()), ranks(given.size());
    int ifail = 1;
    M01DAF(given.data(), &m1, &n, "D", irank.data(), &ifail, 1);
    if (ifail == 0) { EXPECT_TRUE(is_permutation_of(irank, 1)); }
    v = given;
    M01EAF(v.data(), &m1, &n, irank.data(), &ifail);
    EXPECT_EQ(bit_multiset(v), bit_multiset(given));
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
        EXPECT_EQ(bit_multiset(v), bit_multiset(given));
    }
}

TEST_P(HostileSorting, FunctionsGiveAFiniteValueOrTheirExit) {
    const double x = GetParam();
    // Each call gets a fresh record; a value without a code must be finite.
    auto check = [&](const char *name, auto call) {
        ZekFail fail = quiet();
        const double value = call(&fail);
        if (fail.code == 0) { EXPECT_TRUE(std::isfinite(value)) << name << "(" << x << ") = " << value; }
    };
    check("s14aac", [&](ZekFail *f) { return s14aac(x, f); });
    check("s14abc", [&](ZekFail *f) { return s14abc(x, f); });
    check("S14AAF", [&](ZekFail *f) { int ifail = 1; const double g = S14AAF(&x, &ifail); f->code = ifail; return g; });
    for (double second : {1.0, x}) {
        check("s21bac (x)", [&](ZekFail *f) { return s21bac(x, second, f); });
        check("s21bac (y)", [&](ZekFail *f) { return s21bac(1.0, x == 0.0 ? 1.0 : x, f); });
        const double a = second == 1.0 ? 1.5 : x;
        for (int part : {0, 1, 2})
            check("s14bac", [&](ZekFail *f) {
                double p = -1.0, q = -1.0;
                s14bac(part < 2 ? a : x, part < 2 ? x : 2.0, 0.0, &p, &q, f);
                return part == 1 ? q : p;
            });
    }
    // No failure channel: NaN in, NaN out; otherwise a value in the function's range.
    for (double (*f)(double) : {S15_ERF, S15_ERFC, S15_UPPER_TAIL, S15_LOWER_TAIL}) {
        const double r = f(x);
        EXPECT_TRUE(std::isnan(x) ? std::isnan(r) : r >= -1.0 && r <= 2.0) << r;
    }
}

INSTANTIATE_TEST_SUITE_P(Values, HostileSorting, ::testing::ValuesIn(kValues));

// Sizes: an empty section, and strides whose products overflow an int, end in their exits.
TEST(HostileSortingSizes, EmptySectionsAndOverflowingStridesEndInTheirExits) {
    double cell[2] = {1.0, 2.0};
    int rank[2] = {0, 0}, ifail = 1, ifail2 = 1;
    const int m1 = 2, m2 = 1;
    M01DAF(cell, &m1, &m2, "A", rank, &ifail, 1);
    M01EAF(cell, &m1, &m2, rank, &ifail2);
    EXPECT_TRUE(ifail == 1 && ifail2 == 1);
    ZekFail fail = quiet();
    m01cac(cell, -1, Zek_Ascending, &fail);
    EXPECT_NE(fail.code, 0);
    m01dsc(cell, 2, INT_MAX, [](const void *, const void *) { return 0; }, Zek_Ascending, rank, &fail);
    EXPECT_EQ(fail.code, ZE_INT_ARG_GT);
}

} // namespace
