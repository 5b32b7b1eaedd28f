// Internal pieces of chapter C06 shared by its source files: factorisations, tables, the passes of both
// engines, transposition and the team seam.  Nothing here is exported; the exported forms are in
// include/zek2/c06.h.
//
// Storage conventions of the passes:
// - Complex data are pairs (re, im).  The passes of the second engine read and write "rows": element j
//   of M sequences stored side by side (by element), so their innermost loop runs over the M sequences
//   at stride 1.  M = 1 is the single sequence.
// - Real data in the real passes are in packed Hermitian form per sub-transform: a block of length L
//   holds Re z(k) at k for k <= L/2 and Im z(k) at L-k for 0 < k < L/2.  Rows again hold M values.
#ifndef ZEK_ANALYSIS_FFT_H
#define ZEK_ANALYSIS_FFT_H

#include <cstddef>

namespace zek::fft {

using Index = std::ptrdiff_t;

// Factor limits of the two engines.
constexpr int kFirstEngineLargestPrime = 19;
constexpr int kFirstEngineMostFactors = 20;
constexpr int kFirstEngineLargestMerge = 8;
constexpr int kSecondEngineMostFactors = 30;
constexpr int kFactorListSize = 32;

// The first engine's factorisation into squares.  On success (code 0) the list holds the factors in
// the order of the passes, palindromic around the square-free rest, runs of 2 merged up to 8, slots
// given up holding 1, then a terminating 0.  Code 1: a prime above 19; code 2: more than 20 factors.
// FACTORS needs room for kFactorListSize entries.
void factor_squares(int n, int largest_prime, int largest_merge, int *factors, int *code);

// The second engine's factor list: 5s, 4s, 2s, 3s, then 7, 11, 13, ... as often as each divides, the
// rest last.  Returns the count; kSecondEngineMostFactors + 1 means too many.  FACTORS needs room for
// kFactorListSize entries.
int factor_list(int n, int *factors);

// Digit permutation of the in-place real passes: with the factors p(1..nf) in pass order (1s skipped),
// row n of SRC goes to row pos(n) of DST, where pos reverses the mixed-radix digits of n.  Rows hold M
// values.  The inverse moves row pos(n) of SRC to row n of DST.
void digit_permute(int m, int n, const int *factors, int nf, const double *src, double *dst);
void digit_permute_inverse(int m, int n, const int *factors, int nf, const double *src, double *dst);

// The twiddle table of the real passes: cos(2 pi j / N) at cosv[j-1], sin(2 pi j / N) at sinv[j-1]
// for j = 1 .. ceil(N/2) - 1.
struct RealTable {
    const double *cosv;
    const double *sinv;
};
void fill_real_table(int n, double *cosv, double *sinv);

// Successive roots cos(2 pi t/DEN), sin(2 pi t/DEN) for t = START, START+STEP, ...  Every root is
// anchored to its exact integer index, so no error of a rounded base angle builds up along the run (a
// coherent error that would otherwise grow with N in the running sums of the sine and cosine
// transforms).  The run is cut in stretches of kRun roots: root q*kRun + r is the product, in long
// double, of the stretch's first root w(START + q*kRun*STEP) and the fine root w(r*STEP).  The fine
// roots come from one accurate root by products, once; the stretch roots likewise, with an accurate
// evaluation every kAnchor stretches.  The products are independent of each other, so a
// run pipelines, and every root is within a few long double roundings of the truth before its one
// rounding to double.
class RootStream {
public:
    RootStream(long long den, long long start, long long step);
    // The next root.
    void next(double &c, double &s) {
        if (r_ == kRun) next_stretch();
        if (r_ >= fine_built_) extend_fine(r_ + 1);
        const long double fr = static_cast<long double>(fine_rh_[r_]) + fine_rl_[r_];
        const long double fi = static_cast<long double>(fine_ih_[r_]) + fine_il_[r_];
        c = static_cast<double>(cr_ * fr - ci_ * fi);
        s = static_cast<double>(cr_ * fi + ci_ * fr);
        ++r_;
    }
    // The next COUNT roots, handed to store(k, c, s) for k = 0 .. COUNT-1.
    template <class Store> void run(Index count, Store store) {
        for (Index k = 0; k < count;) {
            if (r_ == kRun) next_stretch();
            const int stop = count - k < kRun - r_ ? r_ + static_cast<int>(count - k) : kRun;
            if (stop > fine_built_) extend_fine(stop);
            const long double cr = cr_, ci = ci_;
            for (; r_ < stop; ++r_, ++k) {
                // The fine roots are kept as exact sums of two doubles, which load faster than long
                // doubles.
                const long double fr = static_cast<long double>(fine_rh_[r_]) + fine_rl_[r_];
                const long double fi = static_cast<long double>(fine_ih_[r_]) + fine_il_[r_];
                store(k, static_cast<double>(cr * fr - ci * fi), static_cast<double>(cr * fi + ci * fr));
            }
        }
    }

private:
    static constexpr int kRun = 32;
    static constexpr int kAnchor = 8;
    void next_stretch();
    void extend_fine(int stop);
    long long den_, start_, step_;
    long long stretch_ = 0;
    int r_ = 0, fine_built_ = 1;
    long double cr_ = 1, ci_ = 0, gr_ = 1, gi_ = 0;
    // w(r*STEP): real part rh + rl, imaginary part ih + il.
    double fine_rh_[kRun], fine_rl_[kRun], fine_ih_[kRun], fine_il_[kRun];
};

// One in-place real pass of factor P at running product K over the blocks of length K*P of N rows:
// forward combines P packed Hermitian transforms of length K into one of length K*P, backward splits
// it again (unscaled: forward then backward multiplies by P).  TMP (M*N values, or null) is used only
// by factors the local buffers cannot hold.
void real_pass_forward(int p, int m, int n, int k, double *x, RealTable t, double *tmp);
void real_pass_backward(int p, int m, int n, int k, double *x, RealTable t, double *tmp);

// One pass of the second engine's self-sorting complex transform, forward sign, rows of M complex
// values: input element (i, r, k) at i + ido*(r + p*k), output (i, k, j) at i + ido*(k + l1*j).
// TW holds the pass's table part (see complex_table_size).
// Rows of input and output lie LDI and LDO complex values apart (at least M).
void complex_pass(int p, int m, Index ldi, Index ldo, int ido, int l1, const double *cc, double *ch,
                  const double *tw);
// Complex elements of the table that the pass of factor P with IDO uses.
inline Index complex_table_size(int p, Index ido) { return (p >= 7 ? p - 1 : 0) + (p - 1) * (ido - 1); }
// The complex table for the factors, pass by pass: for a factor of 7 or more its roots
// exp(-2 pi i q/p), q = 1..p-1, then for every factor the twiddles exp(-2 pi i l1 i j / N) for
// j = 1..p-1, i = 1..ido-1.  Uses at most N-1 complex elements.
// SCRATCH (2N reals, or null) speeds it up: an accurate table of the first octant (or quadrant, or
// half, as N allows) is made there and the rest follows by symmetry.
void fill_complex_table(int n, const int *factors, int nf, double *trig, double *scratch = nullptr);
// Runs all passes on rows of M complex values, ping-ponging between X and SCRATCH, and leaves the
// result in X multiplied by SCALE (imaginary parts by SCALE_IM).
// X's rows lie LDX complex values apart; SCRATCH holds M*N complex values with rows M apart.
void complex_passes(int m, Index ldx, int n, const int *factors, int nf, const double *trig, double *x,
                    double *scratch, double scale, double scale_im);

// The written-out passes built once more for the wider vector registers of processors that have
// them (AVX2, fft_wide.cpp).  They do the same operations in the same order on more values at once,
// so their results are those of the ordinary passes bit for bit; the choice is made once, from what
// the processor reports.
namespace wide {
bool enabled();
// Tests run both forms: false keeps the ordinary passes.
void allow(bool allowed);
// As complex_pass for the factors 2 to 5 and the odd factors up to kGeneralLocal (fft_pass_bodies.h).
void complex_pass(int p, int m, Index ldi, Index ldo, int ido, int l1, const double *cc, double *ch,
                  const double *tw);
// As real_pass_forward / real_pass_backward for the factors 2, 3, 4, 5, 6 and 8, on one sequence or
// on M > 1 rows.
void real_pass_single(bool forward, int p, int n, Index k, double *x, RealTable t);
void real_pass_rows(bool forward, int p, int m, int n, Index k, double *x, RealTable t);
} // namespace wide

// Out-of-place transposition of the M by N matrix A (leading dimension LDA) into B (N by M, leading
// dimension LDB), in tiles of 64; WORDS is 1 for reals, 2 for complex elements.
constexpr int kTile = 64;
void transpose(int words, int m, int n, const double *a, Index lda, double *b, Index ldb);

// The team seam of the multiple-sequence routines: a team of one worker.
int team_size();
int team_rank();
// Worker RANK of TEAM takes count/team sequences, one more for the first count mod team workers:
// FIRST..LAST, one-based (LAST < FIRST for none).
void block_split(int team, int rank, int count, int *first, int *last);

// The hook for a specialised replacement chosen by two letters ("PC", "PP"): none is present.
bool replacement_present(const char *letters);
void replacement_entry();

// The multiple real transform on M sequences stored by element (rows), A holding M*(N+2) values:
// forward from N real rows to N/2+1 complex rows (re, im as two rows), backward the reverse.  B is a
// buffer of M*N values; TRIG the table of C06_REAL_TABLE for N.  Scaled by 1/sqrt(N).
void multiple_real_forward(int m, int n, double *a, double *b, const double *trig, const int *factors, int nf);
void multiple_real_backward(int m, int n, double *a, double *b, const double *trig, const int *factors, int nf);

// Case-blind first character of a character argument (blank when the length is below 1).
char option_letter(const char *text, int length);

} // namespace zek::fft

#endif
