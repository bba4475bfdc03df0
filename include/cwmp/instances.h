/*
 * Numbering of multi-instance objects that are kept as UCI sections of one type in a live package, each
 * section with its instance number in one option.
 */
#ifndef CWMP_INSTANCES_H
#define CWMP_INSTANCES_H

#include <stdint.h>

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Fills list with the numbers of all sections of the type and sorts it ascending. list must hold
 * __getInstanceMax() entries, zeroed: a section without the option leaves its entry as it is. Untouched when
 * the package cannot be loaded. */
CWMP_EXPORT void __getInstanceList(const char* package, const char* type, const char* option, int32_t* list);

/* The count of sections of the type (not the largest number); 0 when the package cannot be loaded. */
CWMP_EXPORT int __getInstanceMax(const char* package, const char* type);

/* The number for a new section: the lowest gap, else one beyond the largest; beyond capacity, the lowest
 * number that no section has. */
CWMP_EXPORT int __getInstanceNext(const char* package, const char* type, const char* option, int32_t capacity);

#ifdef __cplusplus
}
#endif

#endif
