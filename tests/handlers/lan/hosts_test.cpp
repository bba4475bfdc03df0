// The table of LAN clients in both data models.
#include <climits>

#include "cwmp/lan.h"
#include "lan_test.h"

namespace {

class Hosts : public LanTest {
  protected:
    void SetUp() override {
        LanTest::SetUp();
        package("hosts", R"uci(
config hosts info
	option count 4
config host 4
	option lay2if ath1
	option LinkDeviceId mesh-3
	option iftype '802.11'
config host 1
	option hostname "tele\'vision %s%n $(reboot)"
	option ip 192.168.0.20
	option mac aa-bb-cc-dd-ee-ff
	option addresssource Static
	option lease_time 300
	option iftype Ethernet
	option lay2if eth1
	option active 1
	option LinkDeviceId mesh-2
config host 2
	option lay2if ath1
	option iftype '802.11'
	option LinkDeviceId mesh-9
config host 3
	option lay2if guest24
	option iftype USB
config host 6
	option lay2if ath1
	option iftype '802.11'
)uci",
                kScratch);
        package("meshinfo", R"uci(
config meshinfo info
	option count 2
config mesh 1
	option deviceid mesh-1
	option mac 00-00-5e-00-53-01
config mesh 2
	option deviceid mesh-2
	option mac 00-00-5e-00-53-0b
config mesh 3
	option deviceid mesh-3
	option mac 00-00-5e-00-53-03
)uci",
                kScratch);
        profile("interfaceinfo.guest_2_4G", "guest24");
    }
};

TEST_F(Hosts, AnswerTheFieldsOfTheTable) {
    const std::string name = "tele'vision %s%n $(reboot)";
    for (const Locate locate : {Locate{1, 0}, {1, 1}}) {
        expect_answers({
            {"LANDevice_Hosts_Host_IPAddress", locate, "192.168.0.20"},
            {"LANDevice_Hosts_Host_AddressSource", locate, "Static"},
            {"LANDevice_Hosts_Host_LeaseTimeRemaining", locate, "300"},
            {"LANDevice_Hosts_Host_MACAddress", locate, "AA:BB:CC:DD:EE:FF"},
            {"LANDevice_Hosts_Host_HostName", locate, name},
            {"LANDevice_Hosts_Host_InterfaceType", locate, "Ethernet"},
            {"LANDevice_Hosts_Host_Active", locate, "1"},
            {"Hosts_Host_IPAddress", locate, "192.168.0.20"},
            {"Hosts_Host_AddressSource", locate, "Static"},
            {"Hosts_Host_LeaseTimeRemaining", locate, "300"},
            {"Hosts_Host_PhysAddress", locate, "AA:BB:CC:DD:EE:FF"},
            {"Hosts_Host_HostName", locate, name},
            {"Hosts_Host_InterfaceType", locate, "Ethernet"},
            {"Hosts_Host_Active", locate, "1"},
        });
    }
    expect_answers({
        {"LANDevice_Hosts_HostNumberOfEntries", {1}, "4"},
        {"Hosts_HostNumberOfEntries", {}, "4"},
        {"LANDevice_Hosts_Host_InterfaceType", {1, 2}, "Wi-Fi"},
        {"LANDevice_Hosts_Host_InterfaceType", {3, 0}, "Other"},
        {"LANDevice_Hosts_Host_Layer2Interface", {1, 3}, "Enthernet.Interface.1"},
        {"LANDevice_Hosts_Host_Layer2Interface", {2}, "WIFI 5G"},
        {"LANDevice_Hosts_Host_Layer2Interface", {3}, "Enthernet.Interface.1"},
        {"LANDevice_Hosts_Host_Layer2Interface", {5}, ""},
        {"Hosts_Host_Layer1Interface", {1}, "Ethernet"},
        {"Hosts_Host_Layer1Interface", {2, 1}, "802.11"},
        {"Hosts_Host_Layer1Interface", {3}, "USB"},
        {"Hosts_Host_Layer1Interface", {5}, ""},
    });
    store("hosts.2.lay2if", "ath0", kScratch);
    store("hosts.3.iftype", "Bluetooth", kScratch);
    store("hosts.info.count", "many", kScratch);
    expect_answers({{"LANDevice_Hosts_Host_Layer2Interface", {2}, "WIFI 2.4G"},
                    {"Hosts_Host_Layer1Interface", {3}, ""},
                    {"Hosts_HostNumberOfEntries", {}, "many"}});
}

TEST_F(Hosts, AnswerFallbacksForWhatIsMissing) {
    for (const int host : {5, 3, -1, INT_MAX}) {
        store("hosts.3.iftype", "", kScratch);
        expect_answers({{"Hosts_Host_IPAddress", {host}, ""},
                        {"Hosts_Host_AddressSource", {host}, "None"},
                        {"Hosts_Host_LeaseTimeRemaining", {host}, ""},
                        {"Hosts_Host_PhysAddress", {host}, ""},
                        {"Hosts_Host_HostName", {host}, "unkown"},
                        {"Hosts_Host_InterfaceType", {host}, "Other"},
                        {"Hosts_Host_Active", {host}, "unkown"}});
    }
    EXPECT_THAT(events_of("LANDevice_Hosts_Host_InfoGet"), Contains("uci get addresssource error \n\n"));
    package("hosts", "", kScratch);
    EXPECT_EQ(get("Hosts_HostNumberOfEntries").value, "0");
}

