// Distribution functions against high-precision values (far tails included), the non-central tails
// against 40-digit sums of their Poisson mixtures (mpmath betainc and gammainc, regularised), the
// bivariate normal against 30-digit values of the integral of phi(u) Phi((y - rho u)/sqrt(1 - rho^2)),
// the ratio of quadratic forms behind the Durbin-Watson bounds against closed forms, deviates as
// inverses and against 50-digit inverses, and the failure exits of both layers.  The multivariate normal
// rectangle probability against closed forms: independent variables (a product of normal tails), the
// orthant of three variables (1/8 plus the arcsines over 4 pi), the equicorrelated orthant with rho = 1/2
// (1/(n+1)), the bivariate routine, and equicorrelated tails against the one-dimensional integral over
// the common factor.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "zek2/g01.h"
#include "zek2/messages.h"

namespace {

enum Kind { kNormal, kStudent, kChi, kF, kBeta, kGamma };
constexpr int L = Zek_LowerTail, U = Zek_UpperTail, S = Zek_TwoTailSignif, C = Zek_TwoTailConfid;

struct Reference { Kind kind; int tail; double x, a, b, value; };
const Reference kReference[] = {
#include "distribution_reference.inc"
};

double evaluate(const Reference &r, ZekFail *fail) {
    switch (r.kind) {
    case kNormal: return g01eac(r.tail, r.x, fail);
    case kStudent: return g01ebc(r.tail, r.x, r.a, fail);
    case kChi: return g01ecc(r.tail, r.x, r.a, fail);
    case kF: return g01edc(r.tail, r.x, r.a, r.b, fail);
    case kGamma: return g01efc(r.tail, r.x, r.a, r.b, fail);
    case kBeta: {
        double p = 0, q = 0, pdf = 0;
        g01eec(r.x, r.a, r.b, 0.0, &p, &q, &pdf, fail);
        return r.tail == L ? p : q;
    }
    }
    return 0.0;
}

TEST(DistributionTails, AgreeWithHighPrecisionValuesDownToTheFarTails) {
    const auto check = [](const Reference &r, double allowed) {
        ZekFail fail{};
        const double v = evaluate(r, &fail);
        ASSERT_EQ(fail.code, 0) << fail.message;
        const double scale = std::fabs(r.value) > 0.0 ? std::fabs(r.value) : 1.0;
        EXPECT_LE(std::fabs(v - r.value) / scale, allowed)
            << r.kind << " tail " << r.tail << " x " << r.x << " a " << r.a << " b " << r.b << " got " << v;
    };
    // Relative error; parameters above 100 allow more (sqrt(a + b) growth), and the error function itself
    // gives about 1.2e-13 at x = 37.
    for (const Reference &r : kReference) {
        check(r, (r.a > 100.0 || r.b > 100.0) ? 2e-12 : (std::fabs(r.value) < 1e-250 ? 2e-13 : 5e-14));
    }
    // The parameters of 20000 and more leave the continued fraction of the beta ratio its own few
    // units of 1e-15; everything else is held to a few rounding errors.
    struct Row { Kind kind; int tail; double x, a, b, value, allowed; };
    const Row rows[] = {
#include "far_tail_reference.inc"
    };
    for (const Row &r : rows) check({r.kind, r.tail, r.x, r.a, r.b, r.value}, r.allowed);
    const struct { int tail; double value; } at_zero[] = {{L, 0.5}, {U, 0.5}, {S, 1.0}, {C, 0.0}};
    for (const auto &r : at_zero) EXPECT_EQ(g01eac(r.tail, 0.0, nullptr), r.value) << r.tail;
    const double x = 1.7;
    int ifail = 0;
    EXPECT_EQ(G01EAF("u", &x, &ifail, 1), g01eac(U, x, nullptr));
    EXPECT_EQ(G01EAF("C", &x, &ifail, 1), g01eac(C, x, nullptr));
    EXPECT_EQ(ifail, 0);
}

TEST(DistributionTails, NonCentralAgreeWithHighPrecisionSums) {
    // x, then the distribution's parameters (df or a, b, lambda), and the mpmath value.
    const struct { Kind kind; double x, a, b, c, want; } cases[] = {
        {kStudent, 2.0, 10.0, 1.0, 0, 0.80761156253037526203},  {kStudent, 0.5, 3.0, 2.0, 0, 0.065478985564616801911},
        {kStudent, -1.0, 5.0, 0.5, 0, 0.082444091056723458307}, {kStudent, 4.0, 1.0, 3.0, 0, 0.46677835877261204759},
        {kStudent, 15.0, 25.0, 12.0, 0, 0.89048616799410504187}, {kStudent, 1.0, 100.0, 0.0, 0, 0.8401379221079383198},
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
    for (const auto &c : cases) {
        ZekFail fail{};
        const double got = c.kind == kStudent ? g01gbc(c.x, c.a, c.b, 0.0, 1000, &fail)
                           : c.kind == kChi   ? g01gcc(c.x, c.a, c.b, 0.0, 1000, &fail)
                           : c.kind == kF     ? g01gdc(c.x, c.a, c.b, c.c, 0.0, 1000, &fail)
                                              : g01gec(c.x, c.a, c.b, c.c, 0.0, 1000, &fail);
        EXPECT_EQ(fail.code, 0) << fail.message;
        EXPECT_NEAR(got, c.want, 1e-12 * c.want) << c.kind << " x " << c.x << " a " << c.a << " b " << c.b;
    }
}

TEST(DistributionTails, BivariateNormalAgreesWithHighPrecisionValuesAndClosedForms) {
    const struct { double x, y, rho, want; } cases[] = {
        {0.5, -0.3, 0.4, 0.31712692828616510977},    {1.2, 0.7, -0.6, 0.6452358404500927961},
        {-2.0, -1.5, 0.95, 0.022100008764184882795}, {-3.0, -3.0, 0.999, 0.0012708810536105265583},
        {2.0, 1.9, -0.99, 0.94853330823581898757},   {-8.0, -7.0, 0.5, 2.216430192436399268e-19},
        {0.3, 0.3, 0.9999, 0.61575965554343222023}};
    for (const auto &c : cases) {
        ZekFail fail{};
        EXPECT_NEAR(g01hac(c.x, c.y, c.rho, &fail), c.want, 1e-13 * c.want) << c.x << " " << c.y << " " << c.rho;
        EXPECT_EQ(fail.code, 0);
        EXPECT_NEAR(g01hac(c.y, c.x, c.rho, nullptr), c.want, 1e-13 * c.want);  // symmetric in x and y
    }
    // P(X <= 0, Y <= 0) = 1/4 + asin(rho)/(2 pi); rho = +-1 and 0 in closed form.
    for (double rho : {-0.999999, -0.5, 0.25, 0.9, 0.999999}) {
        EXPECT_NEAR(g01hac(0.0, 0.0, rho, nullptr), 0.25 + std::asin(rho) / (2.0 * M_PI), 1e-15) << rho;
    }
    const double px = g01eac(L, 0.7, nullptr), py = g01eac(L, -0.2, nullptr);
    EXPECT_EQ(g01hac(0.7, -0.2, 1.0, nullptr), py);
    EXPECT_NEAR(g01hac(0.7, -0.2, -1.0, nullptr), px + py - 1.0, 1e-16);
    EXPECT_NEAR(g01hac(0.7, -0.2, 0.0, nullptr), px * py, 1e-16);
}

TEST(DistributionTails, DurbinWatsonRatioOfQuadraticFormsAndBounds) {
    // Two terms: P(|z2/z1| <= sqrt(-c1/c2)) = (2/pi) atan(sqrt(-c1/c2)); two pairs: chi-squared on 2
    // each, P(X1/X2 >= r) = 1/(1 + r).
    struct Case { int m; double lambda[4], d, want; };
    const Case cases[] = {{2, {1, 3}, 1.5, 1.0 / 3.0}, {2, {1, 3}, 2.0, 0.5}, {2, {0.2, 3.5}, 3.0, 2.0 / M_PI * std::atan(std::sqrt(2.8 / 0.5))},
                          {4, {1, 1, 3, 3}, 1.5, 0.25}, {4, {1, 1, 3, 3}, 2.5, 0.75}, {4, {1, 1, 3, 3}, 0.5, 0.0}};
    for (const Case &c : cases) EXPECT_NEAR(H_DW_TAIL(&c.m, c.lambda, &c.d), c.want, 1e-13) << c.m << " " << c.d;
    const int n = 20, ip = 3, bad = 20;
    double work[20], pdl = -1, pdu = -1, d = 1.2;
    int ifail = -1;
    G01EPF(&n, &ip, &d, &pdl, &pdu, work, &ifail);
    EXPECT_EQ(ifail, 0);
    EXPECT_TRUE(0.0 < pdu && pdu < pdl && pdl < 1.0) << pdu << " " << pdl;
    ifail = 1;
    G01EPF(&n, &bad, &d, &pdl, &pdu, work, &ifail);
    EXPECT_EQ(ifail, 1);
}

TEST(Deviates, AgreeWithHighPrecisionInverses) {
    // The normal: mpmath at 50 digits (sqrt(2) erfinv(2p - 1), or Newton on log(erfc(x/sqrt 2)/2) =
    // log min(p, 1 - p) in the tails, as tools/normal_deviate_fit.py does) at the exact doubles below:
    // both sides of |p - 1/2| = 0.3 and 0.42, the tail down to DBL_MIN, and subnormal probabilities.
    const struct { double p, x; } rows[] = {
        {0.5000000001, 2.5066284820303539022e-10}, {0.25, -0.6744897501960817432},
        {0.2, -0.84162123357291416552},             {0.7, 0.52440051270804065631},
        {0.8, 0.8416212335729143638},               {0.8000000000000002, 0.84162123357291476037},
        {0.85, 1.0364333894937894845},              {0.92, 1.4050715603096328248},
        {0.08, -1.4050715603096325447},             {0.0799, -1.4057445261592085559},
        {0.9, 1.2815515655446005935},               {1e-05, -4.2648907939228246102},
        {0.99999, 4.2648907939238407699},           {1e-20, -9.2623400897984075796},
        {1e-100, -21.273453560965324294},           {1e-300, -37.047096299361199237},
        {2.2250738585072014e-308, -37.519379347144499821}, {1e-310, -37.663060331949523732},
        {5e-324, -38.467405617144346251},           {0.9999999999999999, 8.2095361516013868556},
    };
    for (const auto &r : rows) {
        const double x = G01FAZ(&r.p);
        EXPECT_LE(std::fabs(x - r.x), 6e-16 * std::fabs(r.x)) << "p " << r.p << " got " << x;
    }
    // The chi-squared: 50-digit bisection on the regularised incomplete gamma (upper tails from 1 - p of
    // the double p): small and huge shapes, tails to 1e-200, p near 1, and a root below the subnormal
    // range, which rounds to zero.
    // tol looser where x ~ p^(2/df) magnifies the probability's error
    const struct { double p, df, x, tol; } chi[] = {
               {1e-10, 1.0, 1.5707963267948967e-20, 1e-13},   {1e-200, 500000.0, 4.7039892766937399e+5, 1e-14},
               {0.05, 0.1, 1.1147750963757564e-26, 1e-12},    {0.3, 1000.0, 9.7607359125777414e+2, 1e-14},
               {1e-100, 4.0, 2.8284271247461901e-50, 1e-13},  {1e-30, 10000.0, 8.4645442978975565e+3, 1e-14},
               {0.9999999999990905, 10.0, 7.8682247617777473e+1, 1e-13},
               {0.999, 200000.0, 2.0196013558391845e+5, 1e-14}, {0.75, 0.3, 2.0172956986209584e-1, 1e-14},
               {1e-300, 0.5, 0.0, 0.0}};
    for (const auto &c : chi) {
        ZekFail fail{};
        EXPECT_NEAR(g01fcc(c.p, c.df, &fail), c.x, c.tol * c.x) << "p " << c.p << " df " << c.df;
        EXPECT_EQ(fail.code, 0) << c.p << " " << c.df;
    }
}

TEST(Deviates, InvertTheDistributionFunctions) {
    for (double p : {1e-300, 1e-100, 1e-10, 0.01, 0.3, 0.5, 0.77, 0.999999}) {
        // Below 1e-100 the deviates of one degree of freedom underflow; only the normal goes there.
        const bool far = p < 1e-100;
        ZekFail fail{};
        const double x = g01fac(L, p, &fail);
        ASSERT_EQ(fail.code, 0);
        EXPECT_NEAR(g01eac(L, x, nullptr) / p, 1.0, 1e-13) << p;
        EXPECT_EQ(g01fac(U, p, nullptr), -x);
        for (double df : {1.0, 2.5, 30.0, 5000.0}) {
            if (far && df < 30.0) continue;
            const double t = g01fbc(L, p, df, &fail);
            ASSERT_EQ(fail.code, 0);
            EXPECT_NEAR(g01ebc(L, t, df, nullptr) / p, 1.0, 1e-12) << p << " " << df;
            const double c = g01fcc(p, df, &fail);
            ASSERT_EQ(fail.code, 0) << fail.message;
            EXPECT_NEAR(g01ecc(L, c, df, nullptr) / p, 1.0, 1e-12) << p << " " << df;
            const double f = g01fdc(p, df, 7.0, &fail);
            ASSERT_EQ(fail.code, 0);
            EXPECT_NEAR(g01edc(L, f, df, 7.0, nullptr) / p, 1.0, 1e-12) << p << " " << df;
            const double g = g01ffc(p, df, 3.0, 0.0, &fail);
            EXPECT_NEAR(g01efc(L, g, df, 3.0, nullptr) / p, 1.0, 1e-12) << p << " " << df;
            const double bx = g01fec(p, df, 2.0, 0.0, &fail);
            double bp = 0, bq = 0, pdf = 0;
            g01eec(bx, df, 2.0, 0.0, &bp, &bq, &pdf, nullptr);
            EXPECT_NEAR(bp / p, 1.0, 1e-11) << p << " " << df;  // x near 1: the condition of I_x
        }
    }
    EXPECT_EQ(g01fac(L, 0.5, nullptr), 0.0);
    // The two-tailed forms halve the probability.
    EXPECT_NEAR(g01fac(S, 0.05, nullptr), 1.959963984540054, 1e-15);
    EXPECT_NEAR(g01fac(C, 0.95, nullptr), 1.959963984540054, 1e-15);
    EXPECT_NEAR(g01fbc(S, 0.05, 10.0, nullptr), 2.2281388519862747, 1e-14);  // mpmath findroot on betainc
    EXPECT_NEAR(g01fbc(L, 0.975, 1.0, nullptr), 12.706204736174705, 1e-12);
}

TEST(DistributionFailures, RaiseTheirCodesInBothLayers) {
    // A text starting "ZE_" is the whole message; any other is a piece of it.  Argument exits return 0;
    // the soft ones (series, probability, convergence) may return their partial value.
    struct Row { const char *name; double (*call)(ZekFail *); int code; const char *text; bool zero; };
    const Row rows[] = {
        {"tail", [](ZekFail *f) { return g01eac(1333, 1.0, f); }, ZE_BAD_PARAM, "ZE_BAD_PARAM:\n  On entry, parameter tail had an illegal value.", true},
        {"chi two-tailed", [](ZekFail *f) { return g01ecc(S, 1.0, 2.0, f); }, ZE_BAD_PARAM, nullptr, true},
        {"t df", [](ZekFail *f) { return g01ebc(L, 1.0, 0.5, f); }, ZE_REAL_ARG_LT, "ZE_REAL_ARG_LT:\n  On entry, df must not be less than 1.0: df = 0.5.", true},
        {"p zero", [](ZekFail *f) { return g01fac(L, 0.0, f); }, ZE_REAL_ARG_LE, nullptr, true},
        {"p one", [](ZekFail *f) { return g01fbc(L, 1.0, 3.0, f); }, ZE_REAL_ARG_GE, nullptr, true},
        {"p nan", [](ZekFail *f) { return g01fcc(NAN, 3.0, f); }, ZE_REAL_ARG_LE, nullptr, true},
        {"chi x", [](ZekFail *f) { return g01ecc(L, -1.0, 2.0, f); }, ZE_REAL_ARG_LT, nullptr, true},
        {"gamma b", [](ZekFail *f) { return g01efc(L, 1.0, 2.0, 0.0, f); }, ZE_REAL_ARG_LE, nullptr, true},
        {"beta a", [](ZekFail *f) { return g01fec(0.5, 2e6, 1.0, 0.0, f); }, ZE_REAL_ARG_CONS, "ZE_REAL_ARG_CONS:\n  On entry, a = 2e+06. \n  This parameter must satisfy 0.0 < a <= 1.0e6.", true},
        {"F df2", [](ZekFail *f) { return g01edc(U, 1.0, 2.0, -3.0, f); }, ZE_REAL_ARG_LE, nullptr, true},
        {"bivariate rho", [](ZekFail *f) { return g01hac(0.0, 0.0, 1.5, f); }, ZE_REAL_ARG_CONS, "-1.0 <= rho <= 1.0", true},
        {"nc t df", [](ZekFail *f) { return g01gbc(1.0, 0.0, 1.0, 0.0, 10, f); }, ZE_REAL_ARG_LE, "df", true},
        {"nc t maxit", [](ZekFail *f) { return g01gbc(1.0, 2.0, 1.0, 0.0, 0, f); }, ZE_INT_ARG_LT, "max_iter", true},
        {"nc t series", [](ZekFail *f) { return g01gbc(1.0, 2.0, 30.0, 0.0, 3, f); }, ZE_SERIES, nullptr, false},
        {"nc t too small", [](ZekFail *f) { return g01gbc(-30.0, 2.0, 30.0, 0.0, 1000, f); }, ZE_PROBABILITY, nullptr, false},
        {"nc chi both zero", [](ZekFail *f) { return g01gcc(1.0, 0.0, 0.0, 0.0, 10, f); }, ZE_REAL_ARG_CONS, "lambda > 0.0 if df = 0.0", true},
        {"nc chi x", [](ZekFail *f) { return g01gcc(-1.0, 1.0, 0.0, 0.0, 10, f); }, ZE_REAL_ARG_LT, "x", true},
        {"nc F df1", [](ZekFail *f) { return g01gdc(1.0, 2e6, 3.0, 1.0, 0.0, 10, f); }, ZE_REAL_ARG_CONS, "0.0 < df1 <= 1.0e6", true},
        {"nc beta lambda", [](ZekFail *f) { return g01gec(0.5, 1.0, 1.0, 2000.0, 0.0, 10, f); }, ZE_REAL_ARG_CONS, "-2.0*log(X02AMC)", true},
        {"nc beta conv", [](ZekFail *f) { return g01gec(0.5, 1.0, 1.0, 1000.0, 0.0, 2, f); }, ZE_CONV, nullptr, false},
    };
    for (const Row &r : rows) {
        ZekFail fail{};
        const double v = r.call(&fail);
        EXPECT_EQ(fail.code, r.code) << r.name << ": " << fail.message;
        const std::string text = r.text != nullptr ? r.text : "";
        if (text.rfind("ZE_", 0) == 0) {
            EXPECT_EQ(fail.message, text) << r.name;
        } else {
            EXPECT_NE(std::string(fail.message).find(text), std::string::npos) << r.name << ": " << fail.message;
        }
        EXPECT_TRUE(r.zero ? v == 0.0 : v >= 0.0 && v <= 1.0) << r.name << " " << v;
    }
    const double x = 1.0, bad = 1.5, a = 2.0, b = 3.0, big = 2e6, tol = 0.0, tiny = 1e-6, huge = 1e6, zero = 0.0;
    double p = -1, q = -1, pdf = -1;
    int ifail = 1;
    EXPECT_EQ(G01EAF("X", &x, &ifail, 1), 0.0);
    EXPECT_EQ(ifail, 1);
    struct Beta { const double *x, *a, *b; int ifail; };
    for (const Beta &r : {Beta{&bad, &a, &b, 1}, Beta{&x, &bad, &x, 0}, Beta{&x, &big, &b, 3}, Beta{&x, &zero, &b, 2}}) {
        ifail = 1;
        G01EEF(r.x, r.a, r.b, &tol, &p, &q, &pdf, &ifail);
        EXPECT_EQ(ifail, r.ifail);
    }
    // Deep in the tail with parameters at their limit the smaller tail underflows.
    ifail = 1;
    G01EEF(&tiny, &huge, &x, &tol, &p, &q, &pdf, &ifail);
    EXPECT_EQ(ifail, 4);
    EXPECT_TRUE(p == 0.0 && q == 1.0) << p << " " << q;
    // The non-central IFAIL layer: soft failures return their code and the partial or zero value.
    const double half = 0.5, lam = 1000.0;
    const int maxit = 10, two = 2;
    ifail = 1;
    EXPECT_EQ(G01GCF(&x, &zero, &zero, &tol, &maxit, &ifail), 0.0);
    EXPECT_EQ(ifail, 2);
    ifail = 1;
    EXPECT_EQ(G01GDF(&x, &big, &b, &x, &tol, &maxit, &ifail), 0.0);
    EXPECT_EQ(ifail, 1);
    ifail = 1;
    const double partial = G01GEF(&half, &x, &x, &lam, &tol, &two, &ifail);
    EXPECT_EQ(ifail, 2);
    EXPECT_TRUE(partial >= 0.0 && partial <= 1.0);
    ifail = 1;
    EXPECT_NEAR(G01GBF(&x, &b, &zero, &tol, &maxit, &ifail), g01ebc(L, 1.0, 3.0, nullptr), 1e-14);
    EXPECT_EQ(ifail, 0);
}

constexpr double kInf = INFINITY;

double phi(double x) { return g01eac(Zek_LowerTail, x, nullptr); }

// The covariance of order n with standard deviations SD and every correlation RHO.
std::vector<double> covariance(int n, const std::vector<double> &sd, double rho) {
    std::vector<double> s(n * n);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) s[i * n + j] = sd[i] * sd[j] * (i == j ? 1.0 : rho);
    }
    return s;
}

