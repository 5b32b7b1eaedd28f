// The byte check of the export table: the right count compiles; a decoration whose count differs from
// the prototype's (X04_HOST_RECORDS takes three ints and a pointer, 16 bytes), a routine that is not
// callee-pops and a by-value argument the ABI does not know must not.
#include "export_bytes.h"
#include "zek2/x04.h"

#if defined(ZEK_WRONG_COUNT)
static_assert(zek_exports::argument_bytes<decltype(X04_HOST_RECORDS)>::value == 12, "_q50102@12");
#elif defined(ZEK_CALLER_POPS)
extern "C" void caller_pops(int, double);
static_assert(zek_exports::argument_bytes<decltype(caller_pops)>::value == 12, "cdecl");
#elif defined(ZEK_WIDE_ARGUMENT)
extern "C" __attribute__((stdcall)) void wide(long long);
static_assert(zek_exports::argument_bytes<decltype(wide)>::value == 8, "64-bit integer");
#else
static_assert(zek_exports::argument_bytes<decltype(X04_HOST_RECORDS)>::value == 16, "_q50102@16");
#endif
