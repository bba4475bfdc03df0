#include "cwmp/apply_flags.h"
#include "cwmp/wan.h"
#include "no_free_descriptor.h"
#include "router_test.h"

namespace {

#define IPC "WANDevice_WANConnectionDevice_WANIPConnection_"

constexpr Locate kInternet = {1, 1};
constexpr Locate kManagement = {1, 2};

std::string status_of(const std::string& address, const std::string& gateway, const std::string& state) {
    return "{\n\t\"up\": true,\n\t\"state\": \"" + state + "\",\n\t\"uptime\": 51,\n\t\"address\": \"" +
           address + "\",\n\t\"nexthop\": \"" + gateway + "\",\n}\n";
}

std::string ifconfig_of(const std::string& mac, const std::string& mask) {
    return "br        Link encap:Ethernet  HWaddr " + mac +
           "  \n          inet addr:192.0.2.7  Bcast:192.0.2.255  Mask:" + mask +
           "\n          UP BROADCAST RUNNING MULTICAST  MTU:1500  Metric:1\n";
}

class WanIpConnection : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        answer("ubus call network.interface.wan status", status_of("192.0.2.7", "192.0.2.1", "connected"));
        answer("ubus call network.interface.mg status",
               status_of("198.51.100.7", "198.51.100.1", "disconnecting"));
        answer("ifconfig br-wan", ifconfig_of("00:00:5E:00:53:01", "255.255.255.0"));
        answer("ifconfig br-mg", ifconfig_of("00:00:5E:00:53:03", "255.255.0.0"));
        store("network_sync.wan.proto", "dhcp");
        store("protocol.static.pri_dns", "192.0.2.53");
    }

    static void wan_state(const std::string& state) {
        answer("ubus call network.interface.wan status", status_of("192.0.2.7", "192.0.2.1", state));
    }
    std::string servers(Locate locate = kInternet) { return get(IPC "DNSServers", locate).value; }

    // Each SET of a group in turn, as the agent's three passes make them.
    std::vector<int> transaction(const std::vector<std::pair<const char*, std::string>>& values,
                                 unsigned& flags) {
        std::vector<int> codes;
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
            for (const auto& [name, value] : values) {
                const Result result = set(name, kInternet, value, op, flags);
                codes.push_back(result.code);
                flags = result.flags;
            }
        }
        return codes;
    }
};

TEST_F(WanIpConnection, TheInstancePairChoosesTheConnection) {
    file("/proc/uptime", "4711.25 9000.00\n");
    expect_answers({
        {IPC "ExternalIPAddress", kInternet, "192.0.2.7"},
        {IPC "ExternalIPAddress", kManagement, "198.51.100.7"},
        {IPC "ExternalIPAddress", {2, 0}, "198.51.100.7"},
        {IPC "DefaultGateway", kInternet, "192.0.2.1"},
        {IPC "DefaultGateway", kManagement, "198.51.100.1"},
        {IPC "SubnetMask", {1, 0}, "255.255.255.0"},
        {IPC "SubnetMask", kManagement, "255.255.0.0"},
        {IPC "MACAddress", kInternet, "00:00:5E:00:53:01"},
        {IPC "MACAddress", kManagement, "00:00:5E:00:53:03"},
        {IPC "AddressingType", kInternet, "Static"},
        {IPC "AddressingType", kManagement, "DHCP"},
        {IPC "AddressingType", {1, 3}, "None"},
        {IPC "AddressingType", {2, 1}, "None"},
        {IPC "Name", kInternet, "br-wan"},
        {IPC "Name", kManagement, "br-mg"},
        {"LANDevice_" IPC "Uptime", {}, "4711"},
    });
}

