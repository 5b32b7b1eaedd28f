// H02BBF against GLPK's branch and bound on the MIPLIB models: each reads the same MPS file with its
// own reader and solves it from scratch (GLPK: root LP by the primal simplex, then glp_intopt with
// presolve and every cut off).  The table gives the best time of a solve, the nodes each search
// investigated, the time per node and the ratio of the times per node.  Usage:
//     bench_branch_and_bound_miplib [directory] [seconds per measurement]
#include <glpk.h>

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "frame/input_units.h"
#include "zek2/h02.h"
#include "zek2/x04.h"
#include "bench_timing.h"

// The library's console text comes here: the node count is read off the final block, the rest is
// dropped.
static long g_nodes = -1;
extern "C" __attribute__((visibility("default"))) int OldTorviPrintf(const char *format, ...) {
    va_list args;
    va_start(args, format);
    const char *text = std::strcmp(format, "%s") == 0 ? va_arg(args, const char *) : "";
    va_end(args);
    long nodes = 0;
    if (std::sscanf(text, " Total of %ld nodes investigated.", &nodes) == 1) g_nodes = nodes;
    return 0;
}

namespace {

struct Model {
    std::string name;
    int n = 0, m = 0;
    std::vector<double> a, bl, bu, c, x0;
    std::vector<int> intvar;
};

bool load(const std::string &path, Model &model) {
    const int maxm = 400, maxn = 400;
    std::FILE *stream = X04_OPEN_INPUT(path.c_str());
    const int unit = zek::input_unit_number(stream);
    model.a.assign(static_cast<std::size_t>(maxm) * maxn, 0.0);
    model.c.assign(maxn, 0.0);
    model.bl.assign(maxn + maxm, 0.0);
    model.bu.assign(maxn + maxm, 0.0);
    model.x0.assign(maxn, 0.0);
    model.intvar.assign(maxn, 0);
    std::vector<int> rowtyp(maxm);
    std::vector<char> names(static_cast<std::size_t>(8) * (maxn + maxm));
    char prob[8], obj[8], rhs[8], rng[8], bnd[8];
    for (char *s : {prob, obj, rhs, rng, bnd}) std::memset(s, ' ', 8);
    const double xbl = 0.0, xbu = 1e20;
    const int list = 0;
    int ifail = 1;
    H02BUF(&unit, &model.m, &model.n, &maxm, &maxn, model.a.data(), model.c.data(), model.bl.data(), model.bu.data(),
           model.intvar.data(), rowtyp.data(), prob, obj, rhs, rng, bnd, names.data(), model.x0.data(), &xbl, &xbu,
           "MIN", &list, &ifail, 8, 8, 8, 8, 8, 8, 3);
    zek::forget_input_stream(stream);
    std::fclose(stream);
    if (ifail != 0) return false;
    // Rows packed to a leading dimension of M.
    const int lda = std::max(model.m, 1);
    std::vector<double> packed(static_cast<std::size_t>(lda) * model.n, 0.0);
    for (int j = 0; j < model.n; ++j)
        for (int i = 0; i < model.m; ++i)
            packed[static_cast<std::size_t>(i + j * lda)] = model.a[static_cast<std::size_t>(i + j * maxm)];
    model.a.swap(packed);
    return true;
}

struct Outcome {
    double seconds = 0.0, objective = 0.0;
    long nodes = 0;
    int status = 0;
};

Outcome run_zek(const Model &model, double budget) {
    Outcome o;
    const int maxdpt = 200, n = model.n, m = model.m, lda = std::max(m, 1);
    const long long nct = n + m, t = std::min(n, m + 1);
    const int liwork = static_cast<int>((nct + 25) * maxdpt + nct + 4LL * n + 4 + 200000);
    const int lrwork = static_cast<int>((n + 1LL) * maxdpt + 2 * (t * t + 6LL * m + 7LL * n));
    std::vector<int> iwork(liwork), lwsav(120), iwsav(610);
    std::vector<double> rwork(lrwork), rwsav(475), x;
    std::vector<char> cwsav(80, ' ');
    const auto solve = [&](int msglvl) {
        const int lc = 1, ll = 120, li = 610, lr = 475, maxnod = 0, intfst = 0;
        int ifail = 1, itmax = 0;
        double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0;
        H02WBF("H02BBF", cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &li, rwsav.data(), &lr, &ifail, 6, 80);
        x = model.x0;
        ifail = 1;
        H02BBF(&itmax, &msglvl, &n, &m, model.a.data(), &lda, model.bl.data(), model.bu.data(), model.intvar.data(),
               model.c.data(), &maxnod, &intfst, &maxdpt, &toliv, &tolfes, &bigbnd, x.data(), &o.objective,
               iwork.data(), &liwork, rwork.data(), &lrwork, lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
        o.status = ifail;
    };
    // The counting run prints its blocks; the newlines that end the host's lines go to stdout, which is
    // silenced meanwhile so that only the table shows.
    std::fflush(stdout);
    const int saved = dup(1);
    std::FILE *null = std::fopen("/dev/null", "w");
    if (null != nullptr) dup2(fileno(null), 1);
    solve(1);
    std::fflush(stdout);
    if (saved >= 0) {
        dup2(saved, 1);
        close(saved);
    }
    if (null != nullptr) std::fclose(null);
    o.nodes = g_nodes;
    o.seconds = zek_bench::best_time([&] { solve(0); }, budget);
    return o;
}

long g_glpk_nodes = 0;
void count_nodes(glp_tree *tree, void *) {
    int active = 0, current = 0, total = 0;
    glp_ios_tree_size(tree, &active, &current, &total);
    g_glpk_nodes = std::max<long>(g_glpk_nodes, total);
}

Outcome run_glpk(const std::string &path, double budget) {
    Outcome o;
    glp_prob *original = glp_create_prob();
    glp_read_mps(original, GLP_MPS_DECK, nullptr, path.c_str());
    const auto solve = [&](bool count) {
        glp_prob *lp = glp_create_prob();
        glp_copy_prob(lp, original, GLP_OFF);
        glp_smcp sm;
        glp_init_smcp(&sm);
        sm.msg_lev = GLP_MSG_OFF;
        glp_simplex(lp, &sm);
        glp_iocp io;
        glp_init_iocp(&io);
        io.msg_lev = GLP_MSG_OFF;
        io.presolve = GLP_OFF;
        io.gmi_cuts = io.mir_cuts = io.cov_cuts = io.clq_cuts = GLP_OFF;
        if (count) io.cb_func = count_nodes;
        o.status = glp_intopt(lp, &io);
        o.objective = glp_mip_obj_val(lp);
        glp_delete_prob(lp);
    };
    g_glpk_nodes = 0;
    solve(true);
    o.nodes = g_glpk_nodes;
    o.seconds = zek_bench::best_time([&] { solve(false); }, budget);
    glp_delete_prob(original);
    return o;
}

} // namespace

int main(int argc, char **argv) {
    const std::string dir = argc > 1 && argv[1][0] != '\0' ? argv[1] : std::string(ZEK_SHARED_DATA_DIR) + "/mip";
    const double budget = argc > 2 ? std::atof(argv[2]) : 2.0;
    glp_term_out(GLP_OFF);
    std::ifstream table(dir + "/optima.tsv");
    if (!table) {
        std::fprintf(stderr, "no optima.tsv in %s\n", dir.c_str());
        return 1;
    }
    std::string line;
    std::printf("%-9s %12s | %10s %7s %9s %12s | %10s %7s %9s %12s | %8s\n", "model", "optimum", "H02BBF s",
                "nodes", "us/node", "objective", "GLPK s", "nodes", "us/node", "objective", "ratio");
    while (std::getline(table, line)) {
        if (line.empty() || line[0] == '#') continue;
        const std::string name = line.substr(0, line.find('\t'));
        const double optimum = std::atof(line.c_str() + line.find('\t') + 1);
        const std::string path = dir + "/" + name + ".mps";
        Model model;
        if (!load(path, model)) {
            std::printf("%-9s cannot be read\n", name.c_str());
            continue;
        }
        const Outcome z = run_zek(model, budget);
        const Outcome g = run_glpk(path, budget);
        const double zn = 1e6 * z.seconds / std::max(1L, z.nodes), gn = 1e6 * g.seconds / std::max(1L, g.nodes);
        std::printf("%-9s %12.6g | %10.4f %7ld %9.1f %12.6g | %10.4f %7ld %9.1f %12.6g | %8.2f\n", name.c_str(),
                    optimum, z.seconds, z.nodes, zn, z.objective, g.seconds, g.nodes, gn, g.objective, zn / gn);
    }
    return 0;
}
