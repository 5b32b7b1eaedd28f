// Shared pieces of the F06 kernels: the complex element type, the two sets of safe-arithmetic
// constants, strided-vector addressing and the decoding of character and enumerated options.
#ifndef ZEK_KERNELS_KERNEL_TYPES_H
#define ZEK_KERNELS_KERNEL_TYPES_H

#include <cmath>
#include <cstddef>

namespace zek {

// A complex element: two consecutive doubles, real part first, exactly as the ABI lays them out, so a
// double* of interleaved parts may be viewed as a Complex*.  The product is the plain textbook formula
// (no NaN recovery, no scaling), which is what the kernels' arithmetic has always been.
struct Complex {
    double re;
    double im;
};
static_assert(sizeof(Complex) == 2 * sizeof(double), "Complex must be two packed doubles");

inline Complex operator+(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
inline Complex operator-(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
inline Complex operator-(Complex a) { return {-a.re, -a.im}; }
inline Complex operator*(Complex a, Complex b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
inline Complex operator*(double a, Complex b) { return {a * b.re, a * b.im}; }
inline bool operator==(Complex a, Complex b) { return a.re == b.re && a.im == b.im; }
inline bool operator!=(Complex a, Complex b) { return !(a == b); }

inline double conj(double a) { return a; }
inline Complex conj(Complex a) { return {a.re, -a.im}; }
inline double real_part(double a) { return a; }
inline double real_part(Complex a) { return a.re; }
// |re| + |im|: the modulus the complex maximum search and the one-norms use.
inline double abs1(double a) { return std::fabs(a); }
inline double abs1(Complex a) { return std::fabs(a.re) + std::fabs(a.im); }

// Scalar constants in either type.
template <class T> constexpr T zero_of();
template <> constexpr double zero_of<double>() { return 0.0; }
template <> constexpr Complex zero_of<Complex>() { return {0.0, 0.0}; }
template <class T> constexpr T one_of();
template <> constexpr double one_of<double>() { return 1.0; }
template <> constexpr Complex one_of<Complex>() { return {1.0, 0.0}; }

// Division as the triangular solves need it: real division, or Smith's quotient for complex.
inline double divide(double a, double b) { return a / b; }
Complex divide(Complex a, Complex b);

// The constants of the safe arithmetic.  The internal routines use the frozen literals; the exported
// forms read the machine-environment routines at run time.  The two sets differ only in the last
// bits of the safe minimum and maximum.
struct SafeConstants {
    double eps;       // machine precision
    double rteps;     // sqrt(eps)
    double rrteps;    // 1/rteps
    double small;     // safe minimum
    double flmax;     // safe maximum
    double half_max;  // flmax/2
};

// 1.11130722679765e-16, 1.05418557512311e-8, 94859958.5877671, 2.22507385850722e-308 (deliberately not
// the exact smallest normal number), 4.49423283715578e307 and its half.
constexpr SafeConstants kFrozenConstants = {0x1.0040000000020p-53,   0x1.6a3724d10762dp-27,
                                            0x1.69dcada59df9ep+26,   0x1.0000000000026p-1022,
                                            0x1.fffffffffffecp+1021, 0x1.fffffffffffecp+1020};

// The same set from the machine-environment routines (precision, safe minimum) at the time of the call.
SafeConstants runtime_constants();

// Offset of the logical first element of a vector of N elements with increment INC: a negative
// increment walks the vector backwards from its far end.
inline std::ptrdiff_t first_offset(int n, int inc) {
    return inc < 0 ? static_cast<std::ptrdiff_t>(1 - n) * inc : 0;
}

// Element (i, j), zero-based, of a column-major matrix; the leading dimension is never negative here.
template <class T> inline T &at(T *a, std::ptrdiff_t ld, std::ptrdiff_t i, std::ptrdiff_t j) { return a[i + j * ld]; }

// Index arithmetic of the matrix utilities: a negative leading dimension counts as 0.
inline std::ptrdiff_t clamp_ld(int ld) { return ld > 0 ? ld : 0; }

// The first letter of a character option, upper-cased.
inline char option_letter(const char *c) {
    const char l = *c;
    return (l >= 'a' && l <= 'z') ? static_cast<char>(l - 'a' + 'A') : l;
}

// Codes of the enumerated forms.
enum KernelCode : int {
    kNoTrans = 1001,
    kTrans = 1002,
    kConjTrans = 1003,
    kUpper = 1004,
    kLower = 1005,
    kUnitDiag = 1006,
    kNonUnitDiag = 1007,
    kLeftSide = 1008,
    kRightSide = 1009,
    kBottomPivot = 1010,
    kTopPivot = 1011,
    kVariablePivot = 1012,
    kFixedPivot = 1013,
    kForward = 1014,
    kBackward = 1015,
    kGeneralShape = 1020,
    kLowerShape = 1021,
    kUpperShape = 1022,
};

// The letter an enumerated code stands for, or 0 for a code outside the family of the argument.
inline char trans_letter(int code) {
    return code == kNoTrans ? 'N' : code == kTrans ? 'T' : code == kConjTrans ? 'C' : 0;
}
inline char uplo_letter(int code) { return code == kUpper ? 'U' : code == kLower ? 'L' : 0; }
inline char diag_letter(int code) { return code == kUnitDiag ? 'U' : code == kNonUnitDiag ? 'N' : 0; }
inline char side_letter(int code) { return code == kLeftSide ? 'L' : code == kRightSide ? 'R' : 0; }
inline char pivot_letter(int code) {
    return code == kBottomPivot     ? 'B'
           : code == kTopPivot      ? 'T'
           : code == kVariablePivot ? 'V'
           : code == kFixedPivot    ? 'F'
                                    : 0;
}
inline char direct_letter(int code) { return code == kForward ? 'F' : code == kBackward ? 'B' : 0; }
inline char shape_letter(int code) {
    return code == kGeneralShape ? 'G' : code == kLowerShape ? 'L' : code == kUpperShape ? 'U' : 0;
}

} // namespace zek

#endif
