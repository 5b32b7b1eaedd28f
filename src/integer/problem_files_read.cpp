// The MPSX parser: fixed columns, sections in order, the integer markers, and the name table shared
// by columns and rows.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "frame/ifail.h"
#include "frame/input_units.h"
#include "frame/output.h"
#include "frame/sinks.h"
#include "integer/problem_files.h"
#include "zek2/h02.h"

namespace zek::h02 {

bool name_valid(const char *name, int length) {
    if (name == nullptr || length < 1 || name[0] == ' ') return false;
    for (int i = 0; i < std::min(length, kNameLength); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        if (std::isalnum(c) || std::strchr(" $*:+-.", c) != nullptr) continue;
        return false;
    }
    return true;
}

int name_search(const char *name, const char *table, int width, int first, int last, int *cursor) {
    if (first > last || first < 1) {
        *cursor = first;
        return 0;
    }
    const int n = std::min(width, kNameLength);
    auto matches = [&](int i) {
        return std::memcmp(table + static_cast<std::ptrdiff_t>(i - 1) * width, name, static_cast<std::size_t>(n)) == 0;
    };
    if (*cursor < first || *cursor > last) *cursor = first;
    for (int i = *cursor; i <= last; ++i)
        if (matches(i)) return *cursor = i;
    for (int i = first; i < *cursor; ++i)
        if (matches(i)) return *cursor = i;
    *cursor = first;
    return 0;
}

void drop_row(int k, int *m, int n, double *a, int lda, double *bl, double *bu, char *crname, int width,
              int *rowtyp) {
    if (k < 1 || k > *m) return;
    for (std::ptrdiff_t j = 0; j < n; ++j)
        for (int i = k; i < *m; ++i) a[(i - 1) + j * lda] = a[i + j * lda];
    for (int i = k; i < *m; ++i) {
        bl[n + i - 1] = bl[n + i];
        bu[n + i - 1] = bu[n + i];
        std::memcpy(crname + static_cast<std::ptrdiff_t>(n + i - 1) * width,
                    crname + static_cast<std::ptrdiff_t>(n + i) * width, static_cast<std::size_t>(width));
        rowtyp[i - 1] = rowtyp[i];
    }
    --*m;
}

namespace {

constexpr int kLineWidth = 80;

enum class Section { Start, Name, Rows, Columns, Rhs, Ranges, Bounds, Done };

// A set of the RHS, RANGES or BOUNDS section: the name selected and whether a line of it was met.
struct SetChoice {
    std::string *name;
    bool chosen = false;  // a blank name on entry has taken the first set met
    bool met = false;
};

class Parser {
public:
    Parser(std::FILE *stream, MpsxArrays &arrays) : stream_(stream), ar_(arrays) {
        rhs_.name = &ar_.rhs;
        ranges_.name = &ar_.ranges;
        bounds_.name = &ar_.bounds;
        rhs_.chosen = !blank(ar_.rhs);
        ranges_.chosen = !blank(ar_.ranges);
        bounds_.chosen = !blank(ar_.bounds);
    }
    MpsxOutcome run();

private:
    static bool blank(const std::string &s) { return s.find_first_not_of(' ') == std::string::npos; }
    std::string field(int from, int to) const {  // columns FROM to TO, one-based
        return std::string(line_ + from - 1, static_cast<std::size_t>(to - from + 1));
    }
    bool blank_columns(int from, int to) const {
        for (int c = from; c <= to; ++c)
            if (line_[c - 1] != ' ') return false;
        return true;
    }
    char *name_at(int i) { return ar_.crname + static_cast<std::ptrdiff_t>(i - 1) * ar_.crname_width; }
    void put_name(int i, const std::string &name) {
        char *slot = name_at(i);
        std::memset(slot, ' ', static_cast<std::size_t>(ar_.crname_width));
        std::memcpy(slot, name.data(), std::min<std::size_t>(name.size(), static_cast<std::size_t>(ar_.crname_width)));
    }
    double &a(int i, int j) { return ar_.a[(i - 1) + static_cast<std::ptrdiff_t>(j - 1) * ar_.maxm]; }
    void say(const std::string &text) const { host_line(ar_.print_unit, text.c_str(), static_cast<int>(text.size())); }

