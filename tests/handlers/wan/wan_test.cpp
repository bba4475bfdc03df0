// What rows cannot say of the WAN: how often a package is looked at, what an agent does to the exported routes.
#include <sys/inotify.h>
#include <unistd.h>

#include "cwmp/routing.h"
#include "router_test.h"

namespace {

class Wan : public RouterTest {};

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

TEST_F(Wan, TheRouteTableStartsAtOneAndIsBuiltAnewWhenItIsEmptied) {
    world("network.wan.{wan_type,proto}=dhcp");
    answer("ip route", "10.0.1.0/24 dev br-lan\n10.0.2.0/24 dev br-lan\n");
    EXPECT_EQ(told("get Routing_Router_IPv4Forwarding_DestIPAddress 1.2"), "10.0.2.0 | $ ip route");
    EXPECT_STREQ(FROM_LIBRARY(routelist)[0].destination, "");
    FROM_LIBRARY(routelist)[1].destination[0] = '\0';
    answer("ip route", "default via 192.0.2.1 dev br-wan\n");
    EXPECT_EQ(told("get Routing_Router_IPv4Forwarding_DestIPAddress 1.1"), "0.0.0.0 | $ ip route");
    EXPECT_EQ(told("get Routing_Router_IPv4Forwarding_DestIPAddress 1.2"), "''");
}

}  // namespace
