// Sequential quadratic programming: the engine of E04UCA (general objective) and E04USA (sum of squares).
//
//     minimise F(x)  subject to  bl <= ( x ; A x ; c(x) ) <= bu
//
// Each major iteration solves the quadratic subproblem
//     minimise g'p + 1/2 p'Hp  subject to the bounds, the linear rows and the linearised rows  c + J p,
// with H = R'R the quasi-Newton approximation of the Hessian of the Lagrangian, by the library's QP run
// (in the shifted variable x+p, so the bounds and linear rows keep their data).  A point x+p that the
// QP cannot make feasible for the linearised rows is replaced by the least-infeasible one, and the QP is
// solved again with those rows relaxed just enough to admit it (the elastic re-solve).
//
// The step is searched on the augmented Lagrangian merit function in (x, lambda, s), s the slacks of
// the nonlinear rows held inside their bounds:
//     M(x, lambda, s) = F - lambda'(c - s) + 1/2 sum rho_i (c_i - s_i)^2,
// along (p, mu - lambda, c + Jp - s), mu the QP multipliers of the nonlinear rows.  The penalties rho are
// the least (in norm) that make the directional derivative at most -1/2 p'Hp; they never decrease, and
// are capped at RHOMAX.  R is updated by BFGS in product form (Powell's damping keeps s'y >= 0.2 s'Hs),
// the triangle restored by plane rotations.
//
// The user's functions are reached through a Model: n_obj objective rows (1 for E04UCA: F itself with
// its gradient as a 1 by n Jacobian; m for E04USA: the subfunctions) and n_con constraint rows.  An
// element of a Jacobian that the user's routine leaves at the marker -11111 at the first call is
// "missing" and is estimated by differences at every later point.
#ifndef ZEK_OPTIMISATION_SQP_H
#define ZEK_OPTIMISATION_SQP_H

#include <cstddef>

#include "optimisation/active_set.h"

namespace zek::sqp {

constexpr double kMissing = -11111.0;
// The mask of derivative elements (Run::miss): given by the user, estimated by differences, or found
// constant by the interval search and held at zero.
constexpr double kElementGiven = 0.0, kElementEstimated = 1.0, kElementConstant = -1.0;

// The user's routines behind their adaptors.  mode 0 asks for values, 2 for values and Jacobian; the
// returned mode is what the user's routine left (negative: stop).  Outputs go where the caller says.
class Model {
public:
    virtual ~Model() = default;
    virtual int objective(int mode, const double *x, int nstate, double *fv, double *fjac, int ldf) = 0;
    virtual int constraints(int mode, const double *x, int nstate, double *c, double *cjac, int ldcj) = 0;
    // The objective and its gradient from the rows' values and Jacobian.
    virtual double combine(const double *fv, const double *fjac, int ldf, double *g) const = 0;
    virtual double combine_value(const double *fv) const = 0;
};

struct Config {
    const char *name = "E04UCA";   // in the exit texts
    bool least_squares = false;    // E04USA wording and Hessian start
    int major_limit = 50, major_print = 0, print_unit = 6;
    int derivative_level = 3, verify_level = 0;
    int start_obj = 1, stop_obj = 1, start_con = 1, stop_con = 1;
    int difference_mode = 0;       // 0 intervals computed, 1 given, 2 per variable (computed here)
    double ctol = 1e-8, step_limit = 2.0, epsrf = 1e-14, eta = 0.9, fdint = 0.0, cdint = 0.0;
    double opttol = 1e-10, condition_bound = 1e8;
    bool warm = false;
    int unit_hessian = 1, reset_frequency = 0;  // E04USA: 0 J'J start, 1 identity; reset every k majors
    active_set::Settings qp;       // the subproblems' settings
};

// Real and integer workspace of a run beyond what the caller's arguments hold.
std::ptrdiff_t real_work_needed(int n, int nclin, int ncnln, int nobj);
std::ptrdiff_t integer_work_needed(int n);

enum Inform : int {
    kOptimal = 0, kAccuracy = 1, kLinearInfeasible = 2, kNonlinearInfeasible = 3, kMajorLimit = 4,
    kCannotImprove = 6, kBadDerivatives = 7, kInputErrors = 9,
};

// One run.  The caller's arrays are used in place: x, istate, clamda, r, and the model's rows
// (fv, fjac, c, cjac), which always hold the values at the current x.
struct Run {
    Config cfg;
    Model *model = nullptr;
    int n = 0, nclin = 0, ncnln = 0, nobj = 1;
    const double *a = nullptr;
    int lda = 1;
    const double *bl = nullptr, *bu = nullptr;
    int *istate = nullptr;
    double *x = nullptr, *clamda = nullptr, *r = nullptr;
    int ldr = 1;
    double *fv = nullptr, *fjac = nullptr, *c = nullptr, *cjac = nullptr;
    int ldf = 1, ldcj = 1;
    double *objf = nullptr, *g = nullptr;  // objective and its gradient at x
    int *iwork = nullptr;
    double *work = nullptr;

    // Progress.
    int major = 0, minor = 0, nfun = 0, ngrad = 0;
    int user_mode = 0;               // the negative mode that stopped the run
    bool nonfinite_start = false;    // the functions were not finite at the start point
    bool central = false;            // central differences in use
    int missing_obj = 0, missing_con = 0;
    double alpha = 0.0, rhonorm = 0.0, violation = 0.0, gz_norm = 0.0;
    double cond_h = 1.0, cond_hz = 1.0, cond_t = 1.0;
    int merit_sign = 0;              // direction of the last change of the penalty norm
    double rhodmp = 1.0;
    int page_lines = 0;              // iteration lines since the last heading

