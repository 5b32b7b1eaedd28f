// Changes to a fitted model without going back to the data: the triangular factor R and the transformed
// response c = Q'y held in Q are rotated, extended or shortened, and the estimates follow from them.
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "frame/machine.h"
#include "frame/raise.h"
#include "kernels/qr.h"
#include "statistics/regression.h"
#include "zek2/g02.h"

namespace zek {

namespace {

using std::ptrdiff_t;

// Column-major views of the factorisation: c = Q(., 1), R = Q(., 2 .. ip + 1).
struct Factor {
    double *q;
    ptrdiff_t ld;
    double &c(ptrdiff_t i) const { return q[i]; }
    double &r(ptrdiff_t i, ptrdiff_t j) const { return q[i + (j + 1) * ld]; }
};

// The rotation (cs, sn) that takes (a, b) to (h, 0), h = hypot(a, b) >= 0; it acts as x' = cs x + sn y,
// y' = cs y - sn x.
void make_rotation(double a, double b, double *cs, double *sn, double *h) {
    const double t = std::hypot(a, b);
    if (t > 0.0) {
        *cs = a / t;
        *sn = b / t;
    } else {
        *cs = 1.0;
        *sn = 0.0;
    }
    *h = t;
}

inline void rotate(double cs, double sn, double &x, double &y) {
    const double t = cs * x + sn * y;
    y = cs * y - sn * x;
    x = t;
}

double *scratch(std::size_t count) { return static_cast<double *>(std::malloc(sizeof(double) * (count > 0 ? count : 1))); }

// Folds the row v (IP values) with response yv into R and c; returns the part of yv the rotated model
// leaves over, whose square joins the residual sum of squares.
double add_row(const Factor &f, int ip, double *v, double yv, double *cs, double *sn) {
    for (ptrdiff_t j = 0; j < ip; ++j) {
        for (ptrdiff_t i = 0; i < j; ++i) rotate(cs[i], sn[i], f.r(i, j), v[j]);
        double h;
        make_rotation(f.r(j, j), v[j], &cs[j], &sn[j], &h);
        f.r(j, j) = h;
    }
    for (ptrdiff_t i = 0; i < ip; ++i) rotate(cs[i], sn[i], f.c(i), yv);
    return yv;
}

// Removes the row v with response yv from R and c by the downdating of a triangular factor: a solves
// R'a = v, alpha^2 = 1 - |a|^2 is the row's complement of its leverage, and rotations built from the
// bottom up take (alpha, a) to (1, 0) while they carry R to the factor of the reduced data.  Returns 1
// when the row cannot be removed (a zero on the diagonal or a leverage of 1 or more: R untouched),
// otherwise 0 with *leftover the part of yv outside the model.
int remove_row(const Factor &f, int ip, double *a, double yv, double *cs, double *sn, double *leftover) {
    double norm2 = 0.0;
    for (ptrdiff_t i = 0; i < ip; ++i) {
        const double d = f.r(i, i);
        if (!(d != 0.0)) return 1;
        double s = a[i];
        for (ptrdiff_t k = 0; k < i; ++k) s -= f.r(k, i) * a[k];
        a[i] = s / d;
        norm2 += a[i] * a[i];
    }
    if (!(norm2 < 1.0)) return 1;
    double alpha = std::sqrt(1.0 - norm2);
    for (ptrdiff_t i = ip - 1; i >= 0; --i) {
        const double scale = alpha + std::fabs(a[i]);
        const double u = alpha / scale, w = a[i] / scale, nrm = std::sqrt(u * u + w * w);
        cs[i] = u / nrm;
        sn[i] = w / nrm;
        alpha = scale * nrm;
    }
    for (ptrdiff_t j = 0; j < ip; ++j) {
        double xx = 0.0;
        for (ptrdiff_t i = j; i >= 0; --i) {
            const double t = cs[i] * xx + sn[i] * f.r(i, j);
            f.r(i, j) = cs[i] * f.r(i, j) - sn[i] * xx;
            xx = t;
        }
    }
    double zeta = yv;
    for (ptrdiff_t i = 0; i < ip; ++i) {
        f.c(i) = (f.c(i) - sn[i] * zeta) / cs[i];
        zeta = cs[i] * zeta - sn[i] * f.c(i);
    }
    *leftover = zeta;
    return 0;
}

bool finite_triangle(int ip, const Factor &f) {
    for (ptrdiff_t j = 0; j < ip; ++j) {
        if (!std::isfinite(f.c(j))) return false;
        for (ptrdiff_t i = 0; i <= j; ++i) {
            if (!std::isfinite(f.r(i, j))) return false;
        }
    }
    return true;
}

// "name[%3ld]" for an element of an argument array, as the messages name it.
void element_name(char *out, std::size_t size, const char *name, long i) { std::snprintf(out, size, "%s[%3ld]", name, i); }

} // namespace

} // namespace zek

