/* Holds the layout of a record at compile time: agents are built against it. */
#ifndef CWMP_LAYOUT_H
#define CWMP_LAYOUT_H

#include <stddef.h>

#ifdef __cplusplus
#define CWMP_LAYOUT(condition) static_assert(condition, #condition)
#else
#define CWMP_LAYOUT(condition) _Static_assert(condition, #condition)
#endif

#endif
