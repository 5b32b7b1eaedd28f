// The least-squares family (E04GBF, E04GDF, E04FCF) against MINPACK's lmder and lmdif in the same run:
// the test problems of Moré, Garbow and Hillstrom (ACM TOMS 7, 1981) from their standard starts and
// from ten times them, then the StRD nonlinear regression problems from both published starts.
//
// A run counts as solved when its sum of squares is within 1e-6 (relative, plus 1e-10 absolute for the
// zero-residual problems) of a published minimum of the problem; the evaluations are the calls of the
// user's routine (with or without the Jacobian) each solver reports.  Jacobians come from forward-mode
// dual numbers, so every solver sees the same exact derivatives.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include <minpack.h>

#include "mgh_residuals.h"
#include "strd_data.h"
#include "zek2/e04.h"

namespace {

using mgh::Dual;
using mgh::Problem;
using mgh::mgh_problems;

// ---- StRD nonlinear regression (data and certified values in tests/data/strd/nonlinear) ----
struct Regression : strd::Data {
    Dual (*model)(const Dual *b, double x);
};

Dual exponential(const Dual *b, double x) { return b[0] * (1.0 - exp(-b[1] * x)); }
Dual misra1b(const Dual *b, double x) {
    const Dual u = 1.0 + b[1] * x / 2.0;
    return b[0] * (1.0 - 1.0 / (u * u));
}
Dual misra1c(const Dual *b, double x) { return b[0] * (1.0 - 1.0 / sqrt(1.0 + 2.0 * b[1] * x)); }
Dual misra1d(const Dual *b, double x) { return b[0] * b[1] * x / (1.0 + b[1] * x); }
Dual danwood(const Dual *b, double x) { return b[0] * exp(b[1] * std::log(x)); }
Dual mgh09(const Dual *b, double x) { return b[0] * (x * x + x * b[1]) / (x * x + x * b[2] + b[3]); }
Dual mgh10(const Dual *b, double x) { return b[0] * exp(b[1] / (x + b[2])); }
Dual rat42(const Dual *b, double x) { return b[0] / (1.0 + exp(b[1] - b[2] * x)); }
Dual rat43(const Dual *b, double x) { return b[0] / pow(1.0 + exp(b[1] - b[2] * x), 1.0 / b[3]); }

Regression load(const std::string &file, int n, Dual (*model)(const Dual *, double)) {
    return {strd::read(ZEK_TEST_DATA_DIR, file, n), model};
}

const Regression *g_regression = nullptr;
void regression_residuals(int m, int, const Dual *b, Dual *f) {
    for (int i = 0; i < m; ++i) f[i] = g_regression->model(b, g_regression->x[i]) - g_regression->y[i];
}

// ---- One evaluation interface for every solver ----
const Problem *g_problem = nullptr;
long g_calls = 0;

// Residuals (and the Jacobian, column order with leading dimension LD, when JAC is not null) at X.
void evaluate(const double *x, double *f, double *jac, int ld) {
    const int m = g_problem->m, n = g_problem->n;
    std::vector<Dual> xd(static_cast<std::size_t>(n)), fd(static_cast<std::size_t>(m));
    for (int j = 0; j < n; ++j) {
        xd[j].v = x[j];
        xd[j].d[j] = 1.0;
    }
    g_problem->residuals(m, n, xd.data(), fd.data());
    ++g_calls;
    for (int i = 0; i < m; ++i) {
        if (f != nullptr) f[i] = fd[i].v;
        if (jac != nullptr)
            for (int j = 0; j < n; ++j) jac[i + static_cast<std::ptrdiff_t>(j) * ld] = fd[i].d[j];
    }
}

void zek_lsq(int *iflag, const int *, const int *, const double *x, double *f, double *j, const int *lj, int *,
             double *) {
    evaluate(x, f, *iflag == 2 ? j : nullptr, *lj);
}
void zek_lsq_diff(int *, const int *, const int *, const double *x, double *f, int *, double *) {
    evaluate(x, f, nullptr, 0);
}
void minpack_der(int *, int *, double *x, double *f, double *j, int *ld, int *iflag) {
    if (*iflag == 1) evaluate(x, f, nullptr, 0);
    else evaluate(x, nullptr, j, *ld);
}
void minpack_dif(int *, int *, double *x, double *f, int *) { evaluate(x, f, nullptr, 0); }

enum Solver { kGB, kGD, kFC, kLmder, kLmdif, kSolvers };
const char *const kSolverNames[] = {"E04GBF", "E04GDF", "E04FCF", "lmder", "lmdif"};

struct Run {
    double f;
    long calls;
    int code;  // IFAIL or MINPACK's info
    std::vector<double> x;
};

// Tolerances as a user asking for about ten digits would set them for each.
Run solve(Solver s, const std::vector<double> &start) {
    int m = g_problem->m, n = g_problem->n;
    std::vector<double> x = start, f(static_cast<std::size_t>(m)), jac(static_cast<std::size_t>(m) * n);
    g_calls = 0;
    int code = 0;
    const int maxcal = 200 * (n + 1) * (s == kGD ? n + 1 : 1);
    if (s == kLmder || s == kLmdif) {
        int ld = m, maxfev = maxcal, mode = 1, nprint = 0, nfev = 0, njev = 0;
        double ftol = 1e-10, xtol = 1e-10, gtol = 0.0, epsfcn = 0.0, factor = 100.0;
        std::vector<double> diag(n), qtf(n), w1(n), w2(n), w3(n), w4(m);
        std::vector<int> ipvt(n);
        if (s == kLmder)
            lmder_(minpack_der, &m, &n, x.data(), f.data(), jac.data(), &ld, &ftol, &xtol, &gtol, &maxfev, diag.data(),
                   &mode, &factor, &nprint, &code, &nfev, &njev, ipvt.data(), qtf.data(), w1.data(), w2.data(),
                   w3.data(), w4.data());
        else
            lmdif_(minpack_dif, &m, &n, x.data(), f.data(), &ftol, &xtol, &gtol, &maxfev, &epsfcn, diag.data(), &mode,
                   &factor, &nprint, &code, &nfev, jac.data(), &ld, ipvt.data(), qtf.data(), w1.data(), w2.data(),
                   w3.data(), w4.data());
    } else {
        const int lj = m, lv = n, iprint = -1, liw = 1, lw = 7 * n + m * n + 2 * m + n * n + 9;
        const double eta = 0.5, xtol = 1e-10;
        double norm = 0.0;
        for (double e : start) norm = std::hypot(norm, e);
        const double stepmx = 1e5 * (1.0 + norm);
        std::vector<double> s_(n), v(static_cast<std::size_t>(n) * n), w(lw);
        double fsumsq = 0.0, ruser = 0.0;
        int niter = 0, nf = 0, igrade = 0, iw = 0, iuser = 0;
        code = 1;
        if (s == kGB)
            E04GBF(&m, &n, zek_lsq, nullptr, nullptr, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol,
                   &stepmx, x.data(), &fsumsq, f.data(), jac.data(), &lj, s_.data(), v.data(), &lv, &niter, &nf,
                   &igrade, &iw, &liw, w.data(), &lw, &iuser, &ruser, &code);
        else if (s == kGD)
            E04GDF(&m, &n, zek_lsq, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol, &stepmx, x.data(),
                   &fsumsq, f.data(), jac.data(), &lj, s_.data(), v.data(), &lv, &niter, &nf, &igrade, &iw, &liw,
                   w.data(), &lw, &iuser, &ruser, &code);
        else
            E04FCF(&m, &n, zek_lsq_diff, nullptr, nullptr, nullptr, &iprint, &maxcal, &eta, &xtol, &stepmx, x.data(),
                   &fsumsq, f.data(), jac.data(), &lj, s_.data(), v.data(), &lv, &niter, &nf, &igrade, &iw, &liw,
                   w.data(), &lw, &iuser, &ruser, &code);
    }
    // The sum of squares at the point returned, evaluated here so that every solver is scored alike.
    evaluate(x.data(), f.data(), nullptr, 0);
    double sum = 0.0;
    for (double e : f) sum += e * e;
    return {sum, g_calls - 1, code, x};
}

bool solved(const Problem &p, double f) {
    for (double fmin : p.minima)
        if (std::fabs(f - fmin) <= 1e-6 * fmin + 1e-10) return true;
    return false;
}

double median(std::vector<double> v) {
    if (v.empty()) return 0.0;
    std::sort(v.begin(), v.end());
    const std::size_t h = v.size() / 2;
    return v.size() % 2 ? v[h] : 0.5 * (v[h - 1] + v[h]);
}

double digits(double value, double certified) {
    const double rel = std::fabs(value - certified) / std::fabs(certified);
    return rel == 0.0 ? 16.0 : std::min(16.0, -std::log10(rel));
}

void mgh_table() {
    std::printf("Moré-Garbow-Hillstrom least squares: sum of squares reached (* = a published minimum), "
                "evaluations, IFAIL or info\n%-22s", "problem (start x)");
    for (const char *name : kSolverNames) std::printf(" %23s", name);
    std::printf("\n");
    int count[kSolvers] = {};
    // Evaluations of each of ours against its peer (lmder for the derivative forms, lmdif for E04FCF)
    // over the runs both solve.
    std::vector<double> ratio[kSolvers];
    int runs = 0;
    for (const Problem &p : mgh_problems()) {
        g_problem = &p;
        for (double factor : {1.0, 10.0}) {
            std::vector<double> start = p.start;
            for (double &e : start) e *= factor;
            Run r[kSolvers];
            for (int s = 0; s < kSolvers; ++s) r[s] = solve(static_cast<Solver>(s), start);
            ++runs;
            std::printf("%-18s %3g ", p.name.c_str(), factor);
            for (int s = 0; s < kSolvers; ++s) {
                const bool ok = solved(p, r[s].f);
                count[s] += ok;
                std::printf(" %12.6g%c %5ld %2d", r[s].f, ok ? '*' : ' ', r[s].calls, r[s].code);
            }
            std::printf("\n");
            for (int s = kGB; s <= kFC; ++s) {
                const int peer = s == kFC ? kLmdif : kLmder;
                if (solved(p, r[s].f) && solved(p, r[peer].f))
                    ratio[s].push_back(double(r[s].calls) / double(std::max(1L, r[peer].calls)));
            }
        }
    }
    std::printf("\nsolved of %d runs:", runs);
    for (int s = 0; s < kSolvers; ++s) std::printf("  %s %d", kSolverNames[s], count[s]);
    std::printf("\nmedian evaluations against the peer over the runs both solve:  E04GBF/lmder %.2f (%zu runs)  "
                "E04GDF/lmder %.2f (%zu)  E04FCF/lmdif %.2f (%zu)\n\n",
                median(ratio[kGB]), ratio[kGB].size(), median(ratio[kGD]), ratio[kGD].size(), median(ratio[kFC]),
                ratio[kFC].size());
}

void strd_table() {
    struct Entry {
        const char *file;
        int n;
        Dual (*model)(const Dual *, double);
    };
    const Entry entries[] = {{"misra1a", 2, exponential}, {"misra1b", 2, misra1b}, {"misra1c", 2, misra1c},
                             {"misra1d", 2, misra1d},     {"danwood", 2, danwood}, {"boxbod", 2, exponential},
                             {"mgh09", 4, mgh09},         {"mgh10", 3, mgh10},     {"rat42", 3, rat42},
                             {"rat43", 4, rat43}};
    std::printf("StRD nonlinear regression: least certified digits over the parameters and the sum of squares "
                "(code: IFAIL or info)\n%-12s", "problem");
    for (const char *name : kSolverNames) std::printf(" %14s", name);
    std::printf("\n");
    double least[kSolvers];
    std::fill(least, least + kSolvers, 16.0);
    for (const Entry &e : entries) {
        const Regression reg = load(e.file, e.n, e.model);
        g_regression = &reg;
        Problem p{e.file, e.n, static_cast<int>(reg.y.size()), {}, {reg.sumsq}, regression_residuals};
        g_problem = &p;
        for (std::size_t st = 0; st < reg.starts.size(); ++st) {
            std::printf("%-10s %zu", e.file, st + 1);
            for (int s = 0; s < kSolvers; ++s) {
                const Run r = solve(static_cast<Solver>(s), reg.starts[st]);
                double d = digits(r.f, reg.sumsq);
                for (int k = 0; k < e.n; ++k) d = std::min(d, digits(r.x[k], reg.certified[k]));
                least[s] = std::min(least[s], d);
                std::printf(" %8.2f (%2d)", d, r.code);
            }
            std::printf("\n");
        }
    }
    std::printf("least over the set:");
    for (int s = 0; s < kSolvers; ++s) std::printf("  %s %.2f", kSolverNames[s], least[s]);
    std::printf("\n");
}

} // namespace

int main() {
    mgh_table();
    strd_table();
}
