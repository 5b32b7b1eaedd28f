// E04NFA (convex QP) and E04NCA (linear least squares) against Clp's quadratic primal simplex on random
// dense problems with general constraints.  Both solvers get the same data; each solves from a cold
// start, and the table gives the best time per solve, the iteration counts, the ratios and the relative
// difference of the optimal objectives (a check that both solved the same problem).  Usage:
//     bench_qp_dense [seconds per measurement] [largest n]
//
// The problems: x in [-10, 10]^n, n/2 rows a'x <= b with a, b uniform (b > 0, so x = 0 is feasible), and
//   QP: H = B'B/n + I/10 with B n by n of uniform entries, c of standard deviation sqrt(n);
//   LS: 1/2 |b - A x|^2 with A 2n by n uniform and b of standard deviation 3 (some rows end active).
#include <ClpSimplex.hpp>
#include <CoinPackedMatrix.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include "zek2/e04.h"
#include "bench_timing.h"

namespace {

struct Problem {
    int n = 0, nclin = 0, m = 0;             // m: rows of the least-squares data (0 for a QP)
    std::vector<double> a;                   // nclin by n
    std::vector<double> bl, bu;              // n + nclin
    std::vector<double> h, c;                // QP: n by n, n.  LS: c = -A'b, h = A'A (for the peer)
    std::vector<double> data, rhs;           // LS: m by n, m
    double constant = 0.0;                   // LS: 1/2 |b|^2, what the peer's objective lacks
};

Problem make(int n, bool least_squares, unsigned seed) {
    std::mt19937_64 gen(seed);
    std::uniform_real_distribution<double> uni(-1.0, 1.0), pos(0.1, 1.0);
    std::normal_distribution<double> normal(0.0, 1.0);
    Problem p;
    p.n = n;
    p.nclin = n / 2;
    p.a.resize(static_cast<std::size_t>(p.nclin) * n);
    for (double &v : p.a) v = uni(gen);
    p.bl.assign(static_cast<std::size_t>(n + p.nclin), -1e25);
    p.bu.assign(p.bl.size(), 1e25);
    for (int j = 0; j < n; ++j) {
        p.bl[j] = -10.0;
        p.bu[j] = 10.0;
    }
    for (int i = 0; i < p.nclin; ++i) p.bu[n + i] = pos(gen);
    p.h.assign(static_cast<std::size_t>(n) * n, 0.0);
    p.c.assign(static_cast<std::size_t>(n), 0.0);
    if (!least_squares) {
        std::vector<double> b(static_cast<std::size_t>(n) * n);
        for (double &v : b) v = uni(gen);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) {
                double s = 0.0;
                for (int k = 0; k < n; ++k) s += b[k + i * n] * b[k + j * n];
                p.h[i + j * n] = s / n + (i == j ? 0.1 : 0.0);
            }
        for (double &v : p.c) v = std::sqrt(static_cast<double>(n)) * normal(gen);
        return p;
    }
    p.m = 2 * n;
    p.data.resize(static_cast<std::size_t>(p.m) * n);
    for (double &v : p.data) v = uni(gen);
    p.rhs.resize(static_cast<std::size_t>(p.m));
    for (double &v : p.rhs) v = 3.0 * normal(gen);
    for (int j = 0; j < n; ++j) {
        double s = 0.0;
        for (int k = 0; k < p.m; ++k) s += p.data[k + j * p.m] * p.rhs[k];
        p.c[j] = -s;
        for (int i = 0; i < n; ++i) {
            double t = 0.0;
            for (int k = 0; k < p.m; ++k) t += p.data[k + i * p.m] * p.data[k + j * p.m];
            p.h[i + j * n] = t;
        }
    }
    for (double v : p.rhs) p.constant += 0.5 * v * v;
    return p;
}

struct Outcome {
    double seconds = 0.0;
    int iterations = 0;
    double objective = 0.0;
    int status = 0;
};

struct Session {
    std::vector<char> cwsav = std::vector<char>(80, ' ');
    std::vector<int> lwsav = std::vector<int>(120, 0), iwsav = std::vector<int>(610, 0);
    std::vector<double> rwsav = std::vector<double>(475, 0.0);
    Session(const char *name, bool nfa) {
        int l1 = 1, l2 = 120, l3 = 610, l4 = 475, ifail = 0;
        E04WBA_PLAIN(name, cwsav.data(), &l1, lwsav.data(), &l2, iwsav.data(), &l3, rwsav.data(), &l4, &ifail);
        for (const char *s : {"Print Level = 0", "Iteration Limit = 100000"}) {
            int inform = 0;
            const int len = static_cast<int>(std::char_traits<char>::length(s));
            (nfa ? E04NHF_PLAIN : E04NEF_PLAIN)(s, lwsav.data(), iwsav.data(), rwsav.data(), &inform, len);
        }
    }
};

