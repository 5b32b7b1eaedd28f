/* Shared types and declaration macros of the ZEK2 library.
 *
 * Every public routine is declared once, in its chapter header, under its routine name and with its
 * export symbol attached by ZEK_SYMBOL. C and C++ callers write the routine name; a host that loads
 * the library at run time binds the export symbol (for example "q76226").
 *
 * Argument conventions: integers and logicals are int (32-bit, zero is false); reals are double; a
 * complex number is two consecutive doubles, real part first; a character argument is a pointer to
 * blank-padded characters without terminator whose length follows all visible arguments as a hidden
 * int; matrices are column-major with a leading dimension and all index formulae are one-based.
 */
#ifndef ZEK2_TYPES_H
#define ZEK2_TYPES_H

#include <stdint.h>

#if defined(__cplusplus)
#define ZEK_BEGIN_DECLS extern "C" {
#define ZEK_END_DECLS }
#else
#define ZEK_BEGIN_DECLS
#define ZEK_END_DECLS
#endif

/* The calling convention of every exported routine and of every function the caller passes in (user
 * functions, fail handlers, print functions, comparison functions): on 32-bit Windows the callee pops
 * its arguments (stdcall), as the host expects; elsewhere the platform's C convention.  Declare a
 * function-pointer type as  typedef void (ZEK_CALLBACK *Name)(...);  and nothing else changes. */
#if defined(_WIN32) && defined(__i386__)
#define ZEK_CALLBACK __attribute__((stdcall))
#else
#define ZEK_CALLBACK
#endif

/* An exported routine: its calling convention and, on ELF platforms, default visibility (the library is
 * built with hidden visibility, so only ZEK_API names reach the dynamic symbol table; a Windows build
 * exports through its module definition instead).  An exported data word is declared ZEK_DATA. */
#if defined(_WIN32)
#define ZEK_API ZEK_CALLBACK
#define ZEK_DATA
#else
#define ZEK_API ZEK_CALLBACK __attribute__((visibility("default")))
#define ZEK_DATA __attribute__((visibility("default")))
#endif
/* The export symbol of a routine: an assembler label, fixed here and nowhere else.  On 32-bit Windows
 * the object file carries it with the C prefix "_", so that the module definition, which names C
 * symbols, finds it and exports it decorated with its argument bytes ("_q39576@36"). */
#if defined(_WIN32) && defined(__i386__)
#define ZEK_SYMBOL(s) __asm__("_" s)
#else
#define ZEK_SYMBOL(s) __asm__(s)
#endif
/* A second name of a body defined in the same translation unit (several export symbols on one body):
 *     double X01_PI_ALIAS(void) ZEK_ALIAS("q29759");
 * The leading "*" names the target's assembler symbol as it stands, which PE objects need; no exception
 * crosses the library's C interface, so an alias is as nothrow as its target. */
#if defined(_WIN32) && defined(__i386__)
#define ZEK_ALIAS(s) __attribute__((alias("*_" s), nothrow))
#elif defined(_WIN32)
#define ZEK_ALIAS(s) __attribute__((alias("*" s), nothrow))
#else
#define ZEK_ALIAS(s) __attribute__((alias(s)))
#endif

ZEK_BEGIN_DECLS

/* Handler of a fail record: called on each raise with the message, its code and the routine name. */
typedef void (ZEK_CALLBACK *ZekFailHandler)(const char *message, int code, const char *routine);

/* The fail record of the C-style layer, owned by the caller and passed last to every lower-case
 * routine.  A null pointer is allowed: failures are then shown as notices on stderr. */
typedef struct ZekFail {
    int32_t code;          /* code of the last raise, 0 for none */
    uint8_t print;         /* nonzero: show a notice on every raise with a nonzero code */
    char message[515];     /* complete text of the last raise */
    ZekFailHandler handler; /* called on each raise, or null */
    int32_t errnum;        /* cleared with the rest, not otherwise used */
} ZekFail;

/* A message sink of the printing drivers of the C-style layer.  Its first use decides whether it
 * writes to stdout, stderr or appends to the named file; status keeps the first failure code. */
typedef struct ZekSink {
    uint8_t opened;
    uint8_t to_stdout;
    uint8_t to_stderr;
    char file_name[512];
    const char *chapter;   /* "E04", "G13", "G02", "G03" or "H02": its advisory table */
    int32_t status;        /* 0 while all is well, else a message code */
} ZekSink;

/* User print function of a message control: receives the text, the message index and the user word. */
typedef int (ZEK_CALLBACK *ZekPrintFunction)(const char *text, int index, void *user);

/* The printing part of the option structures of the C-style routines that print. */
typedef struct ZekMessageControl {
    uint8_t print;                   /* zero: nothing is written to the sink */
    void *user;                      /* passed through to print_function */
    ZekPrintFunction print_function; /* called after printing, or null */
} ZekMessageControl;

ZEK_END_DECLS

#endif
