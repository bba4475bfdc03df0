// Device.Routing.
#include "cwmp/routing.h"

#include "config/store.h"
#include "core/text.h"
#include "cwmp/value_checks.h"
#include "handlers/blocks/command_line.h"

using namespace cwmp;

namespace {

// The table may be as old as the first call: only the count is read live.
const cwmp_route& route_of(const int* locate) {
    static const cwmp_route kNone = {};
    genroutelist();
    const int number = locate[1];
    return number >= 1 && number <= CWMP_ROUTES ? routelist[number] : kNone;
}

template <std::size_t size>
int route_field(int op, Arguments args, char (cwmp_route::*field)[size]) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    return get.answer(route_of(get.locate()).*field);
}

}  // namespace

PARAMETER(Routing_RouterNumberOfEntries, constant, "1")
PARAMETER(Routing_Router_Enable, constant, "1")
PARAMETER(Routing_Router_Status, constant, "Enabled")

READ_ONLY(Routing_Router_IPv4ForwardingNumberOfEntries) {
    Command pipe("ip route| wc -l");
    if (!pipe) {
        LOG(kEmergency, "Failed to get status\n");
        return kRefused;
    }
    const std::string count = pipe.line().value_or("");
    const bool too_many = decimal_prefix(count.c_str()) > CWMP_ROUTES;
    return get.answer(too_many ? decimal(CWMP_ROUTES) : count);
}

PARAMETER(Routing_Router_IPv4Forwarding_Enable, constant, "1")
PARAMETER(Routing_Router_IPv4Forwarding_Status, constant, "Enabled")
PARAMETER(Routing_Router_IPv4Forwarding_StaticRoute, constant, "0")
PARAMETER(Routing_Router_IPv4Forwarding_DestIPAddress, route_field, &cwmp_route::destination)
PARAMETER(Routing_Router_IPv4Forwarding_DestSubnetMask, route_field, &cwmp_route::mask)
PARAMETER(Routing_Router_IPv4Forwarding_Interface, route_field, &cwmp_route::interface)
PARAMETER(Routing_Router_IPv4Forwarding_Origin, route_field, &cwmp_route::origin)

// An access point has one way out, whatever the table says.
READ_ONLY(Routing_Router_IPv4Forwarding_GatewayIPAddress) {
    constexpr std::size_t kLimit = 19;
    const cwmp_route& route = route_of(get.locate());
    if (read_option({"sysmode", "sysmode", "mode"}) == "AP") {
        Command pipe("ip route show table main | grep default | awk {'print $3'}");
        if (!pipe) return kRefused;
        const std::string gateway = pipe.line(kLimit).value_or("");
        if (libutil_netChkDotIpAddr(gateway.c_str()) == 1) return get.answer(gateway);
    }
    return get.answer(route.gateway);
}
