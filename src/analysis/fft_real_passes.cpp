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

// Access to the values of one group (T = double) or of two neighbouring groups k1, k1+1 side by side
// (T = Cv, lanes 0 and 1).  Positions rising with k1 are read "up", positions falling with k1 "down":
// lane 1 of a down access is the value just below.
struct OneGroup {
    using T = double;
    static double up(const double *p) { return *p; }
    static double down(const double *p) { return *p; }
    static void put_up(double *p, double v) { *p = v; }
    static void put_down(double *p, double v) { *p = v; }
    static double gather(const double *v, Index i, Index) { return v[i]; }
};

struct TwoGroups {
    using T = Cv;
    static Cv up(const double *p) { return load(p); }
    static Cv down(const double *p) { return swapped(load(p - 1)); }
    static void put_up(double *p, Cv v) { store(p, v); }
    static void put_down(double *p, Cv v) { store(p - 1, swapped(v)); }
    static Cv gather(const double *v, Index i, Index step) { return Cv{v[i], v[i + step]}; }
};

// The groups 0 < k1 < K/2 of one block: Y(r)(k1) = (x(rK+k1), x(rK+K-k1)) twiddled by
// exp(-2 pi i r k1 / L), transformed, and Z(k1 + qK) stored in the places of the inputs (as its
// conjugate partner Z(L - k1 - qK) when that is the one in the lower half).
template <int P, class G>
inline void forward_group(double *blk, Index k, Index l, Index k1, const RealTable &t, Index s) {
    using T = typename G::T;
    T re[P], im[P];
    re[0] = G::up(blk + k1);
    im[0] = G::down(blk + k - k1);
    for (int r = 1; r < P; ++r) {
        const Index idx = s * r * k1 - 1;
        const T wc = G::gather(t.cosv, idx, s * r), ws = G::gather(t.sinv, idx, s * r);
        const T a = G::up(blk + r * k + k1), b = G::down(blk + r * k + k - k1);
        re[r] = a * wc + b * ws;
        im[r] = b * wc - a * ws;
    }
    dft<P>(re, im);
    for (int q = 0; q < P; ++q) {
        const Index kk = k1 + q * k;
        if (2 * q + 1 < P + 1) { // kk < L/2 for every k1 < K/2
            G::put_up(blk + kk, re[q]);
            G::put_down(blk + l - kk, im[q]);
        } else {
            G::put_down(blk + l - kk, re[q]);
            G::put_up(blk + kk, -im[q]);
        }
    }
}

// The transpose of forward_group.  The inverse small transform is the forward one with real and
// imaginary parts exchanged, so the loads fill (im, re) and the results are read back the same way.
template <int P, class G>
inline void backward_group(double *blk, Index k, Index l, Index k1, const RealTable &t, Index s) {
    using T = typename G::T;
    T re[P], im[P];
    for (int q = 0; q < P; ++q) {
        const Index kk = k1 + q * k;
        if (2 * q + 1 < P + 1) {
            im[q] = G::up(blk + kk);
            re[q] = G::down(blk + l - kk);
        } else {
            im[q] = G::down(blk + l - kk);
            re[q] = -G::up(blk + kk);
        }
    }
    dft<P>(re, im);
    G::put_up(blk + k1, im[0]);
    G::put_down(blk + k - k1, re[0]);
    for (int r = 1; r < P; ++r) {
        const Index idx = s * r * k1 - 1;
        const T wc = G::gather(t.cosv, idx, s * r), ws = G::gather(t.sinv, idx, s * r);
        // (a + ib)(c + is) with a = im[r], b = re[r]
        const T a = im[r], b = re[r];
        G::put_up(blk + r * k + k1, a * wc - b * ws);
        G::put_down(blk + r * k + k - k1, b * wc + a * ws);
    }
}

