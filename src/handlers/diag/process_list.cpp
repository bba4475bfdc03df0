#include "handlers/diag/process_list.h"

#include "core/text.h"

namespace cwmp {
namespace {

// A column between the user's name and the command: size, time or state, in the words of any ps.
bool is_column(std::string_view word) {
    return word.find_first_not_of("0123456789.:?kmgRSDTtZXIWPKN<Ls+l") == std::string_view::npos;
}

// "/bin/sh", and "{sh}" for a script.
bool is_named(std::string_view word, std::string_view name) {
    if (word.starts_with('{') && word.ends_with('}')) word = word.substr(1, word.size() - 2);
    return word.substr(word.rfind('/') + 1) == name;
}

bool shows_run_of(std::string_view tool, std::string_view line) {
    constexpr int kFixedColumns = 2;  // process and user
    std::size_t position = 0;
    std::string_view word = next_word(line, position);
    for (int column = 0; !word.empty() && !is_named(word, tool); ++column) {
        if (column >= kFixedColumns && !is_column(word)) break;
        word = next_word(line, position);
    }
    if (is_named(word, "sh"sv) && next_word(line, position) == "-c"sv) word = next_word(line, position);
    return is_named(word, tool);
}

// Nothing when the list cannot be asked for.
std::optional<bool> is_shown(const RunningTool& tool, Caller caller) {
    Command processes(tool.command);
    if (!processes) {
        log_event(caller, kError, "%s", tool.cannot_start);
        return std::nullopt;
    }
    bool found = false;
    while (const auto line = processes.line(tool.limit))
        found = found || (shows_run_of(tool.name, *line) && contains(*line, tool.argument));
    return found;
}

}  // namespace

bool wait_for_tool(const RunningTool& tool, Caller caller) {
    while (true) {
        const auto shown = is_shown(tool, caller);
        if (shown != true) return shown.has_value();
        if (tool.pause != nullptr) run(tool.pause);
    }
}

}  // namespace cwmp
