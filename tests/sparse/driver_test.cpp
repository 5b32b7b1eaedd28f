// The drivers on the Matrix Market matrices (real, and complex ones built from them), the SSOR step
// against its splitting, the Jacobi iteration, and an exported engine driven by this test's own loop.
// Residuals are formed here.
#include <tuple>

#include "sparse_fixtures.h"

namespace {

using sparse_test::Complex;
using sparse_test::Coo;
using sparse_test::dense;
using sparse_test::len;
using sparse_test::right_side;
using sparse_test::twin;
using sparse_test::values_of;

template <class T> double *d(const std::vector<T> &v) { return sparse_test::raw(v); }

// Jacobi and SSOR built into the general drivers; without a preconditioner sherman1 is out of reach.
template <class T> void relaxed(const char *method, const char *precon, double omega, int expected) {
    SCOPED_TRACE(std::string(method) + " " + precon + (std::is_same_v<T, double> ? " real" : " complex"));
    const Coo m = sparse_test::expand(sparse_test::read_matrix("sherman1"));
    const std::vector<T> a = values_of<T>(m), b = right_side<T>(m.n), x(b.size()), work(120000);
    std::vector<int> iwork(static_cast<std::size_t>(m.n));
    const int n = m.n, nnz = m.nnz(), order = *method == 'B' ? 4 : 50, maxitn = 1000, lwork = 120000;
    const double tol = 1e-10;
    int itn = 0, ifail = 1;
    double rnorm = -1.0;
    twin<T>(F11DEF, F11DSF)(method, precon, &n, &nnz, d(a), m.irow.data(), m.icol.data(), &omega,
                                                  d(b), &order, &tol, &maxitn, d(x), &rnorm, &itn, d(work), &lwork,
                                                  iwork.data(), &ifail, len(method), 1);
    EXPECT_EQ(ifail, expected);
    EXPECT_LT(sparse_test::relative_residual(n, dense(m, a), x, b), expected == 0 ? 1e-9 : 1e-5);
}

TEST(SparseDrivers, JacobiAndSsorDriversSolveRealAndComplexSystems) {
    for (auto run : {relaxed<double>, relaxed<Complex>}) {
        run("RGMRES", "N", 0.0, 5);
        run("RGMRES", "J", 0.0, 0);
        run("RGMRES", "S", 1.2, 0);
        run("BICGSTAB", "S", 1.0, 0);
        run("TFQMR", "J", 0.0, 0);
        run("CGS", "S", 0.8, 0);
    }
}

TEST(SparseDrivers, ComplexDriversSolveWithFactorsJacobiAndSsor) {
    const Coo h = sparse_test::read_matrix("gr_30_30"), g = sparse_test::expand(sparse_test::read_matrix("west0067"));
    const std::vector<Complex> ha = sparse_test::complexify(h), hb = right_side<Complex>(h.n), work(12 * h.n + 200),
                               ga = sparse_test::complexify(g), gb = right_side<Complex>(g.n);
    const int n = h.n, nnz = h.nnz(), gn = g.n, gnnz = g.nnz(), maxitn = 800, lwork = 12 * n + 200;
    const double tol = 1e-10;
    std::vector<int> iwork(static_cast<std::size_t>(n));
    int itn = 0, ifail = 1;
    double rnorm = 0.0;
    for (auto [method, precon, omega] : {std::tuple("CG", "J", 0.0), {"SYMMLQ", "S", 1.5}, {"CG", "S", 1.0}}) {
        const std::vector<Complex> x(hb.size());
        F11JSF(method, precon, &n, &nnz, d(ha), h.irow.data(), h.icol.data(), &omega, d(hb), &tol, &maxitn, d(x),
               &rnorm, &itn, d(work), &lwork, iwork.data(), &ifail, len(method), 1);
        EXPECT_EQ(ifail, 0) << method << precon;
        EXPECT_LT(sparse_test::relative_residual(n, dense(h, ha), x, hb), 1e-9) << method << precon;
    }
    const sparse_test::Factors<Complex> c = sparse_test::factor_ic(h, ha, 1, "M", 10 * static_cast<std::size_t>(nnz)),
                                        f = sparse_test::factor_lu(g, ga, 1, "C", "N", 20);
    const int la = c.la, gla = f.la;
    for (const char *method : {"CG", "SYMMLQ", "RGMRES", "BICGSTAB", "TFQMR"}) {
        const std::vector<Complex> x(hb.size());
        const int order = *method == 'R' ? 20 : 4;
        if (*method == 'C' || *method == 'S')
            F11JQF(method, &n, &nnz, d(c.a), &la, c.irow.data(), c.icol.data(), c.ipiv.data(), c.istr.data(), d(hb), &tol,
                   &maxitn, d(x), &rnorm, &itn, d(work), &lwork, &ifail, len(method));
        else
            F11DQF(method, &gn, &gnnz, d(f.a), &gla, f.irow.data(), f.icol.data(), f.ipiv.data(), f.ipivq.data(),
                   f.istr.data(), f.idiag.data(), d(gb), &order, &tol, &maxitn, d(x), &rnorm, &itn, d(work), &lwork,
                   &ifail, len(method));
        EXPECT_EQ(ifail, 0) << method;
        const bool hermitian = *method == 'C' || *method == 'S';
        EXPECT_LT(hermitian ? sparse_test::relative_residual(n, dense(h, ha), x, hb)
                            : sparse_test::relative_residual(gn, dense(g, ga), std::vector<Complex>(x.begin(), x.begin() + gn), gb),
                  1e-9) << method;
    }
}

// A 5 by 5 nonsymmetric matrix with a dominant diagonal in CS, or its lower triangle (Hermitian SCS).
Coo small(bool lower) {
    Coo m;
    m.n = 5, m.symmetric = lower;
    for (int i = 1; i <= 5; ++i)
        for (int j = 1; j <= (lower ? i : 5); ++j)
            if (i == j || (i + 2 * j) % 3 != 0)
                m.irow.push_back(i), m.icol.push_back(j), m.a.push_back(i == j ? 6.0 + i : 0.5 * (i - j) + 0.25 * j);
    return m;
}
// (D/w + L) inverse(D) (D/w + U) x = ((2 - w)/w) v, checked with the dense triangles.
template <class T> void ssor_case(bool hermitian, const char *trans) {
    const Coo m = small(hermitian);
    const std::vector<T> a = values_of<T>(m), v = right_side<T>(m.n), f = dense(m, a, *trans == 'T'), x(v.size());
    const int n = m.n, nnz = m.nnz();
    const double w = 1.3;
    int ifail = 1;
    if (hermitian) F11JRF(&n, &nnz, d(a), m.irow.data(), m.icol.data(), &w, "C", d(v), d(x), &ifail, 1);
    else twin<T>(F11DDF, F11DRF)(trans, &n, &nnz, d(a), m.irow.data(), m.icol.data(), &w, "C", d(v), d(x), &ifail, 1, 1);
    EXPECT_EQ(ifail, 0);
    std::vector<T> y(x.size());
    for (int i = 0; i < n; ++i) {
        y[i] = f[i + i * n] / w * x[i];
        for (int j = i + 1; j < n; ++j) y[i] += f[i + j * n] * x[j];
        y[i] /= f[i + i * n];
    }
    for (int i = n - 1; i >= 0; --i) {
        T z = f[i + i * n] / w * y[i];
        for (int j = 0; j < i; ++j) z += f[i + j * n] * y[j];
        EXPECT_LT(std::abs(z - (2.0 - w) / w * v[i]), 1e-13) << trans << hermitian << i;
    }
}

// A few Jacobi sweeps finding the diagonal, then the rest with the stored one.
template <class T> void jacobi_case(const char *trans) {
    const Coo m = small(false);
    const std::vector<T> a = values_of<T>(m), v = right_side<T>(m.n), x(v.size()), diag(v.size()), work(v.size());
    const int n = m.n, nnz = m.nnz(), first = 2, more = 80;
    int ifail = 1;
    auto *jacobi = twin<T>(F11DKF, F11DXF);
    jacobi("N", trans, "I", &first, &n, &nnz, d(a), m.irow.data(), m.icol.data(), "C", d(v), d(x), d(diag), d(work), &ifail, 1, 1, 1, 1);
    jacobi("S", trans, "N", &more, &n, &nnz, d(a), m.irow.data(), m.icol.data(), "N", d(v), d(x), d(diag), d(work), &ifail, 1, 1, 1, 1);
    EXPECT_EQ(ifail, 0);
    EXPECT_LT(sparse_test::relative_residual(n, dense(m, a, *trans == 'T'), x, v), 1e-13) << trans;
}

TEST(SparseRelaxation, SsorStepSolvesItsSplittingAndJacobiConverges) {
    for (const char *trans : {"N", "T"}) {
        ssor_case<double>(false, trans), ssor_case<Complex>(false, trans);
        jacobi_case<double>(trans), jacobi_case<Complex>(trans);
    }
    ssor_case<Complex>(true, "N");
}

// The CGS engine driven straight after the set-up routine, the record's state followed by its workers.
TEST(SparseEngines, EngineRunsItsMethodAndTheRecordWorkersFollowIt) {
    const Coo m = small(false);
    const std::vector<double> f = dense(m), v0 = right_side<double>(m.n);
    const int n = m.n, iterm = 1, order = 0, maxitn = 50, monit = 0, lwork = 400;
    const double tol = 1e-12, anorm = 0.0, sigmax = 0.0;
    std::vector<double> work(400), u(v0.size(), 0.0), v = v0, record(100);
    int lwreq = 0, ifail = 1, status = -1, irevcm = 0;
    F11BDF("CGS", "N", "I", "N", &iterm, &n, &order, &tol, &maxitn, &anorm, &sigmax, &monit, &lwreq, work.data(),
           &lwork, &ifail, 3, 1, 1, 1);
    F11_SEQUENCE_CHECK(4, work.data(), &status);
    EXPECT_EQ(status, 1);
    F11_TFQMR_ENGINE(&irevcm, u.data(), v.data(), nullptr, work.data(), &status);
    EXPECT_EQ(status, 3);
    for (int calls = 0; calls < 1000 && irevcm != 4; ++calls) {
        F11_CGS_ENGINE(&irevcm, u.data(), v.data(), nullptr, work.data(), &status);
        for (int i = 0; i < n && irevcm != 4; ++i) {
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
}

} // namespace
