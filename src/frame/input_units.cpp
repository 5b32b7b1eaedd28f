// The table of input streams behind the unit numbers of the file readers.
#include "frame/input_units.h"

#include <cstdint>

namespace {

// Streams a host holds open at one time are few; the oldest entry gives way when the table is full.
constexpr int kTableSize = 32;
std::FILE *g_streams[kTableSize] = {};
int g_next = 0;

} // namespace

namespace zek {

int input_unit_number(const std::FILE *stream) {
    const auto address = reinterpret_cast<std::uintptr_t>(stream);
    return static_cast<int>(static_cast<std::uint32_t>(address & 0xFFFFFFFFu));
}

std::FILE *note_input_stream(std::FILE *stream) {
    if (stream == nullptr) return stream;
    for (std::FILE *&entry : g_streams)
        if (entry == stream) entry = nullptr;  // noted again: move it to the most recent place
    g_streams[g_next] = stream;
    g_next = (g_next + 1) % kTableSize;
    return stream;
}

std::FILE *input_stream(int unit) {
    // Newest first, so that a reused low word resolves to the stream opened last.
    for (int k = 1; k <= kTableSize; ++k) {
        std::FILE *entry = g_streams[(g_next - k + kTableSize) % kTableSize];
        if (entry != nullptr && input_unit_number(entry) == unit) return entry;
    }
    return nullptr;
}

void forget_input_stream(const std::FILE *stream) {
    for (std::FILE *&entry : g_streams)
        if (entry == stream && stream != nullptr) entry = nullptr;
}

} // namespace zek
