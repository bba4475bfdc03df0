// The world of a test: store, device profile, tool answers and files of the router root.
#include <sys/stat.h>
#include <sys/types.h>
#include <uci.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "router_test.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kMarker = "/.router-root";
constexpr const char* kAnswers = "/var/lib/router/answers/";

using Context = std::unique_ptr<uci_context, decltype(&uci_free_context)>;

// Without a save directory: what somebody staged and did not commit is not seen.
Context open_store(const std::string& directory) {
    Context context(uci_alloc_context(), &uci_free_context);
    uci_set_confdir(context.get(), directory.c_str());
    uci_set_savedir(context.get(), "/nowhere");
    uci_element* path = nullptr;
    uci_foreach_element(&context->delta_path, path) path->name[0] = '\0';
    return context;
}

// "package.section" or "package.section.option"; the pointer's texts live in tuple.
uci_ptr look_up(uci_context* context, std::string& tuple) {
    uci_ptr pointer = {};
    if (uci_lookup_ptr(context, &pointer, tuple.data(), true) != UCI_OK) pointer = {};
    return pointer;
}

void write_file(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) throw std::runtime_error("cannot write " + path.string());
}

// Programs of a host must never empty its store: without the marker of a bare root they end at once.
void require_bare_router() {
    std::string world;
    std::ifstream(kMarker) >> world;
    if (world == "test") return;
    std::cerr << "This test runs inside a router root of its own only (router/enter ROOT ...).\n";
    std::_Exit(EXIT_FAILURE);
}

}  // namespace

void empty_router() {
    require_bare_router();
    umask(022);
    for (const char* directory : {"/etc/config", "/etc/profile.d", "/tmp", "/var/tmp", "/var/state",
                                  "/var/log/router", "/var/lib/router/answers"}) {
        fs::create_directories(directory);
        for (const auto& entry : fs::directory_iterator(directory)) fs::remove_all(entry);
    }
}

void RouterTest::package(const std::string& name, const std::string& text, const std::string& directory) {
    write_file(directory + "/" + name, text);
}

void RouterTest::store(const std::string& option, const std::string& value, const std::string& directory) {
    store(directory, {{option, value}});
}

void RouterTest::store(const std::string& directory, const Options& options) {
    const std::string name = options[0].first.substr(0, options[0].first.find('.'));
    if (!fs::exists(directory + "/" + name)) write_file(directory + "/" + name, "");
    const auto context = open_store(directory);
    uci_package* package = nullptr;
    for (const auto& [option, value] : options) {
        std::string tuple = option;
        const uci_ptr found = look_up(context.get(), tuple);
        if (found.p == nullptr || found.option == nullptr) throw std::runtime_error("cannot store " + option);
        package = found.p;
        uci_ptr pointer = {};
        pointer.p = package;
        pointer.package = found.package;
        pointer.section = found.section;
        pointer.value = found.section;
        if (found.s == nullptr) uci_set(context.get(), &pointer);
        pointer.option = found.option;
        pointer.value = value.c_str();
        pointer.flags = {};
        if (uci_set(context.get(), &pointer) != UCI_OK) throw std::runtime_error("cannot store " + option);
    }
    package->has_delta = false;  // the commit writes what is loaded and looks for nothing staged
    if (uci_commit(context.get(), &package, true) != UCI_OK) throw std::runtime_error("cannot store " + name);
}

void RouterTest::add_section(const std::string& section, const std::string& type,
                             const std::string& directory) {
    const std::string path = directory + "/" + section.substr(0, section.find('.'));
    const std::string name = section.substr(section.find('.') + 1);
    write_file(path, text_of(path).value_or("") + "config " + type +
                         (name[0] == '@' ? "" : " '" + name + "'") + "\n");
}

void RouterTest::erase(const std::string& what, const std::string& directory) {
    const auto context = open_store(directory);
    std::string tuple = what;
    uci_ptr found = look_up(context.get(), tuple);
    if (found.last == nullptr) throw std::runtime_error("cannot erase " + what);
    uci_package* package = found.p;
    package->has_delta = false;
    if (uci_delete(context.get(), &found) != UCI_OK || uci_commit(context.get(), &package, true) != UCI_OK)
        throw std::runtime_error("cannot erase " + what);
}

void RouterTest::profile(const std::string& option, const std::string& value) {
    store("profile." + option, value, kProfile);
}

void RouterTest::answer(const std::string& command, const std::string& text, int status) {
    std::string name = command;
    for (char& letter : name) {
        if (letter == '/') letter = '%';
    }
    write_file(kAnswers + name, text);
    write_file(kAnswers + name + ".status", std::to_string(status) + "\n");
}

void RouterTest::file(const std::string& path, const std::string& text) {
    replaced_.try_emplace(path, text_of(path));
    write_file(path, text);
}

void RouterTest::remove_file(const std::string& path) {
    replaced_.try_emplace(path, text_of(path));
    fs::remove_all(path);
}

std::optional<std::string> RouterTest::option(const std::string& option, const std::string& directory) {
    const auto context = open_store(directory);
    std::string tuple = option;
    const uci_ptr pointer = look_up(context.get(), tuple);
    if (pointer.o == nullptr || pointer.o->type != UCI_TYPE_STRING) return std::nullopt;
    return pointer.o->v.string;
}

std::optional<std::string> RouterTest::section_type(const std::string& section,
                                                    const std::string& directory) {
    const auto context = open_store(directory);
    std::string tuple = section;
    const uci_ptr pointer = look_up(context.get(), tuple);
    if (pointer.s == nullptr) return std::nullopt;
    return pointer.s->type;
}

std::optional<std::string> RouterTest::text_of(const std::string& path) {
    if (!fs::is_regular_file(path)) return std::nullopt;
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

bool RouterTest::exists(const std::string& path) { return fs::exists(path); }
