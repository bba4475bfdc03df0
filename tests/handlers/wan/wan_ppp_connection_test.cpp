#include <unistd.h>

#include "cwmp/apply_flags.h"
#include "cwmp/staged_objects.h"
#include "cwmp/wan.h"
#include "router_test.h"

namespace {

#define PPPC "WANDevice_WANConnectionDevice_WANPPPConnection_"
#define LINK "WANDevice_WANConnectionDevice_WANEthernetLinkConfig_"

class WanPppConnection : public RouterTest {};

TEST_F(WanPppConnection, AccountIsWrittenToThreePlaces) {
    package("network", "config interface 'internet'\n\toption mru '1480'\n");
    package("network_sync", "");
    package("protocol", "");
    for (const auto& [name, option_name] :
         {std::pair(PPPC "Username", "username"), {PPPC "Password", "password"}}) {
        const Result result = set(name, {}, "line $(id)");
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.flags, CWMP_APPLY_WAN);
        for (const char* place : {"network.internet.", "network_sync.internet.", "protocol.pppoe."})
            EXPECT_EQ(option(std::string(place) + option_name), "line $(id)") << place;
    }
    store("network_sync.internet.username", "another");
    expect_answers({{PPPC "Username", {}, "line $(id)"},
                    {PPPC "Password", {}, ""},
                    {PPPC "CurrentMRUSize", {}, "1480"}});
}

TEST_F(WanPppConnection, AnAccountThatCannotBeWrittenRaisesNothing) {
    for (const char* missing : {"network", "network_sync", "protocol"}) {
        for (const char* name : {"network", "network_sync", "protocol"}) package(name, "");
        ::unlink((std::string(kLive) + "/" + missing).c_str());
        for (const char* name : {PPPC "Username", PPPC "Password"}) {
            const Result result = set(name, {}, "x");
            EXPECT_EQ(result.code, -1) << name << missing;
            EXPECT_EQ(result.flags, 0U);
        }
    }
}

TEST_F(WanPppConnection, EnableAndTransportFollowTheWanType) {
    struct Row {
        const char* type;
        const char* proto;
        const char* enable;
        const char* transport;
    };
    const Row rows[] = {{"pppoe", "pppoe", "1", "PPPoE"}, {"l2tp", "l2tp", "0", "L2TP"},
                        {"pptp", "pptp", "0", "PPTP"},    {"pppoa", "pppoa", "0", "PPPoA"},
                        {"pppoe", "l2tp", "1", "L2TP"},   {"pppoe", "dhcp", "1", ""},
                        {"dhcp", "pppoe", "0", ""},       {"static", "pppoe", "0", ""}};
    for (const Row& row : rows) {
        store("network_sync.wan.wan_type", row.type);
        store("network_sync.internet.proto", row.proto);
        expect_answers({{PPPC "Enable", {}, row.enable}, {PPPC "TransportType", {}, row.transport}});
    }
    package("network_sync", "config interface 'wan'\n");
    forget();
    EXPECT_EQ(get(PPPC "Enable").code, -1);
    EXPECT_THAT(console(), ElementsAre(PPPC "Enable:  get pppoe enable error\n\n"));
    EXPECT_EQ(get(PPPC "TransportType").value, "");
}

TEST_F(WanPppConnection, NameServersOfAPppoeWanOnly) {
    file("/tmp/resolv.conf", "nameserver 192.0.2.1\n");
    EXPECT_EQ(get(PPPC "DNSServers").value, "");
    store("network_sync.wan.wan_type", "dhcp");
    EXPECT_EQ(get(PPPC "DNSServers").value, "");
    store("network_sync.wan.wan_type", "pppoe");
    EXPECT_EQ(get(PPPC "DNSServers").value, "192.0.2.1,0.0.0.0");
    file("/tmp/resolv.conf", "");
    EXPECT_EQ(get(PPPC "DNSServers").value, "0.0.0.0,0.0.0.0");
}

TEST_F(WanPppConnection, LiveState) {
    const std::pair<const char*, const char*> uptimes[] = {
        {"\t\"uptime\": 183702,\n", "183702"}, {"\t\"uptime\": x,\n", ""}, {"", ""}};
    for (const auto& [text, value] : uptimes) {
        answer("ubus call network.interface.internet status", text);
        EXPECT_EQ(get(PPPC "Uptime").value, value);
    }
    answer("ubus call network.interface.internet status", "\t\"state\": \"connecting\",\n");
    forget();
    expect_answers({{PPPC "ConnectionStatus", {}, "Connecting"}, {PPPC "Uptime", {}, ""}});
    EXPECT_THAT(
        commands(),
        ElementsAre(
            R"(ubus call network.interface.internet status | grep "state" | awk -F ':' '{print $2}' )",
            "ubus call network.interface.internet status | grep uptime | awk -F ':' '{print $2}' "));
}

TEST_F(WanPppConnection, TheScriptTellsTheAddresses) {
    package("check", "config check 'pppoe'\n\toption ip '192.0.2.9'\n\toption gateway '192.0.2.1'\n",
            kScratch);
    file("/usr/bin/tr069/check_params", "");
    expect_answers({{PPPC "ExternalIPAddress", {}, "192.0.2.9"},
                    {PPPC "DefaultGateway", {}, "192.0.2.1"},
                    {PPPC "MACAddress", {}, ""}});
    const std::string update = "lua /usr/bin/tr069/check_params pppoe_infoUpdate ";
    EXPECT_THAT(commands(), ElementsAre(update, update, update));
}

