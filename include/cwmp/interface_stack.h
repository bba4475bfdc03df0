/*
 * The fixed layering of the router's TR-181 interface objects. Which WAN-side layers are shown follows the
 * WAN type, option wan_type of section wan in package network. All returned texts are static.
 */
#ifndef CWMP_INTERFACE_STACK_H
#define CWMP_INTERFACE_STACK_H

#include <stdint.h>

#include "cwmp/export.h"
#include "cwmp/layout.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CWMP_INTERFACE_STACK_ROWS 49
#define CWMP_APPLICATION_INTERFACE_ROWS 15

struct cwmp_interface_stack_row {
    int32_t id;         /* several rows can share one */
    int32_t shown;      /* 1: part of the current stack; changed at run time */
    const char* higher; /* path of the higher layer */
    const char* lower;  /* path of the lower layer, empty for the lowest */
};
CWMP_LAYOUT(sizeof(void*) != 8 || sizeof(struct cwmp_interface_stack_row) == 24);

struct cwmp_application_interface {
    int32_t id;
    const char* path;   /* IP interface, or null: the current WAN's */
    const char* unused; /* null in every row */
};
CWMP_LAYOUT(sizeof(void*) != 8 || sizeof(struct cwmp_application_interface) == 24);

extern CWMP_EXPORT struct cwmp_interface_stack_row intfStacks[CWMP_INTERFACE_STACK_ROWS];
extern CWMP_EXPORT struct cwmp_application_interface appIntf[CWMP_APPLICATION_INTERFACE_ROWS];

/* The IP interface path of the current WAN; empty for an unknown or unreadable WAN type. */
CWMP_EXPORT const char* getWanInterface(void);

/* The IP interface path that serves a function: 41 to 46 and 50 the current WAN, 47 plain WAN, 48 and 49 the
 * legs under PPTP and L2TP, 51 and 52 the LAN, 53 the management WAN; empty for any other id. */
CWMP_EXPORT const char* getFuncInterface(unsigned int function);

/* The lower layer of the first shown row of an id; for 22, the bridge, the list of its ports; empty when
 * there is none. The flags are taken as they are: call refreshIntfStacks before. */
CWMP_EXPORT const char* getLowerLayers(int id);

/* Shows (1) or hides (0) every row of an id. */
CWMP_EXPORT void setIntfStackFlag(int id, int flag);

/* Shows the rows of the current WAN type; changes nothing when the type cannot be read or is unknown. */
CWMP_EXPORT void refreshIntfStacks(void);

#ifdef __cplusplus
}
#endif

#endif
