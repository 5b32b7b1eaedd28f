// The self-sorting complex passes of the second engine and their driver.
//
// With L1 the product of the factors done and IDO = N/(L1*P), the pass of factor P reads P values
// IDO*L1... apart and writes
//     ch(i, k, j) = exp(-2 pi i L1 i j / N) * sum over r of cc(i, r, k) exp(-2 pi i r j / P),
// so that after the last pass the transform stands in natural order; no permutation is needed.  The
// passes run on rows of M complex values (M sequences stored by element), innermost over the rows.
// The written-out passes and the general pass for odd factors up to 64 are in fft_pass_bodies.h;
// larger factors have the scalar general pass here.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "analysis/fft.h"
#include "analysis/fft_kernels.h"
#include "analysis/fft_pass_bodies.h"
#include "zek2/c06.h"

namespace zek::fft {

namespace {

template <int P>
void pass(int m, Index ldi, Index ldo, int ido, int l1, const double *cc, double *ch, const double *tw) {
    if (wide::enabled()) {
        wide::complex_pass(P, m, ldi, ldo, ido, l1, cc, ch, tw);
        return;
    }
    if (m == 1 && ldi == 1 && ldo == 1)
        pass_single<P, V2>(ido, l1, cc, ch, tw);
    else
        pass_rows<P, V2>(m, ldi, ldo, ido, l1, cc, ch, tw);
}

// Any odd factor: the values r and P-r are met as their sum and difference, and each pair of outputs
// j, P-j comes from one sweep over the inputs, so the work is about P*P/2 complex products.  The roots
// exp(-2 pi i q/P) are at the head of TW.
void general_pass(int p, int m, Index ldi, Index ldo, int ido, int l1, const double *cc, double *ch,
                  const double *tw) {
    const double *roots = tw;          // q = 1..p-1 at roots[2(q-1)]
    const double *twid = tw + 2 * (p - 1);
    const Index tstride = ido - 1, h = p / 2;
    const Index istride = 2 * ldi * ido, ostride = 2 * ldo * ido * l1;
    for (Index k = 0; k < l1; ++k) {
        for (Index i = 0; i < ido; ++i) {
            const double *in = cc + 2 * ldi * (i + ido * p * k);
            double *out = ch + 2 * ldo * (i + ido * k);
            for (Index row = 0; row < m; ++row) {
                const double *x = in + 2 * row;
                double *y = out + 2 * row;
                double sr = x[0], si = x[1];
                for (Index r = 1; r <= h; ++r) {
                    sr += x[r * istride] + x[(p - r) * istride];
                    si += x[r * istride + 1] + x[(p - r) * istride + 1];
                }
                y[0] = sr;
                y[1] = si;
                for (Index j = 1; j <= h; ++j) {
                    double ur = x[0], ui = x[1], vr = 0.0, vi = 0.0;
                    Index idx = 0;
                    for (Index r = 1; r <= h; ++r) {
                        idx += j;
                        if (idx >= p) idx -= p;
                        const double c = roots[2 * (idx - 1)], s = roots[2 * (idx - 1) + 1];
                        const double *a = x + r * istride, *b = x + (p - r) * istride;
                        ur += c * (a[0] + b[0]);
                        ui += c * (a[1] + b[1]);
                        vr += s * (a[0] - b[0]);
                        vi += s * (a[1] - b[1]);
                    }
                    // y(j) = u + i v, y(p-j) = u - i v, with s = -sin in the roots.
                    double ar = ur - vi, ai = ui + vr, br = ur + vi, bi = ui - vr;
                    if (i > 0) {
                        const double *w1 = twid + 2 * ((j - 1) * tstride + i - 1);
                        const double *w2 = twid + 2 * ((p - j - 1) * tstride + i - 1);
                        const double tr = ar * w1[0] - ai * w1[1], ti = ar * w1[1] + ai * w1[0];
                        const double ur2 = br * w2[0] - bi * w2[1], ui2 = br * w2[1] + bi * w2[0];
                        ar = tr;
                        ai = ti;
                        br = ur2;
                        bi = ui2;
                    }
                    y[j * ostride] = ar;
                    y[j * ostride + 1] = ai;
                    y[(p - j) * ostride] = br;
                    y[(p - j) * ostride + 1] = bi;
                }
            }
        }
    }
}

} // namespace

void complex_pass(int p, int m, Index ldi, Index ldo, int ido, int l1, const double *cc, double *ch,
                  const double *tw) {
    switch (p) {
    case 2: pass<2>(m, ldi, ldo, ido, l1, cc, ch, tw); break;
    case 3: pass<3>(m, ldi, ldo, ido, l1, cc, ch, tw); break;
    case 4: pass<4>(m, ldi, ldo, ido, l1, cc, ch, tw); break;
    case 5: pass<5>(m, ldi, ldo, ido, l1, cc, ch, tw); break;
    default:
        if (p > kGeneralLocal)
            general_pass(p, m, ldi, ldo, ido, l1, cc, ch, tw);
        else if (wide::enabled())
            wide::complex_pass(p, m, ldi, ldo, ido, l1, cc, ch, tw);
        else
            general_pass_local<V2>(p, m, ldi, ldo, ido, l1, cc, ch, tw);
        break;
    }
}

void complex_passes(int m, Index ldx, int n, const int *factors, int nf, const double *trig, double *x,
                    double *scratch, double scale, double scale_im) {
    const double *in = x;
    double *out = scratch;
    Index ldi = ldx, ldo = m, l1 = 1;
    const double *tw = trig;
    bool in_x = true;
    for (int f = 0; f < nf; ++f) {
        const int p = factors[f];
        if (p <= 1) continue;
        const Index ido = n / (l1 * p);
        complex_pass(p, m, ldi, ldo, static_cast<int>(ido), static_cast<int>(l1), in, out, tw);
        tw += 2 * complex_table_size(p, ido);
        l1 *= p;
        // Flip: the output becomes the next input.
        double *next_out = in_x ? x : scratch;
        const Index next_ldo = in_x ? ldx : m;
        in = out;
        ldi = ldo;
        out = next_out;
        ldo = next_ldo;
        in_x = !in_x;
    }
    // The result is in `in`: scale it where it stands, then copy it back to X if it lies in the
    // scratch.  (One loop reading the scratch and writing X would stall whenever the two lie a
    // multiple of 4096 bytes apart.)
    double *res = in_x ? x : scratch;
    const V2 factor{scale, scale_im};
    for (Index j = 0; j < n; ++j) {
        double *row = res + 2 * ldi * j;
        for (Index r = 0; r < m; ++r) store(row + 2 * r, load(row + 2 * r) * factor);
    }
    if (!in_x) {
        if (ldx == m) {
            std::memcpy(x, scratch, sizeof(double) * 2 * static_cast<std::size_t>(m) * n);
        } else {
            for (Index j = 0; j < n; ++j)
                std::memcpy(x + 2 * ldx * j, scratch + 2 * m * j, sizeof(double) * 2 * static_cast<std::size_t>(m));
        }
    }
}

} // namespace zek::fft

