// Level-2 kernels: the engine templates, their argument checks and every exported form (masters,
// aliases, copies and enumerated forms).
#include "kernels/level2.h"

#include <type_traits>

#include "kernels/arg_error.h"
#include "zek2/f06.h"

namespace zek {

namespace {

template <bool C, class T> inline T cj(T v) {
    if constexpr (C)
        return conj(v);
    else
        return v;
}

// A vector seen in logical order: element i (zero-based) of a vector of LEN elements.
template <class T> struct Strided {
    T *base;
    std::ptrdiff_t inc;
    T &operator[](std::ptrdiff_t i) const { return base[i * inc]; }
};
template <class T> struct Unit {
    T *__restrict base;
    T &operator[](std::ptrdiff_t i) const { return base[i]; }
};
template <class T> Strided<T> logical(T *p, int len, int inc) { return {p + first_offset(len, inc), inc}; }

// Column j of a triangle, so that element (i, j) is col(j)[i]: full storage, or packed by columns.
template <class T> struct FullColumns {
    const T *a;
    std::ptrdiff_t lda;
    const T *operator()(std::ptrdiff_t j) const { return a + j * lda; }
};
template <class T> struct PackedUpperColumns {
    const T *ap;
    const T *operator()(std::ptrdiff_t j) const { return ap + j * (j + 1) / 2; }
};
template <class T> struct PackedLowerColumns {
    const T *ap;
    std::ptrdiff_t n;
    // Column j starts at j*n - j*(j-1)/2 and holds rows j..n-1.
    const T *operator()(std::ptrdiff_t j) const { return ap + (j * n - j * (j - 1) / 2 - j); }
};

template <class T, class Y> void scale_vector(std::ptrdiff_t len, T beta, Y y) {
    if (beta == one_of<T>()) return;
    if (beta == zero_of<T>()) {
        for (std::ptrdiff_t i = 0; i < len; ++i) y[i] = zero_of<T>();
    } else {
        for (std::ptrdiff_t i = 0; i < len; ++i) y[i] = beta * y[i];
    }
}

// y += A*(alpha*x), four columns a pass: each y(i) still receives its column terms one at a time in
// column order, but is loaded and stored once per four columns.
template <class T, class X, class Y>
void gemv_columns(std::ptrdiff_t m, std::ptrdiff_t n, T alpha, const T *a, std::ptrdiff_t lda, X x, Y y) {
    std::ptrdiff_t j = 0;
    for (; j + 4 <= n; j += 4) {
        const T t0 = alpha * x[j], t1 = alpha * x[j + 1], t2 = alpha * x[j + 2], t3 = alpha * x[j + 3];
        const T *__restrict a0 = a + j * lda;
        const T *__restrict a1 = a0 + lda;
        const T *__restrict a2 = a1 + lda;
        const T *__restrict a3 = a2 + lda;
        for (std::ptrdiff_t i = 0; i < m; ++i) {
            T v = y[i];
            v = v + t0 * a0[i];
            v = v + t1 * a1[i];
            v = v + t2 * a2[i];
            v = v + t3 * a3[i];
            y[i] = v;
        }
    }
    for (; j < n; ++j) {
        const T t = alpha * x[j];
        const T *__restrict a0 = a + j * lda;
        for (std::ptrdiff_t i = 0; i < m; ++i) y[i] = y[i] + t * a0[i];
    }
}

// y += alpha*op(A)'x as dot products, four columns a pass so that four sums run side by side.
template <bool C, class T, class X, class Y>
void gemv_dots(std::ptrdiff_t m, std::ptrdiff_t n, T alpha, const T *a, std::ptrdiff_t lda, X x, Y y) {
    std::ptrdiff_t j = 0;
    for (; j + 4 <= n; j += 4) {
        const T *a0 = a + j * lda, *a1 = a0 + lda, *a2 = a1 + lda, *a3 = a2 + lda;
        T s0 = zero_of<T>(), s1 = s0, s2 = s0, s3 = s0;
        for (std::ptrdiff_t i = 0; i < m; ++i) {
            const T xi = x[i];
            s0 = s0 + cj<C>(a0[i]) * xi;
            s1 = s1 + cj<C>(a1[i]) * xi;
            s2 = s2 + cj<C>(a2[i]) * xi;
            s3 = s3 + cj<C>(a3[i]) * xi;
        }
        y[j] = y[j] + alpha * s0;
        y[j + 1] = y[j + 1] + alpha * s1;
        y[j + 2] = y[j + 2] + alpha * s2;
        y[j + 3] = y[j + 3] + alpha * s3;
    }
    for (; j < n; ++j) {
        const T *a0 = a + j * lda;
        T s = zero_of<T>();
        for (std::ptrdiff_t i = 0; i < m; ++i) s = s + cj<C>(a0[i]) * x[i];
        y[j] = y[j] + alpha * s;
    }
}

template <class T, class Cols, class X> void trmv_engine(char uplo, char trans, bool nounit, std::ptrdiff_t n, Cols col, X x) {
    const bool upper = uplo == 'U';
    if (trans == 'N') {
        if (upper) {
            for (std::ptrdiff_t j = 0; j < n; ++j) {
                if (x[j] == zero_of<T>()) continue;
                const T t = x[j];
                const T *c = col(j);
                for (std::ptrdiff_t i = 0; i < j; ++i) x[i] = x[i] + t * c[i];
                if (nounit) x[j] = x[j] * c[j];
            }
        } else {
            for (std::ptrdiff_t j = n - 1; j >= 0; --j) {
                if (x[j] == zero_of<T>()) continue;
                const T t = x[j];
                const T *c = col(j);
                for (std::ptrdiff_t i = n - 1; i > j; --i) x[i] = x[i] + t * c[i];
                if (nounit) x[j] = x[j] * c[j];
            }
        }
        return;
    }
    const auto run = [&](auto conj_tag) {
        constexpr bool C = decltype(conj_tag)::value;
        if (upper) {
            for (std::ptrdiff_t j = n - 1; j >= 0; --j) {
                const T *c = col(j);
                T t = x[j];
                if (nounit) t = t * cj<C>(c[j]);
                for (std::ptrdiff_t i = j - 1; i >= 0; --i) t = t + cj<C>(c[i]) * x[i];
                x[j] = t;
            }
        } else {
            for (std::ptrdiff_t j = 0; j < n; ++j) {
                const T *c = col(j);
                T t = x[j];
                if (nounit) t = t * cj<C>(c[j]);
                for (std::ptrdiff_t i = j + 1; i < n; ++i) t = t + cj<C>(c[i]) * x[i];
                x[j] = t;
            }
        }
    };
    if (trans == 'C')
        run(std::true_type{});
    else
        run(std::false_type{});
}

// The triangular solve.  Four columns go together: their 4 by 4 diagonal block is solved first, then
// the rest of the vector takes the four columns in one pass (for op(A) = A), or four dot products run
// side by side (for op(A) = A').  Each element still receives its terms in the published order.
template <class T, class Cols, class X>
void trsv_engine(char uplo, char trans, bool nounit, std::ptrdiff_t n, Cols col, X x) {
    const bool upper = uplo == 'U';
    const T zero = zero_of<T>();
    if (trans == 'N') {
        // Finishes x(j) and subtracts its column from rows [lo, hi).
        const auto column = [&](std::ptrdiff_t j, std::ptrdiff_t lo, std::ptrdiff_t hi) {
            if (x[j] == zero) return;
            const T *c = col(j);
            if (nounit) x[j] = divide(x[j], c[j]);
            const T t = x[j];
#pragma GCC ivdep
            for (std::ptrdiff_t i = lo; i < hi; ++i) x[i] = x[i] - t * c[i];
        };
        // Rows [lo, hi) take columns j0, j1, j2, j3 in that order.
        const auto four = [&](std::ptrdiff_t j0, std::ptrdiff_t j1, std::ptrdiff_t j2, std::ptrdiff_t j3,
                              std::ptrdiff_t lo, std::ptrdiff_t hi) {
            const T t0 = x[j0], t1 = x[j1], t2 = x[j2], t3 = x[j3];
            if (t0 == zero && t1 == zero && t2 == zero && t3 == zero) return;
            const T *c0 = col(j0), *c1 = col(j1), *c2 = col(j2), *c3 = col(j3);
#pragma GCC ivdep
            for (std::ptrdiff_t i = lo; i < hi; ++i) {
                T v = x[i];
                v = v - t0 * c0[i];
                v = v - t1 * c1[i];
                v = v - t2 * c2[i];
                v = v - t3 * c3[i];
                x[i] = v;
            }
        };
        // Short solves gain nothing from the blocks.
        const std::ptrdiff_t blocked = n > 16 ? 3 : n;
        if (upper) {
            std::ptrdiff_t j = n - 1;
            for (; j >= blocked; j -= 4) {
                for (std::ptrdiff_t jj = j; jj > j - 4; --jj) column(jj, j - 3, jj);
                four(j, j - 1, j - 2, j - 3, 0, j - 3);
            }
            for (; j >= 0; --j) column(j, 0, j);
        } else {
            std::ptrdiff_t j = 0;
            for (; n > 16 && j + 4 <= n; j += 4) {
                for (std::ptrdiff_t jj = j; jj < j + 4; ++jj) column(jj, jj + 1, j + 4);
                four(j, j + 1, j + 2, j + 3, j + 4, n);
            }
            for (; j < n; ++j) column(j, j + 1, n);
        }
        return;
    }
    const auto run = [&](auto conj_tag) {
        constexpr bool C = decltype(conj_tag)::value;
        // Column j: its right-hand side less the products over rows i = from, from+dir, ..., to-dir.
        const auto finish = [&](std::ptrdiff_t j, T t, std::ptrdiff_t from, std::ptrdiff_t to, std::ptrdiff_t dir) {
            const T *c = col(j);
            for (std::ptrdiff_t i = from; i != to; i += dir) t = t - cj<C>(c[i]) * x[i];
            if (nounit) t = divide(t, cj<C>(c[j]));
            x[j] = t;
        };
        // Four sums over rows [from .. to) in direction dir, side by side.
        const auto four = [&](std::ptrdiff_t j, std::ptrdiff_t step, std::ptrdiff_t from, std::ptrdiff_t to,
                              std::ptrdiff_t dir, T s[4]) {
            const T *c0 = col(j), *c1 = col(j + step), *c2 = col(j + 2 * step), *c3 = col(j + 3 * step);
            T s0 = x[j], s1 = x[j + step], s2 = x[j + 2 * step], s3 = x[j + 3 * step];
            for (std::ptrdiff_t i = from; i != to; i += dir) {
                const T xi = x[i];
                s0 = s0 - cj<C>(c0[i]) * xi;
                s1 = s1 - cj<C>(c1[i]) * xi;
                s2 = s2 - cj<C>(c2[i]) * xi;
                s3 = s3 - cj<C>(c3[i]) * xi;
            }
            s[0] = s0;
            s[1] = s1;
            s[2] = s2;
            s[3] = s3;
        };
        T s[4];
        // The columns left over from the blocks of four come first, where their sums are shortest.
        const std::ptrdiff_t single = n > 16 ? n % 4 : n;
        if (upper) {
            std::ptrdiff_t j = 0;
            for (; j < single; ++j) finish(j, x[j], 0, j, 1);
            for (; j < n; j += 4) {
                four(j, 1, 0, j, 1, s);
                for (std::ptrdiff_t c = 0; c < 4; ++c) finish(j + c, s[c], j, j + c, 1);
            }
        } else {
            std::ptrdiff_t j = n - 1;
            for (; j >= n - single; --j) finish(j, x[j], n - 1, j, -1);
            for (; j >= 0; j -= 4) {
                four(j, -1, n - 1, j, -1, s);
                for (std::ptrdiff_t c = 0; c < 4; ++c) finish(j - c, s[c], j, j - c, -1);
            }
        }
    };
    if (trans == 'C')
        run(std::true_type{});
    else
        run(std::false_type{});
}

template <class Cols, class X, class Y>
void symv_engine(char uplo, std::ptrdiff_t n, double alpha, Cols col, X x, Y y) {
    if (uplo == 'U') {
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            const double *c = col(j);
            const double t1 = alpha * x[j];
            double t2 = 0.0;
            for (std::ptrdiff_t i = 0; i < j; ++i) {
                y[i] = y[i] + t1 * c[i];
                t2 = t2 + c[i] * x[i];
            }
            y[j] = y[j] + t1 * c[j] + alpha * t2;
        }
    } else {
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            const double *c = col(j);
            const double t1 = alpha * x[j];
            double t2 = 0.0;
            y[j] = y[j] + t1 * c[j];
            for (std::ptrdiff_t i = j + 1; i < n; ++i) {
                y[i] = y[i] + t1 * c[i];
                t2 = t2 + c[i] * x[i];
            }
            y[j] = y[j] + alpha * t2;
        }
    }
}

