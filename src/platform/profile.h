// Section interfaceinfo of the device profile.
#pragma once

#include <optional>
#include <string>

#include "cwmp/platform.h"

namespace cwmp {

std::optional<std::string> profile_option(const char* option);

// A wireless interface, by its place in the platform record.
using InterfaceField = char (cwmp_interface_info::*)[CWMP_INTERFACE_NAME_SIZE];

// Its name in the profile, or the usual one where that names none.
std::string interface_name(InterfaceField field);
const char* usual_interface_name(InterfaceField field);

}  // namespace cwmp
