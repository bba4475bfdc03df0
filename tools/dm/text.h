#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cwmp {

std::vector<std::string> split(std::string_view text, char separator);

// The text with control characters and bytes that are not UTF-8 escaped, safe to show on a terminal.
std::string printable(std::string_view text);

// The text with each byte that is not UTF-8 replaced by U+FFFD, as JSON strings must be UTF-8.
std::string as_utf8(std::string_view text);

// A decimal number that fills the whole text.
template <typename Number>
std::optional<Number> decimal(std::string_view text) {
    Number number{};
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

}  // namespace cwmp
