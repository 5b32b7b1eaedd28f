// Line input for the option-file and problem-file readers.
#include <algorithm>
#include <cstring>

#include "frame/ifail.h"
#include "frame/output.h"
#include "frame/sinks.h"
#include "zek2/p01.h"

namespace zek {

void X04BBF(std::FILE *stream, char *record, char *errbuf, int *ifail, int reclen, int errbuf_len) {
    const int errlen = errbuf != nullptr ? std::min(errbuf_len, kErrbufLength) : 0;
    if (errlen > 0) {
        std::memset(errbuf, ' ', static_cast<std::size_t>(errlen));
        std::memcpy(errbuf, "NONE", std::min(4, errlen));
    }
    int ierror = 0;
    Records records;
    if (stream != nullptr) {
        int c = std::getc(stream);
        if (c == EOF) {
            ierror = 1;
            records.add(" ** End of file detected in a READ statement.");
            if (errlen > 0) {
                const std::string line = format("%s ", "X04BBF") + format("%5ld ", 1L) + format("%5ld ", 99998L) +
                                         format("%5ld", 0L);
                std::memcpy(errbuf, line.data(), std::min<std::size_t>(line.size(), static_cast<std::size_t>(errlen)));
            }
        } else {
            // Collect the line; files written with CR LF ends read as with LF ends.
            int n = 0;
            bool pending_cr = false;
            while (c != EOF && c != '\n') {
                if (pending_cr && n < reclen) record[n++] = '\r';
                pending_cr = c == '\r';
                if (!pending_cr && n < reclen) record[n++] = static_cast<char>(c);
                c = std::getc(stream);
            }
            if (n > 0)
                for (int i = n; i < reclen; ++i) record[i] = ' ';
        }
    }
    if (errlen > 0) errbuf[errlen - 1] = '\0';
    const char *data = records.count() > 0 ? records.data() : nullptr;
    *ifail = P01_REPORT(*ifail, ierror, "X04BBF", records.count(), data, 6, records.width());
}

} // namespace zek
