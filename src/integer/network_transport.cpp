// The transportation problem by the stepping-stone method on a spanning tree of the bipartite graph of
// sources and destinations: a first basis grown greedily from the cheapest cell, then exchanges of the
// cell of most negative reduced cost around the cycle it closes in the tree.
#include <climits>
#include <cstdint>

#include "../frame/ifail.h"
#include "zek2/frame.h"
#include "zek2/h03.h"

namespace zek {
namespace {

// H03ABF's exits.
enum H03abfExit {
    kMaNotPositive,
    kMbNotPositive,
    kMaAboveMmm,
    kVertexCount,
    kMaxitNotPositive,
    kNegativeAmount,
    kUnbalanced,
    kPotentialOverflow,
    kMaxitExceeded,
};
constexpr ExitRow kH03abfExits[] = {
    {1, 99999, " ** On entry, MA .le. 0: MA =%16ld."},
    {1, 99998, " ** On entry, MB .le. 0: MB =%16ld."},
    {1, 99997, " ** On entry, MA .gt. MMM:\n    MA =%16ld, MMM =%16ld."},
    {1, 99996, " ** On entry, M-MA-MB .ne. 0:\n    M =%10ld, MA =%10ld, MB =%10ld."},
    {1, 99995, " ** On entry, MAXIT .le. 0: MAXIT =%16ld."},
    {1, 99994, " ** On entry, an availability or requirement is negative:\n    I =%16ld, A(I) =%16ld."},
    {1, 99993, " ** On entry, the sum of the availabilities does not\n    equal the sum of the requirements."},
    {3, 99992, " ** The potentials of the basis leave the integer range:\n    the costs are too large."},
    {2, 99991, " ** During computations MAXIT has been exceeded."},
};

// The tree: cells 1..M-1 joining source vertex SRC (1..MA) and destination vertex DST (MA+1..M).
struct Basis {
    int *src, *dst, *flow, *cost;
    int cells;
    int other_end(int cell, int vertex) const { return src[cell] == vertex ? dst[cell] : src[cell]; }
};

// Orders the cells from the first (each placed cell touches an earlier one), records for every vertex
// the cell that reached it (PARENT, 0 for the root, the source of the first cell) and computes the
// potentials u(v) with u(src) + u(dst) = cost on every cell.  False when a potential leaves the integer
// range.
bool order_and_price(Basis &b, int m, int *parent, int *potential) {
    for (int v = 1; v <= m; ++v) parent[v] = -1;
    const int root = b.src[1];
    parent[root] = 0;
    potential[root] = 0;
    int placed = 0;
    // Cells before position PLACED+1 are in tree order; sweep the rest until all are placed.
    for (int sweep = 0; placed < b.cells && sweep < b.cells + 1; ++sweep) {
        for (int k = placed + 1; k <= b.cells; ++k) {
            const bool s_in = parent[b.src[k]] >= 0, d_in = parent[b.dst[k]] >= 0;
            if (s_in == d_in) continue;  // not yet touching (both placed cannot happen in a tree)
            ++placed;
            if (k != placed) {
                std::swap(b.src[k], b.src[placed]);
                std::swap(b.dst[k], b.dst[placed]);
                std::swap(b.flow[k], b.flow[placed]);
                std::swap(b.cost[k], b.cost[placed]);
            }
            const int from = s_in ? b.src[placed] : b.dst[placed];
            const int to = s_in ? b.dst[placed] : b.src[placed];
            const std::int64_t u = static_cast<std::int64_t>(b.cost[placed]) - potential[from];
            if (u < INT_MIN || u > INT_MAX) return false;
            potential[to] = static_cast<int>(u);
            parent[to] = placed;
        }
    }
    return placed == b.cells;
}

int depth(const Basis &b, const int *parent, int v) {
    int d = 0;
    while (parent[v] > 0) {
        v = b.other_end(parent[v], v);
        ++d;
    }
    return d;
}

} // namespace

void h03abf_worker(const int cost[], int mmm, int ma, int mb, int m, const int a[], int maxit, int *numit,
                   int k15[], int k7[], int k9[], int kost[], double *z, int iwork1[], int iwork2[], char *errbuf,
                   int *ifail) {
    FailureExit exit("H03ABF", errbuf, ifail);
    if (ma <= 0) return void(take(exit, kH03abfExits, kMaNotPositive, {ma}));
    if (mb <= 0) return void(take(exit, kH03abfExits, kMbNotPositive, {mb}));
    if (ma > mmm) return void(take(exit, kH03abfExits, kMaAboveMmm, {ma, mmm}));
    if (static_cast<std::int64_t>(m) - ma - mb != 0) return void(take(exit, kH03abfExits, kVertexCount, {m, ma, mb}));
    if (maxit <= 0) return void(take(exit, kH03abfExits, kMaxitNotPositive, {maxit}));
    std::int64_t avail = 0, need = 0;
    for (int i = 0; i < m; ++i) {
        if (a[i] < 0) return void(take(exit, kH03abfExits, kNegativeAmount, {i + 1, a[i]}));
        (i < ma ? avail : need) += a[i];
    }
    if (avail != need) return void(take(exit, kH03abfExits, kUnbalanced));
    const std::ptrdiff_t ld = mmm;
    auto c = [&](int i, int j) { return cost[(i - 1) + (j - 1) * ld]; };  // j a destination 1..MB
    // One-based views; destinations are vertices MA+1..M inside.
    Basis b{k15 - 1, k7 - 1, k9 - 1, kost - 1, m - 1};
    int *parent = iwork1 - 1, *potential = iwork2 - 1;

    // First basis.  The remaining amounts live in the potentials' array for now.
    int *left = potential;
    for (int v = 1; v <= m; ++v) left[v] = a[v - 1];
    int bi = 1, bj = 1;
    for (int i = 1; i <= ma; ++i)
        for (int j = 1; j <= mb; ++j)
            if (c(i, j) < c(bi, bj)) bi = i, bj = j;
    // parent[] marks used vertices while the basis grows.
    for (int v = 1; v <= m; ++v) parent[v] = 0;
    int os = bi, od = ma + bj;  // the open pair
    parent[os] = parent[od] = 1;
    for (int cell = 1; cell <= m - 1; ++cell) {
        if (cell > 1) {
            // The side with more left goes on; from it the cheapest unused vertex of the other side
            // (the last of equals) joins.
            bool source_goes_on = left[os] >= left[od];
            auto cheapest_destination = [&]() {
                int best = 0;
                for (int j = 1; j <= mb; ++j)
                    if (parent[ma + j] == 0 && (best == 0 || c(os, j) <= c(os, best))) best = j;
                return best;
            };
            auto cheapest_source = [&]() {
                int best = 0;
                for (int i = 1; i <= ma; ++i)
                    if (parent[i] == 0 && (best == 0 || c(i, od - ma) <= c(best, od - ma))) best = i;
                return best;
            };
            int pick = source_goes_on ? cheapest_destination() : cheapest_source();
            if (pick == 0) {  // that side is used up: only an empty amount is left, go on from the other
                source_goes_on = !source_goes_on;
                pick = source_goes_on ? cheapest_destination() : cheapest_source();
            }
            if (source_goes_on)
                od = ma + pick;
            else
                os = pick;
            parent[source_goes_on ? od : os] = 1;
        }
        const int amount = left[os] < left[od] ? left[os] : left[od];
        b.src[cell] = os;
        b.dst[cell] = od;
        b.flow[cell] = amount;
        b.cost[cell] = c(os, od - ma);
        left[os] -= amount;
        left[od] -= amount;
    }

    b.src[m] = b.dst[m] = 0;
    bool optimal = false;
    int it = 0;
    while (it < maxit) {
        ++it;
        if (!order_and_price(b, m, parent, potential)) return void(take(exit, kH03abfExits, kPotentialOverflow));
        // The most negative reduced cost, the first of equals.
        std::int64_t best = 0;
        int ei = 0, ej = 0;
        for (int i = 1; i <= ma; ++i) {
            for (int j = 1; j <= mb; ++j) {
                const std::int64_t d = static_cast<std::int64_t>(c(i, j)) - potential[i] - potential[ma + j];
                if (d < best) best = d, ei = i, ej = j;
            }
        }
        if (ei == 0) {
            optimal = true;
            break;
        }
        // The entering cell in the slot at position M; the cycle is the tree path between its ends.
        b.src[m] = ei;
        b.dst[m] = ma + ej;
        // Walk from both ends to their meeting point.  Cells reached from the source end alternate
        // minus, plus, ... starting at the source; those from the destination end likewise.
        int theta = INT_MAX, leave = 0;
        for (int pass = 0; pass < 2; ++pass) {
            int u = ei, v = ma + ej;
            int du = depth(b, parent, u), dv = depth(b, parent, v);
            // Edges on the source side: positions 1, 2, ... from the source, odd ones lose flow.
            int pos_u = 0, pos_v = 0;
            while (u != v) {
                const bool up_u = du >= dv;
                int &x = up_u ? u : v;
                int &dx = up_u ? du : dv;
                int &pos = up_u ? pos_u : pos_v;
                const int cell = parent[x];
                ++pos;
                const bool minus = pos % 2 == 1;
                if (pass == 0) {
                    if (minus && b.flow[cell] < theta) theta = b.flow[cell], leave = cell;
                } else {
                    b.flow[cell] += minus ? -theta : theta;
                }
                x = b.other_end(cell, x);
                --dx;
            }
        }
        b.src[leave] = ei;
        b.dst[leave] = ma + ej;
        b.cost[leave] = c(ei, ej);
        b.flow[leave] = theta;
    }
    *numit = it;
    double total = 0.0;
    for (int k = 1; k <= m - 1; ++k) total += static_cast<double>(b.flow[k]) * b.cost[k];
    *z = total;
    for (int k = 1; k <= m - 1; ++k) b.dst[k] -= ma;
    b.dst[m] = b.dst[m] > ma ? b.dst[m] - ma : b.dst[m];
    if (!optimal) return void(take(exit, kH03abfExits, kMaxitExceeded));
    exit.succeed();
}

} // namespace zek

extern "C" void H03ABF(const int cost[], const int *mmm, const int *ma, const int *mb, const int *m, int a[],
                       const int *maxit, int *numit, int k15[], int k7[], int k9[], int kost[], double *z,
                       int iwork1[], int iwork2[], int *ifail) {
    zek::Front front("H03ABF");
    zek::h03abf_worker(cost, *mmm, *ma, *mb, *m, a, *maxit, numit, k15, k7, k9, kost, z, iwork1, iwork2,
                       front.errbuf(), ifail);
    front.finish(*ifail);
}
