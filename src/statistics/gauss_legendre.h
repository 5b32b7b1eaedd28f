// Adaptive 10-point Gauss-Legendre quadrature for the distribution functions that are integrals of a
// smooth function over a finite range (the bivariate normal, the Durbin-Watson bounds).
#ifndef ZEK_STATISTICS_GAUSS_LEGENDRE_H
#define ZEK_STATISTICS_GAUSS_LEGENDRE_H

#include <cmath>

namespace zek {

inline constexpr int kGlNodes = 10;
inline constexpr int kGlDepth = 30;    // bisections of a panel at most
inline constexpr int kGlPanels = 4000; // panel evaluations at most

struct GaussLegendre {
    double x[kGlNodes], w[kGlNodes];
    GaussLegendre() {
        // Roots of P_10 by Newton's method from the Chebyshev guesses, weights 2/((1 - x^2) P'(x)^2).
        const double pi = 3.14159265358979323846;
        for (int i = 0; i < kGlNodes; ++i) {
            double z = std::cos(pi * (i + 0.75) / (kGlNodes + 0.5)), dp = 1.0;
            for (int it = 0; it < 100; ++it) {
                double p0 = 1.0, p1 = z;
                for (int k = 2; k <= kGlNodes; ++k) {
                    const double p2 = ((2.0 * k - 1.0) * z * p1 - (k - 1.0) * p0) / k;
                    p0 = p1;
                    p1 = p2;
                }
                dp = kGlNodes * (z * p1 - p0) / (z * z - 1.0);
                const double step = p1 / dp;
                z -= step;
                if (std::fabs(step) < 1e-17) break;
            }
            x[i] = z;
            w[i] = 2.0 / ((1.0 - z * z) * dp * dp);
        }
    }
};

inline const GaussLegendre &gl_rule() {
    static const GaussLegendre g;
    return g;
}

template <class F>
double gl_panel(const F &f, double a, double b) {
    const GaussLegendre &g = gl_rule();
    const double mid = 0.5 * (a + b), half = 0.5 * (b - a);
    double s = 0.0;
    for (int i = 0; i < kGlNodes; ++i) s += g.w[i] * f(mid + half * g.x[i]);
    return s * half;
}

// Bisects the panels whose halves disagree with the whole by more than TOL, a share of the whole
// integral's own estimate; at most kGlPanels panels, so the work is bounded whatever the integrand.
template <class F>
double gl_adaptive(const F &f, double a, double b, double tol) {
    struct Panel { double a, b, whole; int depth; };
    Panel stack[kGlDepth + 2];
    int top = 0, used = 0;
    stack[top++] = Panel{a, b, gl_panel(f, a, b), 0};
    double sum = 0.0;
    while (top > 0) {
        const Panel p = stack[--top];
        const double m = 0.5 * (p.a + p.b);
        const double left = gl_panel(f, p.a, m), right = gl_panel(f, m, p.b), both = left + right;
        used += 2;
        const double share = tol * (p.b - p.a) / (b - a);
        if (p.depth >= kGlDepth || used >= kGlPanels || top >= kGlDepth || std::fabs(both - p.whole) <= std::fabs(share)) {
            sum += both;
            continue;
        }
        stack[top++] = Panel{m, p.b, right, p.depth + 1};
        stack[top++] = Panel{p.a, m, left, p.depth + 1};
    }
    return sum;
}

} // namespace zek

#endif
