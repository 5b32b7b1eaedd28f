// Helpers of the Fourier transform tests: random data, the transform by definition in long double, the
// relative error, and the text a call hands to the host.
#ifndef ZEK_TESTS_FFT_TEST_SUPPORT_H
#define ZEK_TESTS_FFT_TEST_SUPPORT_H

#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "frame/host_capture.h"

namespace fft_test {

using Complex = std::complex<long double>;

inline std::vector<double> random_reals(std::size_t count, unsigned seed) {
    std::mt19937_64 gen(seed);
    std::uniform_real_distribution<double> dist(-1.0, 1.0);
    std::vector<double> v(count);
    for (double &x : v) x = dist(gen);
    return v;
}

// z(k) = 1/sqrt(N) sum x(j) exp(sign 2 pi i j k / N), with the angle reduced exactly.
inline std::vector<Complex> dft(const std::vector<Complex> &x, int sign) {
    const std::size_t n = x.size();
    const long double pi = 3.141592653589793238462643383279502884L;
    std::vector<Complex> roots(n);
    for (std::size_t i = 0; i < n; ++i) {
        const long double t = 2 * pi * static_cast<long double>(i) / n;
        roots[i] = Complex(std::cos(t), sign * std::sin(t));
    }
    std::vector<Complex> z(n);
    for (std::size_t k = 0; k < n; ++k) {
        Complex s = 0;
        std::size_t idx = 0;
        for (std::size_t j = 0; j < n; ++j) {
            s += x[j] * roots[idx];
            idx += k;
            if (idx >= n) idx -= n;
        }
        z[k] = s / std::sqrt(static_cast<long double>(n));
    }
    return z;
}

// ||a - b|| / ||b|| over equally long real vectors.
inline double relative_error(const std::vector<double> &a, const std::vector<double> &b) {
    long double num = 0, den = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        num += (static_cast<long double>(a[i]) - b[i]) * (static_cast<long double>(a[i]) - b[i]);
        den += static_cast<long double>(b[i]) * b[i];
    }
    return den == 0 ? static_cast<double>(std::sqrt(num)) : static_cast<double>(std::sqrt(num / den));
}

// Tolerance for a transform of length n: a few eps times log2 n.
inline double tolerance(long n) { return 4e-16 * (std::log2(static_cast<double>(n) + 1.0) + 2.0); }

// The text CALL hands to the host's print routine: one line per call of the routine, without trailing
// blanks.
template <class F> std::string host_text(F call) {
    zek_test::OutputCapture capture;
    call();
    std::string text;
    for (std::string piece : capture.host()) {
        piece.erase(piece.find_last_not_of(' ') + 1);
        text += (text.empty() ? "" : "\n") + piece;
    }
    return text;
}

} // namespace fft_test

#endif
