// The public headers compile as C++ and the record layouts are what the ABI fixes.
#include <cstddef>

#include "zek2.h"

static_assert(offsetof(ZekFail, code) == 0, "code first");
static_assert(offsetof(ZekFail, print) == 4, "print after code");
static_assert(offsetof(ZekFail, message) == 5, "message after print");
static_assert(sizeof(((ZekFail *)nullptr)->message) == 515, "message holds 515 characters");
static_assert(offsetof(ZekSink, file_name) == 3, "three flags before the name");

int zek_header_check_cxx() { return static_cast<int>(sizeof(ZekSink)); }
