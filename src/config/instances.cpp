#include "cwmp/instances.h"

#include <cstdlib>
#include <optional>
#include <vector>

#include "config/instance_numbers.h"
#include "config/uci_context.h"
#include "core/text.h"

using namespace cwmp;

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

// In file order, a section without a number included; nothing when the package cannot be loaded.
std::vector<std::optional<int32_t>> stored_numbers(const char* package, const char* type, const char* option) {
    std::vector<std::optional<int32_t>> numbers;
    UciContext context(kLiveStore);
    if (!context || !context.load(package)) return numbers;
    for (uci_section* section : context.sections(type)) {
        const auto text = context.value(section, option);
        numbers.push_back(text ? std::optional(decimal_prefix(text->c_str())) : std::nullopt);
    }
    return numbers;
}

}  // namespace

std::vector<int32_t> cwmp::instance_numbers(const char* package, const char* type, const char* option) {
    std::vector<int32_t> numbers;
    for (const auto& number : stored_numbers(package, type, option)) numbers.push_back(number.value_or(0));
    sort_numbers(numbers.data(), numbers.size());
    return numbers;
}

// The C library's: std::sort is 600 bytes of code.
void cwmp::sort_numbers(int32_t* numbers, std::size_t count) {
    if (count < 2) return;
    std::qsort(numbers, count, sizeof *numbers, [](const void* one, const void* other) {
        const int32_t a = *static_cast<const int32_t*>(one);
        const int32_t b = *static_cast<const int32_t*>(other);
        return (a > b) - (a < b);
    });
}

void __getInstanceList(const char* package, const char* type, const char* option, int32_t* list) {
    int32_t* end = list;
    for (const auto& number : stored_numbers(package, type, option)) {
        *end = number.value_or(*end);
        ++end;
    }
    sort_numbers(list, static_cast<std::size_t>(end - list));
}

int __getInstanceMax(const char* package, const char* type) {
    UciContext context(kLiveStore);
    if (!context || !context.load(package)) return 0;
    return static_cast<int>(context.sections(type).size());
}

int __getInstanceNext(const char* package, const char* type, const char* option, int32_t capacity) {
    return next_instance(instance_numbers(package, type, option), capacity);
}
