// The option tables of the six solver families: keywords, phrases, default rules and printed lists.
// The keyword tables must stay in ascending order; the look-up stops at the first entry above a word.
#include "optimisation/options_tables.h"

namespace zek::e04 {

namespace {

// ---- shorthand for the tables ------------------------------------------------------------------------

constexpr Block CG = Block::CG, LC = Block::LC, LS = Block::LS, NP = Block::NP, NL = Block::NL;

constexpr Phrase value(const char *first, const char *second, Place p, Place also = kNoPlace) {
    return Phrase{first, second, Action::Value, p, also, 0.0, nullptr};
}
constexpr Phrase infinite(const char *first, const char *second, Place p) {
    return Phrase{first, second, Action::InfiniteValue, p, kNoPlace, 0.0, nullptr};
}
constexpr Phrase constant(const char *first, const char *second, Place p, double c) {
    return Phrase{first, second, Action::Constant, p, kNoPlace, c, nullptr};
}
constexpr Phrase third(const char *first, const char *second, Place p, const WordMap *map) {
    return Phrase{first, second, Action::ThirdWord, p, kNoPlace, 0.0, map};
}
constexpr Phrase parm(const char *first, Place block_place) {
    return Phrase{first, nullptr, Action::ParmEntry, block_place, kNoPlace, 0.0, nullptr};
}
constexpr Phrase defaults() { return Phrase{"DEFAULTS", nullptr, Action::Defaults, kNoPlace, kNoPlace, 0.0, nullptr}; }

constexpr Value C(double a) { return Value{Expr::Const, a, 0.0, {}}; }
constexpr Value V(Expr e) { return Value{e, 0.0, 0.0, {}}; }
constexpr Value S(Place p) { return Value{Expr::Setting, 0.0, 0.0, p}; }
constexpr Value itns(double a, double b) { return Value{Expr::Iterations, a, b, {}}; }
constexpr Value base(int which, double times = 1.0) { return Value{Expr::Base, double(which), times, {}}; }
constexpr Value power(Place p, double e) { return Value{Expr::SettingPower, e, 0.0, p}; }
// Indices of the machine base values (EPS, EPS^0.33, ^0.5, ^0.8, ^0.9) that the rules use.
constexpr int kEps = 0, kE50 = 2, kE90 = 4;

constexpr Rule when(Place t, When w, Value v) { return Rule{t, w, {}, {}, v}; }
constexpr Rule below(Place t, Value lo, Value v) { return Rule{t, When::Below, lo, {}, v}; }
constexpr Rule above(Place t, Value hi, Value v) { return Rule{t, When::Above, {}, hi, v}; }
constexpr Rule outside(Place t, Value lo, Value hi, Value v) { return Rule{t, When::Outside, lo, hi, v}; }
constexpr Rule outside_open(Place t, Value lo, Value hi, Value v) { return Rule{t, When::OutsideOpen, lo, hi, v}; }
constexpr Rule equal(Place t, Value x, Value v) { return Rule{t, When::Equal, x, {}, v}; }
constexpr Rule special(Special s, Place t, Place p = kNoPlace, Place also = kNoPlace) {
    return Rule{t, When::Always, {}, {}, {}, s, p, also};
}

constexpr double kBig = 9.9999e19;

constexpr PrintCell T(const char *text) { return PrintCell{Cell::Text, text, {}, Words::Start, 0}; }
constexpr PrintCell Int(Value v) { return PrintCell{Cell::Int, nullptr, v, Words::Start, 0}; }
constexpr PrintCell Real(Value v) { return PrintCell{Cell::Real, nullptr, v, Words::Start, 0}; }
constexpr PrintCell Word(Words w, Place p, int width) { return PrintCell{Cell::Word, nullptr, S(p), w, width}; }
constexpr PrintRow row(PrintCell a, PrintCell b = {}, PrintCell c = {}, PrintCell d = {}, PrintCell e = {}) {
    return PrintRow{Show::Always, kNoPlace, 0, {a, b, c, d, e}};
}
constexpr PrintRow row_if(Show show, Place p, int k, PrintCell a, PrintCell b = {}, PrintCell c = {},
                          PrintCell d = {}) {
    return PrintRow{show, p, k, {a, b, c, d, {}}};
}
constexpr Value kN = V(Expr::N);
constexpr Value kNclin = V(Expr::NClin);
constexpr Value kEpsValue = base(kEps);

// ---- E04DGA ------------------------------------------------------------------------------------------

const char *const kDgaFirst[] = {
    "BEGIN", "DEBUG", "DEFAULTS", "END", "ESTIMATED", "FUNCTION", "INFINITE", "IPRMCG", "ITERATIONS",
    "ITERS:ITERATIONS", "ITNS :ITERATIONS", "LINESEARCH", "LIST", "MAXIMUM", "NOLIST", "OPTIMALITY", "PRINT",
    "RPRMCG", "START", "STOP", "VERIFY",
};
const char *const kDgaSecond[] = {
    "GRADIENTS", "LEVEL", "NO", "NO.      :NUMBER", "NUMBER", "OBJECTIVE", "START", "TOLERANCE", "YES",
};

const Phrase kDgaPhrases[] = {
    value("DEBUG", "LEVEL", I(CG, cg::kDebugLevel)),
    value("DEBUG", "START", I(CG, cg::kDebugStart)),
    defaults(),
    value("ESTIMATED", nullptr, R(CG, cg::kEstimatedOptimum)),
    value("FUNCTION", nullptr, R(CG, cg::kFunctionPrecision)),
    infinite("INFINITE", nullptr, R(CG, cg::kInfinite)),
    parm("IPRMCG", I(CG, 1)),
    value("ITERATIONS", nullptr, I(CG, cg::kIterations)),
    value("LINESEARCH", nullptr, R(CG, cg::kLinesearchTolerance)),
    value("MAXIMUM", nullptr, R(CG, cg::kMaximumStep)),
    value("OPTIMALITY", nullptr, R(CG, cg::kOptimalityTolerance)),
    value("PRINT", nullptr, I(CG, cg::kPrintLevel)),
    parm("RPRMCG", R(CG, 1)),
    value("START", nullptr, I(CG, cg::kStartObjective)),
    value("STOP", nullptr, I(CG, cg::kStopObjective)),
    constant("VERIFY", "GRADIENTS", I(CG, cg::kVerifyLevel), 1),
    constant("VERIFY", "OBJECTIVE", I(CG, cg::kVerifyLevel), 1),
    constant("VERIFY", "YES", I(CG, cg::kVerifyLevel), 1),
    constant("VERIFY", "NO", I(CG, cg::kVerifyLevel), -1),
    value("VERIFY", "LEVEL", I(CG, cg::kVerifyLevel)),
    constant("VERIFY", nullptr, I(CG, cg::kVerifyLevel), 1),
};

const Rule kDgaRules[] = {
    when(I(CG, cg::kIterations), When::Negative, itns(5, 0)),
    outside(I(CG, cg::kStopObjective), C(1), kN, kN),
    outside(I(CG, cg::kStartObjective), C(1), S(I(CG, cg::kStopObjective)), C(1)),
    outside(I(CG, cg::kVerifyLevel), C(-1), C(1), C(0)),
    when(I(CG, cg::kPrintLevel), When::NotSet, C(0)),
    special(Special::DebugLevel, I(CG, cg::kDebugLevel), I(CG, cg::kDebugStart), I(CG, cg::kIterations)),
    when(I(CG, cg::kDebugLevel), When::Negative, C(0)),
    when(I(CG, cg::kDebugStart), When::Negative, C(0)),
    when(R(CG, cg::kMaximumStep), When::NotPositive, C(kBig)),
    outside_open(R(CG, cg::kFunctionPrecision), kEpsValue, C(1), base(kE90)),
    outside_open(R(CG, cg::kLinesearchTolerance), C(0), C(1), C(0.9)),
    outside_open(R(CG, cg::kOptimalityTolerance), S(R(CG, cg::kFunctionPrecision)), C(1),
                 power(R(CG, cg::kFunctionPrecision), 0.8)),
};

const PrintRow kDgaRows[] = {
    row(T(" Variables.............."), Int(kN)),
    row(T(" Maximum step length...."), Real(S(R(CG, cg::kMaximumStep))), T("       EPS (machine precision)"),
        Real(kEpsValue)),
    row(T(" Optimality tolerance..."), Real(S(R(CG, cg::kOptimalityTolerance))), T("       Linesearch tolerance..."),
        Real(S(R(CG, cg::kLinesearchTolerance)))),
    row_if(Show::NotSet, R(CG, cg::kEstimatedOptimum), 0, T(" Est. opt. function val.      None       Function precision....."),
           Real(S(R(CG, cg::kFunctionPrecision)))),
    row_if(Show::Set, R(CG, cg::kEstimatedOptimum), 0, T(" Est. opt. function val."),
           Real(S(R(CG, cg::kEstimatedOptimum))), T("       Function precision....."),
           Real(S(R(CG, cg::kFunctionPrecision)))),
    row(T(" Verify level..........."), Int(S(I(CG, cg::kVerifyLevel)))),
    row(T(" Iteration limit........"), Int(S(I(CG, cg::kIterations))), T("       Print level............"),
        Int(S(I(CG, cg::kPrintLevel)))),
    row_if(Show::Positive, I(CG, cg::kVerifyLevel), 0, T(" Start obj chk at varble"),
           Int(S(I(CG, cg::kStartObjective))), T("       Stop obj chk at varble."), Int(S(I(CG, cg::kStopObjective)))),
    row_if(Show::Positive, I(CG, cg::kDebugStart), 0, T(" Debug level............"), Int(S(I(CG, cg::kDebugLevel))),
           T("       Debug start at itn....."), Int(S(I(CG, cg::kDebugStart)))),
};

// ---- E04MFA and E04NFA -------------------------------------------------------------------------------

const char *const kMfaFirst[] = {
    "BEGIN", "CHECK", "COLD", "CRASH", "DEFAULTS", "END", "EXPAND", "FEASIBILITY", "INFINITE", "ITERATIONS",
    "ITERS:ITERATIONS", "ITNS :ITERATIONS", "LIST", "MIN     :MINIMIZ", "MINIMIZ", "MONITORING", "NOLIST",
    "OPTIMALITY", "PRINT", "PROBLEM", "WARM",
};
const char *const kMfaSecond[] = {"BOUND", "NO", "STEP", "SUM", "TYPE", "YES"};
const char *const kMfaThird[] = {"FEASIBLE     :FP", "FP", "LINEAR       :LP", "LP"};

const WordValue kYesNo[] = {{"YES", 1}, {"NO", 0}};
const WordMap kMinimumSumMap{2, kYesNo, 2, false, 0};
const WordValue kMfaTypes[] = {{"FP", 1}, {"LP", 2}};
const WordMap kMfaTypeMap{3, kMfaTypes, 2, true, lc::kIllegalProblemType};

const Phrase kMfaPhrases[] = {
    value("CHECK", nullptr, I(LC, lc::kCheckFrequency)),
    constant("COLD", nullptr, I(LC, lc::kStart), 0),
    value("CRASH", nullptr, R(LC, lc::kCrashTolerance)),
    defaults(),
    value("EXPAND", nullptr, I(LC, lc::kExpandFrequency)),
    value("FEASIBILITY", nullptr, R(LC, lc::kFeasibilityTolerance)),
    infinite("INFINITE", "BOUND", R(LC, lc::kInfiniteBound)),
    value("INFINITE", "STEP", R(LC, lc::kInfiniteStep)),
    value("ITERATIONS", nullptr, I(LC, lc::kOptimalityItns)),
    third("MINIMIZ", "SUM", I(LC, lc::kMinimumSum), &kMinimumSumMap),
    value("MONITORING", nullptr, I(LC, lc::kMonitoringUnit)),
    value("OPTIMALITY", nullptr, R(LC, lc::kOptimalityTolerance)),
    value("PRINT", nullptr, I(LC, lc::kPrintLevel)),
    third("PROBLEM", "TYPE", I(LC, lc::kProblemType), &kMfaTypeMap),
    constant("WARM", nullptr, I(LC, lc::kStart), 1),
};

const char *const kNfaFirst[] = {
    "BEGIN", "CHECK", "COLD", "CRASH", "DEFAULTS", "END", "EXPAND", "FEASIBILITY", "HESSIAN", "INFINITE",
    "ITERATIONS", "ITERS:ITERATIONS", "ITNS :ITERATIONS", "LIST", "MAXIMUM", "MAX     :MAXIMUM", "MINIMIZ",
    "MIN     :MINIMIZ", "MONITORING", "NOLIST", "OPTIMALITY", "PRINT", "PROBLEM", "RANK", "WARM",
};
const char *const kNfaSecond[] = {"BOUND", "NO", "PHASE", "STEP", "SUM", "TOLERANCE", "TYPE", "YES"};
const char *const kNfaThird[] = {
    "FEASIBLE     :FP", "FP", "LINEAR       :LP", "LP", "QP          :QP2", "QP1", "QP2", "QP3", "QP4",
    "QUADRATIC   :QP2",
};

const WordValue kNfaTypes[] = {{"FP", 1}, {"LP", 2}, {"QP1", 3}, {"QP2", 4}, {"QP3", 5}, {"QP4", 6}};
const WordMap kNfaTypeMap{3, kNfaTypes, 6, true, lc::kIllegalProblemType};

const Phrase kNfaPhrases[] = {
    value("CHECK", nullptr, I(LC, lc::kCheckFrequency)),
    constant("COLD", nullptr, I(LC, lc::kStart), 0),
    value("CRASH", nullptr, R(LC, lc::kCrashTolerance)),
    defaults(),
    value("EXPAND", nullptr, I(LC, lc::kExpandFrequency)),
    value("FEASIBILITY", "PHASE", I(LC, lc::kFeasibilityItns)),
    value("FEASIBILITY", "TOLERANCE", R(LC, lc::kFeasibilityTolerance)),
    value("HESSIAN", nullptr, I(LC, lc::kHessianRows)),
    infinite("INFINITE", "BOUND", R(LC, lc::kInfiniteBound)),
    value("INFINITE", "STEP", R(LC, lc::kInfiniteStep)),
    value("ITERATIONS", nullptr, I(LC, lc::kOptimalityItns)),
    value("MAXIMUM", nullptr, I(LC, lc::kMaxDegrees)),
    third("MINIMIZ", "SUM", I(LC, lc::kMinimumSum), &kMinimumSumMap),
    value("MONITORING", nullptr, I(LC, lc::kMonitoringUnit)),
    value("OPTIMALITY", "PHASE", I(LC, lc::kOptimalityItns)),
    value("OPTIMALITY", "TOLERANCE", R(LC, lc::kOptimalityTolerance)),
    value("PRINT", nullptr, I(LC, lc::kPrintLevel)),
    third("PROBLEM", "TYPE", I(LC, lc::kProblemType), &kNfaTypeMap),
    value("RANK", nullptr, R(LC, lc::kRankTolerance)),
    constant("WARM", nullptr, I(LC, lc::kStart), 1),
};

// Rules shared by both LC families, in order; each family adds its own around them.
const Rule kLcHeadRules[] = {
    when(I(LC, lc::kPrintUnit), When::Negative, V(Expr::AdvisoryUnit)),
    when(I(LC, lc::kPrintLevel), When::NotSet, C(0)),
    special(Special::MonitoringUnit, I(LC, lc::kMonitoringUnit), I(LC, lc::kPrintLevel)),
    when(I(LC, lc::kFeasibilityItns), When::Negative, itns(5, 0)),
    when(I(LC, lc::kOptimalityItns), When::Negative, itns(5, 0)),
    below(I(LC, lc::kCheckFrequency), C(1), C(50)),
    below(I(LC, lc::kExpandFrequency), C(1), C(5)),
    above(I(LC, lc::kExpandFrequency), C(9999999), C(9999999)),
    outside(I(LC, lc::kStart), C(0), C(2), C(0)),
};
const Rule kMfaRules[] = {
    when(I(LC, lc::kProblemType), When::Negative, C(2)),
    outside(I(LC, lc::kMaxActive), C(0), V(Expr::MinNM), V(Expr::MinNMAtLeast1)),
    outside(I(LC, lc::kMaxDegrees), C(0), kN, kN),
    outside(I(LC, lc::kMaxFree), C(0), kN, kN),
    below(I(LC, lc::kMaxFree), S(I(LC, lc::kMaxDegrees)), S(I(LC, lc::kMaxDegrees))),
    special(Special::FreeVariablesCap, I(LC, lc::kMaxFree), kNoPlace, I(LC, lc::kMaxDegrees)),
};
const Rule kNfaRules[] = {
    when(I(LC, lc::kProblemType), When::Negative, C(4)),
    outside(I(LC, lc::kMaxActive), C(0), V(Expr::MinNM), V(Expr::MinNMAtLeast1)),
    outside(I(LC, lc::kHessianRows), C(0), kN, kN),
    special(Special::ZeroIfTypeBelow3, I(LC, lc::kHessianRows), I(LC, lc::kProblemType)),
    when(I(LC, lc::kMaxDegrees), When::Negative, S(I(LC, lc::kHessianRows))),
    equal(I(LC, lc::kMaxDegrees), C(0), C(1)),
    outside(I(LC, lc::kMaxDegrees), C(1), kN, kN),
    outside(I(LC, lc::kMaxFree), C(1), kN, kN),
    below(I(LC, lc::kMaxFree), S(I(LC, lc::kMaxDegrees)), S(I(LC, lc::kMaxDegrees))),
    special(Special::FreeVariablesCap, I(LC, lc::kMaxFree), I(LC, lc::kProblemType), I(LC, lc::kMaxDegrees)),
    when(R(LC, lc::kRankTolerance), When::NotPositive, base(kEps, 100.0)),
};
const Rule kLcTailRules[] = {
    when(I(LC, lc::kMinimumSum), When::Negative, C(0)),
    when(R(LC, lc::kInfiniteBound), When::NotPositive, C(kBig)),
    when(R(LC, lc::kInfiniteStep), When::NotPositive, Value{Expr::SettingMaxConst, kBig, 0.0, R(LC, lc::kInfiniteBound)}),
    when(R(LC, lc::kCrashTolerance), When::Negative, C(0.01)),
    when(R(LC, lc::kFeasibilityTolerance), When::NotSetOrTiny, base(kE50)),
    when(R(LC, lc::kOptimalityTolerance), When::NotSetOrTiny, base(kE50)),
};

#define LC_ROWS_HEAD                                                                                           \
    row(T(" Problem type..........."), T("   "), Word(Words::TypeLC, I(LC, lc::kProblemType), 7)),            \
        row(T(" Linear constraints....."), Int(kNclin), T("       Feasibility tolerance.."),                    \
            Real(S(R(LC, lc::kFeasibilityTolerance)))),                                                        \
        row(T(" Variables.............."), Int(kN), T("       Optimality tolerance..."),                        \
            Real(S(R(LC, lc::kOptimalityTolerance))))
#define LC_ROWS_MIDDLE                                                                                         \
    row(T(" Infinite bound size...."), Real(S(R(LC, lc::kInfiniteBound))), T("       "),                       \
        Word(Words::Start, I(LC, lc::kStart), 4), T(" start.............")),                                   \
        row(T(" Infinite step size....."), Real(S(R(LC, lc::kInfiniteStep))), T("       EPS (machine precision)"), \
            Real(kEpsValue)),                                                                                  \
        row(T(" Check frequency........"), Int(S(I(LC, lc::kCheckFrequency))), T("       Expand frequency......."), \
            Int(S(I(LC, lc::kExpandFrequency)))),                                                              \
        row(T(" Minimum sum of infeas..       "), Word(Words::YesNo, I(LC, lc::kMinimumSum), 3),                \
            T("       Crash tolerance........"), Real(S(R(LC, lc::kCrashTolerance))))

const PrintRow kMfaRows[] = {
    LC_ROWS_HEAD,
    LC_ROWS_MIDDLE,
    row(T(" Print level............"), Int(S(I(LC, lc::kPrintLevel))), T("       Iteration limit........"),
        Int(S(I(LC, lc::kOptimalityItns)))),
    row(T(" Monitoring file........"), Int(S(I(LC, lc::kMonitoringUnit)))),
};
const PrintRow kNfaRows[] = {
    LC_ROWS_HEAD,
    row(T(" Hessian rows..........."), Int(S(I(LC, lc::kHessianRows))), T("       Rank tolerance........."),
        Real(S(R(LC, lc::kRankTolerance)))),
    LC_ROWS_MIDDLE,
    row(T(" Max degrees of freedom."), Int(S(I(LC, lc::kMaxDegrees))), T("       Print level............"),
        Int(S(I(LC, lc::kPrintLevel)))),
    row(T(" Feasibility phase itns."), Int(S(I(LC, lc::kFeasibilityItns))), T("       Monitoring file........"),
        Int(S(I(LC, lc::kMonitoringUnit)))),
    row(T(" Optimality  phase itns."), Int(S(I(LC, lc::kOptimalityItns)))),
};
#undef LC_ROWS_HEAD
#undef LC_ROWS_MIDDLE

// ---- E04NCA ------------------------------------------------------------------------------------------

const char *const kNcaFirst[] = {
    "BEGIN", "COLD", "CONSTRAINTS", "CRASH", "DEFAULTS", "END", "FEASIBILITY", "HESSIAN", "INFINITE",
    "ITERATIONS", "ITERS:ITERATIONS", "ITNS :ITERATIONS", "LINEAR", "LIST", "LOWER", "MONITORING", "NOLIST",
    "OPTIMALITY", "PRINT", "PROBLEM", "RANK", "UPPER", "VARIABLES", "WARM",
};
const char *const kNcaSecond[] = {
    "BOUND", "CONSTRAINTS", "FILE", "LEVEL", "NO", "NO.      :NUMBER", "NUMBER", "PHASE", "STEP", "TOLERANCE",
    "TYPE", "YES",
};
const char *const kNcaThird[] = {
    "FP", "LEAST       :LS1", "LINEAR       :LP", "LP", "LS          :LS1", "LS1", "LS2", "LS3", "LS4",
    "LSQ         :LS1", "QP          :QP2", "QP1", "QP2", "QP3", "QP4", "QUADRATIC   :QP2",
};
const WordValue kNcaTypes[] = {{"FP", 1},  {"LP", 2},  {"QP1", 3}, {"QP2", 4}, {"QP3", 5},
                               {"QP4", 6}, {"LS1", 7}, {"LS2", 8}, {"LS3", 9}, {"LS4", 10}};
const WordMap kNcaTypeMap{3, kNcaTypes, 10, false, 0};

const Phrase kNcaPhrases[] = {
    constant("COLD", nullptr, I(LS, ls::kStart), 0),
    value("CONSTRAINTS", nullptr, I(LS, ls::kConstraints)),
    value("CRASH", nullptr, R(LS, ls::kCrashTolerance)),
    defaults(),
    value("FEASIBILITY", "PHASE", I(LS, ls::kFeasibilityItns)),
    value("FEASIBILITY", "TOLERANCE", R(LS, ls::kFeasibilityTolerance)),
    constant("HESSIAN", "YES", I(LS, ls::kHessian), 1),
    constant("HESSIAN", nullptr, I(LS, ls::kHessian), 0),
    infinite("INFINITE", "BOUND", R(LS, ls::kInfiniteBound)),
    value("INFINITE", "STEP", R(LS, ls::kInfiniteStep)),
    value("ITERATIONS", nullptr, I(LS, ls::kOptimalityItns)),
    value("LINEAR", "CONSTRAINTS", I(LS, ls::kConstraints)),
    value("LOWER", nullptr, R(LS, ls::kLowerBound)),
    value("MONITORING", nullptr, I(LS, ls::kMonitoringUnit)),
    value("OPTIMALITY", "PHASE", I(LS, ls::kOptimalityItns)),
    value("PRINT", "FILE", I(LS, ls::kPrintUnit)),
    value("PRINT", "LEVEL", I(LS, ls::kPrintLevel)),
    third("PROBLEM", "TYPE", I(LS, ls::kProblemType), &kNcaTypeMap),
    value("PROBLEM", "NUMBER", I(LS, ls::kProblemNumber)),
    value("RANK", nullptr, R(LS, ls::kRankTolerance)),
    value("UPPER", nullptr, R(LS, ls::kUpperBound)),
    value("VARIABLES", nullptr, I(LS, ls::kVariables)),
    constant("WARM", nullptr, I(LS, ls::kStart), 1),
};

const Rule kLsHeadRules[] = {
    when(I(LS, ls::kPrintUnit), When::Negative, V(Expr::AdvisoryUnit)),
    when(I(LS, ls::kPrintLevel), When::NotSet, C(0)),
};
const Rule kNcaRules[] = {
    special(Special::MonitoringUnit, I(LS, ls::kMonitoringUnit), I(LS, ls::kPrintLevel)),
    when(I(LS, ls::kFeasibilityItns), When::Negative, itns(5, 0)),
    when(I(LS, ls::kOptimalityItns), When::Negative, itns(5, 0)),
    outside(I(LS, ls::kStart), C(0), C(2), C(0)),
    outside(I(LS, ls::kHessian), C(0), C(1), C(0)),
    when(I(LS, ls::kProblemType), When::Negative, C(7)),
    when(R(LS, ls::kInfiniteBound), When::NotPositive, C(kBig)),
    when(R(LS, ls::kInfiniteStep), When::NotPositive, Value{Expr::SettingMaxConst, kBig, 0.0, R(LS, ls::kInfiniteBound)}),
    when(R(LS, ls::kCrashTolerance), When::Negative, C(0.01)),
    when(R(LS, ls::kFeasibilityTolerance), When::NotSetOrTiny, base(kE50)),
    special(Special::RankTolerance, R(LS, ls::kRankTolerance), I(LS, ls::kProblemType)),
};

const PrintRow kNcaRows[] = {
    row(T(" Problem type...........       "), Word(Words::TypeLS, I(LS, ls::kProblemType), 3),
        T("       Hessian................       "), Word(Words::YesNo, I(LS, ls::kHessian), 3)),
    row(T(" Linear constraints....."), Int(kNclin), T("       Feasibility tolerance.."),
        Real(S(R(LS, ls::kFeasibilityTolerance)))),
    row(T(" Variables.............."), Int(kN), T("       Crash tolerance........"), Real(S(R(LS, ls::kCrashTolerance)))),
    row(T(" Objective matrix rows.."), Int(V(Expr::NRowR)), T("       Rank tolerance........."),
        Real(S(R(LS, ls::kRankTolerance)))),
    row(T(" Infinite bound size...."), Real(S(R(LS, ls::kInfiniteBound))), T("       "),
        Word(Words::Start, I(LS, ls::kStart), 4), T(" start.............")),
    row(T(" Infinite step size....."), Real(S(R(LS, ls::kInfiniteStep))), T("       EPS (machine precision)"),
        Real(kEpsValue)),
    row(T(" Print level............"), Int(S(I(LS, ls::kPrintLevel))), T("       Feasibility phase itns."),
        Int(S(I(LS, ls::kFeasibilityItns)))),
    row(T(" Monitoring file........"), Int(S(I(LS, ls::kMonitoringUnit))), T("       Optimality  phase itns."),
        Int(S(I(LS, ls::kOptimalityItns)))),
};

// ---- E04UCA and E04USA -------------------------------------------------------------------------------

#define UCA_FIRST_HEAD                                                                                          \
    "BEGIN", "CENTRAL", "COLD", "CONDITION", "CONSTRAINTS", "CRASH", "DEFAULTS", "DERIVATIVE", "DIFFERENCE",      \
        "END", "FEASIBILITY", "FUNCTION", "HESSIAN", "INFINITE", "IPRMLS", "ITERATIONS", "ITERS:ITERATIONS",     \
        "ITNS :ITERATIONS"
#define UCA_FIRST_MIDDLE                                                                                        \
    "LINE", "LINEAR", "LINESEARCH:LINE", "LIST", "LOWER", "MAJOR", "MINOR", "MONITORING", "NOLIST", "NONLINEAR", \
        "OPTIMALITY", "PRINT", "PROBLEM"
#define UCA_FIRST_TAIL "ROW", "RPRMLS", "START", "STEP", "STOP"
#define UCA_FIRST_END "UPPER", "VARIABLES", "VERIFY", "WARM"

const char *const kUcaFirst[] = {UCA_FIRST_HEAD, UCA_FIRST_MIDDLE, UCA_FIRST_TAIL, UCA_FIRST_END};
const char *const kUsaFirst[] = {UCA_FIRST_HEAD, "JTJ", UCA_FIRST_MIDDLE, "RESET", UCA_FIRST_TAIL, "UNIT",
                                 UCA_FIRST_END};
#undef UCA_FIRST_HEAD
#undef UCA_FIRST_MIDDLE
#undef UCA_FIRST_TAIL
#undef UCA_FIRST_END

const char *const kUcaSecond[] = {
    "BOUND", "CONSTRAINTS", "FEASIBILITY", "GRADIENTS", "ITERATIONS", "ITERS:ITERATIONS", "ITNS :ITERATIONS",
    "JACOBIAN", "LEVEL", "NO", "NO.      :NUMBER", "NUMBER", "OBJECTIVE", "PRINT", "SEARCH", "STEP", "TOLERANCE",
    "VARIABLES", "YES",
};

#define UCA_PHRASES                                                                                             \
    value("CENTRAL", nullptr, R(NP, np::kCentralInterval)), constant("COLD", nullptr, I(LS, ls::kStart), 0),     \
        value("CONDITION", nullptr, R(NP, np::kConditionBound)),                                                \
        value("CONSTRAINTS", nullptr, I(LS, ls::kConstraints)), value("CRASH", nullptr, R(LS, ls::kCrashTolerance)), \
        defaults(), value("DERIVATIVE", nullptr, I(NP, np::kDerivativeLevel)),                                  \
        value("DIFFERENCE", nullptr, R(NP, np::kDifferenceInterval)),                                           \
        value("FEASIBILITY", nullptr, R(LS, ls::kFeasibilityTolerance), R(NP, np::kNonlinearFeasibility)),      \
        value("FUNCTION", nullptr, R(NP, np::kFunctionPrecision)),                                              \
        constant("HESSIAN", "YES", I(LS, ls::kHessian), 1), constant("HESSIAN", nullptr, I(LS, ls::kHessian), 0), \
        infinite("INFINITE", "BOUND", R(LS, ls::kInfiniteBound)),                                               \
        value("INFINITE", "STEP", R(LS, ls::kInfiniteStep)), parm("IPRMLS", I(LS, 1)),                          \
        value("ITERATIONS", nullptr, I(NP, np::kMajorIterations)),                                              \
        value("LINE", nullptr, R(NP, np::kLinesearchTolerance)),                                                \
        value("LINEAR", "CONSTRAINTS", I(LS, ls::kConstraints)),                                                \
        value("LINEAR", "FEASIBILITY", R(LS, ls::kFeasibilityTolerance)),                                       \
        value("LOWER", nullptr, R(LS, ls::kLowerBound)),                                                        \
        value("MAJOR", "ITERATIONS", I(NP, np::kMajorIterations)),                                              \
        value("MAJOR", "PRINT", I(NP, np::kMajorPrintLevel)),                                                   \
        value("MINOR", "ITERATIONS", I(LS, ls::kOptimalityItns)), value("MINOR", "PRINT", I(LS, ls::kPrintLevel)), \
        value("MONITORING", nullptr, I(LS, ls::kMonitoringUnit)),                                               \
        value("NONLINEAR", "OBJECTIVE", I(NP, np::kNonlinearObjective)),                                        \
        value("NONLINEAR", "JACOBIAN", I(NP, np::kNonlinearJacobian)),                                          \
        value("NONLINEAR", "VARIABLES", I(NP, np::kNonlinearVariables)),                                        \
        value("NONLINEAR", "CONSTRAINTS", I(NP, np::kNonlinearConstraints)),                                    \
        value("NONLINEAR", "FEASIBILITY", R(NP, np::kNonlinearFeasibility)),                                    \
        value("OPTIMALITY", nullptr, R(NP, np::kOptimalityTolerance)),                                          \
        value("PRINT", nullptr, I(NP, np::kMajorPrintLevel)),                                                   \
        value("PROBLEM", "NUMBER", I(LS, ls::kProblemNumber)),                                                  \
        value("ROW", nullptr, R(NP, np::kNonlinearFeasibility)), parm("RPRMLS", R(LS, 1)),                      \
        value("START", "OBJECTIVE", I(NP, np::kStartObjective)),                                                \
        value("START", "CONSTRAINTS", I(NP, np::kStartConstraints)),                                            \
        value("STEP", nullptr, R(NP, np::kStepLimit)), value("STOP", "OBJECTIVE", I(NP, np::kStopObjective)),   \
        value("STOP", "CONSTRAINTS", I(NP, np::kStopConstraints)), value("UPPER", nullptr, R(LS, ls::kUpperBound)), \
        value("VARIABLES", nullptr, I(LS, ls::kVariables)),                                                     \
        constant("VERIFY", "OBJECTIVE", I(NP, np::kVerifyLevel), 1),                                            \
        constant("VERIFY", "CONSTRAINTS", I(NP, np::kVerifyLevel), 2),                                          \
        constant("VERIFY", "NO", I(NP, np::kVerifyLevel), -1),                                                  \
        constant("VERIFY", "YES", I(NP, np::kVerifyLevel), 3),                                                  \
        constant("VERIFY", "GRADIENTS", I(NP, np::kVerifyLevel), 3),                                            \
        value("VERIFY", "LEVEL", I(NP, np::kVerifyLevel)), constant("VERIFY", nullptr, I(NP, np::kVerifyLevel), 3), \
        constant("WARM", nullptr, I(LS, ls::kStart), 1)

const Phrase kUcaPhrases[] = {UCA_PHRASES};
const Phrase kUsaPhrases[] = {
    UCA_PHRASES,
    constant("JTJ", nullptr, I(NL, nl::kInitialHessian), 0),
    value("RESET", nullptr, I(NL, nl::kResetFrequency)),
    constant("UNIT", nullptr, I(NL, nl::kInitialHessian), 1),
};
#undef UCA_PHRASES

const Rule kUcaRules[] = {
    when(I(NP, np::kMajorPrintLevel), When::NotSet, C(0)),
    special(Special::MonitoringUnit, I(LS, ls::kMonitoringUnit), I(LS, ls::kPrintLevel), I(NP, np::kMajorPrintLevel)),
    when(I(LS, ls::kFeasibilityItns), When::Always, itns(3, 3)),
    below(I(LS, ls::kOptimalityItns), C(1), itns(3, 3)),
    outside(I(LS, ls::kStart), C(0), C(2), C(0)),
    outside(I(LS, ls::kHessian), C(0), C(1), C(0)),
    when(I(LS, ls::kProblemType), When::Negative, C(7)),
    when(R(LS, ls::kInfiniteBound), When::NotPositive, C(kBig)),
    when(R(LS, ls::kInfiniteStep), When::NotPositive, Value{Expr::SettingMaxConst, kBig, 0.0, R(LS, ls::kInfiniteBound)}),
    outside_open(R(LS, ls::kCrashTolerance), C(0), C(1), C(0.01)),
    outside_open(R(LS, ls::kFeasibilityTolerance), kEpsValue, C(1), base(kE50)),
    special(Special::RankTolerance, R(LS, ls::kRankTolerance), I(LS, ls::kProblemType)),
    // The outer settings.
    when(I(NP, np::kMajorIterations), When::Negative, itns(3, 10)),
    outside(I(NP, np::kStopObjective), C(1), kN, kN),
    outside(I(NP, np::kStartObjective), C(1), S(I(NP, np::kStopObjective)), C(1)),
    outside(I(NP, np::kStopConstraints), C(1), kN, kN),
    outside(I(NP, np::kStartConstraints), C(1), S(I(NP, np::kStopConstraints)), C(1)),
    outside(I(NP, np::kDerivativeLevel), C(0), C(3), C(3)),
    special(Special::VerifyLevel, I(NP, np::kVerifyLevel)),
    when(I(NP, np::kNonlinearObjective), When::Always, kN),
    when(I(NP, np::kNonlinearJacobian), When::Always, kN),
    when(I(NP, np::kNonlinearVariables), When::Always, kN),
    outside_open(R(NP, np::kFunctionPrecision), kEpsValue, C(1), base(kE90)),
    special(Special::NonlinearFeasibility, R(NP, np::kNonlinearFeasibility), I(NP, np::kDerivativeLevel)),
    when(R(NP, np::kStepLimit), When::NotPositive, C(2.0)),
    outside_open(R(NP, np::kLinesearchTolerance), C(0), C(1), C(0.9)),
    special(Special::DifferenceMode, I(NP, np::kDifferenceMode), R(NP, np::kDifferenceInterval),
            R(NP, np::kCentralInterval)),
    outside_open(R(NP, np::kOptimalityTolerance), S(R(NP, np::kFunctionPrecision)), C(1),
                 power(R(NP, np::kFunctionPrecision), 0.8)),
    below(R(NP, np::kConditionBound), C(1), V(Expr::ConditionBound)),
};
const Rule kUsaRules[] = {
    when(I(NL, nl::kInitialHessian), When::Negative, C(0)),
    when(I(NL, nl::kResetFrequency), When::NotPositive, C(2)),
};

#define UCA_ROWS_HEAD                                                                                          \
    row(T(" Linear constraints....."), Int(kNclin), T("       Variables.............."), Int(kN))
#define UCA_ROWS_BODY                                                                                          \
    row(T(" Infinite bound size...."), Real(S(R(LS, ls::kInfiniteBound))), T("       "),                       \
        Word(Words::Start, I(LS, ls::kStart), 4), T(" start.............")),                                   \
        row(T(" Infinite step size....."), Real(S(R(LS, ls::kInfiniteStep))), T("       EPS (machine precision)"), \
            Real(kEpsValue)),                                                                                  \
        row(T(" Step limit............."), Real(S(R(NP, np::kStepLimit))), T("       Hessian................       "), \
            Word(Words::YesNo, I(LS, ls::kHessian), 3)),                                                       \
        row(T(" Linear feasibility....."), Real(S(R(LS, ls::kFeasibilityTolerance))),                          \
            T("       Crash tolerance........"), Real(S(R(LS, ls::kCrashTolerance)))),                         \
        row(T(" Nonlinear feasibility.."), Real(S(R(NP, np::kNonlinearFeasibility))),                          \
            T("       Optimality tolerance..."), Real(S(R(NP, np::kOptimalityTolerance)))),                    \
        row(T(" Line search tolerance.."), Real(S(R(NP, np::kLinesearchTolerance))),                           \
            T("       Function precision....."), Real(S(R(NP, np::kFunctionPrecision)))),                      \
        row(T(" Derivative level......."), Int(S(I(NP, np::kDerivativeLevel))), T("       Monitoring file........"), \
            Int(S(I(LS, ls::kMonitoringUnit)))),                                                               \
        row(T(" Verify level..........."), Int(S(I(NP, np::kVerifyLevel)))),                                  \
        row(T(" Start obj chk at varble"), Int(S(I(NP, np::kStartObjective))), T("       Stop obj chk at varble."), \
            Int(S(I(NP, np::kStopObjective)))),                                                                \
        row(T(" Start con chk at varble"), Int(S(I(NP, np::kStartConstraints))),                               \
            T("       Stop con chk at varble."), Int(S(I(NP, np::kStopConstraints)))),                         \
        row(T(" Major iterations limit."), Int(S(I(NP, np::kMajorIterations))), T("       Major print level......"), \
            Int(S(I(NP, np::kMajorPrintLevel)))),                                                              \
        row(T(" Minor iterations limit."), Int(S(I(LS, ls::kOptimalityItns))), T("       Minor print level......"), \
            Int(S(I(LS, ls::kPrintLevel)))),                                                                   \
        row_if(Show::Equal, I(NP, np::kDifferenceMode), 0, T(" Difference intervals to be computed.")),         \
        row_if(Show::Equal, I(NP, np::kDifferenceMode), 1, T(" Difference interval...."),                       \
               Real(S(R(NP, np::kDifferenceInterval))), T("       Central diffce interval"),                   \
               Real(S(R(NP, np::kCentralInterval)))),                                                          \
        row_if(Show::Equal, I(NP, np::kDifferenceMode), 2, T(" User-supplied difference intervals."))

const PrintRow kUcaRows[] = {
    UCA_ROWS_HEAD,
    row(T(" Nonlinear constraints.."), Int(V(Expr::NCnln))),
    UCA_ROWS_BODY,
};
const PrintRow kUsaRows[] = {
    UCA_ROWS_HEAD,
    row(T(" Nonlinear constraints.."), Int(V(Expr::NCnln)), T("       Subfunctions..........."), Int(V(Expr::NSub))),
    UCA_ROWS_BODY,
    row_if(Show::Equal, I(NL, nl::kInitialHessian), 0, T(" J'J initial Hessian....                 Reset frequency........"),
           Int(S(I(NL, nl::kResetFrequency)))),
    row_if(Show::Equal, I(NL, nl::kInitialHessian), 1, T(" Unit initial Hessian...                 Reset frequency........"),
           Int(S(I(NL, nl::kResetFrequency)))),
};
#undef UCA_ROWS_HEAD
#undef UCA_ROWS_BODY

// ---- the families ------------------------------------------------------------------------------------

template <class T, int N> constexpr Span<T> span(const T (&a)[N]) { return Span<T>{a, N}; }
template <int N> constexpr KeywordTable keywords(const char *const (&a)[N]) { return KeywordTable{a, N}; }
constexpr KeywordTable kNoKeywords{nullptr, 0};

const Block kCgBlocks[] = {Block::CG};
const Block kLcBlocks[] = {Block::LC};
const Block kLsBlocks[] = {Block::LS};
const Block kNpBlocks[] = {Block::LS, Block::NP};
const Block kNlBlocks[] = {Block::LS, Block::NP, Block::NL};

const Span<Rule> kDgaRuleSets[] = {span(kDgaRules)};
const Span<Rule> kMfaRuleSets[] = {span(kLcHeadRules), span(kMfaRules), span(kLcTailRules)};
const Span<Rule> kNfaRuleSets[] = {span(kLcHeadRules), span(kNfaRules), span(kLcTailRules)};
const Span<Rule> kNcaRuleSets[] = {span(kLsHeadRules), span(kNcaRules)};
const Span<Rule> kUcaRuleSets[] = {span(kLsHeadRules), span(kUcaRules)};
const Span<Rule> kUsaRuleSets[] = {span(kLsHeadRules), span(kUcaRules), span(kUsaRules)};

const FamilyTables kFamilies[kFamilyCount] = {
    {Family::DGA, "E04DGA", " Calls to E04DKF", " *** E04DGA", true, span(kCgBlocks), keywords(kDgaFirst),
     keywords(kDgaSecond), kNoKeywords, span(kDgaPhrases), span(kDgaRuleSets), span(kDgaRows),
     I(CG, cg::kPrintLevel), kNoPlace},
    {Family::MFA, "E04MFA", " Calls to E04MHF", " *** E04MFA", false, span(kLcBlocks), keywords(kMfaFirst),
     keywords(kMfaSecond), keywords(kMfaThird), span(kMfaPhrases), span(kMfaRuleSets), span(kMfaRows),
     I(LC, lc::kPrintLevel), I(LC, lc::kPrintUnit)},
    {Family::NCA, "E04NCA", " Calls to E04NEF", " *** E04NCF", false, span(kLsBlocks), keywords(kNcaFirst),
     keywords(kNcaSecond), keywords(kNcaThird), span(kNcaPhrases), span(kNcaRuleSets), span(kNcaRows),
     I(LS, ls::kPrintLevel), I(LS, ls::kPrintUnit)},
    {Family::NFA, "E04NFA", " Calls to E04NHF", " *** E04NFA", false, span(kLcBlocks), keywords(kNfaFirst),
     keywords(kNfaSecond), keywords(kNfaThird), span(kNfaPhrases), span(kNfaRuleSets), span(kNfaRows),
     I(LC, lc::kPrintLevel), I(LC, lc::kPrintUnit)},
    {Family::UCA, "E04UCA", " Calls to E04UEF", " *** E04UCA", false, span(kNpBlocks), keywords(kUcaFirst),
     keywords(kUcaSecond), kNoKeywords, span(kUcaPhrases), span(kUcaRuleSets), span(kUcaRows),
     I(NP, np::kMajorPrintLevel), I(LS, ls::kPrintUnit)},
    {Family::USA, "E04USA", " Calls to E04URF", " *** E04USA", false, span(kNlBlocks), keywords(kUsaFirst),
     keywords(kUcaSecond), kNoKeywords, span(kUsaPhrases), span(kUsaRuleSets), span(kUsaRows),
     I(NP, np::kMajorPrintLevel), I(LS, ls::kPrintUnit)},
};

} // namespace

const FamilyTables &family_tables(Family family) { return kFamilies[static_cast<int>(family)]; }

} // namespace zek::e04
