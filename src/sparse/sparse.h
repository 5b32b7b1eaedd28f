// Shared pieces of the sparse chapter: the scalar twins (real and complex from one template), the
// structure check of coordinate storage, the sort engine, and the message texts that several routines
// share.  Indices in the arrays are one-based as the caller stores them; offsets are std::ptrdiff_t.
#ifndef ZEK_SPARSE_SPARSE_H
#define ZEK_SPARSE_SPARSE_H

#include <cmath>
#include <complex>
#include <cstddef>
#include <string>

namespace zek::sparse {

using Index = std::ptrdiff_t;
using Complex = std::complex<double>;

inline double modulus(double x) { return std::fabs(x); }
// The modulus as the thresholds use it: sqrt(re*re + im*im), without scaling.
inline double modulus(Complex z) { return std::sqrt(z.real() * z.real() + z.imag() * z.imag()); }
inline double conjugate(double x) { return x; }
inline Complex conjugate(Complex z) { return std::conj(z); }
inline bool is_zero(double x) { return x == 0.0; }
inline bool is_zero(Complex z) { return z.real() == 0.0 && z.imag() == 0.0; }
inline bool is_finite(double x) { return std::isfinite(x); }
inline bool is_finite(Complex z) { return std::isfinite(z.real()) && std::isfinite(z.imag()); }
inline double real_part(double x) { return x; }
inline double real_part(Complex z) { return z.real(); }

// The caller's value array viewed as scalars: complex arrays are pairs of doubles.
template <class T> T *values(double *a);
template <> inline double *values<double>(double *a) { return a; }
template <> inline Complex *values<Complex>(double *a) { return reinterpret_cast<Complex *>(a); }
template <class T> const T *values(const double *a);
template <> inline const double *values<double>(const double *a) { return a; }
template <> inline const Complex *values<Complex>(const double *a) { return reinterpret_cast<const Complex *>(a); }

// First character of an option, upper case; blank when absent.
char letter(const char *text, int length);
// The option as the messages print it: its first character.
std::string letter_text(const char *text, int length);

// Structure check of NNZ entries (one-based arrays at irow[0], icol[0]).  Status 0 when valid, else
// 1 N < 1, 2 NNZ < 1, 3 NNZ above N**2 (N*(N+1)/2 symmetric), 4 IROW out of range, 5 ICOL out of range
// ([1, IROW] symmetric), 6 out of order, 7 duplicate; *bad receives the one-based entry for 4 to 7.
int cs_check(int n, int nnz, const int irow[], const int icol[], bool symmetric, int *bad);

// Outcome of the sort engine.
struct SortOutcome {
    int status = 0;   // 0 done, 3 duplicate, 4 zero
    int row = 0, col = 0;
};
// Sorts, merges and compresses the list of nnz entries (the distribution passes, then the merge by
// dup 'R' / 'S' / 'F' and the zeros by zero 'R' / 'K' / 'F'); *nnz is updated, istr (n+1) receives the
// row starts, iwork (n) is scratch.  Indices must be in range.
template <class T>
SortOutcome sort_entries(int n, int *nnz, T a[], int irow[], int icol[], char dup, char zero, int istr[], int iwork[]);

// Texts shared by the routines of the chapter.
inline constexpr const char *kIrowRange = " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:\n    I = %16ld, IROW(I) = %16ld, N = %16ld.";
inline constexpr const char *kIcolRange = " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:\n    I = %16ld, ICOL(I) = %16ld, N = %16ld.";
inline constexpr const char *kIcolLower =
    " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. IROW(I):\n    I =%16ld, ICOL(I) =%16ld, IROW(I) =%16ld.";
inline constexpr const char *kOutOfOrder = " ** On entry, A(I) is out of order:\n    I =%16ld.";
inline constexpr const char *kDuplicate = " ** On entry, the location (IROW(I), ICOL(I)) is a duplicate:\n    I =%16ld.";
inline constexpr const char *kNLessOne = " ** On entry, N .lt. 1: N =%16ld.";
inline constexpr const char *kNnzLessOne = " ** On entry, NNZ .lt. 1: NNZ =%16ld.";
inline constexpr const char *kNnzAboveSquare = " ** On entry, NNZ .gt. N**2:\n    NNZ =%16ld N =%16ld.";
inline constexpr const char *kNnzAboveTriangle = " ** On entry, NNZ .gt. N*(N+1)/2:\n    NNZ =%16ld N =%16ld.";
inline constexpr const char *kCheckLetter = " ** On entry, CHECK .ne. 'C' or 'N': CHECK = '%s'.";
inline constexpr const char *kTransLetter = " ** On entry, TRANS .ne. 'N' or 'T': TRANS = '%s'.";

} // namespace zek::sparse

#endif
