/* A stand-in for the host's torvic.dll, for running the tour on Windows: zek2.dll imports the host's
 * print routine OldTorviPrintf from torvic.dll.  This one prints on stdout and counts the pieces of
 * text it received, which the tour reads back through TorviPieces. */
#include <stdarg.h>
#include <stdio.h>

static int pieces;

__declspec(dllexport) int OldTorviPrintf(const char *format, ...) {
    va_list args;
    ++pieces;
    va_start(args, format);
    int n = vprintf(format, args);
    va_end(args);
    return n;
}

__declspec(dllexport) int TorviPieces(void) { return pieces; }
