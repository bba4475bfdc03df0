// The exported calls on single options and sections, each complete in itself.
#include "cwmp/uci_access.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "config/store.h"
#include "core/log.h"

namespace cwmp {
namespace {

std::string package_file(const char* confdir, const char* package) {
    return std::string(confdir) + "/" + package;
}

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

bool make_directory(const char* path) {
    constexpr mode_t kMode = 0775;
    return mkdir(path, kMode) == 0 && chmod(path, kMode) == 0;
}

bool make_file(const std::string& path) {
    constexpr mode_t kMode = 0644;
    const int descriptor = open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, kMode);
    return descriptor >= 0 && close(descriptor) == 0;
}

// libuci loads only packages whose file exists. The events carry the name of the exported function at work.
bool ensure_package_file(const char* confdir, const char* package, const char* function) {
    if (!is_uci_package(package)) {
        log_event({function, __LINE__}, kError, "uci_load error!\n");
        return false;
    }
    const std::string path = package_file(confdir, package);
    log_event({function, __LINE__}, kError, "file name is :%s\n\n", path.c_str());
    if (!exists(confdir)) {
        if (!make_directory(confdir)) {
            log_event({function, __LINE__}, kError, "path %s is not exsit,make falied\n", confdir);
            return false;
        }
        log_event({function, __LINE__}, kError, "path %s is not exsit,make new one.\n", confdir);
    }
    if (!exists(path)) {
        log_event({function, __LINE__}, kError, "file is not exist,crate one!\n\n");
        if (!make_file(path)) {
            log_event({function, __LINE__}, kError, "create file %s failed!\n\n", path.c_str());
            return false;
        }
    }
    return true;
}

std::optional<std::string> read_value(const OptionPath& at, const char* confdir) {
    constexpr const char* kFunction = "uciRawGetValueBypath";
    UciContext context(confdir);
    if (!context) {
        log_event({kFunction, __LINE__}, kError, "Fail to alloc context for uci.\n\n");
        return std::nullopt;
    }
    if (!context.load(at.package)) {
        log_event({kFunction, __LINE__}, kError, "Fail to load uci package.\n\n");
        return std::nullopt;
    }
    uci_section* section = context.section(at.section);
    if (section == nullptr) {
        // The section named is always "ap": what reads the console log on the devices looks for this text.
        log_event({kFunction, __LINE__}, kError, "Can't find specified section by name(%s).\n\n", "ap");
        return std::nullopt;
    }
    return context.value(section, at.option);
}

}  // namespace

std::optional<std::string> read_option(const OptionPath& at, const char* confdir) {
    return read_value(at, confdir);
}

bool write_option(const OptionPath& at, const std::string& value) {
    return uciRawSetValue(at.package, at.section, at.option, value.c_str()) == 0;
}

bool write_option(const OptionPath& at, const std::string& value, const char* confdir) {
    return uciRawSetValueByPath(at.package, at.section, at.option, value.c_str(), confdir) == 0;
}

}  // namespace cwmp

using cwmp::kLiveStore;
using cwmp::kScratchStore;
using cwmp::UciContext;

int uciRawGetValueBypath(const char* package, const char* section, const char* option, char* out,
                         const char* confdir) {
    if (package == nullptr || section == nullptr || option == nullptr || out == nullptr) return -1;
    const auto value = cwmp::read_option({package, section, option}, confdir);
    if (!value) return -1;
    std::memcpy(out, value->c_str(), value->size() + 1);
    return 0;
}

int uciRawGetValue(const char* package, const char* section, const char* option, char* out) {
    return uciRawGetValueBypath(package, section, option, out, kLiveStore);
}

int uciRawGetValue_tr069_config(const char* package, const char* section, const char* option, char* out) {
    return uciRawGetValueBypath(package, section, option, out, kScratchStore);
}

int uciRawSetValueByPath(const char* package, const char* section, const char* option, const char* value,
                         const char* confdir) {
    UciContext context(confdir);
    if (!context) {
        LOG_ERROR("Fail to alloc context for uci.\n\n");
        return -1;
    }
    if (package == nullptr || section == nullptr || option == nullptr || value == nullptr) {
        LOG_ERROR("uci set By path Invalid parameter.\n\n");
        return -1;
    }
    LOG_ERROR("uci set By path %s.%s.%s=%s.\n\n", package, section, option, value);
    if (confdir == nullptr) {
        LOG_ERROR("Do not set the path.\n\n");
    } else if (!cwmp::ensure_package_file(confdir, package, __func__)) {
        return -1;
    }
    if (!context.load(package)) {
        LOG_ERROR("uci_load error!\n");
        return -1;
    }
    if (context.set_option(section, option, value) != 0) {
        LOG_ERROR("set fail, try to add section\n");
        if (const int result = context.set_section(section, section); result != 0) {
            LOG_ERROR("fail to add section  %s.%s, ret:%d \n\n", package, section, result);
            return -1;
        }
        if (const int result = context.set_option(section, option, value); result != 0) {
            LOG_ERROR("fail to set ptr %s.%s.%s=%s (ret:%d)\n\n", package, section, option, value, result);
            return -1;
        }
    }
    context.commit();
    return 0;
}

int uciRawSetValue_tr069_config(const char* package, const char* section, const char* option,
                                const char* value) {
    return uciRawSetValueByPath(package, section, option, value, kScratchStore);
}

int uciRawAddSectionBypath(const char* package, const char* section, const char* type, const char* confdir) {
    const char* directory = confdir == nullptr ? kLiveStore : confdir;
    UciContext context(directory);
    if (!context) {
        LOG_ERROR("Fail to alloc context for uci.\n\n");
        return -1;
    }
    if (package == nullptr || section == nullptr || type == nullptr) {
        LOG_ERROR("Invalid parameter.\n\n");
        return -1;
    }
    if (!cwmp::ensure_package_file(directory, package, __func__)) return -1;
    if (!context.load(package)) {
        LOG_ERROR("uci_load error!\n");
        return -1;
    }
    if (const int result = context.set_section(section, type); result != 0) {
        LOG_ERROR("fail to set ptr %s.%s.%s (ret:%d)\n\n", package, section, type, result);
        return -1;
    }
    context.commit();
    return 0;
}

int uciRawDelSectionBypath(const char* package, const char* section, const char* type, const char* confdir) {
    const char* directory = confdir == nullptr ? kLiveStore : confdir;
    UciContext context(directory);
    if (!context) {
        LOG_ERROR("Fail to alloc context for uci.\n\n");
        return -1;
    }
    if (package == nullptr || section == nullptr || type == nullptr) {
        LOG_ERROR("Invalid parameter.\n\n");
        return -1;
    }
    const std::string path = cwmp::package_file(directory, package);
    if (!cwmp::exists(path)) {
        LOG_ERROR("(%s) is not existed, section will not be deleted\n", path.c_str());
        return 0;
    }
    if (!context.load(package)) {
        LOG_ERROR("uci_load error!\n");
        return -1;
    }
    if (context.section(section) == nullptr) {
        LOG_ERROR("(%s.%s.%s) is not existed, section will not be deleted\n", package, type, section);
        return 0;
    }
    if (const int result = context.delete_section(section); result != 0) {
        LOG_ERROR("fail to set ptr %s.%s.%s (ret:%d)\n\n", package, type, section, result);
        return -1;
    }
    context.commit();
    return 0;
}
