// The in-place real passes of both engines.
//
// After the digit permutation, blocks of K rows hold packed Hermitian transforms Y(r) of length K.  The
// pass of factor P joins P neighbouring blocks into one transform Z of length L = K*P:
//     Z(k) = sum over r of exp(-2 pi i r k / L) Y(r)(k mod K).
// Frequencies k1 and K-k1 of the inputs are conjugate, so they are handled together as one group:
// Y(r)(k1) is read as (x(rK+k1), x(rK+K-k1)), twiddled by exp(-2 pi i r k1 / L), and a transform of
// length P gives Z(k1 + qK) for q = 0..P-1.  A value with k > L/2 is stored as its conjugate partner
// Z(L-k).  The positions written are exactly those read, so the pass works in place.  Groups k1 = 0 and
// k1 = K/2 have real inputs and fill one position per output.  The backward pass is the transpose: it
// reads the outputs, applies the inverse small transform and the conjugate twiddles.
#include "analysis/fft.h"
#include "analysis/fft_kernels.h"

namespace zek::fft {

namespace {

// exp(-2 pi i idx / N) = (c, -s) for 0 < idx < N/2 from the table.
inline void twiddle(const RealTable &t, Index idx, double &c, double &s) {
    c = t.cosv[idx - 1];
    s = t.sinv[idx - 1];
}

// The same for any idx in [0, N), through the symmetries of the circle.
inline void root(const RealTable &t, Index n, Index idx, double &c, double &s) {
    if (idx == 0) {
        c = 1.0;
        s = 0.0;
    } else if (2 * idx < n) {
        c = t.cosv[idx - 1];
        s = t.sinv[idx - 1];
    } else if (2 * idx == n) {
        c = -1.0;
        s = 0.0;
    } else {
        c = t.cosv[n - idx - 1];
        s = -t.sinv[n - idx - 1];
    }
}

template <int P, bool kSingle> void forward_pass(int m_rows, int n, Index k, double *x, RealTable t) {
    const Index m = kSingle ? 1 : m_rows;
    const Index l = k * P, s = n / l, blocks = n / l;
    double wc[P], ws[P];
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        // k1 = 0: real inputs.
        for (Index row = 0; row < m; ++row) {
            double re[P], im[P];
            for (int r = 0; r < P; ++r) {
                re[r] = blk[r * k * m + row];
                im[r] = 0.0;
            }
            dft<P>(re, im);
            blk[row] = re[0];
            for (int q = 1; 2 * q < P; ++q) {
                blk[q * k * m + row] = re[q];
                blk[(P - q) * k * m + row] = im[q];
            }
            if (P % 2 == 0) blk[(P / 2) * k * m + row] = re[P / 2];
        }
        // 0 < k1 < K/2: complex inputs in conjugate pairs.
        for (Index k1 = 1; 2 * k1 < k; ++k1) {
            for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
            for (Index row = 0; row < m; ++row) {
                double re[P], im[P];
                re[0] = blk[k1 * m + row];
                im[0] = blk[(k - k1) * m + row];
                for (int r = 1; r < P; ++r) {
                    const double a = blk[(r * k + k1) * m + row], bb = blk[(r * k + k - k1) * m + row];
                    re[r] = a * wc[r] + bb * ws[r];
                    im[r] = bb * wc[r] - a * ws[r];
                }
                dft<P>(re, im);
                for (int q = 0; q < P; ++q) {
                    const Index kk = k1 + q * k;
                    if (2 * kk < l) {
                        blk[kk * m + row] = re[q];
                        blk[(l - kk) * m + row] = im[q];
                    } else {
                        blk[(l - kk) * m + row] = re[q];
                        blk[kk * m + row] = -im[q];
                    }
                }
            }
        }
        // k1 = K/2: real inputs twiddled by the 2P-th roots.
        if (k % 2 == 0) {
            const Index k1 = k / 2;
            for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
            for (Index row = 0; row < m; ++row) {
                double re[P], im[P];
                re[0] = blk[k1 * m + row];
                im[0] = 0.0;
                for (int r = 1; r < P; ++r) {
                    const double a = blk[(r * k + k1) * m + row];
                    re[r] = a * wc[r];
                    im[r] = -a * ws[r];
                }
                dft<P>(re, im);
                for (int q = 0; 2 * q + 1 < P; ++q) {
                    const Index kk = k1 + q * k;
                    blk[kk * m + row] = re[q];
                    blk[(l - kk) * m + row] = im[q];
                }
                if (P % 2 == 1) blk[(k1 + (P / 2) * k) * m + row] = re[P / 2];
            }
        }
    }
}

template <int P, bool kSingle> void backward_pass(int m_rows, int n, Index k, double *x, RealTable t) {
    const Index m = kSingle ? 1 : m_rows;
    const Index l = k * P, s = n / l, blocks = n / l;
    double wc[P], ws[P];
    // The inverse small transform is the forward one with real and imaginary parts exchanged, so the
    // loads below fill (im, re) and the results are read back the same way.
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        for (Index row = 0; row < m; ++row) {
            double re[P], im[P];
            im[0] = blk[row];
            re[0] = 0.0;
            for (int q = 1; 2 * q < P; ++q) {
                im[q] = blk[q * k * m + row];
                re[q] = blk[(P - q) * k * m + row];
                im[P - q] = im[q];
                re[P - q] = -re[q];
            }
            if (P % 2 == 0) {
                im[P / 2] = blk[(P / 2) * k * m + row];
                re[P / 2] = 0.0;
            }
            dft<P>(re, im);
            for (int r = 0; r < P; ++r) blk[r * k * m + row] = im[r];
        }
        for (Index k1 = 1; 2 * k1 < k; ++k1) {
            for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
            for (Index row = 0; row < m; ++row) {
                double re[P], im[P];
                for (int q = 0; q < P; ++q) {
                    const Index kk = k1 + q * k;
                    if (2 * kk < l) {
                        im[q] = blk[kk * m + row];
                        re[q] = blk[(l - kk) * m + row];
                    } else {
                        im[q] = blk[(l - kk) * m + row];
                        re[q] = -blk[kk * m + row];
                    }
                }
                dft<P>(re, im);
                blk[k1 * m + row] = im[0];
                blk[(k - k1) * m + row] = re[0];
                for (int r = 1; r < P; ++r) {
                    // (a + ib)(c + is) with a = im[r], b = re[r]
                    const double a = im[r], bb = re[r];
                    blk[(r * k + k1) * m + row] = a * wc[r] - bb * ws[r];
                    blk[(r * k + k - k1) * m + row] = bb * wc[r] + a * ws[r];
                }
            }
        }
        if (k % 2 == 0) {
            const Index k1 = k / 2;
            for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
            for (Index row = 0; row < m; ++row) {
                double re[P], im[P];
                for (int q = 0; 2 * q + 1 < P; ++q) {
                    const Index kk = k1 + q * k;
                    im[q] = blk[kk * m + row];
                    re[q] = blk[(l - kk) * m + row];
                    im[P - 1 - q] = im[q];
                    re[P - 1 - q] = -re[q];
                }
                if (P % 2 == 1) {
                    im[P / 2] = blk[(k1 + (P / 2) * k) * m + row];
                    re[P / 2] = 0.0;
                }
                dft<P>(re, im);
                blk[k1 * m + row] = im[0];
                for (int r = 1; r < P; ++r) blk[(r * k + k1) * m + row] = im[r] * wc[r] - re[r] * ws[r];
            }
        }
    }
}

