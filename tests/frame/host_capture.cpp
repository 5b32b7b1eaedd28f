#include "host_capture.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>

namespace {
bool g_capturing = false;
std::vector<std::string> g_host_text;
} // namespace

// The host's print routine, as a host program defines it.
extern "C" __attribute__((visibility("default"))) int OldTorviPrintf(const char *format, ...) {
    std::va_list args;
    va_start(args, format);
    char buffer[4096];
    const int n = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    if (g_capturing) g_host_text.emplace_back(buffer);
    else std::fputs(buffer, stdout);
    return n;
}

namespace zek_test {

OutputCapture::OutputCapture() {
    std::fflush(stdout);
    g_host_text.clear();
    g_capturing = true;
    testing::internal::CaptureStdout();
}

OutputCapture::~OutputCapture() { finish(); }

void OutputCapture::finish() {
    if (finished_) return;
    finished_ = true;
    std::fflush(stdout);
    stdout_ = testing::internal::GetCapturedStdout();
    g_capturing = false;
    host_ = g_host_text;
}

const std::vector<std::string> &OutputCapture::host() {
    finish();
    return host_;
}

const std::string &OutputCapture::stdout_text() {
    finish();
    return stdout_;
}

} // namespace zek_test
