// Forward-mode derivative numbers for the test problems of the tests and the benchmarks: each function
// is written once on Dual, and its gradient or Jacobian comes exact with its value.
#ifndef ZEK_TESTS_DUAL_H
#define ZEK_TESTS_DUAL_H

#include <array>
#include <cmath>

namespace zek_test::dual {

// A value with its derivatives with respect to at most kMax variables.
constexpr int kMax = 11;
struct Dual {
    double v = 0.0;
    std::array<double, kMax> d{};
    Dual() = default;
    Dual(double c) : v(c) {}  // NOLINT: constants mix freely with variables
};

// The function of A whose value is V and whose derivative at A is DA.
inline Dual lift(double v, const Dual &a, double da) {
    Dual r(v);
    for (int k = 0; k < kMax; ++k) r.d[k] = da * a.d[k];
    return r;
}
// The value V whose derivatives are DA * a' + DB * b'.
inline Dual chain(double v, const Dual &a, double da, const Dual &b, double db) {
    Dual r(v);
    for (int k = 0; k < kMax; ++k) r.d[k] = da * a.d[k] + db * b.d[k];
    return r;
}
inline Dual operator+(const Dual &a, const Dual &b) { return chain(a.v + b.v, a, 1.0, b, 1.0); }
inline Dual operator-(const Dual &a, const Dual &b) { return chain(a.v - b.v, a, 1.0, b, -1.0); }
inline Dual operator-(const Dual &a) { return lift(-a.v, a, -1.0); }
inline Dual operator*(const Dual &a, const Dual &b) { return chain(a.v * b.v, a, b.v, b, a.v); }
inline Dual operator/(const Dual &a, const Dual &b) {
    Dual r(a.v / b.v);
    for (int k = 0; k < kMax; ++k) r.d[k] = (a.d[k] - r.v * b.d[k]) / b.v;
    return r;
}
inline Dual sin(const Dual &a) { return lift(std::sin(a.v), a, std::cos(a.v)); }
inline Dual cos(const Dual &a) { return lift(std::cos(a.v), a, -std::sin(a.v)); }
inline Dual exp(const Dual &a) { return lift(std::exp(a.v), a, std::exp(a.v)); }
inline Dual log(const Dual &a) { return lift(std::log(a.v), a, 1.0 / a.v); }
inline Dual sqrt(const Dual &a) { return lift(std::sqrt(a.v), a, 0.5 / std::sqrt(a.v)); }
inline Dual atan(const Dual &a) { return lift(std::atan(a.v), a, 1.0 / (1.0 + a.v * a.v)); }
inline Dual pow(const Dual &a, double p) { return lift(std::pow(a.v, p), a, p * std::pow(a.v, p - 1.0)); }
inline Dual pow(const Dual &a, const Dual &b) { return exp(b * log(a)); }
inline Dual sq(const Dual &a) { return a * a; }

} // namespace zek_test::dual

#endif
