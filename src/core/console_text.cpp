#include "core/console_text.h"

#include <climits>
#include <cstring>

#include "cwmp/logging.h"

namespace cwmp {
namespace {

constexpr const char* kExpanded = "\"$`\\";

}  // namespace

bool console_expands(const char* text) { return std::strpbrk(text, kExpanded) != nullptr; }

std::string for_console(const char* text) {
    std::string shown;
    for (; *text != '\0'; ++text) {
        if (std::strchr(kExpanded, *text) != nullptr) shown += '\\';
        shown += *text;
    }
    return shown;
}

Silence::Silence(bool wanted) : level_(l_dbglvl) {
    if (wanted) l_dbglvl = INT_MIN;
}

Silence::~Silence() { l_dbglvl = level_; }

}  // namespace cwmp
