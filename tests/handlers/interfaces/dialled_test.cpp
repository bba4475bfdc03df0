#include <unistd.h>

#include "interfaces_test.h"

namespace {

#define PPP "PPP_Interface_"
#define L2TP "X_QM_L2TP_Interface_"
#define PPTP "X_QM_PPTP_Interface_"

class Dialled : public InterfacesTest {
  protected:
    void SetUp() override {
        InterfacesTest::SetUp();
        for (const char* name : {"network", "network_sync", "protocol"}) package(name, "");
        wan("dhcp");
    }

    // The option's value in protocol.TYPE, network.internet and network_sync.internet, "-" for none.
    static Texts places(const std::string& type, const std::string& name) {
        Texts values;
        for (const std::string& place :
             {"protocol." + type, std::string("network.internet"), std::string("network_sync.internet")})
            values.push_back(option(place + "." + name).value_or("-"));
        return values;
    }
};

TEST_F(Dialled, AnAbsentConnectionHasNoLiveValues) {
    wan("l2tp");
    store("network.internet.username", "a tunnel's");
    store("protocol.pppoe.username", "pppoe's");
    answer("ubus call network.interface.internet status", "\t\"state\": \"connected\",\n\t\"uptime\": 77,\n");
    file("/proc/net/dev",
         "pppoe-internet: 11 12 13 14 0 0 0 0 21 22 23 24 0\nl2tp-internet: 31 32 33 34 0\n");
    answer("ifconfig l2tp-internet", "l2tp-internet Link\n  UP POINTOPOINT  MTU:1400  Metric:1\n");
    expect_answers({{PPP "Enable", {1}, "0"},
                    {PPP "Status", {1}, "NotPresent"},
                    {PPP "ConnectionStatus", {1}, "Unconfigured"},
                    {PPP "LastChange", {1}, "0"},
                    {PPP "LowerLayers", {1}, ""},
                    {PPP "IPCP_LocalIPAddress", {1}, ""},
                    {PPP "IPCP_RemoteIPAddress", {1}, ""},
                    {PPP "IPCP_DNSServers", {1}, ""},
                    {PPP "Username", {1}, "pppoe's"},
                    {PPP "Stats_BytesReceived", {1}, "0"},
                    {PPTP "Enable", {1}, "0"},
                    {PPTP "Status", {1}, "NotPresent"},
                    {PPTP "LowerLayers", {1}, ""},
                    {PPTP "Stats_BytesReceived", {1}, "0"}});
    EXPECT_THAT(commands(), IsEmpty());
    expect_answers({{L2TP "Enable", {1}, "1"},
                    {L2TP "Status", {1}, "Up"},
                    {L2TP "Name", {1}, "l2tp-internet"},
                    {L2TP "ConnectionStatus", {1}, "Connected"},
                    {L2TP "LastChange", {1}, "77"},
                    {L2TP "LowerLayers", {1}, "Device.X_QM_FakeIntf.2."},
                    {L2TP "Stats_BytesReceived", {1}, "31"},
                    {L2TP "Stats_PacketsReceived", {1}, "32"},
                    {L2TP "Stats_ErrorsReceived", {1}, "33"}});
    wan("pptp");
    expect_answers({{PPTP "Enable", {1}, "1"},
                    {PPTP "Name", {1}, "pptp-internet"},
                    {PPTP "LowerLayers", {1}, "Device.X_QM_FakeIntf.1."},
                    {L2TP "Enable", {1}, "0"}});
}

TEST_F(Dialled, ThePppoeConnection) {
    wan("pppoe");
    file("/proc/net/dev", "pppoe-internet: 11 12 13 14 0 0 0 0 21 22 23 24 0 0 0 0\n");
    file("/tmp/resolv.conf", "nameserver 192.0.2.1\n");
    store("protocol.pppoe.username", "me");
    store("network.internet.mru", "1480");
    answer("ubus call network.interface.internet status",
           "\t\"state\": \"connecting\",\n\t\"address\": \"192.0.2.9\",\n\t\"nexthop\": \"0.0.0.0\",\n");
    expect_answers({{PPP "Enable", {1}, "1"},
                    {PPP "Alias", {1}, "cpe-1"},
                    {PPP "Name", {1}, "pppoe-internet"},
                    {PPP "LowerLayers", {1}, "Device.Ethernet.VLANTermination.1."},
                    {PPP "ConnectionStatus", {1}, "Connecting"},
                    {PPP "Username", {1}, "me"},
                    {PPP "CurrentMRUSize", {1}, "1480"},
                    {PPP "IPCP_DNSServers", {1}, "192.0.2.1"},
                    {PPP "Stats_BytesReceived", {1}, "11"},
                    {PPP "Stats_PacketsReceived", {1}, "12"},
                    {PPP "Stats_ErrorsReceived", {1}, "13"},
                    {PPP "Stats_DiscardPacketsReceived", {1}, "14"},
                    {PPP "Stats_BytesSent", {1}, "21"},
                    {PPP "Stats_PacketsSent", {1}, "22"},
                    {PPP "Stats_ErrorsSent", {1}, "23"},
                    {PPP "Stats_DiscardPacketsSent", {1}, "24"}});
    package("check", "", kScratch);
    expect_answers({{PPP "IPCP_LocalIPAddress", {1}, "192.0.2.9"}, {PPP "IPCP_RemoteIPAddress", {1}, ""}});
}

TEST_F(Dialled, AnAccountNeedsItsUserNameBesideIt) {
    store("network.internet.password", "old");
    const Outcome outcome = transaction(
        {{PPP "Enable", {1}, "true"}, {PPP "Username", {1}, "me"}, {PPP "Password", {1}, "secret"}});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.flags, CWMP_APPLY_WAN);
    EXPECT_THAT(script_calls(), ElementsAre("pppoe_whole"));
    EXPECT_EQ(option("network.wan.wan_type"), "pppoe");
    EXPECT_THAT(places("pppoe", "username"), ElementsAre("me", "me", "me"));
    forget();
    EXPECT_EQ(transaction({{PPP "Enable", {1}, "1"}}).code, -1);
    EXPECT_EQ(transaction({{PPP "Password", {1}, "new"}}).code, -1);
    EXPECT_EQ(transaction({{PPP "IPCP_DNSServers", {1}, "192.0.2.1"}}).flags, 0U);
    EXPECT_THAT(script_calls(), IsEmpty());
    EXPECT_THAT(places("pppoe", "password"), ElementsAre("secret", "secret", "secret"));
}

