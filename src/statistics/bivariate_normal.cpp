// The bivariate normal distribution function by the integral over the angle of the correlation:
//   P(X <= x, Y <= y; rho) = Phi(x) Phi(y) + (1/2pi) int_0^asin(rho) exp(-q(theta)/2) dtheta,
//   q = ((x - y)^2 + 2xy (1 - sin theta)) / cos^2 theta,
// with 1 - sin theta formed as 2 sin^2(pi/4 - theta/2), so that the integrand stays exact as rho nears
// +-1 and x nears y.  The integrand keeps one sign, which makes a relative stopping test on the
// adaptive Gauss-Legendre panels meaningful.
#include <cmath>

#include "frame/raise.h"
#include "statistics/gauss_legendre.h"
#include "zek2/g01.h"

namespace zek {

namespace {

struct Integrand {
    double x, y;
    double operator()(double theta) const {
        const double h = std::sin(0.78539816339744831 - 0.5 * theta);
        const double one_minus = 2.0 * h * h, one_plus = 2.0 - one_minus;
        const double d = x - y;
        const double q = (d * d / one_minus + 2.0 * x * y) / one_plus;
        return std::exp(-0.5 * q);
    }
};

} // namespace

double bivariate_normal(double x, double y, double rho) {
    // Beyond 40 either margin is 0 or 1 to below the smallest number, and the integrand's squares stay
    // finite.
    x = x < -40.0 ? -40.0 : (x > 40.0 ? 40.0 : x);
    y = y < -40.0 ? -40.0 : (y > 40.0 ? 40.0 : y);
    const double px = g01eac(Zek_LowerTail, x, nullptr), py = g01eac(Zek_LowerTail, y, nullptr);
    if (rho >= 1.0) return px < py ? px : py;
    if (rho <= -1.0) return px + py > 1.0 ? px + py - 1.0 : 0.0;
    const Integrand f{x, y};
    const double top = std::asin(rho);
    // The tolerance: 1e-15 of what the sum will be, judged from a first panel and Phi(x) Phi(y).
    const double first = rho == 0.0 ? 0.0 : gl_panel(f, 0.0, top);
    const double tol = 1e-15 * (std::fabs(first) / 6.2831853071795862 + px * py) * 6.2831853071795862 + 1e-300;
    const double integral = rho == 0.0 ? 0.0 : gl_adaptive(f, 0.0, top, tol);
    const double p = px * py + integral / 6.2831853071795862;
    return p < 0.0 ? 0.0 : (p > 1.0 ? 1.0 : p);
}

} // namespace zek

extern "C" double g01hac(double x, double y, double rho, ZekFail *fail) {
    static const char *const kName = "g01hac";
    zek::clear_fail(fail);
    if (std::isnan(x)) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x"), 0.0;
    if (std::isnan(y)) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "y"), 0.0;
    if (!(rho >= -1.0 && rho <= 1.0)) {
        return zek::raise_formatted(fail, kName, ZE_REAL_ARG_CONS, "rho", rho, "-1.0 <= rho <= 1.0"), 0.0;
    }
    const double p = zek::bivariate_normal(x, y, rho);
    zek::raise_success(fail, kName);
    return p;
}