    bool read_line();
    // Records an error (the first one of the file is kept) and prints it while listing; true when the
    // parse is to stop.
    bool fail(int code, long v1 = 0, long v2 = 0, const std::string &text = std::string(),
              const char *section = "");
    bool numbers();
    int find_row(const std::string &name);
    int find_column(const std::string &name);
    bool header();
    bool data();
    bool row_line();
    bool column_line();
    bool set_line(SetChoice &set, bool ranges);
    bool bound_line();
    bool close_rows();
    bool close_columns();
    void make_row_bounds();
    bool finish();

    std::FILE *stream_;
    MpsxArrays &ar_;
    MpsxOutcome out_;
    char line_[kLineWidth + 1] = {};
    Section section_ = Section::Start;
    int m_ = 0, n_ = 0;          // rows and columns stored
    int rows_named_at_ = 0;      // the row names start behind this index of the table
    int ncol_true_ = 0;          // columns seen, those beyond MAXN included
    bool too_many_rows_ = false, counting_columns_ = false, row_bounds_made_ = false;
    bool in_integer_block_ = false;
    std::string current_column_;
    bool have_column_ = false;
    int row_cursor_ = 1, column_cursor_ = 1;
    double value4_ = 0.0, value6_ = 0.0;  // a numeric field that does not read keeps the last line's value
    SetChoice rhs_, ranges_, bounds_;
};

bool Parser::read_line() {
    std::memset(line_, ' ', kLineWidth);
    line_[kLineWidth] = '\0';
    if (stream_ == nullptr) return false;
    char errbuf[kErrbufLength];
    int ifail = 1;
    X04BBF(stream_, line_, errbuf, &ifail, kLineWidth, kErrbufLength);
    if (ifail != 0) return false;
    ++out_.nline;
    return true;
}

bool Parser::fail(int code, long v1, long v2, const std::string &text, const char *section) {
    if (out_.ierror == 0) {
        out_.ierror = code;
        out_.ivalue[0] = v1;
        out_.ivalue[1] = v2;
        out_.cvalue = text;
        out_.section = section;
    }
    if (!ar_.listing) return true;
    const MpsxError &e = mpsx_error(code);
    const std::string listed = mpsx_error_fill(e.listed, e.shows, v1, v2, text, section ? section : "");
    std::size_t start = 0;
    for (std::size_t end; (end = listed.find('\n', start)) != std::string::npos; start = end + 1)
        say(listed.substr(start, end - start));
    say(listed.substr(start));
    return false;
}

bool Parser::numbers() {
    char f4[13] = {}, f6[13] = {};
    int used = 0, used6 = 0;
    if (std::sscanf(line_, "%*24c%12[^\n]%n", f4, &used) != 1) return false;
    if (std::sscanf(line_ + used, "%*13c%12[^\n]%n", f6, &used6) != 1) return false;
    double v = 0.0;
    if (std::sscanf(f4, "%12le", &v) == 1) value4_ = v;
    if (std::sscanf(f6, "%12le", &v) == 1) value6_ = v;
    return true;
}

int Parser::find_row(const std::string &name) {
    const int i = name_search(name.c_str(), ar_.crname, ar_.crname_width, rows_named_at_ + 1, rows_named_at_ + m_,
                              &row_cursor_);
    return i == 0 ? 0 : i - rows_named_at_;
}

int Parser::find_column(const std::string &name) {
    return name_search(name.c_str(), ar_.crname, ar_.crname_width, 1, n_, &column_cursor_);
}

bool Parser::row_line() {
    if (too_many_rows_) return false;  // passed over up to COLUMNS
    const std::string type = field(1, 4);
    int code;
    if (type == " L  " || type == "  L ") code = 1;
    else if (type == " G  " || type == "  G ") code = -1;
    else if (type == " E  " || type == "  E ") code = 0;
    else if (type == " N  " || type == "  N ") code = 2;
    else return fail(5, 0, 0, type);
    const std::string name = field(5, 12);
    if (!name_valid(name.c_str(), kNameLength)) return fail(6, 0, 0, name);
    if (find_row(name) != 0) {
        say(format(" ** duplicate row name  %8.8s  - ignored", name.c_str()));
        return false;
    }
    if (m_ == ar_.maxm) {
        too_many_rows_ = true;
        return fail(1, ar_.maxm, ar_.maxm + 1L);
    }
    ++m_;
    put_name(m_, name);
    ar_.rowtyp[m_ - 1] = code;
    if (out_.iobj == 0) {
        if (blank(ar_.objective)) {
            if (code == 2) {
                out_.iobj = m_;
                ar_.objective = name;
            }
        } else if (name == ar_.objective) {
            out_.iobj = m_;
        }
    }
    return false;
}

bool Parser::close_rows() {
    // The row names move to the end of the table, so that the columns can fill it from the start.
    for (int i = m_; i >= 1; --i) std::memmove(name_at(ar_.maxn + i), name_at(i), static_cast<std::size_t>(ar_.crname_width));
    rows_named_at_ = ar_.maxn;
    row_cursor_ = rows_named_at_ + 1;
    if (m_ == 0) return fail(4);
    if (out_.iobj == 0) return fail(3);
    return false;
}

bool Parser::column_line() {
    if (!numbers()) return fail(11, out_.nline);
    const std::string name = field(5, 12);
    if (field(15, 22) == "'MARKER'") {
        // A reader of continuous problems knows no markers.
        if (!ar_.integer_items) return fail(11, out_.nline);
        const std::string marker = field(40, 47);
        if (marker == "'INTORG'") {
            if (in_integer_block_) return fail(15);
            in_integer_block_ = true;
        } else if (marker == "'INTEND'") {
            if (!in_integer_block_) return fail(15);
            in_integer_block_ = false;
        }
        return false;
    }
    if (!have_column_ || name != current_column_) {
        // A new column, whether or not the name was met before.
        have_column_ = true;
        current_column_ = name;
        if (counting_columns_) {
            ++ncol_true_;
            return false;
        }
        if (!name_valid(name.c_str(), kNameLength)) {
            have_column_ = false;
            return fail(7, 0, 0, name);
        }
        ++ncol_true_;
        if (n_ == ar_.maxn) {
            counting_columns_ = true;  // the count goes on to the end of the section
            return false;
        }
        ++n_;
        put_name(n_, name);
        for (int i = 1; i <= ar_.maxm; ++i) a(i, n_) = 0.0;
        ar_.bl[n_ - 1] = ar_.xbldef;
        ar_.bu[n_ - 1] = ar_.xbudef;
        if (ar_.intvar != nullptr) ar_.intvar[n_ - 1] = in_integer_block_ ? 1 : 0;
        if (in_integer_block_) ++out_.nint;
    } else if (counting_columns_) {
        return false;
    }
    if (!have_column_) return false;
    const std::string rows[2] = {field(15, 22), field(40, 47)};
    const double values[2] = {value4_, value6_};
    for (int p = 0; p < 2; ++p) {
        const std::string &row = rows[p];
        if (p == 1 && blank(row)) break;
        const int i = find_row(row);
        if (i == 0) {
            if (fail(12, 0, 0, row)) return true;
            continue;
        }
        a(i, n_) = values[p];
        ++out_.nnz;
    }
    return false;
}

bool Parser::close_columns() {
    if (counting_columns_) {
        counting_columns_ = false;
        if (fail(2, ar_.maxn, ncol_true_)) return true;
    }
    // The row names move up behind the column names.
    for (int i = 1; i <= m_; ++i) std::memmove(name_at(n_ + i), name_at(rows_named_at_ + i), static_cast<std::size_t>(ar_.crname_width));
    rows_named_at_ = n_;
    row_cursor_ = n_ + 1;
    for (int i = 1; i <= m_; ++i) ar_.bl[n_ + i - 1] = ar_.bu[n_ + i - 1] = 0.0;  // right-hand sides
    if (ncol_true_ == 0) return fail(13);
    return false;
}

void Parser::make_row_bounds() {
    if (row_bounds_made_) return;
    row_bounds_made_ = true;
    for (int i = 1; i <= m_; ++i) {
        double &lo = ar_.bl[n_ + i - 1];
        double &up = ar_.bu[n_ + i - 1];
        const double rhs = lo;
        switch (ar_.rowtyp[i - 1]) {
        case 1: lo = -kInfinity, up = rhs; break;
        case -1: lo = rhs, up = kInfinity; break;
        case 0: lo = up = rhs; break;
        default: lo = -kInfinity, up = kInfinity; break;
        }
    }
}

bool Parser::set_line(SetChoice &set, bool ranges) {
    if (!numbers()) return fail(11, out_.nline);
    const std::string name = field(5, 12);
    if (!set.chosen) {
        *set.name = name;
        set.chosen = true;
    }
    if (name != *set.name) return false;
    set.met = true;
    const std::string rows[2] = {field(15, 22), field(40, 47)};
    const double values[2] = {value4_, value6_};
    for (int p = 0; p < 2; ++p) {
        if (p == 1 && blank(rows[p])) break;
        const int i = find_row(rows[p]);
        if (i == 0) {
            if (fail(12, 0, 0, rows[p])) return true;
            continue;
        }
        const double v = values[p];
        if (!ranges) {
            ar_.bl[n_ + i - 1] = v;  // the right-hand side until the bounds are made
            continue;
        }
        double &lo = ar_.bl[n_ + i - 1];
        double &up = ar_.bu[n_ + i - 1];
        switch (ar_.rowtyp[i - 1]) {
        case -1: up = lo + std::fabs(v); break;
        case 1: lo = up - std::fabs(v); break;
        case 0:
            if (v > 0.0) up = lo + v;
            else if (v < 0.0) lo = up + v;
            break;
        default: break;
        }
    }
    return false;
}

bool Parser::bound_line() {
    if (!numbers()) return fail(11, out_.nline);
    const std::string type = field(1, 4);
    static const char *const kTypes[] = {" UP ", " UI ", " BV ", " LO ", " LI ", " FX ", " FR ", " MI ", " PL "};
    int kind = -1;
    for (int k = 0; k < 9; ++k)
        if (type == kTypes[k]) kind = k;
    // UI, BV and LI make a column integer: no bound types of a continuous problem.
    if (kind < 0 || (!ar_.integer_items && (kind == 1 || kind == 2 || kind == 4))) return fail(8, 0, 0, type);
    const std::string set = field(5, 12);
    if (!bounds_.chosen) {
        ar_.bounds = set;
        bounds_.chosen = true;
    }
    if (set != ar_.bounds) return false;
    bounds_.met = true;
    const std::string column = field(15, 22);
    const int j = find_column(column);
    if (j == 0) return fail(9, 0, 0, column);
    double &lo = ar_.bl[j - 1];
    double &up = ar_.bu[j - 1];
    const double v = value4_;
    auto make_integer = [&]() {
        if (ar_.intvar[j - 1] != 1) ++out_.nint;
        ar_.intvar[j - 1] = 1;
    };
    switch (kind) {
    case 0:  // UP
    case 1:  // UI
        up = v;
        if (v == 0.0) lo = -kInfinity;
        if (kind == 1) make_integer();
        break;
    case 2:  // BV
        up = 1.0;
        make_integer();
        break;
    case 3: lo = v; break;                    // LO
    case 4: lo = v, make_integer(); break;    // LI
    case 5: lo = up = v; break;               // FX
    case 6: lo = -kInfinity, up = kInfinity; break;  // FR
    case 7: lo = -kInfinity, up = 0.0; break;        // MI
    case 8: lo = 0.0, up = kInfinity; break;         // PL
    default: break;
    }
    return false;
}

bool Parser::finish() {
    make_row_bounds();
    section_ = Section::Done;
    const struct {
        const SetChoice &set;
        const char *name;
    } sets[] = {{rhs_, "RHS"}, {ranges_, "RANGES"}, {bounds_, "BOUNDS"}};
    for (const auto &s : sets)
        if (!blank(*s.set.name) && !s.set.met)
            if (fail(14, 0, 0, *s.set.name, s.name)) return true;
    if (ar_.listing) {
        if (out_.nint > 0) say(format("           NUMBER OF INTEGER VARIABLES = %3ld", static_cast<long>(out_.nint)));
        say(" NAMES SELECTED");
        say(" --------------");
        say(format(" OBJECTIVE      %8.8s", ar_.objective.c_str()));
        say(format(" RHS            %8.8s", ar_.rhs.c_str()));
        say(format(" RANGES         %8.8s", ar_.ranges.c_str()));
        say(format(" BOUNDS         %8.8s", ar_.bounds.c_str()));
    }
    return true;
}

// A line with text in column 1: the next section's header, in the order the format fixes.
bool Parser::header() {
    const std::string word = field(1, 7);
    auto starts = [&](const char *w) { return word.compare(0, std::strlen(w), w) == 0; };
    switch (section_) {
    case Section::Start:
        if (!starts("NAME")) return fail(11, out_.nline);
        if (blank(ar_.problem)) ar_.problem = field(15, 22);
        section_ = Section::Name;
        return false;
    case Section::Name:
        if (!starts("ROWS")) return fail(11, out_.nline);
        section_ = Section::Rows;
        return false;
    case Section::Rows:
        if (!starts("COLUMNS")) return fail(11, out_.nline);
        section_ = Section::Columns;
        return close_rows();
    case Section::Columns:
        if (starts("RHS ") || starts("RA") || starts("BO") || starts("EN")) {
            if (close_columns()) return true;
        } else {
            return fail(11, out_.nline);
        }
        if (starts("RHS ")) {
            section_ = Section::Rhs;
            return false;
        }
        [[fallthrough]];
    case Section::Rhs:
        if (starts("RA") || starts("BO") || starts("EN")) make_row_bounds();
        if (starts("RA")) section_ = Section::Ranges;
        else if (starts("BO")) section_ = Section::Bounds;
        else if (starts("EN")) return finish();
        else return fail(11, out_.nline);
        return false;
    case Section::Ranges:
        if (starts("BO")) section_ = Section::Bounds;
        else if (starts("EN")) return finish();
        else return fail(11, out_.nline);
        return false;
    case Section::Bounds:
        if (starts("EN")) return finish();
        return fail(11, out_.nline);
    case Section::Done: return true;
    }
    return false;
}

bool Parser::data() {
    // "$" in column 15 makes the rest of the line a comment; in column 40 it blanks columns 40 to 71.
    if (line_[14] == '$') std::memset(line_ + 14, ' ', kLineWidth - 14);
    if (line_[39] == '$') std::memset(line_ + 39, ' ', 32);
    const bool fields_apart = blank_columns(13, 14) && blank_columns(23, 24) && blank_columns(37, 39) &&
                              blank_columns(48, 49) && blank_columns(62, 72);
    const bool lead_blank = blank_columns(1, 4);
    switch (section_) {
    case Section::Rows:
        if (!fields_apart) return too_many_rows_ ? false : fail(11, out_.nline);
        return row_line();
    case Section::Columns:
        if (counting_columns_ && !lead_blank) {
            // The count of columns beyond the limit ends at the first line with text in columns 1 to 4.
            counting_columns_ = false;
            if (fail(2, ar_.maxn, ncol_true_)) return true;
        }
        if (!fields_apart || !lead_blank) return fail(11, out_.nline);
        return column_line();
    case Section::Rhs:
        if (!fields_apart || !lead_blank) return fail(11, out_.nline);
        return set_line(rhs_, false);
    case Section::Ranges:
        if (!fields_apart || !lead_blank) return fail(11, out_.nline);
        return set_line(ranges_, true);
    case Section::Bounds:
        if (!fields_apart) return fail(11, out_.nline);
        return bound_line();
    default: return fail(11, out_.nline);
    }
}

MpsxOutcome Parser::run() {
    if (ar_.listing) {
        say(" MPSX INPUT LISTING");
        say(" ------------------");
    }
    for (;;) {
        if (!read_line()) {
            fail(10);
            break;
        }
        if (ar_.listing) say(format(" %.*s", trimmed_length(line_, kLineWidth), line_));
        // Comments, and lines with nothing on them.
        if (line_[0] == '*' || trimmed_length(line_, kLineWidth) == 0) continue;
        const bool stop = line_[0] != ' ' ? header() : data();
        if (stop) break;
    }
    out_.n = out_.ierror == 2 ? ncol_true_ : n_;
    out_.m = out_.ierror == 1 ? ar_.maxm + 1 : m_;
    return out_;
}

} // namespace

MpsxOutcome mpsx_read(std::FILE *stream, MpsxArrays &arrays) { return Parser(stream, arrays).run(); }

namespace {

constexpr MpsxError kMpsxErrors[] = {
    {1, MpsxShows::Counts, " ** Too many rows. Limit is%5ld, but the actual number required is\n%5ld.",
     " ** Too many rows. Limit is%5ld, but the actual number required is\n%5ld."},
    {2, MpsxShows::Counts, " ** Too many columns. Limit is%5ld, but the actual number required is\n%5ld.",
     " ** Too many columns. Limit is%5ld, but the actual number required is\n%5ld."},
    {3, MpsxShows::Nothing, " ** No objective function found.", " ** No objective function found."},
    {4, MpsxShows::Nothing, " ** No rows specified.", " ** No rows specified."},
    {5, MpsxShows::Name, " ** Illegal constraint type -- ( %4.4s).", " ** Illegal constraint type -- ( %4.4s)."},
    {6, MpsxShows::Name, " ** Row name with leading blank or non-alphanumeric character  %8.8s.",
     " ** Row name with leading blank or non-alphanumeric character  %8.8s."},
    {7, MpsxShows::Name, " ** Column name with leading blank or non-alphanumeric character  %8.8s.",
     " ** Column name with leading blank or non-alphanumeric character  %8.8s."},
    {8, MpsxShows::Name, " ** illegal bound type (%4.4s)", " ** Illegal bound type (%4.4s)."},
    {9, MpsxShows::Name, " ** column name (%8.8s) is not defined in the COLUMNS section",
     " ** Column name (%8.8s) is not defined in the COLUMNS section."},
    {10, MpsxShows::Nothing, " ** The last line must be the ENDATA indicator line.",
     " ** The last line must be the ENDATA indicator line."},
    {11, MpsxShows::Line, " ** line%5ld   is not a comment nor a valid line",
     " ** Line%5ld   is not a comment nor a valid line."},
    {12, MpsxShows::Name, " ** row name  %8.8s not defined in ROWS section",
     " ** Row name  %8.8s not defined in ROWS section."},
    {13, MpsxShows::Nothing, " ** No columns specified.", " ** No columns specified."},
    {14, MpsxShows::SectionName, " ** %s name was not found  %8.8s", " ** %s name was not found  %8.8s"},
    {15, MpsxShows::Nothing, " ** integer marker is not in a correct position",
     " ** Integer marker is not in a correct position."},
};

constexpr MpsxError kNoError = {0, MpsxShows::Nothing, "", ""};

} // namespace

const MpsxError &mpsx_error(int ierror) {
    for (const MpsxError &e : kMpsxErrors)
        if (e.code == ierror) return e;
    return kNoError;
}

// The table's texts are the only formats filled here; each takes exactly the values its row shows.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string mpsx_error_fill(const char *text, MpsxShows shows, long v1, long v2, const std::string &name,
                            const std::string &section) {
    switch (shows) {
    case MpsxShows::Counts: return format(text, v1, v2);
    case MpsxShows::Line: return format(text, v1);
    case MpsxShows::Name: return format(text, name.c_str());
    case MpsxShows::SectionName: return format(text, section.c_str(), name.c_str());
    case MpsxShows::Nothing: break;
    }
    return text;
}
#pragma GCC diagnostic pop

std::string mpsx_error_text(const MpsxOutcome &o) {
    const MpsxError &e = mpsx_error(o.ierror);
    return mpsx_error_fill(e.message, e.shows, o.ivalue[0], o.ivalue[1], o.cvalue, o.section);
}

} // namespace zek::h02
