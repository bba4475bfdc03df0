#include "handlers/diag/diagnostics.h"

#include <climits>
#include <cstdlib>
#include <cstring>

#include "core/refusal.h"

namespace cwmp {

int test_option(int op, Arguments args, const Option& parameter, const OptionEvents& events, Caller caller) {
    Option stored = parameter;
    stored.store = kScratchStore;
    return option(op, args, stored, events, caller);
}

int test_result(int op, Arguments args, const char* package, const char* section, const char* option,
                const char* missing) {
    return read_only_option(op, args,
                            {.at = {package, section, option}, .store = kScratchStore, .missing = missing});
}

int test_state(Arguments args, const OptionPath& state, const OptionPath& running) {
    const GetArguments get(args);
    return get.answer(read_test(running) == "1" ? kNoTest : read_test(state).value_or(""));
}

std::optional<int> number_of_setting(const char* value) {
    const long long number = std::strtoll(value, nullptr, 10);
    if (number < INT_MIN || number > INT_MAX) return std::nullopt;
    return static_cast<int>(number);
}

std::optional<int> result_number(const int* locate, Caller caller) {
    if (locate[0] >= 1) return locate[0];
    refuse(caller, kError, "locate error\n");
    return std::nullopt;
}

bool is_request(const SetArguments& set) {
    return set.value() != nullptr && std::strcmp(set.value(), kRequested) == 0;
}

}  // namespace cwmp
