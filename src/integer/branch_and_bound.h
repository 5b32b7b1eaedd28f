// Branch and bound over the LP solver: how H02BBF divides the caller's workspace, the integrality
// test, and the printing of the node log and of the solution blocks.
//
// The search keeps two structures in the caller's workspace.  The tree holds one record of five
// integers per node (parent, left child, right child, branching variable, branching value); the bounds
// of any node are rebuilt from the path to the root, so no node stores bounds.  A slot holds one
// pending LP: its place in the pending list, its bound, its tree node, its branch flag, the node
// number of its solved LP, a column of X (N reals) and a status column (N+M integers).  There are
// MAXDPT slots; whatever integer workspace is left over is tree.
//
// Real workspace (offsets from RWORK, NCT = N+M, S slots):
//   0       working lower bounds (NCT)       NCT      working upper bounds (NCT)
//   2 NCT   incumbent lower bounds (NCT)     3 NCT    incumbent upper bounds (NCT)
//   4 NCT   incumbent multipliers (NCT)      5 NCT    incumbent X (N)
//   5 NCT+N LP multipliers (NCT)             6 NCT+N  LP row values A x (M)
//   7 NCT   slot bounds (S), then the slots' X columns (N by S)
//   7 NCT + (N+1) S   the LP solver's real work, 7N + 5M + 2 t^2 (t = min(N, M+1)), 7N+1 when M = 0
// which is exactly the minimum LRWORK = (N+1) S + 2 (t^2 + 6M + 7N).
//
// Integer workspace (offsets from IWORK):
//   0        the LP solver's integer work, 2N+3
//   2N+3     status columns, NCT by S+1 (column S+1 is the incumbent's)
//   then     the pending list (S+1: element 0 is its head), slot tree nodes, branch flags, node
//            numbers and a path buffer for the bound rebuild (S each)
//   then     the tree, five fields of T nodes each, T = (LIWORK - 4 - 3N - NCT - S (NCT+5)) / 5.
#ifndef ZEK_INTEGER_BRANCH_AND_BOUND_H
#define ZEK_INTEGER_BRANCH_AND_BOUND_H

#include <cstddef>
#include <string>

namespace zek::h02 {

// The value that stands for "no objective": 1 / (the smallest positive number).
double no_objective();

// Workspace needed by H02BBF, in elements (not capped to int).
long long branch_real_work_needed(int n, int m, int maxdpt);
long long branch_integer_work_needed(int n, int m, int maxdpt);
// The LP solver's share: 2N+3 integers and 7N + 5M + 2 t^2 reals (7N+1 when M = 0).
int lp_integer_work(int n);
int lp_real_work(int n, int m);

struct BranchLayout {
    int slots = 0;  // S
    long long tree = 0;  // T: the tree nodes the integer workspace holds
    // Real offsets.
    std::ptrdiff_t wbl = 0, wbu = 0, best_bl = 0, best_bu = 0, best_clamda = 0, best_x = 0, clamda = 0, ax = 0,
                   slot_bound = 0, slot_x = 0, lp_work = 0;
    // Integer offsets.
    std::ptrdiff_t lp_iwork = 0, slot_state = 0, link = 0, slot_node = 0, slot_flag = 0, slot_number = 0, path = 0,
                   parent = 0, left = 0, right = 0, branch_var = 0, branch_value = 0;
};
// The division for N, M, S slots and LIWORK integers (the tree size follows from LIWORK).
BranchLayout branch_layout(int n, int m, int slots, long long liwork);

// H02_ALL_INTEGRAL: the first integer variable (one-based) whose value is farther than TOLIV from the
// nearest integer, or 0 when all are integral.  The nearest integer of x is x+0.5 (x-0.5 when x is
// negative) truncated toward zero; a distance equal to TOLIV counts as integral.
int first_fractional(int n, const int *intvar, const double *x, double toliv);

// ---- Printing ----------------------------------------------------------------------------------------

// How a node of the log ended.
enum class NodeOutcome { Kept, CutOff, NoFeasible };

// One row of the node log.
std::string node_log_row(NodeOutcome outcome, long node, long parent, double objective, long variable,
                         double before, double lower, double upper, double after, long depth, double bigbnd);

// H02_TREE_HEADING: the two heading lines of the node log on UNIT.
void print_tree_heading(int unit);

struct ParameterBlock {
    int m = 0, n = 0, maxdpt = 0, msglvl = 0, itmax = 0, maxnod = 0;
    bool first_solution = false;
    double tolfes = 0.0, bigbnd = 0.0, eps = 0.0, toliv = 0.0;
};
// H02_PRINT_PARAMETERS.
void print_parameters(int unit, const ParameterBlock &p);

// H02_PRINT_SOLUTION: a solution block.  EXIT_KIND 0, 1, 2 chooses the closing line printed first
// ("Optimum", "First", "Best"); -1 prints none (the root LP's block).  A (LDA by N), X (N), the bounds,
// multipliers and states (N+M) describe the point; NODES is the node counter.
void print_solution(int unit, int exit_kind, int n, int m, const double *a, int lda, const double *x,
                    const double *bl, const double *bu, const double *clamda, const int *istate, double objective,
                    double bigbnd, long nodes);

} // namespace zek::h02

#endif
