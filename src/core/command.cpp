#include "core/command.h"

#include <fcntl.h>
#include <unistd.h>

namespace cwmp {

Command::Command(const char* text) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    output_.reset(ends[0]);
    shell_ = start_shell(text, ends[1]);
    close(ends[1]);
}

Command::~Command() {
    // A command that still writes ends now.
    output_.reset();
    if (shell_ != kNoProcess) wait_for(shell_);
}

void run(const std::string& text) { run_shell(text.c_str()); }

}  // namespace cwmp
