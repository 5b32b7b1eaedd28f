// The reverse-communication engines of the scalar zero finders.
//
// Refinement keeps a bracket [best, other] with a sign change, the best point having the smaller |f|.
// Each new point replaces the end whose f has its sign.  The step from the best point is an inverse
// interpolation: linear through the best and the previous point, or quadratic (Newton form on the two
// difference quotients) through the last three points when they are distinct and the bracket has been
// slow to shrink; it is kept only when it stays well inside the bracket and is less than half the step
// before, otherwise the bracket is halved.  Three steps in a row that fail to halve the bracket force a
// bisection, so the bracket shrinks geometrically whatever f does.
#include <algorithm>
#include <cmath>

#include "analysis/roots_scalar.h"
#include "frame/machine.h"

namespace zek {

namespace {

// Elements of the refinement state.
enum : int {
    kOther = 0,
    kFOther = 1,
    kBest = 2,
    kFBest = 3,
    kPrev = 4,
    kFPrev = 5,
    kPrev2 = 6,
    kFPrev2 = 7,
    kQuot1 = 8,
    kQuot2 = 9,
    kStep = 10,
    kHalf = 11,
    kRootEps = 12,
    kTiny = 13,
    kFMax = 14,
    kPole = 15,
    kSlow = 16,
};

bool same_sign(double a, double b) { return (a > 0.0 && b > 0.0) || (a < 0.0 && b < 0.0); }

ZeroOutcome finish(double *x, double *y, double xv, double yv, int *ind, ZeroOutcome outcome) {
    *x = xv;
    *y = yv;
    *ind = 0;
    return outcome;
}

// The next point from the state, or the end of the search.
ZeroOutcome next_step(double *x, double *y, int ir, double tolx, double *c, int *ind) {
    // Ordering rotates the history too: the point displaced from best becomes the previous one, so the
    // interpolation runs through the two most recent distinct points instead of collapsing onto the best
    // point (which left nothing to interpolate and forced a bisection).
    if (std::fabs(c[kFOther]) < std::fabs(c[kFBest])) {
        c[kPrev2] = c[kPrev];
        c[kFPrev2] = c[kFPrev];
        c[kPrev] = c[kBest];
        c[kFPrev] = c[kFBest];
        std::swap(c[kBest], c[kOther]);
        std::swap(c[kFBest], c[kFOther]);
    }
    const double eps = precision();
    const double rel = ir == 1 ? 0.0 : 1.0, abs = ir == 2 ? 0.0 : 1.0;
    const double best = c[kBest];
    const double weight = std::max(std::fabs(best) * rel, abs);
    const double tol = 0.5 * tolx * weight;
    // Below this a step would not change the point.
    const double minstep = std::max(2.0 * eps * weight, 2.0 * eps * std::fabs(best)) + c[kTiny];
    // Halved first: the ends may be the largest numbers of opposite signs.
    const double half = c[kOther] / 2.0 - best / 2.0;
    c[kHalf] = half;
    if (half == 0.0 || std::fabs(half) <= tol) {
        if (c[kPole] >= 0.0) return finish(x, y, best, c[kOther], ind, ZeroOutcome::Found);
        return finish(x, y, best, c[kOther], ind, ZeroOutcome::Pole);
    }
    if (std::fabs(half) <= minstep) {
        const ZeroOutcome why = c[kPole] >= 0.0 ? ZeroOutcome::TooSmall : ZeroOutcome::Pole;
        return finish(x, y, best, c[kOther], ind, why);
    }
    const double floor = std::max(tol, minstep);
    double step = half;
    if (c[kSlow] <= 2.5) {
        const double fb = c[kFBest], fp = c[kFPrev], fq = c[kFPrev2];
        double proposal = 0.0;
        bool ok = false;
        if (fp != fb && c[kPrev] != best) {
            c[kQuot1] = (c[kPrev] - best) / (fp - fb);
            proposal = -fb * c[kQuot1];
            ok = std::isfinite(proposal);
            if (c[kSlow] > 1.5 && fq != fp && fq != fb && c[kPrev2] != c[kPrev]) {
                c[kQuot2] = (c[kPrev2] - c[kPrev]) / (fq - fp);
                const double second = (c[kQuot2] - c[kQuot1]) / (fq - fb);
                const double q = proposal + fb * fp * second;
                if (std::isfinite(q)) proposal = q;
            }
        }
        // Keep the interpolated step only well inside the bracket and shrinking fast enough.
        if (ok && same_sign(proposal, half) && std::fabs(proposal) < 1.5 * std::fabs(half) &&
            (c[kStep] == 0.0 || std::fabs(proposal) < 0.5 * std::fabs(c[kStep]) || c[kSlow] < 0.5))
            step = proposal;
    }
    if (std::fabs(step) < floor) step = half > 0.0 ? floor : -floor;
    if (!std::isfinite(best + step)) step = half;
    c[kStep] = step;
    *x = best + step;
    *y = c[kOther];
    *ind = 4;
    return ZeroOutcome::Request;
}

} // namespace

ZeroOutcome refine_bracket(double *x, double *y, double fx, double tolx, int ir, double *c, int *ind) {
    switch (*ind) {
    case 1:
        // The caller evaluates f at x first.
        c[kBest] = *x;
        c[kOther] = *y;
        *ind = 2;
        return ZeroOutcome::Request;
    case -1:
    case 2: {
        if (*ind == -1) {
            c[kBest] = *x;
            c[kOther] = *y;
        }
        if (!std::isfinite(fx)) return finish(x, y, *x, *y, ind, ZeroOutcome::Pole);
        if (fx == 0.0) return finish(x, y, *x, *x, ind, ZeroOutcome::Found);
        c[kBest] = *x;
        c[kFBest] = fx;
        c[kFMax] = std::fabs(fx);
        c[kPole] = 1.0;
        // Now f at the other end.
        *x = c[kOther];
        *y = c[kBest];
        *ind = 3;
        return ZeroOutcome::Request;
    }
    case 3: {
        if (!std::isfinite(fx)) return finish(x, y, *x, *y, ind, ZeroOutcome::Pole);
        if (fx == 0.0) return finish(x, y, *x, *x, ind, ZeroOutcome::Found);
        if (same_sign(fx, c[kFBest])) return finish(x, y, c[kBest], *x, ind, ZeroOutcome::SameSign);
        c[kOther] = *x;
        c[kFOther] = fx;
        c[kFMax] = std::max(c[kFMax], std::fabs(fx));
        c[kRootEps] = std::sqrt(precision());
        c[kTiny] = safe_minimum();
        // History: the first two points, the first step none yet.
        c[kPrev] = c[kOther];
        c[kFPrev] = c[kFOther];
        c[kPrev2] = c[kOther];
        c[kFPrev2] = c[kFOther];
        c[kStep] = 0.0;
        c[kSlow] = 0.0;
        return next_step(x, y, ir, tolx, c, ind);
    }
    default: {
        // IND 4: f at the new point.
        if (!std::isfinite(fx)) return finish(x, y, c[kBest], c[kOther], ind, ZeroOutcome::Pole);
        if (fx == 0.0) return finish(x, y, *x, *x, ind, ZeroOutcome::Found);
        // A value that has grown far beyond every value seen at the start marks a pole.
        c[kPole] = std::fabs(fx) * c[kRootEps] > c[kFMax] ? -1.0 : 1.0;
        const double before = std::fabs(c[kOther] - c[kBest]);
        c[kPrev2] = c[kPrev];
        c[kFPrev2] = c[kFPrev];
        c[kPrev] = c[kBest];
        c[kFPrev] = c[kFBest];
        if (same_sign(fx, c[kFOther])) {
            c[kOther] = c[kBest];
            c[kFOther] = c[kFBest];
        }
        c[kBest] = *x;
        c[kFBest] = fx;
        const double after = std::fabs(c[kOther] - c[kBest]);
        c[kSlow] = after > 0.5 * before ? c[kSlow] + 1.0 : 0.0;
        if (c[kSlow] > 3.5) c[kSlow] = 0.0;
        return next_step(x, y, ir, tolx, c, ind);
    }
    }
}

namespace {

// Elements of the bracket search state.
enum : int { kX0 = 0, kF0 = 1, kH = 2, kTrials = 3, kLowDone = 4, kHighDone = 5, kLast = 6 };
constexpr int kMaxTrials = 200;

} // namespace

ZeroOutcome search_bracket(double *x, double fx, double h, double boundl, double boundu, double *y, double *c,
                           int *ind) {
    if (*ind == 1) {
        *ind = 2;
        return ZeroOutcome::Request;
    }
    if (!std::isfinite(fx)) return finish(x, y, *x, *x, ind, ZeroOutcome::NoBracket);
    if (*ind == -1 || *ind == 2) {
        if (fx == 0.0) return finish(x, y, *x, *x, ind, ZeroOutcome::Found);
        c[kX0] = *x;
        c[kF0] = fx;
        c[kH] = h;
        c[kTrials] = 0.0;
        c[kLowDone] = *x == boundl ? 1.0 : 0.0;
        c[kHighDone] = *x == boundu ? 1.0 : 0.0;
    } else {
        // IND 3: f at a trial point.
        if (fx == 0.0 || !same_sign(fx, c[kF0])) return finish(x, y, *x, c[kX0], ind, ZeroOutcome::Found);
        c[kTrials] += 1.0;
        if (*x == boundl) c[kLowDone] = 1.0;
        if (*x == boundu) c[kHighDone] = 1.0;
        if (std::fabs(fx) < std::fabs(c[kF0])) {
            // Downhill: move the base and go on further in the same direction.
            c[kX0] = *x;
            c[kF0] = fx;
            c[kH] *= 2.0;
        } else {
            c[kH] *= -2.0;
        }
    }
    for (int turn = 0; turn < 2; ++turn) {
        if (c[kTrials] > kMaxTrials || (c[kLowDone] != 0.0 && c[kHighDone] != 0.0)) break;
        double next = c[kX0] + c[kH];
        if (next >= boundu) next = boundu;
        if (next <= boundl) next = boundl;
        const bool spent = (next == boundu && c[kHighDone] != 0.0) || (next == boundl && c[kLowDone] != 0.0) ||
                           next == c[kX0];
        if (spent) {
            c[kH] = -c[kH];
            continue;
        }
        *x = next;
        *y = c[kX0];
        *ind = 3;
        return ZeroOutcome::Request;
    }
    return finish(x, y, c[kX0], c[kX0], ind, ZeroOutcome::NoBracket);
}

} // namespace zek
