// The instance numbers of a multi-instance object, for those that need more than one fact of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cwmp {

// The numbers of all sections of a type in a live package, ascending, 0 for a section without one; empty when
// the package cannot be loaded. One look at the package: what is written meanwhile is not seen in part.
std::vector<int32_t> instance_numbers(const char* package, const char* type, const char* option);

// Ascending.
void sort_numbers(int32_t* numbers, std::size_t count);

}  // namespace cwmp
