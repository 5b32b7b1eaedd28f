#include "option_test_support.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "frame/input_units.h"
#include "zek2/e04.h"
#include "zek2/x04.h"

namespace zek_test {

Solver solver(zek::e04::Family f) {
    using zek::e04::Family;
    switch (f) {
    case Family::DGA: return {"E04DGA", E04DKF_PLAIN, E04DKF, E04DGA_DECODE};
    case Family::MFA: return {"E04MFA", E04MHF_PLAIN, E04MHF, E04MFA_DECODE};
    case Family::NCA: return {"E04NCA", E04NEF_PLAIN, E04NEF, E04NCA_DECODE};
    case Family::NFA: return {"E04NFA", E04NHF_PLAIN, E04NHF, E04NFA_DECODE};
    case Family::UCA: return {"E04UCA", E04UEF_PLAIN, E04UEF, E04UCA_DECODE};
    case Family::USA: return {"E04USA", E04URF_PLAIN, E04URF, E04USA_DECODE};
    }
    return {};
}

int option(OptionState &s, zek::e04::Family f, const std::string &line) {
    int inform = -1;
    solver(f).plain(line.data(), s.lwsav.data(), s.iwsav.data(), s.rwsav.data(), &inform,
                    static_cast<int>(line.size()));
    return inform;
}

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
