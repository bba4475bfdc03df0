// Tables that other processes of the device keep in scratch packages: section "info" tells the number of
// rows, which are the sections "1" to that number.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace cwmp {

inline constexpr const char* kHosts = "hosts";           // the hosts of the LAN
inline constexpr const char* kMeshDevices = "meshinfo";  // row 1 is the first device the controller knows

// Option count of section info; nothing when it cannot be read.
std::optional<int> row_count(const char* package);

std::optional<std::string> read_row(const char* package, int row, const char* option);

struct Criterion {
    const char* option;
    std::string value;
};

// The numbers of the rows, up to last, that meet all criteria, ascending. One look at the package: a count
// beyond what is there costs nothing.
std::vector<int> find_rows(const char* package, int last, std::initializer_list<Criterion> criteria);
// The index-th of them, from 1.
std::optional<int> pick_row(const std::vector<int>& rows, int index);

}  // namespace cwmp
