// Adaptive cubature over a box: a fully symmetric rule of degree 7 with an embedded rule of degree 5 on
// each region (the difference of the two is the region's error), and bisection of the region with the
// largest error along the axis where the integrand's fourth difference is largest.
#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "../frame/raise.h"
#include "zek2/d01.h"

namespace {

constexpr int kMinDim = 2, kMaxDim = 15;

// Generators of the rule on [-1, 1]^n: the centre; +-l2 and +-l3 on each axis; (+-l4, +-l4) on each
// pair of axes; (+-l5, ..., +-l5) at the vertices of a scaled cube.
const double kL2 = std::sqrt(9.0 / 70.0);
const double kL4 = std::sqrt(9.0 / 10.0);
const double kL5 = std::sqrt(9.0 / 19.0);
const double kRatio = (9.0 / 70.0) / (9.0 / 10.0);  // (l2 / l3)^2, l3 = l4

// Points of one application of the rule in NDIM dimensions.
long rule_points(int ndim) { return (1L << ndim) + 2L * ndim * ndim + 2L * ndim + 1; }

struct Region {
    double integral;
    double error;
    int axis;  // the axis along which the region is split next
    std::ptrdiff_t at;  // offset of centre and half widths in the shared store
};

// Applies both rules to the region with CENTRE and HALF widths; returns false when f gave a value that
// is not finite.
bool apply_rule(int n, ZekMultiFunction f, void *user, const double *centre, const double *half, double *x,
                Region *region) {
    double volume = 1.0;
    for (int i = 0; i < n; ++i) volume *= 2.0 * half[i];
    const double dn = n;
    const double w1 = (12824.0 - 9120.0 * dn + 400.0 * dn * dn) / 19683.0, w2 = 980.0 / 6561.0,
                 w3 = (1820.0 - 400.0 * dn) / 19683.0, w4 = 200.0 / 19683.0, w5 = 6859.0 / 19683.0;
    const double v1 = (729.0 - 950.0 * dn + 50.0 * dn * dn) / 729.0, v2 = 245.0 / 486.0,
                 v3 = (265.0 - 100.0 * dn) / 1458.0, v4 = 25.0 / 729.0;
    std::copy(centre, centre + n, x);
    const double f0 = f(n, x, user);
    double s2 = 0.0, s3 = 0.0, s4 = 0.0, s5 = 0.0;
    double best = -1.0;
    int axis = 0;
    bool finite = std::isfinite(f0);
    for (int i = 0; i < n; ++i) {
        double d2 = 0.0, d3 = 0.0;
        x[i] = centre[i] - kL2 * half[i];
        d2 += f(n, x, user);
        x[i] = centre[i] + kL2 * half[i];
        d2 += f(n, x, user);
        x[i] = centre[i] - kL4 * half[i];
        d3 += f(n, x, user);
        x[i] = centre[i] + kL4 * half[i];
        d3 += f(n, x, user);
        x[i] = centre[i];
        s2 += d2;
        s3 += d3;
        const double diff = std::fabs(d2 - 2.0 * f0 - kRatio * (d3 - 2.0 * f0));
        if (diff > best) {
            best = diff;
            axis = i;
        }
    }
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) {
            for (int si = -1; si <= 1; si += 2) {
                for (int sj = -1; sj <= 1; sj += 2) {
                    x[i] = centre[i] + si * kL4 * half[i];
                    x[j] = centre[j] + sj * kL4 * half[j];
                    s4 += f(n, x, user);
                }
            }
            x[j] = centre[j];
        }
        x[i] = centre[i];
    }
    // Vertices of the scaled cube in Gray-code order: one coordinate changes from one to the next.
    for (int i = 0; i < n; ++i) x[i] = centre[i] - kL5 * half[i];
    const unsigned long corners = 1UL << n;
    for (unsigned long k = 0; k < corners; ++k) {
        if (k > 0) {
            int bit = 0;
            while (((k >> bit) & 1UL) == 0) ++bit;
            const bool up = ((k ^ (k >> 1)) >> bit) & 1UL;
            x[bit] = centre[bit] + (up ? kL5 : -kL5) * half[bit];
        }
        s5 += f(n, x, user);
    }
    const double r7 = volume * (w1 * f0 + w2 * s2 + w3 * s3 + w4 * s4 + w5 * s5 / static_cast<double>(corners));
    const double r5 = volume * (v1 * f0 + v2 * s2 + v3 * s3 + v4 * s4);
    region->integral = r7;
    region->error = std::fabs(r7 - r5);
    region->axis = axis;
    finite = finite && std::isfinite(r7) && std::isfinite(region->error) && std::isfinite(best);
    return finite;
}

bool smaller_error(const Region &u, const Region &v) { return u.error < v.error; }

} // namespace

