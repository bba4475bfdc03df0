// C streams that close themselves, and lines read from them.
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

// The next line without its newline. A longer line comes in pieces of at most limit bytes.
std::optional<std::string> read_line(std::FILE* file, std::size_t limit);

// At most limit bytes of a file's first line; nothing when it cannot be opened or is empty.
std::optional<std::string> first_line_of_file(const char* path, std::size_t limit);

}  // namespace cwmp
