// Matrices for the sparse tests: Matrix Market files read into coordinate storage, dense references
// and residuals formed here, independently of the library.
#ifndef ZEK_TESTS_SPARSE_FIXTURES_H
#define ZEK_TESTS_SPARSE_FIXTURES_H

#include <algorithm>
#include <cmath>
#include <complex>
#include <string>
#include <type_traits>
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

// A real or complex vector as the routines take it (complex values as pairs).
template <class T> double *raw(const std::vector<T> &v) {
    return const_cast<double *>(reinterpret_cast<const double *>(v.data()));
}
// The real routine or its complex twin, which takes the same arguments.
template <class T, class F> F *twin(F *real, F *cplx) { return std::is_same_v<T, double> ? real : cplx; }

template <class T> std::vector<T> values_of(const Coo &m) {
    if constexpr (std::is_same_v<T, double>) return m.a;
    else return complexify(m);
}
// 1 + sin(i), with the imaginary part 0.5 cos(i) when complex.
template <class T> std::vector<T> right_side(int n) {
    std::vector<T> b(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        if constexpr (std::is_same_v<T, double>) b[i] = 1.0 + std::sin(i);
        else b[i] = Complex(1.0 + std::sin(i), 0.5 * std::cos(i));
    }
    return b;
}

// A matrix at the front of ROOM places for its incomplete factors, with the factors' index arrays.
template <class T> struct Factors {
    int n, nnz, la, nnzc = 0, npivm = 0, ifail = 1;
    std::vector<T> a;
    std::vector<int> irow, icol, ipiv, ipivq, istr, idiag;
    Factors(const Coo &m, const std::vector<T> &values, std::size_t room)
        : n(m.n), nnz(m.nnz()), la(static_cast<int>(room)), a(room, T(0.0)), irow(room, 0), icol(room, 0),
          ipiv(static_cast<std::size_t>(m.n)), ipivq(ipiv.size()), istr(ipiv.size() + 1), idiag(ipiv.size()) {
        std::copy(values.begin(), values.end(), a.begin());
        std::copy(m.irow.begin(), m.irow.end(), irow.begin());
        std::copy(m.icol.begin(), m.icol.end(), icol.begin());
    }
};

} // namespace sparse_test

#endif
