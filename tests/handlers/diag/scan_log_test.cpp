#include <climits>
#include <cstring>

#include "cwmp/value_checks.h"
#include "diagnostics_test.h"

namespace {

constexpr const char* kLog = "/tmp/scan_log";

class ScanLog : public DiagnosticsTest {
  protected:
    void SetUp() override {
        DiagnosticsTest::SetUp();
        level(-1);
    }
    void TearDown() override {
        EXPECT_FALSE(exists("/tmp/started")) << "a name was run as a command";
        DiagnosticsTest::TearDown();
    }
    int parse(const std::string& text, int first = 0) {
        file(kLog, text);
        return FROM_LIBRARY(NeighboringWiFi_Diagnostic)((std::string("cat ") + kLog).c_str(), first);
    }
    static std::string cell(int number) {
        return "          Cell " + std::to_string(number) +
               " - Address: 00:00:5E:00:53:" + std::to_string(10 + number) +
               "\n                    ESSID:\"net " + std::to_string(number) + "\"\n";
    }
    static std::string cells(int count) {
        std::string text = "ath02     Scan completed :\n";
        for (int number = 1; number <= count; ++number) text += cell(number);
        return text;
    }
    static std::optional<std::string> result(const std::string& name) {
        return scratch("diagnostics_config." + name);
    }
};

TEST_F(ScanLog, ALogGivesAtMost15Results) {
    for (const auto& [count, last] : {std::pair{0, 4}, {1, 5}, {14, 18}, {15, 19}, {40, 19}}) {
        std::filesystem::remove_all(kScratch);
        std::filesystem::create_directories(kScratch);
        EXPECT_EQ(parse(cells(count), 4), last);
        const std::string number = std::to_string(last);
        const bool any = count > 0;
        EXPECT_EQ(result("NeighboringWiFi.ResultNumberOfEntries"),
                  any ? std::optional(number) : std::nullopt);
        EXPECT_EQ(result(number + ".SSID"),
                  any ? std::optional("net " + std::to_string(last - 4)) : std::nullopt);
        EXPECT_EQ(section_type("diagnostics_config." + std::to_string(last + 1), kScratch), std::nullopt);
        EXPECT_EQ(section_type("diagnostics_config.4", kScratch), std::nullopt);
    }
    EXPECT_EQ(parse(cells(2), INT_MAX), INT_MAX);
}

TEST_F(ScanLog, EachLineTellsItsFacts) {
    struct Row {
        std::string lines;
        std::vector<std::pair<const char*, std::optional<std::string>>> facts;
    };
    const std::string wpa2 = "                    IE: IEEE 802.11i/WPA2 Version 1\n";
    const std::string wpa = "                    IE: WPA Version 1\n";
    const std::string both = "                        Pairwise Ciphers (2) : CCMP TKIP\n";
    const std::string tkip = "                        Pairwise Ciphers (1) : TKIP\n";
    const std::vector<Row> rows = {
        {"", {{"BSSID", "00:00:5E:00:53:11"}, {"SSID", "net 1"}, {"Mode", std::nullopt}}},
        {"ESSID:\"\"\n", {{"SSID", std::nullopt}}},
        {"ESSID:\"a \\xC3\\xA4 \xc3\xa4 % 'q'\"\n", {{"SSID", "a \\xC3\\xA4 \xc3\xa4 % 'q'"}}},
        {"ESSID:\"cut off", {{"SSID", "cut off"}}},
        {"ESSID:\"$(touch /tmp/started)`touch /tmp/started`\"\n",
         {{"SSID", "$(touch /tmp/started)`touch /tmp/started`"}}},
        {"ESSID:\"Cell 5 Mode:x support scanning Mb/s\"\n",
         {{"SSID", "Cell 5 Mode:x support scanning Mb/s"}, {"Mode", std::nullopt}}},
        {"Mode:Master\n", {{"Mode", "Master"}}},
        {"Mode:Ad-Hoc-Demo-Long\n", {{"Mode", "Ad-Hoc-De"}}},
        {"Frequency:2.462 GHz (Channel 11)\n", {{"Frequency", "2.462 GHz (Channel 11)"}, {"Channel", "11"}}},
        {"Frequency:5.745 GHz (Channel 149)\n", {{"Channel", "149"}}},
        // The channel ends before its first 0.
        {"Frequency:2.457 GHz (Channel 10)\n", {{"Channel", "1"}}},
        {"Frequency:5.2 GHz (Channel 40)\n", {{"Channel", "4"}}},
        {"Frequency:5.52 GHz (Channel 104)\n", {{"Channel", "1"}}},
        {"Frequency:5.18 GHz\n", {{"Frequency", "5.18 GHz"}, {"Channel", std::nullopt}}},
        {"Quality=42/94  Signal level=-53 dBm  Noise level=-95 dBm\n",
         {{"Quality", "42/94  Signal level=-53 dBm  Noise level=-95 dBm"},
          {"SignalStrength", "-53"},
          {"Noise", "-95"}}},
        {"Quality=1/94  Signal level=-5dBm\n", {{"SignalStrength", "-5"}, {"Noise", std::nullopt}}},
        {"Quality=1/94  Signal level=53\n", {{"SignalStrength", std::nullopt}}},
        {"Bit Rates:1 Mb/s; 2 Mb/s; 5.5 Mb/s\n    11 Mb/s; 54 Mb/s\n",
         {{"SupportedDataTransferRates", "1,2,5.5,11,54"}}},
        {"Extra:bcn_int=100\n", {{"BeaconPeriod", "100"}}},
        {"Extra:dtim_period=3\n", {{"DTIMPeriod", "3"}}},
        {wpa2, {{"SecurityMode", "WPA2"}}},
        {wpa, {{"SecurityMode", "WPA"}}},
        {wpa2 + wpa, {{"SecurityMode", "WPA-WPA2"}}},
        {wpa2 + wpa2, {{"SecurityMode", "WPA2"}}},
        {wpa + wpa2, {{"SecurityMode", "WPA"}}},
        {both + tkip, {{"EncryptionMode", "TKIP+AES"}}},
        {tkip + both, {{"EncryptionMode", "TKIP"}}},
        {"Pairwise Ciphers (1) : CCMP\n", {{"EncryptionMode", "AES"}}},
        {"Pairwise Ciphers (1) : WEP-40\n" + both, {{"EncryptionMode", std::nullopt}}},
        {"Extra:phy_mode=IEEE80211_MODE_11NG_HT40MINUS\n",
         {{"OperatingStandards", "ng"}, {"OperatingChannelBandwidth", "40MHz"}}},
        {"Extra:phy_mode=IEEE80211_MODE_11AC_VHT80\n",
         {{"OperatingStandards", "ac"}, {"OperatingChannelBandwidth", "80MHz"}}},
        {"Extra:phy_mode=IEEE80211_MODE_11G\n",
         {{"OperatingStandards", "g"}, {"OperatingChannelBandwidth", std::nullopt}}},
        {std::string(400, 'A') + " Extra:bcn_int=7\nExtra:dtim_period=2\n",
         {{"BeaconPeriod", "7"}, {"DTIMPeriod", "2"}}},
    };
    level(3);  // a name must not run as part of a console line
    for (const Row& row : rows) {
        SCOPED_TRACE(row.lines);
        std::filesystem::remove(std::string(kScratch) + "/diagnostics_config");
        EXPECT_EQ(parse(cells(1) + row.lines), 1);
        for (const auto& [option, value] : row.facts)
            EXPECT_EQ(result(std::string("1.") + option), value) << option;
    }
}

TEST_F(ScanLog, CellsDoNotMix) {
    const std::string rates = "Bit Rates:1 Mb/s\n";
    const std::string security = "IE: IEEE 802.11i/WPA2 Version 1\nPairwise Ciphers (1) : CCMP\n";
    EXPECT_EQ(parse("Mode:Stray\n" + cell(1) + rates + security + cell(2) + rates + "IE: WPA Version 1\n" +
                        "Pairwise Ciphers (1) : TKIP\n",
                    1),
              3);
    EXPECT_EQ(section_type("diagnostics_config.1", kScratch), std::nullopt) << "a line before any cell";
    EXPECT_EQ(result("2.SecurityMode"), "WPA2");
    EXPECT_EQ(result("3.SecurityMode"), "WPA");
    EXPECT_EQ(result("3.EncryptionMode"), "TKIP");
    EXPECT_EQ(result("3.SupportedDataTransferRates"), "1");
}

TEST_F(ScanLog, ARadioThatCannotScanIsAnError) {
    EXPECT_EQ(parse(cell(1) + "ath02     Interface doesn't support scanning.\n" + cell(2), 3), 4);
    EXPECT_EQ(result("NeighboringWiFi.DiagnosticsState"), "Error");
}

TEST_F(ScanLog, GarbageIsSurvived) {
    std::string noise;
    unsigned state = 1;
    for (int i = 0; i < 20000; ++i) noise += static_cast<char>((state = state * 1103515245 + 12345) >> 16);
    EXPECT_EQ(parse(noise), 0);
    EXPECT_EQ(parse(""), 0);
    const std::string whole =
        cells(1) + "Frequency:2.462 GHz (Channel 11)\nIE: IEEE 802.11i/WPA2 Version 1\n";
    for (std::size_t length = 0; length < whole.size(); length += 7)
        EXPECT_LE(parse(whole.substr(0, length)), 1);
    for (const char* line : {"Cell", "Cell ", "ESSID", "ESSID:\"", "Mode", "Frequency", "Signal level",
                             "Mb/s", "bcn_int", "Version", "Version /", "Pairwise Ciphers", "phy_mode",
                             "phy_mode____", "dtim_period", "Frequency:", "Quality=  Signal level=- - - -"}) {
        EXPECT_LE(parse(cells(1) + line + "\n"), 2) << line;
    }
    EXPECT_EQ(FROM_LIBRARY(NeighboringWiFi_Diagnostic)(nullptr, 0), -1);
}

TEST_F(ScanLog, ResultsReadAsTheModelWordsThem) {
    package(
        "diagnostics_config",
        "config Cell '1'\n\toption Frequency '2.462 GHz (Channel 11)'\n\toption Mode 'Master'\n"
        "\toption OperatingStandards 'ng'\n\toption ExtensionChannel 'MINUS'\n\toption SignalStrength '-53'\n"
        "\nconfig Cell '2'\n\toption Frequency '5.18 GHz'\n\toption Mode 'Managed'\n"
        "\toption OperatingStandards 'ac'\n\toption ExtensionChannel 'PLUS'\n"
        "\nconfig Cell '3'\n\toption Frequency '2.412 GHz'\n\toption OperatingStandards 'g'\n"
        "\toption ExtensionChannel 'x'\n\nconfig Cell '4'\n\toption Frequency '2.412 GHz'\n"
        "\toption OperatingStandards 'b'\n\nconfig Cell '5'\n\toption Frequency '5.2'\n"
        "\toption OperatingStandards 'na'\n\nconfig Cell '6'\n\toption Frequency '5.2'\n"
        "\toption OperatingStandards 'a'\n\nconfig NeighboringWiFi 'NeighboringWiFi'\n"
        "\toption ResultNumberOfEntries '6'\n\toption DiagnosticsState 'Completed'\n",
        kScratch);
    struct Row {
        const char* parameter;
        std::vector<const char*> answers;  // of results 1 to 6, then of one that is missing
    };
    const std::vector<Row> rows = {
        {"OperatingFrequencyBand", {"2.4GHz", "5GHz", "2.4GHz", "2.4GHz", "5GHz", "5GHz", ""}},
        {"Radio", {"2.4GHz", "5GHz", "2.4GHz", "2.4GHz", "5GHz", "5GHz", ""}},
        {"Mode", {"Infrastructure", "ADHoc", "", "", "", "", ""}},
        {"SupportedStandards", {"b g n", "a n ac", "b g", "b", "a n", "a", "a"}},
        {"X_QM_ExtensionChannel",
         {"BelowControlChannel", "AboveControlChannel", "None", "None", "None", "None", "None"}},
        {"SignalStrength", {"-53", "-200", "-200", "-200", "-200", "-200", "-200"}},
    };
    for (const char* object : {"WiFi_NeighboringWiFiDiagnostic_", "X_QM_NeighboringWiFiDiagnostic_"}) {
        const std::string name = object;
        expect_answers({{(name + "ResultNumberOfEntries").c_str(), {}, "6"},
                        {(name + "DiagnosticsState").c_str(), {}, "Completed"}});
        for (const Row& row : rows) {
            for (int number = 1; number <= 7; ++number) {
                expect_answers({{(name + "Result_" + row.parameter).c_str(),
                                 {number},
                                 row.answers[static_cast<std::size_t>(number - 1)]}});
            }
            const std::string parameter = name + "Result_" + row.parameter;
            expect_answers({{parameter.c_str(), {INT_MAX}, row.answers.back()}});
            for (const int number : {0, -1}) EXPECT_EQ(get(parameter.c_str(), {number}).code, -1);
        }
    }
    const std::vector<std::pair<const char*, const char*>> plain = {
        {"SSID", "SSID"},
        {"BSSID", "BSSID"},
        {"SupportedDataTransferRates", "SupportedDataTransferRates"},
        {"OperatingStandards", "OperatingStandards"},
        {"OperatingChannelBandwidth", "OperatingChannelBandwidth"},
        {"Channel", "Channel"},
        {"SignalStrength", "SignalStrength"},
        {"Noise", "Noise"},
        {"SecurityModeEnabled", "SecurityMode"},
        {"EncryptionMode", "EncryptionMode"},
        {"DTIMPeriod", "DTIMPeriod"},
        {"BeaconPeriod", "BeaconPeriod"}};
    for (const auto& [parameter, option] : plain) {
        if (std::strcmp(parameter, "SignalStrength") != 0) {
            expect_answers(
                {{(std::string("WiFi_NeighboringWiFiDiagnostic_Result_") + parameter).c_str(), {9}, ""}});
        }
        store(std::string("diagnostics_config.2.") + option, parameter, kScratch);
        expect_answers(
            {{(std::string("WiFi_NeighboringWiFiDiagnostic_Result_") + parameter).c_str(), {2}, parameter},
             {(std::string("X_QM_NeighboringWiFiDiagnostic_Result_") + parameter).c_str(), {2}, parameter}});
    }
}

TEST_F(ScanLog, NumbersOfAText) {
    struct Row {
        const char* text;
        int size;
        int count;
        const char* numbers;
    };
    for (const Row& row : {Row{"1 Mb/s; 5.5 Mb/s; 11", 64, 3, "1,5.5,11"},
                           {"none", 64, 0, ""},
                           {"", 64, 0, ""},
                           {"7.", 64, 1, "7"},
                           {"a1.2.3b", 64, 2, "1.2,3"},
                           {"-4", 64, 1, "4"},
                           {"12 345", 6, 1, "12"},
                           {"12 34", 6, 2, "12,34"},
                           {"12", 1, 0, ""}}) {
        char numbers[64] = "untouched";
        EXPECT_EQ(FROM_LIBRARY(string_split_num)(row.text, numbers, row.size), row.count) << row.text;
        EXPECT_STREQ(numbers, row.numbers) << row.text;
    }
    EXPECT_EQ(FROM_LIBRARY(string_split_num)(nullptr, nullptr, 0), 0);
}

}  // namespace
