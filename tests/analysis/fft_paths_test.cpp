// The fast paths against plain ones: the passes built for wide vector registers against the ordinary
// build (bit for bit), the digit permutation against the definition of the digit reversal, and the
// trigonometric tables against long double values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "analysis/fft.h"
#include "fft_test_support.h"
#include "zek2/c06.h"

using fft_test::random_reals;

namespace {

bool same_bits(const std::vector<double> &a, const std::vector<double> &b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), sizeof(double) * a.size()) == 0;
}

// Runs RUN once with the wide passes and once without; the two must agree to the bit.
template <class F> void expect_same_bits(F run, const std::string &what) {
    zek::fft::wide::allow(true);
    const std::vector<double> wide = run();
    zek::fft::wide::allow(false);
    const std::vector<double> plain = run();
    zek::fft::wide::allow(true);
    EXPECT_TRUE(same_bits(wide, plain)) << what;
}

// Sizes with every written-out radix and odd factors of the general pass, in both directions; M with
// a remainder beyond whole vectors.  The first engine, forward and back, on lengths with many short
// blocks and with few long ones.
TEST(WidePasses, SameBitsAsTheOrdinaryPasses) {
    if (!zek::fft::wide::enabled()) GTEST_SKIP() << "the processor has no wide vector registers";
    for (int n : {2, 12, 30, 64, 77, 120, 210, 625, 729, 1000, 1024, 4096, 5040}) {
        for (int m : {1, 3, 8}) {
            for (const char *direct : {"F", "B"}) {
                const std::string what = "N = " + std::to_string(n) + " M = " + std::to_string(m) + " " + direct;
                const std::vector<double> complex_data = random_reals(2 * static_cast<std::size_t>(m) * n, 3u + n);
                expect_same_bits([&] {
                    std::vector<double> x = complex_data, work(2 * static_cast<std::size_t>(m + 1) * n);
                    int ifail = 1;
                    if (m == 1) C06PCF(direct, x.data(), &n, work.data(), &ifail, 1);
                    else C06PRF(direct, &m, &n, x.data(), work.data(), &ifail, 1);
                    EXPECT_EQ(ifail, 0);
                    return x;
                }, "complex " + what);
                const std::vector<double> real_data = random_reals(static_cast<std::size_t>(m) * (n + 2), 5u + n);
                expect_same_bits([&] {
                    std::vector<double> x = real_data, work(static_cast<std::size_t>(m) * (n + 2) + 2 * n);
                    int ifail = 1;
                    C06PPF(direct, &m, &n, x.data(), work.data(), &ifail, 1);
                    EXPECT_EQ(ifail, 0);
                    return x;
                }, "real " + what);
            }
        }
    }
    for (int n : {8, 60, 250, 1000, 1024, 6561, 65536}) {
        const std::vector<double> data = random_reals(n, 7u + n);
        expect_same_bits([&] {
            std::vector<double> x = data, work(n), both;
            int ifail = 1;
            C06FAF(x.data(), &n, work.data(), &ifail);
            EXPECT_EQ(ifail, 0);
            both = x;
            C06FBF(x.data(), &n, work.data(), &ifail);
            both.insert(both.end(), x.begin(), x.end());
            return both;
        }, "first engine N = " + std::to_string(n));
    }
}

// pos(i) reverses the mixed-radix digits of i: the digit of the last factor moves fastest in i and
// carries the weight 1 in pos.
std::vector<long> digit_reversal(int n, const int *factors, int nf) {
    std::vector<long> radix, weight;
    long w = 1;
    for (int f = 0; f < nf; ++f) {
        if (factors[f] <= 1) continue;
        radix.push_back(factors[f]);
        weight.push_back(w);
        w *= factors[f];
    }
    std::vector<long> pos(n);
    for (long i = 0; i < n; ++i) {
        long rest = i, p = 0;
        for (std::size_t j = radix.size(); j-- > 0;) {
            p += (rest % radix[j]) * weight[j];
            rest /= radix[j];
        }
        pos[i] = p;
    }
    return pos;
}

