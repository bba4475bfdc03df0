/*
 * Platform probes: facts about the device that handlers and agent share.
 *
 * Each probe runs one command or reads a profile option, synchronously. Result of all functions, unless said
 * otherwise: 0 done, -1 failure. The device profile is package profile in /etc/profile.d; its section
 * interfaceinfo holds the interface names (wifi_2_4G, wifi_5G, guest_2_4G, guest_5G, backhaul_2_4G,
 * backhaul_5G) and the platform kind (cpe_type), its section ethernet the port names (names, blank-separated)
 * and their switch port numbers (<name>_port).
 */
#ifndef CWMP_PLATFORM_H
#define CWMP_PLATFORM_H

#include <stdarg.h>
#include <stdint.h>

#include "cwmp/export.h"
#include "cwmp/layout.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CWMP_INTERFACE_NAME_SIZE 20
#define CWMP_ETH_NAME_SIZE 16
#define CWMP_ETH_COUNT 3

enum cwmp_platform_kind { CWMP_PLATFORM_QCAS = 0, CWMP_PLATFORM_BCM = 1, CWMP_PLATFORM_MTK = 2 };

/* The interface-information record. Names are NUL-terminated and cut to their field. */
struct cwmp_interface_info {
    int32_t cpeType; /* enum cwmp_platform_kind */
    char wifi_2_4G[CWMP_INTERFACE_NAME_SIZE];
    char wifi_5G[CWMP_INTERFACE_NAME_SIZE];
    char guest_2_4G[CWMP_INTERFACE_NAME_SIZE];
    char guest_5G[CWMP_INTERFACE_NAME_SIZE];
    char unused[3][CWMP_INTERFACE_NAME_SIZE]; /* never filled */
    char backhaul_2_4G[CWMP_INTERFACE_NAME_SIZE];
    char backhaul_5G[CWMP_INTERFACE_NAME_SIZE];
};
CWMP_LAYOUT(sizeof(struct cwmp_interface_info) == 184);

extern CWMP_EXPORT struct cwmp_interface_info interface_data;
extern CWMP_EXPORT struct cwmp_interface_info _interface_data;
extern CWMP_EXPORT struct cwmp_interface_info* interface_info;  /* points to interface_data */
extern CWMP_EXPORT struct cwmp_interface_info* _interface_info; /* points to _interface_data */

/* Ethernet port names; an empty first name means that they are not loaded yet. */
extern CWMP_EXPORT char eth_names[CWMP_ETH_COUNT][CWMP_ETH_NAME_SIZE];

/* One hardware mode of a radio as UCI names it, and its operating standards as TR-181 lists them. */
struct cwmp_wireless_mode {
    const char* hwmode;
    const char* standards;
};

#define CWMP_WIRELESS_MODES 10
extern CWMP_EXPORT const struct cwmp_wireless_mode mode_2g[CWMP_WIRELESS_MODES];
extern CWMP_EXPORT const struct cwmp_wireless_mode mode_5g[CWMP_WIRELESS_MODES];

/*
 * Runs a command and copies its first line, without newline and cut to size - 1 bytes, into buffer.
 * Result: the length, -1 when the command cannot be started or prints nothing (buffer untouched then).
 */
CWMP_EXPORT int util_exec(const char* command, char* buffer, int size);

/* The device MAC address as fwinfo prints it; result as util_exec. */
CWMP_EXPORT int get_mac(char* buffer, int size);
/* The cloud serial number; result as util_exec. */
CWMP_EXPORT int get_cloud_sn(char* buffer, int size);
/*
 * The serial number: the MAC address without separators, at most 19 characters. Result: its length, 0 with an
 * empty text when there is no MAC address, -1 when size is below 20 (nothing is written then).
 */
CWMP_EXPORT int get_sn_from_mac(char* buffer, int size);
CWMP_EXPORT int get_device_sn(char* buffer, int size);

/* A GET handler's body: the first line of command, cut to 99 bytes, is the value. A SET is -1. */
CWMP_EXPORT int FwinfoDeviceInfo(int op, va_list args, const char* command);

/* The platform kind: "mtk", "bcm"; anything else counts as "qcas". */
CWMP_EXPORT int cpe_type(void);

/* Fills a record from the profile, with ath0, ath1, ath01, ath11, ath02, ath12 for missing names. Always 0.
 */
CWMP_EXPORT int initialize_interface_info(struct cwmp_interface_info* info);

/* Loads eth_names unless they are loaded. */
CWMP_EXPORT int get_profile_eths(void);

/* The first member of bridge br-wan, cut to 4 characters; ifname holds at least 5 bytes and is empty without
 * one. */
CWMP_EXPORT int getWanIfname(char* ifname);

/* The WAN port: 1, 2 or 3 for eth0, eth1 or eth2, otherwise -1. */
CWMP_EXPORT int getWanPort(void);

/*
 * Builds the command that asks Ethernet port index (1 to 3) for word, at most CWMP_PORT_COMMAND_SIZE bytes
 * with a word of up to 64 bytes. In mode "AP" the index counts the profile's names; otherwise 3 is the WAN
 * port and 1 and 2 are the others. 0 with command untouched: there is no such port. A switch port number that
 * is not in the profile stands as -1. Words that begin with "macaddr" give a command that names no real
 * interface.
 */
#define CWMP_PORT_COMMAND_SIZE 128
CWMP_EXPORT int concatCmd(char* command, int index, const char* word);

/*
 * The channels that a radio supports, from iwlist. locate (1,1) or band 1 is the 2.4 GHz radio; otherwise locate
 * (1,2) or band 2 is the 5 GHz radio; anything else is -1. kind NULL counts in channel numbers, "freqency" in
 * "2412MHz".
 *
 * op 0: value is the output buffer (at least 1024 bytes) and receives the comma-separated list; result 0.
 * Other ops: value is a number; the result is op when the list has it, 0 when not. A caller that asks "is it
 * supported" takes any non-zero answer other than -1 as yes.
 * args is not read: a caller may pass a list that it has already used.
 */
CWMP_EXPORT int GetRadioInfo(int op, va_list args, char* value, int* locate, int band, const char* kind);
CWMP_EXPORT int GetChannelPoll(int op, va_list args, char* value, int* locate, int band);
CWMP_EXPORT int GetFrequencyPoll(int op, va_list args, char* value, int* locate, int band);

/*
 * A GET handler's body: a kernel counter of one of three interfaces, chosen by locate: (1,1), (1,2), (1,3),
 * or with locate[1] 0 by locate[0]. Names may be empty; an empty or unknown interface reads "0". Counters:
 * TotalBytes, TotalPackets, TotalErrors and DiscardPackets, each with Sent or Received. A SET, an unknown
 * counter and a command that cannot be started are -1.
 */
CWMP_EXPORT int get_TotalBytesAndPackets_by_name(int op, va_list args, const char* const names[3], const char* counter);

/* 0 when the management WAN (interface mg) or the internet WAN (interface wan) is up, else -1. */
CWMP_EXPORT int check_br_mg_status(void);
CWMP_EXPORT int check_br_wan_status(void);

#ifdef __cplusplus
}
#endif

#endif
