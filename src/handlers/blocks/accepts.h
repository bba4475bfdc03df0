// What a SET takes. Each check answers the text to store, or nothing for a value that it refuses.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace cwmp {

using Check = std::optional<std::string> (*)(const char* value);

// "1" or "true", "0" or "false", in any case: stored as a digit.
std::optional<std::string> boolean(const char* value);
// Exactly "0" or "1".
std::optional<std::string> zero_or_one(const char* value);
// The decimal number that a text begins with, without bounds, as unsigned 32 bits: "-1" is 4294967295, a text
// without a number 0.
std::optional<std::string> wrapping_number(const char* value);

// A canonical dotted IPv4 address.
std::optional<std::string> ipv4_address(const char* value);
// At most 254 bytes without a control character: what a user name or password may be.
std::optional<std::string> credential(const char* value);
// At most 64 printable ASCII characters that mean nothing to a shell, no '-' first.
std::optional<std::string> service_name(const char* value);
// A host's name or address: 1 to 253 letters, digits, '.' and '-', no '-' first.
std::optional<std::string> host_name(const char* value);
// Decimal digits and nothing else, for a number within the bounds.
std::optional<std::string> digits_within(const char* value, std::int64_t lowest, std::int64_t highest);

std::optional<std::string> text_within(const char* value, std::size_t longest);
std::optional<std::string> number_within(const char* value, std::int64_t lowest, std::int64_t highest);

// A text of at most so many bytes.
template <std::size_t longest>
std::optional<std::string> at_most(const char* value) {
    return text_within(value, longest);
}

// The decimal number that a text begins with (0 without one), stored without what surrounds it.
template <std::int64_t lowest, std::int64_t highest>
std::optional<std::string> number(const char* value) {
    static_assert(lowest >= INT_MIN && highest <= UINT_MAX, "the agent knows numbers of 32 bits");
    return number_within(value, lowest, highest);
}

template <std::int64_t lowest, std::int64_t highest>
std::optional<std::string> digits(const char* value) {
    return digits_within(value, lowest, highest);
}

}  // namespace cwmp
