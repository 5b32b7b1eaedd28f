// Hostile input for the dense chapters: every computing routine meets NaN, +-Inf, the largest and the
// smallest numbers in one element or in all of its data, and sizes that overflow the size arithmetic.
// A routine must end (CTest's time limit catches a hang, the asan preset a write outside the arrays)
// with its result or its failure exit; where the contract promises a finite result on success, a
// success with a non-finite output is a fault.  Kernels whose contract is to propagate what they are
// given (the vector and matrix operations, the factorisations that report through INFO) only have
// to end.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "factor_test_support.h"
#include "zek2/f01.h"
#include "zek2/f03.h"
#include "zek2/f04.h"
#include "zek2/f06.h"
#include "zek2/f07.h"
#include "zek2/f08.h"
#include "zek2/messages.h"

namespace {

enum class Value { NaN, PlusInf, MinusInf, Largest, Smallest };
const Value kValues[] = {Value::NaN, Value::PlusInf, Value::MinusInf, Value::Largest, Value::Smallest};

double number(Value v) {
    switch (v) {
    case Value::NaN: return std::numeric_limits<double>::quiet_NaN();
    case Value::PlusInf: return HUGE_VAL;
    case Value::MinusInf: return -HUGE_VAL;
    case Value::Largest: return std::numeric_limits<double>::max();
    case Value::Smallest: return std::numeric_limits<double>::denorm_min();
    }
    return 0.0;
}

// What the case gave: the routine's code (IFAIL, INFO or the fail code) and the outputs it promises.
struct Outcome {
    int code = 0;
    std::vector<double> outputs;
};

// Finite when success promises finite outputs; Propagates when the kernel hands on what it is given.
enum class Contract { Finite, Propagates };

// What a row is given: the hostile value, whether it fills all of the data, the 3 by 3 matrix made from
// them, and a quiet failure record.
struct Input {
    double v;
    bool whole;
    std::vector<double> a;
    ZekFail fail;
};

struct Row {
    const char *routine;
    Contract contract;
    std::function<Outcome(Input &in)> run;
};

// The 3 by 3 symmetric positive definite matrix every case starts from (column major), with the
// hostile value in its first element or in all of them.
std::vector<double> matrix(double value, bool whole, int rows = 3, int cols = 3) {
    std::vector<double> a(static_cast<std::size_t>(rows * cols));
    for (int j = 0; j < cols; ++j)
        for (int i = 0; i < rows; ++i) a[i + j * rows] = i == j ? 4.0 + i : (std::abs(i - j) == 1 ? 1.0 : 0.0);
    if (whole)
        for (double &x : a) x = value;
    else
        a[0] = value;
    return a;
}

std::vector<double> join(std::initializer_list<std::vector<double>> parts) {
    std::vector<double> all;
    for (const auto &p : parts) all.insert(all.end(), p.begin(), p.end());
    return all;
}

ZekFail quiet() {
    ZekFail fail{};
    fail.print = 0;
    return fail;
}

// A 1-norm estimator (real, W = 1, or complex, W = 2) driven on the 3 by 3 matrix: it must stop asking.
Outcome estimate(decltype(&F04YCF) estimator, int width, double v, bool whole) {
    const auto a = matrix(v, whole);
    double est = 0.0;
    int ifail = 1;
    EXPECT_LT(zek_test::drive_estimator(estimator, width, 3, a.data(), &est, &ifail), 100)
        << "the estimator asks for products without end";
    return Outcome{ifail, {est}};
}

// The factors of the good matrix, for the rows that put the hostile value in a right-hand side.
std::vector<double> good_factors(int *pivot) {
    auto a = matrix(4.0, false);
    int dete = 0;
    double detf = 0.0;
    ZekFail fail = quiet();
    f03afc(3, a.data(), 3, pivot, &detf, &dete, &fail);
    return a;
}

const int k3 = 3, k1 = 1; // sizes and leading dimensions taken by address

const Row kRows[] = {
    {"F03AFF", Contract::Finite, [](Input &in) {
         const double eps = 1e-15;
         double d1 = 0.0, p[3];
         int id = 0, ifail = 1;
         F03AFF(&k3, &eps, in.a.data(), &k3, &d1, &id, p, &ifail);
         return Outcome{ifail, join({in.a, {d1}})};
     }},
    {"F03AAF", Contract::Finite, [](Input &in) {
         double det = 0.0, w[3];
         int ifail = 1;
         F03AAF(in.a.data(), &k3, &k3, &det, w, &ifail);
         return Outcome{ifail, join({in.a, {det}})};
     }},
    {"f03afc", Contract::Finite, [](Input &in) {
         int pivot[3], dete = 0;
         double detf = 0.0;
         f03afc(3, in.a.data(), 3, pivot, &detf, &dete, &in.fail);
         return Outcome{in.fail.code, join({in.a, {detf}})};
     }},
    {"f04aec", Contract::Finite, [](Input &in) {
         std::vector<double> b = {1.0, 2.0, 3.0}, aa(9), x(3), bb(3);
         f04aec(3, 1, in.a.data(), 3, b.data(), 1, aa.data(), 3, x.data(), 1, bb.data(), 1, &in.fail);
         return Outcome{in.fail.code, x};
     }},
    {"f04aec (right side)", Contract::Propagates, [](Input &in) {
         const auto a = matrix(1.0, false);
         std::vector<double> b = {in.v, in.whole ? in.v : 2.0, 3.0}, aa(9), x(3), bb(3);
         f04aec(3, 1, a.data(), 3, b.data(), 1, aa.data(), 3, x.data(), 1, bb.data(), 1, &in.fail);
         return Outcome{in.fail.code, x};
     }},
    {"f04ahc", Contract::Finite, [](Input &in) {
         int pivot[3];
         const auto aa = good_factors(pivot), a = matrix(in.v, in.whole); // the hostile matrix in the residuals
         std::vector<double> b = {1.0, 2.0, 3.0}, x(3), bb(3);
         f04ahc(3, 1, a.data(), 3, aa.data(), 3, pivot, b.data(), 1, x.data(), 1, bb.data(), 1, &in.fail);
         return Outcome{in.fail.code, x};
     }},
    {"f04ajc", Contract::Propagates, [](Input &in) {
         int pivot[3];
         const auto a = good_factors(pivot);
         std::vector<double> b = {in.v, in.whole ? in.v : 2.0, 3.0};
         f04ajc(3, 1, a.data(), 3, pivot, b.data(), 1, &in.fail);
         return Outcome{in.fail.code, b};
     }},
    {"f04jgc", Contract::Finite, [](Input &in) {
         auto a = matrix(in.v, in.whole, 4, 3);
         std::vector<double> b = {1.0, 2.0, 3.0, 4.0}, zeta(3);
         double sigma = 0.0;
         int irank = 0;
         f04jgc(4, 3, a.data(), 4, b.data(), 1e-12, &sigma, &irank, zeta.data(), &in.fail);
         return Outcome{in.fail.code, {b[0], b[1], b[2], sigma}};
     }},
    {"F04YAF", Contract::Finite, [](Input &in) {
         in.a[1] = in.a[2] = in.a[5] = 0.0; // upper triangular
         const int job = -1, svd = 0;
         const double sigma = 1.0, sv[3] = {1.0, 1.0, 1.0};
         double cj[3], work[3];
         int ifail = 1;
         F04YAF(&job, &k3, &sigma, in.a.data(), &k3, &svd, &k3, sv, cj, work, &ifail);
         return Outcome{ifail, {cj[0], cj[1], cj[2]}};
     }},
    {"F04YAY", Contract::Finite, [](Input &in) {
         std::vector<double> b = {1.0, 2.0, 3.0};
         int ifail = 1;
         F04YAY(&k1, &k3, in.a.data(), &k3, b.data(), &ifail);
         return Outcome{ifail, b};
     }},
    {"F04YCF", Contract::Propagates, [](Input &in) { return estimate(F04YCF, 1, in.v, in.whole); }},
    {"F04ZCF", Contract::Propagates, [](Input &in) { return estimate(F04ZCF, 2, in.v, in.whole); }},
    {"F01AAZ", Contract::Finite, [](Input &in) {
         std::vector<double> x(9), p(3);
         int ifail = 1;
         F01AAZ(in.a.data(), &k3, &k3, x.data(), &k3, p.data(), &ifail);
         return Outcome{ifail, x};
     }},
    {"f01aac", Contract::Finite, [](Input &in) {
         std::vector<double> u(9);
         f01aac(in.a.data(), 3, 3, u.data(), 3, &in.fail);
         return Outcome{in.fail.code, u};
     }},
    {"f01adc", Contract::Finite, [](Input &in) {
         auto &a = in.a; // symmetric, so its own transpose
         f01adc(3, a.data(), 3, &in.fail);
         // The inverse is the lower triangle; the rest keeps the caller's data.
         return Outcome{in.fail.code, {a[0], a[1], a[2], a[4], a[5], a[8]}};
     }},
    {"F01QCF", Contract::Propagates, [](Input &in) {
         std::vector<double> zeta(3);
         int ifail = 1;
         F01QCF(&k3, &k3, in.a.data(), &k3, zeta.data(), &ifail);
         return Outcome{ifail, in.a};
     }},
    {"f01qcc + f01qdc", Contract::Propagates, [](Input &in) {
         std::vector<double> zeta(3), b = {1.0, 2.0, 3.0};
         f01qcc(3, 3, in.a.data(), 3, zeta.data(), &in.fail);
         f01qdc(Zek_Transpose, Zek_ElementsSeparate, 3, 3, in.a.data(), 3, zeta.data(), 1, b.data(), 1, &in.fail);
         return Outcome{in.fail.code, b};
     }},
    {"F01QDF", Contract::Propagates, [](Input &in) {
         auto a = matrix(1.0, false);
         std::vector<double> zeta(3), work(3), b = {in.v, in.whole ? in.v : 1.0, 1.0};
         int ifail = 1;
         F01QCF(&k3, &k3, a.data(), &k3, zeta.data(), &ifail);
         F01QDF("T", "S", &k3, &k3, a.data(), &k3, zeta.data(), &k1, b.data(), &k3, work.data(), &ifail, 1, 1);
         return Outcome{ifail, b};
     }},
    {"f01lzc", Contract::Propagates, [](Input &in) {
         std::vector<double> d(3), e(3), zl(3), zr(3), b(3, 1.0), y(9), z(9);
         f01lzc(3, 3, in.a.data(), 3, d.data(), e.data(), zl.data(), zr.data(), 1, b.data(), 3, 3, y.data(), 3, 3,
                z.data(), 3, 1, &in.fail);
         return Outcome{in.fail.code, d};
     }},
    {"f01crc", Contract::Propagates, [](Input &in) {
         auto a = matrix(in.v, in.whole, 2, 3);
         f01crc(a.data(), 2, 3, &in.fail);
         return Outcome{in.fail.code, a};
     }},
    {"F07ADF", Contract::Propagates, [](Input &in) {
         int ipiv[3], info = 0;
         F07ADF(&k3, &k3, in.a.data(), &k3, ipiv, &info);
         return Outcome{info, in.a};
     }},
    {"F07ADG", Contract::Propagates, [](Input &in) {
         double piv[3];
         int info = 0;
         F07ADG(&k3, &k3, in.a.data(), &k3, piv, &info);
         return Outcome{info, in.a};
     }},
    {"F07ARF", Contract::Propagates, [](Input &in) {
         std::vector<double> a(18, 0.0);
         for (int k = 0; k < 9; ++k) a[2 * k] = a[2 * k + 1] = in.a[k];
         int ipiv[3], info = 0;
         F07ARF(&k3, &k3, a.data(), &k3, ipiv, &info);
         return Outcome{info, a};
     }},
    {"F07FDF", Contract::Propagates, [](Input &in) {
         int info = 0;
         F07FDF("L", &k3, in.a.data(), &k3, &info, 1);
         return Outcome{info, in.a};
     }},
    {"F07FRF", Contract::Propagates, [](Input &in) {
         std::vector<double> a(18, 0.0);
         for (int k = 0; k < 9; ++k) a[2 * k] = in.a[k];
         int info = 0;
         F07FRF("U", &k3, a.data(), &k3, &info, 1);
         return Outcome{info, a};
     }},
    {"F07GDF + F07UEF", Contract::Propagates, [](Input &in) {
         const auto &s = in.a;
         std::vector<double> ap = {s[0], s[1], s[2], s[4], s[5], s[8]}, b = {1.0, 2.0, 3.0};
         int info = 0;
         F07GDF("L", &k3, ap.data(), &info, 1);
         if (info == 0) F07UEF("L", "N", "N", &k3, &k1, ap.data(), b.data(), &k3, &info, 1, 1, 1);
         return Outcome{info, b};
     }},
    {"F08AEZ + F08AGF", Contract::Propagates, [](Input &in) {
         const int lwork = 64;
         std::vector<double> tau(3), work(64), c = {1.0, 2.0, 3.0};
         int info = 0;
         F08AEZ(&k3, &k3, in.a.data(), &k3, tau.data(), work.data(), &info);
         F08AGF("L", "T", &k3, &k1, &k3, in.a.data(), &k3, tau.data(), c.data(), &k3, work.data(), &lwork, &info, 1, 1);
         return Outcome{info, c};
     }},
    {"F08BEF", Contract::Propagates, [](Input &in) {
         int jpvt[3] = {0, 0, 0}, info = 0;
         std::vector<double> tau(3), work(9);
         F08BEF(&k3, &k3, in.a.data(), &k3, jpvt, tau.data(), work.data(), &info);
         return Outcome{info, in.a};
     }},
    {"DNRM2, DZNRM2, F06_SUMSQ_UPDATE", Contract::Propagates, [](Input &in) {
         const auto &x = in.a;
         double scale = 0.0, sumsq = 1.0;
         F06_SUMSQ_UPDATE(9, x.data(), 1, &scale, &sumsq);
         return Outcome{0, {DNRM2(9, x.data(), 1), DNRM2_STUB(9, x.data(), 1), DZNRM2(4, x.data(), 1),
                            F06_NORM_FROM_SUMSQ(scale, sumsq)}};
     }},
    {"rotations from pairs", Contract::Propagates, [](Input &in) {
         double a = in.v, b = in.whole ? in.v : 1.0, c = 0.0, s = 0.0;
         DROTG(&a, &b, &c, &s);
         double a2 = in.v, b2 = in.whole ? in.v : 1.0, c2 = 0.0, s2 = 0.0;
         F06_ROTATION_FROM_PAIR(&a2, &b2, &c2, &s2);
         double a3 = 1.0, b3 = in.v, c3 = 0.0, s3 = 0.0;
         F06_ROTATION_FROM_PAIR_FROZEN(&a3, &b3, &c3, &s3);
         double za[2] = {in.v, in.whole ? in.v : 0.0}, zb[2] = {1.0, in.v}, zc = 0.0, zs[2];
         F06_COMPLEX_ROTATION_FROM_PAIR(za, zb, &zc, zs);
         double tc = 0.0, ts = 0.0;
         F06_ROTATION_FROM_TANGENT(in.v, &tc, &ts);
         int divide_fail = 0;
         const double q = F06_SAFE_DIVIDE(in.v, in.whole ? in.v : 3.0, &divide_fail);
         return Outcome{0, {c, s, c2, s2, c3, s3, zc, tc, ts, q}};
     }},
    {"reflectors", Contract::Propagates, [](Input &in) {
         auto &x = in.a;
         double alpha = in.whole ? in.v : 2.0, zeta = 0.0;
         F06_REFLECTOR_GEN(8, &alpha, x.data() + 1, 1, 0.0, &zeta);
         auto y = matrix(in.v, in.whole);
         double alpha2 = in.v, zeta2 = 0.0;
         F06_REFLECTOR_GEN_SAFE(8, &alpha2, y.data() + 1, 1, 0.0, &zeta2);
         double alpha3 = in.v, zeta3 = 0.0;
         F01_SCALED_REFLECTOR(8, &alpha3, y.data() + 1, 1, &zeta3);
         return Outcome{F06_LEADING_RANK(9, x.data(), 1, -1.0), {alpha, zeta, alpha2, zeta2, alpha3, zeta3}};
     }},
    {"matrix norms", Contract::Propagates, [](Input &in) {
         double work[3];
         std::vector<double> norms;
         for (const char *norm : {"M", "1", "I", "F"})
             norms.push_back(F06_MATRIX_NORM_GENERAL(norm, 3, 3, in.a.data(), 3, work, 1));
         norms.push_back(F01_SCALED_NORM(9, in.a.data(), 1));
         norms.push_back(F01_ABS_MAX(9, in.a.data(), 1));
         return Outcome{0, norms};
     }},
};

struct Case {
    const Row *row;
    Value value;
    bool whole;
};

std::vector<Case> all_cases() {
    std::vector<Case> cases;
    for (const Row &row : kRows)
        for (Value v : kValues)
            for (bool whole : {false, true}) cases.push_back({&row, v, whole});
    return cases;
}

class HostileDense : public ::testing::TestWithParam<Case> {};

TEST_P(HostileDense, EndsWithItsResultOrItsFailureExit) {
    const Case &c = GetParam();
    const double v = number(c.value);
    Input in{v, c.whole, matrix(v, c.whole), quiet()};
    const Outcome out = c.row->run(in);
    if (c.row->contract == Contract::Propagates || out.code != 0) return;
    for (double x : out.outputs) {
        ASSERT_TRUE(std::isfinite(x)) << c.row->routine << " succeeded with " << x;
    }
}

std::string case_name(const ::testing::TestParamInfo<Case> &info) {
    static const char *const kNames[] = {"NaN", "PlusInf", "MinusInf", "Largest", "Smallest"};
    std::string name = std::string(info.param.row->routine) + "_" + kNames[static_cast<int>(info.param.value)] +
                       (info.param.whole ? "_all" : "_one") + "_" + std::to_string(info.index);
    for (char &ch : name)
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileDense, ::testing::ValuesIn(all_cases()), case_name);

// Sizes: zero where the routine needs at least one, and orders whose squares overflow the size
// arithmetic of the routines that allocate.  Each must end in its argument or allocation exit before
// touching the (one-element) arrays.
struct SizeRow {
    const char *routine;
    int expected;
    std::function<int()> run;
};

double g_cell[4];
int g_int_cell[4];

const SizeRow kSizeRows[] = {
    {"F03AFF n = 0", 2, [] { const int n = 0, ia = 1; double eps = 1e-15, d1; int id, ifail = 1;
         F03AFF(&n, &eps, g_cell, &ia, &d1, &id, g_cell, &ifail); return ifail; }},
    {"F03AAF n = 0", 2, [] { const int n = 0, ia = 1; double det; int ifail = 1;
         F03AAF(g_cell, &ia, &n, &det, g_cell, &ifail); return ifail; }},
    {"f03afc n = 0", ZE_INT_ARG_LT, [] { ZekFail f = quiet(); double detf; int dete;
         f03afc(0, g_cell, 1, g_int_cell, &detf, &dete, &f); return static_cast<int>(f.code); }},
    {"f01adc n = INT_MAX", ZE_ALLOC_FAIL, [] { ZekFail f = quiet();
         f01adc(INT_MAX, g_cell, INT_MAX, &f); return static_cast<int>(f.code); }},
    {"f01crc m = n = INT_MAX", ZE_ALLOC_FAIL, [] { ZekFail f = quiet();
         f01crc(g_cell, INT_MAX, INT_MAX, &f); return static_cast<int>(f.code); }},
    {"f01lzc n = INT_MAX", ZE_ALLOC_FAIL, [] { ZekFail f = quiet();
         f01lzc(INT_MAX, INT_MAX, g_cell, INT_MAX, g_cell, g_cell, g_cell, g_cell, 0, g_cell, 1, 0, g_cell, 1, 0,
                g_cell, 1, 1, &f); return static_cast<int>(f.code); }},
    {"F08AGF workspace one short", -12, [] { const int m = 3, n = 2, k = 3, lda = 3, ldc = 3, lwork = 1; int info = 0;
         std::vector<double> a(9), tau(3), c(6), work(1);
         F08AGF("L", "T", &m, &n, &k, a.data(), &lda, tau.data(), c.data(), &ldc, work.data(), &lwork, &info, 1, 1);
         return info; }},
};

class HostileDenseSizes : public ::testing::TestWithParam<SizeRow> {};

TEST_P(HostileDenseSizes, EndInTheirExit) {
    EXPECT_EQ(GetParam().run(), GetParam().expected) << GetParam().routine;
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileDenseSizes, ::testing::ValuesIn(kSizeRows));

} // namespace
