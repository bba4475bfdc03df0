// Lines read from files and pipes.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "core/descriptor.h"

namespace cwmp {

// Lines from a descriptor, which it owns. A signal that arrives while it waits takes nothing away.
class Lines {
  public:
    explicit Lines(Descriptor descriptor = Descriptor()) : descriptor_(std::move(descriptor)) {}

    // The next line without its newline. A longer line comes in pieces of at most limit bytes.
    std::optional<std::string> next(std::size_t limit);
    void reset(Descriptor descriptor = Descriptor()) { descriptor_ = std::move(descriptor); }
    // Lines of a text that is known already.
    void put(std::string text) { text_ = std::move(text); }
    // Reads on to the end, of at most so many bytes; false when there are more.
    bool read_all(std::size_t most);
    // What was read and not handed out.
    const std::string& rest() const { return text_; }

  private:
    bool read_more();

    Descriptor descriptor_;
    std::string text_;
};

// At most limit bytes of a file's first line; nothing when it cannot be opened, is empty or no file: a
// pipe that somebody has made in its place is not waited for.
std::optional<std::string> first_line_of_file(const char* path, std::size_t limit);

}  // namespace cwmp
