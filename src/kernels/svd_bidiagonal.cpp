// Implicit QR on an upper bidiagonal matrix, and the exported F02SYZ around it.
//
// Each sweep is the bulge chase of one shifted QR step on B'B done on B itself.  The chase runs from the
// end of the active block with the larger diagonal element towards the other, so that the small values
// appear at the end where the deflation test looks first.  The shift is the singular value of the 2 by 2
// block at the far end nearest to its last diagonal element; when it is negligible beside the block's
// smallest value the sweep is unshifted, which keeps tiny values accurate.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "kernels/level1.h"
#include "kernels/rotations.h"
#include "kernels/svd.h"
#include "zek2/f02.h"

namespace zek {

namespace {

// (c, s) with c*f + s*g = r and c*g - s*f = 0, r >= 0 unless f and g are both 0 (then c = 1, s = 0).
void rotation(double f, double g, double *c, double *s, double *r) {
    if (g == 0.0) {
        *c = f >= 0.0 ? 1.0 : -1.0;
        *s = 0.0;
        *r = std::fabs(f);
        return;
    }
    if (f == 0.0) {
        *c = 0.0;
        *s = g > 0.0 ? 1.0 : -1.0;
        *r = std::fabs(g);
        return;
    }
    const double rr = std::hypot(f, g);
    *c = f / rr;
    *s = g / rr;
    *r = rr;
}

// The smaller singular value of the 2 by 2 upper triangular [f g; 0 h], without overflow.
double smaller_singular_value(double f, double g, double h) {
    const double fa = std::fabs(f), ga = std::fabs(g), ha = std::fabs(h);
    const double fhmn = std::min(fa, ha), fhmx = std::max(fa, ha);
    if (fhmn == 0.0) return 0.0;
    if (ga < fhmx) {
        const double as = 1.0 + fhmn / fhmx, at = (fhmx - fhmn) / fhmx, au = (ga / fhmx) * (ga / fhmx);
        const double c = 2.0 / (std::sqrt(as * as + au) + std::sqrt(at * at + au));
        return fhmn * c;
    }
    const double au = fhmx / ga;
    if (au == 0.0) return (fhmn * fhmx) / ga;
    const double as = 1.0 + fhmn / fhmx, at = (fhmx - fhmn) / fhmx;
    const double c = 1.0 / (std::sqrt(1.0 + (as * au) * (as * au)) + std::sqrt(1.0 + (at * au) * (at * au)));
    return 2.0 * (fhmn * c) * au;
}

struct Targets {
    int ncolb;
    double *b;
    int ldb;
    int nrowy;
    double *y;
    int ldy;
    int ncolz;
    double *z;
    int ldz;
    int n;
};

// Left rotations (rows of B, columns of Y) and right ones (rows of Z) on planes (k, k+1), k = lo..hi-1
// (zero-based), given in c[k-lo], s[k-lo]; PIVOT and DIRECT as the rotation kernel takes them.
void apply_left(const Targets &t, char pivot, char direct, int lo, int hi, const double *c, const double *s) {
    if (t.ncolb > 0) rotation_apply_general('L', pivot, direct, t.n, t.ncolb, lo + 1, hi + 1, c - lo, s - lo, t.b, t.ldb);
    if (t.nrowy > 0) rotation_apply_general('R', pivot, direct, t.nrowy, t.n, lo + 1, hi + 1, c - lo, s - lo, t.y, t.ldy);
}
void apply_right(const Targets &t, char pivot, char direct, int lo, int hi, const double *c, const double *s) {
    if (t.ncolz > 0) rotation_apply_general('L', pivot, direct, t.n, t.ncolz, lo + 1, hi + 1, c - lo, s - lo, t.z, t.ldz);
}

// d(i) = 0, i < hi: rotations of row i against rows i+1..hi (planes (i, j)) carry e(i) off the end.
void chase_zero_top(int i, int hi, double *d, double *e, double *c, double *s, const Targets &t) {
    double f = e[i];
    e[i] = 0.0;
    for (int j = i + 1; j <= hi; ++j) {
        double r = 0.0, cj = 0.0, sj = 0.0;
        rotation(d[j], -f, &cj, &sj, &r);
        d[j] = r;
        c[j - i - 1] = cj;
        s[j - i - 1] = sj;
        if (j < hi) {
            f = sj * e[j];
            e[j] = cj * e[j];
        }
    }
    apply_left(t, 'T', 'F', i, hi, c, s);
}

// d(hi) = 0: rotations of columns j = hi-1..lo against column hi carry e(hi-1) off the top.
void chase_zero_bottom(int lo, int hi, double *d, double *e, double *c, double *s, const Targets &t) {
    double f = e[hi - 1];
    e[hi - 1] = 0.0;
    for (int j = hi - 1; j >= lo; --j) {
        double r = 0.0, cj = 0.0, sj = 0.0;
        rotation(d[j], f, &cj, &sj, &r);
        d[j] = r;
        c[j - lo] = cj;
        s[j - lo] = sj;
        if (j > lo) {
            f = -sj * e[j - 1];
            e[j - 1] = cj * e[j - 1];
        }
    }
    apply_right(t, 'B', 'B', lo, hi, c, s);
}

// One shifted sweep on the block lo..hi from the top down; rotations recorded for the targets.
void sweep_down(int lo, int hi, double shift, double *d, double *e, double *w, const Targets &t) {
    const int len = hi - lo;
    double *cr = w, *sr = w + len, *cl = w + 2 * len, *sl = w + 3 * len;
    double f = (std::fabs(d[lo]) - shift) * (sign_transfer(1.0, d[lo]) + shift / d[lo]);
    double g = e[lo];
    for (int i = lo; i < hi; ++i) {
        double c = 0.0, s = 0.0, r = 0.0;
        rotation(f, g, &c, &s, &r);
        if (i > lo) e[i - 1] = r;
        f = c * d[i] + s * e[i];
        e[i] = c * e[i] - s * d[i];
        g = s * d[i + 1];
        d[i + 1] = c * d[i + 1];
        cr[i - lo] = c;
        sr[i - lo] = s;
        rotation(f, g, &c, &s, &r);
        d[i] = r;
        f = c * e[i] + s * d[i + 1];
        d[i + 1] = c * d[i + 1] - s * e[i];
        if (i < hi - 1) {
            g = s * e[i + 1];
            e[i + 1] = c * e[i + 1];
        }
        cl[i - lo] = c;
        sl[i - lo] = s;
    }
    e[hi - 1] = f;
    apply_left(t, 'V', 'F', lo, hi, cl, sl);
    apply_right(t, 'V', 'F', lo, hi, cr, sr);
}

// The same chase from the bottom up.
void sweep_up(int lo, int hi, double shift, double *d, double *e, double *w, const Targets &t) {
    const int len = hi - lo;
    double *cl = w, *sl = w + len, *cr = w + 2 * len, *sr = w + 3 * len;
    double f = (std::fabs(d[hi]) - shift) * (sign_transfer(1.0, d[hi]) + shift / d[hi]);
    double g = e[hi - 1];
    for (int i = hi; i > lo; --i) {
        double c = 0.0, s = 0.0, r = 0.0;
        rotation(f, g, &c, &s, &r);
        if (i < hi) e[i] = r;
        f = c * d[i] + s * e[i - 1];
        e[i - 1] = c * e[i - 1] - s * d[i];
        g = s * d[i - 1];
        d[i - 1] = c * d[i - 1];
        cl[i - 1 - lo] = c;
        sl[i - 1 - lo] = -s;
        rotation(f, g, &c, &s, &r);
        d[i] = r;
        f = c * e[i - 1] + s * d[i - 1];
        d[i - 1] = c * d[i - 1] - s * e[i - 1];
        if (i > lo + 1) {
            g = s * e[i - 2];
            e[i - 2] = c * e[i - 2];
        }
        cr[i - 1 - lo] = c;
        sr[i - 1 - lo] = -s;
    }
    e[lo] = f;
    apply_left(t, 'V', 'B', lo, hi, cl, sl);
    apply_right(t, 'V', 'B', lo, hi, cr, sr);
}

// Non-negative values in descending order, the targets following.
void sign_and_sort(int n, double *d, const Targets &t) {
    for (int i = 0; i < n; ++i) {
        if (d[i] < 0.0) {
            d[i] = -d[i];
            if (t.ncolz > 0) scal(t.ncolz, -1.0, t.z + i, t.ldz);
        }
    }
    for (int i = 0; i + 1 < n; ++i) {
        int k = i;
        for (int j = i + 1; j < n; ++j)
            if (d[j] > d[k]) k = j;
        if (k == i) continue;
        std::swap(d[i], d[k]);
        if (t.ncolb > 0) swap(t.ncolb, t.b + i, t.ldb, t.b + k, t.ldb);
        if (t.nrowy > 0) swap(t.nrowy, t.y + static_cast<std::ptrdiff_t>(i) * t.ldy, 1, t.y + static_cast<std::ptrdiff_t>(k) * t.ldy, 1);
        if (t.ncolz > 0) swap(t.ncolz, t.z + i, t.ldz, t.z + k, t.ldz);
    }
}

} // namespace

int bidiagonal_qr(int n, double *d, double *e, int ncolb, double *b, int ldb, int nrowy, double *y, int ldy,
                  int ncolz, double *z, int ldz, double *work) {
    if (n < 1) return 0;
    const Targets t{ncolb, b, ldb, nrowy, y, ldy, ncolz, z, ldz, n};
    double big = 0.0;
    for (int i = 0; i < n; ++i) big = std::max(big, std::fabs(d[i]));
    for (int i = 0; i + 1 < n; ++i) big = std::max(big, std::fabs(e[i]));
    for (int i = 0; i < n; ++i)
        if (!std::isfinite(d[i])) return n;
    for (int i = 0; i + 1 < n; ++i)
        if (!std::isfinite(e[i])) return n;
    if (big == 0.0) return 0;
    // Scale into a range where the sweeps' products neither overflow nor lose the small values.
    const double eps = precision();
    const double tiny = safe_minimum();
    const double low = std::sqrt(tiny) / eps, high = 1.0 / low;
    int exponent = 0;
    if (big < low || big > high) {
        exponent = -std::ilogb(big);
        for (int i = 0; i < n; ++i) d[i] = std::ldexp(d[i], exponent);
        for (int i = 0; i + 1 < n; ++i) e[i] = std::ldexp(e[i], exponent);
    }
    int hi = n - 1;
    int sweeps = 0;
    int result = 0;
    while (hi > 0) {
        // Splitting: a negligible superdiagonal element becomes zero; the block is what lies above hi
        // and below the last zero.
        int lo = hi;
        while (lo > 0) {
            if (std::fabs(e[lo - 1]) <= eps * (std::fabs(d[lo - 1]) + std::fabs(d[lo]))) {
                e[lo - 1] = 0.0;
                break;
            }
            --lo;
        }
        if (lo == hi) {
            --hi;
            sweeps = 0;
            continue;
        }
        if (sweeps >= kSweepsPerValue * (hi + 1)) {
            result = hi + 1;
            break;
        }
        // A zero diagonal element splits the block by a chase.
        int zero = -1;
        for (int i = lo; i <= hi; ++i)
            if (std::fabs(d[i]) <= tiny) {
                d[i] = 0.0;
                zero = i;
                break;
            }
        if (zero >= 0) {
            if (zero < hi)
                chase_zero_top(zero, hi, d, e, work, work + (hi - zero), t);
            else
                chase_zero_bottom(lo, hi, d, e, work, work + (hi - lo), t);
            ++sweeps;
            continue;
        }
        const bool down = std::fabs(d[lo]) >= std::fabs(d[hi]);
        double shift = down ? smaller_singular_value(d[hi - 1], e[hi - 1], d[hi])
                            : smaller_singular_value(d[lo + 1], e[lo], d[lo]);
        const double edge = std::fabs(down ? d[lo] : d[hi]);
        if (edge > 0.0 && (shift / edge) * (shift / edge) < eps) shift = 0.0;
        if (down)
            sweep_down(lo, hi, shift, d, e, work, t);
        else
            sweep_up(lo, hi, shift, d, e, work, t);
        ++sweeps;
    }
    if (exponent != 0)
        for (int i = 0; i < n; ++i) d[i] = std::ldexp(d[i], -exponent);
    if (result == 0) sign_and_sort(n, d, t);
    return result;
}

} // namespace zek

