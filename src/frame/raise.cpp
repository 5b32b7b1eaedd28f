// The fail record of the C-style layer: raising, naming and printing coded messages.
#include "frame/raise.h"

#include <cstdarg>
#include <cstring>

#include "frame/output.h"
#include "zek2/messages.h"
#include "zek2/x04.h"

namespace zek {

const char *catalogue_template(int code) {
    return (code >= 0 && code < kCatalogueSize) ? ZEK_MESSAGE_TABLE[code] : "";
}

ZekFail clean_fail() {
    ZekFail fail;
    std::memset(&fail, 0, sizeof fail);
    return fail;
}

void raise_success(ZekFail *fail, const char *routine) {
    if (fail != nullptr) ZEK_RAISE(nullptr, ZE_NOERROR, routine, fail);
}

namespace {

// Fills a catalogue template.  The templates are the library's own table, read at run time, so this
// is the one place where a format is not a literal; the typed wrappers below pass what each
// template's conversions take.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void vraise(ZekFail *fail, const char *routine, int code, std::va_list args) {
    char message[1024];
    std::vsnprintf(message, sizeof message, catalogue_template(code), args);
    ZEK_RAISE(message, code, routine, fail);
}
#pragma GCC diagnostic pop

} // namespace

void raise_formatted(ZekFail *fail, const char *routine, int code, ...) {
    std::va_list args;
    va_start(args, code);
    vraise(fail, routine, code, args);
    va_end(args);
}

void raise_int_arg(ZekFail *fail, const char *routine, int code, const char *name, const char *bound, long value) {
    raise_formatted(fail, routine, code, name, bound, name, value);
}

void raise_real_arg(ZekFail *fail, const char *routine, int code, const char *name, const char *bound, double value) {
    raise_formatted(fail, routine, code, name, bound, name, value);
}

void raise_int_pair(ZekFail *fail, const char *routine, int code, const char *name, long value, const char *other,
                    long other_value) {
    raise_formatted(fail, routine, code, name, value, other, other_value, name, other);
}

bool raise_below(ZekFail *fail, const char *routine, const char *name, long value, const char *bound_name, long bound) {
    if (value >= bound) return false;
    raise_int_pair(fail, routine, ZE_2_INT_ARG_LT, name, value, bound_name, bound);
    return true;
}

void raise_text(ZekFail *fail, const char *routine, int code, const char *text) {
    raise_formatted(fail, routine, code, text);
}

void raise_plain(ZekFail *fail, const char *routine, int code) { raise_formatted(fail, routine, code); }

} // namespace zek

namespace {
// The name y99abc hands back, overwritten by the next call.
char g_message_name[532];
} // namespace

extern "C" {

void ZEK_RAISE(const char *message, int code, const char *routine, ZekFail *fail) {
    if (message == nullptr) message = zek::catalogue_template(code);
    if (routine == nullptr) routine = "";
    if (code != 0 && (fail == nullptr || fail->print != 0)) {
        // The class letter follows the prefix's first letter within the first five characters.
        const char *z = static_cast<const char *>(std::memchr(message, 'Z', strnlen(message, 5)));
        const bool error = z != nullptr && z[1] == 'E';
        if (error)
            ZEK_NOTICE_FORMAT("ZEK_RUNTIME_ERROR", zek::NoticeIcon::Stop, "Error Detected by ZEK Routine %s: %s", routine,
                              message);
        else
            ZEK_NOTICE_FORMAT("ZEK_RUNTIME_WARNING", zek::NoticeIcon::Exclamation, "Warning From ZEK Routine %s: %s",
                              routine, message);
    }
    if (fail == nullptr) {
        // The words stay although nothing is aborted: the caller goes on with its return path.
        if (code != 0) zek::notice("Program Aborted", "...Program Aborted\n", zek::NoticeIcon::Stop);
        return;
    }
    fail->code = code;
    if (fail->handler != nullptr) fail->handler(message, code, routine);
    // Every template and argument the library raises fits; a longer text is cut rather than run past
    // the record.
    std::strncpy(fail->message, message, sizeof fail->message - 1);
    fail->message[sizeof fail->message - 1] = '\0';
}

void ZEK_DEFAULT_PRINT(const char *message, int code, const char *routine) {
    if (code == 0) return;
    X04_STREAM_APPEND(ZEK_OUTPUT_PATH, zek::format("\nError from %s.\n", routine ? routine : "").c_str());
    X04_STREAM_APPEND(ZEK_OUTPUT_PATH, zek::format("%s\n\n", message ? message : "").c_str());
}

const char *y99abc(int code, const char *message, ZekFail *fail) {
    if (code == ZE_CODE_NOT_SET) {
        ZEK_RAISE(nullptr, ZE_CODE_NOT_SET, "y99abc", fail);
        return nullptr;
    }
    if (message == nullptr) message = "";
    zek::format_into(g_message_name, sizeof g_message_name, "%s", message);
    if (char *colon = std::strchr(g_message_name, ':')) {
        *colon = '\0';
        return g_message_name;
    }
    const std::string shown(message, strnlen(message, 400));
    zek::format_into(g_message_name, sizeof g_message_name,
                     "ZE_ERR_MSG_STRING:\n  The string \"%s\",\n  has not been recognised as a valid message string.",
                     shown.c_str());
    ZEK_RAISE(g_message_name, ZE_ERR_MSG_STRING, "y99abc", fail);
    return g_message_name;
}

void F06_ARG_ERROR_ENUM(const char *routine, int number) {
    ZekFail local = zek::clean_fail();
    local.print = 1;
    zek::raise_formatted(&local, routine, ZE_F06_BAD_PARAM, static_cast<long>(number));
}

} // extern "C"
