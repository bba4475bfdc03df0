// Small helpers for the texts that store, tools and agent hand us.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cwmp {

// A literal that stands for a view: "text"sv. Without the suffix its length is counted wherever it is used.
using namespace std::string_view_literals;

// The decimal number at the start of a text, as atoi reads it but held at the limits of int; 0 without one.
int decimal_prefix(const char* text);
// The same, telling a text without a number from a zero.
std::optional<int> leading_decimal(const char* text);

// The text that printf would print, cut to fit.
inline constexpr std::size_t kLongestFormatted = 1024;
std::string formatted(const char* format, ...) __attribute__((format(printf, 1, 2)));
// A number in digits. A std::to_string for each type of number would be 0.8 KB.
std::string decimal(std::int64_t number);

bool contains(const std::string& text, const char* part);
bool all_digits(const std::string& text);
// The digits that a text begins with.
std::string leading_digits(const std::string& text);

// The first word of text from position on, blanks being the separators given; moves position behind it.
// Empty at the end of the text.
std::string_view next_word(std::string_view text, std::size_t& position, std::string_view separators = " \t\n"sv);

// Copies a text into a fixed field, cut to fit and always terminated.
template <std::size_t size>
void copy_to_field(char (&field)[size], std::string_view text) {
    field[text.copy(field, size - 1)] = '\0';
}

}  // namespace cwmp
