// The Durbin-Watson statistic of a residual vector and the probabilities of its bounding
// distributions (G02FCF).  The statistic is formed on the residuals over their largest, so neither sum
// can overflow or vanish; the probabilities are those of G01EPF, from the same routine.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <new>
#include <vector>

#include "frame/ifail.h"
#include "frame/raise.h"
#include "statistics/descriptive.h"
#include "statistics/distributions.h"
#include "zek2/g02.h"

namespace zek {

namespace {

using std::ptrdiff_t;

constexpr ExitRow kG02fcfExits[] = {
    {1, 99999, " ** On entry, IP.lt.1 : IP = %16ld"},
    {1, 99998, " ** On entry, N.le.IP : N = %16ld IP = %16ld"},
    {2, 99997, " ** On entry, element %16ld of RES is not finite"},
    {3, 99996, " ** The residuals are all zero"},
};

} // namespace

void g02fcf_worker(int n, int ip, const double res[], double *d, double *pdl, double *pdu, double work[], char *errbuf,
                   int *ifail) {
    FailureExit exit("G02FCF", errbuf, ifail);
    if (ip < 1) return void(take(exit, kG02fcfExits, 0, {ip}));
    if (n <= ip) return void(take(exit, kG02fcfExits, 1, {n, ip}));
    double big = 0.0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        if (!std::isfinite(res[i])) return void(take(exit, kG02fcfExits, 2, {static_cast<long>(i + 1)}));
        big = std::max(big, std::fabs(res[i]));
    }
    if (big == 0.0) return void(take(exit, kG02fcfExits, 3));
    // Residuals over their largest: neither sum can overflow or lose all to underflow.
    double num = 0.0, den = 0.0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const double r = res[i] / big;
        den += r * r;
        if (i > 0) {
            const double e = r - res[i - 1] / big;
            num += e * e;
        }
    }
    const double stat = num / den;
    double p[2];
    durbin_watson_bounds(n, ip, stat, work, &p[0], &p[1]);
    *d = stat;
    *pdl = p[0];
    *pdu = p[1];
    exit.succeed();
}

} // namespace zek

extern "C" void G02FCF(const int *n, const int *ip, const double res[], double *d, double *pdl, double *pdu,
                       double work[], int *ifail) {
    zek::Front front("G02FCF");
    zek::g02fcf_worker(*n, *ip, res, d, pdl, pdu, work, front.errbuf(), ifail);
    front.finish(*ifail);
}

extern "C" void g02fcc(int n, int ip, const double res[], double *d, double *pdl, double *pdu, ZekFail *fail) {
    static const char *const kName = "g02fcc";
    zek::clear_fail(fail);
    if (ip < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (n <= ip) return zek::raise_int_pair(fail, kName, ZE_2_INT_ARG_LE, "n", n, "ip", ip);
    std::vector<double> work;
    try {
        work.resize(static_cast<std::size_t>(n - ip));
    } catch (const std::bad_alloc &) {
        return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    }
    int ifail = 1;
    zek::g02fcf_worker(n, ip, res, d, pdl, pdu, work.data(), nullptr, &ifail);
    switch (ifail) {
    case 0: return zek::raise_success(fail, kName);
    case 2: return zek::raise_text(fail, kName, ZE_BAD_PARAM, "res");
    case 3: return zek::raise_plain(fail, kName, ZW_RSS_EQ_ZERO);
    default: return zek::raise_plain(fail, kName, ZE_INTERNAL_ERROR);
    }
}
