#include "handlers/blocks/accepts.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/text.h"
#include "cwmp/value_checks.h"

namespace cwmp {

namespace {

// The locale plays no part in what these are, nor whether char is signed.
bool is_control(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }
bool is_alphanumeric(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool is_harmless(char c) { return c >= ' ' && c <= '~' && std::strchr("\"'$\\;&|<>`", c) == nullptr; }
bool is_of_host(char c) { return is_alphanumeric(c) || c == '.' || c == '-'; }

std::optional<std::string> word_within(const char* value, std::size_t longest, bool (*allowed)(char)) {
    const auto text = text_within(value, longest);
    if (!text || text->starts_with('-')) return std::nullopt;
    return std::all_of(text->begin(), text->end(), allowed) ? text : std::nullopt;
}

}  // namespace

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
    return decimal(static_cast<std::uint32_t>(std::strtoull(value, nullptr, 10)));
}

std::optional<std::string> ipv4_address(const char* value) {
    if (checkValidIP(value) != 1) return std::nullopt;
    return value;
}

std::optional<std::string> credential(const char* value) {
    const auto text = text_within(value, 254);
    return text && std::none_of(text->begin(), text->end(), is_control) ? text : std::nullopt;
}

std::optional<std::string> service_name(const char* value) { return word_within(value, 64, is_harmless); }

std::optional<std::string> host_name(const char* value) {
    return *value != '\0' ? word_within(value, 253, is_of_host) : std::nullopt;
}

std::optional<std::string> digits_within(const char* value, std::int64_t lowest, std::int64_t highest) {
    return all_digits(value) ? number_within(value, lowest, highest) : std::nullopt;
}

std::optional<std::string> text_within(const char* value, std::size_t longest) {
    if (strnlen(value, longest + 1) > longest) return std::nullopt;
    return value;
}

std::optional<std::string> number_within(const char* value, std::int64_t lowest, std::int64_t highest) {
    // What does not fit 64 bits is held at their limits and so refused.
    const std::int64_t parsed = std::strtoll(value, nullptr, 10);
    if (parsed < lowest || parsed > highest) return std::nullopt;
    return decimal(parsed);
}

}  // namespace cwmp
