// Eigenvectors of a real upper quasi-triangular matrix in Schur form (F08QKF/DTREVC).
//
// Each vector comes from substitution on T - lambda*I, block by block (1 by 1 or 2 by 2 diagonal
// blocks), in complex arithmetic for a complex pair: right vectors upward from the eigenvalue's block,
// left vectors (solutions of (T - conj(lambda))' u = 0) downward.  A diagonal block too close to singular
// is replaced by the smallest safe value, and the vector is scaled down whenever it threatens to
// overflow.  A pair is returned as its real and imaginary parts in two consecutive columns, the vector
// of the eigenvalue with positive imaginary part; each vector is normalised so that its largest
// component has |re| + |im| = 1.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <vector>

#include "frame/machine.h"
#include "kernels/factor_support.h"
#include "kernels/kernel_types.h"
#include "zek2/f08.h"

namespace {

using Cx = std::complex<double>;

double abs1(Cx z) { return std::fabs(z.real()) + std::fabs(z.imag()); }

struct Vectors {
    int n;
    const double *t;
    std::ptrdiff_t ldt;
    double t_at(int i, int j) const { return t[i + j * ldt]; }
};

// Solves the block system (B - mu I) x = r (or its transpose) for the block of order 1 or 2 at row j.
void solve_block(const Vectors &v, int j, int order, bool transpose, Cx mu, double smin, Cx *x) {
    if (order == 1) {
        Cx d = v.t_at(j, j) - mu;
        if (abs1(d) < smin) d = smin;
        x[j] = x[j] / d;
        return;
    }
    Cx a11 = v.t_at(j, j) - mu, a22 = v.t_at(j + 1, j + 1) - mu;
    double a12 = v.t_at(j, j + 1), a21 = v.t_at(j + 1, j);
    if (transpose) std::swap(a12, a21);
    Cx det = a11 * a22 - a12 * a21;
    if (abs1(det) < smin * smin) det = smin * smin;
    const Cx r1 = x[j], r2 = x[j + 1];
    x[j] = (a22 * r1 - a12 * r2) / det;
    x[j + 1] = (a11 * r2 - a21 * r1) / det;
}

// Order of the diagonal block that ends at row j (looking up) or starts at row j (looking down).
int block_ending(const Vectors &v, int j) { return j > 0 && v.t_at(j, j - 1) != 0.0 ? 2 : 1; }
int block_starting(const Vectors &v, int j) { return j + 1 < v.n && v.t_at(j + 1, j) != 0.0 ? 2 : 1; }

void guard(std::vector<Cx> &x, int lo, int hi) {
    double big = 0.0;
    for (int i = lo; i <= hi; ++i) big = std::max(big, abs1(x[i]));
    if (big > 1e150)
        for (int i = lo; i <= hi; ++i) x[i] /= big;
}

// The right vector of the eigenvalue whose block is rows k0..ki: x(0..ki).
void right_vector(const Vectors &v, int k0, int ki, Cx lambda, double smin, std::vector<Cx> &x) {
    std::fill(x.begin(), x.end(), Cx(0.0));
    if (k0 == ki) {
        x[ki] = 1.0;
    } else if (std::fabs(v.t_at(k0, ki)) >= std::fabs(v.t_at(ki, k0))) {
        x[k0] = 1.0;
        x[ki] = Cx(0.0, lambda.imag() / v.t_at(k0, ki));
    } else {
        x[k0] = -lambda.imag() / v.t_at(ki, k0);
        x[ki] = Cx(0.0, 1.0);
    }
    for (int j = k0 - 1; j >= 0;) {
        const int order = block_ending(v, j), top = j - order + 1;
        for (int r = top; r <= j; ++r) {
            Cx s = 0.0;
            for (int l = j + 1; l <= ki; ++l) s += v.t_at(r, l) * x[l];
            x[r] = -s;
        }
        solve_block(v, top, order, false, lambda, smin, x.data());
        guard(x, 0, ki);
        j = top - 1;
    }
}

// The left vector u of the eigenvalue whose block is rows ki..k1: u(ki..n-1).
void left_vector(const Vectors &v, int ki, int k1, Cx lambda, double smin, std::vector<Cx> &u) {
    std::fill(u.begin(), u.end(), Cx(0.0));
    const Cx mu = std::conj(lambda);
    if (ki == k1) {
        u[ki] = 1.0;
    } else if (std::fabs(v.t_at(ki, k1)) >= std::fabs(v.t_at(k1, ki))) {
        u[ki] = Cx(lambda.imag() / v.t_at(ki, k1), 0.0);
        u[k1] = Cx(0.0, 1.0);
    } else {
        u[ki] = 1.0;
        u[k1] = Cx(0.0, -lambda.imag() / v.t_at(k1, ki));
    }
    for (int j = k1 + 1; j < v.n;) {
        const int order = block_starting(v, j);
        for (int r = j; r < j + order; ++r) {
            Cx s = 0.0;
            for (int l = ki; l < j; ++l) s += v.t_at(l, r) * u[l];
            u[r] = -s;
        }
        solve_block(v, j, order, true, mu, smin, u.data());
        guard(u, ki, v.n - 1);
        j += order;
    }
}

// Writes x (rows lo..hi) to column c (real) or columns c, c+1 (re, im), back-transformed by Q's
// columns lo..hi when Q is given (then all N rows are written), and normalises.
void store(int n, const std::vector<Cx> &x, int lo, int hi, bool pair, const double *q, std::ptrdiff_t ldq, double *out,
           std::ptrdiff_t ldo, int c) {
    std::vector<Cx> y(n, Cx(0.0));
    if (q != nullptr) {
        for (int l = lo; l <= hi; ++l)
            for (int i = 0; i < n; ++i) y[i] += q[i + l * ldq] * x[l];
    } else {
        for (int l = lo; l <= hi; ++l) y[l] = x[l];
    }
    double big = 0.0;
    for (int i = 0; i < n; ++i) big = std::max(big, pair ? abs1(y[i]) : std::fabs(y[i].real()));
    const double s = big > 0.0 ? 1.0 / big : 1.0;
    for (int i = 0; i < n; ++i) {
        out[i + c * ldo] = y[i].real() * s;
        if (pair) out[i + (c + 1) * ldo] = y[i].imag() * s;
    }
}

} // namespace

