#include "config/uci_context.h"

#include <uci.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace cwmp {
namespace {

void use_private_save_directory(uci_context* context, const char* confdir) {
    const std::string directory = std::string(confdir) + "/.uci";
    // uci_set_savedir would keep the default directory among those that are read: rename that entry first.
    uci_element* element = nullptr;
    uci_foreach_element(&context->delta_path, element) {
        std::free(element->name);
        element->name = strdup(directory.c_str());
    }
    uci_set_savedir(context, directory.c_str());
}

// libuci stores any name it is handed directly, and cannot read a package back that has others than these.
bool is_uci_name(std::string_view name) {
    constexpr std::string_view kAllowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
    return !name.empty() && name.find_first_not_of(kAllowed) == std::string_view::npos;
}

// Section types and packages may have a hyphen, too.
bool is_uci_type(std::string type) {
    std::replace(type.begin(), type.end(), '-', '_');
    return is_uci_name(type);
}

uci_ptr pointer_to(uci_package* package, const char* section, const char* option, const char* value) {
    uci_ptr pointer = {};
    pointer.p = package;
    pointer.package = package->e.name;
    pointer.section = section;
    pointer.option = option;
    pointer.value = value;
    return pointer;
}

}  // namespace

bool is_uci_package(const char* name) { return is_uci_type(name); }

void UciContext::Free::operator()(uci_context* context) const { uci_free_context(context); }

UciContext::UciContext(const char* confdir) : context_(uci_alloc_context()) {
    if (context_ == nullptr || confdir == nullptr) return;
    uci_set_confdir(context_.get(), confdir);
    if (std::strcmp(confdir, kLiveStore) != 0) use_private_save_directory(context_.get(), confdir);
}

UciContext::UciContext(const char* confdir, const char* savedir) : context_(uci_alloc_context()) {
    if (context_ == nullptr) return;
    uci_set_confdir(context_.get(), confdir);
    uci_set_savedir(context_.get(), savedir);
}

bool UciContext::load(const char* package) {
    return uci_load(context_.get(), package, &package_) == UCI_OK && package_ != nullptr;
}

uci_section* UciContext::section(const char* name) const {
    return uci_lookup_section(context_.get(), package_, name);
}

std::vector<uci_section*> UciContext::sections(const char* type) const {
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
    const char* text = uci_lookup_option_string(context_.get(), section, option);
    if (text == nullptr) return std::nullopt;
    return text;
}

int UciContext::set_option(const char* section, const char* option, const char* value) {
    uci_section* existing = this->section(section);
    const bool deletes = *value == '\0';
    if (deletes && (existing == nullptr || uci_lookup_option(context_.get(), existing, option) == nullptr)) {
        return UCI_OK;
    }
    // A value that libuci cannot read back would be set, and lost when it is committed.
    if (existing == nullptr || !is_uci_name(option) || !uci_validate_text(value)) return UCI_ERR_INVAL;
    uci_ptr pointer = pointer_to(package_, section, option, value);
    return uci_set(context_.get(), &pointer);
}

int UciContext::set_section(const char* section, const char* type) {
    if (!is_uci_name(section) || !is_uci_type(type)) return UCI_ERR_INVAL;
    uci_ptr pointer = pointer_to(package_, section, nullptr, type);
    return uci_set(context_.get(), &pointer);
}

int UciContext::delete_section(const char* section) {
    uci_ptr pointer = pointer_to(package_, section, nullptr, nullptr);
    return uci_delete(context_.get(), &pointer);
}

void UciContext::commit() { uci_commit(context_.get(), &package_, false); }

std::optional<int> UciContext::revert(std::string tuple) {
    uci_ptr pointer = {};
    if (uci_lookup_ptr(context_.get(), &pointer, tuple.data(), true) != UCI_OK) return std::nullopt;
    return uci_revert(context_.get(), &pointer);
}

}  // namespace cwmp