// Rank-one update of a symmetric triangle; COL gives writable columns.
template <class Cols, class X> void syr_engine(char uplo, std::ptrdiff_t n, double alpha, Cols col, X x) {
    for (std::ptrdiff_t j = 0; j < n; ++j) {
        if (x[j] == 0.0) continue;
        const double t = alpha * x[j];
        double *c = const_cast<double *>(col(j));
        if (uplo == 'U') {
            for (std::ptrdiff_t i = 0; i <= j; ++i) c[i] = c[i] + x[i] * t;
        } else {
            for (std::ptrdiff_t i = j; i < n; ++i) c[i] = c[i] + x[i] * t;
        }
    }
}

// Calls F with the vector X as a Unit view when its increment is 1, else as a Strided view.
template <class T, class F> inline void with_vector(T *p, int len, int inc, F &&f) {
    if (inc == 1)
        f(Unit<T>{p});
    else
        f(logical(p, len, inc));
}

} // namespace

// ---- Engine -------------------------------------------------------------------------------------

template <class T>
void gemv(char trans, int m, int n, T alpha, const T *a, int lda, const T *x, int incx, T beta, T *y, int incy) {
    const bool notrans = trans == 'N';
    const int lenx = notrans ? n : m, leny = notrans ? m : n;
    with_vector(y, leny, incy, [&](auto yv) { scale_vector(leny, beta, yv); });
    if (alpha == zero_of<T>()) return;
    with_vector(x, lenx, incx, [&](auto xv) {
        with_vector(y, leny, incy, [&](auto yv) {
            if (notrans)
                gemv_columns(m, n, alpha, a, lda, xv, yv);
            else if (trans == 'C')
                gemv_dots<true>(m, n, alpha, a, lda, xv, yv);
            else
                gemv_dots<false>(m, n, alpha, a, lda, xv, yv);
        });
    });
}

