// The quadratic programming run shared by E04NFA, E04NCA and the library's own callers: the core and
// the quadratic step bound to one workspace, artificial constraints, and the exit texts of the two
// drivers.
#include <algorithm>
#include <cmath>

#include "frame/output.h"
#include "optimisation/qp.h"
#include "optimisation/qp_driver.h"

namespace zek::qp {

using active_set::Core;
using active_set::Start;
using active_set::Word;

std::ptrdiff_t integer_work_needed(int n) { return active_set::integer_work_needed(n); }

std::ptrdiff_t real_work_needed(int n, int nclin) {
    return run_layout(n, nclin, std::max(1, std::min(n, nclin)), std::max(n, 1)).lwork;
}

RunLayout run_layout(int n, int nclin, int maxact, int maxfree) {
    RunLayout l;
    l.core = active_set::work_layout(n, nclin, maxact, maxfree);
    l.step = l.core.lwork;
    l.lwork = l.step + step_work_needed(n, maxfree);
    l.liwork = l.core.liwork;
    return l;
}

bool layout_fits(int n, int nclin, int m) {
    const double need = 17.0 * n + 6.0 * nclin + m + 5.0 * static_cast<double>(n) * n +
                        static_cast<double>(std::max(m, n)) * n;
    return need < 2147483647.0;
}

Result solve_bound(Core &core, const RunLayout &layout, const Problem &p, Start start, double *work) {
    QuadraticStep step(p.n, layout.core.maxfree, p.cvec, p.hessian, work + layout.step,
                       p.rank_tolerance > 0.0 ? p.rank_tolerance : 100.0 * core.set.eps,
                       p.max_degrees > 0 ? p.max_degrees : p.n);
    Result r;
    r.word = active_set::solve(core, step, start);
    r.iterations = core.itn;
    r.ninf = core.ninf;
    r.objective = core.ninf == 0 ? core.objective : core.suminf;
    for (int j = 0; j < p.n; ++j) r.artificial += core.istate[j] == active_set::kTemporaryFix ? 1 : 0;
    r.hessian_failed = step.hessian_failed();
    r.rank = step.factor_rank();
    r.rz_max = step.factor_max();
    r.rz_min = step.factor_min();
    active_set::factor_diagonals(core);
    r.t_max = core.dtmax;
    r.t_min = core.dtmin;
    r.t = core.t;
    r.ldt = core.ldt;
    r.nactiv = core.nactiv;
    return r;
}

Result run(const Problem &p, const active_set::Settings &set, Start start, int *istate, double *x, double *ax,
           double *clamda, int *iwork, double *work) {
    const int maxact = std::max(1, std::min(p.n, p.nclin));
    const RunLayout layout = run_layout(p.n, p.nclin, maxact, std::max(p.n, 1));
    Core core;
    core.n = p.n;
    core.nclin = p.nclin;
    core.a = p.a;
    core.lda = p.lda;
    core.bl = p.bl;
    core.bu = p.bu;
    core.set = set;
    core.istate = istate;
    core.x = x;
    core.ax = ax;
    core.clamda = clamda;
    active_set::bind(core, layout.core, iwork, work);
    return solve_bound(core, layout, p, start, work);
}

bool LeadingHessian::product(const double *v, double *hv) {
    for (int i = 0; i < n_; ++i) hv[i] = 0.0;
    for (int j = 0; j < m_; ++j)
        for (int i = 0; i < m_; ++i) {
            const double hij = i <= j ? h_[i + static_cast<std::ptrdiff_t>(j) * ldh_]
                                      : h_[j + static_cast<std::ptrdiff_t>(i) * ldh_];
            hv[i] += hij * v[j];
        }
    return true;
}

void DataHessian::apply(const double *v, double *w) const {
    for (int i = 0; i < m_; ++i) w[i] = 0.0;
    for (int j = 0; j < n_; ++j) {
        const double *col = a_ + static_cast<std::ptrdiff_t>(j) * lda_;
        const int rows = upper_ ? std::min(j + 1, m_) : m_;
        for (int i = 0; i < rows; ++i) w[i] += col[i] * v[j];
    }
}

bool DataHessian::product(const double *v, double *hv) {
    apply(v, w_);
    for (int j = 0; j < n_; ++j) {
        const double *col = a_ + static_cast<std::ptrdiff_t>(j) * lda_;
        const int rows = upper_ ? std::min(j + 1, m_) : m_;
        double s = 0.0;
        for (int i = 0; i < rows; ++i) s += col[i] * w_[i];
        hv[j] = s;
    }
    return true;
}

// ---- Exit texts --------------------------------------------------------------------------------------

void say_line(const active_set::Settings &set, const std::string &line) {
    if (set.print_level >= 1) host_line(set.print_unit, line.c_str(), static_cast<int>(line.size()) + 1);
}

double working_set_error(const Core &c) {
    double worst = 0.0;
    for (int j = 0; j < c.n + c.nclin; ++j) {
        const int s = c.istate[j];
        if (s < active_set::kAtLower || s > active_set::kEquality) continue;
        const double v = j < c.n ? c.x[j] : c.ax[j - c.n];
        const double b = s == active_set::kAtUpper ? c.bu[j] : c.bl[j];
        worst = std::max(worst, std::fabs(v - b));
    }
    return worst;
}

bool data_finite(const char *name, int count, const double *v, Records &records) {
    for (int i = 0; i < count; ++i) {
        if (std::isfinite(v[i])) continue;
        records.add(format(" ** On entry, %s(%ld) is not finite:", name, static_cast<long>(i + 1)));
        records.add(format("    %s(%ld) = %16.7G", name, static_cast<long>(i + 1), v[i]));
        return false;
    }
    return true;
}

bool matrix_finite(const char *name, int rows, int cols, const double *a, int ld, Records &records) {
    for (int j = 0; j < cols; ++j)
        for (int i = 0; i < rows; ++i) {
            const double v = a[i + static_cast<std::ptrdiff_t>(j) * ld];
            if (std::isfinite(v)) continue;
            records.add(format(" ** On entry, %s(%ld,%ld) is not finite:", name, static_cast<long>(i + 1),
                               static_cast<long>(j + 1)));
            records.add(format("    %s(%ld,%ld) = %16.7G", name, static_cast<long>(i + 1), static_cast<long>(j + 1), v));
            return false;
        }
    return true;
}

bool bounds_not_nan(int count, const double *bl, const double *bu, Records &records) {
    for (int j = 0; j < count; ++j) {
        if (!std::isnan(bl[j]) && !std::isnan(bu[j])) continue;
        records.add(format(" ** On entry, the bounds on constraint %ld are not numbers:", static_cast<long>(j + 1)));
        records.add(format("    BL = %16.7G  BU = %16.7G", bl[j], bu[j]));
        return false;
    }
    return true;
}

} // namespace zek::qp