TEST_F(Dialled, ARefusalDoesNotUndoTheTransactionBefore) {
    const std::vector<Change> refused[] = {{{PPP "Username", {1}, "a\nb"}},
                                           {{PPP "Enable", {2}, "1"}},
                                           {{"IP_Interface_IPv4Address_IPAddress", {3, 1}, "192.0.2.1"}},
                                           {{"DHCPv4_Client_Enable", {2}, "1"}}};
    for (const auto& changes : refused) {
        SCOPED_TRACE(changes.front().handler);
        wan("dhcp");
        store("network.internet.username", "old");
        ASSERT_EQ(transaction(
                      {{PPP "Enable", {1}, "1"}, {PPP "Username", {1}, "new"}, {PPP "Password", {1}, "new"}})
                      .code,
                  0);
        EXPECT_EQ(transaction(changes).code, -1);
        EXPECT_EQ(option("network.internet.username"), "new");
        EXPECT_EQ(option("network.wan.wan_type"), "pppoe");
    }
}

TEST_F(Dialled, WhatTheAccountTakes) {
    const std::string longest(254, 'u');
    EXPECT_EQ(set(PPP "Username", {1}, longest, CWMP_OP_STAGE).code, 0);
    EXPECT_EQ(FROM_LIBRARY(pppoe_obj_data).username, longest);
    EXPECT_EQ(set(PPP "Password", {1}, "pass \xc3\xa9", CWMP_OP_STAGE).code, 0);
    EXPECT_STREQ(FROM_LIBRARY(pppoe_obj_data).password, "pass \xc3\xa9");
    EXPECT_EQ(set(PPP "IPCP_DNSServers", {1}, "8.8.8.8", CWMP_OP_STAGE).code, 0);
    EXPECT_EQ(set(PPP "IPCP_DNSServers", {1}, "", CWMP_OP_STAGE).code, 0);
    EXPECT_STREQ(FROM_LIBRARY(pppoe_obj_data).dns_servers, "");
    for (const char* name :
         {PPP "Username", PPP "Password", L2TP "Username", L2TP "Password", PPTP "Password"}) {
        for (const std::string& value : {longest + "u", std::string("a\nb"), std::string("\x7f")})
            expect_refused({name, {1}, value}, kNotValid);
    }
    expect_refused({PPP "IPCP_DNSServers", {1}, "8.8.8.8,8.8.4.4"}, kNotValid);
    expect_refused({PPP "Enable", {1}, "on"}, kNotValid);
    expect_refused({PPP "Enable", {2}, "1"}, "Failed, locate[0] = 2\n");
    expect_refused({PPP "PPPoE_ACName", {2}, "x"}, "Failed, locate[0] = 2\n");
    EXPECT_EQ(FROM_LIBRARY(pppoe_obj_data).username, longest);
}

