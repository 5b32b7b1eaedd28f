// Matrix copy, load, permutation and norms.
#include "kernels/matrix_utilities.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "kernels/safe_arithmetic.h"
#include "zek2/f06.h"

namespace zek {

namespace {

// Rows [lo, hi) of column j (zero-based) that a shape letter covers.
struct ShapeRows {
    char shape;
    std::ptrdiff_t m;
    std::ptrdiff_t lo(std::ptrdiff_t j) const { return shape == 'L' ? j : 0; }
    std::ptrdiff_t hi(std::ptrdiff_t j) const { return shape == 'U' ? std::min(m, j + 1) : m; }
    // Columns the shape reaches.
    std::ptrdiff_t columns(std::ptrdiff_t n) const { return shape == 'L' ? std::min(m, n) : n; }
};

inline double modulus(double v) { return std::fabs(v); }
inline double modulus(Complex v) { return std::hypot(v.re, v.im); }

// A larger value, or a NaN, replaces the running maximum, so that NaN reaches the result.
inline void take_max(double &value, double v) {
    if (v > value || std::isnan(v)) value = v;
}

// The norm of the entries of column j in rows [lo(j), hi(j)), plus a unit diagonal when UNIT.
template <class T, class Lo, class Hi>
double norm_engine(char norm, std::ptrdiff_t m, std::ptrdiff_t n, const T *a, std::ptrdiff_t lda, double *work, Lo lo,
                   Hi hi, bool unit) {
    if (std::min(m, n) <= 0) return 0.0;
    const std::ptrdiff_t diagonal = std::min(m, n);
    double value = 0.0;
    if (norm == 'M') {
        if (unit) value = 1.0;
        for (std::ptrdiff_t j = 0; j < n; ++j)
            for (std::ptrdiff_t i = lo(j); i < hi(j); ++i) take_max(value, modulus(a[i + j * lda]));
    } else if (norm == 'O' || norm == '1') {
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            double sum = unit && j < diagonal ? 1.0 : 0.0;
            for (std::ptrdiff_t i = lo(j); i < hi(j); ++i) sum += modulus(a[i + j * lda]);
            take_max(value, sum);
        }
    } else if (norm == 'I') {
        for (std::ptrdiff_t i = 0; i < m; ++i) work[i] = unit && i < diagonal ? 1.0 : 0.0;
        for (std::ptrdiff_t j = 0; j < n; ++j)
            for (std::ptrdiff_t i = lo(j); i < hi(j); ++i) work[i] += modulus(a[i + j * lda]);
        for (std::ptrdiff_t i = 0; i < m; ++i) take_max(value, work[i]);
    } else if (norm == 'F' || norm == 'E') {
        double scale = unit ? 1.0 : 0.0, sumsq = unit ? static_cast<double>(diagonal) : 1.0;
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            const std::ptrdiff_t l = lo(j), h = hi(j);
            if (h > l) sumsq_update(static_cast<int>(h - l), a + l + j * lda, 1, &scale, &sumsq);
        }
        value = scale * std::sqrt(sumsq);
    }
    return value;
}

} // namespace

template <class T> void matrix_copy(char shape, int m, int n, const T *a, int lda, T *b, int ldb) {
    if (shape != 'G' && shape != 'U' && shape != 'L') return;
    const ShapeRows rows{shape, m};
    const std::ptrdiff_t la = clamp_ld(lda), lb = clamp_ld(ldb);
    for (std::ptrdiff_t j = 0; j < rows.columns(n); ++j)
        for (std::ptrdiff_t i = rows.lo(j); i < rows.hi(j); ++i) b[i + j * lb] = a[i + j * la];
}

template <class T> void matrix_load(char shape, int m, int n, T konst, T diag, T *a, int lda) {
    if (shape != 'G' && shape != 'U' && shape != 'L') return;
    const ShapeRows rows{shape, m};
    const std::ptrdiff_t la = clamp_ld(lda);
    for (std::ptrdiff_t j = 0; j < rows.columns(n); ++j)
        for (std::ptrdiff_t i = rows.lo(j); i < rows.hi(j); ++i) a[i + j * la] = konst;
    if (diag != konst)
        for (std::ptrdiff_t j = 0; j < std::min(m, n); ++j) a[j + j * la] = diag;
}

void matrix_permute(char side, char trans, int n, const double *perm, int k, double *b, int ldb) {
    if (std::min(n, k) <= 0) return;
    if ((side != 'L' && side != 'R') || (trans != 'N' && trans != 'T')) return;
    const std::ptrdiff_t lb = clamp_ld(ldb);
    const bool upwards = (side == 'L') == (trans == 'T');
    for (int step = 0; step < n; ++step) {
        const std::ptrdiff_t i = upwards ? step + 1 : n - step;
        const std::ptrdiff_t p = static_cast<std::ptrdiff_t>(perm[i - 1]);
        if (p == i) continue;
        if (side == 'L') {
            for (std::ptrdiff_t j = 0; j < k; ++j) std::swap(b[(i - 1) + j * lb], b[(p - 1) + j * lb]);
        } else {
            double *x = b + (i - 1) * lb, *y = b + (p - 1) * lb;
            for (std::ptrdiff_t r = 0; r < k; ++r) std::swap(x[r], y[r]);
        }
    }
}

