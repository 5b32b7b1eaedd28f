/* Chapter C02: zeros of polynomials. */
#ifndef ZEK2_C02_H
#define ZEK2_C02_H

#include "types.h"

ZEK_BEGIN_DECLS

ZEK_END_DECLS

#endif
