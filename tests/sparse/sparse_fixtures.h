// The support header of the sparse tests, which also brings the standard headers they share: Matrix
// Market files read into coordinate storage, dense references and residuals formed here, independently
// of the library; the incomplete factorisations the solver tests start from; and the scaffolding of
// the hostile-input tables.
#ifndef ZEK_TESTS_SPARSE_FIXTURES_H
#define ZEK_TESTS_SPARSE_FIXTURES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <functional>
#include <limits>
#include <numeric>
#include <string>
#include <type_traits>
#include <vector>

#include "frame/host_capture.h"
#include "zek2/f11.h"

namespace sparse_test {

using Complex = std::complex<double>;
inline const double kNaN = std::numeric_limits<double>::quiet_NaN();
inline const double kInf = std::numeric_limits<double>::infinity();

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

// Dense column-major copy of a real or complex CS matrix (SCS mirrored, conjugated for complex),
// transposed when asked.
template <class T> std::vector<T> dense(const Coo &m, const std::vector<T> &values, bool transpose = false) {
    const std::size_t n = static_cast<std::size_t>(m.n);
    std::vector<T> d(n * n, T(0.0));
    for (std::size_t k = 0; k < values.size(); ++k) {
        std::size_t r = static_cast<std::size_t>(m.irow[k] - 1), c = static_cast<std::size_t>(m.icol[k] - 1);
        if (transpose) std::swap(r, c);
        d[r + c * n] += values[k];
        if (!m.symmetric || r == c) continue;
        if constexpr (std::is_same_v<T, Complex>) d[c + r * n] += std::conj(values[k]);
        else d[c + r * n] += values[k];
    }
    return d;
}
inline std::vector<double> dense(const Coo &m) { return dense(m, m.a); }

// ||b - A x||_inf / (||A||_inf ||x||_inf + ||b||_inf) with the dense matrix.
template <class T>
double relative_residual(int n, const std::vector<T> &a, const std::vector<T> &x, const std::vector<T> &b) {
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

// A real or complex vector as the routines take it (complex values as pairs).
template <class T> double *raw(const std::vector<T> &v) {
    return const_cast<double *>(reinterpret_cast<const double *>(v.data()));
}
// The length of a character argument, as the routines take it.
inline int len(const char *s) { return static_cast<int>(std::strlen(s)); }
// The real routine or its complex twin, which takes the same arguments.
template <class T, class F> F *twin(F *real, F *cplx) { return std::is_same_v<T, double> ? real : cplx; }

template <class T> std::vector<T> values_of(const Coo &m) {
    if constexpr (std::is_same_v<T, double>) return m.a;
    else return complexify(m);
}
// 1 + sin(i), whose imaginary component is 0.5 cos(i) when complex.
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

// Incomplete LU with room for ROOM * NNZ + N * N entries; user pivots (PSTRAT 'U') are the natural rows
// and columns.
template <class T>
Factors<T> factor_lu(const Coo &m, const std::vector<T> &values, int lfill, const char *pstrat, const char *milu,
                     int room = 40) {
    Factors<T> r(m, values, static_cast<std::size_t>(room) * static_cast<std::size_t>(m.nnz()) +
                                static_cast<std::size_t>(m.n) * static_cast<std::size_t>(m.n));
    std::iota(r.ipiv.begin(), r.ipiv.end(), 1);
    if (*pstrat == 'U') r.ipivq = r.ipiv;
    else std::reverse_copy(r.ipiv.begin(), r.ipiv.end(), r.ipivq.begin());
    std::vector<int> iwork(7 * r.ipiv.size() + 2);
    const int liwork = static_cast<int>(iwork.size());
    const double dtol = 0.0;
    twin<T>(F11DAF, F11DNF)(&r.n, &r.nnz, raw(r.a), &r.la, r.irow.data(), r.icol.data(), &lfill, &dtol, pstrat, milu,
                            r.ipiv.data(), r.ipivq.data(), r.istr.data(), r.idiag.data(), &r.nnzc, &r.npivm,
                            iwork.data(), &liwork, &r.ifail, 1, 1);
    return r;
}

// Incomplete Cholesky of an SCS matrix in LA places, user pivots in reverse order.
template <class T>
Factors<T> factor_ic(const Coo &m, const std::vector<T> &values, int lfill, const char *pstrat, std::size_t la) {
    Factors<T> r(m, values, la);
    std::iota(r.ipiv.rbegin(), r.ipiv.rend(), 1);
    const int liwork = 7 * r.n + 1 + 2 * r.la - 3 * r.nnz;
    std::vector<int> iwork(static_cast<std::size_t>(liwork));
    const double dscale = 1.0, dtol = 0.0;
    twin<T>(F11JAF, F11JNF)(&r.n, &r.nnz, raw(r.a), &r.la, r.irow.data(), r.icol.data(), &lfill, &dtol, "N", &dscale,
                            pstrat, r.ipiv.data(), r.istr.data(), &r.nnzc, &r.npivm, iwork.data(), &liwork, &r.ifail, 1,
                            1);
    return r;
}

// A hostile-input row: a call of a public routine with IFAIL -1 on a small matrix (or a spoilt copy of
// it), the IFAIL it must end with and the start of its first message record ("" for success).
template <class Data> struct HostileRow {
    const char *what;
    std::function<int(Data &)> call;
    int ifail;
    const char *text;
};

// Every row ends in its IFAIL with its first record, and the front's self-check stays quiet.
template <class Data, std::size_t K> void expect_rows(const HostileRow<Data> (&rows)[K]) {
    for (const HostileRow<Data> &row : rows) {
        SCOPED_TRACE(row.what);
        Data d;
        zek_test::OutputCapture capture;
        const int ifail = row.call(d);
        const std::vector<std::string> &host = capture.host();
        EXPECT_EQ(ifail, row.ifail);
        std::string all;
        for (const std::string &piece : host) all += piece + "\n";
        EXPECT_EQ(all.find("MISMATCH"), std::string::npos) << all;
        if (row.ifail == 0) {
            EXPECT_TRUE(host.empty()) << all;
        } else if (host.empty()) {
            ADD_FAILURE() << "no message"; // and the rows after this one still run
        } else {
            EXPECT_EQ(host.front().rfind(row.text, 0), 0u) << host.front();
        }
    }
}

} // namespace sparse_test

#endif
