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

// Likewise, and "\\" for a backslash, so that from_line() gives the text back; nothing when that is no such line.
std::string as_line(std::string_view text);
std::optional<std::string> from_line(std::string_view line);

// The text in pieces of at most so many bytes, cut between characters.
std::vector<std::string> folded(std::string_view text, size_t width);

// The text with each byte that is not UTF-8 replaced by U+FFFD, as JSON strings must be UTF-8.
std::string as_utf8(std::string_view text);

// Whether the text holds the part, whatever the case of letters.
bool contains(std::string_view text, std::string_view part);

// The candidate that a mistyped word most likely means, none when no one is near. Case does not count.
std::optional<std::string> nearest(std::string_view word, const std::vector<std::string>& candidates);

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
