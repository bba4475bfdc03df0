// Files that close themselves, and lines read from them.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace cwmp {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Lines from a descriptor, which it owns. A signal that arrives while it waits takes nothing away.
class Lines {
  public:
    explicit Lines(int descriptor = -1) : descriptor_(descriptor) {}
    ~Lines() { reset(); }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    // The next line without its newline. A longer line comes in pieces of at most limit bytes.
    std::optional<std::string> next(std::size_t limit);
    void reset(int descriptor = -1);

  private:
    bool read_more();

    int descriptor_;
    std::string text_;  // read and not handed out
};

// At most limit bytes of a file's first line; nothing when it cannot be opened or is empty.
std::optional<std::string> first_line_of_file(const char* path, std::size_t limit);

}  // namespace cwmp
