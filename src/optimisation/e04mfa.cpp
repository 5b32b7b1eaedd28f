// E04MFA: linear programming and feasible points over bounds and general linear constraints, the first
// user of the active-set core.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "frame/ifail.h"
#include "frame/output.h"
#include "optimisation/active_set.h"
#include "optimisation/options.h"
#include "optimisation/run_settings.h"
#include "zek2/e04.h"

namespace {

using zek::active_set::Core;
using zek::active_set::Start;
using zek::active_set::Word;
namespace lc = zek::e04::lc;

// The run's settings from the LC block, after its defaults were applied.
zek::active_set::Settings settings_of(const int *iwsav, const double *rwsav, int type) {
    zek::active_set::Settings s = zek::e04::lc_block_settings(iwsav, rwsav);
    s.solver = "E04MFA";
    s.kind[0] = type == 1 ? 'F' : 'L';
    s.kind[1] = 'P';
    s.feasible_point_only = type == 1;
    s.iteration_limit = zek::e04::setting(iwsav, zek::e04::Block::LC, lc::kOptimalityItns);
    return s;
}

// The largest distance of a working constraint from its bound.
double working_set_error(const Core &c) {
    double worst = 0.0;
    for (int j = 0; j < c.n + c.nclin; ++j) {
        const int s = c.istate[j];
        if (s < zek::active_set::kAtLower || s > zek::active_set::kEquality) continue;
        const double v = j < c.n ? c.x[j] : c.ax[j - c.n];
        const double b = s == zek::active_set::kAtUpper ? c.bu[j] : c.bl[j];
        worst = std::max(worst, std::fabs(v - b));
    }
    return worst;
}

// The ends of a run, one row each: the word the core returns, IFAIL and the exit number (0 for the
// success exits) and the text, which follows " Exit E04MFA - " on the print unit and " ** " in the
// failure message; "%2.2s" stands for the problem kind (LP or FP), a newline for the printed line break
// that the one-line message leaves out.
struct RunExit {
    Word word;
    int ifail;
    long number;
    const char *text;
};

constexpr RunExit kRunExits[] = {
    {Word::Optimal, 0, 0, "Optimal %2.2s solution."},
    {Word::Feasible, 0, 0, "Feasible point found.     "},
    {Word::Weak, 1, 99997, "Weak %2.2s solution."},
    {Word::Unbounded, 2, 99996, "%2.2s solution is unbounded."},
    {Word::Infeasible, 3, 99995, "No feasible point for the linear constraints."},
    {Word::RowError, 3, 99994, "Cannot satisfy the working set constraints to the accuracy\nrequested."},
    {Word::IterationLimit, 4, 99993, "Too many iterations."},
};

// The exit before a run starts (the argument count, 99998, builds its own records).
enum E04mfaExit { kProblemType };
constexpr zek::ExitRow kE04mfaExits[] = {
    {7, 99999, " ** Problem type not recognized.  Problem abandoned."},
};

const RunExit *run_exit(Word word) {
    for (const RunExit &e : kRunExits)
        if (e.word == word) return &e;
    return nullptr;
}

// Data near the overflow threshold can carry the iterates past it.  A point or row values that are
// no longer finite cannot satisfy the working set to any accuracy; an objective beyond the largest
// number, at a finite point, is unbounded as far as the arithmetic can tell.  Either is reported by
// its exit instead of an optimum.
Word finite_or_failed(Word word, const Core &core, bool linear_objective) {
    const RunExit *e = run_exit(word);
    if (e != nullptr && e->ifail > 1) return word;
    for (std::ptrdiff_t j = 0; j < core.n; ++j)
        if (!std::isfinite(core.x[j])) return Word::RowError;
    for (std::ptrdiff_t i = 0; i < core.nclin; ++i)
        if (!std::isfinite(core.ax[i])) return Word::RowError;
    if (linear_objective && core.ninf == 0 && !std::isfinite(core.objective)) return Word::Unbounded;
    return word;
}

bool names_kind(const char *text) { return std::strstr(text, "%2.2s") != nullptr; }

// TEXT with the kind in place of its conversion (the printed form).
std::string with_kind(const char *text, const char *kind) {
    std::string s(text);
    const std::size_t at = s.find("%2.2s");
    if (at != std::string::npos) s.replace(at, 5, zek::format("%2.2s", kind));
    return s;
}

} // namespace

