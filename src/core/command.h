// Shell commands whose output is read, and those that are run for their effect.
#pragma once

#include <string>

#include "core/file.h"
#include "core/shell.h"

namespace cwmp {

// What a 256-byte buffer holds of a line.
inline constexpr std::size_t kLongLine = 255;

// A command while its output is read; it is waited for at the end.
class Command {
  public:
    explicit Command(const std::string& text) : Command(text.c_str()) {}
    explicit Command(const char* text);
    ~Command();
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    // False when the shell could not be started.
    explicit operator bool() const { return shell_ != kNoProcess; }

    // The next line without its newline. A longer line comes in pieces of at most limit bytes.
    std::optional<std::string> line(std::size_t limit = kLongLine) { return output_.next(limit); }

  private:
    Lines output_;
    pid_t shell_ = kNoProcess;
};

// Runs a command for its effect; its result does not matter to the caller.
void run(const std::string& text);

}  // namespace cwmp
