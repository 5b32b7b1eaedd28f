// Callback adaptors: how a worker calls a user's function.
//
// A routine that takes a user function is given it with an exported adaptor for its shape.  The worker
// calls the adaptor with the user's function first, scalars by value and arrays by pointer; the adaptor
// keeps the scalars in its own frame, marks the arrays the user's function is to fill as undefined, and
// calls the user with the addresses of its copies, so user functions see the by-reference contract of
// the rest of the IFAIL layer and an output they leave unset holds the marker.
//
//     extern "C" void C05_ADAPT_F(UserF *f, double x, int *iuser, double *ruser, double *fx) {
//         zek::mark_vector(1, fx);
//         f(&x, fx, iuser, ruser);
//     }
#ifndef ZEK_FRAME_ADAPTOR_H
#define ZEK_FRAME_ADAPTOR_H

#include <cstddef>

#include "zek2/frame.h"

namespace zek {

// Marks COUNT reals (complex values: 2*COUNT doubles through mark_complex_vector).
inline void mark_vector(int count, double *values) { ZEK_MARK_REAL_ARRAY(count, values); }
inline void mark_vector(int count, int *values) { ZEK_MARK_INTEGER_ARRAY(count, values); }
inline void mark_complex_vector(int count, double *values) { ZEK_MARK_COMPLEX_ARRAY(count, values); }

// Marks a matrix the user fills: COLUMNS columns of leading dimension LD, counted as COLUMNS*LD
// elements so the padding rows hold the marker too.  A negative leading dimension counts as zero.
inline void mark_matrix(int columns, int ld, double *values) {
    const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(columns > 0 ? columns : 0) * (ld > 0 ? ld : 0);
    for (std::ptrdiff_t i = 0; i < n; ++i) ZEK_MARK_REAL(values + i);
}

} // namespace zek

#endif
