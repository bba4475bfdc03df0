#include "handlers/blocks/staged.h"

#include "core/refusal.h"

namespace cwmp {

namespace {

std::optional<int> mode_of(int op) {
    switch (op) {
        case CWMP_OP_STAGE:
            return CWMP_STAGED_STAGE;
        case CWMP_OP_CHECK:
            return CWMP_STAGED_CHECK;
        case CWMP_OP_APPLY:
            return CWMP_STAGED_APPLY;
        default:
            return std::nullopt;
    }
}

}  // namespace

bool is_pass(int op) { return mode_of(op).has_value(); }

int staged(int op, Arguments args, StagedField field, Caller caller) {
    return is_pass(op) ? staged(PassArguments(op, args), field, caller) : kDone;
}

int staged(const PassArguments& pass, StagedField field, Caller caller) {
    // The engine refuses to stage a value that is not there; check and apply take none.
    const char* value = pass.text();
    std::optional<std::string> text;
    if (field.to_stage != nullptr && value != nullptr) {
        text = field.to_stage(value);
        if (!text) return refuse(caller, kError, "value is not valid\n");
        value = text->c_str();
    }
    const int mode = mode_of(pass.op()).value_or(CWMP_STAGED_STAGE);
    return func_obj_exec(field.object, field.option, mode, value, pass.flags()) != 0 ? kDone : kRefused;
}

int staged_option(int op, Arguments args, StagedField field, const Option& stored, const OptionEvents& events,
                  Caller caller) {
    if (op == CWMP_OP_GET) return option(GetArguments(args), stored, events, caller);
    return staged(op, args, field, caller);
}

}  // namespace cwmp
