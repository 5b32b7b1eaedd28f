// The real Schur form of a Hessenberg matrix by the Francis double-shift QR iteration, one small
// bulge at a time, with the published deflation criterion that looks at the neighbouring elements as
// well as the subdiagonal one, exceptional shifts every tenth sweep without deflation, and the final
// 2 by 2 blocks brought to standard form.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame/machine.h"
#include "kernels/level1.h"
#include "kernels/schur.h"
#include "kernels/schur_sweep.h"

namespace zek {

namespace {

constexpr int kExceptionalEvery = 10;

double sign_of(double a, double b) { return b >= 0.0 ? std::fabs(a) : -std::fabs(a); }

// Unit-roundoff of the published algorithms: precision times the base.
double ulp() { return 2.0 * precision(); }

// H = I - tau*v*v' with v = (1, x) taking (alpha, x) to (beta, 0).
void reflector(int n, double *alpha, double *x, double *tau) {
    if (n <= 1) {
        *tau = 0.0;
        return;
    }
    double xnorm = 0.0;
    for (int i = 0; i < n - 1; ++i) xnorm = std::hypot(xnorm, x[i]);
    if (xnorm == 0.0) {
        *tau = 0.0;
        return;
    }
    const double beta = -sign_of(std::hypot(*alpha, xnorm), *alpha);
    *tau = (beta - *alpha) / beta;
    const double s = 1.0 / (*alpha - beta);
    for (int i = 0; i < n - 1; ++i) x[i] *= s;
    *alpha = beta;
}

} // namespace

void standardise_2x2(double *a, double *b, double *c, double *d, double *rt1r, double *rt1i, double *rt2r,
                     double *rt2i, double *cs, double *sn) {
    const double eps = ulp();
    const double safmin = safe_minimum();
    const double safmn2 = std::pow(2.0, static_cast<int>(std::log(safmin / eps) / std::log(2.0) / 2.0));
    const double safmx2 = 1.0 / safmn2;
    if (*c == 0.0) {
        *cs = 1.0;
        *sn = 0.0;
    } else if (*b == 0.0) {
        *cs = 0.0;
        *sn = 1.0;
        std::swap(*a, *d);
        *b = -*c;
        *c = 0.0;
    } else if (*a - *d == 0.0 && (*b >= 0.0) != (*c >= 0.0)) {
        *cs = 1.0;
        *sn = 0.0;
    } else {
        double temp = *a - *d;
        double p = 0.5 * temp;
        const double bcmax = std::max(std::fabs(*b), std::fabs(*c));
        const double bcmis = std::min(std::fabs(*b), std::fabs(*c)) * sign_of(1.0, *b) * sign_of(1.0, *c);
        double scale = std::max(std::fabs(p), bcmax);
        double z = (p / scale) * p + (bcmax / scale) * bcmis;
        if (z >= 4.0 * eps) {
            // Real eigenvalues: the triangle directly.
            z = p + sign_of(std::sqrt(scale) * std::sqrt(z), p);
            *a = *d + z;
            *d = *d - (bcmax / z) * bcmis;
            const double tau = std::hypot(*c, z);
            *cs = z / tau;
            *sn = *c / tau;
            *b = *b - *c;
            *c = 0.0;
        } else {
            // Complex or nearly equal real eigenvalues: make the diagonal equal.
            double sigma = *b + *c;
            for (int count = 0; count < 20; ++count) {
                scale = std::max(std::fabs(temp), std::fabs(sigma));
                if (scale >= safmx2) {
                    sigma *= safmn2;
                    temp *= safmn2;
                } else if (scale <= safmn2 && scale > 0.0) {
                    sigma *= safmx2;
                    temp *= safmx2;
                } else {
                    break;
                }
            }
            p = 0.5 * temp;
            double tau = std::hypot(sigma, temp);
            *cs = std::sqrt(0.5 * (1.0 + std::fabs(sigma) / tau));
            *sn = -(p / (tau * *cs)) * sign_of(1.0, sigma);
            const double aa = *a * *cs + *b * *sn, bb = -*a * *sn + *b * *cs;
            const double cc = *c * *cs + *d * *sn, dd = -*c * *sn + *d * *cs;
            *a = aa * *cs + cc * *sn;
            *b = bb * *cs + dd * *sn;
            *c = -aa * *sn + cc * *cs;
            *d = -bb * *sn + dd * *cs;
            temp = 0.5 * (*a + *d);
            *a = temp;
            *d = temp;
            if (*c != 0.0) {
                if (*b != 0.0) {
                    if ((*b >= 0.0) == (*c >= 0.0)) {
                        // Real eigenvalues after all: reduce to the triangle.
                        const double sab = std::sqrt(std::fabs(*b)), sac = std::sqrt(std::fabs(*c));
                        p = sign_of(sab * sac, *c);
                        tau = 1.0 / std::sqrt(std::fabs(*b + *c));
                        *a = temp + p;
                        *d = temp - p;
                        *b = *b - *c;
                        *c = 0.0;
                        const double cs1 = sab * tau, sn1 = sac * tau;
                        temp = *cs * cs1 - *sn * sn1;
                        *sn = *cs * sn1 + *sn * cs1;
                        *cs = temp;
                    }
                } else {
                    *b = -*c;
                    *c = 0.0;
                    temp = *cs;
                    *cs = -*sn;
                    *sn = temp;
                }
            }
        }
    }
    *rt1r = *a;
    *rt2r = *d;
    if (*c == 0.0) {
        *rt1i = 0.0;
        *rt2i = 0.0;
    } else {
        *rt1i = std::sqrt(std::fabs(*b)) * std::sqrt(std::fabs(*c));
        *rt2i = -*rt1i;
    }
}

int hessenberg_qr(bool wantt, bool wantz, int n, int ilo, int ihi, double *h, int ldh, double *wr, double *wi,
                  int iloz, int ihiz, double *z, int ldz) {
    if (n == 0) return 0;
    const std::ptrdiff_t ld = ldh, lz = ldz;
    auto H = [&](int i, int j) -> double & { return h[(i - 1) + (j - 1) * ld]; };
    auto Z = [&](int i, int j) -> double & { return z[(i - 1) + (j - 1) * lz]; };
    if (ilo == ihi) {
        wr[ilo - 1] = H(ilo, ilo);
        wi[ilo - 1] = 0.0;
        return 0;
    }
    // Data that are not finite would be deflated into meaningless values: nothing is found.
    if (!prepare_active_block(ilo, ihi, H)) return ihi;
    const int nh = ihi - ilo + 1, nz = ihiz - iloz + 1;
    const double safmin = safe_minimum(), u = ulp();
    const double smlnum = safmin * (static_cast<double>(nh) / u);
    auto sweep = [&](int l, int i, int kdefl, int i1, int i2) {
        double h11, h12, h21, h22;
        if (kdefl % (2 * kExceptionalEvery) == 0) {
            const double s = std::fabs(H(i, i - 1)) + std::fabs(H(i - 1, i - 2));
            h11 = 0.75 * s + H(i, i);
            h12 = -0.4375 * s;
            h21 = s;
            h22 = h11;
        } else if (kdefl % kExceptionalEvery == 0) {
            const double s = std::fabs(H(l + 1, l)) + std::fabs(H(l + 2, l + 1));
            h11 = 0.75 * s + H(l, l);
            h12 = -0.4375 * s;
            h21 = s;
            h22 = h11;
        } else {
            h11 = H(i - 1, i - 1);
            h21 = H(i, i - 1);
            h12 = H(i - 1, i);
            h22 = H(i, i);
        }
        double rt1r = 0.0, rt1i = 0.0, rt2r = 0.0, rt2i = 0.0;
        const double s = std::fabs(h11) + std::fabs(h12) + std::fabs(h21) + std::fabs(h22);
        if (s != 0.0) {
            h11 /= s;
            h21 /= s;
            h12 /= s;
            h22 /= s;
            const double tr = (h11 + h22) / 2.0;
            const double det = (h11 - tr) * (h22 - tr) - h12 * h21;
            const double rtdisc = std::sqrt(std::fabs(det));
            if (det >= 0.0) {
                rt1r = tr * s;
                rt2r = rt1r;
                rt1i = rtdisc * s;
                rt2i = -rt1i;
            } else {
                rt1r = tr + rtdisc;
                rt2r = tr - rtdisc;
                if (std::fabs(rt1r - h22) <= std::fabs(rt2r - h22)) {
                    rt1r *= s;
                    rt2r = rt1r;
                } else {
                    rt2r *= s;
                    rt1r = rt2r;
                }
                rt1i = rt2i = 0.0;
            }
        }
        // Two consecutive small subdiagonal elements: where the bulge may start.
        int m = i - 2;
        double v[3] = {0.0, 0.0, 0.0};
        for (; m >= l; --m) {
            double h21s = H(m + 1, m);
            double ss = std::fabs(H(m, m) - rt2r) + std::fabs(rt2i) + std::fabs(h21s);
            h21s = H(m + 1, m) / ss;
            v[0] = h21s * H(m, m + 1) + (H(m, m) - rt1r) * ((H(m, m) - rt2r) / ss) - rt1i * (rt2i / ss);
            v[1] = h21s * (H(m, m) + H(m + 1, m + 1) - rt1r - rt2r);
            v[2] = h21s * H(m + 2, m + 1);
            ss = std::fabs(v[0]) + std::fabs(v[1]) + std::fabs(v[2]);
            v[0] /= ss;
            v[1] /= ss;
            v[2] /= ss;
            if (m == l) break;
            const double h00 = std::fabs(H(m, m - 1)) * (std::fabs(v[1]) + std::fabs(v[2]));
            const double h01 = std::fabs(v[0]) * (std::fabs(H(m - 1, m - 1)) + std::fabs(H(m, m)) +
                                                  std::fabs(H(m + 1, m + 1)));
            if (h00 <= u * h01) break;
        }
        // The double-shift sweep.
        for (int k = m; k <= i - 1; ++k) {
            const int nr = std::min(3, i - k + 1);
            if (k > m)
                for (int r = 0; r < nr; ++r) v[r] = H(k + r, k - 1);
            double t1 = 0.0;
            reflector(nr, &v[0], &v[1], &t1);
            if (k > m) {
                H(k, k - 1) = v[0];
                H(k + 1, k - 1) = 0.0;
                if (k < i - 1) H(k + 2, k - 1) = 0.0;
            } else if (m > l) {
                H(k, k - 1) *= (1.0 - t1);
            }
            const double v2 = v[1], t2 = t1 * v2;
            if (nr == 3) {
                const double v3 = v[2], t3 = t1 * v3;
                for (int j = k; j <= i2; ++j) {
                    const double sum = H(k, j) + v2 * H(k + 1, j) + v3 * H(k + 2, j);
                    H(k, j) -= sum * t1;
                    H(k + 1, j) -= sum * t2;
                    H(k + 2, j) -= sum * t3;
                }
                for (int j = i1; j <= std::min(k + 3, i); ++j) {
                    const double sum = H(j, k) + v2 * H(j, k + 1) + v3 * H(j, k + 2);
                    H(j, k) -= sum * t1;
                    H(j, k + 1) -= sum * t2;
                    H(j, k + 2) -= sum * t3;
                }
                if (wantz)
                    for (int j = iloz; j <= ihiz; ++j) {
                        const double sum = Z(j, k) + v2 * Z(j, k + 1) + v3 * Z(j, k + 2);
                        Z(j, k) -= sum * t1;
                        Z(j, k + 1) -= sum * t2;
                        Z(j, k + 2) -= sum * t3;
                    }
            } else if (nr == 2) {
                for (int j = k; j <= i2; ++j) {
                    const double sum = H(k, j) + v2 * H(k + 1, j);
                    H(k, j) -= sum * t1;
                    H(k + 1, j) -= sum * t2;
                }
                for (int j = i1; j <= i; ++j) {
                    const double sum = H(j, k) + v2 * H(j, k + 1);
                    H(j, k) -= sum * t1;
                    H(j, k + 1) -= sum * t2;
                }
                if (wantz)
                    for (int j = iloz; j <= ihiz; ++j) {
                        const double sum = Z(j, k) + v2 * Z(j, k + 1);
                        Z(j, k) -= sum * t1;
                        Z(j, k + 1) -= sum * t2;
                    }
            }
        }
    };
    auto finish = [&](int l, int i, int i1, int i2) {
        if (l == i) {
            wr[i - 1] = H(i, i);
            wi[i - 1] = 0.0;
        } else if (l == i - 1) {
            double cs = 1.0, sn = 0.0;
            standardise_2x2(&H(i - 1, i - 1), &H(i - 1, i), &H(i, i - 1), &H(i, i), &wr[i - 2], &wi[i - 2], &wr[i - 1],
                            &wi[i - 1], &cs, &sn);
            if (wantt) {
                if (i2 > i) rot(i2 - i, &H(i - 1, i + 1), ldh, &H(i, i + 1), ldh, cs, sn);
                rot(i - i1 - 1, &H(i1, i - 1), 1, &H(i1, i), 1, cs, sn);
            }
            if (wantz) rot(nz, &Z(iloz, i - 1), 1, &Z(iloz, i), 1, cs, sn);
        }
    };
    return qr_iteration(wantt, n, ilo, ihi, 2, smlnum, u, H, sweep, finish);
}

} // namespace zek
