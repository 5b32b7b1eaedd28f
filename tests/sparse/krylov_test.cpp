// The Krylov suites driven by this test's own reverse-communication loop, with its own dense-free
// product and the incomplete LU as preconditioner; residuals formed here.  Two problems interleaved.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <string>
#include <vector>

#include "sparse_fixtures.h"
#include "zek2/f11.h"

namespace {

using sparse_test::Complex;
using sparse_test::Coo;

// One problem: its matrix, incomplete LU factors, right-hand side and WORK.
template <class T> struct Problem {
    Coo m;
    std::vector<T> values, fa, b, x, work;
    std::vector<int> firow, ficol, ipivp, ipivq, istr, idiag;
    int irevcm = 0, ifail = 1, lwork = 0;
    bool precon = true;

    Problem(const std::string &name, const char *method, int order, bool with_precon) : precon(with_precon) {
        m = sparse_test::expand(sparse_test::read_matrix(name));
        if constexpr (std::is_same_v<T, double>) values = m.a;
        else values = sparse_test::complexify(m);
        const int n = m.n, nnz = m.nnz(), la = 20 * nnz, lfill = 1, liwork = 7 * n + 2;
        fa.assign(static_cast<std::size_t>(la), T(0.0));
        firow.assign(fa.size(), 0);
        ficol.assign(fa.size(), 0);
        std::copy(values.begin(), values.end(), fa.begin());
        std::copy(m.irow.begin(), m.irow.end(), firow.begin());
        std::copy(m.icol.begin(), m.icol.end(), ficol.begin());
        ipivp.resize(static_cast<std::size_t>(n)), ipivq.resize(ipivp.size()), istr.resize(ipivp.size() + 1),
            idiag.resize(ipivp.size());
        std::vector<int> iwork(static_cast<std::size_t>(liwork));
        int nnzc = 0, npivm = 0, f = 1;
        const double dtol = 0.0;
        double *a = reinterpret_cast<double *>(fa.data());
        if constexpr (std::is_same_v<T, double>)
            F11DAF(&n, &nnz, a, &la, firow.data(), ficol.data(), &lfill, &dtol, "C", "N", ipivp.data(), ipivq.data(),
                   istr.data(), idiag.data(), &nnzc, &npivm, iwork.data(), &liwork, &f, 1, 1);
        else
            F11DNF(&n, &nnz, a, &la, firow.data(), ficol.data(), &lfill, &dtol, "C", "N", ipivp.data(), ipivq.data(),
                   istr.data(), idiag.data(), &nnzc, &npivm, iwork.data(), &liwork, &f, 1, 1);
        EXPECT_EQ(f, 0);
        b.resize(ipivp.size());
        for (std::size_t i = 0; i < b.size(); ++i) b[i] = T(1.0 + std::sin(static_cast<double>(i)));
        x.assign(b.size(), T(0.0));
        const int itn = 1, maxitn = 500, monit = 0;
        const double tol = 1e-10, anorm = 0.0, sigmax = 0.0;
        int lwreq = 0;
        work.assign(100000, T(0.0));
        lwork = static_cast<int>(work.size());
        if constexpr (std::is_same_v<T, double>)
            F11BDF(method, precon ? "P" : "N", "I", "N", &itn, &n, &order, &tol, &maxitn, &anorm, &sigmax, &monit,
                   &lwreq, w(), &lwork, &ifail, static_cast<int>(std::string(method).size()), 1, 1, 1);
        else
            F11BRF(method, precon ? "P" : "N", "I", "N", &itn, &n, &order, &tol, &maxitn, &anorm, &sigmax, &monit,
                   &lwreq, w(), &lwork, &ifail, static_cast<int>(std::string(method).size()), 1, 1, 1);
        EXPECT_EQ(ifail, 0);
        EXPECT_LE(lwreq, lwork);
        u_.assign(b.size(), T(0.0));
        v_ = b;
    }
    double *w() { return reinterpret_cast<double *>(work.data()); }
    std::vector<T> u_, v_;

    // One call of the solver and the answer to its request; false once finished.
    bool step() {
        ifail = 1;
        if constexpr (std::is_same_v<T, double>)
            F11BEF(&irevcm, u_.data(), v_.data(), nullptr, w(), &lwork, &ifail);
        else
            F11BSF(&irevcm, reinterpret_cast<double *>(u_.data()), reinterpret_cast<double *>(v_.data()), nullptr, w(),
                   &lwork, &ifail);
        const int n = m.n, nnz = m.nnz(), la = static_cast<int>(fa.size());
        int f = 1;
        double *u = reinterpret_cast<double *>(u_.data()), *v = reinterpret_cast<double *>(v_.data());
        const double *a = reinterpret_cast<const double *>(values.data());
        const double *fac = reinterpret_cast<const double *>(fa.data());
        if (irevcm == 1 || irevcm == -1) {
            const char *t = irevcm == 1 ? "N" : "T";
            if constexpr (std::is_same_v<T, double>)
                F11XAF(t, &n, &nnz, a, m.irow.data(), m.icol.data(), "N", u, v, &f, 1, 1);
            else
                F11XNF(t, &n, &nnz, a, m.irow.data(), m.icol.data(), "N", u, v, &f, 1, 1);
        } else if (irevcm == 2) {
            if constexpr (std::is_same_v<T, double>)
                F11DBF("N", &n, fac, &la, firow.data(), ficol.data(), ipivp.data(), ipivq.data(), istr.data(),
                       idiag.data(), "N", u, v, &f, 1, 1);
            else
                F11DPF("N", &n, fac, &la, firow.data(), ficol.data(), ipivp.data(), ipivq.data(), istr.data(),
                       idiag.data(), "N", u, v, &f, 1, 1);
        }
        return irevcm != 4;
    }
    double residual() const {
        return sparse_test::relative_residual(m.n, sparse_test::dense(m, values), u_, b);
    }
};

struct Case {
    const char *method;
    int order;
    bool precon;
};
const Case kCases[] = {{"RGMRES", 20, true}, {"RGMRES", 30, false}, {"CGS", 0, true}, {"BICGSTAB", 1, true},
                       {"BICGSTAB", 4, true}, {"TFQMR", 0, true}};

TEST(SparseKrylov, EveryMethodConvergesOnMatrixMarketProblems) {
    for (const Case &c : kCases) {
        // Without a preconditioner only the grid Laplacian is within reach.
        for (const char *name : {"sherman1", "west0067", "gr_30_30"}) {
            if (c.precon == (std::string(name) == "gr_30_30")) continue;
            SCOPED_TRACE(std::string(c.method) + " " + std::to_string(c.order) + " " + name);
            Problem<double> p(name, c.method, c.order, c.precon);
            for (int calls = 0; calls < 100000 && p.step(); ++calls) {
            }
            ASSERT_EQ(p.irevcm, 4);
            EXPECT_EQ(p.ifail, 0);
            EXPECT_LT(p.residual(), 1e-9);
            int itn = 0, lw = p.lwork, f = 1;
            double lhs, rhs, an, sg;
            F11BFF(&itn, &lhs, &rhs, &an, &sg, p.w(), &lw, &f);
            EXPECT_EQ(f, 0);
            EXPECT_LE(lhs, rhs);
            EXPECT_GT(itn, 0);
            EXPECT_GT(an, 0.0); // the estimated norm
        }
    }
}

TEST(SparseKrylov, ComplexSuiteAndInterleavedProblems) {
    for (const Case &c : kCases) {
        SCOPED_TRACE(std::string(c.method) + " " + std::to_string(c.order));
        Problem<Complex> z("west0067", c.method, c.order, true);
        Problem<double> r("sherman1", c.method, c.order, true);
        bool zr = true, rr = true;
        for (int calls = 0; calls < 100000 && (zr || rr); ++calls) {
            if (zr) zr = z.step();
            if (rr) rr = r.step();
        }
        EXPECT_EQ(z.ifail, 0);
        EXPECT_EQ(r.ifail, 0);
        EXPECT_LT(z.residual(), 1e-9);
        EXPECT_LT(r.residual(), 1e-9);
    }
}

TEST(SparseKrylov, ZeroRightHandSideAndStops) {
    Problem<double> p("west0067", "CGS", 0, true);
    std::fill(p.v_.begin(), p.v_.end(), 0.0);
    EXPECT_FALSE(p.step());
    EXPECT_EQ(p.ifail, 0);
    EXPECT_EQ(p.u_, std::vector<double>(p.u_.size(), 0.0));
    // A further call reports the finished sequence.
    p.irevcm = 4;
    p.ifail = 1;
    F11BEF(&p.irevcm, p.u_.data(), p.v_.data(), nullptr, p.w(), &p.lwork, &p.ifail);
    EXPECT_EQ(p.ifail, 1);

    Problem<double> q("sherman1", "TFQMR", 0, true);
    q.step();
    q.irevcm = 6;
    EXPECT_FALSE(q.step());
    EXPECT_EQ(q.ifail, 8);

    Problem<double> t("sherman1", "RGMRES", 2, false);
    for (int i = 0; i < 3; ++i) t.step();
    t.irevcm = 5;
    for (int calls = 0; calls < 1000 && t.step(); ++calls) {
    }
    EXPECT_EQ(t.ifail, 4);
}

TEST(SparseKrylov, SetUpRefusesBadArguments) {
    struct Row { const char *method, *norm; int iterm, n, m; double tol, anorm; int ifail; };
    const Row rows[] = {{"GMRES", "I", 1, 10, 2, 0.0, 0.0, -1}, {"TFQMR", "2", 2, 10, 0, 0.0, 0.0, -5},
                        {"CGS", "2", 1, 10, 0, 0.0, 0.0, -10},  {"RGMRES", "I", 1, 60, 51, 0.0, 0.0, -7},
                        {"RGMRES", "I", 1, 5, 6, 0.0, 0.0, -7}, {"CGS", "I", 1, 10, 0, 1.0, 0.0, -8}};
    for (const Row &r : rows) {
        std::vector<double> work(200);
        int lwork = 200, lwreq = 0, ifail = 1, maxitn = 10, monit = 0;
        const double sigmax = 0.0;
        F11BDF(r.method, "N", r.norm, "N", &r.iterm, &r.n, &r.m, &r.tol, &maxitn, &r.anorm, &sigmax, &monit, &lwreq,
               work.data(), &lwork, &ifail, static_cast<int>(std::string(r.method).size()), 1, 1, 1);
        EXPECT_EQ(ifail, r.ifail) << r.method;
    }
}

TEST(SparseDriver, IncompleteLuDriverSolvesAndChecksItsFactors) {
    for (const Case &c : kCases) {
        SCOPED_TRACE(std::string(c.method) + " " + std::to_string(c.order));
        Problem<double> p("sherman1", c.method, c.order, true);
        const int n = p.m.n, nnz = p.m.nnz(), la = static_cast<int>(p.fa.size()), maxitn = 500;
        const int order = c.order > 0 ? c.order : 1;
        const double tol = 1e-10;
        std::vector<double> x(p.b.size(), 0.0), work(200000);
        int itn = 0, ifail = 1, lwork = static_cast<int>(work.size());
        double rnorm = 0.0;
        F11DCF(c.method, &n, &nnz, p.fa.data(), &la, p.firow.data(), p.ficol.data(), p.ipivp.data(), p.ipivq.data(),
               p.istr.data(), p.idiag.data(), p.b.data(), &order, &tol, &maxitn, x.data(), &rnorm, &itn, work.data(),
               &lwork, &ifail, static_cast<int>(std::string(c.method).size()));
        EXPECT_EQ(ifail, 0);
        EXPECT_GT(itn, 0);
        EXPECT_LT(sparse_test::relative_residual(n, sparse_test::dense(p.m), x, p.b), 1e-9);
        p.idiag[3] = p.idiag[2];
        std::fill(x.begin(), x.end(), 0.0);
        ifail = 1;
        F11DCF(c.method, &n, &nnz, p.fa.data(), &la, p.firow.data(), p.ficol.data(), p.ipivp.data(), p.ipivq.data(),
               p.istr.data(), p.idiag.data(), p.b.data(), &order, &tol, &maxitn, x.data(), &rnorm, &itn, work.data(),
               &lwork, &ifail, static_cast<int>(std::string(c.method).size()));
        EXPECT_EQ(ifail, 3);
    }
}

} // namespace
