// The library's commands and parsers against the real tools: bridges, routes and processes of the live router root.
#include "router_test.h"

namespace {

class Live : public RouterTest {
  protected:
    int number(const char* handler) { return std::stoi(get(handler).value); }
};

TEST_F(Live, ToolsTellWhatTheParsersExpect) {
    world("{network,network_sync}.wan.{wan_type,proto}=static");
    world("mute $");
    for (const auto& [row, value] :
         {std::pair{"get DeviceInfo_UpTime", "[0-9]+"},
          {"get DeviceInfo_ProcessStatus_CPUUsage", "100|[0-9]{1,2}"},
          {"get WANDevice_WANConnectionDevice_WANIPConnection_SubnetMask 1.2", "255.255.255.0"},
          {"get WANDevice_WANConnectionDevice_WANIPConnection_MACAddress 1.1", "[0-9A-F]{2}(:[0-9A-F]{2}){5}"},
          {"get WANDevice_WANCommonInterfaceConfig_TotalBytesSent 1", "[0-9]+"},
          {"get NAT_InterfaceSetting_Status", "Enabled"},
          {"get Routing_Router_IPv4ForwardingNumberOfEntries", "4"},
          {"get Routing_Router_IPv4Forwarding_GatewayIPAddress 1.1", "192.0.2.1"},
          {"get Routing_Router_IPv4Forwarding_Interface 1.{1,3}", "Device.IP.Interface.2. / Device.IP.Interface.1."},
          {"get Routing_Router_IPv4Forwarding_DestIPAddress 1.2", "192.0.2.0"},
          {"get Routing_Router_IPv4Forwarding_DestSubnetMask 1.4", "255.255.255.0"},
          {"call getWanIfname ?5", "0 eth0"},
          {"call getWanPort", "1"}})
        EXPECT_THAT(told(row), ::testing::MatchesRegex(value)) << row;
    EXPECT_GT(number("DeviceInfo_MemoryStatus_Free"), 0);
    EXPECT_GT(number("DeviceInfo_MemoryStatus_Total"), number("DeviceInfo_MemoryStatus_Free"));
    EXPECT_GE(number("DeviceInfo_ProcessStatus_ProcessNumberOfEntries"), 2);
    EXPECT_THAT(console(), IsEmpty());
}

}  // namespace
