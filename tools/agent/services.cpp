#include "services.h"

#include <cwmp/apply_flags.h>

#include <cstdio>

namespace cwmp {

namespace {

struct Service {
    unsigned bit;
    const char* name;
};

constexpr Service kServices[] = {
    {CWMP_APPLY_WIRELESS, "wireless"},
    {CWMP_APPLY_MANAGEMENT_SERVER, "management server"},
    {CWMP_APPLY_DHCP_SERVER, "DHCP server"},
    {CWMP_APPLY_WAN, "WAN"},
    {CWMP_APPLY_LAN, "LAN"},
    {CWMP_APPLY_IPTV, "IPTV"},
    {CWMP_APPLY_NAT, "NAT"},
    {CWMP_APPLY_XMPP, "XMPP"},
    {CWMP_APPLY_DOWNLOAD_TEST, "download diagnostics"},
    {CWMP_APPLY_UPLOAD_TEST, "upload diagnostics"},
    {CWMP_APPLY_STUN, "STUN"},
    {CWMP_APPLY_PING_TEST, "IP ping diagnostics"},
    {CWMP_APPLY_TRACE_ROUTE, "trace-route diagnostics"},
    {CWMP_APPLY_UDP_ECHO, "UDP echo"},
    {CWMP_APPLY_WIRELESS_MODE, "wireless mode"},
};

}  // namespace

std::vector<std::string> services_of(unsigned apply_flags) {
    std::vector<std::string> names;
    for (const Service& service : kServices) {
        if (apply_flags & service.bit) names.emplace_back(service.name);
        apply_flags &= ~service.bit;
    }
    if (apply_flags) {
        char text[32];
        std::snprintf(text, sizeof text, "unknown 0x%04x", apply_flags);
        names.emplace_back(text);
    }
    return names;
}

}  // namespace cwmp
