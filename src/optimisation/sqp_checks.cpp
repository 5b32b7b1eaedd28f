// The start of an SQP run: the feasible point for the linear constraints, the first evaluation with the
// detection of missing derivatives, the difference intervals and the checks of the user's derivatives.
#include <algorithm>
#include <cmath>

#include "frame/output.h"
#include "optimisation/difference_interval.h"
#include "optimisation/qp.h"
#include "optimisation/sqp.h"

namespace zek::sqp {

namespace {

using active_set::Start;
using active_set::Word;

inline double &at(double *m, int ld, int i, int j) { return m[i + static_cast<std::ptrdiff_t>(j) * ld]; }

void say(const Run &run, const std::string &line) {
    if (run.cfg.major_print >= 1) host_line(run.cfg.print_unit, line.c_str(), static_cast<int>(line.size()) + 1);
}

double &miss_obj(Run &run, int i, int j) { return run.miss[i + static_cast<std::ptrdiff_t>(j) * run.nobj]; }
double &miss_con(Run &run, int i, int j) {
    return run.miss[static_cast<std::ptrdiff_t>(run.nobj) * run.n + i + static_cast<std::ptrdiff_t>(j) * run.ncnln];
}

// The objective alone at x (values only).
int objective_value(Run &run, const double *x, double *f) {
    ++run.nfun;
    const int st = run.model->objective(0, x, 0, run.fs, run.scratch, run.nobj);
    if (st < 0) return st;
    *f = run.model->combine_value(run.fs);
    return 0;
}

// Values of all rows at x +- h e_j (or along direction d when d is not null) into fs/cs (plus) and
// fs2/cs2 (minus).
int central_pair(Run &run, int j, const double *d, double h) {
    const int n = run.n;
    for (int k = 0; k < n; ++k) run.xq[k] = run.x[k] + (d != nullptr ? h * d[k] : (k == j ? h : 0.0));
    ++run.nfun;
    int st = run.model->objective(0, run.xq, 0, run.fs, run.scratch, run.nobj);
    if (st >= 0 && run.ncnln > 0)
        st = run.model->constraints(0, run.xq, 0, run.cs, run.scratch + static_cast<std::ptrdiff_t>(run.nobj) * n,
                                    run.ncnln);
    if (st < 0) return st;
    for (int k = 0; k < n; ++k) run.xq[k] = run.x[k] - (d != nullptr ? h * d[k] : (k == j ? h : 0.0));
    ++run.nfun;
    st = run.model->objective(0, run.xq, 0, run.fs2, run.scratch, run.nobj);
    if (st >= 0 && run.ncnln > 0)
        st = run.model->constraints(0, run.xq, 0, run.cs2, run.scratch + static_cast<std::ptrdiff_t>(run.nobj) * n,
                                    run.ncnln);
    return st < 0 ? st : 0;
}

// Difference intervals for every variable from the objective (the interval search), with the
// constant objective elements found on the way assigned.
int compute_intervals(Run &run) {
    const int n = run.n;
    const double epsrf = run.cfg.epsrf;
    say(run, "");
    say(run, " Computation of the finite-difference intervals");
    say(run, " ----------------------------------------------");
    say(run, "    J      X(J)   Forward DX(J)   Central DX(J)      Error est.");
    const double fx = *run.objf;
    long constants = 0;
    for (int j = 0; j < n; ++j) {
        const double xj = run.x[j], scale = 1.0 + std::fabs(xj);
        fd::IntervalSearch search(fx, 2.0 * std::sqrt(epsrf) * scale, epsrf, run.cfg.qp.eps);
        bool usable = true;
        while (!search.done()) {
            double f1 = 0.0, f2 = 0.0;
            // The search's points stay inside the bounds: backward when forward has no room, and a
            // step that fits neither side ends the search.
            const double h = search.step();
            if (xj + 2.0 * h > run.bu[j] && xj - 2.0 * h < run.bl[j]) {
                usable = false;
                break;
            }
            const double hs = step_inside_bounds(run, j, h, 2.0);
            for (int k = 0; k < n; ++k) run.xq[k] = run.x[k];
            run.xq[j] = xj + hs;
            int st = objective_value(run, run.xq, &f1);
            if (st < 0) return st;
            run.xq[j] = xj + 2.0 * hs;
            st = objective_value(run, run.xq, &f2);
            if (st < 0) return st;
            if (!std::isfinite(f1) || !std::isfinite(f2)) {
                usable = false;
                break;
            }
            search.cycle(f1, f2);
        }
        double hf = std::sqrt(epsrf), err = 0.0;
        if (usable && search.info() != 1 && search.hopt() > 0.0 && std::isfinite(search.hopt())) {
            hf = search.hopt() / scale;
            err = search.error_bound();
        }
        if (usable && search.info() == 1 && run.nobj == 1 && miss_obj(run, 0, j) == kElementEstimated) {
            // Constant along x(j): the element is zero and needs no differences.
            miss_obj(run, 0, j) = kElementConstant;
            at(run.fjac, run.ldf, 0, j) = 0.0;
            --run.missing_obj;
            ++constants;
        }
        run.hfwd[j] = hf;
        run.hcen[j] = std::pow(hf, 2.0 / 3.0);
        say(run, format("%5ld%10.2E%16.6E%16.6E%16.6E", static_cast<long>(j + 1), xj, hf * scale,
                        run.hcen[j] * scale, err));
    }
    say(run, "");
    say(run, format(" %5ld  constant objective  gradient elements assigned.", constants));
    if (run.nobj == 1 && run.missing_obj == 0 && constants > 0)
        say(run, " All missing objective  Jacobian elements are constants.");
    return 0;
}

// The first evaluation: the Jacobians preset with the marker, the user's routines called with NSTATE
// 1, and what they left at the marker counted as missing.
int first_evaluation(Run &run) {
    const int n = run.n;
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < run.nobj; ++i) at(run.fjac, run.ldf, i, j) = kMissing;
        for (int i = 0; i < run.ncnln; ++i) at(run.cjac, run.ldcj, i, j) = kMissing;
    }
    const int st = evaluate(run, true, 1);
    if (st < 0) return st;
    run.missing_obj = run.missing_con = 0;
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < run.nobj; ++i) {
            const bool m = at(run.fjac, run.ldf, i, j) == kMissing;
            miss_obj(run, i, j) = m ? kElementEstimated : kElementGiven;
            run.missing_obj += m ? 1 : 0;
        }
        for (int i = 0; i < run.ncnln; ++i) {
            const bool m = at(run.cjac, run.ldcj, i, j) == kMissing;
            miss_con(run, i, j) = m ? kElementEstimated : kElementGiven;
            run.missing_con += m ? 1 : 0;
        }
    }
    // Missing elements stand at zero until they are estimated.
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < run.nobj; ++i)
            if (miss_obj(run, i, j) == kElementEstimated) at(run.fjac, run.ldf, i, j) = 0.0;
        for (int i = 0; i < run.ncnln; ++i)
            if (miss_con(run, i, j) == kElementEstimated) at(run.cjac, run.ldcj, i, j) = 0.0;
    }
    return st;
}

