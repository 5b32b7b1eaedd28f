// Hostile inputs for E04NFA and E04NCA: each ends in the result or its failure exit, in bounded time,
// never IFAIL 0 with a non-finite result.
#include <gtest/gtest.h>

#include <climits>

#include "optimisation/qp_test_support.h"

namespace {

using namespace zek_test::qp;

// One E04NFA call's problem, start and dimensions, spoilt by a row.
struct NfaCall {
    Qp p;
    std::vector<double> x;
    Dims d;
};

TEST(HostileQp, E04nfaRows) {
    // Two variables in [-1, 1] and one row x1 + x2 <= 1; the documented workspace is 47 reals.
    const Qp base{2, 1, {1, 1}, {-1, -1, -kInf}, {1, 1, 1}, {-1, 0.5}, {2, 0, 0, 1}};
    const struct {
        const char *name;
        void (*spoil)(NfaCall &);
        int ifail;  // -1: any exit
    } rows[] = {
        {"honest", [](NfaCall &) {}, 0},
        {"nan_x", [](NfaCall &c) { c.x[0] = kNaN; }, 6},
        {"inf_x", [](NfaCall &c) { c.x[1] = -kInf; }, 6},
        {"nan_cvec", [](NfaCall &c) { c.p.c[0] = kNaN; }, 6},
        {"inf_a", [](NfaCall &c) { c.p.a[1] = kInf; }, 6},
        {"nan_bound", [](NfaCall &c) { c.p.bl[1] = kNaN; }, 6},
        {"crossed", [](NfaCall &c) { c.p.bl[0] = 2.0; }, 6},
        {"infinite_equal", [](NfaCall &c) { c.p.bl[2] = c.p.bu[2] = kInf; }, 6},
        {"free", [](NfaCall &c) { c.p.bl = {-kInf, -kInf, -kInf}, c.p.bu = {kInf, kInf, kInf}; }, 0},
        {"huge_cvec", [](NfaCall &c) { c.p.c = {kHuge / 4, -kHuge / 4}; }, 0},
        {"tiny_h", [](NfaCall &c) { c.p.h = {kTiny, 0, 0, kTiny}; }, 0},
        {"huge_h", [](NfaCall &c) { c.p.h = {kHuge, 0, 0, kHuge}; }, 0},
        {"n_zero", [](NfaCall &c) { c.p.n = 0; }, 6},
        {"n_large",
         [](NfaCall &c) {
             c.p.n = 100000, c.d.liwork = 10, c.d.lwork = 100;
             c.p.bl.assign(100001, -1.0), c.p.bu.assign(100001, 1.0), c.p.c.assign(100000, 0.0), c.x.assign(100000, 0.0);
         },
         6},
        {"n_overflowing", [](NfaCall &c) { c.p.n = INT_MAX, c.p.m = -1, c.d.liwork = c.d.lwork = 1; }, 6},
        {"lda_short", [](NfaCall &c) { c.d.lda = 0; }, 6},
        {"ldh_short", [](NfaCall &c) { c.d.ldh = 1; }, 6},
        {"iwork_short", [](NfaCall &c) { c.d.liwork = 6; }, 6},
        {"work_short", [](NfaCall &c) { c.d.lwork = 46; }, 6},
        {"hessian_nan", [](NfaCall &) { hessian_mode = 1; }, 6},
        {"hessian_unset", [](NfaCall &) { hessian_mode = 2; }, -1},
        {"hessian_nan_later", [](NfaCall &c) { hessian_mode = 3, c.x = {-1, -1}; }, 6},
    };
    for (const auto &row : rows) {
        NfaCall c{base, {0, 0}, {}};
        hessian_mode = 0;
        row.spoil(c);
        Session s("E04NFA");
        const QpOut r = run_nfa(s, c.p, c.x, c.d);
        hessian_mode = 0;
        EXPECT_TRUE(row.ifail < 0 || r.ifail == row.ifail) << row.name << ": IFAIL " << r.ifail;
        EXPECT_TRUE(r.ifail != 0 || (std::isfinite(r.obj) && std::isfinite(r.x[0]) && std::isfinite(r.x[1]))) << row.name;
    }
}

TEST(HostileQp, E04ncaRows) {
    // 2 by 2 data, no general rows: the documented workspace is 52 reals.
    const Ls base{2, 2, 0, {1, 0, 1, 1}, {1, 2}, {}, {-1, -1}, {1, 1}, {}};
    const struct {
        const char *name;
        void (*spoil)(Ls &, int &lwork);
        int ifail;
    } rows[] = {
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
    for (const auto &row : rows) {
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
