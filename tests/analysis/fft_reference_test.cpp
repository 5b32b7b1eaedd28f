// Comparisons with FFTW: every transform kind on power-of-two, power-of-three and -five, mixed and prime
// lengths.  FFTW's transforms are unscaled; each comparison states the factor that relates the two.
#include <gtest/gtest.h>
#include <fftw3.h>

#include <cmath>
#include <cstring>

#include "fft_test_support.h"
#include "zek2/c06.h"

using fft_test::random_reals;
using fft_test::relative_error;
using fft_test::tolerance;

namespace {

const int kSizes[] = {2, 8, 64, 1024, 65536, 27, 729, 19683, 25, 625, 15625, 60, 720, 1000, 5040, 7, 23, 101, 1009,
                      4099};

std::string size_name(const ::testing::TestParamInfo<int> &info) { return "N" + std::to_string(info.param); }

class FftwReference : public ::testing::TestWithParam<int> {};

TEST_P(FftwReference, ComplexSequence) {
    const int n = GetParam();
    const std::vector<double> x = random_reals(2 * n, 41u + n);
    std::vector<double> peer(2 * n), ours = x, work(4 * n);
    fftw_plan plan = fftw_plan_dft_1d(n, reinterpret_cast<fftw_complex *>(const_cast<double *>(x.data())),
                                      reinterpret_cast<fftw_complex *>(peer.data()), FFTW_FORWARD, FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
    for (double &v : peer) v /= std::sqrt(static_cast<double>(n));
    int ifail = 1;
    C06PCF("F", ours.data(), &n, work.data(), &ifail, 1);
    ASSERT_EQ(ifail, 0);
    EXPECT_LT(relative_error(ours, peer), tolerance(n));
}

TEST_P(FftwReference, RealSequenceBothEngines) {
    const int n = GetParam();
    std::vector<double> x = random_reals(n, 43u + n);
    std::vector<double> spectrum(2 * (n / 2 + 1));
    fftw_plan plan = fftw_plan_dft_r2c_1d(n, x.data(), reinterpret_cast<fftw_complex *>(spectrum.data()), FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    for (double &v : spectrum) v *= scale;

    // The second engine: pairs, as FFTW stores them.
    std::vector<double> ours(n + 2, 0.0), work(3 * n);
    std::copy(x.begin(), x.end(), ours.begin());
    const int m = 1;
    int ifail = 1;
    C06PPF("F", &m, &n, ours.data(), work.data(), &ifail, 1);
    ASSERT_EQ(ifail, 0);
    ours.resize(spectrum.size());
    EXPECT_LT(relative_error(ours, spectrum), tolerance(n));

    // The first engine, where N's factors allow: packed Hermitian form.
    std::vector<double> packed = x, work1(n);
    ifail = 1;
    C06FAF(packed.data(), &n, work1.data(), &ifail);
    if (ifail != 0) return; // a prime factor above 19: checked in the failure tests
    std::vector<double> expected(n);
    for (int k = 0; 2 * k <= n; ++k) expected[k] = spectrum[2 * k];
    for (int k = 1; 2 * k < n; ++k) expected[n - k] = spectrum[2 * k + 1];
    EXPECT_LT(relative_error(packed, expected), tolerance(n));
}

TEST_P(FftwReference, ManyComplexSequences) {
    const int n = GetParam(), m = 4;
    if (static_cast<long>(n) * m > 300000) GTEST_SKIP() << "covered by the single-sequence comparison";
    const std::vector<double> x = random_reals(2 * static_cast<std::size_t>(n) * m, 47u + n);
    std::vector<double> peer(x.size()), ours = x, work(2 * static_cast<std::size_t>(m + 1) * n);
    fftw_plan plan = fftw_plan_many_dft(1, &n, m, reinterpret_cast<fftw_complex *>(const_cast<double *>(x.data())),
                                        nullptr, 1, n, reinterpret_cast<fftw_complex *>(peer.data()), nullptr, 1, n,
                                        FFTW_FORWARD, FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
    for (double &v : peer) v /= std::sqrt(static_cast<double>(n));
    int ifail = 1;
    C06PRF("F", &m, &n, ours.data(), work.data(), &ifail, 1);
    ASSERT_EQ(ifail, 0);
    EXPECT_LT(relative_error(ours, peer), tolerance(n));
}

INSTANTIATE_TEST_SUITE_P(Sizes, FftwReference, ::testing::ValuesIn(kSizes), size_name);

// Sine, cosine and quarter-wave transforms against FFTW's real-to-real kinds.
TEST(FftwReferenceTrig, AllKinds) {
    struct Case {
        const char *name;
        fftw_r2r_kind kind;
        int first;   // offset of x(first) in our layout's value 0
        int extra;   // FFTW length = N + extra
        double factor; // ours = factor * FFTW / sqrt(N)
    };
    const Case cases[] = {{"sine", FFTW_RODFT00, 1, -1, 1.0 / std::sqrt(2.0)},
                          {"cosine", FFTW_REDFT00, 0, 1, 1.0 / std::sqrt(2.0)},
                          {"quarter sine F", FFTW_RODFT01, 1, 0, 0.5},
                          {"quarter sine B", FFTW_RODFT10, 1, 0, 1.0},
                          {"quarter cosine F", FFTW_REDFT01, 0, 0, 0.5},
                          {"quarter cosine B", FFTW_REDFT10, 0, 0, 1.0}};
    for (const Case &c : cases) {
        for (int n : {2, 3, 8, 12, 30, 64, 97, 243, 1000, 4096}) {
            const int len = n + c.extra, m = 2;
            std::vector<double> x = random_reals(len, 53u + n), peer(len);
            fftw_plan plan = fftw_plan_r2r_1d(len, x.data(), peer.data(), c.kind, FFTW_ESTIMATE);
            fftw_execute(plan);
            fftw_destroy_plan(plan);
            std::vector<double> ours(m * (n + 2), 0.0), work((n + 2) * m + 2 * n);
            for (int j = 0; j < len; ++j) ours[m * j] = ours[m * j + 1] = x[j];
            int ifail = 1, mm = m;
            const std::string name = c.name;
            if (name == "sine") C06RAF(&mm, &n, ours.data(), work.data(), &ifail);
            else if (name == "cosine") C06RBF(&mm, &n, ours.data(), work.data(), &ifail);
            else if (name.rfind("quarter sine", 0) == 0) C06RCF(name.substr(13).c_str(), &mm, &n, ours.data(), work.data(), &ifail, 1);
            else C06RDF(name.substr(15).c_str(), &mm, &n, ours.data(), work.data(), &ifail, 1);
            ASSERT_EQ(ifail, 0) << c.name;
            std::vector<double> got(len), second(len);
            for (int j = 0; j < len; ++j) {
                got[j] = ours[m * j];
                second[j] = ours[m * j + 1];
                peer[j] *= c.factor / std::sqrt(static_cast<double>(n));
            }
            // The odd results of the sine and cosine transforms are running sums of N/2 transform
            // values, so their rounding grows like sqrt(N) eps rather than log N eps.
            const bool summed = c.kind == FFTW_RODFT00 || c.kind == FFTW_REDFT00;
            const double tol = tolerance(n) + (summed ? 2.5e-16 * std::sqrt(static_cast<double>(n)) : 0.0);
            EXPECT_LT(relative_error(got, peer), tol) << c.name << " N = " << n;
            EXPECT_EQ(got, second) << c.name << ": both sequences alike";
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
