// The device profile calls. A device's libuci may bring them with these signatures; otherwise they are ours,
// over package profile in /etc/profile.d.
#pragma once

#include <stddef.h>

extern "C" {

// Copies an option of a profile section, cut to size - 1 bytes, into value. 0, or -1 when there is none.
int uci_get_profile(const char* section, const char* option, char* value, size_t size);

// Fills count names of 16 bytes from section "ethernet", option "names" (blank-separated), in its order;
// names beyond the last one are left as they are. 0, or -1 when the profile holds no name.
int uci_get_profile_eths(char (*names)[16], int count);

// The switch port number of an Ethernet port, from section "ethernet", option "<name>_port". 0, or -1 with
// *port unchanged when the profile holds no number.
int uci_get_profile_eth_port(const char* name, int* port);
}
