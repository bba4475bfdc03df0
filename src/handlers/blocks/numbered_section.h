// An instance that is a section of a live package, named by its number.
#pragma once

#include <string>

#include "config/store.h"

namespace cwmp {

struct SectionKind {
    const char* package;
    const char* type;
};

// One look at the section: what is written meanwhile is not seen.
class NumberedSection {
  public:
    NumberedSection(const SectionKind& kind, int number);

    // Whether there is one. A section of another type is none.
    explicit operator bool() const { return section_ != nullptr; }
    const std::string& name() const { return name_; }

    // Nothing, too, without the section.
    std::optional<std::string> value(const char* option) const;
    bool write(const char* option, const std::string& value) const;

  private:
    const char* package_;
    std::string name_;
    UciContext context_{kLiveStore};
    uci_section* section_ = nullptr;
};

}  // namespace cwmp
