// The exported option routines: E04WBA, the string and file routines of each solver family with their
// plain entries, the decoders, and the options-file reader.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

#include "frame/ifail.h"
#include "frame/input_units.h"
#include "frame/output.h"
#include "frame/sinks.h"
#include "optimisation/options_tables.h"
#include "zek2/e04.h"

namespace zek::e04 {

namespace {

void say(int unit, const std::string &text) { host_line(unit, text.c_str(), static_cast<int>(text.size())); }

std::string trimmed(const char *text, int length) {
    return std::string(text, static_cast<std::size_t>(trimmed_length(text, length)));
}

// ---- E04WBA ------------------------------------------------------------------------------------------

struct StateLengths {
    const char *name;
    int family;  // -1: a routine this library does not have; only its lengths are checked
    int lcwsav, llwsav, liwsav, lrwsav;
};
const StateLengths kStateLengths[] = {
    {"E04DGA", static_cast<int>(Family::DGA), 1, 120, 610, 475},
    {"E04MFA", static_cast<int>(Family::MFA), 1, 120, 610, 475},
    {"E04NCA", static_cast<int>(Family::NCA), 1, 120, 610, 475},
    {"E04NFA", static_cast<int>(Family::NFA), 1, 120, 610, 475},
    {"E04NKF", -1, 1, 20, 380, 285},
    {"E04UCA", static_cast<int>(Family::UCA), 1, 120, 610, 475},
    {"E04UFF", -1, 5, 120, 610, 475},
    {"E04UGF", -1, 1, 20, 550, 550},
    {"E04UNA", -1, 1, 120, 610, 475},
    {"E04USA", static_cast<int>(Family::USA), 1, 120, 610, 475},
};

void prepare_state(const char *rname, int lcwsav, int *lwsav, int llwsav, int liwsav, int lrwsav, int *ifail,
                   int rname_len) {
    FailureExit exit("E04WBA", nullptr, ifail);
    const std::string given = fixed_string(rname, rname_len);
    std::string name = given;
    while (!name.empty() && name.back() == ' ') name.pop_back();
    for (char &c : name) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));

    const StateLengths *row = nullptr;
    for (const StateLengths &r : kStateLengths)
        if (name == r.name) row = &r;
    if (row == nullptr) {
        Records rec;
        rec.add(format(" %s", "Invalid routine name: ") + format(" %s", given.substr(0, 6).c_str()));
        exit.fail_with_records(1, 99999, rec, {given.substr(0, 6)});
        return;
    }
    if (lcwsav < row->lcwsav || llwsav < row->llwsav || liwsav < row->liwsav || lrwsav < row->lrwsav) {
        // Three lines padded to 70 characters (a longer third line goes on in a fourth).
        Records rec(71);
        rec.add(format("%-70s", "One or more of the workspace array lengths "));
        rec.add(format("%-70s", "is too small"));
        rec.add(format("%-70s", format("Supplied values are: LCWSAV = %ld LLWSAV = %ld LIWSAV = %ld LRWSAV = %ld",
                                       static_cast<long>(lcwsav), static_cast<long>(llwsav),
                                       static_cast<long>(liwsav), static_cast<long>(lrwsav))
                                    .c_str()));
        exit.fail_with_records(2, 99998, rec, {lcwsav, llwsav, liwsav, lrwsav});
        return;
    }
    if (row->family >= 0) {
        const auto f = static_cast<Family>(row->family);
        flag(lwsav, f, Flag::FirstStringCall) = 1;
        flag(lwsav, f, Flag::FirstFileCall) = 1;
        flag(lwsav, f, Flag::OptionsUnset) = 1;
    }
    exit.succeed();
}

// ---- the string routines -----------------------------------------------------------------------------

bool first_word_is(const char *line, int length, const char *word) {
    const Tokens tk = tokenise(line, length);
    return tk.word(0) == word;
}

void apply_list_words(const char *line, int length, int &list) {
    const Tokens tk = tokenise(line, length);
    if (tk.word(0) == "LIST") list = 1;
    else if (tk.word(0) == "NOLIST") list = 0;
}

void string_call(Family f, const char *string, int string_len, bool list_argument, int *lwsav, int *iwsav,
                 double *rwsav, int *inform) {
    int &first = flag(lwsav, f, Flag::FirstStringCall);
    if (first != 0) {
        string_unit_cell(iwsav, f) = advisory_unit();
        first = 0;
    }
    const int unit = string_unit_cell(iwsav, f);
    char line[kLineLength + 1];
    std::memset(line, ' ', kLineLength);
    line[kLineLength] = '\0';
    const std::string given = fixed_string(string, string_len);
    std::memcpy(line, given.data(), std::min<std::size_t>(given.size(), kLineLength));
    const std::string text = trimmed(line, kLineLength);

    int &sequence = flag(lwsav, f, Flag::NewSequence);
    int &list = flag(lwsav, f, Flag::List);
    // The first option call after E04WBA opens a list, as does the first after each solver run.
    if (flag(lwsav, f, Flag::OptionsUnset) != 0) sequence = 1;
    if (sequence == 0) {
        if (list != 0) say(unit, format("      %s", text.c_str()));
        *inform = decode_line(f, line, kLineLength, list != 0, unit, lwsav, iwsav, rwsav);
        apply_list_words(line, kLineLength, list);
        return;
    }
    list = list_argument ? 1 : 0;
    sequence = 0;
    *inform = decode_line(f, line, kLineLength, list != 0, unit, lwsav, iwsav, rwsav);
    apply_list_words(line, kLineLength, list);
    if (list != 0) {
        const char *header = family_tables(f).calls_header;
        say(unit, "");
        say(unit, header);
        say(unit, " ---------------");
        say(unit, format("      %s", text.c_str()));
    }
}

