// E04NCA: linear least squares and convex quadratic programming with dense objective data, over
// bounds and general linear constraints.
//
// The objective data A (M by N) is used as it stands: products with A'A (or with the symmetric part of
// A for QP1, QP2) feed the quadratic step, and a least-squares objective 1/2 |b - A x|^2 becomes the
// quadratic with linear term -A'b, and OBJ is taken from the final residual.  The rank of the data,
// from a pivoted QR factorisation under RANK TOLERANCE, is reported and KX returns that factorisation's
// column order; A and B are left as the caller gave them.
#include <algorithm>
#include <cmath>

#include "frame/ifail.h"
#include "frame/output.h"
#include "kernels/level1.h"
#include "kernels/qr.h"
#include "optimisation/options.h"
#include "optimisation/qp.h"
#include "optimisation/qp_driver.h"
#include "optimisation/run_settings.h"
#include "zek2/e04.h"

namespace {

using zek::active_set::Start;
using zek::active_set::Word;
namespace ls = zek::e04::ls;

zek::active_set::Settings settings_of(const int *iwsav, const double *rwsav, int type) {
    using zek::e04::Block;
    using zek::e04::real_setting;
    using zek::e04::setting;
    zek::active_set::Settings s = zek::e04::ls_block_settings(iwsav, rwsav);
    s.solver = "E04NCA";
    const char *k = type <= 1 ? "FP" : type == 2 ? "LP" : type <= 6 ? "QP" : "LS";
    s.kind[0] = k[0];
    s.kind[1] = k[1];
    s.feasible_point_only = type == 1;
    return s;
}

// Marks each value it meets by the sign of the element it points at, then restores every sign.
bool valid_permutation(int n, int *kx) {
    bool ok = true;
    for (int j = 0; j < n && ok; ++j) {
        const int k = kx[j] < 0 ? -kx[j] : kx[j];
        if (k < 1 || k > n || kx[k - 1] < 0) ok = false;
        else kx[k - 1] = -kx[k - 1];
    }
    for (int j = 0; j < n; ++j)
        if (kx[j] < 0) kx[j] = -kx[j];
    return ok;
}

// The rank of the objective data: pivoted QR of a copy (zero rows added up to N when M < N), the
// diagonals counted against rank_tol * |R(1,1)|; kx receives the column order.
int data_rank(int m, int n, const double *a, int lda, bool upper, double rank_tol, double *work, int *kx) {
    const int rows = std::max(m, n);
    double *copy = work, *zeta = copy + static_cast<std::ptrdiff_t>(rows) * n, *scratch = zeta + n;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < rows; ++i) {
            const bool inside = i < m && (!upper || i <= j);
            copy[i + static_cast<std::ptrdiff_t>(j) * rows] = inside ? a[i + static_cast<std::ptrdiff_t>(j) * lda] : 0.0;
        }
    zek::qr_factor_pivoted('C', rows, n, copy, rows, zeta, kx, scratch);
    // PERM(k) is the column interchanged with column k at step k: turn it into the order.
    double *order = scratch;
    for (int j = 0; j < n; ++j) order[j] = j + 1;
    for (int k = 0; k < n; ++k) std::swap(order[k], order[kx[k] - 1]);
    for (int j = 0; j < n; ++j) kx[j] = static_cast<int>(order[j]);
    const double r11 = std::fabs(copy[0]);
    int rank = 0;
    for (int k = 0; k < std::min(rows, n); ++k)
        if (std::fabs(copy[k + static_cast<std::ptrdiff_t>(k) * rows]) > rank_tol * r11 && r11 > 0.0) ++rank;
    return std::min(rank, m);
}

// E04NCA's exits with a message of one line; the argument count (99999) and the overflow of A'B
// (99994) build their records where they are raised.
enum E04ncaExit { kWeak, kUnbounded, kInfeasible, kIterationLimit };
constexpr zek::ExitRow kE04ncaExits[] = {
    {1, 99998, " ** Weak %2.2s solution."},
    {2, 99997, " ** %2.2s solution is unbounded."},
    {3, 99996, " ** Cannot satisfy the linear constraints. "},
    {4, 99995, " ** Too many iterations."},
};

} // namespace

