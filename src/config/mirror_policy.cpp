// Which changes of the live store are repeated in the side copies of package cwmp, and in which one.
#include <fcntl.h>

#include <cstring>
#include <string>
#include <utility>

#include "config/batch.h"
#include "core/file.h"
#include "core/log.h"
#include "cwmp/uci_access.h"

namespace cwmp {
namespace {

constexpr const char* kProtectedList = "/etc/profile.d/cwmp-config-force";
constexpr const char* kMirroredPackage = "cwmp";
constexpr std::size_t kListLine = 127;

// The entry of a line of the protected list, empty for any other line.
std::string protected_entry(const std::string& line) {
    if (!line.starts_with("    list cfg")) return {};
    const auto open = line.find('\'');
    const auto close = open == std::string::npos ? open : line.find('\'', open + 1);
    return close == std::string::npos ? std::string() : line.substr(open + 1, close - open - 1);
}

std::optional<std::string> isp_reset() {
    constexpr const char* kFunction = "is_support_isp_reset";
    UciContext context(kProfileStore);
    if (!context) return no_value(LOG_FAILURE_AS(kFunction, "Fail to alloc context for uci.\n"));
    if (!context.load("profile")) return no_value(LOG_FAILURE_AS(kFunction, "Fail to uci_load.\n"));
    if (uci_section* settings = context.section("cwmp_settings")) return context.value(settings, "isp_reset");
    return no_value(LOG_FAILURE_AS(kFunction, "Fail to uci_lookup_ptr.\n"));
}

}  // namespace

MirroredBatch::MirroredBatch(const char* package) : package_(package), live_(package, nullptr) {}

bool MirroredBatch::hold() {
    if (!turn_.take()) return false;
    live_.load();
    return true;
}

Batch* MirroredBatch::copy_for(const char* function, const char* section, const char* what) {
    if (is_support_isp_reset() == 0) return nullptr;
    LOG_ERROR_AS(function, "save set to backup field\n\n");
    const int allowed = IsOptionAllowToChange(package_, section, what);
    if (std::strcmp(package_, kMirroredPackage) != 0) {
        LOG_ERROR_AS(function, "!!!!!!!! not the cwmp config, do not save to config\n\n");
        return nullptr;
    }
    LOG_ERROR_AS(function, "!!!!!!!! cwmp config, save to config\n\n");
    LOG_ERROR_AS(function, "allow chage:%d\n\n", allowed);
    auto& copy = allowed == 1 ? open_copy_ : protected_copy_;
    if (!copy) copy.emplace(package_, allowed == 1 ? kOpenCopy : kProtectedCopy);
    return &*copy;
}

template <typename Change>
int MirroredBatch::change(const char* function, const char* section, const char* what, Change change) {
    LOG_ERROR_AS(function, "set userconfig first\n\n");
    if (const int result = change(live_); result != 0) {
        LOG_ERROR_AS(function, "set usrconfig failed\n\n");
        return result;
    }
    Batch* copy = copy_for(function, section, what);
    return copy != nullptr ? change(*copy) : 0;
}

int MirroredBatch::set(const char* section, const char* option, const char* value) {
    return change("uciRawSetValue", section, option, [=](Batch& batch) { return batch.set(section, option, value); });
}

int MirroredBatch::add_section(const char* section, const char* type) {
    return change("uciRawAddSection", section, type, [=](Batch& batch) { return batch.add_section(section, type); });
}

int MirroredBatch::delete_section(const char* section, const char* type) {
    return change("uciRawDelSection", section, type, [=](Batch& batch) { return batch.delete_section(section, type); });
}

bool MirroredBatch::commit(Caller caller) {
    return live_.commit(caller) && (!open_copy_ || open_copy_->commit(caller)) &&
           (!protected_copy_ || protected_copy_->commit(caller));
}

}  // namespace cwmp

using namespace cwmp;

int IsOptionAllowToChange(const char* package, const char* section, const char* option) {
    if (package == nullptr || section == nullptr || option == nullptr) return 1;
    Descriptor list(open(kProtectedList, O_RDONLY | O_CLOEXEC));
    if (!list) {
        LOG_ERROR("open /etc/profile.d/cwmp-config-force fail\n\n");
        return 1;
    }
    const std::string whole_package = package;
    const std::string whole_section = whole_package + "." + section;
    const std::string one_option = whole_section + "." + option;
    Lines lines(std::move(list));
    while (const auto line = lines.next(kListLine)) {
        const std::string entry = protected_entry(*line);
        if (entry.empty()) continue;
        if (entry != whole_package && entry != whole_section && entry != one_option) continue;
        LOG_ERROR("match cfg[%s]\n\n", entry.c_str());
        return 0;
    }
    return 1;
}

int is_support_isp_reset() { return isp_reset().value_or("").starts_with("yes") ? 1 : 0; }

int save_to_cwmp_config() { return 0; }

int uciRawSetValue(const char* package, const char* section, const char* option, const char* value) {
    MirroredBatch batch(package);
    return finish(batch, batch.set(section, option, value));
}

int uciRawAddSection(const char* package, const char* section, const char* type) {
    MirroredBatch batch(package);
    return finish(batch, batch.add_section(section, type));
}

int uciRawDelSection(const char* package, const char* section, const char* type) {
    MirroredBatch batch(package);
    return finish(batch, batch.delete_section(section, type));
}
