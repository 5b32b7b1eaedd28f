// The driver of the branch-and-bound searches (argument checks, defaults, division of the workspace,
// exit messages), shared by H02BBF and the integer QP routines, and H02BBF's front and worker.  The
// search itself is in branch_and_bound_search.cpp.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/output.h"
#include "integer/branch_and_bound.h"
#include "optimisation/qp_driver.h"
#include "zek2/e04.h"
#include "zek2/h02.h"

namespace zek::h02 {

namespace {

long long tsquared(int n, int m) {
    const long long t = std::min<long long>(n, static_cast<long long>(m) + 1);
    return t * t;
}

} // namespace

int lp_integer_work(int n) { return 2 * n + 3; }

int lp_real_work(int n, int m) {
    if (m == 0) return 7 * n + 1;
    return static_cast<int>(std::min<long long>(7LL * n + 5LL * m + 2 * tsquared(n, m), INT_MAX));
}

// The search's own reals: the working, incumbent and LP vectors, 7(N+M); its own integers besides the
// slots: the incumbent's status column and 2N+1.  With the LP solver's shares these make H02BBF's
// rules, (N+1) S + 2 (t^2 + 6M + 7N) reals and (N+M+25) S + N+M + 4N + 4 integers.
long long branch_real_work_needed(int n, int m, int maxdpt, long long node_real) {
    return (static_cast<long long>(n) + 1) * maxdpt + 7LL * (static_cast<long long>(n) + m) + node_real;
}

long long branch_integer_work_needed(int n, int m, int maxdpt, long long node_int) {
    const long long nct = static_cast<long long>(n) + m;
    return (nct + 25) * maxdpt + nct + 2LL * n + 1 + node_int;
}

BranchLayout branch_layout(int n, int m, int slots, long long liwork, long long node_int) {
    BranchLayout l;
    const std::ptrdiff_t N = n, M = m, NCT = N + M, S = slots;
    l.slots = slots;
    l.wbl = 0;
    l.wbu = NCT;
    l.best_bl = 2 * NCT;
    l.best_bu = 3 * NCT;
    l.best_clamda = 4 * NCT;
    l.best_x = 5 * NCT;
    l.clamda = l.best_x + N;
    l.ax = l.clamda + NCT;
    l.slot_bound = l.ax + M;
    l.slot_x = l.slot_bound + S;
    l.lp_work = l.slot_x + N * S;

    l.lp_iwork = 0;
    l.slot_state = node_int;
    l.link = l.slot_state + NCT * (S + 1);
    l.slot_node = l.link + S + 1;
    l.slot_flag = l.slot_node + S;
    l.slot_number = l.slot_flag + S;
    l.path = l.slot_number + S;
    // The tree takes what is left, by the count the workspace rule fixes.
    l.tree = (liwork - node_int - 1 - n - NCT - S * (NCT + 5)) / 5;
    const std::ptrdiff_t T = std::max<long long>(l.tree, 0);
    l.parent = l.path + S;
    l.left = l.parent + T;
    l.right = l.left + T;
    l.branch_var = l.right + T;
    l.branch_value = l.branch_var + T;
    return l;
}

SearchSetup search_setup(const BranchLayout &l, int *iwork, double *rwork, int node_liwork, int node_lwork) {
    SearchSetup s;
    s.slots = l.slots;
    s.ntree = l.tree;
    s.parent = iwork + l.parent;
    s.left = iwork + l.left;
    s.right = iwork + l.right;
    s.branch_var = iwork + l.branch_var;
    s.branch_value = iwork + l.branch_value;
    s.link = iwork + l.link;
    s.slot_bound = rwork + l.slot_bound;
    s.slot_node = iwork + l.slot_node;
    s.slot_flag = iwork + l.slot_flag;
    s.slot_number = iwork + l.slot_number;
    s.slot_x = rwork + l.slot_x;
    s.slot_state = iwork + l.slot_state;
    s.wbl = rwork + l.wbl;
    s.wbu = rwork + l.wbu;
    s.best_bl = rwork + l.best_bl;
    s.best_bu = rwork + l.best_bu;
    s.best_clamda = rwork + l.best_clamda;
    s.best_x = rwork + l.best_x;
    s.ax = rwork + l.ax;
    s.clamda = rwork + l.clamda;
    s.path = iwork + l.path;
    s.node_iwork = iwork + l.lp_iwork;
    s.node_liwork = node_liwork;
    s.node_work = rwork + l.lp_work;
    s.node_lwork = node_lwork;
    return s;
}

} // namespace zek::h02

