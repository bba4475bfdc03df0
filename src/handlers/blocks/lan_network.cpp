#include "handlers/blocks/lan_network.h"

#include "core/addresses.h"
#include "cwmp/value_checks.h"
#include "handlers/blocks/option.h"

namespace cwmp {

bool Lan::has_host(const char* host) const {
    return address_number(host) != address_number(address.c_str()) &&
           libutil_netChkSameSubnet(host, nullptr, address.c_str(), mask.c_str()) == 1;
}

std::string Lan::complete(const std::string& host) const { return host_address(address.c_str(), mask.c_str(), host); }

std::optional<Lan> read_lan(Caller caller) {
    constexpr Section kLan{"network", "lan"};
    auto address = read_reported(kLan / "ipaddr", "failed to get lan ip\n", caller);
    if (!address) return std::nullopt;
    auto mask = read_reported(kLan / "netmask", "failed to get lan mask\n", caller);
    if (!mask) return std::nullopt;
    return Lan{std::move(*address), std::move(*mask)};
}

}  // namespace cwmp