// P(X_i <= b_i for all i) for equicorrelated rho >= 0: the integral over the common factor z of
// phi(z) prod Phi((b_i - sqrt(rho) z)/sqrt(1 - rho)), by the trapezoidal rule (spectrally accurate for
// this smooth, fast-decaying integrand).
double equicorrelated_lower(const std::vector<double> &b, double rho) {
    const double h = 0.005, sr = std::sqrt(rho), sq = std::sqrt(1.0 - rho);
    double sum = 0.0;
    for (int k = -2400; k <= 2400; ++k) {
        const double z = k * h;
        double f = std::exp(-0.5 * z * z) / std::sqrt(2.0 * M_PI);
        for (double bi : b) f *= phi((bi - sr * z) / sq);
        sum += f;
    }
    return sum * h;
}

TEST(MultivariateNormal, ClosedForms) {
    // rho: the equicorrelation (0 independent); rel: the tolerance, of which the rule is asked a tenth
    // (its estimate is three standard errors).
    struct Case { const char *name; int tail, n; std::vector<double> a, b, mu, sd; double rho, want, rel; };
    const std::vector<double> ones(10, 1.0);
    const double orthant3 = 0.125 + (std::asin(0.3) + std::asin(0.3) + std::asin(0.3)) / (4.0 * M_PI);
    const std::vector<double> b5 = {-1.0, 0.5, 2.0, -0.3, 1.1};
    const std::vector<Case> cases = {
        {"independent lower, scaled", Zek_LowerTail, 3, {}, {1.0, -2.0, 6.0}, {0.0, -1.0, 2.0}, {1.0, 2.0, 4.0}, 0.0, phi(1.0) * phi(-0.5) * phi(1.0), 1e-14},
        {"independent upper far", Zek_UpperTail, 4, {9.0, 8.0, 8.5, 9.5}, {}, {0, 0, 0, 0}, ones, 0.0, phi(-9.0) * phi(-8.0) * phi(-8.5) * phi(-9.5), 1e-13},
        {"independent central", Zek_Central, 5, {-1, -2, 0, 0.5, -kInf}, {1, 0, 3, 2, 0.7}, {0, 0, 0, 0, 0}, ones, 0.0, (phi(1) - phi(-1)) * (phi(0) - phi(-2)) * (phi(3) - phi(0)) * (phi(2) - phi(0.5)) * phi(0.7), 1e-13},
        {"orthant of three", Zek_LowerTail, 3, {}, {0, 0, 0}, {0, 0, 0}, ones, 0.3, orthant3, 1e-4},
        {"orthant of three, upper", Zek_UpperTail, 3, {0, 0, 0}, {}, {0, 0, 0}, ones, 0.3, orthant3, 1e-4},
        {"orthant of six, rho 1/2", Zek_LowerTail, 6, {}, std::vector<double>(6, 0.0), std::vector<double>(6, 0.0), ones, 0.5, 1.0 / 7.0, 1e-4},
        {"orthant of ten, rho 1/2", Zek_UpperTail, 10, std::vector<double>(10, 0.0), {}, std::vector<double>(10, 0.0), ones, 0.5, 1.0 / 11.0, 1e-3},
        {"equicorrelated five", Zek_LowerTail, 5, {}, b5, std::vector<double>(5, 0.0), ones, 0.7, equicorrelated_lower(b5, 0.7), 1e-4},
        {"equicorrelated far tail", Zek_LowerTail, 4, {}, {-6, -5.5, -6.5, -5}, {0, 0, 0, 0}, ones, 0.4, equicorrelated_lower({-6, -5.5, -6.5, -5}, 0.4), 1e-2},
        {"equicorrelated, shifted mean", Zek_UpperTail, 3, {3.0, 4.0, 5.0}, {}, {4, 5, 6}, ones, 0.2, equicorrelated_lower({1.0, 1.0, 1.0}, 0.2), 1e-4},
    };
    for (const Case &c : cases) {
        const int n = c.n;
        const std::vector<double> sig = covariance(n, c.sd, c.rho);
        const std::vector<double> a = c.a.empty() ? std::vector<double>(n, NAN) : c.a;
        const std::vector<double> b = c.b.empty() ? std::vector<double>(n, NAN) : c.b;
        const double tol = c.rel / 10.0;
        ZekFail fail{};
        const double p = g01hbc(c.tail, n, a.data(), b.data(), c.mu.data(), sig.data(), n, tol, 2000000, &fail);
        EXPECT_EQ(fail.code, 0) << c.name << ": " << fail.message;
        EXPECT_NEAR(p, c.want, c.rel * c.want) << c.name;
    }
}

