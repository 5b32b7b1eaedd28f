// Integration over a ball by shells of integer lattice points, and the adaptor of the chapter's
// IFAIL-layer user functions.
//
// The points of the lattice Z^n with |k|^2 = s form the orbits of the non-increasing vectors with that
// sum of squares under permutations and sign changes; the mean over such a set is exact for every
// polynomial of degree 3 in the direction, and the sets of many shells spread evenly over the sphere.
// The shells s = 0..S are placed at radius R g(sqrt(s/S)) and summed by the trapezoidal rule in s/S;
// doubling S gives the next estimate, and the difference of two estimates the error.
#include <algorithm>
#include <cmath>

#include "../frame/adaptor.h"
#include "../frame/ifail.h"
#include "../frame/machine.h"
#include "zek2/d01.h"
#include "zek2/frame.h"
#include "zek2/x02.h"

namespace {

constexpr long kEvaluationBudget = 4000000;
constexpr int kMaxLevel = 40;

int isqrt(int v) {
    int r = static_cast<int>(std::sqrt(static_cast<double>(v)));
    while (r > 0 && r * r > v) --r;
    while ((r + 1) * (r + 1) <= v) ++r;
    return r;
}

// Radial grading of a method: g(t), g'(t) and g(t)/t (its limit g'(0) at t = 0).
struct Grading {
    double g, dg, q;
};
Grading grade(int method, double t) {
    switch (method) {
    case 1:
    case 3: return {t * t, 2.0 * t, t};
    case 5: return {t * (2.0 - t), 2.0 * (1.0 - t), 2.0 - t};
    case 6: return {t * t * (3.0 - 2.0 * t), 6.0 * t * (1.0 - t), t * (3.0 - 2.0 * t)};
    default: return {t, 1.0, 1.0};
    }
}

// Surface of the unit sphere in n dimensions.
double unit_surface(int n, double pi) { return n == 2 ? 2.0 * pi : n == 3 ? 4.0 * pi : 2.0 * pi * pi; }

// The number of points in the orbit of PARTS: distinct permutations times sign choices.
long orbit_size(int n, const int *parts) {
    long size = 1;
    for (int i = 2; i <= n; ++i) size *= i;
    int run = 1;
    for (int i = 1; i <= n; ++i) {
        if (i < n && parts[i] == parts[i - 1]) {
            ++run;
            continue;
        }
        for (int k = 2; k <= run; ++k) size /= k;
        run = 1;
    }
    for (int i = 0; i < n; ++i)
        if (parts[i] != 0) size *= 2;
    return size;
}

// Polar coordinates of x: r, then the angles, the last over [0, 2 pi).
void to_polar(int n, const double *x, double *polar, double pi) {
    double tail = 0.0;
    for (int i = 0; i < n; ++i) tail += x[i] * x[i];
    polar[0] = std::sqrt(tail);
    for (int i = 0; i < n - 2; ++i) {
        const double norm = std::sqrt(tail);
        polar[i + 1] = norm > 0.0 ? std::acos(std::clamp(x[i] / norm, -1.0, 1.0)) : 0.0;
        tail -= x[i] * x[i];
        if (tail < 0.0) tail = 0.0;
    }
    double phi = std::atan2(x[n - 1], x[n - 2]);
    if (phi < 0.0) phi += 2.0 * pi;
    polar[n - 1] = phi;
}

struct Sphere {
    ZekD01Function f;
    int n, method, icoord;
    double radius, pi;
    int *iuser;
    double *ruser;
    long evaluations;
};

// Points of the lattice shells s = 0..S.
long lattice_points(int n, int big_s) {
    long count = 0;
    int parts[4], rest[4];
    for (int s = 0; s <= big_s; ++s) {
        int state = 0;
        while (D01JA_PARTITION_STEP(n, s, parts, rest, &state)) count += orbit_size(n, parts);
    }
    return count;
}

// The mean of F over the lattice shell s placed at radius r; false when the shell is empty.
bool shell_mean(Sphere &sp, int s, double r, double *mean) {
    const int n = sp.n;
    double x[4], polar[4];
    if (sp.icoord == 2) {
        x[0] = r;
        for (int i = 1; i < n; ++i) x[i] = 0.0;
        *mean = D01_ADAPT_F(sp.f, n, x, sp.iuser, sp.ruser);
        ++sp.evaluations;
        return true;
    }
    int parts[4], rest[4], perm[4];
    int state = 0, count = 0;
    double sum = 0.0;
    const double scale = s > 0 ? r / std::sqrt(static_cast<double>(s)) : 0.0;
    while (D01JA_PARTITION_STEP(n, s, parts, rest, &state)) {
        int signs = 0, orbit_state = 0;
        while (D01JA_ORBIT_STEP(n, parts, perm, &signs, scale, x, &orbit_state)) {
            if (sp.icoord == 1) {
                to_polar(n, x, polar, sp.pi);
                sum += D01_ADAPT_F(sp.f, n, polar, sp.iuser, sp.ruser);
            } else {
                sum += D01_ADAPT_F(sp.f, n, x, sp.iuser, sp.ruser);
            }
            ++count;
        }
    }
    sp.evaluations += count;
    if (count == 0) return false;
    *mean = sum / count;
    return true;
}

// The estimate with shells 0..S: trapezoidal rule in t = s/S over the shells that hold points.
double ball_estimate(Sphere &sp, int big_s) {
    const int n = sp.n;
    double total = 0.0, t_prev = 0.0, h_prev = 0.0;
    bool first = true;
    for (int s = 0; s <= big_s; ++s) {
        const double t = static_cast<double>(s) / big_s;
        const double rho = std::sqrt(t);
        const Grading gr = grade(sp.method, rho);
        // d(volume) = sigma R^n g^(n-1) g' d(rho), d(rho) = dt / (2 rho).  A shell of weight 0 (the
        // centre, unless n = 2 and the grading is none) is not evaluated, so an integrand singular there
        // is never called at its singularity.
        const double weight = 0.5 * gr.q * std::pow(gr.g, n - 2) * gr.dg;
        double mean = 0.0;
        if (weight != 0.0 && !shell_mean(sp, s, sp.radius * gr.g, &mean)) continue;
        const double h = weight != 0.0 ? weight * mean : 0.0;
        if (!first) total += 0.5 * (t - t_prev) * (h + h_prev);
        first = false;
        t_prev = t;
        h_prev = h;
    }
    return unit_surface(n, sp.pi) * std::pow(sp.radius, n) * total;
}

// The integration over a ball, D01JAF.
enum D01jafExit {
    kNdimAbove4, kNdimBelow2, kMethodNegative, kMethodAbove6, kIcoordNegative, kIcoordAbove2,
    kMethod3NotRadial, kMethod4NotRadial, kRadialNot3Or4, kRadiusInvalid, kAccuracyTryMethod, kAccuracy,
};
constexpr zek::ExitRow kD01jafExits[] = {
    {4, 99999, " ** On entry, NDIM .gt. 4: NDIM =%16ld."},
    {4, 99998, " ** On entry, NDIM .lt. 2: NDIM =%16ld."},
    {4, 99997, " ** On entry, METHOD .lt. 0: METHOD =%16ld."},
    {4, 99996, " ** On entry, METHOD .gt. 6: METHOD =%16ld."},
    {4, 99995, " ** On entry, ICOORD .lt. 0: ICOORD =%16ld."},
    {4, 99994, " ** On entry, ICOORD .gt. 2: ICOORD =%16ld."},
    {4, 99993, " ** On entry, METHOD .eq. 3, but ICOORD .ne. 2: ICOORD =%16ld."},
    {4, 99992, " ** On entry, METHOD .eq. 4, but ICOORD .ne. 2: ICOORD =%16ld."},
    {4, 99991, " ** On entry, METHOD .ne. 3 or 4, but ICOORD .eq. 2:\n    METHOD =%16ld."},
    {4, 99990, " ** On entry, RADIUS .lt. 0.0 or is not finite: RADIUS =%13.5E."},
    {1, 99989, " ** The required accuracy could not be achieved.\n    Try setting METHOD .eq. 3 or 4."},
    {1, 99988, " ** The required accuracy could not be achieved."},
};

} // namespace

