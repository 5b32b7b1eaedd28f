// What E04MFA tells its caller: input errors (all counted and reported, IFAIL 6, outputs untouched),
// the exit words with their IFAIL and texts, and the lines each print level adds.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "frame/host_capture.h"
#include "frame/output.h"
#include "lp_test_support.h"

namespace {

using zek_test::kInf;
using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

// A run captured as the host sees it: its lines as written and without trailing blanks.
struct Captured {
    LpResult r;
    std::vector<std::string> lines, raw;
    bool has(std::string line) const {
        while (!line.empty() && line.back() == ' ') line.pop_back();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    bool starts(const std::string &s) const {
        return std::any_of(raw.begin(), raw.end(), [&](const std::string &l) { return l.rfind(s, 0) == 0; });
    }
};

Captured run(const std::function<LpResult(LpSession &)> &call, const std::vector<std::string> &options) {
    LpSession session;
    for (const std::string &o : options) session.option(o);  // a bad one is the case under test
    Captured c;
    zek_test::OutputCapture capture;
    c.r = call(session);
    c.raw = capture.host();
    for (std::string s : c.raw) {
        while (!s.empty() && (s.back() == ' ' || s.back() == '\n')) s.pop_back();
        c.lines.push_back(s);
    }
    return c;
}

const LpProblem two_rows = LpProblem::dense({{1, 2}, {3, 1}}, {0, 0, -kInf, -kInf}, {kInf, kInf, 4, 6}, {-1, -1});

// An argument list a case spoils: the problem, ISTATE, the lengths, the options.
struct Args {
    LpProblem p = two_rows;
    std::vector<int> istate = std::vector<int>(4, 0);
    int liwork = 7, lwork = 32, lda = -1;
    std::vector<std::string> options;
};

struct InputError {
    std::string name;
    std::function<void(Args &)> spoil;
    int errors;
    std::vector<std::string> records;
};

const std::vector<InputError> input_errors = {
    {"n", [](Args &a) { a.p.n = 0; }, 1, {" ** On entry, N.le.0:", "    N =                0"}},
    {"nclin", [](Args &a) { a.p.m = -1; }, 1, {" ** On entry, NCLIN.lt.0:", "    NCLIN =               -1"}},
    {"lda", [](Args &a) { a.lda = 1; }, 1,
     {" ** On entry, LDA.lt.max(1,NCLIN):", "    LDA =                1  NCLIN =                2"}},
    {"row_bounds", [](Args &a) { a.p.bl[3] = 7; }, 1, {" ** On entry, the bounds on  L Con  2  are inconsistent:"}},
    {"equal_infinite", [](Args &a) { a.p.bl[0] = a.p.bu[0] = 1e25; }, 1,
     {" ** On entry, the equal bounds on  Varbl  1  are infinite (because"}},
    {"warm_istate", [](Args &a) { a.options = {"Warm Start"}, a.istate[1] = 5; }, 1,
     {" ** On entry with a Warm Start, ISTATE(   2) is out of range:", "    ISTATE =                5"}},
    {"workspace", [](Args &a) { a.liwork = 6; }, 1,
     {" Workspace provided is     IWORK(       6),  WORK(      32).",
      " To solve problem we need  IWORK(       7),  WORK(      32).", " ** Not enough workspace to solve problem."}},
    {"several", [](Args &a) { a.p.bl[0] = 3, a.p.bu[0] = 2, a.p.bl[2] = 9, a.lwork = 31; }, 3,
     {" ** On entry, the bounds on  Varbl  1  are inconsistent:", " ** Not enough workspace to solve problem."}},
};

TEST(LpInputErrors, AreCountedAndReportedBeforeAnyWork) {
    const std::vector<double> x0 = {0.5, 0.25};
    for (const InputError &e : input_errors) {
        Args a;
        e.spoil(a);
        for (const int ifail : {-1, 1}) {
            const Captured c = run(
                [&](LpSession &s) { return s.solve(a.p, x0, a.istate, ifail, a.liwork, a.lwork, a.lda); }, a.options);
            EXPECT_EQ(c.r.ifail, 6) << e.name;
            EXPECT_EQ(c.r.x, x0) << e.name;
            EXPECT_EQ(c.r.istate, a.istate) << e.name;
            EXPECT_EQ(c.lines.empty(), ifail == 1) << e.name;  // soft and silent
            if (ifail == 1) continue;
            for (const std::string &record : e.records) EXPECT_TRUE(c.has(record)) << record;
            EXPECT_TRUE(c.has(zek::format(" ** %7ld errors found in the input parameters.  Problem abandoned.",
                                          static_cast<long>(e.errors))));
            EXPECT_TRUE(c.has(" ** ABNORMAL EXIT from ZEK Library routine E04MFA: IFAIL =     6")) << e.name;
        }
    }
    // A cold start reads no ISTATE.
    EXPECT_EQ(LpSession().solve(two_rows, {}, {9, -9, 17, 5}).ifail, 0);
}

struct ExitCase {
    std::string name;
    LpProblem p;
    std::vector<std::string> options;
    std::vector<double> x0;
    int ifail;
    std::string record;     // the " ** " record; empty for success
    std::string exit_line;  // written exactly, trailing blanks included
    std::string last_line;  // how the final line starts
};

const std::vector<ExitCase> exit_cases = {
    {"optimal", two_rows, {}, {}, 0, "", " Exit E04MFA - Optimal LP solution.", " Final LP objective value ="},
    {"feasible", two_rows, {"Problem Type = FP"}, {}, 0, "", " Exit E04MFA - Feasible point found.     ",
     " Final sum of infeasibilities ="},
    // x2 costs nothing and is held at its starting value.
    {"weak", LpProblem::dense({}, {0, 0}, {1, 1}, {1, 0}), {}, {0.5, 0.5}, 1, " ** Weak LP solution.",
     " Exit E04MFA - Weak LP solution.", " Final LP objective value ="},
    {"unbounded", LpProblem::dense({{1, -1}}, {0, 0, -kInf}, {kInf, kInf, 1}, {-1, 0}), {}, {}, 2,
     " ** LP solution is unbounded.", " Exit E04MFA - LP solution is unbounded.", " Final LP objective value ="},
    {"infeasible", LpProblem::dense({{1, 1}}, {0, 0, 5}, {1, 1, kInf}, {1, 1}), {"Min Sum Yes"}, {}, 3,
     " ** No feasible point for the linear constraints.", " Exit E04MFA - No feasible point for the linear constraints.",
     " Minimum sum of infeasibilities ="},
    {"iterations", two_rows, {"Iteration Limit = 1"}, {}, 4, " ** Too many iterations.",
     " Exit E04MFA - Too many iterations.", " Final LP objective value ="},
    // Rounding alone leaves the equality further from its bound than the tolerance.
    {"row_error", LpProblem::dense({{0.1, 0.3}}, {-kInf, -kInf, 1e15 + 1}, {kInf, kInf, 1e15 + 1}, {1, 1}), {}, {}, 3,
     " ** Cannot satisfy the working set constraints to the accuracy requested.",
     " Exit E04MFA - Cannot satisfy the working set constraints to the accuracy", " Maximum row error ="},
    {"problem_type", two_rows, {"Problem Type = QP2"}, {}, 7, " ** Problem type not recognized.  Problem abandoned.",
     " Exit E04MFA - Problem type not recognized.  Problem abandoned.", ""},
};

TEST(LpExits, WordIfailAndTexts) {
    for (const ExitCase &e : exit_cases) {
        std::vector<std::string> options = e.options;
        options.push_back("Print Level = 1");
        const Captured c = run([&](LpSession &s) { return s.solve(e.p, e.x0, {}, -1); }, options);
        EXPECT_EQ(c.r.ifail, e.ifail) << e.name;
        if (!e.record.empty()) {
            EXPECT_TRUE(c.starts(e.record)) << e.name;
            EXPECT_TRUE(c.starts(zek::format(" ** ABNORMAL EXIT from ZEK Library routine E04MFA: IFAIL =%6ld",
                                             static_cast<long>(e.ifail))));
            EXPECT_TRUE(c.starts(" ** ZEK soft failure - control returned")) << e.name;
        }
        EXPECT_NE(std::find(c.raw.begin(), c.raw.end(), e.exit_line), c.raw.end()) << e.name;
        if (e.last_line.empty()) continue;
        EXPECT_TRUE(c.starts(zek::format(" Exit from %s problem after %5ld iterations.",
                                         e.name == "feasible" ? "FP" : "LP", static_cast<long>(c.r.iter))));
        EXPECT_TRUE(c.starts(e.last_line)) << e.name;
    }
}

TEST(LpPrinting, LevelsAddTheirLines) {
    const std::string solution = " Varbl State     Value       Lower Bound   Upper Bound    Lagr Mult   Slack";
    const std::string short_head = "  Itn     Step Ninf Sinf/Objective  Norm Gz";
    const std::string long_head =
        "  Itn Jdel  Jadd      Step Ninf  Sinf/Objective  Bnd  Lin  Art   Zr  Norm Gz NOpt    Min Lm   Cond T";
    // level, then whether the parameters, the solution, short lines, long lines, detailed pages appear
    for (const std::vector<int> &l : std::vector<std::vector<int>>{
             {0, 0, 0, 0, 0, 0}, {1, 1, 1, 0, 0, 0}, {5, 1, 0, 1, 0, 0}, {10, 1, 1, 0, 1, 0}, {20, 1, 1, 0, 1, 1}}) {
        const Captured c = run([](LpSession &s) { return s.solve(two_rows); }, {"Print Level = " + std::to_string(l[0])});
        EXPECT_EQ(c.r.ifail, 0);
        EXPECT_EQ(c.lines.empty(), l[0] == 0);
        EXPECT_EQ(c.has(" Parameters"), l[1] == 1) << l[0];
        EXPECT_EQ(c.has(solution), l[2] == 1) << l[0];
        EXPECT_EQ(c.has(short_head), l[3] == 1) << l[0];
        EXPECT_EQ(c.has(long_head), l[4] == 1) << l[0];
        EXPECT_EQ(c.has(" LP iteration    1") && c.has(" Values and status of the LP constraints"), l[5] == 1);
        if (l[2] == 0) continue;
        // The vertex (1.6, 1.2): x1 free of its bounds, both rows at their upper bounds.
        EXPECT_TRUE(c.has(zek::format(" V   1    FR %14.6G%s%s%12.4G%12.4G", 1.6, "       .      ", "      None    ",
                                      0.0, 1.6)));
        EXPECT_TRUE(c.starts(" L   1    UL "));
    }
}

} // namespace
