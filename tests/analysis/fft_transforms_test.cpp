// The transforms against their definitions (computed in long double), the inverse pairs and Parseval;
// the sine, cosine and quarter-wave transforms, and a two-dimensional one, against FFTW, whose
// transforms are unscaled: each comparison states the factor that relates the two.
#include <gtest/gtest.h>
#include <fftw3.h>

#include <algorithm>
#include <string>

#include "fft_test_support.h"
#include "zek2/c06.h"

using fft_test::Complex;
using fft_test::dft;
using fft_test::random_reals;
using fft_test::relative_error;
using fft_test::tolerance;

namespace {

std::vector<Complex> as_complex(const std::vector<double> &pairs) {
    std::vector<Complex> c(pairs.size() / 2);
    for (std::size_t i = 0; i < c.size(); ++i) c[i] = Complex(pairs[2 * i], pairs[2 * i + 1]);
    return c;
}

std::vector<double> as_pairs(const std::vector<Complex> &c) {
    std::vector<double> v(2 * c.size());
    for (std::size_t i = 0; i < c.size(); ++i) {
        v[2 * i] = static_cast<double>(c[i].real());
        v[2 * i + 1] = static_cast<double>(c[i].imag());
    }
    return v;
}

std::vector<Complex> real_as_complex(const std::vector<double> &x) { return {x.begin(), x.end()}; }

std::string name_of(const ::testing::TestParamInfo<int> &info) { return "N" + std::to_string(info.param); }

} // namespace

class FirstEngine : public ::testing::TestWithParam<int> {};

// The first engine: forward against the definition and back; forward, conjugate, backward reverses
// the sequence, which shows that C06GBF negates exactly the imaginary parts.  A length below 2 or with
// a prime factor above 19 is refused.
TEST_P(FirstEngine, MatchesDefinitionInvertsAndConjugates) {
    const int n = GetParam();
    int ifail = 1, rest = n;
    for (int p = 2; p <= 19; ++p)
        while (rest % p == 0) rest /= p;
    const bool takes = n >= 2 && rest == 1;
    const std::vector<double> x = random_reals(n, 11u + n);
    const std::vector<Complex> z = dft(real_as_complex(x), -1);
    std::vector<double> expected(n), reversed(n);
    for (int k = 0; 2 * k <= n; ++k) expected[k] = static_cast<double>(z[k].real());
    for (int k = 1; 2 * k < n; ++k) expected[n - k] = static_cast<double>(z[k].imag());
    for (int j = 0; j < n; ++j) reversed[j] = x[(n - j) % n];

    std::vector<double> y = x, work(n);
    C06FAF(y.data(), &n, work.data(), &ifail);
    ASSERT_EQ(ifail, takes ? 0 : n < 2 ? 3 : 1);
    if (!takes) return;
    EXPECT_LT(relative_error(y, expected), tolerance(n));
    std::vector<double> conjugated = y;
    C06FBF(y.data(), &n, work.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    EXPECT_LT(relative_error(y, x), tolerance(n));
    C06GBF(conjugated.data(), &n, &ifail);
    C06FBF(conjugated.data(), &n, work.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    EXPECT_LT(relative_error(conjugated, reversed), tolerance(n));
}

// Squares, prime powers, mixed radices, merged runs of 2 and every prime up to 19; sizes refused.
INSTANTIATE_TEST_SUITE_P(Sizes, FirstEngine,
                         ::testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 16, 17, 18, 19, 23, 25, 27, 30,
                                           32, 36, 49, 60, 64, 100, 128, 243, 256, 343, 361, 1000, 1024, 1292, 2310,
                                           6561),
                         name_of);

// ---- Second engine: one complex sequence ----

class ComplexSequence : public ::testing::TestWithParam<int> {};

TEST_P(ComplexSequence, BothDirectionsMatchDefinition) {
    const int n = GetParam();
    const std::vector<double> x = random_reals(2 * n, 3u + n);
    std::vector<double> work(4 * n);
    for (int sign : {-1, 1}) {
        std::vector<double> y = x;
        int ifail = 1;
        C06PCF(sign < 0 ? "F" : "b", y.data(), &n, work.data(), &ifail, 1);
        ASSERT_EQ(ifail, 0);
        EXPECT_LT(relative_error(y, as_pairs(dft(as_complex(x), sign))), tolerance(n)) << "sign " << sign;
        EXPECT_EQ(work[0], n == 1 ? 1.0 : 2.0 * n);
        EXPECT_EQ(work[1], 0.0);
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, ComplexSequence,
                         ::testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 16, 23, 25, 30, 49, 64, 77, 100, 121, 128,
                                           210, 360, 1009, 2018, 2187, 3125, 4096),
                         name_of);

// 2^20: twenty factors of 2, the most the first engine takes; the complex transform keeps the energy.
TEST(LargePowerOfTwo, BothEnginesInvertAndTheComplexOneKeepsEnergy) {
    const int n = 1 << 20;
    const std::vector<double> x = random_reals(2 * static_cast<std::size_t>(n), 99u);
    std::vector<double> y = x, work(4 * static_cast<std::size_t>(n));
    int ifail = 1;
    C06PCF("F", y.data(), &n, work.data(), &ifail, 1);
    ASSERT_EQ(ifail, 0);
    long double ex = 0, ey = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        ex += static_cast<long double>(x[i]) * x[i];
        ey += static_cast<long double>(y[i]) * y[i];
    }
    EXPECT_NEAR(static_cast<double>(ey / ex), 1.0, tolerance(n));
    C06PCF("B", y.data(), &n, work.data(), &ifail, 1);
    EXPECT_LT(relative_error(y, x), tolerance(n));
    y.assign(x.begin(), x.begin() + n);
    C06FAF(y.data(), &n, work.data(), &ifail);
    ASSERT_EQ(ifail, 0);
    C06FBF(y.data(), &n, work.data(), &ifail);
    EXPECT_LT(relative_error(y, std::vector<double>(x.begin(), x.begin() + n)), tolerance(n));
}

