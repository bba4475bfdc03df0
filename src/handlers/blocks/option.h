// A parameter that is one option of the live store.
#pragma once

#include "config/store.h"
#include "core/handler.h"

namespace cwmp {

struct Option {
    OptionPath at;
    const char* missing = "";            // the answer when the option cannot be read
    unsigned int apply = 0;              // the service groups that a SET raises
    bool write_failure_is_done = false;  // a SET that the store refuses is done all the same
};

// GET answers the stored text; SET stores the new one.
int option(int op, va_list args, const Option& parameter);
// The same without SET.
int read_only_option(int op, va_list args, const Option& parameter);

}  // namespace cwmp
