// The line reader: the first byte gives the record length (1..128), the rest is the file, read to its
// end one record at a time.
#include <cstdint>
#include <vector>

#include "frame/sinks.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    zek_fuzz::silence_output();
    if (size < 1) return 0;
    const int reclen = 1 + data[0] % 128;
    zek_fuzz::MemoryUnit file(data + 1, size - 1);
    std::vector<char> record(static_cast<std::size_t>(reclen) + 1, '#');
    record[static_cast<std::size_t>(reclen)] = '\0';
    char errbuf[201];
    errbuf[200] = '\0';
    // Every line ends with its newline or the end of the file, so the lines are at most SIZE + 1.
    for (std::size_t line = 0; line <= size + 1; ++line) {
        int ifail = 1;
        zek::X04BBF(file.stream(), record.data(), errbuf, &ifail, reclen, 200);
        if (record[static_cast<std::size_t>(reclen)] != '\0' || errbuf[200] != '\0') __builtin_trap();
        if (ifail != 0) return 0;
    }
    __builtin_trap();  // the reader never reported the end of the file
}