extern "C" {

void g02dcc(int update, int mean, int m, const int sx[], int ip, const double x[], int ix, double y, const double *wt,
            double q[], int tdq, double *rss, ZekFail *fail) {
    static const char *const kName = "g02dcc";
    zek::clear_fail(fail);
    if (update != Zek_ObservAdd && update != Zek_ObservDel) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "update");
    if (mean != Zek_MeanInclude && mean != Zek_MeanZero) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "mean");
    if (m < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "m", "1", m);
    if (ip < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (ix < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ix", "1", ix);
    if (zek::raise_below(fail, kName, "tdq", tdq, "ip", ip)) return;
    long chosen = mean == Zek_MeanInclude ? 1 : 0;
    for (long j = 0; j < m; ++j) {
        if (sx[j] < 0) {
            char name[32];
            zek::element_name(name, sizeof name, "sx", j);
            return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, name, "0", sx[j]);
        }
        chosen += sx[j] > 0 ? 1 : 0;
    }
    if (chosen != ip) return zek::raise_plain(fail, kName, ZE_IP_INCOMP_WITH_SX);
    if (!(*rss >= 0.0) || std::isinf(*rss)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "rss", "0.0", *rss);
    const double w = wt != nullptr ? *wt : 1.0;
    if (!(w >= 0.0) || std::isinf(w)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "wt", "0.0", w);
    if (!std::isfinite(y)) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "y");
    for (long j = 0; j < m; ++j) {
        if (sx[j] > 0 && !std::isfinite(x[j * static_cast<std::ptrdiff_t>(ix)])) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x");
    }
    const zek::Factor f{q, tdq};
    if (!zek::finite_triangle(ip, f)) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "q");
    // A row of weight zero carries no information: the model stays as it is.
    if (w == 0.0) return zek::raise_success(fail, kName);
    double *v = zek::scratch(3 * static_cast<std::size_t>(ip));
    if (v == nullptr) return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    double *cs = v + ip, *sn = cs + ip;
    const double root = std::sqrt(w);
    int k = 0;
    if (mean == Zek_MeanInclude) v[k++] = root;
    for (long j = 0; j < m; ++j) {
        if (sx[j] > 0) v[k++] = root * x[j * static_cast<std::ptrdiff_t>(ix)];
    }
    if (update == Zek_ObservAdd) {
        const double e = zek::add_row(f, ip, v, root * y, cs, sn);
        *rss += e * e;
        std::free(v);
        return zek::raise_success(fail, kName);
    }
    double e = 0.0;
    const int blocked = zek::remove_row(f, ip, v, root * y, cs, sn, &e);
    std::free(v);
    if (blocked != 0) return zek::raise_plain(fail, kName, ZE_MAT_NOT_UPD);
    // Rounding may take an exactly fitted row a little past the sum it removes; beyond that the
    // observation was not part of the model and the sum is left as it was.
    const double left = *rss - e * e;
    if (left < -64.0 * zek::precision() * *rss - zek::safe_minimum()) return zek::raise_plain(fail, kName, ZE_RSS_NOT_UPD);
    *rss = left > 0.0 ? left : 0.0;
    zek::raise_success(fail, kName);
}

