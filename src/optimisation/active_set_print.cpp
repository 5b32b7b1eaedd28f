// Printing of the active-set core: iteration lines with their page headings, the detailed pages of the
// highest print levels, monitoring records and the solution table.
//
// Pagination: a heading opens each call of the iteration loop and is repeated every kPageLength lines;
// at print level 20 and above every iteration is followed by its detailed page, so every line gets its
// own heading.
#include <algorithm>
#include <cmath>

#include "frame/output.h"
#include "optimisation/active_set.h"

namespace zek::active_set {

namespace {

constexpr int kPageLength = 50;

const char *const kShortHeading = "  Itn     Step Ninf Sinf/Objective  Norm Gz";
const char *const kLongHeading =
    "  Itn Jdel  Jadd      Step Ninf  Sinf/Objective  Bnd  Lin  Art   Zr  Norm Gz NOpt    Min Lm   Cond T";

void write(int unit, const std::string &line) { host_line(unit, line.c_str(), static_cast<int>(line.size()) + 1); }

double condition_of_t(const Core &c) { return c.dtmin > 0.0 ? c.dtmax / c.dtmin : 0.0; }

std::string short_line(const Core &c) {
    return format("%5ld%9.1E%5ld%15.6E%9.1E", static_cast<long>(c.itn), c.step, static_cast<long>(c.ninf),
                  c.objective, c.gznorm);
}

std::string long_line(const Core &c) {
    const char del[2] = {c.del_kind, '\0'}, add[2] = {c.add_kind, '\0'};
    return format("%5ld%5ld%1.1s%5ld%1.1s%9.1E%5ld%16.8E%5ld%5ld%5ld%5ld%9.1E%5ld%10.2E%9.1E",
                  static_cast<long>(c.itn), static_cast<long>(c.jdel), del, static_cast<long>(c.jadd), add, c.step,
                  static_cast<long>(c.ninf), c.objective, static_cast<long>(c.n - c.nfree),
                  static_cast<long>(c.nactiv), 0L, static_cast<long>(c.nz), c.gznorm, static_cast<long>(c.nopt),
                  c.min_multiplier, condition_of_t(c));
}

// A value of the solution table: "." for an exact zero.
std::string table_value(double v) { return v == 0.0 ? std::string("       .      ") : format("%14.6G", v); }
std::string table_bound(double v, double bigbnd) {
    return std::fabs(v) >= bigbnd ? std::string("      None    ") : table_value(v);
}

} // namespace

void say(const Core &c, const std::string &line) { write(c.set.print_unit, line); }

void print_iteration(Core &c) {
    if (c.set.print_level >= 5) {
        if (c.page_lines == 0 || c.page_lines >= kPageLength || c.set.print_level >= 20) {
            say(c, "");
            say(c, c.set.print_level >= 10 ? kLongHeading : kShortHeading);
            c.page_lines = 0;
        }
        say(c, c.set.print_level >= 10 ? long_line(c) : short_line(c));
        ++c.page_lines;
        if (c.set.print_level >= 20) print_details(c);
    }
    if (c.set.monitor_unit >= 0) write(c.set.monitor_unit, short_line(c));
}

void print_details(Core &c) {
    const char *kind = c.set.kind;
    say(c, "");
    say(c, format(" %2.2s iteration%5ld", kind, static_cast<long>(c.itn)));
    say(c, " =================");
    say(c, "");
    say(c, format(" Values and status of the %2.2s constraints", kind));
    say(c, " ---------------------------------------");
    say(c, "");
    say(c, " Variables...");
    for (int j = 0; j < c.n; ++j)
        say(c, format("%5ld%15.6E", static_cast<long>(j + 1), c.x[j]) + "  " + state_code(c.istate[j]));
    if (c.nclin > 0) {
        say(c, "");
        say(c, " General linear constraints...");
        for (int i = 0; i < c.nclin; ++i)
            say(c, format("%5ld%15.6E", static_cast<long>(i + 1), c.ax[i]) + "  " + state_code(c.istate[c.n + i]));
    }
    if (c.nactiv > 0) {
        say(c, "");
        say(c, format(" Diagonals of %2.2s working set factor T", kind));
        std::string row;
        for (int k = 0; k < c.nactiv; ++k) {
            row += format("%15.6E", c.t[k + static_cast<std::ptrdiff_t>(k) * c.ldt]);
            if (k % 5 == 4 || k == c.nactiv - 1) {
                say(c, row);
                row.clear();
            }
        }
    }
    if (c.nfree < c.n) {
        say(c, "");
        say(c, format(" Multipliers for the %2.2s bound  constraints   ", kind));
        for (int k = c.nfree; k < c.n; ++k)
            say(c, format("%5ld%11.2E", static_cast<long>(c.kx[k] + 1), c.clamda[c.kx[k]]));
    }
    if (c.nactiv > 0) {
        say(c, "");
        say(c, format(" Multipliers for the %2.2s linear constraints   ", kind));
        for (int k = 0; k < c.nactiv; ++k)
            say(c, format("%5ld%11.2E", static_cast<long>(c.kactiv[k] + 1), c.clamda[c.n + c.kactiv[k]]));
    }
}

void print_solution_block(int unit, const SolutionBlock &b, double bigbnd, double tolmul) {
    if (b.count <= 0) return;
    write(unit, "");
    write(unit, format(" %5.5s State     Value       Lower Bound   Upper Bound    Lagr Mult   Slack", b.kind));
    write(unit, "");
    const char letter[2] = {b.kind[0], '\0'};
    for (int k = 0; k < b.count; ++k) {
        const double v = b.value[k], l = b.bl[k], u = b.bu[k], lam = b.lambda[k];
        const int s = b.istate[k];
        double slack = 0.0;
        if (l > -bigbnd && u < bigbnd) slack = std::min(v - l, u - v);
        else if (l > -bigbnd) slack = v - l;
        else if (u < bigbnd) slack = u - v;
        // I: infeasible; A: in the working set with a zero multiplier (alternative optima may
        // exist); D: outside the working set but on a bound (degenerate).
        const char *mark = " ";
        if (s < 0) mark = "I";
        else if (s >= kAtLower && s <= kEquality && std::fabs(lam) <= tolmul) mark = "A";
        else if (s == kNotInWorkingSet && std::fabs(slack) <= (b.featol != nullptr ? b.featol[k] : b.tol)) mark = "D";
        std::string row = format(" %1.1s%4ld  %1.1s %2.2s ", letter, static_cast<long>(k + 1), mark, state_code(s));
        row += table_value(v) + table_bound(l, bigbnd) + table_bound(u, bigbnd);
        row += format("%12.4G%12.4G", lam, slack);
        write(unit, row);
    }
}

void print_solution(const Core &c) {
    const double bigbnd = c.set.infinite_bound;
    const double tolmul = c.set.optimality_tolerance * std::max(1.0, c.gnorm);
    print_solution_block(c.set.print_unit,
                         {"Varbl", c.n, c.x, c.bl, c.bu, c.clamda, c.istate, c.featlu, 0.0}, bigbnd, tolmul);
    print_solution_block(c.set.print_unit,
                         {"L Con", c.nclin, c.ax, c.bl + c.n, c.bu + c.n, c.clamda + c.n, c.istate + c.n,
                          c.featlu + c.n, 0.0},
                         bigbnd, tolmul);
}

} // namespace zek::active_set
