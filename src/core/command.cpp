#include "core/command.h"

#include <cstdlib>

#include "core/file.h"

namespace cwmp {

Command::Command(const char* text) : pipe_(popen(text, "re")) {}

std::optional<std::string> Command::line(std::size_t limit) {
    return pipe_ != nullptr ? read_line(pipe_.get(), limit) : std::nullopt;
}

void run(const std::string& text) { [[maybe_unused]] const int status = std::system(text.c_str()); }

}  // namespace cwmp
