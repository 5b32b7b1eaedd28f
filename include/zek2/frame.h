/* Frame utilities: undefined-value markers, empty hooks, character compare and the test generator.
 *
 * Fronts and callback adaptors overwrite output-only arguments with a marker before a routine runs,
 * so a value that was never set is recognisable: the integer word 0x80808080 (-2139062144) and the
 * real -2139062144.0 (0xC1DFDFDFE0000000, a number, not a NaN).
 */
#ifndef ZEK2_FRAME_H
#define ZEK2_FRAME_H

#include <stddef.h>

#include "types.h"

ZEK_BEGIN_DECLS

ZEK_API void ZEK_MARK_INTEGER(int *value) ZEK_SYMBOL("q80084");
/* The array forms do nothing for a count below 1. */
ZEK_API void ZEK_MARK_INTEGER_ARRAY(int count, int *values) ZEK_SYMBOL("q25122");
ZEK_API void ZEK_MARK_REAL(double *value) ZEK_SYMBOL("q32589");
ZEK_API void ZEK_MARK_REAL_ARRAY(int count, double *values) ZEK_SYMBOL("q22004");
/* Complex: both parts of each element (16-byte elements). */
ZEK_API void ZEK_MARK_COMPLEX(double *value) ZEK_SYMBOL("q72415");
ZEK_API void ZEK_MARK_COMPLEX_ARRAY(int count, double *values) ZEK_SYMBOL("q41363");

/* Workspace of the C-style layer: a plain allocation of BYTES bytes (null when it fails), and the
 * release that frees *POINTER and clears it (a null *POINTER is allowed). */
ZEK_API void *ZEK_ALLOCATE(size_t bytes) ZEK_SYMBOL("q30635");
ZEK_API void ZEK_RELEASE(void **pointer) ZEK_SYMBOL("q85057");

/* Empty hooks: called after an array is filled, and on the silent report route of some kernels, so
 * that a checking build can attach to them. */
ZEK_API void ZEK_ARRAY_FILLED(int count, const void *values) ZEK_SYMBOL("q21446");
ZEK_API void ZEK_ARRAY_FILLED_ALIAS(int count, const void *values) ZEK_SYMBOL("q63056");
ZEK_API void ZEK_SILENT_HOOK(void) ZEK_SYMBOL("q23865");
ZEK_API void ZEK_SILENT_HOOK_ALIAS(void) ZEK_SYMBOL("q55301");
/* Stores 1 through FLAG; the first argument is ignored. */
ZEK_API void ZEK_SET_ONE(const void *unused, int *flag) ZEK_SYMBOL("q65389");
ZEK_API void ZEK_SET_ONE_ALIAS(const void *unused, int *flag) ZEK_SYMBOL("q69902");

/* Case-blind compare of two characters: letters are compared upper-cased, others exactly.
 * Returns 1 when equal, else 0. */
ZEK_API int ZEK_CHAR_EQUAL(const char *a, const char *b, int a_len, int b_len) ZEK_SYMBOL("q64373");

/* Test generator of the matrix utilities: TYPE 1 uniform on (0,1), 2 uniform on (-1,1), 3 standard
 * normal, other types 0.0.  SEED (four 12-bit limbs, most significant first) is advanced; a null
 * SEED uses the library's own state. */
ZEK_API double Y90_TEST_RANDOM(int type, int *seed) ZEK_SYMBOL("q25888");

ZEK_END_DECLS

#endif