extern "C" void f08qkf_ENTRY(int, const char *side, const char *howmny, int *select, const int *n, const double *t,
                             const int *ldt, double *vl, const int *ldvl, double *vr, const int *ldvr, const int *mm,
                             int *m, double *, int *info, int, int) {
    const char sd = zek::option_letter(side), hw = zek::option_letter(howmny);
    const bool rightv = sd == 'R' || sd == 'B', leftv = sd == 'L' || sd == 'B';
    const bool back = hw == 'B', some = hw == 'S';
    const int nn = *n;
    *info = 0;
    if (!rightv && !leftv) *info = -1;
    else if (hw != 'A' && !back && !some) *info = -2;
    else if (nn < 0) *info = -4;
    else if (*ldt < std::max(1, nn)) *info = -6;
    else if (*ldvl < 1 || (leftv && *ldvl < nn)) *info = -8;
    else if (*ldvr < 1 || (rightv && *ldvr < nn)) *info = -10;
    if (*info == 0) {
        // The columns needed; SELECT is brought to the published form for pairs.
        int need = nn;
        if (some) {
            need = 0;
            for (int j = 0; j < nn; ++j) {
                if (j + 1 < nn && t[(j + 1) + j * static_cast<std::ptrdiff_t>(*ldt)] != 0.0) {
                    if (select[j] != 0 || select[j + 1] != 0) {
                        select[j] = 1;
                        select[j + 1] = 0;
                        need += 2;
                    }
                    ++j;
                } else if (select[j] != 0) {
                    ++need;
                }
            }
        }
        *m = need;
        if (*mm < need) *info = -11;
    }
    if (*info != 0) {
        zek::silent_report("F08QKF/DTREVC", -*info);
        return;
    }
    if (nn == 0) return;
    const Vectors v{nn, t, *ldt};
    const double ulp = 2.0 * zek::precision(), smlnum = zek::safe_minimum() * (nn / ulp);
    std::vector<Cx> x(nn);
    auto lambda_of = [&](int k0, int k1) {
        if (k0 == k1) return Cx(v.t_at(k0, k0), 0.0);
        return Cx(v.t_at(k0, k0), std::sqrt(std::fabs(v.t_at(k0, k1))) * std::sqrt(std::fabs(v.t_at(k1, k0))));
    };
    if (rightv) {
        int column = *m - 1;
        for (int ki = nn - 1; ki >= 0; --ki) {
            const int k0 = ki - block_ending(v, ki) + 1;
            if (some && select[k0] == 0) {
                ki = k0;
                continue;
            }
            const Cx lambda = lambda_of(k0, ki);
            const double smin = std::max(ulp * abs1(lambda), smlnum);
            right_vector(v, k0, ki, lambda, smin, x);
            const bool pair = k0 != ki;
            const int c = some ? column - (pair ? 1 : 0) : k0;
            store(nn, x, 0, ki, pair, back ? vr : nullptr, *ldvr, vr, *ldvr, c);
            column -= pair ? 2 : 1;
            ki = k0;
        }
    }
    if (leftv) {
        int column = 0;
        for (int ki = 0; ki < nn; ++ki) {
            const int k1 = ki + block_starting(v, ki) - 1;
            if (some && select[ki] == 0) {
                ki = k1;
                continue;
            }
            const Cx lambda = lambda_of(ki, k1);
            const double smin = std::max(ulp * abs1(lambda), smlnum);
            left_vector(v, ki, k1, lambda, smin, x);
            const bool pair = k1 != ki;
            const int c = some ? column : ki;
            // Back-transformation reads Q's columns ki.. and writes column ki (and ki+1): those to its
            // left are done, those to its right still hold Q.
            store(nn, x, ki, nn - 1, pair, back ? vl : nullptr, *ldvl, vl, *ldvl, c);
            column += pair ? 2 : 1;
            ki = k1;
        }
    }
}

extern "C" void F08QKF(const char *side, const char *howmny, int *select, const int *n, const double *t, const int *ldt,
                       double *vl, const int *ldvl, double *vr, const int *ldvr, const int *mm, int *m, double *work,
                       int *info, int side_len, int howmny_len) {
    f08qkf_ENTRY(0, side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, info, side_len, howmny_len);
}

namespace zek {

void F08QKF_library(const char *side, const char *howmny, int *select, const int *n, const double *t, const int *ldt,
                    double *vl, const int *ldvl, double *vr, const int *ldvr, const int *mm, int *m, double *work,
                    int *info) {
    f08qkf_ENTRY(1, side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, info, 1, 1);
}

} // namespace zek