namespace {

using zek::format;
using namespace zek::h02;

// The exits of the branch-and-bound driver, under the name of the routine that runs it (H02BBF,
// H02CBF, H02CEF): its argument checks, then the ends of the search.
enum BranchExit {
    kNNotPositive,
    kMNegative,
    kLdaTooSmall,
    kLdhTooSmall,
    kIntvarNotBinary,
    kMaxdptBelow2,
    kRworkTooShort,
    kIworkTooShort,
    kBadBounds,
    kNoSlot,
    kNoTree,
    kNoIntegerPoint,
    kUnboundedLp,
    kInfeasibleLp,
    kLpIterationLimit,
    kRootHessianExceeds,
    kBranchIterationLimit,
    kDepthExceeded,
    kBestForNodes,
    kNoneForNodes,
    kBestButUnsearched,
    kNoneButUnsearched,
    kNonFiniteQp,
    kWorkspaceExhausted,
};
constexpr zek::ExitRow kBranchExits[] = {
    {6, 99999, " ** On entry, N .le. 0:\n    N =%16ld."},
    {6, 99998, " ** On entry, M .lt. 0:\n    M =%16ld."},
    {6, 99997, " ** On entry, LDA .lt. max(1,M):\n    LDA =%16ld, M =%16ld."},
    {6, 99979, " ** On entry, LDH .lt. N:\n    LDH =%16ld, N =%16ld."},
    {6, 99996, " ** On entry, element%16ld of INTVAR is not equal to 0 or 1\n    INTVAR(%16ld) =%16ld."},
    {6, 99995, " ** On entry, MAXDPT .lt. 2:\n    MAXDPT =%16ld."},
    {6, 99994,
     " ** On entry, the dimension of RWORK is too small: LRWORK =%16ld.\n"
     "    RWORK must be of dimension (at least)%16ld."},
    {6, 99993,
     " ** On entry, the dimension of IWORK is too small: LIWORK =%16ld.\n"
     "    IWORK must be of dimension (at least)%16ld."},
    {6, 99992,
     " ** On entry, NERROR bounds are infinite or inconsistent.\n    NERROR =%16ld.\n"
     "    For further advisory details set MSGLVL > 2."},
    {6, 99991, " ** MAXDPT is too small to solve the problem:\n    MAXDPT =%16ld."},
    {8, 99990, " ** MAXDPT is too small to solve the problem:\n    MAXDPT =%16ld."},
    {1, 99989, " ** The problem does not have a feasible integer solution."},
    {2, 99988, " ** The LP solution is unbounded."},
    {3, 99987, " ** The LP does not have a feasible solution."},
    {4, 99986, " ** Iteration limit reached without finding a solution."},
    {5, 99978,
     " ** The reduced Hessian of the first QP exceeds its assigned dimension.\n"
     "    Increase Maximum Degrees of Freedom with H02CDF and rerun %s."},
    {7, 99985, " ** Search of a branch was terminated due to iteration limit."},
    {8, 99984, " ** Maximum depth value is too small. Increase MAXDPT and rerun %s."},
    {9, 99983,
     " ** The IP solution returned is the best solution for\n"
     "    the number of nodes investigated in the B&B tree."},
    {10, 99982, " ** No feasible solution was found for the number of nodes\n    investigated in the B&B tree."},
    {12, 99977,
     " ** The IP solution returned is the best found, but%5ld branches were not\n"
     "    searched: their reduced Hessian exceeded its assigned dimension."},
    {13, 99976,
     " ** No feasible integer solution was found, but%5ld branches were not\n"
     "    searched: their reduced Hessian exceeded its assigned dimension."},
    {14, 99975,
     " ** A QP gave a value that is not finite (a product by the Hessian, or its\n"
     "    objective).  Search abandoned."},
    {11, 99981, " ** Not enough workspace to solve problem."},
};

// What an end of the search shows beside its text.
enum class Shows { Nothing, Routine, Unsearched };

// The ends of a search, keyed by its outcome: the exit taken (none for the optimum), what the message
// shows, and whether the incumbent's state is handed on for H02BZF.  An outcome not listed is a
// workspace failure.
struct OutcomeRow {
    int outcome;
    int exit;
    Shows shows;
    bool exports_state;
};
constexpr int kNoExit = -1;
constexpr OutcomeRow kOutcomes[] = {
    {kSearchOptimum, kNoExit, Shows::Nothing, true},
    {kNoIntegerSolution, kNoIntegerPoint, Shows::Nothing, false},
    {kRootUnbounded, kUnboundedLp, Shows::Nothing, false},
    {kRootInfeasible, kInfeasibleLp, Shows::Nothing, false},
    {kRootIterationLimit, kLpIterationLimit, Shows::Nothing, false},
    {kRootHessianTooBig, kRootHessianExceeds, Shows::Routine, false},
    {kBranchAbandoned, kBranchIterationLimit, Shows::Nothing, true},
    {kDepthTooSmall, kDepthExceeded, Shows::Routine, false},
    {kNodeLimitBest, kBestForNodes, Shows::Nothing, true},
    {kNodeLimitNone, kNoneForNodes, Shows::Nothing, false},
    {kTreeWorkspace, kWorkspaceExhausted, Shows::Nothing, false},
    {kUnsearchedBest, kBestButUnsearched, Shows::Unsearched, true},
    {kUnsearchedNone, kNoneButUnsearched, Shows::Unsearched, false},
    {kHessianFailed, kNonFiniteQp, Shows::Nothing, false},
};
constexpr OutcomeRow kOtherOutcome = {kTreeWorkspace, kWorkspaceExhausted, Shows::Nothing, false};

const OutcomeRow &outcome_row(int outcome) {
    for (const OutcomeRow &o : kOutcomes)
        if (o.outcome == outcome) return o;
    return kOtherOutcome;
}

// Takes the exit of a search's end.  The routine's name is pasted into its text, not passed as a value:
// these messages carry no values in ERRBUF.
void take_outcome(zek::FailureExit &exit, const OutcomeRow &o, const SearchOutcome &r) {
    if (o.exit == kNoExit) {
        exit.succeed();
        return;
    }
    switch (o.shows) {
    case Shows::Nothing: zek::take(exit, kBranchExits, o.exit); break;
    case Shows::Unsearched: zek::take(exit, kBranchExits, o.exit, {static_cast<long>(r.too_big)}); break;
    case Shows::Routine: zek::take_pasting(exit, kBranchExits, o.exit, exit.routine()); break;
    }
}

// The detail of a bad bound, printed on UNIT before the failure.
void bound_detail(int unit, int j, int n, double l, double u, double bigbnd) {
    const bool variable = j < n;
    const char *kind = variable ? "Varbl" : "L Con";
    const long index = variable ? j + 1 : j - n + 1;
    const long k = j + 1;
    const auto say = [&](const std::string &s) { zek::host_line(unit, s.c_str(), static_cast<int>(s.size()) + 1); };
    if (!(l <= u)) {
        say(format(" ** On entry, the bounds on  %5.5s", kind) + format("%3ld  are inconsistent:", index));
        say(format("    BL(%4ld) =", k) + format("%16.7G   BU(", l) + format("%4ld) =", k) + format("%16.7G", u));
    } else {
        say(format(" ** On entry, the equal bounds on  %5.5s", kind) + format("%3ld  are infinite (because", index));
        say(format("    BL(%4ld).eq.beta and BU(", k) + format("%4ld).eq.beta, but abs(beta).ge.bigbnd):", k));
        say(format("    beta =%16.7G bigbnd =", l) + format("%16.7G", bigbnd));
    }
}

// The incumbent's state to the head of the workspace, for H02BZF (H02_EXPORT_STATE).  The sources lie
// behind their destinations, so copying forward is safe.
void export_state(int nct, const zek::h02::BranchLayout &l, int slots, int *iwork, double *rwork) {
    const int *status = iwork + l.slot_state + static_cast<std::ptrdiff_t>(slots) * nct;
    std::memmove(iwork, status, sizeof(int) * static_cast<std::size_t>(nct));
    std::memmove(rwork, rwork + l.best_bl, sizeof(double) * static_cast<std::size_t>(nct));
    std::memmove(rwork + nct, rwork + l.best_bu, sizeof(double) * static_cast<std::size_t>(nct));
    std::memmove(rwork + 2 * static_cast<std::ptrdiff_t>(nct), rwork + l.best_clamda,
                 sizeof(double) * static_cast<std::size_t>(nct));
}

} // namespace

