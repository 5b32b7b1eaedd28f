// The stand-alone members of chapters G03 and G07: standardising of chosen variables, and the median
// with its absolute deviation.
#include <cmath>
#include <cstddef>
#include <cstdio>

#include "frame/ifail.h"
#include "frame/raise.h"
#include "sorting/sorting.h"
#include "zek2/g03.h"
#include "zek2/g07.h"

namespace {

// The 0.75 quantile of the standard normal: the median absolute deviation of a normal sample divided
// by it estimates the standard deviation.
constexpr double kNormalQuartile = 0.6744897501962756;
constexpr int kLargestSortable = 0xfffffff;

// The failure exits of G03ZAF.
enum G03zafExit { kNvarLessThan1, kMLessThanNvar, kLdxLessThanN, kLdzLessThanN, kIsxCountNotNvar, kSNotPositive };
constexpr zek::ExitRow kG03zafExits[] = {
    {1, 99999, " ** On entry, NVAR.lt.1: NVAR = %16ld"},
    {1, 99998, " ** On entry, M.lt.NVAR: M = %16ld NVAR = %16ld"},
    {1, 99997, " ** On entry, LDX.lt.N : LDX = %16ld N = %16ld"},
    {1, 99996, " ** On entry, LDZ.lt.N : LDZ = %16ld N = %16ld"},
    {2, 99995, " ** On entry, %16ld values of ISX.gt.0,\n    but NVAR = %16ld"},
    {3, 99994, " ** On entry, element %16ld of S.le.0.0"},
};

// The median of |y - med| of the ascending y[0..n-1] by one walk outward from the median: the
// deviations below the median grow leftward and those above grow rightward, so merging the two runs
// meets them in ascending order.
double median_absolute_deviation(const double y[], std::ptrdiff_t n, double med) {
    std::ptrdiff_t left = n % 2 == 1 ? n / 2 : n / 2 - 1;
    std::ptrdiff_t right = left + 1;
    const std::ptrdiff_t k = (n - 1) / 2;  // the lower middle of the n deviations, counted from 0
    double previous = 0.0, current = 0.0;
    for (std::ptrdiff_t step = 0; step <= k + 1 && step < n; ++step) {
        const double dl = left >= 0 ? med - y[left] : HUGE_VAL;
        const double dr = right < n ? y[right] - med : HUGE_VAL;
        previous = current;
        if (dl <= dr) {
            current = dl;
            --left;
        } else {
            current = dr;
            ++right;
        }
        if (step == k && n % 2 == 1) return current;
    }
    return 0.5 * (previous + current);
}

} // namespace

extern "C" {

void g07dac(int n, const double x[], double y[], double *xme, double *xmd, double *xsd, ZekFail *fail) {
    static const char *const kName = "g07dac";
    zek::clear_fail(fail);
    if (n <= 1) {
        zek::raise_int_arg(fail, kName, ZE_INT_ARG_LE, "n", "1", n);
        return;
    }
    if (n > kLargestSortable) {
        char bound[16];
        std::snprintf(bound, sizeof bound, "%d", kLargestSortable);
        zek::raise_int_arg(fail, kName, ZE_INT_ARG_GT, "n", bound, n);
        return;
    }
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(x[i])) {
            zek::raise_text(fail, kName, ZE_BAD_PARAM, "x");
            return;
        }
    }
    for (int i = 0; i < n; ++i) y[i] = x[i];
    if (n == 2) {
        if (y[1] < y[0]) {
            y[0] = x[1];
            y[1] = x[0];
        }
        *xme = 0.5 * y[0] + 0.5 * y[1];
        *xmd = 0.5 * (y[1] - y[0]);
    } else {
        zek::sort_ascending(y, n);
        const std::ptrdiff_t h = n / 2;
        *xme = n % 2 == 1 ? y[h] : 0.5 * y[h - 1] + 0.5 * y[h];
        *xmd = median_absolute_deviation(y, n, *xme);
    }
    *xsd = *xmd / kNormalQuartile;
    zek::raise_success(fail, kName);
}

void G03ZAF(const int *n, const int *m, const double x[], const int *ldx, const int *nvar, const int isx[],
            const double s[], const double e[], double z[], const int *ldz, int *ifail) {
    zek::FailureExit exit("G03ZAF", nullptr, ifail);
    const long rows = *n, cols = *m, nv = *nvar, lx = *ldx, lz = *ldz;
    if (nv < 1) return void(zek::take(exit, kG03zafExits, kNvarLessThan1, {nv}));
    if (cols < nv) return void(zek::take(exit, kG03zafExits, kMLessThanNvar, {cols, nv}));
    if (lx < rows) return void(zek::take(exit, kG03zafExits, kLdxLessThanN, {lx, rows}));
    if (lz < rows) return void(zek::take(exit, kG03zafExits, kLdzLessThanN, {lz, rows}));
    long chosen = 0;
    for (long j = 0; j < cols; ++j) chosen += isx[j] > 0 ? 1 : 0;
    if (chosen != nv) return void(zek::take(exit, kG03zafExits, kIsxCountNotNvar, {chosen, nv}));
    for (long j = 0; j < cols; ++j) {
        if (isx[j] > 0 && !(s[j] > 0.0)) return void(zek::take(exit, kG03zafExits, kSNotPositive, {j + 1}));
    }
    std::ptrdiff_t k = 0;
    for (long j = 0; j < cols; ++j) {
        if (isx[j] <= 0) continue;
        const double *xc = x + static_cast<std::ptrdiff_t>(j) * lx;
        double *zc = z + k * lz;
        for (long i = 0; i < rows; ++i) zc[i] = (xc[i] - e[j]) / s[j];
        ++k;
    }
    exit.succeed();
}

} // extern "C"
