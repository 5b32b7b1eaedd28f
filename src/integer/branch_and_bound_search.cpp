// The tree search of H02BBF, H02CBF and H02CEF: every node is one relaxation (an LP of E04MFA, or a QP
// of E04NFA) with the bounds of its path in the tree, and the pending nodes wait in slots of the
// caller's workspace.
//
// Order of the search.  The right child of a branching (x >= v+1) is solved at once in its parent's
// slot; the left child (x <= v) waits at the head of the pending list with its parent's objective as
// bound.  While at most half of the slots are in use, the next slot is the first in list order whose
// bound is the smallest (best first, the most recent among equals); beyond that the head of the list is
// taken, a dive that uses no more slots.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>

#include "frame/machine.h"
#include "frame/output.h"
#include "integer/branch_and_bound.h"
#include "zek2/e04.h"
#include "zek2/h02.h"

namespace zek::h02 {

double no_objective() { return 1.0 / safe_minimum(); }

int first_fractional(int n, const int *intvar, const double *x, double toliv) {
    for (int j = 0; j < n; ++j) {
        if (intvar[j] != 1) continue;
        const double v = x[j];
        const double nearest = std::trunc(v >= 0.0 ? v + 0.5 : v - 0.5);
        if (!(std::fabs(v - nearest) <= toliv)) return j + 1;
    }
    return 0;
}

namespace {

void say(int unit, const std::string &line) { host_line(unit, line.c_str(), static_cast<int>(line.size()) + 1); }

// The branching value of x: its floor, as an integer the tree can hold (a value that is not a number
// branches at 0, which still splits the range in two).
int branching_value(double x) {
    double v = std::trunc(x);
    if (x < 0.0) v -= 1.0;
    if (!(v == v)) v = 0.0;
    return static_cast<int>(std::clamp(v, static_cast<double>(INT_MIN + 1), static_cast<double>(INT_MAX - 1)));
}

// The bound a free slot holds: above every objective, so that it never counts as the smallest.
constexpr double kFreeBound = std::numeric_limits<double>::infinity();

// How the search stops.
enum class End { None, Empty, NodeLimit, Code };

class TreeSearch {
public:
    TreeSearch(const SearchSetup &s, NodeSolver &solver)
        : routine(s.routine), n(s.n), m(s.m), lda(s.lda), a(s.a), bl(s.bl), bu(s.bu), intvar(s.intvar),
          maxnod(s.maxnod), intfst(s.intfst), slots(s.slots), msglvl(s.msglvl), itmax(s.itmax), unit(s.unit),
          ntree(s.ntree), toliv(s.toliv), tolfes(s.tolfes), bigbnd(s.bigbnd), x(s.x), parent_(s.parent),
          left_(s.left), right_(s.right), var_(s.branch_var), value_(s.branch_value), link(s.link),
          bound_(s.slot_bound), slot_x(s.slot_x), node_(s.slot_node), flag_(s.slot_flag), number_(s.slot_number),
          slot_state(s.slot_state), wbl(s.wbl), wbu(s.wbu), best_bl(s.best_bl), best_bu(s.best_bu),
          best_clamda(s.best_clamda), best_x(s.best_x), ax(s.ax), clamda(s.clamda), path(s.path),
          node_iwork(s.node_iwork), node_liwork(s.node_liwork), node_lwork(s.node_lwork), node_work(s.node_work),
          solver_(solver) {}

    // Problem.
    const char *routine;
    int n, m, lda, nct = 0;
    const double *a, *bl, *bu;
    const int *intvar;
    int maxnod, intfst, slots, msglvl, itmax, unit;
    long long ntree;
    double toliv, tolfes, bigbnd;
    double *x;
    // Tree, one-based through the accessors.
    int *parent_, *left_, *right_, *var_, *value_;
    // Slots.
    int *link;  // S+1: link[0] is the head of the pending list
    double *bound_, *slot_x;
    int *node_, *flag_, *number_, *slot_state;
    // Vectors.
    double *wbl, *wbu, *best_bl, *best_bu, *best_clamda, *best_x, *ax, *clamda;
    int *path;
    int *node_iwork, node_liwork, node_lwork;
    double *node_work;

    SearchOutcome out;