TEST_F(Hosts, RefuseMissingNumbersAndWrites) {
    forget();
    EXPECT_EQ(get("Hosts_Host_IPAddress", {0, 0}).code, -1);
    EXPECT_EQ(get("LANDevice_Hosts_Host_IPAddress", {0, 1}).code, -1);
    EXPECT_THAT(console(), IsEmpty());
    for (const char* name : {"LANDevice_Hosts_Host_Layer2Interface", "Hosts_Host_Layer1Interface"}) {
        SCOPED_TRACE(name);
        forget();
        EXPECT_EQ(get(name, {0, 1}).code, -1);
        EXPECT_EQ(set(name, {0, 1}, "x").code, -1);
        EXPECT_EQ(events_of(name), Texts(2, "locate error\n"));
        forget();
        const auto refused = set(name, {3, 1}, "x");
        EXPECT_EQ(refused.code, -1);
        EXPECT_THAT(console(), IsEmpty());
        EXPECT_EQ(refused.locate[0], 1);
        EXPECT_EQ(refused.locate[1], 3);
    }
    for (const char* name :
         {"LANDevice_Hosts_Host_IPAddress", "Hosts_Host_PhysAddress", "Hosts_Host_Active"}) {
        EXPECT_EQ(set(name, {1, 1}, "x").code, -1) << name;
    }
    expect_read_only({"LANDevice_Hosts_HostNumberOfEntries", "Hosts_HostNumberOfEntries",
                      "Hosts_Host_AssociatedDevice", "Hosts_Host_X_QM_DevphyAddress",
                      "Hosts_Host_X_QM_LanConnType"});
}

TEST_F(Hosts, TellHowTheyAreConnected) {
    // Section 6 lies beyond the count; mesh device 3 lies beyond its count.
    expect_answers({
        {"Hosts_Host_AssociatedDevice", {1}, ""},
        {"Hosts_Host_AssociatedDevice", {2}, "Device.WiFi.AccessPoint.3.AssociatedDevice.1"},
        {"Hosts_Host_AssociatedDevice", {3}, "Device.WiFi.AccessPoint.1.X_QM_MultiSSID.AssociatedDevice.1"},
        {"Hosts_Host_AssociatedDevice", {4}, "Device.WiFi.AccessPoint.3.AssociatedDevice.2"},
        {"Hosts_Host_AssociatedDevice", {6}, ""},
        {"Hosts_Host_AssociatedDevice", {INT_MAX}, ""},
        {"Hosts_Host_X_QM_DevphyAddress", {1}, "00:00:5E:00:53:0B"},
        {"Hosts_Host_X_QM_DevphyAddress", {2}, ""},
        {"Hosts_Host_X_QM_DevphyAddress", {3}, ""},
        {"Hosts_Host_X_QM_DevphyAddress", {4}, ""},
        {"Hosts_Host_X_QM_LanConnType", {1}, "Ethernet"},
        {"Hosts_Host_X_QM_LanConnType", {2}, "5GHz"},
        {"Hosts_Host_X_QM_LanConnType", {3}, "2.4GHz"},
        {"Hosts_Host_X_QM_LanConnType", {5}, ""},
        {"Hosts_Host_X_QM_LanConnType", {-1}, ""},
    });
    store("hosts.2.lay2if", "ath0", kScratch);
    store("hosts.3.lay2if", "ath11", kScratch);
    store("hosts.info.count", "2147483647", kScratch);
    expect_answers({
        {"Hosts_Host_AssociatedDevice", {2}, "Device.WiFi.AccessPoint.1.AssociatedDevice.1"},
        {"Hosts_Host_AssociatedDevice", {3}, "Device.WiFi.AccessPoint.2.X_QM_MultiSSID.AssociatedDevice.1"},
        {"Hosts_Host_AssociatedDevice", {6}, "Device.WiFi.AccessPoint.3.AssociatedDevice.2"},
        {"Hosts_Host_X_QM_LanConnType", {2}, "2.4GHz"},
        {"Hosts_Host_X_QM_LanConnType", {3}, "5GHz"},
    });
    store("hosts.info.count", "-7x", kScratch);
    expect_answers({{"Hosts_Host_AssociatedDevice", {2}, ""}});
    for (const char* name : {"Hosts_Host_AssociatedDevice", "Hosts_Host_X_QM_LanConnType"}) {
        EXPECT_EQ(get(name, {0}).code, -1) << name;
        EXPECT_THAT(events_of(name), ElementsAre("locate error\n"));
    }
    package("hosts", "config broken 'x", kScratch);
    expect_answers({{"Hosts_Host_AssociatedDevice", {2}, ""}, {"Hosts_Host_X_QM_DevphyAddress", {1}, ""}});
}

}  // namespace
