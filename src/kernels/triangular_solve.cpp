// Triangular solves: F07UEF/DTPTRS on packed storage and F07TUZ/ZLATRS.
#include "kernels/triangular_solve.h"

#include <algorithm>
#include <cstddef>

#include "kernels/factor_support.h"
#include "kernels/level2.h"
#include "zek2/f07.h"

namespace zek {

int tptrs(char uplo, char trans, char diag, int n, int nrhs, const double *ap, double *b, int ldb) {
    if (n == 0) return 0;
    if (diag == 'N') {
        // A zero on the diagonal makes T singular: report it before anything is solved.
        std::ptrdiff_t jj = 0;
        for (int j = 1; j <= n; ++j) {
            jj += (uplo == 'U') ? j : (j == 1 ? 1 : n - j + 2);
            if (ap[jj - 1] == 0.0) return j;
        }
    }
    for (int j = 0; j < nrhs; ++j) tpsv(uplo, trans, diag, n, ap, b + static_cast<std::ptrdiff_t>(j) * ldb, 1);
    return 0;
}

} // namespace zek

extern "C" void F07UEF(const char *uplo, const char *trans, const char *diag, const int *n, const int *nrhs,
                       const double *ap, double *b, const int *ldb, int *info, int, int, int) {
    const char u = zek::option_letter(uplo);
    char t = zek::option_letter(trans);
    const char d = zek::option_letter(diag);
    *info = 0;
    if (u != 'U' && u != 'L')
        *info = -1;
    else if (t != 'N' && t != 'T' && t != 'C')
        *info = -2;
    else if (d != 'U' && d != 'N')
        *info = -3;
    else if (*n < 0)
        *info = -4;
    else if (*nrhs < 0)
        *info = -5;
    else if (*ldb < std::max(1, *n))
        *info = -8;
    if (*info != 0) {
        zek::hard_report("F07UEF/DTPTRS", -*info);
        return;
    }
    if (t == 'C') t = 'T';
    *info = zek::tptrs(u, t, d, *n, *nrhs, ap, b, *ldb);
}
