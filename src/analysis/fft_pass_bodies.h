// The bodies of the written-out passes of both engines, as templates: this header is compiled once
// into the ordinary passes and once more into fft_wide.cpp for wider vector registers.  Everything
// here has internal linkage (see fft_kernels.h).
//
// Real passes (both engines): after the digit permutation, blocks of K rows hold packed Hermitian
// transforms Y(r) of length K.  The pass of factor P joins P neighbouring blocks into one transform Z
// of length L = K*P:
//     Z(k) = sum over r of exp(-2 pi i r k / L) Y(r)(k mod K).
// Frequencies k1 and K-k1 of the inputs are conjugate, so they are handled together as one group:
// Y(r)(k1) is read as (x(rK+k1), x(rK+K-k1)), twiddled by exp(-2 pi i r k1 / L), and a transform of
// length P gives Z(k1 + qK) for q = 0..P-1.  A value with k > L/2 is stored as its conjugate partner
// Z(L-k).  The positions written are exactly those read, so the pass works in place.  Groups k1 = 0 and
// k1 = K/2 have real inputs and fill one position per output.  The backward pass is the transpose: it
// reads the outputs, applies the inverse small transform and the conjugate twiddles.
//
// Complex passes (second engine): with L1 the product of the factors done and IDO = N/(L1*P), the pass
// of factor P reads P values IDO*L1... apart and writes
//     ch(i, k, j) = exp(-2 pi i L1 i j / N) * sum over r of cc(i, r, k) exp(-2 pi i r j / P),
// so that after the last pass the transform stands in natural order.
#ifndef ZEK_ANALYSIS_FFT_PASS_BODIES_H
#define ZEK_ANALYSIS_FFT_PASS_BODIES_H

#include "analysis/fft.h"
#include "analysis/fft_kernels.h"

