// A parameter that is one option of the store.
#pragma once

#include "config/store.h"
#include "core/handler.h"
#include "core/log.h"
#include "handlers/blocks/accepts.h"

namespace cwmp {

struct Option {
    OptionPath at = {};  // no package: a fixed value, missing; a SET is checked and raises its flags
    Store store = Store::kLive;
    const char* missing = nullptr;       // the answer when the option cannot be read; null: the empty text
    Check accepts = nullptr;             // null: any text, stored as it comes
    unsigned int apply = 0;              // the service groups that a SET raises
    bool secret = false;                 // never read back: GET answers the empty text
    bool write_failure_is_done = false;  // a SET that the store refuses is done all the same

    // For size: with a destructor one is built from instructions. Without, it is copied from a template, whose
    // pointers take a relocation each.
    // NOLINTNEXTLINE(modernize-use-equals-default)
    constexpr ~Option() {}
};

// What a failure logs under the handler's name; nothing where there is no text.
struct OptionEvents {
    const char* unreadable = nullptr;  // with a text, an option that cannot be read fails the GET
    const char* refused = nullptr;     // the value does not pass the check
    const char* unwritten = nullptr;   // the store refuses the write

    // NOLINTNEXTLINE(modernize-use-equals-default)
    constexpr ~OptionEvents() {}  // as above
};

// GET answers the stored text; SET stores the new one.
int option(int op, Arguments args, const Option& parameter);
int option(int op, Arguments args, const Option& parameter, const OptionEvents& events, Caller caller = Caller::here());
// The same where the arguments are taken already.
int option(const GetArguments& get, const Option& parameter, const OptionEvents& events = {},
           Caller caller = Caller::here());
int option(const SetArguments& set, const Option& parameter, const OptionEvents& events = {},
           Caller caller = Caller::here());
// GET alone.
int read_only_option(int op, Arguments args, const Option& parameter);
int read_only_option(int op, Arguments args, const Option& parameter, const OptionEvents& events,
                     Caller caller = Caller::here());

// A write of the live store whose failure a handler overlooks. Within a transaction it counts: false then.
bool write_leniently(const OptionPath& at, const std::string& text);

// An option of the live store; nothing, logged under the caller's name, when it cannot be read.
std::optional<std::string> read_reported(const OptionPath& at, const char* failure, Caller caller = Caller::here());

}  // namespace cwmp