// ---- the options-file reader -------------------------------------------------------------------------

// Reads the next record of 72 characters; false at end of file (or for a unit without a stream).
bool read_record(std::FILE *stream, char record[kLineLength + 1]) {
    std::memset(record, ' ', kLineLength);
    record[kLineLength] = '\0';
    if (stream == nullptr) return false;
    char errbuf[kErrbufLength];
    int ifail = 1;
    X04BBF(stream, record, errbuf, &ifail, kLineLength, kErrbufLength);
    return ifail == 0;
}

void option_file(int unit, int print_unit, ZekOptionDecoder decoder, bool list_argument, int *lwsav, int *iwsav,
                 double *rwsav, int *inform) {
    std::FILE *stream = input_stream(unit);
    int list = list_argument ? 1 : 0;
    int result = 0;
    char record[kLineLength + 1];
    auto decode = [&](const char *line) {
        int decoded = 0;
        if (decoder != nullptr) decoder(line, &list, &print_unit, lwsav, iwsav, rwsav, &decoded, kLineLength);
        if (decoded != 0) result = decoded;
    };

    // Look for BEGIN; SKIP records are passed over, and so are others after a complaint about the first.
    for (bool first = true;; first = false) {
        if (!read_record(stream, record)) {
            if (list != 0)
                say(print_unit, format(" XXX  End-of-file encountered while looking for an OPTIONS file on unit%6ld",
                                       static_cast<long>(unit)));
            *inform = 3;
            return;
        }
        const std::string word = tokenise(record, kLineLength).word(0);
        if (word == "ENDRUN") {
            if (list != 0) say(print_unit, format("      %s", trimmed(record, kLineLength).c_str()));
            *inform = 4;
            return;
        }
        if (word == "BEGIN") break;
        if (first && word != "SKIP" && !word.empty()) {
            if (list != 0) {
                say(print_unit, format(" XXX  Error while looking for an OPTIONS file on unit%7ld",
                                       static_cast<long>(unit)));
                say(print_unit, " XXX  The file should start with BEGIN, SKIP or ENDRUN");
                say(print_unit, " XXX  but the first record found was the following:");
                say(print_unit, format(" -----%s", trimmed(record, kLineLength).c_str()));
                say(print_unit, " XXX  Continuing to look for OPTIONS file...");
            }
            result = 5;
        }
    }
    const std::string begin = trimmed(record, kLineLength);

    auto end_of_file = [&]() {
        if (list != 0)
            say(print_unit, format(" XXX  End-of-file encountered while processing an OPTIONS file on unit%6ld",
                                   static_cast<long>(unit)));
        *inform = 2;
    };
    if (!read_record(stream, record)) return end_of_file();
    decode(record);
    apply_list_words(record, kLineLength, list);
    if (list != 0) {
        say(print_unit, " OPTIONS file");
        say(print_unit, " ------------");
        say(print_unit, format("      %s", begin.c_str()));
        say(print_unit, format("      %s", trimmed(record, kLineLength).c_str()));
    }
    while (!first_word_is(record, kLineLength, "END")) {
        if (!read_record(stream, record)) return end_of_file();
        if (list != 0) say(print_unit, format("      %s", trimmed(record, kLineLength).c_str()));
        decode(record);
        apply_list_words(record, kLineLength, list);
    }
    *inform = result;
}

void file_call(Family f, ZekOptionDecoder decoder, int unit, bool list, int *lwsav, int *iwsav, double *rwsav,
               int *inform) {
    int &first = flag(lwsav, f, Flag::FirstFileCall);
    if (first != 0) {
        file_unit_cell(iwsav, f) = advisory_unit();
        first = 0;
    }
    option_file(unit, file_unit_cell(iwsav, f), decoder, list, lwsav, iwsav, rwsav, inform);
}

void decoder_call(Family f, const char *line, const int *list, const int *unit, int *lwsav, int *iwsav,
                  double *rwsav, int *inform, int line_len) {
    const int result = decode_line(f, line, line_len, list != nullptr && *list != 0, unit != nullptr ? *unit : -1,
                                   lwsav, iwsav, rwsav);
    if (inform != nullptr) *inform = result;
}

} // namespace

} // namespace zek::e04

