// Raising coded messages in the C-style layer.
//
// A lower-case routine clears its fail record on entry, checks its arguments in their declared order
// and raises the first failure with the catalogue template filled in, then returns; on success it
// raises code 0.  Nested calls get a clean local record and the outer routine raises its own code.
#ifndef ZEK_FRAME_RAISE_H
#define ZEK_FRAME_RAISE_H

#include "zek2/messages.h"
#include "zek2/types.h"

namespace zek {

// Codes are named by the public enumeration ZekMessageCode of zek2/messages.h (ZE_SINGULAR, ...).
constexpr int kCatalogueSize = ZEK_MESSAGE_CODE_COUNT;

// The catalogue template of CODE, or an empty text for a code outside the catalogue.
const char *catalogue_template(int code);

// A clean record for a nested call: code 0, print 0, no handler, errnum 0.
ZekFail clean_fail();

// On entry to a routine: code 0 on a present record.
inline void clear_fail(ZekFail *fail) {
    if (fail != nullptr) fail->code = 0;
}

// The success exit: raises code 0 on a present record.
void raise_success(ZekFail *fail, const char *routine);

// An integer argument out of its bound: codes 10 to 14 (name, bound text, name, value).
void raise_int_arg(ZekFail *fail, const char *routine, int code, const char *name, const char *bound, long value);
// A real argument out of its bound: codes 4 to 8 (name, bound text, name, value).
void raise_real_arg(ZekFail *fail, const char *routine, int code, const char *name, const char *bound, double value);
// Two integer arguments against each other: codes 16 to 19 (ZE_2_INT_ARG_EQ .. ZE_2_INT_ARG_GT), with
// the names and values of both.
void raise_int_pair(ZekFail *fail, const char *routine, int code, const char *name, long value, const char *other,
                    long other_value);
// The commonest of them, VALUE >= BOUND (a leading dimension against an order, m against n): raises
// ZE_2_INT_ARG_LT and gives true when it does not hold.
bool raise_below(ZekFail *fail, const char *routine, const char *name, long value, const char *bound_name, long bound);
// A code whose template takes one text (ZE_BAD_PARAM, ZE_NULL_ARRAY, ZE_BAD_RANK, file codes ...).
void raise_text(ZekFail *fail, const char *routine, int code, const char *text);
// A code whose template takes no argument, or whose arguments the template does not use.
void raise_plain(ZekFail *fail, const char *routine, int code);
// Any other code: ARGS must match the template's conversions in order and type (long for %ld).
void raise_formatted(ZekFail *fail, const char *routine, int code, ...);

} // namespace zek

#endif
