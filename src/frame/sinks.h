// Message sinks and line input of the frame, for the printing drivers and the file readers.
#ifndef ZEK_FRAME_SINKS_H
#define ZEK_FRAME_SINKS_H

#include <cstdio>

#include "zek2/types.h"

namespace zek {

// The stream of a sink: its first use decides stdout, stderr or a file opened for appending ("stdin"
// is refused).  A failure sets sink->status to 78 and gives null.
std::FILE *X04_MESSAGE_FILE_OPEN(ZekSink *sink);

// Reads one line of STREAM into RECORD(1:RECLEN), blank padded; the rest of a longer line is skipped,
// a carriage return before the newline is dropped, and an empty line leaves RECORD as it was.  At end
// of file IERROR is 1 (" ** End of file detected in a READ statement."), reported through P01_REPORT
// with the caller's IFAIL.  A null stream reports success.
void X04BBF(std::FILE *stream, char *record, char *errbuf, int *ifail, int reclen, int errbuf_len);

} // namespace zek

#endif
