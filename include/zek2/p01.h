/* Chapter P01: failure control of the IFAIL layer.
 *
 * IFAIL on entry is read as decimal digits: the units digit a = |IFAIL - 10t| (t = IFAIL/10,
 * truncated) asks for a soft failure when it is 1 and a hard one otherwise; the tens digit b = t mod 10
 * asks for messages when nonzero.  IFAIL 0 is hard and noisy, -1 soft and noisy, -13 prints the
 * message records only.  A hard failure ends the process with exit(0).
 *
 * Message records: NREC NUL-terminated strings at a stride of the record width.
 */
#ifndef ZEK2_P01_H
#define ZEK2_P01_H

#include "types.h"

ZEK_BEGIN_DECLS

/* Reports the outcome IERROR of routine SRNAME on the host channel, as IFAIL asks, and returns IERROR
 * (0 prints nothing).  Hard requests end the process with status 0. */
ZEK_API int P01_REPORT(int ifail, int ierror, const char *srname, int nrec, const char *records,
                       int srname_len, int record_width) ZEK_SYMBOL("q76226");

/* P01_REPORT with IFAIL, IERROR and NREC by reference. */
ZEK_API int P01_REPORT_BYREF(const int *ifail, const int *ierror, const char *srname, const int *nrec,
                             const char *records, int srname_len, int record_width) ZEK_SYMBOL("q46085");

/* P01_REPORT on the stream channel: writes at most the first record whole, closes the abnormal-exit
 * line with " **", and never ends the process (a hard request only prints its line). */
ZEK_API int P01_REPORT_STREAM(int ifail, int ierror, const char *srname, int nrec, const char *records,
                              int srname_len, int record_width) ZEK_SYMBOL("q74020");

/* P01_REPORT that names the variable carrying IERROR in the abnormal-exit line (": INFO =    -3");
 * an all-blank name leaves it out. */
ZEK_API int P01_REPORT_NAMED(int ifail, int ierror, const char *srname, const char *varname, int nrec,
                             const char *records, int srname_len, int varname_len, int record_width)
    ZEK_SYMBOL("q29567");

/* Reports an illegal parameter PARAM of routine SRNAME (13 characters, such as "F06PAF/DGEMV ") on the
 * stream channel and returns; the value is -1 for an F06 routine, else -PARAM named "INFO". */
ZEK_API void F06_BAD_PARAMETER_STREAM(const char *srname, int param, int srname_len) ZEK_SYMBOL("q49716");

ZEK_END_DECLS

#endif
