// What E04MFA tells its caller: the input errors (all counted, each with its records, IFAIL 6 and
// the outputs untouched), the words of the exits with their IFAIL, and the lines of each print level.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/output.h"
#include "lp_test_support.h"
#include "zek2/e04.h"

namespace {

using zek_test::kInf;
using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

std::string trimmed(std::string s) {
    while (!s.empty() && (s.back() == ' ' || s.back() == '\n')) s.pop_back();
    return s;
}

// The host lines of one call, trailing blanks dropped.
std::vector<std::string> lines_of(zek_test::OutputCapture &capture) {
    std::vector<std::string> out;
    for (const std::string &s : capture.host()) out.push_back(trimmed(s));
    return out;
}

bool contains(const std::vector<std::string> &lines, const std::string &line) {
    return std::find(lines.begin(), lines.end(), trimmed(line)) != lines.end();
}

// The arguments of one E04MFA call, which a case may spoil.
struct Call {
    int n = 2, nclin = 1, lda = 1, liwork = 7, lwork = 27;
    std::vector<double> a = {1, 1}, bl = {0, 0, -1e25}, bu = {1e25, 1e25, 4}, c = {-1, -2};
    std::vector<int> istate = {0, 0, 0};
    std::vector<double> x = {0.5, 0.25};
    std::vector<std::string> options;
};

struct Outcome {
    int ifail = 0;
    std::vector<std::string> lines;
    std::vector<double> x;
    std::vector<int> istate;
};

Outcome call_e04mfa(Call call, int ifail_in) {
    LpSession session;
    for (const std::string &o : call.options) EXPECT_EQ(session.option(o), 0) << o;
    std::vector<int> iwork(static_cast<std::size_t>(std::max(call.liwork, 1)));
    std::vector<double> work(static_cast<std::size_t>(std::max(call.lwork, 1)));
    std::vector<double> ax(4, -7.0), clamda(8, -7.0);
    int iter = -7;
    double obj = -7.0;
    std::vector<char> cwsav(80, ' ');
    std::vector<int> lwsav(120), iwsav(610);
    std::vector<double> rwsav(475);
    int lc = 1, ll = 120, li = 610, lr = 475, ifail = 0;
    E04WBA("E04MFA", cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &li, rwsav.data(), &lr, &ifail, 6, 80);
    for (const std::string &o : call.options) {
        int inform = 0, list = 0;
        E04MHF(o.c_str(), &list, lwsav.data(), iwsav.data(), rwsav.data(), &inform, static_cast<int>(o.size()));
    }
    Outcome out;
    out.ifail = ifail_in;
    zek_test::OutputCapture capture;
    E04MFA(&call.n, &call.nclin, call.a.data(), &call.lda, call.bl.data(), call.bu.data(), call.c.data(),
           call.istate.data(), call.x.data(), &iter, &obj, ax.data(), clamda.data(), iwork.data(), &call.liwork,
           work.data(), &call.lwork, lwsav.data(), iwsav.data(), rwsav.data(), &out.ifail);
    out.lines = lines_of(capture);
    out.x = call.x;
    out.istate = call.istate;
    return out;
}

struct InputError {
    std::string name;
    std::function<void(Call &)> spoil;
    int errors;
    std::vector<std::string> records;
};

std::vector<InputError> input_errors() {
    return {
        {"n_not_positive", [](Call &c) { c.n = 0; }, 1, {" ** On entry, N.le.0:", "    N =                0"}},
        {"nclin_negative", [](Call &c) { c.nclin = -1; }, 1,
         {" ** On entry, NCLIN.lt.0:", "    NCLIN =               -1"}},
        {"lda_short",
         [](Call &c) {
             c.nclin = 2;
             c.a = {1, 1, 1, 1};
             c.bl = {0, 0, -1e25, -1e25};
             c.bu = {1e25, 1e25, 4, 4};
             c.istate = {0, 0, 0, 0};
             c.lwork = 32;
         },
         1, {" ** On entry, LDA.lt.max(1,NCLIN):", "    LDA =                1  NCLIN =                2"}},
        {"inconsistent_row_bounds", [](Call &c) { c.bl[2] = 5; }, 1,
         {" ** On entry, the bounds on  L Con  1  are inconsistent:"}},
        {"inconsistent_variable_bounds",
         [](Call &c) {
             c.bl[1] = 2;
             c.bu[1] = 1;
         },
         1, {" ** On entry, the bounds on  Varbl  2  are inconsistent:"}},
        {"equal_infinite_bounds", [](Call &c) { c.bl[0] = 1e25, c.bu[0] = 1e25; }, 1,
         {" ** On entry, the equal bounds on  Varbl  1  are infinite (because"}},
        {"warm_istate_out_of_range",
         [](Call &c) {
             c.options = {"Warm Start"};
             c.istate[1] = 5;
         },
         1, {" ** On entry with a Warm Start, ISTATE(   2) is out of range:", "    ISTATE =                5"}},
        {"integer_workspace_short", [](Call &c) { c.liwork = 6; }, 1,
         {" Workspace provided is     IWORK(       6),  WORK(      27).",
          " To solve problem we need  IWORK(       7),  WORK(      27).",
          " ** Not enough workspace to solve problem."}},
        {"real_workspace_short", [](Call &c) { c.lwork = 26; }, 1,
         {" ** Not enough workspace to solve problem."}},
        {"several",
         [](Call &c) {
             c.bl[0] = 3;
             c.bu[0] = 2;
             c.bl[2] = 9;
             c.liwork = 0;
         },
         3, {" ** On entry, the bounds on  Varbl  1  are inconsistent:",
             " ** On entry, the bounds on  L Con  1  are inconsistent:"}},
    };
}

class LpInputErrors : public testing::TestWithParam<int> {};

TEST_P(LpInputErrors, AreCountedAndReportedBeforeAnyWork) {
    const InputError e = input_errors()[static_cast<std::size_t>(GetParam())];
    Call call;
    e.spoil(call);
    const std::vector<double> x0 = call.x;
    const std::vector<int> s0 = call.istate;
    const Outcome o = call_e04mfa(call, -1);
    EXPECT_EQ(o.ifail, 6);
    for (const std::string &r : e.records) EXPECT_TRUE(contains(o.lines, r)) << e.name << ": " << r;
    const std::string summary = zek::format(" ** %7ld errors found in the input parameters.  Problem abandoned.",
                                            static_cast<long>(e.errors));
    EXPECT_TRUE(contains(o.lines, summary)) << e.name;
    EXPECT_TRUE(contains(o.lines, " ** ABNORMAL EXIT from ZEK Library routine E04MFA: IFAIL =     6"));
    EXPECT_EQ(o.x, x0);
    EXPECT_EQ(o.istate, s0);
    // Silent with IFAIL = 1, the same result.
    const Outcome quiet = call_e04mfa(call, 1);
    EXPECT_EQ(quiet.ifail, 6);
    EXPECT_TRUE(quiet.lines.empty());
}

INSTANTIATE_TEST_SUITE_P(Lp, LpInputErrors, testing::Range(0, static_cast<int>(input_errors().size())),
                         [](const testing::TestParamInfo<int> &info) {
                             return input_errors()[static_cast<std::size_t>(info.param)].name;
                         });

// A cold start reads no ISTATE, so an out-of-range value is no error there.
TEST(LpInput, ColdStartIgnoresIstate) {
    Call call;
    call.istate = {9, -9, 17};
    const Outcome o = call_e04mfa(call, 1);
    EXPECT_EQ(o.ifail, 0);
}

// Each exit word: its IFAIL, its " ** " record, and at print level 1 its " Exit E04MFA - " line.
struct ExitCase {
    std::string name;
    LpProblem p;
    std::vector<std::string> options;
    std::vector<double> x0;
    int ifail;
    std::string record;  // empty for success
    std::string exit_line;
    std::string final_line_start;
};

std::vector<ExitCase> exit_cases() {
    const LpProblem two = LpProblem::dense({{1, 2}, {3, 1}}, {0, 0, -kInf, -kInf}, {kInf, kInf, 4, 6}, {-1, -1});
    return {
        {"optimal", two, {}, {}, 0, "", " Exit E04MFA - Optimal LP solution.", " Final LP objective value ="},
        {"feasible", two, {"Problem Type = FP"}, {}, 0, "", " Exit E04MFA - Feasible point found.     ",
         " Final sum of infeasibilities ="},
        // x2, costing nothing, is held at its starting value away from its bounds.
        {"weak", LpProblem::dense({}, {0, 0}, {1, 1}, {1, 0}), {}, {0.5, 0.5}, 1, " ** Weak LP solution.",
         " Exit E04MFA - Weak LP solution.", " Final LP objective value ="},
        {"unbounded", LpProblem::dense({{1, -1}}, {0, 0, -kInf}, {kInf, kInf, 1}, {-1, 0}), {}, {}, 2,
         " ** LP solution is unbounded.", " Exit E04MFA - LP solution is unbounded.", " Final LP objective value ="},
        {"infeasible", LpProblem::dense({{1, 1}}, {0, 0, 5}, {1, 1, kInf}, {1, 1}), {"Min Sum Yes"}, {}, 3,
         " ** No feasible point for the linear constraints.",
         " Exit E04MFA - No feasible point for the linear constraints.", " Minimum sum of infeasibilities ="},
        {"iterations", two, {"Iteration Limit = 1"}, {}, 4, " ** Too many iterations.", " Exit E04MFA - Too many iterations.",
         " Final LP objective value ="},
    };
}

class LpExits : public testing::TestWithParam<int> {};

TEST_P(LpExits, WordIfailAndTexts) {
    const ExitCase e = exit_cases()[static_cast<std::size_t>(GetParam())];
    LpSession session;
    for (const std::string &o : e.options) ASSERT_EQ(session.option(o), 0) << o;
    ASSERT_EQ(session.option("Print Level = 1"), 0);
    zek_test::OutputCapture capture;
    const LpResult r = session.solve(e.p, e.x0, {}, -1);
    const std::vector<std::string> lines = lines_of(capture);
    EXPECT_EQ(r.ifail, e.ifail);
    if (!e.record.empty()) {
        EXPECT_TRUE(contains(lines, e.record)) << e.name;
        EXPECT_TRUE(contains(lines, zek::format(" ** ABNORMAL EXIT from ZEK Library routine E04MFA: IFAIL =%6ld",
                                                static_cast<long>(e.ifail))));
        EXPECT_TRUE(contains(lines, " ** ZEK soft failure - control returned"));
    }
    // The exit line is written exactly, trailing blanks included.
    EXPECT_NE(std::find(capture.host().begin(), capture.host().end(), e.exit_line), capture.host().end()) << e.name;
    EXPECT_TRUE(contains(lines, zek::format(" Exit from %s problem after %5ld iterations.",
                                            e.options.size() == 1 && e.options[0] == "Problem Type = FP" ? "FP" : "LP",
                                            static_cast<long>(r.iter))))
        << e.name;
    const bool final_line = std::any_of(lines.begin(), lines.end(), [&](const std::string &l) {
        return l.rfind(e.final_line_start, 0) == 0;
    });
    EXPECT_TRUE(final_line) << e.name << " " << e.final_line_start;
}

INSTANTIATE_TEST_SUITE_P(Lp, LpExits, testing::Range(0, static_cast<int>(exit_cases().size())),
                         [](const testing::TestParamInfo<int> &info) {
                             return exit_cases()[static_cast<std::size_t>(info.param)].name;
                         });

// IFAIL 0 asks for a hard failure: the process ends, with status 0, when the LP has no solution.
TEST(LpExitsDeathTest, HardFailureEndsTheProcess) {
    const LpProblem p = LpProblem::dense({{1, 1}}, {0, 0, 5}, {1, 1, kInf}, {1, 1});
    EXPECT_EXIT(
        {
            LpSession session;
            session.solve(p, {}, {}, 0);
            std::exit(3);
        },
        testing::ExitedWithCode(0), "");
}

// The print levels: what each adds.
TEST(LpPrinting, LevelsAddTheirLines) {
    const LpProblem p = LpProblem::dense({{1, 2}, {3, 1}}, {0, 0, -kInf, -kInf}, {kInf, kInf, 4, 6}, {-1, -1});
    const std::string solution_head =
        " Varbl State     Value       Lower Bound   Upper Bound    Lagr Mult   Slack";
    const std::string short_head = "  Itn     Step Ninf Sinf/Objective  Norm Gz";
    const std::string long_head =
        "  Itn Jdel  Jadd      Step Ninf  Sinf/Objective  Bnd  Lin  Art   Zr  Norm Gz NOpt    Min Lm   Cond T";
    struct Level {
        int level;
        bool parameters, solution, short_lines, long_lines, details;
    };
    for (const Level l : {Level{0, false, false, false, false, false}, Level{1, true, true, false, false, false},
                          Level{5, true, false, true, false, false}, Level{10, true, true, false, true, false},
                          Level{20, true, true, false, true, true}}) {
        LpSession session;
        ASSERT_EQ(session.option("Print Level = " + std::to_string(l.level)), 0);
        zek_test::OutputCapture capture;
        const LpResult r = session.solve(p);
        const std::vector<std::string> lines = lines_of(capture);
        EXPECT_EQ(r.ifail, 0);
        EXPECT_EQ(lines.empty(), l.level == 0);
        EXPECT_EQ(contains(lines, " Parameters"), l.parameters) << l.level;
        EXPECT_EQ(contains(lines, solution_head), l.solution) << l.level;
        EXPECT_EQ(contains(lines, " L Con State     Value       Lower Bound   Upper Bound    Lagr Mult   Slack"),
                  l.solution);
        EXPECT_EQ(contains(lines, short_head), l.short_lines) << l.level;
        EXPECT_EQ(contains(lines, long_head), l.long_lines) << l.level;
        EXPECT_EQ(contains(lines, " LP iteration    1"), l.details) << l.level;
        EXPECT_EQ(contains(lines, " Values and status of the LP constraints"), l.details) << l.level;
        if (l.solution) {
            // The optimal vertex (1.6, 1.2): both rows at their upper bounds, x at no bound.
            EXPECT_TRUE(contains(lines, zek::format(" V   1    FR %14.6G%s%s%12.4G%12.4G", 1.6, "       .      ",
                                                    "      None    ", 0.0, 1.6)));
            EXPECT_TRUE(std::any_of(lines.begin(), lines.end(),
                                    [](const std::string &s) { return s.rfind(" L   1    UL ", 0) == 0; }));
        }
    }
}

} // namespace
