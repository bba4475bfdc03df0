// Device.UPnP.Device.
#include "core/command.h"
#include "handlers/blocks/option.h"

using namespace cwmp;

// Read where the service reads it, written to the package that the reload carries over.
HANDLER(UPnP_Device_Enable) {
    if (op == CWMP_OP_GET) {
        return option(op, args, {.at = {"upnpd", "config", "enable_upnp"}},
                      {.unreadable = "get enable_upnp error\n\n"});
    }
    const int result =
        option(op, args, {.at = {"upnpd_sync", "config", "enable_upnp"}}, {.unwritten = "Set enable_upnp error\n\n"});
    if (result == kDone) run("/etc/init.d/miniupnpd reload");
    return result;
}
