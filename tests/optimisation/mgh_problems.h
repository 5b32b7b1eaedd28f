// Test functions of Moré, Garbow and Hillstrom (ACM TOMS 7, 1981) as sums of squares, with their
// standard starts and known minima, and the calls of the small minimisers that their tests share.
#ifndef ZEK_TESTS_MGH_PROBLEMS_H
#define ZEK_TESTS_MGH_PROBLEMS_H

#include <initializer_list>
#include <vector>

#include "zek2/e04.h"

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

// E04CCF on N variables from X (sized for at least one) with the documented workspace; IW 0 means
// N + 1.  Returns IFAIL.
int simplex(ZekE04FunctSimplex f, int n, std::vector<double> &x, double *fmin, double tol, int maxcal,
            ZekE04MonitSimplex monitor = nullptr, int iw = 0);

// E04DGA on N variables from X (sized for at least one) after the option strings OPTIONS; G has the
// final gradient.  Returns IFAIL.
int conjugate_gradients(ZekE04Objfun f, int n, std::vector<double> &x, double *objf, std::vector<double> &g,
                        int *iuser, double *ruser, std::initializer_list<const char *> options = {});

// The easy bound-constrained forms on N variables in [BL, BU] (IBOUND 0 reads them), with LIW and LW
// short of the documented lengths by the given amounts.  Returns IFAIL; E04JYF leaves G as it was.
enum BoundRoutine { kJY, kKY, kKZ, kLY };
extern const char *const kBoundNames[4];
struct BoundFunctions {
    ZekE04BoundFunct1 funct1;
    ZekE04BoundFunct2 funct2;
    ZekE04BoundHess2 hess2;
};
int bound(BoundRoutine r, const BoundFunctions &fn, int n, int ibound, std::vector<double> &bl,
          std::vector<double> &bu, std::vector<double> &x, double *f, std::vector<double> &g,
          std::vector<int> &iw, int liw_short = 0, int lw_short = 0);

} // namespace mgh

#endif
