// Looking a text up in a table of rows.
#pragma once

#include <cstddef>
#include <string_view>

namespace cwmp {

// The first row whose column holds the text; null without one.
template <typename Row, std::size_t count, typename Column>
const Row* row_with(const Row (&table)[count], Column Row::*column, std::string_view text) {
    for (const Row& row : table) {
        if (text == row.*column) return &row;
    }
    return nullptr;
}

}  // namespace cwmp
