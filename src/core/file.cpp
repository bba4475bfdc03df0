#include "core/file.h"

#include <cstring>

namespace cwmp {

std::optional<std::string> read_line(std::FILE* file, std::size_t limit) {
    std::string line(limit + 1, '\0');
    if (std::fgets(line.data(), static_cast<int>(line.size()), file) == nullptr) return std::nullopt;
    line.resize(std::strlen(line.c_str()));
    if (line.ends_with('\n')) line.pop_back();
    return line;
}

std::optional<std::string> first_line_of_file(const char* path, std::size_t limit) {
    const File file(std::fopen(path, "re"));
    return file != nullptr ? read_line(file.get(), limit) : std::nullopt;
}

}  // namespace cwmp
