// The kernel's routes in the fixed-width table that agents index by instance number.
#include <cstdio>
#include <cstring>
#include <string>

#include "config/store.h"
#include "core/command.h"
#include "core/text.h"
#include "cwmp/interface_stack.h"
#include "cwmp/routing.h"

cwmp_route routelist[CWMP_ROUTES + 1];

namespace cwmp {
namespace {

constexpr const char* kDefault = "default";

struct Wan {
    std::string type;
    std::string proto;
    const char* interface;

    const char* origin() const { return proto == "dhcp" ? "DHCPv4" : "Static"; }
    // The interface that br-wan itself carries: the leg under a tunnel has one of its own.
    const char* bridge_interface() const {
        if (type == "pptp") return "Device.IP.Interface.3.";
        return type == "l2tp" ? "Device.IP.Interface.4." : "Device.IP.Interface.2.";
    }
};

// A prefix length of 0 shows as 255.255.255.255: the shift by 32 wraps.
std::string mask_of(int prefix) {
    const unsigned int shift = (32U - static_cast<unsigned int>(prefix)) % 32U;
    const unsigned int mask = ~0U << shift;
    char text[16];
    std::snprintf(text, sizeof text, "%u.%u.%u.%u", mask >> 24, mask >> 16 & 255U, mask >> 8 & 255U, mask & 255U);
    return text;
}

void fill_destination(cwmp_route& route, const std::string& word) {
    const auto slash = word.find('/');
    if (word == kDefault) {
        copy_to_field(route.destination, "0.0.0.0"sv);
        copy_to_field(route.mask, "0.0.0.0"sv);
        copy_to_field(route.origin, "Static"sv);
    } else if (slash != std::string::npos) {
        copy_to_field(route.destination, word.substr(0, slash));
        copy_to_field(route.mask, mask_of(decimal_prefix(word.c_str() + slash + 1)));
        copy_to_field(route.origin, "DHCPv4"sv);
    } else {
        copy_to_field(route.destination, word);
        copy_to_field(route.mask, "255.255.255.255"sv);
        copy_to_field(route.origin, "IPCP"sv);
    }
}

void fill_interface(cwmp_route& route, const std::string& line, const Wan& wan) {
    if (contains(line, "br-wan")) {
        copy_to_field(route.origin, wan.origin());
        copy_to_field(route.interface, wan.bridge_interface());
    } else if (contains(line, "lan")) {
        copy_to_field(route.origin, "Static"sv);
        copy_to_field(route.interface, "Device.IP.Interface.1."sv);
    } else {
        const bool dialled = contains(line, "internet");
        copy_to_field(route.interface, dialled ? wan.interface : "Device.IP.Interface.2.");
    }
}

// False for a line without a word.
bool fill(cwmp_route& route, const std::string& line, const Wan& wan) {
    std::size_t position = 0;
    const std::string word(next_word(line, position));
    if (word.empty()) return false;
    fill_destination(route, word);
    fill_interface(route, line, wan);
    next_word(line, position);
    copy_to_field(route.gateway, word == kDefault ? next_word(line, position) : word);
    return true;
}

}  // namespace
}  // namespace cwmp

int genroutelist() {
    const auto type = cwmp::read_option({"network", "wan", "wan_type"});
    const auto proto = cwmp::read_option({"network", "wan", "proto"});
    if (!type || !proto) return -1;
    if (routelist[1].destination[0] != '\0') return 0;
    const cwmp::Wan wan = {*type, *proto, getWanInterface()};
    cwmp::Command pipe("ip route");
    if (!pipe) return -1;
    std::memset(routelist, 0, sizeof routelist);
    for (int number = 1; number <= CWMP_ROUTES;) {
        const auto line = pipe.line();
        if (!line) break;
        if (cwmp::fill(routelist[number], *line, wan)) ++number;
    }
    return 0;
}
