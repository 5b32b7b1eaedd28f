// Small discrete Fourier transforms (the butterflies) that every pass of chapter C06 is built from.
//
// dft<P>(re, im) replaces the P complex values (re[k], im[k]) by their forward transform
//     y(q) = sum over r of x(r) * exp(-2 pi i r q / P),
// unscaled.  The backward transform comes from the same code by exchanging the real and imaginary
// parts on the way in and out: swap(DFT(swap(x))) is P times the inverse transform, since
// swap(z) = i * conj(z).  Each radix is written out by hand; the compiler sees constant sizes and keeps
// everything in registers.
#ifndef ZEK_ANALYSIS_FFT_KERNELS_H
#define ZEK_ANALYSIS_FFT_KERNELS_H

// The butterflies are meant to vanish into the loops that call them, their arrays into registers.
#define ZEK_FFT_INLINE inline __attribute__((always_inline))

namespace zek::fft {
// Everything here has internal linkage: each source file gets its own copies, compiled for the
// instructions that file is built for, so no copy built for wider registers can stand in for another.
namespace {

constexpr double kSqrtHalf = 0.70710678118654752440;
constexpr double kSin60 = 0.86602540378443864676;   // sin(2 pi / 3)
constexpr double kCos72 = 0.30901699437494742410;   // cos(2 pi / 5)
constexpr double kCos144 = -0.80901699437494742410; // cos(4 pi / 5)
constexpr double kSin72 = 0.95105651629515357212;   // sin(2 pi / 5)
constexpr double kSin144 = 0.58778525229247312917;  // sin(4 pi / 5)

template <class T> ZEK_FFT_INLINE void dft2(T *re, T *im) {
    const T r = re[0] - re[1], i = im[0] - im[1];
    re[0] += re[1];
    im[0] += im[1];
    re[1] = r;
    im[1] = i;
}

template <class T> ZEK_FFT_INLINE void dft3(T *re, T *im) {
    const T tr = re[1] + re[2], ti = im[1] + im[2];
    const T dr = kSin60 * (re[1] - re[2]), di = kSin60 * (im[1] - im[2]);
    const T mr = re[0] - 0.5 * tr, mi = im[0] - 0.5 * ti;
    re[0] += tr;
    im[0] += ti;
    re[1] = mr + di;
    im[1] = mi - dr;
    re[2] = mr - di;
    im[2] = mi + dr;
}

template <class T> ZEK_FFT_INLINE void dft4(T *re, T *im) {
    const T ar = re[0] + re[2], ai = im[0] + im[2];
    const T br = re[0] - re[2], bi = im[0] - im[2];
    const T cr = re[1] + re[3], ci = im[1] + im[3];
    const T dr = re[1] - re[3], di = im[1] - im[3];
    re[0] = ar + cr;
    im[0] = ai + ci;
    re[2] = ar - cr;
    im[2] = ai - ci;
    re[1] = br + di;
    im[1] = bi - dr;
    re[3] = br - di;
    im[3] = bi + dr;
}

template <class T> ZEK_FFT_INLINE void dft5(T *re, T *im) {
    const T t1r = re[1] + re[4], t1i = im[1] + im[4];
    const T t2r = re[2] + re[3], t2i = im[2] + im[3];
    const T d1r = re[1] - re[4], d1i = im[1] - im[4];
    const T d2r = re[2] - re[3], d2i = im[2] - im[3];
    const T m1r = re[0] + kCos72 * t1r + kCos144 * t2r, m1i = im[0] + kCos72 * t1i + kCos144 * t2i;
    const T m2r = re[0] + kCos144 * t1r + kCos72 * t2r, m2i = im[0] + kCos144 * t1i + kCos72 * t2i;
    const T n1r = kSin72 * d1r + kSin144 * d2r, n1i = kSin72 * d1i + kSin144 * d2i;
    const T n2r = kSin144 * d1r - kSin72 * d2r, n2i = kSin144 * d1i - kSin72 * d2i;
    re[0] += t1r + t2r;
    im[0] += t1i + t2i;
    re[1] = m1r + n1i;
    im[1] = m1i - n1r;
    re[4] = m1r - n1i;
    im[4] = m1i + n1r;
    re[2] = m2r + n2i;
    im[2] = m2i - n2r;
    re[3] = m2r - n2i;
    im[3] = m2i + n2r;
}

// The last stage of a transform of 2H values from the transforms of its even (E) and odd values, the
// odd ones already turned by their roots (W, W[0] the first odd value itself):
// y(k) = E(k) + W(k), y(k + H) = E(k) - W(k).
template <int H, class T>
ZEK_FFT_INLINE void join_halves(T *re, T *im, const T *er, const T *ei, const T *wr, const T *wi) {
    for (int k = 0; k < H; ++k) {
        re[k] = er[k] + wr[k];
        im[k] = ei[k] + wi[k];
        re[k + H] = er[k] - wr[k];
        im[k + H] = ei[k] - wi[k];
    }
}

// 6 = 2 x 3: two transforms of three on the even and odd values, joined with the sixth roots.
template <class T> ZEK_FFT_INLINE void dft6(T *re, T *im) {
    T er[3] = {re[0], re[2], re[4]}, ei[3] = {im[0], im[2], im[4]};
    T orr[3] = {re[1], re[3], re[5]}, oi[3] = {im[1], im[3], im[5]};
    dft3(er, ei);
    dft3(orr, oi);
    // exp(-i pi/3) = (1/2, -s), exp(-2 i pi/3) = (-1/2, -s)
    const T wr[3] = {orr[0], 0.5 * orr[1] + kSin60 * oi[1], -0.5 * orr[2] + kSin60 * oi[2]};
    const T wi[3] = {oi[0], 0.5 * oi[1] - kSin60 * orr[1], -0.5 * oi[2] - kSin60 * orr[2]};
    join_halves<3>(re, im, er, ei, wr, wi);
}

// 8 = 2 x 4: two transforms of four, joined with the eighth roots.
template <class T> ZEK_FFT_INLINE void dft8(T *re, T *im) {
    T er[4] = {re[0], re[2], re[4], re[6]}, ei[4] = {im[0], im[2], im[4], im[6]};
    T orr[4] = {re[1], re[3], re[5], re[7]}, oi[4] = {im[1], im[3], im[5], im[7]};
    dft4(er, ei);
    dft4(orr, oi);
    // exp(-i pi/4) = s(1, -1), exp(-i pi/2) = -i, exp(-3 i pi/4) = s(-1, -1)
    const T wr[4] = {orr[0], kSqrtHalf * (orr[1] + oi[1]), oi[2], kSqrtHalf * (oi[3] - orr[3])};
    const T wi[4] = {oi[0], kSqrtHalf * (oi[1] - orr[1]), -orr[2], -kSqrtHalf * (orr[3] + oi[3])};
    join_halves<4>(re, im, er, ei, wr, wi);
}

// dft<P> for the radices that have a written-out form.  T is double, or a vector of doubles holding
// several independent transforms side by side.
template <int P, class T> ZEK_FFT_INLINE void dft(T *re, T *im) {
    if constexpr (P == 2)
        dft2(re, im);
    else if constexpr (P == 3)
        dft3(re, im);
    else if constexpr (P == 4)
        dft4(re, im);
    else if constexpr (P == 5)
        dft5(re, im);
    else if constexpr (P == 6)
        dft6(re, im);
    else
        dft8(re, im);
}

// ---- Real data ----
//
// rdft<P>(x, re, im): the transform of P real values, Z(q) = (re[q], im[q]) for q = 0 .. P/2; the
// imaginary parts of Z(0) and (P even) Z(P/2) are zero and not set.
template <int P, class T> ZEK_FFT_INLINE void rdft(const T *x, T *re, T *im) {
    if constexpr (P == 2) {
        re[0] = x[0] + x[1];
        re[1] = x[0] - x[1];
    } else if constexpr (P == 3) {
        const T t = x[1] + x[2];
        re[0] = x[0] + t;
        re[1] = x[0] - 0.5 * t;
        im[1] = -(kSin60 * (x[1] - x[2]));
    } else if constexpr (P == 4) {
        const T a = x[0] + x[2], b = x[0] - x[2], c = x[1] + x[3], d = x[1] - x[3];
        re[0] = a + c;
        re[1] = b;
        im[1] = -d;
        re[2] = a - c;
    } else if constexpr (P == 5) {
        const T t1 = x[1] + x[4], t2 = x[2] + x[3], d1 = x[1] - x[4], d2 = x[2] - x[3];
        re[0] = x[0] + (t1 + t2);
        re[1] = x[0] + kCos72 * t1 + kCos144 * t2;
        im[1] = -(kSin72 * d1 + kSin144 * d2);
        re[2] = x[0] + kCos144 * t1 + kCos72 * t2;
        im[2] = -(kSin144 * d1 - kSin72 * d2);
    } else if constexpr (P == 8) {
        // Even and odd halves by fours, joined with exp(-i pi/4) = s(1 - i) and its powers.
        const T ea = x[0] + x[4], eb = x[0] - x[4], ec = x[2] + x[6], ed = x[2] - x[6];
        const T oa = x[1] + x[5], ob = x[1] - x[5], oc = x[3] + x[7], od = x[3] - x[7];
        const T e0 = ea + ec, e2 = ea - ec, o0 = oa + oc, o2 = oa - oc;
        const T u = kSqrtHalf * (ob - od), v = kSqrtHalf * (ob + od);
        re[0] = e0 + o0;
        re[4] = e0 - o0;
        re[2] = e2;
        im[2] = -o2;
        re[1] = eb + u;
        im[1] = -ed - v;
        re[3] = eb - u;
        im[3] = ed - v;
    } else {
        T zr[P], zi[P];
        for (int r = 0; r < P; ++r) {
            zr[r] = x[r];
            zi[r] = T{};
        }
        dft<P>(zr, zi);
        for (int q = 0; 2 * q <= P; ++q) {
            re[q] = zr[q];
            im[q] = zi[q];
        }
    }
}

// hdft<P>(re, im, y): the real y(r) = sum over q of Z(q) exp(+2 pi i r q / P), r = 0 .. P-1, for the
// Hermitian Z given by Z(q) = (re[q], im[q]) for q = 0 .. P/2 (im[0] and, P even, im[P/2] unused).
template <int P, class T> ZEK_FFT_INLINE void hdft(const T *re, const T *im, T *y) {
    if constexpr (P == 2) {
        y[0] = re[0] + re[1];
        y[1] = re[0] - re[1];
    } else if constexpr (P == 3) {
        const T a2 = re[1] + re[1], d = kSin60 * (im[1] + im[1]), m = re[0] - re[1];
        y[0] = re[0] + a2;
        y[1] = m - d;
        y[2] = m + d;
    } else if constexpr (P == 4) {
        const T s = re[0] + re[2], t = re[0] - re[2], a2 = re[1] + re[1], b2 = im[1] + im[1];
        y[0] = s + a2;
        y[2] = s - a2;
        y[1] = t - b2;
        y[3] = t + b2;
    } else if constexpr (P == 5) {
        const T a1 = re[1] + re[1], a2 = re[2] + re[2], b1 = im[1] + im[1], b2 = im[2] + im[2];
        const T m1 = re[0] + kCos72 * a1 + kCos144 * a2, m2 = re[0] + kCos144 * a1 + kCos72 * a2;
        const T n1 = kSin72 * b1 + kSin144 * b2, n2 = kSin144 * b1 - kSin72 * b2;
        y[0] = re[0] + (a1 + a2);
        y[1] = m1 - n1;
        y[4] = m1 + n1;
        y[2] = m2 - n2;
        y[3] = m2 + n2;
    } else if constexpr (P == 8) {
        // The even frequencies give a real transform of four, the odd ones the turned part.
        const T s = re[0] + re[4], t = re[0] - re[4], a2 = re[2] + re[2], b2 = im[2] + im[2];
        const T e0 = s + a2, e2 = s - a2, e1 = t - b2, e3 = t + b2;
        const T o0 = 2.0 * (re[1] + re[3]);
        const T o1 = (2.0 * kSqrtHalf) * ((re[1] - im[1]) - (re[3] + im[3]));
        const T o2 = 2.0 * (im[3] - im[1]);
        const T o3 = (2.0 * kSqrtHalf) * ((re[3] - im[3]) - (re[1] + im[1]));
        y[0] = e0 + o0;
        y[4] = e0 - o0;
        y[1] = e1 + o1;
        y[5] = e1 - o1;
        y[2] = e2 + o2;
        y[6] = e2 - o2;
        y[3] = e3 + o3;
        y[7] = e3 - o3;
    } else {
        // Through the complex form, real and imaginary parts exchanged (see dft above).
        T zr[P], zi[P];
        zi[0] = re[0];
        zr[0] = T{};
        for (int q = 1; 2 * q < P; ++q) {
            zi[q] = re[q];
            zr[q] = im[q];
            zi[P - q] = re[q];
            zr[P - q] = -im[q];
        }
        if (P % 2 == 0) {
            zi[P / 2] = re[P / 2];
            zr[P / 2] = T{};
        }
        dft<P>(zr, zi);
        for (int r = 0; r < P; ++r) y[r] = zi[r];
    }
}

// ---- The same butterflies on complex numbers held as pairs (re, im) in vectors ----
//
// V2 holds one complex number, V4 two side by side (re, im, re, im); Lanes<V> has what differs
// between them.  The arithmetic is the scalar arithmetic above, operation for operation (additions of
// re and im parts side by side), so every form gives the same results bit for bit.  Multiplying by
// +-1 to flip a sign is exact.  V4 code is only compiled into functions built for the wider vector
// registers (fft_wide.cpp).
using V2 = double __attribute__((vector_size(16)));
// Lane permutations of one vector and of two: the two compilers spell them differently; Mask, the
// index vector type, must be in scope where they are used.
#if defined(__clang__)
#define ZEK_PERMUTE(x, ...) __builtin_shufflevector(x, x, __VA_ARGS__)
#define ZEK_INTERLEAVE(x, y, ...) __builtin_shufflevector(x, y, __VA_ARGS__)
#else
#define ZEK_PERMUTE(x, ...) __builtin_shuffle(x, Mask{__VA_ARGS__})
#define ZEK_INTERLEAVE(x, y, ...) __builtin_shuffle(x, y, Mask{__VA_ARGS__})
#endif
using V4 = double __attribute__((vector_size(32)));
using Cv = V2;

template <class V> struct Lanes;

template <> struct Lanes<V2> {
    using Mask = long long __attribute__((vector_size(16)));
    static constexpr int kComplex = 1;
    static V2 swap(V2 x) { return ZEK_PERMUTE(x, 1, 0); }
    static V2 alternate() { return V2{1.0, -1.0}; }
    static V2 splat(double a, double b) { return V2{a, b}; }
    // (c, s) pairs of consecutive twiddles: (c, c ...) and (s, s ...)
    static V2 dup_even(V2 w) { return ZEK_PERMUTE(w, 0, 0); }
    static V2 dup_odd(V2 w) { return ZEK_PERMUTE(w, 1, 1); }
};

#if defined(ZEK_FFT_WIDE) // functions on V4 exist only where it fits a register (fft_wide.cpp)
template <> struct Lanes<V4> {
    using Mask = long long __attribute__((vector_size(32)));
    static constexpr int kComplex = 2;
    static V4 swap(V4 x) { return ZEK_PERMUTE(x, 1, 0, 3, 2); }
    static V4 alternate() { return V4{1.0, -1.0, 1.0, -1.0}; }
    static V4 splat(double a, double b) { return V4{a, b, a, b}; }
    static V4 dup_even(V4 w) { return ZEK_PERMUTE(w, 0, 0, 2, 2); }
    static V4 dup_odd(V4 w) { return ZEK_PERMUTE(w, 1, 1, 3, 3); }
};
#endif

template <class V> inline V load(const double *p) {
    V v;
    __builtin_memcpy(&v, p, sizeof v);
    return v;
}
inline V2 load(const double *p) { return load<V2>(p); }
template <class V> inline void store(double *p, V v) { __builtin_memcpy(p, &v, sizeof v); }
template <class V> inline V swapped(V x) { return Lanes<V>::swap(x); }
// x * (-i) = (im, -re)
template <class V> inline V times_minus_i(V x) { return swapped(x) * Lanes<V>::alternate(); }

// Twiddle factors w = (c, s) prepared for products: (c, c) and (-s, s) in every complex lane.
template <class V> struct Twiddle {
    V cc, ss;
};
// One twiddle for all lanes.
template <class V> inline Twiddle<V> twiddle_of(double c, double s) {
    return Twiddle<V>{Lanes<V>::splat(c, c), Lanes<V>::splat(-s, s)};
}
// Consecutive twiddles (c, s), one per lane, from the table at P.
template <class V> inline Twiddle<V> twiddles_at(const double *p) {
    const V w = load<V>(p);
    return Twiddle<V>{Lanes<V>::dup_even(w), Lanes<V>::dup_odd(w) * Lanes<V>::splat(-1.0, 1.0)};
}
// (a + ib)(c + is) = (ac - bs, as + bc)
template <class V> inline V times(V x, Twiddle<V> w) { return x * w.cc + swapped(x) * w.ss; }

template <int P, class V> ZEK_FFT_INLINE void cdft(V *z) {
    if constexpr (P == 2) {
        const V d = z[0] - z[1];
        z[0] += z[1];
        z[1] = d;
    } else if constexpr (P == 3) {
        const V t = z[1] + z[2];
        const V d = kSin60 * (z[1] - z[2]);
        const V m = z[0] - 0.5 * t;
        const V e = times_minus_i(d); // (di, -dr)
        z[0] += t;
        z[1] = m + e;
        z[2] = m - e;
    } else if constexpr (P == 4) {
        const V a = z[0] + z[2], b = z[0] - z[2];
        const V c = z[1] + z[3], d = times_minus_i(z[1] - z[3]); // (di, -dr)
        z[0] = a + c;
        z[2] = a - c;
        z[1] = b + d;
        z[3] = b - d;
    } else {
        static_assert(P == 5, "radices 2 to 5");
        const V t1 = z[1] + z[4], t2 = z[2] + z[3];
        const V d1 = z[1] - z[4], d2 = z[2] - z[3];
        const V m1 = z[0] + kCos72 * t1 + kCos144 * t2;
        const V m2 = z[0] + kCos144 * t1 + kCos72 * t2;
        const V n1 = times_minus_i(kSin72 * d1 + kSin144 * d2); // (n1i, -n1r)
        const V n2 = times_minus_i(kSin144 * d1 - kSin72 * d2);
        z[0] += t1 + t2;
        z[1] = m1 + n1;
        z[4] = m1 - n1;
        z[2] = m2 + n2;
        z[3] = m2 - n2;
    }
}

} // namespace
} // namespace zek::fft

#endif
