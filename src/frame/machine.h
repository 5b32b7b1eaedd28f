// The machine environment for the library's own routines: constants, markers and small services.
#ifndef ZEK_FRAME_MACHINE_H
#define ZEK_FRAME_MACHINE_H

#include <cstddef>
#include <cstdint>

namespace zek {

// The machine precision most routines read (0x3CA0040000000020), a shade above 2**-53.
double precision();
// Smallest positive normal number and largest finite number.
double safe_minimum();
double largest();
// Largest 32-bit integer; its two arguments are ignored.
int largest_integer(const void *unused1, const void *unused2);

// The undefined-value markers written into output-only arguments.
constexpr std::int32_t kUndefinedInteger = static_cast<std::int32_t>(0x80808080u);
constexpr double kUndefinedReal = -2139062144.0;

// x if y >= 0, else -x (x is not made positive first).
inline double sign_transfer(double x, double y) { return y >= 0.0 ? x : -x; }

// Brings x into [1/B, 1) in magnitude with B = 2**k, counting the powers of B in *exponent: each
// division by B adds k, each multiplication subtracts k.  Zero gives x = 0 and *exponent = 0.
void scale_normalise(double *x, int *exponent, int k);

// Size arithmetic of workspace requests: the product and the sum of two sizes, or SIZE_MAX when the
// exact value does not fit.  SIZE_MAX is a request ZEK_ALLOCATE refuses, so an order whose square
// overflows ends in the allocation failure instead of a buffer shorter than the routine uses.
inline std::size_t size_product(std::size_t a, std::size_t b) {
    std::size_t r;
    return __builtin_mul_overflow(a, b, &r) ? SIZE_MAX : r;
}
inline std::size_t size_sum(std::size_t a, std::size_t b) {
    std::size_t r;
    return __builtin_add_overflow(a, b, &r) ? SIZE_MAX : r;
}

// The next real whose truncation is not below n, or -1.0 when n exceeds the largest integer.
double integer_guard(double n);

// Two characters are equal when identical or their codes differ by exactly 32.
bool chars_equal_32(char a, char b);
// The same test keeping the distance 32 in a word that is set at first use.
bool chars_equal_32_cached(char a, char b);

} // namespace zek

#endif
