// Reading and writing single options, as handlers see the store.
#pragma once

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

std::optional<std::string> read_option(const OptionPath& at, const char* confdir = kLiveStore);

// The live store, with the mirror policy. False when the write failed.
bool write_option(const OptionPath& at, const std::string& value);
// Another directory; nothing is mirrored.
bool write_option(const OptionPath& at, const std::string& value, const char* confdir);

}  // namespace cwmp
