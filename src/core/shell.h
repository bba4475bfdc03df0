// Texts of others on a command line.
#pragma once

#include <string>

namespace cwmp {

// The text as one word of a shell command: as it is while it holds only letters, digits, '.', ':', '-' and
// '_', otherwise in single quotes.
std::string shell_word(const std::string& text);

}  // namespace cwmp
