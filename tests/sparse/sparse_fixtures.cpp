#include "sparse_fixtures.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <tuple>

namespace sparse_test {

namespace {

// Coordinate storage from (row, column, value) entries, sorted by rows then columns.
Coo from_entries(int n, bool symmetric, std::vector<std::tuple<int, int, double>> entries) {
    std::stable_sort(entries.begin(), entries.end(), [](const auto &x, const auto &y) {
        return std::tie(std::get<0>(x), std::get<1>(x)) < std::tie(std::get<0>(y), std::get<1>(y));
    });
    Coo m;
    m.n = n, m.symmetric = symmetric;
    for (const auto &[r, c, v] : entries) m.irow.push_back(r), m.icol.push_back(c), m.a.push_back(v);
    return m;
}

} // namespace

Coo read_matrix(const std::string &name) {
    std::ifstream in(std::string(ZEK_TEST_DATA_DIR) + "/matrices/" + name + ".mtx");
    if (!in) throw std::runtime_error("missing matrix " + name);
    std::string line;
    std::getline(in, line);
    const bool symmetric = line.find("symmetric") != std::string::npos;
    while (std::getline(in, line) && line[0] == '%') {
    }
    std::istringstream head(line);
    int rows = 0, cols = 0, count = 0;
    head >> rows >> cols >> count;
    std::vector<std::tuple<int, int, double>> entries;
    for (int k = 0; k < count; ++k) {
        int r, c;
        double v;
        in >> r >> c >> v;
        if (symmetric && c > r) std::swap(r, c);
        entries.emplace_back(r, c, v);
    }
    return from_entries(rows, symmetric, std::move(entries));
}

Coo expand(const Coo &m) {
    if (!m.symmetric) return m;
    std::vector<std::tuple<int, int, double>> entries;
    for (int k = 0; k < m.nnz(); ++k) {
        entries.emplace_back(m.irow[k], m.icol[k], m.a[k]);
        if (m.irow[k] != m.icol[k]) entries.emplace_back(m.icol[k], m.irow[k], m.a[k]);
    }
    return from_entries(m.n, false, std::move(entries));
}

std::vector<Complex> complexify(const Coo &m) {
    std::vector<Complex> v(m.a.size());
    for (std::size_t k = 0; k < v.size(); ++k) {
        const bool diagonal = m.irow[k] == m.icol[k];
        if (m.symmetric) v[k] = diagonal ? Complex(m.a[k], 0.0) : m.a[k] * Complex(0.8, 0.6);
        else v[k] = m.a[k] * (diagonal ? Complex(1.0, 0.25) : Complex(1.0, 0.5));
    }
    return v;
}

template <class T> std::vector<T> dense_of(const Coo &m, const std::vector<T> &values) {
    const std::size_t n = static_cast<std::size_t>(m.n);
    std::vector<T> d(n * n, T(0.0));
    for (int k = 0; k < m.nnz(); ++k) {
        const std::size_t r = static_cast<std::size_t>(m.irow[k] - 1), c = static_cast<std::size_t>(m.icol[k] - 1);
        d[r + c * n] += values[static_cast<std::size_t>(k)];
        if (m.symmetric && r != c) {
            if constexpr (std::is_same_v<T, Complex>) d[c + r * n] += std::conj(values[static_cast<std::size_t>(k)]);
            else d[c + r * n] += values[static_cast<std::size_t>(k)];
        }
    }
    return d;
}

std::vector<double> dense(const Coo &m) { return dense_of(m, m.a); }
std::vector<double> dense(const Coo &m, const std::vector<double> &values) { return dense_of(m, values); }
std::vector<Complex> dense(const Coo &m, const std::vector<Complex> &values) { return dense_of(m, values); }

template <class T>
double residual_of(int n, const std::vector<T> &a, const std::vector<T> &x, const std::vector<T> &b) {
    double rmax = 0.0, anorm = 0.0, xnorm = 0.0, bnorm = 0.0;
    const std::size_t nn = static_cast<std::size_t>(n);
    for (std::size_t i = 0; i < nn; ++i) {
        T s = b[i];
        double row = 0.0;
        for (std::size_t j = 0; j < nn; ++j) {
            s -= a[i + j * nn] * x[j];
            row += std::abs(a[i + j * nn]);
        }
        rmax = std::max(rmax, std::abs(s));
        anorm = std::max(anorm, row);
        xnorm = std::max(xnorm, std::abs(x[i]));
        bnorm = std::max(bnorm, std::abs(b[i]));
    }
    return rmax / (anorm * xnorm + bnorm);
}

double relative_residual(int n, const std::vector<double> &a, const std::vector<double> &x,
                         const std::vector<double> &b) {
    return residual_of(n, a, x, b);
}
double relative_residual(int n, const std::vector<Complex> &a, const std::vector<Complex> &x,
                         const std::vector<Complex> &b) {
    return residual_of(n, a, x, b);
}

} // namespace sparse_test
