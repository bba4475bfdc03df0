// The list operation of an object handler.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/handler.h"

namespace cwmp {

// Takes locate, the agent's array and its capacity, and writes the numbers, as many as there is room for. The
// count is not written back: the agent zeroes the array beforehand. Answers the capacity; nothing when the
// agent passed no array.
std::optional<uint32_t> answer_instances(Arguments args, const std::vector<int32_t>& numbers);

}  // namespace cwmp
