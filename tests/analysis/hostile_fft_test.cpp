// Hostile input for the Fourier transforms: every front meets NaN, +-Inf, the largest and the smallest
// numbers in one element or in all of its data, in arrays of exactly the declared length (the asan
// preset catches a write beyond them).  A transform hands on what it is given, so the outcome is
// success in bounded time with the data's length untouched beyond it; sizes that overflow the
// product of the dimensions and workspace one short end in their exits.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "zek2/c06.h"

namespace {

const double kValues[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL,
                          std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()};

// Data of LENGTH reals, ordinary values with the hostile one first or everywhere.
std::vector<double> data(std::size_t length, double v, bool whole) {
    std::vector<double> x(length);
    for (std::size_t i = 0; i < length; ++i) x[i] = whole ? v : std::cos(0.7 * static_cast<double>(i));
    x[0] = v;
    return x;
}

struct Row {
    const char *routine;
    // Runs the routine on hostile data and gives its IFAIL.
    std::function<int(double, bool)> run;
};

const int kN = 60;  // factors 2, 2, 3, 5: every pass kind of both engines meets the data
const int kM = 3;
const int kNd[2] = {kM, kN}, kNdim = 2, kSecond = 2, kMN = kM * kN;
const std::size_t kRealM = kM * (kN + 2), kRealWork = (kN + 2) * kM + 2 * kN;

// Hostile data of LENGTH reals and a workspace of WORK, handed to CALL with IFAIL 1.
template <class F> int with(std::size_t length, std::size_t work, double v, bool whole, F call) {
    std::vector<double> x = data(length, v, whole), w(work);
    int ifail = 1;
    call(x.data(), w.data(), &ifail);
    return ifail;
}

int need(int l) {
    int lwork = 0;
    C06_WORK_NEED_BYREF(&kNdim, kNd, &l, &lwork);
    return lwork;
}

const Row kRows[] = {
    {"C06FAF", [](double v, bool all) { return with(kN, kN, v, all, [](double *x, double *w, int *f) { C06FAF(x, &kN, w, f); }); }},
    {"C06FBF", [](double v, bool all) { return with(kN, kN, v, all, [](double *x, double *w, int *f) { C06FBF(x, &kN, w, f); }); }},
    {"C06GBF", [](double v, bool all) { return with(kN, 0, v, all, [](double *x, double *, int *f) { C06GBF(x, &kN, f); }); }},
    {"C06PCF", [](double v, bool all) { return with(2 * kN, 4 * kN, v, all, [](double *x, double *w, int *f) { C06PCF("F", x, &kN, w, f, 1); }); }},
    {"C06PFF", [](double v, bool all) {
         const int lwork = need(2);
         return with(2 * kMN, 2 * lwork, v, all, [&](double *x, double *w, int *f) { C06PFF("B", &kNdim, &kSecond, kNd, &kMN, x, w, &lwork, f, 1); }); }},
    {"C06PJF", [](double v, bool all) {
         const int lwork = kMN + kM + kN;
         return with(2 * kMN, 2 * lwork, v, all, [&](double *x, double *w, int *f) { C06PJF("F", &kNdim, kNd, &kMN, x, w, &lwork, f, 1); }); }},
    {"C06PPF", [](double v, bool all) { return with(kRealM, kRealWork, v, all, [](double *x, double *w, int *f) { C06PPF("F", &kM, &kN, x, w, f, 1); }); }},
    {"C06PPF backward", [](double v, bool all) { return with(kRealM, kRealWork, v, all, [](double *x, double *w, int *f) { C06PPF("B", &kM, &kN, x, w, f, 1); }); }},
    {"C06PRF", [](double v, bool all) { return with(2 * kMN, 2 * (kM + 1) * kN, v, all, [](double *x, double *w, int *f) { C06PRF("B", &kM, &kN, x, w, f, 1); }); }},
    {"C06PSF", [](double v, bool all) {
         return with(2 * kMN, 2 * (kM + 1) * kN, v, all, [](double *x, double *w, int *f) { char e[200]; C06PSF("F", kM, kN, x, w, e, f, 1, 200); }); }},
    {"C06RAF", [](double v, bool all) { return with(kRealM, kRealWork, v, all, [](double *x, double *w, int *f) { C06RAF(&kM, &kN, x, w, f); }); }},
    {"C06RBF", [](double v, bool all) { return with(kRealM, kRealWork, v, all, [](double *x, double *w, int *f) { C06RBF(&kM, &kN, x, w, f); }); }},
    {"C06RCF", [](double v, bool all) { return with(kRealM, kRealWork, v, all, [](double *x, double *w, int *f) { C06RCF("B", &kM, &kN, x, w, f, 1); }); }},
    {"C06RDF", [](double v, bool all) { return with(kRealM, kRealWork, v, all, [](double *x, double *w, int *f) { C06RDF("F", &kM, &kN, x, w, f, 1); }); }},
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
    std::function<int(double *, double *)> run;  // data (one real), work (two)
};

const SizeRow kSizeRows[] = {
    {"C06FAF N = 0", 3, [](double *x, double *w) { const int n = 0; int ifail = 1; C06FAF(x, &n, w, &ifail); return ifail; }},
    {"C06PCF N = 0", 1, [](double *x, double *w) { const int n = 0; int ifail = 1; C06PCF("F", x, &n, w, &ifail, 1); return ifail; }},
    {"C06PPF M = 0", 1, [](double *x, double *w) { const int m = 0, n = 4; int ifail = 1; C06PPF("F", &m, &n, x, w, &ifail, 1); return ifail; }},
    {"C06RAF N = 0", 2, [](double *x, double *w) { const int m = 1, n = 0; int ifail = 1; C06RAF(&m, &n, x, w, &ifail); return ifail; }},
    {"C06PFF product wraps to N", 5, [](double *x, double *w) {
         // 65536 * 65536 is 0 in 32 bits.
         const int ndim = 2, l = 1, nd[2] = {65536, 65536}, n = 0, lwork = 1;
         int ifail = 1;
         C06PFF("F", &ndim, &l, nd, &n, x, w, &lwork, &ifail, 1);
         return ifail; }},
    {"C06PJF product wraps to N", 4, [](double *x, double *w) {
         const int ndim = 3, nd[3] = {65536, 65536, 3}, n = 0, lwork = 1;
         int ifail = 1;
         C06PJF("F", &ndim, nd, &n, x, w, &lwork, &ifail, 1);
         return ifail; }},
    {"C06PFF workspace one short", 6, [](double *, double *) {
         const int lwork = need(2) - 1;
         return with(2 * kMN, 2 * lwork, 1.0, true, [&](double *x, double *w, int *f) { C06PFF("F", &kNdim, &kSecond, kNd, &kMN, x, w, &lwork, f, 1); }); }},
    {"C06PJF workspace one short", 5, [](double *, double *) {
         const int lwork = kMN + kM + kN - 1;
         return with(2 * kMN, 2 * lwork, 1.0, true, [&](double *x, double *w, int *f) { C06PJF("F", &kNdim, kNd, &kMN, x, w, &lwork, f, 1); }); }},
};

class HostileFourierSizes : public ::testing::TestWithParam<SizeRow> {};

TEST_P(HostileFourierSizes, EndInTheirExitLeavingTheDataAlone) {
    double cell[1] = {42.0}, work[2];
    EXPECT_EQ(GetParam().run(cell, work), GetParam().expected) << GetParam().routine;
    EXPECT_EQ(cell[0], 42.0);
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileFourierSizes, ::testing::ValuesIn(kSizeRows));

} // namespace