extern "C" void d01wcc(int ndim, ZekMultiFunction f, const double a[], const double b[], int *minpts, int maxpts,
                       double eps, double *finest, double *acc, void *user, ZekFail *fail) {
    static const char kName[] = "d01wcc";
    zek::clear_fail(fail);
    if (ndim < kMinDim || ndim > kMaxDim) {
        zek::raise_formatted(fail, kName, ZE_INT_ARG_CONS, "ndim", static_cast<long>(ndim), "2 <= ndim <= 15");
        return;
    }
    if (*minpts > maxpts) {
        zek::raise_formatted(fail, kName, ZE_2_INT_ARG_GT, "minpts", static_cast<long>(*minpts), "maxpts",
                             static_cast<long>(maxpts), "minpts", "maxpts");
        return;
    }
    const long cost = rule_points(ndim);
    if (maxpts < cost) {
        zek::raise_formatted(fail, kName, ZE_INT_ARG_CONS, "maxpts", static_cast<long>(maxpts),
                             "maxpts >= pow(2, ndim) + 2*ndim*ndim + 2*ndim + 1");
        return;
    }
    if (!(eps >= 0.0)) {
        zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "eps", "0.0", eps);
        return;
    }
    for (int i = 0; i < ndim; ++i) {
        if (!std::isfinite(a[i]) || !std::isfinite(b[i])) {
            zek::raise_formatted(fail, kName, ZE_REAL, std::isfinite(a[i]) ? "b[i]" : "a[i]",
                                 std::isfinite(a[i]) ? b[i] : a[i], "the bounds of the box must be finite");
            return;
        }
    }
    const int n = ndim;
    // Regions are at most maxpts / cost; the store grows as they are made.
    std::vector<Region> heap;
    std::vector<double> store;  // per region: centre, then half widths
    std::vector<double> x(static_cast<std::size_t>(n));
    long used = 0;
    bool finite = true;
    double total = 0.0, error = 0.0;
    try {
        store.resize(2 * static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i) {
            store[i] = 0.5 * (a[i] + b[i]);
            store[n + i] = 0.5 * (b[i] - a[i]);
        }
        Region first{};
        first.at = 0;
        finite = apply_rule(n, f, user, &store[0], &store[n], x.data(), &first);
        used = cost;
        heap.push_back(first);
        total = first.integral;
        error = first.error;
        // Subdivide while the goal or the least spending is not met and two more applications fit.
        while (finite && (error > eps * std::fabs(total) || used < *minpts) && used + 2 * cost <= maxpts) {
            std::pop_heap(heap.begin(), heap.end(), smaller_error);
            const Region worst = heap.back();
            heap.pop_back();
            const std::ptrdiff_t lower = worst.at;
            const std::ptrdiff_t upper = static_cast<std::ptrdiff_t>(store.size());
            store.resize(store.size() + 2 * static_cast<std::size_t>(n));
            std::copy(store.begin() + lower, store.begin() + lower + 2 * n, store.begin() + upper);
            const int k = worst.axis;
            const double h = 0.5 * store[lower + n + k];
            store[lower + n + k] = h;
            store[upper + n + k] = h;
            store[lower + k] -= h;
            store[upper + k] += h;
            Region r1{}, r2{};
            r1.at = lower;
            r2.at = upper;
            finite = apply_rule(n, f, user, &store[lower], &store[lower + n], x.data(), &r1) &&
                     apply_rule(n, f, user, &store[upper], &store[upper + n], x.data(), &r2);
            used += 2 * cost;
            total += r1.integral + r2.integral - worst.integral;
            heap.push_back(r1);
            std::push_heap(heap.begin(), heap.end(), smaller_error);
            heap.push_back(r2);
            std::push_heap(heap.begin(), heap.end(), smaller_error);
            // Updated sums lose the small errors to cancellation in time: sum afresh now and then.
            error += r1.error + r2.error - worst.error;
            if (heap.size() % 64 == 0 || error <= eps * std::fabs(total)) {
                error = 0.0;
                for (const Region &r : heap) error += r.error;
            }
        }
    } catch (const std::bad_alloc &) {
        zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
        return;
    }
    if (finite) {
        total = 0.0;
        for (const Region &r : heap) total += r.integral;
    }
    *minpts = static_cast<int>(used);
    *finest = finite ? total : std::nan("");
    *acc = finite ? (total != 0.0 ? error / std::fabs(total) : error) : std::nan("");
    if (!finite) {
        zek::raise_plain(fail, kName, ZE_QUAD_BAD_SUBDIV);
    } else if (*acc > eps) {
        zek::raise_formatted(fail, kName, ZE_QUAD_MAX_INTEGRAND_EVAL, "maxpts", static_cast<long>(maxpts));
    } else {
        zek::raise_success(fail, kName);
    }
}
