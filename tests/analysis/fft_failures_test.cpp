// Failure exits of the public routines: IFAIL, the ERRBUF line, the message records, and X untouched.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "fft_test_support.h"
#include "zek2/c06.h"

namespace {

struct FailureCase {
    const char *label;
    // Calls a worker with IFAIL -13 (records only) and the given ERRBUF.
    std::function<void(double *x, double *work, char *errbuf, int *ifail)> call;
    int ierror;
    // The machine-readable line: name, IERR, exit number, value count, values (a DIRECT complaint
    // carries the letter as its one text value).
    const char *errbuf;
    const char *message;
};

const int kOne = 1, kTwo = 2, kThree = 3, kZero = 0, kTwelve = 12;
const int kNd23[] = {2, 3}, kNd20[] = {2, 0};

const FailureCase kCases[] = {
    {"FAF_N_le_1", [](double *x, double *w, char *e, int *f) { C06FAF_WORKER(x, 1, w, e, f, 200); }, 3, "C06FAF     3 99999     1                1", " ** On entry, N .le. 1: N =               1."},
    {"FAF_prime_23", [](double *x, double *w, char *e, int *f) { C06FAF_WORKER(x, 23, w, e, f, 200); }, 1, "C06FAF     1 99998     1               23", " ** At least one prime factor of N is greater than 19.\n    N =              23."},
    {"FBF_2_to_21", [](double *x, double *w, char *e, int *f) { C06FBF_WORKER(x, 1 << 21, w, e, f, 200); }, 2, "C06FBF     2 99997     1          2097152", " ** N has more than 20 prime factors.\n    N =         2097152."},
    {"GBF_N_0", [](double *x, double *, char *e, int *f) { C06GBF_WORKER(x, 0, e, f, 200); }, 1, "C06GBF     1 99999     1                0", " ** On entry, N .lt. 1: N =                0."},
    {"PCF_N_0", [](double *x, double *w, char *e, int *f) { C06PCF_WORKER("F", x, 0, w, e, f, 1, 200); }, 1, "C06PCF     1 99999     1                0", " ** On entry, N .lt. 1: N =                0."},
    {"PCF_direct", [](double *x, double *w, char *e, int *f) { C06PCF_WORKER("x", x, 4, w, e, f, 1, 200); }, 2, "C06PCF     2 99998     1 x", " ** x is an invalid value of DIRECT."},
    {"PFF_ndim", [](double *x, double *w, char *e, int *f) { C06PFF_WORKER("F", 0, 1, kNd23, 6, x, w, 99, e, f, 1, 200); }, 1, "C06PFF     1 99999     1                0", " ** On entry, NDIM .lt. 1: NDIM =                0."},
    {"PFF_L", [](double *x, double *w, char *e, int *f) { C06PFF_WORKER("F", 2, 3, kNd23, 6, x, w, 99, e, f, 1, 200); }, 2, "C06PFF     2 99998     1                3", " ** On entry, L .lt. 1 or L .gt. NDIM: L =                3."},
    {"PFF_direct", [](double *x, double *w, char *e, int *f) { C06PFF_WORKER("Q", 2, 1, kNd23, 6, x, w, 99, e, f, 1, 200); }, 3, "C06PFF     3 99997     1 Q", " ** Q is an invalid value of DIRECT."},
    {"PFF_ND", [](double *x, double *w, char *e, int *f) { C06PFF_WORKER("F", 2, 1, kNd20, 0, x, w, 99, e, f, 1, 200); }, 4, "C06PFF     4 99996     2                0                2", " ** ND(I) .lt. 1: ND(I) =            0 for I =            2."},
    {"PFF_product", [](double *x, double *w, char *e, int *f) { C06PFF_WORKER("F", 2, 1, kNd23, 5, x, w, 99, e, f, 1, 200); }, 5, "C06PFF     5 99995     2                5                6", " ** N must = product of the ND(I): N =            5, product =            6."},
    // The need of dimension 1 of 2 x 3 is (3 + 1) * 2 = 8: one less fails.
    {"PFF_lwork", [](double *x, double *w, char *e, int *f) { C06PFF_WORKER("F", 2, 1, kNd23, 6, x, w, 7, e, f, 1, 200); }, 6, "C06PFF     6 99994     2                7                8", " ** LWORK, =                7, must be at least                8."},
    {"PJF_ndim", [](double *x, double *w, char *e, int *f) { C06PJF_WORKER("F", 0, kNd23, 6, x, w, 99, e, f, 1, 200); }, 1, "C06PJF     1 99999     1                0", " ** NDIM .lt. 1: NDIM =                0."},
    {"PJF_direct", [](double *x, double *w, char *e, int *f) { C06PJF_WORKER("?", 2, kNd23, 6, x, w, 99, e, f, 1, 200); }, 2, "C06PJF     2 99998     1 ?", " ** ? is an invalid value of DIRECT."},
    {"PJF_ND", [](double *x, double *w, char *e, int *f) { C06PJF_WORKER("F", 2, kNd20, 0, x, w, 99, e, f, 1, 200); }, 3, "C06PJF     3 99997     2                0                2", " ** ND(I) .lt. 1: ND(I) =                0 for I =            2."},
    {"PJF_product", [](double *x, double *w, char *e, int *f) { C06PJF_WORKER("F", 2, kNd23, 7, x, w, 99, e, f, 1, 200); }, 4, "C06PJF     4 99996     2                7                6", " ** N = the product of the ND(I): N =            7, product =            6."},
    // All dimensions of 2 x 3: (3 + 1) * 2 + 3 = 11.
    {"PJF_lwork", [](double *x, double *w, char *e, int *f) { C06PJF_WORKER("B", 2, kNd23, 6, x, w, 10, e, f, 1, 200); }, 5, "C06PJF     5 99995     2               10               11", " ** LWORK, =               10, must be at least               11."},
    {"PPF_M", [](double *x, double *w, char *e, int *f) { C06PPF_WORKER("F", 0, 4, x, w, e, f, 1, 200); }, 1, "C06PPF     1 99999     1                0", " ** On entry, M .lt. 1: M =                0."},
    {"PPF_N", [](double *x, double *w, char *e, int *f) { C06PPF_WORKER("F", 1, -3, x, w, e, f, 1, 200); }, 2, "C06PPF     2 99998     1               -3", " ** On entry, N .lt. 1: N =               -3."},
    {"PPF_direct", [](double *x, double *w, char *e, int *f) { C06PPF_WORKER("Z", 1, 4, x, w, e, f, 1, 200); }, 3, "C06PPF     3 99997     1 Z", " ** Z is an invalid value of DIRECT."},
    {"PRF_M", [](double *x, double *w, char *e, int *f) { C06PRF_WORKER("F", 0, 4, x, w, e, f, 1, 200); }, 1, "C06PRF     1 99999     1                0", " ** On entry, M .lt. 1: M =                0."},
    {"PRF_direct", [](double *x, double *w, char *e, int *f) { C06PRF_WORKER(" ", 1, 4, x, w, e, f, 1, 200); }, 3, "C06PRF     3 99997     1  ", " **   is an invalid value of DIRECT."},
    {"PSF_M", [](double *x, double *w, char *e, int *f) { C06PSF("F", 0, 4, x, w, e, f, 1, 200); }, 1, "C06PSF     1 99999     1                0", " ** M .lt. 1: M =                0."},
    {"PSF_N", [](double *x, double *w, char *e, int *f) { C06PSF("F", 2, 0, x, w, e, f, 1, 200); }, 2, "C06PSF     2 99998     1                0", " ** N .lt. 1: N =                0."},
    {"RAF_M", [](double *x, double *w, char *e, int *f) { C06RAF_WORKER(0, 4, x, w, e, f, 200); }, 1, "C06RAF     1 99999     1                0", " ** On entry, M .lt. 1: M =                0."},
    {"RBF_N", [](double *x, double *w, char *e, int *f) { C06RBF_WORKER(1, 0, x, w, e, f, 200); }, 2, "C06RBF     2 99998     1                0", " ** On entry, N .lt. 1: N =                0."},
    {"RCF_direct", [](double *x, double *w, char *e, int *f) { C06RCF_WORKER("S", 1, 4, x, w, e, f, 1, 200); }, 3, "C06RCF     3 99997     1 S", " ** S is an invalid value of DIRECT."},
};

class FailureExits : public ::testing::TestWithParam<FailureCase> {};

TEST_P(FailureExits, ReportAndLeaveDataAlone) {
    const FailureCase &c = GetParam();
    // The one case of N = 2**21 needs an X that long, though nothing may touch it.
    const std::size_t length = std::string(c.label) == "FBF_2_to_21" ? std::size_t(1) << 21 : 64;
    std::vector<double> x(length, 0.25), work(64, -1.0);
    char errbuf[200];
    int ifail = -13;
    EXPECT_EQ(fft_test::host_text([&] { c.call(x.data(), work.data(), errbuf, &ifail); }), c.message);
    EXPECT_EQ(ifail, c.ierror);
    EXPECT_STREQ(errbuf, c.errbuf);
    EXPECT_TRUE(std::all_of(x.begin(), x.end(), [](double v) { return v == 0.25; }));
}

INSTANTIATE_TEST_SUITE_P(Routines, FailureExits, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<FailureCase> &info) { return std::string(info.param.label); });

