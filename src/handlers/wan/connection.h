// What the IP and the PPP connection of the WAN have in common.
#pragma once

#include <optional>
#include <string>

#include "core/handler.h"

namespace cwmp::wan {

// The number of the WAN connection that a path's instance numbers choose: 1 internet, 2 management, 0
// neither. It is the second number under WANDevice.1, or the first where the path has but one.
int connection_of(const int* locate);
// The same; nothing, logged under the caller's name, for neither.
std::optional<int> require_connection(const int* locate, Caller caller = Caller::here());

// A read-only parameter: the state that ubus reports of an interface, in TR-098's words.
int connection_status(int op, Arguments args, const char* interface, const char* cannot_start,
                      Caller caller = Caller::here());

// The two exported name-server calls, which these stand behind.
std::optional<std::string> ip_name_servers(const int* locate);
std::optional<std::string> ppp_name_servers();

}  // namespace cwmp::wan
