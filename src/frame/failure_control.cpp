// The reporters of the IFAIL layer: what IFAIL's digits ask for, printed on the host or stream channel.
#include <cstdlib>
#include <cstring>

#include "frame/ifail.h"
#include "frame/output.h"
#include "zek2/p01.h"
#include "zek2/x04.h"

namespace zek {

IfailDigits ifail_digits(int ifail) {
    const long t = ifail / 10;
    const long a = std::labs(static_cast<long>(ifail) - 10 * t);
    return {a, t % 10};
}

namespace {

constexpr const char *kSoftLine = " ** ZEK soft failure - control returned";
constexpr const char *kHardLine = " ** ZEK hard failure - execution terminated";

// IFAIL values read outside the digit rule: hard and noisy, soft and noisy, records only.
bool is_special_request(int ifail) { return ifail == 0 || ifail == -1 || ifail == -13; }

// Step 2 of every reporter: a silent request returns at once.
bool silent_request(int ifail) {
    if (is_special_request(ifail)) return false;
    return ifail < 1 || ifail_digits(ifail).tens == 0;
}

} // namespace

// The steps the host reporters share before their abnormal-exit line: nothing for success or a silent
// request, else the records on the error unit; -13 stops there.  True when the report is complete.
bool records_end_the_report(int ifail, int ierror, int nrec, const char *records, int record_width, int *unit) {
    if (ierror == 0 || silent_request(ifail)) return true;
    *unit = error_unit();
    if (records != nullptr) X04_HOST_RECORDS(*unit, nrec, records, record_width);
    return ifail == -13;
}

namespace {

bool soft_request(int ifail) { return ifail_digits(ifail).units == 1; }

void host_text_line(int unit, const std::string &text) {
    host_line(unit, text.c_str(), static_cast<int>(text.size()));
}

// The abnormal-exit tail shared by the host reporters: newline, the line, then soft or hard.
int finish_on_host(int ifail, int ierror, int unit, const std::string &abnormal_line) {
    std::putchar('\n');
    host_text_line(unit, abnormal_line);
    if (soft_request(ifail)) {
        host_text_line(unit, kSoftLine);
        return ierror;
    }
    host_text_line(unit, kHardLine);
    std::fflush(nullptr);
    std::exit(0);
}

int finish_on_stream(int ifail, int ierror, int unit, const std::string &abnormal_line) {
    stream_text(unit, abnormal_line.c_str());
    if (soft_request(ifail)) {
        stream_text(unit, kSoftLine);
        return ierror;
    }
    // Beneath the C-style layer a hard request must not end the process: the words stay, the
    // caller goes on and reports through its fail record.
    stream_text(unit, kHardLine);
    P01_NO_TERMINATE();
    return ierror;
}

bool parameter_report_is_silent(int ifail) {
    const long t = ifail / 10;
    return static_cast<long>(ifail) - 10 * t == 1 && t % 10 == 0;
}

} // namespace

void P01_NO_TERMINATE() {}

int P01_REPORT_NAMED_STREAM(int ifail, int ierror, const char *srname, const char *varname, int nrec,
                            const char *records, int srname_len, int varname_len, int /*record_width*/) {
    if (ierror == 0) return 0;
    if (silent_request(ifail)) return ierror;
    int unit = 0;
    X04_DEFAULT_UNIT(0, &unit);
    if (nrec != 0 && records != nullptr) std::fprintf(stderr, "%s\n", records);
    if (ifail == -13) return ierror;
    const std::string name = fixed_string(srname, srname_len);
    const std::string var = fixed_string(varname, trimmed_length(varname, varname_len));
    const std::string line =
        var.empty() ? format(" ** ABNORMAL EXIT from ZEK Library routine %6.6s", name.c_str())
                    : format(" ** ABNORMAL EXIT from ZEK Library routine %6.6s: %s = %6ld", name.c_str(),
                             var.c_str(), static_cast<long>(ierror));
    return finish_on_stream(ifail, ierror, unit, line);
}

void F06_BAD_PARAMETER(const char *srname, int param, int srname_len) {
    const std::string name = fixed_string(srname, srname_len);
    const bool kernel = name.compare(0, 3, "F06") == 0;
    const Records records = build_records({" ** On entry to %13s", " parameter number %2ld had an illegal value"},
                                          {name, static_cast<long>(param)});
    P01_REPORT_NAMED(0, kernel ? -1 : -param, srname, kernel ? "    " : "INFO", 1, records.data(), 6, 4,
                     kRecordWidth);
}

namespace {

void bad_parameter_on_host(const std::vector<std::string> &pieces, std::initializer_list<MessageValue> values) {
    const Records records = build_records(pieces, values, 65);
    const int unit = error_unit();
    host_line(unit, "", 0);
    X04_HOST_RECORDS(unit, records.count(), records.data(), records.width());
}

} // namespace

void P01_BAD_INTEGER(long value, const char *name, int ifail, int *errors, const char *srname, int name_len,
                     int srname_len) {
    ++*errors;
    if (parameter_report_is_silent(ifail)) return;
    bad_parameter_on_host({" *****  Parameter  %s  is invalid in routine  ", "%s  ***** ", "\n",
                           "        Value supplied is %6ld"},
                          {fixed_string(name, name_len), fixed_string(srname, srname_len), value});
}

void P01_BAD_CHARACTER(const char *value, const char *name, int ifail, int *errors, const char *srname,
                       int value_len, int name_len, int srname_len) {
    ++*errors;
    if (parameter_report_is_silent(ifail)) return;
    bad_parameter_on_host({" *****  Parameter  %s  is invalid in routine  ", "%s  ***** ", "\n",
                           "        Value supplied is", "\n", "        %s"},
                          {fixed_string(name, name_len), fixed_string(srname, srname_len),
                           fixed_string(value, value_len)});
}

namespace {
// The stream forms build their text in one step through this buffer.
char g_parameter_text[512];

const char *first_char(const char *s) { return s != nullptr ? s : ""; }
} // namespace

void P01_BAD_INTEGER_STREAM(long value, const char *name, int ifail, int *errors, const char *srname,
                            int /*name_len*/, int /*srname_len*/) {
    ++*errors;
    if (parameter_report_is_silent(ifail)) return;
    format_into(g_parameter_text, sizeof g_parameter_text,
                " *****  Parameter  %1.1s  is invalid in routine  %1.1s  ***** \n        Value supplied is %6ld",
                first_char(name), first_char(srname), value);
    const int unit = error_unit();
    stream_line(unit, " ", 1);
    stream_text(unit, g_parameter_text);
}

void P01_BAD_CHARACTER_STREAM(const char *value, const char *name, int ifail, int *errors, const char *srname,
                              int /*value_len*/, int /*name_len*/, int /*srname_len*/) {
    ++*errors;
    if (parameter_report_is_silent(ifail)) return;
    format_into(g_parameter_text, sizeof g_parameter_text,
                " *****  Parameter  %1.1s  is invalid in routine  %1.1s  ***** \n        Value supplied is\n"
                "        %1.1s",
                first_char(name), first_char(srname), first_char(value));
    const int unit = error_unit();
    stream_line(unit, " ", 1);
    stream_text(unit, g_parameter_text);
}

Records parameter_error_count_record(int errors) {
    return build_records({"    The input parameters contained %2ld error(s)"}, {static_cast<long>(errors)});
}

} // namespace zek

