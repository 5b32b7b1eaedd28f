// E04UCA and E04USA: the drivers of the SQP engine, their adaptors and the exported engine steps.
#include <algorithm>
#include <cmath>
#include <string>

#include "frame/adaptor.h"
#include "frame/ifail.h"
#include "frame/output.h"
#include "optimisation/options.h"
#include "optimisation/qp_driver.h"
#include "optimisation/run_settings.h"
#include "optimisation/sqp.h"
#include "zek2/e04.h"

// The adaptors mark only the values the user's routine must return.  The Jacobian arguments are read
// after the call to find the elements the user did not set (the driver presets them with -11111 before
// the first call), so they are input as well as output and stay unmarked.
extern "C" void E04UCA_OBJFUN_ADAPTOR(ZekE04Objfun f, int *mode, int n, const double *x, double *objf,
                                     double *objgrd, int nstate, int *iuser, double *ruser) {
    zek::mark_vector(1, objf);
    f(mode, &n, x, objf, objgrd, &nstate, iuser, ruser);
}

extern "C" void E04UCA_CONFUN_ADAPTOR(ZekE04Confun f, int *mode, int ncnln, int n, int ldcj, int *needc,
                                     const double *x, double *c, double *cjac, int nstate, int *iuser,
                                     double *ruser) {
    zek::mark_vector(ncnln, c);
    f(mode, &ncnln, &n, &ldcj, needc, x, c, cjac, &nstate, iuser, ruser);
}

extern "C" void E04USA_OBJFUN_ADAPTOR(ZekE04LsqObjfun f, int *mode, int m, int n, int ldfj, const double *x,
                                     double *fv, double *fjac, int nstate, int *iuser, double *ruser) {
    zek::mark_vector(m, fv);
    f(mode, &m, &n, &ldfj, x, fv, fjac, &nstate, iuser, ruser);
}

