// Hostile inputs for the QP solvers E04NFA and E04NCA, the SQP solver E04UCA and the difference-interval
// routine E04XAA: bad sizes, short workspace, values that are not numbers, user functions that return
// NaN or ask to stop.  Each ends in the result or its failure exit, in bounded time, never a crash or
// IFAIL 0 at a point that is not finite.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

using namespace zek_test::qp;
using zek_test::sqp::Faults;
using zek_test::sqp::Nlp;
using zek_test::sqp::Spoil;

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

// min (x1-1)^2 + (x2-2)^2 + x3  s.t.  x1 + x2 <= 2.5,  x1^2 + x2^2 <= 4,  x1 x3 >= 0.5,  0 <= x <= 3.
Nlp small() {
    Nlp p;
    p.n = 3, p.nclin = 1, p.ncnln = 2, p.a = {1, 1, 0}, p.x0 = {1, 1, 1};
    p.bl = {0, 0, 0, -kBig, -kBig, 0.5}, p.bu = {3, 3, 3, 2.5, 4, kBig};
    p.f = [](const double *x, double *g) {
        g[0] = 2 * (x[0] - 1), g[1] = 2 * (x[1] - 2), g[2] = 1;
        return (x[0] - 1) * (x[0] - 1) + (x[1] - 2) * (x[1] - 2) + x[2];
    };
    p.con = [](const double *x, double *c, double *j) {
        c[0] = x[0] * x[0] + x[1] * x[1];
        c[1] = x[0] * x[2];
        j[0] = 2 * x[0], j[1] = x[2], j[2] = 2 * x[1], j[3] = 0, j[4] = 0, j[5] = x[0];
    };
    return p;
}

const struct {
    const char *name;
    void (*edit)(Nlp &, Faults &, Spoil &);
    int ifail;  // expected; 100: any nonzero
} kSqpRows[] = {
    {"solves", [](Nlp &, Faults &, Spoil &) {}, 0},
    {"N zero", [](Nlp &, Faults &, Spoil &s) { s.n = 0; }, 9},
    {"NCLIN negative", [](Nlp &, Faults &, Spoil &s) { s.nclin = -1; }, 9},
    {"NCNLN negative", [](Nlp &, Faults &, Spoil &s) { s.ncnln = -1; }, 9},
    {"LDA short", [](Nlp &, Faults &, Spoil &s) { s.lda = 0; }, 9},
    {"LDCJ short", [](Nlp &, Faults &, Spoil &s) { s.ldcj = 1; }, 9},
    {"LDR short", [](Nlp &, Faults &, Spoil &s) { s.ldr = 2; }, 9},
    {"LWORK one short", [](Nlp &p, Faults &, Spoil &s) { s.lwork = int(zek_test::sqp::uca_lwork(p.n, p.nclin, p.ncnln)) - 1; }, 9},
    {"LIWORK one short", [](Nlp &p, Faults &, Spoil &s) { s.liwork = 2 * p.n + 2 + p.ncnln; }, 9},
    {"inconsistent nonlinear bounds", [](Nlp &p, Faults &, Spoil &) { p.bl[4] = 5; }, 9},
    {"OBJFUN null", [](Nlp &, Faults &, Spoil &s) { s.null_routine = 1; }, 9},
    {"CONFUN null", [](Nlp &, Faults &, Spoil &s) { s.null_routine = 2; }, 9},
    {"NaN in X", [](Nlp &p, Faults &, Spoil &) { p.x0[1] = kNaN; }, 9},
    {"+Inf in X", [](Nlp &p, Faults &, Spoil &) { p.x0[0] = kInf; }, 9},
    {"NaN bound", [](Nlp &p, Faults &, Spoil &) { p.bu[2] = kNaN; }, 9},
    {"NaN in A", [](Nlp &p, Faults &, Spoil &) { p.a[1] = kNaN; }, 9},
    {"huge X (moved into the bounds)", [](Nlp &p, Faults &, Spoil &) { p.x0 = {1e300, 1e300, 1e300}; }, 0},
    {"NaN objective at the start", [](Nlp &, Faults &f, Spoil &) { f.nan_after = 0; }, 9},
    {"NaN objective later", [](Nlp &, Faults &f, Spoil &) { f.nan_after = 3; }, 100},
    {"stop at the first call", [](Nlp &, Faults &f, Spoil &) { f.stop_after = 0; }, -1},
    {"stop later", [](Nlp &, Faults &f, Spoil &) { f.stop_after = 4; }, -1},
    {"NaN objective later, search on values", [](Nlp &, Faults &f, Spoil &) { f.nan_after = 9, f.skip_gradient = 0; }, 100},
    {"stop later, search on values", [](Nlp &, Faults &f, Spoil &) { f.stop_after = 9, f.skip_gradient = 0; }, -1},
    {"unbounded below",
     [](Nlp &p, Faults &, Spoil &) {
         p.nclin = p.ncnln = 0, p.bl = {-kBig, -kBig, -kBig}, p.bu = {kBig, kBig, kBig};
         p.f = [](const double *x, double *g) { return g[0] = -1, g[1] = g[2] = 0, -x[0]; };
     },
     100},
    {"no feasible point for the linear constraints", [](Nlp &p, Faults &, Spoil &) { p.bl[3] = 7; p.bu[3] = kBig; }, 2},
    {"no feasible point for the nonlinear constraints", [](Nlp &p, Faults &, Spoil &) { p.bu[4] = 0.1; p.bl[5] = 2.5; }, 3},
};

