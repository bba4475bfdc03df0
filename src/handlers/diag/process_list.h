// Lines of ps, as a test in a process of its own looks for the command that it started.
#pragma once

#include "core/command.h"
#include "core/log.h"

namespace cwmp {

// A tool that the list shows while it runs: the tool itself, or the shell that is about to become it. A process that
// has the tool's name among its arguments is none: what asked for the test would keep it waiting.
struct RunningTool {
    const char* command = nullptr;  // lists the processes
    const char* name = nullptr;
    const char* argument = nullptr;  // that stands in the line, too
    std::size_t limit = kLongLine;   // bytes of a line that are read at a time
    const char* pause = nullptr;     // a command between two looks
    const char* cannot_start = nullptr;
};

// Waits until the list shows the tool no more; false, logged, when the list cannot be asked for.
bool wait_for_tool(const RunningTool& tool, Caller caller);

}  // namespace cwmp
