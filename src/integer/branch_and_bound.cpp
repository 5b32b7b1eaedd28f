// H02BBF: the front, and the worker with its argument checks, defaults, division of the workspace and
// exit messages.  The search itself is in branch_and_bound_search.cpp.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/output.h"
#include "integer/branch_and_bound.h"
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

long long branch_real_work_needed(int n, int m, int maxdpt) {
    return (static_cast<long long>(n) + 1) * maxdpt + 2 * (tsquared(n, m) + 6LL * m + 7LL * n);
}

long long branch_integer_work_needed(int n, int m, int maxdpt) {
    const long long nct = static_cast<long long>(n) + m;
    return (nct + 25) * maxdpt + nct + 4LL * n + 4;
}

BranchLayout branch_layout(int n, int m, int slots, long long liwork) {
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
    l.slot_state = lp_integer_work(n);
    l.link = l.slot_state + NCT * (S + 1);
    l.slot_node = l.link + S + 1;
    l.slot_flag = l.slot_node + S;
    l.slot_number = l.slot_flag + S;
    l.path = l.slot_number + S;
    // The tree takes what is left, by the count the workspace rule fixes.
    l.tree = (liwork - 4 - 3LL * n - NCT - S * (NCT + 5)) / 5;
    const std::ptrdiff_t T = std::max<long long>(l.tree, 0);
    l.parent = l.path + S;
    l.left = l.parent + T;
    l.right = l.left + T;
    l.branch_var = l.right + T;
    l.branch_value = l.branch_var + T;
    return l;
}

} // namespace zek::h02

