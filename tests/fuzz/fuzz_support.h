// Shared pieces of the fuzz targets: the library's printing sent to /dev/null (so that a long run is
// not spent writing listings), and a stream over the fuzzer's bytes registered as an input unit the
// way X04_OPEN_INPUT registers a file.
#ifndef ZEK_FUZZ_SUPPORT_H
#define ZEK_FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "frame/input_units.h"
#include "zek2/e04.h"

namespace zek_fuzz {

inline void silence_output() {
    static const bool done = [] { return std::freopen("/dev/null", "w", stdout) != nullptr; }();
    (void)done;
}

// The bytes as a read-only stream noted as an input unit; closes and forgets it on scope exit.
class MemoryUnit {
public:
    MemoryUnit(const std::uint8_t *data, std::size_t size) {
        // fmemopen refuses a zero length; an empty file is the stream over one byte already read.
        static char empty = '\n';
        stream_ = size ? fmemopen(const_cast<std::uint8_t *>(data), size, "r") : fmemopen(&empty, 1, "r");
        if (stream_ && !size) (void)std::fgetc(stream_);
        zek::note_input_stream(stream_);
    }
    ~MemoryUnit() {
        if (stream_) {
            zek::forget_input_stream(stream_);
            std::fclose(stream_);
        }
    }
    MemoryUnit(const MemoryUnit &) = delete;
    MemoryUnit &operator=(const MemoryUnit &) = delete;
    std::FILE *stream() const { return stream_; }
    int unit() const { return zek::input_unit_number(stream_); }

private:
    std::FILE *stream_ = nullptr;
};

// A solver's option store, fresh from E04WBA, at the least lengths every solver accepts.
struct OptionStore {
    std::vector<char> cwsav = std::vector<char>(80, ' ');
    std::vector<int> lwsav = std::vector<int>(120, 0), iwsav = std::vector<int>(610, 0);
    std::vector<double> rwsav = std::vector<double>(475, 0.0);
    explicit OptionStore(const char *solver) {
        const int lcwsav = 1, llwsav = 120, liwsav = 610, lrwsav = 475;
        int ifail = 1;
        E04WBA(solver, cwsav.data(), &lcwsav, lwsav.data(), &llwsav, iwsav.data(), &liwsav, rwsav.data(), &lrwsav,
               &ifail, 6, 80);
    }
};

} // namespace zek_fuzz

#endif
