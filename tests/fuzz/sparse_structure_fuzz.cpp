// The sparse structure fronts: arbitrary N, NNZ, indices, values and option letters through the sort and
// compress routines, the structure checks of the products and the relaxation steps, and a driver.  Every array is sized exactly as the routine's contract asks, so the
// sanitizers see any read or write past it; a call must end in its exit or its result.
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "fuzz_support.h"
#include "zek2/f11.h"

namespace {

// The fuzzer's bytes read in order, zero once used up; a value from one byte is mostly a small number,
// sometimes zero, NaN, Inf or an extreme.
struct Bytes {
    const std::uint8_t *data;
    std::size_t size, at = 0;
    int next() { return at < size ? data[at++] : 0; }
};
double value(int byte) {
    const double special[] = {0.0, std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -1e308, 4.9e-324};
    return byte % 16 < 5 ? special[byte % 16] : (byte - 128) / 16.0;
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
    std::vector<double> a(room);
    std::vector<int> irow(room), icol(room);
    for (std::size_t k = 0; k < room; ++k) {
        irow[k] = in.next() % (n + 4) - 1;
        icol[k] = in.next() % (n + 4) - 1;
        a[k] = value(in.next());
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

    // Sort and compress the general list and the lower triangle.
    std::vector<double> sa = a, ta = a;
    std::vector<int> sr = irow, sc = icol, tr = irow, tc = icol;
    int snnz = nnz, tnnz = nnz;
    char errbuf[200];
    ifail = 1;
    F11ZAF(&n, &snnz, sa.data(), sr.data(), sc.data(), &dup, &zero, istr.data(), iwork.data(), &ifail, 1, 1);
    const bool sorted = ifail == 0;
    ifail = 1;
    F11ZBF(n, &tnnz, ta.data(), tr.data(), tc.data(), &dup, &zero, istr.data(), iwork.data(), errbuf, &ifail, 1, 1, 200);
    const bool lower = ifail == 0;
    if (!sorted || snnz < 1) return 0;

    // A sorted list: the unchecked step and a driver with a few iterations.
    ifail = 1;
    F11DDF("N", &n, &snnz, sa.data(), sr.data(), sc.data(), &omega, "N", x.data(), y.data(), &ifail, 1, 1);
    const int m = 1 + in.next() % 3, maxitn = 4, lwork = (n + m + 5) * m + 4 * n + 101;
    const double tol = 1e-8;
    std::vector<double> dwork(static_cast<std::size_t>(lwork)), b(rows, 1.0), sol(rows, 0.0);
    std::vector<int> places(rows);
    double rnorm = 0.0;
    int itn = 0;
    const char precon = "NJS"[in.next() % 3];
    ifail = 1;
    F11DEF("RGMRES", &precon, &n, &snnz, sa.data(), sr.data(), sc.data(), &omega, b.data(), &m, &tol, &maxitn,
           sol.data(), &rnorm, &itn, dwork.data(), &lwork, places.data(), &ifail, 6, 1);
    if (lower && tnnz >= 1) {
        std::vector<double> hz(2 * static_cast<std::size_t>(tnnz));
        for (int k = 0; k < tnnz; ++k) hz[2 * k] = ta[k];
        ifail = 1;
        F11JRF(&n, &tnnz, hz.data(), tr.data(), tc.data(), &omega, "C", x.data(), y.data(), &ifail, 1);
    }
    return 0;
}
