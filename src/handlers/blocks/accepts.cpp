#include "handlers/blocks/accepts.h"

#include <strings.h>

#include <cstdlib>
#include <cstring>

namespace cwmp {

std::optional<std::string> boolean(const char* value) {
    if (std::strcmp(value, "1") == 0 || strcasecmp(value, "true") == 0) return "1";
    if (std::strcmp(value, "0") == 0 || strcasecmp(value, "false") == 0) return "0";
    return std::nullopt;
}

std::optional<std::string> zero_or_one(const char* value) {
    const bool digit = value[0] == '0' || value[0] == '1';
    if (!digit || value[1] != '\0') return std::nullopt;
    return value;
}

std::optional<std::string> wrapping_number(const char* value) {
    return std::to_string(static_cast<std::uint32_t>(std::strtoull(value, nullptr, 10)));
}

std::optional<std::string> text_within(const char* value, std::size_t longest) {
    if (strnlen(value, longest + 1) > longest) return std::nullopt;
    return value;
}

std::optional<std::string> number_within(const char* value, std::int64_t lowest, std::int64_t highest) {
    // What does not fit 64 bits is held at their limits and so refused.
    const std::int64_t parsed = std::strtoll(value, nullptr, 10);
    if (parsed < lowest || parsed > highest) return std::nullopt;
    return std::to_string(parsed);
}

}  // namespace cwmp
