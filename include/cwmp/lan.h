/*
 * Routines of the LAN handlers that an agent may call beside the handlers.
 */
#ifndef CWMP_LAN_H
#define CWMP_LAN_H

#include <stdarg.h>

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Writes the name servers that the DHCP server hands out into value, which holds CWMP_VALUE_SIZE bytes
 * (handler.h): the two configured ones joined by ','; where both are "0.0.0.0", three entries of what the
 * DHCP server uses at present, "0.0.0.0" for each that is missing. 0 done; -1 with value untouched when the
 * configuration cannot be read or no command started.
 */
CWMP_EXPORT int _get_dns_server(char* value);

/*
 * A GET handler's body: one field of a host of the LAN, as the host table in /tmp/tr069 names it: "ip",
 * "mac", "hostname", "iftype" and so on. The host's number is locate[1], or locate[0] where locate[1] is 0. A
 * host or field that the table lacks reads "unkown" ("hostname", "active"), "None" ("addresssource"), "Other"
 * ("iftype") or empty. -1 for a SET and a missing number.
 */
CWMP_EXPORT int LANDevice_Hosts_Host_InfoGet(int op, va_list args, const char* field);

#ifdef __cplusplus
}
#endif

#endif