TEST(MultivariateNormal, TwoVariablesMatchTheBivariateRoutine) {
    const double rho = -0.6, s0 = 2.0, s1 = 0.5;
    const double sig[4] = {s0 * s0, rho * s0 * s1, rho * s0 * s1, s1 * s1};
    const double mu[2] = {1.0, -1.0};
    const double a[2] = {5.0, -0.5}, b[2] = {13.0, 0.0};
    const double za[2] = {2.0, 1.0}, zb[2] = {6.0, 2.0};
    const double lower = g01hbc(Zek_LowerTail, 2, a, b, mu, sig, 2, 1e-6, 0, nullptr);
    EXPECT_NEAR(lower, g01hac(zb[0], zb[1], rho, nullptr), 1e-15);
    EXPECT_NEAR(g01hbc(Zek_UpperTail, 2, a, b, mu, sig, 2, 1e-6, 0, nullptr),
                g01hac(-za[0], -za[1], rho, nullptr), 1e-15);
    // The central rectangle lies in the upper tail of the first variable.  The reference's corners, not
    // mirrored, lose about 1e-16 of Phi(2) to cancellation: a few 1e-12 relative here.
    const double central = g01hac(zb[0], zb[1], rho, nullptr) - g01hac(za[0], zb[1], rho, nullptr) -
                           g01hac(zb[0], za[1], rho, nullptr) + g01hac(za[0], za[1], rho, nullptr);
    EXPECT_NEAR(g01hbc(Zek_Central, 2, a, b, mu, sig, 2, 1e-6, 0, nullptr), central, 1e-11 * central);
}

