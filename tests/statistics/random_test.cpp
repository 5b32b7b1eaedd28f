// The generators against the recurrence computed here in exact 128-bit integers, their deviates by
// Kolmogorov-Smirnov tests at fixed seeds, and the small G03/G07 members.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <functional>
#include <vector>

#include "zek2/g03.h"
#include "zek2/g05.h"
#include "zek2/g07.h"
#include "zek2/messages.h"

namespace {

using u128 = unsigned __int128;
constexpr std::uint64_t kA = 302875106592253ULL;  // 13^13
constexpr std::uint64_t kMod = 1ULL << 60;

std::uint64_t step(std::uint64_t x) { return static_cast<std::uint64_t>((static_cast<u128>(kA) * x) % kMod); }
double uniform_of(std::uint64_t x) {
    const double u = std::ldexp(static_cast<double>(x >> 30), -30) + std::ldexp(static_cast<double>(x & 0x3fffffff), -60);
    return std::min(u, 1.0 - 1.11130722679765e-16);
}
std::uint64_t from_limbs(const int l[4]) {
    return static_cast<std::uint64_t>(l[0]) | static_cast<std::uint64_t>(l[1]) << 15 |
           static_cast<std::uint64_t>(l[2]) << 30 | static_cast<std::uint64_t>(l[3]) << 45;
}
constexpr int kDefault[4] = {6698, 7535, 26792, 30140};

// Forgets the seeding, as if the library had just been loaded.
void unseed() {
    int *flags = nullptr;
    G05_STATE(nullptr, nullptr, nullptr, &flags, nullptr);
    flags[0] = 0;
}

TEST(BasicGenerator, StreamIsTheRecurrenceUnseededOrSeeded) {
    // Unseeded: the default state, over several refills by a^63.  Seeded: the state passes over one
    // value and ignores the sign (-5 and 5 give one stream).
    const struct { bool seeded; int seed; } rows[] = {{false, 0}, {true, 0}, {true, 5}, {true, -5}, {true, 123456789},
                                                      {true, -2147483647 - 1}};
    for (const auto &r : rows) {
        const std::uint32_t m = r.seed < 0 ? 0u - static_cast<std::uint32_t>(r.seed) : static_cast<std::uint32_t>(r.seed);
        std::uint64_t x = r.seeded ? step((m % 8192u) * 4u + 2u + (static_cast<std::uint64_t>(m / 8192u) << 15)) : from_limbs(kDefault);
        r.seeded ? G05_SEED(r.seed) : unseed();
        for (int i = 0; i < 300; ++i) {
            x = step(x);
            ASSERT_EQ(G05_UNIFORM(), uniform_of(x)) << r.seeded << " " << r.seed << " " << i;
        }
    }
}

TEST(BasicGenerator, ForcedRefillContinuesTheStream) {
    G05_SEED(77);
    std::vector<double> plain(100);
    for (double &v : plain) v = G05_UNIFORM();
    G05_SEED(77);
    for (int i = 0; i < 62; ++i) ASSERT_EQ(G05_UNIFORM(), plain[i]);
    G05_REFILL(1);  // from scratch out of the last lane: the same numbers as the advance
    for (int i = 62; i < 100; ++i) ASSERT_EQ(G05_UNIFORM(), plain[i]) << i;
}

TEST(ExplicitGenerator, LimbStateFollowsTheRecurrenceAndDefaultResets) {
    int igen = 7, iseed[4] = {1, 2, 3, 4};
    G05_EXPLICIT_DEFAULT(&igen, iseed);
    EXPECT_EQ(igen, 0);
    std::uint64_t x = from_limbs(kDefault);
    for (int i = 0; i < 50; ++i) {
        x = step(x);
        ASSERT_EQ(G05_EXPLICIT_UNIFORM(&igen, iseed), uniform_of(x));
        ASSERT_EQ(from_limbs(iseed), x);
    }
    // A state whose successor is 2^60 - 1 gives the clamp, never 1.0: x = (2^60 - 1) a^-1.
    std::uint64_t inverse = 1;
    for (int k = 0; k < 6; ++k) inverse = static_cast<std::uint64_t>(static_cast<u128>(inverse) * (2 - static_cast<u128>(kA) * inverse) % kMod);
    const std::uint64_t pre = static_cast<std::uint64_t>(static_cast<u128>(kMod - 1) * inverse % kMod);
    int top[4] = {static_cast<int>(pre & 0x7fff), static_cast<int>(pre >> 15 & 0x7fff), static_cast<int>(pre >> 30 & 0x7fff),
                  static_cast<int>(pre >> 45 & 0x7fff)};
    const double u = G05_EXPLICIT_UNIFORM_V(0, top);
    EXPECT_LT(u, 1.0);
    EXPECT_EQ(u, 1.0 - 1.11130722679765e-16);
}

TEST(ExplicitGenerator, WichmannHillRowsMatchTheRecurrence) {
    struct Row { int igen; std::uint64_t m[4], p[4]; };
    const Row rows[] = {{1, {125, 117, 127, 126}, {16770647, 16770643, 16770623, 16770617}},
                        {3, {125, 119, 123, 126}, {16769807, 16769771, 16769749, 16769663}},
                        {273, {126, 127, 125, 124}, {16766363, 16766359, 16766327, 16766231}}};
    for (const Row &r : rows) {
        int iseed[4] = {1762543, 9324783, 42344, 742355};
        std::uint64_t s[4] = {1762543, 9324783, 42344, 742355};
        for (int i = 0; i < 20; ++i) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) {
                s[k] = r.m[k] * s[k] % r.p[k];
                sum += static_cast<double>(s[k]) / static_cast<double>(r.p[k]);
            }
            const double expected = sum - std::floor(sum);
            ASSERT_EQ(i % 2 ? G05_WICHMANN_HILL(r.igen, iseed) : G05_EXPLICIT_UNIFORM(&r.igen, iseed), expected);
        }
        // Saving the state and going on reproduces the stream.
        int saved[4];
        std::copy(iseed, iseed + 4, saved);
        const double a = G05_EXPLICIT_UNIFORM_V(r.igen, iseed);
        EXPECT_EQ(G05_EXPLICIT_UNIFORM_V(r.igen, saved), a);
    }
}

