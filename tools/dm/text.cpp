#include "text.h"

#include <cstdio>

namespace cwmp {

namespace {

struct Character {
    char32_t code;
    size_t length;  // 0: the first byte does not begin valid UTF-8
};

constexpr Character kInvalid{0, 0};

Character first_character(std::string_view text) {
    auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return kInvalid;
    char32_t code = lead & (0xFFU >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return kInvalid;
        code = code << 6 | (byte(i) & 0x3F);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kSmallest[length] || code > 0x10FFFF || surrogate) return kInvalid;
    return {code, length};
}

bool is_control(char32_t code) {
    const bool c0_or_c1 = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool reorders_line = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    const bool breaks_line = code == 0x2028 || code == 0x2029;
    return c0_or_c1 || reorders_line || breaks_line;
}

std::string escaped(std::string_view bytes) {
    if (bytes == "\n") return "\\n";
    if (bytes == "\r") return "\\r";
    if (bytes == "\t") return "\\t";
    std::string result;
    for (unsigned char byte : bytes) {
        char text[5];
        std::snprintf(text, sizeof text, "\\x%02x", byte);
        result += text;
    }
    return result;
}

}  // namespace

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.emplace_back(text);
    return parts;
}

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const Character character = first_character(text);
        const std::string_view bytes = text.substr(0, character.length ? character.length : 1);
        const bool shown = character.length && !is_control(character.code);
        result += shown ? std::string(bytes) : escaped(bytes);
        text.remove_prefix(bytes.size());
    }
    return result;
}

std::string as_utf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const size_t length = first_character(text).length;
        result += length ? std::string(text.substr(0, length)) : "\xEF\xBF\xBD";
        text.remove_prefix(length ? length : 1);
    }
    return result;
}

}  // namespace cwmp
