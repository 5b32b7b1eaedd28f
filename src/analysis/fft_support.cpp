// Factorisations, digit permutation, trigonometric tables, transposition and the team seam of the
// Fourier transforms.
#include <cmath>
#include <cstring>

#include "analysis/fft.h"
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

} // namespace

void digit_permute(int m, int n, const int *factors, int nf, const double *src, double *dst) {
    if (m == 1) {
        for_each_digit_reversal(n, factors, nf, [&](Index i, Index pos) { dst[pos] = src[i]; });
    } else {
        const std::size_t bytes = sizeof(double) * static_cast<std::size_t>(m);
        for_each_digit_reversal(n, factors, nf,
                                [&](Index i, Index pos) { std::memcpy(dst + pos * m, src + i * m, bytes); });
    }
}

void digit_permute_inverse(int m, int n, const int *factors, int nf, const double *src, double *dst) {
    if (m == 1) {
        for_each_digit_reversal(n, factors, nf, [&](Index i, Index pos) { dst[i] = src[pos]; });
    } else {
        const std::size_t bytes = sizeof(double) * static_cast<std::size_t>(m);
        for_each_digit_reversal(n, factors, nf,
                                [&](Index i, Index pos) { std::memcpy(dst + i * m, src + pos * m, bytes); });
    }
}

namespace {

// cos and sin of 2 pi t / den in long double, reduced to the first octant so that the argument of
// the library functions stays small.
void accurate_root(long long den, long long t, long double &c, long double &s) {
    t %= den;
    if (t < 0) t += den;
    // Work with u = 8t in units of den/8: octant o = floor(8t/den), rest in [0, den).
    const long double pi = 3.141592653589793238462643383279502884L;
    const long long eight = 8 * t;
    const int octant = static_cast<int>(eight / den);
    const long long rest = eight - static_cast<long long>(octant) * den;
    // angle = (octant + rest/den) * pi/4; reflect odd octants so the reduced angle is in [0, pi/4].
    long double a;
    if (octant % 2 == 0)
        a = pi / 4 * static_cast<long double>(rest) / den;
    else
        a = pi / 4 * static_cast<long double>(den - rest) / den;
    const long double sa = std::sin(a), ca = std::cos(a);
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

} // namespace

RootStream::RootStream(long long den, long long start, long long step) : den_(den), index_(start), step_(step) {
    accurate_root(den_, step_, wr_, wi_);
}

void RootStream::anchor() { accurate_root(den_, index_, cr_, ci_); }

void RootStream::next(double &c, double &s) {
    if (count_++ % 32 == 0) anchor();
    c = static_cast<double>(cr_);
    s = static_cast<double>(ci_);
    const long double r = cr_ * wr_ - ci_ * wi_;
    ci_ = cr_ * wi_ + ci_ * wr_;
    cr_ = r;
    index_ += step_;
}

void fill_real_table(int n, double *cosv, double *sinv) {
    const int h = (n + 1) / 2;
    RootStream roots(n, 1, 1);
    for (int j = 1; j < h; ++j) roots.next(cosv[j - 1], sinv[j - 1]);
}

namespace {

// cos and sin of 2 pi t / n from the base table B of (cos, sin) pairs, by the symmetries N allows:
// quarter turns when 4 divides N (B covers [0, N/8]), half turns when 2 does (B covers [0, N/4]),
// otherwise the conjugate (B covers [0, N/2]).
class BaseRoots {
public:
    // A null B leaves the object inactive.
    BaseRoots(long long n, double *b) : n_(n), b_(b) {
        if (b == nullptr) return;
        const long long last = n % 4 == 0 ? n / 8 : n % 2 == 0 ? n / 4 : n / 2;
        RootStream roots(n, 0, 1);
        for (long long k = 0; k <= last; ++k) roots.next(b[2 * k], b[2 * k + 1]);
    }
    bool active() const { return b_ != nullptr; }
    void get(long long t, double &c, double &s) const {
        if (n_ % 4 == 0) {
            const long long q = n_ / 4, quadrant = t / q, r = t - quadrant * q;
            double x, y;
            if (2 * r <= q) {
                x = b_[2 * r];
                y = b_[2 * r + 1];
            } else { // angle pi/2 - 2 pi (q - r)/n
                x = b_[2 * (q - r) + 1];
                y = b_[2 * (q - r)];
            }
            switch (quadrant) {
            case 0: c = x; s = y; break;
            case 1: c = -y; s = x; break;
            case 2: c = -x; s = -y; break;
            default: c = y; s = -x; break;
            }
        } else if (n_ % 2 == 0) {
            const long long half = n_ / 2;
            const double sign = t >= half ? -1.0 : 1.0;
            if (t >= half) t -= half;
            // t in [0, N/2): cos(2 pi t/n) = -cos(2 pi (half - t)/n), sin equal
            if (2 * t <= half) {
                c = sign * b_[2 * t];
                s = sign * b_[2 * t + 1];
            } else {
                c = -sign * b_[2 * (half - t)];
                s = sign * b_[2 * (half - t) + 1];
            }
        } else if (2 * t <= n_) {
            c = b_[2 * t];
            s = b_[2 * t + 1];
        } else {
            c = b_[2 * (n_ - t)];
            s = -b_[2 * (n_ - t) + 1];
        }
    }

private:
    long long n_;
    const double *b_;
};

} // namespace

void fill_complex_table(int n, const int *factors, int nf, double *trig, double *scratch) {
    Index l1 = 1, at = 0;
    double c, s;
    const BaseRoots base(n, n >= 64 ? scratch : nullptr);
    for (int f = 0; f < nf; ++f) {
        const int p = factors[f];
        const Index ido = n / (l1 * p);
        if (p >= 7) {
            // The factor's own roots: the row's angle first, then its multiples.
            RootStream roots(p, 1, 1);
            for (int q = 1; q < p; ++q, ++at) {
                roots.next(c, s);
                trig[2 * at] = c;
                trig[2 * at + 1] = -s;
            }
        }
        for (int j = 1; j < p; ++j) {
            if (base.active()) {
                const long long step = l1 * j;
                long long t = 0;
                for (Index i = 1; i < ido; ++i, ++at) {
                    t += step;
                    if (t >= n) t -= n;
                    base.get(t, c, s);
                    trig[2 * at] = c;
                    trig[2 * at + 1] = -s;
                }
                continue;
            }
            RootStream roots(n, l1 * j, l1 * j);
            for (Index i = 1; i < ido; ++i, ++at) {
                roots.next(c, s);
                trig[2 * at] = c;
                trig[2 * at + 1] = -s;
            }
        }
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

} // namespace zek::fft

extern "C" {

void C06_TRANSPOSE_REAL_TILE(int m, int n, const double *a, int lda, double *b, int ldb) {
    for (zek::fft::Index j = 0; j < n; ++j)
        for (zek::fft::Index i = 0; i < m; ++i) b[j + i * ldb] = a[i + j * lda];
}

void C06_TRANSPOSE_COMPLEX_TILE(int m, int n, const double *a, int lda, double *b, int ldb) {
    for (zek::fft::Index j = 0; j < n; ++j) {
        for (zek::fft::Index i = 0; i < m; ++i) {
            b[2 * (j + i * ldb)] = a[2 * (i + j * lda)];
            b[2 * (j + i * ldb) + 1] = a[2 * (i + j * lda) + 1];
        }
    }
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
