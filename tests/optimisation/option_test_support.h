// Helpers of the option tests: fresh state arrays and temporary input files opened the way a host
// opens them.
#ifndef ZEK_TESTS_OPTION_TEST_SUPPORT_H
#define ZEK_TESTS_OPTION_TEST_SUPPORT_H

#include <cstdio>
#include <string>
#include <vector>

#include "optimisation/options.h"

namespace zek_test {

// A solver family's name, its two option-string routines (plain, and with a listing flag) and its decoder.
using PlainString = void (*)(const char *, int *, int *, double *, int *, int);
using ListedString = void (*)(const char *, const int *, int *, int *, double *, int *, int);
using Decoder = void (*)(const char *, const int *, const int *, int *, int *, double *, int *, int);
struct Solver {
    const char *name;
    PlainString plain;
    ListedString listed;
    Decoder decode;
};
Solver solver(zek::e04::Family f);

// State arrays of the lengths E04WBA asks for the solvers, prepared for one solver.
struct OptionState {
    explicit OptionState(const char *solver);
    std::vector<char> cwsav = std::vector<char>(80, ' ');
    std::vector<int> lwsav = std::vector<int>(120, 0);
    std::vector<int> iwsav = std::vector<int>(610, 0);
    std::vector<double> rwsav = std::vector<double>(475, 0.0);
};

// A file holding TEXT, opened with X04_OPEN_INPUT; its unit is what a host passes.
class InputFile {
public:
    explicit InputFile(const std::string &text);
    ~InputFile();
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;
    int unit() const;

private:
    std::string path_;
    std::FILE *stream_ = nullptr;
};

// One option string through the family's plain routine; returns its INFORM.
int option(OptionState &s, zek::e04::Family f, const std::string &line);

// TEXT with every "\n" turned into "\r\n".
std::string crlf(const std::string &text);

} // namespace zek_test

#endif
