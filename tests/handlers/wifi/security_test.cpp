#include <dlfcn.h>

#include <fstream>
#include <sstream>

#include "wireless_router.h"

namespace {

#define SECURITY(name) "WiFi_AccessPoint_Security_" name
#define GUEST_SECURITY(name) "WiFi_AccessPoint_X_QM_MultiSSID_Security_" name

using Security = WirelessRouter;

struct Mode {
    const char *name, *enc_type, *wpa3;
};
constexpr Mode kModes[] = {{"WPA2-Personal", "wpa2", "0"},
                           {"WPA-WPA2-Personal", "wpa2+wpa", "0"},
                           {"WPA3-Personal", "wpa3", "1"},
                           {"WPA2-WPA3-Personal", "wpa3+wpa2", "1"}};

TEST_F(Security, ModeIsThreeOptionsOfTheNetwork) {
    const std::vector<std::pair<int, std::string>> sections = {{1, "ap"},    {3, "ap"},    {5, "ap"},
                                                               {2, "guest"}, {4, "guest"}, {0, "guest"}};
    for (const auto& [number, section] : sections) {
        for (const auto& mode : kModes) {
            expect_stored({{SECURITY("ModeEnabled"),
                            {number},
                            mode.name,
                            "wifi." + section + ".enc_type",
                            mode.enc_type,
                            kWireless}});
            EXPECT_EQ(option("wifi." + section + ".encryption"), "1");
            EXPECT_EQ(option("wifi." + section + ".wpa3"), mode.wpa3);
            expect_answers({{GUEST_SECURITY("ModeEnabled"), {number}, mode.name}});
        }
        expect_stored({{GUEST_SECURITY("ModeEnabled"),
                        {number},
                        "None",
                        "wifi." + section + ".enc_type",
                        "none",
                        kWireless}});
        EXPECT_EQ(option("wifi." + section + ".encryption"), "0");
        EXPECT_EQ(option("wifi." + section + ".wpa3"), "1") << "left as it was";
        expect_answers({{SECURITY("ModeEnabled"), {number}, "None"}});
    }
    expect_refused({{SECURITY("ModeEnabled"), {1}, "WPA-Personal", ""},
                    {SECURITY("ModeEnabled"), {1}, "", ""},
                    {SECURITY("ModeEnabled"), {1}, "wpa2", ""}});
}

TEST_F(Security, ModeIsReadWithFallbacks) {
    expect_answers({{SECURITY("ModeEnabled"), {1}, "WPA-WPA2-Personal"}});
    store("wifi.ap.enc_type", "none");
    expect_answers({{SECURITY("ModeEnabled"), {1}, "None"}});
    store("wifi.ap.enc_type", "wep");
    expect_answers({{SECURITY("ModeEnabled"), {1}, kUntouched}});
}

TEST_F(Security, ModeIsLimitedByTheProfile) {
    profile("interfaceinfo.supportmodes", "WPA2-Personal WPA3-Personal");
    expect_refused({{SECURITY("ModeEnabled"), {1}, "WPA-WPA2-Personal", ""},
                    {SECURITY("ModeEnabled"), {1}, "None", ""}});
    expect_stored({{SECURITY("ModeEnabled"), {1}, "WPA3-Personal", "wifi.ap.enc_type", "wpa3", kWireless},
                   {SECURITY("ModeEnabled"),
                    {2},
                    "WPA2-Personal WPA3-Personal",
                    "wifi.guest.encryption",
                    "1",
                    kWireless}});
    EXPECT_EQ(option("wifi.guest.enc_type"), std::nullopt);
    profile("interfaceinfo.supportmodes", "None WPA-Personal");
    testing::internal::CaptureStdout();
    set(SECURITY("ModeEnabled"), {2}, "WPA-Personal");
    set(SECURITY("ModeEnabled"), {2}, "None");
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "modes:None WPA-Personal\nmode:None\nmode:WPA-Personal\nmodes:None WPA-Personal\nmode:None\n");
    EXPECT_EQ(option("wifi.guest.encryption"), "0");
}

TEST_F(Security, CipherIsTheInterfacesOwn) {
    profile("interfaceinfo.wifi_2_4G", "w2");
    profile("interfaceinfo.guest_5G", "g5");
    package("wireless",
            "config wifi-iface 'w2'\n\toption encryption 'psk2+ccmp'\n"
            "config wifi-iface 'ath01'\n\toption encryption 'psk-mixed/ccmp+tkip'\n"
            "config wifi-iface 'radio5'\n\toption encryption 'none'\n"
            "config wifi-iface 'g5'\n\toption encryption 'sae'\n"
            "config wifi-iface 'ath0'\n\toption encryption 'wpa'\n");
    expect_answers({{SECURITY("EncryptionMode"), {1}, "AES"},
                    {SECURITY("EncryptionMode"), {2}, "AES,TKIP"},
                    {SECURITY("EncryptionMode"), {3}, ""},
                    {SECURITY("EncryptionMode"), {4}, "sae"},
                    {SECURITY("EncryptionMode"), {9}, "wpa"}});
    package("wireless", "");
    expect_answers({{SECURITY("EncryptionMode"), {1}, ""}});
}

