// The bivariate normal distribution function by the integral over the angle of the correlation:
//   P(X <= x, Y <= y; rho) = Phi(x) Phi(y) + (1/2pi) int_0^asin(rho) exp(-q(theta)/2) dtheta,
//   q = ((x - y)^2 + 2xy (1 - sin theta)) / cos^2 theta,
// with 1 - sin theta formed as 2 sin^2(pi/4 - theta/2), so that the integrand stays exact as rho nears
// +-1 and x nears y.  The integrand keeps one sign, which makes a relative stopping test on the
// adaptive Gauss-Legendre panels meaningful.
#include <cmath>

#include "frame/raise.h"
#include "zek2/g01.h"

namespace zek {

namespace {

constexpr int kNodes = 10;
constexpr int kDepth = 30;    // bisections of a panel at most
constexpr int kPanels = 4000; // panel evaluations at most

struct GaussLegendre {
    double x[kNodes], w[kNodes];
    GaussLegendre() {
        // Roots of P_10 by Newton's method from the Chebyshev guesses, weights 2/((1 - x^2) P'(x)^2).
        const double pi = 3.14159265358979323846;
        for (int i = 0; i < kNodes; ++i) {
            double z = std::cos(pi * (i + 0.75) / (kNodes + 0.5)), dp = 1.0;
            for (int it = 0; it < 100; ++it) {
                double p0 = 1.0, p1 = z;
                for (int k = 2; k <= kNodes; ++k) {
                    const double p2 = ((2.0 * k - 1.0) * z * p1 - (k - 1.0) * p0) / k;
                    p0 = p1;
                    p1 = p2;
                }
                dp = kNodes * (z * p1 - p0) / (z * z - 1.0);
                const double step = p1 / dp;
                z -= step;
                if (std::fabs(step) < 1e-17) break;
            }
            x[i] = z;
            w[i] = 2.0 / ((1.0 - z * z) * dp * dp);
        }
    }
};

const GaussLegendre &rule() {
    static const GaussLegendre g;
    return g;
}

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

double panel(const Integrand &f, double a, double b) {
    const GaussLegendre &g = rule();
    const double mid = 0.5 * (a + b), half = 0.5 * (b - a);
    double s = 0.0;
    for (int i = 0; i < kNodes; ++i) s += g.w[i] * f(mid + half * g.x[i]);
    return s * half;
}

// Bisects the panels whose halves disagree with the whole by more than TOL, a share of the whole
// integral's own estimate; at most kPanels panels, so the work is bounded whatever the integrand.
double adaptive(const Integrand &f, double a, double b, double tol) {
    struct Panel { double a, b, whole; int depth; };
    Panel stack[kDepth + 2];
    int top = 0, used = 0;
    stack[top++] = Panel{a, b, panel(f, a, b), 0};
    double sum = 0.0;
    while (top > 0) {
        const Panel p = stack[--top];
        const double m = 0.5 * (p.a + p.b);
        const double left = panel(f, p.a, m), right = panel(f, m, p.b), both = left + right;
        used += 2;
        const double share = tol * (p.b - p.a) / (b - a);
        if (p.depth >= kDepth || used >= kPanels || top >= kDepth || std::fabs(both - p.whole) <= std::fabs(share)) {
            sum += both;
            continue;
        }
        stack[top++] = Panel{m, p.b, right, p.depth + 1};
        stack[top++] = Panel{p.a, m, left, p.depth + 1};
    }
    return sum;
}

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
    const double first = rho == 0.0 ? 0.0 : panel(f, 0.0, top);
    const double tol = 1e-15 * (std::fabs(first) / 6.2831853071795862 + px * py) * 6.2831853071795862 + 1e-300;
    const double integral = rho == 0.0 ? 0.0 : adaptive(f, 0.0, top, tol);
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
