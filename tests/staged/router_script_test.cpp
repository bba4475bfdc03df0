// Transactions over several groups with the router's own check script: what becomes of the configuration.
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "cwmp/transaction.h"
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

// What an agent does between begin and end: plain options of three packages, an added mapping, a deleted reservation,
// two groups; and where the last member is refused.
class AllOrNothing : public StagedRouter {
  protected:
    void SetUp() override {
        StagedRouter::SetUp();
        package("custom",
                "# as delivered\nconfig info DeviceInfo\n\toption ProvisioningCode 'old'\n\toption b '2'\n");
        package("cwmp",
                "config info 'info'\n\toption inform_interval '300'\n\tlist many 'a'\n\tlist many 'b c'\n");
        package("nat",
                "config nat 'nat'\n\toption PortMappingNumberOfEntries '1'\n\nconfig rule_vs '1'\n"
                "\toption port_forwarding_id '1'\n");
        package("dhcp_reservation",
                "config reservation '1'\n\toption enable 'on'\n\tlist x 'it''s'\n\toption mac 'm'\n\n"
                "config reservation '2'\n\toption enable 'off'\n\nconfig other\n\toption y 'z%\n\t'\n");
        profile("cwmp_settings.isp_reset", "yes");
        file("/etc/profile.d/cwmp-config-force", "");
        package("qos_v2", "\nconfig settings 'settings'\n\toption up_band '1'\n\n");
        for (const char* place : {"network_sync.wan.wan_type", "network_sync.wan.proto",
                                  "network.wan.wan_type", "network.wan.proto"})
            store(place, "static");
        level(-1);
        before_ = packages();
    }

    // The script writes its own packages its own way.
    std::map<std::string, std::string> packages() {
        std::map<std::string, std::string> texts;
        for (const char* name : {"custom", "cwmp", "nat", "dhcp_reservation", "qos_v2"})
            texts[name] = text_of(std::string(kLive) + "/" + name).value_or("gone");
        for (const auto& [name, value] : kConfiguration) texts[name] = option(name).value_or("gone");
        return texts;
    }

    bool write_all() {
        bool done = true;
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
            const auto member = [&](const char* name, const char* value) {
                done = done && set(name, {1, 1, 1, 1}, value, op).code == 0;
            };
            member("DeviceInfo_ProvisioningCode", "new\tcode");
            member("ManagementServer_PeriodicInformInterval", "600");
            member("WANDevice_X_QM_QoS_Upband", "5");
            if (op == CWMP_OP_CHECK) {
                done = done && add_instance("NAT_PortMapping").code == 0;
                done = done && delete_instance("DHCPv4_Server_Pool_StaticAddress", {}, "1").code == 0;
            }
            member("LANDevice_LANHostConfigManagement_MinAddress", "192.168.0.50");
            member("LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceIPAddress", "192.168.0.2");
            member("WANDevice_WANConnectionDevice_WANIPConnection_ExternalIPAddress", last_value_);
        }
        return done;
    }

    int begin(int wait = 0) { return FROM_LIBRARY(cwmp_transaction_begin)(wait); }
    int end(int keep) { return FROM_LIBRARY(cwmp_transaction_end)(keep, &flags); }
    int recover() { return FROM_LIBRARY(cwmp_transaction_recover)(&flags); }

    void expect_undone() {
        EXPECT_EQ(packages(), before_);
        EXPECT_TRUE(all_idle());
        EXPECT_EQ(text_of(CWMP_TRANSACTION_NOTES), "");
        EXPECT_EQ(option("cwmp.info.inform_interval", "/tmp/cwmp-config"), std::nullopt);
    }

    std::map<std::string, std::string> before_;
    const char* last_value_ = "192.0.2.99";
};

// holds P7, P8
TEST_F(AllOrNothing, IsUndoneWhereverItIsRefusedAndWhoeverIsKilled) {
    const auto in_stage = [&] { last_value_ = "nonsense"; };
    const auto in_check = [&] { script("wan_check", R"({"error_code":1})"); };
    const auto in_apply = [&] { script("wan_whole", R"({"error_code":1})"); };
    const auto nowhere = [] {};
    const auto accept_all = [] { std::filesystem::remove_all("/var/lib/router/answers"); };
    const auto run = [&](const char* where, const auto& refuse, bool written) {
        SCOPED_TRACE(where);
        refuse();
        ASSERT_EQ(begin(), 0);
        EXPECT_EQ(write_all(), written);
        EXPECT_NE(packages(), before_);
        accept_all();
        EXPECT_EQ(end(0), 0);
        expect_undone();
        refuse();
        const pid_t killed = fork();
        if (killed == 0) {
            begin();
            write_all();
            _exit(0);
        }
        waitpid(killed, nullptr, 0);
        EXPECT_NE(packages(), before_);
        accept_all();
        EXPECT_EQ(recover(), 1);
        expect_undone();
        EXPECT_EQ(recover(), 0);
        last_value_ = "192.0.2.99";
    };
    run("stage", in_stage, false);
    run("check", in_check, false);
    run("apply", in_apply, false);
    run("nowhere", nowhere, true);
}

}  // namespace