// Lengths that take the blocked route (with runs of 16 and of 8) and lengths too short for it.
TEST(DigitPermutation, MovesEveryValueToItsReversedIndex) {
    for (int n : {12, 64, 360, 1000, 1024, 5040, 6561, 65536, 1 << 20}) {
        int factors[zek::fft::kFactorListSize], code = 0;
        zek::fft::factor_squares(n, 19, 8, factors, &code);
        ASSERT_EQ(code, 0) << n;
        int nf = 0;
        while (factors[nf] != 0) ++nf;
        const std::vector<long> pos = digit_reversal(n, factors, nf);
        std::vector<double> src(n), dst(n, -1.0), back(n, -1.0);
        for (int i = 0; i < n; ++i) src[i] = i;
        zek::fft::digit_permute(1, n, factors, nf, src.data(), dst.data());
        long wrong = 0;
        for (int i = 0; i < n; ++i) wrong += dst[pos[i]] != i;
        EXPECT_EQ(wrong, 0) << n;
        zek::fft::digit_permute_inverse(1, n, factors, nf, dst.data(), back.data());
        EXPECT_EQ(back, src) << n;
    }
}

// Every entry correctly rounded up to 4e-18 (a thirtieth of an ulp of 1): the tables are built from a
// few accurate roots by long double products, whose errors are of about half that size, and by the
// symmetries of the circle.  A drifting chain of products or a wrong reflection would be off by much
// more.
double excess(double value, long double truth) {
    const double ulp = std::nextafter(std::fabs(value), 2.0) - std::fabs(value);
    return static_cast<double>(std::fabs(static_cast<long double>(value) - truth) - 0.5L * ulp);
}

constexpr double kSlack = 4e-18;

// cos and sin of 2 pi t / den from the library's long double functions, the angle reduced exactly to
// a quarter turn first so that it carries no error of size.
void reference_root(long long den, long long t, long double &c, long double &s) {
    t %= den;
    const long long quarter = 4 * t / den, rest = 4 * t - quarter * den;
    const long double a = 1.570796326794896619231321691639751442L * rest / den;
    const long double ca = std::cos(a), sa = std::sin(a);
    const long double cs[4][2] = {{ca, sa}, {-sa, ca}, {-ca, -sa}, {sa, -ca}};
    c = cs[quarter][0];
    s = cs[quarter][1];
}

TEST(Tables, RootsCorrectlyRoundedUpToAHair) {
    for (int n : {2, 3, 4, 6, 8, 12, 30, 97, 729, 1000, 1024, 4099, 78125, 1 << 18}) {
        const int h = (n + 1) / 2;
        std::vector<double> cosv(n), sinv(n);
        zek::fft::fill_real_table(n, cosv.data(), sinv.data());
        double worst = -1;
        for (int j = 1; j < h; ++j) {
            long double c, sn;
            reference_root(n, j, c, sn);
            worst = std::max(worst, std::max(excess(cosv[j - 1], c), excess(sinv[j - 1], sn)));
        }
        EXPECT_LT(worst, kSlack) << "real table, N = " << n;

        // The complex table of a single sequence: every pass's twiddles, in order.
        int factors[zek::fft::kFactorListSize];
        const int nf = zek::fft::factor_list(n, factors);
        std::vector<double> trig(2 * static_cast<std::size_t>(n)), scratch(2 * static_cast<std::size_t>(n));
        zek::fft::fill_complex_table(n, factors, nf, trig.data(), scratch.data());
        worst = -1;
        long l1 = 1, at = 0;
        for (int f = 0; f < nf; ++f) {
            const long p = factors[f], ido = n / (l1 * p);
            long double c, sn;
            for (long q = 1; p >= 7 && q < p; ++q, ++at) {
                reference_root(p, q, c, sn);
                worst = std::max(worst, std::max(excess(trig[2 * at], c), excess(trig[2 * at + 1], -sn)));
            }
            for (long j = 1; j < p; ++j)
                for (long i = 1; i < ido; ++i, ++at) {
                    reference_root(n, l1 * j * i, c, sn);
                    worst = std::max(worst, std::max(excess(trig[2 * at], c), excess(trig[2 * at + 1], -sn)));
                }
            l1 *= p;
        }
        EXPECT_LT(worst, kSlack) << "complex table, N = " << n;
    }
}

// Long runs at any start and step stay anchored: no drift over hundreds of thousands of roots.
TEST(Tables, RootStreamHoldsOverLongRuns) {
    const long long den = 4 * 1000003LL;
    for (long long step : {1LL, 7LL, 999LL}) {
        zek::fft::RootStream roots(den, 5, step);
        double worst = -1;
        roots.run(300000, [&](zek::fft::Index k, double c, double s) {
            long double rc, rs;
            reference_root(den, 5 + k * step, rc, rs);
            worst = std::max(worst, std::max(excess(c, rc), excess(s, rs)));
        });
        EXPECT_LT(worst, kSlack) << "step " << step;
    }
}

} // namespace
