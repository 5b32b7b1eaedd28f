// Sorting doubles in place: M01CAF (IFAIL layer, one-based section) and m01cac (C-style layer).
#include <algorithm>
#include <cstdint>

#include "frame/ifail.h"
#include "frame/output.h"
#include "frame/raise.h"
#include "sorting/m01_common.h"
#include "sorting/m01_engines.h"
#include "sorting/sorting.h"
#include "zek2/m01.h"

namespace zek {

namespace {

struct DoubleLess {
    bool operator()(double a, double b) const { return a < b; }
};

// The pivot word of m01cac: it keeps running from call to call, so two sorts of one unbalanced input
// may take different pivots (with the same result).
std::uint32_t g_m01cac_word = 123456789u;

} // namespace

void sort_ascending(double v[], std::ptrdiff_t n) {
    m01::WichmannHill random;
    m01::quicksort(v, n, DoubleLess{}, random);
}

void M01CAF(double rv[], int m1, int m2, const char *order, int *ifail, int order_len) {
    FailureExit exit("M01CAF", nullptr, ifail);
    if (m01::section_fails(exit, m1, m2)) return;
    const int direction = m01::order_or_fail(exit, order, order_len);
    if (direction == 0) return;
    double *section = rv + (m1 - 1);
    const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(m2) - m1 + 1;
    sort_ascending(section, n);
    if (direction < 0) std::reverse(section, section + n);
    exit.succeed();
}

} // namespace zek

extern "C" void m01cac(double vec[], int n, int order, ZekFail *fail) {
    static const char *const kName = "m01cac";
    zek::clear_fail(fail);
    if (!zek::m01::length_ok(fail, kName, n, 1)) return;
    if (n == 1) {
        zek::raise_success(fail, kName);
        return;
    }
    if (order != Zek_Ascending && order != Zek_Descending) {
        zek::raise_text(fail, kName, ZE_BAD_PARAM, "order");
        return;
    }
    if (vec == nullptr) {
        zek::raise_text(fail, kName, ZE_NULL_ARRAY, "vec");
        return;
    }
    zek::m01::Congruential random(zek::g_m01cac_word);
    zek::m01::quicksort(vec, n, zek::DoubleLess{}, random);
    if (order == Zek_Descending) std::reverse(vec, vec + n);
    zek::raise_success(fail, kName);
}
