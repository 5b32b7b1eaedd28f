// E04NFA: quadratic programming with the Hessian through a routine of the caller's, and the adaptor
// by which the solver calls that routine.
#include <algorithm>
#include <cmath>

#include "frame/adaptor.h"
#include "frame/ifail.h"
#include "frame/output.h"
#include "optimisation/options.h"
#include "optimisation/qp.h"
#include "optimisation/qp_driver.h"
#include "optimisation/run_settings.h"
#include "zek2/e04.h"

extern "C" void E04NFA_QPHESS_ADAPTOR(ZekQpHessian qphess, int n, int jthcol, const double *h, int ldh,
                                      const double *x, double *hx, int nstate, int *iuser, double *ruser) {
    zek::mark_vector(n, hx);
    qphess(&n, &jthcol, h, &ldh, x, hx, &nstate, iuser, ruser);
}

namespace {

using zek::active_set::Start;
using zek::active_set::Word;
namespace lc = zek::e04::lc;

// H v through the caller's routine.
class UserHessian : public zek::qp::Hessian {
public:
    UserHessian(int n, const double *h, int ldh, ZekQpHessian f, ZekQpHessianAdaptor adaptor, int *iuser,
                double *ruser)
        : n_(n), h_(h), ldh_(ldh), f_(f), adaptor_(adaptor != nullptr ? adaptor : E04NFA_QPHESS_ADAPTOR),
          iuser_(iuser), ruser_(ruser) {}
    bool product(const double *v, double *hv) override {
        adaptor_(f_, n_, 0, h_, ldh_, v, hv, nstate_, iuser_, ruser_);
        nstate_ = 0;
        return true;
    }

private:
    int n_;
    const double *h_;
    int ldh_;
    ZekQpHessian f_;
    ZekQpHessianAdaptor adaptor_;
    int *iuser_;
    double *ruser_;
    int nstate_ = 1;
};

zek::active_set::Settings settings_of(const int *iwsav, const double *rwsav, int type) {
    using zek::e04::Block;
    using zek::e04::setting;
    zek::active_set::Settings s = zek::e04::lc_block_settings(iwsav, rwsav);
    s.solver = "E04NFA";
    const char *kinds[] = {"FP", "LP", "QP"};
    const char *k = kinds[type <= 1 ? 0 : type == 2 ? 1 : 2];
    s.kind[0] = k[0];
    s.kind[1] = k[1];
    s.feasible_point_only = type == 1;
    // The feasibility and optimality phases share one limit.
    const long limit = static_cast<long>(setting(iwsav, Block::LC, lc::kFeasibilityItns)) +
                       setting(iwsav, Block::LC, lc::kOptimalityItns);
    s.iteration_limit = static_cast<int>(std::min(limit, 2147483647L));
    return s;
}

// E04NFA's exits with a message of one line; the argument count (99998) and the exits that add a
// line of figures (99996, 99993, 99990) build their records where they are raised.
enum E04nfaExit {
    kProblemType,
    kDeadPoint,
    kUnbounded,
    kInfeasible,
    kIterationLimit,
    kReducedHessianTooBig,
};
constexpr zek::ExitRow kE04nfaExits[] = {
    {7, 99999, " ** Problem type not recognized.  Problem abandoned."},
    {1, 99997, " ** Iterations terminated at a dead-point."},
    {2, 99995, " ** %2.2s solution is unbounded."},
    {3, 99994, " ** No feasible point for the linear constraints."},
    {4, 99992, " ** Too many iterations."},
    {5, 99991, " ** Reduced Hessian exceeds assigned dimension."},
};

} // namespace

