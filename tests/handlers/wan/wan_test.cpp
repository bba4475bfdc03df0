// What rows cannot say of the WAN: a full table, a look at a package, routes for every mask, exported bodies.
#include "cwmp/wan.h"

#include <sys/inotify.h>
#include <unistd.h>

#include "cwmp/routing.h"
#include "router_test.h"

namespace {

class Wan : public RouterTest {};

TEST_F(Wan, NoMoreThan64PortMappings) {
    std::string mappings;
    for (int number = 1; number <= 63; ++number) {
        const std::string name = std::to_string(number);
        if (number != 40) mappings += "config rule_vs '" + name + "'\n\toption port_forwarding_id '" + name + "'\n";
    }
    package("nat", mappings);
    EXPECT_EQ(handle(CWMP_OP_ADD, "NAT_PortMapping").value, "40");
    EXPECT_EQ(handle(CWMP_OP_ADD, "NAT_PortMapping").value, "64");
    EXPECT_EQ(told("add NAT_PortMapping"),
              "1 | ! WANDevice_WANConnectionDevice_WANIPConnection_PortMapping:  nat portmapping rule num "
              "exceeds\\x20");
    EXPECT_EQ(handle(CWMP_OP_LIST, "NAT_PortMapping", {}, "100").numbers.size(), 64U);
    EXPECT_EQ(told("list NAT_PortMapping = 3"), "1 2 3");
    EXPECT_EQ(told("set NAT_PortMapping_Alias 64 = last"), "flags NAT | nat.64.name=last");
}

// A table that somebody writes between two looks has another size in the second.
TEST_F(Wan, AListIsOneLookAtThePackage) {
    world("nat.3:rule_vs | nat.3.port_forwarding_id=3");
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(inotify_add_watch(watch, "/etc/config/nat", IN_OPEN | IN_CLOSE), 0);
    EXPECT_THAT(handle(CWMP_OP_LIST, "NAT_PortMapping").numbers, ElementsAre(3));
    alignas(inotify_event) char events[1024];
    EXPECT_EQ(::read(watch, events, sizeof events), ssize_t{2 * sizeof(inotify_event)});
    ::close(watch);
}

TEST_F(Wan, TheRouteTableHas32RowsAndStartsAtOne) {
    world("network.wan.wan_type=dhcp | network.wan.proto=dhcp");
    std::string lines;
    for (int i = 1; i <= 40; ++i)
        lines += "10.0." + std::to_string(i) + ".0/" + std::to_string(i % 33) + " dev br-lan\n";
    answer("ip route", lines);
    EXPECT_EQ(get("Routing_Router_IPv4ForwardingNumberOfEntries").value, "32");
    for (unsigned i = 1; i <= 32; ++i) {
        const uint32_t mask = ~0U << (32 - i);
        std::string dotted;
        for (int shift = 24; shift >= 0; shift -= 8)
            dotted += (dotted.empty() ? "" : ".") + std::to_string((mask >> shift) & 255);
        EXPECT_EQ(get("Routing_Router_IPv4Forwarding_DestSubnetMask", {1, static_cast<int>(i)}).value, dotted);
    }
    EXPECT_STREQ(FROM_LIBRARY(routelist)[0].destination, "");
    FROM_LIBRARY(routelist)[1].destination[0] = '\0';
    answer("ip route", "default via 192.0.2.1 dev br-wan\n");
    EXPECT_EQ(get("Routing_Router_IPv4Forwarding_DestIPAddress", {1, 1}).value, "0.0.0.0") << "built anew";
    EXPECT_EQ(get("Routing_Router_IPv4Forwarding_DestIPAddress", {1, 2}).value, "");
}

}  // namespace