using zek::e04::Family;

extern "C" {

void E04WBA(const char *rname, char *cwsav, const int *lcwsav, int *lwsav, const int *llwsav, int *iwsav,
            const int *liwsav, double *rwsav, const int *lrwsav, int *ifail, int rname_len, int cwsav_len) {
    (void)cwsav;  // only its length is checked: the library keeps nothing in it
    (void)cwsav_len;
    (void)iwsav;
    (void)rwsav;
    zek::e04::prepare_state(rname, *lcwsav, lwsav, *llwsav, *liwsav, *lrwsav, ifail, rname_len);
}

void E04WBA_PLAIN(const char *rname, char *cwsav, const int *lcwsav, int *lwsav, const int *llwsav, int *iwsav,
                  const int *liwsav, double *rwsav, const int *lrwsav, int *ifail) {
    E04WBA(rname, cwsav, lcwsav, lwsav, llwsav, iwsav, liwsav, rwsav, lrwsav, ifail, 6, 80);
}

#define ZEK_OPTION_FAMILY(FAMILY, STRING, STRING_PLAIN, DECODE)                                                 \
    void DECODE(const char *line, const int *list, const int *unit, int *lwsav, int *iwsav, double *rwsav,      \
                int *inform, int line_len) {                                                                    \
        zek::e04::decoder_call(Family::FAMILY, line, list, unit, lwsav, iwsav, rwsav, inform, line_len);        \
    }                                                                                                           \
    void STRING(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,        \
                int string_len) {                                                                               \
        zek::e04::string_call(Family::FAMILY, string, string_len, *list != 0, lwsav, iwsav, rwsav, inform);     \
    }                                                                                                           \
    void STRING_PLAIN(const char *string, int *lwsav, int *iwsav, double *rwsav, int *inform, int string_len) { \
        *inform = 0;                                                                                            \
        const int list = 0;                                                                                     \
        STRING(string, &list, lwsav, iwsav, rwsav, inform, string_len);                                         \
    }

#define ZEK_OPTION_FILE(FAMILY, FILE_ROUTINE, FILE_PLAIN, DECODE)                                               \
    void FILE_ROUTINE(const int *unit, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform) {   \
        zek::e04::file_call(Family::FAMILY, DECODE, *unit, *list != 0, lwsav, iwsav, rwsav, inform);            \
    }                                                                                                           \
    void FILE_PLAIN(const int *unit, int *lwsav, int *iwsav, double *rwsav, int *inform) {                      \
        *inform = 0;                                                                                            \
        const int list = 0;                                                                                     \
        FILE_ROUTINE(unit, &list, lwsav, iwsav, rwsav, inform);                                                 \
    }

ZEK_OPTION_FAMILY(DGA, E04DKF, E04DKF_PLAIN, E04DGA_DECODE)
ZEK_OPTION_FAMILY(MFA, E04MHF, E04MHF_PLAIN, E04MFA_DECODE)
ZEK_OPTION_FAMILY(NCA, E04NEF, E04NEF_PLAIN, E04NCA_DECODE)
ZEK_OPTION_FAMILY(NFA, E04NHF, E04NHF_PLAIN, E04NFA_DECODE)
ZEK_OPTION_FAMILY(UCA, E04UEF, E04UEF_PLAIN, E04UCA_DECODE)
ZEK_OPTION_FAMILY(USA, E04URF, E04URF_PLAIN, E04USA_DECODE)

ZEK_OPTION_FILE(MFA, E04MFA_OPTION_FILE, E04MFA_OPTION_FILE_PLAIN, E04MFA_DECODE)
ZEK_OPTION_FILE(NCA, E04NCA_OPTION_FILE, E04NCA_OPTION_FILE_PLAIN, E04NCA_DECODE)
ZEK_OPTION_FILE(NFA, E04NFA_OPTION_FILE, E04NFA_OPTION_FILE_PLAIN, E04NFA_DECODE)
ZEK_OPTION_FILE(UCA, E04UCA_OPTION_FILE, E04UCA_OPTION_FILE_PLAIN, E04UCA_DECODE)
ZEK_OPTION_FILE(USA, E04USA_OPTION_FILE, E04USA_OPTION_FILE_PLAIN, E04USA_DECODE)

#undef ZEK_OPTION_FAMILY
#undef ZEK_OPTION_FILE

void E04_OPTION_FILE(int unit, int print_unit, ZekOptionDecoder decoder, int list, int *lwsav, int *iwsav,
                     double *rwsav, int *inform) {
    zek::e04::option_file(unit, print_unit, decoder, list != 0, lwsav, iwsav, rwsav, inform);
}

void E04_OPTION_FILE_BYREF(const int *unit, const int *print_unit, ZekOptionDecoder decoder, const int *list,
                           int *lwsav, int *iwsav, double *rwsav, int *inform) {
    zek::e04::option_file(*unit, *print_unit, decoder, *list != 0, lwsav, iwsav, rwsav, inform);
}

} // extern "C"
