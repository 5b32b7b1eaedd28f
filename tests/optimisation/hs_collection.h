// Problems of the Hock-Schittkowski collection (W. Hock, K. Schittkowski, Test Examples for Nonlinear
// Programming Codes, 1981), written from their published definitions, start points and optima.  One
// table serves the SQP tests and the benchmark.  The functions are written once on a forward-mode
// derivative number, so that gradient and Jacobian come exact with the values.
#ifndef ZEK_TESTS_HS_COLLECTION_H
#define ZEK_TESTS_HS_COLLECTION_H

#include <array>
#include <cmath>
#include <vector>

#include "dual.h"
#include "sqp_test_support.h"

namespace zek_test::hs {

constexpr int kMaxN = 10;
using dual::Dual;
using dual::sq;

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

// Value, gradient and constraint Jacobian (column order, leading dimension ldj) at x; g and jac may be
// null.
double evaluate(const Problem &p, const double *x, double *g, double *c, double *jac, int ldj);

// The largest violation of bounds and constraints (relative to 1 + |bound|).
double violation(const Problem &p, const double *x);
// Solved: the published optimal value to 1e-6 relative at a point feasible to 1e-6.
bool solved(const Problem &p, double f, const double *x);

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