template <class T> void trmv(char uplo, char trans, char diag, int n, const T *a, int lda, T *x, int incx) {
    with_vector(x, n, incx, [&](auto xv) {
        trmv_engine<T>(uplo, trans, diag == 'N', n, FullColumns<T>{a, lda}, xv);
    });
}

template <class T> void trsv(char uplo, char trans, char diag, int n, const T *a, int lda, T *x, int incx) {
    with_vector(x, n, incx, [&](auto xv) {
        trsv_engine<T>(uplo, trans, diag == 'N', n, FullColumns<T>{a, lda}, xv);
    });
}

template <class T, bool Conj>
void ger(int m, int n, T alpha, const T *x, int incx, const T *y, int incy, T *a, int lda) {
    const Strided<const T> yv = logical(y, n, incy);
    with_vector(x, m, incx, [&](auto xv) {
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            const T t = alpha * cj<Conj>(yv[j]);
            T *__restrict c = a + j * static_cast<std::ptrdiff_t>(lda);
            for (std::ptrdiff_t i = 0; i < m; ++i) c[i] = c[i] + xv[i] * t;
        }
    });
}

void symv(char uplo, int n, double alpha, const double *a, int lda, const double *x, int incx, double beta, double *y,
          int incy) {
    with_vector(y, n, incy, [&](auto yv) { scale_vector(n, beta, yv); });
    if (alpha == 0.0) return;
    symv_engine(uplo, n, alpha, FullColumns<double>{a, lda}, logical(x, n, incx), logical(y, n, incy));
}

