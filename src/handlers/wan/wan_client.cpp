// Whether the internet WAN takes its address by DHCP.
#include "config/store.h"
#include "core/log.h"
#include "cwmp/wan.h"

using namespace cwmp;

int getclientstatus() {
    const auto type = read_option({"network", "wan", "wan_type"});
    if (!type) {
        LOG_ERROR("Failed to get wan_type\n");
        return 0;
    }
    const auto proto = read_option({"network", "wan", "proto"});
    if (!proto) {
        LOG_ERROR("Failed to get wan_proto\n");
        return 0;
    }
    if (*type != "l2tp" && *type != "pppoe" && *type != "pptp") return *proto == "dhcp" ? 1 : 0;
    const bool second_is_dynamic = read_option({"protocol", type->c_str(), "snd_conn"}) == "dynamic";
    return second_is_dynamic && *proto == *type ? 1 : 0;
}
