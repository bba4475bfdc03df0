#include "config/numbered_table.h"

#include <algorithm>

#include "core/text.h"

namespace cwmp {

NumberedTable::NumberedTable(const char* package, const char* count_option)
    : context_(kScratchStore), loaded_(context_ && context_.load(package)) {
    uci_section* info = loaded_ ? context_.section("info") : nullptr;
    if (info == nullptr) return;
    count_ = std::max(0, decimal_prefix(context_.value(info, count_option).value_or("").c_str()));
}

std::optional<std::string> NumberedTable::field(int row, const char* option) const {
    uci_section* section = loaded_ ? context_.section(std::to_string(row).c_str()) : nullptr;
    if (section == nullptr) return std::nullopt;
    return context_.value(section, option);
}

std::vector<int> NumberedTable::rows_with(const char* option, const std::string& value) const {
    std::vector<int> rows;
    if (!loaded_) return rows;
    // Over the sections, not up to the count: a broken count may be any number.
    for (uci_section* section : context_.sections(nullptr)) {
        const int row = decimal_prefix(UciContext::name(section));
        const bool numbered = std::to_string(row) == UciContext::name(section);
        if (!numbered || row < 1 || row > count_ || context_.value(section, option) != value) continue;
        rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

}  // namespace cwmp
