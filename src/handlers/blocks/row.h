// Parameters that are told by a row of a table (config/numbered_rows.h): the first instance number names it.
#pragma once

#include <optional>
#include <string>

#include "config/numbered_rows.h"
#include "core/handler.h"
#include "core/log.h"

namespace cwmp {

// The row that a path names; nothing, logged under the caller's name, when it names none.
std::optional<int> require_row(const int* locate, Caller caller = Caller::here());

// A read-only text of the row.
int row_text(int op, Arguments args, std::string (*text)(int row), Caller caller = Caller::here());

// A read-only option of the row.
struct RowOption {
    const char* package = nullptr;
    const char* option = nullptr;
    const char* missing = "";
};
int row_option(int op, Arguments args, const RowOption& parameter, Caller caller = Caller::here());

// A read-only number of rows, as the table tells it.
int row_total(int op, Arguments args, const char* package, const char* option);

}  // namespace cwmp
