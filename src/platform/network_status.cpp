// Whether the WAN-side network interfaces are up.
#include "core/command.h"
#include "core/log.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "platform/link_commands.h"

using namespace cwmp;

namespace {

int up_status(const char* interface, Caller caller = Caller::here()) {
    constexpr std::size_t kLimit = 19;
    Command pipe(formatted(kUpOf, interface));
    if (pipe) return contains(pipe.line(kLimit).value_or(""), "true") ? 0 : -1;
    log_event(caller, kError, "Failed to get %s status\n\n", interface);
    return -1;
}

}  // namespace

int check_br_mg_status() { return up_status("mg"); }
int check_br_wan_status() { return up_status("wan"); }