namespace zek::fft {
namespace {

// exp(-2 pi i idx / N) = (c, -s) for 0 < idx < N/2 from the table.
inline void twiddle(const RealTable &t, Index idx, double &c, double &s) {
    c = t.cosv[idx - 1];
    s = t.sinv[idx - 1];
}

// Access to the values of one group (T = double) of one sequence, of two neighbouring groups k1, k1+1
// side by side (T = Cv, lanes 0 and 1), or of the same group in two neighbouring blocks, L apart.
// Positions rising with k1 are read "up", positions falling with k1 "down": lane 1 of a down access
// of two groups is the value just below.  gather() reads the twiddles of the lanes.
struct OneGroup {
    using T = double;
    double up(const double *p) const { return *p; }
    double down(const double *p) const { return *p; }
    void put_up(double *p, double v) const { *p = v; }
    void put_down(double *p, double v) const { *p = v; }
    double gather(const double *v, Index i, Index) const { return v[i]; }
};

struct TwoGroups {
    using T = Cv;
    Cv up(const double *p) const { return load(p); }
    Cv down(const double *p) const { return swapped(load(p - 1)); }
    void put_up(double *p, Cv v) const { store(p, v); }
    void put_down(double *p, Cv v) const { store(p - 1, swapped(v)); }
    Cv gather(const double *v, Index i, Index step) const { return Cv{v[i], v[i + step]}; }
};

struct TwoBlocks {
    using T = Cv;
    Index l;
    Cv up(const double *p) const { return Cv{p[0], p[l]}; }
    Cv down(const double *p) const { return up(p); }
    void put_up(double *p, Cv v) const {
        p[0] = v[0];
        p[l] = v[1];
    }
    void put_down(double *p, Cv v) const { put_up(p, v); }
    Cv gather(const double *v, Index i, Index) const { return Cv{v[i], v[i]}; }
};

#if defined(ZEK_FFT_WIDE)
// Four groups k1 .. k1+3 in the lanes of a V4.
struct FourGroups {
    using T = V4;
    using Mask = long long __attribute__((vector_size(32)));
    static V4 reversed(V4 v) { return ZEK_PERMUTE(v, 3, 2, 1, 0); }
    V4 up(const double *p) const { return load<V4>(p); }
    V4 down(const double *p) const { return reversed(load<V4>(p - 3)); }
    void put_up(double *p, V4 v) const { store(p, v); }
    void put_down(double *p, V4 v) const { store(p - 3, reversed(v)); }
    V4 gather(const double *v, Index i, Index step) const {
        return V4{v[i], v[i + step], v[i + 2 * step], v[i + 3 * step]};
    }
};

#endif

// The group k1 = 0 of a block: a transform of P real values, Z(qK) for q <= P/2 in place.
template <int P, class G> inline void forward_zero(const G &g, double *blk, Index k) {
    using T = typename G::T;
    T xr[P], re[P / 2 + 1], im[P / 2 + 1];
    for (int r = 0; r < P; ++r) xr[r] = g.up(blk + r * k);
    rdft<P>(xr, re, im);
    g.put_up(blk, re[0]);
    for (int q = 1; 2 * q < P; ++q) {
        g.put_up(blk + q * k, re[q]);
        g.put_up(blk + (P - q) * k, im[q]);
    }
    if (P % 2 == 0) g.put_up(blk + (P / 2) * k, re[P / 2]);
}

template <int P, class G> inline void backward_zero(const G &g, double *blk, Index k) {
    using T = typename G::T;
    T re[P / 2 + 1], im[P / 2 + 1], y[P];
    re[0] = g.up(blk);
    for (int q = 1; 2 * q < P; ++q) {
        re[q] = g.up(blk + q * k);
        im[q] = g.up(blk + (P - q) * k);
    }
    if (P % 2 == 0) re[P / 2] = g.up(blk + (P / 2) * k);
    hdft<P>(re, im, y);
    for (int r = 0; r < P; ++r) g.put_up(blk + r * k, y[r]);
}

// The group k1 = K/2 (K even): real inputs twiddled by the 2P-th roots (WC, WS), Z(K/2 + qK) for
// 2q + 1 <= P in place.
template <int P, class G>
inline void forward_half(const G &g, double *blk, Index k, Index l, const double *wc, const double *ws) {
    using T = typename G::T;
    const Index k1 = k / 2;
    T re[P], im[P];
    re[0] = g.up(blk + k1);
    im[0] = T{};
    for (int r = 1; r < P; ++r) {
        const T a = g.up(blk + r * k + k1);
        re[r] = a * wc[r];
        im[r] = -a * ws[r];
    }
    dft<P>(re, im);
    for (int q = 0; 2 * q + 1 < P; ++q) {
        const Index kk = k1 + q * k;
        g.put_up(blk + kk, re[q]);
        g.put_up(blk + l - kk, im[q]);
    }
    if (P % 2 == 1) g.put_up(blk + k1 + (P / 2) * k, re[P / 2]);
}

template <int P, class G>
inline void backward_half(const G &g, double *blk, Index k, Index l, const double *wc, const double *ws) {
    using T = typename G::T;
    const Index k1 = k / 2;
    T re[P], im[P];
    for (int q = 0; 2 * q + 1 < P; ++q) {
        const Index kk = k1 + q * k;
        im[q] = g.up(blk + kk);
        re[q] = g.up(blk + l - kk);
        im[P - 1 - q] = im[q];
        re[P - 1 - q] = -re[q];
    }
    if (P % 2 == 1) {
        im[P / 2] = g.up(blk + k1 + (P / 2) * k);
        re[P / 2] = T{};
    }
    dft<P>(re, im);
    g.put_up(blk + k1, im[0]);
    for (int r = 1; r < P; ++r) g.put_up(blk + r * k + k1, im[r] * wc[r] - re[r] * ws[r]);
}

// The groups 0 < k1 < K/2 of one block: Y(r)(k1) = (x(rK+k1), x(rK+K-k1)) twiddled by
// exp(-2 pi i r k1 / L), transformed, and Z(k1 + qK) stored in the places of the inputs (as its
// conjugate partner Z(L - k1 - qK) when that is the one in the lower half).
template <int P, class G>
inline void forward_group(const G &g, double *blk, Index k, Index l, Index k1, const RealTable &t, Index s) {
    using T = typename G::T;
    T re[P], im[P];
    re[0] = g.up(blk + k1);
    im[0] = g.down(blk + k - k1);
    for (int r = 1; r < P; ++r) {
        const Index idx = s * r * k1 - 1;
        const T wc = g.gather(t.cosv, idx, s * r), ws = g.gather(t.sinv, idx, s * r);
        const T a = g.up(blk + r * k + k1), b = g.down(blk + r * k + k - k1);
        re[r] = a * wc + b * ws;
        im[r] = b * wc - a * ws;
    }
    dft<P>(re, im);
    for (int q = 0; q < P; ++q) {
        const Index kk = k1 + q * k;
        if (2 * q + 1 < P + 1) { // kk < L/2 for every k1 < K/2
            g.put_up(blk + kk, re[q]);
            g.put_down(blk + l - kk, im[q]);
        } else {
            g.put_down(blk + l - kk, re[q]);
            g.put_up(blk + kk, -im[q]);
        }
    }
}

// The transpose of forward_group.  The inverse small transform is the forward one with real and
// imaginary parts exchanged, so the loads fill (im, re) and the results are read back the same way.
template <int P, class G>
inline void backward_group(const G &g, double *blk, Index k, Index l, Index k1, const RealTable &t, Index s) {
    using T = typename G::T;
    T re[P], im[P];
    // Outputs q < (P+1)/2 lie in the lower half for every k1 < K/2, the others in the upper.
    for (int q = 0; q < (P + 1) / 2; ++q) {
        const Index kk = k1 + q * k;
        im[q] = g.up(blk + kk);
        re[q] = g.down(blk + l - kk);
    }
    for (int q = (P + 1) / 2; q < P; ++q) {
        const Index kk = k1 + q * k;
        im[q] = g.down(blk + l - kk);
        re[q] = -g.up(blk + kk);
    }
    dft<P>(re, im);
    g.put_up(blk + k1, im[0]);
    g.put_down(blk + k - k1, re[0]);
    for (int r = 1; r < P; ++r) {
        const Index idx = s * r * k1 - 1;
        const T wc = g.gather(t.cosv, idx, s * r), ws = g.gather(t.sinv, idx, s * r);
        // (a + ib)(c + is) with a = im[r], b = re[r]
        const T a = im[r], b = re[r];
        g.put_up(blk + r * k + k1, a * wc - b * ws);
        g.put_down(blk + r * k + k - k1, b * wc + a * ws);
    }
}

// One pass of one sequence.  While the blocks are many, every group is done for several blocks at once
// (BLOCKS: their twiddles are the same); when they are few and long, the groups 0 < k1 < K/2 of a
// block go several at a time instead (GROUPS).  What is left over goes one by one.
template <int P, bool kForward, class Blocks = TwoBlocks, class Groups = TwoGroups>
void single_pass(Index n, Index k, double *x, const RealTable &t) {
    constexpr Index kLanes = sizeof(typename Groups::T) / sizeof(double);
    constexpr Index kBlockLanes = sizeof(typename Blocks::T) / sizeof(double);
    const Index l = k * P, s = n / l, blocks = n / l;
    // Across the blocks while they are short or at least as many as their groups.
    const bool across = blocks >= kBlockLanes && (k < 16 || blocks >= k);
    auto for_blocks = [&](auto group) {
        Index b = 0;
        if (across)
            for (; b + kBlockLanes <= blocks; b += kBlockLanes) group(Blocks{l}, x + b * l);
        for (; b < blocks; ++b) group(OneGroup{}, x + b * l);
    };
    auto along_block = [&](double *blk) {
        Index k1 = 1;
        for (; 2 * (k1 + kLanes - 1) < k; k1 += kLanes) {
            if constexpr (kForward)
                forward_group<P>(Groups{}, blk, k, l, k1, t, s);
            else
                backward_group<P>(Groups{}, blk, k, l, k1, t, s);
        }
        for (; 2 * k1 < k; ++k1) {
            if constexpr (kForward)
                forward_group<P>(OneGroup{}, blk, k, l, k1, t, s);
            else
                backward_group<P>(OneGroup{}, blk, k, l, k1, t, s);
        }
    };
    for_blocks([&](auto g, double *blk) {
        if constexpr (kForward)
            forward_zero<P>(g, blk, k);
        else
            backward_zero<P>(g, blk, k);
    });
    if (k % 2 == 0) {
        double wc[P], ws[P];
        for (int r = 1; r < P; ++r) twiddle(t, s * r * (k / 2), wc[r], ws[r]);
        for_blocks([&](auto g, double *blk) {
            if constexpr (kForward)
                forward_half<P>(g, blk, k, l, wc, ws);
            else
                backward_half<P>(g, blk, k, l, wc, ws);
        });
    }
    if (across) {
        for (Index k1 = 1; 2 * k1 < k; ++k1) {
            for_blocks([&](auto g, double *blk) {
                if constexpr (kForward)
                    forward_group<P>(g, blk, k, l, k1, t, s);
                else
                    backward_group<P>(g, blk, k, l, k1, t, s);
            });
        }
    } else {
        for (double *blk = x; blk < x + n; blk += l) along_block(blk);
    }
}

// One value (T = double) or consecutive values (T a vector) of the rows.
template <class T> struct Row {
    static T get(const double *p) { return load<T>(p); }
    static void put(double *p, T v) { store(p, v); }
};
template <> struct Row<double> {
    static double get(const double *p) { return *p; }
    static void put(double *p, double v) { *p = v; }
};

// body(T{}, row) for the M rows: in vectors of V from ROW on, then one by one.
template <class V, class Body> inline void over_rows(Index m, Body body) {
    constexpr Index kWidth = sizeof(V) / sizeof(double);
    Index row = 0;
    for (; row + kWidth <= m; row += kWidth) body(V{}, row);
    for (; row < m; ++row) body(0.0, row);
}

// The real passes on rows of M > 1 values, side by side in vectors of V.
template <int P, class V> void forward_pass(int m_rows, int n, Index k, double *x, RealTable t) {
    const Index m = m_rows;
    const Index l = k * P, s = n / l, blocks = n / l;
    double wc[P], ws[P];
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        // k1 = 0: real inputs.
        over_rows<V>(m, [&](auto lane, Index row) {
            using T = decltype(lane);
            double *v = blk + row;
            T re[P], im[P];
            for (int r = 0; r < P; ++r) {
                re[r] = Row<T>::get(v + r * k * m);
                im[r] = T{};
            }
            dft<P>(re, im);
            Row<T>::put(v, re[0]);
            for (int q = 1; 2 * q < P; ++q) {
                Row<T>::put(v + q * k * m, re[q]);
                Row<T>::put(v + (P - q) * k * m, im[q]);
            }
            if (P % 2 == 0) Row<T>::put(v + (P / 2) * k * m, re[P / 2]);
        });
        // 0 < k1 < K/2: complex inputs in conjugate pairs.
        for (Index k1 = 1; 2 * k1 < k; ++k1) {
            for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
            over_rows<V>(m, [&](auto lane, Index row) {
                using T = decltype(lane);
                double *v = blk + row;
                T re[P], im[P];
                re[0] = Row<T>::get(v + k1 * m);
                im[0] = Row<T>::get(v + (k - k1) * m);
                for (int r = 1; r < P; ++r) {
                    const T a = Row<T>::get(v + (r * k + k1) * m), bb = Row<T>::get(v + (r * k + k - k1) * m);
                    re[r] = a * wc[r] + bb * ws[r];
                    im[r] = bb * wc[r] - a * ws[r];
                }
                dft<P>(re, im);
                for (int q = 0; q < P; ++q) {
                    const Index kk = k1 + q * k;
                    if (2 * q + 1 < P + 1) {
                        Row<T>::put(v + kk * m, re[q]);
                        Row<T>::put(v + (l - kk) * m, im[q]);
                    } else {
                        Row<T>::put(v + (l - kk) * m, re[q]);
                        Row<T>::put(v + kk * m, -im[q]);
                    }
                }
            });
        }
        // k1 = K/2: real inputs twiddled by the 2P-th roots.
        if (k % 2 == 0) {
            const Index k1 = k / 2;
            for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
            over_rows<V>(m, [&](auto lane, Index row) {
                using T = decltype(lane);
                double *v = blk + row;
                T re[P], im[P];
                re[0] = Row<T>::get(v + k1 * m);
                im[0] = T{};
                for (int r = 1; r < P; ++r) {
                    const T a = Row<T>::get(v + (r * k + k1) * m);
                    re[r] = a * wc[r];
                    im[r] = -a * ws[r];
                }
                dft<P>(re, im);
                for (int q = 0; 2 * q + 1 < P; ++q) {
                    const Index kk = k1 + q * k;
                    Row<T>::put(v + kk * m, re[q]);
                    Row<T>::put(v + (l - kk) * m, im[q]);
                }
                if (P % 2 == 1) Row<T>::put(v + (k1 + (P / 2) * k) * m, re[P / 2]);
            });
        }
    }
}

template <int P, class V> void backward_pass(int m_rows, int n, Index k, double *x, RealTable t) {
    const Index m = m_rows;
    const Index l = k * P, s = n / l, blocks = n / l;
    double wc[P], ws[P];
    // The inverse small transform is the forward one with real and imaginary parts exchanged, so the
    // loads below fill (im, re) and the results are read back the same way.
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        over_rows<V>(m, [&](auto lane, Index row) {
            using T = decltype(lane);
            double *v = blk + row;
            T re[P], im[P];
            im[0] = Row<T>::get(v);
            re[0] = T{};
            for (int q = 1; 2 * q < P; ++q) {
                im[q] = Row<T>::get(v + q * k * m);
                re[q] = Row<T>::get(v + (P - q) * k * m);
                im[P - q] = im[q];
                re[P - q] = -re[q];
            }
            if (P % 2 == 0) {
                im[P / 2] = Row<T>::get(v + (P / 2) * k * m);
                re[P / 2] = T{};
            }
            dft<P>(re, im);
            for (int r = 0; r < P; ++r) Row<T>::put(v + r * k * m, im[r]);
        });
        for (Index k1 = 1; 2 * k1 < k; ++k1) {
            for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
            over_rows<V>(m, [&](auto lane, Index row) {
                using T = decltype(lane);
                double *v = blk + row;
                T re[P], im[P];
                for (int q = 0; q < (P + 1) / 2; ++q) {
                    const Index kk = k1 + q * k;
                    im[q] = Row<T>::get(v + kk * m);
                    re[q] = Row<T>::get(v + (l - kk) * m);
                }
                for (int q = (P + 1) / 2; q < P; ++q) {
                    const Index kk = k1 + q * k;
                    im[q] = Row<T>::get(v + (l - kk) * m);
                    re[q] = -Row<T>::get(v + kk * m);
                }
                dft<P>(re, im);
                Row<T>::put(v + k1 * m, im[0]);
                Row<T>::put(v + (k - k1) * m, re[0]);
                for (int r = 1; r < P; ++r) {
                    // (a + ib)(c + is) with a = im[r], b = re[r]
                    const T a = im[r], bb = re[r];
                    Row<T>::put(v + (r * k + k1) * m, a * wc[r] - bb * ws[r]);
                    Row<T>::put(v + (r * k + k - k1) * m, bb * wc[r] + a * ws[r]);
                }
            });
        }
        if (k % 2 == 0) {
            const Index k1 = k / 2;
            for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
            over_rows<V>(m, [&](auto lane, Index row) {
                using T = decltype(lane);
                double *v = blk + row;
                T re[P], im[P];
                for (int q = 0; 2 * q + 1 < P; ++q) {
                    const Index kk = k1 + q * k;
                    im[q] = Row<T>::get(v + kk * m);
                    re[q] = Row<T>::get(v + (l - kk) * m);
                    im[P - 1 - q] = im[q];
                    re[P - 1 - q] = -re[q];
                }
                if (P % 2 == 1) {
                    im[P / 2] = Row<T>::get(v + (k1 + (P / 2) * k) * m);
                    re[P / 2] = T{};
                }
                dft<P>(re, im);
                Row<T>::put(v + k1 * m, im[0]);
                for (int r = 1; r < P; ++r) Row<T>::put(v + (r * k + k1) * m, im[r] * wc[r] - re[r] * ws[r]);
            });
        }
    }
}

