// The settings of an active-set run, read from a solver's option block after its defaults were applied.
#ifndef ZEK_OPTIMISATION_RUN_SETTINGS_H
#define ZEK_OPTIMISATION_RUN_SETTINGS_H

#include "optimisation/active_set.h"

namespace zek::e04 {

// The tolerances derived from the machine precision at the start of the run (EPS and its powers, and the
// condition limit of the factors).
void apply_machine_base(active_set::Settings &s, const double *rwsav);

// What every solver of the linear-constraint block shares: printing and monitoring units, check and
// expand frequencies, the minimum-sum choice, infinite bound and step, the crash, feasibility and
// optimality tolerances and the machine base.  The caller adds its name, problem kind and iteration limit.
active_set::Settings lc_block_settings(const int *iwsav, const double *rwsav);

// What E04NCA and the subproblems of E04UCA and E04USA read from the least-squares block: printing
// and monitoring units, the feasibility plus optimality iteration limit, infinite bound and step, the
// crash and feasibility tolerances, the machine base, and E50 as the optimality tolerance.
active_set::Settings ls_block_settings(const int *iwsav, const double *rwsav);

} // namespace zek::e04

#endif
