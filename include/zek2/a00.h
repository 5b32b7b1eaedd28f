/* Chapter A00: implementation details. */
#ifndef ZEK2_A00_H
#define ZEK2_A00_H

#include "types.h"

ZEK_BEGIN_DECLS

/* Prints the implementation banner on the advisory unit through the host channel. */
ZEK_API void A00_BANNER(void) ZEK_SYMBOL("q85583");

ZEK_END_DECLS

#endif
