// The matrix printers' FORM grammar and their character options: the first bytes pick the shape,
// options and widths, the rest up to a newline is FORM and after it the title.  A FORM the printer
// refuses must end in its failure exit; an accepted one must print without touching memory it does not
// own (the sanitizers watch the matrix, the labels and the strings, all sized exactly).
#include <cstdint>
#include <vector>

#include "fuzz_support.h"
#include "zek2/x04.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    zek_fuzz::silence_output();
    if (size < 4) return 0;
    const char *const matrices = "GULg", *const diags = "NUBn", *const labels = "NICn";
    const char matrix = matrices[data[0] % 4], diag = diags[(data[0] / 4) % 4];
    const char labrow = labels[(data[0] / 16) % 4], labcol = labels[(data[0] / 64) % 4];
    const int m = data[1] % 7, n = data[2] % 7, lda = m > 0 ? m : 1;
    const int ncols = static_cast<int>(data[3]) - 20, indent = data[3] % 13;
    std::size_t split = 4;
    while (split < size && data[split] != '\n') ++split;
    const std::vector<char> form(data + 4, data + split);
    const std::vector<char> title(split < size ? data + split + 1 : data + size, data + size);
    std::vector<double> a(static_cast<std::size_t>(lda) * (n > 0 ? n : 1));
    for (std::size_t i = 0; i < a.size(); ++i) a[i] = (i % 3 == 0 ? -1.0 : 1.0) * static_cast<double>(i * i) * 1.5e3;
    const char rlabs[] = "row one row two", clabs[] = "c1c2c3c4c5c6";
    int ifail = 1;
    X04CDF(&matrix, &diag, &m, &n, a.data(), &lda, form.empty() ? "" : form.data(),
           title.empty() ? "" : title.data(), &labrow, rlabs, &labcol, clabs, &ncols, &indent, &ifail, 1, 1,
           static_cast<int>(form.size()), static_cast<int>(title.size()), 1, 3, 1, 2);
    std::vector<double> packed(static_cast<std::size_t>(n) * (n + 1) / 2 + 1, 2.5);
    ifail = 1;
    X04CCF(&matrix, &diag, &n, packed.data(), title.empty() ? "" : title.data(), &ifail, 1, 1,
           static_cast<int>(title.size()));
    return 0;
}
