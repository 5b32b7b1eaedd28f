// The active-set core of the dense linear and quadratic programming solvers.
//
// The problem is  minimise f(x)  subject to  bl <= ( x ; A x ) <= bu,  with n variables and nclin
// general rows.  Constraint j (zero-based here) is variable j for j < n and row j-n of A otherwise.
//
// The core owns everything a solver of this family shares: the working set, the crash, the
// feasibility phase on the sum of infeasibilities, the ratio test with its anti-cycling expansion of the
// feasibility tolerance, the row-error check and refinement, the iteration loop, and the printing.  A
// solver plugs in through NullSpaceStep: it supplies the objective's gradient and the search direction
// on the null space of the working set, and it may keep its own factor on that null space up to date
// through the notifications.  E04MFA (linear objective) is the first user.
//
// The working set and its factorisation.  The free variables are kx[0..nfree), the fixed ones (on a
// bound, or temporarily fixed at their value) kx[nfree..n).  The general rows in the working set are
// kactiv[0..nactiv), in the order they were added.  With W the working rows restricted to the free
// variables (in kx order), the factorisation is
//
//     W Q = ( 0  T ),   Q = ( Z  Y ) orthogonal, nfree by nfree,  Z the first nz = nfree - nactiv columns,
//
// T reverse triangular.  T is held as the upper triangle R(0:nactiv, 0:nactiv) with R(i, k) =
// T(k, nactiv-1-i): column k of R belongs to working row kactiv[k] and row i of R to column nfree-1-i
// of Q.  So a new working row is a new last column of R, and the rotation family for upper triangles
// maintains R.  Both R and Q have leading dimension maxfree and live in the caller's real workspace;
// nothing is allocated during the iterations.
#ifndef ZEK_OPTIMISATION_ACTIVE_SET_H
#define ZEK_OPTIMISATION_ACTIVE_SET_H

#include <cstddef>
#include <functional>
#include <string>

#include "frame/ifail.h"

