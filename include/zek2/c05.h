/* Chapter C05: roots of one nonlinear equation. */
#ifndef ZEK2_C05_H
#define ZEK2_C05_H

#include "types.h"

ZEK_BEGIN_DECLS

ZEK_END_DECLS

#endif
