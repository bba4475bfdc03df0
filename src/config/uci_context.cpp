#include "config/uci_context.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <uci.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "config/uci_export.h"

namespace cwmp {
namespace {

void use_private_save_directory(uci_context* context, const char* confdir) {
    std::string directory = "/var/state/.uci";
    for (const char* letter = confdir; *letter != '\0'; ++letter) directory += *letter == '/' ? '-' : *letter;
    // uci_set_savedir would keep the default directory among those that are read: rename that entry first. The
    // list owns its names; libuci frees them with the context.
    uci_element* element = nullptr;
    uci_foreach_element(&context->delta_path, element) {
        std::free(element->name);
        element->name = strdup(directory.c_str());
    }
    uci_set_savedir(context, directory.c_str());
}

bool is_name_letter(char letter) {
    const int lower = letter | ' ';
    return (lower >= 'a' && lower <= 'z') || (letter >= '0' && letter <= '9') || letter == '_';
}

// libuci stores any name it is handed directly, and cannot read a package back that has others than these.
bool is_uci_name(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), is_name_letter);
}

bool is_uci_package(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) { return is_name_letter(c) || c == '-'; });
}

// Any printable text, but for what would be quotes or a comment in the file: a type is written bare.
bool is_uci_type(std::string_view type) {
    return !type.empty() && type.find_first_of("\"'#;\\") == std::string_view::npos &&
           std::all_of(type.begin(), type.end(), [](char c) { return c > ' ' && c <= '~'; });
}

std::string staged_file(const uci_context* context, const char* package) {
    return std::string(context->savedir) + '/' + package;
}

}  // namespace

bool is_uci_value(const char* value) { return uci_validate_text(value); }

UciContext::UciContext(const char* confdir)
    : confdir_(confdir != nullptr ? confdir : kLiveStore), store_(store_of(confdir_)), context_(uci_alloc_context()) {
    if (context_ == nullptr || confdir == nullptr) return;
    uci_set_confdir(context_.get(), confdir);
    if (store_ != Store::kLive) use_private_save_directory(context_.get(), confdir);
}

UciContext::UciContext(const char* confdir, const char* savedir) : confdir_(confdir), context_(uci_alloc_context()) {
    if (context_ == nullptr) return;
    uci_set_confdir(context_.get(), confdir);
    uci_set_savedir(context_.get(), savedir);
}

bool UciContext::load(const char* package) {
    if (package != nullptr && is_uci_package(package)) package_ = load_or_reuse(context_, package);
    return is_loaded();
}

bool UciContext::load_to_change(const char* package) {
    if (!lock_ && !lock_.take(confdir_)) return false;
    sweep_temporary_files(confdir_);
    struct stat staged = {};
    if (package == nullptr || !is_uci_package(package)) return false;
    if (stat(staged_file(context_.get(), package).c_str(), &staged) == 0) staged_ = staged.st_size;
    // A transaction covers the live store and what repeats it.
    noting_ = transaction::is_running() && (store_ == Store::kLive || store_ == Store::kCopy);
    context_->flags = static_cast<uci_flags>(context_->flags | UCI_FLAG_SAVED_DELTA);
    package_ = load_anew(context_.get(), package);
    return is_loaded();
}

uci_section* UciContext::section(const char* name) const {
    assert(is_loaded());
    return uci_lookup_section(context_.get(), package_, name);
}

std::vector<uci_section*> UciContext::sections(const char* type) const {
    assert(is_loaded());
    std::vector<uci_section*> found;
    uci_element* element = nullptr;
    uci_foreach_element(&package_->sections, element) {
        uci_section* section = uci_to_section(element);
        if (type == nullptr || std::strcmp(section->type, type) == 0) found.push_back(section);
    }
    return found;
}

const char* UciContext::name(const uci_section* section) { return section->e.name; }

const char* UciContext::type(const uci_section* section) { return section->type; }

std::optional<std::string> UciContext::value(uci_section* section, const char* option) const {
    assert(is_loaded() && section != nullptr);
    const char* text = uci_lookup_option_string(context_.get(), section, option);
    if (text == nullptr) return std::nullopt;
    return text;
}

int UciContext::change(Change* call, const char* section, const char* option, const char* value) {
    assert(is_loaded());
    uci_ptr pointer = {};
    pointer.p = package_;
    pointer.package = package_->e.name;
    pointer.section = section;
    pointer.option = option;
    pointer.value = value;
    return call(context_.get(), &pointer);
}

int UciContext::set_option(const char* section, const char* option, const char* value) {
    uci_section* existing = this->section(section);
    const bool deletes = *value == '\0';
    if (deletes && (existing == nullptr || uci_lookup_option(context_.get(), existing, option) == nullptr)) {
        return UCI_OK;
    }
    // A value that libuci cannot read back would be set, and lost when it is committed.
    if (existing == nullptr || !is_uci_name(option) || !is_uci_value(value)) return UCI_ERR_INVAL;
    if (noting_) note_option(section, option);
    return change(uci_set, section, option, value);
}

int UciContext::set_section(const char* section, const char* type) {
    if (!is_uci_name(section) || !is_uci_type(type)) return UCI_ERR_INVAL;
    if (noting_) note_section(section);
    return change(uci_set, section, nullptr, type);
}

int UciContext::delete_section(const char* section) {
    if (noting_) note_deletion(section);
    return change(uci_delete, section, nullptr, nullptr);
}

// libuci's own commit looks at no result of its writing, and stores nothing any more once a cut line is staged.
bool UciContext::commit(Caller caller) {
    const bool changed = package_ != nullptr && (!uci_list_empty(&package_->delta) || staged_ > 0);
    bool stored = true;
    if (changed) {
        const Export text(context_.get(), package_);
        stored = text && store_text(text.text(), caller);
    }
    lock_ = {};
    return stored;
}

bool UciContext::store_text(std::string_view text, Caller caller) {
    const char* name = package_->e.name;
    if (!notes_.empty() && !transaction::keep_changes(confdir_, name, notes_)) {
        log_event(caller, kError, "a change of package %s cannot be noted, it is refused\n\n", name);
        return false;
    }
    if (!replace_package_file(confdir_, name, text)) {
        log_event(caller, kError, "package %s cannot be stored, it stays as it was\n\n", name);
        return false;
    }
    if (staged_ > 0) forget_staged(caller);
    return true;
}

// What another tool has staged since the package was loaded stays.
void UciContext::forget_staged(Caller caller) {
    constexpr int kPatience = 1000;
    const Descriptor file(open(staged_file(context_.get(), package_->e.name).c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    if (!file || !lock_within(file.get(), kPatience)) return;
    const auto text = read_whole(file.get());
    const std::string_view staged = text ? *text : std::string_view();
    const auto known = std::min(staged.size(), static_cast<std::size_t>(staged_));
    if (known == 0) return;
    if (staged[known - 1] != '\n' || uci_list_empty(&package_->saved_delta)) {
        log_event(caller, kError, "staged changes of package %s are broken, they are dropped\n\n", package_->e.name);
    }
    if (ftruncate(file.get(), 0) == 0 && staged.size() > known) write_whole(file.get(), staged.substr(known));
}

std::optional<int> UciContext::revert(std::string tuple) {
    uci_ptr pointer = {};
    if (!lock_.take(confdir_)) return std::nullopt;
    if (uci_lookup_ptr(context_.get(), &pointer, tuple.data(), true) != UCI_OK) return std::nullopt;
    return uci_revert(context_.get(), &pointer);
}

}  // namespace cwmp
