#include "sparse_fixtures.h"

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

} // namespace sparse_test
