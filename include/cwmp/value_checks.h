/*
 * Value checks and conversions.
 *
 * Two generations with different results stand side by side; each keeps its own. Addresses are dotted IPv4
 * texts. A null text counts as an empty one, except that libutil_netChkDotIpAddr, libutil_netChkStrMacAddr,
 * libutil_netChkLegalMacAddr, libutil_netChkSameSubnet (all but second_mask) and libutil_strncpy end the process
 * with an assertion. adjustMacFmt, strlowr and a result (address, mhz) take no null.
 */
#ifndef CWMP_VALUE_CHECKS_H
#define CWMP_VALUE_CHECKS_H

#include <stdint.h>

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* 1 for exactly a canonical dotted quad (no leading zeros, no blanks), else 0. */
CWMP_EXPORT int checkValidIP(const char* text);

/* 1 when the first three octets of two addresses are equal, whatever the netmask, else 0. The texts are not
 * checked: a number that is not there counts as 0. */
CWMP_EXPORT int check_subnet(const char* a, const char* b);

/* 1 for six colon-separated pairs of hexadecimal digits; 0 for another digit or count; -1 for a text of 16
 * characters or fewer and for a group that has not two characters. */
CWMP_EXPORT int CheckValidMacAddr(const char* text);

/* Changes a MAC address in place: '-' and ':' become separator, a to f upper (upper != 0) or lower case.
 * Result: the length of the text. */
CWMP_EXPORT int adjustMacFmt(char* text, int upper, char separator);

/* Reads six pairs of hexadecimal digits, each after an optional '-' or ':', into mac. 0, or -1 for a null
 * argument or another digit (the bytes before it are written). Trailing text is ignored. */
CWMP_EXPORT int libutil_macStrToEth(const char* text, uint8_t mac[6]);

/* Writes an address in host order as dotted text (16 bytes at most) unless text is null. Always 0. */
CWMP_EXPORT int libutil_addrNumToStr(uint32_t address, char* text);

/* Reads an address into *address, in network order; 0 for a text that is none. Always 0. */
CWMP_EXPORT int libutil_addrStrToNum(const char* text, uint32_t* address);

/* 1 for four numbers up to 255 joined by dots (leading zeros allowed), else 0. */
CWMP_EXPORT int libutil_netChkDotIpAddr(const char* text);

/* 1 for exactly six pairs of hexadecimal digits joined by ':', else 0. */
CWMP_EXPORT int libutil_netChkStrMacAddr(const char* text);

/* 1 for a unicast MAC address that is not all zero, else 0. */
CWMP_EXPORT int libutil_netChkLegalMacAddr(const char* text);

/* 1 for the address of a host: not in 0.0.0.0/8, not loopback, not multicast or reserved; else 0. */
CWMP_EXPORT int libutil_netChkLegalIpAddr(const char* text);

/* 1 when test lies in the subnet of address under mask or, if one is given, under second_mask; else 0.
 * Without a second mask (null or 0.0.0.0) the subnet's own and its broadcast address do not count. */
CWMP_EXPORT int libutil_netChkSameSubnet(const char* test, const char* second_mask, const char* address,
                                         const char* mask);

/* Copies at most size - 1 characters and fills the rest of the size bytes with zeros. Result: destination. A size
 * below 1 is a programming error as a null is. */
CWMP_EXPORT char* libutil_strncpy(char* destination, const char* source, int size);

/* Cuts text in place at the delimiters into at most limit tokens (20 at the most). Result: token number
 * index, from 1; null when there is none. */
CWMP_EXPORT char* string_split(char* text, const char* delimiters, int limit, int index);

/* Writes the decimal numbers of text, with their fractions, in order and joined by ',' into numbers: "1
 * Mb/s; 5.5 Mb/s" gives "1,5.5". What does not fit size bytes is left out, number by number. Result: how many
 * were written; 0 with an empty text when there is none. */
CWMP_EXPORT int string_split_num(const char* text, char* numbers, int size);

/* Lower-cases a text in place. Result: the text. */
CWMP_EXPORT char* strlowr(char* text);

/* Wi-Fi channel of a centre frequency in MHz, and back. */
CWMP_EXPORT int mhz_to_channel(int mhz);
CWMP_EXPORT void channel_to_mhz(int channel, int* mhz);

#ifdef __cplusplus
}
#endif

#endif
