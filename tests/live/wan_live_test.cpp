// The WAN's parsers against the real tools: interfaces, counters and routes of the live router root.
#include "router_test.h"

namespace {

class WanLive : public RouterTest {};

TEST_F(WanLive, InterfacesAndRoutes) {
    store("network.wan.wan_type", "static");
    store("network.wan.proto", "static");
    const std::string connection = "WANDevice_WANConnectionDevice_WANIPConnection_";
    EXPECT_EQ(get((connection + "SubnetMask").c_str(), {1, 2}).value, "255.255.255.0");
    EXPECT_THAT(get((connection + "MACAddress").c_str(), {1, 1}).value,
                ::testing::MatchesRegex("[0-9A-F]{2}(:[0-9A-F]{2}){5}"));
    EXPECT_THAT(get("WANDevice_WANCommonInterfaceConfig_TotalBytesSent", {1}).value,
                ::testing::MatchesRegex("[0-9]+"));
    EXPECT_EQ(get("NAT_InterfaceSetting_Status").value, "Enabled");
    EXPECT_EQ(get("Routing_Router_IPv4ForwardingNumberOfEntries").value, "4");
    const auto route = [&](const char* name, int number) {
        return get((std::string("Routing_Router_IPv4Forwarding_") + name).c_str(), {1, number}).value;
    };
    EXPECT_EQ(route("GatewayIPAddress", 1), "192.0.2.1");
    EXPECT_EQ(route("Interface", 1), "Device.IP.Interface.2.");
    EXPECT_EQ(route("DestIPAddress", 2), "192.0.2.0");
    EXPECT_EQ(route("Interface", 3), "Device.IP.Interface.1.");
    EXPECT_EQ(route("DestSubnetMask", 4), "255.255.255.0");
}

}  // namespace
