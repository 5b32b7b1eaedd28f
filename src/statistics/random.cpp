// The basic generator, its deviates, and the explicit-state generators of the caller's arrays.
//
// The basic recurrence x <- a x mod 2^60 (a = 13^13) runs on four 15-bit limbs held in ints: every
// limb product is below 2^30 and a column of four of them with its carry below 2^32, so 32-bit
// unsigned arithmetic suffices and no division is needed.  The batch keeps 63 independent lanes, so a
// refill is one multiplication per lane by a^63 with no dependence from lane to lane.
#include <cmath>
#include <cstdint>

#include "frame/machine.h"
#include "frame/raise.h"
#include "statistics/random.h"
#include "zek2/g05.h"

namespace zek {

namespace {

using random_detail::kLanes;

constexpr std::uint32_t kMask = 0x7fff;
constexpr std::uint32_t kMultiplier[4] = {17917, 13895, 19930, 8};      // 13^13
constexpr std::uint32_t kMultiplier63[4] = {85, 3703, 6070, 6822};      // 13^819 mod 2^60
constexpr int kDefaultSeed[4] = {6698, 7535, 26792, 30140};
constexpr double kTwoM30 = 9.3132257461547852e-10;
constexpr double kTwoM60 = 8.6736173798840355e-19;

struct BasicState {
    int limbs[4 * (kLanes + 1)];  // limb j of lane k at [j (kLanes + 1) + k]; lane 0 is where a scratch fill starts
    double batch[kLanes];
    int position;
    int flags[2];      // seeded, restart pending
    double normal[3];  // carried uniform (1.0: none), sign of the last normal deviate, batch pacing constant
};

BasicState g_state{};

int &limb(int j, int lane) { return g_state.limbs[j * (kLanes + 1) + lane]; }

// x <- m x mod 2^60, limbs least significant first.
void multiply(const std::uint32_t m[4], std::uint32_t x[4]) {
    std::uint32_t c = m[0] * x[0];
    const std::uint32_t r0 = c & kMask;
    c = (c >> 15) + m[0] * x[1] + m[1] * x[0];
    const std::uint32_t r1 = c & kMask;
    c = (c >> 15) + m[0] * x[2] + m[1] * x[1] + m[2] * x[0];
    const std::uint32_t r2 = c & kMask;
    c = (c >> 15) + m[0] * x[3] + m[1] * x[2] + m[2] * x[1] + m[3] * x[0];
    x[0] = r0;
    x[1] = r1;
    x[2] = r2;
    x[3] = c & kMask;
}

double one_minus_eps() {
    static const double value = 1.0 - precision();
    return value;
}

double limbs_to_uniform(const std::uint32_t l[4]) {
    const double u = (static_cast<double>(l[3]) * 32768.0 + static_cast<double>(l[2])) * kTwoM30 +
                     (static_cast<double>(l[1]) * 32768.0 + static_cast<double>(l[0])) * kTwoM60;
    return u > one_minus_eps() ? one_minus_eps() : u;
}

void load_lane(int lane, std::uint32_t x[4]) {
    for (int j = 0; j < 4; ++j) x[j] = static_cast<std::uint32_t>(limb(j, lane)) & kMask;
}
void store_lane(int lane, const std::uint32_t x[4]) {
    for (int j = 0; j < 4; ++j) limb(j, lane) = static_cast<int>(x[j]);
}

void reset_normal_cache() {
    g_state.normal[0] = 1.0;
    g_state.normal[1] = -1.0;
    g_state.normal[2] = 256.0;
}

void refill(bool force) {
    std::uint32_t x[4];
    if (force || g_state.flags[1] != 0) {
        load_lane(0, x);
        for (int k = 1; k <= kLanes; ++k) {
            multiply(kMultiplier, x);
            store_lane(k, x);
            g_state.batch[k - 1] = limbs_to_uniform(x);
        }
        g_state.flags[1] = 0;
    } else {
        for (int k = 1; k <= kLanes; ++k) {
            load_lane(k, x);
            multiply(kMultiplier63, x);
            store_lane(k, x);
            g_state.batch[k - 1] = limbs_to_uniform(x);
        }
    }
    // Lane 0 follows the last lane, so a forced fill from scratch continues the stream.
    load_lane(kLanes, x);
    store_lane(0, x);
    g_state.position = 0;
}

void ensure_seeded() {
    if (g_state.flags[0] != 0) return;
    for (int &l : g_state.limbs) l = 0;
    for (int j = 0; j < 4; ++j) limb(j, 0) = kDefaultSeed[j];
    for (double &b : g_state.batch) b = 0.0;
    reset_normal_cache();
    g_state.flags[0] = 1;
    refill(true);
}

// Starts of the segments of |X| for the standard normal X: P(|X| > kSegment[i]) = 2^-i.  Over segment
// i < 40 the density falls by exp(-G(x)), G(x) = x (start + x/2) <= 0.69 < 1, as Forsythe's comparison
// of descending runs requires.  Values from the inverse error function at 40 digits.
constexpr double kSegment[41] = {
    0.0, 0.67448975019608174, 1.1503493803760082, 1.5341205443525463, 1.8627318674216515,
    2.1538746940614562, 2.4175590162365051, 2.6600674686174597, 2.8856349124267571, 3.0972690781987845,
    3.2971933456919633, 3.4871041041144311, 3.668329285121323, 3.8419306855019109, 4.008772594168585,
    4.1695693233491058, 4.3249190408260463, 4.4753284246542034, 4.6212310014992472, 4.763001034267814,
    4.900964207963193, 5.0354059694639272, 5.1665781197287531, 5.2947040848545981, 5.419983174916868,
    5.5425940578029398, 5.6626976174594387, 5.7804393244789342, 5.8959512167395699, 6.0093535655307439,
    6.1207562859719408, 6.2302601379890432, 6.3379577545537893, 6.4439345265385642, 6.5482693678317308,
    6.6510353798930105, 6.752300431407015, 6.8521276658960675, 6.9505759479167499, 7.0477002566644087,
    7.1435520343521893};
constexpr int kTailSegment = 40;
constexpr int kRejectionLimit = 100000;

// |X| in the tail beyond the last segment start s: x = sqrt(s^2 - 2 log u) accepted when v x < s.
double normal_tail(double s) {
    for (int it = 0; it < kRejectionLimit; ++it) {
        const double u = basic_uniform();
        const double v = basic_uniform();
        if (u <= 0.0) continue;
        const double x = std::sqrt(s * s - 2.0 * std::log(u));
        if (v * x < s) return x;
    }
    return s;
}

// A standard normal deviate.  The carried uniform gives the sign (its first bit), the segment (the
// count of further doublings below 0.5) and the place within the segment (what is left).  Within a
// segment, x = width u is accepted when the descending run t = G(x) > v1 > v2 > ... has even length,
// which happens with probability exp(-G(x)); the uniform that ends the run, rescaled to (0, 1), is
// independent of all before it and is carried on, to the next try or to the next call.
double standard_normal() {
    double c = g_state.normal[0];
    if (!(c >= 0.0 && c < 1.0)) c = basic_uniform();
    c += c;
    double sign = 1.0;
    if (c >= 1.0) {
        c -= 1.0;
        sign = -1.0;
    }
    int i = 0;
    while (c < 0.5 && i < kTailSegment) {
        c += c;
        ++i;
    }
    g_state.normal[1] = sign;
    if (i == kTailSegment) {
        g_state.normal[0] = 1.0;
        return sign * normal_tail(kSegment[kTailSegment]);
    }
    const double start = kSegment[i];
    const double width = kSegment[i + 1] - start;
    double u = c + c - 1.0;
    for (int it = 0; it < kRejectionLimit; ++it) {
        const double x = width * u;
        double previous = x * (start + 0.5 * x);
        int run = 0;
        double v = basic_uniform();
        while (v <= previous && run < kRejectionLimit) {
            previous = v;
            ++run;
            v = basic_uniform();
        }
        u = (v - previous) / (1.0 - previous);
        if (run % 2 == 0) {
            g_state.normal[0] = u;
            return sign * (start + x);
        }
    }
    g_state.normal[0] = 1.0;
    return sign * start;
}

// The Wichmann-Hill sets.
struct WichmannHillSet {
    std::uint32_t m[4];
    std::uint32_t p[4];
};
constexpr WichmannHillSet kWichmannHill[random_detail::kWichmannHillSets] = {
#include "statistics/wichmann_hill_table.inc"
};

double wichmann_hill_step(int igen, int iseed[]) {
    const WichmannHillSet &set = kWichmannHill[igen - 1];
    double sum = 0.0;
    for (int k = 0; k < 4; ++k) {
        const std::uint32_t p = set.p[k];
        std::uint32_t s = static_cast<std::uint32_t>(iseed[k]);
        if (s == 0 || s >= p) s = s % p == 0 ? 1u : s % p;
        s = set.m[k] * s % p;
        iseed[k] = static_cast<int>(s);
        sum += static_cast<double>(s) / static_cast<double>(p);
    }
    return sum - std::floor(sum);
}

double explicit_uniform(int igen, int iseed[]) {
    if (igen == 0) {
        std::uint32_t x[4];
        for (int j = 0; j < 4; ++j) x[j] = static_cast<std::uint32_t>(iseed[j]) & kMask;
        multiply(kMultiplier, x);
        for (int j = 0; j < 4; ++j) iseed[j] = static_cast<int>(x[j]);
        return limbs_to_uniform(x);
    }
    if (igen < 0 || igen > random_detail::kWichmannHillSets) return 0.0;
    return wichmann_hill_step(igen, iseed);
}

} // namespace

double basic_uniform() {
    ensure_seeded();
    if (g_state.position < 0 || g_state.position >= kLanes) refill(false);
    return g_state.batch[g_state.position++];
}

double basic_normal(double xmu, double sd) { return xmu + standard_normal() * sd; }

namespace random_detail {
void multiply_mod_2_60(const std::uint32_t m[4], std::uint32_t x[4]) { multiply(m, x); }
} // namespace random_detail

} // namespace zek

