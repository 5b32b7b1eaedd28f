// Failure exits and hostile input of the drivers and the relaxation preconditioners: each row calls a
// public routine with IFAIL -1 on the 3 by 3 tridiagonal (4, -1) or a spoilt copy of it, and checks the
// outcome, the start of the first message record and that the front's self-check stays quiet.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "zek2/f11.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

// The matrix in CS (7 entries) and its lower triangle in SCS (5 entries); complex copies as pairs with a
// small imaginary part off the diagonal.  `scs` switches every call to the lower triangle.
struct Data {
    int n = 3, nnz = 7, m = 2, maxitn = 50, lwork = 400, niter = 3;
    double omega = 1.0, tol = 1e-10;
    std::vector<double> a{4, -1, -1, 4, -1, -1, 4}, z, b{1, 2, 3}, x = std::vector<double>(6, 0.0);
    std::vector<double> zb{1, 0, 2, 1, 3, 0}, diag = std::vector<double>(6, 0.0), w = std::vector<double>(6, 0.0);
    std::vector<int> irow{1, 1, 2, 2, 2, 3, 3}, icol{1, 2, 1, 2, 3, 2, 3}, iwork = std::vector<int>(8);
    Data() { complex(); }
    void complex() {
        z.assign(2 * a.size(), 0.0);
        for (std::size_t k = 0; k < a.size(); ++k) z[2 * k] = a[k], z[2 * k + 1] = irow[k] == icol[k] ? 0.0 : 0.25;
    }
    void lower() {
        a = {4, -1, 4, -1, 4}, irow = {1, 2, 2, 3, 3}, icol = {1, 1, 2, 2, 3}, nnz = 5;
        complex();
    }
    static int len(const char *s) { return static_cast<int>(std::strlen(s)); }
    int def(const char *method, const char *precon) {
        int ifail = -1, itn = 0;
        double rnorm = 0.0;
        std::vector<double> work(static_cast<std::size_t>(std::max(lwork, 1)));
        F11DEF(method, precon, &n, &nnz, a.data(), irow.data(), icol.data(), &omega, b.data(), &m, &tol, &maxitn,
               x.data(), &rnorm, &itn, work.data(), &lwork, iwork.data(), &ifail, len(method), len(precon));
        return ifail;
    }
    int dsf(const char *method, const char *precon) {
        int ifail = -1, itn = 0;
        double rnorm = 0.0;
        std::vector<double> work(static_cast<std::size_t>(2 * lwork));
        F11DSF(method, precon, &n, &nnz, z.data(), irow.data(), icol.data(), &omega, zb.data(), &m, &tol, &maxitn,
               x.data(), &rnorm, &itn, work.data(), &lwork, iwork.data(), &ifail, len(method), len(precon));
        return ifail;
    }
    int jsf(const char *method, const char *precon) {
        int ifail = -1, itn = 0;
        double rnorm = 0.0;
        std::vector<double> work(static_cast<std::size_t>(2 * lwork));
        F11JSF(method, precon, &n, &nnz, z.data(), irow.data(), icol.data(), &omega, zb.data(), &tol, &maxitn,
               x.data(), &rnorm, &itn, work.data(), &lwork, iwork.data(), &ifail, len(method), len(precon));
        return ifail;
    }
    // The Hermitian driver with a diagonal "factor": IPIV the identity, ISTR the row starts of the
    // copy at NNZ+1, whose diagonals hold the reciprocals 1/4.
    int jqf(const char *method, int la = 20) {
        std::vector<double> fa(static_cast<std::size_t>(2 * std::max(la, 10)), 0.0);
        std::vector<int> fr(fa.size() / 2, 0), fc(fr.size(), 0), ipiv{1, 2, 3}, istr{6, 7, 8, 9};
        std::copy(z.begin(), z.end(), fa.begin());
        std::copy(irow.begin(), irow.end(), fr.begin());
        std::copy(icol.begin(), icol.end(), fc.begin());
        for (int i = 0; i < 3; ++i) fa[2 * (5 + i)] = 0.25, fr[5 + i] = fc[5 + i] = i + 1;
        istr[1] = spoilt_istr;
        int ifail = -1, itn = 0;
        double rnorm = 0.0;
        std::vector<double> work(static_cast<std::size_t>(2 * lwork));
        F11JQF(method, &n, &nnz, fa.data(), &la, fr.data(), fc.data(), ipiv.data(), istr.data(), zb.data(), &tol,
               &maxitn, x.data(), &rnorm, &itn, work.data(), &lwork, &ifail, len(method));
        return ifail;
    }
    int spoilt_istr = 7;
    int ddf(const char *trans, const char *check, bool complex_values = false) {
        int ifail = -1;
        (complex_values ? F11DRF : F11DDF)(trans, &n, &nnz, complex_values ? z.data() : a.data(), irow.data(),
                                           icol.data(), &omega, check, complex_values ? zb.data() : b.data(),
                                           x.data(), &ifail, 1, 1);
        return ifail;
    }
    int jrf(const char *check) {
        int ifail = -1;
        F11JRF(&n, &nnz, z.data(), irow.data(), icol.data(), &omega, check, zb.data(), x.data(), &ifail, 1);
        return ifail;
    }
    int dkf(const char *store, const char *init, const char *check, bool complex_values = false) {
        int ifail = -1;
        (complex_values ? F11DXF : F11DKF)(store, "N", init, &niter, &n, &nnz, complex_values ? z.data() : a.data(),
                                           irow.data(), icol.data(), check, complex_values ? zb.data() : b.data(),
                                           x.data(), diag.data(), w.data(), &ifail, 1, 1, 1, 1);
        return ifail;
    }
};

