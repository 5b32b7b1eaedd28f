// The complex Schur form of a Hessenberg matrix by the single-shift QR iteration (Wilkinson shift,
// exceptional shifts every tenth sweep without deflation, subdiagonal kept real), balancing by powers
// of 2, and the reciprocal condition numbers of eigenvalues of an unreduced Hessenberg matrix.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/machine.h"
#include "kernels/schur.h"
#include "kernels/schur_sweep.h"

namespace zek {

namespace {

constexpr int kExceptionalEvery = 10;

double abs1(ComplexD z) { return std::fabs(z.real()) + std::fabs(z.imag()); }

// Quotient without the overflow of the textbook formula.
ComplexD quotient(ComplexD a, ComplexD b) {
    const double c = b.real(), d = b.imag();
    if (std::fabs(c) >= std::fabs(d)) {
        const double r = d / c, t = 1.0 / (c + d * r);
        return {(a.real() + a.imag() * r) * t, (a.imag() - a.real() * r) * t};
    }
    const double r = c / d, t = 1.0 / (d + c * r);
    return {(a.real() * r + a.imag()) * t, (a.imag() * r - a.real()) * t};
}

// The 2-element reflector: (alpha, x) to (beta, 0) with beta real.
void reflector2(ComplexD *alpha, ComplexD *x, ComplexD *tau) {
    const double xnorm = std::abs(*x);
    const double ar = alpha->real(), ai = alpha->imag();
    if (xnorm == 0.0 && ai == 0.0) {
        *tau = 0.0;
        return;
    }
    const double mag = std::hypot(std::hypot(ar, ai), xnorm);
    const double beta = ar >= 0.0 ? -mag : mag;
    *tau = ComplexD((beta - ar) / beta, -ai / beta);
    *x = *x * quotient(1.0, *alpha - beta);
    *alpha = beta;
}

} // namespace

int hessenberg_qr(bool wantt, bool wantz, int n, int ilo, int ihi, ComplexD *h, int ldh, ComplexD *w, int iloz,
                  int ihiz, ComplexD *z, int ldz) {
    if (n == 0) return 0;
    const std::ptrdiff_t ld = ldh, lz = ldz;
    auto H = [&](int i, int j) -> ComplexD & { return h[(i - 1) + (j - 1) * ld]; };
    auto Z = [&](int i, int j) -> ComplexD & { return z[(i - 1) + (j - 1) * lz]; };
    if (ilo == ihi) {
        w[ilo - 1] = H(ilo, ilo);
        return 0;
    }
    if (!prepare_active_block(ilo, ihi, H)) return ihi;
    const int jlo = wantt ? 1 : ilo, jhi = wantt ? n : ihi;
    // A real subdiagonal, by diagonal unitary scaling.
    for (int i = ilo + 1; i <= ihi; ++i) {
        if (H(i, i - 1).imag() == 0.0) continue;
        ComplexD sc = H(i, i - 1) / abs1(H(i, i - 1));
        sc = std::conj(sc) / std::abs(sc);
        H(i, i - 1) = std::abs(H(i, i - 1));
        for (int j = i; j <= jhi; ++j) H(i, j) *= sc;
        for (int j = jlo; j <= std::min(jhi, i + 1); ++j) H(j, i) *= std::conj(sc);
        if (wantz)
            for (int j = iloz; j <= ihiz; ++j) Z(j, i) *= std::conj(sc);
    }
    const int nh = ihi - ilo + 1;
    const double safmin = safe_minimum(), u = 2.0 * precision();
    const double smlnum = safmin * (static_cast<double>(nh) / u);
    auto sweep = [&](int l, int i, int kdefl, int i1, int i2) {
        ComplexD t;
        if (kdefl % (2 * kExceptionalEvery) == 0) {
            t = 0.75 * std::fabs(H(i, i - 1).real()) + H(i, i);
        } else if (kdefl % kExceptionalEvery == 0) {
            t = 0.75 * std::fabs(H(l + 1, l).real()) + H(l, l);
        } else {
            t = H(i, i);
            const ComplexD uu = std::sqrt(H(i - 1, i)) * std::sqrt(H(i, i - 1));
            double s = abs1(uu);
            if (s != 0.0) {
                const ComplexD x = 0.5 * (H(i - 1, i - 1) - t);
                const double sx = abs1(x);
                s = std::max(s, abs1(x));
                ComplexD y = s * std::sqrt((x / s) * (x / s) + (uu / s) * (uu / s));
                if (sx > 0.0) {
                    const ComplexD xs = x / sx;
                    if (xs.real() * y.real() + xs.imag() * y.imag() < 0.0) y = -y;
                }
                t = t - uu * quotient(uu, x + y);
            }
        }
        // Two consecutive small subdiagonal elements.
        int m = i - 1;
        ComplexD v[2];
        for (; m > l; --m) {
            const ComplexD h11 = H(m, m), h22 = H(m + 1, m + 1);
            ComplexD h11s = h11 - t;
            double h21 = H(m + 1, m).real();
            const double s = abs1(h11s) + std::fabs(h21);
            h11s /= s;
            h21 /= s;
            v[0] = h11s;
            v[1] = h21;
            const double h10 = H(m, m - 1).real();
            if (std::fabs(h10) * std::fabs(h21) <= u * (abs1(h11s) * (abs1(h11) + abs1(h22)))) break;
        }
        if (m == l) {
            ComplexD h11s = H(l, l) - t;
            double h21 = H(l + 1, l).real();
            const double s = abs1(h11s) + std::fabs(h21);
            v[0] = h11s / s;
            v[1] = h21 / s;
        }
        // The single-shift sweep.
        for (int k = m; k <= i - 1; ++k) {
            if (k > m) {
                v[0] = H(k, k - 1);
                v[1] = H(k + 1, k - 1);
            }
            ComplexD t1;
            reflector2(&v[0], &v[1], &t1);
            if (k > m) {
                H(k, k - 1) = v[0];
                H(k + 1, k - 1) = 0.0;
            }
            const ComplexD v2 = v[1];
            const double t2 = (t1 * v2).real();
            for (int j = k; j <= i2; ++j) {
                const ComplexD sum = std::conj(t1) * H(k, j) + t2 * H(k + 1, j);
                H(k, j) -= sum;
                H(k + 1, j) -= sum * v2;
            }
            for (int j = i1; j <= std::min(k + 2, i); ++j) {
                const ComplexD sum = t1 * H(j, k) + t2 * H(j, k + 1);
                H(j, k) -= sum;
                H(j, k + 1) -= sum * std::conj(v2);
            }
            if (wantz)
                for (int j = iloz; j <= ihiz; ++j) {
                    const ComplexD sum = t1 * Z(j, k) + t2 * Z(j, k + 1);
                    Z(j, k) -= sum;
                    Z(j, k + 1) -= sum * std::conj(v2);
                }
            if (k == m && m > l) {
                // Keep H(m, m-1) real: scale by the unit factor the reflector left on it.
                ComplexD temp = 1.0 - t1;
                temp /= std::abs(temp);
                H(m + 1, m) *= std::conj(temp);
                if (m + 2 <= i) H(m + 2, m + 1) *= temp;
                for (int j = m; j <= i; ++j) {
                    if (j == m + 1) continue;
                    if (i2 > j)
                        for (int c = j + 1; c <= i2; ++c) H(j, c) *= temp;
                    for (int r = i1; r <= j - 1; ++r) H(r, j) *= std::conj(temp);
                    if (wantz)
                        for (int r = iloz; r <= ihiz; ++r) Z(r, j) *= std::conj(temp);
                }
            }
        }
        ComplexD temp = H(i, i - 1);
        if (temp.imag() != 0.0) {
            const double rtemp = std::abs(temp);
            H(i, i - 1) = rtemp;
            temp /= rtemp;
            if (i2 > i)
                for (int c = i + 1; c <= i2; ++c) H(i, c) *= std::conj(temp);
            for (int r = i1; r <= i - 1; ++r) H(r, i) *= temp;
            if (wantz)
                for (int r = iloz; r <= ihiz; ++r) Z(r, i) *= temp;
        }
    };
    auto finish = [&](int, int i, int, int) { w[i - 1] = H(i, i); };
    return qr_iteration(wantt, n, ilo, ihi, 1, smlnum, u, H, sweep, finish);
}

namespace {

template <class T> double rcond_impl(int n, const T *h, int ldh, ComplexD lambda, ComplexD *work) {
    const std::ptrdiff_t ld = ldh;
    auto M = [&](int i, int j) -> ComplexD {
        const ComplexD v = h[i + j * ld];
        return i == j ? v - lambda : v;
    };
    ComplexD *x = work, *y = work + n;
    constexpr double kBig = 1e150;
    // Right: x(n) = 1 and rows n..2 from the bottom; left: y(1) = 1 and columns 1..n-1.
    x[n - 1] = 1.0;
    for (int i = n - 1; i >= 1; --i) {
        ComplexD s = 0.0;
        for (int j = i; j < n; ++j) s += M(i, j) * x[j];
        x[i - 1] = -quotient(s, ComplexD(h[i + (i - 1) * ld]));
        if (abs1(x[i - 1]) > kBig)
            for (int j = i - 1; j < n; ++j) x[j] /= kBig;
    }
    y[0] = 1.0;
    for (int j = 0; j + 1 < n; ++j) {
        ComplexD s = 0.0;
        for (int i = 0; i <= j; ++i) s += y[i] * M(i, j);
        y[j + 1] = -quotient(s, ComplexD(h[(j + 1) + j * ld]));
        if (abs1(y[j + 1]) > kBig)
            for (int i = 0; i <= j + 1; ++i) y[i] /= kBig;
    }
    double nx = 0.0, ny = 0.0;
    ComplexD yx = 0.0;
    for (int i = 0; i < n; ++i) {
        nx = std::hypot(nx, std::abs(x[i]));
        ny = std::hypot(ny, std::abs(y[i]));
        yx += y[i] * x[i];
    }
    return std::abs(yx) / nx / ny;
}

} // namespace

double hessenberg_eigenvalue_rcond(int n, const double *h, int ldh, ComplexD lambda, ComplexD *work) {
    return rcond_impl(n, h, ldh, lambda, work);
}
double hessenberg_eigenvalue_rcond(int n, const ComplexD *h, int ldh, ComplexD lambda, ComplexD *work) {
    return rcond_impl(n, h, ldh, lambda, work);
}

} // namespace zek
