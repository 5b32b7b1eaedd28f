// Text output of the library: the host channel, the stream channel, notices and checked formatting.
// Nothing else in the library calls printf, puts or a C++ stream.
#ifndef ZEK_FRAME_OUTPUT_H
#define ZEK_FRAME_OUTPUT_H

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string>

#if defined(_WIN32)
// The host's print routine, imported from the host's torvic.dll, which is always there when the host
// loads the library.
extern "C" __declspec(dllimport) __attribute__((format(printf, 1, 2))) int __cdecl OldTorviPrintf(
    const char *format, ...);
#define ZEK_HOST_PRINTF(...) ((void)OldTorviPrintf(__VA_ARGS__))

// The system's formatter of the message boxes (USER32): strings and integers, 1024 characters at most.
extern "C" __declspec(dllimport) int __cdecl wsprintfA(char *buffer, const char *format, ...);
#define ZEK_NOTICE_FORMAT(caption, icon, ...)                                         \
    do {                                                                              \
        char zek_box_text_[1025];                                                     \
        (void)sizeof(std::printf(__VA_ARGS__)); /* the format checked, not called */ \
        wsprintfA(zek_box_text_, __VA_ARGS__);                                        \
        zek::notice(caption, zek_box_text_, icon);                                    \
    } while (0)
#else
// The host's print routine.  It is weak: a host that defines and exports it receives all host-channel
// text; without one the text goes to stdout.
extern "C" __attribute__((weak, visibility("default"), format(printf, 1, 2))) int OldTorviPrintf(
    const char *format, ...);

// Calls the host's print routine with a literal format, or printf on stdout when no host defined it.
// A macro so that the compiler checks each call's format against its arguments.
#define ZEK_HOST_PRINTF(...) \
    ((OldTorviPrintf != nullptr) ? (void)OldTorviPrintf(__VA_ARGS__) : (void)std::printf(__VA_ARGS__))

#define ZEK_NOTICE_FORMAT(caption, icon, ...) zek::notice(caption, zek::format(__VA_ARGS__).c_str(), icon)
#endif
// ZEK_NOTICE_FORMAT(caption, icon, format, ...): a notice of formatted text (strings and integers).

namespace zek {

// printf into a std::string.
std::string format(const char *fmt, ...) __attribute__((format(printf, 1, 2)));
std::string vformat(const char *fmt, std::va_list args) __attribute__((format(printf, 1, 0)));

// printf into a fixed buffer, always terminated, cut to fit.
void format_into(char *buffer, std::size_t size, const char *fmt, ...) __attribute__((format(printf, 3, 4)));

// A modal notice: a message box with no owner window on Windows, "caption: text" on stderr elsewhere.
enum class NoticeIcon { None, Stop, Exclamation };
void notice(const char *caption, const char *text, NoticeIcon icon = NoticeIcon::None);

// The units.  A negative unit suppresses output.
int error_unit();
int advisory_unit();
constexpr int kDefaultUnit = 6;

// Host channel: one line of text to the host, its newline to stdout.
void host_line(int unit, const char *text, int length);

// Length of text(1:length) without trailing blanks.
int trimmed_length(const char *text, int length);

// A copy of a blank-padded character argument of the given hidden length (negative counts as 0),
// cut at a NUL if one comes first.
std::string fixed_string(const char *text, int length);

// Stream channel: a line without trailing blanks through X04_STREAM_APPEND.
void stream_line(int unit, const char *text, int length);
// Stream channel, a whole NUL-terminated text as one line.
void stream_text(int unit, const char *text);

} // namespace zek

#endif
