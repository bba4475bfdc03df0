// What the diagnostics share: their store, their state, and the process of their own in which one runs.
#pragma once

#include "config/store.h"
#include "core/handler.h"
#include "core/log.h"
#include "core/text.h"
#include "handlers/blocks/option.h"

namespace cwmp {

inline constexpr const char* kDiagnosticsPackage = "diagnostics_config";
inline constexpr const char* kNoTest = "None";

// Parameters and results live in scratch packages: they reach flash when a finished test is saved.
CWMP_INLINE std::optional<std::string> read_test(const OptionPath& at) { return read_option(at, kScratchStore); }
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

// A DiagnosticsState: while running holds "1" a test is under way, which reads as none. request is what a SET does.
int test_state(int op, Arguments args, const OptionPath& state, const OptionPath& running, const Option& request);

// The only value that a SET of a DiagnosticsState takes: it asks for the test.
std::optional<std::string> requested(const char* value);

// A text of the ACS that is not its word for none of these: a name of a host, an interface, a URL.
inline constexpr std::size_t kLongestName = 256;
// The Linux device of the WAN where a setting names the WAN by this path; other texts stay as they are.
std::optional<std::string> device_of_interface(const char* value, const char* wan);

// The number that a setting begins with, 0 without one; nothing when 32 bits do not hold it.
std::optional<int> number_of_setting(const char* value);

// Checks that store the text as the ACS wrote it.
template <int lowest, int highest>
std::optional<std::string> numeric_text(const char* value) {
    const auto number = number_of_setting(value);
    if (!number || *number < lowest || *number > highest) return std::nullopt;
    return value;
}

}  // namespace cwmp
