// Timing shared by the benchmarks that print their own tables (those not run by Google Benchmark).
#pragma once

#include <algorithm>
#include <chrono>

namespace zek_bench {

inline double seconds_since(std::chrono::steady_clock::time_point t) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t).count();
}

// The best of repeated runs of SOLVE: at least MIN_RUNS, then more while the time spent stays under
// BUDGET seconds (at most 1000), so quick problems are timed many times and slow ones once or twice.
template <class F> double best_time(F solve, double budget, int min_runs = 3) {
    double best = 1e30, spent = 0.0;
    for (int k = 0; k < 1000 && (k < min_runs || spent < budget); ++k) {
        const auto t0 = std::chrono::steady_clock::now();
        solve();
        const double s = seconds_since(t0);
        best = std::min(best, s);
        spent += s;
    }
    return best;
}

} // namespace zek_bench
