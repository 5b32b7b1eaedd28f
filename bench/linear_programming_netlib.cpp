// E04MFA against GLPK's primal simplex on the Netlib models: both read the same MPS file (through
// GLPK's reader, which hands E04MFA its dense arrays), each solves from scratch many times, and the
// table gives the best time per solve, the iteration counts and the ratios.  Usage:
//     bench_linear_programming_netlib [directory] [seconds per measurement]
#include <glpk.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "zek2/e04.h"
#include "bench_timing.h"

namespace {

struct Model {
    std::string name;
    int n = 0, m = 0;
    std::vector<double> a, bl, bu, c;
};

// The model as E04MFA takes it, read through GLPK's MPS reader.
bool load(const std::string &path, Model &model, glp_prob *lp) {
    if (glp_read_mps(lp, GLP_MPS_DECK, nullptr, path.c_str()) != 0) return false;
    model.n = glp_get_num_cols(lp);
    model.m = glp_get_num_rows(lp);
    const int lda = std::max(model.m, 1);
    model.a.assign(static_cast<std::size_t>(lda) * model.n, 0.0);
    std::vector<int> ind(static_cast<std::size_t>(model.m) + 1);
    std::vector<double> val(static_cast<std::size_t>(model.m) + 1);
    const auto bounds = [](int type, double lb, double ub, double &l, double &u) {
        l = (type == GLP_LO || type == GLP_DB || type == GLP_FX) ? lb : -1e25;
        u = (type == GLP_UP || type == GLP_DB || type == GLP_FX) ? ub : 1e25;
    };
    model.bl.resize(static_cast<std::size_t>(model.n + model.m));
    model.bu.resize(model.bl.size());
    model.c.resize(static_cast<std::size_t>(model.n));
    for (int j = 1; j <= model.n; ++j) {
        const int len = glp_get_mat_col(lp, j, ind.data(), val.data());
        for (int k = 1; k <= len; ++k)
            model.a[static_cast<std::size_t>(ind[k] - 1) + static_cast<std::size_t>(j - 1) * lda] = val[k];
        model.c[j - 1] = glp_get_obj_coef(lp, j);
        bounds(glp_get_col_type(lp, j), glp_get_col_lb(lp, j), glp_get_col_ub(lp, j), model.bl[j - 1],
               model.bu[j - 1]);
    }
    for (int i = 1; i <= model.m; ++i)
        bounds(glp_get_row_type(lp, i), glp_get_row_lb(lp, i), glp_get_row_ub(lp, i), model.bl[model.n + i - 1],
               model.bu[model.n + i - 1]);
    return true;
}

struct Outcome {
    double seconds = 0.0;  // best time of one solve
    int iterations = 0;
    double objective = 0.0;
    int status = 0;
};

Outcome run_glpk(glp_prob *original, double budget) {
    Outcome o;
    glp_prob *lp = glp_create_prob();
    glp_smcp parm;
    glp_init_smcp(&parm);
    parm.msg_lev = GLP_MSG_OFF;
    o.seconds = zek_bench::best_time(
        [&] {
            glp_copy_prob(lp, original, GLP_OFF);
            o.status = glp_simplex(lp, &parm);
        },
        budget);
    o.iterations = glp_get_it_cnt(lp);
    o.objective = glp_get_obj_val(lp) - glp_get_obj_coef(lp, 0);
    glp_delete_prob(lp);
    return o;
}

Outcome run_e04mfa(const Model &p, double budget) {
    Outcome o;
    const int n = p.n, m = p.m, lda = std::max(m, 1);
    const int t = std::min(n, m + 1);
    int liwork = 2 * n + 3, lwork = m == 0 ? 7 * n + 1 : 7 * n + 5 * m + 2 * t * t;
    std::vector<int> istate(static_cast<std::size_t>(n + m)), iwork(static_cast<std::size_t>(liwork));
    std::vector<double> x(static_cast<std::size_t>(n)), ax(static_cast<std::size_t>(lda)),
        clamda(static_cast<std::size_t>(n + m)), work(static_cast<std::size_t>(lwork));
    std::vector<char> cwsav(80, ' ');
    std::vector<int> lwsav(120), iwsav(610);
    std::vector<double> rwsav(475);
    int lc = 1, ll = 120, li = 610, lr = 475, ifail = 0;
    E04WBA("E04MFA", cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &li, rwsav.data(), &lr, &ifail, 6, 80);
    o.seconds = zek_bench::best_time(
        [&] {
            std::fill(x.begin(), x.end(), 0.0);
            o.status = 1;
            E04MFA(&n, &m, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.c.data(), istate.data(), x.data(),
                   &o.iterations, &o.objective, ax.data(), clamda.data(), iwork.data(), &liwork, work.data(), &lwork,
                   lwsav.data(), iwsav.data(), rwsav.data(), &o.status);
        },
        budget);
    return o;
}

} // namespace

int main(int argc, char **argv) {
    const std::string dir = argc > 1 && argv[1][0] != '\0' ? argv[1] : std::string(ZEK_SHARED_DATA_DIR) + "/lp";
    const double budget = argc > 2 ? std::atof(argv[2]) : 0.3;
    const char *names[] = {"afiro", "sc50b", "sc50a", "kb2", "adlittle", "blend", "sc105", "share2b", "stocfor1"};
    glp_term_out(GLP_OFF);
    std::printf("%-10s %5s %5s | %10s %6s | %10s %6s | %7s %7s | %s\n", "model", "rows", "cols", "E04MFA s", "itns",
                "GLPK s", "itns", "t ratio", "i ratio", "objective difference (relative)");
    for (const char *name : names) {
        glp_prob *lp = glp_create_prob();
        Model model;
        if (!load(dir + "/" + name + ".mps", model, lp)) {
            std::printf("%-10s cannot be read\n", name);
            glp_delete_prob(lp);
            continue;
        }
        const Outcome g = run_glpk(lp, budget);
        const Outcome z = run_e04mfa(model, budget);
        std::printf("%-10s %5d %5d | %10.3e %6d | %10.3e %6d | %7.2f %7.2f | %.1e (IFAIL %d)\n", name, model.m, model.n,
                    z.seconds, z.iterations, g.seconds, g.iterations, z.seconds / g.seconds,
                    static_cast<double>(z.iterations) / std::max(g.iterations, 1),
                    std::fabs(z.objective - g.objective) / std::max(1.0, std::fabs(g.objective)), z.status);
        glp_delete_prob(lp);
    }
    return 0;
}
