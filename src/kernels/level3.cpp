// Level-3 kernels: products, triangular products and solves, rank-k updates; their argument checks and
// exported forms.
#include "kernels/level3.h"

#include <algorithm>
#include <type_traits>

#include "kernels/arg_error.h"
#include "kernels/gemm_kernel.h"
#include "zek2/f06.h"

namespace zek {

namespace {

template <bool C, class T> inline T cj(T v) {
    if constexpr (C)
        return conj(v);
    else
        return v;
}

// Rows of a diagonal block of a blocked triangular solve.
constexpr int kSolveBlock = 64;

template <class T> void scale_columns(std::ptrdiff_t m, std::ptrdiff_t n, T beta, T *c, std::ptrdiff_t ldc) {
    if (beta == one_of<T>()) return;
    for (std::ptrdiff_t j = 0; j < n; ++j) {
        T *col = c + j * ldc;
        if (beta == zero_of<T>()) {
            for (std::ptrdiff_t i = 0; i < m; ++i) col[i] = zero_of<T>();
        } else {
            for (std::ptrdiff_t i = 0; i < m; ++i) col[i] = beta * col[i];
        }
    }
}

// The published column loops of the product, used for complex data: op(A) = A is an axpy of columns,
// op(A) = A' or A^H a dot product per element.
template <class T, bool CA, bool CB>
void gemm_loops(bool ta, bool tb, std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t k, T alpha, const T *a,
                std::ptrdiff_t lda, const T *b, std::ptrdiff_t ldb, T beta, T *c, std::ptrdiff_t ldc) {
    const auto opb = [&](std::ptrdiff_t l, std::ptrdiff_t j) { return tb ? cj<CB>(b[j + l * ldb]) : b[l + j * ldb]; };
    if (!ta) {
        scale_columns(m, n, beta, c, ldc);
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            T *__restrict col = c + j * ldc;
            for (std::ptrdiff_t l = 0; l < k; ++l) {
                const T t = alpha * opb(l, j);
                const T *__restrict q = a + l * lda;
                for (std::ptrdiff_t i = 0; i < m; ++i) col[i] = col[i] + t * q[i];
            }
        }
        return;
    }
    for (std::ptrdiff_t j = 0; j < n; ++j) {
        for (std::ptrdiff_t i = 0; i < m; ++i) {
            const T *q = a + i * lda;
            T s = zero_of<T>();
            for (std::ptrdiff_t l = 0; l < k; ++l) s = s + cj<CA>(q[l]) * opb(l, j);
            T &cij = c[i + j * ldc];
            cij = beta == zero_of<T>() ? alpha * s : alpha * s + beta * cij;
        }
    }
}

// Left-side solves of an nb by nb diagonal block against nb rows of B, alpha already applied.  Four
// columns of B go together so that each element of A is loaded once for four right-hand sides; every
// element of B still receives its terms in the published order.
template <class T, bool C>
void solve_left_block(bool upper, bool trans, bool nounit, std::ptrdiff_t nb, std::ptrdiff_t n, const T *a,
                      std::ptrdiff_t lda, T *b, std::ptrdiff_t ldb) {
    const auto A = [&](std::ptrdiff_t i, std::ptrdiff_t j) -> const T & { return a[i + j * lda]; };
    const T zero = zero_of<T>();
    for (std::ptrdiff_t j0 = 0; j0 < n; j0 += 4) {
        const std::ptrdiff_t jn = std::min<std::ptrdiff_t>(4, n - j0);
        T *b0 = b + j0 * ldb;
        T *b1 = jn > 1 ? b0 + ldb : b0;
        T *b2 = jn > 2 ? b1 + ldb : b1;
        T *b3 = jn > 3 ? b2 + ldb : b2;
        if (!trans) {
            // Column sweeps: finish row k, then subtract its multiples from the rows still to come.
            const auto step = [&](std::ptrdiff_t k, std::ptrdiff_t lo, std::ptrdiff_t hi) {
                if (nounit) {
                    T *cols[4] = {b0, b1, b2, b3};
                    for (std::ptrdiff_t c = 0; c < jn; ++c)
                        if (cols[c][k] != zero) cols[c][k] = divide(cols[c][k], A(k, k));
                }
                if (jn == 4) {
                    const T t0 = b0[k], t1 = b1[k], t2 = b2[k], t3 = b3[k];
                    if (t0 == zero && t1 == zero && t2 == zero && t3 == zero) return;
                    const T *q = a + k * lda;
                    for (std::ptrdiff_t i = lo; i < hi; ++i) {
                        const T aik = q[i];
                        b0[i] = b0[i] - t0 * aik;
                        b1[i] = b1[i] - t1 * aik;
                        b2[i] = b2[i] - t2 * aik;
                        b3[i] = b3[i] - t3 * aik;
                    }
                } else {
                    T *cols[3] = {b0, b1, b2};
                    for (std::ptrdiff_t c = 0; c < jn; ++c) {
                        T *col = cols[c];
                        const T t = col[k];
                        if (t == zero) continue;
                        const T *q = a + k * lda;
                        for (std::ptrdiff_t i = lo; i < hi; ++i) col[i] = col[i] - t * q[i];
                    }
                }
            };
            if (upper) {
                for (std::ptrdiff_t k = nb - 1; k >= 0; --k) step(k, 0, k);
            } else {
                for (std::ptrdiff_t k = 0; k < nb; ++k) step(k, k + 1, nb);
            }
        } else {
            // Dot products: row i is its right-hand side less the solved rows before it (after it, for
            // a lower triangle), then divided by the diagonal.
            const auto row = [&](std::ptrdiff_t i, std::ptrdiff_t from, std::ptrdiff_t to, std::ptrdiff_t dir) {
                const T *q = a + i * lda;
                T s0 = b0[i], s1 = b1[i], s2 = b2[i], s3 = b3[i];
                for (std::ptrdiff_t k = from; k != to; k += dir) {
                    const T aki = cj<C>(q[k]);
                    s0 = s0 - aki * b0[k];
                    s1 = s1 - aki * b1[k];
                    s2 = s2 - aki * b2[k];
                    s3 = s3 - aki * b3[k];
                }
                if (nounit) {
                    const T d = cj<C>(q[i]);
                    s0 = divide(s0, d);
                    s1 = divide(s1, d);
                    s2 = divide(s2, d);
                    s3 = divide(s3, d);
                }
                // Stored in reverse so that the real column wins when fewer than four alias it.
                b3[i] = s3;
                b2[i] = s2;
                b1[i] = s1;
                b0[i] = s0;
            };
            if (upper) {
                for (std::ptrdiff_t i = 0; i < nb; ++i) row(i, 0, i, 1);
            } else {
                for (std::ptrdiff_t i = nb - 1; i >= 0; --i) row(i, nb - 1, i, -1);
            }
        }
    }
}

template <class T, bool C>
void trsm_left(bool upper, bool trans, bool nounit, std::ptrdiff_t m, std::ptrdiff_t n, const T *a,
               std::ptrdiff_t lda, T *b, std::ptrdiff_t ldb) {
    if constexpr (!std::is_same_v<T, double>) {
        solve_left_block<T, C>(upper, trans, nounit, m, n, a, lda, b, ldb);
    } else {
        // Diagonal blocks by the plain solve, the rest by the blocked product; the product runs its
        // depth in the order the plain loops would, forwards or (through negative strides) backwards.
        const std::ptrdiff_t nbk = kSolveBlock;
        const auto Ap = [&](std::ptrdiff_t i, std::ptrdiff_t j) { return a + i + j * lda; };
        const auto Bp = [&](std::ptrdiff_t i) { return b + i; };
        const std::ptrdiff_t last = ((m - 1) / nbk) * nbk;
        if (!trans && !upper) {
            for (std::ptrdiff_t kb = 0; kb < m; kb += nbk) {
                const std::ptrdiff_t nb = std::min(nbk, m - kb), rest = m - kb - nb;
                solve_left_block<T, C>(false, false, nounit, nb, n, Ap(kb, kb), lda, Bp(kb), ldb);
                gemm_core(rest, n, nb, -1.0, Ap(kb + nb, kb), 1, lda, Bp(kb), 1, ldb, Bp(kb + nb), ldb);
            }
        } else if (!trans && upper) {
            for (std::ptrdiff_t kb = last; kb >= 0; kb -= nbk) {
                const std::ptrdiff_t nb = std::min(nbk, m - kb);
                solve_left_block<T, C>(true, false, nounit, nb, n, Ap(kb, kb), lda, Bp(kb), ldb);
                gemm_core(kb, n, nb, -1.0, Ap(0, kb + nb - 1), 1, -lda, Bp(kb + nb - 1), -1, ldb, Bp(0), ldb);
            }
        } else if (upper) {
            for (std::ptrdiff_t ib = 0; ib < m; ib += nbk) {
                const std::ptrdiff_t nb = std::min(nbk, m - ib);
                gemm_core(nb, n, ib, -1.0, Ap(0, ib), lda, 1, Bp(0), 1, ldb, Bp(ib), ldb);
                solve_left_block<T, C>(true, true, nounit, nb, n, Ap(ib, ib), lda, Bp(ib), ldb);
            }
        } else {
            for (std::ptrdiff_t ib = last; ib >= 0; ib -= nbk) {
                const std::ptrdiff_t nb = std::min(nbk, m - ib), below = m - ib - nb;
                gemm_core(nb, n, below, -1.0, Ap(m - 1, ib), lda, -1, Bp(m - 1), -1, ldb, Bp(ib), ldb);
                solve_left_block<T, C>(false, true, nounit, nb, n, Ap(ib, ib), lda, Bp(ib), ldb);
            }
        }
    }
}

// Right-side solves: the published column loops, alpha where they apply it.  Rows of B are
// independent here, so the caller hands over panels of rows that stay in cache; inside a panel four
// columns of B go together (four terms into one column, or one column into four), each element still
// receiving its terms in the published order.
template <class T, bool C>
void trsm_right(bool upper, bool trans, bool nounit, std::ptrdiff_t m, std::ptrdiff_t n, T alpha, const T *a,
                std::ptrdiff_t lda, T *b, std::ptrdiff_t ldb) {
    const T zero = zero_of<T>(), one = one_of<T>();
    const auto A = [&](std::ptrdiff_t i, std::ptrdiff_t j) { return cj<C>(a[i + j * lda]); };
    const auto col = [&](std::ptrdiff_t j) { return b + j * ldb; };
    const auto scale = [&](std::ptrdiff_t j, T s) {
        T *bj = col(j);
        for (std::ptrdiff_t i = 0; i < m; ++i) bj[i] = s * bj[i];
    };
    if (!trans) {
        // B*inv(A): column j is its right-hand side less the solved columns k = lo..hi-1 it depends on.
        const auto column = [&](std::ptrdiff_t j, std::ptrdiff_t lo, std::ptrdiff_t hi) {
            if (alpha != one) scale(j, alpha);
            T *__restrict bj = col(j);
            std::ptrdiff_t k = lo;
            for (; k + 4 <= hi; k += 4) {
                const T a0 = a[k + j * lda], a1 = a[k + 1 + j * lda], a2 = a[k + 2 + j * lda], a3 = a[k + 3 + j * lda];
                // Zero multipliers are skipped as the published loop skips them: one at a time.
                if (a0 == zero || a1 == zero || a2 == zero || a3 == zero) break;
                const T *__restrict b0 = col(k);
                const T *__restrict b1 = col(k + 1);
                const T *__restrict b2 = col(k + 2);
                const T *__restrict b3 = col(k + 3);
                for (std::ptrdiff_t i = 0; i < m; ++i) {
                    T v = bj[i];
                    v = v - a0 * b0[i];
                    v = v - a1 * b1[i];
                    v = v - a2 * b2[i];
                    v = v - a3 * b3[i];
                    bj[i] = v;
                }
            }
            for (; k < hi; ++k) {
                const T akj = a[k + j * lda];
                if (akj == zero) continue;
                const T *__restrict bk = col(k);
                for (std::ptrdiff_t i = 0; i < m; ++i) bj[i] = bj[i] - akj * bk[i];
            }
            if (nounit) scale(j, divide(one, a[j + j * lda]));
        };
        if (upper) {
            for (std::ptrdiff_t j = 0; j < n; ++j) column(j, 0, j);
        } else {
            for (std::ptrdiff_t j = n - 1; j >= 0; --j) column(j, j + 1, n);
        }
    } else {
        // B*inv(A'): column k is finished first and then removed from the columns j = lo..hi-1.
        const auto column = [&](std::ptrdiff_t k, std::ptrdiff_t lo, std::ptrdiff_t hi) {
            if (nounit) scale(k, divide(one, A(k, k)));
            const T *__restrict bk = col(k);
            std::ptrdiff_t j = lo;
            for (; j + 4 <= hi; j += 4) {
                const T a0 = A(j, k), a1 = A(j + 1, k), a2 = A(j + 2, k), a3 = A(j + 3, k);
                if (a0 == zero || a1 == zero || a2 == zero || a3 == zero) break;
                T *__restrict b0 = col(j);
                T *__restrict b1 = col(j + 1);
                T *__restrict b2 = col(j + 2);
                T *__restrict b3 = col(j + 3);
                for (std::ptrdiff_t i = 0; i < m; ++i) {
                    const T v = bk[i];
                    b0[i] = b0[i] - a0 * v;
                    b1[i] = b1[i] - a1 * v;
                    b2[i] = b2[i] - a2 * v;
                    b3[i] = b3[i] - a3 * v;
                }
            }
            for (; j < hi; ++j) {
                const T ajk = A(j, k);
                if (ajk == zero) continue;
                T *__restrict bj = col(j);
                for (std::ptrdiff_t i = 0; i < m; ++i) bj[i] = bj[i] - ajk * bk[i];
            }
            if (alpha != one) scale(k, alpha);
        };
        if (upper) {
            for (std::ptrdiff_t k = n - 1; k >= 0; --k) column(k, 0, k);
        } else {
            for (std::ptrdiff_t k = 0; k < n; ++k) column(k, k + 1, n);
        }
    }
}

template <class T> void zero_matrix(std::ptrdiff_t m, std::ptrdiff_t n, T *b, std::ptrdiff_t ldb) {
    for (std::ptrdiff_t j = 0; j < n; ++j)
        for (std::ptrdiff_t i = 0; i < m; ++i) b[i + j * ldb] = zero_of<T>();
}

} // namespace

