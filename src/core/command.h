// Shell commands whose output is read: started by popen, closed on every path.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace cwmp {

// What a 256-byte buffer holds of a line.
inline constexpr std::size_t kLongLine = 255;

class Command {
  public:
    explicit Command(const std::string& text) : Command(text.c_str()) {}
    explicit Command(const char* text);

    // False when the shell could not be started.
    explicit operator bool() const { return pipe_ != nullptr; }

    // The next line without its newline. A longer line comes in pieces of at most limit bytes.
    std::optional<std::string> line(std::size_t limit = kLongLine);

  private:
    struct Close {
        void operator()(std::FILE* pipe) const { pclose(pipe); }
    };
    std::unique_ptr<std::FILE, Close> pipe_;
};

// Runs a command for its effect; its result does not matter to the caller.
void run(const std::string& text);

}  // namespace cwmp
