#include "config/batch.h"

#include <fcntl.h>
#include <unistd.h>

#include <string_view>

#include "config/store.h"
#include "core/log.h"
#include "core/text.h"

namespace cwmp {
namespace {

std::string package_file(const char* confdir, const char* package) {
    return std::string(confdir) + "/" + package;
}

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
    log_event({function, __LINE__}, kError, "file name is :%s\n\n", path.c_str());
    const bool made = !exists(confdir) && make_store_directory(confdir);
    if (!exists(confdir) || !is_trusted_directory(confdir)) {
        log_event({function, __LINE__}, kError, "path %s is not exsit,make falied\n", confdir);
        return false;
    }
    if (made) log_event({function, __LINE__}, kError, "path %s is not exsit,make new one.\n", confdir);
    if (!exists(path)) {
        log_event({function, __LINE__}, kError, "file is not exist,crate one!\n\n");
        if (!make_file(path, confdir)) {
            log_event({function, __LINE__}, kError, "create file %s failed!\n\n", path.c_str());
            return false;
        }
    }
    return true;
}

// What a log shows of a value: the STUN password appears in none.
const char* shown(std::string_view package, std::string_view section, std::string_view option,
                  const char* value) {
    const bool is_secret = package == "cwmp"sv && section == "tr111"sv && option == "STUNPassword"sv;
    return is_secret ? "***" : value;
}

constexpr const char* kSet = "uciRawSetValueByPath";
constexpr const char* kAdd = "uciRawAddSectionBypath";
constexpr const char* kDelete = "uciRawDelSectionBypath";

}  // namespace

Batch::Batch(const char* package, const char* confdir)
    : package_(package), confdir_(confdir), context_(confdir) {}

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
        log_event({function, __LINE__}, kError, "Fail to alloc context for uci.\n\n");
    } else if (!complete) {
        log_event({function, __LINE__}, kError, "%s", misuse);
    }
    return context_ && complete;
}

bool Batch::open(const char* function) {
    if (!load()) log_event({function, __LINE__}, kError, "uci_load error!\n");
    return context_.is_loaded();
}

int Batch::refuse_change() {
    refused_ = true;
    return -1;
}

int Batch::set(const char* section, const char* option, const char* value) {
    const bool complete = section != nullptr && option != nullptr && value != nullptr;
    if (!is_usable(kSet, complete, "uci set By path Invalid parameter.\n\n")) return refuse_change();
    log_event({kSet, __LINE__}, kError, "uci set By path %s.%s.%s=%s.\n\n", package_, section, option,
              shown(package_, section, option, value));
    if (confdir_ == nullptr) {
        log_event({kSet, __LINE__}, kError, "Do not set the path.\n\n");
    } else if (!ensure_package_file(confdir_, package_, kSet)) {
        return refuse_change();
    }
    if (!open(kSet)) return refuse_change();
    changed_ = true;
    if (context_.set_option(section, option, value) == 0) return 0;
    log_event({kSet, __LINE__}, kError, "set fail, try to add section\n");
    // One that is there keeps its type, whatever has failed.
    const bool missing = context_.section(section) == nullptr;
    if (const int result = missing ? context_.set_section(section, section) : 0; result != 0) {
        log_event({kSet, __LINE__}, kError, "fail to add section  %s.%s, ret:%d \n\n", package_, section,
                  result);
        return refuse_change();
    }
    if (const int result = context_.set_option(section, option, value); result != 0) {
        log_event({kSet, __LINE__}, kError, "fail to set ptr %s.%s.%s=%s (ret:%d)\n\n", package_, section,
                  option, shown(package_, section, option, value), result);
        return refuse_change();
    }
    return 0;
}

int Batch::add_section(const char* section, const char* type) {
    if (!is_usable(kAdd, section != nullptr && type != nullptr, "Invalid parameter.\n\n"))
        return refuse_change();
    const char* directory = confdir_ == nullptr ? kLiveStore : confdir_;
    if (!ensure_package_file(directory, package_, kAdd) || !open(kAdd)) return refuse_change();
    changed_ = true;
    const int result = context_.set_section(section, type);
    if (result == 0) return 0;
    log_event({kAdd, __LINE__}, kError, "fail to set ptr %s.%s.%s (ret:%d)\n\n", package_, section, type,
              result);
    return refuse_change();
}

int Batch::delete_section(const char* section, const char* type) {
    if (!is_usable(kDelete, section != nullptr && type != nullptr, "Invalid parameter.\n\n"))
        return refuse_change();
    const std::string path = package_file(confdir_ == nullptr ? kLiveStore : confdir_, package_);
    if (!exists(path)) {
        log_event({kDelete, __LINE__}, kError, "(%s) is not existed, section will not be deleted\n",
                  path.c_str());
        return 0;
    }
    if (!open(kDelete)) return refuse_change();
    if (context_.section(section) == nullptr) {
        log_event({kDelete, __LINE__}, kError, "(%s.%s.%s) is not existed, section will not be deleted\n",
                  package_, type, section);
        return 0;
    }
    changed_ = true;
    const int result = context_.delete_section(section);
    if (result == 0) return 0;
    log_event({kDelete, __LINE__}, kError, "fail to set ptr %s.%s.%s (ret:%d)\n\n", package_, type, section,
              result);
    return refuse_change();
}

bool Batch::commit(Caller caller) {
    // Where nothing was to be deleted, what other tools have staged stays staged.
    return !refused_ && (!changed_ || context_.commit(caller));
}

}  // namespace cwmp
