/* The message catalogue and the raising routines of the C-style layer.
 *
 * Every catalogue entry is "NAME:\n  text", a printf template indexed by its code.  Names beginning
 * ZE_ are errors and ZW_ warnings (the routine produced a result).  The advisory tables of the printing
 * drivers are reached through X04_CHAPTER_MESSAGE.
 */
#ifndef ZEK2_MESSAGES_H
#define ZEK2_MESSAGES_H

#include "types.h"

ZEK_BEGIN_DECLS

/* The 726 templates by code, followed by an empty string. */
ZEK_API extern const char *ZEK_MESSAGE_TABLE[727] ZEK_SYMBOL("q56947");

/* Raises CODE with MESSAGE (null: the catalogue entry, unformatted) for ROUTINE on FAIL.  A nonzero
 * code on a null FAIL, or on one whose print is set, writes a notice on stderr; a null FAIL gets a
 * second notice "...Program Aborted" and control still returns.  With FAIL present the code is stored,
 * the handler (if any) called, and the text copied into FAIL->message. */
ZEK_API void ZEK_RAISE(const char *message, int code, const char *routine, ZekFail *fail) ZEK_SYMBOL("q78426");

/* A handler for ZekFail.handler: appends "\nError from ROUTINE.\n" and the message to the stream
 * channel; code 0 does nothing. */
ZEK_API void ZEK_DEFAULT_PRINT(const char *message, int code, const char *routine) ZEK_SYMBOL("q20748");

/* The name of MESSAGE ("ZE_ALLOC_FAIL" of "ZE_ALLOC_FAIL:\n  ..."), in a static buffer overwritten by
 * the next call.  Code 1 raises ZE_CODE_NOT_SET on FAIL and returns null; a message without a colon
 * raises ZE_ERR_MSG_STRING (2). */
ZEK_API const char *y99abc(int code, const char *message, ZekFail *fail) ZEK_SYMBOL("q53178");

/* Reports illegal parameter NUMBER of ROUTINE (such as "f06pac/dgemv") as code 71, ZE_F06_BAD_PARAM,
 * on a clean fail record of its own that shows the notice; control returns. */
ZEK_API void F06_ARG_ERROR_ENUM(const char *routine, int number) ZEK_SYMBOL("q39778");

ZEK_END_DECLS

#endif
