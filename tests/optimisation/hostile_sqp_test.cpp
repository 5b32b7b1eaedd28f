// Hostile input for E04UCA and E04XAA: bad sizes, short workspace, values that are not numbers, user
// functions that return NaN or ask to stop.  Each ends in its exit, never a crash, a hang, or IFAIL 0
// at a point that is not finite.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "frame/host_capture.h"
#include "sqp_test_support.h"

namespace {

using zek_test::qp::kBig;
using zek_test::sqp::Faults;
using zek_test::sqp::Nlp;
using zek_test::sqp::Spoil;

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

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

struct Row {
    const char *name;
    void (*edit)(Nlp &, Faults &, Spoil &);
    int ifail;  // expected; 100: any nonzero
};

const Row kRows[] = {
    {"solves", [](Nlp &, Faults &, Spoil &) {}, 0},
    {"N zero", [](Nlp &, Faults &, Spoil &s) { s.n = 0; }, 9},
    {"NCLIN negative", [](Nlp &, Faults &, Spoil &s) { s.nclin = -1; }, 9},
    {"NCNLN negative", [](Nlp &, Faults &, Spoil &s) { s.ncnln = -1; }, 9},
    {"LDA short", [](Nlp &, Faults &, Spoil &s) { s.lda = 0; }, 9},
    {"LDCJ short", [](Nlp &, Faults &, Spoil &s) { s.ldcj = 1; }, 9},
    {"LDR short", [](Nlp &, Faults &, Spoil &s) { s.ldr = 2; }, 9},
    {"LWORK one short", [](Nlp &p, Faults &, Spoil &s) {
         s.lwork = static_cast<int>(zek_test::sqp::uca_lwork(p.n, p.nclin, p.ncnln)) - 1; }, 9},
    {"LIWORK one short", [](Nlp &p, Faults &, Spoil &s) { s.liwork = 2 * p.n + 2 + p.ncnln; }, 9},
    {"inconsistent nonlinear bounds", [](Nlp &p, Faults &, Spoil &) { p.bl[4] = 5; }, 9},
    {"OBJFUN null", [](Nlp &, Faults &, Spoil &s) { s.null_routine = 1; }, 9},
    {"CONFUN null", [](Nlp &, Faults &, Spoil &s) { s.null_routine = 2; }, 9},
    {"NaN in X", [](Nlp &p, Faults &, Spoil &) { p.x0[1] = kNan; }, 9},
    {"+Inf in X", [](Nlp &p, Faults &, Spoil &) { p.x0[0] = kInf; }, 9},
    {"NaN bound", [](Nlp &p, Faults &, Spoil &) { p.bu[2] = kNan; }, 9},
    {"NaN in A", [](Nlp &p, Faults &, Spoil &) { p.a[1] = kNan; }, 9},
    {"huge X (moved into the bounds)", [](Nlp &p, Faults &, Spoil &) { p.x0 = {1e300, 1e300, 1e300}; }, 0},
    {"NaN objective at the start", [](Nlp &, Faults &f, Spoil &) { f.nan_after = 0; }, 9},
    {"NaN objective later", [](Nlp &, Faults &f, Spoil &) { f.nan_after = 3; }, 100},
    {"stop at the first call", [](Nlp &, Faults &f, Spoil &) { f.stop_after = 0; }, -1},
    {"stop later", [](Nlp &, Faults &f, Spoil &) { f.stop_after = 4; }, -1},
    {"NaN objective later, search on values", [](Nlp &, Faults &f, Spoil &) { f.nan_after = 9, f.skip_gradient = 0; }, 100},
    {"stop later, search on values", [](Nlp &, Faults &f, Spoil &) { f.stop_after = 9, f.skip_gradient = 0; }, -1},
    {"unbounded below", [](Nlp &p, Faults &, Spoil &) {
         p.nclin = p.ncnln = 0;
         p.bl = {-kBig, -kBig, -kBig};
         p.bu = {kBig, kBig, kBig};
         p.f = [](const double *x, double *g) { g[0] = -1, g[1] = g[2] = 0; return -x[0]; }; }, 100},
    {"no feasible point for the linear constraints", [](Nlp &p, Faults &, Spoil &) { p.bl[3] = 7; p.bu[3] = kBig; }, 2},
    {"no feasible point for the nonlinear constraints", [](Nlp &p, Faults &, Spoil &) { p.bu[4] = 0.1; p.bl[5] = 2.5; }, 3},
};

TEST(HostileSqp, EachRowEndsInItsExit) {
    for (const Row &row : kRows) {
        SCOPED_TRACE(row.name);
        Nlp p = small();
        Faults f;
        Spoil s;
        row.edit(p, f, s);
        // At the most verbose level, so the traces and tables meet the same data.
        zek_test::OutputCapture capture;
        const zek_test::sqp::Out r = zek_test::sqp::run_uca(p, {"Major Print Level = 30"}, f, s);
        if (row.ifail == 100) EXPECT_NE(r.ifail, 0);
        else EXPECT_EQ(r.ifail, row.ifail);
        if (r.ifail == 0) {
            EXPECT_TRUE(std::isfinite(r.objf));
            for (double v : r.x) EXPECT_TRUE(std::isfinite(v));
        }
    }
}

// ---- E04XAA -------------------------------------------------------------------------------------------

int xaa_kind = 0;
extern "C" void xaa_objfun(int *mode, const int *, const double *x, double *objf, double *, const int *, int *,
                           double *) {
    if (xaa_kind == 1) {
        *mode = -2;
        return;
    }
    *objf = xaa_kind == 2 ? kNan : std::exp(x[0]) + x[1] * x[1] * x[1];
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
    struct XRow {
        const char *name;
        int n, lhes, mode, lwork, kind, ifail;
    };
    const XRow rows[] = {
        {"N zero", 0, 2, 0, 2, 0, 1},         {"LHES short", 2, 1, 0, 2, 0, 1},
        {"MODE out of range", 2, 2, 2, 2, 0, 1}, {"LWORK short", 2, 2, 0, 1, 0, 1},
        {"user stop", 2, 2, 0, 2, 1, -2},      {"NaN at X", 2, 2, 1, 2, 2, 2},
    };
    for (const XRow &r : rows) EXPECT_EQ(xaa(r.n, r.lhes, r.mode, r.lwork, r.kind).ifail, r.ifail) << r.name;
}

TEST(E04xaaEstimates, IntervalsGiveGradientAndHessianDiagonal) {
    const Xaa r = xaa(2, 2, 1, 2, 0);
    ASSERT_EQ(r.ifail, 0);
    EXPECT_NEAR(r.g[0], std::exp(0.5), 1e-8);
    EXPECT_NEAR(r.g[1], 3.0, 1e-8);
    EXPECT_NEAR(r.hes[0], std::exp(0.5), 1e-3);
    EXPECT_NEAR(r.hes[3], 6.0, 1e-3);
    EXPECT_EQ(r.info[0], 0);
    EXPECT_EQ(r.iwarn, 0);
}

} // namespace
