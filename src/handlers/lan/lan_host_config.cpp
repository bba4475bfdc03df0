// InternetGatewayDevice.LANDevice.{i}.LANHostConfigManagement.

#include <cstdio>

#include "config/batch.h"
#include "core/command.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/lan.h"
#include "handlers/blocks/option.h"
#include "handlers/blocks/staged.h"

using namespace cwmp;

constexpr Section kLan{"smartip_sync", "settings"};
constexpr Section kDhcpServer{"dhcp_server_sync", "settings"};
constexpr const char* kNoServer = "0.0.0.0";

PARAMETER(LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceIPAddress, staged_option,
          {CWMP_STAGED_LAN, CWMP_LAN_ADDRESS}, {.at = kLan / "lanip"}, {.unreadable = "get lan ip error\n"})

PARAMETER(LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceSubnetMask, option,
          {.at = kLan / "mask", .accepts = ipv4_address},
          {.unreadable = "get lan mask error\n", .refused = "the format of ip is wrong \n"})

PARAMETER(LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceAddressingType, read_only_option,
          {.at = {"network", "lan", "proto"}})

PARAMETER(LANDevice_LANHostConfigManagement_IPInterface_DefaultGateway, read_only_option, {.at = kLan / "gw"},
          {.unreadable = "get default geteway error\n"})

ALIAS(LANDevice_LANHostConfigManagement_Subnetmask, LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceSubnetMask)

// What the DHCP server hands out as router is the LAN address itself.
ALIAS(LANDevice_LANHostConfigManagement_DefaultGateway,
      LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceIPAddress)
ALIAS(LANDevice_LANHostConfigManagement_IPRouters, LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceIPAddress)

PARAMETER(LANDevice_LANHostConfigManagement_DHCPServerEnable, constant, "1")

PARAMETER(LANDevice_LANHostConfigManagement_MinAddress, staged_option, {CWMP_STAGED_DHCP, CWMP_DHCP_START_ADDRESS},
          {.at = kDhcpServer / "startIpAddress"}, {.unreadable = " get dhcp startIpAddress error\n\n"})

PARAMETER(LANDevice_LANHostConfigManagement_MaxAddress, staged_option, {CWMP_STAGED_DHCP, CWMP_DHCP_END_ADDRESS},
          {.at = kDhcpServer / "endIpAddress"}, {.unreadable = " get dhcp endIpAddress error\n\n"})

PARAMETER(LANDevice_LANHostConfigManagement_DHCPLeaseTime, read_only_option, {.at = kDhcpServer / "dhcpLeaseTime"},
          {.unreadable = " get dhcp_server dhcpLeaseTime error\n\n"})

namespace {

// The name servers in the DHCP server's own configuration, always three entries.
std::optional<std::string> servers_in_use() {
    constexpr int kServers = 3;
    Command configuration("cat /tmp/udhcpd_lan.conf");
    if (!configuration) return no_value(refuse({"_get_dns_server", __LINE__}, kError, "Failed to get dns_server\n"));
    std::string servers;
    int found = 0;
    const auto append = [&](const char* server) {
        if (found++ > 0) servers += ',';
        servers += server;
    };
    while (const auto line = configuration.line()) {
        const std::size_t start = line->find("dns");
        if (start == std::string::npos || found == kServers) continue;
        char word[25], server[25];
        if (std::sscanf(line->c_str() + start, "%24s %24s", word, server) == 2) append(server);
    }
    while (found < kServers) append(kNoServer);
    return servers;
}

std::optional<std::string> name_servers() {
    const auto primary = read_option(kDhcpServer / "primaryDns");
    const auto secondary = read_option(kDhcpServer / "secondaryDns");
    if (!primary || !secondary) return std::nullopt;
    if (*primary == kNoServer && *secondary == kNoServer) return servers_in_use();
    return *primary + "," + *secondary;
}

int set_name_servers(const SetArguments& set, Caller /*caller*/) {
    const std::string_view servers = set.value();
    std::size_t position = 0;
    MirroredBatch batch(kDhcpServer.package);
    int result = kDone;
    for (const char* server : {"primaryDns", "secondaryDns"}) {
        const std::string address(next_word(servers, position, ","));
        if (address.empty() || result != kDone) break;
        result = batch.set(kDhcpServer.section, server, address.c_str());
    }
    if (finish(batch, result) != kDone) return kRefused;
    set.raise(CWMP_APPLY_LAN);
    return kDone;
}

}  // namespace

int _get_dns_server(char* value) {
    const auto servers = name_servers();
    return servers ? answer_in(value, *servers) : kRefused;
}

WRITABLE(LANDevice_LANHostConfigManagement_DNSServers, set_name_servers) {
    const auto servers = name_servers();
    return servers ? get.answer(*servers) : REFUSE(" get dns-server enable error\n\n");
}
