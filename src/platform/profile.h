// Section interfaceinfo of the device profile.
#pragma once

#include <optional>
#include <string>

namespace cwmp {

std::optional<std::string> profile_option(const char* option);

// A wireless interface name, or its default on devices whose profile names none.
std::string interface_name(const char* option, const char* missing);

}  // namespace cwmp
