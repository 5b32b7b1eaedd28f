// The Durbin-Watson statistic of a residual vector and the probabilities of its bounding
// distributions (G02FCF).
//
// For a regression of N observations on IP parameters (the mean term among them) the statistic
// d = sum (r_i - r_{i-1})^2 / sum r_i^2 lies, whatever the design, between two ratios of quadratic
// forms in N - IP independent normals, d_L = sum l_j u_j^2 / sum u_j^2 over the smallest N - IP of the
// nonzero eigenvalues l_j = 4 sin^2(pi j / (2N)), j = 1..N-1, of the differencing form, and d_U over the
// largest N - IP.  P(d_B <= d) = P(sum (l_j - d) u_j^2 <= 0) is found by Imhof's inversion of the
// characteristic function,
//   P(Q <= 0) = 1/2 - (1/pi) int_0^inf sin(theta(u)) / (u rho(u)) du,
//   theta(u) = 1/2 sum atan(c_j u),  rho(u) = prod (1 + c_j^2 u^2)^(1/4),
// over u = t/(1 - t), t in (0, 1), by the library's adaptive Gauss-Kronrod quadrature with extrapolation,
// which takes the integrable end point singularity that the change of variable leaves at t = 1 when
// N - IP is 1.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/ifail.h"
#include "statistics/descriptive.h"
#include "zek2/d01.h"
#include "zek2/g02.h"

namespace zek {

namespace {

using std::ptrdiff_t;

constexpr ExitRow kG02fcfExits[] = {
    {1, 99999, " ** On entry, IP.lt.1 : IP = %16ld"},
    {1, 99998, " ** On entry, N.le.IP : N = %16ld IP = %16ld"},
    {2, 99997, " ** On entry, element %16ld of RES is not finite"},
    {3, 99996, " ** The residuals are all zero"},
    {4, 99995, " ** The probabilities may not be accurate to 1.0e-8 : PDL = %13.5e PDU = %13.5e"},
};

constexpr int kPieces = 200;
constexpr double kPi = 3.14159265358979323846;

struct Form {
    const double *c;
    ptrdiff_t count;
};

double ZEK_CALLBACK imhof_integrand(double t, void *user) {
    const Form &f = *static_cast<const Form *>(user);
    if (!(t > 0.0) || !(t < 1.0)) return 0.0;
    const double u = t / (1.0 - t);
    double theta = 0.0, log_rho = 0.0;
    for (ptrdiff_t j = 0; j < f.count; ++j) {
        theta += std::atan(f.c[j] * u);
        log_rho += std::log1p((f.c[j] * u) * (f.c[j] * u));
    }
    // du = dt / (1 - t)^2, and u (1 - t)^2 = t (1 - t).
    return std::sin(0.5 * theta) * std::exp(-0.25 * log_rho) / (t * (1.0 - t));
}

// P(sum c_j u_j^2 <= 0) for independent standard normals u_j; false when the quadrature fell short.
bool quadratic_form_below_zero(double c[], ptrdiff_t count, double *p) {
    double cmin = c[0], cmax = c[0];
    for (ptrdiff_t j = 1; j < count; ++j) {
        cmin = std::min(cmin, c[j]);
        cmax = std::max(cmax, c[j]);
    }
    if (cmax <= 0.0) return *p = 1.0, true;
    if (cmin >= 0.0) return *p = 0.0, true;
    // The probability is unchanged by a positive scale; unit largest coefficient keeps u near 1.
    const double s = std::max(-cmin, cmax);
    for (ptrdiff_t j = 0; j < count; ++j) c[j] /= s;
    Form form{c, count};
    double alist[kPieces], blist[kPieces], rlist[kPieces], elist[kPieces], integral = 0.0, error = 0.0;
    int iord[kPieces], neval = 0, ier = 0, last = 0;
    D01SJ_WORKER(imhof_integrand, &form, 0.0, 1.0, 1e-11, 0.0, kPieces, &integral, &error, &neval, &ier, alist, blist,
                 rlist, elist, iord, &last);
    *p = std::clamp(0.5 - integral / kPi, 0.0, 1.0);
    return std::isfinite(integral) && (ier == 0 || error < 1e-8);
}

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
    const ptrdiff_t k = n - ip;
    bool accurate = true;
    double p[2];
    for (int bound = 0; bound < 2; ++bound) {
        // Lower bound: eigenvalues 1..N-IP; upper: IP..N-1.
        const ptrdiff_t first = bound == 0 ? 1 : ip;
        for (ptrdiff_t j = 0; j < k; ++j) {
            const double s = std::sin(kPi * static_cast<double>(first + j) / (2.0 * n));
            work[j] = 4.0 * s * s - stat;
        }
        accurate = quadratic_form_below_zero(work, k, &p[bound]) && accurate;
    }
    *d = stat;
    *pdl = p[0];
    *pdu = p[1];
    if (!accurate) return void(take(exit, kG02fcfExits, 4, {p[0], p[1]}));
    exit.succeed();
}

} // namespace zek

extern "C" void G02FCF(const int *n, const int *ip, const double res[], double *d, double *pdl, double *pdu,
                       double work[], int *ifail) {
    zek::Front front("G02FCF");
    zek::g02fcf_worker(*n, *ip, res, d, pdl, pdu, work, front.errbuf(), ifail);
    front.finish(*ifail);
}
