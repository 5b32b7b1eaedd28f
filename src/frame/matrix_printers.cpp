// The matrix printers: a general or triangular real matrix (or a packed triangle) under a title, in
// column blocks that fit the line, with row and column labels and a number format of the caller's
// choice or one chosen from the data.  Lines go to the advisory unit.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>

#include "ifail.h"
#include "output.h"
#include "zek2/frame.h"
#include "zek2/x04.h"

namespace zek {
namespace {

constexpr int kLineWidth = 132;
constexpr int kDefaultWidth = 80;
constexpr int kFormLimit = 80;

char upper(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

// A blank-padded character argument, without its trailing blanks.
std::string argument(const char *text, int length) {
    std::string s = text != nullptr ? fixed_string(text, length) : std::string();
    s.erase(s.find_last_not_of(' ') == std::string::npos ? 0 : s.find_last_not_of(' ') + 1);
    return s;
}

// A number format: conversion 'f', 'E' or 'G' with field width and digits.
struct NumberFormat {
    char conversion = 'f';
    int width = 8;
    int digits = 4;
};

// The text of X in the format; a number that does not fit shows as asterisks, as a field that
// overflows does.
std::string number_text(const NumberFormat &fmt, double x) {
    char buffer[512];
    switch (fmt.conversion) {
    case 'E': std::snprintf(buffer, sizeof buffer, "%*.*E", fmt.width, fmt.digits, x); break;
    case 'G': std::snprintf(buffer, sizeof buffer, "%*.*G", fmt.width, fmt.digits, x); break;
    default: std::snprintf(buffer, sizeof buffer, "%*.*f", fmt.width, fmt.digits, x); break;
    }
    std::string s = buffer;
    if (static_cast<int>(s.size()) > fmt.width) s.assign(static_cast<std::size_t>(fmt.width), '*');
    return s;
}

bool fits(const NumberFormat &fmt, double x) { return number_text(fmt, x).find('*') == std::string::npos; }

// Reads an unsigned number of at most four digits at s[*at]; -1 when there is none.
int read_count(const std::string &s, std::size_t *at) {
    int v = -1;
    int digits = 0;
    while (*at < s.size() && std::isdigit(static_cast<unsigned char>(s[*at]))) {
        if (++digits > 4) return -1;
        v = (v < 0 ? 0 : v * 10) + (s[*at] - '0');
        ++*at;
    }
    return v;
}

// The edit descriptors FORM may hold, in either case and with surrounding blanks:
//   [kP] F w.d  |  [kP] E w.d [E e]  |  [kP] D w.d  |  [kP] ES w.d  |  [kP] G w.d [E e]
// with a scale factor k of 0 or 1 (with or without a comma after the P), 1 <= w <= 132 and d < w.
// F becomes %w.df, E, D and ES %w.dE (one digit before the point whatever the scale factor), G %w.dG.
// Any other text, or a field in which -1.0 or 1.0 does not fit, cannot print a number.
bool parse_form(const std::string &form, NumberFormat *fmt) {
    std::string s;
    for (char c : form)
        if (c != ' ') s += upper(c);
    if (s.size() >= 2 && s.front() == '(' && s.back() == ')') s = s.substr(1, s.size() - 2);
    std::size_t at = 0;
    if (s.size() >= 2 && (s[0] == '0' || s[0] == '1') && s[1] == 'P') {
        at = 2;
        if (at < s.size() && s[at] == ',') ++at;
    }
    if (at >= s.size()) return false;
    const char kind = s[at++];
    if (kind == 'E' && at < s.size() && s[at] == 'S') ++at;
    if (kind != 'F' && kind != 'E' && kind != 'D' && kind != 'G') return false;
    const int w = read_count(s, &at);
    if (w < 1 || w > kLineWidth || at >= s.size() || s[at] != '.') return false;
    ++at;
    const int d = read_count(s, &at);
    if (d < 0 || d >= w) return false;
    if ((kind == 'E' || kind == 'G') && at < s.size() && s[at] == 'E') {
        ++at;
        const int e = read_count(s, &at);
        if (e < 1 || e > 4) return false;
    }
    if (at != s.size()) return false;
    fmt->conversion = kind == 'F' ? 'f' : kind == 'G' ? 'G' : 'E';
    fmt->width = w;
    fmt->digits = d;
    return fits(*fmt, -1.0) && fits(*fmt, 1.0);
}

// What is printed at (i, j), one-based: nothing, the element, or the unit diagonal.
enum class Shown { Blank, Element, One };

struct Layout {
    char matrix;  // 'G', 'U', 'L'
    char diag;    // 'N', 'U', 'B'
    Shown shown(int i, int j) const {
        if (matrix == 'U' && i > j) return Shown::Blank;
        if (matrix == 'L' && i < j) return Shown::Blank;
        if (matrix != 'G' && i == j) return diag == 'U' ? Shown::One : diag == 'B' ? Shown::Blank : Shown::Element;
        return Shown::Element;
    }
};

using Element = std::function<double(int, int)>;

// The default format: F8.4 when every printed number fits in it, else F11.4 when they fit in that,
// else 1PE13.4.
NumberFormat default_format(const Layout &layout, int m, int n, const Element &element) {
    NumberFormat f8{'f', 8, 4}, f11{'f', 11, 4}, e13{'E', 13, 4};
    bool fit8 = true, fit11 = true;
    for (int j = 1; j <= n && fit11; ++j) {
        for (int i = 1; i <= m && fit11; ++i) {
            const Shown s = layout.shown(i, j);
            if (s == Shown::Blank) continue;
            const double x = s == Shown::One ? 1.0 : element(i, j);
            fit8 = fit8 && fits(f8, x);
            fit11 = fit11 && fits(f11, x);
        }
    }
    return fit8 ? f8 : fit11 ? f11 : e13;
}

struct Labels {
    char row = 'I', col = 'I';
    const char *rlabs = nullptr, *clabs = nullptr;
    int rlabs_len = 0, clabs_len = 0;
    std::string row_label(int i) const {
        if (row == 'I') return std::to_string(i);
        if (row == 'C' && rlabs != nullptr && rlabs_len > 0)
            return argument(rlabs + static_cast<std::ptrdiff_t>(i - 1) * rlabs_len, rlabs_len);
        return std::string();
    }
    std::string col_label(int j) const {
        if (col == 'I') return std::to_string(j);
        if (col == 'C' && clabs != nullptr && clabs_len > 0)
            return argument(clabs + static_cast<std::ptrdiff_t>(j - 1) * clabs_len, clabs_len);
        return std::string();
    }
};

void put_line(std::string line) {
    line.erase(line.find_last_not_of(' ') == std::string::npos ? 0 : line.find_last_not_of(' ') + 1);
    host_line(advisory_unit(), line.c_str(), static_cast<int>(line.size()));
}

std::string right(const std::string &text, int width) {
    if (static_cast<int>(text.size()) >= width) return text.substr(0, static_cast<std::size_t>(width));
    return std::string(static_cast<std::size_t>(width) - text.size(), ' ') + text;
}

// Prints the matrix in column blocks; returns false (printing nothing) when not one column fits.
struct Printer {
    Layout layout;
    Labels labels;
    NumberFormat fmt;
    int width, indent;
    int row_field(int m) const {
        if (labels.row == 'N' || m < 1) return 0;
        int w = 0;
        for (int i = 1; i <= m; ++i) w = std::max(w, static_cast<int>(labels.row_label(i).size()));
        return std::min(w, width - indent) + 1;  // a blank after the label
    }
    int columns_per_block(int m) const { return (width - indent - row_field(m)) / fmt.width; }
    void print(const std::string &title, int m, int n, const Element &element) const {
        const std::string pad(static_cast<std::size_t>(indent), ' ');
        if (!title.empty()) put_line(pad + title);
        if (m < 1 || n < 1) return;
        const int lw = row_field(m);
        const int per = columns_per_block(m);
        for (int j1 = 1; j1 <= n; j1 += per) {
            const int j2 = std::min(n, j1 + per - 1);
            if (j1 > 1) put_line("");
            if (labels.col != 'N') {
                std::string line = pad + std::string(static_cast<std::size_t>(lw), ' ');
                for (int j = j1; j <= j2; ++j) line += right(labels.col_label(j), fmt.width);
                put_line(line);
            }
            const int i1 = layout.matrix == 'L' ? std::min(j1, m) : 1;
            const int i2 = layout.matrix == 'U' ? std::min(j2, m) : m;
            for (int i = i1; i <= i2; ++i) {
                std::string line = pad;
                if (lw > 0) {
                    std::string label = labels.row_label(i).substr(0, static_cast<std::size_t>(lw - 1));
                    line += labels.row == 'I' ? right(label, lw - 1) : label + std::string(lw - 1 - label.size(), ' ');
                    line += ' ';
                }
                for (int j = j1; j <= j2; ++j) {
                    const Shown s = layout.shown(i, j);
                    if (s == Shown::Blank)
                        line += std::string(static_cast<std::size_t>(fmt.width), ' ');
                    else
                        line += number_text(fmt, s == Shown::One ? 1.0 : element(i, j));
                }
                put_line(line);
            }
        }
    }
};

// The exits of both printers, each reporting under its own name.  The general printer names its
// shape argument MATRIX and the packed one UPLO, so that exit has a row for each.
enum PrinterExit {
    kMatrixInvalid, kUploInvalid, kDiagInvalid, kLabelInvalid, kFormStar, kFormTooLong, kFormUnusable, kTooNarrow,
};
constexpr ExitRow kPrinterExits[] = {
    {1, 99999, " ** On entry, MATRIX is not valid: MATRIX = '%s'."},
    {1, 99999, " ** On entry, UPLO is not valid: UPLO = '%s'."},
    {2, 99998, " ** On entry, DIAG is not valid: DIAG = '%s'."},
    {3, 99997, " ** On entry, either LABROW or LABCOL is not valid:\n    LABROW = '%s', LABCOL = '%s'."},
    {4, 99996, " ** FORM=* not supported by this version of X04CDF"},
    {5, 99995, " ** On entry, FORM has more than 80 characters: the first 75 are\n    %s."},
    {6, 99994, " ** The format specifier in FORM cannot be used to print a number: FORM =\n    %s."},
    {7, 99993, " ** On entry, NCOLS-INDENT is not wide enough to hold at least one matrix\n    column: NCOLS = "
               "%16ld, INDENT =%16ld."},
};

// The checks and printing shared by both printers.
void print_matrix(FailureExit &exit, const char *matrix_arg, int matrix_len, const char *diag_arg, int diag_len,
                  bool packed, int m, int n, const Element &element, const char *form_arg, int form_len,
                  const std::string &title, Labels labels, int ncols, int indent) {
    const int width = ncols < 1 || ncols > kLineWidth ? kDefaultWidth : ncols;
    if (indent < 0 || indent >= width) indent = 0;
    const std::string matrix = argument(matrix_arg, matrix_len), diag = argument(diag_arg, diag_len);
    const char mc = matrix.empty() ? ' ' : upper(matrix[0]);
    const char dc = diag.empty() ? ' ' : upper(diag[0]);
    const bool triangular = mc == 'U' || mc == 'L';
    if (!triangular && (packed || mc != 'G'))
        return void(take(exit, kPrinterExits, packed ? kUploInvalid : kMatrixInvalid, {matrix.substr(0, 1)}));
    if (triangular && dc != 'N' && dc != 'U' && dc != 'B')
        return void(take(exit, kPrinterExits, kDiagInvalid, {diag.substr(0, 1)}));
    labels.row = upper(labels.row);
    labels.col = upper(labels.col);
    auto valid = [](char c) { return c == 'N' || c == 'I' || c == 'C'; };
    if (!valid(labels.row) || !valid(labels.col))
        return void(take(exit, kPrinterExits, kLabelInvalid,
                         {std::string(1, labels.row == '\0' ? ' ' : labels.row),
                          std::string(1, labels.col == '\0' ? ' ' : labels.col)}));
    const Layout layout{triangular ? mc : 'G', dc};
    const std::string form = argument(form_arg, form_len);
    const std::size_t first = form.find_first_not_of(' ');
    NumberFormat fmt;
    if (first == std::string::npos) {
        fmt = default_format(layout, m, n, element);
    } else if (form.substr(first) == "*") {
        return void(take(exit, kPrinterExits, kFormStar));
    } else if (form.size() > static_cast<std::size_t>(kFormLimit)) {
        return void(take(exit, kPrinterExits, kFormTooLong, {form.substr(0, 75)}));
    } else if (!parse_form(form, &fmt)) {
        return void(take(exit, kPrinterExits, kFormUnusable, {form}));
    }
    const Printer printer{layout, labels, fmt, width, indent};
    if (printer.columns_per_block(m) < 1) return void(take(exit, kPrinterExits, kTooNarrow, {ncols, indent}));
    printer.print(title, m, n, element);
    exit.succeed();
}

} // namespace
} // namespace zek

extern "C" void X04CDF_WORKER(const char *matrix, const char *diag, int m, int n, const double a[], int lda,
                              const char *form, const char *title, const char *labrow, const char *rlabs,
                              const char *labcol, const char *clabs, int ncols, int indent, char *errbuf, int *ifail,
                              int matrix_len, int diag_len, int form_len, int title_len, int labrow_len,
                              int rlabs_len, int labcol_len, int clabs_len, int) {
    zek::FailureExit exit("X04CDF", errbuf, ifail);
    const std::ptrdiff_t ld = std::max(lda, 0);
    zek::Labels labels;
    labels.row = labrow != nullptr && labrow_len > 0 ? labrow[0] : ' ';
    labels.col = labcol != nullptr && labcol_len > 0 ? labcol[0] : ' ';
    labels.rlabs = rlabs;
    labels.rlabs_len = rlabs_len;
    labels.clabs = clabs;
    labels.clabs_len = clabs_len;
    // A leading dimension below M cannot address the matrix: nothing of it is read.
    const int rows = lda < m ? 0 : m;
    zek::print_matrix(exit, matrix, matrix_len, diag, diag_len, false, rows, n,
                      [&](int i, int j) { return a[(i - 1) + (j - 1) * ld]; }, form, form_len,
                      zek::argument(title, title_len), labels, ncols, indent);
}

extern "C" void X04CDF(const char *matrix, const char *diag, const int *m, const int *n, const double a[],
                       const int *lda, const char *form, const char *title, const char *labrow, const char *rlabs,
                       const char *labcol, const char *clabs, const int *ncols, const int *indent, int *ifail,
                       int matrix_len, int diag_len, int form_len, int title_len, int labrow_len, int rlabs_len,
                       int labcol_len, int clabs_len) {
    zek::Front front("X04CDF");
    X04CDF_WORKER(matrix, diag, *m, *n, a, *lda, form, title, labrow, rlabs, labcol, clabs, *ncols, *indent,
                  front.errbuf(), ifail, matrix_len, diag_len, form_len, title_len, labrow_len, rlabs_len, labcol_len,
                  clabs_len, zek::kErrbufLength);
    front.finish(*ifail);
}

extern "C" void X04CCF_WORKER(const char *uplo, const char *diag, int n, const double a[], const char *title,
                              char *errbuf, int *ifail, int uplo_len, int diag_len, int title_len, int) {
    zek::FailureExit exit("X04CCF", errbuf, ifail);
    const bool upper_packed = uplo != nullptr && uplo_len > 0 && zek::upper(uplo[0]) == 'U';
    const std::ptrdiff_t nn = n;
    // Column j of the packed triangle starts at j(j-1)/2 (upper) or (j-1)(2n-j+2)/2 (lower), zero-based.
    auto element = [&](int i, int j) -> double {
        const std::ptrdiff_t ii = i, jj = j;
        return upper_packed ? a[(ii - 1) + jj * (jj - 1) / 2] : a[(ii - jj) + (jj - 1) * (2 * nn - jj + 2) / 2];
    };
    zek::Labels labels;  // integer labels on both sides
    zek::print_matrix(exit, uplo, uplo_len, diag, diag_len, true, n, n, element, " ", 1,
                      zek::argument(title, title_len), labels, zek::kDefaultWidth, 0);
}

extern "C" void X04CCF(const char *uplo, const char *diag, const int *n, const double a[], const char *title,
                       int *ifail, int uplo_len, int diag_len, int title_len) {
    zek::Front front("X04CCF");
    X04CCF_WORKER(uplo, diag, *n, a, title, front.errbuf(), ifail, uplo_len, diag_len, title_len, zek::kErrbufLength);
    front.finish(*ifail);
}
