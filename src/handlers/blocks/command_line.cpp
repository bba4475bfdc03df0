#include "handlers/blocks/command_line.h"

#include "core/refusal.h"

namespace cwmp {

std::optional<std::string> first_line(const CommandLine& source, Caller caller) {
    Command pipe(source.command);
    if (!pipe) return no_value(refuse(caller, kError, "%s", source.cannot_start));
    return pipe.line(source.limit).value_or("");
}

int command_line(int op, Arguments args, const CommandLine& source, Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto line = first_line(source, caller);
    return line ? answer(args, *line) : kRefused;
}

}  // namespace cwmp
