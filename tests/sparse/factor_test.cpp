// Coordinate storage, products and incomplete factorisations, checked against dense references formed
// here: sorted lists against a library-free sort, products against dense products, level-0 factors
// against the matrix on its pattern, complete factors by the residual of their solve.
#include <random>

#include "sparse_fixtures.h"

namespace {

using sparse_test::Complex;
using sparse_test::Coo;
using sparse_test::Factors;
using sparse_test::raw;
using sparse_test::twin;

// ---- Sorting ----

struct SortCase {
    const char *what, *dup, *zero;
    std::vector<int> irow, icol;
    std::vector<double> a;
    int ifail;
    std::vector<int> want_row, want_col;
    std::vector<double> want_a;
};

TEST(SparseSort, MergesAndCompressesAsAsked) {
    // (2,1) twice: 3 first in input order, then -3; (1,2) once with 0.
    const std::vector<int> r{2, 1, 2, 3, 1}, c{1, 2, 1, 3, 1};
    const std::vector<double> v{3.0, 0.0, -3.0, 5.0, 7.0};
    const SortCase cases[] = {
        {"remove keeps the first", "R", "K", r, c, v, 0, {1, 1, 2, 3}, {1, 2, 1, 3}, {7, 0, 3, 5}},
        {"sum then keep zeros", "S", "K", r, c, v, 0, {1, 1, 2, 3}, {1, 2, 1, 3}, {7, 0, 0, 5}},
        {"sum then remove zeros", "s", "r", r, c, v, 0, {1, 3}, {1, 3}, {7, 5}},
        {"duplicate fails", "F", "K", r, c, v, 3, {}, {}, {}},
        {"zero fails", "R", "F", r, c, v, 4, {}, {}, {}},
        {"empty list", "R", "R", {}, {}, {}, 0, {}, {}, {}},
    };
    for (const SortCase &t : cases) {
        SCOPED_TRACE(t.what);
        std::vector<int> irow = t.irow, icol = t.icol, istr(4, -9), iwork(3);
        std::vector<double> a = t.a;
        irow.reserve(1), icol.reserve(1), a.reserve(1);
        int n = 3, nnz = static_cast<int>(a.size()), ifail = 1;
        F11ZAF(&n, &nnz, a.data(), irow.data(), icol.data(), t.dup, t.zero, istr.data(), iwork.data(), &ifail, 1, 1);
        EXPECT_EQ(ifail, t.ifail);
        if (t.ifail == 3) {
            EXPECT_EQ(nnz, 5);
        }
        if (t.ifail != 0) continue;
        ASSERT_EQ(nnz, static_cast<int>(t.want_a.size()));
        irow.resize(nnz), icol.resize(nnz), a.resize(nnz);
        EXPECT_EQ(irow, t.want_row);
        EXPECT_EQ(icol, t.want_col);
        EXPECT_EQ(a, t.want_a);
        EXPECT_EQ(istr[0], 1);
        for (int i = 1; i <= n; ++i) {
            EXPECT_LE(istr[i - 1], istr[i]);
            for (int k = istr[i - 1]; k < istr[i]; ++k) EXPECT_EQ(irow[k - 1], i);
        }
        EXPECT_EQ(istr[n], nnz + 1);
    }
}

TEST(SparseSort, ShuffledMatrixSortsBackRealAndComplex) {
    const Coo m = sparse_test::read_matrix("west0067");
    std::vector<int> order(static_cast<std::size_t>(m.nnz()));
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), std::mt19937(3));
    std::vector<int> irow, icol, istr(static_cast<std::size_t>(m.n) + 1), iwork(static_cast<std::size_t>(m.n));
    std::vector<double> a;
    std::vector<Complex> z, zwant = sparse_test::complexify(m);
    for (int k : order) {
        irow.push_back(m.irow[k]);
        icol.push_back(m.icol[k]);
        a.push_back(m.a[k]);
        z.push_back(zwant[static_cast<std::size_t>(k)]);
    }
    std::vector<int> zrow = irow, zcol = icol;
    int n = m.n, nnz = m.nnz(), ifail = 1;
    F11ZAF(&n, &nnz, a.data(), irow.data(), icol.data(), "F", "F", istr.data(), iwork.data(), &ifail, 1, 1);
    ASSERT_EQ(ifail, 0);
    EXPECT_EQ(irow, m.irow);
    EXPECT_EQ(icol, m.icol);
    EXPECT_EQ(a, m.a);
    nnz = m.nnz();
    F11ZNF(&n, &nnz, raw(z), zrow.data(), zcol.data(), "F", "F", istr.data(), iwork.data(), &ifail, 1, 1);
    ASSERT_EQ(ifail, 0);
    EXPECT_EQ(zcol, m.icol);
    EXPECT_EQ(z, zwant);
}

