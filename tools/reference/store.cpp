#include "store.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace cwmp {

namespace fs = std::filesystem;

namespace {

constexpr const char* kWatched[] = {"/etc/config", "/etc/profile.d", "/tmp", "/var/tmp", "/var/state"};
constexpr const char* kLiveStore = "/etc/config/";

// Files written here carry this time, by which a file that nobody has touched since is known.
constexpr time_t kStamp = 1000000000;

Files& stamped() {
    static Files files;
    return files;
}

std::string text_of(const fs::path& path) {
    struct stat status = {};
    const auto known = stamped().find(path);
    if (known != stamped().end() && stat(path.c_str(), &status) == 0 && status.st_mtime == kStamp) return known->second;
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

struct Line {
    std::string text;
    std::string section;  // that it belongs to
    std::string option;   // empty: it is no option
    std::string value;
};

// The lines of a package in words; what is quoted may go over several lines.
std::vector<Line> lines_of(const std::string& text) {
    std::vector<Line> lines;
    std::map<std::string, int> unnamed;
    std::vector<std::string> words;
    std::string section;
    std::size_t begin = 0;
    bool inside = false;
    char quote = 0;
    auto add = [&](char letter) {
        if (!inside) words.emplace_back();
        inside = true;
        if (letter) words.back() += letter;
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char letter = text[at];
        if (letter == '\\' && quote != '\'' && at + 1 < text.size()) {
            add(text[++at]);
        } else if (quote ? letter == quote : letter == '\'' || letter == '"') {
            add(0);
            quote = quote ? '\0' : letter;
        } else if (quote || (letter != ' ' && letter != '\t' && letter != '\n')) {
            add(letter);
        } else {
            inside = false;
        }
        if (quote || (letter != '\n' && at + 1 < text.size())) continue;
        Line line{text.substr(begin, at + 1 - begin), "", "", ""};
        if (words.size() >= 2 && words[0] == "config") {
            const std::string& type = words[1];
            section = words.size() > 2 ? words[2] : "@" + type + "[" + std::to_string(unnamed[type]++) + "]";
            line.option = ".type";
            line.value = type;
        } else if (words.size() >= 3 && (words[0] == "option" || words[0] == "list")) {
            line.option = words[1];
            line.value = words[2];
        }
        line.section = section;
        lines.push_back(std::move(line));
        begin = at + 1;
        words.clear();
        inside = false;
    }
    return lines;
}

bool is_package(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\n");
    return first == std::string::npos || text.compare(first, 7, "config ") == 0 ||
           text.compare(first, 8, "package ") == 0;
}

std::map<std::string, std::string> options_of(const std::string& text) {
    std::map<std::string, std::string> options;
    for (const Line& line : lines_of(text)) {
        if (line.option.empty()) continue;
        std::string& value = options[line.section + (line.option == ".type" ? "" : "." + line.option)];
        value += (value.empty() ? "" : " ") + line.value;
    }
    return options;
}

std::string place_name(const std::string& path) {
    return path.starts_with(kLiveStore) ? path.substr(std::string(kLiveStore).size()) : path;
}

const std::string* find(const Files& files, const std::string& path) {
    const auto entry = files.find(path);
    return entry == files.end() ? nullptr : &entry->second;
}

void add_package_changes(const std::string& path, const std::string& before, const std::string& after,
                         std::vector<Change>& found) {
    const auto old_options = options_of(before);
    const auto new_options = options_of(after);
    for (const auto& [option, value] : old_options) {
        if (!new_options.contains(option)) found.push_back({place_name(path) + "." + option, std::nullopt});
    }
    for (const auto& [option, value] : new_options) {
        const auto old = old_options.find(option);
        if (old == old_options.end() || old->second != value) found.push_back({place_name(path) + "." + option, value});
    }
}

}  // namespace

void keep_files_in_memory() {
    const Files files = read_files();
    if (unshare(CLONE_NEWNS) != 0) return;
    for (const char* directory : kWatched) {
        std::error_code error;
        fs::create_directories(directory, error);
        if (mount("tmpfs", directory, "tmpfs", 0, "mode=1777") != 0) return;
        for (const auto& [path, text] : files) {
            if (path.starts_with(std::string(directory) + "/")) write_file(path, text);
        }
    }
}

Files read_files() {
    Files files;
    for (const char* directory : kWatched) {
        std::error_code error;
        for (fs::recursive_directory_iterator entry(directory, error), end; !error && entry != end;
             entry.increment(error)) {
            if (entry->is_regular_file(error)) files[entry->path()] = text_of(entry->path());
        }
    }
    return files;
}

void write_file(const std::string& path, const std::string& text) {
    std::error_code error;
    fs::create_directories(fs::path(path).parent_path(), error);
    std::ofstream(path, std::ios::binary) << text;
    const timespec times[2] = {{kStamp, 0}, {kStamp, 0}};
    utimensat(AT_FDCWD, path.c_str(), times, 0);
    stamped()[path] = text;
}

void restore_files(const Files& files, const Files& now) {
    for (const auto& [path, text] : now) {
        if (!files.contains(path)) fs::remove(path);
    }
    for (const auto& [path, text] : files) {
        const std::string* current = find(now, path);
        if (!current || *current != text) write_file(path, text);
    }
}

void restore_files(const Files& files) { restore_files(files, read_files()); }

std::vector<Change> changes(const Files& before, const Files& after) {
    std::vector<Change> found;
    auto compare = [&](const std::string& path, const std::string* old_text, const std::string* new_text) {
        if (old_text && new_text && *old_text == *new_text) return;
        if (is_package(old_text ? *old_text : "") && is_package(new_text ? *new_text : "")) {
            add_package_changes(path, old_text ? *old_text : "", new_text ? *new_text : "", found);
        } else if (new_text) {
            found.push_back({path, *new_text});
        } else {
            found.push_back({path, std::nullopt});
        }
    };
    for (const auto& [path, text] : before) compare(path, &text, find(after, path));
    for (const auto& [path, text] : after) {
        if (!before.contains(path)) compare(path, nullptr, &text);
    }
    return found;
}

std::optional<std::string> with_option(const std::string& text, const std::string& section, const std::string& option,
                                       const std::optional<std::string>& value) {
    std::string result;
    bool inside = false, done = false;
    const std::string added = value ? "\toption " + option + " '" + *value + "'\n" : "";
    for (const Line& line : lines_of(text)) {
        if (line.option == ".type") {
            inside = line.section == section;
            result += line.text;
            if (inside) result += added;
            done |= inside;
            continue;
        }
        if (!inside || line.option != option) result += line.text;
    }
    return done ? std::optional(result) : std::nullopt;
}

}  // namespace cwmp