template <class T>
void gemm(char transa, char transb, int m, int n, int k, T alpha, const T *a, int lda, const T *b, int ldb, T beta,
          T *c, int ldc) {
    const bool ta = transa != 'N', tb = transb != 'N';
    if constexpr (std::is_same_v<T, double>) {
        scale_columns<double>(m, n, beta, c, ldc);
        if (alpha == 0.0) return;
        gemm_core(m, n, k, alpha, a, ta ? lda : 1, ta ? 1 : lda, b, tb ? ldb : 1, tb ? 1 : ldb, c, ldc);
    } else {
        if (alpha == zero_of<T>()) {
            scale_columns(m, n, beta, c, ldc);
            return;
        }
        const bool ca = transa == 'C', cb = transb == 'C';
        if (ca && cb)
            gemm_loops<T, true, true>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
        else if (ca)
            gemm_loops<T, true, false>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
        else if (cb)
            gemm_loops<T, false, true>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
        else
            gemm_loops<T, false, false>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    }
}

template <class T>
void trsm(char side, char uplo, char transa, char diag, int m, int n, T alpha, const T *a, int lda, T *b, int ldb) {
    if (alpha == zero_of<T>()) {
        zero_matrix(m, n, b, ldb);
        return;
    }
    const bool upper = uplo == 'U', trans = transa != 'N', nounit = diag == 'N', conjugate = transa == 'C';
    if (side == 'L') {
        // Every element is scaled before any term reaches it, as the published loops do.
        if (alpha != one_of<T>()) scale_columns<T>(m, n, alpha, b, ldb);
        if (conjugate)
            trsm_left<T, true>(upper, trans, nounit, m, n, a, lda, b, ldb);
        else
            trsm_left<T, false>(upper, trans, nounit, m, n, a, lda, b, ldb);
    } else {
        // Panels of rows, each solved on its own while it stays in cache.
        constexpr std::ptrdiff_t kPanel = 128;
        for (std::ptrdiff_t i0 = 0; i0 < m; i0 += kPanel) {
            const std::ptrdiff_t rows = std::min<std::ptrdiff_t>(kPanel, m - i0);
            if (conjugate)
                trsm_right<T, true>(upper, trans, nounit, rows, n, alpha, a, lda, b + i0, ldb);
            else
                trsm_right<T, false>(upper, trans, nounit, rows, n, alpha, a, lda, b + i0, ldb);
        }
    }
}

