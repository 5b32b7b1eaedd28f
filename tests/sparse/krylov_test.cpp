// The Krylov suites driven by this test's own reverse-communication loop, with its own dense-free
// product and the incomplete LU as preconditioner; residuals formed here.  Real and complex problems
// interleaved.
#include "sparse_fixtures.h"

namespace {

using sparse_test::Complex;
using sparse_test::Coo;
using sparse_test::Factors;
using sparse_test::raw;
using sparse_test::twin;

// One problem: its matrix, incomplete LU factors, right-hand side and WORK.
template <class T> struct Problem {
    int irevcm = 0, ifail = 1, lwork = 100000;
    bool done = false;
    Coo m;
    std::vector<T> values, b, work, u_, v_;
    Factors<T> f;

    Problem(const std::string &name, const char *method, int order, bool precon)
        : m(sparse_test::expand(sparse_test::read_matrix(name))), values(sparse_test::values_of<T>(m)),
          b(m.n), work(static_cast<std::size_t>(lwork)), u_(b.size()), f(sparse_test::factor_lu(m, values, 1, "C", "N", 20)) {
        const int itn = 1, maxitn = 500, monit = 0;
        const double tol = 1e-10, anorm = 0.0, sigmax = 0.0;
        EXPECT_EQ(f.ifail, 0);
        for (std::size_t i = 0; i < b.size(); ++i) b[i] = T(1.0 + std::sin(static_cast<double>(i)));
        int lwreq = 0;
        twin<T>(F11BDF, F11BRF)(method, precon ? "P" : "N", "I", "N", &itn, &m.n, &order, &tol, &maxitn, &anorm,
                                &sigmax, &monit, &lwreq, w(), &lwork, &ifail, sparse_test::len(method), 1,
                                1, 1);
        EXPECT_EQ(ifail, 0);
        EXPECT_LE(lwreq, lwork);
        v_ = b;
    }
    double *w() { return raw(work); }

    // One call of the solver and the answer to its request; false once finished.
    bool step() {
        if (done) return false;
        ifail = 1;
        twin<T>(F11BEF, F11BSF)(&irevcm, raw(u_), raw(v_), nullptr, w(), &lwork, &ifail);
        const int nnz = m.nnz();
        int fail = 1;
        if (irevcm == 1 || irevcm == -1)
            twin<T>(F11XAF, F11XNF)(irevcm == 1 ? "N" : "T", &m.n, &nnz, raw(values), m.irow.data(), m.icol.data(), "N",
                                    raw(u_), raw(v_), &fail, 1, 1);
        else if (irevcm == 2)
            twin<T>(F11DBF, F11DPF)("N", &m.n, raw(f.a), &f.la, f.irow.data(), f.icol.data(), f.ipiv.data(),
                                    f.ipivq.data(), f.istr.data(), f.idiag.data(), "N", raw(u_), raw(v_), &fail, 1, 1);
        done = irevcm == 4;
        return !done;
    }
    double residual() const { return sparse_test::relative_residual(m.n, sparse_test::dense(m, values), u_, b); }
};

struct Case {
    const char *method;
    int order;
    bool precon;
};
const Case kCases[] = {{"RGMRES", 20, true}, {"RGMRES", 30, false}, {"CGS", 0, true}, {"BICGSTAB", 1, true},
                       {"BICGSTAB", 4, true}, {"TFQMR", 0, true}};

// Preconditioned, the real sherman1 and west0067 and the complex form of west0067, interleaved; without
// a preconditioner only the grid Laplacian is within reach.
TEST(SparseKrylov, EveryMethodConvergesOnInterleavedProblems) {
    for (const Case &c : kCases) {
        SCOPED_TRACE(std::string(c.method) + " " + std::to_string(c.order));
        std::vector<Problem<double>> real;
        for (const char *name : {"sherman1", "west0067", "gr_30_30"})
            if (c.precon != (std::string(name) == "gr_30_30")) real.emplace_back(name, c.method, c.order, c.precon);
        Problem<Complex> z("west0067", c.method, c.order, true);
        z.done = !c.precon;
        for (int calls = 0, running = 1; calls < 100000 && running; ++calls) {
            running = z.step();
            for (Problem<double> &p : real) running |= p.step();
        }
        if (c.precon) {
            EXPECT_EQ(z.ifail, 0);
            EXPECT_LT(z.residual(), 1e-9);
        }
        for (Problem<double> &p : real) {
            SCOPED_TRACE(p.m.n);
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

TEST(SparseKrylov, ZeroRightHandSideAndStops) {
    Problem<double> p("west0067", "CGS", 0, true);
    std::fill(p.v_.begin(), p.v_.end(), 0.0);
    EXPECT_FALSE(p.step());
    EXPECT_EQ(p.ifail, 0);
    EXPECT_EQ(p.u_, std::vector<double>(p.u_.size(), 0.0));
    // A further call reports the finished sequence, and a call on a record never set up names the set-up
    // routine: both texts carry a routine's name pasted in.
    std::vector<double> blank(p.w(), p.w() + p.lwork);
    std::fill(blank.begin(), blank.end(), 0.0);
    struct {
        double *work;
        int ifail;
        const char *text;
    } const calls[] = {
        {p.w(), 1, " ** F11BEF has already completed its tasks. You need to set a new problem."},
        {blank.data(), 3, " ** Either F11BDF was not called before calling this routine"},
    };
    for (const auto &c : calls) {
        zek_test::OutputCapture capture;
        p.irevcm = 4;
        p.ifail = -1; // soft failure, message printed
        F11BEF(&p.irevcm, p.u_.data(), p.v_.data(), nullptr, c.work, &p.lwork, &p.ifail);
        EXPECT_EQ(p.ifail, c.ifail);
        ASSERT_FALSE(capture.host().empty());
        EXPECT_EQ(capture.host().front().rfind(c.text, 0), 0u) << capture.host().front();
    }

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
        const int n = p.m.n, nnz = p.m.nnz(), maxitn = 500, order = c.order > 0 ? c.order : 1;
        const double tol = 1e-10;
        std::vector<double> x(p.b.size()), work(200000);
        int itn = 0, ifail = 1, lwork = static_cast<int>(work.size());
        double rnorm = 0.0;
        Factors<double> &f = p.f;
        auto solve = [&] {
            std::fill(x.begin(), x.end(), 0.0), ifail = 1;
            F11DCF(c.method, &n, &nnz, f.a.data(), &f.la, f.irow.data(), f.icol.data(), f.ipiv.data(), f.ipivq.data(),
                   f.istr.data(), f.idiag.data(), p.b.data(), &order, &tol, &maxitn, x.data(), &rnorm, &itn,
                   work.data(), &lwork, &ifail, sparse_test::len(c.method));
        };
        solve();
        EXPECT_EQ(ifail, 0);
        EXPECT_GT(itn, 0);
        EXPECT_LT(sparse_test::relative_residual(n, sparse_test::dense(p.m), x, p.b), 1e-9);
        f.idiag[3] = f.idiag[2];
        solve();
        EXPECT_EQ(ifail, 3);
    }
}

} // namespace