// Through the fronts: IFAIL 1 is silent and soft, WORK is marked by the fronts that mark it, and a
// quarter-wave front (whose worker has no export) reports through its front alone.
TEST(FailureFronts, SoftSilentAndMarked) {
    std::vector<double> x(8, 1.0), work(8, 5.0);
    int ifail = 1;
    EXPECT_EQ(fft_test::host_text([&] { C06FAF(x.data(), &kOne, work.data(), &ifail); }), "");
    EXPECT_EQ(ifail, 3);
    EXPECT_EQ(work[0], -2139062144.0);
    EXPECT_EQ(work[1], 5.0);

    ifail = 1;
    C06RDF("T", &kOne, &kTwo, x.data(), work.data(), &ifail, 1);
    EXPECT_EQ(ifail, 3);
    ifail = 1;
    C06RDF("F", &kOne, &kZero, x.data(), work.data(), &ifail, 1);
    EXPECT_EQ(ifail, 2);

    // Marked as complex by LWORK elements before the check fails.
    std::vector<double> cwork(8, 5.0);
    ifail = 1;
    C06PFF("F", &kTwo, &kThree, kNd23, &kTwelve, x.data(), cwork.data(), &kTwo, &ifail, 1);
    EXPECT_EQ(ifail, 2);
    EXPECT_EQ(cwork[3], -2139062144.0);
    EXPECT_EQ(cwork[4], 5.0);
    EXPECT_TRUE(std::all_of(x.begin(), x.end(), [](double v) { return v == 1.0; }));
}

// The noisy soft request prints the records and the abnormal-exit lines.
TEST(FailureFronts, NoisySoftFailurePrints) {
    std::vector<double> x(4, 0.0), work(8);
    int ifail = -1;
    const std::string text = fft_test::host_text([&] { C06PCF("F", x.data(), &kZero, work.data(), &ifail, 1); });
    EXPECT_EQ(ifail, 1);
    EXPECT_NE(text.find(" ** On entry, N .lt. 1: N =                0."), std::string::npos);
    EXPECT_NE(text.find("ABNORMAL EXIT from ZEK Library routine C06PCF"), std::string::npos);
    EXPECT_EQ(text.find("MISMATCH"), std::string::npos);
}

} // namespace
