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

/* ---- matrix printers ----
 * X04CDF prints the M by N matrix A (leading dimension LDA) on the advisory unit: MATRIX 'G' general,
 * 'U' or 'L' the upper or lower triangle (the other left blank), DIAG of a triangle 'N' the elements,
 * 'U' 1.0 without reading them, 'B' blank.  The title comes first when not blank, then column blocks
 * of as many columns as fit in NCOLS - INDENT characters (NCOLS outside 1..132 means 80; INDENT below 0
 * or not below the width means 0), each block with its column labels and one line per row, a blank line
 * between blocks.  Every line starts with INDENT blanks; trailing blanks are dropped.
 * Labels: LABROW and LABCOL 'N' none, 'I' the index, 'C' the strings RLABS(1:M) and CLABS(1:N), each of
 * the hidden length of its argument.  A row label is left-justified ('C') or right-justified ('I') in a
 * field as wide as the widest label, then one blank; a column label is right-justified in the number
 * field and cut to its width.
 * FORM: blank chooses F8.4 (%8.4f) when every printed number fits in 8 characters, else F11.4 (%11.4f)
 * when they fit in 11, else 1PE13.4 (%13.4E).  Otherwise FORM is one edit descriptor, in either case and
 * with blanks anywhere, optionally in parentheses: [0P|1P] followed by Fw.d, Ew.d[Ee], ESw.d, Dw.d or
 * Gw.d[Ee], 1 <= w <= 132, d < w; F prints as %w.df, E, ES and D as %w.dE, G as %w.dG; a number that
 * does not fit prints as w asterisks.  A descriptor in which 1.0 or -1.0 does not fit, or any other
 * text, cannot print a number.
 * IFAIL: 1 MATRIX, 2 DIAG, 3 LABROW or LABCOL, 4 FORM '*', 5 FORM longer than 80 characters, 6 FORM
 * that cannot print a number, 7 fewer than one column fits.  LDA below M prints no rows. */
ZEK_API void X04CDF(const char *matrix, const char *diag, const int *m, const int *n, const double a[],
                    const int *lda, const char *form, const char *title, const char *labrow, const char *rlabs,
                    const char *labcol, const char *clabs, const int *ncols, const int *indent, int *ifail,
                    int matrix_len, int diag_len, int form_len, int title_len, int labrow_len, int rlabs_len,
                    int labcol_len, int clabs_len) ZEK_SYMBOL("X04CDF");
ZEK_API void X04CDF_WORKER(const char *matrix, const char *diag, int m, int n, const double a[], int lda,
                           const char *form, const char *title, const char *labrow, const char *rlabs,
                           const char *labcol, const char *clabs, int ncols, int indent, char *errbuf, int *ifail,
                           int matrix_len, int diag_len, int form_len, int title_len, int labrow_len,
                           int rlabs_len, int labcol_len, int clabs_len, int errbuf_len) ZEK_SYMBOL("q64840");

/* X04CCF prints the N by N triangle packed by columns in A (UPLO 'U': A(i + j(j-1)/2) = a(i,j), i <= j;
 * 'L': A(i + (j-1)(2N-j)/2) = a(i,j), i >= j) as X04CDF does with integer labels, the default format, a
 * width of 80 and no indent, reading the packed elements in place.  N below 1 prints the title only.
 * IFAIL 1 for UPLO, 2 for DIAG. */
ZEK_API void X04CCF(const char *uplo, const char *diag, const int *n, const double a[], const char *title, int *ifail,
                    int uplo_len, int diag_len, int title_len) ZEK_SYMBOL("q46441");
ZEK_API void X04CCF_WORKER(const char *uplo, const char *diag, int n, const double a[], const char *title,
                           char *errbuf, int *ifail, int uplo_len, int diag_len, int title_len, int errbuf_len)
    ZEK_SYMBOL("q59002");

ZEK_END_DECLS

#endif