extern "C" void E04MFA(const int *n_, const int *nclin_, const double *a, const int *lda_, const double *bl,
                       const double *bu, const double *cvec, int *istate, double *x, int *iter, double *obj,
                       double *ax, double *clamda, int *iwork, const int *liwork_, double *work, const int *lwork_,
                       int *lwsav, int *iwsav, double *rwsav, int *ifail) {
    using zek::format;
    using zek::e04::Block;
    using zek::e04::Family;
    using zek::e04::setting;
    zek::FailureExit exit("E04MFA", nullptr, ifail);
    const int n = *n_, nclin = *nclin_, lda = *lda_, liwork = *liwork_, lwork = *lwork_;

    zek::e04::ProblemSize size;
    size.n = n;
    size.nclin = nclin;
    zek::e04::begin_run(Family::MFA, lwsav, iwsav, rwsav, size);
    zek::e04::print_parameters(Family::MFA, iwsav, rwsav, size);
    const int type = setting(iwsav, Block::LC, lc::kProblemType);
    zek::active_set::Settings set = settings_of(iwsav, rwsav, type);
    const auto say = [&](const std::string &line) {
        if (set.print_level >= 1) zek::host_line(set.print_unit, line.c_str(), static_cast<int>(line.size()) + 1);
    };

    if (type != 1 && type != 2) {
        say("");
        say(" Exit E04MFA - Problem type not recognized.  Problem abandoned.");
        zek::e04::end_run(Family::MFA, lwsav, iwsav, rwsav);
        zek::take(exit, kE04mfaExits, kProblemType);
        return;
    }
    const int start_code = setting(iwsav, Block::LC, lc::kStart);
    const Start start = start_code == 1 ? Start::Warm : start_code == 2 ? Start::Hot : Start::Cold;
    const char *start_word = start == Start::Warm ? "Warm" : start == Start::Hot ? "Hot " : "Cold";

    // The layout, and every input error counted before any work.
    zek::Records records;
    int errors = zek::active_set::check_input(start_word, n, nclin, lda, bl, bu, istate, start, set.infinite_bound,
                                              records);
    errors += zek::active_set::check_data(n, nclin, a, lda, type == 2 ? cvec : nullptr, "CVEC", records);
    zek::active_set::Layout layout;
    if (n > 0 && nclin >= 0) {
        const int mn = std::min(n, nclin);
        int maxact = setting(iwsav, Block::LC, lc::kMaxActive);
        int maxfree = setting(iwsav, Block::LC, lc::kMaxFree);
        maxact = std::clamp(maxact, 1, std::max(1, mn));
        maxfree = std::clamp(maxfree, nclin < n ? nclin + 1 : n, n);
        layout = zek::active_set::work_layout(n, nclin, maxact, maxfree);
        errors += zek::active_set::check_workspace(liwork, lwork, layout.liwork, layout.lwork, records);
    }
    if (errors > 0) {
        zek::active_set::abandon(say, "E04MFA", errors, records);
        zek::e04::end_run(Family::MFA, lwsav, iwsav, rwsav);
        exit.fail_with_records(6, 99998, records, {static_cast<long>(errors)});
        return;
    }

    Core core;
    zek::active_set::attach(core, n, nclin, a, lda, bl, bu, set, istate, x, ax, clamda);
    zek::active_set::bind(core, layout, iwork, work);
    zek::active_set::LinearStep step(type == 2 ? cvec : nullptr);
    const Word word = finite_or_failed(zek::active_set::solve(core, step, start), core, type == 2);

    *iter = core.itn;
    const bool feasible = core.ninf == 0;
    *obj = feasible && type == 2 ? core.objective : core.suminf;

    const char *kind = set.kind;
    if (set.print_level >= 1) {
        zek::active_set::print_run_end(say, core, core.itn);
        if (const RunExit *e = run_exit(word)) {
            const std::string text = " Exit E04MFA - " + with_kind(e->text, kind);
            const std::size_t cut = text.find('\n');
            say(text.substr(0, cut));
            if (cut != std::string::npos) say(text.substr(cut + 1));
        }
        say("");
        if (feasible && type == 2) say(format(" Final %2.2s objective value =%16.7G", kind, core.objective));
        else if (word == Word::Infeasible && set.minimum_sum)
            say(format(" Minimum sum of infeasibilities =%16.7G", core.suminf));
        else say(format(" Final sum of infeasibilities =%16.7G", core.suminf));
    }
    zek::e04::end_run(Family::MFA, lwsav, iwsav, rwsav);

    const RunExit *e = run_exit(word);
    if (e == nullptr || e->ifail == 0) {
        exit.succeed();
        return;
    }
    std::string message = std::string(" ** ") + e->text;
    for (char &ch : message)
        if (ch == '\n') ch = ' ';
    if (word != Word::RowError) {
        if (names_kind(e->text)) exit.fail(e->ifail, e->number, message.c_str(), {kind});
        else exit.fail(e->ifail, e->number, message.c_str());
        return;
    }
    zek::Records rec;
    rec.add(message);
    rec.add(format(" Sum of infeasibilities =%16.7G", core.suminf));
    const double rowerr = working_set_error(core);
    rec.add(format(" Maximum row error =%16.7G", rowerr));
    exit.fail_with_records(e->ifail, e->number, rec, {core.suminf, rowerr});
}