TEST_F(WanIpConnection, AnotherInstanceIsRefused) {
    struct Row {
        Locate locate;
        std::string event;
    };
    const Row rows[] = {{{}, "locate error\n"},
                        {{0, 1}, "locate error\n"},
                        {{1, 3}, "Failed, locate[0] = 1\n"},
                        {{3, 0}, "Failed, locate[0] = 3\n"},
                        {{-1, -1}, "Failed, locate[0] = -1\n"},
                        {{INT_MAX, 1}, "Failed, locate[0] = 2147483647\n"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.event);
        forget();
        EXPECT_EQ(get(IPC "ExternalIPAddress", row.locate).code, -1);
        EXPECT_EQ(get(IPC "Name", row.locate).code, -1);
        EXPECT_EQ(get(IPC "DNSServers", row.locate).code, -1);
        EXPECT_THAT(console(), ElementsAre("_get_wanIPconnection: " + row.event, IPC "Name: " + row.event,
                                           "_get_wanIPconnection_dnsservers:  fail to get locate\n\n",
                                           IPC "DNSServers:  get wan dns-server error\n\n"));
        EXPECT_THAT(commands(), IsEmpty());
    }
}

TEST_F(WanIpConnection, CommandTexts) {
    for (const char* name :
         {IPC "ExternalIPAddress", IPC "DefaultGateway", IPC "SubnetMask", IPC "MACAddress",
          IPC "ConnectionStatus", "WANDevice_WANEthernetInterfaceConfig_Status"})
        get(name, kInternet);
    EXPECT_THAT(
        commands(),
        ElementsAre(R"(ubus call network.interface.wan status | grep '"address' | awk -F '"' '{print $4}')",
                    R"(ubus call network.interface.wan status | grep nexthop | awk -F '"' '{print $4}')",
                    "ifconfig br-wan | grep Mask | awk -F ':' '{print $4}'",
                    "ifconfig br-wan | grep HWaddr| awk '{print $5}'",
                    R"(ubus call network.interface.wan status | grep "state" | awk -F ':' '{print $2}' )",
                    "cat /tmp/wanDetection"));
    forget();
    for (const char* name :
         {IPC "ExternalIPAddress", IPC "DefaultGateway", IPC "SubnetMask", IPC "MACAddress"})
        get(name, kManagement);
    EXPECT_THAT(
        commands(),
        ElementsAre(R"(ubus call network.interface.mg status | grep '"address' | awk -F '"' '{print $4}')",
                    R"(ubus call network.interface.mg status | grep nexthop | awk -F '"' '{print $4}')",
                    "ifconfig br-mg | grep Mask | awk -F ':' '{print $4}'",
                    "ifconfig br-mg | grep HWaddr| awk '{print $5}'"));
}

TEST_F(WanIpConnection, ToolsThatTellNothingLeaveTheDefaults) {
    std::string many;
    for (int i = 0; i < 10000; ++i) many += "\"addres\": 1;\n";
    for (const std::string& output : {std::string(), std::string("Command failed: Not found\n"),
                                      std::string("\xff\x01{{{:::\",,\n"), many}) {
        for (const char* tool : {"ubus call network.interface.wan status", "ifconfig br-wan"})
            answer(tool, output, 4);
        expect_answers({{IPC "ExternalIPAddress", kInternet, "0.0.0.0"},
                        {IPC "DefaultGateway", kInternet, "0.0.0.0"},
                        {IPC "SubnetMask", kInternet, "0.0.0.0"},
                        {IPC "MACAddress", kInternet, "0:0:0:0:0:0"},
                        {IPC "ConnectionStatus", kInternet, "Unconfigured"},
                        {IPC "DNSServers", kInternet, "0.0.0.0,"}});
    }
}

TEST_F(WanIpConnection, StateInTheWordsOfTheModel) {
    const std::pair<const char*, const char*> rows[] = {{"connecting", "Connecting"},
                                                        {"connected", "Connected"},
                                                        {"disconnected", "Disconnected"},
                                                        {"disconnecting", "Disconnecting"},
                                                        {"reconnected", "Unconfigured"}};
    for (const auto& [state, word] : rows) {
        wan_state(state);
        EXPECT_EQ(get(IPC "ConnectionStatus").value, word);
    }
    // Only what stands in the line's first 29 bytes counts.
    answer("ubus call network.interface.wan status",
           "\t\"state\":" + std::string(17, ' ') + "\"connected\",\n");
    EXPECT_EQ(get(IPC "ConnectionStatus").value, "Connected");
    answer("ubus call network.interface.wan status",
           "\t\"state\":" + std::string(18, ' ') + "\"connected\",\n");
    EXPECT_EQ(get(IPC "ConnectionStatus").value, "Unconfigured");
}

