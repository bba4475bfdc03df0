// Lines of ps, as a test in a process of its own looks for the command that it started.
#pragma once

#include <string_view>

namespace cwmp {

// Whether a line is a run of the tool itself, or of the shell that is about to become it. A process that has the
// tool's name among its arguments is none: what asked for the test would keep it waiting.
bool shows_run_of(std::string_view tool, std::string_view line);

}  // namespace cwmp
