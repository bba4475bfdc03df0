// The Ethernet ports by their index, as concatCmd counts them.
#pragma once

#include <optional>
#include <string>

namespace cwmp {

// Empty when there is no such port; nothing when profile, mode or WAN interface cannot be read.
std::optional<std::string> ethernet_port_name(int index);

// Whether a port is the first member of the WAN bridge; names are compared by four characters.
bool is_wan_port(const std::string& name);

}  // namespace cwmp
