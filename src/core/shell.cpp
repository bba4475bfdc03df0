#include "core/shell.h"

namespace cwmp {

std::string shell_word(const std::string& text) {
    constexpr const char* kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.:-_";
    if (text.find_first_not_of(kPlain) == std::string::npos) return text;
    std::string word = "'";
    for (const char letter : text) {
        if (letter == '\'') {
            word += "'\\''";
        } else {
            word += letter;
        }
    }
    return word + "'";
}

}  // namespace cwmp
