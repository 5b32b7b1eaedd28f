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

const Row kRows[] = {
    {"C06FAF", [](double v, bool whole) { auto x = data(kN, v, whole); std::vector<double> w(kN); int ifail = 1;
         C06FAF(x.data(), &kN, w.data(), &ifail); return ifail; }},
    {"C06FBF", [](double v, bool whole) { auto x = data(kN, v, whole); std::vector<double> w(kN); int ifail = 1;
         C06FBF(x.data(), &kN, w.data(), &ifail); return ifail; }},
    {"C06GBF", [](double v, bool whole) { auto x = data(kN, v, whole); int ifail = 1;
         C06GBF(x.data(), &kN, &ifail); return ifail; }},
    {"C06PCF", [](double v, bool whole) { auto x = data(2 * kN, v, whole); std::vector<double> w(4 * kN); int ifail = 1;
         C06PCF("F", x.data(), &kN, w.data(), &ifail, 1); return ifail; }},
    {"C06PFF", [](double v, bool whole) {
         const int ndim = 2, l = 2, nd[2] = {kM, kN}, n = kM * kN;
         int lwork = 0;
         C06_WORK_NEED_BYREF(&ndim, nd, &l, &lwork);
         auto x = data(2 * n, v, whole);
         std::vector<double> w(2 * static_cast<std::size_t>(lwork));
         int ifail = 1;
         C06PFF("B", &ndim, &l, nd, &n, x.data(), w.data(), &lwork, &ifail, 1);
         return ifail; }},
    {"C06PJF", [](double v, bool whole) {
         const int ndim = 2, nd[2] = {kM, kN}, n = kM * kN, lwork = n + kM + kN;
         auto x = data(2 * n, v, whole);
         std::vector<double> w(2 * lwork);
         int ifail = 1;
         C06PJF("F", &ndim, nd, &n, x.data(), w.data(), &lwork, &ifail, 1);
         return ifail; }},
    {"C06PPF", [](double v, bool whole) {
         auto x = data(kM * (kN + 2), v, whole); std::vector<double> w((kN + 2) * kM + 2 * kN); int ifail = 1;
         C06PPF("F", &kM, &kN, x.data(), w.data(), &ifail, 1); return ifail; }},
    {"C06PPF backward", [](double v, bool whole) {
         auto x = data(kM * (kN + 2), v, whole); std::vector<double> w((kN + 2) * kM + 2 * kN); int ifail = 1;
         C06PPF("B", &kM, &kN, x.data(), w.data(), &ifail, 1); return ifail; }},
    {"C06PRF", [](double v, bool whole) {
         auto x = data(2 * kM * kN, v, whole); std::vector<double> w(2 * (kM + 1) * kN); int ifail = 1;
         C06PRF("B", &kM, &kN, x.data(), w.data(), &ifail, 1); return ifail; }},
    {"C06PSF", [](double v, bool whole) {
         auto x = data(2 * kM * kN, v, whole); std::vector<double> w(2 * (kM + 1) * kN); int ifail = 1;
         char errbuf[200];
         C06PSF("F", kM, kN, x.data(), w.data(), errbuf, &ifail, 1, 200); return ifail; }},
    {"C06RAF", [](double v, bool whole) {
         auto x = data(kM * (kN + 2), v, whole); std::vector<double> w((kN + 2) * kM + 2 * kN); int ifail = 1;
         C06RAF(&kM, &kN, x.data(), w.data(), &ifail); return ifail; }},
    {"C06RBF", [](double v, bool whole) {
         auto x = data(kM * (kN + 2), v, whole); std::vector<double> w((kN + 2) * kM + 2 * kN); int ifail = 1;
         C06RBF(&kM, &kN, x.data(), w.data(), &ifail); return ifail; }},
    {"C06RCF", [](double v, bool whole) {
         auto x = data(kM * (kN + 2), v, whole); std::vector<double> w((kN + 2) * kM + 2 * kN); int ifail = 1;
         C06RCF("B", &kM, &kN, x.data(), w.data(), &ifail, 1); return ifail; }},
    {"C06RDF", [](double v, bool whole) {
         auto x = data(kM * (kN + 2), v, whole); std::vector<double> w((kN + 2) * kM + 2 * kN); int ifail = 1;
         C06RDF("F", &kM, &kN, x.data(), w.data(), &ifail, 1); return ifail; }},
};

struct Case {
    const Row *row;
    double value;
    bool whole;
};

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
         const int ndim = 2, l = 2, nd[2] = {3, 60}, n = 180;
         int lwork = 0;
         C06_WORK_NEED_BYREF(&ndim, nd, &l, &lwork);
         --lwork;
         std::vector<double> x(2 * n, 1.0), w(2 * static_cast<std::size_t>(lwork));
         int ifail = 1;
         C06PFF("F", &ndim, &l, nd, &n, x.data(), w.data(), &lwork, &ifail, 1);
         return ifail; }},
    {"C06PJF workspace one short", 5, [](double *, double *) {
         const int ndim = 2, nd[2] = {3, 60}, n = 180, lwork = n + 3 + 60 - 1;
         std::vector<double> x(2 * n, 1.0), w(2 * lwork);
         int ifail = 1;
         C06PJF("F", &ndim, nd, &n, x.data(), w.data(), &lwork, &ifail, 1);
         return ifail; }},
};

class HostileFourierSizes : public ::testing::TestWithParam<SizeRow> {};

TEST_P(HostileFourierSizes, EndInTheirExitLeavingTheDataAlone) {
    double cell[1] = {42.0}, work[2];
    EXPECT_EQ(GetParam().run(cell, work), GetParam().expected) << GetParam().routine;
    EXPECT_EQ(cell[0], 42.0);
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileFourierSizes, ::testing::ValuesIn(kSizeRows));

} // namespace