void g02ddc(int n, int ip, const double q[], int tdq, double *rss, double *df, double b[], double se[], double cov[],
            int *svd, int *rank, double p[], double tol, ZekFail *fail) {
    static const char *const kName = "g02ddc";
    zek::clear_fail(fail);
    if (n < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", "1", n);
    if (ip < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (zek::raise_below(fail, kName, "tdq", tdq, "ip", ip)) return;
    if (!(*rss >= 0.0) || std::isinf(*rss)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "rss", "0.0", *rss);
    if (!(tol >= 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "tol", "0.0", tol);
    const zek::Factor f{const_cast<double *>(q), tdq};
    if (!zek::finite_triangle(ip, f)) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "q");
    const std::size_t np = static_cast<std::size_t>(ip);
    double *wmat = zek::scratch(np * np + 6 * np);
    if (wmat == nullptr) return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    double *work = wmat + np * np, *left = work + 5 * np;
    bool full = true;
    const int r = zek::triangle_fit(ip, q + tdq, tdq, q, tol, p + ip, p + 2 * static_cast<std::ptrdiff_t>(ip), wmat, work, b,
                                    left, &full);
    if (r < 0) {
        std::free(wmat);
        return zek::raise_plain(fail, kName, ZE_SVD_NOT_CONV);
    }
    double extra = 0.0;
    for (std::size_t i = 0; i < np; ++i) extra += left[i] * left[i];
    for (std::size_t k = np; k < 2 * np && full; ++k) p[k] = 0.0;
    *rss += extra;
    *svd = full ? 0 : 1;
    *rank = r;
    *df = static_cast<double>(n) - r;
    if (!(*df > 0.0)) {
        for (std::size_t k = 0; k < np; ++k) se[k] = 0.0;
        for (std::size_t k = 0; k < np * (np + 1) / 2; ++k) cov[k] = 0.0;
        std::free(wmat);
        return zek::raise_plain(fail, kName, ZE_ZERO_DOF_RESID);
    }
    zek::packed_covariance(ip, r, wmat, *rss / *df, cov, se);
    std::free(wmat);
    zek::raise_success(fail, kName);
}

void g02dec(int n, int ip, double q[], int tdq, double p[], const double wt[], const double x[], double *rss, double tol,
            ZekFail *fail) {
    static const char *const kName = "g02dec";
    zek::clear_fail(fail);
    if (ip < 0) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "0", ip);
    if (zek::raise_below(fail, kName, "n", n, "ip+1", static_cast<long>(ip) + 1)) return;
    if (zek::raise_below(fail, kName, "tdq", tdq, "n", n)) return;
    if (!(tol >= 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "tol", "0.0", tol);
    for (long i = 0; wt != nullptr && i < n; ++i) {
        if (!(wt[i] >= 0.0) || std::isinf(wt[i])) {
            char name[32];
            zek::element_name(name, sizeof name, "wt", i);
            return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, name, "0.0", wt[i]);
        }
    }
    for (long i = 0; i < n; ++i) {
        if (!std::isfinite(x[i])) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x");
    }
    for (long i = 0; i < n; ++i) {
        if (!std::isfinite(q[i])) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "q");
    }
    const std::ptrdiff_t ld = tdq;
    double *v = zek::scratch(2 * static_cast<std::size_t>(n));
    if (v == nullptr) return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    double *work = v + n;
    double norm = 0.0;
    for (long i = 0; i < n; ++i) {
        v[i] = wt != nullptr ? std::sqrt(wt[i]) * x[i] : x[i];
        norm = std::hypot(norm, v[i]);
    }
    // The new column as the old reflectors see it; its part below row IP is what the model cannot
    // already explain, and one more reflector takes it to a single element.
    if (ip > 0) zek::qr_apply('T', 'S', n, ip, q + ld, tdq, p, 1, v, n, work);
    double zeta = 0.0;
    zek::qr_factor(n - ip, 1, v + ip, n - ip, &zeta);
    const double t = tol > 0.0 ? tol : zek::precision();
    if (!(std::fabs(v[ip]) > t * norm)) {
        std::free(v);
        return zek::raise_plain(fail, kName, ZE_NVAR_NOT_IND);
    }
    double *col = q + (static_cast<std::ptrdiff_t>(ip) + 1) * ld;
    for (long i = 0; i < n; ++i) col[i] = v[i];
    p[ip] = zeta;
    zek::qr_apply('T', 'S', n - ip, 1, col + ip, tdq, p + ip, 1, q + ip, tdq, work);
    double s = 0.0;
    for (long i = ip + 1; i < n; ++i) s += q[i] * q[i];
    *rss = s;
    std::free(v);
    zek::raise_success(fail, kName);
}