template <class T>
void trmm(char side, char uplo, char transa, char diag, int m, int n, T alpha, const T *a, int lda, T *b, int ldb) {
    if (alpha == zero_of<T>()) {
        zero_matrix(m, n, b, ldb);
        return;
    }
    const bool upper = uplo == 'U', trans = transa != 'N', nounit = diag == 'N';
    const T zero = zero_of<T>(), one = one_of<T>();
    const std::ptrdiff_t ld = lda, lb = ldb;
    const auto A = [&](std::ptrdiff_t i, std::ptrdiff_t j) { return a[i + j * ld]; };
    const auto B = [&](std::ptrdiff_t i, std::ptrdiff_t j) -> T & { return b[i + j * lb]; };
    if (side == 'L') {
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            if (!trans && upper) {
                for (std::ptrdiff_t k = 0; k < m; ++k) {
                    if (B(k, j) == zero) continue;
                    T t = alpha * B(k, j);
                    for (std::ptrdiff_t i = 0; i < k; ++i) B(i, j) = B(i, j) + t * A(i, k);
                    if (nounit) t = t * A(k, k);
                    B(k, j) = t;
                }
            } else if (!trans) {
                for (std::ptrdiff_t k = m - 1; k >= 0; --k) {
                    if (B(k, j) == zero) continue;
                    const T t = alpha * B(k, j);
                    B(k, j) = t;
                    if (nounit) B(k, j) = B(k, j) * A(k, k);
                    for (std::ptrdiff_t i = k + 1; i < m; ++i) B(i, j) = B(i, j) + t * A(i, k);
                }
            } else if (upper) {
                for (std::ptrdiff_t i = m - 1; i >= 0; --i) {
                    T t = B(i, j);
                    if (nounit) t = t * A(i, i);
                    for (std::ptrdiff_t k = 0; k < i; ++k) t = t + A(k, i) * B(k, j);
                    B(i, j) = alpha * t;
                }
            } else {
                for (std::ptrdiff_t i = 0; i < m; ++i) {
                    T t = B(i, j);
                    if (nounit) t = t * A(i, i);
                    for (std::ptrdiff_t k = i + 1; k < m; ++k) t = t + A(k, i) * B(k, j);
                    B(i, j) = alpha * t;
                }
            }
        }
        return;
    }
    const auto axpy_col = [&](std::ptrdiff_t j, T t, std::ptrdiff_t k) {
        for (std::ptrdiff_t i = 0; i < m; ++i) B(i, j) = B(i, j) + t * B(i, k);
    };
    const auto scale_col = [&](std::ptrdiff_t j, T t) {
        for (std::ptrdiff_t i = 0; i < m; ++i) B(i, j) = t * B(i, j);
    };
    if (!trans) {
        const auto column = [&](std::ptrdiff_t j, std::ptrdiff_t lo, std::ptrdiff_t hi) {
            T t = alpha;
            if (nounit) t = t * A(j, j);
            scale_col(j, t);
            for (std::ptrdiff_t k = lo; k < hi; ++k)
                if (A(k, j) != zero) axpy_col(j, alpha * A(k, j), k);
        };
        if (upper) {
            for (std::ptrdiff_t j = n - 1; j >= 0; --j) column(j, 0, j);
        } else {
            for (std::ptrdiff_t j = 0; j < n; ++j) column(j, j + 1, n);
        }
    } else {
        const auto column = [&](std::ptrdiff_t k, std::ptrdiff_t lo, std::ptrdiff_t hi) {
            for (std::ptrdiff_t j = lo; j < hi; ++j)
                if (A(j, k) != zero) axpy_col(j, alpha * A(j, k), k);
            T t = alpha;
            if (nounit) t = t * A(k, k);
            if (t != one) scale_col(k, t);
        };
        if (upper) {
            for (std::ptrdiff_t k = 0; k < n; ++k) column(k, 0, k);
        } else {
            for (std::ptrdiff_t k = n - 1; k >= 0; --k) column(k, k + 1, n);
        }
    }
}

