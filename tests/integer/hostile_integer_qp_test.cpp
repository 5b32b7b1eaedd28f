// Hostile input for integer QP: NaN, +-Inf and the extremes of the number range in every input array
// and the tolerances, zero and overflowing sizes, workspace one short, a Hessian routine returning NaN.
// H02CEF and H02CBF must end in one of their exits; a returned integer solution is finite.
#include <gtest/gtest.h>

#include <limits>

#include "integer_test_support.h"

namespace {

using zek_test::IntegerProgram;
using zek_test::IqpCall;

// minimise x1^2 + x2^2 + x1 x2 - 1.2 x1 + 2.6 x2 over integers in [-5, 5] with x1 + x2 <= 3.
IntegerProgram base() {
    IntegerProgram p = IntegerProgram::box(2, 1, 5.0, -5.0);
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
                IntegerProgram p = base();
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
    // Each row: N, M, MAXDPT, LIWORK and LRWORK (-1: the minimum, -2: one short), the call from which
    // the Hessian routine returns NaN (0: never), and the IFAIL.
    const struct {
        int n, m, maxdpt, liwork, lrwork, nan_from, ifail;
    } cases[] = {
        {2, 1, 30, -1, -1, 0, 0},    {0, 1, 30, -1, -1, 0, 6}, {2, -1, 30, -1, -1, 0, 6}, {2, 1, 1, -1, -1, 0, 6},
        {2, 1, 30, -2, -1, 0, 6},    {2, 1, 30, -1, -2, 0, 6}, {2, 1, 30, -1, -1, 1, 14},
        {60000, 0, 30, 1000, 1000, 0, 6},  // workspace beyond an int
    };
    for (const auto &c : cases) {
        IntegerProgram p = base();
        p.intvar.assign(static_cast<std::size_t>(std::max(c.n, 2)), 0);
        IqpCall call;
        call.n = c.n, call.m = c.m, call.maxdpt = c.maxdpt;
        call.liwork = c.liwork == -2 ? IqpCall::min_liwork(c.n, c.m, c.maxdpt) - 1 : c.liwork;
        call.lrwork = c.lrwork == -2 ? IqpCall::min_lrwork(c.n, c.m, c.maxdpt) - 1 : c.lrwork;
        call.callback = c.nan_from > 0, call.iuser[1] = c.nan_from;
        EXPECT_EQ(call.run(p), c.ifail) << c.n << " " << c.m << " " << c.maxdpt << "\n" << call.captured;
    }
}

} // namespace