extern "C" void E04NFA(const int *n_, const int *nclin_, const double *a, const int *lda_, const double *bl,
                       const double *bu, const double *cvec, const double *h, const int *ldh_, ZekQpHessian qphess,
                       ZekQpHessianAdaptor qphess_adaptor, int *istate, double *x, int *iter, double *obj,
                       double *ax, double *clamda, int *iwork, const int *liwork_, double *work, const int *lwork_,
                       int *iuser, double *ruser, int *lwsav, int *iwsav, double *rwsav, int *ifail) {
    using zek::format;
    using zek::e04::Block;
    using zek::e04::Family;
    using zek::e04::setting;
    zek::FailureExit exit("E04NFA", nullptr, ifail);
    const int n = *n_, nclin = *nclin_, lda = *lda_, ldh = *ldh_, liwork = *liwork_, lwork = *lwork_;

    zek::e04::ProblemSize size;
    size.n = n;
    size.nclin = nclin;
    zek::e04::begin_run(Family::NFA, lwsav, iwsav, rwsav, size);
    zek::e04::print_parameters(Family::NFA, iwsav, rwsav, size);
    const int type = setting(iwsav, Block::LC, lc::kProblemType);
    const zek::active_set::Settings set = settings_of(iwsav, rwsav, type);
    const auto say = [&](const std::string &line) { zek::qp::say_line(set, line); };
    const auto finish = [&]() { zek::e04::end_run(Family::NFA, lwsav, iwsav, rwsav); };

    if (type < 1 || type > 6) {
        say("");
        say(" Exit E04NFA - Problem type not recognized.  Problem abandoned.");
        finish();
        zek::take(exit, kE04nfaExits, kProblemType);
        return;
    }
    const bool quadratic = type >= 3, linear_term = type == 2 || type == 4 || type == 6;
    const int start_code = setting(iwsav, Block::LC, lc::kStart);
    const Start start = start_code == 1 ? Start::Warm : start_code == 2 ? Start::Hot : Start::Cold;
    const char *start_word = start == Start::Warm ? "Warm" : start == Start::Hot ? "Hot " : "Cold";
    const int hrows = setting(iwsav, Block::LC, lc::kHessianRows);

    zek::Records records;
    int errors = zek::active_set::check_input(start_word, n, nclin, lda, bl, bu, istate, start, set.infinite_bound,
                                              records);
    if (quadratic && ldh < 1) {
        ++errors;
        records.add(" ** On entry, LDH.lt.1:");
        records.add(format("    LDH = %16ld", static_cast<long>(ldh)));
    } else if (quadratic && (ldh < n || ldh < hrows)) {
        ++errors;
        records.add(" ** On entry, either LDH.lt.N or LDH.lt.m");
        records.add("    (where m is the value of the optional parameter Hessian Rows)  :");
        records.add(format("    LDH = %16ld  N = %16ld  m = %16ld", static_cast<long>(ldh), static_cast<long>(n),
                           static_cast<long>(hrows)));
    }
    zek::qp::RunLayout layout;
    if (n > 0 && nclin >= 0 && !zek::qp::layout_fits(n, nclin)) {
        ++errors;
        records.add(" ** Not enough workspace to solve problem.");
    } else if (n > 0 && nclin >= 0) {
        if (!zek::qp::bounds_not_nan(n + nclin, bl, bu, records)) ++errors;
        if (!zek::qp::data_finite("X", n, x, records)) ++errors;
        if (linear_term && !zek::qp::data_finite("CVEC", n, cvec, records)) ++errors;
        if (nclin > 0 && lda >= nclin && !zek::qp::matrix_finite("A", nclin, n, a, lda, records)) ++errors;
        if (quadratic && qphess == nullptr && ldh >= std::max(1, hrows) &&
            !zek::qp::matrix_finite("H", hrows, hrows, h, ldh, records))
            ++errors;
        const int maxact = std::max(1, std::min(n, nclin));
        layout = zek::qp::run_layout(n, nclin, maxact, n);
        errors += zek::active_set::check_workspace(liwork, lwork, layout.liwork, layout.lwork, records);
    }
    if (errors > 0) {
        zek::active_set::abandon(say, "E04NFA", errors, records);
        finish();
        exit.fail_with_records(6, 99998, records, {static_cast<long>(errors)});
        return;
    }

    UserHessian user(n, h, ldh, qphess, qphess_adaptor, iuser, ruser);
    zek::qp::LeadingHessian leading(n, hrows, h, ldh);
    zek::qp::Problem p;
    p.n = n;
    p.nclin = nclin;
    p.a = a;
    p.lda = lda;
    p.bl = bl;
    p.bu = bu;
    p.cvec = linear_term ? cvec : nullptr;
    p.hessian = !quadratic || hrows == 0 ? nullptr : qphess != nullptr ? static_cast<zek::qp::Hessian *>(&user) : &leading;
    p.max_degrees = setting(iwsav, Block::LC, lc::kMaxDegrees);
    p.rank_tolerance = zek::e04::real_setting(rwsav, Block::LC, lc::kRankTolerance);

    zek::active_set::Core core;
    zek::active_set::attach(core, n, nclin, a, lda, bl, bu, set, istate, x, ax, clamda);
    zek::active_set::bind(core, layout.core, iwork, work);
    const zek::qp::Result r = zek::qp::solve_bound(core, layout, p, start, work);
    Word word = r.word;
    *iter = r.iterations;
    *obj = r.objective;
    const char *kind = set.kind;
    const int maxdeg = p.max_degrees > 0 ? p.max_degrees : n;

    if (set.print_level >= 1 && word != Word::Errors) {
        zek::active_set::print_run_end(say, core, r.iterations);
        switch (word) {
        case Word::Optimal: say(format(" Exit E04NFA - Optimal %2.2s solution.", kind)); break;
        case Word::Feasible: say(" Exit E04NFA - Feasible point found."); break;
        case Word::DeadPoint:
            say(" Exit E04NFA - Iterations terminated at a dead-point");
            say("               (check the optimality conditions).     ");
            break;
        case Word::Weak:
            say(" Exit E04NFA - Optimal solution is not unique.");
            if (r.artificial > 0)
                say(format("             - Artificial constraints in working set = %4ld.",
                           static_cast<long>(r.artificial)));
            break;
        case Word::Unbounded: say(format(" Exit E04NFA - %2.2s solution is unbounded.", kind)); break;
        case Word::Infeasible: say(" Exit E04NFA - No feasible point for the linear constraints."); break;
        case Word::RowError:
            say(" Exit E04NFA - Cannot satisfy the working set constraints to the accuracy");
            say("requested.");
            break;
        case Word::IterationLimit: say(" Exit E04NFA - Too many iterations."); break;
        case Word::Rz2Big:
            say(" Exit E04NFA - Reduced Hessian exceeds assigned dimension.");
            say(format("             - Maximum degrees of freedom = %4ld.", static_cast<long>(maxdeg)));
            break;
        default: break;
        }
        say("");
        if (r.ninf == 0 && type != 1) say(format(" Final %2.2s objective value =%16.7G", kind, r.objective));
        else if (word == Word::Infeasible && set.minimum_sum)
            say(format(" Minimum sum of infeasibilities =%16.7G", r.objective));
        else say(format(" Final sum of infeasibilities =%16.7G", r.objective));
    }
    finish();

    switch (word) {
    case Word::DeadPoint: zek::take(exit, kE04nfaExits, kDeadPoint); break;
    case Word::Weak: {
        zek::Records rec;
        rec.add(" ** Optimal solution is not unique.");
        rec.add(format("             - Artificial constraints in working set = %4ld.", static_cast<long>(r.artificial)));
        exit.fail_with_records(1, 99996, rec, {static_cast<long>(r.artificial)});
        break;
    }
    case Word::Unbounded: zek::take(exit, kE04nfaExits, kUnbounded, {kind}); break;
    case Word::Infeasible: zek::take(exit, kE04nfaExits, kInfeasible); break;
    case Word::RowError: {
        zek::Records rec;
        rec.add(" ** Cannot satisfy the working set constraints to the accuracy requested.");
        rec.add(format(" Sum of infeasibilities =%16.7G", core.suminf));
        const double rowerr = zek::qp::working_set_error(core);
        rec.add(format(" Maximum row error =%16.7G", rowerr));
        exit.fail_with_records(3, 99993, rec, {core.suminf, rowerr});
        break;
    }
    case Word::IterationLimit: zek::take(exit, kE04nfaExits, kIterationLimit); break;
    case Word::Rz2Big: zek::take(exit, kE04nfaExits, kReducedHessianTooBig); break;
    case Word::Errors: {
        zek::Records rec;
        rec.add(" ** The Hessian routine returned a value that is not finite.");
        rec.add(format(" ** %7ld errors found in the input parameters.  Problem abandoned.", 1L));
        say("");
        say(format(" Exit E04NFA - %7ld errors found in the input parameters.  Problem abandoned.", 1L));
        exit.fail_with_records(6, 99990, rec, {1L});
        break;
    }
    default: exit.succeed(); break;
    }
}
