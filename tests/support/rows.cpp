#include "rows.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <regex>

namespace rows {

Words split(const std::string& text, const std::string& end) {
    Words parts;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t stop = std::min(text.find(end, start), text.size());
        parts.push_back(text.substr(start, stop - start));
        start = stop + end.size();
    }
    return parts;
}

std::string trim(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string take_until(std::string& text, const std::string& mark) {
    const auto end = text.find(mark);
    const std::string head = text.substr(0, end);
    text.erase(0, end == std::string::npos ? end : end + mark.size());
    return head;
}

std::string joined(const Words& parts, const std::string& separator) {
    std::string text;
    for (const auto& part : parts) text += (&part == parts.data() ? "" : separator) + part;
    return text;
}

std::string unescape(const std::string& text) {
    const auto byte_of = [](char letter) {
        return letter == 'n' ? '\n' : letter == 't' ? '\t' : letter == 'r' ? '\r' : letter;
    };
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char byte = 0;
        unsigned count = 0;
        int length = 0;
        if (text[i] == '{' && std::sscanf(text.c_str() + i, "{%c*%u}%n", &byte, &count, &length) == 2 &&
            length > 0) {
            plain.append(count, byte);
            i += static_cast<std::size_t>(length) - 1;
        } else if (text[i] == '\\' && i + 1 < text.size()) {
            const bool is_hex = text[++i] == 'x';
            plain +=
                is_hex ? static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16)) : byte_of(text[i]);
            i += is_hex ? 2 : 0;
        } else {
            plain += text[i];
        }
    }
    return plain;
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
    Words expanded;
    for (const auto& middle : split(text.substr(open + 1, close - open - 1) + ",", ",")) {
        for (const auto& end : expand(text.substr(close + 1)))
            expanded.push_back(text.substr(0, open) + middle + end);
    }
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

std::string shortened(const std::string& told) {
    static const std::regex kSection(R"((^| [|/] )(/|[\w/-]{1,40}\.[^.=: ]{1,40}(?=\.[\w-]{1,40}=|:)))");
    std::string text, section;
    auto rest = told.cbegin();
    for (std::sregex_iterator at(told.begin(), told.end(), kSection), end; at != end; ++at) {
        text.append(rest, (*at)[2].first);
        if (section != (*at)[2] || section == "/") text += (*at)[2];
        section = (*at)[2];
        rest = (*at)[2].second;
    }
    return text.append(rest, told.cend());
}

}  // namespace rows
