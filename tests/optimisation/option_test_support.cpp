#include "option_test_support.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "frame/input_units.h"
#include "zek2/e04.h"
#include "zek2/x04.h"

namespace zek_test {

OptionState::OptionState(const char *solver) {
    const int lc = 1, ll = 120, li = 610, lr = 475;
    int ifail = 1;
    E04WBA_PLAIN(solver, cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &li, rwsav.data(), &lr, &ifail);
    EXPECT_EQ(ifail, 0) << solver;
}

InputFile::InputFile(const std::string &text) {
    char name[] = "/tmp/zek_input_XXXXXX";
    const int fd = mkstemp(name);
    EXPECT_GE(fd, 0);
    if (fd >= 0) {
        EXPECT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(fd);
    }
    path_ = name;
    stream_ = X04_OPEN_INPUT(path_.c_str());
}

InputFile::~InputFile() {
    zek::forget_input_stream(stream_);
    std::fclose(stream_);
    unlink(path_.c_str());
}

int InputFile::unit() const { return zek::input_unit_number(stream_); }

std::string crlf(const std::string &text) {
    std::string out;
    for (char c : text) {
        if (c == '\n') out += '\r';
        out += c;
    }
    return out;
}

} // namespace zek_test
