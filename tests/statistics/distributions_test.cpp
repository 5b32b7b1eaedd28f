// Distribution functions against high-precision values (far tails included), deviates as inverses,
// and the failure exits of both layers.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "zek2/g01.h"

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
    for (const Reference &r : kReference) {
        ZekFail fail{};
        const double v = evaluate(r, &fail);
        ASSERT_EQ(fail.code, 0) << fail.message;
        // Relative error; parameters above 100 allow more (sqrt(a + b) growth), and the error function
        // itself gives about 1.2e-13 at x = 37.
        const double allowed = (r.a > 100.0 || r.b > 100.0) ? 2e-12 : (std::fabs(r.value) < 1e-250 ? 2e-13 : 5e-14);
        const double scale = std::fabs(r.value) > 0.0 ? std::fabs(r.value) : 1.0;
        EXPECT_LE(std::fabs(v - r.value) / scale, allowed)
            << r.kind << " tail " << r.tail << " x " << r.x << " a " << r.a << " b " << r.b << " got " << v;
    }
}

TEST(DistributionTails, FarTailsKeepTheAccuracyOfTheirExponent) {
    // The parameters of 20000 and more leave the continued fraction of the beta ratio its own few
    // units of 1e-15; everything else is held to a few rounding errors.
    struct Row { Kind kind; int tail; double x, a, b, value, allowed; };
    const Row rows[] = {
#include "far_tail_reference.inc"
    };
    for (const Row &r : rows) {
        ZekFail fail{};
        const double v = evaluate({r.kind, r.tail, r.x, r.a, r.b, r.value}, &fail);
        ASSERT_EQ(fail.code, 0) << fail.message;
        EXPECT_LE(std::fabs(v - r.value) / r.value, r.allowed)
            << r.kind << " tail " << r.tail << " x " << r.x << " a " << r.a << " b " << r.b << " got " << v;
    }
}

TEST(DistributionTails, NormalTableAtZeroAndByCharacter) {
    const struct { int tail; double value; } at_zero[] = {{L, 0.5}, {U, 0.5}, {S, 1.0}, {C, 0.0}};
    for (const auto &r : at_zero) EXPECT_EQ(g01eac(r.tail, 0.0, nullptr), r.value) << r.tail;
    const double x = 1.7;
    int ifail = 0;
    EXPECT_EQ(G01EAF("u", &x, &ifail, 1), g01eac(U, x, nullptr));
    EXPECT_EQ(G01EAF("C", &x, &ifail, 1), g01eac(C, x, nullptr));
    EXPECT_EQ(ifail, 0);
}

TEST(Deviates, NormalDeviateAgreesWithHighPrecisionValuesInEveryRange) {
    // mpmath at 50 digits (sqrt(2) erfinv(2p - 1), or Newton on log(erfc(x/sqrt 2)/2) = log min(p, 1 - p)
    // in the tails, as tools/normal_deviate_fit.py does) at the exact doubles below: both sides of
    // |p - 1/2| = 0.3 and 0.42, the tail down to DBL_MIN, and subnormal probabilities.
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

struct CFailure { const char *name; double (*call)(); int code; const char *message; };

TEST(DistributionFailures, RaiseTheirCodesAndReturnZero) {
    static ZekFail fail;
    const CFailure cases[] = {
        {"tail", [] { return g01eac(1333, 1.0, &fail); }, 70, "ZE_BAD_PARAM:\n  On entry, parameter tail had an illegal value."},
        {"chi two-tailed", [] { return g01ecc(S, 1.0, 2.0, &fail); }, 70, nullptr},
        {"t df", [] { return g01ebc(L, 1.0, 0.5, &fail); }, 5, "ZE_REAL_ARG_LT:\n  On entry, df must not be less than 1.0: df = 0.5."},
        {"p zero", [] { return g01fac(L, 0.0, &fail); }, 6, nullptr},
        {"p one", [] { return g01fbc(L, 1.0, 3.0, &fail); }, 8, nullptr},
        {"p nan", [] { return g01fcc(NAN, 3.0, &fail); }, 6, nullptr},
        {"chi x", [] { return g01ecc(L, -1.0, 2.0, &fail); }, 5, nullptr},
        {"gamma b", [] { return g01efc(L, 1.0, 2.0, 0.0, &fail); }, 6, nullptr},
        {"beta a", [] { return g01fec(0.5, 2e6, 1.0, 0.0, &fail); }, 9, "ZE_REAL_ARG_CONS:\n  On entry, a = 2e+06. \n  This parameter must satisfy 0.0 < a <= 1.0e6."},
        {"F df2", [] { return g01edc(U, 1.0, 2.0, -3.0, &fail); }, 6, nullptr},
    };
    for (const CFailure &c : cases) {
        fail = ZekFail{};
        EXPECT_EQ(c.call(), 0.0) << c.name;
        EXPECT_EQ(fail.code, c.code) << c.name;
        if (c.message != nullptr) {
            EXPECT_STREQ(fail.message, c.message) << c.name;
        }
    }
}

TEST(DistributionFailures, IfailLayerExits) {
    const double x = 1.0, bad = 1.5, a = 2.0, b = 3.0, big = 2e6, tol = 0.0;
    double p = -1, q = -1, pdf = -1;
    int ifail = 1;
    EXPECT_EQ(G01EAF("X", &x, &ifail, 1), 0.0);
    EXPECT_EQ(ifail, 1);
    struct Row { const double *x, *a, *b; int ifail; };
    for (const Row &r : {Row{&bad, &a, &b, 1}, Row{&x, &bad, &x, 0}, Row{&x, &big, &b, 3}, Row{&x, &q, &b, 2}}) {
        ifail = 1;
        G01EEF(r.x, r.a, r.b, &tol, &p, &q, &pdf, &ifail);
        EXPECT_EQ(ifail, r.ifail);
    }
    // Deep in the tail with parameters at their limit the smaller tail underflows.
    const double tiny = 1e-6, huge = 1e6, one = 1.0;
    ifail = 1;
    G01EEF(&tiny, &huge, &one, &tol, &p, &q, &pdf, &ifail);
    EXPECT_EQ(ifail, 4);
    EXPECT_EQ(p, 0.0);
    EXPECT_EQ(q, 1.0);
}

} // namespace