namespace zek::active_set {

// Working-set codes of ISTATE.
enum State : int {
    kBelowLower = -2,     // "--": violates its lower bound by more than the tolerance
    kAboveUpper = -1,     // "++": violates its upper bound
    kNotInWorkingSet = 0, // "FR"
    kAtLower = 1,         // "LL"
    kAtUpper = 2,         // "UL"
    kEquality = 3,        // "EQ"
    kTemporaryFix = 4,    // "TF": a variable held at its current value to bound the number of free ones
};
// The printed pair of state s (-2..4).
const char *state_code(int s);

// The exit word the core's steps communicate.
enum class Word { Running, Feasible, Optimal, Weak, Unbounded, Infeasible, RowError, IterationLimit, Errors,
                  NoProblem, ResetX, DeadPoint, Rz2Big };
// Its six characters ("feasbl", "optiml", "weak  ", ...; six blanks while running).
const char *word_text(Word w);

enum class Start { Cold = 0, Warm = 1, Hot = 2 };

// The settled options of one run.
struct Settings {
    const char *solver = "E04MFA";  // name in the exit messages
    char kind[3] = "LP";            // two letters printed with the messages: "FP", "LP", "QP", "LS"
    bool feasible_point_only = false;
    int print_level = 0;
    int print_unit = 6;
    int monitor_unit = -1;
    int iteration_limit = 50;
    int check_frequency = 50;
    int expand_frequency = 5;
    bool minimum_sum = false;
    double infinite_bound = 9.9999e19;  // a bound at or beyond this is infinite
    double infinite_step = 9.9999e19;   // a step at or beyond this is unbounded
    double crash_tolerance = 0.01;
    double feasibility_tolerance = 1e-8;
    double optimality_tolerance = 1e-8;
    // Machine base values: eps and eps to the powers 0.33, 0.5, 0.8.
    double eps = 1.1e-16, e33 = 5.3e-6, e50 = 1.05e-8, e80 = 1.9e-13;
    double condition_limit = 1e8;  // CONDMX: a working-set factor beyond this is ill-conditioned
};

// Where everything lives in the caller's work arrays.  Integer work: the saved state (UNITQ, NFREE,
// NACTIV) in its first three cells, then KACTIV (n cells) and KX (n cells).  Real work: the user's
// feasibility tolerance per constraint (FEATLU), the pricing weights per constraint, three row vectors,
// five n-vectors, then R and Q, maxfree by maxfree each (R only when there are general rows).  The
// working tolerances are FEATLU times one common factor that the anti-cycling procedure moves, so
// the factor is kept instead of an array of them.
struct Layout {
    int maxact = 0;   // most general rows in the working set: min(n, nclin), at least 1
    int maxfree = 0;  // most free variables: n, or nclin+1 when nclin < n
    std::ptrdiff_t kactiv = 0, kx = 0, liwork = 0;
    std::ptrdiff_t featlu = 0, weights = 0, anorm = 0, ap = 0, rwork = 0, g = 0, p = 0, w = 0, crot = 0, srot = 0,
                   t = 0, q = 0, lwork = 0;
};
Layout work_layout(int n, int nclin, int maxact, int maxfree);
// The sizes with the default limits (what a caller such as branch and bound provides).
std::ptrdiff_t integer_work_needed(int n);
std::ptrdiff_t real_work_needed(int n, int nclin);

// The anti-cycling state: the working feasibility tolerance grows from tolx0 to tolx1 times the user's
// over each cycle, so that every step is strictly positive; at the end of a cycle the working
// constraints go back onto their bounds exactly.
struct Expand {
    double tolx0 = 0.5, tolx1 = 0.99, tolinc = 0.0, tolz = 0.0;
    int period = 0;      // length of the current cycle
    int next = 0;        // iteration that ends it
    int ndegen = 0;      // steps taken at the least acceptable length
    int itnfix = -1;     // iteration of the last reset
    int resets[2] = {0, 0};  // resets after "Optimal": feasibility phase, optimality phase
    bool frozen = false;     // EXPAND FREQUENCY at its cap: no expansion
};

struct Core;

// What a solver supplies to the core.  The core runs its own linear step while the point is
// infeasible; once it is feasible the solver's objective drives the iterations.
class NullSpaceStep {
public:
    virtual ~NullSpaceStep() = default;
    // The objective at the current point, and its gradient (n elements, natural order) in g.
    virtual double objective(const Core &core, double *g) = 0;
    // The search direction on the null space: given the reduced gradient gz = Z'g (nz elements, with
    // norm gznorm and the norm gnorm of g), fill pz (nz elements) so that p = Z pz, and set *natural to
    // the step the objective itself asks for along p (infinite for a linear objective: the step is then
    // limited by the constraints alone).  Return false when the point is stationary on the working set,
    // so that the multipliers decide what to delete.
    virtual bool direction(const Core &core, const double *gz, double gznorm, double gnorm, double *pz,
                           double *natural) = 0;
    // True when the gradient does not change with x (a linear objective): the core then carries the
    // multipliers from one vertex to the next instead of computing them afresh, and chooses the
    // deletion by reference weights of the edges; otherwise by the multipliers' test values.
    virtual bool constant_gradient() const { return false; }
    // Notifications for a solver that keeps a factor on the null space (Rz).  The core calls them after
    // changing Q.
    // Rotations k1..k2-1 (one-based, planes (k, k+1), applied in increasing k) have acted on the
    // columns of Z from the right, in the convention of rotation_apply_general('R', 'V', 'F').
    virtual void z_rotated(const Core &, int /*k1*/, int /*k2*/, const double * /*c*/, const double * /*s*/) {}
    // The last column of Z has left the null space (nz has shrunk by one).
    virtual void z_column_removed(const Core &) {}
    // A new last column of Z has appeared (nz has grown by one).
    virtual void z_column_added(const Core &) {}
    // True when the objective has a unique minimiser on the null space of the final working set (a
    // curved objective whose reduced Hessian is positive definite); an optimum with an open null space
    // and no such curvature is weak.
    virtual bool unique_on_null_space(const Core &) const { return false; }
    // A word that ends the iterations at once (Running to go on): asked after each direction.
    virtual Word interrupt(const Core &) const { return Word::Running; }
};

// The linear objective of E04MFA: cvec'x, or nothing for a feasible point.
class LinearStep : public NullSpaceStep {
public:
    explicit LinearStep(const double *cvec) : cvec_(cvec) {}
    double objective(const Core &core, double *g) override;
    bool constant_gradient() const override { return true; }
    bool direction(const Core &core, const double *gz, double gznorm, double gnorm, double *pz,
                   double *natural) override;

private:
    const double *cvec_;
};

// One run of the core: the problem, the caller's arrays, the working set and its progress.
struct Core {
    // Problem.
    int n = 0, nclin = 0;
    const double *a = nullptr;
    int lda = 1;
    const double *bl = nullptr, *bu = nullptr;
    Settings set;
    // The caller's arrays.
    int *istate = nullptr;
    double *x = nullptr, *ax = nullptr, *clamda = nullptr;
    int *iwork = nullptr;
    // Working set and its factorisation.
    int maxact = 0, maxfree = 0;
    int nfree = 0, nactiv = 0, nz = 0;
    bool unitq = true;
    int *kx = nullptr, *kactiv = nullptr;
    double *t = nullptr, *q = nullptr;
    int ldt = 1, ldq = 1;
    // Work vectors: tolerances and pricing weights (n+nclin each), row norms, A p, row scratch (nclin
    // each), gradient, direction, Q'g, rotation pair (n each).
    double *featlu = nullptr, *weights = nullptr, *anorm = nullptr, *ap = nullptr, *rwork = nullptr;
    double *g = nullptr, *p = nullptr, *w = nullptr, *crot = nullptr, *srot = nullptr;
    double weight_scale = 1.0;  // 1 / largest FEATLU: the weights of the sum of infeasibilities
    double tolfactor = 0.5;     // the working tolerance of constraint j is tolfactor * featlu[j]
    Expand expand;
    // Progress.
    int itn = 0;
    int ninf = 0;
    double suminf = 0.0;
    double objective = 0.0;
    double gznorm = 0.0, gnorm = 0.0;
    double step = 0.0;
    int jdel = 0, jadd = 0;      // one-based constraint numbers for the iteration line, 0 for none
    char del_kind = ' ', add_kind = ' ';
    int nopt = 0;                // multipliers of the wrong sign at the last test
    double min_multiplier = 0.0; // the worst test value at the last test
    double dtmax = 0.0, dtmin = 0.0;  // extreme diagonals of T
    int page_lines = 0;          // iteration lines written since the last heading
    bool warned_condition = false;
    // Pricing: the constraint deleted in the current iteration (-1 for none), its weight and multiplier;
    // whether CLAMDA holds the multipliers of the last vertex for the current gradient.
    int qdel = -1;
    double qweight = 1.0, qlambda = 0.0;
    bool lambda_valid = false;
};

// The working feasibility tolerance of constraint j.
inline double featol(const Core &c, int j) { return c.tolfactor * c.featlu[j]; }

// Binds the core to the caller's work arrays through the layout.
void bind(Core &core, const Layout &layout, int *iwork, double *work);

// ---- Input check --------------------------------------------------------------------------------
// The argument checks of a solver of this family: appends one or more records per error and returns the
// number of errors.  N, NCLIN and LDA are checked first; the bounds and ISTATE only when they can be
// read.
int check_input(const char *start_word, int n, int nclin, int lda, const double *bl, const double *bu,
                const int *istate, Start start, double infinite_bound, Records &records);
// The data check: the first element of A (NCLIN rows) and of the objective vector C (may be null when
// it is not read) that is not a finite number is one input error each, with its position and value.
int check_data(int n, int nclin, const double *a, int lda, const double *c, const char *c_name, Records &records);
// The workspace check of a driver: 1 and three records (what was given, what is needed) when either
// array is short, else 0.
int check_workspace(long liwork, long lwork, long need_iwork, long need_work, Records &records);
// The close of a run's printout: the iteration count and, at print levels 1 and 10 and above, the
// solution table.
void print_run_end(const std::function<void(const std::string &)> &say, Core &core, long iterations);
// The end of a run abandoned for input errors, before the driver's failure exit: the " Exit <solver>"
// line through `say` and the closing record.
void abandon(const std::function<void(const std::string &)> &say, const char *solver, long errors,
             Records &records);
// Points the core at a problem's data and at the caller's x, ax, istate and clamda.
void attach(Core &core, int n, int nclin, const double *a, int lda, const double *bl, const double *bu,
            const Settings &set, int *istate, double *x, double *ax, double *clamda);

// ---- Steps of a run -----------------------------------------------------------------------------
// Per-constraint tolerances and weights, row norms, anti-cycling state.
void initialise(Core &core);
// E04_CRASH: the initial working set, then its factorisation.  A hot start whose saved state does not
// match ISTATE falls back to a warm start; the start actually used is returned.
Start crash(Core &core, Start start);
// Puts the fixed variables exactly on their bounds and corrects the free ones so that the general rows
// of the working set hold; recomputes AX.  Returns the largest remaining residual relative to each
// row's tolerance (at most 1 means satisfied).
double restore_working_set(Core &core, int passes);
// E04_INFEASIBILITIES: states -2, -1, 0 of the rows outside the working set, NINF and the weighted sum.
void infeasibilities(Core &core);
// E04_EXPAND.  "End of cycle" always resets; "Optimal" at most twice per phase and not twice at one
// iteration.  Returns the number of working constraints that had left their bounds (printed), or -1
// when no reset took place.
enum class ExpandMode { EndOfCycle, Optimal };
int expand(Core &core, ExpandMode mode);
// E04_ROW_ERROR: recomputes AX and refines X when a working constraint has left its bound.
void row_error(Core &core);
// E04_ITERATE: the main loop, until an exit word.
Word iterate(Core &core, NullSpaceStep &step);
// The whole run after the input check: crash, row solve, iterate, final resets; multipliers into
// CLAMDA and the final states.  Returns the final word (Weak and Infeasible already classified).
Word solve(Core &core, NullSpaceStep &step, Start start);

// ---- Factorisation of the working set ----------------------------------------------------------------
// Q := I on the free variables and R empty, then the working rows of KACTIV added in order; a row that
// is dependent on those before it leaves the working set (state 0).
void factorise(Core &core);
// Adds general row i (zero-based) to the working set.  Returns false, changing nothing, when its free
// part is dependent on the working set (relative size of the new diagonal at most dependence_tol).
bool add_general(Core &core, int row, NullSpaceStep *step, double dependence_tol);
// Fixes the free variable at position pos of KX with the given state (1..4); requires nz >= 1.
void fix_variable(Core &core, int pos, int state, NullSpaceStep *step);
// Deletes the general row at position k of KACTIV from the working set.
void delete_general(Core &core, int k, NullSpaceStep *step);
// Frees the fixed variable j (zero-based); requires nfree < maxfree.
void free_variable(Core &core, int j, NullSpaceStep *step);
// w := the first cols elements of Q'g, g restricted to the free variables (g in natural order); cols =
// nz gives the reduced gradient Z'g.
void project(Core &core, const double *g, double *w, int cols);
// Multipliers of the working constraints at the gradient g, into CLAMDA (0 outside the working set).
void multipliers(Core &core, const double *g);
// The extreme diagonals of T (dtmax, dtmin).
void factor_diagonals(Core &core);

// ---- Printing -------------------------------------------------------------------------------------
void say(const Core &core, const std::string &line);
void print_iteration(Core &core);
void print_details(Core &core);
void print_solution(const Core &core);
// One block of rows of the solution table ("Varbl", "L Con", "N Con"), each array starting at the
// block's first row; featol per row, or the single tol when null.
struct SolutionBlock {
    const char *kind;
    int count;
    const double *value, *bl, *bu, *lambda;
    const int *istate;
    const double *featol;
    double tol;
};
void print_solution_block(int unit, const SolutionBlock &block, double bigbnd, double tolmul);
// The multiplier that decides deletion, signed so that a positive value is of the wrong sign.
double wrong_sign_value(const Core &core, int j);

} // namespace zek::active_set

#endif