    void run();

private:
    int &parent(int k) { return parent_[k - 1]; }
    int &left(int k) { return left_[k - 1]; }
    int &right(int k) { return right_[k - 1]; }
    int &var(int k) { return var_[k - 1]; }
    int &value(int k) { return value_[k - 1]; }
    double &bound(int s) { return bound_[s - 1]; }
    int &node(int s) { return node_[s - 1]; }
    int &flag(int s) { return flag_[s - 1]; }
    int &number(int s) { return number_[s - 1]; }
    double *xcol(int s) { return slot_x + static_cast<std::ptrdiff_t>(s - 1) * n; }
    int *state(int s) { return slot_state + static_cast<std::ptrdiff_t>(s - 1) * nct; }

    // The smallest bound of the pending slots.  Free slots hold an infinite bound, so the scan runs
    // over the slot array rather than along the list.
    double smallest_bound() const {
        double least = kFreeBound;
        for (int s = 0; s < slots; ++s) least = bound_[s] < least ? bound_[s] : least;
        return least;
    }
    int rebuild_bounds(int k);
    int solve_lp(int s, double *objective);
    int drop_slot(int s);
    int next_slot(double smallest) const;
    int take_node(int p);
    void save_incumbent(int s, double objective);
    void final_block(double objective);

    NodeSolver &solver_;
    int free_node = 0, free_slot = 0, active = 0;
    double best = 0.0;
    bool have_best = false, doubled = false;
};

// Step 2: the bounds of node K from BL, BU and the branchings on its path; returns its depth.
int TreeSearch::rebuild_bounds(int k) {
    int d = 0;
    for (int c = k; parent(c) != 0; c = parent(c)) {
        if (d < slots) path[d] = c;
        ++d;
    }
    std::memcpy(wbl, bl, sizeof(double) * static_cast<std::size_t>(n));
    std::memcpy(wbu, bu, sizeof(double) * static_cast<std::size_t>(n));
    for (int i = std::min(d, slots) - 1; i >= 0; --i) {
        const int c = path[i], p = parent(c), j = var(p) - 1;
        if (left(p) == c) wbu[j] = value(p);
        else wbl[j] = value(p) + 1.0;
    }
    return d;
}

// Steps 4 and 5 for the relaxation of slot S: returns the node solver's code after the one doubling of
// the iteration limit, and its objective.
int TreeSearch::solve_lp(int s, double *objective) {
    for (;;) {
        int iter = 0;
        const int code = solver_.solve(wbl, wbu, state(s), x, &iter, objective, ax, clamda, node_iwork, node_liwork,
                                       node_work, node_lwork);
        out.iterations += iter;
        if (code != 4 || doubled || out.nodes == 1) return code;
        // The first node of the run that runs out of iterations away from the root gets twice the limit,
        // and from then on every node starts warm from its slot's status column.
        doubled = true;
        itmax = itmax > INT_MAX / 2 ? INT_MAX : 2 * itmax;
        solver_.option(format("Iteration Limit = %10ld", static_cast<long>(itmax)));
        solver_.option("Warm Start");
        if (msglvl >= 2) say(unit, "** Doubling iteration limit");
    }
}

// H02_DROP_SLOT: slot S leaves the pending list for the free chain, and its tree node is freed with
// every ancestor left without children (the root stays).  Returns the slot that followed S.
int TreeSearch::drop_slot(int s) {
    int prev = 0;
    while (link[prev] != s && link[prev] != 0) prev = link[prev];
    const int successor = link[s];
    if (link[prev] == s) link[prev] = successor;
    link[s] = free_slot;
    free_slot = s;
    bound(s) = kFreeBound;
    --active;
    int k = node(s);
    while (k != 1) {
        const int p = parent(k);
        right(k) = free_node;
        free_node = k;
        if (left(p) == k) left(p) = 0;
        else if (right(p) == k) right(p) = 0;
        if (left(p) != 0 || right(p) != 0) break;
        k = p;
    }
    return successor;
}

// H02_NEXT_SLOT.
int TreeSearch::next_slot(double smallest) const {
    if (active > slots / 2) return link[0];
    for (int s = link[0]; s != 0; s = link[s])
        if (bound_[s - 1] == smallest) return s;
    return link[0];
}

// A free tree node as a child of P, or 0 when none is left.
int TreeSearch::take_node(int p) {
    const int k = free_node;
    if (k == 0) return 0;
    free_node = right(k);
    parent(k) = p;
    left(k) = 0;
    right(k) = 0;
    return k;
}

void TreeSearch::save_incumbent(int s, double objective) {
    best = objective;
    have_best = true;
    out.best_node = static_cast<int>(out.nodes);
    std::memcpy(best_x, x, sizeof(double) * static_cast<std::size_t>(n));
    std::memcpy(best_bl, wbl, sizeof(double) * static_cast<std::size_t>(nct));
    std::memcpy(best_bu, wbu, sizeof(double) * static_cast<std::size_t>(nct));
    std::memcpy(best_clamda, clamda, sizeof(double) * static_cast<std::size_t>(nct));
    std::memcpy(state(slots + 1), state(s), sizeof(int) * static_cast<std::size_t>(nct));
}

void TreeSearch::final_block(double objective) {
    if (msglvl >= 1)
        print_solution(routine, unit, out.exit_kind, n, m, a, lda, best_x, best_bl, best_bu, best_clamda,
                       state(slots + 1), objective, bigbnd, out.nodes);
}

void TreeSearch::run() {
    const double none = no_objective();
    best = none;
    nct = n + m;
    out.objmip = none;
    // Step 1: the free chains, the root in slot 1, the rows' bounds once.
    free_node = ntree >= 2 ? 2 : 0;
    for (long long k = 2; k <= ntree; ++k) right(static_cast<int>(k)) = k < ntree ? static_cast<int>(k + 1) : 0;
    parent(1) = left(1) = right(1) = 0;
    link[0] = 1;
    link[1] = 0;
    free_slot = slots >= 2 ? 2 : 0;
    for (int s = 2; s <= slots; ++s) {
        link[s] = s < slots ? s + 1 : 0;
        bound(s) = kFreeBound;
    }
    node(1) = 1;
    flag(1) = 0;
    number(1) = 0;
    active = 1;
    out.nodes = 0;
    if (m > 0) {
        std::memcpy(wbl + n, bl + n, sizeof(double) * static_cast<std::size_t>(m));
        std::memcpy(wbu + n, bu + n, sizeof(double) * static_cast<std::size_t>(m));
    }
    solver_.option("Nolist");
    solver_.option(format("Print Level = %10ld", 0L));
    solver_.option(format("Feasibility Tolerance = %16.8E", tolfes));
    solver_.option(format("Infinite Bound Size = %16.8E", bigbnd));
    solver_.option("Cold Start");

    End end = End::None;
    int cur = 1;
    bool found = false;
    while (end == End::None) {
        // Steps 2 and 3.
        out.depth = rebuild_bounds(node(cur));
        ++out.nodes;
        int logged_var = 0;
        double before = 0.0;
        if (out.nodes > 1) {
            logged_var = var(parent(node(cur)));
            before = x[logged_var - 1];
        }

        // Steps 4 and 5.
        double objective = 0.0;
        const int lp = solve_lp(cur, &objective);
        if ((out.nodes == 1 && (lp == 2 || lp == 3 || lp == 4 || lp == kNodeHessianTooBig)) ||
            lp == kNodeHessianFailed) {
            out.code = lp;
            end = End::Code;
            break;
        }
        // Children of a QP start from the working set their parent ended with.
        if (out.nodes == 1 && solver_.warm_children()) solver_.option("Warm Start");
        bool solved = false;
        if (lp == 0 || lp == 1) {
            solved = true;
        } else if (lp == 3 || lp == 6) {
            objective = none;
        } else if (lp == kNodeHessianTooBig) {
            // The branch is left unexplored, and the end of the search says so.
            objective = none;
            if (msglvl >= 2)
                say(unit, " ** Reduced Hessian exceeds assigned dimension, terminate the search of this branch");
            out.exit_kind = 2;
            ++out.too_big;
        } else {
            objective = none;
            if (msglvl >= 2) say(unit, " ** Cannot find optimum LP, terminate the search of this branch");
            out.code = kBranchAbandoned;
            out.exit_kind = 2;
            ++out.abandoned;
        }
        if (out.nodes == 1 && solved && msglvl >= 2) {
            say(unit, format("   *** Optimum LP solution ***%16.7G", objective));
            if (msglvl == 10 || msglvl == 20)
                print_solution(routine, unit, -1, n, m, a, lda, x, wbl, wbu, clamda, state(cur), objective, bigbnd, out.nodes);
            say(unit, "   *** Start of tree search ***");
            print_tree_heading(unit);
        }

        // Step 6.
        bound(cur) = objective;
        double smallest = smallest_bound();
        const auto log_row = [&](NodeOutcome outcome) {
            if (out.nodes < 2 || msglvl < 2) return;
            const int j = logged_var - 1;
            say(unit, node_log_row(outcome, out.nodes, number(cur), objective, logged_var, before, wbl[j], wbu[j], x[j],
                                   out.depth, bigbnd));
        };
        found = false;
        if (!(objective < best)) {
            log_row(solved ? NodeOutcome::CutOff : NodeOutcome::NoFeasible);
            drop_slot(cur);
        } else if (first_fractional(n, intvar, x, toliv) != 0) {
            log_row(NodeOutcome::Kept);
            if (out.depth >= slots) {
                out.code = kDepthTooSmall;
                end = End::Code;
                out.objmip = objective;
                break;
            }
            std::memcpy(xcol(cur), x, sizeof(double) * static_cast<std::size_t>(n));
            flag(cur) = 1;
            number(cur) = static_cast<int>(std::min<long>(out.nodes, INT_MAX));
        } else {
            log_row(NodeOutcome::Kept);
            save_incumbent(cur, objective);
            found = true;
            if (msglvl >= 2) say(unit, "      *** Integer solution ***");
            if (intfst > 0) {
                out.exit_kind = 1;
                end = End::Empty;
                break;
            }
            for (int s = link[0]; s != 0;) s = bound(s) < best ? link[s] : drop_slot(s);
        }

        // Step 7: the next slot, solved or branched.
        for (;;) {
            if (link[0] == 0) {
                end = End::Empty;
                break;
            }
            if (found && msglvl > 1) print_tree_heading(unit);
            found = false;
            if (out.depth > slots) {
                out.code = kDepthTooSmall;
                end = End::Code;
                break;
            }
            const int s = next_slot(smallest);
            std::memcpy(x, xcol(s), sizeof(double) * static_cast<std::size_t>(n));
            if (flag(s) == 0) {
                cur = s;
                break;
            }
            const int jb = first_fractional(n, intvar, x, toliv);
            if (jb == 0) {
                // Nothing left to branch on (cannot happen with the column saved as fractional): the slot
                // is done with.
                drop_slot(s);
                smallest = smallest_bound();
                continue;
            }
            const int p = node(s);
            var(p) = jb;
            value(p) = branching_value(x[jb - 1]);
            const int lchild = take_node(p);
            if (lchild == 0 || free_slot == 0) {
                out.code = kTreeWorkspace;
                end = End::Code;
                break;
            }
            left(p) = lchild;
            if (maxnod > 0 && maxnod <= out.nodes + 1) {
                end = End::NodeLimit;
                break;
            }
            // The left child waits at the head of the list with a copy of its parent's slot.
            const int l = free_slot;
            free_slot = link[l];
            link[l] = link[0];
            link[0] = l;
            ++active;
            bound(l) = bound(s);
            std::memcpy(xcol(l), xcol(s), sizeof(double) * static_cast<std::size_t>(n));
            flag(l) = 0;
            number(l) = number(s);
            node(l) = lchild;
            std::memcpy(state(l), state(s), sizeof(int) * static_cast<std::size_t>(nct));
            state(l)[jb - 1] = -1;
            // The parent's slot goes on as the right child, solved next.
            const int rchild = take_node(p);
            if (rchild == 0) {
                out.code = kTreeWorkspace;
                end = End::Code;
                break;
            }
            right(p) = rchild;
            node(s) = rchild;
            flag(s) = 0;
            state(s)[jb - 1] = -2;
            cur = s;
            break;
        }
    }

    switch (end) {
    case End::NodeLimit:
        // Step 8.
        if (msglvl >= 1) say(unit, " ** Number of nodes exceeds the maximum **");
        if (!have_best) {
            if (msglvl >= 1) say(unit, " ** No integer solution so far **");
            out.objmip = none;
            out.code = kNodeLimitNone;
        } else {
            if (msglvl >= 1) say(unit, " ** The best integer solution **");
            std::memcpy(x, best_x, sizeof(double) * static_cast<std::size_t>(n));
            out.objmip = best;
            out.exit_kind = 2;
            final_block(best);
            out.code = kNodeLimitBest;
        }
        break;
    case End::Empty:
        // Step 9: every end of the search writes its code afresh.
        if (!have_best) {
            out.objmip = none;
            out.code = kNoIntegerSolution;
        } else {
            std::memcpy(x, best_x, sizeof(double) * static_cast<std::size_t>(n));
            out.objmip = best;
            if (msglvl >= 2) say(unit, "     *** End of tree search ***");
            final_block(best);
            out.code = kSearchOptimum;
        }
        // Branches whose reduced Hessian outgrew its dimension were not searched: no optimum is claimed.
        if (out.too_big > 0) out.code = have_best ? kUnsearchedBest : kUnsearchedNone;
        break;
    case End::Code:
        if ((out.code == kTreeWorkspace || out.code == kHessianFailed) && have_best) {
            std::memcpy(x, best_x, sizeof(double) * static_cast<std::size_t>(n));
            out.objmip = best;
        } else if (out.code != kDepthTooSmall) {
            out.objmip = none;
        }
        break;
    case End::None: break;
    }
    if (!have_best) out.best_node = 0;
    if (msglvl >= 15) out.nodes = -out.nodes;
}

} // namespace

SearchOutcome tree_search(const SearchSetup &setup, NodeSolver &solver) {
    TreeSearch t(setup, solver);
    t.run();
    return t.out;
}

void LpNodeSolver::option(const std::string &text) {
    const int list = 0;
    int inform = 0;
    E04MHF(text.c_str(), &list, lwsav_, iwsav_, rwsav_, &inform, static_cast<int>(text.size()));
}

int LpNodeSolver::solve(const double *bl, const double *bu, int *istate, double *x, int *iterations,
                        double *objective, double *ax, double *clamda, int *iwork, int liwork, double *work,
                        int lwork) {
    int ifail = 1;
    E04MFA(&n_, &m_, a_, &lda_, bl, bu, cvec_, istate, x, iterations, objective, ax, clamda, iwork, &liwork, work,
           &lwork, lwsav_, iwsav_, rwsav_, &ifail);
    return ifail;
}

} // namespace zek::h02

