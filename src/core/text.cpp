#include "core/text.h"

#include <algorithm>
#include <cinttypes>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace cwmp {

std::optional<int> leading_decimal(const char* text) {
    char* end = nullptr;
    const long number = std::strtol(text, &end, 10);
    if (end == text) return std::nullopt;
    return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

int decimal_prefix(const char* text) { return leading_decimal(text).value_or(0); }

std::string formatted(const char* format, ...) {
    va_list args;
    va_start(args, format);
    char text[kLongestFormatted];
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

std::string decimal(std::int64_t number) { return formatted("%" PRId64, number); }

bool contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

std::string leading_digits(const std::string& text) { return text.substr(0, text.find_first_not_of("0123456789")); }

bool all_digits(const std::string& text) { return !text.empty() && leading_digits(text) == text; }

std::string_view next_word(std::string_view text, std::size_t& position, std::string_view separators) {
    const std::size_t start = text.find_first_not_of(separators, position);
    if (start == std::string_view::npos) {
        position = text.size();
        return {};
    }
    position = std::min(text.find_first_of(separators, start), text.size());
    return text.substr(start, position - start);
}

}  // namespace cwmp
