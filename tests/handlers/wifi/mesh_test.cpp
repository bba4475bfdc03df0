#include <unistd.h>

#include "wireless_router.h"

namespace {

#define DEVICE(name) "WiFi_MultiAP_APDevice_" name
#define HOST(name) "X_QM_MeshFeature_Host_" name
#define FEATURE(name) "X_QM_MeshFeature_" name
#define SATELLITE(name) "X_QM_RE_MAPPING_" name

constexpr const char* kScript = "lua /usr/bin/tr069/check_params ";

class Mesh : public WirelessRouter {
  protected:
    void SetUp() override {
        WirelessRouter::SetUp();
        file("/usr/bin/tr069/check_params", "");  // takes every action and changes nothing
        package(
            "meshinfo",
            "config mesh 'info'\n\toption count '4'\n"
            "config mesh '1'\n\toption role 'master'\n\toption deviceid 'id-1'\n\toption parent_mac 'aa-bb'\n"
            "\toption mac '0a-0b-0c-00-00-01'\n\toption connection_type 'eth'\n\toption fw_version 'v1'\n"
            "\toption bssid_2g 'b2'\n\toption bssid_5g 'b5'\n\toption wps_status 'running'\n"
            "config mesh '2'\n\toption role 'slave'\n\toption deviceid 'id-2'\n\toption connection_type "
            "'band6'\n"
            "\toption parent_mac '0a-0b-0c-00-00-01'\n\toption wps_status 'idle'\n"
            "config mesh '3'\n\toption connection_type 'eth'\n"
            "config mesh '4'\n\toption connection_type 'band60'\n\toption deviceid 'x\"; touch /tmp/owned; "
            "\"'\n",
            kScratch);
        package("hosts_client",
                "config c 'info'\n\toption count '4'\n"
                "config c '1'\n\toption LinkDeviceId 'id-1'\n\toption connection_type 'band5'\n\toption mac "
                "'m1'\n"
                "config c '2'\n\toption LinkDeviceId 'id-2'\n\toption connection_type 'band5'\n\toption mac "
                "'m2'\n"
                "config c '3'\n\toption LinkDeviceId 'id-1'\n\toption connection_type 'band2_4'\n\toption "
                "mac 'm3'\n"
                "config c '4'\n\toption LinkDeviceId 'id-1'\n\toption connection_type 'band5'\n\toption mac "
                "'m4'\n"
                "\toption down_speed '400'\n\toption up_speed '200'\n",
                kScratch);
        forget();
    }
    void expect_script(const char* handler, const std::string& value, const Texts& actions, int code = 0) {
        SCOPED_TRACE(std::string(handler) + " = " + value);
        forget();
        const Result result = set(handler, {1}, value);
        EXPECT_EQ(result.code, code);
        EXPECT_EQ(result.flags, 0u);
        Texts expected;
        for (const auto& action : actions) expected.push_back(kScript + action);
        EXPECT_EQ(commands(), expected);
    }
};

TEST_F(Mesh, DevicesAreRowsOfTheTable) {
    expect_answers({{DEVICE("MACAddress"), {1}, "0a-0b-0c-00-00-01"},
                    {DEVICE("MACAddress"), {2}, "FF:FF:FF:FF:FF:FF"},
                    {DEVICE("SoftwareVersion"), {1}, "v1"},
                    {DEVICE("SoftwareVersion"), {9}, ""},
                    {DEVICE("BackhaulLinkType"), {1}, "Ethernet"},
                    {DEVICE("BackhaulLinkType"), {2}, "Wi-Fi"},
                    {DEVICE("BackhaulLinkType"), {9}, "None"},
                    {DEVICE("BackhaulMACAddress"), {1}, "FF:FF:FF:FF:FF:FF"},
                    {DEVICE("BackhaulMACAddress"), {2}, "0a-0b-0c-00-00-01"},
                    {DEVICE("BackhaulMACAddress"), {3}, "FF:FF:FF:FF:FF:FF"},
                    {DEVICE("RadioNumberOfEntries"), {1}, "2"},
                    {DEVICE("RadioNumberOfEntries"), {2}, "2"},
                    {DEVICE("RadioNumberOfEntries"), {3}, "0"},
                    {DEVICE("RadioNumberOfEntries"), {9}, "0"},
                    {DEVICE("Radio_APNumberOfEntries"), {1, 2}, "2"},
                    {DEVICE("Radio_APNumberOfEntries"), {3, 1}, "0"},
                    {DEVICE("Radio_MACAddress"), {1, 1}, "b2"},
                    {DEVICE("Radio_AP_BSSID"), {1, 2, 1}, "b5"},
                    {DEVICE("Radio_MACAddress"), {2, 1}, ""},
                    {DEVICE("Radio_OperatingFrequencyBand"), {1, 1}, "2.4GHz"},
                    {DEVICE("Radio_OperatingFrequencyBand"), {1, 2}, "5GHz"},
                    {DEVICE("Radio_AP_SSID"), {2, 1, 1}, "main"},
                    {DEVICE("Radio_AP_AssociatedDeviceNumberOfEntries"), {1, 2, 1}, "2"},
                    {DEVICE("Radio_AP_AssociatedDeviceNumberOfEntries"), {1, 1, 1}, "1"},
                    {DEVICE("Radio_AP_AssociatedDeviceNumberOfEntries"), {3, 1, 1}, "0"},
                    {DEVICE("Radio_AP_AssociatedDevice_MACAddress"), {1, 2, 1, 2}, "m4"},
                    {DEVICE("Radio_AP_AssociatedDevice_MACAddress"), {2, 2, 1, 1}, "m2"},
                    {DEVICE("Radio_AP_AssociatedDevice_LastDataDownlinkRate"), {1, 2, 1, 2}, "400"},
                    {DEVICE("Radio_AP_AssociatedDevice_LastDataUplinkRate"), {1, 2, 1, 2}, "200"},
                    {DEVICE("Radio_AP_AssociatedDevice_LastDataUplinkRate"), {1, 2, 1, 1}, ""}});
    const std::vector<std::pair<const char*, Locate>> wrong = {
        {DEVICE("MACAddress"), {0}},
        {DEVICE("BackhaulLinkType"), {-1}},
        {DEVICE("Radio_MACAddress"), {1, 3}},
        {DEVICE("Radio_Channel"), {1, 0}},
        {DEVICE("Radio_AP_AssociatedDevice_MACAddress"), {1, 1, 1, 0}},
        {SATELLITE("X_QM_ReMac"), {0}},
        {HOST("WPS_Enable"), {0}}};
    for (const auto& [handler, locate] : wrong) {
        forget();
        EXPECT_EQ(get(handler, locate).code, -1) << handler;
        EXPECT_THAT(events_of(handler), ElementsAre("locate error\n")) << handler;
    }
    for (const Locate& beyond :
         {Locate{1, 2, 1, 3}, Locate{1, 1, 1, 2}, Locate{9, 1, 1, 1}, Locate{1, 1, 1, 2147483647}}) {
        forget();
        EXPECT_EQ(get(DEVICE("Radio_AP_AssociatedDevice_MACAddress"), beyond).code, -1);
        EXPECT_THAT(events_of(DEVICE("Radio_AP_AssociatedDevice_MACAddress")),
                    ElementsAre("locate[3] is wrong\n"));
    }
    expect_read_only(
        {"WiFi_MultiAP_APDeviceNumberOfEntries", DEVICE("MACAddress"), DEVICE("SoftwareVersion"),
         DEVICE("BackhaulLinkType"), DEVICE("BackhaulMACAddress"), DEVICE("RadioNumberOfEntries"),
         DEVICE("Radio_APNumberOfEntries"), DEVICE("Radio_MACAddress"), DEVICE("Radio_AP_BSSID"),
         DEVICE("Radio_Channel"), DEVICE("Radio_OperatingFrequencyBand"), DEVICE("Radio_AP_SSID"),
         DEVICE("Radio_AP_AssociatedDeviceNumberOfEntries"), DEVICE("Radio_AP_AssociatedDevice_MACAddress")});
}

TEST_F(Mesh, TableMayBeOfAnySizeOrShape) {
    for (const int size : {0, 1, 50}) {
        std::string text = "config mesh 'info'\n\toption count '" + std::to_string(size) + "'\n";
        for (int row = 1; row <= size; ++row)
            text +=
                "config mesh '" + std::to_string(row) + "'\n\toption mac 'm" + std::to_string(row) + "'\n";
        package("meshinfo", text, kScratch);
        expect_answers({{"WiFi_MultiAP_APDeviceNumberOfEntries", {}, std::to_string(size)},
                        {"X_QM_MeshFeature_HostNumberOfEntries", {}, std::to_string(size)}});
        if (size > 0) expect_answers({{DEVICE("MACAddress"), {size}, "m" + std::to_string(size)}});
        expect_answers({{DEVICE("MACAddress"), {size + 1}, "FF:FF:FF:FF:FF:FF"}});
    }
    for (const char* malformed : {"config mesh 'info'\n", "config mesh 'info\n\toption count '2",
                                  "\x80\xff\n", "config mesh 'info'\n\tlist count '2'\n"}) {
        for (const char* name : {"meshinfo", "meshinfo_slave", "hosts_client"})
            package(name, malformed, kScratch);
        expect_answers({{"WiFi_MultiAP_APDeviceNumberOfEntries", {}, "0"},
                        {"X_QM_RE_MAPPINGNumberOfEntries", {}, "0"},
                        {DEVICE("BackhaulLinkType"), {1}, "None"},
                        {HOST("HostName"), {1}, " "},
                        {HOST("Uptime"), {1}, ""},
                        {DEVICE("Radio_AP_AssociatedDeviceNumberOfEntries"), {1, 1, 1}, "0"},
                        {SATELLITE("Status_Active"), {1}, ""},
                        {HOST("WPS_Enable"), {1}, "0"}});
    }
    // A satellite that left between two reads.
    package("hosts_client", "config c 'info'\n\toption count '9'\n", kScratch);
    EXPECT_EQ(get(DEVICE("Radio_AP_AssociatedDevice_MACAddress"), {1, 1, 1, 1}).code, -1);
}

TEST_F(Mesh, ChannelIsThatOfTheLocalRadio) {
    answer("iwlist radio5 channel", "          Current Frequency:5.22 GHz (Channel 44)\n");
    expect_answers({{DEVICE("Radio_Channel"), {2, 2}, "44"}, {DEVICE("Radio_Channel"), {2, 1}, ""}});
    EXPECT_THAT(commands(),
                Contains("iwlist radio5 channel | grep Current | awk ' {print $5}' | sed 's/)//g'"));
    profile("interfaceinfo.cpe_type", "mtk");
    expect_answers({{DEVICE("Radio_Channel"), {2, 2}, "44"}});
    profile("interfaceinfo.cpe_type", "bcm");
    forget();
    expect_answers({{DEVICE("Radio_Channel"), {1, 1}, ""}});
    EXPECT_THAT(commands(), ElementsAre(" wl -i radio2 status | grep 'Primary channel' | awk '{ print $3}'"));
    answer("wl -i radio2 status",
           "SSID: \"Home\"\nMode: Managed\tRSSI: 0 dBm\tSNR: 0 dB\tChannel: 6\n"
           "Chanspec: 2.4GHz channel 6 20MHz (0x1006)\nPrimary channel: 6\nHT Capabilities:\n");
    expect_answers({{DEVICE("Radio_Channel"), {1, 1}, "6"}, {DEVICE("Radio_Channel"), {1, 2}, ""}});
}

TEST_F(Mesh, HostsShowTheirOptions) {
    const std::vector<std::pair<const char*, const char*>> fields = {
        {HOST("WPS_Remaining_Time"), "remaing_time"},
        {HOST("WPS_Client_Accessed"), "client_accessed"},
        {HOST("HostName"), "nickname"},
        {HOST("HostStatus"), "status"},
        {HOST("SoftwareVersion"), "fw_version"},
        {HOST("Role"), "role"},
        {HOST("DeviceModel"), "device_model"},
        {HOST("Uptime"), "uptime"},
        {HOST("Connection_type"), "connection_type"},
        {HOST("Wireless_iface_Rssi"), "backhaul_rssi"},
        {HOST("Inet_status"), "inet_status"}};
    for (const auto& [handler, field] : fields) {
        expect_answers({{handler, {9}, std::string(handler) == HOST("Uptime") ? "" : " "}});
        store(std::string("meshinfo.2.") + field, std::string("it is ") + field, kScratch);
        expect_answers({{handler, {2}, std::string("it is ") + field}});
        expect_read_only({handler});
    }
    expect_answers({{HOST("HostAddress"), {1}, "0A:0B:0C:00:00:01"},
                    {HOST("Parent_Mac"), {1}, "AA:BB"},
                    {HOST("Parent_Mac"), {3}, " "}});
    forget();
    EXPECT_EQ(get(HOST("HostName"), {0}).code, -1);
    EXPECT_THAT(console(), ElementsAre("get_meshfeature_info: locate error\n"));
}

TEST_F(Mesh, WpsIsAskedOfTheScript) {
    for (const char* handler :
         {HOST("WPS_Enable"), "LANDevice_WLANConfiguration_WPS_Enable", "WiFi_AccessPoint_WPS_Enable"}) {
        forget();
        expect_answers({{handler, {1}, "1"}, {handler, {2}, "0"}, {handler, {9}, "0"}});
        EXPECT_THAT(commands(), Contains(kScript + std::string("wps_status")).Times(3));
        expect_script(handler, "1", {"wps_enable \"id-1\" \"1\""});
        expect_script(handler, "0", {"wps_enable \"id-1\" \"0\""});
        for (const char* wrong : {"", "2", "1\"; touch /tmp/owned; \""})
            expect_script(handler, wrong, {}, -1);
    }
    forget();
    EXPECT_EQ(set(HOST("WPS_Enable"), {3}, "1").code, -1) << "no id";
    EXPECT_EQ(set(HOST("WPS_Enable"), {4}, "1").code, -1) << "an id that is none";
    store("meshinfo.1.deviceid", std::string(480, 'x'), kScratch);
    EXPECT_EQ(set(HOST("WPS_Enable"), {1}, "1").code, -1) << "an id that no command holds";
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_FALSE(exists("/tmp/owned"));
    store("meshinfo.1.deviceid", "aZ09-_:.", kScratch);
    expect_script(HOST("WPS_Enable"), "1", {"wps_enable \"aZ09-_:.\" \"1\""});
}

TEST_F(Mesh, ActionsRunWhenTheyChangeSomething) {
    expect_script(FEATURE("Reboot_AP_Extender"), "1", {"reboot_re"});
    expect_script(FEATURE("Reboot_AP_Extender"), "0", {});
    for (const char* count : {"0", "1", ""}) {
        store("meshinfo.info.count", count, kScratch);
        expect_script(FEATURE("Reboot_AP_Extender"), "1", {});
    }
    expect_answers({{FEATURE("Reboot_AP_Extender"), {}, "0"}, {FEATURE("LED_Status"), {}, "0"}});
    expect_script(FEATURE("LED_Status"), "0", {"led_set off"});
    store("leds.settings.enable", "on");
    expect_answers({{FEATURE("LED_Status"), {}, "1"}});
    expect_script(FEATURE("LED_Status"), "1", {});
    expect_script(FEATURE("LED_Status"), "0", {"led_set off"});
    store("leds.settings.enable", "off");
    expect_answers({{FEATURE("LED_Status"), {}, "0"}});
    expect_script(FEATURE("LED_Status"), "0", {});
    expect_script(FEATURE("LED_Status"), "1", {"led_set on"});
    expect_script(FEATURE("LED_Status"), "on", {}, -1);

    const char* bound = "X_QM_Onboarding_Enable";
    for (const char* state : {"", "0", "x", "11"}) {
        file("/tmp/is_binded", state);
        expect_answers({{bound, {}, "0"}});
        expect_script(bound, "1", {"fap_enable"});
    }
    file("/tmp/is_binded", " 1\n");
    expect_answers({{bound, {}, "1"}});
    expect_script(bound, "1", {});
    expect_script(bound, "0", {}, -1);
}

TEST_F(Mesh, OperationModeFollowsTheLiveStore) {
    const char* enable = FEATURE("Sysmode_Router_Enable");
    expect_answers(
        {{enable, {}, "0"}, {"X_QM_MultiMode_Mode", {}, ""}, {FEATURE("Sysmode_status"), {}, "AP"}});
    EXPECT_EQ(set(enable, {}, "1").code, -1);
    struct Row {
        const char *mode, *answer, *value;
        int code;
        Texts commands;
    };
    const std::string tail = "\"}}' | opcli -o 0x40A1 >/dev/null 2>&1 &";
    const std::string head = "echo '{\"params\":{\"mode\":\"";
    for (const Row& row : std::vector<Row>{{"Router", "1", "0", 0, {head + "AP" + tail}},
                                           {"Router", "1", "1", 0, {}},
                                           {"Router", "1", "x", 0, {}},
                                           {"AP", "0", "1", 0, {head + "Router" + tail}},
                                           {"AP", "0", "0", 0, {}},
                                           {"Repeater", kUntouched, "1", -1, {}}}) {
        store("sysmode.sysmode.mode", row.mode);
        store("sysmode.sysmode.mode", "Scratch", kScratch);
        expect_answers({{enable, {}, row.answer},
                        {"X_QM_MultiMode_Mode", {}, row.mode},
                        {FEATURE("Sysmode_status"), {}, "Scratch"}});
        forget();
        const Result result = set(enable, {}, row.value);
        EXPECT_EQ(result.code, row.code) << row.mode << row.value;
        EXPECT_EQ(result.flags, 0u);
        EXPECT_EQ(commands(), row.commands);
    }
    store("repacd.repacd.Role", "CAP");
    expect_answers({{"X_QM_MESH_WIFI_WorkMode", {}, "CAP"}, {"X_QM_MESH_WIFI_NrdEnable", {}, "1"}});
    expect_read_only({"X_QM_MESH_WIFI_WorkMode", "X_QM_MESH_WIFI_NrdEnable", "X_QM_MultiMode_Mode",
                      FEATURE("Sysmode_status"), "X_QM_RE_MAPPINGNumberOfEntries"});
}

TEST_F(Mesh, RoamingIsReappliedBeamformingIsNot) {
    expect_answers({{FEATURE("Beamforming"), {}, "0"}, {FEATURE("FastRoaming"), {}, "0"}});
    expect_stored({{FEATURE("Beamforming"), {}, "1", "wifi.ap.beamforming", "1", 0},
                   {FEATURE("FastRoaming"), {}, "1", "wifi.ap.ieee80211r", "1", kWireless}});
    expect_answers({{FEATURE("Beamforming"), {}, "1"}, {FEATURE("FastRoaming"), {}, "1"}});
    expect_stored({{FEATURE("FastRoaming"), {}, "0", "wifi.ap.ieee80211r", "0", kWireless}});
    expect_refused({{FEATURE("Beamforming"), {}, "on", ""}, {FEATURE("FastRoaming"), {}, "2", ""}});
    store("wifi.ap.beamforming", "yes");
    expect_answers({{FEATURE("Beamforming"), {}, "0"}});
}

TEST_F(Mesh, SatellitesShowTheirLink) {
    const std::vector<std::pair<const char*, const char*>> fields = {
        {SATELLITE("X_QM_DevName"), "device_model"},
        {SATELLITE("X_QM_ReMac"), "mac"},
        {SATELLITE("Status_ConnDevMac"), "parent_mac"},
        {SATELLITE("Status_ConnWlMac24g"), "bssid_sta_2g"},
        {SATELLITE("Status_ConnWlMac5g"), "bssid_sta_5g"},
        {SATELLITE("Status_ConnWlQuality24g"), "signal_level_2g"},
        {SATELLITE("Status_ConnWlQuality5g"), "signal_level_5g"}};
    package("meshinfo_slave", "config s 'info'\n\toption total '1'\nconfig s '1'\n", kScratch);
    for (const auto& [handler, field] : fields) {
        expect_answers({{handler, {1}, ""}});
        store(std::string("meshinfo_slave.1.") + field, field, kScratch);
        expect_answers({{handler, {1}, field}, {handler, {2}, ""}});
        expect_read_only({handler});
    }
    expect_answers({{"X_QM_RE_MAPPINGNumberOfEntries", {}, "1"}});
    for (const auto& [stored, shown] : std::vector<std::pair<const char*, const char*>>{
             {"connected", "1"}, {"disconnected", "0"}, {"joining", "joining"}}) {
        store("meshinfo_slave.1.group_status", stored, kScratch);
        expect_answers({{SATELLITE("Status_Active"), {1}, shown}});
    }
    const Texts figures = {"ConnWlTxRate24g", "ConnWlTxRate5g", "ConnWlRssi24g", "ConnWlRssi5g"};
    const auto expect_figures = [&](const Texts& values) {
        forget();
        for (std::size_t i = 0; i < figures.size(); ++i)
            expect_answers({{(SATELLITE("Status_") + figures[i]).c_str(), {1}, values[i]}});
    };
    for (const char* none : {"", "$(touch /tmp/owned)", "x; touch /tmp/owned", "-f/etc/passwd"}) {
        store("meshinfo_slave.1.bssid_2g", none, kScratch);
        store("meshinfo_slave.1.bssid_5g", none, kScratch);
        expect_figures({"", "", "", ""});
        EXPECT_THAT(commands(), IsEmpty());
    }
    store("meshinfo_slave.1.bssid_2g", "00:00:5E:00:53:21", kScratch);
    store("meshinfo_slave.1.bssid_5g", "00:00:5E:00:53:22", kScratch);
    answer("wlanconfig ath02 list",
           "ADDR AID CHAN TXRATE RXRATE RSSI\n00:00:5e:00:53:21 1 6 286M 229M 38 31\n");
    answer("wlanconfig ath12 list",
           "00:00:5e:00:53:99 1 44 1M 960M 99 36\n00:00:5e:00:53:22 1 44 1201M 960M 41 36\n");
    expect_figures({"286", "1201", "38", "41"});
    EXPECT_THAT(commands(),
                Contains("wlanconfig ath02 list | grep -i 00:00:5E:00:53:21 | awk  -F ' ' '{print $4}' "));
    EXPECT_THAT(commands(),
                Contains("wlanconfig ath12 list | grep -i 00:00:5E:00:53:22 | awk  -F ' ' '{print $6}' "));
    answer("wlanconfig ath02 list", "00:00:5e:00:53:21 1 6\n");
    answer("wlanconfig ath12 list", "\x80 00:00:5e:00:53:22 x M-1 x -41\n");
    expect_figures({"", "", "", ""});
}

}  // namespace
