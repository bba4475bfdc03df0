/*
 * The routing table, as the Device.Routing.Router.1.IPv4Forwarding. parameters show it.
 */
#ifndef CWMP_ROUTING_H
#define CWMP_ROUTING_H

#include "cwmp/export.h"
#include "cwmp/layout.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CWMP_ROUTES 32

/* Texts are NUL-terminated and cut to their field. */
struct cwmp_route {
    char destination[20];
    char mask[20];
    char gateway[20];   /* next hop of a default route, otherwise the route's own first word */
    char interface[30]; /* path of a TR-181 IP interface */
    char origin[10];    /* "DHCPv4", "Static" or "IPCP" */
};
CWMP_LAYOUT(sizeof(struct cwmp_route) == 100 && offsetof(struct cwmp_route, interface) == 60 &&
            offsetof(struct cwmp_route, origin) == 90);

/* Indexed by instance number, from 1; entry 0 is never filled. All zero until the first genroutelist(). */
extern CWMP_EXPORT struct cwmp_route routelist[CWMP_ROUTES + 1];

/*
 * Fills routelist from the first CWMP_ROUTES lines of "ip route", once: a filled table stays as it is until
 * the agent clears the first byte of entry 1. 0 filled, -1 when the WAN settings cannot be read or the
 * command cannot be started.
 */
CWMP_EXPORT int genroutelist(void);

#ifdef __cplusplus
}
#endif

#endif
