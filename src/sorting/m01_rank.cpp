// Stable ranking: M01DAF (IFAIL layer, with its front) and m01dsc (any element type, user compare).
#include "frame/ifail.h"
#include "frame/output.h"
#include "frame/raise.h"
#include "sorting/m01_common.h"
#include "sorting/m01_engines.h"
#include "sorting/sorting.h"
#include "zek2/frame.h"
#include "zek2/m01.h"

namespace zek {

namespace {

template <class T>
void rank_values(const T v[], std::ptrdiff_t n, int rank[], bool descending, int first) {
    // Elements are numbered from 1 in the link array: element e is v[e-1], its link rank[e-1].
    m01::merge_rank(
        n, [rank](int e) -> int & { return rank[e - 1]; },
        [v](int e, int f) { return v[e - 1] < v[f - 1]; }, descending, first);
}

} // namespace

void rank_ascending(const double v[], std::ptrdiff_t n, int rank[]) { rank_values(v, n, rank, false, 0); }
void rank_ascending(const int v[], std::ptrdiff_t n, int rank[]) { rank_values(v, n, rank, false, 0); }

void m01daf_worker(const double rv[], int m1, int m2, const char *order, int irank[], char *errbuf, int *ifail,
                   int order_len, int /*errbuf_len*/) {
    FailureExit exit("M01DAF", errbuf, ifail);
    if (m01::section_fails(exit, m1, m2)) return;
    const int direction = m01::order_or_fail(exit, order, order_len);
    if (direction == 0) return;
    const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(m2) - m1 + 1;
    rank_values(rv + (m1 - 1), n, irank + (m1 - 1), direction < 0, m1);
    exit.succeed();
}

} // namespace zek

extern "C" {

void M01DAF(const double rv[], const int *m1, const int *m2, const char *order, int irank[], int *ifail,
            int order_len) {
    zek::Front front("M01DAF");
    // IRANK(M1:M2) is output only.  A section the worker will reject is left alone, so that no mark
    // falls outside the caller's array.
    if (*m1 >= 1 && *m2 >= *m1) ZEK_MARK_INTEGER_ARRAY(*m2 - *m1 + 1, irank + (*m1 - 1));
    zek::m01daf_worker(rv, *m1, *m2, order, irank, front.errbuf(), ifail, order_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void m01dsc(const void *vec, int n, int stride, ZekCompare compare, int order, int ranks[], ZekFail *fail) {
    static const char *const kName = "m01dsc";
    zek::clear_fail(fail);
    if (!zek::m01::length_ok(fail, kName, n, 1)) return;
    if (stride == 0) {
        zek::raise_int_arg(fail, kName, ZE_INT_ARG_EQ, "stride", "0", stride);
        return;
    }
    // The whole vector must lie within the range of an int of bytes.
    const long magnitude = stride < 0 ? -static_cast<long>(stride) : stride;
    const long bound = 0x7FFFFFFFL / n;
    if (magnitude > bound) {
        zek::raise_int_arg(fail, kName, ZE_INT_ARG_GT, "abs(stride)",
                           zek::format("p (p = %d)", static_cast<int>(bound)).c_str(), magnitude);
        return;
    }
    if (compare == nullptr) {
        zek::raise_text(fail, kName, ZE_BAD_PARAM, "compare");
        return;
    }
    if (order != Zek_Ascending && order != Zek_Descending) {
        zek::raise_text(fail, kName, ZE_BAD_PARAM, "order");
        return;
    }
    if (vec == nullptr || ranks == nullptr) {
        zek::raise_text(fail, kName, ZE_NULL_ARRAY, vec == nullptr ? "vec" : "ranks");
        return;
    }
    const char *base = static_cast<const char *>(vec);
    const std::ptrdiff_t step = stride;
    zek::m01::merge_rank(
        n, [ranks](int e) -> int & { return ranks[e - 1]; },
        [base, step, compare](int e, int f) {
            return compare(base + (e - 1) * step, base + (f - 1) * step) < 0;
        },
        order == Zek_Descending, 0);
    zek::raise_success(fail, kName);
}

} // extern "C"