void report_missing(Run &run) {
    const long nobjel = static_cast<long>(run.nobj) * run.n, nconel = static_cast<long>(run.ncnln) * run.n;
    const bool lsq = run.cfg.least_squares;
    int level = (run.missing_obj == 0 ? 1 : 0) + (run.missing_con == 0 ? 2 : 0);
    say(run, "");
    // One group of rows: all set, or how many the user sets and how many are estimated.
    const auto group = [&](int missing, long elements, int level_bit, const char *all, const char *kind,
                           const char *estimated) {
        if (missing == 0) {
            if (run.cfg.derivative_level < 3 && (run.cfg.derivative_level & level_bit) == 0) say(run, all);
            return;
        }
        say(run, format(" The user sets %6ld   out of%6ld   %s elements.", elements - missing, elements, kind));
        say(run, format(" Each iteration, %6ld   %s", static_cast<long>(missing), estimated));
    };
    group(run.missing_obj, nobjel, 1,
          lsq ? " All objective Jacobian elements have been set." : " All objective gradient elements have been set.",
          lsq ? "objective Jacobian" : "objective gradient",
          lsq ? "objective Jacobian elements will be estimated." : "gradient elements will be estimated numerically.");
    if (run.ncnln > 0)
        group(run.missing_con, nconel, 2,
              lsq ? " All constraint Jacobian elements have been set." : " All Jacobian elements have been set.",
              lsq ? "constraint Jacobian" : "Jacobian",
              lsq ? "constraint Jacobian elements will be estimated." : "Jacobian elements will be estimated numerically.");
    if (level > run.cfg.derivative_level) {
        say(run, format(" Derivative level increased to %4ld", static_cast<long>(level)));
        run.cfg.derivative_level = level;
    }
}

