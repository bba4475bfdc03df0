// The library's commands and parsers against the real tools: bridges, routes and processes of the live router root.
#include "cwmp/platform.h"
#include "router_test.h"

namespace {

class Live : public RouterTest {
  protected:
    int number(const char* handler) { return std::atoi(get(handler).value.c_str()); }
};

TEST_F(Live, ToolsTellWhatTheParsersExpect) {
    world("{network,network_sync}.wan.{wan_type,proto}=static");
    struct Row {
        std::string handler;
        Locate locate;
        const char* value;
    };
    const std::string wan = "WANDevice_WANConnectionDevice_WANIPConnection_",
                      route = "Routing_Router_IPv4Forwarding_", device = "DeviceInfo_";
    for (const Row& row :
         std::vector<Row>{{device + "UpTime", {}, "[0-9]+"},
                          {device + "ProcessStatus_CPUUsage", {}, "100|[0-9]{1,2}"},
                          {wan + "SubnetMask", {1, 2}, "255.255.255.0"},
                          {wan + "MACAddress", {1, 1}, "[0-9A-F]{2}(:[0-9A-F]{2}){5}"},
                          {"WANDevice_WANCommonInterfaceConfig_TotalBytesSent", {1}, "[0-9]+"},
                          {"NAT_InterfaceSetting_Status", {}, "Enabled"},
                          {"Routing_Router_IPv4ForwardingNumberOfEntries", {}, "4"},
                          {route + "GatewayIPAddress", {1, 1}, "192.0.2.1"},
                          {route + "Interface", {1, 1}, "Device.IP.Interface.2."},
                          {route + "DestIPAddress", {1, 2}, "192.0.2.0"},
                          {route + "Interface", {1, 3}, "Device.IP.Interface.1."},
                          {route + "DestSubnetMask", {1, 4}, "255.255.255.0"}})
        EXPECT_THAT(get(row.handler, row.locate).value, ::testing::MatchesRegex(row.value)) << row.handler;
    EXPECT_EQ(told("call getWanIfname ?5").substr(0, 6), "0 eth0");
    EXPECT_EQ(FROM_LIBRARY(getWanPort)(), 1);
    EXPECT_GT(number("DeviceInfo_MemoryStatus_Free"), 0);
    EXPECT_GT(number("DeviceInfo_MemoryStatus_Total"), number("DeviceInfo_MemoryStatus_Free"));
    EXPECT_GE(number("DeviceInfo_ProcessStatus_ProcessNumberOfEntries"), 2);
    EXPECT_THAT(console(), IsEmpty());
}

}  // namespace
