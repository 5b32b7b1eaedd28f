// The incomplete-LU RGMRES driver (F11DAF with level 0, then F11DCF) against Eigen's restarted GMRES
// with its threshold incomplete LU, in the same run: 2-D and 3-D Laplacians and the Matrix Market
// matrices of the tests.  Both restart every 30 steps and aim at 1e-8; the stopping tests differ
// (the driver's is ||r||inf <= tol*(||b||inf + ||A||1 ||x||inf), Eigen's ||r||2 <= tol*||b||2), so the
// table gives each one's true relative residual ||b - Ax||2/||b||2 beside its iterations, the best time
// of a few repetitions for set-up and for the solve, and the ratios of solve time and of time per
// iteration (ours / Eigen's).  Usage:  bench_sparse_krylov [largest grid side]
#include <Eigen/IterativeLinearSolvers>
#include <Eigen/Sparse>
#include <unsupported/Eigen/IterativeSolvers>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "zek2/f11.h"
#include "bench_timing.h"

namespace {

struct Matrix {
    std::string name;
    int n = 0;
    std::vector<double> a;
    std::vector<int> irow, icol; // sorted by row, then column
};

void sort_entries(Matrix &m) {
    std::vector<std::tuple<int, int, double>> t;
    for (std::size_t k = 0; k < m.a.size(); ++k) t.emplace_back(m.irow[k], m.icol[k], m.a[k]);
    std::sort(t.begin(), t.end());
    for (std::size_t k = 0; k < t.size(); ++k) std::tie(m.irow[k], m.icol[k], m.a[k]) = t[k];
}

// The (2d+1)-point Laplacian on a side^d grid.
Matrix laplacian(int side, int dims) {
    Matrix m;
    m.name = std::to_string(dims) + "-D Laplacian " + std::to_string(side);
    m.n = dims == 2 ? side * side : side * side * side;
    const int stride[3] = {1, side, side * side};
    for (int p = 0; p < m.n; ++p) {
        int coord[3] = {p % side, (p / side) % side, p / (side * side)};
        for (int d = dims - 1; d >= 0; --d)
            if (coord[d] > 0) m.irow.push_back(p + 1), m.icol.push_back(p - stride[d] + 1), m.a.push_back(-1.0);
        m.irow.push_back(p + 1), m.icol.push_back(p + 1), m.a.push_back(2.0 * dims);
        for (int d = 0; d < dims; ++d)
            if (coord[d] < side - 1) m.irow.push_back(p + 1), m.icol.push_back(p + stride[d] + 1), m.a.push_back(-1.0);
    }
    sort_entries(m);
    return m;
}

bool read_market(const std::string &name, Matrix &m) {
    std::ifstream in(std::string(ZEK_TEST_DATA_DIR) + "/matrices/" + name + ".mtx");
    if (!in) return false;
    std::string line;
    std::getline(in, line);
    const bool symmetric = line.find("symmetric") != std::string::npos;
    while (std::getline(in, line) && line[0] == '%') {
    }
    std::istringstream head(line);
    int rows = 0, cols = 0, entries = 0;
    head >> rows >> cols >> entries;
    m.name = name;
    m.n = rows;
    for (int k = 0; k < entries; ++k) {
        int i = 0, j = 0;
        double v = 0.0;
        in >> i >> j >> v;
        m.irow.push_back(i), m.icol.push_back(j), m.a.push_back(v);
        if (symmetric && i != j) m.irow.push_back(j), m.icol.push_back(i), m.a.push_back(v);
    }
    sort_entries(m);
    return true;
}

double relative_residual(const Matrix &m, const std::vector<double> &x, const std::vector<double> &b) {
    std::vector<double> r = b;
    for (std::size_t k = 0; k < m.a.size(); ++k) r[m.irow[k] - 1] -= m.a[k] * x[m.icol[k] - 1];
    double rr = 0.0, bb = 0.0;
    for (int i = 0; i < m.n; ++i) rr += r[i] * r[i], bb += b[i] * b[i];
    return std::sqrt(rr / bb);
}

struct Outcome {
    double setup = 1e300, solve = 1e300, residual = 0.0;
    int iterations = 0, status = 0;
};

constexpr int kRestart = 30, kMaxitn = 3000, kRepeats = 3;
constexpr double kTol = 1e-8;

Outcome ours(const Matrix &m, const std::vector<double> &b, const char *strategy) {
    Outcome o;
    const int n = m.n, nnz = static_cast<int>(m.a.size()), la = 3 * nnz, lfill = 0, liwork = 7 * n + 2;
    const int lwork = (n + kRestart + 5) * kRestart + 4 * n + 101;
    const double dtol = 0.0;
    std::vector<double> fa(static_cast<std::size_t>(la)), work(static_cast<std::size_t>(lwork)), x;
    std::vector<int> fr(fa.size()), fc(fa.size()), ipivp(static_cast<std::size_t>(n)), ipivq(ipivp.size()),
        istr(ipivp.size() + 1), idiag(ipivp.size()), iwork(static_cast<std::size_t>(liwork));
    for (int rep = 0; rep < kRepeats; ++rep) {
        std::copy(m.a.begin(), m.a.end(), fa.begin());
        std::copy(m.irow.begin(), m.irow.end(), fr.begin());
        std::copy(m.icol.begin(), m.icol.end(), fc.begin());
        int nnzc = 0, npivm = 0, ifail = 1;
        auto t = std::chrono::steady_clock::now();
        F11DAF(&n, &nnz, fa.data(), &la, fr.data(), fc.data(), &lfill, &dtol, strategy, "N", ipivp.data(), ipivq.data(),
               istr.data(), idiag.data(), &nnzc, &npivm, iwork.data(), &liwork, &ifail, 1, 1);
        o.setup = std::min(o.setup, zek_bench::seconds_since(t));
        if (ifail != 0) {
            o.status = 100 + ifail;
            return o;
        }
        x.assign(static_cast<std::size_t>(n), 0.0);
        double rnorm = 0.0;
        ifail = 1;
        t = std::chrono::steady_clock::now();
        F11DCF("RGMRES", &n, &nnz, fa.data(), &la, fr.data(), fc.data(), ipivp.data(), ipivq.data(), istr.data(),
               idiag.data(), b.data(), &kRestart, &kTol, &kMaxitn, x.data(), &rnorm, &o.iterations, work.data(),
               &lwork, &ifail, 6);
        o.solve = std::min(o.solve, zek_bench::seconds_since(t));
        o.status = ifail;
    }
    o.residual = relative_residual(m, x, b);
    return o;
}

Outcome peer(const Matrix &m, const std::vector<double> &b) {
    Outcome o;
    std::vector<Eigen::Triplet<double>> triplets;
    for (std::size_t k = 0; k < m.a.size(); ++k) triplets.emplace_back(m.irow[k] - 1, m.icol[k] - 1, m.a[k]);
    Eigen::SparseMatrix<double, Eigen::RowMajor> a(m.n, m.n);
    a.setFromTriplets(triplets.begin(), triplets.end());
    const Eigen::Map<const Eigen::VectorXd> rhs(b.data(), m.n);
    Eigen::VectorXd x;
    for (int rep = 0; rep < kRepeats; ++rep) {
        Eigen::GMRES<Eigen::SparseMatrix<double, Eigen::RowMajor>, Eigen::IncompleteLUT<double>> gmres;
        gmres.set_restart(kRestart);
        gmres.setTolerance(kTol);
        gmres.setMaxIterations(kMaxitn);
        auto t = std::chrono::steady_clock::now();
        gmres.compute(a);
        o.setup = std::min(o.setup, zek_bench::seconds_since(t));
        t = std::chrono::steady_clock::now();
        x = gmres.solve(rhs);
        o.solve = std::min(o.solve, zek_bench::seconds_since(t));
        o.iterations = static_cast<int>(gmres.iterations());
        o.status = gmres.info() == Eigen::Success ? 0 : 1;
    }
    o.residual = relative_residual(m, std::vector<double>(x.data(), x.data() + m.n), b);
    return o;
}

} // namespace

