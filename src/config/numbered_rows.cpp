#include "config/numbered_rows.h"

#include <algorithm>

#include "config/instance_numbers.h"
#include "config/store.h"
#include "core/text.h"

namespace cwmp {
namespace {

// 0 for a section that is no row.
int row_number(const char* section) {
    const int number = decimal_prefix(section);
    return decimal(number) == section ? number : 0;
}

}  // namespace

std::optional<int> row_count(const char* package) {
    const auto count = read_option(Section{package, "info"} / "count", kScratchStore);
    if (!count) return std::nullopt;
    return decimal_prefix(count->c_str());
}

std::optional<std::string> read_row(const char* package, int row, const char* option) {
    const auto section = decimal(row);
    return read_option({package, section.c_str(), option}, kScratchStore);
}

std::vector<int> find_rows(const char* package, int last, std::initializer_list<Criterion> criteria) {
    std::vector<int> rows;
    UciContext context(kScratchStore);
    if (!context || !context.load(package)) return rows;
    for (auto* section : context.sections(nullptr)) {
        const int number = row_number(UciContext::name(section));
        if (number < 1 || number > last) continue;
        const bool meets_all = std::all_of(criteria.begin(), criteria.end(), [&](const Criterion& criterion) {
            return context.value(section, criterion.option) == criterion.value;
        });
        if (meets_all) rows.push_back(number);
    }
    sort_numbers(rows.data(), rows.size());
    return rows;
}

std::optional<int> pick_row(const std::vector<int>& rows, int index) {
    if (index < 1 || static_cast<std::size_t>(index) > rows.size()) return std::nullopt;
    return rows[static_cast<std::size_t>(index) - 1];
}

}  // namespace cwmp
