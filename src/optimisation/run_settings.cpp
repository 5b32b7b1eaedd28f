// Settings of an active-set run from the option blocks.
#include "optimisation/run_settings.h"

#include <algorithm>
#include <climits>

#include "optimisation/options.h"

namespace zek::e04 {

void apply_machine_base(active_set::Settings &s, const double *rwsav) {
    const MachineBase base = machine_base(rwsav);
    s.eps = base.eps;
    s.e33 = base.e33;
    s.e50 = base.e50;
    s.e80 = base.e80;
    s.condition_limit = std::max(1.0 / base.e50, 100.0);
}

active_set::Settings lc_block_settings(const int *iwsav, const double *rwsav) {
    active_set::Settings s;
    s.print_level = setting(iwsav, Block::LC, lc::kPrintLevel);
    s.print_unit = setting(iwsav, Block::LC, lc::kPrintUnit);
    s.monitor_unit = setting(iwsav, Block::LC, lc::kMonitoringUnit);
    s.check_frequency = setting(iwsav, Block::LC, lc::kCheckFrequency);
    s.expand_frequency = setting(iwsav, Block::LC, lc::kExpandFrequency);
    s.minimum_sum = setting(iwsav, Block::LC, lc::kMinimumSum) > 0;
    s.infinite_bound = real_setting(rwsav, Block::LC, lc::kInfiniteBound);
    s.infinite_step = real_setting(rwsav, Block::LC, lc::kInfiniteStep);
    s.crash_tolerance = real_setting(rwsav, Block::LC, lc::kCrashTolerance);
    s.feasibility_tolerance = real_setting(rwsav, Block::LC, lc::kFeasibilityTolerance);
    s.optimality_tolerance = real_setting(rwsav, Block::LC, lc::kOptimalityTolerance);
    apply_machine_base(s, rwsav);
    return s;
}

active_set::Settings ls_block_settings(const int *iwsav, const double *rwsav) {
    active_set::Settings s;
    s.print_level = setting(iwsav, Block::LS, ls::kPrintLevel);
    s.print_unit = setting(iwsav, Block::LS, ls::kPrintUnit);
    s.monitor_unit = setting(iwsav, Block::LS, ls::kMonitoringUnit);
    const long limit = static_cast<long>(setting(iwsav, Block::LS, ls::kFeasibilityItns)) +
                       setting(iwsav, Block::LS, ls::kOptimalityItns);
    s.iteration_limit = static_cast<int>(std::min(limit, static_cast<long>(INT_MAX)));
    s.infinite_bound = real_setting(rwsav, Block::LS, ls::kInfiniteBound);
    s.infinite_step = real_setting(rwsav, Block::LS, ls::kInfiniteStep);
    s.crash_tolerance = real_setting(rwsav, Block::LS, ls::kCrashTolerance);
    s.feasibility_tolerance = real_setting(rwsav, Block::LS, ls::kFeasibilityTolerance);
    apply_machine_base(s, rwsav);
    s.optimality_tolerance = s.e50;
    return s;
}

} // namespace zek::e04
