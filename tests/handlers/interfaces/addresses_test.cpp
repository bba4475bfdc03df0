#include "interfaces_test.h"

namespace {

#define IP "IP_Interface_"
#define ADDRESS "IP_Interface_IPv4Address_"
#define CLIENT "DHCPv4_Client_"
#define LEARNED "DNS_Client_Server_"
#define FORWARDING "DNS_Relay_Forwarding_"

class Addresses : public InterfacesTest {
  protected:
    void SetUp() override {
        InterfacesTest::SetUp();
        wan("dhcp");
        up("wan", "192.0.2.10", "192.0.2.1");
        up("mg", "198.51.100.10", "198.51.100.1");
        answer("ifconfig br-wan",
               "br-wan Link\n  inet addr:1  Bcast:2  Mask:255.255.255.0\n  UP  MTU:1400  M:1\n");
        file("/tmp/resolv.conf", "nameserver 192.0.2.53\n");
        package("protocol", "");
        store("smartip_sync.settings.lanip", "192.168.0.1");
        store("smartip_sync.settings.mask", "255.255.255.0");
    }

    static void up(const std::string& name, const std::string& address, const std::string& gateway) {
        answer("ubus call network.interface." + name + " status",
               "\t\"up\": true,\n\t\"uptime\": 99,\n\t\"address\": \"" + address + "\",\n\t\"nexthop\": \"" +
                   gateway + "\",\n");
    }
    static void down(const std::string& name) {
        answer("ubus call network.interface." + name + " status", "\t\"up\": false\n");
    }
};

TEST_F(Addresses, ThePlainWanAndTheLan) {
    answer("ifconfig br-lan", "br-lan Link\n  UP\n");
    file("/proc/net/dev", "br-lan: 1 2 3 4 0 0 0 0 9 10 11 12 0\nbr-mg: 5 0 0 0 0 0 0 0 0 0 0 0 0\n");
    expect_answers({{IP "Enable", {1}, "1"},
                    {IP "IPv4Enable", {2}, "1"},
                    {IP "Status", {2}, "Up"},
                    {IP "Name", {2}, "br-wan"},
                    {IP "Alias", {8}, "cpe-8"},
                    {IP "LastChange", {2}, "99"},
                    {IP "LastChange", {1}, "0"},
                    {IP "MaxMTUSize", {2}, "1400"},
                    {IP "MaxMTUSize", {1}, "1500"},
                    {IP "LowerLayers", {1}, "Device.Ethernet.Link.1."},
                    {IP "LowerLayers", {8}, ""},
                    {ADDRESS "Status", {2, 1}, "Enabled"},
                    {ADDRESS "IPAddress", {1, 1}, "192.168.0.1"},
                    {ADDRESS "SubnetMask", {1, 1}, "255.255.255.0"},
                    {ADDRESS "IPAddress", {2, 1}, "192.0.2.10"},
                    {ADDRESS "SubnetMask", {2, 1}, "255.255.255.0"},
                    {ADDRESS "IPAddress", {8, 1}, "198.51.100.10"},
                    {ADDRESS "SubnetMask", {8, 1}, ""},
                    {ADDRESS "AddressingType", {1, 1}, "Static"},
                    {ADDRESS "AddressingType", {2, 1}, "DHCP"},
                    {ADDRESS "AddressingType", {6, 1}, "IPCP"},
                    {ADDRESS "AddressingType", {8, 1}, "DHCP"},
                    {IP "Stats_BytesReceived", {1}, "1"},
                    {IP "Stats_PacketsReceived", {1}, "2"},
                    {IP "Stats_ErrorsReceived", {1}, "3"},
                    {IP "Stats_DiscardPacketsReceived", {1}, "4"},
                    {IP "Stats_BytesSent", {1}, "9"},
                    {IP "Stats_PacketsSent", {1}, "10"},
                    {IP "Stats_ErrorsSent", {1}, "11"},
                    {IP "Stats_DiscardPacketsSent", {1}, "12"},
                    {IP "Stats_BytesReceived", {8}, "5"}});
    down("mg");
    expect_answers(
        {{IP "Enable", {8}, "0"}, {IP "Status", {8}, "NotPresent"}, {ADDRESS "IPAddress", {8, 1}, ""}});
}

TEST_F(Addresses, TheWanTypeSaysWhichAreThere) {
    const std::pair<const char*, std::vector<int>> rows[] = {
        {"dhcp", {1, 2}}, {"static", {1, 2}}, {"pppoe", {1, 5}}, {"pptp", {1, 3, 6}}, {"l2tp", {1, 4, 7}}};
    for (const auto& [type, shown] : rows) {
        wan(type);
        forget();
        for (int number = 1; number <= 7; ++number) {
            const bool expected = std::count(shown.begin(), shown.end(), number) != 0;
            EXPECT_EQ(get(IP "Enable", {number}).value, expected ? "1" : "0") << type << number;
            EXPECT_EQ(get(ADDRESS "Enable", {number, 1}).value, expected ? "1" : "0") << type << number;
            if (expected) continue;
            expect_answers({{IP "Status", {number}, "NotPresent"},
                            {IP "LastChange", {number}, "0"},
                            {IP "MaxMTUSize", {number}, "1500"},
                            {IP "LowerLayers", {number}, ""},
                            {ADDRESS "Status", {number, 1}, "Disabled"},
                            {ADDRESS "IPAddress", {number, 1}, ""},
                            {ADDRESS "SubnetMask", {number, 1}, ""},
                            {IP "Stats_BytesSent", {number}, "0"}});
        }
        EXPECT_THAT(commands(), IsEmpty()) << type;
    }
}

TEST_F(Addresses, WithoutAWanTypeThePlainWanIsThere) {
    package("network", "");
    expect_answers({{IP "Enable", {1}, "1"}, {IP "Enable", {2}, "1"}, {IP "Enable", {5}, "0"}});
}

TEST_F(Addresses, DialledConnections) {
    package("check", "config check 'pppoe'\n\toption ip '203.0.113.5'\n", kScratch);
    answer("check_params pppoe_infoUpdate", "");
    up("internet", "203.0.113.7", "203.0.113.1");
    for (const char* device : {"pppoe-internet", "pptp-internet", "l2tp-internet"})
        answer(std::string("ifconfig ") + device,
               "x Link\n  inet addr:1  P-t-P:2  Mask:255.255.255.255\n  UP  MTU:1\n");
    file("/proc/net/dev", "pppoe-internet: 11 12 13\nl2tp-internet: 31 32 33\n");
    wan("pppoe");
    expect_answers({{ADDRESS "IPAddress", {5, 1}, "203.0.113.5"},
                    {ADDRESS "SubnetMask", {5, 1}, "255.255.255.255"},
                    {IP "Stats_PacketsReceived", {5}, "12"}});
    wan("l2tp");
    store("protocol.l2tp.snd_conn", "dynamic");
    expect_answers({{ADDRESS "IPAddress", {7, 1}, "203.0.113.7"},
                    {ADDRESS "SubnetMask", {7, 1}, "255.255.255.255"},
                    {ADDRESS "IPAddress", {4, 1}, "192.0.2.10"},
                    {ADDRESS "AddressingType", {4, 1}, "DHCP"},
                    {IP "Stats_PacketsReceived", {7}, "32"}});
    up("internet", "0.0.0.0", "");
    EXPECT_EQ(get(ADDRESS "IPAddress", {7, 1}).value, "");
}

TEST_F(Addresses, WrongNumbers) {
    const std::tuple<const char*, Locate, const char*> rows[] = {
        {IP "Status", {0}, "locate error\n"},
        {IP "Status", {9}, "Failed, locate[0] = 9\n"},
        {IP "Stats_BytesSent", {-1}, "Failed, locate[0] = -1\n"},
        {ADDRESS "IPAddress", {1, 2}, "locate error\n"},
        {ADDRESS "Enable", {1, 0}, "locate error\n"},
        {CLIENT "Status", {3}, "Failed, locate[0] = 3\n"},
        {CLIENT "DNSServers", {0}, "locate error\n"},
        {LEARNED "DNSServer", {0}, "locate error\n"},
        {LEARNED "Type", {3}, "Failed, locate[0] = 3\n"},
        {FORWARDING "DNSServer", {3}, "Failed, locate[0] = 3\n"}};
    for (const auto& [name, locate, event] : rows) {
        forget();
        EXPECT_EQ(get(name, locate).code, -1) << name;
        EXPECT_THAT(console(), ElementsAre(std::string(name) + ": " + event));
        EXPECT_THAT(commands(), IsEmpty());
    }
    expect_refused({ADDRESS "IPAddress", {1, 2}, "192.0.2.1"}, "locate error\n");
    for (int number = 3; number <= 8; ++number) {
        const std::string event = "Failed, locate[0] = " + std::to_string(number) + "\n";
        for (const char* name : {ADDRESS "IPAddress", ADDRESS "SubnetMask"})
            expect_refused({name, {number, 1}, "192.0.2.1"}, event);
    }
    expect_refused({ADDRESS "AddressingType", {1, 1}, "DHCP"}, "Failed, locate[0] = 1\n");
}

TEST_F(Addresses, AddressAndMaskGoTogether) {
    Outcome outcome = transaction(
        {{ADDRESS "IPAddress", {1, 1}, "10.0.0.1"}, {ADDRESS "SubnetMask", {1, 1}, "255.255.0.0"}});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.flags, CWMP_APPLY_LAN);
    EXPECT_THAT(script_calls(), ElementsAre("lan_check", "lan_whole"));
    EXPECT_EQ(option("smartip_sync.settings.lanip"), "10.0.0.1");
    EXPECT_EQ(option("smartip_sync.settings.mask"), "255.255.0.0");
    outcome = transaction(
        {{ADDRESS "IPAddress", {1, 1}, "10.0.0.2"}, {ADDRESS "SubnetMask", {1, 1}, "255.0.255.0"}});
    EXPECT_EQ(outcome.code, -1);
    EXPECT_EQ(outcome.flags, 0U);
    EXPECT_EQ(option("smartip_sync.settings.lanip"), "10.0.0.1");
    for (const char* value : {"", "192.168.01.1", "1.2.3.4;x", "1.2.3", "%s%n"}) {
        for (const int number : {1, 2}) {
            expect_refused({ADDRESS "IPAddress", {number, 1}, value}, kNotValid);
            expect_refused({ADDRESS "SubnetMask", {number, 1}, value}, kNotValid);
        }
    }
}

