// Printing of the SQP engine: the major iteration lines with their headings, the page of values of
// the highest levels, the line-search traces and the solution table.
//
// The short line (level 5) and the long line (level 10) share one heading rule: a heading opens the
// run and is repeated every kPageLength lines; at level 20, where every line is followed by its page,
// every line gets its own heading.  The diagonals of the QP's working-set factor T are not kept after
// the subproblem (only their extremes, for Cond T), so the page shows the diagonals of R alone.
#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>

#include "frame/output.h"
#include "optimisation/sqp.h"

namespace zek::sqp {

namespace {

constexpr int kPageLength = 50;

void write(const Run &run, int level, const std::string &line) {
    if (run.cfg.major_print >= level)
        host_line(run.cfg.print_unit, line.c_str(), static_cast<int>(line.size()) + 1);
}

inline double entry(const double *m, int ld, int i, int j) { return m[i + static_cast<std::ptrdiff_t>(j) * ld]; }

// General constraint values: A x for the linear rows, then the nonlinear values, into run.axq.
void constraint_values(Run &run) {
    for (int i = 0; i < run.nclin; ++i) {
        double s = 0.0;
        for (int j = 0; j < run.n; ++j) s += entry(run.a, run.lda, i, j) * run.x[j];
        run.axq[i] = s;
    }
    for (int i = 0; i < run.ncnln; ++i) run.axq[run.nclin + i] = run.c[i];
}

void working_counts(const Run &run, long *bnd, long *lin, long *nln) {
    *bnd = *lin = *nln = 0;
    for (int j = 0; j < run.n + run.nclin + run.ncnln; ++j) {
        const int s = run.istate[j];
        if (s < 1 || s > 4) continue;
        if (j < run.n) ++*bnd;
        else if (j < run.n + run.nclin) ++*lin;
        else ++*nln;
    }
}

// Five numbers to a line.
void write_rows(const Run &run, int count, const double *v, int stride) {
    std::string row;
    for (int k = 0; k < count; ++k) {
        row += format("%15.6E", v[static_cast<std::ptrdiff_t>(k) * stride]);
        if (k % 5 == 4 || k == count - 1) {
            write(run, kPrintPages, row);
            row.clear();
        }
    }
}

void write_states(const Run &run, const char *title, int count, const double *v, const int *istate) {
    if (count <= 0) return;
    write(run, kPrintPages, "");
    write(run, kPrintPages, title);
    for (int k = 0; k < count; ++k)
        write(run, kPrintPages,
              format("%5ld%15.6E", static_cast<long>(k + 1), v[k]) + "  " + active_set::state_code(istate[k]));
}

void print_page(Run &run) {
    const int n = run.n, nclin = run.nclin;
    write(run, kPrintPages, "");
    write(run, kPrintPages, format(" Major iteration%5ld", static_cast<long>(run.major)));
    write(run, kPrintPages, " ====================");
    write(run, kPrintPages, "");
    write(run, kPrintPages, format(" Nonlinear objective value = %15.6E", *run.objf));
    if (run.ncnln > 0)
        write(run, kPrintPages, format(" Norm of the nonlinear constraint violations = %15.6E", run.violation));
    write(run, kPrintPages, "");
    write(run, kPrintPages, " Values of the constraints and their predicted status");
    write(run, kPrintPages, " ----------------------------------------------------");
    constraint_values(run);
    write_states(run, " Variables                  ", n, run.x, run.istate);
    write_states(run, " General linear constraints ", nclin, run.axq, run.istate + n);
    write_states(run, " Nonlinear constraints      ", run.ncnln, run.axq + nclin, run.istate + n + nclin);
    if (run.nactiv > 0 && run.t != nullptr) {
        write(run, kPrintPages, "");
        write(run, kPrintPages, " Diagonals of  T  =         ");
        write_rows(run, run.nactiv, run.t, run.ldt + 1);
    }
    write(run, kPrintPages, "");
    write(run, kPrintPages, " Diagonals of  R  =         ");
    write_rows(run, n, run.r, run.ldr + 1);
}

} // namespace

void print_major(Run &run, double merit, double violation, Convergence conv) {
    const int level = run.cfg.major_print;
    if (level < kPrintLines) return;
    const bool nonlinear = run.ncnln > 0, long_form = level >= kPrintLong;
    long bnd, lin, nln;
    working_counts(run, &bnd, &lin, &nln);
    const long nz = std::max(0L, run.n - bnd - lin - nln);
    const char *step = conv.step ? "T" : " ", *grad = conv.grad ? "T" : " ", *feas = conv.feas ? "T" : " ";
    if (run.page_lines == 0 || run.page_lines >= kPageLength || level >= kPrintPages) {
        const char *heading =
            long_form ? (nonlinear ? "  Maj  Mnr    Step Nfun  Merit Function Norm Gz  Violtn   Nz  Bnd  Lin  Nln "
                                     "Penalty  Cond H Cond Hz  Cond T Conv"
                                   : "  Maj  Mnr    Step Nfun       Objective Norm Gz   Nz  Bnd  Lin  Cond H Cond Hz  "
                                     "Cond T Conv")
                      : (nonlinear ? "  Maj  Mnr    Step Merit Function Norm Gz  Violtn Cond Hz"
                                   : "  Maj  Mnr    Step      Objective Norm Gz Cond Hz");
        write(run, kPrintLines, "");
        write(run, kPrintLines, heading);
        run.page_lines = 0;
    }
    ++run.page_lines;
    const long maj = run.major, mnr = run.minor, nfun = run.nfun;
    std::string line;
    if (long_form && nonlinear)
        line = format("%5ld%5ld%8.1E%5ld%16.8E%8.1E%8.1E%5ld%5ld%5ld%5ld%8.1E%8.1E%8.1E%8.1E %1s %1s%1s", maj, mnr,
                      run.alpha, nfun, merit, run.gz_norm, violation, nz, bnd, lin, nln, run.rhonorm, run.cond_h,
                      run.cond_hz, run.cond_t, step, grad, feas);
    else if (long_form)
        line = format("%5ld%5ld%8.1E%5ld%16.8E%8.1E%5ld%5ld%5ld%8.1E%8.1E%8.1E %1s %1s", maj, mnr, run.alpha, nfun,
                      merit, run.gz_norm, nz, bnd, lin, run.cond_h, run.cond_hz, run.cond_t, step, grad);
    else {
        // The flags stand as in the long line: step, blank, gradient, feasibility.
        const std::string flags = nonlinear ? format("%1s %1s%1s", step, grad, feas) : format("%1s %1s", step, grad);
        line = nonlinear ? format("%5ld%5ld%8.1E%15.6E%8.1E%8.1E%8.1E  %5.5s", maj, mnr, run.alpha, merit,
                                  run.gz_norm, violation, run.cond_hz, flags.c_str())
                         : format("%5ld%5ld%8.1E%15.6E%8.1E%8.1E  %5.5s", maj, mnr, run.alpha, merit, run.gz_norm,
                                  run.cond_hz, flags.c_str());
    }
    write(run, kPrintLines, line);
    if (level >= kPrintPages) print_page(run);
}

void print_major_start(const Run &run) {
    write(run, kPrintDebug, "");
    write(run, kPrintDebug, format(" Start of major itn%6ld", static_cast<long>(run.major)));
}

void print_central_switch(const Run &run) {
    write(run, kPrintLines, "");
    write(run, kPrintLines, format(" XXX  Switched to central differences at major itn%6ld", static_cast<long>(run.major)));
}

void print_solution(Run &run) {
    const int level = run.cfg.major_print;
    if (level != 1 && level < kPrintLong) return;
    const int n = run.n, nclin = run.nclin;
    const double bigbnd = run.cfg.qp.infinite_bound;
    double gnorm = 0.0;
    for (int j = 0; j < n; ++j) gnorm = std::max(gnorm, std::fabs(run.g[j]));
    const double tolmul = run.cfg.opttol * std::max(1.0, gnorm);
    const double lintol = run.cfg.qp.feasibility_tolerance;
    constraint_values(run);
    const int unit = run.cfg.print_unit;
    active_set::print_solution_block(unit, {"Varbl", n, run.x, run.bl, run.bu, run.clamda, run.istate, nullptr, lintol},
                                     bigbnd, tolmul);
    active_set::print_solution_block(unit,
                                     {"L Con", nclin, run.axq, run.bl + n, run.bu + n, run.clamda + n, run.istate + n,
                                      nullptr, lintol},
                                     bigbnd, tolmul);
    const int k = n + nclin;
    active_set::print_solution_block(unit,
                                     {"N Con", run.ncnln, run.axq + nclin, run.bl + k, run.bu + k, run.clamda + k,
                                      run.istate + k, nullptr, run.cfg.ctol},
                                     bigbnd, tolmul);
}

std::string flags(std::initializer_list<bool> values) {
    std::string out;
    for (bool v : values) out += format("%5ld", static_cast<long>(v));
    return out;
}

void trace_search_start(const Run &run, const SearchState &s) {
    write(run, kPrintDebug, "");
    write(run, kPrintDebug, format("    G0  TOLABS  ALFMAX        %15.6E%15.6E%15.6E", s.g0, s.tolabs, s.alfmax));
    write(run, kPrintDebug, format(" TARGTG  TOLREL   EPSAF        %15.6E%15.6E%15.6E", s.targtg, s.tolrel, s.epsaf));
    write(run, kPrintDebug, " CRAMPD                        " + flags({s.crampd}));
}

void trace_search_trial(const Run &run, const SearchState &s) {
    write(run, kPrintDebug, "");
    write(run, kPrintDebug,
          s.slope ? format(" ALFA    FTRY    GTRY          %15.6E%15.6E%15.6E", s.alfa, s.ftry, s.gtry)
                  : format(" ALFA    FTRY                  %15.6E%15.6E", s.alfa, s.ftry));
    write(run, kPrintDebug, format(" A       B       B - A   TOL   %15.6E%15.6E%15.6E%15.6E", s.a, s.b, s.b - s.a, s.tol));
    write(run, kPrintDebug,
          format(" NSAMEA  NSAMEB  NUMF          %5ld%5ld%5ld", static_cast<long>(s.nsamea), static_cast<long>(s.nsameb),
                 static_cast<long>(s.numf)));
    write(run, kPrintDebug, " BRAKTD  EXTRAP  CLOSEF  IMPRVD" + flags({s.braktd, s.extrap, s.closef, s.imprvd}));
    if (s.slope) {
        write(run, kPrintDebug, " FOUND   QUITI                 " + flags({s.found, s.quiti}));
        write(run, kPrintDebug, format(" ALFBST  FBEST   GBEST         %15.6E%15.6E%15.6E", s.alfbst, s.fbest, s.gbest));
        write(run, kPrintDebug, format(" ALFAW   FW      GW            %15.6E%15.6E%15.6E", s.alfaw, s.fw, s.gw));
    } else {
        write(run, kPrintDebug, " FOUND   QUITI   QUITFZ  QUITS " + flags({s.found, s.quiti, s.quitfz, s.quits}));
        write(run, kPrintDebug, format(" ALFBST  FBEST                 %15.6E%15.6E", s.alfbst, s.fbest));
        write(run, kPrintDebug, format(" ALFAW   FW                    %15.6E%15.6E", s.alfaw, s.fw));
        write(run, kPrintDebug, format(" ALFAV   FV                    %15.6E%15.6E", s.alfav, s.fv));
    }
}

void trace_search_step(const Run &run, const SearchState &s, StepKind kind, double xtry, double daux, double dtry) {
    switch (kind) {
    case StepKind::Cubic: write(run, kPrintDebug, "Cubic."); break;
    case StepKind::Parabola: write(run, kPrintDebug, "Parabola."); break;
    case StepKind::Bisection: write(run, kPrintDebug, "Bisection."); break;
    case StepKind::TwoPoints: write(run, kPrintDebug, " Parabolic fit,    two points."); break;
    case StepKind::ThreePoints: write(run, kPrintDebug, " Parabolic fit,  three points."); break;
    case StepKind::ExponentReduced:
        write(run, kPrintDebug, format(" Exponent reduced.  Trial point%15.6E", xtry));
        break;
    case StepKind::GeoBisection:
        write(run, kPrintDebug,
              s.slope ? format(" Geo. bisection. XTRY,DAUX,DTRY%15.6E%15.6E%15.6E", xtry, daux, dtry) : " Geo. bisection.");
        break;
    }
}

void trace_search_end(const Run &run, const SearchState &s) {
    write(run, kPrintDebug, "");
    if (s.slope) {
        write(run, kPrintDebug, " FOUND   QUITI                 " + flags({s.found, s.quiti}));
        write(run, kPrintDebug, format(" ALFBST  FBEST   GBEST         %15.6E%15.6E%15.6E", s.alfbst, s.fbest, s.gbest));
    } else {
        write(run, kPrintDebug, " FOUND   QUITI   QUITFZ  QUITS " + flags({s.found, s.quiti, s.quitfz, s.quits}));
        write(run, kPrintDebug, format(" ALFBST  FBEST                 %15.6E%15.6E", s.alfbst, s.fbest));
    }
}

} // namespace zek::sqp