extern "C" double D01_ADAPT_F(ZekD01Function f, int ndim, const double x[], int iuser[], double ruser[]) {
    return f(&ndim, x, iuser, ruser);
}
extern "C" double D01_ADAPT_F_ALIAS(ZekD01Function f, int ndim, const double x[], int iuser[], double ruser[])
    ZEK_ALIAS("q39512");

extern "C" int D01JA_PARTITION_STEP(int ndim, int budget, int parts[], int rest[], int *state) {
    const int n = ndim;
    if (n < 1 || budget < 0 || *state == 2) return 0;
    // Fills positions I.. as large as allowed: each part at most its predecessor and what the budget
    // leaves; the last part must then take the remainder exactly.
    auto fill = [&](int from) {
        for (int j = from; j < n; ++j) {
            const int cap = isqrt(rest[j]);
            parts[j] = j == 0 ? cap : std::min(parts[j - 1], cap);
            if (j + 1 < n) rest[j + 1] = rest[j] - parts[j] * parts[j];
        }
    };
    if (*state == 0) {
        rest[0] = budget;
        fill(0);
        *state = 1;
    } else {
        goto advance;
    }
    for (;;) {
        if (parts[n - 1] * parts[n - 1] == rest[n - 1]) return 1;
    advance:
        // Lower the rightmost part that can still be lowered with a completion left: the parts after
        // position j are at most parts[j], so (n - j) parts[j]^2 must reach the budget left at j.
        int j = n - 2;
        for (; j >= 0; --j) {
            if (parts[j] > 0) {
                const int lowered = parts[j] - 1;
                if (static_cast<long>(n - j) * lowered * lowered >= rest[j]) break;
            }
        }
        if (j < 0) {
            *state = 2;
            return 0;
        }
        --parts[j];
        if (j + 1 < n) rest[j + 1] = rest[j] - parts[j] * parts[j];
        fill(j + 1);
    }
}

