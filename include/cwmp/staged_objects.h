/*
 * Grouped settings: settings of the router that are validated, applied and undone as a whole.
 *
 * There are six groups, the objects below. In a SetParameterValues transaction the handlers of a group stage
 * one field each (op 2); the first check (op 3) validates the group and the first apply (op 1) hands it to
 * the check script, which writes the configuration. Further checks and applies of the same group in the same
 * transaction do nothing and succeed. When the transaction fails, func_obj_revert applies what was in force
 * before.
 *
 * Every object has a staging record and a revert record of the same layout, process-wide and all zero while
 * idle. The first stage pass of any writable parameter after an apply or a revert begins a new transaction: it
 * clears the revert records.
 *
 * Texts are NUL-terminated and owned by the caller; a longer text than a field takes is cut. Call everything
 * here from one thread, one call at a time: the exchange with the check script goes through two files of
 * fixed name.
 */
#ifndef CWMP_STAGED_OBJECTS_H
#define CWMP_STAGED_OBJECTS_H

#include <stdarg.h>
#include <stdint.h>

#include "cwmp/export.h"
#include "cwmp/layout.h"

#ifdef __cplusplus
extern "C" {
#endif

enum cwmp_staged_object_id {
    CWMP_STAGED_PPPOE = 0,
    CWMP_STAGED_DHCP = 1,
    CWMP_STAGED_LAN = 2,
    CWMP_STAGED_WAN = 3,
    CWMP_STAGED_IPTV = 4,
    CWMP_STAGED_VLAN = 5
};
#define CWMP_STAGED_OBJECTS 6

/* The fields of each object, as its operations number them. */
enum cwmp_pppoe_option { CWMP_PPPOE_ENABLE, CWMP_PPPOE_USERNAME, CWMP_PPPOE_PASSWORD, CWMP_PPPOE_DNS_SERVERS };
enum cwmp_dhcp_option { CWMP_DHCP_START_ADDRESS, CWMP_DHCP_END_ADDRESS, CWMP_DHCP_DNS_SERVERS };
enum cwmp_lan_option { CWMP_LAN_ADDRESS, CWMP_LAN_MASK };
enum cwmp_wan_option {
    CWMP_WAN_ADDRESS,
    CWMP_WAN_MASK,
    CWMP_WAN_GATEWAY,
    CWMP_WAN_DNS_SERVERS,
    CWMP_WAN_TYPE /* "DHCP" or "Static" */
};
enum cwmp_iptv_option { CWMP_IPTV_ENABLE, CWMP_IPTV_TYPE, CWMP_IPTV_VLAN_ID, CWMP_IPTV_PRIORITY };
enum cwmp_vlan_option { CWMP_VLAN_ENABLE, CWMP_VLAN_VLAN_ID };

/* What a record's enable holds. Staging "1" enables; any other text, "true" included, disables. */
enum cwmp_staged_enable { CWMP_STAGED_NOT_SET = 0, CWMP_STAGED_ENABLED = 1, CWMP_STAGED_DISABLED = 2 };

/* checked is 1 after a passed check of the current transaction. The comments give the characters that are
 * kept. */
struct cwmp_pppoe_record {
    int32_t enable;
    char username[255];   /* 254 */
    char password[255];   /* 254 */
    char dns_servers[50]; /* 15 */
    uint32_t checked;
};
CWMP_LAYOUT(sizeof(struct cwmp_pppoe_record) == 568 && offsetof(struct cwmp_pppoe_record, username) == 4 &&
            offsetof(struct cwmp_pppoe_record, password) == 259 &&
            offsetof(struct cwmp_pppoe_record, dns_servers) == 514 &&
            offsetof(struct cwmp_pppoe_record, checked) == 564);

struct cwmp_dhcp_record {
    char start_address[16]; /* 15 */
    char end_address[16];   /* 15 */
    char dns_servers[52];   /* 15 */
    uint32_t checked;
};
CWMP_LAYOUT(sizeof(struct cwmp_dhcp_record) == 88 && offsetof(struct cwmp_dhcp_record, end_address) == 16 &&
            offsetof(struct cwmp_dhcp_record, dns_servers) == 32 && offsetof(struct cwmp_dhcp_record, checked) == 84);

struct cwmp_lan_record {
    char address[16]; /* 15 */
    char mask[16];    /* 15 */
    uint32_t checked;
};
CWMP_LAYOUT(sizeof(struct cwmp_lan_record) == 36 && offsetof(struct cwmp_lan_record, mask) == 16 &&
            offsetof(struct cwmp_lan_record, checked) == 32);

struct cwmp_wan_record {
    char address[16];     /* 15 */
    char mask[16];        /* 15 */
    char gateway[16];     /* 15 */
    char dns_servers[50]; /* 49 */
    char type[20];        /* 19 */
    uint32_t checked;
};
CWMP_LAYOUT(sizeof(struct cwmp_wan_record) == 124 && offsetof(struct cwmp_wan_record, mask) == 16 &&
            offsetof(struct cwmp_wan_record, gateway) == 32 && offsetof(struct cwmp_wan_record, dns_servers) == 48 &&
            offsetof(struct cwmp_wan_record, type) == 98 && offsetof(struct cwmp_wan_record, checked) == 120);

struct cwmp_iptv_record {
    int32_t enable;
    char type[20];     /* 19; "normal" or "bridge" */
    char vlan_id[20];  /* 19 */
    char priority[20]; /* 19 */
    uint32_t checked;
};
CWMP_LAYOUT(sizeof(struct cwmp_iptv_record) == 68 && offsetof(struct cwmp_iptv_record, type) == 4 &&
            offsetof(struct cwmp_iptv_record, vlan_id) == 24 && offsetof(struct cwmp_iptv_record, priority) == 44 &&
            offsetof(struct cwmp_iptv_record, checked) == 64);

struct cwmp_vlan_record {
    int32_t enable;
    char vlan_id[20]; /* 19 */
    uint32_t checked;
};
CWMP_LAYOUT(sizeof(struct cwmp_vlan_record) == 28 && offsetof(struct cwmp_vlan_record, vlan_id) == 4 &&
            offsetof(struct cwmp_vlan_record, checked) == 24);

extern CWMP_EXPORT struct cwmp_pppoe_record pppoe_obj_data;
extern CWMP_EXPORT struct cwmp_pppoe_record pppoe_obj_data_revert;
extern CWMP_EXPORT struct cwmp_dhcp_record dhcp_obj_data;
extern CWMP_EXPORT struct cwmp_dhcp_record dhcp_obj_data_revert;
extern CWMP_EXPORT struct cwmp_lan_record lan_obj_data;
extern CWMP_EXPORT struct cwmp_lan_record lan_obj_data_revert;
extern CWMP_EXPORT struct cwmp_wan_record wan_obj_data;
extern CWMP_EXPORT struct cwmp_wan_record wan_obj_data_revert;
extern CWMP_EXPORT struct cwmp_iptv_record iptv_obj_data;
extern CWMP_EXPORT struct cwmp_iptv_record iptv_obj_data_revert;
extern CWMP_EXPORT struct cwmp_vlan_record vlan_obj_data;
extern CWMP_EXPORT struct cwmp_vlan_record vlan_obj_data_revert;

/*
 * The operations of each object:
 *
 *   pre         stages one field; 1 taken, 0 for a null value or an option that the object has not
 *   pre_revert  the same into the revert record; those of pppoe and iptv take "true" as enabled too
 *   check       validates the group; 1 passed, 0 refused: what was staged is dropped (a refused iptv check
 *               drops what was staged for lan instead)
 *   set         applies a checked group and ORs its apply flag into *flags; 1 applied or nothing to do,
 *               0 when the script refused. A checked group is idle afterwards. flags may be null.
 */
CWMP_EXPORT int pppoe_pre(int option, const char* value);
CWMP_EXPORT int pppoe_pre_revert(int option, const char* value);
CWMP_EXPORT int pppoe_check(void);
CWMP_EXPORT int pppoe_set(unsigned int* flags);
CWMP_EXPORT int dhcp_pre(int option, const char* value);
CWMP_EXPORT int dhcp_pre_revert(int option, const char* value);
CWMP_EXPORT int dhcp_check(void);
CWMP_EXPORT int dhcp_set(unsigned int* flags);
CWMP_EXPORT int lan_pre(int option, const char* value);
CWMP_EXPORT int lan_pre_revert(int option, const char* value);
CWMP_EXPORT int lan_check(void);
CWMP_EXPORT int lan_set(unsigned int* flags);
CWMP_EXPORT int wan_pre(int option, const char* value);
CWMP_EXPORT int wan_pre_revert(int option, const char* value);
CWMP_EXPORT int wan_check(void);
CWMP_EXPORT int wan_set(unsigned int* flags);
CWMP_EXPORT int iptv_pre(int option, const char* value);
CWMP_EXPORT int iptv_pre_revert(int option, const char* value);
CWMP_EXPORT int iptv_check(void);
CWMP_EXPORT int iptv_set(unsigned int* flags);
CWMP_EXPORT int vlan_pre(int option, const char* value);
CWMP_EXPORT int vlan_pre_revert(int option, const char* value);
CWMP_EXPORT int vlan_check(void);
CWMP_EXPORT int vlan_set(unsigned int* flags);

/* The objects by id. */
struct cwmp_staged_object {
    int (*pre)(int option, const char* value);
    int (*check)(void); /* NOLINT(modernize-redundant-void-arg): C needs it */
    int (*set)(unsigned int* flags);
};
extern CWMP_EXPORT const struct cwmp_staged_object func_obj_table[CWMP_STAGED_OBJECTS];

enum cwmp_staged_mode { CWMP_STAGED_STAGE = 0, CWMP_STAGED_CHECK = 1, CWMP_STAGED_APPLY = 2 };

/*
 * Runs one operation of an object: its pre, check or set by mode, with their result. 0 for another mode, -1
 * for another object. Only pre looks at option and value, only set at flags.
 */
CWMP_EXPORT int func_obj_exec(int object, int option, int mode, const char* value, unsigned int* flags);

/*
 * Undoes a failed transaction: applies the values that were in force before it, for every group that it had
 * checked, and leaves all records idle. The DHCP pool is never restored. Called like a parameter handler with
 * the arguments of a SET, of which only the flags are used; op is not looked at. Result: always 0.
 */
CWMP_EXPORT int func_obj_revert(int op, va_list args);

/*
 * Loads the configuration in force into an object's revert record by way of the check script. name is
 * "pppoe_revert", "dhcp_revert" and so on. 0, also for a null and for an unknown name; -1 when the script's
 * answer cannot be read: the record is as it was then.
 */
CWMP_EXPORT int initialize_revert_data(const char* name);

/* Copies the revert records that are marked as checked, other than the DHCP pool's, into the staging records.
 */
CWMP_EXPORT void func_obj_restore(void);

/* Reads an answer of the check script: 1 when its "error_code" is the integer 0, otherwise 0. */
CWMP_EXPORT int func_obj_result_ok(const char* file);

#ifdef __cplusplus
}
#endif

#endif