// The complex butterflies work on complex numbers held in vectors (fft_kernels.h): the P inputs of
// one output column are loaded, transformed in registers, multiplied by their twiddles and stored.
// V holds Lanes<V>::kComplex neighbouring columns (or rows); what does not fill a V is done in V2.

// One column of P values at IN (RSTRIDE apart) to OUT (OSTRIDE apart), twiddles W for j >= 1.
template <int P, class V>
inline void butterfly(const double *in, Index rstride, double *out, Index ostride, const Twiddle<V> *w) {
    V z[P];
    for (int r = 0; r < P; ++r) z[r] = load<V>(in + r * rstride);
    cdft<P>(z);
    store(out, z[0]);
    for (int j = 1; j < P; ++j) store(out + j * ostride, w == nullptr ? z[j] : times(z[j], w[j]));
}

// One sequence: the loop over i runs innermost, at stride 1, the twiddles of neighbouring i read from
// the table together.
template <int P, class V> void pass_single(int ido, int l1, const double *cc, double *ch, const double *tw) {
    constexpr int kC = Lanes<V>::kComplex;
    const Index tstride = 2 * (static_cast<Index>(ido) - 1);
    const Index istride = 2 * static_cast<Index>(ido), ostride = 2 * static_cast<Index>(ido) * l1;
    if (ido == 1) {
        // The last pass: no twiddles, the columns k of one input block lie 2P apart.
        Index k = 0;
        if constexpr (kC == 2) {
            for (; k + 2 <= l1; k += 2) {
                const double *in = cc + 2 * P * k;
                V z[P];
                for (int r = 0; r < P; ++r) {
                    const V2 a = load<V2>(in + 2 * r), b = load<V2>(in + 2 * P + 2 * r);
                    z[r] = V{a[0], a[1], b[0], b[1]};
                }
                cdft<P>(z);
                for (int j = 0; j < P; ++j) store(ch + 2 * k + j * ostride, z[j]);
            }
        }
        for (; k < l1; ++k) butterfly<P, V2>(cc + 2 * P * k, 2, ch + 2 * k, ostride, nullptr);
        return;
    }
    for (Index k = 0; k < l1; ++k) {
        const double *in = cc + istride * P * k;
        double *out = ch + 2 * ido * k;
        butterfly<P, V2>(in, istride, out, ostride, nullptr);
        Index i = 1;
        for (; i + kC <= ido; i += kC) {
            Twiddle<V> w[P];
            for (int j = 1; j < P; ++j) w[j] = twiddles_at<V>(tw + (j - 1) * tstride + 2 * (i - 1));
            butterfly<P, V>(in + 2 * i, istride, out + 2 * i, ostride, w);
        }
        for (; i < ido; ++i) {
            Twiddle<V2> w[P];
            for (int j = 1; j < P; ++j) w[j] = twiddles_at<V2>(tw + (j - 1) * tstride + 2 * (i - 1));
            butterfly<P, V2>(in + 2 * i, istride, out + 2 * i, ostride, w);
        }
    }
}

