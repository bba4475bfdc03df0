#include <cstring>

#include "core/console.h"

namespace cwmp {

void write_console(const std::string& line) {
    // What means something to a shell between double quotes.
    constexpr const char* kExpanded = "\"$`\\";
    std::string quoted;
    for (const char letter : line) {
        if (letter != '\0' && std::strchr(kExpanded, letter) != nullptr) quoted += '\\';
        quoted += letter;
    }
    echo_on_console(quoted);
}

}  // namespace cwmp