Outcome run_e04nfa(const Problem &p, double budget) {
    Outcome o;
    Session s("E04NFA", true);
    const int n = p.n, nclin = p.nclin, lda = std::max(1, nclin), ldh = n;
    int liwork = 2 * n + 3, lwork = 13 * n + 5 * nclin + 4 * n * n;
    std::vector<int> istate(static_cast<std::size_t>(n + nclin)), iwork(static_cast<std::size_t>(liwork));
    std::vector<double> x(static_cast<std::size_t>(n)), ax(static_cast<std::size_t>(lda)),
        clamda(static_cast<std::size_t>(n + nclin)), work(static_cast<std::size_t>(lwork));
    int iuser[1] = {0};
    double ruser[1] = {0.0};
    o.seconds = zek_bench::best_time(
        [&] {
            std::fill(x.begin(), x.end(), 0.0);
            o.status = 1;
            E04NFA(&n, &nclin, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.c.data(), p.h.data(), &ldh, nullptr,
                   nullptr, istate.data(), x.data(), &o.iterations, &o.objective, ax.data(), clamda.data(),
                   iwork.data(), &liwork, work.data(), &lwork, iuser, ruser, s.lwsav.data(), s.iwsav.data(),
                   s.rwsav.data(), &o.status);
        },
        budget, 1);
    return o;
}

Outcome run_e04nca(const Problem &p, double budget) {
    Outcome o;
    Session s("E04NCA", false);
    const int m = p.m, n = p.n, nclin = p.nclin, ldc = std::max(1, nclin), lda = m;
    int liwork = 2 * n + 3, lwork = 17 * n + 6 * nclin + m + 4 * n * n + std::max(m, n) * n;
    std::vector<int> istate(static_cast<std::size_t>(n + nclin)), kx(static_cast<std::size_t>(n)),
        iwork(static_cast<std::size_t>(liwork));
    std::vector<double> x(static_cast<std::size_t>(n)), clamda(static_cast<std::size_t>(n + nclin)),
        work(static_cast<std::size_t>(lwork)), a(p.data), b(p.rhs);
    o.seconds = zek_bench::best_time(
        [&] {
            std::fill(x.begin(), x.end(), 0.0);
            a = p.data;
            b = p.rhs;
            o.status = 1;
            E04NCA(&m, &n, &nclin, &ldc, &lda, p.a.data(), p.bl.data(), p.bu.data(), p.c.data(), istate.data(),
                   kx.data(), x.data(), a.data(), b.data(), &o.iterations, &o.objective, clamda.data(), iwork.data(),
                   &liwork, work.data(), &lwork, s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &o.status);
        },
        budget, 1);
    return o;
}

// Clp takes the constraints column by column and the upper triangle of H; its objective is
// c'x + 1/2 x'Hx, to which the least-squares constant is added for the comparison.
Outcome run_clp(const Problem &p, double budget) {
    Outcome o;
    const int n = p.n, nclin = p.nclin;
    std::vector<CoinBigIndex> astart(static_cast<std::size_t>(n) + 1), hstart(static_cast<std::size_t>(n) + 1);
    std::vector<int> arow, hrow;
    std::vector<double> aval, hval;
    for (int j = 0; j < n; ++j) {
        astart[j] = static_cast<CoinBigIndex>(arow.size());
        for (int i = 0; i < nclin; ++i) {
            arow.push_back(i);
            aval.push_back(p.a[i + static_cast<std::size_t>(j) * nclin]);
        }
        hstart[j] = static_cast<CoinBigIndex>(hrow.size());
        for (int i = 0; i <= j; ++i) {
            hrow.push_back(i);
            hval.push_back(p.h[i + static_cast<std::size_t>(j) * n]);
        }
    }
    astart[n] = static_cast<CoinBigIndex>(arow.size());
    hstart[n] = static_cast<CoinBigIndex>(hrow.size());
    const std::vector<double> rowlb(p.bl.begin() + n, p.bl.end()), rowub(p.bu.begin() + n, p.bu.end());
    o.seconds = zek_bench::best_time(
        [&] {
            ClpSimplex model;
            model.setLogLevel(0);
            model.loadProblem(n, nclin, astart.data(), arow.data(), aval.data(), p.bl.data(), p.bu.data(),
                              p.c.data(), rowlb.data(), rowub.data());
            model.loadQuadraticObjective(n, hstart.data(), hrow.data(), hval.data());
            model.primal();
            o.iterations = model.numberIterations();
            o.objective = model.objectiveValue() + p.constant;
            o.status = model.status();
        },
        budget, 1);
    return o;
}

} // namespace

int main(int argc, char **argv) {
    const double budget = argc > 1 ? std::atof(argv[1]) : 0.5;
    const int largest = argc > 2 ? std::atoi(argv[2]) : 400;
    std::printf("%-4s %5s %5s | %10s %6s %5s | %10s %6s | %7s %7s | %s\n", "kind", "n", "nclin", "ZEK s", "itns",
                "IFAIL", "Clp s", "itns", "t ratio", "i ratio", "objective difference (relative)");
    for (const bool ls : {false, true}) {
        for (const int n : {50, 100, 200, 400}) {
            if (n > largest) continue;
            const Problem p = make(n, ls, 1000u + static_cast<unsigned>(n));
            const Outcome z = ls ? run_e04nca(p, budget) : run_e04nfa(p, budget);
            const Outcome c = run_clp(p, budget);
            std::printf("%-4s %5d %5d | %10.3e %6d %5d | %10.3e %6d | %7.2f %7.2f | %.1e (Clp status %d)\n",
                        ls ? "LS" : "QP", n, p.nclin, z.seconds, z.iterations, z.status, c.seconds, c.iterations,
                        z.seconds / c.seconds, static_cast<double>(z.iterations) / std::max(c.iterations, 1),
                        std::fabs(z.objective - c.objective) / std::max(1.0, std::fabs(c.objective)), c.status);
            std::fflush(stdout);
        }
    }
    return 0;
}
