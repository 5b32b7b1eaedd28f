// Helpers of the kernel tests: reproducible random data, strided storage and tolerant comparison.
#ifndef ZEK_TESTS_KERNEL_TEST_UTIL_H
#define ZEK_TESTS_KERNEL_TEST_UTIL_H

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <vector>

namespace zek_test {

// Uniform numbers on (-1, 1) from a fixed seed, so every run sees the same data.
class Random {
public:
    explicit Random(unsigned seed = 12345) : engine_(seed) {}
    double next() { return dist_(engine_); }
    std::vector<double> vector(std::size_t n) {
        std::vector<double> v(n);
        for (double &x : v) x = next();
        return v;
    }

private:
    std::mt19937_64 engine_;
    std::uniform_real_distribution<double> dist_{-1.0, 1.0};
};

// Storage for N elements (of WIDTH doubles each) at increment INC: at least one element.
inline std::size_t strided_size(int n, int inc, int width = 1) {
    const int steps = n > 1 ? (n - 1) * std::abs(inc) : 0;
    return static_cast<std::size_t>(steps + 1) * width;
}

// Expects |a - b| <= tol * (1 + |b|) elementwise, naming the first mismatch.
inline void expect_near_vectors(const std::vector<double> &a, const std::vector<double> &b, double tol,
                                const char *what) {
    ASSERT_EQ(a.size(), b.size()) << what;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!(std::fabs(a[i] - b[i]) <= tol * (1.0 + std::fabs(b[i])))) {
            ADD_FAILURE() << what << ": element " << i << " is " << a[i] << ", expected " << b[i];
            return;
        }
    }
}

constexpr double kTight = 1e-13;

} // namespace zek_test

#endif