template <class T> double matrix_norm_general(char norm, int m, int n, const T *a, int lda, double *work) {
    const std::ptrdiff_t mm = m;
    return norm_engine(
        norm, m, n, a, clamp_ld(lda), work, [](std::ptrdiff_t) { return std::ptrdiff_t{0}; },
        [mm](std::ptrdiff_t) { return mm; }, false);
}

double matrix_norm_triangular(char norm, char uplo, char diag, int m, int n, const double *a, int lda, double *work) {
    const std::ptrdiff_t mm = m;
    const bool unit = diag == 'U';
    if (uplo == 'U') {
        // Rows 0..min(m, j+1)-1 of column j, without the diagonal when it is a unit one.
        return norm_engine(
            norm, m, n, a, clamp_ld(lda), work, [](std::ptrdiff_t) { return std::ptrdiff_t{0}; },
            [mm, unit](std::ptrdiff_t j) { return std::min(mm, unit ? j : j + 1); }, unit);
    }
    if (uplo == 'L') {
        return norm_engine(
            norm, m, n, a, clamp_ld(lda), work, [mm, unit](std::ptrdiff_t j) { return std::min(mm, unit ? j + 1 : j); },
            [mm](std::ptrdiff_t) { return mm; }, unit);
    }
    return 0.0;
}

template <class T> double matrix_norm_hessenberg(char norm, int n, const T *a, int lda, double *work) {
    const std::ptrdiff_t nn = n;
    return norm_engine(
        norm, n, n, a, clamp_ld(lda), work, [](std::ptrdiff_t) { return std::ptrdiff_t{0}; },
        [nn](std::ptrdiff_t j) { return std::min(nn, j + 2); }, false);
}

template void matrix_copy<double>(char, int, int, const double *, int, double *, int);
template void matrix_copy<Complex>(char, int, int, const Complex *, int, Complex *, int);
template void matrix_load<double>(char, int, int, double, double, double *, int);
template void matrix_load<Complex>(char, int, int, Complex, Complex, Complex *, int);
template double matrix_norm_general<double>(char, int, int, const double *, int, double *);
template double matrix_norm_general<Complex>(char, int, int, const Complex *, int, double *);
template double matrix_norm_hessenberg<double>(char, int, const double *, int, double *);
template double matrix_norm_hessenberg<Complex>(char, int, const Complex *, int, double *);

} // namespace zek

using zek::option_letter;

extern "C" {

void F06_MATRIX_COPY(const char *matrix, int m, int n, const double *a, int lda, double *b, int ldb, int) {
    zek::matrix_copy(option_letter(matrix), m, n, a, lda, b, ldb);
}

void F06_MATRIX_COPY_ENUM(int shape, int m, int n, const double *a, int lda, double *b, int ldb) {
    const char s = zek::shape_letter(shape);
    if (s == 0 || m <= 0 || n <= 0) return;
    const std::ptrdiff_t la = zek::clamp_ld(lda), lb = zek::clamp_ld(ldb);
    const std::ptrdiff_t columns = s == 'L' ? std::min(m, n) : n;
    // Whole column segments move as bytes.
    for (std::ptrdiff_t j = 0; j < columns; ++j) {
        const std::ptrdiff_t lo = s == 'L' ? j : 0, hi = s == 'U' ? std::min<std::ptrdiff_t>(m, j + 1) : m;
        std::memmove(b + lo + j * lb, a + lo + j * la, static_cast<std::size_t>(hi - lo) * sizeof(double));
    }
}

void F06_MATRIX_PERMUTE(const char *side, const char *trans, int n, const double *perm, int k, double *b, int ldb, int,
                        int) {
    const char t = option_letter(trans);
    zek::matrix_permute(option_letter(side), t == 'C' ? 'T' : t, n, perm, k, b, ldb);
}

void F06_MATRIX_PERMUTE_ENUM(int side, int trans, int n, const double *perm, int k, double *b, int ldb) {
    const char t = zek::trans_letter(trans);
    zek::matrix_permute(zek::side_letter(side), t == 'C' ? 'T' : t, n, perm, k, b, ldb);
}

double F06_MATRIX_NORM_GENERAL(const char *norm, int m, int n, const double *a, int lda, double *work, int) {
    return zek::matrix_norm_general(option_letter(norm), m, n, a, lda, work);
}

double F06_MATRIX_NORM_TRIANGULAR(const char *norm, const char *uplo, const char *diag, int m, int n, const double *a,
                                  int lda, double *work, int, int, int) {
    return zek::matrix_norm_triangular(option_letter(norm), option_letter(uplo), option_letter(diag), m, n, a, lda,
                                       work);
}

double F06_MATRIX_NORM_HESSENBERG(const char *norm, int n, const double *a, int lda, double *work, int) {
    return zek::matrix_norm_hessenberg(option_letter(norm), n, a, lda, work);
}

double F06_COMPLEX_MATRIX_NORM_GENERAL(const char *norm, int m, int n, const double *a, int lda, double *work, int) {
    return zek::matrix_norm_general(option_letter(norm), m, n, reinterpret_cast<const zek::Complex *>(a), lda, work);
}

double F06_COMPLEX_MATRIX_NORM_HESSENBERG(const char *norm, int n, const double *a, int lda, double *work, int) {
    return zek::matrix_norm_hessenberg(option_letter(norm), n, reinterpret_cast<const zek::Complex *>(a), lda, work);
}

} // extern "C"
