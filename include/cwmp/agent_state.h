/*
 * The agent record: what the library reads of the agent's own state.
 *
 * ManagementServer_URL and ManagementServer_ConnectionRequestURL take a pointer to it as one more argument
 * after the usual ones (after value on GET, after applyFlags on SET). The record stays the agent's: the
 * library only reads it, during the call. Texts are NUL-terminated; one that fills its field without a
 * terminator ends with the field.
 *
 * A null pointer is allowed: a GET of either parameter is -1 then with the value buffer untouched, and a SET
 * of the URL counts as no change of address.
 */
#ifndef CWMP_AGENT_STATE_H
#define CWMP_AGENT_STATE_H

#include <stdint.h>

#include "cwmp/layout.h"

#define CWMP_AGENT_PATH_SIZE 254
#define CWMP_AGENT_URL_SIZE 1024
#define CWMP_AGENT_HOST_SIZE 16

struct cwmp_agent_state {
    uint16_t port;                     /* of the connection-request listener, host order */
    char path[CWMP_AGENT_PATH_SIZE];   /* of the connection-request URL, with its first "/" */
    char acs_url[CWMP_AGENT_URL_SIZE]; /* the ACS URL that the agent uses now */
    char host[CWMP_AGENT_HOST_SIZE];   /* address of the connection-request listener, dotted IPv4 */
};
CWMP_LAYOUT(offsetof(struct cwmp_agent_state, path) == 2);

#endif
