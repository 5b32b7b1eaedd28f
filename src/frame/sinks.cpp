// Message sinks of the C-style printing drivers: advisory messages to stdout, stderr or a file.
#include <algorithm>
#include <cstring>

#include "frame/advisory.h"
#include "frame/raise.h"
#include "frame/sinks.h"
#include "zek2/x04.h"

namespace zek {

namespace {

struct ChapterTable {
    const char *chapter;
    const char *const *entries;
    int size;
};

constexpr ChapterTable kChapterTables[] = {
    {"E04", kAdvisoryE04, 426}, {"G13", kAdvisoryG13, 42}, {"G02", kAdvisoryG02, 21},
    {"G03", kAdvisoryG03, 9},   {"H02", kAdvisoryH02, 90},
};

const ChapterTable *chapter_table(const char *chapter) {
    if (chapter == nullptr) return nullptr;
    for (const ChapterTable &t : kChapterTables)
        if (std::strncmp(chapter, t.chapter, 4) == 0) return &t;
    return nullptr;
}

} // namespace

std::FILE *X04_MESSAGE_FILE_OPEN(ZekSink *sink) {
    if (sink->opened) {
        if (sink->to_stdout) return stdout;
        if (sink->to_stderr) return stderr;
    } else {
        sink->opened = 1;
        if (std::strcmp(sink->file_name, "stdout") == 0) {
            sink->to_stdout = 1;
            return stdout;
        }
        if (std::strcmp(sink->file_name, "stderr") == 0) {
            sink->to_stderr = 1;
            return stderr;
        }
        if (std::strcmp(sink->file_name, "stdin") == 0) {
            sink->status = ZE_NOT_APPEND_FILE;
            return nullptr;
        }
    }
    std::FILE *file = std::fopen(sink->file_name, "a");
    if (file == nullptr) sink->status = ZE_NOT_APPEND_FILE;
    return file;
}

} // namespace zek

extern "C" int X04_CHAPTER_MESSAGE(ZekSink *sink, const char *text, int index, const ZekMessageControl *control) {
    if (sink == nullptr) return 0;
    if (text == nullptr) {
        const zek::ChapterTable *table = zek::chapter_table(sink->chapter);
        if (table == nullptr || index < 0 || index >= table->size) return 0;
        text = table->entries[index];
    }
    const bool printing = control == nullptr || control->print != 0;
    if (printing && sink->status == 0) {
        std::FILE *stream = zek::X04_MESSAGE_FILE_OPEN(sink);
        if (sink->status == 0 && stream != nullptr) {
            // The message's name and the blank after its colon are not printed.
            const char *colon = std::strchr(text, ':');
            const char *shown = colon != nullptr ? colon + std::min<std::size_t>(2, std::strlen(colon)) : text;
            std::fprintf(stream, "%s", shown);
            if (stream == stdout || stream == stderr) {
                std::fflush(stream);
            } else if (std::ferror(stream)) {
                sink->status = ZE_WRITE_ERROR;
            } else if (std::fclose(stream) == EOF) {
                sink->status = ZE_NOT_CLOSE_FILE;
            }
        }
    }
    if (control != nullptr && control->print_function != nullptr && sink->status == 0)
        return control->print_function(text, index, control->user);
    return 0;
}
