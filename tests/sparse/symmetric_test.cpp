// The symmetric and Hermitian suites driven by this test's own loop, with dense products and a
// diagonal preconditioner; residuals and the largest singular value formed here.
#include "sparse_fixtures.h"

namespace {

using sparse_test::Complex;

struct Outcome {
    int ifail = -99, itn = 0;
    double residual = 1.0, sigmax = 0.0;
};

// Runs one problem: A dense column-major, b, preconditioner 'N', 'P' (diagonal) or 'X' (minus identity,
// not definite).
template <class T>
Outcome run(const std::string &method, int n, const std::vector<T> &a, const std::vector<T> &b, char precon,
            bool sigcmp, int maxitn = 2000) {
    std::vector<T> work(static_cast<std::size_t>(12 * n + 4200), T(0.0)), u(b.size(), T(0.0)), v = b;
    double *w = sparse_test::raw(work);
    const int iterm = 1, maxits = 2000, monit = 0, lwork = static_cast<int>(work.size());
    const double tol = 1e-10, anorm = 0.0, sigmax = 0.0, sigtol = 1e-8;
    int lwreq = 0, ifail = 1, irevcm = 0;
    const char *pc = precon == 'N' ? "N" : "P", *sc = sigcmp ? "S" : "N";
    const int len = static_cast<int>(method.size());
    sparse_test::twin<T>(F11GDF, F11GRF)(method.c_str(), pc, sc, "I", "N", &iterm, &n, &tol, &maxitn, &anorm, &sigmax,
                                         &sigtol, &maxits, &monit, &lwreq, w, &lwork, &ifail, len, 1, 1, 1, 1);
    EXPECT_EQ(ifail, 0);
    EXPECT_LE(lwreq, lwork);
    Outcome out;
    for (int calls = 0; calls < 100000; ++calls) {
        ifail = 1;
        sparse_test::twin<T>(F11GEF, F11GSF)(&irevcm, sparse_test::raw(u), sparse_test::raw(v), nullptr, w, &lwork, &ifail);
        if (irevcm == 4) break;
        if (irevcm == 1)
            for (int i = 0; i < n; ++i) {
                T s(0.0);
                for (int j = 0; j < n; ++j) s += a[i + static_cast<std::size_t>(j) * n] * u[j];
                v[i] = s;
            }
        if (irevcm == 2)
            for (int i = 0; i < n; ++i)
                v[i] = precon == 'X' ? -u[i] : u[i] / a[i + static_cast<std::size_t>(i) * n];
        EXPECT_TRUE(irevcm == 1 || irevcm == 2) << irevcm;
    }
    out.ifail = ifail;
    double stplhs, stprhs, an;
    int f = 1;
    sparse_test::twin<T>(F11GFF, F11GTF)(&out.itn, &stplhs, &stprhs, &an, &out.sigmax, w, &lwork, &f);
    EXPECT_EQ(f, 0);
    out.residual = sparse_test::relative_residual(n, a, u, b);
    return out;
}

TEST(SymmetricSuite, ConvergesOnDefiniteMatricesAndHermitianForms) {
    for (const char *name : {"gr_30_30", "bcsstk01"}) {
        const auto coo = sparse_test::read_matrix(name);
        const auto a = sparse_test::dense(coo);
        const auto b = sparse_test::right_side<double>(coo.n);
        // The largest eigenvalue of the nine-point operator of gr_30_30, in closed form.
        const double c = std::cos(std::acos(-1.0) / 31.0), sigma = 8.0 + 4.0 * c * c;
        for (const char *method : {"CG", "SYMMLQ"})
            for (char precon : {'N', 'P'}) {
                const Outcome o = run<double>(method, coo.n, a, b, precon, precon == 'N');
                SCOPED_TRACE(std::string(name) + " " + method + " " + precon);
                EXPECT_EQ(o.ifail, 0);
                EXPECT_LT(o.residual, 1e-9);
                EXPECT_GT(o.itn, 0);
                // Unpreconditioned, the Lanczos estimate approaches the largest eigenvalue from below.
                if (precon == 'N' && std::string(name) == "gr_30_30") {
                    EXPECT_LE(o.sigmax, sigma * (1 + 1e-8));
                    EXPECT_GT(o.sigmax, 0.9 * sigma);
                }
                // The Hermitian form of gr_30_30: off-diagonals turned by a unit phase, b complex.
                if (std::string(name) != "gr_30_30") continue;
                std::vector<Complex> bc(b.begin(), b.end());
                for (int i = 0; i < coo.n; ++i) bc[i] += Complex(0.0, std::cos(0.5 * i));
                const Outcome h = run<Complex>(method, coo.n, sparse_test::dense(coo, sparse_test::complexify(coo)), bc,
                                               precon, true);
                EXPECT_EQ(h.ifail, 0);
                EXPECT_LT(h.residual, 1e-9);
            }
    }
}

// An indefinite matrix: CG reports it, SYMMLQ solves it; a preconditioner that is not definite is
// reported by both.
TEST(SymmetricSuite, DefinitenessFailures) {
    const int n = 40;
    std::vector<double> a(static_cast<std::size_t>(n * n), 0.0);
    for (int i = 0; i < n; ++i) {
        a[i + static_cast<std::size_t>(i) * n] = (i % 3 == 0 ? -1.0 : 1.0) * (2.0 + i);
        if (i + 1 < n) a[i + 1 + static_cast<std::size_t>(i) * n] = a[i + static_cast<std::size_t>(i + 1) * n] = 0.5;
    }
    const auto b = sparse_test::right_side<double>(n);
    EXPECT_EQ(run<double>("CG", n, a, b, 'N', false).ifail, 4);
    const Outcome s = run<double>("SYMMLQ", n, a, b, 'N', false);
    EXPECT_EQ(s.ifail, 0);
    EXPECT_LT(s.residual, 1e-9);
    EXPECT_EQ(run<double>("CG", n, a, b, 'X', false).ifail, 5);
    EXPECT_EQ(run<double>("SYMMLQ", n, a, b, 'X', false).ifail, 5);
    EXPECT_EQ(run<double>("SYMMLQ", n, a, b, 'N', false, 3).ifail, 7);
}

} // namespace
