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

// The node solver's share of H02BBF's workspace: 2N+3 integers and 7N + 5M + 2 t^2 reals (7N+1 when
// M = 0), what E04MFA asks for.
int lp_integer_work(int n);
int lp_real_work(int n, int m);

// Workspace needed by a search whose node solver takes NODE_INT integers and NODE_REAL reals, in
// elements (not capped to int).  With the LP solver's shares this is H02BBF's rule.
long long branch_real_work_needed(int n, int m, int maxdpt, long long node_real);
long long branch_integer_work_needed(int n, int m, int maxdpt, long long node_int);

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
// The division for N, M, S slots and LIWORK integers (the tree size follows from LIWORK), the node
// solver taking NODE_INT integers.
BranchLayout branch_layout(int n, int m, int slots, long long liwork, long long node_int);

// ---- The node solver ---------------------------------------------------------------------------------
//
// The search is the same whether its nodes are LPs (H02BBF) or QPs (H02CBF, H02CEF): a node solver
// solves the relaxation on the bounds of a node, from the status column and X of the slot, and reports
// in the LP solver's IFAIL terms: 0 or 1 solved, 2 unbounded, 3 (or 6) infeasible, 4 iteration limit.
// A QP solver adds two outcomes of its own, which the LP solver never gives.
constexpr int kNodeHessianTooBig = 5;   // the reduced Hessian outgrew its assigned dimension
constexpr int kNodeHessianFailed = 14;  // the Hessian or the objective was not finite: the search stops

class NodeSolver {
public:
    virtual ~NodeSolver() = default;
    // One option line for the solver's store (listing off).
    virtual void option(const std::string &text) = 0;
    // True when every node after the root starts warm from its parent's status column; otherwise
    // nodes start cold until the iteration limit is first doubled.
    virtual bool warm_children() const = 0;
    // Solves the node with bounds BL, BU (N+M); ISTATE (N+M), X (N) in/out; AX (M), CLAMDA (N+M) out;
    // IWORK, WORK the solver's share of the workspace.  Returns the outcome code above.
    virtual int solve(const double *bl, const double *bu, int *istate, double *x, int *iterations,
                      double *objective, double *ax, double *clamda, int *iwork, int liwork, double *work,
                      int lwork) = 0;
};

// The LP node solver of H02BBF: E04MFA with its options through E04MHF.
class LpNodeSolver : public NodeSolver {
public:
    LpNodeSolver(int n, int m, const double *a, int lda, const double *cvec, int *lwsav, int *iwsav, double *rwsav)
        : n_(n), m_(m), a_(a), lda_(lda), cvec_(cvec), lwsav_(lwsav), iwsav_(iwsav), rwsav_(rwsav) {}
    void option(const std::string &text) override;
    bool warm_children() const override { return false; }
    int solve(const double *bl, const double *bu, int *istate, double *x, int *iterations, double *objective,
              double *ax, double *clamda, int *iwork, int liwork, double *work, int lwork) override;

private:
    int n_, m_;
    const double *a_;
    int lda_;
    const double *cvec_;
    int *lwsav_, *iwsav_;
    double *rwsav_;
};

