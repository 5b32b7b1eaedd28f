// Matrices for the sparse tests: Matrix Market files read into coordinate storage, dense references
// and residuals formed here, independently of the library.
#ifndef ZEK_TESTS_SPARSE_FIXTURES_H
#define ZEK_TESTS_SPARSE_FIXTURES_H

#include <complex>
#include <string>
#include <vector>

namespace sparse_test {

using Complex = std::complex<double>;

// A matrix in coordinate storage, one-based, sorted by rows (symmetric files keep their lower triangle).
struct Coo {
    int n = 0;
    bool symmetric = false;
    std::vector<double> a;
    std::vector<int> irow, icol;
    int nnz() const { return static_cast<int>(a.size()); }
};

// Reads tests/data/matrices/<name>.mtx, sorted row-major.
Coo read_matrix(const std::string &name);
// The full matrix (both triangles of a symmetric one) in coordinate storage, sorted.
Coo expand(const Coo &m);
// Complex values from a real matrix.  Symmetric (SCS, Hermitian): off-diagonals turned by the unit
// phase 0.8 + 0.6i, so that a definite matrix with a nonpositive off-diagonal stays definite; diagonal
// kept.  General: a*(1 + 0.5i) off the diagonal, a*(1 + 0.25i) on it.
std::vector<Complex> complexify(const Coo &m);
// Dense column-major copy of a real or complex CS matrix (SCS mirrored, conjugated for complex).
std::vector<double> dense(const Coo &m);
std::vector<Complex> dense(const Coo &m, const std::vector<Complex> &values);
std::vector<double> dense(const Coo &m, const std::vector<double> &values);
// ||b - A x||_inf / (||A||_inf ||x||_inf + ||b||_inf) with the dense matrix.
double relative_residual(int n, const std::vector<double> &dense_a, const std::vector<double> &x,
                         const std::vector<double> &b);
double relative_residual(int n, const std::vector<Complex> &dense_a, const std::vector<Complex> &x,
                         const std::vector<Complex> &b);

} // namespace sparse_test

#endif
