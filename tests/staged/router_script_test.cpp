// Transactions over several groups with the router's own check script: what becomes of the configuration.
#include <filesystem>

#include "staged_test_support.h"

namespace {

constexpr const char* kScriptFile = "/usr/bin/tr069/check_params";

class StagedRouter : public StagedTest {
  protected:
    void SetUp() override {
        StagedTest::SetUp();
        for (const auto& [option, value] : kConfiguration) store(option, value);
    }

    void expect_as_before() {
        for (const auto& [name, value] : kConfiguration) EXPECT_EQ(option(name), value) << name;
        EXPECT_EQ(option("network.wan.ipaddr"), std::nullopt);
        EXPECT_TRUE(all_idle());
        expect_no_exchange_files();
    }

    static constexpr std::pair<const char*, const char*> kConfiguration[] = {
        {"smartip_sync.settings.lanip", "192.168.0.1"},
        {"smartip_sync.settings.mask", "255.255.255.0"},
        {"network.lan.ipaddr", "192.168.0.1"},
        {"network.lan.netmask", "255.255.255.0"},
        {"network.wan.wan_type", "dhcp"},
        {"network.wan.proto", "dhcp"},
        {"network_sync.wan.wan_type", "dhcp"},
        {"network_sync.wan.proto", "dhcp"},
        {"network.internet.username", "it's me"},
        {"network.internet.password", "a \"b\" \\c"},
        {"protocol.static.ipaddr", "192.0.2.20"},
        {"protocol.static.netmask", "255.255.255.0"},
        {"protocol.static.gateway", "192.0.2.1"},
        {"protocol.static.pri_dns", "192.0.2.53"},
        {"protocol.static.snd_dns", "0.0.0.0"},
        {"network.vlan.enable", "0"},
        {"iptv_v2.info.enable", "0"},
        {"iptv_v2.info.iptv_type", "normal"},
        {"iptv_v2.info.iptv_vid", "30"},
        {"iptv_v2.info.iptv_prio", "4"},
        {"iptv.Custom.internet_vid", "10"},
        {"dhcp_server_sync.settings.startIpAddress", "192.168.0.100"},
        {"dhcp_server_sync.settings.endIpAddress", "192.168.0.199"},
    };
};

const std::vector<StagedField> kNewLan = {{CWMP_LAN_ADDRESS, "10.0.0.1"}};
const std::vector<StagedField> kNewWan = {{CWMP_WAN_TYPE, "Static"}, {CWMP_WAN_ADDRESS, "192.0.2.99"}};

TEST_F(StagedRouter, AcceptedTransactionIsWritten) {
    stage(CWMP_STAGED_LAN, kNewLan);
    stage(CWMP_STAGED_WAN, kNewWan);
    stage(CWMP_STAGED_IPTV, {{CWMP_IPTV_ENABLE, "1"}, {CWMP_IPTV_TYPE, "bridge"}});
    stage(CWMP_STAGED_VLAN, {{CWMP_VLAN_ENABLE, "1"}, {CWMP_VLAN_VLAN_ID, "100"}});
    stage(CWMP_STAGED_DHCP, {{CWMP_DHCP_END_ADDRESS, "192.168.0.150"}});
    for (const int object : {1, 2, 3, 4, 5}) EXPECT_EQ(check(object), 1) << object;
    for (const int object : {1, 2, 3, 4, 5}) EXPECT_EQ(apply(object), 1) << object;
    EXPECT_EQ(flags, 4U | 32U | 16U | 64U);
    EXPECT_EQ(option("smartip_sync.settings.lanip"), "10.0.0.1");
    EXPECT_EQ(option("network.lan.ipaddr"), "10.0.0.1");
    EXPECT_EQ(option("network_sync.wan.wan_type"), "static");
    EXPECT_EQ(option("network.wan.ipaddr"), "192.0.2.99");
    EXPECT_EQ(option("protocol.static.pri_dns"), "192.0.2.53");
    EXPECT_EQ(option("iptv_v2.info.iptv_type"), "bridge");
    EXPECT_EQ(option("iptv_v2.info.enable"), "1");
    EXPECT_EQ(option("network.vlan.enable"), "1");
    EXPECT_EQ(option("iptv.Custom.internet_vid"), "100");
    EXPECT_EQ(option("dhcp_server_sync.settings.endIpAddress"), "192.168.0.150");
    EXPECT_EQ(option("network.internet.password"), "a \"b\" \\c");
}

TEST_F(StagedRouter, PppoeAccountComesAndGoesWithTheTransaction) {
    stage(CWMP_STAGED_PPPOE,
          {{CWMP_PPPOE_ENABLE, "1"}, {CWMP_PPPOE_USERNAME, "n'ew\n"}, {CWMP_PPPOE_PASSWORD, "\"'\\"}});
    EXPECT_EQ(check(CWMP_STAGED_PPPOE), 1);
    EXPECT_EQ(apply(CWMP_STAGED_PPPOE), 1);
    EXPECT_EQ(option("network_sync.wan.wan_type"), "pppoe");
    EXPECT_EQ(option("protocol.pppoe.username"), "n'ew\n");
    EXPECT_EQ(option("network.internet.password"), "\"'\\");
    revert();
    expect_as_before();
}

TEST_F(StagedRouter, HalfWrittenWanIsMendedAndAnUnsetNameServerIsUnsetAgain) {
    store("network.wan.wan_type", "static");  // a switch that was cut short
    package("protocol", "config static 'static'\n\toption pri_dns '192.0.2.53'\n");
    stage(CWMP_STAGED_WAN, {{CWMP_WAN_TYPE, "DHCP"}, {CWMP_WAN_DNS_SERVERS, "192.0.2.1,192.0.2.2"}});
    EXPECT_EQ(check(CWMP_STAGED_WAN), 1);
    EXPECT_EQ(apply(CWMP_STAGED_WAN), 1);
    EXPECT_EQ(option("network.wan.wan_type"), "dhcp");
    EXPECT_EQ(option("protocol.static.snd_dns"), "192.0.2.2");
    revert();
    EXPECT_EQ(option("protocol.static.pri_dns"), "192.0.2.53");
    EXPECT_EQ(option("protocol.static.snd_dns"), std::nullopt);
}

struct Breakage {
    const char* what;
    const char* text;
    int status;
};

TEST_F(StagedRouter, RevertOfATransactionWhoseSecondGroupFailsRestoresTheFirst) {
    const Breakage breakages[] = {{"rejected", R"({"error_code":1})", 0},
                                  {"broken JSON", "{\"error_code\"", 0},
                                  {"no integer", R"({"error_code":"0"})", 0},
                                  {"crashed", "", 139},
                                  {"silent", "", 0}};
    for (const auto& breakage : breakages) {
        SCOPED_TRACE(breakage.what);
        script("wan_whole", breakage.text, breakage.status);
        stage(CWMP_STAGED_LAN, kNewLan);
        stage(CWMP_STAGED_WAN, kNewWan);
        EXPECT_EQ(check(CWMP_STAGED_LAN), 1);
        EXPECT_EQ(check(CWMP_STAGED_WAN), 1);
        EXPECT_EQ(apply(CWMP_STAGED_LAN), 1);
        EXPECT_EQ(option("smartip_sync.settings.lanip"), "10.0.0.1");
        EXPECT_EQ(apply(CWMP_STAGED_WAN), 0);
        revert();
        expect_as_before();
    }
}

TEST_F(StagedRouter, MissingScriptChangesNothing) {
    file(kScriptFile, "");  // put back after the test, with its text
    std::filesystem::remove(kScriptFile);
    stage(CWMP_STAGED_LAN, {{CWMP_LAN_ADDRESS, "10.0.0.1"}, {CWMP_LAN_MASK, "255.0.0.0"}});
    EXPECT_EQ(check(CWMP_STAGED_LAN), 0);
    revert();
    expect_as_before();
}

TEST_F(StagedRouter, ScriptRefusesWhatARouterCannotUse) {
    struct Row {
        int object;
        std::vector<StagedField> staged;
    };
    const Row rows[] = {
        {CWMP_STAGED_LAN, {{CWMP_LAN_ADDRESS, "192.168.0.255"}}},
        {CWMP_STAGED_LAN, {{CWMP_LAN_ADDRESS, "127.0.0.2"}}},
        {CWMP_STAGED_LAN, {{CWMP_LAN_MASK, "255.0.255.0"}}},
        {CWMP_STAGED_WAN, {{CWMP_WAN_TYPE, "Static"}, {CWMP_WAN_GATEWAY, "198.51.100.1"}}},
        {CWMP_STAGED_DHCP, {{CWMP_DHCP_START_ADDRESS, "192.168.0.200"}}},
        {CWMP_STAGED_DHCP, {{CWMP_DHCP_END_ADDRESS, "192.168.1.1"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.staged.front().value);
        stage(row.object, row.staged);
        EXPECT_EQ(check(row.object), 0);
        revert();
        expect_as_before();
    }
}

}  // namespace