// Any other factor: the outputs of a group come straight from the definition, each root
// exp(-2 pi i r k / L) read from the table.  A group's inputs are gathered first, into a local buffer
// or, for large factors, into TMP: P values for the groups k1 = 0 and K/2, 2P for the others (which
// exist only when K >= 3, so that 2P <= N).
constexpr int kLocalGroup = 64;

void general_forward(int p, int m, int n, Index k, double *x, RealTable t, double *tmp) {
    const Index l = k * p, s = n / l, blocks = n / l;
    double local[kLocalGroup];
    double *bre = 2 * p <= kLocalGroup || tmp == nullptr ? local : tmp;
    double *bim = bre + p;
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        for (Index k1 = 0; 2 * k1 <= k; ++k1) {
            const bool paired = k1 > 0 && 2 * k1 < k;
            for (Index row = 0; row < m; ++row) {
                for (int r = 0; r < p; ++r) {
                    bre[r] = blk[(r * k + k1) * m + row];
                    if (paired) bim[r] = blk[(r * k + k - k1) * m + row];
                }
                for (int q = 0; q < p; ++q) {
                    const Index kk = k1 + q * k;
                    if (2 * kk > l && !paired) continue; // the conjugate of a value stored already
                    double zr = 0.0, zi = 0.0;
                    const Index step = (s * kk) % n;
                    Index idx = 0;
                    for (int r = 0; r < p; ++r) {
                        double c, sn;
                        root(t, n, idx, c, sn);
                        const double bi = paired ? bim[r] : 0.0;
                        zr += bre[r] * c + bi * sn;
                        zi += bi * c - bre[r] * sn;
                        idx += step;
                        if (idx >= n) idx -= n;
                    }
                    if (2 * kk < l) {
                        blk[kk * m + row] = zr;
                        if (kk > 0) blk[(l - kk) * m + row] = zi;
                    } else if (2 * kk == l) {
                        blk[kk * m + row] = zr;
                    } else {
                        blk[(l - kk) * m + row] = zr;
                        blk[kk * m + row] = -zi;
                    }
                }
            }
        }
    }
}

