// Factorisations, digit permutation, trigonometric tables, transposition and the team seam of the
// Fourier transforms.
#include <cmath>
#include <cstring>
#include <iterator>

#include "analysis/fft.h"
#include "analysis/fft_exits.h"
#include "analysis/fft_kernels.h"
#include "frame/output.h"
#include "zek2/c06.h"

namespace zek::fft {

void factor_squares(int n, int largest_prime, int largest_merge, int *factors, int *code) {
    *code = 0;
    int front[kFactorListSize], middle[kFactorListSize];
    int nfront = 0, nmiddle = 0, rest = n;
    // Squares first: each is removed as a pair, one copy at the front, one at the mirrored end.
    for (int d = 2; d <= largest_prime && d * d <= rest; ++d) {
        while (rest % (d * d) == 0) {
            if (2 * nfront + nmiddle >= kFirstEngineMostFactors) {
                *code = 2;
                return;
            }
            front[nfront++] = d;
            rest /= d * d;
        }
    }
    // The square-free rest, in the middle.
    for (int d = 2; d <= largest_prime && rest > 1; ++d) {
        if (rest % d == 0) {
            if (2 * nfront + nmiddle >= kFirstEngineMostFactors) {
                *code = 2;
                return;
            }
            middle[nmiddle++] = d;
            rest /= d;
        }
    }
    if (rest > 1) {
        *code = 1;
        return;
    }
    int count = 0;
    for (int i = 0; i < nfront; ++i) factors[count++] = front[i];
    for (int i = 0; i < nmiddle; ++i) factors[count++] = middle[i];
    for (int i = nfront - 1; i >= 0; --i) factors[count++] = front[i];
    factors[count] = 0;
    // Runs of 2 become factors of up to LARGEST_MERGE; the slots given up hold 1.
    for (int i = 0; i < count;) {
        if (factors[i] != 2) {
            ++i;
            continue;
        }
        int j = i + 1, product = 2;
        while (j < count && factors[j] == 2 && product * 2 <= largest_merge) {
            product *= 2;
            factors[j++] = 1;
        }
        factors[i] = product;
        i = j;
    }
}

int factor_list(int n, int *factors) {
    if (n <= 1) {
        factors[0] = 1;
        return 1;
    }
    int count = 0, rest = n;
    auto take = [&](int d) {
        while (rest % d == 0 && count <= kSecondEngineMostFactors) {
            factors[count++] = d;
            rest /= d;
        }
    };
    take(5);
    take(4);
    take(2);
    take(3);
    int d = 7, step = 4;
    while (rest > 1 && count <= kSecondEngineMostFactors) {
        if (static_cast<long long>(d) * d > rest) {
            factors[count++] = rest;
            break;
        }
        take(d);
        d += step;
        step = 6 - step;
    }
    return count;
}

namespace {

// The partial products w(j) = p(1) ... p(j-1) of the factors that are not 1; returns their count.
int digit_weights(const int *factors, int nf, int *radix, Index *weight) {
    int count = 0;
    Index w = 1;
    for (int i = 0; i < nf; ++i) {
        if (factors[i] <= 1) continue;
        radix[count] = factors[i];
        weight[count] = w;
        w *= factors[i];
        ++count;
    }
    return count;
}

// Calls move(n, pos(n)) for every n, walking n upward with an odometer whose fastest digit belongs to
// the last factor.
template <class Move> void for_each_digit_reversal(int n, const int *factors, int nf, Move move) {
    int radix[kFactorListSize];
    Index weight[kFactorListSize];
    int digit[kFactorListSize] = {0};
    const int count = digit_weights(factors, nf, radix, weight);
    Index pos = 0;
    for (Index i = 0; i < n; ++i) {
        move(i, pos);
        for (int j = count - 1; j >= 0; --j) {
            pos += weight[j];
            if (++digit[j] < radix[j]) break;
            pos -= radix[j] * weight[j];
            digit[j] = 0;
        }
    }
}

// The same moves for one value per index, in an order kind to the cache.  The first digits of n (most
// significant) become the last of pos (least significant) and the other way round, so with A the
// first few digits and B the last few, every value of the middle digits names an A by B block that
// is read in runs of B and written in runs of A: a small transposition instead of a scatter over the
// whole array.  The block passes through a local buffer, so that every cache line is read or written
// whole at once, whatever the power-of-two strides between the runs do to the cache.  The inverse
// reads where the forward moves write and the other way round.  Returns false, doing nothing, when
// the factors are too few or too large for that.
constexpr int kBlockDigits = 64, kBlockValues = 2048;

template <bool kInverse> bool digit_reversal_blocked(const int *factors, int nf, const double *src, double *dst) {
    int radix[kFactorListSize];
    Index weight[kFactorListSize];
    const int count = digit_weights(factors, nf, radix, weight);
    // Runs of 16 values at least (two cache lines, whatever the alignment), or of 8 when that makes
    // the block too big for the buffer.
    int a = 0, b = count;
    Index asize = 1, bsize = 1;
    for (Index run = 16; run >= 8; run /= 2) {
        a = 0;
        b = count;
        asize = bsize = 1;
        while (a < count && asize < run) asize *= radix[a++];
        while (b > a && bsize < run) bsize *= radix[--b];
        if (asize >= run && bsize >= run && asize <= kBlockDigits && bsize <= kBlockDigits &&
            asize * bsize <= kBlockValues)
            break;
        if (run == 8) return false;
    }
    // Offsets in pos of the A and B digit groups, enumerated in the order of n.
    Index apos[kBlockDigits], bpos[kBlockDigits];
    auto enumerate = [&](int first, int last, Index *out) {
        int d[kFactorListSize] = {0};
        Index p = 0, k = 0;
        for (;;) {
            out[k++] = p;
            int j = last - 1;
            for (; j >= first; --j) {
                p += weight[j];
                if (++d[j] < radix[j]) break;
                p -= radix[j] * weight[j];
                d[j] = 0;
            }
            if (j < first) return;
        }
    };
    enumerate(0, a, apos);
    enumerate(b, count, bpos);
    Index msize = 1;
    for (int j = a; j < b; ++j) msize *= radix[j];
    double buffer[kBlockValues];
    int d[kFactorListSize] = {0};
    Index mpos = 0;
    for (Index im = 0; im < msize; ++im) {
        // apos is a permutation of 0 .. asize-1: the buffer holds the runs of A in their final order.
        if (!kInverse) {
            for (Index ia = 0; ia < asize; ++ia) {
                const double *from = src + (ia * msize + im) * bsize;
                double *column = buffer + apos[ia];
                for (Index ib = 0; ib < bsize; ++ib) column[ib * asize] = from[ib];
            }
            for (Index ib = 0; ib < bsize; ++ib) {
                double *to = dst + mpos + bpos[ib];
                const double *run = buffer + ib * asize;
                for (Index ia = 0; ia < asize; ++ia) to[ia] = run[ia];
            }
        } else {
            for (Index ib = 0; ib < bsize; ++ib) {
                const double *from = src + mpos + bpos[ib];
                double *run = buffer + ib * asize;
                for (Index ia = 0; ia < asize; ++ia) run[ia] = from[ia];
            }
            for (Index ia = 0; ia < asize; ++ia) {
                double *to = dst + (ia * msize + im) * bsize;
                const double *column = buffer + apos[ia];
                for (Index ib = 0; ib < bsize; ++ib) to[ib] = column[ib * asize];
            }
        }
        for (int j = b - 1; j >= a; --j) {
            mpos += weight[j];
            if (++d[j] < radix[j]) break;
            mpos -= radix[j] * weight[j];
            d[j] = 0;
        }
    }
    return true;
}

} // namespace

namespace {

// Moves element I of SRC to digit-reversed place POS of DST, or back when kInverse; M values an element.
template <bool kInverse> void digit_move(int m, int n, const int *factors, int nf, const double *src, double *dst) {
    if (m == 1) {
        if (digit_reversal_blocked<kInverse>(factors, nf, src, dst)) return;
        for_each_digit_reversal(n, factors, nf, [&](Index i, Index pos) {
            if constexpr (kInverse) dst[i] = src[pos];
            else dst[pos] = src[i];
        });
        return;
    }
    const std::size_t bytes = sizeof(double) * static_cast<std::size_t>(m);
    for_each_digit_reversal(n, factors, nf, [&](Index i, Index pos) {
        const Index from = kInverse ? pos : i, to = kInverse ? i : pos;
        std::memcpy(dst + to * m, src + from * m, bytes);
    });
}

} // namespace

void digit_permute(int m, int n, const int *factors, int nf, const double *src, double *dst) {
    digit_move<false>(m, n, factors, nf, src, dst);
}

void digit_permute_inverse(int m, int n, const int *factors, int nf, const double *src, double *dst) {
    digit_move<true>(m, n, factors, nf, src, dst);
}

namespace {

// sin and cos of A in [0, pi/4] in long double, by their Taylor series: the terms left out are below
// 2^-70 of the result.
void sin_cos_octant(long double a, long double &s, long double &c) {
    constexpr long double f3 = 6.0L, f5 = f3 * 20, f7 = f5 * 42, f9 = f7 * 72, f11 = f9 * 110, f13 = f11 * 156,
                          f15 = f13 * 210, f17 = f15 * 272, f19 = f17 * 342, f21 = f19 * 420, f23 = f21 * 506;
    constexpr long double f2 = 2.0L, f4 = f2 * 12, f6 = f4 * 30, f8 = f6 * 56, f10 = f8 * 90, f12 = f10 * 132,
                          f14 = f12 * 182, f16 = f14 * 240, f18 = f16 * 306, f20 = f18 * 380, f22 = f20 * 462,
                          f24 = f22 * 552;
    // The coefficients of the series in x = a*a, highest power first.
    constexpr long double sine[] = {-1 / f23, 1 / f21, -1 / f19, 1 / f17, -1 / f15, 1 / f13,
                                    -1 / f11, 1 / f9,  -1 / f7,  1 / f5,  -1 / f3};
    constexpr long double cosine[] = {1 / f24,  -1 / f22, 1 / f20, -1 / f18, 1 / f16, -1 / f14,
                                      1 / f12,  -1 / f10, 1 / f8,  -1 / f6,  1 / f4,  -1 / f2};
    const long double x = a * a;
    auto horner = [x](const auto &coefficients) {
        long double p = coefficients[0];
        for (std::size_t k = 1; k < std::size(coefficients); ++k) p = p * x + coefficients[k];
        return p;
    };
    s = a + a * (x * horner(sine));
    c = 1 + x * horner(cosine);
}

// cos and sin of 2 pi t / den in long double, reduced to the first octant.
void accurate_root(long long den, long long t, long double &c, long double &s) {
    t %= den;
    if (t < 0) t += den;
    // Work with u = 8t in units of den/8: octant o = floor(8t/den), rest in [0, den).
    const long double pi = 3.141592653589793238462643383279502884L;
    const long long eight = 8 * t;
    const int octant = static_cast<int>(eight / den);
    const long long rest = eight - static_cast<long long>(octant) * den;
    // angle = (octant + rest/den) * pi/4; reflect odd octants so the reduced angle is in [0, pi/4].
    const long long part = octant % 2 == 0 ? rest : den - rest;
    long double sa, ca;
    sin_cos_octant(pi / 4 * static_cast<long double>(part) / den, sa, ca);
    long double x, y; // cos and sin of the full angle
    switch (octant) {
    case 0: x = ca; y = sa; break;
    case 1: x = sa; y = ca; break;
    case 2: x = -sa; y = ca; break;
    case 3: x = -ca; y = sa; break;
    case 4: x = -ca; y = -sa; break;
    case 5: x = -sa; y = -ca; break;
    case 6: x = sa; y = -ca; break;
    default: x = ca; y = -sa; break;
    }
    c = x;
    s = y;
}

// A long double as two doubles whose sum is exact.
inline void split(long double v, double &hi, double &lo) {
    const double h = static_cast<double>(v);
    hi = h;
    lo = static_cast<double>(v - h);
}

} // namespace

RootStream::RootStream(long long den, long long start, long long step) : den_(den), start_(start), step_(step) {
    if (start_ % den_ != 0) accurate_root(den_, start_, cr_, ci_);
    split(1.0L, fine_rh_[0], fine_rl_[0]);
    split(0.0L, fine_ih_[0], fine_il_[0]);
}

void RootStream::extend_fine(int stop) {
    if (fine_built_ == 1) {
        long double c, s;
        accurate_root(den_, step_, c, s);
        split(c, fine_rh_[1], fine_rl_[1]);
        split(s, fine_ih_[1], fine_il_[1]);
        ++fine_built_;
    }
    // w(r) = w(b) w(r - b) with b the highest power of 2 in r: each product rests on at most 2 log2 r
    // others, and all but the powers of 2 are independent of each other.
    for (int r = fine_built_; r < stop; ++r) {
        int b = 1;
        while (2 * b <= r) b *= 2;
        const int a = r == b ? b / 2 : r - b, c = r == b ? b / 2 : b;
        const long double ar = static_cast<long double>(fine_rh_[a]) + fine_rl_[a];
        const long double ai = static_cast<long double>(fine_ih_[a]) + fine_il_[a];
        const long double cr = static_cast<long double>(fine_rh_[c]) + fine_rl_[c];
        const long double ci = static_cast<long double>(fine_ih_[c]) + fine_il_[c];
        split(ar * cr - ai * ci, fine_rh_[r], fine_rl_[r]);
        split(ar * ci + ai * cr, fine_ih_[r], fine_il_[r]);
    }
    if (stop > fine_built_) fine_built_ = stop;
}

void RootStream::next_stretch() {
    ++stretch_;
    r_ = 0;
    if (stretch_ % kAnchor == 0) {
        accurate_root(den_, start_ + stretch_ * kRun * step_, cr_, ci_);
        return;
    }
    // The step between stretches is evaluated accurately too: made from the fine roots, its error
    // would be 32 times theirs and grow along the stretches.
    if (stretch_ == 1) accurate_root(den_, kRun * step_, gr_, gi_);
    const long double r = cr_ * gr_ - ci_ * gi_;
    ci_ = cr_ * gi_ + ci_ * gr_;
    cr_ = r;
}

void fill_real_table(int n, double *cosv, double *sinv) {
    // Only the roots up to the eighth of the circle (quarter, half, as N allows) are evaluated; the
    // rest are the same numbers reflected, so the table keeps the exact symmetries of the circle.
    const Index h = (n + 1) / 2;
    Index last = h - 1;
    if (n % 4 == 0)
        last = n / 8;
    else if (n % 2 == 0)
        last = n / 4;
    if (last > h - 1) last = h - 1;
    RootStream roots(n, 0, 1);
    roots.run(last + 1, [&](Index k, double c, double s) {
        if (k == 0) return;
        cosv[k - 1] = c;
        sinv[k - 1] = s;
    });
    Index j = last + 1;
    if (n % 4 == 0) {
        // cos(2 pi j/N) = sin(2 pi (N/4 - j)/N) up to the quarter turn
        const Index q = n / 4;
        for (; j < q && j < h; ++j) {
            cosv[j - 1] = sinv[q - j - 1];
            sinv[j - 1] = cosv[q - j - 1];
        }
        if (j == q && j < h) {
            cosv[j - 1] = 0.0;
            sinv[j - 1] = 1.0;
            ++j;
        }
    }
    // Beyond the quarter turn: cos(2 pi j/N) = -cos(2 pi (N/2 - j)/N), the sine alike.
    for (const Index half = n / 2; j < h; ++j) {
        cosv[j - 1] = -cosv[half - j - 1];
        sinv[j - 1] = sinv[half - j - 1];
    }
}

namespace {

// The whole circle (cos t, -sin t), t = 2 pi k / N for k = 0 .. N-1, as pairs in E (2N reals): the
// first eighth (quarter, half, as N allows) evaluated accurately, the rest by the symmetries of the
// circle, which are exact.
void fill_circle(Index n, double *e) {
    Index last = n / 2;
    if (n % 4 == 0)
        last = n / 8;
    else if (n % 2 == 0)
        last = n / 4;
    RootStream roots(n, 0, 1);
    roots.run(last + 1, [&](Index k, double c, double s) {
        e[2 * k] = c;
        e[2 * k + 1] = -s;
    });
    Index k = last + 1;
    if (n % 4 == 0) {
        const Index q = n / 4;
        for (; k <= q; ++k) { // reflection in the diagonal
            e[2 * k] = -e[2 * (q - k) + 1];
            e[2 * k + 1] = -e[2 * (q - k)];
        }
        for (; k < n; ++k) { // quarter turns: w(k) = -i w(k - N/4)
            e[2 * k] = e[2 * (k - q) + 1];
            e[2 * k + 1] = -e[2 * (k - q)];
        }
    } else if (n % 2 == 0) {
        const Index half = n / 2;
        for (; k < half; ++k) { // w(k) = -conj(w(N/2 - k))
            e[2 * k] = -e[2 * (half - k)];
            e[2 * k + 1] = e[2 * (half - k) + 1];
        }
        for (; k < n; ++k) { // half turns
            e[2 * k] = -e[2 * (k - half)];
            e[2 * k + 1] = -e[2 * (k - half) + 1];
        }
    }
    for (; k < n; ++k) { // conjugates
        e[2 * k] = e[2 * (n - k)];
        e[2 * k + 1] = -e[2 * (n - k) + 1];
    }
}

} // namespace

void fill_complex_table(int n, const int *factors, int nf, double *trig, double *scratch) {
    Index l1 = 1, at = 0;
    if (scratch != nullptr) {
        // Every entry is a root of the circle of N: gather them from the whole circle in the scratch.
        fill_circle(n, scratch);
        for (int f = 0; f < nf; ++f) {
            const int p = factors[f];
            const Index ido = n / (l1 * p);
            if (p >= 7) {
                for (Index q = 1; q < p; ++q, ++at) { // exp(-2 pi i q/p)
                    const Index t = q * (n / p);
                    trig[2 * at] = scratch[2 * t];
                    trig[2 * at + 1] = scratch[2 * t + 1];
                }
            }
            for (Index j = 1; j < p; ++j) {
                const Index step = l1 * j; // (ido-1)*step < N: no wrap
                const double *src = scratch + 2 * step;
                double *dst = trig + 2 * at;
                for (Index i = 1; i < ido; ++i) {
                    dst[0] = src[0];
                    dst[1] = src[1];
                    dst += 2;
                    src += 2 * step;
                }
                at += ido - 1;
            }
            l1 *= p;
        }
        return;
    }
    auto store = [&](Index, double c, double s) {
        trig[2 * at] = c;
        trig[2 * at + 1] = -s;
        ++at;
    };
    for (int f = 0; f < nf; ++f) {
        const int p = factors[f];
        const Index ido = n / (l1 * p);
        if (p >= 7) {
            // The factor's own roots: the row's angle first, then its multiples.
            RootStream(p, 1, 1).run(p - 1, store);
        }
        for (int j = 1; j < p; ++j) RootStream(n, l1 * j, l1 * j).run(ido - 1, store);
        l1 *= p;
    }
}

void transpose(int words, int m, int n, const double *a, Index lda, double *b, Index ldb) {
    for (Index jb = 0; jb < n; jb += kTile) {
        const Index je = jb + kTile < n ? jb + kTile : n;
        for (Index ib = 0; ib < m; ib += kTile) {
            const Index ie = ib + kTile < m ? ib + kTile : m;
            if (words == 1) {
                C06_TRANSPOSE_REAL_TILE(static_cast<int>(ie - ib), static_cast<int>(je - jb), a + ib + jb * lda,
                                        static_cast<int>(lda), b + jb + ib * ldb, static_cast<int>(ldb));
            } else {
                C06_TRANSPOSE_COMPLEX_TILE(static_cast<int>(ie - ib), static_cast<int>(je - jb),
                                           a + 2 * (ib + jb * lda), static_cast<int>(lda),
                                           b + 2 * (jb + ib * ldb), static_cast<int>(ldb));
            }
        }
    }
}

int team_size() { return 1; }
int team_rank() { return 0; }

void block_split(int team, int rank, int count, int *first, int *last) {
    if (team < 1 || rank < 0 || rank >= team || count < 1) {
        *first = 1;
        *last = 0;
        return;
    }
    const int base = count / team, extra = count % team;
    const int length = base + (rank < extra ? 1 : 0);
    *first = rank * base + (rank < extra ? rank : extra) + 1;
    *last = *first + length - 1;
}

bool replacement_present(const char *) { return false; }
void replacement_entry() {}

char option_letter(const char *text, int length) {
    if (text == nullptr || length < 1) return ' ';
    const char c = text[0];
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}

const ExitRow *ExitTable::find(Check check) const {
    for (std::size_t i = 0; i < count_; ++i)
        if (rows_[i].check == check) return &rows_[i];
    return nullptr;
}

bool ExitTable::fail(FailureExit &exit, Check check, std::initializer_list<MessageValue> values) const {
    const ExitRow *row = find(check);
    if (row == nullptr) row = find(Check::Internal);
    if (row != nullptr) exit.fail(row->ifail, row->number, row->text, values, width_);
    return false;
}

bool ExitTable::leading(FailureExit &exit, int m, int n, const char *direct, int direct_len) const {
    if (find(Check::M) != nullptr && m < 1) return fail(exit, Check::M, {m});
    if (find(Check::N) != nullptr && n < 1) return fail(exit, Check::N, {n});
    if (find(Check::Direct) != nullptr) {
        const char letter = option_letter(direct, direct_len);
        if (letter != 'F' && letter != 'B')
            return fail(exit, Check::Direct, {fixed_string(direct, direct_len > 0 ? 1 : 0)});
    }
    return true;
}

void ExitTable::outcome(FailureExit &exit, int code, int factors_code, std::initializer_list<MessageValue> values) const {
    if (code == 0)
        exit.succeed();
    else
        fail(exit, code == factors_code ? Check::Factors : Check::Internal, values);
}


// The blocks of kTileBlock by kTileBlock elements of an M by N tile, columns of blocks outermost:
// FULL(ib, jb) moves a whole block, EDGE(i, j) one element of a block cut short by the tile's edge.
constexpr Index kTileBlock = 8;
template <class Full, class Edge> void for_each_block(int m, int n, Full full, Edge edge) {
    for (Index jb = 0; jb < n; jb += kTileBlock) {
        const Index je = jb + kTileBlock < n ? jb + kTileBlock : n;
        for (Index ib = 0; ib < m; ib += kTileBlock) {
            const Index ie = ib + kTileBlock < m ? ib + kTileBlock : m;
            if (je - jb == kTileBlock && ie - ib == kTileBlock) {
                full(ib, jb);
                continue;
            }
            for (Index j = jb; j < je; ++j)
                for (Index i = ib; i < ie; ++i) edge(i, j);
        }
    }
}
} // namespace zek::fft

