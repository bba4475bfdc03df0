#include "handlers/blocks/row.h"

#include "config/store.h"
#include "core/refusal.h"

namespace cwmp {

std::optional<int> require_row(const int* locate, Caller caller) {
    if (locate[0] >= 1) return locate[0];
    return no_value(refuse(caller, kError, "locate error\n"));
}

int row_text(int op, Arguments args, std::string (*text)(int row), Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto row = require_row(get.locate(), caller);
    return row ? get.answer(text(*row)) : kRefused;
}

int row_option(int op, Arguments args, const RowOption& parameter, Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto row = require_row(get.locate(), caller);
    if (!row) return kRefused;
    return get.answer(read_row(parameter.package, *row, parameter.option).value_or(parameter.missing));
}

int row_total(int op, Arguments args, const char* package, const char* option) {
    if (op != CWMP_OP_GET) return kRefused;
    return answer(args, read_option({package, "info", option}, kScratchStore).value_or("0"));
}

}  // namespace cwmp