extern "C" void E04NCA(const int *m_, const int *n_, const int *nclin_, const int *ldc_, const int *lda_,
                       const double *c, const double *bl, const double *bu, const double *cvec, int *istate, int *kx,
                       double *x, double *a, double *b, int *iter, double *obj, double *clamda, int *iwork,
                       const int *liwork_, double *work, const int *lwork_, int *lwsav, int *iwsav, double *rwsav,
                       int *ifail) {
    using zek::format;
    using zek::e04::Block;
    using zek::e04::Family;
    using zek::e04::setting;
    zek::FailureExit exit("E04NCA", nullptr, ifail);
    const int m = *m_, n = *n_, nclin = *nclin_, ldc = *ldc_, lda = *lda_, liwork = *liwork_, lwork = *lwork_;

    zek::e04::ProblemSize size;
    size.n = n;
    size.nclin = nclin;
    size.nrowr = m;
    zek::e04::begin_run(Family::NCA, lwsav, iwsav, rwsav, size);
    zek::e04::print_parameters(Family::NCA, iwsav, rwsav, size);
    int type = setting(iwsav, Block::LS, ls::kProblemType);
    if (type < 1 || type > 10) type = 7;
    const zek::active_set::Settings set = settings_of(iwsav, rwsav, type);
    const auto say = [&](const std::string &line) { zek::qp::say_line(set, line); };
    const auto finish = [&]() { zek::e04::end_run(Family::NCA, lwsav, iwsav, rwsav); };
    const bool linear_term = type == 2 || type == 4 || type == 6 || type == 8 || type == 10;
    const bool least_squares = type >= 7, uses_data = type >= 3;
    const bool upper = type == 5 || type == 6 || type == 9 || type == 10;
    const int start_code = setting(iwsav, Block::LS, ls::kStart);
    const Start start = start_code == 1 ? Start::Warm : start_code == 2 ? Start::Hot : Start::Cold;
    const char *start_word = start == Start::Warm ? "Warm" : start == Start::Hot ? "Hot " : "Cold";

    zek::Records records;
    int errors = zek::active_set::check_input(start_word, n, nclin, std::max(1, nclin), bl, bu, istate, start,
                                              set.infinite_bound, records);
    if (m <= 0) {
        ++errors;
        records.add(" ** On entry, M.le.0:");
        records.add(format("    M = %16ld", static_cast<long>(m)));
    }
    if (ldc < std::max(1, nclin)) {
        ++errors;
        records.add(" ** On entry, LDC.lt.max(1,NCLIN):");
        records.add(format("    LDC = %16ld  NCLIN = %16ld", static_cast<long>(ldc), static_cast<long>(nclin)));
    }
    if (lda < std::max(1, m)) {
        ++errors;
        records.add(" ** On entry, LDA.lt.max(1,M):");
        records.add(format("    LDA = %16ld  M = %16ld", static_cast<long>(lda), static_cast<long>(m)));
    }
    if (n > 0 && start != Start::Cold && !valid_permutation(n, kx)) {
        ++errors;
        records.add(" ** On entry, KX has not been supplied as a valid permutation.");
    }
    zek::qp::RunLayout layout;
    std::ptrdiff_t need = 0;
    const bool sizes_valid = n > 0 && nclin >= 0 && m > 0;
    if (sizes_valid && !zek::qp::layout_fits(n, nclin, m)) {
        ++errors;
        records.add(" ** Not enough workspace to solve problem.");
    } else if (sizes_valid) {
        if (!zek::qp::bounds_not_nan(n + nclin, bl, bu, records)) ++errors;
        if (!zek::qp::data_finite("X", n, x, records)) ++errors;
        if (linear_term && !zek::qp::data_finite("CVEC", n, cvec, records)) ++errors;
        if (least_squares && !zek::qp::data_finite("B", m, b, records)) ++errors;
        if (nclin > 0 && ldc >= nclin && !zek::qp::matrix_finite("C", nclin, n, c, ldc, records)) ++errors;
        if (uses_data && lda >= m && !zek::qp::matrix_finite("A", m, n, a, lda, records)) ++errors;
        layout = zek::qp::run_layout(n, nclin, std::max(1, std::min(n, nclin)), n);
        need = layout.lwork + n + m + nclin + static_cast<std::ptrdiff_t>(std::max(m, n)) * n + 3 * static_cast<std::ptrdiff_t>(n);
        errors += zek::active_set::check_workspace(liwork, lwork, layout.liwork, need, records);
    }
    if (errors > 0) {
        zek::active_set::abandon(say, "E04NCA", errors, records);
        finish();
        exit.fail_with_records(6, 99999, records, {static_cast<long>(errors)});
        return;
    }

    // Workspace: the run, then the linear term (n), A v (m), C x (nclin), then the rank factorisation's
    // scratch.
    double *ceff = work + layout.lwork, *av = ceff + n, *cx = av + m, *scratch = cx + nclin;
    if (uses_data) {
        const double rank_tol = zek::e04::real_setting(rwsav, Block::LS, ls::kRankTolerance);
        const int rank = data_rank(m, n, a, lda, upper, rank_tol, scratch, kx);
        say("");
        say(format(" Rank of the objective function data matrix = %5ld", static_cast<long>(rank)));
    } else {
        for (int j = 0; j < n; ++j) kx[j] = j + 1;
    }
    zek::qp::DataHessian data(m, n, a, lda, upper, av);
    zek::qp::LeadingHessian leading(n, std::min(m, n), a, lda);
    for (int j = 0; j < n; ++j) ceff[j] = linear_term ? cvec[j] : 0.0;
    if (least_squares) {
        // 1/2 |b - A x|^2 = 1/2 x'A'Ax - (A'b)'x + 1/2 b'b.
        for (int j = 0; j < n; ++j) {
            const double *col = a + static_cast<std::ptrdiff_t>(j) * lda;
            const int rows = upper ? std::min(j + 1, m) : m;
            double s = 0.0;
            for (int i = 0; i < rows; ++i) s += col[i] * b[i];
            ceff[j] -= s;
        }
        bool finite = true;
        for (int j = 0; j < n; ++j) finite = finite && std::isfinite(ceff[j]);
        if (!finite) {
            zek::Records rec;
            rec.add(" ** On entry, A'B overflows: the objective data are too large.");
            rec.add(format(" ** %7ld errors found in the input parameters.  Problem abandoned.", 1L));
            say("");
            say(format(" Exit E04NCA - %7ld errors found in the input parameters.  Problem abandoned.", 1L));
            finish();
            exit.fail_with_records(6, 99994, rec, {1L});
            return;
        }
    }

    zek::qp::Problem p;
    p.n = n;
    p.nclin = nclin;
    p.a = c;
    p.lda = ldc;
    p.bl = bl;
    p.bu = bu;
    p.cvec = linear_term || least_squares ? ceff : nullptr;
    p.hessian = !uses_data ? nullptr : (type == 3 || type == 4) ? static_cast<zek::qp::Hessian *>(&leading) : &data;
    p.rank_tolerance = zek::e04::real_setting(rwsav, Block::LS, ls::kRankTolerance);

    zek::active_set::Core core;
    zek::active_set::attach(core, n, nclin, c, ldc, bl, bu, set, istate, x, cx, clamda);
    zek::active_set::bind(core, layout.core, iwork, work);
    const zek::qp::Result r = zek::qp::solve_bound(core, layout, p, start, work);
    const Word word = r.word;
    *iter = r.iterations;
    *obj = r.objective;
    if (r.ninf == 0 && least_squares) {
        // 1/2 |b - A x|^2 (+ CVEC'x) from the residual itself, free of the cancellation in the constant.
        data.apply(x, av);
        for (int i = 0; i < m; ++i) av[i] = b[i] - av[i];
        const double rn = zek::dnrm2(m, av, 1);
        *obj = 0.5 * rn * rn + (linear_term ? zek::ddot(n, cvec, 1, x, 1) : 0.0);
    }
    const char *kind = set.kind;

    if (set.print_level >= 1) {
        zek::active_set::print_run_end(say, core, r.iterations);
        switch (word) {
        case Word::Optimal: say(format(" Exit E04NCA - Optimal %2.2s solution.", kind)); break;
        case Word::Feasible: say(" Exit E04NCA - Feasible point found."); break;
        case Word::Weak:
        case Word::DeadPoint: say(format(" Exit E04NCA - Weak %2.2s solution.", kind)); break;
        case Word::Unbounded: say(format(" Exit E04NCA - %2.2s solution is unbounded.", kind)); break;
        case Word::RowError:
            say(" XXX  Cannot satisfy the working set constraints to the accuracy requested.");
            say(" Exit E04NCA - Cannot satisfy the linear constraints. ");
            break;
        case Word::Infeasible: say(" Exit E04NCA - Cannot satisfy the linear constraints. "); break;
        case Word::IterationLimit: say(" Exit E04NCA - Too many iterations."); break;
        default: break;
        }
        say("");
        if (r.ninf == 0 && type != 1) say(format(" Final %2.2s objective value =%16.7G", kind, *obj));
        else say(format(" Final sum of infeasibilities =%16.7G", r.objective));
    }
    finish();

    switch (word) {
    case Word::Weak:
    case Word::DeadPoint: zek::take(exit, kE04ncaExits, kWeak, {kind}); break;
    case Word::Unbounded: zek::take(exit, kE04ncaExits, kUnbounded, {kind}); break;
    case Word::Infeasible:
    case Word::RowError: zek::take(exit, kE04ncaExits, kInfeasible); break;
    case Word::IterationLimit: zek::take(exit, kE04ncaExits, kIterationLimit); break;
    default: exit.succeed(); break;
    }
}