TEST_F(WanIpConnection, NameServersAreLearnedUnlessTheWanIsStatic) {
    const std::pair<std::string, std::string> files[] = {
        {"", "0.0.0.0,0.0.0.0"},
        {"nameserver 192.0.2.1\n", "192.0.2.1,0.0.0.0"},
        {"search lan\nnameserver  192.0.2.1\nnameserver 192.0.2.2 # b\nnameserver 192.0.2.3\n",
         "192.0.2.1,192.0.2.2"},
        {"nameserver\nnameserver 192.0.2.2\n", "192.0.2.2,0.0.0.0"},
        {"nameserver " + std::string(30, '9') + "\n", std::string(20, '9') + ",0.0.0.0"},
    };
    for (const auto& [text, value] : files) {
        file("/tmp/resolv.conf", text);
        EXPECT_EQ(servers(), value);
        EXPECT_EQ(servers(kManagement), value);
    }
    store("network_sync.wan.proto", "static");
    EXPECT_EQ(servers(), "192.0.2.53,0.0.0.0");
    store("protocol.static.snd_dns", "192.0.2.54");
    EXPECT_EQ(servers(), "192.0.2.53,192.0.2.54");
    EXPECT_THAT(console(), Not(Contains(HasSubstr("dns"))));

    package("protocol", "config protocol 'static'\n");
    forget();
    EXPECT_EQ(get(IPC "DNSServers", kInternet).code, -1);
    EXPECT_THAT(console(), ElementsAre("_get_wanIPconnection_dnsservers:  get dns from proto  error\n",
                                       IPC "DNSServers:  get wan dns-server error\n\n"));
}

TEST_F(WanIpConnection, AnInterfaceThatIsDownHasNoNameServers) {
    answer("ubus call network.interface.mg status", "{\n\t\"up\": false,\n}\n");
    EXPECT_EQ(servers(kManagement), "0.0.0.0,");
    EXPECT_THAT(console(), ElementsAre("_get_wanIPconnection_dnsservers: br-mg is not up\n\n"));
    EXPECT_EQ(servers(kInternet), "0.0.0.0,0.0.0.0");
    answer("ubus call network.interface.wan status", "");
    forget();
    EXPECT_EQ(servers(kInternet), "0.0.0.0,");
    EXPECT_THAT(console(), ElementsAre("_get_wanIPconnection_dnsservers: br-wan is not up\n\n"));
}