TEST_F(Dialled, AccessConcentratorAndService) {
    for (const auto& [name, option_name] :
         {std::pair(PPP "PPPoE_ACName", "ac"), {PPP "PPPoE_ServiceName", "service"}}) {
        const Result result = set(name, {1}, "isp 1");
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.flags, CWMP_APPLY_WAN);
        EXPECT_THAT(places("pppoe", option_name), ElementsAre("isp 1", "isp 1", "isp 1"));
        for (const std::string& value :
             {std::string("a$(x)"), std::string("-x"), std::string("a;b"), std::string("`id`"),
              std::string("a\"b"), std::string("a'b"), std::string("a\\b"), std::string("a|b"),
              std::string("a&b"), std::string("<a"), std::string("a>b"), std::string("\xc3\xa9"),
              std::string("a\nb"), std::string(65, 'a')})
            expect_refused({name, {1}, value}, kNotValid);
        store(std::string("network.internet.") + option_name, "a tunnel's");
        EXPECT_EQ(get(name, {1}).value, "isp 1");
        EXPECT_EQ(set(name, {1}, std::string(64, 'a')).code, 0);
        EXPECT_EQ(set(name, {1}, "").code, 0);
        EXPECT_EQ(get(name, {1}).value, "");
    }
}

TEST_F(Dialled, ATunnelsAccountLeavesAnotherConnectionAlone) {
    struct Row {
        const char *name, *type, *option;
    };
    const Row rows[] = {{L2TP "Username", "l2tp", "username"},    {L2TP "Password", "l2tp", "password"},
                        {L2TP "ServerAddress", "l2tp", "server"}, {PPTP "Username", "pptp", "username"},
                        {PPTP "Password", "pptp", "password"},    {PPTP "ServerAddress", "pptp", "server"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        store(std::string("network.internet.") + row.option, "pppoe's");
        store(std::string("network_sync.internet.") + row.option, "pppoe's");
        wan("pppoe");
        EXPECT_EQ(set(row.name, {1}, "vpn.example.net").flags, CWMP_APPLY_WAN);
        EXPECT_THAT(places(row.type, row.option), ElementsAre("vpn.example.net", "pppoe's", "pppoe's"));
        wan(row.type);
        EXPECT_EQ(set(row.name, {1}, "192.0.2.1").flags, CWMP_APPLY_WAN);
        EXPECT_THAT(places(row.type, row.option), ElementsAre("192.0.2.1", "192.0.2.1", "192.0.2.1"));
        const bool secret = std::string(row.option) == "password";
        EXPECT_EQ(get(row.name, {1}).value, secret ? "" : "192.0.2.1");
        ::unlink("/etc/config/network");
        forget();
        const Result failed = set(row.name, {1}, "other.example");
        EXPECT_EQ(failed.code, -1);
        EXPECT_EQ(failed.flags, 0U);
        EXPECT_THAT(console(), Contains(std::string(row.name) + ": UCI set params error\n"));
        package("network", "");
    }
}

TEST_F(Dialled, ServerAddresses) {
    for (const char* name : {L2TP "ServerAddress", PPTP "ServerAddress"}) {
        EXPECT_EQ(set(name, {1}, std::string(253, 'a')).code, 0);
        for (const std::string& value :
             {std::string(), std::string("-x"), std::string("a b"), std::string("a;b"), std::string("a_b"),
              std::string("\xc3\xa9"), std::string(254, 'a')})
            expect_refused({name, {1}, value}, kNotValid);
    }
}

TEST_F(Dialled, FixedValues) {
    expect_answers({{"PPP_InterfaceNumberOfEntries", {}, "1"},
                    {"X_QM_L2TP_InterfaceNumberOfEntries", {}, "1"},
                    {"X_QM_PPTP_InterfaceNumberOfEntries", {}, "1"},
                    {PPP "Password", {5}, ""},
                    {L2TP "Password", {5}, ""},
                    {PPP "ConnectionTrigger", {1}, "AlwaysOn"},
                    {PPP "IPv6CPEnable", {1}, "0"}});
    expect_read_only({PPP "Status", PPP "LastChange", PPP "ConnectionStatus", PPP "CurrentMRUSize",
                      PPP "IPCP_LocalIPAddress", PPP "IPCP_RemoteIPAddress", PPP "Stats_BytesSent",
                      L2TP "Enable", L2TP "ConnectionStatus", PPTP "Enable", PPTP "Stats_ErrorsSent"});
}

}  // namespace