// The Kolmogorov-Smirnov distance of a sample from a distribution function.
double ks_distance(std::vector<double> v, const std::function<double(double)> &cdf) {
    std::sort(v.begin(), v.end());
    const double n = static_cast<double>(v.size());
    double d = 0.0;
    for (std::size_t i = 0; i < v.size(); ++i) {
        const double f = cdf(v[i]);
        d = std::max({d, f - static_cast<double>(i) / n, static_cast<double>(i + 1) / n - f});
    }
    return d;
}

TEST(Deviates, DistributionsPassKolmogorovSmirnovAtAFixedSeed) {
    constexpr int n = 200000;
    const double critical = 1.95 / std::sqrt(static_cast<double>(n));  // 0.1 per cent level
    constexpr double pi = 3.141592653589793;
    G05_SEED(2026);
    struct Case { const char *name; std::function<double()> draw; std::function<double(double)> cdf; };
    const Case cases[] = {
        {"normal", [] { return G05_NORMAL(1.0, 2.0); }, [](double x) { return 0.5 * std::erfc(-(x - 1.0) / 2.0 / std::sqrt(2.0)); }},
        {"cauchy", [] { return G05_CAUCHY(-3.0, 0.5); }, [=](double x) { return 0.5 + std::atan((x + 3.0) / 0.5) / pi; }},
        {"uniform", [] { return G05_UNIFORM_AB(4.0, -2.0); }, [](double x) { return (x + 2.0) / 6.0; }},
        {"wichmann-hill 17", [] { static int s[4] = {11, 22, 33, 44}; return G05_EXPLICIT_UNIFORM_V(17, s); }, [](double x) { return x; }},
    };
    for (const Case &c : cases) {
        std::vector<double> v(n);
        for (double &x : v) x = c.draw();
        EXPECT_LT(ks_distance(v, c.cdf), critical) << c.name;
        if (c.name[0] == 'n') {
            // The far segments: P(|X - 1|/2 > 3.2971933456919633) = 2^-10, about 195 +- 14 of the sample.
            const double far = static_cast<double>(std::count_if(v.begin(), v.end(), [](double x) { return std::fabs(x - 1.0) > 2.0 * 3.2971933456919633; }));
            EXPECT_NEAR(far, n / 1024.0, 4.0 * std::sqrt(n / 1024.0));
        }
    }
}

