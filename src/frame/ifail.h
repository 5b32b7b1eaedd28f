// The IFAIL layer's shared mechanisms: message records, failure exits of workers, the two-level
// front, and the parameter reporters of the routines that count their argument errors.
//
// A routine of this layer is then its argument checks, its arithmetic and its message texts:
//
//     enum C02alfExit { kNLessThan1, kNotFinite };
//     constexpr zek::ExitRow kC02alfExits[] = {
//         {1, 99999, " ** On entry, N .lt. 1: N =%16ld."},
//         {2, 99998, " ** On entry, element %16ld of E is not finite."},
//     };
//
//     void c02alf_worker(double e, ..., char *errbuf, int *ifail, int errbuf_len) {
//         zek::FailureExit exit("C02ALF", errbuf, ifail);
//         if (n < 1) return void(zek::take(exit, kC02alfExits, kNLessThan1, {n}));
//         ...
//         exit.succeed();
//     }
//
//     void C02ALF(const double *e, ..., int *ifail) {
//         zek::Front front("C02ALF");
//         ZEK_MARK_REAL_ARRAY(4, zeror);
//         c02alf_worker(*e, ..., front.errbuf(), ifail, zek::kErrbufLength);
//         front.finish(*ifail);
//     }
#ifndef ZEK_FRAME_IFAIL_H
#define ZEK_FRAME_IFAIL_H

#include <cstddef>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace zek {

constexpr int kErrbufLength = 200;
constexpr int kRecordWidth = 80;

// A value converted by one piece of a message, and echoed into ERRBUF.
class MessageValue {
public:
    enum class Kind { Integer, Real, Text };
    MessageValue(int v) : kind_(Kind::Integer), integer_(v) {}
    MessageValue(long v) : kind_(Kind::Integer), integer_(v) {}
    MessageValue(double v) : kind_(Kind::Real), real_(v) {}
    MessageValue(const char *s) : kind_(Kind::Text), text_(s ? s : "") {}
    MessageValue(std::string s) : kind_(Kind::Text), text_(std::move(s)) {}
    Kind kind() const { return kind_; }
    long integer() const { return integer_; }
    double real() const { return real_; }
    const std::string &text() const { return text_; }

private:
    Kind kind_;
    long integer_ = 0;
    double real_ = 0.0;
    std::string text_;
};

// Message records: NUL-terminated strings at a stride of the record width.  A record holds at most
// width-1 characters, blank padded, and its terminator; a longer line continues in the next record.
class Records {
public:
    explicit Records(int width = kRecordWidth) : width_(width) {}
    int count() const { return count_; }
    int width() const { return width_; }
    const char *data() const { return storage_.data(); }
    const char *record(int i) const { return storage_.data() + static_cast<std::ptrdiff_t>(i) * width_; }
    // Appends one record (cut to width-1 characters).
    void add(std::string_view text);

private:
    int width_;
    int count_ = 0;
    std::string storage_;
};

// The record builder: pieces are literals, newline pieces ("\n") and conversions (a piece with one
// '%' directive), used in order; each conversion takes the next value.  A newline ends a record, an
// empty line keeps a record of one blank.
Records build_records(const std::vector<std::string> &pieces, std::initializer_list<MessageValue> values,
                      int width = kRecordWidth);
// Splits a message text into pieces: at each newline, and so that every piece holds at most one
// conversion.  "%%" stays a literal.
std::vector<std::string> message_pieces(std::string_view message);

// Which reporter ends a routine: the host channel (P01_REPORT) for routines the host calls, the stream
// channel (P01_REPORT_STREAM) for those that also work beneath the C-style layer.
enum class Channel { Host, Stream };

