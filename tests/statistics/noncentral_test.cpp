// The non-central lower tails against sums of the same Poisson mixtures evaluated by mpmath at 40
// digits (betainc and gammainc, regularised), then the two layers' failures.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "zek2/g01.h"
#include "zek2/messages.h"

namespace {

enum Kind { kT, kChi, kF, kBeta };

// x, then the distribution's parameters (df or a, b, lambda), and the mpmath value.
struct Case { Kind kind; double x, a, b, c, want; };

TEST(NonCentral, AgreesWithHighPrecisionSums) {
    const Case cases[] = {
        {kT, 2.0, 10.0, 1.0, 0, 0.80761156253037526203},       {kT, 0.5, 3.0, 2.0, 0, 0.065478985564616801911},
        {kT, -1.0, 5.0, 0.5, 0, 0.082444091056723458307},      {kT, 4.0, 1.0, 3.0, 0, 0.46677835877261204759},
        {kT, 15.0, 25.0, 12.0, 0, 0.89048616799410504187},     {kT, 1.0, 100.0, 0.0, 0, 0.8401379221079383198},
        {kChi, 2.0, 3.0, 1.0, 0, 0.30825250766485323554},      {kChi, 10.0, 4.0, 8.0, 0, 0.43001736544548438592},
        {kChi, 0.5, 0.0, 2.0, 0, 0.45426290113775820691},      {kChi, 150.0, 10.0, 100.0, 0, 0.96719790078303249455},
        {kChi, 1.0, 1.0, 0.0, 0, 0.68268949213708589717},      {kChi, 800.0, 50.0, 700.0, 0, 0.82413431798004895949},
        {kF, 2.0, 3.0, 10.0, 1.0, 0.72442475367565285425},     {kF, 0.8, 5.0, 20.0, 4.0, 0.15961271398023212318},
        {kF, 5.0, 10.0, 2.0, 30.0, 0.4616138117858202628},
        // beyond 1e6 denominator degrees the chi-squared limit: its own value, 3e-7 from the F
        {kF, 1.5, 3.0, 2e6, 2.0, 0.54089538922152776828},
        {kBeta, 0.3, 2.0, 3.0, 1.0, 0.26643631261584927888},   {kBeta, 0.9, 10.0, 1.5, 50.0, 0.065911528639199793579},
        {kBeta, 0.05, 0.5, 4.0, 0.0, 0.46540785173875506787},  {kBeta, 0.5, 30.0, 30.0, 200.0, 9.3737593995414465404e-13},
    };
    for (const Case &c : cases) {
        ZekFail fail{};
        const double got = c.kind == kT     ? g01gbc(c.x, c.a, c.b, 0.0, 1000, &fail)
                           : c.kind == kChi ? g01gcc(c.x, c.a, c.b, 0.0, 1000, &fail)
                           : c.kind == kF   ? g01gdc(c.x, c.a, c.b, c.c, 0.0, 1000, &fail)
                                            : g01gec(c.x, c.a, c.b, c.c, 0.0, 1000, &fail);
        EXPECT_EQ(fail.code, 0) << fail.message;
        EXPECT_NEAR(got, c.want, 1e-12 * c.want) << c.kind << " x " << c.x << " a " << c.a << " b " << c.b;
    }
}

TEST(NonCentral, FailuresInBothLayers) {
    struct Row { const char *what; double (*call)(ZekFail *); int code; const char *text; };
    const Row rows[] = {
        {"t df", [](ZekFail *f) { return g01gbc(1.0, 0.0, 1.0, 0.0, 10, f); }, ZE_REAL_ARG_LE, "df"},
        {"t maxit", [](ZekFail *f) { return g01gbc(1.0, 2.0, 1.0, 0.0, 0, f); }, ZE_INT_ARG_LT, "max_iter"},
        {"t series", [](ZekFail *f) { return g01gbc(1.0, 2.0, 30.0, 0.0, 3, f); }, ZE_SERIES, nullptr},
        {"t too small", [](ZekFail *f) { return g01gbc(-30.0, 2.0, 30.0, 0.0, 1000, f); }, ZE_PROBABILITY, nullptr},
        {"chi both zero", [](ZekFail *f) { return g01gcc(1.0, 0.0, 0.0, 0.0, 10, f); }, ZE_REAL_ARG_CONS, "lambda > 0.0 if df = 0.0"},
        {"chi x", [](ZekFail *f) { return g01gcc(-1.0, 1.0, 0.0, 0.0, 10, f); }, ZE_REAL_ARG_LT, "x"},
        {"F df1", [](ZekFail *f) { return g01gdc(1.0, 2e6, 3.0, 1.0, 0.0, 10, f); }, ZE_REAL_ARG_CONS, "0.0 < df1 <= 1.0e6"},
        {"beta lambda", [](ZekFail *f) { return g01gec(0.5, 1.0, 1.0, 2000.0, 0.0, 10, f); }, ZE_REAL_ARG_CONS, "-2.0*log(X02AMC)"},
        {"beta conv", [](ZekFail *f) { return g01gec(0.5, 1.0, 1.0, 1000.0, 0.0, 2, f); }, ZE_CONV, nullptr},
    };
    for (const Row &r : rows) {
        ZekFail fail{};
        const double v = r.call(&fail);
        EXPECT_EQ(fail.code, r.code) << r.what << ": " << fail.message;
        if (r.text != nullptr) {
            EXPECT_NE(std::string(fail.message).find(r.text), std::string::npos) << r.what << ": " << fail.message;
        }
        EXPECT_TRUE(v >= 0.0 && v <= 1.0) << r.what;
    }
    // The IFAIL layer: soft failures return their code and the partial or zero value.
    const double x = 1.0, df0 = 0.0, lam0 = 0.0, tol = 0.0, big = 2e6, three = 3.0;
    const int maxit = 10, two = 2;
    int ifail = 1;
    EXPECT_EQ(G01GCF(&x, &df0, &lam0, &tol, &maxit, &ifail), 0.0);
    EXPECT_EQ(ifail, 2);
    ifail = 1;
    EXPECT_EQ(G01GDF(&x, &big, &three, &x, &tol, &maxit, &ifail), 0.0);
    EXPECT_EQ(ifail, 1);
    const double half = 0.5, lam = 1000.0;
    ifail = 1;
    const double partial = G01GEF(&half, &x, &x, &lam, &tol, &two, &ifail);
    EXPECT_EQ(ifail, 2);
    EXPECT_TRUE(partial >= 0.0 && partial <= 1.0);
    ifail = 1;
    EXPECT_NEAR(G01GBF(&x, &three, &df0, &tol, &maxit, &ifail), g01ebc(Zek_LowerTail, 1.0, 3.0, nullptr), 1e-14);
    EXPECT_EQ(ifail, 0);
}

} // namespace