// Rows of M values: the loop over the rows runs innermost, with the twiddles held fixed.
template <int P, class V>
void pass_rows(int m, Index ldi, Index ldo, int ido, int l1, const double *cc, double *ch, const double *tw) {
    constexpr int kC = Lanes<V>::kComplex;
    const Index tstride = 2 * (static_cast<Index>(ido) - 1);
    const Index istride = 2 * ldi * ido, ostride = 2 * ldo * ido * l1;
    for (Index k = 0; k < l1; ++k) {
        for (Index i = 0; i < ido; ++i) {
            const double *in = cc + 2 * ldi * (i + ido * P * k);
            double *out = ch + 2 * ldo * (i + ido * k);
            Twiddle<V> w[P];
            Twiddle<V2> w2[P];
            if (i > 0) {
                for (int j = 1; j < P; ++j) {
                    const double *t = tw + (j - 1) * tstride + 2 * (i - 1);
                    w[j] = twiddle_of<V>(t[0], t[1]);
                    w2[j] = twiddle_of<V2>(t[0], t[1]);
                }
            }
            Index row = 0;
            for (; row + kC <= m; row += kC)
                butterfly<P, V>(in + 2 * row, istride, out + 2 * row, ostride, i > 0 ? w : nullptr);
            for (; row < m; ++row)
                butterfly<P, V2>(in + 2 * row, istride, out + 2 * row, ostride, i > 0 ? w2 : nullptr);
        }
    }
}