TEST(Deviates, UniformBoundsAndPermutation) {
    G05_SEED(9);
    for (int i = 0; i < 1000; ++i) ASSERT_TRUE(std::isfinite(G05_UNIFORM_AB(DBL_MAX, -DBL_MAX)));
    std::vector<int> index(1000), identity(1000);
    for (int i = 0; i < 1000; ++i) index[i] = identity[i] = i;
    g05ehc(index.data(), 1000, nullptr);
    EXPECT_NE(index, identity);
    std::sort(index.begin(), index.end());
    EXPECT_EQ(index, identity);

    int *position = nullptr;
    G05_STATE(nullptr, nullptr, &position, nullptr, nullptr);
    const int before = *position;
    int one = 42;
    ZekFail fail{};
    g05ehc(&one, 1, &fail);
    EXPECT_EQ(fail.code, 0);
    EXPECT_EQ(*position, before);
    g05ehc(&one, 0, &fail);
    EXPECT_EQ(fail.code, ZE_INT_ARG_LT);
    EXPECT_STREQ(fail.message, "ZE_INT_ARG_LT:\n  On entry, n must not be less than 1: n = 0.");
    EXPECT_EQ(one, 42);
}

TEST(SmallChapters, MedianAndAbsoluteDeviationAgainstBruteForce) {
    G05_SEED(4);
    for (int n : {2, 3, 4, 5, 10, 101, 1000}) {
        std::vector<double> x(n), y(n);
        for (double &v : x) v = std::floor(G05_NORMAL(0.0, 10.0));  // ties on purpose
        std::vector<double> s = x;
        std::sort(s.begin(), s.end());
        const double med = n % 2 ? s[n / 2] : 0.5 * (s[n / 2 - 1] + s[n / 2]);
        std::vector<double> d(n);
        for (int i = 0; i < n; ++i) d[i] = std::fabs(s[i] - med);
        std::sort(d.begin(), d.end());
        const double mad = n % 2 ? d[n / 2] : 0.5 * (d[n / 2 - 1] + d[n / 2]);
        double xme = 0, xmd = 0, xsd = 0;
        ZekFail fail{};
        g07dac(n, x.data(), y.data(), &xme, &xmd, &xsd, &fail);
        ASSERT_EQ(fail.code, 0);
        EXPECT_EQ(y, s);
        EXPECT_EQ(xme, med) << n;
        EXPECT_EQ(xmd, mad) << n;
        EXPECT_DOUBLE_EQ(xsd, mad / 0.6744897501962756);
    }
    double xme = 7, xmd = 7, xsd = 7, one = 1, y = 0;
    ZekFail fail{};
    g07dac(1, &one, &y, &xme, &xmd, &xsd, &fail);
    EXPECT_EQ(fail.code, ZE_INT_ARG_LE);
    EXPECT_EQ(xme, 7.0);
}

TEST(SmallChapters, StandardisingChosenVariables) {
    const int n = 3, m = 3, ldx = 4, nvar = 2, ldz = 3;
    const double x[] = {1, 2, 3, 0, 10, 20, 30, 0, 5, 5, 6, 0};
    const int isx[] = {1, 0, 1};
    const double s[] = {2, -1, 0.5}, e[] = {1, 0, 5};
    double z[6] = {};
    int ifail = 0;
    G03ZAF(&n, &m, x, &ldx, &nvar, isx, s, e, z, &ldz, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(std::vector<double>(z, z + 6), (std::vector<double>{0, 0.5, 1, 0, 0, 2}));
}

} // namespace
