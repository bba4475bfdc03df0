#include <unistd.h>

#include "wireless_router.h"

namespace {

#define WLAN(name) "LANDevice_WLANConfiguration_" name
#define GUEST(name) "LANDevice_WLANConfiguration_MultiSSID_" name

using Networks = WirelessRouter;

TEST_F(Networks, AreNamedAfterTheirSection) {
    expect_answers({{WLAN("SSID"), {1, 2}, "main"},
                    {GUEST("SSID"), {}, "guests"},
                    {"WiFi_SSID_X_QM_MultiSSID_SSID", {1}, "guests"},
                    {"WiFi_SSID_SSID", {1}, "main"},
                    {"WiFi_SSID_SSID", {2}, "guests"},
                    {"WiFi_SSID_SSID", {3}, "main"},
                    {"WiFi_SSID_SSID", {4}, "guests"},
                    {"WiFi_SSID_SSID", {5}, ""},
                    {WLAN("BeaconType"), {}, "11i"},
                    {GUEST("BeaconType"), {}, "None"},
                    {GUEST("Status"), {}, "Up"},
                    {WLAN("X_QM_default_wifi_Enable"), {}, "1"},
                    {"WiFi_AccessPoint_SSIDAdvertisementEnabled", {2}, "1"}});
    expect_stored(
        {{WLAN("SSID"), {1, 2}, "a", "wifi.ap.ssid", "a", kWireless},
         {"WiFi_SSID_SSID", {3}, "b", "wifi.ap.ssid", "b", kWireless},
         {WLAN("BeaconType"), {}, "None", "wifi.ap.encryption", "0", kWireless},
         {WLAN("BeaconType"), {}, "11i", "wifi.ap.encryption", "1", kWireless},
         {GUEST("BeaconType"), {}, "11i", "wifi.guest.encryption", "1", kWireless},
         {WLAN("X_QM_default_wifi_Enable"), {}, "0", "wifi.default.enable", "0", kWireless},
         {"WiFi_AccessPoint_SSIDAdvertisementEnabled", {}, "0", "wifi.ap.hidessid", "1", kWireless},
         {"WiFi_AccessPoint_SSIDAdvertisementEnabled", {}, "x", "wifi.ap.hidessid", "0", kWireless}});
    EXPECT_EQ(option("wifi.guest.usr_set"), std::nullopt);
    expect_refused({{WLAN("BeaconType"), {}, "WPA", ""}, {GUEST("BeaconType"), {}, "Basic", ""}});
    expect_no_effect("WiFi_SSID_SSID", {5}, "nobody", kWireless);
}

TEST_F(Networks, MarkAGuestNameThatSomebodyChose) {
    for (const char* handler : {"WiFi_SSID_SSID", GUEST("SSID"), "WiFi_SSID_X_QM_MultiSSID_SSID"}) {
        store("wifi.guest.usr_set", "0");
        expect_stored({{handler, {4}, "chosen", "wifi.guest.ssid", "chosen", kWireless}});
        EXPECT_EQ(option("wifi.guest.usr_set"), "1") << handler;
    }
    expect_stored(
        {{GUEST("SSID"), {}, std::string(32, 'g'), "wifi.guest.ssid", std::string(32, 'g'), kWireless}});
    expect_refused({{GUEST("SSID"), {}, std::string(33, 'g'), ""}});
    EXPECT_EQ(set(GUEST("SSID"), {}, "").code, 0);
    EXPECT_EQ(option("wifi.guest.ssid"), std::nullopt);
}

TEST_F(Networks, SayWhatTheyCannotReadOrWrite) {
    package("wifi", "");
    const std::vector<std::pair<const char*, const char*>> unreadable = {
        {WLAN("SSID"), "get ssid error\n\n"},
        {GUEST("SSID"), "get ssid error\n\n"},
        {"WiFi_SSID_SSID", "get ssid error\n\n"},
        {"WiFi_AccessPoint_SSIDAdvertisementEnabled", "get hidessid error\n\n"},
        {"UPnP_Device_Enable", "get enable_upnp error\n\n"},
    };
    for (const auto& [handler, event] : unreadable) {
        forget();
        EXPECT_EQ(get(handler, {1, 1}).code, -1) << handler;
        EXPECT_THAT(events_of(handler), ElementsAre(event));
    }
    expect_answers({{WLAN("BeaconType"), {}, ""},
                    {GUEST("BeaconType"), {}, kUntouched},
                    {GUEST("Status"), {}, "Disabled"},
                    {WLAN("X_QM_default_wifi_Enable"), {}, ""}});
    for (const char* handler :
         {"WiFi_SSID_Status", "WiFi_AccessPoint_Status", "WiFi_SSID_Enable", "WiFi_Radio_Status"})
        EXPECT_EQ(get(handler, {1}).code, -1) << handler;
    unlink("/etc/config/wifi");
    const std::vector<RefusedRow> unwritten = {
        {WLAN("SSID"), {}, "x", "set ssid error\n\n"},
        {"WiFi_SSID_SSID", {2}, "x", "set ssid error\n\n"},
        {WLAN("X_QM_Password"), {1}, "12345678", "set password error\n\n"},
        {"WiFi_AccessPoint_SSIDAdvertisementEnabled", {}, "1", "set hidessid error\n\n"},
        {"UPnP_Device_Enable", {}, "1", "Set enable_upnp error\n\n"},
    };
    for (const auto& row : unwritten) {
        forget();
        EXPECT_EQ(set(row.handler, row.locate, row.value).code, -1) << row.handler;
        EXPECT_THAT(events_of(row.handler), ElementsAre(row.event));
    }
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_EQ(set(WLAN("BeaconType"), {}, "None").flags, kWireless);
}

// Section and band of the four numbers, and what a second switch of the same section does.
TEST_F(Networks, AreSwitchedByBand) {
    expect_answers({{WLAN("Enable"), {1}, "1"},
                    {WLAN("Enable"), {2}, "0"},
                    {WLAN("Enable"), {3}, "0"},
                    {"WiFi_SSID_Enable", {4}, "1"},
                    {"WiFi_AccessPoint_Enable", {3}, "0"},
                    {"WiFi_SSID_Status", {1}, "Up"},
                    {"WiFi_SSID_Status", {2}, "Down"},
                    {"WiFi_AccessPoint_Status", {3}, "Down"},
                    {"WiFi_AccessPoint_Status", {4}, "Up"},
                    {WLAN("Radio_Enable"), {1}, "1"},
                    {"WiFi_Radio_Enable", {2}, "0"},
                    {"WiFi_Radio_Status", {1}, "Up"},
                    {"WiFi_Radio_Status", {1, 2}, "Down"},
                    {GUEST("Enable"), {1, 1}, "0"},
                    {GUEST("Enable"), {1, 2}, "1"},
                    {"WiFi_Radio_X_QM_MultiSSID_Enable", {2}, "1"}});
    for (const char* handler : {WLAN("Enable"), "WiFi_SSID_Status"}) {
        for (const int number : {0, 5, -1, 2147483647}) EXPECT_EQ(get(handler, {number}).code, -1) << handler;
    }
    expect_refused({{WLAN("Enable"), {5}, "1", ""},
                    {WLAN("Radio_Enable"), {3}, "1", ""},
                    {GUEST("Enable"), {3, 1}, "1", ""},
                    {WLAN("Enable"), {1}, "true", WLAN("Enable") ": set wifi enable : true\n"},
                    {WLAN("Enable"), {1}, "0", WLAN("Enable") ": set wifi enable : 0\n"},
                    {"WiFi_Radio_Enable", {1}, "0", WLAN("Radio_Enable") ": set wifi enable : 0\n"}});
    EXPECT_EQ(option("wifi.default.enable"), "1");
    expect_stored({{WLAN("Enable"), {3}, "1", "wifi.ap.enable_5g", "1", kWireless},
                   {WLAN("Radio_Enable"), {1}, "0", "wifi.ap.enable_2g", "0", kWireless},
                   {WLAN("Enable"), {2}, "1", "wifi.guest.enable_2g", "1", kWireless}});
    EXPECT_EQ(option("wifi.ap.enable_5g"), "1");
    EXPECT_EQ(option("wifi.default.enable"), "0");
}

TEST_F(Networks, KeepTheMainNetworksLastBandButNotTheGuests) {
    for (const Locate locate : {Locate{2}, Locate{4}}) set(WLAN("Enable"), locate, "0");
    for (const char* name : {"enable", "enable_2g", "enable_5g"})
        EXPECT_EQ(option(std::string("wifi.guest.") + name), "0");
    expect_answers({{WLAN("Enable"), {2}, "0"}, {WLAN("Enable"), {4}, "0"}, {WLAN("Enable"), {1}, "1"}});
    store("wifi.guest.enable_2g", "1");
    store("wifi.default.enable", "1");
    expect_answers({{"WiFi_SSID_Status", {2}, "Down"}});
    // A network that is off is on nowhere, whatever its bands say.
    expect_stored({{GUEST("Enable"), {1, 2}, "1", "wifi.guest.enable_2g", "0", kWireless}});
    EXPECT_EQ(option("wifi.guest.enable"), "1");
    EXPECT_EQ(option("wifi.default.enable"), "1");
    expect_stored({{GUEST("Enable"), {2, 0}, "0", "wifi.guest.enable", "0", kWireless}});

    package("wifi", "config wifi 'ap'\n\toption enable '1'\nconfig wifi 'guest'\n");
    expect_answers({{WLAN("Enable"), {1}, "1"}, {WLAN("Enable"), {3}, "1"}});  // what is not told is on
    expect_stored({{WLAN("Enable"), {1}, "0", "wifi.ap.enable_5g", "1", kWireless}});
    forget();
    EXPECT_EQ(set(WLAN("Enable"), {2}, "1").code, -1);
    EXPECT_THAT(events_of(WLAN("Enable")), ElementsAre("can not foud wifi.ap.enable\n"));
    EXPECT_EQ(set(GUEST("Enable"), {1, 1}, "1").code, -1);
    EXPECT_THAT(events_of(GUEST("Enable")), ElementsAre("can not foud wifi.guest.enable\n"));
}

TEST_F(Networks, TakePassPhrasesByNumber) {
    const std::string shortest(8, 's'), longest(64, 'l');
    const char* too_long = "the length of password is too long or too short\n";
    std::vector<SetRow> rows;
    for (const int number : {1, 3, 5})
        rows.push_back({WLAN("X_QM_Password"), {number}, shortest, "wifi.ap.password", shortest, kWireless});
    for (const int number : {2, 4, 6})
        rows.push_back(
            {WLAN("X_QM_PreSharedKey"), {number}, longest, "wifi.guest.password", longest, kWireless});
    rows.push_back({"WiFi_AccessPoint_Security_X_QM_Password",
                    {2},
                    shortest,
                    "wifi.guest.password",
                    shortest,
                    kWireless});
    rows.push_back(
        {"WiFi_AccessPoint_Security_PreSharedKey", {1}, longest, "wifi.ap.password", longest, kWireless});
    for (const char* handler : {GUEST("X_QM_PreSharedKey"), GUEST("X_QM_Password"),
                                "WiFi_AccessPoint_X_QM_MultiSSID_Security_X_QM_Password",
                                "WiFi_AccessPoint_X_QM_MultiSSID_Security_PreSharedKey"})
        rows.push_back({handler, {1}, handler, "wifi.guest.password", handler, kWireless});
    rows.push_back(
        {"WiFi_AccessPoint_Security_KeyPassphrase", {2}, "any", "wifi.ap.password", "any", kWireless});
    rows.push_back(
        {"WiFi_AccessPoint_Security_SAEPassphrase", {2}, "sae", "wifi.ap.password", "sae", kWireless});
    rows.push_back({"WiFi_AccessPoint_X_QM_MultiSSID_Security_KeyPassphrase",
                    {1},
                    "1234567",
                    "wifi.guest.password",
                    "1234567",
                    kWireless});
    for (auto& row : rows) row.value = row.stored = row.value.substr(0, 64);
    expect_stored(rows);
    for (const std::string& wrong : {std::string(7, 'x'), std::string(65, 'x'), std::string()}) {
        expect_refused(
            {{WLAN("X_QM_Password"), {1}, wrong, WLAN("X_QM_Password: ") + std::string(too_long)},
             {WLAN("X_QM_Password"), {7}, wrong, WLAN("X_QM_Password: ") + std::string(too_long)},
             {GUEST("X_QM_Password"), {1}, wrong, GUEST("X_QM_PreSharedKey: ") + std::string(too_long)}});
    }
    expect_no_effect(WLAN("X_QM_Password"), {7}, shortest, kWireless);
    expect_no_effect(WLAN("X_QM_Password"), {0}, shortest, kWireless);
}

TEST_F(Networks, HaveFixedParameters) {
    expect_answers({{"LANDevice_LANWLANConfigurationNumberOfEntries", {1}, "2"},
                    {"WiFi_RadioNumberOfEntries", {}, "2"},
                    {"WiFi_SSIDNumberOfEntries", {}, "4"},
                    {"WiFi_AccessPointNumberOfEntries", {}, "4"},
                    {"WiFi_SSID_Upstream", {1}, "0"},
                    {"WiFi_SSID_LowerLayers", {1}, "Device.WiFi.Radio.1."},
                    {"WiFi_SSID_LowerLayers", {2}, "Device.WiFi.Radio.1."},
                    {"WiFi_SSID_LowerLayers", {3}, "Device.WiFi.Radio.2."},
                    {"WiFi_SSID_LowerLayers", {4}, "Device.WiFi.Radio.2."},
                    {"WiFi_SSID_LowerLayers", {5}, kUntouched},
                    {"WiFi_AccessPoint_SSIDReference", {3}, "Device.WiFi.SSID.3."},
                    {"WiFi_AccessPoint_SSIDReference", {5}, "Device.WiFi.SSID.1."},
                    {"WiFi_AccessPoint_X_QM_APType", {6}, "Guest"},
                    {"WiFi_AccessPoint_X_QM_APType", {4}, "Guest"},
                    {"WiFi_AccessPoint_X_QM_APType", {3}, "Primary"},
                    {WLAN("WPAEncryptionModes"), {}, "TKIPandAESEncryption"},
                    {WLAN("IEEE11iEncryptionModes"), {}, "TKIPandAESEncryption"},
                    {WLAN("WPAAuthenticationMode"), {}, "PSKAuthentication"},
                    {WLAN("IEEE11iAuthenticationMode"), {}, "PSKAuthentication"},
                    {GUEST("WPAEncryptionModes"), {}, kUntouched},
                    {GUEST("IEEE11iAuthenticationMode"), {}, kUntouched}});
    for (const char* handler :
         {WLAN("WPAEncryptionModes"), WLAN("IEEE11iEncryptionModes"), WLAN("WPAAuthenticationMode"),
          WLAN("IEEE11iAuthenticationMode"), GUEST("WPAEncryptionModes"), GUEST("WPAAuthenticationMode"),
          GUEST("IEEE11iEncryptionModes"), GUEST("IEEE11iAuthenticationMode")})
        expect_no_effect(handler, {1, 1}, "AESEncryption", 0);
    expect_read_only({"LANDevice_LANWLANConfigurationNumberOfEntries", "WiFi_RadioNumberOfEntries",
                      WLAN("BSSID"), "WiFi_SSIDNumberOfEntries", "WiFi_AccessPointNumberOfEntries",
                      "WiFi_SSID_Upstream", "WiFi_SSID_LowerLayers", "WiFi_SSID_Status", "WiFi_SSID_BSSID",
                      "WiFi_AccessPoint_Status", "WiFi_AccessPoint_SSIDReference",
                      "WiFi_AccessPoint_X_QM_APType", GUEST("Status")});
}

TEST_F(Networks, AskTheDriversInterfaceForTheBssid) {
    const char* interfaces[] = {"ath0", "ath01", "ath1", "ath11"};
    for (int number = 1; number <= 4; ++number) {
        const std::string interface = interfaces[number - 1];
        const std::string address = "00:00:5E:00:53:1" + std::to_string(number);
        answer("ifconfig " + interface, interface + " Link encap:Ethernet  HWaddr " + address + "  \n  UP\n");
        forget();
        expect_answers({{number % 2 == 0 ? WLAN("BSSID") : "WiFi_SSID_BSSID", {number}, address}});
        EXPECT_THAT(commands(), ElementsAre("ifconfig " + interface + " | grep HWaddr | awk  '{print $5}'"));
    }
    for (const char* output : {"", "ath0 Link encap", "\x80\xff%s HWaddr"}) {
        answer("ifconfig ath0", output);
        expect_answers({{WLAN("BSSID"), {1}, ""}});
    }
    forget();
    expect_answers({{WLAN("BSSID"), {5}, "0:0:0:0:0:0"}, {WLAN("BSSID"), {0}, "0:0:0:0:0:0"}});
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(Networks, ReloadUpnpAfterAWriteThatSucceeded) {
    store("upnpd.config.enable_upnp", "1");
    package("upnpd_sync", "");
    file("/etc/init.d/miniupnpd", "#!/bin/dash\nexit 1\n");
    expect_answers({{"UPnP_Device_Enable", {}, "1"}});
    expect_stored({{"UPnP_Device_Enable", {}, "0", "upnpd_sync.config.enable_upnp", "0", 0}});
    EXPECT_THAT(commands(), ElementsAre("/etc/init.d/miniupnpd reload"));
    EXPECT_EQ(option("upnpd.config.enable_upnp"), "1");
}

}  // namespace
