// LU factorisation (F07ADF, F07ADG, F07ARF) and the block-size store.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <tuple>
#include <utility>

#include "factor_test_support.h"
#include "kernels/block_size.h"
#include "kernels/lu.h"
#include "zek2/f07.h"
#include "zek2/f08.h"

using namespace zek_test;

namespace {

// Sets the block size of F07ADF for the life of the object.
class BlockSize {
public:
    BlockSize(const char *name, int nb) : name_(name) {
        const int param = 1, get = 0, set = 1;
        F07_BLOCK_SIZE(&param, name_, &saved_, &get, 6);
        F07_BLOCK_SIZE(&param, name_, &nb, &set, 6);
    }
    ~BlockSize() {
        const int param = 1, set = 1;
        F07_BLOCK_SIZE(&param, name_, &saved_, &set, 6);
    }

private:
    const char *name_;
    int saved_ = 0;
};

struct LuResult {
    Mat f;
    std::vector<int> ipiv;
    int info = 0;
};

LuResult dgetrf_with(const Mat &a, int nb) {
    BlockSize bs("F07ADF", nb);
    LuResult r{a, std::vector<int>(std::max(1, std::min(a.m, a.n))), 0};
    F07ADF(&r.f.m, &r.f.n, r.f.data(), &r.f.ld, r.ipiv.data(), &r.info);
    return r;
}

} // namespace

// ---- Backward error over shapes, kinds and block sizes ---------------------------------------------

class LuBackwardError : public ::testing::TestWithParam<std::tuple<Kind, int, int, int>> {};

