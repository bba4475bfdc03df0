// The device's check script.
#pragma once

#include <string>

#include "core/command.h"

namespace cwmp {

// As its command lines begin.
inline constexpr const char* kCheckScript = "lua /usr/bin/tr069/check_params";

// Runs one of its actions, whose result nothing waits for.
inline void run_check_script(const std::string& action) { run(std::string(kCheckScript) + " " + action); }

}  // namespace cwmp
