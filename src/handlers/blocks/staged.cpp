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

int execute(StagedField field, int mode, const char* value, unsigned int* flags) {
    return func_obj_exec(field.object, field.option, mode, value, flags) != 0 ? kDone : kRefused;
}

}  // namespace

bool is_pass(int op) { return mode_of(op).has_value(); }

int staged(int op, Arguments args, StagedField field, Caller caller) {
    const auto mode = mode_of(op);
    if (!mode) return kDone;
    const SetArguments set(op, args);
    // The engine refuses to stage a value that is not there; check and apply take none.
    if (field.to_stage == nullptr || set.value() == nullptr)
        return execute(field, *mode, set.value(), set.flags());
    const auto text = field.to_stage(set.value());
    if (!text) return refuse(caller, kError, "value is not valid\n");
    return execute(field, *mode, text->c_str(), set.flags());
}

}  // namespace cwmp
