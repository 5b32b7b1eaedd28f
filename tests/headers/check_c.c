/* The public headers compile as C99. */
#include "zek2.h"

int zek_header_check_c(void) { return (int)sizeof(ZekFail); }