// ---- Products ----

// y = D x with the dense matrix.
template <class T> std::vector<T> dense_times(int n, const std::vector<T> &d, const std::vector<T> &x) {
    std::vector<T> y(static_cast<std::size_t>(n), T(0.0));
    for (std::size_t i = 0; i < y.size(); ++i)
        for (std::size_t j = 0; j < y.size(); ++j) y[i] += d[i + j * y.size()] * x[j];
    return y;
}

template <class T> double max_diff(const std::vector<T> &x, const std::vector<T> &y) {
    double d = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) d = std::max(d, std::abs(x[i] - y[i]));
    return d;
}

TEST(SparseProduct, MatchesDenseProducts) {
    for (const char *name : {"west0067", "bcsstk01"}) {
        SCOPED_TRACE(name);
        const Coo m = sparse_test::read_matrix(name);
        const int n = m.n;
        std::vector<double> x(static_cast<std::size_t>(n)), y(x.size());
        std::vector<Complex> zx(x.size()), zy(x.size());
        for (int i = 0; i < n; ++i) {
            x[static_cast<std::size_t>(i)] = std::sin(1.0 + i);
            zx[static_cast<std::size_t>(i)] = Complex(std::cos(2.0 * i), std::sin(0.5 + i));
        }
        std::vector<Complex> zv = sparse_test::complexify(m);
        int nnz = m.nnz(), ifail = 1;
        const double scale = 1e-12 * (1.0 + *std::max_element(m.a.begin(), m.a.end(), [](double p, double q) {
                                          return std::fabs(p) < std::fabs(q);
                                      }));
        for (bool trans : {false, true}) {
            const char *t = trans ? "T" : "N";
            if (m.symmetric && trans) continue;
            if (m.symmetric) F11XEF(&n, &nnz, m.a.data(), m.irow.data(), m.icol.data(), "C", x.data(), y.data(), &ifail, 1);
            else F11XAF(t, &n, &nnz, m.a.data(), m.irow.data(), m.icol.data(), "C", x.data(), y.data(), &ifail, 1, 1);
            EXPECT_EQ(ifail, 0);
            EXPECT_LT(max_diff(y, dense_times(n, sparse_test::dense(m, m.a, trans), x)), scale);
            if (m.symmetric) F11XSF(&n, &nnz, raw(zv), m.irow.data(), m.icol.data(), "C", raw(zx), raw(zy), &ifail, 1);
            else F11XNF(t, &n, &nnz, raw(zv), m.irow.data(), m.icol.data(), "C", raw(zx), raw(zy), &ifail, 1, 1);
            EXPECT_EQ(ifail, 0);
            EXPECT_LT(max_diff(zy, dense_times(n, sparse_test::dense(m, zv, trans), zx)), scale);
        }
    }
}

// ---- Incomplete factorisations ----