// Odd factors from 7 up to kGeneralLocal, the general pass in vectors: the values r and P-r are met
// as their sum and difference, and each pair of outputs j, P-j comes from one sweep over them, so the
// work is about P*P/2 complex products per column.  The roots exp(-2 pi i q/P) are at the head of the
// pass's table.  Larger factors go through the scalar form in fft_complex_passes.cpp, which needs no
// local arrays.
constexpr int kGeneralLocal = 64;

// One column: P values at IN (RSTRIDE apart) to OUT (OSTRIDE apart); twiddle(j) gives the twiddle
// of output j, or null.
template <class V, class Tw>
inline void general_column(int p, const double *in, Index rstride, double *out, Index ostride, const double *roots,
                           Tw twiddle_of_output) {
    const int h = p / 2;
    V sums[kGeneralLocal / 2], diffs[kGeneralLocal / 2];
    const V x0 = load<V>(in);
    V total = x0;
    for (int r = 1; r <= h; ++r) {
        const V a = load<V>(in + r * rstride), b = load<V>(in + (p - r) * rstride);
        sums[r - 1] = a + b;
        diffs[r - 1] = a - b;
        total += sums[r - 1];
    }
    store(out, total);
    for (int j = 1; j <= h; ++j) {
        V u = x0, v = V{};
        int idx = 0;
        for (int r = 1; r <= h; ++r) {
            idx += j;
            if (idx >= p) idx -= p;
            u += roots[2 * (idx - 1)] * sums[r - 1];
            v += roots[2 * (idx - 1) + 1] * diffs[r - 1];
        }
        // y(j) = u + i v, y(p-j) = u - i v (the roots hold -sin)
        const V iv = swapped(v) * Lanes<V>::splat(-1.0, 1.0);
        V yj = u + iv, yk = u - iv;
        if (const Twiddle<V> *w = twiddle_of_output(j)) yj = times(yj, *w);
        if (const Twiddle<V> *w = twiddle_of_output(p - j)) yk = times(yk, *w);
        store(out + j * ostride, yj);
        store(out + (p - j) * ostride, yk);
    }
}

