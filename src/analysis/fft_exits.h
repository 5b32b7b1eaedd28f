// The failure exits of the transform routines.  Each routine keeps its exits as one table beside it:
// the check that failed, the IFAIL and exit number it ends in, and the text (whose conversions take
// the values the routine hands over).  The checks that most routines share (M, N and DIRECT, in that
// order) run here against the routine's own rows, so each routine's text and numbering stay its own.
#ifndef ZEK_ANALYSIS_FFT_EXITS_H
#define ZEK_ANALYSIS_FFT_EXITS_H

#include <cstddef>
#include <initializer_list>

#include "frame/ifail.h"

namespace zek::fft {

enum class Check {
    M,        // M < 1
    N,        // N < 1 (N <= 1 where the routine needs two points)
    Direct,   // DIRECT neither 'F' nor 'B'
    Ndim,     // NDIM < 1
    L,        // L outside 1 .. NDIM
    Nd,       // some ND(I) < 1
    Product,  // N not the product of the ND(I)
    Lwork,    // LWORK below the need
    Factors,  // a length with more prime factors than the passes hold, or too large a factor
    Count,    // too many factors, where a routine tells the two apart
    Internal, // an internal call failed
};

struct ExitRow {
    Check check;
    int ifail;
    long number;
    const char *text;
};

class ExitTable {
public:
    template <std::size_t K>
    constexpr ExitTable(const ExitRow (&rows)[K], int width = kRecordWidth) : rows_(rows), count_(K), width_(width) {}
    // The row of CHECK, or null when the routine has no such exit.
    const ExitRow *find(Check check) const;
    // The failure exit of CHECK; always false, so that a check can read `return table.fail(...)`.
    bool fail(FailureExit &exit, Check check, std::initializer_list<MessageValue> values = {}) const;
    // The leading checks in order, those the table has rows for: M, N, DIRECT.  False after a failure.
    bool leading(FailureExit &exit, int m, int n, const char *direct, int direct_len) const;
    // The engine's return code as the routine's outcome: 0 success, FACTORS_CODE the Factors exit with
    // VALUES, anything else the Internal exit.
    void outcome(FailureExit &exit, int code, int factors_code, std::initializer_list<MessageValue> values) const;

private:
    const ExitRow *rows_;
    std::size_t count_;
    int width_;
};

} // namespace zek::fft

#endif