namespace {

using zek::format;
using zek::e04::Block;
using zek::e04::Family;
using zek::e04::real_setting;
using zek::e04::setting;
namespace np = zek::e04::np;
namespace ls = zek::e04::ls;
namespace nl = zek::e04::nl;

// The constraint routine behind its adaptor; NEEDC (all ones: every constraint is wanted) lives behind
// the engine's integer workspace (read only once the lengths are checked).
struct Constraints {
    Constraints(ZekE04Confun routine, ZekE04ConfunAdaptor adaptor, int n_, int ncnln_, int *iwork, int *iu, double *ru)
        : f(routine), adapt(adaptor != nullptr ? adaptor : E04UCA_CONFUN_ADAPTOR), n(n_), ncnln(ncnln_),
          needc(iwork + zek::sqp::integer_work_needed(std::max(n_, 1))), iuser(iu), ruser(ru) {}
    ZekE04Confun f = nullptr;
    ZekE04ConfunAdaptor adapt = nullptr;
    int n = 0, ncnln = 0;
    int *needc = nullptr, *iuser = nullptr;
    double *ruser = nullptr;
    int call(int mode, const double *x, int nstate, double *c, double *cjac, int ldcj) {
        for (int i = 0; i < ncnln; ++i) needc[i] = 1;
        adapt(f, &mode, ncnln, n, ldcj, needc, x, c, cjac, nstate, iuser, ruser);
        return mode;
    }
};

class GeneralModel : public zek::sqp::Model {
public:
    GeneralModel(ZekE04Objfun f, ZekE04AdaptObjfun adapt, int n, const Constraints &con, int *iuser, double *ruser)
        : f_(f), adapt_(adapt), n_(n), con_(con), iuser_(iuser), ruser_(ruser) {}
    int objective(int mode, const double *x, int nstate, double *fv, double *fjac, int) override {
        adapt_(f_, &mode, n_, x, fv, fjac, nstate, iuser_, ruser_);
        return mode;
    }
    int constraints(int mode, const double *x, int nstate, double *c, double *cjac, int ldcj) override {
        return con_.call(mode, x, nstate, c, cjac, ldcj);
    }
    double combine(const double *fv, const double *fjac, int, double *g) const override {
        std::copy(fjac, fjac + n_, g);
        return fv[0];
    }
    double combine_value(const double *fv) const override { return fv[0]; }

private:
    ZekE04Objfun f_;
    ZekE04AdaptObjfun adapt_;
    int n_;
    Constraints con_;
    int *iuser_;
    double *ruser_;
};

// 1/2 |F - Y|^2 with gradient J'(F - Y).
class LsqModel : public zek::sqp::Model {
public:
    LsqModel(ZekE04LsqObjfun f, ZekE04LsqObjfunAdaptor adapt, int m, int n, const double *y, const Constraints &con,
             int *iuser, double *ruser)
        : f_(f), adapt_(adapt), m_(m), n_(n), y_(y), con_(con), iuser_(iuser), ruser_(ruser) {}
    int objective(int mode, const double *x, int nstate, double *fv, double *fjac, int ldf) override {
        adapt_(f_, &mode, m_, n_, ldf, x, fv, fjac, nstate, iuser_, ruser_);
        return mode;
    }
    int constraints(int mode, const double *x, int nstate, double *c, double *cjac, int ldcj) override {
        return con_.call(mode, x, nstate, c, cjac, ldcj);
    }
    double combine(const double *fv, const double *fjac, int ldf, double *g) const override {
        for (int j = 0; j < n_; ++j) {
            double s = 0.0;
            for (int i = 0; i < m_; ++i) s += fjac[i + static_cast<std::ptrdiff_t>(j) * ldf] * (fv[i] - y_[i]);
            g[j] = s;
        }
        return combine_value(fv);
    }
    double combine_value(const double *fv) const override {
        double s = 0.0;
        for (int i = 0; i < m_; ++i) s += (fv[i] - y_[i]) * (fv[i] - y_[i]);
        return 0.5 * s;
    }

private:
    ZekE04LsqObjfun f_;
    ZekE04LsqObjfunAdaptor adapt_;
    int m_, n_;
    const double *y_;
    Constraints con_;
    int *iuser_;
    double *ruser_;
};

zek::sqp::Config config_of(Family family, const int *iwsav, const double *rwsav) {
    zek::sqp::Config c;
    c.name = family == Family::UCA ? "E04UCA" : "E04USA";
    c.least_squares = family == Family::USA;
    c.major_limit = setting(iwsav, Block::NP, np::kMajorIterations);
    c.major_print = setting(iwsav, Block::NP, np::kMajorPrintLevel);
    c.print_unit = setting(iwsav, Block::LS, ls::kPrintUnit);
    c.derivative_level = setting(iwsav, Block::NP, np::kDerivativeLevel);
    c.verify_level = setting(iwsav, Block::NP, np::kVerifyLevel);
    c.start_obj = setting(iwsav, Block::NP, np::kStartObjective);
    c.stop_obj = setting(iwsav, Block::NP, np::kStopObjective);
    c.start_con = setting(iwsav, Block::NP, np::kStartConstraints);
    c.stop_con = setting(iwsav, Block::NP, np::kStopConstraints);
    c.difference_mode = setting(iwsav, Block::NP, np::kDifferenceMode);
    c.ctol = real_setting(rwsav, Block::NP, np::kNonlinearFeasibility);
    c.step_limit = real_setting(rwsav, Block::NP, np::kStepLimit);
    c.epsrf = real_setting(rwsav, Block::NP, np::kFunctionPrecision);
    c.eta = real_setting(rwsav, Block::NP, np::kLinesearchTolerance);
    c.fdint = real_setting(rwsav, Block::NP, np::kDifferenceInterval);
    c.cdint = real_setting(rwsav, Block::NP, np::kCentralInterval);
    c.opttol = real_setting(rwsav, Block::NP, np::kOptimalityTolerance);
    c.condition_bound = real_setting(rwsav, Block::NP, np::kConditionBound);
    c.warm = setting(iwsav, Block::LS, ls::kStart) == 1;
    if (c.least_squares) {
        c.unit_hessian = setting(iwsav, Block::NL, nl::kInitialHessian);
        c.reset_frequency = setting(iwsav, Block::NL, nl::kResetFrequency);
    }
    c.qp = zek::e04::ls_block_settings(iwsav, rwsav);
    c.qp.solver = c.name;
    c.qp.print_level = 0;
    return c;
}

// What differs between the two drivers' argument lists.
struct Problem {
    Family family;
    int m, n, nclin, ncnln, lda, ldcj, ldfj, ldr;
    const double *a, *bl, *bu, *y;
    Constraints con;
    zek::sqp::Model *model;
    int *iter, *istate;
    double *c, *cjac, *fv, *fjac, *clamda, *objf, *objgrd, *r, *x;
    int *iwork, liwork;
    double *work;
    int lwork;
    int *lwsav, *iwsav;
    double *rwsav;
    int *ifail;
    bool routines_given = true;  // OBJFUN, and CONFUN when there are nonlinear rows
};

struct ExitText {
    int inform;
    const char *summary;  // after " Exit E04xxA - "
};
const ExitText kExits[] = {
    {zek::sqp::kOptimal, "Optimal solution found."},
    {zek::sqp::kAccuracy, "Optimal solution found, but requested accuracy not achieved."},
    {zek::sqp::kLinearInfeasible, "No feasible point for the linear constraints."},
    {zek::sqp::kNonlinearInfeasible, "No feasible point for the nonlinear constraints."},
    {zek::sqp::kMajorLimit, "Too many major iterations.             "},
    {zek::sqp::kCannotImprove, "Current point cannot be improved upon. "},
    {zek::sqp::kBadDerivatives, "Large errors found in the derivatives. "},
};

int nonlinear_bound_errors(const Problem &p, double bigbnd, zek::Records &records) {
    int errors = 0;
    for (int i = 0; i < p.ncnln; ++i) {
        const int j = p.n + p.nclin + i;
        const double l = p.bl[j], u = p.bu[j];
        const std::string name = format("%5.5s%3ld", "N Con", static_cast<long>(i + 1));
        if (l == u && std::fabs(l) >= bigbnd) {
            ++errors;
            records.add(format(" ** On entry, the equal bounds on  %8.8s  are infinite (because", name.c_str()));
            records.add(format("    BL = BU = %16.7G  and  BIGBND = %16.7G)", l, bigbnd));
        } else if (!(l <= u)) {
            ++errors;
            records.add(format(" ** On entry, the bounds on  %8.8s  are inconsistent:", name.c_str()));
            records.add(format("    BL = %16.7G  BU = %16.7G", l, u));
        }
    }
    return errors;
}

void run_driver(Problem &p) {
    const char *name = p.family == Family::UCA ? "E04UCA" : "E04USA";
    const bool lsq = p.family == Family::USA;
    zek::FailureExit exit(lsq ? "E04USF" : "E04UCA", nullptr, p.ifail);
    const int n = p.n, nclin = p.nclin, ncnln = p.ncnln;
    zek::e04::ProblemSize size;
    size.n = n;
    size.nclin = nclin;
    size.ncnln = ncnln;
    size.nsub = p.m;
    zek::e04::begin_run(p.family, p.lwsav, p.iwsav, p.rwsav, size);
    zek::e04::print_parameters(p.family, p.iwsav, p.rwsav, size);
    zek::sqp::Config cfg = config_of(p.family, p.iwsav, p.rwsav);
    const auto say = [&](const std::string &line) {
        if (cfg.major_print >= 1) zek::host_line(cfg.print_unit, line.c_str(), static_cast<int>(line.size()) + 1);
    };
    const auto finish = [&]() { zek::e04::end_run(p.family, p.lwsav, p.iwsav, p.rwsav); };
    const zek::active_set::Start start = cfg.warm ? zek::active_set::Start::Warm : zek::active_set::Start::Cold;

    zek::Records records;
    int errors = 0;
    if (lsq && p.m <= 0) {
        ++errors;
        records.add(" ** On entry, M.le.0:");
        records.add(format("    M = %16ld", static_cast<long>(p.m)));
    }
    errors += zek::active_set::check_input(cfg.warm ? "Warm" : "Cold", n, nclin, p.lda, p.bl, p.bu, p.istate, start,
                                           cfg.qp.infinite_bound, records);
    if (ncnln < 0) {
        ++errors;
        records.add(" ** On entry, NCNLN.lt.0:");
        records.add(format("    NCNLN = %16ld", static_cast<long>(ncnln)));
    }
    if (p.ldcj < std::max(1, ncnln)) {
        ++errors;
        records.add(" ** On entry, LDCJ.lt.max(1,NCNLN):");
        records.add(format("    LDCJ = %16ld  NCNLN = %16ld", static_cast<long>(p.ldcj), static_cast<long>(ncnln)));
    }
    if (lsq && p.m > 0 && p.ldfj < p.m) {
        ++errors;
        records.add(" ** On entry, LDFJ.lt.M:");
        records.add(format("    LDFJ = %16ld   M = %16ld", static_cast<long>(p.ldfj), static_cast<long>(p.m)));
    }
    if (p.ldr < n) {
        ++errors;
        records.add(" ** On entry, LDR.lt.N:");
        records.add(format("    LDR = %16ld  N = %16ld", static_cast<long>(p.ldr), static_cast<long>(n)));
    }
    if (!p.routines_given) {
        ++errors;
        records.add(" ** On entry, OBJFUN or CONFUN is not a routine.");
    }
    const bool sizes_ok = n > 0 && nclin >= 0 && ncnln >= 0 && (!lsq || p.m > 0);
    const int nobj = lsq ? p.m : 1;
    if (sizes_ok) {
        errors += nonlinear_bound_errors(p, cfg.qp.infinite_bound, records);
        const double need = static_cast<double>(n) * (n + 30.0 + 3.0 * (nclin + ncnln) + 3.0 * nobj) +
                            10.0 * (nclin + ncnln) + 3.0 * nobj;
        if (need >= 2.0e9 || !zek::qp::layout_fits(n, nclin + ncnln)) {
            ++errors;
            records.add(" ** Not enough workspace to solve problem.");
        } else {
            if (!zek::qp::bounds_not_nan(n + nclin + ncnln, p.bl, p.bu, records)) ++errors;
            if (!zek::qp::data_finite("X", n, p.x, records)) ++errors;
            if (lsq && !zek::qp::data_finite("Y", p.m, p.y, records)) ++errors;
            if (nclin > 0 && p.lda >= nclin && !zek::qp::matrix_finite("A", nclin, n, p.a, p.lda, records)) ++errors;
            if (cfg.warm && p.ldr >= n && !zek::qp::matrix_finite("R", n, n, p.r, p.ldr, records)) ++errors;
            // E04USA keeps the gradient of its sum of squares behind the engine's reals.
            const std::ptrdiff_t lw = zek::sqp::real_work_needed(n, nclin, ncnln, nobj) + (lsq ? n : 0);
            const std::ptrdiff_t liw = zek::sqp::integer_work_needed(n) + ncnln;
            errors += zek::active_set::check_workspace(p.liwork, p.lwork, liw, lw, records);
        }
    }
    if (errors > 0) {
        zek::active_set::abandon(say, name, errors, records);
        finish();
        exit.fail_with_records(9, 99999, records, {static_cast<long>(errors)});
        return;
    }

    zek::sqp::Run run;
    run.cfg = cfg;
    run.model = p.model;
    run.n = n;
    run.nclin = nclin;
    run.ncnln = ncnln;
    run.nobj = nobj;
    run.a = p.a;
    run.lda = p.lda;
    run.bl = p.bl;
    run.bu = p.bu;
    run.istate = p.istate;
    run.x = p.x;
    run.clamda = p.clamda;
    run.r = p.r;
    run.ldr = p.ldr;
    run.fv = p.fv;
    run.fjac = p.fjac;
    run.ldf = lsq ? p.ldfj : 1;
    run.c = p.c;
    run.cjac = p.cjac;
    run.ldcj = p.ldcj;
    run.objf = p.objf;
    run.g = p.objgrd;
    zek::sqp::bind(run, p.work, p.iwork);
    int inform = 0;
    E04_NP_MAJOR(&run, &inform);
    *p.iter = run.major;
    if (inform >= 0 && inform != zek::sqp::kInputErrors) {
        say("");
        for (const ExitText &e : kExits)
            if (e.inform == inform) say(format(" Exit %s - %s", name, e.summary));
        if (inform != zek::sqp::kLinearInfeasible && inform != zek::sqp::kBadDerivatives) {
            say("");
            say(format(" Exit from NP problem after %5ld major iterations,", static_cast<long>(run.major)));
            say(format("                            %5ld minor iterations.", static_cast<long>(run.minor)));
            zek::sqp::print_solution(run);
            say("");
            if (inform == zek::sqp::kNonlinearInfeasible)
                say(format(" Final sum of infeasibilities =%16.7G", run.violation));
            else say(format(" Final objective value =%16.7G", *p.objf));
        }
    }
    finish();
    if (inform < 0) {
        say("");
        say(format(" Exit %s - User requested termination.", name));
        exit.fail(inform, 99998, " ** User requested termination.");
        return;
    }
    if (inform == zek::sqp::kInputErrors) {
        zek::Records rec;
        rec.add(" ** The user's functions are not finite at the initial point.");
        rec.add(format(" ** %7ld errors found in the input parameters.  Problem abandoned.", 1L));
        say("");
        say(format(" Exit %s - %7ld errors found in the input parameters.  Problem abandoned.", name, 1L));
        exit.fail_with_records(9, 99990, rec, {1L});
        return;
    }
    if (inform == zek::sqp::kOptimal) {
        exit.succeed();
        return;
    }
    for (const ExitText &e : kExits)
        if (e.inform == inform) {
            const std::string rec = std::string(" ** ") + e.summary;
            exit.fail(inform, 99997 - inform, rec.c_str());
        }
}

zek::sqp::Run &run_of(void *state) { return *static_cast<zek::sqp::Run *>(state); }

} // namespace