void spmv(char uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta, double *y,
          int incy) {
    with_vector(y, n, incy, [&](auto yv) { scale_vector(n, beta, yv); });
    if (alpha == 0.0) return;
    if (uplo == 'U')
        symv_engine(uplo, n, alpha, PackedUpperColumns<double>{ap}, logical(x, n, incx), logical(y, n, incy));
    else
        symv_engine(uplo, n, alpha, PackedLowerColumns<double>{ap, n}, logical(x, n, incx), logical(y, n, incy));
}

void tpmv(char uplo, char trans, char diag, int n, const double *ap, double *x, int incx) {
    if (uplo == 'U')
        trmv_engine<double>(uplo, trans, diag == 'N', n, PackedUpperColumns<double>{ap}, logical(x, n, incx));
    else
        trmv_engine<double>(uplo, trans, diag == 'N', n, PackedLowerColumns<double>{ap, n}, logical(x, n, incx));
}

void tpsv(char uplo, char trans, char diag, int n, const double *ap, double *x, int incx) {
    if (uplo == 'U')
        trsv_engine<double>(uplo, trans, diag == 'N', n, PackedUpperColumns<double>{ap}, logical(x, n, incx));
    else
        trsv_engine<double>(uplo, trans, diag == 'N', n, PackedLowerColumns<double>{ap, n}, logical(x, n, incx));
}

void syr(char uplo, int n, double alpha, const double *x, int incx, double *a, int lda) {
    syr_engine(uplo, n, alpha, FullColumns<double>{a, lda}, logical(x, n, incx));
}

void spr(char uplo, int n, double alpha, const double *x, int incx, double *ap) {
    if (uplo == 'U')
        syr_engine(uplo, n, alpha, PackedUpperColumns<double>{ap}, logical(x, n, incx));
    else
        syr_engine(uplo, n, alpha, PackedLowerColumns<double>{ap, n}, logical(x, n, incx));
}

template void gemv<double>(char, int, int, double, const double *, int, const double *, int, double, double *, int);
template void gemv<Complex>(char, int, int, Complex, const Complex *, int, const Complex *, int, Complex, Complex *,
                            int);
template void trmv<double>(char, char, char, int, const double *, int, double *, int);
template void trmv<Complex>(char, char, char, int, const Complex *, int, Complex *, int);
template void trsv<double>(char, char, char, int, const double *, int, double *, int);
template void trsv<Complex>(char, char, char, int, const Complex *, int, Complex *, int);
template void ger<double, false>(int, int, double, const double *, int, const double *, int, double *, int);
template void ger<Complex, false>(int, int, Complex, const Complex *, int, const Complex *, int, Complex *, int);
template void ger<Complex, true>(int, int, Complex, const Complex *, int, const Complex *, int, Complex *, int);

// ---- Checked forms --------------------------------------------------------------------------------