// ---- Many sequences ----

class ManySequences : public ::testing::TestWithParam<int> {};

TEST_P(ManySequences, RealSequencesByPairs) {
    const int n = GetParam();
    for (int m : {1, 3}) {
        const std::size_t stride = n + 2;
        std::vector<double> x(m * stride, 0.0);
        std::vector<double> expected(m * stride, 0.0);
        for (int p = 0; p < m; ++p) {
            const std::vector<double> seq = random_reals(n, 7u * p + n);
            std::copy(seq.begin(), seq.end(), x.begin() + p * stride);
            const std::vector<Complex> z = dft(real_as_complex(seq), -1);
            for (int k = 0; 2 * k <= n; ++k) {
                expected[p * stride + 2 * k] = static_cast<double>(z[k].real());
                expected[p * stride + 2 * k + 1] = 2 * k == n || k == 0 ? 0.0 : static_cast<double>(z[k].imag());
            }
        }
        std::vector<double> y = x, work((n + 2) * m + 2 * n);
        int ifail = 1;
        C06PPF("F", &m, &n, y.data(), work.data(), &ifail, 1);
        ASSERT_EQ(ifail, 0);
        // Compare only the places the transform defines (N odd leaves the last one alone).
        std::vector<double> defined = y;
        for (int p = 0; p < m && n % 2 == 1; ++p) defined[p * stride + n + 1] = 0.0;
        EXPECT_LT(relative_error(defined, expected), tolerance(n)) << "M = " << m;
        EXPECT_EQ(work[0], n == 1 ? 1.0 : m == 1 ? 3.0 * n : (n + 2.0) * m + 2.0 * n);
        C06PPF("B", &m, &n, y.data(), work.data(), &ifail, 1);
        ASSERT_EQ(ifail, 0);
        for (int p = 0; p < m; ++p)
            for (int j = 0; j < n; ++j) EXPECT_NEAR(y[p * stride + j], x[p * stride + j], 1e-14) << p << " " << j;
    }
}

