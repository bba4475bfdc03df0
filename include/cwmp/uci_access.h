/*
 * Access to the UCI configuration store.
 *
 * Every call opens the store, works on one package, commits and closes again; nothing is cached. Result of
 * all functions, unless said otherwise: 0 done, -1 failure (logged at level 3). Texts are NUL-terminated and
 * owned by the caller.
 *
 * Directories: "/etc/config" is the live store, "/tmp/tr069" the library's scratch packages, "/etc/profile.d"
 * the device profile (read only), "/tmp/cwmp-config" and "/tmp/cwmp-config-force" the two side copies of
 * package cwmp.
 */
#ifndef CWMP_UCI_ACCESS_H
#define CWMP_UCI_ACCESS_H

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Reads an option into out, which must hold the whole stored text: as long as its writer made it, for values
 * that arrived through a handler as long as the ACS sent it. A missing package, section or option and a list
 * option are -1; out is untouched then.
 */
CWMP_EXPORT int uciRawGetValueBypath(const char* package, const char* section, const char* option, char* out,
                                     const char* confdir);
/* The same in the live store. */
CWMP_EXPORT int uciRawGetValue(const char* package, const char* section, const char* option, char* out);
/* The same in the scratch packages. */
CWMP_EXPORT int uciRawGetValue_tr069_config(const char* package, const char* section, const char* option, char* out);

/*
 * Sets an option. With a confdir the directory (one level, mode 0775) and the package file are created when
 * they are missing; confdir NULL is the live store, whose packages must exist. A missing section is created
 * with its own name as type. An empty value deletes the option; when there is none it changes nothing and is
 * done. A refused commit (read-only store) is -1 within a transaction (transaction.h), else it is not reported.
 */
CWMP_EXPORT int uciRawSetValueByPath(const char* package, const char* section, const char* option, const char* value,
                                     const char* confdir);
/* Sets an option in the live store and, where the mirror policy asks for it, in a side copy. */
CWMP_EXPORT int uciRawSetValue(const char* package, const char* section, const char* option, const char* value);
/* Sets an option in the scratch packages. */
CWMP_EXPORT int uciRawSetValue_tr069_config(const char* package, const char* section, const char* option,
                                            const char* value);

/* Creates a named section of a type, with directory and package file as above; confdir NULL is "/etc/config".
 */
CWMP_EXPORT int uciRawAddSectionBypath(const char* package, const char* section, const char* type, const char* confdir);
/* Adds a section to the live store and, where the mirror policy asks for it, to a side copy. */
CWMP_EXPORT int uciRawAddSection(const char* package, const char* section, const char* type);

/* Deletes a named section; confdir NULL is "/etc/config". Deleting what is not there is done. */
CWMP_EXPORT int uciRawDelSectionBypath(const char* package, const char* section, const char* type, const char* confdir);
/* Deletes a section from the live store and, where the mirror policy asks for it, from a side copy. */
CWMP_EXPORT int uciRawDelSection(const char* package, const char* section, const char* type);

/*
 * The mirror policy: with option isp_reset of section cwmp_settings in the device profile beginning "yes", a
 * change of package cwmp is repeated in a side copy: "/tmp/cwmp-config-force" for what the protected list names,
 * "/tmp/cwmp-config" for the rest. The protected list is /etc/profile.d/cwmp-config-force: its lines of exactly
 * four blanks and "list cfg" name, in single quotes, a package, package.section or package.section.option.
 */

/* 0 when the protected list names the option, its section or its package, else 1. */
CWMP_EXPORT int IsOptionAllowToChange(const char* package, const char* section, const char* option);

/* 1 when the device profile asks for side copies, else 0. */
CWMP_EXPORT int is_support_isp_reset(void);

/* Kept for agents that call it: does nothing, returns 0. */
CWMP_EXPORT int save_to_cwmp_config(void);

#ifdef __cplusplus
}
#endif

#endif