namespace {

using zek::format;

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

extern "C" {

void H02BBF_INNER(int *itmax, int msglvl, int n, int m, const double *a, int lda, const double *bl, const double *bu,
                  const int *intvar, const double *cvec, int maxnod, int intfst, int maxdpt, double *toliv,
                  double *tolfes, double *bigbnd, double *x, double *objmip, int *iwork, int liwork, double *rwork,
                  int lrwork, int *lwsav, int *iwsav, double *rwsav, char *errbuf, int *ifail, int errbuf_len) {
    (void)errbuf_len;
    zek::FailureExit exit("H02BBF", errbuf, ifail);

    // N, M and LDA are all tested; the last failure is the one reported.
    const char *message = nullptr;
    long exit_number = 0;
    int values = 0;
    if (n <= 0) {
        message = " ** On entry, N .le. 0:\n    N =%16ld.";
        exit_number = 99999;
        values = 1;
    }
    if (m < 0) {
        message = " ** On entry, M .lt. 0:\n    M =%16ld.";
        exit_number = 99998;
        values = 2;
    }
    if (lda < std::max(1, m)) {
        message = " ** On entry, LDA .lt. max(1,M):\n    LDA =%16ld, M =%16ld.";
        exit_number = 99997;
        values = 3;
    }
    if (message != nullptr) {
        if (values == 1) exit.fail(6, exit_number, message, {n});
        else if (values == 2) exit.fail(6, exit_number, message, {m});
        else exit.fail(6, exit_number, message, {lda, m});
        return;
    }
    for (int j = 0; j < n; ++j) {
        if (intvar[j] == 0 || intvar[j] == 1) continue;
        exit.fail(6, 99996,
                  " ** On entry, element%16ld of INTVAR is not equal to 0 or 1\n    INTVAR(%16ld) =%16ld.",
                  {j + 1, j + 1, intvar[j]});
        return;
    }
    if (maxdpt < 2) {
        exit.fail(6, 99995, " ** On entry, MAXDPT .lt. 2:\n    MAXDPT =%16ld.", {maxdpt});
        return;
    }
    const long long rneed = zek::h02::branch_real_work_needed(n, m, maxdpt);
    if (lrwork < rneed) {
        exit.fail(6, 99994,
                  " ** On entry, the dimension of RWORK is too small: LRWORK =%16ld.\n"
                  "    RWORK must be of dimension (at least)%16ld.",
                  {lrwork, static_cast<long>(rneed)});
        return;
    }
    const long long ineed = zek::h02::branch_integer_work_needed(n, m, maxdpt);
    if (liwork < ineed) {
        exit.fail(6, 99993,
                  " ** On entry, the dimension of IWORK is too small: LIWORK =%16ld.\n"
                  "    IWORK must be of dimension (at least)%16ld.",
                  {liwork, static_cast<long>(ineed)});
        return;
    }

    // Defaults, kept aside until the bounds have passed, so that a failing call changes nothing.
    const int nct = n + m;
    const bool trace = *itmax == -11111;
    const int iterations = *itmax > 0 ? *itmax : std::max(50, 5 * nct);
    const double integer_tol = *toliv > 0.0 ? *toliv : 1.0e-5;
    const double feasibility_tol = *tolfes > 0.0 ? *tolfes : std::sqrt(zek::precision());
    const double big = *bigbnd > 0.0 ? *bigbnd : 1.0e20;

    const int unit = zek::advisory_unit();
    int nerror = 0;
    for (int j = 0; j < nct; ++j) {
        const double l = bl[j], u = bu[j];
        if (l <= u && !(l == u && std::fabs(l) >= big)) continue;
        ++nerror;
        if (msglvl > 2) bound_detail(unit, j, n, l, u, big);
    }
    if (nerror > 0) {
        exit.fail(6, 99992,
                  " ** On entry, NERROR bounds are infinite or inconsistent.\n    NERROR =%16ld.\n"
                  "    For further advisory details set MSGLVL > 2.",
                  {nerror});
        return;
    }
    *itmax = iterations;
    *toliv = integer_tol;
    *tolfes = feasibility_tol;
    *bigbnd = big;
    if (trace) msglvl = msglvl < 5 ? 0 : msglvl == 5 ? 15 : 20;

    {
        const int list = 0;
        int inform = 0;
        const std::string nolist = "Nolist";
        E04MHF(nolist.c_str(), &list, lwsav, iwsav, rwsav, &inform, static_cast<int>(nolist.size()));
        const std::string limit = format("Iteration Limit = %10ld", static_cast<long>(iterations));
        E04MHF(limit.c_str(), &list, lwsav, iwsav, rwsav, &inform, static_cast<int>(limit.size()));
    }
    if (msglvl >= 1) {
        zek::h02::ParameterBlock p;
        p.m = m;
        p.n = n;
        p.maxdpt = maxdpt;
        p.msglvl = msglvl;
        p.itmax = iterations;
        p.maxnod = maxnod;
        p.first_solution = intfst > 0;
        p.tolfes = feasibility_tol;
        p.bigbnd = big;
        p.eps = zek::precision();
        p.toliv = integer_tol;
        zek::h02::print_parameters(unit, p);
    }

    std::fill_n(rwork, lrwork, 0.0);
    std::fill_n(iwork, liwork, 0);
    // Slots are bound to MAXDPT; more RWORK than the minimum buys nothing.
    const long long room = (lrwork - (rneed - (static_cast<long long>(n) + 1) * maxdpt)) / (n + 1);
    const int slots = static_cast<int>(std::min<long long>(maxdpt, room));
    if (slots < 1) {
        exit.fail(6, 99991, " ** MAXDPT is too small to solve the problem:\n    MAXDPT =%16ld.", {maxdpt});
        return;
    }
    const zek::h02::BranchLayout l = zek::h02::branch_layout(n, m, slots, liwork);
    if (l.tree < 4LL * maxdpt) {
        exit.fail(8, 99990, " ** MAXDPT is too small to solve the problem:\n    MAXDPT =%16ld.", {maxdpt});
        return;
    }

    int nodes = 0, code = 0, exit_kind = 0, depth = 0, lp_iterations = 0, abandoned = 0, best_node = 0;
    H02_TREE_SEARCH(n, m, a, lda, bl, bu, intvar, cvec, maxnod, intfst, slots, static_cast<int>(l.tree), msglvl,
                    iterations, integer_tol, feasibility_tol, big, x, objmip, &nodes, &code, &exit_kind,
                    iwork + l.parent, iwork + l.left, iwork + l.right, iwork + l.branch_var, iwork + l.branch_value,
                    iwork + l.link, rwork + l.slot_bound, iwork + l.slot_node, iwork + l.slot_flag,
                    iwork + l.slot_number, rwork + l.slot_x, iwork + l.slot_state, rwork + l.wbl, rwork + l.wbu,
                    rwork + l.best_bl, rwork + l.best_bu, rwork + l.best_clamda, rwork + l.best_x, rwork + l.ax,
                    rwork + l.clamda, iwork + l.path, iwork + l.lp_iwork, zek::h02::lp_integer_work(n),
                    rwork + l.lp_work, zek::h02::lp_real_work(n, m), lwsav, iwsav, rwsav, &depth, &lp_iterations,
                    unit, &abandoned, &best_node);

    if (code == 0 || code == 7 || code == 9) export_state(nct, l, slots, iwork, rwork);
    switch (code) {
    case 0: exit.succeed(); break;
    case 1: exit.fail(1, 99989, " ** The problem does not have a feasible integer solution."); break;
    case 2: exit.fail(2, 99988, " ** The LP solution is unbounded."); break;
    case 3: exit.fail(3, 99987, " ** The LP does not have a feasible solution."); break;
    case 4: exit.fail(4, 99986, " ** Iteration limit reached without finding a solution."); break;
    case 7: exit.fail(7, 99985, " ** Search of a branch was terminated due to iteration limit."); break;
    case 8:
        exit.fail(8, 99984, " ** Maximum depth value is too small. Increase MAXDPT and rerun H02BBF.");
        break;
    case 9:
        exit.fail(9, 99983,
                  " ** The IP solution returned is the best solution for\n"
                  "    the number of nodes investigated in the B&B tree.");
        break;
    case 10:
        exit.fail(10, 99982,
                  " ** No feasible solution was found for the number of nodes\n    investigated in the B&B tree.");
        break;
    default: exit.fail(11, 99981, " ** Not enough workspace to solve problem."); break;
    }
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
