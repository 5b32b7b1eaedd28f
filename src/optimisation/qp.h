// Quadratic programming on the active-set core.
//
//     minimise  c'x + 1/2 x'Hx   subject to  bl <= ( x ; A x ) <= bu
//
// H symmetric, reached only through products H v.  QuadraticStep plugs the objective into the core:
// on each new working set it forms the reduced Hessian Z'HZ and factorises it with inertia control
// (below), and it asks the core for a step of natural length 1 (the minimiser on the working set) when
// the reduced Hessian is positive definite, or an unlimited step along a direction of zero or negative
// curvature otherwise, so that the step ends at a constraint or the problem is unbounded.
//
// Keeping the factor up to date.  The step holds M = Z'HZ itself and follows every change of Z: the
// rotations of Z act on M from both sides, a column leaving Z drops its row and column, and a column
// joining Z costs one product with H.  While M is positive definite its factor R (R'R = M, all columns
// taken) is carried along as well: the rotations turn R upper Hessenberg and rotations from the left
// restore the triangle, a leaving column is cut off, and a joining one is one more step of the Cholesky
// factorisation.  A direction then costs two triangular solves instead of nz products with H and a
// factorisation.  The factorisation below is redone from M only when the updated R is no longer the
// factor of a positive definite M (a new column's pivot falls at or below the tolerance, or a pivot
// sinks there through rotations), and M itself is formed afresh from products with H after a number
// of updates (refresh_period), so that rounding in the updates cannot build up.
//
// Inertia control.  The Cholesky factorisation of M = Z'HZ runs column by column.  A column whose
// pivot is at or below rank_tol * max(1, largest diagonal of M) is not taken into the factor; its
// direction v (the column made conjugate to those before it, v'Mv the pivot) is
//   - a direction of negative curvature when the pivot is negative: the step goes along +-v, downhill;
//   - when the pivot is (numerically) zero and the gradient has a component along v: a linear descent
//     direction, the step goes along it without limit of its own;
//   - otherwise a direction along which the objective does not change: it is left out (the reduced
//     Hessian is singular there and the optimum, if one is reached, is not unique).
// A skipped column whose product M v is not zero betrays an indefinite M whose negative curvature the
// pivots did not show; the direction v - a M v then has negative curvature and is used.
//
// The entry run() is what a caller inside the library (integer QP) uses: it takes a warm or hot start
// from ISTATE and the first cells of IWORK, like E04NFA.
#ifndef ZEK_OPTIMISATION_QP_H
#define ZEK_OPTIMISATION_QP_H

#include <cstddef>

#include "optimisation/active_set.h"

namespace zek::qp {

// Products with the Hessian.  product() returns false when it cannot deliver a finite H v.
class Hessian {
public:
    virtual ~Hessian() = default;
    // hv := H v, both n elements in natural order.
    virtual bool product(const double *v, double *hv) = 0;
};

// The reals QuadraticStep needs beyond the core's layout (n variables, maxfree free at most).
std::ptrdiff_t step_work_needed(int n, int maxfree);

class QuadraticStep : public active_set::NullSpaceStep {
public:
    // cvec may be null (no linear term), hessian may be null (H = 0).  work: step_work_needed reals.
    // max_degrees bounds the dimension of the reduced Hessian (Rz2big beyond it).
    QuadraticStep(int n, int maxfree, const double *cvec, Hessian *hessian, double *work, double rank_tol,
                  int max_degrees);
    double objective(const active_set::Core &core, double *g) override;
    bool direction(const active_set::Core &core, const double *gz, double gznorm, double gnorm, double *pz,
                   double *natural) override;
    void z_rotated(const active_set::Core &core, int k1, int k2, const double *c, const double *s) override;
    void z_column_removed(const active_set::Core &core) override;
    void z_column_added(const active_set::Core &core) override;
    bool unique_on_null_space(const active_set::Core &core) const override;
    active_set::Word interrupt(const active_set::Core &) const override;

    // True when a Hessian product failed (not finite).
    bool hessian_failed() const { return failed_; }
    // The size of the reduced Hessian's factor and the number of directions left out as singular at the
    // last factorisation; the extreme diagonals of the factor.
    int factor_rank() const { return rank_; }
    // How often M was formed from products with H, and how often R was factorised from M.
    int hessian_refreshes() const { return refreshes_; }
    int factorisations() const { return factorisations_; }
    int singular_directions() const { return singular_; }
    double factor_max() const { return rmax_; }
    double factor_min() const { return rmin_; }

private:
    bool refactorise(const active_set::Core &core);
    bool reduced_column(const active_set::Core &core, int k, double *mk);
    bool factor_still_definite(int nz) const;
    void scatter_z(const active_set::Core &core, const double *colz, double *v) const;

    int n_, maxfree_;
    const double *cvec_;
    Hessian *hessian_;
    double *m_, *r_, *hv_, *v_, *u_, *used_;
    double rank_tol_;
    int max_degrees_;
    bool dirty_ = true, grown_ = true, failed_ = false, too_big_ = false;
    bool last_newton_ = false;
    int rank_ = 0, singular_ = 0;
    double rmax_ = 0.0, rmin_ = 0.0;
    bool indefinite_ = false;
    // m_ holds Z'HZ for the current Z; r_ holds its full Cholesky factor (rank nz, no column skipped).
    bool m_ready_ = false, r_valid_ = false;
    int updates_ = 0, refresh_period_ = 100;
    int refreshes_ = 0, factorisations_ = 0;
};

// One run of E04NFA's solver for a caller inside the library.
struct Problem {
    int n = 0, nclin = 0;
    const double *a = nullptr;  // nclin by n, leading dimension lda
    int lda = 1;
    const double *bl = nullptr, *bu = nullptr;
    const double *cvec = nullptr;  // null: no linear term
    Hessian *hessian = nullptr;    // null: H = 0
    int max_degrees = 0;           // 0: n
    double rank_tolerance = 0.0;   // 0: 100 eps
};
struct Result {
    active_set::Word word = active_set::Word::Running;
    int iterations = 0;
    double objective = 0.0;  // at x when feasible, else the sum of infeasibilities
    int ninf = 0;
    int artificial = 0;      // variables still held at their values (artificial constraints)
    bool hessian_failed = false;  // a product with H was not finite
    int rank = 0;                 // size of the reduced Hessian's factor at the end
    double rz_max = 0.0, rz_min = 0.0;  // extreme diagonals of the reduced Hessian's factor
    double t_max = 0.0, t_min = 0.0;    // extreme diagonals of the working set's triangle T
    // The diagonals of T (nactiv of them, t[k (ldt + 1)]): a view into work, valid until work is next used.
    const double *t = nullptr;
    int ldt = 1, nactiv = 0;
};
// Reals and integers of workspace run() needs.
std::ptrdiff_t real_work_needed(int n, int nclin);
std::ptrdiff_t integer_work_needed(int n);
// Solves the problem from x (istate read for a warm start, istate and iwork[0..2] with the factor in
// work for a hot start); istate, x, ax (nclin), clamda (n+nclin) out.  set carries tolerances, limits
// and printing (print_level 0 for silence).
Result run(const Problem &p, const active_set::Settings &set, active_set::Start start, int *istate, double *x,
           double *ax, double *clamda, int *iwork, double *work);

} // namespace zek::qp

#endif
