// A read-only parameter that is the first line of a command's output.
#pragma once

#include "core/command.h"
#include "core/handler.h"
#include "core/log.h"

namespace cwmp {

struct CommandLine {
    const char* command;
    std::size_t limit;         // bytes of the line that are read
    const char* cannot_start;  // logged, without further arguments, when there is no pipe
};

// The line, empty when the command prints none; nothing, logged under the caller's name, when it cannot
// start.
std::optional<std::string> first_line(const CommandLine& source, Caller caller = Caller::here());

// GET answers the line.
int command_line(int op, Arguments args, const CommandLine& source, Caller caller = Caller::here());

}  // namespace cwmp
