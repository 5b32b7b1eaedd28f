// E04MZF, the MPSX reader of continuous problems: a Netlib model read by it and solved by E04NFA
// against its published optimum, with H02BUF's arrays; the integer items refused.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "mpsx_test_support.h"
#include "optimisation/option_test_support.h"
#include "zek2/e04.h"

namespace {

using zek_test::mps;
using zek_test::MpsxRead;

TEST(E04mzf, NetlibModelSolvedByTheQpSolverReachesItsOptimum) {
    std::ifstream in(std::string(ZEK_TEST_DATA_DIR) + "/lp/afiro.mps");
    std::stringstream text;
    text << in.rdbuf();
    MpsxRead r(40, 40);
    r.continuous = true;
    ASSERT_EQ(r.read_text(text.str()), 0);

    // E04NFA takes the arrays as they are: A with leading dimension MAXM, the bounds of columns and rows
    // contiguous.
    zek_test::OptionState store("E04NFA");
    for (const std::string o : {"Problem Type = LP", "Print Level = 0"}) {
        int list = 0, inform = 0;
        E04NHF(o.c_str(), &list, store.lwsav.data(), store.iwsav.data(), store.rwsav.data(), &inform,
               static_cast<int>(o.size()));
    }
    const int n = r.n, m = r.m, ldh = 1, liwork = 2 * n + 3, lwork = 13 * n + 5 * m + 4 * n * n;
    ASSERT_EQ(n, 32);
    ASSERT_EQ(m, 27);
    std::vector<int> istate(static_cast<std::size_t>(n + m)), iwork(static_cast<std::size_t>(liwork));
    std::vector<double> ax(static_cast<std::size_t>(m)), clamda(static_cast<std::size_t>(n + m)),
        work(static_cast<std::size_t>(lwork)), hess(1);
    int iter = 0, ifail = 1;
    double obj = 0.0;
    E04NFA(&n, &m, r.a.data(), &r.maxm, r.bl.data(), r.bu.data(), r.cvec.data(), hess.data(), &ldh, nullptr, nullptr,
           istate.data(), r.x.data(), &iter, &obj, ax.data(), clamda.data(), iwork.data(), &liwork, work.data(), &lwork,
           nullptr, nullptr, store.lwsav.data(), store.iwsav.data(), store.rwsav.data(), &ifail);
    ASSERT_LE(ifail, 1);
    EXPECT_NEAR(obj, -4.6475314286e+02, 1e-8 * 464.75);
}

TEST(E04mzf, RefusesTheIntegerItemsThatH02bufReads) {
    const struct {
        std::string line;
        bool in_columns;
        int ifail;
    } cases[] = {
        {mps("", "MARKER", "'MARKER'", "", "'INTORG'"), true, 11},
        {mps("UI", "BND", "X1", "3.0"), false, 8},
        {mps("BV", "BND", "X1"), false, 8},
        {mps("LI", "BND", "X1", "1.0"), false, 8},
        {mps("UP", "BND", "X1", "3.0"), false, 0},
    };
    for (const auto &c : cases) {
        const std::string text = "NAME          T\nROWS\n N  COST\n L  LIM\nCOLUMNS\n" + (c.in_columns ? c.line : "") +
                                 mps("", "X1", "COST", "1.0", "LIM", "1.0") + "RHS\n" + mps("", "RHS", "LIM", "4.0") +
                                 "BOUNDS\n" + (c.in_columns ? "" : c.line) + "ENDATA\n";
        MpsxRead r(5, 5), h(5, 5);
        r.continuous = true;
        EXPECT_EQ(r.read_text(text), c.ifail) << c.line;
        EXPECT_EQ(h.read_text(text), 0) << c.line;
    }
}

} // namespace