namespace {

// F02SYZ's exit after the argument count (which builds its own record).
enum F02syzExit { kNotConverged };
constexpr zek::ExitRow kF02syzExits[] = {
    {2, 99998, "    The QR algorithm has failed to converge.\n    %6ld singular values have NOT been found."},
};

} // namespace

extern "C" void F02SYZ(const int *n, double *d, double *e, const int *ncolb, double *b, const int *ldb,
                       const int *nrowy, double *y, const int *ldy, const int *ncolz, double *z, const int *ldz,
                       double *work, int *ifail) {
    const char *name = "F02SYZ";
    zek::FailureExit exit(name, nullptr, ifail, zek::Channel::Stream);
    int errors = 0;
    auto bad = [&](long value, const char *arg, int len) {
        zek::P01_BAD_INTEGER_STREAM(value, arg, *ifail, &errors, name, len, 6);
    };
    if (*n < 0) bad(*n, "N", 1);
    if (*ncolb < 0) bad(*ncolb, "NCOLB", 5);
    if (*ncolb > 0 && *ldb < *n) bad(*ldb, "LDB", 3);
    if (*nrowy < 0) bad(*nrowy, "NROWY", 5);
    if (*nrowy > 0 && *ldy < *nrowy) bad(*ldy, "LDY", 3);
    if (*ncolz < 0) bad(*ncolz, "NCOLZ", 5);
    if (*ncolz > 0 && *ldz < *n) bad(*ldz, "LDZ", 3);
    if (errors > 0) {
        exit.fail_with_records(1, 99999, zek::parameter_error_count_record(errors), {static_cast<long>(errors)});
        return;
    }
    const int missing = zek::bidiagonal_qr(*n, d, e, *ncolb, b, *ldb, *nrowy, y, *ldy, *ncolz, z, *ldz, work);
    if (missing > 0) {
        zek::take(exit, kF02syzExits, kNotConverged, {static_cast<long>(missing)});
        return;
    }
    exit.succeed();
}