// A difference agrees with a derivative when their gap is within the check tolerance of the
// derivative's size, allowing for the noise of the function values over the interval.
bool agrees(double deriv, double diff, double fnoise, double h, double tol, double *relerr) {
    const double gap = std::fabs(deriv - diff);
    *relerr = gap / (1.0 + std::fabs(deriv));
    return gap <= tol * (1.0 + std::fabs(deriv)) + 10.0 * fnoise / h;
}

} // namespace

int derivative_checks(Run &run) {
    const int n = run.n, nobj = run.nobj, ncnln = run.ncnln;
    if (run.cfg.verify_level < 0) return 0;
    const int lvl = run.cfg.verify_level >= 10 ? run.cfg.verify_level - 10 : run.cfg.verify_level;
    const double epsrf = run.cfg.epsrf, tol = std::pow(epsrf, 0.25), hrel = std::cbrt(epsrf);
    const bool lsq = run.cfg.least_squares;
    const std::string dashes = " -------------------------------------------------";
    int bad_total = 0;

    // The cheap check along one direction, with only the elements the user set.
    {
        double *d = run.sv;
        bool any = false;
        for (int j = 0; j < n; ++j) {
            bool given = true;
            for (int i = 0; i < nobj && given; ++i) given = miss_obj(run, i, j) == kElementGiven;
            for (int i = 0; i < ncnln && given; ++i) given = miss_con(run, i, j) == kElementGiven;
            d[j] = given ? (1.0 + std::fabs(run.x[j])) * (j % 2 == 0 ? 1.0 : -0.7) * (1.0 + 0.1 * (j % 5)) : 0.0;
            any = any || given;
        }
        say(run, "");
        if (!any) {
            say(run, " No gradient elements assigned.");
        } else {
            const int st = central_pair(run, 0, d, hrel);
            if (st < 0) return st;
            double worst = 0.0;
            bool ok = true;
            for (int i = 0; i < nobj; ++i) {
                double jd = 0.0;
                for (int j = 0; j < n; ++j) jd += at(run.fjac, run.ldf, i, j) * d[j];
                const double diff = (run.fs[i] - run.fs2[i]) / (2.0 * hrel);
                double rel;
                ok = agrees(jd, diff, epsrf * (1.0 + std::fabs(run.fv[i])), hrel, tol, &rel) && ok;
                worst = std::max(worst, rel);
                if (!lsq) {
                    say(run, format(" Directional derivative of the objective%18.8E", jd));
                    say(run, format(" Difference approximation               %18.8E", diff));
                }
            }
            if (lsq) say(run, ok ? " The objective Jacobian seems to be ok." : " XXX  The objective Jacobian seems to be incorrect.");
            else say(run, ok ? " The objective gradients seem to be ok." : " XXX  The objective gradients seem to be incorrect.");
            if (ncnln > 0) {
                bool cok = true;
                double cworst = 0.0;
                long where = 0;
                for (int i = 0; i < ncnln; ++i) {
                    double jd = 0.0;
                    for (int j = 0; j < n; ++j) jd += at(run.cjac, run.ldcj, i, j) * d[j];
                    const double diff = (run.cs[i] - run.cs2[i]) / (2.0 * hrel);
                    double rel;
                    cok = agrees(jd, diff, epsrf * (1.0 + std::fabs(run.c[i])), hrel, tol, &rel) && cok;
                    if (rel > cworst) {
                        cworst = rel;
                        where = i + 1;
                    }
                }
                say(run, cok ? " The constraint Jacobian seems to be ok."
                             : " XXX  The constraint Jacobian seems to be incorrect.");
                say(run, format(" The largest relative error was%12.2E  in constraint%5ld", cworst, where));
            }
        }
    }

    // Element by element: the objective rows (lvl 1, 3), the constraint rows (lvl 2, 3).
    for (int group = 0; group < 2; ++group) {
        const bool objective = group == 0;
        if (objective ? (lvl != 1 && lvl != 3) : ((lvl != 2 && lvl != 3) || ncnln == 0)) continue;
        const int rows = objective ? nobj : ncnln;
        const int j1 = (objective ? run.cfg.start_obj : run.cfg.start_con) - 1;
        const int j2 = (objective ? run.cfg.stop_obj : run.cfg.stop_con) - 1;
        const bool table_by_rows = !objective || lsq;
        say(run, "");
        say(run, objective ? " Verification of the objective gradients." : " Verification of the constraint gradients.");
        say(run, dashes);
        say(run, table_by_rows ? " Column    X(J)     DX(J)    Row    Jacobian Value      Difference Approxn  Itns"
                               : "    J    X(J)     DX(J)           G(J)           Difference approxn  Itns");
        long checked = 0, bad = 0, wi = 0, wj = 0;
        double worst = 0.0;
        for (int j = std::max(0, j1); j <= std::min(n - 1, j2); ++j) {
            bool any = false;
            for (int i = 0; i < rows && !any; ++i) any = (objective ? miss_obj(run, i, j) : miss_con(run, i, j)) == 0.0;
            if (!any) continue;
            const double h = hrel * (1.0 + std::fabs(run.x[j]));
            const int st = central_pair(run, j, nullptr, h);
            if (st < 0) return st;
            for (int i = 0; i < rows; ++i) {
                if ((objective ? miss_obj(run, i, j) : miss_con(run, i, j)) != 0.0) continue;
                const double deriv = objective ? at(run.fjac, run.ldf, i, j) : at(run.cjac, run.ldcj, i, j);
                const double plus = objective ? run.fs[i] : run.cs[i], minus = objective ? run.fs2[i] : run.cs2[i];
                const double base = objective ? run.fv[i] : run.c[i];
                const double diff = (plus - minus) / (2.0 * h);
                double rel;
                const bool ok = agrees(deriv, diff, epsrf * (1.0 + std::fabs(base)), h, tol, &rel);
                ++checked;
                if (!ok) ++bad;
                if (rel > worst) {
                    worst = rel;
                    wi = i + 1;
                    wj = j + 1;
                }
                if (table_by_rows)
                    say(run, format("%7ld%10.2E%10.2E%5ld%18.8E%18.8E  %4.4s%6ld", static_cast<long>(j + 1), run.x[j], h,
                                    static_cast<long>(i + 1), deriv, diff, ok ? "  OK" : "BAD?", 1L));
                else
                    say(run, format("%5ld%10.2E%10.2E%18.8E%18.8E  %4.4s%6ld", static_cast<long>(j + 1), run.x[j], h, deriv,
                                    diff, ok ? "  OK" : "BAD?", 1L));
            }
        }
        say(run, "");
        const long c1 = j1 + 1, c2 = std::min(n, j2 + 1);
        if (objective && !lsq) {
            if (bad == 0) {
                say(run, format(" %7ld  Objective gradients out of the%6ld", checked, checked));
                say(run, format("         set in cols%6ld  through%6ld  seem to be ok.", c1, c2));
            } else {
                say(run, format(" XXX  There seem to be%6ld  incorrect objective gradients out of the%6ld", bad, checked));
                say(run, format("        set in cols%6ld  through%6ld", c1, c2));
            }
            say(run, format(" The largest relative error was%12.2E   in element%6ld", worst, wj));
        } else {
            if (bad == 0) {
                say(run, format(objective ? " %7ld  objective Jacobian elements out of the%6ld"
                                          : " %7ld  constraint Jacobian elements out of the%6ld",
                                checked, checked));
                say(run, format("         set in cols%6ld  through%6ld  seem to be ok.", c1, c2));
            } else {
                say(run, format(objective ? " XXX  There seem to be%6ld  incorrect objective Jacobian elements out of the%6ld"
                                          : " XXX  There seem to be%6ld  incorrect Jacobian elements out of the%6ld",
                                bad, checked));
                say(run, format("        set in cols%6ld  through%6ld", c1, c2));
            }
            if (objective) say(run, format(" The largest relative error was%12.2E  in subfunction%5ld", worst, wi));
            else say(run, format(" The largest relative error was%12.2E  in row%5ld,  column%5ld", worst, wi, wj));
        }
        bad_total += static_cast<int>(bad);
    }
    return lvl > 0 && bad_total > 0 ? kBadDerivatives : 0;
}

