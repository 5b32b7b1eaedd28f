// The printed side of branch and bound: the node log, the parameter block and the solution blocks.
#include <algorithm>
#include <cmath>

#include "frame/output.h"
#include "integer/branch_and_bound.h"

namespace zek::h02 {

namespace {

void say(int unit, const std::string &line) { host_line(unit, line.c_str(), static_cast<int>(line.size()) + 1); }

// The state pair of an LP status; a temporarily fixed variable prints "TB" here.
std::string state_pair(int s) {
    static const char pairs[] = "--++FRLLULEQTB";
    if (s < -2 || s > 4) return "  ";
    return std::string(pairs + 2 * (s + 2), 2);
}

} // namespace

std::string node_log_row(NodeOutcome outcome, long node, long parent, double objective, long variable,
                         double before, double lower, double upper, double after, long depth, double bigbnd) {
    std::string row = format(" %4ld  ", node);
    switch (outcome) {
    case NodeOutcome::Kept: row += format("%4ld    ", parent) + format("%10.3G    ", objective); break;
    case NodeOutcome::CutOff: row += format("%4ld    ", parent) + format("%10.3G CO ", objective); break;
    case NodeOutcome::NoFeasible: row += format("%4ld    No Feas Soln  ", parent); break;
    }
    row += format("%3ld   ", variable);
    const bool no_lower = lower <= -bigbnd, no_upper = upper >= bigbnd;
    if (no_lower && no_upper) {
        // The three kinds of row have their own spacing when both bounds are missing.
        switch (outcome) {
        case NodeOutcome::Kept: row += format("%9.3G  None       None     ", before); break;
        case NodeOutcome::CutOff: row += format("%9.3G  None       None", before); break;
        case NodeOutcome::NoFeasible: row += format("%9.3G  None        None     ", before); break;
        }
    } else if (no_lower) {
        row += format("%9.3G  None      ", before) + format("%9.3G ", upper);
    } else if (no_upper) {
        row += format("%9.3G ", before) + format("%9.3G   None     ", lower);
    } else {
        row += format("%9.3G ", before) + format("%9.3G  ", lower) + format("%9.3G ", upper);
    }
    row += format("%9.3G ", after) + format("%3ld", depth);
    return row;
}

void print_tree_heading(int unit) {
    say(unit, "");
    say(unit, "  Node  Parent    Obj       Varbl  Value      Lower     Upper     Value    Depth");
    say(unit, "   No    Node    Value      Chosen Before     Bound     Bound     After");
}

void print_parameters(int unit, const ParameterBlock &p) {
    say(unit, "");
    say(unit, format(" *** %s", p.routine));
    say(unit, "");
    say(unit, " Parameters");
    say(unit, " ----------");
    say(unit, "");
    say(unit, p.first_solution
                  ? format(" Linear constraints......%10ld        First integer solution..        ON",
                           static_cast<long>(p.m))
                  : format(" Linear constraints......%10ld        First integer solution..       OFF",
                           static_cast<long>(p.m)));
    say(unit, format(" Variables...............%10ld        Max depth of the tree...", static_cast<long>(p.n)) +
                  format("%10ld", static_cast<long>(p.maxdpt)));
    say(unit, format(" Feasibility tolerance...%10.2E        Print level.............", p.tolfes) +
                  format("%10ld", static_cast<long>(p.msglvl)));
    say(unit, format(" Infinite bound size.....%10.2E        EPS (machine precision).", p.bigbnd) +
                  format("%10.2E", p.eps));
    say(unit, format(" Integer feasibility tol.%10.2E        Iteration limit.........", p.toliv) +
                  format("%10ld", static_cast<long>(p.itmax)));
    say(unit, p.maxnod > 0 ? format(" Max number of nodes.....%10ld", static_cast<long>(p.maxnod))
                           : std::string(" Max number of nodes.....      NONE"));
}

void print_solution(const char *routine, int unit, int exit_kind, int n, int m, const double *a, int lda,
                    const double *x, const double *bl, const double *bu, const double *clamda, const int *istate,
                    double objective, double bigbnd, long nodes) {
    static const char *const closing[] = {"Optimum", "First", "Best"};
    if (exit_kind >= 0 && exit_kind <= 2) {
        say(unit, "");
        say(unit, format(" Exit %s - %s IP solution found. ", routine, closing[exit_kind]));
    }
    say(unit, "");
    say(unit, format(" Final IP objective value =%16.7G", objective));

    const auto line = [&](int j, double value) {
        const long index = j < n ? j + 1 : j - n + 1;
        const double lo = bl[j], up = bu[j];
        const bool no_lower = lo <= -bigbnd, no_upper = up >= bigbnd;
        std::string row = format(j < n ? " V%3ld    " : " L%3ld    ", index) + format("%2.2s ", state_pair(istate[j]).c_str());
        if (no_lower && no_upper) row += format("%14.6G     None          None     ", value);
        else if (no_lower) row += format("%14.6G     None     ", value) + format("%14.6G", up);
        else if (no_upper) row += format("%14.6G", value) + format("%14.6G     None     ", lo);
        else row += format("%14.6G", value) + format("%14.6G", lo) + format("%14.6G", up);
        row += format("%12.4G", clamda[j]) + format("%12.4G", std::min(value - lo, up - value));
        say(unit, row);
    };
    say(unit, "");
    say(unit, " Varbl State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual");
    say(unit, "");
    for (int j = 0; j < n; ++j) line(j, x[j]);
    if (m > 0) {
        say(unit, "");
        say(unit, " L Con State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual");
        say(unit, "");
        for (int i = 0; i < m; ++i) {
            double value = 0.0;
            for (int j = 0; j < n; ++j) value += a[i + static_cast<std::ptrdiff_t>(j) * lda] * x[j];
            line(n + i, value);
        }
    }
    say(unit, "");
    say(unit, format(" Total of %5ld nodes investigated.", nodes));
}

} // namespace zek::h02
