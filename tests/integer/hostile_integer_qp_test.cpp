// Hostile input for integer QP: NaN, +-Inf and the extremes of the number range in every input array
// and the tolerances, zero and overflowing sizes, workspace one short, a Hessian routine returning NaN.
// H02CEF and H02CBF must end in one of their exits; a returned integer solution is finite.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "integer_qp_test_support.h"

namespace {

using zek_test::Iqp;
using zek_test::IqpCall;

// minimise x1^2 + x2^2 + x1 x2 - 1.2 x1 + 2.6 x2 over integers in [-5, 5] with x1 + x2 <= 3.
Iqp base() {
    Iqp p(2, 1, -5.0, 5.0);
    p.h = {2.0, 1.0, 1.0, 2.0};
    p.cvec = {-1.2, 2.6};
    p.at(1, 1) = p.at(1, 2) = 1.0;
    p.bu[2] = 3.0;
    return p;
}

TEST(HostileIntegerQp, DataEndInAnExitWithAFiniteSolution) {
    const double values[] = {NAN, HUGE_VAL, -HUGE_VAL, std::numeric_limits<double>::max(),
                             std::numeric_limits<double>::denorm_min()};
    for (int place = 0; place < 7; ++place)
        for (double v : values)
            for (bool callback : {false, true}) {
                Iqp p = base();
                IqpCall call;
                call.callback = callback;
                call.x = {0.0, 0.0};
                double *target[] = {&p.cvec[0], &p.h[0], &p.bl[1], &p.bu[2], &p.a[0], &call.x[1], &call.toliv};
                *target[place] = v;
                if (place == 6) call.tolfes = call.bigbnd = v;
                const int ifail = call.run(p);
                EXPECT_TRUE(ifail >= 0 && ifail <= 14 && ifail != 7) << place << " " << v << ": " << ifail;
                if (ifail == 0 || ifail == 9 || ifail == 12) {
                    EXPECT_TRUE(std::isfinite(call.objective)) << place << " " << v;
                    for (double x : call.x) EXPECT_TRUE(std::isfinite(x)) << place << " " << v;
                }
            }
}

TEST(HostileIntegerQp, SizesAndWorkspace) {
    const struct {
        const char *what;
        std::function<void(IqpCall &, Iqp &)> change;
        int ifail;
    } cases[] = {
        {"as given", [](IqpCall &, Iqp &) {}, 0},
        {"N = 0", [](IqpCall &c, Iqp &) { c.n = 0; }, 6},
        {"M < 0", [](IqpCall &c, Iqp &) { c.m = -1; }, 6},
        {"MAXDPT 1", [](IqpCall &c, Iqp &) { c.maxdpt = 1; }, 6},
        {"LIWORK one short", [](IqpCall &c, Iqp &) { c.liwork = static_cast<int>(IqpCall::min_liwork(2, 1, 30)) - 1; }, 6},
        {"LRWORK one short", [](IqpCall &c, Iqp &) { c.lrwork = static_cast<int>(IqpCall::min_lrwork(2, 1, 30)) - 1; }, 6},
        {"workspace beyond an int",
         [](IqpCall &c, Iqp &p) {
             c.n = 60000;
             c.m = 0;
             p.intvar.assign(60000, 0);
             c.liwork = c.lrwork = 1000;
         },
         6},
        {"Hessian routine NaN at once",
         [](IqpCall &c, Iqp &) {
             c.callback = true;
             c.iuser[1] = 1;
         },
         14},
    };
    for (const auto &s : cases) {
        Iqp p = base();
        IqpCall call;
        s.change(call, p);
        EXPECT_EQ(call.run(p), s.ifail) << s.what << "\n" << call.captured;
    }
}

} // namespace