// The failure exits of one call of a worker: sets ERRBUF to "NONE" on entry and, on a failure, fills
// it with the machine-readable line (name, IERR, exit number, value count, values), builds the message
// records and hands them to the reporter, storing its result in IFAIL.  ERRBUF may be null for a
// routine without a front.
class FailureExit {
public:
    FailureExit(const char *routine, char *errbuf, int *ifail, Channel channel = Channel::Host);
    // One failure exit; returns the new IFAIL (when control comes back at all).
    int fail(int ierror, long exit_number, const char *message, std::initializer_list<MessageValue> values = {},
             int width = kRecordWidth);
    // Failure exit whose records are already built.
    int fail_with_records(int ierror, long exit_number, const Records &records,
                          std::initializer_list<MessageValue> values = {});
    // The success exit: IFAIL becomes 0, nothing is printed.
    int succeed();
    const char *routine() const { return routine_; }

private:
    void write_errbuf(int ierror, long exit_number, std::initializer_list<MessageValue> values);
    int report(int ierror, const Records &records);
    const char *routine_;
    char *errbuf_;
    int *ifail_;
    Channel channel_;
};

// One failure exit of a family's table: IFAIL, exit number and message text.  A family keeps all its
// exits as one table beside its routines, with an enum naming the rows in table order, and raises a row
// by its key, so that the ERRBUF line and the printed message both follow from the one row.
struct ExitRow {
    int ierror;
    long number;
    const char *text;
};

// Takes the exit ROW of TABLE with its values.
template <std::size_t K, class Key>
int take(FailureExit &exit, const ExitRow (&table)[K], Key row, std::initializer_list<MessageValue> values = {},
         int width = kRecordWidth) {
    const ExitRow &r = table[static_cast<std::size_t>(row)];
    return exit.fail(r.ierror, r.number, r.text, values, width);
}

// Takes the exit ROW of TABLE with WORD (a routine's name, say) pasted where its text has "%s": the word
// becomes part of the message but not a value of the ERRBUF line.
template <std::size_t K, class Key>
int take_pasting(FailureExit &exit, const ExitRow (&table)[K], Key row, std::string_view word,
                 std::initializer_list<MessageValue> values = {}) {
    const ExitRow &r = table[static_cast<std::size_t>(row)];
    std::string text = r.text;
    const std::size_t at = text.find("%s");
    if (at != std::string::npos) text.replace(at, 2, word);
    return exit.fail(r.ierror, r.number, text.c_str(), values);
}

// The two-level front: owns ERRBUF, and after the worker compares the IERR that the failure exit
// wrote with the IFAIL that came back, printing the mismatch line when they differ.
class Front {
public:
    explicit Front(const char *routine);
    char *errbuf() { return errbuf_; }
    void finish(int ifail) const;

private:
    const char *routine_;
    char errbuf_[kErrbufLength];
};

// Parameter reports of routines that check all their arguments and count the errors (the F01 and
// F02 families).  Each adds 1 to *errors, and prints unless IFAIL asks for soft and silent (units digit
// 1 by the signed reading and tens digit 0).  Names and the value are cut to their hidden lengths.
void P01_BAD_INTEGER(long value, const char *name, int ifail, int *errors, const char *srname, int name_len,
                     int srname_len);
void P01_BAD_CHARACTER(const char *value, const char *name, int ifail, int *errors, const char *srname,
                       int value_len, int name_len, int srname_len);
// The stream forms print only the first character of each name and of the value.
void P01_BAD_INTEGER_STREAM(long value, const char *name, int ifail, int *errors, const char *srname,
                            int name_len, int srname_len);
void P01_BAD_CHARACTER_STREAM(const char *value, const char *name, int ifail, int *errors, const char *srname,
                              int value_len, int name_len, int srname_len);
// The closing record once the count is known: "    The input parameters contained %2ld error(s)".
Records parameter_error_count_record(int errors);

// P01_REPORT_NAMED on the stream channel; the record goes to stderr and a hard request returns.
int P01_REPORT_NAMED_STREAM(int ifail, int ierror, const char *srname, const char *varname, int nrec,
                            const char *records, int srname_len, int varname_len, int record_width);
// What a hard request reaches on the stream channel: nothing, so the caller goes on.
void P01_NO_TERMINATE();

// An illegal parameter of a kernel routine (SRNAME of 13 characters, such as "F06PAF/DGEMV "): a hard
// failure on the host channel, whatever the caller asked for.  F06 routines report -1 without a
// variable name, others -PARAM as "INFO".
void F06_BAD_PARAMETER(const char *srname, int param, int srname_len);

// Reading of IFAIL's digits.
struct IfailDigits {
    long units;  // a
    long tens;   // b
};
IfailDigits ifail_digits(int ifail);

} // namespace zek

#endif