TEST_F(Addresses, AStaticWanAddressNeedsItsType) {
    store("protocol.static.gateway", "192.0.2.1");
    store("protocol.static.netmask", "255.255.255.0");
    EXPECT_EQ(transaction({{ADDRESS "IPAddress", {2, 1}, "192.0.2.99"}}).code, -1);
    forget();
    const Outcome outcome = transaction({{ADDRESS "IPAddress", {2, 1}, "192.0.2.99"},
                                         {ADDRESS "SubnetMask", {2, 1}, "255.255.255.0"},
                                         {ADDRESS "AddressingType", {2, 1}, "Static"}});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.flags, CWMP_APPLY_WAN);
    EXPECT_THAT(script_calls(), ElementsAre("wan_check", "wan_whole"));
    EXPECT_EQ(option("network.wan.wan_type"), "static");
    EXPECT_EQ(option("network.wan.ipaddr"), "192.0.2.99");
    for (const char* value : {"dhcp", "", "Static "})
        expect_refused({ADDRESS "AddressingType", {2, 1}, value}, kNotValid);
}

TEST_F(Addresses, TheDhcpClient) {
    file("/tmp/resolv.conf", "nameserver 8.8.8.8\n");
    expect_answers({{CLIENT "Enable", {1}, "1"},
                    {CLIENT "Alias", {2}, "cpe-2"},
                    {CLIENT "Status", {1}, "Enabled"},
                    {CLIENT "DHCPStatus", {1}, "Bound"},
                    {CLIENT "Interface", {1}, "Device.IP.Interface.2."},
                    {CLIENT "Interface", {2}, "Device.IP.Interface.8."},
                    {CLIENT "IPAddress", {1}, "192.0.2.10"},
                    {CLIENT "IPAddress", {2}, "198.51.100.10"},
                    {CLIENT "SubnetMask", {1}, "255.255.255.0"},
                    {CLIENT "IPRouters", {1}, "192.0.2.1"},
                    {CLIENT "DNSServers", {1}, "8.8.8.8"}});
    down("wan");
    expect_answers({{CLIENT "DHCPStatus", {1}, "Selecting"},
                    {CLIENT "IPAddress", {1}, ""},
                    {CLIENT "DNSServers", {1}, ""},
                    {CLIENT "DHCPStatus", {2}, "Bound"}});
    for (const char* type : {"static", ""}) {
        if (*type == '\0')
            package("network", "");
        else
            wan(type);
        expect_answers({{CLIENT "Enable", {1}, "0"},
                        {CLIENT "Status", {1}, "Disabled"},
                        {CLIENT "DHCPStatus", {1}, "Init"},
                        {CLIENT "IPAddress", {1}, ""},
                        {CLIENT "DNSServers", {1}, ""},
                        {CLIENT "Enable", {2}, "1"}});
    }
    forget();
    get(CLIENT "Enable", {1});
    EXPECT_THAT(console(), Contains("getclientstatus: Failed to get wan_type\n"));
}