// The groups 0 < k1 < K/2 of every block of one sequence, two at a time.
template <int P, bool kForward> void groups_single(Index n, Index k, double *x, const RealTable &t) {
    const Index l = k * P, s = n / l;
    for (double *blk = x; blk < x + n; blk += l) {
        Index k1 = 1;
        for (; 2 * (k1 + 1) < k; k1 += 2) {
            if constexpr (kForward)
                forward_group<P, TwoGroups>(blk, k, l, k1, t, s);
            else
                backward_group<P, TwoGroups>(blk, k, l, k1, t, s);
        }
        if (2 * k1 < k) {
            if constexpr (kForward)
                forward_group<P, OneGroup>(blk, k, l, k1, t, s);
            else
                backward_group<P, OneGroup>(blk, k, l, k1, t, s);
        }
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
        if (!kSingle) {
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
                        if (2 * q + 1 < P + 1) {
                            blk[kk * m + row] = re[q];
                            blk[(l - kk) * m + row] = im[q];
                        } else {
                            blk[(l - kk) * m + row] = re[q];
                            blk[kk * m + row] = -im[q];
                        }
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
    if (kSingle && k > 2) groups_single<P, true>(n, k, x, t);
}

template <int P, bool kSingle> void backward_pass(int m_rows, int n, Index k, double *x, RealTable t) {
    const Index m = kSingle ? 1 : m_rows;
    const Index l = k * P, s = n / l, blocks = n / l;
    double wc[P], ws[P];
    if (kSingle && k > 2) groups_single<P, false>(n, k, x, t);
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
        if (!kSingle) {
            for (Index k1 = 1; 2 * k1 < k; ++k1) {
                for (int r = 1; r < P; ++r) twiddle(t, s * r * k1, wc[r], ws[r]);
                for (Index row = 0; row < m; ++row) {
                    double re[P], im[P];
                    for (int q = 0; q < P; ++q) {
                        const Index kk = k1 + q * k;
                        if (2 * q + 1 < P + 1) {
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

// Any other factor (an odd prime from 7 up): each group is twiddled as in the written-out passes and
// then transformed by an odd-length DFT that meets x(r) and x(P-r) as their sum and difference, so
// that the work is about P*P/2 complex products per group.  The roots cos, sin(2 pi q/P) are those of
// the table at the multiples of N/P, copied to a local array when P is small.  A group's twiddled
// inputs are gathered first, into a local buffer or, for large factors, into TMP (M*N values): P
// values for the group k1 = 0, 2P for the others (which exist only when K >= 2, so that 2P <= N).
constexpr int kLocalFactor = 64;

// exp(+2 pi i q / P) = (c, s), q = 0 .. P-1.
struct OddRoots {
    RealTable t;
    Index n, p;
    const double *c, *s; // local copies, or null
    void get(Index q, double &cv, double &sv) const {
        if (c != nullptr) {
            cv = c[q];
            sv = s[q];
        } else {
            root(t, n, q * (n / p), cv, sv);
        }
    }
};

// Y(q) = sum over r of X(r) exp(-2 pi i r q / P) for odd P, or with +i when kInverse, handed to
// put(q, re, im).
template <bool kInverse, class Put>
inline void odd_dft(Index p, const double *xr, const double *xi, const OddRoots &w, Put put) {
    const Index h = p / 2;
    double sr = xr[0], si = xi[0];
    for (Index r = 1; r <= h; ++r) {
        sr += xr[r] + xr[p - r];
        si += xi[r] + xi[p - r];
    }
    put(0, sr, si);
    for (Index q = 1; q <= h; ++q) {
        double ur = xr[0], ui = xi[0], vr = 0.0, vi = 0.0;
        Index idx = 0;
        for (Index r = 1; r <= h; ++r) {
            idx += q;
            if (idx >= p) idx -= p;
            double c, sn;
            w.get(idx, c, sn);
            ur += c * (xr[r] + xr[p - r]);
            ui += c * (xi[r] + xi[p - r]);
            vr += sn * (xr[r] - xr[p - r]);
            vi += sn * (xi[r] - xi[p - r]);
        }
        // forward: y(q) = u - i v, y(p-q) = u + i v; inverse the other way round
        if (kInverse) {
            put(q, ur - vi, ui + vr);
            put(p - q, ur + vi, ui - vr);
        } else {
            put(q, ur + vi, ui - vr);
            put(p - q, ur - vi, ui + vr);
        }
    }
}

// Z(q) = sum over r of x(r) exp(-2 pi i r q / P) for real x and odd P, q = 0 .. P/2, handed to
// put(q, re, im).
template <class Put> inline void odd_dft_real(Index p, const double *x, const OddRoots &w, Put put) {
    const Index h = p / 2;
    double s0 = x[0];
    for (Index r = 1; r <= h; ++r) s0 += x[r] + x[p - r];
    put(0, s0, 0.0);
    for (Index q = 1; q <= h; ++q) {
        double u = x[0], v = 0.0;
        Index idx = 0;
        for (Index r = 1; r <= h; ++r) {
            idx += q;
            if (idx >= p) idx -= p;
            double c, sn;
            w.get(idx, c, sn);
            u += c * (x[r] + x[p - r]);
            v += sn * (x[r] - x[p - r]);
        }
        put(q, u, -v);
    }
}

// The inverse for a Hermitian Z held as z(0) = Z(0), z(q) = Re Z(q), z(P-q) = Im Z(q), q = 1 .. P/2:
// the real y(r) = sum over q of Z(q) exp(+2 pi i r q / P), handed to put(r, y).
template <class Put> inline void odd_dft_hermitian(Index p, const double *z, const OddRoots &w, Put put) {
    const Index h = p / 2;
    double s0 = z[0];
    for (Index q = 1; q <= h; ++q) s0 += 2.0 * z[q];
    put(0, s0);
    for (Index r = 1; r <= h; ++r) {
        double a = z[0], bsum = 0.0;
        Index idx = 0;
        for (Index q = 1; q <= h; ++q) {
            idx += r;
            if (idx >= p) idx -= p;
            double c, sn;
            w.get(idx, c, sn);
            a += 2.0 * (c * z[q]);
            bsum += 2.0 * (sn * z[p - q]);
        }
        put(r, a - bsum);
        put(p - r, a + bsum);
    }
}

void general_forward(int p, int m, int n, Index k, double *x, RealTable t, double *tmp) {
    const Index l = k * p, s = n / l, blocks = n / l;
    double local[4 * kLocalFactor];
    const bool small = p <= kLocalFactor;
    double *in_r = small || tmp == nullptr ? local : tmp, *in_i = in_r + p;
    OddRoots w{t, n, p, nullptr, nullptr};
    if (small) {
        double *c = local + 2 * kLocalFactor, *sn = c + kLocalFactor;
        for (Index q = 0; q < p; ++q) w.get(q, c[q], sn[q]);
        w.c = c;
        w.s = sn;
    }
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        for (Index k1 = 0; 2 * k1 <= k; ++k1) {
            const bool paired = k1 > 0 && 2 * k1 < k;
            for (Index row = 0; row < m; ++row) {
                if (k1 == 0) {
                    // Real inputs: P values of the buffer are enough.
                    for (Index r = 0; r < p; ++r) in_r[r] = blk[r * k * m + row];
                    odd_dft_real(p, in_r, w, [&](Index q, double zr, double zi) {
                        blk[q * k * m + row] = zr;
                        if (q > 0) blk[(l - q * k) * m + row] = zi;
                    });
                    continue;
                }
                in_r[0] = blk[k1 * m + row];
                in_i[0] = paired ? blk[(k - k1) * m + row] : 0.0;
                for (Index r = 1; r < p; ++r) {
                    const double a = blk[(r * k + k1) * m + row], bb = paired ? blk[(r * k + k - k1) * m + row] : 0.0;
                    double c, sn;
                    twiddle(t, s * r * k1, c, sn);
                    in_r[r] = a * c + bb * sn;
                    in_i[r] = bb * c - a * sn;
                }
                odd_dft<false>(p, in_r, in_i, w, [&](Index q, double zr, double zi) {
                    const Index kk = k1 + q * k;
                    if (2 * kk < l) {
                        blk[kk * m + row] = zr;
                        if (kk > 0) blk[(l - kk) * m + row] = zi;
                    } else if (2 * kk == l) {
                        blk[kk * m + row] = zr;
                    } else if (paired) {
                        blk[(l - kk) * m + row] = zr;
                        blk[kk * m + row] = -zi;
                    } // else the conjugate of a value stored already
                });
            }
        }
    }
}

void general_backward(int p, int m, int n, Index k, double *x, RealTable t, double *tmp) {
    const Index l = k * p, s = n / l, blocks = n / l;
    double local[4 * kLocalFactor];
    const bool small = p <= kLocalFactor;
    double *in_r = small || tmp == nullptr ? local : tmp, *in_i = in_r + p;
    OddRoots w{t, n, p, nullptr, nullptr};
    if (small) {
        double *c = local + 2 * kLocalFactor, *sn = c + kLocalFactor;
        for (Index q = 0; q < p; ++q) w.get(q, c[q], sn[q]);
        w.c = c;
        w.s = sn;
    }
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        for (Index k1 = 0; 2 * k1 <= k; ++k1) {
            const bool paired = k1 > 0 && 2 * k1 < k;
            for (Index row = 0; row < m; ++row) {
                if (k1 == 0) {
                    // The stored half, P values, gives the P real results.
                    for (Index q = 0; q < p; ++q) in_r[q] = blk[q * k * m + row];
                    odd_dft_hermitian(p, in_r, w, [&](Index r, double y) { blk[r * k * m + row] = y; });
                    continue;
                }
                // Z(k1 + qK) for all q, from the stored half.
                for (Index q = 0; q < p; ++q) {
                    const Index kk = k1 + q * k;
                    if (2 * kk < l) {
                        in_r[q] = blk[kk * m + row];
                        in_i[q] = kk > 0 ? blk[(l - kk) * m + row] : 0.0;
                    } else if (2 * kk == l) {
                        in_r[q] = blk[kk * m + row];
                        in_i[q] = 0.0;
                    } else {
                        in_r[q] = blk[(l - kk) * m + row];
                        in_i[q] = -blk[kk * m + row];
                    }
                }
                // Y(r)(k1) = exp(+2 pi i r k1 / L) times the inverse transform; real for k1 = 0, K/2.
                odd_dft<true>(p, in_r, in_i, w, [&](Index r, double ur, double ui) {
                    double c = 1.0, sn = 0.0;
                    if (r > 0) twiddle(t, s * r * k1, c, sn);
                    blk[(r * k + k1) * m + row] = ur * c - ui * sn;
                    if (paired) blk[(r * k + k - k1) * m + row] = ur * sn + ui * c;
                });
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
