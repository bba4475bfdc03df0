#include "core/command.h"

#include <fcntl.h>
#include <unistd.h>

#include "core/bulk_read.h"

namespace cwmp {

Command::Command(const char* text) {
    if (const std::string* known = kept_output(text)) {
        output_.put(*known);
        answers_ = true;
        return;
    }
    start(text);
    if (answers_ && in_bulk_read() && output_.read_all(bulk_read_room())) keep_output(text, output_.rest());
}

void Command::start(const char* text) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    output_.reset(Descriptor(ends[0]));
    shell_ = start_shell(text, ends[1]);
    close(ends[1]);
    answers_ = shell_ != kNoProcess;
}

Command::~Command() {
    // A command that still writes ends now.
    output_.reset();
    if (shell_ != kNoProcess) wait_for(shell_);
}

void run(const std::string& text) {
    end_bulk_read();
    run_shell(text.c_str());
}

void refresh(const std::string& text) {
    if (kept_output(text.c_str()) != nullptr) return;
    run_shell(text.c_str());
    forget_packages();
    if (in_bulk_read()) keep_output(text.c_str(), "");
}

}  // namespace cwmp
