// Captures both output channels the way a host sees them: the text handed to the host's print routine
// (this test program defines OldTorviPrintf, as a host does) and what reaches stdout.
#ifndef ZEK_TESTS_HOST_CAPTURE_H
#define ZEK_TESTS_HOST_CAPTURE_H

#include <string>
#include <vector>

namespace zek_test {

// While a capture is alive, host-channel text is collected instead of printed, and stdout is captured.
class OutputCapture {
public:
    OutputCapture();
    ~OutputCapture();
    // Ends the capture (once) and returns what the host received, one element per call of its print
    // routine.
    const std::vector<std::string> &host();
    // What reached stdout (the newlines that end host lines, and stream-channel text).
    const std::string &stdout_text();

private:
    void finish();
    bool finished_ = false;
    std::vector<std::string> host_;
    std::string stdout_;
};

} // namespace zek_test

#endif