namespace {

constexpr KernelNames kGemv{"F06PAF/DGEMV ", "f06pac/dgemv"};
constexpr KernelNames kSymv{"F06PCF/DSYMV ", "f06pcf/dsymv"};
constexpr KernelNames kSpmv{"F06PEF/DSPMV ", "f06pef/dspmv"};
constexpr KernelNames kTrmv{"F06PFF/DTRMV ", "f06pfc/dtrmv"};
constexpr KernelNames kTpmv{"F06PHF/DTPMV ", "f06phf/dtpmv"};
constexpr KernelNames kTrsv{"F06PJF/DTRSV ", "f06pjc/dtrsv"};
constexpr KernelNames kTpsv{"F06PLF/DTPSV ", "f06plf/dtpsv"};
constexpr KernelNames kGer{"F06PMF/DGER  ", "f06pmc/dger"};
constexpr KernelNames kSyr{"F06PPF/DSYR  ", "f06ppf/dsyr"};
constexpr KernelNames kSpr{"F06PQF/DSPR  ", "f06pqf/dspr"};
constexpr KernelNames kZgemv{"F06SAF/ZGEMV ", "f06saf/zgemv"};
constexpr KernelNames kZtrmv{"F06SFF/ZTRMV ", "f06sff/ztrmv"};
constexpr KernelNames kZtrsv{"F06SJF/ZTRSV ", "f06sjf/ztrsv"};
constexpr KernelNames kZgeru{"F06SMF/ZGERU ", "f06smf/zgeru"};
constexpr KernelNames kZgerc{"F06SNF/ZGERC ", "f06snf/zgerc"};

inline bool is_trans(char t) { return t == 'N' || t == 'T' || t == 'C'; }
inline bool is_uplo(char u) { return u == 'U' || u == 'L'; }
inline bool is_diag(char d) { return d == 'U' || d == 'N'; }

// Reports INFO when nonzero; true when the caller may go on.
inline bool accept(Reporter r, const KernelNames &names, int info) {
    if (info == 0) return true;
    report_bad_argument(r, names, info);
    return false;
}

template <class T>
void gemv_checked(Reporter r, const KernelNames &names, char trans, int m, int n, T alpha, const T *a, int lda,
                  const T *x, int incx, T beta, T *y, int incy) {
    const int info = !is_trans(trans)                  ? 1
                     : m < 0                           ? 2
                     : n < 0                           ? 3
                     : bad_leading_dimension(lda, m)   ? 6
                     : incx == 0                       ? 8
                     : incy == 0                       ? 11
                                                       : 0;
    if (!accept(r, names, info)) return;
    if (m == 0 || n == 0 || (alpha == zero_of<T>() && beta == one_of<T>())) return;
    gemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

template <class T>
void trmv_checked(Reporter r, const KernelNames &names, bool solve, char uplo, char trans, char diag, int n,
                  const T *a, int lda, T *x, int incx) {
    const int info = !is_uplo(uplo)                   ? 1
                     : !is_trans(trans)               ? 2
                     : !is_diag(diag)                 ? 3
                     : n < 0                          ? 4
                     : bad_leading_dimension(lda, n)  ? 6
                     : incx == 0                      ? 8
                                                      : 0;
    if (!accept(r, names, info) || n == 0) return;
    if (solve)
        trsv(uplo, trans, diag, n, a, lda, x, incx);
    else
        trmv(uplo, trans, diag, n, a, lda, x, incx);
}

void tpmv_checked(Reporter r, const KernelNames &names, bool solve, char uplo, char trans, char diag, int n,
                  const double *ap, double *x, int incx) {
    const int info = !is_uplo(uplo) ? 1 : !is_trans(trans) ? 2 : !is_diag(diag) ? 3 : n < 0 ? 4 : incx == 0 ? 7 : 0;
    if (!accept(r, names, info) || n == 0) return;
    if (solve)
        tpsv(uplo, trans, diag, n, ap, x, incx);
    else
        tpmv(uplo, trans, diag, n, ap, x, incx);
}

template <class T, bool Conj>
void ger_checked(Reporter r, const KernelNames &names, int m, int n, T alpha, const T *x, int incx, const T *y,
                 int incy, T *a, int lda) {
    const int info = m < 0                           ? 1
                     : n < 0                         ? 2
                     : incx == 0                     ? 5
                     : incy == 0                     ? 7
                     : bad_leading_dimension(lda, m) ? 9
                                                     : 0;
    if (!accept(r, names, info)) return;
    if (m == 0 || n == 0 || alpha == zero_of<T>()) return;
    ger<T, Conj>(m, n, alpha, x, incx, y, incy, a, lda);
}

void symv_checked(Reporter r, char uplo, int n, double alpha, const double *a, int lda, const double *x, int incx,
                  double beta, double *y, int incy) {
    const int info = !is_uplo(uplo)                  ? 1
                     : n < 0                         ? 2
                     : bad_leading_dimension(lda, n) ? 5
                     : incx == 0                     ? 7
                     : incy == 0                     ? 10
                                                     : 0;
    if (!accept(r, kSymv, info)) return;
    if (n == 0 || (alpha == 0.0 && beta == 1.0)) return;
    symv(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}

void spmv_checked(Reporter r, char uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta,
                  double *y, int incy) {
    const int info = !is_uplo(uplo) ? 1 : n < 0 ? 2 : incx == 0 ? 6 : incy == 0 ? 9 : 0;
    if (!accept(r, kSpmv, info)) return;
    if (n == 0 || (alpha == 0.0 && beta == 1.0)) return;
    spmv(uplo, n, alpha, ap, x, incx, beta, y, incy);
}

void syr_checked(Reporter r, char uplo, int n, double alpha, const double *x, int incx, double *a, int lda) {
    const int info = !is_uplo(uplo) ? 1 : n < 0 ? 2 : incx == 0 ? 5 : bad_leading_dimension(lda, n) ? 7 : 0;
    if (!accept(r, kSyr, info)) return;
    if (n == 0 || alpha == 0.0) return;
    syr(uplo, n, alpha, x, incx, a, lda);
}

void spr_checked(Reporter r, char uplo, int n, double alpha, const double *x, int incx, double *ap) {
    const int info = !is_uplo(uplo) ? 1 : n < 0 ? 2 : incx == 0 ? 5 : 0;
    if (!accept(r, kSpr, info)) return;
    if (n == 0 || alpha == 0.0) return;
    spr(uplo, n, alpha, x, incx, ap);
}

inline const Complex *cx(const double *p) { return reinterpret_cast<const Complex *>(p); }
inline Complex *cx(double *p) { return reinterpret_cast<Complex *>(p); }

constexpr Reporter kHard = Reporter::Hard;

} // namespace

void dgemv(const char *trans, int m, int n, double alpha, const double *a, int lda, const double *x, int incx,
           double beta, double *y, int incy) {
    f06paf_ENTRY(1, trans, m, n, alpha, a, lda, x, incx, beta, y, incy, 1);
}
void dsymv(const char *uplo, int n, double alpha, const double *a, int lda, const double *x, int incx, double beta,
           double *y, int incy) {
    F06PCF_MASTER(1, uplo, n, alpha, a, lda, x, incx, beta, y, incy, 1);
}
void dspmv(const char *uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta,
           double *y, int incy) {
    F06PEF_MASTER(1, uplo, n, alpha, ap, x, incx, beta, y, incy, 1);
}
void dtrmv(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
           int incx) {
    f06pff_ENTRY(1, uplo, trans, diag, n, a, lda, x, incx, 1, 1, 1);
}
void dtpmv(const char *uplo, const char *trans, const char *diag, int n, const double *ap, double *x, int incx) {
    tpmv_checked(kHard, kTpmv, false, option_letter(uplo), option_letter(trans), option_letter(diag), n, ap, x, incx);
}
void dtrsv(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
           int incx) {
    f06pjf_ENTRY(1, uplo, trans, diag, n, a, lda, x, incx, 1, 1, 1);
}
void dtpsv(const char *uplo, const char *trans, const char *diag, int n, const double *ap, double *x, int incx) {
    tpmv_checked(kHard, kTpsv, true, option_letter(uplo), option_letter(trans), option_letter(diag), n, ap, x, incx);
}
void dger(int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a, int lda) {
    f06pmf_ENTRY(1, m, n, alpha, x, incx, y, incy, a, lda);
}
void dsyr(const char *uplo, int n, double alpha, const double *x, int incx, double *a, int lda) {
    F06PPF_MASTER(1, uplo, n, alpha, x, incx, a, lda, 1);
}
void dspr(const char *uplo, int n, double alpha, const double *x, int incx, double *ap) {
    F06PQF_MASTER(1, uplo, n, alpha, x, incx, ap, 1);
}
void zgemv(const char *trans, int m, int n, Complex alpha, const Complex *a, int lda, const Complex *x, int incx,
           Complex beta, Complex *y, int incy) {
    gemv_checked(kHard, kZgemv, option_letter(trans), m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void ztrmv(const char *uplo, const char *trans, const char *diag, int n, const Complex *a, int lda, Complex *x,
           int incx) {
    trmv_checked(kHard, kZtrmv, false, option_letter(uplo), option_letter(trans), option_letter(diag), n, a, lda, x,
                 incx);
}
void ztrsv(const char *uplo, const char *trans, const char *diag, int n, const Complex *a, int lda, Complex *x,
           int incx) {
    trmv_checked(kHard, kZtrsv, true, option_letter(uplo), option_letter(trans), option_letter(diag), n, a, lda, x,
                 incx);
}
void zgeru(int m, int n, Complex alpha, const Complex *x, int incx, const Complex *y, int incy, Complex *a, int lda) {
    ger_checked<Complex, false>(kHard, kZgeru, m, n, alpha, x, incx, y, incy, a, lda);
}
void zgerc(int m, int n, Complex alpha, const Complex *x, int incx, const Complex *y, int incy, Complex *a, int lda) {
    ger_checked<Complex, true>(kHard, kZgerc, m, n, alpha, x, incx, y, incy, a, lda);
}

} // namespace zek

using zek::option_letter;
using zek::Reporter;

extern "C" {

// DGEMV
void f06paf_ENTRY(int, const char *trans, int m, int n, double alpha, const double *a, int lda, const double *x,
                  int incx, double beta, double *y, int incy, int) {
    zek::gemv_checked(Reporter::Hard, zek::kGemv, option_letter(trans), m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void F06PAF(const char *trans, int m, int n, double alpha, const double *a, int lda, const double *x, int incx,
            double beta, double *y, int incy, int trans_len) {
    f06paf_ENTRY(0, trans, m, n, alpha, a, lda, x, incx, beta, y, incy, trans_len);
}
void F06PAF_COPY(const char *trans, int m, int n, double alpha, const double *a, int lda, const double *x, int incx,
                 double beta, double *y, int incy, int) {
    zek::gemv_checked(Reporter::Stream, zek::kGemv, option_letter(trans), m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void f06pac(int trans, int m, int n, double alpha, const double *a, int lda, const double *x, int incx, double beta,
            double *y, int incy) {
    zek::gemv_checked(Reporter::Enumerated, zek::kGemv, zek::trans_letter(trans), m, n, alpha, a, lda, x, incx, beta,
                      y, incy);
}

// DSYMV
void F06PCF_MASTER(int, const char *uplo, int n, double alpha, const double *a, int lda, const double *x, int incx,
                   double beta, double *y, int incy, int) {
    zek::symv_checked(Reporter::Hard, option_letter(uplo), n, alpha, a, lda, x, incx, beta, y, incy);
}
void F06PCF(const char *uplo, int n, double alpha, const double *a, int lda, const double *x, int incx, double beta,
            double *y, int incy, int uplo_len) {
    F06PCF_MASTER(0, uplo, n, alpha, a, lda, x, incx, beta, y, incy, uplo_len);
}

// DSPMV
void F06PEF_MASTER(int, const char *uplo, int n, double alpha, const double *ap, const double *x, int incx,
                   double beta, double *y, int incy, int) {
    zek::spmv_checked(Reporter::Hard, option_letter(uplo), n, alpha, ap, x, incx, beta, y, incy);
}
void F06PEF(const char *uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta, double *y,
            int incy, int uplo_len) {
    F06PEF_MASTER(0, uplo, n, alpha, ap, x, incx, beta, y, incy, uplo_len);
}
void f06pef(int uplo, int n, double alpha, const double *ap, const double *x, int incx, double beta, double *y,
            int incy) {
    zek::spmv_checked(Reporter::Enumerated, zek::uplo_letter(uplo), n, alpha, ap, x, incx, beta, y, incy);
}

// DTRMV
void f06pff_ENTRY(int, const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda,
                  double *x, int incx, int, int, int) {
    zek::trmv_checked(Reporter::Hard, zek::kTrmv, false, option_letter(uplo), option_letter(trans),
                      option_letter(diag), n, a, lda, x, incx);
}
void F06PFF(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
            int incx, int uplo_len, int trans_len, int diag_len) {
    f06pff_ENTRY(0, uplo, trans, diag, n, a, lda, x, incx, uplo_len, trans_len, diag_len);
}
void f06pfc(int uplo, int trans, int diag, int n, const double *a, int lda, double *x, int incx) {
    zek::trmv_checked(Reporter::Enumerated, zek::kTrmv, false, zek::uplo_letter(uplo), zek::trans_letter(trans),
                      zek::diag_letter(diag), n, a, lda, x, incx);
}

// DTPMV
void F06PHF(const char *uplo, const char *trans, const char *diag, int n, const double *ap, double *x, int incx, int,
            int, int) {
    zek::dtpmv(uplo, trans, diag, n, ap, x, incx);
}
void f06phf(int uplo, int trans, int diag, int n, const double *ap, double *x, int incx) {
    zek::tpmv_checked(Reporter::Enumerated, zek::kTpmv, false, zek::uplo_letter(uplo), zek::trans_letter(trans),
                      zek::diag_letter(diag), n, ap, x, incx);
}

// DTRSV
void f06pjf_ENTRY(int, const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda,
                  double *x, int incx, int, int, int) {
    zek::trmv_checked(Reporter::Hard, zek::kTrsv, true, option_letter(uplo), option_letter(trans),
                      option_letter(diag), n, a, lda, x, incx);
}
void F06PJF(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
            int incx, int uplo_len, int trans_len, int diag_len) {
    f06pjf_ENTRY(0, uplo, trans, diag, n, a, lda, x, incx, uplo_len, trans_len, diag_len);
}
void F06PJF_COPY(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
                 int incx, int, int, int) {
    zek::trmv_checked(Reporter::Stream, zek::kTrsv, true, option_letter(uplo), option_letter(trans),
                      option_letter(diag), n, a, lda, x, incx);
}
void f06pjc(int uplo, int trans, int diag, int n, const double *a, int lda, double *x, int incx) {
    zek::trmv_checked(Reporter::Enumerated, zek::kTrsv, true, zek::uplo_letter(uplo), zek::trans_letter(trans),
                      zek::diag_letter(diag), n, a, lda, x, incx);
}

// DTPSV
void F06PLF(const char *uplo, const char *trans, const char *diag, int n, const double *ap, double *x, int incx, int,
            int, int) {
    zek::dtpsv(uplo, trans, diag, n, ap, x, incx);
}
void f06plf(int uplo, int trans, int diag, int n, const double *ap, double *x, int incx) {
    zek::tpmv_checked(Reporter::Enumerated, zek::kTpsv, true, zek::uplo_letter(uplo), zek::trans_letter(trans),
                      zek::diag_letter(diag), n, ap, x, incx);
}

// DGER
void f06pmf_ENTRY(int, int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a,
                  int lda) {
    zek::ger_checked<double, false>(Reporter::Hard, zek::kGer, m, n, alpha, x, incx, y, incy, a, lda);
}
void F06PMF(int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a, int lda) {
    f06pmf_ENTRY(0, m, n, alpha, x, incx, y, incy, a, lda);
}
void F06PMF_COPY(int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a,
                 int lda) {
    zek::ger_checked<double, false>(Reporter::Stream, zek::kGer, m, n, alpha, x, incx, y, incy, a, lda);
}
void f06pmc(int m, int n, double alpha, const double *x, int incx, const double *y, int incy, double *a, int lda) {
    zek::ger_checked<double, false>(Reporter::Enumerated, zek::kGer, m, n, alpha, x, incx, y, incy, a, lda);
}

// DSYR
void F06PPF_MASTER(int, const char *uplo, int n, double alpha, const double *x, int incx, double *a, int lda, int) {
    zek::syr_checked(Reporter::Hard, option_letter(uplo), n, alpha, x, incx, a, lda);
}
void F06PPF(const char *uplo, int n, double alpha, const double *x, int incx, double *a, int lda, int uplo_len) {
    F06PPF_MASTER(0, uplo, n, alpha, x, incx, a, lda, uplo_len);
}

// DSPR
void F06PQF_MASTER(int, const char *uplo, int n, double alpha, const double *x, int incx, double *ap, int) {
    zek::spr_checked(Reporter::Hard, option_letter(uplo), n, alpha, x, incx, ap);
}
void F06PQF(const char *uplo, int n, double alpha, const double *x, int incx, double *ap, int uplo_len) {
    F06PQF_MASTER(0, uplo, n, alpha, x, incx, ap, uplo_len);
}
void F06PQF_COPY(const char *uplo, int n, double alpha, const double *x, int incx, double *ap, int) {
    zek::spr_checked(Reporter::Stream, option_letter(uplo), n, alpha, x, incx, ap);
}

// ZGEMV
void f06saf_ENTRY(int, const char *trans, int m, int n, double alpha_re, double alpha_im, const double *a, int lda,
                  const double *x, int incx, double beta_re, double beta_im, double *y, int incy, int) {
    zek::gemv_checked(Reporter::Hard, zek::kZgemv, option_letter(trans), m, n, zek::Complex{alpha_re, alpha_im},
                      zek::cx(a), lda, zek::cx(x), incx, zek::Complex{beta_re, beta_im}, zek::cx(y), incy);
}
void F06SAF(const char *trans, int m, int n, double alpha_re, double alpha_im, const double *a, int lda,
            const double *x, int incx, double beta_re, double beta_im, double *y, int incy, int trans_len) {
    f06saf_ENTRY(0, trans, m, n, alpha_re, alpha_im, a, lda, x, incx, beta_re, beta_im, y, incy, trans_len);
}

// ZTRMV
void f06sff_ENTRY(int, const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda,
                  double *x, int incx, int, int, int) {
    zek::trmv_checked(Reporter::Hard, zek::kZtrmv, false, option_letter(uplo), option_letter(trans),
                      option_letter(diag), n, zek::cx(a), lda, zek::cx(x), incx);
}
void F06SFF(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
            int incx, int uplo_len, int trans_len, int diag_len) {
    f06sff_ENTRY(0, uplo, trans, diag, n, a, lda, x, incx, uplo_len, trans_len, diag_len);
}

// ZTRSV
void f06sjf_ENTRY(int, const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda,
                  double *x, int incx, int, int, int) {
    zek::trmv_checked(Reporter::Hard, zek::kZtrsv, true, option_letter(uplo), option_letter(trans),
                      option_letter(diag), n, zek::cx(a), lda, zek::cx(x), incx);
}
void F06SJF(const char *uplo, const char *trans, const char *diag, int n, const double *a, int lda, double *x,
            int incx, int uplo_len, int trans_len, int diag_len) {
    f06sjf_ENTRY(0, uplo, trans, diag, n, a, lda, x, incx, uplo_len, trans_len, diag_len);
}

// ZGERU, ZGERC
void f06smf_ENTRY(int, int m, int n, double alpha_re, double alpha_im, const double *x, int incx, const double *y,
                  int incy, double *a, int lda) {
    zek::ger_checked<zek::Complex, false>(Reporter::Hard, zek::kZgeru, m, n, zek::Complex{alpha_re, alpha_im},
                                          zek::cx(x), incx, zek::cx(y), incy, zek::cx(a), lda);
}
void F06SMF(int m, int n, double alpha_re, double alpha_im, const double *x, int incx, const double *y, int incy,
            double *a, int lda) {
    f06smf_ENTRY(0, m, n, alpha_re, alpha_im, x, incx, y, incy, a, lda);
}
void f06snf_ENTRY(int, int m, int n, double alpha_re, double alpha_im, const double *x, int incx, const double *y,
                  int incy, double *a, int lda) {
    zek::ger_checked<zek::Complex, true>(Reporter::Hard, zek::kZgerc, m, n, zek::Complex{alpha_re, alpha_im},
                                         zek::cx(x), incx, zek::cx(y), incy, zek::cx(a), lda);
}
void F06SNF(int m, int n, double alpha_re, double alpha_im, const double *x, int incx, const double *y, int incy,
            double *a, int lda) {
    f06snf_ENTRY(0, m, n, alpha_re, alpha_im, x, incx, y, incy, a, lda);
}

} // extern "C"
