// The tables behind the E04 option machinery.  Each solver family is described by data only: its three
// keyword tables, the phrases that store a setting, the rules that settle a run's defaults and the rows
// of its " Parameters" list.  The decoder, the defaulting step and the printer are shared and read
// nothing else, so a new solver adds a FamilyTables, not code.
#ifndef ZEK_OPTIMISATION_OPTIONS_TABLES_H
#define ZEK_OPTIMISATION_OPTIONS_TABLES_H

#include <string>

#include "optimisation/options.h"

namespace zek::e04 {

// ---- keywords ----------------------------------------------------------------------------------------

constexpr int kLineLength = 72;  // characters of an option line that count
constexpr int kMaxTokens = 10;
constexpr int kTokenLength = 16;
constexpr int kKeywordWidth = 16;

// A line cut into tokens: kMaxTokens slots of kTokenLength characters, upper case, blank padded.
struct Tokens {
    char slot[kMaxTokens][kTokenLength];
    int count = 0;
    std::string word(int i) const;  // token i (zero-based) without its padding
};
Tokens tokenise(const char *line, int length);
bool is_number(const char *token, int length);
// E04_KEY_LOOKUP on a table of `count` entries of `width` characters (word of word_width characters).
int key_lookup(int count, const char *table, bool ordered, char *word, int width, int word_width);

// A keyword table: entries in ascending order, padded to kKeywordWidth characters.
struct KeywordTable {
    const char *const *entries;
    int count;
    std::string packed() const;  // the entries as one run of 16-character fields
};

// ---- phrases -----------------------------------------------------------------------------------------

struct Place {
    Block block = Block::CG;
    bool real = false;
    int index = 0;  // one-based; 0 for no place
};
constexpr Place I(Block b, int k) { return Place{b, false, k}; }
constexpr Place R(Block b, int k) { return Place{b, true, k}; }
constexpr Place kNoPlace{};

enum class Action : unsigned char {
    Value,          // the line's value
    InfiniteValue,  // the line's value times kInfiniteBoundFactor
    Constant,       // the phrase's constant
    ThirdWord,      // the third word, through the phrase's word map
    ParmEntry,      // "IPRMxx k v": v into place k of the phrase's block (integer or real as its place)
    Defaults,       // every setting of the family back to "not set"
};

struct WordValue {
    const char *word;
    int value;
};
struct WordMap {
    int table;  // 2 or 3: the keyword table the third word is looked up in
    const WordValue *words;
    int count;
    bool store_unknown;  // an unknown word still stores unknown_value (and is reported)
    int unknown_value;
};

struct Phrase {
    const char *first;   // keyword of the first table
    const char *second;  // keyword of the second table, or null for any second word
    Action action;
    Place place;
    Place also;  // a second place set by the same phrase
    double constant;
    const WordMap *map;
};

// ---- defaults ----------------------------------------------------------------------------------------

// A value in a rule or on a printed row.
enum class Expr : unsigned char {
    Const,        // a
    N,            // variables
    NClin,        // general linear constraints
    NCnln,        // nonlinear constraints
    NRowR,        // rows of the objective matrix
    NSub,         // subfunctions
    MinNM,        // min(n, nclin)
    MinNMAtLeast1,
    Iterations,   // max(50, a*(n+nclin) + b*ncnln)
    Setting,      // a place of the blocks
    SettingPlusOne,
    SettingPower, // place ** a
    SettingMaxConst,  // max(place, a)
    Base,         // machine base value a (0 EPS, 1 E33, 2 E50, 3 E80, 4 E90) times b
    ConditionBound,   // max(1e6, 1/(100*EPS*n))
    AdvisoryUnit,
};
struct Value {
    Expr kind = Expr::Const;
    double a = 0.0;
    double b = 0.0;
    Place place{};
};

enum class When : unsigned char {
    Always,
    NotSet,          // the sentinel
    Negative,        // below 0 (the sentinel included)
    NotPositive,
    Below,           // below lo
    Above,           // above hi
    Outside,         // outside [lo, hi]
    OutsideOpen,     // outside [lo, hi)
    Equal,           // equal to lo
    NotSetOrTiny,    // the sentinel, or strictly between 0 and EPS
};

// Rules that tie several places together.
enum class Special : unsigned char {
    None,
    MonitoringUnit,       // target -1 when negative or no print level (place, also) reaches 5
    ZeroIfTypeBelow3,     // target 0 when the problem type (place) is below 3
    FreeVariablesCap,     // target and also := nclin+1 when nclin < n (and type place below 3, if given)
    VerifyLevel,          // target 0 when below -1, above 13, or from 4 to 9
    DebugLevel,           // target := iterations (also) + 1 when debug start (place) is not positive
    RankTolerance,        // 100*EPS for types (place) 5, 7, 9 when not positive; then 10*E50
    NonlinearFeasibility, // E50 (derivative level place >= 2) or E33 when below EPS or at or above 1
    DifferenceMode,       // the difference mode from the interval (place) into target; central (also)
};

struct Rule {
    Place target;
    When when;
    Value lo;
    Value hi;
    Value value;
    Special special = Special::None;
    Place place{};
    Place also{};
};

// ---- the printed list --------------------------------------------------------------------------------

enum class Cell : unsigned char {
    End,
    Text,   // literal text
    Int,    // "%10ld"
    Real,   // "%10.2E"
    Word,   // a word of `width` characters picked by the setting
};
enum class Words : unsigned char {
    Start,          // "COLD", "WARM", "HOT "
    YesNo,          // "YES" when positive, else "NO "
    TypeLC,         // 7 characters of "     FP     LP    QP1 ..." or "ILLEGAL"
    TypeLS,         // 3 characters of " FP LPQP1...LS4" or "ILLEGAL"
};
struct PrintCell {
    Cell kind = Cell::End;
    const char *text = nullptr;
    Value value{};
    Words words = Words::Start;
    int width = 0;
};
enum class Show : unsigned char { Always, Positive, NotSet, Set, Equal };
struct PrintRow {
    Show show;
    Place place;  // the setting the condition reads
    int equal;    // the value Show::Equal asks for
    PrintCell cells[5];
};

// ---- a family ----------------------------------------------------------------------------------------

template <class T> struct Span {
    const T *data;
    int count;
    const T *begin() const { return data; }
    const T *end() const { return data + count; }
};

struct FamilyTables {
    Family family;
    const char *solver;        // "E04MFA"
    const char *calls_header;  // " Calls to E04MHF"
    const char *title;         // " *** E04MFA"
    bool own_messages;         // E04DGA's wording of the complaints
    Span<Block> blocks;
    KeywordTable first, second, third;
    Span<Phrase> phrases;
    Span<Span<Rule>> rules;    // applied in order
    Span<PrintRow> rows;
    Place print_level;
    Place print_unit;          // index 0: the advisory unit
};

const FamilyTables &family_tables(Family family);

} // namespace zek::e04

#endif
