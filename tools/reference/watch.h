#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

// Stands between the library and the world outside: this program's own posix_spawn, waitpid, fork, fsync, uci_load and
// uci_lookup_next are found before those of the C library and libuci. What the library asks for is noted, and
// what a command answers may be remembered or made up.
namespace cwmp::watch {

struct Seen {
    std::vector<std::string> commands;  // in order, without those that write the console log
    std::vector<std::string> logged;    // messages of the console log, without process, function and line
    std::vector<std::string> options;   // places of the store that were looked up, each once: package.section.option
};

// Begins to note, or forgets what was noted so far.
void begin();
Seen seen();

// Whether a command was run for its effect since then.
bool ran_for_effect();

// While they are remembered, a command that was read before answers the same without being run. Running a command
// for its effect ends that until it is switched on again.
void remember_answers(bool on);
void forget_answers();

// While unknown commands are silenced, one whose answer is not remembered answers nothing and is not run, and none is
// run for its effect.
void silence_unknown(bool on);

// The text that every command answers; what it returns nothing for is run.
using MadeUp = std::function<std::optional<std::string>(const std::string& command)>;
void make_up_answers(MadeUp answers);

// The command that cannot be started, none if empty.
void keep_from_starting(const std::string& command);

}  // namespace cwmp::watch
