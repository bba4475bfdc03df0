// The shell, and texts of others on its command line.
#pragma once

#include <sys/types.h>

#include <string>

namespace cwmp {

// Starts /bin/sh -c TEXT as popen and system do, but without their process-wide lists and locks, so that any
// thread may and a process just forked, too. Its output goes to a descriptor; a negative one leaves it where
// the caller's goes. kNoProcess when it cannot be started; else wait_for must follow.
inline constexpr pid_t kNoProcess = -1;
pid_t start_shell(const char* text, int output);
void wait_for(pid_t process);

// Runs the text to its end. Its result does not matter.
void run_shell(const char* text);

// The text as one word of a shell command: as it is while it holds only letters, digits, '.', ':', '-' and
// '_', otherwise in single quotes.
std::string shell_word(const std::string& text);

}  // namespace cwmp
