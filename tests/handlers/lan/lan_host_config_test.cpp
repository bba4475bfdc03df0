// The LAN's addresses, the DHCP pool, the relay.
#include "cwmp/lan.h"
#include "lan_test.h"
#include "no_free_descriptor.h"

namespace {

#define LAN "LANDevice_LANHostConfigManagement_"
#define POOL "DHCPv4_Server_Pool_"

constexpr const char* kLeases = "/tmp/udhcpd_lan.conf";
constexpr const char* kStatus = "/tmp/dhcps_status_lan";

class LanHostConfig : public LanTest {
  protected:
    void SetUp() override {
        LanTest::SetUp();
        for (const auto& [option, value] : std::vector<std::pair<const char*, const char*>>{
                 {"smartip_sync.settings.lanip", "192.168.0.1"},
                 {"smartip_sync.settings.mask", "255.255.255.0"},
                 {"smartip_sync.settings.gw", "192.168.0.254"},
                 {"network.lan.proto", "static"},
                 {"network.lan.macaddr", "00-00-5e-00-53-ab"},
                 {"dhcp_server_sync.settings.startIpAddress", "192.168.0.10"},
                 {"dhcp_server_sync.settings.endIpAddress", "192.168.0.99"},
                 {"dhcp_server_sync.settings.dhcpLeaseTime", "7200"},
                 {"dhcp_server_sync.settings.primaryDns", "192.0.2.1"},
                 {"dhcp_server_sync.settings.secondaryDns", "0.0.0.0"}}) {
            store(option, value);
        }
    }

