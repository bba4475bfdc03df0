#pragma once

#include "commands.h"

namespace cwmp {

// The paths that go on from this beginning of one, to the next level; instances are those that there are.
Words completions(Session& session, const std::string& beginning);

}  // namespace cwmp