namespace zek::h02 {

void branch_and_bound(const char *routine, const BranchArguments &args, const NodeWork &work, NodeSolver &solver,
                      char *errbuf, int *ifail) {
    zek::FailureExit exit(routine, errbuf, ifail);
    const int n = args.n, m = args.m, lda = args.lda, maxdpt = args.maxdpt, msglvl_in = args.msglvl;
    const int liwork = args.liwork, lrwork = args.lrwork;
    const int *intvar = args.intvar;
    const double *bl = args.bl, *bu = args.bu;
    int *iwork = args.iwork;
    double *rwork = args.rwork;

    // N, M and LDA are all tested and the last failure is the one reported, so they are taken from LDA
    // back to N.
    if (lda < std::max(1, m)) return void(zek::take(exit, kBranchExits, kLdaTooSmall, {lda, m}));
    if (m < 0) return void(zek::take(exit, kBranchExits, kMNegative, {m}));
    if (n <= 0) return void(zek::take(exit, kBranchExits, kNNotPositive, {n}));
    if (args.quadratic && args.ldh < n) return void(zek::take(exit, kBranchExits, kLdhTooSmall, {args.ldh, n}));
    for (int j = 0; j < n; ++j)
        if (intvar[j] != 0 && intvar[j] != 1)
            return void(zek::take(exit, kBranchExits, kIntvarNotBinary, {j + 1, j + 1, intvar[j]}));
    if (maxdpt < 2) return void(zek::take(exit, kBranchExits, kMaxdptBelow2, {maxdpt}));
    const long long rneed = branch_real_work_needed(n, m, maxdpt, work.reals);
    if (lrwork < rneed)
        return void(zek::take(exit, kBranchExits, kRworkTooShort,
                              {lrwork, static_cast<long>(std::min<long long>(rneed, LONG_MAX))}));
    const long long ineed = branch_integer_work_needed(n, m, maxdpt, work.integers);
    if (liwork < ineed)
        return void(zek::take(exit, kBranchExits, kIworkTooShort,
                              {liwork, static_cast<long>(std::min<long long>(ineed, LONG_MAX))}));
    if (args.quadratic) {
        zek::Records rec;
        const bool finite = (m == 0 || zek::qp::matrix_finite("A", m, n, args.a, lda, rec)) &&
                            zek::qp::data_finite("CVEC", n, args.cvec, rec) && zek::qp::data_finite("X", n, args.x, rec) &&
                            (args.dense_h == nullptr || zek::qp::matrix_finite("H", n, n, args.dense_h, args.ldh, rec));
        if (!finite) {
            exit.fail_with_records(6, 99980, rec);
            return;
        }
    }

    // Defaults, kept aside until the bounds have passed, so that a failing call changes nothing.
    const int nct = n + m;
    const bool trace = *args.itmax == -11111;
    const int iterations = *args.itmax > 0 ? *args.itmax : std::max(50, 5 * nct);
    const double integer_tol = *args.toliv > 0.0 ? *args.toliv : 1.0e-5;
    const double feasibility_tol = *args.tolfes > 0.0 ? *args.tolfes : std::sqrt(zek::precision());
    const double big = *args.bigbnd > 0.0 ? *args.bigbnd : 1.0e20;

    const int unit = zek::advisory_unit();
    int nerror = 0;
    for (int j = 0; j < nct; ++j) {
        const double l = bl[j], u = bu[j];
        if (l <= u && !(l == u && std::fabs(l) >= big)) continue;
        ++nerror;
        if (msglvl_in > 2) bound_detail(unit, j, n, l, u, big);
    }
    if (nerror > 0) return void(zek::take(exit, kBranchExits, kBadBounds, {nerror}));
    *args.itmax = iterations;
    *args.toliv = integer_tol;
    *args.tolfes = feasibility_tol;
    *args.bigbnd = big;
    const int msglvl = trace ? (msglvl_in < 5 ? 0 : msglvl_in == 5 ? 15 : 20) : msglvl_in;

    solver.option("Nolist");
    solver.option(format("Iteration Limit = %10ld", static_cast<long>(iterations)));
    if (msglvl >= 1) {
        ParameterBlock p;
        p.routine = routine;
        p.m = m;
        p.n = n;
        p.maxdpt = maxdpt;
        p.msglvl = msglvl;
        p.itmax = iterations;
        p.maxnod = args.maxnod;
        p.first_solution = args.intfst > 0;
        p.tolfes = feasibility_tol;
        p.bigbnd = big;
        p.eps = zek::precision();
        p.toliv = integer_tol;
        print_parameters(unit, p);
    }

    std::fill_n(rwork, lrwork, 0.0);
    std::fill_n(iwork, liwork, 0);
    // Slots are bound to MAXDPT; more RWORK than the minimum buys nothing.
    const long long room = (lrwork - (rneed - (static_cast<long long>(n) + 1) * maxdpt)) / (n + 1);
    const int slots = static_cast<int>(std::min<long long>(maxdpt, room));
    if (slots < 1) return void(zek::take(exit, kBranchExits, kNoSlot, {maxdpt}));
    const BranchLayout l = branch_layout(n, m, slots, liwork, work.integers);
    if (l.tree < 4LL * maxdpt) return void(zek::take(exit, kBranchExits, kNoTree, {maxdpt}));

    SearchSetup s = search_setup(l, iwork, rwork, static_cast<int>(work.integers), static_cast<int>(work.reals));
    s.routine = routine;
    s.n = n;
    s.m = m;
    s.a = args.a;
    s.lda = lda;
    s.bl = bl;
    s.bu = bu;
    s.intvar = intvar;
    s.maxnod = args.maxnod;
    s.intfst = args.intfst;
    s.msglvl = msglvl;
    s.itmax = iterations;
    s.toliv = integer_tol;
    s.tolfes = feasibility_tol;
    s.bigbnd = big;
    s.x = args.x;
    s.unit = unit;
    const SearchOutcome r = tree_search(s, solver);
    *args.objmip = r.objmip;

    const OutcomeRow &end = outcome_row(r.code);
    if (end.exports_state) export_state(nct, l, slots, iwork, rwork);
    take_outcome(exit, end, r);
}

} // namespace zek::h02

