// Bounds on the significance of the Durbin-Watson statistic.  Under the null hypothesis d is a ratio
// sum(lambda_i z_i^2) / sum(z_i^2) of independent standard normals z_i, with lambda_i the nonzero
// eigenvalues of M A (M the residual projector, A the difference form).  Those lie between the
// eigenvalues nu_j = 2 (1 - cos(pi j / n)) of A: the smallest n - IP of them give d_L, the largest
// n - IP give d_U, and P(d_U <= D) <= P(d <= D) <= P(d_L <= D).
#include <cmath>

#include "frame/ifail.h"
#include "statistics/gauss_legendre.h"
#include "statistics/distributions.h"
#include "zek2/g01.h"

namespace zek {

namespace {

constexpr double kPi = 3.14159265358979323846;

// The failure exits of G01EPF.
enum G01epfExit { kIpLessThan1, kNNotAboveIp, kDNegative };
constexpr ExitRow kG01epfExits[] = {
    {1, 99999, " ** On entry, IP.lt.1 : IP = %16ld"},
    {1, 99998, " ** On entry, N.le.IP : N = %16ld IP = %16ld"},
    {2, 99997, " ** On entry, D.lt.0.0 : D = %13.5e"},
};

// P(sum c_i z_i^2 <= 0) = 1/2 - (1/pi) int_0^inf sin(theta(u)) / (u rho(u)) du (Imhof's inversion),
// theta = (1/2) sum atan(c_i u), rho = prod (1 + c_i^2 u^2)^(1/4), over u = v/(1 - v), v in [0, 1).
double quadratic_form_below_zero(int m, const double *lambda, double d) {
    bool below = false, above = false;
    for (int i = 0; i < m; ++i) {
        below = below || lambda[i] < d;
        above = above || lambda[i] > d;
    }
    if (!above) return 1.0;
    if (!below) return 0.0;
    const auto f = [&](double v) {
        const double u = v / (1.0 - v);
        double theta = 0.0, lrho = 0.0, slope = 0.0;
        for (int i = 0; i < m; ++i) {
            const double c = lambda[i] - d;
            theta += std::atan(c * u);
            lrho += std::log1p(c * c * u * u);
            slope += c;
        }
        const double value = u > 0.0 ? std::sin(0.5 * theta) / (u * std::exp(0.25 * lrho)) : 0.5 * slope;
        return value / ((1.0 - v) * (1.0 - v));
    };
    const double p = 0.5 - gl_adaptive(f, 0.0, 1.0, 1e-14) / kPi;
    return p < 0.0 ? 0.0 : (p > 1.0 ? 1.0 : p);
}

} // namespace

void durbin_watson_bounds(long n, long ip, double d, double work[], double *pdl, double *pdu) {
    // nu_j = 2 (1 - cos(pi j / N)) written as 4 sin^2(pi j / 2N), which keeps the small ones to full
    // relative accuracy.  d_L takes nu_1 .. nu_(N-IP), d_U nu_IP .. nu_(N-1); WORK holds one set at a time.
    const long m = n - ip;
    for (int bound = 0; bound < 2; ++bound) {
        const long first = bound == 0 ? 1 : ip;
        for (long j = 0; j < m; ++j) {
            const double s = std::sin(kPi * static_cast<double>(first + j) / (2.0 * static_cast<double>(n)));
            work[j] = 4.0 * s * s;
        }
        (bound == 0 ? *pdl : *pdu) = quadratic_form_below_zero(static_cast<int>(m), work, d);
    }
}

} // namespace zek

extern "C" {

double H_DW_TAIL(const int *m, const double lambda[], const double *d) {
    if (*m < 1 || std::isnan(*d)) return 0.0;
    for (int i = 0; i < *m; ++i) {
        if (!std::isfinite(lambda[i])) return 0.0;
    }
    return zek::quadratic_form_below_zero(*m, lambda, *d);
}

void G01EPF(const int *n, const int *ip, const double *d, double *pdl, double *pdu, double work[], int *ifail) {
    zek::Front front("G01EPF");
    zek::FailureExit exit("G01EPF", front.errbuf(), ifail);
    const long nv = *n, pv = *ip;
    if (pv < 1) {
        zek::take(exit, zek::kG01epfExits, zek::kIpLessThan1, {pv});
    } else if (nv <= pv) {
        zek::take(exit, zek::kG01epfExits, zek::kNNotAboveIp, {nv, pv});
    } else if (!(*d >= 0.0) || std::isinf(*d)) {
        zek::take(exit, zek::kG01epfExits, zek::kDNegative, {*d});
    } else {
        zek::durbin_watson_bounds(nv, pv, *d, work, pdl, pdu);
        exit.succeed();
    }
    front.finish(*ifail);
}

} // extern "C"
