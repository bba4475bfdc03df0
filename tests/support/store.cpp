#include "store.h"

#include <uci.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

#include "rows.h"

namespace fs = std::filesystem;

namespace stores {
namespace {

const std::set<fs::path> kPackages = {"/etc/config", "/etc/profile.d", "/tmp/tr069", "/tmp/cwmp-config",
                                      "/tmp/cwmp-config-force"};
constexpr const char* kAnswers = "/var/lib/router/answers";
constexpr const char* kWritable[] = {"/etc/config", "/etc/profile.d", "/tmp", "/var/state", "/var/tmp", kAnswers};
constexpr const char* kLogs = "/var/log/router";
const std::string kPristine = "/var/lib/pristine";

void copy_tree(const std::string& from, const std::string& to) {
    for (const char* directory : kWritable) {
        fs::create_directories(to + directory);
        for (const auto& entry : fs::directory_iterator(to + directory)) fs::remove_all(entry);
        fs::copy(from + directory, to + directory, fs::copy_options::recursive);
    }
}

using Context = std::unique_ptr<uci_context, decltype(&uci_free_context)>;

Context open(const fs::path& directory) {
    Context context(uci_alloc_context(), &uci_free_context);
    uci_set_confdir(context.get(), directory.c_str());
    uci_set_savedir(context.get(), "/nowhere");
    uci_element* path = nullptr;
    uci_foreach_element(&context->delta_path, path) path->name[0] = '\0';
    return context;
}

fs::path file_of(const std::string& name) {
    const std::string tuple = name.substr(0, name.find('.', name.find('/') + 1));
    if (tuple.find('/') == std::string::npos) return "/etc/config/" + tuple;
    return (tuple.starts_with("profile.d/") ? "/etc/" : "/tmp/") + tuple;
}

// Sets an option's value or a section's type, or deletes one; the package is written without a wait for the disk.
void rewrite(const std::string& name, const std::optional<std::string>& value) {
    const fs::path file = file_of(name);
    if (!fs::exists(file)) write_file(file, "");
    const Context context = open(file.parent_path());
    std::string tuple = name.substr(name.find('/') + 1);
    uci_ptr at = {};
    bool done = uci_lookup_ptr(context.get(), &at, tuple.data(), true) == UCI_OK;
    uci_package* const package = at.p;
    at.flags = {};
    if (done && value && at.s == nullptr && at.option != nullptr) {
        const char* option = std::exchange(at.option, nullptr);
        at.value = at.section;
        done = uci_set(context.get(), &at) == UCI_OK;
        at.option = option;
    }
    at.value = value ? value->c_str() : nullptr;
    done = done && (value ? uci_set(context.get(), &at) : uci_delete(context.get(), &at)) == UCI_OK;
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(std::fopen(file.c_str(), "we"), &std::fclose);
    done = done && uci_export(context.get(), stream.get(), package, false) == UCI_OK;
    if (!done) throw std::runtime_error("cannot change " + name);
}

std::string value_of(const uci_option& option) {
    if (option.type == UCI_TYPE_STRING) return option.v.string;
    std::string list;
    uci_element* item = nullptr;
    uci_foreach_element(&option.v.list, item) list += (list.empty() ? "" : ",") + std::string(item->name);
    return "[" + list + "]";
}

void read_package(const fs::path& file, const std::string& text, Snapshot& found) {
    const Context context = open(file.parent_path());
    uci_package* package = nullptr;
    if (uci_load(context.get(), file.filename().c_str(), &package) != UCI_OK) {
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

// Sign, "package", ".section", "option" and text; a file has its path for a package, and no section.
using Change = std::array<std::string, 5>;
constexpr std::size_t kPackage = 1, kOption = 3;

Change change_of(const std::string& sign, const std::string& key, const std::string& text) {
    if (key[0] == '/') return {sign, key, "", "", text};
    const auto dot = key.find('.', key.rfind('/') + 1), last = std::min(key.find('.', dot + 1), key.size());
    return {sign, key.substr(0, dot), key.substr(dot, last - dot), key.substr(std::min(last + 1, key.size())), text};
}

std::string parent_of(const std::string& key) {
    const auto& [sign, package, section, option, text] = change_of("", key, "");
    return key[0] == '/' ? key : package + (option.empty() ? "." : section);
}

// Changes that differ in this word alone become one with "{a,b}".
void group(std::vector<Change>& changes, std::size_t word) {
    for (auto each = changes.begin(); each != changes.end(); ++each) {
        rows::Words words = {(*each)[word]};
        const auto is_equal = [&](Change other) {
            words.push_back(std::exchange(other[word], (*each)[word]));
            if (other != *each) words.pop_back();
            return other == *each;
        };
        changes.erase(std::remove_if(each + 1, changes.end(), is_equal), changes.end());
        if (words.size() > 1) (*each)[word] = "{" + rows::joined(words, ",") + "}";
    }
}

}  // namespace

void change(const std::string& what) {
    const auto mark = what.find_first_of(":=");
    if (what[0] == '+')
        write_file(file_of(what.substr(1)), "");
    else if (what[0] == '-')
        rewrite(what.substr(1), std::nullopt);
    else
        rewrite(what.substr(0, mark), what.substr(mark + 1));
}

void reset() {
    if (!fs::exists("/.router-root")) throw std::logic_error("this is no router root (router/enter ROOT ...)");
    if (!fs::exists(kPristine)) copy_tree("", kPristine);
    copy_tree(kPristine, "");
    fs::remove_all(kLogs);
    fs::create_directory(kLogs);
    write_file("/dev/console", "");
}

void write_file(const std::string& path, const std::string& text) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream stream(path, std::ios::binary);
    if (!(stream << text).flush()) throw std::runtime_error("cannot write " + path);
}

std::string text_of(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

Snapshot snapshot() {
    Snapshot found;
    std::error_code none;
    for (const char* directory : kWritable) {
        for (const auto& entry : fs::recursive_directory_iterator(directory, none)) {
            const std::string path = entry.path();
            // The check script's own notes and what tools answer are no part of a router's store.
            if (!entry.is_regular_file() || path == "/var/state/check_params" || path.starts_with(kAnswers)) continue;
            const std::string text = text_of(path);
            if (kPackages.contains(entry.path().parent_path()))
                read_package(path, text, found);
            else if (!text.empty() || !path.starts_with("/tmp/.uci/"))  // where libuci leaves an empty file
                found[path] = text;
        }
    }
    return found;
}

std::vector<std::string> changes(const Snapshot& before, const Snapshot& after, std::string& place) {
    std::vector<Change> all;
    for (const auto& [key, text] : before) {
        const std::string parent = parent_of(key);
        if (!after.contains(key) && (parent == key || after.contains(parent))) all.push_back(change_of("-", key, ""));
    }
    for (const auto& [key, text] : after) {
        const auto old = before.find(key);
        if (old != before.end() && old->second == text) continue;
        const bool is_file = key[0] == '/';
        if (!is_file && key.back() == '.')
            all.push_back(change_of("+", key, ""));
        else if (!is_file && parent_of(key).back() == '.')
            all.push_back(change_of("", key, ":" + text));
        else if (is_file && old != before.end() && !old->second.empty() && text.starts_with(old->second))
            all.push_back(change_of("", key, "+=" + rows::escape(text.substr(old->second.size()))));
        else
            all.push_back(change_of("", key, "=" + rows::escape(text)));
    }
    group(all, kPackage);
    group(all, kOption);
    std::vector<std::string> told;
    for (const auto& [sign, package, section, option, text] : all) {
        const bool is_same = sign.empty() && !option.empty() && place == package + section;
        place = package + section;
        told.push_back(sign + (is_same ? "" : place) + (option.empty() ? "" : ".") + option + text);
    }
    return told;
}

}  // namespace stores
