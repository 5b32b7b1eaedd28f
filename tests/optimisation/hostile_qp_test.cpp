// Hostile inputs for E04NFA and E04NCA: each ends in the result or its failure exit, in bounded time,
// never IFAIL 0 with a non-finite result.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "zek2/e04.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kHuge = std::numeric_limits<double>::max();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

// A 2-variable QP with one row, spoiled by a row of the table.
struct Case {
    int n = 2, nclin = 1, lda = 1, ldh = 2, liwork = 7, lwork = 47;
    std::vector<double> a = {1, 1}, bl = {-1, -1, -kInf}, bu = {1, 1, 1}, c = {-1, 0.5}, h = {2, 0, 0, 1}, x = {0, 0};
    int hessian_mode = 0;  // 0 honest, 1 NaN, 2 leaves HX unset
};

int hessian_mode = 0;
extern "C" void hostile_hessian(const int *n, const int *, const double *h, const int *ldh, const double *x,
                                double *hx, const int *, int *, double *) {
    if (hessian_mode == 2) return;
    for (int i = 0; i < *n; ++i) {
        hx[i] = 0.0;
        for (int j = 0; j < *n; ++j) hx[i] += h[i + j * *ldh] * x[j];
        if (hessian_mode == 1) hx[i] = kNaN;
    }
}

