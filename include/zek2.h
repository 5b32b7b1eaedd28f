/* ZEK2: the umbrella header.  Each chapter header declares its routines with their export symbols. */
#ifndef ZEK2_H
#define ZEK2_H

#include "zek2/types.h"
#include "zek2/a00.h"
#include "zek2/a02.h"
#include "zek2/c06.h"
#include "zek2/c02.h"
#include "zek2/c05.h"
#include "zek2/e04.h"
#include "zek2/f01.h"
#include "zek2/f02.h"
#include "zek2/f03.h"
#include "zek2/f04.h"
#include "zek2/f06.h"
#include "zek2/f07.h"
#include "zek2/f08.h"
#include "zek2/frame.h"
#include "zek2/g01.h"
#include "zek2/g02.h"
#include "zek2/g03.h"
#include "zek2/g05.h"
#include "zek2/g07.h"
#include "zek2/h02.h"
#include "zek2/m01.h"
#include "zek2/messages.h"
#include "zek2/p01.h"
#include "zek2/s.h"
#include "zek2/x02.h"
#include "zek2/x03.h"
#include "zek2/x04.h"

#endif