TEST_F(WanIpConnection, CommandsThatCannotStart) {
    struct Row {
        const char* handler;
        Texts events;
    };
    const Row rows[] = {
        {"WANDevice_WANEthernetInterfaceConfig_Status",
         {"WANDevice_WANEthernetInterfaceConfig_Status: Failed to get status\n"}},
        {IPC "ConnectionStatus", {IPC "ConnectionStatus: Failed to get wan or mg status\n\n"}},
        {IPC "ExternalIPAddress", {"_get_wanIPconnection: Failed to get wan or mg status\n\n"}},
        {"LANDevice_" IPC "Uptime", {"LANDevice_" IPC "Uptime: Failed to get  uptime\n"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.handler);
        forget();
        const NoFreeDescriptor none;
        EXPECT_EQ(get(row.handler, kInternet).code, -1);
        EXPECT_EQ(console(), row.events);
    }
}

TEST_F(WanIpConnection, TheStaticGroupIsStagedCheckedAndApplied) {
    answer("check_params initialize_revert_data wan_revert",
           R"({"wan_ip":"192.0.2.7","wan_mask":"255.255.255.0","wan_gate":"192.0.2.1","wan_type":"Static"})");
    answer("check_params wan_check", R"({"error_code":0})");
    answer("check_params wan_whole", R"({"error_code":0})");
    unsigned flags = 0;
    EXPECT_THAT(transaction({{IPC "ExternalIPAddress", "192.0.2.8"},
                             {IPC "SubnetMask", "255.255.255.128"},
                             {IPC "DefaultGateway", "192.0.2.2"},
                             {IPC "DNSServers", "192.0.2.53,192.0.2.54"}},
                            flags),
                ::testing::Each(0));
    EXPECT_EQ(flags, CWMP_APPLY_WAN);
    EXPECT_THAT(
        tool_calls(),
        ElementsAre("check_params initialize_revert_data wan_revert", HasSubstr("check_params wan_check "),
                    ::testing::AllOf(HasSubstr("check_params wan_whole "), HasSubstr("\"192.0.2.8\""),
                                     HasSubstr("\"255.255.255.128\""), HasSubstr("\"192.0.2.2\""),
                                     HasSubstr("\"192.0.2.53,192.0.2.54\""))));
    answer("check_params wan_check", R"({"error_code":1})");
    EXPECT_THAT(set_in_passes(IPC "DefaultGateway", kInternet, "198.51.100.1"), ElementsAre(0, -1, 0));
}

TEST_F(WanIpConnection, ACloneOfAMacAddressIsJournaledAndHandedOverOnce) {
    constexpr const char* kNew = "02:00:5e:00:53:AA";
    store("check.mac_clone.result", "1", kScratch);
    file("/usr/bin/tr069/check_params", "");  // a script that does nothing
    EXPECT_THAT(set_in_passes(IPC "MACAddress", kInternet, kNew), ElementsAre(0, 0, -1));
    EXPECT_THAT(console(), Contains(IPC "MACAddress: set MACAddress error\n"));

    file("/usr/bin/tr069/check_params",
         R"(os.execute("echo \"config check 'mac_clone'\n\toption result '1'\" > /tmp/tr069/check"))");
    forget();
    EXPECT_EQ(set(IPC "MACAddress", kManagement, kNew, CWMP_OP_STAGE).flags, 0U);
    EXPECT_EQ(set(IPC "MACAddress", kManagement, kNew, CWMP_OP_CHECK).code, 0);
    EXPECT_THAT(commands(), IsEmpty());
    const Result result = set(IPC "MACAddress", kManagement, kNew);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.flags, CWMP_APPLY_WAN);
    EXPECT_THAT(commands(), Contains(std::string("lua /usr/bin/tr069/check_params macclone ") + kNew));
    EXPECT_EQ(text_of("/tmp/ready_to_revert_item"),
              "macclone##00:00:5E:00:53:01##NULL\nmacclone##00:00:5E:00:53:03##NULL\n");
    EXPECT_THAT(console(), Contains(IPC "MACAddress: NETWORK_RELOAD:16\n"));
}

TEST_F(WanIpConnection, NothingButAMacAddressReachesTheScript) {
    for (const std::string value :
         {"", "02:00:5e:00:53", "02-00-5e-00-53-aa", "02:00:5e:00:53:ag", "02:00:5e:00:53:aa ",
          "02:00:5e:00:53:aa;reboot", "02:00:5e:00:53:$(id)", "02:00:5e:00:53:aa:::::::::::::::$(reboot)"}) {
        SCOPED_TRACE(value);
        forget();
        EXPECT_THAT(set_in_passes(IPC "MACAddress", kInternet, value), ElementsAre(-1, -1, -1));
        EXPECT_THAT(console(), Contains(IPC "MACAddress: the format of MAC is wrong \n"));
        EXPECT_THAT(commands(), IsEmpty());
    }
    EXPECT_FALSE(exists("/tmp/ready_to_revert_item"));
}

TEST_F(WanIpConnection, IgmpProxy) {
    EXPECT_EQ(get(IPC "X_QM_IGMPProxyEnabled").code, -1);
    for (const auto& [stored, value] :
         {std::pair("on", "1"), std::pair("once", "1"), std::pair("off", "0"), std::pair("offline", "0")}) {
        store("iptv.iptv.igmp_enable", stored);
        EXPECT_EQ(get(IPC "X_QM_IGMPProxyEnabled").value, value);
    }
    store("iptv.iptv.igmp_enable", "1");
    EXPECT_EQ(get(IPC "X_QM_IGMPProxyEnabled").code, -1);

    forget();
    for (const char* value : {"1", "TRUE", "0", "False"}) {
        const Result result = set(IPC "X_QM_IGMPProxyEnabled", kInternet, value);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.flags, 0U);
    }
    for (const char* value : {"", "on", "2", "1;reboot", "true "})
        EXPECT_EQ(set(IPC "X_QM_IGMPProxyEnabled", kInternet, value).code, -1);
    const std::string on = "lua /usr/bin/tr069/check_params iptv_igmpproxy_enable \"on\"";
    const std::string off = "lua /usr/bin/tr069/check_params iptv_igmpproxy_enable \"off\"";
    EXPECT_THAT(commands(), ElementsAre(on, on, off, off));
}

