// The device console.
#pragma once

#include <string>

namespace cwmp {

// Writes a line, as it is, to /dev/console. The build chooses how, by a shell or directly; what arrives are the
// same bytes.
void write_console(const std::string& line);

// The same by a shell's echo, between double quotes: the shell expands what it finds there.
void echo_on_console(const std::string& line);

}  // namespace cwmp
