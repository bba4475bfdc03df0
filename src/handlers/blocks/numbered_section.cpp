#include "handlers/blocks/numbered_section.h"

#include <cstring>

#include "core/text.h"

namespace cwmp {

NumberedSection::NumberedSection(const SectionKind& kind, int number) : package_(kind.package), name_(decimal(number)) {
    if (number < 1 || !context_ || !context_.load(package_)) return;
    uci_section* section = context_.section(name_.c_str());
    if (section != nullptr && std::strcmp(UciContext::type(section), kind.type) == 0) section_ = section;
}

std::optional<std::string> NumberedSection::value(const char* option) const {
    return section_ != nullptr ? context_.value(section_, option) : std::nullopt;
}

bool NumberedSection::write(const char* option, const std::string& value) const {
    return write_option({package_, name_.c_str(), option}, value);
}

}  // namespace cwmp
