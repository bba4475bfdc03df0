// What the diagnostics share: their store, their state, and the process of their own in which one runs.
#pragma once

#include "config/store.h"
#include "core/handler.h"
#include "core/log.h"
#include "core/text.h"
#include "handlers/blocks/option.h"

namespace cwmp {

inline constexpr const char* kDiagnosticsPackage = "diagnostics_config";
inline constexpr const char* kRequested = "Requested";
inline constexpr const char* kNoTest = "None";

// Parameters and results live in scratch packages: they reach flash when a finished test is saved.
CWMP_INLINE std::optional<std::string> read_test(const OptionPath& at) {
    return read_option(at, kScratchStore);
}
CWMP_INLINE bool write_test(const OptionPath& at, const std::string& value) {
    return write_option(at, value, kScratchStore);
}

// A setting or a result of a test, and what its failures log.
int test_option(int op, Arguments args, const Option& parameter, const OptionEvents& events = {},
                Caller caller = Caller::here());
int test_result(int op, Arguments args, const char* package, const char* section, const char* option,
                const char* missing);
CWMP_INLINE int test_result(int op, Arguments args, const OptionPath& at, const char* missing = "") {
    return test_result(op, args, at.package, at.section, at.option, missing);
}

// GET of a DiagnosticsState: while running holds "1" a test is under way, which reads as none.
int test_state(Arguments args, const OptionPath& state, const OptionPath& running);

// Whether a SET asks for the test, the only value that a DiagnosticsState takes.
bool is_request(const SetArguments& set);

// The number that a setting begins with, 0 without one; nothing when 32 bits do not hold it.
std::optional<int> number_of_setting(const char* value);

// The instance number of a result in locate[0]; nothing, logged under the caller's name, unless it is one.
std::optional<int> result_number(const int* locate, Caller caller);

// Checks that store the text as the ACS wrote it.
template <int lowest, int highest>
std::optional<std::string> numeric_text(const char* value) {
    const auto number = number_of_setting(value);
    if (!number || *number < lowest || *number > highest) return std::nullopt;
    return value;
}

}  // namespace cwmp