    void automatic_servers(const std::string& leases) {
        store("dhcp_server_sync.settings.primaryDns", "0.0.0.0");
        file(kLeases, leases);
    }
};

TEST_F(LanHostConfig, ReadsTheStore) {
    expect_answers({
        {LAN "IPInterface_IPInterfaceIPAddress", {1, 1}, "192.168.0.1"},
        {LAN "IPInterface_IPInterfaceSubnetMask", {1, 1}, "255.255.255.0"},
        {LAN "IPInterface_IPInterfaceAddressingType", {1, 1}, "static"},
        {LAN "IPInterface_DefaultGateway", {1, 1}, "192.168.0.254"},
        {LAN "Subnetmask", {1}, "255.255.255.0"},
        {LAN "DefaultGateway", {1}, "192.168.0.1"},
        {LAN "IPRouters", {1}, "192.168.0.1"},
        {LAN "DHCPServerEnable", {1}, "1"},
        {LAN "MinAddress", {1}, "192.168.0.10"},
        {LAN "MaxAddress", {1}, "192.168.0.99"},
        {LAN "DHCPLeaseTime", {1}, "7200"},
        {LAN "DNSServers", {1}, "192.0.2.1,0.0.0.0"},
        {"DHCPv4_Server_Enable", {}, "1"},
        {"DHCPv4_Server_PoolNumberOfEntries", {}, "1"},
        {POOL "Enable", {1}, "1"},
        {POOL "SubnetMask", {1}, "255.255.255.0"},
        {POOL "IPRouters", {1}, "192.168.0.1"},
        {POOL "MinAddress", {1}, "192.168.0.10"},
        {POOL "MaxAddress", {1}, "192.168.0.99"},
        {POOL "LeaseTime", {1}, "7200"},
        {POOL "DNSServers", {1}, "192.0.2.1,0.0.0.0"},
        {POOL "Interface", {1}, "Device.IP.Interface.1."},
        {POOL "Chaddr", {1}, "00:00:5E:00:53:AB"},
        {"DHCPv4_Relay_Enable", {}, "0"},
        {"DHCPv4_Relay_Status", {}, "0"},
        {"DHCPv4_Relay_ForwardingNumberOfEntries", {}, "0"},
        {"DHCPv4_Relay_Forwarding_Enable", {1}, "0"},
        {"DHCPv4_Relay_Forwarding_Status", {1}, "0"},
        {"DHCPv4_Relay_Forwarding_Interface", {1}, "Device.IP.Interface.1."},
        {"DHCPv4_Relay_Forwarding_DHCPServerIPAddress", {1}, ""},
    });
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(LanHostConfig, RefusesToWriteWhatIsReadOnly) {
    expect_read_only({LAN "IPInterface_IPInterfaceAddressingType", LAN "IPInterface_DefaultGateway",
                      LAN "DHCPServerEnable", LAN "DHCPLeaseTime", "DHCPv4_Server_Enable",
                      "DHCPv4_Server_PoolNumberOfEntries", POOL "Enable", POOL "LeaseTime", POOL "Interface",
                      POOL "Chaddr", POOL "Status", POOL "StaticAddressNumberOfEntries",
                      "DHCPv4_Relay_Enable", "DHCPv4_Relay_Status", "DHCPv4_Relay_ForwardingNumberOfEntries",
                      "DHCPv4_Relay_Forwarding_Enable", "DHCPv4_Relay_Forwarding_Status",
                      "DHCPv4_Relay_Forwarding_Interface", "DHCPv4_Relay_Forwarding_DHCPServerIPAddress"});
}

TEST_F(LanHostConfig, SaysWhatCannotBeRead) {
    for (const char* name : {"smartip_sync", "dhcp_server_sync", "network"}) package(name, "");
    const struct {
        const char* handler;
        const char* reporter;
        const char* event;
    } rows[] = {
        {LAN "DefaultGateway", LAN "IPInterface_IPInterfaceIPAddress", "get lan ip error\n"},
        {POOL "SubnetMask", LAN "IPInterface_IPInterfaceSubnetMask", "get lan mask error\n"},
        {LAN "IPInterface_DefaultGateway", LAN "IPInterface_DefaultGateway", "get default geteway error\n"},
        {LAN "MinAddress", LAN "MinAddress", " get dhcp startIpAddress error\n\n"},
        {LAN "MaxAddress", LAN "MaxAddress", " get dhcp endIpAddress error\n\n"},
        {LAN "DHCPLeaseTime", LAN "DHCPLeaseTime", " get dhcp_server dhcpLeaseTime error\n\n"},
        {LAN "DNSServers", LAN "DNSServers", " get dns-server enable error\n\n"},
        {POOL "Chaddr", POOL "Chaddr", "failed to get lan mac locat[0] = 1\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.handler);
        forget();
        const auto result = get(row.handler, {1});
        EXPECT_EQ(result.code, -1);
        EXPECT_EQ(result.value, kUntouched);
        EXPECT_THAT(events_of(row.reporter), ElementsAre(row.event));
    }
    EXPECT_EQ(get(LAN "IPInterface_IPInterfaceAddressingType").value, "");
    EXPECT_EQ(get(POOL "Chaddr", {2}).code, -1);
    EXPECT_THAT(console(), Contains(POOL "Chaddr: failed to get lan mac locat[0] = 2\n"));
}

TEST_F(LanHostConfig, WritesMaskAndServersDirectly) {
    expect_stored({
        {LAN "IPInterface_IPInterfaceSubnetMask",
         {1, 1},
         "255.255.0.0",
         "smartip_sync.settings.mask",
         "255.255.0.0",
         0},
        {LAN "Subnetmask", {1}, "255.0.0.0", "smartip_sync.settings.mask", "255.0.0.0", 0},
        {POOL "SubnetMask", {1}, "255.255.255.128", "smartip_sync.settings.mask", "255.255.255.128", 0},
        {LAN "DNSServers", {1}, "8.8.8.8", "dhcp_server_sync.settings.primaryDns", "8.8.8.8", 0x20},
        {LAN "DNSServers", {1}, "", "dhcp_server_sync.settings.secondaryDns", "0.0.0.0", 0x20},
        {POOL "DNSServers",
         {1},
         ",9.9.9.9,,8.8.4.4,1.1.1.1",
         "dhcp_server_sync.settings.primaryDns",
         "9.9.9.9",
         0x20},
    });
    EXPECT_EQ(option("dhcp_server_sync.settings.secondaryDns"), "8.8.4.4");
    forget();
    for (const char* mask : {"", "255.255.255", "255.255.255.00", "255.255.255.256", "a"}) {
        EXPECT_EQ(set(POOL "SubnetMask", {1}, mask).code, -1) << mask;
    }
    EXPECT_EQ(events_of(LAN "IPInterface_IPInterfaceSubnetMask"), Texts(5, "the format of ip is wrong \n"));
    EXPECT_EQ(option("smartip_sync.settings.mask"), "255.255.255.128");
    for (const char* name : {LAN "Subnetmask", LAN "DNSServers", LAN "IPRouters", LAN "MinAddress"}) {
        EXPECT_EQ(set_null(name, {}, CWMP_OP_STAGE), -1) << name;
    }
}

TEST_F(LanHostConfig, FailsWhenTheStoreRefuses) {
    package("dhcp_server_sync", "config broken 'x");
    package("smartip_sync", "config broken 'x");
    EXPECT_EQ(set(LAN "DNSServers", {1}, "8.8.8.8").code, -1);
    EXPECT_EQ(set(LAN "DNSServers", {1}, "8.8.8.8").flags, 0);
    EXPECT_EQ(set(LAN "Subnetmask", {1}, "255.0.0.0").code, -1);
}

TEST_F(LanHostConfig, AutomaticServersComeFromTheDhcpServer) {
    const std::string long_line(300, 'x');
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", "0.0.0.0,0.0.0.0,0.0.0.0"},
        {"option dns 192.0.2.1\nrouter 192.0.2.9\n", "192.0.2.1,0.0.0.0,0.0.0.0"},
        {"opt dns  1.1.1.1 5.5.5.5\nmdns\t2.2.2.2\noption dns\ndns1 3.3.3.3\ndns 4.4.4.4",
         "1.1.1.1,2.2.2.2,3.3.3.3"},
        {"dns 1234567890123456789012345\ndns123456789012345678901_5.5.5.5\n",
         "123456789012345678901234,_5.5.5.5,0.0.0.0"},
        {long_line + " dns 6.6.6.6\n", "6.6.6.6,0.0.0.0,0.0.0.0"},
    };
    for (const auto& [leases, servers] : rows) {
        automatic_servers(leases);
        EXPECT_EQ(get(POOL "DNSServers", {1}).value, servers);
    }
    std::vector<char> value(CWMP_VALUE_SIZE);
    forget();
    EXPECT_EQ(FROM_LIBRARY(_get_dns_server)(value.data()), 0);
    EXPECT_STREQ(value.data(), "6.6.6.6,0.0.0.0,0.0.0.0");
    EXPECT_THAT(commands(), ElementsAre("cat /tmp/udhcpd_lan.conf"));
    store("dhcp_server_sync.settings.secondaryDns", "192.0.2.2");
    EXPECT_EQ(get(LAN "DNSServers", {1}).value, "0.0.0.0,192.0.2.2");
    package("dhcp_server_sync", "config dhcp_server settings\n\toption secondaryDns 1.1.1.1\n");
    EXPECT_EQ(FROM_LIBRARY(_get_dns_server)(value.data()), -1);
}

TEST_F(LanHostConfig, SaysThatTheServersCannotBeAsked) {
    automatic_servers("option dns 192.0.2.1\n");
    forget();
    {
        // One descriptor is enough for the store and too few for a pipe.
        const int spare = open("/", O_RDONLY | O_CLOEXEC);
        const NoFreeDescriptor none;
        close(spare);
        EXPECT_EQ(get(LAN "DNSServers", {1}).code, -1);
    }
    EXPECT_THAT(console(), ElementsAre("_get_dns_server: Failed to get dns_server\n",
                                       LAN "DNSServers:  get dns-server enable error\n\n"));
}

TEST_F(LanHostConfig, PoolStatusFollowsTheServersFile) {
    const struct {
        const char* line;
        const char* mode;
        const char* received;
        const char* status;
        int code;
    } rows[] = {
        {"{\"dhcps_status\":\"on\"}\n", "AP", nullptr, "Enabled", 0},
        {"{\"dhcps_status\":\"on\"}", "AP", nullptr, "Enabled", 0},
        {"{\"dhcps_status\":\"off\"}\nmore\n", "Router", nullptr, "Disabled", 0},
        {" {\"dhcps_status\":\"on\"}\n", "Router", nullptr, "Error_Misconfigured", -1},
        {"\n", "Router", nullptr, "Error_Misconfigured", -1},
        {"", "Router", "br-lan\n", "Error", 0},
        {nullptr, "Router", "br-lan\n", "Error", 0},
        {nullptr, "AP", "br-lan\n", "Disabled", 0},
        {nullptr, "AP", "", "Error", 0},
        {nullptr, "router", "br-lan\n", "Disabled", 0},
        {nullptr, nullptr, "br-lan\n", "Disabled", 0},
        {nullptr, nullptr, nullptr, "Error", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status);
        unlink(kStatus);
        unlink("/tmp/smartip_recv_dhcp_if");
        package("sysmode", "");
        if (row.line != nullptr) file(kStatus, row.line);
        if (row.mode != nullptr) store("sysmode.sysmode.mode", row.mode);
        if (row.received != nullptr) file("/tmp/smartip_recv_dhcp_if", row.received);
        const auto result = get(POOL "Status", {1});
        EXPECT_EQ(result.value, row.status);
        EXPECT_EQ(result.code, row.code);
    }
    EXPECT_THAT(commands(), Contains("cat /tmp/smartip_recv_dhcp_if"));
    EXPECT_THAT(commands(), Contains("cat /tmp/dhcps_status_lan"));
}

TEST_F(LanHostConfig, AddressesGoThroughTheirGroup) {
    const struct {
        const char* handler;
        const char* value;
        const char* stored;
        unsigned flag;
        bool restored;
    } rows[] = {
        {LAN "IPInterface_IPInterfaceIPAddress", "192.168.0.2", "smartip_sync.settings.lanip", 0x20, true},
        {LAN "DefaultGateway", "192.168.0.3", "smartip_sync.settings.lanip", 0x20, true},
        {LAN "IPRouters", "192.168.0.4", "smartip_sync.settings.lanip", 0x20, true},
        {POOL "IPRouters", "192.168.0.5", "smartip_sync.settings.lanip", 0x20, true},
        {LAN "MinAddress", "192.168.0.20", "dhcp_server_sync.settings.startIpAddress", 4, false},
        {POOL "MinAddress", "192.168.0.21", "dhcp_server_sync.settings.startIpAddress", 4, false},
        {LAN "MaxAddress", "192.168.0.88", "dhcp_server_sync.settings.endIpAddress", 4, false},
        {POOL "MaxAddress", "192.168.0.87", "dhcp_server_sync.settings.endIpAddress", 4, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.handler);
        const auto before = option(row.stored);
        unsigned flags = 0;
        EXPECT_EQ(set(row.handler, {1}, row.value, CWMP_OP_STAGE).code, 0);
        EXPECT_EQ(set(row.handler, {1}, row.value, CWMP_OP_CHECK).code, 0);
        EXPECT_EQ(option(row.stored), before);
        EXPECT_EQ(set(row.handler, {1}, row.value, CWMP_OP_APPLY).flags, row.flag);
        EXPECT_EQ(option(row.stored), row.value);
        call(handler("func_obj_revert"), CWMP_OP_APPLY, nullptr, nullptr, &flags);
        EXPECT_EQ(option(row.stored), row.restored ? before : row.value);
        EXPECT_THAT(set_in_passes(row.handler, {1}, "192.168.0"), ElementsAre(0, -1, 0));
        EXPECT_EQ(option(row.stored), row.restored ? before : row.value);
    }
}

}  // namespace