extern "C" int D01JA_ORBIT_STEP(int ndim, const int parts[], int perm[], int *signs, double scale, double x[],
                                int *state) {
    const int n = ndim;
    if (n < 1 || *state == 2) return 0;
    if (*state == 0) {
        for (int i = 0; i < n; ++i) perm[i] = parts[i];
        std::sort(perm, perm + n);
        *signs = 0;
        *state = 1;
    } else {
        int nonzero = 0;
        for (int i = 0; i < n; ++i) nonzero += perm[i] != 0;
        ++*signs;
        if (*signs >= (1 << nonzero)) {
            *signs = 0;
            if (!std::next_permutation(perm, perm + n)) {
                *state = 2;
                return 0;
            }
        }
    }
    for (int i = 0, bit = 0; i < n; ++i) {
        double v = perm[i] * scale;
        if (perm[i] != 0) {
            if ((*signs >> bit) & 1) v = -v;
            ++bit;
        }
        x[i] = v;
    }
    return 1;
}

extern "C" void D01JAF_WORKER(ZekD01Function f, int ndim, double radius, double epsa, double epsr, int method,
                              int icoord, double *result, double *esterr, int *nevals, int iuser[], double ruser[],
                              char *errbuf, int *ifail, int) {
    zek::FailureExit exit("D01JAF", errbuf, ifail);
    auto bad = [&](D01jafExit row, zek::MessageValue value) { zek::take(exit, kD01jafExits, row, {value}); };
    if (ndim > 4) return bad(kNdimAbove4, ndim);
    if (ndim < 2) return bad(kNdimBelow2, ndim);
    if (method < 0) return bad(kMethodNegative, method);
    if (method > 6) return bad(kMethodAbove6, method);
    if (icoord < 0) return bad(kIcoordNegative, icoord);
    if (icoord > 2) return bad(kIcoordAbove2, icoord);
    if (method == 3 && icoord != 2) return bad(kMethod3NotRadial, icoord);
    if (method == 4 && icoord != 2) return bad(kMethod4NotRadial, icoord);
    if (icoord == 2 && method != 3 && method != 4) return bad(kRadialNot3Or4, method);
    if (!(radius >= 0.0) || !std::isfinite(radius)) return bad(kRadiusInvalid, radius);
    Sphere sp{f, ndim, method, icoord, radius, X01_PI(), iuser, ruser, 0};
    (void)zek::safe_minimum();
    const double tol_a = std::fabs(epsa), tol_r = std::fabs(epsr);
    double previous = 0.0, estimate = 0.0, error = zek::largest();
    bool converged = false;
    for (int level = 0; level <= kMaxLevel; ++level) {
        const int big_s = 4 << level;
        const long cost = icoord == 2 ? big_s + 1L : lattice_points(ndim, big_s);
        if (level >= 2 && sp.evaluations + cost > kEvaluationBudget) break;
        estimate = ball_estimate(sp, big_s);
        if (!std::isfinite(estimate)) break;
        if (level > 0) {
            error = std::fabs(estimate - previous);
            if (error <= std::max(tol_a, tol_r * std::fabs(estimate))) {
                converged = true;
                break;
            }
        }
        previous = estimate;
    }
    *result = estimate;
    *esterr = std::isfinite(estimate) ? error : estimate;
    *nevals = static_cast<int>(sp.evaluations);
    if (converged)
        exit.succeed();
    else
        zek::take(exit, kD01jafExits, method < 3 ? kAccuracyTryMethod : kAccuracy);
}

extern "C" void D01JAF(ZekD01Function f, const int *ndim, const double *radius, const double *epsa, const double *epsr,
                       const int *method, const int *icoord, double *result, double *esterr, int *nevals, int iuser[],
                       double ruser[], int *ifail) {
    zek::Front front("D01JAF");
    ZEK_MARK_REAL(result);
    ZEK_MARK_REAL(esterr);
    ZEK_MARK_INTEGER(nevals);
    D01JAF_WORKER(f, *ndim, *radius, *epsa, *epsr, *method, *icoord, result, esterr, nevals, iuser, ruser,
                  front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}
