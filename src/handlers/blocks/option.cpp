#include "handlers/blocks/option.h"

#include "core/refusal.h"

namespace cwmp {
namespace {

int fail(Caller caller, const char* event) { return event != nullptr ? refuse(caller, kError, "%s", event) : kRefused; }

bool write(const Option& parameter, const std::string& text) {
    if (parameter.at.package == nullptr) return true;
    // Changes of the live store are subject to the mirror policy.
    return parameter.store == Store::kLive ? write_option(parameter.at, text)
                                           : write_option(parameter.at, text, kScratchStore);
}

}  // namespace

int option(const GetArguments& get, const Option& parameter, const OptionEvents& events, Caller caller) {
    if (parameter.secret) return get.answer("");
    const char* missing = parameter.missing != nullptr ? parameter.missing : "";
    if (parameter.at.package == nullptr) return get.answer(missing);
    const auto stored = read_option(parameter.at, directory_of(parameter.store));
    if (!stored && events.unreadable != nullptr) return fail(caller, events.unreadable);
    return get.answer(stored ? stored->c_str() : missing);
}

int option(const SetArguments& set, const Option& parameter, const OptionEvents& events, Caller caller) {
    const auto text = parameter.accepts != nullptr ? parameter.accepts(set.value()) : set.value();
    if (!text) return fail(caller, events.refused);
    const bool overlooked = parameter.write_failure_is_done && !transaction::is_running();
    if (!write(parameter, *text) && !overlooked) return fail(caller, events.unwritten);
    set.raise(parameter.apply);
    return kDone;
}

int option(int op, Arguments args, const Option& parameter) { return option(op, args, parameter, {}); }

int option(int op, Arguments args, const Option& parameter, const OptionEvents& events, Caller caller) {
    if (op == CWMP_OP_GET) return option(GetArguments(args), parameter, events, caller);
    return change(op, args, [&](const SetArguments& set) { return option(set, parameter, events, caller); });
}

int read_only_option(int op, Arguments args, const Option& parameter) {
    return read_only_option(op, args, parameter, {});
}

int read_only_option(int op, Arguments args, const Option& parameter, const OptionEvents& events, Caller caller) {
    return op == CWMP_OP_GET ? option(GetArguments(args), parameter, events, caller) : kRefused;
}

bool write_leniently(const OptionPath& at, const std::string& text) {
    return write_option(at, text) || !transaction::is_running();
}

std::optional<std::string> read_reported(const OptionPath& at, const char* failure, Caller caller) {
    auto text = read_option(at);
    if (!text) refuse(caller, kError, "%s", failure);
    return text;
}

}  // namespace cwmp