// ---- Exported engine steps ------------------------------------------------------------------------------

extern "C" void E04_NP_MAJOR(void *state, int *inform) { *inform = zek::sqp::solve(run_of(state)); }
extern "C" void E04_NL_MAJOR(void *state, int *inform) { *inform = zek::sqp::solve(run_of(state)); }
extern "C" void E04_QP_SUBPROBLEM(void *state, const int *first, int *inform) {
    *inform = zek::sqp::qp_subproblem(run_of(state), *first != 0);
}
extern "C" void E04_LINE_SEARCH(void *state, const double *alfmax, const double *merit, const double *slope,
                                const double *curvature, int *inform) {
    *inform = zek::sqp::line_search(run_of(state), *alfmax, *merit, *slope, *curvature);
}
extern "C" void E04_SEARCH_WITH_GRADIENT(void *state, const double *alfmax, const double *merit, const double *slope,
                                         int *inform) {
    *inform = zek::sqp::search_with_gradient(run_of(state), *alfmax, *merit, *slope);
}
extern "C" void E04_SEARCH_NO_GRADIENT(void *state, const double *alfmax, const double *merit, const double *slope,
                                       int *inform) {
    *inform = zek::sqp::search_no_gradient(run_of(state), *alfmax, *merit, *slope);
}
extern "C" void E04_NP_CHECKS(void *state, int *inform) { *inform = zek::sqp::derivative_checks(run_of(state)); }
extern "C" void E04_HESSIAN_UPDATE(const int *n, double *r, const int *ldr, const double *s, double *y, double *work,
                                   int *inform) {
    *inform = *n < 1 || *ldr < *n ? -1 : zek::sqp::hessian_update(*n, r, *ldr, s, y, work);
}

