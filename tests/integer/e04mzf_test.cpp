// E04MZF: the MPSX reader of continuous problems.  A Netlib model read by it and solved by E04NFA
// against its published optimum, the same arrays as H02BUF on a file without integer items, and the
// integer items refused.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "mpsx_test_support.h"
#include "optimisation/option_test_support.h"
#include "zek2/e04.h"

namespace {

using zek_test::mps;
using zek_test::MpsxRead;

std::string afiro_text() {
    std::ifstream in(std::string(ZEK_TEST_DATA_DIR) + "/lp/afiro.mps");
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

TEST(E04mzf, NetlibModelSolvedByTheQpSolverReachesItsOptimum) {
    MpsxRead r(40, 40);
    r.continuous = true;
    ASSERT_EQ(r.read_text(afiro_text()), 0);
    ASSERT_EQ(r.n, 32);
    ASSERT_EQ(r.m, 27);

    // E04NFA takes the reader's arrays as they are: A with leading dimension MAXM, the bounds
    // contiguous (columns, then rows).
    zek_test::OptionState store("E04NFA");
    for (const std::string o : {"Problem Type = LP", "Print Level = 0"}) {
        const int list = 0;
        int inform = 0;
        E04NHF(o.c_str(), &list, store.lwsav.data(), store.iwsav.data(), store.rwsav.data(), &inform,
               static_cast<int>(o.size()));
    }
    const int n = r.n, m = r.m, lda = r.maxm, ldh = 1;
    std::vector<int> istate(static_cast<std::size_t>(n + m)), iwork(static_cast<std::size_t>(2 * n + 3));
    std::vector<double> ax(static_cast<std::size_t>(m)), clamda(static_cast<std::size_t>(n + m)),
        work(static_cast<std::size_t>(13 * n + 5 * m + 4 * n * n)), h(1, 0.0);
    int iter = 0, liwork = static_cast<int>(iwork.size()), lwork = static_cast<int>(work.size()), ifail = 1;
    double obj = 0.0;
    E04NFA(&n, &m, r.a.data(), &lda, r.bl.data(), r.bu.data(), r.cvec.data(), h.data(), &ldh, nullptr, nullptr,
           istate.data(), r.x.data(), &iter, &obj, ax.data(), clamda.data(), iwork.data(), &liwork, work.data(),
           &lwork, nullptr, nullptr, store.lwsav.data(), store.iwsav.data(), store.rwsav.data(), &ifail);
    ASSERT_TRUE(ifail == 0 || ifail == 1) << ifail;
    EXPECT_NEAR(obj, -4.6475314286e+02, 1e-8 * 464.75);
}

TEST(E04mzf, GivesTheArraysOfTheIntegerReaderOnAContinuousFile) {
    MpsxRead integer(40, 40), continuous(40, 40);
    continuous.continuous = true;
    ASSERT_EQ(integer.read_text(afiro_text()), 0);
    ASSERT_EQ(continuous.read_text(afiro_text()), 0);
    EXPECT_EQ(continuous.n, integer.n);
    EXPECT_EQ(continuous.m, integer.m);
    EXPECT_EQ(continuous.a, integer.a);
    EXPECT_EQ(continuous.cvec, integer.cvec);
    EXPECT_EQ(continuous.bl, integer.bl);
    EXPECT_EQ(continuous.bu, integer.bu);
    EXPECT_EQ(continuous.x, integer.x);
    EXPECT_EQ(continuous.rowtyp, integer.rowtyp);
    EXPECT_EQ(continuous.crname, integer.crname);
    EXPECT_EQ(continuous.objective, integer.objective);
}

// The integer items of the grammar, each in an otherwise valid file, and the exit each gives.
struct Refused {
    const char *what;
    std::string line;
    const char *section;  // where the line goes
    int ifail;
};

TEST(E04mzf, RefusesTheIntegerItems) {
    const Refused cases[] = {
        {"marker", mps("", "MARKER", "'MARKER'", "", "'INTORG'"), "COLUMNS", 11},
        {"UI", mps("UI", "BND", "X1", "3.0"), "BOUNDS", 8},
        {"BV", mps("BV", "BND", "X1"), "BOUNDS", 8},
        {"LI", mps("LI", "BND", "X1", "1.0"), "BOUNDS", 8},
        {"UP is continuous", mps("UP", "BND", "X1", "3.0"), "BOUNDS", 0},
    };
    for (const Refused &c : cases) {
        const bool in_columns = std::string(c.section) == "COLUMNS";
        std::string text = "NAME          T\nROWS\n N  COST\n L  LIM\nCOLUMNS\n";
        if (in_columns) text += c.line;
        text += mps("", "X1", "COST", "1.0", "LIM", "1.0");
        text += "RHS\n" + mps("", "RHS", "LIM", "4.0") + "BOUNDS\n";
        if (!in_columns) text += c.line;
        text += "ENDATA\n";
        MpsxRead r(5, 5);
        r.continuous = true;
        EXPECT_EQ(r.read_text(text), c.ifail) << c.what;
        // H02BUF reads every one of them.
        MpsxRead h(5, 5);
        EXPECT_EQ(h.read_text(text), 0) << c.what;
    }
}

TEST(E04mzf, ReportsUnderItsOwnName) {
    MpsxRead r(5, 5);
    r.continuous = true;
    r.optim = "MED";
    std::string text;
    {
        zek_test::OutputCapture capture;
        EXPECT_EQ(r.read_text("NAME\nENDATA\n", -1), 14);
        for (const std::string &line : capture.host()) text += line + "\n";
    }
    EXPECT_NE(text.find(" ** On entry, OPTIM does not equal MIN or MAX:"), std::string::npos) << text;
    EXPECT_NE(text.find("routine E04MZF: IFAIL =    14"), std::string::npos) << text;
}

} // namespace
