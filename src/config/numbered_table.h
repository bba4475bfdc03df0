// A table that another process of the device keeps in a package of the scratch store: option "count" of
// section "info" tells how many rows there are, sections "1", "2" and so on are the rows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "config/uci_context.h"

namespace cwmp {

class NumberedTable {
  public:
    // A package that cannot be loaded is an empty table.
    explicit NumberedTable(const char* package, const char* count_option = "count");

    // As the table tells it: there may be fewer rows or more. 0 when it tells none.
    int count() const { return count_; }
    std::optional<std::string> field(int row, const char* option) const;
    // The numbers, ascending, of the rows up to the count in which an option has this value.
    std::vector<int> rows_with(const char* option, const std::string& value) const;

  private:
    UciContext context_;
    bool loaded_;
    int count_ = 0;
};

}  // namespace cwmp
