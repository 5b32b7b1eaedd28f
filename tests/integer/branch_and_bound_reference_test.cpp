// H02BBF against GLPK's branch and bound (glp_intopt) on random mixed-integer programs: both must
// reach the same optimum, or both find none.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "branch_and_bound_test_support.h"

#if defined(ZEK_HAVE_GLPK)
#include <glpk.h>

namespace {

using zek_test::BranchCall;
using zek_test::IntegerProgram;

// GLPK's optimum of P; false when it finds no integer point.
bool glpk_optimum(const IntegerProgram &p, double *objective) {
    glp_prob *lp = glp_create_prob();
    glp_add_rows(lp, p.m);
    glp_add_cols(lp, p.n);
    const auto bounds = [](double l, double u) {
        if (l <= -1e20 && u >= 1e20) return GLP_FR;
        if (l <= -1e20) return GLP_UP;
        if (u >= 1e20) return GLP_LO;
        return l == u ? GLP_FX : GLP_DB;
    };
    for (int j = 1; j <= p.n; ++j) {
        const double l = p.bl[static_cast<std::size_t>(j - 1)], u = p.bu[static_cast<std::size_t>(j - 1)];
        glp_set_col_bnds(lp, j, bounds(l, u), l, u);
        glp_set_obj_coef(lp, j, p.cvec[static_cast<std::size_t>(j - 1)]);
        glp_set_col_kind(lp, j, p.intvar[static_cast<std::size_t>(j - 1)] == 1 ? GLP_IV : GLP_CV);
    }
    std::vector<int> ia(1), ja(1);
    std::vector<double> ar(1);
    for (int i = 1; i <= p.m; ++i) {
        const double l = p.bl[static_cast<std::size_t>(p.n + i - 1)], u = p.bu[static_cast<std::size_t>(p.n + i - 1)];
        glp_set_row_bnds(lp, i, bounds(l, u), l, u);
        for (int j = 1; j <= p.n; ++j) {
            const double v = p.a[static_cast<std::size_t>((i - 1) + (j - 1) * p.lda())];
            if (v == 0.0) continue;
            ia.push_back(i);
            ja.push_back(j);
            ar.push_back(v);
        }
    }
    glp_load_matrix(lp, static_cast<int>(ia.size()) - 1, ia.data(), ja.data(), ar.data());
    glp_iocp parm;
    glp_init_iocp(&parm);
    parm.msg_lev = GLP_MSG_OFF;
    parm.presolve = GLP_ON;
    const int rc = glp_intopt(lp, &parm);
    const int status = glp_mip_status(lp);
    *objective = glp_mip_obj_val(lp);
    glp_delete_prob(lp);
    return rc == 0 && status == GLP_OPT;
}

TEST(BranchAndBoundReference, RandomMixedProgramsMatchGlpk) {
    std::mt19937 gen(7151);
    std::uniform_real_distribution<double> coef(-3.0, 5.0), cost(-4.0, 4.0), rhs(0.0, 6.0);
    std::uniform_int_distribution<int> lower(-2, 0), width(1, 5);
    int solved = 0;
    for (int k = 0; k < 200; ++k) {
        const int n = 5 + k % 10, m = 3 + k % 6;
        IntegerProgram p = IntegerProgram::box(n, m, 0.0);
        for (int j = 0; j < n; ++j) {
            const std::size_t s = static_cast<std::size_t>(j);
            p.bl[s] = lower(gen);
            p.bu[s] = p.bl[s] + width(gen);
            p.cvec[s] = std::round(cost(gen) * 4.0) / 4.0;
            p.intvar[s] = (j + k) % 3 == 0 ? 0 : 1;
        }
        for (int i = 1; i <= m; ++i) {
            for (int j = 1; j <= n; ++j) p.at(i, j) = std::round(coef(gen) * 2.0) / 2.0;
            const std::size_t r = static_cast<std::size_t>(n + i - 1);
            p.bu[r] = rhs(gen);
            if (i == m && k % 4 == 0) p.bl[r] = p.bu[r] - 0.5;  // a narrow range now and then
        }
        double reference = 0.0;
        const bool has_optimum = glpk_optimum(p, &reference);
        BranchCall call;
        call.maxdpt = 60;
        call.extra_iwork = 20000;
        const int ifail = call.run(p);
        if (!has_optimum) {
            EXPECT_TRUE(ifail == 1 || ifail == 3) << "program " << k << ": IFAIL " << ifail;
            continue;
        }
        ASSERT_EQ(ifail, 0) << "program " << k;
        EXPECT_NEAR(call.objective, reference, 1e-7 * std::max(1.0, std::fabs(reference))) << "program " << k;
        ++solved;
    }
    EXPECT_GE(solved, 100);
}

} // namespace

#endif