int run_nfa(Case k, std::vector<double> *xout = nullptr) {
    std::vector<char> cwsav(80, ' ');
    std::vector<int> lwsav(120), iwsav(610);
    std::vector<double> rwsav(475);
    int l1 = 1, l2 = 120, l3 = 610, l4 = 475, ifail = 0;
    E04WBA_PLAIN("E04NFA", cwsav.data(), &l1, lwsav.data(), &l2, iwsav.data(), &l3, rwsav.data(), &l4, &ifail);
    const std::size_t nn = k.nclin < 0 ? 2 : static_cast<std::size_t>(std::max(k.n, 0)) + std::max(k.nclin, 0);
    std::vector<int> istate(std::max<std::size_t>(nn, 1)), iwork(std::max(k.liwork, 1));
    std::vector<double> ax(4), clamda(std::max<std::size_t>(nn, 1)), work(std::max(k.lwork, 1));
    k.bl.resize(std::max(k.bl.size(), nn), -1.0);
    k.bu.resize(std::max(k.bu.size(), nn), 1.0);
    k.x.resize(std::max<std::size_t>(k.x.size(), k.nclin < 0 ? 0 : std::max(k.n, 0)), 0.0);
    k.c.resize(k.x.size(), 0.0);
    hessian_mode = k.hessian_mode;
    int iter = 0, iuser = 0;
    double obj = 0.0, ruser = 0.0;
    ifail = 1;
    E04NFA(&k.n, &k.nclin, k.a.data(), &k.lda, k.bl.data(), k.bu.data(), k.c.data(), k.h.data(), &k.ldh,
           hostile_hessian, nullptr, istate.data(), k.x.data(), &iter, &obj, ax.data(), clamda.data(), iwork.data(),
           &k.liwork, work.data(), &k.lwork, &iuser, &ruser, lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
    if (ifail == 0) {
        EXPECT_TRUE(std::isfinite(obj));
        for (int j = 0; j < k.n; ++j) EXPECT_TRUE(std::isfinite(k.x[j]));
    }
    if (xout != nullptr) *xout = k.x;
    return ifail;
}

struct Row {
    const char *name;
    std::function<void(Case &)> spoil;
    int ifail;
};

TEST(HostileQp, E04nfaRows) {
    const Row rows[] = {
        {"honest", [](Case &) {}, 0},
        {"nan_x", [](Case &k) { k.x[0] = kNaN; }, 6},
        {"inf_x", [](Case &k) { k.x[1] = -kInf; }, 6},
        {"nan_cvec", [](Case &k) { k.c[0] = kNaN; }, 6},
        {"inf_a", [](Case &k) { k.a[1] = kInf; }, 6},
        {"nan_bound", [](Case &k) { k.bl[1] = kNaN; }, 6},
        {"crossed", [](Case &k) { k.bl[0] = 2.0; }, 6},
        {"infinite_equal", [](Case &k) { k.bl[2] = k.bu[2] = kInf; }, 6},
        {"free_everything", [](Case &k) { k.bl = {-kInf, -kInf, -kInf}, k.bu = {kInf, kInf, kInf}; }, 0},
        {"huge_cvec", [](Case &k) { k.c = {kHuge / 4, -kHuge / 4}; }, 0},
        {"tiny_h", [](Case &k) { k.h = {kTiny, 0, 0, kTiny}; }, 0},
        {"huge_h", [](Case &k) { k.h = {kHuge, 0, 0, kHuge}; }, 0},
        {"n_zero", [](Case &k) { k.n = 0; }, 6},
        {"n_large", [](Case &k) { k.n = 100000; }, 6},
        {"n_overflowing", [](Case &k) { k.n = INT_MAX, k.nclin = -1; }, 6},
        {"nclin_negative", [](Case &k) { k.nclin = -1; }, 6},
        {"lda_short", [](Case &k) { k.lda = 0; }, 6},
        {"ldh_short", [](Case &k) { k.ldh = 1; }, 6},
        {"iwork_short", [](Case &k) { k.liwork = 6; }, 6},
        {"work_short", [](Case &k) { k.lwork = 46; }, 6},
        {"hessian_nan", [](Case &k) { k.hessian_mode = 1; }, 6},
        {"hessian_unset", [](Case &k) { k.hessian_mode = 2; }, -1},
    };
    for (const Row &row : rows) {
        Case k;
        row.spoil(k);
        const int ifail = run_nfa(k);
        if (row.ifail >= 0) {
            EXPECT_EQ(ifail, row.ifail) << row.name;
        }
    }
}

int run_nca(int m, int n, std::vector<double> a, std::vector<double> b, std::vector<double> bl, std::vector<double> bu,
            int lwork) {
    std::vector<char> cwsav(80, ' ');
    std::vector<int> lwsav(120), iwsav(610);
    std::vector<double> rwsav(475);
    int l1 = 1, l2 = 120, l3 = 610, l4 = 475, ifail = 0;
    E04WBA_PLAIN("E04NCA", cwsav.data(), &l1, lwsav.data(), &l2, iwsav.data(), &l3, rwsav.data(), &l4, &ifail);
    const int nclin = 0, ldc = 1, lda = std::max(m, 1), liwork = 2 * std::max(n, 0) + 3;
    const std::size_t nn = static_cast<std::size_t>(std::max(n, 1));
    std::vector<int> istate(nn), kx(nn), iwork(liwork);
    std::vector<double> c(1), cvec(nn), x(nn), clamda(nn), work(std::max(lwork, 1));
    int iter = 0;
    double obj = 0.0;
    ifail = 1;
    E04NCA(&m, &n, &nclin, &ldc, &lda, c.data(), bl.data(), bu.data(), cvec.data(), istate.data(), kx.data(), x.data(),
           a.data(), b.data(), &iter, &obj, clamda.data(), iwork.data(), &liwork, work.data(), &lwork, lwsav.data(),
           iwsav.data(), rwsav.data(), &ifail);
    if (ifail == 0) {
        EXPECT_TRUE(std::isfinite(obj));
    }
    return ifail;
}

TEST(HostileQp, E04ncaRows) {
    // 2 by 2 data; the documented workspace for M = N = 2, NCLIN = 0 is 52.
    const std::vector<double> a = {1, 0, 1, 1}, b = {1, 2}, bl = {-1, -1}, bu = {1, 1};
    struct NcaRow {
        const char *name;
        int m, n;
        std::vector<double> a, b, bl, bu;
        int lwork, ifail;
    };
    const NcaRow rows[] = {
        {"honest", 2, 2, a, b, bl, bu, 52, 0},
        {"work_short", 2, 2, a, b, bl, bu, 51, 6},
        {"nan_a", 2, 2, {1, kNaN, 1, 1}, b, bl, bu, 52, 6},
        {"inf_b", 2, 2, a, {kInf, 0}, bl, bu, 52, 6},
        {"crossed", 2, 2, a, b, {1, -1}, {0, 1}, 52, 6},
        {"huge_data", 2, 2, {kHuge, 0, 0, kHuge}, {kHuge, kHuge}, bl, bu, 52, -1},
        {"m_zero", 0, 2, a, b, bl, bu, 52, 6},
        {"n_zero", 2, 0, a, b, bl, bu, 52, 6},
        {"rank_zero", 2, 2, {0, 0, 0, 0}, b, bl, bu, 52, 1},
    };
    for (const NcaRow &row : rows) {
        const int ifail = run_nca(row.m, row.n, row.a, row.b, row.bl, row.bu, row.lwork);
        if (row.ifail >= 0) {
            EXPECT_EQ(ifail, row.ifail) << row.name;
        }
    }
}

} // namespace
