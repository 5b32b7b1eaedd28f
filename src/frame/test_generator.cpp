// The generator behind the matrix utilities' test data: a 48-bit multiplicative congruential
// generator held as four 12-bit limbs, most significant first.
#include <cmath>
#include <cstdint>

#include "zek2/frame.h"
#include "zek2/x02.h"

namespace {

constexpr std::uint64_t kMultiplier = (502ull << 36) | (1521ull << 24) | (4071ull << 12) | 2107ull;
constexpr std::uint64_t kMask48 = (1ull << 48) - 1;

int g_state[4] = {0, 0, 0, 1};

// Advances the limbs and returns the new state as a fraction in (0, 1).
double next_uniform(int *limbs) {
    std::uint64_t s = 0;
    for (int i = 0; i < 4; ++i) s = (s << 12) | (static_cast<std::uint64_t>(limbs[i]) & 0xFFFu);
    if (s == 0) s = 1;  // zero is a fixed point of the multiplication
    s = (s * kMultiplier) & kMask48;
    for (int i = 3; i >= 0; --i) {
        limbs[i] = static_cast<int>(s & 0xFFFu);
        s >>= 12;
    }
    return (((limbs[3] / 4096.0 + limbs[2]) / 4096.0 + limbs[1]) / 4096.0 + limbs[0]) / 4096.0;
}

} // namespace

extern "C" double Y90_TEST_RANDOM(int type, int *seed) {
    int *limbs = seed != nullptr ? seed : g_state;
    switch (type) {
    case 1: return next_uniform(limbs);
    case 2: return 2.0 * next_uniform(limbs) - 1.0;
    case 3: {
        const double u1 = next_uniform(limbs);
        const double u2 = next_uniform(limbs);
        return std::sqrt(-2.0 * std::log(u1)) * std::cos(2.0 * X01_PI() * u2);
    }
    default: return 0.0;
    }
}
