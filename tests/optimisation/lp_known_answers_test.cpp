// E04MFA on problems whose answers are known: small LPs in closed form, every case under several option
// sets; the Netlib models of the shared data at their published optima; restarts (cold, warm, hot) from
// an optimum and after a bound change; and data that must end a run without a hang.  Every result is
// checked independently of the solver.  Then what E04MFA tells its caller: input errors (all counted
// and reported, IFAIL 6, outputs untouched), the exit words with their IFAIL and texts, and the lines
// each print level adds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <sstream>

#include "frame/host_capture.h"
#include "frame/output.h"
#include "lp_test_support.h"
#include "optimisation/options.h"

namespace {

using zek_test::expect_optimum;
using zek_test::kInf;
using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

const LpProblem two_rows = LpProblem::dense({{1, 2}, {3, 1}}, {0, 0, -kInf, -kInf}, {kInf, kInf, 4, 6}, {-1, -1});

struct KnownAnswer {
    std::string name;
    LpProblem p;
    std::vector<int> ifail;  // acceptable values
    double obj;              // checked unless IFAIL is 2 or 3
    std::vector<double> x;   // checked when given (a unique solution)
};

std::vector<KnownAnswer> cases() {
    const auto d = LpProblem::dense;
    std::vector<KnownAnswer> k = {
        {"two_rows", two_rows, {0}, -2.8, {1.6, 1.2}},
        // Beale's example, on which the textbook simplex rule cycles.
        {"beale", d({{0.25, -8, -1, 9}, {0.5, -12, -0.5, 3}, {0, 0, 1, 0}}, {0, 0, 0, 0, -kInf, -kInf, -kInf},
                    {kInf, kInf, kInf, kInf, 0, 0, 1}, {-0.75, 20, -0.5, 6}),
         {0}, -1.25, {1, 0, 1, 0}},
        {"unbounded", d({{1, -1}}, {0, 0, -kInf}, {kInf, kInf, 1}, {-1, 0}), {2}, 0, {}},
        {"infeasible", d({{1, 1}, {1, 1}}, {0, 0, -kInf, 3}, {kInf, kInf, 1, kInf}, {1, 1}), {3}, 0, {}},
        {"equalities_only", d({{2, 1, 1}, {1, 3, 2}, {1, 0, 0}}, {-kInf, -kInf, -kInf, 7, 13, 1},
                              {kInf, kInf, kInf, 7, 13, 1}, {1, 1, 1}),
         {0}, 6.0, {1, 2, 3}},
        {"free_variables", d({{1, 1}, {1, -1}, {-1, 1}}, {-kInf, -kInf, 1, -kInf, -kInf}, {kInf, kInf, kInf, 1, 1}, {2, 1}),
         {0}, 1.0, {0, 1}},
        {"range_row_fixed_variable", d({{1, 1, 1}}, {0, 2, 0, 3}, {4, 2, 4, 5}, {-1, 1, 2}), {0}, -1.0, {3, 2, 0}},
        {"one_variable", d({}, {1}, {5}, {-2}), {0}, -10.0, {5}},
        {"one_variable_fixed", d({}, {2}, {2}, {3}), {0}, 6.0, {2}},
        {"one_variable_unbounded", d({}, {1}, {kInf}, {-1}), {2}, 0, {}},
        {"zero_cost", d({{1, 1}, {1, -1}}, {0, 0, 1, -1}, {kInf, kInf, 3, 1}, {0, 0}), {0, 1}, 0.0, {}},
        // More variables than rows: at most NCLIN+1 are free at once.
        {"wide", d({{1, 1, 1, 1, 1}}, {0, 0, 0, 0, 0, 10}, {4, 4, 4, 4, 4, 10}, {5, 4, 3, 2, 1}), {0}, 18.0,
         {0, 0, 2, 4, 4}},
        // Equalities with a redundant row.
        {"transportation", d({{1, 1, 1, 0, 0, 0}, {0, 0, 0, 1, 1, 1}, {1, 0, 0, 1, 0, 0}, {0, 1, 0, 0, 1, 0}, {0, 0, 1, 0, 0, 1}},
                             {0, 0, 0, 0, 0, 0, 5, 7, 3, 4, 5}, {kInf, kInf, kInf, kInf, kInf, kInf, 5, 7, 3, 4, 5},
                             {4, 6, 9, 5, 3, 8}),
         {0, 1}, 66.0, {3, 0, 2, 0, 4, 3}},
        // A row of large norm whose small multiplier still matters.
        {"badly_scaled_row", d({{1e4, 1e4}, {1, -1}}, {0, 0, -kInf, -kInf}, {kInf, kInf, 1e4, 0.5}, {-1, -2e-4}), {0},
         -0.75 - 0.25 * 2e-4, {0.75, 0.25}},
    };
    // Sixteen rows through the optimum (0, 1).
    std::vector<std::vector<double>> rows;
    std::vector<double> bl = {-kInf, -kInf}, bu = {kInf, kInf};
    for (int s = -8; s <= 8; ++s)
        if (s != 0) rows.push_back({static_cast<double>(s), 1}), bl.push_back(-kInf), bu.push_back(1);
    k.push_back({"degenerate_vertex", d(rows, bl, bu, {0, -1}), {0, 1}, -1.0, {0, 1}});
    return k;
}

const std::vector<std::vector<std::string>> option_sets = {
    {},
    {"Expand Frequency = 9999999"},
    {"Check Frequency = 1", "Expand Frequency = 1"},
    {"Feasibility Tolerance = 1e-12", "Optimality Tolerance = 1e-12", "Crash Tolerance = 0"},
};

TEST(KnownAnswers, MatchTheClosedForm) {
    for (const KnownAnswer &c : cases()) {
        for (std::size_t set = 0; set < option_sets.size(); ++set) {
            SCOPED_TRACE(c.name + " under option set " + std::to_string(set));
            LpSession session;
            for (const std::string &line : option_sets[set]) ASSERT_EQ(session.option(line), 0) << line;
            // From a point off the bounds, so that the crash leaves free variables behind.
            const LpResult r = session.solve(c.p, std::vector<double>(c.p.n, -0.5));
            EXPECT_NE(std::find(c.ifail.begin(), c.ifail.end(), r.ifail), c.ifail.end()) << "IFAIL " << r.ifail;
            if (r.ifail == 2 || r.ifail == 3) continue;
            expect_optimum(c.p, r, c.obj, 1e-10, 1e-12, 1e-9, 1e-12);
            for (std::size_t j = 0; j < c.x.size(); ++j) EXPECT_NEAR(r.x[j], c.x[j], 1e-9) << "x" << j + 1;
            for (int i = 0; i < c.p.m; ++i) {
                double v = 0.0;
                for (int j = 0; j < c.p.n; ++j) v += c.p.at(i, j) * r.x[j];
                EXPECT_NEAR(r.ax[i], v, 1e-12 * std::max(1.0, std::fabs(v)));
            }
        }
    }
}

// Problem type FP stops at the first feasible point (OBJ 0, no multipliers), or reports the least sum.
TEST(LpFeasiblePoint, FindsAPointOrTheLeastSum) {
    LpSession session;
    ASSERT_EQ(session.option("Problem Type = FP"), 0);
    const LpProblem p = LpProblem::dense({{1, 1}, {1, -1}}, {0, 0, 2, -1}, {kInf, kInf, 3, 1}, {-1, -1});
    const LpResult r = session.solve(p);
    EXPECT_EQ(r.ifail, 0);
    EXPECT_EQ(r.obj, 0.0);
    EXPECT_LE(zek_test::Kkt(p, r).violation, 1e-9);
    for (double lam : r.clamda) EXPECT_EQ(lam, 0.0);
    const LpResult s = session.solve(LpProblem::dense({{1, 1}}, {0, 0, 5}, {1, 1, kInf}, {0, 0}));
    EXPECT_EQ(s.ifail, 3);
    EXPECT_NEAR(s.obj, 3.0, 1e-9);  // at x = (1, 1)
}

// Without rows a null A serves.  (Non-finite data is the hostile-input table's.)
TEST(LpRobustness, NoMatrix) {
    LpProblem p = LpProblem::dense({}, {0, -1, -5}, {2, 1, 5}, {-1, 1, 0});
    p.a.clear();
    const LpResult r = LpSession().solve(p, {1, 0, 4});
    EXPECT_EQ(r.ifail, 1);  // x3 costs nothing and is held where it started
    EXPECT_EQ(r.x, (std::vector<double>{2, -1, 4}));
    EXPECT_EQ(r.istate[2], 4);
}

double published_optimum(const std::string &name) {
    std::ifstream in(std::string(ZEK_SHARED_DATA_DIR) + "/lp/optima.tsv");
    std::string line, model;
    double value = 0.0;
    while (std::getline(in, line))
        if (std::istringstream(line) >> model >> value && model == name) return value;
    ADD_FAILURE() << "no published optimum for " << name;
    return 0.0;
}

// The published optimum to 1e-8 relative, read by H02BUF.
TEST(NetlibModels, SolveToThePublishedOptimum) {
    for (const char *name : {"afiro", "sc50a", "sc50b", "adlittle", "blend", "kb2", "sc105", "share2b", "stocfor1"}) {
        const LpProblem p = LpProblem::netlib(name);
        ASSERT_GT(p.n, 0) << name;
        expect_optimum(p, LpSession().solve(p), published_optimum(name), 1e-8, 1e-9, 1e-7, 1e-9, name);
    }
}

// The hot start is internal: branch and bound would set it in the option block directly.
void hot(LpSession &s) { zek::e04::setting(s.iwsav().data(), zek::e04::Block::LC, zek::e04::lc::kStart) = 2; }

TEST(LpStarts, FromTheOptimumNoIteration) {
    const LpProblem p = LpProblem::netlib("afiro");
    LpSession session;
    const LpResult cold = session.solve(p);
    ASSERT_EQ(cold.ifail, 0);
    ASSERT_EQ(session.option("Warm Start"), 0);
    const LpResult warm = session.solve(p, cold.x, cold.istate);
    hot(session);
    const LpResult hotr = session.solve(p, warm.x, warm.istate);
    for (const LpResult &r : {warm, hotr}) {
        EXPECT_EQ(r.ifail, 0);
        EXPECT_EQ(r.iter, 0);
        EXPECT_NEAR(r.obj, cold.obj, 1e-12 * std::fabs(cold.obj));
        EXPECT_EQ(r.istate, cold.istate);
    }
}

// After a bound change (what branch and bound does at each node) the changed problem's optimum is
// reached, whatever stale, sanitised or spoilt state the start is given.
TEST(LpStarts, AfterABoundChangeReachTheNewOptimum) {
    for (const std::string start : {"warm", "warm_sanitised", "hot", "hot_spoilt"}) {
        LpProblem p = LpProblem::netlib("afiro");
        LpSession session;
        const LpResult first = session.solve(p);
        ASSERT_EQ(first.ifail, 0);
        // Cut off the optimum through its largest variable.
        const std::size_t j = std::max_element(first.x.begin(), first.x.end()) - first.x.begin();
        p.bu[j] = std::floor(first.x[j] / 2);
        const LpResult cold = LpSession().solve(p);
        std::vector<int> istate = first.istate;
        if (start.rfind("hot", 0) == 0) hot(session);
        else ASSERT_EQ(session.option("Warm Start"), 0);
        if (start == "warm") istate[j] = -1;  // as branch and bound marks the branching variable
        if (start == "warm_sanitised")
            for (std::size_t k = 0; k < istate.size(); k += 3) istate[k] = k % 4 == 0 ? 4 : -2;
        if (start == "hot_spoilt") session.iwork()[3 + p.n] = session.iwork()[4 + p.n];  // KX no permutation
        const LpResult r = session.solve(p, first.x, istate);
        expect_optimum(p, r, cold.obj, 1e-9, 1e-9, 1e-8, 1e-10, start);
        EXPECT_TRUE(start == "hot_spoilt" || r.iter < cold.iter) << start;
    }
}

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
