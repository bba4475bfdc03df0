// Reading and writing single options, as handlers see the store.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>

#include "config/uci_context.h"

namespace cwmp {

// A place in the store. Written as a path: Section{"cwmp", "info"} / "url".
struct OptionPath {
    const char* package = nullptr;
    const char* section = nullptr;
    const char* option = nullptr;
};

struct Section {
    const char* package;
    const char* section;

    constexpr OptionPath operator/(const char* option) const { return {package, section, option}; }
};

std::optional<std::string> read_option(const char* package, const char* section, const char* option);
std::optional<std::string> read_option(const char* package, const char* section, const char* option,
                                       const char* confdir);
bool write_option(const char* package, const char* section, const char* option, const std::string& value);
bool write_option(const char* package, const char* section, const char* option, const std::string& value,
                  const char* confdir);

// As a read of the loaded package of a context: the same answer, the same events.
std::optional<std::string> read_option(const UciContext& context, const char* section, const char* option);

struct Setting {
    const char* section;
    const char* option;
    const char* value;
};

// Several options of one package of the live store, each logged as a write of its own, stored by one commit: all of
// them or none. False at the first that fails.
bool write_together(const char* package, std::initializer_list<Setting> settings);

// The same of a path, taken apart at the call: its names travel in registers, which halves what a call takes.
#define CWMP_INLINE [[gnu::always_inline]] inline

CWMP_INLINE std::optional<std::string> read_option(const OptionPath& at) {
    return read_option(at.package, at.section, at.option);
}

CWMP_INLINE std::optional<std::string> read_option(const OptionPath& at, const char* confdir) {
    return read_option(at.package, at.section, at.option, confdir);
}

// The live store, with the mirror policy. False when the write failed.
CWMP_INLINE bool write_option(const OptionPath& at, const std::string& value) {
    return write_option(at.package, at.section, at.option, value);
}

// Another directory; nothing is mirrored.
CWMP_INLINE bool write_option(const OptionPath& at, const std::string& value, const char* confdir) {
    return write_option(at.package, at.section, at.option, value, confdir);
}

}  // namespace cwmp