extern "C" {

double G05_UNIFORM(void) { return zek::basic_uniform(); }

void G05_REFILL(int force) {
    zek::ensure_seeded();
    zek::refill(force != 0);
}

void G05_STATE(int **limbs, double **batch, int **position, int **flags, double **normal) {
    zek::ensure_seeded();
    if (limbs != nullptr) *limbs = zek::g_state.limbs;
    if (batch != nullptr) *batch = zek::g_state.batch;
    if (position != nullptr) *position = &zek::g_state.position;
    if (flags != nullptr) *flags = zek::g_state.flags;
    if (normal != nullptr) *normal = zek::g_state.normal;
}

void G05_SEED(int i) {
    zek::ensure_seeded();
    const std::uint32_t m = i < 0 ? 0u - static_cast<std::uint32_t>(i) : static_cast<std::uint32_t>(i);
    const std::uint32_t high = m / 8192u;
    zek::limb(0, 0) = static_cast<int>((m % 8192u) * 4u + 2u);
    zek::limb(1, 0) = static_cast<int>(high & zek::kMask);
    zek::limb(2, 0) = static_cast<int>((high >> 15) & zek::kMask);
    zek::limb(3, 0) = static_cast<int>((high >> 30) & zek::kMask);
    zek::reset_normal_cache();
    zek::refill(true);
    zek::g_state.position += 1;
}

double G05_UNIFORM_AB(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return a + b;
    const double lo = a < b ? a : b;
    const double hi = a < b ? b : a;
    if (lo == hi) return lo;
    const double u = zek::basic_uniform();
    // With bounds of one sign hi - lo cannot overflow; across zero the convex combination cannot.
    const double r = (lo >= 0.0 || hi <= 0.0) ? lo + (hi - lo) * u : lo * (1.0 - u) + hi * u;
    if (r < lo) return lo;
    if (r > hi) return hi;
    return r;
}

double G05_NORMAL(double xmu, double sd) { return zek::basic_normal(xmu, sd); }

double G05_CAUCHY(double xmed, double semiqr) {
    for (int it = 0; it < 1000000; ++it) {
        const double u = 2.0 * zek::basic_uniform() - 1.0;
        const double v = zek::basic_uniform();
        if (v > 0.0 && v * v + u * u < 1.0) return xmed + semiqr * (u / v);
    }
    return xmed;
}

void g05ehc(int index[], int n, ZekFail *fail) {
    zek::clear_fail(fail);
    if (n < 1) {
        zek::raise_int_arg(fail, "g05ehc", ZE_INT_ARG_LT, "n", "1", n);
        return;
    }
    for (int i = 2; i <= n; ++i) {
        int j = 1 + static_cast<int>(zek::basic_uniform() * i);
        if (j > i) j = i;
        const int t = index[j - 1];
        index[j - 1] = index[i - 1];
        index[i - 1] = t;
    }
    zek::raise_success(fail, "g05ehc");
}

double G05_EXPLICIT_UNIFORM(const int *igen, int iseed[]) { return zek::explicit_uniform(*igen, iseed); }
double G05_EXPLICIT_UNIFORM_V(int igen, int iseed[]) { return zek::explicit_uniform(igen, iseed); }

double G05_WICHMANN_HILL(int igen, int iseed[]) {
    if (igen < 1 || igen > zek::random_detail::kWichmannHillSets) return 0.0;
    return zek::wichmann_hill_step(igen, iseed);
}

void G05_EXPLICIT_DEFAULT(int *igen, int iseed[]) {
    *igen = 0;
    for (int j = 0; j < 4; ++j) iseed[j] = zek::kDefaultSeed[j];
}

} // extern "C"
