// The tree search of H02BBF: every node is one LP of E04MFA with the bounds of its path in the tree,
// and the pending LPs wait in slots of the caller's workspace.
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

// One option line for the LP solver, through its string routine with the list flag off.
void lp_option(const std::string &text, int *lwsav, int *iwsav, double *rwsav) {
    const int list = 0;
    int inform = 0;
    E04MHF(text.c_str(), &list, lwsav, iwsav, rwsav, &inform, static_cast<int>(text.size()));
}

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
    // Problem.
    int n = 0, m = 0, lda = 1, nct = 0;
    const double *a = nullptr, *bl = nullptr, *bu = nullptr, *cvec = nullptr;
    const int *intvar = nullptr;
    int maxnod = 0, intfst = 0, slots = 0, msglvl = 0, itmax = 0, unit = -1;
    long long ntree = 0;
    double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0;
    double *x = nullptr;
    // Tree, one-based through the accessors.
    int *parent_ = nullptr, *left_ = nullptr, *right_ = nullptr, *var_ = nullptr, *value_ = nullptr;
    // Slots.
    int *link = nullptr;  // S+1: link[0] is the head of the pending list
    double *bound_ = nullptr, *slot_x = nullptr;
    int *node_ = nullptr, *flag_ = nullptr, *number_ = nullptr, *slot_state = nullptr;
    // Vectors.
    double *wbl = nullptr, *wbu = nullptr, *best_bl = nullptr, *best_bu = nullptr, *best_clamda = nullptr,
           *best_x = nullptr, *ax = nullptr, *clamda = nullptr;
    int *path = nullptr;
    int *lp_iwork = nullptr, lp_liwork = 0, lp_lwork = 0;
    double *lp_work = nullptr;
    int *lwsav = nullptr, *iwsav = nullptr;
    double *rwsav = nullptr;

    // Results.
    double objmip = 0.0;
    int code = 0, exit_kind = 0, depth = 0, abandoned = 0, best_node = 0;
    long nodes = 0, lp_iterations = 0;
    bool set_objective = false;

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

