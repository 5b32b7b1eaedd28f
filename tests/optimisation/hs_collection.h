// Problems of the Hock-Schittkowski collection (W. Hock, K. Schittkowski, Test Examples for Nonlinear
// Programming Codes, 1981), written from their published definitions, start points and optima.  One
// table serves the SQP tests and the benchmark.  The functions are written once on a forward-mode
// derivative number, so that gradient and Jacobian come exact with the values.
#ifndef ZEK_TESTS_HS_COLLECTION_H
#define ZEK_TESTS_HS_COLLECTION_H

#include <array>
#include <cmath>
#include <vector>

#include "sqp_test_support.h"

namespace zek_test::hs {

constexpr int kMaxN = 10;

// A value with its gradient in up to kMaxN variables.
struct Dual {
    double v = 0.0;
    std::array<double, kMaxN> d{};
    Dual() = default;
    Dual(double value) : v(value) {}  // NOLINT: constants mix freely with variables
};

inline Dual operator+(Dual a, const Dual &b) {
    a.v += b.v;
    for (int k = 0; k < kMaxN; ++k) a.d[k] += b.d[k];
    return a;
}
inline Dual operator-(Dual a, const Dual &b) {
    a.v -= b.v;
    for (int k = 0; k < kMaxN; ++k) a.d[k] -= b.d[k];
    return a;
}
inline Dual operator-(Dual a) {
    a.v = -a.v;
    for (double &e : a.d) e = -e;
    return a;
}
inline Dual operator*(const Dual &a, const Dual &b) {
    Dual r(a.v * b.v);
    for (int k = 0; k < kMaxN; ++k) r.d[k] = a.d[k] * b.v + a.v * b.d[k];
    return r;
}
inline Dual operator/(const Dual &a, const Dual &b) {
    Dual r(a.v / b.v);
    for (int k = 0; k < kMaxN; ++k) r.d[k] = (a.d[k] - r.v * b.d[k]) / b.v;
    return r;
}
// The chain rule for a function of one argument with value fv and derivative dv at a.
inline Dual chain(const Dual &a, double fv, double dv) {
    Dual r(fv);
    for (int k = 0; k < kMaxN; ++k) r.d[k] = dv * a.d[k];
    return r;
}
inline Dual sin(const Dual &a) { return chain(a, std::sin(a.v), std::cos(a.v)); }
inline Dual cos(const Dual &a) { return chain(a, std::cos(a.v), -std::sin(a.v)); }
inline Dual exp(const Dual &a) { return chain(a, std::exp(a.v), std::exp(a.v)); }
inline Dual log(const Dual &a) { return chain(a, std::log(a.v), 1.0 / a.v); }
inline Dual sqrt(const Dual &a) { return chain(a, std::sqrt(a.v), 0.5 / std::sqrt(a.v)); }
inline Dual pow(const Dual &a, double p) { return chain(a, std::pow(a.v, p), p * std::pow(a.v, p - 1.0)); }
inline Dual sq(const Dual &a) { return a * a; }

using Objective = Dual (*)(const Dual *x);
using Constraints = void (*)(const Dual *x, Dual *c);

// Equality constraints c_i(x) = 0 come first (me of them), then inequalities c_i(x) >= 0 (mi).
// Bounds beyond +-kInf are absent.
constexpr double kInf = 1e20;
struct Problem {
    const char *name;
    int n, me, mi;
    std::vector<double> x0, lo, hi;
    double fstar;
    Objective f;
    Constraints c;
};

const std::vector<Problem> &collection();

// Values, gradient and Jacobian (row-major by constraint is avoided: column order, leading dimension
// ldj) at x; g and jac may be null.
double evaluate(const Problem &p, const double *x, double *g, double *c, double *jac, int ldj);

// Relative distance of f from the published optimum and the largest violation of bounds and
// constraints (relative to 1 + |bound|).
double objective_error(const Problem &p, double f);
double violation(const Problem &p, const double *x);

// Solved: the published optimal value to 1e-6 relative at a point feasible to 1e-6.
inline bool solved(const Problem &p, double f, const double *x) {
    return objective_error(p, f) <= 1e-6 && violation(p, x) <= 1e-6;
}

// The problem in the form the SQP test helpers take (every constraint nonlinear).
inline sqp::Nlp as_nlp(const Problem &p) {
    sqp::Nlp q;
    q.n = p.n;
    q.ncnln = p.me + p.mi;
    q.x0 = p.x0;
    q.bl = p.lo;
    q.bu = p.hi;
    for (int i = 0; i < q.ncnln; ++i) {
        q.bl.push_back(0.0);
        q.bu.push_back(i < p.me ? 0.0 : kInf);
    }
    q.fstar = p.fstar;
    q.f = [&p](const double *x, double *g) { return evaluate(p, x, g, nullptr, nullptr, 1); };
    const int m = q.ncnln;
    q.con = [&p, m](const double *x, double *c, double *jac) { evaluate(p, x, nullptr, c, jac, m); };
    return q;
}

} // namespace zek_test::hs

#endif
