// Input units: how an INTEGER unit argument of the file readers reaches its stream.
//
// A host opens an option file or a problem file with X04_OPEN_INPUT, which returns a FILE *, and hands
// the readers that stream as their integer unit argument.  On the 32-bit ABI the integer holds the
// whole address.  On a 64-bit ABI an int cannot hold an address, so the unit number is the low 32 bits
// of the stream's address, which is exactly what a host gets when it stores the result of
// X04_OPEN_INPUT in an int.  X04_OPEN_INPUT notes every stream it opens in a small table, and the
// readers find the stream whose low 32 bits equal the unit number (the most recent one should two
// ever share them).  A unit number that names no noted stream reads as an empty file: the readers
// report end of file, they never touch an address they were not given by the library.
#ifndef ZEK_FRAME_INPUT_UNITS_H
#define ZEK_FRAME_INPUT_UNITS_H

#include <cstdio>

namespace zek {

// Notes a stream opened for input and returns it (null is returned unnoted).
std::FILE *note_input_stream(std::FILE *stream);
// The unit number of a stream: the low 32 bits of its address.
int input_unit_number(const std::FILE *stream);
// The noted stream of a unit number, or null.
std::FILE *input_stream(int unit);
// Drops a stream from the table, for a caller about to close it (a no-op for an unknown stream).
void forget_input_stream(const std::FILE *stream);

} // namespace zek

#endif