TEST_F(WanPppConnection, CountersOfTheDialledInterface) {
    file("/proc/net/dev", "pppoe-internet: 11 12 13 14 0 0 0 0 21 22 23 24 0 0 0 0\n br-mg: 31 32 33 34 0\n");
    expect_answers({{PPPC "Stats_EthernetBytesReceived", {1, 1}, "11"},
                    {PPPC "Stats_EthernetPacketsReceived", {1, 1}, "12"},
                    {PPPC "Stats_EthernetErrorsReceived", {1, 1}, "13"},
                    {PPPC "Stats_EthernetBytesSent", {1, 1}, "21"},
                    {PPPC "Stats_EthernetPacketsSent", {1, 1}, "22"},
                    {PPPC "Stats_EthernetErrorsSent", {1, 1}, "23"},
                    {PPPC "Stats_EthernetBytesReceived", {1, 2}, "31"}});
}

TEST_F(WanPppConnection, GroupedFieldsGoToTheirGroup) {
    set(PPPC "Enable", {}, "1", CWMP_OP_STAGE);
    set(PPPC "DNSServers", {}, "192.0.2.53", CWMP_OP_STAGE);
    EXPECT_EQ(FROM_LIBRARY(pppoe_obj_data).enable, CWMP_STAGED_ENABLED);
    EXPECT_STREQ(FROM_LIBRARY(pppoe_obj_data).dns_servers, "192.0.2.53");
    set(LINK "X_QM_IPTVEnabled", {}, "0", CWMP_OP_STAGE);
    set(LINK "X_QM_IPTVType", {}, "bridge", CWMP_OP_STAGE);
    set(LINK "X_QM_IPTVVID", {}, "30", CWMP_OP_STAGE);
    set(LINK "X_QM_IPTVPrio", {}, "5", CWMP_OP_STAGE);
    EXPECT_EQ(FROM_LIBRARY(iptv_obj_data).enable, CWMP_STAGED_DISABLED);
    EXPECT_STREQ(FROM_LIBRARY(iptv_obj_data).type, "bridge");
    EXPECT_STREQ(FROM_LIBRARY(iptv_obj_data).vlan_id, "30");
    EXPECT_STREQ(FROM_LIBRARY(iptv_obj_data).priority, "5");
    EXPECT_EQ(set(LINK "X_QM_IPTVVID", {}, "9", 7).code, 0);
    EXPECT_STREQ(FROM_LIBRARY(iptv_obj_data).vlan_id, "30");
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(WanPppConnection, IptvLink) {
    expect_answers({{LINK "X_QM_IPTVEnabled", {}, "0"},
                    {LINK "X_QM_IPTVType", {}, "normal"},
                    {LINK "X_QM_IPTVVID", {}, ""}});
    store("iptv_v2.info.iptv_type", "bridge");
    EXPECT_EQ(get(LINK "X_QM_IPTVEnabled").value, "0");  // enable itself cannot be read
    store("iptv_v2.info.enable", "off");
    EXPECT_EQ(get(LINK "X_QM_IPTVEnabled").value, "1");
    store("iptv_v2.info.iptv_type", "normal");
    for (const auto& [stored, value] : {std::pair("off", "0"), {"1", "1"}, {"on", "1"}, {"true", "0"}}) {
        store("iptv_v2.info.enable", stored);
        EXPECT_EQ(get(LINK "X_QM_IPTVEnabled").value, value);
    }
    store("iptv_v2.info.iptv_vid", "31");
    store("iptv_v2.info.iptv_prio", "6");
    expect_answers(
        {{LINK "X_QM_IPTVVID", {}, "31"},
         {LINK "X_QM_IPTVPrio", {}, "6"},
         {LINK "X_QM_IPTVDesCription",
          {},
          "Valid Parameters: X_QM_IPTVType( bridge/normal );X_QM_IPTVVID(2-4094);X_QM_IPTVPrio(0-7)."}});
}

TEST_F(WanPppConnection, ReadOnly) {
    expect_read_only({PPPC "ConnectionStatus", PPPC "Uptime", PPPC "CurrentMRUSize", PPPC "TransportType",
                      PPPC "ExternalIPAddress", PPPC "DefaultGateway", PPPC "MACAddress",
                      LINK "X_QM_IPTVDesCription", PPPC "PortMappingNumberOfEntries"});
}

TEST_F(WanPppConnection, WhetherTheWanIsADhcpClient) {
    struct Row {
        const char* type;
        const char* proto;
        const char* second;
        int dynamic;
    };
    const Row rows[] = {{"dhcp", "dhcp", "", 1},        {"static", "static", "", 0},
                        {"static", "dhcp", "", 1},      {"l2tp", "l2tp", "dynamic", 1},
                        {"l2tp", "dhcp", "dynamic", 0}, {"pptp", "pptp", "static", 0},
                        {"pptp", "dhcp", "none", 0},    {"pppoe", "pppoe", "dynamic", 1}};
    for (const Row& row : rows) {
        store("network.wan.wan_type", row.type);
        store("network.wan.proto", row.proto);
        if (*row.second != '\0') store(std::string("protocol.") + row.type + ".snd_conn", row.second);
        EXPECT_EQ(FROM_LIBRARY(getclientstatus)(), row.dynamic) << row.type << row.proto << row.second;
    }
    package("network", "config interface 'wan'\n\toption wan_type 'dhcp'\n");
    forget();
    EXPECT_EQ(FROM_LIBRARY(getclientstatus)(), 0);
    package("network", "config interface 'wan'\n\toption proto 'dhcp'\n");
    EXPECT_EQ(FROM_LIBRARY(getclientstatus)(), 0);
    EXPECT_THAT(console(), ElementsAre("getclientstatus: Failed to get wan_proto\n",
                                       "getclientstatus: Failed to get wan_type\n"));
}

}  // namespace