template <class T>
void syrk(char uplo, char trans, int n, int k, T alpha, const T *a, int lda, T beta, T *c, int ldc) {
    const bool upper = uplo == 'U';
    const std::ptrdiff_t ld = lda, lc = ldc;
    const auto C = [&](std::ptrdiff_t i, std::ptrdiff_t j) -> T & { return c[i + j * lc]; };
    const auto A = [&](std::ptrdiff_t i, std::ptrdiff_t j) { return a[i + j * ld]; };
    for (std::ptrdiff_t j = 0; j < n; ++j) {
        const std::ptrdiff_t lo = upper ? 0 : j, hi = upper ? j + 1 : n;
        if (alpha == zero_of<T>() || trans == 'N') {
            for (std::ptrdiff_t i = lo; i < hi; ++i) C(i, j) = beta == zero_of<T>() ? zero_of<T>() : beta * C(i, j);
            if (alpha == zero_of<T>()) continue;
            for (std::ptrdiff_t l = 0; l < k; ++l) {
                if (A(j, l) == zero_of<T>()) continue;
                const T t = alpha * A(j, l);
                for (std::ptrdiff_t i = lo; i < hi; ++i) C(i, j) = C(i, j) + t * A(i, l);
            }
        } else {
            for (std::ptrdiff_t i = lo; i < hi; ++i) {
                T s = zero_of<T>();
                for (std::ptrdiff_t l = 0; l < k; ++l) s = s + A(l, i) * A(l, j);
                C(i, j) = beta == zero_of<T>() ? alpha * s : alpha * s + beta * C(i, j);
            }
        }
    }
}

