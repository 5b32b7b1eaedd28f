// What the quadratic programming drivers share beyond qp.h: the workspace layout of a run, the run on
// a bound core, and the checks and texts common to E04NFA and E04NCA.
#ifndef ZEK_OPTIMISATION_QP_DRIVER_H
#define ZEK_OPTIMISATION_QP_DRIVER_H

#include <string>

#include "frame/ifail.h"
#include "optimisation/qp.h"

namespace zek::qp {

// Real work: the core's layout, then the quadratic step's reals from `step`.
struct RunLayout {
    active_set::Layout core;
    std::ptrdiff_t step = 0, lwork = 0, liwork = 0;
};
RunLayout run_layout(int n, int nclin, int maxact, int maxfree);
// False when the workspace a problem of this size needs cannot be counted in a workspace length (an int):
// the size arithmetic would overflow, so the run is refused as short of workspace.
bool layout_fits(int n, int nclin, int m = 0);
// The run on a core already bound to the layout's workspace.
Result solve_bound(active_set::Core &core, const RunLayout &layout, const Problem &p, active_set::Start start,
                   double *work);

// H v with H the leading m by m part of the symmetric matrix h (upper triangle read), zero elsewhere.
class LeadingHessian : public Hessian {
public:
    LeadingHessian(int n, int m, const double *h, int ldh) : n_(n), m_(m), h_(h), ldh_(ldh) {}
    bool product(const double *v, double *hv) override;

private:
    int n_, m_;
    const double *h_;
    int ldh_;
};

// H v with H = A'A, A m by n (upper trapezoidal when `upper`: only a(i,j), i <= j, is read); w holds m
// reals.
class DataHessian : public Hessian {
public:
    DataHessian(int m, int n, const double *a, int lda, bool upper, double *w)
        : m_(m), n_(n), a_(a), lda_(lda), upper_(upper), w_(w) {}
    bool product(const double *v, double *hv) override;
    // w := A v.
    void apply(const double *v, double *w) const;

private:
    int m_, n_;
    const double *a_;
    int lda_;
    bool upper_;
    double *w_;
};

// A line on the run's print unit when its print level is at least 1.
void say_line(const active_set::Settings &set, const std::string &line);
// The largest distance of a working constraint from its bound.
double working_set_error(const active_set::Core &c);
// Input checks of data that must be finite: each appends two records for the first offending element
// and returns false.
bool data_finite(const char *name, int count, const double *v, Records &records);
bool matrix_finite(const char *name, int rows, int cols, const double *a, int ld, Records &records);
bool bounds_not_nan(int count, const double *bl, const double *bu, Records &records);

} // namespace zek::qp

#endif
