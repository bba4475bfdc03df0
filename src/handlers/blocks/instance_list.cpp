#include "handlers/blocks/instance_list.h"

#include <algorithm>

namespace cwmp {

std::optional<uint32_t> answer_instances(Arguments args, const std::vector<int32_t>& numbers) {
    va_list copy;
    va_copy(copy, args);
    [[maybe_unused]] const int* locate = va_arg(copy, int*);
    auto* array = va_arg(copy, uint32_t*);
    const auto* capacity = va_arg(copy, const uint32_t*);
    va_end(copy);
    if (array == nullptr || capacity == nullptr) return std::nullopt;
    std::copy_n(numbers.begin(), std::min<std::size_t>(numbers.size(), *capacity), array);
    return *capacity;
}

}  // namespace cwmp
