// Argument checks and message texts shared by the IFAIL-layer members of chapter M01.
#ifndef ZEK_SORTING_M01_COMMON_H
#define ZEK_SORTING_M01_COMMON_H

#include <string>

#include "frame/ifail.h"
#include "frame/raise.h"

namespace zek::m01 {

// The largest vector length of the C-style members.
constexpr int kMaxLength = 0xFFFFFFF;

// The length N of a C-style member: at least LEAST and at most kMaxLength.  False after raising.
inline bool length_ok(ZekFail *fail, const char *routine, int n, int least) {
    if (n < least) {
        raise_int_arg(fail, routine, ZE_INT_ARG_LT, "n", least == 0 ? "0" : "1", n);
        return false;
    }
    if (n > kMaxLength) {
        raise_int_arg(fail, routine, ZE_INT_ARG_GT, "n", std::to_string(kMaxLength).c_str(), n);
        return false;
    }
    return true;
}

// The exits every IFAIL-layer member with a section M1..M2 shares; those with an ORDER add the last.
enum SectionExit { kM2LessThan1, kM1LessThan1, kM1AboveM2, kOrderIllegal };
constexpr ExitRow kSectionExits[] = {
    {1, 99999, " ** On entry, M2 .lt. 1: M2 =%16ld."},
    {1, 99998, " ** On entry, M1 .lt. 1: M1 =%16ld."},
    {1, 99997, " ** On entry, M1 .gt. M2:\n    M1 =%16ld, M2 =%16ld."},
    {2, 99996, " ** On entry, ORDER has an illegal value: ORDER = '%1s'."},
};

// The section M1..M2.  True when a failure was reported.
inline bool section_fails(FailureExit &exit, int m1, int m2) {
    if (m2 < 1) {
        take(exit, kSectionExits, kM2LessThan1, {m2});
        return true;
    }
    if (m1 < 1) {
        take(exit, kSectionExits, kM1LessThan1, {m1});
        return true;
    }
    if (m1 > m2) {
        take(exit, kSectionExits, kM1AboveM2, {m1, m2});
        return true;
    }
    return false;
}

// ORDER 'A' or 'D' in either case: 1 ascending, -1 descending, 0 illegal (after its exit).
inline int order_or_fail(FailureExit &exit, const char *order, int order_len) {
    const char c = (order != nullptr && order_len > 0) ? order[0] : ' ';
    if (c == 'A' || c == 'a') return 1;
    if (c == 'D' || c == 'd') return -1;
    take(exit, kSectionExits, kOrderIllegal, {std::string(order != nullptr && order_len > 0 ? 1 : 0, c)});
    return 0;
}

} // namespace zek::m01

#endif
