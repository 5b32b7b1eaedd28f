#include "frame/output.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "frame/input_units.h"
#include "zek2/x04.h"

char *ZEK_OUTPUT_PATH = nullptr;
int ZEK_SPARE_WORD = 0;

namespace {
int g_error_unit = zek::kDefaultUnit;
int g_advisory_unit = zek::kDefaultUnit;
// The line the stream channel is building: 510 characters, a newline and the terminator.
char g_stream_buffer[512];
} // namespace

namespace zek {

std::string vformat(const char *fmt, std::va_list args) {
    std::va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    if (needed <= 0) return std::string();
    std::string out(static_cast<std::size_t>(needed) + 1, '\0');
    std::vsnprintf(out.data(), out.size(), fmt, args);
    out.resize(static_cast<std::size_t>(needed));
    return out;
}

std::string format(const char *fmt, ...) {
    std::va_list args;
    va_start(args, fmt);
    std::string out = vformat(fmt, args);
    va_end(args);
    return out;
}

void format_into(char *buffer, std::size_t size, const char *fmt, ...) {
    if (size == 0) return;
    std::va_list args;
    va_start(args, fmt);
    std::vsnprintf(buffer, size, fmt, args);
    va_end(args);
}

#if !defined(_WIN32)
void notice(const char *caption, const char *text, NoticeIcon) {
    std::fprintf(stderr, "%s: %s", caption, text);
    const std::size_t n = std::strlen(text);
    if (n == 0 || text[n - 1] != '\n') std::fputc('\n', stderr);
    std::fflush(stderr);
}
#endif

int error_unit() { return g_error_unit; }
int advisory_unit() { return g_advisory_unit; }

int trimmed_length(const char *text, int length) {
    if (text == nullptr) return 0;
    while (length > 0 && text[length - 1] == ' ') --length;
    return length;
}

std::string fixed_string(const char *text, int length) {
    if (text == nullptr || length <= 0) return std::string();
    const void *nul = std::memchr(text, '\0', static_cast<std::size_t>(length));
    const std::size_t n = nul ? static_cast<std::size_t>(static_cast<const char *>(nul) - text)
                              : static_cast<std::size_t>(length);
    return std::string(text, n);
}

void host_line(int unit, const char *text, int length) {
    if (unit < 0) return;
    // The text is printed whole, trailing blanks included, up to its terminator.  A text that has no
    // terminator inside its slot is cut at the slot's end rather than read beyond it.
    const std::size_t slot = static_cast<std::size_t>(std::max(length, 0));
    if (slot > 0 && strnlen(text, slot) == slot) {
        const std::string bounded(text, slot);
        ZEK_HOST_PRINTF("%s", bounded.c_str());
    } else {
        ZEK_HOST_PRINTF("%s", text);
    }
    std::putchar('\n');
}

void stream_line(int unit, const char *text, int length) {
    if (unit < 0) return;
    const int n = std::min(trimmed_length(text, std::max(length, 0)),
                           static_cast<int>(sizeof g_stream_buffer) - 2);
    format_into(g_stream_buffer, sizeof g_stream_buffer, "%.*s\n", n, text);
    X04_STREAM_APPEND(ZEK_OUTPUT_PATH, g_stream_buffer);
}

void stream_text(int unit, const char *text) {
    stream_line(unit, text, static_cast<int>(std::min<std::size_t>(std::strlen(text), 1u << 20)));
}

} // namespace zek

extern "C" {

void X04_ERROR_UNIT(const int *mode, int *unit) {
    if (*mode == 0) *unit = g_error_unit;
    else if (*mode == 1) g_error_unit = *unit;
}

void X04_ADVISORY_UNIT(const int *mode, int *unit) {
    if (*mode == 0) *unit = g_advisory_unit;
    else if (*mode == 1) g_advisory_unit = *unit;
}

void X04_DEFAULT_UNIT(int mode, int *unit) {
    if (mode == 0) *unit = zek::kDefaultUnit;
}

void X04_HOST_RECORDS(int unit, int nrec, const char *records, int width) {
    for (int i = 0; i < nrec; ++i)
        zek::host_line(unit, records + static_cast<std::ptrdiff_t>(i) * width, width);
}

void X04_STREAM_LINE(int unit, const char *text, int length) { zek::stream_line(unit, text, length); }

void X04_STREAM_APPEND(const char *name, const char *text) {
    if (name == nullptr) {
        if (std::fprintf(stdout, "%s", text) < 0) {
            std::fprintf(stderr, "Unable To Write to the stdout\n");
            std::exit(1);
        }
        std::fflush(stdout);
        return;
    }
    std::FILE *file = std::fopen(name, "a");
    if (file == nullptr) {
        ZEK_NOTICE_FORMAT("", zek::NoticeIcon::None, "Unable To Open Output File: %s\n", name);
        std::exit(1);
    }
    if (std::fprintf(file, "%s", text) < 0) {
        ZEK_NOTICE_FORMAT("", zek::NoticeIcon::None, "Unable To Write to the Output File: %s\n", name);
        std::exit(1);
    }
    if (std::fclose(file) == EOF) {
        ZEK_NOTICE_FORMAT("", zek::NoticeIcon::None, "Unable To Close the Output File: %s\n", name);
        std::exit(1);
    }
}

FILE *X04_OPEN_INPUT(const char *name) {
    if (name == nullptr) {
        zek::notice("", "Attempting to read from stdin in MS Windows environment");
        std::exit(1);
    }
    std::FILE *file = std::fopen(name, "r");
    if (file == nullptr) {
        ZEK_NOTICE_FORMAT("", zek::NoticeIcon::None, "Unable To Open Input File: %s", name);
        std::exit(1);
    }
    return zek::note_input_stream(file);
}

} // extern "C"