extern "C" {

// A tile is moved in square blocks of 8 by 8 elements: the block's columns are read and its rows
// written while all their cache lines are at hand, so that strides which are powers of two (many rows
// of a tile falling into one cache set) cost nothing.
void C06_TRANSPOSE_REAL_TILE(int m, int n, const double *a, int lda, double *b, int ldb) {
    using zek::fft::Index;
    using zek::fft::kTileBlock;
    zek::fft::for_each_block(
        m, n,
        [&](Index ib, Index jb) {
            // 2 by 2 squares: two values of two columns in, two of two rows out.
            using zek::fft::V2;
            using Mask [[maybe_unused]] = long long __attribute__((vector_size(16)));
            for (Index j = 0; j < kTileBlock; j += 2) {
                const double *a0 = a + ib + (jb + j) * lda, *a1 = a0 + lda;
                double *b0 = b + jb + j + ib * ldb;
                for (Index i = 0; i < kTileBlock; i += 2) {
                    const V2 c0 = zek::fft::load<V2>(a0 + i), c1 = zek::fft::load<V2>(a1 + i);
                    zek::fft::store(b0 + i * ldb, ZEK_INTERLEAVE(c0, c1, 0, 2));
                    zek::fft::store(b0 + (i + 1) * ldb, ZEK_INTERLEAVE(c0, c1, 1, 3));
                }
            }
        },
        [&](Index i, Index j) { b[j + i * ldb] = a[i + j * lda]; });
}

void C06_TRANSPOSE_COMPLEX_TILE(int m, int n, const double *a, int lda, double *b, int ldb) {
    using zek::fft::Index;
    using zek::fft::kTileBlock;
    zek::fft::for_each_block(
        m, n,
        [&](Index ib, Index jb) {
            zek::fft::Cv block[kTileBlock][kTileBlock];
            for (Index j = 0; j < kTileBlock; ++j)
                for (Index i = 0; i < kTileBlock; ++i) block[i][j] = zek::fft::load(a + 2 * (ib + i + (jb + j) * lda));
            for (Index i = 0; i < kTileBlock; ++i)
                for (Index j = 0; j < kTileBlock; ++j) zek::fft::store(b + 2 * (jb + j + (ib + i) * ldb), block[i][j]);
        },
        [&](Index i, Index j) {
            b[2 * (j + i * ldb)] = a[2 * (i + j * lda)];
            b[2 * (j + i * ldb) + 1] = a[2 * (i + j * lda) + 1];
        });
}

void C06_TRANSPOSE_REAL(int m, int n, const double *a, int lda, double *b, int ldb) {
    if (m < 1 || n < 1) return;
    zek::fft::transpose(1, m, n, a, lda, b, ldb);
}

void C06_TRANSPOSE_COMPLEX(int m, int n, const double *a, int lda, double *b, int ldb) {
    if (m < 1 || n < 1) return;
    zek::fft::transpose(2, m, n, a, lda, b, ldb);
}

void C06_TRANSPOSE(int words, int m, int n, const double *a, double *b) {
    if (words == 2)
        C06_TRANSPOSE_COMPLEX(m, n, a, m, b, n);
    else
        C06_TRANSPOSE_REAL(m, n, a, m, b, n);
}

void C06_BLOCK_SPLIT(int team, int rank, int count, int *first, int *last) {
    zek::fft::block_split(team, rank, count, first, last);
}

} // extern "C"