using zek::fixed_string;

extern "C" {

int P01_REPORT(int ifail, int ierror, const char *srname, int nrec, const char *records, int srname_len,
               int record_width) {
    int unit = 0;
    if (zek::records_end_the_report(ifail, ierror, nrec, records, record_width, &unit)) return ierror;
    const std::string name = fixed_string(srname, srname_len);
    return zek::finish_on_host(ifail, ierror, unit,
                               zek::format(" ** ABNORMAL EXIT from ZEK Library routine %s: IFAIL =%6ld",
                                           name.c_str(), static_cast<long>(ierror)));
}

int P01_REPORT_BYREF(const int *ifail, const int *ierror, const char *srname, const int *nrec, const char *records,
                     int srname_len, int record_width) {
    return P01_REPORT(*ifail, *ierror, srname, *nrec, records, srname_len, record_width);
}

int P01_REPORT_STREAM(int ifail, int ierror, const char *srname, int nrec, const char *records, int srname_len,
                      int /*record_width*/) {
    if (ierror == 0) return 0;
    if (zek::silent_request(ifail)) return ierror;
    int unit = 0;
    X04_DEFAULT_UNIT(0, &unit);
    if (nrec != 0 && records != nullptr) zek::stream_text(unit, records);
    if (ifail == -13) return ierror;
    const std::string name = fixed_string(srname, srname_len);
    return zek::finish_on_stream(ifail, ierror, unit,
                                 zek::format(" ** ABNORMAL EXIT from ZEK Library routine %s: IFAIL =%6ld **",
                                             name.c_str(), static_cast<long>(ierror)));
}

int P01_REPORT_NAMED(int ifail, int ierror, const char *srname, const char *varname, int nrec, const char *records,
                     int srname_len, int varname_len, int record_width) {
    int unit = 0;
    if (zek::records_end_the_report(ifail, ierror, nrec, records, record_width, &unit)) return ierror;
    const std::string name = fixed_string(srname, srname_len);
    const std::string var = fixed_string(varname, zek::trimmed_length(varname, varname_len));
    std::string line = zek::format(" ** ABNORMAL EXIT from ZEK Library routine %s", name.c_str());
    if (!var.empty()) line += zek::format(": %s", var.c_str()) + zek::format(" =%6ld", static_cast<long>(ierror));
    return zek::finish_on_host(ifail, ierror, unit, line);
}

void F06_BAD_PARAMETER_STREAM(const char *srname, int param, int srname_len) {
    const std::string name = fixed_string(srname, srname_len);
    const bool kernel = name.compare(0, 3, "F06") == 0;
    char record[zek::kRecordWidth + 48];
    zek::format_into(record, sizeof record, " ** On entry to %13s parameter number %2ld had an illegal value",
                     name.c_str(), static_cast<long>(param));
    zek::P01_REPORT_NAMED_STREAM(0, kernel ? -1 : -param, srname, kernel ? "    " : "INFO", 1, record, 13, 4,
                                 zek::kRecordWidth);
}

} // extern "C"
