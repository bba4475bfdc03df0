#include "text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <numeric>

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

constexpr std::pair<char, char> kEscapes[] = {{'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {'\\', '\\'}};

std::string escaped(std::string_view bytes) {
    for (const auto& [character, letter] : kEscapes) {
        if (bytes.size() == 1 && bytes.front() == character) return {'\\', letter};
    }
    std::string result;
    for (unsigned char byte : bytes) {
        char text[5];
        std::snprintf(text, sizeof text, "\\x%02x", byte);
        result += text;
    }
    return result;
}

bool same_letter(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

// Letters to insert, leave out or exchange, row by row of the usual matrix.
size_t distance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const char letter : a) {
        size_t diagonal = row[0]++;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t exchanged = diagonal + (same_letter(letter, b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace

bool contains(std::string_view text, std::string_view part) {
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same_letter) != text.end();
}

std::optional<std::string> nearest(std::string_view word, const std::vector<std::string>& candidates) {
    std::optional<std::string> found;
    size_t least = (word.size() + 2) / 3 + 1;
    for (const std::string& candidate : candidates) {
        const size_t far = distance(word, candidate);
        if (far < least) {
            least = far;
            found = candidate;
        }
    }
    return found;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.emplace_back(text);
    return parts;
}

namespace {

// What most texts are made of, and is shown as it is.
bool is_plain(char letter) { return letter >= ' ' && letter <= '~' && letter != '\\'; }

std::string shown(std::string_view text, bool backslash_too) {
    std::string result;
    while (!text.empty()) {
        size_t plain = 0;
        while (plain < text.size() && is_plain(text[plain])) ++plain;
        result += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) break;
        const Character character = first_character(text);
        const std::string_view bytes = text.substr(0, character.length ? character.length : 1);
        const bool kept = character.length && !is_control(character.code) && !(backslash_too && bytes == "\\");
        if (kept) {
            result += bytes;
        } else {
            result += escaped(bytes);
        }
        text.remove_prefix(bytes.size());
    }
    return result;
}

}  // namespace

std::string printable(std::string_view text) { return shown(text, false); }

std::string as_line(std::string_view text) { return shown(text, true); }

std::optional<std::string> from_line(std::string_view line) {
    std::string text;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] != '\\') {
            text += line[i];
            continue;
        }
        const char letter = ++i < line.size() ? line[i] : '\0';
        const auto* const escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                                [&](const auto& known) { return known.second == letter; });
        if (escape != std::end(kEscapes)) {
            text += escape->first;
            continue;
        }
        unsigned char byte = 0;
        const char* digits = line.data() + i + 1;
        if (letter != 'x' || line.size() - i < 3 || std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2)
            return std::nullopt;
        text += static_cast<char>(byte);
        i += 2;
    }
    return text;
}

std::vector<std::string> folded(std::string_view text, size_t width) {
    if (text.size() <= width) return {std::string(text)};
    std::vector<std::string> pieces(1);
    while (!text.empty()) {
        const size_t length = std::max<size_t>(first_character(text).length, 1);
        if (pieces.back().size() + length > width && !pieces.back().empty()) pieces.emplace_back();
        pieces.back() += text.substr(0, length);
        text.remove_prefix(length);
    }
    return pieces;
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