TEST_P(ManySequences, ComplexSequencesBySequenceAndByElement) {
    const int n = GetParam(), m = 3;
    const std::size_t size = 2 * static_cast<std::size_t>(m) * n;
    std::vector<double> by_sequence(size), by_element(size), expected(size), expected_by_element(size);
    for (int p = 0; p < m; ++p) {
        const std::vector<double> seq = random_reals(2 * n, 13u * p + n);
        const std::vector<double> z = as_pairs(dft(as_complex(seq), -1));
        for (int j = 0; j < n; ++j)
            for (int c = 0; c < 2; ++c) {
                by_sequence[2 * (p * n + j) + c] = seq[2 * j + c];
                by_element[2 * (p + j * m) + c] = seq[2 * j + c];
                expected[2 * (p * n + j) + c] = expected_by_element[2 * (p + j * m) + c] = z[2 * j + c];
            }
    }
    std::vector<double> work(2 * (m + 1) * n);
    std::vector<double> y = by_sequence;
    int ifail = 1;
    C06PRF("F", &m, &n, y.data(), work.data(), &ifail, 1);
    ASSERT_EQ(ifail, 0);
    EXPECT_LT(relative_error(y, expected), tolerance(n));
    EXPECT_EQ(work[0], n == 1 ? 1.0 : (m + 1.0) * n);
    C06PRF("B", &m, &n, y.data(), work.data(), &ifail, 1);
    EXPECT_LT(relative_error(y, by_sequence), tolerance(n));

    char errbuf[200];
    y = by_element;
    C06PSF("F", m, n, y.data(), work.data(), errbuf, &ifail, 1, 200);
    ASSERT_EQ(ifail, 0);
    EXPECT_STREQ(errbuf, "NONE");
    EXPECT_LT(relative_error(y, expected_by_element), tolerance(n));
    C06PSF("B", m, n, y.data(), work.data(), errbuf, &ifail, 1, 200);
    EXPECT_LT(relative_error(y, by_element), tolerance(n));
}

INSTANTIATE_TEST_SUITE_P(Sizes, ManySequences,
                         ::testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 9, 12, 14, 15, 16, 18, 20, 23, 30, 36, 64, 66, 97,
                                           100, 210, 243, 256, 625, 1009),
                         name_of);

// ---- Multi-dimensional arrays ----

namespace {

// The transform by definition along dimension l (0-based) of a column-major array.
std::vector<Complex> along(const std::vector<Complex> &x, const std::vector<int> &nd, int l, int sign) {
    long before = 1, after = 1;
    for (int i = 0; i < l; ++i) before *= nd[i];
    for (std::size_t i = l + 1; i < nd.size(); ++i) after *= nd[i];
    std::vector<Complex> y(x.size());
    for (long q = 0; q < after; ++q)
        for (long p = 0; p < before; ++p) {
            std::vector<Complex> line(nd[l]);
            for (int j = 0; j < nd[l]; ++j) line[j] = x[p + before * (j + nd[l] * q)];
            line = dft(line, sign);
            for (int j = 0; j < nd[l]; ++j) y[p + before * (j + nd[l] * q)] = line[j];
        }
    return y;
}

} // namespace

TEST(MultiDimensional, EachDimensionAndAllMatchDefinition) {
    const std::vector<std::vector<int>> shapes = {{12}, {4, 7}, {3, 4, 5}, {1, 6, 5}, {5, 1, 1}, {2, 3, 1, 5}};
    for (const std::vector<int> &nd : shapes) {
        const int ndim = static_cast<int>(nd.size());
        int n = 1;
        for (int d : nd) n *= d;
        const std::vector<double> x = random_reals(2 * n, 17u + n);
        std::vector<double> work(2 * 4 * n + 64);
        const int lwork = static_cast<int>(work.size() / 2);
        std::vector<Complex> all = as_complex(x);
        for (int l = 1; l <= ndim; ++l) {
            std::vector<double> y = x;
            int ifail = 1;
            C06PFF("F", &ndim, &l, nd.data(), &n, y.data(), work.data(), &lwork, &ifail, 1);
            ASSERT_EQ(ifail, 0) << "L = " << l;
            EXPECT_LT(relative_error(y, as_pairs(along(as_complex(x), nd, l - 1, -1))), tolerance(n)) << "L = " << l;
            int need = 0;
            C06_WORK_NEED_BYREF(&ndim, nd.data(), &l, &need);
            EXPECT_EQ(work[0], need);
            all = along(all, nd, l - 1, -1);
        }
        std::vector<double> y = x;
        int ifail = 1;
        C06PJF("F", &ndim, nd.data(), &n, y.data(), work.data(), &lwork, &ifail, 1);
        ASSERT_EQ(ifail, 0);
        EXPECT_LT(relative_error(y, as_pairs(all)), tolerance(n)) << "NDIM = " << ndim;
        C06PJF("B", &ndim, nd.data(), &n, y.data(), work.data(), &lwork, &ifail, 1);
        EXPECT_LT(relative_error(y, x), tolerance(n));
    }
}

