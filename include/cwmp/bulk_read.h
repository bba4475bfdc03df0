/* Reading much at once: a walk, an inform, a watch for value changes. */
#ifndef CWMP_BULK_READ_H
#define CWMP_BULK_READ_H

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Between begin and end every command text that a GET reads runs once: its output, empty or not and whatever its
 * exit status, is kept, and every handler that needs the same text reads it again. So is a helper script that
 * only brings a file up to date: it runs once. Values that come from the same command are of the same moment.
 * A package of the store, missing or not, is read once, too, and once more after such a script. What util_exec runs
 * for a caller of its own runs each time. Outside a bulk read every GET is live.
 *
 * Any change ends the bulk read at once, and the next GET is live: a SET in any pass, an add, a delete, a revert, a
 * diagnostics job, and every exported call that stages, checks, applies, writes the store or runs a script. So do
 * 60 seconds, for an agent that forgets the end. What other programs change meanwhile is seen after the end.
 *
 * Bulk reads do not nest: a begin inside another one forgets what was kept and starts anew, and the first end
 * ends it. An end without a begin does nothing.
 *
 * At most CWMP_BULK_READ_LIMIT bytes of commands, outputs and parsed packages are kept; what does not fit runs and is
 * read as if there was no bulk read. All memory is given back at the end.
 */
#define CWMP_BULK_READ_LIMIT 262144

CWMP_EXPORT void cwmp_bulk_read_begin(void);
CWMP_EXPORT void cwmp_bulk_read_end(void);

#ifdef __cplusplus
}
#endif

#endif