int main(int argc, char **argv) {
    const int largest = argc > 1 ? std::atoi(argv[1]) : 300;
    std::vector<Matrix> problems;
    for (const char *name : {"sherman1", "gr_30_30", "west0067"}) {
        Matrix m;
        if (read_market(name, m)) problems.push_back(m);
    }
    for (int side = 100; side <= largest; side *= 3) problems.push_back(laplacian(side, 2));
    for (int side = 20; side * side * side <= largest * largest; side *= 2) problems.push_back(laplacian(side, 3));
    std::printf("%-22s %8s %9s | %6s %9s %9s %9s %3s | %6s %9s %9s %9s %3s | %7s %9s\n", "problem", "n", "nnz", "itn",
                "setup s", "solve s", "resid", "if", "itn", "setup s", "solve s", "resid", "ok", "solve", "per itn");
    for (const Matrix &m : problems) {
        std::vector<double> b(static_cast<std::size_t>(m.n));
        for (int i = 0; i < m.n; ++i) b[i] = 1.0 + std::sin(0.1 * i);
        // Without pivoting first; a matrix with zero diagonals (west0067) needs complete pivoting.
        Outcome z = ours(m, b, "N");
        if (z.status >= 100) z = ours(m, b, "C");
        const Outcome e = peer(m, b);
        if (z.status >= 100) {
            std::printf("%-22s %8d %9zu | factorisation failed, IFAIL %d\n", m.name.c_str(), m.n, m.a.size(), z.status - 100);
            continue;
        }
        const double per_z = z.solve / std::max(z.iterations, 1), per_e = e.solve / std::max(e.iterations, 1);
        std::printf("%-22s %8d %9zu | %6d %9.4f %9.4f %9.2e %3d | %6d %9.4f %9.4f %9.2e %3d | %7.2f %9.2f\n",
                    m.name.c_str(), m.n, m.a.size(), z.iterations, z.setup, z.solve, z.residual, z.status,
                    e.iterations, e.setup, e.solve, e.residual, e.status, z.solve / e.solve, per_z / per_e);
    }
    return 0;
}