TEST_F(Security, RefusesWhatTheDeviceLacks) {
    const char* all =
        "None,WPA-Personal,WPA2-Personal,WPA3-Personal,WPA-WPA2-Personal,WPA2-WPA3-Personal,"
        "WPA-Enterprise,WPA2-Enterprise,WPA-WPA2-Enterprise";
    expect_answers({{SECURITY("ModesSupported"), {5}, all},
                    {GUEST_SECURITY("ModesSupported"), {3}, all},
                    {SECURITY("ModesSupported"), {2}, "None,WPA/WPA2-Personal,WPA2/WPA3-Personal"},
                    {SECURITY("X_QM_PSKType"), {}, "KeyPassphrase"},
                    {SECURITY("RadiusServerIPAddr"), {}, ""},
                    {SECURITY("RadiusServerPort"), {}, "1812"},
                    {SECURITY("RadiusSecret"), {}, ""},
                    {SECURITY("X_QM_WEPKeyIndex"), {}, "0"},
                    {SECURITY("X_QM_WEPKey1"), {}, ""},
                    {SECURITY("X_QM_WEPKey4"), {}, ""},
                    {SECURITY("X_QM_WEPAuthenticationMode"), {}, ""}});
    expect_refused(
        {{SECURITY("RadiusServerIPAddr"),
          {},
          "192.0.2.1",
          SECURITY("RadiusServerIPAddr") ":  error: No support Security RadiusServer\n\n"},
         {SECURITY("RadiusServerPort"),
          {},
          "1",
          SECURITY("RadiusServerPort") ":  error: No support Security RadiusServerPort\n\n"},
         {SECURITY("RadiusSecret"),
          {},
          "x",
          SECURITY("RadiusSecret") ":  error: No support Security RadiusSecret\n\n"},
         {SECURITY("X_QM_WEPKeyIndex"),
          {},
          "1",
          SECURITY("X_QM_WEPKeyIndex") ":  error: No support Security WEP\n\n"},
         {SECURITY("X_QM_WEPKey1"),
          {},
          "x",
          SECURITY("X_QM_WEPKey1") ":  error: No support Security WEP\n\n"},
         {SECURITY("X_QM_WEPKey2"),
          {},
          "x",
          SECURITY("X_QM_WEPKey2") ":  error: No support Security WEP\n\n"},
         {SECURITY("X_QM_WEPKey3"),
          {},
          "x",
          SECURITY("X_QM_WEPKey3") ":  error: No support Security WEP\n\n"},
         {SECURITY("X_QM_WEPKey4"),
          {},
          "x",
          SECURITY("X_QM_WEPKey4") ":  error: No support Security WEP\n\n"},
         {SECURITY("X_QM_WEPAuthenticationMode"),
          {},
          "x",
          SECURITY("X_QM_WEPAuthenticationMode") ":  error: No support WEPAuthenticationMode\n\n"}});
    expect_no_effect(SECURITY("WEPKey"), {1}, "12345", 0);
    expect_no_effect(GUEST_SECURITY("WEPKey"), {1}, "12345", 0);
    expect_read_only({SECURITY("ModesSupported"), GUEST_SECURITY("ModesSupported"),
                      SECURITY("EncryptionMode"), SECURITY("X_QM_PSKType")});
}

// Names of all wireless handlers in the model.
Texts model_handlers() {
    Texts names;
    for (const char* file : {"wlan-configuration", "wifi", "mesh"}) {
        std::ifstream model(std::string("/usr/share/cwmp-datamodel/model/") + file + ".txt");
        for (std::string line; std::getline(model, line);) {
            std::istringstream columns(line);
            std::string path, name;
            columns >> path;
            if (path.empty() || path.starts_with("#") || path.ends_with(".")) continue;
            std::istringstream segments(path.substr(path.find('.') + 1));
            for (std::string segment; std::getline(segments, segment, '.');) {
                if (segment != "{i}") name += (name.empty() ? "" : "_") + segment;
            }
            names.push_back(name);
        }
    }
    return names;
}

TEST_F(Security, NoPathReadsASecretBack) {
    const Texts names = model_handlers();
    ASSERT_GT(names.size(), 200u);
    const std::string secret = "open-sesame-42";
    for (const auto& name : names) {
        const bool bears_key =
            name.find("Password") != std::string::npos || name.find("Key") != std::string::npos ||
            name.find("Passphrase") != std::string::npos || name.find("Secret") != std::string::npos;
        if (!bears_key || name.ends_with("PSKType") || name.ends_with("KeyIndex")) continue;
        for (const int number : {1, 2}) set(name.c_str(), {number, 1}, secret);
        EXPECT_EQ(get(name.c_str(), {1, 1}).value, "") << name;
    }
    EXPECT_EQ(option("wifi.ap.password"), secret);
    EXPECT_EQ(option("wifi.guest.password"), secret);
    for (const auto& name : names) {
        for (const Locate& locate : {Locate{1, 1, 1, 1}, Locate{2}, Locate{3}, Locate{4}})
            EXPECT_THAT(get(name.c_str(), locate).value, Not(HasSubstr(secret))) << name;
    }
}

}  // namespace
