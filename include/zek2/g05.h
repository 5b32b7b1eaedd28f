/* Chapter G05: pseudo-random numbers.
 *
 * The basic generator is one process-wide stream: x(i+1) = a x(i) mod 2^60 with a = 13^13, the state
 * held as four 15-bit limbs, least significant first, so that no product passes 32 bits.  Its uniforms
 * are u = (l3 2^15 + l2) 2^-30 + (l1 2^15 + l0) 2^-60 of the limbs l0..l3 of each new state, clamped to
 * 1 - eps (eps = 1.11130722679765e-16): no uniform is ever 1.0.  Numbers are made 63 at a time:
 * lane k (1..63) of a batch holds a^k times the state the batch started from, and the next batch is
 * each lane times a^63, so the stream is x0 a, x0 a^2, x0 a^3, ... without a gap.
 *
 * A program that never seeds starts from the default state (limbs 6698, 7535, 26792, 30140) and its
 * first uniform is that of a times it.  G05_SEED starts from the seed's state s and passes over the
 * first value, so its first uniform is that of a^2 s.  Nothing is seeded from the clock.
 *
 * The explicit-state generators keep their state in the caller's array: selector 0 is the same
 * recurrence on four limbs in ISEED(1..4); selectors 1 to 273 are Wichmann-Hill generators of four
 * integers s(k) <- m(k) s(k) mod p(k), the result the fractional part of the sum of s(k)/p(k), with
 * multipliers 112..127 that are primitive roots of the primes p(k) just below 2^24.  Rows 1, 2, 3 and
 * 273 of the table are the published sets; the others take the next primes downward from row 273,
 * each with the largest multiplier not yet in its row that is a primitive root.
 *
 * Not safe from two threads: the basic generator is one instance for the process.
 */
#ifndef ZEK2_G05_H
#define ZEK2_G05_H

#include "types.h"

ZEK_BEGIN_DECLS

/* G05_UNIFORM: the next uniform of the basic generator, in (0, 1) (exactly 0.0 only as the
 * arithmetic allows, never 1.0).  Seeds itself from the default state at first use. */
ZEK_API double G05_UNIFORM(void) ZEK_SYMBOL("q23445");

/* G05_REFILL: makes the next batch of 63 uniforms and sets the position to 0.  FORCE nonzero (or a
 * pending restart) makes it from the state in lane 0 by 63 steps of a; otherwise every lane advances
 * by a^63. */
ZEK_API void G05_REFILL(int force) ZEK_SYMBOL("q70229");

/* G05_STATE: hands out the generator's state, seeding it with the default state if this is its first
 * use: LIMBS (four arrays of 64 ints, limb j of lane k at limbs[64 j + k]), BATCH (63 doubles),
 * POSITION (one int, 0..63), FLAGS (two ints: seeded, restart pending) and NORMAL (two doubles: the
 * carried uniform of G05_NORMAL, 1.0 when none, and its sign, and the batch pacing constant 256.0
 * behind them, three doubles in all).  Any pointer may be null. */
ZEK_API void G05_STATE(int **limbs, double **batch, int **position, int **flags, double **normal)
    ZEK_SYMBOL("q96702");

/* G05_SEED: restarts the basic generator from the integer I; I and -I give one stream.  State limbs
 * (|I| mod 8192) 4 + 2, then the next three 15-bit pieces of |I| / 8192; the first value of the new
 * batch is passed over. */
ZEK_API void G05_SEED(int i) ZEK_SYMBOL("q29740");

/* G05_UNIFORM_AB: a uniform between A and B, in either order, always within [min, max] and without
 * overflow for any finite bounds; equal bounds give that bound (no number drawn), a NaN bound NaN. */
ZEK_API double G05_UNIFORM_AB(double a, double b) ZEK_SYMBOL("q84057");

/* G05_NORMAL: a normal deviate of mean XMU and standard deviation SD (a negative SD reflects it), by
 * the rejection method of Forsythe's kind over 41 segments of equal probability halving: segment i of
 * |X| starts at the point where P(|X| > x) = 2^-i; the last one is the tail beyond 7.14 by a
 * comparison of exponentials.  One uniform carries over from one call to the next. */
ZEK_API double G05_NORMAL(double xmu, double sd) ZEK_SYMBOL("q17488");

/* G05_CAUCHY: a Cauchy deviate of median XMED and half-width SEMIQR: XMED + SEMIQR (2u - 1)/v with
 * (u, v) drawn until v^2 + (2u - 1)^2 < 1 (at most 10^6 pairs; then XMED). */
ZEK_API double G05_CAUCHY(double xmed, double semiqr) ZEK_SYMBOL("q87507");

/* g05ehc: permutes index[0..n-1] at random by n - 1 exchanges, element j (drawn from 1..i) with
 * element i for i = 2..n.  n = 1 draws nothing.  Fails with ZE_INT_ARG_LT (n < 1), index unchanged. */
ZEK_API void g05ehc(int index[], int n, ZekFail *fail) ZEK_SYMBOL("q44238");

/* G05_EXPLICIT_UNIFORM: the next uniform of the explicit-state generator *IGEN with state ISEED (four
 * ints).  A selector outside 0..273 returns 0.0 and leaves ISEED alone.  Wichmann-Hill states outside
 * 1..p(k)-1 are brought into it first (0 goes to 1), so no state sticks at zero. */
ZEK_API double G05_EXPLICIT_UNIFORM(const int *igen, int iseed[]) ZEK_SYMBOL("q27363");
/* The same with the selector by value. */
ZEK_API double G05_EXPLICIT_UNIFORM_V(int igen, int iseed[]) ZEK_SYMBOL("q50875");
/* G05_WICHMANN_HILL: one step of Wichmann-Hill generator IGEN (1..273) on ISEED; other selectors 0.0. */
ZEK_API double G05_WICHMANN_HILL(int igen, int iseed[]) ZEK_SYMBOL("q51060");
/* G05_EXPLICIT_DEFAULT: *IGEN = 0 and ISEED(1..4) the default state of the basic generator. */
ZEK_API void G05_EXPLICIT_DEFAULT(int *igen, int iseed[]) ZEK_SYMBOL("q93486");

ZEK_END_DECLS

#endif
