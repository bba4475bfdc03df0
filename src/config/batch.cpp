#include "config/batch.h"

#include <fcntl.h>
#include <unistd.h>

#include <string_view>

#include "config/store.h"
#include "core/log.h"
#include "core/text.h"

namespace cwmp {
namespace {

std::string package_file(const char* confdir, const char* package) { return std::string(confdir) + "/" + package; }

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

// The side copies repeat the agent's passwords.
bool make_file(const std::string& path, const char* confdir) {
    const bool secret = store_of(confdir) == Store::kCopy;
    constexpr int kFlags = O_CREAT | O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    Descriptor file(open(path.c_str(), kFlags, secret ? 0600 : 0644));
    return file && file.close();
}

// libuci loads only packages whose file exists. The events carry the name of the exported function at work.
bool ensure_package_file(const char* confdir, const char* package, const char* function) {
    const std::string path = package_file(confdir, package);
    LOG_ERROR_AS(function, "file name is :%s\n\n", path.c_str());
    const bool made = !exists(confdir) && make_store_directory(confdir);
    if (!exists(confdir) || !is_trusted_directory(confdir)) {
        LOG_ERROR_AS(function, "path %s is not exsit,make falied\n", confdir);
        return false;
    }
    if (made) LOG_ERROR_AS(function, "path %s is not exsit,make new one.\n", confdir);
    if (exists(path)) return true;
    LOG_ERROR_AS(function, "file is not exist,crate one!\n\n");
    const bool stored = make_file(path, confdir);
    if (!stored) LOG_ERROR_AS(function, "create file %s failed!\n\n", path.c_str());
    return stored;
}

// What a log shows of a value: the STUN password appears in none.
const char* shown_value(std::string_view package, std::string_view section, std::string_view option,
                        const char* value) {
    const bool is_secret = package == "cwmp"sv && section == "tr111"sv && option == "STUNPassword"sv;
    return is_secret ? "***" : value;
}

constexpr const char* kSet = "uciRawSetValueByPath";
constexpr const char* kAdd = "uciRawAddSectionBypath";
constexpr const char* kDelete = "uciRawDelSectionBypath";

}  // namespace

Batch::Batch(const char* package, const char* confdir) : package_(package), confdir_(confdir), context_(confdir) {}

bool Batch::load() {
    return context_ && package_ != nullptr && (context_.is_loaded() || context_.load_to_change(package_));
}

std::optional<std::string> Batch::value(const char* section, const char* option) const {
    uci_section* found = context_.is_loaded() ? context_.section(section) : nullptr;
    return found != nullptr ? context_.value(found, option) : std::nullopt;
}

std::optional<std::string> Batch::read(const char* section, const char* option) {
    load();
    return read_option(context_, section, option);
}

bool Batch::is_usable(const char* function, bool complete, const char* misuse) {
    complete = complete && package_ != nullptr;
    if (!context_) {
        LOG_ERROR_AS(function, "Fail to alloc context for uci.\n\n");
    } else if (!complete) {
        LOG_ERROR_AS(function, "%s", misuse);
    }
    return context_ && complete;
}

bool Batch::open(const char* function) {
    if (!load()) LOG_ERROR_AS(function, "uci_load error!\n");
    return context_.is_loaded();
}

int Batch::refuse_change() {
    refused_ = true;
    return -1;
}

int Batch::changed(const char* call, const char* one, const char* other, int result) {
    changed_ = true;
    if (result == 0) return 0;
    LOG_ERROR_AS(call, "fail to set ptr %s.%s.%s (ret:%d)\n\n", package_, one, other, result);
    return refuse_change();
}

int Batch::set(const char* section, const char* option, const char* value) {
    const bool complete = section != nullptr && option != nullptr && value != nullptr;
    if (!is_usable(kSet, complete, "uci set By path Invalid parameter.\n\n")) return refuse_change();
    const char* shown = shown_value(package_, section, option, value);
    LOG_ERROR_AS(kSet, "uci set By path %s.%s.%s=%s.\n\n", package_, section, option, shown);
    if (confdir_ == nullptr) {
        LOG_ERROR_AS(kSet, "Do not set the path.\n\n");
    } else if (!ensure_package_file(confdir_, package_, kSet)) {
        return refuse_change();
    }
    if (!open(kSet)) return refuse_change();
    changed_ = true;
    if (context_.set_option(section, option, value) == 0) return 0;
    LOG_ERROR_AS(kSet, "set fail, try to add section\n");
    // One that is there keeps its type, whatever has failed.
    const bool missing = context_.section(section) == nullptr;
    if (const int added = missing ? context_.set_section(section, section) : 0; added != 0) {
        LOG_ERROR_AS(kSet, "fail to add section  %s.%s, ret:%d \n\n", package_, section, added);
        return refuse_change();
    }
    const int result = context_.set_option(section, option, value);
    if (result == 0) return 0;
    LOG_ERROR_AS(kSet, "fail to set ptr %s.%s.%s=%s (ret:%d)\n\n", package_, section, option, shown, result);
    return refuse_change();
}

int Batch::add_section(const char* section, const char* type) {
    if (!is_usable(kAdd, section != nullptr && type != nullptr, "Invalid parameter.\n\n")) return refuse_change();
    if (!ensure_package_file(directory(), package_, kAdd) || !open(kAdd)) return refuse_change();
    return changed(kAdd, section, type, context_.set_section(section, type));
}

int Batch::delete_section(const char* section, const char* type) {
    if (!is_usable(kDelete, section != nullptr && type != nullptr, "Invalid parameter.\n\n")) return refuse_change();
    const std::string path = package_file(directory(), package_);
    if (!exists(path)) {
        LOG_ERROR_AS(kDelete, "(%s) is not existed, section will not be deleted\n", path.c_str());
        return 0;
    }
    if (!open(kDelete)) return refuse_change();
    if (context_.section(section) == nullptr) {
        LOG_ERROR_AS(kDelete, "(%s.%s.%s) is not existed, section will not be deleted\n", package_, type, section);
        return 0;
    }
    return changed(kDelete, type, section, context_.delete_section(section));
}

bool Batch::commit(Caller caller) {
    // Where nothing was to be deleted, what other tools have staged stays staged.
    return !refused_ && (!changed_ || context_.commit(caller));
}

}  // namespace cwmp
