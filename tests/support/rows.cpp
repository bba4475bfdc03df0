#include "rows.h"

#include <cctype>
#include <cstdio>
#include <string_view>

namespace rows {
namespace {

// "1..3" as its three numbers.
Words range(const std::string& word) {
    const auto dots = word.find("..");
    if (dots == std::string::npos || std::isdigit(static_cast<unsigned char>(word[0])) == 0) return {word};
    Words numbers;
    for (int each = std::stoi(word); each <= std::stoi(word.substr(dots + 2)); ++each)
        numbers.push_back(std::to_string(each));
    return numbers;
}

}  // namespace

Words split(const std::string& text, const std::string& end) {
    Words parts;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t stop = std::min(text.find(end, start), text.size());
        parts.push_back(text.substr(start, stop - start));
        start = stop + end.size();
    }
    return parts;
}

std::string take_until(std::string& text, const std::string& mark) {
    const auto end = text.find(mark);
    const std::string head = text.substr(0, end);
    text.erase(0, end == std::string::npos ? end : end + mark.size());
    return head;
}

std::string joined(const Words& parts, const std::string& separator) {
    std::string text;
    for (const auto& part : parts)
        if (!part.empty()) text += (text.empty() ? "" : separator) + part;
    return text;
}

std::string unescape(const std::string& text) {
    constexpr std::string_view kLetters = "ntr", kMeant = "\n\t\r";
    std::string seen;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char repeated = 0, letter = text[i];
        std::size_t times = 0;
        int length = 0;
        if (letter == '{' && std::sscanf(&text[i], "{%c*%zu}%n", &repeated, &times, &length) == 2 && length > 0) {
            seen.append(times, repeated);
            i += length - 1;
            continue;
        }
        if (text[i] == '\\' && i + 1 < text.size()) {
            letter = text[++i];
            const auto known = kLetters.find(letter);
            if (known != std::string_view::npos) letter = kMeant[known];
            if (text[i] == 'x') {
                letter = static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
                i += 2;
            }
        }
        seen += letter;
    }
    return seen;
}

std::string escape(const std::string& text) {
    constexpr std::size_t kLongRun = 16;  // of one byte, told by its length
    std::string seen;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char byte = text[i];
        const std::size_t run = std::min(text.find_first_not_of(byte, i), text.size()) - i;
        const bool is_seen = std::isprint(static_cast<unsigned char>(byte)) != 0;
        if (run >= kLongRun && is_seen) {
            seen += std::string("{") + byte + "*" + std::to_string(run) + "}";
            i += run - 1;
        } else if (byte == '\n' || byte == '\t' || byte == '\r') {
            seen += byte == '\n' ? "\\n" : byte == '\t' ? "\\t" : "\\r";
        } else if (!is_seen || (byte == ' ' && (i == 0 || i + 1 == text.size()))) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02x", static_cast<unsigned char>(byte));
            seen += hex;
        } else {
            seen += byte;
        }
    }
    return seen;
}

Words expand(const std::string& text) {
    const auto open = text.find('{');
    const auto close = text.find('}', open);
    if (open == std::string::npos || close == std::string::npos) return {text};
    Words expanded, middles;
    for (const auto& word : split(text.substr(open + 1, close - open - 1) + ",", ","))
        for (const auto& each : range(word)) middles.push_back(each);
    if (middles.size() == 1) middles = {text.substr(open, close + 1 - open)};
    for (const auto& middle : middles)
        for (const auto& end : expand(text.substr(close + 1))) expanded.push_back(text.substr(0, open) + middle + end);
    return expanded;
}

Words words(const std::string& text) {
    Words found;
    for (std::size_t i = text.find_first_not_of(' '); i < text.size(); i = text.find_first_not_of(' ', i)) {
        const bool quoted = text[i] == '\'';
        const std::size_t end = std::min(text.find(quoted ? '\'' : ' ', i + 1), text.size());
        found.push_back(quoted ? "'" + unescape(text.substr(i + 1, end - i - 1)) : text.substr(i, end - i));
        i = end + (quoted ? 1 : 0);
    }
    return found;
}

}  // namespace rows
