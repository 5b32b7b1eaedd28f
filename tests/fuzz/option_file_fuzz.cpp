// Option files of every solver family: the first byte picks the family and the list flag, the rest is
// the file the reader gets as its unit.
#include <cstdint>

#include "fuzz_support.h"

namespace {

using FileRoutine = void (*)(const int *, const int *, int *, int *, double *, int *);

struct Family {
    const char *solver;
    FileRoutine routine;
};

const Family kFamilies[] = {{"E04MFA", E04MFA_OPTION_FILE}, {"E04NCA", E04NCA_OPTION_FILE},
                            {"E04NFA", E04NFA_OPTION_FILE}, {"E04UCA", E04UCA_OPTION_FILE},
                            {"E04USA", E04USA_OPTION_FILE}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    zek_fuzz::silence_output();
    if (size < 1) return 0;
    const Family &family = kFamilies[data[0] % 5];
    const int list = (data[0] / 5) % 2;
    zek_fuzz::OptionStore store(family.solver);
    zek_fuzz::MemoryUnit file(data + 1, size - 1);
    const int unit = file.unit();
    // A file may hold several option sets; each call reads one, until end of file.
    for (int set = 0; set < 64; ++set) {
        int inform = -1;
        family.routine(&unit, &list, store.lwsav.data(), store.iwsav.data(), store.rwsav.data(), &inform);
        if (inform < 0 || inform > 5) __builtin_trap();
        if (inform == 2 || inform == 3 || inform == 4) break;
    }
    return 0;
}
