// Failure exits and hostile input of the sparse storage, factorisation and solve routines, the drivers
// and the relaxation preconditioners: each row calls a public routine with IFAIL -1 on the 3 by 3
// tridiagonal (4, -1) or a spoilt copy of it, and checks the outcome, the first line of its message and
// that the front's self-check stays quiet.  Every call must end in bounded time.
#include <climits>

#include "sparse_fixtures.h"

namespace {

using sparse_test::kInf;
using sparse_test::kNaN;
using sparse_test::len;

// A 3 by 3 tridiagonal matrix in CS with room for factors, and its SCS lower triangle.
struct Data {
    int n = 3, nnz = 7, la = 40, lfill = 0, liwork = 7 * 3 + 2, nnzc = 0, npivm = 0, snnz = 5;
    double dtol = 0.0, dscale = 1.0;
    // Entries at the front of 40 places, the rest room for the factors.
    std::vector<double> a = room<double>({4, -1, -1, 4, -1, -1, 4});
    std::vector<int> irow = room<int>({1, 1, 2, 2, 2, 3, 3}), icol = room<int>({1, 2, 1, 2, 3, 2, 3});
    std::vector<int> ipivp{1, 2, 3}, ipivq{1, 2, 3}, istr = std::vector<int>(4), idiag = std::vector<int>(3);
    std::vector<int> iwork = std::vector<int>(400);
    std::vector<double> x = std::vector<double>(6, 0.0), y = std::vector<double>(6, 1.0);
    template <class T> static std::vector<T> room(std::vector<T> v) { return v.resize(40, T(0)), v; }
    bool lowered = false;
    void lower() {
        if (lowered) return;
        lowered = true;
        a = room<double>({4, -1, 4, -1, 4});
        irow = room<int>({1, 2, 2, 3, 3}), icol = room<int>({1, 1, 2, 2, 3});
    }
    int daf(const char *pstrat = "N", const char *milu = "N") {
        int ifail = -1;
        F11DAF(&n, &nnz, a.data(), &la, irow.data(), icol.data(), &lfill, &dtol, pstrat, milu, ipivp.data(),
               ipivq.data(), istr.data(), idiag.data(), &nnzc, &npivm, iwork.data(), &liwork, &ifail, 1, 1);
        return ifail;
    }
    int jaf(const char *pstrat = "N", int short_by = 0) {
        lower();
        int ifail = -1, liw = liwork_ic() - short_by;
        F11JAF(&n, &snnz, a.data(), &la, irow.data(), icol.data(), &lfill, &dtol, "N", &dscale, pstrat, ipivp.data(),
               istr.data(), &nnzc, &npivm, iwork.data(), &liw, &ifail, 1, 1);
        return ifail;
    }
    int liwork_ic() const { return 7 * n + 1 + 2 * la - 3 * snnz; }
    int dbf(const char *trans = "N", const char *check = "C") {
        int ifail = -1;
        F11DBF(trans, &n, a.data(), &la, irow.data(), icol.data(), ipivp.data(), ipivq.data(), istr.data(),
               idiag.data(), check, y.data(), x.data(), &ifail, 1, 1);
        return ifail;
    }
    int dcf(const char *method, int lwork) {
        daf();
        int ifail = -1, m = 1, maxitn = 50, itn = 0;
        double tol = 1e-10, rnorm = 0.0;
        std::vector<double> work(static_cast<std::size_t>(std::max(lwork, 1)));
        F11DCF(method, &n, &nnz, a.data(), &la, irow.data(), icol.data(), ipivp.data(), ipivq.data(), istr.data(),
               idiag.data(), y.data(), &m, &tol, &maxitn, x.data(), &rnorm, &itn, work.data(), &lwork, &ifail,
               sparse_test::len(method));
        return ifail;
    }
    int bef_short() {
        int ifail = -1, iterm = 1, m = 0, maxitn = 10, monit = 0, lwreq = 0, lwork = 200, irevcm = 0;
        double tol = 0.0, anorm = 0.0, sigmax = 0.0;
        std::vector<double> work(200);
        F11BDF("CGS", "N", "I", "N", &iterm, &n, &m, &tol, &maxitn, &anorm, &sigmax, &monit, &lwreq, work.data(), &lwork,
               &ifail, 3, 1, 1, 1);
        lwork = lwreq - 1;
        ifail = -1;
        F11BEF(&irevcm, x.data(), y.data(), nullptr, work.data(), &lwork, &ifail);
        return ifail;
    }
    // The symmetric (real T) or Hermitian (complex T) suite on the 3 by 3 tridiagonal (4, -1), driven to
    // its end; answers the first request with `answer` when it is not 0.  Returns the last IFAIL.
    template <class T = double>
    int gef(const char *method, int nn = 3, int maxits = 5, int short_by = 0, int answer = 0) {
        int ifail = -1, iterm = 1, maxitn = 50, monit = 0, lwreq = 0, lwork = 400, irevcm = 0;
        double tol = 0.0, anorm = 0.0, sigmax = 0.0, sigtol = 0.0;
        std::vector<T> work(400), u(3), v(y.begin(), y.begin() + 3);
        double *w = sparse_test::raw(work);
        sparse_test::twin<T>(F11GDF, F11GRF)(method, "N", "S", "I", "N", &iterm, &nn, &tol, &maxitn, &anorm, &sigmax,
                                             &sigtol, &maxits, &monit, &lwreq, w, &lwork, &ifail,
                                             sparse_test::len(method), 1, 1, 1, 1);
        if (ifail != 0) return ifail;
        lwork = lwreq - short_by;
        for (int calls = 0; calls < 1000; ++calls) {
            ifail = -1;
            sparse_test::twin<T>(F11GEF, F11GSF)(&irevcm, sparse_test::raw(u), sparse_test::raw(v), nullptr, w, &lwork,
                                                 &ifail);
            if (ifail != 0 || irevcm == 4) return ifail;
            if (answer != 0) {
                irevcm = answer;
                continue;
            }
            if (irevcm == 1)
                for (int i = 0; i < 3; ++i) v[i] = 4.0 * u[i] - (i > 0 ? u[i - 1] : T(0.0)) - (i < 2 ? u[i + 1] : T(0.0));
        }
        return 99;
    }
    int xaf(const char *trans = "N", const char *check = "C") {
        int ifail = -1;
        F11XAF(trans, &n, &nnz, a.data(), irow.data(), icol.data(), check, y.data(), x.data(), &ifail, 1, 1);
        return ifail;
    }
    int zaf(const char *dup = "R", const char *zero = "R") {
        int ifail = -1;
        F11ZAF(&n, &nnz, a.data(), irow.data(), icol.data(), dup, zero, istr.data(), iwork.data(), &ifail, 1, 1);
        return ifail;
    }
};

using Row = sparse_test::HostileRow<Data>;

const Row kRows[] = {
    // Sort and compress.
    {"sort N zero", [](Data &d) { d.n = 0; return d.zaf(); }, 1, " ** On entry, N .lt. 1: N ="},
    {"sort NNZ negative", [](Data &d) { d.nnz = -1; return d.zaf(); }, 1, " ** On entry, NNZ .lt. 0: NNZ ="},
    {"sort row index high", [](Data &d) { d.irow[4] = 4; return d.zaf(); }, 2, " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:"},
    {"sort column index low", [](Data &d) { d.icol[0] = 0; return d.zaf(); }, 2, " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:"},
    {"sort bad DUP", [](Data &d) { return d.zaf("X", "R"); }, 1, " ** On entry, DUP .ne. 'R', 'S', or 'F': DUP = 'X'."},
    {"sort bad ZERO", [](Data &d) { return d.zaf("R", "Q"); }, 1, " ** On entry, ZERO .ne. 'R', 'K', or 'F': ZERO   = 'Q'."},
    {"sort NaN values", [](Data &d) { d.a[1] = kNaN; d.a[2] = kInf; return d.zaf(); }, 0, ""},
    // Incomplete LU.
    {"LU LA one short", [](Data &d) { d.la = 13; return d.daf(); }, 1, " ** On entry, LA .lt. 2*NNZ:"},
    {"LU negative DTOL", [](Data &d) { d.lfill = -1; d.dtol = -1.0; return d.daf(); }, 1, " ** On entry, DTOL .lt. 0.0: DTOL = -1.0000E+00."},
    {"LU NaN DTOL", [](Data &d) { d.lfill = -1; d.dtol = kNaN; return d.daf(); }, 1, " ** On entry, DTOL .lt. 0.0:"},
    {"LU last option fault stands", [](Data &d) { return d.daf("Z", "Y"); }, 1, " ** On entry, MILU .ne. 'M' or 'N': MILU = 'Y' ."},
    {"LU N zero", [](Data &d) { d.n = 0; return d.daf(); }, 1, " ** On entry, N .lt. 1: N ="},
    {"LU NNZ above N squared", [](Data &d) { d.n = 2; d.nnz = 5; return d.daf(); }, 1, " ** On entry, NNZ .gt. N**2:"},
    {"LU huge N", [](Data &d) { d.n = INT_MAX; return d.daf(); }, 1, " ** On entry, LIWORK is too small:"},
    {"LU out of order", [](Data &d) { std::swap(d.icol[0], d.icol[1]); return d.daf(); }, 2, " ** On entry, A(I) is out of order:"},
    {"LU duplicate", [](Data &d) { d.icol[1] = 1; return d.daf(); }, 2, " ** On entry, the location (IROW(I), ICOL(I)) is a duplicate:"},
    {"LU user pivot out of range", [](Data &d) { d.ipivp[1] = 7; return d.daf("U"); }, 3, " ** On entry, a user-supplied value of IPIVP lies outside the range [1,N]."},
    {"LU user pivot repeated", [](Data &d) { d.ipivq[1] = 1; return d.daf("U"); }, 3, " ** On entry, a user-supplied value of IPIVQ is repeated."},
    {"LU LIWORK one short", [](Data &d) { d.liwork = 22; return d.daf(); }, 1, " ** On entry, LIWORK is too small: LIWORK =              22."},
    {"LU no room for fill", [](Data &d) { d.icol[5] = 1; d.la = 14; d.lfill = 1; return d.daf(); }, 4, " ** The number of non-zero entries in the decomposition is too large."},
    {"LU NaN value", [](Data &d) { d.a[3] = kNaN; return d.daf("P"); }, 5, " ** A serious error has occurred in an internal call to an auxiliary routine."},
    {"LU infinite value", [](Data &d) { d.a[1] = kInf; return d.daf("C"); }, 5, " ** A serious error has occurred in an internal call to an auxiliary routine."},
    {"LU largest values", [](Data &d) { for (int k = 0; k < 7; ++k) d.a[k] *= 1e307; return d.daf("C"); }, 0, ""},
    {"LU smallest values", [](Data &d) { for (int k = 0; k < 7; ++k) d.a[k] *= 1e-310; return d.daf("P"); }, 0, ""},
    // Incomplete Cholesky.
    {"IC bad PSTRAT", [](Data &d) { return d.jaf("P"); }, 1, " ** On entry, PSTRAT .ne. 'N', 'U' or 'M': PST  RAT = 'P'."},
    {"IC upper entry", [](Data &d) { d.lower(); d.icol[0] = 2; return d.jaf(); }, 2, " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. IROW(I):"},
    {"IC LIWORK one short", [](Data &d) { return d.jaf("N", 1); }, 1, " ** On entry, LIWORK is too small:"},
    {"IC NaN scale", [](Data &d) { d.dscale = kNaN; return d.jaf("M"); }, 5, " ** A serious error has occurred in an internal call to F11ZBF."},
    {"IC indefinite is safeguarded", [](Data &d) { d.dscale = -1.0; return d.jaf("N"); }, 0, ""},
    // Solve, after a good factorisation.
    {"solve bad CHECK", [](Data &d) { d.daf(); return d.dbf("N", "X"); }, 1, " ** On entry, CHECK .ne. 'C' or 'N': CHECK = 'X'."},
    {"solve bad TRANS", [](Data &d) { d.daf(); return d.dbf("X", "C"); }, 1, " ** On entry, TRANS .ne. 'N' or 'T': TRANS = 'X'."},
    {"solve N zero", [](Data &d) { d.daf(); d.n = 0; return d.dbf(); }, 2, " ** On entry, N .lt. 1: N ="},
    {"solve corrupt ISTR", [](Data &d) { d.daf(); d.istr[3] = 1000; return d.dbf(); }, 3, " ** On entry, ISTR appears to be invalid."},
    {"solve corrupt IDIAG", [](Data &d) { d.daf(); d.idiag[1] = d.idiag[0]; return d.dbf(); }, 3, " ** On entry, IDIAG(I) appears to be incorrect:"},
    {"solve corrupt IPIVQ", [](Data &d) { d.daf(); d.ipivq[2] = 1; return d.dbf(); }, 3, " ** On entry, IPIVQ(I) is a repeated value:"},
    {"solve NaN right-hand side", [](Data &d) { d.daf(); d.y[1] = kNaN; return d.dbf(); }, 0, ""},
    // Suite and driver.
    {"suite LWORK one short", [](Data &d) { return d.bef_short(); }, -6, " ** On first entry, parameter number  6 had an illegal value."},
    {"driver LWORK one short", [](Data &d) { return d.dcf("CGS", 8 * 3 + 99); }, 1, " ** On entry, LWORK is too small: LWORK =             123."},
    {"driver bad METHOD", [](Data &d) { return d.dcf("GMRES", 1000); }, 1, " ** On entry, METHOD .ne. 'RGMRES', 'CGS', or '  BICGSTAB':"},
    {"driver NaN right-hand side", [](Data &d) { d.y[1] = kNaN; return d.dcf("TFQMR", 1000); }, 6, " ** Algorithmic breakdown."},
    {"driver Inf right-hand side", [](Data &d) { d.y[2] = -kInf; return d.dcf("RGMRES", 1000); }, 6, " ** Algorithmic breakdown."},
    {"driver converges", [](Data &d) { return d.dcf("BICGSTAB", 1000); }, 0, ""},
    {"symmetric bad METHOD", [](Data &d) { return d.gef("CGS"); }, -1, " ** On entry, parameter number  1 had an illegal value."},
    {"symmetric N zero", [](Data &d) { return d.gef("CG", 0); }, -7, " ** On entry, parameter number  7 had an illegal value."},
    {"symmetric MAXITS zero", [](Data &d) { return d.gef("SYMMLQ", 3, 0); }, -13, " ** On entry, parameter number 13 had an illegal value."},
    {"symmetric LWORK one short", [](Data &d) { return d.gef("CG", 3, 5, 1); }, -6, " ** On first entry, parameter number  6 had an illegal value."},
    {"symmetric NaN right-hand side", [](Data &d) { d.y[1] = kNaN; return d.gef("CG"); }, 2, " ** The required accuracy could not be obtained."},
    {"symmetric Inf right-hand side", [](Data &d) { d.y[0] = kInf; return d.gef("SYMMLQ"); }, 2, " ** The required accuracy could not be obtained."},
    {"symmetric -Inf right-hand side", [](Data &d) { d.y[2] = -kInf; return d.gef<sparse_test::Complex>("CG"); }, 2, " ** The required accuracy could not be obtained."},
    // The inner products are not scaled: a right-hand side near overflow ends in the accuracy exit.
    {"symmetric largest values", [](Data &d) { for (double &e : d.y) e = 1e300; return d.gef("SYMMLQ"); }, 2, " ** The required accuracy could not be obtained."},
    {"symmetric smallest values", [](Data &d) { for (double &e : d.y) e = 1e-310; return d.gef<sparse_test::Complex>("CG"); }, 0, ""},
    {"symmetric immediate stop", [](Data &d) { return d.gef<sparse_test::Complex>("SYMMLQ", 3, 5, 0, 6); }, 8, " ** User-requested immediate termination."},
    {"Hermitian converges", [](Data &d) { return d.gef<sparse_test::Complex>("SYMMLQ"); }, 0, ""},
    // Products.
    {"product bad TRANS", [](Data &d) { return d.xaf("Q", "C"); }, 1, " ** On entry, TRANS .ne. 'N' or 'T': TRANS = 'Q'."},
    {"product bad structure", [](Data &d) { d.irow[6] = 1; return d.xaf("N", "C"); }, 2, " ** On entry, A(I) is out of order:"},
    {"product zero N unchecked", [](Data &d) { d.n = 0; return d.xaf("N", "N"); }, 2, " ** On entry, N .lt. 1: N ="},
};

TEST(HostileSparse, EveryRowEndsInItsExit) { sparse_test::expect_rows(kRows); }

namespace drivers {

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

} // namespace drivers

} // namespace