    // Workspace views (set by bind).
    double *acomb = nullptr, *qbl = nullptr, *qbu = nullptr, *cvec = nullptr, *xq = nullptr, *axq = nullptr,
           *p = nullptr, *lambda = nullptr, *rho = nullptr, *slack = nullptr, *dslk = nullptr, *dlam = nullptr,
           *x0 = nullptr, *g0 = nullptr, *fv0 = nullptr, *fjac0 = nullptr, *c0 = nullptr, *cjac0 = nullptr,
           *hfwd = nullptr, *hcen = nullptr, *miss = nullptr, *sv = nullptr, *yv = nullptr, *wv = nullptr,
           *fs = nullptr, *cs = nullptr, *fs2 = nullptr, *cs2 = nullptr, *scratch = nullptr, *qpwork = nullptr;
    double f0 = 0.0;
    int ldac = 1;
    int *qpiwork = nullptr;
    // The last QP subproblem's working-set triangle T (its diagonals), a view into qpwork.
    const double *t = nullptr;
    int ldt = 1, nactiv = 0;
};

// Lays the run's vectors over work (real_work_needed reals) and iwork.
void bind(Run &run, double *work, int *iwork);

// Values (and with `derivatives` the Jacobians, missing elements estimated) at run.x, then the
// objective and its gradient: 0, a negative user mode, or 1 when something is not finite.
int evaluate(Run &run, bool derivatives, int nstate);
// The signed difference step for variable j: h or -h, whichever keeps x(j) + reach*step inside the
// bounds of x(j) (forward first), or the side with more room, shortened to fit it.
double step_inside_bounds(const Run &run, int j, double h, double reach);
// The factor at the start of a run (identity, or E04USA's J'J start) and its condition (R's diagonal
// ratio squared).
void start_factor(Run &run);
double condition_of(int n, const double *r, int ldr);

// The whole run after the input check.  Returns the inform value (negative: the user's stop).
int solve(Run &run);

// Steps of the run, each also reachable through its export.
int major_loop(Run &run);
int qp_subproblem(Run &run, bool first);
int line_search(Run &run, double alfmax, double phi0, double dphi0, double curvature);
int derivative_checks(Run &run);
// BFGS update of the factor R (upper triangle, n by n) with the step s and gradient change y (y is
// damped in place).  work: 2n reals.  Returns 0 updated, 1 skipped (no usable curvature).
int hessian_update(int n, double *r, int ldr, const double *s, double *y, double *work);

// ---- Printing (sqp_print.cpp) ------------------------------------------------------------------------
// MAJOR PRINT LEVEL: 1 the result and the solution table; 5 short iteration lines; 10 long lines (and
// the solution table again); 20 a page of values after every line; 30 the line-search traces.
constexpr int kPrintLines = 5, kPrintLong = 10, kPrintPages = 20, kPrintDebug = 30;

struct Convergence {
    bool step = false, grad = false, feas = false;
};
void print_major(Run &run, double merit, double violation, Convergence conv);
void print_major_start(const Run &run);
void print_central_switch(const Run &run);
void print_solution(Run &run);
// The state of the two safeguarded step-length searches, as their traces print it.  Function values
// are those of the merit function less the sufficient-decrease line F0 + MU ALFA G0, slopes less MU G0:
// a trial with FTRY <= 0 gives sufficient decrease, and the search looks for a point whose shifted
// slope is within TARGTG of zero.  [A, B] holds the minimiser of the shifted function and the best
// point ALFBST; W and V are the points of the previous comparisons (V only without gradients).
struct SearchState {
    bool slope = false;                                    // the search with gradients
    double g0 = 0, tolabs = 0, alfmax = 0, targtg = 0, tolrel = 0, epsaf = 0, alfmin = 0;
    bool crampd = false;                                   // the first trial is the largest step allowed
    double alfa = 0, ftry = 0, gtry = 0, a = 0, b = 0, tol = 0;
    int nsamea = 0, nsameb = 0, numf = 0;
    bool braktd = false, extrap = false, closef = false, imprvd = false;
    bool found = false, quiti = false, quitfz = false, quits = false;
    double alfbst = 0, fbest = 0, gbest = 0, alfaw = 0, fw = 0, gw = 0, alfav = 0, fv = 0;
};
// How the next trial step was chosen, for the trace.
enum class StepKind { Cubic, Parabola, Bisection, GeoBisection, TwoPoints, ThreePoints, ExponentReduced };

// The line-search trace (print level kPrintDebug): the constants at the start, the state after every
// trial with the kind of the next step (geometric bisection also prints its points), the end.
void trace_search_start(const Run &run, const SearchState &s);
void trace_search_trial(const Run &run, const SearchState &s);
void trace_search_step(const Run &run, const SearchState &s, StepKind kind, double xtry, double daux, double dtry);
void trace_search_end(const Run &run, const SearchState &s);

// The two searches behind line_search: 0 accepted with the derivatives evaluated at the step, 2
// accepted with values only (x is at the step), 1 no acceptable step (x back at the start), negative:
// the user's stop.
int search_with_gradient(Run &run, double alfmax, double phi0, double g0);
int search_no_gradient(Run &run, double alfmax, double phi0, double g0);

} // namespace zek::sqp

#endif
