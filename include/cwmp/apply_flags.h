/*
 * Apply flags: the 32-bit word that SET handlers fill for one SetParameterValues transaction.
 *
 * A handler ORs the bit of its service group into the agent's word and never clears one. After the
 * transaction the agent restarts or reloads the services whose bits are set. Bit 0x0008 is never set.
 */
#ifndef CWMP_APPLY_FLAGS_H
#define CWMP_APPLY_FLAGS_H

enum cwmp_apply_flag {
    CWMP_APPLY_WIRELESS = 0x0001,          /* wireless settings of a radio or a network */
    CWMP_APPLY_MANAGEMENT_SERVER = 0x0002, /* ACS address, credentials, periodic inform */
    CWMP_APPLY_DHCP_SERVER = 0x0004,       /* DHCPv4 pool and static addresses */
    CWMP_APPLY_WAN = 0x0010,               /* WAN connections */
    CWMP_APPLY_LAN = 0x0020,               /* LAN address and mask, LAN name servers */
    CWMP_APPLY_QOS = 0x0030,               /* bandwidth settings: the WAN and the LAN bit at once */
    CWMP_APPLY_IPTV = 0x0040,              /* IPTV and bridge VLAN */
    CWMP_APPLY_NAT = 0x0080,               /* port mappings and DMZ host */
    CWMP_APPLY_XMPP = 0x0100,              /* XMPP connection and its server */
    CWMP_APPLY_DOWNLOAD_TEST = 0x0200,     /* download diagnostics requested */
    CWMP_APPLY_UPLOAD_TEST = 0x0400,       /* upload diagnostics requested */
    CWMP_APPLY_STUN = 0x0800,              /* STUN settings of the management server */
    CWMP_APPLY_PING_TEST = 0x1000,         /* IP ping diagnostics requested */
    CWMP_APPLY_TRACE_ROUTE = 0x2000,       /* trace-route diagnostics requested */
    CWMP_APPLY_UDP_ECHO = 0x4000,          /* UDP echo responder switched on */
    CWMP_APPLY_WIRELESS_MODE = 0x8000      /* channel bandwidth or operating standards of a radio */
};

#endif
