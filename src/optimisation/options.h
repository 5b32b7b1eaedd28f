// The E04 option store as the solvers see it: where each setting lives in the caller's state arrays,
// and the run protocol that turns the user's settings into the values a run uses.
//
// A solver run goes so:
//
//     zek::e04::ProblemSize size{n, nclin};
//     zek::e04::begin_run(zek::e04::Family::MFA, lwsav, iwsav, rwsav, size);   // defaults applied
//     zek::e04::print_parameters(zek::e04::Family::MFA, iwsav, rwsav, size);   // " Parameters" list
//     const int itnlim = zek::e04::setting(iwsav, zek::e04::Block::LC, zek::e04::lc::kOptimalityItns);
//     ... the run reads the settled block ...
//     zek::e04::end_run(zek::e04::Family::MFA, lwsav, iwsav, rwsav);           // the user's settings back
//
// Between begin_run and end_run every place of the family's blocks holds a usable value; after
// end_run the blocks hold again what the user set (or the "not set" value), so that a later run with
// another problem size computes its own defaults.
#ifndef ZEK_OPTIMISATION_OPTIONS_H
#define ZEK_OPTIMISATION_OPTIONS_H

#include <cstddef>

namespace zek::e04 {

// "Not set" in every option block.  Every other value, negative ones included, is a value.
constexpr int kNotSetInt = -11111;
constexpr double kNotSetReal = -11111.0;
// An option block is 30 integers and 30 reals; places are one-based.
constexpr int kBlockSize = 30;
// INFINITE BOUND stores the given value times this factor, so that a bound equal to it is infinite.
constexpr double kInfiniteBoundFactor = 0.99999;

// The solver families that share one string routine, file routine and decoder each.
enum class Family : int { DGA = 0, MFA = 1, NCA = 2, NFA = 3, UCA = 4, USA = 5 };
constexpr int kFamilyCount = 6;

// The option blocks.
enum class Block : int {
    CG = 0,  // E04DGA: conjugate-gradient settings
    LC = 1,  // E04MFA, E04NFA: active-set settings of the LP and QP solvers
    LS = 2,  // E04NCA, and the inner solver of E04UCA, E04USA
    NP = 3,  // E04UCA, E04USA: outer settings of the nonlinear solvers
    NL = 4,  // E04USA: nonlinear least-squares settings
};
constexpr int kBlockCount = 5;

// Layout of the state arrays.  Block b takes IWSAV and RWSAV elements [60b, 60b+30), its saved twin
// [60b+30, 60b+60).  Behind the blocks, IWSAV holds two unit cells per family (the advisory unit as
// fetched by the first string call and by the first file call), RWSAV the machine base values of the
// running solver.  LWSAV holds five flags per family.  All of it lies within the shortest lengths that
// E04WBA accepts for the solvers (LWSAV 120, IWSAV 610, RWSAV 475).
constexpr std::ptrdiff_t kBlockStride = 2 * kBlockSize;
constexpr std::ptrdiff_t kUnitCellBase = kBlockCount * kBlockStride;        // 300
constexpr std::ptrdiff_t kMachineBase = kBlockCount * kBlockStride;         // 300 in RWSAV
constexpr std::ptrdiff_t kIwsavUsed = kUnitCellBase + 2 * kFamilyCount;     // 312
constexpr std::ptrdiff_t kRwsavUsed = kMachineBase + 5;                     // 305
constexpr std::ptrdiff_t kLwsavUsed = 5 * kFamilyCount;                     // 30

enum class Flag : int {
    FirstStringCall = 0,  // the string routine has not fetched the advisory unit yet
    FirstFileCall = 1,    // the file routine has not fetched the advisory unit yet
    OptionsUnset = 2,     // the blocks still hold whatever the caller's arrays held
    NewSequence = 3,      // the next option call opens a new printed list
    List = 4,             // LIST is on
};

inline int *block_int(int *iwsav, Block b) { return iwsav + static_cast<int>(b) * kBlockStride; }
inline const int *block_int(const int *iwsav, Block b) { return iwsav + static_cast<int>(b) * kBlockStride; }
inline double *block_real(double *rwsav, Block b) { return rwsav + static_cast<int>(b) * kBlockStride; }
inline const double *block_real(const double *rwsav, Block b) {
    return rwsav + static_cast<int>(b) * kBlockStride;
}
// Place k (one-based) of a block.
inline int &setting(int *iwsav, Block b, int k) { return block_int(iwsav, b)[k - 1]; }
inline int setting(const int *iwsav, Block b, int k) { return block_int(iwsav, b)[k - 1]; }
inline double &real_setting(double *rwsav, Block b, int k) { return block_real(rwsav, b)[k - 1]; }
inline double real_setting(const double *rwsav, Block b, int k) { return block_real(rwsav, b)[k - 1]; }

inline int &flag(int *lwsav, Family f, Flag g) { return lwsav[5 * static_cast<int>(f) + static_cast<int>(g)]; }
inline int &string_unit_cell(int *iwsav, Family f) { return iwsav[kUnitCellBase + 2 * static_cast<int>(f)]; }
inline int &file_unit_cell(int *iwsav, Family f) { return iwsav[kUnitCellBase + 2 * static_cast<int>(f) + 1]; }

// Places of the blocks.  Settings marked "stored" have no effect on a run.
namespace cg {
enum Int : int {
    kIterations = 1, kStartObjective = 2, kStopObjective = 3, kVerifyLevel = 4, kPrintLevel = 5,
    kDebugLevel = 6, kDebugStart = 7,
};
enum Real : int {
    kMaximumStep = 1, kFunctionPrecision = 2, kLinesearchTolerance = 3, kOptimalityTolerance = 4,
    kEstimatedOptimum = 5,  // stays "not set" when the user gives none
    kInfinite = 6,          // stored
};
} // namespace cg

namespace lc {
enum Int : int {
    kPrintUnit = 1, kMonitoringUnit = 2, kFeasibilityItns = 3, kOptimalityItns = 4, kCheckFrequency = 5,
    kExpandFrequency = 6, kStart = 7 /* 0 cold, 1 warm, 2 hot */, kProblemType = 8 /* 1 FP, 2 LP, 3-6 QP1-QP4 */,
    kMaxActive = 9, kMaxFree = 10, kMaxDegrees = 11, kHessianRows = 12, kMinimumSum = 13, kPrintLevel = 14,
};
enum Real : int {
    kInfiniteBound = 1, kInfiniteStep = 2, kCrashTolerance = 5, kFeasibilityTolerance = 6,
    kOptimalityTolerance = 7, kRankTolerance = 8,
};
// The value PROBLEM TYPE stores for a word it does not know; the solver then gives up on the problem.
constexpr int kIllegalProblemType = 10;
} // namespace lc

namespace ls {
enum Int : int {
    kPrintUnit = 1, kMonitoringUnit = 2, kFeasibilityItns = 3, kOptimalityItns = 4, kStart = 5, kHessian = 6,
    kProblemType = 7 /* 1 FP, 2 LP, 3-6 QP1-QP4, 7-10 LS1-LS4 */, kPrintLevel = 8,
    kVariables = 9, kConstraints = 10, kProblemNumber = 11,  // stored
};
enum Real : int {
    kInfiniteBound = 1, kInfiniteStep = 2, kLowerBound = 3 /* stored */, kUpperBound = 4 /* stored */,
    kCrashTolerance = 5, kFeasibilityTolerance = 6, kRankTolerance = 7,
};
} // namespace ls

namespace np {
enum Int : int {
    kMajorIterations = 1, kStartObjective = 2, kStopObjective = 3, kStartConstraints = 4, kStopConstraints = 5,
    kDerivativeLevel = 6, kVerifyLevel = 7, kMajorPrintLevel = 8, kNonlinearObjective = 9,
    kNonlinearJacobian = 10, kNonlinearVariables = 11, kNonlinearConstraints = 12 /* stored */,
    kDifferenceMode = 13,  // set by the defaults: 0 intervals computed, 1 given, 2 user-supplied per variable
};
enum Real : int {
    kCentralInterval = 1, kNonlinearFeasibility = 2, kStepLimit = 3, kFunctionPrecision = 4,
    kLinesearchTolerance = 5, kDifferenceInterval = 6, kOptimalityTolerance = 7, kConditionBound = 8,
};
} // namespace np

namespace nl {
enum Int : int { kInitialHessian = 1 /* 0 J'J, 1 unit */, kResetFrequency = 2 };
} // namespace nl

// The size of the problem a run solves, from which the defaults follow.
struct ProblemSize {
    int n = 0;      // variables
    int nclin = 0;  // general linear constraints
    int ncnln = 0;  // nonlinear constraints (E04UCA, E04USA)
    int nrowr = 0;  // rows of the objective matrix (E04NCA)
    int nsub = 0;   // subfunctions (E04USA)
};

// Machine-derived base values, computed at the start of each run from the machine precision.
struct MachineBase {
    double eps, e33, e50, e80, e90;  // EPS and EPS to the powers 0.33, 0.5, 0.8, 0.9
};
MachineBase machine_base(const double *rwsav);

// The start of a run: settles the first-call state (as the decoder line "*"), stores the machine base
// values, saves the user's blocks in their twins, replaces "not set" and out-of-range settings by
// defaults for this size, and marks that the next option call opens a new list.
void begin_run(Family family, int *lwsav, int *iwsav, double *rwsav, const ProblemSize &size);
// The " Parameters" list of the run, on the family's print unit when its print level is at least 1.
void print_parameters(Family family, const int *iwsav, const double *rwsav, const ProblemSize &size);
// The end of a run: the user's blocks back from their twins.
void end_run(Family family, int *lwsav, int *iwsav, double *rwsav);

// One option line applied to the family's blocks (what the decoders do): complaints on UNIT when LIST
// is set.  Returns the inform value, 0 or 5.
int decode_line(Family family, const char *line, int length, bool list, int unit, int *lwsav, int *iwsav,
                double *rwsav);

// The solver name of a family ("E04MFA").
const char *family_solver(Family family);

} // namespace zek::e04

#endif