TEST_F(WanIpConnection, DeviceAndEthernetInterface) {
    file(
        "/proc/net/dev",
        "br-wan: 11 12 13 14 0 0 0 0 21 22 23 24 0 0 0 0\n br-mg: 31 32 33 34 0 0 0 0 41 42 43 44 0 0 0 0\n");
    file("/tmp/wanDetection", "1\n");
    expect_answers({{"WANDevice_WANConnectionNumberOfEntries", {}, "2"},
                    {"WANDevice_WANCommonInterfaceConfig_EnabledForInternet", {}, "1"},
                    {"WANDevice_WANCommonInterfaceConfig_TotalBytesReceived", {1}, "11"},
                    {"WANDevice_WANCommonInterfaceConfig_TotalPacketsReceived", {1}, "12"},
                    {"WANDevice_WANCommonInterfaceConfig_X_QM_TotalErrorsReceived", {1}, "13"},
                    {"WANDevice_WANCommonInterfaceConfig_TotalBytesSent", {1}, "21"},
                    {"WANDevice_WANCommonInterfaceConfig_TotalPacketsSent", {1}, "22"},
                    {"WANDevice_WANCommonInterfaceConfig_X_QM_TotalErrorsSent", {1}, "23"},
                    {"WANDevice_WANCommonInterfaceConfig_TotalBytesSent", {1, 2}, "41"},
                    {"WANDevice_WANEthernetInterfaceConfig_Enable", {}, "1"},
                    {"WANDevice_WANEthernetInterfaceConfig_Status", {}, "Up"}});
    for (const char* text : {"0\n", "11\n", ""}) {
        file("/tmp/wanDetection", text);
        EXPECT_EQ(get("WANDevice_WANEthernetInterfaceConfig_Status").value, "NoLink");
    }
}

TEST_F(WanIpConnection, ReadOnly) {
    expect_read_only(
        {"WANDevice_WANConnectionNumberOfEntries", "WANDevice_WANCommonInterfaceConfig_EnabledForInternet",
         "WANDevice_WANEthernetInterfaceConfig_Enable", "WANDevice_WANEthernetInterfaceConfig_Status",
         "LANDevice_" IPC "Uptime", IPC "AddressingType", IPC "Name", IPC "ConnectionStatus",
         IPC "PortMappingNumberOfEntries"});
}

TEST_F(WanIpConnection, TheProbeRefusesASetOfACounter) {
    for (const char* counter : {"WANDevice_WANCommonInterfaceConfig_TotalBytesSent",
                                "WANDevice_WANConnectionDevice_WANPPPConnection_Stats_EthernetErrorsSent"}) {
        forget();
        EXPECT_EQ(set(counter, {1, 1}, "1").code, -1);
        EXPECT_THAT(console(),
                    ElementsAre("get_TotalBytesAndPackets_by_name: error set Bytes and Packets !\n"));
    }
}

TEST_F(WanIpConnection, ExportedBodies) {
    char value[CWMP_VALUE_SIZE] = "";
    const char* const commands[2] = {"echo one", "true"};
    const int internet[2] = {1, 1};
    const int management[2] = {1, 2};
    EXPECT_EQ(FROM_LIBRARY(_get_wanIPconnection)(internet, value, commands, "none"), 0);
    EXPECT_STREQ(value, "one");
    EXPECT_EQ(FROM_LIBRARY(_get_wanIPconnection)(management, value, commands, "none"), 0);
    EXPECT_STREQ(value, "none");
    EXPECT_EQ(FROM_LIBRARY(_get_wanIPconnection_dnsservers)(internet, value), 0);
    EXPECT_STREQ(value, "0.0.0.0,0.0.0.0");
    EXPECT_EQ(FROM_LIBRARY(_get_wanIPconnection_dnsservers)(nullptr, value), -1);
}

}  // namespace