extern "C" {

void C06_COMPLEX_PASS2(int m, int ido, int l1, const double *cc, double *ch, const double *tw) {
    zek::fft::complex_pass(2, m, m, m, ido, l1, cc, ch, tw);
}
void C06_COMPLEX_PASS3(int m, int ido, int l1, const double *cc, double *ch, const double *tw) {
    zek::fft::complex_pass(3, m, m, m, ido, l1, cc, ch, tw);
}
void C06_COMPLEX_PASS4(int m, int ido, int l1, const double *cc, double *ch, const double *tw) {
    zek::fft::complex_pass(4, m, m, m, ido, l1, cc, ch, tw);
}
void C06_COMPLEX_PASS5(int m, int ido, int l1, const double *cc, double *ch, const double *tw) {
    zek::fft::complex_pass(5, m, m, m, ido, l1, cc, ch, tw);
}
void C06_COMPLEX_GENERAL_PASS(int p, int m, int ido, int l1, const double *cc, double *ch, const double *tw) {
    zek::fft::complex_pass(p, m, m, m, ido, l1, cc, ch, tw);
}

void C06_COMPLEX_DRIVER(int n, double *x, double *scratch, const double *trig, const int *factors, int nf) {
    if (n < 1) return;
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    zek::fft::complex_passes(1, 1, n, factors, nf, trig, x, scratch, scale, scale);
}

void C06_COMPLEX_TABLE(int n, const int *factors, int nf, double *trig) {
    if (n < 1) return;
    zek::fft::fill_complex_table(n, factors, nf, trig);
}

void C06_MULTIPLE_COMPLEX_FORWARD(int m, int n, double *x, double *scratch, const double *trig, const int *factors,
                                  int nf) {
    if (m < 1 || n < 1) return;
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    zek::fft::complex_passes(m, m, n, factors, nf, trig, x, scratch, scale, scale);
}

// The backward transform is the conjugate of the forward transform of the conjugate: the imaginary
// parts are negated on the way in, and the final scaling negates them again.
void C06_MULTIPLE_COMPLEX_BACKWARD(int m, int n, double *x, double *scratch, const double *trig,
                                   const int *factors, int nf) {
    if (m < 1 || n < 1) return;
    const zek::fft::Index count = static_cast<zek::fft::Index>(m) * n;
    for (zek::fft::Index i = 0; i < count; ++i) x[2 * i + 1] = -x[2 * i + 1];
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    zek::fft::complex_passes(m, m, n, factors, nf, trig, x, scratch, scale, -scale);
}

} // extern "C"
