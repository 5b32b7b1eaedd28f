// Internal pieces of the MPSX reader: the name table services and the parser as the inner H02BUF and
// the tests call it.
#ifndef ZEK_INTEGER_PROBLEM_FILES_H
#define ZEK_INTEGER_PROBLEM_FILES_H

#include <cstdio>
#include <string>

namespace zek::h02 {

constexpr int kNameLength = 8;
constexpr double kInfinity = 1.0e20;  // the bound written for "none"

// A name may not start with a blank; each of its 8 characters is a letter, a digit, a blank or one of
// "$*:+-.".
bool name_valid(const char *name, int length);

// Looks NAME up in entries FIRST to LAST (one-based) of a table of WIDTH-character names, starting at
// *CURSOR and wrapping round, so that names asked for in table order are found at once.  Returns the
// index, the cursor left on it; 0 when absent, the cursor back on FIRST.
int name_search(const char *name, const char *table, int width, int first, int last, int *cursor);

// Removes row K (one-based) of M: the later rows of A (leading dimension LDA, N columns), their bounds
// (BL, BU at N+K on), their names (CRNAME at N+K on, WIDTH characters each) and types move up by one.
void drop_row(int k, int *m, int n, double *a, int lda, double *bl, double *bu, char *crname, int width,
              int *rowtyp);

// The caller's side of a parse.
struct MpsxArrays {
    int maxn = 0, maxm = 0;
    double xbldef = 0.0, xbudef = 0.0;
    bool listing = false;
    int print_unit = -1;
    double *a = nullptr;   // MAXM by MAXN
    double *bl = nullptr;  // MAXN+MAXM
    double *bu = nullptr;
    // False for a continuous problem: integer markers are bad lines and UI, BV, LI bad bound types
    // (INTVAR may then be null).
    bool integer_items = true;
    int *intvar = nullptr;  // MAXN
    int *rowtyp = nullptr;  // MAXM
    char *crname = nullptr; // MAXN+MAXM names of crname_width characters
    int crname_width = kNameLength;
    // The names selected: in/out, 8 characters each.
    std::string problem, objective, rhs, ranges, bounds;
};

struct MpsxOutcome {
    int n = 0, m = 0;  // counts reached
    int nint = 0;      // integer columns
    int nnz = 0;       // matrix entries read
    int iobj = 0;      // row of the objective
    int nline = 0;     // lines read
    int ierror = 0;    // first error, an IFAIL value of H02BUF
    long ivalue[2] = {0, 0};
    std::string cvalue;   // name or type text of the first error
    std::string section;  // "RHS", "RANGES" or "BOUNDS" for error 14
};

// Parses the file on STREAM (null reads as an empty file).
MpsxOutcome mpsx_read(std::FILE *stream, MpsxArrays &arrays);

// The reader's errors, one row each: IERROR (the IFAIL of H02BUF), the values its texts show (and
// H02BUF's ERRBUF line carries), the line listed while the file is read and the failure message.
enum class MpsxShows { Nothing, Counts, Line, Name, SectionName };
struct MpsxError {
    int code;
    MpsxShows shows;
    const char *listed;
    const char *message;
};
// The row of IERROR 1..15.
const MpsxError &mpsx_error(int ierror);
// A text of the table filled with the outcome's values.
std::string mpsx_error_fill(const char *text, MpsxShows shows, long v1, long v2, const std::string &name,
                            const std::string &section);

// The failure record of a parse's first error, as H02BUF reports it.
std::string mpsx_error_text(const MpsxOutcome &outcome);

} // namespace zek::h02

#endif