// A SET, even of what GET shows, would bring up a plain WAN in place of the line in force.
TEST_F(Addresses, UnderADialledConnectionThePlainWanTakesNoSet) {
    for (const auto& [type, interface] : {std::pair("l2tp", "Device.IP.Interface.4."),
                                          {"pptp", "Device.IP.Interface.3."},
                                          {"pppoe", "Device.IP.Interface.2."}}) {
        wan(type);
        store(std::string("protocol.") + type + ".snd_conn", "dynamic");
        expect_answers({{CLIENT "Enable", {1}, "1"}, {CLIENT "Interface", {1}, interface}});
        expect_refused({CLIENT "Enable", {1}, "1"}, "Failed, locate[0] = 1\n");
        for (const auto& [name, value] : {std::pair(ADDRESS "AddressingType", "DHCP"),
                                          {ADDRESS "IPAddress", "192.0.2.10"},
                                          {ADDRESS "SubnetMask", "255.255.255.0"}})
            expect_refused({name, {2, 1}, value}, "Failed, locate[0] = 2\n");
    }
    expect_refused({CLIENT "Enable", {2}, "1"}, "Failed, locate[0] = 2\n");
    wan("dhcp");
    for (const char* value : {"", "yes", "DHCP"}) expect_refused({CLIENT "Enable", {1}, value}, kNotValid);
}

