// Whether the WAN-side network interfaces are up.
#include <string>

#include "core/command.h"
#include "core/log.h"
#include "core/text.h"
#include "cwmp/platform.h"

namespace {

constexpr std::size_t kLimit = 19;

}  // namespace

int check_br_mg_status() {
    cwmp::Command pipe(
        "ubus call network.interface.mg status | grep \"up\" | awk -F ':' '{print $2}' | awk -F ',' '{print "
        "$1}'");
    if (!pipe) {
        LOG_ERROR("Failed to get mg status\n\n");
        return -1;
    }
    return cwmp::contains(pipe.line(kLimit).value_or(""), "true") ? 0 : -1;
}

int check_br_wan_status() {
    cwmp::Command pipe(
        "ubus call network.interface.wan status | grep \"up\" | awk -F ':' '{print $2}' | awk -F ',' '{print "
        "$1}'");
    if (!pipe) {
        LOG_ERROR("Failed to get wan status\n\n");
        return -1;
    }
    return cwmp::contains(pipe.line(kLimit).value_or(""), "true") ? 0 : -1;
}