struct Row {
    const char *what;
    std::function<int(Data &)> call;
    int ifail;
    const char *text; // start of the first record, "" for success
};

const Row kRows[] = {
    // Drivers with a built-in preconditioner.
    {"driver bad PRECON", [](Data &d) { return d.def("RGMRES", "X"); }, 1, " ** On entry, PRECON .ne. 'N', 'J' or 'S': PRE  CON = 'X'."},
    {"driver OMEGA 2", [](Data &d) { d.omega = 2.0; return d.def("CGS", "S"); }, 1, " ** On entry, OMEGA .le. 0.0 or OMEGA .ge. 2.0: OMEGA =   2.0000E+00."},
    {"driver NaN OMEGA", [](Data &d) { d.omega = kNaN; return d.def("CGS", "S"); }, 1, " ** On entry, OMEGA .le. 0.0 or OMEGA .ge. 2.0:"},
    {"driver OMEGA unused without SSOR", [](Data &d) { d.omega = kNaN; return d.def("TFQMR", "J"); }, 0, ""},
    {"driver zero diagonal without preconditioner", [](Data &d) { d.a[0] = 0.0; d.m = 3; return d.def("RGMRES", "N"); }, 0, ""},
    {"driver zero diagonal for Jacobi", [](Data &d) { d.a[3] = 0.0; return d.def("RGMRES", "J"); }, 3, " ** The matrix A has a zero diagonal entry in row               2."},
    {"driver missing diagonal for SSOR", [](Data &d) { d.nnz = 6; return d.def("RGMRES", "S"); }, 3, " ** The matrix A has no diagonal entry in row               3."},
    {"driver TOL 1", [](Data &d) { d.tol = 1.0; return d.def("CGS", "N"); }, 1, " ** On entry, TOL .ge. 1.0: TOL =   1.0000E+00."},
    {"driver NaN TOL", [](Data &d) { d.tol = kNaN; return d.def("CGS", "N"); }, 1, " ** On entry, TOL .ge. 1.0:"},
    {"driver MAXITN 0", [](Data &d) { d.maxitn = 0; return d.def("CGS", "J"); }, 1, " ** On entry, MAXITN .lt. 1: MAXITN ="},
    {"driver M 0", [](Data &d) { d.m = 0; return d.def("RGMRES", "J"); }, 1, " ** On entry, M .lt. 1 or M .gt. MIN (N,50):"},
    {"driver LWORK one short", [](Data &d) { d.lwork = 11 * 3 + 99; return d.def("TFQMR", "J"); }, 1, " ** On entry, LWORK is too small: LWORK =             132."},
    {"driver huge N", [](Data &d) { d.n = INT_MAX; return d.def("TFQMR", "J"); }, 1, " ** On entry, LWORK is too small:"},
    {"driver NNZ above N squared", [](Data &d) { d.n = 2; d.nnz = 5; return d.def("CGS", "N"); }, 1, " ** On entry, NNZ .gt. N**2:"},
    {"driver row out of range", [](Data &d) { d.irow[6] = 4; return d.def("CGS", "N"); }, 2, " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:"},
    {"driver NaN matrix entry", [](Data &d) { d.a[1] = kNaN; return d.def("BICGSTAB", "S"); }, 6, " ** Algorithmic breakdown."},
    {"driver Inf right-hand side", [](Data &d) { d.b[0] = kInf; return d.def("RGMRES", "J"); }, 6, " ** Algorithmic breakdown."},
    {"driver largest values", [](Data &d) { for (double &e : d.a) e *= 1e300; return d.def("RGMRES", "S"); }, 0, ""},
    {"driver zero right-hand side", [](Data &d) { d.b.assign(3, 0.0); d.x.assign(6, 5.0); int f = d.def("CGS", "S"); return f == 0 && d.x[0] == 0.0 ? 0 : 99; }, 0, ""},
    {"complex driver SSOR", [](Data &d) { d.omega = 0.7; return d.dsf("BICGSTAB", "S"); }, 0, ""},
    {"complex driver bad METHOD", [](Data &d) { return d.dsf("CG", "N"); }, 1, " ** On entry, METHOD .ne. 'RGMRES', 'CGS', or '  BICGSTAB':"},
    // Hermitian drivers.
    {"Hermitian bad METHOD", [](Data &d) { d.lower(); return d.jsf("RGMRES", "N"); }, 1, " ** On entry, METHOD .ne. 'CG' or 'SYMMLQ': METHOD = 'RGMRES'."},
    {"Hermitian non-real diagonal", [](Data &d) { d.lower(); d.z[5] = 1.0; return d.jsf("CG", "J"); }, 3, " ** The matrix A has a non-real diagonal entry in row               2."},
    {"Hermitian upper entry", [](Data &d) { d.lower(); d.icol[1] = 2; d.irow[1] = 1; return d.jsf("CG", "N"); }, 2, " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. IROW(I):"},
    {"Hermitian negative definite", [](Data &d) { d.lower(); for (double &e : d.z) e = -e; return d.jsf("CG", "J"); }, 6, " ** The preconditioner appears not to be positive-definite."},
    {"Hermitian indefinite", [](Data &d) { d.lower(); d.z[0] = -4.0; return d.jsf("CG", "N"); }, 7, " ** The matrix of the coefficients A appears not to be positive-definite."},
    {"Hermitian LWORK one short", [](Data &d) { d.lower(); d.lwork = 10 * 3 + 99; return d.jsf("SYMMLQ", "S"); }, 1, " ** On entry, LWORK is too small:"},
    {"Hermitian factors", [](Data &d) { d.lower(); return d.jqf("SYMMLQ"); }, 0, ""},
    {"Hermitian factors LA one short", [](Data &d) { d.lower(); return d.jqf("CG", 9); }, 1, " ** On entry, LA .lt. 2*NNZ:"},
    {"Hermitian factors spoilt", [](Data &d) { d.lower(); d.spoilt_istr = 99; return d.jqf("CG"); }, 3, " ** The SCS representation of the preconditioner is invalid."},
    // SSOR step.
    {"SSOR bad TRANS", [](Data &d) { return d.ddf("C", "C"); }, 1, " ** On entry, TRANS .ne. 'N' or 'T': TRANS = 'C'."},
    {"SSOR bad CHECK", [](Data &d) { return d.ddf("T", "X"); }, 1, " ** On entry, CHECK .ne. 'C' or 'N': CHECK = 'X'."},
    {"SSOR OMEGA 0", [](Data &d) { d.omega = 0.0; return d.ddf("N", "N"); }, 1, " ** On entry, OMEGA .le. 0.0 or OMEGA .ge. 2.0:"},
    {"SSOR N zero", [](Data &d) { d.n = 0; return d.ddf("N", "N"); }, 1, " ** On entry, N .lt. 1: N ="},
    {"SSOR duplicate", [](Data &d) { d.icol[1] = 1; return d.ddf("N", "C"); }, 2, " ** On entry, the location (IROW(I), ICOL(I)) is a duplicate:"},
    {"SSOR zero diagonal", [](Data &d) { d.z[6] = 0.0; return d.ddf("T", "C", true); }, 3, " ** On entry, the diagonal element of the I-th row is zero or missing:"},
    {"SSOR unchecked indices out of range", [](Data &d) { d.irow[2] = -50; d.icol[4] = 1 << 30; return d.ddf("N", "N"); }, 0, ""},
    {"SSOR NaN right-hand side", [](Data &d) { d.b[1] = kNaN; return d.ddf("N", "C"); }, 0, ""},
    {"Hermitian SSOR non-real diagonal", [](Data &d) { d.lower(); d.z[1] = 0.5; return d.jrf("C"); }, 3, " ** The matrix A has a non-real diagonal entry in row               1."},
    {"Hermitian SSOR NNZ above triangle", [](Data &d) { d.lower(); d.nnz = 7; return d.jrf("N"); }, 1, " ** On entry, NNZ .gt. N*(N+1)/2:"},
    // Jacobi iteration.
    {"Jacobi bad STORE", [](Data &d) { return d.dkf("X", "N", "C"); }, 1, " ** On entry, STORE .ne. 'N' or 'S': STORE = 'X'."},
    {"Jacobi bad INIT", [](Data &d) { return d.dkf("N", "Q", "C"); }, 1, " ** On entry, INIT .ne. 'N' or 'I': INIT = 'Q' ."},
    {"Jacobi bad CHECK", [](Data &d) { return d.dkf("N", "I", "Y"); }, 1, " ** On entry, CHECK .ne. 'N' or 'C': CHECK = 'Y'."},
    {"Jacobi NITER 0", [](Data &d) { d.niter = 0; return d.dkf("N", "I", "C"); }, 1, " ** On entry, NITER .lt. 1: NITER =               0."},
    {"Jacobi zero stored diagonal", [](Data &d) { d.diag = {4, 4, 0, 4, 4, 4}; return d.dkf("S", "I", "C"); }, 3, " ** On entry, the element DIAG(I) is zero:"},
    {"Jacobi missing diagonal", [](Data &d) { d.nnz = 6; return d.dkf("N", "N", "N"); }, 3, " ** On entry, the diagonal element of the I-th row is zero or missing:"},
    {"Jacobi structure", [](Data &d) { d.icol[0] = 9; return d.dkf("N", "N", "C", true); }, 2, " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:"},
    {"Jacobi unchecked indices out of range", [](Data &d) { d.icol[1] = 9; d.irow[4] = 0; return d.dkf("N", "I", "N", true); }, 0, ""},
    {"Jacobi Inf right-hand side", [](Data &d) { d.b[2] = -kInf; return d.dkf("N", "I", "C"); }, 0, ""},
};

TEST(HostileSparseDrivers, EveryRowEndsInItsExit) {
    for (const Row &row : kRows) {
        SCOPED_TRACE(row.what);
        Data d;
        zek_test::OutputCapture capture;
        const int ifail = row.call(d);
        const std::vector<std::string> &host = capture.host();
        EXPECT_EQ(ifail, row.ifail);
        std::string all;
        for (const std::string &piece : host) all += piece + "\n";
        EXPECT_EQ(all.find("MISMATCH"), std::string::npos) << all;
        if (row.ifail == 0) {
            EXPECT_TRUE(host.empty()) << all;
        } else {
            ASSERT_FALSE(host.empty());
            EXPECT_EQ(host.front().rfind(row.text, 0), 0u) << host.front();
        }
    }
}

} // namespace
