// The exported calls on single options and sections, each complete in itself.
#include "cwmp/uci_access.h"

#include <cstring>

#include "config/batch.h"
#include "config/store.h"
#include "core/log.h"

using namespace cwmp;

std::optional<std::string> cwmp::read_option(const char* package, const char* section, const char* option,
                                             const char* confdir) {
    UciContext context(confdir);
    if (context) context.load(package);
    return read_option(context, section, option);
}

std::optional<std::string> cwmp::read_option(const UciContext& context, const char* section, const char* option) {
    constexpr const char* kFunction = "uciRawGetValueBypath";
    if (!context) return no_value(LOG_FAILURE_AS(kFunction, "Fail to alloc context for uci.\n\n"));
    if (!context.is_loaded()) return no_value(LOG_FAILURE_AS(kFunction, "Fail to load uci package.\n\n"));
    uci_section* found = context.section(section);
    // The section named is always "ap": kept as it is.
    if (found == nullptr)
        return no_value(LOG_FAILURE_AS(kFunction, "Can't find specified section by name(%s).\n\n", "ap"));
    return context.value(found, option);
}

std::optional<std::string> cwmp::read_option(const char* package, const char* section, const char* option) {
    return read_option(package, section, option, kLiveStore);
}

bool cwmp::write_option(const char* package, const char* section, const char* option, const std::string& value) {
    return uciRawSetValue(package, section, option, value.c_str()) == 0;
}

bool cwmp::write_option(const char* package, const char* section, const char* option, const std::string& value,
                        const char* confdir) {
    return uciRawSetValueByPath(package, section, option, value.c_str(), confdir) == 0;
}

bool cwmp::write_together(const char* package, std::initializer_list<Setting> settings) {
    MirroredBatch batch(package);
    int result = 0;
    for (const Setting& setting : settings)
        if (result == 0) result = batch.set(setting.section, setting.option, setting.value);
    return finish(batch, result) == 0;
}

int uciRawGetValueBypath(const char* package, const char* section, const char* option, char* out, const char* confdir) {
    if (package == nullptr || section == nullptr || option == nullptr || out == nullptr) return -1;
    const auto value = read_option(package, section, option, confdir);
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
    Batch batch(package, confdir);
    return finish(batch, batch.set(section, option, value));
}

int uciRawSetValue_tr069_config(const char* package, const char* section, const char* option, const char* value) {
    return uciRawSetValueByPath(package, section, option, value, kScratchStore);
}

int uciRawAddSectionBypath(const char* package, const char* section, const char* type, const char* confdir) {
    Batch batch(package, confdir);
    return finish(batch, batch.add_section(section, type));
}

int uciRawDelSectionBypath(const char* package, const char* section, const char* type, const char* confdir) {
    Batch batch(package, confdir);
    return finish(batch, batch.delete_section(section, type));
}