extern "C" {

void H02BBF_INNER(int *itmax, int msglvl, int n, int m, const double *a, int lda, const double *bl, const double *bu,
                  const int *intvar, const double *cvec, int maxnod, int intfst, int maxdpt, double *toliv,
                  double *tolfes, double *bigbnd, double *x, double *objmip, int *iwork, int liwork, double *rwork,
                  int lrwork, int *lwsav, int *iwsav, double *rwsav, char *errbuf, int *ifail, int errbuf_len) {
    (void)errbuf_len;
    const zek::h02::BranchArguments args{itmax, msglvl, n,      m,      lda,   a,      bl,    bu,    cvec,
                                         intvar, maxnod, intfst, maxdpt, toliv, tolfes, bigbnd, x,     objmip,
                                         iwork,  liwork, rwork,  lrwork, false,  nullptr, 1};
    // E04MFA's shares; the real one is counted as 7N + 5M + 2 t^2 even when M = 0, where the LP needs one
    // real less, so that the minimum LRWORK keeps its closed form.
    zek::h02::NodeWork work;
    work.integers = zek::h02::lp_integer_work(n);
    work.reals = 7LL * n + 5LL * m + 2 * zek::h02::tsquared(std::max(n, 0), std::max(m, 0));
    zek::h02::LpNodeSolver lp(n, m, a, lda, cvec, lwsav, iwsav, rwsav);
    zek::h02::branch_and_bound("H02BBF", args, work, lp, errbuf, ifail);
}

void H02BBF(int *itmax, const int *msglvl, const int *n, const int *m, const double *a, const int *lda,
            const double *bl, const double *bu, const int *intvar, const double *cvec, const int *maxnod,
            const int *intfst, const int *maxdpt, double *toliv, double *tolfes, double *bigbnd, double *x,
            double *objmip, int *iwork, const int *liwork, double *rwork, const int *lrwork, int *lwsav, int *iwsav,
            double *rwsav, int *ifail) {
    zek::Front front("H02BBF");
    H02BBF_INNER(itmax, *msglvl, *n, *m, a, *lda, bl, bu, intvar, cvec, *maxnod, *intfst, *maxdpt, toliv, tolfes,
                 bigbnd, x, objmip, iwork, *liwork, rwork, *lrwork, lwsav, iwsav, rwsav, front.errbuf(), ifail,
                 zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
