// The test program is the host: it defines the print routine that receives the library's messages.
#include <cstdarg>
#include <cstdio>

#include "fft_test_support.h"

namespace {
std::string captured;
}

extern "C" __attribute__((visibility("default"))) int OldTorviPrintf(const char *format, ...) {
    char buffer[1024];
    va_list args;
    va_start(args, format);
    const int n = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    // One record per call: trailing blanks dropped, records joined by newlines.
    std::string piece(buffer);
    piece.erase(piece.find_last_not_of(' ') + 1);
    if (!captured.empty()) captured += '\n';
    captured += piece;
    return n;
}

std::string fft_test::host_text(bool clear) {
    std::string text = captured;
    if (clear) captured.clear();
    return text;
}
