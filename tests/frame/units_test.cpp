// Units, the two channels, file output and its failures, message sinks, line input, the banner.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "frame/ifail.h"
#include "frame/sinks.h"
#include "host_capture.h"
#include "zek2/a00.h"
#include "zek2/messages.h"
#include "zek2/x04.h"

namespace {

using zek_test::OutputCapture;

// A file in the temporary directory.
struct TempFile {
    explicit TempFile(const std::string &contents) {
        char name[] = "/tmp/zek_units_XXXXXX";
        close(mkstemp(name));
        std::ofstream(path = name, std::ios::binary) << contents;
    }
    ~TempFile() { std::remove(path.c_str()); }  // removed at the end
    std::string read() const {
        std::stringstream s;
        s << std::ifstream(path, std::ios::binary).rdbuf();
        return s.str();
    }
    std::string path;
};

TEST(Units, ModesReadSetOrIgnore) {
    int unit = 0, read = 0, set = 1, other = 2;
    X04_ERROR_UNIT(&read, &unit);
    EXPECT_EQ(unit, 6);
    int nine = 9, six = 6;
    X04_ADVISORY_UNIT(&set, &nine);
    unit = 42;
    X04_ADVISORY_UNIT(&other, &unit);  // mode 2 touches neither the unit nor the target
    EXPECT_EQ(unit, 42);
    X04_ADVISORY_UNIT(&read, &unit);
    EXPECT_EQ(unit, 9);
    X04_ADVISORY_UNIT(&set, &six);
    unit = 0;
    X04_DEFAULT_UNIT(1, &unit);  // mode 1 leaves the target alone
    const int kept = unit;
    X04_DEFAULT_UNIT(0, &unit);
    EXPECT_TRUE(kept == 0 && unit == 6);
}

TEST(HostChannel, KeepsTrailingBlanksCutsUnterminatedRecordsAndEndsWithNewlineOnStdout) {
    const char records[2][8] = {"ab  ", "c"}, unterminated[6] = {'a', 'b', 'c', 'd', 'e', 'f'};  // no terminator
    OutputCapture out;
    X04_HOST_RECORDS(6, 2, records[0], 8);
    X04_HOST_RECORDS(-1, 2, records[0], 8);  // a negative unit suppresses
    X04_HOST_RECORDS(6, 2, unterminated, 3);
    EXPECT_EQ(out.host(), (std::vector<std::string>{"ab  ", "c", "abc", "def"}));
    EXPECT_EQ(out.stdout_text(), "\n\n\n\n");
}

TEST(StreamChannel, CutsTrailingBlanksToTheLength) {
    for (const auto &[text, length, printed] :
         {std::tuple{" ", 1, "\n"}, {"abc   ", 6, "abc\n"}, {"abcdef", 3, "abc\n"}, {"x", -4, "\n"}}) {
        OutputCapture out;
        X04_STREAM_LINE(6, text, length);
        X04_STREAM_LINE(-1, text, length);
        EXPECT_EQ(out.stdout_text(), printed) << text;
        EXPECT_TRUE(out.host().empty());
    }
}

TEST(StreamChannel, AppendsToTheOutputPathLineByLine) {
    TempFile file("first\n");
    std::string name = file.path;
    ZEK_OUTPUT_PATH = &name[0];
    X04_STREAM_LINE(6, "second  ", 8);
    ZEK_OUTPUT_PATH = nullptr;
    EXPECT_EQ(file.read(), "first\nsecond\n");
}

TEST(StreamChannelDeath, UnopenableFilesEndWithStatusOne) {
    EXPECT_EXIT(X04_STREAM_APPEND("/nonexistent-dir/zek/out.txt", "x"), testing::ExitedWithCode(1),
                "Unable To Open Output File: /nonexistent-dir/zek/out.txt");
    EXPECT_EXIT(X04_OPEN_INPUT(nullptr), testing::ExitedWithCode(1), "Attempting to read from stdin");
    EXPECT_EXIT(X04_OPEN_INPUT("/nonexistent-dir/in.txt"), testing::ExitedWithCode(1),
                "Unable To Open Input File: /nonexistent-dir/in.txt");
}

ZekSink sink_for(const char *name, const char *chapter) {
    ZekSink sink;
    std::memset(&sink, 0, sizeof sink);
    std::snprintf(sink.file_name, sizeof sink.file_name, "%s", name);
    sink.chapter = chapter;
    return sink;
}

struct PrintCall {
    std::string text;
    int index = -1, calls = 0;
} g_print;

int record_print(const char *text, int index, void *user) {
    g_print = {text, index, g_print.calls + 1};
    return *static_cast<int *>(user);
}

TEST(ChapterMessage, PrintsWithoutNamePrefixAndCallsThePrintFunction) {
    TempFile file("");
    ZekSink sink = sink_for(file.path.c_str(), "H02");
    int result = 17;
    ZekMessageControl control{1, &result, record_print};
    g_print = {};
    EXPECT_EQ(X04_CHAPTER_MESSAGE(&sink, "ZM_X: value 3\n", 5, &control), 17);
    EXPECT_EQ(X04_CHAPTER_MESSAGE(&sink, "no colon here\n", 6, nullptr), 0);
    EXPECT_TRUE(file.read() == "value 3\nno colon here\n" && sink.status == 0);
    EXPECT_TRUE(g_print.text == "ZM_X: value 3\n" && g_print.index == 5);  // the user function sees the prefix

    control.print = 0;  // printing off: nothing written, the user function still called
    X04_CHAPTER_MESSAGE(&sink, "ZM_Y: hidden\n", 7, &control);
    EXPECT_EQ(file.read(), "value 3\nno colon here\n");
    EXPECT_EQ(g_print.index, 7);
}

TEST(ChapterMessage, TableEntryOnStdoutAndStdinOrMissingSinksFailWith78Silently) {
    ZekSink sink = sink_for("stdout", "E04"), in = sink_for("stdin", "G02");
    int result = 1;
    ZekMessageControl control{1, &result, record_print};
    g_print = {};
    OutputCapture out;
    X04_CHAPTER_MESSAGE(&sink, nullptr, 0, nullptr);  // entry 0 of the chapter's table
    EXPECT_EQ(sink.to_stdout, 1);
    EXPECT_EQ(X04_CHAPTER_MESSAGE(&in, "ZM_A: text\n", 1, &control), 0);
    EXPECT_EQ(in.status, 78);
    EXPECT_EQ(g_print.calls, 0);
    EXPECT_EQ(out.stdout_text(), "Dummy message for Chapter e04\n");
    ZekSink missing = sink_for("/nonexistent-dir/sink.txt", "G03");
    EXPECT_EQ((X04_CHAPTER_MESSAGE(&missing, "ZM_A: text\n", 1, nullptr), missing.status), 78);
}

TEST(LineInput, ReadsPadsSkipsAndReportsEndOfFile) {
    TempFile file("short\r\n\r\na line that is longer than the record\nlast");
    std::FILE *stream = std::fopen(file.path.c_str(), "r");
    ASSERT_NE(stream, nullptr);
    char record[12];
    char errbuf[zek::kErrbufLength];
    int ifail;
    auto read = [&] {
        ifail = 1;
        zek::X04BBF(stream, record, errbuf, &ifail, 10, zek::kErrbufLength);
        return std::string(record, 10);
    };
    std::memset(record, '#', sizeof record);
    EXPECT_EQ(read(), "short     ");  // CR LF ends read as LF ends
    EXPECT_TRUE(ifail == 0 && std::string(errbuf, 4) == "NONE" && std::strlen(errbuf) == 199u);
    EXPECT_EQ(read(), "short     ");  // an empty line leaves the record as it was
    EXPECT_EQ(read(), "a line tha");  // the rest of a long line is skipped
    EXPECT_EQ(read(), "last      ");
    OutputCapture out;
    read();
    EXPECT_TRUE(ifail == 1 && out.host().empty());  // end of file, soft and silent
    EXPECT_EQ(std::string(errbuf, 29), "X04BBF     1 99998     0     ");
    std::fclose(stream);
    zek::X04BBF(nullptr, record, errbuf, &ifail, 10, zek::kErrbufLength);  // no stream: nothing to read, no failure
    EXPECT_EQ(ifail, 0);
}

TEST(Banner, PrintsTheFirstSevenRecordsAndTheLast) {
    OutputCapture out;
    A00_BANNER();
    const std::vector<std::string> expected = {
        " *** Start of ZEK Library implementation details ***", " ", " Implementation title: Generalised Base Version",
        "            Precision: FORTRAN double precision", "         Product Code: QXMOD07D", "                 Mark: 03C",
        " ", " *** End of ZEK Library implementation details ***"};
    EXPECT_EQ(out.host(), expected);
    EXPECT_EQ(out.stdout_text(), std::string(8, '\n'));
}

TEST(DefaultPrint, WritesNameAndMessageOnTheStreamChannel) {
    OutputCapture out;
    ZEK_DEFAULT_PRINT("ZE_ALLOC_FAIL:\n  Memory allocation failed.", 73, "m01esc");
    ZEK_DEFAULT_PRINT("ignored", 0, "m01esc");
    EXPECT_EQ(out.stdout_text(), "\nError from m01esc.\nZE_ALLOC_FAIL:\n  Memory allocation failed.\n\n");
}

} // namespace