void g02dfc(int ip, double q[], int tdq, int indx, double *rss, ZekFail *fail) {
    static const char *const kName = "g02dfc";
    zek::clear_fail(fail);
    if (ip < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (zek::raise_below(fail, kName, "tdq", tdq, "ip", ip)) return;
    if (indx < 1 || indx > ip) return zek::raise_formatted(fail, kName, ZE_INT_ARG_CONS, "indx", static_cast<long>(indx), "1 <= indx <= ip");
    if (!(*rss >= 0.0) || std::isinf(*rss)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "rss", "0.0", *rss);
    const zek::Factor f{q, tdq};
    if (!zek::finite_triangle(ip, f)) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "q");
    // Closing the gap leaves R upper Hessenberg from the deleted column on; a rotation of rows (j, j+1)
    // for each column takes the subdiagonal away and carries c with it.  The last element of c then
    // stands outside the model.
    for (std::ptrdiff_t j = indx - 1; j < ip - 1; ++j) {
        for (std::ptrdiff_t i = 0; i <= j + 1; ++i) f.r(i, j) = f.r(i, j + 1);
    }
    for (std::ptrdiff_t j = indx - 1; j < ip - 1; ++j) {
        double cs, sn, h;
        zek::make_rotation(f.r(j, j), f.r(j + 1, j), &cs, &sn, &h);
        f.r(j, j) = h;
        f.r(j + 1, j) = 0.0;
        for (std::ptrdiff_t k = j + 1; k < ip - 1; ++k) zek::rotate(cs, sn, f.r(j, k), f.r(j + 1, k));
        zek::rotate(cs, sn, f.c(j), f.c(j + 1));
    }
    for (std::ptrdiff_t i = 0; i < ip; ++i) f.r(i, ip - 1) = 0.0;
    *rss += f.c(ip - 1) * f.c(ip - 1);
    zek::raise_success(fail, kName);
}

void g02dkc(int ip, int iconst, const double p[], const double c[], int tdc, double b[], double rss, double df,
            double se[], double cov[], ZekFail *fail) {
    static const char *const kName = "g02dkc";
    zek::clear_fail(fail);
    if (!zek::constraint_args_ok(fail, kName, ip, iconst, tdc)) return;
    if (!(rss > 0.0) || std::isinf(rss)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "rss", "0.0", rss);
    if (!(df > 0.0) || std::isinf(df)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LE, "df", "0.0", df);
    const std::ptrdiff_t np = ip, nc = iconst, rank = np - nc, ldc = tdc;
    const double *sv = p + np, *vt = p + 2 * np;
    for (std::ptrdiff_t k = 0; k < np; ++k) {
        if (!std::isfinite(b[k]) || !std::isfinite(sv[k])) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "p");
    }
    if (!(sv[rank - 1] > 0.0)) return zek::raise_plain(fail, kName, ZE_RANK_ZERO);
    for (std::ptrdiff_t j = 0; j < nc; ++j) {
        for (std::ptrdiff_t i = 0; i < np; ++i) {
            if (!std::isfinite(c[i + j * ldc])) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "c");
        }
    }
    // The solutions of the rank-deficient model are b + V0 t, V0 the right singular vectors of the
    // zero values; the constraints C'b = 0 fix t = -(C'V0)^-1 C'b.  So b and each column of W =
    // V_r S_r^-1 are taken through M = I - V0 (C'V0)^-1 C', and cov = s^2 (MW)(MW)'.
    const std::size_t need = static_cast<std::size_t>(nc * nc + nc * (rank + 1) + np * rank);
    double *g = zek::scratch(need);
    if (g == nullptr) return zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
    double *k = g + nc * nc;       // C'[b W], nc by rank + 1
    double *mw = k + nc * (rank + 1);  // W, then M W
    auto v0 = [&](std::ptrdiff_t i, std::ptrdiff_t l) { return vt[(rank + l) + i * np]; };
    for (std::ptrdiff_t l = 0; l < rank; ++l) {
        for (std::ptrdiff_t i = 0; i < np; ++i) mw[i + l * np] = vt[l + i * np] / sv[l];
    }
    double gnorm = 0.0;
    for (std::ptrdiff_t l = 0; l < nc; ++l) {
        for (std::ptrdiff_t j = 0; j < nc; ++j) {
            double s = 0.0;
            for (std::ptrdiff_t i = 0; i < np; ++i) s += c[i + j * ldc] * v0(i, l);
            g[j + l * nc] = s;
            gnorm = std::fmax(gnorm, std::fabs(s));
        }
        for (std::ptrdiff_t col = 0; col <= rank; ++col) {
            double s = 0.0;
            for (std::ptrdiff_t i = 0; i < np; ++i) s += c[i + l * ldc] * (col == 0 ? b[i] : mw[i + (col - 1) * np]);
            k[l + col * nc] = s;
        }
    }
    // Gaussian elimination with partial pivoting on G t = K, all rank + 1 right-hand sides at once.
    const double small = 64.0 * zek::precision() * gnorm * static_cast<double>(nc);
    for (std::ptrdiff_t col = 0; col < nc; ++col) {
        std::ptrdiff_t piv = col;
        for (std::ptrdiff_t i = col + 1; i < nc; ++i) {
            if (std::fabs(g[i + col * nc]) > std::fabs(g[piv + col * nc])) piv = i;
        }
        if (!(std::fabs(g[piv + col * nc]) > small)) {
            std::free(g);
            return zek::raise_plain(fail, kName, ZE_MAT_NOT_FULL_RANK);
        }
        for (std::ptrdiff_t j = 0; j < nc && piv != col; ++j) std::swap(g[col + j * nc], g[piv + j * nc]);
        for (std::ptrdiff_t j = 0; j <= rank && piv != col; ++j) std::swap(k[col + j * nc], k[piv + j * nc]);
        for (std::ptrdiff_t i = col + 1; i < nc; ++i) {
            const double factor = g[i + col * nc] / g[col + col * nc];
            for (std::ptrdiff_t j = col; j < nc; ++j) g[i + j * nc] -= factor * g[col + j * nc];
            for (std::ptrdiff_t j = 0; j <= rank; ++j) k[i + j * nc] -= factor * k[col + j * nc];
        }
    }
    for (std::ptrdiff_t j = 0; j <= rank; ++j) {
        for (std::ptrdiff_t i = nc - 1; i >= 0; --i) {
            double s = k[i + j * nc];
            for (std::ptrdiff_t l = i + 1; l < nc; ++l) s -= g[i + l * nc] * k[l + j * nc];
            k[i + j * nc] = s / g[i + i * nc];
        }
    }
    for (std::ptrdiff_t i = 0; i < np; ++i) {
        for (std::ptrdiff_t col = 0; col <= rank; ++col) {
            double s = 0.0;
            for (std::ptrdiff_t l = 0; l < nc; ++l) s += v0(i, l) * k[l + col * nc];
            if (col == 0) {
                b[i] -= s;
            } else {
                mw[i + (col - 1) * np] -= s;
            }
        }
    }
    zek::packed_covariance(ip, static_cast<int>(rank), mw, rss / df, cov, se);
    std::free(g);
    zek::raise_success(fail, kName);
}

