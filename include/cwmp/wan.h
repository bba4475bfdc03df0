/*
 * The router's two WAN connections, and the bodies that their handlers share.
 *
 * Connection 1 is the internet WAN (interface wan, bridge br-wan), connection 2 the management WAN (interface
 * mg, bridge br-mg). locate chooses: (1,1) and (1,2), or with locate[1] 0 the number locate[0]. Buffers for
 * values hold CWMP_VALUE_SIZE bytes. Result of all functions, unless said otherwise: 0 done, -1 failure.
 */
#ifndef CWMP_WAN_H
#define CWMP_WAN_H

#include <stdarg.h>

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The first line of the chosen connection's command, cut to 255 bytes; missing when the command prints none.
 * commands are those of connection 1 and 2. -1, logged, with value untouched: another connection, or the
 * command cannot be started.
 */
CWMP_EXPORT int _get_wanIPconnection(const int* locate, char* value, const char* const commands[2],
                                     const char* missing);

/*
 * A handler's body. GET answers as _get_wanIPconnection. SET stages the value as the field that name stands
 * for in the static WAN group: "ExternalIPAddress", "SubnetMask", "DefaultGateway" or "AddressingType"; any
 * other name is -1. commands and missing are used by GET only.
 */
CWMP_EXPORT int get_StasticOfWAN_by_name(int op, va_list args, const char* const commands[2], const char* missing,
                                         const char* name);

/*
 * The connection's name servers, "PRIMARY,SECONDARY" with "0.0.0.0" for each that is missing: those set for a
 * static WAN, otherwise those learned. "0.0.0.0," while the connection is down. -1, logged: another
 * connection, or nothing to read them from.
 */
CWMP_EXPORT int _get_wanIPconnection_dnsservers(const int* locate, char* value);

/* The same for the PPPoE connection; empty while the WAN type is not "pppoe". */
CWMP_EXPORT int _get_wanPPPconnection_dnsservers(char* value);

/*
 * A GET handler's body: has the check script look at the PPPoE connection, then answers "ip", "gateway" or
 * "mac", empty when it is unknown. A SET is -1.
 */
CWMP_EXPORT int GetPPPoE_internet_info(int op, va_list args, const char* field);

/* 1 when the internet WAN takes its address by DHCP, alone or beneath a dialled connection, else 0. */
CWMP_EXPORT int getclientstatus(void);

#ifdef __cplusplus
}
#endif

#endif
