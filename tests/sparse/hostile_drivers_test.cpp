// Failure exits and hostile input of the drivers and the relaxation preconditioners: each row calls a
// public routine with IFAIL -1 on the 3 by 3 tridiagonal (4, -1) or a spoilt copy of it, and checks the
// outcome, the start of the first message record and that the front's self-check stays quiet.
#include <climits>
#include <cmath>
#include <cstring>
#include <vector>

#include "sparse_fixtures.h"

namespace {

using sparse_test::kInf;
using sparse_test::kNaN;

// The matrix in CS (7 entries), or its lower triangle in SCS (5 entries) after lower(); complex copies
// as pairs with a small imaginary part off the diagonal.
struct Data {
    int n = 3, nnz = 7, m = 2, maxitn = 50, lwork = 400, niter = 3, itn = 0, ifail = -1;
    double omega = 1.0, tol = 1e-10, rnorm = 0.0;
    std::vector<double> a{4, -1, -1, 4, -1, -1, 4}, z, b{1, 2, 3}, x = std::vector<double>(6, 0.0), work =
        std::vector<double>(800), zb{1, 0, 2, 1, 3, 0}, diag = std::vector<double>(6, 0.0), w = diag;
    std::vector<int> irow{1, 1, 2, 2, 2, 3, 3}, icol{1, 2, 1, 2, 3, 2, 3}, iwork = std::vector<int>(8);
    Data() { complex(); }
    void complex() {
        z.assign(2 * a.size(), 0.0);
        for (std::size_t k = 0; k < a.size(); ++k) z[2 * k] = a[k], z[2 * k + 1] = irow[k] == icol[k] ? 0.0 : 0.25;
    }
    void lower() { a = {4, -1, 4, -1, 4}, irow = {1, 2, 2, 3, 3}, icol = {1, 1, 2, 2, 3}, nnz = 5, complex(); }
    static int len(const char *s) { return static_cast<int>(std::strlen(s)); }
    int def(const char *method, const char *precon, bool cplx = false) {
        (cplx ? F11DSF : F11DEF)(method, precon, &n, &nnz, cplx ? z.data() : a.data(), irow.data(), icol.data(), &omega,
                                 cplx ? zb.data() : b.data(), &m, &tol, &maxitn, x.data(), &rnorm, &itn, work.data(),
                                 &lwork, iwork.data(), &ifail, len(method), len(precon));
        return ifail;
    }
    int jsf(const char *method, const char *precon) {
        F11JSF(method, precon, &n, &nnz, z.data(), irow.data(), icol.data(), &omega, zb.data(), &tol, &maxitn,
               x.data(), &rnorm, &itn, work.data(), &lwork, iwork.data(), &ifail, len(method), len(precon));
        return ifail;
    }
    // The Hermitian driver with a diagonal "factor" 1/4 behind the matrix; ISTR(2) may be spoilt.
    int jqf(const char *method, int istr2 = 7) {
        int la = 20;
        std::vector<double> fa(40, 0.0);
        std::vector<int> fr(20, 0), fc(20, 0), ipiv{1, 2, 3}, istr{6, istr2, 8, 9};
        std::copy(z.begin(), z.end(), fa.begin()), std::copy(irow.begin(), irow.end(), fr.begin());
        std::copy(icol.begin(), icol.end(), fc.begin());
        for (int i = 0; i < 3; ++i) fa[2 * (5 + i)] = 0.25, fr[5 + i] = fc[5 + i] = i + 1;
        F11JQF(method, &n, &nnz, fa.data(), &la, fr.data(), fc.data(), ipiv.data(), istr.data(), zb.data(), &tol,
               &maxitn, x.data(), &rnorm, &itn, work.data(), &lwork, &ifail, len(method));
        return ifail;
    }
    int ddf(const char *trans, const char *check, bool cplx = false) {
        (cplx ? F11DRF : F11DDF)(trans, &n, &nnz, cplx ? z.data() : a.data(), irow.data(), icol.data(), &omega, check,
                                 cplx ? zb.data() : b.data(), x.data(), &ifail, 1, 1);
        return ifail;
    }
    int jrf(const char *check) {
        F11JRF(&n, &nnz, z.data(), irow.data(), icol.data(), &omega, check, zb.data(), x.data(), &ifail, 1);
        return ifail;
    }
    int dkf(const char *store, const char *init, const char *check, bool cplx = false) {
        (cplx ? F11DXF : F11DKF)(store, "N", init, &niter, &n, &nnz, cplx ? z.data() : a.data(), irow.data(),
                                 icol.data(), check, cplx ? zb.data() : b.data(), x.data(), diag.data(), w.data(),
                                 &ifail, 1, 1, 1, 1);
        return ifail;
    }
};

using Row = sparse_test::HostileRow<Data>;

const Row kRows[] = {
    // Drivers with a built-in preconditioner.
    {"driver bad PRECON", [](Data &d) { return d.def("RGMRES", "X"); }, 1, " ** On entry, PRECON .ne. 'N', 'J' or 'S': PRE  CON = 'X'."},
    {"driver OMEGA 2", [](Data &d) { d.omega = 2.0; return d.def("CGS", "S"); }, 1, " ** On entry, OMEGA .le. 0.0 or OMEGA .ge. 2.0: OMEGA =   2.0000E+00."},
    {"driver zero diagonal without preconditioner", [](Data &d) { d.a[0] = 0.0; d.m = 3; return d.def("RGMRES", "N"); }, 0, ""},
    {"driver zero diagonal for Jacobi", [](Data &d) { d.a[3] = 0.0; return d.def("RGMRES", "J"); }, 3, " ** The matrix A has a zero diagonal entry in row               2."},
    {"driver missing diagonal for SSOR", [](Data &d) { d.nnz = 6; return d.def("RGMRES", "S"); }, 3, " ** The matrix A has no diagonal entry in row               3."},
    {"driver TOL 1", [](Data &d) { d.tol = 1.0; return d.def("CGS", "N"); }, 1, " ** On entry, TOL .ge. 1.0: TOL =   1.0000E+00."},
    {"driver LWORK one short", [](Data &d) { d.lwork = 11 * 3 + 99; return d.def("TFQMR", "J"); }, 1, " ** On entry, LWORK is too small: LWORK =             132."},
    {"driver huge N", [](Data &d) { d.n = INT_MAX; return d.def("TFQMR", "J"); }, 1, " ** On entry, LWORK is too small:"},
    {"driver NaN matrix entry", [](Data &d) { d.a[1] = kNaN; return d.def("BICGSTAB", "S"); }, 6, " ** Algorithmic breakdown."},
    {"driver zero right-hand side", [](Data &d) { d.b.assign(3, 0.0); d.x.assign(6, 5.0); int f = d.def("CGS", "S"); return f == 0 && d.x[0] == 0.0 ? 0 : 99; }, 0, ""},
    {"complex driver SSOR", [](Data &d) { d.omega = 0.7; return d.def("BICGSTAB", "S", true); }, 0, ""},
    // Hermitian drivers.
    {"Hermitian bad METHOD", [](Data &d) { d.lower(); return d.jsf("RGMRES", "N"); }, 1, " ** On entry, METHOD .ne. 'CG' or 'SYMMLQ': METHOD = 'RGMRES'."},
    {"Hermitian non-real diagonal", [](Data &d) { d.lower(); d.z[5] = 1.0; return d.jsf("CG", "J"); }, 3, " ** The matrix A has a non-real diagonal entry in row               2."},
    {"Hermitian negative definite", [](Data &d) { d.lower(); for (double &e : d.z) e = -e; return d.jsf("CG", "J"); }, 6, " ** The preconditioner appears not to be positive-definite."},
    {"Hermitian indefinite", [](Data &d) { d.lower(); d.z[0] = -4.0; return d.jsf("CG", "N"); }, 7, " ** The matrix of the coefficients A appears not to be positive-definite."},
    {"Hermitian factors spoilt", [](Data &d) { d.lower(); return d.jqf("CG", 99); }, 3, " ** The SCS representation of the preconditioner is invalid."},
    // SSOR step.
    {"SSOR bad TRANS", [](Data &d) { return d.ddf("C", "C"); }, 1, " ** On entry, TRANS .ne. 'N' or 'T': TRANS = 'C'."},
    {"SSOR OMEGA 0", [](Data &d) { d.omega = 0.0; return d.ddf("N", "N"); }, 1, " ** On entry, OMEGA .le. 0.0 or OMEGA .ge. 2.0:"},
    {"SSOR zero diagonal", [](Data &d) { d.z[6] = 0.0; return d.ddf("T", "C", true); }, 3, " ** On entry, the diagonal element of the I-th row is zero or missing:"},
    {"SSOR unchecked indices out of range", [](Data &d) { d.irow[2] = -50; d.icol[4] = 1 << 30; return d.ddf("N", "N"); }, 0, ""},
    {"Hermitian SSOR non-real diagonal", [](Data &d) { d.lower(); d.z[1] = 0.5; return d.jrf("C"); }, 3, " ** The matrix A has a non-real diagonal entry in row               1."},
    // Jacobi iteration.
    {"Jacobi bad STORE", [](Data &d) { return d.dkf("X", "N", "C"); }, 1, " ** On entry, STORE .ne. 'N' or 'S': STORE = 'X'."},
    {"Jacobi bad INIT", [](Data &d) { return d.dkf("N", "Q", "C"); }, 1, " ** On entry, INIT .ne. 'N' or 'I': INIT = 'Q' ."},
    {"Jacobi NITER 0", [](Data &d) { d.niter = 0; return d.dkf("N", "I", "C"); }, 1, " ** On entry, NITER .lt. 1: NITER =               0."},
    {"Jacobi zero stored diagonal", [](Data &d) { d.diag = {4, 4, 0, 4, 4, 4}; return d.dkf("S", "I", "C"); }, 3, " ** On entry, the element DIAG(I) is zero:"},
    {"Jacobi missing diagonal", [](Data &d) { d.nnz = 6; return d.dkf("N", "N", "N"); }, 3, " ** On entry, the diagonal element of the I-th row is zero or missing:"},
    {"Jacobi unchecked indices out of range", [](Data &d) { d.icol[1] = 9; d.irow[4] = 0; return d.dkf("N", "I", "N", true); }, 0, ""},
};

TEST(HostileSparseDrivers, EveryRowEndsInItsExit) { sparse_test::expect_rows(kRows); }

} // namespace