void g02dnc(int ip, int rank, const double b[], const double cov[], const double p[], const double f[], int *est,
            double *stat, double *sestat, double *t, double tol, ZekFail *fail) {
    static const char *const kName = "g02dnc";
    zek::clear_fail(fail);
    if (ip < 1) return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "ip", "1", ip);
    if (rank < 1 || rank > ip) return zek::raise_formatted(fail, kName, ZE_INT_ARG_CONS, "rank", static_cast<long>(rank), "1 <= rank <= ip");
    if (!(tol >= 0.0)) return zek::raise_real_arg(fail, kName, ZE_REAL_ARG_LT, "tol", "0.0", tol);
    const std::ptrdiff_t np = ip;
    for (std::ptrdiff_t i = 0; i < np; ++i) {
        if (!std::isfinite(f[i])) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "f");
        if (!std::isfinite(b[i])) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "b");
    }
    // f'b is estimable when f has no component along the null space V0 of the design: |V0'f| small
    // against |f|.
    const double *vt = p + 2 * np;
    double fnorm = 0.0, out = 0.0;
    for (std::ptrdiff_t i = 0; i < np; ++i) fnorm = std::hypot(fnorm, f[i]);
    for (std::ptrdiff_t l = rank; l < np; ++l) {
        double s = 0.0;
        for (std::ptrdiff_t i = 0; i < np; ++i) s += vt[l + i * np] * f[i];
        out = std::hypot(out, s);
    }
    if (!std::isfinite(out)) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "p");
    const double limit = tol > 0.0 ? tol : std::sqrt(zek::precision());
    *est = out <= limit * fnorm ? 1 : 0;
    *stat = *sestat = *t = 0.0;
    if (*est == 0) return zek::raise_success(fail, kName);
    double s = 0.0, var = 0.0;
    for (std::ptrdiff_t j = 0; j < np; ++j) {
        s += f[j] * b[j];
        for (std::ptrdiff_t i = 0; i < np; ++i) {
            const std::ptrdiff_t lo = i < j ? i : j, hi = i < j ? j : i;
            var += f[i] * cov[hi * (hi + 1) / 2 + lo] * f[j];
        }
    }
    *stat = s;
    *sestat = var > 0.0 ? std::sqrt(var) : 0.0;
    if (!(*sestat > 0.0)) return zek::raise_plain(fail, kName, ZE_STDES_ZERO);
    *t = s / *sestat;
    zek::raise_success(fail, kName);
}

} // extern "C"
