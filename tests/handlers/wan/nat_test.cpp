#include <unistd.h>

#include "cwmp/apply_flags.h"
#include "no_free_descriptor.h"
#include "router_test.h"

namespace {

constexpr const char* kEnable = "NAT_X_QM_DmzHostCfg_Enable";
constexpr const char* kAddress = "NAT_X_QM_DmzHostCfg_IPAddress";

class Nat : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        store("network.lan.ipaddr", "192.168.7.1");
        store("network.lan.netmask", "255.255.255.0");
        package("nat", "config dmz 'dmz01'\n\toption enable 'off'\n\toption ipaddr '192.168.7.9'\n");
        forget();
    }
    Texts refused(const char* handler, const std::string& value) {
        forget();
        const Result result = set(handler, {}, value);
        EXPECT_EQ(result.code, -1) << value;
        EXPECT_EQ(result.flags, 0U);
        Texts events = console();
        std::erase_if(events, [&](const auto& event) { return !event.starts_with(handler); });
        return events;
    }
};

TEST_F(Nat, InterfaceSetting) {
    expect_answers({{"NAT_InterfaceSettingNumberOfEntries", {}, "1"},
                    {"NAT_InterfaceSetting_Interface", {1}, "Device.IP.Interface.2."},
                    {"NAT_InterfaceSetting_X_QM_FullconeNATEnabled", {1}, "0"},
                    {"NAT_InterfaceSetting_Enable", {1}, "0"}});
    for (const auto& [stored, value] : {std::pair("on", "1"), {"off", "0"}, {"1", "0"}}) {
        store("nat.nat_global.enable", stored);
        EXPECT_EQ(get("NAT_InterfaceSetting_Enable").value, value);
    }
    forget();
    for (const auto& [line, value] : {std::pair("          UP BROADCAST MTU:1500", "Enabled"),
                                      {"          BROADCAST MTU:1500", "Disabled"},
                                      {"          UPPER MTU:1500", "Disabled"},
                                      {"", "Disabled"}}) {
        answer("ifconfig br-wan", line);
        EXPECT_EQ(get("NAT_InterfaceSetting_Status").value, value) << line;
    }
    EXPECT_EQ(commands().front(), "ifconfig br-wan | grep MTU | awk '{print $1}'");
    const NoFreeDescriptor none;
    EXPECT_EQ(get("NAT_InterfaceSetting_Status").value, "Disabled");
    EXPECT_THAT(console(), ElementsAre("NAT_InterfaceSetting_Status: Failed to popen\n"));
}

TEST_F(Nat, ReadOnly) {
    expect_read_only({"NAT_InterfaceSettingNumberOfEntries", "NAT_InterfaceSetting_Enable",
                      "NAT_InterfaceSetting_Interface", "NAT_InterfaceSetting_Status",
                      "NAT_InterfaceSetting_X_QM_FullconeNATEnabled"});
}

TEST_F(Nat, DmzEnableAppliesOnlyWithAHost) {
    expect_stored({{kEnable, {}, "1", "nat.dmz01.enable", "on", CWMP_APPLY_NAT},
                   {kEnable, {}, "true", "nat.dmz01.enable", "off", CWMP_APPLY_NAT}});
    for (const char* address : {"127.0.0.1", "224.0.0.1", "0.1.2.3", "192.168.7", "x"}) {
        store("nat.dmz01.ipaddr", address);
        expect_stored({{kEnable, {}, "1", "nat.dmz01.enable", "on", 0}});
        EXPECT_EQ(get(kAddress).value, "") << address;
    }
    EXPECT_EQ(get(kEnable).value, "1");
    store("nat.dmz01.enable", "1");
    EXPECT_EQ(get(kEnable).value, "0");
    package("nat", "");
    forget();
    const Result result = get(kEnable);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.value, "0");
    EXPECT_THAT(console(), Contains(std::string(kEnable) + ": failed to find dmz config\n"));
    EXPECT_EQ(get(kAddress).value, "");
    ::unlink("/etc/config/nat");
    EXPECT_THAT(refused(kEnable, "1"), ElementsAre(std::string(kEnable) + ": failed to set dmz enable\n"));
}

TEST_F(Nat, DmzHostIsAHostOfTheLan) {
    expect_stored({{kAddress, {}, "192.168.7.20", "nat.dmz01.ipaddr", "192.168.7.20", 0}});
    store("nat.dmz01.enable", "on");
    expect_stored({{kAddress, {}, "192.168.7.21", "nat.dmz01.ipaddr", "192.168.7.21", CWMP_APPLY_NAT}});
    EXPECT_EQ(get(kAddress).value, "192.168.7.21");
    for (const char* value :
         {"192.168.7.1", "192.168.007.001", "192.168.7.0", "192.168.7.255", "192.168.8.20", "127.0.0.1",
          "224.0.0.1", "192.168.7", "192.168.7.20;reboot", "", "%s%n"}) {
        EXPECT_THAT(refused(kAddress, value), IsEmpty());
        EXPECT_EQ(option("nat.dmz01.ipaddr"), "192.168.7.21");
    }
    // The mask decides, not the class of the address.
    store("network.lan.netmask", "255.255.0.0");
    expect_stored({{kAddress, {}, "192.168.8.20", "nat.dmz01.ipaddr", "192.168.8.20", CWMP_APPLY_NAT}});
}

TEST_F(Nat, WhatADmzAddressNeeds) {
    const std::string name = std::string(kAddress) + ": ";
    package("network", "config interface 'lan'\n\toption ipaddr '192.168.7.1'\n");
    EXPECT_THAT(refused(kAddress, "192.168.7.20"), ElementsAre(name + "failed to get lan mask\n"));
    package("network", "config interface 'lan'\n\toption netmask '255.255.255.0'\n");
    EXPECT_THAT(refused(kAddress, "192.168.7.20"), ElementsAre(name + "failed to get lan ip\n"));
    store("network.lan.ipaddr", "192.168.7.1");
    package("nat", "config dmz 'dmz01'\n");
    EXPECT_THAT(refused(kAddress, "192.168.7.20"), ElementsAre(name + "failed to get dmz config\n"));
    EXPECT_EQ(option("nat.dmz01.ipaddr"), "192.168.7.20");
    ::unlink("/etc/config/nat");
    EXPECT_THAT(refused(kAddress, "192.168.7.20"), ElementsAre(name + "failed to set dmz ipaddr\n"));
}

}  // namespace