template <class T>
void herk(char uplo, char trans, int n, int k, double alpha, const T *a, int lda, double beta, T *c, int ldc) {
    const bool upper = uplo == 'U';
    const std::ptrdiff_t ld = lda, lc = ldc;
    const auto C = [&](std::ptrdiff_t i, std::ptrdiff_t j) -> T & { return c[i + j * lc]; };
    const auto A = [&](std::ptrdiff_t i, std::ptrdiff_t j) { return a[i + j * ld]; };
    for (std::ptrdiff_t j = 0; j < n; ++j) {
        // Off-diagonal rows of column j in the stored triangle.
        const std::ptrdiff_t lo = upper ? 0 : j + 1, hi = upper ? j : n;
        if (alpha == 0.0 || trans == 'N') {
            for (std::ptrdiff_t i = lo; i < hi; ++i) C(i, j) = beta == 0.0 ? zero_of<T>() : beta * C(i, j);
            C(j, j) = beta == 0.0 ? zero_of<T>() : T{beta * real_part(C(j, j)), 0.0};
            if (alpha == 0.0) continue;
            for (std::ptrdiff_t l = 0; l < k; ++l) {
                if (A(j, l) == zero_of<T>()) continue;
                const T t = alpha * conj(A(j, l));
                for (std::ptrdiff_t i = lo; i < hi; ++i) C(i, j) = C(i, j) + t * A(i, l);
                C(j, j) = T{real_part(C(j, j)) + real_part(t * A(j, l)), 0.0};
            }
        } else {
            for (std::ptrdiff_t i = lo; i < hi; ++i) {
                T s = zero_of<T>();
                for (std::ptrdiff_t l = 0; l < k; ++l) s = s + conj(A(l, i)) * A(l, j);
                C(i, j) = beta == 0.0 ? alpha * s : alpha * s + beta * C(i, j);
            }
            double r = 0.0;
            for (std::ptrdiff_t l = 0; l < k; ++l) r = r + real_part(conj(A(l, j)) * A(l, j));
            C(j, j) = beta == 0.0 ? T{alpha * r, 0.0} : T{alpha * r + beta * real_part(C(j, j)), 0.0};
        }
    }
}

