// E04MFA on problems whose answers are known: small LPs in closed form, every case under several option
// sets; the Netlib models of the shared data at their published optima; restarts (cold, warm, hot) from
// an optimum and after a bound change; and data that must end a run without a hang.  Every result is
// checked independently of the solver.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "lp_test_support.h"
#include "optimisation/options.h"

namespace {

using zek_test::expect_optimum;
using zek_test::kInf;
using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

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
        {"two_rows", d({{1, 2}, {3, 1}}, {0, 0, -kInf, -kInf}, {kInf, kInf, 4, 6}, {-1, -1}), {0}, -2.8, {1.6, 1.2}},
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

} // namespace
