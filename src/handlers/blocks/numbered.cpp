#include "handlers/blocks/numbered.h"

#include "core/refusal.h"

namespace cwmp {

int refuse_instance(int number, Caller caller) {
    if (number == 0) return refuse(caller, kError, "locate error\n");
    return refuse(caller, kError, "Failed, locate[0] = %d\n", number);
}

std::optional<int> require_number(int number, int last, Caller caller) {
    if (number >= 1 && number <= last) return number;
    return no_value(refuse_instance(number, caller));
}

int numbered(int op, Arguments args, int last, std::string (*text)(int number), Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto number = require_number(get.locate()[0], last, caller);
    return number ? get.answer(text(*number)) : kRefused;
}

}  // namespace cwmp
