// E04UCA against NLopt's SLSQP on the Hock-Schittkowski problems of the test table, both from the
// published start with exact derivatives, in the same process.  Per problem: solved (the published
// optimal value to 1e-6 relative at a point feasible to 1e-6) or not, the exit, objective evaluations
// and the mean time per solve; then the solved counts, median evaluations and total times.  Usage:
//     bench_sqp_hock_schittkowski [seconds per measurement] [problem name]
#include <nlopt.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "hs_collection.h"

namespace {

namespace hs = zek_test::hs;

struct Result {
    bool solved = false;
    int exit = 0, evaluations = 0;
    double objf = 0.0, seconds = 0.0;
};

// Mean time per call of run() over at least `budget` seconds (and at least one call).
template <class Run>
double mean_seconds(double budget, Run run) {
    using clock = std::chrono::steady_clock;
    const auto start = clock::now();
    int calls = 0;
    double elapsed = 0.0;
    do {
        run();
        ++calls;
        elapsed = std::chrono::duration<double>(clock::now() - start).count();
    } while (elapsed < budget);
    return elapsed / calls;
}

Result run_ours(const hs::Problem &p, double budget) {
    const zek_test::sqp::Nlp q = hs::as_nlp(p);
    Result r;
    zek_test::sqp::Out out;
    r.seconds = mean_seconds(budget, [&] { out = zek_test::sqp::run_uca(q); });
    r.exit = out.ifail;
    r.evaluations = zek_test::sqp::objective_calls;
    r.objf = out.objf;
    r.solved = hs::solved(p, out.objf, out.x.data());
    return r;
}

struct PeerData {
    const hs::Problem *p;
    int evaluations;
};
struct PeerRow {
    const hs::Problem *p;
    int row;
};

double peer_objective(unsigned n, const double *x, double *g, void *data) {
    auto *d = static_cast<PeerData *>(data);
    ++d->evaluations;
    std::vector<double> grad(n);
    const double f = hs::evaluate(*d->p, x, grad.data(), nullptr, nullptr, 1);
    if (g != nullptr) std::copy(grad.begin(), grad.end(), g);
    return f;
}

// NLopt's inequalities read fc(x) <= 0, the table's c(x) >= 0.
double peer_constraint(unsigned n, const double *x, double *g, void *data) {
    const auto *r = static_cast<const PeerRow *>(data);
    const int m = r->p->me + r->p->mi;
    std::vector<double> c(static_cast<std::size_t>(m)), jac(static_cast<std::size_t>(m) * n);
    hs::evaluate(*r->p, x, nullptr, c.data(), jac.data(), m);
    const double sign = r->row < r->p->me ? 1.0 : -1.0;
    if (g != nullptr)
        for (unsigned j = 0; j < n; ++j) g[j] = sign * jac[r->row + static_cast<std::size_t>(j) * m];
    return sign * c[r->row];
}

Result run_peer(const hs::Problem &p, double budget) {
    Result r;
    std::vector<double> x;
    const auto once = [&] {
        nlopt_opt opt = nlopt_create(NLOPT_LD_SLSQP, static_cast<unsigned>(p.n));
        std::vector<double> lo(p.lo), hi(p.hi);
        for (double &v : lo)
            if (v <= -hs::kInf) v = -HUGE_VAL;
        for (double &v : hi)
            if (v >= hs::kInf) v = HUGE_VAL;
        nlopt_set_lower_bounds(opt, lo.data());
        nlopt_set_upper_bounds(opt, hi.data());
        PeerData data{&p, 0};
        nlopt_set_min_objective(opt, peer_objective, &data);
        std::vector<PeerRow> rows;
        for (int i = 0; i < p.me + p.mi; ++i) rows.push_back({&p, i});
        for (int i = 0; i < p.me + p.mi; ++i) {
            if (i < p.me) nlopt_add_equality_constraint(opt, peer_constraint, &rows[i], 1e-8);
            else nlopt_add_inequality_constraint(opt, peer_constraint, &rows[i], 1e-8);
        }
        nlopt_set_ftol_rel(opt, 1e-12);
        nlopt_set_xtol_rel(opt, 1e-10);
        nlopt_set_maxeval(opt, 2000);
        x = p.x0;
        for (int j = 0; j < p.n; ++j) x[j] = std::clamp(x[j], lo[j], hi[j]);
        double f = 0.0;
        r.exit = nlopt_optimize(opt, x.data(), &f);
        r.objf = f;
        r.evaluations = data.evaluations;
        nlopt_destroy(opt);
    };
    r.seconds = mean_seconds(budget, once);
    r.solved = hs::solved(p, r.objf, x.data());
    return r;
}

double median(std::vector<int> v) {
    if (v.empty()) return 0.0;
    std::sort(v.begin(), v.end());
    const std::size_t h = v.size() / 2;
    return v.size() % 2 == 1 ? v[h] : 0.5 * (v[h - 1] + v[h]);
}

} // namespace

int main(int argc, char **argv) {
    const double budget = argc > 1 ? std::atof(argv[1]) : 0.02;
    std::printf("%-6s | %-6s %5s %5s %10s %15s | %-6s %5s %5s %10s %15s\n", "", "E04UCA", "IFAIL", "evals", "seconds",
                "objective", "SLSQP", "exit", "evals", "seconds", "objective");
    int solved[2] = {0, 0}, wrong_zero = 0;
    double total[2] = {0.0, 0.0};
    std::vector<int> evals[2];
    for (const hs::Problem &p : hs::collection()) {
        if (argc > 2 && std::strcmp(argv[2], p.name) != 0) continue;
        const Result a = run_ours(p, budget), b = run_peer(p, budget);
        std::printf("%-6s | %-6s %5d %5d %10.3e %15.8e | %-6s %5d %5d %10.3e %15.8e\n", p.name, a.solved ? "yes" : "NO",
                    a.exit, a.evaluations, a.seconds, a.objf, b.solved ? "yes" : "NO", b.exit, b.evaluations,
                    b.seconds, b.objf);
        solved[0] += a.solved;
        solved[1] += b.solved;
        wrong_zero += !a.solved && a.exit == 0;
        total[0] += a.seconds;
        total[1] += b.seconds;
        evals[0].push_back(a.evaluations);
        evals[1].push_back(b.evaluations);
    }
    const std::size_t count = evals[0].size();
    std::printf("\nsolved      E04UCA %d of %zu, SLSQP %d of %zu\n", solved[0], count, solved[1], count);
    std::printf("median evaluations  E04UCA %.1f, SLSQP %.1f\n", median(evals[0]), median(evals[1]));
    std::printf("total seconds       E04UCA %.3e, SLSQP %.3e (ratio %.2f)\n", total[0], total[1], total[0] / total[1]);
    std::printf("IFAIL 0 away from the published optimum: %d\n", wrong_zero);
    return 0;
}
