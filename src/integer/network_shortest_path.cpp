// The shortest path between two vertices of a sparse graph with positive edge lengths by permanent
// labelling: the edges of the current vertex are scattered into a dense row, labels are relaxed over it,
// and the smallest temporary label is made final, until the end vertex is final.
#include <cmath>
#include <cstdint>
#include <utility>

#include "../frame/ifail.h"
#include "../frame/machine.h"
#include "zek2/frame.h"
#include "zek2/h03.h"

namespace zek {
namespace {

// The line naming an edge (k, IROW(k), ICOL(k)) is 81 characters: its records are wider than usual.
constexpr int kWideRecord = 96;

// H03ADF's exits.
enum H03adfExit {
    kNLessThan2,
    kStartOutOfRange,
    kEndOutOfRange,
    kStartIsEnd,
    kDirectedEdgeCount,
    kUndirectedEdgeCount,
    kDirectedEdgeEnds,
    kUndirectedEdgeEnds,
    kLengthNotPositive,
    kRepeatedEdge,
    kNotConnected,
};
constexpr ExitRow kH03adfExits[] = {
    {1, 99999, " ** On entry, N .lt. 2: N =%16ld."},
    {2, 99998, " ** On entry, NS .lt. 1 or NS .gt. N:\n    NS =%16ld, N =%16ld."},
    {2, 99997, " ** On entry, NE .lt. 1 or NE .gt. N:\n    NE =%16ld, N =%16ld."},
    {3, 99996, " ** On entry, NS .eq. NE:\n    NS =%16ld, NE =%16ld."},
    {4, 99995, " ** On entry, NNZ .lt. 1 or NNZ .gt. N*(N-1) when DIRECT = .TRUE.:\n    NNZ = %16ld, N = %16ld."},
    {4, 99994, " ** On entry, NNZ .lt. 1 or NNZ .gt. N*(N-1)/2 when DIRECT = .FALSE.:\n    NNZ = %16ld, N = %16ld."},
    {5, 99993,
     " ** On entry, IROW(k) .lt. 1 or IROW(k) .gt. N or ICOL(k) .lt. 1 or\n    ICOL(k) .gt. N or "
     "ICOL(k) .eq. IROW(k) for some k when DIRECT = .TRUE.:\n    k = %16ld, IROW(k) = %16ld, "
     "ICOL(k) = %16ld."},
    {5, 99992,
     " ** On entry, IROW(k) .lt. 1 or IROW(k) .ge. ICOL(k) or ICOL(k) .gt. N\n    for some k when "
     "DIRECT = .FALSE.:\n    k = %16ld, IROW(k) = %16ld, ICOL(k) = %16ld."},
    {6, 99991, " ** On entry, D(k) .le. 0.0 for some k:\n    k = %16ld, D(k) = %12.4E."},
    {7, 99990,
     " ** On entry, IROW(k) .eq. IROW(k-1) and ICOL(k) .eq. ICOL(k-1) for some k:\n    IROW(k) = "
     "%16ld, IROW(k-1) = %16ld\n    ICOL(k) = %16ld, ICOL(k-1) = %16ld."},
    {8, 99989, " ** No connected network exists between vertices NS and NE:\n    NS = %16ld, NE = %16ld."},
};

// Sorts the edges (IROW, ICOL, D) in place by row, then column: a heap sort, so no memory is taken.
void sort_edges(int *irow, int *icol, double *d, std::ptrdiff_t nnz) {
    auto less = [&](std::ptrdiff_t x, std::ptrdiff_t y) {
        return irow[x] < irow[y] || (irow[x] == irow[y] && icol[x] < icol[y]);
    };
    auto swap = [&](std::ptrdiff_t x, std::ptrdiff_t y) {
        std::swap(irow[x], irow[y]);
        std::swap(icol[x], icol[y]);
        std::swap(d[x], d[y]);
    };
    auto sift = [&](std::ptrdiff_t root, std::ptrdiff_t end) {
        for (;;) {
            std::ptrdiff_t child = 2 * root + 1;
            if (child >= end) return;
            if (child + 1 < end && less(child, child + 1)) ++child;
            if (!less(root, child)) return;
            swap(root, child);
            root = child;
        }
    };
    for (std::ptrdiff_t i = nnz / 2; i-- > 0;) sift(i, nnz);
    for (std::ptrdiff_t end = nnz - 1; end > 0; --end) {
        swap(0, end);
        sift(0, end);
    }
}

} // namespace

void h03adf_worker(int n, int ns, int ne, bool direct, int nnz, double d[], int irow[], int icol[], double *splen,
                   int path[], int iwork[], double work[], char *errbuf, int *ifail) {
    FailureExit exit("H03ADF", errbuf, ifail);
    if (n < 2) return void(take(exit, kH03adfExits, kNLessThan2, {n}));
    if (ns < 1 || ns > n) return void(take(exit, kH03adfExits, kStartOutOfRange, {ns, n}));
    if (ne < 1 || ne > n) return void(take(exit, kH03adfExits, kEndOutOfRange, {ne, n}));
    if (ns == ne) return void(take(exit, kH03adfExits, kStartIsEnd, {ns, ne}));
    const std::int64_t pairs = static_cast<std::int64_t>(n) * (n - 1);
    if (nnz < 1 || nnz > (direct ? pairs : pairs / 2))
        return void(take(exit, kH03adfExits, direct ? kDirectedEdgeCount : kUndirectedEdgeCount, {nnz, n}));
    for (int k = 1; k <= nnz; ++k) {
        const int r = irow[k - 1], c = icol[k - 1];
        const bool bad = direct ? (r < 1 || r > n || c < 1 || c > n || c == r) : (r < 1 || r >= c || c > n);
        if (bad)
            return void(take(exit, kH03adfExits, direct ? kDirectedEdgeEnds : kUndirectedEdgeEnds, {k, r, c},
                             kWideRecord));
    }
    for (int k = 1; k <= nnz; ++k)
        if (!(d[k - 1] > 0.0)) return void(take(exit, kH03adfExits, kLengthNotPositive, {k, d[k - 1]}));
    sort_edges(irow, icol, d, nnz);
    for (int k = 2; k <= nnz; ++k)
        if (irow[k - 1] == irow[k - 2] && icol[k - 1] == icol[k - 2])
            return void(take(exit, kH03adfExits, kRepeatedEdge, {irow[k - 1], irow[k - 2], icol[k - 1], icol[k - 2]}));
    // Integer work: row starts, predecessors, and for undirected graphs column starts and edges by column.
    int *start = iwork;            // start[r-1] .. start[r]-1: edges of row r (zero-based edge numbers)
    int *pred = iwork + n + 1;     // pred[v-1]
    int *cstart = iwork + 2 * n + 1;
    int *bycol = iwork + 3 * n + 2;
    for (int v = 0; v <= n; ++v) start[v] = 0;
    for (int k = 0; k < nnz; ++k) ++start[irow[k]];
    for (int v = 1; v <= n; ++v) start[v] += start[v - 1];
    if (!direct) {
        for (int v = 0; v <= n; ++v) cstart[v] = 0;
        for (int k = 0; k < nnz; ++k) ++cstart[icol[k]];
        for (int v = 1; v <= n; ++v) cstart[v] += cstart[v - 1];
        for (int k = 0; k < nnz; ++k) bycol[cstart[icol[k] - 1]++] = k;
        for (int v = n; v > 0; --v) cstart[v] = cstart[v - 1];
        cstart[0] = 0;
    }
    double *row = work;
    double *label = work + n;
    const double huge = 1.0 / safe_minimum();
    for (int v = 0; v < n; ++v) {
        row[v] = 0.0;
        label[v] = -huge;
        pred[v] = 0;
    }
    pred[ns - 1] = -ns;
    label[ns - 1] = 0.0;
    int current = ns;
    for (int step = 0; step < n; ++step) {
        const int c = current - 1;
        for (int k = start[c]; k < start[c + 1]; ++k) row[icol[k] - 1] = d[k];
        if (!direct)
            for (int p = cstart[c]; p < cstart[c + 1]; ++p) row[irow[bycol[p]] - 1] = d[bycol[p]];
        for (int j = 0; j < n; ++j) {
            if (j == c || pred[j] < 0 || !(row[j] > 0.0)) continue;
            const double candidate = label[c] + row[j];
            if (label[j] == -huge || candidate < label[j]) {
                label[j] = candidate;
                pred[j] = current;
            }
        }
        int next = 0;
        double smallest = huge;
        for (int j = 0; j < n; ++j) {
            if (pred[j] < 0) continue;
            if (std::fabs(label[j]) < smallest) {
                smallest = std::fabs(label[j]);
                next = j + 1;
            }
        }
        for (int k = start[c]; k < start[c + 1]; ++k) row[icol[k] - 1] = 0.0;
        if (!direct)
            for (int p = cstart[c]; p < cstart[c + 1]; ++p) row[irow[bycol[p]] - 1] = 0.0;
        if (next == 0) return void(take(exit, kH03adfExits, kNotConnected, {ns, ne}));
        pred[next - 1] = -pred[next - 1];
        if (next == ne) break;
        current = next;
    }
    // The path from its end, then moved to the front.
    int pos = n - 1;
    for (int v = ne; pos >= 0; v = -pred[v - 1]) {
        path[pos--] = v;
        if (v == ns) break;
    }
    const int length = n - 1 - pos;
    for (int i = 0; i < length; ++i) path[i] = path[pos + 1 + i];
    for (int i = length; i < n; ++i) path[i] = 0;
    *splen = label[ne - 1];
    exit.succeed();
}

} // namespace zek

extern "C" void H03ADF(const int *n, const int *ns, const int *ne, const int *direct, const int *nnz, double d[],
                       int irow[], int icol[], double *splen, int path[], int iwork[], double work[], int *ifail) {
    zek::Front front("H03ADF");
    ZEK_MARK_REAL(splen);
    zek::h03adf_worker(*n, *ns, *ne, *direct != 0, *nnz, d, irow, icol, splen, path, iwork, work, front.errbuf(),
                       ifail);
    front.finish(*ifail);
}
