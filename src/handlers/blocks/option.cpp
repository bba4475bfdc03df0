#include "handlers/blocks/option.h"

namespace cwmp {

int read_only_option(int op, va_list args, const Option& parameter) {
    if (op != CWMP_OP_GET) return kRefused;
    return GetArguments(args).answer(read_option(parameter.at).value_or(parameter.missing));
}

int option(int op, va_list args, const Option& parameter) {
    if (op == CWMP_OP_GET) return read_only_option(op, args, parameter);
    const SetArguments set(args);
    if (set.value() == nullptr) return kRefused;
    if (!write_option(parameter.at, set.value()) && !parameter.write_failure_is_done) return kRefused;
    set.raise(parameter.apply);
    return kDone;
}

}  // namespace cwmp