int solve(Run &run) {
    const int n = run.n, nclin = run.nclin, ncnln = run.ncnln;
    // A point feasible for the bounds and linear constraints.
    {
        qp::Problem pr;
        pr.n = n;
        pr.nclin = nclin;
        pr.a = run.a;
        pr.lda = run.lda;
        pr.bl = run.bl;
        pr.bu = run.bu;
        active_set::Settings set = run.cfg.qp;
        set.kind[0] = 'F';
        set.kind[1] = 'P';
        set.feasible_point_only = true;
        set.print_level = 0;
        // The nonlinear rows keep their states for a warm start but take no part here.
        for (int j = 0; j < n + nclin; ++j)
            if (run.istate[j] < 0 || run.istate[j] > 3) run.istate[j] = 0;
        const qp::Result res = qp::run(pr, set, run.cfg.warm ? Start::Warm : Start::Cold, run.istate, run.x, run.axq,
                                       run.clamda, run.qpiwork, run.qpwork);
        run.minor += res.iterations;
        if (res.ninf > 0 || res.word == Word::Infeasible || res.word == Word::RowError) return kLinearInfeasible;
        say(run, "");
        say(run, " The linear constraints are feasible.");
    }
    for (int i = 0; i < ncnln; ++i) {
        run.lambda[i] = run.cfg.warm ? run.clamda[n + nclin + i] : 0.0;
        run.rho[i] = 0.0;
    }
    if (!run.cfg.warm) {
        for (int i = 0; i < ncnln; ++i) run.istate[n + nclin + i] = 0;
    }
    int st = first_evaluation(run);
    if (st < 0) return run.user_mode = st;
    if (st > 0) {
        run.nonfinite_start = true;
        return kInputErrors;
    }
    // The factor: a warm start keeps a usable given R.
    for (int j = 0; j < n; ++j)
        for (int i = j + 1; i < n; ++i) at(run.r, run.ldr, i, j) = 0.0;
    bool fresh = !run.cfg.warm;
    if (run.cfg.warm && !(condition_of(n, run.r, run.ldr) <= run.cfg.condition_bound)) {
        say(run, " XXX  Bad initial Hessian,   R  refactorized.");
        fresh = true;
    }
    report_missing(run);
    const bool need_intervals = run.cfg.verify_level >= 10 ||
                                (run.missing_obj + run.missing_con > 0 && run.cfg.difference_mode != 1);
    for (int j = 0; j < n; ++j) {
        run.hfwd[j] = run.cfg.difference_mode == 1 ? run.cfg.fdint : std::sqrt(run.cfg.epsrf);
        run.hcen[j] = run.cfg.difference_mode == 1 ? run.cfg.cdint : std::cbrt(run.cfg.epsrf);
    }
    if (need_intervals) {
        st = compute_intervals(run);
        if (st < 0) return run.user_mode = st;
    }
    st = derivative_checks(run);
    if (st < 0) return run.user_mode = st;
    if (st > 0) return st;
    if (run.missing_obj + run.missing_con > 0) {
        st = evaluate(run, true, 0);
        if (st < 0) return run.user_mode = st;
        if (st > 0) {
            run.nonfinite_start = true;
            return kInputErrors;
        }
    }
    if (fresh) start_factor(run);
    return major_loop(run);
}

} // namespace zek::sqp
