#include "rows.h"

#include <uci.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

namespace fs = std::filesystem;

namespace rows {
namespace {

constexpr std::size_t kLongRun = 16;  // of one byte, told by its length

constexpr const char* kStores[] = {"/etc/config", "/tmp/tr069", "/tmp/cwmp-config", "/tmp/cwmp-config-force",
                                   "/etc/profile.d"};
constexpr const char* kFiles[] = {"/tmp", "/var/tmp", "/var/state"};

std::string text_of(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::string value_of(const uci_option& option) {
    if (option.type == UCI_TYPE_STRING) return option.v.string;
    std::string list;
    uci_element* item = nullptr;
    uci_foreach_element(&option.v.list, item) list += (list.empty() ? "" : ",") + std::string(item->name);
    return "[" + list + "]";
}

void read_package(const fs::path& file, Snapshot& found) {
    std::unique_ptr<uci_context, decltype(&uci_free_context)> context(uci_alloc_context(), &uci_free_context);
    uci_set_confdir(context.get(), file.parent_path().c_str());
    uci_set_savedir(context.get(), "/nowhere");
    uci_element* path = nullptr;
    uci_foreach_element(&context->delta_path, path) path->name[0] = '\0';
    uci_package* package = nullptr;
    if (uci_load(context.get(), file.filename().c_str(), &package) != UCI_OK) {
        const std::string text = text_of(file);
        if (!text.empty()) found[file] = text;  // such as the notes of a transaction while there are none
        return;
    }
    const std::string directory = file.parent_path().filename();
    const std::string name = (directory == "config" ? "" : directory + "/") + std::string(file.filename());
    found[name + "."] = "";
    std::map<std::string, int> anonymous;
    uci_element* s = nullptr;
    uci_foreach_element(&package->sections, s) {
        const uci_section* section = uci_to_section(s);
        std::string key = name + "." + s->name;
        if (section->anonymous)
            key = name + ".@" + section->type + "[" + std::to_string(anonymous[section->type]++) + "]";
        found[key] = section->type;
        uci_element* o = nullptr;
        uci_foreach_element(&section->options, o) found[key + "." + o->name] = value_of(*uci_to_option(o));
    }
}

// "package.", "package.section" and "package.section.option" by their number of dots; a file has a path.
std::string parent_of(const std::string& key) {
    const auto name = key.rfind('/') + 1;
    const auto dot = key.find('.', name);
    const auto last = key.rfind('.');
    return key[0] == '/' || dot + 1 == key.size() ? key : key.substr(0, dot == last ? dot + 1 : last);
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

std::string trim(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string unescape(const std::string& text) {
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
            const char letter = text[++i];
            if (letter == 'x') {
                plain += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
                i += 2;
            } else {
                plain += letter == 'n' ? '\n' : letter == 't' ? '\t' : letter == 'r' ? '\r' : letter;
            }
        } else {
            plain += text[i];
        }
    }
    return plain;
}

std::string escape(const std::string& text) {
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

Snapshot snapshot() {
    Snapshot found;
    std::error_code none;
    for (const char* directory : kStores) {
        for (const auto& entry : fs::directory_iterator(directory, none)) {
            if (entry.is_regular_file()) read_package(entry.path(), found);
        }
    }
    for (const char* directory : kFiles) {
        for (fs::recursive_directory_iterator entry(directory, none), end; entry != end; ++entry) {
            const std::string path = entry->path();
            bool is_package = false;
            for (const char* store : kStores)
                is_package = is_package || path.starts_with(std::string(store) + "/");
            // The check script keeps notes of its own.
            if (is_package || !entry->is_regular_file() || path == "/var/state/check_params") continue;
            const std::string text = text_of(path);
            // libuci leaves an empty file of changes behind.
            if (!text.empty() || !path.starts_with("/tmp/.uci/")) found[path] = text;
        }
    }
    return found;
}

Words changes(const Snapshot& before, const Snapshot& after) {
    Words told;
    for (const auto& [key, text] : before) {
        const std::string parent = parent_of(key);
        if (!after.contains(key) && (parent == key || after.contains(parent))) told.push_back("-" + key);
    }
    std::string section;  // told last; what else changed in it is told by the option alone
    for (const auto& [key, text] : after) {
        const auto old = before.find(key);
        if (old != before.end() && old->second == text) continue;
        const bool is_file = key[0] == '/';
        if (!is_file && key.back() == '.') {
            told.push_back("+" + key);
        } else if (!is_file && parent_of(key).back() == '.') {
            told.push_back(key + ":" + text);
            section = key;
        } else if (is_file && old != before.end() && !old->second.empty() && text.starts_with(old->second)) {
            told.push_back(key + "+=" + escape(text.substr(old->second.size())));
        } else {
            const bool again = !is_file && parent_of(key) == section;
            told.push_back((again ? key.substr(section.size()) : key) + "=" + escape(text));
            section = is_file ? "" : parent_of(key);
        }
    }
    return told;
}

}  // namespace rows