TEST_P(LuBackwardError, FactorsReproduceTheMatrixAndBlockedEqualsUnblocked) {
    const auto [kind, m, n, nb] = GetParam();
    const Mat a = make_matrix(kind, m, n, 7u + m + 3u * n, m + 2);
    const LuResult unblocked = dgetrf_with(a, 1);
    const LuResult blocked = dgetrf_with(a, nb);
    EXPECT_LT(scaled_difference(a, lu_product(unblocked.f, unblocked.ipiv)), 2.0);
    // The blocked update adds the same products in the same order as the rank-one updates.
    EXPECT_EQ(blocked.ipiv, unblocked.ipiv);
    EXPECT_EQ(blocked.f.v, unblocked.f.v);
    EXPECT_EQ(blocked.info, unblocked.info);
    if (kind == Kind::ZeroColumn && m >= n) {
        EXPECT_GT(unblocked.info, 0);
    }
    if (kind == Kind::Random) {
        EXPECT_EQ(unblocked.info, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, LuBackwardError,
    ::testing::Combine(::testing::Values(Kind::Random, Kind::Graded, Kind::RankDeficient, Kind::ZeroColumn),
                       ::testing::Values(1, 37, 80), ::testing::Values(1, 29, 80), ::testing::Values(4, 16)),
    [](const auto &info) {
        return std::string(kind_name(std::get<0>(info.param))) + "_" + std::to_string(std::get<1>(info.param)) + "x" +
               std::to_string(std::get<2>(info.param)) + "_nb" + std::to_string(std::get<3>(info.param));
    });

TEST(LuFactor, ExactlySingularMatrixGivesFirstZeroPivotAndCompleteFactors) {
    // Column 2 is twice column 1, so the second pivot is exactly zero; the loop goes on and the third
    // column is still eliminated.
    Mat a(3, 3);
    const double cols[3][3] = {{1, 2, 4}, {2, 4, 8}, {3, 1, 5}};
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 3; ++i) a(i, j) = cols[j][i];
    const LuResult r = dgetrf_with(a, 1);
    EXPECT_EQ(r.info, 2);
    EXPECT_LT(scaled_difference(a, lu_product(r.f, r.ipiv)), 2.0);
}

TEST(LuFactor, EmptyMatrixAndMasterSelectors) {
    int m = 0, n = 5, lda = 1, info = -7;
    int ipiv[1] = {0};
    F07ADF(&m, &n, nullptr, &lda, ipiv, &info);
    EXPECT_EQ(info, 0);
    const Mat a = make_matrix(Kind::Random, 6, 6, 3);
    Mat b0 = a, b1 = a;
    std::vector<int> p0(6), p1(6);
    int i0 = 0, i1 = 0;
    f07adf_ENTRY(0, &b0.m, &b0.n, b0.data(), &b0.ld, p0.data(), &i0);
    f07adf_ENTRY(1, &b1.m, &b1.n, b1.data(), &b1.ld, p1.data(), &i1);
    EXPECT_EQ(b0.v, b1.v);
    EXPECT_EQ(p0, p1);
    // The complex masters, on the real matrix as a complex one.
    std::vector<double> z0(72, 0.0), z1;
    for (int k = 0; k < 36; ++k) z0[2 * k] = a.v[k];
    z1 = z0;
    f07arf_ENTRY(0, &a.m, &a.n, z0.data(), &a.ld, p0.data(), &i0);
    f07arf_ENTRY(1, &a.m, &a.n, z1.data(), &a.ld, p1.data(), &i1);
    EXPECT_EQ(z0, z1);
    EXPECT_EQ(p0, p1);
}

// Illegal arguments of the factorisations leave INFO as the only report: nothing is printed and
// nothing ends.
TEST(SilentInfo, IllegalArgumentsAreReportedThroughInfoOnly) {
    static double a[16], w[16];
    static int ip[4], jp[2];
    static const int m = 2, n = 2, k3 = 3, lw0 = 0, bad = -1, minus3 = -3, zero = 0;
    using Call = int (*)();
    const std::pair<Call, int> cases[] = {
        {[] { int i = 0; F07ADF(&bad, &n, a, &n, ip, &i); return i; }, -1},
        {[] { int i = 0; F07ADG(&m, &minus3, a, &m, w, &i); return i; }, -2},
        {[] { int i = 0; F07ARF(&k3, &k3, a, &m, ip, &i); return i; }, -4},
        {[] { int i = 0; F07ADF(&zero, &zero, a, &zero, ip, &i); return i; }, -4},
        {[] { int i = 0; F07ARF(&bad, &n, a, &n, ip, &i); return i; }, -1},
        {[] { int i = 0; F07ADG(&k3, &k3, a, &m, w, &i); return i; }, -4},
        {[] { int i = 0; F07ADF(&m, &minus3, a, &m, ip, &i); return i; }, -2},
        {[] { int i = 0; F07ADF(&k3, &k3, a, &m, ip, &i); return i; }, -4},
        {[] { int i = 0; F07ADG(&bad, &n, a, &n, w, &i); return i; }, -1},
        {[] { int i = 0; F07ADG(&zero, &zero, a, &zero, w, &i); return i; }, -4},
        {[] { int i = 0; F07ARF(&m, &minus3, a, &m, ip, &i); return i; }, -2},
        {[] { int i = 0; F07ARF(&zero, &zero, a, &zero, ip, &i); return i; }, -4},
        {[] { int i = 0; F07FDF("X", &n, a, &n, &i, 1); return i; }, -1},
        {[] { int i = 0; F07FRF("U", &bad, a, &m, &i, 1); return i; }, -2},
        {[] { int i = 0; F07FRZ("l", &k3, a, &m, &i, 1); return i; }, -4},
        {[] { int i = 0; F07FRF("X", &n, a, &n, &i, 1); return i; }, -1},
        {[] { int i = 0; F07FDF("l", &k3, a, &m, &i, 1); return i; }, -4},
        {[] { int i = 0; F07FDF("U", &bad, a, &m, &i, 1); return i; }, -2},
        {[] { int i = 0; F07FRF("l", &k3, a, &m, &i, 1); return i; }, -4},
        {[] { int i = 0; F07FRZ("X", &n, a, &n, &i, 1); return i; }, -1},
        {[] { int i = 0; F07FRZ("U", &bad, a, &m, &i, 1); return i; }, -2},
        {[] { int i = 0; F08AEZ(&bad, &n, a, &m, w, w, &i); return i; }, -1},
        {[] { int i = 0; F08BEF(&m, &n, a, &bad, jp, w, w, &i); return i; }, -4},
        {[] { int i = 0; F08AGZ("X", "N", &m, &n, &n, a, &m, w, a, &m, w, &i, 1, 1); return i; }, -1},
        {[] { int i = 0; F08AGF("L", "C", &m, &n, &n, a, &m, w, a, &m, w, &m, &i, 1, 1); return i; }, -2},
        {[] { int i = 0; F08AGF("L", "N", &m, &n, &k3, a, &m, w, a, &m, w, &m, &i, 1, 1); return i; }, -5},
        {[] { int i = 0; F08AGF("L", "N", &m, &n, &n, a, &m, w, a, &m, w, &lw0, &i, 1, 1); return i; }, -12},
    };
    // A row that ends the process would otherwise end it with status 0, unnoticed.
    static bool in_row = false;
    std::atexit([] {
        if (in_row) std::_Exit(3);
    });
    for (std::size_t r = 0; r < std::size(cases); ++r) {
        StdoutCapture capture;
        in_row = true;
        EXPECT_EQ(cases[r].first(), cases[r].second) << "row " << r;
        in_row = false;
        EXPECT_EQ(capture.text(), "") << "row " << r;
    }
}

// F07ADG: the Crout form on real pivots (L carries the diagonal, U unit upper), blocked and not.
TEST(LuFactor, RealPivotCroutFormReproducesTheMatrix) {
    for (int nb : {1, 5, 13}) {
        BlockSize bs("F07ADF", nb);
        for (Kind kind : {Kind::Random, Kind::Graded, Kind::ZeroColumn}) {
            const Mat a = make_matrix(kind, 40, 33, 11);
            Mat f = a;
            std::vector<double> piv(33);
            int info = 0;
            F07ADG(&f.m, &f.n, f.data(), &f.ld, piv.data(), &info);
            std::vector<int> ipiv(piv.begin(), piv.end());
            // An exactly zero pivot leaves a zero on L's diagonal, and the row of U beside it cannot be
            // scaled: the Crout form then no longer represents A, so only INFO is checked there.
            EXPECT_EQ(info > 0, kind == Kind::ZeroColumn);
            if (info == 0) {
                EXPECT_LT(scaled_difference(a, lu_product(f, ipiv, /*unit_l=*/false)), 2.0) << kind_name(kind) << nb;
            }
        }
    }
}

// ---- Against reference LAPACK -----------------------------------------------------------------------

// The real factorisation blocked, the complex one on genuinely complex data unblocked and blocked: the
// same factors and pivots as the reference.
TEST(LuReference, SameFactorsAndPivotsAsReferenceDgetrfAndZgetrf) {
    for (auto [m, n] : {std::pair{50, 50}, std::pair{70, 41}, std::pair{33, 60}}) {
        const Mat a = make_matrix(Kind::Random, m, n, 99);
        const LuResult ours = dgetrf_with(a, 16);
        Mat ref = a;
        std::vector<int> ipiv(std::min(m, n));
        int info = 0;
        call_lapack("dgetrf", &m, &n, ref.data(), &ref.ld, ipiv.data(), &info);
        EXPECT_EQ(ours.ipiv, ipiv);
        expect_near_vectors(ours.f.v, ref.v, 1e-12, "dgetrf factors");
        const std::vector<double> z0 = Random(5u + m).vector(2 * a.v.size());
        std::vector<double> zr = z0;
        std::vector<int> zpr(std::min(m, n));
        call_lapack("zgetrf", &m, &n, zr.data(), &a.ld, zpr.data(), &info);
        for (int nb : {1, 6}) {
            BlockSize bs("F07ARF", nb);
            std::vector<double> z = z0;
            std::vector<int> zp(std::min(m, n));
            int zi = -1;
            F07ARF(&m, &n, z.data(), &a.ld, zp.data(), &zi);
            EXPECT_EQ(zi, info);
            EXPECT_EQ(zp, zpr) << nb;
            expect_near_vectors(z, zr, 1e-12, "zgetrf factors");
        }
    }
}

// ---- The block-size store ---------------------------------------------------------------------------

TEST(BlockSizeStore, IndexOfRoutineNames) {
    // Either case, the name or its letters turned round; names outside the store have none.
    const std::pair<const char *, int> names[] = {{"F07ADF", 1}, {"F07ARF", 3},  {"f07fdf", 9},  {"F07FRF", 11},
                                                  {"ADZF07", 1}, {"F08AEF", 29}, {"F08AGF", 31}, {"F07ZZF", 0},
                                                  {"G02AAF", 0}};
    for (const auto &[name, index] : names) EXPECT_EQ(zek::block_size_index(name, 6), index) << name;
    EXPECT_EQ(zek::block_size_index("F07", 3), 0);
}

TEST(BlockSizeStore, ReadSetAndRejections) {
    const int get = 0, set = 1;
    int value = 99;
    const int p1 = 1, p9 = 9, p0 = 0;
    for (const char *name : {"F07ADF", "F07ARF", "F07FDF", "F07FRF"}) {
        F07_BLOCK_SIZE(&p1, name, &value, &get, 6);
        EXPECT_EQ(value, 1) << name;
    }
    value = 123;
    F07_BLOCK_SIZE(&p9, "F07ADF", &value, &set, 6);
    EXPECT_EQ(value, -1);
    F07_BLOCK_SIZE(&p0, "F07ADF", &value, &get, 6);
    EXPECT_EQ(value, -1);
    F07_BLOCK_SIZE(&p1, "F07ADF", &value, &get, 6);
    EXPECT_EQ(value, 1); // unchanged by the rejected call
    value = 5;
    F07_BLOCK_SIZE(&p1, "X99ZZZ", &value, &set, 6);
    EXPECT_EQ(value, -2);
    const int p8 = 8;
    value = 42;
    F07_BLOCK_SIZE(&p8, "F07MJF", &value, &set, 6);
    value = 0;
    F07_BLOCK_SIZE(&p8, "F07MJF", &value, &get, 6);
    EXPECT_EQ(value, 42);
    EXPECT_EQ(zek::block_size_parameter(zek::block_size_index("F07MJF", 6), 8), 42);
}
