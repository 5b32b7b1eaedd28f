// The in-place real passes of both engines: the general pass for any other factor, and the choice
// of form for the written-out ones (fft_pass_bodies.h, where the passes are described): one sequence
// or rows of many, ordinary or wide vector registers.
#include "analysis/fft.h"
#include "analysis/fft_kernels.h"
#include "analysis/fft_pass_bodies.h"

namespace zek::fft {

namespace {

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
    if (p <= kLocalFactor) {
        // The same sums, on complex numbers held as vector pairs.
        Cv sums[kLocalFactor / 2], diffs[kLocalFactor / 2];
        const Cv x0{xr[0], xi[0]};
        Cv total = x0;
        for (Index r = 1; r <= h; ++r) {
            const Cv a{xr[r], xi[r]}, b{xr[p - r], xi[p - r]};
            sums[r - 1] = a + b;
            diffs[r - 1] = a - b;
            total += sums[r - 1];
        }
        put(0, total[0], total[1]);
        for (Index q = 1; q <= h; ++q) {
            Cv u = x0, v = Cv{};
            Index idx = 0;
            for (Index r = 1; r <= h; ++r) {
                idx += q;
                if (idx >= p) idx -= p;
                double c, sn;
                w.get(idx, c, sn);
                u += c * sums[r - 1];
                v += sn * diffs[r - 1];
            }
            const Cv iv = swapped(v) * Cv{-1.0, 1.0}; // i v
            const Cv first = kInverse ? u + iv : u - iv, second = kInverse ? u - iv : u + iv;
            put(q, first[0], first[1]);
            put(p - q, second[0], second[1]);
        }
        return;
    }
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

// The roots of a general pass in a local array when P is small.
void prepare_roots(OddRoots &w, double *local) {
    if (w.p > kLocalFactor) return;
    double *c = local + 2 * kLocalFactor, *sn = c + kLocalFactor;
    for (Index q = 0; q < w.p; ++q) w.get(q, c[q], sn[q]);
    w.c = c;
    w.s = sn;
}

// One pass of the general factor P in either direction: the same blocks, groups and rows, with the
// forward twiddle-then-transform or the backward transform-then-twiddle inside.
template <bool kForward> void general_pass(int p, int m, int n, Index k, double *x, RealTable t, double *tmp) {
    const Index l = k * p, s = n / l, blocks = n / l;
    double local[4 * kLocalFactor];
    const bool small = p <= kLocalFactor;
    double *in_r = small || tmp == nullptr ? local : tmp, *in_i = in_r + p;
    OddRoots w{t, n, p, nullptr, nullptr};
    prepare_roots(w, local);
    for (Index b = 0; b < blocks; ++b) {
        double *blk = x + b * l * m;
        for (Index k1 = 0; 2 * k1 <= k; ++k1) {
            const bool paired = k1 > 0 && 2 * k1 < k;
            for (Index row = 0; row < m; ++row) {
                if constexpr (kForward) {
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
                        const double a = blk[(r * k + k1) * m + row],
                                     bb = paired ? blk[(r * k + k - k1) * m + row] : 0.0;
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
                } else {
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
}

template <bool kForward, int P> void dispatch(int m, int n, Index k, double *x, RealTable t) {
    if (m == 1 && wide::enabled())
        wide::real_pass_single(kForward, P, n, k, x, t);
    else if (m == 1)
        single_pass<P, kForward>(n, k, x, t);
    else if (wide::enabled())
        wide::real_pass_rows(kForward, P, m, n, k, x, t);
    else if constexpr (kForward)
        forward_pass<P, V2>(m, n, k, x, t);
    else
        backward_pass<P, V2>(m, n, k, x, t);
}

template <bool kForward> void real_pass(int p, int m, int n, int k, double *x, RealTable t, double *tmp) {
    switch (p) {
    case 2: dispatch<kForward, 2>(m, n, k, x, t); break;
    case 3: dispatch<kForward, 3>(m, n, k, x, t); break;
    case 4: dispatch<kForward, 4>(m, n, k, x, t); break;
    case 5: dispatch<kForward, 5>(m, n, k, x, t); break;
    case 6: dispatch<kForward, 6>(m, n, k, x, t); break;
    case 8: dispatch<kForward, 8>(m, n, k, x, t); break;
    default: general_pass<kForward>(p, m, n, k, x, t, tmp); break;
    }
}

} // namespace

void real_pass_forward(int p, int m, int n, int k, double *x, RealTable t, double *tmp) {
    real_pass<true>(p, m, n, k, x, t, tmp);
}

void real_pass_backward(int p, int m, int n, int k, double *x, RealTable t, double *tmp) {
    real_pass<false>(p, m, n, k, x, t, tmp);
}

} // namespace zek::fft
