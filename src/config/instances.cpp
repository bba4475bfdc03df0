#include "cwmp/instances.h"

#include <algorithm>
#include <vector>

#include "config/store.h"
#include "core/text.h"

namespace {

// The number for a new section, from the sorted numbers in use. A section without a number, which reads 0,
// makes 1 the answer, whoever has it.
int next_instance(const std::vector<int32_t>& numbers, int32_t capacity) {
    if (numbers.empty() || numbers.front() != 1) return 1;
    int32_t candidate = 2;
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        if (numbers[i] - numbers[i - 1] > 1) return numbers[i - 1] + 1;
        if (numbers[i] == candidate) ++candidate;
    }
    const int32_t last = numbers.back();
    return last >= capacity ? candidate : last + 1;
}

}  // namespace

void __getInstanceList(const char* package, const char* type, const char* option, int32_t* list) {
    cwmp::UciContext context(cwmp::kLiveStore);
    if (!context || !context.load(package)) return;
    std::size_t count = 0;
    for (uci_section* section : context.sections(type)) {
        if (const auto number = context.value(section, option))
            list[count] = cwmp::decimal_prefix(number->c_str());
        ++count;
    }
    std::sort(list, list + count);
}

int __getInstanceMax(const char* package, const char* type) {
    cwmp::UciContext context(cwmp::kLiveStore);
    if (!context || !context.load(package)) return 0;
    return static_cast<int>(context.sections(type).size());
}

int __getInstanceNext(const char* package, const char* type, const char* option, int32_t capacity) {
    std::vector<int32_t> numbers(static_cast<std::size_t>(__getInstanceMax(package, type)));
    __getInstanceList(package, type, option, numbers.data());
    return next_instance(numbers, capacity);
}
