/* Chapter X04: units and text output.
 *
 * A unit is a number whose only use is its sign: a negative unit suppresses the line.  Two channels
 * carry text.  The host channel hands each line to the host's print routine OldTorviPrintf (printf-
 * like; a host defines and exports it), or to stdout when no host defines it, and ends the line with a
 * newline on stdout.  The stream channel appends to the file named by ZEK_OUTPUT_PATH, or to stdout
 * when that word is null.
 */
#ifndef ZEK2_X04_H
#define ZEK2_X04_H

#include <stdio.h>
#include "types.h"

ZEK_BEGIN_DECLS

/* File name for the stream channel, or null for stdout.  Null at load; only the host sets it. */
ZEK_DATA extern char *ZEK_OUTPUT_PATH ZEK_SYMBOL("q52016");
/* A word beside ZEK_OUTPUT_PATH that nothing in the library reads or writes. */
ZEK_DATA extern int ZEK_SPARE_WORD ZEK_SYMBOL("q86923");

/* Error unit: mode 0 reads it into *unit, mode 1 sets it from *unit, other modes do nothing. */
ZEK_API void X04_ERROR_UNIT(const int *mode, int *unit) ZEK_SYMBOL("q58464");
/* Advisory unit, as X04_ERROR_UNIT. */
ZEK_API void X04_ADVISORY_UNIT(const int *mode, int *unit) ZEK_SYMBOL("q89555");
/* Default unit: mode 0 stores 6 in *unit, any other mode does nothing. */
ZEK_API void X04_DEFAULT_UNIT(int mode, int *unit) ZEK_SYMBOL("q54821");

/* Host channel: writes NREC NUL-terminated records at a stride of WIDTH, one line each. */
ZEK_API void X04_HOST_RECORDS(int unit, int nrec, const char *records, int width) ZEK_SYMBOL("q50102");
/* Stream channel: writes TEXT(1:LENGTH) with trailing blanks removed, as one line. */
ZEK_API void X04_STREAM_LINE(int unit, const char *text, int length) ZEK_SYMBOL("q78963");
/* Appends TEXT to the file NAME (opened and closed for this call), or writes it to stdout when NAME is
 * null.  A file that cannot be opened, written or closed ends the process with status 1. */
ZEK_API void X04_STREAM_APPEND(const char *name, const char *text) ZEK_SYMBOL("q47322");
/* Opens NAME for reading and returns the stream.  A null name or a file that cannot be opened ends
 * the process with status 1, after a notice on stderr. */
ZEK_API FILE *X04_OPEN_INPUT(const char *name) ZEK_SYMBOL("q35887");

/* Prints one advisory message of the sink's chapter table: TEXT, or the table's entry INDEX when TEXT
 * is null, without its name prefix.  CONTROL (may be null) can switch printing off and names a user
 * print function, which is called with the full text, INDEX and its user word; its result is returned
 * (0 when none is called).  Failures of the sink are kept in sink->status (78, 79 or 80). */
ZEK_API int X04_CHAPTER_MESSAGE(ZekSink *sink, const char *text, int index, const ZekMessageControl *control)
    ZEK_SYMBOL("q91358");

ZEK_END_DECLS

#endif
