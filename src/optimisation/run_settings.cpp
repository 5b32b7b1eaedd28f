// Settings of an active-set run from the option blocks.
#include "optimisation/run_settings.h"

#include <algorithm>

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

} // namespace zek::e04
