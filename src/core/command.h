// Shell commands whose output is read, and those that are run for their effect.
#pragma once

#include <optional>
#include <string>

#include "core/file.h"
#include "core/shell.h"

namespace cwmp {

// What a 256-byte buffer holds of a line.
inline constexpr std::size_t kLongLine = 255;

// A command while its output is read; it is waited for at the end. In a bulk read it runs at the first time only.
// For commands that change nothing.
class Command {
  public:
    explicit Command(const std::string& text) : Command(text.c_str()) {}
    explicit Command(const char* text);
    // One of others, who alone know what it changes: never kept.
    struct Foreign {};
    Command(const char* text, Foreign /*kind*/) { start(text); }
    ~Command();
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    // False when the shell could not be started.
    explicit operator bool() const { return answers_; }

    // The next line without its newline. A longer line comes in pieces of at most limit bytes.
    std::optional<std::string> line(std::size_t limit = kLongLine) { return output_.next(limit); }

  private:
    void start(const char* text);

    Lines output_;
    pid_t shell_ = kNoProcess;
    bool answers_ = false;
};

// Runs a command for its effect; its result does not matter to the caller.
void run(const std::string& text);
// The same for one that changes nothing but a file which is read afterwards. In a bulk read it runs once.
void refresh(const std::string& text);

}  // namespace cwmp