// L*D*U of the factors, dense, in positions; for an incomplete Cholesky factor (SYMMETRIC) U is L
// transposed.  Each row stores the inverse of its D entry on the diagonal.
template <class T> std::vector<T> lu_product(const Factors<T> &r, bool symmetric) {
    const std::size_t n = static_cast<std::size_t>(r.n);
    std::vector<T> l(n * n, T(0.0)), u(n * n, T(0.0)), out(n * n, T(0.0)), d(n, T(0.0));
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t first = static_cast<std::size_t>(r.istr[i] - 1), end = static_cast<std::size_t>(r.istr[i + 1] - 1);
        for (std::size_t p = first; p < end; ++p)
            if (static_cast<std::size_t>(r.icol[p] - 1) == i) d[i] = T(1.0) / r.a[p];
        l[i + i * n] = T(1.0);
        u[i + i * n] = d[i];
        for (std::size_t p = first; p < end; ++p) {
            const std::size_t j = static_cast<std::size_t>(r.icol[p] - 1);
            if (j < i) l[i + j * n] = r.a[p];
            if (j < i && symmetric) u[j + i * n] = r.a[p] * d[j];
            if (j > i) u[i + j * n] = r.a[p] * d[i];
        }
    }
    for (std::size_t j = 0; j < n; ++j)
        for (std::size_t k = 0; k < n; ++k)
            if (u[k + j * n] != T(0.0))
                for (std::size_t i = 0; i < n; ++i) out[i + j * n] += l[i + k * n] * u[k + j * n];
    return out;
}

// Level 0 factors reproduce the matrix on its pattern; the modified LU keeps the row sums instead.
TEST(SparseIncompleteFactors, LevelZeroFactorsReproduceTheMatrixOnItsPattern) {
    const Coo lower = sparse_test::read_matrix("gr_30_30"), m = sparse_test::expand(lower);
    const std::size_t n = static_cast<std::size_t>(m.n);
    struct Row { const char *pstrat, *milu; bool cholesky; };
    const Row rows[] = {{"N", "N", false}, {"U", "N", false}, {"P", "N", false}, {"C", "N", false},
                        {"N", "M", false}, {"N", "", true},   {"U", "", true},   {"M", "", true}};
    for (const Row &t : rows) {
        SCOPED_TRACE(std::string(t.pstrat) + t.milu + (t.cholesky ? " Cholesky" : ""));
        const Coo &a = t.cholesky ? lower : m;
        const Factors<double> r = t.cholesky ? sparse_test::factor_ic(a, a.a, 0, t.pstrat, 4 * a.a.size())
                                             : sparse_test::factor_lu(a, a.a, 0, t.pstrat, t.milu);
        ASSERT_EQ(r.ifail, 0);
        ASSERT_EQ(r.npivm, 0);
        const std::vector<double> ldu = lu_product(r, t.cholesky);
        std::vector<std::size_t> pos_of_row(n), pos_of_col(n);
        for (std::size_t i = 0; i < n; ++i) {
            pos_of_row[static_cast<std::size_t>(r.ipiv[i] - 1)] = i;
            pos_of_col[static_cast<std::size_t>((t.cholesky ? r.ipiv : r.ipivq)[i] - 1)] = i;
        }
        std::vector<double> want(n, 0.0), got(n, 0.0);
        double worst = 0.0;
        for (std::size_t k = 0; k < a.a.size(); ++k) {
            const std::size_t i = pos_of_row[static_cast<std::size_t>(a.irow[k] - 1)];
            const std::size_t j = pos_of_col[static_cast<std::size_t>(a.icol[k] - 1)];
            worst = std::max(worst, std::fabs(ldu[i + j * n] - a.a[k]));
            want[static_cast<std::size_t>(a.irow[k] - 1)] += a.a[k];
        }
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j) got[i] += ldu[i + j * n];
        if (*t.milu == 'M') {
            for (std::size_t i = 0; i < n; ++i) EXPECT_NEAR(got[i], want[i], 1e-12);
        } else {
            EXPECT_LT(worst, 1e-12);
        }
        // The input entries are as they were.
        EXPECT_TRUE(t.cholesky || std::equal(a.a.begin(), a.a.end(), r.a.begin()));
    }
}

