// The drivers with built-in and factor preconditioners on the Matrix Market matrices (real, and complex
// ones built from them), the SSOR and Jacobi appliers against dense forms of their operators, and the
// exported method engines driven by this test's own loop.  Residuals are formed here.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "sparse_fixtures.h"
#include "zek2/f11.h"

namespace {

using sparse_test::Complex;
using sparse_test::Coo;

template <class T> std::vector<T> values_of(const Coo &m) {
    if constexpr (std::is_same_v<T, double>) return m.a;
    else return sparse_test::complexify(m);
}
template <class T> std::vector<T> right_side(int n) {
    std::vector<T> b(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        if constexpr (std::is_same_v<T, double>) b[i] = 1.0 + std::sin(i);
        else b[i] = Complex(1.0 + std::sin(i), 0.5 * std::cos(i));
    }
    return b;
}
template <class T> double *d(std::vector<T> &v) { return reinterpret_cast<double *>(v.data()); }
template <class T> const double *d(const std::vector<T> &v) { return reinterpret_cast<const double *>(v.data()); }
int len(const char *s) { return static_cast<int>(std::strlen(s)); }

struct Row {
    const char *method, *precon;
    double omega;
    int ifail = 0; // without a preconditioner sherman1 is not solved in MAXITN iterations
};

template <class T> void relaxed_general(const Row &r) {
    SCOPED_TRACE(std::string(r.method) + " " + r.precon + (std::is_same_v<T, double> ? " real" : " complex"));
    const Coo m = sparse_test::expand(sparse_test::read_matrix("sherman1"));
    const std::vector<T> a = values_of<T>(m), b = right_side<T>(m.n);
    std::vector<T> x(b.size(), T(0.0)), work(120000, T(0.0));
    std::vector<int> iwork(static_cast<std::size_t>(2 * m.n + 1));
    const int n = m.n, nnz = m.nnz(), order = std::strcmp(r.method, "BICGSTAB") == 0 ? 4 : 50, maxitn = 1000,
              lwork = static_cast<int>(work.size());
    const double tol = 1e-10;
    int itn = 0, ifail = 1;
    double rnorm = -1.0;
    (std::is_same_v<T, double> ? F11DEF : F11DSF)(r.method, r.precon, &n, &nnz, d(a), m.irow.data(), m.icol.data(),
                                                  &r.omega, d(b), &order, &tol, &maxitn, d(x), &rnorm, &itn,
                                                  d(work), &lwork, iwork.data(), &ifail, len(r.method), 1);
    EXPECT_EQ(ifail, r.ifail);
    EXPECT_EQ(itn, r.ifail == 5 ? maxitn : itn);
    EXPECT_LT(sparse_test::relative_residual(n, sparse_test::dense(m, a), x, b), r.ifail == 0 ? 1e-9 : 1e-5);
}

TEST(SparseDrivers, JacobiAndSsorDriversSolveRealAndComplexSystems) {
    const Row rows[] = {{"RGMRES", "N", 0.0, 5}, {"RGMRES", "J", 0.0}, {"RGMRES", "S", 1.2}, {"BICGSTAB", "S", 1.0},
                        {"TFQMR", "J", 0.0},  {"CGS", "S", 0.8}};
    for (const Row &r : rows) {
        relaxed_general<double>(r);
        relaxed_general<Complex>(r);
    }
}

TEST(SparseDrivers, HermitianDriversSolveWithCholeskyJacobiAndSsor) {
    const Coo m = sparse_test::read_matrix("gr_30_30");
    const std::vector<Complex> a = sparse_test::complexify(m), b = right_side<Complex>(m.n),
                               full = sparse_test::dense(m, a);
    const int n = m.n, nnz = m.nnz(), maxitn = 800;
    const double tol = 1e-10;
    std::vector<Complex> work(12 * n + 200);
    const int lwork = static_cast<int>(work.size());
    std::vector<int> iwork(static_cast<std::size_t>(n));
    for (const Row &r : {Row{"CG", "N", 0.0}, Row{"CG", "J", 0.0}, Row{"SYMMLQ", "S", 1.5}, Row{"CG", "S", 1.0}}) {
        SCOPED_TRACE(std::string(r.method) + " " + r.precon);
        std::vector<Complex> x(b.size());
        int itn = 0, ifail = 1;
        double rnorm = 0.0;
        F11JSF(r.method, r.precon, &n, &nnz, d(a), m.irow.data(), m.icol.data(), &r.omega, d(b), &tol, &maxitn, d(x),
               &rnorm, &itn, d(work), &lwork, iwork.data(), &ifail, len(r.method), 1);
        EXPECT_EQ(ifail, 0);
        EXPECT_LT(sparse_test::relative_residual(n, full, x, b), 1e-9);
    }
    // Incomplete Cholesky of level 1 as the preconditioner, then a factor corrupted between the calls.
    const int la = 10 * nnz, lfill = 1, liwork = 7 * n + 1 + 2 * la - 3 * nnz;
    const double dtol = 0.0, dscale = 1.0;
    std::vector<Complex> fa(static_cast<std::size_t>(la));
    std::vector<int> irow(fa.size()), icol(fa.size()), ipiv(static_cast<std::size_t>(n)), istr(ipiv.size() + 1),
        liw(static_cast<std::size_t>(liwork));
    std::copy(a.begin(), a.end(), fa.begin());
    std::copy(m.irow.begin(), m.irow.end(), irow.begin());
    std::copy(m.icol.begin(), m.icol.end(), icol.begin());
    int nnzc = 0, npivm = 0, ifail = 1;
    F11JNF(&n, &nnz, d(fa), &la, irow.data(), icol.data(), &lfill, &dtol, "N", &dscale, "M", ipiv.data(), istr.data(),
           &nnzc, &npivm, liw.data(), &liwork, &ifail, 1, 1);
    ASSERT_EQ(ifail, 0);
    for (const char *method : {"CG", "SYMMLQ"}) {
        std::vector<Complex> x(b.size());
        int itn = 0;
        double rnorm = 0.0;
        ifail = 1;
        F11JQF(method, &n, &nnz, d(fa), &la, irow.data(), icol.data(), ipiv.data(), istr.data(), d(b), &tol, &maxitn,
               d(x), &rnorm, &itn, d(work), &lwork, &ifail, len(method));
        EXPECT_EQ(ifail, 0) << method;
        EXPECT_LT(sparse_test::relative_residual(n, full, x, b), 1e-9) << method;
    }
    std::swap(ipiv[0], ipiv[1]);
    ipiv[1] = ipiv[0];
    std::vector<Complex> x(b.size());
    int itn = 0;
    double rnorm = 0.0;
    ifail = 1;
    F11JQF("CG", &n, &nnz, d(fa), &la, irow.data(), icol.data(), ipiv.data(), istr.data(), d(b), &tol, &maxitn, d(x),
           &rnorm, &itn, d(work), &lwork, &ifail, 2);
    EXPECT_EQ(ifail, 3);
}

TEST(SparseDrivers, ComplexIncompleteLuDriverSolves) {
    const Coo m = sparse_test::expand(sparse_test::read_matrix("west0067"));
    const std::vector<Complex> a = sparse_test::complexify(m), b = right_side<Complex>(m.n);
    const int n = m.n, nnz = m.nnz(), la = 20 * nnz, lfill = 1, liwork = 7 * n + 2, maxitn = 500;
    const double dtol = 0.0, tol = 1e-10;
    std::vector<Complex> fa(static_cast<std::size_t>(la)), x(b.size()), work(60000);
    std::vector<int> irow(fa.size()), icol(fa.size()), ipivp(static_cast<std::size_t>(n)), ipivq(ipivp.size()),
        istr(ipivp.size() + 1), idiag(ipivp.size()), iwork(static_cast<std::size_t>(liwork));
    std::copy(a.begin(), a.end(), fa.begin());
    std::copy(m.irow.begin(), m.irow.end(), irow.begin());
    std::copy(m.icol.begin(), m.icol.end(), icol.begin());
    int nnzc = 0, npivm = 0, ifail = 1, itn = 0;
    const int lwork = static_cast<int>(work.size());
    double rnorm = 0.0;
    F11DNF(&n, &nnz, d(fa), &la, irow.data(), icol.data(), &lfill, &dtol, "C", "N", ipivp.data(), ipivq.data(),
           istr.data(), idiag.data(), &nnzc, &npivm, iwork.data(), &liwork, &ifail, 1, 1);
    ASSERT_EQ(ifail, 0);
    for (const char *method : {"RGMRES", "BICGSTAB", "TFQMR"}) {
        const int order = *method == 'R' ? 20 : 4;
        std::fill(x.begin(), x.end(), Complex(0.0));
        ifail = 1;
        F11DQF(method, &n, &nnz, d(fa), &la, irow.data(), icol.data(), ipivp.data(), ipivq.data(), istr.data(),
               idiag.data(), d(b), &order, &tol, &maxitn, d(x), &rnorm, &itn, d(work), &lwork, &ifail, len(method));
        EXPECT_EQ(ifail, 0) << method;
        EXPECT_LT(sparse_test::relative_residual(n, sparse_test::dense(m, a), x, b), 1e-9) << method;
    }
}

// A 5 by 5 nonsymmetric matrix with a full diagonal, in CS, and its lower triangle made Hermitian.
Coo small(bool lower) {
    Coo m;
    m.n = 5;
    m.symmetric = lower;
    for (int i = 1; i <= 5; ++i)
        for (int j = 1; j <= 5; ++j) {
            if (i != j && (i + 2 * j) % 3 == 0) continue;
            if (lower && j > i) continue;
            m.irow.push_back(i), m.icol.push_back(j);
            m.a.push_back(i == j ? 6.0 + i : 0.5 * (i - j) + 0.25 * j);
        }
    return m;
}

// || (D/w + L) inverse(D) (D/w + U) x - ((2 - w)/w) v ||, the triangles from the dense matrix F.
template <class T> double ssor_defect(int n, const std::vector<T> &f, double w, const std::vector<T> &x,
                                      const std::vector<T> &v) {
    auto at = [&](int i, int j) { return f[static_cast<std::size_t>(i + j * n)]; };
    std::vector<T> y(static_cast<std::size_t>(n)), z(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        y[i] = at(i, i) / w * x[i];
        for (int j = i + 1; j < n; ++j) y[i] += at(i, j) * x[j];
        y[i] /= at(i, i);
    }
    double worst = 0.0;
    for (int i = 0; i < n; ++i) {
        z[i] = at(i, i) / w * y[i];
        for (int j = 0; j < i; ++j) z[i] += at(i, j) * y[j];
        worst = std::max(worst, std::abs(z[i] - (2.0 - w) / w * v[i]));
    }
    return worst;
}

template <class T> void ssor_case(bool hermitian, const char *trans) {
    const Coo m = small(hermitian);
    const std::vector<T> a = values_of<T>(m), v = right_side<T>(m.n);
    std::vector<T> f = sparse_test::dense(m, a), x(v.size());
    if (*trans == 'T')
        for (int i = 0; i < m.n; ++i)
            for (int j = 0; j < i; ++j) std::swap(f[i + j * m.n], f[j + i * m.n]);
    const int n = m.n, nnz = m.nnz();
    const double omega = 1.3;
    int ifail = 1;
    if (hermitian)
        F11JRF(&n, &nnz, d(a), m.irow.data(), m.icol.data(), &omega, "C", d(v), d(x), &ifail, 1);
    else
        (std::is_same_v<T, double> ? F11DDF : F11DRF)(trans, &n, &nnz, d(a), m.irow.data(), m.icol.data(), &omega, "C",
                                                      d(v), d(x), &ifail, 1, 1);
    EXPECT_EQ(ifail, 0);
    EXPECT_LT(ssor_defect(n, f, omega, x, v), 1e-13) << trans << hermitian;
}

TEST(SparseRelaxation, SsorStepSolvesItsSplitting) {
    ssor_case<double>(false, "N");
    ssor_case<double>(false, "T");
    ssor_case<Complex>(false, "N");
    ssor_case<Complex>(false, "T");
    ssor_case<Complex>(true, "N");
}

template <class T> void jacobi_case(const char *trans) {
    const Coo m = small(false);
    const std::vector<T> a = values_of<T>(m), v = right_side<T>(m.n);
    std::vector<T> f = sparse_test::dense(m, a), x(v.size()), diag(v.size()), work(v.size());
    if (*trans == 'T')
        for (int i = 0; i < m.n; ++i)
            for (int j = 0; j < i; ++j) std::swap(f[i + j * m.n], f[j + i * m.n]);
    const int n = m.n, nnz = m.nnz(), first = 2, more = 80;
    int ifail = 1;
    auto *jacobi = std::is_same_v<T, double> ? F11DKF : F11DXF;
    // A few sweeps finding the diagonal, then the rest with the stored one.
    jacobi("N", trans, "I", &first, &n, &nnz, d(a), m.irow.data(), m.icol.data(), "C", d(v), d(x), d(diag), d(work),
           &ifail, 1, 1, 1, 1);
    EXPECT_EQ(ifail, 0);
    jacobi("S", trans, "N", &more, &n, &nnz, d(a), m.irow.data(), m.icol.data(), "N", d(v), d(x), d(diag), d(work),
           &ifail, 1, 1, 1, 1);
    EXPECT_EQ(ifail, 0);
    EXPECT_LT(sparse_test::relative_residual(n, f, x, v), 1e-13) << trans;
}

TEST(SparseRelaxation, JacobiIterationConvergesOnADominantMatrix) {
    jacobi_case<double>("N");
    jacobi_case<double>("T");
    jacobi_case<Complex>("N");
    jacobi_case<Complex>("T");
}

// The CGS engine driven directly after the set-up routine, with the record's sequence checked by its
// workers; the engine of another method refuses the record.
TEST(SparseEngines, EngineRunsAMethodAndTheRecordWorkersTrackIt) {
    const Coo m = small(false);
    const std::vector<double> f = sparse_test::dense(m), v0 = right_side<double>(m.n);
    const int n = m.n, iterm = 1, order = 0, maxitn = 50, monit = 0;
    const double tol = 1e-12, anorm = 0.0, sigmax = 0.0;
    std::vector<double> work(400), u(v0.size(), 0.0), v = v0, record(100);
    int lwreq = 0, lwork = 400, ifail = 1, status = -1, irevcm = 0;
    F11BDF("CGS", "N", "I", "N", &iterm, &n, &order, &tol, &maxitn, &anorm, &sigmax, &monit, &lwreq, work.data(),
           &lwork, &ifail, 3, 1, 1, 1);
    ASSERT_EQ(ifail, 0);
    F11_SEQUENCE_CHECK(4, work.data(), &status);
    EXPECT_EQ(status, 1);
    F11_SEQUENCE_CHECK(2, work.data(), &status);
    EXPECT_EQ(status, 0);
    F11_TFQMR_ENGINE(&irevcm, u.data(), v.data(), nullptr, work.data(), &status);
    EXPECT_EQ(status, 3);
    for (int calls = 0; calls < 1000; ++calls) {
        F11_CGS_ENGINE(&irevcm, u.data(), v.data(), nullptr, work.data(), &status);
        if (irevcm == 4) break;
        ASSERT_TRUE(irevcm == 1 || irevcm == -1) << irevcm;
        for (int i = 0; i < n; ++i) {
            v[i] = 0.0;
            for (int j = 0; j < n; ++j) v[i] += (irevcm == 1 ? f[i + j * n] : f[j + i * n]) * u[j];
        }
    }
    EXPECT_EQ(status, 0);
    EXPECT_LT(sparse_test::relative_residual(n, f, u, v0), 1e-12);
    F11_SEQUENCE_CHECK(3, work.data(), &status);
    F11_SEQUENCE_CHECK(4, work.data(), &status);
    EXPECT_EQ(status, 0);
    F11_STATE_TRANSFER("get", record.data(), work.data(), 3);
    record[3] = 0.0;
    F11_STATE_TRANSFER("Put", record.data(), work.data(), 3);
    F11_SEQUENCE_CHECK(0, work.data(), &status);
    EXPECT_EQ(status, 1);
    const double w[] = {1.0, 2.0}, x[] = {3.0, -4.0};
    EXPECT_DOUBLE_EQ(F11_VECTOR_NORM(5, 0, 2, x, w), std::sqrt(73.0));
    EXPECT_DOUBLE_EQ(F11_VECTOR_NORM(2, 1, 2, x, w), 5.0);
}

} // namespace
