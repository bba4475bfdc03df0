// Whether the WAN-side network interfaces are up.
#include <cstdio>

#include "core/command.h"
#include "core/log.h"
#include "core/text.h"
#include "cwmp/platform.h"

namespace {

int up_status(const char* interface, cwmp::Caller caller = cwmp::Caller::here()) {
    constexpr std::size_t kLimit = 19;
    char text[128];
    std::snprintf(
        text, sizeof text,
        "ubus call network.interface.%s status | grep \"up\" | awk -F ':' '{print $2}' | awk -F ',' "
        "'{print $1}'",
        interface);
    cwmp::Command pipe(text);
    if (!pipe) {
        cwmp::log_event(caller, cwmp::kError, "Failed to get %s status\n\n", interface);
        return -1;
    }
    return cwmp::contains(pipe.line(kLimit).value_or(""), "true") ? 0 : -1;
}

}  // namespace

int check_br_mg_status() { return up_status("mg"); }
int check_br_wan_status() { return up_status("wan"); }
