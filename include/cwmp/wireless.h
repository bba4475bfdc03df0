/*
 * Shared routines of the wireless parameters, for agents that serve further names with them.
 *
 * All are called like a parameter handler (handler.h): op, then the list that holds locate, the value and,
 * for a SET, the apply-flags word. All texts are NUL-terminated and only read. Result: 0 done, -1 refused.
 */
#ifndef CWMP_WIRELESS_H
#define CWMP_WIRELESS_H

#include <stdarg.h>

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The security mode of a network, as ModeEnabled names it. locate[0] 1, 3 and 5 mean the main network, any
 * other number the guest network. A SET takes "None", "WPA2-Personal", "WPA-WPA2-Personal", "WPA3-Personal"
 * and "WPA2-WPA3-Personal", or, when option supportmodes of the device profile lists modes (blank-separated),
 * what stands there; it raises CWMP_APPLY_WIRELESS. The list is traced on standard output.
 */
CWMP_EXPORT int security_mode_operate(int op, va_list args);

/*
 * The pass phrase of a network; section is "ap" (main) or "guest". A SET stores any text and raises
 * CWMP_APPLY_WIRELESS; a null value or section is -1. A GET answers the empty text.
 */
CWMP_EXPORT int KeyPassphrase_operate(int op, va_list args, const char* section);

/* WEP keys are accepted and ignored; a null value or section is -1. A GET answers the empty text. */
CWMP_EXPORT int WEPKey_operate(int op, va_list args, const char* section);

/*
 * One option of a client of the main or of the guest networks, from the table of hosts. GET only. locate
 * holds network (1 = 2.4 GHz, 2 = 5 GHz) and client number, from 1; it is rewritten to {1, network, client}.
 * Without any host the answer is empty; a client number beyond the hosts, another network and a network with
 * fewer clients are -1. An option that the client lacks is empty, "0" for "authentication_state".
 */
CWMP_EXPORT int WLANConfiguration_AssociatedDevice_LinkInfo_Get(int op, va_list args, const char* option);
CWMP_EXPORT int MultiSSID_AssociatedDevice_LinkInfo_Get(int op, va_list args, const char* option);

/*
 * One option of a client, from the table of hosts. GET only. locate holds network (2 = 2.4 GHz guest, 3 = 5
 * GHz main, 4 = 5 GHz guest) and client number, from 1. Without any host, without such a client and without
 * the option the answer is empty; a client number beyond the hosts and any other network are -1.
 */
CWMP_EXPORT int Get_AssociatedDevice_Info(int op, va_list args, const char* option);

/*
 * One option of a mesh device, locate[0] from 1, from the mesh table. GET only. "mac" and "parent_mac" are
 * answered in upper case with colons. An option that the device lacks is a single blank, for "uptime" empty.
 */
CWMP_EXPORT int get_meshfeature_info(int op, va_list args, const char* option);

#ifdef __cplusplus
}
#endif

#endif
