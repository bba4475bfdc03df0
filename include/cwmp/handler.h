/*
 * The parameter handler contract.
 *
 * For every supported parameter the library exports one function. Its name is the parameter's path without
 * the root object and the instance numbers, dots turned into underscores: Device.WiFi.SSID.1.SSID is
 * WiFi_SSID_SSID.
 *
 * The agent opens a variable-argument list in a variadic function of its own and hands it on; the handler
 * reads:
 *
 *   GET (op 0)        int *locate, char *value
 *   SET (op 2, 3, 1)  int *locate, const char *value, unsigned int *applyFlags
 *
 *   locate      the instance numbers of the path, outermost first, zero-filled to at least CWMP_LOCATE_SIZE
 *               entries. A handler may rewrite the array: pass a fresh one with every call.
 *   value       GET: the answer is written here, NUL-terminated; CWMP_VALUE_SIZE bytes are enough for any answer.
 *               SET: the new value, NUL-terminated, owned by the agent and left unchanged.
 *   applyFlags  the service groups to re-apply (apply_flags.h) are ORed into this word; no bit is cleared.
 *
 * A SetParameterValues transaction calls every handler with op 2 (stage), then every one with op 3 (check),
 * then every one with op 1 (apply). Handlers of grouped settings split their work over the passes; every
 * other handler writes the value on each pass.
 *
 * Result: 0 done; -1 refused (read-only parameter, bad instance number, bad value, failing store or tool). A
 * GET whose value is not in the store answers the empty text with 0.
 *
 * Object handlers, named after a multi-instance object, take op 4, 5 and 6 and return 0, or 1 or a TR-069
 * fault number on failure:
 *
 *   add (op 4)     int *locate, char *number, unsigned int *applyFlags
 *                  number receives the new instance number in decimal, at most 12 bytes.
 *   delete (op 5)  int *locate, const char *number, unsigned int *applyFlags
 *   list (op 6)    int *locate, uint32_t *numbers, uint32_t *capacity
 *                  numbers receives at most *capacity instance numbers, ascending; their count is not told.
 *
 * Handlers keep process-wide records and scratch files: call them one at a time.
 */
#ifndef CWMP_HANDLER_H
#define CWMP_HANDLER_H

#include <stdarg.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int (*cwmp_handler)(int op, va_list args);

enum cwmp_op {
    CWMP_OP_GET = 0,
    CWMP_OP_APPLY = 1,
    CWMP_OP_STAGE = 2,
    CWMP_OP_CHECK = 3,
    CWMP_OP_ADD = 4,
    CWMP_OP_DELETE = 5,
    CWMP_OP_LIST = 6
};

/* Entries of the locate array that a handler may read or rewrite. */
#define CWMP_LOCATE_SIZE 8

/* Bytes of a GET buffer, terminator included. No handler writes beyond it: a stored text that is longer is
 * cut. */
#define CWMP_VALUE_SIZE 131072

#ifdef __cplusplus
}
#endif

#endif
