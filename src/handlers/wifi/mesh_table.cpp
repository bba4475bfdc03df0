#include "handlers/wifi/mesh_table.h"

#include "config/store.h"
#include "core/refusal.h"

namespace cwmp {

std::optional<int> mesh_device(Arguments args, Caller caller) {
    const int number = GetArguments(args).locate()[0];
    if (number >= 1) return number;
    refuse(caller, kError, "locate error\n");
    return std::nullopt;
}

int row_text(int op, Arguments args, std::string (*text)(int row), Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto row = mesh_device(args, caller);
    return row ? answer(args, text(*row)) : kRefused;
}

int row_option(int op, Arguments args, const RowOption& parameter, Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto row = mesh_device(args, caller);
    if (!row) return kRefused;
    return answer(args, read_row(parameter.package, *row, parameter.option).value_or(parameter.missing));
}

int row_total(int op, Arguments args, const char* package, const char* option) {
    if (op != CWMP_OP_GET) return kRefused;
    const OptionPath at{package, "info", option};
    return answer(args, read_option(at, kScratchStore).value_or("0"));
}

}  // namespace cwmp
