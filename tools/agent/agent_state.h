#pragma once

#include <cwmp/agent_state.h>

#include <optional>
#include <string>

namespace cwmp {

// What the agent knows of itself, from a file; nothing when none is named and the usual one does not exist.
// Throws Failure when the file cannot be read or says something else.
std::optional<cwmp_agent_state> agent_state(const std::optional<std::string>& file);

}  // namespace cwmp