namespace {

// Sine, cosine and quarter-wave transforms against FFTW's real-to-real kinds, M sequences of distinct
// data at once, then back through the inverse.
TEST(FftwReferenceTrig, AllKindsAndTheirInverses) {
    struct Case {
        const char *name, *direct, *inverse;
        fftw_r2r_kind kind;
        int extra;      // values per sequence: N + extra
        double factor;  // ours = factor * FFTW / sqrt(N)
    };
    const Case cases[] = {{"sine", "", "", FFTW_RODFT00, -1, 1.0 / std::sqrt(2.0)},
                          {"cosine", "", "", FFTW_REDFT00, 1, 1.0 / std::sqrt(2.0)},
                          {"quarter sine", "F", "B", FFTW_RODFT01, 0, 0.5},
                          {"quarter sine", "B", "F", FFTW_RODFT10, 0, 1.0},
                          {"quarter cosine", "f", "B", FFTW_REDFT01, 0, 0.5},
                          {"quarter cosine", "B", "F", FFTW_REDFT10, 0, 1.0}};
    auto run = [](const Case &c, const char *direct, int m, int n, double *x, double *work, int *ifail) {
        const std::string name = c.name;
        if (name == "sine") C06RAF(&m, &n, x, work, ifail);
        else if (name == "cosine") C06RBF(&m, &n, x, work, ifail);
        else if (name == "quarter sine") C06RCF(direct, &m, &n, x, work, ifail, 1);
        else C06RDF(direct, &m, &n, x, work, ifail, 1);
    };
    const int m = 3;
    for (const Case &c : cases) {
        for (int n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 12, 15, 16, 23, 30, 64, 97, 100, 243, 1000, 4096}) {
            SCOPED_TRACE(std::string(c.name) + " " + c.direct + " N = " + std::to_string(n));
            const int len = n + c.extra;
            // FFTW's sine kind of length 0 and cosine kind of length 2 have no plan.
            const bool peer = len >= 1 && !(c.kind == FFTW_REDFT00 && len < 2);
            std::vector<double> ours(m * (n + 2), 0.0), want(m * len), work((n + 2) * m + 2 * n);
            for (int p = 0; p < m; ++p) {
                std::vector<double> x = random_reals(len, 31u * p + n), y(len);
                for (int j = 0; j < len; ++j) ours[p + m * j] = x[j];
                if (!peer) continue;
                fftw_plan plan = fftw_plan_r2r_1d(len, x.data(), y.data(), c.kind, FFTW_ESTIMATE);
                fftw_execute(plan);
                fftw_destroy_plan(plan);
                for (int j = 0; j < len; ++j) want[p + m * j] = y[j] * c.factor / std::sqrt(static_cast<double>(n));
            }
            const std::vector<double> original(ours.begin(), ours.begin() + m * len);
            int ifail = 1;
            run(c, c.direct, m, n, ours.data(), work.data(), &ifail);
            ASSERT_EQ(ifail, 0);
            EXPECT_EQ(work[0], (n + 2.0) * m + 2.0 * n);
            // The odd results of the sine and cosine transforms are running sums of N/2 transform
            // values, so their rounding grows like sqrt(N) eps rather than log N eps; that overtakes
            // the usual bound only for the longest sequences.
            const bool summed = c.kind == FFTW_RODFT00 || c.kind == FFTW_REDFT00;
            const double tol =
                summed ? std::max(tolerance(n), 1.7e-16 * std::sqrt(static_cast<double>(n))) : tolerance(n);
            const std::vector<double> got(ours.begin(), ours.begin() + m * len);
            if (peer) {
                EXPECT_LT(relative_error(got, want), tol);
            }
            run(c, c.inverse, m, n, ours.data(), work.data(), &ifail);
            EXPECT_LT(relative_error(std::vector<double>(ours.begin(), ours.begin() + m * len), original), tol);
        }
    }
}

TEST(FftwReference2D, AllDimensions) {
    const int nd[] = {48, 35}, ndim = 2, n = 48 * 35;
    const std::vector<double> x = random_reals(2 * n, 59u);
    std::vector<double> peer(2 * n), ours = x, work(2 * (n + 48 + 35));
    const int lwork = n + 48 + 35;
    // Column-major ND(1) x ND(2) is FFTW's row-major 35 x 48.
    fftw_plan plan = fftw_plan_dft_2d(35, 48, reinterpret_cast<fftw_complex *>(const_cast<double *>(x.data())),
                                      reinterpret_cast<fftw_complex *>(peer.data()), FFTW_BACKWARD, FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
    for (double &v : peer) v /= std::sqrt(static_cast<double>(n));
    int ifail = 1;
    C06PJF("B", &ndim, nd, &n, ours.data(), work.data(), &lwork, &ifail, 1);
    ASSERT_EQ(ifail, 0);
    EXPECT_LT(relative_error(ours, peer), tolerance(n));
}

} // namespace