void general_backward(int p, int m, int n, Index k, double *x, RealTable t, double *tmp) {
    const Index l = k * p, s = n / l, blocks = n / l;
    double local[kLocalGroup];
    double *bre = 2 * p <= kLocalGroup || tmp == nullptr ? local : tmp;
    double *bim = bre + p;
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        for (Index k1 = 0; 2 * k1 <= k; ++k1) {
            const bool paired = k1 > 0 && 2 * k1 < k;
            for (Index row = 0; row < m; ++row) {
                if (paired) {
                    // Z(k1 + qK) for all q, from the stored half.
                    for (int q = 0; q < p; ++q) {
                        const Index kk = k1 + q * k;
                        if (2 * kk < l) {
                            bre[q] = blk[kk * m + row];
                            bim[q] = blk[(l - kk) * m + row];
                        } else {
                            bre[q] = blk[(l - kk) * m + row];
                            bim[q] = -blk[kk * m + row];
                        }
                    }
                    // Y(r)(k1) = sum over q of Z(k1 + qK) exp(+2 pi i r (k1 + qK) / L)
                    for (int r = 0; r < p; ++r) {
                        double yr = 0.0, yi = 0.0;
                        for (int q = 0; q < p; ++q) {
                            double c, sn;
                            root(t, n, s * ((r * (k1 + q * k)) % l), c, sn);
                            yr += bre[q] * c - bim[q] * sn;
                            yi += bim[q] * c + bre[q] * sn;
                        }
                        blk[(r * k + k1) * m + row] = yr;
                        blk[(r * k + k - k1) * m + row] = yi;
                    }
                    continue;
                }
                // Real results: the group's P stored values, conjugate pairs counted twice.
                for (int q = 0; q < p; ++q) bre[q] = blk[(k1 + q * k) * m + row];
                for (int r = 0; r < p; ++r) {
                    double y = 0.0;
                    for (int q = 0; q < p; ++q) {
                        const Index kk = k1 + q * k;
                        if (2 * kk > l) break;
                        double c, sn;
                        root(t, n, s * ((r * kk) % l), c, sn);
                        if (kk == 0 || 2 * kk == l) {
                            y += bre[q] * c;
                        } else {
                            const int partner = p - q - (k1 > 0 ? 1 : 0);
                            y += 2.0 * (bre[q] * c - bre[partner] * sn);
                        }
                    }
                    blk[(r * k + k1) * m + row] = y;
                }
            }
        }
    }
}

template <int P> void forward_dispatch(int m, int n, Index k, double *x, RealTable t) {
    if (m == 1)
        forward_pass<P, true>(1, n, k, x, t);
    else
        forward_pass<P, false>(m, n, k, x, t);
}

template <int P> void backward_dispatch(int m, int n, Index k, double *x, RealTable t) {
    if (m == 1)
        backward_pass<P, true>(1, n, k, x, t);
    else
        backward_pass<P, false>(m, n, k, x, t);
}

} // namespace

void real_pass_forward(int p, int m, int n, int k, double *x, RealTable t, double *tmp) {
    switch (p) {
    case 2: forward_dispatch<2>(m, n, k, x, t); break;
    case 3: forward_dispatch<3>(m, n, k, x, t); break;
    case 4: forward_dispatch<4>(m, n, k, x, t); break;
    case 5: forward_dispatch<5>(m, n, k, x, t); break;
    case 6: forward_dispatch<6>(m, n, k, x, t); break;
    case 8: forward_dispatch<8>(m, n, k, x, t); break;
    default: general_forward(p, m, n, k, x, t, tmp); break;
    }
}

void real_pass_backward(int p, int m, int n, int k, double *x, RealTable t, double *tmp) {
    switch (p) {
    case 2: backward_dispatch<2>(m, n, k, x, t); break;
    case 3: backward_dispatch<3>(m, n, k, x, t); break;
    case 4: backward_dispatch<4>(m, n, k, x, t); break;
    case 5: backward_dispatch<5>(m, n, k, x, t); break;
    case 6: backward_dispatch<6>(m, n, k, x, t); break;
    case 8: backward_dispatch<8>(m, n, k, x, t); break;
    default: general_backward(p, m, n, k, x, t, tmp); break;
    }
}

} // namespace zek::fft