// With complete fill the factors solve exactly: LU (both ways) of a matrix with zeros on its diagonal,
// which only the pivoting strategies factor; Cholesky of the grid Laplacian.
template <class T> void expect_exact_solves(const Coo &m, const std::vector<T> &values, const char *pstrat) {
    const std::size_t n = static_cast<std::size_t>(m.n);
    const bool cholesky = m.symmetric;
    const Factors<T> r = cholesky ? sparse_test::factor_ic(m, values, m.n, pstrat, 2 * values.size() + n * n)
                                  : sparse_test::factor_lu(m, values, m.n, pstrat, "N", 80);
    ASSERT_EQ(r.ifail, 0);
    EXPECT_EQ(r.npivm, 0);
    std::vector<T> y(n), x(n);
    for (std::size_t i = 0; i < n; ++i) y[i] = T(1.0 + std::cos(static_cast<double>(i)));
    for (const char *trans : {"N", "T"}) {
        SCOPED_TRACE(trans);
        int ifail = 1;
        if (cholesky && *trans == 'T') break;
        if (cholesky)
            twin<T>(F11JBF, F11JPF)(&r.n, raw(r.a), &r.la, r.irow.data(), r.icol.data(), r.ipiv.data(), r.istr.data(),
                                    "C", raw(y), raw(x), &ifail, 1);
        else
            twin<T>(F11DBF, F11DPF)(trans, &r.n, raw(r.a), &r.la, r.irow.data(), r.icol.data(), r.ipiv.data(),
                                    r.ipivq.data(), r.istr.data(), r.idiag.data(), "C", raw(y), raw(x), &ifail, 1, 1);
        ASSERT_EQ(ifail, 0);
        EXPECT_LT(sparse_test::relative_residual(m.n, sparse_test::dense(m, values, *trans == 'T'), x, y), 1e-13);
    }
}

TEST(SparseIncompleteFactors, CompleteFillSolvesExactly) {
    const Coo west = sparse_test::read_matrix("west0067"), grid = sparse_test::read_matrix("gr_30_30");
    for (auto [m, pstrat] : {std::pair(&west, "P"), {&west, "C"}, {&grid, "M"}}) {
        SCOPED_TRACE(pstrat);
        expect_exact_solves(*m, m->a, pstrat);
        expect_exact_solves(*m, sparse_test::complexify(*m), pstrat);
    }
}

// Pivots that vanish: a zero row is retried then replaced, a drop that empties a pivot has its row
// redone with nothing replaced (NPIVM -1), and a missing diagonal takes the Cholesky safeguard.
TEST(SparseIncompleteFactors, VanishingPivots) {
    struct Row { const char *pstrat; bool cholesky; Coo m; int npivm; };
    const Coo zero_row{3, false, {4.0, 1.0, 2.0, 5.0}, {1, 1, 3, 3}, {1, 2, 2, 3}};
    const Row rows[] = {{"N", false, zero_row, 1}, {"P", false, zero_row, 1}, {"C", false, zero_row, 1},
                        {"N", false, {2, false, {1.0, 1.0, 1.0}, {1, 1, 2}, {1, 2, 1}}, -1},
                        {"N", true, {2, true, {4.0, 1.0}, {1, 2}, {1, 1}}, 1}};
    for (const Row &t : rows) {
        const Factors<double> r = t.cholesky ? sparse_test::factor_ic(t.m, t.m.a, 0, t.pstrat, 16)
                                             : sparse_test::factor_lu(t.m, t.m.a, 0, t.pstrat, "N");
        ASSERT_EQ(r.ifail, 0) << t.pstrat << t.cholesky;
        EXPECT_EQ(r.npivm, t.npivm) << t.pstrat << t.cholesky;
    }
}

} // namespace
