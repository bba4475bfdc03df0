// One event, logged once in the source: the console line with the function's name and line, then the same
// text for the system log.
//
//   sink                 gets                          when
//   cwmp_listen's        [function line] message       always
//   /dev/console         [pid] [function line] message   level <= l_dbglvl
//   system log           cwmp syslog:message           level <= l_dbglvl and use_syslog is 1
//   cwmp_last_refusal    message, trimmed              refuse() alone, at every level (refusal.h)
//
// In this order, and nothing is kept back: a console line stands before the effect that follows it. The message is
// formatted once, and cut before a sink sees it.
//
// The console is reached by a shell's echo or directly (console_shell.cpp, console_direct.cpp); both escape what a
// shell would expand. The exported log_printf alone does not: its callers are outside.
//
// Who reports: a helper takes the Caller of the exported function it works for, because readers of field logs know
// the exported names alone. A handler's own name is not stored a second time (exported_names.h).
#pragma once

#include <optional>

#include "core/exported_names.h"

namespace cwmp {

inline constexpr int kEmergency = 0;
inline constexpr int kError = 3;
inline constexpr int kWarning = 4;
inline constexpr int kProgress = 6;
inline constexpr int kDebug = 7;

// What a message is cut to, terminator included.
inline constexpr int kMessageSize = 2048;

// Where an event is reported from. As a defaulted last parameter of a building block it names the handler
// that called the block.
//
// A handler, whose name begins with a capital, is known by the hash of its name; so is its body, named alike with an
// underscore behind.
struct Caller {
    const char* name = nullptr;
    int line = 0;
    std::uint32_t hash = 0;  // where there is no name

    static constexpr Caller here(const char* function = __builtin_FUNCTION(), int line = __builtin_LINE()) {
        const bool is_handler = *function >= 'A' && *function <= 'Z';
        return is_handler ? Caller{nullptr, line, hash_of_name(function)} : Caller{function, line};
    }
    const char* function() const;
};

// The console shows the message, and the system log gets it, as it is: whatever it holds, nothing of it is
// expanded or run.
void log_event(Caller caller, int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

// For what answers something or nothing: return no_value(LOG_FAILURE(...)).
inline std::nullopt_t no_value(int /*failure*/) { return std::nullopt; }

}  // namespace cwmp

#define LOG(level, ...) ::cwmp::log_event(::cwmp::Caller::here(), level, __VA_ARGS__)
#define LOG_ERROR(...) LOG(::cwmp::kError, __VA_ARGS__)
// Under the name of the exported function at work.
#define LOG_ERROR_AS(function, ...) ::cwmp::log_event({function, __LINE__}, ::cwmp::kError, __VA_ARGS__)
// The same where a call fails: return LOG_FAILURE(...), which is -1.
#define LOG_FAILURE(...) (LOG_ERROR(__VA_ARGS__), -1)
#define LOG_FAILURE_AS(function, ...) (LOG_ERROR_AS(function, __VA_ARGS__), -1)
