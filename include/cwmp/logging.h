/*
 * Logging to the device console and the system log.
 *
 * Levels are system-log priorities: 0 emergency, 3 error, 4 warning, 6 progress, 7 debug. A message is
 * written when its level is not above l_dbglvl.
 */
#ifndef CWMP_LOGGING_H
#define CWMP_LOGGING_H

#include <stdarg.h>
#include <stdint.h>

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The highest level that is still written; 3 at load time. */
extern CWMP_EXPORT int32_t l_dbglvl;

/* The system log is written only while this is exactly 1; 0 at load time. */
extern CWMP_EXPORT int32_t use_syslog;

/*
 * Sets both switches. Called like a parameter handler: op is not looked at; the list holds a pointer to two
 * int32_t {level, syslog} and one more pointer, which is ignored. Prints the new values to standard output.
 * Result: always 0.
 */
CWMP_EXPORT int debug_level(int op, va_list args);

/*
 * Writes one line to /dev/console by a shell's echo: the process id in square brackets, then the message, cut
 * to 2047 bytes. The message stands between double quotes of the shell command exactly as it is formatted, so
 * the shell expands what it finds there. The library's own events do not pass here: they are shown as they are.
 */
CWMP_EXPORT void log_printf(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

/*
 * From here on every event of the library is handed to a function as well, whatever l_dbglvl says: the line that
 * the console shows, without the process id. It stands until the function returns. NULL, as at load time: to none.
 */
CWMP_EXPORT void cwmp_listen(void (*listener)(int level, const char* line));

/* Sends the message, cut to 2047 bytes, to the system log under the ident "cwmp", facility LOG_USER. */
CWMP_EXPORT void log_syslog(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

#ifdef __cplusplus
}
#endif

#endif
