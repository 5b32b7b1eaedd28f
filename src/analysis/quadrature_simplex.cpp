// Integration over a simplex by a ladder of lattice rules: the rule of order k is the mean of the
// function over the points of the simplex whose barycentric coordinates are odd multiples of 1/m,
// m = n + 2k - 1, times the volume.  Its error expands in even powers of h = 2/m, so Richardson
// extrapolation over orders 1..k gives a rule of degree 2k - 1 (the Grundmann-Moller rule).  All state
// lives in the caller's arrays, so a ladder can be resumed with a higher top order.
#include <cmath>

#include "../frame/ifail.h"
#include "zek2/d01.h"
#include "zek2/f03.h"
#include "zek2/frame.h"

namespace {

// The step of order k (k >= 1) in n dimensions.
double order_step(int n, int k) { return 2.0 / (n + 2 * k - 1); }

// The integration over a simplex, D01PAF.
enum D01pafExit { kNdimBelow2, kIv1TooSmall, kIv2TooSmall, kMinordNegative, kMaxordNotAbove, kVolume, kTooManyPoints };
constexpr zek::ExitRow kD01pafExits[] = {
    {1, 99999, " ** On entry, NDIM .lt. 2: NDIM =%16ld."},
    {1, 99998, " ** On entry, IV1 .lt. NDIM+1:\n    IV1 =%16ld, NDIM =%16ld."},
    {1, 99997, " ** On entry, IV2 .lt. 2*NDIM+2:\n    IV2 =%16ld, NDIM =%16ld."},
    {1, 99996, " ** On entry, MINORD .lt. 0: MINORD =%16ld."},
    {1, 99995, " ** On entry, MAXORD .le. MINORD:\n    MAXORD =%16ld, MINORD =%16ld."},
    {2, 99994, " ** The volume of the simplex integration region is too\n    large or too small to be represented on "
               "the machine."},
    {3, 99993, " ** The ladder would need more than 2147483647 evaluations at order K:\n    K =%16ld."},
};

} // namespace

extern "C" void D01PAF_WORKER(int ndim, double vert[], int iv1, int iv2, ZekD01Function functn, int *minord,
                              int maxord, double finvls[], double esterr[], int iuser[], double ruser[], char *errbuf,
                              int *ifail, int) {
    zek::FailureExit exit("D01PAF", errbuf, ifail);
    const int n = ndim;
    if (n < 2) return void(zek::take(exit, kD01pafExits, kNdimBelow2, {ndim}));
    if (iv1 < n + 1) return void(zek::take(exit, kD01pafExits, kIv1TooSmall, {iv1, ndim}));
    if (iv2 < 2 * n + 2) return void(zek::take(exit, kD01pafExits, kIv2TooSmall, {iv2, ndim}));
    if (*minord < 0) return void(zek::take(exit, kD01pafExits, kMinordNegative, {*minord}));
    if (maxord <= *minord) return void(zek::take(exit, kD01pafExits, kMaxordNotAbove, {maxord, *minord}));
    const std::ptrdiff_t ld = iv1;
    auto v = [&](int i, int j) -> double & { return vert[(i - 1) + (j - 1) * ld]; };  // one-based
    double &volume_slot = v(1, 2 * n + 2);
    double &count_slot = v(2, 2 * n + 2);
    if (*minord < 1) {
        // Edge matrix (vertex i minus the last vertex) in columns n+1..2n, work in column 2n+1.
        for (int i = 1; i <= n; ++i)
            for (int j = 1; j <= n; ++j) v(i, n + j) = v(i, j) - v(n + 1, j);
        double det = 0.0;
        int fail = 1;
        const int ia = iv1;
        F03AAF(&v(1, n + 1), &ia, &n, &det, &v(1, 2 * n + 1), &fail);
        double factorial = 1.0;
        for (int i = 2; i <= n; ++i) factorial *= i;
        const double volume = std::fabs(det) / factorial;
        if (fail != 0 || !std::isfinite(det) || !(volume > 0.0) || !std::isfinite(volume))
            return void(zek::take(exit, kD01pafExits, kVolume));
        volume_slot = volume;
        count_slot = 0.0;
    }
    double *walker = &v(1, n + 1);  // the barycentric odd integers, n+1 of them
    double *point = &v(1, n + 2);
    for (int k = *minord + 1; k <= maxord; ++k) {
        // Order k: the points whose barycentric coordinates are odd multiples of 1/m, m = n + 2k - 1,
        // that is the walker's odd integers summing to m; there are C(n + k - 1, n) of them.
        const int budget = k - 1;  // sum of beta, the walker's entries being 2 beta + 1
        const int m = n + 2 * k - 1;
        double points = 1.0;
        for (int i = 1; i <= n; ++i) points = points * (budget + i) / i;
        if (points > 2147483647.0 - count_slot) return void(zek::take(exit, kD01pafExits, kTooManyPoints, {k}));
        // Odometer over beta(1..n) with their sum at most BUDGET; beta(0) takes the rest.
        for (int j = 0; j <= n; ++j) walker[j] = 1.0;
        walker[0] = 2.0 * budget + 1.0;
        int sum = 0;
        double total = 0.0;
        for (;;) {
            for (int c = 0; c < n; ++c) {
                double x = 0.0;
                for (int j = 0; j <= n; ++j) x += walker[j] * v(j + 1, c + 1);
                point[c] = x / m;
            }
            total += D01_ADAPT_F_ALIAS(functn, n, point, iuser, ruser);
            // Next: add 2 to the last entry, carrying leftwards when the sum would pass the budget.
            int pos = n;
            while (pos >= 1) {
                if (sum < budget) {
                    walker[pos] += 2.0;
                    ++sum;
                    break;
                }
                sum -= static_cast<int>((walker[pos] - 1.0) / 2.0);
                walker[pos] = 1.0;
                --pos;
            }
            if (pos < 1) break;
            walker[0] = 2.0 * (budget - sum) + 1.0;
        }
        count_slot += points;
        const double plain = volume_slot * (total / points);
        // Richardson extrapolation in h^2 over the earlier orders (in place: FINVLS(j) holds the value
        // from orders j..k-1 and becomes the value from orders j..k).
        const double h = order_step(n, k);
        const double previous_best = k > 1 ? finvls[0] : 0.0;
        double value = plain;
        for (int j = k - 1; j >= 1; --j) {
            const double g = order_step(n, j);
            const double old = finvls[j - 1];
            finvls[j] = value;
            value = value - (h * h / (h * h - g * g)) * (value - old);
        }
        finvls[0] = value;
        esterr[k - 1] = std::fabs(value - previous_best);
        *minord = k;
    }
    exit.succeed();
}

extern "C" void D01PAF(const int *ndim, double vert[], const int *iv1, const int *iv2, ZekD01Function functn,
                       int *minord, const int *maxord, double finvls[], double esterr[], int iuser[], double ruser[],
                       int *ifail) {
    zek::Front front("D01PAF");
    D01PAF_WORKER(*ndim, vert, *iv1, *iv2, functn, minord, *maxord, finvls, esterr, iuser, ruser, front.errbuf(), ifail,
                  zek::kErrbufLength);
    front.finish(*ifail);
}
