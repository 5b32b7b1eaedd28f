// The MPSX readers: the first two bytes give the limits on rows and columns (1..48), the third the
// default bounds, the objective sense, the listing flag and the reader (H02BUF, or E04MZF for a
// continuous problem), the rest is the file.
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz_support.h"
#include "zek2/e04.h"
#include "zek2/h02.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    zek_fuzz::silence_output();
    if (size < 3) return 0;
    const int maxm = 1 + data[0] % 48, maxn = 1 + data[1] % 48;
    const double xbldef = (data[2] & 1) ? -1.0e20 : 0.0;
    const double xbudef = (data[2] & 2) ? 1.0e20 : 10.0;
    const char *optim = (data[2] & 4) ? "MAX" : "MIN";
    const int mpslst = (data[2] & 8) ? 1 : 0;
    const bool continuous = (data[2] & 16) != 0;
    const auto mn = static_cast<std::size_t>(maxm) * static_cast<std::size_t>(maxn);
    const auto total = static_cast<std::size_t>(maxm + maxn);
    // One guard cell beyond every array: the reader must leave it alone.
    const double guard = -123.25;
    std::vector<double> a(mn + 1, guard), cvec(maxn + 1, guard), bl(total + 1, guard), bu(total + 1, guard),
        x(maxn + 1, guard);
    std::vector<int> intvar(maxn + 1, -7), rowtyp(maxm + 1, -7);
    std::vector<char> crname(8 * total + 1, '#');
    std::string problem(8, ' '), objective(8, ' '), rhs(8, ' '), ranges(8, ' '), bounds(8, ' ');
    zek_fuzz::MemoryUnit file(data + 3, size - 3);
    const int unit = file.unit();
    int m = -1, n = -1, ifail = 1;
    if (continuous)
        E04MZF_BYREF(&unit, &m, &n, &maxm, &maxn, a.data(), cvec.data(), bl.data(), bu.data(), rowtyp.data(),
                     problem.data(), objective.data(), rhs.data(), ranges.data(), bounds.data(), crname.data(),
                     x.data(), &xbldef, &xbudef, optim, &mpslst, &ifail, 8, 8, 8, 8, 8, 8, 3);
    else
        H02BUF(&unit, &m, &n, &maxm, &maxn, a.data(), cvec.data(), bl.data(), bu.data(), intvar.data(),
               rowtyp.data(), problem.data(), objective.data(), rhs.data(), ranges.data(), bounds.data(),
               crname.data(), x.data(), &xbldef, &xbudef, optim, &mpslst, &ifail, 8, 8, 8, 8, 8, 8, 3);
    if (ifail < 0 || ifail > (continuous ? 14 : 15)) __builtin_trap();
    // The continuous reader has no integer columns to mark.
    if (continuous)
        for (int v : intvar)
            if (v != -7) __builtin_trap();
    if (a[mn] != guard || cvec[maxn] != guard || bl[total] != guard || bu[total] != guard || x[maxn] != guard ||
        intvar[maxn] != -7 || rowtyp[maxm] != -7 || crname[8 * total] != '#')
        __builtin_trap();
    if (ifail == 0) {
        // M counts the constraints left once the objective row is taken out: none is a clean outcome.
        if (m < 0 || m > maxm || n < 1 || n > maxn) __builtin_trap();
        for (int j = 0; j < n + m; ++j)
            if (std::isnan(bl[j]) || std::isnan(bu[j])) __builtin_trap();
    }
    return 0;
}