// Steps 4 and 5 for the LP of slot S: returns the LP's IFAIL after the one doubling of the iteration
// limit, and its objective.
int TreeSearch::solve_lp(int s, double *objective) {
    for (;;) {
        int ifail = 1, iter = 0;
        E04MFA(&n, &m, a, &lda, wbl, wbu, cvec, state(s), x, &iter, objective, ax, clamda, lp_iwork, &lp_liwork,
               lp_work, &lp_lwork, lwsav, iwsav, rwsav, &ifail);
        lp_iterations += iter;
        if (ifail != 4 || doubled || nodes == 1) return ifail;
        // The first LP of the run that runs out of iterations away from the root gets twice the limit,
        // and from then on every LP starts warm from its slot's status column.
        doubled = true;
        itmax = itmax > INT_MAX / 2 ? INT_MAX : 2 * itmax;
        lp_option(format("Iteration Limit = %10ld", static_cast<long>(itmax)), lwsav, iwsav, rwsav);
        lp_option("Warm Start", lwsav, iwsav, rwsav);
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
    best_node = static_cast<int>(nodes);
    std::memcpy(best_x, x, sizeof(double) * static_cast<std::size_t>(n));
    std::memcpy(best_bl, wbl, sizeof(double) * static_cast<std::size_t>(nct));
    std::memcpy(best_bu, wbu, sizeof(double) * static_cast<std::size_t>(nct));
    std::memcpy(best_clamda, clamda, sizeof(double) * static_cast<std::size_t>(nct));
    std::memcpy(state(slots + 1), state(s), sizeof(int) * static_cast<std::size_t>(nct));
}

void TreeSearch::final_block(double objective) {
    if (msglvl >= 1)
        print_solution(unit, exit_kind, n, m, a, lda, best_x, best_bl, best_bu, best_clamda, state(slots + 1),
                       objective, bigbnd, nodes);
}

void TreeSearch::run() {
    const double none = no_objective();
    best = none;
    nct = n + m;
    objmip = none;
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
    nodes = 0;
    if (m > 0) {
        std::memcpy(wbl + n, bl + n, sizeof(double) * static_cast<std::size_t>(m));
        std::memcpy(wbu + n, bu + n, sizeof(double) * static_cast<std::size_t>(m));
    }
    lp_option("Nolist", lwsav, iwsav, rwsav);
    lp_option(format("Print Level = %10ld", 0L), lwsav, iwsav, rwsav);
    lp_option(format("Feasibility Tolerance = %16.8E", tolfes), lwsav, iwsav, rwsav);
    lp_option(format("Infinite Bound Size = %16.8E", bigbnd), lwsav, iwsav, rwsav);
    lp_option("Cold Start", lwsav, iwsav, rwsav);

    End end = End::None;
    int cur = 1;
    bool found = false;
    while (end == End::None) {
        // Steps 2 and 3.
        depth = rebuild_bounds(node(cur));
        ++nodes;
        int logged_var = 0;
        double before = 0.0;
        if (nodes > 1) {
            logged_var = var(parent(node(cur)));
            before = x[logged_var - 1];
        }

        // Steps 4 and 5.
        double objective = 0.0;
        const int lp = solve_lp(cur, &objective);
        if (nodes == 1 && (lp == 2 || lp == 3 || lp == 4)) {
            code = lp;
            end = End::Code;
            break;
        }
        bool solved = false;
        if (lp == 0 || lp == 1) {
            solved = true;
        } else if (lp == 3 || lp == 6) {
            objective = none;
        } else {
            objective = none;
            if (msglvl >= 2) say(unit, " ** Cannot find optimum LP, terminate the search of this branch");
            code = 7;
            exit_kind = 2;
            ++abandoned;
        }
        if (nodes == 1 && solved && msglvl >= 2) {
            say(unit, format("   *** Optimum LP solution ***%16.7G", objective));
            if (msglvl == 10 || msglvl == 20)
                print_solution(unit, -1, n, m, a, lda, x, wbl, wbu, clamda, state(cur), objective, bigbnd, nodes);
            say(unit, "   *** Start of tree search ***");
            print_tree_heading(unit);
        }

        // Step 6.
        bound(cur) = objective;
        double smallest = smallest_bound();
        const auto log_row = [&](NodeOutcome outcome) {
            if (nodes < 2 || msglvl < 2) return;
            const int j = logged_var - 1;
            say(unit, node_log_row(outcome, nodes, number(cur), objective, logged_var, before, wbl[j], wbu[j], x[j],
                                   depth, bigbnd));
        };
        found = false;
        if (!(objective < best)) {
            log_row(solved ? NodeOutcome::CutOff : NodeOutcome::NoFeasible);
            drop_slot(cur);
        } else if (first_fractional(n, intvar, x, toliv) != 0) {
            log_row(NodeOutcome::Kept);
            if (depth >= slots) {
                code = 8;
                end = End::Code;
                objmip = objective;
                break;
            }
            std::memcpy(xcol(cur), x, sizeof(double) * static_cast<std::size_t>(n));
            flag(cur) = 1;
            number(cur) = static_cast<int>(std::min<long>(nodes, INT_MAX));
        } else {
            log_row(NodeOutcome::Kept);
            save_incumbent(cur, objective);
            found = true;
            if (msglvl >= 2) say(unit, "      *** Integer solution ***");
            if (intfst > 0) {
                exit_kind = 1;
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
            if (depth > slots) {
                code = 8;
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
                code = 11;
                end = End::Code;
                break;
            }
            left(p) = lchild;
            if (maxnod > 0 && maxnod <= nodes + 1) {
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
                code = 11;
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
            objmip = none;
            code = 10;
        } else {
            if (msglvl >= 1) say(unit, " ** The best integer solution **");
            std::memcpy(x, best_x, sizeof(double) * static_cast<std::size_t>(n));
            objmip = best;
            exit_kind = 2;
            final_block(best);
            code = 9;
        }
        break;
    case End::Empty:
        // Step 9: every end of the search writes its code afresh.
        if (!have_best) {
            objmip = none;
            code = 1;
        } else {
            std::memcpy(x, best_x, sizeof(double) * static_cast<std::size_t>(n));
            objmip = best;
            if (msglvl >= 2) say(unit, "     *** End of tree search ***");
            final_block(best);
            code = 0;
        }
        break;
    case End::Code:
        if (code == 11 && have_best) {
            std::memcpy(x, best_x, sizeof(double) * static_cast<std::size_t>(n));
            objmip = best;
        } else if (code != 8) {
            objmip = none;
        }
        break;
    case End::None: break;
    }
    if (!have_best) best_node = 0;
    if (msglvl >= 15) nodes = -nodes;
}

} // namespace

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
    zek::h02::TreeSearch s;
    s.n = n;
    s.m = m;
    s.a = a;
    s.lda = lda;
    s.bl = bl;
    s.bu = bu;
    s.intvar = intvar;
    s.cvec = cvec;
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
    s.parent_ = parent;
    s.left_ = left;
    s.right_ = right;
    s.var_ = branch_var;
    s.value_ = branch_value;
    s.link = link;
    s.bound_ = slot_bound;
    s.node_ = slot_node;
    s.flag_ = slot_flag;
    s.number_ = slot_number;
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
    s.lp_iwork = lp_iwork;
    s.lp_liwork = lp_liwork;
    s.lp_work = lp_work;
    s.lp_lwork = lp_lwork;
    s.lwsav = lwsav;
    s.iwsav = iwsav;
    s.rwsav = rwsav;
    s.unit = print_unit;
    s.run();
    *objmip = s.objmip;
    *nodes = static_cast<int>(std::clamp<long>(s.nodes, -INT_MAX, INT_MAX));
    *code = s.code;
    *exit_kind = s.exit_kind;
    *depth = s.depth;
    *lp_iterations = static_cast<int>(std::min<long>(s.lp_iterations, INT_MAX));
    *abandoned = s.abandoned;
    *best_node = s.best_node;
}
