// Constants of IEEE 754 double arithmetic, the undefined-value markers and the small services.
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "frame/machine.h"
#include "zek2/frame.h"
#include "zek2/x02.h"

namespace {

double from_bits(std::uint64_t bits) {
    double d;
    std::memcpy(&d, &bits, sizeof d);
    return d;
}

// Kept in writable data as the library always has; nothing writes it.
double g_precision = from_bits(0x3CA0040000000020ull);

} // namespace

namespace zek {

double precision() { return g_precision; }
double safe_minimum() { return from_bits(0x0010000000000000ull); }
double largest() { return from_bits(0x7FEFFFFFFFFFFFFFull); }
int largest_integer(const void *, const void *) { return INT_MAX; }

void scale_normalise(double *x, int *exponent, int k) {
    if (*x == 0.0 || !std::isfinite(*x)) {
        if (*x == 0.0) *exponent = 0;
        return;
    }
    const double base = std::ldexp(1.0, k);
    const double inverse = 1.0 / base;
    // Each loop shrinks or grows |x| by a factor of at least 2, so both end within 2100 steps.
    while (std::fabs(*x) >= 1.0) {
        *x *= inverse;
        *exponent += k;
    }
    while (std::fabs(*x) < inverse) {
        *x *= base;
        *exponent -= k;
    }
}

double integer_guard(double n) {
    if (n > static_cast<double>(INT_MAX)) return -1.0;
    double r = n;
    // Representable integers of this size are exact, so one step up is enough when truncation fell short.
    if (std::trunc(r) < n) r = std::nextafter(r, HUGE_VAL);
    return r;
}

bool chars_equal_32(char a, char b) {
    return a == b || std::abs(static_cast<int>(a) - static_cast<int>(b)) == 32;
}

bool chars_equal_32_cached(char a, char b) {
    static int distance = 0;
    if (distance == 0) distance = 32;
    return a == b || std::abs(static_cast<int>(a) - static_cast<int>(b)) == distance;
}

} // namespace zek

extern "C" {

double X01_PI(void) { return from_bits(0x400921FB54442D18ull); }
double X01_PI_ALIAS(void) ZEK_ALIAS("q29759");
double X01_PI_IGNORING(const void *, const void *) { return X01_PI(); }

double X02AJC(void) { return from_bits(0x3CA0040000000000ull); }
double X02_PRECISION(void) { return g_precision; }

double X02AMC(void) { return zek::safe_minimum(); }
double X02AMC_ALIAS(void) ZEK_ALIAS("q14508");
double X02_SAFE_MINIMUM(void) { return zek::safe_minimum(); }
double X02_SAFE_MINIMUM_ALIAS(void) ZEK_ALIAS("q10323");

double X02_LARGEST(void) { return zek::largest(); }
double X02_LARGEST_ALIAS(void) ZEK_ALIAS("q83206");

int X02_BASE(void) { return 2; }

void ZEK_MARK_INTEGER(int *value) { *value = zek::kUndefinedInteger; }
void ZEK_MARK_INTEGER_ARRAY(int count, int *values) {
    for (int i = 0; i < count; ++i) values[i] = zek::kUndefinedInteger;
}
void ZEK_MARK_REAL(double *value) { *value = zek::kUndefinedReal; }
void ZEK_MARK_REAL_ARRAY(int count, double *values) {
    for (int i = 0; i < count; ++i) values[i] = zek::kUndefinedReal;
}
void ZEK_MARK_COMPLEX(double *value) { value[0] = value[1] = zek::kUndefinedReal; }
void ZEK_MARK_COMPLEX_ARRAY(int count, double *values) {
    for (std::ptrdiff_t i = 0; i < 2 * static_cast<std::ptrdiff_t>(count); ++i) values[i] = zek::kUndefinedReal;
}

// No object may be larger than the offsets can address; such a request (the saturated result of
// zek::size_product) is refused without asking the system.
void *ZEK_ALLOCATE(size_t bytes) { return bytes > static_cast<size_t>(PTRDIFF_MAX) ? nullptr : std::malloc(bytes); }
void ZEK_RELEASE(void **pointer) {
    if (pointer == nullptr) return;
    std::free(*pointer);
    *pointer = nullptr;
}

void ZEK_ARRAY_FILLED(int, const void *) {}
void ZEK_ARRAY_FILLED_ALIAS(int, const void *) ZEK_ALIAS("q21446");
void ZEK_SILENT_HOOK(void) {}
void ZEK_SILENT_HOOK_ALIAS(void) ZEK_ALIAS("q23865");
void ZEK_SET_ONE(const void *, int *flag) { *flag = 1; }
void ZEK_SET_ONE_ALIAS(const void *, int *flag) ZEK_ALIAS("q65389");

int ZEK_CHAR_EQUAL(const char *a, const char *b, int, int) {
    const unsigned char x = static_cast<unsigned char>(*a), y = static_cast<unsigned char>(*b);
    if (std::isalpha(x) && std::isalpha(y)) return std::toupper(x) == std::toupper(y);
    return x == y;
}

} // extern "C"
