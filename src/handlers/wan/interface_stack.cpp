// Device.InterfaceStack.
#include "cwmp/interface_stack.h"
#include "core/text.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>

#include "core/handler.h"
#include "core/refusal.h"

using namespace cwmp;

namespace {

bool is_shown(const cwmp_interface_stack_row& row) { return row.shown != 0; }

// The layer of the number-th shown row, empty beyond the last. The flags are as the count's last GET left
// them.
int layer(int op, Arguments args, const char* cwmp_interface_stack_row::*path, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const int number = get.locate()[0];
    if (number == 0) return refuse(caller, kError, "locate error\n");
    int shown = 0;
    const auto* row = std::find_if(std::begin(intfStacks), std::end(intfStacks), [&](const auto& candidate) {
        shown += is_shown(candidate) ? 1 : 0;
        return shown == number && is_shown(candidate);
    });
    const bool found = row != std::end(intfStacks);
    std::printf("%s showNum=%d, i=%d\n", caller.function(), shown, static_cast<int>(row - intfStacks));
    return get.answer(found && row->*path != nullptr ? row->*path : "");
}

}  // namespace

READ_ONLY(InterfaceStackNumberOfEntries) {
    refreshIntfStacks();
    const auto shown = std::count_if(std::begin(intfStacks), std::end(intfStacks), is_shown);
    return get.answer(decimal(shown));
}

PARAMETER(InterfaceStack_HigherLayer, layer, &cwmp_interface_stack_row::higher)
PARAMETER(InterfaceStack_LowerLayer, layer, &cwmp_interface_stack_row::lower)
