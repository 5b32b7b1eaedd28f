// Comparisons with FFTW, whose transforms are unscaled; each comparison states the factor that relates
// the two.  The sine, cosine and quarter-wave transforms are checked here only, with their inverses.
#include <gtest/gtest.h>
#include <fftw3.h>

#include <cmath>
#include <string>

#include "fft_test_support.h"
#include "zek2/c06.h"

using fft_test::random_reals;
using fft_test::relative_error;
using fft_test::tolerance;

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
            // values, so their rounding grows like sqrt(N) eps rather than log N eps.
            const bool summed = c.kind == FFTW_RODFT00 || c.kind == FFTW_REDFT00;
            const double tol = tolerance(n) + (summed ? 2.5e-16 * std::sqrt(static_cast<double>(n)) : 0.0);
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