// What the search reads and where its workspace lies.
struct SearchSetup {
    const char *routine = "H02BBF";
    int n = 0, m = 0, lda = 1;
    const double *a = nullptr, *bl = nullptr, *bu = nullptr;
    const int *intvar = nullptr;
    int maxnod = 0, intfst = 0, slots = 0, msglvl = 0, itmax = 0, unit = -1;
    long long ntree = 0;
    double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0;
    double *x = nullptr;
    int *parent = nullptr, *left = nullptr, *right = nullptr, *branch_var = nullptr, *branch_value = nullptr;
    int *link = nullptr, *slot_node = nullptr, *slot_flag = nullptr, *slot_number = nullptr, *slot_state = nullptr;
    double *slot_bound = nullptr, *slot_x = nullptr;
    double *wbl = nullptr, *wbu = nullptr, *best_bl = nullptr, *best_bu = nullptr, *best_clamda = nullptr,
           *best_x = nullptr, *ax = nullptr, *clamda = nullptr;
    int *path = nullptr;
    int *node_iwork = nullptr, node_liwork = 0, node_lwork = 0;
    double *node_work = nullptr;
};
// How a search ends, as the IFAIL value its driver reports.  A root node that fails ends the search
// with the node solver's own code, which is why the codes 2 to 5 and 14 are the node solver's.
enum SearchCode : int {
    kSearchOptimum = 0,
    kNoIntegerSolution = 1,      // the tree is exhausted without an integer point
    kRootUnbounded = 2,          // the root relaxation is unbounded
    kRootInfeasible = 3,         // the root relaxation has no feasible point
    kRootIterationLimit = 4,     // the root relaxation reached its iteration limit
    kRootHessianTooBig = kNodeHessianTooBig,
    kBranchAbandoned = 7,        // a node reached its iteration limit; its branch was not searched
    kDepthTooSmall = 8,          // MAXDPT slots are not enough for the tree
    kNodeLimitBest = 9,          // MAXNOD reached, the best integer point so far returned
    kNodeLimitNone = 10,         // MAXNOD reached without an integer point
    kTreeWorkspace = 11,         // the tree's nodes or the slots ran out
    kUnsearchedBest = 12,        // exhausted with an integer point, but branches of too large a Hessian left
    kUnsearchedNone = 13,        // exhausted without one, and such branches left
    kHessianFailed = kNodeHessianFailed,
};
// How it ended: CODE is a SearchCode (with the LP solver only 0 to 4 and 7 to 11), EXIT_KIND 0 optimum,
// 1 first solution, 2 best solution.
struct SearchOutcome {
    double objmip = 0.0;
    int code = 0, exit_kind = 0, depth = 0, abandoned = 0, too_big = 0, best_node = 0;
    long nodes = 0, iterations = 0;
};
SearchOutcome tree_search(const SearchSetup &setup, NodeSolver &solver);
// The setup of a workspace divided by LAYOUT.
SearchSetup search_setup(const BranchLayout &layout, int *iwork, double *rwork, int node_liwork, int node_lwork);

// ---- The driver shared by H02BBF, H02CBF and H02CEF ---------------------------------------------------

struct BranchArguments {
    int *itmax = nullptr;
    int msglvl = 0, n = 0, m = 0, lda = 1;
    const double *a = nullptr, *bl = nullptr, *bu = nullptr, *cvec = nullptr;
    const int *intvar = nullptr;
    int maxnod = 0, intfst = 0, maxdpt = 0;
    double *toliv = nullptr, *tolfes = nullptr, *bigbnd = nullptr, *x = nullptr, *objmip = nullptr;
    int *iwork = nullptr, liwork = 0;
    double *rwork = nullptr;
    int lrwork = 0;
    // The QP searches: LDH is checked against N, and the data (A, CVEC, X, and H when DENSE_H is set,
    // N by N) must be finite, since a QP node cannot tell bad data from a failing Hessian routine.
    bool quadratic = false;
    const double *dense_h = nullptr;
    int ldh = 1;
};
// The node solver's workspace shares for a problem of N variables and M rows.
struct NodeWork {
    long long integers = 0, reals = 0;
};
// Checks, defaults, workspace division, the search and the exits, under ROUTINE's name.
void branch_and_bound(const char *routine, const BranchArguments &args, const NodeWork &work, NodeSolver &solver,
                      char *errbuf, int *ifail);

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
    const char *routine = "H02BBF";
    int m = 0, n = 0, maxdpt = 0, msglvl = 0, itmax = 0, maxnod = 0;
    bool first_solution = false;
    double tolfes = 0.0, bigbnd = 0.0, eps = 0.0, toliv = 0.0;
};
// H02_PRINT_PARAMETERS.
void print_parameters(int unit, const ParameterBlock &p);

// H02_PRINT_SOLUTION: a solution block, under ROUTINE's name.  EXIT_KIND 0, 1, 2 chooses the closing line printed first
// ("Optimum", "First", "Best"); -1 prints none (the root LP's block).  A (LDA by N), X (N), the bounds,
// multipliers and states (N+M) describe the point; NODES is the node counter.
void print_solution(const char *routine, int unit, int exit_kind, int n, int m, const double *a, int lda, const double *x,
                    const double *bl, const double *bu, const double *clamda, const int *istate, double objective,
                    double bigbnd, long nodes);

} // namespace zek::h02

#endif
