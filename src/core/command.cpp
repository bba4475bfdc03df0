#include "core/command.h"

#include <cstdlib>
#include <cstring>

namespace cwmp {

Command::Command(const char* text) : pipe_(popen(text, "re")) {}

std::optional<std::string> Command::line(std::size_t limit) {
    std::string line(limit + 1, '\0');
    if (pipe_ == nullptr || std::fgets(line.data(), static_cast<int>(line.size()), pipe_.get()) == nullptr) {
        return std::nullopt;
    }
    line.resize(std::strlen(line.c_str()));
    if (line.ends_with('\n')) line.pop_back();
    return line;
}

void run(const std::string& text) { [[maybe_unused]] const int status = std::system(text.c_str()); }

}  // namespace cwmp