TEST_F(Addresses, TheClientsSwitchIsTheTypeOfTheWan) {
    store("protocol.static.gateway", "192.0.2.1");
    EXPECT_EQ(transaction({{CLIENT "Enable", {1}, "TRUE"}}).flags, CWMP_APPLY_WAN);
    EXPECT_THAT(script_calls(), ElementsAre("wan_whole"));
    forget();
    const Outcome outcome = transaction({{CLIENT "Enable", {1}, "0"},
                                         {ADDRESS "IPAddress", {2, 1}, "192.0.2.99"},
                                         {ADDRESS "SubnetMask", {2, 1}, "255.255.255.0"}});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.flags, CWMP_APPLY_WAN);
    EXPECT_THAT(script_calls(), ElementsAre("wan_check", "wan_whole"));
    EXPECT_EQ(option("network_sync.wan.wan_type"), "static");
}

TEST_F(Addresses, LearnedAndFixedNameServers) {
    expect_answers({{LEARNED "DNSServer", {1}, "192.0.2.53"},
                    {LEARNED "DNSServer", {2}, ""},
                    {LEARNED "Type", {1}, "DHCPv4"},
                    {FORWARDING "DNSServer", {1}, "192.0.2.53"},
                    {FORWARDING "Type", {1}, "DHCPv4"},
                    {FORWARDING "Interface", {1}, "Device.IP.Interface.2."}});
    expect_refused({FORWARDING "DNSServer", {1}, "8.8.8.8"}, "Failed, locate[0] = 1\n");
    wan("static");
    store("protocol.static.pri_dns", "192.0.2.7");
    expect_answers({{LEARNED "DNSServer", {1}, "192.0.2.7"},
                    {LEARNED "DNSServer", {2}, ""},
                    {LEARNED "Type", {2}, "Static"},
                    {FORWARDING "DNSServer", {1}, "192.0.2.7"},
                    {FORWARDING "Type", {1}, "Static"},
                    {FORWARDING "Type", {2}, "Static"}});
    wan("pppoe");
    EXPECT_EQ(set(FORWARDING "DNSServer", {2}, "8.8.4.4").flags, CWMP_APPLY_WAN);
    EXPECT_EQ(option("protocol.pppoe.snd_dns"), "8.8.4.4");
    expect_answers({{FORWARDING "DNSServer", {1}, "192.0.2.53"},
                    {FORWARDING "DNSServer", {2}, "8.8.4.4"},
                    {FORWARDING "Type", {1}, "IPCP"},
                    {FORWARDING "Type", {2}, "Static"},
                    {LEARNED "DNSServer", {2}, ""},
                    {LEARNED "Type", {2}, "IPCP"}});
    for (const char* value : {"127.0.0.1", "224.0.0.1", "08.8.8.8", "a", "8.8.8.8,8.8.4.4", "8.8.8.8 "})
        expect_refused({FORWARDING "DNSServer", {2}, value}, kNotValid);
    EXPECT_EQ(set(FORWARDING "DNSServer", {2}, "").code, 0);
    EXPECT_EQ(option("protocol.pppoe.snd_dns"), "0.0.0.0");
    EXPECT_EQ(get(FORWARDING "Type", {2}).value, "IPCP");
    wan("wondrous");
    down("wan");
    expect_answers({{LEARNED "DNSServer", {1}, ""},
                    {LEARNED "Type", {1}, "DHCPv4"},
                    {FORWARDING "DNSServer", {1}, ""},
                    {FORWARDING "Interface", {1}, ""}});
    wan("static");
    package("protocol", "");
    up("wan", "192.0.2.10", "192.0.2.1");
    EXPECT_EQ(get(LEARNED "DNSServer", {1}).value, "");
}

TEST_F(Addresses, FixedValues) {
    expect_answers({{"IP_InterfaceNumberOfEntries", {}, "8"},
                    {IP "IPv4AddressNumberOfEntries", {1}, "1"},
                    {IP "IPv6Enable", {1}, "0"},
                    {IP "Router", {1}, "Device.Routing.Router.1."},
                    {IP "Type", {1}, "Normal"},
                    {IP "Loopback", {1}, "0"},
                    {"DHCPv4_ClientNumberOfEntries", {}, "2"},
                    {CLIENT "PassthroughEnable", {1}, "0"},
                    {"DNS_Client_Enable", {}, "1"},
                    {"DNS_Client_ServerNumberOfEntries", {}, "2"},
                    {"DNS_Relay_Enable", {}, "1"},
                    {"DNS_Relay_ForwardNumberOfEntries", {}, "2"}});
    expect_read_only({IP "Enable", IP "Status", IP "LowerLayers", IP "Stats_BytesSent", ADDRESS "Enable",
                      ADDRESS "Status", CLIENT "Status", CLIENT "IPAddress", LEARNED "DNSServer",
                      LEARNED "Type", FORWARDING "Interface", FORWARDING "Type"});
}

}  // namespace
