// Actions that the device's check script takes for the mesh. Nothing waits for their results.
#pragma once

#include <string>

#include "core/command.h"
#include "platform/check_script.h"

namespace cwmp {

inline void run_mesh_action(const std::string& action) { run(std::string(kCheckScript) + " " + action); }

}  // namespace cwmp
