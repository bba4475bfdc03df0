#include "handlers/blocks/staged.h"

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

int execute(const StagedField& field, int mode, const char* value, unsigned int* flags) {
    return func_obj_exec(field.object, field.option, mode, value, flags) != 0 ? kDone : kRefused;
}

}  // namespace

bool is_staged_pass(int op) { return mode_of(op).has_value(); }

int staged(int op, va_list args, const StagedField& field, Caller caller) {
    const auto mode = mode_of(op);
    if (!mode) return kDone;
    const SetArguments set(args);
    if (set.value() == nullptr) return kRefused;
    if (field.to_stage == nullptr) return execute(field, *mode, set.value(), set.flags());
    const auto text = field.to_stage(set.value());
    if (!text) {
        log_event(caller, kError, "value is not valid\n");
        return kRefused;
    }
    return execute(field, *mode, text->c_str(), set.flags());
}

}  // namespace cwmp
