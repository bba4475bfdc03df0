// The LAN bridge and the internet VLAN.
#include "lan_test.h"

namespace {

class Bridging : public LanTest {
  protected:
    void SetUp() override {
        LanTest::SetUp();
        store("iptv.Custom.internet_vid", "10");
        store("network.vlan.enable", "0");
    }
};

TEST_F(Bridging, ReadsStoreAndFixedTables) {
    expect_answers({
        {"Layer2Bridging_Bridge_VLAN_VLANID", {1, 1}, "10"},
        {"Bridging_Bridge_VLAN_VLANID", {1, 1}, "10"},
        {"Layer2Bridging_Bridge_VLAN_VLANEnable", {1, 1}, "0"},
        {"Bridging_Bridge_VLAN_VLANEnable", {1, 1}, "0"},
        {"Bridging_BridgeNumberOfEntries", {}, "1"},
        {"Bridging_Bridge_VLANNumberOfEntries", {1}, "1"},
        {"Bridging_Bridge_PortNumberOfEntries", {1}, "6"},
        {"Bridging_Bridge_Port_ManagementPort", {1, 1}, "1"},
        {"Bridging_Bridge_Port_ManagementPort", {1, 2}, "0"},
        {"Bridging_Bridge_Port_ManagementPort", {1, 6}, "0"},
        {"Bridging_Bridge_Port_LowerLayers",
         {1, 1},
         "Device.Bridging.Bridge.1.Port.2.,Device.Bridging.Bridge.1.Port.3.,Device.Bridging.Bridge.1.Port.4.,"
         "Device.Bridging.Bridge.1.Port.5.,Device.Bridging.Bridge.1.Port.6.,Device.Bridging.Bridge.1.Port.7.,"
         "Device.Bridging.Bridge.1.Port.8."},
        {"Bridging_Bridge_Port_LowerLayers", {1, 2}, kUntouched},
        {"Bridging_Bridge_Port_LowerLayers", {2, 1}, kUntouched},
    });
    for (const Locate locate : {Locate{1, 0}, {1, 7}, {2, 1}, {0, 1}, {1, -1}}) {
        EXPECT_EQ(get("Bridging_Bridge_Port_ManagementPort", locate).code, -1);
    }
    package("iptv", "");
    package("network", "");
    EXPECT_EQ(get("Bridging_Bridge_VLAN_VLANID").code, -1);
    EXPECT_EQ(get("Bridging_Bridge_VLAN_VLANEnable").code, -1);
    EXPECT_THAT(events_of("Layer2Bridging_Bridge_VLAN_VLANEnable"), ElementsAre(" get VLANEnable error\n\n"));
}

TEST_F(Bridging, FixedValuesTakeWritesWithoutEffect) {
    for (const char* name : {"Bridging_BridgeNumberOfEntries", "Bridging_Bridge_VLANNumberOfEntries",
                             "Bridging_Bridge_PortNumberOfEntries", "Bridging_Bridge_Port_ManagementPort"}) {
        EXPECT_EQ(call(handler(name), CWMP_OP_APPLY, nullptr, nullptr, nullptr), 0) << name;
    }
    expect_read_only({"Bridging_Bridge_Port_LowerLayers"});
}

TEST_F(Bridging, TheInternetVlanPushesTheOthersAside) {
    const struct {
        const char* phone;
        const char* iptv;
        const char* identifier;
        const char* phone_after;
        const char* iptv_after;
    } rows[] = {
        {"20", "30", "2", "20", "30"},  {"100", "30", "100", "21", "30"},
        {"0", "0", "4094", "20", "30"}, {nullptr, nullptr, "20", "20", "30"},
        {"20", "40", "40", "20", "31"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.identifier);
        package("iptv", "");
        store("iptv.Custom.mode", "Bridge");
        if (row.phone != nullptr) store("iptv.Custom.ipphone_vid", row.phone);
        if (row.iptv != nullptr) store("iptv.Custom.iptv_vid", row.iptv);
        const auto result = set("Bridging_Bridge_VLAN_VLANID", {1, 1}, row.identifier);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.flags, 0x40);
        EXPECT_EQ(option("iptv.Custom.mode"), "Custom");
        EXPECT_EQ(option("iptv.Custom.internet_vid"), row.identifier);
        EXPECT_EQ(option("iptv.Custom.ipphone_vid"), row.phone_after);
        EXPECT_EQ(option("iptv.Custom.iptv_vid"), row.iptv_after);
    }
}

TEST_F(Bridging, ARefusedIdentifierLeavesTheModeSwitched) {
    for (const char* identifier : {"1", "4095", "", "-2", "a"}) {
        store("iptv.Custom.mode", "Bridge");
        const auto result = set("Layer2Bridging_Bridge_VLAN_VLANID", {1, 1}, identifier, CWMP_OP_STAGE);
        EXPECT_EQ(result.code, -1) << identifier;
        EXPECT_EQ(result.flags, 0) << identifier;
        EXPECT_EQ(option("iptv.Custom.mode"), "Custom") << identifier;
        EXPECT_EQ(option("iptv.Custom.internet_vid"), "10") << identifier;
    }
    EXPECT_EQ(set_null("Layer2Bridging_Bridge_VLAN_VLANID"), -1);
    package("iptv", "config broken 'x");
    EXPECT_EQ(set("Layer2Bridging_Bridge_VLAN_VLANID", {1, 1}, "20").code, -1);
}

TEST_F(Bridging, TheSwitchGoesThroughItsGroup) {
    unsigned flags = 0;
    for (const char* name : {"Layer2Bridging_Bridge_VLAN_VLANEnable", "Bridging_Bridge_VLAN_VLANEnable"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(set(name, {1, 1}, "1", CWMP_OP_STAGE).code, 0);
        EXPECT_EQ(set(name, {1, 1}, "1", CWMP_OP_CHECK).code, 0);
        EXPECT_EQ(option("network.vlan.enable"), "0");
        EXPECT_EQ(set(name, {1, 1}, "1", CWMP_OP_APPLY).flags, 0x10);
        EXPECT_EQ(option("network.vlan.enable"), "1");
        call(handler("func_obj_revert"), CWMP_OP_APPLY, nullptr, nullptr, &flags);
        EXPECT_EQ(option("network.vlan.enable"), "0");
    }
    answer("check_params vlan_whole", R"({"error_code":1})");
    EXPECT_THAT(set_in_passes("Bridging_Bridge_VLAN_VLANEnable", {1, 1}, "1"), ElementsAre(0, 0, -1));
    EXPECT_EQ(set("Bridging_Bridge_VLAN_VLANEnable", {1, 1}, "1", CWMP_OP_LIST).code, 0);
    EXPECT_EQ(set_null("Bridging_Bridge_VLAN_VLANEnable", {}, CWMP_OP_STAGE), -1);
    EXPECT_EQ(set_null("Bridging_Bridge_VLAN_VLANEnable"), 0) << "an apply takes no value";
}

}  // namespace
