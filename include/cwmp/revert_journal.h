/*
 * The revert journal and the discarding of staged changes.
 *
 * The journal is the text file /tmp/ready_to_revert_item, one record a line: name##value##extra. The library
 * only appends to it; the device's apply scripts read and clear it.
 */
#ifndef CWMP_REVERT_JOURNAL_H
#define CWMP_REVERT_JOURNAL_H

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Appends one record, cut to 255 bytes with its newline. A null extra is written as NULL; a null name or
 * value writes nothing. Failures are logged only. */
CWMP_EXPORT void add_revert_item(const char* name, const char* value, const char* extra);

/* Records the current WAN type of network_sync: wantype dynamic_ip or static_ip, or pppoe_enable "1" (with
 * the quotes); nothing for any other type. */
CWMP_EXPORT void backup_revert_wan_type(void);

/* Discards the uncommitted change of one option or section staged in /var/state, named as
 * "wifi.radio_2g.channel" (the first 99 characters count). 0 done, -1 failure (logged). */
CWMP_EXPORT int uciRevert(const char* tuple);

#ifdef __cplusplus
}
#endif

#endif