// ---- Drivers --------------------------------------------------------------------------------------------

extern "C" void E04UCA(const int *n, const int *nclin, const int *ncnln, const int *lda, const int *ldcj,
                       const int *ldr, const double *a, const double *bl, const double *bu, ZekE04Confun confun,
                       ZekE04ConfunAdaptor confun_adaptor, ZekE04Objfun objfun, ZekE04AdaptObjfun objfun_adaptor,
                       int *iter, int *istate, double *c, double *cjac, double *clamda, double *objf, double *objgrd,
                       double *r, double *x, int *iwork, const int *liwork, double *work, const int *lwork,
                       int *iuser, double *ruser, int *lwsav, int *iwsav, double *rwsav, int *ifail) {
    const Constraints con(confun, confun_adaptor, *n, *ncnln, iwork, iuser, ruser);
    Problem p{Family::UCA, 1, *n, *nclin, *ncnln, std::max(*lda, 0), std::max(*ldcj, 0), 1, std::max(*ldr, 0), a, bl,
              bu, nullptr, con, nullptr, iter, istate, c, cjac, objf, objgrd, clamda, objf, objgrd, r, x, iwork,
              *liwork, work, *lwork, lwsav, iwsav, rwsav, ifail};
    p.routines_given = objfun != nullptr && (*ncnln <= 0 || confun != nullptr);
    GeneralModel model(objfun, objfun_adaptor != nullptr ? objfun_adaptor : E04UCA_OBJFUN_ADAPTOR, *n, con, iuser,
                       ruser);
    p.model = &model;
    run_driver(p);
}

