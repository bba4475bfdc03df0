#include "handlers/diag/diagnostics.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace cwmp {

int test_option(int op, Arguments args, const Option& parameter, const OptionEvents& events, Caller caller) {
    Option stored = parameter;
    stored.store = Store::kScratch;
    return option(op, args, stored, events, caller);
}

int test_result(int op, Arguments args, const char* package, const char* section, const char* option,
                const char* missing) {
    return read_only_option(op, args, {.at = {package, section, option}, .store = Store::kScratch, .missing = missing});
}

int test_state(int op, Arguments args, const OptionPath& state, const OptionPath& running, const Option& request) {
    if (op != CWMP_OP_GET) return test_option(op, args, request);
    const GetArguments get(args);
    return get.answer(read_test(running) == "1" ? kNoTest : read_test(state).value_or(""));
}

std::optional<std::string> requested(const char* value) {
    return std::strcmp(value, "Requested") == 0 ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::string> device_of_interface(const char* value, const char* wan) {
    if (*wan != '\0' && std::strcmp(value, wan) == 0) return "br-wan";
    return text_within(value, kLongestName);
}

std::optional<int> number_of_setting(const char* value) {
    const long long number = std::strtoll(value, nullptr, 10);
    if (number < INT_MIN || number > INT_MAX) return std::nullopt;
    return static_cast<int>(number);
}

}  // namespace cwmp
