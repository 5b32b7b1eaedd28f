// Test functions of Moré, Garbow and Hillstrom (ACM TOMS 7, 1981) as sums of squares, with their
// standard starts and known minima, for the small minimisers' tests.
#ifndef ZEK_TESTS_MGH_PROBLEMS_H
#define ZEK_TESTS_MGH_PROBLEMS_H

#include <vector>

namespace mgh {

struct Problem {
    const char *name;
    int n, m;
    std::vector<double> start;
    double fmin;                // the minimum of f = sum of squares
    std::vector<double> xmin;   // a minimiser, empty when not unique or not published
    // Residuals r (m) at x; Jacobian J (m by n, column order) when jac is not null.
    void (*residuals)(const double *x, double *r, double *jac);
};

const std::vector<Problem> &problems();
const Problem &find(const char *name);
// f = sum r_i^2 and its gradient 2 J'r.
double value(const Problem &p, const double *x, double *grad = nullptr);

} // namespace mgh

#endif