extern "C" void H02_TREE_SEARCH(int n, int m, const double *a, int lda, const double *bl, const double *bu,
                                const int *intvar, const double *cvec, int maxnod, int intfst, int slots, int ntree,
                                int msglvl, int itmax, double toliv, double tolfes, double bigbnd, double *x,
                                double *objmip, int *nodes, int *code, int *exit_kind, int *parent, int *left,
                                int *right, int *branch_var, int *branch_value, int *link, double *slot_bound,
                                int *slot_node, int *slot_flag, int *slot_number, double *slot_x, int *slot_state,
                                double *wbl, double *wbu, double *best_bl, double *best_bu, double *best_clamda,
                                double *best_x, double *ax, double *clamda, int *path, int *lp_iwork, int lp_liwork,
                                double *lp_work, int lp_lwork, int *lwsav, int *iwsav, double *rwsav, int *depth,
                                int *lp_iterations, int print_unit, int *abandoned, int *best_node) {
    zek::h02::SearchSetup s;
    s.n = n;
    s.m = m;
    s.a = a;
    s.lda = lda;
    s.bl = bl;
    s.bu = bu;
    s.intvar = intvar;
    s.maxnod = maxnod;
    s.intfst = intfst;
    s.slots = slots;
    s.ntree = ntree;
    s.msglvl = msglvl;
    s.itmax = itmax;
    s.toliv = toliv;
    s.tolfes = tolfes;
    s.bigbnd = bigbnd;
    s.x = x;
    s.parent = parent;
    s.left = left;
    s.right = right;
    s.branch_var = branch_var;
    s.branch_value = branch_value;
    s.link = link;
    s.slot_bound = slot_bound;
    s.slot_node = slot_node;
    s.slot_flag = slot_flag;
    s.slot_number = slot_number;
    s.slot_x = slot_x;
    s.slot_state = slot_state;
    s.wbl = wbl;
    s.wbu = wbu;
    s.best_bl = best_bl;
    s.best_bu = best_bu;
    s.best_clamda = best_clamda;
    s.best_x = best_x;
    s.ax = ax;
    s.clamda = clamda;
    s.path = path;
    s.node_iwork = lp_iwork;
    s.node_liwork = lp_liwork;
    s.node_work = lp_work;
    s.node_lwork = lp_lwork;
    s.unit = print_unit;
    zek::h02::LpNodeSolver lp(n, m, a, lda, cvec, lwsav, iwsav, rwsav);
    const zek::h02::SearchOutcome r = zek::h02::tree_search(s, lp);
    *objmip = r.objmip;
    *nodes = static_cast<int>(std::clamp<long>(r.nodes, -INT_MAX, INT_MAX));
    *code = r.code;
    *exit_kind = r.exit_kind;
    *depth = r.depth;
    *lp_iterations = static_cast<int>(std::min<long>(r.iterations, INT_MAX));
    *abandoned = r.abandoned;
    *best_node = r.best_node;
}