TEST(HostileSqp, EachRowEndsInItsExit) {
    for (const auto &row : kSqpRows) {
        SCOPED_TRACE(row.name);
        Nlp p = small();
        Faults f;
        Spoil s;
        row.edit(p, f, s);
        // At the most verbose level, so the traces and tables meet the same data.
        zek_test::OutputCapture capture;
        const zek_test::sqp::Out r = zek_test::sqp::run_uca(p, {"Major Print Level = 30"}, f, s);
        EXPECT_TRUE(row.ifail == 100 ? r.ifail != 0 : r.ifail == row.ifail) << "IFAIL " << r.ifail;
        EXPECT_TRUE(r.ifail != 0 || (std::isfinite(r.objf) && std::all_of(r.x.begin(), r.x.end(), [](double v) { return std::isfinite(v); })));
    }
}

int xaa_kind = 0;
extern "C" void xaa_objfun(int *mode, const int *, const double *x, double *objf, double *, const int *, int *,
                           double *) {
    if (xaa_kind == 1) {
        *mode = -2;
        return;
    }
    *objf = xaa_kind == 2 ? kNaN : std::exp(x[0]) + x[1] * x[1] * x[1];
}

struct Xaa {
    int ifail = 1, iwarn = 0, info[2] = {0, 0};
    double g[2] = {0, 0}, hes[4] = {0, 0, 0, 0};
};
Xaa xaa(int n, int lhes, int mode, int lwork, int kind) {
    xaa_kind = kind;
    Xaa r;
    int msglvl = 0, nfev[2], iuser[1];
    double epsrf = 0, e = 0, objf = 0, x[2] = {0.5, 1.0}, hf[2] = {0, 0}, hc[2], work[2], err[2], ruser[1];
    E04XAA(&msglvl, &n, &epsrf, &e, x, &mode, xaa_objfun, nullptr, &lhes, hf, hc, r.hes, &r.iwarn, work, &lwork, iuser,
           ruser, r.info, &objf, r.g, err, nfev, &r.ifail);
    return r;
}

TEST(HostileE04xaa, ArgumentsAndUserFunctions) {
    const struct {
        const char *name;
        int n, lhes, mode, lwork, kind, ifail;
    } rows[] = {
        {"honest", 2, 2, 1, 2, 0, 0},       {"N zero", 0, 2, 0, 2, 0, 1},           {"LHES short", 2, 1, 0, 2, 0, 1},
        {"LWORK short", 2, 2, 0, 1, 0, 1}, {"MODE out of range", 2, 2, 2, 2, 0, 1}, {"user stop", 2, 2, 0, 2, 1, -2},
        {"NaN at X", 2, 2, 1, 2, 2, 2},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const Xaa r = xaa(row.n, row.lhes, row.mode, row.lwork, row.kind);
        EXPECT_EQ(r.ifail, row.ifail);
        if (row.ifail != 0) continue;
        // The intervals give the gradient and the Hessian's diagonal of exp(x1) + x2^3 at (0.5, 1).
        EXPECT_NEAR(r.g[0], std::exp(0.5), 1e-8);
        EXPECT_NEAR(r.g[1], 3.0, 1e-8);
        EXPECT_NEAR(r.hes[0], std::exp(0.5), 1e-3);
        EXPECT_NEAR(r.hes[3], 6.0, 1e-3);
        EXPECT_EQ(r.info[0], 0);
        EXPECT_EQ(r.iwarn, 0);
    }
}

} // namespace
