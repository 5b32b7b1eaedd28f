// The sparse structure fronts: arbitrary N, NNZ, indices, values and option letters through the sort and
// compress routines, the structure checks of the products, the relaxation steps, the incomplete
// factorisations and a driver.  Every array is sized exactly as the routine's contract asks, so the
// sanitizers see any read or write past it; a call must end in its exit or its result.
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "fuzz_support.h"
#include "zek2/f11.h"

namespace {

// The fuzzer's bytes read in order; zero once used up.
struct Bytes {
    const std::uint8_t *data;
    std::size_t size, at = 0;
    int next() { return at < size ? data[at++] : 0; }
};

// A value from one byte: mostly small numbers, some zeros and the extremes.
double value(int byte) {
    switch (byte % 16) {
    case 0: return 0.0;
    case 1: return std::numeric_limits<double>::quiet_NaN();
    case 2: return std::numeric_limits<double>::infinity();
    case 3: return -1e308;
    case 4: return 4.9e-324;
    default: return (byte - 128) / 16.0;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    zek_fuzz::silence_output();
    Bytes in{data, size};
    const int head = in.next();
    // N from -1 to 14, NNZ from -2 to 45: sizes, out of range indices and overfull lists all occur.
    const int n = head % 16 - 1, nnz = in.next() % 48 - 2;
    const char *const dups = "RSFx", *const zeros = "RKFy";
    const char dup = dups[(head / 16) % 4], zero = zeros[(head / 64) % 4];
    const std::size_t room = static_cast<std::size_t>(nnz > 0 ? nnz : 0), rows = static_cast<std::size_t>(n > 0 ? n : 0);
    std::vector<double> a(room), z(2 * room);
    std::vector<int> irow(room), icol(room);
    for (std::size_t k = 0; k < room; ++k) {
        irow[k] = in.next() % (n + 4) - 1;
        icol[k] = in.next() % (n + 4) - 1;
        a[k] = value(in.next());
        z[2 * k] = a[k], z[2 * k + 1] = value(in.next());
    }
    std::vector<int> istr(rows + 1), iwork(rows + 1);
    std::vector<double> x(2 * rows + 1, 1.0), y(2 * rows + 1, 0.5), work(2 * rows + 1), diag(2 * rows + 1);
    int ifail = 1;

    // The raw list through the checked fronts.
    F11XAF("N", &n, &nnz, a.data(), irow.data(), icol.data(), "C", x.data(), y.data(), &ifail, 1, 1);
    ifail = 1;
    F11XEF(&n, &nnz, a.data(), irow.data(), icol.data(), "C", x.data(), y.data(), &ifail, 1);
    const double omega = 1.0 + (head % 5) * 0.3;
    ifail = 1;
    F11DDF("T", &n, &nnz, a.data(), irow.data(), icol.data(), &omega, "C", x.data(), y.data(), &ifail, 1, 1);
    ifail = 1;
    const int niter = 2;
    F11DKF("N", "T", "I", &niter, &n, &nnz, a.data(), irow.data(), icol.data(), "C", x.data(), y.data(), diag.data(),
           work.data(), &ifail, 1, 1, 1, 1);

    // Sort and compress the general list (real and complex) and the lower triangle.
    std::vector<double> sa = a, sz = z, ta = a;
    std::vector<int> sr = irow, sc = icol, tr = irow, tc = icol, zr = irow, zc = icol;
    int snnz = nnz, znnz = nnz, tnnz = nnz;
    ifail = 1;
    F11ZAF(&n, &snnz, sa.data(), sr.data(), sc.data(), &dup, &zero, istr.data(), iwork.data(), &ifail, 1, 1);
    const bool sorted = ifail == 0;
    ifail = 1;
    F11ZNF(&n, &znnz, sz.data(), zr.data(), zc.data(), &dup, &zero, istr.data(), iwork.data(), &ifail, 1, 1);
    char errbuf[200];
    ifail = 1;
    F11ZBF(n, &tnnz, ta.data(), tr.data(), tc.data(), &dup, &zero, istr.data(), iwork.data(), errbuf, &ifail, 1, 1, 200);
    const bool lower = ifail == 0;
    if (!sorted || snnz < 1) return 0;

    // A sorted list: the unchecked steps, the factorisation and a driver with few iterations.
    ifail = 1;
    F11DDF("N", &n, &snnz, sa.data(), sr.data(), sc.data(), &omega, "N", x.data(), y.data(), &ifail, 1, 1);
    const int la = 3 * snnz + in.next() % 8, liwork = 7 * n + 2, lfill = in.next() % 3 - 1;
    const double dtol = 0.1;
    std::vector<double> fa(static_cast<std::size_t>(la));
    std::vector<int> fr(fa.size()), fc(fa.size()), ipivp(rows), ipivq(rows), fstr(rows + 1), idiag(rows),
        liw(static_cast<std::size_t>(liwork));
    std::copy(sa.begin(), sa.begin() + snnz, fa.begin());
    std::copy(sr.begin(), sr.begin() + snnz, fr.begin());
    std::copy(sc.begin(), sc.begin() + snnz, fc.begin());
    int nnzc = 0, npivm = 0;
    const char *const strategies = "NPCU";
    const char pstrat = strategies[in.next() % 4];
    ifail = 1;
    F11DAF(&n, &snnz, fa.data(), &la, fr.data(), fc.data(), &lfill, &dtol, &pstrat, "M", ipivp.data(), ipivq.data(),
           fstr.data(), idiag.data(), &nnzc, &npivm, liw.data(), &liwork, &ifail, 1, 1);
    if (ifail == 0) {
        ifail = 1;
        F11DBF("T", &n, fa.data(), &la, fr.data(), fc.data(), ipivp.data(), ipivq.data(), fstr.data(), idiag.data(),
               "C", x.data(), y.data(), &ifail, 1, 1);
    }
    const int m = 1 + in.next() % 3, maxitn = 4, lwork = (n + m + 5) * m + 4 * n + 101;
    const double tol = 1e-8;
    std::vector<double> dwork(static_cast<std::size_t>(lwork)), b(rows, 1.0), sol(rows, 0.0);
    std::vector<int> div(rows);
    double rnorm = 0.0;
    int itn = 0;
    const char precon = "NJS"[in.next() % 3];
    ifail = 1;
    F11DEF("RGMRES", &precon, &n, &snnz, sa.data(), sr.data(), sc.data(), &omega, b.data(), &m, &tol, &maxitn,
           sol.data(), &rnorm, &itn, dwork.data(), &lwork, div.data(), &ifail, 6, 1);

    if (lower && tnnz >= 1) {
        // The lower triangle, factorised and stepped.
        const int tla = 3 * tnnz + 4, tliwork = 7 * n + 1 + 2 * tla - 3 * tnnz;
        const double dscale = 1.0;
        std::vector<double> ca(static_cast<std::size_t>(tla));
        std::vector<int> cr(ca.size()), cc(ca.size()), ipiv(rows), cstr(rows + 1), cliw(static_cast<std::size_t>(tliwork));
        std::copy(ta.begin(), ta.begin() + tnnz, ca.begin());
        std::copy(tr.begin(), tr.begin() + tnnz, cr.begin());
        std::copy(tc.begin(), tc.begin() + tnnz, cc.begin());
        ifail = 1;
        F11JAF(&n, &tnnz, ca.data(), &tla, cr.data(), cc.data(), &lfill, &dtol, "N", &dscale, "M", ipiv.data(),
               cstr.data(), &nnzc, &npivm, cliw.data(), &tliwork, &ifail, 1, 1);
        std::vector<double> hz(2 * static_cast<std::size_t>(tnnz));
        for (int k = 0; k < tnnz; ++k) hz[2 * k] = ta[k];
        ifail = 1;
        F11JRF(&n, &tnnz, hz.data(), tr.data(), tc.data(), &omega, "C", x.data(), y.data(), &ifail, 1);
    }
    return 0;
}
