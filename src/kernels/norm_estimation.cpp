// F04YCF and F04ZCF: estimates of the 1-norm of a real or complex matrix known only through products
// with it and with its transpose, by reverse communication.
//
// The estimator is the one of Hager as refined by Higham: start from the vector of equal weights, then
// alternate x := A*x, the sign vector of the result, x := A'*x, and the unit vector at the largest
// component, until the estimate stops growing or the signs repeat (at most five such rounds); a last
// product with an alternating test vector guards against the cases where the power-method steps are
// misled.  The state between calls lives in the caller's IWORK, nothing in the library.
#include "kernels/norm_estimation.h"

#include <cmath>
#include <cstddef>
#include <type_traits>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "kernels/level1.h"
#include "zek2/f04.h"

namespace zek {

namespace {

constexpr int kMaxRounds = 5;

// IWORK layout: the saved state in its first three places (stage, index, round), then the N signs of
// the real estimator.
enum { kStage = 0, kIndex = 1, kRound = 2, kSigns = 3 };

// What the two estimators do differently, by element type: the modulus, the sign of an element (for a
// real one +-1, for a complex one x/|x|, 1 for a negligible element), and whether the signs are kept
// to stop when they repeat (the real form only).
inline double modulus(double x) { return std::fabs(x); }
inline double modulus(Complex z) { return std::hypot(z.re, z.im); }
inline double sign_of(double x, double) { return x >= 0.0 ? 1.0 : -1.0; }
inline Complex sign_of(Complex z, double safmin) {
    const double a = modulus(z);
    return a > safmin ? Complex{z.re / a, z.im / a} : Complex{1.0, 0.0};
}
inline double real_element(double value, double) { return value; }
inline Complex real_element(double value, Complex) { return Complex{value, 0.0}; }

} // namespace

// One call of the estimator: KASE 0 on the first call; on return KASE 1 asks for X := A*X, 2 for
// X := A'*X, and 0 says EST is final (V holds A*w for a w with ||A*w||/||w|| = EST).
template <class T> void estimate_norm_t(int n, T *v, T *x, int *isave, double *est, int *kase) {
    constexpr bool kReal = std::is_same_v<T, double>;
    const double safmin = safe_minimum();
    int *isgn = isave + kSigns;
    auto sum_moduli = [&](const T *y) {
        double sum = 0.0;
        for (int i = 0; i < n; ++i) sum += modulus(y[i]);
        return sum;
    };
    // The first index of the largest modulus.
    auto largest = [&]() {
        int best = 0;
        double m = modulus(x[0]);
        for (int i = 1; i < n; ++i)
            if (modulus(x[i]) > m) {
                m = modulus(x[i]);
                best = i;
            }
        return best;
    };
    auto signs = [&]() {
        for (int i = 0; i < n; ++i) {
            x[i] = sign_of(x[i], safmin);
            if constexpr (kReal) isgn[i] = static_cast<int>(x[i]);
        }
    };
    auto unit_vector = [&](int j) {
        for (int i = 0; i < n; ++i) x[i] = real_element(0.0, T{});
        x[j] = real_element(1.0, T{});
        *kase = 1;
        isave[kStage] = 3;
    };
    // The alternating test vector (-1)**(i+1) * (1 + (i-1)/(n-1)).
    auto final_test = [&]() {
        double altsgn = 1.0;
        for (int i = 0; i < n; ++i) {
            x[i] = real_element(altsgn * (1.0 + static_cast<double>(i) / (n - 1)), T{});
            altsgn = -altsgn;
        }
        *kase = 1;
        isave[kStage] = 5;
    };
    if (*kase == 0) {
        for (int i = 0; i < n; ++i) x[i] = real_element(1.0 / n, T{});
        *kase = 1;
        isave[kStage] = 1;
        return;
    }
    switch (isave[kStage]) {
    case 1: // X holds A*x.
        if (n == 1) {
            v[0] = x[0];
            *est = modulus(v[0]);
            *kase = 0;
            return;
        }
        *est = sum_moduli(x);
        signs();
        *kase = 2;
        isave[kStage] = 2;
        return;
    case 2: // X holds A'*x.
        isave[kIndex] = largest();
        isave[kRound] = 2;
        unit_vector(isave[kIndex]);
        return;
    case 3: { // X holds A*x.
        copy(n, x, 1, v, 1);
        const double estold = *est;
        *est = sum_moduli(v);
        bool repeated = false;
        if constexpr (kReal) {
            repeated = true;
            for (int i = 0; i < n; ++i)
                if (static_cast<int>(sign_of(x[i], safmin)) != isgn[i]) repeated = false;
        }
        if (repeated || *est <= estold) {
            final_test();
            return;
        }
        signs();
        *kase = 2;
        isave[kStage] = 4;
        return;
    }
    case 4: { // X holds A'*x.
        const int jlast = isave[kIndex];
        isave[kIndex] = largest();
        // The real form compares the signed element at the last index with the largest modulus.
        bool moved;
        if constexpr (kReal) moved = x[jlast] != modulus(x[isave[kIndex]]);
        else moved = modulus(x[jlast]) != modulus(x[isave[kIndex]]);
        if (moved && isave[kRound] < kMaxRounds) {
            ++isave[kRound];
            unit_vector(isave[kIndex]);
            return;
        }
        final_test();
        return;
    }
    case 5: { // X holds A*(alternating vector).
        const double temp = 2.0 * (sum_moduli(x) / (3.0 * n));
        if (temp > *est) {
            copy(n, x, 1, v, 1);
            *est = temp;
        }
        *kase = 0;
        return;
    }
    default:
        *kase = 0;
        return;
    }
}

void estimate_norm(int n, double *v, double *x, int *isave, double *est, int *kase) {
    estimate_norm_t(n, v, x, isave, est, kase);
}
void estimate_norm(int n, Complex *v, Complex *x, int *isave, double *est, int *kase) {
    estimate_norm_t(n, v, x, isave, est, kase);
}

namespace {

// The failure exits of both estimators.
enum EstimatorExit { kNLessThan1, kIcaseOutOfRange };
constexpr ExitRow kEstimatorExits[] = {
    {1, 99999, " ** On entry, N .lt. 1: N =%16ld."},
    {2, 99998, " ** On entry, ICASE .lt. 0 or ICASE .gt. 2: ICASE =%16ld."},
};

// The checks shared by both estimators: N, and a reverse-communication code the estimator handed out.
bool estimator_arguments(FailureExit &exit, int icase, int n) {
    if (n < 1) {
        take(exit, kEstimatorExits, kNLessThan1, {static_cast<long>(n)});
        return false;
    }
    if (icase < 0 || icase > 2) {
        take(exit, kEstimatorExits, kIcaseOutOfRange, {static_cast<long>(icase)});
        return false;
    }
    return true;
}

} // namespace

} // namespace zek

extern "C" void F04YCF(int *icase, const int *n, double *x, double *estnrm, double *work, int *iwork, int *ifail) {
    zek::FailureExit exit("F04YCF", nullptr, ifail);
    if (!zek::estimator_arguments(exit, *icase, *n)) {
        *icase = 0;
        return;
    }
    zek::estimate_norm(*n, work, x, iwork, estnrm, icase);
    exit.succeed();
}

extern "C" void F04ZCF(int *icase, const int *n, double *x, double *estnrm, double *work, int *iwork, int *ifail) {
    zek::FailureExit exit("F04ZCF", nullptr, ifail);
    if (!zek::estimator_arguments(exit, *icase, *n)) {
        *icase = 0;
        return;
    }
    zek::estimate_norm(*n, reinterpret_cast<zek::Complex *>(work), reinterpret_cast<zek::Complex *>(x), iwork,
                       estnrm, icase);
    exit.succeed();
}