extern "C" void E04USA(const int *m, const int *n, const int *nclin, const int *ncnln, const int *lda,
                       const int *ldcj, const int *ldfj, const int *ldr, const double *a, const double *bl,
                       const double *bu, const double *y, ZekE04Confun confun, ZekE04ConfunAdaptor confun_adaptor,
                       ZekE04LsqObjfun objfun, ZekE04LsqObjfunAdaptor objfun_adaptor, int *iter, int *istate,
                       double *c, double *cjac, double *f, double *fjac, double *clamda, double *objf, double *r,
                       double *x, int *iwork, const int *liwork, double *work, const int *lwork, int *iuser,
                       double *ruser, int *lwsav, int *iwsav, double *rwsav, int *ifail) {
    const Constraints con(confun, confun_adaptor, *n, *ncnln, iwork, iuser, ruser);
    // The gradient of the sum of squares is kept behind the engine's reals.
    const int nobj = std::max(*m, 1);
    double *grad = work + zek::sqp::real_work_needed(std::max(*n, 1), std::max(*nclin, 0), std::max(*ncnln, 0), nobj);
    Problem p{Family::USA, *m, *n, *nclin, *ncnln, std::max(*lda, 0), std::max(*ldcj, 0), std::max(*ldfj, 0),
              std::max(*ldr, 0), a, bl, bu, y, con, nullptr, iter, istate, c, cjac, f, fjac, clamda, objf, grad, r, x,
              iwork, *liwork, work, *lwork, lwsav, iwsav, rwsav, ifail};
    p.routines_given = objfun != nullptr && (*ncnln <= 0 || confun != nullptr);
    LsqModel model(objfun, objfun_adaptor != nullptr ? objfun_adaptor : E04USA_OBJFUN_ADAPTOR, *m, *n, y, con, iuser,
                   ruser);
    p.model = &model;
    run_driver(p);
}
