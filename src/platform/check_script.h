// The device's check script, as its command lines begin.
#pragma once

namespace cwmp {

inline constexpr const char* kCheckScript = "lua /usr/bin/tr069/check_params";

}  // namespace cwmp