template void gemm<double>(char, char, int, int, int, double, const double *, int, const double *, int, double,
                           double *, int);
template void gemm<Complex>(char, char, int, int, int, Complex, const Complex *, int, const Complex *, int, Complex,
                            Complex *, int);
template void trsm<double>(char, char, char, char, int, int, double, const double *, int, double *, int);
template void trsm<Complex>(char, char, char, char, int, int, Complex, const Complex *, int, Complex *, int);
template void trmm<double>(char, char, char, char, int, int, double, const double *, int, double *, int);
template void syrk<double>(char, char, int, int, double, const double *, int, double, double *, int);
template void herk<Complex>(char, char, int, int, double, const Complex *, int, double, Complex *, int);

// ---- Checked forms --------------------------------------------------------------------------------

namespace {

constexpr KernelNames kDgemm{"F06YAF/DGEMM ", "f06yaf/dgemm"};
constexpr KernelNames kDtrmm{"F06YFF/DTRMM ", "f06yff/dtrmm"};
constexpr KernelNames kDtrsm{"F06YJF/DTRSM ", "f06yjf/dtrsm"};
constexpr KernelNames kDsyrk{"F06YPF/DSYRK ", "f06ypf/dsyrk"};
constexpr KernelNames kZgemm{"F06ZAF/ZGEMM ", "f06zaf/zgemm"};
constexpr KernelNames kZtrsm{"F06ZJF/ZTRSM ", "f06zjf/ztrsm"};
constexpr KernelNames kZherk{"F06ZPF/ZHERK ", "f06zpf/zherk"};

inline bool is_trans(char t) { return t == 'N' || t == 'T' || t == 'C'; }

inline bool accept(Reporter r, const KernelNames &names, int info) {
    if (info == 0) return true;
    report_bad_argument(r, names, info);
    return false;
}

template <class T>
void gemm_checked(Reporter r, const KernelNames &names, char transa, char transb, int m, int n, int k, T alpha,
                  const T *a, int lda, const T *b, int ldb, T beta, T *c, int ldc) {
    const int nrowa = transa == 'N' ? m : k, nrowb = transb == 'N' ? k : n;
    const int info = !is_trans(transa)                   ? 1
                     : !is_trans(transb)                 ? 2
                     : m < 0                             ? 3
                     : n < 0                             ? 4
                     : k < 0                             ? 5
                     : bad_leading_dimension(lda, nrowa) ? 8
                     : bad_leading_dimension(ldb, nrowb) ? 10
                     : bad_leading_dimension(ldc, m)     ? 13
                                                         : 0;
    if (!accept(r, names, info)) return;
    if (m == 0 || n == 0 || ((alpha == zero_of<T>() || k == 0) && beta == one_of<T>())) return;
    gemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

// TRMM and TRSM share their checks.
template <class T>
void triangular_checked(Reporter r, const KernelNames &names, bool solve, char side, char uplo, char transa,
                        char diag, int m, int n, T alpha, const T *a, int lda, T *b, int ldb) {
    const int nrowa = side == 'L' ? m : n;
    const int info = (side != 'L' && side != 'R')        ? 1
                     : (uplo != 'U' && uplo != 'L')      ? 2
                     : !is_trans(transa)                 ? 3
                     : (diag != 'U' && diag != 'N')      ? 4
                     : m < 0                             ? 5
                     : n < 0                             ? 6
                     : bad_leading_dimension(lda, nrowa) ? 9
                     : bad_leading_dimension(ldb, m)     ? 11
                                                         : 0;
    if (!accept(r, names, info) || m == 0 || n == 0) return;
    if (solve)
        trsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
    else if constexpr (std::is_same_v<T, double>)
        trmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

void syrk_checked(Reporter r, char uplo, char trans, int n, int k, double alpha, const double *a, int lda,
                  double beta, double *c, int ldc) {
    const int nrowa = trans == 'N' ? n : k;
    const int info = (uplo != 'U' && uplo != 'L')        ? 1
                     : !is_trans(trans)                  ? 2
                     : n < 0                             ? 3
                     : k < 0                             ? 4
                     : bad_leading_dimension(lda, nrowa) ? 7
                     : bad_leading_dimension(ldc, n)     ? 10
                                                         : 0;
    if (!accept(r, kDsyrk, info)) return;
    if (n == 0 || ((alpha == 0.0 || k == 0) && beta == 1.0)) return;
    syrk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}

void herk_checked(Reporter r, char uplo, char trans, int n, int k, double alpha, const Complex *a, int lda,
                  double beta, Complex *c, int ldc) {
    const int nrowa = trans == 'N' ? n : k;
    const int info = (uplo != 'U' && uplo != 'L')        ? 1
                     : (trans != 'N' && trans != 'C')    ? 2
                     : n < 0                             ? 3
                     : k < 0                             ? 4
                     : bad_leading_dimension(lda, nrowa) ? 7
                     : bad_leading_dimension(ldc, n)     ? 10
                                                         : 0;
    if (!accept(r, kZherk, info)) return;
    if (n == 0 || ((alpha == 0.0 || k == 0) && beta == 1.0)) return;
    herk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}

inline const Complex *cx(const double *p) { return reinterpret_cast<const Complex *>(p); }
inline Complex *cx(double *p) { return reinterpret_cast<Complex *>(p); }

} // namespace

void dgemm(const char *transa, const char *transb, int m, int n, int k, double alpha, const double *a, int lda,
           const double *b, int ldb, double beta, double *c, int ldc) {
    f06yaf_ENTRY(1, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, 1, 1);
}
void dtrmm(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, double alpha,
           const double *a, int lda, double *b, int ldb) {
    F06YFF_MASTER(1, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, 1, 1, 1, 1);
}
void dtrsm(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, double alpha,
           const double *a, int lda, double *b, int ldb) {
    f06yjf_ENTRY(1, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, 1, 1, 1, 1);
}
void dsyrk(const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda, double beta,
           double *c, int ldc) {
    F06YPF_MASTER(1, uplo, trans, n, k, alpha, a, lda, beta, c, ldc, 1, 1);
}
void zgemm(const char *transa, const char *transb, int m, int n, int k, Complex alpha, const Complex *a, int lda,
           const Complex *b, int ldb, Complex beta, Complex *c, int ldc) {
    gemm_checked(Reporter::Hard, kZgemm, option_letter(transa), option_letter(transb), m, n, k, alpha, a, lda, b, ldb,
                 beta, c, ldc);
}
void ztrsm(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, Complex alpha,
           const Complex *a, int lda, Complex *b, int ldb) {
    triangular_checked(Reporter::Hard, kZtrsm, true, option_letter(side), option_letter(uplo), option_letter(transa),
                       option_letter(diag), m, n, alpha, a, lda, b, ldb);
}
void zherk(const char *uplo, const char *trans, int n, int k, double alpha, const Complex *a, int lda, double beta,
           Complex *c, int ldc) {
    herk_checked(Reporter::Hard, option_letter(uplo), option_letter(trans), n, k, alpha, a, lda, beta, c, ldc);
}

} // namespace zek

using zek::option_letter;
using zek::Reporter;

extern "C" {

// DGEMM
void f06yaf_ENTRY(int, const char *transa, const char *transb, int m, int n, int k, double alpha, const double *a,
                  int lda, const double *b, int ldb, double beta, double *c, int ldc, int, int) {
    zek::gemm_checked(Reporter::Hard, zek::kDgemm, option_letter(transa), option_letter(transb), m, n, k, alpha, a,
                      lda, b, ldb, beta, c, ldc);
}
void F06YAF(const char *transa, const char *transb, int m, int n, int k, double alpha, const double *a, int lda,
            const double *b, int ldb, double beta, double *c, int ldc, int transa_len, int transb_len) {
    f06yaf_ENTRY(0, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, transa_len, transb_len);
}

// DTRMM
void F06YFF_MASTER(int, const char *side, const char *uplo, const char *transa, const char *diag, int m, int n,
                   double alpha, const double *a, int lda, double *b, int ldb, int, int, int, int) {
    zek::triangular_checked(Reporter::Hard, zek::kDtrmm, false, option_letter(side), option_letter(uplo),
                            option_letter(transa), option_letter(diag), m, n, alpha, a, lda, b, ldb);
}
void F06YFF(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, double alpha,
            const double *a, int lda, double *b, int ldb, int side_len, int uplo_len, int transa_len, int diag_len) {
    F06YFF_MASTER(0, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, side_len, uplo_len, transa_len, diag_len);
}

// DTRSM
void f06yjf_ENTRY(int, const char *side, const char *uplo, const char *transa, const char *diag, int m, int n,
                  double alpha, const double *a, int lda, double *b, int ldb, int, int, int, int) {
    zek::triangular_checked(Reporter::Hard, zek::kDtrsm, true, option_letter(side), option_letter(uplo),
                            option_letter(transa), option_letter(diag), m, n, alpha, a, lda, b, ldb);
}
void F06YJF(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, double alpha,
            const double *a, int lda, double *b, int ldb, int side_len, int uplo_len, int transa_len, int diag_len) {
    f06yjf_ENTRY(0, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, side_len, uplo_len, transa_len, diag_len);
}

// DSYRK
void F06YPF_MASTER(int, const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda,
                   double beta, double *c, int ldc, int, int) {
    zek::syrk_checked(Reporter::Hard, option_letter(uplo), option_letter(trans), n, k, alpha, a, lda, beta, c, ldc);
}
void F06YPF(const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda, double beta,
            double *c, int ldc, int uplo_len, int trans_len) {
    F06YPF_MASTER(0, uplo, trans, n, k, alpha, a, lda, beta, c, ldc, uplo_len, trans_len);
}
void F06YPF_COPY(const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda,
                 double beta, double *c, int ldc, int, int) {
    zek::syrk_checked(Reporter::Stream, option_letter(uplo), option_letter(trans), n, k, alpha, a, lda, beta, c, ldc);
}

// ZGEMM
void f06zaf_ENTRY(int, const char *transa, const char *transb, int m, int n, int k, double alpha_re, double alpha_im,
                  const double *a, int lda, const double *b, int ldb, double beta_re, double beta_im, double *c,
                  int ldc, int, int) {
    zek::gemm_checked(Reporter::Hard, zek::kZgemm, option_letter(transa), option_letter(transb), m, n, k,
                      zek::Complex{alpha_re, alpha_im}, zek::cx(a), lda, zek::cx(b), ldb,
                      zek::Complex{beta_re, beta_im}, zek::cx(c), ldc);
}
void F06ZAF(const char *transa, const char *transb, int m, int n, int k, double alpha_re, double alpha_im,
            const double *a, int lda, const double *b, int ldb, double beta_re, double beta_im, double *c, int ldc,
            int transa_len, int transb_len) {
    f06zaf_ENTRY(0, transa, transb, m, n, k, alpha_re, alpha_im, a, lda, b, ldb, beta_re, beta_im, c, ldc, transa_len,
                 transb_len);
}

// ZTRSM
void f06zjf_ENTRY(int, const char *side, const char *uplo, const char *transa, const char *diag, int m, int n,
                  double alpha_re, double alpha_im, const double *a, int lda, double *b, int ldb, int, int, int, int) {
    zek::triangular_checked(Reporter::Hard, zek::kZtrsm, true, option_letter(side), option_letter(uplo),
                            option_letter(transa), option_letter(diag), m, n, zek::Complex{alpha_re, alpha_im},
                            zek::cx(a), lda, zek::cx(b), ldb);
}
void F06ZJF(const char *side, const char *uplo, const char *transa, const char *diag, int m, int n, double alpha_re,
            double alpha_im, const double *a, int lda, double *b, int ldb, int side_len, int uplo_len, int transa_len,
            int diag_len) {
    f06zjf_ENTRY(0, side, uplo, transa, diag, m, n, alpha_re, alpha_im, a, lda, b, ldb, side_len, uplo_len,
                 transa_len, diag_len);
}

// ZHERK
void f06zpf_ENTRY(int, const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda,
                  double beta, double *c, int ldc, int, int) {
    zek::herk_checked(Reporter::Hard, option_letter(uplo), option_letter(trans), n, k, alpha, zek::cx(a), lda, beta,
                      zek::cx(c), ldc);
}
void F06ZPF(const char *uplo, const char *trans, int n, int k, double alpha, const double *a, int lda, double beta,
            double *c, int ldc, int uplo_len, int trans_len) {
    f06zpf_ENTRY(0, uplo, trans, n, k, alpha, a, lda, beta, c, ldc, uplo_len, trans_len);
}

} // extern "C"
