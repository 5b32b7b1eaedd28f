// Option strings of every solver family: the first byte picks the family and the list flag, the rest
// is a sequence of option lines (split at newlines) applied to one fresh store, as a host would call
// the string routine once per line.
#include <cstdint>
#include <cstring>
#include <vector>

#include "fuzz_support.h"

namespace {

using StringRoutine = void (*)(const char *, const int *, int *, int *, double *, int *, int);

struct Family {
    const char *solver;
    StringRoutine routine;
};

const Family kFamilies[] = {{"E04DGA", E04DKF}, {"E04MFA", E04MHF}, {"E04NCA", E04NEF},
                            {"E04NFA", E04NHF}, {"E04UCA", E04UEF}, {"E04USA", E04URF}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    zek_fuzz::silence_output();
    if (size < 1) return 0;
    const Family &family = kFamilies[data[0] % 6];
    const int list = (data[0] / 6) % 2;
    zek_fuzz::OptionStore store(family.solver);
    std::size_t start = 1;
    while (start <= size) {
        std::size_t end = start;
        while (end < size && data[end] != '\n') ++end;
        // The line is copied so that the routine sees exactly its hidden length and no terminator.
        std::vector<char> line(data + start, data + end);
        int inform = 0;
        family.routine(line.empty() ? "" : line.data(), &list, store.lwsav.data(), store.iwsav.data(), store.rwsav.data(), &inform,
                       static_cast<int>(line.size()));
        if (inform != 0 && inform != 5) __builtin_trap();
        start = end + 1;
    }
    return 0;
}
