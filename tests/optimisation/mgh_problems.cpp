#include "mgh_problems.h"

#include <cmath>
#include <cstring>
#include <stdexcept>

namespace mgh {
namespace {

void set(double *jac, int m, int i, int j, double v) {
    if (jac) jac[i + j * m] = v;
}

void rosenbrock(const double *x, double *r, double *j) {
    r[0] = 10.0 * (x[1] - x[0] * x[0]);
    r[1] = 1.0 - x[0];
    set(j, 2, 0, 0, -20.0 * x[0]);
    set(j, 2, 0, 1, 10.0);
    set(j, 2, 1, 0, -1.0);
    set(j, 2, 1, 1, 0.0);
}

void helical_valley(const double *x, double *r, double *j) {
    const double pi = std::acos(-1.0);
    // theta = atan(x2/x1)/(2 pi), plus 1/2 when x1 < 0
    const double t = x[0] < 0.0 ? std::atan(x[1] / x[0]) / (2.0 * pi) + 0.5 : std::atan(x[1] / x[0]) / (2.0 * pi);
    const double rr = std::hypot(x[0], x[1]);
    r[0] = 10.0 * (x[2] - 10.0 * t);
    r[1] = 10.0 * (rr - 1.0);
    r[2] = x[2];
    if (j) {
        const double d = 2.0 * pi * rr * rr;
        set(j, 3, 0, 0, 100.0 * x[1] / d);
        set(j, 3, 0, 1, -100.0 * x[0] / d);
        set(j, 3, 0, 2, 10.0);
        set(j, 3, 1, 0, 10.0 * x[0] / rr);
        set(j, 3, 1, 1, 10.0 * x[1] / rr);
        set(j, 3, 1, 2, 0.0);
        set(j, 3, 2, 0, 0.0);
        set(j, 3, 2, 1, 0.0);
        set(j, 3, 2, 2, 1.0);
    }
}

void powell_singular(const double *x, double *r, double *j) {
    const double s5 = std::sqrt(5.0), s10 = std::sqrt(10.0);
    r[0] = x[0] + 10.0 * x[1];
    r[1] = s5 * (x[2] - x[3]);
    r[2] = (x[1] - 2.0 * x[2]) * (x[1] - 2.0 * x[2]);
    r[3] = s10 * (x[0] - x[3]) * (x[0] - x[3]);
    if (j) {
        std::memset(j, 0, sizeof(double) * 16);
        set(j, 4, 0, 0, 1.0);
        set(j, 4, 0, 1, 10.0);
        set(j, 4, 1, 2, s5);
        set(j, 4, 1, 3, -s5);
        set(j, 4, 2, 1, 2.0 * (x[1] - 2.0 * x[2]));
        set(j, 4, 2, 2, -4.0 * (x[1] - 2.0 * x[2]));
        set(j, 4, 3, 0, 2.0 * s10 * (x[0] - x[3]));
        set(j, 4, 3, 3, -2.0 * s10 * (x[0] - x[3]));
    }
}

void beale(const double *x, double *r, double *j) {
    const double y[3] = {1.5, 2.25, 2.625};
    for (int i = 0; i < 3; ++i) {
        const double p = std::pow(x[1], i + 1);
        r[i] = y[i] - x[0] * (1.0 - p);
        set(j, 3, i, 0, -(1.0 - p));
        set(j, 3, i, 1, x[0] * (i + 1) * std::pow(x[1], i));
    }
}

void wood(const double *x, double *r, double *j) {
    const double s90 = std::sqrt(90.0), s10 = std::sqrt(10.0), s01 = 1.0 / std::sqrt(10.0);
    r[0] = 10.0 * (x[1] - x[0] * x[0]);
    r[1] = 1.0 - x[0];
    r[2] = s90 * (x[3] - x[2] * x[2]);
    r[3] = 1.0 - x[2];
    r[4] = s10 * (x[1] + x[3] - 2.0);
    r[5] = s01 * (x[1] - x[3]);
    if (j) {
        std::memset(j, 0, sizeof(double) * 24);
        set(j, 6, 0, 0, -20.0 * x[0]);
        set(j, 6, 0, 1, 10.0);
        set(j, 6, 1, 0, -1.0);
        set(j, 6, 2, 2, -2.0 * s90 * x[2]);
        set(j, 6, 2, 3, s90);
        set(j, 6, 3, 2, -1.0);
        set(j, 6, 4, 1, s10);
        set(j, 6, 4, 3, s10);
        set(j, 6, 5, 1, s01);
        set(j, 6, 5, 3, -s01);
    }
}

// Box three-dimensional function, m = 10.
void box3(const double *x, double *r, double *j) {
    for (int i = 0; i < 10; ++i) {
        const double t = 0.1 * (i + 1);
        const double a = std::exp(-t * x[0]), b = std::exp(-t * x[1]), c = std::exp(-t) - std::exp(-10.0 * t);
        r[i] = a - b - x[2] * c;
        set(j, 10, i, 0, -t * a);
        set(j, 10, i, 1, t * b);
        set(j, 10, i, 2, -c);
    }
}

} // namespace

const std::vector<Problem> &problems() {
    static const std::vector<Problem> list = {
        {"Rosenbrock", 2, 2, {-1.2, 1.0}, 0.0, {1.0, 1.0}, rosenbrock},
        {"HelicalValley", 3, 3, {-1.0, 0.0, 0.0}, 0.0, {1.0, 0.0, 0.0}, helical_valley},
        {"PowellSingular", 4, 4, {3.0, -1.0, 0.0, 1.0}, 0.0, {0.0, 0.0, 0.0, 0.0}, powell_singular},
        {"Beale", 2, 3, {1.0, 1.0}, 0.0, {3.0, 0.5}, beale},
        {"Wood", 4, 6, {-3.0, -1.0, -3.0, -1.0}, 0.0, {1.0, 1.0, 1.0, 1.0}, wood},
        {"Box3", 3, 10, {0.0, 10.0, 20.0}, 0.0, {}, box3},
    };
    return list;
}

const Problem &find(const char *name) {
    for (const Problem &p : problems())
        if (std::strcmp(p.name, name) == 0) return p;
    throw std::runtime_error(name);
}

double value(const Problem &p, const double *x, double *grad) {
    std::vector<double> r(p.m), jac(static_cast<std::size_t>(p.m) * p.n);
    p.residuals(x, r.data(), grad ? jac.data() : nullptr);
    double f = 0.0;
    for (double v : r) f += v * v;
    if (grad)
        for (int k = 0; k < p.n; ++k) {
            double s = 0.0;
            for (int i = 0; i < p.m; ++i) s += jac[i + k * p.m] * r[i];
            grad[k] = 2.0 * s;
        }
    return f;
}

} // namespace mgh
