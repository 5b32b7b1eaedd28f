// Hostile input for integer QP: NaN, +-Inf and the extremes of the number range in every input array
// and the tolerances, a Hessian routine that returns NaN, zero and overflowing sizes and workspace one
// short.  H02CEF and H02CBF must end with one of their exits; a returned integer solution is finite.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "integer_qp_test_support.h"

namespace {

using zek_test::Iqp;
using zek_test::IqpCall;

const double kValues[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL,
                          std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()};

// minimise x1^2 + x2^2 - 1.2 x1 + 2.6 x2 + x1 x2 subject to x1 + x2 <= 3, x in [-5, 5], both integer.
Iqp base() {
    Iqp p = Iqp::box(2, 1, -5.0, 5.0);
    p.h = {2.0, 1.0, 1.0, 2.0};
    p.cvec = {-1.2, 2.6};
    p.at(1, 1) = 1.0;
    p.at(1, 2) = 1.0;
    p.bu[2] = 3.0;
    return p;
}

enum class Place { Linear, Hessian, Lower, Upper, Matrix, Start, Tolerances };

struct Case {
    Place place;
    double value;
    bool callback;
};

class HostileIntegerQp : public ::testing::TestWithParam<Case> {};

TEST_P(HostileIntegerQp, EndsInAnExitWithAFiniteSolution) {
    const Case c = GetParam();
    Iqp p = base();
    IqpCall call;
    call.callback = c.callback;
    call.maxnod = 200;
    call.x0 = {0.0, 0.0};
    switch (c.place) {
    case Place::Linear: p.cvec[0] = c.value; break;
    case Place::Hessian: p.h[0] = c.value; break;
    case Place::Lower: p.bl[1] = c.value; break;
    case Place::Upper: p.bu[2] = c.value; break;
    case Place::Matrix: p.a[0] = c.value; break;
    case Place::Start: call.x0[1] = c.value; break;
    case Place::Tolerances: call.toliv = call.tolfes = call.bigbnd = c.value; break;
    }
    const int ifail = call.run(p);
    EXPECT_TRUE(ifail >= 0 && ifail <= 14 && ifail != 7) << ifail;
    if (ifail == 0 || ifail == 9 || ifail == 12) {
        EXPECT_TRUE(std::isfinite(call.objective));
        for (double v : call.x) EXPECT_TRUE(std::isfinite(v));
    }
}

std::vector<Case> all_cases() {
    std::vector<Case> cases;
    for (Place place : {Place::Linear, Place::Hessian, Place::Lower, Place::Upper, Place::Matrix, Place::Start,
                        Place::Tolerances})
        for (double v : kValues)
            for (bool callback : {false, true}) cases.push_back({place, v, callback});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Data, HostileIntegerQp, ::testing::ValuesIn(all_cases()));

// Sizes and workspace: each row changes one argument of a good call and names the IFAIL it must give.
struct SizeCase {
    const char *what;
    void (*change)(IqpCall &, Iqp &);
    int ifail;
};

TEST(HostileIntegerQpSizes, ZeroSizesOverflowAndShortWorkspace) {
    const SizeCase cases[] = {
        {"as given", [](IqpCall &, Iqp &) {}, 0},
        {"N = 0", [](IqpCall &c, Iqp &) { c.n_override = 0; }, 6},
        {"M < 0", [](IqpCall &c, Iqp &) { c.m_override = -1; }, 6},
        {"LDH < N", [](IqpCall &c, Iqp &) { c.ldh = 1; }, 6},
        {"MAXDPT 1", [](IqpCall &c, Iqp &) { c.maxdpt = 1; }, 6},
        {"LIWORK one short", [](IqpCall &c, Iqp &) { c.liwork = static_cast<int>(zek_test::iqp_liwork(2, 1, 30)) - 1; },
         6},
        {"LRWORK one short", [](IqpCall &c, Iqp &) { c.lrwork = static_cast<int>(zek_test::iqp_lrwork(2, 1, 30)) - 1; },
         6},
        {"N whose workspace overflows",
         [](IqpCall &c, Iqp &p) {
             c.n_override = 60000;
             c.m_override = 0;
             p.intvar.assign(60000, 0);
             c.liwork = c.lrwork = 1000;
         },
         6},
        {"Hessian routine returns NaN at once",
         [](IqpCall &c, Iqp &) {
             c.callback = true;
             c.nan_after = 1;
         },
         14},
    };
    for (const SizeCase &s : cases) {
        Iqp p = base();
        IqpCall call;
        s.change(call, p);
        EXPECT_EQ(call.run(p), s.ifail) << s.what << "\n" << call.captured;
    }
}

} // namespace
