// The table of mesh devices: row 1 is the first device the controller knows.
#pragma once

#include "config/numbered_rows.h"
#include "core/handler.h"
#include "core/log.h"

namespace cwmp {

inline constexpr const char* kMeshDevices = "meshinfo";

// The device that the first instance number means; nothing, logged under the caller's name, when it is none.
std::optional<int> mesh_device(Arguments args, Caller caller = Caller::here());

// A read-only text of a device or a satellite.
int row_text(int op, Arguments args, std::string (*text)(int row), Caller caller = Caller::here());

// A read-only option of a numbered row, such as a device or a satellite.
struct RowOption {
    const char* package = nullptr;
    const char* option = nullptr;
    const char* missing = "";
};
int row_option(int op, Arguments args, const RowOption& parameter, Caller caller = Caller::here());

// A read-only number of rows, as the table tells it.
int row_total(int op, Arguments args, const char* package, const char* option);

}  // namespace cwmp