TEST(MultivariateNormal, Failures) {
    const double sig3[9] = {1, 0.5, 0.5, 0.5, 1, 0.5, 0.5, 0.5, 1};
    const double notpd[9] = {1, 0.9, -0.9, 0.9, 1, 0.9, -0.9, 0.9, 1};
    const double z[3] = {0, 0, 0}, one[3] = {1, 1, 1}, mixed[3] = {1, -1, 1}, nan3[3] = {0, NAN, 0};
    struct Row {
        const char *name; int tail, n, tdsig, maxpts; double tol; const double *a, *b, *mu, *sig; int code, ifail;
    };
    const Row rows[] = {
        {"n 11 before the matrix", Zek_LowerTail, 11, 11, 100, 1e-3, z, z, z, nullptr, ZE_INT_ARG_CONS, 1},
        {"n 0", Zek_LowerTail, 0, 3, 100, 1e-3, z, z, z, sig3, ZE_INT_ARG_CONS, 1},
        {"tdsig short", Zek_LowerTail, 3, 2, 100, 1e-3, z, z, z, sig3, ZE_2_INT_ARG_LT, 1},
        {"budget short", Zek_LowerTail, 3, 3, 11, 1e-3, z, z, z, sig3, ZE_INT_ARG_CONS, 1},
        {"tol zero", Zek_LowerTail, 3, 3, 100, 0.0, z, z, z, sig3, ZE_REAL_ARG_CONS, 1},
        {"empty interval", Zek_Central, 3, 3, 100, 1e-3, z, mixed, z, sig3, ZE_REAL_ARRAY_CONS, 2},
        {"not positive definite", Zek_LowerTail, 3, 3, 1000, 1e-3, z, one, z, notpd, ZE_NOT_POS_DEF, 3},
        {"nan limit", Zek_LowerTail, 3, 3, 1000, 1e-3, z, nan3, z, sig3, ZE_BAD_PARAM, 1},
        {"budget spent", Zek_LowerTail, 3, 3, 12, 1e-12, z, mixed, z, sig3, ZE_NOT_REQ_ACC, 4},
    };
    for (const Row &r : rows) {
        ZekFail fail{};
        const double p = g01hbc(r.tail, r.n, r.a, r.b, r.mu, r.sig, r.tdsig, r.tol, r.maxpts, &fail);
        EXPECT_EQ(fail.code, r.code) << r.name << ": " << fail.message;
        if (r.ifail == 4) {
            EXPECT_GT(p, 0.0) << r.name;  // the estimate is returned
        } else {
            EXPECT_EQ(p, 0.0) << r.name;
        }
        const char tail = r.tail == Zek_LowerTail ? 'L' : 'C';
        double wk[64] = {};
        int ifail = 1;
        G01HBF(&tail, &r.n, r.a, r.b, r.mu, r.sig, &r.tdsig, &r.tol, wk, &r.maxpts, &ifail, 1);
        EXPECT_EQ(ifail, r.ifail) << r.name;
    }
    // The tails the routine does not take: two-tailed significance in either layer.
    ZekFail fail{};
    EXPECT_EQ(g01hbc(Zek_TwoTailSignif, 3, z, one, z, sig3, 3, 1e-3, 100, &fail), 0.0);
    EXPECT_EQ(fail.code, ZE_BAD_PARAM);
    EXPECT_NE(std::string(fail.message).find("tail"), std::string::npos);
    int ifail = 1, n = 3, ld = 3, lwk = 100;
    double tol = 1e-3, wk[12];
    EXPECT_EQ(G01HBF("S", &n, z, one, z, sig3, &ld, &tol, wk, &lwk, &ifail, 1), 0.0);
    EXPECT_EQ(ifail, 1);
}

} // namespace
