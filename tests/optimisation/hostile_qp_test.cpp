// Hostile inputs for E04NFA and E04NCA: each ends in the result or its failure exit, in bounded time,
// never IFAIL 0 with a non-finite result.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <limits>

#include "optimisation/qp_test_support.h"

namespace {

using namespace zek_test::qp;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kHuge = std::numeric_limits<double>::max();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

struct Row {
    const char *name;
    std::function<void(Qp &, std::vector<double> &x, Dims &)> spoil;
    int ifail;  // -1: any exit
};

TEST(HostileQp, E04nfaRows) {
    // Two variables in [-1, 1] and one row x1 + x2 <= 1; the documented workspace is 47 reals.
    const Qp base{2, 1, {1, 1}, {-1, -1, -kInf}, {1, 1, 1}, {-1, 0.5}, {2, 0, 0, 1}};
    const Row rows[] = {
        {"honest", [](Qp &, std::vector<double> &, Dims &) {}, 0},
        {"nan_x", [](Qp &, std::vector<double> &x, Dims &) { x[0] = kNaN; }, 6},
        {"inf_x", [](Qp &, std::vector<double> &x, Dims &) { x[1] = -kInf; }, 6},
        {"nan_cvec", [](Qp &p, std::vector<double> &, Dims &) { p.c[0] = kNaN; }, 6},
        {"inf_a", [](Qp &p, std::vector<double> &, Dims &) { p.a[1] = kInf; }, 6},
        {"nan_bound", [](Qp &p, std::vector<double> &, Dims &) { p.bl[1] = kNaN; }, 6},
        {"crossed", [](Qp &p, std::vector<double> &, Dims &) { p.bl[0] = 2.0; }, 6},
        {"infinite_equal", [](Qp &p, std::vector<double> &, Dims &) { p.bl[2] = p.bu[2] = kInf; }, 6},
        {"free", [](Qp &p, std::vector<double> &, Dims &) { p.bl = {-kInf, -kInf, -kInf}, p.bu = {kInf, kInf, kInf}; }, 0},
        {"huge_cvec", [](Qp &p, std::vector<double> &, Dims &) { p.c = {kHuge / 4, -kHuge / 4}; }, 0},
        {"tiny_h", [](Qp &p, std::vector<double> &, Dims &) { p.h = {kTiny, 0, 0, kTiny}; }, 0},
        {"huge_h", [](Qp &p, std::vector<double> &, Dims &) { p.h = {kHuge, 0, 0, kHuge}; }, 0},
        {"n_zero", [](Qp &p, std::vector<double> &, Dims &) { p.n = 0; }, 6},
        {"n_large",
         [](Qp &p, std::vector<double> &x, Dims &d) {
             p.n = 100000, d.liwork = 10, d.lwork = 100;
             p.bl.assign(100001, -1.0), p.bu.assign(100001, 1.0), p.c.assign(100000, 0.0), x.assign(100000, 0.0);
         },
         6},
        {"n_overflowing", [](Qp &p, std::vector<double> &, Dims &d) { p.n = INT_MAX, p.m = -1, d.liwork = d.lwork = 1; }, 6},
        {"lda_short", [](Qp &, std::vector<double> &, Dims &d) { d.lda = 0; }, 6},
        {"ldh_short", [](Qp &, std::vector<double> &, Dims &d) { d.ldh = 1; }, 6},
        {"iwork_short", [](Qp &, std::vector<double> &, Dims &d) { d.liwork = 6; }, 6},
        {"work_short", [](Qp &, std::vector<double> &, Dims &d) { d.lwork = 46; }, 6},
        {"hessian_nan", [](Qp &, std::vector<double> &, Dims &) { hessian_mode = 1; }, 6},
        {"hessian_unset", [](Qp &, std::vector<double> &, Dims &) { hessian_mode = 2; }, -1},
        {"hessian_nan_later",
         [](Qp &, std::vector<double> &x, Dims &) { hessian_mode = 3, x = {-1, -1}; }, 6},
    };
    for (const Row &row : rows) {
        Qp p = base;
        std::vector<double> x = {0, 0};
        Dims d;
        hessian_mode = 0;
        row.spoil(p, x, d);
        Session s("E04NFA");
        const QpOut r = run_nfa(s, p, x, d);
        hessian_mode = 0;
        EXPECT_TRUE(row.ifail < 0 || r.ifail == row.ifail) << row.name << ": IFAIL " << r.ifail;
        EXPECT_TRUE(r.ifail != 0 || (std::isfinite(r.obj) && std::isfinite(r.x[0]) && std::isfinite(r.x[1]))) << row.name;
    }
}

TEST(HostileQp, E04ncaRows) {
    // 2 by 2 data, no general rows: the documented workspace is 52 reals.
    const Ls base{2, 2, 0, {1, 0, 1, 1}, {1, 2}, {}, {-1, -1}, {1, 1}, {}};
    struct NcaRow {
        const char *name;
        std::function<void(Ls &, int &lwork)> spoil;
        int ifail;
    };
    const NcaRow rows[] = {
        {"honest", [](Ls &, int &) {}, 0},
        {"work_short", [](Ls &, int &lwork) { lwork = 51; }, 6},
        {"nan_a", [](Ls &p, int &) { p.a[1] = kNaN; }, 6},
        {"inf_b", [](Ls &p, int &) { p.b[0] = kInf; }, 6},
        {"crossed", [](Ls &p, int &) { p.bl[0] = 1, p.bu[0] = 0; }, 6},
        {"huge_data", [](Ls &p, int &) { p.a = {kHuge, 0, 0, kHuge}, p.b = {kHuge, kHuge}; }, -1},
        {"m_zero", [](Ls &p, int &) { p.m = 0; }, 6},
        {"n_zero", [](Ls &p, int &) { p.n = 0; }, 6},
        {"rank_zero", [](Ls &p, int &) { p.a = {0, 0, 0, 0}; }, 1},
    };
    for (const NcaRow &row : rows) {
        Ls p = base;
        int lwork = 52;
        row.spoil(p, lwork);
        Session s("E04NCA");
        const LsOut r = run_nca(s, p, {0, 0}, lwork);
        EXPECT_TRUE(row.ifail < 0 || r.ifail == row.ifail) << row.name << ": IFAIL " << r.ifail;
        EXPECT_TRUE(r.ifail != 0 || std::isfinite(r.obj)) << row.name;
    }
}

} // namespace
