// The shared engine of the option machinery: one decoder, one defaulting step and one printer, all
// driven by the family tables.
#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <cstdio>
#include <cstring>

#include "frame/machine.h"
#include "frame/output.h"
#include "optimisation/options_tables.h"

namespace zek::e04 {

namespace {

// A number beyond the range of reals (1e999) is read as the largest real of its sign, so that no
// setting is ever infinite.
double in_range(double v) { return std::isinf(v) ? std::copysign(std::numeric_limits<double>::max(), v) : v; }


int to_int(double x) {
    if (std::isnan(x)) return 0;
    if (x >= static_cast<double>(INT_MAX)) return INT_MAX;
    if (x <= static_cast<double>(INT_MIN)) return INT_MIN;
    return static_cast<int>(x);  // truncation towards zero
}

int to_int(long x) { return static_cast<int>(std::clamp<long>(x, INT_MIN, INT_MAX)); }

double read(const int *iwsav, const double *rwsav, Place p) {
    return p.real ? real_setting(rwsav, p.block, p.index) : static_cast<double>(setting(iwsav, p.block, p.index));
}

void write(int *iwsav, double *rwsav, Place p, double x) {
    if (p.index < 1 || p.index > kBlockSize) return;
    if (p.real) real_setting(rwsav, p.block, p.index) = x;
    else setting(iwsav, p.block, p.index) = to_int(x);
}

void say(int unit, const std::string &text) { host_line(unit, text.c_str(), static_cast<int>(text.size())); }

// The printable part of a line: its first 72 characters without trailing blanks.
std::string shown(const char *line) {
    int n = kLineLength;
    while (n > 0 && line[n - 1] == ' ') --n;
    return std::string(line, static_cast<std::size_t>(n));
}

// Keywords are told apart by their first 12 characters, as the decoders always have.
bool same(const char *keyword, const std::string &padded) {
    if (keyword == nullptr) return false;
    std::string word = padded.substr(0, 12);
    while (!word.empty() && word.back() == ' ') word.pop_back();
    return word == std::string(keyword).substr(0, 12);
}

enum class Complaint { Keyword, Second, Third, Ambiguous };

void complain(const FamilyTables &t, Complaint c, bool list, int unit, const std::string &text) {
    if (!list) return;
    switch (c) {
    case Complaint::Keyword:
        say(unit, t.own_messages ? format(" XXX  Keyword not recognized:            %s", text.c_str())
                                 : format(" XXX  Keyword not recognized:         %s", text.c_str()));
        break;
    case Complaint::Second:
        say(unit, t.own_messages ? format(" XXX  Second keyword not recognized:     %s", text.c_str())
                                 : format(" XXX  Second keyword not recognized:  %s", text.c_str()));
        break;
    case Complaint::Third: say(unit, format(" XXX  Third  keyword not recognized:  %s", text.c_str())); break;
    case Complaint::Ambiguous: say(unit, format(" XXX  Ambiguous keyword:              %s", text.c_str())); break;
    }
}

// The token as a C string of at most 16 characters.
void token_text(const Tokens &tk, int i, char out[kTokenLength + 1]) {
    std::memcpy(out, tk.slot[i], kTokenLength);
    out[kTokenLength] = '\0';
}

int lookup(const KeywordTable &table, char word[kTokenLength]) {
    const std::string packed = table.packed();
    return key_lookup(table.count, packed.data(), true, word, kKeywordWidth, kTokenLength);
}

void fill_not_set(const FamilyTables &t, int *iwsav, double *rwsav) {
    for (Block b : t.blocks) {
        std::fill_n(block_int(iwsav, b), kBlockSize, kNotSetInt);
        std::fill_n(block_real(rwsav, b), kBlockSize, kNotSetReal);
    }
}

// ---- defaults ----------------------------------------------------------------------------------------

struct Context {
    int *iwsav;
    double *rwsav;
    const ProblemSize &size;
    MachineBase base;
};

double evaluate(const Value &v, const Context &c) {
    const double n = c.size.n, m = c.size.nclin;
    switch (v.kind) {
    case Expr::Const: return v.a;
    case Expr::N: return n;
    case Expr::NClin: return m;
    case Expr::NCnln: return c.size.ncnln;
    case Expr::NRowR: return c.size.nrowr;
    case Expr::NSub: return c.size.nsub;
    case Expr::MinNM: return std::min(n, m);
    case Expr::MinNMAtLeast1: return std::max(1.0, std::min(n, m));
    case Expr::Iterations: return std::max(50.0, v.a * (n + m) + v.b * c.size.ncnln);
    case Expr::Setting: return read(c.iwsav, c.rwsav, v.place);
    case Expr::SettingPlusOne: return read(c.iwsav, c.rwsav, v.place) + 1.0;
    case Expr::SettingPower: return std::pow(read(c.iwsav, c.rwsav, v.place), v.a);
    case Expr::SettingMaxConst: return std::max(read(c.iwsav, c.rwsav, v.place), v.a);
    case Expr::Base: {
        const double values[5] = {c.base.eps, c.base.e33, c.base.e50, c.base.e80, c.base.e90};
        return values[std::clamp(static_cast<int>(v.a), 0, 4)] * v.b;
    }
    case Expr::ConditionBound: return std::max(1.0e6, 1.0 / (100.0 * c.base.eps * std::max(n, 1.0)));
    case Expr::AdvisoryUnit: return advisory_unit();
    }
    return 0.0;
}

bool holds(const Rule &r, double x, const Context &c) {
    // A setting that is not a number is replaced whatever the rule's range.
    if (std::isnan(x)) return true;
    switch (r.when) {
    case When::Always: return true;
    case When::NotSet: return x == (r.target.real ? kNotSetReal : kNotSetInt);
    case When::Negative: return x < 0.0;
    case When::NotPositive: return x <= 0.0;
    case When::Below: return x < evaluate(r.lo, c);
    case When::Above: return x > evaluate(r.hi, c);
    case When::Outside: return x < evaluate(r.lo, c) || x > evaluate(r.hi, c);
    case When::OutsideOpen: return x < evaluate(r.lo, c) || x >= evaluate(r.hi, c);
    case When::Equal: return x == evaluate(r.lo, c);
    case When::NotSetOrTiny: return x == kNotSetReal || (x > 0.0 && x < c.base.eps);
    }
    return false;
}

void apply_special(const Rule &r, const Context &c) {
    const double x = read(c.iwsav, c.rwsav, r.target);
    auto get = [&](Place p) { return read(c.iwsav, c.rwsav, p); };
    auto set = [&](Place p, double v) { write(c.iwsav, c.rwsav, p, v); };
    switch (r.special) {
    case Special::None: break;
    case Special::MonitoringUnit: {
        double level = get(r.place);
        if (r.also.index > 0) level = std::max(level, get(r.also));
        if (x < 0.0 || level < 5.0) set(r.target, -1);
        break;
    }
    case Special::ZeroIfTypeBelow3:
        if (get(r.place) < 3.0) set(r.target, 0);
        break;
    case Special::FreeVariablesCap:
        if (c.size.nclin < c.size.n && (r.place.index == 0 || get(r.place) < 3.0)) {
            set(r.target, c.size.nclin + 1.0);
            set(r.also, c.size.nclin + 1.0);
        }
        break;
    case Special::VerifyLevel:
        if (x < -1.0 || x > 13.0 || (x >= 4.0 && x <= 9.0)) set(r.target, 0);
        break;
    case Special::DebugLevel:
        if (get(r.place) <= 0.0) set(r.target, get(r.also) + 1.0);
        break;
    case Special::RankTolerance: {
        const double type = get(r.place);
        if ((type == 5.0 || type == 7.0 || type == 9.0) && !(x > 0.0)) set(r.target, 100.0 * c.base.eps);
        if (!(get(r.target) > 0.0)) set(r.target, 10.0 * c.base.e50);
        break;
    }
    case Special::NonlinearFeasibility:
        if (!(x >= c.base.eps && x < 1.0)) set(r.target, get(r.place) >= 2.0 ? c.base.e50 : c.base.e33);
        break;
    case Special::DifferenceMode: {
        const double interval = get(r.place);
        int mode = 0;
        if (interval == kNotSetReal || !(interval < 1.0)) mode = 0;
        else if (interval < 0.0) mode = 2;
        else if (interval >= c.base.eps) mode = 1;
        set(r.target, mode);
        if (mode == 1) {
            const double central = get(r.also);
            if (!(central >= c.base.eps && central < 1.0))
                set(r.also, std::pow(real_setting(c.rwsav, Block::NP, np::kFunctionPrecision), 0.33));
        }
        break;
    }
    }
}

void apply_defaults(const FamilyTables &t, const Context &c) {
    for (const Span<Rule> &set : t.rules) {
        for (const Rule &r : set) {
            if (r.special != Special::None) {
                apply_special(r, c);
                continue;
            }
            const double x = read(c.iwsav, c.rwsav, r.target);
            if (holds(r, x, c)) write(c.iwsav, c.rwsav, r.target, evaluate(r.value, c));
        }
    }
}

// ---- the printed list --------------------------------------------------------------------------------

std::string word_of(Words w, int k) {
    switch (w) {
    case Words::Start: return k == 1 ? "WARM" : k == 2 ? "HOT " : "COLD";
    case Words::YesNo: return k > 0 ? "YES" : "NO ";
    case Words::TypeLC: {
        static const char packed[] = "     FP     LP    QP1    QP2    QP3    QP4";
        if (k >= 1 && k <= 6) return std::string(packed + 7 * (k - 1), 7);
        return "ILLEGAL";
    }
    case Words::TypeLS: {
        static const char packed[] = " FP LPQP1QP2QP3QP4LS1LS2LS3LS4";
        if (k >= 1 && k <= 10) return std::string(packed + 3 * (k - 1), 3);
        return "ILLEGAL";
    }
    }
    return std::string();
}

bool shown_row(const PrintRow &row, const Context &c) {
    if (row.show == Show::Always) return true;
    const double x = read(c.iwsav, c.rwsav, row.place);
    switch (row.show) {
    case Show::Always: return true;
    case Show::Positive: return x > 0.0;
    case Show::NotSet: return x == (row.place.real ? kNotSetReal : kNotSetInt);
    case Show::Set: return x != (row.place.real ? kNotSetReal : kNotSetInt);
    case Show::Equal: return x == row.equal;
    }
    return false;
}

std::string print_row(const PrintRow &row, const Context &c) {
    std::string out;
    for (const PrintCell &cell : row.cells) {
        switch (cell.kind) {
        case Cell::End: return out;
        case Cell::Text: out += cell.text; break;
        case Cell::Int: out += format("%10ld", static_cast<long>(to_int(evaluate(cell.value, c)))); break;
        case Cell::Real: out += format("%10.2E", evaluate(cell.value, c)); break;
        case Cell::Word:
            out += format("%*.*s", cell.width, cell.width,
                          word_of(cell.words, to_int(evaluate(cell.value, c))).c_str());
            break;
        }
    }
    return out;
}

} // namespace

const char *family_solver(Family family) { return family_tables(family).solver; }

MachineBase machine_base(const double *rwsav) {
    const double *b = rwsav + kMachineBase;
    return MachineBase{b[0], b[1], b[2], b[3], b[4]};
}

int decode_line(Family family, const char *line, int length, bool list, int unit, int *lwsav, int *iwsav,
                double *rwsav) {
    const FamilyTables &t = family_tables(family);
    int &unset = flag(lwsav, family, Flag::OptionsUnset);
    if (unset != 0) {
        fill_not_set(t, iwsav, rwsav);
        unset = 0;
    }

    char buffer[kLineLength + 1];
    std::memset(buffer, ' ', kLineLength);
    buffer[kLineLength] = '\0';
    const std::string given = fixed_string(line, length);
    std::memcpy(buffer, given.data(), std::min<std::size_t>(given.size(), kLineLength));
    const Tokens tk = tokenise(buffer, kLineLength);

    const std::string first = tk.word(0);
    if (first.empty() || first == "BEGIN" || first == "LIST" || first == "NOLIST" || first == "END") return 0;

    char key1[kTokenLength], key2[kTokenLength];
    std::memcpy(key1, tk.slot[0], kTokenLength);
    std::memcpy(key2, tk.slot[1], kTokenLength);
    const int r1 = lookup(t.first, key1);
    if (r1 < 0) {
        complain(t, Complaint::Ambiguous, list, unit, first);
        return 5;
    }
    if (r1 == 0) {
        complain(t, Complaint::Keyword, list, unit, shown(buffer));
        return 5;
    }
    const int r2 = lookup(t.second, key2);
    if (r2 < 0) {
        complain(t, Complaint::Ambiguous, list, unit, tk.word(1));
        return 5;
    }
    const std::string keyword(key1, kTokenLength);
    const std::string second = r2 > 0 ? std::string(key2, kTokenLength) : std::string();
    if (same("BEGIN", keyword) || same("END", keyword) || same("LIST", keyword) || same("NOLIST", keyword)) return 0;

    // The value: the first token after the keyword that reads as a number.
    double value = 0.0;
    for (int i = 1; i < tk.count; ++i) {
        if (!is_number(tk.slot[i], kTokenLength)) continue;
        char text[kTokenLength + 1], field[kTokenLength + 1];
        token_text(tk, i, text);
        int used = 0;
        if (std::sscanf(text, "%16[^\n]%n", field, &used) == 1) std::sscanf(field, "%16le", &value);
        value = in_range(value);
        break;
    }

    const Phrase *match = nullptr;
    const Phrase *any_second = nullptr;
    bool known = false;
    for (const Phrase &p : t.phrases) {
        if (!same(p.first, keyword)) continue;
        known = true;
        if (p.second == nullptr) any_second = &p;
        else if (!second.empty() && same(p.second, second)) match = &p;
    }
    if (!known) {
        complain(t, Complaint::Keyword, list, unit, shown(buffer));
        return 5;
    }
    const Phrase *phrase = match != nullptr ? match : any_second;
    if (phrase == nullptr) {
        complain(t, Complaint::Second, list, unit, shown(buffer));
        return 5;
    }

    switch (phrase->action) {
    case Action::Value:
        write(iwsav, rwsav, phrase->place, value);
        write(iwsav, rwsav, phrase->also, value);
        break;
    case Action::InfiniteValue: write(iwsav, rwsav, phrase->place, value * kInfiniteBoundFactor); break;
    case Action::Constant: write(iwsav, rwsav, phrase->place, phrase->constant); break;
    case Action::ThirdWord: {
        const WordMap &map = *phrase->map;
        char key3[kTokenLength];
        std::memcpy(key3, tk.slot[2], kTokenLength);
        const int r3 = lookup(map.table == 3 ? t.third : t.second, key3);
        if (r3 < 0) {
            complain(t, Complaint::Ambiguous, list, unit, tk.word(2));
            return 5;
        }
        const std::string word3 = r3 > 0 ? std::string(key3, kTokenLength) : std::string();
        for (int k = 0; k < map.count && !word3.empty(); ++k) {
            if (same(map.words[k].word, word3)) {
                write(iwsav, rwsav, phrase->place, map.words[k].value);
                return 0;
            }
        }
        if (map.store_unknown) write(iwsav, rwsav, phrase->place, map.unknown_value);
        complain(t, Complaint::Third, list, unit, shown(buffer));
        return 5;
    }
    case Action::ParmEntry: {
        const int k = to_int(value);
        if (k < 1 || k > kBlockSize) {
            if (list) say(unit, format(" XXX  The PARM subscript is out of range:%10ld", static_cast<long>(k)));
            return 5;
        }
        char text[kTokenLength + 1], field[kTokenLength + 1];
        token_text(tk, 2, text);
        int used = 0;
        if (std::sscanf(text, "%16[^\n]%n", field, &used) != 1) break;
        if (phrase->place.real) {
            double v = 0.0;
            if (std::sscanf(field, "%16le", &v) == 1) real_setting(rwsav, phrase->place.block, k) = in_range(v);
        } else {
            long v = 0;
            if (std::sscanf(field, "%16ld", &v) == 1) setting(iwsav, phrase->place.block, k) = to_int(v);
        }
        break;
    }
    case Action::Defaults: fill_not_set(t, iwsav, rwsav); break;
    }
    return 0;
}

void begin_run(Family family, int *lwsav, int *iwsav, double *rwsav, const ProblemSize &size) {
    const FamilyTables &t = family_tables(family);
    decode_line(family, "*", 1, false, -1, lwsav, iwsav, rwsav);

    const double eps = precision();
    double *b = rwsav + kMachineBase;
    b[0] = eps;
    b[1] = std::pow(eps, 0.33);
    b[2] = std::pow(eps, 0.5);
    b[3] = std::pow(eps, 0.8);
    b[4] = std::pow(eps, 0.9);

    for (Block blk : t.blocks) {
        std::copy_n(block_int(iwsav, blk), kBlockSize, block_int(iwsav, blk) + kBlockSize);
        std::copy_n(block_real(rwsav, blk), kBlockSize, block_real(rwsav, blk) + kBlockSize);
    }
    apply_defaults(t, Context{iwsav, rwsav, size, machine_base(rwsav)});
    flag(lwsav, family, Flag::NewSequence) = 1;
}

void print_parameters(Family family, const int *iwsav, const double *rwsav, const ProblemSize &size) {
    const FamilyTables &t = family_tables(family);
    if (read(iwsav, rwsav, t.print_level) < 1.0) return;
    const int unit = t.print_unit.index > 0 ? to_int(read(iwsav, rwsav, t.print_unit)) : advisory_unit();
    // The printer only reads; the context's pointers are not written through.
    const Context c{const_cast<int *>(iwsav), const_cast<double *>(rwsav), size, machine_base(rwsav)};
    say(unit, t.title);
    say(unit, "");
    say(unit, " Parameters");
    say(unit, " ----------");
    for (const PrintRow &row : t.rows)
        if (shown_row(row, c)) say(unit, print_row(row, c));
}

void end_run(Family family, int *lwsav, int *iwsav, double *rwsav) {
    (void)lwsav;
    for (Block blk : family_tables(family).blocks) {
        std::copy_n(block_int(iwsav, blk) + kBlockSize, kBlockSize, block_int(iwsav, blk));
        std::copy_n(block_real(rwsav, blk) + kBlockSize, kBlockSize, block_real(rwsav, blk));
    }
}

} // namespace zek::e04
