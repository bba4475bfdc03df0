// A parameter that is one field of a group of settings: staged, checked and applied as a whole.
#pragma once

#include <optional>
#include <string>

#include "core/handler.h"
#include "core/log.h"
#include "cwmp/staged_objects.h"
#include "handlers/blocks/option.h"

namespace cwmp {

struct StagedField {
    int object = -1;  // CWMP_STAGED_...
    int option = -1;  // CWMP_PPPOE_..., CWMP_LAN_... and so on
    // Where the engine's own check is not enough: the text to stage for a value, nothing to refuse it. Asked
    // in every pass; a refusal is logged under the caller's name.
    std::optional<std::string> (*to_stage)(const char* value) = nullptr;
};

// Whether op is one of the three passes of a SET.
bool is_pass(int op);

// SET in its three passes; any other op does nothing and is done. The handler answers GET itself.
int staged(int op, Arguments args, StagedField field, Caller caller = Caller::here());
// One of the passes, whose arguments are taken already.
int staged(const PassArguments& pass, StagedField field, Caller caller);

// The whole parameter: GET answers an option of the store, where what the group has applied stands.
int staged_option(int op, Arguments args, StagedField field, const Option& stored, const OptionEvents& events = {},
                  Caller caller = Caller::here());

}  // namespace cwmp
