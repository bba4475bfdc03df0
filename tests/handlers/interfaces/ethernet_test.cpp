#include "cwmp/interface_stack.h"
#include "interfaces_test.h"

namespace {

#define PORT "Ethernet_Interface_"
#define VLAN "Ethernet_VLANTermination_"
#define LANPORT "LANDevice_LANEthernetInterfaceConfig_"

class Ethernet : public InterfacesTest {
  protected:
    void SetUp() override {
        InterfacesTest::SetUp();
        store("sysmode.sysmode.mode", "Router");
        profile("ethernet.names", "eth0 eth1 eth2");
        for (const char* port : {"eth0_port", "eth1_port", "eth2_port"})
            profile(std::string("ethernet.") + port, std::string(1, static_cast<char>(port[3] + 4)));
        bridge("eth0");
        file("/proc/net/dev", "eth0: 1 2 3 4 5 6 7 8 9 10 11 12\neth1: 21 22 23 24 5 6 7 8 29 30 31 32\n");
    }

    static void bridge(const std::string& member) {
        answer("brctl show br-wan", "br-wan\t8000.1\tno\t" + member + "\n");
    }
    static void link(const std::string& port, const char* status, const char* speed, const char* duplex) {
        answer("eth_link_status_get status " + port, status);
        answer("eth_link_status_get speed " + port, speed);
        answer("eth_link_status_get duplex " + port, duplex);
    }
};

TEST_F(Ethernet, TheThirdPortCarriesTheWan) {
    for (const char* port : {"eth0", "eth1", "eth2"})
        answer(std::string("ifconfig ") + port,
               std::string(port) + " Link encap:Ethernet  HWaddr " + port + "\n");
    expect_answers({{PORT "Name", {1}, "eth1"},
                    {PORT "Name", {2}, "eth2"},
                    {PORT "Name", {3}, "eth0"},
                    {PORT "Upstream", {1}, "0"},
                    {PORT "Upstream", {3}, "1"},
                    {PORT "MACAddress", {2}, "eth2"},
                    {PORT "MACAddress", {3}, "eth0"},
                    {PORT "Stats_BytesReceived", {1}, "21"},
                    {PORT "Stats_PacketsReceived", {1}, "22"},
                    {PORT "Stats_ErrorsReceived", {1}, "23"},
                    {PORT "Stats_BytesSent", {1}, "29"},
                    {PORT "Stats_PacketsSent", {1}, "30"},
                    {PORT "Stats_ErrorsSent", {1}, "31"},
                    {PORT "Stats_BytesReceived", {3}, "1"}});
    bridge("eth1");
    expect_answers({{PORT "Name", {1}, "eth0"}, {PORT "Name", {3}, "eth1"}});
    store("sysmode.sysmode.mode", "AP");
    expect_answers({{PORT "Name", {1}, "eth0"},
                    {PORT "Name", {2}, "eth1"},
                    {PORT "Upstream", {1}, "0"},
                    {PORT "Upstream", {2}, "1"}});
    bridge("");
    expect_answers({{PORT "Upstream", {1}, "0"}, {PORT "Upstream", {2}, "0"}});
}

TEST_F(Ethernet, WhatTheLinkToolTells) {
    struct Row {
        const char *told, *status, *speed_told, *speed, *duplex_told, *duplex, *lan_status, *lan_rate;
    };
    const Row rows[] = {{"UP\n", "Up", "1000Mb/s\n", "1000", "FULL\n", "Full", "Up", "1000"},
                        {"1\n", "Up", "100\n", "100", "half\n", "Half", "Up", "100"},
                        {"down\n", "Down", "unknown\n", "-1", "unknown\n", "Auto", "NoLink", "Auto"},
                        {"0\n", "Down", "\n", "-1", "fullish\n", "Auto", "NoLink", "Auto"},
                        {"upside\n", "Unknown", "-5\n", "-1", "%s%n\n", "Auto", "NoLink", "Auto"},
                        {"", "Unknown", "", "-1", "", "Auto", "NoLink", "Auto"}};
    for (const Row& row : rows) {
        link("eth1 5", row.told, row.speed_told, row.duplex_told);
        expect_answers({{PORT "Status", {1}, row.status},
                        {PORT "MaxBitRate", {1}, row.speed},
                        {PORT "DuplexMode", {1}, row.duplex},
                        {LANPORT "Status", {1, 1}, row.lan_status},
                        {LANPORT "MaxBitRate", {1, 1}, row.lan_rate},
                        {LANPORT "DuplexMode", {1, 1}, row.duplex}});
    }
    forget();
    get(PORT "MaxBitRate", {1});
    EXPECT_THAT(commands(), Contains("eth_link_status_get speed eth1 5"));
}

TEST_F(Ethernet, APortThatIsMissingIsNotAsked) {
    profile("ethernet.names", "eth0 eth1");
    expect_answers({{PORT "Status", {2}, "NotPresent"},
                    {PORT "Name", {2}, ""},
                    {PORT "Upstream", {2}, "0"},
                    {PORT "MACAddress", {2}, ""},
                    {PORT "MaxBitRate", {2}, "-1"},
                    {PORT "DuplexMode", {2}, "Auto"},
                    {PORT "Stats_BytesSent", {2}, "0"},
                    {LANPORT "Status", {1, 2}, "NoLink"},
                    {LANPORT "Name", {1, 2}, ""}});
    for (const auto& call : tool_calls()) EXPECT_EQ(call, "brctl show br-wan");
}

TEST_F(Ethernet, WithoutNamesInTheProfileEveryPortIsMissing) {
    package("profile", "", kProfile);
    for (const int port : {1, 2}) {
        expect_answers({{LANPORT "Enable", {1, port}, "1"},
                        {LANPORT "Status", {1, port}, "NoLink"},
                        {LANPORT "Name", {1, port}, ""},
                        {LANPORT "MACAddress", {1, port}, ""},
                        {LANPORT "MaxBitRate", {1, port}, "Auto"},
                        {LANPORT "DuplexMode", {1, port}, "Auto"},
                        {LANPORT "Stats_BytesSent", {1, port}, "0"}});
    }
}

TEST_F(Ethernet, TheLanPortsOfTheOtherModelAreTheFirstTwo) {
    expect_answers({{"LANDevice_LANEthernetInterfaceNumberOfEntries", {1}, "2"},
                    {LANPORT "Name", {1, 2}, "eth2"},
                    {LANPORT "Stats_BytesReceived", {1, 1}, "21"},
                    {LANPORT "Stats_PacketsReceived", {1, 1}, "22"},
                    {LANPORT "Stats_BytesSent", {1, 1}, "29"},
                    {LANPORT "Stats_PacketsSent", {1, 1}, "30"}});
    const std::pair<Locate, const char*> wrong[] = {{{1, 0}, "locate error\n"},
                                                    {{0, 1}, "locate error\n"},
                                                    {{1, 3}, "Failed, locate[0] = 3\n"},
                                                    {{2, 1}, "Failed, locate[0] = 2\n"}};
    for (const auto& [locate, event] : wrong) {
        forget();
        EXPECT_EQ(get(LANPORT "Status", locate).code, -1);
        EXPECT_THAT(console(), ElementsAre(std::string(LANPORT "Status: ") + event));
    }
    for (const int port : {0, 4, -1}) EXPECT_EQ(get(PORT "MACAddress", {port}).code, -1) << port;
}

TEST_F(Ethernet, Vlans) {
    store("network.vlan.enable", "1");
    store("iptv.Custom.internet_vid", "10");
    store("iptv_v2.info.enable", "on");
    store("iptv_v2.info.iptv_vid", "30");
    answer("ifconfig br-wan", "br-wan Link encap:Ethernet  HWaddr 02\n  UP BROADCAST  MTU:1400  Metric:1\n");
    answer("ifconfig br-lan", "br-lan Link encap:Ethernet  HWaddr 01\n  BROADCAST  MTU:1500  Metric:1\n");
    expect_answers({{VLAN "Enable", {1}, "1"},
                    {VLAN "VLANID", {1}, "10"},
                    {VLAN "Enable", {3}, "1"},
                    {VLAN "VLANID", {3}, "30"},
                    {VLAN "Status", {1}, "Up"},
                    {VLAN "Status", {3}, "Up"},
                    {"Ethernet_Link_Status", {1}, "Down"},
                    {"Ethernet_Link_Status", {2}, "Up"},
                    {"Ethernet_Link_MACAddress", {1}, "01"},
                    {"Ethernet_Link_LowerLayers", {2}, "Device.Ethernet.Interface.3."}});
    store("iptv_v2.info.enable", "0");
    EXPECT_EQ(get(VLAN "Status", {3}).value, "Down");
    for (const int unused : {2, 4}) {
        expect_answers({{VLAN "Enable", {unused}, "0"},
                        {VLAN "VLANID", {unused}, "0"},
                        {VLAN "Status", {unused}, "NotPresent"},
                        {VLAN "LowerLayers", {unused}, ""}});
        const std::string event = "Failed, locate[0] = " + std::to_string(unused) + "\n";
        expect_refused({VLAN "Enable", {unused}, "1"}, event);
        expect_refused({VLAN "VLANID", {unused}, "5"}, event);
    }
    expect_refused({VLAN "VLANID", {0}, "5"}, "locate error\n");
    // A firmware may show a VLAN that this one leaves unused: it has no device to ask.
    FROM_LIBRARY(setIntfStackFlag)(15, 1);
    forget();
    EXPECT_EQ(get(VLAN "Status", {2}).value, "Down");
    EXPECT_THAT(commands(), IsEmpty());
    FROM_LIBRARY(setIntfStackFlag)(15, 0);
}

TEST_F(Ethernet, ABadVlanIsNotStaged) {
    for (const char* value :
         {"", "0", "4095", "12a", "-2", " 5", "+5", "99999999999999999999", "%s%n", "5;id"}) {
        expect_refused({VLAN "VLANID", {1}, value}, kNotValid);
        expect_refused({VLAN "VLANID", {3}, value}, kNotValid);
    }
    expect_refused({VLAN "VLANID", {3}, "1"}, kNotValid);
    for (const char* value : {"", "yes", "2"}) {
        expect_refused({VLAN "Enable", {1}, value}, kNotValid);
        expect_refused({VLAN "Enable", {3}, value}, kNotValid);
    }
    EXPECT_STREQ(FROM_LIBRARY(vlan_obj_data).vlan_id, "");
    EXPECT_EQ(FROM_LIBRARY(iptv_obj_data).enable, CWMP_STAGED_NOT_SET);
    EXPECT_EQ(set(VLAN "Enable", {1}, "1", 7).code, 0);
    EXPECT_EQ(FROM_LIBRARY(vlan_obj_data).enable, CWMP_STAGED_NOT_SET);
}

TEST_F(Ethernet, AnAcceptedVlanReachesTheScript) {
    store("network.vlan.enable", "0");
    store("iptv.Custom.internet_vid", "10");
    Outcome outcome = transaction({{VLAN "Enable", {1}, "true"}, {VLAN "VLANID", {1}, "1"}});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.flags, CWMP_APPLY_WAN);
    EXPECT_EQ(option("network.vlan.enable"), "1");
    EXPECT_EQ(option("iptv.Custom.internet_vid"), "1");
    store("iptv_v2.info.iptv_type", "normal");
    store("iptv_v2.info.iptv_prio", "4");
    outcome = transaction({{VLAN "Enable", {3}, "TRUE"}, {VLAN "VLANID", {3}, "4094"}});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.flags, CWMP_APPLY_IPTV);
    EXPECT_EQ(option("iptv_v2.info.enable"), "1");
    EXPECT_EQ(option("iptv_v2.info.iptv_vid"), "4094");
    EXPECT_THAT(script_calls(), ElementsAre("vlan_whole", "iptv_whole"));
}

TEST_F(Ethernet, FixedValues) {
    expect_answers({{"Ethernet_InterfaceNumberOfEntries", {}, "3"},
                    {"Ethernet_LinkNumberOfEntries", {}, "2"},
                    {"Ethernet_VLANTerminationNumberOfEntries", {}, "4"},
                    {PORT "Enable", {9}, "1"},
                    {PORT "LowerLayers", {1}, ""},
                    {"Ethernet_Link_Enable", {1}, "1"}});
    EXPECT_THAT(commands(), IsEmpty());
    expect_read_only({PORT "Enable", PORT "Status", PORT "Name", PORT "MACAddress", PORT "Stats_BytesSent",
                      "Ethernet_Link_Status", VLAN "Status", VLAN "LowerLayers", LANPORT "Enable",
                      LANPORT "Status", LANPORT "MaxBitRate", LANPORT "Stats_BytesSent"});
}

}  // namespace
