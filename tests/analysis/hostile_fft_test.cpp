// Hostile input for the Fourier transforms: every front meets NaN, +-Inf, the largest and the smallest
// numbers in one element or in all of its data, in arrays of exactly the declared length (the asan
// preset catches a write beyond them).  A transform hands on what it is given, so the outcome is
// success in bounded time with the data's length untouched beyond it; sizes that overflow the
// product of the dimensions and workspace one short end in their exits.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "zek2/c06.h"

namespace {

const double kValues[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL,
                          std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()};

const int kN = 60;  // factors 2, 2, 3, 5: every pass kind of both engines meets the data
const int kM = 3;
const int kNd[2] = {kM, kN}, kNdim = 2, kSecond = 2, kMN = kM * kN;
const int kRealM = kM * (kN + 2), kRealWork = (kN + 2) * kM + 2 * kN;
const int kNeed2 = [] {
    int lwork = 0;
    C06_WORK_NEED_BYREF(&kNdim, kNd, &kSecond, &lwork);
    return lwork;
}();
const int kNeedAll = kMN + kM + kN;

// A routine with data of LENGTH reals and a workspace of WORK, called with IFAIL 1.
struct Row {
    const char *routine;
    int length, work;
    void (*call)(double *x, double *w, int *ifail);
    // Runs the routine on data whose first value, or every value, is V; gives its IFAIL.
    int run(double v, bool whole) const {
        std::vector<double> x(static_cast<std::size_t>(length)), w(static_cast<std::size_t>(work));
        for (std::size_t i = 0; i < x.size(); ++i) x[i] = whole ? v : std::cos(0.7 * static_cast<double>(i));
        x[0] = v;
        int ifail = 1;
        call(x.data(), w.data(), &ifail);
        return ifail;
    }
};

const Row kRows[] = {
    {"C06FAF", kN, kN, [](double *x, double *w, int *f) { C06FAF(x, &kN, w, f); }},
    {"C06FBF", kN, kN, [](double *x, double *w, int *f) { C06FBF(x, &kN, w, f); }},
    {"C06GBF", kN, 0, [](double *x, double *, int *f) { C06GBF(x, &kN, f); }},
    {"C06PCF", 2 * kN, 4 * kN, [](double *x, double *w, int *f) { C06PCF("F", x, &kN, w, f, 1); }},
    {"C06PFF", 2 * kMN, 2 * kNeed2, [](double *x, double *w, int *f) { C06PFF("B", &kNdim, &kSecond, kNd, &kMN, x, w, &kNeed2, f, 1); }},
    {"C06PJF", 2 * kMN, 2 * kNeedAll, [](double *x, double *w, int *f) { C06PJF("F", &kNdim, kNd, &kMN, x, w, &kNeedAll, f, 1); }},
    {"C06PPF", kRealM, kRealWork, [](double *x, double *w, int *f) { C06PPF("F", &kM, &kN, x, w, f, 1); }},
    {"C06PPF backward", kRealM, kRealWork, [](double *x, double *w, int *f) { C06PPF("B", &kM, &kN, x, w, f, 1); }},
    {"C06PRF", 2 * kMN, 2 * (kM + 1) * kN, [](double *x, double *w, int *f) { C06PRF("B", &kM, &kN, x, w, f, 1); }},
    {"C06PSF", 2 * kMN, 2 * (kM + 1) * kN, [](double *x, double *w, int *f) { char e[200]; C06PSF("F", kM, kN, x, w, e, f, 1, 200); }},
    {"C06RAF", kRealM, kRealWork, [](double *x, double *w, int *f) { C06RAF(&kM, &kN, x, w, f); }},
    {"C06RBF", kRealM, kRealWork, [](double *x, double *w, int *f) { C06RBF(&kM, &kN, x, w, f); }},
    {"C06RCF", kRealM, kRealWork, [](double *x, double *w, int *f) { C06RCF("B", &kM, &kN, x, w, f, 1); }},
    {"C06RDF", kRealM, kRealWork, [](double *x, double *w, int *f) { C06RDF("F", &kM, &kN, x, w, f, 1); }},
};

struct Case { const Row *row; double value; bool whole; };

std::vector<Case> all_cases() {
    std::vector<Case> cases;
    for (const Row &row : kRows)
        for (double v : kValues)
            for (bool whole : {false, true}) cases.push_back({&row, v, whole});
    return cases;
}

class HostileFourier : public ::testing::TestWithParam<Case> {};

TEST_P(HostileFourier, TransformsEndAndSucceed) {
    EXPECT_EQ(GetParam().row->run(GetParam().value, GetParam().whole), 0) << GetParam().row->routine;
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileFourier, ::testing::ValuesIn(all_cases()),
                         [](const ::testing::TestParamInfo<Case> &info) {
                             std::string name = std::string(info.param.row->routine) + "_" + std::to_string(info.index);
                             for (char &ch : name)
                                 if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
                             return name;
                         });

// Sizes: zero lengths, dimensions whose product wraps around in 32 bits, workspace one short.  The
// one-element arrays must not be touched.
struct SizeRow {
    const char *routine;
    int expected;
    void (*call)(double *x, double *w, int *ifail);  // data (one real), work (two)
};

// 65536 * 65536 is 0 in 32 bits.
const int kZero = 0, kOne = 1, kFour = 4, kWrap2[2] = {65536, 65536}, kWrap3[3] = {65536, 65536, 3}, kThree = 3;
const Row kShortPff = {"", 2 * kMN, 2 * (kNeed2 - 1), [](double *x, double *w, int *f) {
    const int lwork = kNeed2 - 1;
    C06PFF("F", &kNdim, &kSecond, kNd, &kMN, x, w, &lwork, f, 1); }};
const Row kShortPjf = {"", 2 * kMN, 2 * (kNeedAll - 1), [](double *x, double *w, int *f) {
    const int lwork = kNeedAll - 1;
    C06PJF("F", &kNdim, kNd, &kMN, x, w, &lwork, f, 1); }};

const SizeRow kSizeRows[] = {
    {"C06FAF N = 0", 3, [](double *x, double *w, int *f) { C06FAF(x, &kZero, w, f); }},
    {"C06PCF N = 0", 1, [](double *x, double *w, int *f) { C06PCF("F", x, &kZero, w, f, 1); }},
    {"C06PPF M = 0", 1, [](double *x, double *w, int *f) { C06PPF("F", &kZero, &kFour, x, w, f, 1); }},
    {"C06RAF N = 0", 2, [](double *x, double *w, int *f) { C06RAF(&kOne, &kZero, x, w, f); }},
    {"C06PFF product wraps to N", 5, [](double *x, double *w, int *f) { C06PFF("F", &kNdim, &kOne, kWrap2, &kZero, x, w, &kOne, f, 1); }},
    {"C06PJF product wraps to N", 4, [](double *x, double *w, int *f) { C06PJF("F", &kThree, kWrap3, &kZero, x, w, &kOne, f, 1); }},
    {"C06PFF workspace one short", 6, [](double *, double *, int *f) { *f = kShortPff.run(1.0, true); }},
    {"C06PJF workspace one short", 5, [](double *, double *, int *f) { *f = kShortPjf.run(1.0, true); }},
};

class HostileFourierSizes : public ::testing::TestWithParam<SizeRow> {};

TEST_P(HostileFourierSizes, EndInTheirExitLeavingTheDataAlone) {
    double cell[1] = {42.0}, work[2];
    int ifail = 1;
    GetParam().call(cell, work, &ifail);
    EXPECT_EQ(ifail, GetParam().expected) << GetParam().routine;
    EXPECT_EQ(cell[0], 42.0);
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileFourierSizes, ::testing::ValuesIn(kSizeRows));

} // namespace