template <class V>
void general_pass_local(int p, int m, Index ldi, Index ldo, int ido, int l1, const double *cc, double *ch,
                        const double *tw) {
    constexpr int kC = Lanes<V>::kComplex;
    const double *roots = tw;
    const double *twid = tw + 2 * (p - 1);
    const Index tstride = 2 * (static_cast<Index>(ido) - 1);
    const Index istride = 2 * ldi * ido, ostride = 2 * ldo * ido * l1;
    auto none = [](int) -> const Twiddle<V2> * { return nullptr; };
    auto none_v = [](int) -> const Twiddle<V> * { return nullptr; };
    Twiddle<V> w[kGeneralLocal];
    Twiddle<V2> w2[kGeneralLocal];
    for (Index k = 0; k < l1; ++k) {
        if (m == 1 && ldi == 1 && ldo == 1) {
            // One sequence: neighbouring columns i side by side.
            const double *in = cc + istride * p * k;
            double *out = ch + 2 * ido * k;
            general_column<V2>(p, in, istride, out, ostride, roots, none);
            Index i = 1;
            for (; i + kC <= ido; i += kC) {
                for (int j = 1; j < p; ++j) w[j] = twiddles_at<V>(twid + (j - 1) * tstride + 2 * (i - 1));
                general_column<V>(p, in + 2 * i, istride, out + 2 * i, ostride, roots,
                                  [&](int j) -> const Twiddle<V> * { return &w[j]; });
            }
            for (; i < ido; ++i) {
                for (int j = 1; j < p; ++j) w2[j] = twiddles_at<V2>(twid + (j - 1) * tstride + 2 * (i - 1));
                general_column<V2>(p, in + 2 * i, istride, out + 2 * i, ostride, roots,
                                   [&](int j) -> const Twiddle<V2> * { return &w2[j]; });
            }
            continue;
        }
        for (Index i = 0; i < ido; ++i) {
            const double *in = cc + 2 * ldi * (i + ido * p * k);
            double *out = ch + 2 * ldo * (i + ido * k);
            for (int j = 1; i > 0 && j < p; ++j) {
                const double *t = twid + (j - 1) * tstride + 2 * (i - 1);
                w[j] = twiddle_of<V>(t[0], t[1]);
                w2[j] = twiddle_of<V2>(t[0], t[1]);
            }
            Index row = 0;
            for (; row + kC <= m; row += kC) {
                if (i == 0)
                    general_column<V>(p, in + 2 * row, istride, out + 2 * row, ostride, roots, none_v);
                else
                    general_column<V>(p, in + 2 * row, istride, out + 2 * row, ostride, roots,
                                      [&](int j) -> const Twiddle<V> * { return &w[j]; });
            }
            for (; row < m; ++row) {
                if (i == 0)
                    general_column<V2>(p, in + 2 * row, istride, out + 2 * row, ostride, roots, none);
                else
                    general_column<V2>(p, in + 2 * row, istride, out + 2 * row, ostride, roots,
                                       [&](int j) -> const Twiddle<V2> * { return &w2[j]; });
            }
        }
    }
}

} // namespace
} // namespace zek::fft

#endif
