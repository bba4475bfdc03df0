// What the dialled connections, PPPoE and tunnels, have in common.
#pragma once

#include "core/handler.h"
#include "handlers/interfaces/instances.h"

namespace cwmp::interfaces {

// A read-only parameter: as the PPP connection of the WAN answers. absent, where it is given, is the answer of
// an instance that is not present.
int known_to_connection(int op, Arguments args, Object object, Handler connection,
                        const char* absent = nullptr, Caller caller = Caller::here());

int connection_status(int op, Arguments args, Object object, Caller caller = Caller::here());

}  // namespace cwmp::interfaces
