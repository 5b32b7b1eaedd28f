// The entry point of every test executable.  A routine whose failure control stops the program calls
// exit(0); inside a test that would end the executable early with a status CTest counts as a pass.  An
// exit before the tests have finished (other than in a death test's own child) is therefore turned into
// a failure, status 3.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

bool tests_finished = false;

void refuse_early_exit() {
    if (tests_finished || testing::internal::InDeathTestChild()) return;
    std::fputs("test executable ended before its tests finished\n", stderr);
    std::fflush(nullptr);
    _exit(3);
}

} // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    std::atexit(refuse_early_exit);
    const int status = RUN_ALL_TESTS();
    tests_finished = true;
    return status;
}
